// The machinery the counting, radix and top-k sorts share: 8-bit digits, histograms
// cleared through ZIVKS_Zero_32s, running sums that turn counts into end positions in
// either direction, the stable backward scatter, whole digit passes, the 128-bit copy
// back, the sign bias, the counting sort of 8- and 16-bit keys with its runs, and the
// Init of a radix work buffer. Each stage is written once here; the families say which
// keys, buckets and destinations it works on.
#pragma once

#include <stdint.h>
#include <string.h>

#include <type_traits>

#include "core/handles.h"
#include "core/simd/simd.h"
#include "zivks.h"

namespace zivks::sort {

// ---- Digits

inline constexpr int32_t kDigitBits = 8;
// Counters of one digit histogram.
inline constexpr int32_t kDigitCount = 256;

// Returns the 8-bit digit of `key` that starts at bit `shift`.
template <class U>
inline uint32_t digit(U key, int shift) {
  return static_cast<uint32_t>(key >> shift) & (kDigitCount - 1);
}

// Which way the running sums go: rising puts digit 0 first (an ascending pass),
// falling puts the largest bucket first (a descending pass).
enum class Order { rising, falling };

// ---- Histograms

// Clears `n` counters the way every sort of the family does: by ZIVKS_Zero_32s.
inline void clear(int32_t* counts, int32_t n) { ZIVKS_Zero_32s(counts, n); }

// Adds one to counts[bucket(i)] for every i from 0 to n-1, walking forward. A 256-entry
// histogram is counted in four interleaved tables and summed, so neighbouring keys with
// the same digit do not wait on each other's store.
template <class Bucket>
inline void count(int32_t* counts, int32_t nbuckets, int32_t n, Bucket bucket) {
  if (nbuckets != kDigitCount || n < 4 * kDigitCount) {
    for (int32_t i = 0; i < n; ++i) ++counts[bucket(i)];
    return;
  }
  int32_t part[4][kDigitCount] = {};
  int32_t i = 0;
  for (; i + 4 <= n; i += 4) {
    ++part[0][bucket(i)];
    ++part[1][bucket(i + 1)];
    ++part[2][bucket(i + 2)];
    ++part[3][bucket(i + 3)];
  }
  for (; i < n; ++i) ++part[0][bucket(i)];
  for (int32_t d = 0; d < kDigitCount; ++d) counts[d] += part[0][d] + part[1][d] + part[2][d] + part[3][d];
}

// ---- Running sums

// Turns counts into end positions. Rising: counts[d] becomes the number of entries
// with a bucket of d or less. Falling: the number with a bucket of d or more.
inline void end_positions(int32_t* counts, int32_t nbuckets, Order order) {
  int32_t sum = 0;
  if (order == Order::rising) {
    for (int32_t d = 0; d < nbuckets; ++d) counts[d] = sum += counts[d];
  } else {
    for (int32_t d = nbuckets - 1; d >= 0; --d) counts[d] = sum += counts[d];
  }
}

// ---- Stable backward scatter

// For i from n-1 down to 0: lowers counts[bucket(i)] by one and calls place(i, c) with
// the lowered value c, the entry's place. With end positions this keeps equal buckets
// in input order.
template <class Bucket, class Place>
inline void scatter_backward(int32_t* counts, int32_t n, Bucket bucket, Place place) {
  for (int32_t i = n - 1; i >= 0; --i) place(i, --counts[bucket(i)]);
}

// ---- Digit passes

// The histograms of every digit of keys[0..n), one per pass, counted in one forward
// walk. A pass sees the same keys in another order, so its histogram is the one
// counted here: the keys are read once for all passes instead of once a pass.
// Four-byte keys count in two sets of tables, alternate keys in each, so that
// neighbouring keys with the same digit do not wait on each other's store.
template <class U>
struct DigitCounts {
  static constexpr int kPasses = static_cast<int>(sizeof(U));
  static constexpr int kSets = sizeof(U) == 4 ? 2 : 1;
  int32_t of[kPasses][kDigitCount];

