// Max, Min, MinMax, MaxAbs and MinAbs: the extreme value of a vector, without position.
//
// A block is two 128-bit vectors. The block pass folds every vector into one
// accumulator per result, accumulator first, and reduces across lanes once at the end;
// then the tail tests one element at a time, strictly, against the running value.
// Float blocks propagate NaN and order -0 below +0; the tail's ordered compares let no
// NaN in and none out, and leave the running zero when another zero comes. Where the
// block pass starts and with what it is seeded differs between members, and shows in
// the results:
//   Max, Min         src[0] in every lane; src[0] below one block
//   MinMax           the first block; src[0] below one block
//   MaxAbs           src[0] as it stands (integers), the smallest normal (floats);
//                    |src[0]| below one block
//   MaxAbs_32s       like the 16-bit one, but the block pass starts at element 8, so
//                    elements 1 to 7 are never read and src[0] keeps its sign
//   MinAbs           the type's largest finite value at every length
#include "statistics/extremes.h"

namespace {

using namespace zivks;
using namespace zivks::extremes;

// Folds the blocks from `from` to n into acc and reduces it across lanes.
template <MaxMin d, class View, class T>
T block_pass(const T* src, int64_t from, int64_t n, V<T> acc) {
  for (int64_t i = from; i < n; i += kBlock<T>) {
    acc = pick<d>(acc, View::block(simd::load<V<T>>(src + i)));
    acc = pick<d>(acc, View::block(simd::load<V<T>>(src + i + kLanes<T>)));
  }
  return reduce<d>(acc);
}

// The block pass's result when it cannot depend on the order: the fold over the
// blocks, unless a NaN came (whose payload depends on the order) or the extreme is a
// zero (whose sign the fold leaves open); then the ordered pass.
template <MaxMin d, class View, class T>
T block_extreme(const T* src, int64_t from, int64_t n, T seed) {
  if (from >= n) return seed;
  bool nan = false;
  const T m = reduce<d>(fold<kFold<d, View>>(src + from, (n - from) / kLanes<T>, nan));
  if (!nan && !(kFloat<T> && m == 0)) return beats<d>(seed, m) ? seed : m;
  return block_pass<d, View>(src, from, n, simd::splat<V<T>>(seed));
}

template <MaxMin d, class View, class T>
T tail(const T* src, int64_t from, int32_t len, T best) {
  for (int64_t i = from; i < len; ++i) {
    const T x = View::scalar(src[i]);
    if (beats<d>(x, best)) best = x;
  }
  return best;
}

// Max and Min.
template <MaxMin d, class T>
ZIVKStatus extreme(const T* src, int32_t len, T* out) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, out)) return st;
  const int64_t n = block_end<kBlock<T>>(len);
  T best = src[0];
  if (n > 0) best = block_extreme<d, Plain>(src, 0, n, src[0]);
  *out = tail<d, Plain>(src, n, len, best);
  return ZIVK_STS_NO_ERR;
}

template <class T>
ZIVKStatus min_max(const T* src, int32_t len, T* out_min, T* out_max) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, out_min, out_max)) return st;
  const int64_t n = block_end<kBlock<T>>(len);
  T mn = src[0], mx = src[0];
  bool slow = n > 0;
  if (n > 0) {
    bool nan = false;
    V<T> fmn, fmx;
    fold_min_max(src, n / kLanes<T>, fmn, fmx, nan);
    mn = reduce<MaxMin::kMin>(fmn);
    mx = reduce<MaxMin::kMax>(fmx);
    slow = nan || (kFloat<T> && (mn == 0 || mx == 0));
  }
  if (slow) {
    V<T> amn = simd::load<V<T>>(src), amx = amn;
    const V<T> second = simd::load<V<T>>(src + kLanes<T>);
    amn = pick<MaxMin::kMin>(amn, second);
    amx = pick<MaxMin::kMax>(amx, second);
    for (int64_t i = kBlock<T>; i < n; i += kBlock<T>) {
      const V<T> a = simd::load<V<T>>(src + i), b = simd::load<V<T>>(src + i + kLanes<T>);
      amn = pick<MaxMin::kMin>(pick<MaxMin::kMin>(amn, a), b);
      amx = pick<MaxMin::kMax>(pick<MaxMin::kMax>(amx, a), b);
    }
    mn = reduce<MaxMin::kMin>(amn);
    mx = reduce<MaxMin::kMax>(amx);
  }
  for (int64_t i = n; i < len; ++i) {
    if (src[i] < mn) mn = src[i];
    if (src[i] > mx) mx = src[i];
  }
  *out_min = mn;
  *out_max = mx;
  return ZIVK_STS_NO_ERR;
}

