// Member records: the two pools that hand them out, the paths that free
// them, the walks every area uses, and the copies between a record and the
// exported vtx_mbrinfo_t.
#include "otl.h"

#include <algorithm>
#include <cstring>

namespace {

// Client versions at which fields of vtx_mbrinfo_t start to travel.
constexpr VTX_ULONG_T kVerRecord5 = 0x50000;     // full record, comments
constexpr VTX_ULONG_T kVerDimName = 0x50700;     // szDimName, Attribute
constexpr VTX_ULONG_T kVerRelDesc = 0x64fff;     // above: fHasRelDesc, fHasHAEnabled
constexpr VTX_ULONG_T kVerLastSib = 0x65100;     // pLastSibling, ulChildCount from ulSiblingCount
constexpr VTX_ULONG_T kVerFormula = 0x70000;     // fFormula, fUda, fAlias
constexpr VTX_ULONG_T kVerHierType = 463359;     // above: ucHierarchyType accepted on the way in
constexpr VTX_ULONG_T kVerNonUnique = 0x8ffff;   // above: fNonUniqueName
constexpr VTX_ULONG_T kVerFlow = 0x92fff;        // above: fFlow

size_t recordSize(VTX_BOOL_T bLarge) {
    return bLarge ? sizeof(_vtx_otlmbrlarge_t) : sizeof(_vtx_otlmbr_t);
}

// A fresh record's defaults, common to the pooled and the unpooled form.
void initRecord(VTX_POTLMBR_T p, VTX_BOOL_T bLarge) {
    if (bLarge) {
        auto *l = OTL_LARGE(p);
        l->MbrInfo.usConversion = 0;
        l->MbrInfo.usTimeBalance = 0;
        l->MbrInfo.usSkip = 0;
        l->MbrInfo.usStorage = 0;
        l->MbrInfo.usCategory = 0;
        l->MbrInfo.usStorageCategory = 0;
        l->MbrInfo.ucHierarchyType = OTL_HIER_STORED;
        l->MbrInfo.usShare = 0;
    } else {
        p->ucFlags |= OTL_FLAG_SMALL;
        p->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~OTL_INFO_SHAREBITS;
    }
    p->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~OTL_INFO_CONSOL;
}

VTX_STS_T newPoolBlock(vTX_PNETCTX_T pNetCtx, VTX_ULONG_T ulRecords, VTX_BOOL_T bLarge,
                       OTL_PMEMALLOC *ppBlock) {
    *ppBlock = nullptr;
    OTL_PMEMALLOC pBlock = nullptr;
    VTX_STS_T sts = otlAlloc(pNetCtx, sizeof(OTL_MEMALLOC), &pBlock);
    if (sts) return sts;
    sts = otlAlloc(pNetCtx, (size_t)ulRecords * recordSize(bLarge), &pBlock->pBuf);
    if (sts) {
        (void)otlFreeMem(pNetCtx, pBlock);  // a free failure cannot be reported over the first one
        return sts;
    }
    pBlock->uFreeCount = ulRecords;
    pBlock->uCapacity = ulRecords;
    pBlock->uPosFreeItem = 0;
    *ppBlock = pBlock;
    return 0;
}

void freeAttrRecord(vTX_PNETCTX_T pNetCtx, VTX_ATTRIBUTEVALUE_T *pAttr) {
    if (pAttr->usDataType == VTX_ATTR_STRING && pAttr->value.pszValue)
        (void)otlFreeMem(pNetCtx, pAttr->value.pszValue);  // release never fails for our own blocks
    pAttr->value.raw = 0;
}

void freeString(vTX_PNETCTX_T pNetCtx, VTX_STR_T *pp) {
    if (*pp) (void)otlFreeMem(pNetCtx, *pp);  // a release failure leaves nothing to undo
    *pp = nullptr;
}

// Copies text of at most cap-1 bytes into a fixed exported buffer.
void copyOut(char *dst, size_t cap, const char *src) {
    if (!src) { dst[0] = 0; return; }
    size_t n = std::strlen(src);
    if (n >= cap) n = cap - 1;
    std::memcpy(dst, src, n);
    dst[n] = 0;
}

} // namespace

extern "C" {

// ---- pools ------------------------------------------------------------------

VTX_STS_T otlInitMemList(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_ULONG_T ulInitialSize,
                         VTX_BOOL_T bLarge) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    OTL_PMEMALLOC *ppHead = bLarge ? &pOutline->gHeadItemLarge : &pOutline->gHeadItemSmall;
    if (*ppHead) return 0;  // one pool of each size per outline
    // Capacity counts records: an estimate of the members to come, scaled down.
    double d = (double)ulInitialSize * 7.5 / 100.0;
    VTX_ULONG_T ulRecords = std::max<VTX_ULONG_T>(OTL_POOL_MIN_RECORDS,
                                                  d > 4.0e9 ? 4000000000u : (VTX_ULONG_T)d);
    OTL_PMEMALLOC pBlock = nullptr;
    VTX_STS_T sts = newPoolBlock(pNetCtx, ulRecords, bLarge, &pBlock);
    if (sts) return sts;
    pOutline->gGrowFactor = 1;
    *ppHead = pBlock;
    return 0;
}

