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
#include "core/simd/neon/minmax.h"
#elif defined(ZIVKS_BACKEND_X86)
#include "core/simd/x86/float_arith.h"
#include "core/simd/x86/bitwise.h"
#include "core/simd/x86/shuffle.h"
#include "core/simd/x86/negate.h"
#include "core/simd/x86/minmax.h"
#else
#include "core/simd/generic/float_arith.h"
#include "core/simd/generic/bitwise.h"
#include "core/simd/generic/shuffle.h"
#include "core/simd/generic/negate.h"
#include "core/simd/generic/minmax.h"
#endif
