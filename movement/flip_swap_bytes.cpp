// Flip reverses the order of the elements of a vector; SwapBytes reverses the order of
// the bytes inside each element. Elements are raw bits throughout.
#include "core/frame.h"

namespace {

using namespace zivks;

// The lane a flip moves: the element's bits, or for 64fc the whole 16-byte record.
template <class E> struct flip_lane { using type = E; };
template <> struct flip_lane<float> { using type = uint32_t; };
template <> struct flip_lane<double> { using type = uint64_t; };
template <> struct flip_lane<ZIVK32fc> { using type = uint64_t; };
template <class E> using flip_lane_t = typename flip_lane<E>::type;

// Lanes that a vector reverses: up to 8 bytes, and a 16-byte record where registers hold
// several blocks (within one block it stays as it is).
template <class T> constexpr bool kVectorLane = sizeof(T) <= 8 || simd::kWide > 1;

// dst[len - 1 - i] = src[i]. The leading len mod L elements (L to a 128-bit vector) go
// one by one to the end of dst; the rest in vectors reversed in a register and stored
// at a falling address. A reversal cannot depend on how vectors are grouped, so wide
// registers take several at once.
template <class E>
ZIVKStatus flip(const E* src, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  using T = flip_lane_t<E>;
  const T* s = reinterpret_cast<const T*>(src);
  T* d = reinterpret_cast<T*>(dst);
  const int64_t n = len;
  int64_t i = 0;
  if constexpr (kVectorLane<T>) {
    for (const int64_t lead = n % kVectorElems<T>; i < lead; ++i) memcpy(d + n - 1 - i, s + i, sizeof(T));
    auto run = [&](auto w) {
      using V = simd::vec<T, decltype(w)::value>;
      for (; i + V::kLanes <= n; i += V::kLanes)
        simd::store(d + n - i - V::kLanes, simd::reverse(simd::load<V>(s + i)));
    };
    if constexpr (simd::kWide > 1) run(simd::width<simd::kWide>{});
    if constexpr (sizeof(T) <= 8) run(simd::width<1>{});
  }
  for (; i < n; ++i) memcpy(d + n - 1 - i, s + i, sizeof(T));  // 64fc: one record at a time
  return ZIVK_STS_NO_ERR;
}

template <class T>
inline void exchange(T* a, T* b) {
  T t;
  memcpy(&t, a, sizeof t);
  memcpy(a, b, sizeof t);
  memcpy(b, &t, sizeof t);
}

// Reverses the array in place at every length: vectors exchanged from the two ends,
// then single elements until the middle is reached.
template <class E>
ZIVKStatus flip_in_place(E* srcDst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, srcDst)) return st;
  using T = flip_lane_t<E>;
  T* a = reinterpret_cast<T*>(srcDst);
  int64_t i = 0, j = len;  // [i, j) is still to be reversed
  if constexpr (kVectorLane<T>) {
    auto run = [&](auto w) {
      using V = simd::vec<T, decltype(w)::value>;
      for (; j - i >= 2 * V::kLanes; i += V::kLanes, j -= V::kLanes) {
        const V lo = simd::load<V>(a + i), hi = simd::load<V>(a + j - V::kLanes);
        simd::store(a + i, simd::reverse(hi));
        simd::store(a + j - V::kLanes, simd::reverse(lo));
      }
    };
    if constexpr (simd::kWide > 1) run(simd::width<simd::kWide>{});
    if constexpr (sizeof(T) <= 8) run(simd::width<1>{});
  }
  for (; j - i >= 2; ++i, --j) exchange(a + i, a + j - 1);
  return ZIVK_STS_NO_ERR;
}

// A 64-bit block of elements of T in reverse order.
template <class T>
inline uint64_t reverse_block64(uint64_t x) {
  if constexpr (sizeof(T) == 1) return __builtin_bswap64(x);
  x = (x >> 32) | (x << 32);
  return ((x >> 16) & 0x0000FFFF0000FFFFull) | ((x & 0x0000FFFF0000FFFFull) << 16);
}

// The in-place flips of 8u and 16u run these exact steps on blocks of W elements (64
// bits), with h = len / 2 and r = len mod W. Below W elements: exchange i with
// len - 1 - i for i < h. Otherwise exchange i with len - 1 - i for i < r; then, unless
// r >= h, (h - 1 - r) / W + 1 rounds, p rising from r by W: read the blocks at p and at
// q = len - W - p, reverse both, write the one from p at q and then the one from q at
// p. This reverses the array except where len mod 2W lies from W + 1 to 2W - 2: there
// the last round reaches back into elements an earlier step has placed, and what it
// leaves stands.
template <class T>
ZIVKStatus flip_narrow_in_place(T* a, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, a)) return st;
  constexpr int64_t W = 8 / sizeof(T);
  const int64_t n = len, h = n / 2;
  if (n < W) {
    for (int64_t i = 0; i < h; ++i) exchange(a + i, a + n - 1 - i);
    return ZIVK_STS_NO_ERR;
  }
  const int64_t r = n % W;
  for (int64_t i = 0; i < r; ++i) exchange(a + i, a + n - 1 - i);
  if (r >= h) return ZIVK_STS_NO_ERR;
  int64_t rounds = (h - 1 - r) / W + 1, p = r;
  // Consecutive rounds whose blocks are all disjoint (2 (p + G W) <= len) see none of
  // one another's writes: G of them are one exchange of G W elements from each end,
  // reversed in a register.
  auto run = [&](auto w) {
    using V = simd::vec<T, decltype(w)::value>;
    constexpr int64_t G = V::kLanes / W;
    for (; rounds >= G && 2 * (p + V::kLanes) <= n; rounds -= G, p += V::kLanes) {
      T* lo = a + p;
      T* hi = a + n - p - V::kLanes;
      const V x = simd::load<V>(lo), y = simd::load<V>(hi);
      simd::store(hi, simd::reverse(x));
      simd::store(lo, simd::reverse(y));
    }
  };
  if constexpr (simd::kWide > 1) run(simd::width<simd::kWide>{});
  run(simd::width<1>{});
  for (; rounds > 0; --rounds, p += W) {
    const int64_t q = n - W - p;
    uint64_t x, y;
    memcpy(&x, a + p, 8);
    memcpy(&y, a + q, 8);
    x = reverse_block64<T>(x);
    y = reverse_block64<T>(y);
    memcpy(a + q, &x, 8);
    memcpy(a + p, &y, 8);  // last: it wins where the two blocks overlap
  }
  return ZIVK_STS_NO_ERR;
}

