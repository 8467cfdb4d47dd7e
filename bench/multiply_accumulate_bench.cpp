// Multiply-accumulate, all 9 members (the scaled integer ones at scale 4, 1 and 0.25),
// each next to memcpy of its output bytes, its generic build and, for the float members,
// the yardsticks a user would write instead:
// - VOLK's multiply of the same arrays into the same output (volk_32f_x2_multiply_32f,
//   volk_64f_x2_multiply_64f, volk_32f_s32f_multiply_32f, volk_32fc_x2_multiply_32fc).
//   VOLK has no multiply-accumulate; its multiply writes the same bytes and reads one
//   array fewer, so it is the least traffic the job can have;
// - a plain std::fma loop over the same arrays, written here and compiled for the x86
//   level the library is built for (with its vector width).
// Targets at L1 and L2: AddProduct_32f, AddProduct_64f and AddProductC_32f at least the
// fma loop's speed and 0.9 of VOLK's multiply. The other ratios are for information.
//
// A member has several yardsticks with targets of their own, so the family is a
// zb::Suite of rows (bench/zb_rows.h): a row is one function at one size, the sizes those
// of the shared table (4 KiB, 256 KiB and 64 MiB for the widest array of a call). A ratio
// is the yardstick's time over ours (above 1: this library is faster).
//
// The arrays are this family's own: two sources and the accumulator, filled once with
// 32-bit words that are floats in [1, 2) (so every float and double reading is finite and
// normal; integer readings are arbitrary bits). Every run starts from the same
// accumulator: the bytes of its row are copied back from a clean copy before it, as the
// members before it (and the integer members above all) leave bytes in it that read as
// NaN or as subnormal floats.
#include <string.h>
#include <volk/volk.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
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
  bool targets;  // the targets hold at this size
};
constexpr Level kLevels[] = {{"L1", size_t{4} << 10, true},
                             {"L2", size_t{256} << 10, true},
                             {"MEM", size_t{64} << 20, false}};
constexpr size_t kArrayBytes = size_t{64} << 20;

struct Data {
  Buffer src1{kArrayBytes}, src2{kArrayBytes}, acc{kArrayBytes}, clean{kArrayBytes};

  Data() {
    uint64_t x = 0x9E3779B97F4A7C15ull;
    auto fill = [&x](const Buffer& b) {
      auto* w = b.as<uint32_t>();
      for (size_t i = 0; i < kArrayBytes / 4; ++i) {
        x ^= x << 13, x ^= x >> 7, x ^= x << 17;
        w[i] = 0x3F800000u | static_cast<uint32_t>(x & 0x7FFFFF);
      }
    };
    fill(src1);
    fill(src2);
    fill(clean);
    memcpy(acc.as<void>(), clean.as<void>(), kArrayBytes);
  }
};

// Made on the first run of the family, so that a run of the other families does not
// hold (or fill) these 256 MiB.
Data& data() {
  static std::unique_ptr<Data> d = std::make_unique<Data>();
  return *d;
}

// What one call works on.
struct Bed {
  int32_t n = 0;
  const void* src1 = nullptr;
  const void* src2 = nullptr;
  void* acc = nullptr;  // srcDst, and the output of every yardstick
  size_t out_bytes = 0;

  template <class T>
  const T* a() const { return static_cast<const T*>(src1); }
  template <class T>
  const T* b() const { return static_cast<const T*>(src2); }
  template <class T>
  T* c() const { return static_cast<T*>(acc); }
};

using Variant = zb::Variant<Bed, ZIVKStatus>;

struct Row {
  std::string label;  // the exported name without the prefix (and the scale)
  int level;          // index into kLevels
  int32_t n;
  size_t out_bytes;   // of one output element
  std::vector<Variant> v;  // v[0] ours, then the yardsticks
};

zb::RowSuite<Row> suite;

// ---- The generic build ----------------------------------------------------------------

// ---- The std::fma loops -----------------------------------------------------------------

// Written once; each instruction-set level below compiles them for itself, and the
// loops of the level the library was built for are the ones timed.
template <class T>
inline __attribute__((always_inline)) void fma_arrays_body(const T* a, const T* b, T* c, int32_t n) {
  for (int32_t i = 0; i < n; ++i) c[i] = std::fma(a[i], b[i], c[i]);
}
template <class T>
inline __attribute__((always_inline)) void fma_const_body(const T* a, T v, T* c, int32_t n) {
  for (int32_t i = 0; i < n; ++i) c[i] = std::fma(a[i], v, c[i]);
}

