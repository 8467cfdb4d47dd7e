// Generic backend: integer lanes: widening loads and moves, wrapping and saturating add
// and subtract, the wrapping multiply, saturating abs, the saturating shift by a signed
// count, and narrowing.
#pragma once

#include <limits>

#include "core/lane.h"
#include "core/simd/generic/base.h"

namespace zivks::simd {

namespace generic {

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
// Returns a + b clamped to the lane's range (sqadd / uqadd).
template <class T, int K>
inline vec<T, K> add_sat(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = lane::add_sat(a.raw.v[i], b.raw.v[i]);
  return r;
}

// ---- sub_sat
// Returns a - b clamped to the lane's range (sqsub / uqsub).
template <class T, int K>
inline vec<T, K> sub_sat(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = lane::sub_sat(a.raw.v[i], b.raw.v[i]);
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

// ---- shl_sat_by_low_byte
// Returns the lanes shifted by the count n = the low byte of k read as a signed number:
// for n >= 0 left, saturating at the lane's bounds (a count past the width saturates
// every lane but 0); for n < 0 right by -n, truncating or rounding half up by r
// (sqshl / uqshl, sqrshl / uqrshl with k in every lane).
template <lane::RightShift r, class T, int K>
inline vec<T, K> shl_sat_by_low_byte(const vec<T, K>& a, int32_t k) {
  vec<T, K> v;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) v.raw.v[i] = lane::shl_sat_by_low_byte<r>(a.raw.v[i], k);
  return v;
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
