// The median filter: ZIVKS_FilterMedian_<T> for 8u, 16s, 32s, 32f and 64f, out of place
// with no delay line, at masks 3, 5, 7, 9 (the exchange networks) and 31 (every window
// sorted) over 1 Ki, 64 Ki and 1 Mi samples, each next to:
// - memcpy of the output bytes, the bandwidth line;
// - the generic-backend build of the same call;
// - a std::nth_element median written here, the plain thing a user would write: for each
//   output the causal window x[i - m + 1] .. x[i] (copies of src[0] before the start) is
//   copied into a small buffer and std::nth_element puts element m / 2 in place.
// Targets, at every size: masks 3 to 9 of 8u, 16s and 32f at least 10x the nth_element
// median and 2x the generic build. The other ratios are for information. scripts/bench
// builds the library for the best x86 level of the machine, where the targets are set;
// a generic-backend build has no twin and no targets.
//
// A row has several yardsticks with targets of their own, so the family is a zb::Suite
// of rows (bench/zb_rows.h): a row is one function at one mask and size. A ratio is the
// yardstick's time over ours (above 1: this library is faster).
//
// - The samples are random: every bit pattern for the integers; for the floats both
//   signs and magnitudes over 2^-20 .. 2^21, all finite and normal, no zero, so that
//   every way of taking a median gives the same bits. A smaller size is the first
//   samples of the same array.
// - The handle is made once a row by ZIVKS_FilterMedianInit for the row's mask, outside
//   the timed calls, and serves the generic build too: the handle is plain scratch bytes
//   of the same size in both builds.
// - The nth_element median's output is made once a row as the answer; after their first
//   run the outputs of ours and of the generic build are compared with it byte for byte,
//   and every status is checked. A failure is flagged in the table.
// - Mask 31 at 1 Mi sorts a million windows a call (about a second): those rows run one
//   round, the others the fastest of --rounds.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <memory>
#include <set>
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

constexpr int32_t kMaxLen = kMi;
constexpr int32_t kSizes[] = {kKi, 64 * kKi, kMi};
constexpr int32_t kMasks[] = {3, 5, 7, 9, 31};
constexpr const char* kMaskNames[] = {"m3", "m5", "m7", "m9", "m31"};
constexpr int32_t kMaxMask = 31;
constexpr int32_t kLargestNetworkMask = 9;

// ---- Data -------------------------------------------------------------------------

// The samples, the output every variant writes, and the answer of the current row.
struct Data {
  Buffer src{sizeof(double) * kMaxLen};
  Buffer dst{sizeof(double) * kMaxLen};
  Buffer answer{sizeof(double) * kMaxLen};
};

// Made on the first run of the family, so that a run of the other families does not
// hold these 24 MiB.
Data& data() {
  static std::unique_ptr<Data> d = std::make_unique<Data>();
  return *d;
}

template <class T>
T random_sample(Rng& r) {
  const uint64_t b = r.next();
  if constexpr (std::is_floating_point_v<T>) {
    // (1 + f) 2^e with 23 bits of f: exact in both widths.
    const double f = 1 + static_cast<double>(b >> 41) / static_cast<double>(uint64_t{1} << 23);
    const int e = static_cast<int>((b >> 8) % 42) - 20;
    const double v = std::ldexp(f, e);
    return static_cast<T>(b & 1 ? -v : v);
  } else {
    return static_cast<T>(b >> (64 - 8 * sizeof(T)));
  }
}

template <class T>
void fill(T* p, int32_t n) {
  Rng r{0x9E3779B97F4A7C15ull + sizeof(T)};
  for (int32_t i = 0; i < n; ++i) p[i] = random_sample<T>(r);
}

// ---- The nth_element median ----------------------------------------------------------

