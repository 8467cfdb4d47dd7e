// Copy, Move, Set and Zero over all eleven element types.
#include <algorithm>

#include "support/sweep.h"

namespace {

template <class E>
class Movement : public ::testing::Test {};
using Types = ::testing::Types<uint8_t, int16_t, int32_t, float, int64_t, double, ZIVK16sc, ZIVK32sc, ZIVK32fc,
                               ZIVK64sc, ZIVK64fc>;
TYPED_TEST_SUITE(Movement, Types);

template <class E> struct Fns;
#define ZT_FNS(code, type)                                                                                  \
  template <> struct Fns<type> {                                                                            \
    static constexpr auto copy = ZT_CALL(ZIVKS_Copy_##code, a, d, n), move = ZT_CALL(ZIVKS_Move_##code, a, d, n); \
    static constexpr auto set = ZT_CALL(ZIVKS_Set_##code, p, d, n), zero = ZT_CALL(ZIVKS_Zero_##code, d, n);   \
    static constexpr auto zero_fn = ZIVKS_Zero_##code;                                                      \
  };
ZT_FNS(8u, uint8_t)
ZT_FNS(16s, int16_t)
ZT_FNS(32s, int32_t)
ZT_FNS(32f, float)
ZT_FNS(64s, int64_t)
ZT_FNS(64f, double)
ZT_FNS(16sc, ZIVK16sc)
ZT_FNS(32sc, ZIVK32sc)
ZT_FNS(32fc, ZIVK32fc)
ZT_FNS(64sc, ZIVK64sc)
ZT_FNS(64fc, ZIVK64fc)

// Raw bits in, raw bits out: Copy and Move without overlap are the source, Set the value
// (re before im), Zero all-zero bytes.
TYPED_TEST(Movement, EveryMemberWritesExactBits) {
  using E = TypeParam;
  using F = Fns<E>;
  for (auto [name, call] : {std::pair{"Copy", typename zt::Member<E, E, E>::Call(F::copy)}, {"Move", F::move}}) {
    zt::Member<E, E, E> m;
    m.name = name;
    m.call = call;
    m.rule = zt::each<E, E, E>([](E a, E, E, int, int) { return a; });
    zt::check_member(m);
  }
  for (auto [name, call] : {std::pair{"Set", typename zt::Member<E, E, E>::Call(F::set)}, {"Zero", F::zero}}) {
    zt::Member<E, E, E> m;
    m.name = name;
    m.call = call;
    m.nullable_sources = true;  // there is no source
    const bool set = name[0] == 'S';
    m.rule = zt::each<E, E, E>([set](E, E, E v, int, int) {
      if (!set) memset(&v, 0, sizeof v);
      return v;
    });
    m.params = zt::samples<E>(2, 3);
    zt::check_member(m);
  }
}

// Move equals "copy aside, then copy back" for every overlap in both directions.
TYPED_TEST(Movement, MoveIsOverlapSafe) {
  using E = TypeParam;
  zt::Rng rng(5);
  for (int len : {1, 2, 3, 7, 9, 16, 17, 31, 33, 64, 100, 300}) {
    for (int shift = -40; shift <= 40; shift += (shift > -3 && shift < 3) ? 1 : 7) {
      const int room = 48;
      zt::Guarded<E> buf(len + 2 * room), twin(len + 2 * room);
      zt::fill_random(buf.data(), len + 2 * room, rng);
      for (int i = 0; i < len + 2 * room; ++i) twin[i] = buf[i];
      std::vector<E> want(buf.data(), buf.data() + len + 2 * room);
      memmove(want.data() + room + shift, want.data() + room, len * sizeof(E));
      for (bool t : {false, true}) {
        zt::Guarded<E>& b = t ? twin : buf;
        const ZIVKStatus st = Fns<E>::move(t, b.data() + room, nullptr, E{}, b.data() + room + shift, len);
        if (st == zt::kNoTwin) continue;
        ASSERT_EQ(st, 0);
        ASSERT_EQ(zt::first_difference(b.data(), want.data(), len + 2 * room), -1)
            << (t ? "generic " : "") << "len " << len << " shift " << shift;
        EXPECT_TRUE(b.guards_intact());
      }
    }
  }
}

// Zero fills of many megabytes take a path of their own (streaming stores between
// ordinary ones at both ends): the same bytes at any alignment, nothing outside.
TYPED_TEST(Movement, VeryLargeZeroFills) {
  using E = TypeParam;
  if (sizeof(E) != 1 && sizeof(E) != 4 && sizeof(E) != 16) return;
  const int32_t len = static_cast<int32_t>((size_t{16} << 20) / sizeof(E)) + 3;
  for (size_t mis : {size_t{0}, alignof(E), 3 * alignof(E)}) {
    zt::Guarded<E> d(len, mis);
    memset(static_cast<void*>(d.data()), 0x5A, len * sizeof(E));
    ASSERT_EQ(Fns<E>::zero_fn(d.data(), len), 0);
    const auto* b = reinterpret_cast<const uint8_t*>(d.data());
    EXPECT_EQ(std::count(b, b + len * sizeof(E), 0), static_cast<long>(len * sizeof(E))) << mis;
    EXPECT_TRUE(d.guards_intact()) << mis;
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
      ASSERT_EQ(ZIVKS_Move_16sc(reinterpret_cast<ZIVK16sc*>(buf.data() + 4),
                                reinterpret_cast<ZIVK16sc*>(buf.data() + 4 + shift_parts), len), 0);
      EXPECT_EQ(buf, want) << "len " << len << " shift " << shift_parts;
    }
  }
}

}  // namespace
