// x86 backend: lane compares and the bitwise select. SSE compares only signed integers;
// the masks are the all-ones lanes of the Arm compares.
#pragma once

#include <limits>

#include "core/simd/x86/bitwise.h"

namespace zivks::simd {

namespace x86 {

template <int imm, class T, int K>
inline vec<T, K> float_cmp(const vec<T, K>& a, const vec<T, K>& b) {
  return vec<T, K>{ops<K>::template cmp<imm>(a.raw, b.raw)};
}

}  // namespace x86

// ---- cmp_eq
template <class T, int K>
inline vec<T, K> cmp_eq(const vec<T, K>& a, const vec<T, K>& b) {
  using O = x86::ops<K>;
  if constexpr (std::is_floating_point_v<T>) return x86::float_cmp<_CMP_EQ_OQ>(a, b);
  else if constexpr (sizeof(T) == 1) return vec<T, K>{O::cmpeq8(a.raw, b.raw)};
  else if constexpr (sizeof(T) == 2) return vec<T, K>{O::cmpeq16(a.raw, b.raw)};
  else if constexpr (sizeof(T) == 4) return vec<T, K>{O::cmpeq32(a.raw, b.raw)};
  else return vec<T, K>{O::cmpeq64(a.raw, b.raw)};
}

// ---- cmp_gt
// Unsigned lanes are compared as signed ones with the sign bit flipped in both.
template <class T, int K>
inline vec<T, K> cmp_gt(const vec<T, K>& a, const vec<T, K>& b) {
  using O = x86::ops<K>;
  if constexpr (std::is_floating_point_v<T>) {
    return x86::float_cmp<_CMP_GT_OQ>(a, b);
  } else if constexpr (std::is_unsigned_v<T>) {
    using S = std::make_signed_t<T>;
    const auto flip = splat<vec<S, K>>(std::numeric_limits<S>::min());
    return reinterpret<T>(cmp_gt(bit_xor(reinterpret<S>(a), flip), bit_xor(reinterpret<S>(b), flip)));
  } else if constexpr (sizeof(T) == 1) {
    return vec<T, K>{O::cmpgt8(a.raw, b.raw)};
  } else if constexpr (sizeof(T) == 2) {
    return vec<T, K>{O::cmpgt16(a.raw, b.raw)};
  } else if constexpr (sizeof(T) == 4) {
    return vec<T, K>{O::cmpgt32(a.raw, b.raw)};
  } else {
    return vec<T, K>{O::cmpgt64(a.raw, b.raw)};
  }
}

// ---- cmp_lt
template <class T, int K>
inline vec<T, K> cmp_lt(const vec<T, K>& a, const vec<T, K>& b) {
  if constexpr (std::is_floating_point_v<T>) return x86::float_cmp<_CMP_LT_OQ>(a, b);
  else return cmp_gt(b, a);
}

// ---- select
// Every lane of a mask is all ones or all zeros, so a byte blend selects as bsl does.
template <class T, int K>
inline vec<T, K> select(const vec<T, K>& m, const vec<T, K>& a, const vec<T, K>& b) {
  return x86::of_bits<T, K>(x86::ops<K>::blendv8(x86::bits(b), x86::bits(a), x86::bits(m)));
}

// ---- any_true
template <class T, int K>
inline bool any_true(const vec<T, K>& m) {
  return x86::ops<K>::any(x86::bits(m));
}

// ---- zero_flag_mask
template <class V>
inline V zero_flag_mask(const int8_t* flags) {
  static_assert(sizeof(typename V::lane) == 4, "masks of 32-bit lanes");
  using T = typename V::lane;
  constexpr int K = V::kBlocks;
  if constexpr (K == 1) {
    int32_t w;
    memcpy(&w, flags, sizeof w);
    const __m128i f = _mm_cvtepi8_epi32(_mm_cvtsi32_si128(w));
    return x86::of_bits<T, K>(_mm_cmpeq_epi32(f, _mm_setzero_si128()));
  } else if constexpr (K == 2) {
    const __m256i f = _mm256_cvtepi8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(flags)));
    return x86::of_bits<T, K>(_mm256_cmpeq_epi32(f, _mm256_setzero_si256()));
  } else {
    const __m128i f = _mm_loadu_si128(reinterpret_cast<const __m128i*>(flags));
    return x86::of_bits<T, K>(_mm512_movm_epi32(_mm_testn_epi8_mask(f, f)));
  }
}

// ---- lane_bits
template <class T, int K>
inline uint32_t lane_bits(const vec<T, K>& m) {
  static_assert(sizeof(T) == 4, "masks of 32-bit lanes");
  const auto x = x86::bits(m);
  if constexpr (K == 1) return static_cast<uint32_t>(_mm_movemask_ps(_mm_castsi128_ps(x)));
  else if constexpr (K == 2) return static_cast<uint32_t>(_mm256_movemask_ps(_mm256_castsi256_ps(x)));
  else return static_cast<uint32_t>(_mm512_movepi32_mask(x));
}

}  // namespace zivks::simd
