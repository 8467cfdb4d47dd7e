// NEON backend: float lane arithmetic. The compiler may swap the operands of fadd and
// fmul, so a NaN result has its payload chosen again by the operand order the family
// meant.
#pragma once

#include "core/simd/nan_rule.h"
#include "core/simd/neon/base.h"

namespace zivks::simd {

namespace neon {

// A lane that is not equal to itself is NaN.
inline bool any_nan(float32x4_t x) { return vminvq_u32(vceqq_f32(x, x)) == 0; }
inline bool any_nan(float64x2_t x) {
  return vminvq_u32(vreinterpretq_u32_u64(vceqq_f64(x, x))) == 0;
}

// All ones in the lanes that are numbers.
inline uint32x4_t self_equal(float32x4_t x) { return vceqq_f32(x, x); }
inline uint32x4_t self_equal(float64x2_t x) { return vreinterpretq_u32_u64(vceqq_f64(x, x)); }

}  // namespace neon

// ---- add_raw, sub_raw, mul_raw
template <class T, int K>
inline vec<T, K> add_raw(const vec<T, K>& a, const vec<T, K>& b) {
  if constexpr (std::is_same_v<T, float>) return {vaddq_f32(a.raw, b.raw)};
  else return {vaddq_f64(a.raw, b.raw)};
}
template <class T, int K>
inline vec<T, K> sub_raw(const vec<T, K>& a, const vec<T, K>& b) {
  if constexpr (std::is_same_v<T, float>) return {vsubq_f32(a.raw, b.raw)};
  else return {vsubq_f64(a.raw, b.raw)};
}
template <class T, int K>
inline vec<T, K> mul_raw(const vec<T, K>& a, const vec<T, K>& b) {
  if constexpr (std::is_same_v<T, float>) return {vmulq_f32(a.raw, b.raw)};
  else return {vmulq_f64(a.raw, b.raw)};
}

// ---- mul_add_raw
template <class T, int K>
inline vec<T, K> mul_add_raw(const vec<T, K>& a, const vec<T, K>& b, const vec<T, K>& c) {
  if constexpr (std::is_same_v<T, float>) return {vfmaq_f32(c.raw, a.raw, b.raw)};
  else return {vfmaq_f64(c.raw, a.raw, b.raw)};
}

// ---- mul_add
// The compiler may swap the factors of fmla, so a NaN lane is chosen again.
template <class T, int K>
inline vec<T, K> mul_add(const vec<T, K>& a, const vec<T, K>& b, const vec<T, K>& c) {
  const vec<T, K> r = mul_add_raw(a, b, c);
  return __builtin_expect(neon::any_nan(r.raw), 0) ? rebuild_nans3(r, a, b, c) : r;
}

// ---- any_nan
template <class T, int K, class... Rest>
inline bool any_nan(const vec<T, K>& r0, const Rest&... rest) {
  return (neon::any_nan(r0.raw) || ... || neon::any_nan(rest.raw));
}

// ---- has_nan
// The self-compares of all the vectors ANDed, then one uminv.
template <class T, int K, class... Rest>
inline bool has_nan(const vec<T, K>& v0, const Rest&... rest) {
  if constexpr (!std::is_floating_point_v<T>) {
    return false;
  } else {
    uint32x4_t eq = neon::self_equal(v0.raw);
    ((eq = vandq_u32(eq, neon::self_equal(rest.raw))), ...);
    return vminvq_u32(eq) == 0;
  }
}

// ---- add
template <class T, int K>
inline vec<T, K> add(const vec<T, K>& a, const vec<T, K>& b) {
  const vec<T, K> r = add_raw(a, b);
  return __builtin_expect(neon::any_nan(r.raw), 0) ? rebuild_nans(r, a, b) : r;
}

// ---- sub
template <class T, int K>
inline vec<T, K> sub(const vec<T, K>& a, const vec<T, K>& b) {
  const vec<T, K> r = sub_raw(a, b);
  return __builtin_expect(neon::any_nan(r.raw), 0) ? rebuild_nans(r, a, b) : r;
}

// ---- mul
template <class T, int K>
inline vec<T, K> mul(const vec<T, K>& a, const vec<T, K>& b) {
  const vec<T, K> r = mul_raw(a, b);
  return __builtin_expect(neon::any_nan(r.raw), 0) ? rebuild_nans(r, a, b) : r;
}

// ---- clear_sign
template <class T, int K>
inline vec<T, K> clear_sign(const vec<T, K>& a) {
  if constexpr (std::is_same_v<T, float>) return {vabsq_f32(a.raw)};
  else return {vabsq_f64(a.raw)};
}

// ---- reduce_add_pairwise
inline float reduce_add_pairwise(const vec<float, 1>& a) {
  const vec<float, 1> e{vuzp1q_f32(a.raw, a.raw)}, o{vuzp2q_f32(a.raw, a.raw)};
  const vec<float, 1> p = add(e, o);  // l0 + l1, l2 + l3
  return vgetq_lane_f32(add(p, vec<float, 1>{vextq_f32(p.raw, p.raw, 1)}).raw, 0);
}

}  // namespace zivks::simd
