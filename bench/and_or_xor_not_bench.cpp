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

// What the read hints cost: And of 32-bit words as the library's loop runs it at the
// widest registers (64 bytes a step, a streaming hint 2048 bytes ahead of each source
// every 128 bytes), with and without the hints, and the same with two registers a step
// (both loaded before either is stored). Bench-only; the library keeps its hints.
#if defined(__x86_64__)
#include <immintrin.h>

namespace {
template <bool kHint, bool kPairs = false>
__attribute__((target("avx512f"))) ZIVKStatus and32_loop(const uint32_t* a, const uint32_t* b,
                                                         uint32_t* d, int32_t len) {
  if (!a || !b || !d) return ZIVK_STS_NULL_PTR_ERR;
  if (len < 1) return ZIVK_STS_SIZE_ERR;
  const int64_t n = len & ~3;
  int64_t i = 0;
  for (; kPairs && i + 32 <= n; i += 32) {
    if (kHint) {
      _mm_prefetch(reinterpret_cast<const char*>(a + i) + 2048, _MM_HINT_NTA);
      _mm_prefetch(reinterpret_cast<const char*>(b + i) + 2048, _MM_HINT_NTA);
    }
    const __m512i a0 = _mm512_loadu_si512(a + i), b0 = _mm512_loadu_si512(b + i);
    const __m512i a1 = _mm512_loadu_si512(a + i + 16), b1 = _mm512_loadu_si512(b + i + 16);
    _mm512_storeu_si512(d + i, _mm512_and_si512(a0, b0));
    _mm512_storeu_si512(d + i + 16, _mm512_and_si512(a1, b1));
  }
  for (; i + 16 <= n; i += 16) {
    if (kHint && (i * 4) % 128 == 0) {
      _mm_prefetch(reinterpret_cast<const char*>(a + i) + 2048, _MM_HINT_NTA);
      _mm_prefetch(reinterpret_cast<const char*>(b + i) + 2048, _MM_HINT_NTA);
    }
    _mm512_storeu_si512(d + i, _mm512_and_si512(_mm512_loadu_si512(a + i), _mm512_loadu_si512(b + i)));
  }
  for (; i < n; i += 4)
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i),
                     _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a + i)),
                                   _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i))));
  for (; i < len; ++i) d[i] = a[i] & b[i];
  return ZIVK_STS_NO_ERR;
}
}  // namespace

#define ZB_AND_VARIANT(label, kernel)                                                      \
  ZB_FUNC_AS(and_or_xor_not, label, kernel, uint32_t, kMemcpy, 0,                          \
             [](auto fn, const zb::Arrays& a, int32_t n) {                                 \
               fn(a.src<uint32_t>(0), a.src<uint32_t>(1), a.dst<uint32_t>(0), n);          \
             });                                                                           \
  ZB_PEER_AS(label, volk_32i_x2_and_32i, [](const zb::Arrays& a, int32_t n) {              \
    volk_32i_x2_and_32i(a.dst<int32_t>(0), a.src<int32_t>(0), a.src<int32_t>(1), n);       \
  })
namespace {
ZIVKStatus and32_hints(const uint32_t* a, const uint32_t* b, uint32_t* d, int32_t len) {
  return and32_loop<true>(a, b, d, len);
}
ZIVKStatus and32_nohint(const uint32_t* a, const uint32_t* b, uint32_t* d, int32_t len) {
  return and32_loop<false>(a, b, d, len);
}
ZIVKStatus and32_nohint_pairs(const uint32_t* a, const uint32_t* b, uint32_t* d, int32_t len) {
  return and32_loop<false, true>(a, b, d, len);
}
ZIVKStatus and32_hints_pairs(const uint32_t* a, const uint32_t* b, uint32_t* d, int32_t len) {
  return and32_loop<true, true>(a, b, d, len);
}
}  // namespace
ZB_AND_VARIANT("And_32u/hints", and32_hints);
ZB_AND_VARIANT("And_32u/nohint", and32_nohint);
ZB_AND_VARIANT("And_32u/nohint/pairs", and32_nohint_pairs);
ZB_AND_VARIANT("And_32u/hints/pairs", and32_hints_pairs);
#endif
