// LShiftC and RShiftC: every element shifted by one non-negative count. Left shifts keep
// the low bits and wrap, also for signed elements; right shifts are logical for
// unsigned elements and arithmetic for signed ones. The count picks one of three paths
// before the loop: 0 copies, 1 to width - 1 shifts, and at or above the width either
// zeroes dst without reading src or, for the signed right shifts, lowers the count to
// width - 1 so that each element ends as 0 or -1 by its sign.
#include "core/frame.h"
#include "core/operands.h"

namespace {

using namespace zivks;

enum class Dir { kLeft, kRight };

// What a count at or above the width does.
enum class Beyond {
  kZeroCall,    // dst cleared by the exported Zero function of the element's width
  kZeroInline,  // dst cleared here: 128-bit stores for whole blocks, memset for the rest
  kLowerCount,  // the count becomes width - 1
};

template <class T> constexpr int kBits = 8 * static_cast<int>(sizeof(T));
// Read hint into the second cache level, in bytes ahead: 128, 256 and 512 for 8-, 16-
// and 32-bit elements.
template <class T> constexpr int kReadAheadBytes = 128 * static_cast<int>(sizeof(T));

template <Dir dir, class T>
inline T shift_scalar(T x, int s) {
  using U = std::make_unsigned_t<T>;
  if constexpr (dir == Dir::kLeft) return static_cast<T>(static_cast<U>(static_cast<U>(x) << s));
  else return static_cast<T>(x >> s);
}

// The exported Zero of the element's width, for the members that clear dst with it.
inline ZIVKStatus zero_call(uint8_t* dst, int32_t len) { return ZIVKS_Zero_8u(dst, len); }
inline ZIVKStatus zero_call(int16_t* dst, int32_t len) { return ZIVKS_Zero_16s(dst, len); }
inline ZIVKStatus zero_call(int32_t* dst, int32_t len) { return ZIVKS_Zero_32s(dst, len); }

// The copy (count 0) and the shift share the loop; the copy is the shift by nothing.
template <Dir dir, bool kCopy, class T>
void run(const T* src, T* dst, int32_t len, int s) {
  // The count broadcast once before the loop, for every register width.
  const broadcast<T, simd::shift_count> counts(s);
  for_blocks<kVectorElems<T>>(
      len,
      [&](int64_t i, auto w) {
        constexpr int K = decltype(w)::value;
        using V = simd::vec<T, K>;
        hint_read_l2(src + i, kReadAheadBytes<T>);
        const V a = simd::load<V>(src + i);
        if constexpr (kCopy) {
          simd::store(dst + i, a);
        } else {
          const auto& n = counts.template get<K>();
          if constexpr (dir == Dir::kLeft) simd::store(dst + i, simd::shl(a, n));
          else simd::store(dst + i, simd::shr(a, n));
        }
      },
      [&](int64_t i) { dst[i] = kCopy ? src[i] : shift_scalar<dir>(src[i], s); });
}

template <class T>
void zero_inline(T* dst, int32_t len) {
  const int64_t n = for_whole_blocks<kVectorElems<T>>(len, [&](int64_t i, auto w) {
    simd::store(dst + i, simd::zeros<simd::vec<T, decltype(w)::value>>());
  });
  if (n < len) memset(dst + n, 0, static_cast<size_t>(len - n) * sizeof(T));
}

template <Dir dir, Beyond beyond, class T>
ZIVKStatus shift_const(const T* src, int32_t shift, T* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  if (shift < 0) return ZIVK_STS_SHIFT_ERR;
  if (shift == 0) {
    run<dir, true>(src, dst, len, 0);
    return ZIVK_STS_NO_ERR;
  }
  if (shift >= kBits<T>) {
    if constexpr (beyond == Beyond::kZeroCall) return zero_call(dst, len);
    if constexpr (beyond == Beyond::kZeroInline) {
      zero_inline(dst, len);
      return ZIVK_STS_NO_ERR;
    }
    shift = kBits<T> - 1;
  }
  run<dir, false>(src, dst, len, shift);
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the exported function, its in-place form, the direction, what a count at or
// above the width does, the element type.
#define ZIVKS_SHIFT(name, name_in_place, dir, beyond, type)                                    \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, int32_t shift, type* dst, int32_t len) {       \
    return shift_const<Dir::dir, Beyond::beyond>(src, shift, dst, len);                        \
  }                                                                                            \
  /* The in-place form checks first and returns at once for a count of 0. */                   \
  ZIVKS_EXPORT ZIVKStatus name_in_place(int32_t shift, type* srcDst, int32_t len) {            \
    if (const ZIVKStatus st = check_ptrs_len(len, srcDst)) return st;                          \
    if (shift == 0) return ZIVK_STS_NO_ERR;                                                    \
    return name(srcDst, shift, srcDst, len);                                                   \
  }

ZIVKS_SHIFT(ZIVKS_LShiftC_8u, ZIVKS_LShiftC_8u_I, kLeft, kZeroCall, uint8_t)
ZIVKS_SHIFT(ZIVKS_LShiftC_16u, ZIVKS_LShiftC_16u_I, kLeft, kZeroInline, uint16_t)
ZIVKS_SHIFT(ZIVKS_LShiftC_16s, ZIVKS_LShiftC_16s_I, kLeft, kZeroCall, int16_t)
ZIVKS_SHIFT(ZIVKS_LShiftC_32s, ZIVKS_LShiftC_32s_I, kLeft, kZeroCall, int32_t)
ZIVKS_SHIFT(ZIVKS_RShiftC_8u, ZIVKS_RShiftC_8u_I, kRight, kZeroCall, uint8_t)
ZIVKS_SHIFT(ZIVKS_RShiftC_16u, ZIVKS_RShiftC_16u_I, kRight, kZeroInline, uint16_t)
ZIVKS_SHIFT(ZIVKS_RShiftC_16s, ZIVKS_RShiftC_16s_I, kRight, kLowerCount, int16_t)
ZIVKS_SHIFT(ZIVKS_RShiftC_32s, ZIVKS_RShiftC_32s_I, kRight, kLowerCount, int32_t)
