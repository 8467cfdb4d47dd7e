// Generic backend: negating the odd lanes, the imaginary parts of interleaved complex
// data.
#pragma once

#include <limits>

namespace zivks::simd {

// The sign bit of every odd lane flipped, payloads kept (eor with a sign mask).
template <class T, int K>
inline vec<T, K> flip_sign_odd(const vec<T, K>& a) {
  static_assert(std::is_floating_point_v<T>, "a sign bit flip is for floats");
  vec<T, K> r = a;
  for (int i = 1; i < vec<T, K>::kLanes; i += 2)
    r.r.v[i] = fp::from_bits<T>(fp::to_bits(a.r.v[i]) ^ (fp::bits_t<T>{1} << (8 * sizeof(T) - 1)));
  return r;
}

// Every odd lane negated with saturation, the lowest value going to the highest
// (sqneg on the odd lanes).
template <class T, int K>
inline vec<T, K> neg_sat_odd(const vec<T, K>& a) {
  static_assert(std::is_integral_v<T> && std::is_signed_v<T>, "saturating negation is for signed lanes");
  vec<T, K> r = a;
  for (int i = 1; i < vec<T, K>::kLanes; i += 2)
    r.r.v[i] = a.r.v[i] == std::numeric_limits<T>::min() ? std::numeric_limits<T>::max()
                                                         : static_cast<T>(-a.r.v[i]);
  return r;
}

}  // namespace zivks::simd
