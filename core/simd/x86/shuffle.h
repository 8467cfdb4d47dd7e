// x86 backend: moving lanes and bytes, and the structured loads and stores, made of
// byte shuffles within 128-bit lanes and permutes across them.
#pragma once

#include "core/simd/x86/base.h"

namespace zivks::simd {

namespace x86 {

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
  return ops<K>::shuffle8(x, _mm_loadu_si128(reinterpret_cast<const __m128i*>(t.b)));
}

}  // namespace x86

// ---- reverse
// The lanes in reverse order within each block (nothing to do for a lane of a whole
// block), then the blocks in reverse order.
template <class T, int K>
inline vec<T, K> reverse(const vec<T, K>& a) {
  auto x = x86::bits(a);
  if constexpr (sizeof(T) < 16) x = x86::shuffle_lanes<K>(x, x86::kReverse<sizeof(T)>);
  return x86::of_bits<T, K>(x86::ops<K>::reverse_blocks(x));
}

// ---- swap_bytes
template <class T, int K>
inline vec<T, K> swap_bytes(const vec<T, K>& a) {
  return x86::of_bits<T, K>(x86::shuffle_lanes<K>(x86::bits(a), x86::kSwap<sizeof(T)>));
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

#if defined(ZIVKS_X86_512)
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

// ---- table_bytes
// pshufb gives 0 only for an index with its top bit set, so indices of 16 and more get
// it first; the wide forms look up within each 128-bit block, as wanted.
template <int K>
inline vec<uint8_t, K> table_bytes(const vec<uint8_t, K>& a, const vec<uint8_t, K>& idx) {
  using O = x86::ops<K>;
  const auto i = idx.raw | O::cmpgt8(idx.raw, O::set1_8(15));
  if constexpr (K == 1) return {_mm_shuffle_epi8(a.raw, i)};
  else if constexpr (K == 2) return {_mm256_shuffle_epi8(a.raw, i)};
#if defined(ZIVKS_X86_512)
  else return {_mm512_shuffle_epi8(a.raw, i)};
#endif
}

// ---- store_blocks12
// The 12 bytes of each block are gathered by a dword permute where the register is
// wide; AVX-512 stores the 48 bytes under a byte mask.
template <int K>
inline void store_blocks12(uint8_t* p, const vec<uint8_t, K>& v) {
  if constexpr (K == 1) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p), v.raw);
    const int32_t w = _mm_extract_epi32(v.raw, 2);
    memcpy(p + 8, &w, 4);
  } else if constexpr (K == 2) {
    const __m256i g = _mm256_permutevar8x32_epi32(v.raw, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_castsi256_si128(g));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p + 16), _mm256_extracti128_si256(g, 1));
  }
#if defined(ZIVKS_X86_512)
  else {
    const __m512i g = _mm512_permutexvar_epi32(
        _mm512_setr_epi32(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 15, 15, 15, 15), v.raw);
    _mm512_mask_storeu_epi8(p, (__mmask64{1} << 48) - 1, g);
  }
#endif
}

// ---- ext_bytes
template <int n>
inline vec<uint8_t, 1> ext_bytes(const vec<uint8_t, 1>& a, const vec<uint8_t, 1>& b) {
  return {_mm_alignr_epi8(b.raw, a.raw, n)};
}

// ---- load_planes2
// Each block unzipped into its even and odd lanes, then the 64-bit quarters put in
// order (AVX-512 does it in one two-register permute).
template <class V>
inline void load_planes2(const typename V::lane* p, V& a, V& b) {
  using T = typename V::lane;
  constexpr int K = V::kBlocks, S = sizeof(T);
  static_assert(S == 2 || S == 4 || S == 8, "ld2 of 16-, 32- or 64-bit lanes");
  using O = x86::ops<K>;
  const auto lo = x86::bits(load<V>(p)), hi = x86::bits(load<V>(p + V::kLanes));
#if defined(ZIVKS_X86_512)
  if constexpr (K == 4) {
    a = x86::of_bits<T, K>(x86::permute2<S>(lo, x86::index_reg(x86::kPermute<S>.even), hi));
    b = x86::of_bits<T, K>(x86::permute2<S>(lo, x86::index_reg(x86::kPermute<S>.odd), hi));
    return;
  }
#endif
  typename O::I e, o;
  if constexpr (S == 2) {
    const auto l = x86::shuffle_lanes<K>(lo, x86::kUnzip<2>), h = x86::shuffle_lanes<K>(hi, x86::kUnzip<2>);
    e = O::unpacklo64(l, h), o = O::unpackhi64(l, h);
  } else if constexpr (S == 4) {
    e = O::template shuffle32x2<x86::kEven32>(lo, hi), o = O::template shuffle32x2<x86::kOdd32>(lo, hi);
  } else {
    e = O::unpacklo64(lo, hi), o = O::unpackhi64(lo, hi);
  }
  a = x86::of_bits<T, K>(O::pack_order(e));
  b = x86::of_bits<T, K>(O::pack_order(o));
}

