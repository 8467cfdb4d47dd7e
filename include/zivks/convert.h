/** @file
 * zivks/convert.h: conversions between element types. */
#ifndef ZIVKS_CONVERT_H
#define ZIVKS_CONVERT_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name ZIVKS_Convert_<F><I>_S: floating point to integers
 * @{ */
/** dst[i] = saturate(round(src[i] * M)): M the power of two that scale selects (see
 * common.h), the product made once in the source's precision, rounded by rndMode,
 * then clamped to the target's range.
 *
 * Types: from 32f or 64f into 8u 16u 8s 16s 32s, and 64f into 64s.
 *
 * Parameters:
 *
 *     src      len floats
 *     dst      len integers written
 *     len      element count
 *     rndMode  ZIVK_RND_ZERO (truncate), ZIVK_RND_NEAR (tie to even) or ZIVK_RND_AWAY
 *              (tie away from zero)
 *     scale    positive and finite; about the divisor (scale 1.0 / 32768 multiplies by
 *              32768)
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR    src or dst is null
 *     ZIVK_STS_SIZE_ERR        len < 1
 *     ZIVK_STS_ROUND_MODE_ERR  rndMode above 2, for a signed target (8s 16s 32s 64s)
 *     ZIVK_STS_ROUND_RANGE_ERR rndMode above 2, for an unsigned target (8u 16u)
 *     ZIVK_STS_SCALE_ERR       scale <= 0, infinite or NaN
 *
 * Note: a bad rndMode gives a different status by the target's signedness: 402 into a
 *   signed type, 200 into an unsigned one. rndMode is compared as unsigned, so -1 is
 *   refused like 3, and a bad rndMode is reported before a bad scale.
 *
 * Note: no value is an error: NaN gives 0, +inf the maximum, -inf the minimum, and a
 *   negative value gives 0 in an unsigned target in every mode.
 *
 * Note: scale acts as the power of two toward 1: every scale strictly between 0.5 and
 *   2 converts unscaled, and scale 3 halves.
 *
 * Note: scale at or below 2^-128 (float32 source) or 2^-1024 (float64) makes M
 *   infinite: every non-zero element saturates by its sign and a zero gives 0.
 *
 * Note: with ZIVK_RND_NEAR two float64 inputs round differently in the tail, the last
 *   len % B elements (B = 8 into 8u and 8s, 4 into 16u, 16s, 32s and 64s), than in
 *   whole blocks: a product of +-0.49999999999999994 gives +-1 in the tail and 0 in a
 *   block, and in Convert_64f64s_S an odd whole product from 2^52 to 2^53 in size
 *   moves one step away from zero in the tail and stays in a block. Float32 sources,
 *   and the other two modes, give the same result at every position. */
ZIVKS_API ZIVKStatus ZIVKS_Convert_32f8u_S(const float* src, uint8_t* dst, int32_t len, ZIVKRoundMode rndMode, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32f16u_S(const float* src, uint16_t* dst, int32_t len, ZIVKRoundMode rndMode, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_64f8u_S(const double* src, uint8_t* dst, int32_t len, ZIVKRoundMode rndMode, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_64f16u_S(const double* src, uint16_t* dst, int32_t len, ZIVKRoundMode rndMode, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32f8s_S(const float* src, int8_t* dst, int32_t len, ZIVKRoundMode rndMode, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32f16s_S(const float* src, int16_t* dst, int32_t len, ZIVKRoundMode rndMode, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32f32s_S(const float* src, int32_t* dst, int32_t len, ZIVKRoundMode rndMode, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_64f8s_S(const double* src, int8_t* dst, int32_t len, ZIVKRoundMode rndMode, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_64f16s_S(const double* src, int16_t* dst, int32_t len, ZIVKRoundMode rndMode, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_64f32s_S(const double* src, int32_t* dst, int32_t len, ZIVKRoundMode rndMode, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_64f64s_S(const double* src, int64_t* dst, int32_t len, ZIVKRoundMode rndMode, double scale);
/** @} */

/** @name ZIVKS_Convert: exact and widening conversions
 * @{ */
/** Each element into a wider integer or a float, never saturated:
 *
 *     8u32f 8s32f 16u32f 16s32f   the integer value, exact
 *     8s16s 16s32s                sign-extended, exact
 *     32s64f 32f64f               exact (NaN and infinities carried over)
 *     32s32f 64s64f               the nearest float, a tie to the even one (16777217
 *                                 gives 16777216.0)
 *     64f32f                      the nearest float32, a tie to the even one; beyond
 *                                 float32's range an infinity of the value's sign; NaN
 *                                 stays NaN
 *     16s32f_S 32s32f_S           the element as float32 (32s rounded first), times M in
 *                                 float32
 *     16s64f_S 32s64f_S           the element as float64, times M in float64
 *
 * with M the power of two that scale selects (see common.h). No value is normalised:
 * 255 gives 255.0.
 *
 * Parameters:
 *
 *     src    len elements read
 *     dst    len elements written
 *     len    element count
 *     scale  (_S) positive and finite
 *
 * Statuses, in order of checks: ZIVK_STS_NULL_PTR_ERR, ZIVK_STS_SIZE_ERR (len < 1),
 *   ZIVK_STS_SCALE_ERR (_S only).
 *
 * Note: the _S forms always multiply, also by 1. For scale at or below 2^-128 the
 *   float32 M is infinite: a non-zero element gives an infinity of its sign, and 0 gives
 *   the default NaN (0 times infinity), which is stored as it is. */
ZIVKS_API ZIVKStatus ZIVKS_Convert_8u32f(const uint8_t* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_8s16s(const int8_t* src, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_8s32f(const int8_t* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_16u32f(const uint16_t* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_16s32s(const int16_t* src, int32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_16s32f(const int16_t* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32s32f(const int32_t* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32s64f(const int32_t* src, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32f64f(const float* src, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_64s64f(const int64_t* src, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_64f32f(const double* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_16s32f_S(const int16_t* src, float* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_16s64f_S(const int16_t* src, double* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32s32f_S(const int32_t* src, float* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32s64f_S(const int32_t* src, double* dst, int32_t len, double scale);
/** @} */

/** @name ZIVKS_Convert: narrowing integer conversions
 * @{ */
/** Each element into a narrower integer:
 *
 *     8s8u      a negative element gives 0, any other is copied
 *     32s16s    clamped to -32768 and 32767
 *     8u8s_S    element times M, rounded by rndMode, clamped to -128 and 127
 *     16s8s_S   element times M (float32), rounded by rndMode, clamped to int8
 *     32s16s_S  element times M (float64), rounded to nearest (a tie to the even
 *               neighbour), clamped to int16
 *     64s32s_S  element as float64 (beyond 2^53 the low bits go first), times M, rounded
 *               by rndMode, clamped to int32
 *
 * with M the power of two that scale selects (see common.h) and rndMode ZIVK_RND_ZERO
 * (truncate), ZIVK_RND_NEAR (tie to even) or ZIVK_RND_AWAY (tie away from zero).
 *
 * Parameters:
 *
 *     src      len elements read
 *     dst      len elements written
 *     len      element count
 *     rndMode  see below for which members check it
 *     scale    positive and finite
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR    src or dst is null
 *     ZIVK_STS_SIZE_ERR        len < 1
 *     ZIVK_STS_ROUND_MODE_ERR  16s8s_S and 64s32s_S: rndMode above 2 (compared as
 *                              unsigned, so -1 is refused too), before scale
 *     ZIVK_STS_SCALE_ERR       scale <= 0, infinite or NaN
 *
 * Note: ZIVKS_Convert_8u8s_S never checks rndMode and reads it only when scale is 2 or
 *   more: 0 truncates, 1 rounds a tie to even, and every other value (negative ones
 *   too) rounds a tie away from zero. For scale below 1 it shifts left and truncates;
 *   at a scale between 0.5 and 2 it only clamps at 127. Its whole blocks of 16 shift
 *   by the low byte of k = log2(1 / scale) read as signed: for scale at or below
 *   2^-128 they shift right by 256 - k, rounding half up (k = 256: no shift), while the
 *   last len % 16 elements saturate every non-zero value.
 *
 * Note: with ZIVK_RND_NEAR, ZIVKS_Convert_64s32s_S rounds a product of
 *   +-0.49999999999999994 to +-1 in its last element when len is odd, and to 0 in the
 *   pairs before it. */
ZIVKS_API ZIVKStatus ZIVKS_Convert_8s8u(const int8_t* src, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32s16s(const int32_t* src, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_8u8s_S(const uint8_t* src, int8_t* dst, int32_t len, ZIVKRoundMode rndMode,
                                          double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_16s8s_S(const int16_t* src, int8_t* dst, int32_t len, ZIVKRoundMode rndMode,
                                           double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32s16s_S(const int32_t* src, int16_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_64s32s_S(const int64_t* src, int32_t* dst, int32_t len, ZIVKRoundMode rndMode,
                                            double scale);
/** @} */

/** @name ZIVKS_Convert: packed 24-bit samples
 * @{ */
/** A packed sample is 3 bytes, least significant first: b0 + 256 * b1 + 65536 * b2;
 * 24u runs from 0 to 16777215, 24s is two's complement from -8388608 to 8388607. Packed
 * arrays are plain byte arrays of 3 * len bytes, with no alignment. No value is
 * normalised: a sample converts to its integer value, and floats written are taken in
 * integer units.
 *   24u32u 24u32f 24s32s 24s32f  unpack, exact (24s sign-extended)
 *   32u24u_S 32s24s_S            element times M, rounded to nearest (a tie to the
 *                                even neighbour), clamped to the 24-bit range
 *   32f24u_S 32f24s_S            the same from float32; NaN gives 0, +inf the
 *                                maximum, -inf the minimum
 * with M the power of two that scale selects (see common.h).
 *
 * Parameters:
 *
 *     src    len samples read (3 * len bytes when packed)
 *     dst    len samples written (3 * len bytes when packed)
 *     len    sample count
 *     scale  (_S) positive and finite
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or dst is null
 *     ZIVK_STS_SIZE_ERR      len < 1; for 24s32s and 24s32f len < 3
 *     ZIVK_STS_SCALE_ERR     (_S) scale <= 0, infinite or NaN
 *
 * Note: ZIVKS_Convert_24s32s and ZIVKS_Convert_24s32f refuse one or two samples (status
 *   2, nothing written) where the unsigned forms take them.
 *
 * Note: every call reads and writes only the 3 * len bytes of its packed array: the
 *   caller needs no room or readable bytes beyond them.
 *
 * Note: ZIVKS_Convert_32u24u_S and ZIVKS_Convert_32s24s_S with scale below 1 shift left
 *   in whole blocks of 8 samples, taking the count from the low byte of
 *   k = log2(1 / scale) read as signed: for scale at or below 2^-128 the blocks shift
 *   right by 256 - k, rounding half up (k = 256: no shift), while the last len % 8
 *   samples saturate every non-zero value. */
ZIVKS_API ZIVKStatus ZIVKS_Convert_24u32u(const uint8_t* src, uint32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_24u32f(const uint8_t* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_24s32s(const uint8_t* src, int32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_24s32f(const uint8_t* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32u24u_S(const uint32_t* src, uint8_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32s24s_S(const int32_t* src, uint8_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32f24u_S(const float* src, uint8_t* dst, int32_t len, double scale);
ZIVKS_API ZIVKStatus ZIVKS_Convert_32f24s_S(const float* src, uint8_t* dst, int32_t len, double scale);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_CONVERT_H */
