// Generic backend: bitwise lane operations and shifts by a broadcast count.
#pragma once

#include "core/simd/generic/base.h"

namespace zivks::simd {

namespace generic {

// The lanes of a and b as raw bits, combined by op lane by lane.
template <class T, int K, class Op>
inline vec<T, K> bits2(const vec<T, K>& a, const vec<T, K>& b, Op op) {
  using B = std::conditional_t<sizeof(T) == 1, uint8_t,
            std::conditional_t<sizeof(T) == 2, uint16_t, std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>>>;
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) {
    B x, y;
    memcpy(&x, &a.raw.v[i], sizeof x);
    memcpy(&y, &b.raw.v[i], sizeof y);
    const B z = static_cast<B>(op(x, y));
    memcpy(&r.raw.v[i], &z, sizeof z);
  }
  return r;
}

}  // namespace generic

// ---- bit_and
// Returns the bits set in both a and b, for lanes of any type (and).
template <class T, int K>
inline vec<T, K> bit_and(const vec<T, K>& a, const vec<T, K>& b) {
  return generic::bits2(a, b, [](auto x, auto y) { return x & y; });
}

// ---- bit_or
// Returns the bits set in a or b (orr).
template <class T, int K>
inline vec<T, K> bit_or(const vec<T, K>& a, const vec<T, K>& b) {
  return generic::bits2(a, b, [](auto x, auto y) { return x | y; });
}

// ---- bit_xor
// Returns the bits set in exactly one of a and b (eor).
template <class T, int K>
inline vec<T, K> bit_xor(const vec<T, K>& a, const vec<T, K>& b) {
  return generic::bits2(a, b, [](auto x, auto y) { return x ^ y; });
}

// ---- bit_not
// Returns every bit of a inverted (mvn).
template <class T, int K>
inline vec<T, K> bit_not(const vec<T, K>& a) {
  return generic::bits2(a, a, [](auto x, auto) { return ~x; });
}

// ---- shift_count
// A shift count from 0 to the lane width less one, broadcast once for a loop of shl and
// shr (dup).
template <class T, int K>
struct shift_count {
  int s;
  explicit shift_count(int n) : s(n) {}
};

// ---- shl
// Returns each lane shifted left by the count, the high bits lost; a signed lane wraps
// (ushl / sshl).
template <class T, int K>
inline vec<T, K> shl(const vec<T, K>& a, const shift_count<T, K>& n) {
  using U = std::make_unsigned_t<T>;
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i)
    r.raw.v[i] = static_cast<T>(static_cast<U>(static_cast<U>(a.raw.v[i]) << n.s));
  return r;
}

// ---- shr
// Returns each lane shifted right by the count: zeros come in for unsigned lanes, copies
// of the sign bit for signed ones (ushl / sshl by the negated count).
template <class T, int K>
inline vec<T, K> shr(const vec<T, K>& a, const shift_count<T, K>& n) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.raw.v[i] = static_cast<T>(a.raw.v[i] >> n.s);
  return r;
}

}  // namespace zivks::simd
