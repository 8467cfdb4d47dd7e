// The generators and resampling: SampleUp_<T> and SampleDown_<T> (factors 2 and 4),
// VectorSlope_<T>, Triangle_<T> (0.01 and 0.2 cycles a sample) and RandUniform_<T>, every
// member, each next to the generic-backend build of the same call and:
// - SampleUp, SampleDown: memcpy of the output bytes, and the strided loop a user would
//   write (memset of the output then one store a sample at phase + i * factor for up;
//   dst[k] = src[phase + k * factor] for down). Up places each sample at phase 1, down
//   keeps phase 0;
// - VectorSlope: memset of the output bytes, and the loop dst[i] = offset + slope * i,
//   rounded to nearest and saturated for the integers;
// - Triangle: memset of the output bytes, and a sin-free loop with a phase accumulator
//   that wraps at 2 pi and a falling and a rising straight line, in the precision of the
//   member's parameters (asymmetry 0.3, starting phase 0.5);
// - RandUniform: memset of the output bytes, and the loop srand48(seed), then
//   low + (high - low) * drand48() cast to the element type, one draw an element.
// Targets at the best x86 level: SampleUp, SampleDown and VectorSlope at least 0.5 of
// memcpy's (memset's) speed, VectorSlope and Triangle at least twice the generic build's,
// all at L1 and L2; RandUniform at least the speed of the drand48 loop at every size. The
// other ratios are for information. A generic-backend build has no twin and no targets.
//
// A member has several yardsticks with targets of their own, so the family is a
// zb::Suite of rows (bench/zb_rows.h): a row is one function (and factor or frequency)
// at one size, the sizes those of the shared table (4 KiB, 256 KiB and 64 MiB for the
// widest array of a call: the output of SampleUp, the input of SampleDown). A ratio is
// the yardstick's time over ours (above 1: this library is faster). Elements and bytes
// are those of the output.
//
// Every output is checked after its first run. Up and down-sampling only move bits, so
// the strided loop is the answer, for ours and for the generic build alike. The values of
// the other three come from the library's own way of computing them (blocked sums and
// float32 steps), which differs from the plain loops in the last bits: there the
// generic build's output is the answer ours must equal bit for bit.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "bench/zb_rows.h"
#include "zivks.h"

namespace {

using zb::Buffer;

// ---- Sizes and arrays --------------------------------------------------------------

struct Level {
  const char* name;
  size_t bytes;  // of the widest array of a call
  bool cached;   // the targets set at L1 and L2 hold at this size
};
constexpr Level kLevels[] = {{"L1", size_t{4} << 10, true},
                             {"L2", size_t{256} << 10, true},
                             {"MEM", size_t{64} << 20, false}};
constexpr size_t kArrayBytes = size_t{64} << 20;

// The source of the sampling rows, the output every variant writes, and the answer of
// the current row.
struct Data {
  Buffer src{kArrayBytes}, dst{kArrayBytes}, answer{kArrayBytes};

  Data() {
    // 32-bit words that are floats in [1, 2): every float and double reading is finite.
    uint64_t x = 0x9E3779B97F4A7C15ull;
    auto* w = src.as<uint32_t>();
    for (size_t i = 0; i < kArrayBytes / 4; ++i) {
      x ^= x << 13, x ^= x >> 7, x ^= x << 17;
      w[i] = 0x3F800000u | static_cast<uint32_t>(x & 0x7FFFFF);
    }
  }
};

// Made on the first run of the family, so that a run of the other families does not
// hold (or fill) these 192 MiB.
Data& data() {
  static std::unique_ptr<Data> d = std::make_unique<Data>();
  return *d;
}

// What one call works on: the arrays and the row's parameters.
struct Bed {
  int32_t n = 0;  // output elements
  size_t elem = 0;
  const void* src = nullptr;
  void* dst = nullptr;
  const void* answer = nullptr;
  int32_t dst_len = 0;  // what the last sampling call stored in *dstLen
  // Sampling
  int32_t factor = 1, phase = 0;
  // VectorSlope
  double offset = 0, slope = 0;
  // Triangle
  double magn = 0, rfreq = 0, asym = 0, start = 0;
  // RandUniform: the record of the row's type and its parameters
  const void* record = nullptr;
  double low = 0, high = 0;
  uint32_t seed = 0;

