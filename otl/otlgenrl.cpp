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

VTX_STS_T adShrOtlGetLastChildByBuildId(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_ULONG_T ulBuildId,
                                        VTX_HMEMBER_T *phMember) {
    // The children of a build pass come after those of the passes before
    // it: the last child of pass ulBuildId or earlier is the one before the
    // first child of a later pass.
    return navigate(hOutline, hMember, phMember, true, "adShrOtlGetLastChildByBuildId",
                    [ulBuildId](VTX_POTLMBR_T m) -> VTX_POTLMBR_T {
                        VTX_POTLMBR_T last = m->MbrInfo.pLastSibling;
                        if (last && last->ucBuildId <= ulBuildId) return last;
                        VTX_POTLMBR_T before = nullptr;
                        for (VTX_POTLMBR_T c = m->pChild; c && c->ucBuildId <= ulBuildId; c = c->pSibling)
                            if (!OTL_IS_HIDDEN(c)) before = c;
                        return before;
                    });
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
        if (!query) otlMbrSetfAttributed(o, item);
        vtx_mbrinfo_t *info = nullptr;
        VTX_STS_T sts = otlAlloc(ctx, sizeof *info, &info);
        if (sts) return f.fail(sts, "adShrOtlGetMemberInfo", VTX_MSGARG_STR);
        sts = otlCopyToMbrInfo(o, item, info, (VTX_ULONG_T)ver);
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
        if (ver < kVerRecord5) {
            // A client before 5.0 reads the short record: the full one was
            // only the way there.
            vtx_mbrinfo_old_t *old = nullptr;
            sts = otlAlloc(ctx, sizeof *old, &old);
            if (!sts) {
                sts = otlMbrInfoToOld(info, old);
                if (sts) (void)otlFreeMem(ctx, old);  // never handed out
            }
            (void)otlFreeMem(ctx, info);  // the full form served its purpose
            if (sts) return f.fail(sts, "adShrOtlGetMemberInfo", VTX_MSGARG_STR);
            *ppInfo = reinterpret_cast<vtx_mbrinfo_t *>(old);
            return 0;
        }
        *ppInfo = info;
        return 0;
    });
}

} // extern "C"

// ---- member texts and aggregate storage settings ------------------------------------
//
// The setters run every check and make their one allocation before they
// touch the record; in an outline kept in its paged store the changed
// record is written back at once, and a failed write puts everything back.

namespace {

constexpr VTX_ULONG_T kOPGHierSettings = 75;   // paged version of level usage, compression, query hints
constexpr VTX_ULONG_T kOPGRenegade = 81;       // paged version of renegade members
constexpr VTX_ULONG_T kOPGTypedMembers = 77;   // first paged version with format strings

inline bool isAggStore(VTX_POTL_T o) { return o->usOutlineType == VTX_OTL_AGGSTORE; }
inline VTX_UCHAR_T categoryOf(VTX_POTLMBR_T p) { return p && !OTL_IS_SMALL(p) ? OTL_LARGE(p)->MbrInfo.usCategory : 0; }
inline bool isAttrDim(VTX_POTLMBR_T dim) {
    return categoryOf(dim) == VTX_CAT_ATTRIBUTE || categoryOf(dim) == VTX_CAT_ATTRCALC;
}

// The identifier under which a member's dimension keeps its settings.
VTX_ULONG_T dimIdOfMember(VTX_POTL_T o, VTX_POTLMBR_T p) {
    VTX_POTLMBR_T d = otlGetDim(p);
    if (!d || !o->dimIds || d->ulDimno == 0 || d->ulDimno == OTL_ROOT_DIMNO) return 0;
    return o->dimIds[d->ulDimno - 1];
}

// A changed record of an outline updated in its paged store goes there at
// once; other outlines keep it until they are saved.
VTX_STS_T writeBack(VTX_POTL_T o, VTX_POTLMBR_T item) {
    if (!o->incrementalOPGfile) return 0;
    VTX_STS_T sts = opgOpenDim(o, dimIdOfMember(o, item));
    if (!sts) sts = opgWriteMember(o, o->bkdbH, item, 0);
    return sts;
}

// The frame of a member setter: the member named, not the root.
VTX_STS_T enterMember(otl::CallFrame &f, VTX_HMEMBER_T hMember, const char *call, VTX_POTLMBR_T *ppItem) {
    *ppItem = nullptr;
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (!hMember) return f.fail(VTX_STS_NULL_ARG, call, VTX_MSGARG_STR);
    VTX_POTLMBR_T item = M(hMember);
    if (item->MbrInfo.usGen == 0) return f.fail(VTX_STS_ILLEGAL_OPERATION);
    *ppItem = item;
    return 0;
}

// The same for a call on a dimension.
VTX_STS_T enterDim(otl::CallFrame &f, VTX_HMEMBER_T hDim, const char *call, VTX_POTLMBR_T *ppDim) {
    if (VTX_STS_T sts = enterMember(f, hDim, call, ppDim)) return sts;
    if ((*ppDim)->MbrInfo.usGen != 1) {
        *ppDim = nullptr;
        return f.fail(VTX_STS_NOT_A_DIMENSION);
    }
    return 0;
}

// One value of a member or dimension read into *pOut: the output cleared
// first, the frame, the member's checks, then read(member).
template <class T, class Read>
VTX_STS_T readSetting(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, bool dimOnly, T *pOut, const char *call,
                      Read read) {
    if (pOut) *pOut = 0;
    otl::CallFrame f(hOutline, otl::kRead);
    VTX_POTLMBR_T item = nullptr;
    if (VTX_STS_T sts = (dimOnly ? enterDim : enterMember)(f, hMember, call, &item)) return sts;
    if (!pOut) return f.fail(VTX_STS_NULL_ARG, call, VTX_MSGARG_STR);
    *pOut = read(item);
    return 0;
}

// The same for a value of the outline.
template <class T, class Read>
VTX_STS_T readOutlineSetting(VTX_HOUTLINE_T hOutline, T *pOut, const char *call, Read read) {
    if (pOut) *pOut = 0;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pOut) return f.fail(VTX_STS_NULL_ARG, call, VTX_MSGARG_STR);
    *pOut = read(f.outline());
    return 0;
}

