// The scale rule: `scale` only ever selects a power of two, M = 2^e with
// e = log2(1 / scale) truncated toward zero, so every scale moves to a power of two in
// the direction of 1 (scale 3 acts as 2, 0.3 as 0.5, anything in (0.5, 2) as 1). The
// loss of precision is deliberate: never divide by scale, never round the logarithm.
#pragma once

#include <math.h>
#include <stdint.h>

#include "zivks.h"
#include "core/frame.h"

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
// the ordinary narrowing where 2^e does not fit F. pow is exact for a whole e, so ldexp
// gives the same float64, subnormals and the rounding to 0 or infinity included, in a
// fraction of the time (a call makes M before its loop, and some tails once an element).
template <class F>
inline F multiplier(int32_t e) {
  return static_cast<F>(ldexp(1.0, e));
}

// The outcome of a scaled call's checks: a status, and e where they all pass.
struct Checked {
  int32_t e;  // M = 2^e; the scale shift is -e
  ZIVKStatus st;
};

// Pointers, then len, then `own` (the status of a check of the member's own, such as
// its rounding selector; 0 for none), then scale.
template <class... P>
inline Checked checked(int32_t len, double scale, ZIVKStatus own, const P*... p) {
  if (const ZIVKStatus st = check_ptrs_len(len, p...)) return {0, st};
  if (own) return {0, own};
  if (const ZIVKStatus st = check(scale)) return {0, st};
  return {exponent(scale), ZIVK_STS_NO_ERR};
}

}  // namespace zivks::scale
