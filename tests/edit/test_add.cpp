// The add family: where a member lands, what it is refused with, and that a
// refused add leaves the outline exactly as it was.
#include <cstring>
#include <string>

#include "editsupport.h"

using namespace edittest;

namespace {

class AddTest : public EditTest {};

TEST_F(AddTest, PlacementFollowsThePreviousSibling) {
    VTX_POTLMBR_T year = dim("Year");
    VTX_POTLMBR_T q1 = add(year, "Q1");
    VTX_POTLMBR_T q3 = add(year, "Q3");
    // Behind Q1, with the parent taken from it.
    vtx_mbrinfo_t i = makeInfo("Q2");
    VTX_HMEMBER_T q2 = nullptr;
    ASSERT_EQ(adShrOtlAddMember(h, &i, nullptr, q1, &q2, 0, nullptr), 0);
    EXPECT_EQ(q1->pSibling, q2);
    EXPECT_EQ(static_cast<VTX_POTLMBR_T>(q2)->pSibling, q3);
    // No previous sibling: in front of the parent's children.
    i = makeInfo("Q0");
    VTX_HMEMBER_T q0 = nullptr;
    ASSERT_EQ(adShrOtlAddMember(h, &i, year, nullptr, &q0, 0, nullptr), 0);
    EXPECT_EQ(year->pChild, q0);
    EXPECT_EQ(year->MbrInfo.pLastSibling, q3);
    // No parent and no sibling: the first dimension.
    i = makeInfo("Measures");
    VTX_HMEMBER_T m = nullptr;
    ASSERT_EQ(adShrOtlAddMember(h, &i, nullptr, nullptr, &m, 0, nullptr), 0);
    EXPECT_EQ(o->pHeadItem->pChild, m);
    EXPECT_EQ(static_cast<VTX_POTLMBR_T>(m)->ulDimno, 1);
    EXPECT_EQ(year->ulDimno, 2);
    EXPECT_EQ(q1->ulDimno, 2);
    EXPECT_EQ(invariants(o), "");
}

TEST_F(AddTest, ParentThatIsNotThePreviousSiblingsParentIsRefused) {
    VTX_POTLMBR_T a = dim("A");
    VTX_POTLMBR_T b = dim("B");
    VTX_POTLMBR_T a1 = add(a, "a1");
    vtx_mbrinfo_t i = makeInfo("x");
    VTX_HMEMBER_T m = nullptr;
    EXPECT_REFUSED(VTX_STS_BAD_PLACEMENT, adShrOtlAddMember(h, &i, b, a1, &m, 0, nullptr));
    EXPECT_EQ(m, nullptr);
}

TEST_F(AddTest, NumbersAndIdentifiers) {
    VTX_POTLMBR_T a = dim("A");
    VTX_POTLMBR_T b = dim("B");
    EXPECT_EQ(a->mbrId, 1);
    EXPECT_EQ(o->nextMbrIds[0], 2u);
    VTX_POTLMBR_T a1 = add(a, "a1");
    VTX_POTLMBR_T a2 = add(a, "a2");
    VTX_POTLMBR_T b1 = add(b, "b1");
    EXPECT_EQ(a1->mbrId, 2);
    EXPECT_EQ(a2->mbrId, 3);
    EXPECT_EQ(b1->mbrId, 2);
    EXPECT_EQ(a2->persistMbrId, 3);
    EXPECT_NE(o->dimIds[0], o->dimIds[1]);
    EXPECT_EQ(o->Counts.ulDimensions, 2u);
    EXPECT_EQ(o->Counts.ulMembers, 5u);
    EXPECT_EQ(o->ucStateFlag & OTL_STATE_EDITED, OTL_STATE_EDITED);
    EXPECT_EQ(o->fVerified, 0);
    // Levels and generations are kept at once.
    VTX_POTLMBR_T a11 = add(a1, "a11");
    EXPECT_EQ(a11->MbrInfo.usGen, 3);
    EXPECT_EQ(a1->MbrInfo.usLevel, 1);
    EXPECT_EQ(a->MbrInfo.usLevel, 2);
}

TEST_F(AddTest, FrameRefusals) {
    VTX_POTLMBR_T a = dim("A");
    VTX_POTLMBR_T a1 = add(a, "a1");
    VTX_POTLMBR_T spare = nullptr;
    ASSERT_EQ(otlAddHiddenMember(o, a, a1, &spare), 0);
    vtx_mbrinfo_t i = makeInfo("x");
    VTX_HMEMBER_T m = nullptr;
    EXPECT_REFUSED(-1, adShrOtlAddMember(h, &i, spare, nullptr, &m, 0, nullptr));
    EXPECT_REFUSED(-1, adShrOtlAddMember(h, &i, nullptr, spare, &m, 0, nullptr));
    o->fOpenQuery = 1;
    EXPECT_REFUSED(VTX_STS_WRONG_MODE, adShrOtlAddMember(h, &i, a, nullptr, &m, 0, nullptr));
    o->fOpenQuery = 0;
    o->bEditingProhibited = 1;
    EXPECT_REFUSED(VTX_STS_EDIT_PROHIBITED, adShrOtlAddMember(h, &i, a, nullptr, &m, 0, nullptr));
    EXPECT_REFUSED(VTX_STS_EDIT_PROHIBITED, adShrOtlAddDimension(h, &i, nullptr, nullptr, &m, nullptr));
    o->bEditingProhibited = 0;
    o->ucPVLoadEnabled = 1;
    EXPECT_REFUSED(-1, adShrOtlAddDimension(h, &i, nullptr, nullptr, &m, nullptr));
    o->ucPVLoadEnabled = 0;
    EXPECT_EQ(adShrOtlAddDimension(h, &i, nullptr, nullptr, &m, nullptr), 0);
    EXPECT_EQ(o->ucPVLoadEnabled, 2);
    EXPECT_EQ(adShrOtlAddMember(nullptr, &i, a, nullptr, &m, 0, nullptr), VTX_STS_NULL_ARG);
}

TEST_F(AddTest, NameAndSettingRefusals) {
    VTX_POTLMBR_T a = dim("A");
    VTX_HMEMBER_T m = nullptr;
    for (const char *bad : {"", " lead", "trail ", "(paren", "-minus", "has\"quote", "#missing", "$NULL$"}) {
        vtx_mbrinfo_t i = makeInfo(bad);
        SCOPED_TRACE(bad);
        EXPECT_REFUSED(VTX_STS_INVALID_NAME, adShrOtlAddMember(h, &i, a, nullptr, &m, 0, nullptr));
    }
    vtx_mbrinfo_t i = makeInfo("ok");
    i.usConsolidation = 7;
    EXPECT_REFUSED(VTX_STS_BAD_CONSOLIDATION, adShrOtlAddMember(h, &i, a, nullptr, &m, 0, nullptr));
    i.usConsolidation = VTX_CONS_NEVER;
    EXPECT_EQ(adShrOtlAddMember(h, &i, a, nullptr, &m, 0, nullptr), 0);
    // Never-consolidate is refused in aggregate storage.
    vtx_outlineinfo_t agg{};
    agg.usOutlineType = VTX_OTL_AGGSTORE;
    open(agg);
    VTX_POTLMBR_T d = dim("D");
    i = makeInfo("n");
    i.usConsolidation = VTX_CONS_NEVER;
    EXPECT_REFUSED(VTX_STS_BAD_CONSOLIDATION, adShrOtlAddMember(h, &i, d, nullptr, &m, 0, nullptr));
}

TEST_F(AddTest, LongNamesNeedARecentClient) {
    VTX_POTLMBR_T a = dim("A");
    std::string n81(81, 'x');
    EXPECT_EQ(o->bLongNames, 0);
    add(a, n81.c_str());
    EXPECT_EQ(o->bLongNames, 1);
    // A refused add of a long name leaves no note of it.
    o->bLongNames = 0;
    vtx_mbrinfo_t i = makeInfo(n81.c_str());
    VTX_HMEMBER_T m = nullptr;
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, adShrOtlAddMember(h, &i, a, nullptr, &m, 0, nullptr));
    t.ctx()->lClientDllVersion = 0;
    std::string other(81, 'y');
    i = makeInfo(other.c_str());
    EXPECT_REFUSED(VTX_STS_INVALID_NAME, adShrOtlAddMember(h, &i, a, nullptr, &m, 0, nullptr));
}

