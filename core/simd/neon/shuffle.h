// NEON backend: moving lanes and bytes, and the structured loads and stores.
#pragma once

namespace zivks::simd {

namespace neon {

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

}  // namespace neon

// The lanes in reverse order (rev64 then ext #8).
template <class T, int K>
inline vec<T, K> reverse(const vec<T, K>& a) {
  uint8x16_t b = neon::to_bytes(a.r);
  if constexpr (sizeof(T) == 1) b = vrev64q_u8(b);
  else if constexpr (sizeof(T) == 2) b = vreinterpretq_u8_u16(vrev64q_u16(vreinterpretq_u16_u8(b)));
  else if constexpr (sizeof(T) == 4) b = vreinterpretq_u8_u32(vrev64q_u32(vreinterpretq_u32_u8(b)));
  vec<T, K> r;
  neon::from_bytes(r.r, vextq_u8(b, b, 8));
  return r;
}

// The bytes of every lane in reverse order (rev16 / rev32 / rev64).
template <class T, int K>
inline vec<T, K> swap_bytes(const vec<T, K>& a) {
  uint8x16_t b = neon::to_bytes(a.r);
  if constexpr (sizeof(T) == 2) b = vrev16q_u8(b);
  else if constexpr (sizeof(T) == 4) b = vrev32q_u8(b);
  else if constexpr (sizeof(T) == 8) b = vrev64q_u8(b);
  vec<T, K> r;
  neon::from_bytes(r.r, b);
  return r;
}

// Two vectors of pairs split into the first and the second member of each pair (ld2).
template <class V>
inline void load_planes2(const typename V::lane* p, V& a, V& b) {
  using T = typename V::lane;
  if constexpr (std::is_same_v<T, int16_t>) {
    const int16x8x2_t x = vld2q_s16(p);
    a.r = x.val[0], b.r = x.val[1];
  } else if constexpr (std::is_same_v<T, uint16_t>) {
    const uint16x8x2_t x = vld2q_u16(p);
    a.r = x.val[0], b.r = x.val[1];
  } else if constexpr (std::is_same_v<T, float>) {
    const float32x4x2_t x = vld2q_f32(p);
    a.r = x.val[0], b.r = x.val[1];
  } else if constexpr (std::is_same_v<T, double>) {
    const float64x2x2_t x = vld2q_f64(p);
    a.r = x.val[0], b.r = x.val[1];
  } else {
    static_assert(sizeof(T) == 0, "no ld2 for this lane type");
  }
}

// Two planes joined into pairs, stored as two vectors (st2).
template <class T, int K>
inline void store_planes2(T* p, const vec<T, K>& a, const vec<T, K>& b) {
  if constexpr (std::is_same_v<T, int16_t>) vst2q_s16(p, int16x8x2_t{{a.r, b.r}});
  else if constexpr (std::is_same_v<T, uint16_t>) vst2q_u16(p, uint16x8x2_t{{a.r, b.r}});
  else if constexpr (std::is_same_v<T, float>) vst2q_f32(p, float32x4x2_t{{a.r, b.r}});
  else if constexpr (std::is_same_v<T, double>) vst2q_f64(p, float64x2x2_t{{a.r, b.r}});
  else static_assert(sizeof(T) == 0, "no st2 for this lane type");
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

// Three vectors holding byte triples (48 bytes a block) with the first and the third
// byte of every triple exchanged: ld3, the outer planes exchanged, st3 (here three tbl
// lookups in the 48 bytes).
template <int K>
inline void exchange_outer_bytes3(vec<uint8_t, K>& a, vec<uint8_t, K>& b, vec<uint8_t, K>& c) {
  const uint8x16x3_t t{{a.r, b.r, c.r}};
  a.r = vqtbl3q_u8(t, vld1q_u8(neon::kOuterSwap.idx[0]));
  b.r = vqtbl3q_u8(t, vld1q_u8(neon::kOuterSwap.idx[1]));
  c.r = vqtbl3q_u8(t, vld1q_u8(neon::kOuterSwap.idx[2]));
}

}  // namespace zivks::simd
