// SortIndexAscend and SortIndexDescend: keys sorted in place with the input position of
// each. Equal keys come in an order that depends on rand(), so only what holds for any
// pivots is checked: dstIdx a permutation that the keys agree with, sorted keys without
// NaN, and the whole result where the keys are distinct.
#include <time.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <set>
#include <string>

#include "support/zt.h"

namespace {

template <class T>
using IndexFn = ZIVKStatus (*)(T*, int32_t*, int32_t);

template <class T>
struct IndexSorter {
  std::string name;
  IndexFn<T> fn, twin;
  bool descend;
};

#define ZT_INDEX(dir, code, T, desc) \
  IndexSorter<T> { #dir "_" #code, ZIVKS_SortIndex##dir##_##code##_I, ZT_TWIN(ZIVKS_SortIndex##dir##_##code##_I), desc }

template <class Fn>
void for_each_sorter(Fn&& f) {
  f(ZT_INDEX(Ascend, 8u, uint8_t, false));
  f(ZT_INDEX(Ascend, 16u, uint16_t, false));
  f(ZT_INDEX(Ascend, 16s, int16_t, false));
  f(ZT_INDEX(Ascend, 32s, int32_t, false));
  f(ZT_INDEX(Ascend, 32f, float, false));
  f(ZT_INDEX(Ascend, 64f, double, false));
  f(ZT_INDEX(Descend, 8u, uint8_t, true));
  f(ZT_INDEX(Descend, 16u, uint16_t, true));
  f(ZT_INDEX(Descend, 16s, int16_t, true));
  f(ZT_INDEX(Descend, 32s, int32_t, true));
  f(ZT_INDEX(Descend, 32f, float, true));
  f(ZT_INDEX(Descend, 64f, double, true));
}

template <class T>
constexpr bool kFloat = std::is_floating_point_v<T>;

enum Mix { kAny, kFew, kDistinct, kWithNaN };

// kFew: a handful of values, so most keys tie (both zeros for floats); kDistinct: no
// two keys compare equal; floats hold NaNs only in kWithNaN.
template <class T>
std::vector<T> keys(int len, Mix mix, zt::Rng& rng) {
  auto any = [&] {
    T x;
    zt::fill_random(&x, 1, rng);
    if constexpr (kFloat<T>) {
      if (mix != kWithNaN && std::isnan(x)) x = rng() % 2 ? T(0) : -T(0);
    }
    return x;
  };
  std::vector<T> v;
  if (mix == kDistinct) {
    std::set<T> seen;  // compares with <: -0.0 and +0.0 count as one key
    while (static_cast<int>(v.size()) < len) {
      const T x = any();
      if (seen.insert(x).second) v.push_back(x);
    }
    return v;
  }
  T pool[4] = {any(), any(), T(0), std::numeric_limits<T>::max()};
  if constexpr (kFloat<T>) pool[3] = -T(0);
  for (int i = 0; i < len; ++i) v.push_back(mix == kFew ? pool[rng() % 4] : any());
  return v;
}

// The key at p after the call is the input key at dstIdx[p], and dstIdx holds every
// position once; without NaN the keys are in order.
template <class T>
void expect_consistent(const std::vector<T>& in, const T* out, const int32_t* idx, bool descend) {
  const int n = static_cast<int>(in.size());
  std::vector<char> seen(n, 0);
  for (int p = 0; p < n; ++p) {
    ASSERT_TRUE(idx[p] >= 0 && idx[p] < n && !seen[idx[p]]) << "dstIdx not a permutation at " << p;
    seen[idx[p]] = 1;
    ASSERT_TRUE(zt::same_bits(out[p], in[idx[p]])) << "key at " << p << " is not the input key at " << idx[p];
  }
  if (std::any_of(in.begin(), in.end(), [](T x) { return x != x; })) return;
  for (int p = 0; p + 1 < n; ++p)
    ASSERT_FALSE(descend ? out[p] < out[p + 1] : out[p + 1] < out[p]) << "out of order at " << p;
}

template <class T>
void check_statuses(const IndexSorter<T>& s) {
  SCOPED_TRACE(s.name);
  zt::Guarded<T> g(4);
  zt::Guarded<int32_t> idx(4);
  for (int32_t n : {4, 0, -1}) {
    EXPECT_EQ(s.fn(nullptr, idx.data(), n), ZIVK_STS_NULL_PTR_ERR) << n;
    EXPECT_EQ(s.fn(g.data(), nullptr, n), ZIVK_STS_NULL_PTR_ERR) << n;
    EXPECT_EQ(s.fn(nullptr, nullptr, n), ZIVK_STS_NULL_PTR_ERR) << n;
  }
  for (int32_t n : {0, -1, INT32_MIN}) EXPECT_EQ(s.fn(g.data(), idx.data(), n), ZIVK_STS_SIZE_ERR) << n;
  EXPECT_TRUE(g.untouched());
  EXPECT_TRUE(idx.untouched());
}

TEST(SortIndex, StatusesInOrderAndRefusedCallsWriteNothing) {
  for_each_sorter([](const auto& s) { check_statuses(s); });
}

// Keys 3, 1, 2 come out as 1, 2, 3 from positions 1, 2, 0 (Descend: 3, 2, 1 from 0, 2,
// 1); a single key stays and is its own position.
template <class T>
void check_small(const IndexSorter<T>& s) {
  SCOPED_TRACE(s.name);
  T k[3] = {3, 1, 2};
  int32_t idx[3] = {-7, -7, -7};
  ASSERT_EQ(s.fn(k, idx, 3), ZIVK_STS_NO_ERR);
  const std::vector<T> want_k = s.descend ? std::vector<T>{3, 2, 1} : std::vector<T>{1, 2, 3};
  const std::vector<int32_t> want_i = s.descend ? std::vector<int32_t>{0, 2, 1} : std::vector<int32_t>{1, 2, 0};
  EXPECT_EQ(std::vector<T>(k, k + 3), want_k);
  EXPECT_EQ(std::vector<int32_t>(idx, idx + 3), want_i);

  zt::Guarded<T> one(1);
  zt::Guarded<int32_t> at(1);
  one[0] = 7;
  ASSERT_EQ(s.fn(one.data(), at.data(), 1), ZIVK_STS_NO_ERR);
  EXPECT_EQ(one[0], T(7));
  EXPECT_EQ(at[0], 0);
  EXPECT_TRUE(one.guards_intact() && at.guards_intact());
}

TEST(SortIndex, SmallExamples) {
  for_each_sorter([](const auto& s) { check_small(s); });
}

// Lengths 1 to 70 and across 128 and 4096, misaligned and guarded; distinct keys fix the
// whole result, so the generic twin must give the same keys and positions.
template <class T>
void check_sorts(const IndexSorter<T>& s) {
  zt::Rng rng(std::hash<std::string>()(s.name));
  std::vector<int> lengths;
  for (int n = 1; n <= 70; ++n) lengths.push_back(n);
  for (int n : {127, 128, 129, 255, 256, 257, 1000, 4096, 5000}) lengths.push_back(n);
  for (int len : lengths) {
    for (Mix mix : {kAny, kFew, kDistinct, kWithNaN}) {
      if ((mix == kWithNaN && !kFloat<T>) || (mix == kDistinct && sizeof(T) == 1 && len > 256)) continue;
      SCOPED_TRACE(s.name + " len " + std::to_string(len) + " mix " + std::to_string(mix));
      const std::vector<T> in = keys<T>(len, mix, rng);
      zt::Guarded<T> g(len, (rng() % 4) * sizeof(T));
      zt::Guarded<int32_t> idx(len, (rng() % 4) * sizeof(int32_t));
      memcpy(g.data(), in.data(), len * sizeof(T));
      ASSERT_EQ(s.fn(g.data(), idx.data(), len), ZIVK_STS_NO_ERR);
      ASSERT_TRUE(g.guards_intact() && idx.guards_intact());
      expect_consistent(in, g.data(), idx.data(), s.descend);
      if (mix == kDistinct && s.twin) {
        zt::Guarded<T> t(len);
        zt::Guarded<int32_t> ti(len);
        memcpy(t.data(), in.data(), len * sizeof(T));
        ASSERT_EQ(s.twin(t.data(), ti.data(), len), ZIVK_STS_NO_ERR);
        ASSERT_EQ(zt::first_difference(t.data(), g.data(), len), -1) << "generic backend, keys";
        ASSERT_EQ(zt::first_difference(ti.data(), idx.data(), len), -1) << "generic backend, positions";
      }
    }
  }
}

TEST(SortIndex, PermutationAndOrderForEveryLength) {
  for_each_sorter([](const auto& s) { check_sorts(s); });
}

// Keys that all compare equal (one value, zeros of both signs, or NaNs of any payload,
// which equal everything) make one partition around a pivot that is never the last
// place: the only move is the pivot's swap with place 0.
template <class T>
void check_all_equal(const IndexSorter<T>& s) {
  zt::Rng rng(std::hash<std::string>()(s.name) + 1);
  for (int len : {2, 3, 4, 5, 16, 17, 70, 1000}) {
    SCOPED_TRACE(s.name + " len " + std::to_string(len));
    std::vector<T> in(len, static_cast<T>(rng()));
    if constexpr (kFloat<T>) {
      for (T& x : in) {
        if (len % 2) {  // zeros of both signs
          x = rng() % 2 ? T(0) : -T(0);
          continue;
        }
        x = std::numeric_limits<T>::quiet_NaN();
        auto* b = reinterpret_cast<uint8_t*>(&x);
        b[0] = static_cast<uint8_t>(rng());       // payload
        if (rng() % 2) b[sizeof(T) - 1] |= 0x80;  // sign
      }
    }
    std::vector<T> k = in;
    std::vector<int32_t> idx(len, -1);
    ASSERT_EQ(s.fn(k.data(), idx.data(), len), ZIVK_STS_NO_ERR);
    const int p = idx[0];
    ASSERT_TRUE(p >= 0 && p < len - 1) << "pivot at " << p;
    for (int i = 1; i < len; ++i) EXPECT_EQ(idx[i], i == p ? 0 : i) << "at " << i;
    std::swap(in[0], in[p]);
    EXPECT_EQ(zt::first_difference(k.data(), in.data(), len), -1);
  }
}

TEST(SortIndex, EqualKeysMoveOnlyThePivot) {
  for_each_sorter([](const auto& s) { check_all_equal(s); });
}

// Every call reseeds rand() from the clock second; one key draws nothing after that.
TEST(SortIndex, ReseedsTheGeneratorFromTheClock) {
  for (int attempt = 0; attempt < 3; ++attempt) {
    srand(12345);
    const time_t t = time(nullptr);
    int32_t k = 5, at = -1;
    ASSERT_EQ(ZIVKS_SortIndexDescend_32s_I(&k, &at, 1), ZIVK_STS_NO_ERR);
    const int next = rand();
    if (time(nullptr) != t) continue;  // the second turned over: try again
    srand(static_cast<unsigned>(t));
    EXPECT_EQ(next, rand());
    return;
  }
  GTEST_SKIP() << "the clock kept turning over";
}

}  // namespace
