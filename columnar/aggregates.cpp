// Column aggregates: the largest or smallest value of a column with its null rows
// skipped. Without a null vector the 16-bit, 32-bit and float64 forms are the plain
// extreme-value functions. With one, the running value starts from a bound of the type
// and folds clean blocks of 8 rows as a whole and the other rows one by one.
#include <string.h>

#include <limits>

#include "columnar/rows.h"
#include "core/frame.h"
#include "core/lane.h"

namespace {

using namespace zivks;
using columnar::kBlockRows;
using columnar::walk_rows;

enum class Extreme { max, min };

// ---- Integers: 16s, 32s, 64s
// An integer extreme does not depend on the order of folding, and the start value is
// the identity of the fold: a null row can stand in as the start, so every row folds
// alike, clean block or not, without a branch: 32-bit rows in registers with the flags
// turned into lane masks, the others in a loop written for the compiler to vectorize.
template <class T, Extreme kWhich>
inline T better(T r, T x) {
  if constexpr (kWhich == Extreme::max) return x > r ? x : r;
  else return x < r ? x : r;
}

template <class T, Extreme kWhich>
T fold_integers(const T* src, int32_t len, const int8_t* nulls, T start) {
  T r = start;
  if (nulls == nullptr) {
    for (int64_t i = 0; i < len; ++i) r = better<T, kWhich>(r, src[i]);
  } else {
    int64_t i = 0;
    if constexpr (sizeof(T) == 4) {
      auto run = [&](auto w) {
        using V = simd::vec<T, decltype(w)::value>;
        const V from = simd::splat<V>(start);
        V acc = from;
        for (; i + V::kLanes <= len; i += V::kLanes) {
          const V x = simd::select(simd::zero_flag_mask<V>(nulls + i), simd::load<V>(src + i), from);
          acc = kWhich == Extreme::max ? simd::max(acc, x) : simd::min(acc, x);
        }
        const simd::lanes<V> a(acc);
        for (int l = 0; l < V::kLanes; ++l) r = better<T, kWhich>(r, a.v[l]);
      };
      if constexpr (simd::kWide > 1) run(simd::width<simd::kWide>{});
      run(simd::width<1>{});
    }
    // The select written with a mask, the form the compiler vectorizes.
    using U = std::make_unsigned_t<T>;
    for (; i < len; ++i) {
      const U kept = 0 - static_cast<U>(nulls[i] == 0);
      r = better<T, kWhich>(r, static_cast<T>((static_cast<U>(src[i]) & kept) | (static_cast<U>(start) & ~kept)));
    }
  }
  return r;
}

// The start of a form with nulls: the type's least value for AggMax, its largest for
// AggMin.
template <class T, Extreme kWhich>
constexpr T integer_start() {
  return kWhich == Extreme::max ? std::numeric_limits<T>::min() : std::numeric_limits<T>::max();
}

// 16s, 32s: without nulls, the plain extreme and its status.
template <class T, Extreme kWhich>
ZIVKStatus agg_narrow(const T* src, int32_t len, const int8_t* nulls, T* dst,
                      ZIVKStatus (*plain)(const T*, int32_t, T*)) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  if (nulls == nullptr) return plain(src, len, dst);
  *dst = fold_integers<T, kWhich>(src, len, nulls, integer_start<T, kWhich>());
  return ZIVK_STS_NO_ERR;
}

// 64s: without nulls, from row 0 over every row.
template <Extreme kWhich>
ZIVKStatus agg_64s(const int64_t* src, int32_t len, const int8_t* nulls, int64_t* dst) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  const int64_t start = nulls == nullptr ? src[0] : integer_start<int64_t, kWhich>();
  *dst = fold_integers<int64_t, kWhich>(src, len, nulls, start);
  return ZIVK_STS_NO_ERR;
}

// ---- Float64
// The bounds are finite: -DBL_MAX for AggMax, DBL_MAX for AggMin. A row, or a clean
// block's extreme, replaces the running value unless that is strictly better, so a NaN
// on either side replaces it and of two equal zeros the later stays. A clean block is
// reduced by the vector extreme, NaN-propagating and with +0.0 above -0.0: only there do
// the zeros rank.
template <Extreme kWhich>
double fold_float64(const double* src, int32_t len, const int8_t* nulls, double start) {
  constexpr bool kMax = kWhich == Extreme::max;
  double r = start;
  const auto fold = [&](double x) {
    if (!(kMax ? r > x : r < x)) r = x;
  };
  const auto row = [&](int64_t i) { fold(src[i]); };
  using V = simd::vec<double, 1>;
  const auto extreme = [](const V& a, const V& b) {
    return kMax ? simd::max_propagating(a, b) : simd::min_propagating(a, b);
  };
  const auto clean = [&](int64_t i) {
    const V e = extreme(extreme(simd::load<V>(src + i), simd::load<V>(src + i + 2)),
                        extreme(simd::load<V>(src + i + 4), simd::load<V>(src + i + 6)));
    fold(kMax ? simd::reduce_max(e) : simd::reduce_min(e));
  };
  walk_rows(len, nulls, clean, row, row);
  return r;
}

