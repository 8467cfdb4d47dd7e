// Plain integer Add and Sub, the widening and float-result forms, and Abs. Every member
// either saturates or cannot overflow, except Add_16s32s_I, which wraps modulo 2^32 like
// plain 32-bit arithmetic; that difference from its neighbours is deliberate. Block and
// tail give the same result everywhere.
#include <limits>

#include "core/frame.h"
#include "core/lane.h"
#include "core/operands.h"
#include "core/ops.h"

namespace {

using namespace zivks;

// Read hints, in bytes ahead of the element read, of both sources.
constexpr int64_t kAddSatReadAheadBytes = 1024;  // Add_16u, Add_32u
constexpr int64_t kAdd8u16uReadAheadBytes = 512;

// |x|; the most negative integer has no positive counterpart and gives the largest one.
// Float lanes lose only the sign bit: -0 becomes +0, NaN keeps its payload.
template <class T>
ZIVKStatus abs_of(const T* src, T* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, dst)) return st;
  for_blocks<kVectorElems<T>>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<T, decltype(w)::value>;
        if constexpr (std::is_floating_point_v<T>) simd::store(dst + i, simd::clear_sign(simd::load<V>(src + i)));
        else simd::store(dst + i, simd::abs_sat(simd::load<V>(src + i)));
      },
      [&](int64_t i) {
        if constexpr (std::is_floating_point_v<T>) dst[i] = lane::clear_sign(src[i]);
        else dst[i] = lane::abs_sat(src[i]);
      });
  return ZIVK_STS_NO_ERR;
}

// dst = src1 + src2 saturating, over whole vectors (Add_16u, Add_32u).
template <class T>
ZIVKStatus add_sat(const T* src1, const T* src2, T* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, dst)) return st;
  for_blocks<kVectorElems<T>>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<T, decltype(w)::value>;
        hint_read(src1 + i, kAddSatReadAheadBytes);
        hint_read(src2 + i, kAddSatReadAheadBytes);
        simd::store(dst + i, simd::add_sat(simd::load<V>(src1 + i), simd::load<V>(src2 + i)));
      },
      [&](int64_t i) { dst[i] = lane::clamp_to<T>(int64_t{src1[i]} + int64_t{src2[i]}); });
  return ZIVK_STS_NO_ERR;
}

// Two uint8 arrays summed into uint16, 8 elements a block.
ZIVKStatus add_8u16u(const uint8_t* src1, const uint8_t* src2, uint16_t* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, dst)) return st;
  for_blocks<8>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<uint16_t, decltype(w)::value>;
        hint_read(src1 + i, kAdd8u16uReadAheadBytes);
        hint_read(src2 + i, kAdd8u16uReadAheadBytes);
        simd::store(dst + i, simd::add_wrap(simd::load_widen<V>(src1 + i), simd::load_widen<V>(src2 + i)));
      },
      [&](int64_t i) { dst[i] = static_cast<uint16_t>(src1[i] + src2[i]); });
  return ZIVK_STS_NO_ERR;
}

// int16 a op b saturating, 4 elements (half a vector) a block. b is an array_operand or,
// for the constant forms, a const_operand.
template <AddSub op, class B>
ZIVKStatus int16_sat(const int16_t* a, const B& b, int16_t* dst, int32_t len) {
  for_blocks<4>(
      len,
      [&](int64_t i, auto w) {
        // A block is half a vector: K blocks fill K / 2 whole ones.
        constexpr int K = decltype(w)::value;
        if constexpr (K == 1) {
          using V = simd::vec<int16_t>;
          const V x = simd::load_lo<V>(a + i), y = b.template vec_lo<V>(i);
          simd::store_lo(dst + i, op == AddSub::kAdd ? simd::add_sat(x, y) : simd::sub_sat(x, y));
        } else {
          using V = simd::vec<int16_t, K / 2>;
          const V x = simd::load<V>(a + i), y = b.template vec<V>(i);
          simd::store(dst + i, op == AddSub::kAdd ? simd::add_sat(x, y) : simd::sub_sat(x, y));
        }
      },
      [&](int64_t i) {
        const int32_t x = a[i], y = b.at(i);
        dst[i] = lane::clamp_to<int16_t>(op == AddSub::kAdd ? x + y : x - y);
      });
  return ZIVK_STS_NO_ERR;
}

// Sums and differences of two int16 arrays as exact float32: add as integers, convert.
template <AddSub op>
ZIVKStatus int16_to_32f(const int16_t* src1, const int16_t* src2, float* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, dst)) return st;
  for_blocks<4>(
      len,
      [&](int64_t i, auto w) {
        using W = simd::vec<int32_t, decltype(w)::value>;
        const W a = simd::load_widen<W>(src1 + i), b = simd::load_widen<W>(src2 + i);
        simd::store(dst + i, simd::cvt_to_float<float>(op == AddSub::kAdd ? simd::add_wrap(a, b) : simd::sub_wrap(b, a)));
      },
      [&](int64_t i) {
        const float a = src1[i], b = src2[i];
        dst[i] = op == AddSub::kAdd ? a + b : b - a;
      });
  return ZIVK_STS_NO_ERR;
}