TEST_F(AddTest, DimensionLimits) {
    for (int n = 0; n < 255; ++n) dim(("D" + std::to_string(n)).c_str());
    EXPECT_EQ(o->Counts.ulDimensions, 255u);
    EXPECT_EQ(invariants(o), "");
    vtx_mbrinfo_t i = makeInfo("D255");
    VTX_HMEMBER_T m = nullptr;
    EXPECT_REFUSED(VTX_STS_TOO_MANY_DIMS, adShrOtlAddDimension(h, &i, nullptr, nullptr, &m, nullptr));
    // Members still go in.
    add(o->DimTable[3] ? (VTX_POTLMBR_T)o->DimTable[3] : nullptr, "member");
    // Deleting one makes room, but identifiers are never given twice: 255
    // dimensions have used them up.
    EXPECT_EQ(o->nextDimId, 255u);
    ASSERT_EQ(adShrOtlDeleteMember(h, o->DimTable[0], 0, nullptr), 0);
    EXPECT_REFUSED(VTX_STS_NO_DIM_ID, adShrOtlAddDimension(h, &i, nullptr, nullptr, &m, nullptr));
    // Below the limit a deleted dimension's identifier is not reused.
    open();
    dim("A");
    dim("B");
    ASSERT_EQ(adShrOtlDeleteMember(h, o->DimTable[1], 0, nullptr), 0);
    ASSERT_EQ(adShrOtlAddDimension(h, &i, VTX_HPREV_LAST64, nullptr, &m, nullptr), 0);
    EXPECT_EQ(o->dimIds[1], 3u);
}

