// Packed 24-bit sample conversions, all 8 members, against memcpy of the output bytes
// (4 bytes a sample when unpacking, 3 when packing). Every member is expected to reach
// half of memcpy at the first cache level. No peer has packed 24-bit samples.
//
// The packing members run at a scale that keeps the bench's inputs in the 24-bit range
// (integer readings of floats in [1, 2), about 2^30; the floats themselves): 32u24u_S and
// 32s24s_S divide by 2^8 and round (and, as a second row, at scale 0.25 take the
// saturating left shift, where every sample clamps), 32f24u_S multiplies by 2^23 and
// 32f24s_S by 2^22.
#include "bench/zb.h"
#include "zivks.h"

namespace {
struct Sample24 {
  uint8_t b[3];
};
static_assert(sizeof(Sample24) == 3, "a packed sample is 3 bytes");
}  // namespace

// One member; the widths that count are those of Sample24 on the packed side, the
// packed array itself is passed as bytes.
#define ZB_UNPACK(code, D)                                                                     \
  ZB_FUNC_IO(samples24, ZIVKS_Convert_##code, Sample24, D, kMemcpy, 0.5,                       \
             [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<uint8_t>(0), a.dst<D>(0), n); })
#define ZB_PACK(code, S, label, scale)                                                         \
  static const int ZB_CAT(zb_case_, __COUNTER__) = ::zb::add_func(                             \
      "samples24", label, "ZIVKS_Convert_" #code, &ZIVKS_Convert_##code, sizeof(S),            \
      sizeof(Sample24), ::zb::kMemcpy, 0.5, [](auto fn, const zb::Arrays& a, int32_t n) {      \
        fn(a.src<S>(0), a.dst<uint8_t>(0), n, scale);                                          \
      })

ZB_UNPACK(24u32u, uint32_t);
ZB_UNPACK(24u32f, float);
ZB_UNPACK(24s32s, int32_t);
ZB_UNPACK(24s32f, float);
ZB_PACK(32u24u_S, uint32_t, "Convert_32u24u_S", 0x1p8);
ZB_PACK(32u24u_S, uint32_t, "Convert_32u24u_S/0.25", 0.25);
ZB_PACK(32s24s_S, int32_t, "Convert_32s24s_S", 0x1p8);
ZB_PACK(32s24s_S, int32_t, "Convert_32s24s_S/0.25", 0.25);
ZB_PACK(32f24u_S, float, "Convert_32f24u_S", 0x1p-23);
ZB_PACK(32f24s_S, float, "Convert_32f24s_S", 0x1p-22);
