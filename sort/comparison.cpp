// Comparison sorts in place without a work buffer: 8u counts, the 16-bit types count
// from len 4096 when a table of 65536 counters is to be had, everything else goes to
// the C library's qsort with a one-sided comparator.
#include <stdlib.h>
#include <string.h>

#include "core/frame.h"
#include "core/handles.h"
#include "sort/digits.h"

namespace {

using namespace zivks;
using sort::Order;

// Lengths from which the 16-bit sorts count instead of calling qsort.
constexpr int32_t kCountingFrom = 4096;

// ---- One-sided comparators
// 1 when a belongs after b, else 0; never negative. A float NaN on either side gives 0,
// so it compares equal to everything, and so do -0.0 and +0.0.
template <class T, Order kOrder>
int one_sided(const void* a, const void* b) {
  T x, y;
  memcpy(&x, a, sizeof x);
  memcpy(&y, b, sizeof y);
  return kOrder == Order::rising ? x > y : x < y;
}

template <class T, Order kOrder>
void qsort_all(T* a, int32_t len) {
  qsort(a, static_cast<size_t>(len), sizeof(T), one_sided<T, kOrder>);
}

// 8u: a local table, cleared by whole-register stores (a short array pays for the clear
// more than for anything else), and runs written by memset, short ones byte by byte.
template <class T, Order kOrder>
ZIVKStatus sort_8u(T* a, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, a)) return st;
  int32_t counts[sort::CountTable<T>::kSize];
  using V = simd::vec<int32_t, simd::kWide>;
  for (int32_t d = 0; d < sort::CountTable<T>::kSize; d += V::kLanes) simd::store(counts + d, simd::zeros<V>());
  sort::counting_sort(a, len, counts, kOrder);
  return ZIVK_STS_NO_ERR;
}

// 16u, 16s: the counting sort of the radix family in a table that lives for the call;
// a refused table silently falls back to qsort, with the same sorted result.
template <class T, Order kOrder>
ZIVKStatus sort_16(T* a, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, a)) return st;
  if (len >= kCountingFrom) {
    constexpr int32_t kCounters = sort::CountTable<T>::kSize;
    const handles::WorkBuffer<int32_t> table(ZIVKS_Malloc_32s, kCounters);
    if (table.ok()) {
      memset(table.get(), 0, sizeof(int32_t) * kCounters);
      sort::counting_sort(a, len, table.get(), kOrder);
      return ZIVK_STS_NO_ERR;
    }
  }
  qsort_all<T, kOrder>(a, len);
  return ZIVK_STS_NO_ERR;
}

template <class T, Order kOrder>
ZIVKStatus sort_qsort(T* a, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, a)) return st;
  qsort_all<T, kOrder>(a, len);
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the Ascend and Descend names, the body, the element type.
#define ZIVKS_SORT(ascend, descend, body, type)                  \
  ZIVKS_EXPORT ZIVKStatus ascend(type* srcDst, int32_t len) {    \
    return body<type, Order::rising>(srcDst, len);               \
  }                                                              \
  ZIVKS_EXPORT ZIVKStatus descend(type* srcDst, int32_t len) {   \
    return body<type, Order::falling>(srcDst, len);              \
  }

ZIVKS_SORT(ZIVKS_SortAscend_8u_I, ZIVKS_SortDescend_8u_I, sort_8u, uint8_t)
ZIVKS_SORT(ZIVKS_SortAscend_16u_I, ZIVKS_SortDescend_16u_I, sort_16, uint16_t)
ZIVKS_SORT(ZIVKS_SortAscend_16s_I, ZIVKS_SortDescend_16s_I, sort_16, int16_t)
ZIVKS_SORT(ZIVKS_SortAscend_32s_I, ZIVKS_SortDescend_32s_I, sort_qsort, int32_t)
ZIVKS_SORT(ZIVKS_SortAscend_32f_I, ZIVKS_SortDescend_32f_I, sort_qsort, float)
ZIVKS_SORT(ZIVKS_SortAscend_64f_I, ZIVKS_SortDescend_64f_I, sort_qsort, double)
