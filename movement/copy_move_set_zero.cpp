// Copy, Move, Set and Zero: elements are raw bits, one 128-bit store per block of
// 16 bytes, no alignment peeling. Members of the same width differ only in their
// read-ahead distances and in how Set and Zero finish the remainder.
#include "core/frame.h"
#include "core/operands.h"

namespace {

using namespace zivks;

template <int K>
using bytes = simd::vec<uint8_t, K>;

// Read hints in bytes ahead, tuned per member (0: none). The backward walk of Move hints
// at a climbing address that starts move_backward bytes past src.
struct ReadAhead {
  int copy, move_forward, move_backward;
};
template <class E> constexpr ReadAhead kReadAheadBytes{0, 0, 0};
template <> constexpr ReadAhead kReadAheadBytes<uint8_t>{512, 512, 528};
template <> constexpr ReadAhead kReadAheadBytes<int16_t>{1024, 1024, 0};
template <> constexpr ReadAhead kReadAheadBytes<ZIVK16sc>{2048, 2048, 2064};
template <> constexpr ReadAhead kReadAheadBytes<int64_t>{4096, 0, 0};
template <> constexpr ReadAhead kReadAheadBytes<ZIVK32sc>{4096, 0, 0};

template <class E> constexpr bool kComplex = parts<E>::count == 2;

// Forward walk: blocks from the first element up, then the remainder by element.
template <class E, int kAheadBytes>
void forward(const E* src, E* dst, int32_t len) {
  const auto* s = reinterpret_cast<const uint8_t*>(src);
  auto* d = reinterpret_cast<uint8_t*>(dst);
  for_blocks<kVectorElems<E>>(
      len,
      [&](int64_t i, auto w) {
        const int64_t o = i * static_cast<int64_t>(sizeof(E));
        if constexpr (kAheadBytes != 0) hint_read(s + o, kAheadBytes);
        simd::store(d + o, simd::load<bytes<decltype(w)::value>>(s + o));
      },
      // memmove: a Move may overlap within one complex element.
      [&](int64_t i) { memmove(dst + i, src + i, sizeof(E)); });
}

template <class E>
ZIVKStatus copy(const E* src, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  forward<E, kReadAheadBytes<E>.copy>(src, dst, len);
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
    forward<E, kReadAheadBytes<E>.move_forward>(src, dst, len);
    return ZIVK_STS_NO_ERR;
  }
  const auto* s = reinterpret_cast<const uint8_t*>(src);
  auto* d = reinterpret_cast<uint8_t*>(dst);
  const int64_t rem = len % kVectorElems<E>;
  const int64_t low = rem * static_cast<int64_t>(sizeof(E));
  int64_t o = static_cast<int64_t>(len) * static_cast<int64_t>(sizeof(E));
  constexpr int kBackBytes = kReadAheadBytes<E>.move_backward;
  int64_t climbed = 0;
  auto step = [&](auto w) {
    constexpr int K = decltype(w)::value;
    o -= 16 * K;
    if constexpr (kBackBytes != 0) {
      hint_read(s + climbed, kBackBytes);
      climbed += 16 * K;
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
constexpr int64_t kStreamFromBytes = int64_t{16} << 20;

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
  const broadcast<uint8_t> vals(val);
  const int64_t n = for_whole_blocks<kVectorElems<E>>(len, [&](int64_t i, auto w) {
    simd::store(d + i * static_cast<int64_t>(sizeof(E)), vals.template get<decltype(w)::value>());
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
  int64_t n = block_end<kVectorElems<E>>(len);
  if (static_cast<int64_t>(len) * static_cast<int64_t>(sizeof(E)) >= kStreamFromBytes) {
    zero_streaming(d, n * static_cast<int64_t>(sizeof(E)));
  } else {
    n = for_whole_blocks<kVectorElems<E>>(len, [&](int64_t i, auto w) {
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

// Each row: Copy, Move, Set and Zero of one element type.
#define ZIVKS_MOVEMENT(copy_name, move_name, set_name, zero_name, type)                      \
  ZIVKS_EXPORT ZIVKStatus copy_name(const type* src, type* dst, int32_t len) {               \
    return copy(src, dst, len);                                                              \
  }                                                                                          \
  ZIVKS_EXPORT ZIVKStatus move_name(const type* src, type* dst, int32_t len) {               \
    return move(src, dst, len);                                                              \
  }                                                                                          \
  ZIVKS_EXPORT ZIVKStatus set_name(type val, type* dst, int32_t len) {                        \
    return set(val, dst, len);                                                               \
  }                                                                                          \
  ZIVKS_EXPORT ZIVKStatus zero_name(type* dst, int32_t len) { return zero(dst, len); }

ZIVKS_MOVEMENT(ZIVKS_Copy_8u, ZIVKS_Move_8u, ZIVKS_Set_8u, ZIVKS_Zero_8u, uint8_t)
ZIVKS_MOVEMENT(ZIVKS_Copy_16s, ZIVKS_Move_16s, ZIVKS_Set_16s, ZIVKS_Zero_16s, int16_t)
ZIVKS_MOVEMENT(ZIVKS_Copy_32s, ZIVKS_Move_32s, ZIVKS_Set_32s, ZIVKS_Zero_32s, int32_t)
ZIVKS_MOVEMENT(ZIVKS_Copy_32f, ZIVKS_Move_32f, ZIVKS_Set_32f, ZIVKS_Zero_32f, float)
ZIVKS_MOVEMENT(ZIVKS_Copy_64s, ZIVKS_Move_64s, ZIVKS_Set_64s, ZIVKS_Zero_64s, int64_t)
ZIVKS_MOVEMENT(ZIVKS_Copy_64f, ZIVKS_Move_64f, ZIVKS_Set_64f, ZIVKS_Zero_64f, double)
ZIVKS_MOVEMENT(ZIVKS_Copy_16sc, ZIVKS_Move_16sc, ZIVKS_Set_16sc, ZIVKS_Zero_16sc, ZIVK16sc)
ZIVKS_MOVEMENT(ZIVKS_Copy_32sc, ZIVKS_Move_32sc, ZIVKS_Set_32sc, ZIVKS_Zero_32sc, ZIVK32sc)
ZIVKS_MOVEMENT(ZIVKS_Copy_32fc, ZIVKS_Move_32fc, ZIVKS_Set_32fc, ZIVKS_Zero_32fc, ZIVK32fc)
ZIVKS_MOVEMENT(ZIVKS_Copy_64sc, ZIVKS_Move_64sc, ZIVKS_Set_64sc, ZIVKS_Zero_64sc, ZIVK64sc)
ZIVKS_MOVEMENT(ZIVKS_Copy_64fc, ZIVKS_Move_64fc, ZIVKS_Set_64fc, ZIVKS_Zero_64fc, ZIVK64fc)
