#include "mbrId2pItemMapWrapper.h"

#include "FastHugeArray.h"
#include "blockalloc.h"
#include "otlapil.h"
#include "vtxhostsvc.h"
#include "vtxstatus.h"

namespace {
using MbrArray = FastHugeArray<VTX_HMEMBER_T>;
MbrArray *&Slot(VTX_PMEMNUM_2_PITEM_MAP_T *map, VTX_ULONG_T dimId) {
    return reinterpret_cast<MbrArray *&>(map[dimId]);
}
} // namespace

extern "C" {

VTX_API VTX_STS_T memNum2pItemMapInit(vTX_PNETCTX_T pNetCtx, VTX_PMEMNUM_2_PITEM_MAP_T **ppMap) {
    if (!ppMap) return VTX_STS_NULL_ARG;
    *ppMap = nullptr;
    void *p = nullptr;
    VTX_STS_T sts = otlAlloc(pNetCtx, VTX_MEMNUM_MAP_DIMS * sizeof(VTX_PMEMNUM_2_PITEM_MAP_T), &p);
    if (sts != VTX_STS_OK) return sts;
    // The context's blocks come zeroed; cleared again so as not to depend on it.
    VtxSdMemClear(p, VTX_MEMNUM_MAP_DIMS * sizeof(VTX_PMEMNUM_2_PITEM_MAP_T));
    *ppMap = static_cast<VTX_PMEMNUM_2_PITEM_MAP_T *>(p);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T memNum2pItemMapFree(vTX_PNETCTX_T pNetCtx, VTX_PMEMNUM_2_PITEM_MAP_T *pMap) {
    if (!pMap) return VTX_STS_OK;
    for (VTX_ULONG_T d = 0; d < VTX_MEMNUM_MAP_DIMS; ++d) {
        vtxeh::deleteObject(Slot(pMap, d));
        Slot(pMap, d) = nullptr;
    }
    return otlFreeMem(pNetCtx, pMap);
}

VTX_API VTX_STS_T memNum2pItemMapSetAt(vTX_PNETCTX_T pNetCtx, VTX_PMEMNUM_2_PITEM_MAP_T *pMap,
                                       VTX_ULONG_T dimId, VTX_ULONG_T mbrId, VTX_HMEMBER_T pItem) {
    if (!pMap) return VTX_STS_NULL_ARG;
    if (dimId >= VTX_MEMNUM_MAP_DIMS) return VTX_STS_NO_DIM_ID;
    MbrArray *&a = Slot(pMap, dimId);
    if (!a) {
        a = vtxeh::newObject<MbrArray>();
        if (!a) return vtxehNoMemory(pNetCtx, "memNum2pItemMapAddItem");
    }
    if (mbrId >= a->getSize() && !a->reallocate(static_cast<unsigned long>(mbrId) + 1, 0))
        return vtxehNoMemory(pNetCtx, "memNum2pItemMapAddItem");
    (*a)[mbrId] = pItem;
    return VTX_STS_OK;
}

VTX_API VTX_STS_T memNum2pItemMapResetAt(VTX_PMEMNUM_2_PITEM_MAP_T *pMap, VTX_ULONG_T dimId,
                                         VTX_ULONG_T mbrId) {
    if (!pMap || dimId >= VTX_MEMNUM_MAP_DIMS) return VTX_STS_OK;
    MbrArray *a = Slot(pMap, dimId);
    if (a && mbrId < a->getSize()) (*a)[mbrId] = nullptr;
    return VTX_STS_OK;
}

VTX_API VTX_HMEMBER_T memNum2pItemMapGetAt(VTX_PMEMNUM_2_PITEM_MAP_T *pMap, VTX_ULONG_T mbrId,
                                           VTX_ULONG_T dimId) {
    if (!pMap || dimId >= VTX_MEMNUM_MAP_DIMS) return nullptr;
    MbrArray *a = Slot(pMap, dimId);
    if (!a || mbrId >= a->getSize()) return nullptr;
    return (*a)[mbrId];
}

VTX_API VTX_STS_T memNum2pItemMapAddItem(vTX_PNETCTX_T pNetCtx, _vtx_otl_t *pOutline,
                                         _vtx_otlmbr_t *pItem) {
    if (!pOutline || !pItem || !pOutline->ppMemNum2pItemMap || !pOutline->dimIds)
        return VTX_STS_NULL_ARG;
    VTX_EH_ASSERT(pItem->ulDimno >= 1 && pItem->mbrId >= 0);
    VTX_ULONG_T dimId = pOutline->dimIds[pItem->ulDimno - 1];
    return memNum2pItemMapSetAt(pNetCtx, pOutline->ppMemNum2pItemMap, dimId,
                                static_cast<VTX_ULONG_T>(pItem->mbrId), pItem);
}

VTX_API VTX_STS_T memNum2pItemMapResetItem(vTX_PNETCTX_T, _vtx_otl_t *pOutline, VTX_ULONG_T dimId,
                                           VTX_ULONG_T mbrId) {
    if (!pOutline) return VTX_STS_OK;
    return memNum2pItemMapResetAt(pOutline->ppMemNum2pItemMap, dimId, mbrId);
}

VTX_API _vtx_otlmbr_t *memNum2pItemMapGetPItem(_vtx_otl_t *pOutline, VTX_ULONG_T ulMemno,
                                               VTX_ULONG_T dimId) {
    if (!pOutline) return nullptr;
    return static_cast<_vtx_otlmbr_t *>(memNum2pItemMapGetAt(pOutline->ppMemNum2pItemMap, ulMemno, dimId));
}

} // extern "C"
