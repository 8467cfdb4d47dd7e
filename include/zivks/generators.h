/** @file
 * zivks/generators.h: signal generators and resampling. Uniform random fills, the
 * triangle wave, up- and down-sampling by an integer factor, and linear ramps.
 *
 * Continuity between the blocks of a stream lives in caller-owned arguments: `phase`
 * of the sampling functions and of the float64 triangle forms. The random fills keep
 * nothing between calls: every fill starts the sequence anew from the record's seed. */
#ifndef ZIVKS_GENERATORS_H
#define ZIVKS_GENERATORS_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Uniform random generators ======================================================= */

/* The records of the random fills: the bounds and the seed given to Init, nothing else.
 * Nothing in a record changes after Init. */
/** The record of the uint8 fills. */
typedef struct ZIVKRandUniformState_8u { uint8_t low; /**< low bound */ uint8_t high; /**< high bound */ uint32_t seed; /**< seed of every fill */ } ZIVKRandUniformState_8u;
/** The record of the int16 fills. */
typedef struct ZIVKRandUniformState_16s { int16_t low; /**< low bound */ int16_t high; /**< high bound */ uint32_t seed; /**< seed of every fill */ } ZIVKRandUniformState_16s;
/** The record of the float fills. */
typedef struct ZIVKRandUniformState_32f { float low; /**< low bound */ float high; /**< high bound */ uint32_t seed; /**< seed of every fill */ } ZIVKRandUniformState_32f;
/** The record of the double fills. */
typedef struct ZIVKRandUniformState_64f { double low; /**< low bound */ double high; /**< high bound */ uint32_t seed; /**< seed of every fill */ } ZIVKRandUniformState_64f;

/** @name ZIVKS_RandUniformInit_<T>, ZIVKS_RandUniformRelease_<T>
 * @{ */
/** Init makes a record of the bounds low and high and the seed, from ZIVK_Malloc, and
 * stores it in *policy; Release frees it.
 *
 * Types: 8u 16s 32f 64f.
 *
 * Parameters:
 *
 *     policy    Init: where the record is stored. Release: the record, or null
 *     low, high the bounds as they are: low above high is not refused (the values then
 *               run from low down toward high), low equal to high gives that value
 *     seed      the seed of every fill
 *
 * Statuses of Init, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  policy is null
 *     ZIVK_STS_MALLOC_ERR    no memory, *policy unwritten
 *
 * Release hands policy to ZIVKS_Free without a test and returns ZIVK_STS_NO_ERR. */
ZIVKS_API ZIVKStatus ZIVKS_RandUniformInit_8u(ZIVKRandUniformState_8u** policy, uint8_t low, uint8_t high,
                                              uint32_t seed);
ZIVKS_API ZIVKStatus ZIVKS_RandUniformInit_16s(ZIVKRandUniformState_16s** policy, int16_t low, int16_t high,
                                               uint32_t seed);
ZIVKS_API ZIVKStatus ZIVKS_RandUniformInit_32f(ZIVKRandUniformState_32f** policy, float low, float high,
                                               uint32_t seed);
ZIVKS_API ZIVKStatus ZIVKS_RandUniformInit_64f(ZIVKRandUniformState_64f** policy, double low, double high,
                                               uint32_t seed);
ZIVKS_API ZIVKStatus ZIVKS_RandUniformRelease_8u(ZIVKRandUniformState_8u* policy);
ZIVKS_API ZIVKStatus ZIVKS_RandUniformRelease_16s(ZIVKRandUniformState_16s* policy);
ZIVKS_API ZIVKStatus ZIVKS_RandUniformRelease_32f(ZIVKRandUniformState_32f* policy);
ZIVKS_API ZIVKStatus ZIVKS_RandUniformRelease_64f(ZIVKRandUniformState_64f* policy);
/** @} */

/** @name ZIVKS_RandUniform_<T>
 * @{ */
