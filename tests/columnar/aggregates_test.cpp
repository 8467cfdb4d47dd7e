// AggMax_* and AggMin_*: the extreme of a column with its null rows skipped.
#include <cfloat>
#include <cmath>
#include <limits>

#include "columnar_support.h"

namespace {

using I128 = __int128;
using Dec = ZIVKDecimal128;
constexpr uint64_t kSign = 0x8000000000000000ull;
const I128 kBound = static_cast<I128>(0x4B3B4CA85A86C47Aull) << 64 | 0x098A223FFFFFFFFFull;  // 10^38 - 1
const int8_t kClean[32] = {};  // a null vector without a flag

template <class T>
using AggFn = ZIVKStatus (*)(const T*, int32_t, const int8_t*, T*);
template <class T>
struct Agg {
  AggFn<T> fn[2], twin[2];  // [0] AggMax, [1] AggMin
};
#define ZT_AGG(code) \
  {{ZIVKS_AggMax_##code, ZIVKS_AggMin_##code}, {ZT_TWIN(ZIVKS_AggMax_##code), ZT_TWIN(ZIVKS_AggMin_##code)}}

I128 value(const Dec& d) {
  const I128 m = static_cast<I128>((static_cast<unsigned __int128>(d.hi & ~kSign) << 64) | d.lo);
  return d.hi & kSign ? -m : m;
}
Dec record(I128 v) {
  const auto m = static_cast<unsigned __int128>(v < 0 ? -v : v);
  return {static_cast<uint64_t>(m), static_cast<uint64_t>(m >> 64) | (v < 0 ? kSign : 0)};
}

using testing::PrintToString;

// One call, status 0.
template <class T>
T agg(AggFn<T> fn, const std::vector<T>& src, const int8_t* nulls) {
  T r{};
  EXPECT_EQ(fn(src.data(), static_cast<int32_t>(src.size()), nulls, &r), ZIVK_STS_NO_ERR);
  return r;
}

// The walk of the folding rules: blocks of 8, clean when none of their 8 flags is set,
// then the tail rows.
template <class C, class R, class Tl>
void walk(int len, const ct::NullVec& nv, C clean, R row, Tl tail) {
  int i = 0;
  for (; i + 8 <= len; i += 8) {
    bool mixed = false;
    for (int k = i; k < i + 8; ++k) mixed |= nv.null(k);
    for (int k = i; mixed && k < i + 8; ++k)
      if (!nv.null(k)) row(k);
    if (!mixed) clean(i);
  }
  for (; i < len; ++i)
    if (!nv.null(i)) tail(i);
}

// Integers and decimals: the plain extreme of the rows that are not null and of the
// start, the bound with a null vector and row 0 without.
template <class T, class V, class Val, class Rec>
T plain_fold(bool max, const T* s, int len, const ct::NullVec& nv, V least, V most, Val val, Rec rec) {
  V r = nv.absent ? val(s[0]) : max ? least : most;
  for (int i = 0; i < len; ++i)
    if (!nv.null(i)) r = max ? std::max(r, val(s[i])) : std::min(r, val(s[i]));
  return rec(r);
}

// 64f with a null vector: a mixed block's row keeps r only if r is strictly better; a
// tail row or a clean block's extreme (NaN-propagating, +0 above -0) replaces r unless
// it is strictly worse. The payload of a clean block's NaN is fixed only when the block
// holds a single quiet NaN: `loose` says that the result may be any NaN.
std::pair<double, bool> rule_64f(bool max, const double* s, int len, const ct::NullVec& nv) {
  double r = max ? -DBL_MAX : DBL_MAX;
  bool loose = false;
  const auto tail = [&](double x) {
    if (!(max ? x < r : x > r)) r = x;
    loose = false;
  };
  const auto ext = [max](double a, double b) {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) ? a : b;
    if (a == b) return std::signbit(a) == max ? b : a;
    return max == (a > b) ? a : b;
  };
  const auto clean = [&](int i) {
    double b = s[i];
    int nans = std::isnan(b);
    for (int k = 1; k < 8; ++k) nans += std::isnan(s[i + k]), b = ext(b, s[i + k]);
    tail(b);
    uint64_t bits;
    memcpy(&bits, &b, 8);
    loose = std::isnan(b) && (nans > 1 || !(bits & 0x0008000000000000ull));
  };
  const auto row = [&](int i) {
    if (!(max ? r > s[i] : r < s[i])) r = s[i];
    loose = false;
  };
  walk(len, nv, clean, row, [&](int i) { tail(s[i]); });
  return {r, loose};
}

// bool: rows fold raw bytes; with a null vector a clean block gives 1 or 0, which
// AggMax puts in place of r and AggMin folds by the minimum. Without one the result is
// 1 or 0, and AggMin counts the bytes of the first len & ~15 rows by their lowest bit.
uint8_t rule_bool(bool max, const uint8_t* s, int len, const ct::NullVec& nv) {
  uint8_t r = !max;
  if (nv.absent) {
    for (int i = 0; i < len; ++i) r = max ? r || s[i] : r && (i < (len & ~15) ? s[i] & 1 : s[i] != 0);
    return r;
  }
  const auto row = [&](int i) { r = max ? std::max(r, s[i]) : std::min(r, s[i]); };
  const auto clean = [&](int i) {
    bool any = false, all = true;
    for (int k = i; k < i + 8; ++k) any |= s[k] != 0, all &= s[k] != 0;
    r = max ? any : std::min<uint8_t>(r, all);
  };
  walk(len, nv, clean, row, row);
  return r;
}

// Random columns of every length and null density against want(max, src, len, nulls),
// AggMax and AggMin, and the generic build bit for bit.
template <class T, class Fill, class Want>
void check_rule(const Agg<T>& a, Fill fill, Want want) {
  ct::for_each_column([&](int len, const ct::NullVec& nv, zt::Rng& rng) {
    std::vector<T> src(len);
    fill(src.data(), len, rng);
    for (int m = 0; m < 2; ++m) {
      SCOPED_TRACE(m ? "AggMin" : "AggMax");
      zt::Guarded<T> dst(1), alt(1);
      ASSERT_EQ(a.fn[m](src.data(), len, nv.ptr(), dst.data()), ZIVK_STS_NO_ERR);
      ASSERT_TRUE(dst.guards_intact());
      const std::pair<T, bool> w = want(m == 0, src.data(), len, nv);
      if constexpr (std::is_floating_point_v<T>)
        if (w.second) {
          ASSERT_TRUE(std::isnan(dst[0])) << PrintToString(dst[0]);
          continue;
        }
      ASSERT_TRUE(zt::same_bits(dst[0], w.first)) << PrintToString(dst[0]) << " for " << PrintToString(w.first);
      if (a.twin[m]) {
        ASSERT_EQ(a.twin[m](src.data(), len, nv.ptr(), alt.data()), ZIVK_STS_NO_ERR);
        ASSERT_TRUE(zt::same_bits(dst[0], alt[0])) << "generic build differs";
      }
    }
  });
}

// Integers: extremes, small values and ties often. Without a null vector 16s and 32s
// are the plain extreme, status and all.
template <class T>
void check_integers(const Agg<T>& a, ZIVKStatus (*plain_max)(const T*, int32_t, T*), decltype(plain_max) plain_min) {
  const auto fill = [](T* p, int n, zt::Rng& rng) {
    zt::fill_random(p, n, rng);
    const T picks[] = {std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), 0, -1, 1};
    for (int i = 0; i < n; ++i) p[i] = rng() % 4 ? p[i] : picks[rng() % 5];
  };
  check_rule(a, fill, [&](bool max, const T* s, int len, const ct::NullVec& nv) {
    const auto same = [](T v) { return v; };
    const T w = plain_fold(max, s, len, nv, std::numeric_limits<T>::min(), std::numeric_limits<T>::max(), same, same);
    T plain = w;
    if (plain_max && nv.absent) {
      EXPECT_EQ((max ? plain_max : plain_min)(s, len, &plain), ZIVK_STS_NO_ERR);
    }
    return std::make_pair(plain, false);
  });
}

TEST(AggFixed, Statuses) {
  for (const auto fn : {ZIVKS_AggMax_16s, ZIVKS_AggMin_16s}) ct::expect_row_statuses<int16_t, int16_t>(fn);
  for (const auto fn : {ZIVKS_AggMax_32s, ZIVKS_AggMin_32s}) ct::expect_row_statuses<int32_t, int32_t>(fn);
  for (const auto fn : {ZIVKS_AggMax_64s, ZIVKS_AggMin_64s}) ct::expect_row_statuses<int64_t, int64_t>(fn);
  for (const auto fn : {ZIVKS_AggMax_64f, ZIVKS_AggMin_64f}) ct::expect_row_statuses<double, double>(fn);
  for (const auto fn : {ZIVKS_AggMax_decimal128, ZIVKS_AggMin_decimal128}) ct::expect_row_statuses<Dec, Dec>(fn);
  for (const auto fn : {ZIVKS_AggMax_bool, ZIVKS_AggMin_bool}) ct::expect_row_statuses<uint8_t, uint8_t>(fn);
}

TEST(AggFixed, IntegersFollowTheRule) {
  check_integers<int16_t>(ZT_AGG(16s), ZIVKS_Max_16s, ZIVKS_Min_16s);
  check_integers<int32_t>(ZT_AGG(32s), ZIVKS_Max_32s, ZIVKS_Min_32s);
  check_integers<int64_t>(ZT_AGG(64s), nullptr, nullptr);
  const int8_t null_flag = 1;
  EXPECT_EQ(agg<int32_t>(ZIVKS_AggMax_32s, {7}, &null_flag), INT32_MIN);
}

TEST(AggFixed, Float64FollowsTheRule) {
  const auto want = [](bool max, const double* s, int len, const ct::NullVec& nv) {
    if (!nv.absent) return rule_64f(max, s, len, nv);
    double plain = 0;  // without a null vector: the plain extreme, status and all
    EXPECT_EQ((max ? ZIVKS_Max_64f : ZIVKS_Min_64f)(s, len, &plain), ZIVK_STS_NO_ERR);
    return std::make_pair(plain, false);
  };
  check_rule<double>(ZT_AGG(64f), zt::fill_random<double>, want);
}

// One quiet NaN in every position of two blocks and a tail, the blocks clean or mixed,
// among zeros of both signs, alone or with small values.
TEST(AggFixed, Float64NanAndZerosInEveryPosition) {
  zt::Rng rng(5);
  for (int layout = 0; layout < 8; ++layout)
    for (int p = 0; p < 20; ++p)
      for (bool max : {true, false}) {
        ct::NullVec nv{std::vector<int8_t>(20, 0), false};
        if (layout & 1) nv.flags[(p + 1) % 8] = 1;      // block 0 mixed
        if (layout & 2) nv.flags[8 + (p + 3) % 8] = 1;  // block 1 mixed
        double s[20];
        for (double& x : s) x = layout & 4 || rng() % 3 ? (rng() % 2 ? -0.0 : 0.0) : static_cast<double>(rng() % 7) - 3;
        s[p] = std::nan("");
        double got = 0;
        ASSERT_EQ((max ? ZIVKS_AggMax_64f : ZIVKS_AggMin_64f)(s, 20, nv.flags.data(), &got), ZIVK_STS_NO_ERR);
        ASSERT_TRUE(zt::same_bits(got, rule_64f(max, s, 20, nv).first)) << layout << " NaN at " << p << ": " << got;
        if ((layout & 3) == 0) {  // a NaN survives only as the last unit folded
          ASSERT_EQ(std::isnan(got), p == 19) << p;
        }
      }
  // Within a clean block +0 ranks above -0; elsewhere the later zero stays.
  const std::vector<double> z{-0.0, 0.0, -0.0, -0.0, -0.0, -0.0, -0.0, -0.0};
  const int8_t mixed[8] = {0, 0, 0, 0, 0, 0, 0, 1};
  EXPECT_TRUE(zt::same_bits(agg(ZIVKS_AggMax_64f, z, kClean), 0.0));
  EXPECT_TRUE(zt::same_bits(agg<double>(ZIVKS_AggMin_64f, {0.0, 0.0, -0.0, 0.0, 0.0, 0.0, 0.0, 0.0}, kClean), -0.0));
  EXPECT_TRUE(zt::same_bits(agg(ZIVKS_AggMax_64f, z, mixed), -0.0));
  EXPECT_TRUE(zt::same_bits(agg<double>(ZIVKS_AggMin_64f, {0.0, -0.0}, kClean), -0.0));
  // The bounds are finite: an infinity never beats them, but wins without a null vector.
  EXPECT_EQ(agg<double>(ZIVKS_AggMax_64f, {-INFINITY, -INFINITY}, kClean), -DBL_MAX);
  EXPECT_EQ(agg<double>(ZIVKS_AggMin_64f, {INFINITY}, kClean), DBL_MAX);
  EXPECT_EQ(agg<double>(ZIVKS_AggMax_64f, {-INFINITY, -INFINITY}, nullptr), -INFINITY);
}

TEST(AggFixed, Decimal128FollowsTheRule) {
  const auto fill = [](Dec* p, int n, zt::Rng& rng) {
    for (int i = 0; i < n; ++i) {
      const int kind = static_cast<int>(rng() % 4);
      const auto any = static_cast<unsigned __int128>(rng()) << 64 | rng();
      p[i] = record(kind == 0 ? I128(rng() % 4)                      // zeros and ties
                    : kind == 1 ? kBound - I128(rng() % 3) + 1       // at the bound or one beyond
                    : kind == 2 ? static_cast<I128>(any >> 1)        // anything
                                : I128(rng() % 1000));
      if (rng() % 2) p[i].hi |= kSign;  // negative, or a negative zero
    }
  };
  check_rule<Dec>(ZT_AGG(decimal128), fill, [](bool max, const Dec* s, int len, const ct::NullVec& nv) {
    return std::make_pair(plain_fold(max, s, len, nv, -kBound, kBound, value, record), false);
  });
  const auto is = [](const Dec& d, uint64_t hi, uint64_t lo) { return d.hi == hi && d.lo == lo; };
  EXPECT_TRUE(is(agg<Dec>(ZIVKS_AggMax_decimal128, {{5, 0}, {7, kSign}}, nullptr), 0, 5));
  EXPECT_TRUE(is(agg<Dec>(ZIVKS_AggMin_decimal128, {{5, 0}, {7, kSign}}, nullptr), kSign, 7));
  EXPECT_TRUE(is(agg<Dec>(ZIVKS_AggMax_decimal128, {{0, kSign}, {0, kSign}}, kClean), 0, 0));
  EXPECT_TRUE(is(agg<Dec>(ZIVKS_AggMin_decimal128, {{0, kSign}}, nullptr), 0, 0));
  // Beyond the range: loses to the bound with a null vector, wins without one.
  const std::vector<Dec> beyond{record(-kBound - 1), record(-kBound - 9)};
  EXPECT_TRUE(is(agg(ZIVKS_AggMax_decimal128, beyond, kClean), 0x4B3B4CA85A86C47Aull | kSign, 0x098A223FFFFFFFFFull));
  EXPECT_TRUE(value(agg(ZIVKS_AggMax_decimal128, beyond, nullptr)) == -kBound - 1);
}

TEST(AggFixed, BoolFollowsTheRule) {
  const auto fill = [](uint8_t* p, int n, zt::Rng& rng) {
    const uint64_t zero_in = 1 + rng() % 16;  // mostly false, mostly true or mixed columns
    const uint8_t odd[] = {1, 2, 3, 0x80, 0xFF};
    for (int i = 0; i < n; ++i) p[i] = rng() % zero_in == 0 ? 0 : rng() % 4 ? 1 : odd[rng() % 5];
  };
  check_rule<uint8_t>(ZT_AGG(bool), fill, [](bool max, const uint8_t* s, int len, const ct::NullVec& nv) {
    return std::make_pair(rule_bool(max, s, len, nv), false);
  });
  std::vector<uint8_t> b(16, 0);
  std::fill(b.begin(), b.begin() + 8, 1);
  EXPECT_EQ(agg(ZIVKS_AggMax_bool, b, kClean), 0);  // a later clean block of false replaces the true
  b.push_back(1);
  EXPECT_EQ(agg(ZIVKS_AggMax_bool, b, kClean), 1);
  const int8_t mixed[8] = {0, 0, 0, 0, 0, 0, 0, 1};
  EXPECT_EQ(agg<uint8_t>(ZIVKS_AggMax_bool, {1, 7, 1, 1, 1, 1, 1, 1}, mixed), 7);  // a raw byte
  EXPECT_EQ(agg<uint8_t>(ZIVKS_AggMax_bool, {1, 7, 1, 1, 1, 1, 1, 1}, kClean), 1);
  EXPECT_EQ(agg(ZIVKS_AggMin_bool, std::vector<uint8_t>(16, 2), nullptr), 0);
  EXPECT_EQ(agg(ZIVKS_AggMin_bool, std::vector<uint8_t>(15, 2), nullptr), 1);
}

// ---- varchar

using Text = std::vector<uint8_t>;
using VarFn = decltype(&ZIVKS_AggMax_varchar);

TEST(AggVarchar, Statuses) {
  for (const VarFn fn : {ZIVKS_AggMax_varchar, ZIVKS_AggMin_varchar})
    ct::expect_statuses(4, [fn](int k, int32_t len) {
      static const uint8_t src[8] = {1, 2, 3};
      static const int32_t offsets[17] = {};
      zt::Guarded<uint8_t> dst(8);
      zt::Guarded<int32_t> n(1);
      const ZIVKStatus st = fn(k == 0 ? nullptr : src, k == 1 ? nullptr : offsets, len, k == 2 ? nullptr : dst.data(),
                               k == 3 ? nullptr : n.data());
      return std::make_pair(st, dst.untouched() && n.untouched());
    });
}

// fn over the rows gives want in *dstLen and dst, with nothing written past it.
void expect_text(VarFn fn, const std::vector<Text>& rows, const Text& want) {
  Text src;
  std::vector<int32_t> offsets{0};
  size_t longest = 0;
  for (const Text& t : rows) {
    src.insert(src.end(), t.begin(), t.end());
    offsets.push_back(static_cast<int32_t>(src.size()));
    longest = std::max(longest, t.size());
  }
  src.push_back(0);  // a valid pointer for a column of empty rows
  zt::Guarded<uint8_t> dst(longest);
  int32_t n = -1;
  ASSERT_EQ(fn(src.data(), offsets.data(), static_cast<int32_t>(rows.size()), dst.data(), &n), ZIVK_STS_NO_ERR);
  ASSERT_EQ(n, static_cast<int32_t>(want.size()));
  ASSERT_TRUE(dst.untouched_outside(0, want.size()));
  ASSERT_EQ(Text(dst.data(), dst.data() + n), want);
}

// Byte order, unsigned bytes, a proper prefix below the longer text, over columns of
// short texts from a small alphabet (many prefixes, ties and empty rows); the generic
// build agrees.
TEST(AggVarchar, ByteOrder) {
  zt::Rng rng(9);
  const uint8_t alphabet[] = {0x00, 0x61, 0x62, 0x7F, 0x80, 0xFF};
  const VarFn fns[] = {ZIVKS_AggMax_varchar, ZIVKS_AggMin_varchar, ZT_TWIN(ZIVKS_AggMax_varchar),
                       ZT_TWIN(ZIVKS_AggMin_varchar)};
  for (int len : zt::test_lengths()) {
    std::vector<Text> rows(len);
    for (Text& t : rows) {
      t.resize(rng() % 5 == 0 ? 0 : rng() % 6);
      for (auto& b : t) b = alphabet[rng() % (len % 3 ? 6 : 2)];
    }
    SCOPED_TRACE(len);
    const Text most = *std::max_element(rows.begin(), rows.end()), least = *std::min_element(rows.begin(), rows.end());
    for (int f = 0; f < 4; ++f)
      if (fns[f]) expect_text(fns[f], rows, f % 2 ? least : most);
  }
  const Text ab{'a', 'b'}, abc{'a', 'b', 'c'}, none{}, lo{0x7F}, hi{0x80};
  expect_text(ZIVKS_AggMax_varchar, {ab, abc}, abc);
  expect_text(ZIVKS_AggMin_varchar, {abc, ab}, ab);
  expect_text(ZIVKS_AggMax_varchar, {none, ab, none, abc}, abc);
  expect_text(ZIVKS_AggMin_varchar, {ab, none, abc}, none);
  expect_text(ZIVKS_AggMax_varchar, {none, none}, none);  // *dstLen 0, dst untouched
  expect_text(ZIVKS_AggMax_varchar, {lo, hi, lo}, hi);
  expect_text(ZIVKS_AggMin_varchar, {hi, lo, hi}, lo);
}

}  // namespace
