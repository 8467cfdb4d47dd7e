// The scale rule and the rounding rule, seen through the functions that use them.
#include <math.h>

#include "support/zt.h"

namespace {

// e as a conversion shows it: 2^(10 - e) times M = 2^e is 1024 exactly (M is a
// float64, finite for the e asked here).
int32_t applied(double scale, int e) {
  const double x[1] = {ldexp(1.0, 10 - e)};
  int32_t r[1] = {-1};
  EXPECT_EQ(ZIVKS_Convert_64f32s_S(x, r, 1, ZIVK_RND_NEAR, scale), 0);
  return r[0];
}

TEST(Scale, ExponentIsTheLogarithmTruncatedTowardOne) {
  const struct { double scale; int e; } table[] = {
      {8, -3}, {7, -2}, {5, -2}, {4, -2}, {3, -1}, {2, -1}, {1.999, 0}, {1.5, 0}, {1, 0},
      {0.75, 0}, {0.6, 0}, {0.5, 1}, {0.3, 1}, {0.25, 2}, {0.2, 2}, {0.125, 3}};
  for (const auto& row : table) {
    EXPECT_EQ(zt::scale_exponent(row.scale), row.e) << row.scale;
    EXPECT_EQ(applied(row.scale, row.e), 1024) << row.scale;
  }
  // Over the float64 range, with mantissas of 1, just below 2, and anything between.
  zt::Rng rng(7);
  std::uniform_real_distribution<double> frac(1.0, 2.0);
  for (int k = -1023; k <= 1013; ++k)
    for (double f : {1.0, frac(rng), std::nextafter(2.0, 1.0)}) {
      const double s = ldexp(f, k);
      ASSERT_EQ(applied(s, zt::scale_exponent(s)), 1024) << s;
    }
}

// Both forms of the rule, in a block (elements 0 to 7) and in the tail (element 8): to
// nearest with a tie to the even neighbour, clamped on the unrounded value, NaN to 0.
TEST(Rounding, TiesClampAndNaNInBlockAndTail) {
  const struct { float p; int16_t want; } rows[] = {
      {2.5f, 2},        {3.5f, 4},          {-2.5f, -2},     {-3.5f, -4},           {0.5f, 0},
      {-0.5f, 0},       {1.5f, 2},          {2.4999998f, 2}, {32767.5f, 32767},     {-32768.5f, -32768},
      {1e30f, 32767},   {-INFINITY, -32768}, {NAN, 0},       {-NAN, 0}};
  for (const auto& row : rows) {
    float x[9];
    int16_t r[9];
    for (float& v : x) v = row.p;
    ASSERT_EQ(ZIVKS_Convert_32f16s_S(x, r, 9, ZIVK_RND_NEAR, 1), 0);
    EXPECT_EQ(r[0], row.want) << row.p;
    EXPECT_EQ(r[8], row.want) << row.p << " in the tail";
  }
}

}  // namespace
