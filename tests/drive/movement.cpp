// Copy, fill, reverse, byte swap and the complex parts: table lines, but for Copy and
// Move, which also run with both arrays inside one block.
#include <stdlib.h>

#include "drive.h"

namespace zd {

namespace {

// Half the calls as a table line; the others put src and dst in one array: Move at any
// distance either way (overlapping or just apart), Copy only exactly on itself. Either
// way dst must end up holding what src held.
template <class T>
void copy_within(Call& c, ZIVKStatus (*fn)(const T*, T*, int32_t), bool any_overlap) {
  Input& in = c.in();
  if (in.one_in(2)) {
    detail::call_with_roles(c, fn, "src, dst, len");
    return;
  }
  const int32_t len = c.length();
  const int64_t n = len > 0 ? len : 0;
  const int64_t shift = any_overlap ? int64_t(in.below(uint32_t(2 * n + 3))) - (n + 1) : 0;
  T* base = c.array<T>(n + llabs(shift), Call::kWritten, false);
  const T* src = base + (shift < 0 ? -shift : 0);
  T* dst = base + (shift > 0 ? shift : 0);
  const std::vector<uint8_t> before(reinterpret_cast<const uint8_t*>(src),
                                    reinterpret_cast<const uint8_t*>(src + n));
  const ZIVKStatus s = fn(src, dst, len);
  c.finish(s);
  if (s == ZIVK_STS_NO_ERR && memcmp(dst, before.data(), before.size()))
    fail(c.entry(), "dst is not what src held, src and dst " + std::to_string(shift) + " elements apart");
}

}  // namespace

#define ZD_ALIASED(fn, any_overlap) Entry{#fn, [](Call& c) { copy_within(c, &fn, any_overlap); }, 0}

void add_movement(std::vector<Entry>& out) {
  const Entry list[] = {
      ZD_ALIASED(ZIVKS_Copy_8u, false),
      ZD_ALIASED(ZIVKS_Copy_16s, false),
      ZD_ALIASED(ZIVKS_Copy_32s, false),
      ZD_ALIASED(ZIVKS_Copy_32f, false),
      ZD_ALIASED(ZIVKS_Copy_64s, false),
      ZD_ALIASED(ZIVKS_Copy_64f, false),
      ZD_ALIASED(ZIVKS_Copy_16sc, false),
      ZD_ALIASED(ZIVKS_Copy_32sc, false),
      ZD_ALIASED(ZIVKS_Copy_32fc, false),
      ZD_ALIASED(ZIVKS_Copy_64sc, false),
      ZD_ALIASED(ZIVKS_Copy_64fc, false),
      ZD_ALIASED(ZIVKS_Move_8u, true),
      ZD_ALIASED(ZIVKS_Move_16s, true),
      ZD_ALIASED(ZIVKS_Move_32s, true),
      ZD_ALIASED(ZIVKS_Move_32f, true),
      ZD_ALIASED(ZIVKS_Move_64s, true),
      ZD_ALIASED(ZIVKS_Move_64f, true),
      ZD_ALIASED(ZIVKS_Move_16sc, true),
      ZD_ALIASED(ZIVKS_Move_32sc, true),
      ZD_ALIASED(ZIVKS_Move_32fc, true),
      ZD_ALIASED(ZIVKS_Move_64sc, true),
      ZD_ALIASED(ZIVKS_Move_64fc, true),
      ZD_CALL(ZIVKS_Set_8u, val, dst, len),
      ZD_CALL(ZIVKS_Set_16s, val, dst, len),
      ZD_CALL(ZIVKS_Set_32s, val, dst, len),
      ZD_CALL(ZIVKS_Set_32f, val, dst, len),
      ZD_CALL(ZIVKS_Set_64s, val, dst, len),
      ZD_CALL(ZIVKS_Set_64f, val, dst, len),
      ZD_CALL(ZIVKS_Set_16sc, val, dst, len),
      ZD_CALL(ZIVKS_Set_32sc, val, dst, len),
      ZD_CALL(ZIVKS_Set_32fc, val, dst, len),
      ZD_CALL(ZIVKS_Set_64sc, val, dst, len),
      ZD_CALL(ZIVKS_Set_64fc, val, dst, len),
      ZD_CALL(ZIVKS_Zero_8u, dst, len),
      ZD_CALL(ZIVKS_Zero_16s, dst, len),
      ZD_CALL(ZIVKS_Zero_32s, dst, len),
      ZD_CALL(ZIVKS_Zero_32f, dst, len),
      ZD_CALL(ZIVKS_Zero_64s, dst, len),
      ZD_CALL(ZIVKS_Zero_64f, dst, len),
      ZD_CALL(ZIVKS_Zero_16sc, dst, len),
      ZD_CALL(ZIVKS_Zero_32sc, dst, len),
      ZD_CALL(ZIVKS_Zero_32fc, dst, len),
      ZD_CALL(ZIVKS_Zero_64sc, dst, len),
      ZD_CALL(ZIVKS_Zero_64fc, dst, len),
      ZD_CALL(ZIVKS_Flip_8u, src, dst, len),
      ZD_CALL(ZIVKS_Flip_16u, src, dst, len),
      ZD_CALL(ZIVKS_Flip_32f, src, dst, len),
      ZD_CALL(ZIVKS_Flip_64f, src, dst, len),
      ZD_CALL(ZIVKS_Flip_32fc, src, dst, len),
      ZD_CALL(ZIVKS_Flip_64fc, src, dst, len),
      ZD_CALL(ZIVKS_Flip_8u_I, srcDst, len),
      ZD_CALL(ZIVKS_Flip_16u_I, srcDst, len),
      ZD_CALL(ZIVKS_Flip_32f_I, srcDst, len),
      ZD_CALL(ZIVKS_Flip_64f_I, srcDst, len),
      ZD_CALL(ZIVKS_Flip_32fc_I, srcDst, len),
      ZD_CALL(ZIVKS_Flip_64fc_I, srcDst, len),
      ZD_CALL(ZIVKS_SwapBytes_16u, src, dst, len),
      ZD_CALL(ZIVKS_SwapBytes_24u, src*3, dst*3, len),
      ZD_CALL(ZIVKS_SwapBytes_32u, src, dst, len),
      ZD_CALL(ZIVKS_SwapBytes_64u, src, dst, len),
      ZD_CALL(ZIVKS_SwapBytes_16u_I, srcDst, len),
      ZD_CALL(ZIVKS_SwapBytes_24u_I, srcDst*3, len),
      ZD_CALL(ZIVKS_SwapBytes_32u_I, srcDst, len),
      ZD_CALL(ZIVKS_SwapBytes_64u_I, srcDst, len),
      ZD_CALL(ZIVKS_Real_16sc, src, dst, len),
      ZD_CALL(ZIVKS_Real_32fc, src, dst, len),
      ZD_CALL(ZIVKS_Real_64fc, src, dst, len),
      ZD_CALL(ZIVKS_Imag_16sc, src, dst, len),
      ZD_CALL(ZIVKS_Imag_32fc, src, dst, len),
      ZD_CALL(ZIVKS_Imag_64fc, src, dst, len),
      ZD_CALL(ZIVKS_CplxToReal_16sc, src, dstRe, dstIm, len),
      ZD_CALL(ZIVKS_CplxToReal_32fc, src, dstRe, dstIm, len),
      ZD_CALL(ZIVKS_CplxToReal_64fc, src, dstRe, dstIm, len),
      ZD_CALL(ZIVKS_RealToCplx_16s, srcRe, srcIm, dst, len),
      ZD_CALL(ZIVKS_RealToCplx_32f, srcRe, srcIm, dst, len),
      ZD_CALL(ZIVKS_RealToCplx_64f, srcRe, srcIm, dst, len),
      ZD_CALL(ZIVKS_Conj_16sc, src, dst, len),
      ZD_CALL(ZIVKS_Conj_32fc, src, dst, len),
      ZD_CALL(ZIVKS_Conj_64fc, src, dst, len),
      ZD_CALL(ZIVKS_Conj_16sc_I, srcDst, len),
      ZD_CALL(ZIVKS_Conj_32fc_I, srcDst, len),
      ZD_CALL(ZIVKS_Conj_64fc_I, srcDst, len),
  };
  out.insert(out.end(), std::begin(list), std::end(list));
}

}  // namespace zd