TEST_F(AddTest, DepthStopsAtGeneration127) {
    VTX_POTLMBR_T p = dim("D");
    for (int g = 2; g <= 127; ++g) p = add(p, ("g" + std::to_string(g)).c_str());
    EXPECT_EQ(p->MbrInfo.usGen, 127);
    EXPECT_EQ(o->pHeadItem->pChild->MbrInfo.usLevel, 126);
    vtx_mbrinfo_t i = makeInfo("g128");
    VTX_HMEMBER_T m = nullptr;
    EXPECT_REFUSED(VTX_STS_TOO_DEEP, adShrOtlAddMember(h, &i, p, nullptr, &m, 0, nullptr));
}

TEST_F(AddTest, DimensionCallRefusals) {
    VTX_POTLMBR_T a = dim("A");
    VTX_POTLMBR_T a1 = add(a, "a1");
    dim("B");
    vtx_mbrinfo_t i = makeInfo("C");
    VTX_HMEMBER_T m = nullptr;
    EXPECT_REFUSED(VTX_STS_PREV_NOT_DIM, adShrOtlAddDimension(h, &i, a1, nullptr, &m, nullptr));
    // Attribute dimensions stand behind the others.
    i.usCategory = VTX_CAT_ATTRIBUTE;
    EXPECT_REFUSED(VTX_STS_ATTR_DIM_NOT_LAST, adShrOtlAddDimension(h, &i, a, nullptr, &m, nullptr));
    // Attribute values are not served in this build: the add says so.
    EXPECT_REFUSED(VTX_STS_NOT_AVAILABLE, adShrOtlAddDimension(h, &i, VTX_HPREV_LAST64, nullptr, &m, nullptr));
    // A currency outline holds three dimensions.
    vtx_outlineinfo_t cur{};
    cur.usOutlineType = VTX_OTL_CURRENCY;
    open(cur);
    dim("X");
    dim("Y");
    dim("Z");
    i = makeInfo("W");
    EXPECT_REFUSED(VTX_STS_CURRENCY_TOO_MANY_DIMS, adShrOtlAddDimension(h, &i, nullptr, nullptr, &m, nullptr));
}

