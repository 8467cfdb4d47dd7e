/** @file
 * zivks: exact vector primitives for signal processing and column batches.
 *
 * The header an application includes: it brings in one header per subsystem. The
 * conventions every function keeps (names, argument order, checks, statuses, the
 * scale rule) are told in zivks/common.h; each family's result, statuses and
 * deliberate quirks (the Note: lines) in its subsystem's header.
 *
 *     zivks/common.h      statuses (from zivk_core.h), selectors, complex records
 *     zivks/memory.h      typed allocation, free, version and status text
 *     zivks/movement.h    Copy, Move, Set, Zero, Flip, SwapBytes, complex parts, Conj
 *     zivks/logic.h       And, Or, Xor, Not and their constant forms; shifts
 *     zivks/arithmetic.h  Add, Sub and their constant forms, plain, saturating and
 *                         scaled; Abs
 *     zivks/convert.h     Convert
 *     zivks/statistics.h  extremes and their positions, MaxEvery and MinEvery,
 *                         CountInRange, FindNearest, ReplaceNAN, ZeroCrossing
 *     zivks/sort.h        SortAscend/Descend, SortIndex, SortRadix, SortRadixIndex, TopK
 *     zivks/columnar.h    row hashes, CombineHash, AggMax and AggMin of column batches
 *     zivks/filters.h     the causal median filter with its handle and delay lines
 *     zivks/generators.h  uniform random fills, the triangle wave, up- and down-sampling,
 *                         linear ramps
 *
 * Every header compiles as C99 and as C++ (the declarations are extern "C"). */
#ifndef ZIVKS_H
#define ZIVKS_H

#include "zivks/common.h"
#include "zivks/memory.h"
#include "zivks/movement.h"
#include "zivks/logic.h"
#include "zivks/arithmetic.h"
#include "zivks/convert.h"
#include "zivks/statistics.h"
#include "zivks/sort.h"
#include "zivks/columnar.h"
#include "zivks/filters.h"
#include "zivks/generators.h"

#endif /* ZIVKS_H */