VTX_STS_T otlNewItem2(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T *ppItem,
                      VTX_BOOL_T bLarge) {
    if (!ppItem) return VTX_STS_NULL_ARG;
    *ppItem = nullptr;
    if (!pOutline) return VTX_STS_NULL_ARG;
    OTL_PMEMALLOC *ppHead = bLarge ? &pOutline->gHeadItemLarge : &pOutline->gHeadItemSmall;
    if (!*ppHead) return VTX_STS_POOL_MISSING;
    bool grown = false;
    if ((*ppHead)->uFreeCount == 0) {
        OTL_PMEMALLOC pBlock = nullptr;
        VTX_ULONG_T factor = pOutline->gGrowFactor ? pOutline->gGrowFactor : 1;
        VTX_STS_T sts = newPoolBlock(pNetCtx, factor * OTL_POOL_MIN_RECORDS, bLarge, &pBlock);
        if (sts) return sts;
        pBlock->pNext = *ppHead;
        *ppHead = pBlock;
        grown = true;
    }
    OTL_PMEMALLOC pBlock = *ppHead;
    auto *p = reinterpret_cast<VTX_POTLMBR_T>(static_cast<char *>(pBlock->pBuf) +
                                              (size_t)pBlock->uPosFreeItem * recordSize(bLarge));
    pBlock->uPosFreeItem++;
    pBlock->uFreeCount--;
    initRecord(p, bLarge);
    p->ucFlags |= OTL_FLAG_POOLED;
    VTX_STS_T sts = otlAllocItemAliasArray(pNetCtx, pOutline, p);
    if (sts) {
        // Hand the slot back: it is the last one taken, and a slot that no
        // record owns must stay zeroed for the next taker.
        std::memset(p, 0, recordSize(bLarge));
        pBlock->uPosFreeItem--;
        pBlock->uFreeCount++;
        return sts;
    }
    // The growth factor only moves once the new block is really in use.
    if (grown && pOutline->gGrowFactor < OTL_POOL_MAX_FACTOR) pOutline->gGrowFactor *= 2;
    *ppItem = p;
    return 0;
}

VTX_STS_T otlNewItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T *ppItem,
                     VTX_BOOL_T bLarge) {
    if (!ppItem) return VTX_STS_NULL_ARG;
    *ppItem = nullptr;
    VTX_POTLMBR_T p = nullptr;
    VTX_STS_T sts = otlAlloc(pNetCtx, recordSize(bLarge), &p);
    if (sts) return sts;
    initRecord(p, bLarge);
    p->MbrInfo.szMember = nullptr;
    if (pOutline) {
        sts = otlAllocItemAliasArray(pNetCtx, pOutline, p);
        if (sts) {
            (void)otlFreeMem(pNetCtx, p);  // the allocation failure is the status to report
            return sts;
        }
    }
    *ppItem = p;
    return 0;
}

VTX_STS_T otlNewItemAny(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T *ppItem,
                        VTX_BOOL_T bLarge) {
    if (pOutline && (bLarge ? pOutline->gHeadItemLarge : pOutline->gHeadItemSmall))
        return otlNewItem2(pNetCtx, pOutline, ppItem, bLarge);
    return otlNewItem(pNetCtx, pOutline, ppItem, bLarge);
}

void otlFreeMemList(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline) {
    if (!pOutline) return;
    for (OTL_PMEMALLOC *ppHead : {&pOutline->gHeadItemLarge, &pOutline->gHeadItemSmall}) {
        const size_t size = recordSize(ppHead == &pOutline->gHeadItemLarge);
        OTL_PMEMALLOC p = *ppHead;
        while (p) {
            OTL_PMEMALLOC next = p->pNext;
            // Every slot handed out is released here, whether or not it was
            // ever linked: freeing a record clears what it frees, so a record
            // the tree already released costs nothing, and one a failed edit
            // left orphaned gives back what it held.
            for (VTX_ULONG_T i = 0; i < p->uPosFreeItem; ++i)
                otlFreeItem(pNetCtx, pOutline,
                            reinterpret_cast<VTX_POTLMBR_T>(static_cast<char *>(p->pBuf) + i * size));
            (void)otlFreeMem(pNetCtx, p->pBuf);  // close frees everything; nothing to report to
            (void)otlFreeMem(pNetCtx, p);
            p = next;
        }
        *ppHead = nullptr;
    }
}

VTX_STS_T otlAllocItemAliasArray(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem) {
    if (!pOutline || !pItem || pItem->AliasArray || pOutline->usNumAliasTables == 0) return 0;
    return otlAlloc(pNetCtx, sizeof(VTX_OTLALIASARRAYREC_T) * pOutline->usNumAliasTables,
                    &pItem->AliasArray);
}

// ---- freeing ----------------------------------------------------------------