// The seed of MaxAbs's block pass.
template <class T>
T max_abs_seed(T first) {
  if constexpr (kFloat<T>) return std::numeric_limits<T>::min();  // smallest normal
  else return first;
}

template <class T>
ZIVKStatus max_abs(const T* src, int32_t len, T* out) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, out)) return st;
  const int64_t n = block_end<kBlock<T>>(len);
  T best;
  if (n > 0) {
    // The 32-bit integer member starts its blocks at element 8.
    const int64_t from = std::is_same_v<T, int32_t> ? 8 : 0;
    best = block_extreme<MaxMin::kMax, Abs>(src, from, n, max_abs_seed(src[0]));
  } else if constexpr (kFloat<T>) {
    best = abs_scalar(src[0]);
  } else {
    // Plain negation, which wraps; the tail starts again at element 0 and saturates.
    using U = std::make_unsigned_t<T>;
    best = src[0] < 0 ? static_cast<T>(U(0) - static_cast<U>(src[0])) : src[0];
  }
  *out = tail<MaxMin::kMax, Abs>(src, n, len, best);
  return ZIVK_STS_NO_ERR;
}

template <class T>
ZIVKStatus min_abs(const T* src, int32_t len, T* out) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, out)) return st;
  const int64_t n = block_end<kBlock<T>>(len);
  T best = std::numeric_limits<T>::max();
  if (n > 0) best = block_extreme<MaxMin::kMin, Abs>(src, 0, n, best);
  *out = tail<MaxMin::kMin, Abs>(src, n, len, best);
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the exported function, the body, the element type.
#define ZIVKS_EXTREME(name, fn, type)                                     \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, int32_t len, type* p) {   \
    return fn(src, len, p);                                               \
  }
#define ZIVKS_MINMAX(name, type)                                                      \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, int32_t len, type* pMin, type* pMax) { \
    return min_max(src, len, pMin, pMax);                                             \
  }

ZIVKS_EXTREME(ZIVKS_Max_16s, extreme<MaxMin::kMax>, int16_t)
ZIVKS_EXTREME(ZIVKS_Min_16s, extreme<MaxMin::kMin>, int16_t)
ZIVKS_EXTREME(ZIVKS_MaxAbs_16s, max_abs, int16_t)
ZIVKS_EXTREME(ZIVKS_MinAbs_16s, min_abs, int16_t)
ZIVKS_EXTREME(ZIVKS_Max_32s, extreme<MaxMin::kMax>, int32_t)
ZIVKS_EXTREME(ZIVKS_Min_32s, extreme<MaxMin::kMin>, int32_t)
ZIVKS_EXTREME(ZIVKS_MaxAbs_32s, max_abs, int32_t)
ZIVKS_EXTREME(ZIVKS_MinAbs_32s, min_abs, int32_t)
ZIVKS_EXTREME(ZIVKS_Max_32f, extreme<MaxMin::kMax>, float)
ZIVKS_EXTREME(ZIVKS_Min_32f, extreme<MaxMin::kMin>, float)
ZIVKS_EXTREME(ZIVKS_MaxAbs_32f, max_abs, float)
ZIVKS_EXTREME(ZIVKS_MinAbs_32f, min_abs, float)
ZIVKS_EXTREME(ZIVKS_Max_64f, extreme<MaxMin::kMax>, double)
ZIVKS_EXTREME(ZIVKS_Min_64f, extreme<MaxMin::kMin>, double)
ZIVKS_EXTREME(ZIVKS_MaxAbs_64f, max_abs, double)
ZIVKS_EXTREME(ZIVKS_MinAbs_64f, min_abs, double)
ZIVKS_MINMAX(ZIVKS_MinMax_8u, uint8_t)
ZIVKS_MINMAX(ZIVKS_MinMax_16u, uint16_t)
ZIVKS_MINMAX(ZIVKS_MinMax_32u, uint32_t)
ZIVKS_MINMAX(ZIVKS_MinMax_16s, int16_t)
ZIVKS_MINMAX(ZIVKS_MinMax_32s, int32_t)
ZIVKS_MINMAX(ZIVKS_MinMax_32f, float)
ZIVKS_MINMAX(ZIVKS_MinMax_64f, double)
