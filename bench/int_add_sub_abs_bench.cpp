// Plain integer Add, Sub and Abs, all 21 members, against memcpy of the output bytes.
#include "bench/zb.h"
#include "zivks.h"

#define ZB_ABS(code, T)                                                                        \
  ZB_FUNC(int_add_sub_abs, ZIVKS_Abs_##code, T, kMemcpy, 0.8,                                  \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<T>(0), a.dst<T>(0), n); });   \
  ZB_FUNC(int_add_sub_abs, ZIVKS_Abs_##code##_I, T, kMemcpy, 0.8,                              \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.dst<T>(0), n); })
ZB_ABS(16s, int16_t);
ZB_ABS(32s, int32_t);
ZB_ABS(32f, float);
ZB_ABS(64f, double);

#define ZB_TWO(name, S, D)                                                                     \
  ZB_FUNC_IO(int_add_sub_abs, ZIVKS_##name, S, D, kMemcpy, 0.8,                                \
             [](auto fn, const zb::Arrays& a, int32_t n) {                                     \
               fn(a.src<S>(0), a.src<S>(1), a.dst<D>(0), n);                                   \
             })
#define ZB_TWO_I(name, S, D)                                                                   \
  ZB_FUNC_IO(int_add_sub_abs, ZIVKS_##name, S, D, kMemcpy, 0.8,                                \
             [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<S>(0), a.dst<D>(0), n); })
ZB_TWO(Add_8u16u, uint8_t, uint16_t);
ZB_TWO(Add_16u, uint16_t, uint16_t);
ZB_TWO(Add_32u, uint32_t, uint32_t);
ZB_TWO_I(Add_32u_I, uint32_t, uint32_t);
ZB_TWO(Add_16s, int16_t, int16_t);
ZB_TWO_I(Add_16s_I, int16_t, int16_t);
ZB_TWO(Sub_16s, int16_t, int16_t);
ZB_TWO_I(Sub_16s_I, int16_t, int16_t);
ZB_TWO(Add_16s32f, int16_t, float);
ZB_TWO(Sub_16s32f, int16_t, float);
ZB_TWO_I(Add_16s32s_I, int16_t, int32_t);
ZB_FUNC(int_add_sub_abs, ZIVKS_AddC_16s_I, int16_t, kMemcpy, 0.8,
        [](auto fn, const zb::Arrays& a, int32_t n) { fn(int16_t{3}, a.dst<int16_t>(0), n); });
ZB_FUNC(int_add_sub_abs, ZIVKS_SubC_16s_I, int16_t, kMemcpy, 0.8,
        [](auto fn, const zb::Arrays& a, int32_t n) { fn(int16_t{3}, a.dst<int16_t>(0), n); });
