// LShiftC and RShiftC.
#include <limits.h>
#include <sys/mman.h>
#include <unistd.h>

#include "support/sweep.h"

namespace {

// The plain C shift of the same width (arithmetic for signed T); a count beyond the
// width gives 0, except in the signed right shifts, which shift by width - 1 instead.
template <class T>
void check(const char* name, bool left, typename zt::Member<T>::Call call, typename zt::Member<T>::Call in_place) {
  zt::Member<T> m;
  m.name = name;
  m.call = call;
  m.in_place = in_place;
  m.rule = zt::each<T, T, int>([left](T x, T, int s, int, int) {
    constexpr int w = 8 * sizeof(T);
    if (s >= w) {
      if (left || std::is_unsigned_v<T>) return T(0);
      s = w - 1;
    }
    if (left) return static_cast<T>(static_cast<uint64_t>(x) << s);
    return static_cast<T>(static_cast<int64_t>(x) >> s);
  });
  constexpr int w = 8 * sizeof(T);
  m.params = {0, 1, 2, w / 2 - 1, w - 1, w, w + 1, 100, INT_MAX};
  m.bad = {{-1, ZIVK_STS_SHIFT_ERR}, {INT_MIN, ZIVK_STS_SHIFT_ERR}};
  zt::check_member(m);
}

#define ZT_SHIFTS(code, T)                                                                                      \
  check<T>("LShiftC_" #code, true, ZT_CALL(ZIVKS_LShiftC_##code, a, p, d, n), ZT_CALL(ZIVKS_LShiftC_##code##_I, p, d, n)); \
  check<T>("RShiftC_" #code, false, ZT_CALL(ZIVKS_RShiftC_##code, a, p, d, n), ZT_CALL(ZIVKS_RShiftC_##code##_I, p, d, n))

TEST(Shifts, EveryMemberIsTheCShift) {
  ZT_SHIFTS(8u, uint8_t);
  ZT_SHIFTS(16u, uint16_t);
  ZT_SHIFTS(16s, int16_t);
  ZT_SHIFTS(32s, int32_t);
}

// Memory the test can forbid: a page with no access, or read-only.
struct Page {
  long size = sysconf(_SC_PAGESIZE);
  void* p;
  explicit Page(int prot) : p(mmap(nullptr, size, prot, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {}
  ~Page() { munmap(p, size); }
};

// Zeroing paths never read src; an in-place call with a count of 0 never writes.
TEST(Shifts, UntouchedMemory) {
  Page none(PROT_NONE), ro(PROT_READ);
  ASSERT_NE(none.p, MAP_FAILED);
  ASSERT_NE(ro.p, MAP_FAILED);
  std::vector<uint16_t> d16(41, 7);
  ASSERT_EQ(ZIVKS_RShiftC_16u(static_cast<const uint16_t*>(none.p), 16, d16.data(), 41), 0);
  ASSERT_EQ(ZIVKS_LShiftC_16u(static_cast<const uint16_t*>(none.p), 99, d16.data(), 41), 0);
  EXPECT_EQ(d16, std::vector<uint16_t>(41, 0));
  std::vector<uint8_t> d8(33, 7);
  ASSERT_EQ(ZIVKS_LShiftC_8u(static_cast<const uint8_t*>(none.p), 8, d8.data(), 33), 0);
  ASSERT_EQ(ZIVKS_RShiftC_8u(static_cast<const uint8_t*>(none.p), 9, d8.data(), 33), 0);
  EXPECT_EQ(d8, std::vector<uint8_t>(33, 0));
  std::vector<int16_t> s16(19, 7);
  ASSERT_EQ(ZIVKS_LShiftC_16s(static_cast<const int16_t*>(none.p), 16, s16.data(), 19), 0);
  EXPECT_EQ(s16, std::vector<int16_t>(19, 0));
  std::vector<int32_t> s32(11, 7);
  ASSERT_EQ(ZIVKS_LShiftC_32s(static_cast<const int32_t*>(none.p), 32, s32.data(), 11), 0);
  EXPECT_EQ(s32, std::vector<int32_t>(11, 0));
  EXPECT_EQ(ZIVKS_LShiftC_8u_I(0, static_cast<uint8_t*>(ro.p), 100), 0);
  EXPECT_EQ(ZIVKS_LShiftC_16u_I(0, static_cast<uint16_t*>(ro.p), 100), 0);
  EXPECT_EQ(ZIVKS_LShiftC_16s_I(0, static_cast<int16_t*>(ro.p), 100), 0);
  EXPECT_EQ(ZIVKS_LShiftC_32s_I(0, static_cast<int32_t*>(ro.p), 100), 0);
  EXPECT_EQ(ZIVKS_RShiftC_8u_I(0, static_cast<uint8_t*>(ro.p), 100), 0);
  EXPECT_EQ(ZIVKS_RShiftC_16u_I(0, static_cast<uint16_t*>(ro.p), 100), 0);
  EXPECT_EQ(ZIVKS_RShiftC_16s_I(0, static_cast<int16_t*>(ro.p), 100), 0);
  EXPECT_EQ(ZIVKS_RShiftC_32s_I(0, static_cast<int32_t*>(ro.p), 100), 0);
}

}  // namespace