// ---- store_planes2
// Each block's halves interleaved, then the blocks put in order (AVX-512 does it in one
// two-register permute).
template <class T, int K>
inline void store_planes2(T* p, const vec<T, K>& a, const vec<T, K>& b) {
  constexpr int S = sizeof(T);
  static_assert(S == 2 || S == 4 || S == 8, "st2 of 16-, 32- or 64-bit lanes");
  using O = x86::ops<K>;
  const auto x = x86::bits(a), y = x86::bits(b);
  typename O::I lo, hi;
#if defined(ZIVKS_X86_512)
  if constexpr (K == 4) {
    lo = x86::permute2<S>(x, x86::index_reg(x86::kPermute<S>.zip_lo), y);
    hi = x86::permute2<S>(x, x86::index_reg(x86::kPermute<S>.zip_hi), y);
  } else
#endif
  {
    typename O::I l, h;
    if constexpr (S == 2) l = O::unpacklo16(x, y), h = O::unpackhi16(x, y);
    else if constexpr (S == 4) l = O::unpacklo32(x, y), h = O::unpackhi32(x, y);
    else l = O::unpacklo64(x, y), h = O::unpackhi64(x, y);
    if constexpr (K == 1) {
      lo = l, hi = h;
    } else {
      static_assert(K == 2, "two blocks");
      lo = _mm256_permute2x128_si256(l, h, x86::kLowBlocks);
      hi = _mm256_permute2x128_si256(l, h, x86::kHighBlocks);
    }
  }
  store(p, x86::of_bits<T, K>(lo));
  store(p + vec<T, K>::kLanes, x86::of_bits<T, K>(hi));
}

namespace x86 {

// Blend masks for the exchange of outer bytes over three registers of N bytes: first[r]
// marks the bytes of register r that are the first of their triple (they take the byte
// two above), third[r] those that are the third (they take the byte two below).
template <int N>
struct outer_masks {
  int8_t first[3][N], third[3][N];
  constexpr outer_masks() : first{}, third{} {
    for (int r = 0; r < 3; ++r)
      for (int k = 0; k < N; ++k) {
        const int pos = (N * r + k) % 3;
        first[r][k] = pos == 0 ? -1 : 0;
        third[r][k] = pos == 2 ? -1 : 0;
      }
  }
};
template <int N> inline constexpr outer_masks<N> kOuterMasks{};

// Register r of the three: the first byte of each triple from above, the third from
// below, the middle kept.
template <int K, class R>
inline R outer_swapped(int r, R x, R below, R above) {
  constexpr auto& m = kOuterMasks<16 * K>;
  return ops<K>::blendv8(ops<K>::blendv8(x, above, ops<K>::load(m.first[r])), below, ops<K>::load(m.third[r]));
}

}  // namespace x86

// ---- exchange_outer_bytes3
// Each byte taken from two above or two below, across registers.
template <int K>
inline void exchange_outer_bytes3(vec<uint8_t, K>& a, vec<uint8_t, K>& b, vec<uint8_t, K>& c) {
  using O = x86::ops<K>;
  const auto z = O::zero(), x0 = a.raw, x1 = b.raw, x2 = c.raw;
  a.raw = x86::outer_swapped<K>(0, x0, O::bytes_up2(z, x0), O::bytes_down2(x0, x1));
  b.raw = x86::outer_swapped<K>(1, x1, O::bytes_up2(x0, x1), O::bytes_down2(x1, x2));
  c.raw = x86::outer_swapped<K>(2, x2, O::bytes_up2(x1, x2), O::bytes_down2(x2, z));
}

}  // namespace zivks::simd
