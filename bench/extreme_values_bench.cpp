// Max, Min, MinMax, MaxAbs and MinAbs, all 23 members. They read and write nothing but
// a value, so the memcpy column only places them; the read bound is the "/read" case
// of Max_32f and Max_16s, whose peer is a plain summing loop over the same bytes, and
// std::max_element and its kin are the peers of the float and integer cases.
#include <algorithm>

#include "bench/zb.h"
#include "zivks.h"

namespace {

// The read bandwidth a plain loop reaches: the sum of the bytes as 64-bit words.
void sum_words(const void* p, size_t bytes) {
  const uint64_t* w = static_cast<const uint64_t*>(p);
  uint64_t s0 = 0, s1 = 0, s2 = 0, s3 = 0;
  size_t n = bytes / 8, i = 0;
  for (; i + 4 <= n; i += 4) s0 += w[i], s1 += w[i + 1], s2 += w[i + 2], s3 += w[i + 3];
  for (; i < n; ++i) s0 += w[i];
  volatile uint64_t sink = s0 + s1 + s2 + s3;
  (void)sink;
}

template <class T>
void keep(T v) {
  volatile T sink = v;
  (void)sink;
}

}  // namespace

#define ZB_ONE(name, code, T)                                                                   \
  ZB_FUNC(extreme_values, ZIVKS_##name##_##code, T, kMemcpy, 0,                                 \
          [](auto fn, const zb::Arrays& a, int32_t n) {                                         \
            T r;                                                                                \
            fn(a.src<T>(0), n, &r);                                                             \
            keep(r);                                                                            \
          })
#define ZB_MINMAX(code, T)                                                                      \
  ZB_FUNC(extreme_values, ZIVKS_MinMax_##code, T, kMemcpy, 0,                                   \
          [](auto fn, const zb::Arrays& a, int32_t n) {                                         \
            T lo;                                                                               \
            T hi;                                                                               \
            fn(a.src<T>(0), n, &lo, &hi);                                                       \
            keep(lo);                                                                           \
            keep(hi);                                                                           \
          })
#define ZB_SIGNED(code, T) \
  ZB_ONE(Max, code, T);    \
  ZB_ONE(Min, code, T);    \
  ZB_ONE(MaxAbs, code, T); \
  ZB_ONE(MinAbs, code, T); \
  ZB_MINMAX(code, T)

ZB_SIGNED(16s, int16_t);
ZB_SIGNED(32s, int32_t);
ZB_SIGNED(32f, float);
ZB_SIGNED(64f, double);
ZB_MINMAX(8u, uint8_t);
ZB_MINMAX(16u, uint16_t);
ZB_MINMAX(32u, uint32_t);

#define ZB_READ(code, T)                                                                        \
  ZB_FUNC_AS(extreme_values, "Max_" #code "/read", ZIVKS_Max_##code, T, kMemcpy, 0,             \
             [](auto fn, const zb::Arrays& a, int32_t n) {                                      \
               T r;                                                                             \
               fn(a.src<T>(0), n, &r);                                                          \
               keep(r);                                                                         \
             });                                                                                \
  ZB_PEER_AS("Max_" #code "/read", sum_loop, [](const zb::Arrays& a, int32_t n) {               \
    sum_words(a.src<T>(0), sizeof(T) * static_cast<size_t>(n));                                 \
  })
ZB_READ(32f, float);
ZB_READ(16s, int16_t);

#define ZB_STD(name, code, T, algo)                                                             \
  ZB_PEER(ZIVKS_##name##_##code, std::algo, [](const zb::Arrays& a, int32_t n) {                \
    keep(*std::algo(a.src<T>(0), a.src<T>(0) + n));                                             \
  })
ZB_STD(Max, 32f, float, max_element);
ZB_STD(Min, 32f, float, min_element);
ZB_STD(Max, 64f, double, max_element);
ZB_STD(Min, 64f, double, min_element);
ZB_STD(Max, 16s, int16_t, max_element);
ZB_STD(Min, 16s, int16_t, min_element);
ZB_STD(Max, 32s, int32_t, max_element);
ZB_STD(Min, 32s, int32_t, min_element);
#define ZB_STD_MM(code, T)                                                                      \
  ZB_PEER(ZIVKS_MinMax_##code, std::minmax_element, [](const zb::Arrays& a, int32_t n) {        \
    auto r = std::minmax_element(a.src<T>(0), a.src<T>(0) + n);                                 \
    keep(*r.first);                                                                             \
    keep(*r.second);                                                                            \
  })
ZB_STD_MM(8u, uint8_t);
ZB_STD_MM(16u, uint16_t);
ZB_STD_MM(32u, uint32_t);
ZB_STD_MM(16s, int16_t);
ZB_STD_MM(32s, int32_t);
ZB_STD_MM(32f, float);
ZB_STD_MM(64f, double);
