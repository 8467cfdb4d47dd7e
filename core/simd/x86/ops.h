// x86 backend: the registers of 1, 2 and 4 blocks (SSE, AVX2, AVX-512) and, in ops<K>,
// the intrinsics of each width under one set of names, so that every operation of the
// backend is written once for all widths. The AVX-512 forms that would start from an
// undefined register (which GCC 12 warns about) are the zero-masked ones with every lane
// kept: the same instruction.
#pragma once

#include <immintrin.h>
#include <stdint.h>
#include <string.h>

#include <type_traits>

#if defined(__AVX512F__) && defined(__AVX512BW__) && defined(__AVX512DQ__) && defined(__AVX512VL__)
#define ZIVKS_X86_512 1
#endif

namespace zivks::simd {

#if defined(ZIVKS_X86_512)
inline constexpr int kWide = 4;
#elif defined(__AVX2__)
inline constexpr int kWide = 2;
#else
inline constexpr int kWide = 1;
#endif

namespace x86 {

// Immediates of the lane moves, each spelled once.
inline constexpr int kSwapHalves64 = 0x4E;   // 64-bit lanes 2 3 0 1: halves exchanged
inline constexpr int kEvenOdd64 = 0xD8;      // 64-bit lanes 0 2 1 3
inline constexpr int kReverse128 = 0x1B;     // 128-bit blocks 3 2 1 0
inline constexpr int kEven32 = 0x88;         // 32-bit lanes 0 2 of each source
inline constexpr int kOdd32 = 0xDD;          // 32-bit lanes 1 3 of each source
inline constexpr int kOddLanes16 = 0xAA;     // the odd 16-bit lanes of a block
inline constexpr uint32_t kOddLanes16Of32 = 0xAAAAAAAAu;  // the same in 32 lanes
inline constexpr int kLowBlocks = 0x20;      // blocks 0 of both sources
inline constexpr int kHighBlocks = 0x31;     // blocks 1 of both sources
inline constexpr int kMiddleBlocks = 0x21;   // block 1 of the first, block 0 of the second
inline constexpr int kRangeMax = 5;          // vrange: the larger, with its sign
inline constexpr int kRangeMin = 4;          // vrange: the smaller, with its sign

template <int K>
struct ops;

template <>
struct ops<1> {
  using I = __m128i;
  using F = __m128;
  using D = __m128d;
  using H = __m128i;  // what a widening reads: the low 8 bytes
  static I zero() { return _mm_setzero_si128(); }
  static I set1_8(int8_t x) { return _mm_set1_epi8(x); }
  static I set1_16(int16_t x) { return _mm_set1_epi16(x); }
  static I set1_32(int32_t x) { return _mm_set1_epi32(x); }
  static I set1_64(int64_t x) { return _mm_set1_epi64x(x); }
  static F set1(float x) { return _mm_set1_ps(x); }
  static D set1(double x) { return _mm_set1_pd(x); }
  static I block(__m128i b) { return b; }
  static I load(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
  static H load_half(const void* p) { return _mm_loadl_epi64(static_cast<const __m128i*>(p)); }
  static H lo_half(I x) { return x; }
  static H hi_half(I x) { return _mm_unpackhi_epi64(x, x); }
  static void stream(void* p, I x) { _mm_stream_si128(static_cast<__m128i*>(p), x); }
  static bool any(I x) { return !_mm_testz_si128(x, x); }

  static I add8(I a, I b) { return _mm_add_epi8(a, b); }
  static I add16(I a, I b) { return _mm_add_epi16(a, b); }
  static I add32(I a, I b) { return _mm_add_epi32(a, b); }
  static I add64(I a, I b) { return _mm_add_epi64(a, b); }
  static I sub8(I a, I b) { return _mm_sub_epi8(a, b); }
  static I sub16(I a, I b) { return _mm_sub_epi16(a, b); }
  static I sub32(I a, I b) { return _mm_sub_epi32(a, b); }
  static I sub64(I a, I b) { return _mm_sub_epi64(a, b); }
  static I mullo32(I a, I b) { return _mm_mullo_epi32(a, b); }
  static I adds_u8(I a, I b) { return _mm_adds_epu8(a, b); }
  static I adds_u16(I a, I b) { return _mm_adds_epu16(a, b); }
  static I adds_i16(I a, I b) { return _mm_adds_epi16(a, b); }
  static I subs_u8(I a, I b) { return _mm_subs_epu8(a, b); }
  static I subs_u16(I a, I b) { return _mm_subs_epu16(a, b); }
  static I subs_i16(I a, I b) { return _mm_subs_epi16(a, b); }
  static I abs16(I a) { return _mm_abs_epi16(a); }
  static I abs32(I a) { return _mm_abs_epi32(a); }
  static I max_u8(I a, I b) { return _mm_max_epu8(a, b); }
  static I max_u16(I a, I b) { return _mm_max_epu16(a, b); }
  static I max_u32(I a, I b) { return _mm_max_epu32(a, b); }
  static I max_i16(I a, I b) { return _mm_max_epi16(a, b); }
  static I max_i32(I a, I b) { return _mm_max_epi32(a, b); }
  static I min_u8(I a, I b) { return _mm_min_epu8(a, b); }
  static I min_u16(I a, I b) { return _mm_min_epu16(a, b); }
  static I min_u32(I a, I b) { return _mm_min_epu32(a, b); }
  static I min_i16(I a, I b) { return _mm_min_epi16(a, b); }
  static I min_i32(I a, I b) { return _mm_min_epi32(a, b); }
  static I cmpeq8(I a, I b) { return _mm_cmpeq_epi8(a, b); }
  static I cmpeq16(I a, I b) { return _mm_cmpeq_epi16(a, b); }
  static I cmpeq32(I a, I b) { return _mm_cmpeq_epi32(a, b); }
  static I cmpeq64(I a, I b) { return _mm_cmpeq_epi64(a, b); }
  static I cmpgt8(I a, I b) { return _mm_cmpgt_epi8(a, b); }
  static I cmpgt16(I a, I b) { return _mm_cmpgt_epi16(a, b); }
  static I cmpgt32(I a, I b) { return _mm_cmpgt_epi32(a, b); }
  static I cmpgt64(I a, I b) { return _mm_cmpgt_epi64(a, b); }
  static I blendv8(I a, I b, I m) { return _mm_blendv_epi8(a, b, m); }
  // b in the 32- or 64-bit lanes whose sign bit is set in m, a elsewhere.
  static I blend_sign32(I a, I b, I m) {
    return _mm_castps_si128(_mm_blendv_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), _mm_castsi128_ps(m)));
  }
  static I blend_sign64(I a, I b, I m) {
    return _mm_castpd_si128(_mm_blendv_pd(_mm_castsi128_pd(a), _mm_castsi128_pd(b), _mm_castsi128_pd(m)));
  }
  static I sll16(I a, __m128i n) { return _mm_sll_epi16(a, n); }
  static I sll32(I a, __m128i n) { return _mm_sll_epi32(a, n); }
  static I sll64(I a, __m128i n) { return _mm_sll_epi64(a, n); }
  static I srl16(I a, __m128i n) { return _mm_srl_epi16(a, n); }
  static I srl32(I a, __m128i n) { return _mm_srl_epi32(a, n); }
  static I srl64(I a, __m128i n) { return _mm_srl_epi64(a, n); }
  static I sra16(I a, __m128i n) { return _mm_sra_epi16(a, n); }
  static I sra32(I a, __m128i n) { return _mm_sra_epi32(a, n); }
  static I widen_u8_16(H x) { return _mm_cvtepu8_epi16(x); }
  static I widen_i8_16(H x) { return _mm_cvtepi8_epi16(x); }
  static I widen_u32_64(H x) { return _mm_cvtepu32_epi64(x); }
  static I widen_u16_32(H x) { return _mm_cvtepu16_epi32(x); }
  static I widen_i16_32(H x) { return _mm_cvtepi16_epi32(x); }
  static I widen_i32_64(H x) { return _mm_cvtepi32_epi64(x); }
  static I packs32(I a, I b) { return _mm_packs_epi32(a, b); }
  static I packus32(I a, I b) { return _mm_packus_epi32(a, b); }
  static I packs16(I a, I b) { return _mm_packs_epi16(a, b); }
  static I packus16(I a, I b) { return _mm_packus_epi16(a, b); }
  // A pack works within each block; at one block the lanes are in order already.
  static I pack_order(I x) { return x; }
  static I shuffle8(I x, __m128i table) { return _mm_shuffle_epi8(x, table); }
  static I reverse_blocks(I x) { return x; }
  static I unpacklo16(I a, I b) { return _mm_unpacklo_epi16(a, b); }
  static I unpackhi16(I a, I b) { return _mm_unpackhi_epi16(a, b); }
  static I unpacklo32(I a, I b) { return _mm_unpacklo_epi32(a, b); }
  static I unpackhi32(I a, I b) { return _mm_unpackhi_epi32(a, b); }
  static I unpacklo64(I a, I b) { return _mm_unpacklo_epi64(a, b); }
  static I unpackhi64(I a, I b) { return _mm_unpackhi_epi64(a, b); }
  template <int imm> static I shuffle32x2(I a, I b) {
    return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), imm));
  }
  // The bytes of cur moved up by two (byte k - 2 at k), the two lowest from the top of
  // prev; and down by two (byte k + 2 at k), the two highest from the bottom of next.
  static I bytes_up2(I prev, I cur) { return _mm_alignr_epi8(cur, prev, 14); }
  static I bytes_down2(I cur, I next) { return _mm_alignr_epi8(next, cur, 2); }
  static I blend_odd16(I a, I b) { return _mm_blend_epi16(a, b, kOddLanes16); }

  static F max(F a, F b) { return _mm_max_ps(a, b); }
  static D max(D a, D b) { return _mm_max_pd(a, b); }
  static F min(F a, F b) { return _mm_min_ps(a, b); }
  static D min(D a, D b) { return _mm_min_pd(a, b); }
  // Compares to all-ones lanes; SSE has these predicates only.
  template <int imm> static F cmp(F a, F b) {
    if constexpr (imm == _CMP_EQ_OQ) return _mm_cmpeq_ps(a, b);
    else if constexpr (imm == _CMP_LT_OQ) return _mm_cmplt_ps(a, b);
    else if constexpr (imm == _CMP_GT_OQ) return _mm_cmpgt_ps(a, b);
    else if constexpr (imm == _CMP_GE_OQ) return _mm_cmpge_ps(a, b);
    else if constexpr (imm == _CMP_ORD_Q) return _mm_cmpord_ps(a, b);
    else if constexpr (imm == _CMP_UNORD_Q) return _mm_cmpunord_ps(a, b);
    else static_assert(imm < 0, "no such compare in SSE");
  }
  template <int imm> static D cmp(D a, D b) {
    if constexpr (imm == _CMP_EQ_OQ) return _mm_cmpeq_pd(a, b);
    else if constexpr (imm == _CMP_LT_OQ) return _mm_cmplt_pd(a, b);
    else if constexpr (imm == _CMP_GT_OQ) return _mm_cmpgt_pd(a, b);
    else if constexpr (imm == _CMP_GE_OQ) return _mm_cmpge_pd(a, b);
    else if constexpr (imm == _CMP_ORD_Q) return _mm_cmpord_pd(a, b);
    else if constexpr (imm == _CMP_UNORD_Q) return _mm_cmpunord_pd(a, b);
    else static_assert(imm < 0, "no such compare in SSE");
  }
  // A bit for each lane in which a or b is NaN.
  static uint32_t unordered(F a, F b) { return _mm_movemask_ps(_mm_cmpunord_ps(a, b)); }
  static uint32_t unordered(D a, D b) { return _mm_movemask_pd(_mm_cmpunord_pd(a, b)); }
  template <int imm> static F round(F a) { return _mm_round_ps(a, imm); }
  template <int imm> static D round(D a) { return _mm_round_pd(a, imm); }
  static F cvt_i32(I a) { return _mm_cvtepi32_ps(a); }
  static I cvtt_i32(F a) { return _mm_cvttps_epi32(a); }
