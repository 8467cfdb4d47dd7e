// Scaled saturating AddC, SubC and SubCRev: r = saturate(round(x * 2^e)), x the exact
// src + val, src - val or val - src, with the paths where a block parts from that rule.
#include <math.h>

#include <algorithm>
#include <limits>
#include <ostream>

#include "support/sweep.h"

namespace {

template <class T>
struct Param {
  T val;
  double scale;
};
template <class T>
std::ostream& operator<<(std::ostream& o, const Param<T>& p) {
  return o << "val " << +p.val << " scale " << p.scale;
}

template <class T>
T clamp_to(long double r) {
  if (r >= static_cast<long double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
  if (r <= static_cast<long double>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
  return static_cast<T>(r);
}

enum class Op { kAddC, kSubC, kSubCRev };

struct Traits {
  Op op;
  // Elements per block of the path that shifts left for scales below 1 (0: no such
  // path). Only there do block and tail part, so only there does the block size show.
  int shift_block;
  bool clears;  // scales of 512 and up write 0 without computing
};

// Element i of a call of length n. x * 2^e is exact in long double; nearbyintl rounds a
// tie to the even neighbour.
template <class T>
T rule(Traits m, T a, T v, double scale, int i, int n) {
  const int e = zt::scale_exponent(scale);
  if (m.clears && e < -8) return 0;  // even where the exact result would round to 1
  const int64_t x = m.op == Op::kAddC   ? int64_t{a} + v
                    : m.op == Op::kSubC ? int64_t{a} - v
                                        : int64_t{v} - a;
  const bool in_block = i < (n & ~(m.shift_block - 1));
  if (m.shift_block && in_block && e >= 128) {
    // The block saturates x, then shifts it by the low byte of e read as signed: left
    // with saturation, or right, AddC rounding toward -infinity and SubC / SubCRev half
    // up. The tail's infinite M saturates every non-zero x, as the plain rule does.
    const int count = static_cast<int8_t>(e & 0xFF);
    const long double y = ldexpl(clamp_to<T>(x), count);
    return clamp_to<T>(count >= 0 ? y : m.op == Op::kAddC ? floorl(y) : floorl(y + 0.5L));
  }
  return clamp_to<T>(nearbyintl(ldexpl(static_cast<long double>(x), e)));
}

template <class T>
using Fn = ZIVKStatus (*)(const T*, T, T*, int32_t, double);
template <class T>
using FnI = ZIVKStatus (*)(T, T*, int32_t, double);

template <class T>
zt::Member<T, T, Param<T>> member(const char* name, Traits tr, Fn<T> fn, Fn<T> twin, FnI<T> in_place) {
  using P = Param<T>;
  zt::Member<T, T, P> m;
  m.name = name;
  m.call = [fn, twin](bool t, const T* a, const T*, P p, T* d, int32_t n) {
    return t ? (twin ? twin(a, p.val, d, n, p.scale) : zt::kNoTwin) : fn(a, p.val, d, n, p.scale);
  };
  m.in_place = [in_place](bool, const T*, const T*, P p, T* d, int32_t n) { return in_place(p.val, d, n, p.scale); };
  m.rule = zt::each<T, T, P>([tr](T a, T, P p, int i, int n) { return rule(tr, a, p.val, p.scale, i, n); });
  constexpr T lo = std::numeric_limits<T>::min(), hi = std::numeric_limits<T>::max();
  std::vector<T> vals{0, 3, hi, zt::samples<T>(1, sizeof(T))[0]};
  if (lo != 0) vals.push_back(lo);
  m.params.clear();
  for (T v : vals)
    for (double s : zt::test_scales()) m.params.push_back({v, s});
  for (double s : {0.0, -0.0, -1.0, -HUGE_VAL, HUGE_VAL, double(NAN)}) m.bad.push_back({P{3, s}, ZIVK_STS_SCALE_ERR});
  m.alone = false;  // the rule places each element
  // Small values too, where ties and the rounding of small scales show.
  m.fill = [](T* p, size_t k, const P&, zt::Rng& rng) {
    zt::fill_random(p, k, rng);
    for (size_t i = 0; i < k; ++i)
      if (rng() % 3 == 0) p[i] = static_cast<T>(rng() % 9);
  };
  m.lengths = {1, 3, 4, 7, 8, 9, 15, 16, 17, 31, 32, 33, 63, 64, 65, 127, 128, 131, 300};
  return m;
}

#define ZT_CONST(op, code, T, kind, shift_block, clears)                                                    \
  zt::check_member(member<T>(#op "_" #code "_S", Traits{Op::kind, shift_block, clears}, ZIVKS_##op##_##code##_S, \
                             ZT_TWIN(ZIVKS_##op##_##code##_S), ZIVKS_##op##_##code##_IS))

TEST(ScaledConst, EveryMemberFollowsTheRule) {
  ZT_CONST(AddC, 8u, uint8_t, kAddC, 32, true);
  ZT_CONST(AddC, 16u, uint16_t, kAddC, 32, false);
  ZT_CONST(AddC, 16s, int16_t, kAddC, 0, false);
  ZT_CONST(AddC, 32s, int32_t, kAddC, 8, false);
  ZT_CONST(SubC, 8u, uint8_t, kSubC, 16, false);
  ZT_CONST(SubC, 16u, uint16_t, kSubC, 32, false);
  ZT_CONST(SubC, 16s, int16_t, kSubC, 0, false);
  ZT_CONST(SubC, 32s, int32_t, kSubC, 0, false);
  ZT_CONST(SubCRev, 8u, uint8_t, kSubCRev, 16, false);
  ZT_CONST(SubCRev, 16u, uint16_t, kSubCRev, 32, false);
  ZT_CONST(SubCRev, 16s, int16_t, kSubCRev, 0, false);
  ZT_CONST(SubCRev, 32s, int32_t, kSubCRev, 0, false);
}

// Worked values, independent of the rule above: ties of both parities, saturation at
// both bounds, the 8u clearing bound (scale 511 still multiplies, 512 clears).
TEST(ScaledConst, WorkedValues) {
  uint8_t u8[1];
  int16_t s16[5];
  const uint8_t u255[1] = {255}, u200[1] = {200}, u3[1] = {3}, u100[1] = {100};
  const int16_t odd[5] = {1, 3, -1, -3, 5}, top[1] = {32767};
  auto u8_of = [&](ZIVKStatus st) { return st == 0 ? int{u8[0]} : -1; };
  EXPECT_EQ(u8_of(ZIVKS_AddC_8u_S(u255, 255, u8, 1, 256)), 2);  // 510 / 256 = 1.99
  EXPECT_EQ(u8_of(ZIVKS_AddC_8u_S(u255, 255, u8, 1, 511)), 2);
  EXPECT_EQ(u8_of(ZIVKS_AddC_8u_S(u255, 255, u8, 1, 512)), 0);
  EXPECT_EQ(u8_of(ZIVKS_AddC_8u_S(u100, 100, u8, 1, 0.5)), 255);
  EXPECT_EQ(u8_of(ZIVKS_SubCRev_8u_S(u3, 10, u8, 1, 1)), 7);
  EXPECT_EQ(u8_of(ZIVKS_SubCRev_8u_S(u200, 10, u8, 1, 1)), 0);
  EXPECT_EQ(u8_of(ZIVKS_SubC_8u_S(u3, 0, u8, 1, 2)), 2);  // 1.5 goes to 2
  ASSERT_EQ(ZIVKS_AddC_16s_S(odd, 0, s16, 5, 2), 0);      // 4 in a block, 1 in the tail
  const int16_t halves[5] = {0, 2, 0, -2, 2};
  for (int i = 0; i < 5; ++i) EXPECT_EQ(s16[i], halves[i]) << i;
  ASSERT_EQ(ZIVKS_SubC_16s_S(top, -32768, s16, 1, 1), 0);
  EXPECT_EQ(s16[0], 32767);
  ASSERT_EQ(ZIVKS_SubCRev_16s_S(top, -32768, s16, 1, 1), 0);
  EXPECT_EQ(s16[0], -32768);
  int32_t i32[1] = {2147483647};
  ASSERT_EQ(ZIVKS_AddC_32s_IS(2147483647, i32, 1, 1), 0);
  EXPECT_EQ(i32[0], 2147483647);
}

// The clearing path of AddC_8u: every element, block or tail, is 0 whatever src and val
// (300 / 512 would round to 1); the checks still come first.
TEST(ScaledConst, ClearingPathOf8u) {
  zt::Guarded<uint8_t> src(37), dst(37);
  for (int i = 0; i < 37; ++i) src[i] = 200;
  EXPECT_EQ(ZIVKS_AddC_8u_S(nullptr, 100, dst.data(), 37, 512), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_AddC_8u_S(src.data(), 100, dst.data(), 0, 1e300), ZIVK_STS_SIZE_ERR);
  EXPECT_TRUE(dst.untouched());
  for (double scale : {512.0, 768.0, 1e300}) {
    dst.fill_pattern();
    ASSERT_EQ(ZIVKS_AddC_8u_S(src.data(), 100, dst.data(), 37, scale), 0);
    for (int i = 0; i < 37; ++i) EXPECT_EQ(dst[i], 0) << i;
    EXPECT_TRUE(dst.guards_intact());
  }
}

// The shift count by example, at scale 2^-255 (a right shift by one in blocks): AddC_8u
// gives 3 >> 1 = 1 in its blocks of 32, SubC_8u (3 + 1) >> 1 = 2 in its blocks of 16,
// AddC_32s floor(-3 / 2) = -2 in its blocks of 8; their tails saturate.
TEST(ScaledConst, ShiftCountFromTheLowByte) {
  const double scale = ldexp(1.0, -255);
  uint8_t u[33], d[33];
  memset(u, 3, sizeof u);
  ASSERT_EQ(ZIVKS_AddC_8u_S(u, 0, d, 33, scale), 0);
  EXPECT_EQ(d[31], 1);
  EXPECT_EQ(d[32], 255);
  ASSERT_EQ(ZIVKS_SubC_8u_S(u, 0, d, 17, scale), 0);
  EXPECT_EQ(d[15], 2);
  EXPECT_EQ(d[16], 255);
  int32_t s[9] = {-3, -3, -3, -3, -3, -3, -3, -3, -3};
  ASSERT_EQ(ZIVKS_AddC_32s_IS(0, s, 9, scale), 0);
  EXPECT_EQ(s[7], -2);
  EXPECT_EQ(s[8], INT32_MIN);
}

// Half precision where the compiler has it: Arm's __fp16 computes in float and rounds
// each result back, which for one product of two half values is the half product.
#if defined(__aarch64__)
#define ZT_HALF __fp16
#elif defined(__FLT16_MAX__)
#define ZT_HALF _Float16
#endif

#ifdef ZT_HALF
// AddC_8u with scale 2 to 256 multiplies in half precision in its blocks: x and M to
// half, one half product, rounded to nearest even and saturated. Every sum 0 to 510
// and every such scale, in blocks of 16 (256 elements, no tail).
TEST(ScaledConst, HalfPrecisionBlocksOf8u) {
  uint8_t src[256], dst[256];
  for (int i = 0; i < 256; ++i) src[i] = static_cast<uint8_t>(i);
  for (int s = 1; s <= 8; ++s) {
    const ZT_HALF m = static_cast<ZT_HALF>(static_cast<float>(ldexp(1.0, -s)));
    for (int val : {0, 1, 127, 128, 255}) {
      ASSERT_EQ(ZIVKS_AddC_8u_S(src, static_cast<uint8_t>(val), dst, 256, ldexp(1.0, s)), 0);
      for (int i = 0; i < 256; ++i) {
        const ZT_HALF p = static_cast<ZT_HALF>(static_cast<ZT_HALF>(i + val) * m);
        const float r = nearbyintf(static_cast<float>(p));
        ASSERT_EQ(dst[i], std::min(r, 255.0f)) << "s " << s << " sum " << i + val;
      }
    }
  }
}
#endif

}  // namespace