// Settings that exist in aggregate storage only, from a paged version on.
VTX_STS_T aggStoreGate(const otl::CallFrame &f, VTX_ULONG_T minVersion) {
    VTX_POTL_T o = f.outline();
    if (!isAggStore(o)) return f.fail(VTX_STS_ILLEGAL_OPERATION);
    if (o->cOPGVersion < minVersion) return f.fail(VTX_STS_RELAXED_OLD_AGG);
    return 0;
}

// ---- texts

enum class Text { Formula, LastFormula, CommentEx, FormatString };

VTX_STR_T &textSlot(VTX_POTLMBRLARGE_T l, Text which) {
    switch (which) {
    case Text::Formula: return l->pszCalc;
    case Text::LastFormula: return l->pszLastCalc;
    case Text::CommentEx: return l->pszCommentEx;
    case Text::FormatString: break;
    }
    return l->pszFormatString;
}

VTX_STS_T getText(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_STR_T *pp, Text which, const char *call) {
    if (pp) *pp = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    VTX_POTLMBR_T item = nullptr;
    if (VTX_STS_T sts = enterMember(f, hMember, call, &item)) return sts;
    if (!pp) return f.fail(VTX_STS_NULL_ARG, call, VTX_MSGARG_STR);
    // A small record keeps its texts in the sections of the paged store,
    // which this build cannot read.
    if (OTL_IS_SMALL(item)) return f.fail(VTX_STS_NOT_AVAILABLE, call, VTX_MSGARG_STR);
    // Whether a member has a formula is told by its flag, not by the text.
    if (which == Text::Formula && !(item->ucFlags & OTL_FLAG_FORMULA)) return 0;
    const char *text = textSlot(OTL_LARGE(item), which);
    if (VTX_STS_T sts = otlStrdup(f.ctx(), text, pp)) return f.fail(sts, call, VTX_MSGARG_STR);
    return 0;
}

// Why a member may not carry the text; 0 when it may.
VTX_STS_T textRefusal(VTX_POTL_T o, VTX_POTLMBR_T item, Text which) {
    VTX_POTLMBR_T dim = otlGetDim(item);
    const VTX_UCHAR_T dimCat = categoryOf(dim);
    const bool shared = otlMbrIsSharedShare(item);
    if (which == Text::Formula) {
        if (categoryOf(item) == VTX_CAT_ATTRCALC || dimCat == VTX_CAT_ATTRCALC) return VTX_STS_ILLEGAL_OPERATION;
        if (categoryOf(item) == VTX_CAT_ATTRIBUTE || dimCat == VTX_CAT_ATTRIBUTE) return VTX_STS_ATTR_MEMBER_FORMULA;
        // A shared member calculates as its stored member does.
        if (shared) return VTX_STS_FORMULA_NOT_ALLOWED;
    } else if (which == Text::FormatString) {
        if (!o->bMemberTypeEnabled) return VTX_STS_MBRTYPE_OLD_AGG;
        if (o->cOPGVersion != 0 && o->cOPGVersion < kOPGTypedMembers) return VTX_STS_TYPED_OLD_OPG;
        if (isAttrDim(dim)) return VTX_STS_TYPED_NOT_ALLOWED;
        if (shared) return VTX_STS_TYPED_SHARED;
    }
    return 0;
}

