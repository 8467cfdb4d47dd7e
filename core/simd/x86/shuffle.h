// x86 backend: moving lanes and bytes, and the structured loads and stores, made of
// byte shuffles within 128-bit lanes and permutes across them.
#pragma once

namespace zivks::simd {

namespace x86 {

// Any register seen as integer lanes, and back.
inline __m128i ints(__m128i x) { return x; }
inline __m128i ints(__m128 x) { return _mm_castps_si128(x); }
inline __m128i ints(__m128d x) { return _mm_castpd_si128(x); }
inline void from_ints(__m128i& d, __m128i x) { d = x; }
inline void from_ints(__m128& d, __m128i x) { d = _mm_castsi128_ps(x); }
inline void from_ints(__m128d& d, __m128i x) { d = _mm_castsi128_pd(x); }
#if defined(__AVX2__)
inline __m256i ints(__m256i x) { return x; }
inline __m256i ints(__m256 x) { return _mm256_castps_si256(x); }
inline __m256i ints(__m256d x) { return _mm256_castpd_si256(x); }
inline void from_ints(__m256i& d, __m256i x) { d = x; }
inline void from_ints(__m256& d, __m256i x) { d = _mm256_castsi256_ps(x); }
inline void from_ints(__m256d& d, __m256i x) { d = _mm256_castsi256_pd(x); }
#endif
#if defined(__AVX512F__)
inline __m512i ints(__m512i x) { return x; }
inline __m512i ints(__m512 x) { return _mm512_castps_si512(x); }
inline __m512i ints(__m512d x) { return _mm512_castpd_si512(x); }
inline void from_ints(__m512i& d, __m512i x) { d = x; }
inline void from_ints(__m512& d, __m512i x) { d = _mm512_castsi512_ps(x); }
inline void from_ints(__m512d& d, __m512i x) { d = _mm512_castsi512_pd(x); }
#endif

// A byte table for pshufb: 16 source byte indices, -1 (high bit set) for a zero.
struct table16 {
  int8_t b[16];
};

// Lanes of S bytes in reverse order within 16 bytes.
constexpr table16 reverse_table(int s) {
  table16 t{};
  for (int i = 0; i < 16; ++i) t.b[i] = static_cast<int8_t>((16 / s - 1 - i / s) * s + i % s);
  return t;
}

// The bytes of every lane of S bytes in reverse order.
constexpr table16 swap_table(int s) {
  table16 t{};
  for (int i = 0; i < 16; ++i) t.b[i] = static_cast<int8_t>(i / s * s + (s - 1 - i % s));
  return t;
}

template <int S> inline constexpr table16 kReverse = reverse_table(S);
template <int S> inline constexpr table16 kSwap = swap_table(S);

// pshufb by a table in every 128-bit lane.
template <int K, class R>
inline R shuffle_lanes(R x, const table16& t) {
  const __m128i m = _mm_loadu_si128(reinterpret_cast<const __m128i*>(t.b));
  if constexpr (K == 1) return _mm_shuffle_epi8(x, m);
#if defined(__AVX2__)
  else if constexpr (K == 2) return _mm256_shuffle_epi8(x, _mm256_broadcastsi128_si256(m));
#endif
#if defined(__AVX512F__)
  // (the zero-masking forms with a full mask: the plain ones trip a false warning)
  else return _mm512_shuffle_epi8(x, _mm512_maskz_broadcast_i32x4(0xFFFF, m));
#endif
}

}  // namespace x86

// The lanes in reverse order (rev64 then ext #8).
template <class T, int K>
inline vec<T, K> reverse(const vec<T, K>& a) {
  auto x = x86::ints(a.r);
  if constexpr (sizeof(T) < 16) x = x86::shuffle_lanes<K>(x, x86::kReverse<sizeof(T)>);
#if defined(__AVX2__)
  if constexpr (K == 2) x = _mm256_permute4x64_epi64(x, 0x4E);
#endif
#if defined(__AVX512F__)
  if constexpr (K == 4) x = _mm512_maskz_shuffle_i64x2(0xFF, x, x, 0x1B);
#endif
  vec<T, K> r;
  x86::from_ints(r.r, x);
  return r;
}

// The bytes of every lane in reverse order (rev16 / rev32 / rev64).
template <class T, int K>
inline vec<T, K> swap_bytes(const vec<T, K>& a) {
  vec<T, K> r;
  x86::from_ints(r.r, x86::shuffle_lanes<K>(x86::ints(a.r), x86::kSwap<sizeof(T)>));
  return r;
}

namespace x86 {

// pshufb table that gathers the even lanes of S bytes into the low half and the odd
// ones into the high half.
constexpr table16 unzip_table(int s) {
  table16 t{};
  for (int i = 0; i < 16; ++i) {
    const int lane = i / s, half = lane / (8 / s), k = lane % (8 / s);
    t.b[i] = static_cast<int8_t>((2 * k + half) * s + i % s);
  }
  return t;
}
template <int S> inline constexpr table16 kUnzip = unzip_table(S);

#if defined(__AVX512F__)
// Index vectors of the two-register permutes, in lanes of S bytes: even lanes, odd
// lanes, and the interleaving of two registers' low and high halves.
template <int S>
struct permute_index {
  using I = std::conditional_t<S == 2, int16_t, std::conditional_t<S == 4, int32_t, int64_t>>;
  static constexpr int n = 64 / S;
  I even[n], odd[n], zip_lo[n], zip_hi[n];
  constexpr permute_index() : even{}, odd{}, zip_lo{}, zip_hi{} {
    for (int i = 0; i < n; ++i) {
      even[i] = static_cast<I>(2 * i);
      odd[i] = static_cast<I>(2 * i + 1);
      zip_lo[i] = static_cast<I>(i / 2 + (i % 2) * n);
      zip_hi[i] = static_cast<I>(n / 2 + i / 2 + (i % 2) * n);
    }
  }
};
template <int S> inline constexpr permute_index<S> kPermute{};

template <class I>
inline __m512i index_reg(const I* idx) { return _mm512_loadu_si512(idx); }

template <int S>
inline __m512i permute2(__m512i a, __m512i idx, __m512i b) {
  if constexpr (S == 2) return _mm512_permutex2var_epi16(a, idx, b);
  else if constexpr (S == 4) return _mm512_permutex2var_epi32(a, idx, b);
  else return _mm512_permutex2var_epi64(a, idx, b);
}
#endif

}  // namespace x86

// Two vectors of pairs split into the first and the second member of each pair (ld2).
template <class V>
inline void load_planes2(const typename V::lane* p, V& a, V& b) {
  using T = typename V::lane;
  constexpr int K = V::kBlocks, S = sizeof(T);
  static_assert(S == 2 || S == 4 || S == 8, "ld2 of 16-, 32- or 64-bit lanes");
  const V x0 = load<V>(p), x1 = load<V>(p + V::kLanes);
  auto lo = x86::ints(x0.r), hi = x86::ints(x1.r);
  if constexpr (K == 1) {
    if constexpr (S == 2) {
      lo = _mm_shuffle_epi8(lo, _mm_loadu_si128(reinterpret_cast<const __m128i*>(x86::kUnzip<2>.b)));
      hi = _mm_shuffle_epi8(hi, _mm_loadu_si128(reinterpret_cast<const __m128i*>(x86::kUnzip<2>.b)));
      x86::from_ints(a.r, _mm_unpacklo_epi64(lo, hi));
      x86::from_ints(b.r, _mm_unpackhi_epi64(lo, hi));
    } else if constexpr (S == 4) {
      const __m128 l = _mm_castsi128_ps(lo), h = _mm_castsi128_ps(hi);
      x86::from_ints(a.r, _mm_castps_si128(_mm_shuffle_ps(l, h, 0x88)));
      x86::from_ints(b.r, _mm_castps_si128(_mm_shuffle_ps(l, h, 0xDD)));
    } else {
      x86::from_ints(a.r, _mm_unpacklo_epi64(lo, hi));
      x86::from_ints(b.r, _mm_unpackhi_epi64(lo, hi));
    }
  }
#if defined(__AVX2__)
  else if constexpr (K == 2) {
    // Unzip within each 128-bit lane, then put the 64-bit groups in order.
    __m256i e, o;
    if constexpr (S == 2) {
      lo = x86::shuffle_lanes<2>(lo, x86::kUnzip<2>);
      hi = x86::shuffle_lanes<2>(hi, x86::kUnzip<2>);
      e = _mm256_unpacklo_epi64(lo, hi), o = _mm256_unpackhi_epi64(lo, hi);
    } else if constexpr (S == 4) {
      const __m256 l = _mm256_castsi256_ps(lo), h = _mm256_castsi256_ps(hi);
      e = _mm256_castps_si256(_mm256_shuffle_ps(l, h, 0x88));
      o = _mm256_castps_si256(_mm256_shuffle_ps(l, h, 0xDD));
    } else {
      e = _mm256_unpacklo_epi64(lo, hi), o = _mm256_unpackhi_epi64(lo, hi);
    }
    x86::from_ints(a.r, _mm256_permute4x64_epi64(e, 0xD8));
    x86::from_ints(b.r, _mm256_permute4x64_epi64(o, 0xD8));
  }
#endif
#if defined(__AVX512F__)
  else {
    x86::from_ints(a.r, x86::permute2<S>(lo, x86::index_reg(x86::kPermute<S>.even), hi));
    x86::from_ints(b.r, x86::permute2<S>(lo, x86::index_reg(x86::kPermute<S>.odd), hi));
  }
#endif
}

// Two planes joined into pairs, stored as two vectors (st2).
template <class T, int K>
inline void store_planes2(T* p, const vec<T, K>& a, const vec<T, K>& b) {
  constexpr int S = sizeof(T);
  static_assert(S == 2 || S == 4 || S == 8, "st2 of 16-, 32- or 64-bit lanes");
  using V = vec<T, K>;
  const auto x = x86::ints(a.r), y = x86::ints(b.r);
  decltype(x86::ints(a.r)) lo, hi;
  if constexpr (K == 1) {
    if constexpr (S == 2) lo = _mm_unpacklo_epi16(x, y), hi = _mm_unpackhi_epi16(x, y);
    else if constexpr (S == 4) lo = _mm_unpacklo_epi32(x, y), hi = _mm_unpackhi_epi32(x, y);
    else lo = _mm_unpacklo_epi64(x, y), hi = _mm_unpackhi_epi64(x, y);
  }
#if defined(__AVX2__)
  else if constexpr (K == 2) {
    __m256i l, h;
    if constexpr (S == 2) l = _mm256_unpacklo_epi16(x, y), h = _mm256_unpackhi_epi16(x, y);
    else if constexpr (S == 4) l = _mm256_unpacklo_epi32(x, y), h = _mm256_unpackhi_epi32(x, y);
    else l = _mm256_unpacklo_epi64(x, y), h = _mm256_unpackhi_epi64(x, y);
    lo = _mm256_permute2x128_si256(l, h, 0x20);
    hi = _mm256_permute2x128_si256(l, h, 0x31);
  }
#endif
#if defined(__AVX512F__)
  else {
    lo = x86::permute2<S>(x, x86::index_reg(x86::kPermute<S>.zip_lo), y);
    hi = x86::permute2<S>(x, x86::index_reg(x86::kPermute<S>.zip_hi), y);
  }
#endif
  V l, h;
  x86::from_ints(l.r, lo);
  x86::from_ints(h.r, hi);
  store(p, l);
  store(p + V::kLanes, h);
}

namespace x86 {

// Blend masks for the exchange of outer bytes over three registers of N bytes: first[r]
// marks the bytes of register r that are the first of their triple (they take the byte
// two above), third[r] those that are the third (they take the byte two below).
template <int N>
struct outer_masks {
  int8_t first[3][N], third[3][N];
  uint64_t first_bits[3], third_bits[3];
  constexpr outer_masks() : first{}, third{}, first_bits{}, third_bits{} {
    for (int r = 0; r < 3; ++r)
      for (int k = 0; k < N; ++k) {
        const int pos = (N * r + k) % 3;
        first[r][k] = pos == 0 ? -1 : 0;
        third[r][k] = pos == 2 ? -1 : 0;
        if (pos == 0) first_bits[r] |= uint64_t{1} << (k % 64);
        if (pos == 2) third_bits[r] |= uint64_t{1} << (k % 64);
      }
  }
};
template <int N> inline constexpr outer_masks<N> kOuterMasks{};

// The register's bytes moved up by two (byte k - 2 at k), the two lowest taken from the
// top of prev (palignr across registers).
template <int K, class R>
inline R bytes_from_below(R prev, R cur) {
  if constexpr (K == 1) return _mm_alignr_epi8(cur, prev, 14);
#if defined(__AVX2__)
  else if constexpr (K == 2) return _mm256_alignr_epi8(cur, _mm256_permute2x128_si256(prev, cur, 0x21), 14);
#endif
#if defined(__AVX512F__)
  else return _mm512_alignr_epi8(cur, _mm512_maskz_alignr_epi64(0xFF, cur, prev, 6), 14);
#endif
}

// The register's bytes moved down by two (byte k + 2 at k), the two highest taken from
// the bottom of next.
template <int K, class R>
inline R bytes_from_above(R cur, R next) {
  if constexpr (K == 1) return _mm_alignr_epi8(next, cur, 2);
#if defined(__AVX2__)
  else if constexpr (K == 2) return _mm256_alignr_epi8(_mm256_permute2x128_si256(cur, next, 0x21), cur, 2);
#endif
#if defined(__AVX512F__)
  else return _mm512_alignr_epi8(_mm512_maskz_alignr_epi64(0xFF, next, cur, 2), cur, 2);
#endif
}

// Register r of the three: the first byte of each triple from above, the third from
// below, the middle kept.
template <int K, class R>
inline R outer_swapped(int r, R x, R below, R above) {
  constexpr auto& m = kOuterMasks<16 * K>;
  if constexpr (K == 1) {
    const R f = _mm_loadu_si128(reinterpret_cast<const __m128i*>(m.first[r]));
    const R t = _mm_loadu_si128(reinterpret_cast<const __m128i*>(m.third[r]));
    return _mm_blendv_epi8(_mm_blendv_epi8(x, above, f), below, t);
  }
#if defined(__AVX2__)
  else if constexpr (K == 2) {
    const R f = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(m.first[r]));
    const R t = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(m.third[r]));
    return _mm256_blendv_epi8(_mm256_blendv_epi8(x, above, f), below, t);
  }
#endif
#if defined(__AVX512F__)
  else return _mm512_mask_blend_epi8(m.third_bits[r], _mm512_mask_blend_epi8(m.first_bits[r], x, above), below);
#endif
}

}  // namespace x86

// Three vectors holding byte triples (48 bytes a block) with the first and the third
// byte of every triple exchanged: ld3, the outer planes exchanged, st3 (here each byte
// taken from two above or two below, across registers).
template <int K>
inline void exchange_outer_bytes3(vec<uint8_t, K>& a, vec<uint8_t, K>& b, vec<uint8_t, K>& c) {
  using R = typename reg<uint8_t, K>::type;
  const R z = zeros<vec<uint8_t, K>>().r, x0 = a.r, x1 = b.r, x2 = c.r;
  a.r = x86::outer_swapped<K>(0, x0, x86::bytes_from_below<K>(z, x0), x86::bytes_from_above<K>(x0, x1));
  b.r = x86::outer_swapped<K>(1, x1, x86::bytes_from_below<K>(x0, x1), x86::bytes_from_above<K>(x1, x2));
  c.r = x86::outer_swapped<K>(2, x2, x86::bytes_from_below<K>(x1, x2), x86::bytes_from_above<K>(x2, z));
}

}  // namespace zivks::simd
