// Between interleaved complex records (re, im, re, im, ...) and separate real and
// imaginary arrays, and the conjugate. Parts are raw bits except in Conj_16sc, which
// negates with saturation. A block is two 128-bit vectors of interleaved data, split
// or joined by structured loads and stores.
#include <limits>

#include "core/frame.h"
#include "core/lane.h"

namespace {

using namespace zivks;

template <class E> using P = part_t<E>;
template <class E> constexpr int kBlock = 16 / sizeof(P<E>);  // elements a block

// Read prefetch distances in bytes ahead of each source (0: none).
template <class E> constexpr int kSplitPrefetch = 0;
template <> constexpr int kSplitPrefetch<ZIVK64fc> = 8192;
template <class E> constexpr int kMergePrefetch = 0;
template <> constexpr int kMergePrefetch<ZIVK16sc> = 1024;
template <> constexpr int kMergePrefetch<ZIVK32fc> = 2048;
template <> constexpr int kMergePrefetch<ZIVK64fc> = 4096;

template <int Distance, class T>
inline void prefetch(const T* p) {
  if constexpr (Distance != 0) simd::prefetch_stream(reinterpret_cast<const char*>(p) + Distance);
}

// One pass over the source splitting every element; kRe and kIm say which parts are kept.
template <bool kRe, bool kIm, class E>
void split(const E* src, P<E>* re, P<E>* im, int32_t len) {
  const P<E>* s = as_parts(src);
  for_blocks<kBlock<E>>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<P<E>, decltype(w)::value>;
        prefetch<kSplitPrefetch<E>>(s + 2 * i);
        V a, b;
        simd::load_planes2(s + 2 * i, a, b);
        if constexpr (kRe) simd::store(re + i, a);
        if constexpr (kIm) simd::store(im + i, b);
      },
      [&](int64_t i) {
        if constexpr (kRe) re[i] = s[2 * i];
        if constexpr (kIm) im[i] = s[2 * i + 1];
      });
}

template <class E>
ZIVKStatus real(const E* src, P<E>* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  split<true, false>(src, dst, nullptr, len);
  return ZIVK_STS_NO_ERR;
}

template <class E>
ZIVKStatus imag(const E* src, P<E>* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  split<false, true>(src, nullptr, dst, len);
  return ZIVK_STS_NO_ERR;
}

// Neither part may be left out when splitting.
template <class E>
ZIVKStatus cplx_to_real(const E* src, P<E>* dstRe, P<E>* dstIm, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dstRe, dstIm)) return st;
  split<true, true>(src, dstRe, dstIm, len);
  return ZIVK_STS_NO_ERR;
}

// A source of parts for a merge: an array, or zeros where the array is missing.
template <class T, int Prefetch>
struct plane {
  const T* p;
  template <class V>
  V vec(int64_t i) const {
    prefetch<Prefetch>(p + i);
    return simd::load<V>(p + i);
  }
  T at(int64_t i) const { return p[i]; }
};

template <class T>
struct zero_plane {
  template <class V>
  V vec(int64_t) const { return simd::zeros<V>(); }
  T at(int64_t) const { return T{0}; }  // +0.0 for floats
};

template <class E, class Re, class Im>
void merge(const Re& re, const Im& im, E* dst, int32_t len) {
  P<E>* d = as_parts(dst);
  for_blocks<kBlock<E>>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<P<E>, decltype(w)::value>;
        simd::store_planes2(d + 2 * i, re.template vec<V>(i), im.template vec<V>(i));
      },
      [&](int64_t i) {
        d[2 * i] = re.at(i);
        d[2 * i + 1] = im.at(i);
      });
}

