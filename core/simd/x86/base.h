// x86 backend: a vector is an SSE register, or at levels v3 and v4 an AVX2 or AVX-512
// register holding 2 or 4 blocks.
#pragma once

#include <immintrin.h>

namespace zivks::simd {

#if defined(__AVX512F__) && defined(__AVX512BW__) && defined(__AVX512DQ__) && defined(__AVX512VL__)
inline constexpr int kWide = 4;
#elif defined(__AVX2__)
inline constexpr int kWide = 2;
#else
inline constexpr int kWide = 1;
#endif

template <int K> struct int_reg;
template <> struct int_reg<1> { using type = __m128i; };
template <> struct int_reg<2> { using type = __m256i; };
template <> struct int_reg<4> { using type = __m512i; };

template <class T, int K>
struct reg {
  using type = typename int_reg<K>::type;
};
template <> struct reg<float, 1> { using type = __m128; };
template <> struct reg<float, 2> { using type = __m256; };
template <> struct reg<float, 4> { using type = __m512; };
template <> struct reg<double, 1> { using type = __m128d; };
template <> struct reg<double, 2> { using type = __m256d; };
template <> struct reg<double, 4> { using type = __m512d; };

namespace x86 {

// A 16-byte pattern, low half first, across every block of a register, built in
// registers (a wide load of bytes just stored would stall on store forwarding).
template <int K>
inline typename int_reg<K>::type repeat_halves(double lo, double hi) {
  // Kept apart in registers: the compiler would otherwise merge the two halves back
  // into one wide load of what the caller stored in two.
  __asm__("" : "+x"(lo), "+x"(hi));
  const __m128i b = _mm_castpd_si128(_mm_set_pd(hi, lo));
  if constexpr (K == 1) return b;
#if defined(__AVX2__)
  else if constexpr (K == 2) return _mm256_broadcastsi128_si256(b);
#endif
#if defined(__AVX512F__)
  else return _mm512_maskz_broadcast_i64x2(static_cast<__mmask8>(0xFF), b);
#endif
}

// A store of a whole register that bypasses the caches; p is aligned to its size.
template <int K>
inline void stream(void* p, typename int_reg<K>::type r) {
  if constexpr (K == 1) _mm_stream_si128(static_cast<__m128i*>(p), r);
#if defined(__AVX2__)
  else if constexpr (K == 2) _mm256_stream_si256(static_cast<__m256i*>(p), r);
#endif
#if defined(__AVX512F__)
  else _mm512_stream_si512(static_cast<__m512i*>(p), r);
#endif
}

}  // namespace x86

}  // namespace zivks::simd
