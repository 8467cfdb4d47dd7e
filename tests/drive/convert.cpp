// Conversions between element types: table lines; packed 24-bit arrays hold three
// bytes a sample, and unpacked samples are checked against their range.
#include <cmath>

#include "drive.h"

namespace zd {

namespace {

// ---- Unpacking 24-bit samples
// Every sample unpacks to an integer value inside the 24-bit range of its signedness.
template <class D>
void unpack(Call& c, ZIVKStatus (*fn)(const uint8_t*, D*, int32_t), double lo, double hi) {
  const int32_t len = c.length();
  const uint8_t* src = c.array<uint8_t>(int64_t(len > 0 ? len : 0) * 3, Call::kSource);
  D* dst = c.array<D>(len, Call::kWritten);
  const ZIVKStatus s = fn(src, dst, len);
  c.finish(s);
  if (s != ZIVK_STS_NO_ERR) return;
  for (int32_t i = 0; i < len; ++i) {
    const double v = double(dst[i]);
    if (!(v >= lo && v <= hi && v == std::floor(v))) fail(c.entry(), "sample " + std::to_string(i) + " out of range");
  }
}

}  // namespace

#define ZD_UNPACK(fn, lo, hi) Entry{#fn, [](Call& c) { unpack(c, &fn, lo, hi); }, 0}

void add_convert(std::vector<Entry>& out) {
  const Entry list[] = {
      ZD_CALL(ZIVKS_Convert_32f8u_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_32f16u_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_64f8u_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_64f16u_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_32f8s_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_32f16s_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_32f32s_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_64f8s_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_64f16s_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_64f32s_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_64f64s_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_8u32f, src, dst, len),
      ZD_CALL(ZIVKS_Convert_8s16s, src, dst, len),
      ZD_CALL(ZIVKS_Convert_8s32f, src, dst, len),
      ZD_CALL(ZIVKS_Convert_16u32f, src, dst, len),
      ZD_CALL(ZIVKS_Convert_16s32s, src, dst, len),
      ZD_CALL(ZIVKS_Convert_16s32f, src, dst, len),
      ZD_CALL(ZIVKS_Convert_32s32f, src, dst, len),
      ZD_CALL(ZIVKS_Convert_32s64f, src, dst, len),
      ZD_CALL(ZIVKS_Convert_32f64f, src, dst, len),
      ZD_CALL(ZIVKS_Convert_64s64f, src, dst, len),
      ZD_CALL(ZIVKS_Convert_64f32f, src, dst, len),
      ZD_CALL(ZIVKS_Convert_16s32f_S, src, dst, len, scale),
      ZD_CALL(ZIVKS_Convert_16s64f_S, src, dst, len, scale),
      ZD_CALL(ZIVKS_Convert_32s32f_S, src, dst, len, scale),
      ZD_CALL(ZIVKS_Convert_32s64f_S, src, dst, len, scale),
      ZD_CALL(ZIVKS_Convert_8s8u, src, dst, len),
      ZD_CALL(ZIVKS_Convert_32s16s, src, dst, len),
      ZD_CALL(ZIVKS_Convert_8u8s_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_16s8s_S, src, dst, len, rndMode, scale),
      ZD_CALL(ZIVKS_Convert_32s16s_S, src, dst, len, scale),
      ZD_CALL(ZIVKS_Convert_64s32s_S, src, dst, len, rndMode, scale),
      ZD_UNPACK(ZIVKS_Convert_24u32u, 0, 16777215),
      ZD_UNPACK(ZIVKS_Convert_24u32f, 0, 16777215),
      ZD_UNPACK(ZIVKS_Convert_24s32s, -8388608, 8388607),
      ZD_UNPACK(ZIVKS_Convert_24s32f, -8388608, 8388607),
      ZD_CALL(ZIVKS_Convert_32u24u_S, src, dst*3, len, scale),
      ZD_CALL(ZIVKS_Convert_32s24s_S, src, dst*3, len, scale),
      ZD_CALL(ZIVKS_Convert_32f24u_S, src, dst*3, len, scale),
      ZD_CALL(ZIVKS_Convert_32f24s_S, src, dst*3, len, scale),
  };
  out.insert(out.end(), std::begin(list), std::end(list));
}

}  // namespace zd
