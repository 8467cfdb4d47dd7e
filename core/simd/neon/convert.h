// NEON backend: conversions between integer and float lanes, and the float multiply.
#pragma once

#include "core/scale.h"

namespace zivks::simd {

// scvtf / ucvtf
template <class F, class I>
inline vec<F, 1> cvt_to_float(const vec<I, 1>& a) {
  vec<F, 1> r;
  if constexpr (std::is_same_v<I, int32_t>) r.r = vcvtq_f32_s32(a.r);
  else if constexpr (std::is_same_v<I, uint32_t>) r.r = vcvtq_f32_u32(a.r);
  else if constexpr (std::is_same_v<I, int64_t>) r.r = vcvtq_f64_s64(a.r);
  else static_assert(sizeof(I) == 0, "no such conversion");
  return r;
}

// fmul; the compiler may swap its operands, so a NaN result is chosen again.
template <class F>
inline vec<F, 1> mul(const vec<F, 1>& a, const vec<F, 1>& b) {
  vec<F, 1> r;
  if constexpr (std::is_same_v<F, float>) r.r = vmulq_f32(a.r, b.r);
  else r.r = vmulq_f64(a.r, b.r);
  return __builtin_expect(neon::any_nan(r.r), 0) ? rebuild_nans(r, a, b) : r;
}

// fmul for a product that is converted to an integer next (every NaN becomes 0, so
// which NaN comes out does not matter).
template <class F>
inline vec<F, 1> mul_to_convert(const vec<F, 1>& a, const vec<F, 1>& b) {
  vec<F, 1> r;
  if constexpr (std::is_same_v<F, float>) r.r = vmulq_f32(a.r, b.r);
  else r.r = vmulq_f64(a.r, b.r);
  return r;
}

// fcvtzs / fcvtns / fcvtas and the unsigned fcvtzu / fcvtnu / fcvtau.
template <class L, rounding::Mode m, class F>
inline vec<L, 1> cvt_sat(const vec<F, 1>& a) {
  using rounding::Mode;
  vec<L, 1> r;
  if constexpr (std::is_same_v<L, int32_t>) {
    if constexpr (m == Mode::kZero) r.r = vcvtq_s32_f32(a.r);
    else if constexpr (m == Mode::kNear) r.r = vcvtnq_s32_f32(a.r);
    else r.r = vcvtaq_s32_f32(a.r);
  } else if constexpr (std::is_same_v<L, uint32_t>) {
    if constexpr (m == Mode::kZero) r.r = vcvtq_u32_f32(a.r);
    else if constexpr (m == Mode::kNear) r.r = vcvtnq_u32_f32(a.r);
    else r.r = vcvtaq_u32_f32(a.r);
  } else if constexpr (std::is_same_v<L, int64_t>) {
    if constexpr (m == Mode::kZero) r.r = vcvtq_s64_f64(a.r);
    else if constexpr (m == Mode::kNear) r.r = vcvtnq_s64_f64(a.r);
    else r.r = vcvtaq_s64_f64(a.r);
  } else {
    static_assert(sizeof(L) == 0, "no such conversion");
  }
  return r;
}

}  // namespace zivks::simd
