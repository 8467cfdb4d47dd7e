/* zivks/sort.h: sorting and selection. Comparison sorts in place, index sorts in
 * place, radix sorts with a work buffer, stable radix index sorts over strided keys,
 * and the k largest values of a strided column.
 *
 * The handles of this header (`policy`) are plain blocks of bytes made by the family's
 * Init through ZIVKS_Malloc_8u and freed by its Release. They carry no header: a sort
 * cannot tell how a handle was made, so the caller keeps each handle with the length
 * and element type it was made for. */
#ifndef ZIVKS_SORT_H
#define ZIVKS_SORT_H

#include "common.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ==== Comparison sorts ================================================================ */

/* ==== Index sorts ===================================================================== */

/* ==== Radix sorts ===================================================================== */

/* ==== Radix index sorts =============================================================== */

/* ==== TopK ============================================================================ */

#ifdef __cplusplus
}
#endif

#endif /* ZIVKS_SORT_H */