  template <class T>
  const T* s() const { return static_cast<const T*>(src); }
  template <class T>
  T* d() const { return static_cast<T*>(dst); }
  size_t out_bytes() const { return elem * static_cast<size_t>(n); }
  bool matches_answer() const { return memcmp(dst, answer, out_bytes()) == 0; }
};

using Variant = zb::Variant<Bed, ZIVKStatus>;

struct Row {
  std::string label;  // the exported name without the prefix, then the factor or frequency
  int level;          // index into kLevels
  int32_t n;
  size_t elem;
  Bed params;                        // the row's parameters, n and elem included
  std::function<void(Bed&)> answer;  // writes the answer (null: none to compare with)
  std::vector<Variant> v;            // v[0] ours, then the yardsticks
};

zb::RowSuite<Row> suite;

// Targets are set for a vector backend (scripts/bench builds the best x86 level of the
// machine); the ones against the generic build need the twin.
bool targets_on() { return strcmp(ZB_BACKEND, "generic") != 0; }

// ---- The plain loops ------------------------------------------------------------------

// Element types: the type of one part (a complex element has two) and of the
// parameters of the float-valued generators.
template <class E>
struct Elem {
  using Part = E;
  static constexpr bool kComplex = false;
};
template <>
struct Elem<ZIVK16sc> {
  using Part = int16_t;
  static constexpr bool kComplex = true;
};
template <>
struct Elem<ZIVK32fc> {
  using Part = float;
  static constexpr bool kComplex = true;
};
template <>
struct Elem<ZIVK64fc> {
  using Part = double;
  static constexpr bool kComplex = true;
};

// The parameters of the triangle: float64 for the float64 members, float32 otherwise.
template <class E>
using TriangleParam = std::conditional_t<std::is_same_v<typename Elem<E>::Part, double>, double, float>;

constexpr double kPi = 3.14159265358979323846;

#define ZB_PLAIN inline __attribute__((always_inline))

template <class E>
ZB_PLAIN void up_loop(const Bed& b) {
  const E* src = b.s<E>();
  E* dst = b.d<E>();
  const int32_t f = b.factor, len = b.n / f;
  memset(dst, 0, sizeof(E) * static_cast<size_t>(len) * static_cast<size_t>(f));
  for (int32_t i = 0; i < len; ++i) dst[b.phase + i * f] = src[i];
}

template <class E>
ZB_PLAIN void down_loop(const Bed& b) {
  const E* src = b.s<E>();
  E* dst = b.d<E>();
  const int32_t f = b.factor;
  for (int32_t k = 0; k < b.n; ++k) dst[k] = src[b.phase + k * f];
}

// The parameters of the ramp: float64 for the 32-bit integers and float64, float32
// otherwise.
template <class T>
using SlopeParam = std::conditional_t<(sizeof(T) >= 4 && !std::is_same_v<T, float>), double, float>;

// offset + slope * i in the precision of the member's parameters; the integers round
// to nearest (ties to even in the default rounding mode) and saturate, a NaN gives 0.
template <class T>
ZB_PLAIN void slope_loop(const Bed& b) {
  using P = SlopeParam<T>;
  T* dst = b.d<T>();
  const P offset = static_cast<P>(b.offset), slope = static_cast<P>(b.slope);
  for (int32_t i = 0; i < b.n; ++i) {
    const P v = offset + slope * static_cast<P>(i);
    if constexpr (std::is_floating_point_v<T>) {
      dst[i] = static_cast<T>(v);
    } else {
      constexpr P lo = static_cast<P>(std::numeric_limits<T>::min());
      constexpr P hi = static_cast<P>(std::numeric_limits<T>::max());
      const P r = std::nearbyint(v);
      dst[i] = !(r == r) ? T{0}
               : r >= hi ? std::numeric_limits<T>::max()
               : r <= lo ? std::numeric_limits<T>::min()
                         : static_cast<T>(r);
    }
  }
}

// A triangle with a phase that steps by 2 pi rFreq and wraps at 2 pi: from magn at
// phase 0 down to -magn at pi + asym, and back up to magn at 2 pi. The complex members
// take the imaginary part a quarter of the way on.
template <class E>
ZB_PLAIN void triangle_loop(const Bed& b) {
  using P = TriangleParam<E>;
  using Part = typename Elem<E>::Part;
  E* dst = b.d<E>();
  const P two_pi = static_cast<P>(2 * kPi), magn = static_cast<P>(b.magn);
  const P fall = static_cast<P>(kPi + b.asym), rise = static_cast<P>(kPi - b.asym);
  const P down = 2 * magn / fall, up = 2 * magn / rise;
  const P step = two_pi * static_cast<P>(b.rfreq), quarter = (fall + two_pi) / 2;
  auto wave = [=](P ph) { return ph < fall ? magn - down * ph : (ph - fall) * up - magn; };
  P ph = static_cast<P>(b.start);
  for (int32_t i = 0; i < b.n; ++i) {
    if constexpr (Elem<E>::kComplex) {
      P q = ph + quarter;
      if (q >= two_pi) q -= two_pi;
      dst[i].re = static_cast<Part>(wave(ph));
      dst[i].im = static_cast<Part>(wave(q));
    } else {
      dst[i] = static_cast<E>(wave(ph));
    }
    ph += step;
    if (ph >= two_pi) ph -= two_pi;
  }
}

template <class T>
ZB_PLAIN void drand48_loop(const Bed& b) {
  T* dst = b.d<T>();
  const double low = b.low, width = b.high - b.low;
  srand48(b.seed);
  for (int32_t i = 0; i < b.n; ++i) dst[i] = static_cast<T>(low + width * drand48());
}

// Each loop compiled for the compiler's default target and for every x86 level; the
// ones of the level the library was built for are the ones timed.
using PlainFn = void (*)(const Bed&);

enum class Isa { kDefault, kV2, kV3, kV4 };

Isa library_isa() {
#if defined(__x86_64__)
  if (strcmp(ZB_BACKEND, "x86") == 0) {
    if (strcmp(ZB_X86_LEVEL, "v4") == 0) return Isa::kV4;
    if (strcmp(ZB_X86_LEVEL, "v3") == 0) return Isa::kV3;
    return Isa::kV2;
  }
#endif
  return Isa::kDefault;
}

const char* isa_name() {
  switch (library_isa()) {
    case Isa::kV4: return "x86-64-v4, 512-bit vectors";
    case Isa::kV3: return "x86-64-v3";
    case Isa::kV2: return "x86-64-v2";
    default: return "the compiler's default target";
  }
}

template <PlainFn kDefault, PlainFn kV2, PlainFn kV3, PlainFn kV4>
PlainFn at_level() {
  switch (library_isa()) {
    case Isa::kV4: return kV4;
    case Isa::kV3: return kV3;
    case Isa::kV2: return kV2;
    default: return kDefault;
  }
}

#if defined(__x86_64__)
#define ZB_LEVELS(name)                                                                                      \
  template <class E>                                                                                         \
  __attribute__((noinline)) void name##_default(const Bed& b) { name<E>(b); }                               \
  template <class E>                                                                                         \
  __attribute__((target("arch=x86-64-v2"), noinline)) void name##_v2(const Bed& b) { name<E>(b); }          \
  template <class E>                                                                                         \
  __attribute__((target("arch=x86-64-v3"), noinline)) void name##_v3(const Bed& b) { name<E>(b); }          \
  template <class E>                                                                                         \
  __attribute__((target("arch=x86-64-v4,prefer-vector-width=512"), noinline)) void name##_v4(const Bed& b) { \
    name<E>(b);                                                                                              \
  }
