// SortRadixIndexInit, SortRadixIndexRelease, SortRadixIndexAscend and Descend: the stable
// sorting permutation of keys read at a byte stride.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <string>
#include <type_traits>

#include "support/zt.h"

namespace {

template <class T>
using IndexSort = ZIVKStatus (*)(const T*, int32_t, int32_t*, int32_t, uint8_t*);

template <class T>
struct Member {
  using Key = T;
  const char* name;
  ZIVKDataType type;
  IndexSort<T> sort[2], twin[2];  // [0] Ascend, [1] Descend
};

#define ZT_MEMBER(code, T, dt)                                                                             \
  Member<T> {                                                                                              \
    #code, dt, {ZIVKS_SortRadixIndexAscend_##code, ZIVKS_SortRadixIndexDescend_##code},                    \
        {ZT_TWIN(ZIVKS_SortRadixIndexAscend_##code), ZT_TWIN(ZIVKS_SortRadixIndexDescend_##code)}         \
  }

template <class F>
void for_each_member(F f) {
  f(ZT_MEMBER(8u, uint8_t, ZIVK_DT_8U));
  f(ZT_MEMBER(16u, uint16_t, ZIVK_DT_16U));
  f(ZT_MEMBER(16s, int16_t, ZIVK_DT_16S));
  f(ZT_MEMBER(32u, uint32_t, ZIVK_DT_32U));
  f(ZT_MEMBER(32s, int32_t, ZIVK_DT_32S));
  f(ZT_MEMBER(32f, float, ZIVK_DT_32F));
  f(ZT_MEMBER(64u, uint64_t, ZIVK_DT_64U));
  f(ZT_MEMBER(64s, int64_t, ZIVK_DT_64S));
  f(ZT_MEMBER(64f, double, ZIVK_DT_64F));
}

// A number that rises with the Ascend order. Integers: their value. Floats, by class:
// every sign-set key (NaNs, -inf, negatives, -0.0) by falling raw bits, then every
// sign-clear key by rising raw bits; the complement of a sign-set key and the sign bit
// set on a sign-clear one make that one unsigned order.
template <class T>
auto rank(T x) {
  if constexpr (std::is_floating_point_v<T>) {
    using U = std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>;
    const U sign = U{1} << (8 * sizeof(U) - 1);
    U b;
    memcpy(&b, &x, sizeof b);
    return b & sign ? U(~b) : U(b | sign);
  } else {
    return x;
  }
}

// The stable permutation: ties lowest position first in both directions.
template <class T>
std::vector<int32_t> oracle(const std::vector<T>& keys, bool descend) {
  std::vector<int32_t> idx(keys.size());
  std::iota(idx.begin(), idx.end(), 0);
  std::stable_sort(idx.begin(), idx.end(), [&](int32_t a, int32_t b) {
    return descend ? rank(keys[b]) < rank(keys[a]) : rank(keys[a]) < rank(keys[b]);
  });
  return idx;
}

// Keys laid out at a byte stride, with random bytes between them.
template <class T>
struct Strided {
  Strided(const std::vector<T>& keys, int32_t stride, size_t misalign, zt::Rng& rng)
      : bytes((keys.size() - 1) * stride + sizeof(T)), buf(bytes, misalign) {
    for (size_t i = 0; i < bytes; ++i) buf[i] = static_cast<uint8_t>(rng());
    for (size_t i = 0; i < keys.size(); ++i) memcpy(buf.data() + i * stride, &keys[i], sizeof(T));
    before.assign(buf.data(), buf.data() + bytes);
  }
  const T* src() const { return reinterpret_cast<const T*>(buf.data()); }
  bool unchanged() const { return buf.guards_intact() && memcmp(buf.data(), before.data(), bytes) == 0; }
  size_t bytes;
  zt::Guarded<uint8_t> buf;
  std::vector<uint8_t> before;
};

// Keys of three kinds: any bits (floats: every special value), few distinct values (many
// ties, with both zeros and a NaN of each sign for floats), and values that differ only
// in their low byte, so that every pass but the first sees one digit.
template <class T>
std::vector<T> make_keys(int kind, int len, zt::Rng& rng) {
  std::vector<T> k(len);
  if (kind == 0) {
    zt::fill_random(k.data(), k.size(), rng);
  } else if (kind == 1) {
    std::vector<T> pool(4);
    zt::fill_random(pool.data(), pool.size(), rng);
    if constexpr (std::is_floating_point_v<T>) {
      pool.push_back(T(0.0));
      pool.push_back(T(-0.0));
      pool.push_back(std::copysign(std::numeric_limits<T>::quiet_NaN(), T(-1)));
      pool.push_back(std::numeric_limits<T>::quiet_NaN());
    }
    for (T& x : k) x = pool[rng() % pool.size()];
  } else {
    T base;
    zt::fill_random(&base, 1, rng);
    for (T& x : k) {
      memcpy(&x, &base, sizeof x);
      reinterpret_cast<uint8_t*>(&x)[0] = static_cast<uint8_t>(rng() % 5);
    }
  }
  return k;
}

TEST(SortRadixIndexInit, StatusesSizesAndOverflow) {
  auto& r = zt::core_record();
  uint8_t marker = 0;
  uint8_t* const untouched = &marker;
  uint8_t* p = untouched;
  auto init = [&](int32_t len, int32_t dt) { return ZIVKS_SortRadixIndexInit(len, static_cast<ZIVKDataType>(dt), &p); };
  const int32_t kValid[] = {1, 5, 7, 9, 11, 13, 15, 17, 19};
  r = {};
  // policy, then len, then the data type; nothing allocated on any of them.
  EXPECT_EQ(ZIVKS_SortRadixIndexInit(0, static_cast<ZIVKDataType>(2), nullptr), ZIVK_STS_NULL_PTR_ERR);
  for (int32_t len : {0, -1, INT32_MIN}) EXPECT_EQ(init(len, 2), ZIVK_STS_SIZE_ERR) << len;
  for (int32_t dt = -3; dt <= 40; ++dt) {
    if (std::find(std::begin(kValid), std::end(kValid), dt) == std::end(kValid)) {
      EXPECT_EQ(init(10, dt), ZIVK_STS_DATA_TYPE_ERR) << dt;
    }
  }
  for (int32_t dt : {INT32_MIN, INT32_MAX, 32 + 1, 64 + 9}) EXPECT_EQ(init(10, dt), ZIVK_STS_DATA_TYPE_ERR) << dt;
  EXPECT_EQ(p, untouched);
  EXPECT_EQ(r.malloc_calls, 0);

  // Sizes: fixed for 8u and the 16-bit types whatever len is, 12 and 24 bytes a key else.
  auto size_of = [](int32_t dt, int32_t len) {
    return dt == 1 ? 1024 : dt <= 7 ? 262144 : dt <= 13 ? len * 12 : len * 24;
  };
  for (int32_t dt : kValid) {
    for (int32_t len : {1, 7, 1000}) {
      r = {};
      ASSERT_EQ(init(len, dt), ZIVK_STS_NO_ERR) << dt;
      EXPECT_EQ(r.last_size, size_of(dt, len)) << dt << " len " << len;
      ASSERT_NE(p, untouched);
      memset(p, 0x5A, r.last_size);
      EXPECT_EQ(ZIVKS_SortRadixIndexRelease(p), ZIVK_STS_NO_ERR);
      EXPECT_EQ(r.free_calls, 1);
      p = untouched;
    }
    // A refused allocation leaves *policy, with the size asked for as above.
    r = {};
    r.fail_next = true;
    EXPECT_EQ(init(33, dt), ZIVK_STS_MALLOC_ERR) << dt;
    EXPECT_EQ(r.last_size, size_of(dt, 33));
    EXPECT_EQ(p, untouched);
  }
  for (int32_t dt : {1, 5, 7}) {
    r = {};
    ASSERT_EQ(init(INT32_MAX, dt), ZIVK_STS_NO_ERR) << dt;
    EXPECT_EQ(r.last_size, size_of(dt, 1));
    ZIVKS_SortRadixIndexRelease(p);
    p = untouched;
  }
  // The last lengths whose byte count fits (asked for, refused here to spare 2 GB), and
  // lengths beyond, some of which would wrap to a small count: MALLOC_ERR, no allocation.
  for (int32_t dt : {9, 11, 13, 15, 17, 19}) {
    const bool wide = dt >= 15;
    r = {};
    r.fail_next = true;
    EXPECT_EQ(init(wide ? 0x05555555 : 0x0AAAAAAA, dt), ZIVK_STS_MALLOC_ERR) << dt;
    EXPECT_EQ(r.last_size, 0x7FFFFFF8) << dt;
    for (int32_t len : {wide ? 0x05555556 : 0x0AAAAAAB, wide ? 0x0AAAAAAB : 0x15555556, INT32_MAX}) {
      r = {};
      const ZIVKStatus s = init(len, dt);
      EXPECT_EQ(s, ZIVK_STS_MALLOC_ERR) << dt << " len " << len;
      EXPECT_EQ(r.malloc_calls, 0) << dt << " len " << len;
      if (s == ZIVK_STS_NO_ERR) ZIVKS_SortRadixIndexRelease(p);
      EXPECT_EQ(p, untouched);
      p = untouched;
    }
  }
  r = {};
  EXPECT_EQ(ZIVKS_SortRadixIndexRelease(nullptr), ZIVK_STS_NO_ERR);
  EXPECT_EQ(r.free_calls, 1);
  r = {};
}

TEST(SortRadixIndex, StatusesInOrder) {
  for_each_member([](auto m) {
    using T = typename decltype(m)::Key;
    SCOPED_TRACE(m.name);
    const int32_t size = sizeof(T);
    uint8_t* policy = nullptr;
    ASSERT_EQ(ZIVKS_SortRadixIndexInit(8, m.type, &policy), ZIVK_STS_NO_ERR);
    std::vector<T> keys(8 * 3);
    const T* src = keys.data();
    zt::Guarded<int32_t> idx(8);
    for (auto sort : m.sort) {
      // Pointers first, whatever len and the stride are; then len and the stride alike.
      for (int32_t len : {8, 0}) {
        for (int32_t stride : {size, 0}) {
          EXPECT_EQ(sort(nullptr, stride, idx.data(), len, policy), ZIVK_STS_NULL_PTR_ERR);
          EXPECT_EQ(sort(src, stride, nullptr, len, policy), ZIVK_STS_NULL_PTR_ERR);
          EXPECT_EQ(sort(src, stride, idx.data(), len, nullptr), ZIVK_STS_NULL_PTR_ERR);
        }
      }
      for (int32_t len : {0, -1, INT32_MIN}) EXPECT_EQ(sort(src, size, idx.data(), len, policy), ZIVK_STS_SIZE_ERR);
      for (int32_t stride : {size - 1, 0, -1, -size, INT32_MIN}) {
        EXPECT_EQ(sort(src, stride, idx.data(), 8, policy), ZIVK_STS_SIZE_ERR) << stride;
      }
      EXPECT_TRUE(idx.untouched());
      // The key's size is the least stride; one key is position 0.
      EXPECT_EQ(sort(src, size, idx.data(), 1, policy), ZIVK_STS_NO_ERR);
      EXPECT_EQ(idx[0], 0);
      EXPECT_TRUE(idx.guards_intact());
      idx.fill_pattern();
    }
    ZIVKS_SortRadixIndexRelease(policy);
  });
}

// Every member, both directions, against the stable oracle: lengths crossing the block
// sizes and the histogram's unrolled count, strides that are and are not multiples of
// the key size, keys misaligned, outputs guarded, keys never written, generic twin equal.
TEST(SortRadixIndex, StableOrderOverLengthsAndStrides) {
  for_each_member([](auto m) {
    using T = typename decltype(m)::Key;
    const int32_t size = sizeof(T);
    zt::Rng rng(std::hash<std::string>()(m.name));
    std::vector<int> lengths = zt::test_lengths();
    for (int n : {1000, 1024, 1025, 4099}) lengths.push_back(n);
    for (int len : lengths) {
      uint8_t* policy = nullptr;  // made for this len exactly, and reused by every call
      ASSERT_EQ(ZIVKS_SortRadixIndexInit(len, m.type, &policy), ZIVK_STS_NO_ERR);
      for (int32_t stride : {size, size + 1, 2 * size + 3, 13}) {
        for (int kind = 0; kind < 3; ++kind) {
          const std::vector<T> keys = make_keys<T>(kind, len, rng);
          const Strided<T> s(keys, stride, rng() % 8, rng);
          for (int d = 0; d < 2; ++d) {
            SCOPED_TRACE(std::string(m.name) + (d ? " Descend" : " Ascend") + " len " + std::to_string(len) +
                         " stride " + std::to_string(stride) + " kind " + std::to_string(kind));
            const size_t mis = (rng() % 4) * sizeof(int32_t);
            zt::Guarded<int32_t> idx(len, mis), twin(len, mis);
            ASSERT_EQ(m.sort[d](s.src(), stride, idx.data(), len, policy), ZIVK_STS_NO_ERR);
            ASSERT_TRUE(idx.guards_intact());
            ASSERT_EQ(std::vector<int32_t>(idx.data(), idx.data() + len), oracle(keys, d == 1));
            ASSERT_TRUE(s.unchanged()) << "keys written";
            if (m.twin[d]) {
              ASSERT_EQ(m.twin[d](s.src(), stride, twin.data(), len, policy), ZIVK_STS_NO_ERR);
              ASSERT_EQ(zt::first_difference(twin.data(), idx.data(), len), -1) << "generic backend";
            }
          }
        }
      }
      ZIVKS_SortRadixIndexRelease(policy);
    }
  });
}

template <class T>
std::vector<int32_t> sorted_positions(IndexSort<T> sort, ZIVKDataType type, const std::vector<T>& keys) {
  const int32_t len = static_cast<int32_t>(keys.size());
  std::vector<int32_t> idx(len, -7);
  uint8_t* policy = nullptr;
  EXPECT_EQ(ZIVKS_SortRadixIndexInit(len, type, &policy), ZIVK_STS_NO_ERR);
  EXPECT_EQ(sort(keys.data(), sizeof(T), idx.data(), len, policy), ZIVK_STS_NO_ERR);
  ZIVKS_SortRadixIndexRelease(policy);
  return idx;
}

template <class F, class U>
F from_bits(U b) {
  static_assert(sizeof(F) == sizeof(U));
  F f;
  memcpy(&f, &b, sizeof f);
  return f;
}
float bits32(uint32_t b) { return from_bits<float>(b); }
double bits64(uint64_t b) { return from_bits<double>(b); }

// The orders stated outright, independent of the oracle's encoding.
TEST(SortRadixIndex, FloatClassesSignedZerosAndTies) {
  using V = std::vector<int32_t>;
  const std::vector<float> zeros = {-0.0f, 0.0f, -0.0f};
  EXPECT_EQ(sorted_positions(ZIVKS_SortRadixIndexAscend_32f, ZIVK_DT_32F, zeros), (V{0, 2, 1}));
  EXPECT_EQ(sorted_positions(ZIVKS_SortRadixIndexDescend_32f, ZIVK_DT_32F, zeros), (V{1, 0, 2}));

  // Sign-set NaNs by falling payload, -inf, negatives rising, -0.0, +0.0, positives
  // rising, +inf, sign-clear NaNs by rising payload; Descend reverses the classes.
  const float inf = INFINITY;
  const std::vector<float> classes = {bits32(0x7FC00001), -1.0f, inf,  bits32(0xFFC00002), 0.0f,
                                      -inf,               2.0f,  -0.0f, bits32(0xFFC00001), bits32(0x7F800001),
                                      1.0f,               -2.0f};
  const V up = {3, 8, 5, 11, 1, 7, 4, 10, 6, 2, 9, 0};
  EXPECT_EQ(sorted_positions(ZIVKS_SortRadixIndexAscend_32f, ZIVK_DT_32F, classes), up);
  EXPECT_EQ(sorted_positions(ZIVKS_SortRadixIndexDescend_32f, ZIVK_DT_32F, classes), V(up.rbegin(), up.rend()));
  std::vector<double> wide(classes.begin(), classes.end());
  wide[0] = bits64(0x7FF8000000000001);
  wide[3] = bits64(0xFFF8000000000002);
  wide[8] = bits64(0xFFF8000000000001);
  wide[9] = bits64(0x7FF0000000000001);
  EXPECT_EQ(sorted_positions(ZIVKS_SortRadixIndexAscend_64f, ZIVK_DT_64F, wide), up);

  // Ties lowest position first in both directions: Descend is no mirror image.
  const std::vector<int32_t> ties = {5, 1, 5, 1};
  EXPECT_EQ(sorted_positions(ZIVKS_SortRadixIndexAscend_32s, ZIVK_DT_32S, ties), (V{1, 3, 0, 2}));
  EXPECT_EQ(sorted_positions(ZIVKS_SortRadixIndexDescend_32s, ZIVK_DT_32S, ties), (V{0, 2, 1, 3}));

  // All keys equal: the identity, both ways, every member.
  for_each_member([](auto m) {
    using T = typename decltype(m)::Key;
    zt::Rng rng(3);
    T x;
    zt::fill_random(&x, 1, rng);
    V id(300);
    std::iota(id.begin(), id.end(), 0);
    for (auto sort : m.sort) EXPECT_EQ(sorted_positions(sort, m.type, std::vector<T>(300, x)), id) << m.name;
  });
}

}  // namespace
