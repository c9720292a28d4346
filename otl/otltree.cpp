// Member editing: the splicing of records into the tree with their
// generations and levels, the dimension table, the add, delete, move and
// rename of members, member settings, marks, spare (hidden) children and the
// copy of subtrees.
//
// Every edit runs its checks, and makes every allocation it can fail on,
// before it changes anything: a refused or failed edit leaves the tree, the
// counts, the flags and the name index as they were.  The few steps that
// can still fail after a change (calls into the transaction list and the
// paged store) are undone step by step.
#include "otl.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

// Calls whose part arrives later are weak definitions: the part that owns a
// call replaces it by defining it.
#define OTL_WEAK __attribute__((weak))

namespace {

// Client versions at which behaviour of the edits changes.
constexpr VTX_LONG_T kVerRecord5 = 0x50000;
constexpr VTX_LONG_T kVerAttrDims = 0x50500;
constexpr VTX_LONG_T kVerDimName = 0x50700;
constexpr VTX_LONG_T kVerRelDesc = 0x64fff;    // above
constexpr VTX_LONG_T kVerHierType = 463359;    // above
constexpr VTX_LONG_T kVerCountSiblings = 413952;
constexpr VTX_LONG_T kVerFlow = 0x92fff;       // above

constexpr VTX_ULONG_T kWarningBits = 0x08000000u | 0x10000000u | 0x20000000u;

inline VTX_POTLMBRLARGE_T L(VTX_POTLMBR_T p) { return OTL_LARGE(p); }
inline bool isLarge(VTX_POTLMBR_T p) { return p && !OTL_IS_SMALL(p); }
inline VTX_UCHAR_T categoryOf(VTX_POTLMBR_T p) { return isLarge(p) ? L(p)->MbrInfo.usCategory : 0; }
inline bool isDimRecord(VTX_POTLMBR_T p) { return p && p->MbrInfo.usGen == 1; }
inline bool isRoot(VTX_POTLMBR_T p) { return p && p->MbrInfo.usGen == 0; }
inline bool isAttrCategory(VTX_UCHAR_T c) { return c == VTX_CAT_ATTRIBUTE || c == VTX_CAT_ATTRCALC; }
inline VTX_USHORT_T consolidationOf(VTX_POTLMBR_T p) { return p->MbrInfo.ucInfoFlags & OTL_INFO_CONSOL; }
// A member that holds data of its own: not shared and not label-only.
inline bool isRealShare(VTX_USHORT_T s) { return s != VTX_SHARE_LABEL && !OTL_IS_SHARE(s); }
inline VTX_LONG_T clientVersion(VTX_POTL_T o) { return o->pNetCtx ? o->pNetCtx->lClientVersion : 0; }

// Whether pAnc is pItem or one of its ancestors.
bool isAncestorOrSelf(VTX_POTLMBR_T pAnc, VTX_POTLMBR_T pItem) {
    for (VTX_POTLMBR_T p = pItem; p; p = p->pParent)
        if (p == pAnc) return true;
    return false;
}

// Whether a handle belongs to this outline: its chain of parents ends at
// the outline's root.  A record of another outline is refused, not edited.
bool inOutline(VTX_POTL_T o, VTX_POTLMBR_T p) {
    if (!p) return false;
    while (p->pParent) p = p->pParent;
    return p == o->pHeadItem;
}

// Index of a dimension among the root's children (0-based).
VTX_ULONG_T dimPosition(VTX_POTLMBR_T pDim) {
    VTX_ULONG_T n = 0;
    for (VTX_POTLMBR_T p = pDim->pPrevSibling; p; p = p->pPrevSibling) ++n;
    return n;
}

// Dimension identifier of a member, 0 when it has none.
VTX_ULONG_T dimIdOf(VTX_POTL_T o, VTX_POTLMBR_T p) {
    VTX_POTLMBR_T d = otlGetDim(p);
    if (!d || d->ulDimno == 0 || d->ulDimno == OTL_ROOT_DIMNO || !o->dimIds) return 0;
    return o->dimIds[d->ulDimno - 1];
}

// Deepest generation in the subtree of p, counted from p (0 for a leaf).
VTX_ULONG_T subtreeDepth(VTX_POTLMBR_T p) {
    VTX_ULONG_T best = 0;
    VTX_UCHAR_T base = p->MbrInfo.usGen;
    for (VTX_POTLMBR_T q = p; q; q = otlNavtrdn(q, p))
        best = std::max<VTX_ULONG_T>(best, (VTX_ULONG_T)(q->MbrInfo.usGen - base));
    return best;
}

// Sets the generation of one record and of its subtree.
void setGenSubtree(VTX_POTLMBR_T p, VTX_USHORT_T usGen) {
    p->MbrInfo.usGen = (VTX_UCHAR_T)usGen;
    if (p->pChild) otlResetGens(p->pChild, (VTX_USHORT_T)(usGen + 1));
}

// A growable array whose memory comes from the outline's context, so that
// an edit's scratch space fails the way the edit's records do.
template <class T>
class CtxArray {
public:
    explicit CtxArray(vTX_PNETCTX_T ctx) : ctx_(ctx) {}
    CtxArray(const CtxArray &) = delete;
    CtxArray &operator=(const CtxArray &) = delete;
    ~CtxArray() { (void)otlFreeMem(ctx_, data_); }  // scratch space, nothing to report
    [[nodiscard]] VTX_STS_T push(const T &v) {
        if (n_ == cap_) {
            size_t ncap = cap_ ? cap_ * 2 : 16;
            void *p = nullptr;
            VTX_STS_T sts = data_ ? otlReallocEx(ctx_, data_, ncap * sizeof(T), &p)
                                  : otlAlloc(ctx_, ncap * sizeof(T), &p);
            if (sts) return sts;
            data_ = static_cast<T *>(p);
            cap_ = ncap;
        }
        data_[n_++] = v;
        return 0;
    }
    size_t size() const { return n_; }
    T &operator[](size_t i) { return data_[i]; }
    T *begin() { return data_; }
    T *end() { return data_ + n_; }

private:
    vTX_PNETCTX_T ctx_;
    T *data_ = nullptr;
    size_t n_ = 0, cap_ = 0;
};

// An owned text from the context that is released unless handed over.
class CtxString {
public:
    explicit CtxString(vTX_PNETCTX_T ctx) : ctx_(ctx) {}
    CtxString(const CtxString &) = delete;
    CtxString &operator=(const CtxString &) = delete;
    ~CtxString() { (void)otlFreeMem(ctx_, p_); }  // only reached when not handed over
    [[nodiscard]] VTX_STS_T copy(const char *s) {
        size_t n = std::strlen(s) + 1;
        VTX_STS_T sts = otlAlloc(ctx_, n, &p_);
        if (!sts) std::memcpy(p_, s, n);
        return sts;
    }
    char *get() const { return p_; }
    char *release() { char *p = p_; p_ = nullptr; return p; }

private:
    vTX_PNETCTX_T ctx_;
    char *p_ = nullptr;
};

} // namespace

extern "C" {

// ---- generations and levels ----------------------------------------------------

void otlResetGens(VTX_POTLMBR_T pItem, VTX_USHORT_T usGen) {
    if (!pItem) return;
    VTX_POTLMBR_T parent = pItem->pParent;
    VTX_POTLMBR_T last = nullptr;
    for (VTX_POTLMBR_T p = pItem; p; p = p->pSibling) {
        p->MbrInfo.usGen = (VTX_UCHAR_T)usGen;
        if (!OTL_IS_HIDDEN(p)) last = p;
        if (p->pChild) otlResetGens(p->pChild, (VTX_USHORT_T)(usGen + 1));
    }
    if (parent) {
        // Started in the middle of the chain and found only hidden records:
        // the last visible child stands before pItem.
        if (!last)
            for (VTX_POTLMBR_T p = pItem->pPrevSibling; p && !last; p = p->pPrevSibling)
                if (!OTL_IS_HIDDEN(p)) last = p;
        parent->MbrInfo.pLastSibling = last;
    }
}

VTX_USHORT_T otlGetMemberLevel(VTX_POTLMBR_T pItem) {
    if (!pItem || !pItem->pChild) return 0;
    VTX_USHORT_T best = 0;
    for (VTX_POTLMBR_T c = pItem->pChild; c; c = c->pSibling) best = std::max<VTX_USHORT_T>(best, c->MbrInfo.usLevel);
    return (VTX_USHORT_T)(best + 1);
}

VTX_USHORT_T otlGetMemberLevelAfterChildRemoved(VTX_POTLMBR_T pItem) {
    if (!pItem || !pItem->pChild) return 0;
    VTX_USHORT_T best = 0;
    for (VTX_POTLMBR_T c = pItem->pChild; c; c = c->pSibling) {
        // One child one level below is enough for the level to stand.
        if (pItem->MbrInfo.usLevel > 0 && c->MbrInfo.usLevel == pItem->MbrInfo.usLevel - 1)
            return pItem->MbrInfo.usLevel;
        best = std::max<VTX_USHORT_T>(best, c->MbrInfo.usLevel);
    }
    return (VTX_USHORT_T)(best + 1);
}

void otlSetParentLevels(VTX_POTLMBR_T pItem) {
    if (!pItem) return;
    for (VTX_POTLMBR_T c = pItem, p = pItem->pParent; p; c = p, p = p->pParent) {
        if (p->MbrInfo.usLevel > c->MbrInfo.usLevel) break;
        p->MbrInfo.usLevel = (VTX_UCHAR_T)(c->MbrInfo.usLevel + 1);
    }
}

// ---- splicing -----------------------------------------------------------------

void otlAddChildItem(VTX_POTLMBR_T pParent, VTX_POTLMBR_T pChild, VTX_BOOL_T fSetLevels) {
    if (!pParent || !pChild) return;
    pChild->pParent = pParent;
    pChild->pPrevSibling = nullptr;
    pChild->pSibling = pParent->pChild;
    if (pParent->pChild) pParent->pChild->pPrevSibling = pChild;
    pParent->pChild = pChild;
    if (!pParent->MbrInfo.pLastSibling && !OTL_IS_HIDDEN(pChild)) pParent->MbrInfo.pLastSibling = pChild;
    pParent->ulSiblingCount++;
    // The following siblings already stand at this generation; only the new
    // record and what hangs below it need setting.
    setGenSubtree(pChild, (VTX_USHORT_T)(pParent->MbrInfo.usGen + 1));
    if (fSetLevels) otlSetParentLevels(pChild);
}

static void spliceBehind(VTX_POTLMBR_T pChildPtr, VTX_POTLMBR_T pChild) {
    VTX_POTLMBR_T parent = pChildPtr->pParent;
    pChild->pParent = parent;
    pChild->pPrevSibling = pChildPtr;
    pChild->pSibling = pChildPtr->pSibling;
    if (pChildPtr->pSibling) pChildPtr->pSibling->pPrevSibling = pChild;
    pChildPtr->pSibling = pChild;
    if (parent) parent->ulSiblingCount++;
}

void otlAddSiblingItem(VTX_POTLMBR_T pChildPtr, VTX_POTLMBR_T pChild, VTX_BOOL_T fSetLevels) {
    if (!pChildPtr || !pChild) return;
    spliceBehind(pChildPtr, pChild);
    otlResetGens(pChild, pChildPtr->MbrInfo.usGen);
    if (fSetLevels) otlSetParentLevels(pChild);
}

void otlAddSiblingItemEx(VTX_POTL_T, VTX_POTLMBR_T pChildPtr, VTX_POTLMBR_T pChild, VTX_BOOL_T fSetLevels) {
    if (!pChildPtr || !pChild) return;
    spliceBehind(pChildPtr, pChild);
    setGenSubtree(pChild, pChildPtr->MbrInfo.usGen);
    // Hidden children stand last, so a visible record put behind the last
    // visible child is the new last one; nothing else can change it.  This
    // keeps an append O(1) however long the child list is.
    VTX_POTLMBR_T parent = pChild->pParent;
    if (parent && !OTL_IS_HIDDEN(pChild) &&
        (parent->MbrInfo.pLastSibling == pChildPtr || !parent->MbrInfo.pLastSibling))
        parent->MbrInfo.pLastSibling = pChild;
    if (fSetLevels) otlSetParentLevels(pChild);
}

VTX_STS_T otlUnattachItem(vTX_PNETCTX_T pNetCtx, VTX_POTLMBR_T pMbr, VTX_BOOL_T fSetLevels) {
    if (!pMbr) return VTX_STS_NULL_ARG;
    VTX_POTLMBR_T parent = pMbr->pParent;
    VTX_POTLMBR_T prev = pMbr->pPrevSibling, next = pMbr->pSibling;
    // A leaf that leaves siblings behind cannot change any level.
    if (!pMbr->pChild && (prev || next)) fSetLevels = 0;
    if (prev) prev->pSibling = next;
    else if (parent) parent->pChild = next;
    if (next) next->pPrevSibling = prev;
    if (parent) {
        if (parent->MbrInfo.pLastSibling == pMbr && !OTL_IS_HIDDEN(pMbr)) parent->MbrInfo.pLastSibling = prev;
        parent->ulSiblingCount--;
    }
    pMbr->pSibling = pMbr->pParent = pMbr->pPrevSibling = nullptr;
    if (!fSetLevels) return 0;
    VTX_STS_T sts = 0;
    for (VTX_POTLMBR_T p = parent; p; p = p->pParent) {
        VTX_USHORT_T lv = otlGetMemberLevelAfterChildRemoved(p);
        if (lv == p->MbrInfo.usLevel) break;
        p->MbrInfo.usLevel = (VTX_UCHAR_T)lv;
        // An attribute member that became a leaf holds a value again, of the
        // type its dimension gives.
        if (lv == 0 && isLarge(p) && p->MbrInfo.usGen > 1 && L(p)->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE) {
            VTX_POTLMBR_T dim = otlGetDim(p);
            VTX_USHORT_T type = isLarge(dim) ? L(dim)->MbrInfo.Attribute.usDataType : 0;
            VTX_ATTRIBUTEVALUE_T &a = L(p)->MbrInfo.Attribute;
            if (type == VTX_ATTR_STRING) {
                char *copy = nullptr;
                VTX_STS_T s = otlStrdup(pNetCtx, p->MbrInfo.szMember, &copy);
                if (s) {
                    if (!sts) sts = s;
                    continue;
                }
                if (a.usDataType == VTX_ATTR_STRING) (void)otlFreeMem(pNetCtx, a.value.pszValue);  // replaced
                a.value.raw = 0;
                a.value.pszValue = copy;
            } else if (a.usDataType == VTX_ATTR_STRING) {
                (void)otlFreeMem(pNetCtx, a.value.pszValue);  // the value changes type
                a.value.raw = 0;
            }
            a.usDataType = type;
        }
    }
    return sts;
}

VTX_BOOL_T otlBecomingADimension(VTX_POTLMBR_T pDest, VTX_USHORT_T usMoveType) {
    if (!pDest) return 0;
    if (usMoveType == OTL_MOVE_CHILD) return pDest->MbrInfo.usGen == 0;
    return pDest->MbrInfo.usGen == 1;
}

VTX_STS_T otlMoveItem(vTX_PNETCTX_T pNetCtx, VTX_POTLMBR_T pDest, VTX_POTLMBR_T pSource, VTX_USHORT_T usMoveType) {
    if (!pDest || !pSource) return VTX_STS_NULL_ARG;
    VTX_STS_T sts = otlUnattachItem(pNetCtx, pSource, 1);
    if (usMoveType == OTL_MOVE_CHILD) otlAddChildItem(pDest, pSource, 1);
    else otlAddSiblingItemEx(nullptr, pDest, pSource, 1);
    if (pSource->MbrInfo.usGen == 1 && otlMbrIsSharedShare(pSource)) otlSetShare(pSource, VTX_SHARE_STORE);
    return sts;
}

// ---- dimension table ------------------------------------------------------------

// Sets ulDimno of every record of a dimension.
static void setDimnoSubtree(VTX_POTLMBR_T pDim, VTX_UCHAR_T dimno) {
    for (VTX_POTLMBR_T p = pDim; p; p = otlNavtrdn(p, pDim)) p->ulDimno = dimno;
}

VTX_STS_T otlBuildDimTableDimMap(VTX_POTL_T pOutline) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = pOutline->pNetCtx;
    VTX_ULONG_T n = 0;
    if (pOutline->pHeadItem)
        for (VTX_POTLMBR_T d = pOutline->pHeadItem->pChild; d; d = d->pSibling) ++n;
    if (n != pOutline->DimTableSize || !pOutline->DimTable) {
        VTX_POTLMBRLARGE_T *t = nullptr;
        if (n) {
            VTX_STS_T sts = otlAlloc(ctx, n * sizeof *t, &t);
            if (sts) return sts;
        }
        (void)otlFreeMem(ctx, pOutline->DimTable);  // replaced by the new table
        pOutline->DimTable = t;
    }
    if (!pOutline->Counts.pDimensionMaps && n) {
        VTX_STS_T sts = otlAlloc(ctx, n * sizeof(OTL_DIM_MAP), &pOutline->Counts.pDimensionMaps);
        if (sts) return sts;
    }
    VTX_ULONG_T i = 0;
    if (pOutline->pHeadItem)
        for (VTX_POTLMBR_T d = pOutline->pHeadItem->pChild; d; d = d->pSibling) pOutline->DimTable[i++] = L(d);
    pOutline->DimTableSize = n;
    return 0;
}

VTX_STS_T otlAddDimInDimTableDimMap(VTX_POTL_T pOutline, VTX_POTLMBR_T pDim) {
    if (!pOutline || !pDim) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = pOutline->pNetCtx;
    const VTX_ULONG_T n = pOutline->DimTableSize;
    if (n >= OTL_MAX_DIMS) return VTX_STS_TOO_MANY_DIMS;
    // Grow both arrays before anything changes.  A grown block that is not
    // used yet is harmless: the sizes still say n.
    void *t = nullptr, *m = nullptr;
    VTX_STS_T sts = pOutline->DimTable ? otlReallocEx(ctx, pOutline->DimTable, (n + 1) * sizeof(VTX_POTLMBRLARGE_T), &t)
                                       : otlAlloc(ctx, (n + 1) * sizeof(VTX_POTLMBRLARGE_T), &t);
    if (sts) return sts;
    pOutline->DimTable = static_cast<VTX_POTLMBRLARGE_T *>(t);
    sts = pOutline->Counts.pDimensionMaps
              ? otlReallocEx(ctx, pOutline->Counts.pDimensionMaps, (n + 1) * sizeof(OTL_DIM_MAP), &m)
              : otlAlloc(ctx, (n + 1) * sizeof(OTL_DIM_MAP), &m);
    if (sts) return sts;
    pOutline->Counts.pDimensionMaps = static_cast<OTL_PDIM_MAP>(m);

    // The dimension takes the number of its place; those behind move up one.
    const VTX_ULONG_T pos = std::min(dimPosition(pDim), n);
    std::memmove(&pOutline->DimTable[pos + 1], &pOutline->DimTable[pos], (n - pos) * sizeof(VTX_POTLMBRLARGE_T));
    pOutline->DimTable[pos] = L(pDim);
    // The maps of the other dimensions stay: they hold the counts the edits
    // keep until the next numbering rebuilds them.
    std::memmove(&pOutline->Counts.pDimensionMaps[pos + 1], &pOutline->Counts.pDimensionMaps[pos],
                 (n - pos) * sizeof(OTL_DIM_MAP));
    std::memset(&pOutline->Counts.pDimensionMaps[pos], 0, sizeof(OTL_DIM_MAP));
    for (VTX_ULONG_T *arr : {pOutline->dimIds, pOutline->nextMbrIds, pOutline->nextPersistMbrIds})
        std::memmove(&arr[pos + 1], &arr[pos], (n - pos) * sizeof(VTX_ULONG_T));
    pOutline->DimTableSize = n + 1;

    // A new identifier, above every identifier in use.
    VTX_ULONG_T id = pOutline->nextDimId + 1;
    if (id < pOutline->DimTableSize) id = pOutline->DimTableSize;
    for (VTX_ULONG_T i = 0; i <= n; ++i)
        if (i != pos && pOutline->dimIds[i] >= id) id = pOutline->dimIds[i] + 1;
    pOutline->nextDimId = id;
    pOutline->dimIds[pos] = id;
    pOutline->nextMbrIds[pos] = 1;
    pOutline->nextPersistMbrIds[pos] = 1;
    setDimnoSubtree(pDim, (VTX_UCHAR_T)(pos + 1));
    for (VTX_ULONG_T i = pos + 1; i <= n; ++i) setDimnoSubtree((VTX_POTLMBR_T)pOutline->DimTable[i], (VTX_UCHAR_T)(i + 1));
    return 0;
}

void otlRemoveDimFromDimTable(VTX_POTL_T pOutline, VTX_POTLMBR_T pDim) {
    if (!pOutline || !pDim || !pOutline->DimTable) return;
    const VTX_ULONG_T n = pOutline->DimTableSize;
    VTX_ULONG_T pos = n;
    for (VTX_ULONG_T i = 0; i < n; ++i)
        if (pOutline->DimTable[i] == L(pDim)) pos = i;
    if (pos == n) return;
    std::memmove(&pOutline->DimTable[pos], &pOutline->DimTable[pos + 1], (n - pos - 1) * sizeof(VTX_POTLMBRLARGE_T));
    if (pOutline->Counts.pDimensionMaps)
        std::memmove(&pOutline->Counts.pDimensionMaps[pos], &pOutline->Counts.pDimensionMaps[pos + 1],
                     (n - pos - 1) * sizeof(OTL_DIM_MAP));
    for (VTX_ULONG_T *arr : {pOutline->dimIds, pOutline->nextMbrIds, pOutline->nextPersistMbrIds}) {
        std::memmove(&arr[pos], &arr[pos + 1], (n - pos - 1) * sizeof(VTX_ULONG_T));
        arr[n - 1] = 0;
    }
    pOutline->nextMbrIds[n - 1] = 1;
    pOutline->nextPersistMbrIds[n - 1] = 1;
    pOutline->DimTableSize = n - 1;
    for (VTX_ULONG_T i = pos; i < n - 1; ++i) setDimnoSubtree((VTX_POTLMBR_T)pOutline->DimTable[i], (VTX_UCHAR_T)(i + 1));
}

