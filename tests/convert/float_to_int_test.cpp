// Float32 and float64 to integer conversions with a scale and a rounding mode.
#include <math.h>

#include <limits>

#include "support/zt.h"

namespace {

int exponent_of(double scale) {
  const int lg = ilogb(scale);
  const bool power = scale == ldexp(1.0, lg);
  return scale >= 1 || power ? -lg : -(lg + 1);
}

template <class F, class I>
using Fn = ZIVKStatus (*)(const F*, I*, int32_t, ZIVKRoundMode, double);

template <class F, class I>
struct Member {
  const char* name;
  int block;
  Fn<F, I> fn, twin;
};

// The product as the function makes it: one multiplication in F by M kept in F.
template <class F>
F product(F x, double scale) {
  volatile F m = static_cast<F>(ldexp(1.0, std::max(-2000, std::min(2000, exponent_of(scale)))));
  volatile F p = x * m;
  return p;
}

// Round by the mode and saturate; NaN gives 0. In the tail the nearest mode of a float64
// source adds one half in float64 and truncates, which differs for two kinds of input.
template <class F, class I>
I expected(F p, ZIVKRoundMode mode, bool in_tail) {
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

// Inputs: special floats, ties of every kind, values just around the target's bounds,
// and the float64 values where block and tail part.
template <class F, class I>
F input(zt::Rng& rng, double scale) {
  const double k = ldexp(1.0, -exponent_of(scale));  // 1 / M: inputs in units of the result
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
void check_member(const Member<F, I>& m) {
  zt::Rng rng(2024);
  const double scales[] = {1, 1.5, 0.75, 2, 3, 0.5, 0.3, 0x1p-20, 0x1p20, 0x1p-127, 0x1p-128, 0x1p-129,
                           0x1p149, 0x1p150, 0x1p-1023, 0x1p1000, 4.9e-324};
  const int lens[] = {1, 3, 4, 5, 7, 8, 9, 15, 16, 17, 33, 64, 70};
  for (double scale : scales)
    for (ZIVKRoundMode mode : {ZIVK_RND_ZERO, ZIVK_RND_NEAR, ZIVK_RND_AWAY})
      for (int len : lens) {
        const size_t mis = rng() % 2 ? sizeof(F) : 0;
        zt::Guarded<F> src(len, mis);
        zt::Guarded<I> d(len, mis), t(len);
        for (int i = 0; i < len; ++i) src[i] = input<F, I>(rng, scale);
        ASSERT_EQ(m.fn(src.data(), d.data(), len, mode, scale), 0);
        ASSERT_TRUE(d.guards_intact()) << m.name;
        const int tail_from = len & ~(m.block - 1);
        for (int i = 0; i < len; ++i)
          ASSERT_EQ(+d[i], +(expected<F, I>(product(src[i], scale), mode, i >= tail_from)))
              << m.name << " mode " << mode << " scale " << scale << " len " << len << " at " << i << ": "
              << src[i];
        if (m.twin) {
          ASSERT_EQ(m.twin(src.data(), t.data(), len, mode, scale), 0);
          ASSERT_EQ(zt::first_difference(t.data(), d.data(), len), -1) << m.name << " generic backend";
        }
      }
}

#define ZT_CHECK(from, to, F, I, block) \
  check_member(Member<F, I>{"Convert_" #from #to "_S", block, ZIVKS_Convert_##from##to##_S, ZT_TWIN(ZIVKS_Convert_##from##to##_S)})

TEST(FloatToInt, EveryMemberAgainstTheOracle) {
  ZT_CHECK(32f, 8u, float, uint8_t, 8);
  ZT_CHECK(32f, 16u, float, uint16_t, 8);
  ZT_CHECK(64f, 8u, double, uint8_t, 8);
  ZT_CHECK(64f, 16u, double, uint16_t, 4);
  ZT_CHECK(32f, 8s, float, int8_t, 8);
  ZT_CHECK(32f, 16s, float, int16_t, 4);
  ZT_CHECK(32f, 32s, float, int32_t, 4);
  ZT_CHECK(64f, 8s, double, int8_t, 8);
  ZT_CHECK(64f, 16s, double, int16_t, 4);
  ZT_CHECK(64f, 32s, double, int32_t, 4);
  ZT_CHECK(64f, 64s, double, int64_t, 4);
}

TEST(FloatToInt, ModesTiesAndBounds) {
  const float v[5] = {2.5f, 3.5f, -2.5f, 254.5f, -128.4f};
  const int want[3][5] = {{2, 3, -2, 127, -128}, {2, 4, -2, 127, -128}, {3, 4, -3, 127, -128}};
  for (int m = 0; m < 3; ++m) {
    int8_t d[5];
    ASSERT_EQ(ZIVKS_Convert_32f8s_S(v, d, 5, static_cast<ZIVKRoundMode>(m), 1), 0);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(d[i], want[m][i]) << "mode " << m << " at " << i;
  }
  const double u[9] = {254.5, 255.0, 1e9, -0.6, -1.5, -INFINITY, INFINITY, NAN, 254.5};
  uint8_t d[9];
  ASSERT_EQ(ZIVKS_Convert_64f8u_S(u, d, 9, ZIVK_RND_NEAR, 1), 0);
  const uint8_t near[9] = {254, 255, 255, 0, 0, 0, 255, 0, 254};
  for (int i = 0; i < 9; ++i) EXPECT_EQ(d[i], near[i]) << i;
  ASSERT_EQ(ZIVKS_Convert_64f8u_S(u, d, 9, ZIVK_RND_AWAY, 1), 0);
  EXPECT_EQ(d[0], 255);
  EXPECT_EQ(d[8], 255);
  const double big[1] = {2147483646.6};
  int32_t r[1];
  ASSERT_EQ(ZIVKS_Convert_64f32s_S(big, r, 1, ZIVK_RND_NEAR, 1), 0);
  EXPECT_EQ(r[0], INT32_MAX);
  const float bigf[1] = {2147483646.6f};  // 2147483648.0 as a float32
  ASSERT_EQ(ZIVKS_Convert_32f32s_S(bigf, r, 1, ZIVK_RND_NEAR, 1), 0);
  EXPECT_EQ(r[0], INT32_MAX);
  // An infinite float32 M: non-zero elements saturate by sign, zero becomes NaN and 0.
  const float z[5] = {0.0f, 1e-30f, -1e-30f, 0.0f, 1e-30f};
  int16_t s[5];
  ASSERT_EQ(ZIVKS_Convert_32f16s_S(z, s, 5, ZIVK_RND_ZERO, 0x1p-128), 0);
  EXPECT_EQ(s[0], 0);
  EXPECT_EQ(s[1], 32767);
  EXPECT_EQ(s[2], -32768);
  EXPECT_EQ(s[4], 32767);
}

// The two float64 inputs where the tail of the nearest mode parts from the block.
TEST(FloatToInt, Float64NearestTailDifferences) {
  double x[4] = {0.49999999999999994, 0, 0, 0};
  int32_t d[4];
  ASSERT_EQ(ZIVKS_Convert_64f32s_S(x, d, 1, ZIVK_RND_NEAR, 1), 0);
  EXPECT_EQ(d[0], 1);
  ASSERT_EQ(ZIVKS_Convert_64f32s_S(x, d, 4, ZIVK_RND_NEAR, 1), 0);
  EXPECT_EQ(d[0], 0);
  const double odd = 0x1p52 + 1;
  double y[5] = {odd, -odd, odd, odd, -odd};
  int64_t w[5];
  ASSERT_EQ(ZIVKS_Convert_64f64s_S(y, w, 5, ZIVK_RND_NEAR, 1), 0);
  EXPECT_EQ(w[0], static_cast<int64_t>(odd));
  EXPECT_EQ(w[1], -static_cast<int64_t>(odd));
  EXPECT_EQ(w[4], -static_cast<int64_t>(odd) - 1);
  ASSERT_EQ(ZIVKS_Convert_64f64s_S(y, w, 5, ZIVK_RND_AWAY, 1), 0);
  EXPECT_EQ(w[4], -static_cast<int64_t>(odd));
}

TEST(FloatToInt, ChecksInOrderAndNothingWritten) {
  zt::Guarded<float> f(4);
  zt::Guarded<uint8_t> u(4);
  zt::Guarded<int32_t> s(4);
  const auto bad = static_cast<ZIVKRoundMode>(-1), three = static_cast<ZIVKRoundMode>(3),
             five = static_cast<ZIVKRoundMode>(5);
  EXPECT_EQ(ZIVKS_Convert_32f32s_S(f.data(), s.data(), 4, bad, 1), ZIVK_STS_ROUND_MODE_ERR);
  EXPECT_EQ(ZIVKS_Convert_32f32s_S(f.data(), s.data(), 4, three, 1), ZIVK_STS_ROUND_MODE_ERR);
  EXPECT_EQ(ZIVKS_Convert_32f8u_S(f.data(), u.data(), 4, bad, 1), ZIVK_STS_ROUND_RANGE_ERR);
  EXPECT_EQ(ZIVKS_Convert_32f8u_S(f.data(), u.data(), 4, five, -1), ZIVK_STS_ROUND_RANGE_ERR);
  EXPECT_EQ(ZIVKS_Convert_32f32s_S(f.data(), s.data(), 4, five, -1), ZIVK_STS_ROUND_MODE_ERR);
  EXPECT_EQ(ZIVKS_Convert_32f32s_S(f.data(), s.data(), 0, five, -1), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(ZIVKS_Convert_32f32s_S(nullptr, s.data(), 0, five, -1), ZIVK_STS_NULL_PTR_ERR);
  for (double sc : {0.0, -2.0, HUGE_VAL, double(NAN)}) {
    EXPECT_EQ(ZIVKS_Convert_32f16u_S(f.data(), reinterpret_cast<uint16_t*>(s.data()), 4, ZIVK_RND_NEAR, sc),
              ZIVK_STS_SCALE_ERR);
    const double* d = reinterpret_cast<const double*>(f.data());
    EXPECT_EQ(ZIVKS_Convert_64f64s_S(d, reinterpret_cast<int64_t*>(s.data()), 2, ZIVK_RND_ZERO, sc),
              ZIVK_STS_SCALE_ERR);
    EXPECT_EQ(ZIVKS_Convert_64f16u_S(d, nullptr, 2, ZIVK_RND_ZERO, sc), ZIVK_STS_NULL_PTR_ERR);
  }
  EXPECT_TRUE(u.untouched());
  EXPECT_TRUE(s.untouched());
}

}  // namespace
