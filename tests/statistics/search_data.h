// Data for the search families: random vectors of three kinds, and the plain rules the
// results are checked against.
#pragma once

#include <math.h>

#include <algorithm>
#include <limits>

#include "support/zt.h"

namespace st {

template <class T>
inline constexpr bool kFloat = std::is_floating_point_v<T>;

template <class T>
inline bool is_nan(T x) {
  if constexpr (kFloat<T>) return std::isnan(x);
  else return false;
}

enum class Mix { kAny, kTies, kNoNaN, kFewNaN };
inline constexpr Mix kMixes[] = {Mix::kAny, Mix::kTies, Mix::kNoNaN, Mix::kFewNaN};

// The usual lengths and a few that span several of the chunks a long search works in.
inline std::vector<int> lengths() {
  std::vector<int> v = zt::test_lengths();
  for (int n : {1000, 2100, 4500}) v.push_back(n);
  return v;
}

// kAny: any values (floats with NaN, infinities, zeros of both signs, denormals);
// kTies: few distinct values, extremes and both zeros among them, so ties are common;
// kNoNaN: like kAny without NaN; kFewNaN: the same with a NaN or two, or none.
template <class T>
void fill(T* p, int n, zt::Rng& rng, Mix mix) {
  zt::fill_random(p, n, rng);
  using L = std::numeric_limits<T>;
  if (mix == Mix::kTies) {
    T pool[8];
    if constexpr (kFloat<T>) {
      const T v[8] = {T(-0.0), T(0), T(1), T(-1), T(2), L::infinity(), -L::infinity(), T(-2)};
      std::copy(v, v + 8, pool);
    } else {
      const T v[8] = {L::min(), T(L::min() + 1), T(0), T(1), T(2), T(L::max() - 1), L::max(), T(L::min() / 2 + L::max() / 2)};
      std::copy(v, v + 8, pool);
    }
    for (int i = 0; i < n; ++i) p[i] = pool[rng() % 8];
  } else if (mix == Mix::kNoNaN || mix == Mix::kFewNaN) {
    for (int i = 0; i < n; ++i)
      while (is_nan(p[i])) p[i] = zt::special_float<T>(rng);
    if constexpr (kFloat<T>)
      if (mix == Mix::kFewNaN)
        for (int k = static_cast<int>(rng() % 3); k > 0; --k) p[rng() % n] = std::numeric_limits<T>::quiet_NaN();
  }
}

// -0 below +0, no NaN.
template <class T>
inline bool total_less(T a, T b) {
  if constexpr (kFloat<T>) {
    if (a == 0 && b == 0) return std::signbit(a) && !std::signbit(b);
  }
  return a < b;
}

// A NaN-aware comparison of a result with what the rule expects: a NaN matches any
// NaN (the backends' agreement fixes its bits), anything else must match bit for bit.
template <class T>
inline ::testing::AssertionResult same(T got, T want) {
  if (is_nan(want) ? is_nan(got) : zt::same_bits(got, want)) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "got " << +got << ", want " << +want;
}

// The type's saturating absolute value.
template <class T>
inline T sat_abs(T x) {
  if constexpr (kFloat<T>) return std::fabs(x);
  else return x == std::numeric_limits<T>::min() ? std::numeric_limits<T>::max() : (x < 0 ? T(-x) : x);
}

}  // namespace st