void otlReorderDimTable(VTX_POTL_T pOutline) {
    if (!pOutline || !pOutline->pHeadItem || !pOutline->DimTable) return;
    const VTX_ULONG_T n = pOutline->DimTableSize;
    // The arrays kept by dimension number travel with their dimensions.
    VTX_ULONG_T ids[OTL_DIM_SLOTS], nextIds[OTL_DIM_SLOTS], nextPersist[OTL_DIM_SLOTS];
    OTL_DIM_MAP maps[OTL_DIM_SLOTS];
    VTX_POTLMBRLARGE_T dims[OTL_DIM_SLOTS];
    VTX_ULONG_T i = 0;
    for (VTX_POTLMBR_T d = pOutline->pHeadItem->pChild; d && i < n; d = d->pSibling, ++i) {
        VTX_ULONG_T old = d->ulDimno - 1;
        dims[i] = L(d);
        ids[i] = pOutline->dimIds[old];
        nextIds[i] = pOutline->nextMbrIds[old];
        nextPersist[i] = pOutline->nextPersistMbrIds[old];
        if (pOutline->Counts.pDimensionMaps) maps[i] = pOutline->Counts.pDimensionMaps[old];
    }
    for (i = 0; i < n; ++i) {
        pOutline->DimTable[i] = dims[i];
        pOutline->dimIds[i] = ids[i];
        pOutline->nextMbrIds[i] = nextIds[i];
        pOutline->nextPersistMbrIds[i] = nextPersist[i];
        if (pOutline->Counts.pDimensionMaps) pOutline->Counts.pDimensionMaps[i] = maps[i];
        if (dims[i]->ulDimno != i + 1) setDimnoSubtree((VTX_POTLMBR_T)dims[i], (VTX_UCHAR_T)(i + 1));
    }
}

// ---- counts kept by add and delete ----------------------------------------------

VTX_STS_T otlUpdateAttrInfoForAdd(VTX_POTL_T pOutline, VTX_POTLMBR_T pMbr) {
    if (!pOutline || !pMbr) return VTX_STS_NULL_ARG;
    const VTX_UCHAR_T cat = categoryOf(pMbr);
    if (isDimRecord(pMbr)) {
        if (pOutline->Counts.ulDimensions >= OTL_MAX_DIMS) return VTX_STS_TOO_MANY_DIMS;
        VTX_STS_T sts = otlAddDimInDimTableDimMap(pOutline, pMbr);
        if (sts) return sts;
        pOutline->Counts.ulDimensions++;
        if (!isAttrCategory(cat)) pOutline->Counts.ulStandardDims++;
    }
    if (isLarge(pMbr)) {
        if (cat == VTX_CAT_ATTRIBUTE) L(pMbr)->usAttrCode = 1;
        else if (cat == VTX_CAT_ATTRCALC) L(pMbr)->usAttrCode = 4;
    }
    VTX_POTLMBR_T dim = otlGetDim(pMbr);
    if (dim) {
        pMbr->ulDimno = dim->ulDimno;
        // Attribute work marks the dimension it touched.
        if (isAttrCategory(cat)) dim->ucFlags |= OTL_FLAG_DIMCHANGED;
    }
    pOutline->Counts.ulMembers++;
    const bool real = isRealShare(otlGetShare(pMbr));
    if (real) pOutline->Counts.ulRealMembers++;
    if (pOutline->Counts.pDimensionMaps && pMbr->ulDimno >= 1 && pMbr->ulDimno <= pOutline->DimTableSize) {
        OTL_DIM_MAP &m = pOutline->Counts.pDimensionMaps[pMbr->ulDimno - 1];
        m.ulTotalMembers++;
        if (real) m.ulMembers++;
    }
    return 0;
}

static void decrementCounts(VTX_POTL_T pOutline, VTX_POTLMBR_T p, bool real) {
    OTL_COUNTS &c = pOutline->Counts;
    if (c.ulMembers) c.ulMembers--;
    if (real && c.ulRealMembers) c.ulRealMembers--;
    if (c.pDimensionMaps && p->ulDimno >= 1 && p->ulDimno <= pOutline->DimTableSize) {
        OTL_DIM_MAP &m = c.pDimensionMaps[p->ulDimno - 1];
        if (m.ulTotalMembers) m.ulTotalMembers--;
        if (real && m.ulMembers) m.ulMembers--;
    }
}

static void removeDimCounts(VTX_POTL_T pOutline, VTX_POTLMBR_T pDim) {
    OTL_COUNTS &c = pOutline->Counts;
    if (c.ulDimensions) c.ulDimensions--;
    if (!isAttrCategory(categoryOf(pDim)) && c.ulStandardDims) c.ulStandardDims--;
    otlRemoveDimFromDimTable(pOutline, pDim);
}

void otlRollbackAttrInfoUpdatedForAdd(VTX_POTL_T pOutline, VTX_POTLMBR_T pMbr) {
    if (!pOutline || !pMbr) return;
    decrementCounts(pOutline, pMbr, isRealShare(otlGetShare(pMbr)));
    if (isLarge(pMbr) && isAttrCategory(categoryOf(pMbr))) L(pMbr)->usAttrCode = 0;
    if (isDimRecord(pMbr)) removeDimCounts(pOutline, pMbr);
}

VTX_STS_T otlUpdateAttrInfoForDelete(VTX_POTL_T pOutline, VTX_POTLMBR_T pMbr) {
    if (!pOutline || !pMbr) return VTX_STS_NULL_ARG;
    for (VTX_POTLMBR_T p = pMbr; p; p = otlNavtrdn(p, pMbr)) decrementCounts(pOutline, p, isRealShare(otlGetShare(p)));
    if (isDimRecord(pMbr)) removeDimCounts(pOutline, pMbr);
    return 0;
}

} // extern "C"

// ---- member settings applied to a record ----------------------------------------

namespace {

// Strings a record gave up while new settings were applied; they are freed
// once the edit stands, or put back when it is undone.
struct OldStrings {
    VTX_STR_T szCurMember = nullptr;
    VTX_STR_T szComment = nullptr;
    bool taken = false;
};

void freeOldStrings(vTX_PNETCTX_T ctx, OldStrings &o) {
    (void)otlFreeMem(ctx, o.szCurMember);  // replaced strings; nothing to report
    (void)otlFreeMem(ctx, o.szComment);
    o = OldStrings{};
}

// Applies pInfo to a large record or working copy.  Every string is copied
// before the record changes, so a failure leaves it as it was.  With pOld
// the replaced strings are handed over instead of freed.
VTX_STS_T applyMemberInfo(VTX_POTL_T o, vTX_PNETCTX_T ctx, VTX_POTLMBRLARGE_T pItem, const vtx_mbrinfo_t *pInfo,
                          VTX_ULONG_T ulVersion, VTX_USHORT_T usVerifyType, VTX_BOOL_T bTemporary,
                          OldStrings *pOld) {
    VTX_POTLMBR_T item = (VTX_POTLMBR_T)pItem;
    VTX_POTLMBR_T dim = otlGetDim(item);
    if (!dim) return VTX_STS_NO_DIMENSION;
    const bool isDim = item->MbrInfo.usGen == 1;
    const VTX_LONG_T ver = (VTX_LONG_T)ulVersion;

    // Dimension independence for varying attributes.
    bool setIndep = false, clearIndep = false;
    if (isDim) {
        const bool wantIndep = pInfo->fIndependentDim != 0;
        if (wantIndep && !o->fEnableSlowlyChgAttrs) return VTX_STS_INDEP_NO_VARYING;
        if (o->fEnableSlowlyChgAttrs) {
            if (!wantIndep && (pItem->ucDimFlags & OTL_DIMF_INDEP)) {
                VTX_STS_T sts = otlCheckIndepAssocs(o, item);
                if (sts) return sts;
                clearIndep = true;
            } else if (wantIndep) {
                setIndep = true;
            }
        }
    }

    // Category and storage: a dimension takes them; attribute members keep
    // theirs; every other member has none.
    VTX_UCHAR_T category = pItem->MbrInfo.usCategory, storage = pItem->MbrInfo.usStorage,
                storageCat = pItem->MbrInfo.usStorageCategory;
    if (isDim) {
        category = (VTX_UCHAR_T)pInfo->usCategory;
        storage = (VTX_UCHAR_T)pInfo->usStorage;
        storageCat = (VTX_UCHAR_T)pInfo->usStorageCategory;
    } else if (!isAttrCategory(category)) {
        category = storage = storageCat = 0;
    }
    const VTX_UCHAR_T dimCategory = isDim ? category : categoryOf(dim);

    // New strings first.
    VTX_STR_T cur = nullptr, comment = nullptr;
    const bool wantCur = pInfo->szCurMember[0] &&
                         (dimCategory == VTX_CAT_COUNTRY || dimCategory == VTX_CAT_ACCOUNTS);
    const bool wantComment = ver >= kVerRecord5 && pInfo->szComment[0];
    if (bTemporary) {
        if (wantCur) cur = const_cast<char *>(pInfo->szCurMember);
        if (wantComment) comment = const_cast<char *>(pInfo->szComment);
    } else {
        VTX_STS_T sts = 0;
        if (wantCur) {
            char buf[VTX_MBRNAME_LEN];
            std::memcpy(buf, pInfo->szCurMember, sizeof buf);
            buf[sizeof buf - 1] = 0;
            sts = otlStrdup(ctx, buf, &cur);
        }
        if (!sts && wantComment) {
            char buf[VTX_MBRCOMMENT_LEN];
            std::memcpy(buf, pInfo->szComment, sizeof buf);
            buf[sizeof buf - 1] = 0;
            sts = otlStrdup(ctx, buf, &comment);
        }
        if (sts) {
            (void)otlFreeMem(ctx, cur);  // the copy failed; give back what was made
            (void)otlFreeMem(ctx, comment);
            return sts;
        }
    }

    // From here nothing fails.
    if (setIndep) pItem->ucDimFlags |= OTL_DIMF_INDEP;
    if (clearIndep) {
        pItem->ucDimFlags &= (VTX_UCHAR_T)~OTL_DIMF_INDEP;
        for (VTX_POTLMBR_T p = item; p; p = otlNavtrdn(p, item))
            p->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~(OTL_INFO_INDEPMBR | OTL_INFO_INDEPDIMMBR);
    }
    pItem->MbrInfo.usCategory = category;
    pItem->MbrInfo.usStorage = storage;
    pItem->MbrInfo.usStorageCategory = storageCat;
    if (isDim && usVerifyType == OTL_VERIFY_QUIET) pItem->MbrInfo.Attribute.usDataType = pInfo->Attribute.usDataType;

    VTX_USHORT_T flags = pItem->MbrInfo.ucInfoFlags;
    flags = (VTX_USHORT_T)((flags & ~OTL_INFO_CONSOL) | (pInfo->usConsolidation & OTL_INFO_CONSOL));
    pItem->MbrInfo.fTwoPass = pInfo->fTwoPass ? 1 : 0;

    // The currency member and the comment are replaced as a whole.
    OldStrings old;
    old.szCurMember = pItem->MbrInfo.szCurMember;
    old.szComment = pItem->MbrInfo.szComment;
    pItem->MbrInfo.szCurMember = nullptr;
    if (ver >= kVerRecord5) pItem->MbrInfo.szComment = nullptr;
    else old.szComment = nullptr;

    pItem->MbrInfo.usShare = (VTX_UCHAR_T)pInfo->usShare;
    if (dimCategory == VTX_CAT_ACCOUNTS) {
        pItem->MbrInfo.usConversion = pInfo->usConversion;
        pItem->MbrInfo.usTimeBalance = pInfo->usTimeBalance;
        pItem->MbrInfo.usSkip = pInfo->usSkip;
    } else {
        pItem->MbrInfo.usConversion = 0;
        pItem->MbrInfo.usTimeBalance = 0;
        pItem->MbrInfo.usSkip = 0;
    }
    pItem->MbrInfo.szCurMember = cur;
    pItem->MbrInfo.fExpense = pInfo->fExpense ? 1 : 0;
    if (ver >= kVerRecord5) pItem->MbrInfo.szComment = comment;

    // Relational and hybrid flags live on leaves and dimensions only.
    if (ver > kVerRelDesc) {
        flags &= (VTX_USHORT_T)~(OTL_INFO_RELDESC | OTL_INFO_HAENABLED);
        if (isDim || item->MbrInfo.usLevel == 0) {
            if (pInfo->fHasRelDesc) flags |= OTL_INFO_RELDESC;
            if (pInfo->fHasHAEnabled) flags |= OTL_INFO_HAENABLED;
        }
    }
    if (ver > kVerHierType) {
        const VTX_UCHAR_T ht = pInfo->ucHierarchyType;
        if (isDim) {
            if (ht == OTL_HIER_ENABLED) {
                pItem->MbrInfo.ucHierarchyType = OTL_HIER_ENABLED;
                pItem->MbrInfo.usShare = VTX_SHARE_LABEL;
                flags &= (VTX_USHORT_T)~OTL_INFO_DYNHIER;
            } else if (ht == OTL_HIER_DYNAMIC) {
                pItem->MbrInfo.ucHierarchyType = ht;
                flags |= OTL_INFO_DYNHIER;
            } else if (ht == OTL_HIER_STORED) {
                pItem->MbrInfo.ucHierarchyType = ht;
                flags &= (VTX_USHORT_T)~OTL_INFO_DYNHIER;
            }
        } else if (item->MbrInfo.usGen == 2 && isLarge(dim) && L(dim)->MbrInfo.ucHierarchyType == OTL_HIER_ENABLED) {
            if (ht == OTL_HIER_DYNAMIC) flags |= OTL_INFO_DYNHIER;
            else if (ht == OTL_HIER_STORED) flags &= (VTX_USHORT_T)~OTL_INFO_DYNHIER;
        }
    }
    if (isDim) item->ucDimSolveOrder = pInfo->ucDimSolveOrder;
    item->ucSolveOrder = pInfo->ucSolveOrder;
    if (ver > kVerFlow) {
        item->ucFlags2 = (VTX_UCHAR_T)(item->ucFlags2 & ~OTL_FLAG2_FLOW);
        if (pInfo->fFlow) item->ucFlags2 |= OTL_FLAG2_FLOW;
    }
    if (o->cOPGVersion == 71 || o->cOPGVersion < 2) {
        flags &= (VTX_USHORT_T)~OTL_INFO_SOLVEORDER;
        if (item->ucSolveOrder) flags |= OTL_INFO_SOLVEORDER;
    }
    if (o->cOPGVersion > 81) {
        item->ucFlags2 = (VTX_UCHAR_T)(item->ucFlags2 & ~OTL_FLAG2_EXPENSE);
        if (pItem->MbrInfo.fExpense) item->ucFlags2 |= OTL_FLAG2_EXPENSE;
    }
    pItem->MbrInfo.ucInfoFlags = flags;

    if (bTemporary) {
        // The strings of a temporary record were never its own.
        old = OldStrings{};
    }
    if (pOld) {
        *pOld = old;
        pOld->taken = true;
    } else {
        freeOldStrings(ctx, old);
    }
    return 0;
}

} // namespace

extern "C" VTX_STS_T otlSetMemberInfoLarge(VTX_POTL_T pOutline, vTX_PNETCTX_T pNetCtx, VTX_POTLMBRLARGE_T pItem,
                                           const vtx_mbrinfo_t *pInfo, VTX_ULONG_T ulVersion,
                                           VTX_USHORT_T usVerifyType, VTX_BOOL_T bTemporaryItem) {
    if (!pOutline || !pItem || !pInfo) return VTX_STS_NULL_ARG;
    return applyMemberInfo(pOutline, pNetCtx, pItem, pInfo, ulVersion, usVerifyType, bTemporaryItem, nullptr);
}

// ---- adding ---------------------------------------------------------------------

namespace {

// A refusal with the arguments of its message.  Name clashes go out by the
// clash rule (quiet in a dimension build), the rest by the call's rule.
struct Refusal {
    VTX_STS_T sts = 0;
    const void *a1 = nullptr;
    VTX_USHORT_T t1 = VTX_MSGARG_NONE;
    const void *a2 = nullptr;
    VTX_USHORT_T t2 = VTX_MSGARG_NONE;
    bool clash = false;
    VTX_USHORT_T num = 0;   // storage of a 16-bit argument

    VTX_STS_T set(VTX_STS_T s, const void *x1 = nullptr, VTX_USHORT_T y1 = 0, const void *x2 = nullptr,
                  VTX_USHORT_T y2 = 0, bool isClash = false) {
        sts = s; a1 = x1; t1 = y1; a2 = x2; t2 = y2; clash = isClash;
        return s;
    }
};

VTX_STS_T report(const otl::CallFrame &f, const Refusal &r) {
    if (!r.sts) return 0;
    if (r.clash) return otlReportClash(f.outline(), r.sts, r.a1, r.t1, r.a2, r.t2);
    return f.fail(r.sts, r.a1, r.t1, r.a2, r.t2);
}

inline bool isLastSentinel(VTX_HMEMBER_T h) { return h == VTX_HPREV_LAST32 || h == VTX_HPREV_LAST64; }

// The all-ones previous sibling stands for the last visible child of the
// parent (the root when no parent is given).
VTX_HMEMBER_T resolveLast(VTX_HOUTLINE_T h, VTX_HMEMBER_T hParent, VTX_HMEMBER_T hPrev) {
    if (!isLastSentinel(hPrev)) return hPrev;
    VTX_POTL_T o = static_cast<VTX_POTL_T>(h);
    VTX_POTLMBR_T parent = hParent ? static_cast<VTX_POTLMBR_T>(hParent) : (o ? o->pHeadItem : nullptr);
    return parent ? parent->MbrInfo.pLastSibling : nullptr;
}

struct Place {
    VTX_POTLMBR_T parent = nullptr;
    VTX_POTLMBR_T prev = nullptr;
};

// Where a new or moved member lands.  With a previous sibling its parent is
// the parent, and a different hParent is refused; otherwise hParent, or the
// root when there is none.
VTX_STS_T placeOf(VTX_POTL_T o, VTX_HMEMBER_T hParent, VTX_HMEMBER_T hPrev, Place &pl) {
    auto parent = static_cast<VTX_POTLMBR_T>(hParent);
    auto prev = static_cast<VTX_POTLMBR_T>(hPrev);
    if (!o->pHeadItem) return VTX_STS_NO_DIMENSION;
    if (prev) {
        if (!inOutline(o, prev) || isRoot(prev)) return VTX_STS_BAD_PLACEMENT;
        if (parent && parent != prev->pParent) return VTX_STS_BAD_PLACEMENT;
        pl.parent = prev->pParent;
        pl.prev = prev;
    } else {
        if (parent && !inOutline(o, parent)) return VTX_STS_BAD_PLACEMENT;
        pl.parent = parent ? parent : o->pHeadItem;
        pl.prev = nullptr;
    }
    return 0;
}

// Whether a shared member placed under pParent would stand below its own
// stored member.  The walk stops where the stored member can no longer be
// an ancestor, and at a member that does not consolidate.
bool sharedUnderStored(VTX_POTLMBR_T pParent, VTX_POTLMBR_T pStored) {
    for (VTX_POTLMBR_T p = pParent; p && !isRoot(p); p = p->pParent) {
        if (p == pStored) return true;
        if (p->MbrInfo.usGen <= pStored->MbrInfo.usGen) break;
        if (consolidationOf(p) == VTX_CONS_IGNORE) break;
    }
    return false;
}

// Steps of the add that come before any name test: dimension limits, depth,
// attribute names, legality, consolidation, the currency outline's limit.
VTX_STS_T addPrechecks(VTX_POTL_T o, vtx_mbrinfo_t *pMbrInfo, const Place &pl, VTX_USHORT_T usVerifyType,
                       Refusal &r) {
    const bool isDim = isRoot(pl.parent);
    if (isDim) {
        if (o->Counts.ulDimensions >= OTL_MAX_DIMS) return r.set(VTX_STS_TOO_MANY_DIMS);
        if (o->nextDimId > OTL_MAX_DIM_ID) return r.set(VTX_STS_NO_DIM_ID);
    } else if (pl.parent->MbrInfo.usGen + 1 > OTL_MAX_GEN) {
        return r.set(VTX_STS_TOO_DEEP);
    }
    if (clientVersion(o) >= kVerAttrDims && pMbrInfo->usCategory == VTX_CAT_ATTRIBUTE) {
        VTX_STS_T sts = otlSetAttrValueAttrNames(o, pMbrInfo, pl.parent, usVerifyType);
        if (sts) return r.set(sts);
    }
    if (!otlIsNameLegal(o, pMbrInfo->szMember, o->pNetCtx, 1))
        return r.set(VTX_STS_INVALID_NAME, pMbrInfo->szMember, VTX_MSGARG_STR);
    if (pMbrInfo->usConsolidation > VTX_CONS_NEVER ||
        (pMbrInfo->usConsolidation == VTX_CONS_NEVER && o->usOutlineType == VTX_OTL_AGGSTORE))
        return r.set(VTX_STS_BAD_CONSOLIDATION);
    if (isDim && o->usOutlineType == VTX_OTL_CURRENCY) {
        VTX_ULONG_T n = 0;
        if (clientVersion(o) < kVerCountSiblings) {
            for (VTX_POTLMBR_T d = o->pHeadItem->pChild; d; d = d->pSibling) ++n;
        } else {
            n = o->pHeadItem->ulSiblingCount;
        }
        if (n >= 3) return r.set(VTX_STS_CURRENCY_TOO_MANY_DIMS);
    }
    return 0;
}

// The uniqueness tests of a member of a dimension in an outline of duplicate
// names: unique in the dimension unless it allows duplicates, and unique at
// a generation that demands it.  pSelf is passed over.
VTX_STS_T dimUniquenessTests(VTX_POTL_T o, VTX_POTLMBR_T pParent, const char *name, VTX_POTLMBR_T pSelf,
                             VTX_POTLMBR_T *ppFound, Refusal &r) {
    VTX_POTLMBR_T dim = isRoot(pParent) ? nullptr : otlGetDim(pParent);
    if (!dim) return 0;
    vTX_PNETCTX_T ctx = o->pNetCtx;
    VTX_POTLMBR_T found = pSelf;
    if (!(dim->ucFlags & OTL_FLAG_DUP)) {
        if (otlIsNameExistInDimension(ctx, o, dim, name, 0, &found) && found) {
            if (ppFound) *ppFound = found;
            return r.set(VTX_STS_UNIQUE_IN_DIM, dim->MbrInfo.szMember, VTX_MSGARG_STR, name, VTX_MSGARG_STR, true);
        }
    } else {
        VTX_USHORT_T gen = (VTX_USHORT_T)(pParent->MbrInfo.usGen + 1);
        if (adShrOtlIsGenLevUniqueNameSet(o, dim, 1, gen)) {
            found = pSelf;
            if (otlIsNameExistInDimensionAtGenLevel(ctx, o, dim, pParent, name, 0, 1, &found) && found) {
                if (ppFound) *ppFound = found;
                r.num = gen;
                return r.set(VTX_STS_UNIQUE_AT_GEN, &r.num, VTX_MSGARG_PU16, dim->MbrInfo.szMember, VTX_MSGARG_STR,
                             true);
            }
        }
    }
    return 0;
}

// Where a lookup of the new name found it, or room for it: handed to the
// insert of step 16 so that the name is probed once per add.
struct HashPlace {
    HASH_NUM_T num = OTL_HASH_NONE;
    HASH_POS_T pos = OTL_HASH_NONE;
};

// Step 9 of the add: may the name stand there?  A clash hands the member
// found to *ppFound; a pass leaves the name's position in *pAt.
VTX_STS_T addNameTests(VTX_POTL_T o, const vtx_mbrinfo_t *pMbrInfo, const Place &pl,
                       VTX_BOOL_T fReportDupSibsForUnique, VTX_USHORT_T usVerifyType, VTX_POTLMBR_T *ppFound,
                       Refusal &r, HashPlace *pAt = nullptr) {
    HashPlace ignored;
    HashPlace &at = pAt ? *pAt : ignored;
    vTX_PNETCTX_T ctx = o->pNetCtx;
    const char *name = pMbrInfo->szMember;
    const bool shared = pMbrInfo->usShare == VTX_SHARE_SHARED;
    const bool quiet = usVerifyType == OTL_VERIFY_QUIET;
    if (!o->bNonUniqueName) {
        if (!shared) {
            VTX_POTLMBR_T found = nullptr;
            VTX_STS_T sts = otlHashFindItemByName(ctx, o, name, nullptr, 1, 1, 1, 0, nullptr, &found, &at.num, &at.pos);
            if (sts) return r.set(sts, name, VTX_MSGARG_STR);
            if (found && !(quiet && otlMbrIsSharedShare(found))) {
                *ppFound = found;
                if (fReportDupSibsForUnique && found->pParent == pl.parent)
                    return r.set(VTX_STS_SIBLING_NOT_UNIQUE, nullptr, 0, nullptr, 0, true);
                return r.set(VTX_STS_NAME_EXISTS, name, VTX_MSGARG_STR, nullptr, 0, true);
            }
            return 0;
        }
        VTX_POTLMBR_T sib = nullptr, stored = nullptr;
        bool sibClash = otlHashIsNameDupAmongSiblingsGetOriginal(ctx, o, pl.parent, name, 0, &sib, &stored);
        if (!quiet) {
            if (!stored) return r.set(VTX_STS_SHARED_NO_STORED, name, VTX_MSGARG_STR);
            if (pMbrInfo->usConsolidation != VTX_CONS_IGNORE && sharedUnderStored(pl.parent, stored)) {
                *ppFound = stored;
                return r.set(VTX_STS_SHARED_UNDER_STORED, name, VTX_MSGARG_STR);
            }
            if (sibClash) {
                *ppFound = sib;
                return r.set(VTX_STS_SIBLING_NOT_UNIQUE, nullptr, 0, nullptr, 0, true);
            }
        }
        return 0;
    }
    // An outline of duplicate names.
    VTX_POTLMBR_T found = nullptr;
    if (otlIsNameDupAmongDimensions(o, name, 0, &found) && found) {
        *ppFound = found;
        return r.set(VTX_STS_DUP_WITH_DIM, name, VTX_MSGARG_STR, nullptr, 0, true);
    }
    found = nullptr;
    if (otlHashIsNameDupAmongSiblings(ctx, o, pl.parent, name, 0, &found, &at.num, &at.pos)) {
        *ppFound = found;
        return r.set(VTX_STS_SIBLING_NOT_UNIQUE, nullptr, 0, nullptr, 0, true);
    }
    if (quiet) return 0;
    if (shared) {
        VTX_POTLMBR_T stored = nullptr;
        VTX_POTLMBR_T dim = isRoot(pl.parent) ? nullptr : otlGetDim(pl.parent);
        VTX_STS_T sts = otlHashFindItemByNameEx(ctx, o, name, nullptr, 1, 0, 1, OTL_OPT_UNSHARED, 0, dim, &stored,
                                                nullptr, nullptr);
        if (sts && sts != VTX_STS_NOT_FOUND) return r.set(sts, name, VTX_MSGARG_STR);
        if (!stored) {
            if (o->fBuildingDim) return 0;
            return r.set(VTX_STS_SHARED_NO_STORED, name, VTX_MSGARG_STR);
        }
        if (pMbrInfo->usConsolidation != VTX_CONS_IGNORE && sharedUnderStored(pl.parent, stored)) {
            *ppFound = stored;
            return r.set(VTX_STS_SHARED_UNDER_STORED, name, VTX_MSGARG_STR);
        }
        return 0;
    }
    return dimUniquenessTests(o, pl.parent, name, nullptr, ppFound, r);
}

// The head fields both record sizes share, from the tree record into the
// working copy, so that the copy sees the tree as the record does.
void syncWorkFromItem(VTX_POTLMBR_T pItem, VTX_POTLMBRLARGE_T pWork) {
    const VTX_UCHAR_T flags = pWork->ucFlags;
    std::memcpy((void *)pWork, (const void *)pItem, offsetof(_vtx_otlmbr_t, MbrInfo));
    pWork->ucFlags = (VTX_UCHAR_T)((flags & ~OTL_FLAG_SMALL) | (pItem->ucFlags & ~(OTL_FLAG_SMALL | OTL_FLAG_POOLED)));
    pWork->MbrInfo.pLastSibling = pItem->MbrInfo.pLastSibling;
    pWork->MbrInfo.ulChildCount = pItem->MbrInfo.ulChildCount;
    pWork->MbrInfo.usLevel = pItem->MbrInfo.usLevel;
    pWork->MbrInfo.usGen = pItem->MbrInfo.usGen;
}

// The working copy's settings back into the small record of the tree.
void syncItemFromWork(VTX_POTLMBR_T pItem, VTX_POTLMBRLARGE_T pWork) {
    const VTX_UCHAR_T pooled = pItem->ucFlags & OTL_FLAG_POOLED;
    VTX_POTLALIASARRAYREC_T aliases = pItem->AliasArray;
    VTX_STR_T name = pItem->MbrInfo.szMember;
    std::memcpy((void *)pItem, (const void *)pWork, offsetof(_vtx_otlmbr_t, MbrInfo));
    pItem->AliasArray = aliases;
    pItem->ucFlags = (VTX_UCHAR_T)((pItem->ucFlags & ~OTL_FLAG_POOLED) | OTL_FLAG_SMALL | pooled);
    pItem->MbrInfo.szMember = name;
    pItem->MbrInfo.usTimeBalance = pWork->MbrInfo.usTimeBalance;
    pItem->MbrInfo.usSkip = pWork->MbrInfo.usSkip;
    pItem->MbrInfo.ucInfoFlags = pWork->MbrInfo.ucInfoFlags;
    otlSetShare(pItem, pWork->MbrInfo.usShare);
    if (pWork->MbrInfo.fExpense) pItem->ucFlags2 |= OTL_FLAG2_EXPENSE;
}

} // namespace

