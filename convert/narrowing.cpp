// Narrowing integer conversions: a signed type into the unsigned one of its width, or a
// wide type into a narrower one, saturating. The members are not copies of one another:
//   8s8u, 32s16s    saturate only;
//   16s8s_S         float32 product, rounded by rndMode (checked);
//   64s32s_S        float64 product of the element rounded to float64, rounded by
//                   rndMode (checked);
//   32s16s_S        float64 product rounded to nearest even; a path of its own at M = 1;
//   8u8s_S          three paths by the scale shift; rndMode never checked, read only
//                   when the values shrink.
// A block rounds and then saturates step by step; the tail clamps the unrounded product
// and then rounds (see core/rounding.h). They agree but for the float64 product
// +-0.49999999999999994, which the tail of 64s32s_S rounds to +-1 with ZIVK_RND_NEAR.
#include <type_traits>

#include "core/frame.h"
#include "core/operands.h"
#include "core/rounding.h"
#include "core/scale.h"

namespace {

using namespace zivks;
using lane::RightShift;
using rounding::Mode;

// Runs go(mode tag) with the rounding mode of rndMode: 0 truncates, 1 rounds a tie to
// even, any other value rounds a tie away from zero.
template <class Go>
inline void by_mode(uint32_t mode, Go&& go) {
  switch (mode) {
    case ZIVK_RND_ZERO: go(std::integral_constant<Mode, Mode::kZero>{}); break;
    case ZIVK_RND_NEAR: go(std::integral_constant<Mode, Mode::kNear>{}); break;
    default: go(std::integral_constant<Mode, Mode::kAway>{}); break;
  }
}

// Pointers, len, then (where the member checks it) rndMode compared as unsigned, then
// scale; e when all pass.
using scale::Checked;
template <bool kCheckMode>
inline Checked check(const void* src, const void* dst, int32_t len, ZIVKRoundMode mode, double scale) {
  const bool bad_mode = kCheckMode && static_cast<uint32_t>(mode) > 2u;
  return scale::checked(len, scale, bad_mode ? ZIVK_STS_ROUND_MODE_ERR : ZIVK_STS_NO_ERR, src, dst);
}

// ---- Convert_8s8u: a negative element gives 0; 16 a block.
ZIVKStatus convert_8s8u(const int8_t* src, uint8_t* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  for_blocks<16>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<int8_t, decltype(w)::value>;
        const V v = simd::load<V>(src + i);
        simd::store(dst + i, simd::reinterpret<uint8_t>(simd::bit_and(v, simd::bit_not(simd::cmp_lt(v, simd::zeros<V>())))));
      },
      [&](int64_t i) { dst[i] = src[i] < 0 ? 0 : static_cast<uint8_t>(src[i]); });
  return ZIVK_STS_NO_ERR;
}

// ---- Convert_32s16s: clamped to int16; 4 a block.
ZIVKStatus convert_32s16s(const int32_t* src, int16_t* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  narrowing_blocks<4>(
      len, dst, [&](int64_t i, auto w) { return simd::load<simd::vec<int32_t, decltype(w)::value>>(src + i); },
      [&](int64_t i) { dst[i] = lane::clamp_to<int16_t>(src[i]); });
  return ZIVK_STS_NO_ERR;
}

// ---- Convert_8u8s_S, 16 a block.
//   e = 0: the smaller of the element and 127; rndMode is not read.
//   e < 0 (values shrink): element times M, rounded by rndMode, narrowed with
//     saturation. The products are half precision in the definition of the member;
//     float32 lanes give the same results, since a byte times a power of two is exact
//     in both wherever it can reach one half.
//   e > 0 (values grow): element shifted left by e saturating at 255 (the count from
//     the low byte of e read as signed; negative, a right shift rounding half up), then
//     at most 127; the tail multiplies in float32 and truncates.
ZIVKStatus convert_8u8s_s(const uint8_t* src, int8_t* dst, int32_t len, ZIVKRoundMode mode, double scale) {
  const Checked c = check<false>(src, dst, len, mode, scale);
  if (c.st) return c.st;
  constexpr uint8_t kTop = 127;
  auto store = [&](int64_t i, const auto& r) { simd::store(dst + i, simd::reinterpret<int8_t>(r)); };
  auto block = [&](auto&& step) {
    return [&, step](int64_t i, auto w) {
      using V = simd::vec<uint8_t, decltype(w)::value>;
      store(i, step(simd::load<V>(src + i)));
    };
  };
  if (c.e == 0) {
    for_blocks<16>(
        len, block([](const auto& v) { return simd::min(v, simd::splat<std::decay_t<decltype(v)>>(kTop)); }),
        [&](int64_t i) { dst[i] = static_cast<int8_t>(src[i] > kTop ? kTop : src[i]); });
    return ZIVK_STS_NO_ERR;
  }
  const float m = scale::multiplier<float>(c.e);
  if (c.e > 0) {
    const int32_t e = c.e;
    for_blocks<16>(
        len,
        block([e](const auto& v) {
          using V = std::decay_t<decltype(v)>;
          return simd::min(simd::shl_sat_by_low_byte<RightShift::kRound>(v, e), simd::splat<V>(kTop));
        }),
        [&](int64_t i) { dst[i] = rounding::tail_zero<int8_t>(static_cast<float>(src[i]) * m); });
    return ZIVK_STS_NO_ERR;
  }
  const broadcast<float> mvs(m);
  by_mode(static_cast<uint32_t>(mode), [&](auto tag) {
    constexpr Mode md = decltype(tag)::value;
    for_blocks<16>(
        len,
        [&](int64_t i, auto w) {
          constexpr int K = decltype(w)::value;
          const simd::vec<uint8_t, K> v = simd::load<simd::vec<uint8_t, K>>(src + i);
          const auto& mv = mvs.template get<K>();
          auto half = [&](const simd::vec<uint16_t, K>& h) {
            auto q = [&](const simd::vec<uint32_t, K>& x) {
              return simd::cvt_sat<int32_t, md>(simd::mul_raw(simd::cvt_to_float<float>(simd::reinterpret<int32_t>(x)), mv));
            };
            return simd::narrow_sat<int16_t>(q(simd::widen_lo<uint32_t>(h)), q(simd::widen_hi<uint32_t>(h)));
          };
          simd::store(dst + i, simd::narrow_sat<int8_t>(half(simd::widen_lo<uint16_t>(v)), half(simd::widen_hi<uint16_t>(v))));
        },
        [&](int64_t i) { dst[i] = rounding::tail_by<int8_t, md>(static_cast<float>(src[i]) * m); });
  });
  return ZIVK_STS_NO_ERR;
}

