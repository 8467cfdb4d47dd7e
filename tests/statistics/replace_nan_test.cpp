// ReplaceNAN: every NaN, of any sign and payload, becomes val; nothing else changes.
#include "support/sweep.h"

namespace {

template <class F>
void check(const char* name, typename zt::Member<F, F, F>::Call in_place) {
  zt::Member<F, F, F> m;
  m.name = name;
  m.call = [in_place](bool t, const F* a, const F*, F v, F* d, int32_t n) {
    if (a && d && n > 0) memmove(d, a, n * sizeof(F));  // srcDst starts as a copy of a
    return in_place(t, nullptr, nullptr, v, d, n);
  };
  m.nullable_sources = true;  // srcDst is the only array
  m.rule = zt::each<F, F, F>([](F x, F, F v, int, int) { return x != x ? v : x; });
  m.params = zt::samples<F>(4, 85);
  zt::check_member(m);
}

TEST(ReplaceNAN, EveryNaNAndNothingElse) {
  check<float>("ReplaceNAN_32f_I", ZT_CALL(ZIVKS_ReplaceNAN_32f_I, p, d, n));
  check<double>("ReplaceNAN_64f_I", ZT_CALL(ZIVKS_ReplaceNAN_64f_I, p, d, n));
}

}  // namespace