namespace {

// The add from the record on.  at: the position of the name found by the
// name tests, when they looked it up in the index as it stands now.
VTX_STS_T addMemberCommon(VTX_POTL_T o, vtx_mbrinfo_t *pMbrInfo, VTX_POTLMBR_T pParent, VTX_POTLMBR_T pPrevSibling,
                          VTX_POTLMBR_T *ppMember, VTX_USHORT_T usVerifyType, VTX_POUTERROR_T pMbrError,
                          HashPlace at) {
    if (ppMember) *ppMember = nullptr;
    if (!o || !pMbrInfo || !pParent) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = o->pNetCtx;
    const bool isDim = isRoot(pParent);
    const VTX_ULONG_T ver = (VTX_ULONG_T)clientVersion(o);

    // Step 10: the record.  A paged outline open for incremental update
    // keeps members as small records and works on a large copy.
    const bool small = o->incrementalOPGfile && !isDim && !isAttrCategory((VTX_UCHAR_T)pMbrInfo->usCategory);
    VTX_POTLMBR_T pItem = nullptr;
    VTX_STS_T sts = otlNewItemAny(ctx, o, &pItem, small ? 0 : 1);
    if (sts) return sts;
    VTX_OTLMBRLARGE_T workStore;
    std::memset((void *)&workStore, 0, sizeof workStore);
    workStore.MbrInfo.ucHierarchyType = OTL_HIER_STORED;
    VTX_POTLMBRLARGE_T pWork = small ? &workStore : L(pItem);

    int stage = 0;   // how far the add went, for undoing it
    bool hashed = false;   // the record's texts are in the index
    VTX_UCHAR_T parentFlags2 = pParent->ucFlags2;
    VTX_USHORT_T parentInfo = pParent->MbrInfo.ucInfoFlags;
    VTX_USHORT_T prevInfo = pPrevSibling ? pPrevSibling->MbrInfo.ucInfoFlags : 0;
    const VTX_ULONG_T nextDimId = o->nextDimId;
    auto undo = [&]() {
        if (stage >= 26) {
            pParent->MbrInfo.ucInfoFlags = parentInfo;
            if (pPrevSibling) pPrevSibling->MbrInfo.ucInfoFlags = prevInfo;
        }
        if (stage >= 20) {
            otlRollbackAttrInfoUpdatedForAdd(o, pItem);
            o->nextDimId = nextDimId;
        }
        if (stage >= 19) {
            pParent->MbrInfo.ulChildCount--;
            pParent->ucFlags2 = parentFlags2;
        }
        if (hashed) (void)otlHashDeleteItem(ctx, o, pItem);  // takes out what step 16 put in; cannot refuse
        if (stage >= 12) (void)otlUnattachItem(ctx, pItem, 1);    // a new leaf: levels only fall back
        if (small) otlFreeLargeItemStrings(ctx, pWork, 1);
        otlFreeItem(ctx, o, pItem);
        if (ppMember) *ppMember = nullptr;
    };

    // Step 11.
    sts = otlCopyToInternalFromExternalMbrInfo(ctx, pMbrInfo, &pWork->MbrInfo, small ? 1 : 0);
    if (!sts && small) sts = otlStrdup(ctx, pMbrInfo->szMember, &pItem->MbrInfo.szMember);
    if (sts) {
        if (!small) otlFreeInternalMbrInfoStrings(ctx, &pWork->MbrInfo);
        undo();
        return sts;
    }
    pWork->MbrInfo.usLevel = 0;
    pWork->MbrInfo.usGen = 0;
    pWork->MbrInfo.ulChildCount = 0;
    if (small) {
        pItem->MbrInfo.usTimeBalance = pWork->MbrInfo.usTimeBalance;
        pItem->MbrInfo.usSkip = pWork->MbrInfo.usSkip;
        pItem->MbrInfo.ucInfoFlags = pWork->MbrInfo.ucInfoFlags;
    }

    // Step 12.
    if (pPrevSibling) otlAddSiblingItemEx(o, pPrevSibling, pItem, 1);
    else otlAddChildItem(pParent, pItem, 1);
    stage = 12;
    if (small) syncWorkFromItem(pItem, pWork);

    // Step 13.
    sts = otlSetMemberInfoLarge(o, ctx, pWork, pMbrInfo, ver, usVerifyType, small ? 1 : 0);
    if (sts) {
        undo();
        return sts;
    }

    // Step 14: numbers.  A dimension takes its place in the dimension table
    // at step 20; until then it carries the number it will have.
    VTX_POTLMBR_T dim = isDim ? pItem : otlGetDim(pItem);
    if (isDim) {
        pItem->ulDimno = (VTX_UCHAR_T)(dimPosition(pItem) + 1);
        pItem->mbrId = 1;
        pItem->persistMbrId = 1;
    } else {
        pItem->ulDimno = dim->ulDimno;
        pItem->mbrId = (VTX_INT32_T)o->nextMbrIds[dim->ulDimno - 1];
        pItem->persistMbrId = (VTX_INT32_T)o->nextPersistMbrIds[dim->ulDimno - 1];
    }
    if (small) syncWorkFromItem(pItem, pWork);

    // Step 15.
    sts = otlAttrSetShortName(o, pItem);
    if (sts) {
        undo();
        return sts;
    }
    // Step 16.  Entries name their member by dimension id, and a new
    // dimension has its id only once it stands in the dimension table
    // (step 20): it enters the index there.
    if (!isDim) {
        sts = otlHashAddItem(ctx, o, pItem, (VTX_POTLMBR_T)pWork, at.num, at.pos);
        if (sts) {
            undo();
            return sts;
        }
        hashed = true;
    }
    stage = 16;
    // Step 17: the member alone is verified; its findings undo the add.
    vtx_outerror_t err{};
    sts = otlVerifyEditedItem(o, (VTX_POTLMBR_T)pWork, usVerifyType, &err);
    if (sts) {
        if (pMbrError) {
            *pMbrError = err;
            pMbrError->hMember = nullptr;
        }
        undo();
        return sts;
    }
    // Step 18: members of an independent dimension.
    if (o->fEnableSlowlyChgAttrs && isLarge(dim) && (L(dim)->ucDimFlags & OTL_DIMF_INDEP))
        pWork->MbrInfo.ucInfoFlags |= OTL_INFO_INDEPDIMMBR;
    // Step 19.
    if (isLarge(pParent) && !isRoot(pParent) && L(pParent)->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE) {
        // An attribute member with children stands for no value of its own.
        if (isDimRecord(pParent)) {
            if (L(pParent)->Map.BaseDim.pAttrs) L(pParent)->Map.BaseDim.pAttrs[0].pDimPtr = nullptr;
        } else {
            L(pParent)->Map.AttrMbr.hAttr = nullptr;
        }
    }
    pParent->MbrInfo.ulChildCount++;
    pParent->ucFlags2 |= OTL_FLAG2_GAINEDCHILD;
    stage = 19;
    // Step 20.
    sts = otlUpdateAttrInfoForAdd(o, pItem);
    if (sts) {
        undo();
        return sts;
    }
    stage = 20;
    if (isDim) {
        sts = otlHashAddItem(ctx, o, pItem, (VTX_POTLMBR_T)pWork, at.num, at.pos);
        if (sts) {
            undo();
            return sts;
        }
        hashed = true;
    }
    if (ppMember) *ppMember = pItem;
    // Step 22.
    if (o->fKeepTrans) {
        sts = otlCreateAddTransaction(ctx, o, pItem, pParent, pPrevSibling);
        if (sts) {
            undo();
            return sts;
        }
    }
    // Step 24: the first attribute dimension brings the attribute
    // calculations dimension.
    if (isDim && ver >= (VTX_ULONG_T)kVerAttrDims && pWork->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE &&
        o->Counts.ulDimensions == o->Counts.ulStandardDims + 1) {
        sts = otlCreateAttrAggDim(o);
        if (sts) {
            undo();
            return VTX_STS_ATTR_CALC_DIM_FAILED;
        }
    }
    // Step 26: relational and hybrid flags stay on leaves only.
    stage = 26;
    if (ver > (VTX_ULONG_T)kVerRelDesc) {
        const VTX_USHORT_T rel = OTL_INFO_RELDESC | OTL_INFO_HAENABLED;
        if (!isRoot(pParent) && !isDimRecord(pParent) && pParent->MbrInfo.usLevel == 1 &&
            pParent->ulSiblingCount == 1)
            pParent->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~rel;
        if (pPrevSibling && !isDimRecord(pPrevSibling) && pPrevSibling->MbrInfo.usLevel == 0)
            pPrevSibling->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~rel;
        if (OTL_IS_SHARE(pWork->MbrInfo.usShare)) pWork->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~rel;
    }
    // Step 28 (before 27: the paged store gives the identifiers itself).
    if (o->incrementalOPGfile) {
        sts = opgWriteIncrementalMember(o, (VTX_POTLMBR_T)pWork);
        if (sts) {
            undo();
            return sts;
        }
        if (small) {
            syncItemFromWork(pItem, pWork);
            otlFreeLargeItemStrings(ctx, pWork, 1);
        }
    } else {
        // Step 27.
        if (isDim && o->bNonUniqueName) pItem->ucFlags |= OTL_FLAG_DUP;
        if (isDim) otlIsNameDupAmongDimensionsBloomFilterAddName(o, pItem->MbrInfo.szMember);
        const VTX_ULONG_T d = pItem->ulDimno - 1;
        pItem->mbrId = (VTX_INT32_T)o->nextMbrIds[d]++;
        pItem->persistMbrId = (VTX_INT32_T)o->nextPersistMbrIds[d]++;
    }
    return 0;
}

} // namespace

extern "C" VTX_STS_T otlAddMemberCommon(VTX_POTL_T o, vtx_mbrinfo_t *pMbrInfo, VTX_POTLMBR_T pParent,
                                        VTX_POTLMBR_T pPrevSibling, VTX_POTLMBR_T *ppMember,
                                        VTX_USHORT_T usVerifyType, VTX_POUTERROR_T pMbrError) {
    return addMemberCommon(o, pMbrInfo, pParent, pPrevSibling, ppMember, usVerifyType, pMbrError, HashPlace{});
}

namespace {

// The frame part every add shares: outputs cleared, the last-child
// sentinel resolved, hidden members, mode and prohibition refused, the
// place worked out and the prechecks run.
// A client before 5.0 hands in the short record: a call works on a full-form
// copy of it, made on entry and freed on the way out, so that every reader
// of the record sees one layout.
struct WideRecord {
    vTX_PNETCTX_T ctx = nullptr;
    vtx_mbrinfo_t *wide = nullptr;
    WideRecord() = default;
    WideRecord(const WideRecord &) = delete;
    WideRecord &operator=(const WideRecord &) = delete;
    ~WideRecord() {
        if (wide) (void)otlFreeMem(ctx, wide);  // this call's scratch block
    }
    // Points pInfo at the full form; 0, or the allocator's refusal.
    [[nodiscard]] VTX_STS_T take(VTX_POTL_T o, vtx_mbrinfo_t *&pInfo) {
        if (!pInfo || clientVersion(o) >= kVerRecord5) return 0;
        ctx = o->pNetCtx;
        if (VTX_STS_T sts = otlAlloc(ctx, sizeof *wide, &wide)) return sts;
        otlMbrInfoFromOld(reinterpret_cast<const vtx_mbrinfo_old_t *>(pInfo), wide);
        pInfo = wide;
        return 0;
    }
};

struct AddCall {
    WideRecord wideRec;
    otl::CallFrame f;
    Place pl;
    Refusal r;
    VTX_ATTRIBUTEVALUE_T savedAttr{};
    vtx_mbrinfo_t *pInfo = nullptr;

    bool done = false;          // set by a successful add
    VTX_BOOL_T longNames = 0;

    AddCall(VTX_HOUTLINE_T h, vtx_outerror_t *pErr) : f(h, otl::kEdit | otl::kMemberEdit, pErr) {}
    ~AddCall() {
        // A rewritten text attribute pointer goes back to the caller's.
        if (pInfo) pInfo->Attribute = savedAttr;
        // The name test notes long names; a refused add leaves no note.
        if (pInfo && !done) f.outline()->bLongNames = longNames;
    }
    VTX_STS_T success() {
        done = true;
        f.edited();
        return 0;
    }
    // pMbrInfo comes back as the full form; fullForm: it is already.
    VTX_STS_T begin(vtx_mbrinfo_t *&pMbrInfo, VTX_HMEMBER_T hParent, VTX_HMEMBER_T &hPrev,
                    bool fullForm = false) {
        hPrev = resolveLast(f.outline(), hParent, hPrev);
        if (VTX_STS_T sts = f.enter({hParent, hPrev})) return sts;
        if (!pMbrInfo) return f.fail(VTX_STS_NULL_ARG);
        if (!fullForm)
            if (VTX_STS_T sts = wideRec.take(f.outline(), pMbrInfo)) return f.fail(sts);
        pInfo = pMbrInfo;
        savedAttr = pMbrInfo->Attribute;
        longNames = f.outline()->bLongNames;
        if (VTX_STS_T sts = placeOf(f.outline(), hParent, hPrev, pl)) return f.fail(sts);
        if (isHiddenParent()) return VTX_STS_SILENT;
        return 0;
    }
    bool isHiddenParent() const { return pl.parent && OTL_IS_HIDDEN(pl.parent); }
};

// The add with a check of the siblings' names; fullForm: pMbrInfo is the
// full record whatever the client (a caller widened it already).
VTX_STS_T addDupSibsCheck(VTX_HOUTLINE_T hOutline, vtx_mbrinfo_t *pMbrInfo, VTX_HMEMBER_T hParent,
                          VTX_HMEMBER_T hPrevSibling, VTX_HMEMBER_T *phMember, VTX_BOOL_T fReportDupSibsForUnique,
                          VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError, bool fullForm) {
    if (phMember) *phMember = nullptr;
    AddCall c(hOutline, pMbrError);
    if (VTX_STS_T sts = c.begin(pMbrInfo, hParent, hPrevSibling, fullForm)) return sts;
    VTX_POTL_T o = c.f.outline();
    return otl::otlGuard(c.f.ctx(), "adShrOtlAddMemberDupSibsCheck", [&]() -> VTX_STS_T {
        if (addPrechecks(o, pMbrInfo, c.pl, usVerifyType, c.r)) return report(c.f, c.r);
        VTX_POTLMBR_T found = nullptr;
        HashPlace at;
        if (addNameTests(o, pMbrInfo, c.pl, fReportDupSibsForUnique, usVerifyType, &found, c.r, &at)) {
            if (phMember) *phMember = found;
            return report(c.f, c.r);
        }
        VTX_POTLMBR_T pItem = nullptr;
        VTX_STS_T sts = addMemberCommon(o, pMbrInfo, c.pl.parent, c.pl.prev, &pItem, usVerifyType, pMbrError, at);
        if (sts) return c.f.fail(sts);
        if (phMember) *phMember = pItem;
        return c.success();
    });
}

} // namespace

extern "C" {

VTX_STS_T adShrOtlAddMemberDupSibsCheck(VTX_HOUTLINE_T hOutline, vtx_mbrinfo_t *pMbrInfo, VTX_HMEMBER_T hParent,
                                        VTX_HMEMBER_T hPrevSibling, VTX_HMEMBER_T *phMember,
                                        VTX_BOOL_T fReportDupSibsForUnique, VTX_USHORT_T usVerifyType,
                                        vtx_outerror_t *pMbrError) {
    return addDupSibsCheck(hOutline, pMbrInfo, hParent, hPrevSibling, phMember, fReportDupSibsForUnique,
                           usVerifyType, pMbrError, false);
}

VTX_STS_T adShrOtlAddMember(VTX_HOUTLINE_T hOutline, vtx_mbrinfo_t *pMbrInfo, VTX_HMEMBER_T hParent,
                            VTX_HMEMBER_T hPrevSibling, VTX_HMEMBER_T *phMember, VTX_USHORT_T usVerifyType,
                            vtx_outerror_t *pMbrError) {
    return adShrOtlAddMemberDupSibsCheck(hOutline, pMbrInfo, hParent, hPrevSibling, phMember, 0, usVerifyType,
                                         pMbrError);
}

VTX_STS_T adShrOtlAddDimension(VTX_HOUTLINE_T hOutline, vtx_mbrinfo_t *pMbrInfo, VTX_HMEMBER_T hPrevSibling,
                               VTX_CSTR_T pszDataMbr, VTX_HMEMBER_T *phMember, vtx_outerror_t *pMbrError) {
    if (phMember) *phMember = nullptr;
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit, pMbrError);
    VTX_POTL_T o = f.outline();
    hPrevSibling = resolveLast(hOutline, nullptr, hPrevSibling);
    if (VTX_STS_T sts = f.enter({hPrevSibling})) return sts;
    if (!pMbrInfo) return f.fail(VTX_STS_NULL_ARG);
    if (o->ucPVLoadEnabled == 1) return VTX_STS_SILENT;
    WideRecord wideRec;
    if (VTX_STS_T sts = wideRec.take(o, pMbrInfo)) return f.fail(sts);
    auto prev = static_cast<VTX_POTLMBR_T>(hPrevSibling);
    if (prev && (!inOutline(o, prev) || !isDimRecord(prev))) return f.fail(VTX_STS_PREV_NOT_DIM);
    // Attribute dimensions stand behind all the others.
    if (clientVersion(o) >= kVerAttrDims && pMbrInfo->usCategory == VTX_CAT_ATTRIBUTE) {
        VTX_POTLMBR_T next = prev ? prev->pSibling : (o->pHeadItem ? o->pHeadItem->pChild : nullptr);
        if (next && !isAttrCategory(categoryOf(next))) return f.fail(VTX_STS_ATTR_DIM_NOT_LAST);
    }
    if (o->bNonUniqueName && otlHashIsStringExist(f.ctx(), o, pMbrInfo->szMember, 0, nullptr, nullptr))
        return otlReportClash(o, VTX_STS_DIM_NOT_UNIQUE, nullptr, 0, nullptr, 0);
    const VTX_USHORT_T storage = pMbrInfo->usStorage;
    if (o->usOutlineType == VTX_OTL_AGGSTORE && o->cOPGVersion >= 75) pMbrInfo->usStorage = 1;
    VTX_STS_T sts = addDupSibsCheck(hOutline, pMbrInfo, nullptr, hPrevSibling, phMember, 0, 0, pMbrError, true);
    pMbrInfo->usStorage = storage;
    if (sts) return sts;
    // A dimension add ends the chance of a property value load; a refused
    // add leaves the setting as it was.
    o->ucPVLoadEnabled = 2;
    if (pszDataMbr && *pszDataMbr && o->fKeepTrans) {
        sts = otlTransSetAddDimension(f.ctx(), o, pszDataMbr);
        if (sts) return f.fail(sts);
    }
    return 0;
}

} // extern "C"

