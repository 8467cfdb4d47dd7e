// The exercise driver: every exported function called with arguments and array contents
// read from a string of bytes. Three programs share it: the fuzz target (bytes from the
// fuzzer, under AddressSanitizer and UndefinedBehaviorSanitizer), the thread test (the
// same calls from several threads, compared with one thread) and the level digest (one
// hash of every function's results, compared between builds).
//
// An entry is one exported function and the code that calls it. Most entries are a table
// line naming the role of each parameter (`ZD_CALL(ZIVKS_AddC_32s_S, src, val, dst, len,
// scale)`); families with handles, strides or sizes of their own have a function that
// builds the call by hand. Every array lives in a heap block of exactly the bytes the
// contract lets the function touch, so a read or write past it is a sanitizer finding,
// and the driver checks the two promises every function makes: a source is never
// written, and a call that fails has written nothing.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "zivks.h"

namespace zd {

// ---- Input
// Reads values from the bytes in order. Past their end, values come from a generator
// seeded by the bytes, so long arrays still vary and every input is replayable.
class Input {
 public:
  Input(const uint8_t* data, size_t size);

  void fill(void* dst, size_t bytes);
  template <class T>
  T take() {
    T v;
    fill(&v, sizeof v);
    return v;
  }
  uint8_t byte() { return take<uint8_t>(); }
  // A value in [0, n), n > 0.
  uint32_t below(uint32_t n) { return take<uint16_t>() % n; }
  // True about once in n.
  bool one_in(uint32_t n) { return below(n) == 0; }

 private:
  const uint8_t* data_;
  size_t size_, pos_ = 0;
  uint64_t state_;
};

// ---- Digest
// A 64-bit hash of the statuses and written bytes of a run, in the order they come.
class Digest {
 public:
  void add(const void* p, size_t bytes);
  template <class T>
  void add_value(const T& v) { add(&v, sizeof v); }
  uint64_t value() const { return h_; }

 private:
  uint64_t h_ = 0x9E3779B97F4A7C15ull;
};

// ---- Block
// One heap block of exactly `bytes` bytes at a start chosen by the input (0 to 63 bytes
// past a 64-byte boundary, in steps of the element's alignment). The slack before the
// start is poisoned when AddressSanitizer is on.
class Block {
 public:
  Block(size_t bytes, size_t offset);
  ~Block();
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;
  uint8_t* data() const { return data_; }
  size_t size() const { return bytes_; }

 private:
  uint8_t* raw_;
  uint8_t* data_;
  size_t bytes_, offset_;
};

// What a failed check of the driver reports: the entry, and what went wrong. The fuzz
// target aborts with it; the other programs print it and fail.
[[noreturn]] void fail(const std::string& entry, const std::string& what);

// A status after which the function must have written nothing (307 is a warning).
inline bool is_error(ZIVKStatus s) { return s != ZIVK_STS_NO_ERR && s != ZIVK_STS_EVEN_MASK_WARN; }

// How array contents are drawn, per array.
enum class Fill { kRaw, kSmall, kSpecial };

// ---- Call
// One call of one function: the input it reads, the arrays it owns, the digest of the
// results. Arrays are recorded so that after the call the driver can check that sources
// are as they were and, after an error status, that nothing was written.
class Call {
 public:
  Call(const char* entry, const uint8_t* data, size_t size) : entry_(entry), in_(data, size) {}

  Input& in() { return in_; }
  const char* entry() const { return entry_; }
  Digest& digest() { return digest_; }

  // A length: mostly short and around vector-block boundaries, sometimes longer,
  // sometimes zero or negative.
  int32_t length();

  // An array of n elements of T (n < 0 counts as 0), contents drawn from the input.
  // Kinds: a source (checked unchanged after the call), a destination or in-place array
  // (digested after the call, checked unchanged after an error). `nullable` lets the
  // input make it a null pointer now and then.
  enum Kind { kSource, kWritten };
  template <class T>
  T* array(int64_t n, Kind kind, bool nullable = true) {
    static_assert(std::is_trivially_copyable<T>::value, "arrays hold plain data");
    if (nullable && in_.one_in(40)) return nullptr;
    const size_t count = n > 0 ? size_t(n) : 0;
    const size_t align = alignof(T);
    auto& b = blocks_.emplace_back(new Block(count * sizeof(T), align * in_.below(64 / align)));
    fill_elements<T>(b->data(), count);
    arrays_.push_back({b.get(), kind, std::vector<uint8_t>(b->data(), b->data() + b->size())});
    return reinterpret_cast<T*>(b->data());
  }

