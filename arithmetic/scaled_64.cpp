// Add_64s_S, AddC_64s_S and AddC_64u_S: 64-bit addition with a scale. No float64 holds
// a 64-bit sum, so nothing is multiplied: with s = -e the scale shift,
//   s < 0       saturating sum, then saturating left shift by -s;
//   s = 0       saturating sum;
//   s 1 to 64   the exact 65-bit sum x divided by 2^s, rounded by rndMode (0 toward
//               zero, 1 to nearest even, any other value to nearest with a tie upward;
//               Add_64s always 1), by integer means on its magnitude: the quotient q,
//               the remainder r and the half point 2^(s - 1);
//   s = 65 on   0 (AddC_64u keeps the carry of the sum at s = 65, where it can round
//               to 1).
// Blocks are pairs of elements; an odd last element is the tail, which gives the same
// results, but for one kept difference: AddC_64s with val = -2^63 and rndMode 2 or
// more rounds a tie away from zero (down) in its blocks and upward in its tail.
#include <limits>

#include "arithmetic/scaled.h"

namespace {

using namespace zivks;
using lane::RightShift;
using scaled::check;
using scaled::Checked;

constexpr int kBlock = 2;

// What a tie rounds to.
enum class Tie { kNone, kEven, kUp, kAway };

// rndMode as the tie rule of the quotient: 0 never rounds up, 1 a tie to even, any
// other value a tie upward.
inline Tie tie_of(int32_t rnd_mode) {
  return rnd_mode == 0 ? Tie::kNone : rnd_mode == 1 ? Tie::kEven : Tie::kUp;
}

// The quotient of |x| by 2^s (1 <= s <= 64) rounded by `tie`, x negative or not.
inline uint64_t rounded_magnitude(unsigned __int128 mag, bool neg, int s, Tie tie) {
  const uint64_t q = static_cast<uint64_t>(mag >> s);
  const unsigned __int128 r = mag & ((static_cast<unsigned __int128>(1) << s) - 1);
  const unsigned __int128 half = static_cast<unsigned __int128>(1) << (s - 1);
  bool up = false;
  switch (tie) {
    case Tie::kNone: break;
    case Tie::kEven: up = r > half || (r == half && (q & 1)); break;
    case Tie::kUp: up = r > half || (r == half && !neg); break;
    case Tie::kAway: up = r >= half; break;
  }
  return q + (up ? 1 : 0);
}

// The tail's element: x exact in 128 bits, divided and rounded (the sign restored).
template <class T>
inline T rounded_shift(__int128 x, int s, Tie tie) {
  const bool neg = x < 0;
  const unsigned __int128 mag = neg ? -static_cast<unsigned __int128>(x) : static_cast<unsigned __int128>(x);
  const uint64_t q = rounded_magnitude(mag, neg, s, tie);
  return static_cast<T>(neg ? 0 - q : q);
}

// ---- The rounded shift of a block, lane by lane on the 64-bit sum.
// The magnitude of x comes from the wrapped sum w and the sign of the saturating sum;
// a magnitude of 2^64 (x = -2^64) wraps to 0 and is kept as a carry at bit 64 - s.
// Unsigned sums have their carry where w is below an operand.
template <class T, int K>
struct shifted_sum {
  using V = simd::vec<T, K>;
  using U = simd::vec<uint64_t, K>;
  U mag, carry;  // carry: all ones where x reaches 2^64
  V neg;         // all ones where x is negative (signed sums)
  shifted_sum(const V& a, const V& b) {
    const V w = simd::add_wrap(a, b);
    if constexpr (std::is_signed_v<T>) {
      neg = simd::cmp_lt(simd::add_sat(a, b), simd::zeros<V>());
      mag = simd::reinterpret<uint64_t>(simd::select(neg, simd::sub_wrap(simd::zeros<V>(), w), w));
      carry = simd::bit_and(simd::reinterpret<uint64_t>(neg), simd::cmp_eq(mag, simd::zeros<U>()));
    } else {
      neg = simd::zeros<V>();
      mag = w;
      carry = simd::cmp_gt(a, w);
    }
  }
};

// Constants of the rounded shift by s, made once a call.
struct shift_consts {
  int s;
  uint64_t low_mask, half, carry_bit;
  explicit shift_consts(int s_) : s(s_) {
    low_mask = s >= 64 ? ~uint64_t{0} : (uint64_t{1} << s) - 1;
    half = uint64_t{1} << (s - 1);
    carry_bit = uint64_t{1} << (64 - s);
  }
};

template <Tie tie, class T, int K>
inline simd::vec<T, K> rounded_shift(const simd::vec<T, K>& a, const simd::vec<T, K>& b, const shift_consts& c) {
  using U = simd::vec<uint64_t, K>;
  const shifted_sum<T, K> x(a, b);
  U q = c.s >= 64 ? simd::zeros<U>() : simd::shr(x.mag, simd::shift_count<uint64_t, K>(c.s));
  q = simd::bit_or(q, simd::bit_and(x.carry, simd::splat<U>(c.carry_bit)));
  if constexpr (tie != Tie::kNone) {
    const U r = simd::bit_and(x.mag, simd::splat<U>(c.low_mask));
    const U half = simd::splat<U>(c.half);
    const U above = simd::cmp_gt(r, half), at = simd::cmp_eq(r, half);
    U up;
    if constexpr (tie == Tie::kEven)
      up = simd::bit_or(above, simd::bit_and(at, simd::cmp_eq(simd::bit_and(q, simd::splat<U>(1)), simd::splat<U>(1))));
    else if constexpr (tie == Tie::kUp)
      up = simd::bit_or(above, simd::bit_and(at, simd::bit_not(simd::reinterpret<uint64_t>(x.neg))));
    else
      up = simd::bit_or(above, at);
    q = simd::sub_wrap(q, up);  // a mask is -1
  }
  const simd::vec<T, K> qt = simd::reinterpret<T>(q);
  if constexpr (std::is_signed_v<T>) return simd::select(x.neg, simd::sub_wrap(simd::zeros<simd::vec<T, K>>(), qt), qt);
  else return qt;
}

// Pairs of elements of a op b by `block`, then the odd last one by `tail`.
template <class T, class A, class B, class Block, class Tail>
inline void pairs(A a, B b, T* dst, int32_t len, Block&& block, Tail&& tail) {
  for_blocks<kBlock>(
      len,
      [&](int64_t i, auto w) {
        using V = simd::vec<T, decltype(w)::value>;
        simd::store(dst + i, block(a.template vec<V>(i), b.template vec<V>(i)));
      },
      [&](int64_t i) { dst[i] = tail(a.at(i), b.at(i)); });
}

template <Tie tie, class T, class A, class B>
inline void divide(const A& a, const B& b, T* dst, int32_t len, int s, Tie tail_tie) {
  const shift_consts c(s);
  pairs(
      a, b, dst, len, [&](const auto& va, const auto& vb) { return rounded_shift<tie>(va, vb, c); },
      [&](T x, T y) { return rounded_shift<T>(static_cast<__int128>(x) + y, s, tail_tie); });
}

// The rounded shift with the tie rule of rndMode; the block's tie may differ.
template <class T, class A, class B>
inline void divide_by_mode(const A& a, const B& b, T* dst, int32_t len, int s, Tie tie, Tie block_tie) {
  switch (block_tie) {
    case Tie::kNone: divide<Tie::kNone>(a, b, dst, len, s, tie); break;
    case Tie::kEven: divide<Tie::kEven>(a, b, dst, len, s, tie); break;
    case Tie::kUp: divide<Tie::kUp>(a, b, dst, len, s, tie); break;
    case Tie::kAway: divide<Tie::kAway>(a, b, dst, len, s, tie); break;
  }
}

// s <= 0: the saturating sum, shifted left by -s with saturation where s < 0 (a count
// read as negative rounds half up, in block and tail alike).
template <class T, class A, class B>
inline void saturate(const A& a, const B& b, T* dst, int32_t len, int32_t e) {
  constexpr auto kRound = RightShift::kRound;
  if (e == 0)
    pairs(a, b, dst, len, [](const auto& va, const auto& vb) { return simd::add_sat(va, vb); },
          [](T x, T y) { return lane::add_sat(x, y); });
  else
    pairs(
        a, b, dst, len,
        [e](const auto& va, const auto& vb) { return simd::shl_sat_by_low_byte<kRound>(simd::add_sat(va, vb), e); },
        [e](T x, T y) { return lane::shl_sat_by_low_byte<kRound>(lane::add_sat(x, y), e); });
}

constexpr int kLastShift = 64;  // beyond it every quotient is 0 (AddC_64u: but one)

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_Add_64s_S(const int64_t* src1, const int64_t* src2, int64_t* dst, int32_t len,
                                        double scale) {
  const Checked c = check(len, scale, src1, src2, dst);
  if (c.st) return c.st;
  const int s = -c.e;
  const array_operand<int64_t> a{src1}, b{src2};
  if (s <= 0) saturate(a, b, dst, len, c.e);
  else if (s <= kLastShift) divide_by_mode(a, b, dst, len, s, Tie::kEven, Tie::kEven);
  else ZIVKS_Zero_64s(dst, len);
  return ZIVK_STS_NO_ERR;
}

ZIVKS_EXPORT ZIVKStatus ZIVKS_AddC_64s_S(const int64_t* src, int64_t val, int64_t* dst, int32_t len,
                                         int32_t rndMode, double scale) {
  const Checked c = check(len, scale, src, dst);
  if (c.st) return c.st;
  const int s = -c.e;
  if (val == 0 && s == 0) {
    ZIVKS_Copy_64s(src, dst, len);
    return ZIVK_STS_NO_ERR;
  }
  const array_operand<int64_t> a{src};
  const const_operand<int64_t> v(val);
  // With val = 0, 2^64 is out of reach: s = 64 quotients are all 0.
  const int last = val == 0 ? kLastShift - 1 : kLastShift;
  if (s <= 0) {
    saturate(a, v, dst, len, c.e);
  } else if (s <= last) {
    const Tie tie = tie_of(rndMode);
    // The loops of val = -2^63 round a tie of their blocks away from zero.
    const bool away = val == std::numeric_limits<int64_t>::min() && tie == Tie::kUp;
    divide_by_mode(a, v, dst, len, s, tie, away ? Tie::kAway : tie);
  } else {
    ZIVKS_Zero_64s(dst, len);
  }
  return ZIVK_STS_NO_ERR;
}

ZIVKS_EXPORT ZIVKStatus ZIVKS_AddC_64u_S(const uint64_t* src, uint64_t val, uint64_t* dst, int32_t len,
                                         int32_t rndMode, double scale) {
  const Checked c = check(len, scale, src, dst);
  if (c.st) return c.st;
  const int s = -c.e;
  if (val == 0 && s == 0) {
    ZIVKS_Copy_64s(reinterpret_cast<const int64_t*>(src), reinterpret_cast<int64_t*>(dst), len);
    return ZIVK_STS_NO_ERR;
  }
  const array_operand<uint64_t> a{src};
  const const_operand<uint64_t> v(val);
  const Tie tie = tie_of(rndMode);
  if (s <= 0) {
    saturate(a, v, dst, len, c.e);
  } else if (s <= kLastShift) {
    divide_by_mode(a, v, dst, len, s, tie, tie);
  } else if (s == kLastShift + 1 && val != 0 && tie != Tie::kNone) {
    // Only the carry is left: x / 2^65 is 1 from x = 2^64 on with a tie upward, and
    // above it to nearest even.
    for (int64_t i = 0; i < len; ++i) {
      const uint64_t w = src[i] + val;
      const bool carry = w < val;
      dst[i] = carry && (tie == Tie::kUp || w != 0) ? 1 : 0;
    }
  } else {
    ZIVKS_Zero_64s(reinterpret_cast<int64_t*>(dst), len);
  }
  return ZIVK_STS_NO_ERR;
}
