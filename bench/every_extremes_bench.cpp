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

// What the float rule costs: MaxEvery of floats as the library's loop runs it at the
// widest registers (one 64-byte register a step, the larger by vrange so that -0 orders
// below +0, then an unordered compare that sends a step holding a NaN to the slow path),
// without the NaN test, and as a plain maxps (neither rule). Bench-only.
#if defined(__x86_64__)
#include <immintrin.h>

namespace {
enum class MaxRule { kFull, kNoNanTest, kPlain };

template <MaxRule rule>
__attribute__((target("avx512f,avx512dq,avx512vl"))) ZIVKStatus max32_loop(const float* a, const float* b,
                                                                          float* d, int32_t len) {
  if (!a || !b || !d) return ZIVK_STS_NULL_PTR_ERR;
  if (len < 1) return ZIVK_STS_SIZE_ERR;
  const int64_t n = len & ~3;
  int64_t i = 0;
  for (; i + 16 <= n; i += 16) {
    const __m512 x = _mm512_loadu_ps(a + i), y = _mm512_loadu_ps(b + i);
    if constexpr (rule == MaxRule::kPlain) {
      _mm512_storeu_ps(d + i, _mm512_maskz_max_ps(0xFFFF, x, y));
    } else {
      _mm512_storeu_ps(d + i, _mm512_maskz_range_ps(0xFFFF, x, y, 5));
      if (rule == MaxRule::kFull && __builtin_expect(_mm512_cmp_ps_mask(x, y, _CMP_UNORD_Q) != 0, 0))
        for (int k = 0; k < 16; ++k) d[i + k] = a[i + k] != a[i + k] ? a[i + k] : b[i + k];
    }
  }
  for (; i < n; i += 4) _mm_storeu_ps(d + i, _mm_range_ps(_mm_loadu_ps(a + i), _mm_loadu_ps(b + i), 5));
  for (; i < len; ++i) d[i] = a[i] >= b[i] ? a[i] : b[i];
  return ZIVK_STS_NO_ERR;
}
}  // namespace

#define ZB_MAX_VARIANT(label, rule)                                                       \
  ZB_FUNC_AS(every_extremes, label, max32_loop<MaxRule::rule>, float, kMemcpy, 0,        \
             [](auto fn, const zb::Arrays& a, int32_t n) {                                \
               fn(a.src<float>(0), a.src<float>(1), a.dst<float>(0), n);                  \
             });                                                                          \
  ZB_PEER_AS(label, volk_32f_x2_max_32f, [](const zb::Arrays& a, int32_t n) {             \
    volk_32f_x2_max_32f(a.dst<float>(0), a.src<float>(0), a.src<float>(1), n);            \
  })
ZB_MAX_VARIANT("MaxEvery_32f/rule", kFull);
ZB_MAX_VARIANT("MaxEvery_32f/noNaNtest", kNoNanTest);
ZB_MAX_VARIANT("MaxEvery_32f/maxps", kPlain);
#endif
