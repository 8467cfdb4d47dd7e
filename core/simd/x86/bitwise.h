// x86 backend: bitwise lane operations and shifts by a broadcast count. Bitwise results
// do not depend on the lane type; x86 has no 8-bit shifts, so those shift 16-bit lanes
// and clear the bits that crossed from the neighbouring byte.
#pragma once

#include "core/simd/x86/base.h"

namespace zivks::simd {

// ---- bit_and
template <class T, int K>
inline vec<T, K> bit_and(const vec<T, K>& a, const vec<T, K>& b) {
  return x86::of_bits<T, K>(x86::bits(a) & x86::bits(b));
}

// ---- bit_or
template <class T, int K>
inline vec<T, K> bit_or(const vec<T, K>& a, const vec<T, K>& b) {
  return x86::of_bits<T, K>(x86::bits(a) | x86::bits(b));
}

// ---- bit_xor
template <class T, int K>
inline vec<T, K> bit_xor(const vec<T, K>& a, const vec<T, K>& b) {
  return x86::of_bits<T, K>(x86::bits(a) ^ x86::bits(b));
}

// ---- bit_not
template <class T, int K>
inline vec<T, K> bit_not(const vec<T, K>& a) {
  return x86::of_bits<T, K>(~x86::bits(a));
}

// ---- shift_count
// The x86 shifts read the count from the low 64 bits of a register; 8-bit lanes also
// keep the masks of the bits that stay inside their byte.
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

// ---- shl
template <class T, int K>
inline vec<T, K> shl(const vec<T, K>& a, const shift_count<T, K>& n) {
  static_assert(std::is_integral_v<T>, "integer lanes");
  using O = x86::ops<K>;
  if constexpr (sizeof(T) == 1) return bit_and(vec<T, K>{O::sll16(a.raw, n.n)}, n.keep_left);
  else if constexpr (sizeof(T) == 2) return vec<T, K>{O::sll16(a.raw, n.n)};
  else if constexpr (sizeof(T) == 4) return vec<T, K>{O::sll32(a.raw, n.n)};
  else return vec<T, K>{O::sll64(a.raw, n.n)};
}

// ---- shr
// SSE has no arithmetic shift of 64-bit lanes: a negative lane is complemented, shifted
// with zeros coming in, and complemented back.
template <class T, int K>
inline vec<T, K> shr(const vec<T, K>& a, const shift_count<T, K>& n) {
  static_assert(std::is_integral_v<T>, "integer lanes");
  static_assert(sizeof(T) > 1 || std::is_unsigned_v<T>, "no signed 8-bit right shift yet");
  using O = x86::ops<K>;
  if constexpr (sizeof(T) == 1) return bit_and(vec<T, K>{O::srl16(a.raw, n.n)}, n.keep_right);
  else if constexpr (sizeof(T) == 2 && std::is_signed_v<T>) return vec<T, K>{O::sra16(a.raw, n.n)};
  else if constexpr (sizeof(T) == 2) return vec<T, K>{O::srl16(a.raw, n.n)};
  else if constexpr (sizeof(T) == 4 && std::is_signed_v<T>) return vec<T, K>{O::sra32(a.raw, n.n)};
  else if constexpr (sizeof(T) == 4) return vec<T, K>{O::srl32(a.raw, n.n)};
  else if constexpr (std::is_unsigned_v<T>) return vec<T, K>{O::srl64(a.raw, n.n)};
  else {
    const auto neg = O::cmpgt64(O::zero(), a.raw);
    return vec<T, K>{O::srl64(a.raw ^ neg, n.n) ^ neg};
  }
}

}  // namespace zivks::simd
