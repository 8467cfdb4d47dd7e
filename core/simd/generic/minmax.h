// Generic backend: minimum, maximum, absolute values, reductions, compares and the
// per-lane counts of the search families. The lane rules here are the definition the
// other backends reproduce.
#pragma once

#include <limits>

#include "core/fp.h"

namespace zivks::simd {

namespace lane {

// A NaN operand gives the NaN of the library's rule; otherwise the larger, with -0
// below +0.
template <class F>
inline F max_propagating(F a, F b) {
  if (fp::is_nan(a) || fp::is_nan(b)) return fp::nan_of(a, b);
  if (a == b) return fp::from_bits<F>(fp::to_bits(a) & fp::to_bits(b));  // +0 over -0
  return a > b ? a : b;
}

template <class F>
inline F min_propagating(F a, F b) {
  if (fp::is_nan(a) || fp::is_nan(b)) return fp::nan_of(a, b);
  if (a == b) return fp::from_bits<F>(fp::to_bits(a) | fp::to_bits(b));  // -0 over +0
  return a < b ? a : b;
}

// |x| with the sign bit cleared, NaN included.
template <class F>
inline F abs_float(F x) {
  return fp::from_bits<F>(fp::to_bits(x) & ~(fp::bits_t<F>{1} << (sizeof(F) * 8 - 1)));
}

// |x| that saturates: the most negative value gives the most positive one.
template <class I>
inline I abs_sat(I x) {
  if (x == std::numeric_limits<I>::min()) return std::numeric_limits<I>::max();
  return x < 0 ? static_cast<I>(-x) : x;
}

// 1 above zero, -1 below it; zeros and NaN stand for themselves.
template <class T>
inline T sign_value(T x) {
  if (x > 0) return T(1);
  if (x < 0) return T(-1);
  return x;
}

}  // namespace lane

// fmax: NaN propagates by the NaN rule, -0 below +0.
template <class T, int K>
inline vec<T, K> max_propagating(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = lane::max_propagating(a.r.v[i], b.r.v[i]);
  return r;
}

// fmin
template <class T, int K>
inline vec<T, K> min_propagating(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = lane::min_propagating(a.r.v[i], b.r.v[i]);
  return r;
}

// smax / umax
template <class T, int K>
inline vec<T, K> max(const vec<T, K>& a, const vec<T, K>& b) {
  static_assert(std::is_integral_v<T>, "integer lanes");
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = a.r.v[i] > b.r.v[i] ? a.r.v[i] : b.r.v[i];
  return r;
}

// smin / umin
template <class T, int K>
inline vec<T, K> min(const vec<T, K>& a, const vec<T, K>& b) {
  static_assert(std::is_integral_v<T>, "integer lanes");
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = a.r.v[i] < b.r.v[i] ? a.r.v[i] : b.r.v[i];
  return r;
}

// fabs
template <class T, int K>
inline vec<T, K> abs(const vec<T, K>& a) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = lane::abs_float(a.r.v[i]);
  return r;
}

// sqabs
template <class T, int K>
inline vec<T, K> abs_sat(const vec<T, K>& a) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = lane::abs_sat(a.r.v[i]);
  return r;
}

namespace detail {
// Halves the lanes again and again, combining the lower half with the upper one, as
// the across-lanes reductions of the Arm unit do.
template <class T, class Op>
inline T reduce_halves(const T* v, int n, Op op) {
  if (n == 1) return v[0];
  return op(reduce_halves(v, n / 2, op), reduce_halves(v + n / 2, n / 2, op));
}
}  // namespace detail

// fmaxv / smaxv / umaxv
template <class T>
inline T reduce_max(const vec<T, 1>& a) {
  return detail::reduce_halves(a.r.v, vec<T, 1>::kLanes, [](T x, T y) {
    if constexpr (std::is_floating_point_v<T>) return lane::max_propagating(x, y);
    else return x > y ? x : y;
  });
}

// fminv / sminv / uminv
template <class T>
inline T reduce_min(const vec<T, 1>& a) {
  return detail::reduce_halves(a.r.v, vec<T, 1>::kLanes, [](T x, T y) {
    if constexpr (std::is_floating_point_v<T>) return lane::min_propagating(x, y);
    else return x < y ? x : y;
  });
}

// faddp, faddp: (l0 + l1) + (l2 + l3), each sum by the NaN rule.
inline float reduce_add_pairwise(const vec<float, 1>& a) {
  const float* v = a.r.v;
  return fp::add(fp::add(v[0], v[1]), fp::add(v[2], v[3]));
}

// fcmeq + bsl: lanes of a that are NaN become the lanes of r.
template <class T, int K>
inline vec<T, K> select_nan(const vec<T, K>& a, const vec<T, K>& r) {
  vec<T, K> o;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) o.r.v[i] = fp::is_nan(a.r.v[i]) ? r.r.v[i] : a.r.v[i];
  return o;
}

// cmgt, cmgt, and, sub: each lane of acc counts one more where lo < x < hi.
inline vec<int32_t, 1> count_between(const vec<int32_t, 1>& acc, const vec<int32_t, 1>& x,
                                     const vec<int32_t, 1>& lo, const vec<int32_t, 1>& hi) {
  vec<int32_t, 1> r;
  for (int i = 0; i < 4; ++i) r.r.v[i] = acc.r.v[i] + (lo.r.v[i] < x.r.v[i] && x.r.v[i] < hi.r.v[i]);
  return r;
}

