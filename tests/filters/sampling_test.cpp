// Up- and down-sampling: every member against the definition over factors, phases and
// lengths, a stream cut into blocks, and the statuses with their order.
#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "support/zt.h"

namespace {

template <class E>
using SampleFn = ZIVKStatus (*)(const E*, int32_t, E*, int32_t*, int32_t, int32_t*);

template <class E>
struct Sampler {
  std::string name;
  SampleFn<E> up, down, up_twin, down_twin;
};

// dst[phase + i * factor] = src[i], every other element a zero of all-clear bits.
template <class E>
std::vector<E> up_rule(const E* src, int len, int factor, int phase) {
  std::vector<E> out(static_cast<size_t>(len) * factor);
  memset(static_cast<void*>(out.data()), 0, out.size() * sizeof(E));
  for (int i = 0; i < len; ++i) out[phase + static_cast<size_t>(i) * factor] = src[i];
  return out;
}

// dst[k] = src[phase + k * factor] below len; the new phase is where the next kept sample
// of the stream lies, counted from the start of the next block.
template <class E>
std::vector<E> down_rule(const E* src, int len, int factor, int phase, int32_t* next) {
  std::vector<E> out;
  int64_t at = phase;
  for (; at < len; at += factor) out.push_back(src[at]);
  *next = static_cast<int32_t>(at - len);
  return out;
}

// n elements that end where a page without access begins, so that a read past them faults.
template <class E>
E* at_page_end(size_t n) {
  static const size_t page = sysconf(_SC_PAGESIZE), room = 16 * page;
  static uint8_t* const base = [] {
    void* p = mmap(nullptr, room + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return p == MAP_FAILED || mprotect(static_cast<uint8_t*>(p) + room, page, PROT_NONE) ? nullptr
                                                                                           : static_cast<uint8_t*>(p);
  }();
  return n * sizeof(E) <= room && base ? reinterpret_cast<E*>(base + room - n * sizeof(E)) : nullptr;
}

// Over factors, phases and lengths crossing every block, bit for bit (NaN payloads too),
// in the native and the generic build; sources end at a page boundary, so a read past
// srcLen faults.
template <class E>
void follows_rule(const Sampler<E>& m) {
  zt::Rng rng(std::hash<std::string>()(m.name));
  std::vector<int> lengths = zt::test_lengths();
  lengths.push_back(1001);
  for (int factor : {1, 2, 3, 4, 5, 8, 17}) {
    for (int phase = 0; phase < factor; ++phase) {
      for (int len : lengths) {
        SCOPED_TRACE(m.name + " factor " + std::to_string(factor) + " phase " + std::to_string(phase) + " len " +
                     std::to_string(len));
        E* const src = at_page_end<E>(len);
        ASSERT_NE(src, nullptr);
        zt::fill_random(src, len, rng);
        int32_t next = -1;
        const std::vector<E> up = up_rule(src, len, factor, phase), down = down_rule(src, len, factor, phase, &next);
        for (int twin = 0; twin < 2 && (m.up_twin || !twin); ++twin) {
          zt::Guarded<E> du(up.size(), (rng() % 2) * alignof(E)), dd(down.size());
          int32_t nu = -7, nd = -7, pu = phase, pd = phase;
          ASSERT_EQ((twin ? m.up_twin : m.up)(src, len, du.data(), &nu, factor, &pu), 0) << twin;
          ASSERT_EQ((twin ? m.down_twin : m.down)(src, len, dd.data(), &nd, factor, &pd), 0) << twin;
          ASSERT_TRUE(nu == len * factor && pu == phase) << "SampleUp leaves the phase " << twin;
          ASSERT_TRUE(nd == static_cast<int32_t>(down.size()) && pd == next) << "SampleDown " << pd << " " << twin;
          ASSERT_EQ(zt::first_difference(du.data(), up.data(), up.size()), -1) << "SampleUp " << twin;
          ASSERT_EQ(zt::first_difference(dd.data(), down.data(), down.size()), -1) << "SampleDown " << twin;
          ASSERT_TRUE(du.guards_intact() && dd.guards_intact()) << twin;
        }
      }
    }
  }
}

// A signal cut into blocks of random sizes (many shorter than the factor): SampleDown
// with one phase variable carried through the calls gives, joined, what one call on the
// whole signal gives; SampleUp of the blocks joined is SampleUp of the whole.
template <class E>
void streams(const Sampler<E>& m) {
  zt::Rng rng(7);
  const int total = 3000;
  std::vector<E> sig(total);
  zt::fill_random(sig.data(), total, rng);
  for (int factor : {1, 2, 3, 4, 5, 17, 100}) {
    for (int phase0 : {0, factor / 2, factor - 1}) {
      SCOPED_TRACE(m.name + " factor " + std::to_string(factor) + " phase " + std::to_string(phase0));
      std::vector<E> out(static_cast<size_t>(total) * factor);
      // Both directions on sig[at, at + len), the outputs appended to down and up.
      auto run = [&](int at, int len, int32_t* phase, std::vector<E>& down, std::vector<E>& up) {
        int32_t n = -1, up_phase = phase0;
        ASSERT_EQ(m.down(sig.data() + at, len, out.data(), &n, factor, phase), 0);
        down.insert(down.end(), out.begin(), out.begin() + n);
        ASSERT_EQ(m.up(sig.data() + at, len, out.data(), &n, factor, &up_phase), 0);
        up.insert(up.end(), out.begin(), out.begin() + n);
      };
      std::vector<E> down, up, joined_down, joined_up;
      int32_t phase = phase0;
      run(0, total, &phase, down, up);
      phase = phase0;
      for (int at = 0, len; at < total; at += len) {
        len = std::min(total - at, 1 + static_cast<int>(rng() % (rng() % 2 ? 40 : 3)));
        run(at, len, &phase, joined_down, joined_up);
      }
      ASSERT_TRUE(joined_down.size() == down.size() && joined_up.size() == up.size());
      EXPECT_EQ(zt::first_difference(joined_down.data(), down.data(), down.size()), -1);
      EXPECT_EQ(zt::first_difference(joined_up.data(), up.data(), up.size()), -1);
    }
  }
}

// Each refused call writes nothing: not dst, not *dstLen, not *phase.
template <class E>
void statuses(const Sampler<E>& m) {
  SCOPED_TRACE(m.name);
  E src[4] = {};
  zt::Guarded<E> d(8);
  for (SampleFn<E> fn : {m.up, m.down}) {
    // null: which pointer is null (1 src, 2 dst, 3 dstLen, 4 phase).
    auto call = [&](int null, int32_t len, int32_t factor, int32_t phase) {
      int32_t n = -5, p = phase;
      const ZIVKStatus st = fn(null == 1 ? nullptr : src, len, null == 2 ? nullptr : d.data(),
                               null == 3 ? nullptr : &n, factor, null == 4 ? nullptr : &p);
      EXPECT_TRUE(n == -5 && p == phase) << "written on status " << st;
      return st;
    };
    // Pointers first, then srcLen, factor and phase, each before the next.
    for (int null = 1; null <= 4; ++null) EXPECT_EQ(call(null, 0, 0, -1), ZIVK_STS_NULL_PTR_ERR) << null;
    for (int32_t len : {0, -1, INT32_MIN}) EXPECT_EQ(call(0, len, 0, -1), ZIVK_STS_SIZE_ERR);
    for (int32_t f : {0, -1, INT32_MIN}) EXPECT_EQ(call(0, 2, f, -1), ZIVK_STS_SAMPLE_FACTOR_ERR);
    for (int32_t p : {-1, 3, 4, INT32_MIN, INT32_MAX}) EXPECT_EQ(call(0, 2, 3, p), ZIVK_STS_SAMPLE_PHASE_ERR) << p;
    EXPECT_EQ(call(0, 2, 1, 1), ZIVK_STS_SAMPLE_PHASE_ERR);
    EXPECT_EQ(call(0, 2, 1073741823, -1), ZIVK_STS_SAMPLE_PHASE_ERR);  // before the size test
  }
  // SampleUp refuses 2147483647 / srcLen <= factor, the pair whose product just fits
  // included, before it writes anything: the arrays are far shorter than srcLen says.
  for (auto [len, factor] : {std::pair{2, 1073741823}, {1, INT32_MAX}, {1073741824, 1}, {INT32_MAX, 1}, {46341, 46340}}) {
    int32_t n = -5, p = 0;
    EXPECT_EQ(m.up(src, len, d.data(), &n, factor, &p), ZIVK_STS_SAMPLE_FACTOR_ERR) << len << " " << factor;
    EXPECT_EQ(n, -5);
  }
  EXPECT_TRUE(d.untouched());

  // SampleDown has no such test: its count is made in 64 bits.
  int32_t n = -5, p = 0;
  ASSERT_EQ(m.down(src, 2, d.data(), &n, 1073741823, &p), 0);
  EXPECT_TRUE(n == 1 && p == 1073741821 && zt::same_bits(d[0], src[0]));
  n = -5, p = INT32_MAX - 1;
  ASSERT_EQ(m.down(src, 4, d.data(), &n, INT32_MAX, &p), 0);
  EXPECT_EQ(n, 0);
  EXPECT_EQ(p, -7);  // the new phase is made in 32 bits: phase + factor wraps
  EXPECT_TRUE(d.untouched_outside(0, 1));
}

#define ZT_MEMBER(T, E)                                                                   \
  Sampler<E> { #T, ZIVKS_SampleUp_##T, ZIVKS_SampleDown_##T, ZT_TWIN(ZIVKS_SampleUp_##T), \
               ZT_TWIN(ZIVKS_SampleDown_##T) }
#define ZT_ALL(check)                                                                               \
  check(ZT_MEMBER(16s, int16_t)), check(ZT_MEMBER(32f, float)), check(ZT_MEMBER(64f, double)),      \
      check(ZT_MEMBER(16sc, ZIVK16sc)), check(ZT_MEMBER(32fc, ZIVK32fc)), check(ZT_MEMBER(64fc, ZIVK64fc))

TEST(Sampling, EveryMemberFollowsTheDefinition) { ZT_ALL(follows_rule); }
TEST(Sampling, AStreamInBlocksEqualsOneCall) { ZT_ALL(streams); }
TEST(Sampling, StatusesInOrderAndNothingWrittenOnError) { ZT_ALL(statuses); }

}  // namespace
