// Add and Sub of two integer arrays with a scale: r = saturate(round(x * M)) with x the
// exact sum or difference and M the power of two that scale selects. The members are
// not copies of one another: each has its own paths, blocks and read-ahead distances.
//   Add_16s, Sub_16s, Add_32s, Sub_32s: one multiplying path for every scale.
//   Add_8u, Add_16u, Sub_16u: three paths chosen once from e: no scaling at e = 0, a
//     multiply by M below 1 for e < 0, a saturating left shift by e for e > 0.
//   Sub_8u: the multiplying path only, even at e = 0, with a two-step narrowing.
// The left shifts of a block take their count from the low byte of e read as a signed
// number, so from e = 128 the block shifts right (rounding half up) while the tail's
// float32 M is infinite and saturates; that difference is kept.
#include "arithmetic/scaled.h"

namespace {

using namespace zivks;
using rounding::Mode;

// Read hints, in bytes ahead of the element read, per member and path.
constexpr int64_t kAdd8uReadAheadBytes = 512;         // e = 0
constexpr int64_t kAdd8uScaledReadAheadBytes = 256;   // e != 0; for e < 0 also of dst
constexpr int64_t kAdd16uScaledReadAheadBytes = 512;  // e != 0
constexpr int64_t kSub8uReadAheadBytes = 512;         // also of dst
constexpr int64_t kSub16uReadAheadBytes = 1024;       // for e < 0 also of dst

// The exact x of element i, src1 + src2 or src2 - src1 (the first array is the
// subtrahend), in F: float32 holds every sum and difference of 8- and 16-bit elements
// exactly, float64 every one of 32-bit elements.
template <AddSub op, class F, class T>
inline F exact(const T* src1, const T* src2, int64_t i) {
  return static_cast<F>(op == AddSub::kAdd ? int64_t{src1[i]} + int64_t{src2[i]}
                                           : int64_t{src2[i]} - int64_t{src1[i]});
}

template <AddSub op, class V>
inline V wrap(const V& a, const V& b) {
  return op == AddSub::kAdd ? simd::add_wrap(a, b) : simd::sub_wrap(b, a);
}

// The bytes of the B-element blocks a loop body handles in one call of width w.
template <int B, class W, class T>
constexpr int64_t kGroupBytes = int64_t{B} * W::value * int64_t{sizeof(T)};

// A read hint for every line of the blocks of a call of width w at element i.
template <int B, class W, class T>
inline void hint_group(const T* p, int64_t i, int64_t ahead) {
  hint_read_lines<kGroupBytes<B, W, T>>(p + i, ahead);
}

// The exact sums of the group of B-element blocks at i, widened to V's lanes, after the
// read hints of both sources `ahead` bytes ahead.
template <int B, class V, class W, class T>
inline V widened_sum(const T* src1, const T* src2, int64_t i, int64_t ahead) {
  hint_group<B, W>(src1, i, ahead);
  hint_group<B, W>(src2, i, ahead);
  return simd::add_wrap(simd::load_widen<V>(src1 + i), simd::load_widen<V>(src2 + i));
}

// int16 and int32: widen, add or subtract, convert to float32 (int16) or float64
// (int32), multiply by M, round to nearest even, narrow with saturation. 4 int16 or 2
// int32 elements a block, for every scale.
template <AddSub op, class T>
ZIVKStatus signed_scaled(const T* src1, const T* src2, T* dst, int32_t len, double scale) {
  const scaled::Checked c = scaled::check(len, scale, src1, src2, dst);
  if (c.st) return c.st;
  using F = std::conditional_t<sizeof(T) == 2, float, double>;
  using W = std::conditional_t<sizeof(T) == 2, int32_t, int64_t>;
  const F m = scale::multiplier<F>(c.e);
  const broadcast<F> mvs(m);
  narrowing_blocks<simd::vec<W>::kLanes>(
      len, dst,
      [&](int64_t i, auto w) {
        using VW = simd::vec<W, decltype(w)::value>;
        const VW x = wrap<op>(simd::load_widen<VW>(src1 + i), simd::load_widen<VW>(src2 + i));
        return simd::cvt_sat<W, Mode::kNear>(
            simd::mul_raw(simd::cvt_to_float<F>(x), mvs.template get<decltype(w)::value>()));
      },
      [&](int64_t i) { dst[i] = rounding::tail<T>(exact<op, F>(src1, src2, i) * m); });
  return ZIVK_STS_NO_ERR;
}

// e > 0, Add_8u and Add_16u: the sum widened to W (B elements a block) and shifted left
// by e, saturating at W's largest value, then narrowed with saturation. Every x * M is
// whole (or infinite, or NaN for 0 times infinity), so the tail may truncate or round.
template <int B, class W, class T, class Tail>
void shifted_sum(const T* src1, const T* src2, T* dst, int32_t len, int32_t e, int64_t ahead, Tail&& tail) {
  narrowing_blocks<B>(
      len, dst,
      [&](int64_t i, auto w) {
        using VW = simd::vec<W, decltype(w)::value>;
        return simd::shl_sat_by_low_byte<lane::RightShift::kRound>(widened_sum<B, VW, decltype(w)>(src1, src2, i, ahead), e);
      },
      tail);
}

// Add_8u_S. e = 0: saturating 8-bit add, 16 a block. e < 0: the sum widened to 16 bits,
// multiplied and rounded, 8 a block; the lanes are half precision, which float32 lanes
// reproduce exactly (a sum is at most 510, and any product that can round above 0 is
// exact in both). e > 0: the sum shifted left, saturating at 65535, 8 a block.
ZIVKStatus add_8u_s(const uint8_t* src1, const uint8_t* src2, uint8_t* dst, int32_t len, double scale) {
  const scaled::Checked c = scaled::check(len, scale, src1, src2, dst);
  if (c.st) return c.st;
  if (c.e == 0) {
    for_blocks<16>(
        len,
        [&](int64_t i, auto w) {
          using V8 = simd::vec<uint8_t, decltype(w)::value>;
          hint_group<16, decltype(w)>(src1, i, kAdd8uReadAheadBytes);
          hint_group<16, decltype(w)>(src2, i, kAdd8uReadAheadBytes);
          simd::store(dst + i, simd::add_sat(simd::load<V8>(src1 + i), simd::load<V8>(src2 + i)));
        },
        [&](int64_t i) {
          const int x = src1[i] + src2[i];
          dst[i] = static_cast<uint8_t>(x > 255 ? 255 : x);
        });
    return ZIVK_STS_NO_ERR;
  }
  const float m = scale::multiplier<float>(c.e);
  auto x = [&](int64_t i) { return exact<AddSub::kAdd, float>(src1, src2, i); };
  if (c.e > 0) {
    shifted_sum<8, uint16_t>(src1, src2, dst, len, c.e, kAdd8uScaledReadAheadBytes,
                             [&](int64_t i) { dst[i] = rounding::tail_zero<uint8_t>(x(i) * m); });
    return ZIVK_STS_NO_ERR;
  }
  const broadcast<float> mvs(m);
  auto scaled = [&](const auto& v) {
    const auto& mv = mvs.template get<std::decay_t<decltype(v)>::kBlocks>();
    const auto lo = simd::cvt_sat<int32_t, Mode::kNear>(
        simd::mul_raw(simd::cvt_to_float<float>(simd::widen_lo<uint32_t>(v)), mv));
    const auto hi = simd::cvt_sat<int32_t, Mode::kNear>(
        simd::mul_raw(simd::cvt_to_float<float>(simd::widen_hi<uint32_t>(v)), mv));
    return simd::narrow_sat<uint16_t>(lo, hi);
  };
  narrowing_blocks<8>(
      len, dst,
      [&](int64_t i, auto w) {
        using V16 = simd::vec<uint16_t, decltype(w)::value>;
        hint_group<8, decltype(w)>(dst, i, kAdd8uScaledReadAheadBytes);
        return scaled(widened_sum<8, V16, decltype(w)>(src1, src2, i, kAdd8uScaledReadAheadBytes));
      },
      [&](int64_t i) { dst[i] = rounding::tail<uint8_t>(x(i) * m); });
  return ZIVK_STS_NO_ERR;
}

// Add_16u_S. e = 0 is Add_16u itself. Otherwise 4 elements a block, widened to 32 bits:
// e < 0 multiplies in float32; e > 0 shifts left saturating at 2^32 - 1. Both narrow
// with saturation.
ZIVKStatus add_16u_s(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t len, double scale) {
  const scaled::Checked c = scaled::check(len, scale, src1, src2, dst);
  if (c.st) return c.st;
  if (c.e == 0) return ZIVKS_Add_16u(src1, src2, dst, len);
  const float m = scale::multiplier<float>(c.e);
  auto tail = [&](int64_t i) { dst[i] = rounding::tail<uint16_t>(exact<AddSub::kAdd, float>(src1, src2, i) * m); };
  if (c.e > 0) {
    shifted_sum<4, uint32_t>(src1, src2, dst, len, c.e, kAdd16uScaledReadAheadBytes, tail);
    return ZIVK_STS_NO_ERR;
  }
  const broadcast<float> mvs(m);
  narrowing_blocks<4>(
      len, dst,
      [&](int64_t i, auto w) {
        using V32 = simd::vec<uint32_t, decltype(w)::value>;
        const V32 x = widened_sum<4, V32, decltype(w)>(src1, src2, i, kAdd16uScaledReadAheadBytes);
        return simd::cvt_sat<int32_t, Mode::kNear>(
            simd::mul_raw(simd::cvt_to_float<float>(x), mvs.template get<decltype(w)::value>()));
      },
      tail);
  return ZIVK_STS_NO_ERR;
}

// The rounded products r of 8 consecutive elements, as 32-bit unsigned lanes, narrowed
// in two steps: the first four saturate to 16 bits, the last four keep their low 16 bits
// (so an r of 65536 or more there wraps), then all eight saturate to 8 or stay 16 bits.
// A register of K blocks holds K such groups.
template <int K>
inline simd::vec<uint16_t, K> scaled_group(const simd::vec<uint16_t, K>& d, const simd::vec<float, K>& mv) {
  const auto lo = simd::cvt_sat<uint32_t, Mode::kNear>(
      simd::mul_raw(simd::cvt_to_float<float>(simd::widen_lo<uint32_t>(d)), mv));
  const auto hi = simd::cvt_sat<uint32_t, Mode::kNear>(
      simd::mul_raw(simd::cvt_to_float<float>(simd::widen_hi<uint32_t>(d)), mv));
  return simd::narrow_sat_low_wrap_high(lo, hi);
}

// Sub_8u_S: saturating 8-bit difference, widened to 32 bits, multiplied in float32,
// rounded, narrowed in two steps; 64 elements a block, for every scale (also e = 0,
// where M is 1: there is no shift path and no unscaled path). The tail subtracts as
// signed integers, and a negative product gives 0.
ZIVKStatus sub_8u_s(const uint8_t* src1, const uint8_t* src2, uint8_t* dst, int32_t len, double scale) {
  const scaled::Checked c = scaled::check(len, scale, src1, src2, dst);
  if (c.st) return c.st;
  const float m = scale::multiplier<float>(c.e);
  const broadcast<float> mvs(m);
  // Groups of 8 never straddle a register, so blocks may go K at a time.
  for_blocks<64>(
      len,
      [&](int64_t i, auto w) {
        constexpr int K = decltype(w)::value;
        using V8 = simd::vec<uint8_t, K>;
        const auto& mv = mvs.template get<K>();
        hint_group<64, decltype(w)>(src1, i, kSub8uReadAheadBytes);
        hint_group<64, decltype(w)>(src2, i, kSub8uReadAheadBytes);
        hint_group<64, decltype(w)>(dst, i, kSub8uReadAheadBytes);
        V8 r[4];
        for (int j = 0; j < 4; ++j) {
          const int64_t at = i + int64_t{V8::kLanes} * j;
          const V8 d = simd::sub_sat(simd::load<V8>(src2 + at), simd::load<V8>(src1 + at));
          r[j] = simd::narrow_sat<uint8_t>(scaled_group(simd::widen_lo<uint16_t>(d), mv),
                                           scaled_group(simd::widen_hi<uint16_t>(d), mv));
        }
        for (int j = 0; j < 4; ++j) simd::store(dst + i + int64_t{V8::kLanes} * j, r[j]);
      },
      [&](int64_t i) { dst[i] = rounding::tail<uint8_t>(exact<AddSub::kSub, float>(src1, src2, i) * m); });
  return ZIVK_STS_NO_ERR;
}

// Sub_16u_S: 32 elements a block, three paths from e, all starting with the saturating
// 16-bit difference: none more at e = 0; for e < 0 a float32 multiply and the two-step
// narrowing (M is below 1 there, so it never wraps); for e > 0 a left shift saturating
// at 65535.
ZIVKStatus sub_16u_s(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t len, double scale) {
  const scaled::Checked c = scaled::check(len, scale, src1, src2, dst);
  if (c.st) return c.st;
  constexpr int kVecs = 4;
  const float m = scale::multiplier<float>(c.e);
  auto tail = [&](int64_t i) { dst[i] = rounding::tail<uint16_t>(exact<AddSub::kSub, float>(src1, src2, i) * m); };
  // The body of a call of width w: kVecs registers of w blocks each, step applied to the
  // difference of each; the read hints of both sources, and of dst on the multiply path.
  enum class DstHint { kNone, kAhead };
  auto body = [&](auto&& step, DstHint dst_hint) {
    return [&, step, dst_hint](int64_t i, auto w) {
      using V = simd::vec<uint16_t, decltype(w)::value>;
      hint_group<32, decltype(w)>(src1, i, kSub16uReadAheadBytes);
      hint_group<32, decltype(w)>(src2, i, kSub16uReadAheadBytes);
      if (dst_hint == DstHint::kAhead) hint_group<32, decltype(w)>(dst, i, kSub16uReadAheadBytes);
      V r[kVecs];
      for (int j = 0; j < kVecs; ++j) {
        const int64_t at = i + int64_t{V::kLanes} * j;
        r[j] = step(simd::sub_sat(simd::load<V>(src2 + at), simd::load<V>(src1 + at)));
      }
      for (int j = 0; j < kVecs; ++j) simd::store(dst + i + int64_t{V::kLanes} * j, r[j]);
    };
  };
  if (c.e == 0) {
    // M is 1, and the tail's product by it changes nothing.
    for_blocks<32>(len, body([](const auto& d) { return d; }, DstHint::kNone), tail);
  } else if (c.e < 0) {
    const broadcast<float> mvs(m);
    auto step = [&](const auto& d) { return scaled_group(d, mvs.template get<std::decay_t<decltype(d)>::kBlocks>()); };
    for_blocks<32>(len, body(step, DstHint::kAhead), tail);
  } else {
    for_blocks<32>(len, body([&](const auto& d) { return simd::shl_sat_by_low_byte<lane::RightShift::kRound>(d, c.e); }, DstHint::kNone), tail);
  }
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the exported function, its in-place form (the twin called with srcDst as
// the second source and as dst), the element type, the body.
#define ZIVKS_SCALED(name, name_in_place, type, fn)                                                       \
  ZIVKS_EXPORT ZIVKStatus name(const type* src1, const type* src2, type* dst, int32_t len, double scale) { \
    return fn(src1, src2, dst, len, scale);                                                               \
  }                                                                                                       \
  ZIVKS_EXPORT ZIVKStatus name_in_place(const type* src, type* srcDst, int32_t len, double scale) {       \
    return name(src, srcDst, srcDst, len, scale);                                                         \
  }
ZIVKS_SCALED(ZIVKS_Add_8u_S, ZIVKS_Add_8u_IS, uint8_t, add_8u_s)
ZIVKS_SCALED(ZIVKS_Add_16u_S, ZIVKS_Add_16u_IS, uint16_t, add_16u_s)
ZIVKS_SCALED(ZIVKS_Add_16s_S, ZIVKS_Add_16s_IS, int16_t, signed_scaled<AddSub::kAdd>)
ZIVKS_SCALED(ZIVKS_Add_32s_S, ZIVKS_Add_32s_IS, int32_t, signed_scaled<AddSub::kAdd>)
ZIVKS_SCALED(ZIVKS_Sub_8u_S, ZIVKS_Sub_8u_IS, uint8_t, sub_8u_s)
ZIVKS_SCALED(ZIVKS_Sub_16u_S, ZIVKS_Sub_16u_IS, uint16_t, sub_16u_s)
ZIVKS_SCALED(ZIVKS_Sub_16s_S, ZIVKS_Sub_16s_IS, int16_t, signed_scaled<AddSub::kSub>)
ZIVKS_SCALED(ZIVKS_Sub_32s_S, ZIVKS_Sub_32s_IS, int32_t, signed_scaled<AddSub::kSub>)
