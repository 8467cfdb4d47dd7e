// Sorts and selection: comparison sorts, index sorts, radix sorts and radix index sorts
// with their work buffers, TopK with its buffer and methods.
//
// Most arrays here are made by Own rather than Call::array: results that the contract
// leaves partly open (equal keys from a randomised sort or qsort, ties around place k)
// are digested in a canonical form only; TopK's outputs are preset by its Init before
// the call; strided keys span a byte count that need not be a whole number of
// elements; and a float radix sort reads one word beside its array.
#include <string.h>

#include <algorithm>
#include <limits>

#include "drive.h"

namespace zd {

namespace {

constexpr bool kUp = false, kDown = true;

template <class T>
bool is_nan(T v) {
  if constexpr (std::is_floating_point<T>::value) return v != v;
  else return false;
}

// The unsigned integer of T's size, and T's bits in it.
template <class T>
using BitsOf = std::conditional_t<sizeof(T) == 1, uint8_t,
               std::conditional_t<sizeof(T) == 2, uint16_t, std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>>>;
template <class T>
BitsOf<T> bits(T v) {
  BitsOf<T> b;
  memcpy(&b, &v, sizeof b);
  return b;
}
template <class T>
constexpr BitsOf<T> kSign = BitsOf<T>(BitsOf<T>(1) << (8 * sizeof(T) - 1));

// A key whose unsigned order is the order the radix sorts promise: integers by value;
// floats in the total order (sign-set NaNs by falling payload, -inf, negative numbers,
// -0, +0, positive numbers, +inf, sign-clear NaNs by rising payload), or with
// `signed_bits` their bits read as a signed integer.
template <class T>
BitsOf<T> order_key(T v, bool signed_bits = false) {
  const BitsOf<T> b = bits(v);
  if constexpr (std::is_floating_point<T>::value) {
    if (signed_bits) return b ^ kSign<T>;
    return b & kSign<T> ? BitsOf<T>(~b) : BitsOf<T>(b | kSign<T>);
  } else if constexpr (std::is_signed<T>::value) {
    return b ^ kSign<T>;
  } else {
    return b;
  }
}

// The element type a function's first parameter points to.
template <class F>
struct Pointee;
template <class P, class... Rest>
struct Pointee<ZIVKStatus (*)(P, Rest...)> {
  using type = std::remove_cv_t<std::remove_pointer_t<P>>;
};
template <auto F>
using KeyOf = typename Pointee<decltype(F)>::type;

// ---- Own
// Arrays the entry checks and digests itself. Each lives in a block of exactly the
// bytes asked for, at an offset drawn as Call::array draws it; its elements are drawn
// as Call::array draws them. check() keeps the promises Call::finish keeps: a source
// unchanged, nothing written after an error (compared with the last snapshot()).
class Own {
 public:
  explicit Own(Call& c) : c_(c) {}

  template <class T>
  T* bytes(size_t n, Call::Kind kind, bool nullable = true) {
    if (nullable && c_.in().one_in(40)) return nullptr;
    Held& h = held_.emplace_back();
    h.block.reset(new Block(n, alignof(T) * c_.in().below(64 / alignof(T))));
    h.kind = kind;
    uint8_t* p = h.block->data();
    const size_t whole = n / sizeof(T);
    c_.fill_elements<T>(p, whole);
    c_.in().fill(p + whole * sizeof(T), n - whole * sizeof(T));
    h.before.assign(p, p + n);
    return reinterpret_cast<T*>(p);
  }
  template <class T>
  T* elements(int64_t n, Call::Kind kind, bool nullable = true) {
    return bytes<T>(size_t(n > 0 ? n : 0) * sizeof(T), kind, nullable);
  }

  void snapshot() {
    for (Held& h : held_) h.before.assign(h.block->data(), h.block->data() + h.block->size());
  }
  void check(ZIVKStatus st) const {
    for (const Held& h : held_) {
      const bool same = h.before == std::vector<uint8_t>(h.block->data(), h.block->data() + h.block->size());
      if (h.kind == Call::kSource && !same) fail(c_.entry(), "wrote a source array");
      if (h.kind == Call::kWritten && st != ZIVK_STS_NO_ERR && !same)
        fail(c_.entry(), "wrote an array and returned error " + std::to_string(st));
    }
  }

