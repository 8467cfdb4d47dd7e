// Multiply-accumulate: srcDst[i] += src1[i] * src2[i] (or src[i] * val). Real floats
// fuse, complex parts round their products in a fixed order that differs between
// blocks and tail, integers convert the exact sum to a float first, then scale.
#include <math.h>

#include <functional>
#include <limits>
#include <string>

#include "support/sweep.h"

namespace {

template <class T>
T clamp_to(long double r) {
  if (r >= static_cast<long double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
  if (r <= static_cast<long double>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
  return static_cast<T>(r);
}

// Bits equal, or NaN on both sides (which NaN a fused step gives is not promised).
template <class T>
bool same(const T& x, const T& y) {
  if (zt::same_bits(x, y)) return true;
  using F = zt::part_of<T>;
  const F* a = reinterpret_cast<const F*>(&x);
  const F* b = reinterpret_cast<const F*>(&y);
  for (size_t j = 0; j < sizeof(T) / sizeof(F); ++j)
    if (!zt::same_bits(a[j], b[j]) && !(isnan(a[j]) && isnan(b[j]))) return false;
  return true;
}

// A member: call(twin, a, b, p, acc, n) with b unused by the constant forms, the rule of
// element i of n, the parameters (scale, or the constant factor) swept.
template <class S, class D, class P>
struct Mac {
  std::string name;
  std::function<ZIVKStatus(bool, const S*, const S*, P, D*, int32_t)> call;
  std::function<D(S a, S b, P p, D c, int i, int n)> rule;
  std::vector<P> params;
  bool scaled = false;
  bool constant = false;
  std::function<void(S*, size_t, zt::Rng&)> fill_src = [](S* s, size_t k, zt::Rng& r) { zt::fill_random(s, k, r); };
  std::function<void(D*, size_t, zt::Rng&)> fill_acc = [](D* s, size_t k, zt::Rng& r) { zt::fill_random(s, k, r); };
};

template <class S, class D, class P>
void check(const Mac<S, D, P>& m) {
  SCOPED_TRACE(m.name);
  zt::Rng rng(std::hash<std::string>()(m.name));
  // Statuses in order: each pointer, then len < 1, then scale; nothing written.
  {
    zt::Guarded<S> a(4), b(4);
    zt::Guarded<D> d(4);
    m.fill_src(a.data(), 4, rng);
    m.fill_src(b.data(), 4, rng);
    std::vector<std::pair<P, ZIVKStatus>> cases = {{m.params[0], ZIVK_STS_NO_ERR}};
    if (m.scaled)
      for (double bad : {0.0, -0.0, -1.0, -HUGE_VAL, HUGE_VAL, double(NAN)}) cases.push_back({P(bad), ZIVK_STS_SCALE_ERR});
    for (const auto& [p, status] : cases) {
      for (int32_t n : {4, 0, -1}) {
        EXPECT_EQ(m.call(false, nullptr, b.data(), p, d.data(), n), ZIVK_STS_NULL_PTR_ERR);
        if (!m.constant) {
          EXPECT_EQ(m.call(false, a.data(), nullptr, p, d.data(), n), ZIVK_STS_NULL_PTR_ERR);
        }
        EXPECT_EQ(m.call(false, a.data(), b.data(), p, nullptr, n), ZIVK_STS_NULL_PTR_ERR);
      }
      for (int32_t n : {0, -1, INT32_MIN}) EXPECT_EQ(m.call(false, a.data(), b.data(), p, d.data(), n), ZIVK_STS_SIZE_ERR);
      if (status) {
        EXPECT_EQ(m.call(false, a.data(), b.data(), p, d.data(), 4), status) << ::testing::PrintToString(p);
      }
    }
    EXPECT_TRUE(d.untouched());
  }
  // The rule over lengths that cross every block, misaligned, guarded, and the generic
  // backend bit for bit.
  for (const P& p : m.params) {
    for (int len : zt::test_lengths()) {
      SCOPED_TRACE("len " + std::to_string(len) + " param " + ::testing::PrintToString(p));
      const size_t n = len, ms = (rng() % 2) * alignof(S), md = (rng() % 2) * alignof(D);
      zt::Guarded<S> a(n, ms), b(n, alignof(S) - ms);
      zt::Guarded<D> d(n, md), t(n);
      std::vector<D> acc(n);
      m.fill_src(a.data(), n, rng);
      m.fill_src(b.data(), n, rng);
      m.fill_acc(acc.data(), n, rng);
      memcpy(static_cast<void*>(d.data()), acc.data(), n * sizeof(D));
      memcpy(static_cast<void*>(t.data()), acc.data(), n * sizeof(D));
      ASSERT_EQ(m.call(false, a.data(), b.data(), p, d.data(), len), 0);
      ASSERT_TRUE(d.guards_intact());
      for (size_t i = 0; i < n; ++i) {
        const D want = m.rule(a[i], m.constant ? S{} : b[i], p, acc[i], static_cast<int>(i), len);
        ASSERT_TRUE(same(d[i], want)) << "at " << i << ": got " << ::testing::PrintToString(d[i]) << ", want "
                                      << ::testing::PrintToString(want);
      }
      const ZIVKStatus tw = m.call(true, a.data(), b.data(), p, t.data(), len);
      if (tw != zt::kNoTwin) {
        ASSERT_EQ(tw, 0);
        ASSERT_EQ(zt::first_difference(t.data(), d.data(), n), -1) << "generic backend";
      }
    }
  }
}

template <class F>
void check_real(const char* name, const char* name_c, decltype(Mac<F, F, F>::call) call, decltype(Mac<F, F, F>::call) call_c) {
  Mac<F, F, F> m{name, call, [](F a, F b, F, F c, int, int) { return std::fma(a, b, c); }, {F(0)}};
  check(m);
  Mac<F, F, F> mc{name_c, call_c, [](F a, F, F v, F c, int, int) { return std::fma(a, v, c); }, zt::samples<F>(6, 3)};
  mc.constant = true;
  check(mc);
}

TEST(MultiplyAccumulate, RealFloatsFuse) {
  check_real<float>("AddProduct_32f", "AddProductC_32f", ZT_CALL(ZIVKS_AddProduct_32f, a, b, d, n),
                    ZT_CALL(ZIVKS_AddProductC_32f, a, p, d, n));
  check_real<double>("AddProduct_64f", "AddProductC_64f", ZT_CALL(ZIVKS_AddProduct_64f, a, b, d, n),
                     ZT_CALL(ZIVKS_AddProductC_64f, a, p, d, n));
}

// c + a * b, one product of each part rounded alone and the other fused with it, then c
// added: the block of 32fc rounds a.re b.re and a.re b.im, the block of 64fc a.im b.im
// and a.re b.im, every tail a.im b.im and a.im b.re. With `alias` 1 or 2 srcDst is
// src1 or src2, and a tail element's im reads the re it has just written.
template <class C>
C complex_rule(C a, C b, C c, bool block, bool is32, int alias = 0) {
  using std::fma;
  if (block && is32) return {c.re + fma(-a.im, b.im, a.re * b.re), c.im + fma(a.im, b.re, a.re * b.im)};
  if (block) return {c.re + fma(a.re, b.re, -(a.im * b.im)), c.im + fma(a.im, b.re, a.re * b.im)};
  const auto re = c.re + fma(a.re, b.re, -(a.im * b.im));
  if (alias == 1) a.re = re;
  if (alias == 2) b.re = re;
  return {re, c.im + fma(a.re, b.im, a.im * b.re)};
}

// Mostly ordinary values of mixed magnitude, where the last place shows; some special.
template <class C>
void fill_complex(C* p, size_t k, zt::Rng& rng) {
  using F = zt::part_of<C>;
  F* q = reinterpret_cast<F*>(p);
  std::uniform_real_distribution<double> u(-1.0, 1.0);
  for (size_t i = 0; i < 2 * k; ++i)
    q[i] = rng() % 16 ? static_cast<F>(ldexp(u(rng), static_cast<int>(rng() % 9) - 4)) : zt::special_float<F>(rng);
}

template <class C>
void check_complex(const char* name, int block, decltype(Mac<C, C, int>::call) call) {
  const bool is32 = sizeof(C) == 8;
  Mac<C, C, int> m{name, call,
                   [block, is32](C a, C b, int, C c, int i, int n) {
                     return complex_rule(a, b, c, i < (n & ~(block - 1)), is32);
                   },
                   {0}};
  m.fill_src = fill_complex<C>;
  m.fill_acc = fill_complex<C>;
  check(m);
  // srcDst the same array as src1, then as src2: blocks then a tail of B - 1.
  zt::Rng rng(block);
  const int n = 3 * block - 1;
  for (int alias : {1, 2}) {
    for (int trial = 0; trial < 200; ++trial) {
      std::vector<C> acc(n), other(n), got(n);
      fill_complex(acc.data(), n, rng);
      fill_complex(other.data(), n, rng);
      got = acc;
      ASSERT_EQ(alias == 1 ? call(false, got.data(), other.data(), 0, got.data(), n)
                           : call(false, other.data(), got.data(), 0, got.data(), n),
                0);
      for (int i = 0; i < n; ++i) {
        const C& a = alias == 1 ? acc[i] : other[i];
        const C& b = alias == 1 ? other[i] : acc[i];
        const C want = complex_rule(a, b, acc[i], i < n / block * block, is32, alias);
        ASSERT_TRUE(same(got[i], want)) << name << " srcDst is src" << alias << ", element " << i;
      }
    }
  }
}

TEST(MultiplyAccumulate, ComplexRoundingOrder) {
  check_complex<ZIVK32fc>("AddProduct_32fc", 4, ZT_CALL(ZIVKS_AddProduct_32fc, a, b, d, n));
  check_complex<ZIVK64fc>("AddProduct_64fc", 2, ZT_CALL(ZIVKS_AddProduct_64fc, a, b, d, n));
}

// x = a * b + c exactly, converted to F (rounded to nearest) before the multiply by M
// held in F, then rounded to nearest, a tie to even, and saturated; 0 times an infinite M
// gives 0.
template <class F, class S, class D>
void check_integer(const char* name, decltype(Mac<S, D, double>::call) call) {
  Mac<S, D, double> m{name, call,
                      [](S a, S b, double scale, D c, int, int) {
                        const int64_t x = int64_t{a} * b + c;
                        const F p = static_cast<F>(x) * static_cast<F>(ldexp(1.0, zt::scale_exponent(scale)));
                        return isnan(p) ? D{0} : clamp_to<D>(nearbyintl(p));
                      },
                      zt::test_scales(), true};
  // Any bits, often small values (ties at small scales) or the bounds.
  auto fill = [](auto* v, size_t k, zt::Rng& rng) {
    using T = std::remove_pointer_t<decltype(v)>;
    zt::fill_random(v, k, rng);
    for (size_t i = 0; i < k; ++i) {
      const unsigned pick = rng() % 8;
      if (pick < 3) v[i] = static_cast<T>(static_cast<int>(rng() % 9) - 4);
      if (pick == 3) v[i] = rng() % 2 ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
    }
  };
  m.fill_src = fill;
  m.fill_acc = fill;
  check(m);
}

TEST(MultiplyAccumulate, IntegersConvertThenScale) {
  check_integer<float, int16_t, int16_t>("AddProduct_16s_S", ZT_CALL(ZIVKS_AddProduct_16s_S, a, b, d, n, p));
  check_integer<double, int32_t, int32_t>("AddProduct_32s_S", ZT_CALL(ZIVKS_AddProduct_32s_S, a, b, d, n, p));
  check_integer<double, int16_t, int32_t>("AddProduct_16s32s_S", ZT_CALL(ZIVKS_AddProduct_16s32s_S, a, b, d, n, p));
}

// In block (elements 0 to 3) and tail (element 4) alike.
TEST(MultiplyAccumulate, Examples) {
  // (1 + 2^-12)^2 - (1 + 2^-11) is 2^-24 fused, 0 with a rounded product.
  const float f = 1 + ldexpf(1, -12);
  float fa[5] = {f, f, f, f, f}, fc[5];
  for (float& c : fc) c = -(1 + ldexpf(1, -11));
  ASSERT_EQ(ZIVKS_AddProduct_32f(fa, fa, fc, 5), 0);
  for (float c : fc) EXPECT_EQ(c, ldexpf(1, -24));
  // The sum converts to float first: 2^30 - 3 * 2^15 + 1 is 2^30 - 3 * 2^15 in float32,
  // so scale 2^16 gives 16382.5, a tie to 16382 (the exact value rounds to 16383).
  int16_t a16[5], b16[5], c16[5];
  for (int i = 0; i < 5; ++i) a16[i] = -32768, b16[i] = -32765, c16[i] = 1;
  ASSERT_EQ(ZIVKS_AddProduct_16s_S(a16, b16, c16, 5, 65536.0), 0);
  for (int16_t c : c16) EXPECT_EQ(c, 16382);
  // Likewise 2^62 - 3 * 2^31 + 1 in float64, scale 2^32: 2^30 - 1.5 ties to 2^30 - 2.
  int32_t a32[5], b32[5], c32[5];
  for (int i = 0; i < 5; ++i) a32[i] = INT32_MIN, b32[i] = -2147483645, c32[i] = 1;
  ASSERT_EQ(ZIVKS_AddProduct_32s_S(a32, b32, c32, 5, ldexp(1.0, 32)), 0);
  for (int32_t c : c32) EXPECT_EQ(c, 1073741822);
  for (int i = 0; i < 5; ++i) a16[i] = b16[i] = 200, c16[i] = 100;
  ASSERT_EQ(ZIVKS_AddProduct_16s_S(a16, b16, c16, 5, 1.0), 0);
  for (int16_t c : c16) EXPECT_EQ(c, 32767);
  for (int i = 0; i < 5; ++i) a16[i] = b16[i] = 32767, c32[i] = INT32_MAX;
  ASSERT_EQ(ZIVKS_AddProduct_16s32s_S(a16, b16, c32, 5, 1.0), 0);
  for (int32_t c : c32) EXPECT_EQ(c, INT32_MAX);
}

}  // namespace
