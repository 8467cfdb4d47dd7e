// Add, Sub, AddC, SubC and SubCRev on 32f, 64f, 32fc and 64fc, all 40 members, against
// memcpy of the output bytes and against VOLK where it has the operation.
#include <volk/volk.h>

#include "bench/zb.h"
#include "zivks.h"

namespace {

template <class E> E constant();
template <> float constant() { return 0.25f; }
template <> double constant() { return 0.25; }
template <> ZIVK32fc constant() { return {0.25f, -0.5f}; }
template <> ZIVK64fc constant() { return {0.25, -0.5}; }

}  // namespace

#define ZB_ARRAYS(name, code, T)                                                              \
  ZB_FUNC(float_add_sub, ZIVKS_##name##_##code, T, kMemcpy, 0.8,                              \
          [](auto fn, const zb::Arrays& a, int32_t n) {                                       \
            fn(a.src<T>(0), a.src<T>(1), a.dst<T>(0), n);                                     \
          });                                                                                 \
  ZB_FUNC(float_add_sub, ZIVKS_##name##_##code##_I, T, kMemcpy, 0.8,                          \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<T>(0), a.dst<T>(0), n); })
#define ZB_CONST(name, code, T)                                                               \
  ZB_FUNC(float_add_sub, ZIVKS_##name##_##code, T, kMemcpy, 0.8,                              \
          [](auto fn, const zb::Arrays& a, int32_t n) {                                       \
            fn(a.src<T>(0), constant<T>(), a.dst<T>(0), n);                                   \
          });                                                                                 \
  ZB_FUNC(float_add_sub, ZIVKS_##name##_##code##_I, T, kMemcpy, 0.8,                          \
          [](auto fn, const zb::Arrays& a, int32_t n) { fn(constant<T>(), a.dst<T>(0), n); })
#define ZB_FLOAT(code, T) \
  ZB_ARRAYS(Add, code, T); \
  ZB_ARRAYS(Sub, code, T); \
  ZB_CONST(AddC, code, T); \
  ZB_CONST(SubC, code, T); \
  ZB_CONST(SubCRev, code, T)

ZB_FLOAT(32f, float);
ZB_FLOAT(64f, double);
ZB_FLOAT(32fc, ZIVK32fc);
ZB_FLOAT(64fc, ZIVK64fc);

// VOLK's kernels for the same operations, on the same arrays. Sub takes its first
// array from its second; VOLK's subtract takes its second from its first.
namespace {
lv_32fc_t* cf(ZIVK32fc* p) { return reinterpret_cast<lv_32fc_t*>(p); }
}  // namespace

ZB_PEER(ZIVKS_Add_32f, volk_32f_x2_add_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_x2_add_32f(a.dst<float>(0), a.src<float>(0), a.src<float>(1), n);
});
ZB_PEER(ZIVKS_Add_32f_I, volk_32f_x2_add_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_x2_add_32f(a.dst<float>(0), a.src<float>(0), a.dst<float>(0), n);
});
ZB_PEER(ZIVKS_Sub_32f, volk_32f_x2_subtract_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_x2_subtract_32f(a.dst<float>(0), a.src<float>(1), a.src<float>(0), n);
});
ZB_PEER(ZIVKS_Sub_32f_I, volk_32f_x2_subtract_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_x2_subtract_32f(a.dst<float>(0), a.dst<float>(0), a.src<float>(0), n);
});
ZB_PEER(ZIVKS_AddC_32f, volk_32f_s32f_add_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_s32f_add_32f(a.dst<float>(0), a.src<float>(0), constant<float>(), n);
});
ZB_PEER(ZIVKS_AddC_32f_I, volk_32f_s32f_add_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_s32f_add_32f(a.dst<float>(0), a.dst<float>(0), constant<float>(), n);
});
// x - v is x + (-v) exactly.
ZB_PEER(ZIVKS_SubC_32f, volk_32f_s32f_add_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_s32f_add_32f(a.dst<float>(0), a.src<float>(0), -constant<float>(), n);
});
ZB_PEER(ZIVKS_SubC_32f_I, volk_32f_s32f_add_32f, [](const zb::Arrays& a, int32_t n) {
  volk_32f_s32f_add_32f(a.dst<float>(0), a.dst<float>(0), -constant<float>(), n);
});
ZB_PEER(ZIVKS_Add_64f, volk_64f_x2_add_64f, [](const zb::Arrays& a, int32_t n) {
  volk_64f_x2_add_64f(a.dst<double>(0), a.src<double>(0), a.src<double>(1), n);
});
ZB_PEER(ZIVKS_Add_64f_I, volk_64f_x2_add_64f, [](const zb::Arrays& a, int32_t n) {
  volk_64f_x2_add_64f(a.dst<double>(0), a.src<double>(0), a.dst<double>(0), n);
});
ZB_PEER(ZIVKS_Add_32fc, volk_32fc_x2_add_32fc, [](const zb::Arrays& a, int32_t n) {
  volk_32fc_x2_add_32fc(cf(a.dst<ZIVK32fc>(0)), cf(a.src<ZIVK32fc>(0)), cf(a.src<ZIVK32fc>(1)), n);
});
ZB_PEER(ZIVKS_Add_32fc_I, volk_32fc_x2_add_32fc, [](const zb::Arrays& a, int32_t n) {
  volk_32fc_x2_add_32fc(cf(a.dst<ZIVK32fc>(0)), cf(a.src<ZIVK32fc>(0)), cf(a.dst<ZIVK32fc>(0)), n);
});

