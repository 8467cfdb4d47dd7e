// The walk every columnar kernel with a null vector shares: rows in blocks of 8, the 8
// flag bytes of a block read as one 64-bit word, a clean block (no flag set, or no null
// vector) taken whole on the fast path, a mixed block row by row, then the len % 8 tail
// rows one by one. A null row is never handed to the kernel.
#pragma once

#include <stdint.h>
#include <string.h>

namespace zivks::columnar {

inline constexpr int32_t kBlockRows = 8;

// The 8 flag bytes of the block at row i, as one word: zero when no row is null.
inline uint64_t block_flags(const int8_t* nulls, int64_t i) {
  uint64_t w;
  memcpy(&w, nulls + i, sizeof w);
  return w;
}

// clean(i) for every block of rows i .. i + 7 without a null row; row(i) for each row
// that is not null in the other blocks; tail(i) for each tail row that is not null.
template <class Clean, class Row, class Tail>
inline void walk_rows(int32_t len, const int8_t* nulls, Clean&& clean, Row&& row, Tail&& tail) {
  const int64_t blocks_end = len & ~int64_t{kBlockRows - 1};
  int64_t i = 0;
  for (; i < blocks_end; i += kBlockRows) {
    if (nulls == nullptr || block_flags(nulls, i) == 0) {
      clean(i);
      continue;
    }
    for (int64_t r = i; r < i + kBlockRows; ++r)
      if (nulls[r] == 0) row(r);
  }
  for (; i < len; ++i)
    if (nulls == nullptr || nulls[i] == 0) tail(i);
}

// The same walk for kernels whose rows are alike wherever they lie: one(i) for every row
// that is not null, a clean block as 8 calls in a row.
template <class One>
inline void each_row(int32_t len, const int8_t* nulls, One&& one) {
  walk_rows(
      len, nulls,
      [&](int64_t i) {
        for (int r = 0; r < kBlockRows; ++r) one(i + r);
      },
      one, one);
}

}  // namespace zivks::columnar
