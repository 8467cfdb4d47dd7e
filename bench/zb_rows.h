// Families of rows: a zb::Suite whose every row is one function on one input, timed
// next to its own variants, in this order:
// - the baselines, whose time is taken out of every other variant's (e.g. the copy an
//   in-place sort makes of its input at the start of every timed call);
// - ours;
// - the peers or yardsticks ours is measured against, each with its least ratio of the
//   peer's time to ours (0: none).
// A family file makes its rows (its inputs, variants, checks) and its notes; RowSuite
// lists them, registers their runs, keeps the fastest round of each variant, checks each
// variant's output after its first run, and prints the table of ratios (the same rows go
// to --json):
//
//   function  <part>  <size>  <items>/s  <column of the family's own>  peer  ratio  target  notes
//
// where <part> is what the row's input is (its order, its nulls). A ratio that shows
// below its target as printed is a MISS; a wrong output, a failing status or a value
// other than the one it must equal is flagged in the notes and counted.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "bench/zb.h"

namespace zb {

constexpr int32_t kKi = 1024;
constexpr int32_t kMi = 1024 * 1024;

// 64-byte aligned, with a cache line of zeros after the last byte asked for (a radix sort
// of floats may read the word after its array), and written once so that no timed call
// pays for the first use of a page.
class Buffer {
 public:
  explicit Buffer(size_t bytes);
  ~Buffer();
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  template <class T>
  T* as() const { return static_cast<T*>(p_); }

 private:
  void* p_;
};

struct Rng {
  uint64_t x;
  uint64_t next() {
    x ^= x << 13, x ^= x >> 7, x ^= x << 17;
    return x * 0x2545F4914F6CDD1Dull;
  }
};

// "1Ki", "16Mi", or the count itself.
std::string size_name(int32_t n);
// x printed with `format`; "-" when x is not finite.
std::string fixed(double x, const char* format);

// One way of doing a row's job on its bed (what the family's calls work on). A call
// returns nothing, or a status of which zero is success.
template <class BedT, class Status>
struct Variant {
  using Bed = BedT;
  std::string name;                       // "ours", the baseline's or the peer's name
  std::function<Status(Bed&)> call;       // one timed call (null: not timed)
  std::function<bool(const Bed&)> check;  // is the output right (null: not checked)
  double target = 0;                      // least ratio of its time to ours; 0: none
  int same_as = -1;                       // ours: the variant whose `result` it must equal
  double seconds = NAN;                   // the fastest round, per call
  double result = NAN;                    // a value the call leaves (e.g. an aggregate's)
  bool failed = false;                    // a call returned a status other than zero
  bool wrong = false;                     // the check failed
  bool checked = false;
};

// Row needs `label` (the exported name without the prefix, and whatever tells rows of one
// function apart), `n` (items, e.g. keys or rows) and `v` (its variants).
template <class Row>
class RowSuite {
 public:
  using V = typename decltype(Row::v)::value_type;
  using Bed = typename V::Bed;

  std::string family;
  std::vector<Row> rows;
  size_t ours = 0;                // v[ours] is ours; the variants before it are baselines
  const char* peers = "peers";    // how --list introduces the peers
  // The part of a row's name after its label: what its input is.
  std::function<const char*(const Row&)> part;
  // The bed a run of variant `vi` of row `ri` calls on, ready for it.
  std::function<Bed&(size_t ri, size_t vi)> bed;
  // The table: the format of a line of text (nine strings), the nine headers, the fifth
  // column of a row given our net time per call, and the words for the outputs counted
  // wrong in the last line.
  const char* format = nullptr;
  std::array<const char*, 9> headers{};
  std::function<std::string(const Row&, double ours_seconds)> fifth;
  const char* wrong_words = "wrong results";
  // The bytes of a row's call that bytes/s counts, for --json (null: not counted).
  std::function<double(const Row&)> bytes;

  std::string row_name(const Row& r) const {
    return family + "/" + r.label + "/" + part(r) + "/" + size_name(r.n);
  }

  bool selected(const SuiteOptions& o, const Row& r) const {
    return o.selected(family + "/" + r.label) || o.selected(row_name(r));
  }

