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

}  // namespace zivks::lane
