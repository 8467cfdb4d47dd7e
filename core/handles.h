// Handles and work buffers: the caller-held blocks of the sort, top-k, median and
// random-generator families, and the short-lived buffers a few calls need.
//
// A handle is a plain block of bytes with no header. Its size is computed in the
// library's 32-bit arithmetic: a byte count that does not fit a positive int32 becomes
// kNoSize, which ZIVKS_Malloc_8u answers with null, so an oversized request surfaces as
// ZIVK_STS_MALLOC_ERR and never as a wrapped, too-small block. Handles come from
// ZIVKS_Malloc_8u (the random-generator records from ZIVK_Malloc) and go back through
// ZIVKS_Free, by their exported names.
#pragma once

#include <stdint.h>

#include <initializer_list>

#include "zivks.h"

namespace zivks::handles {

// ---- Ordered checks

// One check of an exported function: the status it gives when `failed`.
struct Check {
  bool failed;
  ZIVKStatus status;
};

// Returns the status of the first failed check in the order written, or
// ZIVK_STS_NO_ERR. Every condition is evaluated before the call, so none may depend on
// an earlier one passing (no dereference of a pointer checked for null in the list).
inline ZIVKStatus first_failure(std::initializer_list<Check> checks) {
  for (const Check& c : checks)
    if (c.failed) return c.status;
  return ZIVK_STS_NO_ERR;
}

// ---- Byte counts

// The size that does not fit: ZIVKS_Malloc_8u returns null for it without a call.
inline constexpr int32_t kNoSize = -1;

// Returns n * per, or kNoSize when n is kNoSize or the product does not fit a positive
// int32 (per is a positive constant of the family).
constexpr int32_t times(int32_t n, int32_t per) {
  if (n == kNoSize || n > INT32_MAX / per) return kNoSize;
  return n * per;
}

// Returns a + b, or kNoSize when either is kNoSize or the sum does not fit.
constexpr int32_t plus(int32_t a, int32_t b) {
  if (a == kNoSize || b == kNoSize || a > INT32_MAX - b) return kNoSize;
  return a + b;
}

// Returns n rounded up to a multiple of the power of two `to`, or kNoSize when that
// does not fit.
constexpr int32_t round_up(int32_t n, int32_t to) {
  if (n == kNoSize || n > INT32_MAX - (to - 1)) return kNoSize;
  return (n + (to - 1)) & ~(to - 1);
}

// ---- Element types by ZIVKDataType

template <class T>
struct type_tag {
  using type = T;
};

// A set of ZIVKDataType values: the ones a family's Init accepts.
class DataTypes {
 public:
  constexpr DataTypes(std::initializer_list<ZIVKDataType> types) : bits_(0) {
    for (ZIVKDataType t : types) bits_ |= uint32_t{1} << static_cast<int32_t>(t);
  }
  // Whether dt is one of the set; any other int32 value is not, negatives included.
  constexpr bool has(int32_t dt) const {
    return dt >= 0 && dt < 32 && ((bits_ >> dt) & 1u) != 0;
  }

 private:
  uint32_t bits_;
};

// Every element type a ZIVKDataType names.
inline constexpr DataTypes kAllDataTypes{ZIVK_DT_8U,  ZIVK_DT_16U, ZIVK_DT_16S,
                                         ZIVK_DT_32U, ZIVK_DT_32S, ZIVK_DT_32F,
                                         ZIVK_DT_64U, ZIVK_DT_64S, ZIVK_DT_64F};

// Calls fn(type_tag<T>{}) with the element type T that dt names and returns its result;
// dt must be one of kAllDataTypes.
template <class Fn>
inline decltype(auto) with_element_type(int32_t dt, Fn&& fn) {
  switch (dt) {
    case ZIVK_DT_8U: return fn(type_tag<uint8_t>{});
    case ZIVK_DT_16U: return fn(type_tag<uint16_t>{});
    case ZIVK_DT_16S: return fn(type_tag<int16_t>{});
    case ZIVK_DT_32U: return fn(type_tag<uint32_t>{});
    case ZIVK_DT_32S: return fn(type_tag<int32_t>{});
    case ZIVK_DT_32F: return fn(type_tag<float>{});
    case ZIVK_DT_64U: return fn(type_tag<uint64_t>{});
    case ZIVK_DT_64S: return fn(type_tag<int64_t>{});
    default: return fn(type_tag<double>{});
  }
}

// Returns the size in bytes of the element dt names (1, 2, 4 or 8); dt is one of
// kAllDataTypes.
inline int32_t element_size(int32_t dt) {
  return with_element_type(dt, [](auto t) { return static_cast<int32_t>(sizeof(typename decltype(t)::type)); });
}

// ---- Allocation and release

// Asks ZIVKS_Malloc_8u for a handle of `bytes` (kNoSize included) and stores it in
// *out. Returns ZIVK_STS_MALLOC_ERR on a null answer, leaving *out as it was.
template <class H>
inline ZIVKStatus allocate(int32_t bytes, H** out) {
  void* p = ZIVKS_Malloc_8u(bytes);
  if (p == nullptr) return ZIVK_STS_MALLOC_ERR;
  *out = static_cast<H*>(p);
  return ZIVK_STS_NO_ERR;
}

// Asks ZIVK_Malloc for one record R and stores it in *out. Returns ZIVK_STS_MALLOC_ERR
// on a null answer, leaving *out as it was. The record is not initialised.
template <class R>
inline ZIVKStatus allocate_record(R** out) {
  void* p = ZIVK_Malloc(static_cast<int32_t>(sizeof(R)));
  if (p == nullptr) return ZIVK_STS_MALLOC_ERR;
  *out = static_cast<R*>(p);
  return ZIVK_STS_NO_ERR;
}

// Hands p to ZIVKS_Free without a test of its own (null included) and returns
// ZIVK_STS_NO_ERR: what every Release does.
inline ZIVKStatus release(void* p) {
  ZIVKS_Free(p);
  return ZIVK_STS_NO_ERR;
}

// A buffer that lives for one call: `len` elements from one of the typed allocators
// (ZIVKS_Malloc_32s, ...), freed through ZIVKS_Free when the call returns. Null (test
// with ok()) when the allocator refused.
template <class T>
class WorkBuffer {
 public:
  WorkBuffer(T* (*allocator)(int32_t), int32_t len) : p_(allocator(len)) {}
  ~WorkBuffer() {
    if (p_ != nullptr) ZIVKS_Free(p_);
  }
  WorkBuffer(const WorkBuffer&) = delete;
  WorkBuffer& operator=(const WorkBuffer&) = delete;

  bool ok() const { return p_ != nullptr; }
  T* get() const { return p_; }

 private:
  T* p_;
};

}  // namespace zivks::handles
