// What every backend shares: the vector type, the tag of a loop body's registers, and
// the operations made of plain memory copies. A backend's base.h defines reg<T, K> (the
// register of K blocks of lanes of T) and kWide, then includes this file.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <type_traits>

namespace zivks::simd {

template <class T, int K>
struct reg;

// The registers one call of a loop body handles: N registers of K 128-bit blocks each
// (see core/frame.h). `value` is K, so that the tag also stands for its width.
template <int K, int N = 1>
struct width : std::integral_constant<int, K> {
  static constexpr int kCount = N;
};

// K 128-bit blocks of lanes of T, in one register of the backend.
template <class T, int K = 1>
struct vec {
  using lane = T;
  static constexpr int kBlocks = K;
  static constexpr int kLanes = 16 / static_cast<int>(sizeof(T)) * K;
  typename reg<T, K>::type raw;
};

// Unaligned load and store of a whole vector (ld1 / movdqu).
template <class V>
inline V load(const typename V::lane* p) {
  V v;
  memcpy(&v.raw, p, sizeof v.raw);
  return v;
}

template <class T, int K>
inline void store(T* p, const vec<T, K>& v) {
  memcpy(p, &v.raw, sizeof v.raw);
}

// Every lane x (dup).
template <class V>
inline V splat(typename V::lane x) {
  typename V::lane t[V::kLanes];
  for (auto& l : t) l = x;
  return load<V>(t);
}

// All bits clear (movi #0).
template <class V>
inline V zeros() {
  V v;
  memset(&v.raw, 0, sizeof v.raw);
  return v;
}

// The same bits seen as lanes of To (a reinterpreting move, no instruction).
template <class To, class From, int K>
inline vec<To, K> reinterpret(const vec<From, K>& a) {
  vec<To, K> r;
  memcpy(&r.raw, &a.raw, sizeof r.raw);
  return r;
}

// A vector of n-byte copies of the bytes at p, n dividing 16.
template <class V>
inline V tile(const void* p, size_t n) {
  unsigned char t[sizeof(V)];
  for (size_t o = 0; o < sizeof t; o += n) memcpy(t + o, p, n);
  V v;
  memcpy(&v.raw, t, sizeof v.raw);
  return v;
}

// The 16 bytes at p in every block of V (ld1; a broadcast on wider registers). Each
// backend defines it.
template <class V>
V load_repeated_block(const void* p);

// The element e again and again across the vector; its size divides 16 (dup / ld1r).
template <class V, class E>
inline V repeat(const E& e) {
  static_assert(16 % sizeof(E) == 0, "the element must tile a block");
  if constexpr (sizeof(E) == 16) return load_repeated_block<V>(&e);
  else return tile<V>(&e, sizeof(E));
}

// The lanes as a plain array, for the rare paths that fix lanes one by one.
template <class V>
struct lanes {
  typename V::lane v[V::kLanes];
  explicit lanes(const V& x) { memcpy(v, &x.raw, sizeof v); }
  V get() const { return load<V>(v); }
};

}  // namespace zivks::simd
