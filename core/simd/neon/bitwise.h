// NEON backend: bitwise lane operations and shifts by a broadcast count.
#pragma once

namespace zivks::simd {

namespace neon {

// The signed lane type of the same width: ushl and sshl take their counts as such.
template <class T> struct count_lane { using type = std::make_signed_t<T>; };

inline uint8x16_t and_(uint8x16_t a, uint8x16_t b) { return vandq_u8(a, b); }
inline uint16x8_t and_(uint16x8_t a, uint16x8_t b) { return vandq_u16(a, b); }
inline uint32x4_t and_(uint32x4_t a, uint32x4_t b) { return vandq_u32(a, b); }
inline int8x16_t and_(int8x16_t a, int8x16_t b) { return vandq_s8(a, b); }
inline int16x8_t and_(int16x8_t a, int16x8_t b) { return vandq_s16(a, b); }
inline int32x4_t and_(int32x4_t a, int32x4_t b) { return vandq_s32(a, b); }

inline uint8x16_t orr(uint8x16_t a, uint8x16_t b) { return vorrq_u8(a, b); }
inline uint16x8_t orr(uint16x8_t a, uint16x8_t b) { return vorrq_u16(a, b); }
inline uint32x4_t orr(uint32x4_t a, uint32x4_t b) { return vorrq_u32(a, b); }
inline int8x16_t orr(int8x16_t a, int8x16_t b) { return vorrq_s8(a, b); }
inline int16x8_t orr(int16x8_t a, int16x8_t b) { return vorrq_s16(a, b); }
inline int32x4_t orr(int32x4_t a, int32x4_t b) { return vorrq_s32(a, b); }

inline uint8x16_t eor(uint8x16_t a, uint8x16_t b) { return veorq_u8(a, b); }
inline uint16x8_t eor(uint16x8_t a, uint16x8_t b) { return veorq_u16(a, b); }
inline uint32x4_t eor(uint32x4_t a, uint32x4_t b) { return veorq_u32(a, b); }
inline int8x16_t eor(int8x16_t a, int8x16_t b) { return veorq_s8(a, b); }
inline int16x8_t eor(int16x8_t a, int16x8_t b) { return veorq_s16(a, b); }
inline int32x4_t eor(int32x4_t a, int32x4_t b) { return veorq_s32(a, b); }

inline uint8x16_t mvn(uint8x16_t a) { return vmvnq_u8(a); }
inline uint16x8_t mvn(uint16x8_t a) { return vmvnq_u16(a); }
inline uint32x4_t mvn(uint32x4_t a) { return vmvnq_u32(a); }
inline int8x16_t mvn(int8x16_t a) { return vmvnq_s8(a); }
inline int16x8_t mvn(int16x8_t a) { return vmvnq_s16(a); }
inline int32x4_t mvn(int32x4_t a) { return vmvnq_s32(a); }

inline int8x16_t dup_count(int8_t, int s) { return vdupq_n_s8(static_cast<int8_t>(s)); }
inline int16x8_t dup_count(int16_t, int s) { return vdupq_n_s16(static_cast<int16_t>(s)); }
inline int32x4_t dup_count(int32_t, int s) { return vdupq_n_s32(s); }

inline uint8x16_t shl(uint8x16_t a, int8x16_t n) { return vshlq_u8(a, n); }
inline uint16x8_t shl(uint16x8_t a, int16x8_t n) { return vshlq_u16(a, n); }
inline uint32x4_t shl(uint32x4_t a, int32x4_t n) { return vshlq_u32(a, n); }
inline int8x16_t shl(int8x16_t a, int8x16_t n) { return vshlq_s8(a, n); }
inline int16x8_t shl(int16x8_t a, int16x8_t n) { return vshlq_s16(a, n); }
inline int32x4_t shl(int32x4_t a, int32x4_t n) { return vshlq_s32(a, n); }

}  // namespace neon

// and
template <class T, int K>
inline vec<T, K> bit_and(const vec<T, K>& a, const vec<T, K>& b) {
  return vec<T, K>{neon::and_(a.r, b.r)};
}

// orr
template <class T, int K>
inline vec<T, K> bit_or(const vec<T, K>& a, const vec<T, K>& b) {
  return vec<T, K>{neon::orr(a.r, b.r)};
}

// eor
template <class T, int K>
inline vec<T, K> bit_xor(const vec<T, K>& a, const vec<T, K>& b) {
  return vec<T, K>{neon::eor(a.r, b.r)};
}

// mvn
template <class T, int K>
inline vec<T, K> bit_not(const vec<T, K>& a) {
  return vec<T, K>{neon::mvn(a.r)};
}

// A shift count from 0 to the lane width less one, broadcast once for a loop of shl
// and shr (dup); a right shift is ushl / sshl by the negated count.
template <class T, int K>
struct shift_count {
  using C = typename neon::count_lane<T>::type;
  decltype(neon::dup_count(C{}, 0)) left, right;
  explicit shift_count(int s) : left(neon::dup_count(C{}, s)), right(neon::dup_count(C{}, -s)) {}
};

// ushl / sshl by a broadcast count: the low bits of each lane move up and the high bits
// are lost; a signed lane wraps.
template <class T, int K>
inline vec<T, K> shl(const vec<T, K>& a, const shift_count<T, K>& n) {
  return vec<T, K>{neon::shl(a.r, n.left)};
}

// ushl / sshl by the negated broadcast count: zeros come in for unsigned lanes, copies
// of the sign bit for signed ones.
template <class T, int K>
inline vec<T, K> shr(const vec<T, K>& a, const shift_count<T, K>& n) {
  return vec<T, K>{neon::shl(a.r, n.right)};
}

}  // namespace zivks::simd
