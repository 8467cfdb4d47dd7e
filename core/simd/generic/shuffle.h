// Generic backend: moving lanes and bytes, and the structured loads and stores that
// split interleaved data into planes and join planes again.
#pragma once

namespace zivks::simd {

// The lanes in reverse order (rev64 then ext #8).
template <class T, int K>
inline vec<T, K> reverse(const vec<T, K>& a) {
  constexpr int n = vec<T, K>::kLanes;
  vec<T, K> r;
  for (int i = 0; i < n; ++i) r.r.v[i] = a.r.v[n - 1 - i];
  return r;
}

// The bytes of every lane in reverse order (rev16 / rev32 / rev64).
template <class T, int K>
inline vec<T, K> swap_bytes(const vec<T, K>& a) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) {
    unsigned char b[sizeof(T)], s[sizeof(T)];
    memcpy(b, &a.r.v[i], sizeof(T));
    for (size_t j = 0; j < sizeof(T); ++j) s[j] = b[sizeof(T) - 1 - j];
    memcpy(&r.r.v[i], s, sizeof(T));
  }
  return r;
}

// Two vectors of pairs split into the first and the second member of each pair (ld2).
template <class V>
inline void load_planes2(const typename V::lane* p, V& a, V& b) {
  for (int i = 0; i < V::kLanes; ++i) {
    memcpy(&a.r.v[i], p + 2 * i, sizeof a.r.v[i]);
    memcpy(&b.r.v[i], p + 2 * i + 1, sizeof b.r.v[i]);
  }
}

// Two planes joined into pairs, stored as two vectors (st2).
template <class T, int K>
inline void store_planes2(T* p, const vec<T, K>& a, const vec<T, K>& b) {
  for (int i = 0; i < vec<T, K>::kLanes; ++i) {
    memcpy(p + 2 * i, &a.r.v[i], sizeof(T));
    memcpy(p + 2 * i + 1, &b.r.v[i], sizeof(T));
  }
}

// Three vectors holding byte triples (48 bytes a block) with the first and the third
// byte of every triple exchanged: ld3, the outer planes exchanged, st3.
template <int K>
inline void exchange_outer_bytes3(vec<uint8_t, K>& a, vec<uint8_t, K>& b, vec<uint8_t, K>& c) {
  constexpr int n = 16 * K;
  uint8_t t[3 * n];
  memcpy(t, a.r.v, n);
  memcpy(t + n, b.r.v, n);
  memcpy(t + 2 * n, c.r.v, n);
  for (int j = 0; j < 3 * n; j += 3) {
    const uint8_t x = t[j];
    t[j] = t[j + 2];
    t[j + 2] = x;
  }
  memcpy(a.r.v, t, n);
  memcpy(b.r.v, t + n, n);
  memcpy(c.r.v, t + 2 * n, n);
}

}  // namespace zivks::simd
