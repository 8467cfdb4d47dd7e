// FindNearestOne and FindNearest over a sorted table.
#include "statistics/search_data.h"

namespace {

TEST(FindNearest, BinarySearchAndTies) {
  const uint16_t t2[2] = {10, 20};
  uint16_t v;
  int32_t at;
  ASSERT_EQ(ZIVKS_FindNearestOne_16u(15, &v, &at, t2, 2), 0);
  EXPECT_EQ(v, 10);
  EXPECT_EQ(at, 0);
  ASSERT_EQ(ZIVKS_FindNearestOne_16u(16, &v, &at, t2, 2), 0);
  EXPECT_EQ(v, 20);
  EXPECT_EQ(at, 1);
  for (uint16_t x : {0, 7, 65535}) {
    ASSERT_EQ(ZIVKS_FindNearestOne_16u(x, &v, &at, t2 + 1, 1), 0);
    EXPECT_EQ(v, 20);
    EXPECT_EQ(at, 0);
  }
  // Equal entries: the first probe that meets one answers.
  const uint16_t eq[5] = {3, 3, 3, 3, 3};
  ASSERT_EQ(ZIVKS_FindNearestOne_16u(3, &v, &at, eq, 5), 0);
  EXPECT_EQ(at, 2);

  // Over random sorted tables: the nearest value, at an index that holds it, the lower
  // of two equally near values.
  zt::Rng rng(84);
  for (int n : {1, 2, 3, 7, 64, 300}) {
    std::vector<uint16_t> table(n), src(257), dst(257);
    std::vector<int32_t> idx(257);
    for (auto& x : table) x = static_cast<uint16_t>(rng() % (rng() % 2 ? 100 : 65536));
    std::sort(table.begin(), table.end());
    for (auto& x : src) x = static_cast<uint16_t>(rng());
    ASSERT_EQ(ZIVKS_FindNearest_16u(src.data(), dst.data(), idx.data(), 257, table.data(), n), 0);
    for (int i = 0; i < 257; ++i) {
      int best = 1 << 20;
      for (uint16_t e : table) best = std::min(best, std::abs(int{e} - src[i]));
      ASSERT_EQ(std::abs(int{dst[i]} - src[i]), best) << "table " << n;
      ASSERT_EQ(table[idx[i]], dst[i]);
      const int below = src[i] - best, above = src[i] + best;
      if (dst[i] == above && best > 0) {
        EXPECT_EQ(std::count(table.begin(), table.end(), below), 0);
      }
    }
  }
  uint16_t d1;
  int32_t i1;
  EXPECT_EQ(ZIVKS_FindNearestOne_16u(1, &v, &at, t2, 0), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(ZIVKS_FindNearestOne_16u(1, &v, nullptr, t2, 2), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_FindNearest_16u(t2, &d1, &i1, 1, t2, 0), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(ZIVKS_FindNearest_16u(t2, &d1, nullptr, 1, t2, 2), ZIVK_STS_NULL_PTR_ERR);
}

}  // namespace