template <class T>
struct FmaLoops {
  void (*arrays)(const T*, const T*, T*, int32_t);
  void (*constant)(const T*, T, T*, int32_t);
};

#define ZB_FMA_LEVEL(level, isa)                                                               \
  template <class T>                                                                           \
  __attribute__((target(isa), noinline)) void fma_arrays_##level(const T* a, const T* b, T* c, \
                                                                 int32_t n) {                  \
    fma_arrays_body(a, b, c, n);                                                               \
  }                                                                                            \
  template <class T>                                                                           \
  __attribute__((target(isa), noinline)) void fma_const_##level(const T* a, T v, T* c,         \
                                                                int32_t n) {                   \
    fma_const_body(a, v, c, n);                                                                \
  }

template <class T>
__attribute__((noinline)) void fma_arrays_default(const T* a, const T* b, T* c, int32_t n) {
  fma_arrays_body(a, b, c, n);
}
template <class T>
__attribute__((noinline)) void fma_const_default(const T* a, T v, T* c, int32_t n) {
  fma_const_body(a, v, c, n);
}

#if defined(__x86_64__)
ZB_FMA_LEVEL(v2, "arch=x86-64-v2")
ZB_FMA_LEVEL(v3, "arch=x86-64-v3")
ZB_FMA_LEVEL(v4, "arch=x86-64-v4,prefer-vector-width=512")
#endif

// The level of the library build: its x86 level on the x86 backend; the compiler's
// default on the generic one and on other processors.
const char* fma_level() {
#if defined(__x86_64__)
  if (strcmp(ZB_BACKEND, "x86") == 0) {
    if (strcmp(ZB_X86_LEVEL, "v4") == 0) return "x86-64-v4, 512-bit vectors";
    if (strcmp(ZB_X86_LEVEL, "v3") == 0) return "x86-64-v3";
    return "x86-64-v2";
  }
#endif
  return "the compiler's default target";
}

template <class T>
FmaLoops<T> fma_loops() {
#if defined(__x86_64__)
  if (strcmp(ZB_BACKEND, "x86") == 0) {
    if (strcmp(ZB_X86_LEVEL, "v4") == 0) return {fma_arrays_v4<T>, fma_const_v4<T>};
    if (strcmp(ZB_X86_LEVEL, "v3") == 0) return {fma_arrays_v3<T>, fma_const_v3<T>};
    return {fma_arrays_v2<T>, fma_const_v2<T>};
  }
#endif
  return {fma_arrays_default<T>, fma_const_default<T>};
}

// ---- Bench-only variants ---------------------------------------------------------------
//
// Each drops one part of what the library must do, so that a row of its own can say what
// that part costs: the variant is "ours" of the row, and the ratio of the real call to it
// is the part's price (above 1: the part costs that factor).
// - noAccumulator: the product alone, dst = a * b, the job of VOLK's multiply; it reads
//   one array fewer than a multiply-accumulate.
// - interleaved (complex): the block's fixed rounding order, re = fma(-a.im, b.im,
//   a.re * b.re), im = fma(a.im, b.re, a.re * b.im), then c added, as a plain loop over
//   the interleaved parts: the same bits as the library's blocks, without its split of
//   the parts into planes.
template <class T>
inline __attribute__((always_inline)) void product_body(const T* a, const T* b, T* c, int32_t n) {
  for (int32_t i = 0; i < n; ++i) c[i] = a[i] * b[i];
}
template <class T>
inline __attribute__((always_inline)) void product_const_body(const T* a, T v, T* c, int32_t n) {
  for (int32_t i = 0; i < n; ++i) c[i] = a[i] * v;
}
// The fixed-order complex product, added into c (kAccumulate) or stored.
template <bool kAccumulate>
inline __attribute__((always_inline)) void complex_body(const float* a, const float* b, float* c, int32_t n) {
  for (int32_t i = 0; i < n; ++i) {
    const float ar = a[2 * i], ai = a[2 * i + 1], br = b[2 * i], bi = b[2 * i + 1];
    const float re = std::fma(-ai, bi, ar * br);
    const float im = std::fma(ai, br, ar * bi);
    if (kAccumulate) {
      c[2 * i] = c[2 * i] + re;
      c[2 * i + 1] = c[2 * i + 1] + im;
    } else {
      c[2 * i] = re;
      c[2 * i + 1] = im;
    }
  }
}

