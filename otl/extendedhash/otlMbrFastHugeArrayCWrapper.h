/*
 * otlMbrFastHugeArrayCWrapper.h -- an array of member record pointers.
 *
 * Blocks of 262144 bytes (32768 pointers); growing never moves an entry.
 * Entries are member handles (the outline's member records); the array does
 * not own them.
 */
#ifndef VTX_EH_OTLMBRFASTHUGEARRAYCWRAPPER_H
#define VTX_EH_OTLMBRFASTHUGEARRAYCWRAPPER_H

#include "vtxtypes.h"
#include "vtxnetctx.h"
#include "otlmem.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Opaque handle; untyped, like the outline fields that hold it. */
typedef void *VTX_POTLMBR_FAST_HUGE_ARRAY_T;
struct _vtx_otlmbr_t;

/* Creates an empty array. */
VTX_NODISCARD VTX_API VTX_STS_T otlMbrFastHugeArrayInit(vTX_PNETCTX_T pNetCtx,
                                                        VTX_POTLMBR_FAST_HUGE_ARRAY_T *ppArray);
VTX_API VTX_STS_T otlMbrFastHugeArrayFree(VTX_POTLMBR_FAST_HUGE_ARRAY_T pArray);
/* Sets every entry to null; the size stays. */
VTX_API VTX_STS_T otlMbrFastHugeArrayReset(VTX_POTLMBR_FAST_HUGE_ARRAY_T pArray);
/* The entry, or null when index is at or beyond the size. */
VTX_API struct _vtx_otlmbr_t *otlMbrFastHugeArrayGetItemAt(VTX_POTLMBR_FAST_HUGE_ARRAY_T pArray,
                                                   VTX_ULONG_T index);
/* Stores pItem, first growing to exactly index + 1 entries (new ones null)
 * when needed.  A refused growth keeps every entry. */
VTX_NODISCARD VTX_API VTX_STS_T otlMbrFastHugeArraySetItemAt(vTX_PNETCTX_T pNetCtx,
                                                             VTX_POTLMBR_FAST_HUGE_ARRAY_T pArray,
                                                             VTX_ULONG_T index,
                                                             struct _vtx_otlmbr_t *pItem);
/* Entries the array holds (its size). */
VTX_API VTX_ULONG_T otlMbrFastHugeArrayGetSize(VTX_POTLMBR_FAST_HUGE_ARRAY_T pArray);

#ifdef __cplusplus
}
#endif
#endif
