// The core services: aligned allocation, free, the version record and status texts.
#include <stdlib.h>

#include "zivk_core.h"

#define ZIVK_STR2(x) #x
#define ZIVK_STR(x) ZIVK_STR2(x)

namespace {

// Cache-line alignment suits every element type and every vector width in use.
constexpr size_t kAlignment = 64;

const ZIVKLibVersion kVersion = {
    ZIVK_VERSION_MAJOR, ZIVK_VERSION_MINOR, ZIVK_VERSION_PATCH, "zivks",
    ZIVK_STR(ZIVK_VERSION_MAJOR) "." ZIVK_STR(ZIVK_VERSION_MINOR) "." ZIVK_STR(ZIVK_VERSION_PATCH),
    ZIVK_BACKEND_NAME};

struct StatusText {
  ZIVKStatus status;
  const char* text;
};

const StatusText kTexts[] = {
    {ZIVK_STS_NO_ERR, "No error"},
    {ZIVK_STS_NULL_PTR_ERR, "Null pointer error: a required pointer is null"},
    {ZIVK_STS_SIZE_ERR, "Size error: a length is out of range"},
    {ZIVK_STS_TOPK_METHOD_ERR, "TopK method error: the method is not 0, 1 or 2"},
    {ZIVK_STS_MALLOC_ERR, "Memory allocation error: working memory could not be allocated"},
    {ZIVK_STS_TRIANGLE_ERR, "Triangle error: phase, asymmetry, frequency or magnitude out of range"},
    {ZIVK_STS_MASK_SIZE_ERR, "Mask size error: the median mask length is out of range"},
    {ZIVK_STS_ZC_TYPE_ERR, "Zero-crossing type error: the kind is out of range"},
    {ZIVK_STS_SHIFT_ERR, "Shift error: the shift count is negative"},
    {ZIVK_STS_SCALE_ERR, "Scale error: scale is not positive and finite"},
    {ZIVK_STS_ROUND_RANGE_ERR, "Round range error: the rounding mode is above 2"},
    {ZIVK_STS_BUFFER_SIZE_ERR, "Buffer size error: a working buffer's size would overflow"},
    {ZIVK_STS_EVEN_MASK_WARN, "Even mask warning: an even median mask length was reduced by one"},
    {ZIVK_STS_SAMPLE_FACTOR_ERR, "Sample factor error: the sampling factor is below 1"},
    {ZIVK_STS_SAMPLE_PHASE_ERR, "Sample phase error: the sampling phase is out of range"},
    {ZIVK_STS_ROUND_MODE_ERR, "Round mode error: the rounding mode is above 2"},
    {ZIVK_STS_DATA_TYPE_ERR, "Data type error: the data type is not supported by this call"},
    {ZIVK_STS_TOPK_STRIDE_ERR, "TopK stride error: the source stride is below 1"},
};

}  // namespace

extern "C" {

ZIVK_CORE_API void* ZIVK_Malloc(int32_t size) {
  if (size < 1) return nullptr;
  const size_t rounded = (static_cast<size_t>(size) + kAlignment - 1) & ~(kAlignment - 1);
  return aligned_alloc(kAlignment, rounded);
}

ZIVK_CORE_API void ZIVK_Free(void* ptr) { free(ptr); }

ZIVK_CORE_API const ZIVKLibVersion* ZIVK_GetLibVersion(void) { return &kVersion; }

ZIVK_CORE_API const char* ZIVK_GetStatusString(ZIVKStatus status) {
  for (const StatusText& t : kTexts)
    if (t.status == status) return t.text;
  return "Unknown status";
}

}  // extern "C"
