/** @file
 * zivk_core: the core services that libzivks_base.so imports by name.
 *
 * Applications link libzivk_core.so beside libzivks_base.so. It supplies aligned
 * allocation, a version record and a text for every status code. */
#ifndef ZIVK_CORE_H
#define ZIVK_CORE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Marks a function of libzivk_core.so. Empty for a caller. */
#if defined(ZIVK_CORE_BUILDING) || defined(ZIVKS_BUILDING)
#define ZIVK_CORE_API __attribute__((visibility("default")))
#else
#define ZIVK_CORE_API
#endif

/** Every function of the library returns a status: 0 for success, 307 for the one
 * warning (the work was done), any other value for an error after which nothing
 * was written. Statuses are never negative. */
typedef int32_t ZIVKStatus;

#define ZIVK_STS_NO_ERR            0   /**< the operation was carried out */
#define ZIVK_STS_NULL_PTR_ERR      1   /**< a required pointer is null */
#define ZIVK_STS_SIZE_ERR          2   /**< a length is out of range, as a rule len < 1 */
#define ZIVK_STS_TOPK_METHOD_ERR   7   /**< TopK method selector not 0, 1 or 2 */
#define ZIVK_STS_MALLOC_ERR        9   /**< working memory could not be allocated */
#define ZIVK_STS_TRIANGLE_ERR      10  /**< triangle phase, asymmetry, frequency or magnitude out of range */
#define ZIVK_STS_MASK_SIZE_ERR     17  /**< median mask length out of range */
#define ZIVK_STS_ZC_TYPE_ERR       18  /**< zero-crossing kind selector out of range */
#define ZIVK_STS_SHIFT_ERR         19  /**< negative shift count */
#define ZIVK_STS_SCALE_ERR         20  /**< scale is not positive and finite */
#define ZIVK_STS_ROUND_RANGE_ERR   200 /**< rndMode above 2 (conversions to an unsigned type) */
#define ZIVK_STS_BUFFER_SIZE_ERR   202 /**< a working buffer's size would overflow */
#define ZIVK_STS_EVEN_MASK_WARN    307 /**< warning: an even median mask was reduced by one */
#define ZIVK_STS_SAMPLE_FACTOR_ERR 400 /**< sampling factor below 1 */
#define ZIVK_STS_SAMPLE_PHASE_ERR  401 /**< sampling phase out of range */
#define ZIVK_STS_ROUND_MODE_ERR    402 /**< rndMode above 2, compared as unsigned */
#define ZIVK_STS_DATA_TYPE_ERR     405 /**< the ZIVKDataType value is not supported by this call */
#define ZIVK_STS_TOPK_STRIDE_ERR   600 /**< TopK srcStride below 1 */

/** The version record. `major`, `minor` and `patch` follow semantic versioning; the
 * soname of both libraries carries `major`. */
typedef struct ZIVKLibVersion {
  int32_t major;       /**< incompatible changes of the interface */
  int32_t minor;       /**< additions that keep compatibility */
  int32_t patch;       /**< fixes */
  const char* name;    /**< "zivks" */
  const char* version; /**< "major.minor.patch" */
  const char* backend; /**< build the core library came with: "neon", "generic", or the x86 level
                        "x86-64-v2", "x86-64-v3", "x86-64-v4" (the loader picks a level's pair
                        of libraries from the glibc-hwcaps folders) */
} ZIVKLibVersion;

/** size bytes (at least 1) aligned to 64 bytes, or null on failure or for size < 1. */
ZIVK_CORE_API void* ZIVK_Malloc(int32_t size);
/** Releases memory from ZIVK_Malloc; null is ignored. */
ZIVK_CORE_API void ZIVK_Free(void* ptr);
/** A constant record that lives as long as the library is loaded. */
ZIVK_CORE_API const ZIVKLibVersion* ZIVK_GetLibVersion(void);
/** A constant text for every status; unknown values get a text that says so. */
ZIVK_CORE_API const char* ZIVK_GetStatusString(ZIVKStatus status);

#ifdef __cplusplus
}
#endif

#endif /* ZIVK_CORE_H */
