// ZeroCrossing_32f and ZeroCrossing_16s32f: how often a signal changes sign between
// neighbouring samples, as a float32 count. Three kinds of change:
//   0  the product of the two samples is below 0 (float32: the rounded product, so one
//      that underflows to zero does not count; a zero or a NaN never counts)
//   1  the sign bits differ (+0 and -0 differ; a NaN counts by its sign bit; for int16
//      zero counts as positive)
//   2  |sign(a) - sign(b)| with sign values -1, 0, +1, and the sum halved at the end;
//      the int16 form then truncates, so a remaining half is thrown away
// The checks have their own order: pointers, then a len of 0 (a negative len is taken
// as an unsigned count), then kind above 2 as unsigned.
//
// Blocks are counted in pairs: 4 per block, 8 in kind 2 of the int16 form. Kinds 0 and
// 1 keep an integer counter per lane, kind 2 a float32 sum per lane; after the blocks
// the lanes go to float32 and are added pairwise, then 0 is added, and the tail adds to
// that float32 value. In kind 2 a block takes a NaN sample as its own sign value, so the
// result becomes NaN, while the tail takes a NaN as negative.
#include <math.h>

#include "core/frame.h"
#include "core/handles.h"

namespace {

using namespace zivks;

using VI = simd::vec<int32_t, 1>;
using VF = simd::vec<float, 1>;

// Four samples from p, as float32 lanes or as int16 widened to int32.
inline VF four(const float* p) { return simd::load<VF>(p); }
inline VI four(const int16_t* p) { return simd::load_widened(p); }

template <class T>
inline bool sign_bit(T x) {
  if constexpr (std::is_same_v<T, float>) return fp::to_bits(x) >> 31;
  else return x < 0;
}

// The tail's sign value: a NaN counts as negative.
template <class T>
inline int sign_value(T x) {
  return x > 0 ? 1 : x == 0 ? 0 : -1;
}

template <class T>
inline bool product_negative(T a, T b) {
  if constexpr (std::is_same_v<T, float>) {
    const float p = a * b;
    return p < 0;
  } else {
    return int32_t{a} * int32_t{b} < 0;
  }
}

template <class T>
ZIVKStatus zero_crossing(const T* src, int32_t len_arg, float* out, int32_t kind) {
  if (const ZIVKStatus st = handles::first_failure({{any_null(src, out), ZIVK_STS_NULL_PTR_ERR},
                                                     {len_arg == 0, ZIVK_STS_SIZE_ERR},
                                                     {static_cast<uint32_t>(kind) > 2, ZIVK_STS_ZC_TYPE_ERR}}))
    return st;
  const uint64_t len = static_cast<uint32_t>(len_arg);
  const uint64_t pairs = len - 1;
  constexpr bool kInt = std::is_same_v<T, int16_t>;
  const uint64_t block = kInt && kind == 2 ? 8 : 4;
  const uint64_t nb = pairs / block * block;

  // Block p covers the pairs (src[p + j], src[p + j + 1]).
  float sum;
  if (kind != 2) {
    VI acc = simd::zeros<VI>();
    for (uint64_t p = 0; p < nb; p += 4) {
      const auto a = four(src + p), b = four(src + p + 1);
      acc = kind == 0 ? simd::count_negative_products(acc, a, b) : simd::count_sign_differences(acc, a, b);
    }
    sum = simd::reduce_add_pairwise(simd::to_float(acc));
  } else {
    VF acc = simd::zeros<VF>();
    for (uint64_t p = 0; p < nb; p += block) {
      for (uint64_t q = p; q < p + block; q += 4) {
        const auto d = simd::abs_diff(simd::sign_value(four(src + q)), simd::sign_value(four(src + q + 1)));
        if constexpr (kInt) acc = simd::add(acc, simd::to_float(d));
        else acc = simd::add(acc, d);
      }
    }
    sum = simd::reduce_add_pairwise(acc);
  }
  sum = fp::add(sum, 0.0f);

  for (uint64_t i = nb + 1; i < len; ++i) {
    const T a = src[i - 1], b = src[i];
    int c;
    if (kind == 0) c = product_negative(a, b);
    else if (kind == 1) c = sign_bit(a) != sign_bit(b);
    else c = sign_value(a) > sign_value(b) ? sign_value(a) - sign_value(b) : sign_value(b) - sign_value(a);
    sum = fp::add(sum, static_cast<float>(c));
  }
  if (kind == 2) {
    sum = sum * 0.5f;
    if constexpr (kInt) sum = truncf(sum);
  }
  *out = sum;
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_ZeroCrossing_32f(const float* src, int32_t len, float* pValue, int32_t kind) {
  return zero_crossing(src, len, pValue, kind);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_ZeroCrossing_16s32f(const int16_t* src, int32_t len, float* pValue,
                                                  int32_t kind) {
  return zero_crossing(src, len, pValue, kind);
}
