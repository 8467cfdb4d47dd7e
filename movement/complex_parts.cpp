// Between interleaved complex records (re, im, re, im, ...) and separate real and
// imaginary arrays, and the conjugate. Parts are raw bits except in Conj_16sc, which
// negates with saturation. A block is two 128-bit vectors of interleaved data, split
// or joined by structured loads and stores.
#include <limits>

#include "core/frame.h"
#include "core/lane.h"
#include "core/operands.h"

namespace {

using namespace zivks;

template <class E> using P = part_t<E>;
template <class E> constexpr int kBlock = kVectorElems<P<E>>;  // elements a block

// Read hints, in bytes ahead of each source (0: none).
template <class E> constexpr int kSplitReadAheadBytes = 0;
template <> constexpr int kSplitReadAheadBytes<ZIVK64fc> = 8192;
template <class E> constexpr int kMergeReadAheadBytes = 0;
template <> constexpr int kMergeReadAheadBytes<ZIVK16sc> = 1024;
template <> constexpr int kMergeReadAheadBytes<ZIVK32fc> = 2048;
template <> constexpr int kMergeReadAheadBytes<ZIVK64fc> = 4096;
template <class E> constexpr int kConjReadAheadBytes = 0;
template <> constexpr int kConjReadAheadBytes<ZIVK32fc> = 4096;
template <> constexpr int kConjReadAheadBytes<ZIVK64fc> = 8192;
template <class E> constexpr int kConjInPlaceReadAheadBytes = kConjReadAheadBytes<E>;
template <> constexpr int kConjInPlaceReadAheadBytes<ZIVK16sc> = 2048;

// One pass over the source splitting every element; kRe and kIm say which parts are kept.
template <bool kRe, bool kIm, class E>
void split(const E* src, P<E>* re, P<E>* im, int32_t len) {
  const array_operand<P<E>, kSplitReadAheadBytes<E>> s{as_parts(src)};
  for_blocks<kBlock<E>>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<P<E>, decltype(w)::value>;
        s.hint(2 * i);
        V a, b;
        simd::load_planes2(s.p + 2 * i, a, b);
        if constexpr (kRe) simd::store(re + i, a);
        if constexpr (kIm) simd::store(im + i, b);
      },
      [&](int64_t i) {
        if constexpr (kRe) re[i] = s.at(2 * i);
        if constexpr (kIm) im[i] = s.at(2 * i + 1);
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

// A source of parts for a merge: an array_operand, or zeros where the array is missing.
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
  using A = array_operand<P<E>, kMergeReadAheadBytes<E>>;
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

// re copied, im negated. The in-place forms run this loop with their own read-ahead
// distance rather than calling the out-of-place form.
template <int kAheadBytes, class E>
ZIVKStatus conj(const E* src, E* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  const P<E>* s = as_parts(src);
  P<E>* d = as_parts(dst);
  for_blocks<kBlock<E>>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<P<E>, decltype(w)::value>;
        if constexpr (kAheadBytes != 0) hint_read(s + 2 * i, kAheadBytes);
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

// Each row: Real, Imag, CplxToReal and RealToCplx of one type, the complex and the
// part type.
#define ZIVKS_COMPLEX_PARTS(real_name, imag_name, cplx_to_real_name, real_to_cplx_name, ctype, rtype) \
  ZIVKS_EXPORT ZIVKStatus real_name(const ctype* src, rtype* dst, int32_t len) {                   \
    return real(src, dst, len);                                                                    \
  }                                                                                                \
  ZIVKS_EXPORT ZIVKStatus imag_name(const ctype* src, rtype* dst, int32_t len) {                   \
    return imag(src, dst, len);                                                                    \
  }                                                                                                \
  ZIVKS_EXPORT ZIVKStatus cplx_to_real_name(const ctype* src, rtype* dstRe, rtype* dstIm,         \
                                            int32_t len) {                                         \
    return cplx_to_real(src, dstRe, dstIm, len);                                                   \
  }                                                                                                \
  ZIVKS_EXPORT ZIVKStatus real_to_cplx_name(const rtype* srcRe, const rtype* srcIm, ctype* dst,   \
                                            int32_t len) {                                         \
    return real_to_cplx(srcRe, srcIm, dst, len);                                                   \
  }

ZIVKS_COMPLEX_PARTS(ZIVKS_Real_16sc, ZIVKS_Imag_16sc, ZIVKS_CplxToReal_16sc, ZIVKS_RealToCplx_16s, ZIVK16sc,
                    int16_t)
ZIVKS_COMPLEX_PARTS(ZIVKS_Real_32fc, ZIVKS_Imag_32fc, ZIVKS_CplxToReal_32fc, ZIVKS_RealToCplx_32f, ZIVK32fc,
                    float)
ZIVKS_COMPLEX_PARTS(ZIVKS_Real_64fc, ZIVKS_Imag_64fc, ZIVKS_CplxToReal_64fc, ZIVKS_RealToCplx_64f, ZIVK64fc,
                    double)

// Each row: Conj and its in-place form, the complex type.
#define ZIVKS_CONJ(name, name_in_place, type)                                   \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, type* dst, int32_t len) {       \
    return conj<kConjReadAheadBytes<type>>(src, dst, len);                      \
  }                                                                             \
  ZIVKS_EXPORT ZIVKStatus name_in_place(type* srcDst, int32_t len) {            \
    return conj<kConjInPlaceReadAheadBytes<type>>(srcDst, srcDst, len);         \
  }

ZIVKS_CONJ(ZIVKS_Conj_16sc, ZIVKS_Conj_16sc_I, ZIVK16sc)
ZIVKS_CONJ(ZIVKS_Conj_32fc, ZIVKS_Conj_32fc_I, ZIVK32fc)
ZIVKS_CONJ(ZIVKS_Conj_64fc, ZIVKS_Conj_64fc_I, ZIVK64fc)
