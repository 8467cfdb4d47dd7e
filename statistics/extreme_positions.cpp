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
#include "statistics/extremes.h"

namespace {

using namespace zivks;
using namespace zivks::extremes;

template <class T>
constexpr int kBlock = 2 * kLanes<T>;

// A read prefetch per block, this many bytes ahead (0: none).
template <class T, bool kMinMax>
constexpr int kPrefetch = 0;
template <> constexpr int kPrefetch<uint8_t, true> = 512;
template <> constexpr int kPrefetch<uint16_t, true> = 1024;
template <> constexpr int kPrefetch<uint32_t, true> = 2048;

// The running result of one direction.
template <Dir d, class View, class T>
struct Search {
  static constexpr Dir kDir = d;
  static constexpr bool kAbs = std::is_same_v<View, Abs>;
  static constexpr auto kFold = d == Dir::kMax ? (kAbs ? Fold::kMaxAbs : Fold::kMax)
                                               : (kAbs ? Fold::kMinAbs : Fold::kMin);
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

template <bool kMinMax, class T, class... S>
void run(const T* src, int32_t len, S&... s) {
  const int64_t n = block_end<kBlock<T>>(len);
  constexpr int64_t kChunk = kChunkBytes / sizeof(T);
  for (int64_t c = 0; c < n; c += kChunk) {
    const int64_t e = c + kChunk < n ? c + kChunk : n;
    if constexpr (kPrefetch<T, kMinMax> != 0)
      for (int64_t b = c; b < e; b += kBlock<T>)
        simd::prefetch_stream(reinterpret_cast<const char*>(src + b) + kPrefetch<T, kMinMax>);
    bool nan = false;
    V<T> folded[sizeof...(S)];
    if constexpr (sizeof...(S) == 2) fold_min_max(src + c, (e - c) / kLanes<T>, folded[0], folded[1], nan);
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

template <Dir d, class T>
ZIVKStatus indx(const T* src, int32_t len, T* out, int32_t* out_indx) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, out, out_indx)) return st;
  Search<d, Plain, T> s{src[0]};
  run<false>(src, len, s);
  *out = s.best;
  *out_indx = static_cast<int32_t>(s.at);
  return ZIVK_STS_NO_ERR;
}

template <Dir d, class T>
ZIVKStatus abs_indx(const T* src, int32_t len, T* out, int32_t* out_indx) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, out, out_indx)) return st;
  Search<d, Abs, T> s{d == Dir::kMax ? T(0) : std::numeric_limits<T>::max()};
  run<false>(src, len, s);
  *out = s.best;
  *out_indx = static_cast<int32_t>(s.at);
  return ZIVK_STS_NO_ERR;
}

template <class T>
ZIVKStatus min_max_indx(const T* src, int32_t len, T* out_min, int32_t* min_indx, T* out_max,
                        int32_t* max_indx) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, out_min, min_indx, out_max, max_indx)) return st;
  Search<Dir::kMin, Plain, T> mn{src[0]};
  Search<Dir::kMax, Plain, T> mx{src[0]};
  run<true>(src, len, mn, mx);
  *out_min = mn.best;
  *min_indx = static_cast<int32_t>(mn.at);
  *out_max = mx.best;
  *max_indx = static_cast<int32_t>(mx.at);
  return ZIVK_STS_NO_ERR;
}

}  // namespace

#define ZIVKS_INDX(name, fn, code, type)                                                        \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_##name##_##code(const type* src, int32_t len, type* p,        \
                                                int32_t* pIndx) {                             \
    return fn(src, len, p, pIndx);                                                            \
  }
#define ZIVKS_MINMAX_INDX(code, type)                                                           \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_MinMaxIndx_##code(const type* src, int32_t len, type* pMin,     \
                                                  int32_t* pMinIndx, type* pMax,              \
                                                  int32_t* pMaxIndx) {                        \
    return min_max_indx(src, len, pMin, pMinIndx, pMax, pMaxIndx);                            \
  }

ZIVKS_INDX(MaxIndx, indx<Dir::kMax>, 16s, int16_t)
ZIVKS_INDX(MaxIndx, indx<Dir::kMax>, 32s, int32_t)
ZIVKS_INDX(MaxIndx, indx<Dir::kMax>, 32f, float)
ZIVKS_INDX(MaxIndx, indx<Dir::kMax>, 64f, double)
ZIVKS_INDX(MinIndx, indx<Dir::kMin>, 16s, int16_t)
ZIVKS_INDX(MinIndx, indx<Dir::kMin>, 32s, int32_t)
ZIVKS_INDX(MinIndx, indx<Dir::kMin>, 32f, float)
ZIVKS_INDX(MinIndx, indx<Dir::kMin>, 64f, double)
ZIVKS_INDX(MaxAbsIndx, abs_indx<Dir::kMax>, 16s, int16_t)
ZIVKS_INDX(MaxAbsIndx, abs_indx<Dir::kMax>, 32s, int32_t)
ZIVKS_INDX(MinAbsIndx, abs_indx<Dir::kMin>, 16s, int16_t)
ZIVKS_INDX(MinAbsIndx, abs_indx<Dir::kMin>, 32s, int32_t)
ZIVKS_MINMAX_INDX(8u, uint8_t)
ZIVKS_MINMAX_INDX(16u, uint16_t)
ZIVKS_MINMAX_INDX(32u, uint32_t)
ZIVKS_MINMAX_INDX(16s, int16_t)
ZIVKS_MINMAX_INDX(32s, int32_t)
ZIVKS_MINMAX_INDX(32f, float)
ZIVKS_MINMAX_INDX(64f, double)
