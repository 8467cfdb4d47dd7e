// x86 backend: bitwise lane operations and shifts by a broadcast count. Bitwise results
// do not depend on the lane width; x86 has no 8-bit shifts, so those shift 16-bit lanes
// and clear the bits that crossed from the neighbouring byte.
#pragma once

namespace zivks::simd {

// and
template <class T, int K>
inline vec<T, K> bit_and(const vec<T, K>& a, const vec<T, K>& b) {
  return vec<T, K>{a.r & b.r};
}

// orr
template <class T, int K>
inline vec<T, K> bit_or(const vec<T, K>& a, const vec<T, K>& b) {
  return vec<T, K>{a.r | b.r};
}

// eor
template <class T, int K>
inline vec<T, K> bit_xor(const vec<T, K>& a, const vec<T, K>& b) {
  return vec<T, K>{a.r ^ b.r};
}

// mvn
template <class T, int K>
inline vec<T, K> bit_not(const vec<T, K>& a) {
  return vec<T, K>{~a.r};
}

// A shift count from 0 to the lane width less one, broadcast once for a loop of shl
// and shr (dup). The x86 shifts read it from the low 64 bits of a register; 8-bit lanes
// also keep the masks of the bits that stay inside their byte.
template <class T, int K>
struct shift_count {
  __m128i n;
  vec<T, K> keep_left, keep_right;
  explicit shift_count(int s)
      : n(_mm_cvtsi32_si128(s)), keep_left(zeros<vec<T, K>>()), keep_right(zeros<vec<T, K>>()) {
    if constexpr (sizeof(T) == 1) {
      keep_left = splat<vec<T, K>>(static_cast<T>(0xFF << s));
      keep_right = splat<vec<T, K>>(static_cast<T>(0xFF >> s));
    }
  }
};

namespace x86 {

// The 512-bit 32-bit shifts go through their zero-masked forms with every lane kept: the
// same instruction, without the unmasked form's spurious uninitialised-value warning.
template <int K>
inline typename int_reg<K>::type sll16(typename int_reg<K>::type a, __m128i n) {
  if constexpr (K == 1) return _mm_sll_epi16(a, n);
#if defined(__AVX2__)
  else if constexpr (K == 2) return _mm256_sll_epi16(a, n);
#endif
#if defined(__AVX512BW__)
  else return _mm512_sll_epi16(a, n);
#endif
}
template <int K>
inline typename int_reg<K>::type sll32(typename int_reg<K>::type a, __m128i n) {
  if constexpr (K == 1) return _mm_sll_epi32(a, n);
#if defined(__AVX2__)
  else if constexpr (K == 2) return _mm256_sll_epi32(a, n);
#endif
#if defined(__AVX512F__)
  else return _mm512_maskz_sll_epi32(0xFFFF, a, n);
#endif
}
template <int K>
inline typename int_reg<K>::type srl16(typename int_reg<K>::type a, __m128i n) {
  if constexpr (K == 1) return _mm_srl_epi16(a, n);
#if defined(__AVX2__)
  else if constexpr (K == 2) return _mm256_srl_epi16(a, n);
#endif
#if defined(__AVX512BW__)
  else return _mm512_srl_epi16(a, n);
#endif
}
template <int K>
inline typename int_reg<K>::type srl32(typename int_reg<K>::type a, __m128i n) {
  if constexpr (K == 1) return _mm_srl_epi32(a, n);
#if defined(__AVX2__)
  else if constexpr (K == 2) return _mm256_srl_epi32(a, n);
#endif
#if defined(__AVX512F__)
  else return _mm512_maskz_srl_epi32(0xFFFF, a, n);
#endif
}
template <int K>
inline typename int_reg<K>::type sra16(typename int_reg<K>::type a, __m128i n) {
  if constexpr (K == 1) return _mm_sra_epi16(a, n);
#if defined(__AVX2__)
  else if constexpr (K == 2) return _mm256_sra_epi16(a, n);
#endif
#if defined(__AVX512BW__)
  else return _mm512_sra_epi16(a, n);
#endif
}
template <int K>
inline typename int_reg<K>::type sra32(typename int_reg<K>::type a, __m128i n) {
  if constexpr (K == 1) return _mm_sra_epi32(a, n);
#if defined(__AVX2__)
  else if constexpr (K == 2) return _mm256_sra_epi32(a, n);
#endif
#if defined(__AVX512F__)
  else return _mm512_maskz_sra_epi32(0xFFFF, a, n);
#endif
}

}  // namespace x86

// ushl / sshl by a broadcast count: the low bits of each lane move up and the high bits
// are lost; a signed lane wraps.
template <class T, int K>
inline vec<T, K> shl(const vec<T, K>& a, const shift_count<T, K>& n) {
  static_assert(std::is_integral_v<T> && sizeof(T) <= 4, "8-, 16- and 32-bit lanes");
  if constexpr (sizeof(T) == 1) return bit_and(vec<T, K>{x86::sll16<K>(a.r, n.n)}, n.keep_left);
  else if constexpr (sizeof(T) == 2) return vec<T, K>{x86::sll16<K>(a.r, n.n)};
  else return vec<T, K>{x86::sll32<K>(a.r, n.n)};
}

// ushl / sshl by the negated broadcast count: zeros come in for unsigned lanes, copies
// of the sign bit for signed ones.
template <class T, int K>
inline vec<T, K> shr(const vec<T, K>& a, const shift_count<T, K>& n) {
  static_assert(std::is_integral_v<T> && sizeof(T) <= 4, "8-, 16- and 32-bit lanes");
  static_assert(sizeof(T) > 1 || std::is_unsigned_v<T>, "no signed 8-bit right shift yet");
  if constexpr (sizeof(T) == 1) return bit_and(vec<T, K>{x86::srl16<K>(a.r, n.n)}, n.keep_right);
  else if constexpr (sizeof(T) == 2 && std::is_signed_v<T>) return vec<T, K>{x86::sra16<K>(a.r, n.n)};
  else if constexpr (sizeof(T) == 2) return vec<T, K>{x86::srl16<K>(a.r, n.n)};
  else if constexpr (std::is_signed_v<T>) return vec<T, K>{x86::sra32<K>(a.r, n.n)};
  else return vec<T, K>{x86::srl32<K>(a.r, n.n)};
}

}  // namespace zivks::simd