#define ZB_LEVEL_FN(name, E) at_level<name##_default<E>, name##_v2<E>, name##_v3<E>, name##_v4<E>>()
#else
#define ZB_LEVELS(name) \
  template <class E>    \
  __attribute__((noinline)) void name##_default(const Bed& b) { name<E>(b); }
#define ZB_LEVEL_FN(name, E) (&name##_default<E>)
#endif

ZB_LEVELS(up_loop)
ZB_LEVELS(down_loop)
ZB_LEVELS(slope_loop)
ZB_LEVELS(triangle_loop)
ZB_LEVELS(drand48_loop)

// ---- Rows -----------------------------------------------------------------------------

// The variants every row has after ours: the byte baseline, the generic build (null
// call where there is no twin), the plain loop.
struct Yardsticks {
  bool memset;              // memset of the output bytes, else memcpy from the source
  double byte_target;       // at L1 and L2
  double generic_target;    // at L1 and L2
  double plain_target;      // at every size
  std::string plain_name;
  PlainFn plain;
};

Variant byte_variant(bool fill, double target) {
  if (fill)
    return {"memset of the output",
            [](Bed& b) {
              memset(b.dst, 0x5A, b.out_bytes());
              return ZIVK_STS_NO_ERR;
            },
            nullptr, target};
  return {"memcpy of the output",
          [](Bed& b) {
            memcpy(b.dst, b.src, b.out_bytes());
            return ZIVK_STS_NO_ERR;
          },
          nullptr, target};
}

