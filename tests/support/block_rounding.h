// A scaled product as one float32-to-integer vector lane makes it an I: round to nearest
// even, saturate to the signed lane of p's width, then narrow with saturation. The tests
// set it beside the scalar tails.
#pragma once

#include <stdint.h>

#include <limits>

#include "core/rounding.h"

namespace zt {

// Saturating narrow of an integer lane to I.
template <class I, class L>
inline I narrow_sat(L x) {
  if (x > static_cast<L>(std::numeric_limits<I>::max())) return std::numeric_limits<I>::max();
  if (x < static_cast<L>(std::numeric_limits<I>::min())) return std::numeric_limits<I>::min();
  return static_cast<I>(x);
}

template <class I, class F>
inline I block_round(F p) {
  using zivks::rounding::Mode;
  return narrow_sat<I>(zivks::rounding::cvt_sat<zivks::rounding::lane_int_t<F>, Mode::kNear>(p));
}

}  // namespace zt