  // A scalar argument. Named ones get values of their kind: `scale` a power of two over
  // the whole range of float64 (now and then zero, negative, not finite or not a power
  // of two), `rndMode` mostly a mode (0 to 2) or the first value past them, `shift` a
  // count below, at and above every element width; selectors of enumerated types a
  // value their type can hold (any 32-bit value only a C caller can pass); every other
  // name and type is drawn like an array element (complex records part by part).
  template <class T>
  T scalar(const char* name);

  // Records the status and the written arrays, and checks the two promises (see the
  // banner); call once, after the function returned.
  void finish(ZIVKStatus status);

  // Adds an extra result to the digest (a returned value, a canonical form of a result
  // the contract leaves partly open).
  template <class T>
  void result(const T& v) { digest_.add_value(v); }

  // Elements drawn the way array() draws them, for entries that build their own data.
  template <class T>
  void fill_elements(void* dst, size_t count);

 private:
  struct Recorded {
    Block* block;
    Kind kind;
    std::vector<uint8_t> before;
  };
  const char* entry_;
  Input in_;
  Digest digest_;
  std::vector<std::unique_ptr<Block>> blocks_;
  std::vector<Recorded> arrays_;
};

// ---- Entries
// Flags of an entry.
enum : unsigned {
  // Uses the process-wide generator of the C library (rand, srand, drand48, srand48):
  // not called from several threads at once.
  kSharedGenerator = 1,
};

struct Entry {
  const char* name;
  void (*run)(Call&);
  unsigned flags;
};

// One of the values of a list, chosen by the input.
template <class T, size_t N>
T pick(Call& c, const T (&list)[N]) {
  return list[c.in().below(N)];
}

// Every entry, in a fixed order (by family, then as listed).
const std::vector<Entry>& entries();

// Runs one entry on one input and returns its digest.
uint64_t run_entry(const Entry& e, const uint8_t* data, size_t size);

// ---- Table lines
// ZD_CALL(fn, roles...) makes an entry from the roles of fn's parameters, in order:
//   src, src1, src2      a source array of len elements (any pointer to const)
//   dst, srcDst          a written array of len elements
//   out                  a written single element (pMax, pIndx, ...)
//   len                  the length
//   any other name       a scalar (see Call::scalar)
// A role may carry a multiplier of the length, `src*3` (three bytes a packed sample), or
// extra room the contract allows past the length, `dst+2`.
namespace detail {

struct Role {
  std::string name;
  int64_t mul = 1, room = 0;
};
std::vector<Role> parse_roles(const char* text);

template <class P>
P make_arg(Call& c, const Role& r, int32_t len) {
  if constexpr (std::is_pointer<P>::value) {
    using T = std::remove_cv_t<std::remove_pointer_t<P>>;
    const bool is_const = std::is_const<std::remove_pointer_t<P>>::value;
    if (r.name == "out") return c.array<T>(1, Call::kWritten);
    const int64_t n = int64_t(len > 0 ? len : 0) * r.mul + r.room;
    return c.array<T>(n, is_const ? Call::kSource : Call::kWritten);
  } else if constexpr (std::is_integral<P>::value) {
    return r.name == "len" ? P(len) : c.scalar<P>(r.name.c_str());
  } else {
    return c.scalar<P>(r.name.c_str());
  }
}

template <class... P, size_t... I>
void call_with_roles(Call& c, ZIVKStatus (*fn)(P...), const std::vector<Role>& roles,
                     std::index_sequence<I...>) {
  const int32_t len = c.length();
  // Arguments are made left to right: the braces fix the order of evaluation.
  std::tuple<P...> args{make_arg<P>(c, roles[I], len)...};
  c.finish(std::apply(fn, args));
}

template <class... P>
void call_with_roles(Call& c, ZIVKStatus (*fn)(P...), const char* roles) {
  const std::vector<Role> parsed = parse_roles(roles);
  if (parsed.size() != sizeof...(P)) fail(c.entry(), "the table line names the wrong number of roles");
  call_with_roles(c, fn, parsed, std::index_sequence_for<P...>{});
}

}  // namespace detail

#define ZD_CALL(fn, ...) \
  zd::Entry { #fn, [](zd::Call& c) { zd::detail::call_with_roles(c, &fn, #__VA_ARGS__); }, 0 }

// The families' lists, each in its own file.
void add_memory(std::vector<Entry>& out);
void add_movement(std::vector<Entry>& out);
void add_logic(std::vector<Entry>& out);
void add_arithmetic(std::vector<Entry>& out);
void add_convert(std::vector<Entry>& out);
void add_statistics(std::vector<Entry>& out);
void add_sort(std::vector<Entry>& out);
void add_columnar(std::vector<Entry>& out);
void add_filters(std::vector<Entry>& out);
void add_generators(std::vector<Entry>& out);

}  // namespace zd
