#include <math.h>

#include <limits>

#include "support/zt.h"
#include "zivk_core.h"

namespace zt {

std::vector<int> test_lengths() {
  std::vector<int> v;
  for (int n = 1; n <= 70; ++n) v.push_back(n);
  for (int n : {95, 127, 128, 129, 191, 255, 256, 257, 300}) v.push_back(n);
  return v;
}

std::vector<double> test_scales() {
  std::vector<double> v;
  for (int j : {-1074, -270, -257, -256, -255, -250, -245, -240, -160, -150, -149, -129, -128, -127, -126, -33, -32, -31, -17, -16,
                -15, -9, -8, -7, -2, -1, 0, 1, 2, 7, 8, 9, 15, 16, 17, 31, 32, 33, 126, 127, 128, 129, 149, 150,
                1023})
    v.push_back(ldexp(1.0, j));
  for (double s : {3.0, 0.3, 0.75, 1.5, 1.999, 5.0, 0.2, 7e-3, 2e-39}) v.push_back(s);
  return v;
}

template <class F>
F special_float(Rng& rng) {
  using B = std::conditional_t<sizeof(F) == 4, uint32_t, uint64_t>;
  constexpr int kMant = std::numeric_limits<F>::digits - 1;
  const B sign = B{1} << (sizeof(F) * 8 - 1);
  const B exp_mask = ((B{1} << (sizeof(F) * 8 - 1)) - 1) & ~((B{1} << kMant) - 1);
  const B mant_mask = (B{1} << kMant) - 1;
  B b = 0;
  switch (rng() % 16) {
    case 0:  // NaN with a random payload, quiet or signalling, either sign
      b = exp_mask | (rng() & mant_mask) | (rng() & 1 ? sign : 0);
      if ((b & mant_mask) == 0) b |= 1;
      break;
    case 1: b = exp_mask | (rng() & 1 ? sign : 0); break;  // infinity
    case 2: b = rng() & 1 ? sign : 0; break;                // signed zero
    case 3: b = (rng() & mant_mask) | (rng() & 1 ? sign : 0); break;  // denormal
    case 4: {  // the largest finite values and the smallest normals
      const F vals[] = {std::numeric_limits<F>::max(), std::numeric_limits<F>::min(),
                        std::numeric_limits<F>::lowest(), -std::numeric_limits<F>::min()};
      F f = vals[rng() % 4];
      memcpy(&b, &f, sizeof f);
      break;
    }
    case 5:  // any bit pattern
      b = static_cast<B>(rng());
      break;
    default: {  // ordinary values over a modest range, some with many digits
      std::uniform_real_distribution<double> d(-1000.0, 1000.0);
      F f = static_cast<F>(d(rng));
      if (rng() % 4 == 0) f = std::round(f);
      memcpy(&b, &f, sizeof f);
    }
  }
  F f;
  memcpy(&f, &b, sizeof f);
  return f;
}
template float special_float<float>(Rng&);
template double special_float<double>(Rng&);

template <class T>
void fill_random(T* p, size_t n, Rng& rng) {
  if constexpr (std::is_same_v<T, float> || std::is_same_v<T, double>) {
    for (size_t i = 0; i < n; ++i) p[i] = special_float<T>(rng);
  } else if constexpr (std::is_same_v<T, ZIVK32fc>) {
    fill_random(reinterpret_cast<float*>(p), 2 * n, rng);
  } else if constexpr (std::is_same_v<T, ZIVK64fc>) {
    fill_random(reinterpret_cast<double*>(p), 2 * n, rng);
  } else {
    auto* b = reinterpret_cast<uint8_t*>(p);
    for (size_t i = 0; i < n * sizeof(T); ++i) b[i] = static_cast<uint8_t>(rng());
  }
}
template void fill_random(uint8_t*, size_t, Rng&);
template void fill_random(int8_t*, size_t, Rng&);
template void fill_random(uint16_t*, size_t, Rng&);
template void fill_random(int16_t*, size_t, Rng&);
template void fill_random(uint32_t*, size_t, Rng&);
template void fill_random(int32_t*, size_t, Rng&);
template void fill_random(uint64_t*, size_t, Rng&);
template void fill_random(int64_t*, size_t, Rng&);
template void fill_random(float*, size_t, Rng&);
template void fill_random(double*, size_t, Rng&);
template void fill_random(ZIVK16sc*, size_t, Rng&);
template void fill_random(ZIVK32sc*, size_t, Rng&);
template void fill_random(ZIVK64sc*, size_t, Rng&);
template void fill_random(ZIVK32fc*, size_t, Rng&);
template void fill_random(ZIVK64fc*, size_t, Rng&);

void* twin_library() {
  static void* lib = [] {
    const char* path = ZT_TWIN_PATH;
    return path[0] ? dlopen(path, RTLD_NOW | RTLD_LOCAL) : nullptr;
  }();
  return lib;
}

CoreRecord& core_record() {
  static CoreRecord r;
  return r;
}

}  // namespace zt

// The core services the library binds to in this binary: they record what they are
// asked and pass on to the real ones in libzivk_core.so.
namespace {
template <class Fn>
Fn next(const char* name) {
  return reinterpret_cast<Fn>(dlsym(RTLD_NEXT, name));
}
}  // namespace

extern "C" {

__attribute__((visibility("default"))) void* ZIVK_Malloc(int32_t size) {
  auto& r = zt::core_record();
  ++r.malloc_calls;
  r.last_size = size;
  if (r.fail_next) {
    r.fail_next = false;
    return nullptr;
  }
  static auto real = next<void* (*)(int32_t)>("ZIVK_Malloc");
  return real(size);
}

__attribute__((visibility("default"))) void ZIVK_Free(void* ptr) {
  ++zt::core_record().free_calls;
  static auto real = next<void (*)(void*)>("ZIVK_Free");
  real(ptr);
}

}  // extern "C"
