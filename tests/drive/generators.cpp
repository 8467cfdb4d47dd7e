// Generators: the random fills with their records, the triangle wave and its phase, up-
// and down-sampling with their factor and phase, and the ramps.
#include <math.h>

#include <algorithm>
#include <limits>

#include "drive.h"

namespace zd {

namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kPi = 3.141592653589793;

// An array whose contents the entry chooses (a phase in its range, say), in an exact
// block like Call::array's. The entry says after the call whether it was a source
// (checked unchanged) or written (checked unchanged after an error, then digested).
template <class T>
class Chosen {
 public:
  Chosen(Call& c, std::vector<T> v)
      : null_(c.in().one_in(40)),
        block_(v.size() * sizeof(T), alignof(T) * c.in().below(64 / alignof(T))),
        init_(std::move(v)) {
    if (!init_.empty()) memcpy(block_.data(), init_.data(), block_.size());
  }
  T* get() const { return null_ ? nullptr : reinterpret_cast<T*>(block_.data()); }
  T value() const { return *reinterpret_cast<const T*>(block_.data()); }
  void source(Call& c) const {
    if (!same()) fail(c.entry(), "wrote a source array");
  }
  void written(Call& c, ZIVKStatus s) const {
    if (is_error(s) && !same()) fail(c.entry(), "wrote an array and returned error " + std::to_string(s));
    c.digest().add(block_.data(), block_.size());
  }

