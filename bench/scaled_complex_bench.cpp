// Scaled Add, Sub, AddC, SubC and SubCRev of complex integers, all 20 members of 16sc
// and 32sc, at scale 4 (divided and rounded), 1 (no scaling) and 0.25 (a saturating
// left shift), against memcpy of the output bytes and the generic build. What is
// expected of them is in the `vs gen` column: at least ten times the generic build's
// speed at L1; the memcpy ratio is for information.
#include "bench/zb.h"
#include "zivks.h"

namespace {

// Parts of either sign, neither 0 nor a power of two.
template <class C> C constant();
template <> ZIVK16sc constant() { return {1234, -567}; }
template <> ZIVK32sc constant() { return {123457, -7890}; }

}  // namespace

#define ZB_COMPLEX_ARRAYS_AT(name, code, C, scale_label, scale)                                \
  ZB_FUNC_AS(scaled_complex, #name "_" #code "_S/" scale_label, ZIVKS_##name##_##code##_S, C,  \
             kMemcpy, 0, [](auto fn, const zb::Arrays& a, int32_t n) {                         \
               fn(a.src<C>(0), a.src<C>(1), a.dst<C>(0), n, scale);                            \
             });                                                                               \
  ZB_FUNC_AS(scaled_complex, #name "_" #code "_IS/" scale_label, ZIVKS_##name##_##code##_IS, C, \
             kMemcpy, 0, [](auto fn, const zb::Arrays& a, int32_t n) {                         \
               fn(a.src<C>(0), a.dst<C>(0), n, scale);                                         \
             })
#define ZB_COMPLEX_CONST_AT(name, code, C, scale_label, scale)                                 \
  ZB_FUNC_AS(scaled_complex, #name "_" #code "_S/" scale_label, ZIVKS_##name##_##code##_S, C,  \
             kMemcpy, 0, [](auto fn, const zb::Arrays& a, int32_t n) {                         \
               fn(a.src<C>(0), constant<C>(), a.dst<C>(0), n, scale);                          \
             });                                                                               \
  ZB_FUNC_AS(scaled_complex, #name "_" #code "_IS/" scale_label, ZIVKS_##name##_##code##_IS, C, \
             kMemcpy, 0, [](auto fn, const zb::Arrays& a, int32_t n) {                         \
               fn(constant<C>(), a.dst<C>(0), n, scale);                                       \
             })
#define ZB_COMPLEX(form, name, code, C)           \
  ZB_COMPLEX_##form##_AT(name, code, C, "4", 4.0); \
  ZB_COMPLEX_##form##_AT(name, code, C, "1", 1.0); \
  ZB_COMPLEX_##form##_AT(name, code, C, "0.25", 0.25)
#define ZB_COMPLEX_TYPE(code, C)          \
  ZB_COMPLEX(ARRAYS, Add, code, C);       \
  ZB_COMPLEX(ARRAYS, Sub, code, C);       \
  ZB_COMPLEX(CONST, AddC, code, C);       \
  ZB_COMPLEX(CONST, SubC, code, C);       \
  ZB_COMPLEX(CONST, SubCRev, code, C)

ZB_COMPLEX_TYPE(16sc, ZIVK16sc);
ZB_COMPLEX_TYPE(32sc, ZIVK32sc);