void otlFreeLargeItemStrings(vTX_PNETCTX_T pNetCtx, VTX_POTLMBRLARGE_T p, VTX_BOOL_T bTemporary) {
    if (!p) return;
    if (!bTemporary) {
        // In a temporary view these point into the caller's vtx_mbrinfo_t.
        freeString(pNetCtx, &p->MbrInfo.szCurMember);
        freeString(pNetCtx, &p->MbrInfo.szComment);
        freeAttrRecord(pNetCtx, &p->MbrInfo.Attribute);
    }
    freeString(pNetCtx, &p->MbrInfo.szDimName);
    freeString(pNetCtx, &p->pszCalc);
    freeString(pNetCtx, &p->pszLastCalc);
    freeString(pNetCtx, &p->pszCommentEx);
    freeString(pNetCtx, &p->pszFormatString);
    for (VTX_PNAMELIST_T n = p->pNameList; n;) {
        VTX_PNAMELIST_T next = n->pNext;
        freeString(pNetCtx, &n->pszName);
        (void)otlFreeMem(pNetCtx, n);
        n = next;
    }
    p->pNameList = nullptr;
    for (VTX_PUSERATTR_T u = p->pUserAttrList; u;) {
        VTX_PUSERATTR_T next = u->pNext;
        freeString(pNetCtx, &u->pszUserAttr);
        (void)otlFreeMem(pNetCtx, u);
        u = next;
    }
    p->pUserAttrList = nullptr;
    if (p->NumOfAttrDim) {
        for (unsigned i = 0; i < p->NumOfAttrDim; ++i) {
            if (p->ppszArrAttrDim) freeString(pNetCtx, &p->ppszArrAttrDim[i]);
            if (p->ppszArrAttrMem) freeString(pNetCtx, &p->ppszArrAttrMem[i]);
            if (p->pArrAttribute) freeAttrRecord(pNetCtx, &p->pArrAttribute[i]);
        }
    }
    (void)otlFreeMem(pNetCtx, p->ppszArrAttrDim);
    (void)otlFreeMem(pNetCtx, p->ppszArrAttrMem);
    (void)otlFreeMem(pNetCtx, p->pArrAttribute);
    p->ppszArrAttrDim = p->ppszArrAttrMem = nullptr;
    p->pArrAttribute = nullptr;
    p->NumOfAttrDim = 0;
    if (p->pAttrToBaseMap) {
        (void)otlFreeMem(pNetCtx, p->pAttrToBaseMap->pulBitMap);
        (void)otlFreeMem(pNetCtx, p->pAttrToBaseMap);
        p->pAttrToBaseMap = nullptr;
    }
    // The attribute map is a union read by the member's role.
    if (p->MbrInfo.usGen == 1 && p->usAttrCode == 2) {
        if (p->Map.BaseDim.pAttrs) {
            for (unsigned i = 0; i < p->Map.BaseDim.usAttrDims; ++i)
                (void)otlFreeMem(pNetCtx, p->Map.BaseDim.pAttrs[i].pIndepDims);
            (void)otlFreeMem(pNetCtx, p->Map.BaseDim.pAttrs);
        }
        (void)otlFreeMem(pNetCtx, p->Map.BaseDim.pAttrMapLevels);
        std::memset(&p->Map, 0, sizeof p->Map);
    } else if (p->MbrInfo.usGen > 1 && p->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE) {
        freeString(pNetCtx, &p->Map.AttrMbr.pszShortName);
    }
    if (p->pAliasRec) {
        // One list per alias table; the array is as wide as the table slots.
        for (unsigned t = 0; t < OTL_MAX_ALIAS_TABLES; ++t) {
            for (VTX_POTLALIASREC_T a = p->pAliasRec[t]; a;) {
                VTX_POTLALIASREC_T next = a->pNext;
                freeString(pNetCtx, &a->pszAlias);
                freeString(pNetCtx, &a->pszCombination);
                (void)otlFreeMem(pNetCtx, a);
                a = next;
            }
        }
        (void)otlFreeMem(pNetCtx, p->pAliasRec);
        p->pAliasRec = nullptr;
    }
}

void otlFreeItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem) {
    if (!pItem) return;
    freeString(pNetCtx, &pItem->MbrInfo.szMember);
    if (pItem->AliasArray) {
        unsigned n = pOutline ? pOutline->usNumAliasTables : 0;
        for (unsigned t = 0; t < n; ++t) freeString(pNetCtx, &pItem->AliasArray[t].pszDefName);
        (void)otlFreeMem(pNetCtx, pItem->AliasArray);
        pItem->AliasArray = nullptr;
    }
    (void)otlFreeMem(pNetCtx, pItem->BaseMap.hAttrArray);
    pItem->BaseMap.hAttrArray = nullptr;
    pItem->BaseMap.usArraySize = 0;
    if (pItem->isShared) (void)otlFreeMem(pNetCtx, pItem->refParentAry);
    pItem->refParentAry = nullptr;
    pItem->refParentCnt = 0;
    pItem->isShared = 0;
    // A query-form record names its stored member instead of pointing at it.
    if (pOutline && pOutline->fOpenQuery) freeString(pNetCtx, &pItem->OriginalMbr.szOriginalMbr);
    if (!OTL_IS_SMALL(pItem)) otlFreeLargeItemStrings(pNetCtx, OTL_LARGE(pItem), 0);
    if (!(pItem->ucFlags & OTL_FLAG_POOLED)) (void)otlFreeMem(pNetCtx, pItem);
}

