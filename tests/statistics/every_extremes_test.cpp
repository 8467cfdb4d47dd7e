// MaxEvery, MinEvery, CountInRange, FindNearest, ReplaceNAN.
#include "statistics/search_data.h"

namespace {

using st::Mix;

// The float rule: blocks of one vector propagate NaN (the first source's NaN first,
// a signalling one before a quiet one) and order -0 below +0; the tail takes src1 where
// it is at or above (at or below) src2, else src2.
template <class F>
F float_rule(bool max, bool in_block, F a, F b) {
  if (in_block) {
    if (std::isnan(a) || std::isnan(b)) return std::numeric_limits<F>::quiet_NaN();
    if (a == b) return max == std::signbit(a) ? b : a;  // +0 is the larger zero
    return (max ? a > b : a < b) ? a : b;
  }
  return (max ? a >= b : a <= b) ? a : b;
}

template <class F>
using Fn = ZIVKStatus (*)(const F*, const F*, F*, int32_t);
template <class F>
using FnI = ZIVKStatus (*)(const F*, F*, int32_t);

template <class F>
void check_float(Fn<F> fn, FnI<F> fn_i, Fn<F> twin, bool max, const char* name) {
  {
    zt::Guarded<F> d(2);
    const F a[2] = {1, 2};
    EXPECT_EQ(fn(a, nullptr, d.data(), 2), ZIVK_STS_NULL_PTR_ERR) << name;
    EXPECT_EQ(fn(a, a, d.data(), 0), ZIVK_STS_SIZE_ERR) << name;
    EXPECT_EQ(fn_i(nullptr, d.data(), 2), ZIVK_STS_NULL_PTR_ERR) << name;
    EXPECT_TRUE(d.untouched()) << name;
  }
  zt::Rng rng(81);
  const int kB = 16 / sizeof(F);
  for (Mix mix : {Mix::kAny, Mix::kTies}) {
    for (int len : zt::test_lengths()) {
      const size_t mis = (rng() % 2) * sizeof(F);
      zt::Guarded<F> a(len, mis), b(len), d(len, mis), t(len), in(len, mis);
      st::fill(a.data(), len, rng, mix);
      st::fill(b.data(), len, rng, mix);
      ASSERT_EQ(fn(a.data(), b.data(), d.data(), len), 0);
      ASSERT_TRUE(d.guards_intact()) << name;
      const int n = len / kB * kB;
      for (int i = 0; i < len; ++i)
        ASSERT_TRUE(st::same(d[i], float_rule(max, i < n, a[i], b[i]))) << name << " len " << len << " at " << i;
      for (int i = 0; i < len; ++i) in[i] = b[i];
      ASSERT_EQ(fn_i(a.data(), in.data(), len), 0);
      EXPECT_EQ(zt::first_difference(in.data(), d.data(), len), -1) << name << " in place, len " << len;
      if (twin) {
        ASSERT_EQ(twin(a.data(), b.data(), t.data(), len), 0);
        EXPECT_EQ(zt::first_difference(t.data(), d.data(), len), -1) << name << " generic backend, len " << len;
      }
    }
  }
}

TEST(EveryExtremes, Float) {
  check_float(ZIVKS_MaxEvery_32f, ZIVKS_MaxEvery_32f_I, ZT_TWIN(ZIVKS_MaxEvery_32f), true, "MaxEvery_32f");
  check_float(ZIVKS_MaxEvery_64f, ZIVKS_MaxEvery_64f_I, ZT_TWIN(ZIVKS_MaxEvery_64f), true, "MaxEvery_64f");
  check_float(ZIVKS_MinEvery_32f, ZIVKS_MinEvery_32f_I, ZT_TWIN(ZIVKS_MinEvery_32f), false, "MinEvery_32f");
  check_float(ZIVKS_MinEvery_64f, ZIVKS_MinEvery_64f_I, ZT_TWIN(ZIVKS_MinEvery_64f), false, "MinEvery_64f");
}

TEST(EveryExtremes, NaNPayloadAndTailRule) {
  float a[5] = {NAN, 1, 2, 3, NAN}, b[5] = {0, 1, 2, 3, 4}, d[5];
  uint32_t nan_bits = 0x7F800001;  // signalling, in the second source
  memcpy(&b[0], &nan_bits, 4);
  ASSERT_EQ(ZIVKS_MaxEvery_32f(a, b, d, 5), 0);
  uint32_t got;
  memcpy(&got, &d[0], 4);
  EXPECT_EQ(got, 0x7FC00001u);  // the signalling NaN wins, quietened
  EXPECT_EQ(d[4], 4.0f);         // the tail drops src1's NaN
  b[4] = NAN;
  a[4] = 1;
  ASSERT_EQ(ZIVKS_MinEvery_32f(a, b, d, 5), 0);
  EXPECT_TRUE(std::isnan(d[4]));  // and keeps src2's
}

template <class T>
void check_int(FnI<T> fn, FnI<T> twin, bool max, const char* name) {
  zt::Rng rng(82);
  for (int len : zt::test_lengths()) {
    zt::Guarded<T> a(len), b(len), t(len);
    st::fill(a.data(), len, rng, rng() % 2 ? Mix::kAny : Mix::kTies);
    st::fill(b.data(), len, rng, Mix::kAny);
    for (int i = 0; i < len; ++i) t[i] = b[i];
    ASSERT_EQ(fn(a.data(), b.data(), len), 0);
    ASSERT_TRUE(b.guards_intact());
    for (int i = 0; i < len; ++i) ASSERT_EQ(b[i], max ? std::max(a[i], t[i]) : std::min(a[i], t[i])) << name;
    if (twin) {
      ASSERT_EQ(twin(a.data(), t.data(), len), 0);
      EXPECT_EQ(zt::first_difference(t.data(), b.data(), len), -1) << name << " generic backend";
    }
  }
  EXPECT_EQ(fn(nullptr, nullptr, 0), ZIVK_STS_NULL_PTR_ERR);
}

TEST(EveryExtremes, IntegerInPlace) {
  check_int(ZIVKS_MaxEvery_16s_I, ZT_TWIN(ZIVKS_MaxEvery_16s_I), true, "MaxEvery_16s_I");
  check_int(ZIVKS_MaxEvery_32s_I, ZT_TWIN(ZIVKS_MaxEvery_32s_I), true, "MaxEvery_32s_I");
  check_int(ZIVKS_MinEvery_16s_I, ZT_TWIN(ZIVKS_MinEvery_16s_I), false, "MinEvery_16s_I");
  check_int(ZIVKS_MinEvery_32s_I, ZT_TWIN(ZIVKS_MinEvery_32s_I), false, "MinEvery_32s_I");
}

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

template <class F>
void check_replace(ZIVKStatus (*fn)(F, F*, int32_t), decltype(fn) twin) {
  zt::Rng rng(85);
  for (int len : zt::test_lengths()) {
    zt::Guarded<F> a(len, (rng() % 2) * sizeof(F)), t(len);
    st::fill(a.data(), len, rng, Mix::kAny);
    std::vector<F> before(a.data(), a.data() + len);
    for (int i = 0; i < len; ++i) t[i] = a[i];
    const F val = zt::special_float<F>(rng);
    ASSERT_EQ(fn(val, a.data(), len), 0);
    ASSERT_TRUE(a.guards_intact());
    for (int i = 0; i < len; ++i)
      ASSERT_TRUE(zt::same_bits(a[i], std::isnan(before[i]) ? val : before[i])) << "len " << len << " at " << i;
    if (twin) {
      ASSERT_EQ(twin(val, t.data(), len), 0);
      EXPECT_EQ(zt::first_difference(t.data(), a.data(), len), -1);
    }
  }
  EXPECT_EQ(fn(0, nullptr, 3), ZIVK_STS_NULL_PTR_ERR);
}

TEST(ReplaceNAN, EveryNaNAndNothingElse) {
  check_replace(ZIVKS_ReplaceNAN_32f_I, ZT_TWIN(ZIVKS_ReplaceNAN_32f_I));
  check_replace(ZIVKS_ReplaceNAN_64f_I, ZT_TWIN(ZIVKS_ReplaceNAN_64f_I));
}

}  // namespace