template <class T>
void nth_element_median(const T* src, T* dst, int32_t n, int32_t m) {
  T window[kMaxMask];
  const int32_t h = m / 2;
  for (int32_t i = 0; i < n; ++i) {
    for (int32_t k = 0; k < m; ++k) {
      const int32_t j = i - m + 1 + k;
      window[k] = src[j < 0 ? 0 : j];
    }
    std::nth_element(window, window + h, window + m);
    dst[i] = window[h];
  }
}

// ---- Rows ---------------------------------------------------------------------------

// What one call works on.
struct Bed {
  int32_t n = 0;
  int32_t mask = 0;
  size_t elem = 0;
  void* src = nullptr;
  void* dst = nullptr;
  void* answer = nullptr;
  ZIVKFilterMedianPolicy* policy = nullptr;

  template <class T>
  const T* s() const { return static_cast<const T*>(src); }
  template <class T>
  T* d() const { return static_cast<T*>(dst); }
  bool right() const { return memcmp(dst, answer, elem * static_cast<size_t>(n)) == 0; }
};

using Variant = zb::Variant<Bed, ZIVKStatus>;

struct Row {
  std::string label;  // the exported name without the prefix
  const char* mask_name;
  int32_t mask;
  int32_t n;
  size_t elem;
  ZIVKDataType type;
  std::function<void(Bed&)> fill;    // the samples of the row's type, at kMaxLen
  std::function<void(Bed&)> answer;  // the nth_element median into the answer
  bool one_round;
  std::vector<Variant> v;  // v[0] ours, then the yardsticks
};

zb::RowSuite<Row> suite;

template <class T>
using MedianFn = ZIVKStatus (*)(const T*, T*, int32_t, int32_t, const T*, T*, ZIVKFilterMedianPolicy*);

template <class T>
ZIVKStatus call(MedianFn<T> f, const Bed& b) {
  return f(b.s<T>(), b.d<T>(), b.n, b.mask, nullptr, nullptr, b.policy);
}

template <class T>
void member_rows(const char* label, const char* symbol, MedianFn<T> native, ZIVKDataType type,
                 bool with_targets) {
  const auto generic = zb::twin_symbol<MedianFn<T>>(symbol);
  const bool targets = with_targets && generic != nullptr;
  for (size_t mi = 0; mi < std::size(kMasks); ++mi) {
    const int32_t m = kMasks[mi];
    const bool network = m <= kLargestNetworkMask;
    for (const int32_t n : kSizes) {
      Row r{label, kMaskNames[mi], m, n, sizeof(T), type, nullptr, nullptr, !network && n == kMi, {}};
      r.fill = [](Bed& b) { fill(static_cast<T*>(b.src), kMaxLen); };
      r.answer = [](Bed& b) { nth_element_median(b.s<T>(), static_cast<T*>(b.answer), b.n, b.mask); };
      auto right = [](const Bed& b) { return b.right(); };
      r.v.push_back({"ours", [native](Bed& b) { return call<T>(native, b); }, right, 0});
      r.v.push_back({"memcpy of the output",
                     [](Bed& b) {
                       memcpy(b.dst, b.src, b.elem * static_cast<size_t>(b.n));
                       return ZIVK_STS_NO_ERR;
                     },
                     nullptr, 0});
      Variant g{"generic build", nullptr, right, targets && network ? 2.0 : 0};
      if (generic != nullptr) g.call = [generic](Bed& b) { return call<T>(generic, b); };
      r.v.push_back(std::move(g));
      r.v.push_back({"std::nth_element median",
                     [](Bed& b) {
                       nth_element_median(b.s<T>(), b.d<T>(), b.n, b.mask);
                       return ZIVK_STS_NO_ERR;
                     },
                     nullptr, targets && network ? 10.0 : 0});
      suite.rows.push_back(std::move(r));
    }
  }
}

