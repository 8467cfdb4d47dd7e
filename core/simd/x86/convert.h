// x86 backend: conversions between integer and float lanes. cvt gives the "integer
// indefinite" 0x80...0 for NaN and for every value out of range, where the Arm
// conversions saturate and give 0 for NaN: those lanes are fixed up. The AVX-512 forms
// make NaN lanes +0 before converting and give lanes at or above the top the maximum
// through a lane mask.
#pragma once

#include "core/rounding.h"
#include "core/simd/x86/base.h"

namespace zivks::simd {

// ---- cvt_to_float
template <class F, class I, int K>
inline vec<F, K> cvt_to_float(const vec<I, K>& a) {
  using O = x86::ops<K>;
  using V = vec<F, K>;
  if constexpr (std::is_same_v<I, int32_t>) {
    return V{O::cvt_i32(a.raw)};
  } else if constexpr (std::is_same_v<I, uint32_t>) {
#if defined(ZIVKS_X86_512)
    return V{O::cvt_u32(a.raw)};
#else
    // The high half times 2^16 is exact; the one rounding is in the final add.
    const auto hi = O::cvt_i32(O::srl32(a.raw, _mm_cvtsi32_si128(16)));
    const auto lo = O::cvt_i32(a.raw & O::set1_32(0xFFFF));
    return V{hi * O::set1(65536.0f) + lo};
#endif
  } else if constexpr (std::is_same_v<I, int64_t>) {
#if defined(ZIVKS_X86_512)
    return V{O::cvt_i64(a.raw)};
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

namespace x86 {

// Whole float lanes by m (independent of MXCSR); NaN stays NaN. A tie away from zero:
// the truncation plus one step of p's sign where the (exact) fraction is at least one
// half.
template <rounding::Mode m, int K, class R>
inline R round(R p) {
  using rounding::Mode;
  using O = ops<K>;
  using S = std::conditional_t<sizeof(p[0]) == 4, float, double>;
  constexpr int kZero = _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC;
  if constexpr (m == Mode::kZero) return O::template round<kZero>(p);
  else if constexpr (m == Mode::kNear) return O::template round<_MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC>(p);
  else {
    const R t = O::template round<kZero>(p);
    const auto sign = ints(O::set1(S(-0.0)));
    const auto frac = from_ints(p, ~sign & ints(p - t));  // exact
    const auto step = ints(O::set1(S(1))) | (ints(p) & sign);
    const R ge = O::template cmp<_CMP_GE_OQ>(frac, O::set1(S(0.5)));
    return t + from_ints(p, ints(ge) & step);
  }
}

// p plus the float just below one half, with p's sign: truncating the sum rounds p to
// nearest with a tie away from zero, for every p (the sum rounds up to the next whole
// value exactly where p's fraction is at least one half). NaN stays NaN.
template <int K, class R>
inline R add_below_half(R p) {
  using O = ops<K>;
  using S = std::conditional_t<sizeof(p[0]) == 4, float, double>;
  const R below_half = sizeof(S) == 4 ? O::set1(S(0x1.fffffep-2f)) : O::set1(S(0x1.fffffffffffffp-2));
  return p + from_ints(p, (ints(p) & ints(O::set1(S(-0.0)))) | ints(below_half));
}

}  // namespace x86

// ---- cvt_sat
// Rounding for 32-bit lanes, then the conversion of the lanes below the top with the
// others fixed up; at four blocks the rounding goes into the conversion where the mode
// has one (whether a lane reaches the top is the same before and after rounding: floats
// that large are whole).
template <class L, rounding::Mode m, class F, int K>
inline vec<L, K> cvt_sat(const vec<F, K>& a) {
  using rounding::Mode;
  using O = x86::ops<K>;
  using V = vec<L, K>;
  if constexpr (K == 4) {
#if defined(ZIVKS_X86_512)
    constexpr int kNoExc = _MM_FROUND_NO_EXC;
    constexpr int kNear = _MM_FROUND_TO_NEAREST_INT | kNoExc;
    // NaN lanes become +0 first (fixupimm: both NaN classes to +0, every other lane
    // kept); then lanes below the top convert and the others take the maximum.
    constexpr int kNanToZero = 0x88;
    if constexpr (std::is_same_v<L, int32_t>) {
      const __m512 p = _mm512_fixupimm_ps(a.raw, a.raw, _mm512_set1_epi32(kNanToZero), 0);
      const __mmask16 in = _mm512_cmp_ps_mask(p, _mm512_set1_ps(2147483648.0f), _CMP_LT_OQ);
      const __m512i top = _mm512_set1_epi32(INT32_MAX);
      if constexpr (m == Mode::kZero) return V{_mm512_mask_cvtt_roundps_epi32(top, in, p, kNoExc)};
      else if constexpr (m == Mode::kNear) return V{_mm512_mask_cvt_roundps_epi32(top, in, p, kNear)};
      else return V{_mm512_mask_cvtt_roundps_epi32(top, in, x86::add_below_half<4>(p), kNoExc)};
    } else if constexpr (std::is_same_v<L, uint32_t>) {
      // max keeps its second operand for NaN: NaN and everything below 0 become 0. The
      // unsigned conversion gives 2^32 - 1 for every lane too large: the saturated value.
      const __m512 p = O::max(a.raw, _mm512_setzero_ps());
      if constexpr (m == Mode::kZero) return V{_mm512_maskz_cvtt_roundps_epu32(O::kAll16, p, kNoExc)};
      else if constexpr (m == Mode::kNear) return V{_mm512_maskz_cvt_roundps_epu32(O::kAll16, p, kNear)};
      else return V{_mm512_maskz_cvtt_roundps_epu32(O::kAll16, x86::add_below_half<4>(p), kNoExc)};
    } else if constexpr (std::is_same_v<L, int64_t>) {
      const __m512d p = _mm512_fixupimm_pd(a.raw, a.raw, _mm512_set1_epi64(kNanToZero), 0);
      const __mmask8 in = _mm512_cmp_pd_mask(p, _mm512_set1_pd(9223372036854775808.0), _CMP_LT_OQ);
      const __m512i top = _mm512_set1_epi64(INT64_MAX);
      if constexpr (m == Mode::kZero) return V{_mm512_mask_cvtt_roundpd_epi64(top, in, p, kNoExc)};
      else if constexpr (m == Mode::kNear) return V{_mm512_mask_cvt_roundpd_epi64(top, in, p, kNear)};
      else return V{_mm512_mask_cvtt_roundpd_epi64(top, in, x86::add_below_half<4>(p), kNoExc)};
    } else {
      static_assert(sizeof(L) == 0, "no such conversion");
    }
#endif
  } else if constexpr (std::is_same_v<L, int32_t>) {
    const auto r = x86::round<m, K>(a.raw);
    // 0x80000000 from cvt where the lane is 2^31 or more becomes 0x7FFFFFFF.
    const auto big = x86::ints(O::template cmp<_CMP_GE_OQ>(r, O::set1(2147483648.0f)));
    const auto ord = x86::ints(O::template cmp<_CMP_ORD_Q>(a.raw, a.raw));
    return V{(O::cvtt_i32(r) ^ big) & ord};
  } else if constexpr (std::is_same_v<L, uint32_t>) {
    // max keeps its second operand for NaN: NaN and everything below 0 become 0.
    const auto r = O::max(x86::round<m, K>(a.raw), O::set1(0.0f));
    const auto big = x86::ints(O::template cmp<_CMP_GE_OQ>(r, O::set1(2147483648.0f)));
    const auto low = r - x86::from_ints(r, big & x86::ints(O::set1(2147483648.0f)));
    const auto top = x86::ints(O::template cmp<_CMP_GE_OQ>(r, O::set1(4294967296.0f)));
    const auto sign = big & x86::ints(O::set1(-0.0f));
    return V{(O::cvtt_i32(low) ^ sign) | top};
  } else if constexpr (std::is_same_v<L, int64_t>) {
    const auto r = x86::round<m, K>(a.raw);
#if defined(ZIVKS_X86_512)
    const auto big = x86::ints(O::template cmp<_CMP_GE_OQ>(r, O::set1(9223372036854775808.0)));
    const auto ord = x86::ints(O::template cmp<_CMP_ORD_Q>(a.raw, a.raw));
    return V{(O::cvtt_i64(r) ^ big) & ord};
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

// ---- float_widen_lo, float_widen_hi
// Each half of the lanes, in memory order.
template <int K>
inline vec<double, K> float_widen_lo(const vec<float, K>& a) {
  if constexpr (K == 1) return {_mm_cvtps_pd(a.raw)};
  else if constexpr (K == 2) return {_mm256_cvtps_pd(_mm256_castps256_ps128(a.raw))};
#if defined(ZIVKS_X86_512)
  else return {_mm512_cvtps_pd(_mm512_castps512_ps256(a.raw))};
#endif
}
template <int K>
inline vec<double, K> float_widen_hi(const vec<float, K>& a) {
  if constexpr (K == 1) return {_mm_cvtps_pd(_mm_movehl_ps(a.raw, a.raw))};
  else if constexpr (K == 2) return {_mm256_cvtps_pd(_mm256_extractf128_ps(a.raw, 1))};
#if defined(ZIVKS_X86_512)
  else return {_mm512_cvtps_pd(_mm256_castpd_ps(_mm512_extractf64x4_pd(_mm512_castps_pd(a.raw), 1)))};
#endif
}

// ---- float_narrow
template <int K>
inline vec<float, K> float_narrow(const vec<double, K>& a, const vec<double, K>& b) {
  if constexpr (K == 1) return {_mm_movelh_ps(_mm_cvtpd_ps(a.raw), _mm_cvtpd_ps(b.raw))};
  else if constexpr (K == 2) return {_mm256_set_m128(_mm256_cvtpd_ps(b.raw), _mm256_cvtpd_ps(a.raw))};
#if defined(ZIVKS_X86_512)
  else return {_mm512_castpd_ps(_mm512_insertf64x4(_mm512_castps_pd(_mm512_castps256_ps512(_mm512_cvtpd_ps(a.raw))),
                                                   _mm256_castps_pd(_mm512_cvtpd_ps(b.raw)), 1))};
#endif
}

// ---- round_to_half
// vcvtps2ph and back where the build has them (x86-64-v3 on); lane by lane before.
template <int K>
inline vec<float, K> round_to_half(const vec<float, K>& a) {
  constexpr int kNear = _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC;
#if defined(__F16C__)
  if constexpr (K == 1) return {_mm_cvtph_ps(_mm_cvtps_ph(a.raw, kNear))};
  else if constexpr (K == 2) return {_mm256_cvtph_ps(_mm256_cvtps_ph(a.raw, kNear))};
#if defined(ZIVKS_X86_512)
  else return {_mm512_cvtph_ps(_mm512_cvtps_ph(a.raw, kNear))};
#endif
#else
  (void)kNear;
  lanes<vec<float, K>> l(a);
  for (float& x : l.v) x = rounding::to_half(x);
  return l.get();
#endif
}

}  // namespace zivks::simd
