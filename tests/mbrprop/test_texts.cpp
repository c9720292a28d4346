// Formulas, extended comments and format strings: round trips, the flags
// that say a member has one, the refusals, and failures that change nothing.
#include "propsupport.h"

using namespace edittest;
using proptest::PropTest;

namespace {

class TextTest : public PropTest {
protected:
    VTX_POTLMBR_T year = nullptr, q1 = nullptr, jan = nullptr, janCopy = nullptr, product = nullptr;
    void SetUp() override {
        PropTest::SetUp();
        year = dim("Year");
        q1 = add(year, "Q1");
        jan = add(q1, "Jan");
        janCopy = add(add(year, "Best", label()), "Jan", shared());
        product = dim("Product");
        add(product, "Cola");
    }
};

TEST_F(TextTest, FormulaRoundTripFollowsTheFlag) {
    o->fVerified = 1;
    o->ucStateFlag = 0;
    ASSERT_EQ(adShrOtlSetMemberFormula(h, jan, "Feb * 2;"), 0);
    EXPECT_EQ(text(adShrOtlGetMemberFormula, jan), "Feb * 2;");
    EXPECT_EQ(o->fVerified, 0);
    EXPECT_EQ(o->ucStateFlag, OTL_STATE_CHANGED) << "a text is no change of shape";
    vtx_mbrinfo_t *info = nullptr;
    ASSERT_EQ(adShrOtlGetMemberInfo(h, jan, &info), 0);
    EXPECT_EQ(info->fFormula, 1);
    adShrOtlFreeMbrInfo(t.ctx(), 1, info);

    // The text the server last used is the outline's to keep.
    ASSERT_EQ(otlStrdup(t.ctx(), "Feb;", &OTL_LARGE(jan)->pszLastCalc), 0);
    ASSERT_EQ(adShrOtlDeleteMemberFormula(h, jan), 0);
    EXPECT_EQ(text(adShrOtlGetMemberFormula, jan), "<null>");
    EXPECT_FALSE(jan->ucFlags & OTL_FLAG_FORMULA);
    EXPECT_EQ(text(adShrOtlGetMemberLastFormula, jan), "Feb;");

    // An empty text removes as the delete does; a second delete is no edit.
    ASSERT_EQ(adShrOtlSetMemberFormula(h, q1, "Jan;"), 0);
    ASSERT_EQ(adShrOtlSetMemberFormula(h, q1, ""), 0);
    EXPECT_FALSE(q1->ucFlags & OTL_FLAG_FORMULA);
    o->fVerified = 1;
    EXPECT_EQ(adShrOtlDeleteMemberFormula(h, q1), 0);
    EXPECT_EQ(o->fVerified, 1);

    // A text without the flag is no formula.
    ASSERT_EQ(otlStrdup(t.ctx(), "stale", &OTL_LARGE(product)->pszCalc), 0);
    EXPECT_EQ(text(adShrOtlGetMemberFormula, product), "<null>");
}

TEST_F(TextTest, CommentExAndFormatStringRoundTrips) {
    ASSERT_EQ(adShrOtlSetMemberCommentEx(h, year, "calendar year"), 0);
    EXPECT_TRUE(year->ucFlags & OTL_FLAG_COMMENTEX);
    EXPECT_EQ(text(adShrOtlGetMemberCommentEx, year), "calendar year");
    ASSERT_EQ(adShrOtlSetMemberCommentEx(h, year, nullptr), 0);
    EXPECT_FALSE(year->ucFlags & OTL_FLAG_COMMENTEX);
    o->bMemberTypeEnabled = 1;
    ASSERT_EQ(adShrOtlSetMemberFormatString(h, jan, "#,##0.00"), 0);
    ASSERT_EQ(adShrOtlSetMemberFormatString(h, jan, "0%"), 0);
    EXPECT_EQ(text(adShrOtlGetMemberFormatString, jan), "0%");
    EXPECT_EQ(jan->ucFlags & (OTL_FLAG_FORMULA | OTL_FLAG_COMMENTEX), 0);
}

TEST_F(TextTest, RefusalsLeaveNoTrace) {
    ASSERT_EQ(adShrOtlSetMemberFormula(h, jan, "Feb;"), 0);
    EXPECT_UNCHANGED(VTX_STS_FORMULA_NOT_ALLOWED, adShrOtlSetMemberFormula(h, janCopy, "Feb;"));
    EXPECT_UNCHANGED(VTX_STS_ILLEGAL_OPERATION, adShrOtlSetMemberCommentEx(h, o->pHeadItem, "x"));
    EXPECT_UNCHANGED(VTX_STS_NULL_ARG, adShrOtlSetMemberFormula(h, nullptr, "1;"));
    o->bEditingProhibited = 1;
    EXPECT_UNCHANGED(VTX_STS_EDIT_PROHIBITED, adShrOtlDeleteMemberFormula(h, jan));
    EXPECT_EQ(text(adShrOtlGetMemberFormula, jan), "Feb;") << "reads stay allowed";
    o->bEditingProhibited = 0;

    // Members of attribute dimensions take no formulas; the category is
    // set by hand, as nothing here can build such a dimension yet.
    OTL_LARGE(product)->MbrInfo.usCategory = VTX_CAT_ATTRIBUTE;
    EXPECT_UNCHANGED(VTX_STS_ATTR_MEMBER_FORMULA, adShrOtlSetMemberFormula(h, product->pChild, "1;"));
    OTL_LARGE(product)->MbrInfo.usCategory = VTX_CAT_ATTRCALC;
    EXPECT_UNCHANGED(VTX_STS_ILLEGAL_OPERATION, adShrOtlSetMemberFormula(h, product->pChild, "1;"));
    OTL_LARGE(product)->MbrInfo.usCategory = VTX_CAT_NONE;
}

TEST_F(TextTest, FormatStringsBelongToTypedMembers) {
    EXPECT_UNCHANGED(VTX_STS_MBRTYPE_OLD_AGG, adShrOtlSetMemberFormatString(h, jan, "#"));
    o->bMemberTypeEnabled = 1;
    o->cOPGVersion = 76;
    EXPECT_UNCHANGED(VTX_STS_TYPED_OLD_OPG, adShrOtlSetMemberFormatString(h, jan, "#"));
    o->cOPGVersion = 77;
    EXPECT_UNCHANGED(VTX_STS_TYPED_SHARED, adShrOtlSetMemberFormatString(h, janCopy, "#"));
    OTL_LARGE(product)->MbrInfo.usCategory = VTX_CAT_ATTRIBUTE;
    EXPECT_UNCHANGED(VTX_STS_TYPED_NOT_ALLOWED, adShrOtlSetMemberFormatString(h, product->pChild, "#"));
    OTL_LARGE(product)->MbrInfo.usCategory = VTX_CAT_NONE;
    // A member that turned shared loses its format string through the same
    // call: removing is never refused for what the member is.
    ASSERT_EQ(otlStrdup(t.ctx(), "#", &OTL_LARGE(janCopy)->pszFormatString), 0);
    o->bMemberTypeEnabled = 0;
    EXPECT_EQ(adShrOtlSetMemberFormatString(h, janCopy, nullptr), 0);
    EXPECT_EQ(OTL_LARGE(janCopy)->pszFormatString, nullptr);
}

TEST_F(TextTest, QueryHandlesAreRefused) {
    VTX_HOUTLINE_T q = nullptr;
    ASSERT_EQ(adShrOtlNewQueryOutline(t.ctx(), 0, &q), 0);
    vtx_mbrinfo_t info = makeInfo("Jan");
    vtx_querymbr_t qm{};
    qm.pInfo = &info;
    qm.pszCalc = "Feb;";
    VTX_HMEMBER_T m = nullptr;
    ASSERT_EQ(adShrOtlAddQueryMember(q, &qm, &m), 0);
    VTX_STR_T p = nullptr;
    VTX_USHORT_T n = 0;
    EXPECT_EQ(adShrOtlGetMemberFormula(q, m, &p), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlSetMemberFormula(q, m, "1;"), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlSetMemberSolveOrder(q, m, 1), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlGetNumQueryHints(q, &n), VTX_STS_WRONG_MODE);
    EXPECT_STREQ(OTL_LARGE(static_cast<VTX_POTLMBR_T>(m))->pszCalc, "Feb;");
    adShrOtlCloseOutline(q);
}

TEST_F(TextTest, FailedAllocationOrPagedWriteLeavesTheMemberAsItWas) {
    ASSERT_EQ(adShrOtlSetMemberFormula(h, jan, "Feb;"), 0);
    EXPECT_EQ(walk([&] { return adShrOtlSetMemberFormula(h, jan, "Feb + Mar;"); }), 1);
    EXPECT_EQ(text(adShrOtlGetMemberFormula, jan), "Feb + Mar;");
    t.failAt(1);
    VTX_STS_T sts = 0;
    EXPECT_EQ(text(adShrOtlGetMemberFormula, jan, &sts), "<null>");
    EXPECT_EQ(sts, VTX_STS_NO_MEMORY);
    t.noFail();

    // An outline updated in its paged store writes every change at once; a
    // refused write puts the record back.
    o->incrementalOPGfile = 1;
    EXPECT_UNCHANGED(VTX_STS_OPG_OPEN, adShrOtlDeleteMemberFormula(h, jan));
    EXPECT_UNCHANGED(VTX_STS_OPG_OPEN, adShrOtlSetMemberCommentEx(h, jan, "x"));
    EXPECT_UNCHANGED(VTX_STS_OPG_OPEN, adShrOtlSetMemberSolveOrder(h, jan, 3));
    EXPECT_UNCHANGED(VTX_STS_OPG_OPEN, adShrOtlSetHierarchyType(h, product, VTX_HIER_ENABLED));
    o->incrementalOPGfile = 0;
}

} // namespace
