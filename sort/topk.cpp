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
constexpr uint32_t kSignBit = 0x80000000u;
constexpr uint32_t kExponent = 0x7F800000u;
constexpr uint32_t kPlusInf = 0x7F800000u;
constexpr uint32_t kMinusInf = 0xFF800000u;

template <class To, class From>
inline To bits_as(From x) {
  static_assert(sizeof(To) == sizeof(From));
  To t;
  memcpy(&t, &x, sizeof t);
  return t;
}

// How each key type presets the outputs and ranks its keys. A key is stored in the
// regions as stored(bits); its bucket is the top bits of the stored key, and buckets
// take rank 0, 1, ... from the largest keys down: bucket_at(rank). ordered(bits) is the key as an int32 that rises with the
// key's rank falling, for the selection below.
//
// 32s: the sign bit flipped, so unsigned order is signed order; 256 buckets of the top
// byte, 255 first. 32f: raw bits; 512 buckets of sign and exponent, 255 down to 0 (sign
// clear, largest first), then 256 up to 511 (sign set, least magnitude first).
struct Keys32s {
  static constexpr bool kFloat = false;
  static constexpr uint32_t kPreset = 0x80000000u;  // the least int32
  static constexpr int32_t kBuckets = 256;
  static constexpr int kBucketShift = 24;
  static constexpr uint32_t kLastXor = kSignBit;  // the flip undone as the last pass stores
  static uint32_t stored(uint32_t bits) { return bits ^ kSignBit; }
  static int32_t bucket_of(uint32_t key) { return static_cast<int32_t>(key >> kBucketShift); }
  static int32_t bucket_at(int32_t rank) { return kBuckets - 1 - rank; }
  static int32_t ordered(int32_t bits) { return bits; }
  template <class V>
  static V ordered(const V& bits) { return bits; }
};
struct Keys32f {
  static constexpr bool kFloat = true;
  static constexpr uint32_t kPreset = 0xFF7FFFFFu;  // the most negative finite float, not -inf
  static constexpr int32_t kBuckets = 512;
  static constexpr int kBucketShift = 23;
  static constexpr uint32_t kLastXor = 0;
  static uint32_t stored(uint32_t bits) { return bits; }
  static int32_t bucket_of(uint32_t key) { return static_cast<int32_t>(key >> kBucketShift); }
  static int32_t bucket_at(int32_t rank) { return rank < 256 ? 255 - rank : rank; }
  // A sign-set key keeps its sign and has its other bits inverted.
  static int32_t ordered(int32_t bits) { return bits < 0 ? bits ^ 0x7FFFFFFF : bits; }
  template <class V>
  static V ordered(const V& bits) {
    const V magnitude = simd::splat<V>(0x7FFFFFFF);
    return simd::bit_xor(bits, simd::bit_and(simd::shr(bits, simd::shift_count<int32_t, V::kBlocks>(31)), magnitude));
  }
};

template <class T>
using KeysOf = std::conditional_t<std::is_same_v<T, float>, Keys32f, Keys32s>;

// ---- Work buffer
// Method 1: values and positions. Method 2: result values, working values, result
// positions, working positions, then the prefilter's counters. len entries a region;
// the block is rounded up to 16 bytes and must stay below kBufferLimit.
constexpr int64_t kBufferLimit = 0x7FFFFFF0;

