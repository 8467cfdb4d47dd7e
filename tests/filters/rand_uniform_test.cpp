// Uniform random fills against a reference of the same draws (srand48(seed), one drand48
// an element; whole blocks in float32 with fmaf, saturated; the rest in float64 with fma,
// low bits kept) at every length to 40 and some long ones, over extreme, reversed, equal
// and random bounds; refills, the generic twin, prefixes, NaN, statuses, guards, Init.
#include <stdlib.h>

#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/zt.h"

namespace {

template <class T, class S>
struct Gen {
  using Elem = T;
  using State = S;
  ZIVKStatus (*init)(S**, T, T, uint32_t);
  ZIVKStatus (*fill)(T*, int32_t, S*);
  ZIVKStatus (*release)(S*);
  ZIVKStatus (*twin)(T*, int32_t, S*);
};
#define ZT_RAND(code, T)                                                                 \
  Gen<T, ZIVKRandUniformState_##code> {                                                  \
    ZIVKS_RandUniformInit_##code, ZIVKS_RandUniform_##code, ZIVKS_RandUniformRelease_##code, \
        ZT_TWIN(ZIVKS_RandUniform_##code)                                                \
  }

template <class F>
void for_each_gen(F f) {
  f(ZT_RAND(8u, uint8_t));
  f(ZT_RAND(16s, int16_t));
  f(ZT_RAND(32f, float));
  f(ZT_RAND(64f, double));
}
template <class G>
using ElemOf = typename std::decay_t<G>::Elem;

template <class T>
constexpr int kBlock = std::is_same_v<T, double> ? 2 : 8;

template <class T>
std::vector<T> reference(T low, T high, uint32_t seed, int len) {
  std::vector<T> out(len);
  const int blocks = len / kBlock<T> * kBlock<T>;
  srand48(seed);
  for (int i = 0; i < len; ++i) {
    const double r = drand48();
    if constexpr (std::is_same_v<T, double>) {
      out[i] = std::fma(high - low, r, low);
    } else {
      const float w = std::is_same_v<T, float> ? float(high - low) : float(int32_t(high) - int32_t(low));
      if (i < blocks) {
        const float v = fmaf(w, float(r), float(low));
        if constexpr (std::is_same_v<T, float>) out[i] = v;
        else out[i] = T(std::fmin(std::fmax(std::trunc(v), std::numeric_limits<T>::min()), std::numeric_limits<T>::max()));
      } else {
        const double v = std::fma(double(w), r, double(low));
        if constexpr (std::is_same_v<T, float>) out[i] = float(v);
        else out[i] = T(int32_t(v));
      }
    }
  }
  return out;
}

// Extremes, reversed, equal, across zero, then random pairs.
template <class T>
std::vector<std::pair<T, T>> bounds_of(zt::Rng& rng) {
  using L = std::numeric_limits<T>;
  std::vector<std::pair<T, T>> b = {{L::lowest(), L::max()}, {L::max(), L::lowest()}, {T(7), T(7)}, {T(0), T(1)},
                                    {T(1), T(0)}};
  if constexpr (std::is_signed_v<T>) b.insert(b.end(), {{T(-10), T(10)}, {T(-1), T(0)}, {T(3), T(-77)}});
  if constexpr (std::is_floating_point_v<T>)
    b.insert(b.end(), {{T(-0.0), T(0.0)}, {L::denorm_min(), -L::denorm_min()}, {-L::max() / 4, L::max() / 2},
                       {T(2.5), T(-1e-30)}, {T(1e30), T(3e-3)}});
  for (int k = 0; k < 6; ++k) {
    if constexpr (std::is_integral_v<T>) b.push_back({T(rng()), T(rng())});
    else b.push_back({std::ldexp(T(int32_t(rng())) / T(1 << 30), int(rng() % 41) - 20), T(int32_t(rng())) / T(4096)});
  }
  return b;
}

template <class G, class T = ElemOf<G>>
auto* make(const G& g, T low, T high, uint32_t seed) {
  typename std::decay_t<G>::State* p = nullptr;
  EXPECT_EQ(g.init(&p, low, high, seed), ZIVK_STS_NO_ERR);
  return p;
}

TEST(RandUniform, ReferenceTwinAndRefillAtEveryLengthAndBound) {
  for_each_gen([](auto g) {
    using T = ElemOf<decltype(g)>;
    zt::Rng rng(14);
    std::vector<int> lengths = {63, 64, 65, 257, 1001};
    for (int n = 1; n <= 40; ++n) lengths.push_back(n);
    int k = 0;
    for (auto [low, high] : bounds_of<T>(rng)) {
      const uint32_t seed = k++ == 0 ? 0xFFFFFFFFu : k == 2 ? 0u : uint32_t(rng());
      auto* p = make(g, low, high, seed);
      for (int len : lengths) {
        SCOPED_TRACE(testing::Message() << sizeof(T) << "-byte low " << +low << " high " << +high << " len " << len);
        const std::vector<T> want = reference(low, high, seed, len);
        for (auto fn : {g.fill, g.fill, g.twin}) {  // the second fill finds the generator moved on
          if (fn == nullptr) continue;
          zt::Guarded<T> d(len);
          drand48();
          ASSERT_EQ(fn(d.data(), len, p), ZIVK_STS_NO_ERR);
          ASSERT_EQ(zt::first_difference(d.data(), want.data(), len), -1);
          ASSERT_TRUE(d.guards_intact());
        }
        if constexpr (std::is_integral_v<T>) {  // between the bounds; a high above 0 only from blocks
          for (int i = 0; i < len; ++i) {
            EXPECT_TRUE(want[i] >= std::min(low, high) && want[i] <= std::max(low, high)) << i;
            EXPECT_TRUE(want[i] != high || high <= low || high <= 0 || i < len / 8 * 8) << i;
          }
        }
      }
      g.release(p);
    }
  });
}

// A fill of n gives the same first elements as a longer fill wherever the same elements
// are block ones, and all n when the longer one starts its tail at the same place.
TEST(RandUniform, ShorterFillIsAPrefix) {
  for_each_gen([](auto g) {
    using T = ElemOf<decltype(g)>;
    constexpr int B = kBlock<T>;
    auto* p = make(g, T(std::is_signed_v<T> ? -100 : 3), T(120), 2024);
    std::vector<T> longest(300), a(40), b(40 + B);
    ASSERT_EQ(g.fill(longest.data(), 300, p), ZIVK_STS_NO_ERR);
    for (int n = 1; n <= 40; ++n) {
      const int same_tail = n / B * B + B - 1;
      ASSERT_EQ(g.fill(a.data(), n, p), ZIVK_STS_NO_ERR);
      ASSERT_EQ(g.fill(b.data(), same_tail, p), ZIVK_STS_NO_ERR);
      EXPECT_EQ(zt::first_difference(a.data(), longest.data(), n / B * B), -1) << n;
      EXPECT_EQ(zt::first_difference(a.data(), b.data(), n), -1) << n;
    }
    g.release(p);
  });
}

// A NaN bound comes out as itself (made quiet), and inf - inf, in the width or in the
// multiply-add, as the positive default NaN: in blocks and tail, on every backend.
TEST(RandUniform, FloatNanFollowsTheRule) {
  for_each_gen([](auto g) {
    using T = ElemOf<decltype(g)>;
    if constexpr (std::is_floating_point_v<T>) {
      using L = std::numeric_limits<T>;
      using Bits = std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>;
      auto nan = [](Bits b) { T x; memcpy(&x, &b, sizeof x); return x; };
      const Bits inf = sizeof(T) == 4 ? 0x7F800000u : 0x7FF0000000000000ull;
      const Bits quiet = inf | Bits{1} << (L::digits - 2), sign = Bits{1} << (sizeof(T) * 8 - 1);
      const std::pair<std::pair<T, T>, T> cases[] = {
          {{nan(quiet | sign | 0x5A5), T(1)}, nan(quiet | sign | 0x5A5)},
          {{T(1), nan(quiet | 0x77)}, nan(quiet | 0x77)},
          {{nan(inf | 3), T(2)}, nan(quiet | 3)},  // signalling, made quiet
          {{-L::infinity(), L::infinity()}, nan(quiet)},
          {{L::infinity(), L::infinity()}, nan(quiet)}};
      for (const auto& [bounds, expect] : cases) {
        auto* p = make(g, bounds.first, bounds.second, 5);
        for (auto fn : {g.fill, g.twin}) {
          if (fn == nullptr) continue;
          T d[11];
          ASSERT_EQ(fn(d, 11, p), ZIVK_STS_NO_ERR);
          for (int i = 0; i < 11; ++i) EXPECT_TRUE(zt::same_bits(d[i], expect)) << sizeof(T) << " " << i;
        }
        g.release(p);
      }
    }
  });
}

TEST(RandUniform, StatusesInitAndRelease) {
  for_each_gen([](auto g) {
    using T = ElemOf<decltype(g)>;
    using S = typename decltype(g)::State;
    auto& rec = zt::core_record();
    const int calls = rec.malloc_calls;
    EXPECT_EQ(g.init(nullptr, T(1), T(0), 1), ZIVK_STS_NULL_PTR_ERR);
    EXPECT_EQ(rec.malloc_calls, calls);
    S* const sentinel = reinterpret_cast<S*>(uintptr_t{0x40});
    S* p = sentinel;
    rec.fail_next = true;
    EXPECT_EQ(g.init(&p, T(1), T(0), 1), ZIVK_STS_MALLOC_ERR);
    EXPECT_EQ(p, sentinel);
    p = make(g, T(9), T(2), 77);  // kept as passed: low above high
    EXPECT_EQ(rec.last_size, int32_t(sizeof(S)));
    EXPECT_TRUE(p->low == T(9) && p->high == T(2) && p->seed == 77u);

    zt::Guarded<T> d(16);
    EXPECT_EQ(g.fill(nullptr, 16, p), ZIVK_STS_NULL_PTR_ERR);
    EXPECT_EQ(g.fill(d.data(), 16, nullptr), ZIVK_STS_NULL_PTR_ERR);
    EXPECT_EQ(g.fill(nullptr, 0, nullptr), ZIVK_STS_NULL_PTR_ERR);
    for (int32_t len : {0, -1, INT32_MIN}) EXPECT_EQ(g.fill(d.data(), len, p), ZIVK_STS_SIZE_ERR);
    EXPECT_TRUE(d.untouched());

    const int frees = rec.free_calls;
    EXPECT_EQ(g.release(p), ZIVK_STS_NO_ERR);
    EXPECT_EQ(g.release(nullptr), ZIVK_STS_NO_ERR);
    EXPECT_EQ(rec.free_calls, frees + 2);  // a null handed on as well
  });
}

}  // namespace