// ---- Bench-only variants, mask 31
//
// FilterMedian_<T>/sorted: rows whose first column is a plain loop that sorts every
// window with std::sort and takes its middle, next to ours (which sorts every window
// with the library's exported sort), the same loop calling that exported sort, and the
// nth_element median: what sorting every window costs over selecting the middle, and
// what the library's sort costs over std::sort on 31 elements.
template <class T>
void sorted_median(const T* src, T* dst, int32_t n, int32_t m, ZIVKStatus (*sort)(T*, int32_t)) {
  T window[kMaxMask];
  for (int32_t i = 0; i < n; ++i) {
    for (int32_t k = 0; k < m; ++k) {
      const int32_t j = i - m + 1 + k;
      window[k] = src[j < 0 ? 0 : j];
    }
    if (sort != nullptr) sort(window, m);
    else std::sort(window, window + m);
    dst[i] = window[m / 2];
  }
}

template <class T>
void sorted_rows(const char* label, MedianFn<T> native, ZIVKStatus (*library_sort)(T*, int32_t), ZIVKDataType type) {
  constexpr size_t kMask31 = 4;
  for (const int32_t n : {kKi, 64 * kKi}) {
    Row r{std::string(label) + "/sorted", kMaskNames[kMask31], kMasks[kMask31], n, sizeof(T), type, nullptr,
          nullptr, false, {}};
    r.fill = [](Bed& b) { fill(static_cast<T*>(b.src), kMaxLen); };
    r.answer = [](Bed& b) { nth_element_median(b.s<T>(), static_cast<T*>(b.answer), b.n, b.mask); };
    auto right = [](const Bed& b) { return b.right(); };
    r.v.push_back({"std::sort of every window",
                   [](Bed& b) {
                     sorted_median<T>(b.s<T>(), b.d<T>(), b.n, b.mask, nullptr);
                     return ZIVK_STS_NO_ERR;
                   },
                   right, 0});
    r.v.push_back({"ours", [native](Bed& b) { return call<T>(native, b); }, nullptr, 0});
    r.v.push_back({"exported sort of every window",
                   [library_sort](Bed& b) {
                     sorted_median<T>(b.s<T>(), b.d<T>(), b.n, b.mask, library_sort);
                     return ZIVK_STS_NO_ERR;
                   },
                   nullptr, 0});
    r.v.push_back({"std::nth_element median",
                   [](Bed& b) {
                     nth_element_median(b.s<T>(), b.d<T>(), b.n, b.mask);
                     return ZIVK_STS_NO_ERR;
                   },
                   nullptr, 0});
    suite.rows.push_back(std::move(r));
  }
}

void make_rows() {
  const bool targets = strcmp(ZB_BACKEND, "generic") != 0;
  member_rows<uint8_t>("FilterMedian_8u", "ZIVKS_FilterMedian_8u", ZIVKS_FilterMedian_8u, ZIVK_DT_8U, targets);
  member_rows<int16_t>("FilterMedian_16s", "ZIVKS_FilterMedian_16s", ZIVKS_FilterMedian_16s, ZIVK_DT_16S, targets);
  member_rows<int32_t>("FilterMedian_32s", "ZIVKS_FilterMedian_32s", ZIVKS_FilterMedian_32s, ZIVK_DT_32S, false);
  member_rows<float>("FilterMedian_32f", "ZIVKS_FilterMedian_32f", ZIVKS_FilterMedian_32f, ZIVK_DT_32F, targets);
  member_rows<double>("FilterMedian_64f", "ZIVKS_FilterMedian_64f", ZIVKS_FilterMedian_64f, ZIVK_DT_64F, false);
  sorted_rows<uint8_t>("FilterMedian_8u", ZIVKS_FilterMedian_8u, ZIVKS_SortAscend_8u_I, ZIVK_DT_8U);
  sorted_rows<float>("FilterMedian_32f", ZIVKS_FilterMedian_32f, ZIVKS_SortAscend_32f_I, ZIVK_DT_32F);
  sorted_rows<double>("FilterMedian_64f", ZIVKS_FilterMedian_64f, ZIVKS_SortAscend_64f_I, ZIVK_DT_64F);
}

