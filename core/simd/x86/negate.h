// x86 backend: negating the odd lanes, the imaginary parts of interleaved complex data.
#pragma once

namespace zivks::simd {

// The sign bit of every odd lane flipped, payloads kept (eor with a sign mask).
template <class T, int K>
inline vec<T, K> flip_sign_odd(const vec<T, K>& a) {
  static_assert(std::is_floating_point_v<T>, "a sign bit flip is for floats");
  // The mask in 64-bit lanes: the high half of each for float pairs, every odd one for
  // doubles. Built from constants, so that it stays in a register.
  constexpr long long s = static_cast<long long>(0x8000000000000000ull);
  constexpr long long lo = std::is_same_v<T, float> ? s : 0;
  vec<T, K> r;
  if constexpr (K == 1) x86::from_ints(r.r, _mm_xor_si128(x86::ints(a.r), _mm_set_epi64x(s, lo)));
#if defined(__AVX2__)
  else if constexpr (K == 2)
    x86::from_ints(r.r, _mm256_xor_si256(x86::ints(a.r), _mm256_set_epi64x(s, lo, s, lo)));
#endif
#if defined(__AVX512F__)
  else x86::from_ints(r.r, _mm512_xor_si512(x86::ints(a.r), _mm512_set_epi64(s, lo, s, lo, s, lo, s, lo)));
#endif
  return r;
}

// Every odd lane negated with saturation, the lowest value going to the highest
// (sqneg on the odd lanes).
template <class T, int K>
inline vec<T, K> neg_sat_odd(const vec<T, K>& a) {
  static_assert(std::is_same_v<T, int16_t>, "saturating negation of int16 lanes");
  vec<T, K> r;
  if constexpr (K == 1) r.r = _mm_blend_epi16(a.r, _mm_subs_epi16(_mm_setzero_si128(), a.r), 0xAA);
#if defined(__AVX2__)
  else if constexpr (K == 2)
    r.r = _mm256_blend_epi16(a.r, _mm256_subs_epi16(_mm256_setzero_si256(), a.r), 0xAA);
#endif
#if defined(__AVX512F__)
  else r.r = _mm512_mask_blend_epi16(0xAAAAAAAAu, a.r, _mm512_subs_epi16(_mm512_setzero_si512(), a.r));
#endif
  return r;
}

}  // namespace zivks::simd