/** Fills dst with len values low + (high - low) * r, r uniform in [0, 1) from the C
 * library's drand48, one draw per element in element order, after srand48(seed).
 *
 * Types: 8u 16s 32f 64f.
 *
 * Parameters:
 *
 *     dst     len values
 *     len     element count
 *     policy  a record from ZIVKS_RandUniformInit_<T> of the same type
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  policy or dst is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * How: the first len rounded down to a multiple of 8 elements (2 for 64f) are mapped in
 * blocks: r rounded to float32, low + width * r as one fused multiply-add in float32
 * (the width high - low as an int32 for 8u and 16s, in float32 for 32f), then for the
 * integers truncated toward zero and saturated to the type. The rest are mapped one by
 * one in float64: a fused multiply-add, then for the integers truncated toward zero
 * and the low 8 (16) bits stored. 64f maps every element in float64 alike.
 *
 * Note: every fill reseeds with the record's seed: two fills with one record give the
 *   same values, and a shorter fill gives a prefix of a longer one. A new sequence needs
 *   a new record with another seed.
 *
 * Note: the block and the single elements differ on purpose in precision: in a block a
 *   draw near 1 rounds to 1, so high itself can come out. One by one the draw stays below
 *   1: for the integers with low < high, a high above 0 cannot come out, but a high of 0
 *   or below comes out for a whole unit of draws, as truncation goes toward zero. For the
 *   same reason, in 16s with low < 0 < high the value 0 comes about twice as often as its
 *   neighbours.
 *
 * Note: the fills share the process's one drand48 generator: they reseed and advance it,
 *   other users of drand48 see that, and fills from several threads at once interleave
 *   their draws. Call them from one thread at a time. */
ZIVKS_API ZIVKStatus ZIVKS_RandUniform_8u(uint8_t* dst, int32_t len, ZIVKRandUniformState_8u* policy);
ZIVKS_API ZIVKStatus ZIVKS_RandUniform_16s(int16_t* dst, int32_t len, ZIVKRandUniformState_16s* policy);
ZIVKS_API ZIVKStatus ZIVKS_RandUniform_32f(float* dst, int32_t len, ZIVKRandUniformState_32f* policy);
ZIVKS_API ZIVKStatus ZIVKS_RandUniform_64f(double* dst, int32_t len, ZIVKRandUniformState_64f* policy);
/** @} */

/* ==== Triangle wave =================================================================== */

/** @name ZIVKS_Triangle_<T>
 * @{ */
/** Fills dst with len samples of a triangle wave of magnitude magn and rFreq cycles a
 * sample, starting at the phase *phase (radians, 0 at the peak). In float64, with
 * fall = pi + asym and rise = pi - asym, the wave at a phase ph in [0, 2 pi) is
 * magn * (1 - 2 ph / fall) below fall and magn * (1 + 2 (ph - 2 pi) / rise) from fall
 * on: magn at 0, -magn at fall. The complex forms put this wave in re and in im the
 * same wave taken at ph + (fall + 2 pi) / 2: 0 at phase 0, magn at rise / 2.
 *
 * Types: 16s 32f 64f 16sc 32fc 64fc (16s and 16sc take magn as int16 and rFreq, asym
 * and phase as float32; 32f and 32fc take float32, 64f and 64fc float64).
 *
 * Parameters:
 *
 *     dst     len samples
 *     len     sample count
 *     magn    the peak value, above 0 (16s, 16sc: at least 1)
 *     rFreq   cycles per sample, in [0, 0.5)
 *     asym    the shift of the trough from the middle of the period, in (-pi, pi)
 *     phase   the phase of the first sample, in [0, 2 pi). Read only, except in 64f and
 *             64fc, which store the phase of the sample after the last one
 *
 * Statuses, in order of checks (ordered compares: a NaN passes them all):
 *
 *     ZIVK_STS_NULL_PTR_ERR  dst or phase is null
 *     ZIVK_STS_TRIANGLE_ERR  *phase < 0 or *phase >= 2 pi; asym <= -pi (64f: < -pi) or
 *                            asym >= pi
 *     ZIVK_STS_SIZE_ERR      len < 1
 *     ZIVK_STS_TRIANGLE_ERR  magn out of range; rFreq < 0 or rFreq >= 0.5
 *
 * How: 16s, 32f, 16sc and 32fc compute each sample from its index i: the fractional part
 * of rFreq * i + *phase / (2 pi) (a fused multiply-add) gives ph. Blocks of 4 samples
 * (2 for 32fc), then one by one with modf; the two may differ in the last bit. The
 * integer forms truncate toward zero (blocks saturate, single samples keep the low 16
 * bits); the float32 forms round to nearest. 64f and 64fc first store the new phase,
 * then run a recurrence that adds a slope and mirrors at the peaks (rFreq below 0.14
 * for 64f, below 0.11 for 64fc; rounding accumulates over the vector), or else a phase
 * accumulator, two lanes at once.
 *
 * Note: only 64f and 64fc write *phase; to continue a wave with the other forms,
 *   advance the phase yourself.
 *
 * Note: 64f takes asym = -pi (fall = 0): the samples are then infinities or NaN.
 *
 * Note: 16sc makes the index of its blocks in float32, so from sample 16777216 on the
 *   blocks round the index. */
ZIVKS_API ZIVKStatus ZIVKS_Triangle_16s(int16_t* dst, int32_t len, int16_t magn, float rFreq, float asym,
                                        float* phase);