void otlFreeItemWithDim(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem) {
    otlFreeItem(pNetCtx, pOutline, pItem);
}

void otlFreeItemList(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem) {
    if (!pItem) return;
    // Post-order without recursion: a dimension may be millions deep in
    // siblings and a hundred deep in generations.
    VTX_POTLMBR_T p = otlLowLeftInternal(pItem);
    while (p) {
        VTX_POTLMBR_T next;
        if (p == pItem) {
            next = nullptr;
        } else if (p->pSibling) {
            next = otlLowLeftInternal(p->pSibling);
        } else {
            next = p->pParent;
        }
        otlFreeItem(pNetCtx, pOutline, p);
        p = next;
    }
}

// ---- walks ------------------------------------------------------------------

VTX_BOOL_T otlIsMbrValid(VTX_LONG_T id, const VTX_ULONG_T mask[2]) {
    if (id < 0) {
        VTX_ULONG_T bits = (VTX_ULONG_T)id & 0x7fffffffu;
        return (mask[1] & bits) == bits;
    }
    return (mask[0] & (VTX_ULONG_T)id) == (VTX_ULONG_T)id;
}

VTX_POTLMBR_T otlGetDim(VTX_POTLMBR_T pItem) {
    if (!pItem || pItem->MbrInfo.usGen == 0) return nullptr;
    while (pItem && pItem->MbrInfo.usGen >= 2) pItem = pItem->pParent;
    return pItem;
}

VTX_POTLMBR_T otlLowLeftInternal(VTX_POTLMBR_T pItem) {
    if (!pItem) return nullptr;
    while (pItem->pChild) pItem = pItem->pChild;
    return pItem;
}

VTX_POTLMBR_T otlNavtrdn(VTX_POTLMBR_T mptr, VTX_POTLMBR_T top) {
    if (!mptr) return nullptr;
    if (mptr->pChild) return mptr->pChild;
    while (mptr && mptr != top) {
        if (mptr->pSibling) return mptr->pSibling;
        mptr = mptr->pParent;
    }
    return nullptr;
}

// ---- copies -----------------------------------------------------------------

void otlFreeInternalMbrInfoStrings(vTX_PNETCTX_T pNetCtx, VTX_PINTMBRINFOLARGE_T pInfo) {
    if (!pInfo) return;
    freeString(pNetCtx, &pInfo->szMember);
    freeString(pNetCtx, &pInfo->szCurMember);
    freeString(pNetCtx, &pInfo->szComment);
    freeAttrRecord(pNetCtx, &pInfo->Attribute);
}

