// Linear ramps: dst[i] = offset + slope * i, rounded to nearest (a tie to even) and
// saturated to the element type. The ramp is accumulated, never recomputed from the
// index: each lane of a block adds the block's step once an iteration in the member's
// working precision, and the last elements add slope one by one from a value made anew
// from the arguments. Both keep their rounding, so they may part from the exact ramp and
// from each other.
#include <stdint.h>

#include <limits>
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
// kBits, kLowest, kHighest: the significant bits of the block's values and the range of
// exponents of their lowest and highest bits.
template <class A, class W, int kB, bool kHalfLanes = false, int kRoundTo = kB>
struct SlopeMember {
  using Arg = A;
  using Work = W;
  static constexpr int B = kB;
  static constexpr bool kHalf = kHalfLanes;
  static constexpr int kRound = kRoundTo;
  static constexpr int kBits = kHalf ? 11 : std::numeric_limits<W>::digits;
  static constexpr int kLowest = kHalf ? -24 : std::numeric_limits<W>::min_exponent - kBits;
  static constexpr int kHighest = kHalf ? 15 : std::numeric_limits<W>::max_exponent - 1;
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

// Registers of integer lanes L narrowed pair by pair, saturating, down to T and stored
// one after another.
template <class T, class L, int R, int K>
[[gnu::always_inline]] inline void narrow_store(T* d, const simd::vec<L, K> (&x)[R]) {
  if constexpr (std::is_same_v<L, T>) {
    for (int r = 0; r < R; ++r) simd::store(d + r * simd::vec<L, K>::kLanes, x[r]);
  } else {
    static_assert(R % 2 == 0, "registers in pairs");
    using H = int_of<static_cast<int>(sizeof(L)) / 2, T>;
    simd::vec<H, K> y[R / 2];
    for (int i = 0; i < R / 2; ++i) y[i] = simd::narrow_sat<H>(x[2 * i], x[2 * i + 1]);
    narrow_store(d, y);
  }
}

// The elements of R registers of values, in order: float lanes as they are; otherwise
// rounded to nearest, a tie to even, to signed 32-bit lanes (64-bit from float64), then
// narrowed with saturation: the same as through unsigned lanes for the unsigned members,
// negatives going to 0 either way. A NaN gives 0.
template <class T, class W, int R, int K>
[[gnu::always_inline]] inline void store_block(T* d, const simd::vec<W, K> (&acc)[R]) {
  if constexpr (std::is_same_v<T, W>) {
    for (int r = 0; r < R; ++r) simd::store(d + r * simd::vec<W, K>::kLanes, acc[r]);
  } else {
    using L = std::conditional_t<sizeof(W) == 8, int64_t, int32_t>;
    simd::vec<L, K> x[R];
    for (int r = 0; r < R; ++r) x[r] = simd::cvt_sat<L, rounding::Mode::kNear>(acc[r]);
    narrow_store(d, x);
  }
}

// ---- The block pass

// Chains of lanes the block pass runs side by side when its sums are exact.
constexpr int kChains = 4;

// Whether no sum of the block pass rounds: the seeds and the step are whole multiples of
// one power of two 2^q, and every value a lane takes, seed + j * step up to the last
// iteration, and kChains * step, stays below 2^(q + bits) and within the exponent range.
// Then each lane holds seed + j * step exactly, however the sums are grouped.
// v as m * 2^e with m a whole number, odd or 0 (a finite v).
template <class W>
inline void split(W v, int64_t& m, int& e) {
  constexpr int kFraction = std::numeric_limits<W>::digits - 1;
  constexpr int kBias = std::numeric_limits<W>::max_exponent - 1;
  const uint64_t bits = fp::to_bits(v);
  const int biased = static_cast<int>((bits >> kFraction) & ((uint64_t{1} << (sizeof(W) * 8 - 1 - kFraction)) - 1));
  uint64_t whole = bits & ((uint64_t{1} << kFraction) - 1);
  e = (biased == 0 ? 1 : biased) - kBias - kFraction;
  if (biased != 0) whole |= uint64_t{1} << kFraction;
  if (whole == 0) {
    m = 0, e = 0;
    return;
  }
  const int zeros = __builtin_ctzll(whole);
  m = static_cast<int64_t>(whole >> zeros);
  e += zeros;
  if (bits >> (sizeof(W) * 8 - 1)) m = -m;
}

template <class M, class W>
bool sums_exact(const W (&seed)[M::B], W step, int64_t iterations) {
  int64_t m[M::B + 1];
  int e[M::B + 1];
  int q = std::numeric_limits<int>::max();
  for (int k = 0; k <= M::B; ++k) {
    const W v = k < M::B ? seed[k] : step;
    if (!(std::fabs(v) <= std::numeric_limits<W>::max())) return false;  // NaN, infinity
    split(v, m[k], e[k]);
    if (m[k] != 0) q = std::min(q, e[k]);
  }
  if (m[M::B] == 0 || q < M::kLowest || q + M::kBits > M::kHighest + 1) return false;
  // In units of 2^q every value is a whole number, below 2^bits where it must be.
  const __int128 limit = __int128{1} << M::kBits;
  __int128 units[M::B + 1];
  for (int k = 0; k <= M::B; ++k) {
    const int shift = e[k] - q;
    if (m[k] != 0 && 64 - __builtin_clzll(static_cast<uint64_t>(m[k] < 0 ? -m[k] : m[k])) + shift > M::kBits)
      return false;
    units[k] = m[k] == 0 ? 0 : static_cast<__int128>(m[k]) * (__int128{1} << shift);  // m may be negative
  }
  const __int128 t = units[M::B];
  if (t * kChains >= limit || -t * kChains >= limit) return false;
  for (int k = 0; k < M::B; ++k) {
    const __int128 last = units[k] + t * iterations;
    if (last >= limit || -last >= limit) return false;
  }
  return true;
}

// The whole blocks of dst[0 .. n): each lane adds the step before each store, in the
// working precision. Where sums_exact, every lane holds seed + j * step, however it is
// reached: the first kChains blocks come from the lanes, then groups of kChains blocks
// in the build's widest registers, each stepping by kChains steps; half-precision lanes
// need no rounding.
template <class T, class M, class W>
void block_pass(T* dst, int32_t n, const W (&seed)[M::B], W step_value) {
  using V = simd::vec<W, 1>;
  constexpr int B = M::B;
  constexpr int R = B / V::kLanes;
  const V step = simd::splat<V>(step_value);
  V acc[R];
  for (int r = 0; r < R; ++r) acc[r] = simd::load<V>(seed + r * V::kLanes);
  int32_t i = 0;
  const int64_t iterations = (int64_t{n} + B - 1) / B;
  if (iterations >= 2 * kChains && sums_exact<M>(seed, step_value, iterations)) {
    W group[kChains * B];  // the values of the next kChains blocks, as the elements go
    for (int c = 0; c < kChains; ++c)
      for (int r = 0; r < R; ++r) simd::store(group + c * B + r * V::kLanes, acc[r] = simd::add_raw(acc[r], step));
    using VW = simd::vec<W, simd::kWide>;
    constexpr int RW = kChains * B / VW::kLanes;
    VW wide[RW];
    for (int r = 0; r < RW; ++r) wide[r] = simd::load<VW>(group + r * VW::kLanes);
    const VW leap = simd::splat<VW>(step_value * kChains);  // exact
    for (; i + kChains * B <= n; i += kChains * B) {
      store_block(dst + i, wide);
      for (VW& w : wide) w = simd::add_raw(w, leap);  // exact, so never NaN
    }
    for (int r = 0; r < RW; ++r) simd::store(group + r * VW::kLanes, wide[r]);
    for (const W* g = group; i < n; i += B, g += B) {  // fewer than kChains blocks
      for (int r = 0; r < R; ++r) acc[r] = simd::load<V>(g + r * V::kLanes);
      store_block(dst + i, acc);
    }
    return;
  }
  for (; i < n; i += B) {
    for (V& a : acc) {
      // Integer members turn every NaN into 0: their sums need not choose a NaN.
      if constexpr (std::is_floating_point_v<T>) a = simd::add(a, step);
      else a = simd::add_raw(a, step);
      if constexpr (M::kHalf) a = simd::round_to_half(a);
    }
    store_block(dst + i, acc);
  }
}

// ---- The ramp

template <class T>
ZIVKStatus vector_slope(T* dst, int32_t len, typename Slope<T>::Arg offset, typename Slope<T>::Arg slope) {
  using M = Slope<T>;
  using A = typename M::Arg;
  using W = typename M::Work;
  constexpr int B = M::B;
  if (const ZIVKStatus st = check_ptrs_len(len, dst)) return st;
  const int32_t n = len & ~(M::kRound - 1);

  if (n > 0) {
    // Lane k starts one block before the ramp, at offset + (k - B) * slope, and moves on
    // by the step B * slope (made in float32, then rounded) before each store.
    W seed[B];
    W step;
    if constexpr (M::kHalf) {
      const float off = rounding::to_half(offset), sl = rounding::to_half(slope);
      // (k - B) * slope + offset is exact in float64, so it rounds once, to half.
      for (int k = 0; k < B; ++k) seed[k] = rounding::to_half(std::fma(double(k - B), double(sl), double(off)));
      step = rounding::to_half(fp::mul(A(B), slope));
    } else {
      for (int k = 0; k < B; ++k) seed[k] = fp::mul_add(W(k - B), slope, offset);
      step = fp::mul(A(B), slope);
    }
    block_pass<T, M>(dst, n, seed, step);
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
