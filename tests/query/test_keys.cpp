// Member reads on an edit handle: generations, several records at once, the
// unique names, identifier keys and shortest keys of repeated names.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "otl.h"
#include "membersupport.h"
#include "testctx.h"
#include "vtxotlquery.h"

using vtxtest::TestCtx;

namespace {

class KeyTest : public ::testing::Test {
protected:
    TestCtx t{true};
    VTX_HOUTLINE_T h = nullptr;
    VTX_POTL_T p = nullptr;

    void make(VTX_USHORT_T nameType) {
        vtx_outlineinfo_t info{};
        info.usOtlNameType = nameType;
        ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h, 0), 0);
        p = static_cast<VTX_POTL_T>(h);
    }
    void TearDown() override {
        adShrOtlCloseOutline(h);
        EXPECT_EQ(t.stats().live, 0);
    }
    VTX_POTLMBR_T add(VTX_POTLMBR_T parent, const std::string &name) { return vtxtest::addMember(h, parent, name); }
    std::string uniqueName(VTX_POTLMBR_T m, bool stored = false, VTX_STS_T want = 0) {
        VTX_STR_T s = nullptr;
        VTX_STS_T sts = stored ? adShrOtlGetMemberUniqueName(h, m, &s) : adShrOtlConstructMemberUniqueName(h, m, &s);
        EXPECT_EQ(sts, want);
        std::string r = s ? s : "<null>";
        adShrOtlFree(t.ctx(), s);
        return r;
    }
    VTX_HMEMBER_T byPath(const std::string &path) {
        VTX_HMEMBER_T m = nullptr;
        EXPECT_EQ(adShrOtlFindMemberByPath(h, path.c_str(), VTX_FIND_ALL, &m), 0) << path;
        return m;
    }
};

// Year > Y1 > Jan, Year > Y2 > Jan, Year > Y2 > Q]1 > Jan
class DupKeys : public KeyTest {
protected:
    VTX_POTLMBR_T year, y1, y2, jan1, jan2, q, jan3, market;
    void SetUp() override {
        make(VTX_NAMES_DUP);
        year = add(nullptr, "Year");
        y1 = add(year, "Y1");
        jan1 = add(y1, "Jan");
        y2 = add(year, "Y2");
        jan2 = add(y2, "Jan");
        q = add(y2, "Q]1");
        jan3 = add(q, "Jan");
        market = add(nullptr, "Market");
    }
};

TEST_F(DupKeys, UniqueNamesClimbToTheFirstUnrepeatedAncestorAndFindTheirMember) {
    EXPECT_EQ(uniqueName(year), "Year");
    EXPECT_EQ(uniqueName(jan1), "[Y1].[Jan]");
    EXPECT_EQ(uniqueName(jan2), "[Y2].[Jan]");
    EXPECT_EQ(uniqueName(jan3), "[Q]]1].[Jan]");
    EXPECT_EQ(uniqueName(y1), "[Year].[Y1]");
    // Every unique name leads back to its own member.
    for (VTX_POTLMBR_T m : {jan1, jan2, jan3, y1, q}) EXPECT_EQ(byPath(uniqueName(m)), m) << uniqueName(m);
    // Once Y1 repeats too, the name of its Jan climbs to the dimension.
    add(market, "Y1");
    EXPECT_EQ(uniqueName(jan1), "[Year].[Y1].[Jan]");
    EXPECT_EQ(byPath(uniqueName(jan1)), jan1);
    // The root has none.
    EXPECT_EQ(uniqueName(p->pHeadItem), "<null>");
}

TEST_F(DupKeys, AStoredUniqueNameWinsOverOneBuiltNow) {
    VTX_USHORT_T t0 = 99;
    ASSERT_EQ(otlGetAliasIndexFromName(p, "Unique Name", &t0), 0);
    EXPECT_EQ(uniqueName(jan2, true), "[Y2].[Jan]");
    ASSERT_EQ(otlStrdup(t.ctx(), "[Year].[Y2].[Jan]", &jan2->AliasArray[t0].pszDefName), 0);
    // Edited since the names were stored: they may be stale.
    EXPECT_EQ(uniqueName(jan2, true), "[Y2].[Jan]");
    p->ucStateFlag &= (VTX_UCHAR_T)~OTL_STATE_SHAPE;
    EXPECT_EQ(uniqueName(jan2, true), "[Year].[Y2].[Jan]");
    EXPECT_EQ(uniqueName(jan1, true), "[Y1].[Jan]");
    EXPECT_EQ(uniqueName(jan2), "[Y2].[Jan]");
}

