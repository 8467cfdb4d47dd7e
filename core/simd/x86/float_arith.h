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

}  // namespace x86

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