// What the NaN rule costs: Add of floats as the library's loop runs it at the widest
// registers (two 64-byte registers a step, stored, then one unordered test of both that
// sends a step holding a NaN to the slow path), with and without the test. Bench-only.
#if defined(__x86_64__)
#include <immintrin.h>

namespace {
template <bool kTest>
__attribute__((target("avx512f"))) ZIVKStatus add32_loop(const float* a, const float* b, float* d,
                                                         int32_t len) {
  if (!a || !b || !d) return ZIVK_STS_NULL_PTR_ERR;
  if (len < 1) return ZIVK_STS_SIZE_ERR;
  const int64_t n = len & ~3;
  int64_t i = 0;
  for (; i + 32 <= n; i += 32) {
    const __m512 r0 = _mm512_add_ps(_mm512_loadu_ps(a + i), _mm512_loadu_ps(b + i));
    const __m512 r1 = _mm512_add_ps(_mm512_loadu_ps(a + i + 16), _mm512_loadu_ps(b + i + 16));
    _mm512_storeu_ps(d + i, r0);
    _mm512_storeu_ps(d + i + 16, r1);
    if (kTest && __builtin_expect((_mm512_cmp_ps_mask(r0, r0, _CMP_UNORD_Q) |
                                   _mm512_cmp_ps_mask(r1, r1, _CMP_UNORD_Q)) != 0, 0))
      for (int k = 0; k < 32; ++k) d[i + k] = a[i + k] + b[i + k];
  }
  for (; i + 16 <= n; i += 16) _mm512_storeu_ps(d + i, _mm512_add_ps(_mm512_loadu_ps(a + i), _mm512_loadu_ps(b + i)));
  for (; i < n; i += 4) _mm_storeu_ps(d + i, _mm_add_ps(_mm_loadu_ps(a + i), _mm_loadu_ps(b + i)));
  for (; i < len; ++i) d[i] = a[i] + b[i];
  return ZIVK_STS_NO_ERR;
}
}  // namespace

#define ZB_ADD_VARIANT(label, test)                                                       \
  ZB_FUNC_AS(float_add_sub, label, add32_loop<test>, float, kMemcpy, 0,                  \
             [](auto fn, const zb::Arrays& a, int32_t n) {                                \
               fn(a.src<float>(0), a.src<float>(1), a.dst<float>(0), n);                  \
             });                                                                          \
  ZB_PEER_AS(label, volk_32f_x2_add_32f, [](const zb::Arrays& a, int32_t n) {             \
    volk_32f_x2_add_32f(a.dst<float>(0), a.src<float>(0), a.src<float>(1), n);            \
  })
ZB_ADD_VARIANT("Add_32f/NaNtest", true);
ZB_ADD_VARIANT("Add_32f/noNaNtest", false);
#endif
