/* Makes a test signal, cleans it, thins it out and finds its peaks.
 *
 * 1. A triangle wave of 8 periods of 256 samples (peak 1 at the start of each period,
 *    trough -1 a little after the middle: the wave falls for pi + 0.3 of its 2 pi
 *    radians and rises for pi - 0.3) from ZIVKS_Triangle_32f, plus uniform noise in
 *    [-0.1, 0.1) from ZIVKS_RandUniform_32f, added with ZIVKS_Add_32f. A fixed seed makes
 *    the run the same everywhere.
 * 2. A median filter of 5 samples (ZIVKS_FilterMedian_32f) fed in blocks of 256, with
 *    one delay line carried from block to block. The filter is causal: its output lags
 *    the input by 2 samples.
 * 3. Down-sampling by 4 (ZIVKS_SampleDown_32f) in blocks of 250 samples, which is not a
 *    multiple of 4: the phase the call hands back says where the next block's first kept
 *    sample is, so the blocks keep every 4th sample of the whole stream.
 * 4. The peaks and troughs: ZIVKS_MaxIndx_32f over windows of one period centred on
 *    where the peaks should be, ZIVKS_MinIndx_32f likewise for the troughs, each position
 *    mapped back to the input's sample index.
 * Build: the examples/ folder of the project builds it as example_test_signal. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "zivks.h"

#define LEN 2048
#define PERIOD 256
#define PERIODS (LEN / PERIOD)
#define ASYM 0.3f
#define NOISE 0.1f
#define SEED 7u
#define MASK 5
#define LAG ((MASK - 1) / 2)
#define FILTER_BLOCK 256
#define FACTOR 4
#define DOWN_BLOCK 250
#define DOWN_LEN ((LEN + FACTOR - 1) / FACTOR)
#define DOWN_PERIOD (PERIOD / FACTOR)

static const double kPi = 3.14159265358979323846;

/* Prints what failed and says whether it did. */
static int failed(const char* what, ZIVKStatus st) {
  if (st == ZIVK_STS_NO_ERR) return 0;
  printf("%s: %s\n", what, ZIVKS_GetStatusString(st));
  return 1;
}

/* The mean and the largest |got[i] - want[i - lag]| over the samples where both exist. */
static void report_error(const char* what, const float* got, const float* want, int lag) {
  double sum = 0, worst = 0;
  for (int i = lag; i < LEN; ++i) {
    double e = (double)got[i] - want[i - lag];
    if (e < 0) e = -e;
    sum += e;
    if (e > worst) worst = e;
  }
  printf("  %-32s mean |error| %.4f, largest %.4f\n", what, sum / (LEN - lag), worst);
}