template <class T>
struct VariantLoops {
  void (*product)(const T*, const T*, T*, int32_t);
  void (*product_const)(const T*, T, T*, int32_t);
  void (*complex_acc)(const float*, const float*, float*, int32_t);
  void (*complex_product)(const float*, const float*, float*, int32_t);
};

#define ZB_VARIANT_LEVEL(level, attr)                                                                     \
  template <class T>                                                                                      \
  attr void product_##level(const T* a, const T* b, T* c, int32_t n) { product_body(a, b, c, n); }        \
  template <class T>                                                                                      \
  attr void product_const_##level(const T* a, T v, T* c, int32_t n) { product_const_body(a, v, c, n); }   \
  attr void complex_acc_##level(const float* a, const float* b, float* c, int32_t n) {                    \
    complex_body<true>(a, b, c, n);                                                                       \
  }                                                                                                       \
  attr void complex_product_##level(const float* a, const float* b, float* c, int32_t n) {                \
    complex_body<false>(a, b, c, n);                                                                      \
  }

ZB_VARIANT_LEVEL(default, __attribute__((noinline)))
#if defined(__x86_64__)
ZB_VARIANT_LEVEL(v2, __attribute__((target("arch=x86-64-v2"), noinline)))
ZB_VARIANT_LEVEL(v3, __attribute__((target("arch=x86-64-v3"), noinline)))
ZB_VARIANT_LEVEL(v4, __attribute__((target("arch=x86-64-v4,prefer-vector-width=512"), noinline)))
#endif

// The variants compiled for the level of the library build, as the fma loops are.
template <class T>
VariantLoops<T> variant_loops() {
#if defined(__x86_64__)
  if (strcmp(ZB_BACKEND, "x86") == 0) {
    if (strcmp(ZB_X86_LEVEL, "v4") == 0) return {product_v4<T>, product_const_v4<T>, complex_acc_v4, complex_product_v4};
    if (strcmp(ZB_X86_LEVEL, "v3") == 0) return {product_v3<T>, product_const_v3<T>, complex_acc_v3, complex_product_v3};
    return {product_v2<T>, product_const_v2<T>, complex_acc_v2, complex_product_v2};
  }
#endif
  return {product_default<T>, product_const_default<T>, complex_acc_default, complex_product_default};
}

// ---- Rows -----------------------------------------------------------------------------

constexpr float kConst32f = 0.75f;
constexpr double kConst64f = 0.75;

// A yardstick of a float member: its call and its target at L1 and L2 (0: none).
struct Yardstick {
  std::string name;
  std::function<void(const Bed&)> call;
  double target;
};

// The rows of one member at every size: ours, memcpy of the output bytes, the generic
// build, then the yardsticks. `call` makes one call of the native or the generic build.
template <class Fn>
void member_rows(const std::string& label, const char* symbol, Fn native, size_t in_bytes,
                 size_t out_bytes, std::function<ZIVKStatus(Fn, const Bed&)> call,
                 const std::vector<Yardstick>& yardsticks) {
  Fn generic = zb::twin_symbol<Fn>(symbol);
  for (int li = 0; li < 3; ++li) {
    const Level& lv = kLevels[li];
    Row r{label, li, static_cast<int32_t>(lv.bytes / std::max(in_bytes, out_bytes)), out_bytes, {}};
    r.v.push_back({"ours", [native, call](const Bed& b) { return call(native, b); }, nullptr, 0});
    r.v.push_back({"memcpy of the output",
                   [](const Bed& b) {
                     memcpy(b.acc, b.src1, b.out_bytes * static_cast<size_t>(b.n));
                     return ZIVK_STS_NO_ERR;
                   },
                   nullptr, 0});
    Variant g{"generic build", nullptr, nullptr, 0};
    if (generic != nullptr) g.call = [generic, call](const Bed& b) { return call(generic, b); };
    r.v.push_back(std::move(g));
    for (const Yardstick& y : yardsticks)
      r.v.push_back({y.name,
                     [f = y.call](const Bed& b) {
                       f(b);
                       return ZIVK_STS_NO_ERR;
                     },
                     nullptr, lv.targets ? y.target : 0});
    suite.rows.push_back(std::move(r));
  }
}