VTX_STS_T setText(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T text, Text which, const char *call) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    VTX_POTLMBR_T item = nullptr;
    if (VTX_STS_T sts = enterMember(f, hMember, call, &item)) return sts;
    VTX_POTL_T o = f.outline();
    vTX_PNETCTX_T ctx = f.ctx();
    if (OTL_IS_SMALL(item)) return f.fail(VTX_STS_NOT_AVAILABLE, call, VTX_MSGARG_STR);
    const bool present = text && *text;
    // Taking a text away is never refused for what the member is.
    if (present)
        if (VTX_STS_T sts = textRefusal(o, item, which)) return f.fail(sts, item->MbrInfo.szMember, VTX_MSGARG_STR);
    VTX_STR_T &slot = textSlot(OTL_LARGE(item), which);
    const VTX_UCHAR_T flag = which == Text::Formula ? OTL_FLAG_FORMULA
                             : which == Text::CommentEx ? OTL_FLAG_COMMENTEX : 0;
    // Taking away what is not there is no edit.
    if (!present && !slot && !(item->ucFlags & flag)) return 0;
    VTX_STR_T copy = nullptr;
    if (VTX_STS_T sts = otlStrdup(ctx, text, &copy)) return f.fail(sts, call, VTX_MSGARG_STR);

    const VTX_UCHAR_T flagsBefore = item->ucFlags;
    VTX_STR_T old = slot;
    slot = copy;
    if (flag) item->ucFlags = (VTX_UCHAR_T)(present ? (item->ucFlags | flag) : (item->ucFlags & ~flag));
    if (VTX_STS_T sts = writeBack(o, item)) {
        slot = old;
        item->ucFlags = flagsBefore;
        (void)otlFreeMem(ctx, copy);  // never stood in the outline
        return f.fail(sts, call, VTX_MSGARG_STR);
    }
    (void)otlFreeMem(ctx, old);  // replaced; a release failure cannot be undone
    f.edited(OTL_STATE_CHANGED);
    return 0;
}

// ---- solve orders, level usage, hierarchy types

// A one-byte setting of a record: stored, written back, and put back if the
// paged store refuses it.
VTX_STS_T storeByte(const otl::CallFrame &f, VTX_POTLMBR_T item, VTX_UCHAR_T &field, VTX_UCHAR_T value) {
    const VTX_UCHAR_T before = field;
    field = value;
    if (VTX_STS_T sts = writeBack(f.outline(), item)) {
        field = before;
        return f.fail(sts);
    }
    f.edited(OTL_STATE_CHANGED);
    return 0;
}

// The hierarchy type a member shows: a dimension's own; at generation 2
// stored or dynamic under a dimension with several hierarchies, else
// disabled; below that always "below generation 2".
VTX_UCHAR_T hierarchyTypeOf(VTX_POTLMBR_T item) {
    const VTX_UCHAR_T gen = item->MbrInfo.usGen;
    if (gen == 1) return OTL_IS_SMALL(item) ? OTL_HIER_STORED : OTL_LARGE(item)->MbrInfo.ucHierarchyType;
    if (gen > 2) return OTL_HIER_BELOWGEN2;
    if (gen == 2 && item->pParent && !OTL_IS_SMALL(item->pParent) &&
        OTL_LARGE(item->pParent)->MbrInfo.ucHierarchyType == OTL_HIER_ENABLED)
        return (item->MbrInfo.ucInfoFlags & OTL_INFO_DYNHIER) ? OTL_HIER_DYNAMIC : OTL_HIER_STORED;
    return gen == 2 ? OTL_HIER_DISABLED : 0;
}

// The stored-member counts of the outline and of the member's dimension,
// moved by delta when a member stops or starts holding data of its own.
void countStored(VTX_POTL_T o, VTX_POTLMBR_T item, int delta) {
    o->Counts.ulRealMembers += (VTX_ULONG_T)delta;
    if (o->Counts.pDimensionMaps && item->ulDimno >= 1 && item->ulDimno <= o->DimTableSize)
        o->Counts.pDimensionMaps[item->ulDimno - 1].ulMembers += (VTX_ULONG_T)delta;
}

