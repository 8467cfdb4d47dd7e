// The varchar hash: the whole 64-bit hash of each row's bytes.
#include "columnar/rows.h"
#include "columnar/xxh64.h"
#include "core/frame.h"

ZIVKS_EXPORT ZIVKStatus ZIVKS_Hash_varchar(const uint8_t* src, const int32_t* offsets, int32_t len,
                                           const int8_t* nulls, uint64_t* dst) {
  using namespace zivks;
  if (const ZIVKStatus st = check_ptrs_len(len, dst, offsets, src)) return st;
  // A row's length is a signed 32-bit difference of its offsets.
  columnar::each_row(len, nulls, [=](int64_t i) {
    const int32_t n = static_cast<int32_t>(static_cast<uint32_t>(offsets[i + 1]) - static_cast<uint32_t>(offsets[i]));
    dst[i] = xxh64::hash(src + offsets[i], n);
  });
  return ZIVK_STS_NO_ERR;
}