int main(void) {
  static float clean[LEN], noise[LEN], noisy[LEN], filtered[LEN], whole[LEN];
  static float down[DOWN_LEN + DOWN_BLOCK / FACTOR + 1];

  /* 1. The signal. The triangle's phase is read only: one call makes the whole wave. */
  float phase = 0;
  if (failed("Triangle_32f", ZIVKS_Triangle_32f(clean, LEN, 1.0f, 1.0f / PERIOD, ASYM, &phase))) return 1;
  ZIVKRandUniformState_32f* noise_record = NULL;
  if (failed("RandUniformInit_32f", ZIVKS_RandUniformInit_32f(&noise_record, -NOISE, NOISE, SEED))) return 1;
  ZIVKStatus st = ZIVKS_RandUniform_32f(noise, LEN, noise_record);
  ZIVKS_RandUniformRelease_32f(noise_record);
  if (failed("RandUniform_32f", st)) return 1;
  if (failed("Add_32f", ZIVKS_Add_32f(clean, noise, noisy, LEN))) return 1;
  printf("signal: %d periods of a %d-sample triangle (peak 1, trough -1 at %.1f samples in), plus noise in "
         "[%.1f, %.1f), seed %u\n",
         PERIODS, PERIOD, PERIOD * (kPi + ASYM) / (2 * kPi), -NOISE, NOISE, SEED);
  printf("  first samples: clean %.4f %.4f %.4f, noisy %.4f %.4f %.4f\n", clean[0], clean[1], clean[2], noisy[0],
         noisy[1], noisy[2]);

  /* 2. The median filter in blocks. The delay line holds the last MASK - 1 samples of
   * the block before; the first block has none (null: it starts with copies of its first
   * sample). A call reads the line whole before writing it, so one array serves as both. */
  ZIVKFilterMedianPolicy* median = NULL;
  if (failed("FilterMedianInit", ZIVKS_FilterMedianInit(MASK, ZIVK_DT_32F, &median))) return 1;
  float delay[MASK - 1];
  int blocks = 0;
  st = ZIVK_STS_NO_ERR;
  for (int at = 0; at < LEN && st == ZIVK_STS_NO_ERR; at += FILTER_BLOCK, ++blocks) {
    const int32_t n = LEN - at < FILTER_BLOCK ? LEN - at : FILTER_BLOCK;
    st = ZIVKS_FilterMedian_32f(noisy + at, filtered + at, n, MASK, at == 0 ? NULL : delay, delay, median);
  }
  if (st == ZIVK_STS_NO_ERR) st = ZIVKS_FilterMedian_32f(noisy, whole, LEN, MASK, NULL, NULL, median);
  ZIVKS_FilterMedianRelease(median);
  if (failed("FilterMedian_32f", st)) return 1;
  const int filter_seamless = memcmp(filtered, whole, sizeof whole) == 0;
  printf("\nmedian of %d in %d blocks of %d (output %d samples late); same as one call: %s\n", MASK, blocks,
         FILTER_BLOCK, LAG, filter_seamless ? "yes" : "NO");
  report_error("noisy against clean", noisy, clean, 0);
  report_error("filtered against clean, delayed", filtered, clean, LAG);

  /* 3. Down-sampling in blocks, one phase variable for the whole stream. */
  int32_t down_phase = 0, kept = 0;
  blocks = 0;
  printf("\ndown-sampling by %d in blocks of %d:\n", FACTOR, DOWN_BLOCK);
  for (int at = 0; at < LEN; at += DOWN_BLOCK, ++blocks) {
    const int32_t n = LEN - at < DOWN_BLOCK ? LEN - at : DOWN_BLOCK;
    const int32_t first = down_phase;
    int32_t got = 0;
    if (failed("SampleDown_32f", ZIVKS_SampleDown_32f(filtered + at, n, down + kept, &got, FACTOR, &down_phase)))
      return 1;
    if (blocks < 3 || at + DOWN_BLOCK >= LEN)
      printf("  block at %4d: kept from offset %d, %2d samples; the next block starts at phase %d\n", at, first, got,
             down_phase);
    else if (blocks == 3)
      printf("  ...\n");
    kept += got;
  }
  int every_fourth = kept == DOWN_LEN;
  for (int k = 0; every_fourth && k < kept; ++k)
    every_fourth = memcmp(&down[k], &filtered[k * FACTOR], sizeof(float)) == 0;
  printf("  %d blocks kept %d samples; every %dth of the filtered signal: %s\n", blocks, kept, FACTOR,
         every_fourth ? "yes" : "NO");

  /* 4. Peaks and troughs, one a period. A window of one period is centred on where each
   * should be, so the noise cannot move the extreme into the next period. Positions are
   * mapped back to the input: times FACTOR, minus the filter's lag. */
  const int trough_at = (int)(DOWN_PERIOD * (kPi + ASYM) / (2 * kPi) + 0.5);
  printf("\npeaks (expected at multiples of %d) and troughs (expected %d samples later), in input samples:\n",
         PERIOD, trough_at * FACTOR);
  printf("  %6s %9s %7s %11s %9s\n", "period", "peak at", "value", "trough at", "value");
  int worst = 0;
  for (int p = 0; p < PERIODS; ++p) {
    float top = 0, bottom = 0;
    int32_t top_at = -1, bottom_at = -1;
    /* The first peak sits at the start: its window is cut to the half after it. */
    const int32_t top_from = p == 0 ? 0 : p * DOWN_PERIOD - DOWN_PERIOD / 2;
    const int32_t top_to = p * DOWN_PERIOD + DOWN_PERIOD / 2;
    /* The last trough's window is cut at the end of the signal. */
    const int32_t bottom_from = p * DOWN_PERIOD + trough_at - DOWN_PERIOD / 2;
    const int32_t bottom_len = kept - bottom_from < DOWN_PERIOD ? kept - bottom_from : DOWN_PERIOD;
    if (failed("MaxIndx_32f", ZIVKS_MaxIndx_32f(down + top_from, top_to - top_from, &top, &top_at))) return 1;
    if (failed("MinIndx_32f", ZIVKS_MinIndx_32f(down + bottom_from, bottom_len, &bottom, &bottom_at))) return 1;
    /* The filter's first outputs come from copies of the first sample: no lag there. */
    int peak = (top_from + top_at) * FACTOR - LAG;
    if (peak < 0) peak = 0;
    const int trough = (bottom_from + bottom_at) * FACTOR - LAG;
    const int peak_off = peak - p * PERIOD, trough_off = trough - (p * PERIOD + trough_at * FACTOR);
    if (abs(peak_off) > worst) worst = abs(peak_off);
    if (abs(trough_off) > worst) worst = abs(trough_off);
    printf("  %6d %5d (%+3d) %7.4f %7d (%+3d) %9.4f\n", p, peak, peak_off, top, trough, trough_off, bottom);
  }
  printf("  every peak and trough within %d samples of where the clean wave has it\n", worst);
  return filter_seamless && every_fourth ? 0 : 1;
}
