// x86 backend: conversions between integer and float lanes, and the float multiply.
// cvt gives the "integer indefinite" 0x80...0 for NaN and for every value out of range,
// where the Arm conversions saturate and give 0 for NaN: those lanes are fixed up.
#pragma once

#include "core/scale.h"

namespace zivks::simd {

// scvtf / ucvtf
template <class F, class I>
inline vec<F, 1> cvt_to_float(const vec<I, 1>& a) {
  if constexpr (std::is_same_v<I, int32_t>) {
    return vec<F, 1>{_mm_cvtepi32_ps(a.r)};
  } else if constexpr (std::is_same_v<I, uint32_t>) {
#if defined(__AVX512F__) && defined(__AVX512VL__)
    return vec<F, 1>{_mm_cvtepu32_ps(a.r)};
#else
    // The high half times 2^16 is exact; the one rounding is in the final add.
    const __m128 hi = _mm_cvtepi32_ps(_mm_srli_epi32(a.r, 16));
    const __m128 lo = _mm_cvtepi32_ps(_mm_and_si128(a.r, _mm_set1_epi32(0xFFFF)));
    return vec<F, 1>{_mm_add_ps(_mm_mul_ps(hi, _mm_set1_ps(65536.0f)), lo)};
#endif
  } else if constexpr (std::is_same_v<I, int64_t>) {
#if defined(__AVX512DQ__) && defined(__AVX512VL__)
    return vec<F, 1>{_mm_cvtepi64_pd(a.r)};
#else
    const lanes<vec<I, 1>> l(a);
    return vec<F, 1>{_mm_set_pd(static_cast<double>(l.v[1]), static_cast<double>(l.v[0]))};
#endif
  } else {
    static_assert(sizeof(I) == 0, "no such conversion");
  }
}

// fmul
template <class F>
inline vec<F, 1> mul(const vec<F, 1>& a, const vec<F, 1>& b) {
  vec<F, 1> r;
  if constexpr (std::is_same_v<F, float>) r.r = _mm_mul_ps(a.r, b.r);
  else r.r = _mm_mul_pd(a.r, b.r);
  return __builtin_expect(x86::any_nan(r), 0) ? rebuild_nans(r, a, b) : r;
}

// fmul for a product that is converted to an integer next (every NaN becomes 0, so
// which NaN comes out does not matter).
template <class F>
inline vec<F, 1> mul_to_convert(const vec<F, 1>& a, const vec<F, 1>& b) {
  if constexpr (std::is_same_v<F, float>) return vec<F, 1>{_mm_mul_ps(a.r, b.r)};
  else return vec<F, 1>{_mm_mul_pd(a.r, b.r)};
}

namespace x86 {

// Whole float lanes by m, independent of MXCSR; NaN stays NaN.
template <rounding::Mode m>
inline __m128 round(__m128 p) {
  using rounding::Mode;
  if constexpr (m == Mode::kZero) return _mm_round_ps(p, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
  else if constexpr (m == Mode::kNear) return _mm_round_ps(p, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
  else {
    const __m128 sign = _mm_castsi128_ps(_mm_set1_epi32(INT32_MIN));
    const __m128 t = _mm_round_ps(p, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
    const __m128 frac = _mm_andnot_ps(sign, _mm_sub_ps(p, t));  // exact
    const __m128 step = _mm_or_ps(_mm_set1_ps(1.0f), _mm_and_ps(p, sign));
    return _mm_add_ps(t, _mm_and_ps(_mm_cmpge_ps(frac, _mm_set1_ps(0.5f)), step));
  }
}
template <rounding::Mode m>
inline __m128d round(__m128d p) {
  using rounding::Mode;
  if constexpr (m == Mode::kZero) return _mm_round_pd(p, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
  else if constexpr (m == Mode::kNear) return _mm_round_pd(p, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
  else {
    const __m128d sign = _mm_castsi128_pd(_mm_set1_epi64x(INT64_MIN));
    const __m128d t = _mm_round_pd(p, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
    const __m128d frac = _mm_andnot_pd(sign, _mm_sub_pd(p, t));  // exact
    const __m128d step = _mm_or_pd(_mm_set1_pd(1.0), _mm_and_pd(p, sign));
    return _mm_add_pd(t, _mm_and_pd(_mm_cmpge_pd(frac, _mm_set1_pd(0.5)), step));
  }
}

}  // namespace x86

// fcvtzs / fcvtns / fcvtas, and fcvtzu / fcvtnu / fcvtau for 32-bit lanes.
template <class L, rounding::Mode m, class F>
inline vec<L, 1> cvt_sat(const vec<F, 1>& a) {
  if constexpr (std::is_same_v<L, int32_t>) {
    const __m128 r = x86::round<m>(a.r);
    // 0x80000000 from cvt where the lane is 2^31 or more becomes 0x7FFFFFFF.
    const __m128i big = _mm_castps_si128(_mm_cmpge_ps(r, _mm_set1_ps(2147483648.0f)));
    const __m128i i = _mm_xor_si128(_mm_cvttps_epi32(r), big);
    return vec<L, 1>{_mm_and_si128(i, _mm_castps_si128(_mm_cmpord_ps(a.r, a.r)))};
  } else if constexpr (std::is_same_v<L, uint32_t>) {
    // max keeps its second operand for NaN: NaN and everything below 0 become 0.
    const __m128 r = _mm_max_ps(x86::round<m>(a.r), _mm_setzero_ps());
    const __m128 big = _mm_cmpge_ps(r, _mm_set1_ps(2147483648.0f));
    const __m128 low = _mm_sub_ps(r, _mm_and_ps(big, _mm_set1_ps(2147483648.0f)));
    const __m128i i = _mm_xor_si128(_mm_cvttps_epi32(low),
                                    _mm_and_si128(_mm_castps_si128(big), _mm_set1_epi32(INT32_MIN)));
    return vec<L, 1>{_mm_or_si128(i, _mm_castps_si128(_mm_cmpge_ps(r, _mm_set1_ps(4294967296.0f))))};
  } else if constexpr (std::is_same_v<L, int64_t>) {
    const __m128d r = x86::round<m>(a.r);
#if defined(__AVX512DQ__) && defined(__AVX512VL__)
    const __m128i big = _mm_castpd_si128(_mm_cmpge_pd(r, _mm_set1_pd(9223372036854775808.0)));
    const __m128i i = _mm_xor_si128(_mm_cvttpd_epi64(r), big);
    return vec<L, 1>{_mm_and_si128(i, _mm_castpd_si128(_mm_cmpord_pd(a.r, a.r)))};
#else
    lanes<vec<double, 1>> l(vec<double, 1>{r});
    int64_t out[2];
    for (int j = 0; j < 2; ++j) {
      const double x = l.v[j];
      out[j] = x != x ? 0
               : x >= 9223372036854775808.0 ? INT64_MAX
               : x < -9223372036854775808.0 ? INT64_MIN
                                            : static_cast<int64_t>(x);
    }
    return load<vec<L, 1>>(out);
#endif
  } else {
    static_assert(sizeof(L) == 0, "no such conversion");
  }
}

}  // namespace zivks::simd
