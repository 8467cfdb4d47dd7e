// The 128-bit vector layer. Families write their blocks with these operations and never
// with raw intrinsics. One backend is compiled in, chosen by the build:
//   generic  plain lane loops, the readable definition of every operation
//   x86      SSE4.1 / AVX2 / AVX-512 forms that reproduce the Arm results exactly
//   neon     <arm_neon.h>
// vec<T, K> (core/simd/vec.h) holds K 128-bit blocks of lanes of T. Every backend has
// K = 1; the x86 one at levels v3 and v4 also has K = 2 and K = 4 (kWide says the
// widest), which families use only where grouping blocks cannot change a result.
// The operations combined from the primitives are in core/simd/combined.h, the same for
// every backend.
#pragma once

#if defined(ZIVKS_BACKEND_NEON)
#include "core/simd/neon/base.h"
#include "core/simd/neon/bitwise.h"
#include "core/simd/neon/compare.h"
#include "core/simd/neon/float_arith.h"
#include "core/simd/neon/int_arith.h"
#include "core/simd/neon/convert.h"
#include "core/simd/neon/minmax.h"
#include "core/simd/neon/negate.h"
#include "core/simd/neon/shuffle.h"
#elif defined(ZIVKS_BACKEND_X86)
#include "core/simd/x86/base.h"
#include "core/simd/x86/bitwise.h"
#include "core/simd/x86/compare.h"
#include "core/simd/x86/float_arith.h"
#include "core/simd/x86/int_arith.h"
#include "core/simd/x86/convert.h"
#include "core/simd/x86/minmax.h"
#include "core/simd/x86/negate.h"
#include "core/simd/x86/shuffle.h"
#elif defined(ZIVKS_BACKEND_GENERIC)
#include "core/simd/generic/base.h"
#include "core/simd/generic/bitwise.h"
#include "core/simd/generic/compare.h"
#include "core/simd/generic/float_arith.h"
#include "core/simd/generic/int_arith.h"
#include "core/simd/generic/convert.h"
#include "core/simd/generic/minmax.h"
#include "core/simd/generic/negate.h"
#include "core/simd/generic/shuffle.h"
#else
#error "no vector backend selected (ZIVKS_BACKEND_NEON, _X86 or _GENERIC)"
#endif

#include "core/simd/combined.h"
