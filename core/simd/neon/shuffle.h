// NEON backend: moving lanes and bytes, and the structured loads and stores.
#pragma once

#include "core/simd/neon/base.h"

namespace zivks::simd {


// ---- reverse
template <class T, int K>
inline vec<T, K> reverse(const vec<T, K>& a) {
  uint8x16_t b = neon::to_bytes(a.raw);
  if constexpr (sizeof(T) == 1) b = vrev64q_u8(b);
  else if constexpr (sizeof(T) == 2) b = vreinterpretq_u8_u16(vrev64q_u16(vreinterpretq_u16_u8(b)));
  else if constexpr (sizeof(T) == 4) b = vreinterpretq_u8_u32(vrev64q_u32(vreinterpretq_u32_u8(b)));
  vec<T, K> r;
  neon::from_bytes(r.raw, vextq_u8(b, b, 8));
  return r;
}

// ---- swap_bytes
template <class T, int K>
inline vec<T, K> swap_bytes(const vec<T, K>& a) {
  uint8x16_t b = neon::to_bytes(a.raw);
  if constexpr (sizeof(T) == 2) b = vrev16q_u8(b);
  else if constexpr (sizeof(T) == 4) b = vrev32q_u8(b);
  else if constexpr (sizeof(T) == 8) b = vrev64q_u8(b);
  vec<T, K> r;
  neon::from_bytes(r.raw, b);
  return r;
}

// ---- table_bytes
inline vec<uint8_t, 1> table_bytes(const vec<uint8_t, 1>& a, const vec<uint8_t, 1>& idx) {
  return {vqtbl1q_u8(a.raw, idx.raw)};
}

// ---- store_blocks12
inline void store_blocks12(uint8_t* p, const vec<uint8_t, 1>& v) {
  vst1_u8(p, vget_low_u8(v.raw));
  vst1q_lane_u32(reinterpret_cast<uint32_t*>(p + 8), vreinterpretq_u32_u8(v.raw), 2);
}

// ---- ext_bytes
template <int n>
inline vec<uint8_t, 1> ext_bytes(const vec<uint8_t, 1>& a, const vec<uint8_t, 1>& b) {
  return {vextq_u8(a.raw, b.raw, n)};
}

namespace neon {
inline int16x8x2_t ld2(const int16_t* p) { return vld2q_s16(p); }
inline uint16x8x2_t ld2(const uint16_t* p) { return vld2q_u16(p); }
inline uint32x4x2_t ld2(const uint32_t* p) { return vld2q_u32(p); }
inline uint64x2x2_t ld2(const uint64_t* p) { return vld2q_u64(p); }
inline float32x4x2_t ld2(const float* p) { return vld2q_f32(p); }
inline float64x2x2_t ld2(const double* p) { return vld2q_f64(p); }
inline void st2(int16_t* p, int16x8_t a, int16x8_t b) { vst2q_s16(p, int16x8x2_t{{a, b}}); }
inline void st2(uint16_t* p, uint16x8_t a, uint16x8_t b) { vst2q_u16(p, uint16x8x2_t{{a, b}}); }
inline void st2(uint32_t* p, uint32x4_t a, uint32x4_t b) { vst2q_u32(p, uint32x4x2_t{{a, b}}); }
inline void st2(uint64_t* p, uint64x2_t a, uint64x2_t b) { vst2q_u64(p, uint64x2x2_t{{a, b}}); }
inline void st2(float* p, float32x4_t a, float32x4_t b) { vst2q_f32(p, float32x4x2_t{{a, b}}); }
inline void st2(double* p, float64x2_t a, float64x2_t b) { vst2q_f64(p, float64x2x2_t{{a, b}}); }
}  // namespace neon

// ---- load_planes2
template <class V>
inline void load_planes2(const typename V::lane* p, V& a, V& b) {
  const auto x = neon::ld2(p);
  a.raw = x.val[0], b.raw = x.val[1];
}

// ---- store_planes2
template <class T, int K>
inline void store_planes2(T* p, const vec<T, K>& a, const vec<T, K>& b) {
  neon::st2(p, a.raw, b.raw);
}

namespace neon {

// tbl indices over 48 bytes: output byte g takes byte g + 2, g or g - 2 as g is the
// first, the middle or the third byte of its triple.
struct outer_swap_index {
  uint8_t idx[3][16];
  constexpr outer_swap_index() : idx{} {
    for (int g = 0; g < 48; ++g) idx[g / 16][g % 16] = static_cast<uint8_t>(g + 2 - 2 * (g % 3));
  }
};
inline constexpr outer_swap_index kOuterSwap{};

}  // namespace neon

// ---- exchange_outer_bytes3
// Three tbl lookups in the 48 bytes.
template <int K>
inline void exchange_outer_bytes3(vec<uint8_t, K>& a, vec<uint8_t, K>& b, vec<uint8_t, K>& c) {
  const uint8x16x3_t t{{a.raw, b.raw, c.raw}};
  a.raw = vqtbl3q_u8(t, vld1q_u8(neon::kOuterSwap.idx[0]));
  b.raw = vqtbl3q_u8(t, vld1q_u8(neon::kOuterSwap.idx[1]));
  c.raw = vqtbl3q_u8(t, vld1q_u8(neon::kOuterSwap.idx[2]));
}

}  // namespace zivks::simd
