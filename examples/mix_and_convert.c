/* Mixing two 16-bit signals and turning a float signal into 16-bit samples.
 *
 * ZIVKS_Add_16s_S adds two int16 signals exactly and divides the sum by a power of two
 * chosen from scale (here 2, so the mix is the average), rounding ties to even and
 * saturating at the int16 bounds, so loud passages clip instead of wrapping around.
 *
 * ZIVKS_Convert_32f16s_S multiplies float samples in [-1, 1) by 2^15 (scale 2^-15 is the
 * divisor) and rounds them to int16 by the mode chosen; 1.0 itself saturates to 32767.
 * Build: examples are built by CMake; run build/.../examples/example_mix_and_convert. */
#include <stdio.h>

#include "zivks.h"

#define N 12

int main(void) {
  int16_t voice[N], music[N], mix[N], loud[N];
  float wave[N];
  int16_t pcm_near[N], pcm_zero[N];
  int i;

  /* Two made-up signals: a rising voice and a music track with large swings. */
  for (i = 0; i < N; ++i) {
    voice[i] = (int16_t)(i * 3001 - 16000);
    music[i] = (int16_t)((i % 2 ? 1 : -1) * (25000 + i * 501));
    /* A float signal in [-1, 1]; sample 3 lies exactly halfway between two int16 steps. */
    wave[i] = -1.0f + (float)i / (N / 2) + (i == 3 ? 0.5f / 32768 : 0.0f);
  }
  wave[N - 1] = 1.0f;

  /* The average of the two (sum divided by 2), and the plain sum (scale 1), which clips. */
  if (ZIVKS_Add_16s_S(voice, music, mix, N, 2.0) != ZIVK_STS_NO_ERR) return 1;
  if (ZIVKS_Add_16s_S(voice, music, loud, N, 1.0) != ZIVK_STS_NO_ERR) return 1;
  printf("mix two int16 signals: average (scale 2) and plain sum (scale 1, saturating)\n");
  printf("%8s %8s %8s %8s\n", "voice", "music", "average", "sum");
  for (i = 0; i < N; ++i) printf("%8d %8d %8d %8d\n", voice[i], music[i], mix[i], loud[i]);

  /* float -> int16 with scale 2^-15, that is times 32768, to nearest and truncated. */
  if (ZIVKS_Convert_32f16s_S(wave, pcm_near, N, ZIVK_RND_NEAR, 1.0 / 32768) != ZIVK_STS_NO_ERR) return 1;
  if (ZIVKS_Convert_32f16s_S(wave, pcm_zero, N, ZIVK_RND_ZERO, 1.0 / 32768) != ZIVK_STS_NO_ERR) return 1;
  printf("\nfloat signal to int16 samples (times 32768; the fourth is -16383.5, a tie,\n"
         "which the nearest mode gives to the even -16384; 1.0 saturates at 32767)\n");
  printf("%14s %10s %10s\n", "float", "nearest", "truncated");
  for (i = 0; i < N; ++i) printf("%14.9f %10d %10d\n", wave[i], pcm_near[i], pcm_zero[i]);

  /* A bad rounding mode is refused before anything is written. */
  {
    const ZIVKStatus st = ZIVKS_Convert_32f16s_S(wave, pcm_near, N, (ZIVKRoundMode)7, 1.0);
    printf("\nrounding mode 7 gives status %d (%s)\n", (int)st, ZIVKS_GetStatusString(st));
  }
  return 0;
}
