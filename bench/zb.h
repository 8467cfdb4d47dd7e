// Benchmark support. A family adds one file, bench/<family>_bench.cpp, that registers
// its functions with ZB_FUNC (and their peers with ZB_PEER); the harness runs each at
// three sizes next to the byte baseline (memcpy or memset of the same bytes), the same
// function from the generic-backend build of the library, and the peer, and prints one
// table of ratios from that single run. The sizes are 1 Ki, 64 Ki and 16 Mi elements of
// 32 bits, i.e. 4 KiB (first cache level), 256 KiB (second level) and 64 MiB (memory)
// for the widest array of a call; other element widths take as many elements as fit in
// the same bytes.
//
//   ZB_FUNC(float_add_sub, ZIVKS_Add_32f, float, kMemcpy, 0.8,
//           [](auto fn, const zb::Arrays& a, int32_t n) {
//             fn(a.src<float>(0), a.src<float>(1), a.dst<float>(0), n);
//           });
//   ZB_PEER(ZIVKS_Add_32f, volk_32f_x2_add_32f, [](const zb::Arrays& a, int32_t n) {
//     volk_32f_x2_add_32f(a.dst<float>(0), a.src<float>(0), a.src<float>(1), n);
//   });
//
// Bytes are those of the output array (n elements of the element type given): the
// baseline copies or fills exactly these bytes, so a ratio is a ratio of times.
#pragma once

#include <dlfcn.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace zb {

// The library built with the generic backend (null where the native backend is the
// generic one), and one of its functions by name with the type Fn (null where none).
void* twin();
template <class Fn>
Fn twin_symbol(const char* name) {
  void* lib = twin();
  return lib ? reinterpret_cast<Fn>(dlsym(lib, name)) : nullptr;
}

// What the bytes of a call are measured against: memcpy, memset of a byte pattern
// (0x5A), or memset of zeros (which some machines store faster than other bytes).
enum Baseline { kMemcpy, kMemset, kMemsetZero };

// Arrays shared by every case: sources src(0..kSources-1) and destinations
// dst(0..kDests-1), each 64 MiB, 64-byte aligned, at ascending addresses
// (every source lies below every destination; src(k) below src(k + 1)). They are filled
// once with 32-bit words that are floats in [1, 2), so that every float, double and
// complex reading is finite and normal; integer readings are arbitrary bits. Cases may
// overwrite any of them.
struct Arrays {
  static constexpr int kSources = 3;
  static constexpr int kDests = 2;
  static constexpr size_t kBytes = size_t{64} << 20;
  unsigned char* s[kSources];
  unsigned char* d[kDests];

  template <class T>
  T* src(int k) const { return reinterpret_cast<T*>(s[k]); }
  template <class T>
  T* dst(int k) const { return reinterpret_cast<T*>(d[k]); }
};

// One benchmarked function. `call(fn, arrays, n)` calls fn, the native or the generic
// build of the exported function, on n elements.
struct Case {
  std::string family;        // the bench file's family word, used by the filter
  std::string label;         // what the table shows (the exported name without ZIVKS_)
  std::string symbol;        // the exported name, looked up in the generic build
  size_t elem_bytes;         // bytes of one output element
  size_t in_bytes;           // bytes of one element of the widest input
  Baseline baseline;
  double base_target;        // least ratio to the baseline at L1 and L2 sizes; 0: none
  const void* native;        // the exported function, as linked
  std::function<void(const void* fn, const Arrays&, int32_t n)> call;
  std::string peer_name;     // empty: no peer
  std::function<void(const Arrays&, int32_t n)> peer;
};

int add_case(Case c);
int add_peer(const std::string& symbol, const std::string& peer_name,
             std::function<void(const Arrays&, int32_t n)> call);

template <class Fn, class Call>
int add_func(const char* family, const char* label, const char* symbol, Fn native,
             size_t in_bytes, size_t elem_bytes, Baseline baseline, double base_target,
             Call call) {
  Case c;
  c.family = family;
  c.label = label;
  c.symbol = symbol;
  c.elem_bytes = elem_bytes;
  c.in_bytes = in_bytes;
  c.baseline = baseline;
  c.base_target = base_target;
  c.native = reinterpret_cast<const void*>(native);
  c.call = [call](const void* fn, const Arrays& a, int32_t n) {
    call(reinterpret_cast<Fn>(const_cast<void*>(fn)), a, n);
  };
  return add_case(std::move(c));
}