ZIVKS_API ZIVKStatus ZIVKS_Triangle_32f(float* dst, int32_t len, float magn, float rFreq, float asym,
                                        float* phase);
ZIVKS_API ZIVKStatus ZIVKS_Triangle_64f(double* dst, int32_t len, double magn, double rFreq, double asym,
                                        double* phase);
ZIVKS_API ZIVKStatus ZIVKS_Triangle_16sc(ZIVK16sc* dst, int32_t len, int16_t magn, float rFreq, float asym,
                                         float* phase);
ZIVKS_API ZIVKStatus ZIVKS_Triangle_32fc(ZIVK32fc* dst, int32_t len, float magn, float rFreq, float asym,
                                         float* phase);
ZIVKS_API ZIVKStatus ZIVKS_Triangle_64fc(ZIVK64fc* dst, int32_t len, double magn, double rFreq, double asym,
                                         double* phase);
/** @} */

/* ==== Up- and down-sampling =========================================================== */

/** @name ZIVKS_SampleUp_<T>
 * @{ */
/** dst[*phase + i * factor] = src[i] for every i < srcLen, every other element of the
 * srcLen * factor outputs 0; *dstLen = srcLen * factor.
 *
 * Types: 16s 32f 64f 16sc 32fc 64fc.
 *
 * Parameters:
 *
 *     src     srcLen samples
 *     srcLen  sample count
 *     dst     room for srcLen * factor samples
 *     dstLen  where the output count is stored
 *     factor  outputs a sample, 1 or more
 *     phase   the place of each sample in its group of factor outputs, in [0, factor).
 *             Read only: the output ends on a group boundary, so the next block of a
 *             stream takes the same phase
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR       src, dst, dstLen or phase is null
 *     ZIVK_STS_SIZE_ERR           srcLen < 1
 *     ZIVK_STS_SAMPLE_FACTOR_ERR  factor < 1
 *     ZIVK_STS_SAMPLE_PHASE_ERR   *phase < 0 or *phase >= factor
 *     ZIVK_STS_SAMPLE_FACTOR_ERR  2147483647 / srcLen <= factor
 *
 * Note: the size test is one step too strict: it refuses the pair whose product just
 *   fits (srcLen 2 with factor 1073741823), and factor 1 from srcLen 1073741824 on. */
ZIVKS_API ZIVKStatus ZIVKS_SampleUp_16s(const int16_t* src, int32_t srcLen, int16_t* dst, int32_t* dstLen,
                                        int32_t factor, int32_t* phase);
ZIVKS_API ZIVKStatus ZIVKS_SampleUp_32f(const float* src, int32_t srcLen, float* dst, int32_t* dstLen,
                                        int32_t factor, int32_t* phase);
ZIVKS_API ZIVKStatus ZIVKS_SampleUp_64f(const double* src, int32_t srcLen, double* dst, int32_t* dstLen,
                                        int32_t factor, int32_t* phase);
ZIVKS_API ZIVKStatus ZIVKS_SampleUp_16sc(const ZIVK16sc* src, int32_t srcLen, ZIVK16sc* dst, int32_t* dstLen,
                                         int32_t factor, int32_t* phase);
ZIVKS_API ZIVKStatus ZIVKS_SampleUp_32fc(const ZIVK32fc* src, int32_t srcLen, ZIVK32fc* dst, int32_t* dstLen,
                                         int32_t factor, int32_t* phase);
ZIVKS_API ZIVKStatus ZIVKS_SampleUp_64fc(const ZIVK64fc* src, int32_t srcLen, ZIVK64fc* dst, int32_t* dstLen,
                                         int32_t factor, int32_t* phase);
/** @} */

/** @name ZIVKS_SampleDown_<T>
 * @{ */
/** dst[k] = src[*phase + k * factor] for every such index below srcLen (n of them, 0 when
 * srcLen <= *phase); *dstLen = n; then *phase = (*phase + factor - srcLen % factor) %
 * factor, the place in the next block that continues the stream.
 *
 * Types: 16s 32f 64f 16sc 32fc 64fc.
 *
 * Parameters:
 *
 *     src     srcLen samples
 *     srcLen  sample count
 *     dst     room for (srcLen - 1 - *phase) / factor + 1 samples
 *     dstLen  where the output count is stored
 *     factor  one sample kept out of factor, 1 or more
 *     phase   in and out: the index of the first sample kept, in [0, factor)
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR       src, dst, dstLen or phase is null
 *     ZIVK_STS_SIZE_ERR           srcLen < 1
 *     ZIVK_STS_SAMPLE_FACTOR_ERR  factor < 1
 *     ZIVK_STS_SAMPLE_PHASE_ERR   *phase < 0 or *phase >= factor
 *
 * Note: to cut a stream into blocks, pass the same phase variable to every call; a block
 *   that keeps no sample (*dstLen 0) still moves it. */
