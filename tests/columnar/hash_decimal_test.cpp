// Hash_decimal64 and Hash_decimal128.
#include "columnar_support.h"

namespace {

constexpr uint64_t kSign = 0x8000000000000000ull;

uint64_t word_hash(uint64_t w) { return ct::xxh64(&w, 8); }  // the words are little-endian
uint64_t decimal_hash(const ZIVKDecimal128& d) { return word_hash(d.lo) ^ word_hash(d.hi & ~kSign); }

TEST(HashDecimal, Statuses) {
  ct::expect_row_statuses<int64_t, uint64_t>(ZIVKS_Hash_decimal64);
  ct::expect_row_statuses<ZIVKDecimal128, uint64_t>(ZIVKS_Hash_decimal128);
}

TEST(HashDecimal, Decimal64IsTheValue) {
  ct::for_each_column([&](int len, const ct::NullVec& nv, zt::Rng& rng) {
    std::vector<int64_t> src(len);
    zt::fill_random(src.data(), len, rng);
    ct::expect_hashes(
        &ZIVKS_Hash_decimal64, ZT_TWIN(ZIVKS_Hash_decimal64), len, nv,
        [&](auto f, uint64_t* dst) { return f(src.data(), len, nv.ptr(), dst); },
        [&](int i) { return static_cast<uint64_t>(src[i]); });
  });
  const int64_t minus_one = -1;
  uint64_t h = 0;
  ZIVKS_Hash_decimal64(&minus_one, 1, nullptr, &h);
  EXPECT_EQ(h, ~0ull);
}

TEST(HashDecimal, Decimal128XorsTheWordHashesWithoutTheSign) {
  ct::for_each_column([&](int len, const ct::NullVec& nv, zt::Rng& rng) {
    std::vector<ZIVKDecimal128> src(len);
    for (auto& d : src) {
      d = {rng(), rng()};
      if (rng() % 4 == 0) d.hi &= 0x4B3B4CA85A86C47Aull | kSign;  // within the decimal range too
    }
    ct::expect_hashes(
        &ZIVKS_Hash_decimal128, ZT_TWIN(ZIVKS_Hash_decimal128), len, nv,
        [&](auto f, uint64_t* dst) { return f(src.data(), len, nv.ptr(), dst); },
        [&](int i) { return decimal_hash(src[i]); });
  });

  // Zero and equal words cancel; the sign takes no part; lo and hi trade places freely
  // while both signs are clear.
  zt::Rng rng(3);
  for (int k = 0; k < 200; ++k) {
    const uint64_t a = rng() >> 1, b = rng() >> 1;
    const ZIVKDecimal128 rows[] = {{0, 0}, {0, kSign}, {a, a}, {a, a | kSign}, {a, b}, {a, b | kSign}, {b, a}};
    uint64_t h[7];
    ASSERT_EQ(ZIVKS_Hash_decimal128(rows, 7, nullptr, h), ZIVK_STS_NO_ERR);
    EXPECT_TRUE(h[0] == 0 && h[1] == 0 && h[2] == 0 && h[3] == 0) << k;
    EXPECT_TRUE(h[4] != 0 && h[5] == h[4] && h[6] == h[4]) << k;
  }
}

}  // namespace
