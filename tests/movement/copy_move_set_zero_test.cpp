// Copy, Move, Set and Zero over all eleven element types.
#include <algorithm>
#include <functional>

#include "support/zt.h"

namespace {

template <class E>
struct Movement {
  ZIVKStatus (*copy)(const E*, E*, int32_t);
  ZIVKStatus (*move)(const E*, E*, int32_t);
  ZIVKStatus (*set)(E, E*, int32_t);
  ZIVKStatus (*zero)(E*, int32_t);
  decltype(copy) twin_copy;
  decltype(move) twin_move;
  decltype(set) twin_set;
  decltype(zero) twin_zero;
};

#define ZT_MOVEMENT(code, type)                                                           \
  template <>                                                                             \
  Movement<type> movement<type>() {                                                       \
    return {ZIVKS_Copy_##code,           ZIVKS_Move_##code,           ZIVKS_Set_##code,   \
            ZIVKS_Zero_##code,           ZT_TWIN(ZIVKS_Copy_##code), ZT_TWIN(ZIVKS_Move_##code), \
            ZT_TWIN(ZIVKS_Set_##code),   ZT_TWIN(ZIVKS_Zero_##code)};                     \
  }

template <class E> Movement<E> movement();
ZT_MOVEMENT(8u, uint8_t)
ZT_MOVEMENT(16s, int16_t)
ZT_MOVEMENT(32s, int32_t)
ZT_MOVEMENT(32f, float)
ZT_MOVEMENT(64s, int64_t)
ZT_MOVEMENT(64f, double)
ZT_MOVEMENT(16sc, ZIVK16sc)
ZT_MOVEMENT(32sc, ZIVK32sc)
ZT_MOVEMENT(32fc, ZIVK32fc)
ZT_MOVEMENT(64sc, ZIVK64sc)
ZT_MOVEMENT(64fc, ZIVK64fc)

template <class E>
class MovementTest : public ::testing::Test {};
using Types = ::testing::Types<uint8_t, int16_t, int32_t, float, int64_t, double, ZIVK16sc,
                               ZIVK32sc, ZIVK32fc, ZIVK64sc, ZIVK64fc>;
TYPED_TEST_SUITE(MovementTest, Types);

TYPED_TEST(MovementTest, StatusesComeFirstAndWriteNothing) {
  using E = TypeParam;
  const auto m = movement<E>();
  zt::Guarded<E> s(8), d(8);
  E v;
  memset(&v, 0x11, sizeof v);
  for (int32_t len : {0, -1, INT32_MIN}) {
    EXPECT_EQ(m.copy(s.data(), d.data(), len), ZIVK_STS_SIZE_ERR);
    EXPECT_EQ(m.move(s.data(), d.data(), len), ZIVK_STS_SIZE_ERR);
    EXPECT_EQ(m.set(v, d.data(), len), ZIVK_STS_SIZE_ERR);
    EXPECT_EQ(m.zero(d.data(), len), ZIVK_STS_SIZE_ERR);
  }
  for (int32_t len : {0, 5}) {  // the pointer check comes before the length check
    EXPECT_EQ(m.copy(nullptr, d.data(), len), ZIVK_STS_NULL_PTR_ERR);
    EXPECT_EQ(m.copy(s.data(), nullptr, len), ZIVK_STS_NULL_PTR_ERR);
    EXPECT_EQ(m.move(nullptr, d.data(), len), ZIVK_STS_NULL_PTR_ERR);
    EXPECT_EQ(m.move(s.data(), nullptr, len), ZIVK_STS_NULL_PTR_ERR);
    EXPECT_EQ(m.set(v, nullptr, len), ZIVK_STS_NULL_PTR_ERR);
    EXPECT_EQ(m.zero(nullptr, len), ZIVK_STS_NULL_PTR_ERR);
  }
  EXPECT_TRUE(d.untouched());
}

// Raw bits in, raw bits out, for every length, alignment and kind of value; nothing
// outside dst[0, len) changes; the generic backend writes the same bytes.
TYPED_TEST(MovementTest, CopySetZeroAreExactAndStayInBounds) {
  using E = TypeParam;
  const auto m = movement<E>();
  zt::Rng rng(99);
  for (int len : zt::test_lengths()) {
    const size_t mis = (rng() % 3) * alignof(E);
    zt::Guarded<E> s(len, mis), d(len, rng() % 2 * alignof(E)), t(len);
    zt::fill_random(s.data(), len, rng);
    ASSERT_EQ(m.copy(s.data(), d.data(), len), 0);
    EXPECT_EQ(zt::first_difference(d.data(), s.data(), len), -1) << "copy len " << len;
    EXPECT_TRUE(d.guards_intact()) << "copy len " << len;

    E v;
    zt::fill_random(&v, 1, rng);
    ASSERT_EQ(m.set(v, d.data(), len), 0);
    for (int i = 0; i < len; ++i) ASSERT_TRUE(zt::same_bits(d[i], v)) << "set len " << len << " at " << i;
    EXPECT_TRUE(d.guards_intact()) << "set len " << len;
    if (m.twin_set) {
      ASSERT_EQ(m.twin_set(v, t.data(), len), 0);
      EXPECT_EQ(zt::first_difference(t.data(), d.data(), len), -1);
    }

    ASSERT_EQ(m.zero(d.data(), len), 0);
    E z;
    memset(&z, 0, sizeof z);
    for (int i = 0; i < len; ++i) ASSERT_TRUE(zt::same_bits(d[i], z)) << "zero len " << len << " at " << i;
    EXPECT_TRUE(d.guards_intact()) << "zero len " << len;
    if (m.twin_copy && m.twin_zero) {
      ASSERT_EQ(m.twin_copy(s.data(), t.data(), len), 0);
      EXPECT_EQ(zt::first_difference(t.data(), s.data(), len), -1);
      ASSERT_EQ(m.twin_zero(t.data(), len), 0);
      EXPECT_EQ(zt::first_difference(t.data(), d.data(), len), -1);
    }
  }
}

// Move equals "copy aside, then copy back" for every overlap in both directions, and
// for src equal to dst; the generic backend agrees.
TYPED_TEST(MovementTest, MoveIsOverlapSafe) {
  using E = TypeParam;
  const auto m = movement<E>();
  zt::Rng rng(5);
  for (int len : {1, 2, 3, 7, 9, 16, 17, 31, 33, 64, 100, 300}) {
    for (int shift = -40; shift <= 40; shift += (shift > -3 && shift < 3) ? 1 : 7) {
      const int room = 48;
      zt::Guarded<E> buf(len + 2 * room), twin_buf(len + 2 * room);
      zt::fill_random(buf.data(), len + 2 * room, rng);
      for (int i = 0; i < len + 2 * room; ++i) twin_buf[i] = buf[i];
      std::vector<E> want(buf.data(), buf.data() + len + 2 * room);
      memmove(want.data() + room + shift, want.data() + room, len * sizeof(E));
      ASSERT_EQ(m.move(buf.data() + room, buf.data() + room + shift, len), 0);
      ASSERT_EQ(zt::first_difference(buf.data(), want.data(), len + 2 * room), -1)
          << "len " << len << " shift " << shift;
      EXPECT_TRUE(buf.guards_intact());
      if (m.twin_move) {
        ASSERT_EQ(m.twin_move(twin_buf.data() + room, twin_buf.data() + room + shift, len), 0);
        ASSERT_EQ(zt::first_difference(twin_buf.data(), want.data(), len + 2 * room), -1)
            << "generic backend, len " << len << " shift " << shift;
      }
    }
  }
}

// Overlap by less than one complex element, through byte-misaligned views.
TEST(Move, OverlapWithinAnElement) {
  zt::Rng rng(3);
  for (int len : {1, 4, 5, 9}) {
    for (int shift_parts : {-1, 1}) {
      std::vector<int16_t> buf(2 * len + 8), want;
      zt::fill_random(buf.data(), buf.size(), rng);
      want = buf;
      memmove(want.data() + 4 + shift_parts, want.data() + 4, len * sizeof(ZIVK16sc));
      auto* src = reinterpret_cast<ZIVK16sc*>(buf.data() + 4);
      auto* dst = reinterpret_cast<ZIVK16sc*>(buf.data() + 4 + shift_parts);
      ASSERT_EQ(ZIVKS_Move_16sc(src, dst, len), 0);
      EXPECT_EQ(buf, want) << "len " << len << " shift " << shift_parts;
    }
  }
}

TEST(SetZero, ComplexFillsWriteReBeforeIm) {
  ZIVK32fc d[7];
  ASSERT_EQ(ZIVKS_Set_32fc(ZIVK32fc{1.5f, -2.0f}, d, 7), 0);
  for (const auto& c : d) {
    EXPECT_EQ(c.re, 1.5f);
    EXPECT_EQ(c.im, -2.0f);
  }
  ZIVK16sc s[9];
  ASSERT_EQ(ZIVKS_Set_16sc(ZIVK16sc{7, -9}, s, 9), 0);
  for (const auto& c : s) {
    EXPECT_EQ(c.re, 7);
    EXPECT_EQ(c.im, -9);
  }
}

// Zero fills of many megabytes take a path of their own (streaming stores between
// ordinary ones at both ends): the same bytes at any alignment, nothing outside.
template <class E>
void check_large_zero(ZIVKStatus (*zero)(E*, int32_t), int32_t len) {
  for (size_t mis : {size_t{0}, alignof(E), 3 * alignof(E)}) {
    zt::Guarded<E> d(len, mis);
    memset(static_cast<void*>(d.data()), 0x5A, len * sizeof(E));
    ASSERT_EQ(zero(d.data(), len), 0);
    const auto* b = reinterpret_cast<const uint8_t*>(d.data());
    EXPECT_EQ(std::count(b, b + len * sizeof(E), 0), static_cast<long>(len * sizeof(E)))
        << "misaligned by " << mis;
    EXPECT_TRUE(d.guards_intact()) << "misaligned by " << mis;
  }
}

TEST(Zero, VeryLargeFillsAreExact) {
  check_large_zero(ZIVKS_Zero_8u, (16 << 20) + 15);
  check_large_zero(ZIVKS_Zero_16sc, (4 << 20) + 3);
  check_large_zero(ZIVKS_Zero_64fc, (1 << 20) + 1);
}

}  // namespace
