// x86 backend: integer lanes and the sign clear of float lanes. Where SSE has no
// instruction of the Arm meaning (unsigned 32-bit saturation, a shift by a signed
// count, unsigned narrowing), a short sequence gives the same lanes. The forms of 2 and
// 4 blocks (AVX2, AVX-512) give every lane exactly what the form of one block gives it;
// lanes stay in memory order, also where a result is wider or narrower than its input.
#pragma once

namespace zivks::simd {

namespace x86 {

// One operation in registers of K blocks: f1, f2 or f4 by the width.
#define ZIVKS_X86_BY_K(K, f1, f2, f4)  \
  [&] {                                  \
    if constexpr ((K) == 1) return f1;       \
    else if constexpr ((K) == 2) return f2;  \
    else return f4;                          \
  }()

// The low and high halves of a register of 2 or 4 blocks.
template <class R>
inline auto lo_half(R x) {
  if constexpr (sizeof(R) == 32) {
    return _mm256_castsi256_si128(x);
  } else {
    // The low half of the register itself (the 512-bit cast draws a spurious warning).
    __m256i lo;
    memcpy(&lo, &x, sizeof lo);
    return lo;
  }
}
template <class R>
inline auto hi_half(R x) {
  if constexpr (sizeof(R) == 32) return _mm256_extracti128_si256(x, 1);
  else return _mm512_maskz_extracti64x4_epi64(0xF, x, 1);
}

// Narrow lanes From (in the low bytes of x) widened to To, in order: K blocks of To.
template <class To, class From, int K, class H>
inline typename int_reg<K>::type widen(H x) {
  if constexpr (K == 1) {
    if constexpr (std::is_same_v<From, uint8_t>) return _mm_cvtepu8_epi16(x);
    else if constexpr (std::is_same_v<From, uint16_t>) return _mm_cvtepu16_epi32(x);
    else if constexpr (std::is_same_v<From, int16_t>) return _mm_cvtepi16_epi32(x);
    else if constexpr (std::is_same_v<From, int32_t>) return _mm_cvtepi32_epi64(x);
    else static_assert(sizeof(From) == 0, "no such widening");
  }
#if defined(__AVX2__)
  else if constexpr (K == 2) {
    if constexpr (std::is_same_v<From, uint8_t>) return _mm256_cvtepu8_epi16(x);
    else if constexpr (std::is_same_v<From, uint16_t>) return _mm256_cvtepu16_epi32(x);
    else if constexpr (std::is_same_v<From, int16_t>) return _mm256_cvtepi16_epi32(x);
    else if constexpr (std::is_same_v<From, int32_t>) return _mm256_cvtepi32_epi64(x);
    else static_assert(sizeof(From) == 0, "no such widening");
  }
#endif
#if defined(__AVX512BW__)
  else {
    if constexpr (std::is_same_v<From, uint8_t>) return _mm512_cvtepu8_epi16(x);
    else if constexpr (std::is_same_v<From, uint16_t>) return _mm512_maskz_cvtepu16_epi32(0xFFFF, x);
    else if constexpr (std::is_same_v<From, int16_t>) return _mm512_maskz_cvtepi16_epi32(0xFFFF, x);
    else if constexpr (std::is_same_v<From, int32_t>) return _mm512_maskz_cvtepi32_epi64(0xFF, x);
    else static_assert(sizeof(From) == 0, "no such widening");
  }
#endif
}

template <int K> inline typename int_reg<K>::type set1_16(int16_t x) {
  return ZIVKS_X86_BY_K(K, _mm_set1_epi16(x), _mm256_set1_epi16(x), _mm512_set1_epi16(x));
}
template <int K> inline typename int_reg<K>::type set1_32(int32_t x) {
  return ZIVKS_X86_BY_K(K, _mm_set1_epi32(x), _mm256_set1_epi32(x), _mm512_set1_epi32(x));
}
template <int K> inline typename int_reg<K>::type set1_64(int64_t x) {
  return ZIVKS_X86_BY_K(K, _mm_set1_epi64x(x), _mm256_set1_epi64x(x), _mm512_set1_epi64(x));
}
template <int K, class R> inline R min_u16(R a, R b) {
  return ZIVKS_X86_BY_K(K, _mm_min_epu16(a, b), _mm256_min_epu16(a, b), _mm512_min_epu16(a, b));
}
template <int K, class R> inline R min_u32(R a, R b) {
  return ZIVKS_X86_BY_K(K, _mm_min_epu32(a, b), _mm256_min_epu32(a, b), _mm512_maskz_min_epu32(0xFFFF, a, b));
}
template <int K, class R> inline R add16(R a, R b) {
  return ZIVKS_X86_BY_K(K, _mm_add_epi16(a, b), _mm256_add_epi16(a, b), _mm512_add_epi16(a, b));
}
template <int K, class R> inline R add32(R a, R b) {
  return ZIVKS_X86_BY_K(K, _mm_add_epi32(a, b), _mm256_add_epi32(a, b), _mm512_add_epi32(a, b));
}

// Pairs of 64-bit quarters of packed registers of 2 or 4 blocks put back in memory
// order: a pack works within each block, giving a's half then b's half of every block.
template <int K, class R>
inline R unpack_order(R x) {
  if constexpr (K == 1) return x;
#if defined(__AVX2__)
  else if constexpr (K == 2) return _mm256_permute4x64_epi64(x, _MM_SHUFFLE(3, 1, 2, 0));
#endif
#if defined(__AVX512F__)
  else return _mm512_maskz_permutexvar_epi64(0xFF, _mm512_set_epi64(7, 5, 3, 1, 6, 4, 2, 0), x);
#endif
}

}  // namespace x86

// ldr + sxtl / uxtl
template <class V, class S>
inline V load_widen(const S* p) {
  using T = typename V::lane;
  constexpr int K = V::kBlocks;
  static_assert(sizeof(T) == 2 * sizeof(S), "widening doubles the lane");
  V v;
  if constexpr (K == 1) v.r = x86::widen<T, S, 1>(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)));
  else if constexpr (K == 2) v.r = x86::widen<T, S, 2>(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
  else v.r = x86::widen<T, S, 4>(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)));
  return v;
}

