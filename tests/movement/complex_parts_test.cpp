// Real, Imag, CplxToReal, RealToCplx and Conj.
#include <math.h>

#include "support/sweep.h"

namespace {

// Conj negates the imaginary part: saturating for int16, the sign bit alone for floats
// (a NaN keeps its payload).
template <class P>
P conj_part(P x) {
  if constexpr (std::is_integral_v<P>) return x == -32768 ? 32767 : static_cast<P>(-x);
  else return std::copysign(x, std::signbit(x) ? P(1) : P(-1));
}

// The parts move unchanged: Real and Imag pick one, CplxToReal writes re to d[0, n) and
// im to d[n, 2n), RealToCplx joins two arrays (a missing one written as zeros).
template <class E, class P = zt::part_of<E>>
void check(const char* name, int kind, typename zt::Member<E, P>::Call call) {
  zt::Member<E, P> m;
  m.name = name;
  m.call = call;
  if (kind == 2) m.out_len = [](int32_t n) { return 2 * n; }, m.alone = false;
  m.rule = [kind](const E* a, const E*, int, int32_t n, P* want) {
    const P* p = reinterpret_cast<const P*>(a);
    for (int32_t i = 0; i < n; ++i) {
      if (kind == 0 || kind == 2) want[i] = p[2 * i];
      if (kind == 1) want[i] = p[2 * i + 1];
      if (kind == 2) want[n + i] = p[2 * i + 1];
    }
  };
  zt::check_member(m);
}

template <class E, class P = zt::part_of<E>>
void check_join(const char* name, typename zt::Member<P, E>::Call call) {
  for (int missing : {0, 1, 2}) {  // none, re, im
    zt::Member<P, E> m;
    m.name = std::string(name) + (missing == 1 ? " without re" : missing == 2 ? " without im" : "");
    m.sources = 2;
    m.nullable_sources = true;  // one may be null, not both
    m.call = [call, missing](bool t, const P* a, const P* b, int p, E* d, int32_t n) {
      return call(t, missing == 1 ? nullptr : a, missing == 2 ? nullptr : b, p, d, n);
    };
    m.rule = zt::each<P, E, int>([missing](P re, P im, int, int, int) {
      return E{missing == 1 ? P(0) : re, missing == 2 ? P(0) : im};
    });
    zt::check_member(m);
  }
  zt::Guarded<E> d(4);
  EXPECT_EQ(call(false, nullptr, nullptr, 0, d.data(), 4), ZIVK_STS_NULL_PTR_ERR) << name;
  EXPECT_TRUE(d.untouched());
}

template <class E, class P = zt::part_of<E>>
void check_conj(const char* name, typename zt::Member<E>::Call call, typename zt::Member<E>::Call in_place) {
  zt::Member<E> m;
  m.name = name;
  m.call = call;
  m.in_place = in_place;
  m.rule = zt::each<E, E, int>([](E a, E, int, int, int) { return E{a.re, conj_part(a.im)}; });
  zt::check_member(m);
}

#define ZT_PARTS(c, r, E)                                                                                  \
  check<E>("Real_" #c, 0, ZT_CALL(ZIVKS_Real_##c, a, d, n));                                              \
  check<E>("Imag_" #c, 1, ZT_CALL(ZIVKS_Imag_##c, a, d, n));                                              \
  check<E>("CplxToReal_" #c, 2, ZT_CALL(ZIVKS_CplxToReal_##c, a, d, d ? d + n : nullptr, n));             \
  check_join<E>("RealToCplx_" #r, ZT_CALL(ZIVKS_RealToCplx_##r, a, b, d, n));                             \
  check_conj<E>("Conj_" #c, ZT_CALL(ZIVKS_Conj_##c, a, d, n), ZT_CALL(ZIVKS_Conj_##c##_I, d, n))

TEST(ComplexParts, EveryMemberFollowsTheRule) {
  ZT_PARTS(16sc, 16s, ZIVK16sc);
  ZT_PARTS(32fc, 32f, ZIVK32fc);
  ZT_PARTS(64fc, 64f, ZIVK64fc);
}

// Saturation in block and tail alike: 9 elements are one block of 8 and a tail of one.
TEST(Conj, SixteenBitSaturatesFloatsFlipTheSign) {
  ZIVK16sc a[9], r[9];
  for (int i = 0; i < 9; ++i) a[i] = ZIVK16sc{-32768, static_cast<int16_t>(i % 2 ? 32767 : -32768)};
  a[8].im = -32768;
  ASSERT_EQ(ZIVKS_Conj_16sc(a, r, 9), 0);
  for (int i = 0; i < 9; ++i) {
    EXPECT_EQ(r[i].re, -32768);
    EXPECT_EQ(r[i].im, a[i].im == -32768 ? 32767 : -32767) << i;
  }
  ASSERT_EQ(ZIVKS_Conj_16sc_I(a, 9), 0);
  EXPECT_EQ(zt::first_difference(a, r, 9), -1);
  ZIVK32fc z[5] = {{0, 0}, {1, -0.0f}, {2, INFINITY}, {3, 0}, {4, 0.0f}}, w[5];
  ASSERT_EQ(ZIVKS_Conj_32fc(z, w, 5), 0);
  EXPECT_TRUE(std::signbit(w[0].im) && w[0].im == 0);
  EXPECT_TRUE(!std::signbit(w[1].im) && w[1].im == 0);
  EXPECT_EQ(w[2].im, -INFINITY);
  EXPECT_TRUE(std::signbit(w[4].im) && w[4].im == 0);  // the tail element
}

}  // namespace