TEST_F(AddTest, UniqueOutlineNameClashes) {
    VTX_POTLMBR_T market = dim("Market");
    VTX_POTLMBR_T east = add(market, "East");
    VTX_POTLMBR_T ny = add(east, "New York");
    VTX_POTLMBR_T west = add(market, "West");
    VTX_POTLMBR_T found = nullptr;
    // Anywhere in the outline, dimension names included; the member found
    // comes back.
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, tryAdd(west, "New York", Spec{}, &found));
    EXPECT_EQ(found, ny);
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, tryAdd(west, "market"));
    // Reported as a sibling clash on request.
    vtx_mbrinfo_t i = makeInfo("New York");
    VTX_HMEMBER_T m = nullptr;
    EXPECT_REFUSED(VTX_STS_SIBLING_NOT_UNIQUE, adShrOtlAddMemberDupSibsCheck(h, &i, east, nullptr, &m, 1, 0, nullptr));
    EXPECT_EQ(m, ny);
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, adShrOtlAddMemberDupSibsCheck(h, &i, west, nullptr, &m, 1, 0, nullptr));
    // Shared members need their stored member, elsewhere than above them.
    EXPECT_REFUSED(VTX_STS_SHARED_NO_STORED, tryAdd(west, "Boston", shared()));
    VTX_POTLMBR_T s = add(west, "New York", shared());
    EXPECT_EQ(otlGetShare(s), VTX_SHARE_SHARED);
    EXPECT_REFUSED(VTX_STS_SIBLING_NOT_UNIQUE, tryAdd(west, "New York", shared()));
    VTX_POTLMBR_T city = add(ny, "Queens");
    EXPECT_REFUSED(VTX_STS_SHARED_UNDER_STORED, tryAdd(city, "New York", shared()));
    // A parent that does not consolidate ends the walk.
    Spec ignore;
    ignore.cons = VTX_CONS_IGNORE;
    VTX_POTLMBR_T group = add(ny, "Group", ignore);
    add(group, "New York", shared());
    // The quiet form lets a name stand that only shared members bear.
    i = makeInfo("West");
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, adShrOtlAddMember(h, &i, east, nullptr, &m, 3, nullptr));
    EXPECT_EQ(invariants(o), "");
}

TEST_F(AddTest, CaseRuleOfTheOutline) {
    VTX_POTLMBR_T a = dim("A");
    add(a, "Jan");
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, tryAdd(a, "JAN"));
    vtx_outlineinfo_t cs{};
    cs.fCaseSensitive = 1;
    open(cs);
    a = dim("A");
    add(a, "Jan");
    add(a, "JAN");
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, tryAdd(a, "Jan"));
}

