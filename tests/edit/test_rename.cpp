// Renaming members: the name rules, shared members that follow or re-point,
// and the operation report.
#include <cstring>
#include <string>

#include "editsupport.h"

using namespace edittest;

namespace {

class RenameTest : public EditTest {
protected:
    VTX_POTLMBR_T year = nullptr, q1 = nullptr, jan = nullptr, feb = nullptr, best = nullptr;
    void build() {
        year = dim("Year");
        q1 = add(year, "Q1");
        jan = add(q1, "Jan");
        feb = add(q1, "Feb");
        best = add(year, "Best", label());
        add(best, "Jan", shared());
    }
    VTX_POTLMBR_T sharedJan() { return best->pChild; }
};

TEST_F(RenameTest, SharedMembersFollowTheirStoredMember) {
    build();
    ASSERT_EQ(adShrOtlRenameMember(h, jan, "January", 0, nullptr), 0);
    EXPECT_STREQ(jan->MbrInfo.szMember, "January");
    EXPECT_STREQ(sharedJan()->MbrInfo.szMember, "January");
    // A change of case only leaves the shared members alone.
    ASSERT_EQ(adShrOtlRenameMember(h, jan, "JANUARY", 0, nullptr), 0);
    EXPECT_STREQ(jan->MbrInfo.szMember, "JANUARY");
    EXPECT_STREQ(sharedJan()->MbrInfo.szMember, "January");
    // The quiet form renames the member alone.
    ASSERT_EQ(adShrOtlRenameMember(h, jan, "M1", 3, nullptr), 0);
    EXPECT_STREQ(sharedJan()->MbrInfo.szMember, "January");
    EXPECT_EQ(o->ucStateFlag & OTL_STATE_EDITED, OTL_STATE_EDITED);
    // The same name is no change at all.
    std::string before = dump(o);
    ASSERT_EQ(adShrOtlRenameMember(h, jan, "M1", 0, nullptr), 0);
    EXPECT_EQ(dump(o), before);
}

TEST_F(RenameTest, TakenNamesAreRefusedInAnOutlineOfUniqueNames) {
    build();
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, adShrOtlRenameMember(h, jan, "Feb", 0, nullptr));
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, adShrOtlRenameMember(h, jan, "year", 0, nullptr));
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, adShrOtlRenameMember(h, year, "Q1", 0, nullptr));
    EXPECT_REFUSED(VTX_STS_INVALID_NAME, adShrOtlRenameMember(h, jan, "{x}", 0, nullptr));
    EXPECT_REFUSED(VTX_STS_INVALID_NAME, adShrOtlRenameMember(h, jan, "", 0, nullptr));
    EXPECT_REFUSED(VTX_STS_NULL_ARG, adShrOtlRenameMember(h, jan, nullptr, 0, nullptr));
    EXPECT_REFUSED(VTX_STS_ILLEGAL_OPERATION, adShrOtlRenameMember(h, o->pHeadItem, "x", 0, nullptr));
    // A long name refused for another reason leaves no note of length.
    std::string longName(90, 'f');
    VTX_POTLMBR_T taken = add(q1, longName.c_str());
    o->bLongNames = 0;
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, adShrOtlRenameMember(h, jan, longName.c_str(), 0, nullptr));
    EXPECT_NE(taken, nullptr);
}

TEST_F(RenameTest, SharedMemberRepointsToAnotherStoredMember) {
    build();
    VTX_POTLMBR_T s = sharedJan();
    EXPECT_REFUSED(VTX_STS_SHARED_NO_STORED, adShrOtlRenameMember(h, s, "Nothing", 0, nullptr));
    EXPECT_REFUSED(VTX_STS_SHARED_UNDER_STORED, adShrOtlRenameMember(h, s, "Best", 0, nullptr));
    s->OriginalMbr.hOriginalMbr = jan;
    ASSERT_EQ(adShrOtlRenameMember(h, s, "Feb", 0, nullptr), 0);
    EXPECT_EQ(s->OriginalMbr.hOriginalMbr, feb);
    EXPECT_STREQ(jan->MbrInfo.szMember, "Jan");
    // Reported as a sibling clash on request.
    add(best, "Q1", shared());
    EXPECT_REFUSED(VTX_STS_SIBLING_NOT_UNIQUE, adShrOtlRenameMemberDupSibsCheck(h, s, "Q1", 1, 0, nullptr));
}

