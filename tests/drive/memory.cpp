// Allocation, free, version and status text. None of them returns a status, so every
// entry is written by hand: what comes back is digested (null or not, the texts) and
// each call finishes with ZIVK_STS_NO_ERR.
#include <stdio.h>

#include <algorithm>

#include "drive.h"

namespace zd {

namespace {

// A length for an allocator whose element is `bytes` wide. Mostly one that asks for at
// most 4 MB; now and then one the allocator must refuse without asking the core
// services: zero, negative, or past the largest length whose byte size fits in int32.
// The largest accepted length itself is never drawn: it would ask for 2 GB.
int32_t allocation_length(Call& c, size_t bytes) {
  Input& in = c.in();
  const int64_t largest = INT32_MAX / int64_t(bytes);
  switch (in.below(8)) {
    case 0:
      return int32_t(in.below(1u << 22) / bytes + 1);
    case 1:
      return in.one_in(4) ? INT32_MIN : -int32_t(in.take<uint32_t>() >> 1);
    case 2:
      if (largest == INT32_MAX) return c.length();  // every positive length is accepted
      return in.one_in(4) ? INT32_MAX : int32_t(largest + 1 + in.below(1000));
    default:
      return c.length();
  }
}

template <class T>
void allocate(Call& c, T* (*fn)(int32_t)) {
  const int32_t len = allocation_length(c, sizeof(T));
  T* p = fn(len);
  const bool refused = len < 1 || int64_t(len) * int64_t(sizeof(T)) > INT32_MAX;
  if (refused && p) fail(c.entry(), "allocated for a length it must refuse: " + std::to_string(len));
  // The lengths drawn ask for a few MB at most, which the core services always give.
  if (!refused && !p) fail(c.entry(), "no memory for " + std::to_string(len) + " elements");
  if (p) {
    if (reinterpret_cast<uintptr_t>(p) % 64) fail(c.entry(), "memory not 64-byte aligned");
    // The first and the last byte promised are there (a short block shows under
    // AddressSanitizer).
    auto* bytes = reinterpret_cast<volatile uint8_t*>(p);
    bytes[0] = 1;
    bytes[size_t(len) * sizeof(T) - 1] = 2;
  }
  c.result(uint8_t(p != nullptr));
  ZIVKS_Free(p);
  c.finish(ZIVK_STS_NO_ERR);
}

void free_entry(Call& c) {
  // A null pointer goes to the core's free, which ignores it.
  uint8_t* p = c.in().one_in(4) ? nullptr : ZIVKS_Malloc_8u(int32_t(c.in().below(5000)) + 1);
  c.result(uint8_t(p != nullptr));
  ZIVKS_Free(p);
  c.finish(ZIVK_STS_NO_ERR);
}

void digest_text(Call& c, const char* s) {
  c.digest().add(s, strlen(s) + 1);
}

void version_entry(Call& c) {
  const ZIVKLibVersion* v = ZIVKS_GetLibVersion();
  if (!v || v != ZIVK_GetLibVersion()) fail(c.entry(), "not the core services' record");
  if (!v->name || !v->version || !v->backend) fail(c.entry(), "a null text in the record");
  char numbers[40];
  snprintf(numbers, sizeof numbers, "%d.%d.%d", int(v->major), int(v->minor), int(v->patch));
  if (strcmp(numbers, v->version)) fail(c.entry(), std::string("version text ") + v->version + " vs " + numbers);
  static const char* const builds[] = {"neon", "generic", "x86-64-v2", "x86-64-v3", "x86-64-v4"};
  if (std::none_of(std::begin(builds), std::end(builds), [&](const char* b) { return !strcmp(b, v->backend); }))
    fail(c.entry(), std::string("unknown build ") + v->backend);
  // The build name differs between builds whose results must agree: it stays out of
  // the digest.
  c.result(v->major);
  c.result(v->minor);
  c.result(v->patch);
  digest_text(c, v->name);
  digest_text(c, v->version);
  c.finish(ZIVK_STS_NO_ERR);
}

void status_text_entry(Call& c) {
  static const ZIVKStatus known[] = {
      ZIVK_STS_NO_ERR,          ZIVK_STS_NULL_PTR_ERR,     ZIVK_STS_SIZE_ERR,         ZIVK_STS_TOPK_METHOD_ERR,
      ZIVK_STS_MALLOC_ERR,      ZIVK_STS_TRIANGLE_ERR,     ZIVK_STS_MASK_SIZE_ERR,    ZIVK_STS_ZC_TYPE_ERR,
      ZIVK_STS_SHIFT_ERR,       ZIVK_STS_SCALE_ERR,        ZIVK_STS_ROUND_RANGE_ERR,  ZIVK_STS_BUFFER_SIZE_ERR,
      ZIVK_STS_EVEN_MASK_WARN,  ZIVK_STS_SAMPLE_FACTOR_ERR, ZIVK_STS_SAMPLE_PHASE_ERR, ZIVK_STS_ROUND_MODE_ERR,
      ZIVK_STS_DATA_TYPE_ERR,   ZIVK_STS_TOPK_STRIDE_ERR};
  const size_t n = sizeof known / sizeof known[0];
  Input& in = c.in();
  ZIVKStatus s;
  switch (in.below(4)) {
    case 0: s = in.take<ZIVKStatus>(); break;                           // any value
    case 1: {  // beside a known one
      const ZIVKStatus k = known[in.below(n)];
      s = k + int32_t(in.below(3)) - 1;
      break;
    }
    default: s = known[in.below(n)];
  }
  const char* text = ZIVKS_GetStatusString(s);
  if (!text || text != ZIVK_GetStatusString(s)) fail(c.entry(), "not the core services' text");
  if (!*text) fail(c.entry(), "an empty text for " + std::to_string(s));
  digest_text(c, text);
  c.finish(ZIVK_STS_NO_ERR);
}

}  // namespace

#define ZD_ALLOCATE(fn) Entry{#fn, [](Call& c) { allocate(c, &fn); }, 0}

void add_memory(std::vector<Entry>& out) {
  const Entry list[] = {
      ZD_ALLOCATE(ZIVKS_Malloc_8u),
      ZD_ALLOCATE(ZIVKS_Malloc_8s),
      ZD_ALLOCATE(ZIVKS_Malloc_16u),
      ZD_ALLOCATE(ZIVKS_Malloc_16s),
      ZD_ALLOCATE(ZIVKS_Malloc_8sc),
      ZD_ALLOCATE(ZIVKS_Malloc_32u),
      ZD_ALLOCATE(ZIVKS_Malloc_32s),
      ZD_ALLOCATE(ZIVKS_Malloc_32f),
      ZD_ALLOCATE(ZIVKS_Malloc_16sc),
      ZD_ALLOCATE(ZIVKS_Malloc_64u),
      ZD_ALLOCATE(ZIVKS_Malloc_64s),
      ZD_ALLOCATE(ZIVKS_Malloc_64f),
      ZD_ALLOCATE(ZIVKS_Malloc_32sc),
      ZD_ALLOCATE(ZIVKS_Malloc_32fc),
      ZD_ALLOCATE(ZIVKS_Malloc_64sc),
      ZD_ALLOCATE(ZIVKS_Malloc_64fc),
      Entry{"ZIVKS_Free", free_entry, 0},
      Entry{"ZIVKS_GetLibVersion", version_entry, 0},
      Entry{"ZIVKS_GetStatusString", status_text_entry, 0},
  };
  out.insert(out.end(), std::begin(list), std::end(list));
}

}  // namespace zd
