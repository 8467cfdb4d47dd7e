// Add, Sub, AddC, SubC and SubCRev of complex integers (16sc, 32sc) with a scale: each
// part by itself, r = saturate(round(x * M)), as a real operation on 2 * len parts with
// the constant's re going with re parts and its im with im parts. The family is uneven,
// and each member's table below says how:
//   Sub multiplies for every scale, also at e = 0 and for e > 0.
//   SubC and SubCRev of 16sc have a saturating path at e = 0 and multiply otherwise.
//   Add widens before shifting left for e > 0; AddC saturates first, then shifts.
//   Only the 32sc SubC and SubCRev shift in their tails too; the other tails multiply.
// Blocks are in complex elements.
#include "arithmetic/scaled.h"

namespace {

using namespace zivks;
using namespace zivks::scaled;
using lane::RightShift;

enum class ComplexOp { kAdd, kSub, kAddC, kSubC, kSubCRev };

template <class UpPath, class ZeroPath, class DownPath>
struct table {
  using Up = UpPath;
  using Zero = ZeroPath;
  using Down = DownPath;
};

template <ComplexOp c, class E>
struct member;

template <>
struct member<ComplexOp::kAdd, ZIVK16sc> : table<multiply<2>, saturate<4, RightShift::kRound>, widened_shift<8>> {};
// A block of one element is two parts, and 2 * len parts leave no tail.
template <>
struct member<ComplexOp::kAdd, ZIVK32sc> : table<multiply<1>, saturate<2, RightShift::kRound>, widened_shift<2>> {};
template <>
struct member<ComplexOp::kSub, ZIVK16sc> : table<multiply<8, 1024, 1024>, multiply<8, 1024, 1024>, multiply<8, 1024, 1024>> {};
template <>
struct member<ComplexOp::kSub, ZIVK32sc> : table<multiply<8, 2048, 2048>, multiply<8, 2048, 2048>, multiply<8, 2048, 2048>> {};
template <>
struct member<ComplexOp::kAddC, ZIVK16sc>
    : table<multiply<8>, saturate<16, RightShift::kTruncate>, saturate<16, RightShift::kTruncate>> {};
template <>
struct member<ComplexOp::kAddC, ZIVK32sc>
    : table<multiply<8, 2048, 1024>, saturate<4, RightShift::kTruncate>, saturate<8, RightShift::kTruncate>> {};
template <ComplexOp c>
struct member<c, ZIVK16sc> : table<multiply<8>, saturate<8, RightShift::kRound>, multiply<8>> {};
template <ComplexOp c>
struct member<c, ZIVK32sc>
    : table<multiply<4>, saturate<2, RightShift::kRound, TailScale::kShift>,
            saturate<2, RightShift::kRound, TailScale::kShift>> {};

template <ComplexOp c, class E, class A, class B>
inline ZIVKStatus run(const Checked& k, const A& a, const B& b, E* dst, int32_t len) {
  if (k.st) return k.st;
  constexpr Op op = c == ComplexOp::kAdd || c == ComplexOp::kAddC ? Op::kAdd : Op::kSub;
  run_paths<member<c, E>, op, E>(a, b, as_parts(dst), len, k.e);
  return ZIVK_STS_NO_ERR;
}

// Two arrays: src1 + src2, or src2 - src1.
template <ComplexOp c, class E>
ZIVKStatus scaled_complex(const E* src1, const E* src2, E* dst, int32_t len, double scale) {
  const Checked k = check(len, scale, src1, src2, dst);
  const array_operand<part_t<E>> a{as_parts(src1)}, b{as_parts(src2)};
  if constexpr (c == ComplexOp::kAdd) return run<c>(k, a, b, dst, len);
  else return run<c>(k, b, a, dst, len);
}

// An array and a constant: src + val, src - val, or val - src.
template <ComplexOp c, class E>
ZIVKStatus scaled_complex_const(const E* src, E val, E* dst, int32_t len, double scale) {
  const Checked k = check(len, scale, src, dst);
  const array_operand<part_t<E>> a{as_parts(src)};
  const const_operand<E> v(val);
  if constexpr (c == ComplexOp::kSubCRev) return run<c>(k, v, a, dst, len);
  else return run<c>(k, a, v, dst, len);
}

}  // namespace

