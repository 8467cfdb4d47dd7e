// 64-bit scaled addition: Add_64s_S, AddC_64s_S and AddC_64u_S at scale 1 (the saturating
// sum), 0.25 (a saturating left shift), 4 and 2^10 (the 65-bit sum shifted right and
// rounded), the AddC members rounding to nearest even at every scale and, at scale 4,
// also toward zero and to nearest with ties upward; against memcpy of the output bytes
// and the generic build. What is expected of them is in the `vs gen` column: at least
// ten times the generic build's speed at L1; the memcpy ratio is for information.
//
// Read as 64-bit integers, the arrays hold values from 2^62 - 2^55 to just below 2^62:
// no sum leaves the type, and every left shift saturates.
#include "bench/zb.h"
#include "zivks.h"

namespace {

constexpr int64_t kConst64s = -(int64_t{1} << 61) + 12345;
constexpr uint64_t kConst64u = 0x8123456789ABCDEFull;

// The rounding modes of AddC: toward zero, nearest even, nearest with ties upward.
constexpr int32_t kTowardZero = 0;
constexpr int32_t kNearestEven = 1;
constexpr int32_t kNearestUp = 2;

}  // namespace

#define ZB_ADD_64S_AT(scale_label, scale)                                                      \
  ZB_FUNC_AS(scaled_64, "Add_64s_S/" scale_label, ZIVKS_Add_64s_S, int64_t, kMemcpy, 0,        \
             [](auto fn, const zb::Arrays& a, int32_t n) {                                     \
               fn(a.src<int64_t>(0), a.src<int64_t>(1), a.dst<int64_t>(0), n, scale);          \
             })
#define ZB_ADDC_64_AT(code, T, val, label, mode, scale)                                        \
  ZB_FUNC_AS(scaled_64, "AddC_" #code "_S/" label, ZIVKS_AddC_##code##_S, T, kMemcpy, 0,       \
             [](auto fn, const zb::Arrays& a, int32_t n) {                                     \
               fn(a.src<T>(0), val, a.dst<T>(0), n, mode, scale);                              \
             })
#define ZB_ADDC_64(code, T, val)                                          \
  ZB_ADDC_64_AT(code, T, val, "1", kNearestEven, 1.0);                    \
  ZB_ADDC_64_AT(code, T, val, "0.25", kNearestEven, 0.25);                \
  ZB_ADDC_64_AT(code, T, val, "4", kNearestEven, 4.0);                    \
  ZB_ADDC_64_AT(code, T, val, "4/zero", kTowardZero, 4.0);                \
  ZB_ADDC_64_AT(code, T, val, "4/up", kNearestUp, 4.0);                   \
  ZB_ADDC_64_AT(code, T, val, "1024", kNearestEven, 1024.0)

ZB_ADD_64S_AT("1", 1.0);
ZB_ADD_64S_AT("0.25", 0.25);
ZB_ADD_64S_AT("4", 4.0);
ZB_ADD_64S_AT("1024", 1024.0);
ZB_ADDC_64(64s, int64_t, kConst64s);
ZB_ADDC_64(64u, uint64_t, kConst64u);
