// Packed 24-bit samples: three bytes a sample, least significant first. Reading unpacks
// four samples from 12 bytes into four 32-bit lanes with a byte table; writing computes
// four 32-bit lanes and packs them back into 12 bytes. Reading takes four groups as 48
// bytes, three whole registers split with byte extractions, and a single group with a
// 16-byte load only where all its bytes lie inside the packed array; writing stores
// the 12 bytes of each group and nothing more. No call touches a byte past 3 * len.
#include <string.h>

#include <algorithm>

#include "core/frame.h"
#include "core/operands.h"
#include "core/rounding.h"
#include "core/scale.h"

namespace {

using namespace zivks;
using lane::RightShift;
using rounding::Mode;
using V8 = simd::vec<uint8_t, 1>;

constexpr int64_t kGroupBytes = 12;  // four packed samples
constexpr int kGroup = 4;
constexpr int kTurn = 4;  // groups a turn of the main loops: 48 packed bytes
constexpr uint8_t kZeroByte = 16;    // a table index that gives a zero byte

// Four samples into four 32-bit lanes, zero-extended (24u) or into the top three bytes
// of each lane, for an arithmetic shift right by 8 to extend the sign (24s).
alignas(16) constexpr uint8_t kUnpackUnsigned[16] = {0, 1, 2, kZeroByte, 3, 4, 5, kZeroByte,
                                                     6, 7, 8, kZeroByte, 9, 10, 11, kZeroByte};
alignas(16) constexpr uint8_t kUnpackSigned[16] = {kZeroByte, 0, 1, 2, kZeroByte, 3, 4, 5,
                                                   kZeroByte, 6, 7, 8, kZeroByte, 9, 10, 11};
// The low three bytes of four 32-bit lanes, then four zero bytes.
alignas(16) constexpr uint8_t kPack[16] = {0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14,
                                           kZeroByte, kZeroByte, kZeroByte, kZeroByte};

constexpr int32_t kMax24u = 0xFFFFFF, kMax24s = 0x7FFFFF, kMin24s = -0x800000;

// ---- Reading

// Sample i of a packed array: 24u as it is, 24s with its sign extended.
template <bool kSigned>
inline int32_t sample(const uint8_t* src, int64_t i) {
  const uint32_t u = src[3 * i] | uint32_t{src[3 * i + 1]} << 8 | uint32_t{src[3 * i + 2]} << 16;
  if constexpr (kSigned) return static_cast<int32_t>(u << 8) >> 8;
  else return static_cast<int32_t>(u);
}

// dst[i] = sample i as T (uint32, int32 or float32, exact). Whole groups whose 16-byte
// load stays inside the array, then the samples left one by one.
template <bool kSigned, class T>
ZIVKStatus unpack(const uint8_t* src, T* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  // One or two signed samples are refused; the unsigned forms take them.
  if (kSigned && len <= 2) return ZIVK_STS_SIZE_ERR;
  const V8 table = simd::load<V8>(kSigned ? kUnpackSigned : kUnpackUnsigned);
  auto put = [&](int64_t g, const V8& bytes12) {
    const auto x = simd::reinterpret<int32_t>(simd::table_bytes(bytes12, table));
    simd::vec<int32_t, 1> v = x;
    if constexpr (kSigned) v = simd::shr(x, simd::shift_count<int32_t, 1>(8));
    if constexpr (std::is_floating_point_v<T>) simd::store(dst + g * kGroup, simd::cvt_to_float<float>(v));
    else simd::store(dst + g * kGroup, simd::reinterpret<T>(v));
  };
  // Four groups from three 16-byte loads, then single groups whose 16-byte load stays
  // inside the array.
  const int64_t bytes = 3 * int64_t{len};
  const V8 z = simd::zeros<V8>();
  int64_t g = 0;
  for (; (g + kTurn) * kGroupBytes <= bytes; g += kTurn) {
    const uint8_t* p = src + g * kGroupBytes;
    const V8 a = simd::load<V8>(p), b = simd::load<V8>(p + 16), c = simd::load<V8>(p + 32);
    put(g, a);
    put(g + 1, simd::ext_bytes<12>(a, b));
    put(g + 2, simd::ext_bytes<8>(b, c));
    put(g + 3, simd::ext_bytes<4>(c, z));
  }
  for (; g * kGroupBytes + 16 <= bytes; ++g) put(g, simd::load<V8>(src + g * kGroupBytes));
  for (int64_t i = g * kGroup; i < len; ++i) dst[i] = static_cast<T>(sample<kSigned>(src, i));
  return ZIVK_STS_NO_ERR;
}

// ---- Writing

// The 24-bit result of a p the tail computes: the thresholds on the unrounded p, then
// to nearest with a tie to the even neighbour; NaN gives 0.
template <class F>
inline int32_t tail24(F p, int32_t lo, int32_t hi) {
  if (p >= static_cast<F>(hi)) return hi;
  if (p <= static_cast<F>(lo)) return lo;
  return rounding::tail<int32_t>(p);
}

inline void put_sample(uint8_t* dst, int64_t i, int32_t v) {
  dst[3 * i] = static_cast<uint8_t>(v);
  dst[3 * i + 1] = static_cast<uint8_t>(v >> 8);
  dst[3 * i + 2] = static_cast<uint8_t>(v >> 16);
}

// Whole blocks of 8 samples, four lanes(i, w) a 128-bit block (as many as the register
// of width w holds), packed into 12 bytes each and stored with nothing past them, with
// a read hint `ahead` bytes past src[i] for each register (none when 0); then tail(i)
// for the samples left, each written as three bytes.
template <class S, class Lanes, class Tail>
void pack(const S* src, uint8_t* dst, int32_t len, int64_t ahead, Lanes&& lanes, Tail&& tail) {
  const int64_t n = block_end<8>(len);
  for_blocks<kGroup>(
      n,
      [&](int64_t i, auto w) {
        using VB = simd::vec<uint8_t, decltype(w)::value>;
        if (ahead != 0) hint_read(src + i, ahead);
        const VB table = simd::load_repeated_block<VB>(kPack);
        simd::store_blocks12(dst + 3 * i, simd::table_bytes(simd::reinterpret<uint8_t>(lanes(i, w)), table));
      },
      [](int64_t) {});  // n is whole blocks
  for (int64_t i = n; i < len; ++i) put_sample(dst, i, tail(i));
}

// Lanes clamped to [lo, hi].
template <int K>
inline simd::vec<int32_t, K> clamp(const simd::vec<int32_t, K>& v, int32_t lo, int32_t hi) {
  using V = simd::vec<int32_t, K>;
  return simd::min(simd::max(v, simd::splat<V>(lo)), simd::splat<V>(hi));
}

// x / 2^s rounded to nearest with a tie to the even quotient, for s >= 1: the floor
// quotient q, plus one where the remainder is above half of 2^s or is half and q odd.
// From s = 32 on every quotient is 0, but for an unsigned x above 2^31 at s = 32.
template <class T, int K>
inline simd::vec<int32_t, K> divide_even(const simd::vec<T, K>& x, int s) {
  using VT = simd::vec<T, K>;
  using V = simd::vec<int32_t, K>;
  if (s >= 32) {
    if (std::is_signed_v<T> || s > 32) return simd::zeros<V>();
    const VT above = simd::cmp_gt(x, simd::splat<VT>(T(0x80000000u)));
    return simd::reinterpret<int32_t>(simd::bit_and(above, simd::splat<VT>(T(1))));
  }
  const V q = simd::reinterpret<int32_t>(simd::shr(x, simd::shift_count<T, K>(s)));
  const V r = simd::reinterpret<int32_t>(simd::bit_and(x, simd::splat<VT>(static_cast<T>((uint32_t{1} << s) - 1))));
  const V half = simd::splat<V>(static_cast<int32_t>(uint32_t{1} << (s - 1)));
  const V one = simd::splat<V>(1);
  const V tie_odd = simd::bit_and(simd::cmp_eq(r, half), simd::cmp_eq(simd::bit_and(q, one), one));
  return simd::sub_wrap(q, simd::bit_or(simd::cmp_gt(r, half), tie_odd));  // a mask is -1
}

// ---- Convert_32u24u_S and Convert_32s24s_S.
//   e = 0: the element clamped to the 24-bit range.
//   e < 0: the element times M, rounded to nearest even, clamped; the tail makes the
//     product in float64.
//   e > 0: the element shifted left by e with saturation at its type's bounds (the
//     count from the low byte of e read as signed; negative, a right shift rounding
//     half up), clamped; the tail multiplies by the float32 M instead.
template <class T>
ZIVKStatus pack_int(const T* src, uint8_t* dst, int32_t len, double scale, int64_t ahead) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  if (const ZIVKStatus st = scale::check(scale)) return st;
  constexpr bool kSigned = std::is_signed_v<T>;
  constexpr int32_t lo = kSigned ? kMin24s : 0, hi = kSigned ? kMax24s : kMax24u;
  const int32_t e = scale::exponent(scale);
  auto load = [&](int64_t i, auto w) { return simd::load<simd::vec<T, decltype(w)::value>>(src + i); };
  // Unsigned lanes fit int32 once held at 0xFFFFFF.
  auto clamped = [&](const auto& v) {
    using VT = std::decay_t<decltype(v)>;
    if constexpr (kSigned) return clamp(v, lo, hi);
    else return simd::reinterpret<int32_t>(simd::min(v, simd::splat<VT>(static_cast<T>(hi))));
  };
  if (e == 0) {
    pack(src, dst, len, ahead, [&](int64_t i, auto w) { return clamped(load(i, w)); },
         [&](int64_t i) { return static_cast<int32_t>(std::min<int64_t>(std::max<int64_t>(src[i], lo), hi)); });
  } else if (e > 0) {
    const float m = scale::multiplier<float>(e);
    pack(src, dst, len, ahead,
         [&](int64_t i, auto w) { return clamped(simd::shl_sat_by_low_byte<RightShift::kRound>(load(i, w), e)); },
         [&](int64_t i) { return tail24(static_cast<float>(src[i]) * m, lo, hi); });
  } else {
    // x * 2^e is exact in float64, so rounding it to nearest even is the integer
    // quotient by 2^-e rounded the same way, which the block makes in its own lanes.
    const double m = scale::multiplier<double>(e);
    const int s = -e;
    pack(src, dst, len, ahead, [&](int64_t i, auto w) { return clamp(divide_even(load(i, w), s), lo, hi); },
         [&](int64_t i) { return tail24(static_cast<double>(src[i]) * m, lo, hi); });
  }
  return ZIVK_STS_NO_ERR;
}

