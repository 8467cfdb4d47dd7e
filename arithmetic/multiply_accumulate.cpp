// AddProduct and AddProductC: a product added into srcDst.
//   Real floats: one fused multiply-add per element, in blocks and tail alike.
//   Complex floats: the two products of a part rounded in a fixed order (one rounded to
//     the element precision, the other fused with it), c added last; blocks and tail
//     fix different orders, so they may differ in the last place.
//   Integers: x = a * b + c exact, converted to a float first, then times M, rounded to
//     nearest even and saturated.
#include <utility>

#include "arithmetic/scaled.h"

namespace {

using namespace zivks;
using scaled::Checked;

// Whether any lane of the n registers is NaN, tested on all of them at once.
template <class V, size_t n, size_t... j>
inline bool any_nan_in(const V (&r)[n], std::index_sequence<j...>) {
  return simd::any_nan(r[j]...);
}

// ---- Real floats: srcDst[i] = fma(a[i], b[i], srcDst[i]) in blocks of B, srcDst read
// kAccAhead bytes ahead. Four registers go at a time, with one test for NaN: only then
// are they made again by the NaN rule.
template <int B, int kAccAhead = 0, class F, class A, class Bop>
inline void fused(A a, Bop b, F* acc, int32_t len) {
  const array_operand<F, kAccAhead> c{acc};
  static_assert(B * sizeof(F) % 16 == 0, "a block is whole registers");
  constexpr int kRegs = B * sizeof(F) / 16;
  for_block_groups<B, 4 / kRegs>(
      len,
      [&](int64_t i, auto g) {
        using G = decltype(g);
        using V = simd::vec<F, G::value>;
        constexpr size_t n = G::kCount * kRegs;
        V r[n];
        for (size_t j = 0; j < n; ++j) {
          const int64_t at = i + int64_t{V::kLanes} * j;
          r[j] = simd::mul_add_raw(a.template vec<V>(at), b.template vec<V>(at), c.template vec<V>(at));
        }
        if (__builtin_expect(any_nan_in(r, std::make_index_sequence<n>{}), 0)) {
          for (size_t j = 0; j < n; ++j) {
            const int64_t at = i + int64_t{V::kLanes} * j;
            r[j] = simd::mul_add(a.template vec<V>(at), b.template vec<V>(at), c.template vec<V>(at));
          }
        }
        for (size_t j = 0; j < n; ++j) simd::store(acc + i + int64_t{V::kLanes} * j, r[j]);
      },
      [&](int64_t i) { acc[i] = fp::mul_add(a.at(i), b.at(i), acc[i]); });
}

template <class F>
ZIVKStatus add_product(const F* src1, const F* src2, F* srcDst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, srcDst)) return st;
  fused<kVectorElems<F>>(array_operand<F>{src1}, array_operand<F>{src2}, srcDst, len);
  return ZIVK_STS_NO_ERR;
}

// AddProductC_64f reads 3072 bytes ahead of src and srcDst; 4 elements a block.
constexpr int kProductC64ReadAheadBytes = 3072;

template <class F>
ZIVKStatus add_product_c(const F* src, F val, F* srcDst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, srcDst)) return st;
  const const_operand<F> v(val);
  if constexpr (sizeof(F) == 8) {
    constexpr int kAhead = kProductC64ReadAheadBytes;
    fused<4, kAhead>(array_operand<F, kAhead>{src}, v, srcDst, len);
  } else {
    fused<4>(array_operand<F>{src}, v, srcDst, len);
  }
  return ZIVK_STS_NO_ERR;
}

// ---- Complex floats.
// Where the block rounds which product of a part, as the order of its operands:
// fused(x, y, rounded) = x * y + rounded, with one rounding, where rounded is a product
// already rounded to the element precision (negated for re, whose second product is
// subtracted).
enum class Order {
  // re = fma(-a.im, b.im, a.re*b.re), im = fma(a.im, b.re, a.re*b.im)
  kRoundFirst,
  // re = fma(a.re, b.re, -(a.im*b.im)), im = fma(a.im, b.re, a.re*b.im)
  kRoundSecondRe,
};

// The sign bit of the first part of each element, as the bytes of a 16-byte block.
constexpr uint8_t kSignOfFirst32[16] = {0, 0, 0, 0x80, 0, 0, 0, 0, 0, 0, 0, 0x80, 0, 0, 0, 0};
constexpr uint8_t kSignOfFirst64[16] = {0, 0, 0, 0, 0, 0, 0, 0x80, 0, 0, 0, 0, 0, 0, 0, 0};

// The tail of both complex forms: re = fma(a.re, b.re, -(a.im*b.im)) written first,
// then im = fma(a.re, b.im, a.im*b.re) from a and b read again, so that with srcDst
// being src1 or src2 im uses the new re.
template <class E>
inline void complex_tail(const E* src1, const E* src2, E* acc, int64_t i) {
  {
    const E a = src1[i], b = src2[i];
    acc[i].re = fp::add(acc[i].re, fp::mul_add(a.re, b.re, lane::flip_sign(fp::mul(a.im, b.im))));
  }
  const E a = src1[i], b = src2[i];
  acc[i].im = fp::add(acc[i].im, fp::mul_add(a.re, b.im, fp::mul(a.im, b.re)));
}

