// Generic backend: minimum and maximum of lanes, and across the lanes of a vector.
#pragma once

#include "core/lane.h"
#include "core/simd/generic/base.h"

namespace zivks::simd {

// ---- max_propagating
// Returns the larger of a and b in each float lane, -0 below +0; a NaN operand gives the
// NaN of the rule (fmax).
template <class T, int K>
inline vec<T, K> max_propagating(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = lane::max_propagating(a.raw.v[i], b.raw.v[i]);
  return r;
}

// ---- min_propagating
// Returns the smaller of a and b in each float lane, -0 below +0; a NaN operand gives the
// NaN of the rule (fmin).
template <class T, int K>
inline vec<T, K> min_propagating(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = lane::min_propagating(a.raw.v[i], b.raw.v[i]);
  return r;
}

// ---- max_raw, min_raw
// Return the larger or the smaller of a and b in each float lane where the two are
// numbers and not both zeros; elsewhere the lane is unspecified, one of the operands or
// a NaN (fmax / fmin, for loops that test for NaN and zeros on their own).
template <class T, int K>
inline vec<T, K> max_raw(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = a.raw.v[i] > b.raw.v[i] ? a.raw.v[i] : b.raw.v[i];
  return r;
}
template <class T, int K>
inline vec<T, K> min_raw(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = a.raw.v[i] < b.raw.v[i] ? a.raw.v[i] : b.raw.v[i];
  return r;
}

// ---- max_numbers, min_numbers
// Return the larger or the smaller of a and b in each float lane, -0 below +0, where both
// are numbers; a lane with a NaN operand is unspecified (fmax / fmin, for loops that
// test their inputs with has_nan and take max_propagating when it says yes).
template <class T, int K>
inline vec<T, K> max_numbers(const vec<T, K>& a, const vec<T, K>& b) {
  return max_propagating(a, b);
}
template <class T, int K>
inline vec<T, K> min_numbers(const vec<T, K>& a, const vec<T, K>& b) {
  return min_propagating(a, b);
}

// ---- max
// Returns the larger of a and b in each integer lane (smax / umax).
template <class T, int K>
inline vec<T, K> max(const vec<T, K>& a, const vec<T, K>& b) {
  static_assert(std::is_integral_v<T>, "integer lanes");
  return max_raw(a, b);
}

// ---- min
// Returns the smaller of a and b in each integer lane (smin / umin).
template <class T, int K>
inline vec<T, K> min(const vec<T, K>& a, const vec<T, K>& b) {
  static_assert(std::is_integral_v<T>, "integer lanes");
  return min_raw(a, b);
}

namespace generic {
// Halves the lanes again and again, combining the lower half with the upper one, as
// the across-lanes reductions of the Arm unit do.
template <class T, class Op>
inline T reduce_halves(const T* v, int n, Op op) {
  if (n == 1) return v[0];
  return op(reduce_halves(v, n / 2, op), reduce_halves(v + n / 2, n / 2, op));
}
}  // namespace generic

// ---- reduce_max
// Returns the largest lane, float lanes compared as by max_propagating, lower half
// against upper half down to one lane (fmaxv / smaxv / umaxv).
template <class T>
inline T reduce_max(const vec<T, 1>& a) {
  return generic::reduce_halves(a.raw.v, vec<T, 1>::kLanes, [](T x, T y) {
    if constexpr (std::is_floating_point_v<T>) return lane::max_propagating(x, y);
    else return x > y ? x : y;
  });
}

// ---- reduce_min
// Returns the smallest lane, as reduce_max does the largest (fminv / sminv / uminv).
template <class T>
inline T reduce_min(const vec<T, 1>& a) {
  return generic::reduce_halves(a.raw.v, vec<T, 1>::kLanes, [](T x, T y) {
    if constexpr (std::is_floating_point_v<T>) return lane::min_propagating(x, y);
    else return x < y ? x : y;
  });
}

// How the extreme folds (statistics/folds.h) run here: on registers of kBlocks blocks,
// with kChains independent accumulators, and whether max_raw and min_raw keep a NaN once
// met (then a test of the accumulators at the end finds it, else every load is tested).
struct fold_tuning {
  static constexpr int kBlocks = 1;
  static constexpr int kChains = 1;
  static constexpr bool kRawKeepsNan = false;
};

}  // namespace zivks::simd
