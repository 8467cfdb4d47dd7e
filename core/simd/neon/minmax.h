// NEON backend: minimum, maximum, absolute values, reductions, compares and the per-lane
// counts of the search families. The compiler may swap the operands of fmax and fmin,
// so a NaN result has its payload chosen again by the operand order the family meant.
#pragma once

namespace zivks::simd {

namespace neon {
inline float32x4_t fmax(float32x4_t a, float32x4_t b) { return vmaxq_f32(a, b); }
inline float64x2_t fmax(float64x2_t a, float64x2_t b) { return vmaxq_f64(a, b); }
inline float32x4_t fmin(float32x4_t a, float32x4_t b) { return vminq_f32(a, b); }
inline float64x2_t fmin(float64x2_t a, float64x2_t b) { return vminq_f64(a, b); }

inline uint8x16_t imax(uint8x16_t a, uint8x16_t b) { return vmaxq_u8(a, b); }
inline uint16x8_t imax(uint16x8_t a, uint16x8_t b) { return vmaxq_u16(a, b); }
inline uint32x4_t imax(uint32x4_t a, uint32x4_t b) { return vmaxq_u32(a, b); }
inline int16x8_t imax(int16x8_t a, int16x8_t b) { return vmaxq_s16(a, b); }
inline int32x4_t imax(int32x4_t a, int32x4_t b) { return vmaxq_s32(a, b); }
inline uint8x16_t imin(uint8x16_t a, uint8x16_t b) { return vminq_u8(a, b); }
inline uint16x8_t imin(uint16x8_t a, uint16x8_t b) { return vminq_u16(a, b); }
inline uint32x4_t imin(uint32x4_t a, uint32x4_t b) { return vminq_u32(a, b); }
inline int16x8_t imin(int16x8_t a, int16x8_t b) { return vminq_s16(a, b); }
inline int32x4_t imin(int32x4_t a, int32x4_t b) { return vminq_s32(a, b); }

inline uint8_t reduce_imax(uint8x16_t a) { return vmaxvq_u8(a); }
inline uint16_t reduce_imax(uint16x8_t a) { return vmaxvq_u16(a); }
inline uint32_t reduce_imax(uint32x4_t a) { return vmaxvq_u32(a); }
inline int16_t reduce_imax(int16x8_t a) { return vmaxvq_s16(a); }
inline int32_t reduce_imax(int32x4_t a) { return vmaxvq_s32(a); }
inline uint8_t reduce_imin(uint8x16_t a) { return vminvq_u8(a); }
inline uint16_t reduce_imin(uint16x8_t a) { return vminvq_u16(a); }
inline uint32_t reduce_imin(uint32x4_t a) { return vminvq_u32(a); }
inline int16_t reduce_imin(int16x8_t a) { return vminvq_s16(a); }
inline int32_t reduce_imin(int32x4_t a) { return vminvq_s32(a); }
}  // namespace neon

// fmax
template <class T, int K>
inline vec<T, K> max_propagating(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r{neon::fmax(a.r, b.r)};
  return __builtin_expect(neon::any_nan(r.r), 0) ? rebuild_nans(r, a, b) : r;
}

// fmin
template <class T, int K>
inline vec<T, K> min_propagating(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r{neon::fmin(a.r, b.r)};
  return __builtin_expect(neon::any_nan(r.r), 0) ? rebuild_nans(r, a, b) : r;
}

// smax / umax
template <class T, int K>
inline vec<T, K> max(const vec<T, K>& a, const vec<T, K>& b) {
  return {neon::imax(a.r, b.r)};
}

// smin / umin
template <class T, int K>
inline vec<T, K> min(const vec<T, K>& a, const vec<T, K>& b) {
  return {neon::imin(a.r, b.r)};
}

// fabs
template <class T, int K>
inline vec<T, K> abs(const vec<T, K>& a) {
  if constexpr (std::is_same_v<T, float>) return {vabsq_f32(a.r)};
  else return {vabsq_f64(a.r)};
}

// sqabs
template <class T, int K>
inline vec<T, K> abs_sat(const vec<T, K>& a) {
  if constexpr (std::is_same_v<T, int16_t>) return {vqabsq_s16(a.r)};
  else return {vqabsq_s32(a.r)};
}

// fmaxv / smaxv / umaxv. The float forms take the lanes in halves, lower against upper,
// with the NaN of the rule at each step.
template <class T>
inline T reduce_max(const vec<T, 1>& a) {
  if constexpr (std::is_same_v<T, float>) {
    const float m = vmaxvq_f32(a.r);  // without NaN the result cannot depend on the order
    if (__builtin_expect(m == m, 1)) return m;
    const float32x2_t lo = vget_low_f32(a.r), hi = vget_high_f32(a.r);
    const vec<T, 1> p = max_propagating(vec<T, 1>{vcombine_f32(vdup_lane_f32(lo, 0), vdup_lane_f32(hi, 0))},
                                        vec<T, 1>{vcombine_f32(vdup_lane_f32(lo, 1), vdup_lane_f32(hi, 1))});
    const vec<T, 1> q = max_propagating(p, vec<T, 1>{vextq_f32(p.r, p.r, 2)});
    return vgetq_lane_f32(q.r, 0);
  } else if constexpr (std::is_same_v<T, double>) {
    return vgetq_lane_f64(max_propagating(a, vec<T, 1>{vextq_f64(a.r, a.r, 1)}).r, 0);
  } else {
    return neon::reduce_imax(a.r);
  }
}

// fminv / sminv / uminv
template <class T>
inline T reduce_min(const vec<T, 1>& a) {
  if constexpr (std::is_same_v<T, float>) {
    const float m = vminvq_f32(a.r);  // without NaN the result cannot depend on the order
    if (__builtin_expect(m == m, 1)) return m;
    const float32x2_t lo = vget_low_f32(a.r), hi = vget_high_f32(a.r);
    const vec<T, 1> p = min_propagating(vec<T, 1>{vcombine_f32(vdup_lane_f32(lo, 0), vdup_lane_f32(hi, 0))},
                                        vec<T, 1>{vcombine_f32(vdup_lane_f32(lo, 1), vdup_lane_f32(hi, 1))});
    const vec<T, 1> q = min_propagating(p, vec<T, 1>{vextq_f32(p.r, p.r, 2)});
    return vgetq_lane_f32(q.r, 0);
  } else if constexpr (std::is_same_v<T, double>) {
    return vgetq_lane_f64(min_propagating(a, vec<T, 1>{vextq_f64(a.r, a.r, 1)}).r, 0);
  } else {
    return neon::reduce_imin(a.r);
  }
}

// faddp, faddp: (l0 + l1) + (l2 + l3).
inline float reduce_add_pairwise(const vec<float, 1>& a) {
  const vec<float, 1> e{vuzp1q_f32(a.r, a.r)}, o{vuzp2q_f32(a.r, a.r)};
  const vec<float, 1> p = add(e, o);  // l0 + l1, l2 + l3
  return vgetq_lane_f32(add(p, vec<float, 1>{vextq_f32(p.r, p.r, 1)}).r, 0);
}

// fcmeq + bsl: lanes of a that are NaN become the lanes of r.
template <class T, int K>
inline vec<T, K> select_nan(const vec<T, K>& a, const vec<T, K>& r) {
  if constexpr (std::is_same_v<T, float>) return {vbslq_f32(vceqq_f32(a.r, a.r), a.r, r.r)};
  else return {vbslq_f64(vceqq_f64(a.r, a.r), a.r, r.r)};
}

// cmgt, cmgt, and, sub: each lane of acc counts one more where lo < x < hi.
inline vec<int32_t, 1> count_between(const vec<int32_t, 1>& acc, const vec<int32_t, 1>& x,
                                     const vec<int32_t, 1>& lo, const vec<int32_t, 1>& hi) {
  const uint32x4_t in = vandq_u32(vcgtq_s32(x.r, lo.r), vcgtq_s32(hi.r, x.r));
  return {vsubq_s32(acc.r, vreinterpretq_s32_u32(in))};
}

// ld1 + sxtl: four int16 widened to int32.
inline vec<int32_t, 1> load_widened(const int16_t* p) { return {vmovl_s16(vld1_s16(p))}; }

// fmul + fcmlt #0 + sub / mul + cmlt #0 + sub
template <class T>
inline vec<int32_t, 1> count_negative_products(const vec<int32_t, 1>& acc, const vec<T, 1>& a,
                                               const vec<T, 1>& b) {
  uint32x4_t neg;
  if constexpr (std::is_same_v<T, float>) neg = vcltzq_f32(vmulq_f32(a.r, b.r));
  else neg = vcltzq_s32(vmulq_s32(a.r, b.r));
  return {vsubq_s32(acc.r, vreinterpretq_s32_u32(neg))};
}

// eor + ushr #31 + add
template <class T>
inline vec<int32_t, 1> count_sign_differences(const vec<int32_t, 1>& acc, const vec<T, 1>& a,
                                              const vec<T, 1>& b) {
  uint32x4_t x, y;
  memcpy(&x, &a.r, 16);
  memcpy(&y, &b.r, 16);
  return {vaddq_s32(acc.r, vreinterpretq_s32_u32(vshrq_n_u32(veorq_u32(x, y), 31)))};
}

// fcmgt/fcmlt + bsl / cmgt/cmlt + sub: 1, -1, or the lane itself.
template <class T>
inline vec<T, 1> sign_value(const vec<T, 1>& a) {
  if constexpr (std::is_same_v<T, float>) {
    const float32x4_t r = vbslq_f32(vcgtzq_f32(a.r), vdupq_n_f32(1.0f), a.r);
    return {vbslq_f32(vcltzq_f32(a.r), vdupq_n_f32(-1.0f), r)};
  } else {
    return {vsubq_s32(vreinterpretq_s32_u32(vcltzq_s32(a.r)), vreinterpretq_s32_u32(vcgtzq_s32(a.r)))};
  }
}

// fabd / sabd
template <class T>
inline vec<T, 1> abs_diff(const vec<T, 1>& a, const vec<T, 1>& b) {
  if constexpr (std::is_same_v<T, float>) return abs(sub(a, b));
  else return {vabdq_s32(a.r, b.r)};
}

// scvtf
inline vec<float, 1> to_float(const vec<int32_t, 1>& a) { return {vcvtq_f32_s32(a.r)}; }

// Folds `count` whole 128-bit vectors from p into one vector by maximum or minimum (of
// the elements or of their absolute values, which saturate for integers), for searches
// whose answer cannot depend on the order: `nan` is set when a NaN was met, and then
// the lanes are unspecified; so is the sign of a zero that ties with the other zero.
// fmax and fmin keep a NaN once met, so one test at the end finds it.
enum class Fold { kMax, kMin, kMaxAbs, kMinAbs };

namespace neon {
template <Fold f, class R>
inline R fold_view(R x) {
  if constexpr (f == Fold::kMaxAbs || f == Fold::kMinAbs) {
    if constexpr (std::is_same_v<R, float32x4_t>) return vabsq_f32(x);
    else if constexpr (std::is_same_v<R, float64x2_t>) return vabsq_f64(x);
    else if constexpr (std::is_same_v<R, int16x8_t>) return vqabsq_s16(x);
    else return vqabsq_s32(x);
  } else {
    return x;
  }
}
template <Fold f, class R>
inline R fold_pick(R a, R x) {
  constexpr bool kMax = f == Fold::kMax || f == Fold::kMaxAbs;
  if constexpr (std::is_same_v<R, float32x4_t> || std::is_same_v<R, float64x2_t>)
    return kMax ? fmax(a, x) : fmin(a, x);
  else
    return kMax ? imax(a, x) : imin(a, x);
}
inline bool any_equal(float32x4_t a, float32x4_t b) { return vmaxvq_u32(vceqq_f32(a, b)) != 0; }
inline bool any_equal(float64x2_t a, float64x2_t b) {
  return vmaxvq_u32(vreinterpretq_u32_u64(vceqq_f64(a, b))) != 0;
}
inline bool any_equal(uint8x16_t a, uint8x16_t b) { return vmaxvq_u8(vceqq_u8(a, b)) != 0; }
inline bool any_equal(uint16x8_t a, uint16x8_t b) { return vmaxvq_u16(vceqq_u16(a, b)) != 0; }
inline bool any_equal(uint32x4_t a, uint32x4_t b) { return vmaxvq_u32(vceqq_u32(a, b)) != 0; }
inline bool any_equal(int16x8_t a, int16x8_t b) { return vmaxvq_u16(vceqq_s16(a, b)) != 0; }
inline bool any_equal(int32x4_t a, int32x4_t b) { return vmaxvq_u32(vceqq_s32(a, b)) != 0; }
template <class T>
inline bool has_nan(const vec<T, 1>& v) {
  if constexpr (std::is_floating_point_v<T>) return any_nan(v.r);
  else return false;
}
}  // namespace neon

template <Fold f, class T>
inline vec<T, 1> fold(const T* p, int64_t count, bool& nan) {
  constexpr int L = vec<T, 1>::kLanes;
  auto acc = neon::fold_view<f>(load<vec<T, 1>>(p).r);
  for (int64_t i = 1; i < count; ++i) acc = neon::fold_pick<f>(acc, neon::fold_view<f>(load<vec<T, 1>>(p + i * L).r));
  const vec<T, 1> r{acc};
  nan |= neon::has_nan(r);
  return r;
}

// Both folds of the elements in one pass.
template <class T>
inline void fold_min_max(const T* p, int64_t count, vec<T, 1>& mn, vec<T, 1>& mx, bool& nan) {
  constexpr int L = vec<T, 1>::kLanes;
  auto lo = load<vec<T, 1>>(p).r, hi = lo;
  for (int64_t i = 1; i < count; ++i) {
    const auto x = load<vec<T, 1>>(p + i * L).r;
    lo = neon::fold_pick<Fold::kMin>(lo, x);
    hi = neon::fold_pick<Fold::kMax>(hi, x);
  }
  mn = vec<T, 1>{lo};
  mx = vec<T, 1>{hi};
  nan |= neon::has_nan(mn);
}

// The first of `count` whole vectors from p that has a lane equal to x, after the view
// of the fold f (absolute values or not); -1 if none. The compare is ordered: NaN
// equals nothing, -0 equals +0. (fcmeq + umaxv per vector)
template <Fold f, class T>
inline int64_t first_equal(const T* p, int64_t count, T x) {
  constexpr int L = vec<T, 1>::kLanes;
  const auto xv = splat<vec<T, 1>>(x).r;
  for (int64_t i = 0; i < count; ++i) {
    const auto y = neon::fold_view<f>(load<vec<T, 1>>(p + i * L).r);
    if (neon::any_equal(y, xv)) return i;
  }
  return -1;
}

}  // namespace zivks::simd
