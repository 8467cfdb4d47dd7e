// Rules for one lane, shared by the generic backend (which applies them lane by lane)
// and the scalar tails of the families, so that a block and its tail agree.
#pragma once

#include <limits>
#include <type_traits>

#include "core/fp.h"

namespace zivks::lane {

template <class F>
inline constexpr fp::bits_t<F> kSignBit = fp::bits_t<F>{1} << (sizeof(F) * 8 - 1);

// x with the sign bit cleared: -0 becomes +0, a NaN keeps its payload (fabs).
template <class F>
inline F clear_sign(F x) {
  return fp::from_bits<F>(fp::to_bits(x) & ~kSignBit<F>);
}

// x with the sign bit flipped, the payload of a NaN kept (fneg).
template <class F>
inline F flip_sign(F x) {
  return fp::from_bits<F>(fp::to_bits(x) ^ kSignBit<F>);
}

// x clamped to the range of To.
template <class To, class W>
inline To clamp_to(W x) {
  if (x > static_cast<W>(std::numeric_limits<To>::max())) return std::numeric_limits<To>::max();
  if (std::is_signed_v<W> && x < static_cast<W>(std::numeric_limits<To>::min()))
    return std::numeric_limits<To>::min();
  return static_cast<To>(x);
}

// |x|, the most negative value giving the most positive one (sqabs).
template <class I>
inline I abs_sat(I x) {
  if (x == std::numeric_limits<I>::min()) return std::numeric_limits<I>::max();
  return x < 0 ? static_cast<I>(-x) : x;
}

// -x, the most negative value giving the most positive one (sqneg).
template <class I>
inline I neg_sat(I x) {
  return x == std::numeric_limits<I>::min() ? std::numeric_limits<I>::max() : static_cast<I>(-x);
}

// The larger of a and b, -0 below +0; a NaN operand gives the NaN of the library's
// rule (fmax).
template <class F>
inline F max_propagating(F a, F b) {
  if (fp::is_nan(a) || fp::is_nan(b)) return fp::nan_of(a, b);
  if (a == b) return fp::from_bits<F>(fp::to_bits(a) & fp::to_bits(b));  // +0 over -0
  return a > b ? a : b;
}

// The smaller of a and b, -0 below +0; a NaN operand gives the NaN of the rule (fmin).
template <class F>
inline F min_propagating(F a, F b) {
  if (fp::is_nan(a) || fp::is_nan(b)) return fp::nan_of(a, b);
  if (a == b) return fp::from_bits<F>(fp::to_bits(a) | fp::to_bits(b));  // -0 over +0
  return a < b ? a : b;
}

// a + b clamped to the range of I (sqadd / uqadd).
template <class I>
inline I add_sat(I a, I b) {
  I r;
  if (!__builtin_add_overflow(a, b, &r)) return r;
  return (std::is_unsigned_v<I> || b > 0) ? std::numeric_limits<I>::max() : std::numeric_limits<I>::min();
}

// a - b clamped to the range of I (sqsub / uqsub).
template <class I>
inline I sub_sat(I a, I b) {
  I r;
  if (!__builtin_sub_overflow(a, b, &r)) return r;
  return (std::is_unsigned_v<I> || b > 0) ? std::numeric_limits<I>::min() : std::numeric_limits<I>::max();
}

// How a shift by a count read as negative goes right: dropping the bits shifted out
// (toward minus infinity), or rounding half up.
enum class RightShift { kTruncate, kRound };

// x shifted by n, the low byte of k read as signed: for n >= 0 left, saturating at the
// bounds of I (0 stays 0; a count past the width saturates every other value); for
// n < 0 right by -n, by r (sqshl / uqshl, sqrshl / uqrshl with k in the lane).
template <RightShift r, class I>
inline I shl_sat_by_low_byte(I x, int32_t k) {
  using U = std::make_unsigned_t<I>;
  constexpr int bits = sizeof(I) * 8;
  constexpr I hi = std::numeric_limits<I>::max(), lo = std::numeric_limits<I>::min();
  const int n = static_cast<int8_t>(static_cast<uint8_t>(k & 0xFF));
  if (n >= 0) {
    if (x == 0) return 0;
    if (n >= bits) return x > 0 ? hi : lo;
    if (x > static_cast<I>(hi >> n)) return hi;
    if (x < static_cast<I>(lo >> n)) return lo;
    return static_cast<I>(static_cast<U>(x) << n);
  }
  // floor(x / 2^m), past the width the sign; plus bit m - 1 of x to round.
  auto floor_shift = [](I v, int m) -> I {
    if (m < bits) return static_cast<I>(v >> m);
    return std::is_signed_v<I> && v < 0 ? I(-1) : I(0);
  };
  const int m = -n;
  const I q = floor_shift(x, m);
  if constexpr (r == RightShift::kTruncate) return q;
  else return static_cast<I>(q + (floor_shift(x, m - 1) & 1));
}

}  // namespace zivks::lane