 private:
  bool same() const { return block_.size() == 0 || memcmp(block_.data(), init_.data(), block_.size()) == 0; }
  bool null_;
  Block block_;
  std::vector<T> init_;
};

// A fraction in [0, 1) with 16 bits.
double unit(Call& c) { return c.in().below(65536) / 65536.0; }

// ---- Random fills

enum class Step { kInit, kFill, kRelease };

template <class T, class S>
struct RandApi {
  ZIVKStatus (*init)(S**, T, T, uint32_t);
  ZIVKStatus (*fill)(T*, int32_t, S*);
  ZIVKStatus (*release)(S*);
};

// Every entry of the family runs a record's whole life, Init, fill, Release, and reports
// the status of its own step; the other statuses go into the digest.
template <class T, class S>
void rand_uniform(Call& c, const RandApi<T, S>& api, Step main) {
  const T low = c.scalar<T>("low"), high = c.scalar<T>("high");
  const uint32_t seed = c.in().take<uint32_t>();
  S* policy = nullptr;
  const ZIVKStatus si = api.init(c.in().one_in(30) ? nullptr : &policy, low, high, seed);
  c.result(si);
  if (si != ZIVK_STS_NO_ERR && policy) fail(c.entry(), "Init failed and stored a record");
  if (si == ZIVK_STS_NO_ERR &&
      (memcmp(&policy->low, &low, sizeof low) || memcmp(&policy->high, &high, sizeof high) ||
       policy->seed != seed))
    fail(c.entry(), "the record does not hold the bounds and seed given to Init");

  const int32_t len = c.length();
  T* dst = c.array<T>(len, Call::kWritten);
  S* used = c.in().one_in(30) ? nullptr : policy;
  const ZIVKStatus sf = api.fill(dst, len, used);
  if (sf == ZIVK_STS_NO_ERR) {
    // Every fill starts again from the record's seed.
    std::vector<T> again(static_cast<size_t>(len));
    if (api.fill(again.data(), len, used) != ZIVK_STS_NO_ERR || memcmp(again.data(), dst, again.size() * sizeof(T)))
      fail(c.entry(), "a second fill with the same record gave other values");
    if constexpr (std::is_integral<T>::value) {
      const T lo = std::min(low, high), hi = std::max(low, high);
      for (int32_t i = 0; i < len; ++i)
        if (dst[i] < lo || dst[i] > hi) fail(c.entry(), "a value outside the bounds");
    }
  }
  ZIVKStatus sr = ZIVK_STS_NO_ERR;
  if (policy || (main == Step::kRelease && c.in().one_in(4))) sr = api.release(policy);
  if (main != Step::kFill) c.result(sf);
  if (main != Step::kRelease) c.result(sr);
  c.finish(main == Step::kInit ? si : main == Step::kFill ? sf : sr);
}

#define ZD_RAND(T, S, suffix)                                                                      \
  const RandApi<T, S> rand_##suffix{ZIVKS_RandUniformInit_##suffix, ZIVKS_RandUniform_##suffix,     \
                                     ZIVKS_RandUniformRelease_##suffix};
ZD_RAND(uint8_t, ZIVKRandUniformState_8u, 8u)
ZD_RAND(int16_t, ZIVKRandUniformState_16s, 16s)
ZD_RAND(float, ZIVKRandUniformState_32f, 32f)
ZD_RAND(double, ZIVKRandUniformState_64f, 64f)
#undef ZD_RAND

// ---- Triangle wave
// Arguments mostly within their ranges, sometimes at or just past a bound, or NaN (which
// passes the ordered checks).

template <class M>
M magnitude(Call& c) {
  if constexpr (std::is_integral<M>::value) {
    if (c.in().one_in(8)) return pick(c, {M(0), M(-1), M(1), M(-32768), M(32767)});
    return M(1 + c.in().below(32767));
  } else {
    if (c.in().one_in(8)) return pick(c, {M(0), M(-0.0), M(-1), M(NAN), M(INFINITY), M(1e-30)});
    const double fraction = 1 + unit(c);  // drawn before the exponent: arguments are unordered
    return M(ldexp(fraction, int(c.in().below(30)) - 10));
  }
}

template <class F>
F frequency(Call& c) {
  if (c.in().one_in(6))
    return pick(c, {F(0), F(-0.0), F(-1e-9), F(0.5), F(0.49999), F(0.14), F(0.13), F(0.11), F(0.1),
                    F(NAN)});
  return F(unit(c) * 0.5);
}

template <class F>
F asymmetry(Call& c) {
  if (c.in().one_in(8)) return pick(c, {F(0), F(kPi), F(-kPi), F(3.14159), F(-3.14159), F(NAN)});
  return F((unit(c) * 2 - 1) * kPi);
}

template <class F>
F start_phase(Call& c) {
  if (c.in().one_in(8))
    return pick(c, {F(0), F(-0.0), F(-1e-7), F(kTwoPi), F(6.2831850), F(6.283185307179585), F(NAN)});
  return F(unit(c) * kTwoPi);
}

template <class T, class M, class F, bool Carries>
void triangle(Call& c, ZIVKStatus (*fn)(T*, int32_t, M, F, F, F*)) {
  const int32_t len = c.length();
  T* dst = c.array<T>(len, Call::kWritten);
  const M magn = magnitude<M>(c);
  const F rFreq = frequency<F>(c), asym = asymmetry<F>(c);
  const Chosen<F> phase(c, {start_phase<F>(c)});
  const ZIVKStatus s = fn(dst, len, magn, rFreq, asym, phase.get());
  if (Carries) {
    phase.written(c, s);
    if (s == ZIVK_STS_NO_ERR && (phase.value() < 0 || phase.value() >= kTwoPi))
      fail(c.entry(), "the phase carried on is outside [0, 2 pi)");
  } else {
    phase.source(c);
  }
  c.finish(s);
}

// ---- Up- and down-sampling

int32_t factor_for(Call& c, int32_t srcLen, bool up) {
  if (c.in().one_in(8)) {
    // SampleUp refuses `edge` and INT32_MAX; SampleDown takes them and keeps a sample or two.
    const int32_t edge = srcLen > 0 ? INT32_MAX / srcLen : INT32_MAX;
    if (up) return pick(c, {0, -1, INT32_MIN, INT32_MAX, edge, 1});
    return pick(c, {0, -1, INT32_MIN, INT32_MAX, edge, 1073741823, 100000});
  }
  return int32_t(1 + c.in().below(up ? 9 : 40));
}

int32_t phase_for(Call& c, int32_t factor) {
  if (factor >= 1 && !c.in().one_in(10)) return int32_t(c.in().below(uint32_t(std::min(factor, 65535))));
  return pick(c, {-1, INT32_MIN, factor, INT32_MAX, 0});
}

template <class T, bool Up>
void sample(Call& c, ZIVKStatus (*fn)(const T*, int32_t, T*, int32_t*, int32_t, int32_t*)) {
  const int32_t srcLen = c.length();
  const T* src = c.array<T>(srcLen, Call::kSource);
  const int32_t factor = factor_for(c, srcLen, Up);
  const int32_t ph = phase_for(c, factor);
  // The outputs a valid call makes: all srcLen * factor of SampleUp (which refuses a
  // product that does not fit well inside int32), the kept samples of SampleDown.
  int64_t n = 0;
  if (srcLen >= 1 && factor >= 1 && ph >= 0 && ph < factor) {
    if (Up) n = INT32_MAX / srcLen <= factor ? 0 : int64_t(srcLen) * factor;
    else n = (int64_t(factor) + srcLen - 1 - ph) / factor;
  }
  T* dst = c.array<T>(n, Call::kWritten);
  int32_t* dstLen = c.array<int32_t>(1, Call::kWritten);
  const Chosen<int32_t> phase(c, {ph});
  const ZIVKStatus s = fn(src, srcLen, dst, dstLen, factor, phase.get());
  if (s == ZIVK_STS_NO_ERR && *dstLen != n) fail(c.entry(), "*dstLen is not the count of outputs");
  if (Up) phase.source(c);
  else phase.written(c, s);
  c.finish(s);
}

// ---- Ramps
// offset and slope mostly make a ramp that crosses the element's range within a few
// hundred elements, with halves for ties; now and then raw bits or special values.

template <class T, class P>
void ramp(Call& c, ZIVKStatus (*fn)(T*, int32_t, P, P)) {
  const int32_t len = c.length();
  // 64f stores whole groups of 4: its room is len rounded up to a multiple of 4.
  const int64_t room = std::is_same<T, double>::value && len > 0 ? (int64_t(len) + 3) / 4 * 4 : len;
  T* dst = c.array<T>(room, Call::kWritten);
  const double range = std::is_floating_point<T>::value ? 1e6 : double(std::numeric_limits<T>::max());
  P offset, slope;
  switch (c.in().below(4)) {
    case 0:
      offset = c.scalar<P>("offset");
      slope = c.scalar<P>("slope");
      break;
    case 1:  // ties: halves on integer steps
      offset = P(int(c.in().below(64)) - 16 + 0.5);
      slope = P(int(c.in().below(5)) - 2);
      break;
    default: {
      offset = P(range * (unit(c) * 2.4 - 1.2));
      const double swing = range * (unit(c) * 2 - 1);  // before the divisor: operands are unordered
      slope = P(swing / pick(c, {1.0, 16.0, 256.0, 4096.0, 65536.0, 1048576.0}));
    }
  }
  c.finish(fn(dst, len, offset, slope));
}

}  // namespace