// Applies a hierarchy type to a dimension or to a generation-2 member of a
// dimension with several hierarchies, with the paged write; the checks are
// the caller's.
VTX_STS_T applyHierarchyType(const otl::CallFrame &f, VTX_POTLMBR_T item, VTX_UCHAR_T type) {
    VTX_POTL_T o = f.outline();
    const VTX_USHORT_T infoBefore = item->MbrInfo.ucInfoFlags;
    VTX_USHORT_T info = infoBefore;
    if (type == OTL_HIER_DYNAMIC) info |= OTL_INFO_DYNHIER;
    else info &= (VTX_USHORT_T)~OTL_INFO_DYNHIER;
    VTX_OTLMBRLARGE_T *l = item->MbrInfo.usGen == 1 ? OTL_LARGE(item) : nullptr;
    const VTX_UCHAR_T typeBefore = l ? l->MbrInfo.ucHierarchyType : 0;
    const VTX_UCHAR_T shareBefore = l ? l->MbrInfo.usShare : 0;
    // A dimension of several hierarchies holds no data of its own.
    const bool toLabel = l && type == OTL_HIER_ENABLED && shareBefore != VTX_SHARE_LABEL;
    const bool leavesStored = toLabel && !OTL_IS_SHARE(shareBefore);
    item->MbrInfo.ucInfoFlags = info;
    if (l) l->MbrInfo.ucHierarchyType = type;
    if (toLabel) l->MbrInfo.usShare = VTX_SHARE_LABEL;
    if (leavesStored) countStored(o, item, -1);
    if (VTX_STS_T sts = writeBack(o, item)) {
        item->MbrInfo.ucInfoFlags = infoBefore;
        if (l) {
            l->MbrInfo.ucHierarchyType = typeBefore;
            l->MbrInfo.usShare = shareBefore;
        }
        if (leavesStored) countStored(o, item, 1);
        return f.fail(sts);
    }
    f.edited(OTL_STATE_CHANGED);
    return 0;
}

// The compression dimension of an aggregate storage outline: before
// version 75 the accounts dimension, from it the one dense dimension.
VTX_HMEMBER_T compressionDimOf(VTX_POTL_T o) {
    if (!isAggStore(o) || !o->pHeadItem) return nullptr;
    const bool byAccounts = o->cOPGVersion < kOPGHierSettings;
    for (VTX_POTLMBR_T d = o->pHeadItem->pChild; d; d = d->pSibling) {
        if (OTL_IS_SMALL(d) || isAttrDim(d)) continue;
        const VTX_POTLMBRLARGE_T l = OTL_LARGE(d);
        if (byAccounts ? l->MbrInfo.usCategory == VTX_CAT_ACCOUNTS : l->MbrInfo.usStorage == 0) return d;
    }
    return nullptr;
}

// ---- query hints

VTX_POTLMBR_T *hintRow(VTX_POTL_T o, unsigned row) {
    return static_cast<VTX_POTLMBR_T *>(o->queryHintArray) + (size_t)row * o->queryHintSize;
}

