// Generic backend: integer lanes: widening loads and moves, wrapping and saturating add
// and subtract, the wrapping multiply, saturating abs, the saturating shift by a signed
// count, and narrowing.
#pragma once

#include <limits>

#include "core/lane.h"
#include "core/simd/generic/base.h"

namespace zivks::simd {

namespace generic {

// A type wide enough for the exact sum or difference of two T.
template <class T>
using wide_t = std::conditional_t<sizeof(T) <= 2, int32_t, int64_t>;

// op over the lanes of a and b as unsigned numbers of at least 32 bits, cut back to T.
template <class T, int K, class Op>
inline vec<T, K> wrap_lanes(const vec<T, K>& a, const vec<T, K>& b, Op op) {
  using U = std::make_unsigned_t<std::conditional_t<sizeof(T) < 4, int, T>>;
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i)
    r.raw.v[i] = static_cast<T>(op(static_cast<U>(a.raw.v[i]), static_cast<U>(b.raw.v[i])));
  return r;
}

}  // namespace generic

// ---- load_widen
// Returns kLanes values of the narrower S from p, each extended to V's lane
// (ldr + sxtl / uxtl).
template <class V, class S>
inline V load_widen(const S* p) {
  V v;
  for (int i = 0; i < V::kLanes; ++i) v.raw.v[i] = static_cast<typename V::lane>(p[i]);
  return v;
}

// ---- widen_lo, widen_hi
// Return the low or the high half of the lanes, each extended to To
// (sxtl / uxtl, sxtl2 / uxtl2).
template <class To, class From, int K>
inline vec<To, K> widen_lo(const vec<From, K>& a) {
  vec<To, K> r;
  for (int i = 0; i < vec<To, K>::kLanes; ++i) r.raw.v[i] = static_cast<To>(a.raw.v[i]);
  return r;
}
template <class To, class From, int K>
inline vec<To, K> widen_hi(const vec<From, K>& a) {
  vec<To, K> r;
  constexpr int n = vec<To, K>::kLanes;
  for (int i = 0; i < n; ++i) r.raw.v[i] = static_cast<To>(a.raw.v[n + i]);
  return r;
}

// ---- add_wrap, sub_wrap, mul_wrap
// Return a + b, a - b, a * b modulo 2 to the lane width (add, sub, mul).
template <class T, int K>
inline vec<T, K> add_wrap(const vec<T, K>& a, const vec<T, K>& b) {
  return generic::wrap_lanes(a, b, [](auto x, auto y) { return x + y; });
}
template <class T, int K>
inline vec<T, K> sub_wrap(const vec<T, K>& a, const vec<T, K>& b) {
  return generic::wrap_lanes(a, b, [](auto x, auto y) { return x - y; });
}
template <class T, int K>
inline vec<T, K> mul_wrap(const vec<T, K>& a, const vec<T, K>& b) {
  return generic::wrap_lanes(a, b, [](auto x, auto y) { return x * y; });
}

// ---- add_sat
// Returns a + b clamped to the lane's range, for lanes of at most 32 bits
// (sqadd / uqadd).
template <class T, int K>
inline vec<T, K> add_sat(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i)
    r.raw.v[i] = lane::clamp_to<T>(generic::wide_t<T>{a.raw.v[i]} + generic::wide_t<T>{b.raw.v[i]});
  return r;
}

// ---- sub_sat
// Returns a - b clamped to the lane's range, for lanes of at most 32 bits
// (sqsub / uqsub).
template <class T, int K>
inline vec<T, K> sub_sat(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) {
    const auto d = generic::wide_t<T>{a.raw.v[i]} - generic::wide_t<T>{b.raw.v[i]};
    r.raw.v[i] = d < 0 && std::is_unsigned_v<T> ? T{0} : lane::clamp_to<T>(d);
  }
  return r;
}

// ---- abs_sat
// Returns |a|, the most negative lane value giving the most positive one (sqabs).
template <class T, int K>
inline vec<T, K> abs_sat(const vec<T, K>& a) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = lane::abs_sat(a.raw.v[i]);
  return r;
}

// ---- shl_sat_round_by_low_byte
// Returns the unsigned lanes shifted by the count n = the low byte of k read as a signed
// number: for n >= 0 left, saturating at the lane's maximum; for n < 0 right by -n,
// rounding half up; a count past the lane width leaves the maximum (0 for a zero lane)
// to the left and 0 to the right (uqrshl with k in every lane).
template <class T, int K>
inline vec<T, K> shl_sat_round_by_low_byte(const vec<T, K>& a, int32_t k) {
  static_assert(std::is_unsigned_v<T> && sizeof(T) <= 4, "unsigned lanes of up to 32 bits");
  constexpr int bits = sizeof(T) * 8;
  const int n = static_cast<int8_t>(static_cast<uint8_t>(k & 0xFF));
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) {
    const uint64_t x = a.raw.v[i];
    uint64_t y;
    if (n >= 0) {
      if (x == 0) y = 0;
      else if (n >= bits) y = std::numeric_limits<T>::max();
      else y = lane::clamp_to<T>(x << n);
    } else {
      const int m = -n;
      y = m > bits + 1 ? 0 : (x + (uint64_t{1} << (m - 1))) >> m;
    }
    r.raw.v[i] = static_cast<T>(y);
  }
  return r;
}

// ---- narrow_sat
// Returns the lanes of a, then those of b, each clamped to the range of the half-width
// To (sqxtn / uqxtn / sqxtun, then the same into the upper half).
template <class To, class From, int K>
inline vec<To, K> narrow_sat(const vec<From, K>& a, const vec<From, K>& b) {
  static_assert(sizeof(To) * 2 == sizeof(From), "narrowing halves the lane");
  vec<To, K> r;
  constexpr int n = vec<From, K>::kLanes;
  for (int i = 0; i < n; ++i) {
    r.raw.v[i] = lane::clamp_to<To>(a.raw.v[i]);
    r.raw.v[n + i] = lane::clamp_to<To>(b.raw.v[i]);
  }
  return r;
}

// ---- narrow_sat_low_wrap_high
// Returns the lanes of a clamped to 16 bits, then the lanes of b cut to their low 16
// bits (uqxtn, xtn2).
inline vec<uint16_t, 1> narrow_sat_low_wrap_high(const vec<uint32_t, 1>& a, const vec<uint32_t, 1>& b) {
  vec<uint16_t, 1> r;
  for (int i = 0; i < 4; ++i) {
    r.raw.v[i] = lane::clamp_to<uint16_t>(a.raw.v[i]);
    r.raw.v[4 + i] = static_cast<uint16_t>(b.raw.v[i]);
  }
  return r;
}

}  // namespace zivks::simd
