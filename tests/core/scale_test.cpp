// The scale rule and the two ways a scaled value becomes an integer.
#include <float.h>
#include <math.h>

#include "core/rounding.h"
#include "core/scale.h"
#include "support/block_rounding.h"
#include "support/zt.h"

namespace {

using namespace zivks;

TEST(Scale, CheckRefusesAllButFinitePositive) {
  for (double s : {0.0, -0.0, -1.0, -double(INFINITY), double(INFINITY), double(NAN), -double(NAN), -DBL_MIN})
    EXPECT_EQ(scale::check(s), ZIVK_STS_SCALE_ERR) << s;
  for (double s : {DBL_MIN / 4, DBL_MIN, 0.3, 1.0, 7.0, DBL_MAX})
    EXPECT_EQ(scale::check(s), ZIVK_STS_NO_ERR) << s;
}

TEST(Scale, ExponentTable) {
  const struct { double scale; int32_t e; double m; } rows[] = {
      {8, -3, 0.125}, {7, -2, 0.25}, {5, -2, 0.25}, {4, -2, 0.25}, {3, -1, 0.5}, {2, -1, 0.5},
      {1.999, 0, 1},  {1.5, 0, 1},   {1, 0, 1},     {0.75, 0, 1},  {0.6, 0, 1},  {0.5, 1, 2},
      {0.3, 1, 2},    {0.25, 2, 4},  {0.2, 2, 4},   {0.125, 3, 8}};
  for (const auto& r : rows) {
    EXPECT_EQ(scale::exponent(r.scale), r.e) << r.scale;
    EXPECT_EQ(scale::multiplier<double>(scale::exponent(r.scale)), r.m) << r.scale;
    EXPECT_EQ(scale::multiplier<float>(scale::exponent(r.scale)), static_cast<float>(r.m));
  }
}

// log2(1 / scale) truncated toward zero, over the whole float64 range: for
// scale = f * 2^k with f in [1, 2), e is -k when scale >= 1 and 1 - k - [f > 1] below.
TEST(Scale, ExponentTruncatesTowardOne) {
  zt::Rng rng(7);
  std::uniform_real_distribution<double> frac(1.0, 2.0);
  for (int k = -1074; k <= 1023; ++k) {
    for (double f : {1.0, frac(rng), std::nextafter(2.0, 1.0)}) {
      const double s = std::ldexp(f, k);
      if (s == 0 || std::isinf(s)) continue;
      int kk;
      const double m = std::frexp(s, &kk) * 2;  // s = m * 2^(kk - 1), m in [1, 2)
      const int p = kk - 1;
      const int32_t want = p >= 0 ? -p : -p - (m > 1.0 ? 1 : 0);
      ASSERT_EQ(scale::exponent(s), want) << s;
    }
  }
  // Multipliers past the float range become infinite or zero by plain narrowing.
  EXPECT_EQ(scale::multiplier<float>(128), INFINITY);
  EXPECT_EQ(scale::multiplier<float>(-150), 0.0f);
  EXPECT_EQ(scale::multiplier<float>(-149), std::ldexp(1.0f, -149));
  EXPECT_EQ(scale::multiplier<double>(1075), INFINITY);
}

TEST(Rounding, TiesSaturationAndNaN) {
  const struct { float p; int16_t want; } ties[] = {
      {2.5f, 2}, {3.5f, 4}, {-2.5f, -2}, {-3.5f, -4}, {0.5f, 0}, {-0.5f, 0}, {1.5f, 2}, {2.4999998f, 2}};
  for (const auto& t : ties) {
    EXPECT_EQ(rounding::tail<int16_t>(t.p), t.want) << t.p;
    EXPECT_EQ(zt::block_round<int16_t>(t.p), t.want) << t.p;
  }
  for (float p : {32767.0f, 32767.5f, 1e30f, float(INFINITY)}) {
    EXPECT_EQ(rounding::tail<int16_t>(p), 32767);
    EXPECT_EQ(zt::block_round<int16_t>(p), 32767);
    EXPECT_EQ(rounding::tail<int16_t>(-p - 1), -32768);
    EXPECT_EQ(zt::block_round<int16_t>(-p - 1), -32768);
  }
  EXPECT_EQ(rounding::tail<uint8_t>(-0.3f), 0);
  EXPECT_EQ(zt::block_round<uint8_t>(-0.7f), 0);
  EXPECT_EQ(rounding::tail<uint8_t>(255.49f), 255);
  EXPECT_EQ(rounding::tail<int32_t>(2147483520.0f), 2147483520);
  EXPECT_EQ(rounding::tail<int32_t>(2147483648.0f), INT32_MAX);
  EXPECT_EQ(zt::block_round<int32_t>(-2147483904.0), INT32_MIN);
  for (double p : {double(NAN), -double(NAN)}) {
    EXPECT_EQ(rounding::tail<int32_t>(p), 0);
    EXPECT_EQ(zt::block_round<int32_t>(p), 0);
    EXPECT_EQ(rounding::tail<uint16_t>(static_cast<float>(p)), 0);
    EXPECT_EQ(zt::block_round<uint16_t>(static_cast<float>(p)), 0);
  }
  // The one float64 value where the tail's added half rounds up: 0.49999999999999994.
  const double below_half = std::nextafter(0.5, 0.0);
  EXPECT_EQ(rounding::tail<int32_t>(below_half), 1);
  EXPECT_EQ(zt::block_round<int32_t>(below_half), 0);
  EXPECT_EQ(rounding::tail<int32_t>(-below_half), -1);
}

// Block and tail agree on every value an integer result times a power of two can give.
TEST(Rounding, BlockAndTailAgreeOnScaledIntegers) {
  zt::Rng rng(11);
  for (int n = 0; n < 200000; ++n) {
    const int32_t x = static_cast<int32_t>(rng() % 140000) - 70000;
    const int e = static_cast<int>(rng() % 40) - 20;
    const float p = static_cast<float>(x) * scale::multiplier<float>(e);
    ASSERT_EQ(rounding::tail<int16_t>(p), zt::block_round<int16_t>(p)) << x << " * 2^" << e;
    ASSERT_EQ(rounding::tail<uint8_t>(p), zt::block_round<uint8_t>(p)) << x << " * 2^" << e;
    const double q = static_cast<double>(x) * 65536.0 * scale::multiplier<double>(e);
    ASSERT_EQ(rounding::tail<int32_t>(q), zt::block_round<int32_t>(q)) << x << " * 2^" << e + 16;
  }
}

}  // namespace
