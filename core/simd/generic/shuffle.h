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

// Three vectors of triples split into three planes (ld3).
template <class V>
inline void load_planes3(const typename V::lane* p, V& a, V& b, V& c) {
  for (int i = 0; i < V::kLanes; ++i) {
    a.r.v[i] = p[3 * i];
    b.r.v[i] = p[3 * i + 1];
    c.r.v[i] = p[3 * i + 2];
  }
}

// Three planes joined into triples, stored as three vectors (st3).
template <class T, int K>
inline void store_planes3(T* p, const vec<T, K>& a, const vec<T, K>& b, const vec<T, K>& c) {
  for (int i = 0; i < vec<T, K>::kLanes; ++i) {
    p[3 * i] = a.r.v[i];
    p[3 * i + 1] = b.r.v[i];
    p[3 * i + 2] = c.r.v[i];
  }
}

}  // namespace zivks::simd
