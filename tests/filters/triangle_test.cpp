// The triangle wave: the direct forms against a scalar model of their blocks and tails,
// the float64 forms against a transcription of the recurrence, the accumulator and the
// phase update; the generic twin bit for bit; streams continued through *phase; waves
// read off by hand; the statuses in their order.
#include <math.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "support/zt.h"

namespace {

constexpr double kTwoPi = 6.283185307179586, kPi = 3.141592653589793;
const double kNaN = std::numeric_limits<double>::quiet_NaN();

template <class T>
bool same(T a, T b) { return (a != a && b != b) || zt::same_bits(a, b); }  // any NaN for any NaN

std::string show(std::initializer_list<double> v) {
  std::string s = "magn, rFreq, asym, phase, len:";
  for (double x : v) s += " " + ::testing::PrintToString(x);
  return s;
}

// ---- direct forms: each sample from its index, as a block or as the tail makes it

struct Wave {
  double magn, rf, p0, rise, fall;
  Wave(double m, double f, double a, double ph) : magn(m), rf(f), p0(ph / kTwoPi), rise(kPi - a), fall(a + kPi) {}

  double phase(double idx, bool block) const {
    const double t = std::fma(rf, idx, p0);
    double whole, frac = block ? t - std::trunc(t) : std::modf(t, &whole);
    return frac * kTwoPi;
  }
  double re(double ph, bool block) const {
    if (ph >= fall) return block ? magn * (1 + (2 * (ph - kTwoPi)) * (1 / rise)) : magn * (1 + (ph - kTwoPi) * (2 / rise));
    return block ? magn * std::fma(-(2 * ph), 1 / fall, 1.0) : magn * std::fma(-ph, 2 / fall, 1.0);
  }
  double im(double ph, bool block) const {
    const double up = 2 / rise * ph * magn, down = (kPi - ph) * (2 / fall) * magn,
                 back = (ph - kTwoPi) * (2 / rise) * magn, turn = (fall + kTwoPi) / 2;
    if (block) return ph >= turn ? back : ph >= rise / 2 ? down : up;
    return ph <= rise / 2 ? up : ph < turn ? down : back;
  }
};

// int16: blocks saturate the truncated value, the tail keeps the low 16 bits of its int32.
template <class P>
P out(double v, bool block) {
  if constexpr (std::is_same_v<P, float>) return static_cast<float>(v);
  if (v != v) return 0;
  const double t = std::trunc(v);
  if (block) return static_cast<P>(std::fmin(std::fmax(t, -32768.0), 32767.0));
  return static_cast<P>(static_cast<uint16_t>(static_cast<int32_t>(std::fmin(std::fmax(t, -2147483648.0), 2147483647.0))));
}

template <class E, class M>
struct Direct {
  std::string name;
  ZIVKStatus (*fn)(E*, int32_t, M, float, float, float*);
  ZIVKStatus (*twin)(E*, int32_t, M, float, float, float*);
  int block;
  bool float_index = false;  // blocks make the index as float32 sums
  using P = zt::part_of<E>;
  static constexpr int kParts = sizeof(E) / sizeof(P);

