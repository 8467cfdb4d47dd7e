// What the tests of the sorting families share: the member tables (every key type, Ascend
// and Descend, with their generic twins), key generators, the order of float keys, the
// status loops, the Init of a sort's work buffer, and guarded or strided inputs.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <set>
#include <sstream>
#include <string>
#include <type_traits>

#include "support/zt.h"

namespace zt {

template <class T>
constexpr bool kFloat = std::is_floating_point_v<T>;

template <class T>
using BitsOf = std::conditional_t<sizeof(T) == 1, uint8_t,
                                  std::conditional_t<sizeof(T) == 2, uint16_t,
                                                     std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>>>;
template <class T>
BitsOf<T> bits(T x) {
  BitsOf<T> b;
  memcpy(&b, &x, sizeof b);
  return b;
}
template <class T>
T from_bits(BitsOf<T> b) {
  T x;
  memcpy(&x, &b, sizeof x);
  return x;
}

// ---- member tables

// One member of a family: a key type with its Ascend and Descend functions and twins.
template <class T, class Fn>
struct Sorts {
  using Key = T;
  std::string name;
  ZIVKDataType type;
  Fn fn[2], twin[2];  // [0] Ascend, [1] Descend
};
template <class S>
using KeyOf = typename std::decay_t<S>::Key;

#define ZT_SORTS(stem, tail, code, T, dt)                                                         \
  ::zt::Sorts<T, decltype(&ZIVKS_##stem##Ascend_##code##tail)> {                                 \
    #code, dt, {ZIVKS_##stem##Ascend_##code##tail, ZIVKS_##stem##Descend_##code##tail},           \
        {ZT_TWIN(ZIVKS_##stem##Ascend_##code##tail), ZT_TWIN(ZIVKS_##stem##Descend_##code##tail)} \
  }
#define ZT_CALL_F(stem, tail, code, T, dt) f(ZT_SORTS(stem, tail, code, T, dt));
// f(Sorts) for every type of the comparison and index sorts, and of the radix sorts.
#define ZT_FOR_SIX_TYPES(stem, tail)                                                         \
  ZT_CALL_F(stem, tail, 8u, uint8_t, ZIVK_DT_8U) ZT_CALL_F(stem, tail, 16u, uint16_t, ZIVK_DT_16U) \
  ZT_CALL_F(stem, tail, 16s, int16_t, ZIVK_DT_16S) ZT_CALL_F(stem, tail, 32s, int32_t, ZIVK_DT_32S) \
  ZT_CALL_F(stem, tail, 32f, float, ZIVK_DT_32F) ZT_CALL_F(stem, tail, 64f, double, ZIVK_DT_64F)
#define ZT_FOR_NINE_TYPES(stem, tail)                                                                \
  ZT_FOR_SIX_TYPES(stem, tail)                                                                       \
  ZT_CALL_F(stem, tail, 32u, uint32_t, ZIVK_DT_32U) ZT_CALL_F(stem, tail, 64u, uint64_t, ZIVK_DT_64U) \
  ZT_CALL_F(stem, tail, 64s, int64_t, ZIVK_DT_64S)

// The words of a trace, spaced.
template <class... A>
std::string says(const A&... a) {
  std::ostringstream o;
  ((o << a << ' '), ...);
  return o.str();
}

// ---- keys

// kAny: any bits (floats: every special value). kNoNaN: floats with every NaN made a zero
// of either sign. kNoNegZero: floats with -0.0 made +0.0, NaNs kept. kFew: a handful of
// values with the type's extremes, so most keys tie (floats: both zeros, -inf; kFewNaN
// adds a NaN of each sign). kRuns: value j in 1 + j % 31 copies, shuffled, so counting
// sorts write runs of every length. kLowByte: keys that differ in their lowest byte only.
// kNegative: floats below zero only. kDistinct: no two keys compare equal.
enum Mix { kAny, kNoNaN, kNoNegZero, kFew, kFewNaN, kRuns, kLowByte, kNegative, kDistinct };

template <class T>
std::vector<T> make_keys(Mix mix, int len, Rng& rng) {
  auto any = [&] {
    T x;
    fill_random(&x, 1, rng);
    if constexpr (kFloat<T>) {
      if (x != x && mix != kAny && mix != kNoNegZero) x = rng() % 2 ? T(0) : -T(0);
      if (x == 0 && mix == kNoNegZero) x = T(0);
      if (mix == kNegative) x = x == 0 ? -std::numeric_limits<T>::denorm_min() : -std::fabs(x);
    }
    return x;
  };
  std::vector<T> v(len);
  if (mix == kFew || mix == kFewNaN) {
    std::vector<T> pool = {any(), any(), T(0), static_cast<T>(-1), std::numeric_limits<T>::lowest(),
                           std::numeric_limits<T>::max()};
    if constexpr (kFloat<T>) {
      pool.insert(pool.end(), {-T(0), -std::numeric_limits<T>::infinity()});
      if (mix == kFewNaN) pool.insert(pool.end(), {T(NAN), -T(NAN)});
    }
    for (T& x : v) x = pool[rng() % pool.size()];
  } else if (mix == kRuns) {
    for (int i = 0, j = 0; i < len; ++j) {
      const T x = any();
      for (int c = 0; c <= j % 31 && i < len; ++c) v[i++] = x;
    }
    std::shuffle(v.begin(), v.end(), rng);
  } else if (mix == kLowByte) {
    const T base = any();
    for (T& x : v) {
      x = base;
      reinterpret_cast<uint8_t*>(&x)[0] = static_cast<uint8_t>(rng() % 5);
    }
  } else if (mix == kDistinct) {
    std::set<T> seen;  // by <: the two zeros count as one key
    for (int i = 0; i < len;)
      if (const T x = any(); seen.insert(x).second) v[i++] = x;
  } else {
    for (T& x : v) x = any();
  }
  return v;
}

// A number that rises with the order of the radix index sorts and TopK's radix selection.
// Integers: their value. Floats: every key with the sign set by falling bits, then every
// key with the sign clear by rising bits, that is sign-set NaNs by falling payload, -inf,
// negative numbers rising, -0.0, +0.0, positive numbers rising, +inf, sign-clear NaNs by
// rising payload.
template <class T>
auto order_key(T x) {
  if constexpr (kFloat<T>) {
    using U = BitsOf<T>;
    const U b = bits(x), sign = U{1} << (8 * sizeof(U) - 1);
    return b & sign ? U(~b) : U(b | sign);
  } else {
    return x;
  }
}

// ---- checks

// Runs check(d, len, keys, rng) for Ascend (d 0) and Descend (d 1), every length and
// every mix, with a trace; stops at the first fatal failure. The lengths: 1 to 70, then
// across 128, 256 and the 16-bit counting threshold 4096, or the ones given.
template <class T, class Check>
void sweep(const std::string& name, const std::vector<Mix>& mixes, Check check, std::vector<int> lengths = {}) {
  if (lengths.empty()) {
    for (int n = 1; n <= 70; ++n) lengths.push_back(n);
    lengths.insert(lengths.end(), {127, 128, 129, 255, 256, 257, 1000, 4095, 4096, 4097, 5000});
  }
  Rng rng(std::hash<std::string>()(name));
  for (int d = 0; d < 2; ++d) {
    for (int len : lengths) {
      for (Mix mix : mixes) {
        if (mix == kDistinct && sizeof(T) == 1 && len > 256) continue;
        SCOPED_TRACE(says(name, d ? "Descend" : "Ascend", "len", len, "mix", mix));
        check(d, len, make_keys<T>(mix, len, rng), rng);
        if (::testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

// Nothing out of order by <, rising or falling.
template <class T>
::testing::AssertionResult in_order(const T* v, int n, bool descend) {
  for (int i = 0; i + 1 < n; ++i)
    if (descend ? v[i] < v[i + 1] : v[i + 1] < v[i])
      return ::testing::AssertionFailure() << "out of order at " << i << ": " << +v[i] << ", " << +v[i + 1];
  return ::testing::AssertionSuccess();
}

template <class T>
Guarded<T> guarded_copy(const std::vector<T>& v, size_t misalign_elems = 0) {
  Guarded<T> g(v.size(), misalign_elems * sizeof(T));
  memcpy(g.data(), v.data(), v.size() * sizeof(T));
  return g;
}

// p unless it is the pointer `which` a status loop passes as null.
template <class P>
P* unless(int which, int p, P* ptr) {
  return which == p ? nullptr : ptr;
}

// Statuses in order of checks: any null pointer first, whatever len is, then len < 1.
// call(which, n) makes pointer `which` null (-1: none) and passes len n.
template <class Call>
void expect_null_then_size(int pointers, Call call) {
  for (int32_t n : {4, 0, -1})
    for (int p = 0; p < pointers; ++p) EXPECT_EQ(call(p, n), ZIVK_STS_NULL_PTR_ERR) << "pointer " << p << " len " << n;
  for (int32_t n : {0, -1, INT32_MIN}) EXPECT_EQ(call(-1, n), ZIVK_STS_SIZE_ERR) << n;
}

// Keys laid out at a byte stride, misaligned, over at least min_bytes, with random bytes
// between them.
template <class T>
struct Strided {
  Strided(const std::vector<T>& keys, int32_t stride, Rng& rng, size_t min_bytes = 0)
      : bytes(std::max((keys.size() - 1) * stride + sizeof(T), min_bytes)), buf(bytes, rng() % 8) {
    for (size_t i = 0; i < bytes; ++i) buf[i] = static_cast<uint8_t>(rng());
    for (size_t i = 0; i < keys.size(); ++i) memcpy(buf.data() + i * stride, &keys[i], sizeof(T));
    before.assign(buf.data(), buf.data() + bytes);
  }
  const T* src() const { return reinterpret_cast<const T*>(buf.data()); }
  bool unchanged() const { return buf.guards_intact() && memcmp(buf.data(), before.data(), bytes) == 0; }
  size_t bytes;
  Guarded<uint8_t> buf;
  std::vector<uint8_t> before;
};

// ---- the work buffer of the radix and radix index sorts

// Init: statuses in order (policy, len, data type), with nothing allocated and *policy
// unwritten; the size asked for each type (8u: 1024 bytes, 16u and 16s: 262144, whatever
// len is; else per_key bytes a key of 32 bits, twice that of 64 bits); a refused
// allocation answered with MALLOC_ERR and *policy unwritten; a byte count past the int32
// range (len above last32 or last64) answered with MALLOC_ERR without asking, also where
// it would wrap to a small count. Release hands null on like any pointer.
inline void check_buffer_init(ZIVKStatus (*init)(int32_t, ZIVKDataType, uint8_t**), ZIVKStatus (*release)(uint8_t*),
                              int32_t per_key, int32_t last32, int32_t last64) {
  auto& r = core_record();
  uint8_t marker = 0;
  uint8_t *const unwritten = &marker, *h = unwritten;
  const auto call = [&](int32_t len, int32_t dt, uint8_t** p) { return init(len, static_cast<ZIVKDataType>(dt), p); };
  const int32_t kTypes[] = {ZIVK_DT_8U,  ZIVK_DT_16U, ZIVK_DT_16S, ZIVK_DT_32U, ZIVK_DT_32S,
                            ZIVK_DT_32F, ZIVK_DT_64U, ZIVK_DT_64S, ZIVK_DT_64F};
  std::vector<int32_t> types = {INT32_MIN, INT32_MAX};
  for (int32_t dt = -3; dt <= 40; ++dt) types.push_back(dt);
  r = {};
  for (int32_t dt : types) {
    EXPECT_EQ(call(0, dt, nullptr), ZIVK_STS_NULL_PTR_ERR) << dt;
    for (int32_t len : {0, -1, INT32_MIN}) EXPECT_EQ(call(len, dt, &h), ZIVK_STS_SIZE_ERR) << dt;
    if (std::count(std::begin(kTypes), std::end(kTypes), dt) == 0) {
      EXPECT_EQ(call(100, dt, &h), ZIVK_STS_DATA_TYPE_ERR) << dt;
    }
  }
  EXPECT_TRUE(h == unwritten && r.malloc_calls == 0);
  for (int32_t dt : kTypes) {
    SCOPED_TRACE(says("type", dt));
    const int32_t bytes = dt <= ZIVK_DT_16S ? 0 : per_key * (dt <= ZIVK_DT_32F ? 1 : 2);
    const auto size = [&](int32_t len) { return dt == ZIVK_DT_8U ? 1024 : bytes ? len * bytes : 262144; };
    for (int32_t len : {1, 7, 4097, bytes ? 100 : INT32_MAX}) {
      r = {};
      uint8_t* p = nullptr;
      ASSERT_EQ(call(len, dt, &p), ZIVK_STS_NO_ERR) << len;
      EXPECT_TRUE(r.malloc_calls == 1 && r.last_size == size(len)) << len << ": " << r.last_size;
      memset(p, 0x5A, r.last_size);
      EXPECT_EQ(release(p), ZIVK_STS_NO_ERR);
      EXPECT_EQ(r.free_calls, 1);
      r = {};
      r.fail_next = true;
      EXPECT_EQ(call(len, dt, &h), ZIVK_STS_MALLOC_ERR) << len;
      EXPECT_TRUE(h == unwritten && r.last_size == size(len)) << len;
    }
    if (!bytes) continue;
    // The longest buffer there is (asked for, refused here), and longer ones.
    const int32_t last = dt <= ZIVK_DT_32F ? last32 : last64;
    r = {};
    r.fail_next = true;
    EXPECT_EQ(call(last, dt, &h), ZIVK_STS_MALLOC_ERR);
    EXPECT_EQ(r.last_size, size(last));
    r = {};
    for (int64_t len : {int64_t{last} + 1, ((int64_t{1} << 32) + bytes - 1) / bytes, int64_t{INT32_MAX}}) {
      EXPECT_EQ(call(static_cast<int32_t>(len), dt, &h), ZIVK_STS_MALLOC_ERR) << len;
    }
    EXPECT_TRUE(r.malloc_calls == 0 && h == unwritten);
  }
  r = {};
  EXPECT_EQ(release(nullptr), ZIVK_STS_NO_ERR);
  EXPECT_EQ(r.free_calls, 1);
  r = {};
}

}  // namespace zt