// uxtl / sxtl: the low half of the lanes, widened.
template <class To, class From, int K>
inline vec<To, K> widen_lo(const vec<From, K>& a) {
  if constexpr (K == 1) return vec<To, 1>{x86::widen<To, From, 1>(a.r)};
  else return vec<To, K>{x86::widen<To, From, K>(x86::lo_half(a.r))};
}

// uxtl2 / sxtl2: the high half of the lanes, widened.
template <class To, class From, int K>
inline vec<To, K> widen_hi(const vec<From, K>& a) {
  if constexpr (K == 1) return vec<To, 1>{x86::widen<To, From, 1>(_mm_unpackhi_epi64(a.r, a.r))};
  else return vec<To, K>{x86::widen<To, From, K>(x86::hi_half(a.r))};
}

// add
template <class T, int K>
inline vec<T, K> add_wrap(const vec<T, K>& a, const vec<T, K>& b) {
  using V = vec<T, K>;
  if constexpr (sizeof(T) == 1) {
    return V{ZIVKS_X86_BY_K(K, _mm_add_epi8(a.r, b.r),
                            _mm256_add_epi8(a.r, b.r),
                            _mm512_add_epi8(a.r, b.r))};
  } else if constexpr (sizeof(T) == 2) {
    return V{ZIVKS_X86_BY_K(K, _mm_add_epi16(a.r, b.r),
                            _mm256_add_epi16(a.r, b.r),
                            _mm512_add_epi16(a.r, b.r))};
  } else if constexpr (sizeof(T) == 4) {
    return V{ZIVKS_X86_BY_K(K, _mm_add_epi32(a.r, b.r),
                            _mm256_add_epi32(a.r, b.r),
                            _mm512_add_epi32(a.r, b.r))};
  } else {
    return V{ZIVKS_X86_BY_K(K, _mm_add_epi64(a.r, b.r),
                            _mm256_add_epi64(a.r, b.r),
                            _mm512_add_epi64(a.r, b.r))};
  }
}

