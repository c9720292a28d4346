// Walking the tree and reading members as a host does.
#include <cstring>
#include <string>
#include <vector>

#include "editsupport.h"

using namespace edittest;

namespace {

class NavTest : public EditTest {};

TEST_F(NavTest, WalkShowsNoSpareChildren) {
    VTX_POTLMBR_T year = dim("Year");
    VTX_POTLMBR_T q1 = add(year, "Q1");
    VTX_POTLMBR_T jan = add(q1, "Jan");
    VTX_POTLMBR_T feb = add(q1, "Feb");
    VTX_POTLMBR_T market = dim("Market");
    VTX_POTLMBR_T spare = nullptr;
    ASSERT_EQ(otlAddHiddenMember(o, q1, feb, &spare), 0);
    VTX_HMEMBER_T m = nullptr;
    ASSERT_EQ(adShrOtlGetFirstMember(h, &m), 0);
    EXPECT_EQ(m, year);
    ASSERT_EQ(adShrOtlGetChild(h, year, &m), 0);
    EXPECT_EQ(m, q1);
    ASSERT_EQ(adShrOtlGetChild(h, nullptr, &m), 0);   // the root's first child
    EXPECT_EQ(m, year);
    ASSERT_EQ(adShrOtlGetLastChild(h, q1, &m), 0);
    EXPECT_EQ(m, feb);
    ASSERT_EQ(adShrOtlGetLastChild(h, nullptr, &m), 0);
    EXPECT_EQ(m, market);
    ASSERT_EQ(adShrOtlGetNextSibling(h, jan, &m), 0);
    EXPECT_EQ(m, feb);
    ASSERT_EQ(adShrOtlGetNextSibling(h, feb, &m), 0);   // a spare child follows
    EXPECT_EQ(m, nullptr);
    ASSERT_EQ(adShrOtlGetPrevSibling(h, feb, &m), 0);
    EXPECT_EQ(m, jan);
    ASSERT_EQ(adShrOtlGetParent(h, jan, &m), 0);
    EXPECT_EQ(m, q1);
    ASSERT_EQ(adShrOtlGetParent(h, year, &m), 0);
    EXPECT_EQ(m, nullptr);
    ASSERT_EQ(adShrOtlGetChild(h, jan, &m), 0);
    EXPECT_EQ(m, nullptr);
    EXPECT_EQ(adShrOtlGetChild(h, spare, &m), -1);
    EXPECT_EQ(m, nullptr);
    // The whole outline in pre-order, then the end.
    std::vector<std::string> seen;
    VTX_HMEMBER_T p = year;
    while (p) {
        VTX_MBRNAME_T name;
        ASSERT_EQ(adShrOtlGetMemberName(h, p, name), 0);
        seen.push_back(name);
        ASSERT_EQ(adShrOtlGetNextMember(h, nullptr, p, &p), 0);
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"Year", "Q1", "Jan", "Feb", "Market"}));
    // Below one member the walk ends at that member.
    ASSERT_EQ(adShrOtlGetNextMember(h, q1, feb, &m), 0);
    EXPECT_EQ(m, q1);
    // A query handle is refused by every walk.
    o->fOpenQuery = 1;
    EXPECT_EQ(adShrOtlGetChild(h, year, &m), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlGetFirstMember(h, &m), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlGetNextSibling(h, jan, &m), VTX_STS_WRONG_MODE);
    VTX_MBRNAME_T nm;
    EXPECT_EQ(adShrOtlGetMemberName(h, jan, nm), VTX_STS_WRONG_MODE);
    EXPECT_EQ(m, nullptr);
    o->fOpenQuery = 0;
    EXPECT_EQ(adShrOtlGetParent(h, nullptr, &m), VTX_STS_NULL_ARG);
}

// Children of later build passes come after those of earlier ones; the
// last child of a pass is found from either end.
TEST_F(NavTest, LastChildOfABuildPass) {
    VTX_POTLMBR_T year = dim("Year");
    VTX_POTLMBR_T q1 = add(year, "Q1");
    VTX_POTLMBR_T q2 = add(year, "Q2");
    VTX_POTLMBR_T q3 = add(year, "Q3");
    q1->ucBuildId = 1;
    q2->ucBuildId = 1;
    q3->ucBuildId = 3;
    VTX_HMEMBER_T m = nullptr;
    ASSERT_EQ(adShrOtlGetLastChildByBuildId(h, year, 3, &m), 0);
    EXPECT_EQ(m, q3);
    ASSERT_EQ(adShrOtlGetLastChildByBuildId(h, year, 2, &m), 0);
    EXPECT_EQ(m, q2);
    q1->ucBuildId = 2;
    ASSERT_EQ(adShrOtlGetLastChildByBuildId(h, year, 1, &m), 0);
    EXPECT_EQ(m, nullptr);
    ASSERT_EQ(adShrOtlGetLastChildByBuildId(h, nullptr, 0, &m), 0);
    EXPECT_EQ(m, year);  // the root's children
    VTX_USHORT_T type = 9;
    q2->ucFlags2 |= 2;
    ASSERT_EQ(adShrOtlGetMemberType(h, q2, &type), 0);
    EXPECT_EQ(type, 2);
    ASSERT_EQ(adShrOtlGetMemberType(h, q1, &type), 0);
    EXPECT_EQ(type, 0);
}

