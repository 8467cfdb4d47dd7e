// NEON backend: minimum and maximum of lanes, and across the lanes of a vector. The
// compiler may swap the operands of fmax and fmin, so a NaN result has its payload
// chosen again by the operand order the family meant.
#pragma once

#include "core/simd/nan_rule.h"
#include "core/simd/neon/float_arith.h"

namespace zivks::simd {

namespace neon {
inline float32x4_t fmax(float32x4_t a, float32x4_t b) { return vmaxq_f32(a, b); }
inline float64x2_t fmax(float64x2_t a, float64x2_t b) { return vmaxq_f64(a, b); }
inline float32x4_t fmin(float32x4_t a, float32x4_t b) { return vminq_f32(a, b); }
inline float64x2_t fmin(float64x2_t a, float64x2_t b) { return vminq_f64(a, b); }

inline uint8x16_t imax(uint8x16_t a, uint8x16_t b) { return vmaxq_u8(a, b); }
inline uint16x8_t imax(uint16x8_t a, uint16x8_t b) { return vmaxq_u16(a, b); }
inline uint32x4_t imax(uint32x4_t a, uint32x4_t b) { return vmaxq_u32(a, b); }
inline int16x8_t imax(int16x8_t a, int16x8_t b) { return vmaxq_s16(a, b); }
inline int32x4_t imax(int32x4_t a, int32x4_t b) { return vmaxq_s32(a, b); }
inline uint8x16_t imin(uint8x16_t a, uint8x16_t b) { return vminq_u8(a, b); }
inline uint16x8_t imin(uint16x8_t a, uint16x8_t b) { return vminq_u16(a, b); }
inline uint32x4_t imin(uint32x4_t a, uint32x4_t b) { return vminq_u32(a, b); }
inline int16x8_t imin(int16x8_t a, int16x8_t b) { return vminq_s16(a, b); }
inline int32x4_t imin(int32x4_t a, int32x4_t b) { return vminq_s32(a, b); }

inline uint8_t reduce_imax(uint8x16_t a) { return vmaxvq_u8(a); }
inline uint16_t reduce_imax(uint16x8_t a) { return vmaxvq_u16(a); }
inline uint32_t reduce_imax(uint32x4_t a) { return vmaxvq_u32(a); }
inline int16_t reduce_imax(int16x8_t a) { return vmaxvq_s16(a); }
inline int32_t reduce_imax(int32x4_t a) { return vmaxvq_s32(a); }
inline uint8_t reduce_imin(uint8x16_t a) { return vminvq_u8(a); }
inline uint16_t reduce_imin(uint16x8_t a) { return vminvq_u16(a); }
inline uint32_t reduce_imin(uint32x4_t a) { return vminvq_u32(a); }
inline int16_t reduce_imin(int16x8_t a) { return vminvq_s16(a); }
inline int32_t reduce_imin(int32x4_t a) { return vminvq_s32(a); }
}  // namespace neon

// ---- max_propagating
template <class T, int K>
inline vec<T, K> max_propagating(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r{neon::fmax(a.raw, b.raw)};
  return __builtin_expect(neon::any_nan(r.raw), 0) ? rebuild_nans(r, a, b) : r;
}

// ---- min_propagating
template <class T, int K>
inline vec<T, K> min_propagating(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r{neon::fmin(a.raw, b.raw)};
  return __builtin_expect(neon::any_nan(r.raw), 0) ? rebuild_nans(r, a, b) : r;
}

// ---- max_raw, min_raw
// fmax and fmin as they come: a NaN lane holds some NaN.
template <class T, int K>
inline vec<T, K> max_raw(const vec<T, K>& a, const vec<T, K>& b) {
  return {neon::fmax(a.raw, b.raw)};
}
template <class T, int K>
inline vec<T, K> min_raw(const vec<T, K>& a, const vec<T, K>& b) {
  return {neon::fmin(a.raw, b.raw)};
}

// ---- max_numbers, min_numbers
// fmax and fmin order the zeros already.
template <class T, int K>
inline vec<T, K> max_numbers(const vec<T, K>& a, const vec<T, K>& b) {
  return max_raw(a, b);
}
template <class T, int K>
inline vec<T, K> min_numbers(const vec<T, K>& a, const vec<T, K>& b) {
  return min_raw(a, b);
}

// ---- max
template <class T, int K>
inline vec<T, K> max(const vec<T, K>& a, const vec<T, K>& b) {
  return {neon::imax(a.raw, b.raw)};
}

// ---- min
template <class T, int K>
inline vec<T, K> min(const vec<T, K>& a, const vec<T, K>& b) {
  return {neon::imin(a.raw, b.raw)};
}

// ---- reduce_max
// The float forms take the lanes in halves, lower against upper,
// with the NaN of the rule at each step.
template <class T>
inline T reduce_max(const vec<T, 1>& a) {
  if constexpr (std::is_same_v<T, float>) {
    const float m = vmaxvq_f32(a.raw);  // without NaN the result cannot depend on the order
    if (__builtin_expect(m == m, 1)) return m;
    const float32x2_t lo = vget_low_f32(a.raw), hi = vget_high_f32(a.raw);
    const vec<T, 1> p = max_propagating(vec<T, 1>{vcombine_f32(vdup_lane_f32(lo, 0), vdup_lane_f32(hi, 0))},
                                        vec<T, 1>{vcombine_f32(vdup_lane_f32(lo, 1), vdup_lane_f32(hi, 1))});
    const vec<T, 1> q = max_propagating(p, vec<T, 1>{vextq_f32(p.raw, p.raw, 2)});
    return vgetq_lane_f32(q.raw, 0);
  } else if constexpr (std::is_same_v<T, double>) {
    return vgetq_lane_f64(max_propagating(a, vec<T, 1>{vextq_f64(a.raw, a.raw, 1)}).raw, 0);
  } else {
    return neon::reduce_imax(a.raw);
  }
}

// ---- reduce_min
template <class T>
inline T reduce_min(const vec<T, 1>& a) {
  if constexpr (std::is_same_v<T, float>) {
    const float m = vminvq_f32(a.raw);  // without NaN the result cannot depend on the order
    if (__builtin_expect(m == m, 1)) return m;
    const float32x2_t lo = vget_low_f32(a.raw), hi = vget_high_f32(a.raw);
    const vec<T, 1> p = min_propagating(vec<T, 1>{vcombine_f32(vdup_lane_f32(lo, 0), vdup_lane_f32(hi, 0))},
                                        vec<T, 1>{vcombine_f32(vdup_lane_f32(lo, 1), vdup_lane_f32(hi, 1))});
    const vec<T, 1> q = min_propagating(p, vec<T, 1>{vextq_f32(p.raw, p.raw, 2)});
    return vgetq_lane_f32(q.raw, 0);
  } else if constexpr (std::is_same_v<T, double>) {
    return vgetq_lane_f64(min_propagating(a, vec<T, 1>{vextq_f64(a.raw, a.raw, 1)}).raw, 0);
  } else {
    return neon::reduce_imin(a.raw);
  }
}

// ---- fold_tuning
// One register and one chain; fmax and fmin keep a NaN once met, so one test of the
// accumulators at the end finds it.
struct fold_tuning {
  static constexpr int kBlocks = 1;
  static constexpr int kChains = 1;
  static constexpr bool kRawKeepsNan = true;
};

}  // namespace zivks::simd
