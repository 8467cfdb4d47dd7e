// What the extreme-value families share: the block operation and the strict scalar test
// for each direction, and the absolute values they compare.
#pragma once

#include <limits>
#include <type_traits>

#include "core/frame.h"
#include "core/lane.h"
#include "core/ops.h"
#include "statistics/folds.h"

namespace zivks::extremes {

template <class T>
inline constexpr bool kFloat = std::is_floating_point_v<T>;

// 128-bit vectors of T and the lanes each holds.
template <class T>
using V = simd::vec<T, 1>;
template <class T>
inline constexpr int kLanes = V<T>::kLanes;

// A block of the extreme-value searches: two vectors.
template <class T>
inline constexpr int kBlock = 2 * kLanes<T>;

// The block operation: float lanes propagate NaN and order -0 below +0.
template <MaxMin d, class T>
inline V<T> pick(const V<T>& a, const V<T>& b) {
  if constexpr (kFloat<T>) return d == MaxMin::kMax ? simd::max_propagating(a, b) : simd::min_propagating(a, b);
  else return d == MaxMin::kMax ? simd::max(a, b) : simd::min(a, b);
}

template <MaxMin d, class T>
inline T reduce(const V<T>& a) {
  return d == MaxMin::kMax ? simd::reduce_max(a) : simd::reduce_min(a);
}

// The scalar test: strictly beyond the running value, so a NaN on either side fails and
// -0 and +0 tie.
template <MaxMin d, class T>
inline bool beats(T x, T best) {
  return d == MaxMin::kMax ? x > best : x < best;
}

// Absolute values: floats lose the sign bit (NaN too), integers saturate.
template <class T>
inline T abs_scalar(T x) {
  if constexpr (kFloat<T>) return lane::clear_sign(x);
  else return lane::abs_sat(x);
}

// Element views: the value as it stands, or its absolute value.
struct Plain {
  template <class T> static T scalar(T x) { return x; }
  template <class T> static V<T> block(const V<T>& v) { return v; }
};
struct Abs {
  template <class T> static T scalar(T x) { return abs_scalar(x); }
  template <class T> static V<T> block(const V<T>& v) { return abs_block(v); }
};

// The vector layer's fold of direction d over the elements seen through View.
template <MaxMin d, class View>
inline constexpr Fold kFold =
    std::is_same_v<View, Abs> ? (d == MaxMin::kMax ? Fold::kMaxAbs : Fold::kMinAbs)
                              : (d == MaxMin::kMax ? Fold::kMax : Fold::kMin);

}  // namespace zivks::extremes