// ---- The bed --------------------------------------------------------------------------

// A row's runs come one after another: the samples are made when the type changes, the
// answer and the handle when the row does.
Bed& bed_for(size_t ri, size_t) {
  static Bed b;
  static size_t current = SIZE_MAX;
  static ZIVKDataType filled_type = ZIVK_DT_64U;  // none of the five
  if (current == ri) return b;
  Row& r = suite.rows[ri];
  Data& d = data();
  if (b.policy != nullptr) ZIVKS_FilterMedianRelease(b.policy), b.policy = nullptr;
  b.n = r.n;
  b.mask = r.mask;
  b.elem = r.elem;
  b.src = d.src.as<void>();
  b.dst = d.dst.as<void>();
  b.answer = d.answer.as<void>();
  if (filled_type != r.type) r.fill(b), filled_type = r.type;
  r.answer(b);
  const ZIVKStatus st = ZIVKS_FilterMedianInit(r.mask, r.type, &b.policy);
  if (st != ZIVK_STS_NO_ERR) {
    fprintf(stderr, "median bench: ZIVKS_FilterMedianInit(%d) returned %d\n", r.mask, static_cast<int>(st));
    exit(1);
  }
  current = ri;
  return b;
}

// ---- The suite --------------------------------------------------------------------------

// The filter of one of the two passes of registration (rows of one round, then the
// others), given a row's full name: "family/label" alone is turned down, and the row's
// name stands for both forms the suite asks about.
std::function<bool(const std::string&)> pass_filter(const zb::SuiteOptions& o, bool one_round) {
  static std::set<std::string> one_round_rows;
  if (one_round_rows.empty())
    for (const Row& r : suite.rows)
      if (r.one_round) one_round_rows.insert(suite.row_name(r));
  return [selected = o.selected, one_round](const std::string& name) {
    const size_t label_end = name.find('/', name.find('/') + 1);
    if (label_end == std::string::npos) return false;
    return one_round_rows.count(name) == (one_round ? 1u : 0u) &&
           (selected(name.substr(0, label_end)) || selected(name));
  };
}

size_t add(const zb::SuiteOptions& o) {
  zb::SuiteOptions many = o, one = o;
  many.selected = pass_filter(o, false);
  one.selected = pass_filter(o, true);
  one.rounds = 1;
  return suite.add(many) + suite.add(one);
}

int print(const zb::SuiteOptions& o) {
  const char* lead = o.markdown ? "- " : "";
  printf("%smedian yardsticks: memcpy of the output bytes; the generic-backend build; a per-output"
         " std::nth_element median of GCC %d.%d's libstdc++. Random samples, out of place, no delay"
         " line. Masks 3 to 9 run the networks, mask 31 sorts every window. Mask 31 at 1Mi: one"
         " round, the others the fastest of %d\n\n",
         lead, __GNUC__, __GNUC_MINOR__, o.rounds);
  return suite.print(o);
}

const int registered = [] {
  suite.family = "median";
  suite.ours = 0;
  suite.peers = "against";
  suite.part = [](const Row& r) { return r.mask_name; };
  suite.bed = bed_for;
  suite.format = "%-18s %-4s %7s %11s %11s  %-24s %7s %6s  %s\n";
  suite.headers = {"function", "mask", "samples", "samples/s", "bytes/s", "against", "ratio", "target", "notes"};
  suite.fifth = [](const Row& r, double ours) {
    return zb::rate(static_cast<double>(r.n) * static_cast<double>(r.elem) / ours, "B");
  };
  suite.bytes = [](const Row& r) { return static_cast<double>(r.n) * static_cast<double>(r.elem); };
  make_rows();
  zb::Suite s = suite.suite(print);
  s.add = add;
  return zb::add_suite(std::move(s));
}();

}  // namespace