ZIVKS_API ZIVKStatus ZIVKS_SampleDown_16s(const int16_t* src, int32_t srcLen, int16_t* dst, int32_t* dstLen,
                                          int32_t factor, int32_t* phase);
ZIVKS_API ZIVKStatus ZIVKS_SampleDown_32f(const float* src, int32_t srcLen, float* dst, int32_t* dstLen,
                                          int32_t factor, int32_t* phase);
ZIVKS_API ZIVKStatus ZIVKS_SampleDown_64f(const double* src, int32_t srcLen, double* dst, int32_t* dstLen,
                                          int32_t factor, int32_t* phase);
ZIVKS_API ZIVKStatus ZIVKS_SampleDown_16sc(const ZIVK16sc* src, int32_t srcLen, ZIVK16sc* dst, int32_t* dstLen,
                                           int32_t factor, int32_t* phase);
ZIVKS_API ZIVKStatus ZIVKS_SampleDown_32fc(const ZIVK32fc* src, int32_t srcLen, ZIVK32fc* dst, int32_t* dstLen,
                                           int32_t factor, int32_t* phase);
ZIVKS_API ZIVKStatus ZIVKS_SampleDown_64fc(const ZIVK64fc* src, int32_t srcLen, ZIVK64fc* dst, int32_t* dstLen,
                                           int32_t factor, int32_t* phase);
/** @} */

/* ==== Vector slope ==================================================================== */

/** @name ZIVKS_VectorSlope_<T>
 * @{ */
/** Fills dst with the ramp offset + slope * i, i = 0 .. len - 1, rounded to nearest (ties
 * to even) and saturated to the type; a NaN gives 0.
 *
 * Types: 8u 16u 16s 32f (offset and slope float32), 32u 32s 64f (float64).
 *
 * Parameters:
 *
 *     dst     len elements; 64f: room for len rounded up to a multiple of 4
 *     len     element count
 *     offset  the first value
 *     slope   the step from one element to the next
 *
 * Statuses, in order of checks:
 *
 *     ZIVK_STS_NULL_PTR_ERR  dst is null
 *     ZIVK_STS_SIZE_ERR      len < 1
 *
 * How: the ramp is built by adding the step again and again, not by multiplying each
 * index, in blocks (16 elements for 8u, 8 for 16u, 16s and 32f, 4 for 32u, 32s and 64f),
 * then one by one from a value computed anew from offset and slope. The blocks work in
 * float16 for 8u, float32 for 16u, 16s and 32f, float64 for the rest; the elements one
 * by one in float32 (float64 for 32u, 32s and 64f). Rounding accumulates in each.
 *
 * Note: the float16 blocks of 8u have 11 bits of precision: from 128 to 256 a step below
 *   0.0625 no longer moves the value, so a slow ramp stalls in the blocks and jumps back
 *   onto the ramp where the last elements are made one by one.
 *
 * Note: 64f writes the ramp up to len rounded up to a multiple of 4: for len of 2, 3, 6,
 *   7, 10, 11, ... it stores one or two elements past dst[len - 1]. Give it that room.
 *
 * Note: the elements made one by one round a half away from zero by adding 0.5 in
 *   float64, so in 32u and 32s a value within 2^-54 below a half (0.49999999999999994)
 *   rounds up there, where a block rounds it down. */
ZIVKS_API ZIVKStatus ZIVKS_VectorSlope_8u(uint8_t* dst, int32_t len, float offset, float slope);
ZIVKS_API ZIVKStatus ZIVKS_VectorSlope_16u(uint16_t* dst, int32_t len, float offset, float slope);
ZIVKS_API ZIVKStatus ZIVKS_VectorSlope_16s(int16_t* dst, int32_t len, float offset, float slope);
ZIVKS_API ZIVKStatus ZIVKS_VectorSlope_32u(uint32_t* dst, int32_t len, double offset, double slope);
ZIVKS_API ZIVKStatus ZIVKS_VectorSlope_32s(int32_t* dst, int32_t len, double offset, double slope);
ZIVKS_API ZIVKStatus ZIVKS_VectorSlope_32f(float* dst, int32_t len, float offset, float slope);
ZIVKS_API ZIVKStatus ZIVKS_VectorSlope_64f(double* dst, int32_t len, double offset, double slope);
/** @} */

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_GENERATORS_H */
