// Finds by parent, attribute finds on an outline without attribute
// dimensions, and members by their identifiers.
#include "propsupport.h"

using namespace edittest;
using proptest::PropTest;

namespace {

class FindTest : public PropTest {
protected:
    VTX_POTLMBR_T year = nullptr, q1 = nullptr, q2 = nullptr, jan = nullptr, janCopy = nullptr;
    VTX_HMEMBER_T found = nullptr;
    void build(bool dup) {
        if (dup) openDup();
        year = dim("Year");
        q1 = add(year, "Q1");
        jan = add(q1, "Jan");
        q2 = add(year, "Q2");
        janCopy = add(add(year, "Best", label()), "Jan", shared());
        add(dim("Product"), "Promo");
    }
};

TEST_F(FindTest, ParentTellsThePlacesOfANameApart) {
    build(false);
    ASSERT_EQ(adShrOtlFindMemberParentCombo(h, "Jan", "Best", &found), 0);
    EXPECT_EQ(found, janCopy) << "the shared place";
    ASSERT_EQ(adShrOtlFindMemberParentCombo(h, "jan", "q1", &found), 0);
    EXPECT_EQ(found, jan) << "names compare without case here";
    EXPECT_EQ(adShrOtlFindMemberParentCombo(h, "Jan", "Q2", &found), VTX_STS_NOT_FOUND);
    EXPECT_EQ(found, nullptr);
    ASSERT_EQ(adShrOtlFindMemberParentComboInDimension(h, "Year", "Jan", "Best", &found), 0);
    EXPECT_EQ(found, janCopy);
    EXPECT_EQ(adShrOtlFindMemberParentComboInDimension(h, "Product", "Jan", "Q1", &found), VTX_STS_NOT_FOUND);
    EXPECT_EQ(adShrOtlFindMemberParentComboInDimension(h, "Scenario", "Jan", "Q1", &found), VTX_STS_NOT_FOUND);

    // With duplicate names the parent picks one of the bearers.
    build(true);
    VTX_POTLMBR_T jan2 = add(q2, "Jan");
    ASSERT_EQ(adShrOtlFindMemberParentCombo(h, "Jan", "Q2", &found), 0);
    EXPECT_EQ(found, jan2);
    ASSERT_EQ(adShrOtlFindMemberParentCombo(h, "Jan", "Q1", &found), 0);
    EXPECT_EQ(found, jan);
}

TEST_F(FindTest, AttributeFindsWithoutAttributeDimensions) {
    build(false);
    EXPECT_EQ(adShrOtlFindAttrMemberInDimension(h, "Year", "Jan", &found), VTX_STS_NOT_ATTR_DIM);
    EXPECT_EQ(adShrOtlFindAttrMemberParentComboInDimension(h, "Year", "Jan", "Q1", &found), VTX_STS_NOT_ATTR_DIM);
    EXPECT_EQ(adShrOtlFindAttrMemberInDimension(h, "Size", "Small", &found), VTX_STS_NOT_FOUND);
    EXPECT_EQ(found, nullptr);
}

TEST_F(FindTest, MembersByIdentifiers) {
    build(false);
    const VTX_ULONG_T yearId = o->dimIds[year->ulDimno - 1];
    ASSERT_EQ(adShrOtlGetMemberFromDimIdMbrId(h, yearId, (VTX_ULONG_T)jan->mbrId, &found), 0);
    EXPECT_EQ(found, jan);
    ASSERT_EQ(adShrOtlGetMemberFromDimIdMbrId(h, yearId, 9999, &found), 0);
    EXPECT_EQ(found, nullptr);
    found = jan;
    EXPECT_EQ(adShrOtlGetMemberFromDimIdMbrId(h, 0, 1, &found), VTX_STS_ZERO_ID);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(adShrOtlGetMemberFromDimIdMbrId(h, yearId, 0, &found), VTX_STS_ZERO_ID);
    const VTX_ULONG_T id = (VTX_ULONG_T)q2->mbrId;
    ASSERT_EQ(adShrOtlDeleteMember(h, q2, 0, nullptr), 0);
    ASSERT_EQ(adShrOtlGetMemberFromDimIdMbrId(h, yearId, id, &found), 0);
    EXPECT_EQ(found, nullptr) << "a deleted member is gone from the map";
}

} // namespace
