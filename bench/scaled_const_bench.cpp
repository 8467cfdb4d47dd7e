// Scaled AddC, SubC and SubCRev of an array and a constant, all 24 members, on each of
// their paths: scale 4 (the exact result divided and rounded), scale 1 (no scaling) and
// scale 0.25 (a saturating left shift), against memcpy of the output bytes and the
// generic build. What is expected of them is in the `vs gen` column: at least ten times
// the generic build's speed at L1. The memcpy ratio is for information (a loop of widen,
// round and narrow steps is not meant to keep up with a copy), so it has no target here.
#include "bench/zb.h"
#include "zivks.h"

namespace {

// The constant of each type: neither 0 nor a power of two, so no member can take a
// shortcut that a real caller would not.
template <class T> T constant();
template <> uint8_t constant() { return 23; }
template <> uint16_t constant() { return 1234; }
template <> int16_t constant() { return -1234; }
template <> int32_t constant() { return -123457; }

}  // namespace

#define ZB_SCALED_CONST_AT(name, code, T, scale_label, scale)                                  \
  ZB_FUNC_AS(scaled_const, #name "_" #code "_S/" scale_label, ZIVKS_##name##_##code##_S, T,    \
             kMemcpy, 0, [](auto fn, const zb::Arrays& a, int32_t n) {                         \
               fn(a.src<T>(0), constant<T>(), a.dst<T>(0), n, scale);                          \
             });                                                                               \
  ZB_FUNC_AS(scaled_const, #name "_" #code "_IS/" scale_label, ZIVKS_##name##_##code##_IS, T,  \
             kMemcpy, 0, [](auto fn, const zb::Arrays& a, int32_t n) {                         \
               fn(constant<T>(), a.dst<T>(0), n, scale);                                       \
             })
#define ZB_SCALED_CONST(name, code, T)                  \
  ZB_SCALED_CONST_AT(name, code, T, "4", 4.0);          \
  ZB_SCALED_CONST_AT(name, code, T, "1", 1.0);          \
  ZB_SCALED_CONST_AT(name, code, T, "0.25", 0.25)
#define ZB_SCALED_CONST_TYPE(code, T) \
  ZB_SCALED_CONST(AddC, code, T);     \
  ZB_SCALED_CONST(SubC, code, T);     \
  ZB_SCALED_CONST(SubCRev, code, T)

ZB_SCALED_CONST_TYPE(8u, uint8_t);
ZB_SCALED_CONST_TYPE(16u, uint16_t);
ZB_SCALED_CONST_TYPE(16s, int16_t);
ZB_SCALED_CONST_TYPE(32s, int32_t);
