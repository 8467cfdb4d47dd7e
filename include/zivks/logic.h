/** @file
 * zivks/logic.h: element-wise bit logic and shifts by a constant, on unsigned and
 * signed integer elements. */
#ifndef ZIVKS_LOGIC_H
#define ZIVKS_LOGIC_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name ZIVKS_And, Or, Xor, AndC, OrC, XorC, Not
 * @{ */
/** Bitwise, element by element:
 *
 *     And, Or, Xor     dst[i] = src1[i] op src2[i]      (_I: srcDst[i] = src[i] op srcDst[i])
 *     AndC, OrC, XorC  dst[i] = src[i] op val           (_I: srcDst[i] = srcDst[i] op val)
 *     Not              dst[i] = ~src[i]                 (_I: srcDst[i] = ~srcDst[i])
 *
 * Types: 8u 16u 32u; val has the element type.
 *
 * Parameters:
 *
 *     src1, src2, src  len elements read
 *     val              the constant operand
 *     dst              len elements written
 *     srcDst           len elements read and written
 *     len              element count
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  an array pointer is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * In place: each _I form is its twin called with srcDst as source and destination.
 *
 * Note: Not has an in-place form for 8u only; there is no ZIVKS_Not_16u_I or
 *   ZIVKS_Not_32u_I. */
ZIVKS_API ZIVKStatus ZIVKS_And_8u(const uint8_t* src1, const uint8_t* src2, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_And_8u_I(const uint8_t* src, uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Or_8u(const uint8_t* src1, const uint8_t* src2, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Or_8u_I(const uint8_t* src, uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Xor_8u(const uint8_t* src1, const uint8_t* src2, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Xor_8u_I(const uint8_t* src, uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AndC_8u(const uint8_t* src, uint8_t val, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AndC_8u_I(uint8_t val, uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_OrC_8u(const uint8_t* src, uint8_t val, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_OrC_8u_I(uint8_t val, uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_XorC_8u(const uint8_t* src, uint8_t val, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_XorC_8u_I(uint8_t val, uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Not_8u(const uint8_t* src, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Not_8u_I(uint8_t* srcDst, int32_t len);

ZIVKS_API ZIVKStatus ZIVKS_And_16u(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_And_16u_I(const uint16_t* src, uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Or_16u(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Or_16u_I(const uint16_t* src, uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Xor_16u(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Xor_16u_I(const uint16_t* src, uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AndC_16u(const uint16_t* src, uint16_t val, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AndC_16u_I(uint16_t val, uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_OrC_16u(const uint16_t* src, uint16_t val, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_OrC_16u_I(uint16_t val, uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_XorC_16u(const uint16_t* src, uint16_t val, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_XorC_16u_I(uint16_t val, uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Not_16u(const uint16_t* src, uint16_t* dst, int32_t len);

ZIVKS_API ZIVKStatus ZIVKS_And_32u(const uint32_t* src1, const uint32_t* src2, uint32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_And_32u_I(const uint32_t* src, uint32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Or_32u(const uint32_t* src1, const uint32_t* src2, uint32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Or_32u_I(const uint32_t* src, uint32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Xor_32u(const uint32_t* src1, const uint32_t* src2, uint32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Xor_32u_I(const uint32_t* src, uint32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AndC_32u(const uint32_t* src, uint32_t val, uint32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AndC_32u_I(uint32_t val, uint32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_OrC_32u(const uint32_t* src, uint32_t val, uint32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_OrC_32u_I(uint32_t val, uint32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_XorC_32u(const uint32_t* src, uint32_t val, uint32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_XorC_32u_I(uint32_t val, uint32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Not_32u(const uint32_t* src, uint32_t* dst, int32_t len);
/** @} */

/** @name ZIVKS_LShiftC_<T>, ZIVKS_RShiftC_<T>
 * @{ */
/** Every element shifted by one count: dst[i] = src[i] << shift, or >> shift.
 *
 * Types: 8u 16u 16s 32s, each out of place and in place.
 *
 * Parameters:
 *
 *     src     len elements
 *     shift   the count, 0 or more; a count at or above the element width is legal
 *     dst     len elements written
 *     srcDst  len elements, shifted in place
 *     len     element count
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or dst (srcDst) is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *     ZIVK_STS_SHIFT_ERR     shift < 0
 *
 * In place: after the srcDst and len checks, a shift of 0 returns ZIVK_STS_NO_ERR at
 * once; any other count calls the twin with srcDst twice (which reports a negative
 * count).
 *
 * Note: left shifts keep the low bits and wrap, also for signed elements, where the
 *   sign can change: LShiftC_16s of 16384 by 1 gives -32768.
 *
 * Note: right shifts are logical for unsigned elements and arithmetic for signed
 *   ones, so a negative value rounds toward minus infinity (-3 >> 1 is -2, -1 >> 1
 *   stays -1).
 *
 * Note: a count at or above the element width zeroes dst without reading src, except
 *   in RShiftC_16s and RShiftC_32s, which shift by width - 1 instead, so that every
 *   element becomes 0 or -1 by its sign. */
ZIVKS_API ZIVKStatus ZIVKS_LShiftC_8u(const uint8_t* src, int32_t shift, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_LShiftC_8u_I(int32_t shift, uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_LShiftC_16u(const uint16_t* src, int32_t shift, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_LShiftC_16u_I(int32_t shift, uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_LShiftC_16s(const int16_t* src, int32_t shift, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_LShiftC_16s_I(int32_t shift, int16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_LShiftC_32s(const int32_t* src, int32_t shift, int32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_LShiftC_32s_I(int32_t shift, int32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RShiftC_8u(const uint8_t* src, int32_t shift, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RShiftC_8u_I(int32_t shift, uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RShiftC_16u(const uint16_t* src, int32_t shift, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RShiftC_16u_I(int32_t shift, uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RShiftC_16s(const int16_t* src, int32_t shift, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RShiftC_16s_I(int32_t shift, int16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RShiftC_32s(const int32_t* src, int32_t shift, int32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RShiftC_32s_I(int32_t shift, int32_t* srcDst, int32_t len);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_LOGIC_H */
