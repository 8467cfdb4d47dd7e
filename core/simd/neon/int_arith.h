// NEON backend: integer lanes.
#pragma once

#include "core/simd/neon/base.h"

namespace zivks::simd {

// ---- load_widen
template <class V, class S>
inline V load_widen(const S* p) {
  using T = typename V::lane;
  V v;
  if constexpr (std::is_same_v<S, uint8_t> && std::is_same_v<T, uint16_t>) v.raw = vmovl_u8(vld1_u8(p));
  else if constexpr (std::is_same_v<S, int16_t> && std::is_same_v<T, int32_t>) v.raw = vmovl_s16(vld1_s16(p));
  else if constexpr (std::is_same_v<S, uint16_t> && std::is_same_v<T, uint32_t>) v.raw = vmovl_u16(vld1_u16(p));
  else if constexpr (std::is_same_v<S, int32_t> && std::is_same_v<T, int64_t>) v.raw = vmovl_s32(vld1_s32(p));
  else static_assert(sizeof(S) == 0, "no such widening load");
  return v;
}

// ---- widen_lo
template <class To, class From>
inline vec<To, 1> widen_lo(const vec<From, 1>& a) {
  vec<To, 1> r;
  if constexpr (std::is_same_v<From, uint8_t>) r.raw = vmovl_u8(vget_low_u8(a.raw));
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

// ---- add_sat
template <class T>
inline vec<T, 1> add_sat(const vec<T, 1>& a, const vec<T, 1>& b) {
  vec<T, 1> r;
  if constexpr (std::is_same_v<T, uint8_t>) r.raw = vqaddq_u8(a.raw, b.raw);
  else if constexpr (std::is_same_v<T, uint16_t>) r.raw = vqaddq_u16(a.raw, b.raw);
  else if constexpr (std::is_same_v<T, int16_t>) r.raw = vqaddq_s16(a.raw, b.raw);
  else if constexpr (std::is_same_v<T, uint32_t>) r.raw = vqaddq_u32(a.raw, b.raw);
  else static_assert(sizeof(T) == 0, "no such saturating add");
  return r;
}

// ---- sub_sat
template <class T>
inline vec<T, 1> sub_sat(const vec<T, 1>& a, const vec<T, 1>& b) {
  vec<T, 1> r;
  if constexpr (std::is_same_v<T, uint8_t>) r.raw = vqsubq_u8(a.raw, b.raw);
  else if constexpr (std::is_same_v<T, uint16_t>) r.raw = vqsubq_u16(a.raw, b.raw);
  else if constexpr (std::is_same_v<T, int16_t>) r.raw = vqsubq_s16(a.raw, b.raw);
  else static_assert(sizeof(T) == 0, "no such saturating subtract");
  return r;
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

// ---- shl_sat_round_by_low_byte
template <class T>
inline vec<T, 1> shl_sat_round_by_low_byte(const vec<T, 1>& a, int32_t k) {
  const int8_t n = static_cast<int8_t>(static_cast<uint8_t>(k & 0xFF));
  vec<T, 1> r;
  if constexpr (std::is_same_v<T, uint16_t>) r.raw = vqrshlq_u16(a.raw, vdupq_n_s16(n));
  else if constexpr (std::is_same_v<T, uint32_t>) r.raw = vqrshlq_u32(a.raw, vdupq_n_s32(n));
  else static_assert(sizeof(T) == 0, "no such shift");
  return r;
}

// ---- narrow_sat
template <class To, class From>
inline vec<To, 1> narrow_sat(const vec<From, 1>& a, const vec<From, 1>& b) {
  vec<To, 1> r;
  if constexpr (std::is_same_v<From, int64_t> && std::is_same_v<To, int32_t>)
    r.raw = vqmovn_high_s64(vqmovn_s64(a.raw), b.raw);
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
