/* zivks/convert.h: conversions between element types. */
#ifndef ZIVKS_CONVERT_H
#define ZIVKS_CONVERT_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- ZIVKS_Convert_<F><I>_S: floating point to integers --------------------------------
 * dst[i] = saturate(round(src[i] * M)): M the power of two that scale selects (see
 * common.h), the product made once in the source's precision, rounded by rndMode,
 * then clamped to the target's range.
 *
 * Types: from 32f or 64f into 8u 16u 8s 16s 32s, and 64f into 64s.
 * Parameters:
 *   src      len floats
 *   dst      len integers written
 *   len      element count
 *   rndMode  ZIVK_RND_ZERO (truncate), ZIVK_RND_NEAR (tie to even) or ZIVK_RND_AWAY
 *            (tie away from zero)
 *   scale    positive and finite; about the divisor (scale 1.0 / 32768 multiplies by
 *            32768)
 * Statuses, in order of checks:
 *   ZIVK_STS_NULL_PTR_ERR    src or dst is null
 *   ZIVK_STS_SIZE_ERR        len < 1
 *   ZIVK_STS_ROUND_MODE_ERR  rndMode above 2, for a signed target (8s 16s 32s 64s)
 *   ZIVK_STS_ROUND_RANGE_ERR rndMode above 2, for an unsigned target (8u 16u)
 *   ZIVK_STS_SCALE_ERR       scale <= 0, infinite or NaN
 * Note: a bad rndMode gives a different status by the target's signedness: 402 into a
 *   signed type, 200 into an unsigned one. rndMode is compared as unsigned, so -1 is
 *   refused like 3, and a bad rndMode is reported before a bad scale.
 * Note: no value is an error: NaN gives 0, +inf the maximum, -inf the minimum, and a
 *   negative value gives 0 in an unsigned target in every mode.
 * Note: scale acts as the power of two toward 1: every scale strictly between 0.5 and
 *   2 converts unscaled, and scale 3 halves.
 * Note: scale at or below 2^-128 (float32 source) or 2^-1024 (float64) makes M
 *   infinite: every non-zero element saturates by its sign and a zero gives 0.
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

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_CONVERT_H */
