// Typed allocation, free, version and status text, seen through the recording core
// services of the test binary.
#include <limits.h>

#include <set>
#include <string>

#include "support/zt.h"

namespace {

struct AllocMember {
  const char* name;
  void* (*fn)(int32_t);
  int32_t elem;     // bytes per element
  int32_t max_len;  // largest len accepted
};

#define ZT_ALLOC(code, size, max) \
  AllocMember { "Malloc_" #code, [](int32_t n) -> void* { return ZIVKS_Malloc_##code(n); }, size, max }

const AllocMember kAllocs[] = {
    ZT_ALLOC(8u, 1, 2147483647),   ZT_ALLOC(8s, 1, 2147483647),   ZT_ALLOC(16u, 2, 1073741823),
    ZT_ALLOC(16s, 2, 1073741823),  ZT_ALLOC(8sc, 2, 1073741823),  ZT_ALLOC(32u, 4, 536870911),
    ZT_ALLOC(32s, 4, 536870911),   ZT_ALLOC(32f, 4, 536870911),   ZT_ALLOC(16sc, 4, 536870911),
    ZT_ALLOC(64u, 8, 268435455),   ZT_ALLOC(64s, 8, 268435455),   ZT_ALLOC(64f, 8, 268435455),
    ZT_ALLOC(32sc, 8, 268435455),  ZT_ALLOC(32fc, 8, 268435455),  ZT_ALLOC(64sc, 16, 134217727),
    ZT_ALLOC(64fc, 16, 134217727),
};

// Calls fn(len) with the core told to fail, so that huge sizes are asked for but never
// allocated; returns the number of calls the core saw and the size it was asked for.
std::pair<int, int32_t> asked(const AllocMember& m, int32_t len) {
  auto& r = zt::core_record();
  r = {};
  r.fail_next = true;
  void* p = m.fn(len);
  EXPECT_EQ(p, nullptr) << m.name << " " << len;
  const auto out = std::make_pair(r.malloc_calls, r.last_size);
  r = {};
  return out;
}

TEST(Malloc, BoundsAndSizes) {
  for (const auto& m : kAllocs) {
    // The largest len asks for exactly len * size bytes; one more is refused unasked.
    EXPECT_EQ(asked(m, m.max_len), std::make_pair(1, m.max_len * m.elem)) << m.name;
    if (m.max_len < INT32_MAX) {
      EXPECT_EQ(asked(m, m.max_len + 1).first, 0) << m.name;
    }
    for (int32_t bad : {0, -1, -2, INT32_MIN, INT32_MIN + 1})
      EXPECT_EQ(asked(m, bad).first, 0) << m.name << " len " << bad;
    EXPECT_EQ(asked(m, 3), std::make_pair(1, 3 * m.elem)) << m.name;
  }
}

TEST(Malloc, RealAllocationIsUsableAndFreedThroughTheCore) {
  auto& r = zt::core_record();
  for (const auto& m : kAllocs) {
    r = {};
    void* p = m.fn(1000);
    ASSERT_NE(p, nullptr) << m.name;
    EXPECT_EQ(r.last_size, 1000 * m.elem);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(p) % 16, 0u) << m.name;
    memset(p, 0x5A, static_cast<size_t>(1000 * m.elem));
    ZIVKS_Free(p);
    EXPECT_EQ(r.free_calls, 1) << m.name;
  }
  r = {};
}

TEST(CoreServices, VersionAndStatusTextArePassedOn) {
  EXPECT_EQ(ZIVKS_GetLibVersion(), ZIVK_GetLibVersion());
  const ZIVKLibVersion* v = ZIVKS_GetLibVersion();
  ASSERT_NE(v, nullptr);
  EXPECT_EQ(std::string(v->version),
            std::to_string(v->major) + "." + std::to_string(v->minor) + "." + std::to_string(v->patch));
  const ZIVKStatus all[] = {0, 1, 2, 7, 9, 10, 17, 18, 19, 20, 200, 202, 307, 400, 401, 402, 405, 600};
  std::set<std::string> texts;
  for (ZIVKStatus s : all) {
    const char* t = ZIVKS_GetStatusString(s);
    EXPECT_EQ(t, ZIVK_GetStatusString(s));
    ASSERT_NE(t, nullptr);
    texts.insert(t);
  }
  EXPECT_EQ(texts.size(), std::size(all)) << "every status has a text of its own";
  const std::string unknown = ZIVKS_GetStatusString(12345);
  EXPECT_EQ(texts.count(unknown), 0u);
}

TEST(CoreServices, CoreMallocAlignsAndRefusesNonPositiveSizes) {
  EXPECT_EQ(ZIVK_Malloc(0), nullptr);
  EXPECT_EQ(ZIVK_Malloc(-5), nullptr);
  void* p = ZIVK_Malloc(1);
  ASSERT_NE(p, nullptr);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(p) % 64, 0u);
  ZIVK_Free(p);
  ZIVK_Free(nullptr);
}

}  // namespace
