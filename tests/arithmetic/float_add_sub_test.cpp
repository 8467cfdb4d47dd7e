// Float and complex-float Add, Sub, AddC, SubC, SubCRev.
#include <math.h>

#include <functional>
#include <vector>

#include "support/zt.h"

namespace {

// The oracle: one IEEE operation per part; a NaN result is the Arm one (a signalling
// operand first, quietened, the first operand before the second; then a quiet NaN
// operand; else the positive default NaN).
template <class F>
F expected(bool subtract, F a, F b) {
  using B = std::conditional_t<sizeof(F) == 4, uint32_t, uint64_t>;
  const B quiet = B{1} << (std::numeric_limits<F>::digits - 2);
  volatile F va = a, vb = b;
  F r = subtract ? va - vb : va + vb;
  if (!std::isnan(r)) return r;
  auto bits = [](F x) { B b; memcpy(&b, &x, sizeof b); return b; };
  auto make = [](B b) { F x; memcpy(&x, &b, sizeof x); return x; };
  for (F x : {a, b})
    if (std::isnan(x) && !(bits(x) & quiet)) return make(bits(x) | quiet);
  for (F x : {a, b})
    if (std::isnan(x)) return x;
  return make(sizeof(F) == 4 ? B(0x7FC00000u) : B(0x7FF8000000000000ull));
}

template <class F> F bits_to(uint64_t b) { F f; if constexpr (sizeof(F) == 4) { uint32_t x = static_cast<uint32_t>(b); memcpy(&f, &x, 4); } else memcpy(&f, &b, 8); return f; }

TEST(FloatAddSub, ArgumentOrderAndSigns) {
  float s1[1] = {1}, s2[1] = {3}, d[1];
  ASSERT_EQ(ZIVKS_Sub_32f(s1, s2, d, 1), 0);
  EXPECT_EQ(d[0], 2.0f);  // the first array is the subtrahend
  double x[1] = {3}, y[1];
  ASSERT_EQ(ZIVKS_SubCRev_64f(x, 1.0, y, 1), 0);
  EXPECT_EQ(y[0], -2.0);
  ZIVK32fc c[1] = {{5, 5}}, r[1];
  ASSERT_EQ(ZIVKS_SubC_32fc(c, ZIVK32fc{1, 2}, r, 1), 0);
  EXPECT_EQ(r[0].re, 4.0f);
  EXPECT_EQ(r[0].im, 3.0f);
  ASSERT_EQ(ZIVKS_SubCRev_32fc(c, ZIVK32fc{1, 2}, r, 1), 0);
  EXPECT_EQ(r[0].re, -4.0f);
  EXPECT_EQ(r[0].im, -3.0f);
}

// NaN selection in blocks and tails alike (length 5: one block and one tail element).
TEST(FloatAddSub, NaNRule) {
  const float qa = bits_to<float>(0x7FC00001), qb = bits_to<float>(0xFFC00002);
  const float sb = bits_to<float>(0x7F800003), inf = INFINITY;
  const float a[5] = {qa, qa, inf, 1, qa}, b[5] = {qb, sb, inf, sb, qb};
  float d[5];
  ASSERT_EQ(ZIVKS_Sub_32f(b, a, d, 5), 0);  // a - b
  const uint32_t want[5] = {0x7FC00001, 0x7FC00003, 0x7FC00000, 0x7FC00003, 0x7FC00001};
  for (int i = 0; i < 5; ++i) {
    uint32_t got;
    memcpy(&got, &d[i], 4);
    EXPECT_EQ(got, want[i]) << "element " << i;
  }
  // The same with the operands the other way round: the first NaN wins.
  ASSERT_EQ(ZIVKS_Add_32f(b, a, d, 5), 0);  // b + a
  const uint32_t want2[5] = {0xFFC00002, 0x7FC00003, 0x7F800000, 0x7FC00003, 0xFFC00002};
  for (int i = 0; i < 5; ++i) {
    uint32_t got;
    memcpy(&got, &d[i], 4);
    EXPECT_EQ(got, want2[i]) << "element " << i;
  }
}

// Every member, as a pair of out-of-place and in-place functions and the oracle's view
// of the operation: dst = first op second, where first and second are the source
// array, the second array or the constant.
enum class Kind { kAdd, kSub, kAddC, kSubC, kSubCRev };

template <class E>
struct Member {
  const char* name;
  Kind kind;
  std::function<ZIVKStatus(const E*, const E*, E, E*, int)> fn, twin, in_place;
};

#define ZT_ARRAYS(op, code)                                                                   \
  Member<E>{#op "_" #code, Kind::k##op,                                                       \
            [](const E* a, const E* b, E, E* d, int n) { return ZIVKS_##op##_##code(a, b, d, n); }, \
            [](const E* a, const E* b, E, E* d, int n) {                                      \
              auto t = ZT_TWIN(ZIVKS_##op##_##code);                                          \
              return t ? t(a, b, d, n) : -1;                                                  \
            },                                                                                \
            [](const E* a, const E*, E, E* d, int n) { return ZIVKS_##op##_##code##_I(a, d, n); }}
#define ZT_CONST(op, code)                                                                    \
  Member<E>{#op "_" #code, Kind::k##op,                                                       \
            [](const E* a, const E*, E v, E* d, int n) { return ZIVKS_##op##_##code(a, v, d, n); }, \
            [](const E* a, const E*, E v, E* d, int n) {                                      \
              auto t = ZT_TWIN(ZIVKS_##op##_##code);                                          \
              return t ? t(a, v, d, n) : -1;                                                  \
            },                                                                                \
            [](const E*, const E*, E v, E* d, int n) { return ZIVKS_##op##_##code##_I(v, d, n); }}
#define ZT_MEMBERS(code)                                                                      \
  std::vector<Member<E>> {                                                                    \
    ZT_ARRAYS(Add, code), ZT_ARRAYS(Sub, code), ZT_CONST(AddC, code), ZT_CONST(SubC, code),   \
        ZT_CONST(SubCRev, code)                                                               \
  }

template <class E> std::vector<Member<E>> members();
template <> std::vector<Member<float>> members() { using E = float; return ZT_MEMBERS(32f); }
template <> std::vector<Member<double>> members() { using E = double; return ZT_MEMBERS(64f); }
template <> std::vector<Member<ZIVK32fc>> members() { using E = ZIVK32fc; return ZT_MEMBERS(32fc); }
template <> std::vector<Member<ZIVK64fc>> members() { using E = ZIVK64fc; return ZT_MEMBERS(64fc); }

template <class E>
class FloatMembers : public ::testing::Test {};
using Types = ::testing::Types<float, double, ZIVK32fc, ZIVK64fc>;
TYPED_TEST_SUITE(FloatMembers, Types);

TYPED_TEST(FloatMembers, StatusesAndNothingWritten) {
  using E = TypeParam;
  for (const auto& m : members<E>()) {
    zt::Guarded<E> a(4), b(4), d(4);
    E v{};
    EXPECT_EQ(m.fn(nullptr, b.data(), v, d.data(), 4), ZIVK_STS_NULL_PTR_ERR) << m.name;
    EXPECT_EQ(m.fn(a.data(), b.data(), v, nullptr, 0), ZIVK_STS_NULL_PTR_ERR) << m.name;
    EXPECT_EQ(m.fn(a.data(), b.data(), v, d.data(), 0), ZIVK_STS_SIZE_ERR) << m.name;
    EXPECT_EQ(m.fn(a.data(), b.data(), v, d.data(), -3), ZIVK_STS_SIZE_ERR) << m.name;
    EXPECT_EQ(m.in_place(nullptr, nullptr, v, d.data(), 4),
              m.kind <= Kind::kSub ? ZIVK_STS_NULL_PTR_ERR : ZIVK_STS_NO_ERR) << m.name;
    d.fill_pattern();
    EXPECT_EQ(m.in_place(a.data(), b.data(), v, d.data(), -1), ZIVK_STS_SIZE_ERR) << m.name;
    EXPECT_EQ(m.in_place(a.data(), b.data(), v, nullptr, 4), ZIVK_STS_NULL_PTR_ERR) << m.name;
    EXPECT_TRUE(d.untouched()) << m.name;
  }
}

// Over random lengths, values and alignments: the oracle per part; the in-place form;
// a call of length 1 per element (block and tail agree); the generic backend; guards.
TYPED_TEST(FloatMembers, MatchesOracleEverywhere) {
  using E = TypeParam;
  using F = zt::part_of<E>;
  constexpr int kParts = sizeof(E) / sizeof(F);
  zt::Rng rng(1234);
  for (const auto& m : members<E>()) {
    for (int len : zt::test_lengths()) {
      const size_t mis = (rng() % 2) * alignof(F);
      zt::Guarded<E> a(len, mis), b(len, mis), d(len, mis), t(len), in(len, mis), one(1);
      zt::fill_random(a.data(), len, rng);
      zt::fill_random(b.data(), len, rng);
      E v;
      zt::fill_random(&v, 1, rng);
      ASSERT_EQ(m.fn(a.data(), b.data(), v, d.data(), len), 0);
      ASSERT_TRUE(d.guards_intact()) << m.name << " len " << len;
      const F* pa = reinterpret_cast<const F*>(a.data());
      const F* pb = reinterpret_cast<const F*>(b.data());
      const F* pv = reinterpret_cast<const F*>(&v);
      const F* pd = reinterpret_cast<const F*>(d.data());
      for (int i = 0; i < len * kParts; ++i) {
        F x = pa[i], y = m.kind <= Kind::kSub ? pb[i] : pv[i % kParts];
        F want = m.kind == Kind::kSub ? expected(true, y, x)
                 : m.kind == Kind::kSubCRev ? expected(true, y, x)
                                            : expected(m.kind == Kind::kSubC, x, y);
        ASSERT_TRUE(zt::same_bits(pd[i], want))
            << m.name << " len " << len << " part " << i << ": " << pd[i] << " vs " << want;
      }
      // In place: the array that is read and written is the second one (or the source
      // of a constant form).
      for (int i = 0; i < len; ++i) in[i] = m.kind <= Kind::kSub ? b[i] : a[i];
      ASSERT_EQ(m.in_place(a.data(), nullptr, v, in.data(), len), 0);
      EXPECT_EQ(zt::first_difference(in.data(), d.data(), len), -1) << m.name << " in place, len " << len;
      EXPECT_TRUE(in.guards_intact());
      for (int i = 0; i < len; i += 1 + len / 7) {
        ASSERT_EQ(m.fn(a.data() + i, b.data() + i, v, one.data(), 1), 0);
        EXPECT_TRUE(zt::same_bits(one[0], d[i])) << m.name << " element " << i << " alone";
      }
      if (m.twin(a.data(), b.data(), v, t.data(), len) != -1) {
        EXPECT_EQ(zt::first_difference(t.data(), d.data(), len), -1)
            << m.name << " generic backend, len " << len;
      }
    }
  }
}

// Arrays of a megabyte and more go through the loop in other register widths: the
// oracle per part there too, out of place and in place, with NaNs and infinities about.
TYPED_TEST(FloatMembers, LongArraysMatchTheOracle) {
  using E = TypeParam;
  using F = zt::part_of<E>;
  constexpr int kParts = sizeof(E) / sizeof(F);
  const int len = static_cast<int>((size_t{1} << 20) / sizeof(E)) + 3;
  zt::Rng rng(77);
  std::vector<E> a(len), b(len), d(len), in(len);
  zt::fill_random(a.data(), len, rng);
  zt::fill_random(b.data(), len, rng);
  for (const auto& m : members<E>()) {
    E v;
    zt::fill_random(&v, 1, rng);
    ASSERT_EQ(m.fn(a.data(), b.data(), v, d.data(), len), 0);
    const F* pa = reinterpret_cast<const F*>(a.data());
    const F* pb = reinterpret_cast<const F*>(b.data());
    const F* pv = reinterpret_cast<const F*>(&v);
    const F* pd = reinterpret_cast<const F*>(d.data());
    for (int i = 0; i < len * kParts; ++i) {
      F x = pa[i], y = m.kind <= Kind::kSub ? pb[i] : pv[i % kParts];
      F want = m.kind == Kind::kSub || m.kind == Kind::kSubCRev ? expected(true, y, x)
                                                                : expected(m.kind == Kind::kSubC, x, y);
      ASSERT_TRUE(zt::same_bits(pd[i], want)) << m.name << " part " << i;
    }
    memcpy(static_cast<void*>(in.data()), (m.kind <= Kind::kSub ? b : a).data(), len * sizeof(E));
    ASSERT_EQ(m.in_place(a.data(), nullptr, v, in.data(), len), 0);
    EXPECT_EQ(zt::first_difference(in.data(), d.data(), len), -1) << m.name << " in place";
  }
}

}  // namespace
