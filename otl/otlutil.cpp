// Allocation through the caller's context, text comparison in the caller's
// locale, the reporting rules and the call frame shared by every exported
// call.
#include "otl.h"

#include <cstring>

extern "C" {

VTX_STS_T otlAllocEx(vTX_PNETCTX_T pNetCtx, size_t size, void **ppData, const char *sourceName,
                     int sourceLine) {
    if (!ppData) return VTX_STS_NULL_ARG;
    *ppData = nullptr;
    if (!pNetCtx) return VTX_STS_NO_MEMORY;
    VTX_STS_T sts;
    if (pNetCtx->bUseASDAlloc == 1) {
        sts = VtxSdMemAllocUsingPolicy(pNetCtx->pSdCtx, 0, size, ppData, 1, sourceName, sourceLine);
    } else if (pNetCtx->AllocFunc) {
        sts = pNetCtx->AllocFunc(size, ppData);
    } else {
        return VTX_STS_NO_MEMORY;
    }
    if (sts == 0 && !*ppData) sts = VTX_STS_NO_MEMORY;
    if (sts != 0) {
        *ppData = nullptr;
        return sts;
    }
    // The context's allocators promise nothing about the contents; every
    // record of the library starts zeroed.
    std::memset(*ppData, 0, size);
    return 0;
}

VTX_STS_T otlReallocEx(vTX_PNETCTX_T pNetCtx, void *pOld, size_t size, void **ppNew) {
    if (!ppNew) return VTX_STS_NULL_ARG;
    *ppNew = nullptr;
    if (!pNetCtx) return VTX_STS_NO_MEMORY;
    VTX_STS_T sts;
    if (pNetCtx->bUseASDRealloc == 1 && pNetCtx->SdReallocFunc) {
        sts = pNetCtx->SdReallocFunc(pNetCtx->pSdCtx, pOld, size, ppNew);
    } else if (pNetCtx->bUseASDRealloc == 1) {
        sts = VtxSdMemRealloc(pNetCtx->pSdCtx, pOld, size, ppNew);
    } else if (pNetCtx->ReallocFunc) {
        sts = pNetCtx->ReallocFunc(pOld, size, ppNew);
    } else {
        return VTX_STS_NO_MEMORY;
    }
    if (sts == 0 && !*ppNew) sts = VTX_STS_NO_MEMORY;
    if (sts != 0) *ppNew = nullptr;
    return sts;
}

VTX_STS_T otlFreeMem(vTX_PNETCTX_T pNetCtx, void *pData) {
    if (!pData || !pNetCtx) return 0;
    if (pNetCtx->bUseASDFree == 1) {
        if (pNetCtx->SdFreeFunc) return pNetCtx->SdFreeFunc(pNetCtx->pSdCtx, pData);
        return VtxSdMemFree(pNetCtx->pSdCtx, pData);
    }
    if (pNetCtx->FreeFunc) return pNetCtx->FreeFunc(pData);
    return 0;
}

VTX_STS_T otlStrdup(vTX_PNETCTX_T pNetCtx, const char *pString, char **ppData) {
    if (!ppData) return VTX_STS_NULL_ARG;
    *ppData = nullptr;
    if (!pString || !*pString) return 0;
    size_t n = std::strlen(pString) + 1;
    char *p = nullptr;
    VTX_STS_T sts = otlAlloc(pNetCtx, n, &p);
    if (sts) return sts;
    std::memcpy(p, pString, n);
    *ppData = p;
    return 0;
}

int otlStrcmp(vTX_PNETCTX_T, const char *a, const char *b) {
    return std::strcmp(a ? a : "", b ? b : "");
}

int otlStricmp(vTX_PNETCTX_T pNetCtx, const char *a, const char *b) {
    return adGlobStrCompareIgnoreCase(pNetCtx ? pNetCtx->pLocale : nullptr, a ? a : "", b ? b : "");
}

int otlStricoll(vTX_PNETCTX_T pNetCtx, const char *a, const char *b) {
    return adGlobStrCollateIgnoreCase(pNetCtx ? pNetCtx->pLocale : nullptr, a ? a : "", b ? b : "");
}

VTX_STS_T otlReport(vTX_PNETCTX_T pNetCtx, VTX_STS_T code, const void *arg1, VTX_USHORT_T type1,
                    const void *arg2, VTX_USHORT_T type2) {
    if (code == 0 || code == VTX_STS_SILENT) return code;
    if (pNetCtx && pNetCtx->bSendMsgNet)
        return adNetLocalMessage(pNetCtx, code, VTX_MSG_ERROR, arg1, type1, arg2, type2);
    return code;
}

VTX_STS_T otlReportEdit(VTX_POTL_T pOutline, VTX_STS_T code, const void *arg1, VTX_USHORT_T type1,
                        const void *arg2, VTX_USHORT_T type2) {
    if (code == 0 || code == VTX_STS_SILENT) return code;
    vTX_PNETCTX_T pNetCtx = pOutline ? pOutline->pNetCtx : nullptr;
    if (pNetCtx && (pNetCtx->bSendMsgNet || pOutline->ucCallerType == 2))
        return adNetLocalMessage(pNetCtx, code, VTX_MSG_ERROR, arg1, type1, arg2, type2);
    return code;
}

VTX_STS_T otlReportClash(VTX_POTL_T pOutline, VTX_STS_T code, const void *arg1, VTX_USHORT_T type1,
                         const void *arg2, VTX_USHORT_T type2) {
    if (pOutline && pOutline->fBuildingDim) return code;
    return otlReportEdit(pOutline, code, arg1, type1, arg2, type2);
}

VTX_STS_T otlNoMemory(vTX_PNETCTX_T pNetCtx, const char *pszFunction) {
    return otlReport(pNetCtx, VTX_STS_NO_MEMORY, pszFunction, VTX_MSGARG_STR, nullptr, VTX_MSGARG_NONE);
}

} // extern "C"

