// NEON backend: float lane arithmetic. The compiler may swap the operands of fadd, so a
// NaN result has its payload chosen again by the operand order the family meant.
#pragma once

namespace zivks::simd {

namespace neon {

// A lane that is not equal to itself is NaN.
inline bool any_nan(float32x4_t x) { return vminvq_u32(vceqq_f32(x, x)) == 0; }
inline bool any_nan(float64x2_t x) {
  return vminvq_u32(vreinterpretq_u32_u64(vceqq_f64(x, x))) == 0;
}

}  // namespace neon

// fadd
template <class T, int K>
inline vec<T, K> add(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  if constexpr (std::is_same_v<T, float>) r.r = vaddq_f32(a.r, b.r);
  else r.r = vaddq_f64(a.r, b.r);
  return __builtin_expect(neon::any_nan(r.r), 0) ? rebuild_nans(r, a, b) : r;
}

// fsub
template <class T, int K>
inline vec<T, K> sub(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  if constexpr (std::is_same_v<T, float>) r.r = vsubq_f32(a.r, b.r);
  else r.r = vsubq_f64(a.r, b.r);
  return __builtin_expect(neon::any_nan(r.r), 0) ? rebuild_nans(r, a, b) : r;
}

// fadd and fsub whose NaN lanes may come from swapped operands; a caller tests such
// results with any_nan and, in the rare case, does them again with add or sub.
template <class T, int K>
inline vec<T, K> add_raw(const vec<T, K>& a, const vec<T, K>& b) {
  if constexpr (std::is_same_v<T, float>) return {vaddq_f32(a.r, b.r)};
  else return {vaddq_f64(a.r, b.r)};
}
template <class T, int K>
inline vec<T, K> sub_raw(const vec<T, K>& a, const vec<T, K>& b) {
  if constexpr (std::is_same_v<T, float>) return {vsubq_f32(a.r, b.r)};
  else return {vsubq_f64(a.r, b.r)};
}
template <class T, int K, class... Rest>
inline bool any_nan(const vec<T, K>& r0, const Rest&... rest) {
  return (neon::any_nan(r0.r) || ... || neon::any_nan(rest.r));
}

}  // namespace zivks::simd