template <Extreme kWhich>
ZIVKStatus agg_64f(const double* src, int32_t len, const int8_t* nulls, double* dst,
                   ZIVKStatus (*plain)(const double*, int32_t, double*)) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  if (nulls == nullptr) return plain(src, len, dst);
  const double start = kWhich == Extreme::max ? -std::numeric_limits<double>::max() : std::numeric_limits<double>::max();
  *dst = fold_float64<kWhich>(src, len, nulls, start);
  return ZIVK_STS_NO_ERR;
}

// ---- Decimal128
// Records compare as signed 128-bit numbers: a sign-set record is minus its magnitude.
using Int128 = __int128;
constexpr uint64_t kDecimalSign = 0x8000000000000000ull;

inline Int128 decimal_value(const ZIVKDecimal128& d) {
  const Int128 magnitude = static_cast<Int128>((static_cast<unsigned __int128>(d.hi & ~kDecimalSign) << 64) | d.lo);
  return (d.hi & kDecimalSign) != 0 ? -magnitude : magnitude;
}

// Back to sign and magnitude; a zero has its sign clear.
inline ZIVKDecimal128 decimal_record(Int128 v) {
  const unsigned __int128 magnitude = v < 0 ? -static_cast<unsigned __int128>(v) : static_cast<unsigned __int128>(v);
  return {static_cast<uint64_t>(magnitude), static_cast<uint64_t>(magnitude >> 64) | (v < 0 ? kDecimalSign : 0)};
}

// +-(10^38 - 1), the bounds of a form with nulls.
constexpr Int128 kDecimalBound = static_cast<Int128>(0x4B3B4CA85A86C47Aull) << 64 | 0x098A223FFFFFFFFFull;

template <Extreme kWhich>
ZIVKStatus agg_decimal128(const ZIVKDecimal128* src, int32_t len, const int8_t* nulls, ZIVKDecimal128* dst) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  Int128 r = nulls != nullptr ? (kWhich == Extreme::max ? -kDecimalBound : kDecimalBound) : decimal_value(src[0]);
  const auto row = [&](int64_t i) { r = better<Int128, kWhich>(r, decimal_value(src[i])); };
  walk_rows(
      len, nulls,
      [&](int64_t i) {
        for (int k = 0; k < kBlockRows; ++k) row(i + k);
      },
      row, row);
  *dst = decimal_record(r);
  return ZIVK_STS_NO_ERR;
}

// ---- Bool
// With nulls, single rows fold raw bytes as unsigned values; a clean block gives 1 or 0
// (AggMax: any byte non-zero, which replaces the running value; AggMin: every byte
// non-zero, folded by the minimum).
template <Extreme kWhich>
uint8_t bool_with_nulls(const uint8_t* src, int32_t len, const int8_t* nulls) {
  constexpr bool kMax = kWhich == Extreme::max;
  uint8_t r = kMax ? 0 : 1;
  const auto row = [&](int64_t i) { r = better<uint8_t, kWhich>(r, src[i]); };
  const auto clean = [&](int64_t i) {
    uint8_t e = src[i];
    for (int k = 1; k < kBlockRows; ++k) e = better<uint8_t, kWhich>(e, src[i + k]);
    const uint8_t b = e != 0 ? 1 : 0;
    r = kMax ? b : better<uint8_t, kWhich>(r, b);
  };
  walk_rows(len, nulls, clean, row, row);
  return r;
}

// Without nulls: the first len & ~15 bytes 16 at a time (AggMax ORs them, AggMin ANDs
// them into ones, so there a byte counts by its lowest bit), then 8 bytes by the
// unsigned extreme if 8 are left, then byte by byte; the result is 1 if non-zero.
template <Extreme kWhich>
uint8_t bool_without_nulls(const uint8_t* src, int32_t len) {
  constexpr bool kMax = kWhich == Extreme::max;
  using V = simd::vec<uint8_t, 1>;
  V acc = simd::splat<V>(kMax ? 0 : 1);
  int64_t i = 0;
  for (; i + 16 <= len; i += 16) {
    const V x = simd::load<V>(src + i);
    acc = kMax ? simd::bit_or(acc, x) : simd::bit_and(acc, x);
  }
  uint8_t r = kMax ? simd::reduce_max(acc) : simd::reduce_min(acc);
  for (; i < len; ++i) r = better<uint8_t, kWhich>(r, src[i]);
  return r != 0 ? 1 : 0;
}