namespace {

// Hands back the member of a clash with its parent and dimension.
void handBack(VTX_POTLMBR_T found, VTX_HMEMBER_T *phMember, VTX_HMEMBER_T *phParent, VTX_HMEMBER_T *phDim) {
    if (phMember) *phMember = found;
    if (phParent) *phParent = found && !isDimRecord(found) ? found->pParent : nullptr;
    if (phDim) *phDim = otlGetDim(found);
}

// Name tests of the adds of a dimension build in an outline of unique
// names: a name may stand once, and a shared member needs its stored member
// outside its own ancestors.
VTX_STS_T buildNameTests(VTX_POTL_T o, const vtx_mbrinfo_t *pMbrInfo, const Place &pl, VTX_USHORT_T usVerifyType,
                         VTX_POTLMBR_T *ppFound, Refusal &r, HashPlace *pAt = nullptr) {
    vTX_PNETCTX_T ctx = o->pNetCtx;
    const char *name = pMbrInfo->szMember;
    const bool quiet = usVerifyType == OTL_VERIFY_QUIET;
    VTX_POTLMBR_T found = nullptr;
    HashPlace ignored;
    HashPlace &at = pAt ? *pAt : ignored;
    VTX_STS_T sts = otlHashFindItemByName(ctx, o, name, nullptr, 1, 1, 1, 0, nullptr, &found, &at.num, &at.pos);
    if (sts) return r.set(sts, name, VTX_MSGARG_STR);
    if (pMbrInfo->usShare == VTX_SHARE_SHARED) {
        if (quiet && (!found || otlMbrIsSharedShare(found))) return 0;
        if (!found) return r.set(VTX_STS_SHARED_NO_STORED, name, VTX_MSGARG_STR);
        if (pMbrInfo->usConsolidation != VTX_CONS_IGNORE && sharedUnderStored(pl.parent, found)) {
            *ppFound = found;
            return r.set(VTX_STS_SHARED_UNDER_STORED, name, VTX_MSGARG_STR);
        }
        VTX_POTLMBR_T sib = nullptr;
        if (otlHashIsNameDupAmongSiblings(ctx, o, pl.parent, name, 0, &sib, nullptr, nullptr)) {
            *ppFound = sib;
            return r.set(VTX_STS_SIBLING_NOT_UNIQUE, nullptr, 0, nullptr, 0, true);
        }
        return 0;
    }
    if (found) {
        *ppFound = found;
        return r.set(VTX_STS_NAME_EXISTS, name, VTX_MSGARG_STR, nullptr, 0, true);
    }
    return 0;
}

} // namespace

extern "C" {

VTX_STS_T adShrOtlAddMemberEx2(VTX_HOUTLINE_T hOutline, vtx_mbrinfo_t *pMbrInfo, VTX_HMEMBER_T hParent,
                               VTX_HMEMBER_T hPrevSibling, VTX_HMEMBER_T *phMember, VTX_HMEMBER_T *phParent,
                               VTX_HMEMBER_T *phDim, VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError) {
    handBack(nullptr, phMember, phParent, phDim);
    AddCall c(hOutline, pMbrError);
    if (VTX_STS_T sts = c.begin(pMbrInfo, hParent, hPrevSibling)) return sts;
    VTX_POTL_T o = c.f.outline();
    return otl::otlGuard(c.f.ctx(), "adShrOtlAddMemberEx2", [&]() -> VTX_STS_T {
        if (addPrechecks(o, pMbrInfo, c.pl, usVerifyType, c.r)) return report(c.f, c.r);
        VTX_POTLMBR_T found = nullptr;
        HashPlace at;
        VTX_STS_T sts = o->bNonUniqueName ? addNameTests(o, pMbrInfo, c.pl, 0, usVerifyType, &found, c.r, &at)
                                          : buildNameTests(o, pMbrInfo, c.pl, usVerifyType, &found, c.r, &at);
        if (sts) {
            handBack(found, phMember, phParent, phDim);
            return report(c.f, c.r);
        }
        VTX_POTLMBR_T pItem = nullptr;
        sts = addMemberCommon(o, pMbrInfo, c.pl.parent, c.pl.prev, &pItem, usVerifyType, pMbrError, at);
        if (sts) return c.f.fail(sts);
        if (phMember) *phMember = pItem;
        return c.success();
    });
}

VTX_STS_T adShrOtlAddStoredAndSharedMember(VTX_HOUTLINE_T hOutline, VTX_BOOL_T bMoveIfNoParent,
                                           VTX_BOOL_T bAllowDuplicateShare, vtx_mbrinfo_t *pMbrInfo,
                                           VTX_HMEMBER_T hParent, VTX_HMEMBER_T hPrevSibling,
                                           VTX_HMEMBER_T *phMember, VTX_HMEMBER_T *phParent, VTX_HMEMBER_T *phDim,
                                           VTX_USHORT_T usVerifyType, VTX_BOOL_T *pbAddedShared,
                                           vtx_outerror_t *pMbrError) {
    handBack(nullptr, phMember, phParent, phDim);
    if (pbAddedShared) *pbAddedShared = 0;
    AddCall c(hOutline, pMbrError);
    if (VTX_STS_T sts = c.begin(pMbrInfo, hParent, hPrevSibling)) return sts;
    VTX_POTL_T o = c.f.outline();
    vTX_PNETCTX_T ctx = c.f.ctx();
    return otl::otlGuard(ctx, "adShrOtlAddStoredAndSharedMember", [&]() -> VTX_STS_T {
        if (addPrechecks(o, pMbrInfo, c.pl, usVerifyType, c.r)) return report(c.f, c.r);
        VTX_POTLMBR_T found = nullptr;
        bool asShared = false;
        HashPlace at;
        if (o->bNonUniqueName) {
            if (addNameTests(o, pMbrInfo, c.pl, 0, usVerifyType, &found, c.r, &at)) {
                handBack(found, phMember, phParent, phDim);
                return report(c.f, c.r);
            }
        } else {
            const char *name = pMbrInfo->szMember;
            VTX_STS_T sts = otlHashFindItemByName(ctx, o, name, nullptr, 1, 1, 1, 0, nullptr, &found, &at.num, &at.pos);
            if (sts) return c.f.fail(sts, name, VTX_MSGARG_STR);
            VTX_POTLMBR_T dim = isRoot(c.pl.parent) ? nullptr : otlGetDim(c.pl.parent);
            if (found) {
                if (dim && otlGetDim(found) == dim && !otlMbrIsSharedShare(found) && found->pParent != c.pl.parent) {
                    // A member of generation 2 stands directly under its
                    // dimension: the caller may rather move it.
                    if (bMoveIfNoParent && found->MbrInfo.usGen == 2) {
                        handBack(found, phMember, phParent, phDim);
                        return c.f.fail(VTX_STS_GEN2_CAN_MOVE, name, VTX_MSGARG_STR);
                    }
                    if (!bAllowDuplicateShare) {
                        VTX_POTLMBR_T s = nullptr;
                        while (!otlGetNextSharedMember(o, found, s, &s) && s) {
                            if (s->pParent == c.pl.parent) {
                                handBack(s, phMember, phParent, phDim);
                                return c.f.fail(VTX_STS_SHARED_SAME_PARENT, name, VTX_MSGARG_STR);
                            }
                        }
                    }
                    asShared = true;
                } else {
                    handBack(found, phMember, phParent, phDim);
                    return otlReportClash(o, VTX_STS_NAME_EXISTS, name, VTX_MSGARG_STR, nullptr, 0);
                }
            } else if (pMbrInfo->usShare == VTX_SHARE_SHARED && usVerifyType != OTL_VERIFY_QUIET) {
                return c.f.fail(VTX_STS_SHARED_NO_STORED, name, VTX_MSGARG_STR);
            }
        }
        const VTX_USHORT_T share = pMbrInfo->usShare;
        if (asShared) pMbrInfo->usShare = VTX_SHARE_SHARED;
        VTX_POTLMBR_T pItem = nullptr;
        VTX_STS_T sts = addMemberCommon(o, pMbrInfo, c.pl.parent, c.pl.prev, &pItem, usVerifyType, pMbrError, at);
        pMbrInfo->usShare = share;
        if (sts) return c.f.fail(sts);
        if (phMember) *phMember = pItem;
        if (pbAddedShared && asShared) *pbAddedShared = 1;
        return c.success();
    });
}

VTX_STS_T adShrOtlAddMemberAndID(VTX_HOUTLINE_T hOutline, vtx_mbrinfo_t *pMbrInfo, VTX_CSTR_T pszMbrID,
                                 VTX_HMEMBER_T hParent, VTX_HMEMBER_T hPrevSibling, VTX_HMEMBER_T *phMember,
                                 VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError) {
    if (phMember) *phMember = nullptr;
    AddCall c(hOutline, pMbrError);
    if (VTX_STS_T sts = c.begin(pMbrInfo, hParent, hPrevSibling)) return sts;
    VTX_POTL_T o = c.f.outline();
    vTX_PNETCTX_T ctx = c.f.ctx();
    return otl::otlGuard(ctx, "adShrOtlAddMemberAndID", [&]() -> VTX_STS_T {
        if (!o->bNonUniqueName) return c.f.fail(VTX_STS_DUP_REQUIRED, "adShrOtlAddMemberAndID", VTX_MSGARG_STR);
        if (!pszMbrID || !*pszMbrID) return c.f.fail(VTX_STS_NULL_ARG, "adShrOtlAddMemberAndID", VTX_MSGARG_STR);
        if (std::strlen(pszMbrID) > 1023) return c.f.fail(VTX_STS_MEMBER_ID_TOO_LONG);
        if (pMbrInfo->usCategory == VTX_CAT_ATTRCALC) return c.f.fail(VTX_STS_ILLEGAL_OPERATION);
        // The identifiers live in the second table, "Member ID".
        if (o->usNumAliasTables < 2) return c.f.fail(VTX_STS_ALIAS_TABLE_NOT_FOUND);
        // Free as a member name and as an alias of every table.
        VTX_POTLMBR_T found = nullptr;
        VTX_STS_T sts = otlHashFindItemByNameEx(ctx, o, pszMbrID, nullptr, 1, 0, 1, OTL_OPT_ALL, 0, nullptr, &found,
                                                nullptr, nullptr);
        for (VTX_USHORT_T t = 1; !found && sts != VTX_STS_NOT_FOUND && t <= o->usNumAliasTables; ++t)
            sts = otlHashFindItemByNameEx(ctx, o, pszMbrID, nullptr, 0, 1, 1, OTL_OPT_ALL, t, nullptr, &found,
                                          nullptr, nullptr);
        // An identifier that names several members is in use as much as one
        // that names one.
        if (found || sts == VTX_STS_NOT_FOUND) {
            if (phMember) *phMember = found;
            return c.f.fail(VTX_STS_MEMBER_ID_IN_USE, pszMbrID, VTX_MSGARG_STR);
        }
        if (addPrechecks(o, pMbrInfo, c.pl, usVerifyType, c.r)) return report(c.f, c.r);
        HashPlace at;
        if (addNameTests(o, pMbrInfo, c.pl, 0, usVerifyType, &found, c.r, &at)) {
            if (phMember) *phMember = found;
            return report(c.f, c.r);
        }
        CtxString id(ctx);
        sts = id.copy(pszMbrID);
        if (sts) return c.f.fail(sts, "adShrOtlAddMemberAndID", VTX_MSGARG_STR);
        VTX_POTLMBR_T pItem = nullptr;
        sts = addMemberCommon(o, pMbrInfo, c.pl.parent, c.pl.prev, &pItem, usVerifyType, pMbrError, at);
        if (sts) return c.f.fail(sts);
        if (pItem->AliasArray) {
            pItem->AliasArray[1].pszDefName = id.release();
            sts = otlHashAddString(ctx, o, pItem, pItem->AliasArray[1].pszDefName, 2, OTL_HASH_NONE, OTL_HASH_NONE);
            if (sts) {
                // The member goes again, quietly: it was never seen.
                (void)otlDeleteMember(o, pItem, OTL_VERIFY_QUIET);  // a fresh leaf: its delete cannot be refused
                return c.f.fail(sts);
            }
            o->aliasCounts[1]++;
        }
        if (phMember) *phMember = pItem;
        return c.success();
    });
}

} // extern "C"

// ---- deleting ------------------------------------------------------------------

namespace {

// Shared members outside pItem's subtree whose stored member lies in it.
VTX_STS_T collectSharedCopies(VTX_POTL_T o, VTX_POTLMBR_T pItem, CtxArray<VTX_POTLMBR_T> &out) {
    VTX_POTLMBR_T dim = otlGetDim(pItem);
    if (!dim || dim == pItem) return 0;   // a whole dimension holds its own shared members
    // The index knows the copies of each stored member of the subtree: the
    // cost follows the subtree, not the dimension.  Copies inside the
    // subtree go with it anyway.
    for (VTX_POTLMBR_T p = pItem; p; p = otlNavtrdn(p, pItem)) {
        if (OTL_IS_HIDDEN(p) || otlMbrIsSharedShare(p) || !p->MbrInfo.szMember) continue;
        VTX_POTLMBR_T s = nullptr;
        while (!otlGetNextSharedMember(o, p, s, &s) && s) {
            if (isAncestorOrSelf(pItem, s)) continue;
            if (VTX_STS_T sts = out.push(s)) return sts;
        }
    }
    return 0;
}

// Whether removing every record of the set leaves a label-only parent
// outside the removed subtrees without a visible child.  pKeep stays in the
// tree while the set goes (the member whose shared copies these are).
bool leavesLabelParentEmpty(VTX_POTLMBR_T *set, size_t n, VTX_POTLMBR_T pKeep) {
    for (size_t i = 0; i < n; ++i) {
        VTX_POTLMBR_T parent = set[i]->pParent;
        if (!parent || isRoot(parent) || otlGetShare(parent) != VTX_SHARE_LABEL) continue;
        bool someLeft = false;
        for (VTX_POTLMBR_T c = parent->pChild; c && !someLeft; c = c->pSibling) {
            if (OTL_IS_HIDDEN(c)) continue;
            if (c == pKeep) { someLeft = true; break; }
            bool going = false;
            for (size_t j = 0; j < n && !going; ++j) going = set[j] == c;
            if (!going) someLeft = true;
        }
        if (!someLeft) return true;
    }
    return false;
}

// Takes one record (with its subtree) out of the tree and frees it: the
// steps of the delete that cannot fail.
void removeRecord(VTX_POTL_T o, VTX_POTLMBR_T pItem) {
    vTX_PNETCTX_T ctx = o->pNetCtx;
    const VTX_ULONG_T dimId = dimIdOf(o, pItem);
    // The setting of hidden children goes for every dimension once the
    // parent it names is gone.
    if (o->hiddenMbrCounts && o->hiddenMbrParentIds && dimId < OTL_DIM_SLOTS) {
        for (VTX_POTLMBR_T p = pItem; p; p = otlNavtrdn(p, pItem)) {
            if (p->mbrId && (VTX_ULONG_T)p->mbrId == o->hiddenMbrParentIds[dimId]) {
                (void)otlFreeMem(ctx, o->hiddenMbrCounts);  // the counts go as a whole
                o->hiddenMbrCounts = nullptr;
                break;
            }
        }
    }
    // Every named record of the subtree leaves the index; spare children
    // never entered it.
    for (VTX_POTLMBR_T p = pItem; p; p = otlNavtrdn(p, pItem))
        if (!OTL_IS_HIDDEN(p)) (void)otlHashDeleteItemResetDup(ctx, o, p);  // a record's entries go; none can refuse
    VTX_POTLMBR_T parent = pItem->pParent;
    if (parent && !OTL_IS_HIDDEN(pItem) && parent->MbrInfo.ulChildCount) parent->MbrInfo.ulChildCount--;
    (void)otlUpdateAttrInfoForDelete(o, pItem);  // counts only: cannot fail on a linked record
    (void)otlUnattachItem(ctx, pItem, 1);         // a deleted record's value is not kept
    clearQueryHintItems(o, pItem);
    // The renegade member of the dimension goes with it.
    if (o->renMbrs && dimId < OTL_DIM_SLOTS && o->renMbrs[dimId] && o->cOPGVersion > 80 &&
        isAncestorOrSelf(pItem, o->renMbrs[dimId])) {
        o->renMbrs[dimId] = nullptr;
        if (ctx && (ctx->bSendMsgNet || o->ucCallerType == 2))
            (void)adNetLocalMessage(ctx, VTX_STS_RENEGADE_CLEARED, VTX_MSG_INFO, nullptr, 0, nullptr, 0);  // information only
    }
    otlFreeItemList(ctx, o, pItem);
}

// Collects what a delete removes besides the member itself and checks it
// all.  With a sink, the shared members removed go there too.
struct DeletePlan {
    explicit DeletePlan(vTX_PNETCTX_T ctx) : copies(ctx), reset(ctx) {}
    CtxArray<VTX_POTLMBR_T> copies;   // shared members to delete with it
    CtxArray<VTX_POTLMBR_T> reset;    // shared members to re-point
};

VTX_STS_T planDelete(VTX_POTL_T o, VTX_POTLMBR_T pItem, VTX_USHORT_T usVerifyType, DeletePlan &plan) {
    VTX_POTLMBR_T dim = otlGetDim(pItem);
    if (!dim) return VTX_STS_ILLEGAL_OPERATION;
    const bool checks = (usVerifyType == 0 || usVerifyType == 2);
    // Independent dimensions and members of varying attributes stay.
    if (isDimRecord(pItem) && isLarge(pItem) && (L(pItem)->ucDimFlags & OTL_DIMF_INDEP) &&
        !isAttrCategory(categoryOf(pItem)))
        return VTX_STS_INDEP_DIM_DELETE;
    if (pItem->MbrInfo.ucInfoFlags & OTL_INFO_INDEPMBR) return VTX_STS_INDEP_MEMBER_DELETE;
    if (pItem->pChild)
        for (VTX_POTLMBR_T p = otlLowLeftInternal(pItem); p; p = p->pSibling)
            if (p->MbrInfo.ucInfoFlags & OTL_INFO_INDEPMBR) return VTX_STS_INDEP_MEMBER_DELETE;
    if (checks && !o->fBuildingDim) {
        VTX_POTLMBR_T one = pItem;
        if (leavesLabelParentEmpty(&one, 1, nullptr)) return VTX_STS_LABEL_NO_CHILD;
    }
    if (checks && o->usOutlineType != VTX_OTL_AGGSTORE && isDimRecord(pItem) &&
        categoryOf(pItem) == VTX_CAT_TIME && otlFindTimeBalanceMember(o))
        return VTX_STS_TIME_BALANCE_NO_TIME;
    if (OTL_IS_HIDDEN(pItem) || otlMbrIsSharedShare(pItem)) return 0;
    if (usVerifyType != OTL_VERIFY_QUIET) {
        if (VTX_STS_T sts = collectSharedCopies(o, pItem, plan.copies)) return sts;
        // Each shared member goes by the rules of a delete of its own.
        for (VTX_POTLMBR_T s : plan.copies)
            if (s->MbrInfo.ucInfoFlags & OTL_INFO_INDEPMBR) return VTX_STS_INDEP_MEMBER_DELETE;
        if (checks && !o->fBuildingDim && leavesLabelParentEmpty(plan.copies.begin(), plan.copies.size(), pItem))
            return VTX_STS_LABEL_NO_CHILD;
    } else {
        if (VTX_STS_T sts = collectSharedCopies(o, pItem, plan.reset)) return sts;
    }
    return 0;
}

} // namespace

extern "C" VTX_STS_T otlDeleteMember(VTX_POTL_T o, VTX_POTLMBR_T pItem, VTX_USHORT_T usVerifyType) {
    if (!o || !pItem) return VTX_STS_NULL_ARG;
    if (isRoot(pItem)) return VTX_STS_ILLEGAL_OPERATION;
    vTX_PNETCTX_T ctx = o->pNetCtx;
    // The last two attribute dimensions take the attribute calculations
    // dimension with them.
    if (isDimRecord(pItem) && categoryOf(pItem) == VTX_CAT_ATTRIBUTE &&
        o->Counts.ulDimensions - o->Counts.ulStandardDims == 2) {
        if (VTX_STS_T sts = otlDeleteAttrAggDim(o)) return sts;
    }
    DeletePlan plan(ctx);
    if (VTX_STS_T sts = planDelete(o, pItem, usVerifyType, plan)) return sts;
    // Copies that stay (the quiet form) must not be left without a stored
    // member: note which stored member each stood for while it still exists.
    CtxArray<VTX_POTLMBR_T> origins(ctx);
    for (VTX_POTLMBR_T s : plan.reset) {
        VTX_POTLMBR_T orig = nullptr;
        // A copy whose stored member cannot be found stands for none.
        (void)otlHashFindOriginalItem(ctx, o, otlGetDim(s), s, &orig);
        if (VTX_STS_T sts = origins.push(orig)) return sts;
    }
    VTX_POTLMBR_T dim = otlGetDim(pItem);
    if (o->bMemberTypeEnabled && dim && dim->ulDimno == o->typedDimno) {
        if (VTX_STS_T sts = adShrOtlDeleteMbrTreeSmartListRefs(o, pItem)) return sts;
    }
    // The steps that can fail come before the tree changes.
    if (o->fKeepTrans) {
        if (VTX_STS_T sts = otlCreateDeleteTransaction(ctx, o, pItem)) return sts;
    }
    if (o->incrementalOPGfile) {
        if (VTX_STS_T sts = opgDeleteIncrementalMember(o, pItem)) return sts;
    }
    // Shared members of the subtree go first, without transactions of their
    // own; with the quiet form the first copy of each stored member that
    // goes takes its place, and the other copies point at it.
    for (VTX_POTLMBR_T s : plan.copies) removeRecord(o, s);
    removeRecord(o, pItem);
    otlPromoteSharedCopies(o, plan.reset.begin(), origins.begin(), (VTX_ULONG_T)plan.reset.size());
    return 0;
}

