// x86 backend: integer lanes. Where SSE has no instruction of the Arm meaning (unsigned
// 32-bit saturation, a shift by a signed count, unsigned narrowing), a short sequence
// gives the same lanes. The forms of 2 and 4 blocks give every lane exactly what the form
// of one block gives it; lanes stay in memory order, also where a result is wider or
// narrower than its input.
#pragma once

#include <limits>

#include "core/lane.h"
#include "core/simd/x86/compare.h"

namespace zivks::simd {

namespace x86 {

// Narrow lanes From (in the low bytes of x) widened to To, in order: K blocks of To.
template <class To, class From, int K>
inline typename ops<K>::I widen(typename ops<K>::H x) {
  using O = ops<K>;
  if constexpr (std::is_same_v<From, uint8_t>) return O::widen_u8_16(x);
  else if constexpr (std::is_same_v<From, int8_t>) return O::widen_i8_16(x);
  else if constexpr (std::is_same_v<From, uint32_t>) return O::widen_u32_64(x);
  else if constexpr (std::is_same_v<From, uint16_t>) return O::widen_u16_32(x);
  else if constexpr (std::is_same_v<From, int16_t>) return O::widen_i16_32(x);
  else if constexpr (std::is_same_v<From, int32_t>) return O::widen_i32_64(x);
  else static_assert(sizeof(From) == 0, "no such widening");
}

}  // namespace x86

// ---- load_widen
// Bytes to 32-bit lanes read a quarter register: 4, 8 or 16 bytes.
template <class V, class S>
inline V load_widen(const S* p) {
  using T = typename V::lane;
  constexpr int K = V::kBlocks;
  if constexpr (sizeof(T) == 4 && sizeof(S) == 1) {
    __m128i q;
    if constexpr (K == 1) {
      int32_t w;
      memcpy(&w, p, 4);
      q = _mm_cvtsi32_si128(w);
    } else if constexpr (K == 2) {
      q = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
    } else {
      q = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    }
    constexpr bool s = std::is_signed_v<S>;
    if constexpr (K == 1) return V{s ? _mm_cvtepi8_epi32(q) : _mm_cvtepu8_epi32(q)};
    else if constexpr (K == 2) return V{s ? _mm256_cvtepi8_epi32(q) : _mm256_cvtepu8_epi32(q)};
#if defined(ZIVKS_X86_512)
    else return V{s ? _mm512_cvtepi8_epi32(q) : _mm512_cvtepu8_epi32(q)};
#endif
  } else {
    static_assert(sizeof(T) == 2 * sizeof(S), "widening doubles the lane, or bytes go to 32 bits");
    return V{x86::widen<T, S, K>(x86::ops<K>::load_half(p))};
  }
}

// ---- widen_lo, widen_hi
template <class To, class From, int K>
inline vec<To, K> widen_lo(const vec<From, K>& a) {
  return vec<To, K>{x86::widen<To, From, K>(x86::ops<K>::lo_half(a.raw))};
}
template <class To, class From, int K>
inline vec<To, K> widen_hi(const vec<From, K>& a) {
  return vec<To, K>{x86::widen<To, From, K>(x86::ops<K>::hi_half(a.raw))};
}

// ---- add_wrap
template <class T, int K>
inline vec<T, K> add_wrap(const vec<T, K>& a, const vec<T, K>& b) {
  using O = x86::ops<K>;
  if constexpr (sizeof(T) == 1) return vec<T, K>{O::add8(a.raw, b.raw)};
  else if constexpr (sizeof(T) == 2) return vec<T, K>{O::add16(a.raw, b.raw)};
  else if constexpr (sizeof(T) == 4) return vec<T, K>{O::add32(a.raw, b.raw)};
  else return vec<T, K>{O::add64(a.raw, b.raw)};
}

// ---- sub_wrap
template <class T, int K>
inline vec<T, K> sub_wrap(const vec<T, K>& a, const vec<T, K>& b) {
  using O = x86::ops<K>;
  if constexpr (sizeof(T) == 1) return vec<T, K>{O::sub8(a.raw, b.raw)};
  else if constexpr (sizeof(T) == 2) return vec<T, K>{O::sub16(a.raw, b.raw)};
  else if constexpr (sizeof(T) == 4) return vec<T, K>{O::sub32(a.raw, b.raw)};
  else return vec<T, K>{O::sub64(a.raw, b.raw)};
}

// ---- mul_wrap
// 64-bit lanes: the compiler's sequence of 32-bit multiplies (one instruction at v4).
template <class T, int K>
inline vec<T, K> mul_wrap(const vec<T, K>& a, const vec<T, K>& b) {
  static_assert(std::is_integral_v<T> && sizeof(T) >= 4, "32- or 64-bit lanes");
  if constexpr (sizeof(T) == 4) return vec<T, K>{x86::ops<K>::mullo32(a.raw, b.raw)};
  else return vec<T, K>{a.raw * b.raw};
}

namespace x86 {

// The wrapped signed result r of an operation on a, with `over` holding the overflow in
// its sign bits: overflowed lanes take the bound on the side of a. The blend reads the
// sign bits themselves.
template <class T, int K>
inline vec<T, K> saturate_overflow(const vec<T, K>& a, const vec<T, K>& r, const vec<T, K>& over) {
  using V = vec<T, K>;
  using O = ops<K>;
  const V max = splat<V>(std::numeric_limits<T>::max());
  if constexpr (sizeof(T) == 4) {
    const V bound = bit_xor(shr(a, shift_count<T, K>(31)), max);
    return V{O::blend_sign32(r.raw, bound.raw, over.raw)};
  } else {
    const V bound = bit_xor(cmp_lt(a, zeros<V>()), max);
    return V{O::blend_sign64(r.raw, bound.raw, over.raw)};
  }
}

}  // namespace x86

// ---- add_sat
// Where SSE has no saturating add, the wrapped sum is corrected: unsigned lanes that
// carried become all ones, signed lanes whose sign the sum broke take the bound.
template <class T, int K>
inline vec<T, K> add_sat(const vec<T, K>& a, const vec<T, K>& b) {
  using O = x86::ops<K>;
  if constexpr (std::is_same_v<T, uint8_t>) return vec<T, K>{O::adds_u8(a.raw, b.raw)};
  else if constexpr (std::is_same_v<T, uint16_t>) return vec<T, K>{O::adds_u16(a.raw, b.raw)};
  else if constexpr (std::is_same_v<T, int16_t>) return vec<T, K>{O::adds_i16(a.raw, b.raw)};
  // a + min(b, ~a) stops exactly at the maximum.
  else if constexpr (std::is_same_v<T, uint32_t>) return vec<T, K>{O::add32(a.raw, O::min_u32(b.raw, ~a.raw))};
  else {
    static_assert(sizeof(T) >= 4, "no such saturating add");
    const vec<T, K> r = add_wrap(a, b);
    if constexpr (std::is_unsigned_v<T>) return bit_or(r, cmp_gt(a, r));
    else return x86::saturate_overflow(a, r, bit_and(bit_xor(r, a), bit_xor(r, b)));
  }
}

// ---- sub_sat
template <class T, int K>
inline vec<T, K> sub_sat(const vec<T, K>& a, const vec<T, K>& b) {
  using O = x86::ops<K>;
  if constexpr (std::is_same_v<T, uint8_t>) return vec<T, K>{O::subs_u8(a.raw, b.raw)};
  else if constexpr (std::is_same_v<T, uint16_t>) return vec<T, K>{O::subs_u16(a.raw, b.raw)};
  else if constexpr (std::is_same_v<T, int16_t>) return vec<T, K>{O::subs_i16(a.raw, b.raw)};
  else {
    static_assert(sizeof(T) >= 4, "no such saturating subtract");
    const vec<T, K> r = sub_wrap(a, b);
    if constexpr (std::is_unsigned_v<T>) return bit_and(r, bit_not(cmp_gt(b, a)));
    else return x86::saturate_overflow(a, r, bit_and(bit_xor(a, b), bit_xor(a, r)));
  }
}

// ---- abs_sat
// pabs leaves the most negative value as it is; seen unsigned it is the one lane above
// the most positive value, where an unsigned minimum holds it.
template <class T, int K>
inline vec<T, K> abs_sat(const vec<T, K>& a) {
  using O = x86::ops<K>;
  if constexpr (std::is_same_v<T, int16_t>) return vec<T, K>{O::min_u16(O::abs16(a.raw), O::set1_16(0x7FFF))};
  else if constexpr (std::is_same_v<T, int32_t>) return vec<T, K>{O::min_u32(O::abs32(a.raw), O::set1_32(0x7FFFFFFF))};
  else static_assert(sizeof(T) == 0, "no such abs");
}

// ---- shl_sat_by_low_byte
// The count is the same in every lane, so its cases are chosen once: right shifts are
// plain shifts plus, to round, the last bit shifted out; left shifts take the bound in
// every lane beyond bound >> n.
template <lane::RightShift r, class T, int K>
inline vec<T, K> shl_sat_by_low_byte(const vec<T, K>& a, int32_t k) {
  using V = vec<T, K>;
  constexpr int bits = sizeof(T) * 8;
  constexpr T hi = std::numeric_limits<T>::max(), lo = std::numeric_limits<T>::min();
  const int n = static_cast<int8_t>(static_cast<uint8_t>(k & 0xFF));
  if (n < 0) {
    // floor(a / 2^m); past the width the sign of each lane.
    auto floor_shift = [&](int m) -> V {
      if (m < bits) return shr(a, shift_count<T, K>(m));
      if constexpr (std::is_signed_v<T>) return shr(a, shift_count<T, K>(bits - 1));
      else return zeros<V>();
    };
    const V q = floor_shift(-n);
    if constexpr (r == lane::RightShift::kTruncate) return q;
    else return add_wrap(q, bit_and(floor_shift(-n - 1), splat<V>(T{1})));
  }
  const bool past = n >= bits;
  const V shifted = past ? zeros<V>() : shl(a, shift_count<T, K>(n));
  V res = select(cmp_gt(a, splat<V>(past ? T{0} : static_cast<T>(hi >> n))), splat<V>(hi), shifted);
  if constexpr (std::is_signed_v<T>)
    res = select(cmp_lt(a, splat<V>(past ? T{0} : static_cast<T>(lo >> n))), splat<V>(lo), res);
  return res;
}

namespace x86 {

// Lanes of 64 bits clamped to lowest .. highest, for the forms without a saturating
// 64-bit narrow.
template <int K>
inline typename ops<K>::I clamp_64(typename ops<K>::I v, int64_t lowest, int64_t highest) {
  using O = ops<K>;
  const auto hi = O::set1_64(highest), lo = O::set1_64(lowest);
  v = O::blendv8(v, hi, O::cmpgt64(v, hi));
  return O::blendv8(v, lo, O::cmpgt64(lo, v));
}

// The low halves of the 64-bit lanes of a, then those of b, for one or two blocks.
template <int K>
inline typename ops<K>::I even_lanes32(typename ops<K>::I a, typename ops<K>::I b) {
  static_assert(K == 1 || K == 2, "one or two blocks");
  if constexpr (K == 1) {
    return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), kEven32));
  } else {
    return ops<K>::pack_order(
        _mm256_castps_si256(_mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), kEven32)));
  }
}

