// The median filter: every entry makes a handle, filters one vector through delay lines
// (absent, separate, or one array for both) and releases the handle.
#include <math.h>

#include <algorithm>

#include "drive.h"

namespace zd {

namespace {

template <class T>
struct MedianApi {
  ZIVKDataType type;
  ZIVKStatus (*out)(const T*, T*, int32_t, int32_t, const T*, T*, ZIVKFilterMedianPolicy*);
  ZIVKStatus (*in)(T*, int32_t, int32_t, const T*, T*, ZIVKFilterMedianPolicy*);
};

const MedianApi<uint8_t> median_8u{ZIVK_DT_8U, ZIVKS_FilterMedian_8u, ZIVKS_FilterMedian_8u_I};
const MedianApi<int16_t> median_16s{ZIVK_DT_16S, ZIVKS_FilterMedian_16s, ZIVKS_FilterMedian_16s_I};
const MedianApi<int32_t> median_32s{ZIVK_DT_32S, ZIVKS_FilterMedian_32s, ZIVKS_FilterMedian_32s_I};
const MedianApi<float> median_32f{ZIVK_DT_32F, ZIVKS_FilterMedian_32f, ZIVKS_FilterMedian_32f_I};
const MedianApi<double> median_64f{ZIVK_DT_64F, ZIVKS_FilterMedian_64f, ZIVKS_FilterMedian_64f_I};

// Which step of the handle's life an entry reports.
enum class Main { kInit, kRelease, kFilter, kFilterInPlace };

// The mask actually used: an even one counts as one less.
int32_t odd_mask(int32_t maskLen) { return maskLen % 2 ? maskLen : maskLen - 1; }

// A mask for Init: mostly the network masks and their neighbours, sometimes a longer
// one, now and then below 1 or at and past the type's limit (refused before allocating).
int32_t init_mask(Call& c, size_t element) {
  if (c.in().one_in(16)) {
    const int32_t limit = int32_t(2147483632 / element);
    return pick(c, {0, -1, INT32_MIN, limit, limit + 1, INT32_MAX});
  }
  if (c.in().one_in(6)) return int32_t(13 + c.in().below(60));
  return int32_t(1 + c.in().below(12));
}

// Sorted outputs of the float forms depend on how qsort visits a window holding a NaN,
// or both zeros: such an output is digested as NaN, or as +0.
template <class T>
void canonical(T* dst, const std::vector<T>& x, int32_t m, int32_t len) {
  int32_t nans = 0, pos = 0, neg = 0;
  auto count = [&](T v, int32_t d) {
    nans += d * (v != v);
    pos += d * (v == 0 && !signbit(v));
    neg += d * (v == 0 && signbit(v));
  };
  for (int32_t j = 0; j < m - 1; ++j) count(x[size_t(j)], 1);
  for (int32_t i = 0; i < len; ++i) {
    count(x[size_t(i + m - 1)], 1);
    if (nans) dst[i] = T(NAN);
    else if (dst[i] == 0 && pos && neg) dst[i] = T(0);
    count(x[size_t(i)], -1);
  }
}

template <class T>
void median(Call& c, const MedianApi<T>& api, Main main) {
  const int32_t len = c.length();
  const int32_t initMask = init_mask(c, sizeof(T));
  // Init refuses a type none of the five; a handle is only ever used with its own type.
  const ZIVKDataType type =
      c.in().one_in(16) ? pick(c, {ZIVK_DT_16U, ZIVK_DT_32U, ZIVK_DT_64U, ZIVK_DT_64S, ZIVKDataType(0),
                                   ZIVKDataType(2), ZIVKDataType(31)})
                        : api.type;
  ZIVKFilterMedianPolicy* policy = nullptr;
  const ZIVKStatus si = ZIVKS_FilterMedianInit(initMask, type, c.in().one_in(30) ? nullptr : &policy);
  c.result(si);
  if (is_error(si) && policy) fail(c.entry(), "Init failed and stored a handle");

  // The filter's mask: the Init's, or a shorter one the handle also has room for; now and
  // then one refused before the handle is touched.
  int32_t maskLen = initMask;
  if (c.in().one_in(8)) maskLen = pick(c, {0, -1, INT32_MIN, len + 1});
  else if (policy && c.in().one_in(5)) maskLen = int32_t(1 + c.in().below(uint32_t(odd_mask(initMask))));
  // Delay lines have m - 1 samples; a refused mask gets empty ones.
  const bool valid = maskLen >= 1 && maskLen <= len;
  const int32_t m = valid ? odd_mask(maskLen) : 1;

  const bool inPlace = main == Main::kFilterInPlace || (main != Main::kFilter && c.in().one_in(2));
  T* src = c.array<T>(len, inPlace ? Call::kWritten : Call::kSource);
  T* dst = inPlace ? src : c.array<T>(len, Call::kWritten);
  T* dlyDst = c.in().one_in(4) ? nullptr : c.array<T>(m - 1, Call::kWritten, false);
  const T* dlySrc = nullptr;
  switch (c.in().below(4)) {
    case 0: break;
    case 1: dlySrc = dlyDst; break;
    default: dlySrc = c.array<T>(m - 1, Call::kSource, false);
  }
  // The samples x[-(m - 1)] .. x[len - 1] the windows are cut from, before the call.
  std::vector<T> x;
  if (src && valid) {
    for (int32_t j = 0; j < m - 1; ++j) x.push_back(dlySrc ? dlySrc[j] : src[0]);
    x.insert(x.end(), src, src + len);
  }
  ZIVKFilterMedianPolicy* used = c.in().one_in(30) ? nullptr : policy;
  const ZIVKStatus sf = inPlace ? api.in(src, len, maskLen, dlySrc, dlyDst, used)
                                : api.out(src, dst, len, maskLen, dlySrc, dlyDst, used);
  if (!is_error(sf)) {
    if (!dlySrc && memcmp(&dst[0], &x[size_t(m - 1)], sizeof(T)))
      fail(c.entry(), "without a delay line the first output is not the first sample");
    if (dlyDst && memcmp(dlyDst, &x[size_t(len)], sizeof(T) * size_t(m - 1)))
      fail(c.entry(), "the delay line out does not hold the last input samples");
    if constexpr (std::is_floating_point<T>::value) canonical(dst, x, m, len);
  }

  ZIVKStatus sr = ZIVK_STS_NO_ERR;
  if (policy || (main == Main::kRelease && c.in().one_in(4))) sr = ZIVKS_FilterMedianRelease(policy);
  if (main == Main::kInit || main == Main::kRelease) c.result(sf);
  if (main != Main::kRelease) c.result(sr);
  c.finish(main == Main::kInit ? si : main == Main::kRelease ? sr : sf);
}

// Init and Release entries go through the life of a handle of a type the input chooses.
void any_type(Call& c, Main main) {
  switch (c.in().below(5)) {
    case 0: return median(c, median_8u, main);
    case 1: return median(c, median_16s, main);
    case 2: return median(c, median_32s, main);
    case 3: return median(c, median_32f, main);
    default: return median(c, median_64f, main);
  }
}

}  // namespace

void add_filters(std::vector<Entry>& out) {
  const Entry list[] = {
      {"ZIVKS_FilterMedianInit", [](Call& c) { any_type(c, Main::kInit); }, 0},
      {"ZIVKS_FilterMedianRelease", [](Call& c) { any_type(c, Main::kRelease); }, 0},
#define ZD_MEDIAN(fn, api, main) \
  {#fn, [](Call& c) { median(c, api, Main::main); }, 0}
      ZD_MEDIAN(ZIVKS_FilterMedian_8u, median_8u, kFilter),
      ZD_MEDIAN(ZIVKS_FilterMedian_16s, median_16s, kFilter),
      ZD_MEDIAN(ZIVKS_FilterMedian_32s, median_32s, kFilter),
      ZD_MEDIAN(ZIVKS_FilterMedian_32f, median_32f, kFilter),
      ZD_MEDIAN(ZIVKS_FilterMedian_64f, median_64f, kFilter),
      ZD_MEDIAN(ZIVKS_FilterMedian_8u_I, median_8u, kFilterInPlace),
      ZD_MEDIAN(ZIVKS_FilterMedian_16s_I, median_16s, kFilterInPlace),
      ZD_MEDIAN(ZIVKS_FilterMedian_32s_I, median_32s, kFilterInPlace),
      ZD_MEDIAN(ZIVKS_FilterMedian_32f_I, median_32f, kFilterInPlace),
      ZD_MEDIAN(ZIVKS_FilterMedian_64f_I, median_64f, kFilterInPlace),
#undef ZD_MEDIAN
  };
  out.insert(out.end(), std::begin(list), std::end(list));
}

}  // namespace zd
