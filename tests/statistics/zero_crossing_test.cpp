// ZeroCrossing_32f and ZeroCrossing_16s32f.
#include "statistics/search_data.h"
#include "support/sweep.h"

namespace {

float zc32(const std::vector<float>& v, int kind) {
  float r = -1;
  EXPECT_EQ(ZIVKS_ZeroCrossing_32f(v.data(), static_cast<int32_t>(v.size()), &r, kind), 0);
  return r;
}
float zc16(const std::vector<int16_t>& v, int kind) {
  float r = -1;
  EXPECT_EQ(ZIVKS_ZeroCrossing_16s32f(v.data(), static_cast<int32_t>(v.size()), &r, kind), 0);
  return r;
}

TEST(ZeroCrossing, Kinds) {
  for (int k = 0; k < 3; ++k) {
    EXPECT_EQ(zc32({1, -1, 1, -1}, k), 3.0f);
    EXPECT_EQ(zc16({1, -1, 1, -1}, k), 3.0f);
    EXPECT_EQ(zc32({5}, k), 0.0f);
  }
  EXPECT_EQ(zc32({1, 0, -1}, 0), 0.0f);
  EXPECT_EQ(zc16({1, 0, -1}, 0), 0.0f);
  EXPECT_EQ(zc16({1, 0, -1}, 1), 1.0f);  // zero counts as positive
  EXPECT_EQ(zc32({1, 0, -1}, 2), 1.0f);
  EXPECT_EQ(zc16({1, 0, -1}, 2), 1.0f);
  EXPECT_EQ(zc32({1, 0}, 2), 0.5f);
  EXPECT_EQ(zc16({1, 0}, 2), 0.0f);  // the integer form truncates
  EXPECT_EQ(zc32({1e-30f, -1e-30f}, 0), 0.0f);  // the product underflows
  EXPECT_EQ(zc32({1e-30f, -1e-30f}, 1), 1.0f);
  EXPECT_EQ(zc32({1e-30f, -1e-30f}, 2), 1.0f);
  EXPECT_EQ(zc32({0.0f, -0.0f}, 1), 1.0f);  // sign bits as they stand
  EXPECT_EQ(zc32({0.0f, -0.0f}, 2), 0.0f);
  EXPECT_EQ(zc16({-32768, 32767, -32768}, 0), 2.0f);  // the exact product
}

// A NaN in kind 2: a block takes it as its own sign value, the tail as negative.
TEST(ZeroCrossing, NaNInKindTwo) {
  std::vector<float> v = {1, NAN, 1, 1, 1, 1};  // pairs 1..4 form a block
  EXPECT_TRUE(std::isnan(zc32(v, 2)));
  v = {1, 1, 1, 1, 1, NAN};  // pair 5 is in the tail
  EXPECT_EQ(zc32(v, 2), 1.0f);
  EXPECT_EQ(zc32(v, 0), 0.0f);
}

TEST(ZeroCrossing, CheckOrder) {
  float r = 7;
  const float f[2] = {1, -1};
  const int16_t s[2] = {1, -1};
  EXPECT_EQ(ZIVKS_ZeroCrossing_32f(nullptr, 0, &r, 5), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_ZeroCrossing_32f(f, 2, nullptr, 0), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_ZeroCrossing_32f(f, 0, &r, 3), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(ZIVKS_ZeroCrossing_32f(f, 2, &r, 3), ZIVK_STS_ZC_TYPE_ERR);
  EXPECT_EQ(ZIVKS_ZeroCrossing_32f(f, 2, &r, -1), ZIVK_STS_ZC_TYPE_ERR);
  // A negative len is a (huge) count, not a size error: the kind is checked next.
  EXPECT_EQ(ZIVKS_ZeroCrossing_32f(f, -1, &r, 3), ZIVK_STS_ZC_TYPE_ERR);
  EXPECT_EQ(ZIVKS_ZeroCrossing_16s32f(s, -5, &r, 7), ZIVK_STS_ZC_TYPE_ERR);
  EXPECT_EQ(ZIVKS_ZeroCrossing_16s32f(s, 0, &r, 0), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(r, 7.0f);
}

// The rule per pair, summed in float32 as the blocks do (exact at these lengths).
template <class T>
float rule(const T* v, int len, int kind) {
  auto sign = [](T x) { return x > 0 ? 1 : x == 0 ? 0 : -1; };
  int c = 0;
  for (int i = 1; i < len; ++i) {
    const T a = v[i - 1], b = v[i];
    if (kind == 0) {
      if constexpr (st::kFloat<T>) {
        volatile float p = a * b;
        c += p < 0;
      } else {
        c += int32_t{a} * int32_t{b} < 0;
      }
    } else if (kind == 1) {
      c += std::signbit(static_cast<float>(a)) != std::signbit(static_cast<float>(b));
    } else {
      c += std::abs(sign(a) - sign(b));
    }
  }
  float r = static_cast<float>(c);
  if (kind == 2) r = st::kFloat<T> ? r * 0.5f : std::trunc(r * 0.5f);
  return r;
}

// Random data of every mix over lengths crossing the block sizes: the rule (for float
// kind 2, data with a NaN in a block gives NaN) and the generic backend bit for bit.
template <class T>
void check(const char* name, typename zt::Member<T, float>::Call call) {
  zt::Member<T, float> m;
  m.name = name;
  m.call = call;
  m.out_len = [](int32_t) { return 1; };
  m.alone = false;
  m.params = {0, 1, 2};
  m.fill = [](T* p, size_t n, const int&, zt::Rng& rng) {
    st::fill(p, static_cast<int>(n), rng, st::kMixes[rng() % 3]);
    if (rng() % 3 == 0)
      for (size_t i = 0; i < n; ++i) p[i] = rng() % 4 ? T(rng() % 2 ? 3 : -3) : T(0);
  };
  m.rule = [](const T* src, const T*, int kind, int32_t len, float* want) {
    const int block = sizeof(T) == 2 && kind == 2 ? 8 : 4;
    const int nb = (len - 1) / block * block;
    bool block_nan = false;
    for (int i = 0; i <= nb && i < len; ++i) block_nan |= st::is_nan(src[i]) && nb > 0;
    // The tail takes a NaN as negative in kind 2; the rule's sign does so too.
    *want = kind == 2 && block_nan ? NAN : rule(src, len, kind);
  };
  m.same = [](const float& x, const float& y) { return bool(st::same(x, y)); };
  zt::check_sweep(m);
}

TEST(ZeroCrossing, MatchesTheRule) {
  check<float>("ZeroCrossing_32f", ZT_CALL(ZIVKS_ZeroCrossing_32f, a, n, d, p));
  check<int16_t>("ZeroCrossing_16s32f", ZT_CALL(ZIVKS_ZeroCrossing_16s32f, a, n, d, p));
}

}  // namespace
