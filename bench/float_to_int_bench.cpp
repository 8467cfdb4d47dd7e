// Float to integer conversions, all 11 members, with ZIVK_RND_NEAR at scale 1 and with
// the other modes and a multiply at scale 2^-10, against memcpy of the output bytes and
// against VOLK's scaled conversions (nearest rounding, multiplier 1) where it has them.
#include <volk/volk.h>

#include "bench/zb.h"
#include "zivks.h"

// A labelled case whose input (F) and output (I) widths differ.
#define ZB_CONVERT_AT(code, F, I, label, mode, scale)                                          \
  static const int ZB_CAT(zb_case_, __COUNTER__) = ::zb::add_func(                             \
      "float_to_int", label, "ZIVKS_Convert_" #code "_S", &ZIVKS_Convert_##code##_S, sizeof(F), \
      sizeof(I), ::zb::kMemcpy, 0.8, [](auto fn, const zb::Arrays& a, int32_t n) {             \
        fn(a.src<F>(0), a.dst<I>(0), n, mode, scale);                                          \
      })
#define ZB_CONVERT(code, F, I)                                                                 \
  ZB_CONVERT_AT(code, F, I, "Convert_" #code "_S", ZIVK_RND_NEAR, 1.0);                        \
  ZB_CONVERT_AT(code, F, I, "Convert_" #code "_S/zero", ZIVK_RND_ZERO, 0x1p-10);               \
  ZB_CONVERT_AT(code, F, I, "Convert_" #code "_S/away", ZIVK_RND_AWAY, 0x1p-10)

ZB_CONVERT(32f8u, float, uint8_t);
ZB_CONVERT(32f16u, float, uint16_t);
ZB_CONVERT(64f8u, double, uint8_t);
ZB_CONVERT(64f16u, double, uint16_t);
ZB_CONVERT(32f8s, float, int8_t);
ZB_CONVERT(32f16s, float, int16_t);
ZB_CONVERT(32f32s, float, int32_t);
ZB_CONVERT(64f8s, double, int8_t);
ZB_CONVERT(64f16s, double, int16_t);
ZB_CONVERT(64f32s, double, int32_t);
ZB_CONVERT(64f64s, double, int64_t);

ZB_PEER_AS("Convert_32f16s_S", volk_32f_s32f_convert_16i, [](const zb::Arrays& a, int32_t n) {
  volk_32f_s32f_convert_16i(a.dst<int16_t>(0), a.src<float>(0), 1.0f, n);
});
ZB_PEER_AS("Convert_32f32s_S", volk_32f_s32f_convert_32i, [](const zb::Arrays& a, int32_t n) {
  volk_32f_s32f_convert_32i(a.dst<int32_t>(0), a.src<float>(0), 1.0f, n);
});
ZB_PEER_AS("Convert_32f8s_S", volk_32f_s32f_convert_8i, [](const zb::Arrays& a, int32_t n) {
  volk_32f_s32f_convert_8i(a.dst<int8_t>(0), a.src<float>(0), 1.0f, n);
});
