// x86 backend: float lane arithmetic. The sums and differences are those of the Arm
// unit; only a NaN result needs its payload chosen again.
#pragma once

namespace zivks::simd {

namespace x86 {

template <class T, int K>
inline bool any_nan(const vec<T, K>& v) {
  const auto x = v.r;
  if constexpr (std::is_same_v<T, float>) {
    if constexpr (K == 1) return _mm_movemask_ps(_mm_cmpunord_ps(x, x)) != 0;
#if defined(__AVX2__)
    else if constexpr (K == 2) return _mm256_movemask_ps(_mm256_cmp_ps(x, x, _CMP_UNORD_Q)) != 0;
#endif
#if defined(__AVX512F__)
    else return _mm512_cmp_ps_mask(x, x, _CMP_UNORD_Q) != 0;
#endif
  } else {
    if constexpr (K == 1) return _mm_movemask_pd(_mm_cmpunord_pd(x, x)) != 0;
#if defined(__AVX2__)
    else if constexpr (K == 2) return _mm256_movemask_pd(_mm256_cmp_pd(x, x, _CMP_UNORD_Q)) != 0;
#endif
#if defined(__AVX512F__)
    else return _mm512_cmp_pd_mask(x, x, _CMP_UNORD_Q) != 0;
#endif
  }
}

// A bit for each lane in which x or y is NaN.
template <class T, int K>
inline uint32_t unordered(const vec<T, K>& x, const vec<T, K>& y) {
  if constexpr (std::is_same_v<T, float>) {
    if constexpr (K == 1) return _mm_movemask_ps(_mm_cmpunord_ps(x.r, y.r));
#if defined(__AVX2__)
    else if constexpr (K == 2) return _mm256_movemask_ps(_mm256_cmp_ps(x.r, y.r, _CMP_UNORD_Q));
#endif
#if defined(__AVX512F__)
    else return _mm512_cmp_ps_mask(x.r, y.r, _CMP_UNORD_Q);
#endif
  } else {
    if constexpr (K == 1) return _mm_movemask_pd(_mm_cmpunord_pd(x.r, y.r));
#if defined(__AVX2__)
    else if constexpr (K == 2) return _mm256_movemask_pd(_mm256_cmp_pd(x.r, y.r, _CMP_UNORD_Q));
#endif
#if defined(__AVX512F__)
    else return _mm512_cmp_pd_mask(x.r, y.r, _CMP_UNORD_Q);
#endif
  }
}

// A bit for each lane that is NaN in any of the registers: one compare per pair.
template <class V>
inline uint32_t nan_lanes(const V& r0) { return unordered(r0, r0); }
template <class V, class... Rest>
inline uint32_t nan_lanes(const V& r0, const V& r1, const Rest&... rest) {
  if constexpr (sizeof...(Rest) == 0) return unordered(r0, r1);
  else return unordered(r0, r1) | nan_lanes(rest...);
}

}  // namespace x86

// fadd and fsub as the x86 unit does them: the same sums and differences, but a NaN lane
// may hold another NaN than the Arm one. A caller tests such results with any_nan and,
// in the rare case, does them again with add or sub.
template <class T, int K>
inline vec<T, K> add_raw(const vec<T, K>& a, const vec<T, K>& b) { return {a.r + b.r}; }
template <class T, int K>
inline vec<T, K> sub_raw(const vec<T, K>& a, const vec<T, K>& b) { return {a.r - b.r}; }

// Whether any lane of the registers is NaN.
template <class T, int K, class... Rest>
inline bool any_nan(const vec<T, K>& r0, const Rest&... rest) {
  return x86::nan_lanes(r0, rest...) != 0;
}

// fadd
template <class T, int K>
inline vec<T, K> add(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r{a.r + b.r};
  return __builtin_expect(x86::any_nan(r), 0) ? rebuild_nans(r, a, b) : r;
}

// fsub
template <class T, int K>
inline vec<T, K> sub(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r{a.r - b.r};
  return __builtin_expect(x86::any_nan(r), 0) ? rebuild_nans(r, a, b) : r;
}

}  // namespace zivks::simd
