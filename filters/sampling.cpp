// Up- and down-sampling by an integer factor: SampleUp puts each sample at place `phase`
// of a group of `factor` outputs and zeros the rest; SampleDown keeps the samples at
// phase, phase + factor, ... and hands the caller the phase that continues the stream in
// the next block. Samples are moved as bits, never computed with.
#include <stdint.h>

#include <type_traits>

#include "core/frame.h"

namespace {

using namespace zivks;

// ---- Element types

// What a member moves and the exported functions it is built on. `Unit` is an unsigned
// lane type of the element's size, or the element itself where no lane is that wide.
template <class E>
struct Sampled;

template <class E, class U>
struct SampledAs {
  using Unit = U;
  static constexpr bool kVector = !std::is_same_v<U, E>;
};

template <>
struct Sampled<int16_t> : SampledAs<int16_t, uint16_t> {
  static constexpr auto copy = ZIVKS_Copy_16s;
  static constexpr auto zero = ZIVKS_Zero_16s;
};
template <>
struct Sampled<float> : SampledAs<float, uint32_t> {
  static constexpr auto copy = ZIVKS_Copy_32f;
  static constexpr auto zero = ZIVKS_Zero_32f;
};
template <>
struct Sampled<double> : SampledAs<double, uint64_t> {
  static constexpr auto copy = ZIVKS_Copy_64f;
  static constexpr auto zero = ZIVKS_Zero_64f;
};
template <>
struct Sampled<ZIVK16sc> : SampledAs<ZIVK16sc, uint32_t> {
  static constexpr auto copy = ZIVKS_Copy_16sc;
  static constexpr auto zero = ZIVKS_Zero_16sc;
};
template <>
struct Sampled<ZIVK32fc> : SampledAs<ZIVK32fc, uint64_t> {
  static constexpr auto copy = ZIVKS_Copy_32fc;
  static constexpr auto zero = ZIVKS_Zero_32fc;
};
template <>
struct Sampled<ZIVK64fc> : SampledAs<ZIVK64fc, ZIVK64fc> {
  static constexpr auto copy = ZIVKS_Copy_64fc;
  static constexpr auto zero = ZIVKS_Zero_64fc;
};

// The checks both directions share, in order: pointers, srcLen, factor, then *phase
// (read only once it is known not to be null).
template <class E>
ZIVKStatus check_sampling(const E* src, int32_t srcLen, const E* dst, const int32_t* dstLen, int32_t factor,
                          const int32_t* phase) {
  if (const ZIVKStatus st = check_ptrs_len(srcLen, src, dst, dstLen, phase)) return st;
  if (factor < 1) return ZIVK_STS_SAMPLE_FACTOR_ERR;
  if (*phase < 0 || *phase >= factor) return ZIVK_STS_SAMPLE_PHASE_ERR;
  return ZIVK_STS_NO_ERR;
}

// ---- Factors 2 and 4 in registers

// The lanes of x at every second place from d, the odd places when `odd`, zeros between.
template <class V>
inline void spread2(typename V::lane* d, const V& x, bool odd) {
  const V z = simd::zeros<V>();
  if (odd) simd::store_planes2(d, z, x);
  else simd::store_planes2(d, x, z);
}

// The lanes of x at place p of groups of 4 from d, zeros between: spread by 2 twice,
// through a buffer of two registers.
template <class V>
inline void spread4(typename V::lane* d, const V& x, int p) {
  typename V::lane t[2 * V::kLanes];
  spread2(t, x, p >> 1);
  spread2(d, simd::load<V>(t), p & 1);
  spread2(d + 2 * V::kLanes, simd::load<V>(t + V::kLanes), p & 1);
}

// The first of every 2 lanes from s.
template <class V>
inline V gather2(const typename V::lane* s) {
  V even, odd;
  simd::load_planes2(s, even, odd);
  return even;
}

// The first of every 4 lanes from s: gathered by 2 twice, through a buffer.
template <class V>
inline V gather4(const typename V::lane* s) {
  typename V::lane t[2 * V::kLanes];
  simd::store(t, gather2<V>(s));
  simd::store(t + V::kLanes, gather2<V>(s + 2 * V::kLanes));
  return gather2<V>(t);
}

// Factors with a register path.
inline bool spread_in_registers(int32_t factor) { return factor == 2 || factor == 4; }

// ---- SampleUp
// dst[phase + i * factor] = src[i], zeros elsewhere, srcLen * factor outputs.

template <class E>
ZIVKStatus sample_up(const E* src, int32_t srcLen, E* dst, int32_t* dstLen, int32_t factor, int32_t* phase) {
  using S = Sampled<E>;
  using U = typename S::Unit;
  if (const ZIVKStatus st = check_sampling(src, srcLen, dst, dstLen, factor, phase)) return st;
  // One step too strict: the pair whose product just fits is refused too.
  if (INT32_MAX / srcLen <= factor) return ZIVK_STS_SAMPLE_FACTOR_ERR;
  const int32_t p = *phase;
  *dstLen = srcLen * factor;
  // Registers see the elements as lanes of U, through unaligned loads and stores; single
  // elements move as E, which may be less aligned than U.
  const U* s = reinterpret_cast<const U*>(src);
  U* d = reinterpret_cast<U*>(dst);
  const auto group = [&](int64_t i) {  // the outputs of src[i], zeros and all
    for (int32_t j = 0; j < factor; ++j) dst[factor * i + j] = j == p ? src[i] : E{};
  };
  if (factor == 1) {
    S::copy(src, dst, srcLen);
  } else if (!spread_in_registers(factor)) {
    S::zero(dst, srcLen * factor);
    for (int64_t i = 0, at = p; i < srcLen; ++i, at += factor) dst[at] = src[i];
  } else if constexpr (S::kVector) {  // samples and zeros written in one pass
    for_blocks<kVectorElems<U>>(
        srcLen,
        [&](int64_t i, auto w) {
          using V = simd::vec<U, decltype(w)::value>;
          const V x = simd::load<V>(s + i);
          if (factor == 2) spread2(d + 2 * i, x, p);
          else spread4(d + 4 * i, x, p);
        },
        group);
  } else if (factor == 2) {  // 16-byte elements: a sample and a zero a step
    for (int64_t i = 0; i < srcLen; ++i) dst[2 * i + p] = src[i], dst[2 * i + 1 - p] = E{};
  } else {
    S::zero(dst, srcLen * factor);
    for (int64_t i = 0, at = p; i < srcLen; ++i, at += factor) dst[at] = src[i];
  }
  return ZIVK_STS_NO_ERR;
}

// ---- SampleDown
// dst[k] = src[phase + k * factor] below srcLen; the phase moves on by srcLen.

template <class E>
ZIVKStatus sample_down(const E* src, int32_t srcLen, E* dst, int32_t* dstLen, int32_t factor, int32_t* phase) {
  using S = Sampled<E>;
  using U = typename S::Unit;
  if (const ZIVKStatus st = check_sampling(src, srcLen, dst, dstLen, factor, phase)) return st;
  const int32_t p = *phase;
  // The places p + k * factor below srcLen (0 when srcLen <= p); in 64 bits, as the sum
  // may pass the int32 range.
  const int64_t n = (int64_t{factor} + srcLen - 1 - p) / factor;
  const U* s = reinterpret_cast<const U*>(src + p);  // lanes for registers only
  U* d = reinterpret_cast<U*>(dst);
  int64_t k = 0;
  if (factor == 1) {
    S::copy(src, dst, srcLen);
    k = n;
  } else if constexpr (S::kVector) {
    if (spread_in_registers(factor)) {
      // Whole blocks only over groups that lie inside src: the last may be cut short.
      k = for_whole_blocks<kVectorElems<U>>((srcLen - p) / factor, [&](int64_t at, auto w) {
        using V = simd::vec<U, decltype(w)::value>;
        simd::store(d + at, factor == 2 ? gather2<V>(s + 2 * at) : gather4<V>(s + 4 * at));
      });
    }
  }
  for (; k < n; ++k) dst[k] = src[p + k * factor];
  *dstLen = static_cast<int32_t>(n);
  // In 32-bit arithmetic: p + factor wraps for factors near the int32 limit, and the
  // remainder of a negative sum is negative.
  const int32_t sum = static_cast<int32_t>(static_cast<uint32_t>(p) + static_cast<uint32_t>(factor) -
                                           static_cast<uint32_t>(srcLen % factor));
  *phase = sum % factor;
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the SampleUp and SampleDown names, the element type.
#define ZIVKS_SAMPLE(up, down, type)                                                                      \
  ZIVKS_EXPORT ZIVKStatus up(const type* src, int32_t srcLen, type* dst, int32_t* dstLen, int32_t factor,   \
                             int32_t* phase) {                                                            \
    return sample_up<type>(src, srcLen, dst, dstLen, factor, phase);                                      \
  }                                                                                                       \
  ZIVKS_EXPORT ZIVKStatus down(const type* src, int32_t srcLen, type* dst, int32_t* dstLen, int32_t factor, \
                               int32_t* phase) {                                                          \
    return sample_down<type>(src, srcLen, dst, dstLen, factor, phase);                                    \
  }

ZIVKS_SAMPLE(ZIVKS_SampleUp_16s, ZIVKS_SampleDown_16s, int16_t)
ZIVKS_SAMPLE(ZIVKS_SampleUp_32f, ZIVKS_SampleDown_32f, float)
ZIVKS_SAMPLE(ZIVKS_SampleUp_64f, ZIVKS_SampleDown_64f, double)
ZIVKS_SAMPLE(ZIVKS_SampleUp_16sc, ZIVKS_SampleDown_16sc, ZIVK16sc)
ZIVKS_SAMPLE(ZIVKS_SampleUp_32fc, ZIVKS_SampleDown_32fc, ZIVK32fc)
ZIVKS_SAMPLE(ZIVKS_SampleUp_64fc, ZIVKS_SampleDown_64fc, ZIVK64fc)
