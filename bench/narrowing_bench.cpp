// Narrowing integer conversions, all 6 members, against memcpy of the output bytes and
// against VOLK's 16-bit to 8-bit conversion. The scaled members run on each of their
// paths: Convert_8u8s_S divides and rounds at scale 4, only clamps at scale 1 and
// shifts left at scale 0.25; the others run at a scale that keeps the bench's inputs
// (integer readings of floats in [1, 2): the high half about 0x3F80) mostly in range,
// once per rounding mode where they take one.
//
// The peer: volk_16i_convert_8i keeps the high byte of each element (an arithmetic shift
// right by 8, which rounds toward minus infinity). Convert_16s8s_S at scale 256 with
// ZIVK_RND_ZERO is the same division by 256; the two agree on every non-negative element
// and on every multiple of 256, and differ by one on the other negative ones, since no
// rounding mode here rounds toward minus infinity. Nothing here has a target on the
// memcpy baseline (a round and a clamp per element are not meant to keep up with a
// copy); the peer is expected to be matched.
#include <volk/volk.h>

#include "bench/zb.h"
#include "zivks.h"

// A labelled case whose input (S) and output (D) widths differ; the arguments after n
// (rndMode, scale) follow the label.
#define ZB_NARROW_AT(code, S, D, label, ...)                                                   \
  static const int ZB_CAT(zb_case_, __COUNTER__) = ::zb::add_func(                             \
      "narrowing", label, "ZIVKS_Convert_" #code, &ZIVKS_Convert_##code, sizeof(S), sizeof(D), \
      ::zb::kMemcpy, 0, [](auto fn, const zb::Arrays& a, int32_t n) {                          \
        fn(a.src<S>(0), a.dst<D>(0), n, __VA_ARGS__);                                          \
      })
#define ZB_NARROW(code, S, D)                                                                  \
  ZB_FUNC_IO(narrowing, ZIVKS_Convert_##code, S, D, kMemcpy, 0,                                \
             [](auto fn, const zb::Arrays& a, int32_t n) { fn(a.src<S>(0), a.dst<D>(0), n); })
// The three rounding modes at one scale; the label of ZIVK_RND_ZERO is the bare name.
#define ZB_NARROW_MODES(code, S, D, scale)                                                     \
  ZB_NARROW_AT(code, S, D, "Convert_" #code, ZIVK_RND_ZERO, scale);                            \
  ZB_NARROW_AT(code, S, D, "Convert_" #code "/near", ZIVK_RND_NEAR, scale);                    \
  ZB_NARROW_AT(code, S, D, "Convert_" #code "/away", ZIVK_RND_AWAY, scale)

ZB_NARROW(8s8u, int8_t, uint8_t);
ZB_NARROW(32s16s, int32_t, int16_t);
ZB_NARROW_AT(8u8s_S, uint8_t, int8_t, "Convert_8u8s_S/4", ZIVK_RND_NEAR, 4.0);
ZB_NARROW_AT(8u8s_S, uint8_t, int8_t, "Convert_8u8s_S/1", ZIVK_RND_NEAR, 1.0);
ZB_NARROW_AT(8u8s_S, uint8_t, int8_t, "Convert_8u8s_S/0.25", ZIVK_RND_NEAR, 0.25);
ZB_NARROW_MODES(16s8s_S, int16_t, int8_t, 0x1p8);
ZB_NARROW_AT(32s16s_S, int32_t, int16_t, "Convert_32s16s_S", 0x1p16);
ZB_NARROW_MODES(64s32s_S, int64_t, int32_t, 0x1p32);

ZB_PEER(ZIVKS_Convert_16s8s_S, volk_16i_convert_8i, [](const zb::Arrays& a, int32_t n) {
  volk_16i_convert_8i(a.dst<int8_t>(0), a.src<int16_t>(0), n);
});

// ---- Bench only: what the rounding rule of Convert_16s8s_S costs at scale 256
// Two 512-bit loops shaped like ours (64 elements a step, saturating packs, the tail one
// element at a time), without the call's checks and scale rule: "/trunc" rounds toward
// zero as ours does with ZIVK_RND_ZERO (an arithmetic shift after adding 255 to the
// negative elements), "/floor" only shifts, rounding toward minus infinity as the peer
// does. Run where the processor has AVX-512BW; the generic column is our generic build.
#include <immintrin.h>

namespace {

#define ZB_AVX512BW __attribute__((target("avx512f,avx512bw"), always_inline)) inline

template <bool kTrunc>
ZB_AVX512BW __m512i shift_by_8(__m512i x) {
  if (kTrunc) x = _mm512_add_epi16(x, _mm512_and_si512(_mm512_srai_epi16(x, 15), _mm512_set1_epi16(255)));
  return _mm512_srai_epi16(x, 8);
}

template <bool kTrunc>
__attribute__((target("avx512f,avx512bw"))) void shift_16s8s(const int16_t* s, int8_t* d, int32_t n) {
  const __m512i order = _mm512_set_epi64(7, 5, 3, 1, 6, 4, 2, 0);
  int32_t i = 0;
  for (; i + 64 <= n; i += 64) {
    const __m512i a = shift_by_8<kTrunc>(_mm512_loadu_si512(s + i)), b = shift_by_8<kTrunc>(_mm512_loadu_si512(s + i + 32));
    _mm512_storeu_si512(d + i, _mm512_permutexvar_epi64(order, _mm512_packs_epi16(a, b)));
  }
  for (; i < n; ++i) {
    const int q = kTrunc ? s[i] / 256 : s[i] >> 8;
    d[i] = static_cast<int8_t>(q);
  }
}

template <bool kTrunc>
int add_shift_row(const char* label) {
  if (!__builtin_cpu_supports("avx512bw")) return 0;
  ::zb::add_func("narrowing", label, "ZIVKS_Convert_16s8s_S", &ZIVKS_Convert_16s8s_S, sizeof(int16_t), sizeof(int8_t),
                 ::zb::kMemcpy, 0, [](auto fn, const zb::Arrays& a, int32_t n) {
                   if (fn == &ZIVKS_Convert_16s8s_S) shift_16s8s<kTrunc>(a.src<int16_t>(0), a.dst<int8_t>(0), n);
                   else fn(a.src<int16_t>(0), a.dst<int8_t>(0), n, ZIVK_RND_ZERO, 0x1p8);
                 });
  return ::zb::add_peer(label, "volk_16i_convert_8i", [](const zb::Arrays& a, int32_t n) {
    volk_16i_convert_8i(a.dst<int8_t>(0), a.src<int16_t>(0), n);
  });
}

const int shift_rows = add_shift_row<true>("Convert_16s8s_S/trunc") + add_shift_row<false>("Convert_16s8s_S/floor");

}  // namespace
