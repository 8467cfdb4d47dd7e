// Test support: guarded buffers, special values, bit-exact comparison, the generic twin
// and the recording core services.
#pragma once

#include <dlfcn.h>
#include <math.h>
#include <gtest/gtest.h>
#include <stdint.h>
#include <string.h>

#include <random>
#include <vector>

#include "zivks.h"

namespace zt {

// Lengths that cross every block boundary up to 64 elements, then some longer ones.
std::vector<int> test_lengths();

// ---- guarded buffers ----------------------------------------------------------------

// `len` elements between guard zones filled with a byte pattern, optionally placed off
// natural alignment by `misalign` elements' worth of bytes of the part type.
template <class T>
class Guarded {
 public:
  static constexpr size_t kGuard = 64;
  static constexpr uint8_t kPattern = 0xA5;
  explicit Guarded(size_t len, size_t misalign_bytes = 0)
      : len_(len), raw_(kGuard * 2 + len * sizeof(T) + 64), off_(kGuard + misalign_bytes) {
    memset(raw_.data(), kPattern, raw_.size());
  }
  T* data() { return reinterpret_cast<T*>(raw_.data() + off_); }
  const T* data() const { return reinterpret_cast<const T*>(raw_.data() + off_); }
  T& operator[](size_t i) { return data()[i]; }
  size_t size() const { return len_; }
  void fill_pattern() { memset(data(), kPattern, len_ * sizeof(T)); }
  // True when nothing outside [first, first + count) elements has changed.
  bool untouched_outside(size_t first, size_t count) const {
    const uint8_t* b = raw_.data();
    const size_t lo = off_ + first * sizeof(T), hi = off_ + (first + count) * sizeof(T);
    for (size_t i = 0; i < raw_.size(); ++i)
      if ((i < lo || i >= hi) && b[i] != kPattern) return false;
    return true;
  }
  bool guards_intact() const { return untouched_outside(0, len_); }
  bool untouched() const { return untouched_outside(0, 0); }

 private:
  size_t len_;
  std::vector<uint8_t> raw_;
  size_t off_;
};

// ---- values ---------------------------------------------------------------------------

using Rng = std::mt19937_64;

// A float of any kind: often ordinary, sometimes NaN (quiet or signalling, either sign,
// random payload), an infinity, a signed zero, a denormal or an extreme.
template <class F>
F special_float(Rng& rng);

// Any bit pattern for integer-like element types, and special floats for the float ones.
template <class T>
void fill_random(T* p, size_t n, Rng& rng);

template <class T>
inline bool same_bits(const T& a, const T& b) { return memcmp(&a, &b, sizeof(T)) == 0; }

// First element index at which two arrays differ in any bit, or -1.
template <class T>
inline long first_difference(const T* a, const T* b, size_t n) {
  for (size_t i = 0; i < n; ++i)
    if (!same_bits(a[i], b[i])) return static_cast<long>(i);
  return -1;
}

// ---- the generic twin -----------------------------------------------------------------

// The same library built with the generic backend, or null where the native backend is
// the generic one.
void* twin_library();

template <class Fn>
Fn twin_symbol(const char* name) {
  void* lib = twin_library();
  return lib ? reinterpret_cast<Fn>(dlsym(lib, name)) : nullptr;
}

// The generic-backend build of an exported function, with the function's own type.
#define ZT_TWIN(fn) ::zt::twin_symbol<decltype(&fn)>(#fn)

// ---- recording core services ------------------------------------------------------------

struct CoreRecord {
  int malloc_calls = 0;
  int32_t last_size = 0;
  int free_calls = 0;
  bool fail_next = false;  // the next ZIVK_Malloc returns null
};
CoreRecord& core_record();

}  // namespace zt

namespace zt {
// The float type of an element's parts.
template <class E> struct part_of_t { using type = E; };
template <> struct part_of_t<ZIVK16sc> { using type = int16_t; };
template <> struct part_of_t<ZIVK32sc> { using type = int32_t; };
template <> struct part_of_t<ZIVK64sc> { using type = int64_t; };
template <> struct part_of_t<ZIVK32fc> { using type = float; };
template <> struct part_of_t<ZIVK64fc> { using type = double; };
template <class E> using part_of = typename part_of_t<E>::type;
}  // namespace zt

namespace zt {
// The power of two e that a scale selects, M = 2^e: log2(1 / scale) truncated toward
// zero, so every scale moves to a power of two in the direction of 1.
inline int scale_exponent(double scale) {
  const int lg = ilogb(scale);
  return scale == ldexp(1.0, lg) || scale >= 1 ? -lg : -(lg + 1);
}

// The scales that matter to a scaled family: powers of two around every path switch
// (no scaling, the 8- and 16-bit shift widths, shift counts of 128 and 256, the float32
// and float64 limits of M) and some that are not powers of two.
std::vector<double> test_scales();
}  // namespace zt
