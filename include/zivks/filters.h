/** @file
 * zivks/filters.h: filters. The causal median filter, fed a whole vector or a stream
 * in blocks with a delay line.
 *
 * The handle of this header (ZIVKFilterMedianPolicy) is scratch memory for one call at
 * a time: a plain block of bytes made by ZIVKS_FilterMedianInit through
 * ZIVKS_Malloc_8u and freed by ZIVKS_FilterMedianRelease. It carries no header: a
 * filter call cannot tell how a handle was made, so the caller keeps each handle with
 * the largest mask and the element type it was made for. Two threads filtering at once
 * need two handles. */
#ifndef ZIVKS_FILTERS_H
#define ZIVKS_FILTERS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Median filter =================================================================== */

/** The scratch region of the median filter: room for one window of the mask. */
typedef struct ZIVKFilterMedianPolicy ZIVKFilterMedianPolicy;

/** @name ZIVKS_FilterMedianInit, ZIVKS_FilterMedianRelease
 * @{ */
/** Init makes the scratch region for median masks of up to maskLen elements of
 * dataType and stores it in *policy; Release frees it.
 *
 * Parameters:
 *
 *     maskLen   the longest mask the region is for; an even one counts as maskLen - 1
 *     dataType  ZIVK_DT_8U, 16S, 32S, 32F or 64F
 *     policy    Init: where the region is stored. Release: the region, or null
 *
 * Size: (element size * m + 15) rounded down to a multiple of 16 bytes, m the odd mask
 * (maskLen, or maskLen - 1 when maskLen is even).
 *
 * Statuses of Init, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR    policy is null
 *     ZIVK_STS_MASK_SIZE_ERR   maskLen < 1
 *     ZIVK_STS_DATA_TYPE_ERR   dataType is none of the five
 *     ZIVK_STS_MASK_SIZE_ERR   maskLen >= 2147483632 / element size (2147483632 for 8u,
 *                              1073741816 for 16s, 536870908 for 32s and 32f, 268435454
 *                              for 64f), tested on maskLen as passed
 *     ZIVK_STS_MALLOC_ERR      no memory, *policy unwritten
 *     ZIVK_STS_EVEN_MASK_WARN  a warning: maskLen is even, the region is made for
 *                              maskLen - 1 and must be released
 *
 * Release hands policy to ZIVKS_Free without a test and returns ZIVK_STS_NO_ERR. */
ZIVKS_API ZIVKStatus ZIVKS_FilterMedianInit(int32_t maskLen, ZIVKDataType dataType,
                                            ZIVKFilterMedianPolicy** policy);
ZIVKS_API ZIVKStatus ZIVKS_FilterMedianRelease(ZIVKFilterMedianPolicy* policy);
/** @} */

/** @name ZIVKS_FilterMedian_<T>, ZIVKS_FilterMedian_<T>_I
 * @{ */
