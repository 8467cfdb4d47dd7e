/** @file
 * zivks/sort.h: sorting and selection. Comparison sorts in place, index sorts in
 * place, radix sorts with a work buffer, stable radix index sorts over strided keys,
 * and the k largest values of a strided column.
 *
 * The handles of this header (`policy`) are plain blocks of bytes made by the family's
 * Init through ZIVKS_Malloc_8u and freed by its Release. They carry no header: a sort
 * cannot tell how a handle was made, so the caller keeps each handle with the length
 * and element type it was made for. A handle belongs to one call at a time. */
#ifndef ZIVKS_SORT_H
#define ZIVKS_SORT_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Comparison sorts ================================================================ */

/** @name ZIVKS_SortAscend, SortDescend: comparison sorts in place
 * @{ */
/** Sorts srcDst in place, rising (Ascend) or falling (Descend), with no work buffer.
 *
 * Types: 8u 16u 16s 32s 32f 64f.
 *
 * Parameters:
 *
 *     srcDst  len elements, sorted in place
 *     len     element count
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  srcDst is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * How: 8u counts values in a local table and writes runs. 16u and 16s count the same
 * way from len 4096 on, in a table of 65536 counters taken from ZIVKS_Malloc_32s and
 * freed before the call returns; below 4096, or when that allocation fails (which is
 * not reported: the status stays ZIVK_STS_NO_ERR), they use the C library's qsort,
 * as 32s, 32f and 64f always do.
 *
 * Note: the qsort comparators are one-sided (1 when the first element belongs after
 *   the second, else 0; never negative). For 32f and 64f a NaN compares equal to
 *   everything, so where NaNs end up, and how far an array holding one is sorted, is
 *   up to the C library's qsort. Without NaN the result is sorted; -0.0 and +0.0
 *   compare equal and come in no defined order between themselves.
 *
 * Note: qsort may allocate on its own. */
