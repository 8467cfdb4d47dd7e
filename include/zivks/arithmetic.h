/** @file
 * zivks/arithmetic.h: addition and subtraction of arrays and constants, plain,
 * saturating and scaled, and absolute values. */
#ifndef ZIVKS_ARITHMETIC_H
#define ZIVKS_ARITHMETIC_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name ZIVKS_Add, Sub, AddC, SubC, SubCRev on floats
 * @{ */
/** One IEEE 754 operation per element (per part for complex types, re with re and im
 * with im), in the element's precision and the current rounding mode, never fused:
 *
 *     Add      dst[i] = src1[i] + src2[i]     (_I: srcDst[i] = src[i] + srcDst[i])
 *     Sub      dst[i] = src2[i] - src1[i]     (_I: srcDst[i] = srcDst[i] - src[i])
 *     AddC     dst[i] = src[i] + val          (_I: srcDst[i] = srcDst[i] + val)
 *     SubC     dst[i] = src[i] - val          (_I: srcDst[i] = srcDst[i] - val)
 *     SubCRev  dst[i] = val - src[i]          (_I: srcDst[i] = val - srcDst[i])
 *
 * Types: 32f 64f 32fc 64fc, each out of place and in place.
 *
 * Parameters:
 *
 *     src1, src2, src  len elements read
 *     val              the constant operand (a record for complex types; no part of it
 *                      is conjugated)
 *     dst              len elements written
 *     srcDst           len elements read and written
 *     len              element count
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  an array pointer is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * In place: the result equals the twin's with srcDst as both source and destination.
 *
 * Note: Sub subtracts its first array from its second: Sub_32f({1}, {3}) gives 2.
 *
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
/** @} */

/** @name ZIVKS_Abs_<T>
 * @{ */
/** dst[i] = |src[i]| (_I: srcDst[i] = |srcDst[i]|).
 *
 * Types: 16s 32s 32f 64f, each out of place and in place.
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or dst (srcDst) is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * Note: the most negative integer gives the largest positive one (Abs_16s of -32768
 *   is 32767), so a result is never negative.
 *
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
/** @} */

/** @name ZIVKS_Add, Sub, AddC, SubC on integers
 * @{ */
/** The exact sum or difference, then saturated to the destination type:
 *
 *     Add_8u16u        dst[i] = src1[i] + src2[i], uint8 into uint16 (cannot overflow)
 *     Add_16u, Add_32u dst[i] = src1[i] + src2[i], saturating at the type's maximum
 *     Add_16s          dst[i] = src1[i] + src2[i], saturating at -32768 and 32767
 *     Sub_16s          dst[i] = src2[i] - src1[i], saturating likewise
 *     Add_16s32f       dst[i] = src1[i] + src2[i], int16 into float, exact
 *     Sub_16s32f       dst[i] = src2[i] - src1[i], int16 into float, exact
 *     Add_32u_I, Add_16s_I, Sub_16s_I   the twins in place (Sub: srcDst[i] - src[i])
 *     Add_16s32s_I     srcDst[i] = srcDst[i] + src[i], int16 into int32, wrapping
 *     AddC_16s_I       srcDst[i] = srcDst[i] + val, saturating
 *     SubC_16s_I       srcDst[i] = srcDst[i] - val, saturating
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  an array pointer is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * Note: ZIVKS_Add_16s32s_I wraps modulo 2^32 instead of saturating, unlike its
 *   neighbours: 1 added to 2147483647 gives -2147483648.
 *
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
/** @} */

/** @name ZIVKS_Add, Sub on integers, scaled: the _S and _IS forms
 * @{ */
/** dst[i] = saturate(round(x * M)), with x the exact src1[i] + src2[i] (Add) or
 * src2[i] - src1[i] (Sub), in place src[i] + srcDst[i] and srcDst[i] - src[i], and M
 * the power of two that scale selects (see common.h). Rounding goes to nearest, a tie
 * to the even neighbour (2.5 gives 2, 3.5 gives 4, -2.5 gives -2); saturation is at
 * the bounds of the type.
 *
 * Types: 8u 16u 16s 32s, each out of place (_S) and in place (_IS).
 *
 * Parameters:
 *
 *     src1, src2, src  len elements read
 *     dst              len elements written
 *     srcDst           len elements read and written
 *     len              element count
 *     scale            positive and finite; about the divisor of the exact result
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  an array pointer is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *     ZIVK_STS_SCALE_ERR     scale <= 0, infinite or NaN
 *
 * In place: Sub_8u_IS and Sub_16u_IS have loops of their own with the results of
 * their twin; the others are the twin called with srcDst twice.
 *
 * Note: scale acts as the power of two toward 1, never the nearest: scale 3 divides by
 *   2, scale 0.3 multiplies by 2, and every scale strictly between 0.5 and 2 leaves
 *   the sum unscaled (plain saturating arithmetic).
 *
 * Note: with scale at or below 2^-128 the members that shift left (Add_8u_S,
 *   Add_16u_S, Sub_16u_S and their _IS forms) give different results in whole blocks
 *   and in the tail. The block takes its shift count from the low byte of
 *   k = log2(1 / scale) read as signed, so for k from 128 to 255 it shifts right by
 *   256 - k (rounding half up), while the tail saturates every non-zero result. Blocks
 *   are 8 elements (Add_8u), 4 (Add_16u) and 32 (Sub_16u): the last len % B elements
 *   are the tail.
 *
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
/** @} */

/** @name ZIVKS_AddC, SubC, SubCRev on integers, scaled: the _S and _IS forms
 * @{ */
/** An array and a constant, scaled and saturated: r = saturate(round(x * M)) with x the
 * exact value, computed in a wider integer before any scaling, and M the power of two
 * that scale selects (see common.h):
 *
 *     AddC     x = src[i] + val     (_IS: srcDst[i] + val)
 *     SubC     x = src[i] - val     (_IS: srcDst[i] - val)
 *     SubCRev  x = val - src[i]     (_IS: val - srcDst[i])
 *
 * Rounding goes to nearest, a tie to the even neighbour; saturation is at the bounds of
 * the type (an unsigned difference below 0 gives 0).
 *
 * Types: 8u 16u 16s 32s, each out of place (_S) and in place (_IS).
 *
 * Parameters:
 *
 *     src     len elements read
 *     val     the constant
 *     dst     len elements written
 *     srcDst  len elements read and written
 *     len     element count
 *     scale   positive and finite; about the divisor of the exact result
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  an array pointer is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *     ZIVK_STS_SCALE_ERR     scale <= 0, infinite or NaN
 *
 * In place: SubC_8u_IS, SubC_16u_IS, SubCRev_8u_IS and SubCRev_16u_IS have loops of
 * their own with the results of their twin; the others are the twin called with
 * srcDst twice.
 *
 * Note: ZIVKS_AddC_8u_S and _IS with scale at or above 512 do not compute: they write 0
 *   to every element (src is still checked for null). The shortcut is deliberate and
 *   off by one where the exact result rounds up: 255 + 255 with scale 512 gives 0 here,
 *   while ZIVKS_Add_8u_S gives 1.
 *
 * Note: a call is whole blocks of B elements, then a scalar tail of len % B elements
 *   with the same results but for the next note. B by member and scale (scale "1" is
 *   any scale strictly between 0.5 and 2, "above" scales of 2 or more):
 *
 *       AddC_8u 64 at 1, 16 above, 32 below     AddC_16u 32 at 1 or below, 16 above
 *       AddC_16s 4       AddC_32s 16 at 1, 8 otherwise
 *       SubC, SubCRev: 8u 64 above, 16 at 1 or below; 16u 32; 16s 4; 32s 2
 *
 * Note: where the scale is below 1 and the member shifts left (AddC 8u 16u 32s, SubC
 *   and SubCRev 8u 16u), a block takes its shift count from the low byte of
 *   k = log2(1 / scale) read as signed: for scale at or below 2^-128 it shifts right by
 *   256 - k instead, AddC truncating and SubC / SubCRev rounding half up, while the tail
 *   saturates every non-zero result. */
ZIVKS_API ZIVKStatus ZIVKS_AddC_8u_S(const uint8_t* src, uint8_t val, uint8_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_8u_IS(uint8_t val, uint8_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_16u_S(const uint16_t* src, uint16_t val, uint16_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_16u_IS(uint16_t val, uint16_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_16s_S(const int16_t* src, int16_t val, int16_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_16s_IS(int16_t val, int16_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_32s_S(const int32_t* src, int32_t val, int32_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_32s_IS(int32_t val, int32_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubC_8u_S(const uint8_t* src, uint8_t val, uint8_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubC_8u_IS(uint8_t val, uint8_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubC_16u_S(const uint16_t* src, uint16_t val, uint16_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubC_16u_IS(uint16_t val, uint16_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubC_16s_S(const int16_t* src, int16_t val, int16_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubC_16s_IS(int16_t val, int16_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubC_32s_S(const int32_t* src, int32_t val, int32_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubC_32s_IS(int32_t val, int32_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_8u_S(const uint8_t* src, uint8_t val, uint8_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_8u_IS(uint8_t val, uint8_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_16u_S(const uint16_t* src, uint16_t val, uint16_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_16u_IS(uint16_t val, uint16_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_16s_S(const int16_t* src, int16_t val, int16_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_16s_IS(int16_t val, int16_t* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_32s_S(const int32_t* src, int32_t val, int32_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_32s_IS(int32_t val, int32_t* srcDst, int32_t len, double scale);
/** @} */

/** @name Scaled complex integers: ZIVKS_Add, Sub, AddC, SubC, SubCRev on 16sc and 32sc
 * @{ */
/** Each part of a complex element by itself, as a real operation on 2 * len parts (re
 * with re, im with im, the constant's re with re parts and its im with im parts):
 *
 *     Add      src1[i] + src2[i]    (_IS: src[i] + srcDst[i])
 *     Sub      src2[i] - src1[i]    (_IS: srcDst[i] - src[i])
 *     AddC     src[i] + val         (_IS: srcDst[i] + val)
 *     SubC     src[i] - val         (_IS: srcDst[i] - val)
 *     SubCRev  val - src[i]         (_IS: val - srcDst[i])
 *
 * then r = saturate(round(x * M)) per part, x exact, M the power of two that scale
 * selects (see common.h), a tie to the even neighbour, saturation at the signed bounds
 * of the part (16sc: -32768 and 32767; 32sc: -2^31 and 2^31 - 1).
 *
 * Types: 16sc 32sc, each out of place (_S) and in place (_IS).
 *
 * Parameters: src1, src2, src, val, dst, srcDst, len (complex elements), scale, as for
 *   the real members above.
 *
 * Statuses, in order of checks: ZIVK_STS_NULL_PTR_ERR, ZIVK_STS_SIZE_ERR (len < 1),
 *   ZIVK_STS_SCALE_ERR.
 *
 * In place: Add and AddC are the twin with srcDst twice; Sub, SubC and SubCRev have
 *   loops of their own with the results of their twin.
 *
 * Note: for scale at or below 2^-128 the members that shift left in whole blocks when
 *   scale is below 1 (Add, AddC, and SubC / SubCRev of 32sc) take the count from the
 *   low byte of k = log2(1 / scale) read as signed, so they shift right by 256 - k
 *   (AddC truncating, the others rounding half up). In Add and AddC the last elements
 *   of a call (the tail: len % B, B = 8 (Add) or 16 (AddC) for 16sc, 2 (Add) or 8
 *   (AddC) for 32sc) saturate every non-zero part instead; the 32sc SubC and SubCRev
 *   tails shift as their blocks do. */
ZIVKS_API ZIVKStatus ZIVKS_Add_16sc_S(const ZIVK16sc* src1, const ZIVK16sc* src2, ZIVK16sc* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Add_16sc_IS(const ZIVK16sc* src, ZIVK16sc* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Add_32sc_S(const ZIVK32sc* src1, const ZIVK32sc* src2, ZIVK32sc* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Add_32sc_IS(const ZIVK32sc* src, ZIVK32sc* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Sub_16sc_S(const ZIVK16sc* src1, const ZIVK16sc* src2, ZIVK16sc* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Sub_16sc_IS(const ZIVK16sc* src, ZIVK16sc* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Sub_32sc_S(const ZIVK32sc* src1, const ZIVK32sc* src2, ZIVK32sc* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Sub_32sc_IS(const ZIVK32sc* src, ZIVK32sc* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_16sc_S(const ZIVK16sc* src, ZIVK16sc val, ZIVK16sc* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_16sc_IS(ZIVK16sc val, ZIVK16sc* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_32sc_S(const ZIVK32sc* src, ZIVK32sc val, ZIVK32sc* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_32sc_IS(ZIVK32sc val, ZIVK32sc* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubC_16sc_S(const ZIVK16sc* src, ZIVK16sc val, ZIVK16sc* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubC_16sc_IS(ZIVK16sc val, ZIVK16sc* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubC_32sc_S(const ZIVK32sc* src, ZIVK32sc val, ZIVK32sc* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubC_32sc_IS(ZIVK32sc val, ZIVK32sc* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_16sc_S(const ZIVK16sc* src, ZIVK16sc val, ZIVK16sc* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_16sc_IS(ZIVK16sc val, ZIVK16sc* srcDst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_32sc_S(const ZIVK32sc* src, ZIVK32sc val, ZIVK32sc* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_32sc_IS(ZIVK32sc val, ZIVK32sc* srcDst, int32_t len, double scale);
/** @} */

/** @name ZIVKS_Add_64s_S, ZIVKS_AddC_64s_S, ZIVKS_AddC_64u_S
 * @{ */
/** 64-bit addition with a scale. The exact sum x (65 bits) is never put in a float:
 * with s = log2(scale) as common.h selects it,
 *   s below 0   the saturating sum shifted left by -s, saturating
 *   s = 0       the saturating sum
 *   s above 0   x / 2^s rounded by rndMode: 0 toward zero; 1 to nearest, a tie to the
 *               even neighbour; any other value to nearest, a tie upward (toward
 *               +infinity). Add_64s_S always rounds by 1. The result always fits.
 *   s = 65 and up   0 (AddC_64u_S at s = 65 with val != 0 and rndMode != 0 keeps the
 *               carry: 1 when x >= 2^64 for rndMode 2 and up, when x > 2^64 for 1)
 * Parameters:
 *
 *     src1, src2, src  len elements read
 *     val              the constant
 *     dst              len elements written
 *     len              element count
 *     rndMode          0, 1, or any other value as above; never checked
 *     scale            positive and finite
 *
 * Statuses, in order of checks: ZIVK_STS_NULL_PTR_ERR, ZIVK_STS_SIZE_ERR (len < 1),
 *   ZIVK_STS_SCALE_ERR. A wrong rndMode is no error.
 *
 * Note: the left shift for s below 0 takes its count from the low byte of k = -s read
 *   as signed, in every element alike: for scale at or below 2^-128 (k from 128) it
 *   shifts right by 256 - k rounding half up, at k = 256 not at all, and so on.
 *
 * Note: AddC_64s_S with val = -2^63 and rndMode 2 or above rounds a tie away from zero
 *   (down) in the whole pairs of elements and upward (toward zero) in a last odd
 *   element: with scale 2 and src {1, 1, 1} the results are -2^62, -2^62 and
 *   -2^62 + 1. */
ZIVKS_API ZIVKStatus ZIVKS_Add_64s_S(const int64_t* src1, const int64_t* src2, int64_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_64s_S(const int64_t* src, int64_t val, int64_t* dst, int32_t len, int32_t rndMode,
                                      double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddC_64u_S(const uint64_t* src, uint64_t val, uint64_t* dst, int32_t len, int32_t rndMode,
                                      double scale);
/** @} */

/** @name ZIVKS_AddProduct, ZIVKS_AddProductC: multiply-accumulate
 * @{ */
/** Multiply-accumulate, element by element:
 *
 *     AddProduct    srcDst[i] += src1[i] * src2[i]
 *     AddProductC   srcDst[i] += src[i] * val
 *
 * Floats (32f 64f): one fused multiply-add per element, a single rounding; a NaN in an
 *   operand gives NaN in that element only.
 *
 * Complex floats (32fc 64fc): c + a * b, the two products of each part rounded in a
 *   fixed order that shows in the last place: the first product of a part is rounded
 *   to the element precision, the second is fused with it, then c is added. Whole
 *   blocks (4 elements for 32fc, 2 for 64fc) and the tail of len % B elements choose
 *   which product is rounded differently, so they may differ in the last place:
 *
 *       32fc block  re = c.re + fma(-a.im, b.im, a.re*b.re)   im = c.im + fma(a.im, b.re, a.re*b.im)
 *       32fc tail   re = c.re + fma(a.re, b.re, -(a.im*b.im)) im = c.im + fma(a.re, b.im, a.im*b.re)
 *       64fc block  re = c.re + fma(a.re, b.re, -(a.im*b.im)) im = c.im + fma(a.im, b.re, a.re*b.im)
 *       64fc tail   as the 32fc tail
 *
 *   The tail writes re before it reads a and b again for im: with srcDst the same
 *   array as src1 or src2, a tail element uses the new re. No such overlap is promised.
 *
 * Integers (_S): srcDst[i] = saturate(round((src1[i] * src2[i] + srcDst[i]) * M)), M
 *   the power of two that scale selects, a tie to the even neighbour. The exact sum is
 *   first converted to a float, then multiplied: float32 for 16s (a sum above 2^24
 *   loses its low bits), float64 for 32s (above 2^53) and 16s32s (exact).
 *
 * Types: AddProduct 32f 64f 32fc 64fc 16s_S 32s_S 16s32s_S (src1, src2 16s, srcDst
 *   32s); AddProductC 32f 64f.
 *
 * Parameters:
 *
 *     src1, src2, src  len elements read
 *     val              the constant factor
 *     srcDst           len elements read and written
 *     len              element count
 *     scale            (_S) positive and finite
 *
 * Statuses, in order of checks: ZIVK_STS_NULL_PTR_ERR, ZIVK_STS_SIZE_ERR (len < 1),
 *   ZIVK_STS_SCALE_ERR (_S only). */
ZIVKS_API ZIVKStatus ZIVKS_AddProduct_32f(const float* src1, const float* src2, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddProduct_64f(const double* src1, const double* src2, double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddProduct_32fc(const ZIVK32fc* src1, const ZIVK32fc* src2, ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddProduct_64fc(const ZIVK64fc* src1, const ZIVK64fc* src2, ZIVK64fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddProductC_32f(const float* src, float val, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddProductC_64f(const double* src, double val, double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddProduct_16s_S(const int16_t* src1, const int16_t* src2, int16_t* srcDst, int32_t len,
                                            double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddProduct_32s_S(const int32_t* src1, const int32_t* src2, int32_t* srcDst, int32_t len,
                                            double scale);
ZIVKS_API ZIVKStatus ZIVKS_AddProduct_16s32s_S(const int16_t* src1, const int16_t* src2, int32_t* srcDst, int32_t len,
                                               double scale);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_ARITHMETIC_H */
