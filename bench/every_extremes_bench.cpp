// MaxEvery and MinEvery (all 12 members) against memcpy of the output and VOLK's
// element-wise max and min; CountInRange, FindNearest and ReplaceNAN by themselves.
#include <volk/volk.h>

#include "bench/zb.h"
#include "zivks.h"

#define ZB_EVERY(name, code, T)                                                                 \
  ZB_FUNC(every_extremes, ZIVKS_##name##_##code, T, kMemcpy, 0.8,                               \
          [](auto fn, const zb::Arrays& a, int32_t n) {                                         \
            fn(a.src<T>(0), a.src<T>(1), a.dst<T>(0), n);                                       \
          })
#define ZB_EVERY_I(name, code, T)                                                               \
  ZB_FUNC(every_extremes, ZIVKS_##name##_##code##_I, T, kMemcpy, 0.8,                           \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<T>(0), a.dst<T>(0), n); })

ZB_EVERY(MaxEvery, 32f, float);
ZB_EVERY(MaxEvery, 64f, double);
ZB_EVERY(MinEvery, 32f, float);
ZB_EVERY(MinEvery, 64f, double);
ZB_EVERY_I(MaxEvery, 16s, int16_t);
ZB_EVERY_I(MaxEvery, 32s, int32_t);
ZB_EVERY_I(MaxEvery, 32f, float);
ZB_EVERY_I(MaxEvery, 64f, double);
ZB_EVERY_I(MinEvery, 16s, int16_t);
ZB_EVERY_I(MinEvery, 32s, int32_t);
ZB_EVERY_I(MinEvery, 32f, float);
ZB_EVERY_I(MinEvery, 64f, double);

ZB_PEER(ZIVKS_MaxEvery_32f, volk_32f_x2_max_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_x2_max_32f(a.dst<float>(0), a.src<float>(0), a.src<float>(1), n);
});
ZB_PEER(ZIVKS_MinEvery_32f, volk_32f_x2_min_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_x2_min_32f(a.dst<float>(0), a.src<float>(0), a.src<float>(1), n);
});
ZB_PEER(ZIVKS_MaxEvery_64f, volk_64f_x2_max_64f, [](const zb::Arrays& a, int32_t n) {
  volk_64f_x2_max_64f(a.dst<double>(0), a.src<double>(0), a.src<double>(1), n);
});
ZB_PEER(ZIVKS_MinEvery_64f, volk_64f_x2_min_64f, [](const zb::Arrays& a, int32_t n) {
  volk_64f_x2_min_64f(a.dst<double>(0), a.src<double>(0), a.src<double>(1), n);
});
ZB_PEER(ZIVKS_MaxEvery_32f_I, volk_32f_x2_max_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_x2_max_32f(a.dst<float>(0), a.src<float>(0), a.dst<float>(0), n);
});
ZB_PEER(ZIVKS_MinEvery_32f_I, volk_32f_x2_min_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_x2_min_32f(a.dst<float>(0), a.src<float>(0), a.dst<float>(0), n);
});

ZB_FUNC(every_extremes, ZIVKS_CountInRange_32s, int32_t, kMemcpy, 0,
        [](auto fn, const zb::Arrays& a, int32_t n) {
          int32_t c;
          fn(a.src<int32_t>(0), n, &c, 0x3F900000, 0x3FD00000);
          volatile int32_t sink = c;
          (void)sink;
        });
ZB_FUNC(every_extremes, ZIVKS_ReplaceNAN_32f_I, float, kMemcpy, 0.8,
        [](auto fn, const zb::Arrays& a, int32_t n) { fn(0.0f, a.dst<float>(0), n); });
ZB_FUNC(every_extremes, ZIVKS_ReplaceNAN_64f_I, double, kMemcpy, 0.8,
        [](auto fn, const zb::Arrays& a, int32_t n) { fn(0.0, a.dst<double>(0), n); });
// A table of 256 ascending entries; the widest output, the indices, sets the sizes.
ZB_FUNC(every_extremes, ZIVKS_FindNearest_16u, int32_t, kMemcpy, 0,
        [](auto fn, const zb::Arrays& a, int32_t n) {
          static uint16_t table[256];
          for (int i = 0; i < 256; ++i) table[i] = static_cast<uint16_t>(i * 256 + 7);
          fn(a.src<uint16_t>(0), a.dst<uint16_t>(0), a.dst<int32_t>(1), n, table, 256);
        });
