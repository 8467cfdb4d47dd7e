// Copy, Move, Set and Zero: elements are raw bits, one 128-bit store per block of
// 16 bytes, no alignment peeling. Members of the same width differ only in their
// prefetch distances and in how Set and Zero finish the remainder.
#include "core/frame.h"

namespace {

using namespace zivks;

template <class E>
constexpr int kBlock = 16 / sizeof(E);  // elements per 128-bit store

template <int K>
using bytes = simd::vec<uint8_t, K>;

// Read prefetch distances in bytes, tuned per member (0: none). The backward walk of
// Move prefetches from a climbing address that starts at src + move_back.
template <class E> struct prefetch { static constexpr int copy = 0, move_fwd = 0, move_back = 0; };
template <> struct prefetch<uint8_t> { static constexpr int copy = 512, move_fwd = 512, move_back = 528; };
template <> struct prefetch<int16_t> { static constexpr int copy = 1024, move_fwd = 1024, move_back = 0; };
template <> struct prefetch<ZIVK16sc> { static constexpr int copy = 2048, move_fwd = 2048, move_back = 2064; };
template <> struct prefetch<int64_t> { static constexpr int copy = 4096, move_fwd = 0, move_back = 0; };
template <> struct prefetch<ZIVK32sc> { static constexpr int copy = 4096, move_fwd = 0, move_back = 0; };

template <class E> constexpr bool kComplex = parts<E>::count == 2;

// Forward walk: blocks from the first element up, then the remainder by element.
template <class E, int Prefetch>
void forward(const E* src, E* dst, int32_t len) {
  const auto* s = reinterpret_cast<const uint8_t*>(src);
  auto* d = reinterpret_cast<uint8_t*>(dst);
  for_blocks<kBlock<E>>(
      len,
      [&](int64_t i, auto w) {
        const int64_t o = i * static_cast<int64_t>(sizeof(E));
        if constexpr (Prefetch != 0) simd::prefetch_stream(s + o + Prefetch);
        simd::store(d + o, simd::load<bytes<decltype(w)::value>>(s + o));
      },
      // memmove: a Move may overlap within one complex element.
      [&](int64_t i) { memmove(dst + i, src + i, sizeof(E)); });
}

template <class E>
ZIVKStatus copy(const E* src, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  forward<E, prefetch<E>::copy>(src, dst, len);
  return ZIVK_STS_NO_ERR;
}

// Overlap-safe for any overlap: forward when the source lies above the destination,
// otherwise backward, blocks from the top down and then the remainder, which now sits
// at the start, from its highest element to its lowest. Every block is loaded whole
// before it is stored, so the direction alone makes the move safe.
template <class E>
ZIVKStatus move(const E* src, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  if (reinterpret_cast<uintptr_t>(src) > reinterpret_cast<uintptr_t>(dst)) {
    forward<E, prefetch<E>::move_fwd>(src, dst, len);
    return ZIVK_STS_NO_ERR;
  }
  const auto* s = reinterpret_cast<const uint8_t*>(src);
  auto* d = reinterpret_cast<uint8_t*>(dst);
  const int64_t rem = len % kBlock<E>;
  const int64_t low = rem * static_cast<int64_t>(sizeof(E));
  int64_t o = static_cast<int64_t>(len) * static_cast<int64_t>(sizeof(E));
  const uint8_t* hint = s + prefetch<E>::move_back;
  auto step = [&](auto w) {
    constexpr int K = decltype(w)::value;
    o -= 16 * K;
    if constexpr (prefetch<E>::move_back != 0) {
      simd::prefetch_stream(hint);
      hint += 16 * K;
    }
    simd::store(d + o, simd::load<bytes<K>>(s + o));
  };
  if constexpr (simd::kWide > 1)
    while (o - low >= 16 * simd::kWide) step(simd::width<simd::kWide>{});
  while (o > low) step(simd::width<1>{});
  for (int64_t i = rem - 1; i >= 0; --i) memmove(dst + i, src + i, sizeof(E));
  return ZIVK_STS_NO_ERR;
}

// Zero fills of at least this many bytes bypass the caches, which they would only flush
// (streaming stores of zeros ran at about three times the speed of ordinary ones where
// measured; of other patterns they gained nothing, so Set does not use them).
constexpr int64_t kStreamBytes = int64_t{16} << 20;

// Clears d[0, size), the whole blocks of a very large Zero: ordinary stores at both
// ends, streaming stores of whole aligned registers between. The bytes written are
// those of the block loop.
inline void zero_streaming(uint8_t* d, int64_t size) {
  using V = bytes<simd::kWide>;
  constexpr int64_t kReg = sizeof(V);
  const V z = simd::zeros<V>();
  simd::store(d, z);
  uint8_t* p = d + (kReg - static_cast<int64_t>(reinterpret_cast<uintptr_t>(d) % kReg)) % kReg;
  for (; p + kReg <= d + size; p += kReg) simd::store_stream(p, z);
  simd::stream_fence();
  if (p < d + size) simd::store(d + size - kReg, z);
}

// val replicated across the vector; Set_8u leaves the remainder to memset, the others
// store it element by element.
template <class E>
ZIVKStatus set(E val, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, dst)) return st;
  auto* d = reinterpret_cast<uint8_t*>(dst);
  const auto v1 = simd::repeat<bytes<1>>(val);
  const auto vw = simd::repeat<bytes<simd::kWide>>(val);
  const int64_t n = for_whole_blocks<kBlock<E>>(len, [&](int64_t i, auto w) {
    const int64_t o = i * static_cast<int64_t>(sizeof(E));
    if constexpr (decltype(w)::value == 1) simd::store(d + o, v1);
    else simd::store(d + o, vw);
  });
  if constexpr (std::is_same_v<E, uint8_t>) {
    if (n < len) memset(dst + n, val, static_cast<size_t>(len - n));
  } else {
    for (int64_t i = n; i < len; ++i) dst[i] = val;
  }
  return ZIVK_STS_NO_ERR;
}

