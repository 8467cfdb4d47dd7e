// Decimal hashes: a decimal64 is its own hash; a decimal128 hashes each word, its sign
// cleared, by the whole 64-bit hash, and XORs the two.
#include "columnar/rows.h"
#include "columnar/xxh64.h"
#include "core/frame.h"

namespace {

using namespace zivks;

constexpr uint64_t kDecimalSign = 0x8000000000000000ull;

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_Hash_decimal64(const int64_t* src, int32_t len, const int8_t* nulls, uint64_t* dst) {
  if (const ZIVKStatus st = check_ptrs_len(len, dst, src)) return st;
  if (nulls == nullptr) return ZIVKS_Copy_64s(src, reinterpret_cast<int64_t*>(dst), len);
  columnar::each_row(len, nulls, [src, dst](int64_t i) { dst[i] = static_cast<uint64_t>(src[i]); });
  return ZIVK_STS_NO_ERR;
}

// +x and -x hash alike: the sign takes no part.
ZIVKS_EXPORT ZIVKStatus ZIVKS_Hash_decimal128(const ZIVKDecimal128* src, int32_t len, const int8_t* nulls,
                                              uint64_t* dst) {
  if (const ZIVKStatus st = check_ptrs_len(len, dst, src)) return st;
  columnar::each_row(len, nulls, [src, dst](int64_t i) {
    dst[i] = xxh64::hash_word(src[i].lo) ^ xxh64::hash_word(src[i].hi & ~kDecimalSign);
  });
  return ZIVK_STS_NO_ERR;
}
