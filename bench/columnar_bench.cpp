// Column-batch kernels: the fixed-width and decimal hashes and CombineHash against memcpy
// of their output bytes, Hash_varchar against a per-row loop of libxxhash's XXH64, and
// AggMax of 32s and 64f against the same call without nulls, a plain loop with a null
// test and std::max_element.
//
// Rows are batches of 1 Ki, 64 Ki and 16 Mi rows, without a null vector and with 1 % and
// 50 % of the rows null, so the family has a shape of its own (a zb::Suite):
// - Each row is one function on one batch with its variants: ours, then the yardsticks
//   it is measured against. A ratio is the yardstick's time over ours (above 1: this
//   library is faster).
// - The data are made once, with fixed seeds, at 16 Mi rows; a smaller batch is the
//   first rows of the same arrays. The fixed-width column holds 16 bytes a row, every
//   8-byte word a finite float64 (so a 64f reading has no NaN, an integer reading is
//   arbitrary bits). The null vectors set a row null with probability 1/100 and 1/2.
//   A varchar column has rows of random bytes whose lengths are uniform over
//   [avg/2, 3 avg/2]; one varchar column is held at a time.
// - Every call's status is checked, and after its first run every variant that has an
//   answer to compare is checked: the integer hashes and CombineHash row by row against
//   their formula, Hash_varchar against XXH64 of every row that is not null, AggMax
//   against the loop with the null test. A failure is flagged in the table.
#include <gnu/libc-version.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <xxhash.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "bench/zb_rows.h"
#include "columnar/xxh64.h"
#include "zivks.h"

namespace {

using zb::Buffer;
using zb::kKi;
using zb::kMi;
using zb::Rng;
constexpr int32_t kMaxRows = 16 * kMi;
constexpr int32_t kSizes[] = {kKi, 64 * kKi, 16 * kMi};

// ---- Data ------------------------------------------------------------------------

enum Nulls { kNone, kOne, kHalf };
const char* const kNullNames[] = {"none", "1%", "50%"};

// The fixed-width column (16 bytes a row), the output column, and the null vectors.
struct Data {
  Buffer fixed{size_t{16} * kMaxRows};
  Buffer out{size_t{8} * kMaxRows};
  Buffer nulls1{kMaxRows};
  Buffer nulls50{kMaxRows};

  Data() {
    // Finite float64 words: both signs, magnitudes 2^-40 .. 2^40, random mantissas.
    Rng r{0x5EED0001};
    uint64_t* w = fixed.as<uint64_t>();
    for (size_t i = 0; i < size_t{2} * kMaxRows; ++i) {
      const uint64_t b = r.next();
      const uint64_t exp = 1023 - 40 + (b >> 52) % 81;
      w[i] = (b & 0x800FFFFFFFFFFFFFull) | (exp << 52);
    }
    Rng n1{0x5EED0002}, n50{0x5EED0003};
    int8_t* p1 = nulls1.as<int8_t>();
    int8_t* p50 = nulls50.as<int8_t>();
    for (int32_t i = 0; i < kMaxRows; ++i) {
      p1[i] = (n1.next() >> 32) % 100 == 0 ? 1 : 0;
      p50[i] = static_cast<int8_t>(n50.next() >> 63);
    }
  }
  const int8_t* nulls(Nulls k) const {
    return k == kNone ? nullptr : k == kOne ? nulls1.as<int8_t>() : nulls50.as<int8_t>();
  }
};

Data& data() {
  static std::unique_ptr<Data> d = std::make_unique<Data>();
  return *d;
}

// A varchar column of kMaxRows rows whose lengths average `avg` bytes.
struct Text {
  int avg;
  std::unique_ptr<Buffer> offsets, bytes;

