// Float32 and float64 to integers: each element times the power of two M that scale
// selects (one product in the source's precision), rounded by the caller's mode and
// saturated to the target; NaN gives 0.
//
// A block converts straight to the integer lane of the source's width, saturating
// there, and narrows step by step, each step saturating: round, then clamp. The tail
// clamps the unrounded value first and then rounds with modf. Both agree, except for
// two float64 inputs with the nearest mode, where the tail's "add one half in float64
// and truncate" rounds the sum: |p| = 0.49999999999999994 gives 1, and an odd whole p
// from 2^52 to 2^53 into int64 moves to p + 1 (away from zero). Those stay as they are.
#include "core/frame.h"
#include "core/operands.h"
#include "core/rounding.h"
#include "core/scale.h"

namespace {

using namespace zivks;
using rounding::Mode;

// Narrows N vectors of integer lanes X into elements of I at d, saturating at every
// step. Intermediate steps keep signed lanes; only the last one takes I's signedness,
// which gives the same clamp as unsigned lanes would. A single vector at the last step
// fills half a vector.
template <class I, class X, int K, int N>
inline void narrow_store(I* d, const simd::vec<X, K> (&r)[N]) {
  using VX = simd::vec<X, K>;
  if constexpr (sizeof(X) == sizeof(I)) {
    for (int j = 0; j < N; ++j) simd::store(d + j * VX::kLanes, r[j]);
  } else if constexpr (sizeof(X) == 2 * sizeof(I)) {
    if constexpr (N == 1) {
      simd::store_lo(d, simd::narrow_sat<I>(r[0], r[0]));
    } else {
      for (int j = 0; j < N / 2; ++j) simd::store(d + j * 2 * VX::kLanes, simd::narrow_sat<I>(r[2 * j], r[2 * j + 1]));
    }
  } else {
    static_assert(N % 2 == 0, "intermediate steps narrow pairs");
    using Y = std::conditional_t<sizeof(X) == 8, int32_t, int16_t>;
    simd::vec<Y, K> n[N / 2];
    for (int j = 0; j < N / 2; ++j) n[j] = simd::narrow_sat<Y>(r[2 * j], r[2 * j + 1]);
    narrow_store<I>(d, n);
  }
}

template <class F, class I, int B, Mode m, bool kMultiply>
void run(const F* src, I* dst, int32_t len, F mult) {
  using L = rounding::lane_int_t<F>;
  constexpr int kVecs = B / simd::vec<F>::kLanes;
  const broadcast<F> mvs(mult);
  // Every element is converted on its own, so blocks may go in groups of any size: a
  // group of K-block registers is kVecs of them per block, twice that where the results
  // narrow, so that every narrowing step fills whole registers.
  constexpr int kN = sizeof(I) < sizeof(L) ? 2 : 1;
  for_block_groups<B, kN>(
      len,
      [&](int64_t i, auto g) {
        constexpr int K = decltype(g)::value;
        constexpr int kRegs = kVecs * decltype(g)::kCount;
        using VF = simd::vec<F, K>;
        const VF& mv = mvs.template get<K>();
        simd::vec<L, K> r[kRegs];
        for (int j = 0; j < kRegs; ++j) {
          VF p = simd::load<VF>(src + i + j * VF::kLanes);
          if constexpr (kMultiply) p = simd::mul_raw(p, mv);
          r[j] = simd::cvt_sat<L, m>(p);
        }
        narrow_store<I>(dst + i, r);
      },
      [&](int64_t i) {
        const F p = kMultiply ? src[i] * mult : src[i];
        dst[i] = rounding::tail_by<I, m>(p);
      });
}

// What a member does where M = 1: multiply as for any other M, or run a loop of its own
// without the multiply, with the same results.
enum class UnitScale { kMultiplied, kOwnLoop };

// Checks in order: pointers, len, rndMode (compared as unsigned; 402 for a signed
// target, 200 for an unsigned one), scale.
template <class F, class I, int B, UnitScale unit_scale>
ZIVKStatus convert(const F* src, I* dst, int32_t len, ZIVKRoundMode mode, double scale) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  if (static_cast<uint32_t>(mode) > 2u)
    return std::is_unsigned_v<I> ? ZIVK_STS_ROUND_RANGE_ERR : ZIVK_STS_ROUND_MODE_ERR;
  if (const ZIVKStatus st = scale::check(scale)) return st;
  // M = 2^0 = 1, the common case, needs no call to compute it.
  const int32_t e = scale::exponent(scale);
  const F mult = e == 0 ? F(1) : scale::multiplier<F>(e);
  const bool unit = unit_scale == UnitScale::kOwnLoop && mult == F(1);
  auto go = [&](auto mode_tag) {
    constexpr Mode m = decltype(mode_tag)::value;
    if (unit) run<F, I, B, m, false>(src, dst, len, mult);
    else run<F, I, B, m, true>(src, dst, len, mult);
  };
  switch (static_cast<uint32_t>(mode)) {
    case ZIVK_RND_ZERO: go(std::integral_constant<Mode, Mode::kZero>{}); break;
    case ZIVK_RND_NEAR: go(std::integral_constant<Mode, Mode::kNear>{}); break;
    default: go(std::integral_constant<Mode, Mode::kAway>{}); break;
  }
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the exported function, the source and target types, the block size in
// elements, what M = 1 does.
#define ZIVKS_CONVERT(name, ftype, itype, block, unit_scale)                                 \
  ZIVKS_EXPORT ZIVKStatus name(const ftype* src, itype* dst, int32_t len, ZIVKRoundMode rndMode, \
                               double scale) {                                               \
    return convert<ftype, itype, block, UnitScale::unit_scale>(src, dst, len, rndMode, scale); \
  }
ZIVKS_CONVERT(ZIVKS_Convert_32f8u_S, float, uint8_t, 8, kOwnLoop)
ZIVKS_CONVERT(ZIVKS_Convert_32f16u_S, float, uint16_t, 8, kOwnLoop)
ZIVKS_CONVERT(ZIVKS_Convert_64f8u_S, double, uint8_t, 8, kOwnLoop)
ZIVKS_CONVERT(ZIVKS_Convert_64f16u_S, double, uint16_t, 4, kOwnLoop)
ZIVKS_CONVERT(ZIVKS_Convert_32f8s_S, float, int8_t, 8, kOwnLoop)
ZIVKS_CONVERT(ZIVKS_Convert_32f16s_S, float, int16_t, 4, kMultiplied)
ZIVKS_CONVERT(ZIVKS_Convert_32f32s_S, float, int32_t, 4, kMultiplied)
ZIVKS_CONVERT(ZIVKS_Convert_64f8s_S, double, int8_t, 8, kMultiplied)
ZIVKS_CONVERT(ZIVKS_Convert_64f16s_S, double, int16_t, 4, kMultiplied)
ZIVKS_CONVERT(ZIVKS_Convert_64f32s_S, double, int32_t, 4, kMultiplied)
ZIVKS_CONVERT(ZIVKS_Convert_64f64s_S, double, int64_t, 4, kMultiplied)
