// The varchar hash: the whole 64-bit hash of each row's bytes. A clean block hashes its
// 8 rows side by side.
#include "columnar/rows.h"
#include "columnar/xxh64.h"
#include "core/frame.h"

namespace {

using namespace zivks;

// Row i: its first byte and its length, a signed 32-bit difference of its offsets.
struct Rows {
  const uint8_t* src;
  const int32_t* offsets;
  const uint8_t* start(int64_t i) const { return src + offsets[i]; }
  int64_t length(int64_t i) const {
    return static_cast<int32_t>(static_cast<uint32_t>(offsets[i + 1]) - static_cast<uint32_t>(offsets[i]));
  }
};

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_Hash_varchar(const uint8_t* src, const int32_t* offsets, int32_t len,
                                           const int8_t* nulls, uint64_t* dst) {
  if (const ZIVKStatus st = check_ptrs_len(len, dst, offsets, src)) return st;
  const Rows rows{src, offsets};
  const auto one = [&](int64_t i) { dst[i] = xxh64::hash(rows.start(i), rows.length(i)); };
  const auto block = [&](int64_t i) {
    constexpr int R = columnar::kBlockRows;
    const uint8_t* p[R];
    int64_t n[R];
    uint64_t h[R];
    for (int r = 0; r < R; ++r) {
      p[r] = rows.start(i + r);
      n[r] = rows.length(i + r);
    }
    xxh64::hash_rows<R>(p, n, h);
    for (int r = 0; r < R; ++r) dst[i + r] = h[r];
  };
  columnar::walk_rows(len, nulls, block, one, one);
  return ZIVK_STS_NO_ERR;
}
