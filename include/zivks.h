/* zivks: exact vector primitives for signal processing and column batches.
 *
 * Every function works on caller-owned arrays and returns a ZIVKStatus (see
 * zivk_core.h): 0 on success; on an error status nothing has been written.
 *
 * Conventions shared by all functions:
 *  - Names are ZIVKS_<Operation>_<types>[_<modes>]: two type codes mean source then
 *    destination; mode I is in place (the array srcDst is read and written), S is scaled.
 *  - Arguments come as sources, then val, then the destination, then len, then the
 *    family's own parameters. len counts elements; a complex number is one element.
 *  - Checks come first and in a fixed order: a null required pointer gives
 *    ZIVK_STS_NULL_PTR_ERR, then len < 1 gives ZIVK_STS_SIZE_ERR, then the family's
 *    own parameters. A length of zero is an error, not an empty success.
 *  - ZIVKS_Sub_* subtracts its first array from its second: dst[i] = src2[i] - src1[i].
 *  - dst may equal a source of the same element width; other overlap gives no defined
 *    result except in ZIVKS_Move_*.
 *  - Arrays need only their element's natural alignment. */
#ifndef ZIVKS_H
#define ZIVKS_H

#include <stdint.h>
#include "zivk_core.h"

#ifdef __cplusplus
extern "C" {
#endif

#if defined(ZIVKS_BUILDING)
#define ZIVKS_API __attribute__((visibility("default")))
#else
#define ZIVKS_API
#endif

/* Element selector of the sort, radix-sort and median-filter Init functions. */
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

/* Rounding selector of the scaled conversions, passed as a 32-bit value and compared as
 * unsigned: anything above 2, negative values included, is refused. */
typedef enum ZIVKRoundMode {
  ZIVK_RND_ZERO = 0, /* truncate toward zero */
  ZIVK_RND_NEAR = 1, /* to nearest, a tie to the even neighbour */
  ZIVK_RND_AWAY = 2  /* to nearest, a tie away from zero */
} ZIVKRoundMode;

/* Complex records: re then im, nothing between them. */
typedef struct ZIVK8sc { int8_t re; int8_t im; } ZIVK8sc;
typedef struct ZIVK16sc { int16_t re; int16_t im; } ZIVK16sc;
typedef struct ZIVK32sc { int32_t re; int32_t im; } ZIVK32sc;
typedef struct ZIVK64sc { int64_t re; int64_t im; } ZIVK64sc;
typedef struct ZIVK32fc { float re; float im; } ZIVK32fc;
typedef struct ZIVK64fc { double re; double im; } ZIVK64fc;

/* ---- Allocation, version and status text ------------------------------------
 * ZIVKS_Malloc_<T>(len) returns uninitialised memory for len elements through
 * ZIVK_Malloc, or null: for len < 1, for len times the element size above INT32_MAX
 * (without calling anything), or when ZIVK_Malloc fails. Free with ZIVKS_Free. */
ZIVKS_API uint8_t* ZIVKS_Malloc_8u(int32_t len);
ZIVKS_API int8_t* ZIVKS_Malloc_8s(int32_t len);
ZIVKS_API uint16_t* ZIVKS_Malloc_16u(int32_t len);
ZIVKS_API int16_t* ZIVKS_Malloc_16s(int32_t len);
ZIVKS_API ZIVK8sc* ZIVKS_Malloc_8sc(int32_t len);
ZIVKS_API uint32_t* ZIVKS_Malloc_32u(int32_t len);
ZIVKS_API int32_t* ZIVKS_Malloc_32s(int32_t len);
ZIVKS_API float* ZIVKS_Malloc_32f(int32_t len);
ZIVKS_API ZIVK16sc* ZIVKS_Malloc_16sc(int32_t len);
ZIVKS_API uint64_t* ZIVKS_Malloc_64u(int32_t len);
ZIVKS_API int64_t* ZIVKS_Malloc_64s(int32_t len);
ZIVKS_API double* ZIVKS_Malloc_64f(int32_t len);
ZIVKS_API ZIVK32sc* ZIVKS_Malloc_32sc(int32_t len);
ZIVKS_API ZIVK32fc* ZIVKS_Malloc_32fc(int32_t len);
ZIVKS_API ZIVK64sc* ZIVKS_Malloc_64sc(int32_t len);
ZIVKS_API ZIVK64fc* ZIVKS_Malloc_64fc(int32_t len);
/* Calls ZIVK_Free(ptr) and nothing else. */
ZIVKS_API void ZIVKS_Free(void* ptr);
/* ZIVK_GetLibVersion() and ZIVK_GetStatusString(status), passed on unchanged. */
ZIVKS_API const ZIVKLibVersion* ZIVKS_GetLibVersion(void);
ZIVKS_API const char* ZIVKS_GetStatusString(ZIVKStatus status);

/* ---- Copy, Move, Set and Zero ----------------------------------------------------
 * Elements are raw bits: NaN payloads, signed zeros and denormals pass unchanged.
 * Copy walks forward and is not overlap-safe; Move gives the result of copying the
 * source aside first, for any overlap. */
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

/* ---- Floating-point arithmetic ---------------------------------------------------
 * One IEEE 754 operation per element (per part for complex types), in the element's
 * precision, never fused. A NaN result carries the payload of a signalling operand
 * first (quietened), else of the first NaN operand, else it is the positive default
 * NaN. Sub: dst = src2 - src1; SubC: src - val; SubCRev: val - src. */
ZIVKS_API ZIVKStatus ZIVKS_Add_32f(const float* src1, const float* src2, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_32f_I(const float* src, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_64f(const double* src1, const double* src2, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_64f_I(const double* src, double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_32fc(const ZIVK32fc* src1, const ZIVK32fc* src2, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_32fc_I(const ZIVK32fc* src, ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_64fc(const ZIVK64fc* src1, const ZIVK64fc* src2, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Add_64fc_I(const ZIVK64fc* src, ZIVK64fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_32f(const float* src1, const float* src2, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_32f_I(const float* src, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_64f(const double* src1, const double* src2, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_64f_I(const double* src, double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_32fc(const ZIVK32fc* src1, const ZIVK32fc* src2, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_32fc_I(const ZIVK32fc* src, ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_64fc(const ZIVK64fc* src1, const ZIVK64fc* src2, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Sub_64fc_I(const ZIVK64fc* src, ZIVK64fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_32f(const float* src, float val, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_32f_I(float val, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_64f(const double* src, double val, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_64f_I(double val, double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_32fc(const ZIVK32fc* src, ZIVK32fc val, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_32fc_I(ZIVK32fc val, ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_64fc(const ZIVK64fc* src, ZIVK64fc val, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_AddC_64fc_I(ZIVK64fc val, ZIVK64fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_32f(const float* src, float val, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_32f_I(float val, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_64f(const double* src, double val, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_64f_I(double val, double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_32fc(const ZIVK32fc* src, ZIVK32fc val, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_32fc_I(ZIVK32fc val, ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_64fc(const ZIVK64fc* src, ZIVK64fc val, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubC_64fc_I(ZIVK64fc val, ZIVK64fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_32f(const float* src, float val, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_32f_I(float val, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_64f(const double* src, double val, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_64f_I(double val, double* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_32fc(const ZIVK32fc* src, ZIVK32fc val, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_32fc_I(ZIVK32fc val, ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_64fc(const ZIVK64fc* src, ZIVK64fc val, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SubCRev_64fc_I(ZIVK64fc val, ZIVK64fc* srcDst, int32_t len);

/* ---- Logical operations ----------------------------------------------------------
 * Element-wise on unsigned 8-, 16- and 32-bit elements: And, Or, Xor of two arrays
 * (dst = src1 op src2), of an array and a constant (dst = src op val), and Not. The
 * in-place forms call their twin with srcDst for the source and the destination. Not
 * has an in-place form for 8-bit elements only. */
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

/* ---- Shifts by a constant -----------------------------------------------------------
 * Every element shifted by shift (status 19 when negative, checked after the pointers
 * and len). Left shifts keep the low bits and wrap, also for signed elements; right
 * shifts are logical for unsigned and arithmetic for signed elements. A count of 0
 * copies. A count at or above the element width zeroes dst without reading src, except
 * in RShiftC_16s and RShiftC_32s, which shift by width - 1 instead. The in-place forms
 * check srcDst and len, return 0 at once for a count of 0, and otherwise call their twin. */
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
/* ---- Flip and byte swapping ------------------------------------------------------
 * Flip reverses the order of the elements (dst[len - 1 - i] = src[i]); a complex
 * element keeps its re and im. ZIVKS_Flip_8u_I and ZIVKS_Flip_16u_I exchange 64-bit
 * blocks from the two ends in fixed rounds and are not reversals where len mod 16
 * (8u) lies from 9 to 14 or len mod 8 (16u) is 5 or 6; the other flips reverse at
 * every length. SwapBytes reverses the bytes of each element; a 24u element is a
 * packed three-byte sample, len counts samples, and the middle byte stays.
 * SwapBytes_16u_I, _32u_I and _64u_I are their twin called as (srcDst, srcDst, len). */
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
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_16u(const uint16_t* src, uint16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_24u(const uint8_t* src, uint8_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_32u(const uint32_t* src, uint32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_64u(const uint64_t* src, uint64_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_16u_I(uint16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_24u_I(uint8_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_32u_I(uint32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_SwapBytes_64u_I(uint64_t* srcDst, int32_t len);

/* ---- Complex split, merge and conjugate --------------------------------------------
 * Real and Imag take one part of every element, CplxToReal both (neither output may
 * be null). RealToCplx joins two arrays into elements; one of srcRe and srcIm may be
 * null and then stands for zeros (+0.0 for floats), which are written. Parts are
 * copied as raw bits. Conj copies re and negates im: int16 with saturation (-32768
 * becomes 32767), floats by flipping the sign bit (a NaN keeps its payload). */
ZIVKS_API ZIVKStatus ZIVKS_Real_16sc(const ZIVK16sc* src, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Real_32fc(const ZIVK32fc* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Real_64fc(const ZIVK64fc* src, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Imag_16sc(const ZIVK16sc* src, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Imag_32fc(const ZIVK32fc* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Imag_64fc(const ZIVK64fc* src, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_CplxToReal_16sc(const ZIVK16sc* src, int16_t* dstRe, int16_t* dstIm, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_CplxToReal_32fc(const ZIVK32fc* src, float* dstRe, float* dstIm, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_CplxToReal_64fc(const ZIVK64fc* src, double* dstRe, double* dstIm, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RealToCplx_16s(const int16_t* srcRe, const int16_t* srcIm, ZIVK16sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RealToCplx_32f(const float* srcRe, const float* srcIm, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_RealToCplx_64f(const double* srcRe, const double* srcIm, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Conj_16sc(const ZIVK16sc* src, ZIVK16sc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Conj_32fc(const ZIVK32fc* src, ZIVK32fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Conj_64fc(const ZIVK64fc* src, ZIVK64fc* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Conj_16sc_I(ZIVK16sc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Conj_32fc_I(ZIVK32fc* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Conj_64fc_I(ZIVK64fc* srcDst, int32_t len);
/* ---- Plain integer arithmetic and absolute value ---------------------------------
 * Exact results, then saturation to the element type; the widening forms cannot
 * overflow. The one exception is ZIVKS_Add_16s32s_I, which wraps modulo 2^32.
 * Abs of the most negative integer gives the largest positive one; the float Abs only
 * clears the sign bit (NaN payloads stay). Sub: dst = src2 - src1, in place
 * srcDst - src; SubC: srcDst - val. */
ZIVKS_API ZIVKStatus ZIVKS_Abs_16s(const int16_t* src, int16_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_16s_I(int16_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_32s(const int32_t* src, int32_t* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_32s_I(int32_t* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_32f(const float* src, float* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_32f_I(float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_64f(const double* src, double* dst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_Abs_64f_I(double* srcDst, int32_t len);
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

/* ---- Scaled saturating element-wise arithmetic ------------------------------------
 * dst = saturate(round(x * M)), x the exact src1 + src2 (Add) or src2 - src1 (Sub; in
 * place srcDst + src and srcDst - src), M the power of two that scale selects:
 * 2^e with e = log2(1 / scale) truncated toward zero (scale 3 acts as 2, anything
 * between 0.5 and 2 as 1). Ties go to the even neighbour. scale must be positive and
 * finite (else ZIVK_STS_SCALE_ERR, after the pointer and length checks). For scales at
 * or below 2^-128 the left-shifting members (8u and 16u) treat whole blocks and the
 * tail differently; ZIVKS_Sub_8u_S and _IS narrow in two steps within each group of 8
 * of a 64-element block, which shows only for scales at or below 2^-9. */
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

/* ---- Floating-point to integer conversions ----------------------------------------
 * dst[i] = saturate(round(src[i] * M)) with M the power of two that scale selects (as
 * above), the product made in the source's precision, rounded by rndMode. NaN gives 0,
 * out-of-range values the target's bound. Checks: pointers, len, then rndMode above 2
 * (compared as unsigned) gives ZIVK_STS_ROUND_MODE_ERR for a signed target and
 * ZIVK_STS_ROUND_RANGE_ERR for an unsigned one, then scale. With ZIVK_RND_NEAR, two
 * float64 inputs round differently in the tail (the last len mod block elements) than
 * in whole blocks: |p| = 0.49999999999999994 gives 1 there, and into int64 an odd whole
 * |p| from 2^52 to 2^53 moves one step away from zero. */
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
/* ---- Extreme values ------------------------------------------------------------
 * The smallest or largest element, or absolute value, without its position. Blocks of
 * two 128-bit vectors are folded into an accumulator, then the tail is tested one
 * element at a time, strictly. Float blocks propagate NaN and order -0 below +0; the
 * tail ignores a NaN element and keeps a NaN running value. Seeds show in the results:
 *  - Max, Min: src[0]. MinMax: the first block (src[0] below one block).
 *  - MaxAbs: src[0] as it stands (integers) or the smallest normal (floats), |src[0]|
 *    below one block; MaxAbs_32s starts its blocks at element 8, so from 8 elements on
 *    it gives the maximum of src[0] (with its sign) and |src[i]| for i >= 8.
 *  - MinAbs: the largest finite value at every length, so the result never exceeds it.
 * Integer absolute values saturate (-32768 counts as 32767). */
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
ZIVKS_API ZIVKStatus ZIVKS_MaxAbs_16s(const int16_t* src, int32_t len, int16_t* pMaxAbs);
ZIVKS_API ZIVKStatus ZIVKS_MaxAbs_32s(const int32_t* src, int32_t len, int32_t* pMaxAbs);
ZIVKS_API ZIVKStatus ZIVKS_MaxAbs_32f(const float* src, int32_t len, float* pMaxAbs);
ZIVKS_API ZIVKStatus ZIVKS_MaxAbs_64f(const double* src, int32_t len, double* pMaxAbs);
ZIVKS_API ZIVKStatus ZIVKS_MinAbs_16s(const int16_t* src, int32_t len, int16_t* pMinAbs);
ZIVKS_API ZIVKStatus ZIVKS_MinAbs_32s(const int32_t* src, int32_t len, int32_t* pMinAbs);
ZIVKS_API ZIVKStatus ZIVKS_MinAbs_32f(const float* src, int32_t len, float* pMinAbs);
ZIVKS_API ZIVKStatus ZIVKS_MinAbs_64f(const double* src, int32_t len, double* pMinAbs);

/* ---- Extreme values with position ------------------------------------------------
 * The extreme and the index of its first occurrence (ties go to the lowest index).
 * Each block of two 128-bit vectors is reduced to its extreme; the first block to beat
 * the running value strictly wins, and a walk over its lanes finds the position (the
 * last lane is taken untested). The tail tests each element strictly. A NaN hides its
 * block, is skipped in the tail, and at src[0] stays as the result with index B - 1
 * (B the block's elements) from one block on, 0 below. -0 and +0 compare equal.
 * Plain forms seed with src[0]; absolute forms work on saturated absolute values and
 * seed with 0 (MaxAbsIndx) or the type's largest value (MinAbsIndx), at index 0. */
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

/* ---- Element-wise extremes, counting and nearest match -----------------------------
 * MaxEvery/MinEvery: dst[i] = the larger (smaller) of src1[i] and src2[i]. Float blocks
 * of one 128-bit vector propagate NaN and order -0 below +0; the float tail gives
 * src1[i] where it is at or above (at or below) src2[i], else src2[i], so there a NaN
 * in src1 is dropped and a NaN in src2 kept. The in-place float forms pass src as src1
 * and srcDst as src2. The integer forms are in place only.
 * CountInRange_32s counts lowerBound < src[i] < upperBound (both bounds excluded).
 * FindNearestOne_16u searches an ascending table by halves; a tie between the two last
 * candidates goes to the lower index. FindNearest_16u does so for every src[i].
 * ReplaceNAN replaces every NaN by val. */
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
ZIVKS_API ZIVKStatus ZIVKS_CountInRange_32s(const int32_t* src, int32_t len, int32_t* pCount, int32_t lowerBound, int32_t upperBound);
ZIVKS_API ZIVKStatus ZIVKS_FindNearestOne_16u(uint16_t val, uint16_t* pNearest, int32_t* pIndx, const uint16_t* table, int32_t tableLen);
ZIVKS_API ZIVKStatus ZIVKS_FindNearest_16u(const uint16_t* src, uint16_t* dst, int32_t* dstIndx, int32_t len, const uint16_t* table, int32_t tableLen);
ZIVKS_API ZIVKStatus ZIVKS_ReplaceNAN_32f_I(float val, float* srcDst, int32_t len);
ZIVKS_API ZIVKStatus ZIVKS_ReplaceNAN_64f_I(double val, double* srcDst, int32_t len);

/* ---- Zero crossing -----------------------------------------------------------------
 * How many neighbouring pairs change sign, as a float32 count (not divided by len).
 * kind 0: the product is below 0 (float32: rounded, so an underflow does not count);
 * kind 1: the sign bits differ (+0 and -0 differ; int16 zero counts as positive);
 * kind 2: |sign(a) - sign(b)| summed and halved, so a touch of zero counts one half;
 * the int16 form truncates the result to a whole number. Checks: pointers, then len
 * equal to 0 (a negative len counts as unsigned), then kind above 2 as unsigned gives
 * ZIVK_STS_ZC_TYPE_ERR. */
ZIVKS_API ZIVKStatus ZIVKS_ZeroCrossing_16s32f(const int16_t* src, int32_t len, float* pValue, int32_t kind);
ZIVKS_API ZIVKStatus ZIVKS_ZeroCrossing_32f(const float* src, int32_t len, float* pValue, int32_t kind);

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_H */
