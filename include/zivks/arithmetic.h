/* zivks/arithmetic.h: addition and subtraction of arrays and constants, plain,
 * saturating and scaled, and absolute values. */
#ifndef ZIVKS_ARITHMETIC_H
#define ZIVKS_ARITHMETIC_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- ZIVKS_Add, Sub, AddC, SubC, SubCRev on floats -----------------------------------
 * One IEEE 754 operation per element (per part for complex types, re with re and im
 * with im), in the element's precision and the current rounding mode, never fused:
 *   Add      dst[i] = src1[i] + src2[i]     (_I: srcDst[i] = src[i] + srcDst[i])
 *   Sub      dst[i] = src2[i] - src1[i]     (_I: srcDst[i] = srcDst[i] - src[i])
 *   AddC     dst[i] = src[i] + val          (_I: srcDst[i] = srcDst[i] + val)
 *   SubC     dst[i] = src[i] - val          (_I: srcDst[i] = srcDst[i] - val)
 *   SubCRev  dst[i] = val - src[i]          (_I: srcDst[i] = val - srcDst[i])
 *
 * Types: 32f 64f 32fc 64fc, each out of place and in place.
 * Parameters:
 *   src1, src2, src  len elements read
 *   val              the constant operand (a record for complex types; no part of it
 *                    is conjugated)
 *   dst              len elements written
 *   srcDst           len elements read and written
 *   len              element count
 * Statuses, in order of checks:
 *   ZIVK_STS_NULL_PTR_ERR  an array pointer is null
 *   ZIVK_STS_SIZE_ERR      len < 1
 * In place: the result equals the twin's with srcDst as both source and destination.
 * Note: Sub subtracts its first array from its second: Sub_32f({1}, {3}) gives 2.
 * Note: which NaN comes out is fixed: a signalling NaN operand wins (made quiet), the
 *   left operand of the formula above before the right; else a quiet NaN operand,
 *   left before right; an invalid operation on numbers (inf - inf) gives the
 *   positive default NaN. */
