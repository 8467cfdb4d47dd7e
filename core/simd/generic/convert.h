// Generic backend: conversions between integer and float lanes of the same width.
#pragma once

#include "core/rounding.h"
#include "core/simd/generic/base.h"

namespace zivks::simd {

// ---- cvt_to_float
// Returns the integer lanes as float lanes F of the same width, rounded to nearest even
// (scvtf / ucvtf).
template <class F, class I, int K>
inline vec<F, K> cvt_to_float(const vec<I, K>& a) {
  static_assert(sizeof(F) == sizeof(I), "same lane width");
  vec<F, K> r;
  for (int i = 0; i < vec<F, K>::kLanes; ++i) r.raw.v[i] = static_cast<F>(a.raw.v[i]);
  return r;
}

// ---- cvt_sat
// Returns the float lanes rounded by m to integer lanes L of the same width, saturating
// at L's bounds; a NaN gives 0 (fcvtzs / fcvtns / fcvtas, fcvtzu / fcvtnu / fcvtau).
template <class L, rounding::Mode m, class F, int K>
inline vec<L, K> cvt_sat(const vec<F, K>& a) {
  static_assert(sizeof(F) == sizeof(L), "same lane width");
  vec<L, K> r;
  for (int i = 0; i < vec<F, K>::kLanes; ++i) r.raw.v[i] = rounding::cvt_sat<L, m>(a.raw.v[i]);
  return r;
}

}  // namespace zivks::simd
