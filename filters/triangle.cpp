// The triangle wave: magn at phase 0, falling to -magn at phase fall = pi + asym and
// rising back to magn at 2 pi over rise = pi - asym. The complex forms put in im the same
// wave at ph + (fall + 2 pi) / 2, which is 0 at phase 0 and magn at rise / 2.
//
// Two designs live here on purpose:
//   16s, 32f, 16sc, 32fc  every sample from its index: the fractional part of
//                         rFreq * i + phase / 2 pi (fused) gives its phase. *phase is
//                         only read. Blocks of 4 samples (2 for 32fc) in float64 lanes,
//                         then one by one with modf.
//   64f, 64fc             store the phase after the last sample first, then run either
//                         a recurrence (a slope added and mirrored at the peaks; rounding
//                         accumulates, which is why it serves only the low frequencies) or
//                         a phase accumulator in two lanes.
// All arithmetic is float64; every fused step is written out as one.
//
// The checks have their own order: pointers, the range of *phase and of asym, then len,
// then magn and rFreq. All compares are ordered, so a NaN passes every check.
#include <math.h>
#include <stdint.h>

#include <cmath>
#include <type_traits>

#include "core/fp.h"
#include "core/frame.h"
#include "core/rounding.h"

namespace {

using namespace zivks;
using rounding::Mode;

using VD = simd::vec<double, 1>;
using VF = simd::vec<float, 1>;
using VB = simd::vec<uint8_t, 1>;

constexpr double kTwoPi = 6.283185307179586;
constexpr double kPi = 3.141592653589793;
constexpr double kInvTwoPi = 0.15915494309189535;
constexpr double kFourPi = 12.566370614359172;

// The float64 forms pick the recurrence below these frequencies. They differ per member
// on purpose.
constexpr double kRecurrenceBelow64f = 0.14;
constexpr double kRecurrenceBelow64fc = 0.11;

// a / b with the NaN of the library's rule.
inline double quotient(double a, double b) {
  const double r = a / b;
  return r == r ? r : fp::nan_of(a, b);
}

// a at or above b, ordered: a NaN is at or above nothing.
inline VD at_or_above(const VD& a, const VD& b) { return simd::bit_or(simd::cmp_gt(a, b), simd::cmp_eq(a, b)); }

// ---- Checks

// In order: pointers, *phase in [0, 2 pi), asym above -pi (at -pi too where
// minus_pi_passes) and below pi, len, magn (at least 1 for the int16 forms, above 0 for
// the others), rFreq in [0, 0.5). The float32 arguments are widened first.
template <class P, class M>
ZIVKStatus check_triangle(const void* dst, int32_t len, M magn, P rFreq, P asym, const P* phase,
                          bool minus_pi_passes) {
  if (dst == nullptr || phase == nullptr) return ZIVK_STS_NULL_PTR_ERR;
  const double ph = *phase, a = asym;
  if (ph < 0 || ph >= kTwoPi) return ZIVK_STS_TRIANGLE_ERR;
  if (minus_pi_passes ? a < -kPi : a <= -kPi) return ZIVK_STS_TRIANGLE_ERR;
  if (a >= kPi) return ZIVK_STS_TRIANGLE_ERR;
  if (len < 1) return ZIVK_STS_SIZE_ERR;
  if constexpr (std::is_integral_v<M>) {
    if (magn < 1) return ZIVK_STS_TRIANGLE_ERR;
  } else {
    if (magn <= 0) return ZIVK_STS_TRIANGLE_ERR;
  }
  if (rFreq < 0 || rFreq >= P(0.5)) return ZIVK_STS_TRIANGLE_ERR;
  return ZIVK_STS_NO_ERR;
}

// ---- Direct forms: every sample from its index

// What a direct member is: its element, the type of magn, whether it has an im part,
// its block, and whether its blocks make the index in float32.
template <class E>
struct direct;

template <class E, class M, bool complex, int block, bool float_index = false>
struct direct_as {
  using Magn = M;
  static constexpr bool kComplex = complex;
  static constexpr int kBlock = block;
  static constexpr bool kFloatIndex = float_index;
};

template <> struct direct<int16_t> : direct_as<int16_t, int16_t, false, 4> {};
template <> struct direct<float> : direct_as<float, float, false, 4> {};
template <> struct direct<ZIVK16sc> : direct_as<ZIVK16sc, int16_t, true, 4, true> {};
template <> struct direct<ZIVK32fc> : direct_as<ZIVK32fc, float, true, 2> {};

// The wave's constants in float64, shared by blocks and tail.
struct Wave {
  double magn, rFreq, p0;
  double rise, fall;
  double inv_rise, neg_inv_fall;         // the block's factors, taken after doubling
  double two_rise, two_fall, neg_two_fall;  // 2 / rise, 2 / fall and its negation
  double half_rise, im_turn;             // where im turns: rise / 2 and (fall + 2 pi) / 2

