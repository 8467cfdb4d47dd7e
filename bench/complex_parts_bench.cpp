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