// The rows of one function and parameter set at every size. `count` gives a row's
// output elements for the bytes of its level; `setup` fills in the parameters; `call`
// makes one call of the native or the generic build; the answer is the plain loop
// (`plain_is_answer`) or the generic build.
template <class Fn>
void add_rows(const std::string& label, const char* symbol, Fn native, size_t elem,
              std::function<int32_t(size_t level_bytes)> count, std::function<void(Bed&)> setup,
              std::function<ZIVKStatus(Fn, Bed&)> call, const Yardsticks& y, bool plain_is_answer) {
  const Fn generic = zb::twin_symbol<Fn>(symbol);
  const bool targets = targets_on();
  for (int li = 0; li < 3; ++li) {
    const Level& lv = kLevels[li];
    Row r{label, li, count(lv.bytes), elem, {}, nullptr, {}};
    r.params.n = r.n;
    r.params.elem = elem;
    setup(r.params);
    auto right = [](const Bed& b) { return b.matches_answer(); };
    if (plain_is_answer) {
      r.answer = [plain = y.plain](Bed& b) {
        Bed a = b;
        a.dst = const_cast<void*>(b.answer);
        plain(a);
      };
    } else if (generic != nullptr) {
      r.answer = [generic, call](Bed& b) {
        Bed a = b;
        a.dst = const_cast<void*>(b.answer);
        call(generic, a);
      };
    }
    const bool checked = plain_is_answer || generic != nullptr;
    r.v.push_back({"ours", [native, call](Bed& b) { return call(native, b); },
                   checked ? std::function<bool(const Bed&)>(right) : nullptr, 0});
    r.v.push_back(byte_variant(y.memset, targets && lv.cached ? y.byte_target : 0));
    Variant g{"generic build", nullptr, plain_is_answer ? std::function<bool(const Bed&)>(right) : nullptr,
              targets && lv.cached && generic != nullptr ? y.generic_target : 0};
    if (generic != nullptr) g.call = [generic, call](Bed& b) { return call(generic, b); };
    r.v.push_back(std::move(g));
    r.v.push_back({y.plain_name,
                   [plain = y.plain](Bed& b) {
                     plain(b);
                     return ZIVK_STS_NO_ERR;
                   },
                   nullptr, targets ? y.plain_target : 0});
    suite.rows.push_back(std::move(r));
  }
}

// ---- Sampling

template <class E>
using SampleFn = ZIVKStatus (*)(const E*, int32_t, E*, int32_t*, int32_t, int32_t*);

constexpr int32_t kFactors[] = {2, 4};
constexpr int32_t kUpPhase = 1;
constexpr int32_t kDownPhase = 0;

// A sampling call with a phase of its own, so that every call starts from the row's;
// the output count is kept for the check.
template <class E>
ZIVKStatus sample(SampleFn<E> f, Bed& b, int32_t src_len) {
  int32_t phase = b.phase;
  return f(b.s<E>(), src_len, b.d<E>(), &b.dst_len, b.factor, &phase);
}

template <class E>
void sampling_rows(const char* name, SampleFn<E> up, const char* up_symbol, SampleFn<E> down,
                   const char* down_symbol) {
  for (const int32_t f : kFactors) {
    const std::string x = "/x" + std::to_string(f);
    // Up: the output is the widest array; the check also wants *dstLen == n.
    add_rows<SampleFn<E>>(
        std::string("SampleUp_") + name + x, up_symbol, up, sizeof(E),
        [](size_t bytes) { return static_cast<int32_t>(bytes / sizeof(E)); },
        [f](Bed& b) { b.factor = f, b.phase = kUpPhase; },
        [](SampleFn<E> fn, Bed& b) {
          const ZIVKStatus st = sample<E>(fn, b, b.n / b.factor);
          return st == ZIVK_STS_NO_ERR && b.dst_len != b.n ? ZIVK_STS_SIZE_ERR : st;
        },
        {false, 0.5, 0, 0, "strided loop", ZB_LEVEL_FN(up_loop, E)}, true);
    // Down: the input is the widest array, factor times the output.
    add_rows<SampleFn<E>>(
        std::string("SampleDown_") + name + x, down_symbol, down, sizeof(E),
        [f](size_t bytes) { return static_cast<int32_t>(bytes / sizeof(E) / static_cast<size_t>(f)); },
        [f](Bed& b) { b.factor = f, b.phase = kDownPhase; },
        [](SampleFn<E> fn, Bed& b) {
          const ZIVKStatus st = sample<E>(fn, b, b.n * b.factor);
          return st == ZIVK_STS_NO_ERR && b.dst_len != b.n ? ZIVK_STS_SIZE_ERR : st;
        },
        {false, 0.5, 0, 0, "strided loop", ZB_LEVEL_FN(down_loop, E)}, true);
  }
}

