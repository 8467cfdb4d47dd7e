// LShiftC and RShiftC, all 16 members at a count inside the width (the shifting path),
// against memcpy of the output bytes.
#include "bench/zb.h"
#include "zivks.h"

#define ZB_SHIFT(name, code, T)                                                               \
  ZB_FUNC(shifts, ZIVKS_##name##_##code, T, kMemcpy, 0.8,                                     \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<T>(0), 3, a.dst<T>(0), n); }); \
  ZB_FUNC(shifts, ZIVKS_##name##_##code##_I, T, kMemcpy, 0.8,                                 \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(3, a.dst<T>(0), n); })

ZB_SHIFT(LShiftC, 8u, uint8_t);
ZB_SHIFT(LShiftC, 16u, uint16_t);
ZB_SHIFT(LShiftC, 16s, int16_t);
ZB_SHIFT(LShiftC, 32s, int32_t);
ZB_SHIFT(RShiftC, 8u, uint8_t);
ZB_SHIFT(RShiftC, 16u, uint16_t);
ZB_SHIFT(RShiftC, 16s, int16_t);
ZB_SHIFT(RShiftC, 32s, int32_t);