TEST_F(NavTest, MemberInfoReadsTheRecord) {
    Spec acct, time;
    acct.category = VTX_CAT_ACCOUNTS;
    acct.storage = 0;
    time.category = VTX_CAT_TIME;
    dim("Year", time);
    VTX_POTLMBR_T m = dim("Measures", acct);
    Spec s;
    s.timeBalance = 2;
    s.expense = 1;
    s.cons = VTX_CONS_SUB;
    VTX_POTLMBR_T inv = add(m, "Inventory", s);
    add(inv, "Opening");
    add(inv, "Closing");
    VTX_POTLMBR_T spare = nullptr;
    ASSERT_EQ(otlAddHiddenMember(o, inv, inv->MbrInfo.pLastSibling, &spare), 0);
    vtx_mbrinfo_t *i = nullptr;
    ASSERT_EQ(adShrOtlGetMemberInfo(h, inv, &i), 0);
    EXPECT_STREQ(i->szMember, "Inventory");
    EXPECT_STREQ(i->szDimName, "Measures");
    EXPECT_EQ(i->usGen, 2);
    EXPECT_EQ(i->usLevel, 1);
    EXPECT_EQ(i->usTimeBalance, 2);
    EXPECT_EQ(i->fExpense, 1);
    EXPECT_EQ(i->usConsolidation, VTX_CONS_SUB);
    EXPECT_EQ(i->ulChildCount, 3u);   // spare children count in the number of records below
    EXPECT_EQ(i->pLastSibling, inv->MbrInfo.pLastSibling);
    EXPECT_EQ(i->ucHierarchyType, OTL_HIER_DISABLED);
    EXPECT_EQ(adShrOtlFreeMbrInfo(t.ctx(), 1, i), 0);
    // Aggregate storage shows storage 3.
    o->usOutlineType = VTX_OTL_AGGSTORE;
    ASSERT_EQ(adShrOtlGetMemberInfo(h, inv, &i), 0);
    EXPECT_EQ(i->usStorage, 3);
    EXPECT_EQ(adShrOtlFreeMbrInfo(t.ctx(), 1, i), 0);
    o->usOutlineType = VTX_OTL_REGULAR;
    // A query-form record says what it holds.
    inv->ucFlags |= OTL_FLAG_QUERYMASK;
    EXPECT_EQ(adShrOtlGetMemberInfo(h, inv, &i), VTX_STS_INFO_NOT_FETCHED);
    OTL_LARGE(inv)->ulBitmask[0] = 0xffff;
    ASSERT_EQ(adShrOtlGetMemberInfo(h, inv, &i), 0);
    EXPECT_EQ(adShrOtlFreeMbrInfo(t.ctx(), 1, i), 0);
    inv->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_QUERYMASK;
    // A query handle reads members, never walks.
    o->fOpenQuery = 1;
    ASSERT_EQ(adShrOtlGetMemberInfo(h, inv, &i), 0);
    EXPECT_EQ(adShrOtlFreeMbrInfo(t.ctx(), 1, i), 0);
    o->fOpenQuery = 0;
}

TEST_F(NavTest, NamesOfADuplicateOutlineAreMarked) {
    openDup();
    VTX_POTLMBR_T d = dim("D");
    VTX_POTLMBR_T a = add(d, "a");
    VTX_POTLMBR_T b = add(d, "b");
    VTX_POTLMBR_T x1 = add(a, "x");
    add(b, "x");
    vtx_mbrinfo_t *i = nullptr;
    ASSERT_EQ(adShrOtlGetMemberInfo(h, x1, &i), 0);
    EXPECT_EQ(i->fNonUniqueName, 1);
    EXPECT_EQ(adShrOtlFreeMbrInfo(t.ctx(), 1, i), 0);
    ASSERT_EQ(adShrOtlGetMemberInfo(h, a, &i), 0);
    EXPECT_EQ(i->fNonUniqueName, 0);
    EXPECT_EQ(adShrOtlFreeMbrInfo(t.ctx(), 1, i), 0);
}

} // namespace