// Checks the members of a hint: at least one, each a visible member of
// this outline below the root.
VTX_STS_T checkHintMembers(const otl::CallFrame &f, VTX_USHORT_T numMembers, const VTX_HMEMBER_T *pMembers,
                           const char *call) {
    if (numMembers < 1) return f.fail(VTX_STS_BAD_QUERY_HINT);
    if (!pMembers) return f.fail(VTX_STS_NULL_ARG, call, VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    bool any = false;
    for (unsigned i = 0; i < numMembers; ++i) {
        VTX_POTLMBR_T m = M(pMembers[i]);
        if (!m) continue;
        if (OTL_IS_HIDDEN(m)) return VTX_STS_SILENT;
        VTX_POTLMBR_T top = m;
        while (top->pParent) top = top->pParent;
        if (top != o->pHeadItem) return f.fail(VTX_STS_BAD_PLACEMENT);
        if (m == o->pHeadItem) return f.fail(VTX_STS_ILLEGAL_OPERATION);
        any = true;
    }
    return any ? 0 : f.fail(VTX_STS_BAD_QUERY_HINT);
}

// Makes the table at least rows by width.  A wider table is reallocated
// and its rows spread from the last to the first, so that no row is
// overwritten before it has moved; new slots are null.
VTX_STS_T growHints(VTX_POTL_T o, unsigned rows, unsigned width) {
    const unsigned oldRows = o->nmAllocHints, oldWidth = o->queryHintSize;
    const unsigned newRows = rows > oldRows ? rows : oldRows;
    const unsigned newWidth = width > oldWidth ? width : oldWidth;
    if (newRows == oldRows && newWidth == oldWidth) return 0;
    if (newRows > 0xFFFF) return VTX_STS_BAD_QUERY_HINT;
    const size_t bytes = sizeof(VTX_POTLMBR_T) * newRows * newWidth;
    void *table = nullptr;
    VTX_STS_T sts = o->queryHintArray ? otlReallocEx(o->pNetCtx, o->queryHintArray, bytes, &table)
                                      : otlAlloc(o->pNetCtx, bytes, &table);
    if (sts) return sts;
    auto *slots = static_cast<VTX_POTLMBR_T *>(table);
    for (unsigned r = oldRows; r-- > 0;) {
        std::memmove(slots + (size_t)r * newWidth, slots + (size_t)r * oldWidth, sizeof *slots * oldWidth);
        std::memset((void *)(slots + (size_t)r * newWidth + oldWidth), 0, sizeof *slots * (newWidth - oldWidth));
    }
    std::memset((void *)(slots + (size_t)oldRows * newWidth), 0, sizeof *slots * (newRows - oldRows) * newWidth);
    o->queryHintArray = table;
    o->nmAllocHints = (VTX_USHORT_T)newRows;
    o->queryHintSize = (VTX_USHORT_T)newWidth;
    return 0;
}

// Fills row (0-based) with the members, nulls behind them.
void putHint(VTX_POTL_T o, unsigned row, VTX_USHORT_T numMembers, const VTX_HMEMBER_T *pMembers) {
    VTX_POTLMBR_T *slots = hintRow(o, row);
    for (unsigned i = 0; i < o->queryHintSize; ++i) slots[i] = i < numMembers ? M(pMembers[i]) : nullptr;
}

// The common part of adding and replacing a hint at row (0-based).
VTX_STS_T storeHint(otl::CallFrame &f, unsigned row, VTX_USHORT_T numMembers, const VTX_HMEMBER_T *pMembers,
                    const char *call) {
    VTX_POTL_T o = f.outline();
    if (VTX_STS_T sts = checkHintMembers(f, numMembers, pMembers, call)) return sts;
    if (VTX_STS_T sts = growHints(o, row + 1, numMembers)) return f.fail(sts, call, VTX_MSGARG_STR);
    putHint(o, row, numMembers, pMembers);
    if (row >= o->nmHints) o->nmHints = (VTX_USHORT_T)(row + 1);
    // Hints are kept with the outline's own record in the paged store,
    // which this build does not write.
    f.edited(OTL_STATE_CHANGED);
    return 0;
}

VTX_STS_T enterHints(otl::CallFrame &f) {
    if (VTX_STS_T sts = f.enter()) return sts;
    return aggStoreGate(f, kOPGHierSettings);
}

} // namespace

extern "C" {

// ---- formulas, extended comments, format strings ------------------------------------------

VTX_STS_T adShrOtlGetMemberFormula(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_STR_T *ppszFormula) {
    return getText(hOutline, hMember, ppszFormula, Text::Formula, "adShrOtlGetMemberFormula");
}

VTX_STS_T adShrOtlGetMemberLastFormula(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_STR_T *ppszFormula) {
    return getText(hOutline, hMember, ppszFormula, Text::LastFormula, "adShrOtlGetMemberLastFormula");
}

VTX_STS_T adShrOtlGetMemberCommentEx(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_STR_T *ppszCommentEx) {
    return getText(hOutline, hMember, ppszCommentEx, Text::CommentEx, "adShrOtlGetMemberCommentEx");
}

VTX_STS_T adShrOtlGetMemberFormatString(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_STR_T *ppszFormat) {
    return getText(hOutline, hMember, ppszFormat, Text::FormatString, "adShrOtlGetMemberFormatString");
}

VTX_STS_T adShrOtlSetMemberFormula(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszFormula) {
    return setText(hOutline, hMember, pszFormula, Text::Formula, "adShrOtlSetMemberFormula");
}

VTX_STS_T adShrOtlDeleteMemberFormula(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember) {
    return setText(hOutline, hMember, nullptr, Text::Formula, "adShrOtlDeleteMemberFormula");
}

VTX_STS_T adShrOtlSetMemberCommentEx(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszCommentEx) {
    return setText(hOutline, hMember, pszCommentEx, Text::CommentEx, "adShrOtlSetMemberCommentEx");
}

VTX_STS_T adShrOtlSetMemberFormatString(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszFormat) {
    return setText(hOutline, hMember, pszFormat, Text::FormatString, "adShrOtlSetMemberFormatString");
}

// ---- solve orders and aggregation ------------------------------------------------------

VTX_STS_T adShrOtlSetMemberSolveOrder(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CHAR_T cOrder) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    VTX_POTLMBR_T item = nullptr;
    if (VTX_STS_T sts = enterMember(f, hMember, "adShrOtlSetMemberSolveOrder", &item)) return sts;
    if (cOrder < 0) return f.fail(VTX_STS_BAD_SOLVE_ORDER);
    VTX_POTL_T o = f.outline();
    const VTX_UCHAR_T orderBefore = item->ucSolveOrder;
    const VTX_USHORT_T infoBefore = item->MbrInfo.ucInfoFlags;
    item->ucSolveOrder = (VTX_UCHAR_T)cOrder;
    // The oldest paged versions mark a member that has a solve order.
    if (o->cOPGVersion == 71 || o->cOPGVersion < 2) {
        if (cOrder) item->MbrInfo.ucInfoFlags |= OTL_INFO_SOLVEORDER;
        else item->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~OTL_INFO_SOLVEORDER;
    }
    VTX_STS_T sts = writeBack(o, item);
    if (!sts && o->fKeepTrans && !isAggStore(o))
        sts = adTransAddPropChgToList(f.ctx(), o, item->MbrInfo.usGen, item->MbrInfo.szMember);
    if (sts) {
        item->ucSolveOrder = orderBefore;
        item->MbrInfo.ucInfoFlags = infoBefore;
        return f.fail(sts);
    }
    f.edited(OTL_STATE_CHANGED);
    return 0;
}

