// Moving members inside their dimension and dimensions among themselves.
#include <cstring>
#include <string>

#include "editsupport.h"

using namespace edittest;

namespace {

class MoveTest : public EditTest {
protected:
    VTX_POTLMBR_T year = nullptr, q1 = nullptr, q2 = nullptr, jan = nullptr, feb = nullptr, apr = nullptr;
    VTX_POTLMBR_T market = nullptr;
    void build() {
        year = dim("Year");
        q1 = add(year, "Q1");
        jan = add(q1, "Jan");
        feb = add(q1, "Feb");
        q2 = add(year, "Q2");
        apr = add(q2, "Apr");
        market = dim("Market");
        add(market, "East");
    }
};

TEST_F(MoveTest, MovesKeepLevelsAndCounts) {
    build();
    // Feb under Q2 behind Apr.
    ASSERT_EQ(adShrOtlMoveMember(h, feb, nullptr, apr, nullptr), 0);
    EXPECT_EQ(feb->pParent, q2);
    EXPECT_EQ(q2->MbrInfo.pLastSibling, feb);
    EXPECT_EQ(q1->MbrInfo.ulChildCount, 1u);
    EXPECT_EQ(q2->MbrInfo.ulChildCount, 2u);
    // Q2 with its subtree under Q1, as first child: generations follow.
    ASSERT_EQ(adShrOtlMoveMember(h, q2, q1, nullptr, nullptr), 0);
    EXPECT_EQ(q1->pChild, q2);
    EXPECT_EQ(apr->MbrInfo.usGen, 4);
    EXPECT_EQ(year->MbrInfo.usLevel, 3);
    EXPECT_EQ(q1->ucFlags2 & OTL_FLAG2_GAINEDCHILD, OTL_FLAG2_GAINEDCHILD);
    EXPECT_EQ(year->ucFlags & OTL_FLAG_DIMCHANGED, OTL_FLAG_DIMCHANGED);
    // To the end with the all-ones sibling; at the end already, it stays.
    ASSERT_EQ(adShrOtlMoveMember(h, jan, q1, VTX_HPREV_LAST64, nullptr), 0);
    EXPECT_EQ(q1->MbrInfo.pLastSibling, jan);
    std::string before = dump(o);
    ASSERT_EQ(adShrOtlMoveMember(h, jan, q1, VTX_HPREV_LAST32, nullptr), 0);
    EXPECT_EQ(dump(o), before);
    // Back up a level: Q1 falls to level 1 once Q2 leaves.
    ASSERT_EQ(adShrOtlMoveMember(h, q2, year, q1, nullptr), 0);
    EXPECT_EQ(q1->MbrInfo.usLevel, 1);
    EXPECT_EQ(apr->MbrInfo.usGen, 3);
}

TEST_F(MoveTest, Refusals) {
    build();
    EXPECT_REFUSED(VTX_STS_ILLEGAL_MOVE, adShrOtlMoveMember(h, q1, nullptr, q1, nullptr));
    EXPECT_REFUSED(VTX_STS_ILLEGAL_MOVE, adShrOtlMoveMember(h, q1, q1, nullptr, nullptr));
    EXPECT_REFUSED(VTX_STS_ILLEGAL_MOVE, adShrOtlMoveMember(h, q1, nullptr, jan, nullptr));
    EXPECT_REFUSED(VTX_STS_ILLEGAL_MOVE, adShrOtlMoveMember(h, year, q1, nullptr, nullptr));
    EXPECT_REFUSED(VTX_STS_MOVE_OTHER_DIM, adShrOtlMoveMember(h, jan, market, nullptr, nullptr));
    EXPECT_REFUSED(VTX_STS_MOVE_OTHER_DIM, adShrOtlMoveMember(h, jan, nullptr, market->pChild, nullptr));
    EXPECT_REFUSED(VTX_STS_MOVE_OTHER_DIM, adShrOtlMoveMember(h, market, nullptr, jan, nullptr));
    // Members stay members and dimensions stay dimensions.
    EXPECT_REFUSED(VTX_STS_MOVE_CHANGES_GEN1, adShrOtlMoveMember(h, q1, nullptr, nullptr, nullptr));
    EXPECT_REFUSED(VTX_STS_MOVE_CHANGES_GEN1, adShrOtlMoveMember(h, jan, nullptr, market, nullptr));
    EXPECT_REFUSED(VTX_STS_BAD_PLACEMENT, adShrOtlMoveMember(h, jan, q2, feb, nullptr));
    // A shared member never becomes a dimension.
    VTX_POTLMBR_T s = add(q2, "Jan", shared());
    EXPECT_REFUSED(VTX_STS_ILLEGAL_MOVE, adShrOtlMoveMember(h, s, nullptr, year, nullptr));
    // Attribute calculation members stay where they are made.
    Spec calc;
    calc.category = VTX_CAT_ATTRCALC;
    VTX_POTLMBR_T ac = dim("Calc", calc);
    VTX_POTLMBR_T sum = add(ac, "Sum", calc);
    add(ac, "Count", calc);
    EXPECT_REFUSED(VTX_STS_ILLEGAL_OPERATION, adShrOtlMoveMember(h, sum, nullptr, ac->MbrInfo.pLastSibling, nullptr));
    // Hidden members and query handles.
    VTX_POTLMBR_T spare = nullptr;
    ASSERT_EQ(otlAddHiddenMember(o, q2, q2->MbrInfo.pLastSibling, &spare), 0);
    EXPECT_REFUSED(-1, adShrOtlMoveMember(h, spare, q1, nullptr, nullptr));
    EXPECT_REFUSED(-1, adShrOtlMoveMember(h, feb, nullptr, spare, nullptr));
    o->fOpenQuery = 1;
    EXPECT_REFUSED(VTX_STS_WRONG_MODE, adShrOtlMoveMember(h, feb, q2, nullptr, nullptr));
    o->fOpenQuery = 0;
    // Depth: a subtree may not reach below generation 127.
    VTX_POTLMBR_T deep = dim("Deep");
    VTX_POTLMBR_T x = add(deep, "x");
    add(x, "y");
    VTX_POTLMBR_T p = deep;
    for (int g = 2; g <= 126; ++g) p = add(p, ("d" + std::to_string(g)).c_str());
    EXPECT_EQ(adShrOtlMoveMember(h, x, nullptr, p, nullptr), 0);   // y lands at 127
    EXPECT_REFUSED(VTX_STS_TOO_DEEP, adShrOtlMoveMember(h, x, p, nullptr, nullptr));
    // An incremental paged outline keeps its dimensions in place.
    o->incrementalOPGfile = 1;
    EXPECT_REFUSED(VTX_STS_OPG_MOVE_DIMS, adShrOtlMoveMember(h, market, nullptr, nullptr, nullptr));
    EXPECT_REFUSED(VTX_STS_OPG_MOVE_ATTR, adShrOtlMoveMember(h, market, nullptr, ac, nullptr));
    // ... and a member move needs the paged store, which is not open.
    EXPECT_REFUSED(VTX_STS_OPG_OPEN, adShrOtlMoveMember(h, feb, q2, nullptr, nullptr));
    o->incrementalOPGfile = 0;
}

TEST_F(MoveTest, MoveToTheRootAt255DimensionsIsRefusedAsTooMany) {
    build();
    for (int n = 2; n < 255; ++n) dim(("D" + std::to_string(n)).c_str());
    EXPECT_REFUSED(VTX_STS_TOO_MANY_DIMS, adShrOtlMoveMember(h, jan, nullptr, nullptr, nullptr));
    // Reordering the dimensions of a full outline is allowed.
    VTX_POTLMBR_T last = static_cast<VTX_POTLMBR_T>((void *)o->DimTable[254]);
    ASSERT_EQ(adShrOtlMoveMember(h, year, nullptr, last, nullptr), 0);
    EXPECT_EQ(year->ulDimno, 255);
    EXPECT_EQ(jan->ulDimno, 255);
    EXPECT_EQ(market->ulDimno, 1);
}

TEST_F(MoveTest, ReorderingDimensionsRenumbersThemInOneStep) {
    build();
    VTX_POTLMBR_T scenario = dim("Scenario");
    add(scenario, "Actual");
    VTX_ULONG_T idYear = o->dimIds[0], idMarket = o->dimIds[1], idScen = o->dimIds[2];
    VTX_ULONG_T nextYear = o->nextMbrIds[0];
    // Scenario first.
    ASSERT_EQ(adShrOtlMoveMember(h, scenario, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(o->dimIds[0], idScen);
    EXPECT_EQ(o->dimIds[1], idYear);
    EXPECT_EQ(o->dimIds[2], idMarket);
    EXPECT_EQ(o->nextMbrIds[1], nextYear);
    EXPECT_EQ(jan->ulDimno, 2);
    EXPECT_EQ(scenario->pChild->ulDimno, 1);
    EXPECT_EQ(OTL_LARGE(scenario)->ucFlags & OTL_FLAG_DIMCHANGED, OTL_FLAG_DIMCHANGED);
    // Year last, behind Market.
    ASSERT_EQ(adShrOtlMoveMember(h, year, nullptr, market, nullptr), 0);
    EXPECT_EQ(o->dimIds[2], idYear);
    EXPECT_EQ(apr->ulDimno, 3);
}

TEST_F(MoveTest, NameRulesAtTheNewPlace) {
    openDup();
    build();
    VTX_POTLMBR_T jan2 = add(q2, "Jan");   // a duplicate under another parent
    EXPECT_REFUSED(VTX_STS_SIBLING_NOT_UNIQUE, adShrOtlMoveMember(h, jan2, q1, nullptr, nullptr));
    year->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_DUP;
    EXPECT_REFUSED(VTX_STS_UNIQUE_IN_DIM, adShrOtlMoveMember(h, jan2, year, nullptr, nullptr));
    year->ucFlags |= OTL_FLAG_DUP;
    VTX_NAMELIST_T gen3{};
    char genName[] = "Months";
    gen3.pszName = genName;
    gen3.fGen = 1;
    gen3.usGenOrLevel = 3;
    gen3.fUniqueName = 1;
    OTL_LARGE(year)->pNameList = &gen3;
    VTX_POTLMBR_T feb2 = add(year, "Feb");
    EXPECT_REFUSED(VTX_STS_UNIQUE_AT_GEN, adShrOtlMoveMember(h, feb2, q2, nullptr, nullptr));
    OTL_LARGE(year)->pNameList = nullptr;
    // A dimension whose name repeats as a member may not move among dimensions.
    VTX_POTLMBR_T yr = add(market, "Yxxx");
    ASSERT_EQ(otlHashDeleteItem(t.ctx(), o, yr), 0);
    std::memcpy(yr->MbrInfo.szMember, "Year", 5);
    ASSERT_EQ(otlHashAddItem(t.ctx(), o, yr, yr, OTL_HASH_NONE, OTL_HASH_NONE), 0);
    EXPECT_REFUSED(VTX_STS_DIM_NOT_UNIQUE, adShrOtlMoveMember(h, year, nullptr, market, nullptr));
    // In an outline of unique names the sibling test is asked for shared members.
    open();
    build();
    VTX_POTLMBR_T s = add(q2, "Jan", shared());
    VTX_POTLMBR_T q3 = add(year, "Q3");
    add(q3, "Jan", shared());
    EXPECT_REFUSED(VTX_STS_SIBLING_NOT_UNIQUE, adShrOtlMoveMemberDupSibsCheck(h, s, q3, nullptr, 1, nullptr));
    EXPECT_EQ(adShrOtlMoveMemberDupSibsCheck(h, s, q3, nullptr, 0, nullptr), 0);
}

} // namespace
