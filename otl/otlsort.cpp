// Member numbers, counts, implied sharing and the order of children.
//
// Numbers are rebuilt from the tree, never kept by edits: every edit marks
// the outline, and verification and save renumber it whole.  A member's
// numbers come from a post-order walk of its dimension, so children always
// come before their parent and the dimension record has the highest number.
#include "otl.h"

#include <cstring>
#include <utility>
#include <vector>

namespace {

constexpr VTX_ULONG_T kAllOnes = 0xFFFFFFFFu;
constexpr VTX_LONG_T kSortStackRanges = 100;

// Which of the numbering forms runs.
enum class NumberForm {
    Update,  // the edit form: label-only members take their first child's numbers; counts rebuilt
    Set,     // verification and reading: label-only members take 0; counts left alone
};

VTX_UCHAR_T storageOf(VTX_POTLMBR_T p) { return OTL_IS_SMALL(p) ? 1 : OTL_LARGE(p)->MbrInfo.usStorage; }

VTX_ULONG_T memnovOf(VTX_POTLMBR_T p) { return OTL_IS_SMALL(p) ? 0 : OTL_LARGE(p)->ulMemnov; }
void setMemnov(VTX_POTLMBR_T p, VTX_ULONG_T v) {
    if (!OTL_IS_SMALL(p)) OTL_LARGE(p)->ulMemnov = v;
}

VTX_USHORT_T consolidationOf(VTX_POTLMBR_T p) { return p->MbrInfo.ucInfoFlags & OTL_INFO_CONSOL; }

// The stored member a shared member stands for: the record it points at,
// or else the original of its name in its dimension.
VTX_POTLMBR_T storedMemberOf(VTX_POTL_T pOutline, VTX_POTLMBR_T pShared, VTX_POTLMBR_T pDim) {
    if (pShared->OriginalMbr.hOriginalMbr && !pOutline->fOpenQuery) return pShared->OriginalMbr.hOriginalMbr;
    VTX_POTLMBR_T pStored = nullptr;
    HASH_NUM_T hn = OTL_HASH_NONE;
    HASH_POS_T hp = OTL_HASH_NONE;
    // A lookup failure leaves the shared member without a target, which
    // verification reports; numbering itself goes on.
    if (otlHashFindItemByName(pOutline->pNetCtx, pOutline, pShared->MbrInfo.szMember, nullptr, 1, 0, 1, 0, pDim,
                              &pStored, &hn, &hp) != 0)
        return nullptr;
    return pStored == pShared ? nullptr : pStored;
}

// Next record of a post-order walk below pDim, the dimension last.
inline VTX_POTLMBR_T nextPostOrder(VTX_POTLMBR_T p, VTX_POTLMBR_T pDim) {
    if (p == pDim) return nullptr;
    if (p->pSibling) return otlLowLeftInternal(p->pSibling);
    return p->pParent;
}

struct Counters {
    VTX_ULONG_T n = 1;  // member number
    VTX_ULONG_T a = 1;  // actual member number
    VTX_ULONG_T v = 1;  // block cell number
};

// Numbers one record of a dimension walk.
void numberRecord(VTX_POTL_T pOutline, VTX_POTLMBR_T r, VTX_POTLMBR_T pDim, VTX_UCHAR_T d, VTX_UCHAR_T storage,
                  Counters &c, NumberForm form) {
    r->ulDimno = d;
    r->ulMemno = c.n;
    if (r->mbrId == 0) r->mbrId = (VTX_INT32_T)c.n;
    ++c.n;
    const VTX_USHORT_T share = otlGetShare(r);
    VTX_ULONG_T memno = 0;
    VTX_POTLMBR_T target = nullptr;
    bool stored = false;
    if (share == VTX_SHARE_LABEL) {
        if (form == NumberForm::Set) {
            r->ulActualMemno = 0;
            setMemnov(r, 0);
        } else if (r->pChild) {
            r->ulActualMemno = r->pChild->ulActualMemno;
            setMemnov(r, memnovOf(r->pChild));
        } else {
            r->ulActualMemno = c.a;
        }
    } else if (OTL_IS_SHARE(share)) {
        target = storedMemberOf(pOutline, r, pDim);
        r->ulActualMemno = target ? target->ulActualMemno : 0;
        setMemnov(r, target ? memnovOf(target) : 0);
    } else if (isImpliedShareEx(pOutline, r, &memno, &target)) {
        r->ulActualMemno = memno;
        setMemnov(r, target ? memnovOf(target) : 0);
    } else {
        stored = true;
        r->ulActualMemno = c.a++;
        if (OTL_IS_SMALL(r)) {
            // A small record has no cell number.
        } else if (storage == 0 && share != VTX_SHARE_DYNCALC) {
            setMemnov(r, c.v++);
        } else if (storage == 1) {
            // A sparse dimension has no block cells: the number among
            // stored members serves.
            setMemnov(r, r->ulActualMemno);
        } else {
            setMemnov(r, 0);
        }
    }
    if (form == NumberForm::Update) {
        OTL_COUNTS &k = pOutline->Counts;
        ++k.ulMembers;
        if (stored) ++k.ulRealMembers;
        if (share != VTX_SHARE_SHARED) ++k.ulUniqueMemberNames;
    }
}

VTX_STS_T numberOutline(VTX_POTL_T pOutline, VTX_POTLMBR_T pHead, NumberForm form) {
    if (!pOutline || !pHead) return VTX_STS_NULL_ARG;
    pHead->ulDimno = OTL_ROOT_DIMNO;
    pHead->ulMemno = kAllOnes;
    pHead->ulActualMemno = kAllOnes;
    // The dimension table and maps follow the root's children as they are now.
    if (VTX_STS_T sts = otlBuildDimTableDimMap(pOutline)) return sts;
    if (form == NumberForm::Update) {
        OTL_COUNTS &k = pOutline->Counts;
        k.ulStandardDims = 0;
        k.ulMembers = 0;
        k.ulRealMembers = 0;
        k.ulUniqueMemberNames = 0;
    }
    // Dimension identifiers follow their dimensions through a reorder:
    // entry i belongs to the dimension that is now number i + 1.
    if (pHead->pChild && pOutline->dimIds && pOutline->nextMbrIds && pOutline->nextPersistMbrIds) {
        VTX_ULONG_T ids[OTL_DIM_SLOTS], next[OTL_DIM_SLOTS], persist[OTL_DIM_SLOTS];
        for (unsigned i = 0; i < OTL_DIM_SLOTS; ++i) {
            ids[i] = 0;
            next[i] = 1;
            persist[i] = 1;
        }
        unsigned i = 0;
        for (VTX_POTLMBR_T dim = pHead->pChild; dim && i < OTL_DIM_SLOTS; dim = dim->pSibling, ++i) {
            unsigned old = dim->ulDimno;
            if (old >= 1 && old <= OTL_DIM_SLOTS) {
                ids[i] = pOutline->dimIds[old - 1];
                next[i] = pOutline->nextMbrIds[old - 1];
                persist[i] = pOutline->nextPersistMbrIds[old - 1];
            }
        }
        std::memcpy(pOutline->dimIds, ids, sizeof ids);
        std::memcpy(pOutline->nextMbrIds, next, sizeof next);
        std::memcpy(pOutline->nextPersistMbrIds, persist, sizeof persist);
    }
    VTX_UCHAR_T d = 0;
    for (VTX_POTLMBR_T dim = pHead->pChild; dim; dim = dim->pSibling) {
        ++d;
        const VTX_UCHAR_T storage = storageOf(dim);
        Counters c;
        VTX_POTLMBR_T p = dim->pChild ? otlLowLeftInternal(dim->pChild) : dim;
        for (; p; p = nextPostOrder(p, dim)) numberRecord(pOutline, p, dim, d, storage, c, form);
        if (pOutline->nextMbrIds && pOutline->nextMbrIds[d - 1] == 0) pOutline->nextMbrIds[d - 1] = c.n;
        if (form == NumberForm::Update && pOutline->Counts.pDimensionMaps && d <= pOutline->DimTableSize) {
            OTL_DIM_MAP &m = pOutline->Counts.pDimensionMaps[d - 1];
            m.ulMembers = c.a - 1;
            m.ulTotalMembers = dim->ulMemno;
            m.ulfpAbsolute = OTL_IS_SMALL(dim) ? 0 : OTL_LARGE(dim)->fp;
            VTX_UCHAR_T sc = OTL_IS_SMALL(dim) ? 0 : OTL_LARGE(dim)->MbrInfo.usStorageCategory;
            if (sc == 12 || sc == 15) {
                m.uiDimType = 4;
            } else if (sc == 13) {
                m.uiDimType = 0;
            } else {
                m.uiDimType = (!OTL_IS_SMALL(dim) && OTL_LARGE(dim)->usAttrCode == 2) ? 3 : 1;
                ++pOutline->Counts.ulStandardDims;
            }
        }
    }
    return 0;
}

// The order of two attribute values of one type, or 2 when they do not
// compare by value.
int compareAttributeValues(VTX_POTLMBRLARGE_T a, VTX_POTLMBRLARGE_T b) {
    const VTX_ATTRIBUTEVALUE_T &x = a->MbrInfo.Attribute;
    const VTX_ATTRIBUTEVALUE_T &y = b->MbrInfo.Attribute;
    if (x.usDataType != y.usDataType) return 2;
    switch (x.usDataType) {
    case VTX_ATTR_NUMERIC: return x.value.dblValue < y.value.dblValue ? -1 : (x.value.dblValue > y.value.dblValue ? 1 : 0);
    case VTX_ATTR_BOOLEAN: return (int)x.value.bValue - (int)y.value.bValue;
    case VTX_ATTR_DATE: return x.value.lDateValue < y.value.lDateValue ? -1 : (x.value.lDateValue > y.value.lDateValue ? 1 : 0);
    default: return 2;
    }
}

// The outline's own orders (ascending, descending) over an array of
// children: the same comparisons as otlCompareFunc, on gathered keys.  When
// the keys cannot be gathered (no memory), the handles are sorted through
// otlCompareFunc itself, to the same order.
VTX_STS_T sortByOutlineOrder(VTX_POTL_T p, VTX_HMEMBER_T *arr, VTX_LONG_T n);

// One partition step over [head, tail]: the pivot is the element at the
// mean of the two ends.  Scans are bounded by the range, so a comparison
// that contradicts itself cannot run past the array.  The order it leaves
// among equal keys is part of the outline's saved form.
template <class T, class Cmp>
void otlPartition(T *a, VTX_LONG_T head, VTX_LONG_T tail, Cmp &cmp, VTX_LONG_T *pLow, VTX_LONG_T *pHigh) {
    T pivot = a[head + (tail - head) / 2];
    VTX_LONG_T i = head, j = tail;
    while (i <= j) {
        while (i <= tail && cmp(a[i], pivot) < 0) ++i;
        while (j >= head && cmp(a[j], pivot) > 0) --j;
        if (i <= j) {
            std::swap(a[i], a[j]);
            ++i;
            --j;
        }
    }
    *pLow = j;   // left range ends here
    *pHigh = i;  // right range starts here
}

// Iterative quicksort with a stack of 100 ranges; 1 when it overflows (the
// array is then a permutation of what it was, partly sorted).  One core
// serves handles with a caller's comparison and the sort keys of the
// outline's own orders, so both leave the very same order.
template <class T, class Cmp>
VTX_STS_T quickSortCore(T *a, VTX_LONG_T n, Cmp &cmp) {
    if (!a || n < 2) return 0;
    struct Range { VTX_LONG_T head, tail; } stack[kSortStackRanges];
    VTX_LONG_T top = 0;
    VTX_LONG_T head = 0, tail = n - 1;
    for (;;) {
        while (head < tail) {
            VTX_LONG_T low, high;
            otlPartition(a, head, tail, cmp, &low, &high);
            // Work the smaller side at once and keep the larger for later,
            // so that the stack stays logarithmic in depth.
            if (low - head < tail - high) {
                if (high < tail) {
                    if (top >= kSortStackRanges - 1) return 1;
                    stack[top++] = {high, tail};
                }
                tail = low;
            } else {
                if (head < low) {
                    if (top >= kSortStackRanges - 1) return 1;
                    stack[top++] = {head, low};
                }
                head = high;
            }
        }
        if (top == 0) break;
        --top;
        head = stack[top].head;
        tail = stack[top].tail;
    }
    return 0;
}

// What the outline's own orders compare, gathered once per child so that a
// comparison touches one small entry instead of two member records.
struct SortKey {
    const char *name;
    VTX_POTLMBRLARGE_T attr;  // a leaf of an attribute dimension that compares by value, else null
    VTX_HMEMBER_T member;
};

VTX_STS_T sortByOutlineOrder(VTX_POTL_T p, VTX_HMEMBER_T *arr, VTX_LONG_T n) {
    if (n < 2) return 0;
    SortKey *keys = nullptr;
    if (otlAlloc(p->pNetCtx, sizeof(SortKey) * (size_t)n, &keys) != 0) {
        auto cmp = [p](VTX_HMEMBER_T x, VTX_HMEMBER_T y) { return otlCompareFunc(x, y, p); };
        return quickSortCore(arr, n, cmp);
    }
    for (VTX_LONG_T i = 0; i < n; ++i) {
        auto *m = static_cast<VTX_POTLMBR_T>(arr[i]);
        keys[i].name = m->MbrInfo.szMember;
        keys[i].member = arr[i];
        keys[i].attr = (!OTL_IS_SMALL(m) && !m->pChild && OTL_LARGE(m)->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE)
                           ? OTL_LARGE(m) : nullptr;
    }
    vTX_PNETCTX_T ctx = p->pNetCtx;
    const bool descending = p->usSortType == VTX_SORT_DESCENDING;
    auto cmp = [ctx, descending](const SortKey &x0, const SortKey &y0) {
        const SortKey &x = descending ? y0 : x0;
        const SortKey &y = descending ? x0 : y0;
        if (x.attr && y.attr) {
            int c = compareAttributeValues(x.attr, y.attr);
            if (c != 2) return c;
        }
        return otlStricoll(ctx, x.name, y.name);
    };
    VTX_STS_T sts = quickSortCore(keys, n, cmp);
    for (VTX_LONG_T i = 0; i < n; ++i) arr[i] = keys[i].member;
    (void)otlFreeMem(p->pNetCtx, keys);  // scratch of this sort
    return sts;
}

} // namespace

