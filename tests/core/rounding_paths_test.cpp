// The two ways a scaled value becomes an integer (vector block and scalar tail), for
// every rounding mode: they agree for every float32 value, and part only where float64
// sums of one half round.
#include <fenv.h>
#include <math.h>

#include "core/rounding.h"
#include "support/block_rounding.h"
#include "support/zt.h"

namespace {

using zivks::rounding::Mode;
namespace rd = zivks::rounding;

template <Mode m, class F>
F libm_round(F x) {
  if constexpr (m == Mode::kZero) return std::trunc(x);
  else if constexpr (m == Mode::kNear) return std::nearbyint(x);
  else return std::round(x);
}

template <Mode m, class I>
void block_equals_tail_for_float32(zt::Rng& rng) {
  for (int n = 0; n < 20000; ++n) {
    float p = zt::special_float<float>(rng);
    if (n % 3 == 0) p = static_cast<float>(static_cast<int>(rng() % 1000) - 500) + 0.5f * (rng() % 3);
    const I block = zt::narrow_sat<I>(static_cast<int64_t>(rd::cvt_sat<int32_t, m>(p)));
    const I tail = rd::tail_by<I, m>(p);
    ASSERT_EQ(+block, +tail) << p << " mode " << static_cast<int>(m);
    if (p == p) {
      ASSERT_EQ(rd::round<m>(p), libm_round<m>(p)) << p;
    }
  }
}

TEST(RoundingPaths, BlockAndTailAgreeForFloat32) {
  ASSERT_EQ(fegetround(), FE_TONEAREST);
  zt::Rng rng(3);
  block_equals_tail_for_float32<Mode::kZero, int8_t>(rng);
  block_equals_tail_for_float32<Mode::kNear, int16_t>(rng);
  block_equals_tail_for_float32<Mode::kAway, uint8_t>(rng);
  block_equals_tail_for_float32<Mode::kAway, int32_t>(rng);
  block_equals_tail_for_float32<Mode::kNear, uint16_t>(rng);
  block_equals_tail_for_float32<Mode::kZero, int32_t>(rng);
}

TEST(RoundingPaths, LaneSaturationAndNaN) {
  EXPECT_EQ((rd::cvt_sat<uint32_t, Mode::kNear>(4294967295.5)), 4294967295u);
  EXPECT_EQ((rd::cvt_sat<uint32_t, Mode::kNear>(4294967296.0f)), 4294967295u);
  EXPECT_EQ((rd::cvt_sat<uint32_t, Mode::kAway>(-0.5f)), 0u);
  EXPECT_EQ((rd::cvt_sat<uint32_t, Mode::kZero>(NAN)), 0u);
  EXPECT_EQ((rd::cvt_sat<int64_t, Mode::kZero>(9223372036854775808.0)), INT64_MAX);
  EXPECT_EQ((rd::cvt_sat<int64_t, Mode::kAway>(-9223372036854775808.0)), INT64_MIN);
  EXPECT_EQ((rd::cvt_sat<int32_t, Mode::kAway>(-2147483648.5)), INT32_MIN);
  EXPECT_EQ((rd::cvt_sat<int32_t, Mode::kNear>(2147483647.5)), INT32_MAX);
  EXPECT_EQ((rd::cvt_sat<int32_t, Mode::kNear>(-NAN)), 0);
}

// The float64 tail of the nearest mode adds one half in float64: just below one half
// that sum rounds up to 1, and an odd whole value from 2^52 to 2^53 is an exact tie.
TEST(RoundingPaths, Float64NearestTail) {
  const double below_half = 0.49999999999999994;
  EXPECT_EQ(rd::tail<int32_t>(below_half), 1);
  EXPECT_EQ(rd::tail<int32_t>(-below_half), -1);
  EXPECT_EQ(zt::block_round<int32_t>(below_half), 0);
  EXPECT_EQ(rd::tail<int64_t>(0x1p52 + 1), static_cast<int64_t>(0x1p52) + 2);
  EXPECT_EQ(rd::tail<int64_t>(-0x1p52 - 3), -static_cast<int64_t>(0x1p52) - 4);
  EXPECT_EQ(rd::tail<int64_t>(0x1p63), INT64_MAX);
  EXPECT_EQ(rd::tail<int64_t>(-0x1p63), INT64_MIN);
  EXPECT_EQ(rd::tail_away<int64_t>(0x1p52 + 1), static_cast<int64_t>(0x1p52) + 1);
  EXPECT_EQ(rd::tail_zero<int32_t>(2147483647.9), INT32_MAX);
  EXPECT_EQ(rd::tail_zero<uint16_t>(-0.9), 0);
  EXPECT_EQ(rd::tail_away<int16_t>(-2.5), -3);
  EXPECT_EQ(rd::tail_away<uint8_t>(double(NAN)), 0);
  // Ties in the tail go by the parity of the integer part.
  EXPECT_EQ(rd::tail<int16_t>(-2.5f), -2);
  EXPECT_EQ(rd::tail<int16_t>(-3.5f), -4);
  EXPECT_EQ(rd::tail<uint8_t>(254.5f), 254);
}

}  // namespace