VTX_STS_T otlCopyToInternalFromExternalMbrInfo(vTX_PNETCTX_T pNetCtx, const vtx_mbrinfo_t *pMbrInfo,
                                               VTX_PINTMBRINFOLARGE_T pInfo, VTX_BOOL_T bTemporary) {
    if (!pMbrInfo || !pInfo) return VTX_STS_NULL_ARG;
    VTX_ULONG_T ver = pNetCtx ? (VTX_ULONG_T)pNetCtx->lClientVersion : 0;
    // A client before 5.0 had no comment; its record was widened to this
    // form at the boundary (otlMbrInfoFromOld).
    const bool withComment = ver >= kVerRecord5;

    VTX_INTMBRINFOLARGE_T tmp = *pInfo;
    tmp.szMember = tmp.szCurMember = tmp.szComment = nullptr;
    tmp.Attribute = VTX_ATTRIBUTEVALUE_T{};
    // Take every string first, so that a failed copy leaves pInfo untouched.
    VTX_STS_T sts = 0;
    if (bTemporary) {
        tmp.szMember = const_cast<char *>(pMbrInfo->szMember);
        tmp.szCurMember = pMbrInfo->szCurMember[0] ? const_cast<char *>(pMbrInfo->szCurMember) : nullptr;
        tmp.szComment = withComment && pMbrInfo->szComment[0] ? const_cast<char *>(pMbrInfo->szComment) : nullptr;
    } else {
        // The name is kept even when empty: a record always owns a name block.
        size_t n = strnlen(pMbrInfo->szMember, VTX_MBRNAME_LEN - 1);
        sts = otlAlloc(pNetCtx, n + 1, &tmp.szMember);
        if (!sts) std::memcpy(tmp.szMember, pMbrInfo->szMember, n);
        if (!sts && pMbrInfo->szCurMember[0]) {
            char buf[VTX_MBRNAME_LEN];
            copyOut(buf, sizeof buf, pMbrInfo->szCurMember);
            sts = otlStrdup(pNetCtx, buf, &tmp.szCurMember);
        }
        if (!sts && withComment && pMbrInfo->szComment[0]) {
            char buf[VTX_MBRCOMMENT_LEN];
            copyOut(buf, sizeof buf, pMbrInfo->szComment);
            sts = otlStrdup(pNetCtx, buf, &tmp.szComment);
        }
    }
    if (!sts && ver >= kVerDimName) {
        tmp.Attribute = pMbrInfo->Attribute;
        if (pMbrInfo->Attribute.usDataType == VTX_ATTR_STRING) {
            tmp.Attribute.value.pszValue = nullptr;
            if (bTemporary)
                tmp.Attribute.value.pszValue = pMbrInfo->Attribute.value.pszValue;
            else
                sts = otlStrdup(pNetCtx, pMbrInfo->Attribute.value.pszValue, &tmp.Attribute.value.pszValue);
        }
    }
    if (sts) {
        if (!bTemporary) otlFreeInternalMbrInfoStrings(pNetCtx, &tmp);
        return sts;
    }
    tmp.usLevel = (VTX_UCHAR_T)pMbrInfo->usLevel;
    tmp.usGen = (VTX_UCHAR_T)pMbrInfo->usGen;
    tmp.usTimeBalance = pMbrInfo->usTimeBalance;
    tmp.usSkip = pMbrInfo->usSkip;
    tmp.ucInfoFlags = (VTX_USHORT_T)((tmp.ucInfoFlags & ~OTL_INFO_CONSOL) | (pMbrInfo->usConsolidation & OTL_INFO_CONSOL));
    if (ver > kVerRelDesc) {
        tmp.ucInfoFlags &= (VTX_USHORT_T)~(OTL_INFO_RELDESC | OTL_INFO_HAENABLED);
        if (pMbrInfo->fHasRelDesc) tmp.ucInfoFlags |= OTL_INFO_RELDESC;
        if (pMbrInfo->fHasHAEnabled) tmp.ucInfoFlags |= OTL_INFO_HAENABLED;
    }
    tmp.usConversion = pMbrInfo->usConversion;
    tmp.fTwoPass = pMbrInfo->fTwoPass ? 1 : 0;
    tmp.fExpense = pMbrInfo->fExpense ? 1 : 0;
    tmp.usCategory = (VTX_UCHAR_T)pMbrInfo->usCategory;
    tmp.usStorageCategory = (VTX_UCHAR_T)pMbrInfo->usStorageCategory;
    tmp.usStorage = (VTX_UCHAR_T)pMbrInfo->usStorage;
    tmp.usShare = (VTX_UCHAR_T)pMbrInfo->usShare;
    if (ver > kVerHierType && pMbrInfo->ucHierarchyType) tmp.ucHierarchyType = pMbrInfo->ucHierarchyType;
    *pInfo = tmp;
    return 0;
}

