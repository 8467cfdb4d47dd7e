/* The library as an application uses it: allocate typed arrays, fill them, move data
 * within an array, add complex vectors, read status texts, free. */
#include <stdio.h>

#include "zivks.h"

static int check(const char* what, ZIVKStatus st) {
  printf("  %-46s -> status %d (%s)\n", what, (int)st, ZIVKS_GetStatusString(st));
  return st != ZIVK_STS_NO_ERR;
}

int main(void) {
  const ZIVKLibVersion* v = ZIVKS_GetLibVersion();
  printf("%s %s, %s backend\n\n", v->name, v->version, v->backend);

  printf("Allocate and fill 12 float samples:\n");
  float* x = ZIVKS_Malloc_32f(12);
  if (!x) return 1;
  if (check("ZIVKS_Set_32f(0.25, x, 12)", ZIVKS_Set_32f(0.25f, x, 12))) return 1;
  printf("  x = ");
  for (int i = 0; i < 12; ++i) printf("%g ", x[i]);
  printf("\n  plus the ramp 0, 1, ..., 11 (added by this program, x[i] += i):\n");
  for (int i = 0; i < 12; ++i) x[i] += (float)i;
  printf("  x = ");
  for (int i = 0; i < 12; ++i) printf("%g ", x[i]);
  printf("\n\nMove x[0..9] up by two places (the ranges overlap):\n");
  if (check("ZIVKS_Move_32f(x, x + 2, 10)", ZIVKS_Move_32f(x, x + 2, 10))) return 1;
  if (check("ZIVKS_Zero_32f(x, 2)", ZIVKS_Zero_32f(x, 2))) return 1;
  printf("  x = ");
  for (int i = 0; i < 12; ++i) printf("%g ", x[i]);
  printf("\n\nAdd two complex vectors of 5 elements:\n");
  ZIVK32fc* a = ZIVKS_Malloc_32fc(5);
  ZIVK32fc* b = ZIVKS_Malloc_32fc(5);
  ZIVK32fc* c = ZIVKS_Malloc_32fc(5);
  if (!a || !b || !c) return 1;
  for (int i = 0; i < 5; ++i) {
    a[i].re = (float)i;
    a[i].im = 1.0f;
    b[i].re = 0.5f;
    b[i].im = (float)-i;
  }
  if (check("ZIVKS_Add_32fc(a, b, c, 5)", ZIVKS_Add_32fc(a, b, c, 5))) return 1;
  for (int i = 0; i < 5; ++i)
    printf("  (%g%+gi) + (%g%+gi) = (%g%+gi)\n", a[i].re, a[i].im, b[i].re, b[i].im, c[i].re, c[i].im);
  ZIVK32fc shift = {1.0f, -1.0f};
  if (check("ZIVKS_SubC_32fc_I((1-1i), c, 5)", ZIVKS_SubC_32fc_I(shift, c, 5))) return 1;
  printf("  c - (1-1i) = ");
  for (int i = 0; i < 5; ++i) printf("(%g%+gi) ", c[i].re, c[i].im);
  printf("\n\nWhat errors look like (nothing is written):\n");
  check("ZIVKS_Add_32fc(a, NULL, c, 5)", ZIVKS_Add_32fc(a, NULL, c, 5));
  check("ZIVKS_Add_32fc(a, b, c, 0)", ZIVKS_Add_32fc(a, b, c, 0));
  printf("  ZIVKS_Malloc_64fc(134217728) = %p (too large for a 32-bit byte count)\n",
         (void*)ZIVKS_Malloc_64fc(134217728));

  ZIVKS_Free(x);
  ZIVKS_Free(a);
  ZIVKS_Free(b);
  ZIVKS_Free(c);
  printf("\nFreed everything.\n");
  return 0;
}