/** dst[i] = the median of the m samples that end at src[i]: element m / 2 of the
 * rising sort of x[i - m + 1] .. x[i], where m is maskLen made odd (maskLen - 1 when it
 * is even). The window is causal: it never looks ahead, so the output lags the centred
 * median by (m - 1) / 2 samples.
 *
 * Samples before src[0] come from the delay line dlySrc (m - 1 samples, oldest first:
 * x[-(m - 1)] .. x[-1]); with dlySrc null they are copies of src[0], so dst[0] == src[0].
 * After the work, the last m - 1 input samples src[len - m + 1] .. src[len - 1] are
 * copied to dlyDst when it is not null and m > 1. To filter a stream in blocks without
 * a seam, pass the same array as dlySrc and dlyDst in every call (dlySrc null in the
 * first call) with the same maskLen: the line is read whole before it is written.
 *
 * Types: 8u 16s 32s 32f 64f.
 *
 * Parameters:
 *
 *     src     len samples (dst must not overlap it; use the _I form in place)
 *     dst     len medians
 *     srcDst  _I: len samples, replaced by their medians
 *     len     sample count, at least maskLen
 *     maskLen the window length, 1 or more; m = 1 copies src to dst
 *     dlySrc  m - 1 samples that precede src, or null
 *     dlyDst  room for m - 1 samples, or null; untouched when m is 1
 *     policy  a region from ZIVKS_FilterMedianInit for this type and a mask >= m
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR    policy, dst or src is null (_I: policy or srcDst), or,
 *                              _I only, the temporary copy of srcDst could not be
 *                              allocated (srcDst and dlyDst are then untouched)
 *     ZIVK_STS_SIZE_ERR        len < 1
 *     ZIVK_STS_MASK_SIZE_ERR   maskLen < 1 or maskLen > len, tested on maskLen as passed
 *     ZIVK_STS_EVEN_MASK_WARN  a warning: maskLen is even; the work is done in full with
 *                              m = maskLen - 1
 *
 * How: masks 3, 5, 7 and 9 run exchange networks of min and max over many outputs at
 * once. The first m - 1 outputs, and the last ones (from the end of the network pass
 * rounded down to whole vectors of 16 bytes, m - 1 to m - 2 + 16 / element size of
 * them), are made by copying the window into the handle and sorting it with
 * `ZIVKS_SortAscend_<T>_I`; so is every output of any other mask. The _I forms filter a
 * copy of srcDst taken from `ZIVKS_Malloc_<T>` and freed before the call returns.
 *
 * Note: the float forms treat NaN differently in the two kinds of output. A network
 *   output is NaN whenever its window holds a NaN, and orders -0.0 below +0.0. A sorted
 *   output is whatever stands in the middle after the sort, where a NaN compares equal
 *   to everything (see ZIVKS_SortAscend_32f_I), and -0.0 and +0.0 are equal.
 *
 * Note: _I writes the input samples, not the medians, to dlyDst.
 *
 * Note: the handle is not checked: one made for a smaller mask or another element
 *   type is overrun. */
ZIVKS_API ZIVKStatus ZIVKS_FilterMedian_8u(const uint8_t* src, uint8_t* dst, int32_t len, int32_t maskLen,
                                           const uint8_t* dlySrc, uint8_t* dlyDst,
                                           ZIVKFilterMedianPolicy* policy);
ZIVKS_API ZIVKStatus ZIVKS_FilterMedian_16s(const int16_t* src, int16_t* dst, int32_t len, int32_t maskLen,
                                            const int16_t* dlySrc, int16_t* dlyDst,
                                            ZIVKFilterMedianPolicy* policy);
ZIVKS_API ZIVKStatus ZIVKS_FilterMedian_32s(const int32_t* src, int32_t* dst, int32_t len, int32_t maskLen,
                                            const int32_t* dlySrc, int32_t* dlyDst,
                                            ZIVKFilterMedianPolicy* policy);
ZIVKS_API ZIVKStatus ZIVKS_FilterMedian_32f(const float* src, float* dst, int32_t len, int32_t maskLen,
                                            const float* dlySrc, float* dlyDst,
                                            ZIVKFilterMedianPolicy* policy);
ZIVKS_API ZIVKStatus ZIVKS_FilterMedian_64f(const double* src, double* dst, int32_t len, int32_t maskLen,
                                            const double* dlySrc, double* dlyDst,
                                            ZIVKFilterMedianPolicy* policy);
ZIVKS_API ZIVKStatus ZIVKS_FilterMedian_8u_I(uint8_t* srcDst, int32_t len, int32_t maskLen,
                                             const uint8_t* dlySrc, uint8_t* dlyDst,
                                             ZIVKFilterMedianPolicy* policy);
ZIVKS_API ZIVKStatus ZIVKS_FilterMedian_16s_I(int16_t* srcDst, int32_t len, int32_t maskLen,
                                              const int16_t* dlySrc, int16_t* dlyDst,
                                              ZIVKFilterMedianPolicy* policy);
ZIVKS_API ZIVKStatus ZIVKS_FilterMedian_32s_I(int32_t* srcDst, int32_t len, int32_t maskLen,
                                              const int32_t* dlySrc, int32_t* dlyDst,
                                              ZIVKFilterMedianPolicy* policy);
ZIVKS_API ZIVKStatus ZIVKS_FilterMedian_32f_I(float* srcDst, int32_t len, int32_t maskLen,
                                              const float* dlySrc, float* dlyDst,
                                              ZIVKFilterMedianPolicy* policy);
ZIVKS_API ZIVKStatus ZIVKS_FilterMedian_64f_I(double* srcDst, int32_t len, int32_t maskLen,
                                              const double* dlySrc, double* dlyDst,
                                              ZIVKFilterMedianPolicy* policy);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_FILTERS_H */
