// And, Or, Xor (of two arrays or of an array and a constant) and Not on unsigned 8-,
// 16- and 32-bit elements. The three operators share one loop to the last instruction:
// one 128-bit vector of each source per block, val broadcast before the loop, a
// streaming read hint on each source array, the remainder element by element. Block and
// remainder give the same bits, and each element is read before it is written, so dst
// may be either source.
#include "core/frame.h"
#include "core/operands.h"

namespace {

using namespace zivks;

enum class Op { kAnd, kOr, kXor, kNot };

template <Op op, class V>
inline V apply(const V& a, const V& b) {
  if constexpr (op == Op::kAnd) return simd::bit_and(a, b);
  else if constexpr (op == Op::kOr) return simd::bit_or(a, b);
  else if constexpr (op == Op::kXor) return simd::bit_xor(a, b);
  else return simd::bit_not(a);
}

template <Op op, class T>
inline T apply_scalar(T a, T b) {
  if constexpr (op == Op::kAnd) return static_cast<T>(a & b);
  else if constexpr (op == Op::kOr) return static_cast<T>(a | b);
  else if constexpr (op == Op::kXor) return static_cast<T>(a ^ b);
  else return static_cast<T>(~a);
}

// Read-hint distance in bytes: it doubles with the element width, and Not looks half as
// far ahead as the two-operand forms. Registers of several blocks hint once a stretch.
template <Op op, class T>
constexpr int kReadAheadBytes = (op == Op::kNot ? 256 : 512) * static_cast<int>(sizeof(T));
constexpr int kHintEveryBytes = 128;

template <Op op, class T>
using source = array_operand<T, kReadAheadBytes<op, T>, kHintEveryBytes>;

// The second operand of Not, which has none.
struct no_operand {
  template <class V>
  V vec(int64_t) const { return V{}; }
  int at(int64_t) const { return 0; }
};

// dst[i] = src[i] op second[i]. The result cannot depend on how blocks are grouped, so
// wider registers take several blocks at once.
template <Op op, class T, class Second>
void run(const T* src, const Second& second, T* dst, int32_t len) {
  const source<op, T> first{src};
  for_blocks<kVectorElems<T>>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<T, decltype(w)::value>;
        const V a = first.template vec<V>(i);
        simd::store(dst + i, apply<op>(a, second.template vec<V>(i)));
      },
      [&](int64_t i) { dst[i] = apply_scalar<op, T>(src[i], static_cast<T>(second.at(i))); });
}

template <Op op, class T>
ZIVKStatus arrays(const T* src1, const T* src2, T* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, dst)) return st;
  run<op>(src1, source<op, T>{src2}, dst, len);
  return ZIVK_STS_NO_ERR;
}

template <Op op, class T>
ZIVKStatus with_const(const T* src, T val, T* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  run<op>(src, const_operand<T>(val), dst, len);
  return ZIVK_STS_NO_ERR;
}

template <class T>
ZIVKStatus complement(const T* src, T* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  run<Op::kNot>(src, no_operand{}, dst, len);
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the exported function, its in-place form (which calls the twin), the
// operator, the element type.
#define ZIVKS_LOGIC_ARRAYS(name, name_in_place, op, type)                                    \
  ZIVKS_EXPORT ZIVKStatus name(const type* src1, const type* src2, type* dst, int32_t len) { \
    return arrays<Op::op>(src1, src2, dst, len);                                             \
  }                                                                                          \
  ZIVKS_IN_PLACE_OF_ARRAYS(name_in_place, name, type)
#define ZIVKS_LOGIC_CONST(name, name_in_place, op, type)                            \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, type val, type* dst, int32_t len) { \
    return with_const<Op::op>(src, val, dst, len);                                  \
  }                                                                                 \
  ZIVKS_IN_PLACE_OF_CONST(name_in_place, name, type)
ZIVKS_LOGIC_ARRAYS(ZIVKS_And_8u, ZIVKS_And_8u_I, kAnd, uint8_t)
ZIVKS_LOGIC_ARRAYS(ZIVKS_And_16u, ZIVKS_And_16u_I, kAnd, uint16_t)
ZIVKS_LOGIC_ARRAYS(ZIVKS_And_32u, ZIVKS_And_32u_I, kAnd, uint32_t)
ZIVKS_LOGIC_ARRAYS(ZIVKS_Or_8u, ZIVKS_Or_8u_I, kOr, uint8_t)
ZIVKS_LOGIC_ARRAYS(ZIVKS_Or_16u, ZIVKS_Or_16u_I, kOr, uint16_t)
ZIVKS_LOGIC_ARRAYS(ZIVKS_Or_32u, ZIVKS_Or_32u_I, kOr, uint32_t)
ZIVKS_LOGIC_ARRAYS(ZIVKS_Xor_8u, ZIVKS_Xor_8u_I, kXor, uint8_t)
ZIVKS_LOGIC_ARRAYS(ZIVKS_Xor_16u, ZIVKS_Xor_16u_I, kXor, uint16_t)
ZIVKS_LOGIC_ARRAYS(ZIVKS_Xor_32u, ZIVKS_Xor_32u_I, kXor, uint32_t)
ZIVKS_LOGIC_CONST(ZIVKS_AndC_8u, ZIVKS_AndC_8u_I, kAnd, uint8_t)
ZIVKS_LOGIC_CONST(ZIVKS_AndC_16u, ZIVKS_AndC_16u_I, kAnd, uint16_t)
ZIVKS_LOGIC_CONST(ZIVKS_AndC_32u, ZIVKS_AndC_32u_I, kAnd, uint32_t)
ZIVKS_LOGIC_CONST(ZIVKS_OrC_8u, ZIVKS_OrC_8u_I, kOr, uint8_t)
ZIVKS_LOGIC_CONST(ZIVKS_OrC_16u, ZIVKS_OrC_16u_I, kOr, uint16_t)
ZIVKS_LOGIC_CONST(ZIVKS_OrC_32u, ZIVKS_OrC_32u_I, kOr, uint32_t)
ZIVKS_LOGIC_CONST(ZIVKS_XorC_8u, ZIVKS_XorC_8u_I, kXor, uint8_t)
ZIVKS_LOGIC_CONST(ZIVKS_XorC_16u, ZIVKS_XorC_16u_I, kXor, uint16_t)
ZIVKS_LOGIC_CONST(ZIVKS_XorC_32u, ZIVKS_XorC_32u_I, kXor, uint32_t)

ZIVKS_EXPORT ZIVKStatus ZIVKS_Not_8u(const uint8_t* src, uint8_t* dst, int32_t len) { return complement(src, dst, len); }
ZIVKS_EXPORT ZIVKStatus ZIVKS_Not_16u(const uint16_t* src, uint16_t* dst, int32_t len) { return complement(src, dst, len); }
ZIVKS_EXPORT ZIVKStatus ZIVKS_Not_32u(const uint32_t* src, uint32_t* dst, int32_t len) { return complement(src, dst, len); }

// Only the 8-bit Not has an in-place form.
ZIVKS_IN_PLACE_OF_ONE(ZIVKS_Not_8u_I, ZIVKS_Not_8u, uint8_t)