extern "C" {

VTX_STS_T adShrOtlDeleteMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_USHORT_T usVerifyType,
                               vtx_outerror_t *pMbrError) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit | otl::kNoProhibit, pMbrError);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    VTX_POTL_T o = f.outline();
    auto item = static_cast<VTX_POTLMBR_T>(hMember);
    if (!item) return f.fail(VTX_STS_NULL_ARG, "adShrOtlDeleteMember", VTX_MSGARG_STR);
    if (!inOutline(o, item)) return f.fail(VTX_STS_BAD_PLACEMENT);
    return otl::otlGuard(f.ctx(), "adShrOtlDeleteMember", [&]() -> VTX_STS_T {
        VTX_STS_T sts = otlDeleteMember(o, item, usVerifyType);
        if (sts) return f.fail(sts);
        f.edited();
        return 0;
    });
}

VTX_STS_T adShrOtlDeleteDimension(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszDataMbr,
                                  vtx_outerror_t *pMbrError) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit | otl::kNoProhibit, pMbrError);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    VTX_POTL_T o = f.outline();
    auto item = static_cast<VTX_POTLMBR_T>(hMember);
    if (!item) return f.fail(VTX_STS_NULL_ARG, "adShrOtlDeleteDimension", VTX_MSGARG_STR);
    if (!inOutline(o, item)) return f.fail(VTX_STS_BAD_PLACEMENT);
    if (o->ucPVLoadEnabled == 1) return VTX_STS_SILENT;
    // A member that is no dimension is refused, after the data member test.
    const VTX_STS_T held = isDimRecord(item) ? 0 : VTX_STS_NOT_A_DIMENSION;
    if (pszDataMbr && *pszDataMbr && !isAttrCategory(categoryOf(item)) && o->usOutlineType != VTX_OTL_AGGSTORE) {
        VTX_POTLMBR_T data = nullptr;
        (void)otlHashFindItemByName(f.ctx(), o, pszDataMbr, nullptr, 1, 0, 1, 0, nullptr, &data, nullptr,
                                    nullptr);  // an unknown or ambiguous name names no data member to refuse
        if (data) {
            VTX_USHORT_T s = otlGetShare(data);
            if (s != VTX_SHARE_STORE && s != VTX_SHARE_NEVER) return f.fail(VTX_STS_BAD_DATA_MEMBER, pszDataMbr, VTX_MSGARG_STR);
        }
    }
    if (held) return f.fail(held);
    VTX_STS_T sts = adShrOtlDeleteMember(hOutline, hMember, 0, pMbrError);
    if (sts) return sts;
    o->ucPVLoadEnabled = 2;
    if (pszDataMbr && *pszDataMbr && o->fKeepTrans) {
        sts = otlTransSetDeleteDimension(f.ctx(), o, pszDataMbr);
        if (sts) return f.fail(sts);
    }
    return 0;
}

// ---- marks ---------------------------------------------------------------------

VTX_STS_T adShrOtlMarkMbrByHandle(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_BOOL_T fMark) {
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    auto item = static_cast<VTX_POTLMBR_T>(hMember);
    if (!item) return f.fail(VTX_STS_NULL_ARG, "adShrOtlMarkMbrByHandle", VTX_MSGARG_STR);
    if (fMark) item->ucFlags |= OTL_FLAG_MARKED;
    else item->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_MARKED;
    return 0;
}

VTX_STS_T adShrOtlMarkMbr(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszMember, VTX_BOOL_T fMark) {
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pszMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlMarkMbr", VTX_MSGARG_STR);
    VTX_POTLMBR_T item = nullptr;
    VTX_STS_T sts = otlHashFindItemByName(f.ctx(), f.outline(), pszMember, nullptr, 1, 0, 1, 0, nullptr, &item,
                                          nullptr, nullptr);
    if (sts) return sts;   // the lookup reported its own failure
    if (!item) return f.fail(VTX_STS_NOT_FOUND, pszMember, VTX_MSGARG_STR);
    if (fMark) item->ucFlags |= OTL_FLAG_MARKED;
    else item->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_MARKED;
    return 0;
}

} // extern "C"

namespace {

// The dimension named pszDim: not found 1060200, a member that is no
// dimension 1060337.
VTX_STS_T findDimension(const otl::CallFrame &f, VTX_CSTR_T pszDim, VTX_POTLMBR_T *ppDim) {
    *ppDim = nullptr;
    if (!pszDim) return f.fail(VTX_STS_NULL_ARG);
    VTX_POTL_T o = f.outline();
    for (VTX_POTLMBR_T d = o->pHeadItem ? o->pHeadItem->pChild : nullptr; d; d = d->pSibling)
        if (d->MbrInfo.szMember && otlCompareNames(o, d->MbrInfo.szMember, pszDim) == 0) {
            *ppDim = d;
            return 0;
        }
    VTX_POTLMBR_T m = nullptr;
    (void)otlHashFindItemByName(f.ctx(), o, pszDim, nullptr, 1, 0, 1, 0, nullptr, &m, nullptr,
                                nullptr);  // only tells which refusal to give
    if (m) return f.fail(VTX_STS_NOT_A_DIM_NAME, pszDim, VTX_MSGARG_STR);
    return f.fail(VTX_STS_NOT_FOUND, pszDim, VTX_MSGARG_STR);
}

} // namespace

extern "C" {

VTX_STS_T adShrOtlMarkDim(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszDim) {
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = findDimension(f, pszDim, &dim)) return sts;
    for (VTX_POTLMBR_T p = otlNavtrdn(dim, dim); p; p = otlNavtrdn(p, dim))
        if (!OTL_IS_HIDDEN(p)) p->ucFlags |= OTL_FLAG_MARKED;
    return 0;
}

VTX_STS_T adShrOtlDeleteMarked(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszDim) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = findDimension(f, pszDim, &dim)) return sts;
    VTX_POTL_T o = f.outline();
    return otl::otlGuard(f.ctx(), "adShrOtlDeleteMarked", [&]() -> VTX_STS_T {
        // Marked members in post-order: children before their parents.
        CtxArray<VTX_POTLMBR_T> marked(f.ctx());
        for (VTX_POTLMBR_T p = otlLowLeftInternal(dim); p && p != dim;) {
            if ((p->ucFlags & OTL_FLAG_MARKED) && !OTL_IS_HIDDEN(p))
                if (VTX_STS_T sts = marked.push(p)) return f.fail(sts, "adShrOtlDeleteMarked", VTX_MSGARG_STR);
            p = p->pSibling ? otlLowLeftInternal(p->pSibling) : p->pParent;
        }
        if (dim->ucFlags & OTL_FLAG_MARKED)
            if (VTX_STS_T sts = marked.push(dim)) return f.fail(sts, "adShrOtlDeleteMarked", VTX_MSGARG_STR);
        bool any = false;
        for (size_t i = 0; i < marked.size(); ++i) {
            VTX_POTLMBR_T item = marked[i];
            if (!item) continue;
            // Shared members of a stored member go with it: they must not be
            // met again further down the list.
            DeletePlan plan(f.ctx());
            if (VTX_STS_T sts = planDelete(o, item, 0, plan)) {
                if (any) f.edited();
                return f.fail(sts);
            }
            for (VTX_POTLMBR_T s : plan.copies)
                for (size_t j = i + 1; j < marked.size(); ++j)
                    if (marked[j] == s) marked[j] = nullptr;
            VTX_STS_T sts = otlDeleteMember(o, item, 0);
            if (sts) {
                if (any) f.edited();
                return f.fail(sts);
            }
            any = true;
        }
        if (any) f.edited();
        return 0;
    });
}

// ---- shared copies, as whole operations -------------------------------------------
// The shared-member part of the outline builds on these; they are weak so
// that it can take them over.

OTL_WEAK VTX_STS_T otlDeleteSharedMembers(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_USHORT_T usVerifyType) {
    if (!pOutline || !pItem) return VTX_STS_NULL_ARG;
    // The shared members of one stored member leave no transactions.
    const VTX_BOOL_T keep = pOutline->fKeepTrans;
    pOutline->fKeepTrans = 0;
    VTX_STS_T sts = 0;
    VTX_POTLMBR_T s = nullptr;
    while (!sts && !(sts = otlGetNextSharedMember(pOutline, pItem, nullptr, &s)) && s)
        sts = otlDeleteMember(pOutline, s, usVerifyType);
    pOutline->fKeepTrans = keep;
    return sts;
}

OTL_WEAK VTX_STS_T otlDeleteSharedMemberTree(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_USHORT_T usVerifyType) {
    if (!pOutline || !pItem) return VTX_STS_NULL_ARG;
    for (VTX_POTLMBR_T p = pItem; p; p = otlNavtrdn(p, pItem)) {
        if (OTL_IS_HIDDEN(p) || otlMbrIsSharedShare(p)) continue;
        if (VTX_STS_T sts = otlDeleteSharedMembers(pOutline, p, usVerifyType)) return sts;
    }
    return 0;
}

OTL_WEAK VTX_STS_T otlResetSharedMembers(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem) {
    if (!pOutline || !pItem) return VTX_STS_NULL_ARG;
    VTX_POTLMBR_T s = nullptr;
    VTX_STS_T sts;
    while (!(sts = otlGetNextSharedMember(pOutline, pItem, s, &s)) && s) s->OriginalMbr.hOriginalMbr = nullptr;
    return sts;
}

OTL_WEAK VTX_STS_T otlResetSharedMemberTree(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem) {
    if (!pOutline || !pItem) return VTX_STS_NULL_ARG;
    for (VTX_POTLMBR_T p = pItem; p; p = otlNavtrdn(p, pItem)) {
        if (OTL_IS_HIDDEN(p) || otlMbrIsSharedShare(p)) continue;
        if (VTX_STS_T sts = otlResetSharedMembers(pOutline, p)) return sts;
    }
    return 0;
}

OTL_WEAK VTX_BOOL_T otlSharedInDifferentTree(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pHead) {
    if (!pOutline || !pHead) return 0;
    for (VTX_POTLMBR_T p = pHead; p; p = otlNavtrdn(p, pHead)) {
        if (OTL_IS_HIDDEN(p)) continue;
        if (otlMbrIsSharedShare(p)) {
            VTX_POTLMBR_T orig = nullptr;
            (void)otlHashFindOriginalItem(pNetCtx, pOutline, otlGetDim(p), p, &orig);  // none found: not elsewhere
            if (orig && !isAncestorOrSelf(pHead, orig)) return 1;
        } else {
            VTX_POTLMBR_T s = nullptr;
            while (!otlGetNextSharedMember(pOutline, p, s, &s) && s)
                if (!isAncestorOrSelf(pHead, s)) return 1;
        }
    }
    return 0;
}

VTX_BOOL_T otlFindTimeBalanceMember(VTX_POTL_T pOutline) {
    if (!pOutline || !pOutline->pHeadItem) return 0;
    for (VTX_POTLMBR_T d = pOutline->pHeadItem->pChild; d; d = d->pSibling) {
        if (categoryOf(d) != VTX_CAT_ACCOUNTS) continue;
        for (VTX_POTLMBR_T p = d; p; p = otlNavtrdn(p, d))
            if (p->MbrInfo.usTimeBalance) return 1;
    }
    return 0;
}

} // extern "C"

// ---- moving --------------------------------------------------------------------

extern "C" {

VTX_STS_T adShrOtlMoveMemberDupSibsCheck(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T hNewParent,
                                         VTX_HMEMBER_T hNewPrevSibling, VTX_BOOL_T fReportDupSibsForUnique,
                                         vtx_outerror_t *pMbrError) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit | otl::kNoProhibit, pMbrError);
    auto item = static_cast<VTX_POTLMBR_T>(hMember);
    // Behind the last child: when that is the member itself it stays where
    // it is, behind its own previous sibling.
    if (isLastSentinel(hNewPrevSibling)) {
        hNewPrevSibling = resolveLast(hOutline, hNewParent, hNewPrevSibling);
        if (hNewPrevSibling == hMember && item) hNewPrevSibling = item->pPrevSibling;
    }
    if (VTX_STS_T sts = f.enter({hMember, hNewParent, hNewPrevSibling})) return sts;
    VTX_POTL_T o = f.outline();
    vTX_PNETCTX_T ctx = f.ctx();
    if (!item) return f.fail(VTX_STS_NULL_ARG, "adShrOtlMoveMember", VTX_MSGARG_STR);
    if (!inOutline(o, item) || isRoot(item)) return f.fail(VTX_STS_BAD_PLACEMENT);
    if (categoryOf(item) == VTX_CAT_ATTRCALC) return f.fail(VTX_STS_ILLEGAL_OPERATION);
    return otl::otlGuard(ctx, "adShrOtlMoveMember", [&]() -> VTX_STS_T {
        Place pl;
        if (VTX_STS_T sts = placeOf(o, hNewParent, hNewPrevSibling, pl)) return f.fail(sts);
        VTX_POTLMBR_T srcDim = otlGetDim(item);
        const bool toRoot = isRoot(pl.parent);
        // Members move inside their dimension only.
        if (!toRoot && otlGetDim(pl.parent) != srcDim) return f.fail(VTX_STS_MOVE_OTHER_DIM);
        const char *name = item->MbrInfo.szMember;
        const bool shared = otlMbrIsSharedShare(item);
        // Name tests at the new place, passing over the member itself.
        if (o->bNonUniqueName || (fReportDupSibsForUnique && shared)) {
            VTX_POTLMBR_T sib = nullptr;
            if (otlHashIsNameDupAmongSiblings(ctx, o, pl.parent, name, 0, &sib, nullptr, nullptr) && sib != item)
                return otlReportClash(o, VTX_STS_SIBLING_NOT_UNIQUE, nullptr, 0, nullptr, 0);
        }
        if (o->bNonUniqueName) {
            if (toRoot) {
                VTX_ULONG_T count = 0;
                if (otlIsNameDuplicated(ctx, o, name, 0, &count))
                    return otlReportClash(o, VTX_STS_DIM_NOT_UNIQUE, nullptr, 0, nullptr, 0);
            } else if (!shared) {
                Refusal r;
                if (dimUniquenessTests(o, pl.parent, name, item, nullptr, r)) return report(f, r);
            }
        }
        // Not onto itself, not below itself.
        if (pl.prev == item || isAncestorOrSelf(item, pl.parent)) return f.fail(VTX_STS_ILLEGAL_MOVE);
        const VTX_USHORT_T moveType = pl.prev ? OTL_MOVE_SIBLING : OTL_MOVE_CHILD;
        VTX_POTLMBR_T dest = pl.prev ? pl.prev : pl.parent;
        const bool becomesDim = otlBecomingADimension(dest, moveType);
        const bool isDim = isDimRecord(item);
        if (becomesDim && !isDim) {
            if (shared) return f.fail(VTX_STS_ILLEGAL_MOVE);
            if (o->Counts.ulDimensions >= OTL_MAX_DIMS) return f.fail(VTX_STS_TOO_MANY_DIMS);
        }
        if (becomesDim != isDim) return f.fail(VTX_STS_MOVE_CHANGES_GEN1);
        if (!isDim && pl.parent->MbrInfo.usGen + 1 + subtreeDepth(item) > OTL_MAX_GEN)
            return f.fail(VTX_STS_TOO_DEEP);
        VTX_POTLMBR_T oldParent = item->pParent, oldPrev = item->pPrevSibling;
        if (oldParent == pl.parent && oldPrev == pl.prev) return 0;   // already there
        if (o->incrementalOPGfile && isDim) {
            // A paged outline keeps attribute dimensions apart from the
            // others and every dimension in its place.
            VTX_POTLMBR_T neighbour = pl.prev ? pl.prev : o->pHeadItem->pChild;
            if (neighbour && isAttrCategory(categoryOf(neighbour)) != isAttrCategory(categoryOf(item)))
                return f.fail(VTX_STS_OPG_MOVE_ATTR);
            return f.fail(VTX_STS_OPG_MOVE_DIMS);
        }

        // The steps that can fail, before the tree changes.
        if (o->fKeepTrans) {
            if (VTX_STS_T sts = otlCreateMoveTransaction(ctx, o, item, oldParent, oldPrev, pl.parent, pl.prev))
                return f.fail(sts);
        }
        if (o->incrementalOPGfile) {
            if (VTX_STS_T sts = opgDeleteIncrementalMember(o, item)) return f.fail(sts);
        }
        const VTX_UCHAR_T srcFlags = srcDim->ucFlags;
        const VTX_UCHAR_T parentFlags2 = pl.parent->ucFlags2;
        srcDim->ucFlags |= OTL_FLAG_DIMCHANGED;
        if (oldParent != pl.parent) oldParent->MbrInfo.ulChildCount--;
        (void)otlMoveItem(ctx, dest, item, moveType);   // a stored member keeps its value: nothing to copy
        if (oldParent != pl.parent) pl.parent->MbrInfo.ulChildCount++;
        pl.parent->ucFlags2 |= OTL_FLAG2_GAINEDCHILD;
        VTX_STS_T sts = 0;
        if (o->incrementalOPGfile) sts = opgInsertIncrementalMember(o, item);
        if (!sts) sts = otlUpdateAttrInfoForMove(o, item);
        if (sts) {
            // Back to where it was.
            if (oldParent != pl.parent) pl.parent->MbrInfo.ulChildCount--;
            if (oldPrev) (void)otlMoveItem(ctx, oldPrev, item, OTL_MOVE_SIBLING);  // undoing the move above
            else (void)otlMoveItem(ctx, oldParent, item, OTL_MOVE_CHILD);
            if (oldParent != pl.parent) oldParent->MbrInfo.ulChildCount++;
            pl.parent->ucFlags2 = parentFlags2;
            srcDim->ucFlags = srcFlags;
            return f.fail(sts);
        }
        if (isDim) otlReorderDimTable(o);
        f.edited();
        return 0;
    });
}

VTX_STS_T adShrOtlMoveMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T hNewParent,
                             VTX_HMEMBER_T hNewPrevSibling, vtx_outerror_t *pMbrError) {
    return adShrOtlMoveMemberDupSibsCheck(hOutline, hMember, hNewParent, hNewPrevSibling, 0, pMbrError);
}

} // extern "C"

// ---- renaming ------------------------------------------------------------------

namespace {

const char *const kJsonRename = "mbrrename";
const char *const kJsonSuccess = "success";
const char *const kJsonFailed = "fail";

// One name change of a rename: the member itself or one of its shared
// copies.  The new text is made before anything changes; the old one is kept
// until the rename stands.
struct NameChange {
    VTX_POTLMBR_T p;
    VTX_STR_T newName;
    VTX_STR_T oldName;
    VTX_USHORT_T oldShare;
    VTX_USHORT_T newShare;
};

struct RenamePlan {
    explicit RenamePlan(vTX_PNETCTX_T c) : ctx(c), changes(c), resets(c) {}
    RenamePlan(const RenamePlan &) = delete;
    RenamePlan &operator=(const RenamePlan &) = delete;
    ~RenamePlan() {
        // Whatever was not handed over is freed: the new texts of a rename
        // that did not happen, the old texts of one that did.
        for (NameChange &c : changes) (void)otlFreeMem(ctx, applied ? c.oldName : c.newName);
    }
    vTX_PNETCTX_T ctx;
    CtxArray<NameChange> changes;                  // [0] is the member itself
    CtxArray<std::pair<VTX_POTLMBR_T, VTX_POTLMBR_T>> resets;  // shared member, its former stored member
    VTX_POTLMBR_T item = nullptr;
    VTX_POTLMBR_T newOriginal = nullptr;            // a shared member's new stored member
    VTX_POTLMBR_T oldOriginal = nullptr;
    bool repoint = false;
    VTX_POTL_T outline = nullptr;                   // set with the first reset
    VTX_USHORT_T promotedShare = 0;                 // share state of the copy a quiet rename promotes
    bool applied = false;
    bool renames = false;                           // the text changes at all

    void apply() {
        for (NameChange &c : changes) {
            c.p->MbrInfo.szMember = c.newName;
            if (c.newShare != c.oldShare) otlSetShare(c.p, c.newShare);
        }
        // A quiet rename leaves the copies with the old name: the first of
        // them takes the stored member's place under that name, and the
        // others point at it, so no copy is left without a stored member.
        if (resets.size()) {
            VTX_POTLMBR_T first = resets.begin()->first;
            promotedShare = otlGetShare(first);
            otlSetShare(first, VTX_SHARE_STORE);
            first->OriginalMbr.hOriginalMbr = nullptr;
            ++outline->Counts.ulRealMembers;
            for (auto &r : resets)
                if (r.first != first) r.first->OriginalMbr.hOriginalMbr = outline->bNonUniqueName ? first : nullptr;
        }
        if (repoint) item->OriginalMbr.hOriginalMbr = newOriginal;
        applied = true;
    }
    void restore() {
        for (NameChange &c : changes) {
            c.p->MbrInfo.szMember = c.oldName;
            if (c.newShare != c.oldShare) otlSetShare(c.p, c.oldShare);
        }
        if (resets.size()) {
            otlSetShare(resets.begin()->first, promotedShare);
            --outline->Counts.ulRealMembers;
        }
        for (auto &r : resets) r.first->OriginalMbr.hOriginalMbr = r.second;
        if (repoint) item->OriginalMbr.hOriginalMbr = oldOriginal;
        applied = false;
    }

