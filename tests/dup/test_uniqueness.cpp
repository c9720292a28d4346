// The uniqueness rules of an outline of duplicate names, grouped by rule:
// among siblings, against dimension names, inside a dimension that wants
// unique names, at a generation marked unique; the counts of a repeated
// name through add, rename and delete; the state a verification leaves; and
// the dimension-name filter of each outline.
#include <cstring>
#include <string>

#include "editsupport.h"
#include "otlHashItemsFactoryWrapper.h"

using edittest::EditTest;
using edittest::Spec;

namespace {

class DupTest : public EditTest {
protected:
    VTX_POTLMBR_T market = nullptr, east = nullptr, west = nullptr, product = nullptr;
    void SetUp() override {
        openDup();
        market = dim("Market");
        east = add(market, "East");
        west = add(market, "West");
        product = dim("Product");
    }
    VTX_ULONG_T dupCount(const char *name) {
        VTX_ULONG_T n = 0;
        return otlIsNameDuplicated(t.ctx(), o, name, 0, &n) ? n : 0;
    }
    // A generation or level of d that demands unique names, in the record
    // as a load would leave it; freed with the outline.
    void markUnique(VTX_POTLMBR_T d, bool gen, VTX_USHORT_T number) {
        VTX_PNAMELIST_T n = nullptr;
        ASSERT_EQ(otlAlloc(t.ctx(), sizeof *n, &n), 0);
        std::memset(n, 0, sizeof *n);
        std::string name = std::string(gen ? "UniqueGen" : "UniqueLev") + std::to_string(number);
        ASSERT_EQ(otlStrdup(t.ctx(), name.c_str(), &n->pszName), 0);
        n->fGen = gen;
        n->usGenOrLevel = number;
        n->fUniqueName = 1;
        n->pNext = OTL_LARGE(d)->pNameList;
        OTL_LARGE(d)->pNameList = n;
    }
};

TEST_F(DupTest, SameNameUnderTwoParents) {
    VTX_POTLMBR_T b1 = add(east, "Boston");
    VTX_POTLMBR_T b2 = add(west, "Boston");
    ASSERT_TRUE(b1 && b2);
    EXPECT_EQ(dupCount("Boston"), 1u);
    EXPECT_EQ(dupCount("BOSTON"), 1u);  // names fold case here
    // Among siblings a name stays unique, in any case, by add, rename and move.
    EXPECT_REFUSED(VTX_STS_SIBLING_NOT_UNIQUE, tryAdd(east, "boston"));
    VTX_POTLMBR_T nyc = add(east, "New York");
    EXPECT_REFUSED(VTX_STS_SIBLING_NOT_UNIQUE, adShrOtlRenameMember(h, nyc, "Boston", 0, nullptr));
    EXPECT_REFUSED(VTX_STS_SIBLING_NOT_UNIQUE, adShrOtlMoveMember(h, b2, east, nullptr, nullptr));
    EXPECT_EQ(dupCount("Boston"), 1u);
    // A third owner at another depth.
    VTX_POTLMBR_T b3 = add(nyc, "Boston");
    ASSERT_TRUE(b3);
    EXPECT_EQ(dupCount("Boston"), 2u);
}

TEST_F(DupTest, NamesOfDimensions) {
    // No member may bear a dimension's name, in any dimension or case.
    EXPECT_REFUSED(VTX_STS_DUP_WITH_DIM, tryAdd(east, "product"));
    VTX_POTLMBR_T x = add(product, "Widget");
    EXPECT_REFUSED(VTX_STS_DUP_WITH_DIM, adShrOtlRenameMember(h, x, "MARKET", 0, nullptr));
    // A dimension may not take a name a member bears.
    add(east, "Boston");
    EXPECT_REFUSED(VTX_STS_DIM_NOT_UNIQUE, adShrOtlRenameMember(h, product, "Boston", 0, nullptr));
    EXPECT_EQ(adShrOtlRenameMember(h, product, "Goods", 0, nullptr), 0);
    // Its old name is free again.
    EXPECT_EQ(tryAdd(east, "Product"), 0);
}

TEST_F(DupTest, SameNameInTwoDimensions) {
    EXPECT_EQ(tryAdd(east, "Total"), 0);
    EXPECT_EQ(tryAdd(product, "Total"), 0);
    EXPECT_EQ(dupCount("Total"), 1u);
    // A dimension that wants unique names refuses a second owner inside it,
    // whatever the other dimensions hold.
    product->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_DUP;
    VTX_POTLMBR_T kit = add(product, "Kit");
    EXPECT_REFUSED(VTX_STS_UNIQUE_IN_DIM, tryAdd(kit, "Total"));
    VTX_POTLMBR_T part = add(kit, "Part");
    EXPECT_REFUSED(VTX_STS_UNIQUE_IN_DIM, adShrOtlRenameMember(h, part, "total", 0, nullptr));
    EXPECT_EQ(tryAdd(kit, "Boston"), 0);  // the first owner in this dimension
    EXPECT_EQ(tryAdd(west, "Boston"), 0);  // Market allows duplicates
}

TEST_F(DupTest, GenerationMarkedUnique) {
    markUnique(market, true, 3);
    VTX_POTLMBR_T b1 = add(east, "Boston");  // generation 3
    EXPECT_REFUSED(VTX_STS_UNIQUE_AT_GEN, tryAdd(west, "Boston"));
    VTX_POTLMBR_T cam = add(west, "Cambridge");
    EXPECT_REFUSED(VTX_STS_UNIQUE_AT_GEN, adShrOtlRenameMember(h, cam, "BOSTON", 0, nullptr));
    // Generation 4 wants no such thing.
    VTX_POTLMBR_T b4 = nullptr;
    EXPECT_EQ(tryAdd(cam, "Boston", Spec{}, &b4), 0);
    EXPECT_EQ(dupCount("Boston"), 1u);
    // Nor may it move up into generation 3.
    EXPECT_REFUSED(VTX_STS_UNIQUE_AT_GEN, adShrOtlMoveMember(h, b4, west, nullptr, nullptr));
    // Once the first owner leaves generation 3 the name is free there.
    ASSERT_EQ(adShrOtlRenameMember(h, b1, "Worcester", 0, nullptr), 0);
    EXPECT_EQ(dupCount("Boston"), 0u);
    EXPECT_EQ(tryAdd(west, "Boston"), 0);
    EXPECT_EQ(dupCount("Boston"), 1u);
}

TEST_F(DupTest, CountsDownUntilUniqueAgain) {
    VTX_POTLMBR_T a = add(east, "Boston");
    VTX_POTLMBR_T b = add(west, "Boston");
    VTX_POTLMBR_T c = add(product, "Boston");
    EXPECT_EQ(dupCount("Boston"), 2u);
    // A verification marks every owner.
    ASSERT_EQ(otlVerifySetDupMbrArry(o), 0);
    ASSERT_EQ(otlVerifySetNonUniqueName(o, nullptr, nullptr), 0);
    for (VTX_POTLMBR_T m : {a, b, c}) {
        EXPECT_TRUE(m->ucFlags & OTL_FLAG_DUP);
        EXPECT_TRUE(m->ucNameUnique & OTL_NU_DUP);
    }
    ASSERT_EQ(adShrOtlRenameMember(h, c, "Springfield", 0, nullptr), 0);
    EXPECT_EQ(dupCount("Boston"), 1u);
    EXPECT_FALSE(c->ucFlags & OTL_FLAG_DUP);  // its new name is its own
    ASSERT_EQ(adShrOtlDeleteMember(h, b, 0, nullptr), 0);
    EXPECT_EQ(dupCount("Boston"), 0u);
    EXPECT_FALSE(otlIsNameDuplicated(t.ctx(), o, "Boston", 0, nullptr));
    // The last owner is a plain member again.
    EXPECT_FALSE(a->ucFlags & OTL_FLAG_DUP);
    EXPECT_EQ(a->ucNameUnique, 0);
    // And the name can repeat again from scratch.
    EXPECT_EQ(tryAdd(product, "boston"), 0);
    EXPECT_EQ(dupCount("Boston"), 1u);
}

TEST_F(DupTest, VerificationState) {
    VTX_POTLMBR_T ma = add(east, "Boston");
    VTX_POTLMBR_T mb = add(west, "Boston");
    VTX_POTLMBR_T deep = add(mb, "Salem");
    VTX_POTLMBR_T salem = add(east, "Salem");
    VTX_POTLMBR_T pb = add(product, "Boston");
    VTX_POTLMBR_T lone = add(product, "Lone");
    ASSERT_EQ(otlVerifySetDupMbrArry(o), 0);
    VTX_PDUPMBRARRY_T arr = o->pDupMbrArry;
    ASSERT_NE(arr, nullptr);
    ASSERT_EQ(arr[0].ucArrySize, 2);
    EXPECT_EQ(arr[0].ulDupCount, 4u);  // two Bostons, two Salems
    EXPECT_EQ(arr[1].ulDupCount, 1u);  // Product's Boston
    EXPECT_EQ(arr[0].pDimNonUnique[0] & 0x01, 0x01);
    EXPECT_EQ(arr[1].pDimNonUnique[0] & 0x01, 0);  // nothing repeats inside Product
    EXPECT_EQ(arr[0].pDimNonUnique[3] & 0x02, 0x02);  // the Bostons at generation 3
    EXPECT_EQ(arr[0].pDimNonUnique[0] & 0x04, 0x04);  // the Salems at level 0
    EXPECT_EQ(ma->ucNameUnique, OTL_NU_DUP | OTL_NU_IN_DIM | OTL_NU_AT_GEN);
    EXPECT_EQ(deep->ucNameUnique, OTL_NU_DUP | OTL_NU_IN_DIM | OTL_NU_AT_LEVEL);
    EXPECT_EQ(salem->ucNameUnique, OTL_NU_DUP | OTL_NU_IN_DIM | OTL_NU_AT_LEVEL);
    EXPECT_EQ(pb->ucNameUnique, OTL_NU_DUP);
    EXPECT_EQ(lone->ucNameUnique, 0);
    // Nothing demands unique names yet.
    VTX_POUTERROR_T errs = nullptr;
    VTX_ULONG_T n = 0;
    EXPECT_EQ(otlVerifyNameUniqueness(o, &errs, &n), 0u);
    EXPECT_EQ(n, 0u);

    // Level 0 of Market demands unique names: both Salems break it.
    markUnique(market, false, 0);
    ASSERT_EQ(otlVerifySetDupMbrArry(o), 0);
    arr = o->pDupMbrArry;
    EXPECT_EQ(arr[0].pDimNonUnique[0] & 0x80, 0x80);
    EXPECT_EQ(otlVerifyNameUniqueness(o, &errs, &n), 2u);
    ASSERT_EQ(n, 2u);
    for (VTX_ULONG_T i = 0; i < n; ++i) {
        EXPECT_TRUE(errs[i].hMember == deep || errs[i].hMember == salem);
        EXPECT_EQ(errs[i].ulErrors4, 0x10u);
    }
    // Generation 3 as well: the Bostons are the generation's fault.
    markUnique(market, true, 3);
    ASSERT_EQ(otlVerifySetDupMbrArry(o), 0);
    EXPECT_EQ(otlVerifyNameUniqueness(o, &errs, &n), 4u);
    EXPECT_EQ(n, 4u);  // the Salems merge into their entries
    for (VTX_ULONG_T i = 0; i < n; ++i) {
        if (errs[i].hMember == ma || errs[i].hMember == mb) {
            EXPECT_EQ(errs[i].ulErrors4, 0x8u);
        }
    }
    otlFreeMem(t.ctx(), errs);
    errs = nullptr;
    n = 0;
    // A dimension that wants unique names faults every member listed in it.
    product->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_DUP;
    ASSERT_EQ(otlVerifySetDupMbrArry(o), 0);
    EXPECT_EQ(o->pDupMbrArry[1].pDimNonUnique[0] & 0x20, 0x20);
    EXPECT_EQ(otlVerifyNameUniqueness(o, &errs, &n), 5u);
    bool sawProduct = false;
    for (VTX_ULONG_T i = 0; i < n; ++i)
        if (errs[i].hMember == pb) {
            sawProduct = true;
            EXPECT_EQ(errs[i].ulErrors4, 0x4u);
        }
    EXPECT_TRUE(sawProduct);
    otlFreeMem(t.ctx(), errs);
}

// What the exported name tests answer, before and after a verification's
// state exists, and the dimension's own rule.
TEST_F(DupTest, NameTestsAndDimensionUniqueness) {
    add(east, "Boston");
    VTX_POTLMBR_T mb = add(west, "Boston");
    add(mb, "Salem");
    add(east, "Salem");
    VTX_POTLMBR_T lone = add(product, "Lone");
    VTX_BOOL_T b = 0;
    EXPECT_EQ(adShrOtlIsMemberNameDuplicate(h, "boston", &b), 0);
    EXPECT_EQ(b, 1);
    EXPECT_EQ(adShrOtlIsMemberNameDuplicate(h, "Lone", &b), 0);
    EXPECT_EQ(b, 0);
    // Before a verification everything reads unique.
    EXPECT_EQ(adShrOtlIsMemberNameUniqueWithinDim(h, market, &b), 0);
    EXPECT_EQ(b, 1);
    EXPECT_REFUSED(VTX_STS_NOT_A_DIMENSION, adShrOtlIsMemberNameUniqueWithinDim(h, east, &b));
    ASSERT_EQ(otlVerifySetDupMbrArry(o), 0);
    EXPECT_EQ(adShrOtlIsMemberNameUniqueWithinDim(h, market, &b), 0);
    EXPECT_EQ(b, 0);
    EXPECT_EQ(adShrOtlIsMemberNameUniqueWithinDim(h, product, &b), 0);
    EXPECT_EQ(b, 1);
    EXPECT_EQ(adShrOtlIsMemberNameUniqueWithinDimAtGenLevel(h, market, 1, 3, &b), 0);
    EXPECT_EQ(b, 0);  // the Bostons
    EXPECT_EQ(adShrOtlIsMemberNameUniqueWithinDimAtGenLevel(h, market, 0, 0, &b), 0);
    EXPECT_EQ(b, 0);  // the Salems
    EXPECT_EQ(adShrOtlIsMemberNameUniqueWithinDimAtGenLevel(h, market, 1, 4, &b), 0);
    EXPECT_EQ(b, 1);
    EXPECT_EQ(adShrOtlIsMemberNameUniqueWithinDimAtGenLevel(h, market, 1, 200, &b), 0);
    EXPECT_EQ(b, 1);
    VTX_ULONG_T count = 0;
    EXPECT_EQ(adShrOtlGetCountOfDupMemberNameInDim(h, market, &count), 0);
    EXPECT_EQ(count, 4u);

    // Market cannot demand unique names while Boston repeats in it.
    EXPECT_EQ(adShrOtlGetDimensionNameUniqueness(h, market, &b), 0);
    EXPECT_EQ(b, 0);
    EXPECT_REFUSED(VTX_STS_UNIQUE_IN_DIM, adShrOtlSetDimensionNameUniqueness(h, market, 1));
    EXPECT_EQ(adShrOtlGetDimensionNameUniqueness(h, market, &b), 0);
    EXPECT_EQ(b, 0);
    // Product can, and may allow repeats again.
    EXPECT_EQ(adShrOtlSetDimensionNameUniqueness(h, product, 1), 0);
    EXPECT_EQ(adShrOtlGetDimensionNameUniqueness(h, product, &b), 0);
    EXPECT_EQ(b, 1);
    EXPECT_REFUSED(VTX_STS_UNIQUE_IN_DIM, tryAdd(lone, "Lone"));
    EXPECT_EQ(adShrOtlSetDimensionNameUniqueness(h, product, 0), 0);
    EXPECT_EQ(adShrOtlGetDimensionNameUniqueness(h, product, &b), 0);
    EXPECT_EQ(b, 0);
}

TEST_F(DupTest, VerificationStateWithoutMemory) {
    add(east, "Boston");
    add(west, "Boston");
    ASSERT_EQ(otlVerifySetDupMbrArry(o), 0);
    ASSERT_NE(o->pDupMbrArry, nullptr);
    t.failAt(1);
    EXPECT_NE(otlVerifySetDupMbrArry(o), 0);
    t.noFail();
    // No half-built state is left behind, and a later verification works.
    EXPECT_EQ(o->pDupMbrArry, nullptr);
    EXPECT_EQ(otlVerifyNameUniqueness(o, nullptr, nullptr), 0u);
    ASSERT_EQ(otlVerifySetDupMbrArry(o), 0);
    EXPECT_EQ(o->pDupMbrArry[0].ulDupCount, 2u);
}

TEST_F(DupTest, CaseSensitiveSpellingsCountApart) {
    vtx_outlineinfo_t info{};
    info.usOtlNameType = VTX_NAMES_DUP;
    info.fCaseSensitive = 1;
    open(info);
    VTX_POTLMBR_T m = dim("Market");
    VTX_POTLMBR_T e = add(m, "East");
    VTX_POTLMBR_T w = add(m, "West");
    add(e, "Boston");
    add(e, "boston");  // another name among siblings here
    EXPECT_EQ(dupCount("Boston"), 0u);
    add(w, "Boston");
    VTX_POTLMBR_T lower = add(w, "boston");
    EXPECT_EQ(dupCount("Boston"), 1u);
    EXPECT_EQ(dupCount("boston"), 1u);
    EXPECT_EQ(dupCount("BOSTON"), 0u);
    ASSERT_EQ(adShrOtlDeleteMember(h, lower, 0, nullptr), 0);
    EXPECT_EQ(dupCount("boston"), 0u);
    EXPECT_EQ(dupCount("Boston"), 1u);
}

TEST(DupNameIndex, SortedSearchAndPlaces) {
    vtxtest::TestCtx t;
    char apr[] = "Apr", jan[] = "Jan", mar[] = "Mar";
    VTX_OTLDUPNAME_T recs[4]{};
    recs[0].pszString = apr;
    recs[1].pszString = jan;
    recs[2].pszString = mar;  // recs[3] has no text
    EXPECT_EQ(otlGetHashDupNameIndex(t.ctx(), "JAN", recs, 3), 1);
    EXPECT_EQ(otlGetHashDupNameIndex(t.ctx(), "apr", recs, 3), 0);
    EXPECT_EQ(otlGetHashDupNameIndex(t.ctx(), "mar", recs, 3), 2);
    EXPECT_EQ(otlGetHashDupNameIndex(t.ctx(), "Aaa", recs, 3), 0);
    EXPECT_EQ(otlGetHashDupNameIndex(t.ctx(), "Feb", recs, 3), 1);
    EXPECT_EQ(otlGetHashDupNameIndex(t.ctx(), "Jun", recs, 3), 2);
    EXPECT_EQ(otlGetHashDupNameIndex(t.ctx(), "Zed", recs, 3), 3);  // before the record without text
    EXPECT_EQ(otlGetHashDupNameIndex(t.ctx(), "Zed", recs, 2), 3);  // past the end searched
    EXPECT_EQ(otlGetHashDupNameIndex(t.ctx(), "Jan", recs, -1), 0);
}

TEST_F(DupTest, SharedMemberIsAlwaysLegal) {
    markUnique(market, true, 3);
    VTX_POTLMBR_T b = add(east, "Boston");
    VTX_POTLMBR_T top = add(market, "Top", label());
    VTX_POTLMBR_T s = add(top, "Boston", shared());
    ASSERT_TRUE(b && s);
    EXPECT_EQ(dupCount("Boston"), 0u);  // a shared member is no second owner
    ASSERT_EQ(otlVerifySetDupMbrArry(o), 0);
    VTX_BOOL_T fDim = 1, fGen = 1;
    EXPECT_TRUE(otlIsItemDupNameLegal(t.ctx(), o, s, 0xff, &fDim, &fGen));
    EXPECT_FALSE(fDim);
    EXPECT_FALSE(fGen);
    EXPECT_TRUE(otlIsItemDupNameLegal(t.ctx(), o, b, b->ucNameUnique, &fDim, &fGen));
}

TEST_F(DupTest, DimensionFilterIsPerOutline) {
    vtx_outlineinfo_t info{};
    info.usOtlNameType = VTX_NAMES_DUP;
    VTX_HOUTLINE_T h2 = nullptr;
    ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h2, 0), 0);
    VTX_POTL_T o2 = static_cast<VTX_POTL_T>(h2);
    vtx_mbrinfo_t mi = edittest::makeInfo("Scenario");
    VTX_HMEMBER_T scen = nullptr;
    ASSERT_EQ(adShrOtlAddDimension(h2, &mi, VTX_HPREV_LAST64, nullptr, &scen, nullptr), 0);

    otlIsNameDupAmongDimensionsBloomFilterLoadDimNames(o);
    EXPECT_TRUE(otlIsNameDupAmongDimensionsBloomFilterActive(o));
    EXPECT_FALSE(otlIsNameDupAmongDimensionsBloomFilterActive(o2));
    // The second outline, never loaded, still compares with its dimensions.
    VTX_POTLMBR_T found = nullptr;
    EXPECT_TRUE(otlIsNameDupAmongDimensions(o2, "scenario", 0, &found));
    EXPECT_EQ(found, scen);
    vtx_mbrinfo_t clash = edittest::makeInfo("Scenario");
    VTX_POTLMBR_T d2 = static_cast<VTX_POTLMBR_T>(scen);
    VTX_HMEMBER_T out = nullptr;
    EXPECT_EQ(adShrOtlAddMember(h2, &clash, d2, VTX_HPREV_LAST32, &out, 0, nullptr), VTX_STS_DUP_WITH_DIM);

    // While loaded, a new dimension and a renamed one enter the filter.
    VTX_POTLMBR_T time = dim("Time");
    EXPECT_TRUE(otlIsNameDupAmongDimensionsBloomFilter(o, "TIME"));
    EXPECT_REFUSED(VTX_STS_DUP_WITH_DIM, tryAdd(east, "Time"));
    ASSERT_EQ(adShrOtlRenameMember(h, time, "Calendar", 0, nullptr), 0);
    EXPECT_TRUE(otlIsNameDupAmongDimensionsBloomFilter(o, "Calendar"));
    EXPECT_REFUSED(VTX_STS_DUP_WITH_DIM, tryAdd(east, "calendar"));
    // A name the filter does not hold leaves the caller's member alone.
    found = east;
    std::string miss;
    for (int i = 0; i < 10000 && miss.empty(); ++i) {
        std::string cand = "x" + std::to_string(i);
        if (!otlIsNameDupAmongDimensionsBloomFilter(o, cand.c_str())) miss = cand;
    }
    ASSERT_FALSE(miss.empty());
    EXPECT_FALSE(otlIsNameDupAmongDimensions(o, miss.c_str(), 0, &found));
    EXPECT_EQ(found, east);
    otlIsNameDupAmongDimensionsBloomFilterClear(o);
    EXPECT_FALSE(otlIsNameDupAmongDimensionsBloomFilterActive(o));
    adShrOtlCloseOutline(h2);
}

TEST_F(DupTest, UniqueOutlineRefusesAnyRepeat) {
    open();
    VTX_POTLMBR_T m = dim("Market");
    VTX_POTLMBR_T e = add(m, "East");
    VTX_POTLMBR_T w = add(m, "West");
    add(e, "Boston");
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, tryAdd(w, "boston"));
    VTX_POTLMBR_T s = add(w, "Salem");
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, adShrOtlRenameMember(h, s, "Boston", 0, nullptr));
    EXPECT_FALSE(otlIsNameDuplicated(t.ctx(), o, "Boston", 0, nullptr));
}

} // namespace
