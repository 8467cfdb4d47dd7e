// Generic backend: a vector is an array of lanes, and every operation a plain loop over
// them. This backend is the readable definition: each operation opens with its contract
// and the Arm instruction it stands for, and the other backends reproduce it.
#pragma once

#include "core/simd/vec.h"

namespace zivks::simd {

inline constexpr int kWide = 1;

template <class T, int K>
struct reg {
  struct type {
    T v[16 / sizeof(T) * K];
  };
};

// ---- load_repeated_block
// Returns the 16 bytes at p in every block (ld1).
template <class V>
inline V load_repeated_block(const void* p) {
  return tile<V>(p, 16);
}

// ---- load_lo
// Returns the 8 bytes at p in the low half, the upper half cleared (ldr d).
template <class V>
inline V load_lo(const typename V::lane* p) {
  V v = zeros<V>();
  memcpy(&v.raw, p, 8);
  return v;
}

// ---- store_lo
// Stores the low half of v: 8 bytes at one block (str d).
template <class T, int K>
inline void store_lo(T* p, const vec<T, K>& v) {
  memcpy(p, &v.raw, sizeof v.raw / 2);
}

// ---- store_stream
// Stores v where the stored bytes need not stay in the caches, for fills far larger than
// they are; p is aligned to the size of the vector, and a run of them ends with
// stream_fence (stnp).
template <class T, int K>
inline void store_stream(T* p, const vec<T, K>& v) {
  store(p, v);
}

// ---- stream_fence
// Orders the streaming stores before every later store (nothing to do on Arm).
inline void stream_fence() {}

// ---- prefetch_stream, prefetch_stream_l2
// A streaming read hint for the first or the second cache level; never faults
// (prfm pldl1strm, prfm pldl2strm).
inline void prefetch_stream(const void* p) { __builtin_prefetch(p, 0, 0); }
inline void prefetch_stream_l2(const void* p) { __builtin_prefetch(p, 0, 2); }

}  // namespace zivks::simd
