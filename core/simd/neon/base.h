// NEON backend: a vector is one Q register.
#pragma once

#include <arm_neon.h>

namespace zivks::simd {

inline constexpr int kWide = 1;

template <class T> struct neon_reg;
template <> struct neon_reg<float> { using type = float32x4_t; };
template <> struct neon_reg<double> { using type = float64x2_t; };
template <> struct neon_reg<uint8_t> { using type = uint8x16_t; };
template <> struct neon_reg<int8_t> { using type = int8x16_t; };
template <> struct neon_reg<uint16_t> { using type = uint16x8_t; };
template <> struct neon_reg<int16_t> { using type = int16x8_t; };
template <> struct neon_reg<uint32_t> { using type = uint32x4_t; };
template <> struct neon_reg<int32_t> { using type = int32x4_t; };
template <> struct neon_reg<uint64_t> { using type = uint64x2_t; };
template <> struct neon_reg<int64_t> { using type = int64x2_t; };

template <class T, int K>
struct reg {
  static_assert(K == 1, "NEON registers hold one block");
  using type = typename neon_reg<T>::type;
};

}  // namespace zivks::simd