extern "C" {

// ---- sharing ---------------------------------------------------------------------

VTX_BOOL_T otlMbrIsShared(VTX_POTLMBR_T pMbr) {
    if (!pMbr) return 0;
    VTX_USHORT_T s = otlGetShare(pMbr);
    return s == VTX_SHARE_LABEL || OTL_IS_SHARE(s);
}

VTX_BOOL_T isImpliedShareEx(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_ULONG_T *memno, VTX_POTLMBR_T *ppItem) {
    if (memno) *memno = 0;
    if (ppItem) *ppItem = nullptr;
    if (!pOutline || !pItem) return 0;
    if (pOutline->bXolap) return 0;
    // Implied sharing is on only at setting 3; a new outline has 4.
    if (pOutline->ucImpliedShareSetting == 4 || pOutline->ucImpliedShareSetting == 2) return 0;
    const bool formula = (pItem->ucFlags & OTL_FLAG_FORMULA) != 0;
    const bool neverShare = otlGetShare(pItem) == VTX_SHARE_NEVER;
    VTX_POTLMBR_T target = nullptr;
    if (pItem->pChild && !pItem->pChild->pSibling && !neverShare && !formula &&
        consolidationOf(pItem->pChild) == VTX_CONS_ADD) {
        target = pItem->pChild;
    } else {
        if (formula || neverShare || !pItem->pChild) return 0;
        for (VTX_POTLMBR_T c = pItem->pChild; c; c = c->pSibling) {
            if (consolidationOf(c) == VTX_CONS_IGNORE) continue;
            if (target) return 0;  // a second effective child
            target = c;
        }
        if (!target) return 0;
        VTX_USHORT_T cons = consolidationOf(target);
        if (cons != VTX_CONS_ADD && cons != VTX_CONS_MUL) return 0;
    }
    if (memno) *memno = target->ulActualMemno;
    if (ppItem) *ppItem = target;
    return 1;
}

VTX_BOOL_T isImpliedShare(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem) {
    return isImpliedShareEx(pOutline, pItem, nullptr, nullptr);
}

VTX_USHORT_T numConsolidatingChildren(VTX_POTLMBR_T pItem) {
    VTX_USHORT_T answer = 0;
    for (VTX_POTLMBR_T c = pItem ? pItem->pChild : nullptr; c; c = c->pSibling) {
        VTX_USHORT_T cons = consolidationOf(c);
        if (cons == VTX_CONS_ADD || cons == VTX_CONS_SUB) return 2;
        if (cons == VTX_CONS_MUL || cons == VTX_CONS_DIV || cons == VTX_CONS_PCT) answer = 1;
    }
    return answer;
}

// ---- numbering ----------------------------------------------------------------------

VTX_STS_T otlUpdateMemno(VTX_POTL_T pOutline, VTX_POTLMBR_T pHead) {
    return numberOutline(pOutline, pHead, NumberForm::Update);
}

VTX_STS_T otlSetMemno(VTX_POTL_T pOutline, VTX_POTLMBR_T pHead) {
    return numberOutline(pOutline, pHead, NumberForm::Set);
}

VTX_STS_T otlUpdateMemnoOPG(VTX_POTL_T pOutline, VTX_POTLMBR_T pHead) {
    // Records of a paged outline that are not in memory are fetched by the
    // paged store once it exists; an outline held in memory has them all.
    return numberOutline(pOutline, pHead, NumberForm::Update);
}

void otlUpdateMemnorsFromDim(VTX_POTL_T, VTX_POTLMBR_T pDim) {
    if (!pDim) return;
    VTX_ULONG_T n = 1;
    VTX_POTLMBR_T p = pDim->pChild ? otlLowLeftInternal(pDim->pChild) : pDim;
    for (; p; p = nextPostOrder(p, pDim)) p->ulMemno = n++;
}

VTX_STS_T otlSetShareMbrMemno(VTX_POTL_T pOutline, VTX_POTLMBR_T pHead, VTX_USHORT_T usOption) {
    if (!pOutline || !pHead) return VTX_STS_NULL_ARG;
    const bool point = pOutline->bNonUniqueName && (usOption == 1 || usOption == 2);
    for (VTX_POTLMBR_T p = otlNavtrdn(pHead, pHead); p; p = otlNavtrdn(p, pHead)) {
        if (!OTL_IS_SHARE(otlGetShare(p))) continue;
        VTX_POTLMBR_T pStored = storedMemberOf(pOutline, p, otlGetDim(p));
        if (!pStored) continue;
        p->ulActualMemno = pStored->ulActualMemno;
        setMemnov(p, memnovOf(pStored));
        if (point) p->OriginalMbr.hOriginalMbr = pStored;
    }
    return 0;
}

void otlUpdateMemberLevels(VTX_POTL_T pOutline) {
    if (!pOutline || !pOutline->pHeadItem) return;
    VTX_POTLMBR_T root = pOutline->pHeadItem;
    // Post-order over the whole tree: a record's children are final when
    // the record is reached.
    for (VTX_POTLMBR_T p = otlLowLeftInternal(root); p; p = nextPostOrder(p, root)) {
        VTX_UCHAR_T level = 0;
        for (VTX_POTLMBR_T c = p->pChild; c; c = c->pSibling)
            if (c->MbrInfo.usLevel + 1 > level) level = (VTX_UCHAR_T)(c->MbrInfo.usLevel + 1);
        p->MbrInfo.usLevel = level;
    }
}

VTX_USHORT_T otlGetMaxGen(VTX_POTLMBR_T pDim) {
    VTX_USHORT_T g = pDim ? pDim->MbrInfo.usGen : 0;
    for (VTX_POTLMBR_T p = otlNavtrdn(pDim, pDim); p; p = otlNavtrdn(p, pDim))
        if (p->MbrInfo.usGen > g) g = p->MbrInfo.usGen;
    return g;
}

VTX_ULONG_T otlGetItemCount(VTX_POTLMBR_T pTop) {
    VTX_ULONG_T n = 0;
    for (VTX_POTLMBR_T p = otlNavtrdn(pTop, pTop); p; p = otlNavtrdn(p, pTop)) ++n;
    return n;
}

VTX_ULONG_T otlGetNonSharedItemCount(VTX_POTLMBR_T pTop) {
    VTX_ULONG_T n = 0;
    for (VTX_POTLMBR_T p = otlNavtrdn(pTop, pTop); p; p = otlNavtrdn(p, pTop))
        if (!otlMbrIsShared(p)) ++n;
    return n;
}

VTX_STS_T adShrOtlCountDims(VTX_HOUTLINE_T hOutline, VTX_USHORT_T *pusDimCount) {
    if (pusDimCount) *pusDimCount = 0;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pusDimCount) return f.fail(VTX_STS_NULL_ARG, "adShrOtlCountDims", VTX_MSGARG_STR);
    VTX_USHORT_T n = 0;
    for (VTX_POTLMBR_T d = f.outline()->pHeadItem->pChild; d; d = d->pSibling) ++n;
    *pusDimCount = n;
    return 0;
}