  Wave(double m, double f, double a, double phase) : magn(m), rFreq(f) {
    p0 = quotient(phase, kTwoPi);
    rise = fp::sub(kPi, a);
    fall = fp::add(a, kPi);
    inv_rise = quotient(1.0, rise);
    neg_inv_fall = -quotient(1.0, fall);
    two_rise = quotient(2.0, rise);
    two_fall = quotient(2.0, fall);
    neg_two_fall = -two_fall;
    half_rise = fp::mul(rise, 0.5);
    im_turn = fp::mul(fp::add(fall, kTwoPi), 0.5);
  }
};

// The lane operations of a block: with the library's NaN rule, or as the unit gives them
// where no NaN can arise (every argument finite: then every value on the way is).
struct RuleOps {
  static VD add(const VD& a, const VD& b) { return simd::add(a, b); }
  static VD sub(const VD& a, const VD& b) { return simd::sub(a, b); }
  static VD mul(const VD& a, const VD& b) { return simd::mul(a, b); }
  static VD mul_add(const VD& a, const VD& b, const VD& c) { return simd::mul_add(a, b, c); }
};
struct RawOps {
  static VD add(const VD& a, const VD& b) { return simd::add_raw(a, b); }
  static VD sub(const VD& a, const VD& b) { return simd::sub_raw(a, b); }
  static VD mul(const VD& a, const VD& b) { return simd::mul_raw(a, b); }
  static VD mul_add(const VD& a, const VD& b, const VD& c) { return simd::mul_add_raw(a, b, c); }
};

// The block pass on two samples whose indices are the lanes of idx, with the lane
// operations X.
template <class X>
struct BlockWave {
  VD magn, rFreq, p0, two_pi, pi, one, fall, inv_rise, neg_inv_fall, two_rise, two_fall, half_rise, im_turn;

  explicit BlockWave(const Wave& w)
      : magn(simd::splat<VD>(w.magn)), rFreq(simd::splat<VD>(w.rFreq)), p0(simd::splat<VD>(w.p0)),
        two_pi(simd::splat<VD>(kTwoPi)), pi(simd::splat<VD>(kPi)), one(simd::splat<VD>(1.0)),
        fall(simd::splat<VD>(w.fall)), inv_rise(simd::splat<VD>(w.inv_rise)),
        neg_inv_fall(simd::splat<VD>(w.neg_inv_fall)), two_rise(simd::splat<VD>(w.two_rise)),
        two_fall(simd::splat<VD>(w.two_fall)), half_rise(simd::splat<VD>(w.half_rise)),
        im_turn(simd::splat<VD>(w.im_turn)) {}

  // The phase of each sample: the fractional part of the fused rFreq * i + p0, by a
  // truncating conversion to integer and back, times 2 pi.
  VD phase(const VD& idx) const {
    const VD t = X::mul_add(rFreq, idx, p0);
    const VD whole = simd::cvt_to_float<double>(simd::cvt_sat<int64_t, Mode::kZero>(t));
    return X::mul(X::sub(t, whole), two_pi);
  }