TEST_F(AddTest, DuplicateOutlineNameClashes) {
    openDup();
    VTX_POTLMBR_T product = dim("Product");
    EXPECT_EQ(product->ucFlags & OTL_FLAG_DUP, OTL_FLAG_DUP);
    VTX_POTLMBR_T cola = add(product, "Cola");
    VTX_POTLMBR_T diet = add(product, "Diet");
    add(cola, "Can");
    add(diet, "Can");   // repeats, under another parent
    EXPECT_REFUSED(VTX_STS_SIBLING_NOT_UNIQUE, tryAdd(diet, "Can"));
    EXPECT_REFUSED(VTX_STS_DUP_WITH_DIM, tryAdd(diet, "product"));
    vtx_mbrinfo_t i = makeInfo("Product");
    VTX_HMEMBER_T m = nullptr;
    EXPECT_REFUSED(VTX_STS_DIM_NOT_UNIQUE, adShrOtlAddDimension(h, &i, nullptr, nullptr, &m, nullptr));
    i = makeInfo("Can");
    EXPECT_REFUSED(VTX_STS_DIM_NOT_UNIQUE, adShrOtlAddDimension(h, &i, nullptr, nullptr, &m, nullptr));
    // A dimension that allows only unique names.
    product->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_DUP;
    EXPECT_REFUSED(VTX_STS_UNIQUE_IN_DIM, tryAdd(product, "Can"));
    product->ucFlags |= OTL_FLAG_DUP;
    // A generation that allows only unique names.
    VTX_NAMELIST_T gen3{};
    char genName[] = "Size";
    gen3.pszName = genName;
    gen3.fGen = 1;
    gen3.usGenOrLevel = 3;
    gen3.fUniqueName = 1;
    OTL_LARGE(product)->pNameList = &gen3;
    VTX_POTLMBR_T juice = add(product, "Juice");
    EXPECT_REFUSED(VTX_STS_UNIQUE_AT_GEN, tryAdd(juice, "Can"));
    add(product, "Can");   // generation 2 is free
    OTL_LARGE(product)->pNameList = nullptr;
    // Shared members find their stored member by name; in a dimension build
    // the test waits for verification.
    EXPECT_REFUSED(VTX_STS_SHARED_NO_STORED, tryAdd(cola, "Bottle", shared()));
    o->fBuildingDim = 1;
    EXPECT_REFUSED(VTX_STS_SHARED_NO_STORED, tryAdd(cola, "Bottle", shared()));
    o->fBuildingDim = 0;
}

TEST_F(AddTest, VerificationOfTheNewMemberUndoesTheAdd) {
    VTX_POTLMBR_T a = dim("A");
    vtx_mbrinfo_t i = makeInfo("x");
    i.usShare = 6;   // no such setting
    VTX_HMEMBER_T m = nullptr;
    vtx_outerror_t err{};
    EXPECT_REFUSED(VTX_STS_BAD_SHARE, adShrOtlAddMember(h, &i, a, nullptr, &m, 0, &err));
    EXPECT_EQ(m, nullptr);
    EXPECT_EQ(err.ulErrors & 0x20000u, 0x20000u);
    // A dimension is never shared (and has no stored member either: that
    // number comes first).
    i = makeInfo("S");
    i.usShare = VTX_SHARE_SHARED2;
    EXPECT_REFUSED(VTX_STS_SHARED_NO_STORED, adShrOtlAddDimension(h, &i, nullptr, nullptr, &m, &err));
    EXPECT_EQ(err.ulErrors & (0x20000u | 0x800u), 0x20800u);
    // Time balance needs a time dimension.
    Spec acct;
    acct.category = VTX_CAT_ACCOUNTS;
    VTX_POTLMBR_T measures = dim("Measures", acct);
    Spec tb;
    tb.timeBalance = 4;
    EXPECT_REFUSED(VTX_STS_BAD_TIME_BALANCE, tryAdd(measures, "Closing", tb));
    tb.timeBalance = 2;
    EXPECT_REFUSED(VTX_STS_TIME_BALANCE_NO_TIME, tryAdd(measures, "Closing", tb));
    Spec time;
    time.category = VTX_CAT_TIME;
    dim("Year", time);
    add(measures, "Closing", tb);
    // The name is free again after a refused add.
    EXPECT_EQ(tryAdd(a, "x"), 0);
}

TEST_F(AddTest, WarningsNeverRefuse) {
    // A label-only or dynamic leaf and a childless dimension are rules of the
    // whole outline: a member being added has no children yet.
    VTX_POTLMBR_T a = dim("A", label());
    add(a, "L", label());
    Spec dyn;
    dyn.share = VTX_SHARE_DYNCALC;
    add(a, "D", dyn);
    dim("Empty");
    EXPECT_EQ(invariants(o), "");
}