VTX_STS_T adShrOtlCountGens(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_USHORT_T *pusGens) {
    if (pusGens) *pusGens = 0;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hDim})) return sts;
    if (!pusGens || !hDim) return f.fail(VTX_STS_NULL_ARG, "adShrOtlCountGens", VTX_MSGARG_STR);
    *pusGens = otlGetMaxGen(static_cast<VTX_POTLMBR_T>(hDim));
    return 0;
}

// ---- sorting ----------------------------------------------------------------------------

int otlCompareFunc(VTX_HMEMBER_T hMbr1, VTX_HMEMBER_T hMbr2, void *pUserData) {
    auto *pOutline = static_cast<VTX_POTL_T>(pUserData);
    auto *a = static_cast<VTX_POTLMBR_T>(hMbr1);
    auto *b = static_cast<VTX_POTLMBR_T>(hMbr2);
    if (pOutline && pOutline->usSortType == VTX_SORT_DESCENDING) std::swap(a, b);
    // Two leaves of an attribute dimension that hold values of one type
    // sort by value: 9 before 10, and dates in time order.
    if (!OTL_IS_SMALL(a) && !OTL_IS_SMALL(b) && !a->pChild && !b->pChild &&
        OTL_LARGE(a)->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE && OTL_LARGE(b)->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE) {
        int c = compareAttributeValues(OTL_LARGE(a), OTL_LARGE(b));
        if (c != 2) return c;
    }
    return otlStricoll(pOutline ? pOutline->pNetCtx : nullptr, a->MbrInfo.szMember, b->MbrInfo.szMember);
}