template <class T>
int64_t buffer_bytes(int32_t len, int32_t method) {
  if (method == kQuickSelect) return int64_t{len} * 8;
  return int64_t{len} * 16 + int64_t{KeysOf<T>::kBuckets} * 4;
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
  const T preset = bits_as<T>(KeysOf<T>::kPreset);
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
// not_below_zero(j) holds and any of the n - c are left, then the zero places, then the
// rest of the result.
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
// in rank order, and keeps the entries of the leading buckets whose total first
// reaches m (the first bucket alone never decides). Every entry is scattered stably to
// the result regions; the kept ones are copied back. Returns the kept count (count if
// no total reaches m).
template <class Tr>
int32_t prefilter(const RadixRegions& r, int32_t count, int32_t m) {
  int32_t* counts = r.counters;
  sort::clear(counts, Tr::kBuckets);
  const auto bucket = [&](int32_t i) { return Tr::bucket_of(r.work.key[i]); };
  sort::count(counts, Tr::kBuckets, count, bucket);
  int32_t sum = 0, kept = count;
  bool decided = false;
  for (int32_t rank = 0; rank < Tr::kBuckets; ++rank) {
    int32_t& total = counts[Tr::bucket_at(rank)];
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

// ---- Prefilter by a guessed rank
// What the prefilter keeps are the entries of the ranks up to some r*, by rank and then
// in input order. Where no key is set aside, that set can be found without gathering
// and scattering every entry: a sample of the keys suggests a rank R, one pass over the
// column picks the keys of rank up to R (R = the column's own order), and their counts
// tell r* exactly when the totals up to R reach m. The kept entries then go to the
// working regions in the order the prefilter gives them. The result is the same; only
// the scratch left in the other regions differs.

// Keys sampled to guess R, and the least gathered count worth it.
constexpr int32_t kSampleKeys = 1024;
constexpr int32_t kGuessFrom = 8 * kSampleKeys;

// The rank R whose keys the sample says cover about twice m, at least 1; kBuckets - 1
// when the guess would pick nearly everything.
template <class Tr>
int32_t guess_rank(const uint8_t* src, int32_t stride, int32_t n, int32_t m) {
  int32_t seen[Tr::kBuckets] = {};
  for (int32_t j = 0; j < kSampleKeys; ++j) {
    uint32_t bits;
    memcpy(&bits, src + int64_t{j} * n / kSampleKeys * stride, sizeof bits);
    ++seen[Tr::bucket_of(Tr::stored(bits))];
  }
  const int64_t want = 2 * int64_t{m} * kSampleKeys / n + 4;
  int64_t sum = 0;
  for (int32_t rank = 0; rank < Tr::kBuckets - 1; ++rank) {
    sum += seen[Tr::bucket_at(rank)];
    if (rank >= 1 && sum >= want) return rank;
  }
  return Tr::kBuckets - 1;
}

// The count a gather reads when its 32-bit products cannot wrap, or -1.
inline int32_t gathered_count(int32_t len, int32_t stride) {
  if (4 * int64_t{len} + stride > INT32_MAX) return -1;
  return static_cast<int32_t>(std::min<int64_t>(len, (4 * int64_t{len} + stride - 1) / stride));
}

// Picks every key of rank up to R into the result regions (stored key, position), in
// input order. Counts p, the keys with the sign bit clear (32f). Returns the count
// picked, or -1 when a key is non-finite (32f), for which the gather sets keys aside.
template <class Tr>
int32_t pick_leading(const uint8_t* src, int32_t stride, int32_t n, int32_t rank, const RadixRegions& r,
                     int32_t& p) {
  // ordered(bits) at or above this is a rank up to R.
  const int32_t least = static_cast<int32_t>(
      (static_cast<uint32_t>(Tr::kBuckets - 1 - rank) << Tr::kBucketShift) ^ kSignBit);
  int32_t picked = 0, sign_set = 0;
  // Finite keys have ordered values within [kLeastFinite, kMostFinite].
  constexpr int32_t kMostFinite = 0x7F7FFFFF, kLeastFinite = static_cast<int32_t>(0x80800000u);
  int32_t top = 0, low = 0;
  const auto take = [&](int32_t i, uint32_t bits) {
    r.result.key[picked] = Tr::stored(bits);
    r.result.pos[picked] = i;
    ++picked;
  };
  int32_t i = 0;
  if (stride == 4) {
    const int32_t* keys = reinterpret_cast<const int32_t*>(src);
    auto run = [&](auto w) {
      using V = simd::vec<int32_t, decltype(w)::value>;
      const V below = simd::splat<V>(least - 1);
      const simd::shift_count<int32_t, V::kBlocks> sign(31);
      V set_count = simd::zeros<V>(), top_v = simd::zeros<V>(), low_v = simd::zeros<V>();
      for (; i + V::kLanes <= n; i += V::kLanes) {
        const V bits = simd::load<V>(keys + i);
        const V t = Tr::ordered(bits);
        if constexpr (Tr::kFloat) {
          set_count = simd::sub_wrap(set_count, simd::shr(bits, sign));  // -1 where the sign is set
          top_v = simd::max(top_v, t);
          low_v = simd::min(low_v, t);
        }
        if (uint32_t lanes = simd::lane_bits(simd::cmp_gt(t, below))) {
          const simd::lanes<V> b(bits);
          for (; lanes != 0; lanes &= lanes - 1) {
            const int l = __builtin_ctz(lanes);
            take(i + l, static_cast<uint32_t>(b.v[l]));
          }
        }
      }
      if constexpr (Tr::kFloat) {
        const simd::lanes<V> c(set_count), hi(top_v), lo(low_v);
        for (int l = 0; l < V::kLanes; ++l) {
          sign_set += c.v[l];
          top = std::max(top, hi.v[l]);
          low = std::min(low, lo.v[l]);
        }
      }
    };
    if constexpr (simd::kWide > 1) run(simd::width<simd::kWide>{});
    run(simd::width<1>{});
  }
  for (; i < n; ++i) {
    uint32_t bits;
    memcpy(&bits, src + int64_t{i} * stride, sizeof bits);
    const int32_t t = Tr::ordered(static_cast<int32_t>(bits));
    if (t >= least) take(i, bits);
    sign_set += static_cast<int32_t>(bits >> 31);
    top = std::max(top, t);
    low = std::min(low, t);
  }
  p = n - sign_set;
  const bool non_finite = Tr::kFloat && (top > kMostFinite || low < kLeastFinite);
  return non_finite ? -1 : picked;
}

// The prefilter by a guessed rank: true with *kept and the working regions as the
// prefilter leaves them, or false when the guess does not apply (the caller then
// gathers and prefilters every entry).
template <class Tr>
bool prefilter_by_guess(const uint8_t* src, int32_t stride, int32_t len, int32_t k, const RadixRegions& r,
                        Gathered& g, int32_t& kept) {
  const int32_t n = gathered_count(len, stride);
  if (n < kGuessFrom) return false;
  const int32_t m = std::min(k, n);
  if (!Tr::kFloat && !(static_cast<double>(m) * kPrefilterRatio < static_cast<double>(n))) return false;
  const int32_t rank = guess_rank<Tr>(src, stride, n, m);
  if (rank >= Tr::kBuckets - 1) return false;
  int32_t p = 0;
  const int32_t picked = pick_leading<Tr>(src, stride, n, rank, r, p);
  if (picked < m) return false;  // too few (or a key to set aside)
  // Totals by rank over the picked keys, exact up to R.
  int32_t* counts = r.counters;
  sort::clear(counts, Tr::kBuckets);
  const auto bucket = [&](int32_t i) { return Tr::bucket_of(r.result.key[i]); };
  sort::count(counts, Tr::kBuckets, picked, bucket);
  int32_t sum = 0, last = -1;
  for (int32_t rk = 0; rk <= rank; ++rk) {
    int32_t& c = counts[Tr::bucket_at(rk)];
    const int32_t start = sum;
    sum += c;
    c = start;  // now the first place of the bucket
    if (last < 0 && rk >= 1 && sum >= m) {
      last = rk;
      kept = sum;
    }
  }
  if (last < 0) return false;
  // Keys of ranks beyond r* have first places at or past kept.
  for (int32_t i = 0; i < picked; ++i) {
    const int32_t at = counts[bucket(i)];
    if (at >= kept) continue;
    counts[bucket(i)] = at + 1;
    r.work.key[at] = r.result.key[i];
    r.work.pos[at] = r.result.pos[i];
  }
  g.n = n;
  g.c = 0;
  g.p = p;
  return true;
}
// Sorts n working entries from `first` on by all four 8-bit digits in `order`, stably,
// into the result regions; results of the first three passes are copied back, and the
// last pass stores every key XOR last_xor.
void digit_passes(const RadixRegions& r, int32_t first, int32_t n, Order order, uint32_t last_xor) {
  const Entries<uint32_t> w{r.work.key + first, r.work.pos + first};
  const Entries<uint32_t> o{r.result.key + first, r.result.pos + first};
  sort::DigitCounts<uint32_t> counts(w.key, n);
  const int last = counts.kPasses - 1;
  for (int pass = 0; pass <= last; ++pass) {
    const uint32_t x = pass == last ? last_xor : 0;
    sort::digit_pass(counts.of[pass], w.key, n, pass, order, [&](int32_t i, int32_t c) {
      o.key[c] = w.key[i] ^ x;
      o.pos[c] = w.pos[i];
    });
    if (pass != last) copy_entries(w, o, n);
  }
}

// 32s prefilters when the k wanted are fewer than the keys by kPrefilterRatio, and
// sorts the kept entries by falling digits. 32f always prefilters; its sign-clear
// entries (the first p) then sort by falling bits and the sign-set ones by rising bits,
// which ranks +0.0 above -0.0.
template <class T, class Tr = KeysOf<T>>
void radix(const uint8_t* src, int32_t stride, int32_t len, T* dst_val, int32_t* dst_idx, int32_t k, int32_t offset,
           uint8_t* policy) {
  const RadixRegions r(policy, len);
  Gathered g;
  int32_t kept = 0;
  if (!prefilter_by_guess<Tr>(src, stride, len, k, r, g, kept)) {
    g = gather<Tr::kFloat>(src, stride, len, r.work, Tr::stored);
    const int32_t m = std::min(k, g.n);
    kept = g.n - g.c;
    if (Tr::kFloat || static_cast<double>(m) * kPrefilterRatio < static_cast<double>(g.n))
      kept = prefilter<Tr>(r, g.n - g.c, m);
  }
  if (Tr::kFloat && g.p < kept) {
    digit_passes(r, 0, g.p, Order::falling, Tr::kLastXor);
    digit_passes(r, g.p, kept - g.p, Order::rising, Tr::kLastXor);
  } else {
    digit_passes(r, 0, kept, Order::falling, Tr::kLastXor);
  }
  // 32f: the sign-set entries, -0.0 among them, follow the first p.
  output(r.result, g, len, k, offset, dst_val, dst_idx, [&](int32_t j) {
    if constexpr (Tr::kFloat) return j < g.p;
    else return static_cast<int32_t>(r.result.key[j]) >= 0;
  });
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
  return top_k(src, offset, srcStride, len, dstVal, dstIdx, k, method, policy, radix<int32_t>);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_TopK_32f(const float* src, int32_t offset, int32_t srcStride, int32_t len,
                                       float* dstVal, int32_t* dstIdx, int32_t k, int32_t method, uint8_t* policy) {
  return top_k(src, offset, srcStride, len, dstVal, dstIdx, k, method, policy, radix<float>);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_TopKRelease(uint8_t* policy) { return handles::release(policy); }