TEST_F(AddTest, StandardDimensionsTakeCalculationSettings) {
    // Both sides of the attribute-dimension rules: members of standard
    // dimensions with two-pass, expense and time balance settings under
    // ordinary parents add clean ...
    Spec acct;
    acct.category = VTX_CAT_ACCOUNTS;
    Spec time;
    time.category = VTX_CAT_TIME;
    dim("Year", time);
    VTX_POTLMBR_T m = dim("Measures", acct);
    VTX_POTLMBR_T p = add(m, "Profit");
    Spec s;
    s.twoPass = 1;
    s.expense = 1;
    s.timeBalance = 3;
    add(p, "Rate", s);
    // ... while a member of an attribute-calculations dimension that is no
    // attribute member may not hang from an ordinary member, nor carry them.
    Spec calc;
    calc.category = VTX_CAT_ATTRCALC;
    VTX_POTLMBR_T ac = dim("Attribute Calculations", calc);
    VTX_POTLMBR_T sum = add(ac, "Sum", calc);
    EXPECT_EQ(OTL_LARGE(sum)->usAttrCode, 4);
    VTX_POTLMBR_T plain = add(ac, "Plain");
    EXPECT_REFUSED(1060104, tryAdd(plain, "Below"));
    Spec tp;
    tp.twoPass = 1;
    EXPECT_REFUSED(1060112, tryAdd(ac, "TwoPass", tp));
    EXPECT_EQ(o->Counts.ulStandardDims, 2u);
}

TEST_F(AddTest, Ex2HandsBackMemberParentAndDimension) {
    VTX_POTLMBR_T a = dim("A");
    VTX_POTLMBR_T a1 = add(a, "a1");
    VTX_POTLMBR_T x = add(a1, "x");
    vtx_mbrinfo_t i = makeInfo("x");
    VTX_HMEMBER_T m = nullptr, p = nullptr, d = nullptr;
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, adShrOtlAddMemberEx2(h, &i, a, nullptr, &m, &p, &d, 0, nullptr));
    EXPECT_EQ(m, x);
    EXPECT_EQ(p, a1);
    EXPECT_EQ(d, a);
    i.usShare = VTX_SHARE_SHARED;
    EXPECT_REFUSED(VTX_STS_SHARED_UNDER_STORED,
                   adShrOtlAddMemberEx2(h, &i, x, nullptr, &m, &p, &d, 0, nullptr));
    ASSERT_EQ(adShrOtlAddMemberEx2(h, &i, a, nullptr, &m, &p, &d, 0, nullptr), 0);
    EXPECT_EQ(p, nullptr);
    i = makeInfo("y");
    i.usShare = VTX_SHARE_SHARED;
    EXPECT_REFUSED(VTX_STS_SHARED_NO_STORED, adShrOtlAddMemberEx2(h, &i, a, nullptr, &m, &p, &d, 0, nullptr));
}

