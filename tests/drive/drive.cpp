// The driver's input, digest, blocks and checks; the table of every entry.
#include "drive.h"

#include <math.h>
#include <stdio.h>
#include <stdlib.h>

#include <limits>

#if defined(__SANITIZE_ADDRESS__)
#define ZD_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZD_ASAN 1
#endif
#endif
#ifdef ZD_ASAN
#include <sanitizer/asan_interface.h>
#endif

namespace zd {

namespace {

uint64_t splitmix(uint64_t& s) {
  uint64_t z = (s += 0x9E3779B97F4A7C15ull);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
  return z ^ (z >> 31);
}

// The part type of an element: complex records are filled part by part.
template <class T, class = void>
struct PartOf {
  using type = T;
};
template <class T>
struct PartOf<T, std::void_t<decltype(T::re)>> {
  using type = decltype(T::re);
};

template <class P>
P special_value(Input& in) {
  if constexpr (std::is_floating_point<P>::value) {
    using L = std::numeric_limits<P>;
    const P table[] = {P(0),          -P(0),          P(1),           P(-1),
                       L::infinity(), -L::infinity(), L::quiet_NaN(), -L::quiet_NaN(),
                       L::signaling_NaN(), L::denorm_min(), -L::denorm_min(), L::min(),
                       L::max(),      -L::max(),      P(0.5),         P(-2.5),
                       P(1.5),        P(65504),       P(2147483648.0), P(-9223372036854775808.0)};
    return table[in.below(sizeof table / sizeof table[0])];
  } else if constexpr (std::is_integral<P>::value) {
    using L = std::numeric_limits<P>;
    const P table[] = {P(0), P(1), P(-1), L::min(), L::max(), P(L::min() + 1), P(L::max() - 1)};
    return table[in.below(sizeof table / sizeof table[0])];
  } else {
    return in.take<P>();
  }
}

}  // namespace

// ---- Input

Input::Input(const uint8_t* data, size_t size) : data_(data), size_(size) {
  state_ = size;
  for (size_t i = 0; i < size && i < 64; ++i) state_ = state_ * 0x100000001B3ull ^ data[i];
}

void Input::fill(void* dst, size_t bytes) {
  auto* d = static_cast<uint8_t*>(dst);
  const size_t have = pos_ < size_ ? size_ - pos_ : 0;
  const size_t direct = have < bytes ? have : bytes;
  if (direct) memcpy(d, data_ + pos_, direct);
  pos_ += direct;
  for (size_t i = direct; i < bytes; i += 8) {
    const uint64_t r = splitmix(state_);
    memcpy(d + i, &r, bytes - i < 8 ? bytes - i : 8);
  }
}

// ---- Digest

// Eight bytes a step: the fuzzer digests every written array of every call.
void Digest::add(const void* p, size_t bytes) {
  const auto* b = static_cast<const uint8_t*>(p);
  size_t i = 0;
  for (; i + 8 <= bytes; i += 8) {
    uint64_t w;
    memcpy(&w, b + i, 8);
    h_ = (h_ ^ w) * 0x9FB21C651E98DF25ull;
    h_ ^= h_ >> 31;
  }
  for (; i < bytes; ++i) h_ = (h_ ^ b[i]) * 0x100000001B3ull;
  h_ ^= h_ >> 29;
}

// ---- Block

Block::Block(size_t bytes, size_t offset) : bytes_(bytes), offset_(offset) {
  // aligned_alloc wants a multiple of the alignment; the tail past `bytes` is poisoned
  // under AddressSanitizer like the head, so the block is exact either way.
  const size_t total = (offset + bytes + 63) / 64 * 64 + 64;
  raw_ = static_cast<uint8_t*>(aligned_alloc(64, total));
  if (!raw_) fail("driver", "out of memory");
  data_ = raw_ + offset;
#ifdef ZD_ASAN
  ASAN_POISON_MEMORY_REGION(raw_, offset);
  ASAN_POISON_MEMORY_REGION(data_ + bytes, total - offset - bytes);
#endif
}

Block::~Block() {
#ifdef ZD_ASAN
  ASAN_UNPOISON_MEMORY_REGION(raw_, (offset_ + bytes_ + 63) / 64 * 64 + 64);
#endif
  free(raw_);
}

[[noreturn]] void fail(const std::string& entry, const std::string& what) {
  fprintf(stderr, "zivks driver: %s: %s\n", entry.c_str(), what.c_str());
  fflush(stderr);
  abort();
}

// ---- Call

int32_t Call::length() {
  const uint8_t k = in_.byte();
  if (k < 150) return int32_t(in_.below(80));    // around the vector blocks
  if (k < 215) return int32_t(in_.below(700));   // several block groups
  if (k < 248) return int32_t(in_.below(5000));  // past the first cache level
  if (k < 255) return -int32_t(in_.below(3));    // 0, -1, -2
  return std::numeric_limits<int32_t>::min();
}

template <class T>
void Call::fill_elements(void* dst, size_t count) {
  using P = typename PartOf<T>::type;
  const size_t parts = count * sizeof(T) / sizeof(P);
  auto* out = static_cast<uint8_t*>(dst);
  const uint8_t style = in_.byte() % 4;
  if (style < 2 || !std::is_arithmetic<P>::value) {  // raw bits
    in_.fill(out, count * sizeof(T));
    return;
  }
  if constexpr (std::is_arithmetic<P>::value) for (size_t i = 0; i < parts; ++i) {
    P v;
    if (style == 2) {  // small values: many ties, sign changes, zeros
      v = P(int(in_.byte() % 7) - (std::is_signed<P>::value ? 3 : 0));
    } else {  // special values among raw ones
      v = in_.one_in(2) ? in_.take<P>() : special_value<P>(in_);
    }
    memcpy(out + i * sizeof(P), &v, sizeof v);
  }
}

template <class T>
T Call::scalar(const char* name) {
  if constexpr (std::is_floating_point<T>::value) {
    if (!strcmp(name, "scale")) {
      // From 2^-128 a block's left-shift count reads as negative in its low byte, from
      // 2^-1024 a float64 multiplier is infinite, from 2^65 a 64-bit sum shifts out whole.
      switch (in_.below(8)) {
        case 0: return T(ldexp(1.0, -int(in_.below(1080))));
        case 1: return T(ldexp(1.0, int(in_.below(76))));
        case 2: {
          const T odd[] = {T(0), T(-1), T(-0.5), T(NAN), T(INFINITY), T(3), T(1e300),
                           T(1e-300), T(4.9e-324)};
          return odd[in_.below(sizeof odd / sizeof odd[0])];
        }
        default: return T(ldexp(1.0, int(in_.below(81)) - 40));
      }
    }
  }
  if constexpr (std::is_integral<T>::value) {
    if (!strcmp(name, "shift")) return in_.one_in(8) ? in_.take<T>() : T(in_.below(70));
    if (!strcmp(name, "rndMode")) return in_.one_in(6) ? in_.take<T>() : T(in_.below(4));
  }
  if constexpr (std::is_enum<T>::value) {
    // A C++ caller can pass only what the enumeration's range holds: 0 to 3 for the
    // rounding modes, 0 to 31 for the data types.
    return static_cast<T>(in_.below(std::is_same<T, ZIVKDataType>::value ? 32 : 4));
  } else {
    T v;
    fill_elements<T>(&v, 1);
    return v;
  }
}

void Call::finish(ZIVKStatus status) {
  digest_.add_value(status);
  for (const Recorded& r : arrays_) {
    const bool same = r.block->size() == 0 ||
                      memcmp(r.before.data(), r.block->data(), r.block->size()) == 0;
    if (r.kind == kSource && !same) fail(entry_, "wrote a source array");
    if (r.kind == kWritten && is_error(status) && !same)
      fail(entry_, "wrote an array and returned error " + std::to_string(status));
    if (r.kind == kWritten && r.block->size()) digest_.add(r.block->data(), r.block->size());
  }
}

// The element types the families use, for the templates above.
#define ZD_TYPES(X)                                                                        \
  X(uint8_t) X(int8_t) X(uint16_t) X(int16_t) X(uint32_t) X(int32_t) X(uint64_t) X(int64_t) \
  X(float) X(double) X(ZIVK8sc) X(ZIVK16sc) X(ZIVK32sc) X(ZIVK64sc) X(ZIVK32fc) X(ZIVK64fc)
#define ZD_INSTANTIATE(T)                                 \
  template void Call::fill_elements<T>(void*, size_t); \
  template T Call::scalar<T>(const char*);
ZD_TYPES(ZD_INSTANTIATE)
template void Call::fill_elements<ZIVKDecimal128>(void*, size_t);
template ZIVKRoundMode Call::scalar<ZIVKRoundMode>(const char*);
template ZIVKDataType Call::scalar<ZIVKDataType>(const char*);

// ---- Roles

namespace detail {

std::vector<Role> parse_roles(const char* text) {
  std::vector<Role> roles;
  std::string cur;
  auto flush = [&] {
    Role r;
    size_t k = cur.find_first_of("*+");
    r.name = cur.substr(0, k);
    if (k != std::string::npos) (cur[k] == '*' ? r.mul : r.room) = atoll(cur.c_str() + k + 1);
    roles.push_back(r);
    cur.clear();
  };
  for (const char* p = text; *p; ++p) {
    if (*p == ',') flush();
    else if (*p != ' ') cur += *p;
  }
  if (!cur.empty()) flush();
  return roles;
}

}  // namespace detail

// ---- Entries

const std::vector<Entry>& entries() {
  static const std::vector<Entry> all = [] {
    std::vector<Entry> v;
    add_memory(v);
    add_movement(v);
    add_logic(v);
    add_arithmetic(v);
    add_convert(v);
    add_statistics(v);
    add_sort(v);
    add_columnar(v);
    add_filters(v);
    add_generators(v);
    return v;
  }();
  return all;
}

uint64_t run_entry(const Entry& e, const uint8_t* data, size_t size) {
  Call c(e.name, data, size);
  e.run(c);
  return c.digest().value();
}

}  // namespace zd