  VD re(const VD& ph) const {
    const VD d = X::sub(ph, two_pi);
    const VD up = X::mul(magn, X::add(one, X::mul(X::add(d, d), inv_rise)));
    const VD down = X::mul(magn, X::mul_add(X::add(ph, ph), neg_inv_fall, one));
    return simd::select(at_or_above(ph, fall), up, down);
  }

  // The segments are told apart by at-or-above tests: rise / 2 itself falls.
  VD im(const VD& ph) const {
    const VD to_zero = X::mul(X::mul(X::sub(ph, two_pi), two_rise), magn);
    const VD falling = X::mul(X::mul(X::sub(pi, ph), two_fall), magn);
    const VD through_zero = X::mul(X::mul(two_rise, ph), magn);
    return simd::select(at_or_above(ph, im_turn), to_zero,
                        simd::select(at_or_above(ph, half_rise), falling, through_zero));
  }
};

// The tail's sample i: modf for the fractional part, 2 / rise and 2 / fall as factors.
struct TailWave {
  const Wave& w;

  double phase(int64_t i) const {
    const double t = fp::mul_add(w.rFreq, static_cast<double>(i), w.p0);
    double whole;
    return fp::mul(std::modf(t, &whole), kTwoPi);
  }

  double re(double ph) const {
    if (ph >= w.fall) return fp::mul(w.magn, fp::add(1.0, fp::mul(fp::sub(ph, kTwoPi), w.two_rise)));
    return fp::mul(w.magn, fp::mul_add(ph, w.neg_two_fall, 1.0));
  }

