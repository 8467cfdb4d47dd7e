// FindNearestOne_16u and FindNearest_16u: the entry of an ascending table nearest to a
// value, by binary search. The table's order is the caller's promise and isn't checked.
#include "core/frame.h"

namespace {

using namespace zivks;

ZIVKStatus find_nearest_one(uint16_t val, uint16_t* nearest, int32_t* indx, const uint16_t* table,
                            int32_t table_len) {
  if (const ZIVKStatus st = check_ptrs_len(table_len, nearest, indx, table)) return st;
  int32_t lo = 0, hi = table_len - 1;
  while (hi - lo > 1) {
    const int32_t mid = lo + (hi - lo) / 2;
    if (table[mid] == val) {  // an exact probe ends the search, whichever equal entry it is
      *nearest = val;
      *indx = mid;
      return ZIVK_STS_NO_ERR;
    }
    if (val > table[mid]) lo = mid;
    else hi = mid;
  }
  // A tie between the two last candidates goes to the lower index.
  const int32_t dlo = val > table[lo] ? val - table[lo] : table[lo] - val;
  const int32_t dhi = val > table[hi] ? val - table[hi] : table[hi] - val;
  const int32_t at = dlo <= dhi ? lo : hi;
  *nearest = table[at];
  *indx = at;
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_FindNearestOne_16u(uint16_t val, uint16_t* pNearest, int32_t* pIndx,
                                                 const uint16_t* table, int32_t tableLen) {
  return find_nearest_one(val, pNearest, pIndx, table, tableLen);
}

// Each element through FindNearestOne_16u; its status is not passed on.
ZIVKS_EXPORT ZIVKStatus ZIVKS_FindNearest_16u(const uint16_t* src, uint16_t* dst, int32_t* dstIndx,
                                              int32_t len, const uint16_t* table, int32_t tableLen) {
  if (any_null(src, dst, dstIndx, table)) return ZIVK_STS_NULL_PTR_ERR;
  if (len < 1 || tableLen < 1) return ZIVK_STS_SIZE_ERR;
  for (int64_t i = 0; i < len; ++i) ZIVKS_FindNearestOne_16u(src[i], &dst[i], &dstIndx[i], table, tableLen);
  return ZIVK_STS_NO_ERR;
}