#if defined(ZIVKS_X86_512)
  static F cvt_u32(I a) { return _mm_cvtepu32_ps(a); }
  static D cvt_i64(I a) { return _mm_cvtepi64_pd(a); }
  static I cvtt_i64(D a) { return _mm_cvttpd_epi64(a); }
  template <int imm> static F range(F a, F b) { return _mm_range_ps(a, b, imm); }
  template <int imm> static D range(D a, D b) { return _mm_range_pd(a, b, imm); }
  static I narrow_sat_i64(I a, I b) {
    return _mm_unpacklo_epi64(_mm_maskz_cvtsepi64_epi32(0x3, a), _mm_maskz_cvtsepi64_epi32(0x3, b));
  }
#endif
};

#if defined(__AVX2__)
template <>
struct ops<2> {
  using I = __m256i;
  using F = __m256;
  using D = __m256d;
  using H = __m128i;
  static I zero() { return _mm256_setzero_si256(); }
  static I set1_8(int8_t x) { return _mm256_set1_epi8(x); }
  static I set1_16(int16_t x) { return _mm256_set1_epi16(x); }
  static I set1_32(int32_t x) { return _mm256_set1_epi32(x); }
  static I set1_64(int64_t x) { return _mm256_set1_epi64x(x); }
  static F set1(float x) { return _mm256_set1_ps(x); }
  static D set1(double x) { return _mm256_set1_pd(x); }
  static I block(__m128i b) { return _mm256_broadcastsi128_si256(b); }
  static I load(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }
  static H load_half(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
  static H lo_half(I x) { return _mm256_castsi256_si128(x); }
  static H hi_half(I x) { return _mm256_extracti128_si256(x, 1); }
  static void stream(void* p, I x) { _mm256_stream_si256(static_cast<__m256i*>(p), x); }
  static bool any(I x) { return !_mm256_testz_si256(x, x); }

  static I add8(I a, I b) { return _mm256_add_epi8(a, b); }
  static I add16(I a, I b) { return _mm256_add_epi16(a, b); }
  static I add32(I a, I b) { return _mm256_add_epi32(a, b); }
  static I add64(I a, I b) { return _mm256_add_epi64(a, b); }
  static I sub8(I a, I b) { return _mm256_sub_epi8(a, b); }
  static I sub16(I a, I b) { return _mm256_sub_epi16(a, b); }
  static I sub32(I a, I b) { return _mm256_sub_epi32(a, b); }
  static I sub64(I a, I b) { return _mm256_sub_epi64(a, b); }
  static I mullo32(I a, I b) { return _mm256_mullo_epi32(a, b); }
  static I adds_u8(I a, I b) { return _mm256_adds_epu8(a, b); }
  static I adds_u16(I a, I b) { return _mm256_adds_epu16(a, b); }
  static I adds_i16(I a, I b) { return _mm256_adds_epi16(a, b); }
  static I subs_u8(I a, I b) { return _mm256_subs_epu8(a, b); }
  static I subs_u16(I a, I b) { return _mm256_subs_epu16(a, b); }
  static I subs_i16(I a, I b) { return _mm256_subs_epi16(a, b); }
  static I abs16(I a) { return _mm256_abs_epi16(a); }
  static I abs32(I a) { return _mm256_abs_epi32(a); }
  static I max_u8(I a, I b) { return _mm256_max_epu8(a, b); }
  static I max_u16(I a, I b) { return _mm256_max_epu16(a, b); }
  static I max_u32(I a, I b) { return _mm256_max_epu32(a, b); }
  static I max_i16(I a, I b) { return _mm256_max_epi16(a, b); }
  static I max_i32(I a, I b) { return _mm256_max_epi32(a, b); }
  static I min_u8(I a, I b) { return _mm256_min_epu8(a, b); }
  static I min_u16(I a, I b) { return _mm256_min_epu16(a, b); }
  static I min_u32(I a, I b) { return _mm256_min_epu32(a, b); }
  static I min_i16(I a, I b) { return _mm256_min_epi16(a, b); }
  static I min_i32(I a, I b) { return _mm256_min_epi32(a, b); }
  static I cmpeq8(I a, I b) { return _mm256_cmpeq_epi8(a, b); }
  static I cmpeq16(I a, I b) { return _mm256_cmpeq_epi16(a, b); }
  static I cmpeq32(I a, I b) { return _mm256_cmpeq_epi32(a, b); }
  static I cmpeq64(I a, I b) { return _mm256_cmpeq_epi64(a, b); }
  static I cmpgt8(I a, I b) { return _mm256_cmpgt_epi8(a, b); }
  static I cmpgt16(I a, I b) { return _mm256_cmpgt_epi16(a, b); }
  static I cmpgt32(I a, I b) { return _mm256_cmpgt_epi32(a, b); }
  static I cmpgt64(I a, I b) { return _mm256_cmpgt_epi64(a, b); }
  static I blendv8(I a, I b, I m) { return _mm256_blendv_epi8(a, b, m); }
  static I blend_sign32(I a, I b, I m) {
    return _mm256_castps_si256(_mm256_blendv_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), _mm256_castsi256_ps(m)));
  }
  static I blend_sign64(I a, I b, I m) {
    return _mm256_castpd_si256(_mm256_blendv_pd(_mm256_castsi256_pd(a), _mm256_castsi256_pd(b), _mm256_castsi256_pd(m)));
  }
  static I sll16(I a, __m128i n) { return _mm256_sll_epi16(a, n); }
  static I sll32(I a, __m128i n) { return _mm256_sll_epi32(a, n); }
  static I sll64(I a, __m128i n) { return _mm256_sll_epi64(a, n); }
  static I srl16(I a, __m128i n) { return _mm256_srl_epi16(a, n); }
  static I srl32(I a, __m128i n) { return _mm256_srl_epi32(a, n); }
  static I srl64(I a, __m128i n) { return _mm256_srl_epi64(a, n); }
  static I sra16(I a, __m128i n) { return _mm256_sra_epi16(a, n); }
  static I sra32(I a, __m128i n) { return _mm256_sra_epi32(a, n); }
  static I widen_u8_16(H x) { return _mm256_cvtepu8_epi16(x); }
  static I widen_i8_16(H x) { return _mm256_cvtepi8_epi16(x); }
  static I widen_u32_64(H x) { return _mm256_cvtepu32_epi64(x); }
  static I widen_u16_32(H x) { return _mm256_cvtepu16_epi32(x); }
  static I widen_i16_32(H x) { return _mm256_cvtepi16_epi32(x); }
  static I widen_i32_64(H x) { return _mm256_cvtepi32_epi64(x); }
  static I packs32(I a, I b) { return _mm256_packs_epi32(a, b); }
  static I packus32(I a, I b) { return _mm256_packus_epi32(a, b); }
  static I packs16(I a, I b) { return _mm256_packs_epi16(a, b); }
  static I packus16(I a, I b) { return _mm256_packus_epi16(a, b); }
  // A pack gives a's half then b's half of every block: the 64-bit quarters back in
  // memory order.
  static I pack_order(I x) { return _mm256_permute4x64_epi64(x, kEvenOdd64); }
  static I shuffle8(I x, __m128i table) { return _mm256_shuffle_epi8(x, _mm256_broadcastsi128_si256(table)); }
  static I reverse_blocks(I x) { return _mm256_permute4x64_epi64(x, kSwapHalves64); }
  static I unpacklo16(I a, I b) { return _mm256_unpacklo_epi16(a, b); }
  static I unpackhi16(I a, I b) { return _mm256_unpackhi_epi16(a, b); }
  static I unpacklo32(I a, I b) { return _mm256_unpacklo_epi32(a, b); }
  static I unpackhi32(I a, I b) { return _mm256_unpackhi_epi32(a, b); }
  static I unpacklo64(I a, I b) { return _mm256_unpacklo_epi64(a, b); }
  static I unpackhi64(I a, I b) { return _mm256_unpackhi_epi64(a, b); }
  template <int imm> static I shuffle32x2(I a, I b) {
    return _mm256_castps_si256(_mm256_shuffle_ps(_mm256_castsi256_ps(a), _mm256_castsi256_ps(b), imm));
  }
  static I bytes_up2(I prev, I cur) {
    return _mm256_alignr_epi8(cur, _mm256_permute2x128_si256(prev, cur, kMiddleBlocks), 14);
  }
  static I bytes_down2(I cur, I next) {
    return _mm256_alignr_epi8(_mm256_permute2x128_si256(cur, next, kMiddleBlocks), cur, 2);
  }
  static I blend_odd16(I a, I b) { return _mm256_blend_epi16(a, b, kOddLanes16); }

  static F max(F a, F b) { return _mm256_max_ps(a, b); }
  static D max(D a, D b) { return _mm256_max_pd(a, b); }
  static F min(F a, F b) { return _mm256_min_ps(a, b); }
  static D min(D a, D b) { return _mm256_min_pd(a, b); }
  template <int imm> static F cmp(F a, F b) { return _mm256_cmp_ps(a, b, imm); }
  template <int imm> static D cmp(D a, D b) { return _mm256_cmp_pd(a, b, imm); }
  static uint32_t unordered(F a, F b) { return _mm256_movemask_ps(_mm256_cmp_ps(a, b, _CMP_UNORD_Q)); }
  static uint32_t unordered(D a, D b) { return _mm256_movemask_pd(_mm256_cmp_pd(a, b, _CMP_UNORD_Q)); }
  template <int imm> static F round(F a) { return _mm256_round_ps(a, imm); }
  template <int imm> static D round(D a) { return _mm256_round_pd(a, imm); }
  static F cvt_i32(I a) { return _mm256_cvtepi32_ps(a); }
  static I cvtt_i32(F a) { return _mm256_cvttps_epi32(a); }