VTX_STS_T adShrOtlSetDimensionSolveOrder(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_CHAR_T cOrder) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = enterDim(f, hDim, "adShrOtlSetDimensionSolveOrder", &dim)) return sts;
    if (cOrder < 0) return f.fail(VTX_STS_BAD_SOLVE_ORDER);
    return storeByte(f, dim, dim->ucDimSolveOrder, (VTX_UCHAR_T)cOrder);
}

VTX_BOOL_T otlValidAggLevelUsage(VTX_POTLMBR_T pItemHierarchy, VTX_SHORT_T sAggLevelUsage, VTX_BOOL_T bNotSetOK) {
    if (!pItemHierarchy) return 0;
    if (sAggLevelUsage == VTX_AGGLEVEL_DEFAULT) return bNotSetOK ? 1 : 0;
    if (sAggLevelUsage < VTX_AGGLEVEL_ALL || sAggLevelUsage > VTX_AGGLEVEL_NO_INTERMEDIATE) return 0;
    // Only a stored hierarchy keeps aggregates; its top carries the usage.
    const VTX_UCHAR_T gen = pItemHierarchy->MbrInfo.usGen;
    if (gen != 1 && gen != 2) return 0;
    return hierarchyTypeOf(pItemHierarchy) == OTL_HIER_STORED ? 1 : 0;
}

VTX_STS_T adShrOtlSetAggLevelUsage(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_SHORT_T sWeight) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    VTX_POTLMBR_T item = nullptr;
    if (VTX_STS_T sts = enterMember(f, hMember, "adShrOtlSetAggLevelUsage", &item)) return sts;
    VTX_POTL_T o = f.outline();
    if (isAggStore(o) && o->cOPGVersion < kOPGHierSettings) return f.fail(VTX_STS_RELAXED_OLD_AGG);
    if (!otlValidAggLevelUsage(item, sWeight, 1)) return f.fail(VTX_STS_BAD_AGG_LEVEL_USAGE);
    return storeByte(f, item, item->ucAggLevelUsage, (VTX_UCHAR_T)sWeight);
}

VTX_STS_T adShrOtlGetAggLevelUsage(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_SHORT_T *psWeight) {
    return readSetting(hOutline, hMember, false, psWeight, "adShrOtlGetAggLevelUsage",
                       [](VTX_POTLMBR_T m) { return (VTX_SHORT_T)m->ucAggLevelUsage; });
}

// ---- hierarchies ---------------------------------------------------------------------------

VTX_STS_T adShrOtlSetHierarchyType(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_UCHAR_T ucHierarchyType) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    VTX_POTLMBR_T item = nullptr;
    if (VTX_STS_T sts = enterMember(f, hMember, "adShrOtlSetHierarchyType", &item)) return sts;
    const VTX_UCHAR_T gen = item->MbrInfo.usGen;
    const bool dimension = gen == 1;
    // Hierarchies are a matter of standard dimensions: a dimension or the
    // top of one of its hierarchies.
    if (isAttrDim(otlGetDim(item))) return f.fail(VTX_STS_ILLEGAL_OPERATION);
    if (!dimension && hierarchyTypeOf(item) != OTL_HIER_STORED && hierarchyTypeOf(item) != OTL_HIER_DYNAMIC)
        return f.fail(VTX_STS_ILLEGAL_OPERATION);
    const bool known = ucHierarchyType == OTL_HIER_STORED || ucHierarchyType == OTL_HIER_DYNAMIC ||
                       (dimension && ucHierarchyType == OTL_HIER_ENABLED);
    if (!known) return f.fail(VTX_STS_BAD_SELECTOR);
    return applyHierarchyType(f, item, ucHierarchyType);
}

