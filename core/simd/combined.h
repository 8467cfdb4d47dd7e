// Operations made of the primitives, written once for every backend. Each names the
// Arm sequence it amounts to.
#pragma once

#include "core/simd/simd.h"

namespace zivks::simd {

// ---- select_nan
// Returns a with its NaN lanes replaced by the lanes of r (fcmeq + bsl).
template <class T, int K>
inline vec<T, K> select_nan(const vec<T, K>& a, const vec<T, K>& r) {
  return select(cmp_eq(a, a), a, r);
}

// ---- abs_diff
// Returns |a - b|: for floats the difference by the NaN rule with its sign bit cleared
// (fabd); for integers the exact distance cut to the lane width (sabd).
template <class T, int K>
inline vec<T, K> abs_diff(const vec<T, K>& a, const vec<T, K>& b) {
  if constexpr (std::is_floating_point_v<T>) return clear_sign(sub(a, b));
  else return sub_wrap(max(a, b), min(a, b));
}

// ---- sign_value
// Returns 1 for a lane above zero, -1 for one below it; zeros and NaN stay as they are
// (fcmgt / fcmlt + bsl for floats, cmlt - cmgt for integers).
template <class T, int K>
inline vec<T, K> sign_value(const vec<T, K>& a) {
  using V = vec<T, K>;
  const V z = zeros<V>();
  if constexpr (std::is_floating_point_v<T>) {
    const V r = select(cmp_gt(a, z), splat<V>(T(1)), a);
    return select(cmp_lt(a, z), splat<V>(T(-1)), r);
  } else {
    return sub_wrap(cmp_lt(a, z), cmp_gt(a, z));  // masks are -1 where they hold
  }
}

// ---- count_between
// Returns acc with one more in each lane where lo < x < hi (cmgt, cmgt, and, sub).
template <class T, int K>
inline vec<T, K> count_between(const vec<T, K>& acc, const vec<T, K>& x, const vec<T, K>& lo,
                               const vec<T, K>& hi) {
  return sub_wrap(acc, bit_and(cmp_gt(x, lo), cmp_gt(hi, x)));
}

// ---- count_negative_products
// Returns acc with one more in each lane where a * b is below zero: the float product
// rounded, so one that underflows to zero does not count; the int32 product must not
// wrap (fmul + fcmlt #0 + sub, mul + cmlt #0 + sub).
template <class T, int K>
inline vec<int32_t, K> count_negative_products(const vec<int32_t, K>& acc, const vec<T, K>& a,
                                               const vec<T, K>& b) {
  static_assert(sizeof(T) == 4, "32-bit lanes");
  vec<T, K> p;
  if constexpr (std::is_floating_point_v<T>) p = mul_raw(a, b);
  else p = mul_wrap(a, b);
  return sub_wrap(acc, reinterpret<int32_t>(cmp_lt(p, zeros<vec<T, K>>())));
}

// ---- count_sign_differences
// Returns acc with one more in each lane where the sign bits of a and b differ
// (eor + cmlt #0 + sub).
template <class T, int K>
inline vec<int32_t, K> count_sign_differences(const vec<int32_t, K>& acc, const vec<T, K>& a,
                                              const vec<T, K>& b) {
  static_assert(sizeof(T) == 4, "32-bit lanes");
  const auto d = reinterpret<int32_t>(bit_xor(a, b));
  return sub_wrap(acc, cmp_lt(d, zeros<vec<int32_t, K>>()));
}

}  // namespace zivks::simd
