// LShiftC and RShiftC.
#include <limits.h>
#include <sys/mman.h>
#include <unistd.h>

#include <functional>

#include "support/zt.h"

namespace {

template <class T>
struct Member {
  const char* name;
  bool left;
  bool lowers_count;  // a count beyond the width shifts by width - 1 instead of zeroing
  std::function<ZIVKStatus(const T*, int, T*, int)> fn, twin;
  std::function<ZIVKStatus(int, T*, int)> in_place;
};

#define ZT_SHIFT(op, code, left, lowers)                                                   \
  Member<T>{#op "_" #code, left, lowers,                                                   \
            [](const T* s, int n, T* d, int len) { return ZIVKS_##op##_##code(s, n, d, len); }, \
            [](const T* s, int n, T* d, int len) {                                         \
              auto t = ZT_TWIN(ZIVKS_##op##_##code);                                       \
              return t ? t(s, n, d, len) : -1;                                             \
            },                                                                             \
            [](int n, T* d, int len) { return ZIVKS_##op##_##code##_I(n, d, len); }}

template <class T> std::vector<Member<T>> members();
template <> std::vector<Member<uint8_t>> members() {
  using T = uint8_t;
  return {ZT_SHIFT(LShiftC, 8u, true, false), ZT_SHIFT(RShiftC, 8u, false, false)};
}
template <> std::vector<Member<uint16_t>> members() {
  using T = uint16_t;
  return {ZT_SHIFT(LShiftC, 16u, true, false), ZT_SHIFT(RShiftC, 16u, false, false)};
}
template <> std::vector<Member<int16_t>> members() {
  using T = int16_t;
  return {ZT_SHIFT(LShiftC, 16s, true, false), ZT_SHIFT(RShiftC, 16s, false, true)};
}
template <> std::vector<Member<int32_t>> members() {
  using T = int32_t;
  return {ZT_SHIFT(LShiftC, 32s, true, false), ZT_SHIFT(RShiftC, 32s, false, true)};
}

// The plain C shift of the same width, with the rules for counts beyond it.
template <class T>
T expected(const Member<T>& m, T x, int s) {
  constexpr int w = 8 * sizeof(T);
  if (s >= w) {
    if (!m.lowers_count) return 0;
    s = w - 1;
  }
  if (m.left) return static_cast<T>(static_cast<uint64_t>(x) << s);
  return static_cast<T>(static_cast<int64_t>(x) >> s);  // the sign comes along for signed T
}

template <class T>
class Shifts : public ::testing::Test {};
using Types = ::testing::Types<uint8_t, uint16_t, int16_t, int32_t>;
TYPED_TEST_SUITE(Shifts, Types);

// Pointers, then the length, then the count; the in-place forms check their pointer and
// length themselves and leave a negative count to the twin.
TYPED_TEST(Shifts, StatusesInOrderAndNothingWritten) {
  using T = TypeParam;
  for (const auto& m : members<T>()) {
    zt::Guarded<T> s(4), d(4);
    EXPECT_EQ(m.fn(nullptr, 1, d.data(), 4), ZIVK_STS_NULL_PTR_ERR) << m.name;
    EXPECT_EQ(m.fn(s.data(), -1, nullptr, 0), ZIVK_STS_NULL_PTR_ERR) << m.name;
    EXPECT_EQ(m.fn(s.data(), -1, d.data(), 0), ZIVK_STS_SIZE_ERR) << m.name;
    EXPECT_EQ(m.fn(s.data(), 1, d.data(), -5), ZIVK_STS_SIZE_ERR) << m.name;
    EXPECT_EQ(m.fn(s.data(), -1, d.data(), 4), ZIVK_STS_SHIFT_ERR) << m.name;
    EXPECT_EQ(m.fn(s.data(), INT_MIN, d.data(), 4), ZIVK_STS_SHIFT_ERR) << m.name;
    EXPECT_TRUE(d.untouched()) << m.name;
    EXPECT_EQ(m.in_place(0, nullptr, 4), ZIVK_STS_NULL_PTR_ERR) << m.name;
    EXPECT_EQ(m.in_place(-1, d.data(), 0), ZIVK_STS_SIZE_ERR) << m.name;
    EXPECT_EQ(m.in_place(-1, d.data(), 4), ZIVK_STS_SHIFT_ERR) << m.name;
    EXPECT_TRUE(d.untouched()) << m.name;
  }
}

// Over every path (copy, shift, beyond the width), lengths crossing every block boundary
// and random bits: the plain C shift, the in-place form, the generic backend, guards.
TYPED_TEST(Shifts, MatchesCShifts) {
  using T = TypeParam;
  constexpr int w = 8 * sizeof(T);
  zt::Rng rng(31);
  for (const auto& m : members<T>()) {
    for (int s : {0, 1, 2, w / 2 - 1, w - 1, w, w + 1, 100, INT_MAX}) {
      for (int len : zt::test_lengths()) {
        const size_t mis = (rng() % 2) * sizeof(T);
        zt::Guarded<T> a(len, mis), d(len, mis), t(len), in(len, mis);
        zt::fill_random(a.data(), len, rng);
        ASSERT_EQ(m.fn(a.data(), s, d.data(), len), 0);
        ASSERT_TRUE(d.guards_intact()) << m.name << " shift " << s << " len " << len;
        for (int i = 0; i < len; ++i)
          ASSERT_EQ(d[i], expected(m, a[i], s)) << m.name << " shift " << s << " len " << len << " at " << i;
        for (int i = 0; i < len; ++i) in[i] = a[i];
        ASSERT_EQ(m.in_place(s, in.data(), len), 0);
        EXPECT_EQ(zt::first_difference(in.data(), d.data(), len), -1) << m.name << " in place";
        EXPECT_TRUE(in.guards_intact()) << m.name;
        if (m.twin(a.data(), s, t.data(), len) != -1) {
          EXPECT_EQ(zt::first_difference(t.data(), d.data(), len), -1)
              << m.name << " generic backend, shift " << s << " len " << len;
        }
      }
    }
  }
}

TEST(Shifts, Examples) {
  uint8_t u8[2] = {3, 255}, r8[2];
  ASSERT_EQ(ZIVKS_LShiftC_8u(u8, 7, r8, 1), 0);
  EXPECT_EQ(r8[0], 128);
  ASSERT_EQ(ZIVKS_RShiftC_8u(u8 + 1, 1, r8, 1), 0);
  EXPECT_EQ(r8[0], 127);
  int16_t s16[3] = {16384, -5, 5}, r16[3];
  ASSERT_EQ(ZIVKS_LShiftC_16s(s16, 1, r16, 1), 0);
  EXPECT_EQ(r16[0], -32768);  // wraps into the sign
  ASSERT_EQ(ZIVKS_RShiftC_16s(s16 + 1, 100, r16, 2), 0);
  EXPECT_EQ(r16[0], -1);
  EXPECT_EQ(r16[1], 0);
  int32_t s32[1] = {-3}, r32[1];
  ASSERT_EQ(ZIVKS_RShiftC_32s(s32, 1, r32, 1), 0);
  EXPECT_EQ(r32[0], -2);  // toward minus infinity
}

// Memory the test can forbid: a page with no access, or read-only, so that a read or
// a write where none is allowed faults.
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
