// Hash_16s, Hash_32s, Hash_64s, Hash_64f, Hash_bool and CombineHash.
#include <cmath>

#include "columnar_support.h"

namespace {

// One accumulate round from zero of a 64-bit key.
uint64_t round0(uint64_t key) {
  const uint64_t x = key * ct::kP2;
  return ((x << 31) | (x >> 33)) * ct::kP1;
}
constexpr uint64_t kNanHash = 0xA7551CC48D5C0000ull;

template <class T>
using HashFn = ZIVKStatus (*)(const T*, int32_t, const int8_t*, uint64_t*);

template <class T>
uint64_t hash_one(HashFn<T> fn, T v) {
  uint64_t h = 0;
  EXPECT_EQ(fn(&v, 1, nullptr, &h), ZIVK_STS_NO_ERR);
  return h;
}

// Random columns of every length and null density: want(src[i]) in every row that is
// not null.
template <class T, class Want>
void check_column(HashFn<T> fn, HashFn<T> twin, Want want) {
  ct::for_each_column([&](int len, const ct::NullVec& nv, zt::Rng& rng) {
    std::vector<T> src(len);
    zt::fill_random(src.data(), len, rng);
    for (T& v : src) v = rng() % 4 ? v : T{};  // zeros often enough
    ct::expect_hashes(
        fn, twin, len, nv, [&](HashFn<T> f, uint64_t* dst) { return f(src.data(), len, nv.ptr(), dst); },
        [&](int i) { return want(src[i]); });
  });
}

TEST(HashFixed, Statuses) {
  ct::expect_row_statuses<int16_t, uint64_t>(ZIVKS_Hash_16s);
  ct::expect_row_statuses<int32_t, uint64_t>(ZIVKS_Hash_32s);
  ct::expect_row_statuses<int64_t, uint64_t>(ZIVKS_Hash_64s);
  ct::expect_row_statuses<double, uint64_t>(ZIVKS_Hash_64f);
  ct::expect_row_statuses<uint8_t, uint64_t>(ZIVKS_Hash_bool);
}

// The round of the value sign-extended to 64 bits: alike in every width, 0 to 0.
TEST(HashFixed, IntegersAreOneRoundOfTheSignExtendedKey) {
  const auto key = [](int64_t v) { return round0(static_cast<uint64_t>(v)); };
  check_column<int16_t>(ZIVKS_Hash_16s, ZT_TWIN(ZIVKS_Hash_16s), key);
  check_column<int32_t>(ZIVKS_Hash_32s, ZT_TWIN(ZIVKS_Hash_32s), key);
  check_column<int64_t>(ZIVKS_Hash_64s, ZT_TWIN(ZIVKS_Hash_64s), key);
  for (int16_t v : {0, -1, 1, INT16_MIN, INT16_MAX}) {
    const uint64_t h = hash_one<int64_t>(ZIVKS_Hash_64s, v);
    EXPECT_EQ(hash_one<int32_t>(ZIVKS_Hash_32s, v), h) << v;
    EXPECT_EQ(hash_one<int16_t>(ZIVKS_Hash_16s, v), h) << v;
    EXPECT_EQ(h == 0, v == 0) << v;
  }
  EXPECT_EQ(hash_one<int32_t>(ZIVKS_Hash_32s, -1), round0(~0ull));
}

// The round of the raw bits, but one hash for every NaN, and two zeros that differ.
TEST(HashFixed, Float64HashesRawBitsWithOneNan) {
  const auto want = [](double v) {
    uint64_t b;
    memcpy(&b, &v, 8);
    return std::isnan(v) ? kNanHash : round0(b);
  };
  check_column<double>(ZIVKS_Hash_64f, ZT_TWIN(ZIVKS_Hash_64f), want);
  EXPECT_EQ(round0(0x7FF8000000000000ull), kNanHash);  // the canonical NaN's round
  const auto hash_bits = [](uint64_t b) {
    double v;
    memcpy(&v, &b, 8);
    return hash_one<double>(ZIVKS_Hash_64f, v);
  };
  const std::pair<uint64_t, uint64_t> cases[] = {
      {0x7FF8000000000000ull, kNanHash}, {0xFFF8000000000000ull, kNanHash}, {0x7FF0000000000001ull, kNanHash},
      {0xFFFFFFFFFFFFFFFFull, kNanHash}, {0, 0}, {0x8000000000000000ull, 0x617AF2A1C0000000ull}};
  for (const auto& [bits, h] : cases) EXPECT_EQ(hash_bits(bits), h) << std::hex << bits;
  const uint64_t pos_inf = hash_bits(0x7FF0000000000000ull), neg_inf = hash_bits(0xFFF0000000000000ull);
  EXPECT_NE(pos_inf, neg_inf);
  EXPECT_NE(pos_inf, kNanHash);
  EXPECT_NE(neg_inf, kNanHash);
}

TEST(HashFixed, BoolIsTrueOrFalseOfEveryByte) {
  const auto want = [](uint8_t v) { return v != 0 ? uint64_t{1231} : uint64_t{1237}; };
  check_column<uint8_t>(ZIVKS_Hash_bool, ZT_TWIN(ZIVKS_Hash_bool), want);
  for (int b = 0; b < 256; ++b) ASSERT_EQ(hash_one<uint8_t>(ZIVKS_Hash_bool, static_cast<uint8_t>(b)), want(b)) << b;
}

TEST(CombineHash, IsFirstTimes31PlusSecond) {
  ct::expect_statuses(3, [](int k, int32_t len) {
    static uint64_t a[16], b[16];
    zt::Guarded<uint64_t> dst(16);
    const ZIVKStatus st =
        ZIVKS_CombineHash(k == 0 ? nullptr : a, k == 1 ? nullptr : b, len, k == 2 ? nullptr : dst.data());
    return std::make_pair(st, dst.untouched());
  });
  const ct::NullVec none{{}, true};
  zt::Rng rng(7);
  for (int len : zt::test_lengths()) {
    SCOPED_TRACE(len);
    std::vector<uint64_t> a(len), b(len);
    zt::fill_random(a.data(), len, rng);
    zt::fill_random(b.data(), len, rng);
    ct::expect_hashes(
        &ZIVKS_CombineHash, ZT_TWIN(ZIVKS_CombineHash), len, none,
        [&](auto f, uint64_t* dst) { return f(a.data(), b.data(), len, dst); },
        [&](int i) { return a[i] * 31 + b[i]; });
    // In place over either source.
    std::vector<uint64_t> in1 = a, in2 = b;
    ZIVKS_CombineHash(in1.data(), b.data(), len, in1.data());
    ZIVKS_CombineHash(a.data(), in2.data(), len, in2.data());
    for (int i = 0; i < len; ++i) ASSERT_TRUE(in1[i] == a[i] * 31 + b[i] && in2[i] == in1[i]) << i;
  }
  const auto combine = [](uint64_t x, uint64_t y) {
    uint64_t h;
    return ZIVKS_CombineHash(&x, &y, 1, &h) == ZIVK_STS_NO_ERR ? h : 0;
  };
  EXPECT_EQ(combine(1, 2), 33u);
  EXPECT_EQ(combine(2, 1), 63u);
}

}  // namespace
