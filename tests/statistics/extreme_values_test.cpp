// Max, Min, MinMax, MaxAbs, MinAbs.
#include "statistics/search_data.h"

namespace {

using st::Mix;

enum class Op { kMax, kMin, kMaxAbs, kMinAbs };

template <class T>
using Fn = ZIVKStatus (*)(const T*, int32_t, T*);

template <class T>
struct Member {
  const char* name;
  Op op;
  Fn<T> fn, twin;
};

#define ZT_MEMBER(op, code) Member<T>{#op "_" #code, Op::k##op, ZIVKS_##op##_##code, ZT_TWIN(ZIVKS_##op##_##code)}
#define ZT_MEMBERS(code) \
  std::vector<Member<T>>{ZT_MEMBER(Max, code), ZT_MEMBER(Min, code), ZT_MEMBER(MaxAbs, code), ZT_MEMBER(MinAbs, code)}
template <class T> std::vector<Member<T>> members();
template <> std::vector<Member<int16_t>> members() { using T = int16_t; return ZT_MEMBERS(16s); }
template <> std::vector<Member<int32_t>> members() { using T = int32_t; return ZT_MEMBERS(32s); }
template <> std::vector<Member<float>> members() { using T = float; return ZT_MEMBERS(32f); }
template <> std::vector<Member<double>> members() { using T = double; return ZT_MEMBERS(64f); }

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

template <class T>
class ExtremeValues : public ::testing::Test {};
using Types = ::testing::Types<int16_t, int32_t, float, double>;
TYPED_TEST_SUITE(ExtremeValues, Types);

TYPED_TEST(ExtremeValues, StatusesAndNothingWritten) {
  using T = TypeParam;
  const T src[2] = {1, 2};
  for (const auto& m : members<T>()) {
    zt::Guarded<T> out(1);
    EXPECT_EQ(m.fn(nullptr, 2, out.data()), ZIVK_STS_NULL_PTR_ERR) << m.name;
    EXPECT_EQ(m.fn(src, 2, nullptr), ZIVK_STS_NULL_PTR_ERR) << m.name;
    EXPECT_EQ(m.fn(nullptr, 0, out.data()), ZIVK_STS_NULL_PTR_ERR) << m.name;
    EXPECT_EQ(m.fn(src, 0, out.data()), ZIVK_STS_SIZE_ERR) << m.name;
    EXPECT_EQ(m.fn(src, -1, out.data()), ZIVK_STS_SIZE_ERR) << m.name;
    EXPECT_TRUE(out.untouched()) << m.name;
  }
  zt::Guarded<T> lo(1), hi(1);
  auto minmax = [](const T* s, int32_t n, T* a, T* b) {
    if constexpr (std::is_same_v<T, int16_t>) return ZIVKS_MinMax_16s(s, n, a, b);
    else if constexpr (std::is_same_v<T, int32_t>) return ZIVKS_MinMax_32s(s, n, a, b);
    else if constexpr (std::is_same_v<T, float>) return ZIVKS_MinMax_32f(s, n, a, b);
    else return ZIVKS_MinMax_64f(s, n, a, b);
  };
  EXPECT_EQ(minmax(src, 2, lo.data(), nullptr), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(minmax(src, 0, lo.data(), hi.data()), ZIVK_STS_SIZE_ERR);
  EXPECT_TRUE(lo.untouched() && hi.untouched());
}

// Over random lengths and data of every mix: the rule, the ordinary extreme for data
// without NaN, and the generic backend bit for bit.
TYPED_TEST(ExtremeValues, MatchTheRule) {
  using T = TypeParam;
  zt::Rng rng(61);
  for (const auto& m : members<T>()) {
    for (Mix mix : st::kMixes) {
      for (int len : st::lengths()) {
        zt::Guarded<T> src(len, (rng() % 2) * sizeof(T));
        st::fill(src.data(), len, rng, mix);
        T got, twin;
        ASSERT_EQ(m.fn(src.data(), len, &got), 0);
        ASSERT_TRUE(st::same(got, rule(m.op, src.data(), len))) << m.name << " len " << len;
        if (((mix == Mix::kTies || mix == Mix::kNoNaN) || !st::kFloat<T>) && (m.op == Op::kMax || m.op == Op::kMin)) {
          const T* e = m.op == Op::kMax ? std::max_element(src.data(), src.data() + len)
                                        : std::min_element(src.data(), src.data() + len);
          EXPECT_TRUE(got == *e) << m.name << " len " << len;
        }
        if (m.twin) {
          ASSERT_EQ(m.twin(src.data(), len, &twin), 0);
          ASSERT_TRUE(zt::same_bits(got, twin)) << m.name << " generic backend, len " << len;
        }
      }
    }
  }
}

// MinMax: both results as Min and Max give them, except that its seed is the first
// block, and the generic backend.
template <class T>
void check_min_max(ZIVKStatus (*fn)(const T*, int32_t, T*, T*), decltype(fn) twin, const char* name) {
  zt::Rng rng(62);
  for (Mix mix : st::kMixes) {
    for (int len : st::lengths()) {
      zt::Guarded<T> src(len);
      st::fill(src.data(), len, rng, mix);
      T mn, mx, tmn, tmx;
      ASSERT_EQ(fn(src.data(), len, &mn, &mx), 0);
      if ((mix == Mix::kTies || mix == Mix::kNoNaN) || !st::kFloat<T>) {
        EXPECT_TRUE(mn == *std::min_element(src.data(), src.data() + len)) << name << " len " << len;
        EXPECT_TRUE(mx == *std::max_element(src.data(), src.data() + len)) << name << " len " << len;
      }
      if constexpr (st::kFloat<T>) {
        ASSERT_TRUE(st::same(mn, rule(Op::kMin, src.data(), len))) << name << " len " << len;
        ASSERT_TRUE(st::same(mx, rule(Op::kMax, src.data(), len))) << name << " len " << len;
      }
      if (twin) {
        ASSERT_EQ(twin(src.data(), len, &tmn, &tmx), 0);
        ASSERT_TRUE(zt::same_bits(mn, tmn) && zt::same_bits(mx, tmx)) << name << " generic backend, len " << len;
      }
    }
  }
}

TEST(ExtremeValues, MinMaxEveryType) {
#define ZT_MM(code) check_min_max(ZIVKS_MinMax_##code, ZT_TWIN(ZIVKS_MinMax_##code), "MinMax_" #code)
  ZT_MM(8u);
  ZT_MM(16u);
  ZT_MM(32u);
  ZT_MM(16s);
  ZT_MM(32s);
  ZT_MM(32f);
  ZT_MM(64f);
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
