// NEON backend: integer lanes and the sign clear of float lanes.
#pragma once

namespace zivks::simd {

// ldr + sxtl / uxtl
template <class V, class S>
inline V load_widen(const S* p) {
  using T = typename V::lane;
  V v;
  if constexpr (std::is_same_v<S, uint8_t> && std::is_same_v<T, uint16_t>) v.r = vmovl_u8(vld1_u8(p));
  else if constexpr (std::is_same_v<S, int16_t> && std::is_same_v<T, int32_t>) v.r = vmovl_s16(vld1_s16(p));
  else if constexpr (std::is_same_v<S, uint16_t> && std::is_same_v<T, uint32_t>) v.r = vmovl_u16(vld1_u16(p));
  else if constexpr (std::is_same_v<S, int32_t> && std::is_same_v<T, int64_t>) v.r = vmovl_s32(vld1_s32(p));
  else static_assert(sizeof(S) == 0, "no such widening load");
  return v;
}

// uxtl / sxtl
template <class To, class From>
inline vec<To, 1> widen_lo(const vec<From, 1>& a) {
  vec<To, 1> r;
  if constexpr (std::is_same_v<From, uint8_t>) r.r = vmovl_u8(vget_low_u8(a.r));
  else if constexpr (std::is_same_v<From, uint16_t>) r.r = vmovl_u16(vget_low_u16(a.r));
  else if constexpr (std::is_same_v<From, int16_t>) r.r = vmovl_s16(vget_low_s16(a.r));
  else if constexpr (std::is_same_v<From, int32_t>) r.r = vmovl_s32(vget_low_s32(a.r));
  else static_assert(sizeof(From) == 0, "no such widening");
  return r;
}

// uxtl2 / sxtl2
template <class To, class From>
inline vec<To, 1> widen_hi(const vec<From, 1>& a) {
  vec<To, 1> r;
  if constexpr (std::is_same_v<From, uint8_t>) r.r = vmovl_high_u8(a.r);
  else if constexpr (std::is_same_v<From, uint16_t>) r.r = vmovl_high_u16(a.r);
  else if constexpr (std::is_same_v<From, int16_t>) r.r = vmovl_high_s16(a.r);
  else if constexpr (std::is_same_v<From, int32_t>) r.r = vmovl_high_s32(a.r);
  else static_assert(sizeof(From) == 0, "no such widening");
  return r;
}

// add
template <class T>
inline vec<T, 1> add_wrap(const vec<T, 1>& a, const vec<T, 1>& b) {
  return vec<T, 1>{a.r + b.r};
}

// sub
template <class T>
inline vec<T, 1> sub_wrap(const vec<T, 1>& a, const vec<T, 1>& b) {
  return vec<T, 1>{a.r - b.r};
}

// sqadd / uqadd
template <class T>
inline vec<T, 1> add_sat(const vec<T, 1>& a, const vec<T, 1>& b) {
  vec<T, 1> r;
  if constexpr (std::is_same_v<T, uint8_t>) r.r = vqaddq_u8(a.r, b.r);
  else if constexpr (std::is_same_v<T, uint16_t>) r.r = vqaddq_u16(a.r, b.r);
  else if constexpr (std::is_same_v<T, int16_t>) r.r = vqaddq_s16(a.r, b.r);
  else if constexpr (std::is_same_v<T, uint32_t>) r.r = vqaddq_u32(a.r, b.r);
  else static_assert(sizeof(T) == 0, "no such saturating add");
  return r;
}

// sqsub / uqsub
template <class T>
inline vec<T, 1> sub_sat(const vec<T, 1>& a, const vec<T, 1>& b) {
  vec<T, 1> r;
  if constexpr (std::is_same_v<T, uint8_t>) r.r = vqsubq_u8(a.r, b.r);
  else if constexpr (std::is_same_v<T, uint16_t>) r.r = vqsubq_u16(a.r, b.r);
  else if constexpr (std::is_same_v<T, int16_t>) r.r = vqsubq_s16(a.r, b.r);
  else static_assert(sizeof(T) == 0, "no such saturating subtract");
  return r;
}

// sqabs
template <class T>
inline vec<T, 1> abs_sat(const vec<T, 1>& a) {
  vec<T, 1> r;
  if constexpr (std::is_same_v<T, int16_t>) r.r = vqabsq_s16(a.r);
  else if constexpr (std::is_same_v<T, int32_t>) r.r = vqabsq_s32(a.r);
  else static_assert(sizeof(T) == 0, "no such abs");
  return r;
}

// fabs
template <class F>
inline vec<F, 1> clear_sign(const vec<F, 1>& a) {
  vec<F, 1> r;
  if constexpr (std::is_same_v<F, float>) r.r = vabsq_f32(a.r);
  else r.r = vabsq_f64(a.r);
  return r;
}

// uqrshl by the low byte of k, read as a signed count, in every lane.
template <class T>
inline vec<T, 1> shl_sat_round_by_low_byte(const vec<T, 1>& a, int32_t k) {
  const int8_t n = static_cast<int8_t>(static_cast<uint8_t>(k & 0xFF));
  vec<T, 1> r;
  if constexpr (std::is_same_v<T, uint16_t>) r.r = vqrshlq_u16(a.r, vdupq_n_s16(n));
  else if constexpr (std::is_same_v<T, uint32_t>) r.r = vqrshlq_u32(a.r, vdupq_n_s32(n));
  else static_assert(sizeof(T) == 0, "no such shift");
  return r;
}

// sqxtn / uqxtn / sqxtun, then the same into the upper half.
template <class To, class From>
inline vec<To, 1> narrow_sat(const vec<From, 1>& a, const vec<From, 1>& b) {
  vec<To, 1> r;
  if constexpr (std::is_same_v<From, int64_t> && std::is_same_v<To, int32_t>)
    r.r = vqmovn_high_s64(vqmovn_s64(a.r), b.r);
  else if constexpr (std::is_same_v<From, int32_t> && std::is_same_v<To, int16_t>)
    r.r = vqmovn_high_s32(vqmovn_s32(a.r), b.r);
  else if constexpr (std::is_same_v<From, int32_t> && std::is_same_v<To, uint16_t>)
    r.r = vqmovun_high_s32(vqmovun_s32(a.r), b.r);
  else if constexpr (std::is_same_v<From, uint32_t> && std::is_same_v<To, uint16_t>)
    r.r = vqmovn_high_u32(vqmovn_u32(a.r), b.r);
  else if constexpr (std::is_same_v<From, int16_t> && std::is_same_v<To, int8_t>)
    r.r = vqmovn_high_s16(vqmovn_s16(a.r), b.r);
  else if constexpr (std::is_same_v<From, int16_t> && std::is_same_v<To, uint8_t>)
    r.r = vqmovun_high_s16(vqmovun_s16(a.r), b.r);
  else if constexpr (std::is_same_v<From, uint16_t> && std::is_same_v<To, uint8_t>)
    r.r = vqmovn_high_u16(vqmovn_u16(a.r), b.r);
  else static_assert(sizeof(To) == 0, "no such narrowing");
  return r;
}

// uqxtn, xtn2
inline vec<uint16_t, 1> narrow_sat_low_wrap_high(const vec<uint32_t, 1>& a, const vec<uint32_t, 1>& b) {
  return vec<uint16_t, 1>{vmovn_high_u32(vqmovn_u32(a.r), b.r)};
}

}  // namespace zivks::simd
