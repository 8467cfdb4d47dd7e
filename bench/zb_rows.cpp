// The parts of the families of rows (bench/zb_rows.h) that are not templates.
#include "bench/zb_rows.h"

#include <stdlib.h>
#include <string.h>

namespace zb {

Buffer::Buffer(size_t bytes) {
  const size_t b = (bytes + 64 + 63) & ~size_t{63};
  p_ = aligned_alloc(64, b);
  if (p_ == nullptr) {
    fprintf(stderr, "bench: cannot allocate %zu bytes\n", b);
    exit(1);
  }
  memset(p_, 0, b);
}

Buffer::~Buffer() { free(p_); }

std::string size_name(int32_t n) {
  if (n % kMi == 0) return std::to_string(n / kMi) + "Mi";
  if (n % kKi == 0) return std::to_string(n / kKi) + "Ki";
  return std::to_string(n);
}

std::string fixed(double x, const char* format) {
  if (!std::isfinite(x)) return "-";
  char b[32];
  snprintf(b, sizeof b, format, x);
  return b;
}

}  // namespace zb
