// Narrowing integer conversions, all 6 members, against memcpy of the output bytes and
// against VOLK's 16-bit to 8-bit conversion. The scaled members run on each of their
// paths: Convert_8u8s_S divides and rounds at scale 4, only clamps at scale 1 and
// shifts left at scale 0.25; the others run at a scale that keeps the bench's inputs
// (integer readings of floats in [1, 2): the high half about 0x3F80) mostly in range,
// once per rounding mode where they take one.
//
// The peer: volk_16i_convert_8i keeps the high byte of each element (an arithmetic shift
// right by 8, which rounds toward minus infinity). Convert_16s8s_S at scale 256 with
// ZIVK_RND_ZERO is the same division by 256; the two agree on every non-negative element
// and on every multiple of 256, and differ by one on the other negative ones, since no
// rounding mode here rounds toward minus infinity. Nothing here has a target on the
// memcpy baseline (a round and a clamp per element are not meant to keep up with a
// copy); the peer is expected to be matched.
#include <volk/volk.h>

#include "bench/zb.h"
#include "zivks.h"

// A labelled case whose input (S) and output (D) widths differ; the arguments after n
// (rndMode, scale) follow the label.
#define ZB_NARROW_AT(code, S, D, label, ...)                                                   \
  static const int ZB_CAT(zb_case_, __COUNTER__) = ::zb::add_func(                             \
      "narrowing", label, "ZIVKS_Convert_" #code, &ZIVKS_Convert_##code, sizeof(S), sizeof(D), \
      ::zb::kMemcpy, 0, [](auto fn, const zb::Arrays& a, int32_t n) {                          \
        fn(a.src<S>(0), a.dst<D>(0), n, __VA_ARGS__);                                          \
      })
#define ZB_NARROW(code, S, D)                                                                  \
  ZB_FUNC_IO(narrowing, ZIVKS_Convert_##code, S, D, kMemcpy, 0,                                \
             [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<S>(0), a.dst<D>(0), n); })
// The three rounding modes at one scale; the label of ZIVK_RND_ZERO is the bare name.
#define ZB_NARROW_MODES(code, S, D, scale)                                                     \
  ZB_NARROW_AT(code, S, D, "Convert_" #code, ZIVK_RND_ZERO, scale);                            \
  ZB_NARROW_AT(code, S, D, "Convert_" #code "/near", ZIVK_RND_NEAR, scale);                    \
  ZB_NARROW_AT(code, S, D, "Convert_" #code "/away", ZIVK_RND_AWAY, scale)

ZB_NARROW(8s8u, int8_t, uint8_t);
ZB_NARROW(32s16s, int32_t, int16_t);
ZB_NARROW_AT(8u8s_S, uint8_t, int8_t, "Convert_8u8s_S/4", ZIVK_RND_NEAR, 4.0);
ZB_NARROW_AT(8u8s_S, uint8_t, int8_t, "Convert_8u8s_S/1", ZIVK_RND_NEAR, 1.0);
ZB_NARROW_AT(8u8s_S, uint8_t, int8_t, "Convert_8u8s_S/0.25", ZIVK_RND_NEAR, 0.25);
ZB_NARROW_MODES(16s8s_S, int16_t, int8_t, 0x1p8);
ZB_NARROW_AT(32s16s_S, int32_t, int16_t, "Convert_32s16s_S", 0x1p16);
ZB_NARROW_MODES(64s32s_S, int64_t, int32_t, 0x1p32);

ZB_PEER(ZIVKS_Convert_16s8s_S, volk_16i_convert_8i, [](const zb::Arrays& a, int32_t n) {
  volk_16i_convert_8i(a.dst<int8_t>(0), a.src<int16_t>(0), n);
});
