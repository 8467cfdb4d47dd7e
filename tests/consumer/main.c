#include <stdio.h>

#include "zivks.h"

int main(void) {
  float a[5] = {1, 2, 3, 4, 5}, b[5] = {5, 4, 3, 2, 1}, c[5];
  if (ZIVKS_Add_32f(a, b, c, 5) != ZIVK_STS_NO_ERR) return 1;
  for (int i = 0; i < 5; ++i)
    if (c[i] != 6.0f) return 1;
  printf("consumer: %s\n", ZIVKS_GetStatusString(ZIVK_STS_NO_ERR));
  return 0;
}