#if defined(ZIVKS_X86_512)
  static F cvt_u32(I a) { return _mm256_cvtepu32_ps(a); }
  static D cvt_i64(I a) { return _mm256_cvtepi64_pd(a); }
  static I cvtt_i64(D a) { return _mm256_cvttpd_epi64(a); }
  template <int imm> static F range(F a, F b) { return _mm256_range_ps(a, b, imm); }
  template <int imm> static D range(D a, D b) { return _mm256_range_pd(a, b, imm); }
  static I narrow_sat_i64(I a, I b) { return _mm256_set_m128i(_mm256_cvtsepi64_epi32(b), _mm256_cvtsepi64_epi32(a)); }
#endif
};
#endif

#if defined(ZIVKS_X86_512)
template <>
struct ops<4> {
  using I = __m512i;
  using F = __m512;
  using D = __m512d;
  using H = __m256i;
  static constexpr __mmask16 kAll16 = 0xFFFF;
  static constexpr __mmask8 kAll8 = 0xFF;
  static I zero() { return _mm512_setzero_si512(); }
  static I set1_8(int8_t x) { return _mm512_set1_epi8(x); }
  static I set1_16(int16_t x) { return _mm512_set1_epi16(x); }
  static I set1_32(int32_t x) { return _mm512_set1_epi32(x); }
  static I set1_64(int64_t x) { return _mm512_set1_epi64(x); }
  static F set1(float x) { return _mm512_set1_ps(x); }
  static D set1(double x) { return _mm512_set1_pd(x); }
  static I block(__m128i b) { return _mm512_maskz_broadcast_i64x2(kAll8, b); }
  static I load(const void* p) { return _mm512_loadu_si512(p); }
  static H load_half(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }
  static H lo_half(I x) {
    // The low half of the register itself (the 512-bit cast draws a spurious warning).
    __m256i lo;
    memcpy(&lo, &x, sizeof lo);
    return lo;
  }
  static H hi_half(I x) { return _mm512_maskz_extracti64x4_epi64(0xF, x, 1); }
  static void stream(void* p, I x) { _mm512_stream_si512(static_cast<__m512i*>(p), x); }
  static bool any(I x) { return _mm512_test_epi64_mask(x, x) != 0; }