// The limits of narrow_sat_low_wrap_high over K blocks: 0xFFFF in the lanes that clamp
// (the even blocks), all ones in those that wrap.
template <int K>
struct clamp_then_wrap {
  int32_t lanes[4 * K];
  constexpr clamp_then_wrap() : lanes{} {
    for (int i = 0; i < 4 * K; ++i) lanes[i] = i / 4 % 2 == 0 ? 0xFFFF : -1;
  }
};
template <int K> inline constexpr clamp_then_wrap<K> kClampThenWrap{};

}  // namespace x86

// ---- narrow_sat
// pack saturates signed inputs; unsigned inputs are first held at the target's maximum.
template <class To, class From, int K>
inline vec<To, K> narrow_sat(const vec<From, K>& a, const vec<From, K>& b) {
  using O = x86::ops<K>;
  using V = vec<To, K>;
  if constexpr (std::is_same_v<From, int64_t> && std::is_same_v<To, int32_t>) {
#if defined(ZIVKS_X86_512)
    return V{O::narrow_sat_i64(a.raw, b.raw)};
#else
    return V{x86::even_lanes32<K>(x86::clamp_64<K>(a.raw, INT32_MIN, INT32_MAX),
                                  x86::clamp_64<K>(b.raw, INT32_MIN, INT32_MAX))};
#endif
  } else if constexpr (std::is_same_v<From, int64_t> && std::is_same_v<To, uint32_t>) {
#if defined(ZIVKS_X86_512)
    if constexpr (K == 4) {
      const __m512i z = _mm512_setzero_si512();
      return V{_mm512_inserti64x4(_mm512_castsi256_si512(_mm512_cvtusepi64_epi32(_mm512_max_epi64(a.raw, z))),
                                  _mm512_cvtusepi64_epi32(_mm512_max_epi64(b.raw, z)), 1)};
    } else
#endif
    {
      return V{x86::even_lanes32<K>(x86::clamp_64<K>(a.raw, 0, UINT32_MAX), x86::clamp_64<K>(b.raw, 0, UINT32_MAX))};
    }
  } else if constexpr (std::is_same_v<From, int32_t> && std::is_same_v<To, int16_t>) {
    return V{O::pack_order(O::packs32(a.raw, b.raw))};
  } else if constexpr (std::is_same_v<From, int32_t> && std::is_same_v<To, uint16_t>) {
    return V{O::pack_order(O::packus32(a.raw, b.raw))};
  } else if constexpr (std::is_same_v<From, uint32_t> && std::is_same_v<To, uint16_t>) {
    const auto top = O::set1_32(0xFFFF);
    return V{O::pack_order(O::packus32(O::min_u32(a.raw, top), O::min_u32(b.raw, top)))};
  } else if constexpr (std::is_same_v<From, int16_t> && std::is_same_v<To, int8_t>) {
    return V{O::pack_order(O::packs16(a.raw, b.raw))};
  } else if constexpr (std::is_same_v<From, int16_t> && std::is_same_v<To, uint8_t>) {
    return V{O::pack_order(O::packus16(a.raw, b.raw))};
  } else if constexpr (std::is_same_v<From, uint16_t> && std::is_same_v<To, uint8_t>) {
    const auto top = O::set1_16(0xFF);
    return V{O::pack_order(O::packus16(O::min_u16(a.raw, top), O::min_u16(b.raw, top)))};
  } else {
    static_assert(sizeof(To) == 0, "no such narrowing");
  }
}

// ---- narrow_sat_low_wrap_high
// Over K blocks the rule goes by groups of 8 lanes of a then b: in each, the first four
// clamp and the last four wrap, which at one block is a clamped and b cut. Lanes that
// clamp are held at 0xFFFF, the others kept whole; then every lane keeps its low 16 bits
// for the pack.
template <int K>
inline vec<uint16_t, K> narrow_sat_low_wrap_high(const vec<uint32_t, K>& a, const vec<uint32_t, K>& b) {
  using O = x86::ops<K>;
  const auto low = O::set1_32(0xFFFF);
  if constexpr (K == 1) return vec<uint16_t, K>{O::packus32(O::min_u32(a.raw, low), b.raw & low)};
  else {
    const auto lim = O::load(x86::kClampThenWrap<K>.lanes);
    return vec<uint16_t, K>{O::pack_order(O::packus32(O::min_u32(a.raw, lim) & low, O::min_u32(b.raw, lim) & low))};
  }
}

}  // namespace zivks::simd
