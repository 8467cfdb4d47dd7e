// CountInRange: the elements strictly between the bounds.
#include "statistics/search_data.h"

namespace {

using st::Mix;

TEST(CountInRange, BoundsExcludedAndEmptyRanges) {
  zt::Rng rng(83);
  for (int len : zt::test_lengths()) {
    std::vector<int32_t> src(len);
    st::fill(src.data(), len, rng, Mix::kTies);
    for (int k = 0; k < 4; ++k) {
      const int32_t pick = src[rng() % len], lo = pick == INT32_MIN ? pick : pick - static_cast<int32_t>(rng() % 2);
      const int32_t hi = k == 3 ? INT32_MAX : src[rng() % len];
      int32_t got = -1;
      ASSERT_EQ(ZIVKS_CountInRange_32s(src.data(), len, &got, lo, hi), 0);
      int32_t want = 0;
      for (int32_t x : src) want += lo < x && x < hi;
      EXPECT_EQ(got, want) << "len " << len << " bounds " << lo << " " << hi;
    }
  }
  const int32_t v[5] = {5, 6, 7, 6, 6};
  int32_t c = -1;
  ASSERT_EQ(ZIVKS_CountInRange_32s(v, 5, &c, 5, 7), 0);
  EXPECT_EQ(c, 3);
  // Nothing lies strictly between: 0 without reading src.
  for (auto b : {std::pair<int32_t, int32_t>{5, 6}, {7, 5}, {INT32_MAX, INT32_MIN}, {INT32_MAX, INT32_MAX}}) {
    c = -1;
    ASSERT_EQ(ZIVKS_CountInRange_32s(reinterpret_cast<const int32_t*>(16), 1000, &c, b.first, b.second), 0);
    EXPECT_EQ(c, 0);
  }
  EXPECT_EQ(ZIVKS_CountInRange_32s(v, 0, &c, 0, 9), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(ZIVKS_CountInRange_32s(v, 5, nullptr, 0, 9), ZIVK_STS_NULL_PTR_ERR);
}

}  // namespace
