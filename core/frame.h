// The shape every exported function shares: checks in a fixed order, then whole
// blocks in ascending order, then a scalar tail. Family files hold only what is
// particular to them.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include "zivks.h"
#include "core/simd/simd.h"

// Marks a definition as one of the exported names.
#define ZIVKS_EXPORT extern "C" ZIVKS_API

// In-place forms that are their twin `name` with srcDst in two roles and no check of
// their own: the second source and dst of a two-array form, the source and dst of an
// array-and-constant form, or the source and dst of a one-array form.
#define ZIVKS_IN_PLACE_OF_ARRAYS(name_in_place, name, type)                           \
  ZIVKS_EXPORT ZIVKStatus name_in_place(const type* src, type* srcDst, int32_t len) { \
    return name(src, srcDst, srcDst, len);                                            \
  }
#define ZIVKS_IN_PLACE_OF_CONST(name_in_place, name, type)                  \
  ZIVKS_EXPORT ZIVKStatus name_in_place(type val, type* srcDst, int32_t len) { \
    return name(srcDst, val, srcDst, len);                                  \
  }
#define ZIVKS_IN_PLACE_OF_ONE(name_in_place, name, type)          \
  ZIVKS_EXPORT ZIVKStatus name_in_place(type* srcDst, int32_t len) { \
    return name(srcDst, srcDst, len);                             \
  }

namespace zivks {

// Elements of E in one 128-bit vector: the block of the members that take one vector of
// elements a block.
template <class E>
inline constexpr int kVectorElems = 16 / static_cast<int>(sizeof(E));

template <class... P>
inline bool any_null(const P*... p) {
  return ((p == nullptr) || ...);
}

// Pointers first, then the length; the family's own checks come after this.
template <class... P>
inline ZIVKStatus check_ptrs_len(int32_t len, const P*... p) {
  if (any_null(p...)) return ZIVK_STS_NULL_PTR_ERR;
  if (len < 1) return ZIVK_STS_SIZE_ERR;
  return ZIVK_STS_NO_ERR;
}

// Index of the first element after the whole blocks of B elements.
template <int B>
inline int64_t block_end(int64_t len) {
  static_assert(B > 0 && (B & (B - 1)) == 0, "block sizes are powers of two");
  return len & ~static_cast<int64_t>(B - 1);
}

// Runs block(i, simd::width<K>) over the whole blocks of B elements in ascending
// order, K blocks at a time where the build's registers hold several blocks (the
// caller promises that its result cannot depend on how blocks are grouped), and
// returns the index of the first element left for the tail.
template <int B, class Block>
inline int64_t for_whole_blocks(int64_t len, Block&& block) {
  const int64_t n = block_end<B>(len);
  int64_t i = 0;
  if constexpr (simd::kWide > 1) {
    for (; i + int64_t{B} * simd::kWide <= n; i += int64_t{B} * simd::kWide)
      block(i, simd::width<simd::kWide>{});
  }
  for (; i < n; i += B) block(i, simd::width<1>{});
  return n;
}

// Whole blocks as above, then tail(i) for each remaining element in ascending order.
template <int B, class Block, class Tail>
inline void for_blocks(int64_t len, Block&& block, Tail&& tail) {
  for (int64_t i = for_whole_blocks<B>(len, block); i < len; ++i) tail(i);
}

// Whole blocks of B elements in ascending order, handed out in groups: block(i, g) with
// g a simd::width<K, N> handles the N * K blocks from element i as N registers of K
// blocks each. The widest registers go N at a time, then one at a time, then single
// blocks, so a body can test or fix several registers at once (the caller promises that
// its result cannot depend on how blocks are grouped). Returns the index of the first
// element left for the tail.
// K, the widest registers used, is the build's widest unless the caller asks for less.
template <int B, int N, int K = simd::kWide, class Block>
inline int64_t for_whole_block_groups(int64_t len, Block&& block) {
  static_assert(K >= 1 && K <= simd::kWide, "registers the build has");
  const int64_t n = block_end<B>(len);
  constexpr int64_t kStep = int64_t{B} * K;
  int64_t i = 0;
  for (; i + kStep * N <= n; i += kStep * N) block(i, simd::width<K, N>{});
  if constexpr (N > 1) {
    for (; i + kStep <= n; i += kStep) block(i, simd::width<K>{});
  }
  if constexpr (K > 1) {
    for (; i < n; i += B) block(i, simd::width<1>{});
  }
  return n;
}

// Groups of whole blocks as above, then tail(i) for each remaining element in order.
template <int B, int N, int K = simd::kWide, class Block, class Tail>
inline void for_block_groups(int64_t len, Block&& block, Tail&& tail) {
  for (int64_t i = for_whole_block_groups<B, N, K>(len, block); i < len; ++i) tail(i);
}

// Runs block(i, simd::width<1>) over the whole blocks of B elements in ascending order,
// one 128-bit register each even where the build has wider ones, then tail(i) for each
// remaining element in order. For loops that keep state across blocks in a register of
// one block (a running count or sum), or whose result would depend on how blocks are
// grouped.
template <int B, class Block, class Tail>
inline void for_single_blocks(int64_t len, Block&& block, Tail&& tail) {
  const int64_t n = block_end<B>(len);
  int64_t i = 0;
  for (; i < n; i += B) block(i, simd::width<1>{});
  for (; i < len; ++i) tail(i);
}

// Whole blocks of B elements whose results are made in lanes twice as wide as To and
// narrow with saturation: result(i, w) gives the wide lanes of the register of w blocks
// from element i. The blocks go in pairs of registers where they can, so that one
// narrowing fills a whole register; otherwise it fills half of one. Then the tail.
template <int B, class To, class Result, class Tail>
inline void narrowing_blocks(int64_t len, To* dst, Result&& result, Tail&& tail) {
  for_block_groups<B, 2>(
      len,
      [&](int64_t i, auto g) {
        constexpr int K = decltype(g)::value;
        const auto r0 = result(i, simd::width<K>{});
        if constexpr (decltype(g)::kCount == 2) {
          simd::store(dst + i, simd::narrow_sat<To>(r0, result(i + int64_t{B} * K, simd::width<K>{})));
        } else {
          simd::store_lo(dst + i, simd::narrow_sat<To>(r0, r0));
        }
      },
      tail);
}

// Element type of an array of complex records seen as parts.
template <class E> struct parts { using type = E; static constexpr int count = 1; };
template <> struct parts<ZIVK16sc> { using type = int16_t; static constexpr int count = 2; };
template <> struct parts<ZIVK32sc> { using type = int32_t; static constexpr int count = 2; };
template <> struct parts<ZIVK64sc> { using type = int64_t; static constexpr int count = 2; };
template <> struct parts<ZIVK32fc> { using type = float; static constexpr int count = 2; };
template <> struct parts<ZIVK64fc> { using type = double; static constexpr int count = 2; };
template <class E> using part_t = typename parts<E>::type;

// An array of elements seen as its parts (a complex record is re then im).
template <class E>
inline part_t<E>* as_parts(E* p) { return reinterpret_cast<part_t<E>*>(p); }
template <class E>
inline const part_t<E>* as_parts(const E* p) { return reinterpret_cast<const part_t<E>*>(p); }

}  // namespace zivks
