// And, Or, Xor, their constant forms, and Not: the plain C operator on every element.
#include "support/sweep.h"

namespace {

template <class T, class Op>
zt::Member<T, T, T> member(const char* name, int sources, Op op, typename zt::Member<T, T, T>::Call call,
                     typename zt::Member<T, T, T>::Call in_place) {
  zt::Member<T, T, T> m;
  m.name = name;
  m.sources = sources;
  m.call = call;
  m.in_place = in_place;
  // With one source the parameter is the constant (Not ignores it).
  m.rule = zt::each<T, T, T>([op, sources](T a, T b, T v, int, int) { return static_cast<T>(op(a, sources == 2 ? b : v)); });
  m.params = zt::samples<T>(3, sizeof(T));
  return m;
}

#define ZT_LOGIC(op, code, expr)                                                                          \
  zt::check_member(member<T>(#op "_" #code, 2, [](T a, T b) { return expr; },                             \
                             ZT_CALL(ZIVKS_##op##_##code, a, b, d, n), ZT_CALL(ZIVKS_##op##_##code##_I, a, d, n))); \
  zt::check_member(member<T>(#op "C_" #code, 1, [](T a, T b) { return expr; },                            \
                             ZT_CALL(ZIVKS_##op##C_##code, a, p, d, n), ZT_CALL(ZIVKS_##op##C_##code##_I, p, d, n)))

#define ZT_TYPE(code, type, not_in_place)                                                   \
  TEST(Logic, code) {                                                                   \
    using T = type;                                                                     \
    ZT_LOGIC(And, code, a & b);                                                         \
    ZT_LOGIC(Or, code, a | b);                                                          \
    ZT_LOGIC(Xor, code, a ^ b);                                                         \
    zt::check_member(member<T>("Not_" #code, 1, [](T a, T) { return ~a; },              \
                               ZT_CALL(ZIVKS_Not_##code, a, d, n), not_in_place));      \
  }
ZT_TYPE(8u, uint8_t, ZT_CALL(ZIVKS_Not_8u_I, d, n))
ZT_TYPE(16u, uint16_t, nullptr)
ZT_TYPE(32u, uint32_t, nullptr)

}  // namespace
