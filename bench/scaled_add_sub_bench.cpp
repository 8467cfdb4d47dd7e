// Scaled Add and Sub, all 16 members, on each of their paths: scale 4 (a multiply),
// scale 1 (no scaling, or M = 1) and scale 0.25 (a left shift), against memcpy of the
// output bytes.
#include "bench/zb.h"
#include "zivks.h"

#define ZB_SCALED_AT(name, T, label, scale)                                                    \
  ZB_FUNC_AS(scaled_add_sub, label, ZIVKS_##name##_S, T, kMemcpy, 0.8,                         \
             [](auto fn, const zb::Arrays& a, int32_t n) {                                     \
               fn(a.src<T>(0), a.src<T>(1), a.dst<T>(0), n, scale);                            \
             });                                                                               \
  ZB_FUNC_AS(scaled_add_sub, label "_I", ZIVKS_##name##_IS, T, kMemcpy, 0.8,                   \
             [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<T>(0), a.dst<T>(0), n, scale); })
#define ZB_SCALED(name, T)                                     \
  ZB_SCALED_AT(name, T, #name "_S/4", 4.0);                    \
  ZB_SCALED_AT(name, T, #name "_S/1", 1.0);                    \
  ZB_SCALED_AT(name, T, #name "_S/0.25", 0.25)

ZB_SCALED(Add_8u, uint8_t);
ZB_SCALED(Add_16u, uint16_t);
ZB_SCALED(Add_16s, int16_t);
ZB_SCALED(Add_32s, int32_t);
ZB_SCALED(Sub_8u, uint8_t);
ZB_SCALED(Sub_16u, uint16_t);
ZB_SCALED(Sub_16s, int16_t);
ZB_SCALED(Sub_32s, int32_t);