  // rise / 2 itself still rises here.
  double im(double ph) const {
    if (ph <= w.half_rise) return fp::mul(fp::mul(w.two_rise, ph), w.magn);
    if (ph < w.im_turn) return fp::mul(fp::mul(fp::sub(kPi, ph), w.two_fall), w.magn);
    return fp::mul(fp::mul(fp::sub(ph, kTwoPi), w.two_rise), w.magn);
  }
};

// A block's int16 lanes: truncated to 64 bits, then narrowed to 32 bits with saturation.
inline simd::vec<int32_t, 1> to_int32_lanes(const VD& lo, const VD& hi) {
  return simd::narrow_sat<int32_t>(simd::cvt_sat<int64_t, Mode::kZero>(lo), simd::cvt_sat<int64_t, Mode::kZero>(hi));
}

// A tail's int16: truncated to 32 bits (saturating, NaN to 0), the low 16 bits kept.
inline int16_t tail_int16(double v) {
  return static_cast<int16_t>(static_cast<uint16_t>(rounding::cvt_sat<int32_t, Mode::kZero>(v)));
}

// Byte orders that put re and im parts side by side: four re then four im int16 lanes,
// and two re then two im float32 lanes.
constexpr uint8_t kPair16[16] = {0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15};
constexpr uint8_t kPair32[16] = {0, 1, 2, 3, 8, 9, 10, 11, 4, 5, 6, 7, 12, 13, 14, 15};

inline VB interleave(const VB& v, const uint8_t (&order)[16]) {
  return simd::table_bytes(v, simd::load<VB>(order));
}

// The float64 indices of samples i, i + 1 and i + 2, i + 3. In float32 (16sc), i and
// i + 2 are converted and the lane offsets added there, so large indices round.
template <bool float_index>
inline void indices(int64_t i, VD& lo, VD& hi) {
  if constexpr (float_index) {
    const float base[4] = {static_cast<float>(i), static_cast<float>(i), static_cast<float>(i + 2),
                           static_cast<float>(i + 2)};
    static constexpr float kStep[4] = {0.0f, 1.0f, 0.0f, 1.0f};
    const VF f = simd::add(simd::load<VF>(base), simd::load<VF>(kStep));
    lo = simd::float_widen_lo(f);
    hi = simd::float_widen_hi(f);
  } else {
    const double base[4] = {static_cast<double>(i), static_cast<double>(i + 1), static_cast<double>(i + 2),
                            static_cast<double>(i + 3)};
    lo = simd::load<VD>(base);
    hi = simd::load<VD>(base + 2);
  }
}

// The samples of a direct member: blocks with the lane operations X, then the tail.
template <class E, class X>
void direct_samples(E* dst, int32_t len, const Wave& w) {
  using D = direct<E>;
  const BlockWave<X> b(w);
  const TailWave t{w};
  auto* out = as_parts(dst);
  for_single_blocks<D::kBlock>(
      len,
      [&](int64_t i, auto) {
        if constexpr (std::is_same_v<E, ZIVK32fc>) {
          const double idx[2] = {static_cast<double>(i), static_cast<double>(i + 1)};
          const VD ph = b.phase(simd::load<VD>(idx));
          const VF v = simd::float_narrow(b.re(ph), b.im(ph));
          simd::store(out + 2 * i, simd::reinterpret<float>(interleave(simd::reinterpret<uint8_t>(v), kPair32)));
        } else {
          VD lo, hi;
          indices<D::kFloatIndex>(i, lo, hi);
          const VD ph_lo = b.phase(lo), ph_hi = b.phase(hi);
          if constexpr (std::is_same_v<E, float>) {
            simd::store(out + i, simd::float_narrow(b.re(ph_lo), b.re(ph_hi)));
          } else if constexpr (std::is_same_v<E, int16_t>) {
            const auto r = to_int32_lanes(b.re(ph_lo), b.re(ph_hi));
            simd::store_lo(out + i, simd::narrow_sat<int16_t>(r, r));
          } else {
            const auto v = simd::narrow_sat<int16_t>(to_int32_lanes(b.re(ph_lo), b.re(ph_hi)),
                                                     to_int32_lanes(b.im(ph_lo), b.im(ph_hi)));
            simd::store(out + 2 * i, simd::reinterpret<int16_t>(interleave(simd::reinterpret<uint8_t>(v), kPair16)));
          }
        }
      },
      [&](int64_t i) {
        const double ph = t.phase(i);
        constexpr int parts = D::kComplex ? 2 : 1;
        const double re = t.re(ph);
        if constexpr (std::is_same_v<part_t<E>, int16_t>) out[parts * i] = tail_int16(re);
        else out[parts * i] = static_cast<float>(re);
        if constexpr (D::kComplex) {
          const double im = t.im(ph);
          if constexpr (std::is_same_v<part_t<E>, int16_t>) out[2 * i + 1] = tail_int16(im);
          else out[2 * i + 1] = static_cast<float>(im);
        }
      });
}

template <class E>
ZIVKStatus triangle_direct(E* dst, int32_t len, typename direct<E>::Magn magn, float rFreq, float asym,
                           float* phase) {
  if (const ZIVKStatus st = check_triangle(dst, len, magn, rFreq, asym, phase, false)) return st;
  const Wave w(static_cast<double>(magn), rFreq, asym, *phase);
  if (std::isfinite(static_cast<double>(magn)) && std::isfinite(rFreq) && std::isfinite(asym) && std::isfinite(*phase))
    direct_samples<E, RawOps>(dst, len, w);
  else
    direct_samples<E, RuleOps>(dst, len, w);
  return ZIVK_STS_NO_ERR;
}

// ---- Float64 forms: a phase carried over, a recurrence or an accumulator

// The phase after len samples from p, wrapped into [0, 2 pi) by a fused step; a result
// that rounding leaves outside becomes 0.
inline double next_phase(int32_t len, double rFreq, double p) {
  const double u = fp::mul_add(fp::mul(static_cast<double>(len), kTwoPi), rFreq, p);
  const double r = fp::mul_add(-std::floor(fp::mul(u, kInvTwoPi)), kTwoPi, u);
  return r < 0 || r >= kTwoPi ? 0.0 : r;
}

// q less 2 pi where it lies above 2 pi.
inline double wrap_once(double q) { return q > kTwoPi ? fp::sub(q, kTwoPi) : q; }

// The recurrence: one stream runs a value up and down by a constant slope; past a peak
// the overshoot is mirrored back onto the other slope, and when even the mirror lands
// past the other peak (a step longer than a slope) the value moves by a whole period.
struct Recurrence {
  double magn, rise, fall;
  double step_up, step_down, wrap_up, wrap_down;
  double mirror_down, mirror_up, off_down, off_up;