// sub
template <class T, int K>
inline vec<T, K> sub_wrap(const vec<T, K>& a, const vec<T, K>& b) {
  using V = vec<T, K>;
  if constexpr (sizeof(T) == 1) {
    return V{ZIVKS_X86_BY_K(K, _mm_sub_epi8(a.r, b.r),
                            _mm256_sub_epi8(a.r, b.r),
                            _mm512_sub_epi8(a.r, b.r))};
  } else if constexpr (sizeof(T) == 2) {
    return V{ZIVKS_X86_BY_K(K, _mm_sub_epi16(a.r, b.r),
                            _mm256_sub_epi16(a.r, b.r),
                            _mm512_sub_epi16(a.r, b.r))};
  } else if constexpr (sizeof(T) == 4) {
    return V{ZIVKS_X86_BY_K(K, _mm_sub_epi32(a.r, b.r),
                            _mm256_sub_epi32(a.r, b.r),
                            _mm512_sub_epi32(a.r, b.r))};
  } else {
    return V{ZIVKS_X86_BY_K(K, _mm_sub_epi64(a.r, b.r),
                            _mm256_sub_epi64(a.r, b.r),
                            _mm512_sub_epi64(a.r, b.r))};
  }
}

// sqadd / uqadd
template <class T, int K>
inline vec<T, K> add_sat(const vec<T, K>& a, const vec<T, K>& b) {
  using V = vec<T, K>;
  if constexpr (std::is_same_v<T, uint8_t>) {
    return V{ZIVKS_X86_BY_K(K, _mm_adds_epu8(a.r, b.r),
                            _mm256_adds_epu8(a.r, b.r),
                            _mm512_adds_epu8(a.r, b.r))};
  } else if constexpr (std::is_same_v<T, uint16_t>) {
    return V{ZIVKS_X86_BY_K(K, _mm_adds_epu16(a.r, b.r),
                            _mm256_adds_epu16(a.r, b.r),
                            _mm512_adds_epu16(a.r, b.r))};
  } else if constexpr (std::is_same_v<T, int16_t>) {
    return V{ZIVKS_X86_BY_K(K, _mm_adds_epi16(a.r, b.r),
                            _mm256_adds_epi16(a.r, b.r),
                            _mm512_adds_epi16(a.r, b.r))};
  } else if constexpr (std::is_same_v<T, uint32_t>) {
    // a + min(b, ~a) stops exactly at the maximum.
    return V{x86::add32<K>(a.r, x86::min_u32<K>(b.r, ~a.r))};
  } else {
    static_assert(sizeof(T) == 0, "no such saturating add");
  }
}

// sqsub / uqsub
template <class T, int K>
inline vec<T, K> sub_sat(const vec<T, K>& a, const vec<T, K>& b) {
  using V = vec<T, K>;
  if constexpr (std::is_same_v<T, uint8_t>) {
    return V{ZIVKS_X86_BY_K(K, _mm_subs_epu8(a.r, b.r),
                            _mm256_subs_epu8(a.r, b.r),
                            _mm512_subs_epu8(a.r, b.r))};
  } else if constexpr (std::is_same_v<T, uint16_t>) {
    return V{ZIVKS_X86_BY_K(K, _mm_subs_epu16(a.r, b.r),
                            _mm256_subs_epu16(a.r, b.r),
                            _mm512_subs_epu16(a.r, b.r))};
  } else if constexpr (std::is_same_v<T, int16_t>) {
    return V{ZIVKS_X86_BY_K(K, _mm_subs_epi16(a.r, b.r),
                            _mm256_subs_epi16(a.r, b.r),
                            _mm512_subs_epi16(a.r, b.r))};
  } else {
    static_assert(sizeof(T) == 0, "no such saturating subtract");
  }
}