  void list(const SuiteOptions& o) const {
    for (const Row& r : rows) {
      if (!selected(o, r)) continue;
      std::string names;
      for (size_t vi = ours + 1; vi < r.v.size(); ++vi) names += (vi > ours + 1 ? ", " : "") + r.v[vi].name;
      printf("%s  %s %s\n", row_name(r).c_str(), peers, names.c_str());
    }
  }

  size_t add(const SuiteOptions& o) {
    size_t runs = 0;
    for (size_t ri = 0; ri < rows.size(); ++ri) {
      const Row& r = rows[ri];
      if (!selected(o, r)) continue;
      // A call at 16Mi takes about as long as a run's least time or longer: one round
      // there keeps a family within a couple of minutes.
      const int rounds = r.n >= 16 * kMi ? 1 : o.rounds;
      for (int round = 0; round < rounds; ++round) {
        for (size_t vi = 0; vi < r.v.size(); ++vi) {
          if (!r.v[vi].call) continue;
          const std::string name = row_name(r) + "/" + r.v[vi].name + "/" + std::to_string(round);
          slots_[name] = {ri, vi};
          benchmark::RegisterBenchmark(name.c_str(), [this, ri, vi](benchmark::State& st) { run(ri, vi, st); })
              ->MinTime(o.min_time);
          ++runs;
        }
      }
    }
    return runs;
  }

  void record(const std::string& run, double seconds) {
    const auto it = slots_.find(run);
    if (it == slots_.end()) return;
    double& best = rows[it->second.first].v[it->second.second].seconds;
    if (!(best <= seconds)) best = seconds;
  }

  // The table and the line of targets missed (the family prints its notes first);
  // returns the number of targets missed.
  int print(const SuiteOptions& o) const {
    const char* lead = o.markdown ? "- " : "";
    const char* line = o.markdown ? "| %s | %s | %s | %s | %s | %s | %s | %s | %s |\n" : format;
    const auto& h = headers;
    printf(line, h[0], h[1], h[2], h[3], h[4], h[5], h[6], h[7], h[8]);
    if (o.markdown) printf("|---|---|--:|--:|--:|---|--:|--:|---|\n");
    int misses = 0, wrong = 0;
    for (const Row& r : rows) {
      const V& us = r.v[ours];
      if (!selected(o, r) || !(us.seconds > 0)) continue;
      const double t = net(r, us);
      const std::string fifth_column = fifth(r, t);
      if (us.wrong || us.failed || differs(r)) ++wrong;
      for (size_t vi = ours + 1; vi < r.v.size(); ++vi) {
        const V& p = r.v[vi];
        const Yardstick y = against(r, vi, t);
        if (!y.met) ++misses;
        if (p.failed) ++wrong;
        if (p.wrong) ++wrong;
        printf(line, r.label.c_str(), part(r), size_name(r.n).c_str(), rate(r.n / t, "").c_str(),
               fifth_column.c_str(), p.name.c_str(), fixed(y.ratio, "%.2f").c_str(),
               p.target > 0 ? fixed(p.target, "%.2f").c_str() : "", y.notes.c_str());
      }
    }
    printf("\n%s%s targets missed: %d", lead, family.c_str(), misses);
    if (wrong > 0) printf(", %s: %d", wrong_words, wrong);
    printf("\n");
    return misses;
  }