// The rows of a bench-only variant at every size: the variant as the row's "ours", memcpy
// of the output bytes, the real call (named "ours"), then the yardsticks without targets.
template <class Fn>
void variant_rows(const std::string& label, Fn native, size_t in_bytes, size_t out_bytes,
                  std::function<ZIVKStatus(Fn, const Bed&)> call, std::function<void(const Bed&)> variant,
                  const std::vector<Yardstick>& yardsticks) {
  for (int li = 0; li < 3; ++li) {
    const Level& lv = kLevels[li];
    Row r{label, li, static_cast<int32_t>(lv.bytes / std::max(in_bytes, out_bytes)), out_bytes, {}};
    r.v.push_back({"bench-only variant",
                   [variant](const Bed& b) {
                     variant(b);
                     return ZIVK_STS_NO_ERR;
                   },
                   nullptr, 0});
    r.v.push_back({"memcpy of the output",
                   [](const Bed& b) {
                     memcpy(b.acc, b.src1, b.out_bytes * static_cast<size_t>(b.n));
                     return ZIVK_STS_NO_ERR;
                   },
                   nullptr, 0});
    r.v.push_back({"ours", [native, call](const Bed& b) { return call(native, b); }, nullptr, 0});
    for (const Yardstick& y : yardsticks)
      r.v.push_back({y.name,
                     [f = y.call](const Bed& b) {
                       f(b);
                       return ZIVK_STS_NO_ERR;
                     },
                     nullptr, 0});
    suite.rows.push_back(std::move(r));
  }
}

// VOLK takes its arrays as complex floats of its own type (the same layout).
lv_32fc_t* cf(void* p) { return static_cast<lv_32fc_t*>(p); }
const lv_32fc_t* cf(const void* p) { return static_cast<const lv_32fc_t*>(p); }

template <class T>
using ProductFn = ZIVKStatus (*)(const T*, const T*, T*, int32_t);
template <class T>
using ProductCFn = ZIVKStatus (*)(const T*, T, T*, int32_t);
template <class S, class D>
using ScaledFn = ZIVKStatus (*)(const S*, const S*, D*, int32_t, double);

template <class T>
void product_rows(const char* label, const char* symbol, ProductFn<T> fn, std::vector<Yardstick> ys) {
  member_rows<ProductFn<T>>(
      label, symbol, fn, sizeof(T), sizeof(T),
      [](ProductFn<T> f, const Bed& b) { return f(b.a<T>(), b.b<T>(), b.c<T>(), b.n); }, ys);
}

template <class T>
void product_c_rows(const char* label, const char* symbol, ProductCFn<T> fn, T val,
                    std::vector<Yardstick> ys) {
  member_rows<ProductCFn<T>>(
      label, symbol, fn, sizeof(T), sizeof(T),
      [val](ProductCFn<T> f, const Bed& b) { return f(b.a<T>(), val, b.c<T>(), b.n); }, ys);
}

template <class S, class D>
void scaled_rows(const char* name, const char* symbol, ScaledFn<S, D> fn) {
  for (const auto& [scale_label, scale] : {std::pair<const char*, double>{"4", 4.0}, {"1", 1.0}, {"0.25", 0.25}})
    member_rows<ScaledFn<S, D>>(
        std::string(name) + "/" + scale_label, symbol, fn, sizeof(S), sizeof(D),
        [scale = scale](ScaledFn<S, D> f, const Bed& b) { return f(b.a<S>(), b.b<S>(), b.c<D>(), b.n, scale); },
        {});
}