TEST_F(RenameTest, AttributeCalculationMembersKeepTheirNames) {
    Spec calc;
    calc.category = VTX_CAT_ATTRCALC;
    VTX_POTLMBR_T ac = dim("Calc", calc);
    VTX_POTLMBR_T sum = add(ac, "Sum", calc);
    EXPECT_REFUSED(VTX_STS_ILLEGAL_OPERATION, adShrOtlRenameMember(h, sum, "Total", 0, nullptr));
}

TEST_F(RenameTest, FrameRefusals) {
    build();
    o->fOpenQuery = 1;
    EXPECT_REFUSED(VTX_STS_WRONG_MODE, adShrOtlRenameMember(h, jan, "x", 0, nullptr));
    o->fOpenQuery = 0;
    o->bEditingProhibited = 1;
    EXPECT_REFUSED(VTX_STS_EDIT_PROHIBITED, adShrOtlRenameMember(h, jan, "x", 0, nullptr));
    o->bEditingProhibited = 0;
    VTX_POTLMBR_T spare = nullptr;
    ASSERT_EQ(otlAddHiddenMember(o, q1, feb, &spare), 0);
    EXPECT_REFUSED(-1, adShrOtlRenameMember(h, spare, "x", 0, nullptr));
    // A failing transaction step puts the old names back.
    o->fKeepTrans = 1;
    EXPECT_REFUSED(VTX_STS_NOT_AVAILABLE, adShrOtlRenameMember(h, jan, "January", 0, nullptr));
    o->fKeepTrans = 0;
    o->incrementalOPGfile = 1;
    EXPECT_REFUSED(VTX_STS_OPG_OPEN, adShrOtlRenameMember(h, jan, "January", 0, nullptr));
    o->incrementalOPGfile = 0;
}

TEST_F(RenameTest, DuplicateOutlineNameRules) {
    openDup();
    build();
    VTX_POTLMBR_T q2 = add(year, "Q2");
    VTX_POTLMBR_T jan2 = add(q2, "Jan");
    add(q2, "Mar");
    EXPECT_REFUSED(VTX_STS_SIBLING_NOT_UNIQUE, adShrOtlRenameMember(h, jan2, "Mar", 0, nullptr));
    EXPECT_REFUSED(VTX_STS_DUP_WITH_DIM, adShrOtlRenameMember(h, jan2, "Year", 0, nullptr));
    VTX_POTLMBR_T market = dim("Market");
    add(market, "East");
    EXPECT_REFUSED(VTX_STS_DIM_NOT_UNIQUE, adShrOtlRenameMember(h, market, "East", 0, nullptr));
    ASSERT_EQ(adShrOtlRenameMember(h, market, "Geography", 0, nullptr), 0);
    year->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_DUP;
    EXPECT_REFUSED(VTX_STS_UNIQUE_IN_DIM, adShrOtlRenameMember(h, jan2, "Feb", 0, nullptr));
    // The host's own name-fix pass skips the dimension tests.
    ASSERT_EQ(adShrOtlMotfRenameMember(h, jan2, "Feb", nullptr), 0);
    year->ucFlags |= OTL_FLAG_DUP;
    // ... and the second form the sibling test as well.
    EXPECT_REFUSED(VTX_STS_SIBLING_NOT_UNIQUE, adShrOtlMotfRenameMember(h, jan2, "Mar", nullptr));
    ASSERT_EQ(adShrOtlMotfRenameMemberDupSibsNoCheck(h, jan2, "Mar", nullptr), 0);
    // A duplicate mark goes once the name no longer repeats.
    VTX_POTLMBR_T feb1 = feb;
    feb1->ucFlags |= OTL_FLAG_DUP;
    ASSERT_EQ(adShrOtlRenameMember(h, feb1, "Only", 0, nullptr), 0);
    EXPECT_EQ(feb1->ucFlags & OTL_FLAG_DUP, 0);
    // In the quiet form shared members of the old name point at nothing.
    VTX_POTLMBR_T s = sharedJan();
    s->OriginalMbr.hOriginalMbr = jan;
    ASSERT_EQ(adShrOtlRenameMember(h, jan, "January", 3, nullptr), 0);
    EXPECT_EQ(s->OriginalMbr.hOriginalMbr, nullptr);
}

} // namespace
