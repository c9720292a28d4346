// Member records: pools, the share rule of both sizes, walks, frees and the
// version-gated copies to and from vtx_mbrinfo_t.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <vector>

#include "otl.h"
#include "testctx.h"

using vtxtest::TestCtx;

// A large record read through the small layout must give the same head.
#define SAME_OFFSET(f) static_assert(offsetof(_vtx_otlmbr_t, f) == offsetof(_vtx_otlmbrlarge_t, f), #f)
SAME_OFFSET(AliasArray);
SAME_OFFSET(pSibling);
SAME_OFFSET(pChild);
SAME_OFFSET(ucFlags);
SAME_OFFSET(OriginalMbr);
SAME_OFFSET(ulHdl32);
SAME_OFFSET(MbrInfo.szMember);
SAME_OFFSET(MbrInfo.ucInfoFlags);

namespace {

struct Fixture {
    TestCtx t;
    VTX_POTL_T p = nullptr;
    Fixture() {
        vtx_outlineinfo_t i{};
        VTX_HOUTLINE_T h = nullptr;
        EXPECT_EQ(adShrOtlNewOutline(t.ctx(), &i, &h, 0), 0);
        p = static_cast<VTX_POTL_T>(h);
    }
    ~Fixture() { adShrOtlCloseOutline(p); }

    // Links a new record as the last child of parent, by hand.
    VTX_POTLMBR_T child(VTX_POTLMBR_T parent, const char *name, bool large = true) {
        VTX_POTLMBR_T m = nullptr;
        EXPECT_EQ(otlNewItemAny(t.ctx(), p, &m, large), 0);
        EXPECT_EQ(otlStrdup(t.ctx(), name, &m->MbrInfo.szMember), 0);
        m->pParent = parent;
        m->MbrInfo.usGen = (VTX_UCHAR_T)(parent->MbrInfo.usGen + 1);
        VTX_POTLMBR_T last = parent->pChild;
        while (last && last->pSibling) last = last->pSibling;
        if (last) {
            last->pSibling = m;
            m->pPrevSibling = last;
        } else {
            parent->pChild = m;
        }
        parent->ulSiblingCount++;
        parent->MbrInfo.pLastSibling = m;
        return m;
    }
};

} // namespace

TEST(Pools, GrowByDoublingBlocksUpToTheFactorLimit) {
    Fixture fx;
    VTX_POTL_T p = fx.p;
    // A fresh pool of the minimum size, then blocks of factor * 100.
    EXPECT_EQ(p->gHeadItemSmall->uCapacity, 100u);
    VTX_POTLMBR_T m = nullptr;
    ASSERT_EQ(otlNewItem2(fx.t.ctx(), p, &m, 1), 0);
    EXPECT_EQ(m->ucFlags & (OTL_FLAG_POOLED | OTL_FLAG_SMALL), OTL_FLAG_POOLED);
    EXPECT_EQ(OTL_LARGE(m)->MbrInfo.ucHierarchyType, OTL_HIER_STORED);
    // Small records keep the walk cheap; both sizes share the factor.
    std::vector<VTX_ULONG_T> capacities{p->gHeadItemSmall->uCapacity};
    while (capacities.size() < 13) {
        OTL_PMEMALLOC head = p->gHeadItemSmall;
        ASSERT_EQ(otlNewItem2(fx.t.ctx(), p, &m, 0), 0);
        ASSERT_EQ(m->ucFlags & (OTL_FLAG_POOLED | OTL_FLAG_SMALL), OTL_FLAG_POOLED | OTL_FLAG_SMALL);
        if (p->gHeadItemSmall != head) capacities.push_back(p->gHeadItemSmall->uCapacity);
    }
    // The first grown block takes the starting factor of 1.
    std::vector<VTX_ULONG_T> expect{100, 100, 200, 400, 800, 1600, 3200, 6400, 12800, 25600, 51200, 102400, 102400};
    EXPECT_EQ(capacities, expect) << "growth stops doubling at a factor of 1024";
    EXPECT_EQ(p->gGrowFactor, 1024u);
    // Records of a block are distinct and never move.
    VTX_POTLMBR_T a = nullptr, b = nullptr;
    ASSERT_EQ(otlNewItem2(fx.t.ctx(), p, &a, 0), 0);
    ASSERT_EQ(otlNewItem2(fx.t.ctx(), p, &b, 0), 0);
    EXPECT_EQ(reinterpret_cast<char *>(b) - reinterpret_cast<char *>(a), (long)sizeof(_vtx_otlmbr_t));
    EXPECT_TRUE(OTL_IS_SMALL(a));
    EXPECT_NE(a->AliasArray, nullptr) << "pooled records get their alias slots";
}