void make_rows() {
  const FmaLoops<float> f32 = fma_loops<float>();
  const FmaLoops<double> f64 = fma_loops<double>();
  product_rows<float>("AddProduct_32f", "ZIVKS_AddProduct_32f", ZIVKS_AddProduct_32f,
                      {{"volk_32f_x2_multiply_32f",
                        [](const Bed& b) { volk_32f_x2_multiply_32f(b.c<float>(), b.a<float>(), b.b<float>(), b.n); },
                        0.9},
                       {"std::fma loop", [f32](const Bed& b) { f32.arrays(b.a<float>(), b.b<float>(), b.c<float>(), b.n); },
                        1.0}});
  product_rows<double>("AddProduct_64f", "ZIVKS_AddProduct_64f", ZIVKS_AddProduct_64f,
                       {{"volk_64f_x2_multiply_64f",
                         [](const Bed& b) { volk_64f_x2_multiply_64f(b.c<double>(), b.a<double>(), b.b<double>(), b.n); },
                         0.9},
                        {"std::fma loop",
                         [f64](const Bed& b) { f64.arrays(b.a<double>(), b.b<double>(), b.c<double>(), b.n); }, 1.0}});
  product_c_rows<float>("AddProductC_32f", "ZIVKS_AddProductC_32f", ZIVKS_AddProductC_32f, kConst32f,
                        {{"volk_32f_s32f_multiply_32f",
                          [](const Bed& b) { volk_32f_s32f_multiply_32f(b.c<float>(), b.a<float>(), kConst32f, b.n); },
                          0.9},
                         {"std::fma loop",
                          [f32](const Bed& b) { f32.constant(b.a<float>(), kConst32f, b.c<float>(), b.n); }, 1.0}});
  // VOLK has no multiply of float64 by a constant.
  product_c_rows<double>("AddProductC_64f", "ZIVKS_AddProductC_64f", ZIVKS_AddProductC_64f, kConst64f,
                         {{"std::fma loop",
                           [f64](const Bed& b) { f64.constant(b.a<double>(), kConst64f, b.c<double>(), b.n); }, 0}});
  product_rows<ZIVK32fc>("AddProduct_32fc", "ZIVKS_AddProduct_32fc", ZIVKS_AddProduct_32fc,
                         {{"volk_32fc_x2_multiply_32fc",
                           [](const Bed& b) { volk_32fc_x2_multiply_32fc(cf(b.acc), cf(b.src1), cf(b.src2), b.n); },
                           0}});
  product_rows<ZIVK64fc>("AddProduct_64fc", "ZIVKS_AddProduct_64fc", ZIVKS_AddProduct_64fc, {});

  // What the accumulator and the planes cost: the bench-only variants next to the real
  // call and the peers.
  const VariantLoops<float> v32 = variant_loops<float>();
  const VariantLoops<double> v64 = variant_loops<double>();
  const auto volk32 = [](const Bed& b) { volk_32f_x2_multiply_32f(b.c<float>(), b.a<float>(), b.b<float>(), b.n); };
  const auto volk64 = [](const Bed& b) { volk_64f_x2_multiply_64f(b.c<double>(), b.a<double>(), b.b<double>(), b.n); };
  const auto volk32c = [](const Bed& b) { volk_32f_s32f_multiply_32f(b.c<float>(), b.a<float>(), kConst32f, b.n); };
  const auto volk32fc = [](const Bed& b) { volk_32fc_x2_multiply_32fc(cf(b.acc), cf(b.src1), cf(b.src2), b.n); };
  variant_rows<ProductFn<float>>(
      "AddProduct_32f/noAccumulator", ZIVKS_AddProduct_32f, 4, 4,
      [](ProductFn<float> f, const Bed& b) { return f(b.a<float>(), b.b<float>(), b.c<float>(), b.n); },
      [v32](const Bed& b) { v32.product(b.a<float>(), b.b<float>(), b.c<float>(), b.n); },
      {{"volk_32f_x2_multiply_32f", volk32, 0},
       {"std::fma loop", [f32](const Bed& b) { f32.arrays(b.a<float>(), b.b<float>(), b.c<float>(), b.n); }, 0}});
  variant_rows<ProductFn<double>>(
      "AddProduct_64f/noAccumulator", ZIVKS_AddProduct_64f, 8, 8,
      [](ProductFn<double> f, const Bed& b) { return f(b.a<double>(), b.b<double>(), b.c<double>(), b.n); },
      [v64](const Bed& b) { v64.product(b.a<double>(), b.b<double>(), b.c<double>(), b.n); },
      {{"volk_64f_x2_multiply_64f", volk64, 0},
       {"std::fma loop", [f64](const Bed& b) { f64.arrays(b.a<double>(), b.b<double>(), b.c<double>(), b.n); }, 0}});
  variant_rows<ProductCFn<float>>(
      "AddProductC_32f/noAccumulator", ZIVKS_AddProductC_32f, 4, 4,
      [](ProductCFn<float> f, const Bed& b) { return f(b.a<float>(), kConst32f, b.c<float>(), b.n); },
      [v32](const Bed& b) { v32.product_const(b.a<float>(), kConst32f, b.c<float>(), b.n); },
      {{"volk_32f_s32f_multiply_32f", volk32c, 0},
       {"std::fma loop", [f32](const Bed& b) { f32.constant(b.a<float>(), kConst32f, b.c<float>(), b.n); }, 0}});
  variant_rows<ProductFn<ZIVK32fc>>(
      "AddProduct_32fc/interleaved", ZIVKS_AddProduct_32fc, 8, 8,
      [](ProductFn<ZIVK32fc> f, const Bed& b) { return f(b.a<ZIVK32fc>(), b.b<ZIVK32fc>(), b.c<ZIVK32fc>(), b.n); },
      [v32](const Bed& b) { v32.complex_acc(b.a<float>(), b.b<float>(), b.c<float>(), b.n); },
      {{"volk_32fc_x2_multiply_32fc", volk32fc, 0}});
  variant_rows<ProductFn<ZIVK32fc>>(
      "AddProduct_32fc/noAccumulator", ZIVKS_AddProduct_32fc, 8, 8,
      [](ProductFn<ZIVK32fc> f, const Bed& b) { return f(b.a<ZIVK32fc>(), b.b<ZIVK32fc>(), b.c<ZIVK32fc>(), b.n); },
      [v32](const Bed& b) { v32.complex_product(b.a<float>(), b.b<float>(), b.c<float>(), b.n); },
      {{"volk_32fc_x2_multiply_32fc", volk32fc, 0}});
  scaled_rows<int16_t, int16_t>("AddProduct_16s_S", "ZIVKS_AddProduct_16s_S", ZIVKS_AddProduct_16s_S);
  scaled_rows<int32_t, int32_t>("AddProduct_32s_S", "ZIVKS_AddProduct_32s_S", ZIVKS_AddProduct_32s_S);
  scaled_rows<int16_t, int32_t>("AddProduct_16s32s_S", "ZIVKS_AddProduct_16s32s_S", ZIVKS_AddProduct_16s32s_S);
}

