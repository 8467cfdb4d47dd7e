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

// ---- float_widen_lo, float_widen_hi
// Return the low or the high half of the float32 lanes as float64, exact; a NaN keeps
// its sign and the top of its payload, made quiet (fcvtl, fcvtl2).
template <int K>
inline vec<double, K> float_widen_lo(const vec<float, K>& a) {
  vec<double, K> r;
  for (int i = 0; i < vec<double, K>::kLanes; ++i) r.raw.v[i] = static_cast<double>(a.raw.v[i]);
  return r;
}
template <int K>
inline vec<double, K> float_widen_hi(const vec<float, K>& a) {
  vec<double, K> r;
  constexpr int n = vec<double, K>::kLanes;
  for (int i = 0; i < n; ++i) r.raw.v[i] = static_cast<double>(a.raw.v[n + i]);
  return r;
}

// ---- float_narrow
// Returns the float64 lanes of a, then those of b, rounded to the nearest float32 (a tie
// to even; beyond the range an infinity; a NaN keeps its sign and the top of its payload,
// made quiet) (fcvtn, fcvtn2).
template <int K>
inline vec<float, K> float_narrow(const vec<double, K>& a, const vec<double, K>& b) {
  vec<float, K> r;
  constexpr int n = vec<double, K>::kLanes;
  for (int i = 0; i < n; ++i) {
    r.raw.v[i] = static_cast<float>(a.raw.v[i]);
    r.raw.v[n + i] = static_cast<float>(b.raw.v[i]);
  }
  return r;
}

// ---- round_to_half
// Returns the float32 lanes rounded to the nearest half-precision value, a tie to the
// even one, as float32 lanes: from 65520 up an infinity, below 2^-14 a multiple of 2^-24;
// a NaN made quiet keeps the top 10 bits of its payload (fcvtn to half, fcvtl back).
template <int K>
inline vec<float, K> round_to_half(const vec<float, K>& a) {
  vec<float, K> r;
  for (int i = 0; i < vec<float, K>::kLanes; ++i) r.raw.v[i] = rounding::to_half(a.raw.v[i]);
  return r;
}

}  // namespace zivks::simd