  static I add8(I a, I b) { return _mm512_add_epi8(a, b); }
  static I add16(I a, I b) { return _mm512_add_epi16(a, b); }
  static I add32(I a, I b) { return _mm512_add_epi32(a, b); }
  static I add64(I a, I b) { return _mm512_add_epi64(a, b); }
  static I sub8(I a, I b) { return _mm512_sub_epi8(a, b); }
  static I sub16(I a, I b) { return _mm512_sub_epi16(a, b); }
  static I sub32(I a, I b) { return _mm512_sub_epi32(a, b); }
  static I sub64(I a, I b) { return _mm512_sub_epi64(a, b); }
  static I mullo32(I a, I b) { return _mm512_mullo_epi32(a, b); }
  static I adds_u8(I a, I b) { return _mm512_adds_epu8(a, b); }
  static I adds_u16(I a, I b) { return _mm512_adds_epu16(a, b); }
  static I adds_i16(I a, I b) { return _mm512_adds_epi16(a, b); }
  static I subs_u8(I a, I b) { return _mm512_subs_epu8(a, b); }
  static I subs_u16(I a, I b) { return _mm512_subs_epu16(a, b); }
  static I subs_i16(I a, I b) { return _mm512_subs_epi16(a, b); }
  static I abs16(I a) { return _mm512_abs_epi16(a); }
  static I abs32(I a) { return _mm512_maskz_abs_epi32(kAll16, a); }
  static I max_u8(I a, I b) { return _mm512_max_epu8(a, b); }
  static I max_u16(I a, I b) { return _mm512_max_epu16(a, b); }
  static I max_u32(I a, I b) { return _mm512_maskz_max_epu32(kAll16, a, b); }
  static I max_i16(I a, I b) { return _mm512_max_epi16(a, b); }
  static I max_i32(I a, I b) { return _mm512_maskz_max_epi32(kAll16, a, b); }
  static I min_u8(I a, I b) { return _mm512_min_epu8(a, b); }
  static I min_u16(I a, I b) { return _mm512_min_epu16(a, b); }
  static I min_u32(I a, I b) { return _mm512_maskz_min_epu32(kAll16, a, b); }
  static I min_i16(I a, I b) { return _mm512_min_epi16(a, b); }
  static I min_i32(I a, I b) { return _mm512_maskz_min_epi32(kAll16, a, b); }
  // Compares give lane masks; widened back to all-ones lanes.
  static I cmpeq8(I a, I b) { return _mm512_movm_epi8(_mm512_cmpeq_epi8_mask(a, b)); }
  static I cmpeq16(I a, I b) { return _mm512_movm_epi16(_mm512_cmpeq_epi16_mask(a, b)); }
  static I cmpeq32(I a, I b) { return _mm512_movm_epi32(_mm512_cmpeq_epi32_mask(a, b)); }
  static I cmpeq64(I a, I b) { return _mm512_movm_epi64(_mm512_cmpeq_epi64_mask(a, b)); }
  static I cmpgt8(I a, I b) { return _mm512_movm_epi8(_mm512_cmpgt_epi8_mask(a, b)); }
  static I cmpgt16(I a, I b) { return _mm512_movm_epi16(_mm512_cmpgt_epi16_mask(a, b)); }
  static I cmpgt32(I a, I b) { return _mm512_movm_epi32(_mm512_cmpgt_epi32_mask(a, b)); }
  static I cmpgt64(I a, I b) { return _mm512_movm_epi64(_mm512_cmpgt_epi64_mask(a, b)); }
  static I blendv8(I a, I b, I m) { return _mm512_mask_blend_epi8(_mm512_movepi8_mask(m), a, b); }
  static I blend_sign32(I a, I b, I m) { return _mm512_mask_blend_epi32(_mm512_movepi32_mask(m), a, b); }
  static I blend_sign64(I a, I b, I m) { return _mm512_mask_blend_epi64(_mm512_movepi64_mask(m), a, b); }
  static I sll16(I a, __m128i n) { return _mm512_sll_epi16(a, n); }
  static I sll32(I a, __m128i n) { return _mm512_maskz_sll_epi32(kAll16, a, n); }
  static I sll64(I a, __m128i n) { return _mm512_maskz_sll_epi64(kAll8, a, n); }
  static I srl16(I a, __m128i n) { return _mm512_srl_epi16(a, n); }
  static I srl32(I a, __m128i n) { return _mm512_maskz_srl_epi32(kAll16, a, n); }
  static I srl64(I a, __m128i n) { return _mm512_maskz_srl_epi64(kAll8, a, n); }
  static I sra16(I a, __m128i n) { return _mm512_sra_epi16(a, n); }
  static I sra32(I a, __m128i n) { return _mm512_maskz_sra_epi32(kAll16, a, n); }
  static I widen_u8_16(H x) { return _mm512_cvtepu8_epi16(x); }
  static I widen_i8_16(H x) { return _mm512_cvtepi8_epi16(x); }
  static I widen_u32_64(H x) { return _mm512_maskz_cvtepu32_epi64(kAll8, x); }
  static I widen_u16_32(H x) { return _mm512_maskz_cvtepu16_epi32(kAll16, x); }
  static I widen_i16_32(H x) { return _mm512_maskz_cvtepi16_epi32(kAll16, x); }
  static I widen_i32_64(H x) { return _mm512_maskz_cvtepi32_epi64(kAll8, x); }
  static I packs32(I a, I b) { return _mm512_packs_epi32(a, b); }
  static I packus32(I a, I b) { return _mm512_packus_epi32(a, b); }
  static I packs16(I a, I b) { return _mm512_packs_epi16(a, b); }
  static I packus16(I a, I b) { return _mm512_packus_epi16(a, b); }
  static I pack_order(I x) {
    return _mm512_maskz_permutexvar_epi64(kAll8, _mm512_set_epi64(7, 5, 3, 1, 6, 4, 2, 0), x);
  }
  static I shuffle8(I x, __m128i table) {
    return _mm512_shuffle_epi8(x, _mm512_maskz_broadcast_i32x4(kAll16, table));
  }
  static I reverse_blocks(I x) { return _mm512_maskz_shuffle_i64x2(kAll8, x, x, kReverse128); }
  static I unpacklo16(I a, I b) { return _mm512_unpacklo_epi16(a, b); }
  static I unpackhi16(I a, I b) { return _mm512_unpackhi_epi16(a, b); }
  static I unpacklo32(I a, I b) { return _mm512_unpacklo_epi32(a, b); }
  static I unpackhi32(I a, I b) { return _mm512_unpackhi_epi32(a, b); }
  static I unpacklo64(I a, I b) { return _mm512_unpacklo_epi64(a, b); }
  static I unpackhi64(I a, I b) { return _mm512_unpackhi_epi64(a, b); }
  template <int imm> static I shuffle32x2(I a, I b) {
    return _mm512_castps_si512(_mm512_shuffle_ps(_mm512_castsi512_ps(a), _mm512_castsi512_ps(b), imm));
  }
  static I bytes_up2(I prev, I cur) {
    return _mm512_alignr_epi8(cur, _mm512_maskz_alignr_epi64(kAll8, cur, prev, 6), 14);
  }
  static I bytes_down2(I cur, I next) {
    return _mm512_alignr_epi8(_mm512_maskz_alignr_epi64(kAll8, next, cur, 2), cur, 2);
  }
  static I blend_odd16(I a, I b) { return _mm512_mask_blend_epi16(kOddLanes16Of32, a, b); }