// sqabs: pabs leaves the most negative value as it is; seen unsigned it is the one
// lane above the largest positive value.
template <class T, int K>
inline vec<T, K> abs_sat(const vec<T, K>& a) {
  using V = vec<T, K>;
  if constexpr (std::is_same_v<T, int16_t>) {
    if constexpr (K == 1) return V{x86::min_u16<1>(_mm_abs_epi16(a.r), x86::set1_16<1>(0x7FFF))};
    else if constexpr (K == 2) return V{x86::min_u16<2>(_mm256_abs_epi16(a.r), x86::set1_16<2>(0x7FFF))};
    else return V{x86::min_u16<4>(_mm512_abs_epi16(a.r), x86::set1_16<4>(0x7FFF))};
  } else if constexpr (std::is_same_v<T, int32_t>) {
    if constexpr (K == 1) return V{x86::min_u32<1>(_mm_abs_epi32(a.r), x86::set1_32<1>(0x7FFFFFFF))};
    else if constexpr (K == 2) return V{x86::min_u32<2>(_mm256_abs_epi32(a.r), x86::set1_32<2>(0x7FFFFFFF))};
    else return V{x86::min_u32<4>(_mm512_maskz_abs_epi32(0xFFFF, a.r), x86::set1_32<4>(0x7FFFFFFF))};
  } else {
    static_assert(sizeof(T) == 0, "no such abs");
  }
}

// fabs
template <class F, int K>
inline vec<F, K> clear_sign(const vec<F, K>& a) {
  vec<F, K> r;
  if constexpr (std::is_same_v<F, float>) x86::from_ints(r.r, x86::ints(a.r) & x86::set1_32<K>(0x7FFFFFFF));
  else x86::from_ints(r.r, x86::ints(a.r) & x86::set1_64<K>(0x7FFFFFFFFFFFFFFFll));
  return r;
}

// uqrshl by the low byte of k, read as a signed count, in every lane.
template <class T, int K>
inline vec<T, K> shl_sat_round_by_low_byte(const vec<T, K>& a, int32_t k) {
  static_assert(std::is_same_v<T, uint16_t> || std::is_same_v<T, uint32_t>, "no such shift");
  using R = typename int_reg<K>::type;
  constexpr int bits = sizeof(T) * 8;
  const int n = static_cast<int8_t>(static_cast<uint8_t>(k & 0xFF));
  const R x = a.r;
  auto srl = [](R v, int c) {
    const __m128i cnt = _mm_cvtsi32_si128(c);  // counts past the width give 0
    if constexpr (bits == 16) return x86::srl16<K>(v, cnt);
    else return x86::srl32<K>(v, cnt);
  };
  const R ones = x86::set1_32<K>(-1);
  if (n < 0) {
    // Right by m, half up: floor(x / 2^m) plus the last bit shifted out.
    const int m = -n;
    if constexpr (bits == 16) return vec<T, K>{x86::add16<K>(srl(x, m), srl(x, m - 1) & x86::set1_16<K>(1))};
    else return vec<T, K>{x86::add32<K>(srl(x, m), srl(x, m - 1) & x86::set1_32<K>(1))};
  }
  // Lanes above max >> n overflow and saturate; past the width every lane but 0 does.
  const __m128i cnt = _mm_cvtsi32_si128(n);
  const int c = n >= bits ? bits : n;
  R shifted, lim;
  if constexpr (bits == 16) {
    lim = x86::set1_16<K>(static_cast<int16_t>(n >= bits ? 0 : 0xFFFFu >> c));
    shifted = x86::sll16<K>(x, cnt);
  } else {
    lim = x86::set1_32<K>(static_cast<int32_t>(n >= bits ? 0u : 0xFFFFFFFFu >> c));
    shifted = x86::sll32<K>(x, cnt);
  }
  if constexpr (K == 4) {
#if defined(__AVX512BW__)
    if constexpr (bits == 16) return vec<T, K>{_mm512_mask_mov_epi16(shifted, _mm512_cmpgt_epu16_mask(x, lim), ones)};
    else return vec<T, K>{_mm512_mask_mov_epi32(shifted, _mm512_cmpgt_epu32_mask(x, lim), ones)};
#endif
  } else {
    R fits;
    if constexpr (bits == 16 && K == 1) fits = _mm_cmpeq_epi16(_mm_min_epu16(x, lim), x);
    else if constexpr (bits == 16) fits = _mm256_cmpeq_epi16(_mm256_min_epu16(x, lim), x);
    else if constexpr (K == 1) fits = _mm_cmpeq_epi32(_mm_min_epu32(x, lim), x);
    else fits = _mm256_cmpeq_epi32(_mm256_min_epu32(x, lim), x);
    return vec<T, K>{shifted | (~fits & ones)};
  }
}

