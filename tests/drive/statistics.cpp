// Statistics: extremes and their positions, element-wise extremes, counting, nearest
// match, NaN replacement and zero crossings. Most members are table lines; those whose
// results carry a cheap promise (a position within the array, a value found there) are
// checked after the call.
#include <algorithm>
#include <limits>

#include "drive.h"

namespace zd {

namespace {

template <class T>
bool is_nan(T v) {
  if constexpr (std::is_floating_point<T>::value) return v != v;
  else return false;
}

// The absolute value the Abs forms work on: the most negative integer counts as the
// most positive one.
template <class T>
T saturated_abs(T v) {
  if (v >= 0) return v;
  return v == std::numeric_limits<T>::min() ? std::numeric_limits<T>::max() : T(-v);
}

// A table line whose arguments are looked at again after a call that succeeded:
// Check{}(call, len, arguments).
template <class Check, class... P, size_t... I>
void call_checked(Call& c, ZIVKStatus (*fn)(P...), const std::vector<detail::Role>& roles,
                  std::index_sequence<I...>) {
  const int32_t len = c.length();
  std::tuple<P...> args{detail::make_arg<P>(c, roles[I], len)...};
  const ZIVKStatus st = std::apply(fn, args);
  c.finish(st);
  if (st == ZIVK_STS_NO_ERR) Check{}(c, len, args);
}

template <class Check, class... P>
void call_checked(Call& c, ZIVKStatus (*fn)(P...), const char* roles) {
  const std::vector<detail::Role> parsed = detail::parse_roles(roles);
  if (parsed.size() != sizeof...(P)) fail(c.entry(), "the table line names the wrong number of roles");
  call_checked<Check>(c, fn, parsed, std::index_sequence_for<P...>{});
}

#define ZD_CHECKED(fn, check, ...) \
  zd::Entry { #fn, [](zd::Call& c) { call_checked<check>(c, &fn, #__VA_ARGS__); }, 0 }

// ---- Checks

// The value is NaN or equal to one of the elements (-0 and +0 are equal).
template <class T>
void expect_element(Call& c, const T* src, int32_t len, T v) {
  if (is_nan(v)) return;
  for (int32_t i = 0; i < len; ++i)
    if (src[i] == v) return;
  fail(c.entry(), "the result is none of the elements");
}

// Max, Min: (src, len, pVal).
struct OneElement {
  template <class T>
  void operator()(Call& c, int32_t len, const std::tuple<const T*, int32_t, T*>& a) const {
    expect_element(c, std::get<0>(a), len, *std::get<2>(a));
  }
};

// MinMax: (src, len, pMin, pMax).
struct TwoElements {
  template <class T>
  void operator()(Call& c, int32_t len, const std::tuple<const T*, int32_t, T*, T*>& a) const {
    const T lo = *std::get<2>(a), hi = *std::get<3>(a);
    expect_element(c, std::get<0>(a), len, lo);
    expect_element(c, std::get<0>(a), len, hi);
    if (hi < lo) fail(c.entry(), "the minimum is above the maximum");
  }
};

// The index lies in the array and, unless the value is NaN, holds the value (its
// saturated absolute value for the Abs forms).
template <bool kAbs, class T>
void expect_at(Call& c, const T* src, int32_t len, T v, int32_t at) {
  if (at < 0 || at >= len) fail(c.entry(), "index " + std::to_string(at) + " outside the array");
  if (is_nan(v)) return;
  const T there = kAbs ? saturated_abs(src[at]) : src[at];
  if (!(there == v)) fail(c.entry(), "the value is not the element at its index");
}

// MaxIndx, MinIndx, MaxAbsIndx, MinAbsIndx: (src, len, pVal, pIndx).
template <bool kAbs>
struct AtIndex {
  template <class T>
  void operator()(Call& c, int32_t len, const std::tuple<const T*, int32_t, T*, int32_t*>& a) const {
    expect_at<kAbs>(c, std::get<0>(a), len, *std::get<2>(a), *std::get<3>(a));
  }
};

// MinMaxIndx: (src, len, pMin, pMinIndx, pMax, pMaxIndx).
struct BothAtIndex {
  template <class T>
  void operator()(Call& c, int32_t len,
                  const std::tuple<const T*, int32_t, T*, int32_t*, T*, int32_t*>& a) const {
    expect_at<false>(c, std::get<0>(a), len, *std::get<2>(a), *std::get<3>(a));
    expect_at<false>(c, std::get<0>(a), len, *std::get<4>(a), *std::get<5>(a));
    if (*std::get<4>(a) < *std::get<2>(a)) fail(c.entry(), "the minimum is above the maximum");
  }
};

// CountInRange: (src, len, pCount, lowerBound, upperBound).
struct CountWithin {
  void operator()(Call& c, int32_t len, const std::tuple<const int32_t*, int32_t, int32_t*, int32_t, int32_t>& a) const {
    const int32_t n = *std::get<2>(a);
    if (n < 0 || n > len) fail(c.entry(), "count " + std::to_string(n) + " outside 0 .. len");
  }
};

// ReplaceNAN: (val, srcDst, len): no NaN is left unless val is one.
struct NoNaNLeft {
  template <class T>
  void operator()(Call& c, int32_t len, const std::tuple<T, T*, int32_t>& a) const {
    if (is_nan(std::get<0>(a))) return;
    for (int32_t i = 0; i < len; ++i)
      if (is_nan(std::get<1>(a)[i])) fail(c.entry(), "a NaN is left at " + std::to_string(i));
  }
};

// ---- Zero crossings
// A negative len is an unsigned count of billions of samples, which no array here
// holds: it is drawn as 0 instead. kind mostly 0 to 2, now and then just outside or
// negative.
template <class T, ZIVKStatus (*F)(const T*, int32_t, float*, int32_t)>
void zero_crossing(Call& c) {
  const int32_t len = std::max(c.length(), 0);
  const T* src = c.array<T>(len, Call::kSource);
  float* value = c.array<float>(1, Call::kWritten);
  const int32_t odd[] = {3, -1, std::numeric_limits<int32_t>::min()};
  const int32_t kind = c.in().one_in(10) ? odd[c.in().below(3)] : int32_t(c.in().below(3));
  const ZIVKStatus st = F(src, len, value, kind);
  c.finish(st);
  // A count of pairs: within 0 .. len - 1 (NaN only where a block meets a NaN sample).
  if (st == ZIVK_STS_NO_ERR && (*value < 0 || *value > float(len - 1)))
    fail(c.entry(), "count " + std::to_string(*value) + " outside 0 .. len - 1");
}

// ---- Nearest match
// The table is the caller's promise of ascending entries, so it is built here rather
// than drawn by Call::array (which records an array before it could be sorted): a block
// of exactly tableLen entries, checked unchanged after the call.
class Table {
 public:
  explicit Table(Call& c) {
    Input& in = c.in();
    len_ = in.one_in(12) ? -int32_t(in.below(2)) : 1 + int32_t(in.below(in.one_in(4) ? 3000 : 40));
    const size_t n = len_ > 0 ? size_t(len_) : 0;
    block_.reset(new Block(n * 2, 2 * in.below(32)));
    auto* t = reinterpret_cast<uint16_t*>(block_->data());
    c.fill_elements<uint16_t>(t, n);
    std::sort(t, t + n);
    copy_.assign(t, t + n);
    if (!in.one_in(40)) p_ = t;
  }
  const uint16_t* data() const { return p_; }
  int32_t len() const { return len_; }

  void expect_unchanged(Call& c) const {
    if (!std::equal(copy_.begin(), copy_.end(), reinterpret_cast<const uint16_t*>(block_->data())))
      fail(c.entry(), "wrote the table");
  }
  // The index lies in the table, holds the value, and no neighbour is nearer to v.
  void expect_nearest(Call& c, uint16_t v, uint16_t got, int32_t at) const {
    if (at < 0 || at >= len_) fail(c.entry(), "index " + std::to_string(at) + " outside the table");
    if (got != copy_[at]) fail(c.entry(), "the value is not the table entry at its index");
    const auto dist = [v](uint16_t e) { return e > v ? e - v : v - e; };
    if ((at > 0 && dist(copy_[at - 1]) < dist(got)) || (at + 1 < len_ && dist(copy_[at + 1]) < dist(got)))
      fail(c.entry(), "a neighbouring entry is nearer to " + std::to_string(v));
  }

 private:
  std::unique_ptr<Block> block_;
  std::vector<uint16_t> copy_;
  const uint16_t* p_ = nullptr;
  int32_t len_;
};

void find_nearest_one(Call& c) {
  const uint16_t val = c.scalar<uint16_t>("val");
  uint16_t* nearest = c.array<uint16_t>(1, Call::kWritten);
  int32_t* at = c.array<int32_t>(1, Call::kWritten);
  const Table table(c);
  const ZIVKStatus st = ZIVKS_FindNearestOne_16u(val, nearest, at, table.data(), table.len());
  c.finish(st);
  table.expect_unchanged(c);
  if (st == ZIVK_STS_NO_ERR) table.expect_nearest(c, val, *nearest, *at);
}

void find_nearest(Call& c) {
  const int32_t len = c.length();
  const uint16_t* src = c.array<uint16_t>(len, Call::kSource);
  uint16_t* dst = c.array<uint16_t>(len, Call::kWritten);
  int32_t* at = c.array<int32_t>(len, Call::kWritten);
  const Table table(c);
  const ZIVKStatus st = ZIVKS_FindNearest_16u(src, dst, at, len, table.data(), table.len());
  c.finish(st);
  table.expect_unchanged(c);
  if (st == ZIVK_STS_NO_ERR)
    for (int32_t i = 0; i < len; ++i) table.expect_nearest(c, src[i], dst[i], at[i]);
}

}  // namespace

void add_statistics(std::vector<Entry>& out) {
  const Entry list[] = {
      ZD_CHECKED(ZIVKS_Max_16s, OneElement, src, len, out),
      ZD_CHECKED(ZIVKS_Max_32s, OneElement, src, len, out),
      ZD_CHECKED(ZIVKS_Max_32f, OneElement, src, len, out),
      ZD_CHECKED(ZIVKS_Max_64f, OneElement, src, len, out),
      ZD_CHECKED(ZIVKS_Min_16s, OneElement, src, len, out),
      ZD_CHECKED(ZIVKS_Min_32s, OneElement, src, len, out),
      ZD_CHECKED(ZIVKS_Min_32f, OneElement, src, len, out),
      ZD_CHECKED(ZIVKS_Min_64f, OneElement, src, len, out),
      ZD_CHECKED(ZIVKS_MinMax_8u, TwoElements, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinMax_16u, TwoElements, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinMax_32u, TwoElements, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinMax_16s, TwoElements, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinMax_32s, TwoElements, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinMax_32f, TwoElements, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinMax_64f, TwoElements, src, len, out, out),
      // The absolute extremes start from seeds that need not be elements.
      ZD_CALL(ZIVKS_MaxAbs_16s, src, len, out),
      ZD_CALL(ZIVKS_MaxAbs_32s, src, len, out),
      ZD_CALL(ZIVKS_MaxAbs_32f, src, len, out),
      ZD_CALL(ZIVKS_MaxAbs_64f, src, len, out),
      ZD_CALL(ZIVKS_MinAbs_16s, src, len, out),
      ZD_CALL(ZIVKS_MinAbs_32s, src, len, out),
      ZD_CALL(ZIVKS_MinAbs_32f, src, len, out),
      ZD_CALL(ZIVKS_MinAbs_64f, src, len, out),
      ZD_CHECKED(ZIVKS_MaxIndx_16s, AtIndex<false>, src, len, out, out),
      ZD_CHECKED(ZIVKS_MaxIndx_32s, AtIndex<false>, src, len, out, out),
      ZD_CHECKED(ZIVKS_MaxIndx_32f, AtIndex<false>, src, len, out, out),
      ZD_CHECKED(ZIVKS_MaxIndx_64f, AtIndex<false>, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinIndx_16s, AtIndex<false>, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinIndx_32s, AtIndex<false>, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinIndx_32f, AtIndex<false>, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinIndx_64f, AtIndex<false>, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinMaxIndx_8u, BothAtIndex, src, len, out, out, out, out),
      ZD_CHECKED(ZIVKS_MinMaxIndx_16u, BothAtIndex, src, len, out, out, out, out),
      ZD_CHECKED(ZIVKS_MinMaxIndx_32u, BothAtIndex, src, len, out, out, out, out),
      ZD_CHECKED(ZIVKS_MinMaxIndx_16s, BothAtIndex, src, len, out, out, out, out),
      ZD_CHECKED(ZIVKS_MinMaxIndx_32s, BothAtIndex, src, len, out, out, out, out),
      ZD_CHECKED(ZIVKS_MinMaxIndx_32f, BothAtIndex, src, len, out, out, out, out),
      ZD_CHECKED(ZIVKS_MinMaxIndx_64f, BothAtIndex, src, len, out, out, out, out),
      ZD_CHECKED(ZIVKS_MaxAbsIndx_16s, AtIndex<true>, src, len, out, out),
      ZD_CHECKED(ZIVKS_MaxAbsIndx_32s, AtIndex<true>, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinAbsIndx_16s, AtIndex<true>, src, len, out, out),
      ZD_CHECKED(ZIVKS_MinAbsIndx_32s, AtIndex<true>, src, len, out, out),
      ZD_CALL(ZIVKS_MaxEvery_32f, src1, src2, dst, len),
      ZD_CALL(ZIVKS_MaxEvery_64f, src1, src2, dst, len),
      ZD_CALL(ZIVKS_MinEvery_32f, src1, src2, dst, len),
      ZD_CALL(ZIVKS_MinEvery_64f, src1, src2, dst, len),
      ZD_CALL(ZIVKS_MaxEvery_16s_I, src, srcDst, len),
      ZD_CALL(ZIVKS_MaxEvery_32s_I, src, srcDst, len),
      ZD_CALL(ZIVKS_MaxEvery_32f_I, src, srcDst, len),
      ZD_CALL(ZIVKS_MaxEvery_64f_I, src, srcDst, len),
      ZD_CALL(ZIVKS_MinEvery_16s_I, src, srcDst, len),
      ZD_CALL(ZIVKS_MinEvery_32s_I, src, srcDst, len),
      ZD_CALL(ZIVKS_MinEvery_32f_I, src, srcDst, len),
      ZD_CALL(ZIVKS_MinEvery_64f_I, src, srcDst, len),
      ZD_CHECKED(ZIVKS_CountInRange_32s, CountWithin, src, len, out, lowerBound, upperBound),
      {"ZIVKS_FindNearestOne_16u", find_nearest_one, 0},
      {"ZIVKS_FindNearest_16u", find_nearest, 0},
      ZD_CHECKED(ZIVKS_ReplaceNAN_32f_I, NoNaNLeft, val, srcDst, len),
      ZD_CHECKED(ZIVKS_ReplaceNAN_64f_I, NoNaNLeft, val, srcDst, len),
      {"ZIVKS_ZeroCrossing_16s32f", zero_crossing<int16_t, ZIVKS_ZeroCrossing_16s32f>, 0},
      {"ZIVKS_ZeroCrossing_32f", zero_crossing<float, ZIVKS_ZeroCrossing_32f>, 0},
  };
  out.insert(out.end(), std::begin(list), std::end(list));
}

}  // namespace zd
