// Add, Sub, AddC, SubC and SubCRev on float32, float64 and their complex records: one
// IEEE operation per part, the NaN rule of core/fp.h, no fusing, no reassociation.
// A complex operation works on re and im apart, so every member is a map over parts.
#include "core/frame.h"

namespace {

using namespace zivks;

enum class Op { kAdd, kSub };

// Registers handled per loop step, and per NaN test, at the widest width: a pair, which
// the compiler still keeps in registers.
constexpr int kPair = 2;

// Arrays larger than the second cache level go through registers of at most two blocks
// (256 bits): where 512-bit operations are split in two halves (AMD Zen 4), these loops
// streamed from memory faster at 256 bits, while 512 bits did better from the caches.
constexpr int kNarrow = simd::kWide < 2 ? simd::kWide : 2;
constexpr int64_t kNarrowBytes = int64_t{1} << 20;

template <Op op, class V>
inline V apply(const V& a, const V& b) {
  if constexpr (op == Op::kAdd) return simd::add(a, b);
  else return simd::sub(a, b);
}

// The same, except that a NaN lane may not yet be the one the library gives.
template <Op op, class V>
inline V apply_raw(const V& a, const V& b) {
  if constexpr (op == Op::kAdd) return simd::add_raw(a, b);
  else return simd::sub_raw(a, b);
}

template <Op op, class P>
inline P apply_scalar(P a, P b) {
  if constexpr (op == Op::kAdd) return fp::add(a, b);
  else return fp::sub(a, b);
}

// An array operand, read by parts, with an optional read prefetch in bytes.
template <class E, int Prefetch = 0>
struct array_operand {
  using P = part_t<E>;
  const P* p;
  explicit array_operand(const E* a) : p(as_parts(a)) {}
  template <class V>
  V vec(int64_t part) const {
    if constexpr (Prefetch != 0) simd::prefetch_stream(p + part + Prefetch / sizeof(P));
    return simd::load<V>(p + part);
  }
  P at(int64_t part) const { return p[part]; }
};

// A constant operand: val across the vector, re and im alternating for complex values.
template <class E>
struct const_operand {
  using P = part_t<E>;
  simd::vec<P, 1> v1;
  simd::vec<P, kNarrow> vn;
  simd::vec<P, simd::kWide> vw;
  P part[parts<E>::count];
  explicit const_operand(const E& val)
      : v1(simd::repeat<simd::vec<P, 1>>(val)),
        vn(simd::repeat<simd::vec<P, kNarrow>>(val)),
        vw(simd::repeat<simd::vec<P, simd::kWide>>(val)) {
    memcpy(part, &val, sizeof part);
  }
  template <class V>
  V vec(int64_t) const {
    if constexpr (V::kBlocks == 1) return v1;
    else if constexpr (V::kBlocks == kNarrow) return vn;
    else return vw;
  }
  P at(int64_t i) const { return part[i % parts<E>::count]; }
};

// A step whose results held a NaN (rare): the one or two registers of the step again,
// from their operands, with the library's NaN rule, stored over the first results. The
// operands come by value, in registers, so the loop need not keep them in memory.
template <Op op, class P, class V>
[[gnu::cold, gnu::noinline]] void redo_step(P* d, V x0, V y0) {
  simd::store(d, apply<op>(x0, y0));
}
template <Op op, class P, class V>
[[gnu::cold, gnu::noinline]] void redo_step(P* d, V x0, V y0, V x1, V y1) {
  simd::store(d, apply<op>(x0, y0));
  simd::store(d + V::kLanes, apply<op>(x1, y1));
}

// dst = a op b over len elements of E, in blocks of B elements. Every block is loaded
// whole before it is stored, so dst may be either source. Each part is one operation of
// its own, so blocks may go through the loop in groups of any size.
template <Op op, int B, class E, class A, class C>
void map(const A& a_in, const C& b_in, E* dst, int32_t len) {
  using P = part_t<E>;
  constexpr int kParts = parts<E>::count;
  constexpr int kVecs = B * static_cast<int>(sizeof(E)) / 16;  // 128-bit vectors a block
  static_assert(kVecs >= 1 && kVecs <= 2, "a block fills one or two vectors");
  const A a = a_in;  // local copies: stores through dst cannot change them
  const C b = b_in;
  P* d = as_parts(dst);
  // One step: the blocks of group g from element i. Operands loaded, results stored,
  // and only then the NaN test, so the stores need not wait for it; every operand of
  // the step is loaded before any store, so dst may be a source.
  auto step = [&](int64_t i, auto g) {
    using V = simd::vec<P, decltype(g)::value>;
    constexpr int kN = decltype(g)::kCount * kVecs;  // registers in this step
    static_assert(kN <= 2, "a step is one or two registers");
    auto at = [&](int j) { return i * kParts + int64_t{j} * V::kLanes; };
    const V x0 = a.template vec<V>(at(0)), y0 = b.template vec<V>(at(0));
    if constexpr (kN == 1) {
      const V r0 = apply_raw<op>(x0, y0);
      simd::store(d + at(0), r0);
      if (__builtin_expect(simd::any_nan(r0), 0)) redo_step<op>(d + at(0), x0, y0);
    } else {
      const V x1 = a.template vec<V>(at(1)), y1 = b.template vec<V>(at(1));
      const V r0 = apply_raw<op>(x0, y0), r1 = apply_raw<op>(x1, y1);
      simd::store(d + at(0), r0);
      simd::store(d + at(1), r1);
      if (__builtin_expect(simd::any_nan(r0, r1), 0)) redo_step<op>(d + at(0), x0, y0, x1, y1);
    }
  };
  constexpr int kSteps = kVecs < kPair ? kPair / kVecs : 1;  // groups of blocks a step
  int64_t i;
  if (kNarrow < simd::kWide && int64_t{len} * static_cast<int64_t>(sizeof(E)) >= kNarrowBytes)
    i = for_whole_block_groups<B, kSteps, kNarrow>(len, step);
  else
    i = for_whole_block_groups<B, kSteps>(len, step);
  for (; i < len; ++i)
    for (int k = 0; k < kParts; ++k) {
      const int64_t at = i * kParts + k;
      d[at] = apply_scalar<op>(a.at(at), b.at(at));
    }
}

// One 128-bit vector a block, except AddC of 64fc, which takes two.
template <class E> constexpr int kBlock = 16 / sizeof(E);
template <class E> constexpr int kBlockAddC = kBlock<E>;
template <> constexpr int kBlockAddC<ZIVK64fc> = 2;

// Subtraction of 64fc prefetches: 2048 bytes ahead of both arrays, 4096 ahead of the
// one array of the constant forms.
template <class E> constexpr int kSubPrefetch = 0;
template <> constexpr int kSubPrefetch<ZIVK64fc> = 2048;
template <class E> constexpr int kSubCPrefetch = 0;
template <> constexpr int kSubCPrefetch<ZIVK64fc> = 4096;

// dst = src1 + src2
template <class E>
ZIVKStatus add(const E* src1, const E* src2, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, dst)) return st;
  map<Op::kAdd, kBlock<E>>(array_operand<E>(src1), array_operand<E>(src2), dst, len);
  return ZIVK_STS_NO_ERR;
}

