// Narrowing integer conversions: two that only saturate and four scaled ones, which differ
// in their arguments, in which of them they check, in their paths and block sizes.
#include <math.h>

#include <limits>

#include "support/sweep.h"

namespace {

struct Param {
  int32_t mode;  // as it travels: unchecked or refused values need not be enumerators
  double scale;
};
std::ostream& operator<<(std::ostream& o, const Param& p) { return o << "mode " << p.mode << " scale " << p.scale; }

using u128 = unsigned __int128;

// The exact value sign * u * 2^t rounded to a whole number (mode 0 truncates, 1 takes a
// tie to the even neighbour, any other a tie away from zero) and clamped to I.
template <class I>
I exact(bool neg, uint64_t u, int t, int mode) {
  u128 q = u;
  if (t > 0) {
    q = t >= 64 ? (u ? ~u128{0} >> 1 : 0) : q << t;
  } else if (t < 0) {
    const int s = -t;
    q = s >= 66 ? 0 : q >> s;
    const u128 rest = s >= 66 ? u : u - (q << s), half = s >= 66 ? ~u128{0} : u128{1} << (s - 1);
    if (mode == 1 ? rest > half || (rest == half && (q & 1)) : mode != 0 && rest >= half) ++q;
  }
  using L = std::numeric_limits<I>;
  const u128 limit = neg ? static_cast<u128>(-static_cast<__int128>(L::min())) : static_cast<u128>(L::max());
  if (q >= limit) return neg ? L::min() : L::max();
  return static_cast<I>(neg ? -static_cast<__int128>(q) : static_cast<__int128>(q));
}

template <class I>
I exact(int64_t x, int t, int mode) {
  return exact<I>(x < 0, x < 0 ? 0 - static_cast<uint64_t>(x) : static_cast<uint64_t>(x), t, mode);
}

// 16s8s_S (float32) and 32s16s_S (float64, always to nearest, a tie to even): exact
// products, rounded and clamped. Where M overflows to infinity the exact value agrees:
// a non-zero element saturates, and 0 (0 times infinity, NaN) gives 0.
template <class S, class I, int kMode = -1>
I exact_product(S x, Param p, bool) {
  return exact<I>(x, zt::scale_exponent(p.scale), kMode < 0 ? p.mode : kMode);
}

// 8u8s_S by its scale shift s = -e. s 0 clamps; s above 0 rounds exactly by the mode;
// s below 0 grows by k = e bits: a whole block of 16 shifts by the low byte of k read as
// signed (a negative count a rounding shift right), the tail multiplies by a float32 M
// and truncates, saturating every non-zero value once M is infinite (k from 128).
int8_t rule_8u8s(uint8_t x, Param p, bool in_tail) {
  const int e = zt::scale_exponent(p.scale);
  if (e == 0) return static_cast<int8_t>(std::min<int>(x, 127));
  if (e < 0) return exact<int8_t>(x, e, p.mode);  // 7 or -1 ties away, like 2
  if (in_tail) return exact<int8_t>(x, e, 0);
  return exact<int8_t>(x, static_cast<int8_t>(e & 0xFF), 2);
}

// 64s32s_S: the element rounded to float64 first, then times M; in the tail the nearest
// mode adds one half in float64, so a product just below one half gives 1.
int32_t rule_64s32s(int64_t x, Param p, bool in_tail) {
  const int e = zt::scale_exponent(p.scale);
  uint64_t u = x < 0 ? 0 - static_cast<uint64_t>(x) : static_cast<uint64_t>(x);
  int k = 0;
  if (u >> 53) {
    k = 11 - __builtin_clzll(u);
    const uint64_t rest = u & ((uint64_t{1} << k) - 1), half = uint64_t{1} << (k - 1);
    u >>= k;
    if (rest > half || (rest == half && (u & 1))) ++u;
  }
  if (in_tail && p.mode == ZIVK_RND_NEAR && ldexp(static_cast<double>(u), k + e) == 0.49999999999999994) return x < 0 ? -1 : 1;
  return exact<int32_t>(x < 0, u, k + e, p.mode);
}

// Any bits; ties at the scale and one off them; small values; 64-bit values beyond 2^53
// that sit one off a tie; and 2^53 - 1, the product just below one half at scale 2^54.
template <class T>
void values(T* p, size_t n, const Param& q, zt::Rng& rng) {
  const int s = -zt::scale_exponent(q.scale);
  for (size_t i = 0; i < n; ++i) {
    const int64_t sign = rng() % 2 ? 1 : -1, off = static_cast<int>(rng() % 3) - 1;
    const int64_t half = s > 0 && s < 62 ? int64_t{1} << (s - 1) : 0;
    switch (rng() % 6) {
      case 0: zt::fill_random(p + i, 1, rng); break;
      case 1: p[i] = static_cast<T>(sign * ((static_cast<int64_t>(rng() % 600) << std::max(0, std::min(s, 40))) + half + off)); break;
      case 2: p[i] = static_cast<T>(static_cast<int>(rng() % 601) - 300); break;
      case 3: {
        int64_t v = static_cast<int64_t>((rng() >> 2 | uint64_t{1} << 53) >> (rng() % 9));
        if (half) v = v / (2 * half) * (2 * half) + half;
        p[i] = static_cast<T>(sign * (v + off));
        break;
      }
      case 4: p[i] = static_cast<T>(sign * ((int64_t{1} << 53) - 1)); break;
      default: p[i] = static_cast<T>(rng() % 2 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min());
    }
  }
}

// What a member takes: no scale; a scale and no rndMode (32s16s_S); rndMode checked
// before the scale; rndMode read where values shrink and never checked (8u8s_S).
enum class Mode { kUnscaled, kNone, kChecked, kUnchecked };

template <class S, class D>
void check(const char* name, typename zt::Member<S, D, Param>::Call call, int block, Mode mode_use,
           D (*rule)(S, Param, bool)) {
  zt::Member<S, D, Param> m;
  m.name = name;
  m.call = call;
  m.rule = zt::each<S, D, Param>([=](S x, S, Param p, int i, int n) { return rule(x, p, i >= (n & ~(block - 1))); });
  m.alone = false;  // the rule places each element
  m.lengths = {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 32, 33, 48, 70, 129};
  if (mode_use != Mode::kUnscaled) {
    m.fill = [](S* p, size_t k, const Param& q, zt::Rng& rng) { values(p, k, q, rng); };
    m.params.clear();
    std::vector<double> scales = zt::test_scales();
    for (double s : {0x1p-54, 0x1p23, 0x1p54, 0x1p-1024}) scales.push_back(s);
    for (double s : scales)
      for (int32_t mode : {0, 1, 2, 3, -1}) {
        const bool valid = mode_use == Mode::kChecked ? mode >= 0 && mode <= 2 : mode == 1 || mode_use == Mode::kUnchecked;
        if (valid) m.params.push_back({mode, s});
      }
    // The mode is checked before the scale, where it is checked at all.
    for (int32_t mode : {3, -1, 7}) m.bad.push_back({{mode, -1.0}, mode_use == Mode::kChecked ? ZIVK_STS_ROUND_MODE_ERR : ZIVK_STS_SCALE_ERR});
    for (double s : {0.0, -0.0, -2.0, -HUGE_VAL, HUGE_VAL, double(NAN)}) m.bad.push_back({{1, s}, ZIVK_STS_SCALE_ERR});
  }
  zt::check_member(m);
}

TEST(Narrowing, EveryMemberFollowsItsRule) {
  check<int8_t, uint8_t>("Convert_8s8u", ZT_CALL(ZIVKS_Convert_8s8u, a, d, n), 16, Mode::kUnscaled,
                         [](int8_t x, Param, bool) { return static_cast<uint8_t>(std::max<int>(x, 0)); });
  check<int32_t, int16_t>("Convert_32s16s", ZT_CALL(ZIVKS_Convert_32s16s, a, d, n), 4, Mode::kUnscaled,
                          [](int32_t x, Param, bool) { return exact<int16_t>(x, 0, 0); });
  check<uint8_t, int8_t>("Convert_8u8s_S", ZT_CALL(ZIVKS_Convert_8u8s_S, a, d, n, ZIVKRoundMode(p.mode), p.scale), 16,
                         Mode::kUnchecked, rule_8u8s);
  check<int16_t, int8_t>("Convert_16s8s_S", ZT_CALL(ZIVKS_Convert_16s8s_S, a, d, n, ZIVKRoundMode(p.mode), p.scale), 8,
                         Mode::kChecked, exact_product<int16_t, int8_t>);
  check<int32_t, int16_t>("Convert_32s16s_S", ZT_CALL(ZIVKS_Convert_32s16s_S, a, d, n, p.scale), 4, Mode::kNone,
                          exact_product<int32_t, int16_t, ZIVK_RND_NEAR>);
  check<int64_t, int32_t>("Convert_64s32s_S", ZT_CALL(ZIVKS_Convert_64s32s_S, a, d, n, ZIVKRoundMode(p.mode), p.scale), 2,
                          Mode::kChecked, rule_64s32s);
}

// The per-member quirks by example: elements 0 to 15 are a block of 8u8s_S and 16 its tail.
TEST(Narrowing, QuirksByExample) {
  uint8_t u[17] = {5, 255, 31, 32, 3, 0, 200};
  int8_t d[17];
  for (int32_t mode : {0, 1, 2, 7, -1}) {
    ASSERT_EQ(ZIVKS_Convert_8u8s_S(u, d, 17, ZIVKRoundMode(mode), 2.0), 0);
    EXPECT_TRUE(d[0] == (mode == 0 || mode == 1 ? 2 : 3) && d[1] == 127) << mode;
    ASSERT_EQ(ZIVKS_Convert_8u8s_S(u, d, 17, ZIVKRoundMode(mode), 1.0), 0);
    EXPECT_TRUE(d[0] == 5 && d[1] == 127) << mode;
  }
  ASSERT_EQ(ZIVKS_Convert_8u8s_S(u, d, 17, ZIVK_RND_NEAR, 0.25), 0);
  EXPECT_TRUE(d[2] == 124 && d[3] == 127);
  // Shift counts from the low byte of k: 255 shifts right by 1 rounding half up, 256 not
  // at all, 128 right by 128; the tail saturates every value but 0.
  u[16] = 3;
  ASSERT_EQ(ZIVKS_Convert_8u8s_S(u, d, 17, ZIVK_RND_NEAR, 0x1p-255), 0);
  EXPECT_TRUE(d[4] == 2 && d[0] == 3 && d[1] == 127 && d[5] == 0 && d[16] == 127);
  ASSERT_EQ(ZIVKS_Convert_8u8s_S(u, d, 17, ZIVK_RND_NEAR, 0x1p-256), 0);
  EXPECT_TRUE(d[0] == 5 && d[6] == 127 && d[16] == 127);
  u[16] = 0;
  ASSERT_EQ(ZIVKS_Convert_8u8s_S(u, d, 17, ZIVK_RND_NEAR, 0x1p-128), 0);
  EXPECT_TRUE(d[1] == 0 && d[16] == 0);

  // 32s16s_S: ties to even at scale 2; at scale 1 (no multiply) a plain clamp; both in a
  // block (0 to 3) and the tail (4).
  const int32_t a[5] = {3, 1, 5, -3, 5}, b[5] = {40000, -40000, INT32_MIN, 32767, -32769};
  int16_t h[5];
  ASSERT_EQ(ZIVKS_Convert_32s16s_S(a, h, 5, 2.0), 0);
  EXPECT_TRUE(h[0] == 2 && h[1] == 0 && h[2] == 2 && h[3] == -2 && h[4] == 2);
  ASSERT_EQ(ZIVKS_Convert_32s16s_S(b, h, 5, 1.5), 0);
  EXPECT_TRUE(h[0] == 32767 && h[1] == -32768 && h[2] == -32768 && h[3] == 32767 && h[4] == -32768);

  // 64s32s_S with the nearest mode: 2^53 - 1 at scale 2^54 is just below one half; the
  // odd last element is the tail, pairs before it are blocks.
  const int64_t x[3] = {(int64_t{1} << 53) - 1, (int64_t{1} << 53) - 1, -((int64_t{1} << 53) - 1)};
  int32_t r[3];
  ASSERT_EQ(ZIVKS_Convert_64s32s_S(x, r, 3, ZIVK_RND_NEAR, 0x1p54), 0);
  EXPECT_TRUE(r[0] == 0 && r[1] == 0 && r[2] == -1);
  ASSERT_EQ(ZIVKS_Convert_64s32s_S(x, r, 1, ZIVK_RND_NEAR, 0x1p54), 0);
  EXPECT_EQ(r[0], 1);
  ASSERT_EQ(ZIVKS_Convert_64s32s_S(x, r, 3, ZIVK_RND_AWAY, 0x1p54), 0);
  EXPECT_TRUE(r[0] == 0 && r[2] == 0);
}

// Half precision where the compiler has it: Arm's __fp16 computes in float and rounds
// each result back, which for one product of two half values is the half product.
#if defined(__aarch64__)
#define ZT_HALF __fp16
#elif defined(__FLT16_MAX__)
#define ZT_HALF _Float16
#endif

#ifdef ZT_HALF
// 8u8s_S where values shrink, computed as its blocks do in half-precision steps: the
// element and M to half, one half product, rounded by the mode, saturated at 127.
TEST(Narrowing, HalfPrecisionBlocksOf8u8s) {
  uint8_t src[256];
  int8_t dst[256];
  for (int i = 0; i < 256; ++i) src[i] = static_cast<uint8_t>(i);
  for (int s = 1; s <= 26; ++s) {
    const ZT_HALF m = static_cast<ZT_HALF>(static_cast<float>(ldexp(1.0, -s)));
    for (int32_t mode : {0, 1, 2, 7, -1}) {
      ASSERT_EQ(ZIVKS_Convert_8u8s_S(src, dst, 256, ZIVKRoundMode(mode), ldexp(1.0, s)), 0);
      for (int i = 0; i < 256; ++i) {
        const float p = static_cast<float>(static_cast<ZT_HALF>(static_cast<ZT_HALF>(i) * m));
        const float r = mode == 0 ? truncf(p) : mode == 1 ? nearbyintf(p) : roundf(p);
        ASSERT_EQ(dst[i], std::min(r, 127.0f)) << "s " << s << " mode " << mode << " element " << i;
      }
    }
  }
}
#endif

}  // namespace
