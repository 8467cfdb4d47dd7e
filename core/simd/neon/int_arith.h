// NEON backend: integer lanes.
#pragma once

#include "core/lane.h"
#include "core/simd/neon/base.h"

namespace zivks::simd {

// ---- load_widen
template <class V, class S>
inline V load_widen(const S* p) {
  using T = typename V::lane;
  V v;
  if constexpr (std::is_same_v<S, uint8_t> && std::is_same_v<T, uint16_t>) v.raw = vmovl_u8(vld1_u8(p));
  else if constexpr (std::is_same_v<S, int8_t> && std::is_same_v<T, int16_t>) v.raw = vmovl_s8(vld1_s8(p));
  else if constexpr (std::is_same_v<S, uint32_t> && std::is_same_v<T, uint64_t>) v.raw = vmovl_u32(vld1_u32(p));
  else if constexpr (std::is_same_v<S, int16_t> && std::is_same_v<T, int32_t>) v.raw = vmovl_s16(vld1_s16(p));
  else if constexpr (std::is_same_v<S, uint16_t> && std::is_same_v<T, uint32_t>) v.raw = vmovl_u16(vld1_u16(p));
  else if constexpr (std::is_same_v<S, int32_t> && std::is_same_v<T, int64_t>) v.raw = vmovl_s32(vld1_s32(p));
  else if constexpr (sizeof(S) == 1 && sizeof(T) == 4) {
    uint32_t w;  // a quarter register: four bytes
    memcpy(&w, p, 4);
    if constexpr (std::is_signed_v<S>) v.raw = vmovl_s16(vget_low_s16(vmovl_s8(vreinterpret_s8_u32(vdup_n_u32(w)))));
    else v.raw = vmovl_u16(vget_low_u16(vmovl_u8(vreinterpret_u8_u32(vdup_n_u32(w)))));
  } else static_assert(sizeof(S) == 0, "no such widening load");
  return v;
}

// ---- widen_lo
template <class To, class From>
inline vec<To, 1> widen_lo(const vec<From, 1>& a) {
  vec<To, 1> r;
  if constexpr (std::is_same_v<From, uint8_t>) r.raw = vmovl_u8(vget_low_u8(a.raw));
  else if constexpr (std::is_same_v<From, int8_t>) r.raw = vmovl_s8(vget_low_s8(a.raw));
  else if constexpr (std::is_same_v<From, uint32_t>) r.raw = vmovl_u32(vget_low_u32(a.raw));
  else if constexpr (std::is_same_v<From, uint16_t>) r.raw = vmovl_u16(vget_low_u16(a.raw));
  else if constexpr (std::is_same_v<From, int16_t>) r.raw = vmovl_s16(vget_low_s16(a.raw));
  else if constexpr (std::is_same_v<From, int32_t>) r.raw = vmovl_s32(vget_low_s32(a.raw));
  else static_assert(sizeof(From) == 0, "no such widening");
  return r;
}

// ---- widen_hi
template <class To, class From>
inline vec<To, 1> widen_hi(const vec<From, 1>& a) {
  vec<To, 1> r;
  if constexpr (std::is_same_v<From, uint8_t>) r.raw = vmovl_high_u8(a.raw);
  else if constexpr (std::is_same_v<From, int8_t>) r.raw = vmovl_high_s8(a.raw);
  else if constexpr (std::is_same_v<From, uint32_t>) r.raw = vmovl_high_u32(a.raw);
  else if constexpr (std::is_same_v<From, uint16_t>) r.raw = vmovl_high_u16(a.raw);
  else if constexpr (std::is_same_v<From, int16_t>) r.raw = vmovl_high_s16(a.raw);
  else if constexpr (std::is_same_v<From, int32_t>) r.raw = vmovl_high_s32(a.raw);
  else static_assert(sizeof(From) == 0, "no such widening");
  return r;
}

// ---- add_wrap
template <class T>
inline vec<T, 1> add_wrap(const vec<T, 1>& a, const vec<T, 1>& b) {
  return vec<T, 1>{a.raw + b.raw};
}

// ---- sub_wrap
template <class T>
inline vec<T, 1> sub_wrap(const vec<T, 1>& a, const vec<T, 1>& b) {
  return vec<T, 1>{a.raw - b.raw};
}

// ---- mul_wrap
template <class T>
inline vec<T, 1> mul_wrap(const vec<T, 1>& a, const vec<T, 1>& b) {
  return vec<T, 1>{a.raw * b.raw};
}

// ---- add_sat, sub_sat
// One overloaded name per instruction, so that every lane type has the same call.
namespace neon {
#define ZIVKS_NEON_SAT(suffix, R)                                            \
  inline R qadd(R a, R b) { return vqaddq_##suffix(a, b); }                 \
  inline R qsub(R a, R b) { return vqsubq_##suffix(a, b); }
ZIVKS_NEON_SAT(u8, uint8x16_t)
ZIVKS_NEON_SAT(s8, int8x16_t)
ZIVKS_NEON_SAT(u16, uint16x8_t)
ZIVKS_NEON_SAT(s16, int16x8_t)
ZIVKS_NEON_SAT(u32, uint32x4_t)
ZIVKS_NEON_SAT(s32, int32x4_t)
ZIVKS_NEON_SAT(u64, uint64x2_t)
ZIVKS_NEON_SAT(s64, int64x2_t)
#undef ZIVKS_NEON_SAT
}  // namespace neon

template <class T>
inline vec<T, 1> add_sat(const vec<T, 1>& a, const vec<T, 1>& b) {
  return {neon::qadd(a.raw, b.raw)};
}
template <class T>
inline vec<T, 1> sub_sat(const vec<T, 1>& a, const vec<T, 1>& b) {
  return {neon::qsub(a.raw, b.raw)};
}

// ---- abs_sat
template <class T>
inline vec<T, 1> abs_sat(const vec<T, 1>& a) {
  vec<T, 1> r;
  if constexpr (std::is_same_v<T, int16_t>) r.raw = vqabsq_s16(a.raw);
  else if constexpr (std::is_same_v<T, int32_t>) r.raw = vqabsq_s32(a.raw);
  else static_assert(sizeof(T) == 0, "no such abs");
  return r;
}

// ---- shl_sat_by_low_byte
namespace neon {
#define ZIVKS_NEON_QSHL(suffix, R, C)                                                          \
  inline R qshl(R a, int8_t n) { return vqshlq_##suffix(a, vdupq_n_##C(n)); }                 \
  inline R qrshl(R a, int8_t n) { return vqrshlq_##suffix(a, vdupq_n_##C(n)); }
ZIVKS_NEON_QSHL(u8, uint8x16_t, s8)
ZIVKS_NEON_QSHL(u16, uint16x8_t, s16)
ZIVKS_NEON_QSHL(s16, int16x8_t, s16)
ZIVKS_NEON_QSHL(u32, uint32x4_t, s32)
ZIVKS_NEON_QSHL(s32, int32x4_t, s32)
ZIVKS_NEON_QSHL(u64, uint64x2_t, s64)
ZIVKS_NEON_QSHL(s64, int64x2_t, s64)
#undef ZIVKS_NEON_QSHL
}  // namespace neon

template <lane::RightShift r, class T>
inline vec<T, 1> shl_sat_by_low_byte(const vec<T, 1>& a, int32_t k) {
  const int8_t n = static_cast<int8_t>(static_cast<uint8_t>(k & 0xFF));
  if constexpr (r == lane::RightShift::kRound) return {neon::qrshl(a.raw, n)};
  else return {neon::qshl(a.raw, n)};
}

// ---- narrow_sat
template <class To, class From>
inline vec<To, 1> narrow_sat(const vec<From, 1>& a, const vec<From, 1>& b) {
  vec<To, 1> r;
  if constexpr (std::is_same_v<From, int64_t> && std::is_same_v<To, int32_t>)
    r.raw = vqmovn_high_s64(vqmovn_s64(a.raw), b.raw);
  else if constexpr (std::is_same_v<From, int64_t> && std::is_same_v<To, uint32_t>)
    r.raw = vqmovun_high_s64(vqmovun_s64(a.raw), b.raw);
  else if constexpr (std::is_same_v<From, int32_t> && std::is_same_v<To, int16_t>)
    r.raw = vqmovn_high_s32(vqmovn_s32(a.raw), b.raw);
  else if constexpr (std::is_same_v<From, int32_t> && std::is_same_v<To, uint16_t>)
    r.raw = vqmovun_high_s32(vqmovun_s32(a.raw), b.raw);
  else if constexpr (std::is_same_v<From, uint32_t> && std::is_same_v<To, uint16_t>)
    r.raw = vqmovn_high_u32(vqmovn_u32(a.raw), b.raw);
  else if constexpr (std::is_same_v<From, int16_t> && std::is_same_v<To, int8_t>)
    r.raw = vqmovn_high_s16(vqmovn_s16(a.raw), b.raw);
  else if constexpr (std::is_same_v<From, int16_t> && std::is_same_v<To, uint8_t>)
    r.raw = vqmovun_high_s16(vqmovun_s16(a.raw), b.raw);
  else if constexpr (std::is_same_v<From, uint16_t> && std::is_same_v<To, uint8_t>)
    r.raw = vqmovn_high_u16(vqmovn_u16(a.raw), b.raw);
  else static_assert(sizeof(To) == 0, "no such narrowing");
  return r;
}

// ---- narrow_sat_low_wrap_high
inline vec<uint16_t, 1> narrow_sat_low_wrap_high(const vec<uint32_t, 1>& a, const vec<uint32_t, 1>& b) {
  return vec<uint16_t, 1>{vmovn_high_u32(vqmovn_u32(a.raw), b.raw)};
}

}  // namespace zivks::simd