VTX_STS_T adShrOtlGetHierarchyType(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_UCHAR_T *pucHierarchyType) {
    return readSetting(hOutline, hMember, false, pucHierarchyType, "adShrOtlGetHierarchyType", hierarchyTypeOf);
}

VTX_STS_T adShrOtlSetAltHierarchyEnabled(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_BOOL_T fEnabled) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = enterDim(f, hDim, "adShrOtlSetAltHierarchyEnabled", &dim)) return sts;
    if (isAttrDim(dim)) return f.fail(VTX_STS_ILLEGAL_OPERATION);
    const bool enabled = hierarchyTypeOf(dim) == OTL_HIER_ENABLED;
    if (!fEnabled == !enabled) return 0;
    return applyHierarchyType(f, dim, fEnabled ? OTL_HIER_ENABLED : OTL_HIER_STORED);
}

VTX_STS_T adShrOtlGetAltHierarchyEnabled(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_BOOL_T *pfEnabled) {
    return readSetting(hOutline, hDim, true, pfEnabled, "adShrOtlGetAltHierarchyEnabled",
                       [](VTX_POTLMBR_T d) { return (VTX_BOOL_T)(hierarchyTypeOf(d) == OTL_HIER_ENABLED); });
}

// ---- compression dimension and renegade members --------------------------------------------

VTX_STS_T adShrOtlSetASOCompressionDimension(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = enterDim(f, hDim, "adShrOtlSetASOCompressionDimension", &dim)) return sts;
    if (VTX_STS_T sts = aggStoreGate(f, kOPGHierSettings)) return sts;
    VTX_POTL_T o = f.outline();
    if (isAttrDim(dim)) return f.fail(VTX_STS_ILLEGAL_OPERATION);
    // The compression dimension cannot take attributes.
    VTX_POTLMBRLARGE_T l = OTL_LARGE(dim);
    if (l->usAttrCode == 2 && l->Map.BaseDim.usAttrDims) return f.fail(VTX_STS_ATTR_BASE_COMPRESSION);
    // Dense and sparse are kept in the dimension records of the paged
    // store, which only a full write of it brings up to date.
    if (o->incrementalOPGfile) return f.fail(VTX_STS_NOT_AVAILABLE, "adShrOtlSetASOCompressionDimension", VTX_MSGARG_STR);
    for (VTX_POTLMBR_T d = o->pHeadItem->pChild; d; d = d->pSibling)
        if (!OTL_IS_SMALL(d) && !isAttrDim(d)) OTL_LARGE(d)->MbrInfo.usStorage = d == dim ? 0 : 1;
    f.edited(OTL_STATE_CHANGED);
    return 0;
}

VTX_STS_T adShrOtlGetASOCompressionDimension(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T *phDim) {
    return readOutlineSetting(hOutline, phDim, "adShrOtlGetASOCompressionDimension", compressionDimOf);
}

VTX_STS_T adShrOtlSetRenegadeMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_HMEMBER_T hMember) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (VTX_STS_T sts = enterDim(f, hDim, "adShrOtlSetRenegadeMember", &dim)) return sts;
    if (VTX_STS_T sts = aggStoreGate(f, kOPGRenegade)) return sts;
    VTX_POTL_T o = f.outline();
    VTX_POTLMBR_T m = M(hMember);
    if (m) {
        if (m == dim || otlGetDim(m) != dim) return f.fail(VTX_STS_RENEGADE_INVALID);
        if (otlMbrIsSharedShare(m)) return f.fail(VTX_STS_RENEGADE_SHARED);
        if (m->MbrInfo.usLevel != 0) return f.fail(VTX_STS_RENEGADE_NOT_LEVEL0);
        if (m->ucFlags & OTL_FLAG_FORMULA) return f.fail(VTX_STS_RENEGADE_FORMULA);
    }
    const VTX_ULONG_T dimId = dimIdOfMember(o, dim);
    if (!o->renMbrs || dimId >= OTL_DIM_SLOTS) return f.fail(VTX_STS_NO_DIM_ID);
    VTX_POTLMBR_T before = o->renMbrs[dimId];
    o->renMbrs[dimId] = m;
    // The paged store keeps it in the dimension's record.
    if (VTX_STS_T sts = writeBack(o, dim)) {
        o->renMbrs[dimId] = before;
        return f.fail(sts);
    }
    f.edited(OTL_STATE_CHANGED);
    return 0;
}

