// x86 backend: a vector is an SSE register, or at levels v3 and v4 an AVX2 or AVX-512
// register holding 2 or 4 blocks; the loads and stores of parts of registers.
#pragma once

#include "core/simd/vec.h"
#include "core/simd/x86/ops.h"

namespace zivks::simd {

namespace x86 {

// The bits of v as integer lanes, and a vector of T made of such bits.
template <class T, int K>
inline typename ops<K>::I bits(const vec<T, K>& v) {
  return ints(v.raw);
}
template <class T, int K>
inline vec<T, K> of_bits(typename ops<K>::I x) {
  vec<T, K> r;
  memcpy(&r.raw, &x, sizeof r.raw);
  return r;
}

}  // namespace x86

// ---- load_repeated_block
// Two loads of 8 bytes, then a broadcast in registers: the halves come from where the
// caller has just stored them, which a wide load of the same bytes would stall on.
template <class V>
inline V load_repeated_block(const void* p) {
  double lo, hi;
  memcpy(&lo, p, 8);
  memcpy(&hi, static_cast<const unsigned char*>(p) + 8, 8);
  // Kept apart in registers: the compiler would otherwise merge the two halves back into
  // one wide load.
  __asm__("" : "+x"(lo), "+x"(hi));
  const __m128i b = _mm_castpd_si128(_mm_set_pd(hi, lo));
  return x86::of_bits<typename V::lane, V::kBlocks>(x86::ops<V::kBlocks>::block(b));
}

// ---- load_lo
// One 8-byte load into a register: assembling it in memory would stall on store
// forwarding.
template <class V>
inline V load_lo(const typename V::lane* p) {
  static_assert(V::kBlocks == 1, "one block");
  return x86::of_bits<typename V::lane, 1>(x86::ops<1>::load_half(p));
}

// ---- store_lo
template <class T, int K>
inline void store_lo(T* p, const vec<T, K>& v) {
  if constexpr (K > 1) memcpy(p, &v.raw, sizeof v.raw / 2);
  else _mm_storel_epi64(reinterpret_cast<__m128i*>(p), x86::bits(v));
}

// ---- store_stream
// movntdq and its wider forms, which bypass the caches.
template <class T, int K>
inline void store_stream(T* p, const vec<T, K>& v) {
  x86::ops<K>::stream(p, x86::bits(v));
}

// ---- stream_fence
// sfence: the streaming stores are weakly ordered.
inline void stream_fence() { _mm_sfence(); }

// ---- prefetch_stream, prefetch_stream_l2
// prefetchnta, prefetcht1.
inline void prefetch_stream(const void* p) { __builtin_prefetch(p, 0, 0); }
inline void prefetch_stream_l2(const void* p) { __builtin_prefetch(p, 0, 2); }

}  // namespace zivks::simd