// AddProduct_64fc reads ahead of src1, src2 and srcDst by these.
constexpr int64_t kProduct64fcAheadBytes[3] = {2048, 4096, 4096};

// The blocks work on the parts as they lie, re and im side by side; these byte tables
// of a 16-byte block move the parts within each element: re into both places, im into
// both places, or re and im exchanged.
template <class F>
struct PartMoves;
template <>
struct PartMoves<float> {
  static constexpr uint8_t kBothRe[16] = {0, 1, 2, 3, 0, 1, 2, 3, 8, 9, 10, 11, 8, 9, 10, 11};
  static constexpr uint8_t kBothIm[16] = {4, 5, 6, 7, 4, 5, 6, 7, 12, 13, 14, 15, 12, 13, 14, 15};
  static constexpr uint8_t kSwapped[16] = {4, 5, 6, 7, 0, 1, 2, 3, 12, 13, 14, 15, 8, 9, 10, 11};
};
template <>
struct PartMoves<double> {
  static constexpr uint8_t kBothRe[16] = {0, 1, 2, 3, 4, 5, 6, 7, 0, 1, 2, 3, 4, 5, 6, 7};
  static constexpr uint8_t kBothIm[16] = {8, 9, 10, 11, 12, 13, 14, 15, 8, 9, 10, 11, 12, 13, 14, 15};
  static constexpr uint8_t kSwapped[16] = {8, 9, 10, 11, 12, 13, 14, 15, 0, 1, 2, 3, 4, 5, 6, 7};
};

// The tables in registers of K blocks, made once a call, and the sign bit of the re
// places.
template <class F, int K>
struct PartTables {
  using VB = simd::vec<uint8_t, K>;
  VB both_re = simd::load_repeated_block<VB>(PartMoves<F>::kBothRe);
  VB both_im = simd::load_repeated_block<VB>(PartMoves<F>::kBothIm);
  VB swapped = simd::load_repeated_block<VB>(PartMoves<F>::kSwapped);
  simd::vec<F, K> re_sign =
      simd::reinterpret<F>(simd::load_repeated_block<VB>(sizeof(F) == 8 ? kSignOfFirst64 : kSignOfFirst32));
};

template <class V>
inline V move_parts(const V& x, const simd::vec<uint8_t, V::kBlocks>& table) {
  return simd::reinterpret<typename V::lane>(simd::table_bytes(simd::reinterpret<uint8_t>(x), table));
}

template <Order order, class E>
ZIVKStatus add_product_complex(const E* src1, const E* src2, E* srcDst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, srcDst)) return st;
  using F = part_t<E>;
  constexpr bool k64 = sizeof(F) == 8;
  // A block is one register of re parts: 4 elements of 32fc, 2 of 64fc, taken as the
  // two registers of their interleaved parts. Lane by lane it rounds as
  //   kRoundFirst:    re = fma(-a.im, b.im, a.re*b.re), im = fma(a.im, b.re, a.re*b.im)
  //   kRoundSecondRe: re = fma(a.re, b.re, -(a.im*b.im)), im = fma(a.im, b.re, a.re*b.im)
  // with the operands in these places, then c + re and c + im.
  constexpr int B = kVectorElems<F>;
  const PartTables<F, simd::kWide> wide;
  const PartTables<F, 1> one;
  for_blocks<B>(
      len,
      [&](int64_t i, auto w) {
        constexpr int K = decltype(w)::value;
        using V = simd::vec<F, K>;
        const PartTables<F, K>& tb = [&]() -> const PartTables<F, K>& {
          if constexpr (K == simd::kWide) return wide;
          else return one;
        }();
        const F* p1 = as_parts(src1) + 2 * i;
        const F* p2 = as_parts(src2) + 2 * i;
        F* pc = as_parts(srcDst) + 2 * i;
        if constexpr (k64) {
          hint_read(p1, kProduct64fcAheadBytes[0]);
          hint_read(p2, kProduct64fcAheadBytes[1]);
          hint_read(pc, kProduct64fcAheadBytes[2]);
        }
        const auto &both_re = tb.both_re, &both_im = tb.both_im, &swapped = tb.swapped;
        const V re_sign = tb.re_sign;
        V r[2];
        for (int h = 0; h < 2; ++h) {
          const V a = simd::load<V>(p1 + h * V::kLanes);
          const V b = simd::load<V>(p2 + h * V::kLanes);
          if constexpr (order == Order::kRoundFirst) {
            // (re, im) = fma((-a.im, a.im), (b.im, b.re), (a.re*b.re, a.re*b.im))
            const V t = simd::mul(move_parts(a, both_re), b);
            r[h] = simd::mul_add(simd::bit_xor(move_parts(a, both_im), re_sign), move_parts(b, swapped), t);
          } else {
            // (re, im) = fma((a.re, a.im), (b.re, b.re), (-(a.im*b.im), a.re*b.im))
            const V t = simd::bit_xor(simd::mul(move_parts(a, swapped), move_parts(b, both_im)), re_sign);
            r[h] = simd::mul_add(a, move_parts(b, both_re), t);
          }
        }
        for (int h = 0; h < 2; ++h) {
          const V c = simd::load<V>(pc + h * V::kLanes);
          simd::store(pc + h * V::kLanes, simd::add(c, r[h]));
        }
      },
      [&](int64_t i) { complex_tail(src1, src2, srcDst, i); });
  return ZIVK_STS_NO_ERR;
}

