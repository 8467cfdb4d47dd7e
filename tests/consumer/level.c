/* Prints which build of the library the loader picked: the version record's backend and
 * the folder the base library was loaded from. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdio.h>

#include "zivks.h"

int main(void) {
  Dl_info info;
  if (!dladdr((void*)&ZIVKS_Add_32f, &info) || !info.dli_fname) return 1;
  printf("%s %s\n", ZIVKS_GetLibVersion()->backend, info.dli_fname);
  return 0;
}