VTX_STS_T otlCopyLargeToMbrInfo(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, vtx_mbrinfo_t *pMbrInfo,
                                VTX_ULONG_T ulVersion) {
    if (!pItem || !pMbrInfo) return VTX_STS_NULL_ARG;
    std::memset(pMbrInfo, 0, sizeof *pMbrInfo);
    vTX_PNETCTX_T pNetCtx = pOutline ? pOutline->pNetCtx : nullptr;
    const bool query = pOutline && pOutline->fOpenQuery;
    const bool small = OTL_IS_SMALL(pItem);
    const VTX_POTLMBRLARGE_T l = small ? nullptr : OTL_LARGE(pItem);

    pMbrInfo->usLevel = pItem->MbrInfo.usLevel;
    pMbrInfo->usGen = pItem->MbrInfo.usGen;
    pMbrInfo->usConsolidation = pItem->MbrInfo.ucInfoFlags & OTL_INFO_CONSOL;
    pMbrInfo->usTimeBalance = pItem->MbrInfo.usTimeBalance;
    pMbrInfo->usSkip = pItem->MbrInfo.usSkip;
    pMbrInfo->usShare = otlGetShare(pItem);
    if (ulVersion >= kVerRecord5) pMbrInfo->ulChildCount = pItem->MbrInfo.ulChildCount;
    pMbrInfo->ulSiblingCount = pItem->ulSiblingCount;
    pMbrInfo->fAttributed = (pItem->MbrInfo.ucInfoFlags & OTL_INFO_ATTRIBUTED) ? 1 : 0;
    pMbrInfo->ucSolveOrder = pItem->ucSolveOrder;
    pMbrInfo->ucDimSolveOrder = pItem->ucDimSolveOrder;
    pMbrInfo->ucMemberType = pItem->ucFlags2 & OTL_FLAG2_TYPEMASK;
    copyOut(pMbrInfo->szMember, sizeof pMbrInfo->szMember, pItem->MbrInfo.szMember);
    if (l) {
        pMbrInfo->fTwoPass = l->MbrInfo.fTwoPass;
        pMbrInfo->fExpense = l->MbrInfo.fExpense;
        pMbrInfo->usConversion = l->MbrInfo.usConversion;
        pMbrInfo->usStorage = l->MbrInfo.usStorage;
        pMbrInfo->usCategory = l->MbrInfo.usCategory;
        pMbrInfo->usStorageCategory = l->MbrInfo.usStorageCategory;
        copyOut(pMbrInfo->szCurMember, sizeof pMbrInfo->szCurMember, l->MbrInfo.szCurMember);
        if (ulVersion >= kVerRecord5)
            copyOut(pMbrInfo->szComment, sizeof pMbrInfo->szComment, l->MbrInfo.szComment);
        if (pOutline && pOutline->usOutlineType == VTX_OTL_AGGSTORE &&
            (l->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE || l->MbrInfo.usCategory == VTX_CAT_ATTRCALC))
            pMbrInfo->usShare = VTX_SHARE_DYNCALC;
    } else {
        pMbrInfo->fExpense = (pItem->ucFlags2 & OTL_FLAG2_EXPENSE) ? 1 : 0;
    }
    if (ulVersion >= kVerDimName) {
        if (l && l->MbrInfo.szDimName) {
            copyOut(pMbrInfo->szDimName, sizeof pMbrInfo->szDimName, l->MbrInfo.szDimName);
        } else if (!query) {
            VTX_POTLMBR_T d = pItem;
            while (d && d->MbrInfo.usGen > 1) d = d->pParent;
            if (d && d->MbrInfo.usGen == 1)
                copyOut(pMbrInfo->szDimName, sizeof pMbrInfo->szDimName, d->MbrInfo.szMember);
        }
        if (l) {
            pMbrInfo->Attribute = l->MbrInfo.Attribute;
            if (l->MbrInfo.Attribute.usDataType == VTX_ATTR_STRING) {
                pMbrInfo->Attribute.value.pszValue = nullptr;
                VTX_STS_T sts = otlStrdup(pNetCtx, l->MbrInfo.Attribute.value.pszValue,
                                          &pMbrInfo->Attribute.value.pszValue);
                if (sts) {
                    std::memset(pMbrInfo, 0, sizeof *pMbrInfo);
                    return sts;
                }
            }
        }
    }
    if (ulVersion > kVerRelDesc) {
        pMbrInfo->fHasRelDesc = (pItem->MbrInfo.ucInfoFlags & OTL_INFO_RELDESC) ? 1 : 0;
        pMbrInfo->fHasHAEnabled = (pItem->MbrInfo.ucInfoFlags & OTL_INFO_HAENABLED) ? 1 : 0;
    }
    if (ulVersion >= kVerLastSib) pMbrInfo->pLastSibling = pItem->MbrInfo.pLastSibling;
    if (ulVersion >= kVerFormula) pMbrInfo->fFormula = (pItem->ucFlags & OTL_FLAG_FORMULA) ? 1 : 0;
    // Only large records outside the attribute categories can be independent.
    if (l && l->MbrInfo.usCategory != VTX_CAT_ATTRIBUTE && l->MbrInfo.usCategory != VTX_CAT_ATTRCALC)
        pMbrInfo->fIndependentDim = (l->ucDimFlags & OTL_DIMF_INDEP) ? 1 : 0;
    if (ulVersion > kVerNonUnique && pOutline && pOutline->bNonUniqueName) {
        // A query-form record carries the verdict of its server; an edit
        // record carries the duplicate mark the index keeps on it.
        pMbrInfo->fNonUniqueName = query ? ((pItem->ucNameUnique & OTL_NU_DUP) ? 1 : 0)
                                         : ((pItem->ucFlags & OTL_FLAG_DUP) && pItem->MbrInfo.usGen > 1 ? 1 : 0);
    }
    if (ulVersion > kVerFlow) pMbrInfo->fFlow = (pItem->ucFlags2 & OTL_FLAG2_FLOW) ? 1 : 0;

    // Hierarchy type as seen by the caller, from the generation and the parent.
    const VTX_UCHAR_T gen = pItem->MbrInfo.usGen;
    if (gen == 1) {
        pMbrInfo->ucHierarchyType = l ? l->MbrInfo.ucHierarchyType : OTL_HIER_STORED;
    } else if (gen == 2) {
        VTX_POTLMBR_T par = pItem->pParent;
        if (query || !par) {
            pMbrInfo->ucHierarchyType = l ? l->MbrInfo.ucHierarchyType : OTL_HIER_STORED;
        } else if (!OTL_IS_SMALL(par) && OTL_LARGE(par)->MbrInfo.ucHierarchyType == OTL_HIER_ENABLED) {
            pMbrInfo->ucHierarchyType = (pItem->MbrInfo.ucInfoFlags & OTL_INFO_DYNHIER) ? OTL_HIER_DYNAMIC
                                                                                       : OTL_HIER_STORED;
        } else {
            pMbrInfo->ucHierarchyType = OTL_HIER_DISABLED;
        }
    } else if (gen > 2) {
        pMbrInfo->ucHierarchyType = OTL_HIER_BELOWGEN2;
    }
    return 0;
}

