// Plain integer Add and Sub, the widening forms, and Abs.
#include <math.h>

#include <functional>
#include <limits>

#include "support/zt.h"

namespace {

template <class T, class W>
T sat(W x) {
  if (x > static_cast<W>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
  if (x < static_cast<W>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
  return static_cast<T>(x);
}

TEST(IntAddSubAbs, SaturationBoundsAndTheOneThatWraps) {
  // Every case sits at index 0 of a block and again in the tail (index 9 of 10).
  auto both = [](auto fn, auto a, auto b, auto want) {
    using S = std::remove_reference_t<decltype(a)>;
    using D = std::remove_reference_t<decltype(want)>;
    S x[10], y[10];
    D d[10];
    for (int i = 0; i < 10; ++i) x[i] = a, y[i] = b;
    ASSERT_EQ(fn(x, y, d, 10), 0);
    EXPECT_EQ(d[0], want);
    EXPECT_EQ(d[9], want);
  };
  both(ZIVKS_Add_16u, uint16_t{65535}, uint16_t{1}, uint16_t{65535});
  both(ZIVKS_Add_32u, 4294967295u, 2u, 4294967295u);
  both(ZIVKS_Add_32u, 4294967294u, 1u, 4294967295u);
  both(ZIVKS_Add_8u16u, uint8_t{255}, uint8_t{255}, uint16_t{510});
  both(ZIVKS_Sub_16s, int16_t{-32768}, int16_t{1}, int16_t{32767});
  both(ZIVKS_Sub_16s, int16_t{1}, int16_t{-32768}, int16_t{-32768});
  both(ZIVKS_Add_16s, int16_t{-32768}, int16_t{-1}, int16_t{-32768});
  both(ZIVKS_Sub_16s32f, int16_t{-32768}, int16_t{32767}, 65535.0f);
  both(ZIVKS_Add_16s32f, int16_t{-32768}, int16_t{-32768}, -65536.0f);

  int16_t s16[10];
  int32_t s32[10];
  for (int i = 0; i < 10; ++i) s16[i] = -32768, s32[i] = INT32_MIN;
  ASSERT_EQ(ZIVKS_Abs_16s_I(s16, 10), 0);
  ASSERT_EQ(ZIVKS_Abs_32s_I(s32, 10), 0);
  EXPECT_EQ(s16[0], 32767);
  EXPECT_EQ(s16[9], 32767);
  EXPECT_EQ(s32[0], INT32_MAX);
  EXPECT_EQ(s32[9], INT32_MAX);

  // Add_16s32s_I wraps where its neighbours saturate.
  int16_t one[5] = {1, 1, 1, 1, 1};
  int32_t acc[5] = {INT32_MAX, 0, 0, 0, INT32_MAX};
  ASSERT_EQ(ZIVKS_Add_16s32s_I(one, acc, 5), 0);
  EXPECT_EQ(acc[0], INT32_MIN);
  EXPECT_EQ(acc[4], INT32_MIN);

  int16_t c[5] = {32767, -2, 0, 0, 32767};
  ASSERT_EQ(ZIVKS_AddC_16s_I(1, c, 5), 0);
  EXPECT_EQ(c[0], 32767);
  EXPECT_EQ(c[4], 32767);
  int16_t c2[5] = {-2, -2, -2, -2, -2};
  ASSERT_EQ(ZIVKS_SubC_16s_I(32767, c2, 5), 0);
  EXPECT_EQ(c2[0], -32768);
  EXPECT_EQ(c2[4], -32768);

  // Float Abs clears the sign bit and nothing else.
  double z[3] = {-0.0, -INFINITY, 0};
  const uint64_t nan = 0xFFF4000000000123ull;
  memcpy(&z[2], &nan, 8);
  ASSERT_EQ(ZIVKS_Abs_64f_I(z, 3), 0);
  uint64_t b[3];
  memcpy(b, z, sizeof b);
  EXPECT_EQ(b[0], 0u);
  EXPECT_EQ(b[1], 0x7FF0000000000000ull);
  EXPECT_EQ(b[2], 0x7FF4000000000123ull);
}

// Random operands with the type's extremes mixed in, so that saturation shows often.
template <class T>
void fill(T* p, int n, zt::Rng& rng) {
  zt::fill_random(p, n, rng);
  if constexpr (std::is_integral_v<T>)
    for (int i = 0; i < n; ++i)
      if (rng() % 4 == 0) p[i] = rng() % 2 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min();
}

// Over every test length and misaligned arrays: each element against the oracle, the
// in-place form, the generic backend, the guards.
template <class S, class D, class Oracle, class InPlace>
void check_binary(const char* name, ZIVKStatus (*fn)(const S*, const S*, D*, int32_t),
                  ZIVKStatus (*twin)(const S*, const S*, D*, int32_t), Oracle oracle, InPlace in_place) {
  zt::Rng rng(77);
  for (int len : zt::test_lengths()) {
    const size_t mis = rng() % 2 ? sizeof(S) : 0;
    zt::Guarded<S> a(len, mis), b(len);
    zt::Guarded<D> d(len, mis ? sizeof(D) : 0), t(len), ip(len);
    fill(a.data(), len, rng);
    fill(b.data(), len, rng);
    ASSERT_EQ(fn(a.data(), b.data(), d.data(), len), 0);
    ASSERT_TRUE(d.guards_intact()) << name << " len " << len;
    for (int i = 0; i < len; ++i) ASSERT_TRUE(zt::same_bits(d[i], oracle(a[i], b[i]))) << name << " len " << len << " at " << i;
    if (twin) {
      ASSERT_EQ(twin(a.data(), b.data(), t.data(), len), 0);
      EXPECT_EQ(zt::first_difference(t.data(), d.data(), len), -1) << name << " generic backend, len " << len;
    }
    if constexpr (!std::is_same_v<InPlace, std::nullptr_t>) {
      if constexpr (std::is_same_v<S, D>) memcpy(ip.data(), b.data(), len * sizeof(S));
      ASSERT_EQ(in_place(a.data(), ip.data(), len), 0);
      EXPECT_EQ(zt::first_difference(ip.data(), d.data(), len), -1) << name << " in place, len " << len;
      EXPECT_TRUE(ip.guards_intact());
    }
  }
}

// Abs forms: a one-array function seen as a two-array one.
template <class T>
void check_abs(const char* name, ZIVKStatus (*fn)(const T*, T*, int32_t), ZIVKStatus (*twin)(const T*, T*, int32_t),
               ZIVKStatus (*in_place)(T*, int32_t)) {
  static ZIVKStatus (*f)(const T*, T*, int32_t);
  static ZIVKStatus (*g)(const T*, T*, int32_t);
  f = fn;
  g = twin;
  auto oracle = [](T x, T) {
    if constexpr (std::is_floating_point_v<T>) {
      unsigned char* p = reinterpret_cast<unsigned char*>(&x);
      p[sizeof x - 1] &= 0x7F;
      return x;
    } else {
      const int64_t v = x;
      return sat<T>(v < 0 ? -v : v);
    }
  };
  ZIVKStatus (*bin)(const T*, const T*, T*, int32_t) = [](const T* a, const T*, T* d, int32_t n) { return f(a, d, n); };
  ZIVKStatus (*bin_twin)(const T*, const T*, T*, int32_t) = [](const T* a, const T*, T* d, int32_t n) { return g(a, d, n); };
  check_binary<T, T>(name, bin, twin ? bin_twin : nullptr, oracle,
                     [in_place](const T* a, T* d, int32_t n) { memcpy(d, a, n * sizeof(T)); return in_place(d, n); });
}

TEST(IntAddSubAbs, AbsMatchesOracle) {
  check_abs<int16_t>("Abs_16s", ZIVKS_Abs_16s, ZT_TWIN(ZIVKS_Abs_16s), ZIVKS_Abs_16s_I);
  check_abs<int32_t>("Abs_32s", ZIVKS_Abs_32s, ZT_TWIN(ZIVKS_Abs_32s), ZIVKS_Abs_32s_I);
  check_abs<float>("Abs_32f", ZIVKS_Abs_32f, ZT_TWIN(ZIVKS_Abs_32f), ZIVKS_Abs_32f_I);
  check_abs<double>("Abs_64f", ZIVKS_Abs_64f, ZT_TWIN(ZIVKS_Abs_64f), ZIVKS_Abs_64f_I);
}

TEST(IntAddSubAbs, AddSubMatchOracle) {
  check_binary("Add_8u16u", ZIVKS_Add_8u16u, ZT_TWIN(ZIVKS_Add_8u16u),
               [](uint8_t a, uint8_t b) { return uint16_t(a + b); }, nullptr);
  check_binary("Add_16u", ZIVKS_Add_16u, ZT_TWIN(ZIVKS_Add_16u),
               [](uint16_t a, uint16_t b) { return sat<uint16_t>(a + b); }, nullptr);
  check_binary("Add_32u", ZIVKS_Add_32u, ZT_TWIN(ZIVKS_Add_32u),
               [](uint32_t a, uint32_t b) { return sat<uint32_t>(uint64_t{a} + b); }, ZIVKS_Add_32u_I);
  check_binary("Add_16s", ZIVKS_Add_16s, ZT_TWIN(ZIVKS_Add_16s),
               [](int16_t a, int16_t b) { return sat<int16_t>(a + b); }, ZIVKS_Add_16s_I);
  check_binary("Sub_16s", ZIVKS_Sub_16s, ZT_TWIN(ZIVKS_Sub_16s),
               [](int16_t a, int16_t b) { return sat<int16_t>(b - a); }, ZIVKS_Sub_16s_I);
  check_binary("Add_16s32f", ZIVKS_Add_16s32f, ZT_TWIN(ZIVKS_Add_16s32f),
               [](int16_t a, int16_t b) { return float(a + b); }, nullptr);
  check_binary("Sub_16s32f", ZIVKS_Sub_16s32f, ZT_TWIN(ZIVKS_Sub_16s32f),
               [](int16_t a, int16_t b) { return float(b - a); }, nullptr);
}

// The forms that exist in place only, against their oracle and the generic backend.
TEST(IntAddSubAbs, InPlaceOnlyForms) {
  zt::Rng rng(5);
  auto add_c = ZT_TWIN(ZIVKS_AddC_16s_I);
  auto sub_c = ZT_TWIN(ZIVKS_SubC_16s_I);
  auto wide = ZT_TWIN(ZIVKS_Add_16s32s_I);
  for (int len : zt::test_lengths()) {
    zt::Guarded<int16_t> a(len), c1(len, 2), c2(len), t(len);
    zt::Guarded<int32_t> w(len, 4), tw(len);
    fill(a.data(), len, rng);
    fill(w.data(), len, rng);
    const int16_t val = rng() % 3 ? static_cast<int16_t>(rng()) : (rng() % 2 ? 32767 : -32768);
    memcpy(c1.data(), a.data(), len * 2);
    memcpy(c2.data(), a.data(), len * 2);
    memcpy(tw.data(), w.data(), len * 4);
    ASSERT_EQ(ZIVKS_AddC_16s_I(val, c1.data(), len), 0);
    ASSERT_EQ(ZIVKS_SubC_16s_I(val, c2.data(), len), 0);
    ASSERT_EQ(ZIVKS_Add_16s32s_I(a.data(), w.data(), len), 0);
    EXPECT_TRUE(c1.guards_intact() && c2.guards_intact() && w.guards_intact());
    for (int i = 0; i < len; ++i) {
      ASSERT_EQ(c1[i], sat<int16_t>(a[i] + val)) << i;
      ASSERT_EQ(c2[i], sat<int16_t>(a[i] - val)) << i;
      ASSERT_EQ(w[i], static_cast<int32_t>(static_cast<uint32_t>(tw[i]) + static_cast<uint32_t>(a[i]))) << i;
    }
    if (add_c) {
      memcpy(t.data(), a.data(), len * 2);
      ASSERT_EQ(add_c(val, t.data(), len), 0);
      EXPECT_EQ(zt::first_difference(t.data(), c1.data(), len), -1);
      memcpy(t.data(), a.data(), len * 2);
      ASSERT_EQ(sub_c(val, t.data(), len), 0);
      EXPECT_EQ(zt::first_difference(t.data(), c2.data(), len), -1);
      ASSERT_EQ(wide(a.data(), tw.data(), len), 0);
      EXPECT_EQ(zt::first_difference(tw.data(), w.data(), len), -1);
    }
  }
}

TEST(IntAddSubAbs, StatusesAndNothingWritten) {
  zt::Guarded<int16_t> a(4), d(4);
  zt::Guarded<int32_t> w(4);
  EXPECT_EQ(ZIVKS_Add_16s(a.data(), nullptr, d.data(), 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_Sub_16s(a.data(), a.data(), nullptr, 0), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_Sub_16s32f(a.data(), a.data(), nullptr, 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_Abs_16s(a.data(), d.data(), 0), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(ZIVKS_Abs_64f_I(nullptr, 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_AddC_16s_I(1, d.data(), -1), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(ZIVKS_SubC_16s_I(1, nullptr, 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_Add_16s32s_I(nullptr, w.data(), 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_Add_16s32s_I(a.data(), w.data(), 0), ZIVK_STS_SIZE_ERR);
  EXPECT_EQ(ZIVKS_Add_32u_I(nullptr, reinterpret_cast<uint32_t*>(w.data()), 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_TRUE(d.untouched());
  EXPECT_TRUE(w.untouched());
}

}  // namespace
