// Solve orders, aggregate level usage, hierarchy types, the compression
// dimension and renegade members: their version gates and refusals, and
// what each leaves on the records.
#include "propsupport.h"

using namespace edittest;
using proptest::PropTest;

namespace {

class AggTest : public PropTest {
protected:
    VTX_POTLMBR_T measures = nullptr, sales = nullptr, product = nullptr, colas = nullptr, cola = nullptr,
                  diet = nullptr, market = nullptr, east = nullptr;
    VTX_UCHAR_T type = 0;
    VTX_HMEMBER_T got = nullptr;
    // An aggregate storage outline of paged version opgVersion (0: the newest).
    void build(VTX_ULONG_T opgVersion = 0) {
        openAgg();
        Spec accounts;
        accounts.category = VTX_CAT_ACCOUNTS;
        measures = dim("Measures", accounts);
        sales = add(measures, "Sales");
        product = dim("Product");
        colas = add(product, "Colas");
        cola = add(colas, "Cola");
        diet = add(product, "Diet");
        add(diet, "Cola", shared());
        market = dim("Market");
        east = add(market, "East");
        add(east, "Boston");
        if (opgVersion) o->cOPGVersion = opgVersion;
    }
    int typeOf(VTX_POTLMBR_T m) {
        EXPECT_EQ(adShrOtlGetHierarchyType(h, m, &type), 0);
        return type;
    }
};

TEST_F(AggTest, SolveOrders) {
    build();
    EXPECT_UNCHANGED(VTX_STS_BAD_SOLVE_ORDER, adShrOtlSetMemberSolveOrder(h, sales, -1));
    EXPECT_UNCHANGED(VTX_STS_BAD_SOLVE_ORDER, adShrOtlSetDimensionSolveOrder(h, measures, -5));
    EXPECT_UNCHANGED(VTX_STS_NOT_A_DIMENSION, adShrOtlSetDimensionSolveOrder(h, sales, 1));
    ASSERT_EQ(adShrOtlSetMemberSolveOrder(h, sales, 127), 0);
    ASSERT_EQ(adShrOtlSetDimensionSolveOrder(h, measures, 4), 0);
    EXPECT_EQ(sales->ucSolveOrder, 127);
    EXPECT_EQ(measures->ucDimSolveOrder, 4);
    EXPECT_EQ(measures->ucSolveOrder, 0) << "the dimension's own member order is apart";
    EXPECT_FALSE(sales->MbrInfo.ucInfoFlags & OTL_INFO_SOLVEORDER) << "not kept by newer paged versions";
    // The oldest paged versions mark members that have one.
    o->cOPGVersion = 71;
    ASSERT_EQ(adShrOtlSetMemberSolveOrder(h, sales, 2), 0);
    EXPECT_TRUE(sales->MbrInfo.ucInfoFlags & OTL_INFO_SOLVEORDER);
    ASSERT_EQ(adShrOtlSetMemberSolveOrder(h, sales, 0), 0);
    EXPECT_FALSE(sales->MbrInfo.ucInfoFlags & OTL_INFO_SOLVEORDER);
}

TEST_F(AggTest, SolveOrderChangesAreNotedOutsideAggregateStorage) {
    // The change list is kept for block storage only; while it cannot be
    // kept the change is refused and undone.
    VTX_POTLMBR_T jan = add(dim("Year"), "Jan");
    o->fKeepTrans = o->fKeepTransReplay = 1;
    EXPECT_UNCHANGED(VTX_STS_NOT_AVAILABLE, adShrOtlSetMemberSolveOrder(h, jan, 3));
    build();
    o->fKeepTrans = o->fKeepTransReplay = 1;
    EXPECT_EQ(adShrOtlSetMemberSolveOrder(h, sales, 3), 0);
    o->fKeepTrans = o->fKeepTransReplay = 0;
}

TEST_F(AggTest, LevelUsageStandsOnStoredHierarchiesOnly) {
    build(74);
    EXPECT_UNCHANGED(VTX_STS_RELAXED_OLD_AGG, adShrOtlSetAggLevelUsage(h, product, VTX_AGGLEVEL_ALL));
    o->cOPGVersion = 75;
    ASSERT_EQ(adShrOtlSetAggLevelUsage(h, product, VTX_AGGLEVEL_BOTTOM), 0);
    VTX_SHORT_T w = -1;
    ASSERT_EQ(adShrOtlGetAggLevelUsage(h, product, &w), 0);
    EXPECT_EQ(w, VTX_AGGLEVEL_BOTTOM);
    EXPECT_UNCHANGED(VTX_STS_BAD_AGG_LEVEL_USAGE, adShrOtlSetAggLevelUsage(h, product, 5));
    EXPECT_UNCHANGED(VTX_STS_BAD_AGG_LEVEL_USAGE, adShrOtlSetAggLevelUsage(h, cola, VTX_AGGLEVEL_ALL));
    // Generation 2 of a dimension of one hierarchy heads none.
    EXPECT_UNCHANGED(VTX_STS_BAD_AGG_LEVEL_USAGE, adShrOtlSetAggLevelUsage(h, colas, VTX_AGGLEVEL_ALL));
    // Several hierarchies: each stored one takes its own; a dynamic one and
    // the dimension above them none.
    ASSERT_EQ(adShrOtlSetAltHierarchyEnabled(h, product, 1), 0);
    ASSERT_EQ(adShrOtlSetHierarchyType(h, diet, VTX_HIER_DYNAMIC), 0);
    EXPECT_EQ(adShrOtlSetAggLevelUsage(h, colas, VTX_AGGLEVEL_NONE), 0);
    EXPECT_UNCHANGED(VTX_STS_BAD_AGG_LEVEL_USAGE, adShrOtlSetAggLevelUsage(h, diet, VTX_AGGLEVEL_NONE));
    EXPECT_UNCHANGED(VTX_STS_BAD_AGG_LEVEL_USAGE, adShrOtlSetAggLevelUsage(h, product, VTX_AGGLEVEL_NONE));
    EXPECT_FALSE(otlValidAggLevelUsage(colas, VTX_AGGLEVEL_DEFAULT, 0));
}

TEST_F(AggTest, HierarchyTypes) {
    build();
    EXPECT_EQ(typeOf(product), VTX_HIER_STORED);
    EXPECT_EQ(typeOf(colas), VTX_HIER_DISABLED);
    EXPECT_EQ(typeOf(cola), VTX_HIER_BELOWGEN2);
    EXPECT_UNCHANGED(VTX_STS_ILLEGAL_OPERATION, adShrOtlSetHierarchyType(h, colas, VTX_HIER_DYNAMIC));
    EXPECT_UNCHANGED(VTX_STS_BAD_SELECTOR, adShrOtlSetHierarchyType(h, product, VTX_HIER_BELOWGEN2));
    // A dimension of several hierarchies holds no data; its tops become
    // stored or dynamic.
    ASSERT_EQ(adShrOtlSetHierarchyType(h, product, VTX_HIER_ENABLED), 0);
    EXPECT_EQ(OTL_LARGE(product)->MbrInfo.usShare, VTX_SHARE_LABEL);
    EXPECT_EQ(typeOf(colas), VTX_HIER_STORED);
    EXPECT_UNCHANGED(VTX_STS_BAD_SELECTOR, adShrOtlSetHierarchyType(h, colas, VTX_HIER_ENABLED));
    ASSERT_EQ(adShrOtlSetHierarchyType(h, diet, VTX_HIER_DYNAMIC), 0);
    vtx_mbrinfo_t *info = nullptr;
    ASSERT_EQ(adShrOtlGetMemberInfo(h, diet, &info), 0);
    EXPECT_EQ(info->ucHierarchyType, VTX_HIER_DYNAMIC) << "the member record reports the same";
    adShrOtlFreeMbrInfo(t.ctx(), 1, info);
    VTX_BOOL_T on = 0;
    ASSERT_EQ(adShrOtlGetAltHierarchyEnabled(h, product, &on), 0);
    EXPECT_EQ(on, 1);
    ASSERT_EQ(adShrOtlSetAltHierarchyEnabled(h, product, 0), 0);
    EXPECT_EQ(typeOf(product), VTX_HIER_STORED);
    EXPECT_EQ(typeOf(colas), VTX_HIER_DISABLED);
    EXPECT_UNCHANGED(VTX_STS_NOT_A_DIMENSION, adShrOtlSetAltHierarchyEnabled(h, colas, 1));
}

TEST_F(AggTest, CompressionDimension) {
    VTX_POTLMBR_T year = dim("Year");
    EXPECT_UNCHANGED(VTX_STS_ILLEGAL_OPERATION, adShrOtlSetASOCompressionDimension(h, year));
    build(74);
    EXPECT_UNCHANGED(VTX_STS_RELAXED_OLD_AGG, adShrOtlSetASOCompressionDimension(h, product));
    ASSERT_EQ(adShrOtlGetASOCompressionDimension(h, &got), 0);
    EXPECT_EQ(got, measures) << "before version 75 the accounts dimension";
    o->cOPGVersion = 75;
    ASSERT_EQ(adShrOtlGetASOCompressionDimension(h, &got), 0);
    EXPECT_EQ(got, nullptr) << "every dimension added at 75 or later is sparse";
    ASSERT_EQ(adShrOtlSetASOCompressionDimension(h, product), 0);
    ASSERT_EQ(adShrOtlSetASOCompressionDimension(h, market), 0);
    EXPECT_EQ(OTL_LARGE(market)->MbrInfo.usStorage, 0);
    EXPECT_EQ(OTL_LARGE(product)->MbrInfo.usStorage, 1) << "one dense dimension at a time";
    ASSERT_EQ(adShrOtlGetASOCompressionDimension(h, &got), 0);
    EXPECT_EQ(got, market);
}

TEST_F(AggTest, RenegadeMembers) {
    VTX_POTLMBR_T year = dim("Year");
    ASSERT_EQ(adShrOtlGetRenegadeMember(h, year, &got), 0);
    EXPECT_EQ(got, nullptr);
    VTX_POTLMBR_T jan = add(year, "Jan");
    EXPECT_UNCHANGED(VTX_STS_ILLEGAL_OPERATION, adShrOtlSetRenegadeMember(h, year, jan));
    build(80);
    EXPECT_UNCHANGED(VTX_STS_RELAXED_OLD_AGG, adShrOtlSetRenegadeMember(h, product, cola));
    EXPECT_EQ(adShrOtlGetRenegadeMember(h, product, &got), VTX_STS_RELAXED_OLD_AGG);
    o->cOPGVersion = 81;
    EXPECT_UNCHANGED(VTX_STS_RENEGADE_NOT_LEVEL0, adShrOtlSetRenegadeMember(h, product, colas));
    EXPECT_UNCHANGED(VTX_STS_RENEGADE_INVALID, adShrOtlSetRenegadeMember(h, product, east));
    EXPECT_UNCHANGED(VTX_STS_RENEGADE_SHARED, adShrOtlSetRenegadeMember(h, product, diet->pChild));
    ASSERT_EQ(adShrOtlSetMemberFormula(h, sales, "1;"), 0);
    EXPECT_UNCHANGED(VTX_STS_RENEGADE_FORMULA, adShrOtlSetRenegadeMember(h, measures, sales));
    ASSERT_EQ(adShrOtlSetRenegadeMember(h, product, cola), 0);
    ASSERT_EQ(adShrOtlSetRenegadeMember(h, market, east->pChild), 0);
    ASSERT_EQ(adShrOtlGetRenegadeMember(h, product, &got), 0);
    EXPECT_EQ(got, cola);
    // Deleting a subtree that holds it clears the setting of its dimension.
    ASSERT_EQ(adShrOtlDeleteMember(h, colas, 0, nullptr), 0);
    ASSERT_EQ(adShrOtlGetRenegadeMember(h, product, &got), 0);
    EXPECT_EQ(got, nullptr);
    ASSERT_EQ(adShrOtlGetRenegadeMember(h, market, &got), 0);
    EXPECT_NE(got, nullptr);
}

} // namespace