TEST_F(AddTest, StoredAndSharedMember) {
    VTX_POTLMBR_T a = dim("A");
    VTX_POTLMBR_T b = dim("B");
    VTX_POTLMBR_T top = add(a, "top");
    VTX_POTLMBR_T g2 = add(a, "g2");
    VTX_POTLMBR_T x = add(top, "x");
    VTX_POTLMBR_T other = add(a, "other");
    vtx_mbrinfo_t i = makeInfo("x");
    VTX_HMEMBER_T m = nullptr, p = nullptr, d = nullptr;
    VTX_BOOL_T shared = 0;
    // An existing name elsewhere in the dimension becomes a shared member.
    ASSERT_EQ(adShrOtlAddStoredAndSharedMember(h, 0, 0, &i, other, nullptr, &m, &p, &d, 0, &shared, nullptr), 0);
    EXPECT_EQ(shared, 1);
    EXPECT_EQ(otlGetShare(static_cast<VTX_POTLMBR_T>(m)), VTX_SHARE_SHARED);
    // Not twice under one parent unless asked for.
    EXPECT_REFUSED(VTX_STS_SHARED_SAME_PARENT,
                   adShrOtlAddStoredAndSharedMember(h, 0, 0, &i, other, nullptr, &m, &p, &d, 0, &shared, nullptr));
    // Same parent, another dimension: plain clashes.
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS,
                   adShrOtlAddStoredAndSharedMember(h, 0, 0, &i, top, nullptr, &m, &p, &d, 0, &shared, nullptr));
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS,
                   adShrOtlAddStoredAndSharedMember(h, 0, 0, &i, b, nullptr, &m, &p, &d, 0, &shared, nullptr));
    EXPECT_EQ(m, x);
    // A generation-2 member may be moved rather than shared.
    i = makeInfo("g2");
    EXPECT_REFUSED(VTX_STS_GEN2_CAN_MOVE,
                   adShrOtlAddStoredAndSharedMember(h, 1, 0, &i, top, nullptr, &m, &p, &d, 0, &shared, nullptr));
    EXPECT_EQ(m, g2);
    // A new name is an ordinary add.
    i = makeInfo("fresh");
    ASSERT_EQ(adShrOtlAddStoredAndSharedMember(h, 0, 0, &i, top, nullptr, &m, &p, &d, 0, &shared, nullptr), 0);
    EXPECT_EQ(shared, 0);
}

TEST_F(AddTest, AddWithIdentifier) {
    vtx_mbrinfo_t i = makeInfo("x");
    VTX_HMEMBER_T m = nullptr;
    VTX_POTLMBR_T a = dim("A");
    EXPECT_REFUSED(VTX_STS_DUP_REQUIRED, adShrOtlAddMemberAndID(h, &i, "id1", a, nullptr, &m, 0, nullptr));
    openDup();
    a = dim("A");
    std::string longId(1024, 'i');
    EXPECT_REFUSED(VTX_STS_MEMBER_ID_TOO_LONG, adShrOtlAddMemberAndID(h, &i, longId.c_str(), a, nullptr, &m, 0, nullptr));
    vtx_mbrinfo_t calc = makeInfo("c");
    calc.usCategory = VTX_CAT_ATTRCALC;
    EXPECT_REFUSED(VTX_STS_ILLEGAL_OPERATION, adShrOtlAddMemberAndID(h, &calc, "id1", a, nullptr, &m, 0, nullptr));
    ASSERT_EQ(adShrOtlAddMemberAndID(h, &i, "id1", a, nullptr, &m, 0, nullptr), 0);
    VTX_POTLMBR_T x = static_cast<VTX_POTLMBR_T>(m);
    ASSERT_NE(x->AliasArray, nullptr);
    EXPECT_STREQ(x->AliasArray[1].pszDefName, "id1");
    vtx_mbrinfo_t y = makeInfo("y");
    EXPECT_REFUSED(VTX_STS_MEMBER_ID_IN_USE, adShrOtlAddMemberAndID(h, &y, "id1", a, nullptr, &m, 0, nullptr));
    EXPECT_EQ(m, x);
    EXPECT_REFUSED(VTX_STS_MEMBER_ID_IN_USE, adShrOtlAddMemberAndID(h, &y, "x", a, nullptr, &m, 0, nullptr));
}

TEST_F(AddTest, AppendingDoesNotWalkTheFollowingSiblings) {
    // A flat dimension grown by appends through the exported add.
    VTX_POTLMBR_T d = dim("Flat");
    for (int n = 0; n < 2000; ++n) add(d, ("m" + std::to_string(n)).c_str());
    EXPECT_EQ(d->ulSiblingCount, 2000u);
    EXPECT_EQ(d->MbrInfo.usLevel, 1);
    EXPECT_EQ(invariants(o), "");
}

} // namespace
