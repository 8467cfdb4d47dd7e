// SortAscend and SortDescend in place: statuses, sorted permutations against std::sort,
// the 16-bit counting path from 4096 elements with its counter table taken and given
// back, and the silent qsort fallback when that table cannot be had.
#include <algorithm>
#include <functional>
#include <limits>
#include <string>

#include "support/zt.h"

namespace {

template <class T>
using SortFn = ZIVKStatus (*)(T*, int32_t);

template <class T>
struct Sorter {
  std::string name;
  SortFn<T> fn, twin;
  bool descend;
};

#define ZT_SORTER(dir, code, T, desc) \
  Sorter<T> { #dir "_" #code, ZIVKS_Sort##dir##_##code##_I, ZT_TWIN(ZIVKS_Sort##dir##_##code##_I), desc }

template <class Fn>
void for_each_sorter(Fn&& f) {
  f(ZT_SORTER(Ascend, 8u, uint8_t, false));
  f(ZT_SORTER(Ascend, 16u, uint16_t, false));
  f(ZT_SORTER(Ascend, 16s, int16_t, false));
  f(ZT_SORTER(Ascend, 32s, int32_t, false));
  f(ZT_SORTER(Ascend, 32f, float, false));
  f(ZT_SORTER(Ascend, 64f, double, false));
  f(ZT_SORTER(Descend, 8u, uint8_t, true));
  f(ZT_SORTER(Descend, 16u, uint16_t, true));
  f(ZT_SORTER(Descend, 16s, int16_t, true));
  f(ZT_SORTER(Descend, 32s, int32_t, true));
  f(ZT_SORTER(Descend, 32f, float, true));
  f(ZT_SORTER(Descend, 64f, double, true));
}

std::vector<int> sort_lengths() {
  std::vector<int> v;
  for (int n = 1; n <= 70; ++n) v.push_back(n);
  for (int n : {127, 128, 129, 255, 256, 257, 1000, 4095, 4096, 4097, 5000}) v.push_back(n);
  return v;
}

template <class T>
constexpr bool kFloat = std::is_floating_point_v<T>;

enum Mix { kAny, kFew, kRuns, kWithNaN };

// Values of one kind. Floats never hold a NaN but in kWithNaN; kFew draws from a handful
// of values (long runs of ties, both zeros for floats), kRuns gives value k a run of
// 1 + k % 31 copies, so the counting path writes runs of every length around 8 and 14.
template <class T>
std::vector<T> values(int len, Mix mix, zt::Rng& rng) {
  std::vector<T> v(len);
  auto any = [&] {
    T x;
    zt::fill_random(&x, 1, rng);
    if constexpr (kFloat<T>) {
      if (mix != kWithNaN && std::isnan(x)) x = rng() % 2 ? T(0) : -T(0);
    }
    return x;
  };
  if (mix == kFew) {
    T pool[5] = {any(), any(), any(), std::numeric_limits<T>::lowest(), std::numeric_limits<T>::max()};
    if constexpr (kFloat<T>) pool[0] = T(0), pool[1] = -T(0);
    for (T& x : v) x = pool[rng() % 5];
  } else if (mix == kRuns) {
    for (int i = 0, k = 0; i < len; ++k) {
      const T x = any();
      for (int c = 0; c <= k % 31 && i < len; ++c) v[i++] = x;
    }
    std::shuffle(v.begin(), v.end(), rng);
  } else {
    for (T& x : v) x = any();
  }
  return v;
}

template <class T>
auto bits_of(const T* p, int n) {
  using B = std::conditional_t<
      sizeof(T) == 1, uint8_t,
      std::conditional_t<sizeof(T) == 2, uint16_t, std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>>>;
  std::vector<B> b(n);
  memcpy(b.data(), p, n * sizeof(T));
  std::sort(b.begin(), b.end());
  return b;
}

// out is a permutation of in, bit for bit; without NaN it is also in order. For integers
// the two together are exactly std::sort; for floats they leave the two zeros free.
template <class T>
void expect_sorted_permutation(const std::vector<T>& in, const T* out, bool descend) {
  const int n = static_cast<int>(in.size());
  ASSERT_EQ(bits_of(in.data(), n), bits_of(out, n)) << "not a permutation of the input";
  if (std::any_of(in.begin(), in.end(), [](T x) { return x != x; })) return;
  for (int i = 0; i + 1 < n; ++i)
    ASSERT_FALSE(descend ? out[i] < out[i + 1] : out[i + 1] < out[i])
        << "out of order at " << i << ": " << +out[i] << ", " << +out[i + 1];
  if constexpr (!kFloat<T>) {  // the oracle itself, spelled out once
    std::vector<T> want = in;
    std::sort(want.begin(), want.end());
    if (descend) std::reverse(want.begin(), want.end());
    ASSERT_EQ(zt::first_difference(want.data(), out, n), -1);
  }
}

template <class T>
void check_statuses(const Sorter<T>& s) {
  SCOPED_TRACE(s.name);
  zt::Guarded<T> g(4);
  for (int32_t n : {4, 0, -1}) EXPECT_EQ(s.fn(nullptr, n), ZIVK_STS_NULL_PTR_ERR) << n;
  for (int32_t n : {0, -1, INT32_MIN}) EXPECT_EQ(s.fn(g.data(), n), ZIVK_STS_SIZE_ERR) << n;
  EXPECT_TRUE(g.untouched());
}

TEST(SortCompare, StatusesInOrderAndRefusedCallsWriteNothing) {
  for_each_sorter([](const auto& s) { check_statuses(s); });
}

// Every length from 1 to 70 and across 128, 256 and 4096, misaligned and guarded, each
// mix of values; the generic twin gives the same bits, NaNs included (one qsort, one
// comparator rule).
template <class T>
void check_sorts(const Sorter<T>& s) {
  zt::Rng rng(std::hash<std::string>()(s.name));
  for (int len : sort_lengths()) {
    for (Mix mix : {kAny, kFew, kRuns, kWithNaN}) {
      if (mix == kWithNaN && !kFloat<T>) continue;
      SCOPED_TRACE(s.name + " len " + std::to_string(len) + " mix " + std::to_string(mix));
      const std::vector<T> in = values<T>(len, mix, rng);
      zt::Guarded<T> g(len, (rng() % 4) * sizeof(T));
      memcpy(g.data(), in.data(), len * sizeof(T));
      ASSERT_EQ(s.fn(g.data(), len), ZIVK_STS_NO_ERR);
      ASSERT_TRUE(g.guards_intact());
      expect_sorted_permutation(in, g.data(), s.descend);
      if (s.twin) {
        zt::Guarded<T> t(len);
        memcpy(t.data(), in.data(), len * sizeof(T));
        ASSERT_EQ(s.twin(t.data(), len), ZIVK_STS_NO_ERR);
        ASSERT_EQ(zt::first_difference(t.data(), g.data(), len), -1) << "generic backend";
      }
    }
  }
}

TEST(SortCompare, SortedPermutationForEveryLength) {
  for_each_sorter([](const auto& s) { check_sorts(s); });
}

// From 4096 elements the 16-bit sorts count in a table of 65536 int32 taken from the
// allocator and given back before they return; below that, and when the table cannot be
// had, they sort by qsort without a word about it. The other types never allocate.
template <class T>
void check_counting(const Sorter<T>& s) {
  auto& r = zt::core_record();
  zt::Rng rng(std::hash<std::string>()(s.name) + 1);
  const bool counts = sizeof(T) == 2;
  for (int len : {4095, 4096, 4097, 6001}) {
    for (bool fail : {false, true}) {
      SCOPED_TRACE(s.name + " len " + std::to_string(len) + (fail ? " table refused" : ""));
      const std::vector<T> in = values<T>(len, kRuns, rng);
      zt::Guarded<T> g(len, (rng() % 4) * sizeof(T));
      memcpy(g.data(), in.data(), len * sizeof(T));
      r = {};
      r.fail_next = fail;
      ASSERT_EQ(s.fn(g.data(), len), ZIVK_STS_NO_ERR);
      const bool asks = counts && len >= 4096;
      EXPECT_EQ(r.malloc_calls, asks ? 1 : 0);
      if (asks) {
        EXPECT_EQ(r.last_size, 65536 * 4);
        EXPECT_EQ(r.free_calls, fail ? 0 : 1);
      } else {
        EXPECT_EQ(r.free_calls, 0);
      }
      r = {};
      ASSERT_TRUE(g.guards_intact());
      expect_sorted_permutation(in, g.data(), s.descend);
    }
  }
}

TEST(SortCompare, SixteenBitCountingPathAndItsFallback) {
  for_each_sorter([](const auto& s) { check_counting(s); });
}

}  // namespace