VTX_STS_T otlQuickSort(VTX_HMEMBER_T *pDataArray, VTX_LONG_T lIndex, OTL_PCOMPAREFUNC_T pfnCompareFunc,
                       void *pUserData) {
    if (!pfnCompareFunc) return 0;
    auto cmp = [&](VTX_HMEMBER_T x, VTX_HMEMBER_T y) { return pfnCompareFunc(x, y, pUserData); };
    return quickSortCore(pDataArray, lIndex, cmp);
}

VTX_STS_T adShrOtlSortChildren(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hParent, VTX_USHORT_T usType,
                               VTX_PFNMBRCOMPARE_T pfnCompare, void *pUserData) {
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hParent})) return sts;
    VTX_POTL_T p = f.outline();
    if (usType > VTX_SORT_CALLER) return f.fail(VTX_STS_BAD_SORT_TYPE);
    if (usType == VTX_SORT_CALLER && !pfnCompare) return f.fail(VTX_STS_NO_COMPARE_FUNC);
    auto *pParent = static_cast<VTX_POTLMBR_T>(hParent);
    const bool dims = !pParent || pParent == p->pHeadItem;
    if (dims && p->incrementalOPGfile) return f.fail(VTX_STS_OPG_SORT_DIMS);
    if (dims) pParent = p->pHeadItem;
    if (!pParent->pChild) return 0;
    return otl::otlGuard(f.ctx(), "adShrOtlSortChildren", [&]() -> VTX_STS_T {
        VTX_LONG_T count = 0, hidden = 0;
        for (VTX_POTLMBR_T c = pParent->pChild; c; c = c->pSibling) {
            ++count;
            if (OTL_IS_HIDDEN(c)) ++hidden;
        }
        VTX_HMEMBER_T *arr = nullptr;
        if (VTX_STS_T sts = otlAlloc(f.ctx(), sizeof(VTX_HMEMBER_T) * (size_t)count, &arr))
            return f.fail(sts, "adShrOtlSortChildren", VTX_MSGARG_STR);
        // Nothing below can fail before the children are linked back.
        VTX_LONG_T i = 0;
        for (VTX_POTLMBR_T c = pParent->pChild; c; c = c->pSibling) arr[i++] = c;
        for (i = 0; i < count; ++i) {
            auto *c = static_cast<VTX_POTLMBR_T>(arr[i]);
            // Unlinking without levels touches only links and counts.
            (void)otlUnattachItem(f.ctx(), c, 0);
            c->pParent = pParent;
        }
        VTX_STS_T sortSts;
        if (usType == VTX_SORT_CALLER) {
            sortSts = otlQuickSort(arr, count - hidden, pfnCompare, pUserData);
        } else {
            p->usSortType = usType;
            sortSts = sortByOutlineOrder(p, arr, count - hidden);
        }
        for (i = 0; i < count; ++i) {
            auto *c = static_cast<VTX_POTLMBR_T>(arr[i]);
            if (i == 0) otlAddChildItem(pParent, c, 0);
            else otlAddSiblingItem(static_cast<VTX_POTLMBR_T>(arr[i - 1]), c, 0);
        }
        if (dims) {
            static_cast<VTX_POTLMBR_T>(arr[0])->ucFlags |= OTL_FLAG_DIMCHANGED;
            otlReorderDimTable(p);
        } else if (VTX_POTLMBR_T pDim = otlGetDim(pParent)) {
            pDim->ucFlags |= OTL_FLAG_DIMCHANGED;
        }
        (void)otlFreeMem(f.ctx(), arr);  // the sort is done; a release failure changes nothing
        p->ucStateFlag |= OTL_STATE_CHANGED;
        return sortSts ? 1 : 0;
    });
}

} // extern "C"

