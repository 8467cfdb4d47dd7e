// Exact and widening conversions, all 15 members, against memcpy of the output bytes and
// against VOLK's conversions where it has the same one. The plain forms are expected to
// reach 0.8 of memcpy at the cached sizes, except 64f32f: it reads twice the bytes it
// writes, so a copy of its output is no bound for it, and VOLK is its measure. The _S
// forms (one more multiply, and the scale worked out on each call) are shown without a
// target on the baseline.
//
// The peers compute the same values as the case they sit next to: VOLK divides by its
// scalar (or multiplies by its reciprocal), so a power-of-two scalar equal to our scale
// gives the same products bit for bit. The one exception is volk_8i_convert_16i: it
// multiplies each element by 256 and has no unscaled form, so its values are ours shifted
// left by 8; it is the same load, widen and store with one shift more.
#include <volk/volk.h>

#include "bench/zb.h"
#include "zivks.h"

namespace {
// Scales that keep the peers' results identical: the divisor of a sample in Q15 and of
// one in Q31.
constexpr double kQ15 = 0x1p15;
constexpr double kQ31 = 0x1p31;
}  // namespace

#define ZB_WIDEN_AT(code, S, D, base_target)                                                   \
  ZB_FUNC_IO(widening, ZIVKS_Convert_##code, S, D, kMemcpy, base_target,                       \
             [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<S>(0), a.dst<D>(0), n); })
#define ZB_WIDEN(code, S, D) ZB_WIDEN_AT(code, S, D, 0.8)
#define ZB_WIDEN_S(code, S, D, scale)                                                          \
  ZB_FUNC_IO(widening, ZIVKS_Convert_##code##_S, S, D, kMemcpy, 0,                             \
             [](auto fn, const zb::Arrays& a, int32_t n) {                                     \
               fn(a.src<S>(0), a.dst<D>(0), n, scale);                                         \
             })

ZB_WIDEN(8u32f, uint8_t, float);
ZB_WIDEN(8s16s, int8_t, int16_t);
ZB_WIDEN(8s32f, int8_t, float);
ZB_WIDEN(16u32f, uint16_t, float);
ZB_WIDEN(16s32s, int16_t, int32_t);
ZB_WIDEN(16s32f, int16_t, float);
ZB_WIDEN(32s32f, int32_t, float);
ZB_WIDEN(32s64f, int32_t, double);
ZB_WIDEN(32f64f, float, double);
ZB_WIDEN(64s64f, int64_t, double);
ZB_WIDEN_AT(64f32f, double, float, 0);
ZB_WIDEN_S(16s32f, int16_t, float, kQ15);
ZB_WIDEN_S(16s64f, int16_t, double, kQ15);
ZB_WIDEN_S(32s32f, int32_t, float, kQ31);
ZB_WIDEN_S(32s64f, int32_t, double, kQ31);

ZB_PEER(ZIVKS_Convert_8s16s, volk_8i_convert_16i, [](const zb::Arrays& a, int32_t n) {
  volk_8i_convert_16i(a.dst<int16_t>(0), a.src<int8_t>(0), n);
});
ZB_PEER(ZIVKS_Convert_8s32f, volk_8i_s32f_convert_32f, [](const zb::Arrays& a, int32_t n) {
  volk_8i_s32f_convert_32f(a.dst<float>(0), a.src<int8_t>(0), 1.0f, n);
});
ZB_PEER(ZIVKS_Convert_16s32f_S, volk_16i_s32f_convert_32f, [](const zb::Arrays& a, int32_t n) {
  volk_16i_s32f_convert_32f(a.dst<float>(0), a.src<int16_t>(0), static_cast<float>(kQ15), n);
});
ZB_PEER(ZIVKS_Convert_32s32f_S, volk_32i_s32f_convert_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32i_s32f_convert_32f(a.dst<float>(0), a.src<int32_t>(0), static_cast<float>(kQ31), n);
});
ZB_PEER(ZIVKS_Convert_32f64f, volk_32f_convert_64f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_convert_64f(a.dst<double>(0), a.src<float>(0), n);
});
ZB_PEER(ZIVKS_Convert_64f32f, volk_64f_convert_32f, [](const zb::Arrays& a, int32_t n) {
  volk_64f_convert_32f(a.dst<float>(0), a.src<double>(0), n);
});
