// Real, Imag, CplxToReal, RealToCplx and Conj.
#include <math.h>

#include "support/zt.h"

namespace {

template <class E> struct part_t { using type = int16_t; };
template <> struct part_t<ZIVK32fc> { using type = float; };
template <> struct part_t<ZIVK64fc> { using type = double; };

// One member set per element type, with the generic twins (null on a generic build).
template <class E, class P = typename part_t<E>::type>
struct Fns {
  ZIVKStatus (*real)(const E*, P*, int32_t);
  ZIVKStatus (*imag)(const E*, P*, int32_t);
  ZIVKStatus (*split)(const E*, P*, P*, int32_t);
  ZIVKStatus (*merge)(const P*, const P*, E*, int32_t);
  ZIVKStatus (*conj)(const E*, E*, int32_t);
  ZIVKStatus (*conj_i)(E*, int32_t);
};
#define ZT_FNS(c, r) \
  { ZIVKS_Real_##c, ZIVKS_Imag_##c, ZIVKS_CplxToReal_##c, ZIVKS_RealToCplx_##r, ZIVKS_Conj_##c, ZIVKS_Conj_##c##_I }
#define ZT_TWINS(c, r)                                                                             \
  { ZT_TWIN(ZIVKS_Real_##c), ZT_TWIN(ZIVKS_Imag_##c), ZT_TWIN(ZIVKS_CplxToReal_##c),               \
    ZT_TWIN(ZIVKS_RealToCplx_##r), ZT_TWIN(ZIVKS_Conj_##c), ZT_TWIN(ZIVKS_Conj_##c##_I) }
template <class E> Fns<E> fns(bool twin);
template <> Fns<ZIVK16sc> fns(bool t) { return t ? Fns<ZIVK16sc>ZT_TWINS(16sc, 16s) : Fns<ZIVK16sc>ZT_FNS(16sc, 16s); }
template <> Fns<ZIVK32fc> fns(bool t) { return t ? Fns<ZIVK32fc>ZT_TWINS(32fc, 32f) : Fns<ZIVK32fc>ZT_FNS(32fc, 32f); }
template <> Fns<ZIVK64fc> fns(bool t) { return t ? Fns<ZIVK64fc>ZT_TWINS(64fc, 64f) : Fns<ZIVK64fc>ZT_FNS(64fc, 64f); }

template <class P>
P conj_part(P x) {
  if constexpr (std::is_integral_v<P>) return x == -32768 ? 32767 : static_cast<P>(-x);
  else return std::copysign(x, std::signbit(x) ? P(1) : P(-1));  // any NaN payload kept
}

template <class E>
class ComplexParts : public ::testing::Test {};
using Types = ::testing::Types<ZIVK16sc, ZIVK32fc, ZIVK64fc>;
TYPED_TEST_SUITE(ComplexParts, Types);

TYPED_TEST(ComplexParts, StatusesAndNothingWritten) {
  using E = TypeParam;
  using P = typename part_t<E>::type;
  const auto f = fns<E>(false);
  zt::Guarded<E> c(4);
  zt::Guarded<P> a(4), b(4);
  EXPECT_EQ(f.real(nullptr, a.data(), 0), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(f.imag(c.data(), nullptr, 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(f.imag(c.data(), a.data(), 0), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(f.split(c.data(), a.data(), nullptr, 4), ZIVK_STS_NULL_PTR_ERR);  // both parts needed
  EXPECT_EQ(f.split(c.data(), nullptr, b.data(), 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(f.split(c.data(), a.data(), b.data(), -1), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(f.merge(nullptr, nullptr, c.data(), 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(f.merge(nullptr, nullptr, c.data(), 0), ZIVK_STS_NULL_PTR_ERR);  // pointers first
  EXPECT_EQ(f.merge(a.data(), b.data(), nullptr, 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(f.merge(nullptr, b.data(), c.data(), 0), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(f.conj(c.data(), nullptr, 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(f.conj(c.data(), c.data(), 0), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(f.conj_i(nullptr, 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(f.conj_i(c.data(), -2), ZIVK_STS_SIZE_ERR);
  EXPECT_TRUE(a.untouched() && b.untouched() && c.untouched());
}

// Over random bits (NaN payloads of both signs included), lengths and alignments: the
// parts taken and joined unchanged, split then merge the identity, a missing source
// written as zeros, Conj per part, in place equal to out of place, each element equal
// to a call of length 1, the generic backend bit-equal, guards intact.
TYPED_TEST(ComplexParts, PartsMoveUnchanged) {
  using E = TypeParam;
  using P = typename part_t<E>::type;
  const auto f = fns<E>(false);
  const auto t = fns<E>(true);
  zt::Rng rng(99);
  for (int len : zt::test_lengths()) {
    const size_t mis = (rng() % 2) * sizeof(P);
    zt::Guarded<E> src(len, mis), back(len), zre(len, mis), zim(len), cj(len, mis), ci(len), one(1);
    zt::Guarded<P> re(len, mis), im(len), re2(len), im2(len, mis);
    zt::fill_random(src.data(), len, rng);
    const P* s = reinterpret_cast<const P*>(src.data());
    ASSERT_EQ(f.split(src.data(), re.data(), im.data(), len), 0);
    ASSERT_EQ(f.real(src.data(), re2.data(), len), 0);
    ASSERT_EQ(f.imag(src.data(), im2.data(), len), 0);
    for (int i = 0; i < len; ++i) {
      ASSERT_TRUE(zt::same_bits(re[i], s[2 * i]) && zt::same_bits(im[i], s[2 * i + 1])) << len;
      ASSERT_TRUE(zt::same_bits(re2[i], re[i]) && zt::same_bits(im2[i], im[i])) << len;
    }
    ASSERT_EQ(f.merge(re.data(), im.data(), back.data(), len), 0);
    EXPECT_EQ(zt::first_difference(back.data(), src.data(), len), -1) << "split then merge, len " << len;
    ASSERT_EQ(f.merge(nullptr, im.data(), zre.data(), len), 0);  // over the guard pattern
    ASSERT_EQ(f.merge(re.data(), nullptr, zim.data(), len), 0);
    for (int i = 0; i < len; ++i) {
      ASSERT_TRUE(zt::same_bits(zre[i].re, P(0)) && zt::same_bits(zre[i].im, im[i])) << len;
      ASSERT_TRUE(zt::same_bits(zim[i].im, P(0)) && zt::same_bits(zim[i].re, re[i])) << len;
    }
    ASSERT_EQ(f.conj(src.data(), cj.data(), len), 0);
    for (int i = 0; i < len; ++i)
      ASSERT_TRUE(zt::same_bits(cj[i].re, re[i]) && zt::same_bits(cj[i].im, conj_part(im[i])))
          << "conj, len " << len << " element " << i;
    for (int i = 0; i < len; ++i) ci[i] = src[i];
    ASSERT_EQ(f.conj_i(ci.data(), len), 0);
    EXPECT_EQ(zt::first_difference(ci.data(), cj.data(), len), -1) << "conj in place, len " << len;
    for (int i = 0; i < len; i += 1 + len / 5) {
      ASSERT_EQ(f.conj(src.data() + i, one.data(), 1), 0);
      EXPECT_TRUE(zt::same_bits(one[0], cj[i])) << "conj alone, element " << i;
    }
    for (auto* g : {&back, &zre, &zim, &cj, &ci}) EXPECT_TRUE(g->guards_intact()) << len;
    for (auto* g : {&re, &im, &re2, &im2}) EXPECT_TRUE(g->guards_intact()) << len;
    if (!t.real) continue;
    zt::Guarded<P> tr(len), ti(len);
    zt::Guarded<E> tc(len);
    ASSERT_EQ(t.split(src.data(), tr.data(), ti.data(), len), 0);
    EXPECT_EQ(zt::first_difference(tr.data(), re.data(), len), -1);
    EXPECT_EQ(zt::first_difference(ti.data(), im.data(), len), -1);
    ASSERT_EQ(t.real(src.data(), tr.data(), len), 0);
    ASSERT_EQ(t.imag(src.data(), ti.data(), len), 0);
    EXPECT_EQ(zt::first_difference(tr.data(), re.data(), len), -1);
    EXPECT_EQ(zt::first_difference(ti.data(), im.data(), len), -1);
    ASSERT_EQ(t.merge(nullptr, im.data(), tc.data(), len), 0);
    EXPECT_EQ(zt::first_difference(tc.data(), zre.data(), len), -1) << "generic merge, len " << len;
    ASSERT_EQ(t.conj(src.data(), tc.data(), len), 0);
    EXPECT_EQ(zt::first_difference(tc.data(), cj.data(), len), -1) << "generic conj, len " << len;
    for (int i = 0; i < len; ++i) tc[i] = src[i];
    ASSERT_EQ(t.conj_i(tc.data(), len), 0);
    EXPECT_EQ(zt::first_difference(tc.data(), cj.data(), len), -1) << "generic conj in place, len " << len;
  }
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
