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
// that is not null. A run of clean blocks is one loop over its rows, which the compiler
// can take in vectors.
template <class One>
inline void each_row(int32_t len, const int8_t* nulls, One&& one) {
  const int64_t blocks_end = len & ~int64_t{kBlockRows - 1};
  int64_t i = 0;
  while (i < blocks_end) {
    int64_t clean_end = i;
    while (clean_end < blocks_end && (nulls == nullptr || block_flags(nulls, clean_end) == 0))
      clean_end += kBlockRows;
    for (int64_t r = i; r < clean_end; ++r) one(r);
    if (clean_end == blocks_end) {
      i = clean_end;
      break;
    }
    for (int64_t r = clean_end; r < clean_end + kBlockRows; ++r)
      if (nulls[r] == 0) one(r);
    i = clean_end + kBlockRows;
  }
  for (; i < len; ++i)
    if (nulls == nullptr || nulls[i] == 0) one(i);
}

}  // namespace zivks::columnar
