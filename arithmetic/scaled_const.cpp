// AddC, SubC and SubCRev of an integer array and a constant with a scale:
// r = saturate(round(x * M)), x = src + val, src - val or val - src exact, M = 2^e.
// Each member has its own table of paths by the sign of the scale shift -e, written as
// data below; the paths themselves are those of arithmetic/scaled.h.
//   Up (e < 0, results shrink): the multiply path.
//   Zero (e = 0): the saturating operation.
//   Down (e > 0, results grow): the saturating operation, then a saturating left shift.
// AddC_8u has one more: from a shift of 9 on it clears dst without computing. The 16s
// and 32s SubC and SubCRev, and AddC_16s, multiply for every scale.
#include "arithmetic/scaled.h"

namespace {

using namespace zivks;
using namespace zivks::scaled;
using lane::RightShift;

enum class ConstOp { kAddC, kSubC, kSubCRev };

// A member's paths; kClearFrom is the scale shift from which dst is cleared (0: never).
template <class UpPath, class ZeroPath, class DownPath, int kClearShift = 0>
struct table {
  using Up = UpPath;
  using Zero = ZeroPath;
  using Down = DownPath;
  static constexpr int kClearFrom = kClearShift;
};
// One multiplying path for every scale.
template <class Path>
using single = table<Path, Path, Path>;

template <ConstOp c, class T>
struct member;

// AddC. The 8u multiply path makes its products in half precision, which float32 lanes
// reproduce exactly: a sum is at most 510, and every product by 2^-1 to 2^-8 is exact in
// both. A block shifting left takes a count read as negative as a truncating right shift.
template <>
struct member<ConstOp::kAddC, uint8_t>
    : table<multiply<16, 128, 256>, saturate<64, RightShift::kTruncate>, saturate<32, RightShift::kTruncate>, 9> {};
template <>
struct member<ConstOp::kAddC, uint16_t>
    : table<multiply<16, 768, 1280>, saturate<32, RightShift::kTruncate>, saturate<32, RightShift::kTruncate>> {};
template <>
struct member<ConstOp::kAddC, int16_t> : single<multiply<4>> {};
template <>
struct member<ConstOp::kAddC, int32_t>
    : table<multiply<8, 512>, saturate<16, RightShift::kTruncate>,
            saturate<8, RightShift::kTruncate, TailScale::kMultiply, 1024>> {};

// SubC and SubCRev: the unsigned members shift rounding half up, and their tails
// recompute M with pow for each element.
template <ConstOp c>
struct member<c, uint8_t>
    : table<multiply<64, 512, 512>, saturate<16, RightShift::kRound, TailScale::kPowEach, 512>,
            saturate<16, RightShift::kRound, TailScale::kPowEach, 512>> {};
template <ConstOp c>
struct member<c, uint16_t>
    : table<multiply<32>, saturate<32, RightShift::kRound, TailScale::kPowEach>,
            saturate<32, RightShift::kRound, TailScale::kPowEach>> {};
template <ConstOp c>
struct member<c, int16_t> : single<multiply<4>> {};
template <ConstOp c>
struct member<c, int32_t> : single<multiply<2>> {};

// The zero path of AddC_8u: 16 elements a block, then the rest one by one.
inline void clear(uint8_t* dst, int32_t len) {
  for_blocks<16>(
      len, [&](int64_t i, auto w) { simd::store(dst + i, simd::zeros<simd::vec<uint8_t, decltype(w)::value>>()); },
      [&](int64_t i) { dst[i] = 0; });
}

template <ConstOp c, class T>
ZIVKStatus scaled_const(const T* src, T val, T* dst, int32_t len, double scale) {
  const Checked k = check(len, scale, src, dst);
  if (k.st) return k.st;
  using M = member<c, T>;
  if constexpr (M::kClearFrom > 0) {
    if (-k.e >= M::kClearFrom) {
      clear(dst, len);
      return ZIVK_STS_NO_ERR;
    }
  }
  const array_operand<T> a{src};
  const const_operand<T> v(val);
  if constexpr (c == ConstOp::kAddC) run_paths<M, Op::kAdd, T>(a, v, dst, len, k.e);
  else if constexpr (c == ConstOp::kSubC) run_paths<M, Op::kSub, T>(a, v, dst, len, k.e);
  else run_paths<M, Op::kSub, T>(v, a, dst, len, k.e);
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the exported function, its in-place form, the element type, the operation.
// The in-place forms of the unsigned SubC and SubCRev have bodies of their own, with
// the same paths; the others call their twin.
#define ZIVKS_SCALED_CONST(name, name_in_place, type, op)                                                 \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, type val, type* dst, int32_t len, double scale) {       \
    return scaled_const<op>(src, val, dst, len, scale);                                                 \
  }                                                                                                     \
  ZIVKS_EXPORT ZIVKStatus name_in_place(type val, type* srcDst, int32_t len, double scale) {            \
    if constexpr (std::is_unsigned_v<type> && op != ConstOp::kAddC)                                     \
      return scaled_const<op>(static_cast<const type*>(srcDst), val, srcDst, len, scale);               \
    else                                                                                                \
      return name(srcDst, val, srcDst, len, scale);                                                     \
  }
ZIVKS_SCALED_CONST(ZIVKS_AddC_8u_S, ZIVKS_AddC_8u_IS, uint8_t, ConstOp::kAddC)
ZIVKS_SCALED_CONST(ZIVKS_AddC_16u_S, ZIVKS_AddC_16u_IS, uint16_t, ConstOp::kAddC)
ZIVKS_SCALED_CONST(ZIVKS_AddC_16s_S, ZIVKS_AddC_16s_IS, int16_t, ConstOp::kAddC)
ZIVKS_SCALED_CONST(ZIVKS_AddC_32s_S, ZIVKS_AddC_32s_IS, int32_t, ConstOp::kAddC)
ZIVKS_SCALED_CONST(ZIVKS_SubC_8u_S, ZIVKS_SubC_8u_IS, uint8_t, ConstOp::kSubC)
ZIVKS_SCALED_CONST(ZIVKS_SubC_16u_S, ZIVKS_SubC_16u_IS, uint16_t, ConstOp::kSubC)
ZIVKS_SCALED_CONST(ZIVKS_SubC_16s_S, ZIVKS_SubC_16s_IS, int16_t, ConstOp::kSubC)
ZIVKS_SCALED_CONST(ZIVKS_SubC_32s_S, ZIVKS_SubC_32s_IS, int32_t, ConstOp::kSubC)
ZIVKS_SCALED_CONST(ZIVKS_SubCRev_8u_S, ZIVKS_SubCRev_8u_IS, uint8_t, ConstOp::kSubCRev)
ZIVKS_SCALED_CONST(ZIVKS_SubCRev_16u_S, ZIVKS_SubCRev_16u_IS, uint16_t, ConstOp::kSubCRev)
ZIVKS_SCALED_CONST(ZIVKS_SubCRev_16s_S, ZIVKS_SubCRev_16s_IS, int16_t, ConstOp::kSubCRev)
ZIVKS_SCALED_CONST(ZIVKS_SubCRev_32s_S, ZIVKS_SubCRev_32s_IS, int32_t, ConstOp::kSubCRev)