template <Extreme kWhich>
ZIVKStatus agg_bool(const uint8_t* src, int32_t len, const int8_t* nulls, uint8_t* dst) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  *dst = nulls != nullptr ? bool_with_nulls<kWhich>(src, len, nulls) : bool_without_nulls<kWhich>(src, len);
  return ZIVK_STS_NO_ERR;
}

// ---- Varchar
// Byte order with a proper prefix below the longer text; ties keep the earliest row.
// AggMax passes over empty rows (an empty best gives way to any row); AggMin takes an
// empty row over any longer best.
template <Extreme kWhich>
ZIVKStatus agg_varchar(const uint8_t* src, const int32_t* offsets, int32_t len, uint8_t* dst, int32_t* dst_len) {
  if (any_null(src, offsets, dst, dst_len)) return ZIVK_STS_NULL_PTR_ERR;
  if (len < 1) return ZIVK_STS_SIZE_ERR;
  const auto length = [offsets](int64_t i) {
    return static_cast<int32_t>(static_cast<uint32_t>(offsets[i + 1]) - static_cast<uint32_t>(offsets[i]));
  };
  int64_t best = 0;
  int32_t b = length(0);
  for (int64_t i = 1; i < len; ++i) {
    const int32_t n = length(i);
    const uint8_t* row = src + offsets[i];
    const uint8_t* top = src + offsets[best];
    bool take;
    if (n <= 0) {
      take = kWhich == Extreme::min && n < b;
    } else if (b == 0) {
      take = kWhich == Extreme::max;
    } else {
      const int32_t common = n < b ? n : b;
      const int c = memcmp(row, top, static_cast<size_t>(common));  // unsigned bytes
      if (c != 0) take = kWhich == Extreme::max ? c > 0 : c < 0;
      else take = kWhich == Extreme::max ? n > b : n < b;
    }
    if (take) {
      best = i;
      b = n;
    }
  }
  *dst_len = b;
  ZIVKS_Copy_8u(src + offsets[best], dst, b);  // an empty best: a refused copy, dst untouched
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMax_16s(const int16_t* src, int32_t len, const int8_t* nulls, int16_t* dst) {
  return agg_narrow<int16_t, Extreme::max>(src, len, nulls, dst, ZIVKS_Max_16s);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMin_16s(const int16_t* src, int32_t len, const int8_t* nulls, int16_t* dst) {
  return agg_narrow<int16_t, Extreme::min>(src, len, nulls, dst, ZIVKS_Min_16s);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMax_32s(const int32_t* src, int32_t len, const int8_t* nulls, int32_t* dst) {
  return agg_narrow<int32_t, Extreme::max>(src, len, nulls, dst, ZIVKS_Max_32s);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMin_32s(const int32_t* src, int32_t len, const int8_t* nulls, int32_t* dst) {
  return agg_narrow<int32_t, Extreme::min>(src, len, nulls, dst, ZIVKS_Min_32s);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMax_64s(const int64_t* src, int32_t len, const int8_t* nulls, int64_t* dst) {
  return agg_64s<Extreme::max>(src, len, nulls, dst);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMin_64s(const int64_t* src, int32_t len, const int8_t* nulls, int64_t* dst) {
  return agg_64s<Extreme::min>(src, len, nulls, dst);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMax_64f(const double* src, int32_t len, const int8_t* nulls, double* dst) {
  return agg_64f<Extreme::max>(src, len, nulls, dst, ZIVKS_Max_64f);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMin_64f(const double* src, int32_t len, const int8_t* nulls, double* dst) {
  return agg_64f<Extreme::min>(src, len, nulls, dst, ZIVKS_Min_64f);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMax_decimal128(const ZIVKDecimal128* src, int32_t len, const int8_t* nulls,
                                                ZIVKDecimal128* dst) {
  return agg_decimal128<Extreme::max>(src, len, nulls, dst);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMin_decimal128(const ZIVKDecimal128* src, int32_t len, const int8_t* nulls,
                                                ZIVKDecimal128* dst) {
  return agg_decimal128<Extreme::min>(src, len, nulls, dst);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMax_bool(const uint8_t* src, int32_t len, const int8_t* nulls, uint8_t* dst) {
  return agg_bool<Extreme::max>(src, len, nulls, dst);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMin_bool(const uint8_t* src, int32_t len, const int8_t* nulls, uint8_t* dst) {
  return agg_bool<Extreme::min>(src, len, nulls, dst);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMax_varchar(const uint8_t* src, const int32_t* offsets, int32_t len, uint8_t* dst,
                                             int32_t* dstLen) {
  return agg_varchar<Extreme::max>(src, offsets, len, dst, dstLen);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_AggMin_varchar(const uint8_t* src, const int32_t* offsets, int32_t len, uint8_t* dst,
                                             int32_t* dstLen) {
  return agg_varchar<Extreme::min>(src, offsets, len, dst, dstLen);
}
