// TopK: the k largest keys of a strided column of 32-bit keys, largest first, with their
// positions. Method 1 is a randomised three-way quick selection; method 2 narrows the
// field by the top bits of the keys and sorts what is left by 8-bit digits, stably.
#include <stdlib.h>
#include <string.h>
#include <time.h>

#include <algorithm>

#include "core/frame.h"
#include "core/handles.h"
#include "sort/digits.h"
#include "sort/quick.h"

namespace {

using namespace zivks;
using sort::Entries;
using sort::Order;

// ---- Methods
enum Method : int32_t { kAutomatic = 0, kQuickSelect = 1, kRadixSelect = 2 };

// The automatic rule: radix selection for min(len, k) above 32 and len within
// [kRadixMinLen, kRadixMaxLen], quick selection otherwise.
constexpr int32_t kRadixMinCount = 32;
constexpr int32_t kRadixMinLen = 2049;
constexpr int32_t kRadixMaxLen = 0x7FFFFFF;

int32_t settle(int32_t len, int32_t k, int32_t method) {
  if (method != kAutomatic) return method;
  const bool radix = std::min(len, k) > kRadixMinCount && len >= kRadixMinLen && len <= kRadixMaxLen;
  return radix ? kRadixSelect : kQuickSelect;
}

// The radix selection prefilters only when the k wanted are fewer than the keys by this
// factor.
constexpr double kPrefilterRatio = 1.4;

// ---- Key types
// 32s ranks its keys as unsigned numbers with the sign bit flipped; 32f ranks raw bits
// by sign and exponent first (512 buckets of 9 bits) and sets non-finite keys aside.
constexpr uint32_t kSignBit = 0x80000000u;
constexpr uint32_t kExponent = 0x7F800000u;
constexpr uint32_t kPlusInf = 0x7F800000u;
constexpr uint32_t kMinusInf = 0xFF800000u;

template <class T>
struct Key;
template <>
struct Key<int32_t> {
  static constexpr uint32_t kPreset = 0x80000000u;  // the least int32
  static constexpr int32_t kBuckets = 256;
};
template <>
struct Key<float> {
  static constexpr uint32_t kPreset = 0xFF7FFFFFu;  // the most negative finite float
  static constexpr int32_t kBuckets = 512;
};

template <class To, class From>
inline To bits_as(From x) {
  static_assert(sizeof(To) == sizeof(From));
  To t;
  memcpy(&t, &x, sizeof t);
  return t;
}

// ---- Work buffer
// Method 1: values and positions. Method 2: result values, working values, result
// positions, working positions, then the prefilter's counters. len entries a region;
// the block is rounded up to 16 bytes and must stay below kBufferLimit.
constexpr int64_t kBufferLimit = 0x7FFFFFF0;

template <class T>
int64_t buffer_bytes(int32_t len, int32_t method) {
  if (method == kQuickSelect) return int64_t{len} * 8;
  return int64_t{len} * 16 + int64_t{Key<T>::kBuckets} * 4;
}

template <class T>
ZIVKStatus init(int32_t len, T* dst_val, int32_t* dst_idx, int32_t k, int32_t method, uint8_t** policy) {
  if (const ZIVKStatus st = handles::first_failure({{any_null(dst_val, dst_idx, policy), ZIVK_STS_NULL_PTR_ERR},
                                                    {k < 1 || len < 1, ZIVK_STS_SIZE_ERR},
                                                    {method < 0 || method > 2, ZIVK_STS_TOPK_METHOD_ERR}}))
    return st;
  const int64_t bytes = buffer_bytes<T>(len, settle(len, k, method));
  if (bytes >= kBufferLimit) return ZIVK_STS_BUFFER_SIZE_ERR;
  if (const ZIVKStatus st = handles::allocate(handles::round_up(static_cast<int32_t>(bytes), 16), policy)) return st;
  const T preset = bits_as<T>(Key<T>::kPreset);
  for (int32_t j = 0; j < k; ++j) {
    dst_val[j] = preset;
    dst_idx[j] = -1;
  }
  return ZIVK_STS_NO_ERR;
}

// ---- Gather
// What a gather leaves: n entries read, c of them set aside as non-finite (at the end),
// p of the rest with the sign bit clear.
struct Gathered {
  int32_t n = 0, c = 0, p = 0;
};

// Reads entry i, the key at byte offset i * stride, with position i, until i + 1
// reaches len or (i + 1) * stride reaches len * 4, both products in 32 bits: the stride
// decimates a span of len * 4 bytes. Keys are stored as map(bits).
//
// Float keys: a non-finite key goes, as it is read, to the next place c of a block at
// the front, which moves the finite key there to its place; that block then goes to the
// end, and the first +inf and the first -inf found in it go to its front and take part
// again (a +inf as a sign-clear entry). Every other non-finite key stays out.
template <bool kFloat, class K, class Map>
Gathered gather(const uint8_t* src, int32_t stride, int32_t len, const Entries<K>& t, Map map) {
  Gathered g;
  const int32_t span = static_cast<int32_t>(static_cast<uint32_t>(len) * 4u);
  for (int32_t i = 0;; ++i) {
    uint32_t bits;
    memcpy(&bits, src + int64_t{i} * stride, sizeof bits);
    t.key[i] = map(bits);
    t.pos[i] = i;
    if constexpr (kFloat) {
      if ((bits & kExponent) == kExponent) {
        t.swap(i, g.c++);
      } else {
        g.p += (bits & kSignBit) == 0;
      }
    }
    const int32_t next = i + 1;
    if (next >= len || static_cast<int32_t>(static_cast<uint32_t>(next) * static_cast<uint32_t>(stride)) >= span) {
      g.n = next;
      break;
    }
  }
  if constexpr (kFloat) {
    const int32_t n = g.n, c = g.c;
    for (int32_t j = c - 1; j >= 0; --j) t.swap(j, n - c + j);
    bool plus = false, minus = false;
    int32_t moved = 0;
    for (int32_t j = n - c; j < n && !(plus && minus); ++j) {
      const uint32_t bits = bits_as<uint32_t>(t.key[j]);
      if ((bits == kPlusInf && !plus) || (bits == kMinusInf && !minus)) {
        (bits == kPlusInf ? plus : minus) = true;
        t.swap(j, n - c + moved++);
      }
    }
    g.c -= moved;
    g.p += plus;
  }
  return g;
}

// ---- Output
// Writes min(k, len - c) entries. When the stride left len - n places unread, they count
// as keys of value 0 with positions n, n + 1, ...: result entries go out while
// not_below_zero(j) holds and the n - c entries that took part last, then the zero
// places, then the rest of the result.
template <class T, class K, class NotBelowZero>
void output(const Entries<K>& r, const Gathered& g, int32_t len, int32_t k, int32_t offset, T* dst_val,
            int32_t* dst_idx, NotBelowZero not_below_zero) {
  const int32_t m = std::min(k, len - g.c);
  int32_t out = 0, j = 0;
  const auto put = [&](K v, int32_t pos) {
    dst_val[out] = bits_as<T>(v);
    dst_idx[out] = pos + offset;
    ++out;
  };
  if (g.n == len) {
    for (; j < m; ++j) put(r.key[j], r.pos[j]);
    return;
  }
  for (; j < m && j < g.n - g.c && not_below_zero(j); ++j) put(r.key[j], r.pos[j]);
  for (int32_t z = g.n; z < len && out < m; ++z) put(K{}, z);
  for (; out < m; ++j) put(r.key[j], r.pos[j]);
}

// ---- Method 1: quick selection
// Selects places 0 .. min(k, n) - 1 in falling order; ties have no defined order.
template <class T>
void quick(const uint8_t* src, int32_t stride, int32_t len, T* dst_val, int32_t* dst_idx, int32_t k, int32_t offset,
           uint8_t* policy) {
  constexpr bool kFloat = std::is_same_v<T, float>;
  srand(static_cast<unsigned>(time(nullptr)));
  T* val = reinterpret_cast<T*>(policy);
  const Entries<T> t{val, reinterpret_cast<int32_t*>(val + len)};
  const Gathered g = gather<kFloat>(src, stride, len, t, [](uint32_t bits) { return bits_as<T>(bits); });
  const int32_t target = std::min(k, g.n) - 1;
  sort::quick_select(t, 0, g.n - 1 - g.c, target, [](T x, T v) { return x > v; });
  output(t, g, len, k, offset, dst_val, dst_idx, [&](int32_t j) {
    return !(val[j] < T(0));  // -0.0 is not below zero
  });
}

// ---- Method 2: radix selection
struct RadixRegions {
  Entries<uint32_t> result, work;
  int32_t* counters;
  RadixRegions(uint8_t* policy, int32_t len) {
    uint32_t* b = reinterpret_cast<uint32_t*>(policy);
    result = {b, reinterpret_cast<int32_t*>(b + 2 * int64_t{len})};
    work = {b + len, reinterpret_cast<int32_t*>(b + 3 * int64_t{len})};
    counters = reinterpret_cast<int32_t*>(b + 4 * int64_t{len});
  }
};

// Copies n entries from one pair of regions to another.
inline void copy_entries(const Entries<uint32_t>& to, const Entries<uint32_t>& from, int32_t n) {
  sort::copy_back(to.key, from.key, n);
  sort::copy_back(to.pos, from.pos, n);
}

// The prefilter: counts the `count` working entries by bucket, forms running totals
// with the buckets taken largest keys first (bucket_at(rank) is the bucket of that
// rank), and keeps the entries of the leading buckets whose total first reaches m (the
// first bucket alone never decides). Every entry is scattered stably to the result
// regions; the kept ones are copied back. Returns the kept count (count if no total
// reaches m).
template <class BucketOf, class BucketAt>
int32_t prefilter(const RadixRegions& r, int32_t count, int32_t m, int32_t nbuckets, BucketOf bucket_of,
                  BucketAt bucket_at) {
  int32_t* counts = r.counters;
  sort::clear(counts, nbuckets);
  const auto bucket = [&](int32_t i) { return bucket_of(r.work.key[i]); };
  sort::count(counts, nbuckets, count, bucket);
  int32_t sum = 0, kept = count;
  bool decided = false;
  for (int32_t rank = 0; rank < nbuckets; ++rank) {
    int32_t& total = counts[bucket_at(rank)];
    total = sum += total;
    if (rank > 0 && !decided && total >= m) {
      kept = total;
      decided = true;
    }
  }
  sort::scatter_backward(counts, count, bucket, [&](int32_t i, int32_t c) {
    r.result.key[c] = r.work.key[i];
    r.result.pos[c] = r.work.pos[i];
  });
  copy_entries(r.work, r.result, kept);
  return kept;
}

// Sorts n working entries from `first` on by all four 8-bit digits in `order`, stably,
// into the result regions; results of the first three passes are copied back, and the
// last pass stores every key XOR last_xor.
void digit_passes(const RadixRegions& r, int32_t first, int32_t n, Order order, uint32_t last_xor) {
  const Entries<uint32_t> w{r.work.key + first, r.work.pos + first};
  const Entries<uint32_t> o{r.result.key + first, r.result.pos + first};
  for (int shift = 0; shift < 32; shift += sort::kDigitBits) {
    const uint32_t x = shift == 24 ? last_xor : 0;
    sort::digit_pass(w.key, n, shift, order, [&](int32_t i, int32_t c) {
      o.key[c] = w.key[i] ^ x;
      o.pos[c] = w.pos[i];
    });
    if (shift != 24) copy_entries(w, o, n);
  }
}

void radix_32s(const uint8_t* src, int32_t stride, int32_t len, int32_t* dst_val, int32_t* dst_idx, int32_t k,
               int32_t offset, uint8_t* policy) {
  const RadixRegions r(policy, len);
  const Gathered g = gather<false>(src, stride, len, r.work, [](uint32_t bits) { return bits ^ kSignBit; });
  const int32_t m = std::min(k, g.n);
  int32_t kept = g.n;
  if (static_cast<double>(m) * kPrefilterRatio < static_cast<double>(g.n)) {
    kept = prefilter(
        r, g.n, m, Key<int32_t>::kBuckets, [](uint32_t key) { return key >> 24; },
        [](int32_t rank) { return 255 - rank; });
  }
  digit_passes(r, 0, kept, Order::falling, kSignBit);
  output(r.result, g, len, k, offset, dst_val, dst_idx,
         [&](int32_t j) { return static_cast<int32_t>(r.result.key[j]) >= 0; });
}

// Float keys as raw bits: the buckets of sign and exponent run 255 down to 0 (sign
// clear, largest first) and then 256 up to 511 (sign set, least magnitude first). The
// sign-clear entries then sort by falling bits and the sign-set ones by rising bits,
// which ranks +0.0 above -0.0.
void radix_32f(const uint8_t* src, int32_t stride, int32_t len, float* dst_val, int32_t* dst_idx, int32_t k,
               int32_t offset, uint8_t* policy) {
  const RadixRegions r(policy, len);
  const Gathered g = gather<true>(src, stride, len, r.work, [](uint32_t bits) { return bits; });
  const int32_t m = std::min(k, g.n);
  const int32_t kept = prefilter(
      r, g.n - g.c, m, Key<float>::kBuckets, [](uint32_t key) { return key >> 23; },
      [](int32_t rank) { return rank < 256 ? 255 - rank : rank; });
  if (g.p < kept) {
    digit_passes(r, 0, g.p, Order::falling, 0);
    digit_passes(r, g.p, kept - g.p, Order::rising, 0);
  } else {
    digit_passes(r, 0, kept, Order::falling, 0);
  }
  output(r.result, g, len, k, offset, dst_val, dst_idx, [&](int32_t j) { return j < std::min(m, g.p); });
}

// ---- TopK
template <class T>
ZIVKStatus top_k(const T* src, int32_t offset, int32_t stride, int32_t len, T* dst_val, int32_t* dst_idx, int32_t k,
                 int32_t method, uint8_t* policy,
                 void (*radix)(const uint8_t*, int32_t, int32_t, T*, int32_t*, int32_t, int32_t, uint8_t*)) {
  if (any_null(policy, dst_idx, src, dst_val)) return ZIVK_STS_NULL_PTR_ERR;
  if (offset < 0 || INT32_MAX - offset < len) return ZIVK_STS_SIZE_ERR;
  if (stride < 1) return ZIVK_STS_TOPK_STRIDE_ERR;
  if (len < 1 || k < 1) return ZIVK_STS_SIZE_ERR;
  if (method < 0 || method > 2) return ZIVK_STS_TOPK_METHOD_ERR;
  const uint8_t* s = reinterpret_cast<const uint8_t*>(src);
  if (settle(len, k, method) == kQuickSelect) {
    quick(s, stride, len, dst_val, dst_idx, k, offset, policy);
  } else {
    radix(s, stride, len, dst_val, dst_idx, k, offset, policy);
  }
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_TopKInit_32s(int32_t len, int32_t* dstVal, int32_t* dstIdx, int32_t k, int32_t method,
                                           uint8_t** policy) {
  return init(len, dstVal, dstIdx, k, method, policy);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_TopKInit_32f(int32_t len, float* dstVal, int32_t* dstIdx, int32_t k, int32_t method,
                                           uint8_t** policy) {
  return init(len, dstVal, dstIdx, k, method, policy);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_TopK_32s(const int32_t* src, int32_t offset, int32_t srcStride, int32_t len,
                                       int32_t* dstVal, int32_t* dstIdx, int32_t k, int32_t method, uint8_t* policy) {
  return top_k(src, offset, srcStride, len, dstVal, dstIdx, k, method, policy, radix_32s);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_TopK_32f(const float* src, int32_t offset, int32_t srcStride, int32_t len,
                                       float* dstVal, int32_t* dstIdx, int32_t k, int32_t method, uint8_t* policy) {
  return top_k(src, offset, srcStride, len, dstVal, dstIdx, k, method, policy, radix_32f);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_TopKRelease(uint8_t* policy) { return handles::release(policy); }