TEST(Pools, MissingPoolAnswersOneAndCapacityCountsRecords) {
    TestCtx t;
    VTX_POTL_T p = nullptr;
    ASSERT_EQ(otlCreateOutlineData(t.ctx(), &p, 0, 0), 0);
    VTX_POTLMBR_T m = reinterpret_cast<VTX_POTLMBR_T>(0x1);
    EXPECT_EQ(otlNewItem2(t.ctx(), p, &m, 1), VTX_STS_POOL_MISSING);
    EXPECT_EQ(m, nullptr);
    ASSERT_EQ(otlInitMemList(t.ctx(), p, 100000, 1), 0);
    EXPECT_EQ(p->gHeadItemLarge->uCapacity, 7500u);
    EXPECT_EQ(p->gGrowFactor, 1u);
    // A failed growth keeps the pool as it was and gives the slot back.
    t.failAt(1);
    ASSERT_EQ(otlInitMemList(t.ctx(), p, 0, 0), VTX_STS_NO_MEMORY);
    EXPECT_EQ(p->gHeadItemSmall, nullptr);
    EXPECT_EQ(otlFreeOutlineData(t.ctx(), p), 0);
    EXPECT_EQ(t.stats().live, 0);
}

TEST(Records, ShareRuleOfSmallRecords) {
    // A small record kept in room for a large one, as the pools' blocks
    // are: the compiler sees the large branch of the share rule as reachable.
    _vtx_otlmbrlarge_t room{};
    _vtx_otlmbr_t &s = *reinterpret_cast<_vtx_otlmbr_t *>(&room);
    s.ucFlags = OTL_FLAG_SMALL;
    for (VTX_USHORT_T v : {0, 1, 2, 3, 9}) {
        otlSetShare(&s, v);
        EXPECT_EQ(otlGetShare(&s), v);
        EXPECT_EQ(otlMbrIsSharedShare(&s), v == 3 || v == 9);
    }
    // Label-only wins over shared when both bits are set: shared needs the
    // shared bit alone.
    s.MbrInfo.ucInfoFlags = OTL_INFO_SH_LABEL | OTL_INFO_SH_SHARED;
    EXPECT_EQ(otlGetShare(&s), VTX_SHARE_LABEL);
    // Writing a value clears the other bits and keeps the unrelated ones.
    s.MbrInfo.ucInfoFlags = OTL_INFO_SHAREBITS | OTL_INFO_CONSOL;
    otlSetShare(&s, VTX_SHARE_NEVER);
    EXPECT_EQ(s.MbrInfo.ucInfoFlags, OTL_INFO_SH_NEVER | OTL_INFO_CONSOL);
    // A large record is read from its field, whatever its small bits say.
    _vtx_otlmbrlarge_t l{};
    l.MbrInfo.ucInfoFlags = OTL_INFO_SH_SHARED;
    l.MbrInfo.usShare = VTX_SHARE_DYNCALC;
    EXPECT_EQ(otlGetShare(reinterpret_cast<VTX_POTLMBR_T>(&l)), VTX_SHARE_DYNCALC);
}

TEST(Records, WalksAndSubtreeFree) {
    Fixture fx;
    VTX_POTLMBR_T root = fx.p->pHeadItem;
    VTX_POTLMBR_T year = fx.child(root, "Year");
    VTX_POTLMBR_T q1 = fx.child(year, "Qtr1");
    VTX_POTLMBR_T jan = fx.child(q1, "Jan", false);
    fx.child(q1, "Feb");
    VTX_POTLMBR_T q2 = fx.child(year, "Qtr2");
    VTX_POTLMBR_T acc = fx.child(root, "Accounts");
    EXPECT_EQ(otlGetDim(nullptr), nullptr);
    EXPECT_EQ(otlGetDim(root), nullptr);
    EXPECT_EQ(otlGetDim(year), year);
    EXPECT_EQ(otlGetDim(jan), year);
    EXPECT_EQ(otlLowLeftInternal(year), jan);
    std::vector<std::string> order;
    for (VTX_POTLMBR_T m = otlNavtrdn(root, root); m; m = otlNavtrdn(m, root)) order.push_back(m->MbrInfo.szMember);
    EXPECT_EQ(order, (std::vector<std::string>{"Year", "Qtr1", "Jan", "Feb", "Qtr2", "Accounts"}));
    order.clear();
    for (VTX_POTLMBR_T m = otlNavtrdn(q1, q1); m; m = otlNavtrdn(m, q1)) order.push_back(m->MbrInfo.szMember);
    EXPECT_EQ(order, (std::vector<std::string>{"Jan", "Feb"})) << "a walk stays below its top";
    EXPECT_EQ(otlNavtrdn(q2, q2), nullptr);

    // Freeing a subtree leaves its siblings alone; unpooled records go.
    long before = fx.t.stats().live;
    VTX_POTLMBR_T loose = nullptr;
    ASSERT_EQ(otlNewItem(fx.t.ctx(), fx.p, &loose, 1), 0);
    ASSERT_EQ(otlStrdup(fx.t.ctx(), "Loose", &loose->MbrInfo.szMember), 0);
    ASSERT_EQ(otlStrdup(fx.t.ctx(), "x + y", &OTL_LARGE(loose)->pszCalc), 0);
    otlFreeItemList(fx.t.ctx(), fx.p, loose);
    EXPECT_EQ(fx.t.stats().live, before);
    EXPECT_STREQ(acc->MbrInfo.szMember, "Accounts");
}