ZIVKS_API ZIVKStatus ZIVKS_SortAscend_8u_I(uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortAscend_16u_I(uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortAscend_16s_I(int16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortAscend_32s_I(int32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortAscend_32f_I(float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortAscend_64f_I(double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortDescend_8u_I(uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortDescend_16u_I(uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortDescend_16s_I(int16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortDescend_32s_I(int32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortDescend_32f_I(float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortDescend_64f_I(double* srcDst, int32_t len);
/** @} */

/* ==== Index sorts ===================================================================== */

/** @name ZIVKS_SortIndexAscend, SortIndexDescend: index sorts in place
 * @{ */
/** Sorts srcDst in place, rising or falling, and writes to dstIdx[p] the input position
 * of the key now at place p.
 *
 * Types: 8u 16u 16s 32s 32f 64f.
 *
 * Parameters:
 *
 *     srcDst  len keys, sorted in place
 *     dstIdx  len positions written
 *     len     element count
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  srcDst or dstIdx is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * How: a randomised three-way quicksort that moves keys and positions together,
 * without a work buffer; the pivot of a range [lo, hi] is lo + rand() % (hi - lo).
 *
 * Note: every call runs srand(time(NULL)) and draws from rand(): it reseeds the
 *   process-wide generator, and two calls on different threads disturb each other's
 *   pivots (not the order of a NaN-free result).
 *
 * Note: not stable. Equal keys come in an order that depends on rand(), that is on the
 *   clock second of the call. dstIdx is always a permutation of 0 .. len-1 with
 *   srcDst[p] equal to the input key at dstIdx[p].
 *
 * Note: a NaN key compares equal to everything, and a NaN pivot leaves its whole range
 *   as it stands, so an array with a NaN may come out only partly sorted. -0.0 and
 *   +0.0 compare equal.
 *
 * Note: the recursion depth follows the luck of the pivots; in the worst case it is
 *   len. */
ZIVKS_API ZIVKStatus ZIVKS_SortIndexAscend_8u_I(uint8_t* srcDst, int32_t* dstIdx, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortIndexAscend_16u_I(uint16_t* srcDst, int32_t* dstIdx, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortIndexAscend_16s_I(int16_t* srcDst, int32_t* dstIdx, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortIndexAscend_32s_I(int32_t* srcDst, int32_t* dstIdx, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortIndexAscend_32f_I(float* srcDst, int32_t* dstIdx, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortIndexAscend_64f_I(double* srcDst, int32_t* dstIdx, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortIndexDescend_8u_I(uint8_t* srcDst, int32_t* dstIdx, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortIndexDescend_16u_I(uint16_t* srcDst, int32_t* dstIdx, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortIndexDescend_16s_I(int16_t* srcDst, int32_t* dstIdx, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortIndexDescend_32s_I(int32_t* srcDst, int32_t* dstIdx, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortIndexDescend_32f_I(float* srcDst, int32_t* dstIdx, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SortIndexDescend_64f_I(double* srcDst, int32_t* dstIdx, int32_t len);
/** @} */

/* ==== Radix sorts ===================================================================== */

/** @name ZIVKS_SortRadixInit, ZIVKS_SortRadixRelease
 * @{ */
/** Init makes the work buffer of the radix sorts for arrays of up to len elements of
 * dataType and stores it in *policy; Release frees it.
 *
 * Parameters:
 *
 *     len       the longest array the buffer is for
 *     dataType  ZIVK_DT_8U, 16U, 16S, 32U, 32S, 32F, 64U, 64S or 64F
 *     policy    Init: where the buffer is stored. Release: the buffer, or null
 *
 * Sizes: 1024 bytes for 8u, 262144 for 16u and 16s (both whatever len is), len * 4
 * for the 32-bit types and len * 8 for the 64-bit types. One buffer serves every sort
 * of the same element size up to its len, in both directions (32u, 32s and 32f share).
 *
 * Statuses of Init, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR   policy is null
 *     ZIVK_STS_SIZE_ERR       len < 1
 *     ZIVK_STS_DATA_TYPE_ERR  dataType is none of the nine
 *     ZIVK_STS_MALLOC_ERR     no memory, *policy unwritten
 *
 * Note: a byte count that does not fit an int32 (len above 0x1FFFFFFF for the 32-bit
 *   types, above 0x0FFFFFFF for the 64-bit types) is answered with
 *   ZIVK_STS_MALLOC_ERR, not with ZIVK_STS_SIZE_ERR.
 *
 * Release hands policy to ZIVKS_Free without a test and returns ZIVK_STS_NO_ERR. */
ZIVKS_API ZIVKStatus ZIVKS_SortRadixInit(int32_t len, ZIVKDataType dataType, uint8_t** policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixRelease(uint8_t* policy);
/** @} */

/** @name ZIVKS_SortRadixAscend, SortRadixDescend: radix sorts in place
 * @{ */
/** Sorts srcDst in place by the bits of its elements, rising or falling, with the work
 * buffer policy.
 *
 * Types: 8u 16u 16s 32u 32s 32f 64u 64s 64f.
 *
 * Parameters:
 *
 *     srcDst  len elements, sorted in place
 *     len     element count, at most the len the buffer was made for
 *     policy  a buffer from ZIVKS_SortRadixInit for this element size
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  srcDst or policy is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * How: 8u, 16u and 16s are counting sorts. The 32- and 64-bit types are stable
 * least-significant-digit radix sorts with 8-bit digits, always all 4 (8) passes.
 * Signed types sort with the sign bit flipped, float types sort their bit patterns
 * as signed integers and then reverse the leading block of negative numbers.
 *
 * Note: the buffer is not checked: a len above the one given at Init overruns it.
 *
 * Note: a signed or float sort works on the caller's array step by step (the sign bit
 *   is flipped while it runs): the array must not be read during the call.
 *
 * Note: float order, Ascend (Descend is the exact reverse), for arrays without -0.0:
 *   NaNs with the sign set by falling payload, -inf, negative numbers rising, +0.0,
 *   positive numbers rising, +inf, NaNs with the sign clear by rising payload. A
 *   -0.0 is not counted as negative: an array that holds one keeps its negative
 *   block in bit order, that is -0.0 first and the negative numbers by rising
 *   magnitude (Descend: reversed, at the end). The radix index sorts order -0.0 as
 *   a value.
 *
 * Note: when every element of a float array is a negative number or a NaN with the
 *   sign set, the sort also reads the element just after the array (Descend: just
 *   before it), and if that word is a NaN with the sign set it reverses on into it as
 *   though it belonged to the array. Keep that word readable, and not such a NaN,
 *   when an array may hold nothing else. */
ZIVKS_API ZIVKStatus ZIVKS_SortRadixAscend_8u_I(uint8_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixAscend_16u_I(uint16_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixAscend_16s_I(int16_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixAscend_32u_I(uint32_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixAscend_32s_I(int32_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixAscend_32f_I(float* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixAscend_64u_I(uint64_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixAscend_64s_I(int64_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixAscend_64f_I(double* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixDescend_8u_I(uint8_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixDescend_16u_I(uint16_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixDescend_16s_I(int16_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixDescend_32u_I(uint32_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixDescend_32s_I(int32_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixDescend_32f_I(float* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixDescend_64u_I(uint64_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixDescend_64s_I(int64_t* srcDst, int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixDescend_64f_I(double* srcDst, int32_t len, uint8_t* policy);
/** @} */

/* ==== Radix index sorts =============================================================== */

/** @name ZIVKS_SortRadixIndexInit, ZIVKS_SortRadixIndexRelease
 * @{ */
/** Init makes the work buffer of the radix index sorts for up to len keys of dataType
 * and stores it in *policy; Release frees it.
 *
 * Parameters: as ZIVKS_SortRadixInit.
 *
 * Sizes: 1024 bytes for 8u, 262144 for 16u and 16s, len * 12 for the 32-bit types and
 * len * 24 for the 64-bit types.
 *
 * Statuses of Init, in order of checks: as ZIVKS_SortRadixInit.
 *
 * Note: len above 0x0AAAAAAA (32-bit types) or 0x05555555 (64-bit types) gives
 *   ZIVK_STS_MALLOC_ERR: its byte count does not fit an int32.
 *
 * Release hands policy to ZIVKS_Free without a test and returns ZIVK_STS_NO_ERR. */
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexInit(int32_t len, ZIVKDataType dataType, uint8_t** policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexRelease(uint8_t* policy);
/** @} */

/** @name ZIVKS_SortRadixIndexAscend_<T>, ZIVKS_SortRadixIndexDescend_<T>
 * @{ */
/** The stable sorting permutation of len keys read at a byte stride: dstIdx[p] is the
 * input position of the key that belongs at place p, rising or falling. The keys are
 * not written.
 *
 * Types: 8u 16u 16s 32u 32s 32f 64u 64s 64f.
 *
 * Parameters:
 *
 *     src        the first key; key i is read at the byte address src + i * srcStride
 *     srcStride  bytes from one key to the next: at least the key's size, any multiple
 *                or none (a field of an array of records)
 *     dstIdx     len positions written
 *     len        key count, at most the len the buffer was made for
 *     policy     a buffer from ZIVKS_SortRadixIndexInit for this key size
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src, dstIdx or policy is null
 *     ZIVK_STS_SIZE_ERR      len < 1, or srcStride below the key's size in bytes
 *
 * Ties keep their input order, lowest position first, in both directions: Descend is
 * not the mirror image of Ascend within a tie.
 * Float order, Ascend (Descend is the exact reverse of the classes): NaNs with the
 * sign set by falling payload, -inf, negative numbers rising, -0.0, +0.0, positive
 * numbers rising, +inf, NaNs with the sign clear by rising payload.
 *
 * Note: 8u, 16u and 16s read their keys twice (the keys must not change during the
 *   call) and compute the last key's byte offset, (len - 1) * srcStride, in 32 bits:
 *   their keys must lie within 2^31 - 1 bytes of src. */
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexAscend_8u(const uint8_t* src, int32_t srcStride, int32_t* dstIdx,
                                                   int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexAscend_16u(const uint16_t* src, int32_t srcStride, int32_t* dstIdx,
                                                    int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexAscend_16s(const int16_t* src, int32_t srcStride, int32_t* dstIdx,
                                                    int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexAscend_32u(const uint32_t* src, int32_t srcStride, int32_t* dstIdx,
                                                    int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexAscend_32s(const int32_t* src, int32_t srcStride, int32_t* dstIdx,
                                                    int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexAscend_32f(const float* src, int32_t srcStride, int32_t* dstIdx,
                                                    int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexAscend_64u(const uint64_t* src, int32_t srcStride, int32_t* dstIdx,
                                                    int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexAscend_64s(const int64_t* src, int32_t srcStride, int32_t* dstIdx,
                                                    int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexAscend_64f(const double* src, int32_t srcStride, int32_t* dstIdx,
                                                    int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexDescend_8u(const uint8_t* src, int32_t srcStride, int32_t* dstIdx,
                                                    int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexDescend_16u(const uint16_t* src, int32_t srcStride, int32_t* dstIdx,
                                                     int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexDescend_16s(const int16_t* src, int32_t srcStride, int32_t* dstIdx,
                                                     int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexDescend_32u(const uint32_t* src, int32_t srcStride, int32_t* dstIdx,
                                                     int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexDescend_32s(const int32_t* src, int32_t srcStride, int32_t* dstIdx,
                                                     int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexDescend_32f(const float* src, int32_t srcStride, int32_t* dstIdx,
                                                     int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexDescend_64u(const uint64_t* src, int32_t srcStride, int32_t* dstIdx,
                                                     int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexDescend_64s(const int64_t* src, int32_t srcStride, int32_t* dstIdx,
                                                     int32_t len, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_SortRadixIndexDescend_64f(const double* src, int32_t srcStride, int32_t* dstIdx,
                                                     int32_t len, uint8_t* policy);
/** @} */

/* ==== TopK ============================================================================ */

/** @name ZIVKS_TopKInit_<T>, ZIVKS_TopKRelease
 * @{ */
/** Init makes the work buffer of `ZIVKS_TopK_<T>` for len keys and k results with method,
 * stores it in *policy, and presets the outputs: dstIdx[j] = -1 and dstVal[j] the
 * least value (32s: INT32_MIN; 32f: -FLT_MAX, bits 0xFF7FFFFF, not -inf) for j < k.
 *
 * Release frees the buffer.
 *
 * Types: 32s 32f.
 *
 * Parameters:
 *
 *     len             the key count of the calls to come
 *     dstVal, dstIdx  k entries each, preset
 *     k               how many results the caller wants
 *     method          0 automatic, 1 quick selection, 2 radix selection
 *     policy          Init: where the buffer is stored. Release: the buffer, or null
 *
 * The automatic rule: method 2 when min(len, k) > 32 and 2049 <= len <= 0x7FFFFFF,
 * else method 1. Sizes, rounded up to a multiple of 16: len * 8 bytes for method 1;
 * len * 16 + 1024 (32s) or + 2048 (32f) for method 2.
 *
 * Statuses of Init, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR     dstVal, dstIdx or policy is null
 *     ZIVK_STS_SIZE_ERR         k < 1 or len < 1
 *     ZIVK_STS_TOPK_METHOD_ERR  method is not 0, 1 or 2
 *     ZIVK_STS_BUFFER_SIZE_ERR  the buffer would be too large: len above 0x0FFFFFFD
 *                               (method 1), 0x07FFFFBE (method 2, 32s) or 0x07FFFF7E
 *                               (method 2, 32f)
 *     ZIVK_STS_MALLOC_ERR       no memory
 *     Nothing is preset and *policy is unwritten on any of them.
 *
 * Note: method 0 with a len just below 0x7FFFFFF picks method 2 and is answered with
 *   ZIVK_STS_BUFFER_SIZE_ERR; it does not fall back to method 1.
 *
 * Release hands policy to ZIVKS_Free without a test and returns ZIVK_STS_NO_ERR. */
ZIVKS_API ZIVKStatus ZIVKS_TopKInit_32s(int32_t len, int32_t* dstVal, int32_t* dstIdx, int32_t k, int32_t method,
                                        uint8_t** policy);
ZIVKS_API ZIVKStatus ZIVKS_TopKInit_32f(int32_t len, float* dstVal, int32_t* dstIdx, int32_t k, int32_t method,
                                        uint8_t** policy);
ZIVKS_API ZIVKStatus ZIVKS_TopKRelease(uint8_t* policy);
/** @} */

/** @name ZIVKS_TopK_<T>
 * @{ */
/** The min(k, len) largest keys of a strided column, largest first, in dstVal, with
 * their positions plus offset in dstIdx. Entries from there on are not written (after
 * Init they keep the preset).
 *
 * Types: 32s 32f.
 *
 * Parameters:
 *
 *     src        the first key; key i is read at the byte address src + i * srcStride
 *     offset     added to every position written to dstIdx
 *     srcStride  bytes from one key to the next
 *     len        key count, and the column's span: len * 4 bytes (see the note)
 *     dstVal     k values written, largest first
 *     dstIdx     k positions written beside them
 *     k          how many results the caller wants
 *     method     0 automatic (the rule of Init, from this call's len and k), 1 quick
 *                selection, 2 radix selection
 *     policy     a buffer from ZIVKS_TopKInit_<T> large enough for the method used
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR     policy, dstIdx, src or dstVal is null
 *     ZIVK_STS_SIZE_ERR         offset < 0, or len > 0x7FFFFFFF - offset
 *     ZIVK_STS_TOPK_STRIDE_ERR  srcStride < 1
 *     ZIVK_STS_SIZE_ERR         len < 1 or k < 1
 *     ZIVK_STS_TOPK_METHOD_ERR  method is not 0, 1 or 2
 *
 * Ties: method 2 is stable, equal keys come lowest position first. Method 1 runs
 * srand(time(NULL)) and draws from rand() on every call (it reseeds the process-wide
 * generator); the order of equal keys is then not defined, and with equal keys around
 * place k the keys ahead of them are the right ones but may not be in falling order.
 *
 * Note: the stride decimates a span of len * 4 bytes: the keys read are those at byte
 *   offsets i * srcStride below len * 4, that is n = ceil(len * 4 / srcStride) keys when
 *   srcStride > 4. The other len - n places count as keys of value 0 with positions n
 *   .. len - 1, and are woven into the output at their rank.
 *
 * Note: 32f leaves out every NaN and every infinity but the first +inf and the first
 *   -inf: with c keys left out, min(k, len - c) entries are written. Gathering moves
 *   non-finite keys aside, so equal finite keys may lose their input order. +0.0 ranks
 *   above -0.0 in method 2; in method 1 they compare equal.
 *
 * Note: nothing checks that policy fits this call's len and method: method 0 with
 *   another len or k than at Init may pick a method whose buffer was not made. */
ZIVKS_API ZIVKStatus ZIVKS_TopK_32s(const int32_t* src, int32_t offset, int32_t srcStride, int32_t len,
                                    int32_t* dstVal, int32_t* dstIdx, int32_t k, int32_t method, uint8_t* policy);
ZIVKS_API ZIVKStatus ZIVKS_TopK_32f(const float* src, int32_t offset, int32_t srcStride, int32_t len, float* dstVal,
                                    int32_t* dstIdx, int32_t k, int32_t method, uint8_t* policy);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_SORT_H */
