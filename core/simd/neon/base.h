// NEON backend: a vector is one Q register; the loads and stores of parts of registers.
#pragma once

#include <arm_neon.h>

#include "core/simd/vec.h"

namespace zivks::simd {

inline constexpr int kWide = 1;

template <class T> struct neon_reg;
template <> struct neon_reg<float> { using type = float32x4_t; };
template <> struct neon_reg<double> { using type = float64x2_t; };
template <> struct neon_reg<uint8_t> { using type = uint8x16_t; };
template <> struct neon_reg<int8_t> { using type = int8x16_t; };
template <> struct neon_reg<uint16_t> { using type = uint16x8_t; };
template <> struct neon_reg<int16_t> { using type = int16x8_t; };
template <> struct neon_reg<uint32_t> { using type = uint32x4_t; };
template <> struct neon_reg<int32_t> { using type = int32x4_t; };
template <> struct neon_reg<uint64_t> { using type = uint64x2_t; };
template <> struct neon_reg<int64_t> { using type = int64x2_t; };

template <class T, int K>
struct reg {
  static_assert(K == 1, "NEON registers hold one block");
  using type = typename neon_reg<T>::type;
};

namespace neon {

// Any register seen as bytes, and back.
inline uint8x16_t to_bytes(uint8x16_t x) { return x; }
inline uint8x16_t to_bytes(int8x16_t x) { return vreinterpretq_u8_s8(x); }
inline uint8x16_t to_bytes(uint16x8_t x) { return vreinterpretq_u8_u16(x); }
inline uint8x16_t to_bytes(int16x8_t x) { return vreinterpretq_u8_s16(x); }
inline uint8x16_t to_bytes(uint32x4_t x) { return vreinterpretq_u8_u32(x); }
inline uint8x16_t to_bytes(int32x4_t x) { return vreinterpretq_u8_s32(x); }
inline uint8x16_t to_bytes(uint64x2_t x) { return vreinterpretq_u8_u64(x); }
inline uint8x16_t to_bytes(int64x2_t x) { return vreinterpretq_u8_s64(x); }
inline uint8x16_t to_bytes(float32x4_t x) { return vreinterpretq_u8_f32(x); }
inline uint8x16_t to_bytes(float64x2_t x) { return vreinterpretq_u8_f64(x); }

inline void from_bytes(uint8x16_t& d, uint8x16_t x) { d = x; }
inline void from_bytes(int8x16_t& d, uint8x16_t x) { d = vreinterpretq_s8_u8(x); }
inline void from_bytes(uint16x8_t& d, uint8x16_t x) { d = vreinterpretq_u16_u8(x); }
inline void from_bytes(int16x8_t& d, uint8x16_t x) { d = vreinterpretq_s16_u8(x); }
inline void from_bytes(uint32x4_t& d, uint8x16_t x) { d = vreinterpretq_u32_u8(x); }
inline void from_bytes(int32x4_t& d, uint8x16_t x) { d = vreinterpretq_s32_u8(x); }
inline void from_bytes(uint64x2_t& d, uint8x16_t x) { d = vreinterpretq_u64_u8(x); }
inline void from_bytes(int64x2_t& d, uint8x16_t x) { d = vreinterpretq_s64_u8(x); }
inline void from_bytes(float32x4_t& d, uint8x16_t x) { d = vreinterpretq_f32_u8(x); }
inline void from_bytes(float64x2_t& d, uint8x16_t x) { d = vreinterpretq_f64_u8(x); }

// The bits of v as bytes, and a vector of T made of bytes.
template <class T, int K>
inline uint8x16_t bytes(const vec<T, K>& v) { return to_bytes(v.raw); }
template <class T, int K>
inline vec<T, K> of_bytes(uint8x16_t x) {
  vec<T, K> r;
  from_bytes(r.raw, x);
  return r;
}

}  // namespace neon

// ---- load_repeated_block
template <class V>
inline V load_repeated_block(const void* p) {
  return tile<V>(p, 16);
}

// ---- load_lo
// One 8-byte load into a register: assembling it in memory would stall on store
// forwarding.
template <class V>
inline V load_lo(const typename V::lane* p) {
  const uint8x16_t x = vcombine_u8(vld1_u8(reinterpret_cast<const uint8_t*>(p)), vdup_n_u8(0));
  V v;
  memcpy(&v.raw, &x, sizeof x);
  return v;
}

// ---- store_lo
template <class T, int K>
inline void store_lo(T* p, const vec<T, K>& v) {
  uint8x16_t x;
  memcpy(&x, &v.raw, sizeof x);
  vst1_u8(reinterpret_cast<uint8_t*>(p), vget_low_u8(x));
}

// ---- store_stream
// A plain store (st1).
template <class T, int K>
inline void store_stream(T* p, const vec<T, K>& v) {
  store(p, v);
}

// ---- stream_fence
inline void stream_fence() {}

// ---- prefetch_stream, prefetch_stream_l2
inline void prefetch_stream(const void* p) { __builtin_prefetch(p, 0, 0); }
inline void prefetch_stream_l2(const void* p) { __asm__ volatile("prfm pldl2strm, [%0]" : : "r"(p)); }

}  // namespace zivks::simd