 private:
  struct Held {
    std::unique_ptr<Block> block;
    Call::Kind kind;
    std::vector<uint8_t> before;
  };
  Call& c_;
  std::vector<Held> held_;
};

// ---- Checks shared by the sorts

// The result holds the same elements, bit for bit, as the input.
template <class T>
void expect_permutation(Call& c, const std::vector<T>& in, const T* out) {
  std::vector<BitsOf<T>> a(in.size()), b(in.size());
  for (size_t i = 0; i < in.size(); ++i) a[i] = bits(in[i]), b[i] = bits(out[i]);
  std::sort(a.begin(), a.end());
  std::sort(b.begin(), b.end());
  if (a != b) fail(c.entry(), "the sorted array does not hold the input's elements");
}

// idx is a permutation of 0 .. n - 1.
void expect_positions(Call& c, const int32_t* idx, int32_t n) {
  std::vector<bool> seen(size_t(n > 0 ? n : 0));
  for (int32_t p = 0; p < n; ++p) {
    if (idx[p] < 0 || idx[p] >= n || seen[idx[p]]) fail(c.entry(), "the positions are no permutation");
    seen[idx[p]] = true;
  }
}

// Keys sorted by value (-0 and +0 equal) give the same canonical form whatever order
// equal keys came in: within each run of equal keys, key bits and positions (if any)
// are sorted. Digested with the check that the keys are in order. Without NaN only.
template <class T>
void digest_by_value(Call& c, const T* keys, const int32_t* idx, int32_t n, bool down) {
  std::vector<BitsOf<T>> k(size_t(n > 0 ? n : 0));
  std::vector<int32_t> pos(idx ? idx : nullptr, idx ? idx + k.size() : nullptr);
  for (int32_t p = 0; p < n; ++p) k[p] = bits(keys[p]);
  for (int32_t lo = 0, hi; lo < n; lo = hi) {
    for (hi = lo + 1; hi < n && keys[hi] == keys[lo]; ++hi) {}
    if (hi < n && (down ? keys[lo] < keys[hi] : keys[hi] < keys[lo])) fail(c.entry(), "keys out of order");
    std::sort(k.begin() + lo, k.begin() + hi);
    if (idx) std::sort(pos.begin() + lo, pos.begin() + hi);
  }
  c.digest().add(k.data(), k.size() * sizeof(BitsOf<T>));
  c.digest().add(pos.data(), pos.size() * sizeof(int32_t));
}

template <class T>
bool holds_nan(const T* a, int32_t n) {
  for (int32_t i = 0; i < n; ++i)
    if (is_nan(a[i])) return true;
  return false;
}

// ---- Comparison sorts
// Ties between -0 and +0, and everything about an array with a NaN, are left to qsort:
// such arrays are digested by value only (with a NaN: only checked as a permutation).
template <auto F, bool kDir>
void comparison_sort(Call& c) {
  using T = KeyOf<F>;
  const int32_t len = c.length();
  Own own(c);
  T* a = own.elements<T>(len, Call::kWritten);
  const std::vector<T> in(a, a ? a + std::max(len, 0) : a);
  const ZIVKStatus st = F(a, len);
  c.finish(st);
  own.check(st);
  if (st != ZIVK_STS_NO_ERR) return;
  expect_permutation(c, in, a);
  if (!holds_nan(a, len)) digest_by_value(c, a, nullptr, len, kDir);
}

// ---- Index sorts
// Every key stays with its position; equal keys come in an order drawn from rand().
template <auto F, bool kDir>
void index_sort(Call& c) {
  using T = KeyOf<F>;
  const int32_t len = c.length();
  Own own(c);
  T* a = own.elements<T>(len, Call::kWritten);
  int32_t* idx = own.elements<int32_t>(len, Call::kWritten);
  const std::vector<T> in(a, a ? a + std::max(len, 0) : a);
  const ZIVKStatus st = F(a, idx, len);
  c.finish(st);
  own.check(st);
  if (st != ZIVK_STS_NO_ERR) return;
  expect_positions(c, idx, len);
  for (int32_t p = 0; p < len; ++p)
    if (bits(a[p]) != bits(in[idx[p]])) fail(c.entry(), "a key parted from its position");
  if (!holds_nan(a, len)) digest_by_value(c, a, idx, len, kDir);
}

// ---- Work buffers of the radix sorts
template <class T>
ZIVKDataType same_size_type(Input& in) {
  static const ZIVKDataType by_size[4][3] = {{ZIVK_DT_8U, ZIVK_DT_8U, ZIVK_DT_8U},
                                             {ZIVK_DT_16U, ZIVK_DT_16S, ZIVK_DT_16U},
                                             {ZIVK_DT_32U, ZIVK_DT_32S, ZIVK_DT_32F},
                                             {ZIVK_DT_64U, ZIVK_DT_64S, ZIVK_DT_64F}};
  const int row = sizeof(T) == 1 ? 0 : sizeof(T) == 2 ? 1 : sizeof(T) == 4 ? 2 : 3;
  return by_size[row][in.below(3)];
}

// A selector value: one of the nine types, or (`valid` false) one of the values between
// and around them that the enumeration can hold (0 to 31 for a C++ caller).
ZIVKDataType any_type(Input& in, bool valid = true) {
  static const int32_t values[] = {ZIVK_DT_8U,  ZIVK_DT_16U, ZIVK_DT_16S, ZIVK_DT_32U, ZIVK_DT_32S,
                                   ZIVK_DT_32F, ZIVK_DT_64U, ZIVK_DT_64S, ZIVK_DT_64F, 0,
                                   2,           3,           20,          21,          31};
  const uint32_t first_bad = 9, all = sizeof values / sizeof values[0];
  const int32_t v = valid ? values[in.below(first_bad)] : values[first_bad + in.below(all - first_bad)];
  ZIVKDataType t;
  memcpy(&t, &v, sizeof t);
  return t;
}

using SortInit = ZIVKStatus (*)(int32_t, ZIVKDataType, uint8_t**);

// A buffer from `init` for the sorts of T on len elements, made as the contract asks (a
// type of T's size, a len at least the call's), or now and then refused by Init's own
// checks: the sort then sees a null buffer. Init's status goes to the digest.
template <class T>
uint8_t* sort_buffer(Call& c, SortInit init, int32_t len) {
  Input& in = c.in();
  int32_t n = len > 0 ? len + (in.one_in(4) ? int32_t(in.below(100)) : 0) : 1 + int32_t(in.below(80));
  ZIVKDataType type = same_size_type<T>(in);
  const uint32_t odd = in.below(32);
  if (odd == 0) n = -int32_t(in.below(2));
  if (odd == 1) type = any_type(in, false);
  uint8_t* policy = nullptr;
  c.result(init(n, type, &policy));
  return policy;
}

// The Init entries: any len (now and then one whose byte count does not fit an int32,
// refused without allocating), any selector, a null place for the buffer now and then.
// The buffer's address is no result: only whether it was written is digested.
template <SortInit F, ZIVKStatus (*Release)(uint8_t*)>
void sort_init(Call& c) {
  Input& in = c.in();
  const int32_t too_long[] = {0x20000000, std::numeric_limits<int32_t>::max()};
  const int32_t len = in.one_in(8) ? too_long[in.below(2)] : c.length();
  const ZIVKDataType type = any_type(in, !in.one_in(8));
  uint8_t* const unwritten = reinterpret_cast<uint8_t*>(&c);
  uint8_t* policy = unwritten;
  const ZIVKStatus st = F(len, type, in.one_in(40) ? nullptr : &policy);
  c.finish(st);
  if (st != ZIVK_STS_NO_ERR && policy != unwritten) fail(c.entry(), "wrote the buffer and returned an error");
  if (st == ZIVK_STS_NO_ERR && (policy == unwritten || !policy)) fail(c.entry(), "no buffer stored");
  c.result(policy != unwritten);
  if (st == ZIVK_STS_NO_ERR) c.result(Release(policy));
}

// The Release entries: a buffer from Init, or now and then none (null).
template <ZIVKStatus (*F)(uint8_t*), SortInit Init>
void sort_release(Call& c) {
  uint8_t* policy = nullptr;
  if (!c.in().one_in(8)) {
    const int32_t len = 1 + int32_t(c.in().below(100));  // before the type: arguments are unordered
    c.result(Init(len, any_type(c.in()), &policy));
  }
  c.finish(F(policy));
}

// ---- Radix sorts
// The order is promised to the bit (see order_key); a float array with -0.0 keeps the
// order of its bits read as signed integers. A float sort may read the word beside the
// array (after it rising, before it falling): that word is given, and is no -inf or
// sign-set NaN, which the sort would take into the array.
template <auto F, bool kDir>
void radix_sort(Call& c) {
  using T = KeyOf<F>;
  constexpr bool kFloat = std::is_floating_point<T>::value;
  const int32_t len = c.length();
  const int32_t n = std::max(len, 0);
  uint8_t* policy = sort_buffer<T>(c, ZIVKS_SortRadixInit, len);
  Own own(c);
  T* block = own.elements<T>(n + kFloat, Call::kWritten);
  T* a = block;
  BitsOf<T> beside = 0;
  if (kFloat && block) {
    T* word = kDir == kDown ? block : block + n;
    a = kDir == kDown ? block + 1 : block;
    beside = BitsOf<T>(bits(*word) & ~kSign<T>);
    memcpy(word, &beside, sizeof beside);
    own.snapshot();
  }
  const std::vector<T> in(a, a ? a + n : a);
  const ZIVKStatus st = F(a, len, policy);
  c.finish(st);
  own.check(st);
  if (policy) c.result(ZIVKS_SortRadixRelease(policy));
  if (kFloat && block && bits(kDir == kDown ? block[0] : block[n]) != beside)
    fail(c.entry(), "wrote the word beside the array");
  if (st != ZIVK_STS_NO_ERR) return;
  c.digest().add(a, n * sizeof(T));
  expect_permutation(c, in, a);
  bool negative_zero = false;
  for (int32_t i = 0; i < n; ++i) negative_zero |= kFloat && bits(a[i]) == kSign<T>;
  for (int32_t i = 1; i < n; ++i) {
    const auto prev = order_key(a[i - 1], negative_zero), cur = order_key(a[i], negative_zero);
    if (kDir == kDown ? prev < cur : cur < prev) fail(c.entry(), "out of order at " + std::to_string(i));
  }
}

// ---- Radix index sorts
// Keys at a byte stride: mostly the key's size, often records with any stride above
// it, now and then one the sort refuses. The keys take exactly (len - 1) * stride plus
// one key of bytes. The permutation is stable and promised to the bit.
template <auto F, bool kDir>
void radix_index_sort(Call& c) {
  using T = KeyOf<F>;
  Input& in = c.in();
  const int32_t len = c.length();
  const int32_t size = int32_t(sizeof(T));
  const uint32_t s = in.below(16);
  const int32_t stride = s < 8 ? size : s < 14 ? size + int32_t(in.below(3 * size + 5)) : int32_t(in.below(size + 1)) - 1;
  uint8_t* policy = sort_buffer<T>(c, ZIVKS_SortRadixIndexInit, len);
  Own own(c);
  const size_t span = len < 1 ? 0 : stride < size ? size_t(len) * size : size_t(len - 1) * stride + size;
  const T* src = own.bytes<T>(span, Call::kSource);
  int32_t* idx = c.array<int32_t>(len, Call::kWritten);
  const ZIVKStatus st = F(src, stride, idx, len, policy);
  c.finish(st);
  own.check(st);
  if (policy) c.result(ZIVKS_SortRadixIndexRelease(policy));
  if (st != ZIVK_STS_NO_ERR) return;
  expect_positions(c, idx, len);
  const auto key = [&](int32_t i) {
    T k;
    memcpy(&k, reinterpret_cast<const uint8_t*>(src) + int64_t(i) * stride, sizeof k);
    return order_key(k);
  };
  for (int32_t p = 1; p < len; ++p) {
    const auto prev = key(idx[p - 1]), cur = key(idx[p]);
    if ((kDir == kDown ? prev < cur : cur < prev) || (prev == cur && idx[p] < idx[p - 1]))
      fail(c.entry(), "out of order or unstable at " + std::to_string(p));
  }
}

// ---- TopK
template <class T>
using TopKInit = ZIVKStatus (*)(int32_t, T*, int32_t*, int32_t, int32_t, uint8_t**);
template <class T>
using TopKCall = ZIVKStatus (*)(const T*, int32_t, int32_t, int32_t, T*, int32_t*, int32_t, int32_t, uint8_t*);

// The method the automatic rule picks.
int32_t settled(int32_t len, int32_t k, int32_t method) {
  if (method != 0) return method;
  return std::min(len, k) > 32 && len >= 2049 && len <= 0x7FFFFFF ? 2 : 1;
}

// k mostly up to a few dozen, sometimes about len or beyond it.
int32_t draw_k(Input& in, int32_t len) {
  const uint32_t s = in.below(8);
  if (s < 5) return 1 + int32_t(in.below(40));
  if (s < 7) return std::max(len, 11) - 10 + int32_t(in.below(20));
  return 1 + int32_t(in.below(300));
}

int32_t draw_method(Input& in) {
  const int32_t odd[] = {3, -1, std::numeric_limits<int32_t>::min()};
  return in.one_in(12) ? odd[in.below(3)] : int32_t(in.below(3));
}

// Init on its own: k entries each for the presets (digested), any len (now and then
// one whose buffer would be too large, refused before allocating), k and method.
template <class T, TopKInit<T> F>
void topk_init(Call& c) {
  Input& in = c.in();
  int32_t len = c.length();
  int32_t k = in.one_in(12) ? -int32_t(in.below(2)) : draw_k(in, len);
  int32_t method = draw_method(in);
  if (in.one_in(8)) {
    // Every one is above the limit of whichever method settles; the last only above
    // that of radix selection, which it is made to use.
    const int32_t too_long[] = {0x0FFFFFFE, std::numeric_limits<int32_t>::max(), 0x07FFFFBF};
    const uint32_t which = in.below(3);
    len = too_long[which];
    if (which == 2) method = 2;
  }
  T* val = c.array<T>(k, Call::kWritten);
  int32_t* idx = c.array<int32_t>(k, Call::kWritten);
  uint8_t* const unwritten = reinterpret_cast<uint8_t*>(&c);
  uint8_t* policy = unwritten;
  const ZIVKStatus st = F(len, val, idx, k, method, in.one_in(40) ? nullptr : &policy);
  c.finish(st);
  if (st != ZIVK_STS_NO_ERR && policy != unwritten) fail(c.entry(), "wrote the buffer and returned an error");
  if (st == ZIVK_STS_NO_ERR && (policy == unwritten || !policy)) fail(c.entry(), "no buffer stored");
  if (st == ZIVK_STS_NO_ERR) c.result(ZIVKS_TopKRelease(policy));
}

void topk_release(Call& c) {
  uint8_t* policy = nullptr;
  if (!c.in().one_in(8)) {
    const int32_t k = 1 + int32_t(c.in().below(50));
    std::vector<float> val(k);
    std::vector<int32_t> idx(k);
    c.result(ZIVKS_TopKInit_32f(1 + int32_t(c.in().below(5000)), val.data(), idx.data(), k,
                                int32_t(c.in().below(3)), &policy));
  }
  c.finish(ZIVKS_TopKRelease(policy));
}

// Keys a TopK call reads at `stride`: those at byte offsets below len * 4, at most len.
int32_t keys_read(int32_t len, int32_t stride) {
  return int32_t(std::min<int64_t>(len, (4 * int64_t(len) + stride - 1) / stride));
}

// Init, then the call with Init's len, k and method (the buffer fits nothing else), now
// and then with one of them changed to a value the call refuses before it uses the
// buffer; offsets and strides around their limits. Quick selection orders equal keys by
// rand(), so its result is digested by value, with the positions of the keys above the
// last value written; radix selection is stable and digested as it stands.
template <class T, TopKInit<T> Init, TopKCall<T> F>
void topk(Call& c) {
  Input& in = c.in();
  int32_t len = c.length();
  if (in.one_in(10)) len = 8192 + int32_t(in.below(12000));  // enough keys to guess a rank from
  const int32_t k = draw_k(in, len);
  const int32_t method = in.one_in(24) ? draw_method(in) : int32_t(in.below(3));
  Own own(c);
  T* val = own.elements<T>(k, Call::kWritten);
  int32_t* idx = own.elements<int32_t>(k, Call::kWritten);
  uint8_t* policy = nullptr;
  c.result(Init(len, val, idx, k, method, &policy));
  own.snapshot();  // the presets are what the call finds
  const std::vector<T> preset_val(val, val ? val + k : val);
  const std::vector<int32_t> preset_idx(idx, idx ? idx + k : idx);

  int32_t call_len = len, call_k = k, call_method = method;
  switch (in.below(24)) {
    case 0: call_len = -int32_t(in.below(2)); break;
    case 1: call_k = -int32_t(in.below(2)); break;
    case 2: call_method = draw_method(in) | 3; break;
    default: break;
  }
  const uint32_t so = in.below(32);
  const int32_t stride = so < 20 ? 4 : so < 29 ? 1 + int32_t(in.below(20)) : so < 31 ? -int32_t(in.below(2)) : 64;
  const uint32_t oo = in.below(32);
  const int64_t room = std::numeric_limits<int32_t>::max() - std::max(call_len, 0);  // the largest offset
  const int32_t offset = oo < 20   ? 0
                         : oo < 28 ? int32_t(in.below(1000))
                         : oo < 30 ? int32_t(std::min<int64_t>(room + (oo - 28), std::numeric_limits<int32_t>::max()))
                                   : -1;
  const int32_t n = call_len < 1 ? 0 : stride < 1 ? call_len : keys_read(call_len, stride);
  const size_t span = n < 1 ? 0 : stride < 1 ? size_t(n) * 4 : size_t(n - 1) * stride + 4;
  const T* src = own.bytes<T>(span, Call::kSource);

  const ZIVKStatus st = F(src, offset, stride, call_len, val, idx, call_k, call_method, policy);
  c.finish(st);
  own.check(st);
  if (policy) c.result(ZIVKS_TopKRelease(policy));
  if (st != ZIVK_STS_NO_ERR) return;

  // The keys read, the keys left out (32f: non-finite but the first +inf and -inf).
  const auto key = [&](int32_t i) {
    T v;
    memcpy(&v, reinterpret_cast<const uint8_t*>(src) + int64_t(i) * stride, sizeof v);
    return v;
  };
  int32_t left_out = 0;
  if constexpr (std::is_floating_point<T>::value) {
    bool plus = false, minus = false;
    for (int32_t i = 0; i < n; ++i) {
      const T v = key(i);
      if (v == std::numeric_limits<T>::infinity() && !plus) plus = true;
      else if (v == -std::numeric_limits<T>::infinity() && !minus) minus = true;
      else left_out += !(v - v == 0);
    }
  }
  const int32_t m = std::min(k, len - left_out);
  for (int32_t j = m; j < k; ++j)
    if (bits(val[j]) != bits(preset_val[j]) || idx[j] != preset_idx[j])
      fail(c.entry(), "wrote past the entries it has: " + std::to_string(j));
  // Every entry is a key at its position, or a 0 for a place the stride skipped; no
  // position twice.
  std::vector<bool> seen(static_cast<size_t>(len));
  for (int32_t j = 0; j < m; ++j) {
    if (is_nan(val[j])) fail(c.entry(), "a NaN written");
    const int64_t p = int64_t(idx[j]) - offset;
    if (p < 0 || p >= len || seen[p]) fail(c.entry(), "position outside the column or twice");
    seen[p] = true;
    if (bits(val[j]) != (p < n ? bits(key(int32_t(p))) : 0)) fail(c.entry(), "a value is not the key at its position");
  }
  if (settled(len, k, method) == 2) {
    for (int32_t j = 1; j < m; ++j)
      if (order_key(val[j - 1]) < order_key(val[j])) fail(c.entry(), "radix selection out of order");
    c.digest().add(val, m * sizeof(T));
    c.digest().add(idx, m * sizeof(int32_t));
    return;
  }
  // Quick selection leaves the greater block in front of an equal run that holds the last
  // place unsorted, and the zero places go in at the first negative key: with places the
  // stride skipped (n < len), which keys come out depends on rand(). Only the checks
  // above hold.
  if (n < len) return;
  // Quick selection: -0 and +0 are equal, and ties at the last value written may be any
  // of the equal keys.
  std::vector<std::pair<T, int32_t>> e(m);
  for (int32_t j = 0; j < m; ++j) e[j] = {val[j] == 0 ? T(0) : val[j], idx[j]};
  std::sort(e.begin(), e.end());
  for (const auto& x : e) c.result(x.first);
  for (const auto& x : e)
    if (x.first > e[0].first) c.result(x.second);
}

#define ZD_SORT(fn, shape, flags, ...) zd::Entry{#fn, &shape<fn, __VA_ARGS__>, flags}

}  // namespace

void add_sort(std::vector<Entry>& out) {
  const Entry list[] = {
      ZD_SORT(ZIVKS_SortAscend_8u_I, comparison_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortAscend_16u_I, comparison_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortAscend_16s_I, comparison_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortAscend_32s_I, comparison_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortAscend_32f_I, comparison_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortAscend_64f_I, comparison_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortDescend_8u_I, comparison_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortDescend_16u_I, comparison_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortDescend_16s_I, comparison_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortDescend_32s_I, comparison_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortDescend_32f_I, comparison_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortDescend_64f_I, comparison_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortIndexAscend_8u_I, index_sort, kSharedGenerator, kUp),
      ZD_SORT(ZIVKS_SortIndexAscend_16u_I, index_sort, kSharedGenerator, kUp),
      ZD_SORT(ZIVKS_SortIndexAscend_16s_I, index_sort, kSharedGenerator, kUp),
      ZD_SORT(ZIVKS_SortIndexAscend_32s_I, index_sort, kSharedGenerator, kUp),
      ZD_SORT(ZIVKS_SortIndexAscend_32f_I, index_sort, kSharedGenerator, kUp),
      ZD_SORT(ZIVKS_SortIndexAscend_64f_I, index_sort, kSharedGenerator, kUp),
      ZD_SORT(ZIVKS_SortIndexDescend_8u_I, index_sort, kSharedGenerator, kDown),
      ZD_SORT(ZIVKS_SortIndexDescend_16u_I, index_sort, kSharedGenerator, kDown),
      ZD_SORT(ZIVKS_SortIndexDescend_16s_I, index_sort, kSharedGenerator, kDown),
      ZD_SORT(ZIVKS_SortIndexDescend_32s_I, index_sort, kSharedGenerator, kDown),
      ZD_SORT(ZIVKS_SortIndexDescend_32f_I, index_sort, kSharedGenerator, kDown),
      ZD_SORT(ZIVKS_SortIndexDescend_64f_I, index_sort, kSharedGenerator, kDown),
      ZD_SORT(ZIVKS_SortRadixInit, sort_init, 0, ZIVKS_SortRadixRelease),
      ZD_SORT(ZIVKS_SortRadixRelease, sort_release, 0, ZIVKS_SortRadixInit),
      ZD_SORT(ZIVKS_SortRadixAscend_8u_I, radix_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixAscend_16u_I, radix_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixAscend_16s_I, radix_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixAscend_32u_I, radix_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixAscend_32s_I, radix_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixAscend_32f_I, radix_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixAscend_64u_I, radix_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixAscend_64s_I, radix_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixAscend_64f_I, radix_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixDescend_8u_I, radix_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixDescend_16u_I, radix_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixDescend_16s_I, radix_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixDescend_32u_I, radix_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixDescend_32s_I, radix_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixDescend_32f_I, radix_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixDescend_64u_I, radix_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixDescend_64s_I, radix_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixDescend_64f_I, radix_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixIndexInit, sort_init, 0, ZIVKS_SortRadixIndexRelease),
      ZD_SORT(ZIVKS_SortRadixIndexRelease, sort_release, 0, ZIVKS_SortRadixIndexInit),
      ZD_SORT(ZIVKS_SortRadixIndexAscend_8u, radix_index_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixIndexAscend_16u, radix_index_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixIndexAscend_16s, radix_index_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixIndexAscend_32u, radix_index_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixIndexAscend_32s, radix_index_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixIndexAscend_32f, radix_index_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixIndexAscend_64u, radix_index_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixIndexAscend_64s, radix_index_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixIndexAscend_64f, radix_index_sort, 0, kUp),
      ZD_SORT(ZIVKS_SortRadixIndexDescend_8u, radix_index_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixIndexDescend_16u, radix_index_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixIndexDescend_16s, radix_index_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixIndexDescend_32u, radix_index_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixIndexDescend_32s, radix_index_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixIndexDescend_32f, radix_index_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixIndexDescend_64u, radix_index_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixIndexDescend_64s, radix_index_sort, 0, kDown),
      ZD_SORT(ZIVKS_SortRadixIndexDescend_64f, radix_index_sort, 0, kDown),
      {"ZIVKS_TopKInit_32s", &topk_init<int32_t, ZIVKS_TopKInit_32s>, 0},
      {"ZIVKS_TopKInit_32f", &topk_init<float, ZIVKS_TopKInit_32f>, 0},
      {"ZIVKS_TopKRelease", &topk_release, 0},
      {"ZIVKS_TopK_32s", &topk<int32_t, ZIVKS_TopKInit_32s, ZIVKS_TopK_32s>, kSharedGenerator},
      {"ZIVKS_TopK_32f", &topk<float, ZIVKS_TopKInit_32f, ZIVKS_TopK_32f>, kSharedGenerator},
  };
  out.insert(out.end(), std::begin(list), std::end(list));
}

}  // namespace zd
