// MaxIndx, MinIndx, MinMaxIndx, MaxAbsIndx and MinAbsIndx: the extreme value of a
// vector and the position of its first occurrence.
//
// A block is two 128-bit vectors. The block pass reduces each block to its extreme by
// value only and keeps the first block that beats the running value strictly; a lane
// walk in that block (block 0 if none won) then finds the first lane equal to the
// value, testing all lanes but the last and taking the last without a test. The tail
// tests one element at a time, strictly. Ties thus go to the lowest index.
//
// With floats a block's extreme is NaN when the block holds one, and no NaN beats or
// equals anything: a NaN hides its whole block, a NaN in the tail only itself, and a
// NaN seed (src[0]) stays to the end, the lane walk finding no equal lane and so
// giving index B - 1. -0 and +0 are equal in every test.
//
// The plain forms seed the value with src[0]; the absolute forms, which work on
// saturated absolute values everywhere, seed it with 0 (maximum) or the largest value
// (minimum). The index starts at 0 in all.
#include "core/operands.h"
#include "statistics/extremes.h"

namespace {

using namespace zivks;
using namespace zivks::extremes;

// The searches a pass runs: one direction, or both (MinMaxIndx).
enum class Searches { kOne, kBoth };

// A read hint per block, this many bytes ahead (0: none).
template <class T, Searches searches>
constexpr int kReadAheadBytes = 0;
template <> constexpr int kReadAheadBytes<uint8_t, Searches::kBoth> = 512;
template <> constexpr int kReadAheadBytes<uint16_t, Searches::kBoth> = 1024;
template <> constexpr int kReadAheadBytes<uint32_t, Searches::kBoth> = 2048;

// The running result of one direction.
template <MaxMin d, class View, class T>
struct Search {
  static constexpr Fold kFold = extremes::kFold<d, View>;
  T best;
  int64_t at = 0;

  // The block's extreme: NaN if it holds one.
  static T block_value(const T* p) {
    return reduce<d>(pick<d>(View::block(simd::load<V<T>>(p)), View::block(simd::load<V<T>>(p + kLanes<T>))));
  }
  void block(const T* src, int64_t b) {
    const T m = block_value(src + b);
    if (beats<d>(m, best)) {
      best = m;
      at = b;
    }
  }
  // A chunk of blocks [b, e) without NaN, of which `folded` is the fold: its extreme
  // is exact but for the sign of a zero, so the value kept is that of the first block
  // that reaches it, as block by block.
  void chunk(const T* src, int64_t b, int64_t e, const V<T>& folded) {
    const T m = reduce<d>(folded);
    if (!beats<d>(m, best)) return;
    // The first block with a lane equal to m is the first whose extreme equals it.
    const int64_t v = first_equal<kFold>(src + b, (e - b) / kLanes<T>, m);
    at = b + v / 2 * kBlock<T>;
    best = block_value(src + at);
  }
  void lane_walk(const T* src) {
    int l = 0;
    while (l < kBlock<T> - 1 && !(View::scalar(src[at + l]) == best)) ++l;
    at += l;
  }
  void tail(const T* src, int64_t from, int32_t len) {
    for (int64_t i = from; i < len; ++i) {
      const T v = View::scalar(src[i]);
      if (beats<d>(v, best)) {
        best = v;
        at = i;
      }
    }
  }
};

// The block pass goes by chunks: the fold of a chunk (whose result cannot depend on
// the order) says whether any of its blocks beats the running value; only then are its
// blocks reduced one by one. A chunk with a NaN goes block by block throughout.
constexpr int64_t kChunkBytes = 1024;

template <class T, class... S>
void run(const T* src, int32_t len, S&... s) {
  constexpr Searches kSearches = sizeof...(S) == 2 ? Searches::kBoth : Searches::kOne;
  const int64_t n = block_end<kBlock<T>>(len);
  constexpr int64_t kChunk = kChunkBytes / sizeof(T);
  for (int64_t c = 0; c < n; c += kChunk) {
    const int64_t e = c + kChunk < n ? c + kChunk : n;
    if constexpr (kReadAheadBytes<T, kSearches> != 0)
      for (int64_t b = c; b < e; b += kBlock<T>) hint_read(src + b, kReadAheadBytes<T, kSearches>);
    bool nan = false;
    V<T> folded[sizeof...(S)];
    if constexpr (kSearches == Searches::kBoth) fold_min_max(src + c, (e - c) / kLanes<T>, folded[0], folded[1], nan);
    else folded[0] = fold<S::kFold...>(src + c, (e - c) / kLanes<T>, nan);
    if (nan) {
      for (int64_t b = c; b < e; b += kBlock<T>) (s.block(src, b), ...);
    } else {
      int k = 0;
      ((s.chunk(src, c, e, folded[k++])), ...);
    }
  }
  if (n > 0) (s.lane_walk(src), ...);
  (s.tail(src, n, len), ...);
}

template <MaxMin d, class T>
ZIVKStatus indx(const T* src, int32_t len, T* out, int32_t* out_indx) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, out, out_indx)) return st;
  Search<d, Plain, T> s{src[0]};
  run(src, len, s);
  *out = s.best;
  *out_indx = static_cast<int32_t>(s.at);
  return ZIVK_STS_NO_ERR;
}

