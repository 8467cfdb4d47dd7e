// Generic backend: negating the odd lanes, the imaginary parts of interleaved complex
// data.
#pragma once

#include "core/lane.h"
#include "core/simd/generic/base.h"

namespace zivks::simd {

// ---- flip_sign_odd
// Returns a with the sign bit of every odd float lane flipped, payloads kept (eor with a
// sign mask).
template <class T, int K>
inline vec<T, K> flip_sign_odd(const vec<T, K>& a) {
  static_assert(std::is_floating_point_v<T>, "a sign bit flip is for floats");
  vec<T, K> r = a;
  for (int i = 1; i < vec<T, K>::kLanes; i += 2) r.raw.v[i] = lane::flip_sign(a.raw.v[i]);
  return r;
}

// ---- neg_sat_odd
// Returns a with every odd lane negated, the most negative value giving the most
// positive one (sqneg, kept on the odd lanes).
template <class T, int K>
inline vec<T, K> neg_sat_odd(const vec<T, K>& a) {
  static_assert(std::is_integral_v<T> && std::is_signed_v<T>, "saturating negation is for signed lanes");
  vec<T, K> r = a;
  for (int i = 1; i < vec<T, K>::kLanes; i += 2) r.raw.v[i] = lane::neg_sat(a.raw.v[i]);
  return r;
}

}  // namespace zivks::simd
