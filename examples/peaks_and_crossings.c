/* Finds the peaks and zero crossings of a generated signal.
 *
 * The signal is one second of a 7 Hz tone sampled at 1000 Hz, with a slowly rising
 * amplitude and a little deterministic noise. The program reports the global extremes
 * and their positions, the maximum of each tenth of a second, and the number of
 * zero crossings by the three kinds of count, from which it estimates the frequency.
 * Build: the examples/ folder of the project builds it as example_peaks_and_crossings. */
#include <stdio.h>

#include "zivks.h"

#define RATE 1000
#define LEN 1000
#define WINDOW 100

int main(void) {
  static float signal[LEN];
  static int16_t pcm[LEN];
  unsigned noise = 12345u;
  /* A sine by the two-term recurrence s[n+1] = 2 cos(w) s[n] - s[n-1], with cos(w)
   * from its series (w is small), so the program needs no maths library. */
  const double w = 2 * 3.14159265358979323846 * 7.0 / RATE;
  const double c = 1 - w * w / 2 + w * w * w * w / 24 - w * w * w * w * w * w / 720; /* cos(w) */
  const double sn = w - w * w * w / 6 + w * w * w * w * w / 120;                  /* sin(w) */
  double cur = 0.2955202066613396;               /* sin(0.3): the tone starts at phase 0.3 */
  double prev = cur * c - 0.9553364891256060 * sn; /* sin(0.3 - w), 0.955... being cos(0.3) */
  for (int i = 0; i < LEN; ++i) {
    noise = noise * 1103515245u + 12345u; /* a small linear congruential generator */
    const double jitter = ((noise >> 16) % 1000) / 1000.0 - 0.5;
    const double amplitude = 0.5 + 0.5 * i / LEN;
    signal[i] = (float)(amplitude * cur + 0.01 * jitter);
    const double next = 2 * c * cur - prev;
    prev = cur;
    cur = next;
    const double scaled = signal[i] * 32000.0;
    pcm[i] = (int16_t)(scaled >= 0 ? scaled + 0.5 : scaled - 0.5);
  }
  printf("signal: %d samples at %d Hz, a 7 Hz tone with rising amplitude and noise\n", LEN, RATE);

  float lo, hi;
  int32_t lo_at, hi_at;
  if (ZIVKS_MinMaxIndx_32f(signal, LEN, &lo, &lo_at, &hi, &hi_at) != ZIVK_STS_NO_ERR) return 1;
  printf("lowest  %+.4f at sample %d (t = %.3f s)\n", lo, lo_at, (double)lo_at / RATE);
  printf("highest %+.4f at sample %d (t = %.3f s)\n", hi, hi_at, (double)hi_at / RATE);

  float peak;
  if (ZIVKS_MaxAbs_32f(signal, LEN, &peak) != ZIVK_STS_NO_ERR) return 1;
  printf("largest magnitude %.4f\n", peak);

  printf("maximum of each window of %d samples, and where it lies:\n", WINDOW);
  for (int w = 0; w < LEN; w += WINDOW) {
    float v;
    int32_t at;
    if (ZIVKS_MaxIndx_32f(signal + w, WINDOW, &v, &at) != ZIVK_STS_NO_ERR) return 1;
    printf("  samples %4d-%4d: %+.4f at %4d\n", w, w + WINDOW - 1, v, w + at);
  }

  static const char* kinds[3] = {"product below zero", "sign bits differ", "sign steps, a touch of zero counting half"};
  for (int kind = 0; kind < 3; ++kind) {
    float zf, zi;
    if (ZIVKS_ZeroCrossing_32f(signal, LEN, &zf, kind) != ZIVK_STS_NO_ERR) return 1;
    if (ZIVKS_ZeroCrossing_16s32f(pcm, LEN, &zi, kind) != ZIVK_STS_NO_ERR) return 1;
    printf("zero crossings, kind %d (%s): %.1f in float, %.1f in int16\n", kind, kinds[kind], zf, zi);
  }
  float crossings;
  ZIVKS_ZeroCrossing_32f(signal, LEN, &crossings, 1);
  printf("estimated frequency: %.1f Hz (two crossings a period)\n", crossings / 2.0 * RATE / LEN);

  int32_t loud;
  static int32_t wide[LEN];
  for (int i = 0; i < LEN; ++i) wide[i] = pcm[i];
  if (ZIVKS_CountInRange_32s(wide, LEN, &loud, 24000, 32767) != ZIVK_STS_NO_ERR) return 1;
  printf("samples above +0.75 (int16 samples strictly between 24000 and 32767): %d\n", loud);
  return 0;
}
