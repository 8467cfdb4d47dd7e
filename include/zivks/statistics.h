/** @file
 * zivks/statistics.h: extremes and their positions, element-wise extremes, counting,
 * nearest match, NaN replacement and zero crossings. */
#ifndef ZIVKS_STATISTICS_H
#define ZIVKS_STATISTICS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name ZIVKS_Max, Min, MinMax
 * @{ */
/** The largest (Max), smallest (Min) or both (MinMax) elements of src.
 *
 * Types: Max, Min: 16s 32s 32f 64f. MinMax: 8u 16u 32u 16s 32s 32f 64f.
 *
 * Parameters:
 *
 *     src         len elements
 *     len         element count
 *     pMax, pMin  the result, written once on success
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or a result pointer is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * Note: float NaN depends on position. Whole blocks (the first len - len % B
 *   elements, B = 32 for 8u, 16 for 16-bit, 8 for 32-bit and 4 for 64-bit types) and
 *   src[0] propagate NaN; the last len % B elements are compared one at a time, and a
 *   NaN there is skipped. So the result is NaN when a NaN lies in the blocks or at
 *   src[0] (both results for MinMax), and a NaN in the tail is ignored.
 *
 * Note: whole blocks order -0 below +0; in the tail the two compare equal and the
 *   zero found first stays. */
ZIVKS_API ZIVKStatus ZIVKS_Max_16s(const int16_t* src, int32_t len, int16_t* pMax);
ZIVKS_API ZIVKStatus ZIVKS_Max_32s(const int32_t* src, int32_t len, int32_t* pMax);
ZIVKS_API ZIVKStatus ZIVKS_Max_32f(const float* src, int32_t len, float* pMax);
ZIVKS_API ZIVKStatus ZIVKS_Max_64f(const double* src, int32_t len, double* pMax);
ZIVKS_API ZIVKStatus ZIVKS_Min_16s(const int16_t* src, int32_t len, int16_t* pMin);
ZIVKS_API ZIVKStatus ZIVKS_Min_32s(const int32_t* src, int32_t len, int32_t* pMin);
ZIVKS_API ZIVKStatus ZIVKS_Min_32f(const float* src, int32_t len, float* pMin);
ZIVKS_API ZIVKStatus ZIVKS_Min_64f(const double* src, int32_t len, double* pMin);
ZIVKS_API ZIVKStatus ZIVKS_MinMax_8u(const uint8_t* src, int32_t len, uint8_t* pMin, uint8_t* pMax);
ZIVKS_API ZIVKStatus ZIVKS_MinMax_16u(const uint16_t* src, int32_t len, uint16_t* pMin, uint16_t* pMax);
ZIVKS_API ZIVKStatus ZIVKS_MinMax_32u(const uint32_t* src, int32_t len, uint32_t* pMin, uint32_t* pMax);
ZIVKS_API ZIVKStatus ZIVKS_MinMax_16s(const int16_t* src, int32_t len, int16_t* pMin, int16_t* pMax);
ZIVKS_API ZIVKStatus ZIVKS_MinMax_32s(const int32_t* src, int32_t len, int32_t* pMin, int32_t* pMax);
ZIVKS_API ZIVKStatus ZIVKS_MinMax_32f(const float* src, int32_t len, float* pMin, float* pMax);
ZIVKS_API ZIVKStatus ZIVKS_MinMax_64f(const double* src, int32_t len, double* pMin, double* pMax);
/** @} */

/** @name ZIVKS_MaxAbs, MinAbs
 * @{ */
/** The largest (MaxAbs) or smallest (MinAbs) absolute value of the elements of src.
 *
 * Types: 16s 32s 32f 64f.
 *
 * Parameters:
 *
 *     src                len elements
 *     len                element count
 *     pMaxAbs, pMinAbs   the result, written once on success
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or the result pointer is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * Blocks are B = 16 (16s), 8 (32s, 32f) and 4 (64f) elements; the last len % B
 * elements are the tail.
 *
 * Note: integer absolute values saturate: -32768 counts as 32767, -2147483648 as
 *   2147483647.
 *
 * Note: ZIVKS_MaxAbs_32s from 8 elements on starts its blocks at element 8 and seeds
 *   them with src[0] as it stands: elements 1 to 7 are never read, and src[0] counts
 *   with its sign. The result is the larger of src[0] and the absolute values from
 *   index 8 on; at exactly 8 elements it is src[0], which can be negative
 *   (-5 -100 0 0 0 0 0 0 gives -5).
 *
 * Note: the float MaxAbs from B elements on is never below the smallest normal number
 *   (1.17549435e-38 for 32f, 2.2250738585072014e-308 for 64f), which seeds the blocks:
 *   8 float zeros give 1.17549435e-38, 7 give 0.
 *
 * Note: the float MinAbs is never above the largest finite number, its seed at every
 *   length: a vector of infinities gives FLT_MAX (DBL_MAX), not infinity.
 *
 * Note: NaN as in Max (a NaN in a block or at src[0] gives NaN, one in the tail is
 *   skipped), except that MinAbs also skips a NaN at src[0] of a vector shorter than
 *   B: a short vector of NaN gives the seed. */
ZIVKS_API ZIVKStatus ZIVKS_MaxAbs_16s(const int16_t* src, int32_t len, int16_t* pMaxAbs);
ZIVKS_API ZIVKStatus ZIVKS_MaxAbs_32s(const int32_t* src, int32_t len, int32_t* pMaxAbs);
ZIVKS_API ZIVKStatus ZIVKS_MaxAbs_32f(const float* src, int32_t len, float* pMaxAbs);
ZIVKS_API ZIVKStatus ZIVKS_MaxAbs_64f(const double* src, int32_t len, double* pMaxAbs);
ZIVKS_API ZIVKStatus ZIVKS_MinAbs_16s(const int16_t* src, int32_t len, int16_t* pMinAbs);
ZIVKS_API ZIVKStatus ZIVKS_MinAbs_32s(const int32_t* src, int32_t len, int32_t* pMinAbs);
ZIVKS_API ZIVKStatus ZIVKS_MinAbs_32f(const float* src, int32_t len, float* pMinAbs);
ZIVKS_API ZIVKStatus ZIVKS_MinAbs_64f(const double* src, int32_t len, double* pMinAbs);
/** @} */

/** @name ZIVKS_MaxIndx, MinIndx, MinMaxIndx, MaxAbsIndx, MinAbsIndx
 * @{ */
/** The extreme element and the index of its first occurrence: for data without NaN,
 * a tie goes to the lowest index. The Abs forms work on saturated absolute values
 * (-32768 counts as 32767 and ties with it by position) and write that value, never
 * negative.
 *
 * Types: MaxIndx, MinIndx: 16s 32s 32f 64f. MinMaxIndx: 8u 16u 32u 16s 32s 32f 64f.
 *   MaxAbsIndx, MinAbsIndx: 16s 32s.
 *
 * Parameters:
 *
 *     src                  len elements
 *     len                  element count
 *     pMax, pMin, ...      the extreme value, written once on success
 *     pIndx, pMinIndx, ... its index, written once on success
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or a result pointer is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * Blocks are B = 32 (8u), 16 (16-bit), 8 (32-bit) and 4 (64-bit) elements; the last
 * len % B elements are the tail.
 *
 * Note: the Abs forms start from a constant at index 0, not from src[0]: 0 for
 *   MaxAbsIndx, 32767 (2147483647) for MinAbsIndx. All zeros give 0 at index 0, and
 *   -32768 32767 gives 32767 at index 0 in MinAbsIndx_16s.
 *
 * Note: a float NaN inside a block hides that whole block: none of its elements can
 *   be the result (MaxIndx_32f on 1 NaN 5 2 0 0 0 0 gives 1 at index 0). A NaN in the
 *   tail is skipped alone.
 *
 * Note: a NaN at src[0] stays the result, and its index is B - 1 (7 for 32f, 3 for
 *   64f) from B elements on, 0 below.
 *
 * Note: -0 and +0 compare equal, so the value written can be the other zero than the
 *   one at the index written. */
ZIVKS_API ZIVKStatus ZIVKS_MaxIndx_16s(const int16_t* src, int32_t len, int16_t* pMax, int32_t* pIndx);
ZIVKS_API ZIVKStatus ZIVKS_MaxIndx_32s(const int32_t* src, int32_t len, int32_t* pMax, int32_t* pIndx);
ZIVKS_API ZIVKStatus ZIVKS_MaxIndx_32f(const float* src, int32_t len, float* pMax, int32_t* pIndx);
ZIVKS_API ZIVKStatus ZIVKS_MaxIndx_64f(const double* src, int32_t len, double* pMax, int32_t* pIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinIndx_16s(const int16_t* src, int32_t len, int16_t* pMin, int32_t* pIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinIndx_32s(const int32_t* src, int32_t len, int32_t* pMin, int32_t* pIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinIndx_32f(const float* src, int32_t len, float* pMin, int32_t* pIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinIndx_64f(const double* src, int32_t len, double* pMin, int32_t* pIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinMaxIndx_8u(const uint8_t* src, int32_t len, uint8_t* pMin, int32_t* pMinIndx, uint8_t* pMax, int32_t* pMaxIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinMaxIndx_16u(const uint16_t* src, int32_t len, uint16_t* pMin, int32_t* pMinIndx, uint16_t* pMax, int32_t* pMaxIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinMaxIndx_32u(const uint32_t* src, int32_t len, uint32_t* pMin, int32_t* pMinIndx, uint32_t* pMax, int32_t* pMaxIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinMaxIndx_16s(const int16_t* src, int32_t len, int16_t* pMin, int32_t* pMinIndx, int16_t* pMax, int32_t* pMaxIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinMaxIndx_32s(const int32_t* src, int32_t len, int32_t* pMin, int32_t* pMinIndx, int32_t* pMax, int32_t* pMaxIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinMaxIndx_32f(const float* src, int32_t len, float* pMin, int32_t* pMinIndx, float* pMax, int32_t* pMaxIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinMaxIndx_64f(const double* src, int32_t len, double* pMin, int32_t* pMinIndx, double* pMax, int32_t* pMaxIndx);
ZIVKS_API ZIVKStatus ZIVKS_MaxAbsIndx_16s(const int16_t* src, int32_t len, int16_t* pMaxAbs, int32_t* pIndx);
ZIVKS_API ZIVKStatus ZIVKS_MaxAbsIndx_32s(const int32_t* src, int32_t len, int32_t* pMaxAbs, int32_t* pIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinAbsIndx_16s(const int16_t* src, int32_t len, int16_t* pMinAbs, int32_t* pIndx);
ZIVKS_API ZIVKStatus ZIVKS_MinAbsIndx_32s(const int32_t* src, int32_t len, int32_t* pMinAbs, int32_t* pIndx);
/** @} */

/** @name ZIVKS_MaxEvery, MinEvery
 * @{ */
/** The element-wise maximum or minimum of two arrays:
 *
 *     dst[i] = max(src1[i], src2[i])  (MinEvery: min)
 *     _I:      srcDst[i] = max(src[i], srcDst[i])
 *
 * Types: out of place 32f 64f; in place 16s 32s 32f 64f (the integer forms exist in
 *   place only).
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  an array pointer is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * In place: the float _I forms are the twin with src as src1 and srcDst as src2 and dst.
 *
 * Note: float NaN and signed zero depend on position. Whole blocks (the first
 *   len - len % 4 elements for 32f, len - len % 2 for 64f) give NaN when either
 *   source is NaN and order -0 below +0. In the tail the result is src1[i] where it is
 *   at or above (MinEvery: at or below) src2[i], else src2[i]: a NaN in src1 is
 *   dropped and a NaN in src2 kept, and between two zeros src1 wins. In place, a tail
 *   NaN in srcDst stays and one in src is dropped. */
ZIVKS_API ZIVKStatus ZIVKS_MaxEvery_32f(const float* src1, const float* src2, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_MaxEvery_64f(const double* src1, const double* src2, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_MinEvery_32f(const float* src1, const float* src2, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_MinEvery_64f(const double* src1, const double* src2, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_MaxEvery_16s_I(const int16_t* src, int16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_MaxEvery_32s_I(const int32_t* src, int32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_MaxEvery_32f_I(const float* src, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_MaxEvery_64f_I(const double* src, double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_MinEvery_16s_I(const int16_t* src, int16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_MinEvery_32s_I(const int32_t* src, int32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_MinEvery_32f_I(const float* src, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_MinEvery_64f_I(const double* src, double* srcDst, int32_t len);
/** @} */

/** @name ZIVKS_CountInRange_32s
 * @{ */
/** *pCount = the number of elements with lowerBound < src[i] < upperBound.
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or pCount is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * Note: both bounds are excluded, despite the name: bounds 5 and 7 count the 6s only.
 *
 * Note: bounds with no integer between them (lowerBound + 1 >= upperBound) give 0
 *   without reading src. */
ZIVKS_API ZIVKStatus ZIVKS_CountInRange_32s(const int32_t* src, int32_t len, int32_t* pCount, int32_t lowerBound, int32_t upperBound);
/** @} */

/** @name ZIVKS_FindNearestOne_16u, ZIVKS_FindNearest_16u
 * @{ */
/** The entry of an ascending table nearest to a value, and its index.
 *   FindNearestOne: *pNearest = the table entry nearest to val, *pIndx = its index.
 *   FindNearest:    the same for every src[i], into dst[i] and dstIndx[i].
 *
 * Parameters:
 *
 *     table     tableLen entries in ascending order (not checked)
 *     tableLen  entry count
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  a pointer is null
 *     ZIVK_STS_SIZE_ERR      tableLen < 1 (FindNearest: also len < 1)
 *
 * Note: a tie between two entries goes to the lower index, so to the smaller value
 *   (table 10 20: val 15 gives 10, val 16 gives 20).
 *
 * Note: the search goes by halves and stops at the first probe equal to val: with
 *   equal entries in the table, the index need not be the first of them.
 *
 * Note: an unsorted table gives no error, only an unspecified entry. */
ZIVKS_API ZIVKStatus ZIVKS_FindNearestOne_16u(uint16_t val, uint16_t* pNearest, int32_t* pIndx, const uint16_t* table, int32_t tableLen);
ZIVKS_API ZIVKStatus ZIVKS_FindNearest_16u(const uint16_t* src, uint16_t* dst, int32_t* dstIndx, int32_t len, const uint16_t* table, int32_t tableLen);
/** @} */

/** @name ZIVKS_ReplaceNAN_<T>_I
 * @{ */
/** srcDst[i] = val wherever srcDst[i] is a NaN (of either sign or any payload); every
 * other element keeps its bits.
 *
 * Types: 32f 64f.
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  srcDst is null
 *     ZIVK_STS_SIZE_ERR      len < 1 */
ZIVKS_API ZIVKStatus ZIVKS_ReplaceNAN_32f_I(float val, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_ReplaceNAN_64f_I(double val, double* srcDst, int32_t len);
/** @} */

/** @name ZIVKS_ZeroCrossing_<T>
 * @{ */
/** *pValue = how many of the len - 1 neighbouring pairs (src[i - 1], src[i]) change
 * sign, as a float count, not divided by len. kind chooses what a change is:
 *
 *     0  the product of the two samples is below 0
 *     1  the sign bits differ
 *     2  |sign(a) - sign(b)| with sign values -1, 0, +1, summed, then halved: a pair
 *        across zero counts 1, a pair touching zero one half
 *
 * Types: 32f, and 16s32f (int16 samples, a float result).
 *
 * Parameters:
 *
 *     src     len samples
 *     len     sample count
 *     pValue  the count, written once on success
 *     kind    0, 1 or 2
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or pValue is null
 *     ZIVK_STS_SIZE_ERR      len == 0
 *     ZIVK_STS_ZC_TYPE_ERR   kind above 2, compared as unsigned (so negative too)
 *
 * Note: a negative len is not refused: it is read as an unsigned count (-1 means
 *   4294967295 samples), unlike everywhere else in the library.
 *
 * Note: one sample gives 0 (there are no pairs).
 *
 * Note: kind 0 in 32f uses the rounded float product: a pair whose product underflows
 *   to zero does not count (1e-30, -1e-30), nor does a pair with a zero or a NaN.
 *
 * Note: kind 1 counts +0 and -0 as different signs in 32f, and a NaN by its sign bit;
 *   an int16 zero counts as positive.
 *
 * Note: kind 2 of ZeroCrossing_16s32f truncates the result to a whole number, while
 *   ZeroCrossing_32f keeps the half: 1 0 gives 0 and 0.5.
 *
 * Note: kind 2 of ZeroCrossing_32f on a NaN depends on position: a NaN in the pairs
 *   of whole blocks (the first (len - 1) - (len - 1) % 4 pairs) makes the result NaN;
 *   in the remaining pairs it counts as negative.
 *
 * Note: the count is a float: beyond 16777216 it is no longer exact. */
ZIVKS_API ZIVKStatus ZIVKS_ZeroCrossing_16s32f(const int16_t* src, int32_t len, float* pValue, int32_t kind);
ZIVKS_API ZIVKStatus ZIVKS_ZeroCrossing_32f(const float* src, int32_t len, float* pValue, int32_t kind);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_STATISTICS_H */
