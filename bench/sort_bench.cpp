// Sorting and selection: the radix sorts of 32- and 64-bit keys, the radix index sorts,
// the counting path of SortAscend_16s_I, the qsort-based SortAscend_32s_I and TopK,
// against std::sort, std::stable_sort, qsort, Boost's spreadsort and pdqsort, Highway's
// vqsort, std::partial_sort and std::nth_element.
//
// A sort overwrites its input, so this family has a shape of its own (a zb::Suite):
// - Each row is one function on one input (random keys at 1Ki, 64Ki, 1Mi and 16Mi; sorted,
//   reversed and 16-distinct keys at 1Mi) with its own variants: the copy alone, ours,
//   and each peer.
// - An in-place sort (ours or a peer) copies the unsorted input into its working array at
//   the start of every timed call. The copy alone is timed in the same rounds, and the
//   table's keys/s and ratios use copy+sort minus copy; the `copy` column shows what the
//   copy was of our copy+sort time, so the subtraction can be judged.
// - Index sorts and top-k leave their keys unwritten and take no copy. Their peers build
//   the (key, position) pairs inside the timed call and write the positions (and values)
//   out: the whole job that ours does.
// - Work buffers made once by an Init (ours) or a constructor (vqsort's Sorter) are made
//   outside the timed calls and touched first, as an application would keep them.
//   std::stable_sort takes its buffer from the heap on every call, as it does for anyone.
// - After its runs every variant's output is checked (sorted and the same keys; a stable
//   permutation; the right k values and positions); a wrong one is flagged in the table.
#include <dlfcn.h>
#include <gnu/libc-version.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <benchmark/benchmark.h>
#include <boost/sort/pdqsort/pdqsort.hpp>
#include <boost/sort/spreadsort/spreadsort.hpp>
#include <boost/version.hpp>
#include <hwy/contrib/sort/vqsort.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "bench/zb_rows.h"
#include "zivks.h"

namespace {

using zb::Buffer;
using zb::kKi;
using zb::kMi;
using zb::Rng;
constexpr int32_t kTopK = 100;

// ---- Inputs ----------------------------------------------------------------------------

enum class Input { random, sorted, reversed, few };
const char* input_name(Input i) {
  switch (i) {
    case Input::random: return "random";
    case Input::sorted: return "sorted";
    case Input::reversed: return "reversed";
    default: return "few16";
  }
}

// Random keys: every bit pattern for the integers; for the floats both signs and
// magnitudes over 2^-20 .. 2^21 (float) or 2^-40 .. 2^41 (double), all finite and
// normal, no zero.
template <class T>
T random_key(Rng& r) {
  const uint64_t b = r.next();
  if constexpr (std::is_same_v<T, float>) {
    const uint32_t exp = 127 - 20 + static_cast<uint32_t>((b >> 32) % 41);
    const uint32_t bits = (static_cast<uint32_t>(b >> 63) << 31) | (exp << 23) |
                          static_cast<uint32_t>(b & 0x7FFFFF);
    float f;
    memcpy(&f, &bits, 4);
    return f;
  } else if constexpr (std::is_same_v<T, double>) {
    const uint64_t b2 = r.next();
    const uint64_t exp = 1023 - 40 + (b2 >> 32) % 81;
    const uint64_t bits = (b & (uint64_t{1} << 63)) | (exp << 52) | (b & ((uint64_t{1} << 52) - 1));
    double d;
    memcpy(&d, &bits, 8);
    return d;
  } else {
    return static_cast<T>(b >> (64 - 8 * sizeof(T)));
  }
}

template <class T>
void fill(T* p, int32_t n, Input input, uint64_t seed) {
  Rng r{seed * 0x9E3779B97F4A7C15ull + 0x1234567};
  if (input == Input::few) {
    T values[16];
    for (T& v : values) v = random_key<T>(r);
    for (int32_t i = 0; i < n; ++i) p[i] = values[r.next() >> 60];
    return;
  }
  for (int32_t i = 0; i < n; ++i) p[i] = random_key<T>(r);
  if (input == Input::sorted) std::sort(p, p + n);
  if (input == Input::reversed) std::sort(p, p + n, [](T a, T b) { return b < a; });
}

// A hash of a multiset of keys: the same keys in any order give the same sum.
template <class T>
uint64_t multiset_hash(const T* p, int32_t n) {
  uint64_t sum = 0;
  for (int32_t i = 0; i < n; ++i) {
    uint64_t x = 0;
    memcpy(&x, &p[i], sizeof(T));
    x ^= x >> 33, x *= 0xFF51AFD7ED558CCDull, x ^= x >> 33, x *= 0xC4CEB9FE1A85EC53ull, x ^= x >> 33;
    sum += x;
  }
  return sum;
}

template <class K>
struct Pair {
  K key;
  int32_t pos;
};

const hwy::Sorter& vqsort() {
  static const hwy::Sorter s;
  return s;
}

// ---- Rows ---------------------------------------------------------------------------

// What one row measures on: the input keys, the working array an in-place sort sorts,
// and whatever else the row's variants need.
struct Bed {
  int32_t n = 0;
  size_t key_bytes = 0;
  std::unique_ptr<Buffer> in, work;
  uint64_t in_hash = 0;
  std::unique_ptr<Buffer> idx, vals, pairs, ref_vals, ref_idx;
  uint8_t* policy = nullptr;
  ZIVKStatus (*release)(uint8_t*) = nullptr;

