// TopKInit, TopK and TopKRelease: the k largest keys of a strided column, largest first.
#include <cfloat>

#include "sort_support.h"

namespace {

template <class T>
struct Family {
  using Key = T;
  const char* name;
  ZIVKStatus (*init)(int32_t, T*, int32_t*, int32_t, int32_t, uint8_t**);
  ZIVKStatus (*run)(const T*, int32_t, int32_t, int32_t, T*, int32_t*, int32_t, int32_t, uint8_t*);
  decltype(run) twin;
  int32_t counter_bytes;  // what method 2 adds to len * 16
  int32_t max_len2;       // the longest len method 2 makes a buffer for
  uint32_t least;         // the bits of the preset value
};

const Family<int32_t> k32s{"32s", ZIVKS_TopKInit_32s, ZIVKS_TopK_32s, ZT_TWIN(ZIVKS_TopK_32s), 1024, 0x07FFFFBE,
                           0x80000000u};
const Family<float> k32f{"32f", ZIVKS_TopKInit_32f, ZIVKS_TopK_32f, ZT_TWIN(ZIVKS_TopK_32f), 2048, 0x07FFFF7E,
                         0xFF7FFFFFu};

template <class F>
void for_both(F f) {
  f(k32s);
  f(k32f);
}

int auto_method(int32_t len, int32_t k) { return std::min(len, k) > 32 && len >= 2049 && len <= 0x7FFFFFF ? 2 : 1; }

// The keys read: the stride decimates a span of len * 4 bytes.
int32_t gathered(int32_t len, int32_t stride) {
  return stride <= 4 ? len : static_cast<int32_t>((int64_t{len} * 4 + stride - 1) / stride);
}

template <class T>
bool holds_presets(const T* val, const int32_t* idx, int32_t from, int32_t k, uint32_t least) {
  for (int32_t j = from; j < k; ++j)
    if (zt::bits(val[j]) != least || idx[j] != -1) return false;
  return true;
}

TEST(TopKInit, StatusesSizesAndPresets) {
  for_both([](const auto& f) {
    SCOPED_TRACE(f.name);
    auto& r = zt::core_record();
    uint8_t marker = 0;
    uint8_t *const untouched = &marker, *p = untouched;
    zt::Guarded<zt::KeyOf<decltype(f)>> val(2049);
    zt::Guarded<int32_t> idx(2049);
    auto init = [&](int32_t len, int32_t k, int32_t m) { return f.init(len, val.data(), idx.data(), k, m, &p); };
    auto nothing_done = [&] { return p == untouched && val.untouched() && idx.untouched(); };
    r = {};
    // Pointers, then k and len, then the method, then the size; none presets or allocates.
    for (int w = 0; w < 3; ++w) {
      EXPECT_EQ(f.init(0, zt::unless(w, 0, val.data()), zt::unless(w, 1, idx.data()), 0, 9, zt::unless(w, 2, &p)),
                ZIVK_STS_NULL_PTR_ERR);
    }
    for (auto [len, k] : {std::pair{0, 5}, {5, 0}, {-1, 5}, {5, INT32_MIN}}) {
      EXPECT_EQ(init(len, k, 9), ZIVK_STS_SIZE_ERR) << len << " " << k;
    }
    for (int32_t m : {3, -1, INT32_MIN, INT32_MAX}) EXPECT_EQ(init(INT32_MAX, 5, m), ZIVK_STS_TOPK_METHOD_ERR);
    // Method 1 up to 0x0FFFFFFD keys; method 2, and the automatic rule that picks it up to
    // 0x7FFFFFF keys without falling back to method 1, up to max_len2.
    for (auto [len, k, method] : {std::tuple{0x0FFFFFFE, 5, 1}, {INT32_MAX, 5, 1}, {f.max_len2 + 1, 5, 2},
                                  {INT32_MAX, 5, 2}, {f.max_len2 + 1, 33, 0}, {0x7FFFFFF, 33, 0}}) {
      EXPECT_EQ(init(len, k, method), ZIVK_STS_BUFFER_SIZE_ERR) << len << " " << k << " " << method;
    }
    EXPECT_TRUE(nothing_done() && r.malloc_calls == 0);
    // The largest buffers there are, asked for and refused here, and the automatic rule at
    // its upper end: k 32 or len 0x8000000 take method 1.
    for (auto [len, k, method, size] : {std::tuple{0x0FFFFFFD, 5, 1, 0x7FFFFFF0}, {f.max_len2, 5, 2, 0x7FFFFFE0},
                                        {f.max_len2, 33, 0, 0x7FFFFFE0}, {0x7FFFFFF, 32, 0, 0x40000000},
                                        {0x8000000, 33, 0, 0x40000000}}) {
      r = {};
      r.fail_next = true;
      EXPECT_EQ(init(len, k, method), ZIVK_STS_MALLOC_ERR) << len << " " << k << " " << method;
      EXPECT_TRUE(r.malloc_calls == 1 && r.last_size == size && nothing_done()) << len << " " << k << " " << method;
    }
    // Sizes by the method the rule settles, rounded up to 16; exactly k entries preset.
    for (int32_t len : {1, 2, 3, 32, 33, 100, 2048, 2049, 2050, 4001}) {
      for (int32_t k : {1, 32, 33, 2049}) {
        for (int32_t method : {0, 1, 2}) {
          SCOPED_TRACE(zt::says("len", len, "k", k, "method", method));
          val.fill_pattern();
          idx.fill_pattern();
          r = {};
          ASSERT_EQ(init(len, k, method), ZIVK_STS_NO_ERR);
          const int64_t bytes = (method ? method : auto_method(len, k)) == 1 ? int64_t{len} * 8
                                                                             : int64_t{len} * 16 + f.counter_bytes;
          EXPECT_EQ(r.last_size, (bytes + 15) / 16 * 16);
          EXPECT_TRUE(holds_presets(val.data(), idx.data(), 0, k, f.least) && val.untouched_outside(0, k) &&
                      idx.untouched_outside(0, k));
          memset(p, 0x5A, r.last_size);
          EXPECT_EQ(ZIVKS_TopKRelease(p), ZIVK_STS_NO_ERR);
          EXPECT_EQ(r.free_calls, 1);
          p = untouched;
        }
      }
    }
    r = {};
    EXPECT_EQ(ZIVKS_TopKRelease(nullptr), ZIVK_STS_NO_ERR);
    EXPECT_EQ(r.free_calls, 1);
    r = {};
  });
}

TEST(TopK, StatusesInOrder) {
  for_both([](const auto& f) {
    using T = zt::KeyOf<decltype(f)>;
    SCOPED_TRACE(f.name);
    T keys[16] = {T(9)};
    zt::Guarded<T> val(4);
    zt::Guarded<int32_t> idx(4);
    uint8_t* policy = nullptr;
    ASSERT_EQ(f.init(16, val.data(), idx.data(), 4, 2, &policy), ZIVK_STS_NO_ERR);
    val.fill_pattern();
    idx.fill_pattern();
    T* v = val.data();
    int32_t* i = idx.data();
    auto run = [&](int32_t offset, int32_t stride, int32_t len, int32_t k, int32_t method) {
      return f.run(keys, offset, stride, len, v, i, k, method, policy);
    };
    // Pointers first, whatever else is wrong.
    for (int w = 0; w < 4; ++w) {
      EXPECT_EQ(f.run(zt::unless(w, 2, keys), -1, 0, 0, zt::unless(w, 3, v), zt::unless(w, 1, i), 0, 9,
                      zt::unless(w, 0, policy)),
                ZIVK_STS_NULL_PTR_ERR);
    }
    // The offset and the span, ahead of the stride; the stride, even when len and k are
    // also bad; then len and k; then the method.
    for (int32_t offset : {-1, INT32_MIN}) EXPECT_EQ(run(offset, 0, 4, 4, 9), ZIVK_STS_SIZE_ERR);
    EXPECT_EQ(run(INT32_MAX, 0, 1, 4, 9), ZIVK_STS_SIZE_ERR);
    EXPECT_EQ(run(INT32_MAX - 3, 4, 4, 4, 1), ZIVK_STS_SIZE_ERR);
    for (int32_t stride : {0, -1, INT32_MIN}) {
      for (auto [len, k] : {std::pair{4, 4}, {0, 4}, {4, 0}, {-5, -5}}) {
        EXPECT_EQ(run(0, stride, len, k, 9), ZIVK_STS_TOPK_STRIDE_ERR) << len << " " << k;
      }
    }
    for (auto [len, k] : {std::pair{0, 4}, {4, 0}, {-1, 4}, {4, INT32_MIN}}) {
      EXPECT_EQ(run(0, 4, len, k, 9), ZIVK_STS_SIZE_ERR) << len << " " << k;
    }
    for (int32_t method : {3, -1, INT32_MIN}) EXPECT_EQ(run(0, 4, 4, 4, method), ZIVK_STS_TOPK_METHOD_ERR);
    EXPECT_TRUE(val.untouched() && idx.untouched());
    // The last offset a span fits: one key, reported at the offset; nothing else written.
    for (int32_t method : {1, 2}) {
      EXPECT_EQ(run(INT32_MAX - 1, 4, 1, 4, method), ZIVK_STS_NO_ERR);
      EXPECT_TRUE(v[0] == T(9) && i[0] == INT32_MAX - 1);
      EXPECT_TRUE(val.untouched_outside(0, 1) && idx.untouched_outside(0, 1));
    }
    ZIVKS_TopKRelease(policy);
  });
}

// ---- the rules as a brute-force model

template <class T>
struct Entry {
  T v;
  int32_t pos;
};

template <class T>
struct Expected {
  std::vector<Entry<T>> out;  // the entries written, positions without the offset
  std::vector<bool> part;     // which places may be reported (zero places included)
  int32_t n;                  // keys gathered
  bool exact;                 // the order is fixed by the rules: method 2, or no equal keys
};

template <class T>
Expected<T> model(const uint8_t* src, int32_t stride, int32_t len, int32_t k, int method) {
  constexpr bool kFloat = zt::kFloat<T>;
  if (method == 0) method = auto_method(len, k);
  const int32_t n = gathered(len, stride);
  std::vector<Entry<T>> e(n);
  int32_t c = 0;
  for (int32_t i = 0; i < n; ++i) {
    memcpy(&e[i].v, src + int64_t{i} * stride, sizeof(T));
    e[i].pos = i;
    if (kFloat && (zt::bits(e[i].v) & 0x7F800000u) == 0x7F800000u) std::swap(e[i], e[c++]);
  }
  // Non-finite keys are swapped, as they are read, into a block at the front, which then
  // goes to the end, swapping the finite entries it displaces; of it, only the first +inf
  // and the first -inf take part.
  for (int32_t j = c - 1; j >= 0; --j) std::swap(e[j], e[n - c + j]);
  std::vector<Entry<T>> part(e.begin(), e.begin() + (n - c));
  bool seen[2] = {false, false};
  for (int32_t j = n - c; j < n; ++j) {
    if (!std::isinf(static_cast<double>(e[j].v))) continue;
    if (!seen[e[j].v < 0]) part.push_back(e[j]);
    seen[e[j].v < 0] = true;
  }
  const int32_t left_out = n - static_cast<int32_t>(part.size());
  // Method 2 ranks floats as the radix index sorts do: +0.0 above -0.0.
  auto above = [&](const Entry<T>& a, const Entry<T>& b) {
    return kFloat && method == 2 ? zt::order_key(a.v) > zt::order_key(b.v) : a.v > b.v;
  };
  std::stable_sort(part.begin(), part.end(), above);  // ties in gathered order
  Expected<T> x;
  x.n = n;
  x.exact = method == 2 ||
            std::adjacent_find(part.begin(), part.end(), [&](auto& a, auto& b) { return !above(a, b); }) == part.end();
  x.part.assign(len, false);
  for (const auto& p : part) x.part[p.pos] = true;
  for (int32_t i = n; i < len; ++i) x.part[i] = true;
  // Zero places at their rank: after the leading entries that are not negative (32f
  // method 1: -0.0 is not negative; method 2: those with the sign clear).
  size_t lead = 0;
  while (lead < part.size() && (kFloat && method == 2 ? !std::signbit(part[lead].v) : !(part[lead].v < 0))) ++lead;
  x.out.assign(part.begin(), part.begin() + lead);
  for (int32_t i = n; i < len; ++i) x.out.push_back({T(0), i});
  x.out.insert(x.out.end(), part.begin() + lead, part.end());
  x.out.resize(std::min<int64_t>(k, len - left_out));
  return x;
}

// Keys of five kinds: any (32f: every special value); distinct; distinct among NaNs and
// repeated infinities (32f); few values, with both zeros and non-finite keys (32f); and
// finite ties spread over every top byte (32s) or exponent (32f). Float keys are mostly
// negative, so that the largest k reach past the sign-clear ones.
constexpr int kKinds = 5;

template <class T>
T make_key(int kind, int32_t i, const std::vector<int32_t>& perm, zt::Rng& rng) {
  if constexpr (std::is_same_v<T, int32_t>) {
    if (kind == 0) return static_cast<int32_t>(rng());
    if (kind <= 2) return static_cast<int32_t>((perm[i] + 12345u) * 0x9E3779B1u);
    if (kind == 3) return static_cast<int32_t>(rng() % 5) - 2;
    return (static_cast<int32_t>(rng() % 50) - 25) * 0x3000000 + static_cast<int32_t>(rng() % 3);
  } else {
    if (kind == 0) return zt::special_float<float>(rng);
    const float nf[] = {NAN, -NAN, INFINITY, -INFINITY};
    if ((kind == 2 || kind == 3) && rng() % 8 == 0) return nf[rng() % 4];
    if (kind <= 2) return (perm[i] - static_cast<int32_t>(perm.size() * 7 / 8)) * 0.75f;
    const float pool[] = {-1.5f, -0.0f, 0.0f, 2.0f, 7.0f};
    if (kind == 3 || rng() % 16 == 0) return pool[rng() % 5];
    return std::ldexp(1.0f + (rng() % 4) / 4.0f, static_cast<int>(rng() % 200) - 100) * (rng() % 8 ? -1.0f : 1.0f);
  }
}

// One Init and one TopK call against the model; the generic twin where the result is
// fixed. For method 1 with equal keys only what is promised: the right values (without
// zero places to weave), each with a position that holds it, no position twice.
template <class T>
void check_case(const Family<T>& f, int kind, int32_t stride, int32_t len, int32_t k, int32_t method,
                int32_t offset, zt::Rng& rng) {
  const int32_t n = gathered(len, stride);
  std::vector<int32_t> perm(n);
  std::iota(perm.begin(), perm.end(), 0);
  std::shuffle(perm.begin(), perm.end(), rng);
  std::vector<T> keys(n);
  for (int32_t i = 0; i < n; ++i) keys[i] = make_key<T>(kind, i, perm, rng);
  const zt::Strided<T> col(keys, stride, rng, size_t(len) * 4);  // strides below 4 overlap keys
  const uint8_t* src = col.buf.data();

  zt::Guarded<T> val(k);
  zt::Guarded<int32_t> idx(k);
  uint8_t* policy = nullptr;
  ASSERT_EQ(f.init(len, val.data(), idx.data(), k, method, &policy), ZIVK_STS_NO_ERR);
  ASSERT_EQ(f.run(col.src(), offset, stride, len, val.data(), idx.data(), k, method, policy), ZIVK_STS_NO_ERR);
  ASSERT_TRUE(val.guards_intact() && idx.guards_intact());
  ASSERT_TRUE(col.unchanged()) << "keys written";

  const Expected<T> x = model<T>(src, stride, len, k, method);
  const int32_t m = static_cast<int32_t>(x.out.size());
  ASSERT_TRUE(holds_presets(val.data(), idx.data(), m, k, f.least)) << "written past " << m;
  if (x.exact) {
    for (int32_t j = 0; j < m; ++j) {
      ASSERT_TRUE(zt::same_bits(val[j], x.out[j].v) && idx[j] == x.out[j].pos + offset)
          << "at " << j << ": got " << val[j] << " at " << idx[j] - offset << ", want " << x.out[j].v << " at "
          << x.out[j].pos;
    }
  } else {
    std::vector<bool> used(len, false);
    for (int32_t j = 0; j < m; ++j) {
      const int64_t at = int64_t{idx[j]} - offset;
      ASSERT_TRUE(at >= 0 && at < len && x.part[at] && !used[at]) << "at " << j << ": position " << at;
      used[at] = true;
      T key = T(0);
      if (at < x.n) memcpy(&key, src + at * stride, sizeof key);
      ASSERT_TRUE(zt::same_bits(val[j], key)) << "at " << j << ": " << val[j] << " is not the key at " << at;
    }
    if (x.n == len) {
      std::vector<T> got(val.data(), val.data() + m), want(m);
      for (int32_t j = 0; j < m; ++j) want[j] = x.out[j].v;
      std::sort(got.begin(), got.end());
      std::sort(want.begin(), want.end());
      ASSERT_TRUE(got == want) << "not the largest values";
    }
  }
  if (f.twin && x.exact) {
    zt::Guarded<T> tv(k);
    zt::Guarded<int32_t> ti(k);
    for (int32_t j = 0; j < k; ++j) tv[j] = zt::from_bits<T>(f.least), ti[j] = -1;
    ASSERT_EQ(f.twin(col.src(), offset, stride, len, tv.data(), ti.data(), k, method, policy), ZIVK_STS_NO_ERR);
    ASSERT_EQ(zt::first_difference(tv.data(), val.data(), k), -1) << "generic backend";
    ASSERT_EQ(zt::first_difference(ti.data(), idx.data(), k), -1) << "generic backend";
  }
  ZIVKS_TopKRelease(policy);
}

// Lengths across the blocks, strides that overlap keys (below 4) and that decimate the
// span (above 4), k from 1 to above len, offsets up to the last that fits, every method;
// then long columns, where the radix selection may narrow the field by a sample.
template <class T>
void sweep(const Family<T>& f, const std::vector<int>& lengths, const std::vector<int32_t>& methods,
           const std::vector<int32_t>& strides, int rounds) {
  zt::Rng rng(std::hash<std::string>()(f.name) + lengths.size());
  for (int32_t len : lengths) {
    for (int kind = 0; kind < kKinds; ++kind) {
      for (int32_t method : methods) {
        for (int round = 0; round < rounds; ++round) {
          const int32_t ks[] = {1, 2, 33, len / 4 + 1, len / 2 + 1, len, len + 3, 500};
          const int32_t stride = strides[rng() % strides.size()], k = ks[rng() % 8];
          const int32_t offset = rng() % 4 ? static_cast<int32_t>(rng() % 1000) : INT32_MAX - len;
          SCOPED_TRACE(zt::says(f.name, "len", len, "kind", kind, "method", method, "stride", stride, "k", k, "offset",
                                offset));
          check_case<T>(f, kind, stride, len, k, method, offset, rng);
          if (::testing::Test::HasFatalFailure()) return;
        }
      }
    }
  }
}

TEST(TopK, LargestFirstAgainstTheRules) {
  for_both([](const auto& f) {
    std::vector<int> lengths = zt::test_lengths();
    for (int n : {1000, 2049, 3001}) lengths.push_back(n);
    sweep(f, lengths, {0, 1, 2}, {4, 4, 1, 2, 3, 5, 8, 12, 13}, 1);
  });
}

TEST(TopK, RadixSelectionOfLongColumns) {
  for_both([](const auto& f) { sweep(f, {8191, 8192, 8197, 16399, 40000}, {0, 2}, {4, 4, 4, 3, 8, 13}, 6); });
}

// The cases stated outright, independent of the model.
template <class T>
std::pair<std::vector<T>, std::vector<int32_t>> top(const Family<T>& f, const std::vector<T>& keys, int32_t stride,
                                                    int32_t len, int32_t k, int32_t method) {
  std::vector<T> val(k);
  std::vector<int32_t> idx(k);
  uint8_t* policy = nullptr;
  EXPECT_EQ(f.init(len, val.data(), idx.data(), k, method, &policy), ZIVK_STS_NO_ERR);
  EXPECT_EQ(f.run(keys.data(), 0, stride, len, val.data(), idx.data(), k, method, policy), ZIVK_STS_NO_ERR);
  ZIVKS_TopKRelease(policy);
  return {val, idx};
}

TEST(TopK, ZeroPlacesInfinitiesAndTies) {
  using VI = std::vector<int32_t>;
  using VF = std::vector<float>;
  const float inf = INFINITY, least = -FLT_MAX;
  for (int32_t method : {1, 2}) {
    SCOPED_TRACE(method);
    // Stride 8 over a span of 8 keys reads 4; the key 0 and the four zero places stand
    // together, and the last value is the -1.
    EXPECT_EQ(top(k32s, {5, 111, -1, 111, 7, 111, 0, 111}, 8, 8, 8, method),
              std::make_pair(VI{7, 5, 0, 0, 0, 0, 0, -1}, VI{2, 0, 3, 4, 5, 6, 7, 1}));
    // One +inf of three, at place 0; NaNs left out; the entries past len - c keep the presets.
    EXPECT_EQ(top(k32f, {1.0f, inf, NAN, 2.0f, inf, -inf, inf, -NAN}, 4, 8, 8, method),
              std::make_pair(VF{inf, 2.0f, 1.0f, -inf, least, least, least, least}, VI{1, 3, 0, 5, -1, -1, -1, -1}));
  }
  // Method 2: +0.0 above -0.0, ties lowest position first...
  EXPECT_EQ(top(k32f, {-0.0f, 0.0f, 1.0f, -0.0f, 1.0f}, 4, 5, 5, 2).second, (VI{2, 4, 1, 0, 3}));
  EXPECT_EQ(top(k32s, {3, 1, 3, 3, 1}, 4, 5, 4, 2).second, (VI{0, 2, 3, 1}));
  // ...except where gathering has swapped a non-finite key forward past equal keys.
  EXPECT_EQ(top(k32f, {1.0f, NAN, 1.0f}, 4, 3, 3, 2), std::make_pair(VF{1.0f, 1.0f, least}, VI{2, 0, -1}));
}

}  // namespace
