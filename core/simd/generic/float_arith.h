// Generic backend: float lane arithmetic, one IEEE operation per lane.
#pragma once

#include "core/fp.h"

namespace zivks::simd {

// fadd
template <class T, int K>
inline vec<T, K> add(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = fp::add(a.r.v[i], b.r.v[i]);
  return r;
}

// fsub
template <class T, int K>
inline vec<T, K> sub(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = fp::sub(a.r.v[i], b.r.v[i]);
  return r;
}

// The lane operations already give the NaN the library wants, so there is nothing to
// test or do again (see the x86 backend).
template <class T, int K>
inline vec<T, K> add_raw(const vec<T, K>& a, const vec<T, K>& b) { return add(a, b); }
template <class T, int K>
inline vec<T, K> sub_raw(const vec<T, K>& a, const vec<T, K>& b) { return sub(a, b); }
template <class T, int K, class... Rest>
inline bool any_nan(const vec<T, K>&, const Rest&...) { return false; }

}  // namespace zivks::simd
