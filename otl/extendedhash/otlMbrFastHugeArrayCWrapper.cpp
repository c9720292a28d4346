#include "otlMbrFastHugeArrayCWrapper.h"

#include "FastHugeArray.h"
#include "blockalloc.h"
#include "vtxstatus.h"

namespace {
using MbrArray = FastHugeArray<_vtx_otlmbr_t *>;
MbrArray *A(VTX_POTLMBR_FAST_HUGE_ARRAY_T p) { return reinterpret_cast<MbrArray *>(p); }
} // namespace

extern "C" {

VTX_API VTX_STS_T otlMbrFastHugeArrayInit(vTX_PNETCTX_T pNetCtx, VTX_POTLMBR_FAST_HUGE_ARRAY_T *ppArray) {
    if (!ppArray) return VTX_STS_NULL_ARG;
    *ppArray = nullptr;
    MbrArray *a = vtxeh::newObject<MbrArray>();
    if (!a) return vtxehNoMemory(pNetCtx, "otlMbrFastHugeArrayInit");
    *ppArray = reinterpret_cast<VTX_POTLMBR_FAST_HUGE_ARRAY_T>(a);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T otlMbrFastHugeArrayFree(VTX_POTLMBR_FAST_HUGE_ARRAY_T pArray) {
    vtxeh::deleteObject(A(pArray));
    return VTX_STS_OK;
}

VTX_API VTX_STS_T otlMbrFastHugeArrayReset(VTX_POTLMBR_FAST_HUGE_ARRAY_T pArray) {
    if (pArray) A(pArray)->reset(0);
    return VTX_STS_OK;
}

VTX_API _vtx_otlmbr_t *otlMbrFastHugeArrayGetItemAt(VTX_POTLMBR_FAST_HUGE_ARRAY_T pArray,
                                                   VTX_ULONG_T index) {
    if (!pArray || index >= A(pArray)->getSize()) return nullptr;
    return (*A(pArray))[index];
}

VTX_API VTX_STS_T otlMbrFastHugeArraySetItemAt(vTX_PNETCTX_T pNetCtx, VTX_POTLMBR_FAST_HUGE_ARRAY_T pArray,
                                               VTX_ULONG_T index, _vtx_otlmbr_t *pItem) {
    if (!pArray) return VTX_STS_NULL_ARG;
    MbrArray &a = *A(pArray);
    // Growth is by whole blocks underneath, so growing one entry at a time
    // costs an allocation only once per 32768 entries.
    if (index >= a.getSize() && !a.reallocate(static_cast<unsigned long>(index) + 1, 0))
        return vtxehNoMemory(pNetCtx, "otlMbrFastHugeArraySetItemAt");
    a[index] = pItem;
    return VTX_STS_OK;
}

VTX_API VTX_ULONG_T otlMbrFastHugeArrayGetSize(VTX_POTLMBR_FAST_HUGE_ARRAY_T pArray) {
    return pArray ? static_cast<VTX_ULONG_T>(A(pArray)->getSize()) : 0;
}

} // extern "C"