namespace x86 {

// Lanes of 64 bits clamped to the int32 range, for the forms without a saturating
// 64-bit narrow.
template <int K, class R>
inline R clamp_i32(R v) {
  if constexpr (K == 1) {
    const __m128i hi = _mm_set1_epi64x(INT32_MAX), lo = _mm_set1_epi64x(INT32_MIN);
    v = _mm_blendv_epi8(v, hi, _mm_cmpgt_epi64(v, hi));
    return _mm_blendv_epi8(v, lo, _mm_cmpgt_epi64(lo, v));
  }
#if defined(__AVX2__)
  else {
    const __m256i hi = _mm256_set1_epi64x(INT32_MAX), lo = _mm256_set1_epi64x(INT32_MIN);
    v = _mm256_blendv_epi8(v, hi, _mm256_cmpgt_epi64(v, hi));
    return _mm256_blendv_epi8(v, lo, _mm256_cmpgt_epi64(lo, v));
  }
#endif
}

}  // namespace x86

// sqxtn / uqxtn / sqxtun, then the same into the upper half: the lanes of a, then those
// of b. pack saturates signed inputs; unsigned inputs are first held at the target's
// maximum.
template <class To, class From, int K>
inline vec<To, K> narrow_sat(const vec<From, K>& a, const vec<From, K>& b) {
  using V = vec<To, K>;
  if constexpr (std::is_same_v<From, int64_t> && std::is_same_v<To, int32_t>) {
#if defined(__AVX512F__) && defined(__AVX512VL__)
    if constexpr (K == 1)
      return V{_mm_unpacklo_epi64(_mm_maskz_cvtsepi64_epi32(0x3, a.r), _mm_maskz_cvtsepi64_epi32(0x3, b.r))};
    else if constexpr (K == 2)
      return V{_mm256_set_m128i(_mm256_cvtsepi64_epi32(b.r), _mm256_cvtsepi64_epi32(a.r))};
    else
      return V{_mm512_maskz_inserti64x4(0xFF, _mm512_castsi256_si512(_mm512_maskz_cvtsepi64_epi32(0xFF, a.r)), _mm512_maskz_cvtsepi64_epi32(0xFF, b.r), 1)};
#else
    if constexpr (K == 1) {
      return V{_mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(x86::clamp_i32<1>(a.r)),
                                               _mm_castsi128_ps(x86::clamp_i32<1>(b.r)), _MM_SHUFFLE(2, 0, 2, 0)))};
    } else {
      const __m256i s = _mm256_castps_si256(_mm256_shuffle_ps(_mm256_castsi256_ps(x86::clamp_i32<2>(a.r)),
                                                              _mm256_castsi256_ps(x86::clamp_i32<2>(b.r)),
                                                              _MM_SHUFFLE(2, 0, 2, 0)));
      return V{x86::unpack_order<2>(s)};
    }
