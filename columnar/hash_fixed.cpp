// Fixed-width hashes, one accumulate round of the 64-bit hash per row, and the folding
// of two hash columns.
#include "columnar/rows.h"
#include "columnar/xxh64.h"
#include "core/frame.h"

namespace {

using namespace zivks;

// Every NaN hashes as the canonical NaN bits, whose round is 0xA7551CC48D5C0000.
constexpr uint64_t kCanonicalNan = 0x7FF8000000000000ull;
// The hashes of a true and a false byte.
constexpr uint64_t kTrueHash = 1231;
constexpr uint64_t kFalseHash = 1237;

// A signed value as the 64-bit key of the round: sign-extended.
template <class T>
inline uint64_t key_hash(T v) {
  return xxh64::round(0, static_cast<uint64_t>(static_cast<int64_t>(v)));
}

// The NaN test is a select, not a branch, so that rows run in vectors.
inline uint64_t key_hash(double v) {
  uint64_t bits;
  memcpy(&bits, &v, sizeof bits);
  return xxh64::round(0, v != v ? kCanonicalNan : bits);
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
  // x * 31 is (x << 5) - x. Rows are independent, so a wide register's call takes
  // kBlocks blocks of 8 rows.
  for_blocks<columnar::kBlockRows>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<uint64_t, decltype(w)::value>;
        const simd::shift_count<uint64_t, V::kBlocks> by5(5);
        for (int k = 0; k < columnar::kBlockRows * V::kBlocks; k += V::kLanes) {
          const V x = simd::load<V>(src1 + i + k), y = simd::load<V>(src2 + i + k);
          simd::store(dst + i + k, simd::add_wrap(simd::sub_wrap(simd::shl(x, by5), x), y));
        }
      },
      [&](int64_t i) { dst[i] = src1[i] * kCombineFactor + src2[i]; });
  return ZIVK_STS_NO_ERR;
}