// ---- VectorSlope

template <class T>
using SlopeFn = ZIVKStatus (*)(T*, int32_t, SlopeParam<T>, SlopeParam<T>);

// The ramp runs over the type's whole range in a row (floats: from -1 to 1), so that
// the integers saturate at most at the last element.
template <class T>
void slope_rows(const char* label, const char* symbol, SlopeFn<T> fn) {
  using P = SlopeParam<T>;
  add_rows<SlopeFn<T>>(
      label, symbol, fn, sizeof(T), [](size_t bytes) { return static_cast<int32_t>(bytes / sizeof(T)); },
      [](Bed& b) {
        if constexpr (std::is_floating_point_v<T>) {
          b.offset = -1, b.slope = 2.0 / b.n;
        } else {
          const double lo = static_cast<double>(std::numeric_limits<T>::min());
          const double hi = static_cast<double>(std::numeric_limits<T>::max());
          b.offset = lo, b.slope = (hi - lo) / b.n;
        }
      },
      [](SlopeFn<T> f, Bed& b) { return f(b.d<T>(), b.n, static_cast<P>(b.offset), static_cast<P>(b.slope)); },
      {true, 0.5, 2.0, 0, "offset + slope * i loop", ZB_LEVEL_FN(slope_loop, T)}, false);
}

// ---- Triangle

template <class E>
using TriangleFn = ZIVKStatus (*)(E*, int32_t, typename Elem<E>::Part, TriangleParam<E>, TriangleParam<E>,
                                  TriangleParam<E>*);

constexpr double kFreqs[] = {0.01, 0.2};
constexpr const char* kFreqNames[] = {"/0.01", "/0.2"};
constexpr double kAsym = 0.3;
constexpr double kStartPhase = 0.5;

template <class E>
void triangle_rows(const char* label, const char* symbol, TriangleFn<E> fn, double magn) {
  using P = TriangleParam<E>;
  using Part = typename Elem<E>::Part;
  for (int fi = 0; fi < 2; ++fi) {
    const double rfreq = kFreqs[fi];
    add_rows<TriangleFn<E>>(
        std::string(label) + kFreqNames[fi], symbol, fn, sizeof(E),
        [](size_t bytes) { return static_cast<int32_t>(bytes / sizeof(E)); },
        [rfreq, magn](Bed& b) { b.magn = magn, b.rfreq = rfreq, b.asym = kAsym, b.start = kStartPhase; },
        [](TriangleFn<E> f, Bed& b) {
          P phase = static_cast<P>(b.start);  // 64f and 64fc write it back
          return f(b.d<E>(), b.n, static_cast<Part>(b.magn), static_cast<P>(b.rfreq), static_cast<P>(b.asym),
                   &phase);
        },
        {true, 0, 2.0, 0, "phase accumulator loop", ZB_LEVEL_FN(triangle_loop, E)}, false);
  }
}

// ---- RandUniform

constexpr uint32_t kSeed = 20240601u;

template <class T, class Rec>
using RandFn = ZIVKStatus (*)(T*, int32_t, Rec*);
template <class T, class Rec>
using RandInitFn = ZIVKStatus (*)(Rec**, T, T, uint32_t);

