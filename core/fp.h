// Scalar floating-point operations with the exact results of the vector unit, so that
// tails, the generic backend and the x86 backend agree bit for bit with the Arm one.
//
// IEEE 754 fixes every non-NaN result but not which NaN comes out. The library's rule is
// the Arm one: a signalling NaN operand wins (quietened), the first operand before the
// second; else a quiet NaN operand, the first before the second; an invalid operation on
// non-NaN operands (inf - inf) gives the positive default NaN. Compilers may swap the
// operands of a commutative operation, so the NaN is always rebuilt from the rule.
#pragma once

#include <stdint.h>
#include <string.h>

#include <cmath>
#include <type_traits>

namespace zivks::fp {

template <class F>
using bits_t = std::conditional_t<sizeof(F) == 4, uint32_t, uint64_t>;

template <class F>
inline bits_t<F> to_bits(F x) {
  bits_t<F> b;
  memcpy(&b, &x, sizeof b);
  return b;
}

template <class F>
inline F from_bits(bits_t<F> b) {
  F x;
  memcpy(&x, &b, sizeof x);
  return x;
}

template <class F>
inline constexpr bits_t<F> quiet_bit = bits_t<F>{1} << (sizeof(F) == 4 ? 22 : 51);

template <class F>
inline bool is_nan(F x) { return x != x; }

template <class F>
inline bool is_snan(F x) { return is_nan(x) && !(to_bits(x) & quiet_bit<F>); }

template <class F>
inline F quieten(F x) { return from_bits<F>(to_bits(x) | quiet_bit<F>); }

// The positive quiet NaN with an empty payload.
template <class F>
inline F default_nan() {
  if constexpr (sizeof(F) == 4) return from_bits<F>(0x7FC00000u);
  else return from_bits<F>(0x7FF8000000000000ull);
}

// The NaN that a two-operand operation on a and b returns when its result is NaN.
template <class F>
inline F nan_of(F a, F b) {
  if (is_snan(a)) return quieten(a);
  if (is_snan(b)) return quieten(b);
  if (is_nan(a)) return a;
  if (is_nan(b)) return b;
  return default_nan<F>();
}

// The NaN that a fused multiply-add a * b + c returns when its result is NaN: the
// addend comes first, then the factors; a quiet NaN addend with a product of infinity
// and zero is an invalid operation and gives the default NaN.
template <class F>
inline F nan_of_mul_add(F a, F b, F c) {
  const bool inf_times_zero = (std::isinf(a) && b == 0) || (a == 0 && std::isinf(b));
  if (is_nan(c) && !is_snan(c) && !is_snan(a) && !is_snan(b) && inf_times_zero) return default_nan<F>();
  if (is_snan(c)) return quieten(c);
  if (is_snan(a)) return quieten(a);
  if (is_snan(b)) return quieten(b);
  if (is_nan(c)) return c;
  return nan_of(a, b);
}

template <class F>
inline F add(F a, F b) {
  const F r = a + b;
  return r == r ? r : nan_of(a, b);
}

template <class F>
inline F sub(F a, F b) {
  const F r = a - b;
  return r == r ? r : nan_of(a, b);
}

template <class F>
inline F mul(F a, F b) {
  const F r = a * b;
  return r == r ? r : nan_of(a, b);
}

// a * b + c with one rounding (fmla, fmadd).
template <class F>
inline F mul_add(F a, F b, F c) {
  const F r = std::fma(a, b, c);
  return r == r ? r : nan_of_mul_add(a, b, c);
}

}  // namespace zivks::fp
