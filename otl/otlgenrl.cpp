// The read side of members: walking the tree and reading one member into
// the exported record.  Hidden (spare) members are never shown.
#include "otl.h"

#include <cstring>

namespace {

constexpr VTX_LONG_T kVerRecord5 = 0x50000;
constexpr VTX_LONG_T kVerSiblingCount = 413952;
constexpr VTX_LONG_T kVerFormula = 0x70000;
constexpr VTX_LONG_T kVerNonUnique = 0x8ffff;   // above

inline VTX_POTLMBR_T M(VTX_HMEMBER_T h) { return static_cast<VTX_POTLMBR_T>(h); }
inline VTX_POTLMBR_T visible(VTX_POTLMBR_T p) { return p && !OTL_IS_HIDDEN(p) ? p : nullptr; }

// The frame and the checks every navigation call shares.  A null member is
// the root where the call allows it.
VTX_STS_T navEnter(otl::CallFrame &f, VTX_HMEMBER_T hMember, bool nullIsRoot, VTX_POTLMBR_T *ppItem,
                   const char *call) {
    *ppItem = nullptr;
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    VTX_POTL_T o = f.outline();
    VTX_POTLMBR_T item = M(hMember);
    if (!item) {
        if (!nullIsRoot) return f.fail(VTX_STS_NULL_ARG, call, VTX_MSGARG_STR);
        item = o->pHeadItem;
    }
    *ppItem = item;
    return 0;
}

// One step of navigation from a member: the frame, the member's checks,
// the output cleared first and filled by step(member).
template <class Step>
VTX_STS_T navigate(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phOut, bool nullIsRoot,
                   const char *call, Step step) {
    if (phOut) *phOut = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    VTX_POTLMBR_T item = nullptr;
    if (VTX_STS_T sts = navEnter(f, hMember, nullIsRoot, &item, call)) return sts;
    if (!phOut) return f.fail(VTX_STS_NULL_ARG, call, VTX_MSGARG_STR);
    if (item) *phOut = step(item);
    return 0;
}

} // namespace

extern "C" {

VTX_POTLMBR_T otlGetNextMbr(VTX_POTLMBR_T pTop, VTX_POTLMBR_T pThisMbr) {
    VTX_POTLMBR_T p = pThisMbr;
    do {
        p = otlNavtrdn(p, pTop);
    } while (p && OTL_IS_HIDDEN(p));
    return p ? p : pTop;
}

VTX_BOOL_T otlMbrSetfAttributed(VTX_POTL_T, VTX_POTLMBR_T pItem) __attribute__((weak));
VTX_BOOL_T otlMbrSetfAttributed(VTX_POTL_T, VTX_POTLMBR_T pItem) {
    if (!pItem || pItem->MbrInfo.usGen == 0) return 0;
    bool attributed = false;
    if (pItem->MbrInfo.usGen == 1) {
        if (!OTL_IS_SMALL(pItem)) {
            VTX_POTLMBRLARGE_T l = OTL_LARGE(pItem);
            if (l->usAttrCode == 2 && l->Map.BaseDim.pAttrs)
                for (unsigned i = 0; i < l->Map.BaseDim.usAttrDims && !attributed; ++i)
                    attributed = l->Map.BaseDim.pAttrs[i].pDimPtr != nullptr;
        }
    } else if (pItem->BaseMap.hAttrArray) {
        for (unsigned i = 0; i < pItem->BaseMap.usArraySize && !attributed; ++i)
            attributed = pItem->BaseMap.hAttrArray[i] != nullptr;
    }
    if (attributed) pItem->MbrInfo.ucInfoFlags |= OTL_INFO_ATTRIBUTED;
    else pItem->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~OTL_INFO_ATTRIBUTED;
    return attributed;
}

// ---- navigation ---------------------------------------------------------------------

VTX_STS_T adShrOtlGetFirstMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T *phMember) {
    if (phMember) *phMember = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!phMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetFirstMember", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    if (o->pHeadItem) *phMember = visible(o->pHeadItem->pChild);
    return 0;
}

VTX_STS_T adShrOtlGetChild(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phChild) {
    return navigate(hOutline, hMember, phChild, true, "adShrOtlGetChild",
                    [](VTX_POTLMBR_T m) { return visible(m->pChild); });
}

VTX_STS_T adShrOtlGetLastChild(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phChild) {
    return navigate(hOutline, hMember, phChild, true, "adShrOtlGetLastChild",
                    [](VTX_POTLMBR_T m) { return m->MbrInfo.pLastSibling; });
}

VTX_STS_T adShrOtlGetParent(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phParent) {
    // A dimension has no parent the caller can see.
    return navigate(hOutline, hMember, phParent, false, "adShrOtlGetParent",
                    [](VTX_POTLMBR_T m) { return m->MbrInfo.usGen > 1 ? m->pParent : nullptr; });
}

VTX_STS_T adShrOtlGetNextSibling(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phSibling) {
    return navigate(hOutline, hMember, phSibling, false, "adShrOtlGetNextSibling",
                    [](VTX_POTLMBR_T m) { return visible(m->pSibling); });
}

VTX_STS_T adShrOtlGetPrevSibling(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phSibling) {
    return navigate(hOutline, hMember, phSibling, false, "adShrOtlGetPrevSibling",
                    [](VTX_POTLMBR_T m) { return visible(m->pPrevSibling); });
}

