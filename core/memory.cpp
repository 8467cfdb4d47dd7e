// Typed allocation, free, version and status text: thin wrappers over the core services,
// which are imported by name and bound at load time.
#include <limits.h>

#include "core/frame.h"

namespace {

// Null for len < 1 and for any len whose byte size does not fit an int32, without a
// call; one unsigned test of len - 1 covers both. Otherwise the core service's answer,
// unchanged: no rounding of the size, no alignment, no clearing.
template <class E>
E* typed_malloc(int32_t len) {
  constexpr uint32_t kMaxLen = INT32_MAX / sizeof(E);
  if (static_cast<uint32_t>(len) - 1u > kMaxLen - 1u) return nullptr;
  return static_cast<E*>(ZIVK_Malloc(len * static_cast<int32_t>(sizeof(E))));
}

}  // namespace

#define ZIVKS_MALLOC(name, type) \
  ZIVKS_EXPORT type* name(int32_t len) { return typed_malloc<type>(len); }

ZIVKS_MALLOC(ZIVKS_Malloc_8u, uint8_t)
ZIVKS_MALLOC(ZIVKS_Malloc_8s, int8_t)
ZIVKS_MALLOC(ZIVKS_Malloc_16u, uint16_t)
ZIVKS_MALLOC(ZIVKS_Malloc_16s, int16_t)
ZIVKS_MALLOC(ZIVKS_Malloc_8sc, ZIVK8sc)
ZIVKS_MALLOC(ZIVKS_Malloc_32u, uint32_t)
ZIVKS_MALLOC(ZIVKS_Malloc_32s, int32_t)
ZIVKS_MALLOC(ZIVKS_Malloc_32f, float)
ZIVKS_MALLOC(ZIVKS_Malloc_16sc, ZIVK16sc)
ZIVKS_MALLOC(ZIVKS_Malloc_64u, uint64_t)
ZIVKS_MALLOC(ZIVKS_Malloc_64s, int64_t)
ZIVKS_MALLOC(ZIVKS_Malloc_64f, double)
ZIVKS_MALLOC(ZIVKS_Malloc_32sc, ZIVK32sc)
ZIVKS_MALLOC(ZIVKS_Malloc_32fc, ZIVK32fc)
ZIVKS_MALLOC(ZIVKS_Malloc_64sc, ZIVK64sc)
ZIVKS_MALLOC(ZIVKS_Malloc_64fc, ZIVK64fc)

// Passed on without a test: what the core does with null is the core's matter.
ZIVKS_EXPORT void ZIVKS_Free(void* ptr) { ZIVK_Free(ptr); }

ZIVKS_EXPORT const ZIVKLibVersion* ZIVKS_GetLibVersion(void) { return ZIVK_GetLibVersion(); }

ZIVKS_EXPORT const char* ZIVKS_GetStatusString(ZIVKStatus status) {
  return ZIVK_GetStatusString(status);
}
