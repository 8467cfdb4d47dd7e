// And, Or, Xor, their constant forms, and Not.
#include <functional>

#include "support/zt.h"

namespace {

// A member seen through one signature: (src1, src2 or null, val, dst, len). `oracle`
// is the plain C operator; `in_place` is the _I form acting on dst (null where the
// member has none).
template <class T>
struct Member {
  const char* name;
  bool two_arrays;
  std::function<T(T, T)> oracle;
  std::function<ZIVKStatus(const T*, const T*, T, T*, int)> fn, twin, in_place;
};

#define ZT_ARRAYS(op, code, expr)                                                                   \
  Member<T>{#op "_" #code, true, [](T a, T b) { return static_cast<T>(expr); },                     \
            [](const T* a, const T* b, T, T* d, int n) { return ZIVKS_##op##_##code(a, b, d, n); }, \
            [](const T* a, const T* b, T, T* d, int n) {                                            \
              auto t = ZT_TWIN(ZIVKS_##op##_##code);                                                \
              return t ? t(a, b, d, n) : -1;                                                        \
            },                                                                                      \
            [](const T* a, const T*, T, T* d, int n) { return ZIVKS_##op##_##code##_I(a, d, n); }}
#define ZT_CONST(op, code, expr)                                                                    \
  Member<T>{#op "C_" #code, false, [](T a, T b) { return static_cast<T>(expr); },                   \
            [](const T* a, const T*, T v, T* d, int n) { return ZIVKS_##op##C_##code(a, v, d, n); }, \
            [](const T* a, const T*, T v, T* d, int n) {                                            \
              auto t = ZT_TWIN(ZIVKS_##op##C_##code);                                               \
              return t ? t(a, v, d, n) : -1;                                                        \
            },                                                                                      \
            [](const T*, const T*, T v, T* d, int n) { return ZIVKS_##op##C_##code##_I(v, d, n); }}
#define ZT_NOT(code, in_place_fn)                                                                   \
  Member<T>{"Not_" #code, false, [](T a, T) { return static_cast<T>(~a); },                         \
            [](const T* a, const T*, T, T* d, int n) { return ZIVKS_Not_##code(a, d, n); },         \
            [](const T* a, const T*, T, T* d, int n) {                                              \
              auto t = ZT_TWIN(ZIVKS_Not_##code);                                                   \
              return t ? t(a, d, n) : -1;                                                           \
            },                                                                                      \
            in_place_fn}
#define ZT_MEMBERS(code, not_in_place)                                                              \
  std::vector<Member<T>> {                                                                          \
    ZT_ARRAYS(And, code, a & b), ZT_ARRAYS(Or, code, a | b), ZT_ARRAYS(Xor, code, a ^ b),           \
        ZT_CONST(And, code, a & b), ZT_CONST(Or, code, a | b), ZT_CONST(Xor, code, a ^ b),          \
        ZT_NOT(code, not_in_place)                                                                  \
  }

template <class T> std::vector<Member<T>> members();
template <> std::vector<Member<uint8_t>> members() {
  using T = uint8_t;
  return ZT_MEMBERS(8u, ([](const T*, const T*, T, T* d, int n) { return ZIVKS_Not_8u_I(d, n); }));
}
template <> std::vector<Member<uint16_t>> members() { using T = uint16_t; return ZT_MEMBERS(16u, nullptr); }
template <> std::vector<Member<uint32_t>> members() { using T = uint32_t; return ZT_MEMBERS(32u, nullptr); }

template <class T>
class Logic : public ::testing::Test {};
using Types = ::testing::Types<uint8_t, uint16_t, uint32_t>;
TYPED_TEST_SUITE(Logic, Types);

// Pointers before the length; nothing written on an error; the in-place forms report
// what their twin reports.
TYPED_TEST(Logic, StatusesAndNothingWritten) {
  using T = TypeParam;
  for (const auto& m : members<T>()) {
    zt::Guarded<T> a(4), b(4), d(4);
    const T* second = m.two_arrays ? b.data() : nullptr;
    EXPECT_EQ(m.fn(nullptr, second, 0, d.data(), 4), ZIVK_STS_NULL_PTR_ERR) << m.name;
    EXPECT_EQ(m.fn(a.data(), second, 0, nullptr, 0), ZIVK_STS_NULL_PTR_ERR) << m.name;
    if (m.two_arrays) {
      EXPECT_EQ(m.fn(a.data(), nullptr, 0, d.data(), 4), ZIVK_STS_NULL_PTR_ERR) << m.name;
    }
    EXPECT_EQ(m.fn(a.data(), second, 0, d.data(), 0), ZIVK_STS_SIZE_ERR) << m.name;
    EXPECT_EQ(m.fn(a.data(), second, 0, d.data(), -7), ZIVK_STS_SIZE_ERR) << m.name;
    if (m.in_place) {
      if (m.two_arrays) {
        EXPECT_EQ(m.in_place(nullptr, nullptr, 0, d.data(), 4), ZIVK_STS_NULL_PTR_ERR) << m.name;
      }
      EXPECT_EQ(m.in_place(a.data(), nullptr, 0, nullptr, 4), ZIVK_STS_NULL_PTR_ERR) << m.name;
      EXPECT_EQ(m.in_place(a.data(), nullptr, 0, d.data(), 0), ZIVK_STS_SIZE_ERR) << m.name;
    }
    EXPECT_TRUE(d.untouched()) << m.name;
  }
}

// Over lengths crossing every block boundary, random bits and alignments: the plain C
// operator per element, the in-place form, the generic backend, and the guards.
TYPED_TEST(Logic, MatchesCOperators) {
  using T = TypeParam;
  zt::Rng rng(77);
  for (const auto& m : members<T>()) {
    for (int len : zt::test_lengths()) {
      const size_t mis = (rng() % 3) * sizeof(T);
      zt::Guarded<T> a(len, mis), b(len, sizeof(T) * 2 - mis), d(len, mis), t(len), in(len, mis);
      zt::fill_random(a.data(), len, rng);
      zt::fill_random(b.data(), len, rng);
      T v;
      zt::fill_random(&v, 1, rng);
      ASSERT_EQ(m.fn(a.data(), b.data(), v, d.data(), len), 0);
      ASSERT_TRUE(d.guards_intact()) << m.name << " len " << len;
      for (int i = 0; i < len; ++i)
        ASSERT_EQ(d[i], m.oracle(a[i], m.two_arrays ? b[i] : v)) << m.name << " len " << len << " at " << i;
      if (m.in_place) {
        // The array read and written is the second one, or the only source.
        for (int i = 0; i < len; ++i) in[i] = m.two_arrays ? b[i] : a[i];
        ASSERT_EQ(m.in_place(a.data(), nullptr, v, in.data(), len), 0);
        EXPECT_EQ(zt::first_difference(in.data(), d.data(), len), -1) << m.name << " in place, len " << len;
        EXPECT_TRUE(in.guards_intact()) << m.name;
      }
      if (m.twin(a.data(), b.data(), v, t.data(), len) != -1) {
        EXPECT_EQ(zt::first_difference(t.data(), d.data(), len), -1) << m.name << " generic backend, len " << len;
      }
    }
  }
}

// dst equal to the first source works too (each element read before it is written).
TEST(Logic, DestinationMayBeTheFirstSource) {
  zt::Rng rng(5);
  std::vector<uint16_t> a(45), b(45), want(45);
  zt::fill_random(a.data(), a.size(), rng);
  zt::fill_random(b.data(), b.size(), rng);
  for (size_t i = 0; i < a.size(); ++i) want[i] = a[i] ^ b[i];
  ASSERT_EQ(ZIVKS_Xor_16u(a.data(), b.data(), a.data(), 45), 0);
  EXPECT_EQ(a, want);
  for (size_t i = 0; i < a.size(); ++i) want[i] = static_cast<uint16_t>(~a[i]);
  ASSERT_EQ(ZIVKS_Not_16u(a.data(), a.data(), 45), 0);
  EXPECT_EQ(a, want);
}

}  // namespace