// The record is made once, by the native build, and serves the generic build too: it is
// the three values given to Init and nothing else. It lives as long as the program.
template <class T, class Rec>
void rand_rows(const char* label, const char* symbol, RandFn<T, Rec> fn, RandInitFn<T, Rec> init, T low, T high) {
  Rec* rec = nullptr;
  const ZIVKStatus st = init(&rec, low, high, kSeed);
  if (st != ZIVK_STS_NO_ERR) {
    fprintf(stderr, "generators bench: the Init of %s returned %d\n", label, static_cast<int>(st));
    exit(1);
  }
  add_rows<RandFn<T, Rec>>(
      label, symbol, fn, sizeof(T), [](size_t bytes) { return static_cast<int32_t>(bytes / sizeof(T)); },
      [rec, low, high](Bed& b) {
        b.record = rec, b.low = static_cast<double>(low), b.high = static_cast<double>(high), b.seed = kSeed;
      },
      [](RandFn<T, Rec> f, Bed& b) { return f(b.d<T>(), b.n, static_cast<Rec*>(const_cast<void*>(b.record))); },
      {true, 0, 0, 1.0, "drand48 loop", ZB_LEVEL_FN(drand48_loop, T)}, false);
}

// ---- Bench-only variants
//
// Rows whose first column is a plain loop that drops one required part, next to ours
// and the yardstick, so that a ratio says what the part costs.
// - VectorSlope_<T>/accumulated: the ramp as the library must make it when its sums
//   round: lane k starts at offset + (k - B) slope (fused) and adds the step B * slope
//   before each store, B lanes side by side, a chain of dependent sums per lane; the
//   same bits as ours, without the test that lets exact sums run wider.
// - Triangle_<T>/direct: every sample's phase from its index, the fractional part of
//   rFreq * i + phase / 2 pi (fused), in float64, then the same two lines as the phase
//   accumulator loop: the direct form written plainly, without the library's checks,
//   blocks and rounding steps.
template <class T, int B>
ZB_PLAIN void accumulated_slope_loop(const Bed& b) {
  T* dst = b.d<T>();
  const T offset = static_cast<T>(b.offset), slope = static_cast<T>(b.slope);
  T acc[B];
  for (int k = 0; k < B; ++k) acc[k] = std::fma(static_cast<T>(k - B), slope, offset);
  const T step = static_cast<T>(B) * slope;
  for (int32_t i = 0; i + B <= b.n; i += B)
    for (int k = 0; k < B; ++k) dst[i + k] = acc[k] = acc[k] + step;
}
template <class E>
ZB_PLAIN void slope_accumulated(const Bed& b) {
  accumulated_slope_loop<E, std::is_same_v<E, float> ? 8 : 4>(b);
}

template <class E>
ZB_PLAIN void triangle_direct(const Bed& b) {
  using Part = typename Elem<E>::Part;
  E* dst = b.d<E>();
  const double two_pi = 2 * kPi, magn = b.magn;
  const double fall = kPi + b.asym, rise = kPi - b.asym;
  const double down = 2 * magn / fall, up = 2 * magn / rise;
  const double quarter = (fall + two_pi) / 2, start = b.start / two_pi, rf = b.rfreq;
  auto wave = [=](double ph) { return ph < fall ? magn - down * ph : (ph - fall) * up - magn; };
  for (int32_t i = 0; i < b.n; ++i) {
    double t = std::fma(rf, static_cast<double>(i), start);
    t -= std::floor(t);
    const double ph = t * two_pi;
    if constexpr (Elem<E>::kComplex) {
      double q = ph + quarter;
      if (q >= two_pi) q -= two_pi;
      dst[i].re = static_cast<Part>(wave(ph));
      dst[i].im = static_cast<Part>(wave(q));
    } else {
      dst[i] = static_cast<E>(wave(ph));
    }
  }
}

ZB_LEVELS(slope_accumulated)
ZB_LEVELS(triangle_direct)

// The rows of a variant at every size: the variant, memset of the output bytes, ours,
// the yardstick.
template <class Fn>
void variant_rows(const std::string& label, Fn native, size_t elem, std::function<void(Bed&)> setup,
                  std::function<ZIVKStatus(Fn, Bed&)> call, PlainFn variant, const std::string& plain_name,
                  PlainFn plain) {
  for (int li = 0; li < 3; ++li) {
    const Level& lv = kLevels[li];
    Row r{label, li, static_cast<int32_t>(lv.bytes / elem), elem, {}, nullptr, {}};
    r.params.n = r.n;
    r.params.elem = elem;
    setup(r.params);
    r.v.push_back({"bench-only variant",
                   [variant](Bed& b) {
                     variant(b);
                     return ZIVK_STS_NO_ERR;
                   },
                   nullptr, 0});
    r.v.push_back(byte_variant(true, 0));
    r.v.push_back({"ours", [native, call](Bed& b) { return call(native, b); }, nullptr, 0});
    r.v.push_back({plain_name,
                   [plain](Bed& b) {
                     plain(b);
                     return ZIVK_STS_NO_ERR;
                   },
                   nullptr, 0});
    suite.rows.push_back(std::move(r));
  }
}

