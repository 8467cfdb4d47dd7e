// Generic backend: float lane arithmetic, one IEEE operation per lane with the NaN of the
// library's rule (see core/fp.h).
#pragma once

#include "core/fp.h"
#include "core/lane.h"
#include "core/simd/generic/base.h"

namespace zivks::simd {

// ---- add
// Returns a + b in each lane, rounded to nearest even; a NaN result is the NaN of the
// rule (fadd).
template <class T, int K>
inline vec<T, K> add(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = fp::add(a.raw.v[i], b.raw.v[i]);
  return r;
}

// ---- sub
// Returns a - b in each lane, rounded to nearest even; a NaN result is the NaN of the
// rule (fsub).
template <class T, int K>
inline vec<T, K> sub(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = fp::sub(a.raw.v[i], b.raw.v[i]);
  return r;
}

// ---- mul
// Returns a * b in each lane, rounded to nearest even; a NaN result is the NaN of the
// rule (fmul).
template <class T, int K>
inline vec<T, K> mul(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = fp::mul(a.raw.v[i], b.raw.v[i]);
  return r;
}

// ---- add_raw, sub_raw, mul_raw
// Return a + b, a - b, a * b as add and sub do, except that a NaN lane holds some NaN,
// not necessarily the rule's (fadd, fsub, fmul). A caller either tests the results with
// any_nan and does them again with add or sub, or has no use for the NaN (a conversion
// to integers makes every NaN 0). Here the lanes already hold the rule's NaN.
template <class T, int K>
inline vec<T, K> add_raw(const vec<T, K>& a, const vec<T, K>& b) { return add(a, b); }
template <class T, int K>
inline vec<T, K> sub_raw(const vec<T, K>& a, const vec<T, K>& b) { return sub(a, b); }
template <class T, int K>
inline vec<T, K> mul_raw(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = fp::mul(a.raw.v[i], b.raw.v[i]);
  return r;
}

// ---- mul_add
// Returns a * b + c in each lane with one rounding; a NaN result is the NaN of the rule
// for fused operations (fmla).
template <class T, int K>
inline vec<T, K> mul_add(const vec<T, K>& a, const vec<T, K>& b, const vec<T, K>& c) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = fp::mul_add(a.raw.v[i], b.raw.v[i], c.raw.v[i]);
  return r;
}

// ---- mul_add_raw
// Returns mul_add except that a NaN lane holds some NaN (fmla), for callers that test
// with any_nan and redo with mul_add. Here the lanes already hold the rule's NaN.
template <class T, int K>
inline vec<T, K> mul_add_raw(const vec<T, K>& a, const vec<T, K>& b, const vec<T, K>& c) {
  return mul_add(a, b, c);
}

// ---- any_nan
// Returns whether a raw result needs its NaN lanes chosen again: here never, as the raw
// operations already follow the rule.
template <class T, int K, class... Rest>
inline bool any_nan(const vec<T, K>&, const Rest&...) { return false; }

// ---- has_nan
// Returns whether any lane of the vectors is NaN, never for integer lanes (fcmeq of each
// with itself, then uminv).
template <class T, int K, class... Rest>
inline bool has_nan(const vec<T, K>& v0, const Rest&... rest) {
  if constexpr (!std::is_floating_point_v<T>) return false;
  for (const T x : v0.raw.v)
    if (x != x) return true;
  if constexpr (sizeof...(Rest) == 0) return false;
  else return has_nan(rest...);
}

// ---- clear_sign
// Returns a with the sign bit of every lane cleared; a NaN keeps its payload (fabs).
template <class T, int K>
inline vec<T, K> clear_sign(const vec<T, K>& a) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = lane::clear_sign(a.raw.v[i]);
  return r;
}

// ---- reduce_add_pairwise
// Returns (l0 + l1) + (l2 + l3) of the four float lanes, each sum by the NaN rule
// (faddp, faddp).
inline float reduce_add_pairwise(const vec<float, 1>& a) {
  const float* v = a.raw.v;
  return fp::add(fp::add(v[0], v[1]), fp::add(v[2], v[3]));
}

}  // namespace zivks::simd
