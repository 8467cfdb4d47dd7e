// SortRadixInit, SortRadixRelease and the radix sorts: handle sizes and statuses seen
// through the recording core services, integer results against std::sort, and the float
// order: bit patterns sorted as signed integers, then the leading negative block turned
// around, with the two quirks that come with it (a -0.0 stops the turn; an all-negative
// array looks at the word beyond its end).
#include <algorithm>
#include <functional>
#include <limits>
#include <string>

#include "support/zt.h"

namespace {

template <class T>
using RadixFn = ZIVKStatus (*)(T*, int32_t, uint8_t*);

template <class T>
struct Radix {
  std::string name;
  RadixFn<T> fn, twin;
  bool descend;
};

#define ZT_RADIX(dir, code, T, desc) \
  Radix<T> { #dir "_" #code, ZIVKS_SortRadix##dir##_##code##_I, ZT_TWIN(ZIVKS_SortRadix##dir##_##code##_I), desc }

template <class Fn>
void for_each_sort(Fn&& f) {
  for (bool d : {false, true}) {
    f(d ? ZT_RADIX(Descend, 8u, uint8_t, true) : ZT_RADIX(Ascend, 8u, uint8_t, false));
    f(d ? ZT_RADIX(Descend, 16u, uint16_t, true) : ZT_RADIX(Ascend, 16u, uint16_t, false));
    f(d ? ZT_RADIX(Descend, 16s, int16_t, true) : ZT_RADIX(Ascend, 16s, int16_t, false));
    f(d ? ZT_RADIX(Descend, 32u, uint32_t, true) : ZT_RADIX(Ascend, 32u, uint32_t, false));
    f(d ? ZT_RADIX(Descend, 32s, int32_t, true) : ZT_RADIX(Ascend, 32s, int32_t, false));
    f(d ? ZT_RADIX(Descend, 32f, float, true) : ZT_RADIX(Ascend, 32f, float, false));
    f(d ? ZT_RADIX(Descend, 64u, uint64_t, true) : ZT_RADIX(Ascend, 64u, uint64_t, false));
    f(d ? ZT_RADIX(Descend, 64s, int64_t, true) : ZT_RADIX(Ascend, 64s, int64_t, false));
    f(d ? ZT_RADIX(Descend, 64f, double, true) : ZT_RADIX(Ascend, 64f, double, false));
  }
}

template <class T>
constexpr bool kFloat = std::is_floating_point_v<T>;

constexpr int32_t kDataTypes[] = {ZIVK_DT_8U,  ZIVK_DT_16U, ZIVK_DT_16S, ZIVK_DT_32U, ZIVK_DT_32S,
                                  ZIVK_DT_32F, ZIVK_DT_64U, ZIVK_DT_64S, ZIVK_DT_64F};

// The handle's size in bytes: fixed tables for 8 and 16 bits, a scratch copy otherwise.
int32_t handle_size(int32_t dt, int32_t len) {
  if (dt == ZIVK_DT_8U) return 1024;
  if (dt == ZIVK_DT_16U || dt == ZIVK_DT_16S) return 262144;
  return len * (dt <= ZIVK_DT_32F ? 4 : 8);
}

ZIVKStatus init(int32_t len, int32_t dt, uint8_t** policy) {
  return ZIVKS_SortRadixInit(len, static_cast<ZIVKDataType>(dt), policy);
}

TEST(SortRadixInit, StatusesInOrderAndSizes) {
  auto& r = zt::core_record();
  uint8_t marker = 0;
  uint8_t* const unwritten = &marker;
  // Pointer, then length, then type; nothing is asked of the allocator and *policy stays.
  std::vector<int32_t> bad_types = {INT32_MIN, -13, INT32_MAX};
  for (int32_t dt = -3; dt <= 40; ++dt)
    if (std::find(std::begin(kDataTypes), std::end(kDataTypes), dt) == std::end(kDataTypes)) bad_types.push_back(dt);
  r = {};
  for (int32_t dt : bad_types) {
    uint8_t* h = unwritten;
    EXPECT_EQ(init(100, dt, nullptr), ZIVK_STS_NULL_PTR_ERR) << dt;
    EXPECT_EQ(init(0, dt, nullptr), ZIVK_STS_NULL_PTR_ERR) << dt;
    EXPECT_EQ(init(0, dt, &h), ZIVK_STS_SIZE_ERR) << dt;
    EXPECT_EQ(init(-1, dt, &h), ZIVK_STS_SIZE_ERR) << dt;
    EXPECT_EQ(init(100, dt, &h), ZIVK_STS_DATA_TYPE_ERR) << dt;
    EXPECT_EQ(h, unwritten);
  }
  for (int32_t dt : kDataTypes) {
    uint8_t* h = unwritten;
    EXPECT_EQ(init(5, dt, nullptr), ZIVK_STS_NULL_PTR_ERR) << dt;
    EXPECT_EQ(init(INT32_MIN, dt, &h), ZIVK_STS_SIZE_ERR) << dt;
    EXPECT_EQ(h, unwritten);
  }
  EXPECT_EQ(r.malloc_calls, 0);

  for (int32_t dt : kDataTypes) {
    for (int32_t len : {1, 3, 100, 4097}) {
      SCOPED_TRACE("type " + std::to_string(dt) + " len " + std::to_string(len));
      r = {};
      uint8_t* h = nullptr;
      ASSERT_EQ(init(len, dt, &h), ZIVK_STS_NO_ERR);
      ASSERT_NE(h, nullptr);
      EXPECT_EQ(r.malloc_calls, 1);
      EXPECT_EQ(r.last_size, handle_size(dt, len));
      EXPECT_EQ(ZIVKS_SortRadixRelease(h), ZIVK_STS_NO_ERR);
      EXPECT_EQ(r.free_calls, 1);
      // A refusal of the allocator: status 9, *policy unwritten, nothing to free.
      r = {};
      r.fail_next = true;
      h = unwritten;
      EXPECT_EQ(init(len, dt, &h), ZIVK_STS_MALLOC_ERR);
      EXPECT_EQ(h, unwritten);
      EXPECT_EQ(r.last_size, handle_size(dt, len));
    }
  }

  // The largest scratch copies still ask (refused here, so nothing is taken); one more
  // element does not fit an int32 byte count and fails without asking.
  for (int32_t dt : {ZIVK_DT_32U, ZIVK_DT_32S, ZIVK_DT_32F, ZIVK_DT_64U, ZIVK_DT_64S, ZIVK_DT_64F}) {
    SCOPED_TRACE("type " + std::to_string(dt));
    const int32_t last = dt <= ZIVK_DT_32F ? 0x1FFFFFFF : 0x0FFFFFFF;
    uint8_t* h = unwritten;
    r = {};
    r.fail_next = true;
    EXPECT_EQ(init(last, dt, &h), ZIVK_STS_MALLOC_ERR);
    EXPECT_EQ(r.last_size, handle_size(dt, last));
    r = {};
    for (int32_t len : {last + 1, 0x20000000, INT32_MAX}) EXPECT_EQ(init(len, dt, &h), ZIVK_STS_MALLOC_ERR) << len;
    EXPECT_EQ(r.malloc_calls, 0);
    EXPECT_EQ(h, unwritten);
  }
  // The 8- and 16-bit tables do not grow with len.
  for (int32_t dt : {ZIVK_DT_8U, ZIVK_DT_16U, ZIVK_DT_16S}) {
    for (int32_t len : {0x10000000, 0x20000000, INT32_MAX}) {
      r = {};
      uint8_t* h = nullptr;
      ASSERT_EQ(init(len, dt, &h), ZIVK_STS_NO_ERR) << dt << " " << len;
      EXPECT_EQ(r.last_size, handle_size(dt, 1));
      ZIVKS_SortRadixRelease(h);
    }
  }
  // Release hands null on like any other pointer.
  r = {};
  EXPECT_EQ(ZIVKS_SortRadixRelease(nullptr), ZIVK_STS_NO_ERR);
  EXPECT_EQ(r.free_calls, 1);
  r = {};
}

// One handle per element size, shared by every type and direction of that size and
// made for the longest array (8 and 16 bits: for len 1, since their tables are fixed).
constexpr int kMaxLen = 5000;

class Handles {
 public:
  Handles() {
    const int32_t made[4][2] = {{ZIVK_DT_8U, 1}, {ZIVK_DT_16S, 1}, {ZIVK_DT_32F, kMaxLen}, {ZIVK_DT_64U, kMaxLen}};
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(init(made[i][1], made[i][0], &h_[i]), ZIVK_STS_NO_ERR);
      size_[i] = handle_size(made[i][0], made[i][1]);
    }
  }
  ~Handles() {
    for (uint8_t* h : h_) ZIVKS_SortRadixRelease(h);
  }
  uint8_t* get(size_t elem) { return h_[slot(elem)]; }
  int32_t size(size_t elem) const { return size_[slot(elem)]; }
  // Leftovers of earlier calls must not matter: each sort clears what it counts in.
  uint8_t* scrambled(size_t elem, zt::Rng& rng) {
    memset(get(elem), static_cast<int>(rng() & 0xFF), size(elem));
    return get(elem);
  }

 private:
  static int slot(size_t elem) { return elem == 1 ? 0 : elem == 2 ? 1 : elem == 4 ? 2 : 3; }
  uint8_t* h_[4] = {};
  int32_t size_[4] = {};
};

template <class T>
void check_statuses(const Radix<T>& s, Handles& hs) {
  SCOPED_TRACE(s.name);
  uint8_t* h = hs.get(sizeof(T));
  const std::vector<uint8_t> before(h, h + hs.size(sizeof(T)));
  zt::Guarded<T> g(4);
  for (int32_t n : {4, 0, -1}) {
    EXPECT_EQ(s.fn(nullptr, n, h), ZIVK_STS_NULL_PTR_ERR) << n;
    EXPECT_EQ(s.fn(g.data(), n, nullptr), ZIVK_STS_NULL_PTR_ERR) << n;
    EXPECT_EQ(s.fn(nullptr, n, nullptr), ZIVK_STS_NULL_PTR_ERR) << n;
  }
  for (int32_t n : {0, -1, INT32_MIN}) EXPECT_EQ(s.fn(g.data(), n, h), ZIVK_STS_SIZE_ERR) << n;
  EXPECT_TRUE(g.untouched());
  EXPECT_TRUE(std::equal(before.begin(), before.end(), h)) << "handle written";
}

TEST(SortRadix, StatusesInOrderAndRefusedCallsWriteNothing) {
  Handles hs;
  for_each_sort([&](const auto& s) { check_statuses(s, hs); });
}

std::vector<int> sort_lengths() {
  std::vector<int> v;
  for (int n = 1; n <= 70; ++n) v.push_back(n);
  for (int n : {127, 128, 129, 255, 256, 257, 1000, 4095, 4096, kMaxLen}) v.push_back(n);
  return v;
}

enum Mix { kAny, kFew, kRuns, kNoNegativeZero, kNegative };

// kFew: a handful of values with the type's extremes (both zeros and infinities for
// floats); kRuns: value k in 1 + k % 31 copies, so the counting sorts write runs of every
// length around 8 and 14; kNoNegativeZero and kNegative (floats): any special value but
// -0.0, and negative numbers only (no NaN, no zero).
template <class T>
std::vector<T> values(int len, Mix mix, zt::Rng& rng) {
  auto any = [&] {
    T x;
    zt::fill_random(&x, 1, rng);
    if constexpr (kFloat<T>) {
      if (mix == kNoNegativeZero && x == 0) x = T(0);
      if (mix == kNegative) x = x != x ? T(-1.5) : x == 0 ? -std::numeric_limits<T>::denorm_min() : -std::fabs(x);
    }
    return x;
  };
  std::vector<T> v(len);
  if (mix == kFew) {
    const T lo = std::numeric_limits<T>::lowest(), hi = std::numeric_limits<T>::max();
    T pool[6] = {any(), any(), T(0), static_cast<T>(-1), lo, hi};
    if constexpr (kFloat<T>) pool[2] = -T(0), pool[4] = -std::numeric_limits<T>::infinity();
    for (T& x : v) x = pool[rng() % 6];
  } else if (mix == kRuns) {
    for (int i = 0, k = 0; i < len; ++k) {
      const T x = any();
      for (int c = 0; c <= k % 31 && i < len; ++c) v[i++] = x;
    }
    std::shuffle(v.begin(), v.end(), rng);
  } else {
    for (T& x : v) x = any();
  }
  return v;
}

template <class T>
void check_integers(const Radix<T>& s, Handles& hs) {
  zt::Rng rng(std::hash<std::string>()(s.name));
  for (int len : sort_lengths()) {
    for (Mix mix : {kAny, kFew, kRuns}) {
      SCOPED_TRACE(s.name + " len " + std::to_string(len) + " mix " + std::to_string(mix));
      const std::vector<T> in = values<T>(len, mix, rng);
      std::vector<T> want = in;
      std::sort(want.begin(), want.end());
      if (s.descend) std::reverse(want.begin(), want.end());
      zt::Guarded<T> g(len, (rng() % 4) * sizeof(T));
      memcpy(g.data(), in.data(), len * sizeof(T));
      ASSERT_EQ(s.fn(g.data(), len, hs.scrambled(sizeof(T), rng)), ZIVK_STS_NO_ERR);
      ASSERT_TRUE(g.guards_intact());
      ASSERT_EQ(zt::first_difference(want.data(), g.data(), len), -1);
      if (s.twin) {
        zt::Guarded<T> t(len);
        memcpy(t.data(), in.data(), len * sizeof(T));
        ASSERT_EQ(s.twin(t.data(), len, hs.scrambled(sizeof(T), rng)), ZIVK_STS_NO_ERR);
        ASSERT_EQ(zt::first_difference(t.data(), g.data(), len), -1) << "generic backend";
      }
    }
  }
}

// ---- the float order

template <class F>
using Bits = std::conditional_t<sizeof(F) == 4, uint32_t, uint64_t>;
template <class F>
using SignedBits = std::make_signed_t<Bits<F>>;

template <class F>
Bits<F> bits(F f) {
  Bits<F> b;
  memcpy(&b, &f, sizeof b);
  return b;
}

// Sign and whole exponent set: -inf or a NaN with the sign set.
template <class F>
bool sign_and_exponent_set(F f) {
  constexpr Bits<F> top = sizeof(F) == 4 ? Bits<F>(0xFF800000u) : Bits<F>(0xFFF0000000000000ull);
  return (bits(f) & top) == top;
}

// The rule applied to memory: w[off, off + len) is the array and the words around it
// are what lies beside it. The bit patterns are sorted as signed integers; Ascend then
// counts the elements below 0.0 from the front, carries the count on over any words
// with sign and exponent set that stop it, and reverses that many; Descend mirrors it
// from the back.
template <class F>
void float_rule(std::vector<F>& w, int off, int len, bool descend) {
  auto key = [](F f) { return static_cast<SignedBits<F>>(bits(f)); };
  std::sort(w.begin() + off, w.begin() + off + len,
            [&](F a, F b) { return descend ? key(a) > key(b) : key(a) < key(b); });
  if (!descend) {
    int n = 0;
    while (n < len && w[off + n] < 0) ++n;
    while (sign_and_exponent_set(w.at(off + n))) ++n;
    std::reverse(w.begin() + off, w.begin() + off + n);
  } else {
    int i = len - 1;
    while (i >= 0 && w[off + i] < 0) --i;
    while (sign_and_exponent_set(w.at(off + i))) --i;
    std::reverse(w.begin() + off + i + 1, w.begin() + off + len);
  }
}

// The order as a caller reads it, for arrays without -0.0, Ascend: NaNs with the sign
// set by falling payload, then the numbers by value, then NaNs with the sign clear by
// rising payload.
template <class F>
bool ascends_before(F a, F b) {
  auto rank = [](F x) { return x != x ? (std::signbit(x) ? 0 : 2) : 1; };
  if (rank(a) != rank(b)) return rank(a) < rank(b);
  if (rank(a) == 1) return a < b;
  return rank(a) == 0 ? bits(a) > bits(b) : bits(a) < bits(b);
}

// A NaN with the sign set and a random payload.
template <class F>
F negative_nan(zt::Rng& rng) {
  Bits<F> b = bits(-std::numeric_limits<F>::infinity()) | (static_cast<Bits<F>>(rng()) >> 12) | 1;
  F f;
  memcpy(&f, &b, sizeof f);
  return f;
}

// The array sits 3 words into a guarded region of len + 6; the words beside it are the
// guard pattern (a negative number) or, k of them on each side, NaNs with the sign set
// that an all-negative array turns into itself.
template <class F>
void check_floats(const Radix<F>& s, Handles& hs) {
  zt::Rng rng(std::hash<std::string>()(s.name));
  constexpr int off = 3;
  for (int len : sort_lengths()) {
    for (Mix mix : {kAny, kFew, kRuns, kNoNegativeZero, kNegative}) {
      const int k = rng() % 3;
      SCOPED_TRACE(s.name + " len " + std::to_string(len) + " mix " + std::to_string(mix) + " k " + std::to_string(k));
      const std::vector<F> in = values<F>(len, mix, rng);
      zt::Guarded<F> g(len + 2 * off, (rng() % 4) * sizeof(F)), t(len + 2 * off);
      for (int j = 0; j < k; ++j) g[off - 1 - j] = negative_nan<F>(rng), g[off + len + j] = negative_nan<F>(rng);
      memcpy(&g[off], in.data(), len * sizeof(F));
      memcpy(t.data(), g.data(), (len + 2 * off) * sizeof(F));
      std::vector<F> want(g.data(), g.data() + len + 2 * off);
      float_rule(want, off, len, s.descend);

      ASSERT_EQ(s.fn(&g[off], len, hs.scrambled(sizeof(F), rng)), ZIVK_STS_NO_ERR);
      ASSERT_TRUE(g.guards_intact());
      ASSERT_EQ(zt::first_difference(want.data(), g.data(), want.size()), -1);
      if (s.twin) {
        ASSERT_EQ(s.twin(&t[off], len, hs.scrambled(sizeof(F), rng)), ZIVK_STS_NO_ERR);
        ASSERT_EQ(zt::first_difference(t.data(), g.data(), want.size()), -1) << "generic backend";
      }
      // The same result from the caller's order, where no -0.0 and no word beside the
      // array takes part.
      const bool neg_zero = std::any_of(in.begin(), in.end(), [](F x) { return x == 0 && std::signbit(x); });
      // Sign-set NaNs stop the scan but carry the count on, so they reach the word
      // beside the array as negative numbers do.
      const bool reaches_beside =
          std::all_of(in.begin(), in.end(), [](F x) { return x < 0 || (x != x && std::signbit(x)); });
      if (!neg_zero && !(reaches_beside && k > 0)) {
        std::vector<F> order = in;
        std::sort(order.begin(), order.end(), ascends_before<F>);
        if (s.descend) std::reverse(order.begin(), order.end());
        ASSERT_EQ(zt::first_difference(order.data(), &g[off], len), -1) << "caller's order";
      }
    }
  }
}

template <class T>
void check_sort(const Radix<T>& s, Handles& hs) {
  if constexpr (kFloat<T>) {
    check_floats(s, hs);
  } else {
    check_integers(s, hs);
  }
}

TEST(SortRadix, EveryTypeAndDirectionAgainstItsOrder) {
  auto& r = zt::core_record();
  Handles hs;
  r = {};
  for_each_sort([&](const auto& s) { check_sort(s, hs); });
  EXPECT_EQ(r.malloc_calls, 0) << "a sort allocates nothing";
  r = {};
}

// The negative zero is no negative number to the scan: with one in the array the
// negative block keeps its bit order, -0.0 first and falling values after it.
template <class F>
void check_negative_zero(RadixFn<F> asc, RadixFn<F> desc, uint8_t* h) {
  F a[4] = {F(1), F(-2), -F(0), F(-1)};
  ASSERT_EQ(asc(a, 4, h), ZIVK_STS_NO_ERR);
  EXPECT_TRUE(std::signbit(a[0]) && a[0] == 0 && a[1] == -1 && a[2] == -2 && a[3] == 1)
      << a[0] << " " << a[1] << " " << a[2] << " " << a[3];
  ASSERT_EQ(desc(a, 4, h), ZIVK_STS_NO_ERR);
  EXPECT_TRUE(a[0] == 1 && a[1] == -2 && a[2] == -1 && std::signbit(a[3]) && a[3] == 0)
      << a[0] << " " << a[1] << " " << a[2] << " " << a[3];
  F b[4] = {F(-1), F(1), F(-2), F(5)};  // a trailing word that takes no part
  ASSERT_EQ(asc(b, 3, h), ZIVK_STS_NO_ERR);
  EXPECT_TRUE(b[0] == -2 && b[1] == -1 && b[2] == 1 && b[3] == 5) << b[0] << " " << b[1] << " " << b[2];
  ASSERT_EQ(desc(b, 3, h), ZIVK_STS_NO_ERR);
  EXPECT_TRUE(b[0] == 1 && b[1] == -1 && b[2] == -2 && b[3] == 5) << b[0] << " " << b[1] << " " << b[2];
}

TEST(SortRadix, NegativeZeroKeepsTheNegativeBlockInBitOrder) {
  Handles hs;
  check_negative_zero<float>(ZIVKS_SortRadixAscend_32f_I, ZIVKS_SortRadixDescend_32f_I, hs.get(4));
  check_negative_zero<double>(ZIVKS_SortRadixAscend_64f_I, ZIVKS_SortRadixDescend_64f_I, hs.get(8));
}

}  // namespace
