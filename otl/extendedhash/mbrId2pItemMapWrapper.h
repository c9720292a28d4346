/*
 * mbrId2pItemMapWrapper.h -- from (dimension id, member id) to member record.
 *
 * The map is an array of 256 entries, one per dimension id, each a block
 * array of member pointers indexed by mbrId and created on first use.  Index
 * entries name members by number; this map turns a number back into the
 * record.
 */
#ifndef VTX_EH_MBRID2PITEMMAPWRAPPER_H
#define VTX_EH_MBRID2PITEMMAPWRAPPER_H

#include "vtxtypes.h"
#include "vtxnetctx.h"
#include "otlmem.h"

#ifdef __cplusplus
extern "C" {
#endif

#define VTX_MEMNUM_MAP_DIMS 256

/* One dimension's array; the outline holds the 256 of them as void **. */
typedef void *VTX_PMEMNUM_2_PITEM_MAP_T;
struct _vtx_otl_t;
struct _vtx_otlmbr_t;

/* Allocates the 256 entries, all null, through the context. */
VTX_NODISCARD VTX_API VTX_STS_T memNum2pItemMapInit(vTX_PNETCTX_T pNetCtx,
                                                    VTX_PMEMNUM_2_PITEM_MAP_T **ppMap);
/* Frees every array and then the map; null is accepted. */
VTX_API VTX_STS_T memNum2pItemMapFree(vTX_PNETCTX_T pNetCtx, VTX_PMEMNUM_2_PITEM_MAP_T *pMap);

/* The outline's map (ppMemNum2pItemMap): the member is stored under the
 * dimension id of its ulDimno (dimIds) and its mbrId. */
VTX_NODISCARD VTX_API VTX_STS_T memNum2pItemMapAddItem(vTX_PNETCTX_T pNetCtx, struct _vtx_otl_t *pOutline,
                                                       struct _vtx_otlmbr_t *pItem);
/* Clears the entry; a missing map, array or index beyond it is ignored. */
VTX_API VTX_STS_T memNum2pItemMapResetItem(vTX_PNETCTX_T pNetCtx, struct _vtx_otl_t *pOutline,
                                           VTX_ULONG_T dimId, VTX_ULONG_T mbrId);
/* The member of (dimId, ulMemno as mbrId), or null: no map, no array for
 * the dimension, an index beyond it, or an empty entry. */
VTX_API struct _vtx_otlmbr_t *memNum2pItemMapGetPItem(struct _vtx_otl_t *pOutline,
                                                     VTX_ULONG_T ulMemno, VTX_ULONG_T dimId);

/* The same on a bare map.  Stores pItem under (dimId, mbrId), creating the dimension's array and
 * growing it to mbrId + 1 entries (new ones null) as needed.  A dimension id
 * of 256 or more fails with 1060190; a refused growth keeps every entry and
 * fails with 1060358 naming "memNum2pItemMapAddItem". */
VTX_NODISCARD VTX_API VTX_STS_T memNum2pItemMapSetAt(vTX_PNETCTX_T pNetCtx,
                                                     VTX_PMEMNUM_2_PITEM_MAP_T *pMap,
                                                     VTX_ULONG_T dimId, VTX_ULONG_T mbrId,
                                                     VTX_HMEMBER_T pItem);
/* Sets the entry to null; a missing array or an index beyond it is ignored. */
VTX_API VTX_STS_T memNum2pItemMapResetAt(VTX_PMEMNUM_2_PITEM_MAP_T *pMap, VTX_ULONG_T dimId,
                                         VTX_ULONG_T mbrId);
/* The entry, or null for a null map, a missing array or an index beyond it. */
VTX_API VTX_HMEMBER_T memNum2pItemMapGetAt(VTX_PMEMNUM_2_PITEM_MAP_T *pMap, VTX_ULONG_T mbrId,
                                           VTX_ULONG_T dimId);

#ifdef __cplusplus
}
#endif
#endif
