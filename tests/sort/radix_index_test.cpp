// SortRadixIndexInit, SortRadixIndexRelease, SortRadixIndexAscend and Descend: the stable
// sorting permutation of keys read at a byte stride.
#include "sort_support.h"

namespace {

template <class F>
void for_each_sort(F f) {
  ZT_FOR_NINE_TYPES(SortRadixIndex, )
}

TEST(SortRadixIndexInit, StatusesSizesAndOverflow) {
  zt::check_buffer_init(ZIVKS_SortRadixIndexInit, ZIVKS_SortRadixIndexRelease, 12, 0x0AAAAAAA, 0x05555555);
}

TEST(SortRadixIndex, StatusesInOrder) {
  for_each_sort([](const auto& s) {
    using T = zt::KeyOf<decltype(s)>;
    SCOPED_TRACE(s.name);
    const int32_t size = sizeof(T);
    uint8_t* policy = nullptr;
    ASSERT_EQ(ZIVKS_SortRadixIndexInit(8, s.type, &policy), ZIVK_STS_NO_ERR);
    const std::vector<T> keys(8 * 3);
    zt::Guarded<int32_t> idx(8);
    for (auto sort : s.fn) {
      // Pointers first, whatever len and the stride are; then len and the stride alike.
      for (int32_t stride : {size, 0}) {
        zt::expect_null_then_size(3, [&](int p, int32_t n) {
          return sort(zt::unless(p, 0, keys.data()), stride, zt::unless(p, 1, idx.data()), n, zt::unless(p, 2, policy));
        });
      }
      for (int32_t stride : {size - 1, 0, -1, -size, INT32_MIN}) {
        EXPECT_EQ(sort(keys.data(), stride, idx.data(), 8, policy), ZIVK_STS_SIZE_ERR) << stride;
      }
      EXPECT_TRUE(idx.untouched());
      // The key's size is the least stride; one key is position 0.
      EXPECT_EQ(sort(keys.data(), size, idx.data(), 1, policy), ZIVK_STS_NO_ERR);
      EXPECT_EQ(idx[0], 0);
      EXPECT_TRUE(idx.guards_intact());
      idx.fill_pattern();
    }
    ZIVKS_SortRadixIndexRelease(policy);
  });
}

// The stable permutation: ties lowest position first in both directions.
template <class T>
std::vector<int32_t> oracle(const std::vector<T>& keys, bool descend) {
  std::vector<int32_t> idx(keys.size());
  std::iota(idx.begin(), idx.end(), 0);
  std::stable_sort(idx.begin(), idx.end(), [&](int32_t a, int32_t b) {
    return zt::order_key(keys[descend ? b : a]) < zt::order_key(keys[descend ? a : b]);
  });
  return idx;
}

// Every member, both directions, against the stable oracle: lengths crossing the block
// sizes and the histogram's unrolled count, strides that are and are not multiples of
// the key size, keys misaligned, outputs guarded, keys never written, generic twin equal.
// A handle made for this len exactly serves every call.
TEST(SortRadixIndex, StableOrderOverLengthsAndStrides) {
  for_each_sort([](const auto& s) {
    using T = zt::KeyOf<decltype(s)>;
    std::vector<int> lengths = zt::test_lengths();
    lengths.insert(lengths.end(), {1000, 1024, 1025, 4099});
    const auto check = [&](int d, int len, const std::vector<T>& keys, zt::Rng& rng) {
      uint8_t* policy = nullptr;
      ASSERT_EQ(ZIVKS_SortRadixIndexInit(len, s.type, &policy), ZIVK_STS_NO_ERR);
      const std::vector<int32_t> want = oracle(keys, d == 1);
      for (int32_t stride : {int32_t{sizeof(T)}, int32_t{sizeof(T)} + 1, 2 * int32_t{sizeof(T)} + 3, 13}) {
        const zt::Strided<T> in(keys, stride, rng);
        const size_t mis = (rng() % 4) * sizeof(int32_t);
        zt::Guarded<int32_t> idx(len, mis), twin(len, mis);
        ASSERT_EQ(s.fn[d](in.src(), stride, idx.data(), len, policy), ZIVK_STS_NO_ERR);
        ASSERT_TRUE(idx.guards_intact());
        ASSERT_EQ(std::vector<int32_t>(idx.data(), idx.data() + len), want) << "stride " << stride;
        ASSERT_TRUE(in.unchanged()) << "keys written";
        if (s.twin[d]) {
          ASSERT_EQ(s.twin[d](in.src(), stride, twin.data(), len, policy), ZIVK_STS_NO_ERR);
          ASSERT_EQ(zt::first_difference(twin.data(), idx.data(), len), -1) << "generic backend";
        }
      }
      ZIVKS_SortRadixIndexRelease(policy);
    };
    zt::sweep<T>(s.name, {zt::kAny, zt::kFewNaN, zt::kLowByte}, check, lengths);
  });
}

template <class T>
std::vector<int32_t> positions(ZIVKStatus (*sort)(const T*, int32_t, int32_t*, int32_t, uint8_t*), ZIVKDataType type,
                               const std::vector<T>& keys) {
  const int32_t len = static_cast<int32_t>(keys.size());
  std::vector<int32_t> idx(len, -7);
  uint8_t* policy = nullptr;
  EXPECT_EQ(ZIVKS_SortRadixIndexInit(len, type, &policy), ZIVK_STS_NO_ERR);
  EXPECT_EQ(sort(keys.data(), sizeof(T), idx.data(), len, policy), ZIVK_STS_NO_ERR);
  ZIVKS_SortRadixIndexRelease(policy);
  return idx;
}

// The orders stated outright, independent of the oracle's encoding.
TEST(SortRadixIndex, FloatClassesSignedZerosAndTies) {
  using V = std::vector<int32_t>;
  const std::vector<float> zeros = {-0.0f, 0.0f, -0.0f};
  EXPECT_EQ(positions(ZIVKS_SortRadixIndexAscend_32f, ZIVK_DT_32F, zeros), (V{0, 2, 1}));
  EXPECT_EQ(positions(ZIVKS_SortRadixIndexDescend_32f, ZIVK_DT_32F, zeros), (V{1, 0, 2}));

  // Sign-set NaNs by falling payload, -inf, negatives rising, -0.0, +0.0, positives
  // rising, +inf, sign-clear NaNs by rising payload; Descend reverses the classes.
  const float inf = INFINITY;
  const auto f32 = zt::from_bits<float>;
  const std::vector<float> classes = {f32(0x7FC00001), -1.0f, inf,   f32(0xFFC00002), 0.0f, -inf,
                                      2.0f,            -0.0f, f32(0xFFC00001), f32(0x7F800001), 1.0f, -2.0f};
  const V up = {3, 8, 5, 11, 1, 7, 4, 10, 6, 2, 9, 0};
  EXPECT_EQ(positions(ZIVKS_SortRadixIndexAscend_32f, ZIVK_DT_32F, classes), up);
  EXPECT_EQ(positions(ZIVKS_SortRadixIndexDescend_32f, ZIVK_DT_32F, classes), V(up.rbegin(), up.rend()));
  std::vector<double> wide(classes.begin(), classes.end());
  const auto f64 = zt::from_bits<double>;
  wide[0] = f64(0x7FF8000000000001), wide[3] = f64(0xFFF8000000000002);
  wide[8] = f64(0xFFF8000000000001), wide[9] = f64(0x7FF0000000000001);
  EXPECT_EQ(positions(ZIVKS_SortRadixIndexAscend_64f, ZIVK_DT_64F, wide), up);

  // Ties lowest position first in both directions: Descend is no mirror image.
  const std::vector<int32_t> ties = {5, 1, 5, 1};
  EXPECT_EQ(positions(ZIVKS_SortRadixIndexAscend_32s, ZIVK_DT_32S, ties), (V{1, 3, 0, 2}));
  EXPECT_EQ(positions(ZIVKS_SortRadixIndexDescend_32s, ZIVK_DT_32S, ties), (V{0, 2, 1, 3}));
}

}  // namespace
