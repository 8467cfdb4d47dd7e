// x86 backend: negating the odd lanes, the imaginary parts of interleaved complex data.
#pragma once

#include "core/simd/x86/base.h"

namespace zivks::simd {

// ---- flip_sign_odd
// The mask in 64-bit lanes: the high half of each for float pairs, every odd one for
// doubles; a register of constants, repeated per block.
template <class T, int K>
inline vec<T, K> flip_sign_odd(const vec<T, K>& a) {
  static_assert(std::is_floating_point_v<T>, "a sign bit flip is for floats");
  constexpr long long s = static_cast<long long>(0x8000000000000000ull);
  constexpr long long lo = std::is_same_v<T, float> ? s : 0;
  return x86::of_bits<T, K>(x86::bits(a) ^ x86::ops<K>::block(_mm_set_epi64x(s, lo)));
}

// ---- neg_sat_odd
// psubsw from zero, blended into the odd lanes.
template <class T, int K>
inline vec<T, K> neg_sat_odd(const vec<T, K>& a) {
  static_assert(std::is_same_v<T, int16_t>, "saturating negation of int16 lanes");
  using O = x86::ops<K>;
  return vec<T, K>{O::blend_odd16(a.raw, O::subs_i16(O::zero(), a.raw))};
}

}  // namespace zivks::simd