  static F max(F a, F b) { return _mm512_maskz_max_ps(kAll16, a, b); }
  static D max(D a, D b) { return _mm512_maskz_max_pd(kAll8, a, b); }
  static F min(F a, F b) { return _mm512_maskz_min_ps(kAll16, a, b); }
  static D min(D a, D b) { return _mm512_maskz_min_pd(kAll8, a, b); }
  template <int imm> static F cmp(F a, F b) {
    return _mm512_castsi512_ps(_mm512_movm_epi32(_mm512_cmp_ps_mask(a, b, imm)));
  }
  template <int imm> static D cmp(D a, D b) {
    return _mm512_castsi512_pd(_mm512_movm_epi64(_mm512_cmp_pd_mask(a, b, imm)));
  }
  static uint32_t unordered(F a, F b) { return _mm512_cmp_ps_mask(a, b, _CMP_UNORD_Q); }
  static uint32_t unordered(D a, D b) { return _mm512_cmp_pd_mask(a, b, _CMP_UNORD_Q); }
  template <int imm> static F round(F a) { return _mm512_maskz_roundscale_ps(kAll16, a, imm); }
  template <int imm> static D round(D a) { return _mm512_maskz_roundscale_pd(kAll8, a, imm); }
  static F cvt_i32(I a) { return _mm512_maskz_cvtepi32_ps(kAll16, a); }
  static F cvt_u32(I a) { return _mm512_maskz_cvtepu32_ps(kAll16, a); }
  static D cvt_i64(I a) { return _mm512_cvtepi64_pd(a); }
  template <int imm> static F range(F a, F b) { return _mm512_maskz_range_ps(kAll16, a, b, imm); }
  template <int imm> static D range(D a, D b) { return _mm512_maskz_range_pd(kAll8, a, b, imm); }
  static I narrow_sat_i64(I a, I b) {
    return _mm512_maskz_inserti64x4(kAll8, _mm512_castsi256_si512(_mm512_maskz_cvtsepi64_epi32(kAll8, a)),
                                    _mm512_maskz_cvtsepi64_epi32(kAll8, b), 1);
  }
};
#endif

