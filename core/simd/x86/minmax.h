// x86 backend: minimum, maximum, absolute values, reductions, compares and the per-lane
// counts of the search families, with the results of the Arm unit.
//
// maxps(a, b) is "a > b ? a : b": it returns b for any NaN and for two zeros. Taking it
// both ways round and keeping the common bits (AND for the maximum, OR for the minimum)
// orders -0 below +0; lanes with a NaN operand get the NaN of the library's rule.
#pragma once

#include <limits>

namespace zivks::simd {

namespace x86 {

#define ZIVKS_X86_FLOAT_OPS(reg, pre, suf)                                                    \
  inline reg max_raw(reg a, reg b) { return pre##_max_##suf(a, b); }                          \
  inline reg min_raw(reg a, reg b) { return pre##_min_##suf(a, b); }                          \
  inline reg and_raw(reg a, reg b) { return pre##_and_##suf(a, b); }                          \
  inline reg or_raw(reg a, reg b) { return pre##_or_##suf(a, b); }
ZIVKS_X86_FLOAT_OPS(__m128, _mm, ps)
ZIVKS_X86_FLOAT_OPS(__m128d, _mm, pd)
#if defined(__AVX2__)
ZIVKS_X86_FLOAT_OPS(__m256, _mm256, ps)
ZIVKS_X86_FLOAT_OPS(__m256d, _mm256, pd)
#endif
#undef ZIVKS_X86_FLOAT_OPS
#if defined(__AVX512F__) && defined(__AVX512DQ__)
// The zero-masked forms with every lane selected: the plain ones start from an
// undefined register, which GCC 12 warns about.
inline __m512 max_raw(__m512 a, __m512 b) { return _mm512_maskz_max_ps(__mmask16(0xFFFF), a, b); }
inline __m512 min_raw(__m512 a, __m512 b) { return _mm512_maskz_min_ps(__mmask16(0xFFFF), a, b); }
inline __m512 and_raw(__m512 a, __m512 b) { return _mm512_and_ps(a, b); }
inline __m512 or_raw(__m512 a, __m512 b) { return _mm512_or_ps(a, b); }
inline __m512d max_raw(__m512d a, __m512d b) { return _mm512_maskz_max_pd(__mmask8(0xFF), a, b); }
inline __m512d min_raw(__m512d a, __m512d b) { return _mm512_maskz_min_pd(__mmask8(0xFF), a, b); }
inline __m512d and_raw(__m512d a, __m512d b) { return _mm512_and_pd(a, b); }
inline __m512d or_raw(__m512d a, __m512d b) { return _mm512_or_pd(a, b); }
#endif

inline bool any_unordered(__m128 a, __m128 b) { return _mm_movemask_ps(_mm_cmpunord_ps(a, b)) != 0; }
inline bool any_unordered(__m128d a, __m128d b) { return _mm_movemask_pd(_mm_cmpunord_pd(a, b)) != 0; }
#if defined(__AVX2__)
inline bool any_unordered(__m256 a, __m256 b) {
  return _mm256_movemask_ps(_mm256_cmp_ps(a, b, _CMP_UNORD_Q)) != 0;
}
inline bool any_unordered(__m256d a, __m256d b) {
  return _mm256_movemask_pd(_mm256_cmp_pd(a, b, _CMP_UNORD_Q)) != 0;
}
#endif
#if defined(__AVX512F__)
inline bool any_unordered(__m512 a, __m512 b) { return _mm512_cmp_ps_mask(a, b, _CMP_UNORD_Q) != 0; }
inline bool any_unordered(__m512d a, __m512d b) { return _mm512_cmp_pd_mask(a, b, _CMP_UNORD_Q) != 0; }
#endif

// Lanes with a NaN operand get the NaN of the rule. The operands come by value, so
// that the hot loop need not keep them in memory for this rare call.
template <class V>
[[gnu::cold, gnu::noinline]] V nan_operand_lanes(V r, V a, V b) {
  lanes<V> lr(r), la(a), lb(b);
  for (int i = 0; i < V::kLanes; ++i)
    if (fp::is_nan(la.v[i]) || fp::is_nan(lb.v[i])) lr.v[i] = fp::nan_of(la.v[i], lb.v[i]);
  return lr.get();
}

}  // namespace x86

namespace x86 {
#if defined(__AVX512DQ__) && defined(__AVX512VL__)
// vrangeps/pd: the maximum (imm 5) or minimum (imm 4), the sign of the value chosen,
// -0 below +0, in one step.
inline __m128 max_exact(__m128 a, __m128 b) { return _mm_range_ps(a, b, 5); }
inline __m128d max_exact(__m128d a, __m128d b) { return _mm_range_pd(a, b, 5); }
inline __m256 max_exact(__m256 a, __m256 b) { return _mm256_range_ps(a, b, 5); }
inline __m256d max_exact(__m256d a, __m256d b) { return _mm256_range_pd(a, b, 5); }
inline __m512 max_exact(__m512 a, __m512 b) { return _mm512_maskz_range_ps(__mmask16(0xFFFF), a, b, 5); }
inline __m512d max_exact(__m512d a, __m512d b) { return _mm512_maskz_range_pd(__mmask8(0xFF), a, b, 5); }
inline __m128 min_exact(__m128 a, __m128 b) { return _mm_range_ps(a, b, 4); }
inline __m128d min_exact(__m128d a, __m128d b) { return _mm_range_pd(a, b, 4); }
inline __m256 min_exact(__m256 a, __m256 b) { return _mm256_range_ps(a, b, 4); }
inline __m256d min_exact(__m256d a, __m256d b) { return _mm256_range_pd(a, b, 4); }
inline __m512 min_exact(__m512 a, __m512 b) { return _mm512_maskz_range_ps(__mmask16(0xFFFF), a, b, 4); }
inline __m512d min_exact(__m512d a, __m512d b) { return _mm512_maskz_range_pd(__mmask8(0xFF), a, b, 4); }
#else
template <class R>
inline R max_exact(R a, R b) { return and_raw(max_raw(a, b), max_raw(b, a)); }
template <class R>
inline R min_exact(R a, R b) { return or_raw(min_raw(a, b), min_raw(b, a)); }
#endif
}  // namespace x86

// fmax
template <class T, int K>
inline vec<T, K> max_propagating(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r{x86::max_exact(a.r, b.r)};
  return __builtin_expect(x86::any_unordered(a.r, b.r), 0) ? x86::nan_operand_lanes(r, a, b) : r;
}

// fmin
template <class T, int K>
inline vec<T, K> min_propagating(const vec<T, K>& a, const vec<T, K>& b) {
  vec<T, K> r{x86::min_exact(a.r, b.r)};
  return __builtin_expect(x86::any_unordered(a.r, b.r), 0) ? x86::nan_operand_lanes(r, a, b) : r;
}

namespace x86 {
// Integer maximum or minimum over the lanes of a wide register (vpmax / vpmin).
template <bool kMax, class T, int K>
inline vec<T, K> wide_pick(const vec<T, K>& a, const vec<T, K>& b) {
  typedef T G __attribute__((vector_size(16 * K)));
  G x, y;
  memcpy(&x, &a.r, sizeof x);
  memcpy(&y, &b.r, sizeof y);
  const G r = kMax ? (x > y ? x : y) : (x < y ? x : y);
  vec<T, K> v;
  memcpy(&v.r, &r, sizeof r);
  return v;
}
}  // namespace x86

// smax / umax
template <class T, int K>
inline vec<T, K> max(const vec<T, K>& a, const vec<T, K>& b) {
  if constexpr (K > 1) return x86::wide_pick<true>(a, b);
  else if constexpr (std::is_same_v<T, uint8_t>) return {_mm_max_epu8(a.r, b.r)};
  else if constexpr (std::is_same_v<T, uint16_t>) return {_mm_max_epu16(a.r, b.r)};
  else if constexpr (std::is_same_v<T, uint32_t>) return {_mm_max_epu32(a.r, b.r)};
  else if constexpr (std::is_same_v<T, int16_t>) return {_mm_max_epi16(a.r, b.r)};
  else {
    static_assert(std::is_same_v<T, int32_t>, "lane type");
    return {_mm_max_epi32(a.r, b.r)};
  }
}

// smin / umin
template <class T, int K>
inline vec<T, K> min(const vec<T, K>& a, const vec<T, K>& b) {
  if constexpr (K > 1) return x86::wide_pick<false>(a, b);
  else if constexpr (std::is_same_v<T, uint8_t>) return {_mm_min_epu8(a.r, b.r)};
  else if constexpr (std::is_same_v<T, uint16_t>) return {_mm_min_epu16(a.r, b.r)};
  else if constexpr (std::is_same_v<T, uint32_t>) return {_mm_min_epu32(a.r, b.r)};
  else if constexpr (std::is_same_v<T, int16_t>) return {_mm_min_epi16(a.r, b.r)};
  else {
    static_assert(std::is_same_v<T, int32_t>, "lane type");
    return {_mm_min_epi32(a.r, b.r)};
  }
}

// fabs
template <class T, int K>
inline vec<T, K> abs(const vec<T, K>& a) {
  static_assert(K == 1, "one block");
  if constexpr (std::is_same_v<T, float>)
    return {_mm_castsi128_ps(_mm_and_si128(_mm_castps_si128(a.r), _mm_set1_epi32(0x7FFFFFFF)))};
  else
    return {_mm_castsi128_pd(
        _mm_and_si128(_mm_castpd_si128(a.r), _mm_set1_epi64x(0x7FFFFFFFFFFFFFFFll)))};
}

// sqabs: in int_arith.h, for every register width.

namespace x86 {
// The lanes of the upper half moved down onto the lower ones.
template <class T>
inline __m128i halves(__m128i v, int lanes_in_half) {
  switch (lanes_in_half * static_cast<int>(sizeof(T))) {
    case 8: return _mm_unpackhi_epi64(v, v);
    case 4: return _mm_shuffle_epi32(v, _MM_SHUFFLE(1, 1, 1, 1));
    case 2: return _mm_srli_epi32(v, 16);
    default: return _mm_srli_epi16(v, 8);
  }
}
}  // namespace x86

// fmaxv / smaxv / umaxv: lower half against upper half, down to one lane.
template <class T>
inline T reduce_max(const vec<T, 1>& a) {
  if constexpr (std::is_same_v<T, float>) {
    const vec<T, 1> s{_mm_shuffle_ps(a.r, a.r, _MM_SHUFFLE(2, 3, 0, 1))};
    const vec<T, 1> p = max_propagating(a, s);                // l0 l1 | l2 l3
    const vec<T, 1> h{_mm_movehl_ps(p.r, p.r)};
    return _mm_cvtss_f32(max_propagating(p, h).r);
  } else if constexpr (std::is_same_v<T, double>) {
    const vec<T, 1> h{_mm_unpackhi_pd(a.r, a.r)};
    return _mm_cvtsd_f64(max_propagating(a, h).r);
  } else {
    vec<T, 1> v = a;
    for (int n = vec<T, 1>::kLanes / 2; n >= 1; n /= 2) v = max(v, vec<T, 1>{x86::halves<T>(v.r, n)});
    T r;
    memcpy(&r, &v.r, sizeof r);
    return r;
  }
}

// fminv / sminv / uminv
template <class T>
inline T reduce_min(const vec<T, 1>& a) {
  if constexpr (std::is_same_v<T, float>) {
    const vec<T, 1> s{_mm_shuffle_ps(a.r, a.r, _MM_SHUFFLE(2, 3, 0, 1))};
    const vec<T, 1> p = min_propagating(a, s);
    const vec<T, 1> h{_mm_movehl_ps(p.r, p.r)};
    return _mm_cvtss_f32(min_propagating(p, h).r);
  } else if constexpr (std::is_same_v<T, double>) {
    const vec<T, 1> h{_mm_unpackhi_pd(a.r, a.r)};
    return _mm_cvtsd_f64(min_propagating(a, h).r);
  } else {
    vec<T, 1> v = a;
    for (int n = vec<T, 1>::kLanes / 2; n >= 1; n /= 2) v = min(v, vec<T, 1>{x86::halves<T>(v.r, n)});
    T r;
    memcpy(&r, &v.r, sizeof r);
    return r;
  }
}

// faddp, faddp: (l0 + l1) + (l2 + l3).
inline float reduce_add_pairwise(const vec<float, 1>& a) {
  const vec<float, 1> s{_mm_shuffle_ps(a.r, a.r, _MM_SHUFFLE(2, 3, 0, 1))};
  const vec<float, 1> p = add(a, s);
  const vec<float, 1> h{_mm_movehl_ps(p.r, p.r)};
  return _mm_cvtss_f32(add(p, h).r);
}

// fcmeq + bsl: lanes of a that are NaN become the lanes of r.
template <class T, int K>
inline vec<T, K> select_nan(const vec<T, K>& a, const vec<T, K>& r) {
  static_assert(K == 1, "one block");
  if constexpr (std::is_same_v<T, float>) return {_mm_blendv_ps(a.r, r.r, _mm_cmpunord_ps(a.r, a.r))};
  else return {_mm_blendv_pd(a.r, r.r, _mm_cmpunord_pd(a.r, a.r))};
}

// cmgt, cmgt, and, sub: each lane of acc counts one more where lo < x < hi.
inline vec<int32_t, 1> count_between(const vec<int32_t, 1>& acc, const vec<int32_t, 1>& x,
                                     const vec<int32_t, 1>& lo, const vec<int32_t, 1>& hi) {
  const __m128i in = _mm_and_si128(_mm_cmpgt_epi32(x.r, lo.r), _mm_cmpgt_epi32(hi.r, x.r));
  return {_mm_sub_epi32(acc.r, in)};
}

// ld1 + sxtl: four int16 widened to int32.
inline vec<int32_t, 1> load_widened(const int16_t* p) {
  return {_mm_cvtepi16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)))};
}

// fmul + fcmlt #0 + sub / mul + cmlt #0 + sub
template <class T>
inline vec<int32_t, 1> count_negative_products(const vec<int32_t, 1>& acc, const vec<T, 1>& a,
                                               const vec<T, 1>& b) {
  __m128i neg;
  if constexpr (std::is_same_v<T, float>)
    neg = _mm_castps_si128(_mm_cmplt_ps(_mm_mul_ps(a.r, b.r), _mm_setzero_ps()));
  else
    neg = _mm_srai_epi32(_mm_mullo_epi32(a.r, b.r), 31);
  return {_mm_sub_epi32(acc.r, neg)};
}

// eor + ushr #31 + add
template <class T>
inline vec<int32_t, 1> count_sign_differences(const vec<int32_t, 1>& acc, const vec<T, 1>& a,
                                              const vec<T, 1>& b) {
  __m128i x, y;
  memcpy(&x, &a.r, 16);
  memcpy(&y, &b.r, 16);
  return {_mm_add_epi32(acc.r, _mm_srli_epi32(_mm_xor_si128(x, y), 31))};
}

// fcmgt/fcmlt + bsl / cmgt/cmlt + sub: 1, -1, or the lane itself.
template <class T>
inline vec<T, 1> sign_value(const vec<T, 1>& a) {
  if constexpr (std::is_same_v<T, float>) {
    const __m128 z = _mm_setzero_ps();
    __m128 r = _mm_blendv_ps(a.r, _mm_set1_ps(1.0f), _mm_cmpgt_ps(a.r, z));
    return {_mm_blendv_ps(r, _mm_set1_ps(-1.0f), _mm_cmplt_ps(a.r, z))};
  } else {
    const __m128i z = _mm_setzero_si128();
    // (x > 0) is -1 where true, (x < 0) likewise: their difference is the sign.
    return {_mm_sub_epi32(_mm_cmpgt_epi32(z, a.r), _mm_cmpgt_epi32(a.r, z))};
  }
}

// fabd / sabd
template <class T>
inline vec<T, 1> abs_diff(const vec<T, 1>& a, const vec<T, 1>& b) {
  if constexpr (std::is_same_v<T, float>) return abs(sub(a, b));
  else return {_mm_abs_epi32(_mm_sub_epi32(a.r, b.r))};
}

// scvtf
inline vec<float, 1> to_float(const vec<int32_t, 1>& a) { return {_mm_cvtepi32_ps(a.r)}; }

// Folds `count` whole 128-bit vectors from p into one vector by maximum or minimum (of
// the elements or of their absolute values, which saturate for integers), for searches
// whose answer cannot depend on the order: `nan` is set when a NaN was met, and then
// the lanes are unspecified; so is the sign of a zero that ties with the other zero.
// The loop runs on the widest registers of the build (maxps and its kin, which keep
// the second operand for a NaN or two zeros; the unordered test keeps the NaN).
enum class Fold { kMax, kMin, kMaxAbs, kMinAbs };

namespace x86 {

template <class T, int Bytes>
struct gvec {
  typedef T type __attribute__((vector_size(Bytes), aligned(1), may_alias));
  using bits = std::conditional_t<sizeof(T) == 8, int64_t, std::conditional_t<sizeof(T) == 4, int32_t,
                                  std::conditional_t<sizeof(T) == 2, int16_t, int8_t>>>;
  typedef bits mask __attribute__((vector_size(Bytes)));
};

template <Fold f, class T, class G>
inline G fold_view(G x) {
  if constexpr (f == Fold::kMaxAbs || f == Fold::kMinAbs) {
    using I = typename gvec<T, sizeof(G)>::bits;
    using M = typename gvec<T, sizeof(G)>::mask;
    if constexpr (std::is_floating_point_v<T>) {
      return reinterpret_cast<G>(reinterpret_cast<M>(x) & static_cast<I>(~(uint64_t{1} << (sizeof(T) * 8 - 1))));
    } else {
      using U = std::make_unsigned_t<T>;
      typedef U UG __attribute__((vector_size(sizeof(G))));
      // Negated unsigned, the most negative value stays one above the most positive.
      const UG ux = reinterpret_cast<UG>(x);
      const UG ua = x < 0 ? UG{} - ux : ux;
      const UG top = UG{} + static_cast<U>(std::numeric_limits<T>::max());
      return reinterpret_cast<G>(ua < top ? ua : top);
    }
  } else {
    return x;
  }
}

// maxps(x, acc) is "x > acc ? x : acc"; integers use the same rule, which the compiler
// turns into pmax/pmin.
template <Fold f, class G>
inline G fold_pick(G acc, G x) {
  constexpr bool kMax = f == Fold::kMax || f == Fold::kMaxAbs;
  using E = std::remove_reference_t<decltype(x[0])>;
  if constexpr (std::is_floating_point_v<E>) {
    using R = typename reg<E, static_cast<int>(sizeof(G) / 16)>::type;
    R a, b;
    memcpy(&a, &acc, sizeof a);
    memcpy(&b, &x, sizeof b);
    const R r = kMax ? max_raw(b, a) : min_raw(b, a);
    G g;
    memcpy(&g, &r, sizeof g);
    return g;
  } else {
    if constexpr (kMax) return x > acc ? x : acc;
    else return x < acc ? x : acc;
  }
}

// Folds into one accumulator per fold of `fs` (one or two), K registers of Bytes at a
// time, then the blocks of the wide registers into one, then the vectors left over.
template <class T, int Bytes, Fold... fs>
inline void fold_wide(const T* p, int64_t count, typename gvec<T, 16>::mask& nan,
                      typename gvec<T, 16>::type* out) {
  using G = typename gvec<T, Bytes>::type;
  using M = typename gvec<T, Bytes>::mask;
  using G1 = typename gvec<T, 16>::type;
  using M1 = typename gvec<T, 16>::mask;
  constexpr int kPer = Bytes / 16;
  constexpr int L = 16 / sizeof(T);
  const G first = *reinterpret_cast<const G*>(p);
  G acc[] = {fold_view<fs, T>(first)...};
  G acc2[] = {fold_view<fs, T>(first)...};  // a second chain, so that loads need not wait
  M nanm{};
  int64_t i = 0;
  for (; i + 2 * kPer <= count; i += 2 * kPer) {
    const G x = *reinterpret_cast<const G*>(p + i * L);
    const G y = *reinterpret_cast<const G*>(p + (i + kPer) * L);
    if constexpr (std::is_floating_point_v<T>) nanm |= (x != x) | (y != y);
    int k = 0;
    ((acc[k] = fold_pick<fs>(acc[k], fold_view<fs, T>(x)),
      acc2[k] = fold_pick<fs>(acc2[k], fold_view<fs, T>(y)), ++k),
     ...);
  }
  for (; i + kPer <= count; i += kPer) {
    const G x = *reinterpret_cast<const G*>(p + i * L);
    if constexpr (std::is_floating_point_v<T>) nanm |= x != x;
    int k = 0;
    ((acc[k] = fold_pick<fs>(acc[k], fold_view<fs, T>(x)), ++k), ...);
  }
  {
    int k = 0;
    ((acc[k] = fold_pick<fs>(acc[k], acc2[k]), ++k), ...);
  }
  for (int k = 0; k < kPer; ++k) {
    M1 n1;
    memcpy(&n1, reinterpret_cast<const char*>(&nanm) + 16 * k, 16);
    nan |= n1;
  }
  int a = 0;
  (([&] {
     G1 r;
     memcpy(&r, &acc[a], 16);
     for (int k = 1; k < kPer; ++k) {
       G1 b;
       memcpy(&b, reinterpret_cast<const char*>(&acc[a]) + 16 * k, 16);
       r = fold_pick<fs>(r, b);
     }
     out[a++] = r;
   }()),
   ...);
  for (; i < count; ++i) {
    const G1 x = *reinterpret_cast<const G1*>(p + i * L);
    if constexpr (std::is_floating_point_v<T>) nan |= x != x;
    int k = 0;
    ((out[k] = fold_pick<fs>(out[k], fold_view<fs, T>(x)), ++k), ...);
  }
}

}  // namespace x86

namespace x86 {
template <class T, Fold... fs>
inline void fold(const T* p, int64_t count, bool& nan, vec<T, 1>* out) {
  typename gvec<T, 16>::mask m{};
  typename gvec<T, 16>::type r[sizeof...(fs)];
  if (count >= kWide) fold_wide<T, 16 * kWide, fs...>(p, count, m, r);
  else fold_wide<T, 16, fs...>(p, count, m, r);
  const typename gvec<T, 16>::mask zero{};
  nan |= memcmp(&m, &zero, 16) != 0;
  memcpy(out, r, sizeof r);
}
}  // namespace x86

template <Fold f, class T>
inline vec<T, 1> fold(const T* p, int64_t count, bool& nan) {
  vec<T, 1> r;
  x86::fold<T, f>(p, count, nan, &r);
  return r;
}

// Both folds of the elements in one pass.
template <class T>
inline void fold_min_max(const T* p, int64_t count, vec<T, 1>& mn, vec<T, 1>& mx, bool& nan) {
  vec<T, 1> r[2];
  x86::fold<T, Fold::kMin, Fold::kMax>(p, count, nan, r);
  mn = r[0];
  mx = r[1];
}

// The first of `count` whole vectors from p that has a lane equal to x, after the view
// of the fold f (absolute values or not); -1 if none. The compare is ordered: NaN
// equals nothing, -0 equals +0. (fcmeq + umaxv per vector)
template <Fold f, class T>
inline int64_t first_equal(const T* p, int64_t count, T x) {
  using G = typename x86::gvec<T, 16>::type;
  using M = typename x86::gvec<T, 16>::mask;
  const G xv = G{} + x;
  for (int64_t i = 0; i < count; ++i) {
    const G y = x86::fold_view<f, T>(*reinterpret_cast<const G*>(p + i * (16 / sizeof(T))));
    const M eq = y == xv;
    __m128i e;
    memcpy(&e, &eq, 16);
    if (!_mm_testz_si128(e, e)) return i;
  }
  return -1;
}

}  // namespace zivks::simd