  explicit Text(int a) : avg(a) {
    offsets = std::make_unique<Buffer>(sizeof(int32_t) * (size_t{kMaxRows} + 1));
    int32_t* off = offsets->as<int32_t>();
    Rng r{0x5EED0100u + static_cast<uint64_t>(a)};
    off[0] = 0;
    for (int32_t i = 0; i < kMaxRows; ++i)
      off[i + 1] = off[i] + a / 2 + static_cast<int32_t>((r.next() >> 32) % static_cast<uint64_t>(a + 1));
    const size_t total = static_cast<size_t>(off[kMaxRows]);
    bytes = std::make_unique<Buffer>(total + 8);
    unsigned char* p = bytes->as<unsigned char>();
    for (size_t o = 0; o < total; o += 8) {
      const uint64_t w = r.next();
      memcpy(p + o, &w, 8);
    }
  }
};

std::unique_ptr<Text>& text_slot() {
  static std::unique_ptr<Text> t;
  return t;
}

// The column of average length `avg`; the one made before is let go first.
const Text& text(int avg) {
  std::unique_ptr<Text>& t = text_slot();
  if (!t || t->avg != avg) {
    t.reset();
    t = std::make_unique<Text>(avg);
  }
  return *t;
}

// ---- Rows ---------------------------------------------------------------------------

// What one call works on: pointers into the shared data.
struct Bed {
  int32_t n = 0;
  const int8_t* nulls = nullptr;
  const unsigned char* src = nullptr;  // the fixed-width column, or the varchar bytes
  const int32_t* offsets = nullptr;    // varchar
  uint64_t* dst = nullptr;
  double* result = nullptr;            // where an aggregate variant leaves its value
};

// "ours" or the yardstick; an aggregate leaves its value in `result`.
using Variant = zb::Variant<Bed, ZIVKStatus>;

struct Row {
  std::string label;      // the exported name without the prefix (and the text length)
  Nulls nulls;
  int32_t n;
  std::function<Bed()> make;
  std::function<double(const Bed&)> bytes;  // the bytes rows/s is also shown in
  double row_bytes = NAN;
  std::vector<Variant> v;  // v[0] ours, then the yardsticks
};

zb::RowSuite<Row> suite;
std::vector<Row>& rows() { return suite.rows; }

template <class T>
void keep(T v) {
  volatile T sink = v;
  (void)sink;
}

Bed fixed_bed(int32_t n, Nulls k) {
  Data& d = data();
  Bed b;
  b.n = n;
  b.nulls = d.nulls(k);
  b.src = d.fixed.as<unsigned char>();
  b.dst = d.out.as<uint64_t>();
  return b;
}

bool is_null(const Bed& b, int64_t i) { return b.nulls != nullptr && b.nulls[i] != 0; }

Variant memcpy_variant(double target) {
  return {"memcpy of the output",
          [](const Bed& b) {
            memcpy(b.dst, b.src, sizeof(uint64_t) * static_cast<size_t>(b.n));
            return ZIVK_STS_NO_ERR;
          },
          nullptr, target};
}

// The hash of an integer key: one accumulate round from zero of the sign-extended value.
uint64_t integer_hash(int64_t v) {
  const uint64_t x = static_cast<uint64_t>(v) * 0xC2B2AE3D27D4EB4Full;
  return ((x << 31) | (x >> 33)) * 0x9E3779B185EBCA87ull;
}

template <class T>
using HashFn = ZIVKStatus (*)(const T*, int32_t, const int8_t*, uint64_t*);

// At 64 Ki and 16 Mi rows the least ratio to memcpy of the output (0: for information).
template <class T>
void hash_rows(const char* label, HashFn<T> fn, double target_64ki, double target_16mi, bool integer) {
  for (int32_t n : kSizes)
    for (Nulls k : {kNone, kOne, kHalf}) {
      Row r{label, k, n, [n, k] { return fixed_bed(n, k); },
            [](const Bed& b) { return 8.0 * b.n; }, NAN, {}};
      std::function<bool(const Bed&)> check;
      if constexpr (std::is_integral_v<T>)
        if (integer)
          check = [](const Bed& b) {
            const T* s = reinterpret_cast<const T*>(b.src);
            for (int64_t i = 0; i < b.n; ++i)
              if (!is_null(b, i) && b.dst[i] != integer_hash(s[i])) return false;
            return true;
          };
      r.v.push_back({"ours",
                     [fn](const Bed& b) { return fn(reinterpret_cast<const T*>(b.src), b.n, b.nulls, b.dst); },
                     check, 0});
      // The targets are for columns without nulls: a null row is a row not written.
      r.v.push_back(memcpy_variant(k != kNone ? 0 : n == 64 * kKi ? target_64ki : n == 16 * kMi ? target_16mi : 0));
      rows().push_back(std::move(r));
    }
}

void combine_rows() {
  for (int32_t n : kSizes) {
    Row r{"CombineHash", kNone, n, [n] { return fixed_bed(n, kNone); },
          [](const Bed& b) { return 8.0 * b.n; }, NAN, {}};
    // The two hash columns are the two halves of the fixed-width column.
    const auto second = [](const Bed& b) { return reinterpret_cast<const uint64_t*>(b.src) + kMaxRows; };
    r.v.push_back({"ours",
                   [second](const Bed& b) {
                     return ZIVKS_CombineHash(reinterpret_cast<const uint64_t*>(b.src), second(b), b.n, b.dst);
                   },
                   [second](const Bed& b) {
                     const uint64_t* a = reinterpret_cast<const uint64_t*>(b.src);
                     for (int64_t i = 0; i < b.n; ++i)
                       if (b.dst[i] != a[i] * 31 + second(b)[i]) return false;
                     return true;
                   },
                   0});
    r.v.push_back(memcpy_variant(n == 64 * kKi ? 0.8 : n == 16 * kMi ? 0.9 : 0));
    rows().push_back(std::move(r));
  }
}

// Hash_varchar against XXH64 of each row that is not null: at least 1.2 times its speed
// without nulls.
void varchar_rows() {
  for (int avg : {8, 24, 100})
    for (int32_t n : kSizes)
      for (Nulls k : {kNone, kOne, kHalf}) {
        Row r{"Hash_varchar/avg" + std::to_string(avg), k, n,
              [n, k, avg] {
                Bed b = fixed_bed(n, k);
                const Text& t = text(avg);
                b.src = t.bytes->as<unsigned char>();
                b.offsets = t.offsets->as<int32_t>();
                return b;
              },
              [](const Bed& b) { return static_cast<double>(b.offsets[b.n] - b.offsets[0]); }, NAN, {}};
        r.v.push_back({"ours",
                       [](const Bed& b) { return ZIVKS_Hash_varchar(b.src, b.offsets, b.n, b.nulls, b.dst); },
                       [](const Bed& b) {
                         for (int64_t i = 0; i < b.n; ++i)
                           if (!is_null(b, i) &&
                               b.dst[i] != XXH64(b.src + b.offsets[i], static_cast<size_t>(b.offsets[i + 1] - b.offsets[i]), 0))
                             return false;
                         return true;
                       },
                       0});
        r.v.push_back({"XXH64 loop",
                       [](const Bed& b) {
                         const int32_t* off = b.offsets;
                         for (int32_t i = 0; i < b.n; ++i)
                           if (b.nulls == nullptr || b.nulls[i] == 0)
                             b.dst[i] = XXH64(b.src + off[i], static_cast<size_t>(off[i + 1] - off[i]), 0);
                         return ZIVK_STS_NO_ERR;
                       },
                       // The target is for columns without nulls, at 64 Ki and 16 Mi rows: a
                       // 1 Ki column timed again and again lets the branch predictor learn
                       // its row lengths, which only the per-row loop branches on.
                       nullptr, k == kNone && n > kKi ? 1.2 : 0});
        rows().push_back(std::move(r));
      }
}

template <class T>
T loop_max(const T* src, int32_t n, const int8_t* nulls, T start) {
  T m = start;
  for (int32_t i = 0; i < n; ++i)
    if (nulls[i] == 0 && src[i] > m) m = src[i];
  return m;
}

template <class T>
using AggFn = ZIVKStatus (*)(const T*, int32_t, const int8_t*, T*);

// With 1 % nulls: at least 0.8 of the same call without nulls and twice the loop with the
// null test; with 50 % for information. The loop starts from the bound the call starts from.
template <class T>
void agg_rows(const char* label, AggFn<T> fn, T start) {
  for (Nulls k : {kOne, kHalf})
    for (int32_t n : kSizes) {
      const bool t = k == kOne;
      Row r{label, k, n, [n, k] { return fixed_bed(n, k); },
            [](const Bed& b) { return static_cast<double>(sizeof(T)) * b.n; }, NAN, {}};
      const auto src = [](const Bed& b) { return reinterpret_cast<const T*>(b.src); };
      r.v.push_back({"ours",
                     [fn, src](const Bed& b) {
                       T m;
                       const ZIVKStatus st = fn(src(b), b.n, b.nulls, &m);
                       *b.result = static_cast<double>(m);
                       return st;
                     },
                     nullptr, 0, 2});
      r.v.push_back({"ours without nulls",
                     [fn, src](const Bed& b) {
                       T m;
                       const ZIVKStatus st = fn(src(b), b.n, nullptr, &m);
                       keep(m);
                       return st;
                     },
                     nullptr, t ? 0.8 : 0});
      r.v.push_back({"loop with null test",
                     [src, start](const Bed& b) {
                       *b.result = static_cast<double>(loop_max(src(b), b.n, b.nulls, start));
                       return ZIVK_STS_NO_ERR;
                     },
                     nullptr, t ? 2.0 : 0});
      r.v.push_back({"std::max_element",
                     [src](const Bed& b) {
                       keep(*std::max_element(src(b), src(b) + b.n));
                       return ZIVK_STS_NO_ERR;
                     },
                     nullptr, 0});
      rows().push_back(std::move(r));
    }
}

// ---- Bench-only variants
//
// Rows of their own, each with a variant as its first column and the real call ("ours")
// and the yardstick after it, so that a ratio says what a part of the job costs.
//
// Hash_varchar/<avg>/batched: the same hashes with the rows that are not null gathered 8
// at a time across null rows and hashed side by side, where the library takes every
// block of 8 that holds a null row one row at a time.
void hash_batched(const Bed& b) {
  constexpr int R = 8;
  const int32_t* off = b.offsets;
  const uint8_t* p[R];
  int64_t len[R];
  int64_t at[R];
  uint64_t h[R];
  int k = 0;
  for (int64_t i = 0; i < b.n; ++i) {
    if (b.nulls != nullptr && b.nulls[i] != 0) continue;
    p[k] = b.src + off[i];
    len[k] = off[i + 1] - off[i];
    at[k] = i;
    if (++k == R) {
      zivks::xxh64::hash_rows<R>(p, len, h);
      for (int r = 0; r < R; ++r) b.dst[at[r]] = h[r];
      k = 0;
    }
  }
  for (int r = 0; r < k; ++r) b.dst[at[r]] = zivks::xxh64::hash(p[r], len[r]);
}

void xxh64_loop(const Bed& b) {
  const int32_t* off = b.offsets;
  for (int32_t i = 0; i < b.n; ++i)
    if (b.nulls == nullptr || b.nulls[i] == 0)
      b.dst[i] = XXH64(b.src + off[i], static_cast<size_t>(off[i + 1] - off[i]), 0);
}

bool xxh64_right(const Bed& b) {
  for (int64_t i = 0; i < b.n; ++i)
    if (!is_null(b, i) &&
        b.dst[i] != XXH64(b.src + b.offsets[i], static_cast<size_t>(b.offsets[i + 1] - b.offsets[i]), 0))
      return false;
  return true;
}

// Hash_varchar/<avg>/newSlice, at 1 Ki rows: every call takes the next of kSlices slices
// of 1 Ki rows, so that no branch predictor learns the row lengths of the column.
constexpr int32_t kSlices = 64;
Bed slice(const Bed& b, int32_t k) {
  Bed s = b;
  const int64_t first = int64_t{k} * kKi;
  s.offsets = b.offsets + first;
  s.nulls = b.nulls != nullptr ? b.nulls + first : nullptr;
  s.dst = b.dst + first;
  return s;
}

Bed varchar_bed(int32_t n, Nulls k, int avg) {
  Bed b = fixed_bed(n, k);
  const Text& t = text(avg);
  b.src = t.bytes->as<unsigned char>();
  b.offsets = t.offsets->as<int32_t>();
  return b;
}

void varchar_variant_rows() {
  for (int avg : {8, 24})
    for (int32_t n : kSizes)
      for (Nulls k : {kNone, kOne, kHalf}) {
        Row r{"Hash_varchar/avg" + std::to_string(avg) + "/batched", k, n,
              [n, k, avg] { return varchar_bed(n, k, avg); },
              [](const Bed& b) { return static_cast<double>(b.offsets[b.n] - b.offsets[0]); }, NAN, {}};
        r.v.push_back({"bench-only variant",
                       [](const Bed& b) {
                         hash_batched(b);
                         return ZIVK_STS_NO_ERR;
                       },
                       xxh64_right, 0});
        r.v.push_back({"ours",
                       [](const Bed& b) { return ZIVKS_Hash_varchar(b.src, b.offsets, b.n, b.nulls, b.dst); },
                       nullptr, 0});
        r.v.push_back({"XXH64 loop",
                       [](const Bed& b) {
                         xxh64_loop(b);
                         return ZIVK_STS_NO_ERR;
                       },
                       nullptr, 0});
        rows().push_back(std::move(r));
      }
  for (int avg : {8, 24})
    for (Nulls k : {kNone, kHalf}) {
      Row r{"Hash_varchar/avg" + std::to_string(avg) + "/newSlice", k, kKi,
            [k, avg] { return varchar_bed(kKi, k, avg); },
            [](const Bed& b) { return static_cast<double>(b.offsets[b.n] - b.offsets[0]); }, NAN, {}};
      // Ours on a new slice each call, then the XXH64 loop the same way, then ours on one.
      r.v.push_back({"ours, a new slice a call",
                     [](const Bed& b) {
                       static int32_t next = 0;
                       const Bed s = slice(b, next++ % kSlices);
                       return ZIVKS_Hash_varchar(s.src, s.offsets, s.n, s.nulls, s.dst);
                     },
                     nullptr, 0});
      r.v.push_back({"XXH64 loop, a new slice a call",
                     [](const Bed& b) {
                       static int32_t next = 0;
                       xxh64_loop(slice(b, next++ % kSlices));
                       return ZIVK_STS_NO_ERR;
                     },
                     nullptr, 0});
      r.v.push_back({"ours, the same slice",
                     [](const Bed& b) { return ZIVKS_Hash_varchar(b.src, b.offsets, b.n, b.nulls, b.dst); },
                     nullptr, 0});
      r.v.push_back({"XXH64 loop, the same slice",
                     [](const Bed& b) {
                       xxh64_loop(b);
                       return ZIVK_STS_NO_ERR;
                     },
                     nullptr, 0});
      rows().push_back(std::move(r));
    }
}

// AggMax_<T>/readBoth: the bytes an aggregate with nulls must read, the column and the
// null vector, reduced without skipping a row (the largest value, and the flags ORed):
// the traffic floor of the call, next to ours and std::max_element (the column alone).
template <class T>
inline __attribute__((always_inline)) T read_both_body(const T* src, const int8_t* nulls, int32_t n, int8_t* any) {
  T m = src[0];
  int8_t f = 0;
  for (int32_t i = 0; i < n; ++i) {
    m = src[i] > m ? src[i] : m;
    f |= nulls[i];
  }
  *any = f;
  return m;
}
template <class T>
__attribute__((noinline)) T read_both_default(const T* src, const int8_t* nulls, int32_t n, int8_t* any) {
  return read_both_body(src, nulls, n, any);
}
#if defined(__x86_64__)
template <class T>
__attribute__((target("arch=x86-64-v4,prefer-vector-width=512"), noinline)) T read_both_v4(const T* src,
                                                                                           const int8_t* nulls,
                                                                                           int32_t n, int8_t* any) {
  return read_both_body(src, nulls, n, any);
}
#endif

template <class T>
void agg_variant_rows(const char* label, AggFn<T> fn) {
  auto read_both = read_both_default<T>;
#if defined(__x86_64__)
  if (strcmp(ZB_BACKEND, "x86") == 0 && strcmp(ZB_X86_LEVEL, "v4") == 0) read_both = read_both_v4<T>;
#endif
  for (int32_t n : kSizes) {
    Row r{std::string(label) + "/readBoth", kOne, n, [n] { return fixed_bed(n, kOne); },
          [](const Bed& b) { return static_cast<double>(sizeof(T)) * b.n; }, NAN, {}};
    const auto src = [](const Bed& b) { return reinterpret_cast<const T*>(b.src); };
    r.v.push_back({"bench-only variant",
                   [src, read_both](const Bed& b) {
                     int8_t any;
                     keep(read_both(src(b), b.nulls, b.n, &any));
                     keep(any);
                     return ZIVK_STS_NO_ERR;
                   },
                   nullptr, 0});
    r.v.push_back({"ours",
                   [fn, src](const Bed& b) {
                     T m;
                     const ZIVKStatus st = fn(src(b), b.n, b.nulls, &m);
                     keep(m);
                     return st;
                   },
                   nullptr, 0});
    r.v.push_back({"ours without nulls",
                   [fn, src](const Bed& b) {
                     T m;
                     const ZIVKStatus st = fn(src(b), b.n, nullptr, &m);
                     keep(m);
                     return st;
                   },
                   nullptr, 0});
    r.v.push_back({"std::max_element",
                   [src](const Bed& b) {
                     keep(*std::max_element(src(b), src(b) + b.n));
                     return ZIVK_STS_NO_ERR;
                   },
                   nullptr, 0});
    rows().push_back(std::move(r));
  }
}

void make_rows() {
  hash_rows<int32_t>("Hash_32s", ZIVKS_Hash_32s, 0.8, 0.9, true);
  hash_rows<int64_t>("Hash_64s", ZIVKS_Hash_64s, 0.8, 0.9, true);
  hash_rows<double>("Hash_64f", ZIVKS_Hash_64f, 0.8, 0.9, false);
  combine_rows();
  hash_rows<int16_t>("Hash_16s", ZIVKS_Hash_16s, 0, 0, true);
  hash_rows<uint8_t>("Hash_bool", ZIVKS_Hash_bool, 0, 0, false);
  hash_rows<int64_t>("Hash_decimal64", ZIVKS_Hash_decimal64, 0, 0, false);
  hash_rows<ZIVKDecimal128>("Hash_decimal128", ZIVKS_Hash_decimal128, 0, 0, false);
  varchar_rows();
  agg_rows<int32_t>("AggMax_32s", ZIVKS_AggMax_32s, INT32_MIN);
  agg_rows<double>("AggMax_64f", ZIVKS_AggMax_64f, -DBL_MAX);
  varchar_variant_rows();
  agg_variant_rows<int32_t>("AggMax_32s", ZIVKS_AggMax_32s);
  agg_variant_rows<double>("AggMax_64f", ZIVKS_AggMax_64f);
}

// ---- The suite ------------------------------------------------------------------------

// The bed of a run: made again for every run (it is a few pointers), with the bytes of
// its row and where the variant leaves its value.
Bed& bed_for(size_t ri, size_t vi) {
  static Bed b;
  Row& row = rows()[ri];
  b = row.make();
  row.row_bytes = row.bytes(b);
  b.result = &row.v[vi].result;
  return b;
}

int print(const zb::SuiteOptions& o) {
  // The arrays are not needed any more.
  text_slot().reset();
  const char* lead = o.markdown ? "- " : "";
  printf("%scolumnar yardsticks: memcpy of glibc %s (of the 8 output bytes a row); XXH64 of libxxhash %u.%u.%u,"
         " called once a row that is not null; std::max_element of GCC %d.%d's libstdc++; the loop with a"
         " null test compiled with the bench's own flags\n",
         lead, gnu_get_libc_version(), XXH_versionNumber() / 10000, XXH_versionNumber() / 100 % 100,
         XXH_versionNumber() % 100, __GNUC__, __GNUC_MINOR__);
  printf("%sbytes/s: of the output for the hashes, of the text for Hash_varchar (null rows included),"
         " of the column for AggMax; a ratio is the yardstick's time over ours (above 1: this library"
         " is faster); 16Mi rows: one round, the others the fastest of %d\n\n",
         lead, o.rounds);
  return suite.print(o);
}

const int registered = [] {
  suite.family = "columnar";
  suite.ours = 0;
  suite.peers = "against";
  suite.part = [](const Row& r) { return kNullNames[r.nulls]; };
  suite.bed = bed_for;
  suite.format = "%-22s %-5s %5s %10s %11s  %-20s %7s %7s  %s\n";
  suite.headers = {"function", "nulls", "rows", "rows/s", "bytes/s", "against", "ratio", "target", "notes"};
  suite.fifth = [](const Row& r, double ours) { return zb::rate(r.row_bytes / ours, "B"); };
  suite.bytes = [](const Row& r) { return r.row_bytes; };
  suite.wrong_words = "failed or wrong results";
  make_rows();
  return zb::add_suite(suite.suite(print));
}();

}  // namespace