    // The index follows a rename in two steps: the new texts go in beside
    // the old ones, and the old ones leave once nothing can fail any more.
    // Taking texts out needs no memory, so a refused rename finds the index
    // as it was without anything having to be put back.  itemShared tells
    // how the member's own texts are counted among duplicates: as they were
    // before the edit, which may change the share state too.
    VTX_STS_T enterNewNames(VTX_POTL_T o, bool itemShared) {
        size_t entered = 0;
        for (NameChange &c : changes) {
            VTX_STS_T sts = otlHashAddStringAs(ctx, o, c.p, c.newName, 0, OTL_HASH_NONE, OTL_HASH_NONE,
                                               countedShared(c, itemShared));
            if (sts) {
                dropNames(o, true, itemShared, entered);
                return sts;
            }
            ++entered;
        }
        return 0;
    }
    void dropNames(VTX_POTL_T o, bool newNames, bool itemShared, size_t count = SIZE_MAX) {
        size_t i = 0;
        for (NameChange &c : changes) {
            if (i++ == count) break;
            // Each text was entered by this edit or stood before it.
            (void)otlHashDeleteStringAs(ctx, o, c.p, newNames ? c.newName : c.oldName, 0, countedShared(c, itemShared));
        }
    }
    bool countedShared(const NameChange &c, bool itemShared) const {
        return c.p == item ? itemShared : OTL_IS_SHARE(c.oldShare);
    }
};

// The checks of a rename, in their order, and the plan of what changes.
// bDimTests 0 leaves out the dimension-wide uniqueness tests (the host's own
// name-fix pass); bSiblingTest 0 also the sibling test.
VTX_STS_T planRename(VTX_POTL_T o, VTX_POTLMBR_T item, const char *newName, VTX_BOOL_T fReportDupSibsForUnique,
                     VTX_USHORT_T usVerifyType, bool bDimTests, bool bSiblingTest, Refusal &r, RenamePlan &plan) {
    vTX_PNETCTX_T ctx = o->pNetCtx;
    plan.item = item;
    const char *oldName = item->MbrInfo.szMember ? item->MbrInfo.szMember : "";
    const bool isDim = isDimRecord(item);
    const bool shared = otlMbrIsSharedShare(item);
    const bool quiet = usVerifyType == OTL_VERIFY_QUIET;
    if (isLarge(item) && L(item)->MbrInfo.usCategory == VTX_CAT_ATTRCALC) return r.set(VTX_STS_ILLEGAL_OPERATION);
    if (std::strcmp(oldName, newName) == 0) return 0;   // nothing changes
    plan.renames = true;
    const bool caseOnly = otlCompareNames(o, oldName, newName) == 0;

    if (bSiblingTest && !isDim && (o->bNonUniqueName || (fReportDupSibsForUnique && shared))) {
        VTX_POTLMBR_T sib = nullptr;
        if (otlHashIsNameDupAmongSiblings(ctx, o, item->pParent, newName, 0, &sib, nullptr, nullptr) && sib != item)
            return r.set(VTX_STS_SIBLING_NOT_UNIQUE, nullptr, 0, nullptr, 0, true);
    }
    if (o->bNonUniqueName) {
        VTX_POTLMBR_T found = nullptr;
        if (otlIsNameDupAmongDimensions(o, newName, 0, &found) && found && found != item)
            return r.set(VTX_STS_DUP_WITH_DIM, newName, VTX_MSGARG_STR, nullptr, 0, true);
        if (isDim) {
            found = nullptr;
            VTX_STS_T sts = otlHashFindItemByName(ctx, o, newName, nullptr, 1, 0, 1, 0, nullptr, &found, nullptr, nullptr);
            if ((sts == 0 && found && found != item) || (sts && sts != VTX_STS_NOT_FOUND))
                return r.set(VTX_STS_DIM_NOT_UNIQUE, nullptr, 0, nullptr, 0, true);
        } else if (!quiet && bDimTests && !shared) {
            if (dimUniquenessTests(o, item->pParent, newName, item, nullptr, r)) return r.sts;
        }
    } else if (shared) {
        // A shared member renamed stands for another stored member: one of
        // the new name, not above it.
        VTX_POTLMBR_T stored = nullptr;
        VTX_STS_T sts = otlHashFindItemByName(ctx, o, newName, nullptr, 1, 0, 1, 0, nullptr, &stored, nullptr, nullptr);
        if (sts) return r.set(sts, newName, VTX_MSGARG_STR);
        if (!quiet) {
            if (!stored) return r.set(VTX_STS_SHARED_NO_STORED, newName, VTX_MSGARG_STR);
            if (consolidationOf(item) != VTX_CONS_IGNORE && sharedUnderStored(item->pParent, stored))
                return r.set(VTX_STS_SHARED_UNDER_STORED, newName, VTX_MSGARG_STR);
            VTX_POTLMBR_T sib = nullptr;
            if (otlHashIsNameDupAmongSiblings(ctx, o, item->pParent, newName, 0, &sib, nullptr, nullptr) &&
                sib != item)
                return r.set(VTX_STS_SIBLING_NOT_UNIQUE, nullptr, 0, nullptr, 0, true);
        }
        if (item->OriginalMbr.hOriginalMbr) {
            plan.repoint = true;
            plan.oldOriginal = item->OriginalMbr.hOriginalMbr;
            plan.newOriginal = stored;
        }
    } else {
        // An outline of unique names: the new name must be free, apart from
        // the member itself and its own shared members.
        auto ownCopy = [&](VTX_POTLMBR_T m) {
            if (!otlMbrIsSharedShare(m)) return false;
            VTX_POTLMBR_T orig = nullptr;
            (void)otlHashFindOriginalItem(ctx, o, otlGetDim(m), m, &orig);  // no stored member: not ours
            return orig == item;
        };
        VTX_POTLMBR_T found = nullptr;
        VTX_STS_T sts = otlHashFindItemByName(ctx, o, newName, nullptr, 1, 1, 1, 0, nullptr, &found, nullptr, nullptr);
        if (sts) return r.set(sts, newName, VTX_MSGARG_STR);
        if (found == item) {
            found = nullptr;
            sts = otlHashFindItemByName(ctx, o, newName, nullptr, 0, 1, 1, 0, nullptr, &found, nullptr, nullptr);
            if (sts) return r.set(sts, newName, VTX_MSGARG_STR);
            if (found == item) found = nullptr;
        }
        if (found && !ownCopy(found)) return r.set(VTX_STS_NAME_EXISTS, newName, VTX_MSGARG_STR, nullptr, 0, true);
    }
    if (isLarge(item) && L(item)->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE) {
        VTX_STS_T sts = otlSetAttrValueAttrNames(o, nullptr, item, usVerifyType);
        if (sts && !quiet) return r.set(sts);
    }
    if (!otlIsNameLegal(o, newName, ctx, 1)) return r.set(VTX_STS_INVALID_NAME, newName, VTX_MSGARG_STR);

    // The texts, made before anything changes.
    auto addChange = [&](VTX_POTLMBR_T p, VTX_USHORT_T newShare) -> VTX_STS_T {
        CtxString s(ctx);
        if (VTX_STS_T sts = s.copy(newName)) return sts;
        NameChange c{p, s.get(), p->MbrInfo.szMember, otlGetShare(p), newShare};
        if (VTX_STS_T sts = plan.changes.push(c)) return sts;
        (void)s.release();
        return 0;
    };
    if (VTX_STS_T sts = addChange(item, otlGetShare(item))) return r.set(sts, "adShrOtlRenameMember", VTX_MSGARG_STR);
    if (!shared && !isAttrCategory(categoryOf(item))) {
        if (quiet && !caseOnly) {
            plan.outline = o;
            VTX_POTLMBR_T s = nullptr;
            while (!otlGetNextSharedMember(o, item, s, &s) && s)
                if (VTX_STS_T sts = plan.resets.push({s, s->OriginalMbr.hOriginalMbr}))
                    return r.set(sts, "adShrOtlRenameMember", VTX_MSGARG_STR);
        } else if (!caseOnly) {
            VTX_ULONG_T count = 0;
            const bool oldDup = o->bNonUniqueName && otlIsNameDuplicated(ctx, o, oldName, 0, &count);
            const bool newKnown = o->bNonUniqueName && otlHashIsStringExist(ctx, o, newName, 0, nullptr, nullptr);
            VTX_POTLMBR_T s = nullptr;
            while (!otlGetNextSharedMember(o, item, s, &s) && s) {
                VTX_USHORT_T share = otlGetShare(s);
                if (!newKnown && oldDup) share = VTX_SHARE_SHARED;
                if (VTX_STS_T sts = addChange(s, share)) return r.set(sts, "adShrOtlRenameMember", VTX_MSGARG_STR);
            }
        }
    }
    return 0;
}

// The name a member goes by in the operation report: its name in an outline
// of unique names, else the path up to the first ancestor whose name is
// unique.
void reportName(VTX_POTL_T o, VTX_POTLMBR_T item, char *buf, size_t size) {
    buf[0] = 0;
    if (!item || !item->MbrInfo.szMember) return;
    if (!o->bNonUniqueName || isDimRecord(item)) {
        std::snprintf(buf, size, "%s", item->MbrInfo.szMember);
        return;
    }
    VTX_POTLMBR_T chain[OTL_MAX_GEN + 1];
    size_t n = 0;
    VTX_ULONG_T count = 0;
    for (VTX_POTLMBR_T p = item; p && !isRoot(p) && n <= OTL_MAX_GEN; p = p->pParent) {
        chain[n++] = p;
        if (!otlIsNameDuplicated(o->pNetCtx, o, p->MbrInfo.szMember, 0, &count)) break;
    }
    size_t used = 0;
    for (size_t i = n; i-- > 0 && used + 4 < size;) {
        buf[used++] = '[';
        for (const char *c = chain[i]->MbrInfo.szMember; *c && used + 4 < size; ++c) {
            buf[used++] = *c;
            if (*c == ']' && used + 4 < size) buf[used++] = ']';
        }
        buf[used++] = ']';
        if (i) buf[used++] = '.';
    }
    buf[used] = 0;
}

VTX_STS_T renameMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszNewMember,
                       VTX_BOOL_T fReportDupSibsForUnique, VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError,
                       bool bDimTests, bool bSiblingTest) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit, pMbrError);
    VTX_POTL_T o = f.outline();
    auto item = static_cast<VTX_POTLMBR_T>(hMember);
    // The operation report names the member as it was.
    char reportBuf[VTX_MBRNAME_LEN * 2];
    reportBuf[0] = 0;
    const bool withReport = o && o->jsonHandler && item && !OTL_IS_HIDDEN(item) && !o->fOpenQuery;
    if (withReport) reportName(o, item, reportBuf, sizeof reportBuf);
    auto done = [&](VTX_STS_T sts) {
        if (withReport) {
            const char *text = sts > 0 ? adNetMessageText(sts) : nullptr;
            jsonAddMemberOperation(o->jsonHandler, reportBuf, kJsonRename, sts ? kJsonFailed : kJsonSuccess,
                                   sts ? (text ? text : "") : "", sts ? (int)sts : -1,
                                   sts ? "" : (pszNewMember ? pszNewMember : ""));
        }
        return sts;
    };
    if (VTX_STS_T sts = f.enter({hMember})) return done(sts);
    if (!item || !pszNewMember) return done(f.fail(VTX_STS_NULL_ARG, "adShrOtlRenameMember", VTX_MSGARG_STR));
    if (!inOutline(o, item)) return done(f.fail(VTX_STS_BAD_PLACEMENT));
    if (isRoot(item)) return done(f.fail(VTX_STS_ILLEGAL_OPERATION));
    vTX_PNETCTX_T ctx = f.ctx();
    // The name test notes long names; a refused rename leaves no note.
    const VTX_BOOL_T longNames = o->bLongNames;
    auto keepNote = [&](VTX_STS_T sts) {
        if (sts) o->bLongNames = longNames;
        return sts;
    };
    return done(keepNote(otl::otlGuard(ctx, "adShrOtlRenameMember", [&]() -> VTX_STS_T {
        Refusal r;
        RenamePlan plan(ctx);
        if (planRename(o, item, pszNewMember, fReportDupSibsForUnique, usVerifyType, bDimTests, bSiblingTest, r, plan))
            return report(f, r);
        if (!plan.renames) return 0;
        CtxString oldName(ctx);
        if (VTX_STS_T sts = oldName.copy(item->MbrInfo.szMember)) return f.fail(sts, "adShrOtlRenameMember", VTX_MSGARG_STR);
        const bool itemShared = otlMbrIsSharedShare(item);
        plan.apply();
        VTX_STS_T sts = plan.enterNewNames(o, itemShared);
        const bool entered = !sts;
        if (!sts && o->fKeepTrans) sts = otlCreateRenameTransaction(ctx, o, item, oldName.get());
        if (!sts && o->fTrackInternalTrans) sts = adTransAddPropChgToList(ctx, o, item->MbrInfo.usGen, oldName.get());
        if (!sts && o->incrementalOPGfile) {
            sts = opgOpenDim(o, dimIdOf(o, item));
            if (!sts) sts = opgWriteMember(o, o->bkdbH, item, 0);
        }
        if (sts) {
            if (entered) plan.dropNames(o, true, itemShared);
            plan.restore();
            return f.fail(sts);
        }
        plan.dropNames(o, false, itemShared);
        if (isDimRecord(item)) otlIsNameDupAmongDimensionsBloomFilterAddName(o, item->MbrInfo.szMember);
        // The old name may stand alone now.
        otlHashClearDupMarksIfUnique(ctx, o, oldName.get());
        // A name that no longer repeats is no duplicate.
        VTX_ULONG_T count = 0;
        if (o->bNonUniqueName && (item->ucFlags & OTL_FLAG_DUP) && !isDimRecord(item) &&
            !otlIsNameDuplicated(ctx, o, item->MbrInfo.szMember, 0, &count))
            otlMbrClearDuplicateItem(item);
        f.edited();
        return 0;
    })));
}

} // namespace

extern "C" {

VTX_STS_T adShrOtlRenameMemberDupSibsCheck(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszNewMember,
                                           VTX_BOOL_T fReportDupSibsForUnique, VTX_USHORT_T usVerifyType,
                                           vtx_outerror_t *pMbrError) {
    return renameMember(hOutline, hMember, pszNewMember, fReportDupSibsForUnique, usVerifyType, pMbrError, true, true);
}

VTX_STS_T adShrOtlRenameMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszNewMember,
                               VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError) {
    return renameMember(hOutline, hMember, pszNewMember, 0, usVerifyType, pMbrError, true, true);
}

VTX_STS_T adShrOtlMotfRenameMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszNewMember,
                                   vtx_outerror_t *pMbrError) {
    return renameMember(hOutline, hMember, pszNewMember, 0, 0, pMbrError, false, true);
}

VTX_STS_T adShrOtlMotfRenameMemberDupSibsNoCheck(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                 VTX_CSTR_T pszNewMember, vtx_outerror_t *pMbrError) {
    return renameMember(hOutline, hMember, pszNewMember, 0, 0, pMbrError, false, false);
}

} // extern "C"

// ---- member settings ---------------------------------------------------------------

namespace {

// Adjusts the stored-member counts when a member starts or stops holding
// data of its own.
void recountShare(VTX_POTL_T o, VTX_POTLMBR_T item, VTX_USHORT_T oldShare, VTX_USHORT_T newShare) {
    const bool was = isRealShare(oldShare), is = isRealShare(newShare);
    if (was == is) return;
    OTL_COUNTS &c = o->Counts;
    OTL_DIM_MAP *m = (c.pDimensionMaps && item->ulDimno >= 1 && item->ulDimno <= o->DimTableSize)
                         ? &c.pDimensionMaps[item->ulDimno - 1] : nullptr;
    if (is) {
        c.ulRealMembers++;
        if (m) m->ulMembers++;
    } else {
        if (c.ulRealMembers) c.ulRealMembers--;
        if (m && m->ulMembers) m->ulMembers--;
    }
}

// A block of the context that is freed on every way out.
template <class T>
struct CtxBlock {
    CtxBlock(vTX_PNETCTX_T c) : ctx(c) {}
    ~CtxBlock() { (void)otlFreeMem(ctx, p); }  // scratch block
    CtxBlock(const CtxBlock &) = delete;
    CtxBlock &operator=(const CtxBlock &) = delete;
    vTX_PNETCTX_T ctx;
    T *p = nullptr;
};

} // namespace

extern "C" VTX_STS_T adShrOtlSetMemberInfo(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, vtx_mbrinfo_t *pInfo,
                                           VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit, pMbrError);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    VTX_POTL_T o = f.outline();
    vTX_PNETCTX_T ctx = f.ctx();
    auto item = static_cast<VTX_POTLMBR_T>(hMember);
    if (!item || !pInfo) return f.fail(VTX_STS_NULL_ARG, "adShrOtlSetMemberInfo", VTX_MSGARG_STR);
    if (!inOutline(o, item)) return f.fail(VTX_STS_BAD_PLACEMENT);
    const VTX_BOOL_T longNames = o->bLongNames;
    VTX_STS_T result = otl::otlGuard(ctx, "adShrOtlSetMemberInfo", [&]() -> VTX_STS_T {
        const VTX_ULONG_T ver = (VTX_ULONG_T)clientVersion(o);
        WideRecord wideRec;
        if (VTX_STS_T sts = wideRec.take(o, pInfo)) return f.fail(sts, "adShrOtlSetMemberInfo", VTX_MSGARG_STR);
        // A small record is worked on through a large view of it.
        VTX_OTLMBRLARGE_T view;
        VTX_POTLMBRLARGE_T work = L(item);
        const bool small = OTL_IS_SMALL(item);
        if (small) {
            std::memset((void *)&view, 0, sizeof view);
            if (VTX_STS_T sts = opg_ToItemLarge(o, &view, item)) return f.fail(sts);
            work = &view;
        }
        if (work->MbrInfo.usCategory == VTX_CAT_ATTRCALC) return f.fail(VTX_STS_ILLEGAL_OPERATION);
        if (o->incrementalOPGfile && isDimRecord(item) && pInfo->usCategory == VTX_CAT_ATTRIBUTE && item->pChild)
            return f.fail(VTX_STS_ILLEGAL_OPERATION);
        if (!otlGetDim(item)) return f.fail(VTX_STS_NO_DIMENSION);
        const VTX_USHORT_T oldShare = otlGetShare(item), newShare = pInfo->usShare;
        if (!o->bNonUniqueName && usVerifyType != OTL_VERIFY_QUIET && OTL_IS_SHARE(oldShare) && !OTL_IS_SHARE(newShare))
            return f.fail(VTX_STS_DUPLICATE_NAME);
        if ((item->MbrInfo.ucInfoFlags & OTL_INFO_INDEPMBR) && (newShare == VTX_SHARE_LABEL || OTL_IS_SHARE(newShare)))
            return f.fail(VTX_STS_ILLEGAL_OPERATION);
        if (pInfo->usConsolidation > VTX_CONS_NEVER ||
            (pInfo->usConsolidation == VTX_CONS_NEVER && o->usOutlineType == VTX_OTL_AGGSTORE))
            return f.fail(VTX_STS_BAD_CONSOLIDATION);

        // The caller's record stays untouched: the settings are worked out
        // on a copy.
        CtxBlock<vtx_mbrinfo_t> info(ctx);
        if (VTX_STS_T sts = otlAlloc(ctx, sizeof(vtx_mbrinfo_t), &info.p)) return f.fail(sts, "adShrOtlSetMemberInfo", VTX_MSGARG_STR);
        *info.p = *pInfo;
        info.p->szMember[VTX_MBRNAME_LEN - 1] = 0;

        // A new name is a rename, with the rename's checks.
        Refusal r;
        RenamePlan plan(ctx);
        const char *oldName = item->MbrInfo.szMember ? item->MbrInfo.szMember : "";
        if (otlStricmp(ctx, oldName, info.p->szMember) != 0) {
            if (planRename(o, item, info.p->szMember, 0, usVerifyType, true, true, r, plan)) return report(f, r);
        }
        // A dimension that becomes accounts is a dynamic hierarchy.
        if (isDimRecord(item) && info.p->usCategory == VTX_CAT_ACCOUNTS && work->MbrInfo.usCategory != VTX_CAT_ACCOUNTS)
            info.p->ucHierarchyType = OTL_HIER_DYNAMIC;
        if (o->usOutlineType == VTX_OTL_AGGSTORE) info.p->usStorage = work->MbrInfo.usStorage;

        // Apply, keeping what is needed to put everything back.
        const VTX_OTLMBRLARGE_T before = *work;
        const VTX_UCHAR_T stateBefore = o->ucStateFlag;
        OldStrings old;
        if (VTX_STS_T sts = applyMemberInfo(o, ctx, work, info.p, ver, usVerifyType, small ? 1 : 0, &old))
            return f.fail(sts);
        if (ver <= (VTX_ULONG_T)kVerHierType && info.p->ucHierarchyType == OTL_HIER_DYNAMIC && isDimRecord(item)) {
            work->MbrInfo.ucHierarchyType = OTL_HIER_DYNAMIC;
            work->MbrInfo.ucInfoFlags |= OTL_INFO_DYNHIER;
        }
        // The member's texts are counted among duplicates as its share
        // state was; a change of state moves it in or out of the count.
        const bool wasShared = OTL_IS_SHARE(oldShare);
        const bool nowShared = otlMbrIsSharedShare((VTX_POTLMBR_T)work);
        bool entered = false, joined = false;
        auto restore = [&]() {
            // Leaving the count and taking texts out need no memory.
            if (joined) (void)otlHashDupNameShareChanged(ctx, o, item, item->MbrInfo.szMember, 1);
            if (entered) plan.dropNames(o, true, wasShared);
            if (plan.applied) plan.restore();
            if (!small) {
                if (work->MbrInfo.szCurMember != before.MbrInfo.szCurMember) (void)otlFreeMem(ctx, work->MbrInfo.szCurMember);
                if (work->MbrInfo.szComment != before.MbrInfo.szComment) (void)otlFreeMem(ctx, work->MbrInfo.szComment);
            }
            *work = before;
            o->ucStateFlag = stateBefore;
        };
        VTX_STS_T sts = 0;
        if (ver >= (VTX_ULONG_T)kVerDimName) sts = otlUpdateAttrInfoForSet(o, item, pInfo);
        if (!sts && plan.renames) {
            plan.apply();
            sts = plan.enterNewNames(o, wasShared);
            entered = !sts;
        }
        if (!sts && wasShared && !nowShared) {
            sts = otlHashDupNameShareChanged(ctx, o, item, item->MbrInfo.szMember, 0);
            joined = !sts;
        }
        if (sts) {
            restore();
            return f.fail(sts);
        }
        if (o->bNonUniqueName && !isDimRecord(item)) {
            item->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_DUP;
            item->ucNameUnique = 0;
            if (!OTL_IS_SHARE(oldShare) && OTL_IS_SHARE(newShare)) item->OriginalMbr.hOriginalMbr = nullptr;
        }
        vtx_outerror_t err{};
        sts = otlVerifyEditedItem(o, (VTX_POTLMBR_T)work, usVerifyType, &err);
        if (sts) {
            restore();
            if (pMbrError) {
                *pMbrError = err;
                pMbrError->hMember = item;
            }
            return f.fail(sts);
        }
        if (o->incrementalOPGfile) {
            sts = opgOpenDim(o, dimIdOf(o, item));
            if (!sts) sts = opgWriteMember(o, o->bkdbH, (VTX_POTLMBR_T)work, 0);
            if (sts) {
                restore();
                return f.fail(sts);
            }
        }
        if (entered) plan.dropNames(o, false, wasShared);
        if (!wasShared && nowShared) (void)otlHashDupNameShareChanged(ctx, o, item, item->MbrInfo.szMember, 1);  // leaving needs no memory
        // A name this member gave up or stopped counting for may stand alone now.
        if (plan.renames) otlHashClearDupMarksIfUnique(ctx, o, plan.changes[0].oldName);
        if (plan.renames && isDimRecord(item)) otlIsNameDupAmongDimensionsBloomFilterAddName(o, item->MbrInfo.szMember);
        if (!wasShared && nowShared) otlHashClearDupMarksIfUnique(ctx, o, item->MbrInfo.szMember);
        if (!small) freeOldStrings(ctx, old);
        recountShare(o, item, oldShare, newShare);
        f.edited((plan.renames || oldShare != newShare) ? OTL_STATE_EDITED : OTL_STATE_CHANGED);
        return 0;
    });
    // The name test notes long names; a refused change leaves no note.
    if (result) o->bLongNames = longNames;
    return result;
}

