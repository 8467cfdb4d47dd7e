// The 128-bit vector layer. Families write their blocks with these operations and never
// with raw intrinsics. One backend is compiled in, chosen by the build:
//   generic  plain lane loops, the readable definition of every operation
//   x86      SSE4.1 / AVX2 / AVX-512 forms that reproduce the Arm results exactly
//   neon     <arm_neon.h>
// vec<T, K> holds K 128-bit blocks of lanes of T. Every backend has K = 1; the x86 one at
// levels v3 and v4 also has K = 2 and K = 4 (kWide says the widest), which families use
// only where grouping blocks cannot change a result.
#pragma once

#include <stdint.h>
#include <string.h>

#include <type_traits>

namespace zivks::simd {

template <int K>
struct width : std::integral_constant<int, K> {};

// N registers of K blocks each, handled by one call of a loop body (see for_block_groups).
template <int K, int N>
struct group {
  static constexpr int kBlocks = K;
  static constexpr int kCount = N;
};

}  // namespace zivks::simd

#if defined(ZIVKS_BACKEND_NEON)
#include "core/simd/neon/base.h"
#elif defined(ZIVKS_BACKEND_X86)
#include "core/simd/x86/base.h"
#elif defined(ZIVKS_BACKEND_GENERIC)
#include "core/simd/generic/base.h"
#else
#error "no vector backend selected (ZIVKS_BACKEND_NEON, _X86 or _GENERIC)"
#endif

namespace zivks::simd {

template <class T, int K = 1>
struct vec {
  using lane = T;
  static constexpr int kBlocks = K;
  static constexpr int kLanes = 16 / static_cast<int>(sizeof(T)) * K;
  typename reg<T, K>::type r;
};

// Unaligned load and store of a whole vector (ld1 / movdqu).
template <class V>
inline V load(const typename V::lane* p) {
  V v;
  memcpy(&v.r, p, sizeof v.r);
  return v;
}

template <class T, int K>
inline void store(T* p, const vec<T, K>& v) {
  memcpy(p, &v.r, sizeof v.r);
}

// The low 8 bytes, the upper half cleared (ldr d). Made as one 8-byte load into a
// register: assembling it in memory would stall on store forwarding.
template <class V>
inline V load_lo(const typename V::lane* p) {
  V v;
#if defined(ZIVKS_BACKEND_X86)
  const __m128i x = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
#elif defined(ZIVKS_BACKEND_NEON)
  const uint8x16_t x = vcombine_u8(vld1_u8(reinterpret_cast<const uint8_t*>(p)), vdup_n_u8(0));
#else
  unsigned char x[16] = {};
  memcpy(x, p, 8);
#endif
  static_assert(sizeof x == sizeof v.r, "a whole register");
  memcpy(&v.r, &x, sizeof x);
  return v;
}

// The low 8 bytes of v (str d); of a register of several blocks, its low half.
template <class T, int K>
inline void store_lo(T* p, const vec<T, K>& v) {
  if constexpr (K > 1) {
    memcpy(p, &v.r, sizeof v.r / 2);
    return;
  }
#if defined(ZIVKS_BACKEND_X86)
  __m128i x;
  memcpy(&x, &v.r, sizeof x);
  _mm_storel_epi64(reinterpret_cast<__m128i*>(p), x);
#elif defined(ZIVKS_BACKEND_NEON)
  uint8x16_t x;
  memcpy(&x, &v.r, sizeof x);
  vst1_u8(reinterpret_cast<uint8_t*>(p), vget_low_u8(x));
#else
  memcpy(p, &v.r, 8);
#endif
}

// Every lane x (dup).
template <class V>
inline V splat(typename V::lane x) {
  typename V::lane t[V::kLanes];
  for (auto& l : t) l = x;
  return load<V>(t);
}

// All bits clear (movi #0).
template <class V>
inline V zeros() {
  V v;
  memset(&v.r, 0, sizeof v.r);
  return v;
}

// The element e again and again across the vector; its size divides 16 (dup / ld1r).
template <class V, class E>
inline V repeat(const E& e) {
  static_assert(16 % sizeof(E) == 0, "the element must tile a block");
#if defined(ZIVKS_BACKEND_X86)
  if constexpr (sizeof(E) == 16) {
    // Two loads of 8 bytes: they take the halves from where the caller just stored them.
    double lo, hi;
    memcpy(&lo, &e, 8);
    memcpy(&hi, reinterpret_cast<const unsigned char*>(&e) + 8, 8);
    const auto r = x86::repeat_halves<V::kBlocks>(lo, hi);
    V v;
    memcpy(&v.r, &r, sizeof v.r);
    return v;
  }
#endif
  unsigned char t[sizeof(V)];
  for (size_t o = 0; o < sizeof t; o += sizeof(E)) memcpy(t + o, &e, sizeof(E));
  V v;
  memcpy(&v.r, t, sizeof v.r);
  return v;
}

// The lanes as a plain array, for the rare paths that fix lanes one by one.
template <class V>
struct lanes {
  typename V::lane v[V::kLanes];
  explicit lanes(const V& x) { memcpy(v, &x.r, sizeof v); }
  V get() const { return load<V>(v); }
};

// A store that need not stay in the caches, for fills far larger than they are (stnp);
// p is aligned to the size of the vector. A run of them ends with stream_fence.
template <class T, int K>
inline void store_stream(T* p, const vec<T, K>& v) {
#if defined(ZIVKS_BACKEND_X86)
  typename int_reg<K>::type r;
  memcpy(&r, &v.r, sizeof r);
  x86::stream<K>(p, r);
#else
  store(p, v);
#endif
}

// Orders the streaming stores before all later stores (sfence on x86).
inline void stream_fence() {
#if defined(ZIVKS_BACKEND_X86)
  _mm_sfence();
#endif
}

// Streaming read hint for the first cache level (prfm pldl1strm); never faults.
inline void prefetch_stream(const void* p) { __builtin_prefetch(p, 0, 0); }

// Streaming read hint for the second cache level (prfm pldl2strm); never faults.
inline void prefetch_stream_l2(const void* p) {
#if defined(__aarch64__)
  __asm__ volatile("prfm pldl2strm, [%0]" : : "r"(p));
#else
  __builtin_prefetch(p, 0, 2);
#endif
}

}  // namespace zivks::simd

#include "core/simd/nan_rule.h"

#if defined(ZIVKS_BACKEND_NEON)
#include "core/simd/neon/float_arith.h"
#include "core/simd/neon/bitwise.h"
#include "core/simd/neon/shuffle.h"
#include "core/simd/neon/negate.h"
#include "core/simd/neon/int_arith.h"
#include "core/simd/neon/convert.h"
#include "core/simd/neon/minmax.h"
#elif defined(ZIVKS_BACKEND_X86)
#include "core/simd/x86/float_arith.h"
#include "core/simd/x86/bitwise.h"
#include "core/simd/x86/shuffle.h"
#include "core/simd/x86/negate.h"
#include "core/simd/x86/int_arith.h"
#include "core/simd/x86/convert.h"
#include "core/simd/x86/minmax.h"
#else
#include "core/simd/generic/float_arith.h"
#include "core/simd/generic/bitwise.h"
#include "core/simd/generic/shuffle.h"
#include "core/simd/generic/negate.h"
#include "core/simd/generic/int_arith.h"
#include "core/simd/generic/convert.h"
#include "core/simd/generic/minmax.h"
#endif
