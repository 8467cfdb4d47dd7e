// Max, Min, MinMax, MaxAbs, MinAbs.
#include "statistics/search_data.h"
#include "support/sweep.h"

namespace {

using st::Mix;

enum class Op { kMax, kMin, kMaxAbs, kMinAbs };

template <class T> constexpr int kB = 32 / sizeof(T);

// The rule, stated plainly: the block part (elements below n = len rounded down to a
// multiple of B, together with the seed) gives its extreme under the order with -0
// below +0, or NaN if it holds one; the tail then replaces the running value only by
// a strictly greater (smaller) element, which a NaN never is and never lets pass.
template <class T>
T rule(Op op, const T* src, int len) {
  const bool max = op == Op::kMax || op == Op::kMaxAbs;
  const bool abs = op == Op::kMaxAbs || op == Op::kMinAbs;
  auto view = [&](T x) { return abs ? st::sat_abs(x) : x; };
  const int n = len / kB<T> * kB<T>;
  T best;
  if (n > 0) {
    int from = 0;
    if (op == Op::kMax || op == Op::kMin) best = src[0];
    else if (op == Op::kMinAbs) best = std::numeric_limits<T>::max();
    else if constexpr (st::kFloat<T>) best = std::numeric_limits<T>::min();
    else best = src[0], from = sizeof(T) == 4 ? 8 : 0;  // MaxAbs_32s skips elements 1 to 7
    for (int i = from; i < n && !st::is_nan(best); ++i) {
      const T x = view(src[i]);
      if (st::is_nan(x)) best = x;
      else if (max ? st::total_less(best, x) : st::total_less(x, best)) best = x;
    }
  } else {
    best = op == Op::kMinAbs ? std::numeric_limits<T>::max() : view(src[0]);
  }
  for (int i = n; i < len; ++i) {
    const T x = view(src[i]);
    if (max ? x > best : x < best) best = x;
  }
  return best;
}

// Over data of every mix (the parameter): the rule, which for data without NaN is the
// ordinary extreme, and the generic backend bit for bit.
template <class T>
zt::Member<T, T, Mix> member(std::string name, typename zt::Member<T, T, Mix>::Call call, int outputs) {
  zt::Member<T, T, Mix> m;
  m.name = name;
  m.call = call;
  m.out_len = [outputs](int32_t) { return outputs; };
  m.alone = false;
  m.params = {st::kMixes, st::kMixes + 4};
  m.fill = [](T* p, size_t n, const Mix& mix, zt::Rng& rng) { st::fill(p, static_cast<int>(n), rng, mix); };
  m.lengths = st::lengths();
  m.same = [](const T& x, const T& y) { return bool(st::same(x, y)); };
  return m;
}

template <class T>
T checked_rule(Op op, const T* src, int len) {
  const T r = rule(op, src, len);
  if ((op == Op::kMax || op == Op::kMin) && std::none_of(src, src + len, st::is_nan<T>)) {
    EXPECT_TRUE(r == (op == Op::kMax ? *std::max_element(src, src + len) : *std::min_element(src, src + len)));
  }
  return r;
}

template <class T>
void check(const char* code, typename zt::Member<T, T, Mix>::Call max, decltype(max) min, decltype(max) max_abs,
           decltype(max) min_abs, decltype(max) min_max) {
  const std::pair<Op, decltype(max)> ops[] = {{Op::kMax, max}, {Op::kMin, min}, {Op::kMaxAbs, max_abs}, {Op::kMinAbs, min_abs}};
  for (const auto& [op, call] : ops) {
    const char* op_name = op == Op::kMax ? "Max_" : op == Op::kMin ? "Min_" : op == Op::kMaxAbs ? "MaxAbs_" : "MinAbs_";
    auto m = member<T>(std::string(op_name) + code, call, 1);
    m.rule = [op = op](const T* a, const T*, Mix, int32_t n, T* want) { want[0] = checked_rule(op, a, n); };
    zt::check_member(m);
  }
  auto m = member<T>(std::string("MinMax_") + code, min_max, 2);
  m.rule = [](const T* a, const T*, Mix, int32_t n, T* want) {
    want[0] = checked_rule(Op::kMin, a, n);
    want[1] = checked_rule(Op::kMax, a, n);
  };
  zt::check_member(m);
}

#define ZT_ONE(op, code) ZT_CALL(ZIVKS_##op##_##code, a, n, d)
#define ZT_ALL(code, T)                                                                                   \
  check<T>(#code, ZT_ONE(Max, code), ZT_ONE(Min, code), ZT_ONE(MaxAbs, code), ZT_ONE(MinAbs, code),         \
           ZT_CALL(ZIVKS_MinMax_##code, a, n, d, d ? d + 1 : nullptr))

TEST(ExtremeValues, EveryMemberFollowsTheRule) {
  ZT_ALL(16s, int16_t);
  ZT_ALL(32s, int32_t);
  ZT_ALL(32f, float);
  ZT_ALL(64f, double);
  float v, src[1] = {1};
  EXPECT_EQ(ZIVKS_MinMax_32f(src, 1, &v, nullptr), ZIVK_STS_NULL_PTR_ERR);  // both outputs are required
}

// MinMax of the unsigned and 8-bit types, which have no Max or Min of their own.
TEST(ExtremeValues, MinMaxOfTheOtherTypes) {
#define ZT_MM(code, T)                                                                             \
  {                                                                                               \
    auto m = member<T>("MinMax_" #code, ZT_CALL(ZIVKS_MinMax_##code, a, n, d, d ? d + 1 : nullptr), 2); \
    m.rule = [](const T* a, const T*, Mix, int32_t n, T* want) {                                  \
      want[0] = *std::min_element(a, a + n);                                                      \
      want[1] = *std::max_element(a, a + n);                                                      \
    };                                                                                            \
    zt::check_member(m);                                                                          \
  }
  ZT_MM(8u, uint8_t);
  ZT_MM(16u, uint16_t);
  ZT_MM(32u, uint32_t);
#undef ZT_MM
}

TEST(ExtremeValues, Seeds) {
  int32_t r32;
  int32_t v[9] = {-5, -100, 0, 0, 0, 0, 0, 0, 7};
  ASSERT_EQ(ZIVKS_MaxAbs_32s(v, 8, &r32), 0);
  EXPECT_EQ(r32, -5);  // elements 1 to 7 unread, src[0] keeps its sign
  ASSERT_EQ(ZIVKS_MaxAbs_32s(v, 9, &r32), 0);
  EXPECT_EQ(r32, 7);
  ASSERT_EQ(ZIVKS_MaxAbs_32s(v, 7, &r32), 0);
  EXPECT_EQ(r32, 100);
  const int32_t most_neg[8] = {INT32_MIN, 0, 0, 0, 0, 0, 0, 0};
  ASSERT_EQ(ZIVKS_MaxAbs_32s(most_neg, 1, &r32), 0);
  EXPECT_EQ(r32, INT32_MAX);  // the wrapped short seed does not survive

  int16_t r16;
  const int16_t m16[2] = {-32768, -32768};
  ASSERT_EQ(ZIVKS_MaxAbs_16s(m16, 1, &r16), 0);
  EXPECT_EQ(r16, 32767);
  ASSERT_EQ(ZIVKS_MinAbs_16s(m16, 2, &r16), 0);
  EXPECT_EQ(r16, 32767);

  float f;
  const float zeros32[8] = {};
  ASSERT_EQ(ZIVKS_MaxAbs_32f(zeros32, 8, &f), 0);
  EXPECT_EQ(f, 1.17549435e-38f);
  ASSERT_EQ(ZIVKS_MaxAbs_32f(zeros32, 7, &f), 0);
  EXPECT_EQ(f, 0.0f);
  double d;
  const double zeros64[4] = {};
  ASSERT_EQ(ZIVKS_MaxAbs_64f(zeros64, 4, &d), 0);
  EXPECT_EQ(d, 2.2250738585072014e-308);
  ASSERT_EQ(ZIVKS_MaxAbs_64f(zeros64, 3, &d), 0);
  EXPECT_EQ(d, 0.0);

  // MinAbs never exceeds the largest finite value, and ignores a NaN at src[0] of a
  // short vector; MaxAbs does not.
  const float infs[9] = {INFINITY, -INFINITY, INFINITY, INFINITY, INFINITY, INFINITY, INFINITY, INFINITY, INFINITY};
  for (int len : {1, 8, 9}) {
    ASSERT_EQ(ZIVKS_MinAbs_32f(infs, len, &f), 0);
    EXPECT_EQ(f, 3.4028234663852886e+38f) << len;
  }
  const float nan1[1] = {NAN};
  ASSERT_EQ(ZIVKS_MinAbs_32f(nan1, 1, &f), 0);
  EXPECT_EQ(f, 3.4028234663852886e+38f);
  ASSERT_EQ(ZIVKS_MaxAbs_32f(nan1, 1, &f), 0);
  EXPECT_TRUE(std::isnan(f));
}

TEST(ExtremeValues, NaNAndSignedZeroInBlockAndTail) {
  float s[9] = {1, 2, 3, 4, 5, NAN, 7, 8, 9};
  float f;
  ASSERT_EQ(ZIVKS_Max_32f(s, 8, &f), 0);
  EXPECT_TRUE(std::isnan(f));  // in the block
  s[5] = 6;
  s[8] = NAN;
  ASSERT_EQ(ZIVKS_Max_32f(s, 9, &f), 0);
  EXPECT_EQ(f, 8.0f);  // in the tail
  float lo, hi;
  s[0] = NAN;
  ASSERT_EQ(ZIVKS_MinMax_32f(s, 3, &lo, &hi), 0);  // NaN seed below one block
  EXPECT_TRUE(std::isnan(lo) && std::isnan(hi));

  // Blocks order -0 below +0; the tail keeps the running zero.
  const double z[5] = {-0.0, 0.0, -0.0, -0.0, 0.0};
  double d;
  ASSERT_EQ(ZIVKS_Max_64f(z, 4, &d), 0);
  EXPECT_FALSE(std::signbit(d));
  ASSERT_EQ(ZIVKS_Max_64f(z + 2, 3, &d), 0);
  EXPECT_TRUE(std::signbit(d));
  ASSERT_EQ(ZIVKS_Min_64f(z + 1, 4, &d), 0);
  EXPECT_TRUE(std::signbit(d));
  ASSERT_EQ(ZIVKS_Min_64f(z + 1, 2, &d), 0);
  EXPECT_FALSE(std::signbit(d));
}

}  // namespace
