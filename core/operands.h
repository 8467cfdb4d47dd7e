// The operands of a block loop: an array read with a hint ahead of the loop, a constant
// made once for every register width, and the read hints themselves. Every read-hint
// distance is in bytes past the element being read.
#pragma once

#include <stdint.h>
#include <string.h>

#include <type_traits>

#include "core/frame.h"
#include "core/simd/simd.h"

namespace zivks {

// The cache line the read hints count in.
inline constexpr int64_t kLineBytes = 64;

// A hint that the stream will be read `bytes` past p soon, into the first cache level
// (prfm pldl1strm). It never faults, so it may point past the end of the array.
inline void hint_read(const void* p, int64_t bytes) {
  simd::prefetch_stream(static_cast<const char*>(p) + bytes);
}

// The same into the second cache level (prfm pldl2strm).
inline void hint_read_l2(const void* p, int64_t bytes) {
  simd::prefetch_stream_l2(static_cast<const char*>(p) + bytes);
}

// One hint for every line of the kSpanBytes from p (at least one), each `bytes` ahead.
template <int64_t kSpanBytes>
inline void hint_read_lines(const void* p, int64_t bytes) {
  for (int64_t o = 0; o < (kSpanBytes + kLineBytes - 1) / kLineBytes; ++o) hint_read(p, bytes + kLineBytes * o);
}

// An array operand: vec<V>(i) loads the register from element i after a read hint
// kAheadBytes past it (none when 0); at(i) reads element i. With kHintEveryBytes > 0 a
// register of several blocks sends its hint only where it starts such a stretch of the
// array: the stream is sequential, and more hints would take load slots from the loads.
template <class T, int kAheadBytes = 0, int kHintEveryBytes = 0>
struct array_operand {
  const T* p;

  template <int K = 1>
  void hint(int64_t i) const {
    if constexpr (kAheadBytes != 0) {
      if constexpr (K > 1 && kHintEveryBytes > 0) {
        if ((i * static_cast<int64_t>(sizeof(T))) % kHintEveryBytes != 0) return;
      }
      hint_read(p + i, kAheadBytes);
    }
  }
  template <class V>
  V vec(int64_t i) const {
    hint<V::kBlocks>(i);
    return simd::load<V>(p + i);
  }
  // The low half of a register (the upper one cleared), without a hint.
  template <class V>
  V vec_lo(int64_t i) const { return simd::load_lo<V>(p + i); }
  T at(int64_t i) const { return p[i]; }
};

namespace detail {

template <class X> struct is_vec : std::false_type {};
template <class T, int K> struct is_vec<simd::vec<T, K>> : std::true_type {};

// R<T, K> for K = W, W / 2, ... 1, one a base of the next.
template <class T, template <class, int> class R, int K>
struct per_width : per_width<T, R, K / 2> {
  R<T, K> reg;
  template <class E>
  explicit per_width(const E& x) : per_width<T, R, K / 2>(x), reg(make(x)) {}

  template <class E>
  static R<T, K> make(const E& x) {
    if constexpr (!is_vec<R<T, K>>::value) return R<T, K>(x);
    else if constexpr (std::is_same_v<E, T>) return simd::splat<R<T, K>>(x);
    else return simd::repeat<R<T, K>>(x);
  }
};
template <class T, template <class, int> class R>
struct per_width<T, R, 0> {
  template <class E>
  explicit per_width(const E&) {}
};

}  // namespace detail

// A constant made once, before a loop, for every register width the loop may use (1, 2
// and 4 blocks, up to the build's widest): x in every lane of T, or a record x (a
// complex value) repeated across the register; for R other than simd::vec, R<T, K>(x)
// (a shift count, say). get<K>() is the one of K blocks, of<V>() the one of V's width.
template <class T, template <class, int> class R = simd::vec>
class broadcast : detail::per_width<T, R, simd::kWide> {
 public:
  template <class E>
  explicit broadcast(const E& x) : detail::per_width<T, R, simd::kWide>(x) {}
  template <int K>
  const R<T, K>& get() const {
    static_assert(K >= 1 && K <= simd::kWide, "registers the build has");
    return static_cast<const detail::per_width<T, R, K>&>(*this).reg;
  }
  template <class V>
  const V& of() const { return get<V::kBlocks>(); }
};

// A constant operand: the same element at every index. vec<V>(i) is a register of it
// (re and im alternating for a complex record), at(i) part i of the array it stands for.
template <class E>
struct const_operand {
  using P = part_t<E>;
  broadcast<P> regs;
  P part[parts<E>::count];
  explicit const_operand(const E& val) : regs(val) { memcpy(part, &val, sizeof part); }

  template <class V>
  const V& vec(int64_t) const { return regs.template of<V>(); }
  template <class V>
  const V& vec_lo(int64_t) const { return regs.template of<V>(); }
  P at(int64_t i) const { return part[i % parts<E>::count]; }
};

}  // namespace zivks
