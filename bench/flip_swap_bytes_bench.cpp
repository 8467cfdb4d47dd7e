// Flip and SwapBytes, all 20 members, against memcpy of the output bytes and against
// VOLK's in-place byte swaps. The 24-bit forms count 3-byte samples.
#include <volk/volk.h>

#include "bench/zb.h"
#include "zivks.h"

namespace {
struct Sample24 {
  uint8_t b[3];
};
}  // namespace

#define ZB_FLIP(code, T)                                                                   \
  ZB_FUNC(flip_swap_bytes, ZIVKS_Flip_##code, T, kMemcpy, 0.8,                             \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<T>(0), a.dst<T>(0), n); }); \
  ZB_FUNC(flip_swap_bytes, ZIVKS_Flip_##code##_I, T, kMemcpy, 0,                           \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.dst<T>(0), n); })

ZB_FLIP(8u, uint8_t);
ZB_FLIP(16u, uint16_t);
ZB_FLIP(32f, float);
ZB_FLIP(64f, double);
ZB_FLIP(32fc, ZIVK32fc);
ZB_FLIP(64fc, ZIVK64fc);

#define ZB_SWAP(code, T, E)                                                                \
  ZB_FUNC(flip_swap_bytes, ZIVKS_SwapBytes_##code, E, kMemcpy, 0.8,                        \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<T>(0), a.dst<T>(0), n); }); \
  ZB_FUNC(flip_swap_bytes, ZIVKS_SwapBytes_##code##_I, E, kMemcpy, 0.8,                    \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.dst<T>(0), n); })

ZB_SWAP(16u, uint16_t, uint16_t);
ZB_SWAP(24u, uint8_t, Sample24);
ZB_SWAP(32u, uint32_t, uint32_t);
ZB_SWAP(64u, uint64_t, uint64_t);

ZB_PEER(ZIVKS_SwapBytes_16u_I, volk_16u_byteswap,
        [](const zb::Arrays& a, int32_t n) { volk_16u_byteswap(a.dst<uint16_t>(0), n); });
ZB_PEER(ZIVKS_SwapBytes_32u_I, volk_32u_byteswap,
        [](const zb::Arrays& a, int32_t n) { volk_32u_byteswap(a.dst<uint32_t>(0), n); });
ZB_PEER(ZIVKS_SwapBytes_64u_I, volk_64u_byteswap,
        [](const zb::Arrays& a, int32_t n) { volk_64u_byteswap(a.dst<uint64_t>(0), n); });
