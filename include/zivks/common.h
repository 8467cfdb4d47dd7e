/** @file
 * zivks/common.h: what every zivks header shares.
 *
 * The status type and names (from zivk_core.h), the export macro, the element
 * selectors and the complex records. Included by every subsystem header; an
 * application normally includes "zivks.h", which includes them all.
 *
 * Conventions of every function
 * -----------------------------
 *  - Names are `ZIVKS_<Operation>_<types>[_<modes>]`. A trailing C in the operation
 *    (AddC, AndC, LShiftC) means one operand is the constant val, the same for every
 *    element; SubCRev is val minus the element. Two type codes mean source then
 *    destination (Convert_32f16s_S reads float and writes int16). Mode I is in place:
 *    the array srcDst is read and written. Mode S is scaled (a scale argument, last);
 *    IS is both.
 *  - Type codes: 8u 8s 16u 16s 32u 32s 64u 64s (integers of that width, u unsigned,
 *    s signed), 32f 64f (IEEE 754 binary32, binary64), 24u (a packed three-byte
 *    sample), and the complex records 8sc 16sc 32sc 64sc 32fc 64fc (ZIVK16sc, ...).
 *  - Arguments come as sources, then val, then the destination, then len, then the
 *    family's own parameters (rndMode before scale, scale last). Scalar results come
 *    back through pointers after len (pMax, pIndx). Index results are int32_t.
 *  - len counts elements; a complex number is one element.
 *  - Every function but the allocation and information ones returns a ZIVKStatus:
 *    ZIVK_STS_NO_ERR (0) on success. After an error status nothing has been written:
 *    no output array, no output pointer.
 *  - Checks come first, in a fixed order: a null required pointer gives
 *    ZIVK_STS_NULL_PTR_ERR (which pointer cannot be told), then len < 1 gives
 *    ZIVK_STS_SIZE_ERR, then the family's own parameters. A length of zero is an
 *    error, not an empty success. A family with another order says so.
 *  - Sub subtracts its first array from its second: dst[i] = src2[i] - src1[i], and
 *    in place srcDst[i] - src[i].
 *  - An in-place form is, unless its family says otherwise, its out-of-place twin
 *    called with srcDst as both source and destination, and returns the twin's
 *    status.
 *  - dst may be exactly a source of the same element width. Any other overlap gives
 *    no defined result, except in ZIVKS_Move_*.
 *  - Arrays need only their element's natural alignment. Elements are handled in
 *    whole blocks from the start, then a scalar tail of the last len % B elements.
 *    Where a block and the tail give different results, the family's Notes say so
 *    and give B; elsewhere the position of an element never changes its result.
 *  - scale never acts as a free factor: it selects a power of two M, the result
 *    being roughly the exact one divided by scale. M = 2^e with e = log2(1 / scale)
 *    truncated toward zero, so scale moves to a power of two in the direction of 1:
 *    scale 3 acts as 2, scale 0.3 as 0.5, and every scale between 0.5 and 2
 *    (exclusive) as 1. scale must be positive and finite, else ZIVK_STS_SCALE_ERR.
 *  - A function allocates only where its family says so, keeps no state between
 *    calls, and never prints, sets errno or aborts. Calls on disjoint arrays may run
 *    on any threads at once.
 */
#ifndef ZIVKS_COMMON_H
#define ZIVKS_COMMON_H

#include <stdint.h>

#include "../zivk_core.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Marks a function of libzivks_base.so. Empty for a caller. */
#if defined(ZIVKS_BUILDING)
#define ZIVKS_API __attribute__((visibility("default")))
#else
#define ZIVKS_API
#endif

/** Element selector of the sort, radix-sort and median-filter Init functions. */
typedef enum ZIVKDataType {
  ZIVK_DT_8U = 1,
  ZIVK_DT_16U = 5,
  ZIVK_DT_16S = 7,
  ZIVK_DT_32U = 9,
  ZIVK_DT_32S = 11,
  ZIVK_DT_32F = 13,
  ZIVK_DT_64U = 15,
  ZIVK_DT_64S = 17,
  ZIVK_DT_64F = 19
} ZIVKDataType;

/** Rounding selector of the scaled conversions. It travels as a 32-bit value and is
 * compared as unsigned: anything above 2, negative values included, is refused. */
typedef enum ZIVKRoundMode {
  ZIVK_RND_ZERO = 0, /**< truncate toward zero */
  ZIVK_RND_NEAR = 1, /**< to nearest, a tie to the even neighbour */
  ZIVK_RND_AWAY = 2  /**< to nearest, a tie away from zero */
} ZIVKRoundMode;

/* Complex records: re then im, nothing between them, so an array of them is an
 * interleaved array of parts. A complex constant val travels by value. */
/** A complex number of int8 parts. */
typedef struct ZIVK8sc { int8_t re; /**< real part */ int8_t im; /**< imaginary part */ } ZIVK8sc;
/** A complex number of int16 parts. */
typedef struct ZIVK16sc { int16_t re; /**< real part */ int16_t im; /**< imaginary part */ } ZIVK16sc;
/** A complex number of int32 parts. */
typedef struct ZIVK32sc { int32_t re; /**< real part */ int32_t im; /**< imaginary part */ } ZIVK32sc;
/** A complex number of int64 parts. */
typedef struct ZIVK64sc { int64_t re; /**< real part */ int64_t im; /**< imaginary part */ } ZIVK64sc;
/** A complex number of float parts. */
typedef struct ZIVK32fc { float re; /**< real part */ float im; /**< imaginary part */ } ZIVK32fc;
/** A complex number of double parts. */
typedef struct ZIVK64fc { double re; /**< real part */ double im; /**< imaginary part */ } ZIVK64fc;

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_COMMON_H */