VTX_STS_T otlCopySmallToMbrInfo(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, vtx_mbrinfo_t *pMbrInfo,
                                VTX_ULONG_T ulVersion) {
    if (!pOutline || !pItem || !pMbrInfo) return VTX_STS_NULL_ARG;
    // A small record reads through a large view fetched from the paged store.
    VTX_OTLMBRLARGE_T view;
    std::memset((void *)&view, 0, sizeof view);
    VTX_STS_T sts = opg_ToItemLarge(pOutline, &view, pItem);
    if (!sts) sts = otlCopyLargeToMbrInfo(pOutline, (VTX_POTLMBR_T)&view, pMbrInfo, ulVersion);
    otlFreeLargeItemStrings(pOutline->pNetCtx, &view, 1);
    return sts;
}

VTX_STS_T otlCopyToMbrInfo(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, vtx_mbrinfo_t *pMbrInfo, VTX_ULONG_T ulVersion) {
    if (!pItem) return VTX_STS_NULL_ARG;
    return OTL_IS_SMALL(pItem) ? otlCopySmallToMbrInfo(pOutline, pItem, pMbrInfo, ulVersion)
                               : otlCopyLargeToMbrInfo(pOutline, pItem, pMbrInfo, ulVersion);
}

VTX_STS_T otlCopyLargeFromMbrInfo(VTX_POTL_T pOutline, VTX_POTLMBRLARGE_T pItem, const vtx_mbrinfo_t *pMbrInfo,
                                  VTX_ULONG_T ulVersion) {
    if (!pItem || !pMbrInfo) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T pNetCtx = pOutline ? pOutline->pNetCtx : nullptr;
    // A snapshot of a client before 5.0 carries no comment: the record's stays.
    const bool withComment = ulVersion >= kVerRecord5;
    // Build every new string before touching the record, so that a failure
    // leaves the record as it was.
    VTX_STR_T name = nullptr, cur = nullptr, comment = nullptr, attrText = nullptr;
    VTX_STS_T sts = 0;
    if (!pItem->MbrInfo.szMember || std::strcmp(pItem->MbrInfo.szMember, pMbrInfo->szMember) != 0)
        sts = otlStrdup(pNetCtx, pMbrInfo->szMember, &name);
    if (!sts) sts = otlStrdup(pNetCtx, pMbrInfo->szCurMember, &cur);
    if (!sts && withComment) sts = otlStrdup(pNetCtx, pMbrInfo->szComment, &comment);
    const bool withAttr = ulVersion >= kVerDimName;
    if (!sts && withAttr && pMbrInfo->Attribute.usDataType == VTX_ATTR_STRING)
        sts = otlStrdup(pNetCtx, pMbrInfo->Attribute.value.pszValue, &attrText);
    if (sts) {
        for (VTX_STR_T *pp : {&name, &cur, &comment, &attrText}) freeString(pNetCtx, pp);
        return sts;
    }
    if (name) {
        freeString(pNetCtx, &pItem->MbrInfo.szMember);
        pItem->MbrInfo.szMember = name;
    }
    freeString(pNetCtx, &pItem->MbrInfo.szCurMember);
    pItem->MbrInfo.szCurMember = cur;
    if (withComment) {
        freeString(pNetCtx, &pItem->MbrInfo.szComment);
        pItem->MbrInfo.szComment = comment;
    }
    if (withAttr) {
        freeAttrRecord(pNetCtx, &pItem->MbrInfo.Attribute);
        pItem->MbrInfo.Attribute = pMbrInfo->Attribute;
        if (pMbrInfo->Attribute.usDataType == VTX_ATTR_STRING) pItem->MbrInfo.Attribute.value.pszValue = attrText;
    }
    VTX_USHORT_T f = pItem->MbrInfo.ucInfoFlags;
    f = (VTX_USHORT_T)((f & ~OTL_INFO_CONSOL) | (pMbrInfo->usConsolidation & OTL_INFO_CONSOL));
    if (ulVersion > kVerRelDesc) {
        f &= (VTX_USHORT_T)~(OTL_INFO_RELDESC | OTL_INFO_HAENABLED);
        if (pMbrInfo->fHasRelDesc) f |= OTL_INFO_RELDESC;
        if (pMbrInfo->fHasHAEnabled) f |= OTL_INFO_HAENABLED;
    }
    pItem->MbrInfo.ucInfoFlags = f;
    pItem->MbrInfo.usTimeBalance = pMbrInfo->usTimeBalance;
    pItem->MbrInfo.usSkip = pMbrInfo->usSkip;
    pItem->MbrInfo.usConversion = pMbrInfo->usConversion;
    pItem->MbrInfo.fTwoPass = pMbrInfo->fTwoPass ? 1 : 0;
    pItem->MbrInfo.fExpense = pMbrInfo->fExpense ? 1 : 0;
    pItem->MbrInfo.usCategory = (VTX_UCHAR_T)pMbrInfo->usCategory;
    pItem->MbrInfo.usStorageCategory = (VTX_UCHAR_T)pMbrInfo->usStorageCategory;
    const bool aggStore = pOutline && pOutline->usOutlineType == VTX_OTL_AGGSTORE;
    // An aggregate storage outline shows its own values for these two
    // (storage 3, share 5 on attribute members); the record keeps its own.
    if (!aggStore) pItem->MbrInfo.usStorage = (VTX_UCHAR_T)pMbrInfo->usStorage;
    if (!(aggStore && (pMbrInfo->usCategory == VTX_CAT_ATTRIBUTE || pMbrInfo->usCategory == VTX_CAT_ATTRCALC)))
        pItem->MbrInfo.usShare = (VTX_UCHAR_T)pMbrInfo->usShare;
    if (ulVersion > kVerHierType && pItem->MbrInfo.usGen == 1 && pMbrInfo->ucHierarchyType)
        pItem->MbrInfo.ucHierarchyType = pMbrInfo->ucHierarchyType;
    pItem->ucSolveOrder = pMbrInfo->ucSolveOrder;
    pItem->ucDimSolveOrder = pMbrInfo->ucDimSolveOrder;
    if (ulVersion > kVerFlow) {
        pItem->ucFlags2 = (VTX_UCHAR_T)(pItem->ucFlags2 & ~OTL_FLAG2_FLOW);
        if (pMbrInfo->fFlow) pItem->ucFlags2 |= OTL_FLAG2_FLOW;
    }
    return 0;
}