  // The rows of the table, for --json: every row timed, with every variant after ours
  // that has a call. A variant named after memcpy or memset is the byte baseline, the
  // "generic build" the generic twin, one whose name starts with "ours" another call of
  // ours, any other a peer.
  std::vector<ResultRow> result_rows(const SuiteOptions& o) const {
    std::vector<ResultRow> out;
    const bool part_is_size = std::string(headers[1]) == "size";
    for (const Row& r : rows) {
      const V& us = r.v[ours];
      if (!selected(o, r) || !(us.seconds > 0)) continue;
      ResultRow x;
      x.family = family;
      x.label = r.label;
      x.symbol = "ZIVKS_" + r.label.substr(0, r.label.find('/'));
      x.size = part_is_size ? std::string(part(r)) : size_name(r.n);
      if (!part_is_size) x.input_kind = headers[1], x.input = part(r);
      x.items = headers[2];
      x.elements = r.n;
      x.seconds = net(r, us);
      x.bytes = bytes ? bytes(r) : NAN;
      for (size_t vi = 0; vi < ours; ++vi)
        if (r.v[vi].call) x.subtracted.emplace_back(r.v[vi].name, r.v[vi].seconds);
      for (size_t vi = ours + 1; vi < r.v.size(); ++vi) {
        if (!r.v[vi].call) continue;
        Yardstick y = against(r, vi, x.seconds);
        const std::string& name = r.v[vi].name;
        y.kind = name.rfind("memcpy", 0) == 0 || name.rfind("memset", 0) == 0 ? Yardstick::kBase
                 : name == "generic build"                                    ? Yardstick::kGeneric
                 : name.rfind("ours", 0) == 0                                 ? Yardstick::kSelf
                                                                              : Yardstick::kPeer;
        x.against.push_back(std::move(y));
      }
      out.push_back(std::move(x));
    }
    return out;
  }

  // The zb::Suite of these rows; `print_all` prints the family's notes and then print().
  Suite suite(std::function<int(const SuiteOptions&)> print_all) {
    Suite s;
    s.family = family;
    s.list = [this](const SuiteOptions& o) { list(o); };
    s.add = [this](const SuiteOptions& o) { return add(o); };
    s.record = [this](const std::string& run, double seconds) { record(run, seconds); };
    s.print = std::move(print_all);
    s.rows = [this](const SuiteOptions& o) { return result_rows(o); };
    return s;
  }

 private:
  // A variant's time with the baselines' taken out (NAN where nothing is left).
  double net(const Row& r, const V& v) const {
    double base = 0;
    for (size_t vi = 0; vi < ours; ++vi)
      if (r.v[vi].call) base += r.v[vi].seconds;
    const double t = v.seconds - base;
    return t > 0 ? t : NAN;
  }

  // Ours differs from the value of the variant it must equal.
  bool differs(const Row& r) const {
    const V& us = r.v[ours];
    return us.same_as >= 0 && !(us.result == r.v[us.same_as].result);
  }

  // Variant vi against ours (net time t): its ratio, whether its target is met, and the
  // notes of its line in the table.
  Yardstick against(const Row& r, size_t vi, double t) const {
    const V& us = r.v[ours];
    const V& p = r.v[vi];
    Yardstick y;
    y.name = p.name;
    y.seconds = net(r, p);
    y.ratio = y.seconds / t;
    y.target = p.target;
    auto note = [&y](const std::string& s) { y.notes += (y.notes.empty() ? "" : " ") + s; };
    // As printed: a ratio that shows as the target meets it.
    if (p.target > 0 && std::isfinite(y.ratio) && std::round(100 * y.ratio) < std::round(100 * p.target)) {
      note("MISS");
      y.met = false;
    }
    if (us.failed) note("FAILED ours");
    if (us.wrong) note("WRONG ours");
    if (differs(r) && static_cast<int>(vi) == us.same_as) note("WRONG ours");
    if (p.failed) note("FAILED " + p.name);
    if (p.wrong) note("WRONG peer");
    return y;
  }

  // One run: the timed calls, then the status and (after the variant's first run) the
  // output checked.
  void run(size_t ri, size_t vi, benchmark::State& st) {
    Bed& b = bed(ri, vi);
    V& v = rows[ri].v[vi];
    bool failed = false;
    for (auto _ : st) {
      if constexpr (std::is_void_v<decltype(v.call(b))>) {
        v.call(b);
      } else {
        if (v.call(b) != 0) failed = true;
      }
      benchmark::ClobberMemory();
    }
    if (failed) v.failed = true;
    st.SetItemsProcessed(st.iterations() * rows[ri].n);
    if (!v.checked && v.check) {
      v.checked = true;
      if (!v.check(b)) v.wrong = true;
    }
  }

  std::map<std::string, std::pair<size_t, size_t>> slots_;  // run name: row, variant
};

}  // namespace zb
