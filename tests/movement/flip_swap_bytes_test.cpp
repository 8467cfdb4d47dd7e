// Flip and SwapBytes.
#include <algorithm>
#include <numeric>

#include "support/zt.h"

namespace {

// The in-place narrow flips step by step, one element at a time: the steps the library
// promises, written as plainly as possible.
template <class T>
void narrow_flip_model(std::vector<T>& a) {
  const int len = static_cast<int>(a.size()), w = 8 / sizeof(T), h = len / 2, r = len % w;
  auto swap_ends = [&](int upto) {
    for (int i = 0; i < upto; ++i) std::swap(a.at(i), a.at(len - 1 - i));
  };
  if (len < w) return swap_ends(h);
  swap_ends(r);
  if (r >= h) return;
  for (int k = 0, p = r; k < (h - 1 - r) / w + 1; ++k, p += w) {
    const int q = len - w - p;
    std::vector<T> x(a.begin() + p, a.begin() + p + w), y(a.begin() + q, a.begin() + q + w);
    std::reverse_copy(x.begin(), x.end(), a.begin() + q);
    std::reverse_copy(y.begin(), y.end(), a.begin() + p);
  }
}

// Every length against the step model (misaligned, guarded); a reversal exactly where
// len mod 2W is not from W + 1 to 2W - 2; the out-of-place twin reverses everywhere.
template <class T>
void check_narrow(ZIVKStatus (*in_place)(T*, int32_t), ZIVKStatus (*out)(const T*, T*, int32_t),
                  int max_len) {
  const int w = 8 / sizeof(T);
  for (int len = 1; len <= max_len; ++len) {
    std::vector<T> v(len), rev(len), o(len);
    std::iota(v.begin(), v.end(), 0);
    std::reverse_copy(v.begin(), v.end(), rev.begin());
    std::vector<T> model = v;
    narrow_flip_model(model);
    zt::Guarded<T> g(len, sizeof(T) * (len % 3));
    std::copy(v.begin(), v.end(), g.data());
    ASSERT_EQ(in_place(g.data(), len), 0);
    ASSERT_TRUE(g.guards_intact()) << len;
    const std::vector<T> got(g.data(), g.data() + len);
    ASSERT_EQ(got, model) << "w " << w << " len " << len;
    const int m = len % (2 * w);
    EXPECT_EQ(got == rev, len < w || m <= w || m == 2 * w - 1) << "w " << w << " len " << len;
    ASSERT_EQ(out(v.data(), o.data(), len), 0);
    EXPECT_EQ(o, rev) << "out of place, w " << w << " len " << len;
  }
}

TEST(Flip, NarrowInPlaceKeepsItsSteps) {
  std::vector<uint8_t> a(28);
  std::iota(a.begin(), a.begin() + 12, 0);
  ASSERT_EQ(ZIVKS_Flip_8u_I(a.data(), 12), 0);
  EXPECT_EQ(std::vector<uint8_t>(a.begin(), a.begin() + 12),
            (std::vector<uint8_t>{0, 1, 2, 3, 7, 6, 5, 4, 8, 9, 10, 11}));
  std::iota(a.begin(), a.end(), 0);
  ASSERT_EQ(ZIVKS_Flip_8u_I(a.data(), 28), 0);
  EXPECT_EQ(a, (std::vector<uint8_t>{27, 26, 25, 24, 23, 22, 21, 20, 8, 9, 10, 11, 15, 14,
                                     13, 12, 16, 17, 18, 19, 7, 6, 5, 4, 3, 2, 1, 0}));
  uint16_t b[6] = {0, 1, 2, 3, 4, 5};
  ASSERT_EQ(ZIVKS_Flip_16u_I(b, 6), 0);
  EXPECT_EQ(std::vector<uint16_t>(b, b + 6), (std::vector<uint16_t>{0, 1, 3, 2, 4, 5}));

  check_narrow<uint8_t>(ZIVKS_Flip_8u_I, ZIVKS_Flip_8u, 256);
  check_narrow<uint16_t>(ZIVKS_Flip_16u_I, ZIVKS_Flip_16u, 300);
}

// All flips over random bits, lengths and alignments: out of place is a reversal, the
// plain in-place forms too, the generic backend agrees, guards hold.
template <class E>
struct FlipFns {
  ZIVKStatus (*fn)(const E*, E*, int32_t);
  ZIVKStatus (*in_place)(E*, int32_t);
  decltype(fn) twin;
  decltype(in_place) twin_in_place;
};
#define ZT_FLIP(code) \
  FlipFns<E> { ZIVKS_Flip_##code, ZIVKS_Flip_##code##_I, ZT_TWIN(ZIVKS_Flip_##code), ZT_TWIN(ZIVKS_Flip_##code##_I) }

template <class E> FlipFns<E> flip_fns();
template <> FlipFns<uint8_t> flip_fns() { using E = uint8_t; return ZT_FLIP(8u); }
template <> FlipFns<uint16_t> flip_fns() { using E = uint16_t; return ZT_FLIP(16u); }
template <> FlipFns<float> flip_fns() { using E = float; return ZT_FLIP(32f); }
template <> FlipFns<double> flip_fns() { using E = double; return ZT_FLIP(64f); }
template <> FlipFns<ZIVK32fc> flip_fns() { using E = ZIVK32fc; return ZT_FLIP(32fc); }
template <> FlipFns<ZIVK64fc> flip_fns() { using E = ZIVK64fc; return ZT_FLIP(64fc); }

template <class E>
class FlipAll : public ::testing::Test {};
using FlipTypes = ::testing::Types<uint8_t, uint16_t, float, double, ZIVK32fc, ZIVK64fc>;
TYPED_TEST_SUITE(FlipAll, FlipTypes);

TYPED_TEST(FlipAll, ReversesAndAgrees) {
  using E = TypeParam;
  const auto f = flip_fns<E>();
  zt::Guarded<E> s(4), d(4);
  EXPECT_EQ(f.fn(nullptr, d.data(), 0), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(f.fn(s.data(), nullptr, 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(f.fn(s.data(), d.data(), 0), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(f.in_place(nullptr, -1), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(f.in_place(d.data(), -1), ZIVK_STS_SIZE_ERR);
  EXPECT_TRUE(d.untouched());

  zt::Rng rng(77);
  const bool plain = sizeof(E) > 2;  // the narrow in-place forms are checked above
  for (int len : zt::test_lengths()) {
    const size_t mis = (rng() % 2) * alignof(E);
    zt::Guarded<E> src(len, mis), dst(len, mis), in(len, mis), twin(len);
    zt::fill_random(src.data(), len, rng);
    ASSERT_EQ(f.fn(src.data(), dst.data(), len), 0);
    ASSERT_TRUE(dst.guards_intact());
    for (int i = 0; i < len; ++i)
      ASSERT_TRUE(zt::same_bits(dst[len - 1 - i], src[i])) << "len " << len << " element " << i;
    for (int i = 0; i < len; ++i) in[i] = src[i];
    ASSERT_EQ(f.in_place(in.data(), len), 0);
    ASSERT_TRUE(in.guards_intact());
    if (plain) {
      EXPECT_EQ(zt::first_difference(in.data(), dst.data(), len), -1) << "in place, len " << len;
    }
    if (f.twin) {
      ASSERT_EQ(f.twin(src.data(), twin.data(), len), 0);
      EXPECT_EQ(zt::first_difference(twin.data(), dst.data(), len), -1) << "generic, len " << len;
      for (int i = 0; i < len; ++i) twin[i] = src[i];
      ASSERT_EQ(f.twin_in_place(twin.data(), len), 0);
      EXPECT_EQ(zt::first_difference(twin.data(), in.data(), len), -1) << "generic in place, len " << len;
    }
  }
}

// SwapBytes of 16-, 32- and 64-bit elements.
template <class T>
struct SwapFns {
  ZIVKStatus (*fn)(const T*, T*, int32_t);
  ZIVKStatus (*in_place)(T*, int32_t);
  decltype(fn) twin;
};
template <class T> SwapFns<T> swap_fns();
template <> SwapFns<uint16_t> swap_fns() { return {ZIVKS_SwapBytes_16u, ZIVKS_SwapBytes_16u_I, ZT_TWIN(ZIVKS_SwapBytes_16u)}; }
template <> SwapFns<uint32_t> swap_fns() { return {ZIVKS_SwapBytes_32u, ZIVKS_SwapBytes_32u_I, ZT_TWIN(ZIVKS_SwapBytes_32u)}; }
template <> SwapFns<uint64_t> swap_fns() { return {ZIVKS_SwapBytes_64u, ZIVKS_SwapBytes_64u_I, ZT_TWIN(ZIVKS_SwapBytes_64u)}; }

template <class T>
class SwapBytes : public ::testing::Test {};
using SwapTypes = ::testing::Types<uint16_t, uint32_t, uint64_t>;
TYPED_TEST_SUITE(SwapBytes, SwapTypes);

TYPED_TEST(SwapBytes, ReversesBytesOfEachElement) {
  using T = TypeParam;
  const auto f = swap_fns<T>();
  zt::Guarded<T> g(4);
  // The in-place form is its twin with the pointer twice: the twin's statuses.
  EXPECT_EQ(f.in_place(nullptr, 0), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(f.in_place(g.data(), 0), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(f.fn(g.data(), nullptr, 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(f.fn(g.data(), g.data(), -4), ZIVK_STS_SIZE_ERR);
  EXPECT_TRUE(g.untouched());
  zt::Rng rng(5);
  for (int len : zt::test_lengths()) {
    const size_t mis = (rng() % 2) * sizeof(T);
    zt::Guarded<T> src(len, mis), dst(len), back(len, mis), twin(len);
    zt::fill_random(src.data(), len, rng);
    ASSERT_EQ(f.fn(src.data(), dst.data(), len), 0);
    ASSERT_TRUE(dst.guards_intact());
    for (int i = 0; i < len; ++i) {
      const auto* a = reinterpret_cast<const uint8_t*>(&src[i]);
      const auto* b = reinterpret_cast<const uint8_t*>(&dst[i]);
      for (size_t k = 0; k < sizeof(T); ++k) ASSERT_EQ(b[k], a[sizeof(T) - 1 - k]) << "len " << len;
    }
    for (int i = 0; i < len; ++i) back[i] = dst[i];
    ASSERT_EQ(f.in_place(back.data(), len), 0);  // swapping twice is the identity
    EXPECT_EQ(zt::first_difference(back.data(), src.data(), len), -1) << "len " << len;
    EXPECT_TRUE(back.guards_intact());
    if (f.twin) {
      ASSERT_EQ(f.twin(src.data(), twin.data(), len), 0);
      EXPECT_EQ(zt::first_difference(twin.data(), dst.data(), len), -1) << "generic, len " << len;
    }
  }
}

TEST(SwapBytes24, ExchangesOuterBytesOfEverySample) {
  uint8_t one[3] = {1, 2, 3}, out[3];
  ASSERT_EQ(ZIVKS_SwapBytes_24u(one, out, 1), 0);
  EXPECT_EQ(out[0], 3);
  EXPECT_EQ(out[1], 2);
  EXPECT_EQ(out[2], 1);
  ASSERT_EQ(ZIVKS_SwapBytes_24u_I(one, 1), 0);
  EXPECT_EQ(one[0], 3);
  EXPECT_EQ(one[2], 1);
  EXPECT_EQ(ZIVKS_SwapBytes_24u(nullptr, out, 0), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_SwapBytes_24u(one, out, 0), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(ZIVKS_SwapBytes_24u_I(nullptr, 1), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_SwapBytes_24u_I(one, -1), ZIVK_STS_SIZE_ERR);

  auto twin = ZT_TWIN(ZIVKS_SwapBytes_24u);
  auto twin_i = ZT_TWIN(ZIVKS_SwapBytes_24u_I);
  zt::Rng rng(24);
  for (int len : zt::test_lengths()) {
    const size_t mis = rng() % 4;
    zt::Guarded<uint8_t> src(3 * len, mis), dst(3 * len), in(3 * len, mis), t(3 * len);
    zt::fill_random(src.data(), 3 * len, rng);
    ASSERT_EQ(ZIVKS_SwapBytes_24u(src.data(), dst.data(), len), 0);
    ASSERT_TRUE(dst.guards_intact());
    for (int i = 0; i < 3 * len; ++i)
      ASSERT_EQ(dst[i], src[i - i % 3 + 2 - i % 3]) << "len " << len << " byte " << i;
    for (int i = 0; i < 3 * len; ++i) in[i] = src[i];
    ASSERT_EQ(ZIVKS_SwapBytes_24u_I(in.data(), len), 0);
    EXPECT_EQ(zt::first_difference(in.data(), dst.data(), 3 * len), -1) << "in place, len " << len;
    EXPECT_TRUE(in.guards_intact());
    if (twin) {
      ASSERT_EQ(twin(src.data(), t.data(), len), 0);
      EXPECT_EQ(zt::first_difference(t.data(), dst.data(), 3 * len), -1) << "generic, len " << len;
      for (int i = 0; i < 3 * len; ++i) t[i] = src[i];
      ASSERT_EQ(twin_i(t.data(), len), 0);
      EXPECT_EQ(zt::first_difference(t.data(), dst.data(), 3 * len), -1) << "generic in place, len " << len;
    }
  }
}

}  // namespace
