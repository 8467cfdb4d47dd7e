// ReplaceNAN: every element that differs from itself becomes val; all else stays bit
// for bit. Blocks and tail agree.
#include "core/frame.h"

namespace {

using namespace zivks;

template <class T>
ZIVKStatus replace_nan(T val, T* srcDst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, srcDst)) return st;
  using V = simd::vec<T, 1>;
  const V r = simd::splat<V>(val);
  for_single_blocks<kVectorElems<T>>(
      len, [&](int64_t i, auto) { simd::store(srcDst + i, simd::select_nan(simd::load<V>(srcDst + i), r)); },
      [&](int64_t i) {
        if (srcDst[i] != srcDst[i]) srcDst[i] = val;
      });
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_ReplaceNAN_32f_I(float val, float* srcDst, int32_t len) {
  return replace_nan(val, srcDst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_ReplaceNAN_64f_I(double val, double* srcDst, int32_t len) {
  return replace_nan(val, srcDst, len);
}