// Zero vectors; the real types clear the remainder with memset, the complex ones store
// zero elements one by one (64sc and 64fc, a vector wide, have no remainder).
template <class E>
ZIVKStatus zero(E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, dst)) return st;
  auto* d = reinterpret_cast<uint8_t*>(dst);
  int64_t n = block_end<kBlock<E>>(len);
  if (static_cast<int64_t>(len) * static_cast<int64_t>(sizeof(E)) >= kStreamBytes) {
    zero_streaming(d, n * static_cast<int64_t>(sizeof(E)));
  } else {
    n = for_whole_blocks<kBlock<E>>(len, [&](int64_t i, auto w) {
      simd::store(d + i * static_cast<int64_t>(sizeof(E)), simd::zeros<bytes<decltype(w)::value>>());
    });
  }
  if (n < len) {
    if constexpr (kComplex<E>) {
      for (int64_t i = n; i < len; ++i) dst[i] = E{};
    } else {
      memset(dst + n, 0, static_cast<size_t>(len - n) * sizeof(E));
    }
  }
  return ZIVK_STS_NO_ERR;
}

}  // namespace

#define ZIVKS_MOVEMENT(code, type)                                                                  \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_Copy_##code(const type* src, type* dst, int32_t len) {              \
    return copy(src, dst, len);                                                                     \
  }                                                                                                 \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_Move_##code(const type* src, type* dst, int32_t len) {              \
    return move(src, dst, len);                                                                     \
  }                                                                                                 \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_Set_##code(type val, type* dst, int32_t len) {                      \
    return set(val, dst, len);                                                                      \
  }                                                                                                 \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_Zero_##code(type* dst, int32_t len) { return zero(dst, len); }

ZIVKS_MOVEMENT(8u, uint8_t)
ZIVKS_MOVEMENT(16s, int16_t)
ZIVKS_MOVEMENT(32s, int32_t)
ZIVKS_MOVEMENT(32f, float)
ZIVKS_MOVEMENT(64s, int64_t)
ZIVKS_MOVEMENT(64f, double)
ZIVKS_MOVEMENT(16sc, ZIVK16sc)
ZIVKS_MOVEMENT(32sc, ZIVK32sc)
ZIVKS_MOVEMENT(32fc, ZIVK32fc)
ZIVKS_MOVEMENT(64sc, ZIVK64sc)
ZIVKS_MOVEMENT(64fc, ZIVK64fc)
