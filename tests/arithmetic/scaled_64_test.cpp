// 64-bit scaled Add and AddC: the exact 65-bit sum x shifted by s = log2(scale) (as the
// scale rule truncates it), rounded by rndMode, saturated only where it shifts left.
#include <math.h>

#include <algorithm>
#include <limits>
#include <ostream>

#include "support/sweep.h"

namespace {

using i128 = __int128;

template <class T>
struct Param {
  T val;
  int32_t mode;
  double scale;
};
template <class T>
std::ostream& operator<<(std::ostream& o, const Param<T>& p) {
  return o << "val " << p.val << " rndMode " << p.mode << " scale " << p.scale;
}

template <class T>
T clamp_to(i128 x) {
  constexpr T lo = std::numeric_limits<T>::min(), hi = std::numeric_limits<T>::max();
  return x >= hi ? hi : x <= lo ? lo : static_cast<T>(x);
}

// x / 2^s for s >= 1: toward zero (mode 0), to nearest with a tie to even (1), or to
// nearest with a tie upward (any other mode), unless `tie_down` sends it toward
// -infinity instead. At s above 66 every 65-bit x is 0 whatever the mode.
i128 shift_round(i128 x, int s, int32_t mode, bool tie_down) {
  s = std::min(s, 100);
  const i128 fl = x >> s, r = x - fl * (i128{1} << s), half = i128{1} << (s - 1);
  if (mode == 0) return x < 0 && r != 0 ? fl + 1 : fl;
  if (mode == 1) return r > half || (r == half && (fl & 1)) ? fl + 1 : fl;
  return r > half || (r == half && !tie_down) ? fl + 1 : fl;
}

// Element i of a call of length n, a + b (b is val for the constant forms). Only
// AddC_64s with val = -2^63 and a rounding mode past 1 parts from the rule: its whole
// pairs round a tie down, away from zero.
template <class T>
T rule(bool constant, T a, T b, Param<T> p, int i, int n) {
  const int e = zt::scale_exponent(p.scale);
  const i128 x = i128{a} + b;
  if (e >= 0) {
    // Saturate, then shift by the low byte of e read as signed, block and tail alike:
    // left saturating, or from e = 128 on right by 256 - e, rounding half up.
    const T sum = clamp_to<T>(x);
    const int k = e >= 128 ? static_cast<int8_t>(e & 0xFF) : e;
    const int right = std::min(-k, 100);  // past 65 bits every sum gives 0
    if (k < 0) return static_cast<T>((i128{sum} + (i128{1} << (right - 1))) >> right);
    if (k == 0 || sum == 0) return sum;
    return k >= 64 ? (sum > 0 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min())
                   : clamp_to<T>(i128{sum} * (i128{1} << k));
  }
  const bool quirk = constant && std::is_signed_v<T> && b == std::numeric_limits<T>::min() && p.mode != 0 &&
                     p.mode != 1 && -e <= 64 && i < (n & ~1);
  return clamp_to<T>(shift_round(x, -e, constant ? p.mode : 1, quirk));
}

// Scales 2^s around every path switch (s = 0; 63 to 66, where x / 2^s runs out of
// bits; counts of 128 and up, whose low byte wraps) and some that are not powers of two.
std::vector<double> scales64() {
  std::vector<double> v;
  for (int s : {-1074, -300, -257, -256, -255, -200, -128, -127, -64, -63, -62, -33, -2, -1, 0, 1, 2, 3, 31, 32, 33, 62, 63, 64,
                65, 66, 67, 128, 1023})
    v.push_back(ldexp(1.0, s));
  for (double s : {3.0, 0.3, 0.75, 1.5, 1e-300}) v.push_back(s);
  return v;
}

template <class T>
zt::Member<T, T, Param<T>> member(const char* name, bool constant) {
  using P = Param<T>;
  zt::Member<T, T, P> m;
  m.name = name;
  m.sources = constant ? 1 : 2;
  constexpr T lo = std::numeric_limits<T>::min(), hi = std::numeric_limits<T>::max();
  const std::vector<T> vals =
      constant ? std::vector<T>{0, 3, lo, hi, static_cast<T>(-1), T(T{1} << 62), zt::samples<T>(1, 64)[0]}
               : std::vector<T>{0};
  const std::vector<int32_t> modes = constant ? std::vector<int32_t>{0, 1, 2, 7, -1} : std::vector<int32_t>{1};
  m.params.clear();
  for (T v : vals)
    for (int32_t md : modes)
      for (double s : scales64()) m.params.push_back({v, md, s});
  for (double s : {0.0, -0.0, -2.0, -HUGE_VAL, HUGE_VAL, double(NAN)}) m.bad.push_back({P{3, 7, s}, ZIVK_STS_SCALE_ERR});
  m.rule = zt::each<T, T, P>([constant](T a, T b, P p, int i, int n) { return rule(constant, a, constant ? p.val : b, p, i, n); });
  m.alone = false;  // the rule places each element
  // Any bits, the extremes, small values, and values that with val (or with another such
  // value) give multiples of 2^(s - 1): ties of both parities.
  m.fill = [](T* p, size_t k, const P& prm, zt::Rng& rng) {
    const int lift = std::clamp(-zt::scale_exponent(prm.scale) - 1, 0, 63);
    const T ends[] = {lo, hi, 0, 1, static_cast<T>(-1), static_cast<T>(lo + 1)};
    for (size_t i = 0; i < k; ++i) {
      switch (rng() % 6) {
        case 0: p[i] = static_cast<T>(rng()); break;
        case 1: p[i] = ends[rng() % 6]; break;
        case 2: p[i] = static_cast<T>(rng() % 17 - (std::is_signed_v<T> ? 8 : 0)); break;
        default: p[i] = static_cast<T>((rng() << lift) - static_cast<uint64_t>(prm.val));
      }
    }
  };
  m.lengths = {1, 2, 3, 4, 5, 8, 9, 16, 17, 33};
  return m;
}

TEST(Scaled64, EveryMemberFollowsTheRule) {
  auto add = member<int64_t>("Add_64s_S", false);
  add.call = ZT_CALL(ZIVKS_Add_64s_S, a, b, d, n, p.scale);
  zt::check_member(add);
  auto addc = member<int64_t>("AddC_64s_S", true);
  addc.call = ZT_CALL(ZIVKS_AddC_64s_S, a, p.val, d, n, p.mode, p.scale);
  zt::check_member(addc);
  auto addu = member<uint64_t>("AddC_64u_S", true);
  addu.call = ZT_CALL(ZIVKS_AddC_64u_S, a, p.val, d, n, p.mode, p.scale);
  zt::check_member(addu);
}

// Worked values, independent of the rule above.
TEST(Scaled64, WorkedValues) {
  constexpr int64_t kMin = INT64_MIN, kMax = INT64_MAX;
  int64_t d[3];
  auto add = [&](int64_t a, int64_t b, double scale) {
    return ZIVKS_Add_64s_S(&a, &b, d, 1, scale) == 0 ? d[0] : -12345;
  };
  EXPECT_EQ(add(kMax, kMax, 1), kMax);
  EXPECT_EQ(add(kMax, kMax, 2), kMax);           // 2^64 - 2 halved fits
  EXPECT_EQ(add(kMax, kMax, 0.5), kMax);
  EXPECT_EQ(add(kMin, kMin, 2), kMin);           // a magnitude of 2^64, still exact
  EXPECT_EQ(add(kMin, kMin, ldexp(1.0, 63)), -2);
  EXPECT_EQ(add(kMin, kMin, ldexp(1.0, 64)), -1);
  EXPECT_EQ(add(kMin, kMin, ldexp(1.0, 65)), 0);
  EXPECT_EQ(add(1, 2, 2), 2);                    // 1.5 and 2.5 both go to 2
  EXPECT_EQ(add(2, 3, 2), 2);
  EXPECT_EQ(add(-1, -2, 2), -2);
  EXPECT_EQ(add(0, kMin / 2 - 1, ldexp(1.0, -1)), kMin);

  auto addc = [&](int64_t a, int64_t v, int32_t mode, double scale) {
    return ZIVKS_AddC_64s_S(&a, v, d, 1, mode, scale) == 0 ? d[0] : -12345;
  };
  const int64_t pos[] = {2, 2, 3, 3}, neg[] = {-2, -2, -2, -2};  // 2.5 and -2.5
  for (int j = 0; j < 4; ++j) {
    const int32_t mode = j < 3 ? j : 7;
    EXPECT_EQ(addc(2, 3, mode, 2), pos[j]) << mode;
    EXPECT_EQ(addc(-2, -3, mode, 2), neg[j]) << mode;
    EXPECT_EQ(addc(kMin, 0, mode, ldexp(1.0, 64)), 0) << mode;  // -0.5 at s = 64
  }

  // AddC_64u keeps the carry of x = 2^64 and 2^64 + 1 at s = 65; above, all is 0.
  uint64_t u[2] = {1, 2}, r[2];
  const uint64_t want[3][2] = {{0, 0}, {0, 1}, {1, 1}};
  for (int32_t mode : {0, 1, 2}) {
    ASSERT_EQ(ZIVKS_AddC_64u_S(u, UINT64_MAX, r, 2, mode, ldexp(1.0, 65)), 0);
    EXPECT_EQ(r[0], want[mode][0]) << mode;
    EXPECT_EQ(r[1], want[mode][1]) << mode;
    ASSERT_EQ(ZIVKS_AddC_64u_S(u, UINT64_MAX, r, 2, mode, ldexp(1.0, 66)), 0);
    EXPECT_EQ(r[0] | r[1], 0u) << mode;
  }
  uint64_t top = UINT64_MAX;
  ASSERT_EQ(ZIVKS_AddC_64u_S(&top, UINT64_MAX, r, 1, 1, 2), 0);
  EXPECT_EQ(r[0], UINT64_MAX);
}

// val = -2^63 with rndMode 2: the pair in the block rounds -2^62 + 0.5 down, the odd
// element in the tail up; rndMode 1 takes the even one everywhere.
TEST(Scaled64, MostNegativeConstantTies) {
  const int64_t src[3] = {1, 1, 1};
  int64_t d[3];
  ASSERT_EQ(ZIVKS_AddC_64s_S(src, INT64_MIN, d, 3, 2, 2), 0);
  EXPECT_EQ(d[0], -(int64_t{1} << 62));
  EXPECT_EQ(d[1], -(int64_t{1} << 62));
  EXPECT_EQ(d[2], -(int64_t{1} << 62) + 1);
  ASSERT_EQ(ZIVKS_AddC_64s_S(src, INT64_MIN, d, 3, 1, 2), 0);
  for (int64_t v : d) EXPECT_EQ(v, -(int64_t{1} << 62));
}

}  // namespace