// srcDst[i] + src[i] with src sign-extended, wrapping: no saturation on purpose.
ZIVKStatus add_16s32s_wrap(const int16_t* src, int32_t* srcDst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src, srcDst)) return st;
  for_blocks<4>(
      len,
      [&](int64_t i, auto w) {
        using W = simd::vec<int32_t, decltype(w)::value>;
        simd::store(srcDst + i, simd::add_wrap(simd::load<W>(srcDst + i), simd::load_widen<W>(src + i)));
      },
      [&](int64_t i) {
        srcDst[i] = static_cast<int32_t>(static_cast<uint32_t>(srcDst[i]) + static_cast<uint32_t>(int32_t{src[i]}));
      });
  return ZIVK_STS_NO_ERR;
}

}  // namespace

// Each row: the exported function, its in-place form (which calls the twin), the
// element type.
#define ZIVKS_ABS(name, name_in_place, type)                              \
  ZIVKS_EXPORT ZIVKStatus name(const type* src, type* dst, int32_t len) { \
    return abs_of(src, dst, len);                                         \
  }                                                                       \
  ZIVKS_IN_PLACE_OF_ONE(name_in_place, name, type)
ZIVKS_ABS(ZIVKS_Abs_16s, ZIVKS_Abs_16s_I, int16_t)
ZIVKS_ABS(ZIVKS_Abs_32s, ZIVKS_Abs_32s_I, int32_t)
ZIVKS_ABS(ZIVKS_Abs_32f, ZIVKS_Abs_32f_I, float)
ZIVKS_ABS(ZIVKS_Abs_64f, ZIVKS_Abs_64f_I, double)

ZIVKS_EXPORT ZIVKStatus ZIVKS_Add_8u16u(const uint8_t* src1, const uint8_t* src2, uint16_t* dst, int32_t len) {
  return add_8u16u(src1, src2, dst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Add_16u(const uint16_t* src1, const uint16_t* src2, uint16_t* dst, int32_t len) {
  return add_sat(src1, src2, dst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Add_32u(const uint32_t* src1, const uint32_t* src2, uint32_t* dst, int32_t len) {
  return add_sat(src1, src2, dst, len);
}
ZIVKS_IN_PLACE_OF_ARRAYS(ZIVKS_Add_32u_I, ZIVKS_Add_32u, uint32_t)

ZIVKS_EXPORT ZIVKStatus ZIVKS_Add_16s(const int16_t* src1, const int16_t* src2, int16_t* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, dst)) return st;
  return int16_sat<AddSub::kAdd>(src1, array_operand<int16_t>{src2}, dst, len);
}
ZIVKS_IN_PLACE_OF_ARRAYS(ZIVKS_Add_16s_I, ZIVKS_Add_16s, int16_t)
// src2 - src1: the first array is the subtrahend.
ZIVKS_EXPORT ZIVKStatus ZIVKS_Sub_16s(const int16_t* src1, const int16_t* src2, int16_t* dst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, src1, src2, dst)) return st;
  return int16_sat<AddSub::kSub>(src2, array_operand<int16_t>{src1}, dst, len);
}
ZIVKS_IN_PLACE_OF_ARRAYS(ZIVKS_Sub_16s_I, ZIVKS_Sub_16s, int16_t)
ZIVKS_EXPORT ZIVKStatus ZIVKS_AddC_16s_I(int16_t val, int16_t* srcDst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, srcDst)) return st;
  return int16_sat<AddSub::kAdd>(srcDst, const_operand<int16_t>(val), srcDst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_SubC_16s_I(int16_t val, int16_t* srcDst, int32_t len) {
  if (const ZIVKStatus st = check_ptrs_len(len, srcDst)) return st;
  return int16_sat<AddSub::kSub>(srcDst, const_operand<int16_t>(val), srcDst, len);
}

ZIVKS_EXPORT ZIVKStatus ZIVKS_Add_16s32f(const int16_t* src1, const int16_t* src2, float* dst, int32_t len) {
  return int16_to_32f<AddSub::kAdd>(src1, src2, dst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Sub_16s32f(const int16_t* src1, const int16_t* src2, float* dst, int32_t len) {
  return int16_to_32f<AddSub::kSub>(src1, src2, dst, len);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Add_16s32s_I(const int16_t* src, int32_t* srcDst, int32_t len) {
  return add_16s32s_wrap(src, srcDst, len);
}
