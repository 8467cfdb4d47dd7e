// Hash_varchar: XXH64 of each row, null rows left as they were.
#include <numeric>

#include "columnar_support.h"

namespace {

// A column of rows with the given lengths, back to back from byte `first` (at least 1)
// of a buffer that ends with the last row, so that a read past it is out of bounds.
struct Column {
  std::vector<uint8_t> bytes;
  std::vector<int32_t> offsets;
  Column(const std::vector<int>& lens, int first, zt::Rng& rng)
      : bytes(first + std::accumulate(lens.begin(), lens.end(), size_t{0})), offsets{first} {
    for (int n : lens) offsets.push_back(offsets.back() + n);
    zt::fill_random(bytes.data(), bytes.size(), rng);
  }
  uint64_t want(int i) const { return ct::xxh64(bytes.data() + offsets[i], offsets[i + 1] - offsets[i]); }
};

TEST(HashVarchar, Statuses) {
  ct::expect_statuses(3, [](int k, int32_t len) {
    static const uint8_t src[8] = {};
    static const int32_t offsets[17] = {};
    zt::Guarded<uint64_t> dst(16);
    const ZIVKStatus st = ZIVKS_Hash_varchar(k == 0 ? nullptr : src, k == 1 ? nullptr : offsets, len, nullptr,
                                             k == 2 ? nullptr : dst.data());
    return std::make_pair(st, dst.untouched());
  });
}

// Every row length from 0 to 300 (through the short start, the stripes and all the
// tail steps), in shuffled order so that rows start at every kind of address.
TEST(HashVarchar, EveryRowLengthIsXxh64) {
  zt::Rng rng(11);
  std::vector<int> lens(301);
  std::iota(lens.begin(), lens.end(), 0);
  for (int first : {1, 2, 3, 8}) {
    std::shuffle(lens.begin(), lens.end(), rng);
    const Column col(lens, first, rng);
    ct::expect_hashes(
        &ZIVKS_Hash_varchar, ZT_TWIN(ZIVKS_Hash_varchar), 301, ct::NullVec{{}, true},
        [&](auto f, uint64_t* dst) { return f(col.bytes.data(), col.offsets.data(), 301, nullptr, dst); },
        [&](int i) { return col.want(i); });
  }
  // An empty row, alone and among others.
  const uint8_t byte = 0;
  const int32_t offsets[] = {0, 0, 1, 1};
  uint64_t h[3];
  ASSERT_EQ(ZIVKS_Hash_varchar(&byte, offsets, 3, nullptr, h), ZIVK_STS_NO_ERR);
  EXPECT_EQ(h[0], 0xEF46DB3751D8E999ull);
  EXPECT_EQ(h[1], ct::xxh64(&byte, 1));
  EXPECT_EQ(h[2], 0xEF46DB3751D8E999ull);
  EXPECT_EQ(ct::xxh64(&byte, 0), 0xEF46DB3751D8E999ull);
}

// Columns of every length and null density: rows that are not null hashed, null rows
// untouched; the generic build agrees bit for bit.
TEST(HashVarchar, NullRowsAreLeftAsTheyWere) {
  ct::for_each_column([&](int len, const ct::NullVec& nv, zt::Rng& rng) {
    std::vector<int> lens(len);
    for (int& n : lens) n = rng() % 8 == 0 ? static_cast<int>(rng() % 200) : static_cast<int>(rng() % 40);
    const Column col(lens, 1 + static_cast<int>(rng() % 8), rng);
    ct::expect_hashes(
        &ZIVKS_Hash_varchar, ZT_TWIN(ZIVKS_Hash_varchar), len, nv,
        [&](auto f, uint64_t* dst) { return f(col.bytes.data(), col.offsets.data(), len, nv.ptr(), dst); },
        [&](int i) { return col.want(i); });
  });
}

}  // namespace
