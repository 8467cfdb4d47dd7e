// x86 backend: minimum and maximum of lanes, and across the lanes of a vector, with the
// results of the Arm unit.
//
// maxps(a, b) is "a > b ? a : b": it returns b for any NaN and for two zeros. Taking it
// both ways round and keeping the common bits (AND for the maximum, OR for the minimum)
// orders -0 below +0 (AVX-512 has this in one vrange); lanes with a NaN operand get the
// NaN of the library's rule.
#pragma once

#include "core/simd/nan_rule.h"
#include "core/simd/x86/base.h"

namespace zivks::simd {

namespace x86 {

template <int K, class R>
inline R max_exact(R a, R b) {
#if defined(ZIVKS_X86_512)
  return ops<K>::template range<kRangeMax>(a, b);
#else
  return from_ints(a, ints(ops<K>::max(a, b)) & ints(ops<K>::max(b, a)));
#endif
}
template <int K, class R>
inline R min_exact(R a, R b) {
#if defined(ZIVKS_X86_512)
  return ops<K>::template range<kRangeMin>(a, b);
#else
  return from_ints(a, ints(ops<K>::min(a, b)) | ints(ops<K>::min(b, a)));
#endif
}

}  // namespace x86

// ---- max_propagating
template <class T, int K>
inline vec<T, K> max_propagating(const vec<T, K>& a, const vec<T, K>& b) {
  const vec<T, K> r{x86::max_exact<K>(a.raw, b.raw)};
  return __builtin_expect(x86::ops<K>::unordered(a.raw, b.raw) != 0, 0) ? rebuild_nan_operands(r, a, b) : r;
}

// ---- min_propagating
template <class T, int K>
inline vec<T, K> min_propagating(const vec<T, K>& a, const vec<T, K>& b) {
  const vec<T, K> r{x86::min_exact<K>(a.raw, b.raw)};
  return __builtin_expect(x86::ops<K>::unordered(a.raw, b.raw) != 0, 0) ? rebuild_nan_operands(r, a, b) : r;
}

// ---- max_raw, min_raw
// maxps and minps: b where the lanes are unordered or equal.
template <class T, int K>
inline vec<T, K> max_raw(const vec<T, K>& a, const vec<T, K>& b) {
  return vec<T, K>{x86::ops<K>::max(a.raw, b.raw)};
}
template <class T, int K>
inline vec<T, K> min_raw(const vec<T, K>& a, const vec<T, K>& b) {
  return vec<T, K>{x86::ops<K>::min(a.raw, b.raw)};
}

// ---- max_numbers, min_numbers
template <class T, int K>
inline vec<T, K> max_numbers(const vec<T, K>& a, const vec<T, K>& b) {
  return {x86::max_exact<K>(a.raw, b.raw)};
}
template <class T, int K>
inline vec<T, K> min_numbers(const vec<T, K>& a, const vec<T, K>& b) {
  return {x86::min_exact<K>(a.raw, b.raw)};
}

// ---- max
template <class T, int K>
inline vec<T, K> max(const vec<T, K>& a, const vec<T, K>& b) {
  using O = x86::ops<K>;
  if constexpr (std::is_same_v<T, uint8_t>) return {O::max_u8(a.raw, b.raw)};
  else if constexpr (std::is_same_v<T, uint16_t>) return {O::max_u16(a.raw, b.raw)};
  else if constexpr (std::is_same_v<T, uint32_t>) return {O::max_u32(a.raw, b.raw)};
  else if constexpr (std::is_same_v<T, int16_t>) return {O::max_i16(a.raw, b.raw)};
  else if constexpr (std::is_same_v<T, int32_t>) return {O::max_i32(a.raw, b.raw)};
  else static_assert(sizeof(T) == 0, "no such maximum");
}

// ---- min
template <class T, int K>
inline vec<T, K> min(const vec<T, K>& a, const vec<T, K>& b) {
  using O = x86::ops<K>;
  if constexpr (std::is_same_v<T, uint8_t>) return {O::min_u8(a.raw, b.raw)};
  else if constexpr (std::is_same_v<T, uint16_t>) return {O::min_u16(a.raw, b.raw)};
  else if constexpr (std::is_same_v<T, uint32_t>) return {O::min_u32(a.raw, b.raw)};
  else if constexpr (std::is_same_v<T, int16_t>) return {O::min_i16(a.raw, b.raw)};
  else if constexpr (std::is_same_v<T, int32_t>) return {O::min_i32(a.raw, b.raw)};
  else static_assert(sizeof(T) == 0, "no such minimum");
}

namespace x86 {

// The lanes of the upper half moved down onto the lower ones.
template <class T>
inline __m128i halves(__m128i v, int lanes_in_half) {
  switch (lanes_in_half * static_cast<int>(sizeof(T))) {
    case 8: return _mm_unpackhi_epi64(v, v);
    case 4: return _mm_shuffle_epi32(v, _MM_SHUFFLE(1, 1, 1, 1));
    case 2: return _mm_srli_epi32(v, 16);
    default: return _mm_srli_epi16(v, 8);
  }
}

// Lower half against upper half, down to one lane, by pick (the maximum or the minimum).
template <class T, class Pick>
inline T reduce_halves(const vec<T, 1>& a, Pick pick) {
  if constexpr (std::is_same_v<T, float>) {
    const vec<T, 1> s{_mm_shuffle_ps(a.raw, a.raw, _MM_SHUFFLE(2, 3, 0, 1))};
    const vec<T, 1> p = pick(a, s);  // l0 l1 | l2 l3
    return _mm_cvtss_f32(pick(p, vec<T, 1>{_mm_movehl_ps(p.raw, p.raw)}).raw);
  } else if constexpr (std::is_same_v<T, double>) {
    return _mm_cvtsd_f64(pick(a, vec<T, 1>{_mm_unpackhi_pd(a.raw, a.raw)}).raw);
  } else {
    vec<T, 1> v = a;
    for (int n = vec<T, 1>::kLanes / 2; n >= 1; n /= 2) v = pick(v, vec<T, 1>{halves<T>(v.raw, n)});
    T r;
    memcpy(&r, &v.raw, sizeof r);
    return r;
  }
}

}  // namespace x86

// ---- reduce_max
template <class T>
inline T reduce_max(const vec<T, 1>& a) {
  return x86::reduce_halves(a, [](const vec<T, 1>& x, const vec<T, 1>& y) {
    if constexpr (std::is_floating_point_v<T>) return max_propagating(x, y);
    else return max(x, y);
  });
}

// ---- reduce_min
template <class T>
inline T reduce_min(const vec<T, 1>& a) {
  return x86::reduce_halves(a, [](const vec<T, 1>& x, const vec<T, 1>& y) {
    if constexpr (std::is_floating_point_v<T>) return min_propagating(x, y);
    else return min(x, y);
  });
}

// ---- fold_tuning
// The widest registers, two chains so that the loads need not wait; maxps drops a NaN
// met in its first operand, so the folds test every load.
struct fold_tuning {
  static constexpr int kBlocks = kWide;
  static constexpr int kChains = 2;
  static constexpr bool kRawKeepsNan = false;
};

}  // namespace zivks::simd
