// Linear ramps: every member against a step-by-step model of its blocks and its last
// elements in the member's own precisions, the 64f stores past the end, the statuses.
#include <math.h>

#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "support/zt.h"

namespace {

// x rounded once to half precision, held in a float. The compiler's own half-precision
// type is the oracle of the 8u blocks; where it has none, 11 significant bits down to a
// quantum of 2^-24, a tie to even, and an infinity from 65520 on.
float half(double x) {
#if defined(__aarch64__)
  return static_cast<float>(static_cast<__fp16>(x));
#elif defined(__FLT16_MANT_DIG__)
  return static_cast<float>(static_cast<_Float16>(x));
#else
  if (!(fabs(x) < 65520)) return static_cast<float>(x != x ? x : copysign(HUGE_VAL, x));
  int e;
  frexp(x, &e);
  const double q = ldexp(1.0, std::max(e - 11, -24));
  return static_cast<float>(std::rint(x / q) * q);
#endif
}

// A: the type of offset and slope. The blocks cover len rounded down to `round` (0: to
// `block`), `block` elements an iteration.
template <class T, class A>
struct Member {
  std::string name;
  ZIVKStatus (*fn)(T*, int32_t, A, A), (*twin)(T*, int32_t, A, A);
  int block, round = 0;
  bool half_blocks = false;
};

// A block element: the float lanes as they are; else to nearest, a tie to even, clamped
// to T. A NaN gives 0.
template <class T, class W>
T block_value(W v) {
  if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(v);
  } else {
    if (v != v) return 0;
    const W r = std::rint(v);
    if (r >= static_cast<W>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
    if (r <= static_cast<W>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
    return static_cast<T>(r);
  }
}

// A last element: clamped on the unrounded x, then split by modf; a tie with an even
// integer part keeps it, anything else adds one half away from zero in float64 (a sum
// that may round) and truncates.
template <class T, class A>
T tail_value(A x) {
  if constexpr (std::is_floating_point_v<T>) {
    return x;
  } else {
    if (x >= static_cast<A>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
    if (x <= static_cast<A>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
    if (x != x) return 0;
    double ip;
    const double frac = modf(static_cast<double>(x), &ip);
    if (fabs(frac) == 0.5 && fmod(ip, 2.0) == 0.0) return static_cast<T>(ip);
    return static_cast<T>(static_cast<int64_t>(x < 0 ? double(x) - 0.5 : double(x) + 0.5));
  }
}

// The ramp as the member makes it, with every element the call stores (64f: up to two
// past len).
template <class T, class A>
std::vector<T> model(const Member<T, A>& m, int len, A offset, A slope) {
  const int B = m.block, n = len / (m.round ? m.round : B) * (m.round ? m.round : B);
  std::vector<T> out(std::max(len, (n + B - 1) / B * B));
  if (n > 0) {
    std::vector<A> acc(B);
    A step;
    if (m.half_blocks) {
      // Offset and slope in half precision; each seed is exact in float64 and rounds once.
      const float off = half(offset), sl = half(slope);
      for (int k = 0; k < B; ++k) acc[k] = half(double(k - B) * sl + off);
      step = half(static_cast<float>(B) * slope);  // made in float32 from the argument
    } else {
      for (int k = 0; k < B; ++k) acc[k] = std::fma(static_cast<A>(k - B), slope, offset);
      step = static_cast<A>(B) * slope;
    }
    for (int i = 0; i < n; i += B) {
      for (int k = 0; k < B; ++k) {
        acc[k] = m.half_blocks ? half(double(acc[k]) + double(step)) : acc[k] + step;
        out[i + k] = block_value<T>(acc[k]);
      }
    }
  }
  A x = n > 0 ? std::fma(static_cast<A>(n - 1), slope, offset) : std::fma(slope, A(-1), offset);
  for (int i = n; i < len; ++i) {
    x = x + slope;
    out[i] = tail_value<T>(x);
  }
  return out;
}

// Offsets and slopes of many kinds: whole and fractional, ties, slopes that stall the
// half-precision blocks, saturating and overflowing ramps, infinities and NaN; then
// random pairs, ordinary and special.
template <class A>
std::vector<std::pair<A, A>> ramps() {
  const A inf = std::numeric_limits<A>::infinity(), nan = std::numeric_limits<A>::quiet_NaN();
  std::vector<std::pair<A, A>> v = {
      {0, 1},      {0.5, 1},     {-0.5, 1},     {2.5, 0},        {-2.5, -1},     {10, 0.5},      {0.25, 0.25},
      {130, 0.05}, {130, 0.03},  {130, 0.003},  {200, -0.001},   {250, 1},       {254.5, 0},     {-1, 0.1},
      {-32768, -1}, {32760, 0.5}, {65530, 1},   {65519, 1},      {0.1, 0.7},     {-100, 3.3},    {1e-3, 1e-5},
      {1e6, -1e5},  {4294967290.0f, 0.75},      {2147483640.0f, 1}, {-2147483640.0f, -0.5}, {1e30f, 1e29f},
      {3e38f, 3e38f}, {inf, 1},  {-inf, 1},     {0, inf},        {1, -inf},      {inf, -inf},    {nan, 1},
      {1, nan},    {A(0.49999997), 0}, {A(-1.5), 1}};
  if constexpr (sizeof(A) == 8)
    for (A o : {0.49999999999999994, -0.49999999999999994, 4294967294.5, 2147483646.5, -2147483647.5})
      v.push_back({o, 0}), v.push_back({o, 1e-17});
  zt::Rng rng(sizeof(A));
  for (int i = 0; i < 60; ++i) {
    const A scale = std::ldexp(A(1), static_cast<int>(rng() % 40) - 8);
    if (i % 3 == 0) v.push_back({zt::special_float<A>(rng), zt::special_float<A>(rng)});
    else v.push_back({A(zt::special_float<A>(rng) * scale / 64), A(std::ldexp(A(rng() % 4096), -10) - 2) * scale / 64});
  }
  return v;
}

template <class T, class A>
void follows_model(const Member<T, A>& m) {
  std::vector<int> lengths;
  for (int n = 1; n <= 80; ++n) lengths.push_back(n);
  for (int n : {255, 256, 257, 1027}) lengths.push_back(n);
  // NaN payloads are the vector unit's business: any NaN stands for a NaN here, and the
  // twin must match bit for bit.
  auto same = [](const T& x, const T& y) { return (x != x && y != y) || zt::same_bits(x, y); };
  for (const auto& [offset, slope] : ramps<A>()) {
    for (int len : lengths) {
      SCOPED_TRACE(m.name + " offset " + ::testing::PrintToString(offset) + " slope " +
                   ::testing::PrintToString(slope) + " len " + std::to_string(len));
      const std::vector<T> want = model(m, len, offset, slope);
      zt::Guarded<T> d(want.size()), t(want.size());
      ASSERT_EQ(m.fn(d.data(), len, offset, slope), 0);
      ASSERT_TRUE(d.guards_intact()) << "stored past " << want.size();
      for (size_t i = 0; i < want.size(); ++i)
        ASSERT_TRUE(same(d[i], want[i])) << "at " << i << ": got " << +d[i] << ", want " << +want[i];
      if (!m.twin) continue;
      ASSERT_EQ(m.twin(t.data(), len, offset, slope), 0);
      ASSERT_EQ(zt::first_difference(t.data(), d.data(), want.size()), -1) << "generic backend";
      ASSERT_TRUE(t.guards_intact()) << "generic backend";
    }
  }
}

#define ZT_SLOPE(T, type, A, ...) \
  Member<type, A> { #T, ZIVKS_VectorSlope_##T, ZT_TWIN(ZIVKS_VectorSlope_##T), __VA_ARGS__ }

TEST(VectorSlope, EveryMemberFollowsTheAccumulatedRamp) {
  follows_model(ZT_SLOPE(8u, uint8_t, float, 16, 0, true));
  follows_model(ZT_SLOPE(16u, uint16_t, float, 8));
  follows_model(ZT_SLOPE(16s, int16_t, float, 8));
  follows_model(ZT_SLOPE(32u, uint32_t, double, 4));
  follows_model(ZT_SLOPE(32s, int32_t, double, 4));
  follows_model(ZT_SLOPE(32f, float, float, 8));
  follows_model(ZT_SLOPE(64f, double, double, 4, 2));
}

// Ramps read off by hand: ties to even, saturation in block and tail, the stalled
// half-precision block and the tail that jumps back onto the ramp, and a float64 sum
// with one half that rounds up in the tail only.
TEST(VectorSlope, RampsReadOffByHand) {
  uint16_t u16[20];
  ASSERT_EQ(ZIVKS_VectorSlope_16u(u16, 20, 0.5f, 1.0f), 0);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(u16[i], (i + 1) / 2 * 2) << i;
  uint8_t u8[401];
  ASSERT_EQ(ZIVKS_VectorSlope_8u(u8, 20, 250.0f, 1.0f), 0);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(u8[i], std::min(250 + i, 255)) << i;
  ASSERT_EQ(ZIVKS_VectorSlope_8u(u8, 401, 130.0f, 0.003f), 0);
  for (int i = 0; i < 400; ++i) ASSERT_EQ(u8[i], 130) << i;
  EXPECT_EQ(u8[400], 131);
  int32_t s32[5];
  for (double sign : {1.0, -1.0}) {
    ASSERT_EQ(ZIVKS_VectorSlope_32s(s32, 5, sign * 0.49999999999999994, 0.0), 0);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(s32[i], 0) << i;
    EXPECT_EQ(s32[4], static_cast<int32_t>(sign));
  }
}

// 64f stores the ramp up to len rounded up to a multiple of 4 when len is 2 or 3 above a
// multiple of 4 (its last block of 4 starts below n, len rounded down to 2), and nothing
// beyond. (That the others store nothing past len, the sweep above checks.)
TEST(VectorSlope, Stores64fPastTheEndUpToAMultipleOf4) {
  for (int len = 1; len <= 40; ++len) {
    const int extent = len % 4 >= 2 ? (len + 3) / 4 * 4 : len;
    zt::Guarded<double> d(extent);
    ASSERT_EQ(ZIVKS_VectorSlope_64f(d.data(), len, 3.0, 2.0), 0);
    ASSERT_TRUE(d.guards_intact()) << len;
    for (int i = 0; i < extent; ++i) ASSERT_EQ(d[i], 3.0 + 2 * i) << len << " at " << i;
  }
}

template <class T, class A>
void refuses(ZIVKStatus (*fn)(T*, int32_t, A, A)) {
  zt::Guarded<T> d(8);
  for (int32_t len : {8, 0, -1}) EXPECT_EQ(fn(nullptr, len, 1, 1), ZIVK_STS_NULL_PTR_ERR) << len;
  for (int32_t len : {0, -1, INT32_MIN}) EXPECT_EQ(fn(d.data(), len, 1, 1), ZIVK_STS_SIZE_ERR) << len;
  EXPECT_TRUE(d.untouched());
}

TEST(VectorSlope, StatusesAndNothingWrittenOnError) {
  refuses(ZIVKS_VectorSlope_8u), refuses(ZIVKS_VectorSlope_16u), refuses(ZIVKS_VectorSlope_16s);
  refuses(ZIVKS_VectorSlope_32u), refuses(ZIVKS_VectorSlope_32s);
  refuses(ZIVKS_VectorSlope_32f), refuses(ZIVKS_VectorSlope_64f);
}

}  // namespace
