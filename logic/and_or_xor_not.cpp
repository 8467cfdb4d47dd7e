// And, Or, Xor (of two arrays or of an array and a constant) and Not on unsigned 8-,
// 16- and 32-bit elements. The three operators share one loop to the last instruction:
// one 128-bit vector of each source per block, val broadcast before the loop, a
// streaming prefetch on each source array, the remainder element by element. Block and
// remainder give the same bits, and each element is read before it is written, so dst
// may be either source.
#include "core/frame.h"

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

// Prefetch distance in bytes: it doubles with the element width, and Not looks half as
// far ahead as the two-operand forms.
template <Op op, class T>
constexpr int kPrefetch = (op == Op::kNot ? 256 : 512) * static_cast<int>(sizeof(T));

// The read hint of one block at `Prefetch` bytes ahead. Where wide registers take K
// blocks at once, one hint per 128 bytes is enough: the stream is sequential, and more
// hints only take load slots from the loads themselves.
template <int K, int Prefetch, class T>
inline void hint(const T* p, int64_t i) {
  const auto* b = reinterpret_cast<const uint8_t*>(p + i);
  if constexpr (K == 1) {
    simd::prefetch_stream(b + Prefetch);
  } else {
    if ((i * static_cast<int64_t>(sizeof(T))) % 128 == 0) simd::prefetch_stream(b + Prefetch);
  }
}

// The second operand: another array (prefetched like the first), a constant, or none.
template <class T, int Prefetch>
struct array_operand {
  const T* p;
  template <class V>
  V vec(int64_t i) const {
    hint<V::kBlocks, Prefetch>(p, i);
    return simd::load<V>(p + i);
  }
  T at(int64_t i) const { return p[i]; }
};

template <class T>
struct const_operand {
  T val;
  simd::vec<T, 1> v1 = simd::splat<simd::vec<T, 1>>(val);
  simd::vec<T, simd::kWide> vw = simd::splat<simd::vec<T, simd::kWide>>(val);
  template <class V>
  V vec(int64_t) const {
    if constexpr (V::kBlocks == 1) return v1;
    else return vw;
  }
  T at(int64_t) const { return val; }
};

struct no_operand {
  template <class V>
  V vec(int64_t) const { return V{}; }
  int at(int64_t) const { return 0; }
};

// dst[i] = src[i] op second[i]. The result cannot depend on how blocks are grouped, so
// wider registers take several blocks at once.
template <Op op, class T, class Second>
void run(const T* src, const Second& second, T* dst, int32_t len) {
  constexpr int kPf = kPrefetch<op, T>;
  for_blocks<16 / sizeof(T)>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<T, decltype(w)::value>;
        hint<V::kBlocks, kPf>(src, i);
        const V a = simd::load<V>(src + i);
        simd::store(dst + i, apply<op>(a, second.template vec<V>(i)));
      },
      [&](int64_t i) { dst[i] = apply_scalar<op, T>(src[i], static_cast<T>(second.at(i))); });
}

template <Op op, class T>
ZIVKStatus arrays(const T* src1, const T* src2, T* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, dst)) return st;
  run<op>(src1, array_operand<T, kPrefetch<op, T>>{src2}, dst, len);
  return ZIVK_STS_NO_ERR;
}

template <Op op, class T>
ZIVKStatus with_const(const T* src, T val, T* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  run<op>(src, const_operand<T>{val}, dst, len);
  return ZIVK_STS_NO_ERR;
}

template <class T>
ZIVKStatus complement(const T* src, T* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  run<Op::kNot>(src, no_operand{}, dst, len);
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// The in-place forms call their twin with the pointer twice and make no check of their own.
#define ZIVKS_LOGIC(name, op, code, type)                                                          \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_##name##_##code(const type* src1, const type* src2, type* dst,     \
                                                int32_t len) {                                     \
    return arrays<Op::op>(src1, src2, dst, len);                                                   \
  }                                                                                                \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_##name##_##code##_I(const type* src, type* srcDst, int32_t len) {  \
    return ZIVKS_##name##_##code(src, srcDst, srcDst, len);                                        \
  }                                                                                                \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_##name##C_##code(const type* src, type val, type* dst,             \
                                                 int32_t len) {                                    \
    return with_const<Op::op>(src, val, dst, len);                                                 \
  }                                                                                                \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_##name##C_##code##_I(type val, type* srcDst, int32_t len) {        \
    return ZIVKS_##name##C_##code(srcDst, val, srcDst, len);                                       \
  }
#define ZIVKS_LOGIC_WIDTH(code, type) \
  ZIVKS_LOGIC(And, kAnd, code, type)  \
  ZIVKS_LOGIC(Or, kOr, code, type)    \
  ZIVKS_LOGIC(Xor, kXor, code, type)  \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_Not_##code(const type* src, type* dst, int32_t len) { return complement(src, dst, len); }

ZIVKS_LOGIC_WIDTH(8u, uint8_t)
ZIVKS_LOGIC_WIDTH(16u, uint16_t)
ZIVKS_LOGIC_WIDTH(32u, uint32_t)

// Only the 8-bit Not has an in-place form.
ZIVKS_EXPORT ZIVKStatus ZIVKS_Not_8u_I(uint8_t* srcDst, int32_t len) {
  return ZIVKS_Not_8u(srcDst, srcDst, len);
}