VTX_STS_T adShrOtlGetRenegadeMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_HMEMBER_T *phMember) {
    if (phMember) *phMember = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = enterDim(f, hDim, "adShrOtlGetRenegadeMember", &dim)) return sts;
    if (!phMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetRenegadeMember", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    if (!isAggStore(o)) return 0;
    if (o->cOPGVersion < kOPGRenegade) return f.fail(VTX_STS_RELAXED_OLD_AGG);
    const VTX_ULONG_T dimId = dimIdOfMember(o, dim);
    if (o->renMbrs && dimId < OTL_DIM_SLOTS) *phMember = o->renMbrs[dimId];
    return 0;
}

// ---- query hints -----------------------------------------------------------------------------

VTX_STS_T adShrOtlAddQueryHint(VTX_HOUTLINE_T hOutline, VTX_USHORT_T numMembers, const VTX_HMEMBER_T *pMemberArray) {
    otl::CallFrame f(hOutline, otl::kEdit);
    if (VTX_STS_T sts = enterHints(f)) return sts;
    return storeHint(f, f.outline()->nmHints, numMembers, pMemberArray, "adShrOtlAddQueryHint");
}

VTX_STS_T adShrOtlSetQueryHint(VTX_HOUTLINE_T hOutline, VTX_USHORT_T hintNum, VTX_USHORT_T numMembers,
                               const VTX_HMEMBER_T *pMemberArray) {
    otl::CallFrame f(hOutline, otl::kEdit);
    if (VTX_STS_T sts = enterHints(f)) return sts;
    if (hintNum < 1 || hintNum > f.outline()->nmAllocHints) return f.fail(VTX_STS_BAD_SELECTOR);
    return storeHint(f, hintNum - 1u, numMembers, pMemberArray, "adShrOtlSetQueryHint");
}

VTX_STS_T adShrOtlGetQueryHint(VTX_HOUTLINE_T hOutline, VTX_USHORT_T hintNum, VTX_USHORT_T numMembers,
                               VTX_HMEMBER_T *pMemberArray) {
    if (pMemberArray)
        for (unsigned i = 0; i < numMembers; ++i) pMemberArray[i] = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pMemberArray) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetQueryHint", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    if (hintNum < 1 || hintNum > o->nmHints) return f.fail(VTX_STS_BAD_SELECTOR);
    if (numMembers < o->queryHintSize) return f.fail(VTX_STS_TEXT_TOO_LONG);
    const VTX_POTLMBR_T *slots = hintRow(o, hintNum - 1u);
    for (unsigned i = 0; i < o->queryHintSize; ++i) pMemberArray[i] = slots[i];
    return 0;
}

VTX_STS_T adShrOtlDeleteQueryHint(VTX_HOUTLINE_T hOutline, VTX_USHORT_T hintNum) {
    otl::CallFrame f(hOutline, otl::kEdit);
    if (VTX_STS_T sts = enterHints(f)) return sts;
    VTX_POTL_T o = f.outline();
    if (hintNum < 1 || hintNum > o->nmHints) return f.fail(VTX_STS_BAD_SELECTOR);
    // The rows behind move up; the row freed at the end stays allocated.
    const size_t width = o->queryHintSize;
    VTX_POTLMBR_T *row = hintRow(o, hintNum - 1u);
    std::memmove((void *)row, row + width, sizeof *row * width * (o->nmHints - hintNum));
    std::memset((void *)hintRow(o, o->nmHints - 1u), 0, sizeof *row * width);
    o->nmHints--;
    f.edited(OTL_STATE_CHANGED);
    return 0;
}

VTX_STS_T adShrOtlGetNumQueryHints(VTX_HOUTLINE_T hOutline, VTX_USHORT_T *pusNumHints) {
    return readOutlineSetting(hOutline, pusNumHints, "adShrOtlGetNumQueryHints",
                              [](VTX_POTL_T o) { return o->nmHints; });
}

VTX_STS_T adShrOtlGetQueryHintSize(VTX_HOUTLINE_T hOutline, VTX_USHORT_T *pusHintSize) {
    return readOutlineSetting(hOutline, pusHintSize, "adShrOtlGetQueryHintSize",
                              [](VTX_POTL_T o) { return o->queryHintSize; });
}

} // extern "C"
