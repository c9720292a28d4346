// Splicing records in and out of the tree, generations and levels, the
// dimension table, copies of subtrees and the dimension name filter.
#include <chrono>
#include <cstring>
#include <vector>

#include "editsupport.h"

using namespace edittest;

namespace {

class SpliceTest : public EditTest {
protected:
    // A record of its own, outside any pool, named.
    VTX_POTLMBR_T record(const char *name) {
        VTX_POTLMBR_T p = nullptr;
        EXPECT_EQ(otlNewItem(t.ctx(), o, &p, 1), 0);
        EXPECT_EQ(otlStrdup(t.ctx(), name, &p->MbrInfo.szMember), 0);
        return p;
    }
};

TEST_F(SpliceTest, ResetGensRepairsTheLastVisibleChild) {
    VTX_POTLMBR_T d = dim("D");
    VTX_POTLMBR_T a = add(d, "a");
    VTX_POTLMBR_T b = add(d, "b");
    b->ucFlags2 |= OTL_FLAG2_HIDDEN;
    d->MbrInfo.pLastSibling = nullptr;
    // From the middle of the chain: b is hidden, a is the last visible one.
    otlResetGens(b, 2);
    EXPECT_EQ(d->MbrInfo.pLastSibling, a);
    // A chain of hidden records only leaves no last visible child.
    a->ucFlags2 |= OTL_FLAG2_HIDDEN;
    otlResetGens(a, 2);
    EXPECT_EQ(d->MbrInfo.pLastSibling, nullptr);
    a->ucFlags2 &= (VTX_UCHAR_T)~OTL_FLAG2_HIDDEN;
    b->ucFlags2 &= (VTX_UCHAR_T)~OTL_FLAG2_HIDDEN;
    otlResetGens(a, 2);
    EXPECT_EQ(d->MbrInfo.pLastSibling, b);
}

TEST_F(SpliceTest, LevelsFallWhenTheLastDeepChildGoes) {
    VTX_POTLMBR_T d = dim("D");
    VTX_POTLMBR_T a = add(d, "a");
    VTX_POTLMBR_T b = add(d, "b");
    VTX_POTLMBR_T a1 = add(a, "a1");
    VTX_POTLMBR_T a11 = add(a1, "a11");
    EXPECT_EQ(d->MbrInfo.usLevel, 3);
    EXPECT_EQ(otlGetMemberLevel(d), 3);
    // A leaf with siblings changes no level.
    VTX_POTLMBR_T b1 = add(b, "b1");
    add(b, "b2");
    ASSERT_EQ(otlUnattachItem(t.ctx(), b1, 1), 0);
    EXPECT_EQ(b->MbrInfo.usLevel, 1);
    EXPECT_EQ(b->ulSiblingCount, 1u);
    otlFreeItemList(t.ctx(), o, b1);
    b->MbrInfo.ulChildCount--;
    o->Counts.ulMembers--;
    o->Counts.ulRealMembers--;
    // The only child of a leaf's parent: levels fall to the dimension.
    ASSERT_EQ(otlUnattachItem(t.ctx(), a11, 1), 0);
    EXPECT_EQ(a1->MbrInfo.usLevel, 0);
    EXPECT_EQ(a->MbrInfo.usLevel, 1);
    EXPECT_EQ(d->MbrInfo.usLevel, 2);
    EXPECT_EQ(a1->pChild, nullptr);
    EXPECT_EQ(a1->MbrInfo.pLastSibling, nullptr);
    // Back in as a first child: levels rise again, generation follows.
    otlAddChildItem(a1, a11, 1);
    EXPECT_EQ(a11->MbrInfo.usGen, 4);
    EXPECT_EQ(d->MbrInfo.usLevel, 3);
    EXPECT_EQ(a1->MbrInfo.pLastSibling, a11);
}

TEST_F(SpliceTest, MoveItemResetsTheSubtreeGenerations) {
    VTX_POTLMBR_T d = dim("D");
    VTX_POTLMBR_T a = add(d, "a");
    VTX_POTLMBR_T a1 = add(a, "a1");
    VTX_POTLMBR_T a11 = add(a1, "a11");
    VTX_POTLMBR_T b = add(d, "b");
    ASSERT_EQ(otlMoveItem(t.ctx(), d, a1, OTL_MOVE_CHILD), 0);
    EXPECT_EQ(a1->MbrInfo.usGen, 2);
    EXPECT_EQ(a11->MbrInfo.usGen, 3);
    EXPECT_EQ(a->MbrInfo.usLevel, 0);
    EXPECT_EQ(d->pChild, a1);
    ASSERT_EQ(otlMoveItem(t.ctx(), b, a1, OTL_MOVE_SIBLING), 0);
    EXPECT_EQ(d->MbrInfo.pLastSibling, a1);
    EXPECT_TRUE(otlBecomingADimension(o->pHeadItem, OTL_MOVE_CHILD));
    EXPECT_TRUE(otlBecomingADimension(d, OTL_MOVE_SIBLING));
    EXPECT_FALSE(otlBecomingADimension(a, OTL_MOVE_SIBLING));
    // The child counts of the caller's view are kept by the edits, not here.
    a->MbrInfo.ulChildCount = 0;
    d->MbrInfo.ulChildCount = 3;
}

TEST_F(SpliceTest, AMillionAppendsStayLinear) {
    VTX_POTLMBR_T d = dim("Flat");
    const int n = 1000000;
    std::vector<VTX_POTLMBR_T> recs(n);
    for (int i = 0; i < n; ++i) ASSERT_EQ(otlNewItemAny(t.ctx(), o, &recs[i], 1), 0);
    auto start = std::chrono::steady_clock::now();
    otlAddChildItem(d, recs[0], 1);
    for (int i = 1; i < n; ++i) otlAddSiblingItemEx(o, recs[i - 1], recs[i], 1);
    double secs = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_EQ(d->ulSiblingCount, (VTX_ULONG_T)n);
    EXPECT_EQ(d->MbrInfo.pLastSibling, recs[n - 1]);
    EXPECT_EQ(recs[n - 1]->MbrInfo.usGen, 2);
    // Walking the siblings on each append would take hours; linear appends
    // take a fraction of a second, even under the sanitizers.
    EXPECT_LT(secs, 5.0);
    RecordProperty("million_appends_ms", (int)(secs * 1000));
    // The records are members of the dimension as an add would count them.
    for (VTX_POTLMBR_T r : recs) r->ulDimno = d->ulDimno;
    d->MbrInfo.ulChildCount = n;
    o->Counts.ulMembers += n;
    o->Counts.ulRealMembers += n;
}

TEST_F(SpliceTest, DimensionTableFollowsInsertAndRemove) {
    VTX_POTLMBR_T b = dim("B");
    add(b, "b1");
    VTX_ULONG_T idB = o->dimIds[0];
    vtx_mbrinfo_t i = makeInfo("A");
    VTX_HMEMBER_T a = nullptr;
    ASSERT_EQ(adShrOtlAddDimension(h, &i, nullptr, nullptr, &a, nullptr), 0);
    EXPECT_EQ(o->DimTable[0], a);
    EXPECT_EQ(o->DimTable[1], (VTX_POTLMBRLARGE_T)b);
    EXPECT_EQ(o->dimIds[1], idB);
    EXPECT_EQ(o->nextMbrIds[1], 3u);   // B's next id travelled with it
    EXPECT_EQ(find("b1")->ulDimno, 2);
    // A rebuild from the tree agrees with what the edits kept.
    std::string before = dump(o);
    ASSERT_EQ(otlBuildDimTableDimMap(o), 0);
    EXPECT_EQ(dump(o), before);
    ASSERT_EQ(adShrOtlDeleteMember(h, a, 0, nullptr), 0);
    EXPECT_EQ(o->DimTableSize, 1u);
    EXPECT_EQ(o->dimIds[0], idB);
    EXPECT_EQ(find("b1")->ulDimno, 1);
}

TEST_F(SpliceTest, CopySubTreeIntoAnotherOutline) {
    VTX_POTLMBR_T market = dim("Market");
    VTX_POTLMBR_T east = add(market, "East");
    VTX_POTLMBR_T ny = add(east, "New York");
    add(ny, "NYC");
    OTL_LARGE(ny)->MbrInfo.szComment = nullptr;
    ASSERT_EQ(otlStrdup(t.ctx(), "big apple", &OTL_LARGE(ny)->MbrInfo.szComment), 0);
    VTX_POTLMBR_T major = add(market, "Major", label());
    VTX_POTLMBR_T sh = add(major, "New York", shared());
    sh->OriginalMbr.hOriginalMbr = ny;

    vtx_outlineinfo_t info{};
    VTX_HOUTLINE_T h2 = nullptr;
    ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h2, 0), 0);
    VTX_POTL_T o2 = static_cast<VTX_POTL_T>(h2);
    vtx_mbrinfo_t di = makeInfo("Geography");
    VTX_HMEMBER_T geo = nullptr;
    ASSERT_EQ(adShrOtlAddDimension(h2, &di, nullptr, nullptr, &geo, nullptr), 0);
    VTX_POTLMBR_T copy = nullptr;
    ASSERT_EQ(otlCopySubTree(t.ctx(), o2, o, market, static_cast<VTX_POTLMBR_T>(geo), nullptr, &copy), 0);
    EXPECT_EQ(copy->MbrInfo.usGen, 2);
    VTX_POTLMBR_T cNy = copy->pChild->pChild;
    EXPECT_STREQ(cNy->MbrInfo.szMember, "New York");
    EXPECT_EQ(cNy->MbrInfo.usGen, 4);
    EXPECT_EQ(cNy->pChild->MbrInfo.usGen, 5);
    EXPECT_STREQ(OTL_LARGE(cNy)->MbrInfo.szComment, "big apple");
    EXPECT_NE(OTL_LARGE(cNy)->MbrInfo.szComment, OTL_LARGE(ny)->MbrInfo.szComment);
    VTX_POTLMBR_T cSh = copy->MbrInfo.pLastSibling->pChild;
    EXPECT_EQ(cSh->OriginalMbr.hOriginalMbr, cNy);   // points into the copy
    EXPECT_EQ(static_cast<VTX_POTLMBR_T>(geo)->MbrInfo.usLevel, 4);
    EXPECT_EQ(copy->ulDimno, static_cast<VTX_POTLMBR_T>(geo)->ulDimno);
    // Counts are the caller's: the edit that hangs in a copy adds them.
    o2->Counts.ulMembers += 6;
    o2->Counts.ulRealMembers += 4;
    EXPECT_EQ(invariants(o2), "");
    // A copy that fails half way leaves nothing in the target.
    long live = liveBlocks(t, o2);
    std::string before = dump(o2);
    for (long n = 1; n < 40; ++n) {
        t.failAt(n);
        VTX_POTLMBR_T c2 = nullptr;
        VTX_STS_T sts = otlCopySubTree(t.ctx(), o2, o, east, static_cast<VTX_POTLMBR_T>(geo), nullptr, &c2);
        t.noFail();
        if (sts == 0) {
            (void)otlUnattachItem(t.ctx(), c2, 1);
            static_cast<VTX_POTLMBR_T>(geo)->MbrInfo.ulChildCount--;
            otlFreeItemList(t.ctx(), o2, c2);
            break;
        }
        EXPECT_EQ(dump(o2), before) << n;
        EXPECT_EQ(liveBlocks(t, o2), live) << n;
    }
    adShrOtlCloseOutline(h2);
}

