// Generic backend: a vector is an array of lanes.
#pragma once

namespace zivks::simd {

inline constexpr int kWide = 1;

template <class T, int K>
struct reg {
  struct type {
    T v[16 / sizeof(T) * K];
  };
};

}  // namespace zivks::simd
