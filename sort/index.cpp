// Index sorts: keys sorted in place by a randomised three-way quicksort that carries
// each key's input position along. Not stable; the pivots come from rand(), reseeded
// from the clock on every call.
#include <stdlib.h>
#include <time.h>

#include "core/frame.h"
#include "sort/digits.h"
#include "sort/quick.h"

namespace {

using namespace zivks;
using sort::Order;

template <class T, Order kOrder>
ZIVKStatus sort_index(T* keys, int32_t* idx, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, idx, keys)) return st;
  for (int32_t i = 0; i < len; ++i) idx[i] = i;
  srand(static_cast<unsigned>(time(nullptr)));
  // A float NaN fails both tests and so counts as equal to the pivot.
  const auto before = [](T x, T v) { return kOrder == Order::rising ? x < v : x > v; };
  sort::quicksort(sort::Entries<T>{keys, idx}, 0, len - 1, before);
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the Ascend and Descend names, the key type.
#define ZIVKS_SORT_INDEX(ascend, descend, type)                                  \
  ZIVKS_EXPORT ZIVKStatus ascend(type* srcDst, int32_t* dstIdx, int32_t len) {  \
    return sort_index<type, Order::rising>(srcDst, dstIdx, len);                \
  }                                                                             \
  ZIVKS_EXPORT ZIVKStatus descend(type* srcDst, int32_t* dstIdx, int32_t len) { \
    return sort_index<type, Order::falling>(srcDst, dstIdx, len);               \
  }

ZIVKS_SORT_INDEX(ZIVKS_SortIndexAscend_8u_I, ZIVKS_SortIndexDescend_8u_I, uint8_t)
ZIVKS_SORT_INDEX(ZIVKS_SortIndexAscend_16u_I, ZIVKS_SortIndexDescend_16u_I, uint16_t)
ZIVKS_SORT_INDEX(ZIVKS_SortIndexAscend_16s_I, ZIVKS_SortIndexDescend_16s_I, int16_t)
ZIVKS_SORT_INDEX(ZIVKS_SortIndexAscend_32s_I, ZIVKS_SortIndexDescend_32s_I, int32_t)
ZIVKS_SORT_INDEX(ZIVKS_SortIndexAscend_32f_I, ZIVKS_SortIndexDescend_32f_I, float)
ZIVKS_SORT_INDEX(ZIVKS_SortIndexAscend_64f_I, ZIVKS_SortIndexDescend_64f_I, double)