TEST_F(DupKeys, IdentifierKeysNameDimensionIdAndMember) {
    char key[VTX_MBRKEY_LEN];
    jan3->mbrId = 17;
    ASSERT_EQ(adShrOtlConstructMemberIDKey(h, jan3, key), 0);
    EXPECT_STREQ(key, "[Year].[17].[Jan]");
    ASSERT_EQ(adShrOtlConstructMemberIDKey(h, q, key), 0);
    EXPECT_EQ(std::string(key), "[Year].[" + std::to_string(q->mbrId) + "].[Q]]1]");
    ASSERT_EQ(adShrOtlConstructMemberIDKey(h, market, key), 0);
    EXPECT_EQ(std::string(key), "[Market].[" + std::to_string(market->mbrId) + "].[Market]");
    EXPECT_EQ(adShrOtlConstructMemberIDKey(h, jan3, nullptr), VTX_STS_NULL_ARG);
}

TEST_F(DupKeys, GenerationsAndSeveralRecordsAtOnce) {
    VTX_USHORT_T gen = 0;
    ASSERT_EQ(adShrOtlGetMemberGen(h, jan3, &gen), 0);
    EXPECT_EQ(gen, 4);
    ASSERT_EQ(adShrOtlGetMemberGen(h, year, &gen), 0);
    EXPECT_EQ(gen, 1);
    EXPECT_EQ(adShrOtlGetMemberGen(h, nullptr, &gen), VTX_STS_NULL_ARG);
    EXPECT_EQ(gen, 0);

    // One bad entry does not spoil the others.
    VTX_HMEMBER_T hs[3] = {jan1, nullptr, market};
    vtx_mbrinfo_t *infos[3] = {};
    VTX_STS_T sts[3] = {7, 7, 7};
    ASSERT_EQ(adShrOtlGetMemberInfoArray(h, 3, hs, infos, sts), 0);
    EXPECT_EQ(sts[0], 0);
    EXPECT_EQ(sts[1], VTX_STS_NULL_ARG);
    EXPECT_EQ(sts[2], 0);
    ASSERT_NE(infos[0], nullptr);
    EXPECT_EQ(infos[1], nullptr);
    ASSERT_NE(infos[2], nullptr);
    EXPECT_STREQ(infos[0]->szMember, "Jan");
    EXPECT_STREQ(infos[0]->szDimName, "Year");
    EXPECT_EQ(infos[0]->usGen, 3);
    EXPECT_STREQ(infos[2]->szMember, "Market");
    for (auto *i : infos) adShrOtlFreeMbrInfo(t.ctx(), 1, i);
    EXPECT_EQ(adShrOtlGetMemberInfoArray(h, 2, hs, nullptr, sts), VTX_STS_NULL_ARG);
    EXPECT_EQ(adShrOtlGetMemberInfoArray(h, 0, nullptr, nullptr, nullptr), 0);
}

// The shortest key, chosen by the duplicate-name marks verification leaves:
// the marks are set by hand so that each rule is reached on its own.
class ShortKeys : public KeyTest {
protected:
    VTX_POTLMBR_T d, g2, g3, g4, g5, g6;
    char key[VTX_MBRKEY_LEN];
    void SetUp() override {
        make(VTX_NAMES_DUP);
        d = add(nullptr, "D");
        g2 = add(d, "A2");
        g3 = add(g2, "A3");
        g4 = add(g3, "A]4");
        g5 = add(g4, "A5");
        g6 = add(g5, "N");
        p->ucStateFlag |= OTL_STATE_VERIFYING;
        for (VTX_POTLMBR_T m : {g2, g3, g4, g5, g6})
            m->ucNameUnique = OTL_NU_DUP | OTL_NU_IN_DIM | OTL_NU_AT_GEN | OTL_NU_AT_LEVEL;
    }
    std::string build(VTX_POTLMBR_T m, const vtx_genlevelnames_t *names = nullptr, VTX_STS_T want = 0) {
        std::memset(key, 'z', sizeof key);
        EXPECT_EQ(adShrOtlConstructMemberKey(h, d, names, m, key), want);
        return key;
    }
};

