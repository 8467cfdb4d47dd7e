// NEON backend: lane compares and the bitwise select.
#pragma once

#include "core/simd/neon/bitwise.h"

namespace zivks::simd {

namespace neon {

inline uint32x4_t ceq(float32x4_t a, float32x4_t b) { return vceqq_f32(a, b); }
inline uint64x2_t ceq(float64x2_t a, float64x2_t b) { return vceqq_f64(a, b); }
inline uint8x16_t ceq(uint8x16_t a, uint8x16_t b) { return vceqq_u8(a, b); }
inline uint16x8_t ceq(uint16x8_t a, uint16x8_t b) { return vceqq_u16(a, b); }
inline uint32x4_t ceq(uint32x4_t a, uint32x4_t b) { return vceqq_u32(a, b); }
inline uint8x16_t ceq(int8x16_t a, int8x16_t b) { return vceqq_s8(a, b); }
inline uint16x8_t ceq(int16x8_t a, int16x8_t b) { return vceqq_s16(a, b); }
inline uint32x4_t ceq(int32x4_t a, int32x4_t b) { return vceqq_s32(a, b); }
inline uint64x2_t ceq(int64x2_t a, int64x2_t b) { return vceqq_s64(a, b); }
inline uint64x2_t ceq(uint64x2_t a, uint64x2_t b) { return vceqq_u64(a, b); }

inline uint32x4_t cgt(float32x4_t a, float32x4_t b) { return vcgtq_f32(a, b); }
inline uint64x2_t cgt(float64x2_t a, float64x2_t b) { return vcgtq_f64(a, b); }
inline uint8x16_t cgt(uint8x16_t a, uint8x16_t b) { return vcgtq_u8(a, b); }
inline uint16x8_t cgt(uint16x8_t a, uint16x8_t b) { return vcgtq_u16(a, b); }
inline uint32x4_t cgt(uint32x4_t a, uint32x4_t b) { return vcgtq_u32(a, b); }
inline uint8x16_t cgt(int8x16_t a, int8x16_t b) { return vcgtq_s8(a, b); }
inline uint16x8_t cgt(int16x8_t a, int16x8_t b) { return vcgtq_s16(a, b); }
inline uint32x4_t cgt(int32x4_t a, int32x4_t b) { return vcgtq_s32(a, b); }
inline uint64x2_t cgt(int64x2_t a, int64x2_t b) { return vcgtq_s64(a, b); }
inline uint64x2_t cgt(uint64x2_t a, uint64x2_t b) { return vcgtq_u64(a, b); }

}  // namespace neon

// ---- cmp_eq
template <class T, int K>
inline vec<T, K> cmp_eq(const vec<T, K>& a, const vec<T, K>& b) {
  return neon::of_bytes<T, K>(neon::to_bytes(neon::ceq(a.raw, b.raw)));
}

// ---- cmp_gt
template <class T, int K>
inline vec<T, K> cmp_gt(const vec<T, K>& a, const vec<T, K>& b) {
  return neon::of_bytes<T, K>(neon::to_bytes(neon::cgt(a.raw, b.raw)));
}

// ---- cmp_lt
template <class T, int K>
inline vec<T, K> cmp_lt(const vec<T, K>& a, const vec<T, K>& b) {
  return cmp_gt(b, a);
}

// ---- select
template <class T, int K>
inline vec<T, K> select(const vec<T, K>& m, const vec<T, K>& a, const vec<T, K>& b) {
  return neon::of_bytes<T, K>(vbslq_u8(neon::bytes(m), neon::bytes(a), neon::bytes(b)));
}

// ---- any_true
template <class T, int K>
inline bool any_true(const vec<T, K>& m) {
  return vmaxvq_u32(vreinterpretq_u32_u8(neon::bytes(m))) != 0;
}

// ---- zero_flag_mask
template <class V>
inline V zero_flag_mask(const int8_t* flags) {
  static_assert(sizeof(typename V::lane) == 4, "masks of 32-bit lanes");
  uint32_t w;
  memcpy(&w, flags, sizeof w);
  const int32x4_t f = vmovl_s16(vget_low_s16(vmovl_s8(vreinterpret_s8_u32(vdup_n_u32(w)))));
  return neon::of_bytes<typename V::lane, V::kBlocks>(vreinterpretq_u8_u32(vceqq_s32(f, vdupq_n_s32(0))));
}

// ---- lane_bits
template <class T, int K>
inline uint32_t lane_bits(const vec<T, K>& m) {
  static_assert(sizeof(T) == 4, "masks of 32-bit lanes");
  static const uint32_t kLaneBit[4] = {1, 2, 4, 8};
  return vaddvq_u32(vandq_u32(vreinterpretq_u32_u8(neon::bytes(m)), vld1q_u32(kLaneBit)));
}

}  // namespace zivks::simd
