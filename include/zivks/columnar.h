/** @file
 * zivks/columnar.h: kernels for column batches of a query engine. Per-row 64-bit
 * hashes of fixed-width, decimal and text columns, the folding of two hash columns
 * into one, and the extreme value of a column with its null rows skipped.
 *
 * Null vectors: `nulls` is an optional int8 array of len entries, one byte a row; a
 * non-zero byte marks the row null, and a null pointer means that no row is null. A
 * hash leaves the dst entry of a null row as it was (preset what you want there); an
 * aggregate skips the row.
 *
 * The hash of these functions is the 64-bit xxHash (XXH64) with seed 0, its primes
 *   P1 = 0x9E3779B185EBCA87  P2 = 0xC2B2AE3D27D4EB4F  P3 = 0x165667B19E3779F9
 *   P4 = 0x85EBCA77C2B2AE63  P5 = 0x27D4EB2F165667C5
 * and its accumulate round round(acc, x) = rotl64(acc + x * P2, 31) * P1, all
 * arithmetic wrapping at 64 bits. */
#ifndef ZIVKS_COLUMNAR_H
#define ZIVKS_COLUMNAR_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A decimal128: 16 bytes of sign and magnitude, the low 64-bit word first, then the
 * high word, whose bit 63 is the sign; the other 127 bits are the magnitude. */
typedef struct ZIVKDecimal128 {
  uint64_t lo; /**< the low 64 bits of the magnitude */
  uint64_t hi; /**< bit 63: the sign; bits 0 to 62: the high bits of the magnitude */
} ZIVKDecimal128;

/* ==== Fixed-width hashes and hash combining ============================================ */

/** @name ZIVKS_Hash_16s, ZIVKS_Hash_32s, ZIVKS_Hash_64s, ZIVKS_Hash_64f, ZIVKS_Hash_bool
 * @{ */
/** dst[i] = the hash of src[i] for every row that is not null.
 *
 * Integers: one accumulate round from zero, round(0, x) = rotl64(x * P2, 31) * P1, of
 * the value sign-extended to 64 bits: no length step, no final avalanche. So 0 hashes
 * to 0, and a value hashes alike in a 16-bit, 32-bit and 64-bit column.
 *
 * 64f: the same round of the raw bits, except that every NaN (any sign and payload)
 * hashes to 0xA7551CC48D5C0000, the round of 0x7FF8000000000000. +0.0 hashes to 0 and
 * -0.0 to 0x617AF2A1C0000000: they go to different groups.
 *
 * bool: a non-zero byte hashes to 1231, a zero byte to 1237.
 *
 * Parameters:
 *
 *     src    len values
 *     len    row count
 *     nulls  len flag bytes, or null for no null rows
 *     dst    len hashes; a null row's entry is not written
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  dst or src is null
 *     ZIVK_STS_SIZE_ERR      len < 1 */
ZIVKS_API ZIVKStatus ZIVKS_Hash_16s(const int16_t* src, int32_t len, const int8_t* nulls, uint64_t* dst);
ZIVKS_API ZIVKStatus ZIVKS_Hash_32s(const int32_t* src, int32_t len, const int8_t* nulls, uint64_t* dst);
ZIVKS_API ZIVKStatus ZIVKS_Hash_64s(const int64_t* src, int32_t len, const int8_t* nulls, uint64_t* dst);
ZIVKS_API ZIVKStatus ZIVKS_Hash_64f(const double* src, int32_t len, const int8_t* nulls, uint64_t* dst);
ZIVKS_API ZIVKStatus ZIVKS_Hash_bool(const uint8_t* src, int32_t len, const int8_t* nulls, uint64_t* dst);
/** @} */

/** @name ZIVKS_CombineHash
 * @{ */
/** dst[i] = src1[i] * 31 + src2[i], wrapping at 64 bits: the hash of a row keyed by two
 * columns. The order of the arguments matters.
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src1, src2 or dst is null
 *     ZIVK_STS_SIZE_ERR      len < 1 */
