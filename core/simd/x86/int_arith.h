// x86 backend: integer lanes and the sign clear of float lanes. Where SSE has no
// instruction of the Arm meaning (unsigned 32-bit saturation, a shift by a signed
// count, unsigned narrowing), a short sequence gives the same lanes.
#pragma once

namespace zivks::simd {

// ldr + sxtl / uxtl
template <class V, class S>
inline V load_widen(const S* p) {
  using T = typename V::lane;
  const __m128i x = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
  V v;
  if constexpr (std::is_same_v<S, uint8_t> && std::is_same_v<T, uint16_t>) v.r = _mm_cvtepu8_epi16(x);
  else if constexpr (std::is_same_v<S, int16_t> && std::is_same_v<T, int32_t>) v.r = _mm_cvtepi16_epi32(x);
  else if constexpr (std::is_same_v<S, uint16_t> && std::is_same_v<T, uint32_t>) v.r = _mm_cvtepu16_epi32(x);
  else if constexpr (std::is_same_v<S, int32_t> && std::is_same_v<T, int64_t>) v.r = _mm_cvtepi32_epi64(x);
  else static_assert(sizeof(S) == 0, "no such widening load");
  return v;
}

namespace x86 {
template <class To, class From>
inline __m128i widen(__m128i x) {
  if constexpr (std::is_same_v<From, uint8_t>) return _mm_cvtepu8_epi16(x);
  else if constexpr (std::is_same_v<From, uint16_t>) return _mm_cvtepu16_epi32(x);
  else if constexpr (std::is_same_v<From, int16_t>) return _mm_cvtepi16_epi32(x);
  else if constexpr (std::is_same_v<From, int32_t>) return _mm_cvtepi32_epi64(x);
  else static_assert(sizeof(From) == 0, "no such widening");
}
}  // namespace x86

// uxtl / sxtl
template <class To, class From>
inline vec<To, 1> widen_lo(const vec<From, 1>& a) {
  return vec<To, 1>{x86::widen<To, From>(a.r)};
}

// uxtl2 / sxtl2
template <class To, class From>
inline vec<To, 1> widen_hi(const vec<From, 1>& a) {
  return vec<To, 1>{x86::widen<To, From>(_mm_unpackhi_epi64(a.r, a.r))};
}

// add
template <class T>
inline vec<T, 1> add_wrap(const vec<T, 1>& a, const vec<T, 1>& b) {
  if constexpr (sizeof(T) == 1) return vec<T, 1>{_mm_add_epi8(a.r, b.r)};
  else if constexpr (sizeof(T) == 2) return vec<T, 1>{_mm_add_epi16(a.r, b.r)};
  else if constexpr (sizeof(T) == 4) return vec<T, 1>{_mm_add_epi32(a.r, b.r)};
  else return vec<T, 1>{_mm_add_epi64(a.r, b.r)};
}

// sub
template <class T>
inline vec<T, 1> sub_wrap(const vec<T, 1>& a, const vec<T, 1>& b) {
  if constexpr (sizeof(T) == 1) return vec<T, 1>{_mm_sub_epi8(a.r, b.r)};
  else if constexpr (sizeof(T) == 2) return vec<T, 1>{_mm_sub_epi16(a.r, b.r)};
  else if constexpr (sizeof(T) == 4) return vec<T, 1>{_mm_sub_epi32(a.r, b.r)};
  else return vec<T, 1>{_mm_sub_epi64(a.r, b.r)};
}

// sqadd / uqadd
template <class T>
inline vec<T, 1> add_sat(const vec<T, 1>& a, const vec<T, 1>& b) {
  if constexpr (std::is_same_v<T, uint8_t>) return vec<T, 1>{_mm_adds_epu8(a.r, b.r)};
  else if constexpr (std::is_same_v<T, uint16_t>) return vec<T, 1>{_mm_adds_epu16(a.r, b.r)};
  else if constexpr (std::is_same_v<T, int16_t>) return vec<T, 1>{_mm_adds_epi16(a.r, b.r)};
  else if constexpr (std::is_same_v<T, uint32_t>) {
    // a + min(b, ~a) stops exactly at the maximum.
    const __m128i room = _mm_xor_si128(a.r, _mm_set1_epi32(-1));
    return vec<T, 1>{_mm_add_epi32(a.r, _mm_min_epu32(b.r, room))};
  } else {
    static_assert(sizeof(T) == 0, "no such saturating add");
  }
}

// sqsub / uqsub
template <class T>
inline vec<T, 1> sub_sat(const vec<T, 1>& a, const vec<T, 1>& b) {
  if constexpr (std::is_same_v<T, uint8_t>) return vec<T, 1>{_mm_subs_epu8(a.r, b.r)};
  else if constexpr (std::is_same_v<T, uint16_t>) return vec<T, 1>{_mm_subs_epu16(a.r, b.r)};
  else if constexpr (std::is_same_v<T, int16_t>) return vec<T, 1>{_mm_subs_epi16(a.r, b.r)};
  else static_assert(sizeof(T) == 0, "no such saturating subtract");
}

// sqabs: pabs leaves the most negative value as it is; seen unsigned it is the one
// lane above the largest positive value.
template <class T>
inline vec<T, 1> abs_sat(const vec<T, 1>& a) {
  if constexpr (std::is_same_v<T, int16_t>)
    return vec<T, 1>{_mm_min_epu16(_mm_abs_epi16(a.r), _mm_set1_epi16(0x7FFF))};
  else if constexpr (std::is_same_v<T, int32_t>)
    return vec<T, 1>{_mm_min_epu32(_mm_abs_epi32(a.r), _mm_set1_epi32(0x7FFFFFFF))};
  else static_assert(sizeof(T) == 0, "no such abs");
}

// fabs
template <class F>
inline vec<F, 1> clear_sign(const vec<F, 1>& a) {
  if constexpr (std::is_same_v<F, float>)
    return vec<F, 1>{_mm_and_ps(a.r, _mm_castsi128_ps(_mm_set1_epi32(0x7FFFFFFF)))};
  else
    return vec<F, 1>{_mm_and_pd(a.r, _mm_castsi128_pd(_mm_set1_epi64x(0x7FFFFFFFFFFFFFFFll)))};
}

// uqrshl by the low byte of k, read as a signed count, in every lane.
template <class T>
inline vec<T, 1> shl_sat_round_by_low_byte(const vec<T, 1>& a, int32_t k) {
  static_assert(std::is_same_v<T, uint16_t> || std::is_same_v<T, uint32_t>, "no such shift");
  constexpr int bits = sizeof(T) * 8;
  const int n = static_cast<int8_t>(static_cast<uint8_t>(k & 0xFF));
  const __m128i x = a.r;
  auto srl = [](__m128i v, int c) {
    const __m128i cnt = _mm_cvtsi32_si128(c);  // counts past the width give 0
    if constexpr (bits == 16) return _mm_srl_epi16(v, cnt);
    else return _mm_srl_epi32(v, cnt);
  };
  auto eq = [](__m128i u, __m128i v) {
    if constexpr (bits == 16) return _mm_cmpeq_epi16(u, v);
    else return _mm_cmpeq_epi32(u, v);
  };
  const __m128i ones = _mm_set1_epi32(-1);
  if (n < 0) {
    // Right by m, half up: floor(x / 2^m) plus the last bit shifted out.
    const int m = -n;
    const __m128i one = bits == 16 ? _mm_set1_epi16(1) : _mm_set1_epi32(1);
    const __m128i q = srl(x, m), r = _mm_and_si128(srl(x, m - 1), one);
    return vec<T, 1>{bits == 16 ? _mm_add_epi16(q, r) : _mm_add_epi32(q, r)};
  }
  if (n >= bits) return vec<T, 1>{_mm_andnot_si128(eq(x, _mm_setzero_si128()), ones)};
  // Lanes above max >> n overflow and saturate.
  const __m128i cnt = _mm_cvtsi32_si128(n);
  __m128i shifted, fits;
  if constexpr (bits == 16) {
    const __m128i lim = _mm_set1_epi16(static_cast<int16_t>(0xFFFFu >> n));
    shifted = _mm_sll_epi16(x, cnt);
    fits = _mm_cmpeq_epi16(_mm_min_epu16(x, lim), x);
  } else {
    const __m128i lim = _mm_set1_epi32(static_cast<int32_t>(0xFFFFFFFFu >> n));
    shifted = _mm_sll_epi32(x, cnt);
    fits = _mm_cmpeq_epi32(_mm_min_epu32(x, lim), x);
  }
  return vec<T, 1>{_mm_or_si128(shifted, _mm_andnot_si128(fits, ones))};
}

// sqxtn / uqxtn / sqxtun, then the same into the upper half. pack saturates signed
// inputs; unsigned inputs are first held at the target's maximum.
template <class To, class From>
inline vec<To, 1> narrow_sat(const vec<From, 1>& a, const vec<From, 1>& b) {
  if constexpr (std::is_same_v<From, int64_t> && std::is_same_v<To, int32_t>) {
#if defined(__AVX512F__) && defined(__AVX512VL__)
    return vec<To, 1>{_mm_unpacklo_epi64(_mm_maskz_cvtsepi64_epi32(0x3, a.r), _mm_maskz_cvtsepi64_epi32(0x3, b.r))};
#else
    const __m128i hi = _mm_set1_epi64x(INT32_MAX), lo = _mm_set1_epi64x(INT32_MIN);
    auto clamp = [&](__m128i v) {
      v = _mm_blendv_epi8(v, hi, _mm_cmpgt_epi64(v, hi));
      return _mm_blendv_epi8(v, lo, _mm_cmpgt_epi64(lo, v));
    };
    return vec<To, 1>{_mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(clamp(a.r)),
                                                      _mm_castsi128_ps(clamp(b.r)), _MM_SHUFFLE(2, 0, 2, 0)))};
#endif
  } else if constexpr (std::is_same_v<From, int32_t> && std::is_same_v<To, int16_t>) {
    return vec<To, 1>{_mm_packs_epi32(a.r, b.r)};
  } else if constexpr (std::is_same_v<From, int32_t> && std::is_same_v<To, uint16_t>) {
    return vec<To, 1>{_mm_packus_epi32(a.r, b.r)};
  } else if constexpr (std::is_same_v<From, uint32_t> && std::is_same_v<To, uint16_t>) {
    const __m128i top = _mm_set1_epi32(0xFFFF);
    return vec<To, 1>{_mm_packus_epi32(_mm_min_epu32(a.r, top), _mm_min_epu32(b.r, top))};
  } else if constexpr (std::is_same_v<From, int16_t> && std::is_same_v<To, int8_t>) {
    return vec<To, 1>{_mm_packs_epi16(a.r, b.r)};
  } else if constexpr (std::is_same_v<From, int16_t> && std::is_same_v<To, uint8_t>) {
    return vec<To, 1>{_mm_packus_epi16(a.r, b.r)};
  } else if constexpr (std::is_same_v<From, uint16_t> && std::is_same_v<To, uint8_t>) {
    const __m128i top = _mm_set1_epi16(0xFF);
    return vec<To, 1>{_mm_packus_epi16(_mm_min_epu16(a.r, top), _mm_min_epu16(b.r, top))};
  } else {
    static_assert(sizeof(To) == 0, "no such narrowing");
  }
}

// uqxtn, xtn2
inline vec<uint16_t, 1> narrow_sat_low_wrap_high(const vec<uint32_t, 1>& a, const vec<uint32_t, 1>& b) {
  const __m128i top = _mm_set1_epi32(0xFFFF);
  return vec<uint16_t, 1>{_mm_packus_epi32(_mm_min_epu32(a.r, top), _mm_and_si128(b.r, top))};
}

}  // namespace zivks::simd
