// Generic backend: moving lanes and bytes, and the structured loads and stores that
// split interleaved data into planes and join planes again.
#pragma once

#include "core/simd/generic/base.h"

namespace zivks::simd {

// ---- reverse
// Returns the lanes in reverse order (rev64 then ext #8).
template <class T, int K>
inline vec<T, K> reverse(const vec<T, K>& a) {
  constexpr int n = vec<T, K>::kLanes;
  vec<T, K> r;
  for (int i = 0; i < n; ++i) r.raw.v[i] = a.raw.v[n - 1 - i];
  return r;
}

// ---- swap_bytes
// Returns the bytes of every lane in reverse order (rev16 / rev32 / rev64).
template <class T, int K>
inline vec<T, K> swap_bytes(const vec<T, K>& a) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) {
    unsigned char b[sizeof(T)], s[sizeof(T)];
    memcpy(b, &a.raw.v[i], sizeof(T));
    for (size_t j = 0; j < sizeof(T); ++j) s[j] = b[sizeof(T) - 1 - j];
    memcpy(&r.raw.v[i], s, sizeof(T));
  }
  return r;
}

// ---- table_bytes
// Returns byte i of each 16-byte block as byte idx[i] of the same block of a, or 0 where
// idx[i] is 16 or more (tbl).
template <int K>
inline vec<uint8_t, K> table_bytes(const vec<uint8_t, K>& a, const vec<uint8_t, K>& idx) {
  vec<uint8_t, K> r;
  for (int b = 0; b < 16 * K; b += 16)
    for (int i = 0; i < 16; ++i) r.raw.v[b + i] = idx.raw.v[b + i] < 16 ? a.raw.v[b + idx.raw.v[b + i]] : 0;
  return r;
}

// ---- store_blocks12
// Stores the first 12 bytes of each 16-byte block, one after another: 12 * K bytes
// from p, nothing past them (st1 of 8 bytes and a 4-byte lane, per block).
template <int K>
inline void store_blocks12(uint8_t* p, const vec<uint8_t, K>& v) {
  for (int b = 0; b < K; ++b) memcpy(p + 12 * b, v.raw.v + 16 * b, 12);
}

// ---- ext_bytes
// Returns bytes n to 15 of a followed by bytes 0 to n - 1 of b (ext #n).
template <int n>
inline vec<uint8_t, 1> ext_bytes(const vec<uint8_t, 1>& a, const vec<uint8_t, 1>& b) {
  static_assert(n > 0 && n < 16, "a byte offset inside the register");
  vec<uint8_t, 1> r;
  for (int i = 0; i < 16; ++i) r.raw.v[i] = i + n < 16 ? a.raw.v[i + n] : b.raw.v[i + n - 16];
  return r;
}

// ---- load_planes2
// Loads two vectors of pairs from p, the first members into a and the second into b
// (ld2).
template <class V>
inline void load_planes2(const typename V::lane* p, V& a, V& b) {
  for (int i = 0; i < V::kLanes; ++i) {
    memcpy(&a.raw.v[i], p + 2 * i, sizeof a.raw.v[i]);
    memcpy(&b.raw.v[i], p + 2 * i + 1, sizeof b.raw.v[i]);
  }
}

// ---- store_planes2
// Stores the lanes of a and b as pairs, two vectors from p (st2).
template <class T, int K>
inline void store_planes2(T* p, const vec<T, K>& a, const vec<T, K>& b) {
  for (int i = 0; i < vec<T, K>::kLanes; ++i) {
    memcpy(p + 2 * i, &a.raw.v[i], sizeof(T));
    memcpy(p + 2 * i + 1, &b.raw.v[i], sizeof(T));
  }
}

// ---- exchange_outer_bytes3
// Exchanges the first and the third byte of every triple in three vectors holding byte
// triples, 48 bytes a block (ld3, the outer planes exchanged, st3).
template <int K>
inline void exchange_outer_bytes3(vec<uint8_t, K>& a, vec<uint8_t, K>& b, vec<uint8_t, K>& c) {
  constexpr int n = 16 * K;
  uint8_t t[3 * n];
  memcpy(t, a.raw.v, n);
  memcpy(t + n, b.raw.v, n);
  memcpy(t + 2 * n, c.raw.v, n);
  for (int j = 0; j < 3 * n; j += 3) {
    const uint8_t x = t[j];
    t[j] = t[j + 2];
    t[j + 2] = x;
  }
  memcpy(a.raw.v, t, n);
  memcpy(b.raw.v, t + n, n);
  memcpy(c.raw.v, t + 2 * n, n);
}

}  // namespace zivks::simd