  Recurrence(double m, double rFreq, double r, double f) : magn(m), rise(r), fall(f) {
    const double k = fp::mul(magn, kFourPi);
    const double rk = fp::mul(rFreq, k);
    step_up = quotient(rk, rise);
    step_down = quotient(-rk, fall);
    wrap_up = quotient(k, rise);
    wrap_down = quotient(k, fall);
    mirror_down = quotient(-rise, fall);
    mirror_up = quotient(-fall, rise);
    off_down = fp::mul_add(-mirror_down, magn, magn);
    off_up = fp::mul_add(mirror_up, magn, -magn);
  }

  struct Stream {
    double cur, slope;
    bool rising;
  };

  Stream start(double s) const {
    Stream st;
    if (s >= fall) {
      st.slope = step_up;
      st.cur = fp::mul(magn, fp::sub(quotient(fp::mul(2.0, fp::sub(s, fall)), rise), 1.0));
    } else {
      st.slope = step_down;
      st.cur = fp::mul(magn, fp::sub(1.0, quotient(fp::mul(2.0, s), fall)));
    }
    st.rising = st.slope > 0;
    return st;
  }

  void past_peak(Stream& st) const {
    const double t = fp::mul_add(mirror_down, st.cur, off_down);
    if (t >= -magn) {
      st.cur = t;
      st.slope = step_down;
      st.rising = false;
    } else {
      st.cur = fp::sub(st.cur, wrap_up);
    }
  }

  void past_trough(Stream& st) const {
    const double t = fp::mul_add(mirror_up, st.cur, off_up);
    if (t <= magn) {
      st.cur = t;
      st.slope = step_up;
      st.rising = true;
    } else {
      st.cur = fp::add(st.cur, wrap_down);
    }
  }

  // The value after st.cur. The real form tests the peak as !(magn >= cur), so a NaN
  // counts as past it, and the trough only while falling; the complex form tests
  // magn < cur and, when that fails, the trough whichever way the stream runs.
  template <bool complex>
  void advance(Stream& st) const {
    st.cur = fp::add(st.cur, st.slope);
    if constexpr (!complex) {
      if (st.rising) {
        if (!(magn >= st.cur)) past_peak(st);
      } else if (st.cur < -magn) {
        past_trough(st);
      }
    } else {
      if (st.rising && magn < st.cur) past_peak(st);
      else if (st.cur < -magn) past_trough(st);
    }
  }
};

// The accumulator: two lanes of phases, each wrapped once, stepped by a constant.
struct Accumulator {
  VD two_pi, fall, up, hi_off, down, magn, step;

  Accumulator(double m, double rise, double f, double step_by)
      : two_pi(simd::splat<VD>(kTwoPi)), fall(simd::splat<VD>(f)),
        up(simd::splat<VD>(quotient(fp::mul(2.0, m), rise))),
        hi_off(simd::splat<VD>(quotient(fp::mul(fp::add(f, kTwoPi), -m), rise))),
        down(simd::splat<VD>(quotient(-fp::mul(2.0, m), f))), magn(simd::splat<VD>(m)),
        step(simd::splat<VD>(step_by)) {}