TEST_F(SpliceTest, DimensionNameFilter) {
    dim("Year");
    dim("Market");
    // The hash of a name: 5381 of an empty name, and the same bit for
    // spellings that differ in case in an outline that ignores case.
    EXPECT_EQ(otlIsNameDupAmongDimensionsBloomFilterHashIdFunction(o, ""), 1282u);
    EXPECT_EQ(otlIsNameDupAmongDimensionsBloomFilterHashIdFunction(o, "market"),
              otlIsNameDupAmongDimensionsBloomFilterHashIdFunction(o, "MARKET"));
    VTX_ULONG64_T hsh = 5381;
    for (const char *c = "YEAR"; *c; ++c) hsh = hsh * 33 + (unsigned char)*c;
    EXPECT_EQ(otlIsNameDupAmongDimensionsBloomFilterHashIdFunction(o, "Year"), (VTX_ULONG_T)(hsh % 4099));
    otlIsNameDupAmongDimensionsBloomFilterLoadDimNames(o);
    EXPECT_TRUE(bBloomFilterActive);
    EXPECT_TRUE(otlIsNameDupAmongDimensionsBloomFilter(o, "year"));
    VTX_POTLMBR_T found = reinterpret_cast<VTX_POTLMBR_T>(0x1);
    EXPECT_TRUE(otlIsNameDupAmongDimensions(o, "YEAR", 0, &found));
    EXPECT_EQ(found, o->pHeadItem->pChild);
    // A name whose bit is clear answers at once and leaves the output alone.
    const char *other = "Product";
    ASSERT_FALSE(otlIsNameDupAmongDimensionsBloomFilter(o, other));
    found = reinterpret_cast<VTX_POTLMBR_T>(0x1);
    EXPECT_FALSE(otlIsNameDupAmongDimensions(o, other, 0, &found));
    EXPECT_EQ(found, reinterpret_cast<VTX_POTLMBR_T>(0x1));
    // The switch belongs to the outline: a second outline that never loaded
    // its names still compares with its dimensions.
    vtx_outlineinfo_t info{};
    VTX_HOUTLINE_T h2 = nullptr;
    ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h2, 0), 0);
    vtx_mbrinfo_t di = makeInfo("Year");
    VTX_HMEMBER_T m = nullptr;
    ASSERT_EQ(adShrOtlAddDimension(h2, &di, nullptr, nullptr, &m, nullptr), 0);
    EXPECT_TRUE(otlIsNameDupAmongDimensions(static_cast<VTX_POTL_T>(h2), "Year", 0, &found));
    otlIsNameDupAmongDimensionsBloomFilterClear(o);
    EXPECT_FALSE(bBloomFilterActive);
    EXPECT_FALSE(otlIsNameDupAmongDimensionsBloomFilterActive(o));
    EXPECT_TRUE(otlIsNameDupAmongDimensions(static_cast<VTX_POTL_T>(h2), "Year", 0, &found));
    adShrOtlCloseOutline(h2);
}

} // namespace
