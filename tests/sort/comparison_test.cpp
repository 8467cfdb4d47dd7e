// SortAscend and SortDescend in place: statuses, sorted permutations, the 16-bit counting
// path from 4096 elements with its counter table taken and given back, and the silent
// qsort fallback when that table cannot be had.
#include "sort_support.h"

namespace {

template <class F>
void for_each_sort(F f) {
  ZT_FOR_SIX_TYPES(Sort, _I)
}

TEST(SortCompare, StatusesInOrderAndRefusedCallsWriteNothing) {
  for_each_sort([](const auto& s) {
    zt::Guarded<zt::KeyOf<decltype(s)>> g(4);
    for (auto fn : s.fn) {
      zt::expect_null_then_size(1, [&](int p, int32_t n) { return fn(zt::unless(p, 0, g.data()), n); });
    }
    EXPECT_TRUE(g.untouched()) << s.name;
  });
}

// Misaligned and guarded, each mix of keys. The result is a permutation of the input bit
// for bit, and without NaN it is in order: for integers exactly std::sort, for floats
// with the two zeros free. The generic twin gives the same bits, NaNs included (one
// qsort, one comparator rule). From 4096 elements the 16-bit sorts count in a table of
// 65536 int32 taken from the allocator and given back before they return; below that,
// and when the table is refused (every other call here), they sort by qsort without a
// word about it. No other call allocates.
TEST(SortCompare, SortedPermutationsAndTheCountingTable) {
  auto& r = zt::core_record();
  for_each_sort([&](const auto& s) {
    using T = zt::KeyOf<decltype(s)>;
    std::vector<zt::Mix> mixes = {zt::kNoNaN, zt::kFew, zt::kRuns};
    if (zt::kFloat<T>) mixes.push_back(zt::kAny);
    bool refuse = false;
    zt::sweep<T>(s.name, mixes, [&](int d, int len, const std::vector<T>& in, zt::Rng& rng) {
      zt::Guarded<T> g = zt::guarded_copy(in, rng() % 4);
      r = {};
      r.fail_next = refuse = !refuse;
      ASSERT_EQ(s.fn[d](g.data(), len), ZIVK_STS_NO_ERR);
      const bool asks = sizeof(T) == 2 && len >= 4096;
      EXPECT_TRUE(r.malloc_calls == asks && r.last_size == (asks ? 65536 * 4 : 0) && r.free_calls == (asks && !refuse))
          << "refused " << refuse << ": " << r.malloc_calls << " " << r.last_size << " " << r.free_calls;
      r = {};
      ASSERT_TRUE(g.guards_intact());
      std::vector<zt::BitsOf<T>> a(len), b(len);
      memcpy(a.data(), in.data(), len * sizeof(T));
      memcpy(b.data(), g.data(), len * sizeof(T));
      std::sort(a.begin(), a.end());
      std::sort(b.begin(), b.end());
      ASSERT_TRUE(a == b) << "not a permutation of the input";
      if (std::none_of(in.begin(), in.end(), [](T x) { return x != x; })) {
        ASSERT_TRUE(zt::in_order(g.data(), len, d == 1));
      }
      if (s.twin[d]) {
        zt::Guarded<T> t = zt::guarded_copy(in);
        ASSERT_EQ(s.twin[d](t.data(), len), ZIVK_STS_NO_ERR);
        ASSERT_EQ(zt::first_difference(t.data(), g.data(), len), -1) << "generic backend";
      }
    });
  });
}

}  // namespace
