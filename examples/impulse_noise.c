/* Removes impulse noise from a signal with the median filter, fed in blocks.
 *
 * The signal is a tenth of a second of three tones (50, 120 and 310 Hz) sampled at
 * 48000 Hz in int16. Isolated spikes (clicks) are added at random positions, a fixed
 * seed making the run the same everywhere. The noisy signal then goes through
 * ZIVKS_FilterMedian_16s in blocks of 256 samples, as it would arrive from a device,
 * with one delay line carried from block to block so that the blocks join without a
 * seam. The filter is causal: its output lags the input by (mask - 1) / 2 samples, so
 * it is compared with the clean signal delayed by as much. The program prints the
 * error before and after, a few samples around a click, and checks that the blocks
 * gave what one call over the whole signal gives. Where the signal rises or falls
 * steadily, the median of the window is exactly the delayed sample; next to a click and
 * at the tops of the waves it is a neighbour of it, off by about one sample's step.
 * Build: the examples/ folder of the project builds it as example_impulse_noise. */
#include <stdio.h>
#include <string.h>

#include "zivks.h"

#define RATE 48000
#define LEN 4800   /* 18 whole blocks and one of 192 */
#define BLOCK 256  /* every block, the last one too, must hold at least MASK samples */
#define MASK 5     /* removes up to 2 clicks in any 5 samples */
#define DELAY ((MASK - 1) / 2)
#define CLICK_GAP 40 /* clicks are at least this far apart, hence isolated */

/* A small linear congruential generator, so the run is the same on every machine. */
static uint32_t next_random(uint32_t* state) {
  *state = *state * 1664525u + 1013904223u;
  return *state >> 8;
}

/* Adds amp * sin(2 pi freq t) by the recurrence s[n+1] = 2 cos(w) s[n] - s[n-1], with
 * sin(w) and cos(w) from their series (w is small), so the program needs no maths
 * library. */
static void add_tone(double* acc, int len, double freq, double amp) {
  const double w = 2 * 3.14159265358979323846 * freq / RATE;
  const double w2 = w * w;
  const double c = 1 - w2 / 2 * (1 - w2 / 12 * (1 - w2 / 30 * (1 - w2 / 56)));
  const double s = w * (1 - w2 / 6 * (1 - w2 / 20 * (1 - w2 / 42)));
  double cur = 0, prev = -s; /* sin(0), sin(-w) */
  for (int i = 0; i < len; ++i) {
    acc[i] += amp * cur;
    const double next = 2 * c * cur - prev;
    prev = cur;
    cur = next;
  }
}

static int16_t saturate(double v) {
  if (v > 32767) return 32767;
  if (v < -32768) return -32768;
  return (int16_t)(v >= 0 ? v + 0.5 : v - 0.5);
}

/* The error of got[i] against want[i - lag], over the samples where both exist. */
static void report_error(const char* what, const int16_t* got, const int16_t* want, int lag) {
  long long sum = 0;
  int worst = 0, worst_at = 0, off = 0;
  for (int i = lag; i < LEN; ++i) {
    int e = got[i] - want[i - lag];
    if (e < 0) e = -e;
    sum += e;
    if (e > worst) worst = e, worst_at = i;
    if (e > 100) ++off;
  }
  printf("  %-34s mean |error| %7.2f, largest %5d (sample %4d), %4d samples off by more than 100\n", what,
         (double)sum / (LEN - lag), worst, worst_at, off);
}

int main(void) {
  static double tones[LEN];
  static int16_t clean[LEN], noisy[LEN], filtered[LEN], whole[LEN];
  add_tone(tones, LEN, 50, 6000);
  add_tone(tones, LEN, 120, 3000);
  add_tone(tones, LEN, 310, 1500);
  for (int i = 0; i < LEN; ++i) clean[i] = saturate(tones[i]);

  /* Clicks: every CLICK_GAP to 2 CLICK_GAP samples, each a jump of 8000 to 24000 up or
   * down. */
  uint32_t seed = 2024u;
  int clicks = 0, first_click = -1;
  memcpy(noisy, clean, sizeof noisy);
  for (int i = CLICK_GAP + (int)(next_random(&seed) % CLICK_GAP); i < LEN;
       i += CLICK_GAP + (int)(next_random(&seed) % CLICK_GAP)) {
    const double jump = 8000 + (double)(next_random(&seed) % 16001);
    noisy[i] = saturate(clean[i] + (next_random(&seed) & 1 ? jump : -jump));
    if (first_click < 0) first_click = i;
    ++clicks;
  }
  printf("signal: %d samples at %d Hz (50, 120 and 310 Hz tones in int16), %d clicks added\n", LEN, RATE, clicks);
  printf("filter: median of %d samples, fed in blocks of %d; output lags the input by %d samples\n", MASK, BLOCK,
         DELAY);

  ZIVKFilterMedianPolicy* policy = NULL;
  ZIVKStatus st = ZIVKS_FilterMedianInit(MASK, ZIVK_DT_16S, &policy);
  if (st != ZIVK_STS_NO_ERR) {
    printf("FilterMedianInit: %s\n", ZIVKS_GetStatusString(st));
    return 1;
  }

  /* The delay line holds the last MASK - 1 samples of the block before. The first block
   * has none (null dlySrc: its start is padded with copies of its first sample); every
   * call reads the line whole before writing it, so one array serves as both. */
  int16_t delay[MASK - 1];
  int blocks = 0;
  for (int at = 0; at < LEN; at += BLOCK) {
    const int32_t n = LEN - at < BLOCK ? LEN - at : BLOCK;
    st = ZIVKS_FilterMedian_16s(noisy + at, filtered + at, n, MASK, at == 0 ? NULL : delay, delay, policy);
    if (st != ZIVK_STS_NO_ERR) break;
    ++blocks;
  }
  /* The same filter over the whole signal in one call, to compare with. */
  if (st == ZIVK_STS_NO_ERR) st = ZIVKS_FilterMedian_16s(noisy, whole, LEN, MASK, NULL, NULL, policy);
  ZIVKS_FilterMedianRelease(policy);
  if (st != ZIVK_STS_NO_ERR) {
    printf("FilterMedian_16s: %s\n", ZIVKS_GetStatusString(st));
    return 1;
  }

  printf("\nerror against the clean signal:\n");
  report_error("noisy input", noisy, clean, 0);
  char label[64];
  snprintf(label, sizeof label, "filtered (clean delayed by %d)", DELAY);
  report_error(label, filtered, clean, DELAY);
  printf("\naround the first click (filtered read %d samples later):\n", DELAY);
  printf("  %6s %7s %7s %9s\n", "sample", "clean", "noisy", "filtered");
  for (int i = first_click - 3; i <= first_click + 3; ++i)
    printf("  %6d %7d %7d %9d%s\n", i, clean[i], noisy[i], filtered[i + DELAY], i == first_click ? "  <- click" : "");
  printf("\n%d blocks give the same output as one call over the whole signal: %s\n", blocks,
         memcmp(filtered, whole, sizeof whole) == 0 ? "yes" : "NO");
  return memcmp(filtered, whole, sizeof whole) == 0 ? 0 : 1;
}