ZIVKS_API ZIVKStatus ZIVKS_Add_32f(const float* src1, const float* src2, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_32f_I(const float* src, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_32f(const float* src1, const float* src2, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_32f_I(const float* src, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_32f(const float* src, float val, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_32f_I(float val, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_32f(const float* src, float val, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_32f_I(float val, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_32f(const float* src, float val, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_32f_I(float val, float* srcDst, int32_t len);

ZIVKS_API ZIVKStatus ZIVKS_Add_64f(const double* src1, const double* src2, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_64f_I(const double* src, double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_64f(const double* src1, const double* src2, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_64f_I(const double* src, double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_64f(const double* src, double val, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_64f_I(double val, double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_64f(const double* src, double val, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_64f_I(double val, double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_64f(const double* src, double val, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_64f_I(double val, double* srcDst, int32_t len);

ZIVKS_API ZIVKStatus ZIVKS_Add_32fc(const ZIVK32fc* src1, const ZIVK32fc* src2, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_32fc_I(const ZIVK32fc* src, ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_32fc(const ZIVK32fc* src1, const ZIVK32fc* src2, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_32fc_I(const ZIVK32fc* src, ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_32fc(const ZIVK32fc* src, ZIVK32fc val, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_32fc_I(ZIVK32fc val, ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_32fc(const ZIVK32fc* src, ZIVK32fc val, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_32fc_I(ZIVK32fc val, ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_32fc(const ZIVK32fc* src, ZIVK32fc val, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_32fc_I(ZIVK32fc val, ZIVK32fc* srcDst, int32_t len);

ZIVKS_API ZIVKStatus ZIVKS_Add_64fc(const ZIVK64fc* src1, const ZIVK64fc* src2, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_64fc_I(const ZIVK64fc* src, ZIVK64fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_64fc(const ZIVK64fc* src1, const ZIVK64fc* src2, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_64fc_I(const ZIVK64fc* src, ZIVK64fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_64fc(const ZIVK64fc* src, ZIVK64fc val, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_64fc_I(ZIVK64fc val, ZIVK64fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_64fc(const ZIVK64fc* src, ZIVK64fc val, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_64fc_I(ZIVK64fc val, ZIVK64fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_64fc(const ZIVK64fc* src, ZIVK64fc val, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_64fc_I(ZIVK64fc val, ZIVK64fc* srcDst, int32_t len);

/* ---- ZIVKS_Abs_<T> ----------------------------------------------------------------
 * dst[i] = |src[i]| (_I: srcDst[i] = |srcDst[i]|).
 *
 * Types: 16s 32s 32f 64f, each out of place and in place.
 * Statuses, in order of checks:
 *   ZIVK_STS_NULL_PTR_ERR  src or dst (srcDst) is null
 *   ZIVK_STS_SIZE_ERR      len < 1
 * Note: the most negative integer gives the largest positive one (Abs_16s of -32768
 *   is 32767), so a result is never negative.
 * Note: the float forms clear the sign bit and do nothing else: -0.0 gives +0.0, and
 *   a NaN keeps its payload. */
ZIVKS_API ZIVKStatus ZIVKS_Abs_16s(const int16_t* src, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_16s_I(int16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_32s(const int32_t* src, int32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_32s_I(int32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_32f(const float* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_32f_I(float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_64f(const double* src, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_64f_I(double* srcDst, int32_t len);

/* ---- ZIVKS_Add, Sub, AddC, SubC on integers -----------------------------------------
 * The exact sum or difference, then saturated to the destination type:
 *   Add_8u16u        dst[i] = src1[i] + src2[i], uint8 into uint16 (cannot overflow)
 *   Add_16u, Add_32u dst[i] = src1[i] + src2[i], saturating at the type's maximum
 *   Add_16s          dst[i] = src1[i] + src2[i], saturating at -32768 and 32767
 *   Sub_16s          dst[i] = src2[i] - src1[i], saturating likewise
 *   Add_16s32f       dst[i] = src1[i] + src2[i], int16 into float, exact
 *   Sub_16s32f       dst[i] = src2[i] - src1[i], int16 into float, exact
 *   Add_32u_I, Add_16s_I, Sub_16s_I   the twins in place (Sub: srcDst[i] - src[i])
 *   Add_16s32s_I     srcDst[i] = srcDst[i] + src[i], int16 into int32, wrapping
 *   AddC_16s_I       srcDst[i] = srcDst[i] + val, saturating
 *   SubC_16s_I       srcDst[i] = srcDst[i] - val, saturating
 * Statuses, in order of checks:
 *   ZIVK_STS_NULL_PTR_ERR  an array pointer is null
 *   ZIVK_STS_SIZE_ERR      len < 1
 * Note: ZIVKS_Add_16s32s_I wraps modulo 2^32 instead of saturating, unlike its
 *   neighbours: 1 added to 2147483647 gives -2147483648.
 * Note: there is no in-place Add_16u, and AddC_16s_I, SubC_16s_I and Add_16s32s_I
 *   have no out-of-place form. */
ZIVKS_API ZIVKStatus ZIVKS_Add_8u16u(const uint8_t* src1, const uint8_t* src2, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_16u(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_32u(const uint32_t* src1, const uint32_t* src2, uint32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_32u_I(const uint32_t* src, uint32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_16s(const int16_t* src1, const int16_t* src2, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_16s_I(const int16_t* src, int16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_16s(const int16_t* src1, const int16_t* src2, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_16s_I(const int16_t* src, int16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_16s32f(const int16_t* src1, const int16_t* src2, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_16s32f(const int16_t* src1, const int16_t* src2, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_16s32s_I(const int16_t* src, int32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_16s_I(int16_t val, int16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_16s_I(int16_t val, int16_t* srcDst, int32_t len);

/* ---- ZIVKS_Add_<T>_S, ZIVKS_Sub_<T>_S and their _IS forms ------------------------------
 * dst[i] = saturate(round(x * M)), with x the exact src1[i] + src2[i] (Add) or
 * src2[i] - src1[i] (Sub), in place src[i] + srcDst[i] and srcDst[i] - src[i], and M
 * the power of two that scale selects (see common.h). Rounding goes to nearest, a tie
 * to the even neighbour (2.5 gives 2, 3.5 gives 4, -2.5 gives -2); saturation is at
 * the bounds of the type.
 *
 * Types: 8u 16u 16s 32s, each out of place (_S) and in place (_IS).
 * Parameters:
 *   src1, src2, src  len elements read
 *   dst              len elements written
 *   srcDst           len elements read and written
 *   len              element count
 *   scale            positive and finite; about the divisor of the exact result
 * Statuses, in order of checks:
 *   ZIVK_STS_NULL_PTR_ERR  an array pointer is null
 *   ZIVK_STS_SIZE_ERR      len < 1
 *   ZIVK_STS_SCALE_ERR     scale <= 0, infinite or NaN
 * In place: Sub_8u_IS and Sub_16u_IS have loops of their own with the results of
 * their twin; the others are the twin called with srcDst twice.
 * Note: scale acts as the power of two toward 1, never the nearest: scale 3 divides by
 *   2, scale 0.3 multiplies by 2, and every scale strictly between 0.5 and 2 leaves
 *   the sum unscaled (plain saturating arithmetic).
 * Note: with scale at or below 2^-128 the members that shift left (Add_8u_S,
 *   Add_16u_S, Sub_16u_S and their _IS forms) give different results in whole blocks
 *   and in the tail. The block takes its shift count from the low byte of
 *   k = log2(1 / scale) read as signed, so for k from 128 to 255 it shifts right by
 *   256 - k (rounding half up), while the tail saturates every non-zero result. Blocks
 *   are 8 elements (Add_8u), 4 (Add_16u) and 32 (Sub_16u): the last len % B elements
 *   are the tail.
 * Note: ZIVKS_Sub_8u_S and _IS narrow the rounded product r in two steps within each
 *   group of 8 elements of a 64-element block: elements 0 to 3 of a group saturate,
 *   elements 4 to 7 keep the low 16 bits of r, before the final saturation to 255.
 *   It shows when r reaches 65536, that is for scale at or below 2^-9: a difference of
 *   128 with scale 2^-9 gives 255 for elements 0 to 3 of a group and 0 for elements 4
 *   to 7, while the last len % 64 elements give 255. */
ZIVKS_API ZIVKStatus ZIVKS_Add_8u_S(const uint8_t* src1, const uint8_t* src2, uint8_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Add_8u_IS(const uint8_t* src, uint8_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Add_16u_S(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Add_16u_IS(const uint16_t* src, uint16_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Add_16s_S(const int16_t* src1, const int16_t* src2, int16_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Add_16s_IS(const int16_t* src, int16_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Add_32s_S(const int32_t* src1, const int32_t* src2, int32_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Add_32s_IS(const int32_t* src, int32_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Sub_8u_S(const uint8_t* src1, const uint8_t* src2, uint8_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Sub_8u_IS(const uint8_t* src, uint8_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Sub_16u_S(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Sub_16u_IS(const uint16_t* src, uint16_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Sub_16s_S(const int16_t* src1, const int16_t* src2, int16_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Sub_16s_IS(const int16_t* src, int16_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Sub_32s_S(const int32_t* src1, const int32_t* src2, int32_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Sub_32s_IS(const int32_t* src, int32_t* srcDst, int32_t len, double scale);

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_ARITHMETIC_H */