template <class T>
void slope_variant_rows(const char* label, SlopeFn<T> fn) {
  using P = SlopeParam<T>;
  variant_rows<SlopeFn<T>>(
      std::string(label) + "/accumulated", fn, sizeof(T), [](Bed& b) { b.offset = -1, b.slope = 2.0 / b.n; },
      [](SlopeFn<T> f, Bed& b) { return f(b.d<T>(), b.n, static_cast<P>(b.offset), static_cast<P>(b.slope)); },
      ZB_LEVEL_FN(slope_accumulated, T), "offset + slope * i loop", ZB_LEVEL_FN(slope_loop, T));
}

template <class E>
void triangle_variant_rows(const char* label, TriangleFn<E> fn, double magn) {
  using P = TriangleParam<E>;
  using Part = typename Elem<E>::Part;
  variant_rows<TriangleFn<E>>(
      std::string(label) + "/0.01/direct", fn, sizeof(E),
      [magn](Bed& b) { b.magn = magn, b.rfreq = kFreqs[0], b.asym = kAsym, b.start = kStartPhase; },
      [](TriangleFn<E> f, Bed& b) {
        P phase = static_cast<P>(b.start);
        return f(b.d<E>(), b.n, static_cast<Part>(b.magn), static_cast<P>(b.rfreq), static_cast<P>(b.asym), &phase);
      },
      ZB_LEVEL_FN(triangle_direct, E), "phase accumulator loop", ZB_LEVEL_FN(triangle_loop, E));
}

// ---- All rows

void make_rows() {
  sampling_rows<int16_t>("16s", ZIVKS_SampleUp_16s, "ZIVKS_SampleUp_16s", ZIVKS_SampleDown_16s,
                         "ZIVKS_SampleDown_16s");
  sampling_rows<float>("32f", ZIVKS_SampleUp_32f, "ZIVKS_SampleUp_32f", ZIVKS_SampleDown_32f,
                       "ZIVKS_SampleDown_32f");
  sampling_rows<double>("64f", ZIVKS_SampleUp_64f, "ZIVKS_SampleUp_64f", ZIVKS_SampleDown_64f,
                        "ZIVKS_SampleDown_64f");
  sampling_rows<ZIVK16sc>("16sc", ZIVKS_SampleUp_16sc, "ZIVKS_SampleUp_16sc", ZIVKS_SampleDown_16sc,
                          "ZIVKS_SampleDown_16sc");
  sampling_rows<ZIVK32fc>("32fc", ZIVKS_SampleUp_32fc, "ZIVKS_SampleUp_32fc", ZIVKS_SampleDown_32fc,
                          "ZIVKS_SampleDown_32fc");
  sampling_rows<ZIVK64fc>("64fc", ZIVKS_SampleUp_64fc, "ZIVKS_SampleUp_64fc", ZIVKS_SampleDown_64fc,
                          "ZIVKS_SampleDown_64fc");

  slope_rows<uint8_t>("VectorSlope_8u", "ZIVKS_VectorSlope_8u", ZIVKS_VectorSlope_8u);
  slope_rows<uint16_t>("VectorSlope_16u", "ZIVKS_VectorSlope_16u", ZIVKS_VectorSlope_16u);
  slope_rows<int16_t>("VectorSlope_16s", "ZIVKS_VectorSlope_16s", ZIVKS_VectorSlope_16s);
  slope_rows<uint32_t>("VectorSlope_32u", "ZIVKS_VectorSlope_32u", ZIVKS_VectorSlope_32u);
  slope_rows<int32_t>("VectorSlope_32s", "ZIVKS_VectorSlope_32s", ZIVKS_VectorSlope_32s);
  slope_rows<float>("VectorSlope_32f", "ZIVKS_VectorSlope_32f", ZIVKS_VectorSlope_32f);
  slope_rows<double>("VectorSlope_64f", "ZIVKS_VectorSlope_64f", ZIVKS_VectorSlope_64f);

  // Peaks near the top of each type's range.
  triangle_rows<int16_t>("Triangle_16s", "ZIVKS_Triangle_16s", ZIVKS_Triangle_16s, 30000);
  triangle_rows<float>("Triangle_32f", "ZIVKS_Triangle_32f", ZIVKS_Triangle_32f, 1.0);
  triangle_rows<double>("Triangle_64f", "ZIVKS_Triangle_64f", ZIVKS_Triangle_64f, 1.0);
  triangle_rows<ZIVK16sc>("Triangle_16sc", "ZIVKS_Triangle_16sc", ZIVKS_Triangle_16sc, 30000);
  triangle_rows<ZIVK32fc>("Triangle_32fc", "ZIVKS_Triangle_32fc", ZIVKS_Triangle_32fc, 1.0);
  triangle_rows<ZIVK64fc>("Triangle_64fc", "ZIVKS_Triangle_64fc", ZIVKS_Triangle_64fc, 1.0);

  rand_rows<uint8_t, ZIVKRandUniformState_8u>("RandUniform_8u", "ZIVKS_RandUniform_8u", ZIVKS_RandUniform_8u,
                                              ZIVKS_RandUniformInit_8u, 0, 255);
  rand_rows<int16_t, ZIVKRandUniformState_16s>("RandUniform_16s", "ZIVKS_RandUniform_16s",
                                               ZIVKS_RandUniform_16s, ZIVKS_RandUniformInit_16s, -32768, 32767);
  rand_rows<float, ZIVKRandUniformState_32f>("RandUniform_32f", "ZIVKS_RandUniform_32f", ZIVKS_RandUniform_32f,
                                             ZIVKS_RandUniformInit_32f, -1.0f, 1.0f);
  rand_rows<double, ZIVKRandUniformState_64f>("RandUniform_64f", "ZIVKS_RandUniform_64f",
                                              ZIVKS_RandUniform_64f, ZIVKS_RandUniformInit_64f, -1.0, 1.0);

  slope_variant_rows<float>("VectorSlope_32f", ZIVKS_VectorSlope_32f);
  slope_variant_rows<double>("VectorSlope_64f", ZIVKS_VectorSlope_64f);
  triangle_variant_rows<float>("Triangle_32f", ZIVKS_Triangle_32f, 1.0);
  triangle_variant_rows<ZIVK32fc>("Triangle_32fc", ZIVKS_Triangle_32fc, 1.0);
}

