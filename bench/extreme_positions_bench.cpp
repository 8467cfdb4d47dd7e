// MaxIndx, MinIndx, MinMaxIndx, MaxAbsIndx and MinAbsIndx, all 19 members, against VOLK's
// index searches (32- and 16-bit index forms; the 16-bit ones stop at 65535 elements)
// and std::max_element and its kin.
#include <volk/volk.h>

#include <algorithm>

#include "bench/zb.h"
#include "zivks.h"

namespace {
template <class T>
void keep(T v) {
  volatile T sink = v;
  (void)sink;
}
}  // namespace

#define ZB_CALL_ONE(T)                                                                          \
  [](auto fn, const zb::Arrays& a, int32_t n) {                                                 \
    T r;                                                                                        \
    int32_t i;                                                                                  \
    fn(a.src<T>(0), n, &r, &i);                                                                 \
    keep(i);                                                                                    \
  }
#define ZB_ONE(name, code, T) ZB_FUNC(extreme_positions, ZIVKS_##name##_##code, T, kMemcpy, 0, ZB_CALL_ONE(T))
#define ZB_MINMAX(code, T)                                                                      \
  ZB_FUNC(extreme_positions, ZIVKS_MinMaxIndx_##code, T, kMemcpy, 0,                            \
          [](auto fn, const zb::Arrays& a, int32_t n) {                                         \
            T lo; T hi;                                                                         \
            int32_t i; int32_t j;                                                                       \
            fn(a.src<T>(0), n, &lo, &i, &hi, &j);                                               \
            keep(i + j);                                                                        \
          })

ZB_ONE(MaxIndx, 16s, int16_t);
ZB_ONE(MaxIndx, 32s, int32_t);
ZB_ONE(MaxIndx, 32f, float);
ZB_ONE(MaxIndx, 64f, double);
ZB_ONE(MinIndx, 16s, int16_t);
ZB_ONE(MinIndx, 32s, int32_t);
ZB_ONE(MinIndx, 32f, float);
ZB_ONE(MinIndx, 64f, double);
ZB_ONE(MaxAbsIndx, 16s, int16_t);
ZB_ONE(MaxAbsIndx, 32s, int32_t);
ZB_ONE(MinAbsIndx, 16s, int16_t);
ZB_ONE(MinAbsIndx, 32s, int32_t);
ZB_MINMAX(8u, uint8_t);
ZB_MINMAX(16u, uint16_t);
ZB_MINMAX(32u, uint32_t);
ZB_MINMAX(16s, int16_t);
ZB_MINMAX(32s, int32_t);
ZB_MINMAX(32f, float);
ZB_MINMAX(64f, double);

// VOLK's 32-bit index forms are the peers of the plain cases; a second case of each
// float search meets the 16-bit index forms, a third std::max_element/min_element.
ZB_PEER(ZIVKS_MaxIndx_32f, volk_32f_index_max_32u, [](const zb::Arrays& a, int32_t n) {
  uint32_t i;
  volk_32f_index_max_32u(&i, a.src<float>(0), n);
  keep(i);
});
ZB_PEER(ZIVKS_MinIndx_32f, volk_32f_index_min_32u, [](const zb::Arrays& a, int32_t n) {
  uint32_t i;
  volk_32f_index_min_32u(&i, a.src<float>(0), n);
  keep(i);
});
ZB_FUNC_AS(extreme_positions, "MaxIndx_32f/16u", ZIVKS_MaxIndx_32f, float, kMemcpy, 0, ZB_CALL_ONE(float));
ZB_PEER_AS("MaxIndx_32f/16u", volk_32f_index_max_16u, [](const zb::Arrays& a, int32_t n) {
  uint16_t i;
  volk_32f_index_max_16u(&i, a.src<float>(0), n);
  keep(i);
});
ZB_FUNC_AS(extreme_positions, "MinIndx_32f/16u", ZIVKS_MinIndx_32f, float, kMemcpy, 0, ZB_CALL_ONE(float));
ZB_PEER_AS("MinIndx_32f/16u", volk_32f_index_min_16u, [](const zb::Arrays& a, int32_t n) {
  uint16_t i;
  volk_32f_index_min_16u(&i, a.src<float>(0), n);
  keep(i);
});
// VOLK's 16-bit index forms look at the first 65535 elements only (a longer call is cut
// to that length), so from 64Ki elements on they do less than the whole job. "/16u/all"
// does it all with them: one call for each run of 65535 elements, the first extreme of
// the runs kept.
template <bool kMax>
void volk_16u_all(const float* p, int32_t n) {
  constexpr int32_t kRun = 65535;
  int64_t best = 0;
  for (int32_t at = 0; at < n; at += kRun) {
    uint16_t i;
    const uint32_t m = static_cast<uint32_t>(std::min(kRun, n - at));
    if (kMax) volk_32f_index_max_16u(&i, p + at, m);
    else volk_32f_index_min_16u(&i, p + at, m);
    if (at == 0 || (kMax ? p[at + i] > p[best] : p[at + i] < p[best])) best = at + i;
  }
  keep(best);
}
ZB_FUNC_AS(extreme_positions, "MaxIndx_32f/16u/all", ZIVKS_MaxIndx_32f, float, kMemcpy, 0, ZB_CALL_ONE(float));
ZB_PEER_AS("MaxIndx_32f/16u/all", volk_32f_index_max_16u, [](const zb::Arrays& a, int32_t n) {
  volk_16u_all<true>(a.src<float>(0), n);
});
ZB_FUNC_AS(extreme_positions, "MinIndx_32f/16u/all", ZIVKS_MinIndx_32f, float, kMemcpy, 0, ZB_CALL_ONE(float));
ZB_PEER_AS("MinIndx_32f/16u/all", volk_32f_index_min_16u, [](const zb::Arrays& a, int32_t n) {
  volk_16u_all<false>(a.src<float>(0), n);
});
ZB_FUNC_AS(extreme_positions, "MaxIndx_32f/std", ZIVKS_MaxIndx_32f, float, kMemcpy, 0, ZB_CALL_ONE(float));
ZB_PEER_AS("MaxIndx_32f/std", std::max_element, [](const zb::Arrays& a, int32_t n) {
  keep(std::max_element(a.src<float>(0), a.src<float>(0) + n) - a.src<float>(0));
});
ZB_FUNC_AS(extreme_positions, "MinIndx_32f/std", ZIVKS_MinIndx_32f, float, kMemcpy, 0, ZB_CALL_ONE(float));
ZB_PEER_AS("MinIndx_32f/std", std::min_element, [](const zb::Arrays& a, int32_t n) {
  keep(std::min_element(a.src<float>(0), a.src<float>(0) + n) - a.src<float>(0));
});
ZB_PEER(ZIVKS_MaxIndx_16s, std::max_element, [](const zb::Arrays& a, int32_t n) {
  keep(std::max_element(a.src<int16_t>(0), a.src<int16_t>(0) + n) - a.src<int16_t>(0));
});
ZB_PEER(ZIVKS_MinMaxIndx_32f, std::minmax_element, [](const zb::Arrays& a, int32_t n) {
  auto r = std::minmax_element(a.src<float>(0), a.src<float>(0) + n);
  keep(r.second - r.first);
});
ZB_PEER(ZIVKS_MinMaxIndx_8u, std::minmax_element, [](const zb::Arrays& a, int32_t n) {
  auto r = std::minmax_element(a.src<uint8_t>(0), a.src<uint8_t>(0) + n);
  keep(r.second - r.first);
});
