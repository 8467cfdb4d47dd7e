// Exact and widening conversions: integers into wider integers and floats, float32 to
// float64 and back, and the scaled integer-to-float forms.
#include <math.h>

#include <limits>

#include "support/sweep.h"

namespace {

// sign * u * 2^k rounded to the float F by integer arithmetic alone: to nearest, a tie to
// the even neighbour, denormals at F's smallest quantum, beyond F's range an infinity.
template <class F>
F round_to(bool neg, uint64_t u, int k) {
  using L = std::numeric_limits<F>;
  constexpr int kBits = L::digits, kQuantum = L::min_exponent - L::digits;  // 24 and -149, 53 and -1074
  uint64_t m = u;
  int q = k;
  if (u != 0) {
    const int top = k + 63 - __builtin_clzll(u);
    q = std::max({top - (kBits - 1), kQuantum, k});  // k: exact as it is
    if (q > k + 64) {
      m = 0;  // below half the smallest quantum
    } else if (q > k) {
      const int sh = q - k;
      const unsigned __int128 rest = u & ((static_cast<unsigned __int128>(1) << sh) - 1);
      const unsigned __int128 half = static_cast<unsigned __int128>(1) << (sh - 1);
      m = sh == 64 ? 0 : u >> sh;
      if (rest > half || (rest == half && (m & 1))) ++m;
    }
  }
  const double v = ldexp(static_cast<double>(m), q);
  const F r = v >= ldexp(1.0, L::max_exponent) ? L::infinity() : static_cast<F>(v);
  return neg ? -r : r;
}

template <class F>
F from_int(int64_t x) {
  return round_to<F>(x < 0, x < 0 ? 0 - static_cast<uint64_t>(x) : static_cast<uint64_t>(x), 0);
}

// A finite double times 2^e, rounded to F.
template <class F>
F times_pow2(double x, int e) {
  int ex;
  const double fr = frexp(fabs(x), &ex);
  return round_to<F>(signbit(x), static_cast<uint64_t>(ldexp(fr, 53)), ex - 53 + e);
}

float narrow(double x) { return isnan(x) || isinf(x) ? static_cast<float>(x) : times_pow2<float>(x, 0); }

// x (exact in F) times M = 2^e as F holds it: infinite from 2^max_exponent, 0 below F's
// smallest quantum; 0 times an infinite M is NaN.
template <class F>
F scaled(double x, double scale) {
  using L = std::numeric_limits<F>;
  const int e = zt::scale_exponent(scale);
  if (e >= L::max_exponent) return x == 0 ? L::quiet_NaN() : x > 0 ? L::infinity() : -L::infinity();
  if (e < L::min_exponent - L::digits) return x < 0 ? -F(0) : F(0);
  return times_pow2<F>(x, e);
}

// Integers of every width, many of them a tie between two floats or one off a tie.
template <class T>
void wide_ints(T* p, size_t n, zt::Rng& rng) {
  constexpr int kBits = sizeof(T) == 4 ? 24 : 53, kWidth = 8 * sizeof(T);
  for (size_t i = 0; i < n; ++i) {
    const int len = kBits - 2 + static_cast<int>(rng() % (kWidth - kBits + 3));
    uint64_t v = (rng() | uint64_t{1} << 63) >> (64 - len);
    const int drop = len - kBits;
    if (drop > 0 && rng() % 2)
      v = ((v >> drop) << drop | uint64_t{1} << (drop - 1)) + static_cast<int>(rng() % 3) - 1;
    p[i] = static_cast<T>(rng() % 2 ? v : 0 - v);
  }
}

// Doubles around float32's range (overflow and denormals), many a tie between two floats
// or next to one; and NaN payloads, infinities, signed zeros.
void doubles_for_float(double* p, size_t n, zt::Rng& rng) {
  for (size_t i = 0; i < n; ++i) {
    if (rng() % 5 == 0) { p[i] = zt::special_float<double>(rng); continue; }
    const int ex = -155 + static_cast<int>(rng() % 285);
    const int drop = std::min(52, 29 + std::max(0, -126 - ex));
    const uint64_t mask = (uint64_t{1} << drop) - 1, half = uint64_t{1} << (drop - 1);
    const uint64_t lows[] = {0, half, half + 1, half - 1, rng() & mask};
    const uint64_t bits = (rng() & 1) << 63 | static_cast<uint64_t>(1023 + ex) << 52 |
                          (rng() & ((uint64_t{1} << 52) - 1) & ~mask) | lows[rng() % 5];
    memcpy(&p[i], &bits, sizeof bits);
  }
}

// Wide values, many of them ties (32s), and zeros, which an infinite M turns into NaN.
template <class S>
void scaled_ints(S* p, size_t k, zt::Rng& r) {
  if constexpr (sizeof(S) == 4) wide_ints(p, k, r); else zt::fill_random(p, k, r);
  for (size_t i = 0; i < k; ++i)
    if (r() % 6 == 0) p[i] = static_cast<S>(r() % 2 ? 0 : static_cast<int>(r() % 65) - 32);
}

// A member with its rule for one element; P double for the scaled forms.
template <class S, class D, class P = int, class Rule>
void check(const char* name, typename zt::Member<S, D, P>::Call call, Rule rule,
           void (*fill)(S*, size_t, zt::Rng&) = nullptr) {
  zt::Member<S, D, P> m;
  m.name = name;
  m.call = call;
  m.rule = zt::each<S, D, P>([rule](S x, S, P p, int, int) -> D { return rule(x, p); });
  m.same = [](const D& x, const D& y) { return (x != x && y != y) || zt::same_bits(x, y); };  // NaN bits: the twin's
  if (fill) m.fill = [fill](S* p, size_t k, const P&, zt::Rng& r) { fill(p, k, r); };
  if constexpr (std::is_same_v<P, double>) {
    m.params = zt::test_scales();
    m.params.push_back(0x1p-1024);  // the float64 M is infinite too
    for (double s : {0.0, -0.0, -2.0, -HUGE_VAL, HUGE_VAL, double(NAN)}) m.bad.push_back({s, ZIVK_STS_SCALE_ERR});
    m.lengths = {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 33, 70};
  }
  zt::check_member(m);
}

// The exact members: the element's own value in the wider type.
#define ZT_EXACT(from, to, S, D) \
  check<S, D>("Convert_" #from #to, ZT_CALL(ZIVKS_Convert_##from##to, a, d, n), [](S x, int) { return static_cast<D>(x); })

TEST(Widening, EveryMemberFollowsItsRule) {
  ZT_EXACT(8u, 32f, uint8_t, float);
  ZT_EXACT(8s, 16s, int8_t, int16_t);
  ZT_EXACT(8s, 32f, int8_t, float);
  ZT_EXACT(16u, 32f, uint16_t, float);
  ZT_EXACT(16s, 32s, int16_t, int32_t);
  ZT_EXACT(16s, 32f, int16_t, float);
  ZT_EXACT(32s, 64f, int32_t, double);
  ZT_EXACT(32f, 64f, float, double);
  // Rounded to nearest, a tie to even; beyond float32's range an infinity.
  check<int32_t, float>("Convert_32s32f", ZT_CALL(ZIVKS_Convert_32s32f, a, d, n),
                        [](int32_t x, int) { return from_int<float>(x); }, wide_ints);
  check<int64_t, double>("Convert_64s64f", ZT_CALL(ZIVKS_Convert_64s64f, a, d, n),
                         [](int64_t x, int) { return from_int<double>(x); }, wide_ints);
  check<double, float>("Convert_64f32f", ZT_CALL(ZIVKS_Convert_64f32f, a, d, n), [](double x, int) { return narrow(x); },
                       doubles_for_float);
  // The scaled forms: the element in the target's float (32s rounded first) times M.
  check<int16_t, float, double>("Convert_16s32f_S", ZT_CALL(ZIVKS_Convert_16s32f_S, a, d, n, p),
                                [](int16_t x, double s) { return scaled<float>(x, s); }, scaled_ints);
  check<int16_t, double, double>("Convert_16s64f_S", ZT_CALL(ZIVKS_Convert_16s64f_S, a, d, n, p),
                                 [](int16_t x, double s) { return scaled<double>(x, s); }, scaled_ints);
  check<int32_t, float, double>("Convert_32s32f_S", ZT_CALL(ZIVKS_Convert_32s32f_S, a, d, n, p),
                                [](int32_t x, double s) { return scaled<float>(from_int<float>(x), s); }, scaled_ints);
  check<int32_t, double, double>("Convert_32s64f_S", ZT_CALL(ZIVKS_Convert_32s64f_S, a, d, n, p),
                                 [](int32_t x, double s) { return scaled<double>(x, s); }, scaled_ints);
}

// Every value of the 8- and 16-bit sources, in whole blocks and alone in a tail: its own
// integer value, a zero without sign.
template <class S, class D>
void every_value(ZIVKStatus (*fn)(const S*, D*, int32_t)) {
  const size_t n = size_t{1} << (8 * sizeof(S));
  std::vector<S> src(n);
  std::vector<D> dst(n);
  for (size_t i = 0; i < n; ++i) src[i] = static_cast<S>(i);
  ASSERT_EQ(fn(src.data(), dst.data(), static_cast<int32_t>(n)), 0);
  for (size_t i = 0; i < n; ++i) {
    D one;
    ASSERT_EQ(fn(&src[i], &one, 1), 0);
    ASSERT_TRUE(zt::same_bits(one, dst[i])) << i;
    ASSERT_EQ(static_cast<double>(dst[i]), static_cast<double>(src[i])) << i;
    ASSERT_EQ(signbit(static_cast<double>(dst[i])), src[i] < 0) << i;
  }
}

TEST(Widening, EverySmallIntegerExactly) {
  every_value(ZIVKS_Convert_8u32f);
  every_value(ZIVKS_Convert_8s16s);
  every_value(ZIVKS_Convert_8s32f);
  every_value(ZIVKS_Convert_16u32f);
  every_value(ZIVKS_Convert_16s32s);
  every_value(ZIVKS_Convert_16s32f);
}

// The rounding examples, and the NaN of 0 times an infinite M: the positive default NaN
// (an empty payload) on every machine, stored as it is, in a block and in the tail.
TEST(Widening, RoundingExamplesAndTheNaNOfAnInfiniteMultiplier) {
  const int32_t i32[5] = {16777217, 2147483647, 16777219, -16777217, 3};
  const float f_want[5] = {16777216.0f, 2147483648.0f, 16777220.0f, -16777216.0f, 3.0f};
  const int64_t i64[1] = {9007199254740993};
  const double d64[3] = {1e300, -1e300, 0x1.ffffffp127};  // the last ties to 2^128
  float f[5];
  double d[1];
  ASSERT_EQ(ZIVKS_Convert_32s32f(i32, f, 5), 0);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(f[i], f_want[i]) << i;
  ASSERT_EQ(ZIVKS_Convert_64f32f(d64, f, 3), 0);
  EXPECT_TRUE(f[0] == HUGE_VALF && f[1] == -HUGE_VALF && f[2] == HUGE_VALF);
  ASSERT_EQ(ZIVKS_Convert_64s64f(i64, d, 1), 0);
  EXPECT_EQ(d[0], 9007199254740992.0);
  ASSERT_EQ(ZIVKS_Convert_32s64f_S(i32 + 4, d, 1, 2.0), 0);
  EXPECT_EQ(d[0], 1.5);
  ASSERT_EQ(ZIVKS_Convert_32s64f_S(i32 + 4, d, 1, 1.5), 0);
  EXPECT_EQ(d[0], 3.0);

  const uint32_t nan32 = 0x7FC00000u;
  const uint64_t nan64 = 0x7FF8000000000000u;
  const int16_t s16[5] = {0, 5, -5, 0, 0};
  float h[5];
  double w[5];
  for (double scale : {0x1p-128, 0x1p-200}) {
    ASSERT_EQ(ZIVKS_Convert_16s32f_S(s16, h, 5, scale), 0);
    EXPECT_TRUE(!memcmp(&h[0], &nan32, 4) && !memcmp(&h[4], &nan32, 4));
    EXPECT_TRUE(h[1] == HUGE_VALF && h[2] == -HUGE_VALF);
  }
  ASSERT_EQ(ZIVKS_Convert_16s64f_S(s16, w, 5, 0x1p-1024), 0);
  EXPECT_TRUE(!memcmp(&w[0], &nan64, 8) && !memcmp(&w[4], &nan64, 8));
  EXPECT_TRUE(w[1] == HUGE_VAL && w[2] == -HUGE_VAL);
}

}  // namespace
