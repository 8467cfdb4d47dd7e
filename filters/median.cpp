// The causal median filter: dst[i] is the middle of the m samples that end at src[i],
// the samples before src[0] taken from a delay line (or copies of src[0]). Masks 3, 5,
// 7 and 9 run an exchange network over whole vectors of outputs; the first m - 1
// outputs, the last ones and every output of the other masks sort their window in the
// handle with the library's own sort.
#include <stddef.h>
#include <stdint.h>

#include <algorithm>
#include <type_traits>
#include <utility>

#include "core/frame.h"
#include "core/handles.h"

namespace {

using namespace zivks;

// ---- Element types

// The exported functions a member is built on.
template <class T>
struct Calls {
  ZIVKStatus (*sort)(T* srcDst, int32_t len);
  ZIVKStatus (*copy)(const T* src, T* dst, int32_t len);
  ZIVKStatus (*set)(T val, T* dst, int32_t len);
  T* (*malloc)(int32_t len);
  ZIVKStatus (*filter)(const T* src, T* dst, int32_t len, int32_t maskLen, const T* dlySrc, T* dlyDst,
                       ZIVKFilterMedianPolicy* policy);
};

template <class T>
inline constexpr Calls<T> kCalls{};
template <>
inline constexpr Calls<uint8_t> kCalls<uint8_t>{ZIVKS_SortAscend_8u_I, ZIVKS_Copy_8u, ZIVKS_Set_8u,
                                                ZIVKS_Malloc_8u, ZIVKS_FilterMedian_8u};
template <>
inline constexpr Calls<int16_t> kCalls<int16_t>{ZIVKS_SortAscend_16s_I, ZIVKS_Copy_16s, ZIVKS_Set_16s,
                                                ZIVKS_Malloc_16s, ZIVKS_FilterMedian_16s};
template <>
inline constexpr Calls<int32_t> kCalls<int32_t>{ZIVKS_SortAscend_32s_I, ZIVKS_Copy_32s, ZIVKS_Set_32s,
                                                ZIVKS_Malloc_32s, ZIVKS_FilterMedian_32s};
template <>
inline constexpr Calls<float> kCalls<float>{ZIVKS_SortAscend_32f_I, ZIVKS_Copy_32f, ZIVKS_Set_32f,
                                            ZIVKS_Malloc_32f, ZIVKS_FilterMedian_32f};
template <>
inline constexpr Calls<double> kCalls<double>{ZIVKS_SortAscend_64f_I, ZIVKS_Copy_64f, ZIVKS_Set_64f,
                                              ZIVKS_Malloc_64f, ZIVKS_FilterMedian_64f};

// The element types a handle is made for.
constexpr handles::DataTypes kMedianTypes{ZIVK_DT_8U, ZIVK_DT_16S, ZIVK_DT_32S, ZIVK_DT_32F, ZIVK_DT_64F};

// The largest handle in bytes, and so the mask length Init refuses from: this many bytes
// divided by the element size, so that the rounded byte count stays a positive int32.
constexpr int32_t kMaskLimitBytes = 2147483632;

// Where the vector pass hints the next reads: this many elements past the start of src,
// the same address all along.
constexpr uintptr_t kReadHintElems = 256;

// The effective mask: maskLen made odd by taking one off an even one.
inline int32_t odd_mask(int32_t maskLen) { return maskLen % 2 == 0 ? maskLen - 1 : maskLen; }

// ---- Sorted outputs

// The window of an output copied into the handle and sorted there.
template <class T>
struct Window {
  const T* src;
  const T* dly;  // m - 1 samples before src[0], or null for copies of src[0]
  T* buf;        // the handle: room for m elements
  int32_t m;