template <class T>
inline T swap_scalar(T x) {
  if constexpr (sizeof(T) == 2) return __builtin_bswap16(x);
  else if constexpr (sizeof(T) == 4) return __builtin_bswap32(x);
  else return __builtin_bswap64(x);
}

// Each element's bytes reversed, one 128-bit vector a block.
template <class T>
ZIVKStatus swap_bytes(const T* src, T* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  for_blocks<kVectorElems<T>>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<T, decltype(w)::value>;
        simd::store(dst + i, simd::swap_bytes(simd::load<V>(src + i)));
      },
      [&](int64_t i) { dst[i] = swap_scalar(src[i]); });
  return ZIVK_STS_NO_ERR;
}

// Packed three-byte samples: the first and the third byte of every sample exchanged,
// the middle one kept. Blocks of 16 samples (48 bytes, three vectors) are split into
// three byte planes and joined again with the outer planes exchanged; the rest goes one
// sample at a time. Samples are independent, so wide registers take several blocks.
ZIVKStatus swap_bytes24(const uint8_t* src, uint8_t* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  for_blocks<16>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<uint8_t, decltype(w)::value>;
        const uint8_t* s = src + 3 * i;
        V a = simd::load<V>(s), b = simd::load<V>(s + 16 * V::kBlocks),
          c = simd::load<V>(s + 32 * V::kBlocks);
        simd::exchange_outer_bytes3(a, b, c);
        uint8_t* d = dst + 3 * i;
        simd::store(d, a);
        simd::store(d + 16 * V::kBlocks, b);
        simd::store(d + 32 * V::kBlocks, c);
      },
      [&](int64_t i) {
        const uint8_t lo = src[3 * i], mid = src[3 * i + 1], hi = src[3 * i + 2];
        dst[3 * i] = hi;
        dst[3 * i + 1] = mid;
        dst[3 * i + 2] = lo;
      });
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: Flip and its in-place form, which reverses in place (8u and 16u by the
// narrow block steps), the element type.
#define ZIVKS_FLIP(name, name_in_place, in_place_fn, type)                     \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, type* dst, int32_t len) {      \
    return flip(src, dst, len);                                                \
  }                                                                            \
  ZIVKS_EXPORT ZIVKStatus name_in_place(type* srcDst, int32_t len) {           \
    return in_place_fn(srcDst, len);                                           \
  }

ZIVKS_FLIP(ZIVKS_Flip_8u, ZIVKS_Flip_8u_I, flip_narrow_in_place, uint8_t)
ZIVKS_FLIP(ZIVKS_Flip_16u, ZIVKS_Flip_16u_I, flip_narrow_in_place, uint16_t)
ZIVKS_FLIP(ZIVKS_Flip_32f, ZIVKS_Flip_32f_I, flip_in_place, float)
ZIVKS_FLIP(ZIVKS_Flip_64f, ZIVKS_Flip_64f_I, flip_in_place, double)
ZIVKS_FLIP(ZIVKS_Flip_32fc, ZIVKS_Flip_32fc_I, flip_in_place, ZIVK32fc)
ZIVKS_FLIP(ZIVKS_Flip_64fc, ZIVKS_Flip_64fc_I, flip_in_place, ZIVK64fc)

// Each row: SwapBytes and its in-place form, which calls the twin, the element type.
#define ZIVKS_SWAP_BYTES(name, name_in_place, type)                       \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, type* dst, int32_t len) { \
    return swap_bytes(src, dst, len);                                     \
  }                                                                       \
  ZIVKS_IN_PLACE_OF_ONE(name_in_place, name, type)

ZIVKS_SWAP_BYTES(ZIVKS_SwapBytes_16u, ZIVKS_SwapBytes_16u_I, uint16_t)
ZIVKS_SWAP_BYTES(ZIVKS_SwapBytes_32u, ZIVKS_SwapBytes_32u_I, uint32_t)
ZIVKS_SWAP_BYTES(ZIVKS_SwapBytes_64u, ZIVKS_SwapBytes_64u_I, uint64_t)

ZIVKS_EXPORT ZIVKStatus ZIVKS_SwapBytes_24u(const uint8_t* src, uint8_t* dst, int32_t len) {
  return swap_bytes24(src, dst, len);
}
ZIVKS_IN_PLACE_OF_ONE(ZIVKS_SwapBytes_24u_I, ZIVKS_SwapBytes_24u, uint8_t)