// ld1 + sxtl: four int16 widened to int32.
inline vec<int32_t, 1> load_widened(const int16_t* p) {
  vec<int32_t, 1> r;
  for (int i = 0; i < 4; ++i) r.r.v[i] = p[i];
  return r;
}

// fmul + fcmlt #0 + sub (float) / mul + cmlt #0 + sub (int32): one more where a * b
// is below zero; the float product is rounded, the int32 one must not wrap.
template <class T>
inline vec<int32_t, 1> count_negative_products(const vec<int32_t, 1>& acc, const vec<T, 1>& a,
                                               const vec<T, 1>& b) {
  vec<int32_t, 1> r;
  for (int i = 0; i < 4; ++i) {
    const T p = a.r.v[i] * b.r.v[i];
    r.r.v[i] = acc.r.v[i] + (p < 0);
  }
  return r;
}

// eor + ushr #31 + add: one more where the sign bits of a and b differ.
template <class T>
inline vec<int32_t, 1> count_sign_differences(const vec<int32_t, 1>& acc, const vec<T, 1>& a,
                                              const vec<T, 1>& b) {
  vec<int32_t, 1> r;
  for (int i = 0; i < 4; ++i) {
    uint32_t x, y;
    memcpy(&x, &a.r.v[i], 4);
    memcpy(&y, &b.r.v[i], 4);
    r.r.v[i] = acc.r.v[i] + static_cast<int32_t>((x ^ y) >> 31);
  }
  return r;
}

// fcmgt/fcmlt + bsl (float), cmgt/cmlt + sub (int32): 1, -1, or the lane itself.
template <class T>
inline vec<T, 1> sign_value(const vec<T, 1>& a) {
  vec<T, 1> r;
  for (int i = 0; i < vec<T, 1>::kLanes; ++i) r.r.v[i] = lane::sign_value(a.r.v[i]);
  return r;
}

// fabd (float: |a - b| by the NaN rule, sign bit cleared) / sabd (int32).
template <class T>
inline vec<T, 1> abs_diff(const vec<T, 1>& a, const vec<T, 1>& b) {
  vec<T, 1> r;
  for (int i = 0; i < vec<T, 1>::kLanes; ++i) {
    if constexpr (std::is_floating_point_v<T>) r.r.v[i] = lane::abs_float(fp::sub(a.r.v[i], b.r.v[i]));
    else r.r.v[i] = a.r.v[i] > b.r.v[i] ? a.r.v[i] - b.r.v[i] : b.r.v[i] - a.r.v[i];
  }
  return r;
}

// scvtf
inline vec<float, 1> to_float(const vec<int32_t, 1>& a) {
  vec<float, 1> r;
  for (int i = 0; i < 4; ++i) r.r.v[i] = static_cast<float>(a.r.v[i]);
  return r;
}

// Folds `count` whole 128-bit vectors from p into one vector by maximum or minimum (of
// the elements or of their absolute values, which saturate for integers), for searches
// whose answer cannot depend on the order: `nan` is set when a NaN was met, and then
// the lanes are unspecified; so is the sign of a zero that ties with the other zero.
// With the Arm unit this is an fmax/fmin (fabs/sqabs) loop.
enum class Fold { kMax, kMin, kMaxAbs, kMinAbs };

template <Fold f, class T>
inline vec<T, 1> fold(const T* p, int64_t count, bool& nan) {
  constexpr int L = vec<T, 1>::kLanes;
  vec<T, 1> acc = load<vec<T, 1>>(p);
  for (int64_t i = 0; i < count * L; ++i) {
    T x = p[i];
    if constexpr (f == Fold::kMaxAbs || f == Fold::kMinAbs) {
      if constexpr (std::is_floating_point_v<T>) x = lane::abs_float(x);
      else x = lane::abs_sat(x);
    }
    T& a = acc.r.v[i % L];
    if (i < L) a = x;
    if constexpr (std::is_floating_point_v<T>) {
      nan |= fp::is_nan(x);
      a = f == Fold::kMax || f == Fold::kMaxAbs ? lane::max_propagating(a, x) : lane::min_propagating(a, x);
    } else {
      a = f == Fold::kMax || f == Fold::kMaxAbs ? (x > a ? x : a) : (x < a ? x : a);
    }
  }
  return acc;
}

// Both folds of the elements at once.
template <class T>
inline void fold_min_max(const T* p, int64_t count, vec<T, 1>& mn, vec<T, 1>& mx, bool& nan) {
  mn = fold<Fold::kMin>(p, count, nan);
  mx = fold<Fold::kMax>(p, count, nan);
}

// The first of `count` whole vectors from p that has a lane equal to x, after the view
// of the fold f (absolute values or not); -1 if none. The compare is ordered: NaN
// equals nothing, -0 equals +0. (fcmeq + umaxv per vector)
template <Fold f, class T>
inline int64_t first_equal(const T* p, int64_t count, T x) {
  constexpr int L = vec<T, 1>::kLanes;
  for (int64_t i = 0; i < count * L; ++i) {
    T y = p[i];
    if constexpr (f == Fold::kMaxAbs || f == Fold::kMinAbs) {
      if constexpr (std::is_floating_point_v<T>) y = lane::abs_float(y);
      else y = lane::abs_sat(y);
    }
    if (y == x) return i / L;
  }
  return -1;
}

}  // namespace zivks::simd
