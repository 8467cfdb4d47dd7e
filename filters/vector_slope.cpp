// Linear ramps: dst[i] = offset + slope * i, rounded to nearest (a tie to even) and
// saturated to the element type. The ramp is accumulated, never recomputed from the
// index: each lane of a block adds the block's step once an iteration in the member's
// working precision, and the last elements add slope one by one from a value made anew
// from the arguments. Both keep their rounding, so they may part from the exact ramp and
// from each other.
#include <stdint.h>

#include <type_traits>

#include "core/fp.h"
#include "core/frame.h"
#include "core/rounding.h"

namespace {

using namespace zivks;

// ---- Members
// Arg: the type of offset and slope, and of the one-by-one elements. Work: the lanes of
// the block (float16 values held in float32 lanes where kHalf). B: elements an iteration.
// kRound: what the blocks' element count is a multiple of.
template <class A, class W, int kB, bool kHalfLanes = false, int kRoundTo = kB>
struct SlopeMember {
  using Arg = A;
  using Work = W;
  static constexpr int B = kB;
  static constexpr bool kHalf = kHalfLanes;
  static constexpr int kRound = kRoundTo;
};

template <class T>
struct Slope;
// Half-precision blocks: 11 bits, so a slow ramp stalls in them.
template <> struct Slope<uint8_t> : SlopeMember<float, float, 16, true> {};
template <> struct Slope<uint16_t> : SlopeMember<float, float, 8> {};
template <> struct Slope<int16_t> : SlopeMember<float, float, 8> {};
template <> struct Slope<uint32_t> : SlopeMember<double, double, 4> {};
template <> struct Slope<int32_t> : SlopeMember<double, double, 4> {};
template <> struct Slope<float> : SlopeMember<float, float, 8> {};
// Blocks of 4 over a count rounded to 2: the last block may store two elements past it.
template <> struct Slope<double> : SlopeMember<double, double, 4, false, 2> {};

// ---- Storing a block

// The integer lane of the width n bytes with the signedness of T.
template <int n, class T>
using int_of = std::conditional_t<
    n == 1, std::conditional_t<std::is_signed_v<T>, int8_t, uint8_t>,
    std::conditional_t<n == 2, std::conditional_t<std::is_signed_v<T>, int16_t, uint16_t>,
                       std::conditional_t<std::is_signed_v<T>, int32_t, uint32_t>>>;

// Registers of integer lanes L narrowed pair by pair, saturating, down to T and stored.
template <class T, class L, int R>
inline void narrow_store(T* d, const simd::vec<L, 1> (&x)[R]) {
  if constexpr (std::is_same_v<L, T>) {
    static_assert(R == 1, "one register of T");
    simd::store(d, x[0]);
  } else {
    using H = int_of<static_cast<int>(sizeof(L)) / 2, T>;
    simd::vec<H, 1> y[R / 2];
    for (int i = 0; i < R / 2; ++i) y[i] = simd::narrow_sat<H>(x[2 * i], x[2 * i + 1]);
    narrow_store(d, y);
  }
}

// One block of B elements from the accumulators: float lanes as they are; otherwise
// rounded to nearest, a tie to even, to 32-bit lanes (64-bit from float64, signed), then
// narrowed with saturation. A NaN gives 0.
template <class T, class W, int R>
inline void store_block(T* d, const simd::vec<W, 1> (&acc)[R]) {
  if constexpr (std::is_same_v<T, W>) {
    for (int r = 0; r < R; ++r) simd::store(d + r * simd::vec<W, 1>::kLanes, acc[r]);
  } else {
    using L = std::conditional_t<sizeof(W) == 8, int64_t, int_of<4, T>>;
    simd::vec<L, 1> x[R];
    for (int r = 0; r < R; ++r) x[r] = simd::cvt_sat<L, rounding::Mode::kNear>(acc[r]);
    narrow_store(d, x);
  }
}

// ---- The ramp

template <class T>
ZIVKStatus vector_slope(T* dst, int32_t len, typename Slope<T>::Arg offset, typename Slope<T>::Arg slope) {
  using M = Slope<T>;
  using A = typename M::Arg;
  using W = typename M::Work;
  using V = simd::vec<W, 1>;
  constexpr int B = M::B;
  constexpr int R = B / V::kLanes;
  if (const ZIVKStatus st = check_ptrs_len(len, dst)) return st;
  const int32_t n = len & ~(M::kRound - 1);

  if (n > 0) {
    // Lane k starts one block before the ramp, at offset + (k - B) * slope, and moves on
    // by the step B * slope (made in float32, then rounded) before each store.
    W seed[B];
    V step;
    if constexpr (M::kHalf) {
      const float off = rounding::to_half(offset), sl = rounding::to_half(slope);
      // (k - B) * slope + offset is exact in float64, so it rounds once, to half.
      for (int k = 0; k < B; ++k) seed[k] = rounding::to_half(std::fma(double(k - B), double(sl), double(off)));
      step = simd::splat<V>(rounding::to_half(fp::mul(A(B), slope)));
    } else {
      for (int k = 0; k < B; ++k) seed[k] = fp::mul_add(W(k - B), slope, offset);
      step = simd::splat<V>(fp::mul(A(B), slope));
    }
    V acc[R];
    for (int r = 0; r < R; ++r) acc[r] = simd::load<V>(seed + r * V::kLanes);
    for (int32_t i = 0; i < n; i += B) {
      for (V& a : acc) {
        a = simd::add(a, step);
        if constexpr (M::kHalf) a = simd::round_to_half(a);
      }
      store_block(dst + i, acc);
    }
  }

  // From the arguments again: the element before n, then slope added one by one.
  A x = n > 0 ? fp::mul_add(A(n - 1), slope, offset) : fp::mul_add(slope, A(-1), offset);
  for (int32_t i = n; i < len; ++i) {
    x = fp::add(x, slope);
    if constexpr (std::is_floating_point_v<T>) dst[i] = x;
    else dst[i] = rounding::tail<T>(x);
  }
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_VectorSlope_8u(uint8_t* dst, int32_t len, float offset, float slope) {
  return vector_slope(dst, len, offset, slope);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_VectorSlope_16u(uint16_t* dst, int32_t len, float offset, float slope) {
  return vector_slope(dst, len, offset, slope);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_VectorSlope_16s(int16_t* dst, int32_t len, float offset, float slope) {
  return vector_slope(dst, len, offset, slope);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_VectorSlope_32u(uint32_t* dst, int32_t len, double offset, double slope) {
  return vector_slope(dst, len, offset, slope);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_VectorSlope_32s(int32_t* dst, int32_t len, double offset, double slope) {
  return vector_slope(dst, len, offset, slope);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_VectorSlope_32f(float* dst, int32_t len, float offset, float slope) {
  return vector_slope(dst, len, offset, slope);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_VectorSlope_64f(double* dst, int32_t len, double offset, double slope) {
  return vector_slope(dst, len, offset, slope);
}
