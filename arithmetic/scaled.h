// What the scaled integer families share: the checks of a scaled call, the exact x of
// two operands, the multiply path (x widened, times M in a float, rounded to nearest
// even, narrowed with saturation) for whole registers and for half-register blocks, and
// the saturating paths. An operand is an array_operand or a const_operand of parts, so
// that the two-array, the array-and-constant and the complex forms are one code.
#pragma once

#include <math.h>

#include <type_traits>

#include "core/frame.h"
#include "core/operands.h"
#include "core/ops.h"
#include "core/rounding.h"
#include "core/scale.h"

namespace zivks::scaled {

using rounding::Mode;

using scale::Checked;

// Pointers, then len, then scale.
template <class... P>
inline Checked check(int32_t len, double scale, const P*... p) {
  return scale::checked(len, scale, ZIVK_STS_NO_ERR, p...);
}

// x = a + b or a - b.
enum class Op { kAdd, kSub };

template <Op op, class V>
inline V wrap(const V& a, const V& b) {
  return op == Op::kAdd ? simd::add_wrap(a, b) : simd::sub_wrap(a, b);
}
template <Op op, class V>
inline V saturating(const V& a, const V& b) {
  return op == Op::kAdd ? simd::add_sat(a, b) : simd::sub_sat(a, b);
}

// The exact x of part i of two operands, as an int64.
template <Op op, class A, class B>
inline int64_t exact(const A& a, const B& b, int64_t i) {
  return op == Op::kAdd ? int64_t{a.at(i)} + int64_t{b.at(i)} : int64_t{a.at(i)} - int64_t{b.at(i)};
}

// The lanes the multiply path works in: int32 for 8- and 16-bit parts, int64 for 32-bit
// ones; the float of the same width holds M and the product.
template <class P>
using wide_t = std::conditional_t<sizeof(P) <= 2, int32_t, int64_t>;
template <class P>
using float_t = std::conditional_t<sizeof(P) <= 2, float, double>;

// x in wide lanes times M, rounded to nearest even, saturating to the wide lanes.
template <class W, class F, int K>
inline simd::vec<W, K> product(const simd::vec<W, K>& x, const simd::vec<F, K>& m) {
  return simd::cvt_sat<W, Mode::kNear>(simd::mul_raw(simd::cvt_to_float<F>(x), m));
}

// Both halves of a register of 16- or 32-bit parts P extended to the wide lanes, read
// as signed.
template <class P, int K>
struct halves {
  static_assert(sizeof(P) == 2 || sizeof(P) == 4, "16- or 32-bit parts");
  using W = wide_t<P>;
  using L = std::conditional_t<std::is_unsigned_v<P>, std::make_unsigned_t<W>, W>;
  simd::vec<W, K> lo, hi;
  explicit halves(const simd::vec<P, K>& v)
      : lo(simd::reinterpret<W>(simd::widen_lo<L>(v))), hi(simd::reinterpret<W>(simd::widen_hi<L>(v))) {}
};

// ---- multiply_register
// Returns saturate(round((a op b) * M)) for a whole register of parts: x exact in the
// wide lanes (8-bit parts through 16 bits to 32), M in the float of their width.
template <Op op, class P, int K, class F>
inline simd::vec<P, K> multiply_register(const simd::vec<P, K>& a, const simd::vec<P, K>& b,
                                         const simd::vec<F, K>& m) {
  if constexpr (sizeof(P) == 1) {
    static_assert(std::is_unsigned_v<P>, "8-bit parts are unsigned");
    const simd::vec<uint16_t, K> lo = multiply_register<op>(simd::widen_lo<uint16_t>(a), simd::widen_lo<uint16_t>(b), m);
    const simd::vec<uint16_t, K> hi = multiply_register<op>(simd::widen_hi<uint16_t>(a), simd::widen_hi<uint16_t>(b), m);
    return simd::narrow_sat<uint8_t>(lo, hi);
  } else {
    const halves<P, K> ha(a), hb(b);
    return simd::narrow_sat<P>(product(wrap<op>(ha.lo, hb.lo), m), product(wrap<op>(ha.hi, hb.hi), m));
  }
}

// The wide lanes of K half-register blocks of an operand from part i: an array is read
// and extended, a constant register extended.
template <class VW, class P, int kAhead, int kEvery>
inline VW widened(const array_operand<P, kAhead, kEvery>& o, int64_t i) {
  using L = std::conditional_t<std::is_unsigned_v<P>, std::make_unsigned_t<typename VW::lane>, typename VW::lane>;
  return simd::reinterpret<typename VW::lane>(simd::load_widen<simd::vec<L, VW::kBlocks>>(o.p + i));
}
template <class VW, class E>
inline VW widened(const const_operand<E>& o, int64_t) {
  using P = part_t<E>;
  using L = std::conditional_t<std::is_unsigned_v<P>, std::make_unsigned_t<typename VW::lane>, typename VW::lane>;
  return simd::reinterpret<typename VW::lane>(simd::widen_lo<L>(o.regs.template get<VW::kBlocks>()));
}

// Read hints for every line of the bytes a call of width w handles from part i, each
// `ahead` bytes ahead; none when ahead is 0.
template <int kParts, class W, class P>
inline void hint(const P* p, int64_t i, int64_t ahead) {
  if (ahead != 0) hint_read_lines<int64_t{kParts} * W::value * int64_t{sizeof(P)}>(p + i, ahead);
}
template <int kParts, class W, class P, int kA, int kE>
inline void hint(const array_operand<P, kA, kE>& o, int64_t i, int64_t ahead) {
  hint<kParts, W>(o.p, i, ahead);
}
template <int kParts, class W, class E>
inline void hint(const const_operand<E>&, int64_t, int64_t) {}

// Read and write hints of a path, in bytes ahead of the part handled; 0 for none.
struct Hints {
  int64_t read = 0, write = 0;
};

// The loops take their operands by value: held in locals, their pointers are not
// reloaded after every store to dst, which might otherwise alias them.

// ---- blocks_of_registers
// Runs whole blocks of B parts P, each a whole number of registers, over n parts: dst's
// registers are step(a register, b register), the hints of the path sent first; then
// tail(i) for each part left. A complex array is 2 * len parts, its blocks 2 * B parts.
template <int B, class P, class A, class Bop, class Step, class Tail>
inline void blocks_of_registers(A a, Bop b, P* dst, int64_t n, Hints h, Step&& step, Tail&& tail) {
  static_assert(B * sizeof(P) % 16 == 0, "a block is whole registers");
  constexpr int kRegs = B * sizeof(P) / 16;
  for_blocks<B>(
      n,
      [&](int64_t i, auto w) {
        using W = decltype(w);
        using V = simd::vec<P, W::value>;
        hint<B, W>(a, i, h.read);
        hint<B, W>(b, i, h.read);
        hint<B, W>(dst, i, h.write);
        V r[kRegs];
        for (int j = 0; j < kRegs; ++j) {
          const int64_t at = i + int64_t{V::kLanes} * j;
          r[j] = step(a.template vec<V>(at), b.template vec<V>(at));
        }
        for (int j = 0; j < kRegs; ++j) simd::store(dst + i + int64_t{V::kLanes} * j, r[j]);
      },
      tail);
}

// The tail form of the multiply path for part i: x converted to F, times m, clamped and
// rounded by the tail rule.
template <Op op, class P, class F, class A, class Bop>
inline P multiply_tail(const A& a, const Bop& b, int64_t i, F m) {
  return rounding::tail<P>(static_cast<F>(exact<op>(a, b, i)) * m);
}

// ---- multiply_blocks
// The multiply path over n parts in blocks of B parts: x = a op b of each part times M
// in F, rounded to nearest even, saturated; the tail by the tail form of the rounding
// rule. A block of half a register makes its x in the wide lanes straight from the
// operands.
template <int B, Op op, class P, class A, class Bop>
inline void multiply_blocks(A a, Bop b, P* dst, int64_t n, int32_t e, Hints h) {
  using F = float_t<P>;
  const F m = scale::multiplier<F>(e);
  const broadcast<F> mvs(m);
  auto tail = [&](int64_t i) { dst[i] = multiply_tail<op, P>(a, b, i, m); };
  if constexpr (B * sizeof(P) == 8) {
    narrowing_blocks<B>(
        n, dst,
        [&](int64_t i, auto w) {
          constexpr int K = decltype(w)::value;
          using VW = simd::vec<wide_t<P>, K>;
          hint<B, decltype(w)>(a, i, h.read);
          hint<B, decltype(w)>(b, i, h.read);
          return product(wrap<op>(widened<VW>(a, i), widened<VW>(b, i)), mvs.template get<K>());
        },
        tail);
  } else {
    blocks_of_registers<B>(
        a, b, dst, n, h,
        [&](const auto& va, const auto& vb) {
          return multiply_register<op>(va, vb, mvs.template get<std::decay_t<decltype(va)>::kBlocks>());
        },
        tail);
  }
}

// How the tail of a saturating path scales when e is not 0: by the float M of the call,
// by M recomputed with pow for each element, or by the shift of the block.
enum class TailScale { kMultiply, kPowEach, kShift };

// ---- saturating_blocks
// The saturating path over n parts in blocks of B parts: a op b clamped to the part's
// range, then, for e above 0, shifted left by e with saturation (the count of a block
// read from the low byte of e; a count read as negative shifts right by `right`).
template <int B, Op op, lane::RightShift right, TailScale ts, class P, class A, class Bop>
inline void saturating_blocks(A a, Bop b, P* dst, int64_t n, int32_t e, Hints h) {
  using F = float_t<P>;
  const F m = scale::multiplier<F>(e);
  auto tail = [&](int64_t i) {
    if (e == 0) dst[i] = lane::clamp_to<P>(exact<op>(a, b, i));
    else if constexpr (ts == TailScale::kShift)
      dst[i] = lane::shl_sat_by_low_byte<right>(lane::clamp_to<P>(exact<op>(a, b, i)), e);
    else if constexpr (ts == TailScale::kPowEach)
      dst[i] = multiply_tail<op, P>(a, b, i, scale::multiplier<F>(e));
    else
      dst[i] = multiply_tail<op, P>(a, b, i, m);
  };
  if (e == 0) {
    blocks_of_registers<B>(a, b, dst, n, h, [](const auto& va, const auto& vb) { return saturating<op>(va, vb); }, tail);
  } else {
    blocks_of_registers<B>(
        a, b, dst, n, h,
        [e](const auto& va, const auto& vb) { return simd::shl_sat_by_low_byte<right>(saturating<op>(va, vb), e); },
        tail);
  }
}

// ---- widened_shift_blocks
// x = a op b exact in the wide lanes, shifted left by e with saturation there (a count
// read as negative rounds half up), narrowed with saturation; the tail multiplies by M.
template <int B, Op op, class P, class A, class Bop>
inline void widened_shift_blocks(A a, Bop b, P* dst, int64_t n, int32_t e, Hints h) {
  using F = float_t<P>;
  const F m = scale::multiplier<F>(e);
  blocks_of_registers<B>(
      a, b, dst, n, h,
      [e](const auto& va, const auto& vb) {
        const halves<P, std::decay_t<decltype(va)>::kBlocks> ha(va), hb(vb);
        constexpr auto kRound = lane::RightShift::kRound;
        return simd::narrow_sat<P>(simd::shl_sat_by_low_byte<kRound>(wrap<op>(ha.lo, hb.lo), e),
                                   simd::shl_sat_by_low_byte<kRound>(wrap<op>(ha.hi, hb.hi), e));
      },
      [&](int64_t i) { dst[i] = multiply_tail<op, P>(a, b, i, m); });
}

// The paths a member can take, each with its block in elements and hints in bytes.
template <int B, int kRead = 0, int kWrite = 0>
struct multiply {
  template <Op op, int n, class P, class A, class Bop>
  static void run(const A& a, const Bop& b, P* dst, int64_t parts, int32_t e) {
    multiply_blocks<B * n, op>(a, b, dst, parts, e, Hints{kRead, kWrite});
  }
};
template <int B, lane::RightShift right, TailScale ts = TailScale::kMultiply, int kRead = 0>
struct saturate {
  template <Op op, int n, class P, class A, class Bop>
  static void run(const A& a, const Bop& b, P* dst, int64_t parts, int32_t e) {
    saturating_blocks<B * n, op, right, ts>(a, b, dst, parts, e, Hints{kRead, 0});
  }
};
template <int B>
struct widened_shift {
  template <Op op, int n, class P, class A, class Bop>
  static void run(const A& a, const Bop& b, P* dst, int64_t parts, int32_t e) {
    widened_shift_blocks<B * n, op>(a, b, dst, parts, e, Hints{});
  }
};

// ---- run_paths
// A member's path by the sign of the scale shift -e: Member::Up for e < 0 (results
// shrink), Zero for e = 0, Down for e > 0 (results grow), over len elements of E.
template <class Member, Op op, class E, class A, class Bop>
inline void run_paths(const A& a, const Bop& b, part_t<E>* dst, int32_t len, int32_t e) {
  constexpr int n = parts<E>::count;
  const int64_t parts_n = int64_t{len} * n;
  if (e < 0) Member::Up::template run<op, n>(a, b, dst, parts_n, e);
  else if (e == 0) Member::Zero::template run<op, n>(a, b, dst, parts_n, e);
  else Member::Down::template run<op, n>(a, b, dst, parts_n, e);
}

}  // namespace zivks::scaled