TEST(Copies, VersionGatesAndRoundTrip) {
    Fixture fx;
    vtx_mbrinfo_t in{};
    std::strcpy(in.szMember, "Sales");
    std::strcpy(in.szComment, "all channels");
    std::strcpy(in.szCurMember, "USD");
    in.usConsolidation = VTX_CONS_SUB;
    in.usTimeBalance = 2;
    in.usShare = VTX_SHARE_DYNCALC;
    in.fTwoPass = 1;
    in.fHasRelDesc = 1;
    in.ucHierarchyType = OTL_HIER_DYNAMIC;
    in.Attribute.usDataType = VTX_ATTR_STRING;
    char text[] = "red";
    in.Attribute.value.pszValue = text;

    VTX_INTMBRINFOLARGE_T info{};
    // Before 5.0 there are no comments.
    fx.t.ctx()->lClientVersion = 0x40000;
    ASSERT_EQ(otlCopyToInternalFromExternalMbrInfo(fx.t.ctx(), &in, &info, 0), 0);
    EXPECT_STREQ(info.szMember, "Sales");
    EXPECT_EQ(info.szComment, nullptr);
    otlFreeInternalMbrInfoStrings(fx.t.ctx(), &info);

    // 5.0 has comments but no attribute values, relational marks or hierarchy type.
    fx.t.ctx()->lClientVersion = 0x50000;
    ASSERT_EQ(otlCopyToInternalFromExternalMbrInfo(fx.t.ctx(), &in, &info, 0), 0);
    EXPECT_STREQ(info.szMember, "Sales");
    EXPECT_STREQ(info.szComment, "all channels");
    EXPECT_EQ(info.Attribute.usDataType, 0);
    EXPECT_EQ(info.ucInfoFlags & OTL_INFO_RELDESC, 0);
    EXPECT_EQ(info.ucHierarchyType, 0);
    otlFreeInternalMbrInfoStrings(fx.t.ctx(), &info);

    // A recent client: everything travels, the text value is copied.
    fx.t.ctx()->lClientVersion = 0xB20000;
    VTX_POTLMBR_T m = nullptr;
    ASSERT_EQ(otlNewItem2(fx.t.ctx(), fx.p, &m, 1), 0);
    VTX_POTLMBRLARGE_T l = OTL_LARGE(m);
    ASSERT_EQ(otlCopyToInternalFromExternalMbrInfo(fx.t.ctx(), &in, &l->MbrInfo, 0), 0);
    EXPECT_NE(l->MbrInfo.Attribute.value.pszValue, text);
    EXPECT_EQ(l->MbrInfo.ucInfoFlags & OTL_INFO_CONSOL, VTX_CONS_SUB);
    EXPECT_TRUE(l->MbrInfo.ucInfoFlags & OTL_INFO_RELDESC);
    l->MbrInfo.usGen = 1;
    fx.p->pHeadItem->pChild = m;
    m->pParent = fx.p->pHeadItem;

    vtx_mbrinfo_t out{};
    ASSERT_EQ(otlCopyLargeToMbrInfo(fx.p, m, &out, 0xB20000), 0);
    EXPECT_STREQ(out.szMember, "Sales");
    EXPECT_STREQ(out.szDimName, "Sales") << "a dimension names itself";
    EXPECT_STREQ(out.szCurMember, "USD");
    EXPECT_EQ(out.usShare, VTX_SHARE_DYNCALC);
    EXPECT_EQ(out.usConsolidation, VTX_CONS_SUB);
    EXPECT_EQ(out.ucHierarchyType, OTL_HIER_DYNAMIC);
    EXPECT_TRUE(out.fHasRelDesc);
    EXPECT_STREQ(out.Attribute.value.pszValue, "red");
    EXPECT_NE(out.Attribute.value.pszValue, l->MbrInfo.Attribute.value.pszValue);
    otlFreeMbrInfoPointerFields(fx.t.ctx(), &out);

    // An old client sees none of the newer fields.
    ASSERT_EQ(otlCopyLargeToMbrInfo(fx.p, m, &out, 0x50000), 0);
    EXPECT_EQ(out.Attribute.usDataType, 0);
    EXPECT_STREQ(out.szDimName, "");
    EXPECT_FALSE(out.fHasRelDesc);
    EXPECT_EQ(out.pLastSibling, nullptr);

    // A snapshot put back restores a changed record, and a failed restore
    // changes nothing.
    vtx_mbrinfo_t snap{};
    ASSERT_EQ(otlCopyLargeToMbrInfo(fx.p, m, &snap, 0xB20000), 0);
    l->MbrInfo.usTimeBalance = 3;
    l->MbrInfo.ucInfoFlags = (l->MbrInfo.ucInfoFlags & ~OTL_INFO_CONSOL) | VTX_CONS_ADD;
    fx.t.failAt(1);
    EXPECT_EQ(otlCopyLargeFromMbrInfo(fx.p, l, &snap, 0xB20000), VTX_STS_NO_MEMORY);
    EXPECT_EQ(l->MbrInfo.usTimeBalance, 3);
    fx.t.noFail();
    ASSERT_EQ(otlCopyLargeFromMbrInfo(fx.p, l, &snap, 0xB20000), 0);
    EXPECT_EQ(l->MbrInfo.usTimeBalance, 2);
    EXPECT_EQ(l->MbrInfo.ucInfoFlags & OTL_INFO_CONSOL, VTX_CONS_SUB);
    EXPECT_STREQ(l->MbrInfo.Attribute.value.pszValue, "red");
    otlFreeMbrInfoPointerFields(fx.t.ctx(), &snap);
    fx.p->pHeadItem->pChild = nullptr;
    otlFreeItem(fx.t.ctx(), fx.p, m);
}

