// Radix sorts with a caller-held work buffer. 8u, 16u and 16s are counting sorts with
// their counters in the buffer; the 32- and 64-bit types are stable least-significant-
// digit sorts with 8-bit digits that scatter into the buffer and copy back after every
// pass. Signed types flip the sign bit around the unsigned sort, and float types sort
// their bits as signed integers and then reverse the leading negative block.
#include <string.h>

#include "core/frame.h"
#include "core/handles.h"
#include "sort/digits.h"

namespace {

using namespace zivks;
using sort::Order;

// ---- Work buffer
// Counters of the counting sorts (256 or 65536 int32, whatever len is), or one scratch
// copy of the array for the wider types; a size past the int32 range is kNoSize.
int32_t handle_bytes(int32_t len, int32_t data_type) {
  const int32_t elem = handles::element_size(data_type);
  if (elem == 1) return sort::CountTable<uint8_t>::kSize * 4;
  if (elem == 2) return sort::CountTable<uint16_t>::kSize * 4;
  return handles::times(len, elem);
}

// ---- Counting sorts: 8u, 16u, 16s
template <class T, Order kOrder>
ZIVKStatus counting(T* a, int32_t len, uint8_t* policy) {
  if (const ZIVKStatus st = check_ptrs_len(len, a, policy)) return st;
  int32_t* counts = reinterpret_cast<int32_t*>(policy);
  sort::clear(counts, sort::CountTable<T>::kSize);
  sort::counting_sort(a, len, counts, kOrder);
  return ZIVK_STS_NO_ERR;
}

// ---- Radix passes: 32u, 64u
// Every pass runs, whatever the keys: scatter into the buffer by the digit, then copy
// the whole buffer back, so the keys stand in the array after each pass.
template <class U, Order kOrder>
ZIVKStatus radix(U* a, int32_t len, uint8_t* policy) {
  if (const ZIVKStatus st = check_ptrs_len(len, a, policy)) return st;
  U* scratch = reinterpret_cast<U*>(policy);
  sort::DigitCounts<U> counts(a, len);
  for (int pass = 0; pass < counts.kPasses; ++pass) {
    sort::digit_pass(counts.of[pass], a, len, pass, kOrder, [a, scratch](int32_t i, int32_t c) { scratch[c] = a[i]; });
    sort::copy_back(a, scratch, len);
  }
  return ZIVK_STS_NO_ERR;
}

// ---- Signed keys: 32s, 64s
// The sign bit flipped in place, the unsigned sort of the same direction, the bit
// flipped back. The inner status is not looked at: its arguments are already good.
template <class S, Order kOrder>
ZIVKStatus sign_biased(S* a, int32_t len, uint8_t* policy,
                       ZIVKStatus (*unsigned_sort)(std::make_unsigned_t<S>*, int32_t, uint8_t*)) {
  if (const ZIVKStatus st = check_ptrs_len(len, a, policy)) return st;
  using U = std::make_unsigned_t<S>;
  U* u = reinterpret_cast<U*>(a);
  sort::add_sign_bias(u, len);
  unsigned_sort(u, len, policy);
  sort::add_sign_bias(u, len);
  return ZIVK_STS_NO_ERR;
}

// ---- Float keys: 32f, 64f
// The bits sorted as signed integers leave (Ascend) the negative numbers by rising
// magnitude, then -inf and the sign-set NaNs, in front of +0.0. A scan finds that block
// and a flip turns it around. -0.0 is not below 0.0: sorted first, it stops the scan
// at once, and an array holding one keeps its negative block in bit order. Descend
// mirrors it from the end.
template <class F>
struct FloatBits;
template <>
struct FloatBits<float> {
  using S = int32_t;
  using U = uint32_t;
  static constexpr U kSignAndExponent = 0xFF800000u;
};
template <>
struct FloatBits<double> {
  using S = int64_t;
  using U = uint64_t;
  static constexpr U kSignAndExponent = 0xFFF0000000000000ull;
};

template <class F, Order kOrder>
ZIVKStatus float_keys(F* a, int32_t len, uint8_t* policy,
                      ZIVKStatus (*signed_sort)(typename FloatBits<F>::S*, int32_t, uint8_t*),
                      ZIVKStatus (*flip)(F*, int32_t)) {
  if (const ZIVKStatus st = check_ptrs_len(len, a, policy)) return st;
  using Bits = FloatBits<F>;
  signed_sort(reinterpret_cast<typename Bits::S*>(a), len, policy);
  // The word at place i has sign and exponent all set: -inf or a sign-set NaN. Places
  // just outside the array are read too when the scan reaches them.
  const char* bytes = reinterpret_cast<const char*>(a);
  const auto sign_set_nan_or_inf = [bytes](int64_t i) {
    typename Bits::U w;
    memcpy(&w, bytes + i * static_cast<int64_t>(sizeof w), sizeof w);
    return (w & Bits::kSignAndExponent) == Bits::kSignAndExponent;
  };
  if constexpr (kOrder == Order::rising) {
    int64_t n = 0;
    while (n < len && a[n] < F(0)) ++n;
    if (sign_set_nan_or_inf(n)) {
      do ++n;
      while (sign_set_nan_or_inf(n));
    }
    flip(a, static_cast<int32_t>(n));  // a count of 0 is refused and changes nothing
  } else {
    int64_t i = int64_t{len} - 1;
    while (i >= 0 && a[i] < F(0)) --i;
    if (sign_set_nan_or_inf(i)) {
      do --i;
      while (sign_set_nan_or_inf(i));
    }
    flip(a + i + 1, static_cast<int32_t>(len - i - 1));
  }
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_SortRadixInit(int32_t len, ZIVKDataType dataType, uint8_t** policy) {
  return sort::init_work_buffer(len, dataType, policy, handle_bytes);
}

ZIVKS_EXPORT ZIVKStatus ZIVKS_SortRadixRelease(uint8_t* policy) { return handles::release(policy); }

// Each row: the Ascend and Descend names, the body, the element type. The signed and
// float sorts below are written out: each calls the exported sorts it is built on.
#define ZIVKS_SORT_RADIX(ascend, descend, body, type)                           \
  ZIVKS_EXPORT ZIVKStatus ascend(type* srcDst, int32_t len, uint8_t* policy) {  \
    return body<type, Order::rising>(srcDst, len, policy);                      \
  }                                                                             \
  ZIVKS_EXPORT ZIVKStatus descend(type* srcDst, int32_t len, uint8_t* policy) { \
    return body<type, Order::falling>(srcDst, len, policy);                     \
  }

ZIVKS_SORT_RADIX(ZIVKS_SortRadixAscend_8u_I, ZIVKS_SortRadixDescend_8u_I, counting, uint8_t)
ZIVKS_SORT_RADIX(ZIVKS_SortRadixAscend_16u_I, ZIVKS_SortRadixDescend_16u_I, counting, uint16_t)
ZIVKS_SORT_RADIX(ZIVKS_SortRadixAscend_16s_I, ZIVKS_SortRadixDescend_16s_I, counting, int16_t)
ZIVKS_SORT_RADIX(ZIVKS_SortRadixAscend_32u_I, ZIVKS_SortRadixDescend_32u_I, radix, uint32_t)
ZIVKS_SORT_RADIX(ZIVKS_SortRadixAscend_64u_I, ZIVKS_SortRadixDescend_64u_I, radix, uint64_t)
ZIVKS_EXPORT ZIVKStatus ZIVKS_SortRadixAscend_32s_I(int32_t* srcDst, int32_t len, uint8_t* policy) {
  return sign_biased<int32_t, Order::rising>(srcDst, len, policy, ZIVKS_SortRadixAscend_32u_I);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_SortRadixDescend_32s_I(int32_t* srcDst, int32_t len, uint8_t* policy) {
  return sign_biased<int32_t, Order::falling>(srcDst, len, policy, ZIVKS_SortRadixDescend_32u_I);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_SortRadixAscend_64s_I(int64_t* srcDst, int32_t len, uint8_t* policy) {
  return sign_biased<int64_t, Order::rising>(srcDst, len, policy, ZIVKS_SortRadixAscend_64u_I);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_SortRadixDescend_64s_I(int64_t* srcDst, int32_t len, uint8_t* policy) {
  return sign_biased<int64_t, Order::falling>(srcDst, len, policy, ZIVKS_SortRadixDescend_64u_I);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_SortRadixAscend_32f_I(float* srcDst, int32_t len, uint8_t* policy) {
  return float_keys<float, Order::rising>(srcDst, len, policy, ZIVKS_SortRadixAscend_32s_I, ZIVKS_Flip_32f_I);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_SortRadixDescend_32f_I(float* srcDst, int32_t len, uint8_t* policy) {
  return float_keys<float, Order::falling>(srcDst, len, policy, ZIVKS_SortRadixDescend_32s_I, ZIVKS_Flip_32f_I);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_SortRadixAscend_64f_I(double* srcDst, int32_t len, uint8_t* policy) {
  return float_keys<double, Order::rising>(srcDst, len, policy, ZIVKS_SortRadixAscend_64s_I, ZIVKS_Flip_64f_I);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_SortRadixDescend_64f_I(double* srcDst, int32_t len, uint8_t* policy) {
  return float_keys<double, Order::falling>(srcDst, len, policy, ZIVKS_SortRadixDescend_64s_I, ZIVKS_Flip_64f_I);
}
