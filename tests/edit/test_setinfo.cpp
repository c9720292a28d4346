// Member settings through adShrOtlSetMemberInfo and the data storage
// setters; hierarchy order.
#include <cstring>
#include <string>

#include "editsupport.h"

using namespace edittest;

namespace {

class SetInfoTest : public EditTest {
protected:
    vtx_mbrinfo_t *get(VTX_POTLMBR_T m) {
        vtx_mbrinfo_t *i = nullptr;
        EXPECT_EQ(adShrOtlGetMemberInfo(h, m, &i), 0);
        return i;
    }
    void release(vtx_mbrinfo_t *i) { EXPECT_EQ(adShrOtlFreeMbrInfo(t.ctx(), 1, i), 0); }
};

TEST_F(SetInfoTest, RoundTripChangesOnlyWhatChanged) {
    Spec acct, time;
    acct.category = VTX_CAT_ACCOUNTS;
    time.category = VTX_CAT_TIME;
    dim("Year", time);
    VTX_POTLMBR_T m = dim("Measures", acct);
    VTX_POTLMBR_T sales = add(m, "Sales");
    vtx_mbrinfo_t *i = get(sales);
    o->ucStateFlag = 0;
    ASSERT_EQ(adShrOtlSetMemberInfo(h, sales, i, 0, nullptr), 0);
    // Nothing but the state changed: a save is due, no rename happened.
    EXPECT_EQ(o->ucStateFlag, OTL_STATE_CHANGED);
    i->usTimeBalance = 2;
    i->fExpense = 1;
    std::snprintf(i->szComment, sizeof i->szComment, "%s", "net of returns");
    ASSERT_EQ(adShrOtlSetMemberInfo(h, sales, i, 0, nullptr), 0);
    EXPECT_EQ(sales->MbrInfo.usTimeBalance, 2);
    EXPECT_STREQ(OTL_LARGE(sales)->MbrInfo.szComment, "net of returns");
    // A new name is a rename, with its checks.
    std::snprintf(i->szMember, sizeof i->szMember, "%s", "Revenue");
    ASSERT_EQ(adShrOtlSetMemberInfo(h, sales, i, 0, nullptr), 0);
    EXPECT_STREQ(sales->MbrInfo.szMember, "Revenue");
    EXPECT_EQ(o->ucStateFlag & OTL_STATE_EDITED, OTL_STATE_EDITED);
    std::snprintf(i->szMember, sizeof i->szMember, "%s", "Year");
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, adShrOtlSetMemberInfo(h, sales, i, 0, nullptr));
    std::snprintf(i->szMember, sizeof i->szMember, "%s", "@bad");
    EXPECT_REFUSED(VTX_STS_INVALID_NAME, adShrOtlSetMemberInfo(h, sales, i, 0, nullptr));
    release(i);
}

TEST_F(SetInfoTest, Refusals) {
    VTX_POTLMBR_T a = dim("A");
    VTX_POTLMBR_T x = add(a, "x");
    VTX_POTLMBR_T s = add(add(a, "p"), "x", shared());
    vtx_mbrinfo_t *i = get(s);
    i->usShare = VTX_SHARE_STORE;
    EXPECT_REFUSED(VTX_STS_DUPLICATE_NAME, adShrOtlSetMemberInfo(h, s, i, 0, nullptr));
    release(i);
    i = get(x);
    i->usConsolidation = 7;
    EXPECT_REFUSED(VTX_STS_BAD_CONSOLIDATION, adShrOtlSetMemberInfo(h, x, i, 0, nullptr));
    i->usConsolidation = 0;
    EXPECT_REFUSED(VTX_STS_NO_DIMENSION, adShrOtlSetMemberInfo(h, o->pHeadItem, i, 0, nullptr));
    x->MbrInfo.ucInfoFlags |= OTL_INFO_INDEPMBR;
    i->usShare = VTX_SHARE_LABEL;
    EXPECT_REFUSED(VTX_STS_ILLEGAL_OPERATION, adShrOtlSetMemberInfo(h, x, i, 0, nullptr));
    x->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~OTL_INFO_INDEPMBR;
    // A stored member made shared needs a stored member of its name:
    // verification undoes the change.
    i->usShare = VTX_SHARE_SHARED;
    vtx_outerror_t err{};
    EXPECT_REFUSED(VTX_STS_SHARED_NO_STORED, adShrOtlSetMemberInfo(h, x, i, 0, &err));
    EXPECT_EQ(err.hMember, x);
    EXPECT_EQ(err.ulErrors & 0x800u, 0x800u);
    release(i);
    // Independence needs varying attributes.
    i = get(a);
    i->fIndependentDim = 1;
    EXPECT_REFUSED(VTX_STS_INDEP_NO_VARYING, adShrOtlSetMemberInfo(h, a, i, 0, nullptr));
    // Turning a dimension into an attribute dimension needs attribute work.
    i->fIndependentDim = 0;
    i->usCategory = VTX_CAT_ATTRIBUTE;
    EXPECT_REFUSED(VTX_STS_NOT_AVAILABLE, adShrOtlSetMemberInfo(h, a, i, 0, nullptr));
    release(i);
    Spec calc;
    calc.category = VTX_CAT_ATTRCALC;
    VTX_POTLMBR_T ac = dim("Calc", calc);
    VTX_POTLMBR_T sum = add(ac, "Sum", calc);
    i = get(sum);
    EXPECT_REFUSED(VTX_STS_ILLEGAL_OPERATION, adShrOtlSetMemberInfo(h, sum, i, 0, nullptr));
    release(i);
    i = get(x);
    o->bEditingProhibited = 1;
    EXPECT_REFUSED(VTX_STS_EDIT_PROHIBITED, adShrOtlSetMemberInfo(h, x, i, 0, nullptr));
    o->bEditingProhibited = 0;
    release(i);
}

