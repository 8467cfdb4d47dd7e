// Copy, Move, Set and Zero against memcpy and memset of the same bytes (of zeros for
// Zero). Move runs
// with the destination above the source (the backward walk); Move_8u and Move_32f
// also run the other way (the forward walk, the loop Copy has).
#include "bench/zb.h"
#include "zivks.h"

namespace {

// A fill value with every byte set, so that no byte of a Set is trivially zero.
template <class E>
E fill_value() {
  E v;
  memset(&v, 0x3F, sizeof v);
  return v;
}

}  // namespace

#define ZB_MOVEMENT(code, T)                                                              \
  ZB_FUNC(copy_move_set_zero, ZIVKS_Copy_##code, T, kMemcpy, 0.8,                         \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<T>(0), a.dst<T>(0), n); }); \
  ZB_FUNC(copy_move_set_zero, ZIVKS_Move_##code, T, kMemcpy, 0.8,                         \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<T>(0), a.dst<T>(0), n); }); \
  ZB_FUNC(copy_move_set_zero, ZIVKS_Set_##code, T, kMemset, 0.8,                          \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(fill_value<T>(), a.dst<T>(0), n); }); \
  ZB_FUNC(copy_move_set_zero, ZIVKS_Zero_##code, T, kMemsetZero, 0.8,                         \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.dst<T>(0), n); })

ZB_MOVEMENT(8u, uint8_t);
ZB_MOVEMENT(16s, int16_t);
ZB_MOVEMENT(32s, int32_t);
ZB_MOVEMENT(32f, float);
ZB_MOVEMENT(64s, int64_t);
ZB_MOVEMENT(64f, double);
ZB_MOVEMENT(16sc, ZIVK16sc);
ZB_MOVEMENT(32sc, ZIVK32sc);
ZB_MOVEMENT(32fc, ZIVK32fc);
ZB_MOVEMENT(64sc, ZIVK64sc);
ZB_MOVEMENT(64fc, ZIVK64fc);

// The source above the destination: the forward walk.
ZB_FUNC_AS(copy_move_set_zero, "Move_8u fwd", ZIVKS_Move_8u, uint8_t, kMemcpy, 0.8,
           [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.dst<uint8_t>(0), a.src<uint8_t>(0), n); });
ZB_FUNC_AS(copy_move_set_zero, "Move_32f fwd", ZIVKS_Move_32f, float, kMemcpy, 0.8,
           [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.dst<float>(0), a.src<float>(0), n); });
