// Fixed-width hashes, one accumulate round of the 64-bit hash per row, and the folding
// of two hash columns.
#include <math.h>

#include "columnar/rows.h"
#include "columnar/xxh64.h"
#include "core/frame.h"

namespace {

using namespace zivks;

// The round of the canonical NaN bits 0x7FF8000000000000: every NaN's hash.
constexpr uint64_t kNanHash = 0xA7551CC48D5C0000ull;
// The hashes of a true and a false byte.
constexpr uint64_t kTrueHash = 1231;
constexpr uint64_t kFalseHash = 1237;

// A signed value as the 64-bit key of the round: sign-extended.
template <class T>
inline uint64_t key_hash(T v) {
  return xxh64::round(0, static_cast<uint64_t>(static_cast<int64_t>(v)));
}

inline uint64_t key_hash(double v) {
  if (isnan(v)) return kNanHash;
  uint64_t bits;
  memcpy(&bits, &v, sizeof bits);
  return xxh64::round(0, bits);
}

inline uint64_t key_hash(uint8_t v) { return v != 0 ? kTrueHash : kFalseHash; }

template <class T>
ZIVKStatus hash_rows(const T* src, int32_t len, const int8_t* nulls, uint64_t* dst) {
  if (const ZIVKStatus st = check_ptrs_len(len, dst, src)) return st;
  columnar::each_row(len, nulls, [src, dst](int64_t i) { dst[i] = key_hash(src[i]); });
  return ZIVK_STS_NO_ERR;
}

// The multiplier of the fold.
constexpr uint64_t kCombineFactor = 31;

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_Hash_16s(const int16_t* src, int32_t len, const int8_t* nulls, uint64_t* dst) {
  return hash_rows(src, len, nulls, dst);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Hash_32s(const int32_t* src, int32_t len, const int8_t* nulls, uint64_t* dst) {
  return hash_rows(src, len, nulls, dst);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Hash_64s(const int64_t* src, int32_t len, const int8_t* nulls, uint64_t* dst) {
  return hash_rows(src, len, nulls, dst);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Hash_64f(const double* src, int32_t len, const int8_t* nulls, uint64_t* dst) {
  return hash_rows(src, len, nulls, dst);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Hash_bool(const uint8_t* src, int32_t len, const int8_t* nulls, uint64_t* dst) {
  return hash_rows(src, len, nulls, dst);
}

ZIVKS_EXPORT ZIVKStatus ZIVKS_CombineHash(const uint64_t* src1, const uint64_t* src2, int32_t len, uint64_t* dst) {
  if (const ZIVKStatus st = check_ptrs_len(len, src2, dst, src1)) return st;
  columnar::each_row(len, nullptr, [=](int64_t i) { dst[i] = src1[i] * kCombineFactor + src2[i]; });
  return ZIVK_STS_NO_ERR;
}
