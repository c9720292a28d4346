#include "handtree.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "hashCWrapper.h"
#include "mbrId2pItemMapWrapper.h"
#include "otlHashItemsFactoryWrapper.h"

namespace idxtest {

HandOutline::HandOutline(VTX_USHORT_T nameType, bool caseSensitive, VTX_ULONG_T estimate,
                         VTX_USHORT_T aliasTables) {
    tc.ctx()->estimatedHashSize = estimate;
    vtx_outlineinfo_t info{};
    info.usOtlNameType = nameType;
    info.fCaseSensitive = caseSensitive ? 1 : 0;
    if (adShrOtlNewOutline(tc.ctx(), &info, &h_, 0) != 0) throw std::runtime_error("outline not created");
    o = static_cast<VTX_POTL_T>(h_);
    if (aliasTables && aliasTables != o->usNumAliasTables) {
        // Records are made with a slot per table: the root's slots follow.
        (void)otlFreeMem(tc.ctx(), o->pHeadItem->AliasArray);
        o->pHeadItem->AliasArray = nullptr;
        o->usNumAliasTables = aliasTables;
        if (otlAllocItemAliasArray(tc.ctx(), o, o->pHeadItem) != 0) throw std::runtime_error("no alias slots");
    }
    // Until the outline makes its index itself, the test does.
    if (!o->pExtendedHashTable && otlHashInit(tc.ctx(), o) != 0) throw std::runtime_error("index not created");
}

HandOutline::~HandOutline() {
    (void)otlHashFree(tc.ctx(), o);
    (void)adShrOtlCloseOutline(h_);
}

namespace {
VTX_POTLMBR_T newRecord(vTX_PNETCTX_T ctx, VTX_POTL_T o, const char *name, bool large) {
    VTX_POTLMBR_T p = nullptr;
    if (otlNewItem(ctx, o, &p, large ? 1 : 0) != 0) throw std::runtime_error("no record");
    if (otlStrdup(ctx, name, &p->MbrInfo.szMember) != 0) throw std::runtime_error("no name");
    if (!large) p->ucFlags |= OTL_FLAG_SMALL;
    return p;
}

void linkLast(VTX_POTLMBR_T parent, VTX_POTLMBR_T c) {
    c->pParent = parent;
    VTX_POTLMBR_T last = parent->MbrInfo.pLastSibling;
    if (!last) {
        parent->pChild = c;
    } else {
        last->pSibling = c;
        c->pPrevSibling = last;
    }
    parent->MbrInfo.pLastSibling = c;
    parent->ulSiblingCount++;
    c->MbrInfo.usGen = static_cast<VTX_UCHAR_T>(parent->MbrInfo.usGen + 1);
}

VTX_UCHAR_T levelOf(VTX_POTLMBR_T p) {
    VTX_UCHAR_T l = 0;
    for (VTX_POTLMBR_T c = p->pChild; c; c = c->pSibling) l = std::max<VTX_UCHAR_T>(l, levelOf(c) + 1);
    p->MbrInfo.usLevel = l;
    return l;
}
} // namespace

VTX_POTLMBR_T HandOutline::dim(const char *name) {
    VTX_POTLMBR_T d = newRecord(ctx(), o, name, true);
    linkLast(o->pHeadItem, d);
    d->ulDimno = static_cast<VTX_UCHAR_T>(++dims_);
    // Dimension ids differ from dimension numbers, as they do once
    // dimensions have moved.
    o->dimIds[d->ulDimno - 1] = 100 + dims_;
    o->nextMbrIds[d->ulDimno - 1] = 1;
    d->mbrId = static_cast<VTX_INT32_T>(o->nextMbrIds[d->ulDimno - 1]++);
    if (otlHashAddItem(ctx(), o, d, d, OTL_HASH_NONE, OTL_HASH_NONE) != 0) throw std::runtime_error("not indexed");
    return d;
}

VTX_POTLMBR_T HandOutline::add(VTX_POTLMBR_T parent, const char *name, VTX_USHORT_T share, bool index,
                               bool large) {
    VTX_POTLMBR_T m = newRecord(ctx(), o, name, large);
    linkLast(parent, m);
    m->ulDimno = parent->ulDimno;
    m->mbrId = static_cast<VTX_INT32_T>(o->nextMbrIds[m->ulDimno - 1]++);
    otlSetShare(m, share);
    if (index && otlHashAddItem(ctx(), o, m, m, OTL_HASH_NONE, OTL_HASH_NONE) != 0)
        throw std::runtime_error("not indexed");
    return m;
}

void HandOutline::setAlias(VTX_POTLMBR_T m, VTX_USHORT_T table, const char *text) {
    if (!m->AliasArray || table < 1 || table > o->usNumAliasTables) throw std::runtime_error("no alias slot");
    (void)otlFreeMem(ctx(), m->AliasArray[table - 1].pszDefName);
    m->AliasArray[table - 1].pszDefName = nullptr;
    if (otlStrdup(ctx(), text, &m->AliasArray[table - 1].pszDefName) != 0) throw std::runtime_error("no alias");
}

VTX_STS_T HandOutline::remove(VTX_POTLMBR_T m, bool resetDup) {
    VTX_STS_T sts = resetDup ? otlHashDeleteItemResetDup(ctx(), o, m) : otlHashDeleteItem(ctx(), o, m);
    VTX_POTLMBR_T parent = m->pParent;
    if (m->pPrevSibling) m->pPrevSibling->pSibling = m->pSibling;
    else parent->pChild = m->pSibling;
    if (m->pSibling) m->pSibling->pPrevSibling = m->pPrevSibling;
    if (parent->MbrInfo.pLastSibling == m) parent->MbrInfo.pLastSibling = m->pPrevSibling;
    parent->ulSiblingCount--;
    m->pParent = m->pSibling = m->pPrevSibling = nullptr;
    otlFreeItem(ctx(), o, m);
    return sts;
}

void HandOutline::relevel() { (void)levelOf(o->pHeadItem); }

Found HandOutline::byName(const char *name, VTX_USHORT_T usOption, VTX_POTLMBR_T pDim, const char *parent) {
    Found f;
    f.sts = otlHashFindItemByNameEx(ctx(), o, name, parent, 1, 0, 0, usOption, 0, pDim, &f.m, nullptr, nullptr);
    return f;
}

Found HandOutline::byAlias(const char *text, VTX_USHORT_T table) {
    Found f;
    f.sts = otlHashFindItemByNameEx(ctx(), o, text, nullptr, 0, 1, 0, OTL_OPT_ALL, table, nullptr, &f.m, nullptr,
                                    nullptr);
    return f;
}

Found HandOutline::byNameOrAlias(const char *text) {
    Found f;
    f.sts = otlHashFindItemByNameEx(ctx(), o, text, nullptr, 1, 1, 0, OTL_OPT_UNSHARED, 0, nullptr, &f.m, nullptr,
                                    nullptr);
    return f;
}

std::vector<std::pair<std::string, VTX_POTLMBR_T>> HandOutline::snapshot() { return indexEntries(o, ctx()); }

std::vector<std::pair<std::string, VTX_POTLMBR_T>> indexEntries(VTX_POTL_T o, vTX_PNETCTX_T ctx) {
    std::vector<std::pair<std::string, VTX_POTLMBR_T>> out;
    VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T all = nullptr;
    if (extendedHashAllocateAllMembersIterator(o->pExtendedHashTable, ctx, &all) != 0) return out;
    for (; !extendedHashAllMembersItEnd(all); (void)extendedHashAllMembersItIncrement(all)) {
        const char *s = extendedHashAllMembersItGetStr(all);
        VTX_ULONG_T idx = extendedHashAllMembersItGetHashItemIndex(all);
        if (!s || idx == NODE_INDEX_NA) continue;
        VTX_POTLHASHITEM_T_EXT item = otlHashItemsFactoryGetOtlHashItem(o->pOtlHashItemsFactory, idx);
        out.emplace_back(std::string(s) + "#" + std::to_string(item->usAliasTable),
                         memNum2pItemMapGetPItem(o, static_cast<VTX_ULONG_T>(item->mbrId), item->dimId));
    }
    (void)extendedHashFreeAllMembersIterator(all);
    std::sort(out.begin(), out.end());
    return out;
}

} // namespace idxtest