// ---- shared members -------------------------------------------------------------------
//
// A shared member names its stored member by pointer once numbering or an
// explicit setting has pointed it, and by its own name until then; both
// ways go through otlHashFindOriginalItem.

namespace {

// The stored member behind a member: itself when it is not shared.
VTX_STS_T storedOf(VTX_POTL_T o, VTX_POTLMBR_T m, VTX_POTLMBR_T *ppStored) {
    *ppStored = nullptr;
    if (!otlMbrIsSharedShare(m)) {
        *ppStored = m;
        return 0;
    }
    return otlHashFindOriginalItem(o->pNetCtx, o, otlGetDim(m), m, ppStored);
}

// Turns a member into a shared member of pOriginal (usShare 9) and drops
// what only a stored member may hold.  Nothing here can fail.
void makeSharedOf(VTX_POTL_T o, VTX_POTLMBR_T m, VTX_POTLMBR_T pOriginal) {
    otlSetShare(m, VTX_SHARE_SHARED2);
    if (m->MbrInfo.usGen > 1) {
        m->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_DUP;
        m->ucNameUnique = 0;
    }
    // Its unique-name alias described it as a stored member.
    if (o->bNonUniqueName && m->AliasArray && o->usNumAliasTables > 0 && m->AliasArray[0].pszDefName) {
        (void)otlHashDeleteString(o->pNetCtx, o, m, m->AliasArray[0].pszDefName, 1);  // the entry goes with the text
        (void)otlFreeMem(o->pNetCtx, m->AliasArray[0].pszDefName);
        m->AliasArray[0].pszDefName = nullptr;
    }
    m->OriginalMbr.hOriginalMbr = pOriginal;
    o->fVerified = 0;
    o->ucStateFlag |= OTL_STATE_EDITED;
}

} // namespace