extern "C" {

VTX_STS_T adShrOtlSetDataStorageForMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_USHORT_T usVerifyType,
                                          vtx_outerror_t *pMbrError, VTX_USHORT_T usShare) {
    auto item = static_cast<VTX_POTLMBR_T>(hMember);
    if (item && isRoot(item)) return 0;
    vtx_mbrinfo_t *info = nullptr;
    VTX_STS_T sts = adShrOtlGetMemberInfo(hOutline, hMember, &info);
    if (sts) return sts;
    if (info->usShare != usShare) {
        info->usShare = usShare;
        sts = adShrOtlSetMemberInfo(hOutline, hMember, info, usVerifyType, pMbrError);
    }
    if (!sts) sts = adShrOtlMarkMbrByHandle(hOutline, hMember, 0);
    VTX_POTL_T o = static_cast<VTX_POTL_T>(hOutline);
    VTX_STS_T freed = adShrOtlFreeMbrInfo(o->pNetCtx, 1, info);
    return sts ? sts : freed;
}

VTX_STS_T adShrOtlSetDataStorageApplyToChildrenOrDescendants(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                             VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError,
                                                             VTX_USHORT_T usShare, VTX_BOOL_T bDescendants) {
    VTX_HMEMBER_T child = nullptr;
    VTX_STS_T sts = adShrOtlGetChild(hOutline, hMember, &child);
    while (!sts && child) {
        // A subtree changes from the bottom up.
        if (bDescendants)
            sts = adShrOtlSetDataStorageApplyToChildrenOrDescendants(hOutline, child, usVerifyType, pMbrError, usShare, 1);
        if (!sts) sts = adShrOtlSetDataStorageForMember(hOutline, child, usVerifyType, pMbrError, usShare);
        if (!sts) sts = adShrOtlGetNextSibling(hOutline, child, &child);
    }
    return sts;
}

VTX_STS_T adShrOtlSetDataStorageApplyToGenLevel(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError,
                                                VTX_USHORT_T genLevelNum, VTX_USHORT_T usShare, VTX_BOOL_T bLevel) {
    vtx_mbrinfo_t *info = nullptr;
    VTX_STS_T sts = adShrOtlGetMemberInfo(hOutline, hMember, &info);
    if (sts) return sts;
    const VTX_USHORT_T value = bLevel ? info->usLevel : info->usGen;
    VTX_POTL_T o = static_cast<VTX_POTL_T>(hOutline);
    (void)adShrOtlFreeMbrInfo(o->pNetCtx, 1, info);  // a read copy; its release cannot change the outcome
    if (value == genLevelNum) return adShrOtlSetDataStorageForMember(hOutline, hMember, usVerifyType, pMbrError, usShare);
    const bool deeper = bLevel ? value > genLevelNum : value < genLevelNum;
    if (!deeper) return 0;
    VTX_HMEMBER_T child = nullptr;
    sts = adShrOtlGetChild(hOutline, hMember, &child);
    while (!sts && child) {
        sts = adShrOtlSetDataStorageApplyToGenLevel(hOutline, child, usVerifyType, pMbrError, genLevelNum, usShare, bLevel);
        if (!sts) sts = adShrOtlGetNextSibling(hOutline, child, &child);
    }
    return sts;
}

VTX_STS_T adShrOtlSetDataStorage(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_USHORT_T usVerifyType,
                                 vtx_outerror_t *pMbrError, VTX_USHORT_T applyTo, VTX_USHORT_T genLevelNum,
                                 VTX_USHORT_T usShare) {
    switch (applyTo) {
    case 0:
        return adShrOtlSetDataStorageApplyToGenLevel(hOutline, hMember, usVerifyType, pMbrError, genLevelNum, usShare, 1);
    case 1:
        return adShrOtlSetDataStorageApplyToGenLevel(hOutline, hMember, usVerifyType, pMbrError, genLevelNum, usShare, 0);
    case 2:
    case 4:
        return adShrOtlSetDataStorageApplyToChildrenOrDescendants(hOutline, hMember, usVerifyType, pMbrError, usShare,
                                                                  applyTo == 4);
    case 3:
    case 5: {
        VTX_STS_T sts = adShrOtlSetDataStorageApplyToChildrenOrDescendants(hOutline, hMember, usVerifyType, pMbrError,
                                                                           usShare, applyTo == 5);
        if (sts) return sts;
        return adShrOtlSetDataStorageForMember(hOutline, hMember, usVerifyType, pMbrError, usShare);
    }
    default:
        return 0;
    }
}

// ---- order of hierarchies ---------------------------------------------------------

VTX_STS_T adShrOtlReorderHierarchies(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_ULONG_T ulCount,
                                     const VTX_HMEMBER_T *phHierarchies, vtx_outerror_t *pMbrError) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit | otl::kNoProhibit, pMbrError);
    if (VTX_STS_T sts = f.enter({hDim})) return sts;
    VTX_POTL_T o = f.outline();
    auto dim = static_cast<VTX_POTLMBR_T>(hDim);
    if (!dim || (ulCount && !phHierarchies)) return f.fail(VTX_STS_NULL_ARG, "adShrOtlReorderHierarchies", VTX_MSGARG_STR);
    if (!inOutline(o, dim)) return f.fail(VTX_STS_BAD_PLACEMENT);
    if (!isDimRecord(dim)) return f.fail(VTX_STS_NOT_A_DIMENSION);
    // The list names every visible child once, and nothing else.
    VTX_ULONG_T visible = 0;
    for (VTX_POTLMBR_T c = dim->pChild; c; c = c->pSibling)
        if (!OTL_IS_HIDDEN(c)) ++visible;
    if (visible != ulCount) return f.fail(VTX_STS_ILLEGAL_OPERATION);
    for (VTX_ULONG_T i = 0; i < ulCount; ++i) {
        auto h = static_cast<VTX_POTLMBR_T>(phHierarchies[i]);
        if (!h || h->pParent != dim || OTL_IS_HIDDEN(h)) return f.fail(VTX_STS_ILLEGAL_OPERATION);
        for (VTX_ULONG_T j = 0; j < i; ++j)
            if (phHierarchies[j] == phHierarchies[i]) return f.fail(VTX_STS_ILLEGAL_OPERATION);
    }
    if (o->incrementalOPGfile) return f.fail(VTX_STS_NOT_AVAILABLE);
    bool same = true;
    VTX_POTLMBR_T c = dim->pChild;
    for (VTX_ULONG_T i = 0; i < ulCount; ++i, c = c->pSibling)
        if (c != phHierarchies[i]) same = false;
    if (same) return 0;
    // Take the hierarchies out and hang them back, the last first, each in
    // front: the spare children stay behind them.  Generations and levels
    // do not change.
    for (VTX_ULONG_T i = 0; i < ulCount; ++i)
        (void)otlUnattachItem(f.ctx(), static_cast<VTX_POTLMBR_T>(phHierarchies[i]), 0);  // the same children come back
    for (VTX_ULONG_T i = ulCount; i-- > 0;) otlAddChildItem(dim, static_cast<VTX_POTLMBR_T>(phHierarchies[i]), 0);
    dim->ucFlags |= OTL_FLAG_DIMCHANGED;
    // Member numbers follow the order of the hierarchies.
    f.edited();
    return 0;
}

} // extern "C"

// ---- spare (hidden) children ---------------------------------------------------------

namespace {

// Spare children added by one call, so that a failure takes them all back.
using HiddenLog = CtxArray<VTX_POTLMBR_T>;

VTX_STS_T addHiddenMember(VTX_POTL_T o, VTX_POTLMBR_T pParent, VTX_POTLMBR_T pPrev, VTX_POTLMBR_T *ppItem,
                          HiddenLog *log) {
    *ppItem = nullptr;
    if (o->bEditingProhibited) return VTX_STS_EDIT_PROHIBITED;
    if (!pParent || !pPrev || !pParent->pChild || pPrev->pParent != pParent) return VTX_STS_SILENT;
    vTX_PNETCTX_T ctx = o->pNetCtx;
    const VTX_ULONG_T d = pParent->ulDimno ? pParent->ulDimno - 1 : 0;
    if (log) {
        // Room in the log first: an entry that cannot be noted cannot be undone.
        if (VTX_STS_T sts = log->push(nullptr)) return sts;
    }
    VTX_POTLMBR_T item = nullptr;
    if (VTX_STS_T sts = otlNewItemAny(ctx, o, &item, 1)) return sts;
    VTX_POTLMBRLARGE_T l = L(item);
    l->MbrInfo.usStorage = 1;
    if (isLarge(pParent)) {
        l->MbrInfo.usCategory = L(pParent)->MbrInfo.usCategory;
        l->MbrInfo.usStorageCategory = L(pParent)->MbrInfo.usStorageCategory;
    }
    item->ucFlags2 |= OTL_FLAG2_HIDDEN;
    otlAddSiblingItemEx(o, pPrev, item, 1);
    item->ulDimno = pParent->ulDimno;
    if (VTX_STS_T sts = otlUpdateAttrInfoForAdd(o, item)) {
        (void)otlUnattachItem(ctx, item, 1);  // back out of the tree as it came
        otlFreeItem(ctx, o, item);
        return sts;
    }
    item->mbrId = (VTX_INT32_T)o->nextMbrIds[d]++;
    item->persistMbrId = (VTX_INT32_T)o->nextPersistMbrIds[d]++;
    if (log) (*log)[log->size() - 1] = item;
    *ppItem = item;
    return 0;
}

// Takes back spare children in the reverse order of their adding.
void undoHidden(VTX_POTL_T o, HiddenLog &log) {
    for (size_t i = log.size(); i-- > 0;) {
        VTX_POTLMBR_T item = log[i];
        if (!item) continue;
        const VTX_ULONG_T d = item->ulDimno ? item->ulDimno - 1 : 0;
        otlRollbackAttrInfoUpdatedForAdd(o, item);
        if (o->nextMbrIds[d] == (VTX_ULONG_T)item->mbrId + 1) o->nextMbrIds[d]--;
        if (o->nextPersistMbrIds[d] == (VTX_ULONG_T)item->persistMbrId + 1) o->nextPersistMbrIds[d]--;
        (void)otlUnattachItem(o->pNetCtx, item, 1);  // a spare leaf: nothing of it stays
        otlFreeItem(o->pNetCtx, o, item);
    }
}

VTX_STS_T addHiddenChildren(VTX_POTL_T o, VTX_POTLMBR_T pParent, VTX_ULONG_T ulHiddenCount, HiddenLog *log) {
    if (!pParent || !pParent->pChild) return VTX_STS_SILENT;
    // Spare children stand last: count them, and find the end.
    VTX_ULONG_T hidden = 0;
    VTX_POTLMBR_T last = nullptr;
    for (VTX_POTLMBR_T c = pParent->pChild; c; c = c->pSibling) {
        if (OTL_IS_HIDDEN(c)) ++hidden;
        else if (hidden) return VTX_STS_ILLEGAL_OPERATION;  // a visible child behind a spare one
        last = c;
    }
    for (VTX_ULONG_T i = hidden; i < ulHiddenCount; ++i) {
        VTX_POTLMBR_T h = nullptr;
        if (VTX_STS_T sts = addHiddenMember(o, pParent, last, &h, log)) return sts;
        last = h;
    }
    return 0;
}

VTX_ULONG_T visibleChildren(VTX_POTLMBR_T p) {
    VTX_ULONG_T n = 0;
    for (VTX_POTLMBR_T c = p->pChild; c; c = c->pSibling)
        if (!OTL_IS_HIDDEN(c)) ++n;
    return n;
}

bool hasLeafChild(VTX_POTLMBR_T p) {
    for (VTX_POTLMBR_T c = p->pChild; c; c = c->pSibling)
        if (!OTL_IS_HIDDEN(c) && !c->pChild) return true;
    return false;
}

VTX_STS_T addHiddenMembers(VTX_POTL_T o, HiddenLog *log) {
    const VTX_ULONG_T want = o->usPreAllocatedChildren;
    if (!want || !o->pHeadItem) return 0;
    for (VTX_POTLMBR_T d = o->pHeadItem->pChild; d; d = d->pSibling) {
        if (isAttrCategory(categoryOf(d))) break;
        if (!isLarge(d) || L(d)->MbrInfo.usStorage != 1) continue;
        for (VTX_POTLMBR_T m = d; m; m = otlNavtrdn(m, d)) {
            if (OTL_IS_HIDDEN(m) || !hasLeafChild(m)) continue;
            VTX_ULONG_T vis = visibleChildren(m);
            if (vis < want)
                if (VTX_STS_T sts = addHiddenChildren(o, m, want - vis, log)) return sts;
        }
    }
    return 0;
}

VTX_POTLMBR_T findByMbrId(VTX_POTLMBR_T dim, VTX_ULONG_T mbrId) {
    for (VTX_POTLMBR_T p = dim; p; p = otlNavtrdn(p, dim))
        if ((VTX_ULONG_T)p->mbrId == mbrId && !OTL_IS_HIDDEN(p)) return p;
    return nullptr;
}

VTX_STS_T addHiddenLev0Members(VTX_POTL_T o, HiddenLog *log) {
    if (!o->bHiddenLevel0 || !o->hiddenMbrCounts || !o->hiddenMbrParentIds || !o->pHeadItem) return 0;
    for (VTX_POTLMBR_T d = o->pHeadItem->pChild; d; d = d->pSibling) {
        if (isAttrCategory(categoryOf(d))) break;
        if (!(o->usOutlineType == VTX_OTL_AGGSTORE || (isLarge(d) && L(d)->MbrInfo.usStorage == 1))) continue;
        const VTX_ULONG_T id = dimIdOf(o, d);
        if (id >= OTL_DIM_SLOTS || !o->hiddenMbrCounts[id]) continue;
        const VTX_ULONG_T count = o->hiddenMbrCounts[id];
        if (VTX_ULONG_T parentId = o->hiddenMbrParentIds[id]) {
            VTX_POTLMBR_T parent = findByMbrId(d, parentId);
            if (parent && parent->pChild)
                if (VTX_STS_T sts = addHiddenChildren(o, parent, count, log)) return sts;
            continue;
        }
        const bool hier = isLarge(d) && L(d)->MbrInfo.ucHierarchyType == OTL_HIER_ENABLED;
        if (!hier) {
            for (VTX_POTLMBR_T m = d; m; m = otlNavtrdn(m, d))
                if (!OTL_IS_HIDDEN(m) && m->MbrInfo.usLevel == 1)
                    if (VTX_STS_T sts = addHiddenChildren(o, m, count, log)) return sts;
            continue;
        }
        // Several hierarchies: dynamic ones take none; the first stored one
        // at level 1, the later stored ones at every level above 0.
        bool firstStored = true;
        for (VTX_POTLMBR_T h = d->pChild; h; h = h->pSibling) {
            if (OTL_IS_HIDDEN(h) || (h->MbrInfo.ucInfoFlags & OTL_INFO_DYNHIER)) continue;
            for (VTX_POTLMBR_T m = h; m; m = otlNavtrdn(m, h)) {
                if (OTL_IS_HIDDEN(m)) continue;
                const bool take = firstStored ? m->MbrInfo.usLevel == 1 : m->MbrInfo.usLevel > 0;
                if (take)
                    if (VTX_STS_T sts = addHiddenChildren(o, m, count, log)) return sts;
            }
            firstStored = false;
        }
    }
    return 0;
}

// Runs one of the batch adds and takes everything back on failure.
template <class F>
VTX_STS_T hiddenBatch(VTX_POTL_T o, F &&body) {
    HiddenLog log(o->pNetCtx);
    const VTX_UCHAR_T state = o->ucStateFlag;
    const VTX_BOOL_T verified = o->fVerified;
    VTX_STS_T sts = body(&log);
    if (sts) {
        undoHidden(o, log);
        return sts;
    }
    bool any = false;
    for (VTX_POTLMBR_T p : log) any = any || p;
    if (any) {
        o->ucStateFlag |= OTL_STATE_EDITED;
        o->fVerified = 0;
    } else {
        o->ucStateFlag = state;
        o->fVerified = verified;
    }
    return 0;
}

} // namespace

extern "C" {

VTX_STS_T otlAddHiddenMember(VTX_POTL_T pOutline, VTX_POTLMBR_T pParent, VTX_POTLMBR_T pPrevSibling,
                             VTX_POTLMBR_T *ppItem) {
    if (ppItem) *ppItem = nullptr;
    if (!pOutline || !ppItem) return VTX_STS_NULL_ARG;
    VTX_STS_T sts = addHiddenMember(pOutline, pParent, pPrevSibling, ppItem, nullptr);
    if (!sts) {
        pOutline->ucStateFlag |= OTL_STATE_EDITED;
        pOutline->fVerified = 0;
    }
    return sts;
}

VTX_STS_T otlAddHiddenChildren(VTX_POTL_T pOutline, VTX_POTLMBR_T pParent, VTX_ULONG_T ulHiddenCount) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    return hiddenBatch(pOutline, [&](HiddenLog *log) { return addHiddenChildren(pOutline, pParent, ulHiddenCount, log); });
}

VTX_STS_T otlAddHiddenMembers(VTX_POTL_T pOutline) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    return hiddenBatch(pOutline, [&](HiddenLog *log) { return addHiddenMembers(pOutline, log); });
}

VTX_STS_T otlAddHiddenLev0Members(VTX_POTL_T pOutline) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    return hiddenBatch(pOutline, [&](HiddenLog *log) { return addHiddenLev0Members(pOutline, log); });
}

VTX_STS_T adShrOtlAddHiddenMembers(VTX_HOUTLINE_T hOutline) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_POTL_T o = f.outline();
    return otl::otlGuard(f.ctx(), "adShrOtlAddHiddenMembers", [&]() -> VTX_STS_T {
        VTX_STS_T sts = hiddenBatch(o, [&](HiddenLog *log) {
            VTX_STS_T s = addHiddenMembers(o, log);
            return s ? s : addHiddenLev0Members(o, log);
        });
        return sts ? f.fail(sts, "adShrOtlAddHiddenMembers", VTX_MSGARG_STR) : 0;
    });
}

VTX_STS_T adShrOtlSetHiddenMemberCounts(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_ULONG_T ulParentMbrId,
                                        VTX_ULONG_T ulCount) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter({hDim})) return sts;
    VTX_POTL_T o = f.outline();
    auto dim = static_cast<VTX_POTLMBR_T>(hDim);
    if (!dim) return f.fail(VTX_STS_NULL_ARG, "adShrOtlSetHiddenMemberCounts", VTX_MSGARG_STR);
    if (!inOutline(o, dim)) return f.fail(VTX_STS_BAD_PLACEMENT);
    if (!isDimRecord(dim)) return f.fail(VTX_STS_NOT_A_DIMENSION);
    // A delete of the parent named here drops all counts; they come back
    // with the next setting.
    if (!o->hiddenMbrCounts) {
        if (VTX_STS_T sts = otlAlloc(f.ctx(), sizeof(VTX_ULONG_T) * OTL_DIM_SLOTS, &o->hiddenMbrCounts))
            return f.fail(sts, "adShrOtlSetHiddenMemberCounts", VTX_MSGARG_STR);
    }
    const VTX_ULONG_T id = dimIdOf(o, dim);
    if (id >= OTL_DIM_SLOTS) return f.fail(VTX_STS_NO_DIM_ID);
    o->hiddenMbrParentIds[id] = ulParentMbrId;
    o->hiddenMbrCounts[id] = ulCount;
    o->bHiddenLevel0 = 1;
    f.edited(OTL_STATE_CHANGED);
    return 0;
}

VTX_STS_T findFirstHiddenChildMember(VTX_HOUTLINE_T hOutline, VTX_CSTR_T nameexp, VTX_HMEMBER_T *phMember,
                                     VTX_BOOL_T fIsMbrID) {
    if (phMember) *phMember = nullptr;
    VTX_POTL_T o = static_cast<VTX_POTL_T>(hOutline);
    if (!o || !nameexp || !phMember) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = o->pNetCtx;
    VTX_POTLMBR_T parent = nullptr;
    VTX_STS_T sts;
    if (fIsMbrID) {
        // Identifiers are the texts of the "Member ID" table.
        if (!o->bNonUniqueName || o->usNumAliasTables < 2) return VTX_STS_DUP_REQUIRED;
        sts = otlHashFindItemByNameEx(ctx, o, nameexp, nullptr, 0, 1, 1, OTL_OPT_UNSHARED, 2, nullptr, &parent, nullptr,
                                      nullptr);
    } else {
        sts = otlHashFindItemByName(ctx, o, nameexp, nullptr, 1, 0, 1, 0, nullptr, &parent, nullptr, nullptr);
    }
    if (sts) return sts;
    if (!parent) return VTX_STS_NOT_FOUND;
    for (VTX_POTLMBR_T c = parent->pChild; c; c = c->pSibling)
        if (OTL_IS_HIDDEN(c)) {
            *phMember = c;
            return 0;
        }
    return VTX_STS_NOT_FOUND;
}

VTX_STS_T adShrOtlMotfAddAlias(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszParent, VTX_BOOL_T fIsMbrID,
                               VTX_CSTR_T pszMember, VTX_HMEMBER_T *phMember) {
    if (phMember) *phMember = nullptr;
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pszParent || !pszMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlMotfAddAlias", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    vTX_PNETCTX_T ctx = f.ctx();
    return otl::otlGuard(ctx, "adShrOtlMotfAddAlias", [&]() -> VTX_STS_T {
        VTX_HMEMBER_T h = nullptr;
        if (VTX_STS_T sts = findFirstHiddenChildMember(hOutline, pszParent, &h, fIsMbrID))
            return f.fail(sts, pszParent, VTX_MSGARG_STR);
        auto spare = static_cast<VTX_POTLMBR_T>(h);
        VTX_POTLMBR_T parent = spare->pParent;
        // The spare child becomes a member as an add would make it, in the
        // place it already has: behind the last visible child.
        vtx_mbrinfo_t *info = nullptr;
        CtxBlock<vtx_mbrinfo_t> infoBlock(ctx);
        if (VTX_STS_T sts = otlAlloc(ctx, sizeof(vtx_mbrinfo_t), &infoBlock.p)) return f.fail(sts, "adShrOtlMotfAddAlias", VTX_MSGARG_STR);
        info = infoBlock.p;
        std::snprintf(info->szMember, sizeof info->szMember, "%s", pszMember);
        Place pl;
        pl.parent = parent;
        pl.prev = parent->MbrInfo.pLastSibling;
        Refusal r;
        if (!otlIsNameLegal(o, info->szMember, ctx, 1)) return f.fail(VTX_STS_INVALID_NAME, pszMember, VTX_MSGARG_STR);
        VTX_POTLMBR_T found = nullptr;
        if (addNameTests(o, info, pl, 0, 0, &found, r)) {
            if (phMember) *phMember = found;
            return report(f, r);
        }
        CtxString name(ctx);
        if (VTX_STS_T sts = name.copy(info->szMember)) return f.fail(sts, "adShrOtlMotfAddAlias", VTX_MSGARG_STR);
        VTX_POTLMBR_T lastBefore = parent->MbrInfo.pLastSibling;
        spare->MbrInfo.szMember = name.release();
        spare->ucFlags2 &= (VTX_UCHAR_T)~OTL_FLAG2_HIDDEN;
        parent->MbrInfo.pLastSibling = spare;
        parent->MbrInfo.ulChildCount++;
        VTX_STS_T sts = otlHashAddItem(ctx, o, spare, spare, OTL_HASH_NONE, OTL_HASH_NONE);
        vtx_outerror_t err{};
        if (!sts) sts = otlVerifyEditedItem(o, spare, 0, &err);
        if (sts) {
            (void)otlHashDeleteItem(ctx, o, spare);  // undoing the entry just made
            parent->MbrInfo.ulChildCount--;
            parent->MbrInfo.pLastSibling = lastBefore;
            spare->ucFlags2 |= OTL_FLAG2_HIDDEN;
            (void)otlFreeMem(ctx, spare->MbrInfo.szMember);  // the name given above
            spare->MbrInfo.szMember = nullptr;
            return f.fail(sts);
        }
        if (phMember) *phMember = spare;
        f.edited();
        return 0;
    });
}