TEST(Copies, FailedInboundCopyLeavesInfoUntouchedAndLeaksNothing) {
    Fixture fx;
    vtx_mbrinfo_t in{};
    std::strcpy(in.szMember, "Margin");
    std::strcpy(in.szComment, "c");
    std::strcpy(in.szCurMember, "EUR");
    in.Attribute.usDataType = VTX_ATTR_STRING;
    char text[] = "blue";
    in.Attribute.value.pszValue = text;
    long live = fx.t.stats().live;
    for (long n = 1; n <= 4; ++n) {
        VTX_INTMBRINFOLARGE_T info{};
        info.usSkip = 3;
        fx.t.failAt(n);
        EXPECT_EQ(otlCopyToInternalFromExternalMbrInfo(fx.t.ctx(), &in, &info, 0), VTX_STS_NO_MEMORY) << n;
        fx.t.noFail();
        EXPECT_EQ(info.szMember, nullptr);
        EXPECT_EQ(info.usSkip, 3);
        EXPECT_EQ(fx.t.stats().live, live) << "allocation " << n;
    }
    // A temporary copy points into the caller's record and allocates nothing.
    VTX_INTMBRINFOLARGE_T info{};
    ASSERT_EQ(otlCopyToInternalFromExternalMbrInfo(fx.t.ctx(), &in, &info, 1), 0);
    EXPECT_EQ(info.szMember, in.szMember);
    EXPECT_EQ(info.Attribute.value.pszValue, text);
    EXPECT_EQ(fx.t.stats().live, live);
}

TEST(Copies, HierarchyTypeFollowsGenerationAndParent) {
    Fixture fx;
    VTX_POTLMBR_T dim = fx.child(fx.p->pHeadItem, "Product");
    VTX_POTLMBR_T g2 = fx.child(dim, "Stored");
    VTX_POTLMBR_T g3 = fx.child(g2, "Leaf");
    vtx_mbrinfo_t out{};
    ASSERT_EQ(otlCopyLargeToMbrInfo(fx.p, g2, &out, 0xB20000), 0);
    EXPECT_EQ(out.ucHierarchyType, OTL_HIER_DISABLED) << "parent without hierarchies";
    OTL_LARGE(dim)->MbrInfo.ucHierarchyType = OTL_HIER_ENABLED;
    ASSERT_EQ(otlCopyLargeToMbrInfo(fx.p, g2, &out, 0xB20000), 0);
    EXPECT_EQ(out.ucHierarchyType, OTL_HIER_STORED);
    g2->MbrInfo.ucInfoFlags |= OTL_INFO_DYNHIER;
    ASSERT_EQ(otlCopyLargeToMbrInfo(fx.p, g2, &out, 0xB20000), 0);
    EXPECT_EQ(out.ucHierarchyType, OTL_HIER_DYNAMIC);
    ASSERT_EQ(otlCopyLargeToMbrInfo(fx.p, g3, &out, 0xB20000), 0);
    EXPECT_EQ(out.ucHierarchyType, OTL_HIER_BELOWGEN2);
    EXPECT_STREQ(out.szDimName, "Product");
}
