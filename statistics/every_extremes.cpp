// MaxEvery and MinEvery: the element-wise maximum or minimum of two vectors.
//
// Float blocks (one 128-bit vector) propagate NaN and order -0 below +0. The float tail
// is a compare and select, src1[i] where it is at or above (at or below) src2[i] and
// src2[i] otherwise: a NaN in src1 is dropped, a NaN in src2 kept, and between two
// zeros src1 wins. The in-place float forms pass src as src1 and srcDst as src2 and
// dst. The integer forms are in place only and plain.
#include "core/frame.h"
#include "core/ops.h"

namespace {

using namespace zivks;

template <MaxMin d, class T>
ZIVKStatus every_float(const T* src1, const T* src2, T* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, dst)) return st;
  for_blocks<kVectorElems<T>>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<T, decltype(w)::value>;
        const V a = simd::load<V>(src1 + i), b = simd::load<V>(src2 + i);
        simd::store(dst + i, d == MaxMin::kMax ? simd::max_propagating(a, b) : simd::min_propagating(a, b));
      },
      [&](int64_t i) {
        const T a = src1[i], b = src2[i];
        dst[i] = (d == MaxMin::kMax ? a >= b : a <= b) ? a : b;
      });
  return ZIVK_STS_NO_ERR;
}

template <MaxMin d, class T>
ZIVKStatus every_int_i(const T* src, T* srcDst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, srcDst)) return st;
  for_blocks<kVectorElems<T>>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<T, decltype(w)::value>;
        const V a = simd::load<V>(src + i), b = simd::load<V>(srcDst + i);
        simd::store(srcDst + i, d == MaxMin::kMax ? simd::max(a, b) : simd::min(a, b));
      },
      [&](int64_t i) {
        const T a = src[i], b = srcDst[i];
        srcDst[i] = (d == MaxMin::kMax ? a > b : a < b) ? a : b;
      });
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the exported function (and its in-place form, which calls the twin), the
// direction, the element type.
#define ZIVKS_EVERY_FLOAT(name, name_in_place, dir, type)                                    \
  ZIVKS_EXPORT ZIVKStatus name(const type* src1, const type* src2, type* dst, int32_t len) { \
    return every_float<MaxMin::dir>(src1, src2, dst, len);                                   \
  }                                                                                          \
  ZIVKS_IN_PLACE_OF_ARRAYS(name_in_place, name, type)
#define ZIVKS_EVERY_INT(name_in_place, dir, type)                                            \
  ZIVKS_EXPORT ZIVKStatus name_in_place(const type* src, type* srcDst, int32_t len) {        \
    return every_int_i<MaxMin::dir>(src, srcDst, len);                                       \
  }

ZIVKS_EVERY_FLOAT(ZIVKS_MaxEvery_32f, ZIVKS_MaxEvery_32f_I, kMax, float)
ZIVKS_EVERY_FLOAT(ZIVKS_MaxEvery_64f, ZIVKS_MaxEvery_64f_I, kMax, double)
ZIVKS_EVERY_FLOAT(ZIVKS_MinEvery_32f, ZIVKS_MinEvery_32f_I, kMin, float)
ZIVKS_EVERY_FLOAT(ZIVKS_MinEvery_64f, ZIVKS_MinEvery_64f_I, kMin, double)
ZIVKS_EVERY_INT(ZIVKS_MaxEvery_16s_I, kMax, int16_t)
ZIVKS_EVERY_INT(ZIVKS_MaxEvery_32s_I, kMax, int32_t)
ZIVKS_EVERY_INT(ZIVKS_MinEvery_16s_I, kMin, int16_t)
ZIVKS_EVERY_INT(ZIVKS_MinEvery_32s_I, kMin, int32_t)
