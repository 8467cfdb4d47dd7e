/* Byte order and complex layout: turns big-endian 24-bit audio samples into the
 * little-endian order a sound card takes, then splits an interleaved complex signal
 * into its real and imaginary parts and conjugates it. */
#include <stdio.h>

#include "zivks.h"

static long sample_value(const uint8_t* s) {  /* little-endian signed 24-bit */
  long v = (long)s[0] | ((long)s[1] << 8) | ((long)s[2] << 16);
  return v >= 0x800000 ? v - 0x1000000 : v;
}

int main(void) {
  /* Five samples as a big-endian file stores them: most significant byte first. */
  enum { kSamples = 5, kPoints = 6 };
  uint8_t audio[3 * kSamples] = {0x00, 0x00, 0x01, 0x7F, 0xFF, 0xFF, 0x80, 0x00, 0x00,
                                 0xFF, 0xFF, 0xFE, 0x12, 0x34, 0x56};
  ZIVKStatus st = ZIVKS_SwapBytes_24u_I(audio, kSamples);
  if (st != ZIVK_STS_NO_ERR) return fprintf(stderr, "SwapBytes_24u_I: status %d\n", st), 1;
  printf("24-bit samples, big-endian turned little-endian:\n");
  for (int i = 0; i < kSamples; ++i)
    printf("  %02X %02X %02X  = %ld\n", audio[3 * i], audio[3 * i + 1], audio[3 * i + 2],
           sample_value(audio + 3 * i));

  /* A complex tone e^(i k pi/3), interleaved re, im as a receiver delivers it. */
  const ZIVK32fc iq[kPoints] = {{1.0f, 0.0f},   {0.5f, 0.866f},  {-0.5f, 0.866f},
                                {-1.0f, 0.0f},  {-0.5f, -0.866f}, {0.5f, -0.866f}};
  float re[kPoints], im[kPoints];
  ZIVK32fc conj[kPoints];
  if ((st = ZIVKS_CplxToReal_32fc(iq, re, im, kPoints)) != ZIVK_STS_NO_ERR)
    return fprintf(stderr, "CplxToReal_32fc: status %d\n", st), 1;
  if ((st = ZIVKS_Conj_32fc(iq, conj, kPoints)) != ZIVK_STS_NO_ERR)
    return fprintf(stderr, "Conj_32fc: status %d\n", st), 1;
  printf("complex signal split into parts, and its conjugate (im negated; 0 becomes -0):\n");
  printf("  %7s %7s   %8s %8s\n", "re", "im", "conj re", "conj im");
  for (int i = 0; i < kPoints; ++i)
    printf("  %7.3f %7.3f   %8.3f %8.3f\n", re[i], im[i], conj[i].re, conj[i].im);

  /* The conjugate's imaginary part again, joined with a zero real part. */
  float conj_im[kPoints];
  ZIVK32fc only_im[kPoints];
  if ((st = ZIVKS_Imag_32fc(conj, conj_im, kPoints)) != ZIVK_STS_NO_ERR ||
      (st = ZIVKS_RealToCplx_32f(NULL, conj_im, only_im, kPoints)) != ZIVK_STS_NO_ERR)
    return fprintf(stderr, "Imag/RealToCplx: status %d\n", st), 1;
  printf("the conjugate's imaginary part alone, as complex numbers (re, im) with a zero\n"
         "real part (RealToCplx given no real source):\n ");
  for (int i = 0; i < kPoints; ++i) printf(" (%g, %g)", only_im[i].re, only_im[i].im);
  printf("\n");
  return 0;
}
