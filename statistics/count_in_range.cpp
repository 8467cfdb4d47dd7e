// CountInRange_32s: how many elements lie strictly between two bounds. Both bounds are
// excluded. Bounds with nothing between them give 0 at once, without reading src.
#include "core/frame.h"

namespace {

using namespace zivks;

ZIVKStatus count_in_range(const int32_t* src, int32_t len, int32_t* count, int32_t lower,
                          int32_t upper) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, count)) return st;
  // The test of the largest lower bound comes first, so lower + 1 cannot wrap.
  if (lower == INT32_MAX || lower + 1 >= upper) {
    *count = 0;
    return ZIVK_STS_NO_ERR;
  }
  using V = simd::vec<int32_t, 1>;
  const V lo = simd::splat<V>(lower), hi = simd::splat<V>(upper);
  V acc = simd::zeros<V>();
  int32_t n = 0;
  for_single_blocks<4>(
      len, [&](int64_t i, auto) { acc = simd::count_between(acc, simd::load<V>(src + i), lo, hi); },
      [&](int64_t i) { n += lower < src[i] && src[i] < upper; });
  const simd::lanes<V> l(acc);
  *count = n + l.v[0] + l.v[1] + l.v[2] + l.v[3];
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_CountInRange_32s(const int32_t* src, int32_t len, int32_t* pCount,
                                               int32_t lowerBound, int32_t upperBound) {
  return count_in_range(src, len, pCount, lowerBound, upperBound);
}
