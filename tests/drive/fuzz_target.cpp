// The fuzz target: the first two bytes choose the entry, the rest are its input.
#include <string.h>

#include "drive.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const auto& all = zd::entries();
  uint16_t pick;
  memcpy(&pick, data, 2);
  zd::run_entry(all[pick % all.size()], data + 2, size - 2);
  return 0;
}
