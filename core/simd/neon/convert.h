// NEON backend: conversions between integer and float lanes.
#pragma once

#include "core/rounding.h"
#include "core/simd/neon/base.h"

namespace zivks::simd {

// ---- cvt_to_float
template <class F, class I>
inline vec<F, 1> cvt_to_float(const vec<I, 1>& a) {
  vec<F, 1> r;
  if constexpr (std::is_same_v<I, int32_t>) r.raw = vcvtq_f32_s32(a.raw);
  else if constexpr (std::is_same_v<I, uint32_t>) r.raw = vcvtq_f32_u32(a.raw);
  else if constexpr (std::is_same_v<I, int64_t>) r.raw = vcvtq_f64_s64(a.raw);
  else static_assert(sizeof(I) == 0, "no such conversion");
  return r;
}

// ---- cvt_sat
template <class L, rounding::Mode m, class F>
inline vec<L, 1> cvt_sat(const vec<F, 1>& a) {
  using rounding::Mode;
  vec<L, 1> r;
  if constexpr (std::is_same_v<L, int32_t>) {
    if constexpr (m == Mode::kZero) r.raw = vcvtq_s32_f32(a.raw);
    else if constexpr (m == Mode::kNear) r.raw = vcvtnq_s32_f32(a.raw);
    else r.raw = vcvtaq_s32_f32(a.raw);
  } else if constexpr (std::is_same_v<L, uint32_t>) {
    if constexpr (m == Mode::kZero) r.raw = vcvtq_u32_f32(a.raw);
    else if constexpr (m == Mode::kNear) r.raw = vcvtnq_u32_f32(a.raw);
    else r.raw = vcvtaq_u32_f32(a.raw);
  } else if constexpr (std::is_same_v<L, int64_t>) {
    if constexpr (m == Mode::kZero) r.raw = vcvtq_s64_f64(a.raw);
    else if constexpr (m == Mode::kNear) r.raw = vcvtnq_s64_f64(a.raw);
    else r.raw = vcvtaq_s64_f64(a.raw);
  } else {
    static_assert(sizeof(L) == 0, "no such conversion");
  }
  return r;
}

// ---- float_widen_lo, float_widen_hi
inline vec<double, 1> float_widen_lo(const vec<float, 1>& a) { return {vcvt_f64_f32(vget_low_f32(a.raw))}; }
inline vec<double, 1> float_widen_hi(const vec<float, 1>& a) { return {vcvt_high_f64_f32(a.raw)}; }

// ---- float_narrow
inline vec<float, 1> float_narrow(const vec<double, 1>& a, const vec<double, 1>& b) {
  return {vcvt_high_f32_f64(vcvt_f32_f64(a.raw), b.raw)};
}

// ---- round_to_half
inline vec<float, 1> round_to_half(const vec<float, 1>& a) {
  return {vcvt_f32_f16(vcvt_f16_f32(a.raw))};
}

}  // namespace zivks::simd