  // The samples at the phases q (each wrapped first), and q moved on.
  VD next(VD& q) const {
    q = simd::select(simd::cmp_gt(q, two_pi), simd::sub(q, two_pi), q);
    const VD v = simd::select(simd::cmp_gt(q, fall), simd::mul_add(q, up, hi_off), simd::mul_add(q, down, magn));
    q = simd::add(q, step);
    return v;
  }
};

template <class E>
ZIVKStatus triangle_64(E* dst, int32_t len, double magn, double rFreq, double asym, double* phase) {
  constexpr bool kComplex = std::is_same_v<E, ZIVK64fc>;
  if (const ZIVKStatus st = check_triangle(dst, len, magn, rFreq, asym, phase, !kComplex)) return st;
  const double p = *phase;
  *phase = next_phase(len, rFreq, p);
  const double rise = fp::sub(kPi, asym), fall = fp::add(asym, kPi);
  double* out = as_parts(dst);
  const double threshold = kComplex ? kRecurrenceBelow64fc : kRecurrenceBelow64f;

  if (rFreq < threshold) {
    const Recurrence rec(magn, rFreq, rise, fall);
    auto re = rec.start(p);
    if constexpr (!kComplex) {
      for (int32_t i = 0; i < len; ++i) {
        out[i] = re.cur;
        rec.advance<false>(re);
      }
    } else {
      double s_im = fp::add(p, fp::mul(fp::add(fall, kTwoPi), 0.5));
      auto im = rec.start(s_im > kTwoPi ? fp::sub(s_im, kTwoPi) : s_im);
      for (int32_t i = 0; i < len; ++i) {
        out[2 * i] = re.cur;
        out[2 * i + 1] = im.cur;
        rec.advance<true>(re);
        rec.advance<true>(im);
      }
    }
    return ZIVK_STS_NO_ERR;
  }

  const double step = fp::mul(rFreq, kTwoPi);
  if constexpr (!kComplex) {
    // Lane 0 gives the even samples, lane 1 the odd ones.
    const Accumulator acc(magn, rise, fall, fp::mul(2.0, step));
    const double lanes[2] = {p, wrap_once(fp::mul_add(kTwoPi, rFreq, p))};
    VD q = simd::load<VD>(lanes);
    int32_t i = 0;
    for (; i + 2 <= len; i += 2) simd::store(out + i, acc.next(q));
    if (i < len) simd::store_lo(out + i, acc.next(q));
  } else {
    // Lane 0 gives re, lane 1 im.
    const Accumulator acc(magn, rise, fall, step);
    const double lanes[2] = {p, wrap_once(fp::mul_add(fp::add(fall, kTwoPi), 0.5, p))};
    VD q = simd::load<VD>(lanes);
    for (int32_t i = 0; i < len; ++i) simd::store(out + 2 * i, acc.next(q));
  }
  return ZIVK_STS_NO_ERR;
}

}  // namespace

ZIVKS_EXPORT ZIVKStatus ZIVKS_Triangle_16s(int16_t* dst, int32_t len, int16_t magn, float rFreq, float asym,
                                           float* phase) {
  return triangle_direct(dst, len, magn, rFreq, asym, phase);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Triangle_32f(float* dst, int32_t len, float magn, float rFreq, float asym,
                                           float* phase) {
  return triangle_direct(dst, len, magn, rFreq, asym, phase);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Triangle_16sc(ZIVK16sc* dst, int32_t len, int16_t magn, float rFreq, float asym,
                                            float* phase) {
  return triangle_direct(dst, len, magn, rFreq, asym, phase);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Triangle_32fc(ZIVK32fc* dst, int32_t len, float magn, float rFreq, float asym,
                                            float* phase) {
  return triangle_direct(dst, len, magn, rFreq, asym, phase);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Triangle_64f(double* dst, int32_t len, double magn, double rFreq, double asym,
                                           double* phase) {
  return triangle_64(dst, len, magn, rFreq, asym, phase);
}
ZIVKS_EXPORT ZIVKStatus ZIVKS_Triangle_64fc(ZIVK64fc* dst, int32_t len, double magn, double rFreq,
                                            double asym, double* phase) {
  return triangle_64(dst, len, magn, rFreq, asym, phase);
}
