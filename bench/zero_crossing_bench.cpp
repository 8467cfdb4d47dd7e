// ZeroCrossing_32f and ZeroCrossing_16s32f, each kind, as reads of the signal.
#include "bench/zb.h"
#include "zivks.h"

#define ZB_ZC(code, T, kind)                                                                    \
  ZB_FUNC_AS(zero_crossing, "ZeroCrossing_" #code "/" #kind, ZIVKS_ZeroCrossing_##code, T,      \
             kMemcpy, 0, [](auto fn, const zb::Arrays& a, int32_t n) {                          \
               float r;                                                                         \
               fn(a.src<T>(0), n, &r, kind);                                                    \
               volatile float sink = r;                                                         \
               (void)sink;                                                                      \
             })
ZB_ZC(32f, float, 0);
ZB_ZC(32f, float, 1);
ZB_ZC(32f, float, 2);
ZB_ZC(16s32f, int16_t, 0);
ZB_ZC(16s32f, int16_t, 1);
ZB_ZC(16s32f, int16_t, 2);
