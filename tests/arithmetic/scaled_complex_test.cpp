// Scaled complex Add, Sub, AddC, SubC, SubCRev on 16sc and 32sc: each part by itself
// r = saturate(round(x * 2^e)), x exact, with the shift-count wrap of the blocks that
// shift left.
#include <math.h>

#include <limits>
#include <ostream>

#include "support/sweep.h"

static std::ostream& operator<<(std::ostream& o, const ZIVK16sc& c) { return o << "(" << c.re << ", " << c.im << ")"; }
static std::ostream& operator<<(std::ostream& o, const ZIVK32sc& c) { return o << "(" << c.re << ", " << c.im << ")"; }

namespace {

template <class T>
T clamp_to(long double r) {
  if (r >= static_cast<long double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
  if (r <= static_cast<long double>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
  return static_cast<T>(r);
}

enum class Op { kAdd, kSub, kAddC, kSubC, kSubCRev };

// From k = -e = 128 on, a left shift takes its count from the low byte of k read as
// signed, so it shifts right by 256 - k instead (and wraps again past 255).
enum class Wrap { kNone, kHalfUp, kTruncate };

struct Shape {
  Op op;
  Wrap wrap;
  int block;            // complex elements per block of the shifting path
  bool saturate_first;  // the shift works on the sum already saturated to the part
  bool tail_shifts;     // the tail shifts as the blocks do (else its M saturates)
};

template <class E>
struct Arg {
  double scale;
  E val;
};
template <class E>
std::ostream& operator<<(std::ostream& o, const Arg<E>& p) { return o << "scale " << p.scale << " val " << p.val; }

template <class P>
P part(const Shape& m, int64_t x, int e, bool in_block) {
  if (m.wrap != Wrap::kNone && e >= 128 && (in_block || m.tail_shifts)) {
    const int count = static_cast<int8_t>(e & 0xFF);
    const long double v = ldexpl(static_cast<long double>(m.saturate_first ? clamp_to<P>(x) : x), count);
    return clamp_to<P>(m.wrap == Wrap::kHalfUp ? floorl(v + 0.5L) : floorl(v));
  }
  // 16-bit parts multiply in float32, 32-bit parts in float64; M is narrowed to that
  // type, so it is infinite (or 0) where 2^e does not fit, and 0 times it gives 0.
  using F = std::conditional_t<sizeof(P) == 2, float, double>;
  const F p = static_cast<F>(x) * static_cast<F>(ldexp(1.0, e));
  return isnan(p) ? 0 : clamp_to<P>(nearbyintl(p));
}

template <class E>
E rule(const Shape& m, E a, E b, const Arg<E>& p, int i, int n) {
  using P = zt::part_of<E>;
  const int e = zt::scale_exponent(p.scale);
  const bool in_block = i < (n & ~(m.block - 1));
  const int64_t pa[2] = {a.re, a.im}, pb[2] = {b.re, b.im}, pv[2] = {p.val.re, p.val.im};
  P r[2];
  for (int j = 0; j < 2; ++j) {
    const int64_t x = m.op == Op::kAdd    ? pa[j] + pb[j]
                      : m.op == Op::kSub  ? pb[j] - pa[j]
                      : m.op == Op::kAddC ? pa[j] + pv[j]
                      : m.op == Op::kSubC ? pa[j] - pv[j]
                                          : pv[j] - pa[j];
    r[j] = part<P>(m, x, e, in_block);
  }
  return E{r[0], r[1]};
}

template <class E>
using Call = typename zt::Member<E, E, Arg<E>>::Call;

template <class E>
void check(const char* name, Shape shape, Call<E> call, Call<E> in_place) {
  using P = zt::part_of<E>;
  constexpr P lo = std::numeric_limits<P>::min(), hi = std::numeric_limits<P>::max();
  zt::Member<E, E, Arg<E>> m;
  m.name = name;
  m.sources = shape.op <= Op::kSub ? 2 : 1;
  m.call = call;
  m.in_place = in_place;
  m.rule = zt::each<E, E, Arg<E>>([shape](E a, E b, Arg<E> p, int i, int n) { return rule(shape, a, b, p, i, n); });
  // Every scale once, each with another constant: none, small, the bounds, any. 2^-511
  // wraps the shift count a second time, to a right shift by one.
  const std::vector<E> vals = {E{0, 0}, E{1, -1}, E{-3, 2}, E{hi, lo}, E{lo, hi}, zt::samples<E>(1, 5)[0]};
  std::vector<double> scales = zt::test_scales();
  scales.push_back(ldexp(1.0, -511));
  m.params.clear();
  for (double s : scales) m.params.push_back({s, vals[m.params.size() % vals.size()]});
  for (double s : {0.0, -0.0, -1.0, -HUGE_VAL, HUGE_VAL, double(NAN)}) m.bad.push_back({Arg<E>{s, E{1, 1}}, ZIVK_STS_SCALE_ERR});
  // Where blocks and tail part, the rule places each element.
  m.alone = shape.wrap == Wrap::kNone || shape.tail_shifts;
  // Any bits, often small parts (ties at small scales) or the bounds.
  m.fill = [](E* e, size_t k, const Arg<E>&, zt::Rng& rng) {
    zt::fill_random(e, k, rng);
    P* q = reinterpret_cast<P*>(e);
    for (size_t i = 0; i < 2 * k; ++i) {
      const unsigned pick = rng() % 8;
      if (pick < 3) q[i] = static_cast<P>(static_cast<int>(rng() % 9) - 4);
      if (pick == 3) q[i] = rng() % 2 ? lo : hi;
    }
  };
  m.lengths = {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 32, 33, 63, 64, 65, 127, 131, 300};
  zt::check_member(m);
}

#define ZT_CPLX(code, E, add, sub, addc, subc, subcrev)                                                             \
  check<E>("Add_" #code, add, ZT_CALL(ZIVKS_Add_##code##_S, a, b, d, n, p.scale),                                 \
           ZT_CALL(ZIVKS_Add_##code##_IS, a, d, n, p.scale));                                                     \
  check<E>("Sub_" #code, sub, ZT_CALL(ZIVKS_Sub_##code##_S, a, b, d, n, p.scale),                                 \
           ZT_CALL(ZIVKS_Sub_##code##_IS, a, d, n, p.scale));                                                     \
  check<E>("AddC_" #code, addc, ZT_CALL(ZIVKS_AddC_##code##_S, a, p.val, d, n, p.scale),                          \
           ZT_CALL(ZIVKS_AddC_##code##_IS, p.val, d, n, p.scale));                                                \
  check<E>("SubC_" #code, subc, ZT_CALL(ZIVKS_SubC_##code##_S, a, p.val, d, n, p.scale),                          \
           ZT_CALL(ZIVKS_SubC_##code##_IS, p.val, d, n, p.scale));                                                \
  check<E>("SubCRev_" #code, subcrev, ZT_CALL(ZIVKS_SubCRev_##code##_S, a, p.val, d, n, p.scale),                 \
           ZT_CALL(ZIVKS_SubCRev_##code##_IS, p.val, d, n, p.scale))

// Blocks of the shifting paths: Add 8 (16sc) and 2 (32sc), AddC 16 and 8. Sub and the
// 16sc SubC / SubCRev always multiply; the 32sc SubC / SubCRev shift in the tail too.
TEST(ScaledComplex, EveryMemberFollowsTheRule) {
  using W = Wrap;
  ZT_CPLX(16sc, ZIVK16sc, (Shape{Op::kAdd, W::kHalfUp, 8, false, false}), (Shape{Op::kSub, W::kNone, 1, false, false}),
          (Shape{Op::kAddC, W::kTruncate, 16, true, false}), (Shape{Op::kSubC, W::kNone, 1, false, false}),
          (Shape{Op::kSubCRev, W::kNone, 1, false, false}));
  ZT_CPLX(32sc, ZIVK32sc, (Shape{Op::kAdd, W::kHalfUp, 2, false, false}), (Shape{Op::kSub, W::kNone, 1, false, false}),
          (Shape{Op::kAddC, W::kTruncate, 8, true, false}), (Shape{Op::kSubC, W::kHalfUp, 2, true, true}),
          (Shape{Op::kSubCRev, W::kHalfUp, 2, true, true}));
}

// Each part saturates and rounds by itself, the first array is the one subtracted.
TEST(ScaledComplex, Examples) {
  ZIVK16sc a16[1] = {{32767, -32768}}, b16[1] = {{1, -1}}, d16[1];
  ASSERT_EQ(ZIVKS_Add_16sc_S(a16, b16, d16, 1, 1.0), 0);
  EXPECT_EQ(d16[0].re, 32767);
  EXPECT_EQ(d16[0].im, -32768);
  const ZIVK16sc ten[1] = {{10, 10}};
  ASSERT_EQ(ZIVKS_SubC_16sc_S(ten, ZIVK16sc{1, 2}, d16, 1, 1.0), 0);
  EXPECT_EQ(d16[0].re, 9);
  EXPECT_EQ(d16[0].im, 8);
  ASSERT_EQ(ZIVKS_SubCRev_16sc_S(ten, ZIVK16sc{1, 2}, d16, 1, 1.0), 0);
  EXPECT_EQ(d16[0].re, -9);
  EXPECT_EQ(d16[0].im, -8);
  ZIVK32sc a32[1] = {{1, 1}}, b32[1] = {{4, 5}}, d32[1];
  ASSERT_EQ(ZIVKS_Sub_32sc_S(a32, b32, d32, 1, 2.0), 0);  // 1.5 ties to 2, 2 is exact
  EXPECT_EQ(d32[0].re, 2);
  EXPECT_EQ(d32[0].im, 2);
  const ZIVK32sc odd[1] = {{1, 3}};
  ASSERT_EQ(ZIVKS_AddC_32sc_S(odd, ZIVK32sc{0, 0}, d32, 1, 2.0), 0);  // 0.5 to 0, 1.5 to 2
  EXPECT_EQ(d32[0].re, 0);
  EXPECT_EQ(d32[0].im, 2);
}

// With scale 2^-255 (k = 255) the shifting blocks shift right by one: Add rounds 1.5 up
// to 2 and -1.5 up to -1, AddC truncates to 1 and -2. The Add and AddC tails saturate
// instead; the 32sc SubC / SubCRev tails shift as their blocks; the multiplying members
// saturate throughout. Every element's exact value is (3, -3).
TEST(ScaledComplex, ShiftCountWrapByExample) {
  const double scale = ldexp(1.0, -255);
  auto expect = [](const char* name, auto* d, int n, int block, long long bre, long long bim, long long tre,
                   long long tim) {
    for (int i = 0; i < n; ++i) {
      const bool in_block = i < n / block * block;
      EXPECT_EQ(d[i].re, in_block ? bre : tre) << name << " element " << i;
      EXPECT_EQ(d[i].im, in_block ? bim : tim) << name << " element " << i;
    }
  };
  ZIVK16sc s16[17], z16[17] = {}, d16[17];
  for (auto& c : s16) c = {3, -3};
  ASSERT_EQ(ZIVKS_Add_16sc_S(s16, z16, d16, 9, scale), 0);
  expect("Add_16sc", d16, 9, 8, 2, -1, 32767, -32768);
  ASSERT_EQ(ZIVKS_AddC_16sc_S(s16, ZIVK16sc{0, 0}, d16, 17, scale), 0);
  expect("AddC_16sc", d16, 17, 16, 1, -2, 32767, -32768);
  ASSERT_EQ(ZIVKS_SubC_16sc_S(s16, ZIVK16sc{0, 0}, d16, 9, scale), 0);
  expect("SubC_16sc", d16, 9, 8, 32767, -32768, 32767, -32768);
  ZIVK32sc s32[9], z32[9] = {}, d32[9];
  for (auto& c : s32) c = {3, -3};
  const long long lo = INT32_MIN, hi = INT32_MAX;
  ASSERT_EQ(ZIVKS_Add_32sc_S(s32, z32, d32, 3, scale), 0);
  expect("Add_32sc", d32, 3, 2, 2, -1, hi, lo);
  ASSERT_EQ(ZIVKS_AddC_32sc_S(s32, ZIVK32sc{0, 0}, d32, 9, scale), 0);
  expect("AddC_32sc", d32, 9, 8, 1, -2, hi, lo);
  ASSERT_EQ(ZIVKS_SubC_32sc_S(s32, ZIVK32sc{0, 0}, d32, 3, scale), 0);
  expect("SubC_32sc", d32, 3, 2, 2, -1, 2, -1);
  ASSERT_EQ(ZIVKS_SubCRev_32sc_S(z32, ZIVK32sc{3, -3}, d32, 3, scale), 0);
  expect("SubCRev_32sc", d32, 3, 2, 2, -1, 2, -1);
  ASSERT_EQ(ZIVKS_Sub_32sc_S(z32, s32, d32, 3, scale), 0);
  expect("Sub_32sc", d32, 3, 2, hi, lo, hi, lo);
  // AddC shifts the saturated sum: 32767 + 32767 is held to 32767, then halved.
  for (auto& c : s16) c = {32767, -32768};
  ASSERT_EQ(ZIVKS_AddC_16sc_S(s16, ZIVK16sc{32767, -32768}, d16, 16, scale), 0);
  expect("AddC_16sc saturated", d16, 16, 16, 16383, -16384, 0, 0);
}

}  // namespace
