// Generic backend: integer lanes (half-vector loads and stores, widening, wrapping and
// saturating add and subtract, saturating abs, saturating shifts, narrowing) and the
// sign clear of float lanes.
#pragma once

#include <limits>

#include "core/fp.h"

namespace zivks::simd {

namespace generic {

// x clamped to the range of To.
template <class To, class W>
inline To clamp_to(W x) {
  if (x > static_cast<W>(std::numeric_limits<To>::max())) return std::numeric_limits<To>::max();
  if (std::is_signed_v<W> && x < static_cast<W>(std::numeric_limits<To>::min()))
    return std::numeric_limits<To>::min();
  return static_cast<To>(x);
}

// A type wide enough for the exact sum or difference of two T.
template <class T>
using wide_t = std::conditional_t<sizeof(T) <= 2, int32_t, int64_t>;

}  // namespace generic

// kLanes values of the narrower S, each extended to V's lane (ldr + sxtl / uxtl).
template <class V, class S>
inline V load_widen(const S* p) {
  V v;
  for (int i = 0; i < V::kLanes; ++i) v.r.v[i] = static_cast<typename V::lane>(p[i]);
  return v;
}

// The low / high half of the lanes, each extended to To (sxtl / uxtl, sxtl2 / uxtl2).
template <class To, class From>
inline vec<To, 1> widen_lo(const vec<From, 1>& a) {
  vec<To, 1> r;
  for (int i = 0; i < vec<To, 1>::kLanes; ++i) r.r.v[i] = static_cast<To>(a.r.v[i]);
  return r;
}
template <class To, class From>
inline vec<To, 1> widen_hi(const vec<From, 1>& a) {
  vec<To, 1> r;
  constexpr int n = vec<To, 1>::kLanes;
  for (int i = 0; i < n; ++i) r.r.v[i] = static_cast<To>(a.r.v[n + i]);
  return r;
}

// Modular integer add and subtract (add, sub).
template <class T>
inline vec<T, 1> add_wrap(const vec<T, 1>& a, const vec<T, 1>& b) {
  using U = std::make_unsigned_t<T>;
  vec<T, 1> r;
  for (int i = 0; i < vec<T, 1>::kLanes; ++i)
    r.r.v[i] = static_cast<T>(static_cast<U>(static_cast<U>(a.r.v[i]) + static_cast<U>(b.r.v[i])));
  return r;
}
template <class T>
inline vec<T, 1> sub_wrap(const vec<T, 1>& a, const vec<T, 1>& b) {
  using U = std::make_unsigned_t<T>;
  vec<T, 1> r;
  for (int i = 0; i < vec<T, 1>::kLanes; ++i)
    r.r.v[i] = static_cast<T>(static_cast<U>(static_cast<U>(a.r.v[i]) - static_cast<U>(b.r.v[i])));
  return r;
}

// Add and subtract saturating at the lane's bounds (sqadd / uqadd, sqsub / uqsub), for
// lanes of at most 32 bits.
template <class T>
inline vec<T, 1> add_sat(const vec<T, 1>& a, const vec<T, 1>& b) {
  vec<T, 1> r;
  for (int i = 0; i < vec<T, 1>::kLanes; ++i)
    r.r.v[i] = generic::clamp_to<T>(generic::wide_t<T>{a.r.v[i]} + generic::wide_t<T>{b.r.v[i]});
  return r;
}
template <class T>
inline vec<T, 1> sub_sat(const vec<T, 1>& a, const vec<T, 1>& b) {
  vec<T, 1> r;
  for (int i = 0; i < vec<T, 1>::kLanes; ++i) {
    const auto d = generic::wide_t<T>{a.r.v[i]} - generic::wide_t<T>{b.r.v[i]};
    r.r.v[i] = d < 0 && std::is_unsigned_v<T> ? T{0} : generic::clamp_to<T>(d);
  }
  return r;
}

// Absolute value, the most negative lane value giving the largest positive one (sqabs).
template <class T>
inline vec<T, 1> abs_sat(const vec<T, 1>& a) {
  vec<T, 1> r;
  for (int i = 0; i < vec<T, 1>::kLanes; ++i) {
    const int64_t x = a.r.v[i];
    r.r.v[i] = generic::clamp_to<T>(x < 0 ? -x : x);
  }
  return r;
}

// Float lanes with the sign bit cleared, NaN payloads kept (fabs).
template <class F>
inline vec<F, 1> clear_sign(const vec<F, 1>& a) {
  vec<F, 1> r;
  for (int i = 0; i < vec<F, 1>::kLanes; ++i) {
    auto b = fp::to_bits(a.r.v[i]);
    b &= ~(decltype(b){1} << (sizeof(F) * 8 - 1));
    r.r.v[i] = fp::from_bits<F>(b);
  }
  return r;
}

// Unsigned lanes shifted by the count n = the low byte of k read as a signed number
// (uqrshl with k in every lane): for n >= 0 left, saturating at the lane's maximum; for
// n < 0 right by -n, rounding half up; a count past the lane width leaves the maximum
// (or 0 for a zero lane) to the left and 0 to the right.
template <class T>
inline vec<T, 1> shl_sat_round_by_low_byte(const vec<T, 1>& a, int32_t k) {
  static_assert(std::is_unsigned_v<T> && sizeof(T) <= 4, "unsigned lanes of up to 32 bits");
  constexpr int bits = sizeof(T) * 8;
  const int n = static_cast<int8_t>(static_cast<uint8_t>(k & 0xFF));
  vec<T, 1> r;
  for (int i = 0; i < vec<T, 1>::kLanes; ++i) {
    const uint64_t x = a.r.v[i];
    uint64_t y;
    if (n >= 0) {
      if (x == 0) y = 0;
      else if (n >= bits) y = std::numeric_limits<T>::max();
      else y = generic::clamp_to<T>(x << n);
    } else {
      const int m = -n;
      y = m > bits + 1 ? 0 : (x + (uint64_t{1} << (m - 1))) >> m;
    }
    r.r.v[i] = static_cast<T>(y);
  }
  return r;
}

// Lanes of a then of b, each clamped to the range of the half-width To (sqxtn / uqxtn /
// sqxtun, then the same into the upper half).
template <class To, class From>
inline vec<To, 1> narrow_sat(const vec<From, 1>& a, const vec<From, 1>& b) {
  static_assert(sizeof(To) * 2 == sizeof(From), "narrowing halves the lane");
  vec<To, 1> r;
  constexpr int n = vec<From, 1>::kLanes;
  for (int i = 0; i < n; ++i) {
    r.r.v[i] = generic::clamp_to<To>(a.r.v[i]);
    r.r.v[n + i] = generic::clamp_to<To>(b.r.v[i]);
  }
  return r;
}

// Lanes of a clamped to 16 bits, then lanes of b cut to their low 16 bits (uqxtn, xtn2).
inline vec<uint16_t, 1> narrow_sat_low_wrap_high(const vec<uint32_t, 1>& a, const vec<uint32_t, 1>& b) {
  vec<uint16_t, 1> r;
  for (int i = 0; i < 4; ++i) {
    r.r.v[i] = generic::clamp_to<uint16_t>(a.r.v[i]);
    r.r.v[4 + i] = static_cast<uint16_t>(b.r.v[i]);
  }
  return r;
}

}  // namespace zivks::simd