// ---- Integers: x = a * b + c exact, converted to F, times M, rounded, saturated.
// 16s: x in int32, float32 (a sum above 2^24 loses its low bits); 32s: x in int64,
// float64 (above 2^53); 16s32s: x in int64, float64, always exact.
template <class S, class T>
ZIVKStatus add_product_scaled(const S* src1, const S* src2, T* srcDst, int32_t len, double scale) {
  const Checked k = scaled::check(len, scale, src1, src2, srcDst);
  if (k.st) return k.st;
  using W = std::conditional_t<sizeof(S) == 2 && sizeof(T) == 2, int32_t, int64_t>;
  using F = std::conditional_t<sizeof(W) == 4, float, double>;
  const F m = scale::multiplier<F>(k.e);
  const broadcast<F> mvs(m);
  auto tail = [&](int64_t i) {
    const W x = static_cast<W>(W{src1[i]} * W{src2[i]} + W{srcDst[i]});
    srcDst[i] = rounding::tail<T>(static_cast<F>(x) * m);
  };
  if constexpr (sizeof(S) == sizeof(T)) {
    // 16s, 4 a block, and 32s, 2 a block: half a register of T each.
    narrowing_blocks<kVectorElems<T> / 2>(
        len, srcDst,
        [&](int64_t i, auto w) {
          using VW = simd::vec<W, decltype(w)::value>;
          const VW x = simd::add_wrap(simd::mul_wrap(simd::load_widen<VW>(src1 + i), simd::load_widen<VW>(src2 + i)),
                                      simd::load_widen<VW>(srcDst + i));
          return scaled::product(x, mvs.template get<decltype(w)::value>());
        },
        tail);
  } else {
    // 16s32s, 4 a block: the products exact in int32, widened with the accumulator.
    for_blocks<4>(
        len,
        [&](int64_t i, auto w) {
          constexpr int K = decltype(w)::value;
          using V32 = simd::vec<int32_t, K>;
          const V32 p = simd::mul_wrap(simd::load_widen<V32>(src1 + i), simd::load_widen<V32>(src2 + i));
          const V32 c = simd::load<V32>(srcDst + i);
          const auto& mv = mvs.template get<K>();
          const auto lo = simd::add_wrap(simd::widen_lo<int64_t>(p), simd::widen_lo<int64_t>(c));
          const auto hi = simd::add_wrap(simd::widen_hi<int64_t>(p), simd::widen_hi<int64_t>(c));
          simd::store(srcDst + i, simd::narrow_sat<int32_t>(scaled::product(lo, mv), scaled::product(hi, mv)));
        },
        tail);
  }
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_AddProduct_32f(const float* src1, const float* src2, float* srcDst, int32_t len) {
  return add_product(src1, src2, srcDst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AddProduct_64f(const double* src1, const double* src2, double* srcDst, int32_t len) {
  return add_product(src1, src2, srcDst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AddProductC_32f(const float* src, float val, float* srcDst, int32_t len) {
  return add_product_c(src, val, srcDst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AddProductC_64f(const double* src, double val, double* srcDst, int32_t len) {
  return add_product_c(src, val, srcDst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AddProduct_32fc(const ZIVK32fc* src1, const ZIVK32fc* src2, ZIVK32fc* srcDst,
                                              int32_t len) {
  return add_product_complex<Order::kRoundFirst>(src1, src2, srcDst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AddProduct_64fc(const ZIVK64fc* src1, const ZIVK64fc* src2, ZIVK64fc* srcDst,
                                              int32_t len) {
  return add_product_complex<Order::kRoundSecondRe>(src1, src2, srcDst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AddProduct_16s_S(const int16_t* src1, const int16_t* src2, int16_t* srcDst,
                                               int32_t len, double scale) {
  return add_product_scaled(src1, src2, srcDst, len, scale);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AddProduct_32s_S(const int32_t* src1, const int32_t* src2, int32_t* srcDst,
                                               int32_t len, double scale) {
  return add_product_scaled(src1, src2, srcDst, len, scale);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AddProduct_16s32s_S(const int16_t* src1, const int16_t* src2, int32_t* srcDst,
                                                  int32_t len, double scale) {
  return add_product_scaled(src1, src2, srcDst, len, scale);
}
