// Scaled saturating Add and Sub: the scale rule, ties, saturation, the path each member
// takes, and the block-versus-tail differences that are kept.
#include <math.h>

#include <limits>

#include "support/zt.h"

namespace {

// e of a scale, from the logarithm truncated toward zero (independent of frexp).
int exponent_of(double scale) {
  const int lg = ilogb(scale);
  const bool power = scale == ldexp(1.0, lg);
  return scale >= 1 || power ? -lg : -(lg + 1);
}

// Powers of two around every path switch (s = 0, the half-precision range, the 8- and
// 16-bit shifts, k = 128 and 256, the float32 limits) and some scales that are not powers.
std::vector<double> test_scales() {
  std::vector<double> v;
  for (int j : {-1074, -270, -257, -256, -255, -250, -248, -160, -150, -149, -140, -130, -129, -128, -127, -126, -64, -33, -32, -31, -25, -24, -17,
                -16, -15, -10, -9, -8, -7, -2, -1, 0, 1, 2, 7, 8, 9, 10, 15, 16, 17, 24, 25, 31, 32, 33,
                64, 126, 127, 128, 129, 140, 149, 150, 160, 1000, 1023})
    v.push_back(ldexp(1.0, j));
  for (double s : {3.0, 0.3, 0.75, 1.5, 1.999, 5.0, 0.2, 0.6, 7e-3, 2e-39})
    v.push_back(s);
  return v;
}

// Up to several groups of the widest registers (4 blocks of 64 elements) and a tail.
std::vector<int> lengths() {
  return {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 32, 33, 63, 64, 65, 70, 127, 128, 131, 200, 300, 581};
}

enum class Kind { kSigned, kAdd8u, kAdd16u, kSub8u, kSub16u };

template <class T>
struct Member {
  const char* name;
  Kind kind;
  bool sub;
  int block;  // elements per block on the shifting or narrowing paths
  ZIVKStatus (*fn)(const T*, const T*, T*, int32_t, double);
  ZIVKStatus (*in_place)(const T*, T*, int32_t, double);
  ZIVKStatus (*twin)(const T*, const T*, T*, int32_t, double);
};

template <class T>
T clamp_to(long double r) {
  if (r >= static_cast<long double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
  if (r <= static_cast<long double>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
  return static_cast<T>(r);
}

// Element i of a call of length len: round(x * 2^e) to nearest even and saturate, with
// the block-only behaviours modelled: the shift by the low byte of k from k = 128 on,
// and the two-step narrowing of Sub_8u.
template <class T>
T expected(const Member<T>& m, T a, T b, int e, int i, int len) {
  const int64_t x = m.sub ? int64_t{b} - a : int64_t{a} + b;
  const bool in_block = i < (len & ~(m.block - 1));
  // Where e is beyond float32, M is 0 or infinite; x * M keeps the sign of x, or is NaN.
  const long double exact = nearbyintl(ldexpl(static_cast<long double>(x), std::min(e, 4000)));
  if (in_block && m.kind == Kind::kSub8u) {
    const long double r = x <= 0 ? 0 : std::min(exact, 4294967295.0L);
    const uint32_t r32 = static_cast<uint32_t>(r);
    const uint32_t n16 = i % 8 < 4 ? std::min<uint32_t>(r32, 65535) : (r32 & 0xFFFF);
    return static_cast<T>(std::min<uint32_t>(n16, 255));
  }
  if (in_block && e >= 128 && (m.kind == Kind::kAdd8u || m.kind == Kind::kAdd16u || m.kind == Kind::kSub16u)) {
    const uint64_t lane_max = m.kind == Kind::kAdd16u ? 0xFFFFFFFFu : 0xFFFFu;
    const int bits = m.kind == Kind::kAdd16u ? 32 : 16;
    const uint64_t u = x < 0 ? 0 : static_cast<uint64_t>(x);
    const int n = static_cast<int8_t>(e & 0xFF);
    uint64_t y;
    if (n >= 0) y = u == 0 ? 0 : n >= bits ? lane_max : std::min(u << n, lane_max);
    else y = -n > bits + 1 ? 0 : (u + (uint64_t{1} << (-n - 1))) >> -n;
    return clamp_to<T>(static_cast<long double>(y));
  }
  return clamp_to<T>(exact);
}

template <class T>
void check_member(const Member<T>& m) {
  zt::Rng rng(99);
  for (double scale : test_scales()) {
    const int e = exponent_of(scale);
    for (int len : lengths()) {
      const size_t mis = rng() % 2 ? sizeof(T) : 0;
      zt::Guarded<T> a(len, mis), b(len), d(len, mis), ip(len), t(len);
      zt::fill_random(a.data(), len, rng);
      zt::fill_random(b.data(), len, rng);
      // Small values too, where ties and the rounding of small scales show.
      for (int i = 0; i < len; ++i)
        if (rng() % 3 == 0) a[i] = static_cast<T>(rng() % 9), b[i] = static_cast<T>(rng() % 9);
      ASSERT_EQ(m.fn(a.data(), b.data(), d.data(), len, scale), 0);
      ASSERT_TRUE(d.guards_intact()) << m.name;
      for (int i = 0; i < len; ++i)
        ASSERT_EQ(+d[i], +expected(m, a[i], b[i], e, i, len))
            << m.name << " scale " << scale << " len " << len << " at " << i << ": " << +a[i] << ", " << +b[i];
      memcpy(ip.data(), b.data(), len * sizeof(T));
      ASSERT_EQ(m.in_place(a.data(), ip.data(), len, scale), 0);
      ASSERT_EQ(zt::first_difference(ip.data(), d.data(), len), -1) << m.name << " in place, scale " << scale;
      EXPECT_TRUE(ip.guards_intact());
      if (m.twin) {
        ASSERT_EQ(m.twin(a.data(), b.data(), t.data(), len, scale), 0);
        ASSERT_EQ(zt::first_difference(t.data(), d.data(), len), -1)
            << m.name << " generic backend, scale " << scale << " len " << len;
      }
    }
  }
}


TEST(ScaledAddSub, EveryMemberAgainstTheOracle) {
  {
    using T = uint8_t;
    check_member(Member<T>{"Add_8u_S", Kind::kAdd8u, false, 8, ZIVKS_Add_8u_S, ZIVKS_Add_8u_IS, ZT_TWIN(ZIVKS_Add_8u_S)});
    check_member(Member<T>{"Sub_8u_S", Kind::kSub8u, true, 64, ZIVKS_Sub_8u_S, ZIVKS_Sub_8u_IS, ZT_TWIN(ZIVKS_Sub_8u_S)});
  }
  {
    using T = uint16_t;
    check_member(Member<T>{"Add_16u_S", Kind::kAdd16u, false, 4, ZIVKS_Add_16u_S, ZIVKS_Add_16u_IS, ZT_TWIN(ZIVKS_Add_16u_S)});
    check_member(Member<T>{"Sub_16u_S", Kind::kSub16u, true, 32, ZIVKS_Sub_16u_S, ZIVKS_Sub_16u_IS, ZT_TWIN(ZIVKS_Sub_16u_S)});
  }
  check_member(Member<int16_t>{"Add_16s_S", Kind::kSigned, false, 4, ZIVKS_Add_16s_S, ZIVKS_Add_16s_IS, ZT_TWIN(ZIVKS_Add_16s_S)});
  check_member(Member<int16_t>{"Sub_16s_S", Kind::kSigned, true, 4, ZIVKS_Sub_16s_S, ZIVKS_Sub_16s_IS, ZT_TWIN(ZIVKS_Sub_16s_S)});
  check_member(Member<int32_t>{"Add_32s_S", Kind::kSigned, false, 2, ZIVKS_Add_32s_S, ZIVKS_Add_32s_IS, ZT_TWIN(ZIVKS_Add_32s_S)});
  check_member(Member<int32_t>{"Sub_32s_S", Kind::kSigned, true, 2, ZIVKS_Sub_32s_S, ZIVKS_Sub_32s_IS, ZT_TWIN(ZIVKS_Sub_32s_S)});
}

// The scale rule: the logarithm of 1 / scale truncated toward zero, never rounded.
TEST(ScaledAddSub, ScaleTableTiesAndBounds) {
  const struct { double scale; int e; } table[] = {
      {8, -3}, {7, -2}, {5, -2}, {4, -2}, {3, -1}, {2, -1}, {1.999, 0}, {1.5, 0}, {1, 0},
      {0.75, 0}, {0.6, 0}, {0.5, 1}, {0.3, 1}, {0.25, 2}, {0.2, 2}, {0.125, 3}};
  for (const auto& row : table) {
    // 1024 times M shows e directly; 5 elements put one in a block and one in the tail.
    int16_t a[5] = {512, 512, 512, 512, 512}, d[5];
    ASSERT_EQ(ZIVKS_Add_16s_S(a, a, d, 5, row.scale), 0);
    EXPECT_EQ(d[0], clamp_to<int16_t>(ldexp(1024.0, row.e))) << row.scale;
    EXPECT_EQ(d[4], d[0]) << row.scale;
  }
  // Ties to even, in a block (index 0) and in the tail (index 4).
  auto add16 = [](int16_t x, int16_t y, double scale) {
    int16_t a[5] = {x, x, x, x, x}, b[5] = {y, y, y, y, y}, d[5];
    EXPECT_EQ(ZIVKS_Add_16s_S(a, b, d, 5, scale), 0);
    EXPECT_EQ(d[0], d[4]);
    return d[0];
  };
  EXPECT_EQ(add16(1, 2, 2), 2);
  EXPECT_EQ(add16(2, 3, 2), 2);
  EXPECT_EQ(add16(-1, -2, 2), -2);
  EXPECT_EQ(add16(-2, -3, 2), -2);
  EXPECT_EQ(add16(20000, 20000, 0.5), 32767);
  uint8_t u[9] = {200, 1, 3, 100, 20, 0, 0, 0, 200}, v[9] = {100, 1, 3, 100, 30, 0, 0, 0, 100}, r[9];
  ASSERT_EQ(ZIVKS_Add_8u_S(u, v, r, 9, 1), 0);
  EXPECT_EQ(r[0], 255);
  EXPECT_EQ(r[8], 255);
  ASSERT_EQ(ZIVKS_Add_8u_S(u, v, r, 9, 4), 0);
  EXPECT_EQ(r[1], 0);  // 0.5 ties to 0
  EXPECT_EQ(r[2], 2);  // 1.5 ties to 2
  ASSERT_EQ(ZIVKS_Add_8u_S(u, v, r, 9, 0.5), 0);
  EXPECT_EQ(r[3], 255);
  EXPECT_EQ(r[4], 100);
  int16_t lo[1] = {-32768}, hi[1] = {32767}, o[1];
  ASSERT_EQ(ZIVKS_Sub_16s_S(lo, hi, o, 1, 2), 0);
  EXPECT_EQ(o[0], 32767);  // 32767.5 clamps before rounding
  int32_t p[3] = {INT32_MAX, INT32_MAX, INT32_MAX}, q[3] = {INT32_MAX, INT32_MAX - 1, INT32_MAX - 1}, w[3];
  ASSERT_EQ(ZIVKS_Add_32s_S(p, q, w, 3, 2), 0);
  EXPECT_EQ(w[0], INT32_MAX);
  EXPECT_EQ(w[1], INT32_MAX - 1);  // 2147483646.5 ties to even
  EXPECT_EQ(w[2], INT32_MAX - 1);
  uint8_t s1[1] = {1}, s2[1] = {5}, sd[1];
  ASSERT_EQ(ZIVKS_Sub_8u_S(s1, s2, sd, 1, 1), 0);
  EXPECT_EQ(sd[0], 4);
  ASSERT_EQ(ZIVKS_Sub_8u_S(s2, s1, sd, 1, 1), 0);
  EXPECT_EQ(sd[0], 0);
  ASSERT_EQ(ZIVKS_Sub_8u_IS(s1, s2, 1, 1), 0);
  EXPECT_EQ(s2[0], 4);  // srcDst - src
}

// The two-step narrowing of Sub_8u: with M = 512 a difference of 128 gives r = 65536,
// which saturates in elements 0 to 3 of each group of 8 and wraps to 0 in elements 4 to
// 7, in every block however many go at once; the tail (elements 256 to 261) has no such
// step.
TEST(ScaledAddSub, Sub8uNarrowsInTwoSteps) {
  uint8_t a[262] = {}, b[262], d[262];
  memset(b, 128, sizeof b);
  ASSERT_EQ(ZIVKS_Sub_8u_S(a, b, d, 262, 0.001953125), 0);
  for (int i = 0; i < 256; ++i) EXPECT_EQ(d[i], i % 8 < 4 ? 255 : 0) << i;
  for (int i = 256; i < 262; ++i) EXPECT_EQ(d[i], 255) << i;
}

// From k = 128 the block's shift count is the low byte of k read as signed: k = 129
// shifts right by 127 (giving 0) in whole blocks, while the tail's infinite M saturates.
TEST(ScaledAddSub, LeftShiftCountWrapsInBlocksOnly) {
  const double scale = ldexp(1.0, -129);
  uint8_t a[9] = {1, 1, 1, 1, 1, 1, 1, 1, 1}, d[9];
  ASSERT_EQ(ZIVKS_Add_8u_S(a, a, d, 9, scale), 0);
  EXPECT_EQ(d[0], 0);
  EXPECT_EQ(d[8], 255);
  uint16_t x[5] = {3, 3, 3, 3, 3}, y[5] = {0, 0, 0, 0, 0}, z[5];
  // k = 255 shifts right by one, rounding half up: 3 / 2 gives 2.
  ASSERT_EQ(ZIVKS_Add_16u_S(x, y, z, 5, ldexp(1.0, -255)), 0);
  EXPECT_EQ(z[0], 2);
  EXPECT_EQ(z[4], 65535);
}

TEST(ScaledAddSub, StatusesInOrderAndNothingWritten) {
  zt::Guarded<int16_t> a(4), d(4);
  for (double bad : {0.0, -0.0, -1.0, -HUGE_VAL, HUGE_VAL, double(NAN)}) {
    EXPECT_EQ(ZIVKS_Add_16s_S(a.data(), a.data(), d.data(), 4, bad), ZIVK_STS_SCALE_ERR) << bad;
    EXPECT_EQ(ZIVKS_Sub_16s_IS(a.data(), d.data(), 4, bad), ZIVK_STS_SCALE_ERR) << bad;
    EXPECT_EQ(ZIVKS_Add_16s_S(a.data(), a.data(), d.data(), 0, bad), ZIVK_STS_SIZE_ERR);
    EXPECT_EQ(ZIVKS_Add_16s_S(a.data(), nullptr, d.data(), 0, bad), ZIVK_STS_NULL_PTR_ERR);
  }
  uint8_t u[4] = {};
  uint16_t w[4] = {};
  EXPECT_EQ(ZIVKS_Sub_8u_IS(u, nullptr, 4, 1), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_Sub_16u_IS(w, w, -1, 1), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(ZIVKS_Add_16u_S(w, w, w, 4, 0), ZIVK_STS_SCALE_ERR);
  EXPECT_EQ(ZIVKS_Add_8u_S(u, u, u, 4, NAN), ZIVK_STS_SCALE_ERR);
  // The smallest and largest finite scales are accepted.
  EXPECT_EQ(ZIVKS_Add_16u_S(w, w, w, 4, 4.9e-324), 0);
  EXPECT_EQ(ZIVKS_Sub_16u_S(w, w, w, 4, 1.7e308), 0);
  EXPECT_TRUE(d.untouched());
}

}  // namespace
