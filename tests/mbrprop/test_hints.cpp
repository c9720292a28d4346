// Query hints: the gates, rows that keep their members when the table
// widens, renumbering on delete, members leaving every hint when deleted,
// and failed growth that changes nothing.
#include <vector>

#include "propsupport.h"

using namespace edittest;
using proptest::PropTest;

namespace {

using Row = std::vector<VTX_HMEMBER_T>;

class HintTest : public PropTest {
protected:
    VTX_POTLMBR_T colas = nullptr, cola = nullptr, east = nullptr, boston = nullptr, jan = nullptr;
    void build(VTX_ULONG_T opgVersion = 0) {
        openAgg(opgVersion);
        colas = add(dim("Product"), "Colas");
        cola = add(colas, "Cola");
        east = add(dim("Market"), "East");
        boston = add(east, "Boston");
        jan = add(dim("Year"), "Jan");
    }
    Row hint(VTX_USHORT_T n) {
        Row v(o->queryHintSize, reinterpret_cast<VTX_HMEMBER_T>(1));
        EXPECT_EQ(adShrOtlGetQueryHint(h, n, o->queryHintSize, v.data()), 0);
        return v;
    }
};

TEST_F(HintTest, GatesAndRefusals) {
    VTX_HMEMBER_T one[] = {dim("Year")};
    EXPECT_UNCHANGED(VTX_STS_ILLEGAL_OPERATION, adShrOtlAddQueryHint(h, 1, one));
    build(74);
    VTX_HMEMBER_T members[] = {cola, boston}, none[] = {nullptr, nullptr}, root[] = {o->pHeadItem};
    EXPECT_UNCHANGED(VTX_STS_RELAXED_OLD_AGG, adShrOtlAddQueryHint(h, 2, members));
    o->cOPGVersion = 75;
    EXPECT_UNCHANGED(VTX_STS_BAD_QUERY_HINT, adShrOtlAddQueryHint(h, 0, members));
    EXPECT_UNCHANGED(VTX_STS_BAD_QUERY_HINT, adShrOtlAddQueryHint(h, 2, none));
    EXPECT_UNCHANGED(VTX_STS_ILLEGAL_OPERATION, adShrOtlAddQueryHint(h, 1, root));
    EXPECT_UNCHANGED(VTX_STS_BAD_SELECTOR, adShrOtlSetQueryHint(h, 1, 2, members));  // no row yet
    EXPECT_UNCHANGED(VTX_STS_BAD_SELECTOR, adShrOtlDeleteQueryHint(h, 1));
    // A member of another outline is no member of this one's hints.
    vtx_mbrinfo_t i = makeInfo("Elsewhere");
    vtx_outlineinfo_t info{};
    VTX_HOUTLINE_T other = nullptr;
    VTX_HMEMBER_T elsewhere = nullptr;
    ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &other, 0), 0);
    ASSERT_EQ(adShrOtlAddDimension(other, &i, nullptr, nullptr, &elsewhere, nullptr), 0);
    VTX_HMEMBER_T mixed[] = {cola, elsewhere};
    EXPECT_UNCHANGED(VTX_STS_BAD_PLACEMENT, adShrOtlAddQueryHint(h, 2, mixed));
    adShrOtlCloseOutline(other);
}

TEST_F(HintTest, TableWidensKeepingEveryRow) {
    build();
    VTX_HMEMBER_T first[] = {cola}, second[] = {colas, nullptr}, wide[] = {cola, boston, jan};
    ASSERT_EQ(adShrOtlAddQueryHint(h, 1, first), 0);
    ASSERT_EQ(adShrOtlAddQueryHint(h, 2, second), 0);
    ASSERT_EQ(adShrOtlAddQueryHint(h, 3, wide), 0);
    EXPECT_EQ(o->nmHints, 3);
    EXPECT_EQ(hint(1), (Row{cola, nullptr, nullptr}));
    EXPECT_EQ(hint(2), (Row{colas, nullptr, nullptr}));
    EXPECT_EQ(hint(3), (Row{cola, boston, jan}));
    // Replacing a row with a wider hint widens again, the others kept.
    VTX_HMEMBER_T wider[] = {nullptr, east, jan, cola};
    ASSERT_EQ(adShrOtlSetQueryHint(h, 2, 4, wider), 0);
    EXPECT_EQ(hint(1), (Row{cola, nullptr, nullptr, nullptr}));
    EXPECT_EQ(hint(2), (Row{nullptr, east, jan, cola}));
    EXPECT_EQ(hint(3), (Row{cola, boston, jan, nullptr}));
    VTX_HMEMBER_T buf[4] = {};
    EXPECT_EQ(adShrOtlGetQueryHint(h, 1, 3, buf), VTX_STS_TEXT_TOO_LONG);
    EXPECT_EQ(adShrOtlGetQueryHint(h, 4, 4, buf), VTX_STS_BAD_SELECTOR);
}

TEST_F(HintTest, DeleteRenumbersAndKeepsTheRows) {
    build();
    VTX_HMEMBER_T a[] = {cola}, b[] = {boston}, c[] = {jan};
    for (VTX_HMEMBER_T *row : {a, b, c}) ASSERT_EQ(adShrOtlAddQueryHint(h, 1, row), 0);
    ASSERT_EQ(adShrOtlDeleteQueryHint(h, 1), 0);
    EXPECT_EQ(o->nmHints, 2);
    EXPECT_EQ(hint(1), Row{boston});
    EXPECT_EQ(hint(2), Row{jan});
    // The freed row can be filled again by number without growing.
    const long live = liveBlocks(t, o);
    ASSERT_EQ(adShrOtlSetQueryHint(h, 3, 1, a), 0);
    EXPECT_EQ(liveBlocks(t, o), live);
    EXPECT_EQ(hint(3), Row{cola});
    EXPECT_UNCHANGED(VTX_STS_BAD_SELECTOR, adShrOtlSetQueryHint(h, 4, 1, a));
}

TEST_F(HintTest, DeletedMembersLeaveEveryHint) {
    build();
    VTX_HMEMBER_T a[] = {cola, boston}, b[] = {east, jan}, c[] = {colas};
    for (VTX_HMEMBER_T *row : {a, b}) ASSERT_EQ(adShrOtlAddQueryHint(h, 2, row), 0);
    ASSERT_EQ(adShrOtlAddQueryHint(h, 1, c), 0);
    ASSERT_EQ(adShrOtlDeleteMember(h, east, 0, nullptr), 0);  // Boston goes with it
    EXPECT_EQ(hint(1), (Row{cola, nullptr}));
    EXPECT_EQ(hint(2), (Row{nullptr, jan}));
    EXPECT_EQ(hint(3), (Row{colas, nullptr}));
}

TEST_F(HintTest, FailedGrowthChangesNothing) {
    build();
    VTX_HMEMBER_T a[] = {cola}, wide[] = {cola, boston, jan};
    EXPECT_EQ(walk([&] { return adShrOtlAddQueryHint(h, 1, a); }), 1);
    EXPECT_EQ(walk([&] { return adShrOtlAddQueryHint(h, 3, wide); }), 1);
    EXPECT_EQ(hint(1), (Row{cola, nullptr, nullptr}));
}

} // namespace
