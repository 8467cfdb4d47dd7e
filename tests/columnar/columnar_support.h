// What the columnar suites share: an independent XXH64, null vectors of every density,
// the column loop, the check of a hash column and the status checks.
#pragma once

#include <algorithm>
#include <climits>
#include <string>
#include <utility>
#include <vector>

#define XXH_INLINE_ALL
#include <xxhash.h>

#include "support/zt.h"

namespace ct {

constexpr uint64_t kP1 = 0x9E3779B185EBCA87ull, kP2 = 0xC2B2AE3D27D4EB4Full;
constexpr uint64_t kPattern64 = 0xA5A5A5A5A5A5A5A5ull;  // a Guarded buffer's untouched bytes
static_assert(zt::Guarded<uint64_t>::kPattern == 0xA5);

inline uint64_t xxh64(const void* p, size_t n) { return XXH64(p, n, 0); }

struct NullVec {
  std::vector<int8_t> flags;  // any non-zero byte marks a null row
  bool absent = false;        // no vector at all
  const int8_t* ptr() const { return absent ? nullptr : flags.data(); }
  bool null(int i) const { return !absent && flags[i] != 0; }
};

// f(len, nulls, rng) for every test length and every kind of null vector: none, all
// zero, one row in about 30, every other row, every row, one row in each block of 8
// (and in the tail), half of the rows at random.
template <class F>
void for_each_column(F&& f) {
  zt::Rng rng(1);
  for (int len : zt::test_lengths())
    for (int kind = 0; kind < 7; ++kind) {
      NullVec v{std::vector<int8_t>(len, 0), kind == 0};
      const int phase = static_cast<int>(rng() % 2), pick = static_cast<int>(rng() % 8);
      for (int i = 0; i < len; ++i) {
        const bool on = kind == 2 ? rng() % 30 == 0 : kind == 3 ? i % 2 == phase : kind == 4 ? true
                        : kind == 5 ? i % 8 == std::min(pick, len - i / 8 * 8 - 1) : kind == 6 && rng() % 2;
        if (on) v.flags[i] = static_cast<int8_t>(1 + rng() % 255);
      }
      SCOPED_TRACE("len " + std::to_string(len) + ", null vector kind " + std::to_string(kind));
      f(len, static_cast<const NullVec&>(v), rng);
    }
}

// run(fn, dst) with the library's function and then with the generic build's, if there
// is one: the same bits, want(i) in every row that is not null, the preset pattern in
// every null row, nothing written past the column.
template <class Fn, class Run, class Want>
void expect_hashes(Fn fn, Fn twin, int len, const NullVec& nv, Run&& run, Want&& want) {
  zt::Guarded<uint64_t> dst(len), alt(len);
  ASSERT_EQ(run(fn, dst.data()), ZIVK_STS_NO_ERR);
  ASSERT_TRUE(dst.guards_intact());
  for (int i = 0; i < len; ++i) ASSERT_EQ(dst[i], nv.null(i) ? kPattern64 : want(i)) << "row " << i;
  if (twin) {
    ASSERT_EQ(run(twin, alt.data()), ZIVK_STS_NO_ERR);
    ASSERT_EQ(zt::first_difference(dst.data(), alt.data(), len), -1) << "generic build differs";
  }
}

// Statuses in order of checks. call(k, len) makes the call with its pointer argument k
// null (k < 0: none) and returns the status and whether its outputs stayed untouched. A
// null pointer gives 1 whatever len is, then len < 1 gives 2, and a refused call writes
// nothing.
template <class Call>
void expect_statuses(int pointers, Call&& call) {
  for (int32_t len : {1, 9, 0, -1, INT32_MIN})
    for (int k = -1; k < pointers; ++k) {
      const auto [st, untouched] = call(k, len);
      const bool refused = k >= 0 || len < 1;
      EXPECT_EQ(st, k >= 0 ? ZIVK_STS_NULL_PTR_ERR : len < 1 ? ZIVK_STS_SIZE_ERR : ZIVK_STS_NO_ERR) << k << ", " << len;
      EXPECT_TRUE(untouched || !refused) << "written after an error: " << k << ", " << len;
    }
}

// expect_statuses for fn(src, len, nulls, dst) with a Guarded dst of D, the null vector
// given or not by turns.
template <class S, class D, class Fn>
void expect_row_statuses(Fn fn) {
  static const std::vector<S> src(16);
  static const std::vector<int8_t> flags(16, 0);
  bool with_nulls = false;
  expect_statuses(2, [&](int k, int32_t len) {
    zt::Guarded<D> dst(9);
    with_nulls = !with_nulls;
    const ZIVKStatus st =
        fn(k == 0 ? nullptr : src.data(), len, with_nulls ? flags.data() : nullptr, k == 1 ? nullptr : dst.data());
    return std::make_pair(st, dst.untouched());
  });
}

}  // namespace ct
