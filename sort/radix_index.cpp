// Radix index sorts: the stable permutation that sorts keys read at a byte stride,
// leaving the keys alone. 8u, 16u and 16s make one counting pass; the wider types copy
// their keys into the work buffer with their positions and make whole 8-bit digit
// passes; the float types first split the keys by their sign bit, so -0.0 and the
// sign-set NaNs sort with the negative numbers.
#include <string.h>

#include <type_traits>

#include "core/frame.h"
#include "core/handles.h"
#include "sort/digits.h"

namespace {

using namespace zivks;
using sort::Order;

// ---- Work buffer
// Counters for the narrow keys (256 or 65536 int32). For the wider ones: scratch keys,
// keys and positions, len entries each; the 64-bit buffer ends with len * 4 bytes the
// sort never touches.
int32_t handle_bytes(int32_t len, int32_t data_type) {
  switch (handles::element_size(data_type)) {
    case 1: return sort::CountTable<uint8_t>::kSize * 4;
    case 2: return sort::CountTable<uint16_t>::kSize * 4;
    case 4: return handles::times(len, 12);
    default: return handles::times(len, 24);
  }
}

template <class T>
struct Regions {
  T* scratch;
  T* keys;
  int32_t* pos;
  explicit Regions(uint8_t* policy, int32_t len)
      : scratch(reinterpret_cast<T*>(policy)),
        keys(scratch + len),
        pos(reinterpret_cast<int32_t*>(keys + len)) {}
};

// The key at byte offset `at` from src, wherever it lies.
template <class T>
inline T key_at(const uint8_t* src, int64_t at) {
  T k;
  memcpy(&k, src + at, sizeof k);
  return k;
}

template <class T>
inline ZIVKStatus check(const T* src, int32_t stride, const int32_t* idx, int32_t len, const uint8_t* policy) {
  if (any_null(src, idx, policy)) return ZIVK_STS_NULL_PTR_ERR;
  if (len < 1 || stride < static_cast<int32_t>(sizeof(T))) return ZIVK_STS_SIZE_ERR;
  return ZIVK_STS_NO_ERR;
}

// ---- One counting pass: 8u, 16u, 16s
// The backward walk starts at the byte offset (len - 1) * stride taken in 32 bits and
// widened with its sign, so these keys must lie within 2^31 - 1 bytes of src.
template <class T, Order kOrder>
ZIVKStatus counting(const T* src, int32_t stride, int32_t* idx, int32_t len, uint8_t* policy) {
  if (const ZIVKStatus st = check(src, stride, idx, len, policy)) return st;
  using Table = sort::CountTable<T>;
  const uint8_t* s = reinterpret_cast<const uint8_t*>(src);
  int32_t* counts = reinterpret_cast<int32_t*>(policy);
  sort::clear(counts, Table::kSize);
  if (sizeof(T) == 1 && stride == 1) {  // a plain byte array: the same counts
    sort::count(counts, Table::kSize, len, [s](int32_t i) { return Table::index(key_at<T>(s, i)); });
  } else {
    sort::count(counts, Table::kSize, len,
                [s, stride](int32_t i) { return Table::index(key_at<T>(s, int64_t{i} * stride)); });
  }
  sort::end_positions(counts, Table::kSize, kOrder);
  int64_t at = static_cast<int32_t>(static_cast<uint32_t>(len - 1) * static_cast<uint32_t>(stride));
  for (int32_t i = len - 1; i >= 0; --i, at -= stride) idx[--counts[Table::index(key_at<T>(s, at))]] = i;
  return ZIVK_STS_NO_ERR;
}

// ---- Digit passes with positions
// Sorts n keys with their positions by every 8-bit digit in `order`. Each pass but the
// last scatters keys into the scratch and positions into idx, then copies both back
// (positions through ZIVKS_Copy_32s); the last pass writes only the positions.
template <class U>
void passes(const Regions<U>& r, int32_t* idx, int32_t n, Order order) {
  if (n == 0) return;
  U* keys = r.keys;
  const int32_t* pos = r.pos;
  sort::DigitCounts<U> counts(keys, n);
  const int last = counts.kPasses - 1;
  for (int pass = 0; pass < last; ++pass) {
    sort::digit_pass(counts.of[pass], keys, n, pass, order, [keys, pos, idx, s = r.scratch](int32_t i, int32_t c) {
      s[c] = keys[i];
      idx[c] = pos[i];
    });
    sort::copy_back(keys, r.scratch, n);
    ZIVKS_Copy_32s(idx, r.pos, n);
  }
  sort::digit_pass(counts.of[last], keys, n, last, order, [pos, idx](int32_t i, int32_t c) { idx[c] = pos[i]; });
}

// The same regions seen from entry `first` on.
template <class U>
Regions<U> from(const Regions<U>& r, int32_t first) {
  Regions<U> o = r;
  o.scratch += first;
  o.keys += first;
  o.pos += first;
  return o;
}

// ---- Integer keys: 32u, 32s, 64u, 64s
// Signed keys sort as unsigned ones with the sign bit flipped in the copy; src is never
// written.
template <class T, Order kOrder>
ZIVKStatus radix(const T* src, int32_t stride, int32_t* idx, int32_t len, uint8_t* policy) {
  if (const ZIVKStatus st = check(src, stride, idx, len, policy)) return st;
  using U = std::make_unsigned_t<T>;
  constexpr U kBias = std::is_signed_v<T> ? sort::kSignBit<U> : 0;
  const Regions<U> r(policy, len);
  const uint8_t* s = reinterpret_cast<const uint8_t*>(src);
  for (int32_t i = 0; i < len; ++i) {
    r.keys[i] = static_cast<U>(key_at<U>(s, int64_t{i} * stride) + kBias);
    r.pos[i] = i;
  }
  passes(r, idx, len, kOrder);
  return ZIVK_STS_NO_ERR;
}

// ---- Float keys: 32f, 64f
// The gather puts the keys of the class that comes first (Ascend: sign set) at the
// front in input order and the others at the back from the end; reversing the back
// block restores its input order. The front block then sorts by falling bits and the
// back block by rising bits, which orders each class by value.
template <class F, Order kOrder>
ZIVKStatus float_keys(const F* src, int32_t stride, int32_t* idx, int32_t len, uint8_t* policy) {
  if (const ZIVKStatus st = check(src, stride, idx, len, policy)) return st;
  using U = std::conditional_t<sizeof(F) == 4, uint32_t, uint64_t>;
  const Regions<U> r(policy, len);
  const uint8_t* s = reinterpret_cast<const uint8_t*>(src);
  int32_t front = 0, back = len - 1;
  for (int32_t i = 0; i < len; ++i) {
    const U k = key_at<U>(s, int64_t{i} * stride);
    const bool sign_set = (k & sort::kSignBit<U>) != 0;
    const int32_t at = sign_set == (kOrder == Order::rising) ? front++ : back--;
    r.keys[at] = k;
    r.pos[at] = i;
  }
  const int32_t f = front;
  for (int32_t lo = f, hi = len - 1; lo < hi; ++lo, --hi) {
    std::swap(r.keys[lo], r.keys[hi]);
    std::swap(r.pos[lo], r.pos[hi]);
  }
  passes(r, idx, f, Order::falling);
  passes(from(r, f), idx + f, len - f, Order::rising);
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_SortRadixIndexInit(int32_t len, ZIVKDataType dataType, uint8_t** policy) {
  return sort::init_work_buffer(len, dataType, policy, handle_bytes);
}

ZIVKS_EXPORT ZIVKStatus ZIVKS_SortRadixIndexRelease(uint8_t* policy) { return handles::release(policy); }

// Each row: the Ascend and Descend names, the body, the key type.
#define ZIVKS_SORT_RADIX_INDEX(ascend, descend, body, type)                                             \
  ZIVKS_EXPORT ZIVKStatus ascend(const type* src, int32_t srcStride, int32_t* dstIdx, int32_t len,      \
                                 uint8_t* policy) {                                                     \
    return body<type, Order::rising>(src, srcStride, dstIdx, len, policy);                              \
  }                                                                                                     \
  ZIVKS_EXPORT ZIVKStatus descend(const type* src, int32_t srcStride, int32_t* dstIdx, int32_t len,     \
                                  uint8_t* policy) {                                                    \
    return body<type, Order::falling>(src, srcStride, dstIdx, len, policy);                             \
  }

ZIVKS_SORT_RADIX_INDEX(ZIVKS_SortRadixIndexAscend_8u, ZIVKS_SortRadixIndexDescend_8u, counting, uint8_t)
ZIVKS_SORT_RADIX_INDEX(ZIVKS_SortRadixIndexAscend_16u, ZIVKS_SortRadixIndexDescend_16u, counting, uint16_t)
ZIVKS_SORT_RADIX_INDEX(ZIVKS_SortRadixIndexAscend_16s, ZIVKS_SortRadixIndexDescend_16s, counting, int16_t)
ZIVKS_SORT_RADIX_INDEX(ZIVKS_SortRadixIndexAscend_32u, ZIVKS_SortRadixIndexDescend_32u, radix, uint32_t)
ZIVKS_SORT_RADIX_INDEX(ZIVKS_SortRadixIndexAscend_32s, ZIVKS_SortRadixIndexDescend_32s, radix, int32_t)
ZIVKS_SORT_RADIX_INDEX(ZIVKS_SortRadixIndexAscend_32f, ZIVKS_SortRadixIndexDescend_32f, float_keys, float)
ZIVKS_SORT_RADIX_INDEX(ZIVKS_SortRadixIndexAscend_64u, ZIVKS_SortRadixIndexDescend_64u, radix, uint64_t)
ZIVKS_SORT_RADIX_INDEX(ZIVKS_SortRadixIndexAscend_64s, ZIVKS_SortRadixIndexDescend_64s, radix, int64_t)
ZIVKS_SORT_RADIX_INDEX(ZIVKS_SortRadixIndexAscend_64f, ZIVKS_SortRadixIndexDescend_64f, float_keys, double)
