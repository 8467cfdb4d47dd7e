// SortIndexAscend and SortIndexDescend: keys sorted in place with the input position of
// each. Equal keys come in an order that depends on rand(), so only what holds for any
// pivots is checked: dstIdx a permutation that the keys agree with, sorted keys without
// NaN, and the whole result where the keys are distinct.
#include <time.h>

#include "sort_support.h"

namespace {

template <class F>
void for_each_sort(F f) {
  ZT_FOR_SIX_TYPES(SortIndex, _I)
}

// Statuses, with nothing written on error. Keys 3, 1, 2 come out as 1, 2, 3 from
// positions 1, 2, 0 (Descend: 3, 2, 1 from 0, 2, 1); a single key stays and is its own
// position.
TEST(SortIndex, StatusesAndSmallExamples) {
  for_each_sort([](const auto& s) {
    using T = zt::KeyOf<decltype(s)>;
    using V = std::vector<int32_t>;
    for (int d = 0; d < 2; ++d) {
      SCOPED_TRACE(zt::says(s.name, d));
      T k[4] = {3, 1, 2, 7};
      int32_t idx[4] = {-7, -7, -7, -7};
      zt::expect_null_then_size(2, [&](int p, int32_t n) {
        return s.fn[d](zt::unless(p, 0, k), zt::unless(p, 1, idx), n);
      });
      EXPECT_EQ(std::vector<T>(k, k + 4), (std::vector<T>{3, 1, 2, 7}));
      EXPECT_EQ(V(idx, idx + 4), V(4, -7));
      ASSERT_EQ(s.fn[d](k, idx, 3), ZIVK_STS_NO_ERR);
      EXPECT_EQ(std::vector<T>(k, k + 4), (d ? std::vector<T>{3, 2, 1, 7} : std::vector<T>{1, 2, 3, 7}));
      EXPECT_EQ(V(idx, idx + 4), d ? (V{0, 2, 1, -7}) : (V{1, 2, 0, -7}));
      ASSERT_EQ(s.fn[d](k + 3, idx + 3, 1), ZIVK_STS_NO_ERR);
      EXPECT_TRUE(k[3] == T(7) && idx[3] == 0);
    }
  });
}

// Misaligned and guarded. The key at p after the call is the input key at dstIdx[p], and
// dstIdx holds every position once; without NaN the keys are in order. Distinct keys fix
// the whole result, so there the generic twin must give the same keys and positions.
TEST(SortIndex, PermutationAndOrderForEveryLength) {
  for_each_sort([](const auto& s) {
    using T = zt::KeyOf<decltype(s)>;
    std::vector<zt::Mix> mixes = {zt::kNoNaN, zt::kFew, zt::kDistinct};
    if (zt::kFloat<T>) mixes.push_back(zt::kAny);
    zt::sweep<T>(s.name, mixes, [&](int d, int len, const std::vector<T>& in, zt::Rng& rng) {
      zt::Guarded<T> g = zt::guarded_copy(in, rng() % 4);
      zt::Guarded<int32_t> idx(len, (rng() % 4) * sizeof(int32_t));
      ASSERT_EQ(s.fn[d](g.data(), idx.data(), len), ZIVK_STS_NO_ERR);
      ASSERT_TRUE(g.guards_intact() && idx.guards_intact());
      std::vector<char> seen(len, 0);
      for (int p = 0; p < len; ++p) {
        ASSERT_TRUE(idx[p] >= 0 && idx[p] < len && !seen[idx[p]]) << "dstIdx not a permutation at " << p;
        seen[idx[p]] = 1;
        ASSERT_TRUE(zt::same_bits(g[p], in[idx[p]])) << "key at " << p << " is not the input key at " << idx[p];
      }
      if (std::any_of(in.begin(), in.end(), [](T x) { return x != x; })) return;
      ASSERT_TRUE(zt::in_order(g.data(), len, d == 1));
      if (s.twin[d] && std::set<T>(in.begin(), in.end()).size() == in.size()) {
        zt::Guarded<T> t = zt::guarded_copy(in);
        zt::Guarded<int32_t> ti(len);
        ASSERT_EQ(s.twin[d](t.data(), ti.data(), len), ZIVK_STS_NO_ERR);
        ASSERT_EQ(zt::first_difference(t.data(), g.data(), len), -1) << "generic backend, keys";
        ASSERT_EQ(zt::first_difference(ti.data(), idx.data(), len), -1) << "generic backend, positions";
      }
    });
  });
}

// Keys that all compare equal (one value, zeros of both signs, or NaNs of any payload,
// which equal everything) make one partition around the pivot 0 + rand() % (len - 1),
// drawn right after the call's srand(time(NULL)): the only move is its swap with place 0.
TEST(SortIndex, EqualKeysMoveOnlyThePivot) {
  for_each_sort([](const auto& s) {
    using T = zt::KeyOf<decltype(s)>;
    zt::Rng rng(std::hash<std::string>()(s.name) + 1);
    for (int len : {2, 3, 4, 5, 16, 17, 70, 1000}) {
      std::vector<T> in(len, static_cast<T>(rng()));
      for (T& x : in) {
        if constexpr (zt::kFloat<T>) {
          x = len % 2 ? T(0) : T(NAN);
          if (len % 2 == 0) reinterpret_cast<uint8_t*>(&x)[0] = static_cast<uint8_t>(rng());  // payload
          if (rng() % 2) x = -x;
        }
      }
      for (int d = 0; d < 2; ++d) {
        SCOPED_TRACE(zt::says(s.name, d, len));
        std::vector<T> k = in;
        std::vector<int32_t> idx(len, -1);
        const time_t t = time(nullptr);
        ASSERT_EQ(s.fn[d](k.data(), idx.data(), len), ZIVK_STS_NO_ERR);
        const int p = idx[0];
        ASSERT_TRUE(p >= 0 && p < len - 1) << "pivot at " << p;
        srand(static_cast<unsigned>(t));
        if (time(nullptr) == t) {
          EXPECT_EQ(p, rand() % (len - 1)) << "the pivot drawn";
        }
        for (int i = 1; i < len; ++i) EXPECT_EQ(idx[i], i == p ? 0 : i) << "at " << i;
        std::swap(k[0], k[p]);
        EXPECT_EQ(zt::first_difference(in.data(), k.data(), len), -1);
      }
    }
  });
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
