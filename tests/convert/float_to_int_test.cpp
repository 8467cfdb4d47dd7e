// Float32 and float64 to integer conversions with a rounding mode and a scale.
#include <math.h>

#include <limits>

#include "support/sweep.h"

namespace {

struct Param {
  int32_t mode;  // as it travels: a refused one need not be an enumerator
  double scale;
};
std::ostream& operator<<(std::ostream& o, const Param& p) { return o << "mode " << p.mode << " scale " << p.scale; }

// The product as the rule makes it: one multiplication in F by M = 2^e kept in F.
template <class F>
F product(F x, double scale) {
  volatile F m = static_cast<F>(ldexp(1.0, std::max(-2000, std::min(2000, zt::scale_exponent(scale)))));
  volatile F p = x * m;
  return p;
}

// Rounded by the mode and saturated; NaN gives 0. In the tail the nearest mode of a
// float64 source adds one half in float64 and truncates: just below one half that sum
// gives 1, and an odd whole value from 2^52 to 2^53 moves one step away from zero.
template <class F, class I>
I rule(F p, ZIVKRoundMode mode, bool in_tail) {
  using L = std::numeric_limits<I>;
  if (p != p) return 0;
  long double r = mode == ZIVK_RND_ZERO ? truncl(p) : mode == ZIVK_RND_AWAY ? roundl(p) : nearbyintl(p);
  if (sizeof(F) == 8 && in_tail && mode == ZIVK_RND_NEAR) {
    const double q = p;
    if (fabs(q) == 0.49999999999999994) r = q > 0 ? 1 : -1;
    if (sizeof(I) == 8 && fabs(q) >= 0x1p52 && fabs(q) < 0x1p53 && fmod(q, 2.0) != 0) r = q > 0 ? q + 1 : q - 1;
  }
  if (r >= static_cast<long double>(L::max())) return L::max();
  if (r <= static_cast<long double>(L::min())) return L::min();
  return static_cast<I>(r);
}

// Special floats, ties in units of the result, values around the target's bounds, and
// the float64 values where block and tail part.
template <class F, class I>
F input(zt::Rng& rng, double scale) {
  const double k = ldexp(1.0, -zt::scale_exponent(scale));  // 1 / M
  const double hi = static_cast<double>(std::numeric_limits<I>::max());
  const double lo = static_cast<double>(std::numeric_limits<I>::min());
  switch (rng() % 8) {
    case 0: return zt::special_float<F>(rng);
    case 1: return static_cast<F>((static_cast<double>(static_cast<int>(rng() % 2001) - 1000) + 0.5) * k);
    case 2: return static_cast<F>((rng() % 2 ? hi : lo) + (static_cast<int>(rng() % 5) - 2) * 0.5);
    case 3: return static_cast<F>((static_cast<int>(rng() % 7) - 3) * 0.25 * k);
    case 4: return static_cast<F>(rng() % 2 ? 0.49999999999999994 : -0.49999999999999994);
    case 5: return static_cast<F>((0x1p52 + static_cast<double>(rng() % 1000)) * (rng() % 2 ? 1 : -1));
    default: {
      std::uniform_real_distribution<double> u(lo - 100, hi + 100);
      return static_cast<F>(u(rng) * (rng() % 4 ? 1.0 : k));
    }
  }
}

template <class F, class I>
void check(const char* name, int block, ZIVKStatus (*fn)(const F*, I*, int32_t, ZIVKRoundMode, double),
           decltype(fn) twin) {
  zt::Member<F, I, Param> m;
  m.name = name;
  m.call = [fn, twin](bool t, const F* a, const F*, Param p, I* d, int32_t n) {
    const auto f = t ? twin : fn;
    return f ? f(a, d, n, static_cast<ZIVKRoundMode>(p.mode), p.scale) : zt::kNoTwin;
  };
  m.rule = zt::each<F, I, Param>([block](F x, F, Param p, int i, int n) {
    return rule<F, I>(product(x, p.scale), static_cast<ZIVKRoundMode>(p.mode), i >= (n & ~(block - 1)));
  });
  m.params.clear();
  for (double s : {1.0, 1.5, 0.75, 2.0, 3.0, 0.5, 0.3, 0x1p-20, 0x1p20, 0x1p-127, 0x1p-128, 0x1p-129, 0x1p149,
                   0x1p150, 0x1p-1023, 0x1p1000, 4.9e-324})
    for (ZIVKRoundMode mode : {ZIVK_RND_ZERO, ZIVK_RND_NEAR, ZIVK_RND_AWAY}) m.params.push_back({static_cast<int32_t>(mode), s});
  // rndMode before scale: a mode above 2, compared as unsigned, is refused first.
  const ZIVKStatus mode_err = std::is_unsigned_v<I> ? ZIVK_STS_ROUND_RANGE_ERR : ZIVK_STS_ROUND_MODE_ERR;
  for (int mode : {-1, 3, 5}) m.bad.push_back({{mode, -1.0}, mode_err});
  for (double s : {0.0, -2.0, HUGE_VAL, double(NAN)}) m.bad.push_back({{ZIVK_RND_NEAR, s}, ZIVK_STS_SCALE_ERR});
  m.alone = false;  // the rule places each element
  m.fill = [](F* p, size_t k, const Param& q, zt::Rng& rng) {
    for (size_t i = 0; i < k; ++i) p[i] = input<F, I>(rng, q.scale);
  };
  m.lengths = {1, 3, 4, 5, 7, 8, 9, 15, 16, 17, 33, 64, 70};
  zt::check_member(m);
}

#define ZT_CHECK(from, to, block) \
  check("Convert_" #from #to "_S", block, ZIVKS_Convert_##from##to##_S, ZT_TWIN(ZIVKS_Convert_##from##to##_S))

TEST(FloatToInt, EveryMemberFollowsTheRule) {
  ZT_CHECK(32f, 8u, 8);
  ZT_CHECK(32f, 16u, 8);
  ZT_CHECK(64f, 8u, 8);
  ZT_CHECK(64f, 16u, 4);
  ZT_CHECK(32f, 8s, 8);
  ZT_CHECK(32f, 16s, 4);
  ZT_CHECK(32f, 32s, 4);
  ZT_CHECK(64f, 8s, 8);
  ZT_CHECK(64f, 16s, 4);
  ZT_CHECK(64f, 32s, 4);
  ZT_CHECK(64f, 64s, 4);
}

// The modes by example, and the float64 inputs where the nearest mode's tail parts from
// the block (elements 0 to 3 are a block, element 4 the tail).
TEST(FloatToInt, ModesAndTheFloat64NearestTail) {
  const float v[5] = {2.5f, 3.5f, -2.5f, 254.5f, -128.4f};
  const int want[3][5] = {{2, 3, -2, 127, -128}, {2, 4, -2, 127, -128}, {3, 4, -3, 127, -128}};
  for (int m = 0; m < 3; ++m) {
    int8_t d[5];
    ASSERT_EQ(ZIVKS_Convert_32f8s_S(v, d, 5, static_cast<ZIVKRoundMode>(m), 1), 0);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(d[i], want[m][i]) << "mode " << m << " at " << i;
  }
  const double half = 0.49999999999999994, odd = 0x1p52 + 1;
  const double x[5] = {half, half, -odd, odd, -odd};
  int64_t w[5];
  ASSERT_EQ(ZIVKS_Convert_64f64s_S(x, w, 5, ZIVK_RND_NEAR, 1), 0);
  EXPECT_EQ(w[0], 0);
  EXPECT_EQ(w[2], -static_cast<int64_t>(odd));
  EXPECT_EQ(w[4], -static_cast<int64_t>(odd) - 1);
  ASSERT_EQ(ZIVKS_Convert_64f64s_S(x, w, 1, ZIVK_RND_NEAR, 1), 0);
  EXPECT_EQ(w[0], 1);
}

}  // namespace
