// Dynamic time series entries of an outline: eight period-to-date members
// that live in the outline rather than in the tree.
#include "otl.h"

extern "C" {

VTX_STS_T otlCreateDTSMbrs(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    for (unsigned i = 0; i < OTL_DTS_SLOTS; ++i) {
        if (pOutline->aDTSMbrs[i]) continue;
        VTX_STS_T sts = otlAlloc(pNetCtx, sizeof(VTX_DTSMBRITEM_T), &pOutline->aDTSMbrs[i]);
        if (sts) {
            otlFreeDTSMbrs(pNetCtx, pOutline);
            return sts;
        }
        pOutline->aDTSMbrs[i]->usGen = OTL_DTS_UNBOUND;
    }
    pOutline->usDTSEnabledMbrCount = 0;
    return 0;
}

void otlFreeDTSMbrs(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline) {
    if (!pOutline) return;
    for (unsigned i = 0; i < OTL_DTS_SLOTS; ++i) {
        (void)otlFreeMem(pNetCtx, pOutline->aDTSMbrs[i]);  // close path: nothing to report to
        pOutline->aDTSMbrs[i] = nullptr;
    }
    pOutline->usDTSEnabledMbrCount = 0;
}

} // extern "C"
