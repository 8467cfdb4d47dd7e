// Flip and SwapBytes.
#include <algorithm>
#include <numeric>

#include "support/sweep.h"

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

// Out of place a reversal; in place the same for elements wider than 16 bits.
template <class E>
void check_flip(const char* name, typename zt::Member<E>::Call call, typename zt::Member<E>::Call in_place) {
  zt::Member<E> m;
  m.name = name;
  m.call = call;
  if (sizeof(E) > 2) m.in_place = in_place;
  m.rule = [](const E* a, const E*, int, int32_t n, E* want) { std::reverse_copy(a, a + n, want); };
  m.alone = m.overlap = false;
  zt::check_member(m);
  m.call = nullptr;  // the narrow in-place forms keep their own steps, checked above
  m.in_place = in_place;
  if (sizeof(E) <= 2) zt::check_statuses(m);
}

// The bytes of each element in reverse order; 24-bit samples exchange their outer bytes.
template <class T>
void check_swap(const char* name, typename zt::Member<T>::Call call, typename zt::Member<T>::Call in_place,
                int per = 1) {
  zt::Member<T> m;
  m.name = name;
  m.call = call;
  m.in_place = in_place;
  m.per = per;
  const int bytes = per == 3 ? 3 : sizeof(T);
  m.rule = [bytes](const T* a, const T*, int, int32_t n, T* want) {
    const auto* s = reinterpret_cast<const uint8_t*>(a);
    auto* w = reinterpret_cast<uint8_t*>(want);
    for (int i = 0; i < n * bytes; ++i) w[i] = s[i - i % bytes + bytes - 1 - i % bytes];
  };
  zt::check_member(m);
}

#define ZT_FLIP(code, E) check_flip<E>("Flip_" #code, ZT_CALL(ZIVKS_Flip_##code, a, d, n), ZT_CALL(ZIVKS_Flip_##code##_I, d, n))
#define ZT_SWAP(code, T, ...) \
  check_swap<T>("SwapBytes_" #code, ZT_CALL(ZIVKS_SwapBytes_##code, a, d, n), ZT_CALL(ZIVKS_SwapBytes_##code##_I, d, n), ##__VA_ARGS__)

TEST(FlipSwapBytes, EveryMemberFollowsTheRule) {
  ZT_FLIP(8u, uint8_t);
  ZT_FLIP(16u, uint16_t);
  ZT_FLIP(32f, float);
  ZT_FLIP(64f, double);
  ZT_FLIP(32fc, ZIVK32fc);
  ZT_FLIP(64fc, ZIVK64fc);
  ZT_SWAP(16u, uint16_t);
  ZT_SWAP(32u, uint32_t);
  ZT_SWAP(64u, uint64_t);
  ZT_SWAP(24u, uint8_t, 3);
}

}  // namespace