// Convert_16s8s_S's blocks at M = 2^e with e from -15 to 7. There the float32 product of
// an int16 is exact, so the int16 lanes give the same results on their own, and the
// caller narrows them with saturation. No step can overflow an int16 lane.
constexpr int32_t kExactShiftRight = 15, kExactShiftLeft = 7;

// e >= 0: the element, first clamped to int8 (beyond it the product saturates anyway),
// shifted left by e.
template <int K>
inline simd::vec<int16_t, K> grown_16s(const simd::vec<int16_t, K>& x, const simd::shift_count<int16_t, K>& e) {
  using V = simd::vec<int16_t, K>;
  return simd::shl(simd::min(simd::max(x, simd::splat<V>(-128)), simd::splat<V>(127)), e);
}

// e < 0, k = -e: the floor x >> k, plus one where the remainder r = x - (floor << k),
// from 0 to 2^k - 1, asks for it: toward zero where r != 0 and x < 0; to nearest where
// r is above half = 2^(k-1), or at it with an odd floor; away from zero where r is above
// half, or at it with x >= 0.
template <Mode md, int K>
inline simd::vec<int16_t, K> shrunk_16s(const simd::vec<int16_t, K>& x, const simd::shift_count<int16_t, K>& k,
                                        int16_t half) {
  using V = simd::vec<int16_t, K>;
  const V neg = simd::shr(x, simd::shift_count<int16_t, K>(15));  // -1 where x < 0
  const V low = simd::splat<V>(static_cast<int16_t>(2 * half - 1));
  if constexpr (md == Mode::kZero) return simd::shr(simd::add_wrap(x, simd::bit_and(neg, low)), k);
  const V q = simd::shr(x, k);
  const V one = simd::splat<V>(1);
  // Up where r > half - 1 (odd floor, or x >= 0 away from zero), else where r > half.
  const V lower = md == Mode::kNear ? simd::bit_and(q, one) : simd::add_wrap(neg, one);
  return simd::sub_wrap(q, simd::cmp_gt(simd::bit_and(x, low), simd::sub_wrap(simd::splat<V>(half), lower)));
}

// ---- Convert_16s8s_S, 8 a block: float32 product, rounded by rndMode, saturated.
ZIVKStatus convert_16s8s_s(const int16_t* src, int8_t* dst, int32_t len, ZIVKRoundMode mode, double scale) {
  const Checked c = check<true>(src, dst, len, mode, scale);
  if (c.st) return c.st;
  const float m = scale::multiplier<float>(c.e);
  const bool exact = c.e >= -kExactShiftRight && c.e <= kExactShiftLeft;
  const broadcast<int16_t, simd::shift_count> shift(exact ? (c.e < 0 ? -c.e : c.e) : 0);
  const int16_t half = static_cast<int16_t>(exact && c.e < 0 ? 1 << (-c.e - 1) : 0);
  const broadcast<float> mvs(m);
  by_mode(static_cast<uint32_t>(mode), [&](auto tag) {
    constexpr Mode md = decltype(tag)::value;
    auto tail = [&](int64_t i) { dst[i] = rounding::tail_by<int8_t, md>(static_cast<float>(src[i]) * m); };
    if (exact && c.e >= 0) {
      narrowing_blocks<8>(
          len, dst,
          [&](int64_t i, auto w) {
            constexpr int K = decltype(w)::value;
            return grown_16s(simd::load<simd::vec<int16_t, K>>(src + i), shift.template get<K>());
          },
          tail);
      return;
    }
    if (exact) {
      narrowing_blocks<8>(
          len, dst,
          [&](int64_t i, auto w) {
            constexpr int K = decltype(w)::value;
            return shrunk_16s<md>(simd::load<simd::vec<int16_t, K>>(src + i), shift.template get<K>(), half);
          },
          tail);
      return;
    }
    for_blocks<8>(
        len,
        [&](int64_t i, auto w) {
          constexpr int K = decltype(w)::value;
          const auto v = simd::load<simd::vec<int16_t, K>>(src + i);
          auto q = [&](const simd::vec<int32_t, K>& x) {
            return simd::cvt_sat<int32_t, md>(simd::mul_raw(simd::cvt_to_float<float>(x), mvs.template get<K>()));
          };
          const auto r = simd::narrow_sat<int16_t>(q(simd::widen_lo<int32_t>(v)), q(simd::widen_hi<int32_t>(v)));
          simd::store_lo(dst + i, simd::narrow_sat<int8_t>(r, r));
        },
        tail);
  });
  return ZIVK_STS_NO_ERR;
}

