// The folds of the extreme-value searches: whole 128-bit vectors folded into one by
// maximum or minimum, for searches whose answer cannot depend on the order, and the
// search for the first vector holding a value. Written once on the vector layer; each
// backend says in simd::fold_tuning how wide and how many accumulators it runs.
#pragma once

#include <type_traits>

#include "core/frame.h"

namespace zivks::extremes {

// What a fold keeps: the maximum or the minimum, of the elements or of their absolute
// values (which saturate for integers).
enum class Fold { kMax, kMin, kMaxAbs, kMinAbs };

// Absolute values: floats lose the sign bit (NaN too), integers saturate.
template <class V>
inline V abs_block(const V& v) {
  if constexpr (std::is_floating_point_v<typename V::lane>) return simd::clear_sign(v);
  else return simd::abs_sat(v);
}

namespace fold_detail {

template <Fold f, class V>
inline V view(const V& x) {
  if constexpr (f == Fold::kMaxAbs || f == Fold::kMinAbs) return abs_block(x);
  else return x;
}

// acc folded with x. The float picks leave a lane unspecified where a NaN or two zeros
// meet; the caller tests for NaN on its own and takes the sign of a zero as open.
template <Fold f, class V>
inline V pick(const V& acc, const V& x) {
  constexpr bool kMax = f == Fold::kMax || f == Fold::kMaxAbs;
  if constexpr (std::is_floating_point_v<typename V::lane>) return kMax ? simd::max_raw(x, acc) : simd::min_raw(x, acc);
  else return kMax ? simd::max(x, acc) : simd::min(x, acc);
}

// Whether the floats met so far were all numbers: a running AND of "x equals x", or
// nothing to keep for integers and where the picks keep a NaN once met.
template <class V>
struct nan_watch {
  static constexpr bool kOn =
      std::is_floating_point_v<typename V::lane> && !simd::fold_tuning::kRawKeepsNan;
  V ordered = simd::cmp_eq(simd::zeros<V>(), simd::zeros<V>());
  void see(const V& x) {
    if constexpr (kOn) ordered = simd::bit_and(ordered, simd::cmp_eq(x, x));
  }
  bool met() const { return kOn && simd::any_true(simd::bit_not(ordered)); }
};

// The 128-bit block j of v.
template <class T, int K>
inline simd::vec<T, 1> block_of(const simd::vec<T, K>& v, int j) {
  simd::vec<T, 1> b;
  memcpy(&b.raw, reinterpret_cast<const unsigned char*>(&v.raw) + 16 * j, 16);
  return b;
}

// Folds `count` vectors from p into out[k] for each fold of fs: C chains of registers of
// K blocks, then the chains and the blocks of each register into one, then the vectors
// left over one at a time. count is at least K.
template <int K, int C, class T, Fold... fs>
inline void run(const T* p, int64_t count, bool& nan, simd::vec<T, 1>* out) {
  using V = simd::vec<T, K>;
  using V1 = simd::vec<T, 1>;
  constexpr int kF = sizeof...(fs);
  constexpr int L = V1::kLanes;
  const V first = simd::load<V>(p);
  V acc[C][kF];
  for (int c = 0; c < C; ++c) {
    int k = 0;
    ((acc[c][k++] = view<fs>(first)), ...);
  }
  nan_watch<V> watch;
  int64_t i = 0;
  for (; i + int64_t{C} * K <= count; i += int64_t{C} * K)
    for (int c = 0; c < C; ++c) {
      const V x = simd::load<V>(p + (i + c * K) * L);
      watch.see(x);
      int k = 0;
      ((acc[c][k] = pick<fs>(acc[c][k], view<fs>(x)), ++k), ...);
    }
  for (; i + K <= count; i += K) {
    const V x = simd::load<V>(p + i * L);
    watch.see(x);
    int k = 0;
    ((acc[0][k] = pick<fs>(acc[0][k], view<fs>(x)), ++k), ...);
  }
  nan_watch<V1> watch1;
  {
    int k = 0;
    (([&] {
       for (int c = 1; c < C; ++c) acc[0][k] = pick<fs>(acc[0][k], acc[c][k]);
       V1 r = block_of(acc[0][k], 0);
       for (int j = 1; j < K; ++j) r = pick<fs>(r, block_of(acc[0][k], j));
       out[k++] = r;
     }()),
     ...);
  }
  for (; i < count; ++i) {
    const V1 x = simd::load<V1>(p + i * L);
    watch1.see(x);
    int k = 0;
    ((out[k] = pick<fs>(out[k], view<fs>(x)), ++k), ...);
  }
  nan |= watch.met() || watch1.met();
  if constexpr (simd::fold_tuning::kRawKeepsNan)
    for (int k = 0; k < kF; ++k) nan |= simd::has_nan(out[k]);
}

template <class T, Fold... fs>
inline void fold_all(const T* p, int64_t count, bool& nan, simd::vec<T, 1>* out) {
  using tune = simd::fold_tuning;
  if constexpr (tune::kBlocks > 1)
    if (count >= tune::kBlocks) return run<tune::kBlocks, tune::kChains, T, fs...>(p, count, nan, out);
  run<1, tune::kChains, T, fs...>(p, count, nan, out);
}

}  // namespace fold_detail

// Folds `count` whole 128-bit vectors from p into one vector by f (count at least 1):
// `nan` is set when a NaN was met, and then the lanes are unspecified; so is the sign of
// a zero that ties with the other zero.
template <Fold f, class T>
inline simd::vec<T, 1> fold(const T* p, int64_t count, bool& nan) {
  simd::vec<T, 1> r;
  fold_detail::fold_all<T, f>(p, count, nan, &r);
  return r;
}

// Both folds of the elements in one pass.
template <class T>
inline void fold_min_max(const T* p, int64_t count, simd::vec<T, 1>& mn, simd::vec<T, 1>& mx, bool& nan) {
  simd::vec<T, 1> r[2];
  fold_detail::fold_all<T, Fold::kMin, Fold::kMax>(p, count, nan, r);
  mn = r[0];
  mx = r[1];
}

// The first of `count` whole vectors from p that has a lane equal to x, after the view
// of the fold f (absolute values or not); -1 if none. The compare is ordered: NaN equals
// nothing, -0 equals +0.
template <Fold f, class T>
inline int64_t first_equal(const T* p, int64_t count, T x) {
  using V = simd::vec<T, 1>;
  const V xv = simd::splat<V>(x);
  for (int64_t i = 0; i < count; ++i)
    if (simd::any_true(simd::cmp_eq(fold_detail::view<f>(simd::load<V>(p + i * V::kLanes)), xv))) return i;
  return -1;
}

}  // namespace zivks::extremes