TEST_F(ShortKeys, EachRuleGivesItsForm) {
    EXPECT_EQ(build(g2), "[D].[A2]");
    EXPECT_EQ(build(g3), "[D].[A2].[A3]");
    g6->ucNameUnique = OTL_NU_DUP;  // repeats only in other dimensions
    EXPECT_EQ(build(g6), "[D]@[N]");
    g6->ucNameUnique = OTL_NU_DUP | OTL_NU_IN_DIM;
    g5->ucNameUnique = 0;
    EXPECT_EQ(build(g6), "[A5].[N]");
    g5->ucNameUnique = OTL_NU_IN_DIM;
    // A usable generation name, then a level name when the generation is taken.
    vtx_genlevelname_t nm[2] = {{1, 6, "Days"}, {0, 0, "Leaves"}};
    vtx_genlevelnames_t names{2, nm};
    EXPECT_EQ(build(g6, &names), "[D]@[Days]|[N]");
    g6->ucNameUnique |= OTL_NU_AT_GEN;
    EXPECT_EQ(build(g6, &names), "[D]@[Leaves]|[N]");
    g6->ucNameUnique |= OTL_NU_AT_LEVEL;
    // Nothing usable at the member: climb to A]4, whose name is unique in D.
    g4->ucNameUnique = OTL_NU_DUP;
    EXPECT_EQ(build(g6, &names), "[D]@[A]]4].[A5].[N]");
    // An ancestor with a usable generation name anchors the climb.
    g4->ucNameUnique = OTL_NU_DUP | OTL_NU_IN_DIM | OTL_NU_AT_LEVEL;
    vtx_genlevelname_t nm4[1] = {{1, 4, "Weeks"}};
    vtx_genlevelnames_t names4{1, nm4};
    EXPECT_EQ(build(g6, &names4), "[D]@[Weeks]|[A]]4].[A5].[N]");
    // With no names anywhere the climb reaches generation 2.
    g4->ucNameUnique = OTL_NU_DUP | OTL_NU_IN_DIM | OTL_NU_AT_GEN | OTL_NU_AT_LEVEL;
    EXPECT_EQ(build(g6), "[D].[A2].[A3].[A]]4].[A5].[N]");
    g3->ucNameUnique = 0;
    EXPECT_EQ(build(g6), "[A3].[A]]4].[A5].[N]");
}

TEST_F(ShortKeys, TheDimensionsOwnNamesServeWithoutACallerList) {
    auto *dl = OTL_LARGE(d);
    ASSERT_EQ(otlAlloc(t.ctx(), sizeof(VTX_NAMELIST_T), &dl->pNameList), 0);
    dl->pNameList->fGen = 1;
    dl->pNameList->usGenOrLevel = 6;
    ASSERT_EQ(otlStrdup(t.ctx(), "Days", &dl->pNameList->pszName), 0);
    g6->ucNameUnique = OTL_NU_DUP | OTL_NU_IN_DIM | OTL_NU_AT_LEVEL;
    EXPECT_EQ(build(g6), "[D]@[Days]|[N]");
    // A caller list replaces them.
    vtx_genlevelnames_t none{0, nullptr};
    EXPECT_EQ(build(g6, &none), "[D].[A2].[A3].[A]]4].[A5].[N]");
}

TEST_F(ShortKeys, RefusalsLeaveAnEmptyKey) {
    EXPECT_EQ(build(d, nullptr, VTX_STS_DIM_NOT_UNIQUE), "D");
    g5->ucNameUnique = OTL_NU_IN_DIM;  // marked as repeating, but no duplicate
    EXPECT_EQ(build(g5, nullptr, VTX_STS_KEY_NOT_DUPLICATE), "");
    p->ucStateFlag &= (VTX_UCHAR_T)~OTL_STATE_VERIFYING;
    EXPECT_EQ(build(g6, nullptr, VTX_STS_KEY_OUTSIDE_VERIFY), "");
    p->ucStateFlag |= OTL_STATE_WRITING;
    EXPECT_EQ(build(g6), "[D].[A2].[A3].[A]]4].[A5].[N]");
    VTX_POTLMBR_T other = add(nullptr, "E");
    EXPECT_EQ(adShrOtlConstructMemberKey(h, other, nullptr, g6, key), VTX_STS_NOT_A_DIMENSION);
    EXPECT_STREQ(key, "");
    EXPECT_EQ(adShrOtlConstructMemberKey(h, nullptr, nullptr, g6, key), VTX_STS_NULL_ARG);
}