TEST_F(SetInfoTest, SharedMayLeaveInTheQuietFormAndCountsFollow) {
    VTX_POTLMBR_T a = dim("A");
    add(a, "x");
    VTX_POTLMBR_T s = add(a, "y", Spec{});
    VTX_POTLMBR_T p = add(a, "p");
    VTX_POTLMBR_T sx = add(p, "x", shared());
    const VTX_ULONG_T real = o->Counts.ulRealMembers;
    vtx_mbrinfo_t *i = get(sx);
    i->usShare = VTX_SHARE_STORE;
    std::snprintf(i->szMember, sizeof i->szMember, "%s", "z");
    ASSERT_EQ(adShrOtlSetMemberInfo(h, sx, i, 3, nullptr), 0);
    EXPECT_EQ(otlGetShare(sx), VTX_SHARE_STORE);
    EXPECT_EQ(o->Counts.ulRealMembers, real + 1);
    release(i);
    i = get(s);
    i->usShare = VTX_SHARE_LABEL;
    add(s, "child");
    ASSERT_EQ(adShrOtlSetMemberInfo(h, s, i, 0, nullptr), 0);
    EXPECT_EQ(o->Counts.ulRealMembers, real + 1);   // one more stored, one less
    release(i);
}

TEST_F(SetInfoTest, AccountsDimensionBecomesADynamicHierarchy) {
    VTX_POTLMBR_T d = dim("Measures");
    vtx_mbrinfo_t *i = get(d);
    i->usCategory = VTX_CAT_ACCOUNTS;
    ASSERT_EQ(adShrOtlSetMemberInfo(h, d, i, 0, nullptr), 0);
    EXPECT_EQ(OTL_LARGE(d)->MbrInfo.ucHierarchyType, OTL_HIER_DYNAMIC);
    EXPECT_EQ(OTL_LARGE(d)->MbrInfo.usCategory, VTX_CAT_ACCOUNTS);
    // A second accounts dimension is one too many.
    VTX_POTLMBR_T e = dim("Other");
    release(i);
    i = get(e);
    i->usCategory = VTX_CAT_ACCOUNTS;
    EXPECT_REFUSED(VTX_STS_CURRENCY_CATEGORY, adShrOtlSetMemberInfo(h, e, i, 0, nullptr));
    release(i);
}

