// MaxEvery and MinEvery.
#include "statistics/search_data.h"
#include "support/sweep.h"

namespace {

// The float rule: blocks of one vector propagate NaN (the first source's NaN first, a
// signalling one before a quiet one; the backends' agreement fixes its bits) and order
// -0 below +0; the tail takes src1 where it is at or above (at or below) src2, else src2.
template <class F>
F float_rule(bool max, bool in_block, F a, F b) {
  if (in_block) {
    if (std::isnan(a) || std::isnan(b)) return std::numeric_limits<F>::quiet_NaN();
    if (a == b) return max == std::signbit(a) ? b : a;  // +0 is the larger zero
    return (max ? a > b : a < b) ? a : b;
  }
  return (max ? a >= b : a <= b) ? a : b;
}

template <class T>
void check(const char* name, bool max, typename zt::Member<T>::Call call, typename zt::Member<T>::Call in_place) {
  for (st::Mix mix : {st::Mix::kAny, st::Mix::kTies}) {
    zt::Member<T> m;
    m.name = name;
    m.sources = 2;
    m.call = call;
    m.in_place = in_place;
    if constexpr (st::kFloat<T>) {
      m.rule = zt::each<T, T, int>([max](T a, T b, int, int i, int n) {
        return float_rule(max, i < n / (16 / int(sizeof(T))) * (16 / int(sizeof(T))), a, b);
      });
      m.same = [](const T& x, const T& y) { return bool(st::same(x, y)); };
      m.alone = false;
    } else {
      m.rule = zt::each<T, T, int>([max](T a, T b, int, int, int) { return max ? std::max(a, b) : std::min(a, b); });
      m.overlap = false;  // the out-of-place view copies b over dst
    }
    m.fill = [mix](T* p, size_t n, const int&, zt::Rng& rng) { st::fill(p, static_cast<int>(n), rng, mix); };
    if (mix == st::Mix::kAny) {
      zt::Member<T> s = m;
      if (!st::kFloat<T>) s.call = nullptr;  // the out-of-place view has no statuses of its own
      zt::check_statuses(s);
    }
    zt::check_sweep(m);
  }
}

// The integer members exist in place only: srcDst starts as a copy of b.
#define ZT_INT(op, code, T, max)                                                              \
  check<T>(#op "_" #code "_I", max,                                                           \
           [](bool t, const T* a, const T* b, int, T* d, int32_t n) -> ZIVKStatus {           \
             if (a && b && d && n > 0) memmove(d, b, n * sizeof(T));                     \
             auto f = t ? ZT_TWIN(ZIVKS_##op##_##code##_I) : &ZIVKS_##op##_##code##_I;         \
             return f ? f(a, d, n) : zt::kNoTwin;                                             \
           },                                                                                 \
           ZT_CALL(ZIVKS_##op##_##code##_I, a, d, n))
#define ZT_FLOAT(op, code, T, max) \
  check<T>(#op "_" #code, max, ZT_CALL(ZIVKS_##op##_##code, a, b, d, n), ZT_CALL(ZIVKS_##op##_##code##_I, a, d, n))

TEST(EveryExtremes, EveryMemberFollowsTheRule) {
  ZT_FLOAT(MaxEvery, 32f, float, true);
  ZT_FLOAT(MaxEvery, 64f, double, true);
  ZT_FLOAT(MinEvery, 32f, float, false);
  ZT_FLOAT(MinEvery, 64f, double, false);
  ZT_INT(MaxEvery, 16s, int16_t, true);
  ZT_INT(MaxEvery, 32s, int32_t, true);
  ZT_INT(MinEvery, 16s, int16_t, false);
  ZT_INT(MinEvery, 32s, int32_t, false);
}

TEST(EveryExtremes, NaNPayloadAndTailRule) {
  float a[5] = {NAN, 1, 2, 3, NAN}, b[5] = {0, 1, 2, 3, 4}, d[5];
  uint32_t nan_bits = 0x7F800001;  // signalling, in the second source
  memcpy(&b[0], &nan_bits, 4);
  ASSERT_EQ(ZIVKS_MaxEvery_32f(a, b, d, 5), 0);
  uint32_t got;
  memcpy(&got, &d[0], 4);
  EXPECT_EQ(got, 0x7FC00001u);  // the signalling NaN wins, quietened
  EXPECT_EQ(d[4], 4.0f);         // the tail drops src1's NaN
  b[4] = NAN;
  a[4] = 1;
  ASSERT_EQ(ZIVKS_MinEvery_32f(a, b, d, 5), 0);
  EXPECT_TRUE(std::isnan(d[4]));  // and keeps src2's
}

}  // namespace
