// Exact and widening conversions: an element into a wider integer or into a float, a
// float into the other float width, and in the _S forms an integer into a float times
// the power of two M that scale selects. Nothing saturates: where a result is not exact
// it is the nearest float, a tie to the even one. Every element is converted on its
// own, so block and tail give the same value.
#include <cmath>
#include <type_traits>

#include "core/frame.h"
#include "core/operands.h"
#include "core/scale.h"

namespace {

using namespace zivks;

// The integer of twice T's width with T's signedness.
template <class T>
using twice_t = std::conditional_t<
    sizeof(T) == 1, std::conditional_t<std::is_signed_v<T>, int16_t, uint16_t>,
    std::conditional_t<sizeof(T) == 2, std::conditional_t<std::is_signed_v<T>, int32_t, uint32_t>,
                       std::conditional_t<std::is_signed_v<T>, int64_t, uint64_t>>>;

// ---- widen_into
// Hands out(register) the lanes of v as To, in memory order: integers are extended
// until they are To's width (an unsigned one read as signed, which it fits by then),
// then made floats; float32 lanes become float64 ones.
template <class To, class T, int K, class Out>
inline void widen_into(const simd::vec<T, K>& v, Out&& out) {
  if constexpr (std::is_same_v<T, To>) {
    out(v);
  } else if constexpr (std::is_same_v<T, float>) {
    out(simd::float_widen_lo(v));
    out(simd::float_widen_hi(v));
  } else if constexpr (sizeof(T) == sizeof(To)) {
    using S = std::make_signed_t<T>;
    if constexpr (std::is_floating_point_v<To>) out(simd::cvt_to_float<To>(simd::reinterpret<S>(v)));
    else out(simd::reinterpret<To>(v));
  } else {
    using W = twice_t<T>;
    widen_into<To>(simd::widen_lo<W>(v), out);
    widen_into<To>(simd::widen_hi<W>(v), out);
  }
}

// One element as the block makes it: extended or converted by the C++ rule, which is
// the nearest value for an inexact one.
template <class To, class From>
inline To convert_one(From x) {
  return static_cast<To>(x);
}

// How the _S forms multiply: by the NaN rule, or plainly where M is finite, since an
// integer times a finite M is never NaN.
enum class Product { kNone, kPlain, kRule };

// ---- widen
// dst[i] = src[i] as To, times M where the forms are scaled (M in To's precision). Whole
// source registers go at a time, bytes into 32-bit lanes by loads of a quarter register,
// then the tail.
template <class From, class To, Product product>
void widen(const From* src, To* dst, int32_t len, To m) {
  const broadcast<To> mvs(m);  // unused without a product
  for_blocks<kVectorElems<From>>(
      len,
      [&](int64_t i, auto w) {
        constexpr int K = decltype(w)::value;
        using VT = simd::vec<To, K>;
        To* d = dst + i;
        auto put = [&](const VT& r) {
          if constexpr (product == Product::kPlain) simd::store(d, simd::mul_raw(r, mvs.template get<K>()));
          else if constexpr (product == Product::kRule) simd::store(d, simd::mul(r, mvs.template get<K>()));
          else simd::store(d, r);
          d += VT::kLanes;
        };
        if constexpr (sizeof(From) == 1 && sizeof(To) == 4) {
          using L = std::conditional_t<std::is_signed_v<From>, int32_t, uint32_t>;
          for (int j = 0; j < 4; ++j) widen_into<To>(simd::load_widen<simd::vec<L, K>>(src + i + j * VT::kLanes), put);
        } else {
          widen_into<To>(simd::load<simd::vec<From, K>>(src + i), put);
        }
      },
      [&](int64_t i) {
        if constexpr (product == Product::kNone) dst[i] = convert_one<To>(src[i]);
        else dst[i] = fp::mul(convert_one<To>(src[i]), m);
      });
}

template <class From, class To>
ZIVKStatus convert(const From* src, To* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  widen<From, To, Product::kNone>(src, dst, len, To(1));
  return ZIVK_STS_NO_ERR;
}

// The _S forms: the element converted to To, then always multiplied by M (also by 1),
// the product of 0 and an infinite M being the default NaN.
template <class From, class To>
ZIVKStatus convert_scaled(const From* src, To* dst, int32_t len, double scale) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  if (const ZIVKStatus st = scale::check(scale)) return st;
  const To m = scale::multiplier<To>(scale::exponent(scale));
  if (std::isfinite(m)) widen<From, To, Product::kPlain>(src, dst, len, m);
  else widen<From, To, Product::kRule>(src, dst, len, m);
  return ZIVK_STS_NO_ERR;
}

// ---- Convert_64f32f: pairs of float64 registers narrowed into one float32 register.
ZIVKStatus narrow_64f32f(const double* src, float* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  constexpr int B = kVectorElems<float>;
  for_blocks<B>(
      len,
      [&](int64_t i, auto w) {
        using VD = simd::vec<double, decltype(w)::value>;
        simd::store(dst + i, simd::float_narrow(simd::load<VD>(src + i), simd::load<VD>(src + i + VD::kLanes)));
      },
      [&](int64_t i) { dst[i] = static_cast<float>(src[i]); });
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the exported function, the source and target types.
#define ZIVKS_WIDEN(name, from, to) \
  ZIVKS_EXPORT ZIVKStatus name(const from* src, to* dst, int32_t len) { return convert(src, dst, len); }
#define ZIVKS_WIDEN_SCALED(name, from, to)                                             \
  ZIVKS_EXPORT ZIVKStatus name(const from* src, to* dst, int32_t len, double scale) { \
    return convert_scaled(src, dst, len, scale);                                      \
  }
ZIVKS_WIDEN(ZIVKS_Convert_8u32f, uint8_t, float)
ZIVKS_WIDEN(ZIVKS_Convert_8s16s, int8_t, int16_t)
ZIVKS_WIDEN(ZIVKS_Convert_8s32f, int8_t, float)
ZIVKS_WIDEN(ZIVKS_Convert_16u32f, uint16_t, float)
ZIVKS_WIDEN(ZIVKS_Convert_16s32s, int16_t, int32_t)
ZIVKS_WIDEN(ZIVKS_Convert_16s32f, int16_t, float)
ZIVKS_WIDEN(ZIVKS_Convert_32s32f, int32_t, float)
ZIVKS_WIDEN(ZIVKS_Convert_32s64f, int32_t, double)
ZIVKS_WIDEN(ZIVKS_Convert_32f64f, float, double)
ZIVKS_WIDEN(ZIVKS_Convert_64s64f, int64_t, double)
ZIVKS_WIDEN_SCALED(ZIVKS_Convert_16s32f_S, int16_t, float)
ZIVKS_WIDEN_SCALED(ZIVKS_Convert_16s64f_S, int16_t, double)
ZIVKS_WIDEN_SCALED(ZIVKS_Convert_32s32f_S, int32_t, float)
ZIVKS_WIDEN_SCALED(ZIVKS_Convert_32s64f_S, int32_t, double)

ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_64f32f(const double* src, float* dst, int32_t len) {
  return narrow_64f32f(src, dst, len);
}
