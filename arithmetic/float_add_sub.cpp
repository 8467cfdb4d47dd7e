// Add, Sub, AddC, SubC and SubCRev on float32, float64 and their complex records: one
// IEEE operation per part, the NaN rule of core/fp.h, no fusing, no reassociation.
// A complex operation works on re and im apart, so every member is a map over parts.
#include "core/frame.h"
#include "core/operands.h"
#include "core/ops.h"

namespace {

using namespace zivks;

// Registers handled per loop step, and per NaN test, at the widest width: a pair, which
// the compiler still keeps in registers.
constexpr int kPair = 2;

// Arrays larger than the second cache level go through registers of at most two blocks
// (256 bits): where 512-bit operations are split in two halves (AMD Zen 4), these loops
// streamed from memory faster at 256 bits, while 512 bits did better from the caches.
constexpr int kNarrow = simd::kWide < 2 ? simd::kWide : 2;
constexpr int64_t kNarrowFromBytes = int64_t{1} << 20;

template <AddSub op, class V>
inline V apply(const V& a, const V& b) {
  if constexpr (op == AddSub::kAdd) return simd::add(a, b);
  else return simd::sub(a, b);
}

// The same, except that a NaN lane may not yet be the one the library gives.
template <AddSub op, class V>
inline V apply_raw(const V& a, const V& b) {
  if constexpr (op == AddSub::kAdd) return simd::add_raw(a, b);
  else return simd::sub_raw(a, b);
}

template <AddSub op, class P>
inline P apply_scalar(P a, P b) {
  if constexpr (op == AddSub::kAdd) return fp::add(a, b);
  else return fp::sub(a, b);
}

// An array operand read by parts (a complex record is re then im), with a read hint
// kAheadBytes ahead (none when 0). A constant operand is a const_operand<E>.
template <class E, int kAheadBytes = 0>
inline array_operand<part_t<E>, kAheadBytes> parts_of(const E* a) {
  return {as_parts(a)};
}

// A step whose results held a NaN (rare): the one or two registers of the step again,
// from their operands, with the library's NaN rule, stored over the first results. The
// operands come by value, in registers, so the loop need not keep them in memory.
template <AddSub op, class P, class V>
[[gnu::cold, gnu::noinline]] void redo_step(P* d, V x0, V y0) {
  simd::store(d, apply<op>(x0, y0));
}
template <AddSub op, class P, class V>
[[gnu::cold, gnu::noinline]] void redo_step(P* d, V x0, V y0, V x1, V y1) {
  simd::store(d, apply<op>(x0, y0));
  simd::store(d + V::kLanes, apply<op>(x1, y1));
}

// dst = a op b over len elements of E, in blocks of B elements. Every block is loaded
// whole before it is stored, so dst may be either source. Each part is one operation of
// its own, so blocks may go through the loop in groups of any size.
template <AddSub op, int B, class E, class A, class C>
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
  if (kNarrow < simd::kWide && int64_t{len} * static_cast<int64_t>(sizeof(E)) >= kNarrowFromBytes)
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
template <class E> constexpr int kBlockAddC = kVectorElems<E>;
template <> constexpr int kBlockAddC<ZIVK64fc> = 2;

// Subtraction of 64fc hints its reads: 2048 bytes ahead of both arrays, 4096 ahead of
// the one array of the constant forms. The other members send no hints.
template <class E> constexpr int kSubReadAheadBytes = 0;
template <> constexpr int kSubReadAheadBytes<ZIVK64fc> = 2048;
template <class E> constexpr int kSubCReadAheadBytes = 0;
template <> constexpr int kSubCReadAheadBytes<ZIVK64fc> = 4096;

// dst = src1 + src2
template <class E>
ZIVKStatus add(const E* src1, const E* src2, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, dst)) return st;
  map<AddSub::kAdd, kVectorElems<E>>(parts_of(src1), parts_of(src2), dst, len);
  return ZIVK_STS_NO_ERR;
}

// dst = src2 - src1: the first array is the subtrahend.
template <class E>
ZIVKStatus sub(const E* src1, const E* src2, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, dst)) return st;
  map<AddSub::kSub, kVectorElems<E>>(parts_of<E, kSubReadAheadBytes<E>>(src2),
                               parts_of<E, kSubReadAheadBytes<E>>(src1), dst, len);
  return ZIVK_STS_NO_ERR;
}

