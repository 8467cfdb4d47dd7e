// Generic backend: conversions between integer and float lanes, and the float multiply.
#pragma once

#include "core/fp.h"
#include "core/scale.h"

namespace zivks::simd {

// Integer lanes to float lanes of the same width, rounded to nearest (scvtf / ucvtf).
template <class F, class I>
inline vec<F, 1> cvt_to_float(const vec<I, 1>& a) {
  static_assert(sizeof(F) == sizeof(I), "same lane width");
  vec<F, 1> r;
  for (int i = 0; i < vec<F, 1>::kLanes; ++i) r.r.v[i] = static_cast<F>(a.r.v[i]);
  return r;
}

// fmul
template <class F>
inline vec<F, 1> mul(const vec<F, 1>& a, const vec<F, 1>& b) {
  vec<F, 1> r;
  for (int i = 0; i < vec<F, 1>::kLanes; ++i) r.r.v[i] = fp::mul(a.r.v[i], b.r.v[i]);
  return r;
}

// fmul for a product that is converted to an integer next, where every NaN becomes 0:
// which NaN comes out does not matter, so no NaN rule is applied.
template <class F>
inline vec<F, 1> mul_to_convert(const vec<F, 1>& a, const vec<F, 1>& b) {
  vec<F, 1> r;
  for (int i = 0; i < vec<F, 1>::kLanes; ++i) r.r.v[i] = a.r.v[i] * b.r.v[i];
  return r;
}

// Float lanes rounded by m to integer lanes L of the same width, saturating at L's
// bounds, NaN giving 0 (fcvtzs / fcvtns / fcvtas, fcvtzu / fcvtnu / fcvtau).
template <class L, rounding::Mode m, class F>
inline vec<L, 1> cvt_sat(const vec<F, 1>& a) {
  static_assert(sizeof(F) == sizeof(L), "same lane width");
  vec<L, 1> r;
  for (int i = 0; i < vec<F, 1>::kLanes; ++i) r.r.v[i] = rounding::cvt_sat<L, m>(a.r.v[i]);
  return r;
}

}  // namespace zivks::simd
