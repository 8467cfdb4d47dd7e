// Plain integer Add and Sub, the widening forms, and Abs.
#include <math.h>

#include <limits>

#include "support/sweep.h"

namespace {

template <class T>
T sat(int64_t x) {
  return static_cast<T>(std::min<int64_t>(std::max<int64_t>(x, std::numeric_limits<T>::min()), std::numeric_limits<T>::max()));
}

// Random operands with the type's extremes mixed in, so that saturation shows often.
template <class S, class D, class P>
void extremes(zt::Member<S, D, P>& m) {
  m.fill = [](S* p, size_t n, const P&, zt::Rng& rng) {
    zt::fill_random(p, n, rng);
    if constexpr (std::is_integral_v<S>)
      for (size_t i = 0; i < n; ++i)
        if (rng() % 4 == 0) p[i] = rng() % 2 ? std::numeric_limits<S>::max() : std::numeric_limits<S>::min();
  };
}

template <class S, class D, class P = int, class Rule>
void check(const char* name, int sources, typename zt::Member<S, D, P>::Call call,
           typename zt::Member<S, D, P>::Call in_place, Rule rule, std::vector<P> params = {P{}},
           bool in_place_only = false) {
  zt::Member<S, D, P> m;
  m.name = name;
  m.sources = sources;
  m.call = call;
  m.in_place = in_place;
  m.rule = zt::each<S, D, P>(rule);
  m.params = params;
  m.nullable_sources = in_place_only;  // srcDst is the only array
  extremes(m);
  zt::check_member(m);
}

// The sign bit cleared and nothing else, for floats; saturated for integers.
template <class T>
T abs_rule(T x, T, int, int, int) {
  if constexpr (std::is_floating_point_v<T>) {
    reinterpret_cast<unsigned char*>(&x)[sizeof x - 1] &= 0x7F;
    return x;
  } else {
    return sat<T>(x < 0 ? -int64_t{x} : x);
  }
}

// A form that exists in place only, seen as out of place: srcDst starts as a copy of a.
#define ZT_ON_COPY(fn)                                                                     \
  [](bool t, const int16_t* a, const int16_t*, int16_t v, int16_t* d, int32_t n) -> ZIVKStatus { \
    if (a && d && n > 0) memmove(d, a, n * sizeof *d);                                     \
    auto f = t ? ZT_TWIN(fn) : &fn;                                                        \
    return f ? f(v, d, n) : zt::kNoTwin;                                                   \
  }

TEST(IntAddSubAbs, EveryMemberFollowsTheRule) {
  using u8 = uint8_t;
  using u16 = uint16_t;
  using i16 = int16_t;
  check<u8, u16>("Add_8u16u", 2, ZT_CALL(ZIVKS_Add_8u16u, a, b, d, n), nullptr,
                 [](u8 a, u8 b, int, int, int) { return u16(a + b); });
  check<u16, u16>("Add_16u", 2, ZT_CALL(ZIVKS_Add_16u, a, b, d, n), nullptr,
                  [](u16 a, u16 b, int, int, int) { return sat<u16>(a + b); });
  check<uint32_t, uint32_t>("Add_32u", 2, ZT_CALL(ZIVKS_Add_32u, a, b, d, n), ZT_CALL(ZIVKS_Add_32u_I, a, d, n),
                            [](uint32_t a, uint32_t b, int, int, int) { return sat<uint32_t>(int64_t{a} + b); });
  check<i16, i16>("Add_16s", 2, ZT_CALL(ZIVKS_Add_16s, a, b, d, n), ZT_CALL(ZIVKS_Add_16s_I, a, d, n),
                  [](i16 a, i16 b, int, int, int) { return sat<i16>(a + b); });
  check<i16, i16>("Sub_16s", 2, ZT_CALL(ZIVKS_Sub_16s, a, b, d, n), ZT_CALL(ZIVKS_Sub_16s_I, a, d, n),
                  [](i16 a, i16 b, int, int, int) { return sat<i16>(b - a); });
  check<i16, float>("Add_16s32f", 2, ZT_CALL(ZIVKS_Add_16s32f, a, b, d, n), nullptr,
                    [](i16 a, i16 b, int, int, int) { return float(a + b); });
  check<i16, float>("Sub_16s32f", 2, ZT_CALL(ZIVKS_Sub_16s32f, a, b, d, n), nullptr,
                    [](i16 a, i16 b, int, int, int) { return float(b - a); });
  const std::vector<i16> vals = {1, -1, 32767, -32768, 12345};
  check<i16, i16, i16>("AddC_16s_I", 1, ZT_ON_COPY(ZIVKS_AddC_16s_I), nullptr,
                       [](i16 a, i16, i16 v, int, int) { return sat<i16>(a + v); }, vals, true);
  check<i16, i16, i16>("SubC_16s_I", 1, ZT_ON_COPY(ZIVKS_SubC_16s_I), nullptr,
                       [](i16 a, i16, i16 v, int, int) { return sat<i16>(a - v); }, vals, true);
  check<i16, i16>("Abs_16s", 1, ZT_CALL(ZIVKS_Abs_16s, a, d, n), ZT_CALL(ZIVKS_Abs_16s_I, d, n), abs_rule<i16>);
  check<int32_t, int32_t>("Abs_32s", 1, ZT_CALL(ZIVKS_Abs_32s, a, d, n), ZT_CALL(ZIVKS_Abs_32s_I, d, n), abs_rule<int32_t>);
  check<float, float>("Abs_32f", 1, ZT_CALL(ZIVKS_Abs_32f, a, d, n), ZT_CALL(ZIVKS_Abs_32f_I, d, n), abs_rule<float>);
  check<double, double>("Abs_64f", 1, ZT_CALL(ZIVKS_Abs_64f, a, d, n), ZT_CALL(ZIVKS_Abs_64f_I, d, n), abs_rule<double>);
}

// Add_16s32s_I wraps where its neighbours saturate: srcDst += src in 32 bits.
TEST(IntAddSubAbs, Add16s32sInPlaceWraps) {
  zt::Member<int16_t, int32_t> m;
  m.name = "Add_16s32s_I";
  m.call = [](bool t, const int16_t* a, const int16_t*, int, int32_t* d, int32_t n) {
    // The accumulator starts from a fixed pattern of extremes and small values.
    if (d)
      for (int32_t i = 0; i < n; ++i) d[i] = i % 3 == 0 ? INT32_MAX - i : i % 3 == 1 ? INT32_MIN + i : i;
    auto f = t ? ZT_TWIN(ZIVKS_Add_16s32s_I) : &ZIVKS_Add_16s32s_I;
    return f ? f(a, d, n) : zt::kNoTwin;
  };
  m.rule = zt::each<int16_t, int32_t, int>([](int16_t a, int16_t, int, int i, int) {
    const int32_t acc = i % 3 == 0 ? INT32_MAX - i : i % 3 == 1 ? INT32_MIN + i : i;
    return static_cast<int32_t>(static_cast<uint32_t>(acc) + static_cast<uint32_t>(int32_t{a}));
  });
  m.alone = false;
  extremes(m);
  zt::check_sweep(m);
  zt::Guarded<int16_t> a(4);
  zt::Guarded<int32_t> w(4);
  EXPECT_EQ(ZIVKS_Add_16s32s_I(nullptr, w.data(), 4), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_Add_16s32s_I(a.data(), nullptr, 0), ZIVK_STS_NULL_PTR_ERR);
  EXPECT_EQ(ZIVKS_Add_16s32s_I(a.data(), w.data(), 0), ZIVK_STS_SIZE_ERR);
  EXPECT_TRUE(w.untouched());
}

}  // namespace
