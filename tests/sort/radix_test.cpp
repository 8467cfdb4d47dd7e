// SortRadixInit, SortRadixRelease and the radix sorts: handle sizes and statuses seen
// through the recording core services, integer results against std::sort, and the float
// order with its two quirks (a -0.0 keeps the negative block in bit order; an array of
// negative numbers reads the word beyond its end).
#include <memory>

#include "sort_support.h"

namespace {

template <class F>
void for_each_sort(F f) {
  ZT_FOR_NINE_TYPES(SortRadix, _I)
}

TEST(SortRadixInit, StatusesInOrderAndSizes) {
  zt::check_buffer_init(ZIVKS_SortRadixInit, ZIVKS_SortRadixRelease, 4, 0x1FFFFFFF, 0x0FFFFFFF);
}

// A buffer made for len elements of type dt, scrambled: leftovers of earlier calls must
// not matter.
std::unique_ptr<uint8_t, ZIVKStatus (*)(uint8_t*)> handle(int32_t len, ZIVKDataType dt, zt::Rng& rng) {
  uint8_t* p = nullptr;
  EXPECT_EQ(ZIVKS_SortRadixInit(len, dt, &p), ZIVK_STS_NO_ERR);
  memset(p, static_cast<int>(rng() & 0xFF), zt::core_record().last_size);
  return {p, ZIVKS_SortRadixRelease};
}

TEST(SortRadix, StatusesInOrderAndRefusedCallsWriteNothing) {
  for_each_sort([&](const auto& s) {
    using T = zt::KeyOf<decltype(s)>;
    zt::Rng rng(1);
    const auto h = handle(4, s.type, rng);
    const std::vector<uint8_t> before(h.get(), h.get() + zt::core_record().last_size);
    zt::Guarded<T> g(4);
    for (auto fn : s.fn) {
      zt::expect_null_then_size(2, [&](int p, int32_t n) {
        return fn(zt::unless(p, 0, g.data()), n, zt::unless(p, 1, h.get()));
      });
    }
    EXPECT_TRUE(g.untouched()) << s.name;
    EXPECT_TRUE(std::equal(before.begin(), before.end(), h.get())) << s.name << ": handle written";
  });
}

// The float order. Without -0.0 in the array: sign-set NaNs by falling payload, -inf,
// negative numbers rising, +0.0, positive numbers rising, +inf, sign-clear NaNs by rising
// payload. With a -0.0 the keys with the sign set stay in bit order: -0.0, the negative
// numbers by rising magnitude, -inf, sign-set NaNs by rising payload. Descend is the exact
// reverse. An array of nothing but negative numbers and sign-set NaNs takes in the run of
// sign-set NaNs just after it (Descend: just before it): that run, reversed, joins the
// array at the front (Descend: at the back), and as many places at the other end move out
// into those words. w[off, off + len) is the array, the other words lie beside it.
template <class F>
void float_order(std::vector<F>& w, int off, int len, bool descend) {
  using S = std::make_signed_t<zt::BitsOf<F>>;
  const auto first = w.begin() + off, last = first + len;
  const auto nan_minus = [](F x) { return x != x && std::signbit(x); };
  const bool neg_zero = std::any_of(first, last, [](F x) { return x == 0 && std::signbit(x); });
  std::sort(first, last, [&](F a, F b) {
    return neg_zero ? S(zt::bits(a)) < S(zt::bits(b)) : zt::order_key(a) < zt::order_key(b);
  });
  if (descend) std::reverse(first, last);
  if (!std::all_of(first, last, [&](F x) { return x < 0 || nan_minus(x); })) return;
  int j = 0;
  if (!descend) {
    while (nan_minus(w[off + len + j])) ++j;
    std::reverse(last, last + j);
    std::rotate(first, last, last + j);
  } else {
    while (nan_minus(w[off - 1 - j])) ++j;
    std::reverse(first - j, first);
    std::rotate(first - j, first, last);
  }
}

// The array sits 3 words into a guarded region of len + 6; the words beside it are the
// guard pattern (a negative number) or, k of them on each side for floats, sign-set NaNs.
// A buffer made for len serves; a sort allocates nothing.
TEST(SortRadix, EveryTypeAndDirectionAgainstItsOrder) {
  auto& r = zt::core_record();
  for_each_sort([&](const auto& s) {
    using T = zt::KeyOf<decltype(s)>;
    constexpr int off = 3;
    std::vector<zt::Mix> mixes = {zt::kAny, zt::kFewNaN, zt::kRuns, zt::kLowByte};
    if (zt::kFloat<T>) mixes.insert(mixes.end(), {zt::kNoNegZero, zt::kNegative});
    zt::sweep<T>(s.name, mixes, [&](int d, int len, const std::vector<T>& in, zt::Rng& rng) {
      const int k = zt::kFloat<T> ? rng() % 3 : 0;
      zt::Guarded<T> g(len + 2 * off, (rng() % 4) * sizeof(T)), t(len + 2 * off);
      if constexpr (zt::kFloat<T>) {
        for (int j = 0; j < 2 * k; ++j)  // sign-set NaNs beside the array
          g[j % 2 ? off - 1 - j / 2 : off + len + j / 2] =
              zt::from_bits<T>(zt::bits(-T(INFINITY)) | (zt::BitsOf<T>(rng()) >> 12) | 1);
      }
      memcpy(&g[off], in.data(), len * sizeof(T));
      memcpy(t.data(), g.data(), (len + 2 * off) * sizeof(T));
      std::vector<T> want(g.data(), g.data() + len + 2 * off);
      if constexpr (zt::kFloat<T>) {
        float_order(want, off, len, d == 1);
      } else {
        std::sort(want.begin() + off, want.begin() + off + len);
        if (d) std::reverse(want.begin() + off, want.begin() + off + len);
      }
      const auto h = handle(len, s.type, rng);
      r = {};
      ASSERT_EQ(s.fn[d](&g[off], len, h.get()), ZIVK_STS_NO_ERR);
      ASSERT_TRUE(g.guards_intact() && r.malloc_calls == 0);
      ASSERT_EQ(zt::first_difference(want.data(), g.data(), want.size()), -1) << k << " NaNs beside";
      if (s.twin[d]) {
        ASSERT_EQ(s.twin[d](&t[off], len, handle(len, s.type, rng).get()), ZIVK_STS_NO_ERR);
        ASSERT_EQ(zt::first_difference(t.data(), g.data(), want.size()), -1) << "generic backend";
      }
    });
  });
  r = {};
}

// The stated small cases: with a -0.0 the negative block keeps its bit order, -0.0 first
// and falling values after it; a word after the array takes no part while the array holds
// a number that is not negative; a sign-set NaN after an all-negative array is turned in.
TEST(SortRadix, SmallFloatExamples) {
  for_each_sort([&](const auto& s) {
    using F = zt::KeyOf<decltype(s)>;
    if constexpr (zt::kFloat<F>) {
      SCOPED_TRACE(s.name);
      zt::Rng rng(1);
      const auto h = handle(4, s.type, rng);
      const F nan_minus = -F(NAN);
      auto expect = [&](int dir, std::vector<F> a, int len, const std::vector<F>& want) {
        ASSERT_EQ(s.fn[dir](a.data(), len, h.get()), ZIVK_STS_NO_ERR);
        EXPECT_EQ(zt::first_difference(want.data(), a.data(), want.size()), -1) << (dir ? "Descend" : "Ascend");
      };
      expect(0, {1, -2, -F(0), -1}, 4, {-F(0), -1, -2, 1});
      expect(1, {1, -2, -F(0), -1}, 4, {1, -2, -1, -F(0)});
      expect(0, {-1, 1, -2, 5}, 3, {-2, -1, 1, 5});
      expect(1, {-1, 1, -2, 5}, 3, {1, -1, -2, 5});
      expect(0, {-1, -2, nan_minus, 3}, 2, {nan_minus, -2, -1, 3});
    }
  });
}

}  // namespace
