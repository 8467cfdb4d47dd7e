// Generic backend: lane compares and the bitwise select. A compare gives a mask of the
// operands' lane type: every bit of a lane set where the relation holds, clear elsewhere.
#pragma once

#include "core/simd/generic/bitwise.h"

namespace zivks::simd {

namespace generic {

template <class T, int K, class Rel>
inline vec<T, K> mask_where(const vec<T, K>& a, const vec<T, K>& b, Rel rel) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) memset(&r.raw.v[i], rel(a.raw.v[i], b.raw.v[i]) ? 0xFF : 0, sizeof(T));
  return r;
}

}  // namespace generic

// ---- cmp_eq
// Returns the mask of the lanes where a equals b; floats compare ordered, so a NaN equals
// nothing and -0 equals +0 (cmeq / fcmeq).
template <class T, int K>
inline vec<T, K> cmp_eq(const vec<T, K>& a, const vec<T, K>& b) {
  return generic::mask_where(a, b, [](T x, T y) { return x == y; });
}

// ---- cmp_gt
// Returns the mask of the lanes where a is above b; a NaN is above nothing
// (cmgt / cmhi / fcmgt).
template <class T, int K>
inline vec<T, K> cmp_gt(const vec<T, K>& a, const vec<T, K>& b) {
  return generic::mask_where(a, b, [](T x, T y) { return x > y; });
}

// ---- cmp_lt
// Returns the mask of the lanes where a is below b; a NaN is below nothing (cmgt / cmhi /
// fcmgt with the operands swapped).
template <class T, int K>
inline vec<T, K> cmp_lt(const vec<T, K>& a, const vec<T, K>& b) {
  return cmp_gt(b, a);
}

// ---- select
// Returns the bits of a where the mask m is set and those of b where it is clear (bsl).
template <class T, int K>
inline vec<T, K> select(const vec<T, K>& m, const vec<T, K>& a, const vec<T, K>& b) {
  return bit_or(bit_and(m, a), bit_and(bit_not(m), b));
}

// ---- any_true
// Returns whether any bit of the mask m is set (umaxv, then a test of the result).
template <class T, int K>
inline bool any_true(const vec<T, K>& m) {
  unsigned char b[sizeof m.raw];
  memcpy(b, &m.raw, sizeof b);
  for (unsigned char x : b)
    if (x) return true;
  return false;
}

// ---- zero_flag_mask
// Returns the mask of the lanes whose flag byte, flags[l] for lane l, is zero, for
// masks of 32-bit lanes: a null vector's flags turned into the rows to keep (ld1,
// sxtl twice, cmeq #0).
template <class V>
inline V zero_flag_mask(const int8_t* flags) {
  static_assert(sizeof(typename V::lane) == 4, "masks of 32-bit lanes");
  V r;
  for (int i = 0; i < V::kLanes; ++i) memset(&r.raw.v[i], flags[i] == 0 ? 0xFF : 0, sizeof(typename V::lane));
  return r;
}

// ---- lane_bits
// Returns a word with bit l set where lane l of the mask m is set, for masks of 32-bit
// lanes (the lanes ANDed with 1, 2, 4, 8 and added across: and, addv).
template <class T, int K>
inline uint32_t lane_bits(const vec<T, K>& m) {
  static_assert(sizeof(T) == 4, "masks of 32-bit lanes");
  uint32_t r = 0;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r |= (m.raw.v[i] != 0 ? 1u : 0u) << i;
  return r;
}

}  // namespace zivks::simd
