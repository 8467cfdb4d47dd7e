// The scale rule: `scale` only ever selects a power of two, M = 2^e with
// e = log2(1 / scale) truncated toward zero, so every scale moves to a power of two in
// the direction of 1 (scale 3 acts as 2, 0.3 as 0.5, anything in (0.5, 2) as 1). The
// loss of precision is deliberate: never divide by scale, never round the logarithm.
// Then the two ways a scaled value becomes an integer: the vector block's and the tail's.
#pragma once

#include <math.h>
#include <stdint.h>

#include <limits>
#include <type_traits>

#include "zivks.h"

namespace zivks::scale {

// Zero, negative values, infinity and NaN are refused; every finite positive scale
// is accepted, however small or large.
inline ZIVKStatus check(double scale) {
  if (!(scale > 0.0) || scale == HUGE_VAL) return ZIVK_STS_SCALE_ERR;
  return ZIVK_STS_NO_ERR;
}

// e, by frexp: scale = m * 2^exp with m in [0.5, 1); e = c - exp with c = 1 when
// exp > 0 or m is exactly 0.5.
inline int32_t exponent(double scale) {
  int exp = 0;
  const double m = frexp(scale, &exp);
  const int c = (exp > 0 || m == 0.5) ? 1 : 0;
  return c - exp;
}

// M = pow(2, e), computed in float64 and then kept in F: it becomes infinite or 0 by
// the ordinary narrowing where 2^e does not fit F.
template <class F>
inline F multiplier(int32_t e) {
  return static_cast<F>(pow(2.0, static_cast<double>(e)));
}

}  // namespace zivks::scale

namespace zivks::rounding {

// The integer lane a float of type F converts into: 32 bits for float32, 64 for float64.
template <class F>
using lane_int_t = std::conditional_t<sizeof(F) == 4, int32_t, int64_t>;

// Round to nearest, ties to even, independent of the current rounding mode.
template <class F>
inline F nearest_even(F p) {
  const F t = std::trunc(p);
  const F frac = p - t;  // exact
  const F half = static_cast<F>(0.5);
  const F step = p < 0 ? F(-1) : F(1);
  if (std::fabs(frac) > half) return t + step;
  if (std::fabs(frac) == half && std::fmod(t, F(2)) != 0) return t + step;
  return t;
}

// The float-to-integer step of a vector block: round to nearest even, saturate to the
// integer lane of F's width; NaN gives 0 (fcvtns).
template <class F>
inline lane_int_t<F> cvt_nearest_sat(F p) {
  using L = lane_int_t<F>;
  if (p != p) return 0;
  const F r = nearest_even(p);
  // 2^31 or 2^63, exact in F.
  const F top = -static_cast<F>(std::numeric_limits<L>::min());
  if (r >= top) return std::numeric_limits<L>::max();
  if (r < -top) return std::numeric_limits<L>::min();
  return static_cast<L>(r);
}

// Saturating narrow of an integer lane to I (sqxtn / uqxtn chain).
template <class I, class L>
inline I narrow_sat(L x) {
  if (x > static_cast<L>(std::numeric_limits<I>::max())) return std::numeric_limits<I>::max();
  if (x < static_cast<L>(std::numeric_limits<I>::min())) return std::numeric_limits<I>::min();
  return static_cast<I>(x);
}

// A scaled product p as the vector block makes it an I: round then saturate.
template <class I, class F>
inline I block(F p) {
  return narrow_sat<I>(cvt_nearest_sat(p));
}

// A scaled product p as the scalar tail makes it an I (I at most 32 bits wide): clamp
// on the unrounded value, then modf; a tie goes to the even integer part, anything else
// adds one half away from zero and truncates. NaN fails every test and truncates to 0.
template <class I, class F>
inline I tail(F p) {
  static_assert(sizeof(I) <= 4, "the tail rule is for results of at most 32 bits");
  const F hi = static_cast<F>(std::numeric_limits<I>::max());
  const F lo = static_cast<F>(std::numeric_limits<I>::min());
  if (p >= hi) return std::numeric_limits<I>::max();
  if (p <= lo) return std::numeric_limits<I>::min();
  if (p != p) return 0;
  double ip = 0.0;
  const double frac = modf(static_cast<double>(p), &ip);
  if (fabs(frac) == 0.5 && fmod(ip, 2.0) == 0.0) return static_cast<I>(ip);
  const double half = (std::is_unsigned_v<I> || p >= 0) ? 0.5 : -0.5;
  return static_cast<I>(static_cast<int64_t>(static_cast<double>(p) + half));
}

}  // namespace zivks::rounding