TEST(ShortKeysLong, AKeyOverTheLimitIsRefusedWhole) {
    TestCtx t;
    vtx_outlineinfo_t info{};
    info.usOtlNameType = VTX_NAMES_DUP;
    VTX_HOUTLINE_T h = nullptr;
    ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h, 0), 0);
    auto *p = static_cast<VTX_POTL_T>(h);
    vtx_mbrinfo_t i{};
    std::strcpy(i.szMember, "D");
    VTX_HMEMBER_T d = nullptr, m = nullptr;
    ASSERT_EQ(adShrOtlAddDimension(h, &i, nullptr, nullptr, &d, nullptr), 0);
    VTX_HMEMBER_T parent = d;
    // Twenty names of 1000 bytes, each repeating everywhere: the climb
    // reaches the dimension and the key passes 16500 bytes.
    for (int g = 0; g < 20; ++g) {
        std::string name(1000, 'a' + g);
        std::strcpy(i.szMember, name.c_str());
        ASSERT_EQ(adShrOtlAddMember(h, &i, parent, nullptr, &m, 0, nullptr), 0);
        static_cast<VTX_POTLMBR_T>(m)->ucNameUnique = 0x0f;
        parent = m;
    }
    p->ucStateFlag |= OTL_STATE_VERIFYING;
    std::vector<char> key(VTX_MBRKEY_LEN, 'z');
    EXPECT_EQ(adShrOtlConstructMemberKey(h, d, nullptr, m, key.data()), VTX_STS_KEY_TOO_LONG);
    EXPECT_EQ(key[0], 0);
    adShrOtlCloseOutline(h);
    EXPECT_EQ(t.stats().live, 0);
}

TEST(UniqueNamesOom, EveryAllocationFailureIsAStatusAndLeavesNothing) {
    TestCtx t;
    vtx_outlineinfo_t info{};
    info.usOtlNameType = VTX_NAMES_DUP;
    VTX_HOUTLINE_T h = nullptr;
    ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h, 0), 0);
    vtx_mbrinfo_t i{};
    std::strcpy(i.szMember, "D");
    VTX_HMEMBER_T d = nullptr, a = nullptr, b = nullptr, j = nullptr;
    ASSERT_EQ(adShrOtlAddDimension(h, &i, nullptr, nullptr, &d, nullptr), 0);
    std::strcpy(i.szMember, "A");
    ASSERT_EQ(adShrOtlAddMember(h, &i, d, nullptr, &a, 0, nullptr), 0);
    std::strcpy(i.szMember, "B");
    ASSERT_EQ(adShrOtlAddMember(h, &i, d, nullptr, &b, 0, nullptr), 0);
    std::strcpy(i.szMember, "J");
    ASSERT_EQ(adShrOtlAddMember(h, &i, a, nullptr, &j, 0, nullptr), 0);
    ASSERT_EQ(adShrOtlAddMember(h, &i, b, nullptr, &j, 0, nullptr), 0);
    const long base = t.stats().live;
    for (long n = 1; n < 4; ++n) {
        t.failAt(n);
        VTX_STR_T s = nullptr;
        VTX_STS_T sts = adShrOtlGetMemberUniqueName(h, j, &s);
        t.noFail();
        if (sts == 0) {
            ASSERT_NE(s, nullptr);
            EXPECT_STREQ(s, "[B].[J]");
            adShrOtlFree(t.ctx(), s);
        } else {
            EXPECT_EQ(sts, VTX_STS_NO_MEMORY);
            EXPECT_EQ(s, nullptr);
        }
        EXPECT_EQ(t.stats().live, base);
    }
    adShrOtlCloseOutline(h);
    EXPECT_EQ(t.stats().live, 0);
}

} // namespace
