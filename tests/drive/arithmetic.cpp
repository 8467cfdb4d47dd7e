// Float, integer, scaled, complex and 64-bit addition and subtraction, absolute values
// and multiply-accumulate: table lines; absolute values are checked for their sign.
#include <cmath>

#include "drive.h"

namespace zd {

namespace {

// ---- Absolute values
// A result is never negative: the most negative integer saturates, and a float (NaN
// included) only loses its sign bit.
template <class T>
void expect_no_sign(Call& c, ZIVKStatus s, const T* p, int32_t len) {
  c.finish(s);
  if (s != ZIVK_STS_NO_ERR) return;
  for (int32_t i = 0; i < len; ++i) {
    bool negative;
    if constexpr (std::is_floating_point<T>::value) negative = std::signbit(p[i]);
    else negative = p[i] < 0;
    if (negative) fail(c.entry(), "a negative result at " + std::to_string(i));
  }
}

template <class T>
void absolute(Call& c, ZIVKStatus (*fn)(const T*, T*, int32_t)) {
  const int32_t len = c.length();
  const T* src = c.array<T>(len, Call::kSource);
  T* dst = c.array<T>(len, Call::kWritten);
  expect_no_sign(c, fn(src, dst, len), dst, len);
}

template <class T>
void absolute(Call& c, ZIVKStatus (*fn)(T*, int32_t)) {
  const int32_t len = c.length();
  T* srcDst = c.array<T>(len, Call::kWritten);
  expect_no_sign(c, fn(srcDst, len), srcDst, len);
}

}  // namespace

#define ZD_ABS(fn) Entry{#fn, [](Call& c) { absolute(c, &fn); }, 0}

void add_arithmetic(std::vector<Entry>& out) {
  const Entry list[] = {
      ZD_CALL(ZIVKS_Add_32f, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Add_32f_I, src, srcDst, len),
      ZD_CALL(ZIVKS_Sub_32f, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Sub_32f_I, src, srcDst, len),
      ZD_CALL(ZIVKS_AddC_32f, src, val, dst, len),
      ZD_CALL(ZIVKS_AddC_32f_I, val, srcDst, len),
      ZD_CALL(ZIVKS_SubC_32f, src, val, dst, len),
      ZD_CALL(ZIVKS_SubC_32f_I, val, srcDst, len),
      ZD_CALL(ZIVKS_SubCRev_32f, src, val, dst, len),
      ZD_CALL(ZIVKS_SubCRev_32f_I, val, srcDst, len),
      ZD_CALL(ZIVKS_Add_64f, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Add_64f_I, src, srcDst, len),
      ZD_CALL(ZIVKS_Sub_64f, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Sub_64f_I, src, srcDst, len),
      ZD_CALL(ZIVKS_AddC_64f, src, val, dst, len),
      ZD_CALL(ZIVKS_AddC_64f_I, val, srcDst, len),
      ZD_CALL(ZIVKS_SubC_64f, src, val, dst, len),
      ZD_CALL(ZIVKS_SubC_64f_I, val, srcDst, len),
      ZD_CALL(ZIVKS_SubCRev_64f, src, val, dst, len),
      ZD_CALL(ZIVKS_SubCRev_64f_I, val, srcDst, len),
      ZD_CALL(ZIVKS_Add_32fc, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Add_32fc_I, src, srcDst, len),
      ZD_CALL(ZIVKS_Sub_32fc, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Sub_32fc_I, src, srcDst, len),
      ZD_CALL(ZIVKS_AddC_32fc, src, val, dst, len),
      ZD_CALL(ZIVKS_AddC_32fc_I, val, srcDst, len),
      ZD_CALL(ZIVKS_SubC_32fc, src, val, dst, len),
      ZD_CALL(ZIVKS_SubC_32fc_I, val, srcDst, len),
      ZD_CALL(ZIVKS_SubCRev_32fc, src, val, dst, len),
      ZD_CALL(ZIVKS_SubCRev_32fc_I, val, srcDst, len),
      ZD_CALL(ZIVKS_Add_64fc, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Add_64fc_I, src, srcDst, len),
      ZD_CALL(ZIVKS_Sub_64fc, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Sub_64fc_I, src, srcDst, len),
      ZD_CALL(ZIVKS_AddC_64fc, src, val, dst, len),
      ZD_CALL(ZIVKS_AddC_64fc_I, val, srcDst, len),
      ZD_CALL(ZIVKS_SubC_64fc, src, val, dst, len),
      ZD_CALL(ZIVKS_SubC_64fc_I, val, srcDst, len),
      ZD_CALL(ZIVKS_SubCRev_64fc, src, val, dst, len),
      ZD_CALL(ZIVKS_SubCRev_64fc_I, val, srcDst, len),
      ZD_ABS(ZIVKS_Abs_16s),
      ZD_ABS(ZIVKS_Abs_16s_I),
      ZD_ABS(ZIVKS_Abs_32s),
      ZD_ABS(ZIVKS_Abs_32s_I),
      ZD_ABS(ZIVKS_Abs_32f),
      ZD_ABS(ZIVKS_Abs_32f_I),
      ZD_ABS(ZIVKS_Abs_64f),
      ZD_ABS(ZIVKS_Abs_64f_I),
      ZD_CALL(ZIVKS_Add_8u16u, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Add_16u, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Add_32u, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Add_32u_I, src, srcDst, len),
      ZD_CALL(ZIVKS_Add_16s, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Add_16s_I, src, srcDst, len),
      ZD_CALL(ZIVKS_Sub_16s, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Sub_16s_I, src, srcDst, len),
      ZD_CALL(ZIVKS_Add_16s32f, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Sub_16s32f, src1, src2, dst, len),
      ZD_CALL(ZIVKS_Add_16s32s_I, src, srcDst, len),
      ZD_CALL(ZIVKS_AddC_16s_I, val, srcDst, len),
      ZD_CALL(ZIVKS_SubC_16s_I, val, srcDst, len),
      ZD_CALL(ZIVKS_Add_8u_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_Add_8u_IS, src, srcDst, len, scale),
      ZD_CALL(ZIVKS_Add_16u_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_Add_16u_IS, src, srcDst, len, scale),
      ZD_CALL(ZIVKS_Add_16s_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_Add_16s_IS, src, srcDst, len, scale),
      ZD_CALL(ZIVKS_Add_32s_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_Add_32s_IS, src, srcDst, len, scale),
      ZD_CALL(ZIVKS_Sub_8u_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_Sub_8u_IS, src, srcDst, len, scale),
      ZD_CALL(ZIVKS_Sub_16u_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_Sub_16u_IS, src, srcDst, len, scale),
      ZD_CALL(ZIVKS_Sub_16s_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_Sub_16s_IS, src, srcDst, len, scale),
      ZD_CALL(ZIVKS_Sub_32s_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_Sub_32s_IS, src, srcDst, len, scale),
      ZD_CALL(ZIVKS_AddC_8u_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_AddC_8u_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_AddC_16u_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_AddC_16u_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_AddC_16s_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_AddC_16s_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_AddC_32s_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_AddC_32s_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_SubC_8u_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_SubC_8u_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_SubC_16u_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_SubC_16u_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_SubC_16s_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_SubC_16s_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_SubC_32s_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_SubC_32s_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_SubCRev_8u_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_SubCRev_8u_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_SubCRev_16u_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_SubCRev_16u_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_SubCRev_16s_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_SubCRev_16s_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_SubCRev_32s_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_SubCRev_32s_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_Add_16sc_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_Add_16sc_IS, src, srcDst, len, scale),
      ZD_CALL(ZIVKS_Add_32sc_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_Add_32sc_IS, src, srcDst, len, scale),
      ZD_CALL(ZIVKS_Sub_16sc_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_Sub_16sc_IS, src, srcDst, len, scale),
      ZD_CALL(ZIVKS_Sub_32sc_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_Sub_32sc_IS, src, srcDst, len, scale),
      ZD_CALL(ZIVKS_AddC_16sc_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_AddC_16sc_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_AddC_32sc_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_AddC_32sc_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_SubC_16sc_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_SubC_16sc_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_SubC_32sc_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_SubC_32sc_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_SubCRev_16sc_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_SubCRev_16sc_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_SubCRev_32sc_S, src, val, dst, len, scale),
      ZD_CALL(ZIVKS_SubCRev_32sc_IS, val, srcDst, len, scale),
      ZD_CALL(ZIVKS_Add_64s_S, src1, src2, dst, len, scale),
      ZD_CALL(ZIVKS_AddC_64s_S, src, val, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_AddC_64u_S, src, val, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_AddProduct_32f, src1, src2, srcDst, len),
      ZD_CALL(ZIVKS_AddProduct_64f, src1, src2, srcDst, len),
      ZD_CALL(ZIVKS_AddProduct_32fc, src1, src2, srcDst, len),
      ZD_CALL(ZIVKS_AddProduct_64fc, src1, src2, srcDst, len),
      ZD_CALL(ZIVKS_AddProductC_32f, src, val, srcDst, len),
      ZD_CALL(ZIVKS_AddProductC_64f, src, val, srcDst, len),
      ZD_CALL(ZIVKS_AddProduct_16s_S, src1, src2, srcDst, len, scale),
      ZD_CALL(ZIVKS_AddProduct_32s_S, src1, src2, srcDst, len, scale),
      ZD_CALL(ZIVKS_AddProduct_16s32s_S, src1, src2, srcDst, len, scale),
  };
  out.insert(out.end(), std::begin(list), std::end(list));
}

}  // namespace zd
