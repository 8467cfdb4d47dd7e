// Uniform random fills: low + (high - low) * r for draws r of the C library's drand48,
// reseeded from the record on every call, so a record always gives the same sequence.
// The draws are sequential, one library call an element; only their mapping runs in
// vectors. Blocks map in float32 (float64 for 64f) and saturate; the elements after the
// last whole block map in float64 and keep the low bits of the truncated value, so the
// two may differ in the last bit or the last integer step.
#include <stdlib.h>

#include <type_traits>

#include "core/fp.h"
#include "core/frame.h"
#include "core/handles.h"

namespace {

using namespace zivks;
using rounding::Mode;

// What the four element types share: the record, the block, the lane type of the block
// mapping (F), the width high - low in F, and how a mapped value becomes an element.
template <class T>
struct uniform;

// The integer forms take the width as an int32 (exact in float32), truncate toward zero;
// blocks saturate to the type, single elements keep the low bits.
template <>
struct uniform<uint8_t> {
  using State = ZIVKRandUniformState_8u;
  using F = float;
  static constexpr int kBlock = 8;
  static F width(const State& s) { return static_cast<F>(int32_t{s.high} - int32_t{s.low}); }
  // Unsigned 32 bits (negatives to 0, too large to the maximum), then 16 and 8 bits,
  // each step saturating; through signed 32 bits, which ends the same for every value
  // and converts in fewer steps.
  static void put_block(uint8_t* d, const simd::vec<float, 1>& a, const simd::vec<float, 1>& b) {
    const auto wide = simd::narrow_sat<uint16_t>(simd::cvt_sat<int32_t, Mode::kZero>(a),
                                                 simd::cvt_sat<int32_t, Mode::kZero>(b));
    simd::store_lo(d, simd::narrow_sat<uint8_t>(wide, wide));
  }
  // v lies between low and high: the conversion is defined, the low byte is the value.
  static uint8_t put_one(double v) { return static_cast<uint8_t>(static_cast<uint32_t>(v)); }
};

template <>
struct uniform<int16_t> {
  using State = ZIVKRandUniformState_16s;
  using F = float;
  static constexpr int kBlock = 8;
  static F width(const State& s) { return static_cast<F>(int32_t{s.high} - int32_t{s.low}); }
  static void put_block(int16_t* d, const simd::vec<float, 1>& a, const simd::vec<float, 1>& b) {
    simd::store(d, simd::narrow_sat<int16_t>(simd::cvt_sat<int32_t, Mode::kZero>(a),
                                             simd::cvt_sat<int32_t, Mode::kZero>(b)));
  }
  static int16_t put_one(double v) { return static_cast<int16_t>(static_cast<int32_t>(v)); }
};

// The float forms take the width in the element's own precision; a NaN comes out by the
// library's rule in blocks and single elements alike.
template <>
struct uniform<float> {
  using State = ZIVKRandUniformState_32f;
  using F = float;
  static constexpr int kBlock = 8;
  static F width(const State& s) { return fp::sub(s.high, s.low); }
  static void put_block(float* d, const simd::vec<float, 1>& a, const simd::vec<float, 1>& b) {
    simd::store(d, a);
    simd::store(d + simd::vec<float, 1>::kLanes, b);
  }
  // A NaN leaves quiet, as the narrowing instruction makes it: the compiler may fold a
  // widening and narrowing of a signalling NaN bound into nothing.
  static float put_one(double v) {
    const float f = static_cast<float>(v);
    return f == f ? f : fp::quieten(f);
  }
};

// Blocks of two lanes and single elements give the same values: every element maps
// alike.
template <>
struct uniform<double> {
  using State = ZIVKRandUniformState_64f;
  using F = double;
  static F width(const State& s) { return fp::sub(s.high, s.low); }
};

template <class T>
using state_t = typename uniform<T>::State;

template <class T>
ZIVKStatus rand_uniform_init(state_t<T>** policy, T low, T high, uint32_t seed) {
  if (policy == nullptr) return ZIVK_STS_NULL_PTR_ERR;
  if (const ZIVKStatus st = handles::allocate_record(policy)) return st;
  (*policy)->low = low;
  (*policy)->high = high;
  (*policy)->seed = seed;
  return ZIVK_STS_NO_ERR;
}

// ---- rand_uniform
// Reseeds, then per whole block draws one value an element in order into float32 lanes
// (a draw rounded to float32, so one near 1 becomes 1) and maps them as one fused
// multiply-add low + width * r a register; the rest one at a time as a fused
// multiply-add in float64 on the unrounded draw. 64f maps every element in float64, its
// blocks of two lanes as its single elements.
template <class T>
ZIVKStatus rand_uniform(T* dst, int32_t len, const state_t<T>* policy) {
  using U = uniform<T>;
  using F = typename U::F;
  using V = simd::vec<F, 1>;
  if (const ZIVKStatus st = check_ptrs_len(len, dst, policy)) return st;
  const F width = U::width(*policy);
  const F low = static_cast<F>(policy->low);
  srand48(static_cast<long>(policy->seed));
  if constexpr (std::is_same_v<T, double>) {
    for (int32_t i = 0; i < len; ++i) dst[i] = fp::mul_add(width, drand48(), low);
  } else {
    const V wv = simd::splat<V>(width), lv = simd::splat<V>(low);
    const double width_one = width, low_one = low;
    for_single_blocks<U::kBlock>(
        len,
        [&](int64_t i, auto) {
          F r[U::kBlock];
          for (F& x : r) x = static_cast<F>(drand48());
          U::put_block(dst + i, simd::mul_add(wv, simd::load<V>(r), lv),
                       simd::mul_add(wv, simd::load<V>(r + V::kLanes), lv));
        },
        [&](int64_t i) { dst[i] = U::put_one(fp::mul_add(width_one, drand48(), low_one)); });
  }
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_RandUniformInit_8u(ZIVKRandUniformState_8u** policy, uint8_t low, uint8_t high,
                                                 uint32_t seed) {
  return rand_uniform_init(policy, low, high, seed);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_RandUniformInit_16s(ZIVKRandUniformState_16s** policy, int16_t low, int16_t high,
                                                  uint32_t seed) {
  return rand_uniform_init(policy, low, high, seed);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_RandUniformInit_32f(ZIVKRandUniformState_32f** policy, float low, float high,
                                                  uint32_t seed) {
  return rand_uniform_init(policy, low, high, seed);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_RandUniformInit_64f(ZIVKRandUniformState_64f** policy, double low, double high,
                                                  uint32_t seed) {
  return rand_uniform_init(policy, low, high, seed);
}

ZIVKS_EXPORT ZIVKStatus ZIVKS_RandUniformRelease_8u(ZIVKRandUniformState_8u* policy) {
  return handles::release(policy);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_RandUniformRelease_16s(ZIVKRandUniformState_16s* policy) {
  return handles::release(policy);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_RandUniformRelease_32f(ZIVKRandUniformState_32f* policy) {
  return handles::release(policy);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_RandUniformRelease_64f(ZIVKRandUniformState_64f* policy) {
  return handles::release(policy);
}

ZIVKS_EXPORT ZIVKStatus ZIVKS_RandUniform_8u(uint8_t* dst, int32_t len, ZIVKRandUniformState_8u* policy) {
  return rand_uniform(dst, len, policy);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_RandUniform_16s(int16_t* dst, int32_t len, ZIVKRandUniformState_16s* policy) {
  return rand_uniform(dst, len, policy);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_RandUniform_32f(float* dst, int32_t len, ZIVKRandUniformState_32f* policy) {
  return rand_uniform(dst, len, policy);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_RandUniform_64f(double* dst, int32_t len, ZIVKRandUniformState_64f* policy) {
  return rand_uniform(dst, len, policy);
}