void otlMbrInfoFromOld(const vtx_mbrinfo_old_t *pOld, vtx_mbrinfo_t *pMbrInfo) {
    std::memset(pMbrInfo, 0, sizeof *pMbrInfo);
    pMbrInfo->usLevel = pOld->usLevel;
    pMbrInfo->usGen = pOld->usGen;
    pMbrInfo->usConsolidation = pOld->usConsolidation;
    pMbrInfo->fTwoPass = pOld->fTwoPass;
    pMbrInfo->fExpense = pOld->fExpense;
    pMbrInfo->usConversion = pOld->usConversion;
    pMbrInfo->usTimeBalance = pOld->usTimeBalance;
    pMbrInfo->usSkip = pOld->usSkip;
    pMbrInfo->usShare = pOld->usShare;
    pMbrInfo->usStorage = pOld->usStorage;
    pMbrInfo->usCategory = pOld->usCategory;
    pMbrInfo->usStorageCategory = pOld->usStorageCategory;
    // An old client's block need not be terminated: it ends at its length.
    std::memcpy(pMbrInfo->szMember, pOld->szMember, strnlen(pOld->szMember, VTX_OLD_MBRNAME_LEN));
    std::memcpy(pMbrInfo->szCurMember, pOld->szCurMember, strnlen(pOld->szCurMember, VTX_OLD_MBRNAME_LEN));
}

VTX_STS_T otlMbrInfoToOld(const vtx_mbrinfo_t *pMbrInfo, vtx_mbrinfo_old_t *pOld) {
    const size_t name = strnlen(pMbrInfo->szMember, VTX_MBRNAME_LEN);
    const size_t cur = strnlen(pMbrInfo->szCurMember, VTX_MBRNAME_LEN);
    if (name >= VTX_OLD_MBRNAME_LEN || cur >= VTX_OLD_MBRNAME_LEN) return VTX_STS_OLD_CLIENT;
    std::memset(pOld, 0, sizeof *pOld);
    pOld->usLevel = pMbrInfo->usLevel;
    pOld->usGen = pMbrInfo->usGen;
    pOld->usConsolidation = pMbrInfo->usConsolidation;
    pOld->fTwoPass = pMbrInfo->fTwoPass;
    pOld->fExpense = pMbrInfo->fExpense;
    pOld->usConversion = pMbrInfo->usConversion;
    pOld->usTimeBalance = pMbrInfo->usTimeBalance;
    pOld->usSkip = pMbrInfo->usSkip;
    pOld->usShare = pMbrInfo->usShare;
    pOld->usStorage = pMbrInfo->usStorage;
    pOld->usCategory = pMbrInfo->usCategory;
    pOld->usStorageCategory = pMbrInfo->usStorageCategory;
    std::memcpy(pOld->szMember, pMbrInfo->szMember, name);
    std::memcpy(pOld->szCurMember, pMbrInfo->szCurMember, cur);
    return 0;
}

void otlFreeMbrInfoPointerFields(vTX_PNETCTX_T pNetCtx, vtx_mbrinfo_t *pMbrInfo) {
    if (!pMbrInfo) return;
    if (pMbrInfo->Attribute.usDataType == VTX_ATTR_STRING && pMbrInfo->Attribute.value.pszValue)
        (void)otlFreeMem(pNetCtx, pMbrInfo->Attribute.value.pszValue);  // caller's block, nothing to undo
    pMbrInfo->Attribute.value.raw = 0;
    pMbrInfo->Attribute.usDataType = 0;
}

} // extern "C"
