// And, Or, Xor, their constant forms and Not, all 40 members, against memcpy of the
// output bytes and against VOLK where it has the operation (And and Or of 32-bit words).
#include <volk/volk.h>

#include "bench/zb.h"
#include "zivks.h"

#define ZB_LOGIC(name, code, T)                                                               \
  ZB_FUNC(and_or_xor_not, ZIVKS_##name##_##code, T, kMemcpy, 0.8,                             \
          [](auto fn, const zb::Arrays& a, int32_t n) {                                       \
            fn(a.src<T>(0), a.src<T>(1), a.dst<T>(0), n);                                     \
          });                                                                                 \
  ZB_FUNC(and_or_xor_not, ZIVKS_##name##_##code##_I, T, kMemcpy, 0.8,                         \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<T>(0), a.dst<T>(0), n); });  \
  ZB_FUNC(and_or_xor_not, ZIVKS_##name##C_##code, T, kMemcpy, 0.8,                            \
          [](auto fn, const zb::Arrays& a, int32_t n) {                                       \
            fn(a.src<T>(0), static_cast<T>(0x5A5A5A5Au), a.dst<T>(0), n);                     \
          });                                                                                 \
  ZB_FUNC(and_or_xor_not, ZIVKS_##name##C_##code##_I, T, kMemcpy, 0.8,                        \
          [](auto fn, const zb::Arrays& a, int32_t n) {                                       \
            fn(static_cast<T>(0x5A5A5A5Au), a.dst<T>(0), n);                                  \
          })
#define ZB_WIDTH(code, T)   \
  ZB_LOGIC(And, code, T);   \
  ZB_LOGIC(Or, code, T);    \
  ZB_LOGIC(Xor, code, T);   \
  ZB_FUNC(and_or_xor_not, ZIVKS_Not_##code, T, kMemcpy, 0.8, \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<T>(0), a.dst<T>(0), n); })

ZB_WIDTH(8u, uint8_t);
ZB_WIDTH(16u, uint16_t);
ZB_WIDTH(32u, uint32_t);
ZB_FUNC(and_or_xor_not, ZIVKS_Not_8u_I, uint8_t, kMemcpy, 0.8,
        [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.dst<uint8_t>(0), n); });

ZB_PEER(ZIVKS_And_32u, volk_32i_x2_and_32i, [](const zb::Arrays& a, int32_t n) {
  volk_32i_x2_and_32i(a.dst<int32_t>(0), a.src<int32_t>(0), a.src<int32_t>(1), n);
});
ZB_PEER(ZIVKS_Or_32u, volk_32i_x2_or_32i, [](const zb::Arrays& a, int32_t n) {
  volk_32i_x2_or_32i(a.dst<int32_t>(0), a.src<int32_t>(0), a.src<int32_t>(1), n);
});
