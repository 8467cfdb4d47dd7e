// Real, Imag, CplxToReal, RealToCplx and Conj, all 18 members, against memcpy of the
// output bytes and against VOLK's deinterleave, interleave and conjugate kernels.
#include <volk/volk.h>

#include "bench/zb.h"
#include "zivks.h"

#define ZB_PARTS(c, r, E, P)                                                                   \
  ZB_FUNC_IO(complex_parts, ZIVKS_Real_##c, E, P, kMemcpy, 0,                                  \
             [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<E>(0), a.dst<P>(0), n); }); \
  ZB_FUNC_IO(complex_parts, ZIVKS_Imag_##c, E, P, kMemcpy, 0,                                  \
             [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<E>(0), a.dst<P>(0), n); }); \
  ZB_FUNC(complex_parts, ZIVKS_CplxToReal_##c, E, kMemcpy, 0,                                  \
          [](auto fn, const zb::Arrays& a, int32_t n) {                                        \
            fn(a.src<E>(0), a.dst<P>(0), a.dst<P>(1), n);                                      \
          });                                                                                  \
  ZB_FUNC(complex_parts, ZIVKS_RealToCplx_##r, E, kMemcpy, 0,                                  \
          [](auto fn, const zb::Arrays& a, int32_t n) {                                        \
            fn(a.src<P>(0), a.src<P>(1), a.dst<E>(0), n);                                      \
          });                                                                                  \
  ZB_FUNC_AS(complex_parts, "RealToCplx_" #r " no im", ZIVKS_RealToCplx_##r, E, kMemcpy, 0,    \
             [](auto fn, const zb::Arrays& a, int32_t n) {                                     \
               fn(a.src<P>(0), nullptr, a.dst<E>(0), n);                                       \
             });                                                                               \
  ZB_FUNC(complex_parts, ZIVKS_Conj_##c, E, kMemcpy, 0,                                        \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<E>(0), a.dst<E>(0), n); });   \
  ZB_FUNC(complex_parts, ZIVKS_Conj_##c##_I, E, kMemcpy, 0,                                    \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.dst<E>(0), n); })

ZB_PARTS(16sc, 16s, ZIVK16sc, int16_t);
ZB_PARTS(32fc, 32f, ZIVK32fc, float);
ZB_PARTS(64fc, 64f, ZIVK64fc, double);

namespace {
lv_32fc_t* cf(ZIVK32fc* p) { return reinterpret_cast<lv_32fc_t*>(p); }
lv_16sc_t* cs(ZIVK16sc* p) { return reinterpret_cast<lv_16sc_t*>(p); }
}  // namespace

ZB_PEER(ZIVKS_Real_32fc, volk_32fc_deinterleave_real_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32fc_deinterleave_real_32f(a.dst<float>(0), cf(a.src<ZIVK32fc>(0)), n);
});
ZB_PEER(ZIVKS_Imag_32fc, volk_32fc_deinterleave_imag_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32fc_deinterleave_imag_32f(a.dst<float>(0), cf(a.src<ZIVK32fc>(0)), n);
});
ZB_PEER(ZIVKS_CplxToReal_32fc, volk_32fc_deinterleave_32f_x2, [](const zb::Arrays& a, int32_t n) {
  volk_32fc_deinterleave_32f_x2(a.dst<float>(0), a.dst<float>(1), cf(a.src<ZIVK32fc>(0)), n);
});
ZB_PEER(ZIVKS_RealToCplx_32f, volk_32f_x2_interleave_32fc, [](const zb::Arrays& a, int32_t n) {
  volk_32f_x2_interleave_32fc(cf(a.dst<ZIVK32fc>(0)), a.src<float>(0), a.src<float>(1), n);
});
ZB_PEER(ZIVKS_Conj_32fc, volk_32fc_conjugate_32fc, [](const zb::Arrays& a, int32_t n) {
  volk_32fc_conjugate_32fc(cf(a.dst<ZIVK32fc>(0)), cf(a.src<ZIVK32fc>(0)), n);
});
ZB_PEER(ZIVKS_Conj_32fc_I, volk_32fc_conjugate_32fc, [](const zb::Arrays& a, int32_t n) {
  volk_32fc_conjugate_32fc(cf(a.dst<ZIVK32fc>(0)), cf(a.dst<ZIVK32fc>(0)), n);
});
ZB_PEER(ZIVKS_Real_16sc, volk_16ic_deinterleave_real_16i, [](const zb::Arrays& a, int32_t n) {
  volk_16ic_deinterleave_real_16i(a.dst<int16_t>(0), cs(a.src<ZIVK16sc>(0)), n);
});
ZB_PEER(ZIVKS_CplxToReal_16sc, volk_16ic_deinterleave_16i_x2, [](const zb::Arrays& a, int32_t n) {
  volk_16ic_deinterleave_16i_x2(a.dst<int16_t>(0), a.dst<int16_t>(1), cs(a.src<ZIVK16sc>(0)), n);
});

