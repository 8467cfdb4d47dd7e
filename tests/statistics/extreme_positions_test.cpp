// MaxIndx, MinIndx, MinMaxIndx, MaxAbsIndx, MinAbsIndx.
#include "statistics/search_data.h"
#include "support/sweep.h"

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

// A value and its index; MinMaxIndx writes two.
template <class T>
struct Found {
  T v;
  int32_t at;
};
template <class T>
struct Found2 {
  Found<T> mn, mx;
};

// Values compare with ==: the value written may be the other zero than the one at the
// index written; a NaN matches any NaN (the backends' agreement fixes its bits).
template <class T>
bool same(const Found<T>& got, const Found<T>& want) {
  return (st::is_nan(want.v) ? st::is_nan(got.v) : got.v == want.v) && got.at == want.at;
}

template <class T>
Found<T> checked_rule(bool max, bool abs, const T* src, int len) {
  const auto [v, at] = rule(max, abs, src, len);
  if (!abs && std::none_of(src, src + len, st::is_nan<T>)) {  // the ordinary extreme at its first position
    EXPECT_EQ(at, (max ? std::max_element(src, src + len) : std::min_element(src, src + len)) - src);
  }
  return {v, at};
}

template <class T, class D>
zt::Member<T, D, Mix> member(std::string name, typename zt::Member<T, D, Mix>::Call call) {
  zt::Member<T, D, Mix> m;
  m.name = name;
  m.call = call;
  m.out_len = [](int32_t) { return 1; };
  m.alone = false;
  m.params = {st::kMixes, st::kMixes + 4};
  m.fill = [](T* p, size_t n, const Mix& mix, zt::Rng& rng) { st::fill(p, static_cast<int>(n), rng, mix); };
  m.lengths = st::lengths();
  return m;
}

template <class T>
void check_single(const char* name, typename zt::Member<T, Found<T>, Mix>::Call call, bool max, bool abs) {
  auto m = member<T, Found<T>>(name, call);
  m.rule = [max, abs](const T* a, const T*, Mix, int32_t n, Found<T>* want) { *want = checked_rule(max, abs, a, n); };
  m.same = same<T>;
  zt::check_member(m);
}

template <class T>
void check_min_max(const char* name, typename zt::Member<T, Found2<T>, Mix>::Call call) {
  auto m = member<T, Found2<T>>(name, call);
  m.rule = [](const T* a, const T*, Mix, int32_t n, Found2<T>* want) {
    *want = {checked_rule(false, false, a, n), checked_rule(true, false, a, n)};
  };
  m.same = [](const Found2<T>& x, const Found2<T>& y) { return same(x.mn, y.mn) && same(x.mx, y.mx); };
  zt::check_member(m);
}

#define ZT_ONE(op, code, T, max, abs) \
  check_single<T>(#op "_" #code, ZT_CALL(ZIVKS_##op##_##code, a, n, d ? &d->v : nullptr, d ? &d->at : nullptr), max, abs)
#define ZT_MM(code, T)                                                                                   \
  check_min_max<T>("MinMaxIndx_" #code, ZT_CALL(ZIVKS_MinMaxIndx_##code, a, n, d ? &d->mn.v : nullptr,   \
                                                d ? &d->mn.at : nullptr, d ? &d->mx.v : nullptr, d ? &d->mx.at : nullptr))

TEST(ExtremePositions, EveryMemberFollowsTheRule) {
  ZT_ONE(MaxIndx, 16s, int16_t, true, false);
  ZT_ONE(MaxIndx, 32s, int32_t, true, false);
  ZT_ONE(MaxIndx, 32f, float, true, false);
  ZT_ONE(MaxIndx, 64f, double, true, false);
  ZT_ONE(MinIndx, 16s, int16_t, false, false);
  ZT_ONE(MinIndx, 32s, int32_t, false, false);
  ZT_ONE(MinIndx, 32f, float, false, false);
  ZT_ONE(MinIndx, 64f, double, false, false);
  ZT_ONE(MaxAbsIndx, 16s, int16_t, true, true);
  ZT_ONE(MaxAbsIndx, 32s, int32_t, true, true);
  ZT_ONE(MinAbsIndx, 16s, int16_t, false, true);
  ZT_ONE(MinAbsIndx, 32s, int32_t, false, true);
  ZT_MM(8u, uint8_t);
  ZT_MM(16u, uint16_t);
  ZT_MM(32u, uint32_t);
  ZT_MM(16s, int16_t);
  ZT_MM(32s, int32_t);
  ZT_MM(32f, float);
  ZT_MM(64f, double);
  // Every output pointer is required, not only the first.
  float v, src[1] = {1};
  int32_t at;
  EXPECT_EQ(ZIVKS_MaxIndx_32f(src, 1, &v, nullptr), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_MinMaxIndx_32f(src, 1, &v, &at, &v, nullptr), ZIVK_STS_NULL_PTR_ERR);
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
