// MaxIndx, MinIndx, MinMaxIndx, MaxAbsIndx, MinAbsIndx.
#include "statistics/search_data.h"

namespace {

using st::Mix;

template <class T> constexpr int kB = 32 / sizeof(T);

// The rule, stated plainly: a block (of B elements, below len rounded down to a
// multiple of B) that holds a NaN takes no part, nor does a NaN in the tail; among the
// rest the first element strictly beyond the seed and all before it wins, else the
// seed at index 0. A NaN src[0] stays, at index B - 1 from one block on.
template <class T>
std::pair<T, int> rule(bool max, bool abs, const T* src, int len) {
  auto view = [&](T x) { return abs ? st::sat_abs(x) : x; };
  const int n = len / kB<T> * kB<T>;
  if (st::is_nan(src[0])) return {src[0], n > 0 ? kB<T> - 1 : 0};
  T best = abs ? (max ? T(0) : std::numeric_limits<T>::max()) : src[0];
  int at = 0;
  for (int i = 0; i < len; ++i) {
    if (i < n) {
      const int b = i / kB<T> * kB<T>;
      if (std::any_of(src + b, src + b + kB<T>, [](T x) { return st::is_nan(x); })) continue;
    }
    const T x = view(src[i]);
    if (max ? x > best : x < best) best = x, at = i;
  }
  return {best, at};
}

// Values compare with ==: the value written may be the other zero than the one at the
// index written.
template <class T>
::testing::AssertionResult matches(T got, int got_at, std::pair<T, int> want) {
  const bool value_ok = st::is_nan(want.first) ? st::is_nan(got) : got == want.first;
  if (value_ok && got_at == want.second) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "got " << +got << " at " << got_at << ", want " << +want.first
                                       << " at " << want.second;
}

template <class T>
using Fn = ZIVKStatus (*)(const T*, int32_t, T*, int32_t*);

template <class T>
void check_single(Fn<T> fn, Fn<T> twin, bool max, bool abs, const char* name) {
  zt::Rng rng(71);
  {
    zt::Guarded<T> out(1);
    zt::Guarded<int32_t> at(1);
    const T src[1] = {1};
    EXPECT_EQ(fn(nullptr, 1, out.data(), at.data()), ZIVK_STS_NULL_PTR_ERR) << name;
    EXPECT_EQ(fn(src, 1, out.data(), nullptr), ZIVK_STS_NULL_PTR_ERR) << name;
    EXPECT_EQ(fn(src, 0, out.data(), at.data()), ZIVK_STS_SIZE_ERR) << name;
    EXPECT_TRUE(out.untouched() && at.untouched()) << name;
  }
  for (Mix mix : st::kMixes) {
    for (int len : st::lengths()) {
      zt::Guarded<T> src(len, (rng() % 2) * sizeof(T));
      st::fill(src.data(), len, rng, mix);
      T v, tv;
      int32_t at, tat;
      ASSERT_EQ(fn(src.data(), len, &v, &at), 0);
      ASSERT_TRUE(matches(v, at, rule(max, abs, src.data(), len))) << name << " len " << len;
      if (!abs && ((mix == Mix::kTies || mix == Mix::kNoNaN) || !st::kFloat<T>)) {
        // Without NaN: the ordinary extreme at its first position.
        const T* e = max ? std::max_element(src.data(), src.data() + len)
                         : std::min_element(src.data(), src.data() + len);
        EXPECT_EQ(at, e - src.data()) << name << " len " << len;
      }
      if (twin) {
        ASSERT_EQ(twin(src.data(), len, &tv, &tat), 0);
        ASSERT_TRUE(zt::same_bits(v, tv) && at == tat) << name << " generic backend, len " << len;
      }
    }
  }
}

TEST(ExtremePositions, SingleMembersMatchTheRule) {
#define ZT_ONE(op, code, max, abs) check_single(ZIVKS_##op##_##code, ZT_TWIN(ZIVKS_##op##_##code), max, abs, #op "_" #code)
  ZT_ONE(MaxIndx, 16s, true, false);
  ZT_ONE(MaxIndx, 32s, true, false);
  ZT_ONE(MaxIndx, 32f, true, false);
  ZT_ONE(MaxIndx, 64f, true, false);
  ZT_ONE(MinIndx, 16s, false, false);
  ZT_ONE(MinIndx, 32s, false, false);
  ZT_ONE(MinIndx, 32f, false, false);
  ZT_ONE(MinIndx, 64f, false, false);
  ZT_ONE(MaxAbsIndx, 16s, true, true);
  ZT_ONE(MaxAbsIndx, 32s, true, true);
  ZT_ONE(MinAbsIndx, 16s, false, true);
  ZT_ONE(MinAbsIndx, 32s, false, true);
#undef ZT_ONE
}

template <class T>
void check_min_max(ZIVKStatus (*fn)(const T*, int32_t, T*, int32_t*, T*, int32_t*), decltype(fn) twin,
                   const char* name) {
  zt::Rng rng(72);
  {
    T a, b;
    int32_t i;
    zt::Guarded<int32_t> j(1);
    const T src[1] = {1};
    EXPECT_EQ(fn(src, 1, &a, &i, &b, nullptr), ZIVK_STS_NULL_PTR_ERR) << name;
    EXPECT_EQ(fn(src, -4, &a, &i, &b, j.data()), ZIVK_STS_SIZE_ERR) << name;
    EXPECT_TRUE(j.untouched()) << name;
  }
  for (Mix mix : st::kMixes) {
    for (int len : st::lengths()) {
      zt::Guarded<T> src(len, (rng() % 2) * sizeof(T));
      st::fill(src.data(), len, rng, mix);
      T mn, mx, tmn, tmx;
      int32_t imn, imx, timn, timx;
      ASSERT_EQ(fn(src.data(), len, &mn, &imn, &mx, &imx), 0);
      ASSERT_TRUE(matches(mn, imn, rule(false, false, src.data(), len))) << name << " min, len " << len;
      ASSERT_TRUE(matches(mx, imx, rule(true, false, src.data(), len))) << name << " max, len " << len;
      if (twin) {
        ASSERT_EQ(twin(src.data(), len, &tmn, &timn, &tmx, &timx), 0);
        ASSERT_TRUE(zt::same_bits(mn, tmn) && zt::same_bits(mx, tmx) && imn == timn && imx == timx)
            << name << " generic backend, len " << len;
      }
    }
  }
}

TEST(ExtremePositions, MinMaxIndxMatchesTheRule) {
#define ZT_MM(code) check_min_max(ZIVKS_MinMaxIndx_##code, ZT_TWIN(ZIVKS_MinMaxIndx_##code), "MinMaxIndx_" #code)
  ZT_MM(8u);
  ZT_MM(16u);
  ZT_MM(32u);
  ZT_MM(16s);
  ZT_MM(32s);
  ZT_MM(32f);
  ZT_MM(64f);
#undef ZT_MM
}

TEST(ExtremePositions, TiesNaNAndSaturation) {
  int16_t v16;
  int32_t at;
  std::vector<int16_t> same(40, 9);
  ASSERT_EQ(ZIVKS_MaxIndx_16s(same.data(), 40, &v16, &at), 0);
  EXPECT_EQ(at, 0);

  float f;
  float s[9] = {1, NAN, 5, 2, 0, 0, 0, 0, 0};
  ASSERT_EQ(ZIVKS_MaxIndx_32f(s, 8, &f, &at), 0);
  EXPECT_EQ(f, 1.0f);  // the 5 is hidden by the NaN of its block
  EXPECT_EQ(at, 0);
  ASSERT_EQ(ZIVKS_MaxIndx_32f(s, 7, &f, &at), 0);
  EXPECT_EQ(f, 5.0f);
  EXPECT_EQ(at, 2);
  float n[9] = {NAN, 1, 2, 3, 4, 5, 6, 7, 8};
  ASSERT_EQ(ZIVKS_MaxIndx_32f(n, 9, &f, &at), 0);
  EXPECT_TRUE(std::isnan(f));
  EXPECT_EQ(at, 7);
  double d;
  const double dn[5] = {NAN, 1, 2, 3, 4};
  ASSERT_EQ(ZIVKS_MinIndx_64f(dn, 5, &d, &at), 0);
  EXPECT_EQ(at, 3);
  ASSERT_EQ(ZIVKS_MinIndx_64f(dn, 3, &d, &at), 0);
  EXPECT_EQ(at, 0);

  const int16_t sat[2] = {-32768, 32767};
  ASSERT_EQ(ZIVKS_MinAbsIndx_16s(sat, 2, &v16, &at), 0);
  EXPECT_EQ(v16, 32767);
  EXPECT_EQ(at, 0);
  const int16_t zeros[20] = {};
  ASSERT_EQ(ZIVKS_MaxAbsIndx_16s(zeros, 20, &v16, &at), 0);
  EXPECT_EQ(v16, 0);
  EXPECT_EQ(at, 0);
  int32_t v32;
  const int32_t big[10] = {5, -7, 3, 0, 0, 0, 0, INT32_MIN, 0, INT32_MAX};
  ASSERT_EQ(ZIVKS_MaxAbsIndx_32s(big, 10, &v32, &at), 0);
  EXPECT_EQ(v32, INT32_MAX);
  EXPECT_EQ(at, 7);  // -2147483648 counts as 2147483647 and comes first

  // Signed zeros tie: the lane walk stops at the first zero, and the value written is
  // the block's, +0 for the maximum.
  const float z[8] = {-1, -0.0f, 0.0f, -2, -3, -4, -5, -6};
  ASSERT_EQ(ZIVKS_MaxIndx_32f(z, 8, &f, &at), 0);
  EXPECT_EQ(at, 1);
  EXPECT_FALSE(std::signbit(f));

  // In a long vector the value is that of the first block to reach the extreme: +0
  // where that block also holds +0, -0 where a later block (near or far) brings it.
  for (int later : {0, 1, 2}) {
    std::vector<float> v(3000, -1.0f);
    v[1203] = -0.0f;
    v[later == 0 ? 1205 : later == 1 ? 1212 : 2501] = 0.0f;
    ASSERT_EQ(ZIVKS_MaxIndx_32f(v.data(), 3000, &f, &at), 0);
    EXPECT_EQ(at, 1203);
    EXPECT_EQ(std::signbit(f), later != 0);
    for (float& x : v) x = -x;
    ASSERT_EQ(ZIVKS_MinIndx_32f(v.data(), 3000, &f, &at), 0);
    EXPECT_EQ(at, 1203);
    EXPECT_EQ(std::signbit(f), later == 0);
  }
}

}  // namespace
