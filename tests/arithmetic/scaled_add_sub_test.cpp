// Scaled saturating Add and Sub: r = saturate(round(x * 2^e)), x the exact sum or
// difference, with the block-only behaviours the family keeps.
#include <math.h>

#include <limits>

#include "support/sweep.h"

namespace {

template <class T>
T clamp_to(long double r) {
  if (r >= static_cast<long double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
  if (r <= static_cast<long double>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
  return static_cast<T>(r);
}

// What a block does beyond the plain rule.
enum class Quirk {
  kNone,
  // From k = e = 128 on, the left shift takes its count from the low byte of k read as
  // signed: it shifts by that count instead, rounding half up.
  kShiftCountWraps,
  // The rounded r (held to 2^32 - 1) goes to 16 bits in two steps: elements 0 to 3 of
  // each group of 8 saturate, elements 4 to 7 keep the low 16 bits; then to 8 bits.
  kTwoStepNarrowing,
};

struct Traits {
  bool sub;
  Quirk quirk;
  int block;  // elements per block where the quirk shows
};

// Element i of a call of length n, from the rule: x * 2^e exactly (long double holds
// it), rounded to nearest with a tie to the even neighbour, clamped to T.
template <class T>
T rule(Traits m, T a, T b, double scale, int i, int n) {
  const int e = zt::scale_exponent(scale);
  const int64_t x = m.sub ? int64_t{b} - a : int64_t{a} + b;
  const bool in_block = i < (n & ~(m.block - 1));
  if (in_block && m.quirk == Quirk::kShiftCountWraps && e >= 128) {
    // Unsigned blocks saturate a difference at 0 first.
    const int count = static_cast<int8_t>(e & 0xFF);
    return clamp_to<T>(floorl(ldexpl(static_cast<long double>(std::max<int64_t>(x, 0)), count) + 0.5L));
  }
  const long double r = nearbyintl(ldexpl(static_cast<long double>(x), e));
  if (in_block && m.quirk == Quirk::kTwoStepNarrowing) {
    const long double r32 = std::min(std::max(r, 0.0L), 4294967295.0L);
    const long double r16 = i % 8 < 4 ? std::min(r32, 65535.0L) : fmodl(r32, 65536.0L);
    return clamp_to<T>(r16);
  }
  return clamp_to<T>(r);
}

template <class T>
using Fn = ZIVKStatus (*)(const T*, const T*, T*, int32_t, double);
template <class T>
using FnI = ZIVKStatus (*)(const T*, T*, int32_t, double);

template <class T>
zt::Member<T, T, double> member(const char* name, Traits tr, Fn<T> fn, Fn<T> twin, FnI<T> in_place) {
  zt::Member<T, T, double> m;
  m.name = name;
  m.sources = 2;
  m.call = [fn, twin](bool t, const T* a, const T* b, double s, T* d, int32_t n) {
    return t ? (twin ? twin(a, b, d, n, s) : zt::kNoTwin) : fn(a, b, d, n, s);
  };
  m.in_place = [in_place](bool, const T* a, const T*, double s, T* d, int32_t n) { return in_place(a, d, n, s); };
  m.rule = zt::each<T, T, double>([tr](T a, T b, double s, int i, int n) { return rule(tr, a, b, s, i, n); });
  m.params = zt::test_scales();
  for (double s : {0.0, -0.0, -1.0, -HUGE_VAL, HUGE_VAL, double(NAN)}) m.bad.push_back({s, ZIVK_STS_SCALE_ERR});
  m.alone = false;  // the rule places each element
  // Small values too, where ties and the rounding of small scales show.
  m.fill = [](T* p, size_t k, double, zt::Rng& rng) {
    zt::fill_random(p, k, rng);
    for (size_t i = 0; i < k; ++i)
      if (rng() % 3 == 0) p[i] = static_cast<T>(rng() % 9);
  };
  m.lengths = {1, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 32, 33, 63, 64, 65, 70, 127, 128, 131, 200, 300, 581};
  return m;
}

#define ZT_SCALED(op, code, T, sub, quirk, block)                                                          \
  zt::check_member(member<T>(#op "_" #code "_S", Traits{sub, Quirk::quirk, block}, ZIVKS_##op##_##code##_S, \
                             ZT_TWIN(ZIVKS_##op##_##code##_S), ZIVKS_##op##_##code##_IS))

TEST(ScaledAddSub, EveryMemberFollowsTheRule) {
  ZT_SCALED(Add, 8u, uint8_t, false, kShiftCountWraps, 8);
  ZT_SCALED(Add, 16u, uint16_t, false, kShiftCountWraps, 4);
  ZT_SCALED(Sub, 16u, uint16_t, true, kShiftCountWraps, 32);
  ZT_SCALED(Sub, 8u, uint8_t, true, kTwoStepNarrowing, 64);
  ZT_SCALED(Add, 16s, int16_t, false, kNone, 4);
  ZT_SCALED(Sub, 16s, int16_t, true, kNone, 4);
  ZT_SCALED(Add, 32s, int32_t, false, kNone, 2);
  ZT_SCALED(Sub, 32s, int32_t, true, kNone, 2);
}

// The block-only behaviours by example. Sub_8u with M = 512: a difference of 128 gives
// r = 65536, which saturates in elements 0 to 3 of each group of 8 and wraps to 0 in
// elements 4 to 7 of every block; the tail (elements 256 to 261) has no such step.
// Add_8u with k = 129 shifts right by 127 in blocks, giving 0, where the tail's infinite
// M saturates; Add_16u with k = 255 shifts right by one, rounding 3 / 2 up to 2.
TEST(ScaledAddSub, BlockOnlyBehaviours) {
  uint8_t a[262] = {}, b[262], d[262];
  memset(b, 128, sizeof b);
  ASSERT_EQ(ZIVKS_Sub_8u_S(a, b, d, 262, 0.001953125), 0);
  for (int i = 0; i < 262; ++i) EXPECT_EQ(d[i], i < 256 && i % 8 >= 4 ? 0 : 255) << i;
  uint8_t ones[9] = {1, 1, 1, 1, 1, 1, 1, 1, 1};
  ASSERT_EQ(ZIVKS_Add_8u_S(ones, ones, d, 9, ldexp(1.0, -129)), 0);
  EXPECT_EQ(d[0], 0);
  EXPECT_EQ(d[8], 255);
  uint16_t x[5] = {3, 3, 3, 3, 3}, y[5] = {}, z[5];
  ASSERT_EQ(ZIVKS_Add_16u_S(x, y, z, 5, ldexp(1.0, -255)), 0);
  EXPECT_EQ(z[0], 2);
  EXPECT_EQ(z[4], 65535);
}

}  // namespace