// dst = src2 - src1: the first array is the subtrahend.
template <class E>
ZIVKStatus sub(const E* src1, const E* src2, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, dst)) return st;
  map<Op::kSub, kBlock<E>>(array_operand<E, kSubPrefetch<E>>(src2),
                           array_operand<E, kSubPrefetch<E>>(src1), dst, len);
  return ZIVK_STS_NO_ERR;
}

template <class E>
ZIVKStatus add_c(const E* src, E val, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  map<Op::kAdd, kBlockAddC<E>>(array_operand<E>(src), const_operand<E>(val), dst, len);
  return ZIVK_STS_NO_ERR;
}

template <class E>
ZIVKStatus sub_c(const E* src, E val, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  map<Op::kSub, kBlock<E>>(array_operand<E, kSubCPrefetch<E>>(src), const_operand<E>(val), dst, len);
  return ZIVK_STS_NO_ERR;
}

template <class E>
ZIVKStatus sub_c_rev(const E* src, E val, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  map<Op::kSub, kBlock<E>>(const_operand<E>(val), array_operand<E, kSubCPrefetch<E>>(src), dst, len);
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// The in-place forms call their twin with the pointer twice, except the 64fc ones that
// have a body of their own (same blocks, same result): Sub_64fc_I, AddC_64fc_I,
// SubC_64fc_I and SubCRev_64fc_I.
#define ZIVKS_FLOAT_ARRAYS(name, fn, code, type)                                                  \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_##name##_##code(const type* src1, const type* src2, type* dst,    \
                                                int32_t len) {                                    \
    return fn(src1, src2, dst, len);                                                              \
  }