  DigitCounts(const U* keys, int32_t n) {
    int32_t part[kSets][kPasses][kDigitCount];
    clear(&part[0][0][0], kSets * kPasses * kDigitCount);
    int32_t i = 0;
    for (; i + kSets <= n; i += kSets)
      for (int s = 0; s < kSets; ++s)
        for (int p = 0; p < kPasses; ++p) ++part[s][p][digit(keys[i + s], p * kDigitBits)];
    for (; i < n; ++i)
      for (int p = 0; p < kPasses; ++p) ++part[0][p][digit(keys[i], p * kDigitBits)];
    for (int p = 0; p < kPasses; ++p)
      for (int32_t d = 0; d < kDigitCount; ++d) {
        int32_t sum = 0;
        for (int s = 0; s < kSets; ++s) sum += part[s][p][d];
        of[p][d] = sum;
      }
  }
};

// Pass `pass` over keys[0..n), whose histogram for that pass is `counts`: forms end
// positions in `order` and scatters backward through place(i, c). `counts` is used up.
template <class U, class Place>
inline void digit_pass(int32_t* counts, const U* keys, int32_t n, int pass, Order order, Place place) {
  end_positions(counts, kDigitCount, order);
  const int shift = pass * kDigitBits;
  scatter_backward(counts, n, [keys, shift](int32_t i) { return digit(keys[i], shift); }, place);
}

// ---- Copies and the sign bias

// Copies n elements from src to dst 128 bits at a time, then the tail one by one.
template <class T>
inline void copy_back(T* dst, const T* src, int32_t n) {
  using V = simd::vec<T, 1>;
  constexpr int32_t kLanes = 16 / sizeof(T);
  int32_t i = 0;
  for (; i + kLanes <= n; i += kLanes) simd::store(dst + i, simd::load<V>(src + i));
  for (; i < n; ++i) dst[i] = src[i];
}

// The constant whose addition flips the sign bit of an unsigned key of type U.
template <class U>
inline constexpr U kSignBit = U{1} << (8 * sizeof(U) - 1);

// Adds kSignBit to every element in place with wrap-around, 128 bits at a time and then
// the tail: the bias that turns signed order into unsigned order and back.
template <class U>
inline void add_sign_bias(U* p, int32_t n) {
  static_assert(std::is_unsigned_v<U>);
  using V = simd::vec<U, 1>;
  constexpr int32_t kLanes = 16 / sizeof(U);
  const V bias = simd::splat<V>(kSignBit<U>);
  int32_t i = 0;
  for (; i + kLanes <= n; i += kLanes) simd::store(p + i, simd::add_wrap(simd::load<V>(p + i), bias));
  for (; i < n; ++i) p[i] = static_cast<U>(p[i] + kSignBit<U>);
}

// ---- Counting sorts of narrow keys

// The table of a counting sort: one counter per value of an 8- or 16-bit key, indexed
// by the key plus a bias that puts the least signed key at counter 0.
template <class T>
struct CountTable {
  static_assert(sizeof(T) <= 2);
  static constexpr int32_t kSize = int32_t{1} << (8 * sizeof(T));
  static constexpr int32_t kBias = std::is_signed_v<T> ? kSize / 2 : 0;
  static int32_t index(T key) { return static_cast<int32_t>(key) + kBias; }
  static T value(int32_t index) { return static_cast<T>(index - kBias); }
};

// Walks the counters of a filled table of n entries from the least value up (rising) or
// from the largest down (falling) and calls run(value, count) for every counter above 0.
// Groups of kRunGroup empty counters are passed over with one test, and the walk stops
// once all n entries are out: a short array leaves most of a table empty.
inline constexpr int32_t kRunGroup = 16;

// Whether any of the kRunGroup counters from p is above 0 (counters are never negative).
inline bool any_counted(const int32_t* p) {
  using V = simd::vec<int32_t, 1>;
  V seen = simd::load<V>(p);
  for (int32_t k = V::kLanes; k < kRunGroup; k += V::kLanes) seen = simd::bit_or(seen, simd::load<V>(p + k));
  return simd::any_true(seen);
}

template <class T, class Run>
inline void for_each_run(const int32_t* counts, int32_t n, Order order, Run run) {
  using Table = CountTable<T>;
  static_assert(Table::kSize % kRunGroup == 0);
  const bool rising = order == Order::rising;
  int32_t left = n;
  for (int32_t g = 0; g < Table::kSize && left > 0; g += kRunGroup) {
    const int32_t first = rising ? g : Table::kSize - kRunGroup - g;
    if (!any_counted(counts + first)) continue;
    for (int32_t k = 0; k < kRunGroup; ++k) {
      const int32_t d = rising ? first + k : first + kRunGroup - 1 - k;
      if (counts[d] > 0) {
        run(Table::value(d), counts[d]);
        left -= counts[d];
      }
    }
  }
}

// ---- Runs of one value

// Writes `run` copies of v at p: one by one up to a run of kShortRun, from there on
// 8 elements per 128-bit store while a whole store fits, and the rest one by one.
inline constexpr int32_t kShortRun = 13;

template <class T>
inline void write_run(T* p, int32_t run, T v) {
  static_assert(sizeof(T) == 2);
  int32_t i = 0;
  if (run > kShortRun) {
    using V = simd::vec<T, 1>;
    const V all = simd::splat<V>(v);
    for (; i + 8 <= run; i += 8) simd::store(p + i, all);
  }
  for (; i < run; ++i) p[i] = v;
}

// Sorts a[0..n) of 8- or 16-bit keys by counting into `counts` (a table of
// CountTable<T>::kSize counters that the caller has cleared) and writing the runs in
// `order`: 8-bit runs by memset (up to kShortRun byte by byte), 16-bit runs by write_run.
template <class T>
inline void counting_sort(T* a, int32_t n, int32_t* counts, Order order) {
  using Table = CountTable<T>;
  count(counts, Table::kSize, n, [a](int32_t i) { return Table::index(a[i]); });
  T* out = a;
  for_each_run<T>(counts, n, order, [&out](T v, int32_t run) {
    if constexpr (sizeof(T) == 1) {
      if (run <= kShortRun) {
        for (int32_t i = 0; i < run; ++i) out[i] = v;
      } else {
        memset(out, static_cast<uint8_t>(v), static_cast<size_t>(run));
      }
    } else {
      write_run(out, run, v);
    }
    out += run;
  });
}

// ---- Work buffers

// The Init of a radix family: policy null, then len < 1, then a dataType outside the
// nine; then a block of bytes(len, dataType) from ZIVKS_Malloc_8u into *policy. A size
// past the int32 range reaches the allocator as kNoSize and comes back as
// ZIVK_STS_MALLOC_ERR.
inline ZIVKStatus init_work_buffer(int32_t len, ZIVKDataType data_type, uint8_t** policy,
                                   int32_t (*bytes)(int32_t len, int32_t data_type)) {
  const int32_t dt = static_cast<int32_t>(data_type);
  if (const ZIVKStatus st = handles::first_failure({{policy == nullptr, ZIVK_STS_NULL_PTR_ERR},
                                                    {len < 1, ZIVK_STS_SIZE_ERR},
                                                    {!handles::kAllDataTypes.has(dt), ZIVK_STS_DATA_TYPE_ERR}}))
    return st;
  return handles::allocate(bytes(len, dt), policy);
}

}  // namespace zivks::sort