// ---- Families of a shape of their own
//
// A family whose calls do not fit the shape above (a sort overwrites its input, so each
// call must start from a fresh copy; it has several peers and sizes and inputs of its
// own) registers a Suite instead. The harness hands it the filter and the options; the
// suite registers its own Google Benchmark runs, under names that start with
// "<family>/"; the harness passes every finished run back to it and, at the end, lets it
// print its own table below the shared one. A family of rows, each one function on one
// input timed next to its baselines and peers, makes its Suite with zb::RowSuite
// (bench/zb_rows.h).
struct SuiteOptions {
  std::function<bool(const std::string&)> selected;  // the filter, on "family/Label..."
  int rounds;                                        // --rounds
  double min_time;                                   // --min-time, seconds a run
  bool markdown;                                     // --markdown
};

// One line of a table as --json writes it: ours, and everything ours is measured against
// with the ratio of its time to ours (above 1: this library is faster).
struct Yardstick {
  // The byte baseline, the generic build, another way of calling ours, or a peer.
  enum Kind { kBase, kGeneric, kSelf, kPeer };
  std::string name;
  Kind kind = kPeer;
  double seconds = NAN;  // per call, as the ratio uses it
  double ratio = NAN;
  double target = 0;     // least ratio; 0: none
  bool met = true;       // as printed: a ratio that shows as the target meets it
  std::string notes;
};
struct ResultRow {
  std::string family;
  std::string label;       // what the table shows in its first column
  std::string symbol;      // the exported function
  std::string size;        // "L1", "L2", "MEM", or a count ("64Ki")
  std::string input_kind;  // what `input` says ("input", "nulls", "mask"); empty: none
  std::string input;       // the row's input (e.g. "random", "1%", "m5")
  std::string items = "elements";  // what a call counts ("keys", "rows", "samples")
  double elements = NAN;   // of a call
  double bytes = NAN;      // of a call, as bytes/s counts them; NAN: not counted
  double seconds = NAN;    // ours, per call
  std::vector<std::pair<std::string, double>> subtracted;  // taken out of every time
  std::vector<Yardstick> against;
  std::string notes;
};

struct Suite {
  std::string family;
  // --list: prints the selected cases, one a line.
  std::function<void(const SuiteOptions&)> list;
  // Registers the runs of the selected cases; returns how many.
  std::function<size_t(const SuiteOptions&)> add;
  // One finished run (its full name) and its processor time per iteration.
  std::function<void(const std::string& run, double seconds)> record;
  // Prints the table; returns the number of targets missed.
  std::function<int(const SuiteOptions&)> print;
  // The rows of that table, for --json (null: none).
  std::function<std::vector<ResultRow>(const SuiteOptions&)> rows;
};

int add_suite(Suite s);

// A rate with a decimal prefix: "12.34 M" followed by `unit`; "-" when not finite.
std::string rate(double per_second, const char* unit);

// Strips the library prefix for the table.
inline const char* short_name(const char* symbol) {
  return symbol[0] == 'Z' && symbol[5] == '_' ? symbol + 6 : symbol;
}

}  // namespace zb

#define ZB_CAT2(a, b) a##b
#define ZB_CAT(a, b) ZB_CAT2(a, b)

// Registers the exported function FN of FAMILY; ELEM is the element type of its arrays.
// BASELINE is kMemcpy or kMemset; BASE_TARGET the least ratio to it expected at the
// cached sizes (0: none); CALL a generic lambda (auto fn, const zb::Arrays&, int32_t n).
#define ZB_FUNC(family, fn, elem, baseline, base_target, call) \
  ZB_FUNC_IO(family, fn, elem, elem, baseline, base_target, call)

// The same for a function whose inputs (IN_ELEM) and output (OUT_ELEM) differ in width.
#define ZB_FUNC_IO(family, fn, in_elem, out_elem, baseline, base_target, call)                \
  static const int ZB_CAT(zb_case_, __COUNTER__) =                                          \
      ::zb::add_func(#family, ::zb::short_name(#fn), #fn, &fn, sizeof(in_elem),             \
                     sizeof(out_elem), ::zb::baseline, base_target, call)

// The same with a label of its own, for a second way of calling one function
// (e.g. a Move walking the other way).
#define ZB_FUNC_AS(family, label, fn, elem, baseline, base_target, call)                   \
  static const int ZB_CAT(zb_case_, __COUNTER__) = ::zb::add_func(                         \
      #family, label, #fn, &fn, sizeof(elem), sizeof(elem), ::zb::baseline, base_target, call)

// The peer of a registered case (by its label), called on the same arrays.
#define ZB_PEER_AS(label, peer, call) \
  static const int ZB_CAT(zb_peer_, __COUNTER__) = ::zb::add_peer(label, #peer, call)
#define ZB_PEER(fn, peer, call) ZB_PEER_AS(::zb::short_name(#fn), peer, call)