namespace otl {

CallFrame::CallFrame(VTX_HOUTLINE_T hOutline, unsigned kind, VTX_POUTERROR_T pMbrError) noexcept
    : pOutline_(static_cast<VTX_POTL_T>(hOutline)),
      pNetCtx_(pOutline_ ? pOutline_->pNetCtx : nullptr),
      kind_(kind) {
    if (pMbrError) std::memset(pMbrError, 0, sizeof *pMbrError);
}

VTX_STS_T CallFrame::enter(std::initializer_list<VTX_HMEMBER_T> members) noexcept {
    if (!pOutline_) return VTX_STS_NULL_ARG;
    for (VTX_HMEMBER_T h : members) {
        if (h && OTL_IS_HIDDEN(static_cast<VTX_POTLMBR_T>(h))) return VTX_STS_SILENT;
    }
    if (pOutline_->fOpenQuery && !(kind_ & kQueryOk)) return fail(VTX_STS_WRONG_MODE);
    if ((kind_ & kEdit) && !(kind_ & kNoProhibit) && pOutline_->bEditingProhibited)
        return fail(VTX_STS_EDIT_PROHIBITED);
    return 0;
}

VTX_STS_T CallFrame::fail(VTX_STS_T code, const void *arg1, VTX_USHORT_T type1, const void *arg2,
                          VTX_USHORT_T type2) const noexcept {
    if (kind_ & kMemberEdit) return otlReportEdit(pOutline_, code, arg1, type1, arg2, type2);
    return otlReport(pNetCtx_, code, arg1, type1, arg2, type2);
}

void CallFrame::edited(VTX_UCHAR_T stateBits) const noexcept {
    if (!pOutline_) return;
    pOutline_->fVerified = 0;
    pOutline_->ucStateFlag |= stateBits;
}

} // namespace otl
