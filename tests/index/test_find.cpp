// The exported finds: by name or alias, by identifier, by path, within a
// dimension, and the dimension of a member.
#include <gtest/gtest.h>

#include <string>

#include "handtree.h"
#include "vtxotlfind.h"

using idxtest::HandOutline;

namespace {

struct Found {
    VTX_STS_T sts;
    VTX_HMEMBER_T h;
};

Found findMember(HandOutline &t, const char *name) {
    Found f{0, reinterpret_cast<VTX_HMEMBER_T>(1)};
    f.sts = adShrOtlFindMember(t.o, name, &f.h);
    return f;
}

// Year (Q1 (Jan), Q2 (Jan)), Market (East)
struct DupOutline : HandOutline {
    VTX_POTLMBR_T year, q1, jan1, q2, jan2, market, east;
    DupOutline() : HandOutline(VTX_NAMES_DUP, false, 1000) {
        year = dim("Year");
        q1 = add(year, "Q1");
        jan1 = add(q1, "Jan");
        q2 = add(year, "Q2");
        jan2 = add(q2, "Jan");
        market = dim("Market");
        east = add(market, "East", VTX_SHARE_STORE, false);
        setAlias(east, 2, "M-17");
        setAlias(east, 3, "Oriente");
        (void)otlHashAddItem(ctx(), o, east, east, OTL_HASH_NONE, OTL_HASH_NONE);
    }
};

TEST(ExportedFind, NotFoundAndAmbiguousAre1060200WithANullHandle) {
    DupOutline t;
    t.ctx()->bSendMsgNet = 1;
    t.context().messages().clear();
    Found none = findMember(t, "Feb");
    EXPECT_EQ(none.sts, VTX_STS_NOT_FOUND);
    EXPECT_EQ(none.h, nullptr);
    Found two = findMember(t, "Jan");
    EXPECT_EQ(two.sts, VTX_STS_NOT_FOUND);
    EXPECT_EQ(two.h, nullptr);
    // One message each, naming the text.
    ASSERT_EQ(t.context().messages().size(), 2u);
    EXPECT_EQ(t.context().messages()[1].first, VTX_STS_NOT_FOUND);
    EXPECT_NE(t.context().messages()[1].second.find("Jan"), std::string::npos);
    EXPECT_EQ(findMember(t, "[Q2].[Jan]").h, t.jan2);
    EXPECT_EQ(findMember(t, "East").h, t.east);
    // Where names allow duplicates, an alias answers when no name does.
    EXPECT_EQ(findMember(t, "Oriente").h, t.east);
}

TEST(ExportedFind, UniverseMemberIsTheRoot) {
    HandOutline u;
    VTX_POTLMBR_T d = u.dim("Year");
    EXPECT_EQ(findMember(u, "Vantrix Universe Member").h, u.o->pHeadItem);
    EXPECT_EQ(findMember(u, "vantrix UNIVERSE member").h, u.o->pHeadItem);
    EXPECT_EQ(findMember(u, "Vantrix Universe").sts, VTX_STS_NOT_FOUND);
    // A member of that name comes first.
    VTX_POTLMBR_T named = u.add(d, "Vantrix Universe Member");
    EXPECT_EQ(findMember(u, "Vantrix Universe Member").h, named);
    DupOutline t;
    EXPECT_EQ(findMember(t, "Vantrix Universe Member").h, t.o->pHeadItem);
}

TEST(ExportedFind, OptionsIdentifiersAndPaths) {
    DupOutline t;
    VTX_POTLMBR_T shared = t.add(t.market, "Q1", VTX_SHARE_SHARED);
    VTX_HMEMBER_T h = nullptr;
    EXPECT_EQ(adShrOtlFindMemberEx(t.o, "[Market].[Q1]", VTX_FIND_ALL, &h), 0);
    EXPECT_EQ(h, shared);
    EXPECT_EQ(adShrOtlFindMemberEx(t.o, "Q1", VTX_FIND_UNSHARED, &h), 0);
    EXPECT_EQ(h, t.q1);

    EXPECT_EQ(adShrOtlFindMemberById(t.o, "m-17", VTX_FIND_ALL, &h), 0);
    EXPECT_EQ(h, t.east);
    EXPECT_EQ(adShrOtlFindMemberById(t.o, "M-18", VTX_FIND_ALL, &h), VTX_STS_NOT_FOUND);
    EXPECT_EQ(h, nullptr);
    HandOutline unique;
    EXPECT_EQ(adShrOtlFindMemberById(unique.o, "M-17", VTX_FIND_ALL, &h), VTX_STS_DUP_REQUIRED);

    EXPECT_EQ(adShrOtlFindMemberByPath(t.o, "[Year].[Q1].[Jan]", VTX_FIND_UNSHARED, &h), 0);
    EXPECT_EQ(h, t.jan1);
    EXPECT_EQ(adShrOtlFindMemberByPath(t.o, "[Year]@[Q2]", VTX_FIND_UNSHARED, &h), 0);
    EXPECT_EQ(h, t.q2);
    EXPECT_EQ(adShrOtlFindMemberByPath(t.o, "[Year].Q1", VTX_FIND_UNSHARED, &h), VTX_STS_PATH_NO_OPEN);
    EXPECT_EQ(adShrOtlFindMemberByPath(t.o, "[Year].[Q1", VTX_FIND_UNSHARED, &h), VTX_STS_PATH_UNCLOSED);
    EXPECT_EQ(adShrOtlFindMemberByPath(t.o, "[Year]Q1", VTX_FIND_UNSHARED, &h), VTX_STS_PATH_TRAILING);
    EXPECT_EQ(adShrOtlFindMemberByPath(t.o, "[Year].[Jan]", VTX_FIND_UNSHARED, &h), VTX_STS_NOT_FOUND);
    EXPECT_EQ(h, nullptr);
    // On an outline of unique names a path works the same.
    VTX_POTLMBR_T y = unique.dim("Year");
    VTX_POTLMBR_T q = unique.add(y, "Q1");
    EXPECT_EQ(adShrOtlFindMemberByPath(unique.o, "[Year].[Q1]", VTX_FIND_UNSHARED, &h), 0);
    EXPECT_EQ(h, q);
    EXPECT_EQ(adShrOtlFindMemberByPath(unique.o, "Q1", VTX_FIND_UNSHARED, &h), 0);
    EXPECT_EQ(h, q);
}

TEST(ExportedFind, WithinADimension) {
    DupOutline t;
    VTX_HMEMBER_T h = nullptr;
    EXPECT_EQ(adShrOtlFindMemberInDim(t.o, t.year, "Jan", 0, &h), VTX_STS_NOT_FOUND);
    EXPECT_EQ(adShrOtlFindMemberInDim(t.o, t.year, "Jan", 1, &h), 0);
    EXPECT_EQ(h, t.jan1);
    EXPECT_EQ(adShrOtlFindMemberInDim(t.o, t.market, "Jan", 1, &h), VTX_STS_NOT_FOUND);
    EXPECT_EQ(adShrOtlFindMemberInDim(t.o, t.q1, "Jan", 1, &h), VTX_STS_NOT_A_DIMENSION);
    EXPECT_EQ(adShrOtlFindMemberInDimension(t.o, "market", "East", &h), 0);
    EXPECT_EQ(h, t.east);
    EXPECT_EQ(adShrOtlFindMemberInDimension(t.o, "Year", "East", &h), VTX_STS_NOT_FOUND);
    EXPECT_EQ(adShrOtlFindMemberInDimension(t.o, "Nowhere", "East", &h), VTX_STS_NOT_FOUND);
    EXPECT_EQ(h, nullptr);

    EXPECT_EQ(adShrOtlFindDim(t.o, t.jan2, &h), 0);
    EXPECT_EQ(h, t.year);
    EXPECT_EQ(adShrOtlFindDim(t.o, t.market, &h), 0);
    EXPECT_EQ(h, t.market);
    EXPECT_EQ(adShrOtlFindDim(t.o, t.o->pHeadItem, &h), VTX_STS_NO_DIM_FOUND);
    EXPECT_EQ(h, nullptr);
    EXPECT_EQ(adShrOtlFindDim(nullptr, t.jan2, &h), VTX_STS_NULL_ARG);
}

TEST(ExportedFind, QueryHandlesAndHiddenMembers) {
    DupOutline t;
    VTX_HMEMBER_T h = nullptr;
    t.jan1->ucFlags2 |= OTL_FLAG2_HIDDEN;
    EXPECT_EQ(adShrOtlFindDim(t.o, t.jan1, &h), VTX_STS_SILENT);
    t.jan1->ucFlags2 &= static_cast<VTX_UCHAR_T>(~OTL_FLAG2_HIDDEN);
    t.o->fOpenQuery = 1;
    EXPECT_EQ(adShrOtlFindMemberEx(t.o, "East", VTX_FIND_ALL, &h), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlFindMember(t.o, "East", &h), 0);
    EXPECT_EQ(h, t.east);
    t.o->fOpenQuery = 0;
}

} // namespace