#endif
  } else if constexpr (std::is_same_v<From, int32_t> && std::is_same_v<To, int16_t>) {
    return V{ZIVKS_X86_BY_K(K, _mm_packs_epi32(a.r, b.r), x86::unpack_order<2>(_mm256_packs_epi32(a.r, b.r)),
                   x86::unpack_order<4>(_mm512_packs_epi32(a.r, b.r)))};
  } else if constexpr (std::is_same_v<From, int32_t> && std::is_same_v<To, uint16_t>) {
    return V{ZIVKS_X86_BY_K(K, _mm_packus_epi32(a.r, b.r), x86::unpack_order<2>(_mm256_packus_epi32(a.r, b.r)),
                   x86::unpack_order<4>(_mm512_packus_epi32(a.r, b.r)))};
  } else if constexpr (std::is_same_v<From, uint32_t> && std::is_same_v<To, uint16_t>) {
    const auto top = x86::set1_32<K>(0xFFFF);
    const auto x = x86::min_u32<K>(a.r, top), y = x86::min_u32<K>(b.r, top);
    return V{ZIVKS_X86_BY_K(K, _mm_packus_epi32(x, y), x86::unpack_order<2>(_mm256_packus_epi32(x, y)),
                   x86::unpack_order<4>(_mm512_packus_epi32(x, y)))};
  } else if constexpr (std::is_same_v<From, int16_t> && std::is_same_v<To, int8_t>) {
    return V{ZIVKS_X86_BY_K(K, _mm_packs_epi16(a.r, b.r), x86::unpack_order<2>(_mm256_packs_epi16(a.r, b.r)),
                   x86::unpack_order<4>(_mm512_packs_epi16(a.r, b.r)))};
  } else if constexpr (std::is_same_v<From, int16_t> && std::is_same_v<To, uint8_t>) {
    return V{ZIVKS_X86_BY_K(K, _mm_packus_epi16(a.r, b.r), x86::unpack_order<2>(_mm256_packus_epi16(a.r, b.r)),
                   x86::unpack_order<4>(_mm512_packus_epi16(a.r, b.r)))};
  } else if constexpr (std::is_same_v<From, uint16_t> && std::is_same_v<To, uint8_t>) {
    const auto top = x86::set1_16<K>(0xFF);
    const auto x = x86::min_u16<K>(a.r, top), y = x86::min_u16<K>(b.r, top);
    return V{ZIVKS_X86_BY_K(K, _mm_packus_epi16(x, y), x86::unpack_order<2>(_mm256_packus_epi16(x, y)),
                   x86::unpack_order<4>(_mm512_packus_epi16(x, y)))};
  } else {
    static_assert(sizeof(To) == 0, "no such narrowing");
  }
}

// uqxtn, xtn2: the lanes of a clamped to 16 bits, then those of b cut to their low 16
// bits. Over K blocks the rule goes by groups of 8 lanes of a then b: in each, the first
// four clamp and the last four wrap, which at one block is a clamped and b cut.
template <int K>
inline vec<uint16_t, K> narrow_sat_low_wrap_high(const vec<uint32_t, K>& a, const vec<uint32_t, K>& b) {
  if constexpr (K == 1) {
    const __m128i top = _mm_set1_epi32(0xFFFF);
    return vec<uint16_t, 1>{_mm_packus_epi32(_mm_min_epu32(a.r, top), _mm_and_si128(b.r, top))};
  } else {
    // Lanes that clamp are held at 0xFFFF, the others kept whole; then every lane keeps
    // its low 16 bits.
    using R = typename int_reg<K>::type;
    R lim, low = x86::set1_32<K>(0xFFFF);
    if constexpr (K == 2) lim = _mm256_setr_epi32(0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, -1, -1, -1, -1);
    else lim = _mm512_setr_epi32(0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, -1, -1, -1, -1,
                                 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, -1, -1, -1, -1);
    const R x = x86::min_u32<K>(a.r, lim) & low, y = x86::min_u32<K>(b.r, lim) & low;
    if constexpr (K == 2) return vec<uint16_t, K>{x86::unpack_order<2>(_mm256_packus_epi32(x, y))};
    else return vec<uint16_t, K>{x86::unpack_order<4>(_mm512_packus_epi32(x, y))};
  }
}

#undef ZIVKS_X86_BY_K

}  // namespace zivks::simd
