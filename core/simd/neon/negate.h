// NEON backend: negating the odd lanes, the imaginary parts of interleaved complex data.
#pragma once

#include "core/simd/neon/base.h"

namespace zivks::simd {

// ---- flip_sign_odd
template <class T, int K>
inline vec<T, K> flip_sign_odd(const vec<T, K>& a) {
  vec<T, K> r;
  if constexpr (std::is_same_v<T, float>) {
    const uint32x4_t m = vreinterpretq_u32_u64(vdupq_n_u64(0x8000000000000000ull));
    r.raw = vreinterpretq_f32_u32(veorq_u32(vreinterpretq_u32_f32(a.raw), m));
  } else {
    static_assert(std::is_same_v<T, double>, "a sign bit flip is for floats");
    const uint64x2_t m = vcombine_u64(vdup_n_u64(0), vdup_n_u64(0x8000000000000000ull));
    r.raw = vreinterpretq_f64_u64(veorq_u64(vreinterpretq_u64_f64(a.raw), m));
  }
  return r;
}

// ---- neg_sat_odd
// sqneg, kept on the odd lanes by bsl.
template <class T, int K>
inline vec<T, K> neg_sat_odd(const vec<T, K>& a) {
  static_assert(std::is_same_v<T, int16_t>, "saturating negation of int16 lanes");
  const uint16x8_t odd = vreinterpretq_u16_u32(vdupq_n_u32(0xFFFF0000u));
  vec<T, K> r;
  r.raw = vbslq_s16(odd, vqnegq_s16(a.raw), a.raw);
  return r;
}

}  // namespace zivks::simd