  // The parts of samples from..len-1 of a call of length len.
  std::vector<P> model(int from, int len, M magn, float rf, float asym, float phase) const {
    const Wave w(magn, rf, asym, phase);
    std::vector<P> v;
    for (int i = from; i < len; ++i) {
      const bool b = i < len / block * block;
      const int k = i & 3;
      const double idx = b && float_index ? double(float(i - k + (k & 2)) + float(k & 1)) : i;
      const double ph = w.phase(idx, b);
      v.push_back(out<P>(w.re(ph, b), b));
      if (kParts == 2) v.push_back(out<P>(w.im(ph, b), b));
    }
    return v;
  }
};
#define ZT_DIRECT(T, E, M, ...) Direct<E, M>{#T, ZIVKS_Triangle_##T, ZT_TWIN(ZIVKS_Triangle_##T), __VA_ARGS__}

// Random valid arguments, the ends of every range, NaN in each float argument.
template <class E, class M>
void follows_model(const Direct<E, M>& m) {
  using P = typename Direct<E, M>::P;
  constexpr bool kInt = std::is_integral_v<M>;
  const float top = std::nextafter(float(kTwoPi), 0.0f), half = std::nextafter(0.5f, 0.0f);
  const double big = kInt ? 32767 : 3e38;
  std::vector<std::vector<double>> args = {{1, 0.25, 0, 0},      {big, half, std::nextafter(float(-kPi), 0.0f), top},
                                           {5, kNaN, 0, 1},      {1, 0, std::nextafter(float(kPi), 0.0f), 1},
                                           {5, 0.2, kNaN, 1},    {5, 0.2, 1, kNaN}, {big, 1e-7, -3, 3}};
  if (!kInt) args.insert(args.end(), {{kNaN, 0.3, 0.5, 2}, {1e-30, 0.3, -1, 4}});
  zt::Rng rng(7);
  std::uniform_real_distribution<double> u(0, 1);
  for (int n = 0; n < 40; ++n)
    args.push_back({kInt ? std::floor(1 + u(rng) * 32766) : std::exp(u(rng) * 40 - 20), u(rng) * 0.5,
                    (u(rng) * 2 - 1) * 3.14159, u(rng) * 6.28318});
  for (const auto& a : args) {
    const M magn = static_cast<M>(a[0]);
    const float rf = float(a[1]), asym = float(a[2]), ph0 = float(a[3]);
    for (int len : {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 13, 17, 18, 19, 33, 300}) {
      SCOPED_TRACE(m.name + " " + show({a[0], rf, asym, ph0, double(len)}));
      const std::vector<P> want = m.model(0, len, magn, rf, asym, ph0);
      zt::Guarded<P> d(want.size(), sizeof(P)), t(want.size());  // off the vector alignment
      float phase = ph0;
      ASSERT_EQ(m.fn(reinterpret_cast<E*>(d.data()), len, magn, rf, asym, &phase), 0);
      ASSERT_TRUE(zt::same_bits(phase, ph0)) << "*phase written";
      ASSERT_TRUE(d.guards_intact());
      for (size_t i = 0; i < want.size(); ++i) ASSERT_TRUE(same(d[i], want[i])) << "part " << i << ": " << +d[i] << ", want " << +want[i];
      if (!m.twin) continue;
      ASSERT_EQ(m.twin(reinterpret_cast<E*>(t.data()), len, magn, rf, asym, &phase), 0);
      ASSERT_EQ(zt::first_difference(t.data(), d.data(), want.size()), -1) << "generic backend";
    }
  }
}

TEST(Triangle, DirectFormsFollowTheirBlocksAndTails) {
  follows_model(ZT_DIRECT(16s, int16_t, int16_t, 4));
  follows_model(ZT_DIRECT(32f, float, float, 4));
  follows_model(ZT_DIRECT(16sc, ZIVK16sc, int16_t, 4, true));
  follows_model(ZT_DIRECT(32fc, ZIVK32fc, float, 2));
}

// From index 2^24 on, the 16sc blocks round their float32 index: 2^24 + 1 is read as
// 2^24, so two neighbouring samples are equal.
TEST(Triangle, Complex16BlocksRoundLargeIndices) {
  const int n = (1 << 24) + 8, k = 1 << 24;
  std::vector<ZIVK16sc> d(n);
  float phase = 0;
  ASSERT_EQ(ZIVKS_Triangle_16sc(d.data(), n, 30000, 0.1f, 0.3f, &phase), 0);
  const auto want = ZT_DIRECT(16sc, ZIVK16sc, int16_t, 4, true).model(n - 16, n, 30000, 0.1f, 0.3f, 0);
  for (int i = n - 16; i < n; ++i) ASSERT_TRUE(d[i].re == want[2 * (i - n + 16)] && d[i].im == want[2 * (i - n + 16) + 1]) << i;
  EXPECT_TRUE(d[k].re == d[k + 1].re && d[k].im == d[k + 1].im);
  EXPECT_NE(d[k - 2].re, d[k - 1].re);
}

// ---- float64 forms

double next_phase(int len, double rf, double p) {
  const double u = std::fma(len * kTwoPi, rf, p);
  const double r = std::fma(-std::floor(u * 0.15915494309189535), kTwoPi, u);
  return r < 0 || r >= kTwoPi ? 0 : r;
}

double wrap(double q) { return q > kTwoPi ? q - kTwoPi : q; }

// One recurrence stream from phase s; `complex` takes the complex form's tests.
std::vector<double> recurrence(int len, double magn, double rf, double rise, double fall, double s, bool complex) {
  const double k = magn * 12.566370614359172, up = rf * k / rise, down = -(rf * k) / fall;
  double slope = s >= fall ? up : down;
  double cur = s >= fall ? magn * (2 * (s - fall) / rise - 1) : magn * (1 - 2 * s / fall);
  bool rising = slope > 0;
  const double md = -rise / fall, mu = -fall / rise, od = std::fma(-md, magn, magn), ou = std::fma(mu, magn, -magn);
  std::vector<double> v;
  for (int i = 0; i < len; ++i) {
    v.push_back(cur);
    cur = cur + slope;
    if (complex ? rising && magn < cur : rising && !(magn >= cur)) {
      const double t = std::fma(md, cur, od);
      if (t >= -magn) cur = t, slope = down, rising = false;
      else cur = cur - k / rise;
    } else if ((complex || !rising) && cur < -magn) {
      const double t = std::fma(mu, cur, ou);
      if (t <= magn) cur = t, slope = up, rising = true;
      else cur = cur + k / fall;
    }
  }
  return v;
}

// One accumulator lane from q, stepped by `step`, each phase wrapped once.
std::vector<double> accumulator(int len, double magn, double rise, double fall, double q, double step) {
  std::vector<double> v;
  for (int i = 0; i < len; ++i, q = q + step) {
    q = wrap(q);
    v.push_back(q > fall ? std::fma(q, 2 * magn / rise, (fall + kTwoPi) * -magn / rise) : std::fma(q, -(2 * magn) / fall, magn));
  }
  return v;
}

// The parts of a float64 call: 64f lanes of even and odd samples, 64fc streams of re and im.
std::vector<double> model64(bool complex, int len, double magn, double rf, double asym, double p) {
  const double rise = kPi - asym, fall = asym + kPi;
  std::vector<double> a, b;
  if (!complex && rf < 0.14) return recurrence(len, magn, rf, rise, fall, p, false);
  if (!complex) {
    a = accumulator(len, magn, rise, fall, p, 2 * (rf * kTwoPi));
    b = accumulator(len, magn, rise, fall, wrap(std::fma(kTwoPi, rf, p)), 2 * (rf * kTwoPi));
  } else if (rf < 0.11) {
    a = recurrence(len, magn, rf, rise, fall, p, true);
    b = recurrence(len, magn, rf, rise, fall, wrap(p + (fall + kTwoPi) / 2), true);
  } else {
    a = accumulator(len, magn, rise, fall, p, rf * kTwoPi);
    b = accumulator(len, magn, rise, fall, wrap(std::fma(fall + kTwoPi, 0.5, p)), rf * kTwoPi);
  }
  std::vector<double> v;
  for (int i = 0; i < len; ++i) {
    if (complex) v.insert(v.end(), {a[i], b[i]});
    else v.push_back(i % 2 ? b[i / 2] : a[i / 2]);
  }
  return v;
}

// A float64 form on its parts, or its generic twin (status -1 where there is none).
ZIVKStatus call64(bool complex, bool twin, double* d, int32_t len, double m, double f, double a, double* ph) {
  if (!complex) {
    auto fn = twin ? ZT_TWIN(ZIVKS_Triangle_64f) : &ZIVKS_Triangle_64f;
    return fn ? fn(d, len, m, f, a, ph) : -1;
  }
  auto fn = twin ? ZT_TWIN(ZIVKS_Triangle_64fc) : &ZIVKS_Triangle_64fc;
  return fn ? fn(reinterpret_cast<ZIVK64fc*>(d), len, m, f, a, ph) : -1;
}

TEST(Triangle, Float64FormsFollowTheirMethodsAndStoreTheNextPhase) {
  std::vector<std::vector<double>> args = {
      {1, 0.25, 0, 0},    {2, 0.13, -1, 5},     {2, 0.14, -1, 5},   {3, 0.1099999, 1, 2}, {3, 0.11, 1, 2},
      {1, 0.001, 3.1, 0.1}, {1, 0.49, -3.1, 6}, {1e308, 0.3, 0, 1}, {1, 0, 0.5, std::nextafter(kTwoPi, 0.0)},
      {kNaN, 0.05, 0, 1}, {1, kNaN, 0, 1},      {1, 0.05, kNaN, 1}, {1, 0.2, 0, kNaN},    {1, 0.05, -kPi, 1},
      {1, 0.3, -kPi, 0}};
  zt::Rng rng(3);
  std::uniform_real_distribution<double> u(0, 1);
  for (int n = 0; n < 60; ++n)
    args.push_back({std::exp(u(rng) * 20 - 10), u(rng) * (n % 2 ? 0.5 : 0.15), (u(rng) * 2 - 1) * 3.14, u(rng) * kTwoPi});
  for (bool c : {false, true}) {
    for (const auto& a : args) {
      if (c && a[2] == -kPi) continue;  // refused by 64fc
      for (int len : {1, 2, 3, 4, 5, 9, 44, 64, 301}) {
        SCOPED_TRACE(std::string(c ? "64fc " : "64f ") + show({a[0], a[1], a[2], a[3], double(len)}));
        const auto want = model64(c, len, a[0], a[1], a[2], a[3]);
        zt::Guarded<double> d(want.size(), sizeof(double)), t(want.size());
        double phase = a[3], phase_t = a[3];
        ASSERT_EQ(call64(c, false, d.data(), len, a[0], a[1], a[2], &phase), 0);
        ASSERT_TRUE(same(phase, next_phase(len, a[1], a[3])));
        ASSERT_TRUE(d.guards_intact());
        for (size_t i = 0; i < want.size(); ++i) ASSERT_TRUE(same(d[i], want[i])) << i << ": " << d[i] << ", want " << want[i];
        if (call64(c, true, t.data(), len, a[0], a[1], a[2], &phase_t) == -1) continue;
        ASSERT_EQ(zt::first_difference(t.data(), d.data(), want.size()), -1) << "generic backend";
        ASSERT_TRUE(zt::same_bits(phase, phase_t));
      }
    }
  }
}

// Two calls with the stored phase carried over continue the wave, but only closely: the
// second call restarts from the wrapped phase, not from the first call's running state.
TEST(Triangle, Float64StreamsContinueThroughThePhase) {
  zt::Rng rng(5);
  std::uniform_real_distribution<double> u(0, 1);
  for (int n = 0; n < 200; ++n) {
    const bool c = n % 2;
    const int parts = c ? 2 : 1, a = 1 + n % 37, b = 1 + n % 23;
    const double rf = u(rng) * 0.5, asym = (u(rng) * 2 - 1) * 2, p0 = u(rng) * kTwoPi;
    std::vector<double> whole((a + b) * parts), split((a + b) * parts);
    double p = p0, q = p0;
    ASSERT_EQ(call64(c, false, whole.data(), a + b, 1.0, rf, asym, &p), 0);
    ASSERT_EQ(call64(c, false, split.data(), a, 1.0, rf, asym, &q), 0);
    ASSERT_EQ(call64(c, false, split.data() + a * parts, b, 1.0, rf, asym, &q), 0);
    for (int i = 0; i < (a + b) * parts; ++i) ASSERT_NEAR(split[i], whole[i], 1e-9) << n << " at " << i;
  }
}

// Waves read off by hand, most of them a quarter cycle a sample from the peak.
TEST(Triangle, WavesReadOffByHand) {
  const double wave[4] = {1, 0, -1, 0};
  float f[9], phase = 0;
  ZIVK32fc c[5];
  ASSERT_EQ(ZIVKS_Triangle_32f(f, 9, 1, 0.25f, 0, &phase), 0);
  ASSERT_EQ(ZIVKS_Triangle_32fc(c, 5, 1, 0.25f, 0, &phase), 0);
  EXPECT_EQ(phase, 0.0f);
  for (int i = 0; i < 9; ++i) EXPECT_NEAR(f[i], wave[i % 4], 1e-6) << i;
  for (int i = 0; i < 5; ++i) EXPECT_NEAR(c[i].im, wave[(i + 3) % 4], 1e-6) << i;  // 0, 1, 0, -1
  int16_t s[11];  // 10 (1 - i / 4) truncated toward zero: blocks to 8, then the tail
  ASSERT_EQ(ZIVKS_Triangle_16s(s, 11, 10, 0.0625f, 0, &phase), 0);
  const int16_t cut[6] = {10, 7, 2, -2, -7, -7};
  for (int k = 0; k < 6; ++k) EXPECT_EQ(s[k == 0 ? 0 : 2 * k - 1], cut[k]) << k;
  std::vector<double> d(44);
  double p = 0;
  ASSERT_EQ(ZIVKS_Triangle_64f(d.data(), 5, 1, 0.25, 0, &p), 0);
  EXPECT_NEAR(p, kPi / 2, 1e-15);
  for (int i = 0; i < 5; ++i) EXPECT_NEAR(d[i], wave[i % 4], 1e-15) << i;
  p = 0;  // 11 whole periods: the wrap lands just below 0, which gives 0
  ASSERT_EQ(ZIVKS_Triangle_64f(d.data(), 44, 1, 0.25, 0, &p), 0);
  EXPECT_TRUE(zt::same_bits(p, 0.0));
  p = 2.5;  // rFreq 0: a constant, and the phase kept
  ASSERT_EQ(ZIVKS_Triangle_64f(d.data(), 5, 1, 0, 0, &p), 0);
  EXPECT_EQ(p, 2.5);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(d[i], 1 - 2 * 2.5 / kPi) << i;
}

// Checks in order: pointers, *phase, asym, len, magn, rFreq, every compare ordered (a
// NaN passes); nothing written and *phase kept after an error.
template <class E, class M, class A>
void statuses(ZIVKStatus (*fn)(E*, int32_t, M, A, A, A*), bool minus_pi_passes) {
  const A nan = std::numeric_limits<A>::quiet_NaN(), two_pi = A(kTwoPi), pi = A(kPi), below_half = std::nextafter(A(0.5), A(0));
  struct Case { int32_t len; double magn; A rf, asym, phase; int nulls; ZIVKStatus want; };
  // Each row: len, magn, rFreq, asym, *phase, which pointer is null (1 dst, 2 phase), status.
  std::vector<Case> cases = {
      {4, 1, 0.1, 0, 1, 0, 0},   {0, 1, 0.1, 0, 1, 1, 1},    {0, 1, 1, 0, 1, 2, 1},         {0, 0, 0.1, 0, -1, 0, 10},
      {4, 1, 0.1, 0, -0.0, 0, 0}, {4, 1, 0.1, 0, two_pi, 0, 10}, {4, 1, 0.1, 0, nan, 0, 0}, {4, 1, 0.1, pi, 1, 0, 10},
      {4, 1, 0.1, 0, std::nextafter(two_pi, A(0)), 0, 0},  {4, 1, 0.1, -pi, 1, 0, minus_pi_passes ? 0 : 10},
      {4, 1, 0.1, nan, 1, 0, 0}, {0, 1, 0.1, 0, 1, 0, 2},    {-1, 0, -1, 0, 1, 0, 2},       {0, 1, 0.1, 4, 1, 0, 10},
      {4, 0, 0.1, 0, 1, 0, 10},  {4, -3, 0.1, 0, 1, 0, 10},  {4, 1, -1e-30, 0, 1, 0, 10},   {4, 1, 0.5, 0, 1, 0, 10},
      {4, 1, below_half, 0, 1, 0, 0}, {4, 1, -0.0, 0, 1, 0, 0}, {4, 1, nan, 0, 1, 0, 0}};
  if (!std::is_integral_v<M>) cases.insert(cases.end(), {{4, -0.0, 0.1, 0, 1, 0, 10}, {4, kNaN, 0.1, 0, 1, 0, 0}, {4, 1e-44, 0.1, 0, 1, 0, 0}});
  for (const Case& c : cases) {
    SCOPED_TRACE(show({c.magn, c.rf, c.asym, c.phase, double(c.len)}) + " nulls " + std::to_string(c.nulls));
    zt::Guarded<E> d(4);
    A phase = c.phase;
    EXPECT_EQ(fn(c.nulls == 1 ? nullptr : d.data(), c.len, static_cast<M>(c.magn), c.rf, c.asym, c.nulls == 2 ? nullptr : &phase), c.want);
    if (c.want == 0) continue;
    EXPECT_TRUE(d.untouched());
    EXPECT_TRUE(zt::same_bits(phase, c.phase));
  }
}

TEST(Triangle, StatusesInTheirOrder) {
  statuses(ZIVKS_Triangle_16s, false);
  statuses(ZIVKS_Triangle_32f, false);
  statuses(ZIVKS_Triangle_16sc, false);
  statuses(ZIVKS_Triangle_32fc, false);
  statuses(ZIVKS_Triangle_64f, true);
  statuses(ZIVKS_Triangle_64fc, false);
}

}  // namespace
