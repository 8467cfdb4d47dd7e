// x86 backend: float lane arithmetic. The sums, differences and products are those of
// the Arm unit; only a NaN result needs its payload chosen again.
#pragma once

#include "core/simd/nan_rule.h"
#include "core/simd/x86/base.h"

namespace zivks::simd {

namespace x86 {

// A bit for each lane that is NaN in any of the registers: one compare per pair.
template <class V>
inline uint32_t nan_lanes(const V& r0) {
  return ops<V::kBlocks>::unordered(r0.raw, r0.raw);
}
template <class V, class... Rest>
inline uint32_t nan_lanes(const V& r0, const V& r1, const Rest&... rest) {
  const uint32_t m = ops<V::kBlocks>::unordered(r0.raw, r1.raw);
  if constexpr (sizeof...(Rest) == 0) return m;
  else return m | nan_lanes(rest...);
}

}  // namespace x86

// ---- add_raw, sub_raw, mul_raw
// The x86 unit gives the same sums, differences and products, but a NaN lane may hold
// another NaN than the Arm one.
template <class T, int K>
inline vec<T, K> add_raw(const vec<T, K>& a, const vec<T, K>& b) { return {a.raw + b.raw}; }
template <class T, int K>
inline vec<T, K> sub_raw(const vec<T, K>& a, const vec<T, K>& b) { return {a.raw - b.raw}; }
template <class T, int K>
inline vec<T, K> mul_raw(const vec<T, K>& a, const vec<T, K>& b) { return {a.raw * b.raw}; }

// ---- mul_add
// Levels with a fused unit use it; the baseline has none and fuses lane by lane.
namespace x86 {
#if defined(__FMA__)
inline __m128 fmadd(__m128 a, __m128 b, __m128 c) { return _mm_fmadd_ps(a, b, c); }
inline __m128d fmadd(__m128d a, __m128d b, __m128d c) { return _mm_fmadd_pd(a, b, c); }
inline __m256 fmadd(__m256 a, __m256 b, __m256 c) { return _mm256_fmadd_ps(a, b, c); }
inline __m256d fmadd(__m256d a, __m256d b, __m256d c) { return _mm256_fmadd_pd(a, b, c); }
#endif
#if defined(ZIVKS_X86_512)
inline __m512 fmadd(__m512 a, __m512 b, __m512 c) { return _mm512_fmadd_ps(a, b, c); }
inline __m512d fmadd(__m512d a, __m512d b, __m512d c) { return _mm512_fmadd_pd(a, b, c); }
#endif
}  // namespace x86

// ---- mul_add_raw
template <class T, int K>
inline vec<T, K> mul_add_raw(const vec<T, K>& a, const vec<T, K>& b, const vec<T, K>& c) {
#if defined(__FMA__)
  return vec<T, K>{x86::fmadd(a.raw, b.raw, c.raw)};
#else
  lanes<vec<T, K>> la(a), lb(b), lc(c);
  for (int i = 0; i < vec<T, K>::kLanes; ++i) la.v[i] = std::fma(la.v[i], lb.v[i], lc.v[i]);
  return la.get();
#endif
}

template <class T, int K>
inline vec<T, K> mul_add(const vec<T, K>& a, const vec<T, K>& b, const vec<T, K>& c) {
  const vec<T, K> r = mul_add_raw(a, b, c);
  return __builtin_expect(any_nan(r), 0) ? rebuild_nans3(r, a, b, c) : r;
}

// ---- any_nan
template <class T, int K, class... Rest>
inline bool any_nan(const vec<T, K>& r0, const Rest&... rest) {
  return x86::nan_lanes(r0, rest...) != 0;
}

// ---- has_nan
// One unordered compare tests two vectors.
template <class T, int K, class... Rest>
inline bool has_nan(const vec<T, K>& v0, const Rest&... rest) {
  if constexpr (!std::is_floating_point_v<T>) return false;
  else return x86::nan_lanes(v0, rest...) != 0;
}

// ---- add
template <class T, int K>
inline vec<T, K> add(const vec<T, K>& a, const vec<T, K>& b) {
  const vec<T, K> r = add_raw(a, b);
  return __builtin_expect(any_nan(r), 0) ? rebuild_nans(r, a, b) : r;
}

// ---- sub
template <class T, int K>
inline vec<T, K> sub(const vec<T, K>& a, const vec<T, K>& b) {
  const vec<T, K> r = sub_raw(a, b);
  return __builtin_expect(any_nan(r), 0) ? rebuild_nans(r, a, b) : r;
}

// ---- mul
template <class T, int K>
inline vec<T, K> mul(const vec<T, K>& a, const vec<T, K>& b) {
  const vec<T, K> r = mul_raw(a, b);
  return __builtin_expect(any_nan(r), 0) ? rebuild_nans(r, a, b) : r;
}

// ---- clear_sign
template <class T, int K>
inline vec<T, K> clear_sign(const vec<T, K>& a) {
  using O = x86::ops<K>;
  if constexpr (std::is_same_v<T, float>) return x86::of_bits<T, K>(x86::bits(a) & O::set1_32(0x7FFFFFFF));
  else return x86::of_bits<T, K>(x86::bits(a) & O::set1_64(0x7FFFFFFFFFFFFFFFll));
}

// ---- reduce_add_pairwise
inline float reduce_add_pairwise(const vec<float, 1>& a) {
  const vec<float, 1> s{_mm_shuffle_ps(a.raw, a.raw, _MM_SHUFFLE(2, 3, 0, 1))};
  const vec<float, 1> p = add(a, s);  // l0 + l1 | l2 + l3
  const vec<float, 1> h{_mm_movehl_ps(p.raw, p.raw)};
  return _mm_cvtss_f32(add(p, h).raw);
}

}  // namespace zivks::simd
