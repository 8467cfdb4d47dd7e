// Generic backend: bitwise lane operations and shifts by a broadcast count.
#pragma once

namespace zivks::simd {

// and
template <class T, int K>
inline vec<T, K> bit_and(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = static_cast<T>(a.r.v[i] & b.r.v[i]);
  return r;
}

// orr
template <class T, int K>
inline vec<T, K> bit_or(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = static_cast<T>(a.r.v[i] | b.r.v[i]);
  return r;
}

// eor
template <class T, int K>
inline vec<T, K> bit_xor(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = static_cast<T>(a.r.v[i] ^ b.r.v[i]);
  return r;
}

// mvn
template <class T, int K>
inline vec<T, K> bit_not(const vec<T, K>& a) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = static_cast<T>(~a.r.v[i]);
  return r;
}

// A shift count from 0 to the lane width less one, broadcast once for a loop of shl
// and shr (dup).
template <class T, int K>
struct shift_count {
  int s;
  explicit shift_count(int n) : s(n) {}
};

// ushl / sshl by a broadcast count: the low bits of each lane move up and the high bits
// are lost; a signed lane wraps.
template <class T, int K>
inline vec<T, K> shl(const vec<T, K>& a, const shift_count<T, K>& n) {
  using U = std::make_unsigned_t<T>;
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i)
    r.r.v[i] = static_cast<T>(static_cast<U>(static_cast<U>(a.r.v[i]) << n.s));
  return r;
}

// ushl / sshl by the negated broadcast count: zeros come in for unsigned lanes, copies
// of the sign bit for signed ones.
template <class T, int K>
inline vec<T, K> shr(const vec<T, K>& a, const shift_count<T, K>& n) {
  vec<T, K> r;
  for (int i = 0; i < vec<T, K>::kLanes; ++i) r.r.v[i] = static_cast<T>(a.r.v[i] >> n.s);
  return r;
}

}  // namespace zivks::simd