// One of the two sources may be missing and stands for zeros, which are written. The
// path is chosen once, before the loop.
template <class E>
ZIVKStatus real_to_cplx(const P<E>* srcRe, const P<E>* srcIm, E* dst, int32_t len) {
  if (dst == nullptr || (srcRe == nullptr && srcIm == nullptr)) return ZIVK_STS_NULL_PTR_ERR;
  if (len < 1) return ZIVK_STS_SIZE_ERR;
  using A = plane<P<E>, kMergePrefetch<E>>;
  using Z = zero_plane<P<E>>;
  if (srcRe != nullptr && srcIm != nullptr) merge(A{srcRe}, A{srcIm}, dst, len);
  else if (srcRe == nullptr) merge(Z{}, A{srcIm}, dst, len);
  else merge(A{srcRe}, Z{}, dst, len);
  return ZIVK_STS_NO_ERR;
}

// im negated: int16 with saturation (-32768 becomes 32767), floats by their sign bit
// (signed zeros, infinities and NaN payloads kept but for the sign).
template <class T>
inline T negate(T x) {
  if constexpr (std::is_integral_v<T>) return lane::neg_sat(x);
  else return lane::flip_sign(x);
}

template <class V>
inline V negate_im(const V& v) {
  if constexpr (std::is_integral_v<typename V::lane>) return simd::neg_sat_odd(v);
  else return simd::flip_sign_odd(v);
}

// re copied, im negated. The in-place forms have a loop of their own (the same one with
// their own prefetch distance) rather than calling the out-of-place form.
template <int Prefetch, class E>
ZIVKStatus conj(const E* src, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  const P<E>* s = as_parts(src);
  P<E>* d = as_parts(dst);
  for_blocks<kBlock<E>>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<P<E>, decltype(w)::value>;
        prefetch<Prefetch>(s + 2 * i);
        const V a = simd::load<V>(s + 2 * i), b = simd::load<V>(s + 2 * i + V::kLanes);
        simd::store(d + 2 * i, negate_im(a));
        simd::store(d + 2 * i + V::kLanes, negate_im(b));
      },
      [&](int64_t i) {
        const P<E> re = s[2 * i], im = s[2 * i + 1];
        d[2 * i] = re;
        d[2 * i + 1] = negate(im);
      });
  return ZIVK_STS_NO_ERR;
}

}  // namespace

#define ZIVKS_COMPLEX_PARTS(ccode, rcode, ctype, rtype)                                           \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_Real_##ccode(const ctype* src, rtype* dst, int32_t len) {         \
    return real(src, dst, len);                                                                   \
  }                                                                                               \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_Imag_##ccode(const ctype* src, rtype* dst, int32_t len) {         \
    return imag(src, dst, len);                                                                   \
  }                                                                                               \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_CplxToReal_##ccode(const ctype* src, rtype* dstRe, rtype* dstIm,  \
                                                   int32_t len) {                                 \
    return cplx_to_real(src, dstRe, dstIm, len);                                                  \
  }                                                                                               \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_RealToCplx_##rcode(const rtype* srcRe, const rtype* srcIm,        \
                                                   ctype* dst, int32_t len) {                     \
    return real_to_cplx(srcRe, srcIm, dst, len);                                                  \
  }

ZIVKS_COMPLEX_PARTS(16sc, 16s, ZIVK16sc, int16_t)
ZIVKS_COMPLEX_PARTS(32fc, 32f, ZIVK32fc, float)
ZIVKS_COMPLEX_PARTS(64fc, 64f, ZIVK64fc, double)

// Prefetch distances: Conj_16sc none and its in-place form 2048 bytes; 32fc 4096 and
// 64fc 8192 bytes in both forms.
#define ZIVKS_CONJ(code, type, out_of_place, in_place)                                 \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_Conj_##code(const type* src, type* dst, int32_t len) { \
    return conj<out_of_place>(src, dst, len);                                          \
  }                                                                                    \
  ZIVKS_EXPORT ZIVKStatus ZIVKS_Conj_##code##_I(type* srcDst, int32_t len) {           \
    return conj<in_place>(srcDst, srcDst, len);                                        \
  }

ZIVKS_CONJ(16sc, ZIVK16sc, 0, 2048)
ZIVKS_CONJ(32fc, ZIVK32fc, 4096, 4096)
ZIVKS_CONJ(64fc, ZIVK64fc, 8192, 8192)