template <MaxMin d, class T>
ZIVKStatus abs_indx(const T* src, int32_t len, T* out, int32_t* out_indx) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, out, out_indx)) return st;
  Search<d, Abs, T> s{d == MaxMin::kMax ? T(0) : std::numeric_limits<T>::max()};
  run(src, len, s);
  *out = s.best;
  *out_indx = static_cast<int32_t>(s.at);
  return ZIVK_STS_NO_ERR;
}

template <class T>
ZIVKStatus min_max_indx(const T* src, int32_t len, T* out_min, int32_t* min_indx, T* out_max,
                        int32_t* max_indx) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, out_min, min_indx, out_max, max_indx)) return st;
  Search<MaxMin::kMin, Plain, T> mn{src[0]};
  Search<MaxMin::kMax, Plain, T> mx{src[0]};
  run(src, len, mn, mx);
  *out_min = mn.best;
  *min_indx = static_cast<int32_t>(mn.at);
  *out_max = mx.best;
  *max_indx = static_cast<int32_t>(mx.at);
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the exported function, the body, the element type.
#define ZIVKS_INDX(name, fn, type)                                                     \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, int32_t len, type* p, int32_t* pIndx) { \
    return fn(src, len, p, pIndx);                                                     \
  }
#define ZIVKS_MINMAX_INDX(name, type)                                                               \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, int32_t len, type* pMin, int32_t* pMinIndx, type* pMax, \
                               int32_t* pMaxIndx) {                                                 \
    return min_max_indx(src, len, pMin, pMinIndx, pMax, pMaxIndx);                                 \
  }

ZIVKS_INDX(ZIVKS_MaxIndx_16s, indx<MaxMin::kMax>, int16_t)
ZIVKS_INDX(ZIVKS_MaxIndx_32s, indx<MaxMin::kMax>, int32_t)
ZIVKS_INDX(ZIVKS_MaxIndx_32f, indx<MaxMin::kMax>, float)
ZIVKS_INDX(ZIVKS_MaxIndx_64f, indx<MaxMin::kMax>, double)
ZIVKS_INDX(ZIVKS_MinIndx_16s, indx<MaxMin::kMin>, int16_t)
ZIVKS_INDX(ZIVKS_MinIndx_32s, indx<MaxMin::kMin>, int32_t)
ZIVKS_INDX(ZIVKS_MinIndx_32f, indx<MaxMin::kMin>, float)
ZIVKS_INDX(ZIVKS_MinIndx_64f, indx<MaxMin::kMin>, double)
ZIVKS_INDX(ZIVKS_MaxAbsIndx_16s, abs_indx<MaxMin::kMax>, int16_t)
ZIVKS_INDX(ZIVKS_MaxAbsIndx_32s, abs_indx<MaxMin::kMax>, int32_t)
ZIVKS_INDX(ZIVKS_MinAbsIndx_16s, abs_indx<MaxMin::kMin>, int16_t)
ZIVKS_INDX(ZIVKS_MinAbsIndx_32s, abs_indx<MaxMin::kMin>, int32_t)
ZIVKS_MINMAX_INDX(ZIVKS_MinMaxIndx_8u, uint8_t)
ZIVKS_MINMAX_INDX(ZIVKS_MinMaxIndx_16u, uint16_t)
ZIVKS_MINMAX_INDX(ZIVKS_MinMaxIndx_32u, uint32_t)
ZIVKS_MINMAX_INDX(ZIVKS_MinMaxIndx_16s, int16_t)
ZIVKS_MINMAX_INDX(ZIVKS_MinMaxIndx_32s, int32_t)
ZIVKS_MINMAX_INDX(ZIVKS_MinMaxIndx_32f, float)
ZIVKS_MINMAX_INDX(ZIVKS_MinMaxIndx_64f, double)