// ---- The suite --------------------------------------------------------------------------

// VOLK picks each kernel's code on its first call, which takes longer than a run at L1:
// that first call is made here, untimed, for every kernel of the table.
void warm_volk(const Data& d) {
  const float* a = d.src1.as<float>();
  const float* b = d.src2.as<float>();
  volk_32f_x2_multiply_32f(d.acc.as<float>(), a, b, 16);
  volk_64f_x2_multiply_64f(d.acc.as<double>(), d.src1.as<double>(), d.src2.as<double>(), 16);
  volk_32f_s32f_multiply_32f(d.acc.as<float>(), a, kConst32f, 16);
  volk_32fc_x2_multiply_32fc(cf(d.acc.as<void>()), cf(d.src1.as<void>()), cf(d.src2.as<void>()), 16);
}

// The bed of a run, with the accumulator's bytes of its row made clean again.
Bed& bed_for(size_t ri, size_t) {
  static Bed b;
  const Row& row = suite.rows[ri];
  Data& d = data();
  static const bool warm = (warm_volk(d), true);
  (void)warm;
  b.n = row.n;
  b.src1 = d.src1.as<void>();
  b.src2 = d.src2.as<void>();
  b.acc = d.acc.as<void>();
  b.out_bytes = row.out_bytes;
  memcpy(b.acc, d.clean.as<void>(), row.out_bytes * static_cast<size_t>(row.n));
  return b;
}

int print(const zb::SuiteOptions& o) {
  const char* lead = o.markdown ? "- " : "";
  printf("%smultiply_accumulate yardsticks: memcpy of the output bytes; the generic-backend build;"
         " VOLK's multiply into the same output (machine %s); a std::fma loop compiled for %s."
         " Targets at L1 and L2 only; 16Mi elements: one round, the others the fastest of %d\n\n",
         lead, volk_get_machine(), fma_level(), o.rounds);
  return suite.print(o);
}

const int registered = [] {
  suite.family = "multiply_accumulate";
  suite.ours = 0;
  suite.peers = "against";
  suite.part = [](const Row& r) { return kLevels[r.level].name; };
  suite.bed = bed_for;
  suite.format = "%-24s %-4s %8s %11s %11s  %-26s %6s %6s  %s\n";
  suite.headers = {"function", "size", "elements", "elements/s", "bytes/s", "against", "ratio", "target", "notes"};
  suite.fifth = [](const Row& r, double ours) {
    return zb::rate(static_cast<double>(r.n) * static_cast<double>(r.out_bytes) / ours, "B");
  };
  suite.bytes = [](const Row& r) { return static_cast<double>(r.n) * static_cast<double>(r.out_bytes); };
  make_rows();
  return zb::add_suite(suite.suite(print));
}();

}  // namespace