extern "C" {

VTX_STS_T adShrOtlGetSharedMembers(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_ULONG_T *pulCount,
                                   VTX_HMEMBER_T **pphSharedMembers) {
    if (pulCount) *pulCount = 0;
    if (pphSharedMembers) *pphSharedMembers = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (!hMember || !pulCount || !pphSharedMembers)
        return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetSharedMembers", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    VTX_POTLMBR_T stored = nullptr;
    if (VTX_STS_T sts = storedOf(o, static_cast<VTX_POTLMBR_T>(hMember), &stored)) return f.fail(sts);
    if (!stored) return 0;
    VTX_ULONG_T n = 0;
    VTX_POTLMBR_T s = nullptr;
    VTX_STS_T sts;
    while (!(sts = otlGetNextSharedMember(o, stored, s, &s)) && s) ++n;
    if (sts) return f.fail(sts);
    if (!n) return 0;
    VTX_HMEMBER_T *arr = nullptr;
    if ((sts = otlAlloc(f.ctx(), sizeof(VTX_HMEMBER_T) * n, &arr)))
        return f.fail(sts, "adShrOtlGetSharedMembers", VTX_MSGARG_STR);
    VTX_ULONG_T i = 0;
    s = nullptr;
    while (i < n && !otlGetNextSharedMember(o, stored, s, &s) && s) arr[i++] = s;
    *pulCount = i;
    *pphSharedMembers = arr;
    return 0;
}

VTX_STS_T adShrOtlGetNextSharedMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phSharedMember) {
    if (phSharedMember) *phSharedMember = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (!hMember || !phSharedMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetNextSharedMember", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    auto *m = static_cast<VTX_POTLMBR_T>(hMember);
    VTX_POTLMBR_T stored = nullptr;
    if (VTX_STS_T sts = storedOf(o, m, &stored)) return f.fail(sts);
    if (!stored) return 0;
    VTX_POTLMBR_T next = nullptr;
    if (VTX_STS_T sts = otlGetNextSharedMember(o, stored, stored == m ? nullptr : m, &next)) return f.fail(sts);
    *phSharedMember = next;
    return 0;
}

VTX_STS_T adShrOtlFindOriginalMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hSharedMember, VTX_HMEMBER_T *phMember) {
    if (phMember) *phMember = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hSharedMember})) return sts;
    if (!hSharedMember || !phMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlFindOriginalMember", VTX_MSGARG_STR);
    auto *m = static_cast<VTX_POTLMBR_T>(hSharedMember);
    VTX_POTLMBR_T stored = nullptr;
    if (VTX_STS_T sts = storedOf(f.outline(), m, &stored)) return f.fail(sts);
    if (!stored) return f.fail(VTX_STS_SHARED_NO_STORED, m->MbrInfo.szMember, VTX_MSGARG_STR);
    *phMember = stored;
    return 0;
}

VTX_STS_T adShrOtlGetOriginalMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phOriginal) {
    if (phOriginal) *phOriginal = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (!hMember || !phOriginal) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetOriginalMember", VTX_MSGARG_STR);
    auto *m = static_cast<VTX_POTLMBR_T>(hMember);
    if (otlMbrIsSharedShare(m)) *phOriginal = m->OriginalMbr.hOriginalMbr;
    return 0;
}

VTX_STS_T adShrOtlResetOriginalMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hSharedMbr, VTX_HMEMBER_T hOriginalMbr) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    if (VTX_STS_T sts = f.enter({hSharedMbr, hOriginalMbr})) return sts;
    if (!hSharedMbr || !hOriginalMbr)
        return f.fail(VTX_STS_NULL_ARG, "adShrOtlResetOriginalMember", VTX_MSGARG_STR);
    if (f.outline()->incrementalOPGfile) return f.fail(VTX_STS_NOT_AVAILABLE);
    makeSharedOf(f.outline(), static_cast<VTX_POTLMBR_T>(hSharedMbr), static_cast<VTX_POTLMBR_T>(hOriginalMbr));
    return 0;
}

VTX_STS_T adShrOtlSetOriginalMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T szOriginalMbr,
                                    VTX_BOOL_T fIsMbrId, VTX_USHORT_T) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    VTX_POTL_T o = f.outline();
    if (!o->bNonUniqueName) {
        // Only outlines with duplicate names point shared members by hand;
        // the refusal is a warning.
        vTX_PNETCTX_T c = f.ctx();
        if (c && (c->bSendMsgNet || o->ucCallerType == 2))
            (void)adNetLocalMessage(c, VTX_STS_DUP_RULE_CONFLICT, VTX_MSG_WARNING, nullptr, 0, nullptr, 0);  // the status says it
        return VTX_STS_DUP_RULE_CONFLICT;
    }
    auto *m = static_cast<VTX_POTLMBR_T>(hMember);
    if (!m || !szOriginalMbr || !*szOriginalMbr)
        return f.fail(VTX_STS_NULL_ARG, "adShrOtlSetOriginalMember", VTX_MSGARG_STR);
    if (o->incrementalOPGfile) return f.fail(VTX_STS_NOT_AVAILABLE);
    VTX_POTLMBR_T stored = nullptr;
    // A member identifier is the member's alias in the "Member ID" table
    // (table 1, index number 2).
    VTX_STS_T sts = fIsMbrId ? otlHashFindItemByNameEx(f.ctx(), o, szOriginalMbr, nullptr, 0, 1, 1, OTL_OPT_UNSHARED, 2,
                                                       nullptr, &stored, nullptr, nullptr)
                             : otlHashFindItemByNameEx(f.ctx(), o, szOriginalMbr, nullptr, 1, 0, 1, OTL_OPT_UNSHARED, 0,
                                                       nullptr, &stored, nullptr, nullptr);
    if (sts == VTX_STS_NOT_FOUND) return f.fail(sts, szOriginalMbr, VTX_MSGARG_STR);
    if (sts || !stored || stored == m) return f.fail(VTX_STS_STORED_NOT_FOUND, szOriginalMbr, VTX_MSGARG_STR);
    // A typed stored member makes its shared members never consolidate,
    // and a shared member has no format string of its own.
    if (!OTL_IS_SMALL(m) && OTL_LARGE(m)->pszFormatString) {
        (void)otlFreeMem(f.ctx(), OTL_LARGE(m)->pszFormatString);  // released with the role it served
        OTL_LARGE(m)->pszFormatString = nullptr;
    }
    if (o->bMemberTypeEnabled && (stored->ucFlags2 & OTL_FLAG2_TYPEMASK))
        m->MbrInfo.ucInfoFlags = (VTX_USHORT_T)((m->MbrInfo.ucInfoFlags & ~OTL_INFO_CONSOL) | VTX_CONS_NEVER);
    makeSharedOf(o, m, stored);
    return 0;
}

