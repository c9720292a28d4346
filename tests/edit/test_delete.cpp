// Deleting members and dimensions, the shared members that go with a stored
// member, marks and the sweep of marked members.
#include <string>

#include "editsupport.h"

using namespace edittest;

namespace {

class DeleteTest : public EditTest {
protected:
    VTX_POTLMBR_T market = nullptr, east = nullptr, ny = nullptr, west = nullptr, major = nullptr;
    // Market: East(New York(NY-1, NY-2), Boston), West(LA), Major(label: New York shared, LA shared)
    void build() {
        market = dim("Market");
        east = add(market, "East");
        ny = add(east, "New York");
        add(ny, "NY-1");
        add(ny, "NY-2");
        add(east, "Boston");
        west = add(market, "West");
        add(west, "LA");
        major = add(market, "Major", label());
        add(major, "New York", shared());
        add(major, "LA", shared());
    }
    int sharedCount() {
        int n = 0;
        for (VTX_POTLMBR_T p = o->pHeadItem; p; p = otlNavtrdn(p, o->pHeadItem)) n += otlMbrIsSharedShare(p);
        return n;
    }
};

TEST_F(DeleteTest, SubtreeGoesWithCountsAndLevels) {
    build();
    const VTX_ULONG_T members = o->Counts.ulMembers;
    ASSERT_EQ(adShrOtlDeleteMember(h, find("NY-1"), 0, nullptr), 0);
    ASSERT_EQ(adShrOtlDeleteMember(h, find("NY-2"), 0, nullptr), 0);
    EXPECT_EQ(ny->MbrInfo.usLevel, 0);
    EXPECT_EQ(ny->MbrInfo.pLastSibling, nullptr);
    EXPECT_EQ(o->Counts.ulMembers, members - 2);
    ASSERT_EQ(adShrOtlDeleteMember(h, west, 0, nullptr), 0);
    EXPECT_EQ(find("LA"), nullptr);
    EXPECT_EQ(o->ucStateFlag & OTL_STATE_EDITED, OTL_STATE_EDITED);
}

TEST_F(DeleteTest, StoredMemberTakesItsSharedMembers) {
    build();
    ASSERT_EQ(sharedCount(), 2);
    // The whole East branch: New York's shared member goes, LA's stays.
    ASSERT_EQ(adShrOtlDeleteMember(h, east, 0, nullptr), 0);
    EXPECT_EQ(sharedCount(), 1);
    EXPECT_EQ(major->ulSiblingCount, 1u);
    // The quiet form keeps the copies: the first takes the stored member's
    // place, so no copy is left without one.
    VTX_POTLMBR_T la = find("LA");
    VTX_POTLMBR_T copy = major->pChild;
    ASSERT_EQ(adShrOtlDeleteMember(h, la, 3, nullptr), 0);
    EXPECT_EQ(sharedCount(), 0);
    EXPECT_EQ(major->pChild, copy);
    EXPECT_EQ(otlGetShare(copy), VTX_SHARE_STORE);
    EXPECT_EQ(find("LA"), copy);
    // The last child of a label-only parent stays.
    EXPECT_REFUSED(VTX_STS_LABEL_NO_CHILD, adShrOtlDeleteMember(h, major->pChild, 0, nullptr));
}

TEST_F(DeleteTest, DuplicateOutlineQuietFormPromotesTheFirstCopy) {
    openDup();
    build();
    VTX_POTLMBR_T s = major->pChild;
    s->OriginalMbr.hOriginalMbr = ny;
    ASSERT_EQ(adShrOtlDeleteMember(h, ny, 3, nullptr), 0);
    EXPECT_EQ(major->pChild, s);
    EXPECT_EQ(s->OriginalMbr.hOriginalMbr, nullptr);
    EXPECT_EQ(otlGetShare(s), VTX_SHARE_STORE);
}

TEST_F(DeleteTest, Refusals) {
    build();
    // The only child of a label-only parent: also when it would be the
    // last of several shared members to go.
    VTX_POTLMBR_T solo = add(market, "Solo", label());
    VTX_POTLMBR_T only = add(solo, "Only");
    EXPECT_REFUSED(VTX_STS_LABEL_NO_CHILD, adShrOtlDeleteMember(h, only, 0, nullptr));
    EXPECT_REFUSED(VTX_STS_LABEL_NO_CHILD, adShrOtlDeleteMember(h, only, 2, nullptr));
    ASSERT_EQ(adShrOtlDeleteMember(h, major->MbrInfo.pLastSibling, 0, nullptr), 0);   // LA shared
    EXPECT_REFUSED(VTX_STS_LABEL_NO_CHILD, adShrOtlDeleteMember(h, ny, 0, nullptr));
    o->fBuildingDim = 1;
    VTX_POTLMBR_T solo2 = add(market, "Solo2", label());
    VTX_POTLMBR_T only2 = add(solo2, "Only2");
    EXPECT_EQ(adShrOtlDeleteMember(h, only2, 0, nullptr), 0);
    o->fBuildingDim = 0;
    // Independent members and dimensions of varying attributes.
    VTX_POTLMBR_T boston = find("Boston");
    boston->MbrInfo.ucInfoFlags |= OTL_INFO_INDEPMBR;
    EXPECT_REFUSED(VTX_STS_INDEP_MEMBER_DELETE, adShrOtlDeleteMember(h, boston, 0, nullptr));
    boston->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~OTL_INFO_INDEPMBR;
    find("NY-1")->MbrInfo.ucInfoFlags |= OTL_INFO_INDEPMBR;
    EXPECT_REFUSED(VTX_STS_INDEP_MEMBER_DELETE, adShrOtlDeleteMember(h, east, 0, nullptr));
    find("NY-1")->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~OTL_INFO_INDEPMBR;
    OTL_LARGE(market)->ucDimFlags |= OTL_DIMF_INDEP;
    EXPECT_REFUSED(VTX_STS_INDEP_DIM_DELETE, adShrOtlDeleteMember(h, market, 0, nullptr));
    OTL_LARGE(market)->ucDimFlags = 0;
    // A time dimension while time-balance members need it.
    Spec time, acct, tb;
    time.category = VTX_CAT_TIME;
    acct.category = VTX_CAT_ACCOUNTS;
    tb.timeBalance = 1;
    VTX_POTLMBR_T year = dim("Year", time);
    VTX_POTLMBR_T measures = dim("Measures", acct);
    VTX_POTLMBR_T opening = add(measures, "Opening", tb);
    EXPECT_REFUSED(VTX_STS_TIME_BALANCE_NO_TIME, adShrOtlDeleteMember(h, year, 0, nullptr));
    EXPECT_REFUSED(VTX_STS_TIME_BALANCE_NO_TIME, adShrOtlDeleteDimension(h, year, nullptr, nullptr));
    ASSERT_EQ(adShrOtlDeleteMember(h, opening, 0, nullptr), 0);
    // The frame: hidden members, query handles; the root is no member.
    VTX_POTLMBR_T spare = nullptr;
    ASSERT_EQ(otlAddHiddenMember(o, west, west->pChild, &spare), 0);
    EXPECT_REFUSED(-1, adShrOtlDeleteMember(h, spare, 0, nullptr));
    o->fOpenQuery = 1;
    EXPECT_REFUSED(VTX_STS_WRONG_MODE, adShrOtlDeleteMember(h, boston, 0, nullptr));
    o->fOpenQuery = 0;
    EXPECT_REFUSED(VTX_STS_ILLEGAL_OPERATION, adShrOtlDeleteMember(h, o->pHeadItem, 0, nullptr));
    // Deleting is allowed while other edits are prohibited.
    o->bEditingProhibited = 1;
    EXPECT_EQ(adShrOtlDeleteMember(h, boston, 0, nullptr), 0);
    o->bEditingProhibited = 0;
}

TEST_F(DeleteTest, DimensionDelete) {
    build();
    Spec acct;
    acct.category = VTX_CAT_ACCOUNTS;
    VTX_POTLMBR_T measures = dim("Measures", acct);
    VTX_POTLMBR_T sales = add(measures, "Sales");
    VTX_POTLMBR_T total = add(measures, "Total", label());
    add(total, "Part");
    Spec dimSpec;
    VTX_POTLMBR_T last = dim("Scenario", dimSpec);
    add(last, "Actual");
    VTX_ULONG_T lastId = o->dimIds[2];
    EXPECT_REFUSED(VTX_STS_NOT_A_DIMENSION, adShrOtlDeleteDimension(h, sales, nullptr, nullptr));
    // The data member must hold data of its own; that test comes first.
    EXPECT_REFUSED(VTX_STS_BAD_DATA_MEMBER, adShrOtlDeleteDimension(h, sales, "Total", nullptr));
    EXPECT_REFUSED(VTX_STS_BAD_DATA_MEMBER, adShrOtlDeleteDimension(h, measures, "Total", nullptr));
    o->ucPVLoadEnabled = 1;
    EXPECT_REFUSED(-1, adShrOtlDeleteDimension(h, measures, nullptr, nullptr));
    o->ucPVLoadEnabled = 0;
    ASSERT_EQ(adShrOtlDeleteDimension(h, measures, "Sales", nullptr), 0);
    EXPECT_EQ(o->ucPVLoadEnabled, 2);
    EXPECT_EQ(o->DimTableSize, 2u);
    EXPECT_EQ(last->ulDimno, 2);
    EXPECT_EQ(last->pChild->ulDimno, 2);
    EXPECT_EQ(o->dimIds[1], lastId);
}

TEST_F(DeleteTest, HiddenChildrenSettingGoesWithItsParent) {
    build();
    ASSERT_EQ(adShrOtlSetHiddenMemberCounts(h, market, (VTX_ULONG_T)east->mbrId, 3), 0);
    ASSERT_NE(o->hiddenMbrCounts, nullptr);
    // (Type 1 leaves Major's label-only rule aside.)
    ASSERT_EQ(adShrOtlDeleteMember(h, west, 1, nullptr), 0);
    EXPECT_NE(o->hiddenMbrCounts, nullptr);
    ASSERT_EQ(adShrOtlDeleteMember(h, east, 1, nullptr), 0);
    // The counts of every dimension go, and every reader copes.
    EXPECT_EQ(o->hiddenMbrCounts, nullptr);
    EXPECT_EQ(adShrOtlAddHiddenMembers(h), 0);
    ASSERT_EQ(adShrOtlSetHiddenMemberCounts(h, market, 0, 1), 0);
    EXPECT_NE(o->hiddenMbrCounts, nullptr);
}

TEST_F(DeleteTest, MarkAndSweep) {
    build();
    EXPECT_EQ(adShrOtlMarkMbr(h, "Boston", 1), 0);
    EXPECT_EQ(adShrOtlMarkMbr(h, "Nowhere", 1), VTX_STS_NOT_FOUND);
    EXPECT_EQ(adShrOtlMarkMbrByHandle(h, ny, 1), 0);
    EXPECT_EQ(adShrOtlMarkMbrByHandle(h, find("NY-1"), 1), 0);
    EXPECT_EQ(adShrOtlMarkMbr(h, "Boston", 0), 0);
    EXPECT_EQ(adShrOtlDeleteMarked(h, "Nowhere"), VTX_STS_NOT_FOUND);
    EXPECT_EQ(adShrOtlDeleteMarked(h, "East"), VTX_STS_NOT_A_DIM_NAME);
    // Children first: NY-1, then New York with its shared member.
    ASSERT_EQ(adShrOtlDeleteMarked(h, "Market"), 0);
    EXPECT_EQ(find("New York"), nullptr);
    EXPECT_NE(find("Boston"), nullptr);
    EXPECT_EQ(sharedCount(), 1);
    // A marked shared member whose stored member goes first is not met again.
    add(east, "Chicago");
    add(major, "Chicago", shared());
    EXPECT_EQ(adShrOtlMarkDim(h, "Market"), 0);
    EXPECT_EQ(adShrOtlMarkMbrByHandle(h, major, 0), 0);
    EXPECT_EQ(adShrOtlMarkMbrByHandle(h, major->pChild, 0), 0);   // LA shared stays
    EXPECT_EQ(adShrOtlMarkMbrByHandle(h, find("LA"), 0), 0);
    EXPECT_EQ(adShrOtlMarkMbrByHandle(h, west, 0), 0);
    ASSERT_EQ(adShrOtlDeleteMarked(h, "Market"), 0);
    EXPECT_EQ(market->ulSiblingCount, 2u);   // West and Major
    EXPECT_EQ(sharedCount(), 1);
}

} // namespace