template <class E>
ZIVKStatus add_c(const E* src, E val, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  map<AddSub::kAdd, kBlockAddC<E>>(parts_of(src), const_operand<E>(val), dst, len);
  return ZIVK_STS_NO_ERR;
}

template <class E>
ZIVKStatus sub_c(const E* src, E val, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  map<AddSub::kSub, kVectorElems<E>>(parts_of<E, kSubCReadAheadBytes<E>>(src), const_operand<E>(val), dst, len);
  return ZIVK_STS_NO_ERR;
}

template <class E>
ZIVKStatus sub_c_rev(const E* src, E val, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  map<AddSub::kSub, kVectorElems<E>>(const_operand<E>(val), parts_of<E, kSubCReadAheadBytes<E>>(src), dst, len);
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the exported function, its in-place form (which calls the twin), the body,
// the element type.
#define ZIVKS_FLOAT_ARRAYS(name, name_in_place, fn, type)                                    \
  ZIVKS_EXPORT ZIVKStatus name(const type* src1, const type* src2, type* dst, int32_t len) { \
    return fn(src1, src2, dst, len);                                                         \
  }                                                                                          \
  ZIVKS_IN_PLACE_OF_ARRAYS(name_in_place, name, type)
#define ZIVKS_FLOAT_CONST(name, name_in_place, fn, type)                            \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, type val, type* dst, int32_t len) { \
    return fn(src, val, dst, len);                                                  \
  }                                                                                 \
  ZIVKS_IN_PLACE_OF_CONST(name_in_place, name, type)

ZIVKS_FLOAT_ARRAYS(ZIVKS_Add_32f, ZIVKS_Add_32f_I, add, float)
ZIVKS_FLOAT_ARRAYS(ZIVKS_Add_64f, ZIVKS_Add_64f_I, add, double)
ZIVKS_FLOAT_ARRAYS(ZIVKS_Add_32fc, ZIVKS_Add_32fc_I, add, ZIVK32fc)
ZIVKS_FLOAT_ARRAYS(ZIVKS_Add_64fc, ZIVKS_Add_64fc_I, add, ZIVK64fc)
ZIVKS_FLOAT_ARRAYS(ZIVKS_Sub_32f, ZIVKS_Sub_32f_I, sub, float)
ZIVKS_FLOAT_ARRAYS(ZIVKS_Sub_64f, ZIVKS_Sub_64f_I, sub, double)
ZIVKS_FLOAT_ARRAYS(ZIVKS_Sub_32fc, ZIVKS_Sub_32fc_I, sub, ZIVK32fc)
ZIVKS_FLOAT_ARRAYS(ZIVKS_Sub_64fc, ZIVKS_Sub_64fc_I, sub, ZIVK64fc)
ZIVKS_FLOAT_CONST(ZIVKS_AddC_32f, ZIVKS_AddC_32f_I, add_c, float)
ZIVKS_FLOAT_CONST(ZIVKS_AddC_64f, ZIVKS_AddC_64f_I, add_c, double)
ZIVKS_FLOAT_CONST(ZIVKS_AddC_32fc, ZIVKS_AddC_32fc_I, add_c, ZIVK32fc)
ZIVKS_FLOAT_CONST(ZIVKS_AddC_64fc, ZIVKS_AddC_64fc_I, add_c, ZIVK64fc)
ZIVKS_FLOAT_CONST(ZIVKS_SubC_32f, ZIVKS_SubC_32f_I, sub_c, float)
ZIVKS_FLOAT_CONST(ZIVKS_SubC_64f, ZIVKS_SubC_64f_I, sub_c, double)
ZIVKS_FLOAT_CONST(ZIVKS_SubC_32fc, ZIVKS_SubC_32fc_I, sub_c, ZIVK32fc)
ZIVKS_FLOAT_CONST(ZIVKS_SubC_64fc, ZIVKS_SubC_64fc_I, sub_c, ZIVK64fc)
ZIVKS_FLOAT_CONST(ZIVKS_SubCRev_32f, ZIVKS_SubCRev_32f_I, sub_c_rev, float)
ZIVKS_FLOAT_CONST(ZIVKS_SubCRev_64f, ZIVKS_SubCRev_64f_I, sub_c_rev, double)
ZIVKS_FLOAT_CONST(ZIVKS_SubCRev_32fc, ZIVKS_SubCRev_32fc_I, sub_c_rev, ZIVK32fc)
ZIVKS_FLOAT_CONST(ZIVKS_SubCRev_64fc, ZIVKS_SubCRev_64fc_I, sub_c_rev, ZIVK64fc)
