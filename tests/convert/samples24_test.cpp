// Packed 24-bit samples: unpacking into 32-bit integers and floats, and packing with a
// scale, rounded to nearest (a tie to the even neighbour) and saturated.
#include <float.h>
#include <math.h>

#include <algorithm>
#include <functional>
#include <string>
#include <type_traits>

#include "support/sweep.h"

namespace {

using Bytes = std::vector<uint8_t>;
constexpr int kPackBlock = 8;  // the packing forms work in whole blocks of 8, then the tail

struct Form {
  std::string name;
  size_t in, out;  // bytes a sample takes in src and in dst
  int min_len;
  bool scaled;
  std::function<ZIVKStatus(bool twin, const void* s, void* d, int32_t n, double scale)> call;
  std::function<void(uint8_t* x, double scale, zt::Rng&)> fill;                         // one sample
  std::function<void(const uint8_t* x, double scale, bool block, uint8_t* want)> rule;  // its result
};

// Rounded to nearest, a tie to the even neighbour, and clamped to the 24-bit range;
// NaN gives 0.
int32_t settle(double v, bool sgn) {
  const double lo = sgn ? -0x1p23 : 0, hi = sgn ? 0x1p23 - 1 : 0x1p24 - 1;
  return v != v ? 0 : static_cast<int32_t>(std::min(hi, std::max(lo, nearbyint(v))));
}

// One packed value. Integers times M = 2^e are exact in float64, and so is every tail
// result: from e = 128 on the tail's float32 M is infinite and saturates what the exact
// product saturates too. Whole blocks grow by a saturating shift whose count is the low
// byte of e read as signed; a negative count shifts right, rounding half up. Floats are
// one float32 product.
template <class S, bool Signed>
int32_t pack(S x, double scale, bool block) {
  const int e = zt::scale_exponent(scale), c = static_cast<int8_t>(e & 0xFF);
  if constexpr (std::is_floating_point_v<S>) {
    volatile float m = static_cast<float>(ldexp(1.0, std::max(-2000, std::min(2000, e))));
    volatile float p = x * m;
    return settle(p, Signed);
  } else {
    if (!block || e < 128 || c >= 0) return settle(ldexp(static_cast<double>(x), block && e >= 128 ? c : e), Signed);
    return -c > 40 ? 0 : settle(static_cast<double>((int64_t{x} + (int64_t{1} << (-c - 1))) >> -c), Signed);
  }
}

// Any bits, ties and bounds in units of the result (of the block's right shift where its
// count has wrapped), small values, and the special floats.
template <class S, bool Signed>
S input(zt::Rng& r, double scale) {
  const int e = zt::scale_exponent(scale), c = static_cast<int8_t>(e & 0xFF);
  const int lose = std::is_integral_v<S> && e >= 128 && c < 0 ? -c : -e;
  const double unit = ldexp(1.0, std::max(-100, std::min(100, lose)));
  const double lo = Signed ? -0x1p23 : 0, hi = Signed ? 0x1p23 - 1 : 0x1p24 - 1;
  double v;
  switch (r() % 5) {
    case 0: { S x; zt::fill_random(&x, 1, r); return x; }
    case 1: v = (static_cast<int>(r() % 2001) - 1000 + 0.5) * unit; break;
    case 2: v = ((r() % 2 ? hi : lo) + (static_cast<int>(r() % 5) - 2) * 0.5) * unit; break;
    case 3: v = static_cast<int>(r() % 7) - 3.0; break;
    default: v = std::uniform_real_distribution<double>(lo - 100, hi + 100)(r) * unit;
  }
  if constexpr (std::is_floating_point_v<S>) return static_cast<S>(v);
  using L = std::numeric_limits<S>;
  return static_cast<S>(floor(std::min<double>(L::max(), std::max<double>(L::min(), v))));
}

template <class D, bool Signed>
Form reading(const char* name, ZIVKStatus (*fn)(const uint8_t*, D*, int32_t), decltype(fn) twin) {
  Form f{name, 3, 4, Signed ? 3 : 1, false, nullptr, nullptr, nullptr};
  f.call = [fn, twin](bool t, const void* s, void* d, int32_t n, double) {
    const auto g = t ? twin : fn;
    return g ? g(static_cast<const uint8_t*>(s), static_cast<D*>(d), n) : zt::kNoTwin;
  };
  f.fill = [](uint8_t* x, double, zt::Rng& r) {  // any bytes, often the extremes of both kinds
    static const uint32_t edge[] = {0x000000, 0x7FFFFF, 0x800000, 0xFFFFFF, 0x800001, 0x7FFFFE};
    const uint32_t v = r() % 3 ? static_cast<uint32_t>(r()) : edge[r() % 6];
    for (int b = 0; b < 3; ++b) x[b] = static_cast<uint8_t>(v >> 8 * b);
  };
  f.rule = [](const uint8_t* x, double, bool, uint8_t* want) {
    const int32_t u = x[0] | x[1] << 8 | x[2] << 16;
    const D v = static_cast<D>(Signed && u >= 0x800000 ? u - 0x1000000 : u);
    memcpy(want, &v, 4);
  };
  return f;
}

template <class S, bool Signed>
Form writing(const char* name, ZIVKStatus (*fn)(const S*, uint8_t*, int32_t, double), decltype(fn) twin) {
  Form f{name, 4, 3, 1, true, nullptr, nullptr, nullptr};
  f.call = [fn, twin](bool t, const void* s, void* d, int32_t n, double scale) {
    const auto g = t ? twin : fn;
    return g ? g(static_cast<const S*>(s), static_cast<uint8_t*>(d), n, scale) : zt::kNoTwin;
  };
  f.fill = [](uint8_t* x, double scale, zt::Rng& r) {
    const S v = input<S, Signed>(r, scale);
    memcpy(x, &v, 4);
  };
  f.rule = [](const uint8_t* x, double scale, bool block, uint8_t* want) {
    S v;
    memcpy(&v, x, 4);
    const int32_t p = pack<S, Signed>(v, scale, block);
    for (int b = 0; b < 3; ++b) want[b] = static_cast<uint8_t>(p >> 8 * b);
  };
  return f;
}

#define ZT_R(fn, D, sgn) reading<D, sgn>(#fn, ZIVKS_##fn, ZT_TWIN(ZIVKS_##fn))
#define ZT_W(fn, S, sgn) writing<S, sgn>(#fn, ZIVKS_##fn, ZT_TWIN(ZIVKS_##fn))

std::vector<Form> forms() {
  return {ZT_R(Convert_24u32u, uint32_t, false), ZT_R(Convert_24u32f, float, false),
          ZT_R(Convert_24s32s, int32_t, true),   ZT_R(Convert_24s32f, float, true),
          ZT_W(Convert_32u24u_S, uint32_t, false), ZT_W(Convert_32s24s_S, int32_t, true),
          ZT_W(Convert_32f24u_S, float, false),    ZT_W(Convert_32f24s_S, float, true)};
}

// Every form at every length from 1 to 40 and a few longer ones, over the scales around
// every path switch: the rule, the generic twin bit for bit, nothing read or written
// outside the arrays, and nothing written when a signed unpack refuses one or two samples.
TEST(Samples24, EveryFormFollowsTheRuleWithinItsArrays) {
  std::vector<double> scales = zt::test_scales();
  scales.insert(scales.end(), {0x1p-224, 0x1p-232, DBL_MAX});
  std::vector<int> lengths{64, 131, 300};
  for (int n = 1; n <= 40; ++n) lengths.push_back(n);
  for (const Form& f : forms()) {
    zt::Rng rng(std::hash<std::string>()(f.name));
    for (double scale : f.scaled ? scales : std::vector<double>{1.0}) {
      for (int n : lengths) {
        SCOPED_TRACE(f.name + " len " + std::to_string(n) + " scale " + ::testing::PrintToString(scale));
        // The source ends its allocation, so a read past it is caught in the sanitizer leg.
        const size_t lead = f.in == 3 ? rng() % 16 : 4 * (rng() % 4);
        Bytes raw(lead + f.in * n), want(f.out * n);
        for (int i = 0; i < n; ++i) f.fill(raw.data() + lead + f.in * i, scale, rng);
        const Bytes before = raw;
        const uint8_t* src = raw.data() + lead;
        zt::Guarded<uint8_t> d(f.out * n, f.out == 3 ? rng() % 16 : 4 * (rng() % 4)), t(f.out * n);
        const ZIVKStatus status = f.call(false, src, d.data(), n, scale);
        ASSERT_EQ(raw, before);
        if (n < f.min_len) {
          ASSERT_EQ(status, ZIVK_STS_SIZE_ERR);
          ASSERT_TRUE(d.untouched());
          continue;
        }
        ASSERT_EQ(status, 0);
        ASSERT_TRUE(d.guards_intact()) << "written outside dst";
        for (int i = 0; i < n; ++i) {
          f.rule(src + f.in * i, scale, i < (n & ~(kPackBlock - 1)), want.data() + f.out * i);
          ASSERT_EQ(Bytes(d.data() + f.out * i, d.data() + f.out * (i + 1)),
                    Bytes(want.begin() + f.out * i, want.begin() + f.out * (i + 1)))
              << "sample " << i << " from " << ::testing::PrintToString(Bytes(src + f.in * i, src + f.in * (i + 1)));
        }
        const ZIVKStatus tw = f.call(true, src, t.data(), n, scale);
        if (tw == zt::kNoTwin) continue;
        ASSERT_EQ(tw, 0);
        ASSERT_EQ(memcmp(t.data(), d.data(), f.out * n), 0) << "generic backend";
      }
    }
  }
}

// Pointers, then len (below 1, and below 3 for the signed unpacking forms only), then
// scale; nothing written after any of them.
TEST(Samples24, StatusesInOrderAndNothingWrittenOnError) {
  for (const Form& f : forms()) {
    SCOPED_TRACE(f.name);
    const Bytes src(f.in * 4, 1);
    zt::Guarded<uint8_t> d(f.out * 4);
    for (int32_t n : {4, 2, 1, 0, -1, INT32_MIN}) {
      const bool too_short = n < f.min_len;
      for (double scale : {0.0, -0.0, -1.0, -HUGE_VAL, HUGE_VAL, double(NAN), -double(NAN)}) {
        EXPECT_EQ(f.call(false, nullptr, d.data(), n, scale), ZIVK_STS_NULL_PTR_ERR) << n;
        EXPECT_EQ(f.call(false, src.data(), nullptr, n, scale), ZIVK_STS_NULL_PTR_ERR) << n;
        if (too_short || f.scaled) {
          EXPECT_EQ(f.call(false, src.data(), d.data(), n, scale), too_short ? ZIVK_STS_SIZE_ERR : ZIVK_STS_SCALE_ERR)
              << n << " " << scale;
        }
      }
    }
    EXPECT_TRUE(d.untouched());
  }
}

// Byte order and sign extension, and packing by example in a block (samples 0 to 7) and
// in the tail (sample 8 on).
TEST(Samples24, ByteOrderSignAndPackingByExample) {
  const uint8_t b[9] = {0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x80, 0x01, 0x02, 0x03};
  uint32_t u[3];
  int32_t s[3];
  ASSERT_EQ(ZIVKS_Convert_24u32u(b, u, 3) | ZIVKS_Convert_24s32s(b, s, 3), 0);
  EXPECT_EQ(std::vector<uint32_t>(u, u + 3), (std::vector<uint32_t>{16777215, 0x800000, 0x030201}));
  EXPECT_EQ(std::vector<int32_t>(s, s + 3), (std::vector<int32_t>{-1, -8388608, 0x030201}));

  uint8_t d[30];
  auto packed = [&d](int n) {
    std::vector<int32_t> v(n);
    for (int i = 0; i < n; ++i) v[i] = d[3 * i] | d[3 * i + 1] << 8 | d[3 * i + 2] << 16;
    return v;
  };
  const float f[10] = {8388607.0f, -8388608.0f, 0.5f, 1.5f, NAN, 2.5f, -2.5f, -INFINITY, 1.5f, -2.5f};
  ASSERT_EQ(ZIVKS_Convert_32f24s_S(f, d, 10, 1.0), 0);
  EXPECT_EQ(packed(10), (std::vector<int32_t>{0x7FFFFF, 0x800000, 0, 2, 0, 2, 0xFFFFFE, 0x800000, 2, 0xFFFFFE}));
  // Scale 2: 3 and 5 tie to 2. Scale 2^-255 grows by 255 bits: whole blocks shift right
  // by 1 instead, rounding half up, while the tail saturates.
  const int32_t x[9] = {INT32_MAX, 3, 5, -3, -5, 0, 7, -7, 5};
  ASSERT_EQ(ZIVKS_Convert_32s24s_S(x, d, 9, 2.0), 0);
  EXPECT_EQ(packed(9), (std::vector<int32_t>{0x7FFFFF, 2, 2, 0xFFFFFE, 0xFFFFFE, 0, 4, 0xFFFFFC, 2}));
  ASSERT_EQ(ZIVKS_Convert_32s24s_S(x, d, 9, 0x1p-255), 0);
  EXPECT_EQ(packed(9), (std::vector<int32_t>{0x7FFFFF, 2, 3, 0xFFFFFF, 0xFFFFFE, 0, 4, 0xFFFFFD, 0x7FFFFF}));
  const uint32_t v[2] = {8388608, 8388607};
  ASSERT_EQ(ZIVKS_Convert_32u24u_S(v, d, 2, 0.5), 0);
  EXPECT_EQ(packed(2), (std::vector<int32_t>{0xFFFFFF, 0xFFFFFE}));
}

// Packing then unpacking is exact where the result fits: x packed at scale 2^-j comes
// back as x * 2^j, and x * 2^j, integer or float, packed at scale 2^j comes back as x.
TEST(Samples24, PackThenUnpackIsExactWhereTheResultFits) {
  zt::Rng rng(24);
  for (int j = 0; j <= 23; ++j) {
    SCOPED_TRACE(j);
    const int n = 3 + j;  // whole blocks and tails
    const double up = ldexp(1, -j), down = ldexp(1, j);
    std::vector<int32_t> x(n), big(n), y(n);
    std::vector<uint32_t> ux(n), ubig(n), uy(n);
    std::vector<float> fbig(n), fubig(n), fy(n);
    Bytes p(3 * n);
    for (int i = 0; i < n; ++i) {
      x[i] = static_cast<int32_t>(rng() % (1u << (24 - j))) - (1 << (23 - j));
      ux[i] = static_cast<uint32_t>(rng() % (1u << (24 - j)));
      big[i] = x[i] * (1 << j), ubig[i] = ux[i] << j;
      fbig[i] = static_cast<float>(big[i]), fubig[i] = static_cast<float>(ubig[i]);
    }
    ASSERT_EQ(ZIVKS_Convert_32s24s_S(x.data(), p.data(), n, up) | ZIVKS_Convert_24s32s(p.data(), y.data(), n), 0);
    EXPECT_EQ(y, big);
    ASSERT_EQ(ZIVKS_Convert_32s24s_S(big.data(), p.data(), n, down) | ZIVKS_Convert_24s32s(p.data(), y.data(), n), 0);
    EXPECT_EQ(y, x);
    ASSERT_EQ(ZIVKS_Convert_32f24s_S(fbig.data(), p.data(), n, down) | ZIVKS_Convert_24s32f(p.data(), fy.data(), n), 0);
    EXPECT_EQ(fy, std::vector<float>(x.begin(), x.end()));
    ASSERT_EQ(ZIVKS_Convert_32u24u_S(ux.data(), p.data(), n, up) | ZIVKS_Convert_24u32u(p.data(), uy.data(), n), 0);
    EXPECT_EQ(uy, ubig);
    ASSERT_EQ(ZIVKS_Convert_32u24u_S(ubig.data(), p.data(), n, down) | ZIVKS_Convert_24u32u(p.data(), uy.data(), n), 0);
    EXPECT_EQ(uy, ux);
    ASSERT_EQ(ZIVKS_Convert_32f24u_S(fubig.data(), p.data(), n, down) | ZIVKS_Convert_24u32f(p.data(), fy.data(), n), 0);
    EXPECT_EQ(fy, std::vector<float>(ux.begin(), ux.end()));
  }
}

}  // namespace