VTX_STS_T adShrOtlCorrectSharedMembers(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDimTop) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit);
    if (VTX_STS_T sts = f.enter({hDimTop})) return sts;
    VTX_POTL_T o = f.outline();
    auto *dim = static_cast<VTX_POTLMBR_T>(hDimTop);
    if (!dim || dim->MbrInfo.usGen != 1) return f.fail(VTX_STS_NULL_ARG, "adShrOtlCorrectSharedMembers", VTX_MSGARG_STR);
    return otl::otlGuard(f.ctx(), "adShrOtlCorrectSharedMembers", [&]() -> VTX_STS_T {
        for (bool changed = true; changed;) {
            changed = false;
            otlUpdateMemnorsFromDim(o, dim);
            for (VTX_POTLMBR_T p = otlLowLeftInternal(dim); p && p != dim; p = nextPostOrder(p, dim)) {
                if (!otlMbrIsSharedShare(p)) continue;
                VTX_POTLMBR_T stored = nullptr;
                if (otlHashFindOriginalItem(f.ctx(), o, dim, p, &stored) || !stored || stored->ulMemno <= p->ulMemno)
                    continue;
                // The stored member stands behind a shared copy: the earliest
                // copy in the dimension takes its place.
                VTX_POTLMBR_T chosen = p;
                VTX_POTLMBR_T s = nullptr;
                while (!otlGetNextSharedMember(o, stored, s, &s) && s)
                    if (otlGetDim(s) == dim && s->ulMemno < chosen->ulMemno) chosen = s;
                vtx_mbrinfo_t *info = nullptr;
                VTX_STS_T sts = adShrOtlGetMemberInfo(o, chosen, &info);
                if (sts) return sts;
                info->usShare = VTX_SHARE_STORE;
                sts = adShrOtlSetMemberInfo(o, chosen, info, OTL_VERIFY_QUIET, nullptr);
                (void)adShrOtlFreeMbrInfo(f.ctx(), 1, info);  // the read copy; its release has no bearing
                if (sts) return sts;
                chosen->OriginalMbr.hOriginalMbr = nullptr;
                // Its children follow it, in their order.
                VTX_POTLMBR_T prev = nullptr;
                while (VTX_POTLMBR_T c = stored->pChild) {
                    if ((sts = adShrOtlMoveMember(o, c, prev ? nullptr : chosen, prev, nullptr))) return sts;
                    prev = c;
                }
                // The old stored member and every other copy point at it.
                std::vector<VTX_POTLMBR_T> others;
                s = nullptr;
                while (!otlGetNextSharedMember(o, stored, s, &s) && s)
                    if (s != chosen) others.push_back(s);
                if (o->bNonUniqueName) {
                    makeSharedOf(o, stored, chosen);
                    for (VTX_POTLMBR_T x : others) makeSharedOf(o, x, chosen);
                } else {
                    if ((sts = adShrOtlGetMemberInfo(o, stored, &info))) return sts;
                    info->usShare = VTX_SHARE_SHARED;
                    sts = adShrOtlSetMemberInfo(o, stored, info, OTL_VERIFY_QUIET, nullptr);
                    (void)adShrOtlFreeMbrInfo(f.ctx(), 1, info);  // the read copy
                    if (sts) return sts;
                    for (VTX_POTLMBR_T x : others) x->OriginalMbr.hOriginalMbr = nullptr;
                }
                changed = true;
                break;  // the walk starts again over the changed dimension
            }
        }
        f.edited();
        return 0;
    });
}

} // extern "C"

extern "C" void otlPromoteSharedCopies(VTX_POTL_T o, VTX_POTLMBR_T *copies, VTX_POTLMBR_T *origins, VTX_ULONG_T count) {
    if (!o || !copies || !origins) return;
    for (VTX_ULONG_T i = 0; i < count; ++i) {
        if (!copies[i]) continue;
        // copies[i] is the first of its group still waiting: it takes the
        // place of the stored member, with its name.
        VTX_POTLMBR_T chosen = copies[i];
        VTX_POTLMBR_T origin = origins[i];
        otlSetShare(chosen, VTX_SHARE_STORE);
        // It now holds data: the counts the edits keep say so.
        ++o->Counts.ulRealMembers;
        if (o->Counts.pDimensionMaps && chosen->ulDimno >= 1 && chosen->ulDimno <= o->DimTableSize)
            ++o->Counts.pDimensionMaps[chosen->ulDimno - 1].ulMembers;
        chosen->OriginalMbr.hOriginalMbr = nullptr;
        copies[i] = nullptr;
        for (VTX_ULONG_T j = i + 1; j < count; ++j) {
            if (!copies[j] || origins[j] != origin) continue;
            copies[j]->OriginalMbr.hOriginalMbr = o->bNonUniqueName ? chosen : nullptr;
            copies[j] = nullptr;
        }
    }
    o->fVerified = 0;
    o->ucStateFlag |= OTL_STATE_EDITED;
}

extern "C" void otlAddChildBlock(VTX_POTLMBR_T pParent, VTX_POTLMBR_T pChild) {
    if (!pParent || !pChild) return;
    VTX_POTLMBR_T tail = pChild;
    for (VTX_POTLMBR_T c = pChild; c; c = c->pSibling) {
        c->pParent = pParent;
        otlSetParentLevels(c);
        tail = c;
    }
    pChild->pPrevSibling = nullptr;
    tail->pSibling = pParent->pChild;
    if (pParent->pChild) pParent->pChild->pPrevSibling = tail;
    pParent->pChild = pChild;
    pParent->ulSiblingCount++;
    // Generations from the parent down, and the parent's last visible child.
    otlResetGens(pChild, (VTX_USHORT_T)(pParent->MbrInfo.usGen + 1));
}
