// Column kernels: hashes of fixed-width, decimal and text columns with null vectors,
// CombineHash, and the aggregates. Null vectors, decimal records and text columns are
// built by the entries (runs of clean and mixed blocks, values around the decimal bounds,
// valid offsets with ties and prefixes), not taken as raw bytes.
#include <algorithm>
#include <string>

#include "drive.h"

namespace zd {

namespace {

// A source array whose contents the entry chooses, in an exact block like Call::array's,
// checked unchanged after the call. Null about once in `null_one_in` calls.
template <class T>
class Chosen {
 public:
  Chosen(Call& c, std::vector<T> v, uint32_t null_one_in = 40)
      : null_(c.in().one_in(null_one_in)),
        block_(v.size() * sizeof(T), alignof(T) * c.in().below(64 / alignof(T))),
        init_(std::move(v)) {
    if (!init_.empty()) memcpy(block_.data(), init_.data(), block_.size());
  }
  const T* get() const { return null_ ? nullptr : reinterpret_cast<const T*>(block_.data()); }
  void source(Call& c) const {
    if (block_.size() && memcmp(block_.data(), init_.data(), block_.size()))
      fail(c.entry(), "wrote a source array");
  }

 private:
  bool null_;
  Block block_;
  std::vector<T> init_;
};

// ---- Built contents

// A null vector (null in a third of the calls): no row null, a few, half, or all.
std::vector<int8_t> null_flags(Call& c, int32_t len) {
  std::vector<int8_t> f(size_t(std::max(len, 0)));
  const uint32_t kind = c.in().below(4);
  for (int8_t& v : f) {
    const bool null = kind == 3 || (kind == 1 && c.in().one_in(16)) || (kind == 2 && c.in().one_in(2));
    if (null) v = pick(c, {int8_t(1), int8_t(-1), int8_t(-128), int8_t(2)});
  }
  return f;
}

constexpr uint64_t kSign = 1ull << 63;

// Decimal records: raw bits, small values of both signs (negative zero among them),
// magnitudes at and just past 10^38 - 1, and wide low words.
std::vector<ZIVKDecimal128> decimals(Call& c, int32_t len) {
  std::vector<ZIVKDecimal128> v(size_t(std::max(len, 0)));
  for (ZIVKDecimal128& d : v) {
    switch (c.in().below(8)) {
      case 0:
      case 1:
        d.lo = c.in().take<uint64_t>();
        d.hi = c.in().take<uint64_t>();
        continue;
      case 2:  // 10^38 - 1 and 10^38
        d = {0x098A223FFFFFFFFFull + c.in().below(2), 0x4B3B4CA85A86C47Aull};
        break;
      case 3:
        d = {c.in().take<uint64_t>(), c.in().below(3)};
        break;
      default:
        d = {c.in().below(9), 0};
    }
    if (c.in().one_in(2)) d.hi |= kSign;
  }
  return v;
}

__int128 signed_value(const ZIVKDecimal128& d) {
  const __int128 mag = __int128((unsigned __int128)(d.hi & ~kSign) << 64 | d.lo);
  return d.hi & kSign ? -mag : mag;
}

// The rows of a fixed-width column: decimals built, others drawn by Call::array.
template <class T>
struct Rows {
  std::unique_ptr<Chosen<T>> own;
  const T* ptr;
  Rows(Call& c, int32_t len) {
    if constexpr (std::is_same<T, ZIVKDecimal128>::value) {
      own.reset(new Chosen<T>(c, decimals(c, len)));
      ptr = own->get();
    } else {
      ptr = c.array<T>(len, Call::kSource);
    }
  }
  void check(Call& c) const {
    if (own) own->source(c);
  }
};

// A text column: valid offsets (rising, the first not always 0) over a byte buffer whose
// size is exactly the last offset. Rows are short texts of two letters (ties, prefixes,
// empty rows), raw bytes of any length to 100, or lengths around the 32-byte stripe.
struct Column {
  std::vector<uint8_t> bytes;
  std::vector<int32_t> offsets;
  int32_t longest = 0;
  std::string row(int32_t i) const {
    return std::string(bytes.begin() + offsets[size_t(i)], bytes.begin() + offsets[size_t(i) + 1]);
  }
};

Column column(Call& c, int32_t len) {
  Column col;
  if (len < 0) return col;
  const uint32_t kind = c.in().below(4);
  col.offsets.push_back(int32_t(c.in().below(4)));
  for (int32_t i = 0; i < len; ++i) {
    const int32_t n = int32_t(kind < 2 ? c.in().below(5) : kind == 2 ? c.in().below(101) : 28 + c.in().below(9));
    col.offsets.push_back(col.offsets.back() + n);
    col.longest = std::max(col.longest, n);
  }
  col.bytes.resize(size_t(col.offsets.back()));
  for (uint8_t& b : col.bytes) b = kind < 2 ? uint8_t('a' + c.in().below(2)) : c.in().byte();
  return col;
}

// ---- Entries

// A hash leaves the entry of a null row as it was.
void null_rows_kept(Call& c, const int8_t* nulls, int32_t len, const std::vector<uint64_t>& before,
                    const uint64_t* dst) {
  if (nulls)
    for (int32_t i = 0; i < len; ++i)
      if (nulls[i] && dst[i] != before[size_t(i)]) fail(c.entry(), "wrote the hash of a null row");
}

template <class T>
void hash(Call& c, ZIVKStatus (*fn)(const T*, int32_t, const int8_t*, uint64_t*)) {
  const int32_t len = c.length();
  const Rows<T> src(c, len);
  const Chosen<int8_t> nulls(c, null_flags(c, len), 3);
  uint64_t* dst = c.array<uint64_t>(len, Call::kWritten);
  const std::vector<uint64_t> before(dst, dst && len > 0 ? dst + len : dst);
  const ZIVKStatus s = fn(src.ptr, len, nulls.get(), dst);
  src.check(c);
  nulls.source(c);
  if (!is_error(s)) null_rows_kept(c, nulls.get(), len, before, dst);
  c.finish(s);
}

void hash_varchar(Call& c) {
  const int32_t len = c.length();
  const Column col = column(c, len);
  const Chosen<uint8_t> src(c, col.bytes);
  const Chosen<int32_t> offsets(c, col.offsets);
  const Chosen<int8_t> nulls(c, null_flags(c, len), 3);
  uint64_t* dst = c.array<uint64_t>(len, Call::kWritten);
  const std::vector<uint64_t> before(dst, dst && len > 0 ? dst + len : dst);
  const ZIVKStatus s = ZIVKS_Hash_varchar(src.get(), offsets.get(), len, nulls.get(), dst);
  src.source(c);
  offsets.source(c);
  nulls.source(c);
  if (!is_error(s)) null_rows_kept(c, nulls.get(), len, before, dst);
  c.finish(s);
}

template <class T, bool Max>
void aggregate(Call& c, ZIVKStatus (*fn)(const T*, int32_t, const int8_t*, T*)) {
  const int32_t len = c.length();
  const Rows<T> src(c, len);
  const Chosen<int8_t> nulls(c, null_flags(c, len), 3);
  T* dst = c.array<T>(1, Call::kWritten);
  const ZIVKStatus s = fn(src.ptr, len, nulls.get(), dst);
  src.check(c);
  nulls.source(c);
  if (!is_error(s)) {
    // The result is not beaten by a row that takes part. Decimal rows beyond the bounds
    // lose to the start value when there is a null vector, so decimals are checked
    // without one; the float and bool forms have folding rules of their own.
    for (int32_t i = 0; i < len; ++i) {
      if (nulls.get() && nulls.get()[i]) continue;
      bool beaten = false;
      if constexpr (std::is_same<T, ZIVKDecimal128>::value) {
        if (!nulls.get())
          beaten = Max ? signed_value(src.ptr[i]) > signed_value(*dst) : signed_value(src.ptr[i]) < signed_value(*dst);
      } else if constexpr (std::is_signed<T>::value && std::is_integral<T>::value) {
        beaten = Max ? src.ptr[i] > *dst : src.ptr[i] < *dst;
      }
      if (beaten) fail(c.entry(), "a row beyond the result");
    }
    if constexpr (std::is_same<T, ZIVKDecimal128>::value)
      if (dst->lo == 0 && dst->hi == kSign) fail(c.entry(), "a zero result with its sign set");
  }
  c.finish(s);
}

template <bool Max>
void aggregate_varchar(Call& c, ZIVKStatus (*fn)(const uint8_t*, const int32_t*, int32_t, uint8_t*, int32_t*)) {
  const int32_t len = c.length();
  const Column col = column(c, len);
  const Chosen<uint8_t> src(c, col.bytes);
  const Chosen<int32_t> offsets(c, col.offsets);
  uint8_t* dst = c.array<uint8_t>(col.longest, Call::kWritten);
  int32_t* dstLen = c.array<int32_t>(1, Call::kWritten);
  const ZIVKStatus s = fn(src.get(), offsets.get(), len, dst, dstLen);
  src.source(c);
  offsets.source(c);
  if (!is_error(s)) {
    // The result is one of the rows, and no row lies beyond it in byte order.
    if (*dstLen < 0 || *dstLen > col.longest) fail(c.entry(), "*dstLen is no row's length");
    const std::string best(dst, dst + *dstLen);
    bool found = false;
    for (int32_t i = 0; i < len; ++i) {
      const std::string r = col.row(i);
      if (Max ? r > best : r < best) fail(c.entry(), "a row beyond the result");
      found |= r == best;
    }
    if (!found) fail(c.entry(), "the result is none of the rows");
  }
  c.finish(s);
}

}  // namespace

void add_columnar(std::vector<Entry>& out) {
#define ZD_HASH(fn, T) \
  {#fn, [](Call& c) { hash<T>(c, fn); }, 0}
#define ZD_AGG(fn, T, max) \
  {#fn, [](Call& c) { aggregate<T, max>(c, fn); }, 0}
  const Entry list[] = {
      ZD_HASH(ZIVKS_Hash_16s, int16_t),
      ZD_HASH(ZIVKS_Hash_32s, int32_t),
      ZD_HASH(ZIVKS_Hash_64s, int64_t),
      ZD_HASH(ZIVKS_Hash_64f, double),
      ZD_HASH(ZIVKS_Hash_bool, uint8_t),
      ZD_CALL(ZIVKS_CombineHash, src1, src2, len, dst),
      ZD_HASH(ZIVKS_Hash_decimal64, int64_t),
      ZD_HASH(ZIVKS_Hash_decimal128, ZIVKDecimal128),
      {"ZIVKS_Hash_varchar", hash_varchar, 0},
      ZD_AGG(ZIVKS_AggMax_16s, int16_t, true),
      ZD_AGG(ZIVKS_AggMax_32s, int32_t, true),
      ZD_AGG(ZIVKS_AggMax_64s, int64_t, true),
      ZD_AGG(ZIVKS_AggMax_64f, double, true),
      ZD_AGG(ZIVKS_AggMax_decimal128, ZIVKDecimal128, true),
      ZD_AGG(ZIVKS_AggMax_bool, uint8_t, true),
      ZD_AGG(ZIVKS_AggMin_16s, int16_t, false),
      ZD_AGG(ZIVKS_AggMin_32s, int32_t, false),
      ZD_AGG(ZIVKS_AggMin_64s, int64_t, false),
      ZD_AGG(ZIVKS_AggMin_64f, double, false),
      ZD_AGG(ZIVKS_AggMin_decimal128, ZIVKDecimal128, false),
      ZD_AGG(ZIVKS_AggMin_bool, uint8_t, false),
      {"ZIVKS_AggMax_varchar", [](Call& c) { aggregate_varchar<true>(c, ZIVKS_AggMax_varchar); }, 0},
      {"ZIVKS_AggMin_varchar", [](Call& c) { aggregate_varchar<false>(c, ZIVKS_AggMin_varchar); }, 0},
  };
#undef ZD_HASH
#undef ZD_AGG
  out.insert(out.end(), std::begin(list), std::end(list));
}

}  // namespace zd