ZIVKS_API ZIVKStatus ZIVKS_CombineHash(const uint64_t* src1, const uint64_t* src2, int32_t len, uint64_t* dst);
/** @} */

/* ==== Decimal hashes ==================================================================== */

/** @name ZIVKS_Hash_decimal64, ZIVKS_Hash_decimal128
 * @{ */
/** dst[i] = the hash of src[i] for every row that is not null.
 *
 * decimal64: the value itself, as it stands (without nulls, a copy of the column).
 *
 * decimal128: with bit 63 of hi cleared, XXH64 of the 8 bytes of lo XOR XXH64 of the 8
 * bytes of hi (seed 0, each word little-endian). The sign takes no part: +x and -x hash
 * alike, and a record whose two words are equal (zero among them) hashes to 0.
 *
 * Parameters and statuses: as ZIVKS_Hash_64s. */
ZIVKS_API ZIVKStatus ZIVKS_Hash_decimal64(const int64_t* src, int32_t len, const int8_t* nulls, uint64_t* dst);
ZIVKS_API ZIVKStatus ZIVKS_Hash_decimal128(const ZIVKDecimal128* src, int32_t len, const int8_t* nulls,
                                           uint64_t* dst);
/** @} */

/* ==== Varchar hash ====================================================================== */

/** @name ZIVKS_Hash_varchar
 * @{ */
/** dst[i] = XXH64 with seed 0 of the bytes of row i, for every row that is not null: the
 * published algorithm, nothing added, so any conforming XXH64 gives the same values
 * (an empty row: 0xEF46DB3751D8E999).
 *
 * Parameters:
 *
 *     src      the bytes of the column, rows back to back
 *     offsets  len + 1 offsets into src: row i is src[offsets[i]] up to, not including,
 *              src[offsets[i + 1]]; they must not fall and are not checked
 *     len      row count
 *     nulls    len flag bytes, or null for no null rows
 *     dst      len hashes; a null row's entry is not written
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  dst, offsets or src is null
 *     ZIVK_STS_SIZE_ERR      len < 1 */
ZIVKS_API ZIVKStatus ZIVKS_Hash_varchar(const uint8_t* src, const int32_t* offsets, int32_t len,
                                        const int8_t* nulls, uint64_t* dst);
/** @} */

/* ==== Column aggregates ================================================================= */

/** @name ZIVKS_AggMax_<T>, ZIVKS_AggMin_<T>
 * @{ */
/** *dst = the largest (AggMax) or smallest (AggMin) value of the rows that are not null.
 * Only *dst is written; nothing is read from it, so folding batches is the caller's.
 *
 * Types: 16s 32s 64s 64f decimal128 bool, and varchar (below).
 *
 * Parameters:
 *
 *     src    len values
 *     len    row count
 *     nulls  len flag bytes, or null for no null rows
 *     dst    the result
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or dst is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *     Without nulls, 16s, 32s and 64f return what ZIVKS_Max_<T> or ZIVKS_Min_<T> returns:
 *     they are that call, with its NaN rules (zivks/statistics.h).
 *
 * With nulls, the running value starts from a bound, which is also the result when every
 * row is null: AggMax from INT16_MIN, INT32_MIN, INT64_MIN, -DBL_MAX (0xFFEFFFFFFFFFFFFF,
 * finite), -(10^38 - 1) and 0 (bool); AggMin from INT16_MAX, INT32_MAX, INT64_MAX,
 * DBL_MAX, 10^38 - 1 and 1. Without nulls, 64s and decimal128 start from row 0.
 * Rows go in blocks of 8 and a tail of len % 8 rows; with nulls, a block whose 8 flags
 * are all zero is clean and reduced as a whole, any other block is folded row by row.
 *
 * Note: 64f with nulls: a bound is finite, so -inf never beats the AggMax start (nor
 *   +inf the AggMin start). A NaN row, or a clean block holding a NaN, replaces the
 *   running value, and the next row or clean block replaces a NaN: a NaN is the result
 *   only when it comes from the last row or clean block folded. Zeros of both signs
 *   compare equal and the later one stays, but within a clean block +0.0 ranks above
 *   -0.0.
 *
 * Note: decimal128 compares as signed 128-bit values (a sign-set record is minus its
 *   magnitude), and the result comes back in sign-and-magnitude form, a zero always
 *   with its sign clear. With nulls a value beyond +-(10^38 - 1) loses to the bound.
 *
 * Note: bool folds raw bytes, so a stored byte above 1 can be AggMax's result, except
 *   where a form reduces to 0 or 1: without nulls the result is 1 or 0 (AggMax: any
 *   byte non-zero; AggMin: every byte non-zero, where the bytes of the first len & ~15
 *   rows count only by their lowest bit). With nulls, a clean block gives 1 or 0: in
 *   AggMin it is folded by the minimum, in AggMax it replaces the running value, so an
 *   earlier true is lost when a later clean block is all false. */