VTX_STS_T adShrOtlMotfSetMbrId(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszParent, VTX_BOOL_T fIsMbrID,
                               VTX_ULONG_T ulMbrId, VTX_HMEMBER_T *phMember) {
    if (phMember) *phMember = nullptr;
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pszParent) return f.fail(VTX_STS_NULL_ARG, "adShrOtlMotfSetMbrId", VTX_MSGARG_STR);
    if (!ulMbrId) return f.fail(VTX_STS_ZERO_ID);
    VTX_POTL_T o = f.outline();
    VTX_HMEMBER_T h = nullptr;
    if (VTX_STS_T sts = findFirstHiddenChildMember(hOutline, pszParent, &h, fIsMbrID))
        return f.fail(sts, pszParent, VTX_MSGARG_STR);
    auto spare = static_cast<VTX_POTLMBR_T>(h);
    VTX_POTLMBR_T dim = otlGetDim(spare);
    // Identifiers are never given twice in a dimension.
    for (VTX_POTLMBR_T p = dim; p; p = otlNavtrdn(p, dim))
        if (p != spare && (VTX_ULONG_T)p->mbrId == ulMbrId) {
            if (phMember) *phMember = p;
            return f.fail(VTX_STS_MEMBER_ID_IN_USE);
        }
    spare->mbrId = (VTX_INT32_T)ulMbrId;
    const VTX_ULONG_T d = dim->ulDimno - 1;
    if (o->nextMbrIds[d] <= ulMbrId) o->nextMbrIds[d] = ulMbrId + 1;
    if (phMember) *phMember = spare;
    f.edited(OTL_STATE_CHANGED);
    return 0;
}

} // extern "C"

// ---- copies of records and subtrees -------------------------------------------------

namespace {

VTX_STS_T dupString(vTX_PNETCTX_T ctx, VTX_STR_T src, VTX_STR_T *pDst) {
    *pDst = nullptr;
    if (!src) return 0;
    size_t n = std::strlen(src) + 1;
    VTX_STS_T sts = otlAlloc(ctx, n, pDst);
    if (!sts) std::memcpy(*pDst, src, n);
    return sts;
}

// The owned lists of a large record, copied one by one into dst; on a
// failure what was copied stays in dst for the caller to free with it.
VTX_STS_T copyLargeOwned(vTX_PNETCTX_T ctx, VTX_POTLMBRLARGE_T dst, VTX_POTLMBRLARGE_T src) {
    VTX_STS_T sts = 0;
    if (!sts) sts = dupString(ctx, src->MbrInfo.szCurMember, &dst->MbrInfo.szCurMember);
    if (!sts) sts = dupString(ctx, src->MbrInfo.szComment, &dst->MbrInfo.szComment);
    if (!sts && src->MbrInfo.Attribute.usDataType == VTX_ATTR_STRING)
        sts = dupString(ctx, src->MbrInfo.Attribute.value.pszValue, &dst->MbrInfo.Attribute.value.pszValue);
    if (!sts) sts = dupString(ctx, src->pszCalc, &dst->pszCalc);
    if (!sts) sts = dupString(ctx, src->pszLastCalc, &dst->pszLastCalc);
    if (!sts) sts = dupString(ctx, src->pszCommentEx, &dst->pszCommentEx);
    if (!sts) sts = dupString(ctx, src->pszFormatString, &dst->pszFormatString);
    VTX_PNAMELIST_T *tailN = &dst->pNameList;
    for (VTX_PNAMELIST_T n = src->pNameList; n && !sts; n = n->pNext) {
        VTX_PNAMELIST_T c = nullptr;
        sts = otlAlloc(ctx, sizeof *c, &c);
        if (sts) break;
        *c = *n;
        c->pNext = nullptr;
        c->pszName = nullptr;
        *tailN = c;
        tailN = &c->pNext;
        sts = dupString(ctx, n->pszName, &c->pszName);
    }
    VTX_PUSERATTR_T *tailU = &dst->pUserAttrList;
    for (VTX_PUSERATTR_T u = src->pUserAttrList; u && !sts; u = u->pNext) {
        VTX_PUSERATTR_T c = nullptr;
        sts = otlAlloc(ctx, sizeof *c, &c);
        if (sts) break;
        *tailU = c;
        tailU = &c->pNext;
        sts = dupString(ctx, u->pszUserAttr, &c->pszUserAttr);
    }
    if (!sts && src->pAliasRec) {
        sts = otlAlloc(ctx, sizeof(VTX_POTLALIASREC_T) * OTL_MAX_ALIAS_TABLES, &dst->pAliasRec);
        for (unsigned t = 0; !sts && t < OTL_MAX_ALIAS_TABLES; ++t) {
            VTX_POTLALIASREC_T *tail = &dst->pAliasRec[t];
            for (VTX_POTLALIASREC_T a = src->pAliasRec[t]; a && !sts; a = a->pNext) {
                VTX_POTLALIASREC_T c = nullptr;
                sts = otlAlloc(ctx, sizeof *c, &c);
                if (sts) break;
                *tail = c;
                tail = &c->pNext;
                sts = dupString(ctx, a->pszAlias, &c->pszAlias);
                if (!sts) sts = dupString(ctx, a->pszCombination, &c->pszCombination);
            }
        }
    }
    return sts;
}

struct CopyPair {
    VTX_POTLMBR_T src;
    VTX_POTLMBR_T copy;
};

// Copies pSrc's children under pCopy, depth first.
VTX_STS_T copyChildren(vTX_PNETCTX_T ctx, VTX_POTL_T pDest, VTX_POTL_T pSrcOutline, VTX_POTLMBR_T pSrc,
                       VTX_POTLMBR_T pCopy, CtxArray<CopyPair> &pairs) {
    VTX_POTLMBR_T prev = nullptr;
    for (VTX_POTLMBR_T c = pSrc->pChild; c; c = c->pSibling) {
        VTX_POTLMBR_T n = nullptr;
        if (VTX_STS_T sts = otlCopyItem(ctx, pDest, pSrcOutline, c, &n)) return sts;
        if (prev) otlAddSiblingItemEx(pDest, prev, n, 0);
        else otlAddChildItem(pCopy, n, 0);
        if (!OTL_IS_HIDDEN(n)) pCopy->MbrInfo.ulChildCount++;
        prev = n;
        if (VTX_STS_T sts = pairs.push({c, n})) return sts;
        if (VTX_STS_T sts = copyChildren(ctx, pDest, pSrcOutline, c, n, pairs)) return sts;
    }
    return 0;
}

} // namespace

extern "C" {

VTX_STS_T otlCopyItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pDestOutline, VTX_POTL_T pSrcOutline, VTX_POTLMBR_T pSource,
                      VTX_POTLMBR_T *ppCopy) {
    if (ppCopy) *ppCopy = nullptr;
    if (!pDestOutline || !pSource || !ppCopy) return VTX_STS_NULL_ARG;
    const bool small = OTL_IS_SMALL(pSource);
    // A paged outline open for incremental update takes no large records
    // below its dimensions.
    if (!small && pDestOutline->incrementalOPGfile && pSource->MbrInfo.usGen > 1) return VTX_STS_ILLEGAL_OPERATION;
    VTX_POTLMBR_T n = nullptr;
    if (VTX_STS_T sts = otlNewItemAny(pNetCtx, pDestOutline, &n, small ? 0 : 1)) return sts;
    // Scalars as they are; every pointer of the copy starts empty and is
    // filled with a copy of its own, so a failure frees only the copy's.
    VTX_POTLALIASARRAYREC_T aliases = n->AliasArray;
    const VTX_UCHAR_T pooled = n->ucFlags & OTL_FLAG_POOLED;
    const size_t size = small ? sizeof(_vtx_otlmbr_t) : sizeof(_vtx_otlmbrlarge_t);
    std::memcpy((void *)n, (const void *)pSource, size);
    n->AliasArray = aliases;
    n->ucFlags = (VTX_UCHAR_T)((pSource->ucFlags & ~OTL_FLAG_POOLED) | pooled);
    n->pSibling = n->pPrevSibling = n->pParent = n->pChild = nullptr;
    n->BaseMap = OTLMBR_BASEATTR_MAP{};
    n->ulSiblingCount = 0;
    n->refParentAry = nullptr;
    n->refParentCnt = 0;
    n->isShared = 0;
    n->OriginalMbr.hOriginalMbr = nullptr;
    n->ulHdl32 = 0;
    n->MbrInfo.szMember = nullptr;
    n->MbrInfo.pLastSibling = nullptr;
    n->MbrInfo.ulChildCount = 0;
    n->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~OTL_INFO_ATTRIBUTED;
    if (!small) {
        VTX_POTLMBRLARGE_T l = L(n);
        l->MbrInfo.Attribute.value.raw = l->MbrInfo.Attribute.usDataType == VTX_ATTR_STRING ? 0 : l->MbrInfo.Attribute.value.raw;
        if (l->MbrInfo.Attribute.usDataType == VTX_ATTR_STRING) l->MbrInfo.Attribute.value.pszValue = nullptr;
        l->MbrInfo.szCurMember = l->MbrInfo.szComment = l->MbrInfo.szDimName = nullptr;
        l->pszCalc = l->pszLastCalc = l->pszCommentEx = l->pszFormatString = nullptr;
        l->pNameList = nullptr;
        l->pUserAttrList = nullptr;
        l->pAliasRec = nullptr;
        l->ppszArrAttrDim = l->ppszArrAttrMem = nullptr;
        l->pArrAttribute = nullptr;
        l->NumOfAttrDim = 0;
        l->pAttrToBaseMap = nullptr;
        std::memset(&l->Map, 0, sizeof l->Map);
        l->ucTempBitmask = 0;
        // Attribute links are the source outline's; the role of an attribute
        // member stays, that of a base member goes with its links.
        if (l->usAttrCode == 2) l->usAttrCode = 0;
    }
    VTX_STS_T sts = dupString(pNetCtx, pSource->MbrInfo.szMember, &n->MbrInfo.szMember);
    if (!sts && !small) sts = copyLargeOwned(pNetCtx, L(n), L(pSource));
    if (!sts && n->AliasArray && pSource->AliasArray && pSrcOutline) {
        unsigned tables = std::min<unsigned>(pDestOutline->usNumAliasTables, pSrcOutline->usNumAliasTables);
        for (unsigned t = 0; !sts && t < tables; ++t)
            sts = dupString(pNetCtx, pSource->AliasArray[t].pszDefName, &n->AliasArray[t].pszDefName);
    }
    if (sts) {
        otlFreeItem(pNetCtx, pDestOutline, n);
        return sts;
    }
    *ppCopy = n;
    return 0;
}

VTX_STS_T otlCopySubTree(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pDestOutline, VTX_POTL_T pSrcOutline,
                         VTX_POTLMBR_T pSource, VTX_POTLMBR_T pDestParent, VTX_POTLMBR_T pDestPrev,
                         VTX_POTLMBR_T *ppCopy) {
    if (ppCopy) *ppCopy = nullptr;
    if (!pDestOutline || !pSource || !ppCopy || (!pDestParent && !pDestPrev)) return VTX_STS_NULL_ARG;
    if (pDestPrev) pDestParent = pDestPrev->pParent;
    if (!pDestParent) return VTX_STS_NULL_ARG;
    if (pDestParent->MbrInfo.usGen + 1 + subtreeDepth(pSource) > OTL_MAX_GEN) return VTX_STS_TOO_DEEP;
    VTX_POTLMBR_T root = nullptr;
    if (VTX_STS_T sts = otlCopyItem(pNetCtx, pDestOutline, pSrcOutline, pSource, &root)) return sts;
    CtxArray<CopyPair> pairs(pNetCtx);
    VTX_STS_T sts = pairs.push({pSource, root});
    if (!sts) sts = copyChildren(pNetCtx, pDestOutline, pSrcOutline, pSource, root, pairs);
    if (sts) {
        otlFreeItemList(pNetCtx, pDestOutline, root);
        return sts;
    }
    // Shared members point at the copy of their stored member when it came
    // along; the others find theirs by name.
    std::sort(pairs.begin(), pairs.end(), [](const CopyPair &a, const CopyPair &b) { return a.src < b.src; });
    for (CopyPair &p : pairs) {
        VTX_POTLMBR_T orig = p.src->OriginalMbr.hOriginalMbr;
        if (!orig || (pSrcOutline && pSrcOutline->fOpenQuery)) continue;
        auto it = std::lower_bound(pairs.begin(), pairs.end(), orig,
                                   [](const CopyPair &a, VTX_POTLMBR_T s) { return a.src < s; });
        if (it != pairs.end() && it->src == orig) p.copy->OriginalMbr.hOriginalMbr = it->copy;
    }
    if (pDestPrev) otlAddSiblingItemEx(pDestOutline, pDestPrev, root, 0);
    else otlAddChildItem(pDestParent, root, 0);
    otlSetParentLevels(root);
    if (!OTL_IS_HIDDEN(root)) pDestParent->MbrInfo.ulChildCount++;
    // Inside a dimension the copies are members of it: its number and
    // identifiers of its own, never those of the source.
    VTX_POTLMBR_T dim = otlGetDim(root);
    if (dim && dim != root) {
        const VTX_ULONG_T d = dim->ulDimno - 1;
        for (VTX_POTLMBR_T p = root; p; p = otlNavtrdn(p, root)) {
            p->ulDimno = dim->ulDimno;
            if (d < OTL_MAX_DIMS && pDestOutline->nextMbrIds) {
                p->mbrId = (VTX_INT32_T)pDestOutline->nextMbrIds[d]++;
                p->persistMbrId = (VTX_INT32_T)pDestOutline->nextPersistMbrIds[d]++;
            }
        }
    }
    *ppCopy = root;
    return 0;
}

} // extern "C"

// ---- calls into parts that arrive later ---------------------------------------------
//
// Each answers what holds while its part is missing, and is weak so that the
// part that owns it replaces it by defining it.  Attribute work is reached
// only through members of category 6 and 7, which nothing can add while
// attribute values cannot be worked out; transactions only with fKeepTrans,
// which only an outline opened from a file carries; the paged store only
// with incrementalOPGfile, which only a paged outline opened for update has.

namespace {
// Attribute bookkeeping concerns attribute dimensions and their
// associations; an attribute calculations dimension alone has none.
bool hasAttributeDims(VTX_POTL_T o) {
    for (VTX_POTLMBR_T d = o->pHeadItem ? o->pHeadItem->pChild : nullptr; d; d = d->pSibling)
        if (categoryOf(d) == VTX_CAT_ATTRIBUTE) return true;
    return false;
}
} // namespace

extern "C" {

OTL_WEAK VTX_STS_T otlSetAttrValueAttrNames(VTX_POTL_T, vtx_mbrinfo_t *, VTX_POTLMBR_T, VTX_USHORT_T) {
    // The value of an attribute member comes from its name by the rules of
    // attribute values, which this build does not have.
    return VTX_STS_NOT_AVAILABLE;
}

OTL_WEAK VTX_STS_T otlAttrSetShortName(VTX_POTL_T, VTX_POTLMBR_T pItem) {
    if (pItem && isLarge(pItem) && L(pItem)->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE) return VTX_STS_NOT_AVAILABLE;
    return 0;
}

OTL_WEAK VTX_STS_T otlCreateAttrAggDim(VTX_POTL_T) { return VTX_STS_NOT_AVAILABLE; }

OTL_WEAK VTX_STS_T otlDeleteAttrAggDim(VTX_POTL_T pOutline) {
    return pOutline && hasAttributeDims(pOutline) ? VTX_STS_NOT_AVAILABLE : 0;
}

OTL_WEAK VTX_STS_T otlUpdateAttrInfoForMove(VTX_POTL_T pOutline, VTX_POTLMBR_T) {
    return pOutline && hasAttributeDims(pOutline) ? VTX_STS_NOT_AVAILABLE : 0;
}

OTL_WEAK VTX_STS_T otlUpdateAttrInfoForSet(VTX_POTL_T pOutline, VTX_POTLMBR_T pMbr, const vtx_mbrinfo_t *pInfo) {
    if (!pOutline || !pMbr) return VTX_STS_NULL_ARG;
    VTX_POTLMBR_T dim = otlGetDim(pMbr);
    const bool attrDim = dim && isAttrCategory(categoryOf(dim));
    const bool becomesAttr = isDimRecord(pMbr) && pInfo && isAttrCategory((VTX_UCHAR_T)pInfo->usCategory);
    return (attrDim || becomesAttr) ? VTX_STS_NOT_AVAILABLE : 0;
}

OTL_WEAK VTX_STS_T otlCheckIndepAssocs(VTX_POTL_T pOutline, VTX_POTLMBR_T) {
    // With no attribute dimension no association can use the dimension.
    return pOutline && hasAttributeDims(pOutline) ? VTX_STS_NOT_AVAILABLE : 0;
}

OTL_WEAK VTX_STS_T otlCreateAddTransaction(vTX_PNETCTX_T, VTX_POTL_T pOutline, VTX_POTLMBR_T, VTX_POTLMBR_T,
                                           VTX_POTLMBR_T) {
    return pOutline && pOutline->fKeepTrans ? VTX_STS_NOT_AVAILABLE : 0;
}
OTL_WEAK VTX_STS_T otlCreateDeleteTransaction(vTX_PNETCTX_T, VTX_POTL_T pOutline, VTX_POTLMBR_T) {
    return pOutline && pOutline->fKeepTrans ? VTX_STS_NOT_AVAILABLE : 0;
}
OTL_WEAK VTX_STS_T otlCreateMoveTransaction(vTX_PNETCTX_T, VTX_POTL_T pOutline, VTX_POTLMBR_T, VTX_POTLMBR_T,
                                            VTX_POTLMBR_T, VTX_POTLMBR_T, VTX_POTLMBR_T) {
    return pOutline && pOutline->fKeepTrans ? VTX_STS_NOT_AVAILABLE : 0;
}
OTL_WEAK VTX_STS_T otlCreateRenameTransaction(vTX_PNETCTX_T, VTX_POTL_T pOutline, VTX_POTLMBR_T, VTX_CSTR_T) {
    return pOutline && pOutline->fKeepTrans ? VTX_STS_NOT_AVAILABLE : 0;
}
OTL_WEAK VTX_STS_T otlTransSetAddDimension(vTX_PNETCTX_T, VTX_POTL_T pOutline, VTX_CSTR_T pszDimension) {
    if (!pszDimension || !*pszDimension) return 0;
    return pOutline && pOutline->fKeepTrans ? VTX_STS_NOT_AVAILABLE : 0;
}
OTL_WEAK VTX_STS_T otlTransSetDeleteDimension(vTX_PNETCTX_T, VTX_POTL_T pOutline, VTX_CSTR_T pszDimension) {
    if (!pszDimension || !*pszDimension) return 0;
    return pOutline && pOutline->fKeepTrans ? VTX_STS_NOT_AVAILABLE : 0;
}
OTL_WEAK VTX_STS_T adTransAddPropChgToList(vTX_PNETCTX_T, VTX_POTL_T pOutline, VTX_USHORT_T, VTX_CSTR_T) {
    return pOutline && pOutline->fKeepTransReplay ? VTX_STS_NOT_AVAILABLE : 0;
}

// No paged store is open in this build.
OTL_WEAK VTX_STS_T opgWriteIncrementalMember(VTX_POTL_T, VTX_POTLMBR_T) { return VTX_STS_OPG_OPEN; }
OTL_WEAK VTX_STS_T opgDeleteIncrementalMember(VTX_POTL_T, VTX_POTLMBR_T) { return VTX_STS_OPG_OPEN; }
OTL_WEAK VTX_STS_T opgInsertIncrementalMember(VTX_POTL_T, VTX_POTLMBR_T) { return VTX_STS_OPG_OPEN; }
OTL_WEAK VTX_STS_T opgOpenDim(VTX_POTL_T, VTX_ULONG_T) { return VTX_STS_OPG_OPEN; }
OTL_WEAK VTX_STS_T opgWriteMember(VTX_POTL_T, void *, VTX_POTLMBR_T, VTX_BOOL_T) { return VTX_STS_OPG_OPEN; }
OTL_WEAK VTX_STS_T opg_ToItemLarge(VTX_POTL_T, VTX_POTLMBRLARGE_T, VTX_POTLMBR_T) { return VTX_STS_OPG_GET; }

OTL_WEAK VTX_STS_T adShrOtlDeleteMbrTreeSmartListRefs(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T) {
    // Without text lists no member refers to one.
    VTX_POTL_T o = static_cast<VTX_POTL_T>(hOutline);
    return o && o->pSmartListTable ? VTX_STS_NOT_AVAILABLE : 0;
}

OTL_WEAK void clearQueryHintItems(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem) {
    // A query hint holds one member handle per slot; a deleted subtree's
    // handles leave every hint.
    if (!pOutline || !pItem || !pOutline->queryHintArray) return;
    auto *slots = static_cast<VTX_POTLMBR_T *>(pOutline->queryHintArray);
    const size_t n = (size_t)pOutline->nmAllocHints * pOutline->queryHintSize;
    for (size_t i = 0; i < n; ++i)
        if (slots[i] && isAncestorOrSelf(pItem, slots[i])) slots[i] = nullptr;
}

OTL_WEAK VTX_STS_T otlVerifyASOItem(vTX_PNETCTX_T, VTX_POTL_T, VTX_POTLMBR_T, VTX_POTLMBR_T, VTX_ULONG_T *pulVerify4,
                                    VTX_ULONG_T *pulVerify5, VTX_USHORT_T) {
    // The aggregate-storage rules of a member come with their own part; until
    // then an aggregate-storage member is held to the common rules alone.
    (void)pulVerify4;
    (void)pulVerify5;
    return 0;
}

OTL_WEAK void jsonAddMemberOperation(void *, const char *, const char *, const char *, const char *, int,
                                     const char *) {
    // No operation report can be attached in this build.
}

} // extern "C"
