// Float and complex-float Add, Sub, AddC, SubC, SubCRev.
#include <math.h>

#include "support/sweep.h"

namespace {

// One IEEE operation per part; a NaN result is the Arm one: a signalling operand first,
// quietened, the first operand before the second; then a quiet NaN operand; else the
// positive default NaN.
template <class F>
F ieee(bool subtract, F a, F b) {
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

enum class Kind { kAdd, kSub, kAddC, kSubC, kSubCRev };

// dst = a + b, b - a (the first array is the subtrahend), a + v, a - v, v - a; per part.
template <class E>
E rule(Kind k, E a, E b, E v) {
  using F = zt::part_of<E>;
  constexpr int kParts = sizeof(E) / sizeof(F);
  const F* pa = reinterpret_cast<const F*>(&a);
  const F* pb = reinterpret_cast<const F*>(k <= Kind::kSub ? &b : &v);
  E r;
  F* pr = reinterpret_cast<F*>(&r);
  for (int j = 0; j < kParts; ++j)
    pr[j] = k == Kind::kAdd || k == Kind::kAddC ? ieee(false, pa[j], pb[j])
            : k == Kind::kSubC                  ? ieee(true, pa[j], pb[j])
                                                : ieee(true, pb[j], pa[j]);
  return r;
}

template <class E>
void check(const char* name, Kind k, typename zt::Member<E, E, E>::Call call, typename zt::Member<E, E, E>::Call in_place,
           int len = 0) {
  zt::Member<E, E, E> m;
  m.name = name;
  m.sources = k <= Kind::kSub ? 2 : 1;
  m.call = call;
  m.in_place = in_place;
  m.rule = zt::each<E, E, E>([k](E a, E b, E v, int, int) { return rule(k, a, b, v); });
  m.params = zt::samples<E>(3, sizeof(E));
  // Arrays of a megabyte and more go through the loop in other register widths.
  if (len) m.lengths = {len}, m.alone = false;
  zt::check_member(m);
}

#define ZT_FLOAT(code, E, ...)                                                                                 \
  check<E>("Add_" #code, Kind::kAdd, ZT_CALL(ZIVKS_Add_##code, a, b, d, n), ZT_CALL(ZIVKS_Add_##code##_I, a, d, n), \
           ##__VA_ARGS__);                                                                                     \
  check<E>("Sub_" #code, Kind::kSub, ZT_CALL(ZIVKS_Sub_##code, a, b, d, n), ZT_CALL(ZIVKS_Sub_##code##_I, a, d, n), \
           ##__VA_ARGS__);                                                                                     \
  check<E>("AddC_" #code, Kind::kAddC, ZT_CALL(ZIVKS_AddC_##code, a, p, d, n),                               \
           ZT_CALL(ZIVKS_AddC_##code##_I, p, d, n), ##__VA_ARGS__);                                            \
  check<E>("SubC_" #code, Kind::kSubC, ZT_CALL(ZIVKS_SubC_##code, a, p, d, n),                               \
           ZT_CALL(ZIVKS_SubC_##code##_I, p, d, n), ##__VA_ARGS__);                                            \
  check<E>("SubCRev_" #code, Kind::kSubCRev, ZT_CALL(ZIVKS_SubCRev_##code, a, p, d, n),                      \
           ZT_CALL(ZIVKS_SubCRev_##code##_I, p, d, n), ##__VA_ARGS__)

TEST(FloatAddSub, EveryMemberFollowsTheRule) {
  ZT_FLOAT(32f, float);
  ZT_FLOAT(64f, double);
  ZT_FLOAT(32fc, ZIVK32fc);
  ZT_FLOAT(64fc, ZIVK64fc);
}

TEST(FloatAddSub, LongArrays) {
  ZT_FLOAT(32f, float, (1 << 18) + 3);
  ZT_FLOAT(64f, double, (1 << 17) + 3);
  ZT_FLOAT(32fc, ZIVK32fc, (1 << 17) + 3);
  ZT_FLOAT(64fc, ZIVK64fc, (1 << 16) + 3);
}

// The NaN rule by example, in a block (elements 0 to 3) and in the tail (element 4).
TEST(FloatAddSub, NaNRule) {
  auto f = [](uint32_t b) { float x; memcpy(&x, &b, 4); return x; };
  const float qa = f(0x7FC00001), qb = f(0xFFC00002), sb = f(0x7F800003), inf = INFINITY;
  const float a[5] = {qa, qa, inf, 1, qa}, b[5] = {qb, sb, inf, sb, qb};
  float d[5];
  const uint32_t a_minus_b[5] = {0x7FC00001, 0x7FC00003, 0x7FC00000, 0x7FC00003, 0x7FC00001};
  const uint32_t b_plus_a[5] = {0xFFC00002, 0x7FC00003, 0x7F800000, 0x7FC00003, 0xFFC00002};
  ASSERT_EQ(ZIVKS_Sub_32f(b, a, d, 5), 0);
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(zt::same_bits(d[i], f(a_minus_b[i]))) << i;
  ASSERT_EQ(ZIVKS_Add_32f(b, a, d, 5), 0);
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(zt::same_bits(d[i], f(b_plus_a[i]))) << i;
}

}  // namespace