ZIVKS_API ZIVKStatus ZIVKS_AggMax_16s(const int16_t* src, int32_t len, const int8_t* nulls, int16_t* dst);
ZIVKS_API ZIVKStatus ZIVKS_AggMax_32s(const int32_t* src, int32_t len, const int8_t* nulls, int32_t* dst);
ZIVKS_API ZIVKStatus ZIVKS_AggMax_64s(const int64_t* src, int32_t len, const int8_t* nulls, int64_t* dst);
ZIVKS_API ZIVKStatus ZIVKS_AggMax_64f(const double* src, int32_t len, const int8_t* nulls, double* dst);
ZIVKS_API ZIVKStatus ZIVKS_AggMax_decimal128(const ZIVKDecimal128* src, int32_t len, const int8_t* nulls,
                                             ZIVKDecimal128* dst);
ZIVKS_API ZIVKStatus ZIVKS_AggMax_bool(const uint8_t* src, int32_t len, const int8_t* nulls, uint8_t* dst);
ZIVKS_API ZIVKStatus ZIVKS_AggMin_16s(const int16_t* src, int32_t len, const int8_t* nulls, int16_t* dst);
ZIVKS_API ZIVKStatus ZIVKS_AggMin_32s(const int32_t* src, int32_t len, const int8_t* nulls, int32_t* dst);
ZIVKS_API ZIVKStatus ZIVKS_AggMin_64s(const int64_t* src, int32_t len, const int8_t* nulls, int64_t* dst);
ZIVKS_API ZIVKStatus ZIVKS_AggMin_64f(const double* src, int32_t len, const int8_t* nulls, double* dst);
ZIVKS_API ZIVKStatus ZIVKS_AggMin_decimal128(const ZIVKDecimal128* src, int32_t len, const int8_t* nulls,
                                             ZIVKDecimal128* dst);
ZIVKS_API ZIVKStatus ZIVKS_AggMin_bool(const uint8_t* src, int32_t len, const int8_t* nulls, uint8_t* dst);
/** @} */

/** @name ZIVKS_AggMax_varchar, ZIVKS_AggMin_varchar
 * @{ */
/** The largest or smallest row of a text column in byte order (bytes compared as
 * unsigned, a proper prefix below the longer text), copied to dst with its length in
 * *dstLen. Ties keep the earliest row. An empty row is the least text: AggMin returns it
 * when there is one, AggMax only when every row is empty.
 *
 * Parameters:
 *
 *     src, offsets, len  the column, as for ZIVKS_Hash_varchar (no null vector)
 *     dst                room for the longest row
 *     dstLen             the result's length
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src, offsets, dst or dstLen is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * Note: an empty result writes *dstLen = 0 and leaves dst untouched. */
ZIVKS_API ZIVKStatus ZIVKS_AggMax_varchar(const uint8_t* src, const int32_t* offsets, int32_t len, uint8_t* dst,
                                          int32_t* dstLen);
ZIVKS_API ZIVKStatus ZIVKS_AggMin_varchar(const uint8_t* src, const int32_t* offsets, int32_t len, uint8_t* dst,
                                          int32_t* dstLen);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_COLUMNAR_H */
