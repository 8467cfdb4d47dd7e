// NEON backend: bitwise lane operations and shifts by a broadcast count. The bitwise
// operations work on the bytes, whatever the lane type.
#pragma once

#include "core/simd/neon/base.h"

namespace zivks::simd {

namespace neon {

// The signed lane type of the same width: ushl and sshl take their counts as such.
template <class T> struct count_lane { using type = std::make_signed_t<T>; };

inline int8x16_t dup_count(int8_t, int s) { return vdupq_n_s8(static_cast<int8_t>(s)); }
inline int16x8_t dup_count(int16_t, int s) { return vdupq_n_s16(static_cast<int16_t>(s)); }
inline int32x4_t dup_count(int32_t, int s) { return vdupq_n_s32(s); }
inline int64x2_t dup_count(int64_t, int s) { return vdupq_n_s64(s); }

inline uint8x16_t shl(uint8x16_t a, int8x16_t n) { return vshlq_u8(a, n); }
inline uint16x8_t shl(uint16x8_t a, int16x8_t n) { return vshlq_u16(a, n); }
inline uint32x4_t shl(uint32x4_t a, int32x4_t n) { return vshlq_u32(a, n); }
inline uint64x2_t shl(uint64x2_t a, int64x2_t n) { return vshlq_u64(a, n); }
inline int8x16_t shl(int8x16_t a, int8x16_t n) { return vshlq_s8(a, n); }
inline int16x8_t shl(int16x8_t a, int16x8_t n) { return vshlq_s16(a, n); }
inline int32x4_t shl(int32x4_t a, int32x4_t n) { return vshlq_s32(a, n); }
inline int64x2_t shl(int64x2_t a, int64x2_t n) { return vshlq_s64(a, n); }

}  // namespace neon

// ---- bit_and
template <class T, int K>
inline vec<T, K> bit_and(const vec<T, K>& a, const vec<T, K>& b) {
  return neon::of_bytes<T, K>(vandq_u8(neon::bytes(a), neon::bytes(b)));
}

// ---- bit_or
template <class T, int K>
inline vec<T, K> bit_or(const vec<T, K>& a, const vec<T, K>& b) {
  return neon::of_bytes<T, K>(vorrq_u8(neon::bytes(a), neon::bytes(b)));
}

// ---- bit_xor
template <class T, int K>
inline vec<T, K> bit_xor(const vec<T, K>& a, const vec<T, K>& b) {
  return neon::of_bytes<T, K>(veorq_u8(neon::bytes(a), neon::bytes(b)));
}

// ---- bit_not
template <class T, int K>
inline vec<T, K> bit_not(const vec<T, K>& a) {
  return neon::of_bytes<T, K>(vmvnq_u8(neon::bytes(a)));
}

// ---- shift_count
// Both counts kept: a right shift is ushl / sshl by the negated count.
template <class T, int K>
struct shift_count {
  using C = typename neon::count_lane<T>::type;
  decltype(neon::dup_count(C{}, 0)) left, right;
  explicit shift_count(int s) : left(neon::dup_count(C{}, s)), right(neon::dup_count(C{}, -s)) {}
};

// ---- shl
template <class T, int K>
inline vec<T, K> shl(const vec<T, K>& a, const shift_count<T, K>& n) {
  return vec<T, K>{neon::shl(a.raw, n.left)};
}

// ---- shr
template <class T, int K>
inline vec<T, K> shr(const vec<T, K>& a, const shift_count<T, K>& n) {
  return vec<T, K>{neon::shl(a.raw, n.right)};
}

}  // namespace zivks::simd
