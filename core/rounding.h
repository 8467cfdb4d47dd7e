// How a value becomes an integer: the rounding modes, the float-to-integer step of a
// vector block, the scalar tails that clamp first and then round, and the rounding to
// half precision. Block and tail agree for every float32 value; where float64 sums of
// one half round, they part (see tail).
#pragma once

#include <math.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace zivks::rounding {

// The integer lane a float of type F converts into: 32 bits for float32, 64 for float64.
template <class F>
using lane_int_t = std::conditional_t<sizeof(F) == 4, int32_t, int64_t>;

// How a value becomes an integer: truncated toward zero, to nearest with a tie to the
// even neighbour, or to nearest with a tie away from zero.
enum class Mode { kZero, kNear, kAway };

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

// Round to nearest, ties away from zero.
template <class F>
inline F nearest_away(F p) {
  const F t = std::trunc(p);
  const F frac = p - t;  // exact
  if (std::fabs(frac) >= static_cast<F>(0.5)) return t + (p < 0 ? F(-1) : F(1));
  return t;
}

template <Mode m, class F>
inline F round(F p) {
  if constexpr (m == Mode::kZero) return std::trunc(p);
  else if constexpr (m == Mode::kNear) return nearest_even(p);
  else return nearest_away(p);
}

// x rounded to the nearest binary16 value, a tie to the even one, and kept as a float32
// (fcvt to half precision and back): from 65520 up an infinity, below 2^-14 a multiple
// of 2^-24. A float64 x is rounded once, straight to half precision. A NaN is made quiet
// and keeps the top 10 bits of its payload.
template <class F>
inline float to_half(F x) {
  if (x != x) {
    uint32_t b;
    const float f = static_cast<float>(x);
    memcpy(&b, &f, sizeof b);
    b = (b | 0x00400000u) & 0xFFFFE000u;
    float r;
    memcpy(&r, &b, sizeof r);
    return r;
  }
  const F a = std::fabs(x);
  if (a >= F(65520)) return std::copysign(std::numeric_limits<float>::infinity(), static_cast<float>(x));
  if (a == F(0)) return static_cast<float>(x);
  // The spacing of binary16 values near a: 2^-10 of its power of two, 2^-24 at least.
  const F q = std::ldexp(F(1), std::max(std::ilogb(a), -14) - 10);
  return static_cast<float>(std::copysign(nearest_even(a / q) * q, x));  // every step exact
}

// The float-to-integer step of a vector block: round by m, saturate to the integer lane
// L (32 or 64 bits, signed or unsigned); NaN gives 0 (fcvtzs / fcvtns / fcvtas and
// their unsigned forms).
template <class L, Mode m, class F>
inline L cvt_sat(F p) {
  static_assert(sizeof(L) == 4 || sizeof(L) == 8, "conversions go to 32- or 64-bit lanes");
  if (p != p) return 0;
  const F r = round<m>(p);
  if constexpr (std::is_unsigned_v<L>) {
    // 2^32 or 2^64, exact in F.
    const F top = static_cast<F>(2) * static_cast<F>(L{1} << (sizeof(L) * 8 - 1));
    if (r >= top) return std::numeric_limits<L>::max();
    if (r <= 0) return 0;
  } else {
    // 2^31 or 2^63, exact in F.
    const F top = -static_cast<F>(std::numeric_limits<L>::min());
    if (r >= top) return std::numeric_limits<L>::max();
    if (r < -top) return std::numeric_limits<L>::min();
  }
  return static_cast<L>(r);
}

// The first steps of every tail, on the unrounded p: at or above the largest I, written
// in F (2147483648.0 for int32 from float32, 2^63 for int64), gives the largest; at or
// below the smallest gives the smallest; NaN gives 0. True when that settled *out.
template <class I, class F>
inline bool tail_bounds(F p, I* out) {
  static_assert(sizeof(I) <= 4 || sizeof(F) == 8, "64-bit results come from float64");
  if (p >= static_cast<F>(std::numeric_limits<I>::max())) *out = std::numeric_limits<I>::max();
  else if (p <= static_cast<F>(std::numeric_limits<I>::min())) *out = std::numeric_limits<I>::min();
  else if (p != p) *out = 0;
  else return false;
  return true;
}

// A scaled product p as the scalar tail makes it an I: clamp on the unrounded value,
// then modf; a tie goes to the even integer part, anything else adds one half away from
// zero in float64 and truncates. NaN fails every test and truncates to 0. For a float64
// p that sum can round: just below one half gives 1, and an odd whole p from 2^52 to
// 2^53 moves to its even neighbour.
template <class I, class F>
inline I tail(F p) {
  I r;
  if (tail_bounds(p, &r)) return r;
  double ip = 0.0;
  const double frac = modf(static_cast<double>(p), &ip);
  if (fabs(frac) == 0.5 && fmod(ip, 2.0) == 0.0) return static_cast<I>(ip);
  const double half = (std::is_unsigned_v<I> || p >= 0) ? 0.5 : -0.5;
  return static_cast<I>(static_cast<int64_t>(static_cast<double>(p) + half));
}

// The tail that truncates: clamp, then drop the fraction; NaN gives 0.
template <class I, class F>
inline I tail_zero(F p) {
  I r;
  if (tail_bounds(p, &r)) return r;
  return static_cast<I>(static_cast<int64_t>(p));
}

// The tail that rounds a tie away from zero: clamp, then modf; a fraction of at least
// one half moves the integer part one step away from zero. NaN gives 0.
template <class I, class F>
inline I tail_away(F p) {
  I r;
  if (tail_bounds(p, &r)) return r;
  double ip = 0.0;
  const double frac = modf(static_cast<double>(p), &ip);
  if (fabs(frac) < 0.5) return static_cast<I>(static_cast<int64_t>(ip));
  return static_cast<I>(static_cast<int64_t>(p > 0 ? ip + 1.0 : ip - 1.0));
}

// The tail of rounding mode m.
template <class I, Mode m, class F>
inline I tail_by(F p) {
  if constexpr (m == Mode::kZero) return tail_zero<I>(p);
  else if constexpr (m == Mode::kNear) return tail<I>(p);
  else return tail_away<I>(p);
}

}  // namespace zivks::rounding
