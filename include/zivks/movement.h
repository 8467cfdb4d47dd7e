/** @file
 * zivks/movement.h: copying, filling, reversing, byte swapping, and moving between
 * interleaved complex records and separate parts. */
#ifndef ZIVKS_MOVEMENT_H
#define ZIVKS_MOVEMENT_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name ZIVKS_Copy_<T>, ZIVKS_Move_<T>
 * @{ */
/** dst[i] = src[i] for i < len.
 *
 * Types: 8u 16s 32s 32f 64s 64f 16sc 32sc 32fc 64sc 64fc.
 *
 * Parameters:
 *
 *     src  len elements to copy
 *     dst  len elements written
 *     len  element count
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or dst is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * Overlap: Move gives what dst would hold had src been copied aside first, for any
 * overlap. Copy is for disjoint arrays (or src == dst).
 *
 * Note: elements are raw bits: NaN payloads, signed zeros and denormals pass
 *   unchanged, and two types of the same width behave alike.
 *
 * Note: Copy walks forward and does not test for overlap: with dst above src inside
 *   the same array it overwrites elements before reading them. Use Move. */
ZIVKS_API ZIVKStatus ZIVKS_Copy_8u(const uint8_t* src, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Copy_16s(const int16_t* src, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Copy_32s(const int32_t* src, int32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Copy_32f(const float* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Copy_64s(const int64_t* src, int64_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Copy_64f(const double* src, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Copy_16sc(const ZIVK16sc* src, ZIVK16sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Copy_32sc(const ZIVK32sc* src, ZIVK32sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Copy_32fc(const ZIVK32fc* src, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Copy_64sc(const ZIVK64sc* src, ZIVK64sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Copy_64fc(const ZIVK64fc* src, ZIVK64fc* dst, int32_t len);

ZIVKS_API ZIVKStatus ZIVKS_Move_8u(const uint8_t* src, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Move_16s(const int16_t* src, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Move_32s(const int32_t* src, int32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Move_32f(const float* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Move_64s(const int64_t* src, int64_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Move_64f(const double* src, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Move_16sc(const ZIVK16sc* src, ZIVK16sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Move_32sc(const ZIVK32sc* src, ZIVK32sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Move_32fc(const ZIVK32fc* src, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Move_64sc(const ZIVK64sc* src, ZIVK64sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Move_64fc(const ZIVK64fc* src, ZIVK64fc* dst, int32_t len);
/** @} */

/** @name ZIVKS_Set_<T>, ZIVKS_Zero_<T>
 * @{ */
/** Set: dst[i] = val. Zero: dst[i] = 0 (every bit clear, so +0.0 for floats).
 *
 * Types: 8u 16s 32s 32f 64s 64f 16sc 32sc 32fc 64sc 64fc.
 *
 * Parameters:
 *
 *     val  the element stored everywhere, by value (a record for complex types)
 *     dst  len elements written
 *     len  element count
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  dst is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * Note: val is stored as raw bits: a NaN keeps its payload. */
ZIVKS_API ZIVKStatus ZIVKS_Set_8u(uint8_t val, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Set_16s(int16_t val, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Set_32s(int32_t val, int32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Set_32f(float val, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Set_64s(int64_t val, int64_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Set_64f(double val, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Set_16sc(ZIVK16sc val, ZIVK16sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Set_32sc(ZIVK32sc val, ZIVK32sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Set_32fc(ZIVK32fc val, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Set_64sc(ZIVK64sc val, ZIVK64sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Set_64fc(ZIVK64fc val, ZIVK64fc* dst, int32_t len);

ZIVKS_API ZIVKStatus ZIVKS_Zero_8u(uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Zero_16s(int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Zero_32s(int32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Zero_32f(float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Zero_64s(int64_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Zero_64f(double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Zero_16sc(ZIVK16sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Zero_32sc(ZIVK32sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Zero_32fc(ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Zero_64sc(ZIVK64sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Zero_64fc(ZIVK64fc* dst, int32_t len);
/** @} */

/** @name ZIVKS_Flip_<T>, ZIVKS_Flip_<T>_I
 * @{ */
/** Reverses the order of the elements: dst[len - 1 - i] = src[i]. A complex element
 * moves whole: its re and im keep their places.
 *
 * Types: 8u 16u 32f 64f 32fc 64fc, each out of place and in place.
 *
 * Parameters:
 *
 *     src     len elements
 *     dst     len elements written
 *     srcDst  len elements, reversed in place
 *     len     element count
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or dst (srcDst) is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * In place: the _I forms have loops of their own.
 *
 * Note: ZIVKS_Flip_8u_I and ZIVKS_Flip_16u_I exchange 8-byte groups from the two ends
 *   in fixed rounds, and the result is not a reversal where len % 16 (8u) lies from 9
 *   to 14, or len % 8 (16u) is 5 or 6: some middle groups come out reversed in place
 *   or not at all (8u, len 12: 0 1 2 3 7 6 5 4 8 9 10 11; 16u, len 6: 0 1 3 2 4 5).
 *   No status marks it. The out-of-place forms, and the other in-place forms, reverse
 *   at every length. */
ZIVKS_API ZIVKStatus ZIVKS_Flip_8u(const uint8_t* src, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Flip_16u(const uint16_t* src, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Flip_32f(const float* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Flip_64f(const double* src, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Flip_32fc(const ZIVK32fc* src, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Flip_64fc(const ZIVK64fc* src, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Flip_8u_I(uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Flip_16u_I(uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Flip_32f_I(float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Flip_64f_I(double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Flip_32fc_I(ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Flip_64fc_I(ZIVK64fc* srcDst, int32_t len);
/** @} */

/** @name ZIVKS_SwapBytes_<T>, ZIVKS_SwapBytes_<T>_I
 * @{ */
/** Reverses the order of the bytes inside every element.
 *
 * Types: 16u 32u 64u, and 24u: a packed three-byte sample.
 *
 * Parameters:
 *
 *     src     len elements (24u: 3 * len bytes)
 *     dst     len elements written
 *     srcDst  len elements, swapped in place
 *     len     element count; for 24u the number of samples, not of bytes
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or dst (srcDst) is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * In place: the 16u, 32u and 64u forms are their twin called as (srcDst, srcDst, len);
 * SwapBytes_24u_I has a loop of its own with the same result.
 *
 * Note: a 24u sample exchanges its first and third byte; the middle byte stays. */
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_16u(const uint16_t* src, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_24u(const uint8_t* src, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_32u(const uint32_t* src, uint32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_64u(const uint64_t* src, uint64_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_16u_I(uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_24u_I(uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_32u_I(uint32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_64u_I(uint64_t* srcDst, int32_t len);
/** @} */

/** @name ZIVKS_Real_<T>, ZIVKS_Imag_<T>, ZIVKS_CplxToReal_<T>
 * @{ */
/** Real: dst[i] = src[i].re. Imag: dst[i] = src[i].im. CplxToReal: both at once,
 * dstRe[i] = src[i].re and dstIm[i] = src[i].im.
 *
 * Types: 16sc (to int16), 32fc (to float), 64fc (to double).
 *
 * Parameters:
 *
 *     src           len complex elements
 *     dst           len parts written (Real, Imag)
 *     dstRe, dstIm  len parts each, written (CplxToReal)
 *     len           element count
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or an output is null: CplxToReal needs both outputs
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * Note: parts are copied as raw bits (NaN payloads and signed zeros stay). */
ZIVKS_API ZIVKStatus ZIVKS_Real_16sc(const ZIVK16sc* src, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Real_32fc(const ZIVK32fc* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Real_64fc(const ZIVK64fc* src, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Imag_16sc(const ZIVK16sc* src, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Imag_32fc(const ZIVK32fc* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Imag_64fc(const ZIVK64fc* src, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_CplxToReal_16sc(const ZIVK16sc* src, int16_t* dstRe, int16_t* dstIm, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_CplxToReal_32fc(const ZIVK32fc* src, float* dstRe, float* dstIm, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_CplxToReal_64fc(const ZIVK64fc* src, double* dstRe, double* dstIm, int32_t len);
/** @} */

/** @name ZIVKS_RealToCplx_<T>
 * @{ */
/** Joins two arrays of parts: dst[i].re = srcRe[i], dst[i].im = srcIm[i].
 *
 * Types: 16s (to ZIVK16sc), 32f (to ZIVK32fc), 64f (to ZIVK64fc).
 *
 * Parameters:
 *
 *     srcRe, srcIm  len parts each; one of the two may be null
 *     dst           len complex elements written
 *     len           element count
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  dst is null, or srcRe and srcIm are both null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * Note: a null srcRe or srcIm stands for zeros, and the zeros are written (+0.0 for
 *   floats): that part of dst does not keep what it held.
 *
 * Note: parts are copied as raw bits. */
ZIVKS_API ZIVKStatus ZIVKS_RealToCplx_16s(const int16_t* srcRe, const int16_t* srcIm, ZIVK16sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RealToCplx_32f(const float* srcRe, const float* srcIm, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RealToCplx_64f(const double* srcRe, const double* srcIm, ZIVK64fc* dst, int32_t len);
/** @} */

/** @name ZIVKS_Conj_<T>, ZIVKS_Conj_<T>_I
 * @{ */
/** The complex conjugate: dst[i].re = src[i].re, dst[i].im = -src[i].im.
 *
 * Types: 16sc 32fc 64fc, each out of place and in place.
 *
 * Parameters:
 *
 *     src     len complex elements
 *     dst     len complex elements written
 *     srcDst  len complex elements, conjugated in place
 *     len     element count
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  src or dst (srcDst) is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * In place: the _I forms have loops of their own with the same results.
 *
 * Note: ZIVKS_Conj_16sc saturates: an im of -32768 becomes 32767 (re -32768 stays).
 *
 * Note: the float forms flip the sign bit of im and do nothing else: +0.0 becomes
 *   -0.0, and a NaN keeps its payload with its sign flipped. */
ZIVKS_API ZIVKStatus ZIVKS_Conj_16sc(const ZIVK16sc* src, ZIVK16sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Conj_32fc(const ZIVK32fc* src, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Conj_64fc(const ZIVK64fc* src, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Conj_16sc_I(ZIVK16sc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Conj_32fc_I(ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Conj_64fc_I(ZIVK64fc* srcDst, int32_t len);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_MOVEMENT_H */