void add_generators(std::vector<Entry>& out) {
  const Entry list[] = {
#define ZD_RAND_ENTRY(fn, suffix, step) \
  {#fn, [](Call& c) { rand_uniform(c, rand_##suffix, Step::step); }, kSharedGenerator}
      ZD_RAND_ENTRY(ZIVKS_RandUniformInit_8u, 8u, kInit),
      ZD_RAND_ENTRY(ZIVKS_RandUniformInit_16s, 16s, kInit),
      ZD_RAND_ENTRY(ZIVKS_RandUniformInit_32f, 32f, kInit),
      ZD_RAND_ENTRY(ZIVKS_RandUniformInit_64f, 64f, kInit),
      ZD_RAND_ENTRY(ZIVKS_RandUniformRelease_8u, 8u, kRelease),
      ZD_RAND_ENTRY(ZIVKS_RandUniformRelease_16s, 16s, kRelease),
      ZD_RAND_ENTRY(ZIVKS_RandUniformRelease_32f, 32f, kRelease),
      ZD_RAND_ENTRY(ZIVKS_RandUniformRelease_64f, 64f, kRelease),
      ZD_RAND_ENTRY(ZIVKS_RandUniform_8u, 8u, kFill),
      ZD_RAND_ENTRY(ZIVKS_RandUniform_16s, 16s, kFill),
      ZD_RAND_ENTRY(ZIVKS_RandUniform_32f, 32f, kFill),
      ZD_RAND_ENTRY(ZIVKS_RandUniform_64f, 64f, kFill),
#undef ZD_RAND_ENTRY
#define ZD_TRIANGLE(fn, T, M, F, carries) \
  {#fn, [](Call& c) { triangle<T, M, F, carries>(c, fn); }, 0}
      ZD_TRIANGLE(ZIVKS_Triangle_16s, int16_t, int16_t, float, false),
      ZD_TRIANGLE(ZIVKS_Triangle_32f, float, float, float, false),
      ZD_TRIANGLE(ZIVKS_Triangle_64f, double, double, double, true),
      ZD_TRIANGLE(ZIVKS_Triangle_16sc, ZIVK16sc, int16_t, float, false),
      ZD_TRIANGLE(ZIVKS_Triangle_32fc, ZIVK32fc, float, float, false),
      ZD_TRIANGLE(ZIVKS_Triangle_64fc, ZIVK64fc, double, double, true),
#undef ZD_TRIANGLE
#define ZD_SAMPLE(fn, T, up) \
  {#fn, [](Call& c) { sample<T, up>(c, fn); }, 0}
      ZD_SAMPLE(ZIVKS_SampleUp_16s, int16_t, true),
      ZD_SAMPLE(ZIVKS_SampleUp_32f, float, true),
      ZD_SAMPLE(ZIVKS_SampleUp_64f, double, true),
      ZD_SAMPLE(ZIVKS_SampleUp_16sc, ZIVK16sc, true),
      ZD_SAMPLE(ZIVKS_SampleUp_32fc, ZIVK32fc, true),
      ZD_SAMPLE(ZIVKS_SampleUp_64fc, ZIVK64fc, true),
      ZD_SAMPLE(ZIVKS_SampleDown_16s, int16_t, false),
      ZD_SAMPLE(ZIVKS_SampleDown_32f, float, false),
      ZD_SAMPLE(ZIVKS_SampleDown_64f, double, false),
      ZD_SAMPLE(ZIVKS_SampleDown_16sc, ZIVK16sc, false),
      ZD_SAMPLE(ZIVKS_SampleDown_32fc, ZIVK32fc, false),
      ZD_SAMPLE(ZIVKS_SampleDown_64fc, ZIVK64fc, false),
#undef ZD_SAMPLE
#define ZD_RAMP(fn) \
  {#fn, [](Call& c) { ramp(c, fn); }, 0}
      ZD_RAMP(ZIVKS_VectorSlope_8u),
      ZD_RAMP(ZIVKS_VectorSlope_16u),
      ZD_RAMP(ZIVKS_VectorSlope_16s),
      ZD_RAMP(ZIVKS_VectorSlope_32u),
      ZD_RAMP(ZIVKS_VectorSlope_32s),
      ZD_RAMP(ZIVKS_VectorSlope_32f),
      ZD_RAMP(ZIVKS_VectorSlope_64f),
#undef ZD_RAMP
  };
  out.insert(out.end(), std::begin(list), std::end(list));
}

}  // namespace zd