// ---- The suite --------------------------------------------------------------------------

// A row's runs come one after another: its parameters and its answer are made when the
// row changes.
Bed& bed_for(size_t ri, size_t) {
  static Bed b;
  static size_t current = SIZE_MAX;
  if (current == ri) return b;
  const Row& r = suite.rows[ri];
  Data& d = data();
  b = r.params;
  b.src = d.src.as<void>();
  b.dst = d.dst.as<void>();
  b.answer = d.answer.as<void>();
  if (r.answer) r.answer(b);
  current = ri;
  return b;
}

int print(const zb::SuiteOptions& o) {
  const char* lead = o.markdown ? "- " : "";
  printf("%sgenerators yardsticks: memcpy (sampling) or memset (the others) of the output bytes; the"
         " generic-backend build; the plain loop a user would write, compiled for %s. Sampling: up at"
         " phase 1, down at phase 0. Triangle: asymmetry %.1f. Targets at L1 and L2, RandUniform's at"
         " every size; 16Mi elements: one round, the others the fastest of %d\n\n",
         lead, isa_name(), kAsym, o.rounds);
  return suite.print(o);
}

const int registered = [] {
  suite.family = "generators";
  suite.ours = 0;
  suite.peers = "against";
  suite.part = [](const Row& r) { return kLevels[r.level].name; };
  suite.bed = bed_for;
  suite.format = "%-22s %-4s %8s %11s %11s  %-24s %6s %6s  %s\n";
  suite.headers = {"function", "size", "elements", "elements/s", "bytes/s", "against", "ratio", "target", "notes"};
  suite.fifth = [](const Row& r, double ours) {
    return zb::rate(static_cast<double>(r.n) * static_cast<double>(r.elem) / ours, "B");
  };
  suite.bytes = [](const Row& r) { return static_cast<double>(r.n) * static_cast<double>(r.elem); };
  make_rows();
  return zb::add_suite(suite.suite(print));
}();

}  // namespace