// Each row: the exported function, its in-place form, the element type, the operation.
// The in-place forms of Sub, SubC and SubCRev have bodies of their own with the same
// paths; those of Add and AddC call their twin.
#define ZIVKS_SCALED_COMPLEX(name, name_in_place, type, op)                                                 \
  ZIVKS_EXPORT ZIVKStatus name(const type* src1, const type* src2, type* dst, int32_t len, double scale) { \
    return scaled_complex<op>(src1, src2, dst, len, scale);                                               \
  }                                                                                                       \
  ZIVKS_EXPORT ZIVKStatus name_in_place(const type* src, type* srcDst, int32_t len, double scale) {       \
    if constexpr (op == ComplexOp::kSub)                                                                  \
      return scaled_complex<op>(src, static_cast<const type*>(srcDst), srcDst, len, scale);               \
    else                                                                                                  \
      return name(src, srcDst, srcDst, len, scale);                                                       \
  }
#define ZIVKS_SCALED_COMPLEX_CONST(name, name_in_place, type, op)                                 \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, type val, type* dst, int32_t len, double scale) { \
    return scaled_complex_const<op>(src, val, dst, len, scale);                                 \
  }                                                                                             \
  ZIVKS_EXPORT ZIVKStatus name_in_place(type val, type* srcDst, int32_t len, double scale) {      \
    if constexpr (op != ComplexOp::kAddC)                                                       \
      return scaled_complex_const<op>(static_cast<const type*>(srcDst), val, srcDst, len, scale); \
    else                                                                                        \
      return name(srcDst, val, srcDst, len, scale);                                             \
  }
ZIVKS_SCALED_COMPLEX(ZIVKS_Add_16sc_S, ZIVKS_Add_16sc_IS, ZIVK16sc, ComplexOp::kAdd)
ZIVKS_SCALED_COMPLEX(ZIVKS_Add_32sc_S, ZIVKS_Add_32sc_IS, ZIVK32sc, ComplexOp::kAdd)
ZIVKS_SCALED_COMPLEX(ZIVKS_Sub_16sc_S, ZIVKS_Sub_16sc_IS, ZIVK16sc, ComplexOp::kSub)
ZIVKS_SCALED_COMPLEX(ZIVKS_Sub_32sc_S, ZIVKS_Sub_32sc_IS, ZIVK32sc, ComplexOp::kSub)
ZIVKS_SCALED_COMPLEX_CONST(ZIVKS_AddC_16sc_S, ZIVKS_AddC_16sc_IS, ZIVK16sc, ComplexOp::kAddC)
ZIVKS_SCALED_COMPLEX_CONST(ZIVKS_AddC_32sc_S, ZIVKS_AddC_32sc_IS, ZIVK32sc, ComplexOp::kAddC)
ZIVKS_SCALED_COMPLEX_CONST(ZIVKS_SubC_16sc_S, ZIVKS_SubC_16sc_IS, ZIVK16sc, ComplexOp::kSubC)
ZIVKS_SCALED_COMPLEX_CONST(ZIVKS_SubC_32sc_S, ZIVKS_SubC_32sc_IS, ZIVK32sc, ComplexOp::kSubC)
ZIVKS_SCALED_COMPLEX_CONST(ZIVKS_SubCRev_16sc_S, ZIVKS_SubCRev_16sc_IS, ZIVK16sc, ComplexOp::kSubCRev)
ZIVKS_SCALED_COMPLEX_CONST(ZIVKS_SubCRev_32sc_S, ZIVKS_SubCRev_32sc_IS, ZIVK32sc, ComplexOp::kSubCRev)