  ~Bed() {
    if (policy != nullptr) release(policy);
  }
  // The start of every timed call of an in-place sort.
  void restore() const { memcpy(work->as<void>(), in->as<void>(), key_bytes * static_cast<size_t>(n)); }
  template <class T>
  T* w() const { return work->as<T>(); }
  template <class T>
  const T* keys() const { return in->as<T>(); }
  // The policy has no header: touching all of it is as harmless as the sorts' own use.
  void touch_policy(size_t bytes) const { memset(policy, 0, bytes); }
};

// "copy", "ours" or the peer's name; a call of an in-place sort includes its copy.
using Variant = zb::Variant<Bed, void>;

struct Row {
  std::string label;  // the exported name without the prefix (and the method of TopK)
  Input input;
  int32_t n;
  std::function<std::unique_ptr<Bed>()> make;
  std::vector<Variant> v;  // v[0] the copy (no call: none), v[1] ours, then the peers
};

zb::RowSuite<Row> suite;
std::vector<Row>& rows() { return suite.rows; }

// The bed of the row that runs now; a row's runs come one after another.
std::unique_ptr<Bed>& current_bed() {
  static std::unique_ptr<Bed> b;
  return b;
}
size_t current_row = SIZE_MAX;

Bed& bed_for(size_t ri) {
  if (current_row != ri) {
    current_bed().reset();
    current_bed() = rows()[ri].make();
    current_row = ri;
  }
  return *current_bed();
}

template <class T>
std::unique_ptr<Bed> keys_bed(int32_t n, Input input, bool in_place) {
  auto b = std::make_unique<Bed>();
  b->n = n;
  b->key_bytes = sizeof(T);
  b->in = std::make_unique<Buffer>(sizeof(T) * static_cast<size_t>(n));
  fill(b->in->as<T>(), n, input, static_cast<uint64_t>(n) * 8 + static_cast<uint64_t>(input) + sizeof(T));
  if (in_place) {
    b->work = std::make_unique<Buffer>(sizeof(T) * static_cast<size_t>(n));
    b->in_hash = multiset_hash(b->keys<T>(), n);
  }
  return b;
}

void need(ZIVKStatus s, const char* what) {
  if (s != ZIVK_STS_NO_ERR) {
    fprintf(stderr, "sort bench: %s returned %d\n", what, static_cast<int>(s));
    exit(1);
  }
}

// ---- Checks ---------------------------------------------------------------------------

template <class T>
bool sorted_same_keys(const Bed& b) {
  const T* w = b.w<T>();
  return std::is_sorted(w, w + b.n) && multiset_hash(w, b.n) == b.in_hash;
}

// idx is a permutation that puts the keys in rising order, ties lowest position first.
template <class T>
bool stable_permutation(const Bed& b) {
  const T* k = b.keys<T>();
  const int32_t* idx = b.idx->as<int32_t>();
  std::vector<bool> seen(static_cast<size_t>(b.n));
  for (int32_t p = 0; p < b.n; ++p) {
    const int32_t i = idx[p];
    if (i < 0 || i >= b.n || seen[i]) return false;
    seen[i] = true;
    if (p > 0) {
      const int32_t j = idx[p - 1];
      if (k[i] < k[j] || (!(k[j] < k[i]) && i < j)) return false;
    }
  }
  return true;
}

// The k largest, largest first, ties lowest position first; with `any_tie_order` the
// positions need only hold the values written (the order of equal keys is free).
template <class T>
bool top_k_right(const Bed& b, bool any_tie_order) {
  const T* v = b.vals->as<T>();
  const int32_t* idx = b.idx->as<int32_t>();
  const T* rv = b.ref_vals->as<T>();
  const int32_t* ri = b.ref_idx->as<int32_t>();
  for (int32_t j = 0; j < kTopK; ++j) {
    if (!(v[j] == rv[j])) return false;
    if (any_tie_order ? (idx[j] < 0 || idx[j] >= b.n || !(b.keys<T>()[idx[j]] == v[j])) : idx[j] != ri[j])
      return false;
  }
  return true;
}

// ---- Peers ----------------------------------------------------------------------------

Variant copy_variant() {
  return {"copy", [](Bed& b) { b.restore(); }, nullptr, 0};
}

template <class T>
Variant std_sort_peer(double target) {
  return {"std::sort",
          [](Bed& b) {
            b.restore();
            std::sort(b.w<T>(), b.w<T>() + b.n);
          },
          sorted_same_keys<T>, target};
}

template <class T>
std::vector<Variant> sort_peers(double std_target, double spread_target) {
  std::vector<Variant> v;
  v.push_back(std_sort_peer<T>(std_target));
  v.push_back({"spreadsort",
               [](Bed& b) {
                 b.restore();
                 boost::sort::spreadsort::spreadsort(b.w<T>(), b.w<T>() + b.n);
               },
               sorted_same_keys<T>, spread_target});
  v.push_back({"pdqsort",
               [](Bed& b) {
                 b.restore();
                 boost::sort::pdqsort(b.w<T>(), b.w<T>() + b.n);
               },
               sorted_same_keys<T>, 0});
  v.push_back({"vqsort",
               [](Bed& b) {
                 b.restore();
                 vqsort()(b.w<T>(), static_cast<size_t>(b.n), hwy::SortAscending());
               },
               sorted_same_keys<T>, 0});
  return v;
}

template <class T>
int qsort_compare(const void* a, const void* b) {
  const T x = *static_cast<const T*>(a), y = *static_cast<const T*>(b);
  return (y < x) - (x < y);
}

// ---- Bench-only variants ---------------------------------------------------------------
// Our sorts without a part of what they are required to do, to show what that part
// costs; each runs in the same row, on the same keys, with the same checks as ours.

// A least-significant-digit radix sort with `Bits`-bit digits: every histogram counted
// in one forward walk, then per pass a stable forward scatter from one array into the
// other, the two taking turns (no copy back after a pass); an odd number of passes ends
// with one copy. Keys are taken as unsigned bits; doubles are first mapped so that
// their unsigned order is their numeric order, and back after.
template <class U, int Bits>
void lsd_radix(U* a, U* buf, int32_t n) {
  constexpr int kPasses = (8 * static_cast<int>(sizeof(U)) + Bits - 1) / Bits;
  constexpr uint32_t kBuckets = 1u << Bits;
  static int32_t counts[kPasses][kBuckets];
  memset(counts, 0, sizeof counts);
  for (int32_t i = 0; i < n; ++i)
    for (int p = 0; p < kPasses; ++p) ++counts[p][(a[i] >> (p * Bits)) & (kBuckets - 1)];
  U* from = a;
  U* to = buf;
  for (int p = 0; p < kPasses; ++p) {
    int32_t sum = 0;
    for (uint32_t d = 0; d < kBuckets; ++d) {
      const int32_t c = counts[p][d];
      counts[p][d] = sum;
      sum += c;
    }
    for (int32_t i = 0; i < n; ++i) to[counts[p][(from[i] >> (p * Bits)) & (kBuckets - 1)]++] = from[i];
    std::swap(from, to);
  }
  if (from != a) memcpy(a, from, sizeof(U) * static_cast<size_t>(n));
}

template <class T, int Bits>
void lsd_radix_keys(T* a, uint8_t* buf, int32_t n) {
  using U = std::conditional_t<sizeof(T) == 8, uint64_t, uint32_t>;
  U* u = reinterpret_cast<U*>(a);
  constexpr U kSign = U{1} << (8 * sizeof(U) - 1);
  if constexpr (std::is_floating_point_v<T>)
    for (int32_t i = 0; i < n; ++i) u[i] ^= (u[i] & kSign) ? ~U{0} : kSign;
  lsd_radix<U, Bits>(u, reinterpret_cast<U*>(buf), n);
  if constexpr (std::is_floating_point_v<T>)
    for (int32_t i = 0; i < n; ++i) u[i] ^= (u[i] & kSign) ? kSign : ~U{0};
}

template <class T, int Bits>
Variant lsd_radix_variant(const char* name) {
  return {name,
          [](Bed& b) {
            b.restore();
            lsd_radix_keys<T, Bits>(b.w<T>(), b.policy, b.n);
          },
          sorted_same_keys<T>, 0};
}

// The comparator SortAscend_32s_I hands to qsort (1 when a belongs after b, else 0),
// called the way qsort calls it: through a pointer the compiler cannot see through.
int one_sided_32s(const void* a, const void* b) {
  return *static_cast<const int32_t*>(a) > *static_cast<const int32_t*>(b);
}
int (*volatile one_sided_32s_ptr)(const void*, const void*) = one_sided_32s;

// ---- The rows ---------------------------------------------------------------------------

// Random keys at four sizes, and the three orders at 1Mi.
struct Shape {
  Input input;
  int32_t n;
};
const Shape kShapes[] = {{Input::random, kKi},      {Input::random, 64 * kKi},
                         {Input::random, kMi},      {Input::random, 16 * kMi},
                         {Input::sorted, kMi},      {Input::reversed, kMi},
                         {Input::few, kMi}};

bool at_target_point(const Shape& s) { return s.input == Input::random && s.n == kMi; }

template <class T>
using RadixFn = ZIVKStatus (*)(T*, int32_t, uint8_t*);

template <class T>
void radix_rows(const char* label, RadixFn<T> fn, ZIVKDataType type) {
  for (const Shape& s : kShapes) {
    // At random 1Mi: 32-bit keys at least 3x std::sort and level with spreadsort,
    // 64-bit keys at least 2x std::sort.
    const bool t = at_target_point(s);
    const double std_target = t ? (sizeof(T) == 4 ? 3.0 : 2.0) : 0;
    const double spread_target = t && sizeof(T) == 4 ? 1.0 : 0;
    Row r{label, s.input, s.n, nullptr, {}};
    r.make = [s, type] {
      std::unique_ptr<Bed> b = keys_bed<T>(s.n, s.input, true);
      need(ZIVKS_SortRadixInit(s.n, type, &b->policy), "ZIVKS_SortRadixInit");
      b->release = ZIVKS_SortRadixRelease;
      b->touch_policy(sizeof(T) * static_cast<size_t>(s.n));
      return b;
    };
    r.v.push_back(copy_variant());
    r.v.push_back({"ours",
                   [fn](Bed& b) {
                     b.restore();
                     fn(b.w<T>(), b.n, b.policy);
                   },
                   sorted_same_keys<T>, 0});
    for (Variant& p : sort_peers<T>(std_target, spread_target)) r.v.push_back(std::move(p));
    // Bench only: ours behind a test for keys already in order, which then returns.
    r.v.push_back({"bench: ours if unsorted",
                   [fn](Bed& b) {
                     b.restore();
                     if (!std::is_sorted(b.w<T>(), b.w<T>() + b.n)) fn(b.w<T>(), b.n, b.policy);
                   },
                   sorted_same_keys<T>, 0});
    // Bench only: eight 8-bit passes without the copy back; six 11-bit passes.
    if constexpr (sizeof(T) == 8) {
      r.v.push_back(lsd_radix_variant<T, 8>("bench: 8-bit, no copy"));
      r.v.push_back(lsd_radix_variant<T, 11>("bench: 11-bit, no copy"));
    }
    rows().push_back(std::move(r));
  }
}

template <class T>
using RadixIndexFn = ZIVKStatus (*)(const T*, int32_t, int32_t*, int32_t, uint8_t*);

template <class T>
void radix_index_rows(const char* label, RadixIndexFn<T> fn, ZIVKDataType type) {
  for (const Shape& s : kShapes) {
    Row r{label, s.input, s.n, nullptr, {}};
    r.make = [s, type] {
      std::unique_ptr<Bed> b = keys_bed<T>(s.n, s.input, false);
      b->idx = std::make_unique<Buffer>(4 * static_cast<size_t>(s.n));
      b->pairs = std::make_unique<Buffer>(sizeof(Pair<T>) * static_cast<size_t>(s.n));
      need(ZIVKS_SortRadixIndexInit(s.n, type, &b->policy), "ZIVKS_SortRadixIndexInit");
      b->release = ZIVKS_SortRadixIndexRelease;
      b->touch_policy(3 * sizeof(T) * static_cast<size_t>(s.n));
      return b;
    };
    r.v.push_back({"copy", nullptr, nullptr, 0});
    r.v.push_back({"ours",
                   [fn](Bed& b) {
                     fn(b.keys<T>(), static_cast<int32_t>(sizeof(T)), b.idx->as<int32_t>(), b.n, b.policy);
                   },
                   stable_permutation<T>, 0});
    // At random 1Mi at least twice the stable sort of the pairs.
    r.v.push_back({"std::stable_sort pairs",
                   [](Bed& b) {
                     const T* k = b.keys<T>();
                     Pair<T>* p = b.pairs->as<Pair<T>>();
                     for (int32_t i = 0; i < b.n; ++i) p[i] = {k[i], i};
                     std::stable_sort(p, p + b.n, [](const Pair<T>& x, const Pair<T>& y) { return x.key < y.key; });
                     int32_t* idx = b.idx->as<int32_t>();
                     for (int32_t i = 0; i < b.n; ++i) idx[i] = p[i].pos;
                   },
                   stable_permutation<T>, at_target_point(s) ? 2.0 : 0});
    rows().push_back(std::move(r));
  }
}

template <class T>
using SortFn = ZIVKStatus (*)(T*, int32_t);

// 16s at 64Ki and 1Mi (its counting path): at least 5x std::sort. 32s (qsort inside)
// for information only.
template <class T>
void comparison_rows(const char* label, SortFn<T> fn, double std_target, bool with_qsort) {
  for (int32_t n : {64 * kKi, kMi}) {
    Row r{label, Input::random, n, nullptr, {}};
    r.make = [n] { return keys_bed<T>(n, Input::random, true); };
    r.v.push_back(copy_variant());
    r.v.push_back({"ours",
                   [fn](Bed& b) {
                     b.restore();
                     fn(b.w<T>(), b.n);
                   },
                   sorted_same_keys<T>, 0});
    r.v.push_back(std_sort_peer<T>(std_target));
    if (with_qsort)
      r.v.push_back({"qsort",
                     [](Bed& b) {
                       b.restore();
                       qsort(b.w<T>(), static_cast<size_t>(b.n), sizeof(T), qsort_compare<T>);
                     },
                     sorted_same_keys<T>, 0});
    // Bench only: std::sort with the one-sided comparator, called through a pointer.
    if constexpr (std::is_same_v<T, int32_t>)
      if (with_qsort)
        r.v.push_back({"bench: std::sort our cmp",
                       [](Bed& b) {
                         b.restore();
                         std::sort(b.w<T>(), b.w<T>() + b.n, [](const T& x, const T& y) { return one_sided_32s_ptr(&y, &x) != 0; });
                       },
                       sorted_same_keys<T>, 0});
    rows().push_back(std::move(r));
  }
}

template <class T>
using TopKInitFn = ZIVKStatus (*)(int32_t, T*, int32_t*, int32_t, int32_t, uint8_t**);
template <class T>
using TopKFn = ZIVKStatus (*)(const T*, int32_t, int32_t, int32_t, T*, int32_t*, int32_t, int32_t, uint8_t*);

// Largest first, ties lowest position first.
template <class T>
bool before(const Pair<T>& x, const Pair<T>& y) {
  return y.key < x.key || (!(x.key < y.key) && x.pos < y.pos);
}

template <class T>
void write_head(Bed& b, const Pair<T>* p) {
  T* v = b.vals->as<T>();
  int32_t* idx = b.idx->as<int32_t>();
  for (int32_t j = 0; j < kTopK; ++j) v[j] = p[j].key, idx[j] = p[j].pos;
}

template <class T>
Pair<T>* make_pairs(Bed& b) {
  const T* k = b.keys<T>();
  Pair<T>* p = b.pairs->as<Pair<T>>();
  for (int32_t i = 0; i < b.n; ++i) p[i] = {k[i], i};
  return p;
}

// k = 100 of 1Mi random keys. Method 2 at least 5x std::partial_sort of the pairs;
// method 1 for information.
template <class T>
void topk_rows(const char* label, TopKInitFn<T> init, TopKFn<T> fn) {
  const int32_t n = kMi;
  for (int32_t method : {2, 1}) {
    Row r{std::string(label) + "/" + std::to_string(method), Input::random, n, nullptr, {}};
    r.make = [n, init, method] {
      std::unique_ptr<Bed> b = keys_bed<T>(n, Input::random, false);
      b->vals = std::make_unique<Buffer>(sizeof(T) * kTopK);
      b->idx = std::make_unique<Buffer>(4 * kTopK);
      b->pairs = std::make_unique<Buffer>(sizeof(Pair<T>) * static_cast<size_t>(n));
      need(init(n, b->vals->as<T>(), b->idx->as<int32_t>(), kTopK, method, &b->policy), "ZIVKS_TopKInit");
      b->release = ZIVKS_TopKRelease;
      const size_t histograms = std::is_same_v<T, float> ? 2048 : 1024;
      b->touch_policy(method == 2 ? 16 * static_cast<size_t>(n) + histograms : 8 * static_cast<size_t>(n));
      // The answer, for the checks.
      Pair<T>* p = make_pairs<T>(*b);
      std::partial_sort(p, p + kTopK, p + n, before<T>);
      b->ref_vals = std::make_unique<Buffer>(sizeof(T) * kTopK);
      b->ref_idx = std::make_unique<Buffer>(4 * kTopK);
      for (int32_t j = 0; j < kTopK; ++j) b->ref_vals->as<T>()[j] = p[j].key, b->ref_idx->as<int32_t>()[j] = p[j].pos;
      return b;
    };
    r.v.push_back({"copy", nullptr, nullptr, 0});
    r.v.push_back({"ours",
                   [fn, method](Bed& b) {
                     fn(b.keys<T>(), 0, static_cast<int32_t>(sizeof(T)), b.n, b.vals->as<T>(), b.idx->as<int32_t>(),
                        kTopK, method, b.policy);
                   },
                   [method](const Bed& b) { return top_k_right<T>(b, method == 1); }, 0});
    r.v.push_back({"std::partial_sort pairs",
                   [](Bed& b) {
                     Pair<T>* p = make_pairs<T>(b);
                     std::partial_sort(p, p + kTopK, p + b.n, before<T>);
                     write_head(b, p);
                   },
                   [](const Bed& b) { return top_k_right<T>(b, false); }, method == 2 ? 5.0 : 0});
    r.v.push_back({"nth_element+sort pairs",
                   [](Bed& b) {
                     Pair<T>* p = make_pairs<T>(b);
                     std::nth_element(p, p + kTopK - 1, p + b.n, before<T>);
                     std::sort(p, p + kTopK, before<T>);
                     write_head(b, p);
                   },
                   [](const Bed& b) { return top_k_right<T>(b, false); }, 0});
    rows().push_back(std::move(r));
  }
}

void make_rows() {
  radix_rows<uint32_t>("SortRadixAscend_32u_I", ZIVKS_SortRadixAscend_32u_I, ZIVK_DT_32U);
  radix_rows<int32_t>("SortRadixAscend_32s_I", ZIVKS_SortRadixAscend_32s_I, ZIVK_DT_32S);
  radix_rows<float>("SortRadixAscend_32f_I", ZIVKS_SortRadixAscend_32f_I, ZIVK_DT_32F);
  radix_rows<uint64_t>("SortRadixAscend_64u_I", ZIVKS_SortRadixAscend_64u_I, ZIVK_DT_64U);
  radix_rows<double>("SortRadixAscend_64f_I", ZIVKS_SortRadixAscend_64f_I, ZIVK_DT_64F);
  radix_index_rows<uint32_t>("SortRadixIndexAscend_32u", ZIVKS_SortRadixIndexAscend_32u, ZIVK_DT_32U);
  radix_index_rows<float>("SortRadixIndexAscend_32f", ZIVKS_SortRadixIndexAscend_32f, ZIVK_DT_32F);
  comparison_rows<int16_t>("SortAscend_16s_I", ZIVKS_SortAscend_16s_I, 5.0, false);
  comparison_rows<int32_t>("SortAscend_32s_I", ZIVKS_SortAscend_32s_I, 0, true);
  topk_rows<int32_t>("TopK_32s", ZIVKS_TopKInit_32s, ZIVKS_TopK_32s);
  topk_rows<float>("TopK_32f", ZIVKS_TopKInit_32f, ZIVKS_TopK_32f);
}

// ---- The suite ------------------------------------------------------------------------

// Highway's own list of the targets this processor supports, asked of the core library
// that vqsort's library brings in (the bench links only the latter).
std::string best_hwy_target() {
  using Supported = int64_t (*)();
  const auto f = reinterpret_cast<Supported>(dlsym(RTLD_DEFAULT, "_ZN3hwy16SupportedTargetsEv"));
  const int64_t t = f != nullptr ? f() : 0;
  return t == 0 ? "unknown" : hwy::TargetName(t & -t);
}

int print(const zb::SuiteOptions& o) {
  current_bed().reset();
  current_row = SIZE_MAX;
  const char* lead = o.markdown ? "- " : "";
  printf("%ssorting peers: std::sort, std::stable_sort, std::partial_sort and std::nth_element of"
         " GCC %d.%d's libstdc++; qsort of glibc %s; spreadsort and pdqsort of Boost %d.%d;"
         " vqsort of Highway %d.%d.%d (hwy::Sorter, dispatching at run time; best target here: %s)\n",
         lead, __GNUC__, __GNUC_MINOR__, gnu_get_libc_version(), BOOST_VERSION / 100000, BOOST_VERSION / 100 % 1000, HWY_MAJOR, HWY_MINOR,
         HWY_PATCH, best_hwy_target().c_str());
  printf("%sin-place sorts: every timed call copies the unsorted input into the working array and"
         " sorts it; keys/s and ratios use copy+sort minus the copy alone, timed in the same run;"
         " copy is the copy's share of our copy+sort time\n", lead);
  printf("%sindex sorts and top-k (k = %d) take no copy; their peers build the (key, position)"
         " pairs and write the result out inside the timed call\n", lead, kTopK);
  printf("%sa ratio is the peer's time over ours (above 1: this library is faster); 16Mi rows:"
         " one round, the others the fastest of %d\n\n", lead, o.rounds);
  return suite.print(o);
}

const int registered = [] {
  suite.family = "sort";
  suite.ours = 1;
  suite.part = [](const Row& r) { return input_name(r.input); };
  suite.bed = [](size_t ri, size_t) -> Bed& { return bed_for(ri); };
  suite.format = "%-26s %-8s %5s %10s %5s  %-24s %7s %7s  %s\n";
  suite.headers = {"function", "input", "keys", "keys/s", "copy", "peer", "vs peer", "target", "notes"};
  // What the copy was of our copy+sort time.
  suite.fifth = [](const Row& r, double) {
    return r.v[0].call ? zb::fixed(100 * r.v[0].seconds / r.v[1].seconds, "%.0f%%") : std::string("-");
  };
  make_rows();
  return zb::add_suite(suite.suite(print));
}();

}  // namespace
