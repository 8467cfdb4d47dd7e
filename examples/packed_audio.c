/* Packed 24-bit audio: 32-bit PCM samples packed into the 3-byte form that 24-bit WAV
 * data and sound cards use (least significant byte first), unpacked to float for
 * processing, and packed again with a gain.
 *
 * ZIVKS_Convert_32s24s_S divides by the power of two that scale selects (here 256, which
 * drops the low byte of a 32-bit sample), rounds to nearest with a tie going to the even
 * neighbour, and clamps to the 24-bit range. ZIVKS_Convert_24s32f unpacks to float in
 * integer units: nothing is normalised, 8388607 stays 8388607.0. ZIVKS_Convert_32f24s_S
 * packs floats again; its scale is a divisor, so scale 2 halves the level (-6 dB) and
 * scale 0.5 doubles it (+6 dB), clipping the samples that no longer fit.
 * Build: examples are built by CMake; run build/.../examples/example_packed_audio. */
#include <stdio.h>

#include "zivks.h"

enum { kSamples = 11 };

static int failed(const char* what, ZIVKStatus st) {
  fprintf(stderr, "%s: status %d (%s)\n", what, (int)st, ZIVKS_GetStatusString(st));
  return 1;
}

int main(void) {
  /* A triangle wave peaking at 0.9 of full scale, eight samples a period, followed by
   * three samples that show the rounding: 0x12345678 (its low byte 0x78 is below half),
   * and 384 and 640, which are 1.5 and 2.5 in 24-bit units, two ties. */
  static const int kShape[8] = {0, 1, 2, 1, 0, -1, -2, -1};
  const int32_t half_peak = 966367641; /* 0.45 * 2^31 */
  int32_t pcm32[kSamples];
  uint8_t packed[3 * kSamples], quieter[3 * kSamples], louder[3 * kSamples];
  int32_t in24[kSamples], out_quieter[kSamples], out_louder[kSamples];
  float level[kSamples];
  ZIVKStatus st;
  int i;

  for (i = 0; i < 8; ++i) pcm32[i] = kShape[i] * half_peak;
  pcm32[8] = 0x12345678;
  pcm32[9] = 384;
  pcm32[10] = 640;

  /* 32-bit PCM to packed 24-bit, then to float and back with two gains. */
  if ((st = ZIVKS_Convert_32s24s_S(pcm32, packed, kSamples, 256.0)) != ZIVK_STS_NO_ERR)
    return failed("Convert_32s24s_S", st);
  if ((st = ZIVKS_Convert_24s32f(packed, level, kSamples)) != ZIVK_STS_NO_ERR)
    return failed("Convert_24s32f", st);
  if ((st = ZIVKS_Convert_32f24s_S(level, quieter, kSamples, 2.0)) != ZIVK_STS_NO_ERR)
    return failed("Convert_32f24s_S (scale 2)", st);
  if ((st = ZIVKS_Convert_32f24s_S(level, louder, kSamples, 0.5)) != ZIVK_STS_NO_ERR)
    return failed("Convert_32f24s_S (scale 0.5)", st);
  /* The packed results read back as integers, to print them. */
  if ((st = ZIVKS_Convert_24s32s(packed, in24, kSamples)) != ZIVK_STS_NO_ERR ||
      (st = ZIVKS_Convert_24s32s(quieter, out_quieter, kSamples)) != ZIVK_STS_NO_ERR ||
      (st = ZIVKS_Convert_24s32s(louder, out_louder, kSamples)) != ZIVK_STS_NO_ERR)
    return failed("Convert_24s32s", st);

  printf("32-bit PCM packed to 24 bits (scale 256: the low byte dropped, rounded to\n"
         "nearest, a tie to even), unpacked to float, and packed again at half the level\n"
         "(scale 2) and at twice the level (scale 0.5, clipping at 8388607 and -8388608)\n");
  printf("%12s  %8s  %8s  %10s  %9s  %9s\n", "32-bit in", "bytes", "24-bit", "float",
         "scale 2", "scale 0.5");
  for (i = 0; i < kSamples; ++i)
    printf("%12ld  %02X %02X %02X  %8ld  %10.1f  %9ld  %9ld\n", (long)pcm32[i], packed[3 * i],
           packed[3 * i + 1], packed[3 * i + 2], (long)in24[i], level[i], (long)out_quieter[i],
           (long)out_louder[i]);

  /* The byte layout of one sample. */
  {
    const uint8_t* s = packed + 3 * 8;
    printf("\nsample 8: 0x%08lX becomes 0x%06lX in 24 bits, stored as the bytes %02X %02X %02X:\n"
           "  value = 0x%02X + 256 * 0x%02X + 65536 * 0x%02X (least significant first)\n",
           (unsigned long)pcm32[8], (unsigned long)in24[8], s[0], s[1], s[2], s[0], s[1], s[2]);
  }

  /* The signed unpacking forms take at least three samples. */
  st = ZIVKS_Convert_24s32f(packed, level, 2);
  printf("\nunpacking two signed samples alone gives status %d (%s)\n", (int)st,
         ZIVKS_GetStatusString(st));
  return 0;
}