// Any register seen as integer lanes, and back (to the type of `like`).
inline __m128i ints(__m128i x) { return x; }
inline __m128i ints(__m128 x) { return _mm_castps_si128(x); }
inline __m128i ints(__m128d x) { return _mm_castpd_si128(x); }
#if defined(__AVX2__)
inline __m256i ints(__m256i x) { return x; }
inline __m256i ints(__m256 x) { return _mm256_castps_si256(x); }
inline __m256i ints(__m256d x) { return _mm256_castpd_si256(x); }
#endif
#if defined(ZIVKS_X86_512)
inline __m512i ints(__m512i x) { return x; }
inline __m512i ints(__m512 x) { return _mm512_castps_si512(x); }
inline __m512i ints(__m512d x) { return _mm512_castpd_si512(x); }
#endif
template <class R, class I>
inline R from_ints(const R&, I x) {
  R r;
  static_assert(sizeof r == sizeof x, "same width");
  memcpy(&r, &x, sizeof r);
  return r;
}

}  // namespace x86

template <class T, int K>
struct reg {
  using type = typename x86::ops<K>::I;
};
template <int K>
struct reg<float, K> {
  using type = typename x86::ops<K>::F;
};
template <int K>
struct reg<double, K> {
  using type = typename x86::ops<K>::D;
};

}  // namespace zivks::simd