#define ZIVKS_FLOAT_ARRAYS_I(name, code, type)                                                    \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_##name##_##code##_I(const type* src, type* srcDst, int32_t len) { \
    return ZIVKS_##name##_##code(src, srcDst, srcDst, len);                                       \
  }
#define ZIVKS_FLOAT_CONST(name, fn, code, type)                                                   \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_##name##_##code(const type* src, type val, type* dst,             \
                                                int32_t len) {                                    \
    return fn(src, val, dst, len);                                                                \
  }
#define ZIVKS_FLOAT_CONST_I(name, code, type)                                                     \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_##name##_##code##_I(type val, type* srcDst, int32_t len) {        \
    return ZIVKS_##name##_##code(srcDst, val, srcDst, len);                                       \
  }
#define ZIVKS_FLOAT_FAMILY(code, type)        \
  ZIVKS_FLOAT_ARRAYS(Add, add, code, type)    \
  ZIVKS_FLOAT_ARRAYS(Sub, sub, code, type)    \
  ZIVKS_FLOAT_CONST(AddC, add_c, code, type)  \
  ZIVKS_FLOAT_CONST(SubC, sub_c, code, type)  \
  ZIVKS_FLOAT_CONST(SubCRev, sub_c_rev, code, type)

ZIVKS_FLOAT_FAMILY(32f, float)
ZIVKS_FLOAT_FAMILY(64f, double)
ZIVKS_FLOAT_FAMILY(32fc, ZIVK32fc)
ZIVKS_FLOAT_FAMILY(64fc, ZIVK64fc)

ZIVKS_FLOAT_ARRAYS_I(Add, 32f, float)
ZIVKS_FLOAT_ARRAYS_I(Add, 64f, double)
ZIVKS_FLOAT_ARRAYS_I(Add, 32fc, ZIVK32fc)
ZIVKS_FLOAT_ARRAYS_I(Add, 64fc, ZIVK64fc)
ZIVKS_FLOAT_ARRAYS_I(Sub, 32f, float)
ZIVKS_FLOAT_ARRAYS_I(Sub, 64f, double)
ZIVKS_FLOAT_ARRAYS_I(Sub, 32fc, ZIVK32fc)
ZIVKS_FLOAT_CONST_I(AddC, 32f, float)
ZIVKS_FLOAT_CONST_I(AddC, 64f, double)
ZIVKS_FLOAT_CONST_I(AddC, 32fc, ZIVK32fc)
ZIVKS_FLOAT_CONST_I(SubC, 32f, float)
ZIVKS_FLOAT_CONST_I(SubC, 64f, double)
ZIVKS_FLOAT_CONST_I(SubC, 32fc, ZIVK32fc)
ZIVKS_FLOAT_CONST_I(SubCRev, 32f, float)
ZIVKS_FLOAT_CONST_I(SubCRev, 64f, double)
ZIVKS_FLOAT_CONST_I(SubCRev, 32fc, ZIVK32fc)

ZIVKS_EXPORT ZIVKStatus ZIVKS_Sub_64fc_I(const ZIVK64fc* src, ZIVK64fc* srcDst, int32_t len) {
  return sub(src, srcDst, srcDst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AddC_64fc_I(ZIVK64fc val, ZIVK64fc* srcDst, int32_t len) {
  return add_c(srcDst, val, srcDst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_SubC_64fc_I(ZIVK64fc val, ZIVK64fc* srcDst, int32_t len) {
  return sub_c(srcDst, val, srcDst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_SubCRev_64fc_I(ZIVK64fc val, ZIVK64fc* srcDst, int32_t len) {
  return sub_c_rev(srcDst, val, srcDst, len);
}
