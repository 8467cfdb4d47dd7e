// The member sweep: what every exported function shares, checked in one place. A family
// test describes each member (how to call it, its rule as an oracle, its parameters) and
// keeps only its own special cases; the sweep checks
//   - statuses in order: null pointers first, then len < 1, then the family's own
//     parameters, and nothing written after an error;
//   - over lengths crossing every block boundary, misaligned and guarded buffers:
//     the rule, nothing written outside the output, the in-place form and a call whose
//     dst is its first source equal to the out-of-place call, each element equal to its
//     own call of length 1 (where block and tail agree), and the generic twin equal bit
//     for bit.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/zt.h"

namespace zt {

// What a twin call returns where there is no twin (the native backend is the generic one).
constexpr ZIVKStatus kNoTwin = -1;

// A call of fn or of its generic twin, written with the sweep's names: a and b the
// sources, p the family's parameter, d the output, n the length.
#define ZT_CALL(fn, ...)                                                                    \
  [](bool twin_, auto a, auto b, auto p, auto d, int32_t n) -> ZIVKStatus {                 \
    (void)a, (void)b, (void)p, (void)d;                                                     \
    auto f_ = twin_ ? ZT_TWIN(fn) : &fn;                                                    \
    return f_ ? f_(__VA_ARGS__) : ::zt::kNoTwin;                                            \
  }

template <class S, class D = S, class P = int>
struct Member {
  using Call = std::function<ZIVKStatus(bool twin, const S* a, const S* b, P p, D* d, int32_t n)>;
  std::string name;
  Call call;
  // The in-place form: d holds srcDst on entry, a copy of b (two sources) or of a.
  Call in_place = nullptr;
  int sources = 1;  // arrays read; with two, the in-place form overwrites the second
  // The whole expected output of a call (null: no rule checked here).
  std::function<void(const S* a, const S* b, P p, int32_t n, D* want)> rule = nullptr;
  std::vector<P> params{P{}};                  // valid parameters, each swept
  std::vector<std::pair<P, ZIVKStatus>> bad;   // refused parameters and their status
  int per = 1;                                 // array elements per counted element
  std::function<int32_t(int32_t)> out_len = [](int32_t n) { return n; };
  bool alone = true;             // an element's result does not depend on where it lies
  bool nullable_sources = false;  // a null source has a meaning of its own
  bool overlap = true;           // dst may be the first source (element-wise members)
  std::function<bool(const D&, const D&)> same = [](const D& x, const D& y) { return same_bits(x, y); };
  // Source values for a call with parameter p.
  std::function<void(S*, size_t, const P&, Rng&)> fill = [](S* s, size_t k, const P&, Rng& r) { fill_random(s, k, r); };
  std::vector<int> lengths = test_lengths();
};

// An element-wise rule from the rule of one element.
template <class S, class D, class P, class F>
auto each(F f) {
  return [f](const S* a, const S* b, P p, int32_t n, D* want) {
    for (int32_t i = 0; i < n; ++i) want[i] = f(a[i], b ? b[i] : S{}, p, i, n);
  };
}

template <class S, class D, class P>
void check_statuses(const Member<S, D, P>& m) {
  SCOPED_TRACE(m.name);
  Rng rng(1);
  Guarded<S> a(4 * m.per), b(4 * m.per);
  Guarded<D> d(m.per * m.out_len(4));
  m.fill(a.data(), 4 * m.per, m.params[0], rng);
  m.fill(b.data(), 4 * m.per, m.params[0], rng);
  const S* b2 = m.sources == 2 ? b.data() : nullptr;
  std::vector<std::pair<P, ZIVKStatus>> cases = m.bad;
  cases.insert(cases.begin(), {m.params[0], ZIVK_STS_NO_ERR});
  for (const auto* call : {&m.call, &m.in_place}) {
    const auto& fn = *call;
    if (!fn) continue;
    const bool in_place = call == &m.in_place;
    for (const auto& [p, status] : cases) {
      for (int32_t n : {4, 0, -1}) {
        if (!m.nullable_sources && (m.sources == 2 || !in_place)) {
          EXPECT_EQ(fn(false, nullptr, b2, p, d.data(), n), ZIVK_STS_NULL_PTR_ERR) << n;
        }
        if (!m.nullable_sources && m.sources == 2 && !in_place) {
          EXPECT_EQ(fn(false, a.data(), nullptr, p, d.data(), n), ZIVK_STS_NULL_PTR_ERR) << n;
        }
        EXPECT_EQ(fn(false, a.data(), b2, p, nullptr, n), ZIVK_STS_NULL_PTR_ERR) << n;
      }
      for (int32_t n : {0, -1, INT32_MIN}) EXPECT_EQ(fn(false, a.data(), b2, p, d.data(), n), ZIVK_STS_SIZE_ERR);
      if (status) {
        EXPECT_EQ(fn(false, a.data(), b2, p, d.data(), 4), status) << ::testing::PrintToString(p);
      }
    }
    EXPECT_TRUE(d.untouched()) << (in_place ? "in place" : "");
  }
}

template <class S, class D, class P>
void check_sweep(const Member<S, D, P>& m) {
  Rng rng(std::hash<std::string>()(m.name));
  for (const P& p : m.params) {
    for (int len : m.lengths) {
      SCOPED_TRACE(m.name + " len " + std::to_string(len) + " param " + ::testing::PrintToString(p));
      const size_t k = static_cast<size_t>(len) * m.per, out = static_cast<size_t>(m.out_len(len)) * m.per;
      const size_t mis_s = (rng() % 2) * alignof(S), mis_d = (rng() % 2) * alignof(D);
      Guarded<S> a(k, mis_s), b(k, alignof(S) - mis_s);
      Guarded<D> d(out, mis_d), t(out), ip(out, mis_d);
      m.fill(a.data(), k, p, rng);
      m.fill(b.data(), k, p, rng);
      const S* b2 = m.sources == 2 ? b.data() : nullptr;
      ASSERT_EQ(m.call(false, a.data(), b2, p, d.data(), len), 0);
      ASSERT_TRUE(d.guards_intact());
      if (m.rule) {
        std::vector<D> want(out);
        m.rule(a.data(), b2, p, len, want.data());
        for (size_t i = 0; i < out; ++i)
          ASSERT_TRUE(m.same(d[i], want[i])) << "at " << i << ": got " << ::testing::PrintToString(d[i])
                                             << ", want " << ::testing::PrintToString(want[i]);
      }
      const ZIVKStatus tw = m.call(true, a.data(), b2, p, t.data(), len);
      if (tw != kNoTwin) {
        ASSERT_EQ(tw, 0);
        ASSERT_EQ(first_difference(t.data(), d.data(), out), -1) << "generic backend";
      }
      if constexpr (std::is_same_v<S, D>) {
        if (m.in_place) {
          memcpy(static_cast<void*>(ip.data()), m.sources == 2 ? b2 : a.data(), k * sizeof(S));
          ASSERT_EQ(m.in_place(false, a.data(), b2, p, ip.data(), len), 0);
          ASSERT_EQ(first_difference(ip.data(), d.data(), out), -1) << "in place";
          ASSERT_TRUE(ip.guards_intact()) << "in place";
        }
        if (m.overlap && out == k) {
          memcpy(static_cast<void*>(ip.data()), a.data(), k * sizeof(S));
          ASSERT_EQ(m.call(false, ip.data(), b2, p, ip.data(), len), 0);
          ASSERT_EQ(first_difference(ip.data(), d.data(), out), -1) << "dst equal to the first source";
        }
      }
      if (m.alone) {
        Guarded<D> one(m.per);
        for (int i = 0; i < len; i += 1 + len / 9) {
          const size_t at = static_cast<size_t>(i) * m.per;
          ASSERT_EQ(m.call(false, a.data() + at, b2 ? b2 + at : nullptr, p, one.data(), 1), 0);
          ASSERT_EQ(first_difference(one.data(), d.data() + at, m.per), -1) << "element " << i << " alone";
        }
      }
    }
  }
}

template <class S, class D, class P>
void check_member(const Member<S, D, P>& m) {
  check_statuses(m);
  check_sweep(m);
}

// n values of any kind (special floats, any bits), for the constant forms.
template <class T>
std::vector<T> samples(int n, uint64_t seed) {
  Rng rng(seed);
  std::vector<T> v(n);
  fill_random(v.data(), v.size(), rng);
  return v;
}

}  // namespace zt