  // Element m / 2 of the sorted x[i - m + 1] .. x[i]. The statuses of the calls cannot
  // be errors here, but for the refused set of no elements, which does nothing anyway.
  T median(int32_t i) const {
    const Calls<T>& c = kCalls<T>;
    const int32_t before = m - 1 - i;  // window places in front of src[0]
    if (before > 0) {
      if (dly != nullptr) c.copy(dly + i, buf, before);
      else c.set(src[0], buf, before);
      c.copy(src, buf + before, i + 1);
    } else {
      c.copy(src + i - m + 1, buf, m);
    }
    c.sort(buf, m);
    return buf[m / 2];
  }
};

// ---- Median networks

// One step of a network: node M + (its index) is the larger (max) or the smaller of
// nodes a and b. Nodes 0 .. M - 1 are the inputs, the vectors loaded from src + k + j.
struct Step {
  bool max;
  int a, b;
};

template <int M>
struct Network {
  Step steps[M * (M - 1)];
  int count;   // steps used
  int median;  // the node that holds the result
};

// The insertion network of M inputs: each input enters the sorted list at its low end
// and rises through exchanges, taking the list element as the first operand and the
// rising value as the second; every step whose result cannot reach the middle of the
// list is left out.
template <int M>
constexpr Network<M> insertion_median() {
  constexpr int kAll = M * (M - 1);
  Step all[kAll] = {};
  int list[M] = {};  // the sorted list as nodes, smallest first
  int n = 0;
  for (int j = 1; j < M; ++j) {
    int rising = j;
    for (int t = 0; t < j; ++t) {
      all[n] = {false, list[t], rising};
      all[n + 1] = {true, list[t], rising};
      list[t] = M + n;
      rising = M + n + 1;
      n += 2;
    }
    list[j] = rising;
  }
  bool live[M + kAll] = {};
  live[list[M / 2]] = true;
  for (int s = n - 1; s >= 0; --s) {
    if (live[M + s]) live[all[s].a] = live[all[s].b] = true;
  }
  Network<M> net{};
  int renamed[M + kAll] = {};
  for (int i = 0; i < M; ++i) renamed[i] = i;
  for (int s = 0; s < n; ++s) {
    if (!live[M + s]) continue;
    net.steps[net.count] = {all[s].max, renamed[all[s].a], renamed[all[s].b]};
    renamed[M + s] = M + net.count++;
  }
  net.median = renamed[list[M / 2]];
  return net;
}

template <int M>
inline constexpr Network<M> kNetwork = insertion_median<M>();

static_assert(kNetwork<3>.count == 4 && kNetwork<5>.count == 14 && kNetwork<7>.count == 30 &&
                  kNetwork<9>.count == 52,
              "one-sided operations per median");

// The operations of an exchange: integer lanes; float lanes known to hold numbers; float
// lanes with a NaN somewhere, which then goes to both results.
struct IntegerExchange {
  template <class V> static V max(const V& a, const V& b) { return simd::max(a, b); }
  template <class V> static V min(const V& a, const V& b) { return simd::min(a, b); }
};
struct NumberExchange {
  template <class V> static V max(const V& a, const V& b) { return simd::max_numbers(a, b); }
  template <class V> static V min(const V& a, const V& b) { return simd::min_numbers(a, b); }
};
struct PropagatingExchange {
  template <class V> static V max(const V& a, const V& b) { return simd::max_propagating(a, b); }
  template <class V> static V min(const V& a, const V& b) { return simd::min_propagating(a, b); }
};

template <class X, int M, class V, size_t... S>
[[gnu::always_inline]] inline V run_network(const V (&in)[M], std::index_sequence<S...>) {
  constexpr const Network<M>& net = kNetwork<M>;
  V node[M + sizeof...(S)];
  for (int j = 0; j < M; ++j) node[j] = in[j];
  ((node[M + S] = net.steps[S].max ? X::max(node[net.steps[S].a], node[net.steps[S].b])
                                   : X::min(node[net.steps[S].a], node[net.steps[S].b])),
   ...);
  return node[net.median];
}

template <class X, int M, class V>
[[gnu::always_inline]] inline V median_of(const V (&in)[M]) {
  return run_network<X>(in, std::make_index_sequence<kNetwork<M>.count>{});
}

// Whether a lane of the M overlapping loads holds a NaN: the loads at 0, L, 2L, ... and
// M - 1 (L lanes a register) cover every element the others hold.
template <int M, class V, size_t... J>
inline bool window_has_nan(const V (&in)[M], std::index_sequence<J...>) {
  return simd::has_nan(in[std::min<int>(static_cast<int>(J) * V::kLanes, M - 1)]...);
}

// ---- Three-stage path

// The outputs dst[M - 1 ..] of the `count` windows from src[0], count a multiple of the
// lanes of a 128-bit vector: M overlapping loads a register, the network lane by lane.
template <class T, int M>
void network_pass(const T* src, T* dst, int64_t count) {
  const void* hint = reinterpret_cast<const void*>(reinterpret_cast<uintptr_t>(src) + kReadHintElems * sizeof(T));
  // The body is large (up to 52 operations and their NaN test): left to itself the
  // compiler would call it once a register.
  for_whole_blocks<kVectorElems<T>>(count, [&](int64_t k, auto w) __attribute__((always_inline)) {
    using V = simd::vec<T, decltype(w)::value>;
    simd::prefetch_stream(hint);
    V in[M];
    for (int j = 0; j < M; ++j) in[j] = simd::load<V>(src + k + j);
    V r;
    if constexpr (std::is_floating_point_v<T>) {
      constexpr int kCover = (M - 2) / V::kLanes + 2;
      r = __builtin_expect(window_has_nan(in, std::make_index_sequence<kCover>{}), 0)
              ? median_of<PropagatingExchange>(in)
              : median_of<NumberExchange>(in);
    } else {
      r = median_of<IntegerExchange>(in);
    }
    simd::store(dst + k + M - 1, r);
  });
}

// The head by sorting, the network over whole vectors of outputs, then the tail by
// sorting from `count` on: the outputs count .. count + M - 2 are made twice and the
// sorted ones stay (they differ from the network's only in how a float NaN or zero
// comes out).
template <class T, int M>
void three_stage(const Window<T>& w, T* dst, int32_t len) {
  for (int32_t i = 0; i < M - 1; ++i) dst[i] = w.median(i);
  const int64_t count = block_end<kVectorElems<T>>(len - (M - 1));
  if (count > 0) network_pass<T, M>(w.src, dst, count);
  for (int32_t i = static_cast<int32_t>(std::max<int64_t>(count, M - 1)); i < len; ++i) dst[i] = w.median(i);
}

// ---- The filter

template <class T>
ZIVKStatus filter(const T* src, T* dst, int32_t len, int32_t maskLen, const T* dlySrc, T* dlyDst,
                  ZIVKFilterMedianPolicy* policy) {
  if (const ZIVKStatus st = handles::first_failure({
          {any_null(policy, dst, src), ZIVK_STS_NULL_PTR_ERR},
          {len < 1, ZIVK_STS_SIZE_ERR},
          {maskLen < 1 || len < maskLen, ZIVK_STS_MASK_SIZE_ERR},
      }))
    return st;
  const int32_t m = odd_mask(maskLen);
  const Calls<T>& c = kCalls<T>;
  const Window<T> w{src, dlySrc, reinterpret_cast<T*>(policy), m};
  switch (m) {
    case 1: c.copy(src, dst, len); break;  // the middle of one sample is the sample
    case 3: three_stage<T, 3>(w, dst, len); break;
    case 5: three_stage<T, 5>(w, dst, len); break;
    case 7: three_stage<T, 7>(w, dst, len); break;
    case 9: three_stage<T, 9>(w, dst, len); break;
    default:
      for (int32_t i = 0; i < len; ++i) dst[i] = w.median(i);
  }
  if (dlyDst != nullptr && m > 1) c.copy(src + len - m + 1, dlyDst, m - 1);
  return m == maskLen ? ZIVK_STS_NO_ERR : ZIVK_STS_EVEN_MASK_WARN;
}

// In place through a copy of srcDst: a refused allocation surfaces as the copy's refusal
// of a null destination.
template <class T>
ZIVKStatus filter_in_place(T* srcDst, int32_t len, int32_t maskLen, const T* dlySrc, T* dlyDst,
                           ZIVKFilterMedianPolicy* policy) {
  if (const ZIVKStatus st = handles::first_failure({
          {any_null(policy, srcDst), ZIVK_STS_NULL_PTR_ERR},
          {len < 1, ZIVK_STS_SIZE_ERR},
          {maskLen < 1 || len < maskLen, ZIVK_STS_MASK_SIZE_ERR},
      }))
    return st;
  const Calls<T>& c = kCalls<T>;
  T* const copy = c.malloc(len);
  ZIVKStatus st = c.copy(srcDst, copy, len);
  if (st == ZIVK_STS_NO_ERR) st = c.filter(copy, srcDst, len, maskLen, dlySrc, dlyDst, policy);
  ZIVKS_Free(copy);
  return st;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_FilterMedianInit(int32_t maskLen, ZIVKDataType dataType,
                                               ZIVKFilterMedianPolicy** policy) {
  if (policy == nullptr) return ZIVK_STS_NULL_PTR_ERR;
  if (maskLen < 1) return ZIVK_STS_MASK_SIZE_ERR;
  if (!kMedianTypes.has(dataType)) return ZIVK_STS_DATA_TYPE_ERR;
  const int32_t size = handles::element_size(dataType);
  if (maskLen >= kMaskLimitBytes / size) return ZIVK_STS_MASK_SIZE_ERR;
  const int32_t m = odd_mask(maskLen);
  if (const ZIVKStatus st = handles::allocate(handles::round_up(size * m, 16), policy)) return st;
  return m == maskLen ? ZIVK_STS_NO_ERR : ZIVK_STS_EVEN_MASK_WARN;
}

ZIVKS_EXPORT ZIVKStatus ZIVKS_FilterMedianRelease(ZIVKFilterMedianPolicy* policy) {
  return handles::release(policy);
}

// Each row: the out-of-place and in-place names, the element type.
#define ZIVKS_FILTER_MEDIAN(name, name_in_place, type)                                               \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, type* dst, int32_t len, int32_t maskLen,             \
                               const type* dlySrc, type* dlyDst, ZIVKFilterMedianPolicy* policy) {   \
    return filter<type>(src, dst, len, maskLen, dlySrc, dlyDst, policy);                            \
  }                                                                                                 \
  ZIVKS_EXPORT ZIVKStatus name_in_place(type* srcDst, int32_t len, int32_t maskLen, const type* dlySrc, \
                                        type* dlyDst, ZIVKFilterMedianPolicy* policy) {              \
    return filter_in_place<type>(srcDst, len, maskLen, dlySrc, dlyDst, policy);                     \
  }

ZIVKS_FILTER_MEDIAN(ZIVKS_FilterMedian_8u, ZIVKS_FilterMedian_8u_I, uint8_t)
ZIVKS_FILTER_MEDIAN(ZIVKS_FilterMedian_16s, ZIVKS_FilterMedian_16s_I, int16_t)
ZIVKS_FILTER_MEDIAN(ZIVKS_FilterMedian_32s, ZIVKS_FilterMedian_32s_I, int32_t)
ZIVKS_FILTER_MEDIAN(ZIVKS_FilterMedian_32f, ZIVKS_FilterMedian_32f_I, float)
ZIVKS_FILTER_MEDIAN(ZIVKS_FilterMedian_64f, ZIVKS_FilterMedian_64f_I, double)