// ---- Convert_32f24u_S and Convert_32f24s_S: the element (times M in float32 unless M
// is 1) rounded to nearest even into int32 lanes with saturation, then clamped to the
// 24-bit range. NaN gives 0.
template <bool kSigned>
ZIVKStatus pack_float(const float* src, uint8_t* dst, int32_t len, double scale, int64_t ahead) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  if (const ZIVKStatus st = scale::check(scale)) return st;
  constexpr int32_t lo = kSigned ? kMin24s : 0, hi = kSigned ? kMax24s : kMax24u;
  const int32_t e = scale::exponent(scale);
  const float m = scale::multiplier<float>(e);
  const broadcast<float> mvs(m);
  auto tail = [&](int64_t i) { return tail24(e == 0 ? src[i] : src[i] * m, lo, hi); };
  auto lanes = [&](auto scaled) {
    return [&, scaled](int64_t i, auto w) {
      constexpr int K = decltype(w)::value;
      auto x = simd::load<simd::vec<float, K>>(src + i);
      if constexpr (decltype(scaled)::value) x = simd::mul_raw(x, mvs.template get<K>());
      return clamp(simd::cvt_sat<int32_t, Mode::kNear>(x), lo, hi);
    };
  };
  if (e == 0) pack(src, dst, len, ahead, lanes(std::false_type{}), tail);
  else pack(src, dst, len, ahead, lanes(std::true_type{}), tail);
  return ZIVK_STS_NO_ERR;
}

// The writing forms but 32s24s read 1024 bytes ahead of src, once a register.
constexpr int64_t kPackReadAheadBytes = 1024;

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_24u32u(const uint8_t* src, uint32_t* dst, int32_t len) {
  return unpack<false>(src, dst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_24u32f(const uint8_t* src, float* dst, int32_t len) {
  return unpack<false>(src, dst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_24s32s(const uint8_t* src, int32_t* dst, int32_t len) {
  return unpack<true>(src, dst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_24s32f(const uint8_t* src, float* dst, int32_t len) {
  return unpack<true>(src, dst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_32u24u_S(const uint32_t* src, uint8_t* dst, int32_t len, double scale) {
  return pack_int(src, dst, len, scale, kPackReadAheadBytes);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_32s24s_S(const int32_t* src, uint8_t* dst, int32_t len, double scale) {
  return pack_int(src, dst, len, scale, 0);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_32f24u_S(const float* src, uint8_t* dst, int32_t len, double scale) {
  return pack_float<false>(src, dst, len, scale, kPackReadAheadBytes);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Convert_32f24s_S(const float* src, uint8_t* dst, int32_t len, double scale) {
  return pack_float<true>(src, dst, len, scale, kPackReadAheadBytes);
}