TEST_F(SetInfoTest, DataStorageOfChildrenDescendantsAndGenerations) {
    VTX_POTLMBR_T d = dim("D");
    VTX_POTLMBR_T a = add(d, "a");
    VTX_POTLMBR_T a1 = add(a, "a1");
    VTX_POTLMBR_T a2 = add(a, "a2");
    VTX_POTLMBR_T a11 = add(a1, "a11");
    VTX_POTLMBR_T b = add(d, "b");
    auto share = [](VTX_POTLMBR_T m) { return otlGetShare(m); };
    a1->ucFlags |= OTL_FLAG_MARKED;
    ASSERT_EQ(adShrOtlSetDataStorage(h, a, 0, nullptr, 2, 0, VTX_SHARE_NEVER), 0);
    EXPECT_EQ(share(a1), VTX_SHARE_NEVER);
    EXPECT_EQ(share(a2), VTX_SHARE_NEVER);
    EXPECT_EQ(share(a11), VTX_SHARE_STORE);
    EXPECT_EQ(share(a), VTX_SHARE_STORE);
    EXPECT_EQ(a1->ucFlags & OTL_FLAG_MARKED, 0);   // a changed member is unmarked
    ASSERT_EQ(adShrOtlSetDataStorage(h, a, 0, nullptr, 5, 0, VTX_SHARE_DYNCALC), 0);
    EXPECT_EQ(share(a11), VTX_SHARE_DYNCALC);
    EXPECT_EQ(share(a), VTX_SHARE_DYNCALC);
    EXPECT_EQ(share(b), VTX_SHARE_STORE);
    // Generation 3 below the dimension.
    ASSERT_EQ(adShrOtlSetDataStorage(h, d, 0, nullptr, 1, 3, VTX_SHARE_STORE), 0);
    EXPECT_EQ(share(a1), VTX_SHARE_STORE);
    EXPECT_EQ(share(a11), VTX_SHARE_DYNCALC);
    // Level 0 below the dimension.
    ASSERT_EQ(adShrOtlSetDataStorage(h, d, 0, nullptr, 0, 0, VTX_SHARE_NEVER), 0);
    EXPECT_EQ(share(a11), VTX_SHARE_NEVER);
    EXPECT_EQ(share(a2), VTX_SHARE_NEVER);
    EXPECT_EQ(share(b), VTX_SHARE_NEVER);
    EXPECT_EQ(share(a1), VTX_SHARE_STORE);
    // Above 5: nothing.
    std::string before = dump(o);
    EXPECT_EQ(adShrOtlSetDataStorage(h, d, 0, nullptr, 6, 0, VTX_SHARE_LABEL), 0);
    EXPECT_EQ(dump(o), before);
    // The root is left alone; the walk stops at the first refusal.
    EXPECT_EQ(adShrOtlSetDataStorageForMember(h, o->pHeadItem, 0, nullptr, VTX_SHARE_LABEL), 0);
    VTX_POTLMBR_T s = add(d, "a2", shared());
    (void)s;
    EXPECT_EQ(adShrOtlSetDataStorage(h, d, 0, nullptr, 2, 0, VTX_SHARE_STORE), VTX_STS_DUPLICATE_NAME);
}

TEST_F(SetInfoTest, HierarchiesInAnotherOrder) {
    VTX_POTLMBR_T d = dim("D");
    VTX_POTLMBR_T h1 = add(d, "h1");
    VTX_POTLMBR_T h2 = add(d, "h2");
    VTX_POTLMBR_T h3 = add(d, "h3");
    add(h1, "leaf");
    VTX_POTLMBR_T spare = nullptr;
    ASSERT_EQ(otlAddHiddenMember(o, d, h3, &spare), 0);
    VTX_HMEMBER_T order[3] = {h3, h1, h2};
    ASSERT_EQ(adShrOtlReorderHierarchies(h, d, 3, order, nullptr), 0);
    EXPECT_EQ(d->pChild, h3);
    EXPECT_EQ(h3->pSibling, h1);
    EXPECT_EQ(h2->pSibling, spare);
    EXPECT_EQ(d->MbrInfo.pLastSibling, h2);
    EXPECT_EQ(d->MbrInfo.usLevel, 2);
    VTX_HMEMBER_T twice[3] = {h3, h3, h2};
    EXPECT_REFUSED(VTX_STS_ILLEGAL_OPERATION, adShrOtlReorderHierarchies(h, d, 3, twice, nullptr));
    VTX_HMEMBER_T short2[2] = {h1, h2};
    EXPECT_REFUSED(VTX_STS_ILLEGAL_OPERATION, adShrOtlReorderHierarchies(h, d, 2, short2, nullptr));
    VTX_HMEMBER_T withSpare[3] = {h1, h2, spare};
    EXPECT_REFUSED(VTX_STS_NOT_A_DIMENSION, adShrOtlReorderHierarchies(h, h1, 0, nullptr, nullptr));
    EXPECT_REFUSED(VTX_STS_ILLEGAL_OPERATION, adShrOtlReorderHierarchies(h, d, 3, withSpare, nullptr));
}

} // namespace
