// Lanes whose result is NaN get the NaN that the Arm vector unit gives (see core/fp.h):
// the x86 unit picks another one, and compilers may swap commutative operands. Results
// without NaN never come here. The vectors come by value, in registers, so that the hot
// path never has to keep them in memory for this rare call.
#pragma once

#include "core/fp.h"
#include "core/simd/vec.h"

namespace zivks::simd {

template <class V>
[[gnu::cold, gnu::noinline]] V rebuild_nans(V r, V a, V b) {
  lanes<V> lr(r), la(a), lb(b);
  for (int i = 0; i < V::kLanes; ++i)
    if (fp::is_nan(lr.v[i])) lr.v[i] = fp::nan_of(la.v[i], lb.v[i]);
  return lr.get();
}

// Lanes with a NaN operand get the NaN of the rule, for operations (the x86 max and min)
// whose raw result there is not NaN.
template <class V>
[[gnu::cold, gnu::noinline]] V rebuild_nan_operands(V r, V a, V b) {
  lanes<V> lr(r), la(a), lb(b);
  for (int i = 0; i < V::kLanes; ++i)
    if (fp::is_nan(la.v[i]) || fp::is_nan(lb.v[i])) lr.v[i] = fp::nan_of(la.v[i], lb.v[i]);
  return lr.get();
}

// The same for a fused a * b + c.
template <class V>
[[gnu::cold, gnu::noinline]] V rebuild_nans3(V r, V a, V b, V c) {
  lanes<V> lr(r), la(a), lb(b), lc(c);
  for (int i = 0; i < V::kLanes; ++i)
    if (fp::is_nan(lr.v[i])) lr.v[i] = fp::nan_of_mul_add(la.v[i], lb.v[i], lc.v[i]);
  return lr.get();
}

}  // namespace zivks::simd
