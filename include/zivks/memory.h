/** @file
 * zivks/memory.h: typed allocation, free, version and status text.
 *
 * Thin wrappers over the core services of libzivk_core.so (ZIVK_Malloc, ZIVK_Free,
 * ZIVK_GetLibVersion, ZIVK_GetStatusString), which libzivks_base.so imports by name:
 * link libzivk_core.so, or supply those four functions yourself. */
#ifndef ZIVKS_MEMORY_H
#define ZIVKS_MEMORY_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name ZIVKS_Malloc_<T>
 * @{ */
/** Uninitialised memory for len elements of T, or null.
 *
 * Types: 8u 8s 16u 16s 8sc 32u 32s 32f 16sc 64u 64s 64f 32sc 32fc 64sc 64fc.
 *
 * Parameters:
 *
 *     len  element count (a complex number is one element).
 *
 * Returns: ZIVK_Malloc(len * sizeof(T)), unchanged, or null. There is no status:
 *   every failure is a null pointer.
 *   - len < 1: null, without calling ZIVK_Malloc.
 *   - len * sizeof(T) above INT32_MAX: null, without calling ZIVK_Malloc (so the
 *     largest len is 2147483647 for 1-byte, 1073741823 for 2-byte, 536870911 for
 *     4-byte, 268435455 for 8-byte and 134217727 for 16-byte elements).
 *   - ZIVK_Malloc fails: null.
 *
 * Release with ZIVKS_Free.
 *
 * Note: the size is not rounded and the memory is not cleared; its alignment is what
 *   ZIVK_Malloc gives (64 bytes with libzivk_core.so). */
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
/** @} */

/** @name ZIVKS_Free
 * @{ */
/** Calls ZIVK_Free(ptr) and nothing else.
 *
 * Note: ptr is not tested: what a null does is up to ZIVK_Free (libzivk_core.so
 *   ignores it). */
ZIVKS_API void ZIVKS_Free(void* ptr);
/** @} */

/** @name ZIVKS_GetLibVersion, ZIVKS_GetStatusString
 * @{ */
/** What ZIVK_GetLibVersion() and ZIVK_GetStatusString(status) return, passed on
 * unchanged: a constant version record, and a constant text for any status (an
 * unknown value gets a text that says so). */
ZIVKS_API const ZIVKLibVersion* ZIVKS_GetLibVersion(void);
ZIVKS_API const char* ZIVKS_GetStatusString(ZIVKStatus status);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_MEMORY_H */
