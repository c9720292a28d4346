#include "editsupport.h"

#include <cstdio>
#include <cstring>
#include <set>
#include <sstream>

namespace edittest {

vtx_mbrinfo_t makeInfo(const char *name, const Spec &s) {
    vtx_mbrinfo_t i{};
    std::snprintf(i.szMember, sizeof i.szMember, "%s", name);
    i.usShare = s.share;
    i.usConsolidation = s.cons;
    i.usCategory = s.category;
    i.usStorage = s.storage;
    i.usTimeBalance = s.timeBalance;
    i.fTwoPass = s.twoPass;
    i.fExpense = s.expense;
    return i;
}

namespace {

const char *nameOf(VTX_POTLMBR_T p) {
    if (!p) return "-";
    return p->MbrInfo.szMember ? p->MbrInfo.szMember : "<spare>";
}

void dumpRecord(std::ostringstream &s, VTX_POTL_T o, VTX_POTLMBR_T p) {
    s << std::string(2 * p->MbrInfo.usGen, ' ') << nameOf(p) << " g" << (int)p->MbrInfo.usGen << " l"
      << (int)p->MbrInfo.usLevel << " d" << (int)p->ulDimno << " id" << p->mbrId << "/" << p->persistMbrId << " f"
      << std::hex << (int)p->ucFlags << "/" << (int)p->ucFlags2 << "/" << p->MbrInfo.ucInfoFlags << std::dec << " sh"
      << otlGetShare(p) << " cc" << p->MbrInfo.ulChildCount << " sc" << p->ulSiblingCount << " last:"
      << nameOf(p->MbrInfo.pLastSibling) << " par:" << nameOf(p->pParent) << " orig:"
      << nameOf(p->OriginalMbr.hOriginalMbr) << " nu" << (int)p->ucNameUnique << " tb" << p->MbrInfo.usTimeBalance
      << " sk" << p->MbrInfo.usSkip;
    if (!OTL_IS_SMALL(p)) {
        VTX_POTLMBRLARGE_T l = OTL_LARGE(p);
        s << " cat" << (int)l->MbrInfo.usCategory << "/" << (int)l->MbrInfo.usStorageCategory << " st"
          << (int)l->MbrInfo.usStorage << " cv" << l->MbrInfo.usConversion << " 2p" << (int)l->MbrInfo.fTwoPass
          << " ex" << (int)l->MbrInfo.fExpense << " ht" << (int)l->MbrInfo.ucHierarchyType << " ac"
          << (int)l->usAttrCode << " df" << (int)l->ucDimFlags << " cur:" << (l->MbrInfo.szCurMember ? l->MbrInfo.szCurMember : "")
          << " cmt:" << (l->MbrInfo.szComment ? l->MbrInfo.szComment : "") << " at" << l->MbrInfo.Attribute.usDataType;
    }
    if (p->AliasArray)
        for (unsigned t = 0; t < o->usNumAliasTables; ++t)
            s << " a" << t << ":" << (p->AliasArray[t].pszDefName ? p->AliasArray[t].pszDefName : "");
    s << "\n";
}

} // namespace

std::string dump(VTX_POTL_T o) {
    std::ostringstream s;
    const OTL_COUNTS &c = o->Counts;
    s << "dims " << c.ulDimensions << " std " << c.ulStandardDims << " mbrs " << c.ulMembers << " real "
      << c.ulRealMembers << " table " << o->DimTableSize << " nextDimId " << o->nextDimId << " state "
      << (int)o->ucStateFlag << " verified " << (int)o->fVerified << " long " << (int)o->bLongNames << " pv "
      << (int)o->ucPVLoadEnabled << " hiddenCounts " << (o->hiddenMbrCounts ? "yes" : "no") << " lev0 "
      << (int)o->bHiddenLevel0 << " typed " << (int)o->typedDimno << "/" << (int)o->formatStringDimno << "\n";
    for (unsigned i = 0; i < o->DimTableSize; ++i) {
        s << " [" << i << "] " << nameOf((VTX_POTLMBR_T)o->DimTable[i]) << " id" << o->dimIds[i] << " next"
          << o->nextMbrIds[i] << "/" << o->nextPersistMbrIds[i];
        if (c.pDimensionMaps) s << " map" << c.pDimensionMaps[i].ulMembers << "/" << c.pDimensionMaps[i].ulTotalMembers;
        s << "\n";
    }
    for (unsigned t = 0; t < 4; ++t) s << " alias" << t << "=" << o->aliasCounts[t];
    s << "\n";
    VTX_POTLMBR_T root = o->pHeadItem;
    for (VTX_POTLMBR_T p = root; p; p = otlNavtrdn(p, root)) dumpRecord(s, o, p);
    return s.str();
}

std::string invariants(VTX_POTL_T o) {
    std::ostringstream err;
    VTX_POTLMBR_T root = o->pHeadItem;
    if (!root || root->MbrInfo.usGen != 0 || root->ulDimno != OTL_ROOT_DIMNO) err << "bad root; ";
    unsigned long members = 0, real = 0;
    for (VTX_POTLMBR_T p = root; p; p = otlNavtrdn(p, root)) {
        const char *n = nameOf(p);
        if (p != root) {
            ++members;
            VTX_USHORT_T sh = otlGetShare(p);
            if (sh != VTX_SHARE_LABEL && !OTL_IS_SHARE(sh)) ++real;
            VTX_POTLMBR_T d = otlGetDim(p);
            if (!d || p->ulDimno != d->ulDimno) err << n << ": dimno; ";
        }
        unsigned long kids = 0, visible = 0;
        int maxLevel = -1;
        VTX_POTLMBR_T last = nullptr, prev = nullptr;
        bool hiddenSeen = false;
        for (VTX_POTLMBR_T c = p->pChild; c; c = c->pSibling) {
            ++kids;
            if (c->pParent != p) err << nameOf(c) << ": parent; ";
            if (c->pPrevSibling != prev) err << nameOf(c) << ": prev; ";
            if (c->MbrInfo.usGen != p->MbrInfo.usGen + 1) err << nameOf(c) << ": gen; ";
            maxLevel = std::max<int>(maxLevel, c->MbrInfo.usLevel);
            if (OTL_IS_HIDDEN(c)) {
                hiddenSeen = true;
            } else {
                if (hiddenSeen) err << nameOf(c) << ": visible behind a spare child; ";
                ++visible;
                last = c;
            }
            prev = c;
        }
        if (p->ulSiblingCount != kids) err << n << ": sibling count " << p->ulSiblingCount << " for " << kids << "; ";
        if (p->MbrInfo.ulChildCount != visible) err << n << ": child count " << p->MbrInfo.ulChildCount << " for " << visible << "; ";
        if (p->MbrInfo.pLastSibling != last) err << n << ": last child; ";
        if (p->MbrInfo.usLevel != maxLevel + 1) err << n << ": level " << (int)p->MbrInfo.usLevel << "; ";
    }
    unsigned long dims = 0, std = 0;
    std::set<VTX_ULONG_T> ids;
    for (VTX_POTLMBR_T d = root ? root->pChild : nullptr; d; d = d->pSibling, ++dims) {
        if (dims >= o->DimTableSize || (VTX_POTLMBR_T)o->DimTable[dims] != d) err << nameOf(d) << ": table; ";
        if (d->ulDimno != dims + 1) err << nameOf(d) << ": number; ";
        VTX_UCHAR_T cat = OTL_LARGE(d)->MbrInfo.usCategory;
        if (cat != VTX_CAT_ATTRIBUTE && cat != VTX_CAT_ATTRCALC) ++std;
        VTX_ULONG_T id = o->dimIds[dims];
        if (!id || !ids.insert(id).second) err << nameOf(d) << ": dimension id " << id << "; ";
        for (VTX_POTLMBR_T p = d; p; p = otlNavtrdn(p, d))
            if ((VTX_ULONG_T)p->mbrId >= o->nextMbrIds[dims]) err << nameOf(p) << ": mbrId not below next; ";
    }
    if (dims != o->DimTableSize || dims != o->Counts.ulDimensions) err << "dimension count; ";
    if (std != o->Counts.ulStandardDims) err << "standard dimension count; ";
    if (members != o->Counts.ulMembers) err << "member count " << o->Counts.ulMembers << " for " << members << "; ";
    if (real != o->Counts.ulRealMembers) err << "stored count " << o->Counts.ulRealMembers << " for " << real << "; ";
    return err.str();
}

long liveBlocks(vtxtest::TestCtx &t, VTX_POTL_T o) {
    long pools = 0;
    for (OTL_PMEMALLOC b : {o->gHeadItemLarge, o->gHeadItemSmall})
        for (; b; b = b->pNext) pools += 2;   // the header and the records
    return t.stats().live - pools;
}

VTX_POTLMBR_T EditTest::dim(const char *name, const Spec &s) {
    vtx_mbrinfo_t i = makeInfo(name, s);
    VTX_HMEMBER_T m = nullptr;
    EXPECT_EQ(adShrOtlAddDimension(h, &i, VTX_HPREV_LAST64, nullptr, &m, nullptr), 0) << name;
    return static_cast<VTX_POTLMBR_T>(m);
}

VTX_STS_T EditTest::tryAdd(VTX_POTLMBR_T parent, const char *name, const Spec &s, VTX_POTLMBR_T *pOut) {
    vtx_mbrinfo_t i = makeInfo(name, s);
    VTX_HMEMBER_T m = nullptr;
    VTX_STS_T sts = adShrOtlAddMember(h, &i, parent, VTX_HPREV_LAST32, &m, 0, nullptr);
    if (pOut) *pOut = static_cast<VTX_POTLMBR_T>(m);
    return sts;
}

VTX_POTLMBR_T EditTest::add(VTX_POTLMBR_T parent, const char *name, const Spec &s) {
    VTX_POTLMBR_T m = nullptr;
    EXPECT_EQ(tryAdd(parent, name, s, &m), 0) << name;
    return m;
}

VTX_POTLMBR_T EditTest::find(const char *name) {
    for (VTX_POTLMBR_T p = o->pHeadItem; p; p = otlNavtrdn(p, o->pHeadItem))
        if (p->MbrInfo.szMember && !otlMbrIsSharedShare(p) && std::strcmp(p->MbrInfo.szMember, name) == 0) return p;
    return nullptr;
}

} // namespace edittest