// What the read hints cost: the conjugate in place and the join of two float arrays as
// the library's loops run them at the widest registers, with and without their streaming
// hints (4096 bytes ahead of the array once a 128-byte step for the conjugate; 2048 bytes
// ahead of each source once a 64-byte register for the join). Bench-only.
#if defined(__x86_64__)
#include <immintrin.h>

namespace {
template <bool kHint>
__attribute__((target("avx512f"))) ZIVKStatus conj32_loop(ZIVK32fc* srcDst, int32_t len) {
  if (!srcDst) return ZIVK_STS_NULL_PTR_ERR;
  if (len < 1) return ZIVK_STS_SIZE_ERR;
  float* p = reinterpret_cast<float*>(srcDst);
  const int64_t n = len & ~3;
  const __m512i sign = _mm512_set1_epi64(static_cast<long long>(0x8000000000000000ull));
  int64_t i = 0;
  for (; i + 16 <= n; i += 16) {
    if (kHint) _mm_prefetch(reinterpret_cast<const char*>(p + 2 * i) + 4096, _MM_HINT_NTA);
    const __m512i a = _mm512_loadu_si512(p + 2 * i), b = _mm512_loadu_si512(p + 2 * i + 16);
    _mm512_storeu_si512(p + 2 * i, _mm512_xor_si512(a, sign));
    _mm512_storeu_si512(p + 2 * i + 16, _mm512_xor_si512(b, sign));
  }
  for (; i < len; ++i) p[2 * i + 1] = -p[2 * i + 1];
  return ZIVK_STS_NO_ERR;
}

template <bool kHint>
__attribute__((target("avx512f"))) ZIVKStatus join32_loop(const float* re, const float* im, ZIVK32fc* dst,
                                                          int32_t len) {
  if (!re || !im || !dst) return ZIVK_STS_NULL_PTR_ERR;
  if (len < 1) return ZIVK_STS_SIZE_ERR;
  float* d = reinterpret_cast<float*>(dst);
  const __m512i lo = _mm512_setr_epi32(0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
  const __m512i hi = _mm512_setr_epi32(8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
  const int64_t n = len & ~3;
  int64_t i = 0;
  for (; i + 16 <= n; i += 16) {
    if (kHint) {
      _mm_prefetch(reinterpret_cast<const char*>(re + i) + 2048, _MM_HINT_NTA);
      _mm_prefetch(reinterpret_cast<const char*>(im + i) + 2048, _MM_HINT_NTA);
    }
    const __m512 x = _mm512_loadu_ps(re + i), y = _mm512_loadu_ps(im + i);
    _mm512_storeu_ps(d + 2 * i, _mm512_permutex2var_ps(x, lo, y));
    _mm512_storeu_ps(d + 2 * i + 16, _mm512_permutex2var_ps(x, hi, y));
  }
  for (; i < len; ++i) d[2 * i] = re[i], d[2 * i + 1] = im[i];
  return ZIVK_STS_NO_ERR;
}
}  // namespace

#define ZB_CONJ_VARIANT(label, hint)                                                      \
  ZB_FUNC_AS(complex_parts, label, conj32_loop<hint>, ZIVK32fc, kMemcpy, 0,              \
             [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.dst<ZIVK32fc>(0), n); });  \
  ZB_PEER_AS(label, volk_32fc_conjugate_32fc, [](const zb::Arrays& a, int32_t n) {        \
    volk_32fc_conjugate_32fc(cf(a.dst<ZIVK32fc>(0)), cf(a.dst<ZIVK32fc>(0)), n);          \
  })
#define ZB_JOIN_VARIANT(label, hint)                                                      \
  ZB_FUNC_AS(complex_parts, label, join32_loop<hint>, ZIVK32fc, kMemcpy, 0,              \
             [](auto fn, const zb::Arrays& a, int32_t n) {                                \
               fn(a.src<float>(0), a.src<float>(1), a.dst<ZIVK32fc>(0), n);               \
             });                                                                          \
  ZB_PEER_AS(label, volk_32f_x2_interleave_32fc, [](const zb::Arrays& a, int32_t n) {     \
    volk_32f_x2_interleave_32fc(cf(a.dst<ZIVK32fc>(0)), a.src<float>(0), a.src<float>(1), n); \
  })
ZB_CONJ_VARIANT("Conj_32fc_I/hint", true);
ZB_CONJ_VARIANT("Conj_32fc_I/nohint", false);
ZB_JOIN_VARIANT("RealToCplx_32f/hints", true);
ZB_JOIN_VARIANT("RealToCplx_32f/nohint", false);
#endif
