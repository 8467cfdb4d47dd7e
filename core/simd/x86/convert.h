// x86 backend: conversions between integer and float lanes, and the float multiply.
// cvt gives the "integer indefinite" 0x80...0 for NaN and for every value out of range,
// where the Arm conversions saturate and give 0 for NaN: those lanes are fixed up. The
// AVX-512 forms make NaN lanes +0 before converting and give lanes at or above the top
// the maximum through a lane mask.
#pragma once

#include "core/scale.h"

namespace zivks::simd {

// scvtf / ucvtf
template <class F, class I, int K>
inline vec<F, K> cvt_to_float(const vec<I, K>& a) {
  using V = vec<F, K>;
  if constexpr (std::is_same_v<I, int32_t>) {
    if constexpr (K == 1) return V{_mm_cvtepi32_ps(a.r)};
    else if constexpr (K == 2) return V{_mm256_cvtepi32_ps(a.r)};
    else return V{_mm512_maskz_cvtepi32_ps(0xFFFF, a.r)};
  } else if constexpr (std::is_same_v<I, uint32_t>) {
#if defined(__AVX512F__) && defined(__AVX512VL__)
    if constexpr (K == 1) return V{_mm_cvtepu32_ps(a.r)};
    else if constexpr (K == 2) return V{_mm256_cvtepu32_ps(a.r)};
    else return V{_mm512_maskz_cvtepu32_ps(0xFFFF, a.r)};
#else
    // The high half times 2^16 is exact; the one rounding is in the final add.
    if constexpr (K == 1) {
      const __m128 hi = _mm_cvtepi32_ps(_mm_srli_epi32(a.r, 16));
      const __m128 lo = _mm_cvtepi32_ps(_mm_and_si128(a.r, _mm_set1_epi32(0xFFFF)));
      return V{_mm_add_ps(_mm_mul_ps(hi, _mm_set1_ps(65536.0f)), lo)};
    } else {
      const __m256 hi = _mm256_cvtepi32_ps(_mm256_srli_epi32(a.r, 16));
      const __m256 lo = _mm256_cvtepi32_ps(_mm256_and_si256(a.r, _mm256_set1_epi32(0xFFFF)));
      return V{_mm256_add_ps(_mm256_mul_ps(hi, _mm256_set1_ps(65536.0f)), lo)};
    }
#endif
  } else if constexpr (std::is_same_v<I, int64_t>) {
#if defined(__AVX512DQ__) && defined(__AVX512VL__)
    if constexpr (K == 1) return V{_mm_cvtepi64_pd(a.r)};
    else if constexpr (K == 2) return V{_mm256_cvtepi64_pd(a.r)};
    else return V{_mm512_cvtepi64_pd(a.r)};
#else
    const lanes<vec<I, K>> l(a);
    lanes<V> r(V{});
    for (int j = 0; j < V::kLanes; ++j) r.v[j] = static_cast<double>(l.v[j]);
    return r.get();
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
template <class F, int K>
inline vec<F, K> mul_to_convert(const vec<F, K>& a, const vec<F, K>& b) {
  return vec<F, K>{a.r * b.r};
}

namespace x86 {

// Float registers of K blocks: constants, compares to a register of all-ones lanes (at
// one block only "at least" and "ordered", the two SSE has), and the rounding to whole
// values (independent of MXCSR; NaN stays NaN).
template <class S, int K> struct fregs;
template <> struct fregs<float, 1> {
  static __m128 set1(float x) { return _mm_set1_ps(x); }
  template <int imm> static __m128 cmp(__m128 a, __m128 b) {
    if constexpr (imm == _CMP_GE_OQ) return _mm_cmpge_ps(a, b);
    else return _mm_cmpord_ps(a, b);
  }
  template <int imm> static __m128 round(__m128 a) { return _mm_round_ps(a, imm); }
};
template <> struct fregs<double, 1> {
  static __m128d set1(double x) { return _mm_set1_pd(x); }
  template <int imm> static __m128d cmp(__m128d a, __m128d b) {
    if constexpr (imm == _CMP_GE_OQ) return _mm_cmpge_pd(a, b);
    else return _mm_cmpord_pd(a, b);
  }
  template <int imm> static __m128d round(__m128d a) { return _mm_round_pd(a, imm); }
};
#if defined(__AVX2__)
template <> struct fregs<float, 2> {
  static __m256 set1(float x) { return _mm256_set1_ps(x); }
  template <int imm> static __m256 cmp(__m256 a, __m256 b) { return _mm256_cmp_ps(a, b, imm); }
  template <int imm> static __m256 round(__m256 a) { return _mm256_round_ps(a, imm); }
};
template <> struct fregs<double, 2> {
  static __m256d set1(double x) { return _mm256_set1_pd(x); }
  template <int imm> static __m256d cmp(__m256d a, __m256d b) { return _mm256_cmp_pd(a, b, imm); }
  template <int imm> static __m256d round(__m256d a) { return _mm256_round_pd(a, imm); }
};
#endif
#if defined(__AVX512F__)
template <> struct fregs<float, 4> {
  static __m512 set1(float x) { return _mm512_set1_ps(x); }
  template <int imm> static __m512 round(__m512 a) { return _mm512_maskz_roundscale_ps(0xFFFF, a, imm); }
};
template <> struct fregs<double, 4> {
  static __m512d set1(double x) { return _mm512_set1_pd(x); }
  template <int imm> static __m512d round(__m512d a) { return _mm512_maskz_roundscale_pd(0xFF, a, imm); }
};
#endif

// Whole float lanes by m; NaN stays NaN. A tie away from zero: the truncation plus one
// step of p's sign where the (exact) fraction is at least one half.
template <rounding::Mode m, class R>
inline R round(R p) {
  using rounding::Mode;
  using S = std::conditional_t<sizeof(p[0]) == 4, float, double>;
  using f = fregs<S, sizeof(R) / 16>;
  if constexpr (m == Mode::kZero) return f::template round<_MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC>(p);
  else if constexpr (m == Mode::kNear) return f::template round<_MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC>(p);
  else {
    const R t = f::template round<_MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC>(p);
    auto bits = [](R x) { return ints(x); };
    const auto sign = bits(f::set1(S(-0.0)));
    const auto frac = ~sign & bits(p - t);  // exact
    const auto step = bits(f::set1(S(1))) | (bits(p) & sign);
    R fr, st;
    from_ints(fr, frac);
    from_ints(st, step);
    const R ge = f::template cmp<_CMP_GE_OQ>(fr, f::set1(S(0.5)));
    R add;
    from_ints(add, bits(ge) & bits(st));
    return t + add;
  }
}

// p plus the float just below one half, with p's sign: truncating the sum rounds p to
// nearest with a tie away from zero, for every p (the sum rounds up to the next whole
// value exactly where p's fraction is at least one half). NaN stays NaN.
template <class R>
inline R add_below_half(R p) {
  using S = std::conditional_t<sizeof(p[0]) == 4, float, double>;
  using f = fregs<S, sizeof(R) / 16>;
  const R below_half = sizeof(S) == 4 ? f::set1(S(0x1.fffffep-2f)) : f::set1(S(0x1.fffffffffffffp-2));
  R h;
  from_ints(h, (ints(p) & ints(f::set1(S(-0.0)))) | ints(below_half));
  return p + h;
}

}  // namespace x86

// fcvtzs / fcvtns / fcvtas, and fcvtzu / fcvtnu / fcvtau for 32-bit lanes.
template <class L, rounding::Mode m, class F, int K>
inline vec<L, K> cvt_sat(const vec<F, K>& a) {
  using rounding::Mode;
  using V = vec<L, K>;
  if constexpr (K == 4) {
#if defined(__AVX512F__) && defined(__AVX512DQ__)
    // AVX-512: the rounding goes into the conversion where the mode has one. Whether a
    // lane reaches the top is the same before and after rounding: floats that large are
    // whole.
    constexpr int kNoExc = _MM_FROUND_NO_EXC;
    // NaN lanes become +0 first (fixupimm: both NaN classes to +0, every other lane kept);
    // then lanes below the top convert and the others take the maximum.
    if constexpr (std::is_same_v<L, int32_t>) {
      const __m512 p = _mm512_fixupimm_ps(a.r, a.r, _mm512_set1_epi32(0x88), 0);
      const __mmask16 in = _mm512_cmp_ps_mask(p, _mm512_set1_ps(2147483648.0f), _CMP_LT_OQ);
      const __m512i top = _mm512_set1_epi32(INT32_MAX);
      if constexpr (m == Mode::kZero) return V{_mm512_mask_cvtt_roundps_epi32(top, in, p, kNoExc)};
      else if constexpr (m == Mode::kNear)
        return V{_mm512_mask_cvt_roundps_epi32(top, in, p, _MM_FROUND_TO_NEAREST_INT | kNoExc)};
      else return V{_mm512_mask_cvtt_roundps_epi32(top, in, x86::add_below_half(p), kNoExc)};
    } else if constexpr (std::is_same_v<L, uint32_t>) {
      // max keeps its second operand for NaN: NaN and everything below 0 become 0. The
      // unsigned conversion gives 2^32 - 1 for every lane too large: the saturated value.
      const __m512 p = _mm512_maskz_max_ps(0xFFFF, a.r, _mm512_setzero_ps());
      if constexpr (m == Mode::kZero) return V{_mm512_maskz_cvtt_roundps_epu32(0xFFFF, p, kNoExc)};
      else if constexpr (m == Mode::kNear) return V{_mm512_maskz_cvt_roundps_epu32(0xFFFF, p, _MM_FROUND_TO_NEAREST_INT | kNoExc)};
      else return V{_mm512_maskz_cvtt_roundps_epu32(0xFFFF, x86::add_below_half(p), kNoExc)};
    } else if constexpr (std::is_same_v<L, int64_t>) {
      const __m512d p = _mm512_fixupimm_pd(a.r, a.r, _mm512_set1_epi64(0x88), 0);
      const __mmask8 in = _mm512_cmp_pd_mask(p, _mm512_set1_pd(9223372036854775808.0), _CMP_LT_OQ);
      const __m512i top = _mm512_set1_epi64(INT64_MAX);
      if constexpr (m == Mode::kZero) return V{_mm512_mask_cvtt_roundpd_epi64(top, in, p, kNoExc)};
      else if constexpr (m == Mode::kNear)
        return V{_mm512_mask_cvt_roundpd_epi64(top, in, p, _MM_FROUND_TO_NEAREST_INT | kNoExc)};
      else return V{_mm512_mask_cvtt_roundpd_epi64(top, in, x86::add_below_half(p), kNoExc)};
    } else {
      static_assert(sizeof(L) == 0, "no such conversion");
    }
#endif
  } else if constexpr (std::is_same_v<L, int32_t>) {
    using f = x86::fregs<F, K>;
    const auto r = x86::round<m>(a.r);
    // 0x80000000 from cvt where the lane is 2^31 or more becomes 0x7FFFFFFF.
    const auto big = x86::ints(f::template cmp<_CMP_GE_OQ>(r, f::set1(2147483648.0f)));
    const auto ord = x86::ints(f::template cmp<_CMP_ORD_Q>(a.r, a.r));
    if constexpr (K == 1) return V{(_mm_cvttps_epi32(r) ^ big) & ord};
    else return V{(_mm256_cvttps_epi32(r) ^ big) & ord};
  } else if constexpr (std::is_same_v<L, uint32_t>) {
    using f = x86::fregs<F, K>;
    // max keeps its second operand for NaN: NaN and everything below 0 become 0.
    decltype(a.r) r;
    if constexpr (K == 1) r = _mm_max_ps(x86::round<m>(a.r), _mm_setzero_ps());
    else r = _mm256_max_ps(x86::round<m>(a.r), _mm256_setzero_ps());
    const auto big = f::template cmp<_CMP_GE_OQ>(r, f::set1(2147483648.0f));
    decltype(a.r) shift;
    x86::from_ints(shift, x86::ints(big) & x86::ints(f::set1(2147483648.0f)));
    const auto low = r - shift;
    const auto top = x86::ints(f::template cmp<_CMP_GE_OQ>(r, f::set1(4294967296.0f)));
    const auto sign = x86::ints(big) & x86::ints(f::set1(-0.0f));
    if constexpr (K == 1) return V{(_mm_cvttps_epi32(low) ^ sign) | top};
    else return V{(_mm256_cvttps_epi32(low) ^ sign) | top};
  } else if constexpr (std::is_same_v<L, int64_t>) {
    const auto r = x86::round<m>(a.r);
#if defined(__AVX512DQ__) && defined(__AVX512VL__)
    using f = x86::fregs<F, K>;
    const auto big = x86::ints(f::template cmp<_CMP_GE_OQ>(r, f::set1(9223372036854775808.0)));
    const auto ord = x86::ints(f::template cmp<_CMP_ORD_Q>(a.r, a.r));
    if constexpr (K == 1) return V{(_mm_cvttpd_epi64(r) ^ big) & ord};
    else return V{(_mm256_cvttpd_epi64(r) ^ big) & ord};
#else
    lanes<vec<double, K>> l(vec<double, K>{r});
    lanes<V> out(V{});
    for (int j = 0; j < V::kLanes; ++j) {
      const double x = l.v[j];
      out.v[j] = x != x ? 0
                 : x >= 9223372036854775808.0 ? INT64_MAX
                 : x < -9223372036854775808.0 ? INT64_MIN
                                              : static_cast<int64_t>(x);
    }
    return out.get();
#endif
  } else {
    static_assert(sizeof(L) == 0, "no such conversion");
  }
}

}  // namespace zivks::simd