VTX_STS_T adShrOtlGetNextMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hTop, VTX_HMEMBER_T hMember,
                                VTX_HMEMBER_T *phNext) {
    if (phNext) *phNext = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hTop, hMember})) return sts;
    if (!phNext || !hMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetNextMember", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    VTX_POTLMBR_T top = hTop ? M(hTop) : o->pHeadItem;
    VTX_POTLMBR_T next = otlGetNextMbr(top, M(hMember));
    *phNext = (next == o->pHeadItem && !hTop) ? nullptr : next;
    return 0;
}

// ---- member reads ---------------------------------------------------------------------

VTX_STS_T adShrOtlGetMemberName(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_MBRNAME_T szName) {
    if (szName) szName[0] = 0;
    otl::CallFrame f(hOutline, otl::kRead);
    VTX_POTLMBR_T item = nullptr;
    if (VTX_STS_T sts = navEnter(f, hMember, false, &item, "adShrOtlGetMemberName")) return sts;
    if (!szName) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetMemberName", VTX_MSGARG_STR);
    const char *name = item->MbrInfo.szMember ? item->MbrInfo.szMember : "";
    size_t n = std::strlen(name);
    if (n >= VTX_MBRNAME_LEN) n = VTX_MBRNAME_LEN - 1;
    std::memcpy(szName, name, n);
    szName[n] = 0;
    return 0;
}

VTX_STS_T adShrOtlGetMemberInfo(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, vtx_mbrinfo_t **ppInfo) {
    if (ppInfo) *ppInfo = nullptr;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    VTX_POTLMBR_T item = nullptr;
    if (VTX_STS_T sts = navEnter(f, hMember, false, &item, "adShrOtlGetMemberInfo")) return sts;
    if (!ppInfo) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetMemberInfo", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    vTX_PNETCTX_T ctx = f.ctx();
    return otl::otlGuard(ctx, "adShrOtlGetMemberInfo", [&]() -> VTX_STS_T {
        const bool query = o->fOpenQuery != 0;
        if ((item->ucFlags & OTL_FLAG_QUERYMASK) && !OTL_IS_SMALL(item) &&
            !otlIsMbrValid(65535, OTL_LARGE(item)->ulBitmask))
            return f.fail(VTX_STS_INFO_NOT_FETCHED);
        const VTX_LONG_T ver = ctx ? ctx->lClientVersion : 0;
        // Clients before 5.0 read an older record form this library does not
        // hand out.
        if (ver < kVerRecord5) return f.fail(VTX_STS_OLD_CLIENT);
        if (!query) otlMbrSetfAttributed(o, item);
        vtx_mbrinfo_t *info = nullptr;
        VTX_STS_T sts = otlAlloc(ctx, sizeof *info, &info);
        if (sts) return f.fail(sts, "adShrOtlGetMemberInfo", VTX_MSGARG_STR);
        if (OTL_IS_SMALL(item)) {
            // A small record reads through a large view fetched from the
            // paged store.
            VTX_OTLMBRLARGE_T view;
            std::memset((void *)&view, 0, sizeof view);
            sts = opg_ToItemLarge(o, &view, item);
            if (!sts) sts = otlCopyLargeToMbrInfo(o, (VTX_POTLMBR_T)&view, info, (VTX_ULONG_T)ver);
            otlFreeLargeItemStrings(ctx, &view, 1);
        } else {
            sts = otlCopyLargeToMbrInfo(o, item, info, (VTX_ULONG_T)ver);
        }
        if (sts) {
            (void)otlFreeMem(ctx, info);  // never handed out
            return f.fail(sts, "adShrOtlGetMemberInfo", VTX_MSGARG_STR);
        }
        if (!query) {
            if (ver >= kVerSiblingCount) {
                info->ulChildCount = item->ulSiblingCount;
            } else {
                VTX_ULONG_T n = 0;
                for (VTX_POTLMBR_T c = item->pChild; c; c = c->pSibling) ++n;
                info->ulChildCount = n;
            }
            if (ver >= kVerFormula) {
                info->fFormula = (item->ucFlags & OTL_FLAG_FORMULA) ? 1 : 0;
                info->fUda = (!OTL_IS_SMALL(item) && OTL_LARGE(item)->pUserAttrList) ||
                             (item->MbrInfo.ucInfoFlags & OTL_INFO_UDA);
                info->fAlias = 0;
                if (item->AliasArray)
                    for (unsigned t = 0; t < o->usNumAliasTables && !info->fAlias; ++t)
                        info->fAlias = item->AliasArray[t].pszDefName != nullptr;
            }
            if (ver > kVerNonUnique) {
                VTX_ULONG_T count = 0;
                info->fNonUniqueName = item->MbrInfo.usGen > 1 &&
                                       otlIsNameDuplicated(ctx, o, item->MbrInfo.szMember, 0, &count);
            }
        }
        if (o->usOutlineType == VTX_OTL_AGGSTORE) info->usStorage = 3;
        info->ucMemberType = item->ucFlags2 & OTL_FLAG2_TYPEMASK;
        *ppInfo = info;
        return 0;
    });
}

} // extern "C"