// ---- Convert_32s16s_S, 4 a block, to nearest even. At M = 1 the block only saturates
// and the tail clamps through float32; otherwise the product is float64, and the
// block narrows it through int64 and int32 lanes, saturating at each step.
ZIVKStatus convert_32s16s_s(const int32_t* src, int16_t* dst, int32_t len, double scale) {
  const Checked c = check<false>(src, dst, len, ZIVK_RND_NEAR, scale);
  if (c.st) return c.st;
  if (c.e == 0) {
    narrowing_blocks<4>(
        len, dst, [&](int64_t i, auto w) { return simd::load<simd::vec<int32_t, decltype(w)::value>>(src + i); },
        [&](int64_t i) { dst[i] = rounding::tail<int16_t>(static_cast<float>(src[i])); });
    return ZIVK_STS_NO_ERR;
  }
  const double m = scale::multiplier<double>(c.e);
  const broadcast<double> mvs(m);
  narrowing_blocks<4>(
      len, dst,
      [&](int64_t i, auto w) {
        constexpr int K = decltype(w)::value;
        const auto v = simd::load<simd::vec<int32_t, K>>(src + i);
        auto q = [&](const simd::vec<int64_t, K>& x) {
          return simd::cvt_sat<int64_t, Mode::kNear>(simd::mul_raw(simd::cvt_to_float<double>(x), mvs.template get<K>()));
        };
        return simd::narrow_sat<int32_t>(q(simd::widen_lo<int64_t>(v)), q(simd::widen_hi<int64_t>(v)));
      },
      [&](int64_t i) { dst[i] = rounding::tail<int16_t>(static_cast<double>(src[i]) * m); });
  return ZIVK_STS_NO_ERR;
}

// ---- Convert_64s32s_S, 2 a block: the element rounded to float64, times M, rounded by
// rndMode, saturated.
ZIVKStatus convert_64s32s_s(const int64_t* src, int32_t* dst, int32_t len, ZIVKRoundMode mode, double scale) {
  const Checked c = check<true>(src, dst, len, mode, scale);
  if (c.st) return c.st;
  const double m = scale::multiplier<double>(c.e);
  const broadcast<double> mvs(m);
  by_mode(static_cast<uint32_t>(mode), [&](auto tag) {
    constexpr Mode md = decltype(tag)::value;
    narrowing_blocks<2>(
        len, dst,
        [&](int64_t i, auto w) {
          constexpr int K = decltype(w)::value;
          const auto p = simd::mul_raw(simd::cvt_to_float<double>(simd::load<simd::vec<int64_t, K>>(src + i)),
                                       mvs.template get<K>());
          return simd::cvt_sat<int64_t, md>(p);
        },
        [&](int64_t i) { dst[i] = rounding::tail_by<int32_t, md>(static_cast<double>(src[i]) * m); });
  });
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_8s8u(const int8_t* src, uint8_t* dst, int32_t len) {
  return convert_8s8u(src, dst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_32s16s(const int32_t* src, int16_t* dst, int32_t len) {
  return convert_32s16s(src, dst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_8u8s_S(const uint8_t* src, int8_t* dst, int32_t len, ZIVKRoundMode rndMode,
                                             double scale) {
  return convert_8u8s_s(src, dst, len, rndMode, scale);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_16s8s_S(const int16_t* src, int8_t* dst, int32_t len, ZIVKRoundMode rndMode,
                                              double scale) {
  return convert_16s8s_s(src, dst, len, rndMode, scale);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_32s16s_S(const int32_t* src, int16_t* dst, int32_t len, double scale) {
  return convert_32s16s_s(src, dst, len, scale);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_64s32s_S(const int64_t* src, int32_t* dst, int32_t len,
                                               ZIVKRoundMode rndMode, double scale) {
  return convert_64s32s_s(src, dst, len, rndMode, scale);
}
