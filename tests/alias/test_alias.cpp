// Alias tables and member aliases: table lifecycle, the uniqueness rules of
// an alias, finds by alias, and counts that stay with their tables.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "otl.h"
#include "membersupport.h"
#include "testctx.h"

using vtxtest::TestCtx;

namespace {

class AliasTest : public ::testing::Test {
protected:
    TestCtx t{true};
    VTX_HOUTLINE_T h = nullptr;
    VTX_POTL_T p = nullptr;
    VTX_POTLMBR_T year = nullptr, jan = nullptr, feb = nullptr, mar = nullptr;

    void make(VTX_USHORT_T type = 0, VTX_USHORT_T nameType = 0) {
        vtx_outlineinfo_t info{};
        info.usOutlineType = type;
        info.usOtlNameType = nameType;
        ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h, 0), 0);
        p = static_cast<VTX_POTL_T>(h);
        year = add(nullptr, "Year");
        jan = add(year, "Jan");
        feb = add(year, "Feb");
        mar = add(year, "Mar");
    }
    void SetUp() override { make(); }
    void TearDown() override {
        adShrOtlCloseOutline(h);
        EXPECT_EQ(t.stats().live, 0);
    }
    VTX_POTLMBR_T add(VTX_POTLMBR_T parent, const std::string &name) { return vtxtest::addMember(h, parent, name); }
    std::string alias(VTX_POTLMBR_T m, const char *table) {
        VTX_STR_T a = nullptr;
        EXPECT_EQ(adShrOtlGetMemberAlias(h, m, table, &a), 0);
        std::string s = a ? a : "";
        adShrOtlFree(t.ctx(), a);
        return s;
    }
    VTX_HMEMBER_T find(const char *a, const char *table) {
        VTX_HMEMBER_T m = nullptr;
        VTX_STS_T sts = table ? adShrOtlFindAlias(h, a, table, &m) : adShrOtlFindAliasAll(h, a, &m);
        if (sts) {
            EXPECT_EQ(sts, VTX_STS_NOT_FOUND);
        }
        return m;
    }
    // The counts recounted from the members.
    void expectCountsMatch() {
        for (unsigned tb = 0; tb < p->usNumAliasTables; ++tb) {
            VTX_ULONG_T n = 0;
            VTX_POTLMBR_T root = p->pHeadItem;
            for (VTX_POTLMBR_T m = root; m; m = otlNavtrdn(m, root))
                if (m->AliasArray && m->AliasArray[tb].pszDefName) ++n;
            EXPECT_EQ(p->aliasCounts[tb], n) << "table " << p->pAliasArray[tb];
        }
    }
};

} // namespace

TEST_F(AliasTest, TablesAreCreatedUnderTheirRulesWhateverACallbackAnswers) {
    ASSERT_EQ(adShrOtlCreateAliasTable(h, "German", 0), 0);
    EXPECT_EQ(adShrOtlCreateAliasTable(h, "GERMAN", 0), VTX_STS_ALIAS_TABLE_EXISTS) << "names ignore case";
    EXPECT_EQ(adShrOtlCreateAliasTable(h, "", 0), VTX_STS_BAD_ALIAS_TABLE_NAME);
    EXPECT_EQ(adShrOtlCreateAliasTable(h, std::string(125, 'x').c_str(), 0), VTX_STS_BAD_ALIAS_TABLE_NAME);
    EXPECT_EQ(adShrOtlCreateAliasTable(h, std::string(124, 'x').c_str(), 0), 0);
    EXPECT_EQ(adShrOtlCreateAliasTable(h, "Unique Name", 0), VTX_STS_BAD_ALIAS_TABLE_NAME);
    EXPECT_EQ(adShrOtlCreateAliasTable(h, "Member ID", 0), VTX_STS_BAD_ALIAS_TABLE_NAME);
    EXPECT_EQ(adShrOtlCreateAliasTable(h, "Loose", VTX_ALIAS_NOT_UNIQUE), VTX_STS_ALIAS_POLICY_AGG);
    // Members made before a table take aliases in it.
    ASSERT_EQ(adShrOtlSetMemberAlias(h, jan, "German", "Januar", 0, nullptr), 0);
    EXPECT_EQ(alias(jan, "German"), "Januar");
    // An outline of unique names stops at 56 tables.
    char name[16];
    for (int i = p->usNumAliasTables; i < 56; ++i) {
        std::snprintf(name, sizeof name, "T%d", i);
        ASSERT_EQ(adShrOtlCreateAliasTable(h, name, 0), 0) << i;
    }
    t.messages().clear();
    EXPECT_EQ(adShrOtlCreateAliasTable(h, "One too many", 0), VTX_STS_TOO_MANY_ALIAS_TABLES);
    EXPECT_EQ(t.messages().size(), 1u);
    EXPECT_EQ(p->usNumAliasTables, 56);
    EXPECT_EQ(alias(jan, "German"), "Januar");
    vtx_outlineinfo_t *info = nullptr;
    ASSERT_EQ(adShrOtlGetOutlineInfo(h, &info), 0);
    EXPECT_EQ(info->usNumAliasTables, 56);
    EXPECT_STREQ(info->pAliasTables[1], "German");
    adShrOtlFree(t.ctx(), info);
}

TEST_F(AliasTest, AnAliasIsNobodyElsesNameOrAliasInItsTable) {
    ASSERT_EQ(adShrOtlCreateAliasTable(h, "German", 0), 0);
    EXPECT_EQ(adShrOtlSetMemberAlias(h, jan, "Default", "Feb", 0, nullptr), VTX_STS_ALIAS_NOT_UNIQUE);
    EXPECT_EQ(adShrOtlSetMemberAlias(h, jan, "Default", "feb", 0, nullptr), VTX_STS_ALIAS_NOT_UNIQUE)
        << "a case-insensitive outline";
    EXPECT_EQ(adShrOtlSetMemberAlias(h, jan, "Default", "Jan", 0, nullptr), 0) << "its own name may stand";
    ASSERT_EQ(adShrOtlSetMemberAlias(h, jan, "Default", "January", 0, nullptr), 0);
    EXPECT_EQ(adShrOtlSetMemberAlias(h, feb, "Default", "January", 0, nullptr), VTX_STS_ALIAS_NOT_UNIQUE);
    ASSERT_EQ(adShrOtlSetMemberAlias(h, feb, "German", "January", 0, nullptr), 0) << "another table is free";
    EXPECT_EQ(adShrOtlSetMemberAlias(h, feb, "German", "", 0, nullptr), VTX_STS_ILLEGAL_ALIAS);
    EXPECT_EQ(adShrOtlSetMemberAlias(h, feb, "Nope", "x", 0, nullptr), VTX_STS_ALIAS_TABLE_NOT_FOUND);
    EXPECT_EQ(find("January", "Default"), jan);
    EXPECT_EQ(find("January", "German"), feb);
    EXPECT_EQ(find("January", nullptr), jan) << "all tables, in table order";
    EXPECT_EQ(find("Jan", "German"), nullptr);
    // A replaced alias leaves the index, and counts only once.
    ASSERT_EQ(adShrOtlSetMemberAlias(h, jan, "Default", "Jänner", 0, nullptr), 0);
    EXPECT_EQ(find("January", "Default"), nullptr);
    EXPECT_EQ(find("JÄNNER", "Default"), jan) << "multi-byte names fold too";
    expectCountsMatch();
    ASSERT_EQ(adShrOtlDeleteMemberAlias(h, jan, "Default"), 0);
    EXPECT_EQ(alias(jan, "Default"), "");
    EXPECT_EQ(find("Jänner", "Default"), nullptr);
    expectCountsMatch();
}

TEST_F(AliasTest, DeletingATableMovesTheTablesBehindIt) {
    for (const char *tb : {"A", "B", "C"}) ASSERT_EQ(adShrOtlCreateAliasTable(h, tb, 0), 0);
    ASSERT_EQ(adShrOtlSetMemberAlias(h, jan, "B", "jan-b", 0, nullptr), 0);
    ASSERT_EQ(adShrOtlSetMemberAlias(h, jan, "C", "jan-c", 0, nullptr), 0);
    ASSERT_EQ(adShrOtlSetMemberAlias(h, feb, "C", "feb-c", 0, nullptr), 0);
    ASSERT_EQ(adShrOtlSetAliasTableLanguage(h, "C", "de-AT"), 0);
    p->aDTSMbrs[0]->bIsEnabled = 1;
    std::strcpy(p->aDTSMbrs[0]->pAliasName[3], "HTD-C");
    EXPECT_EQ(adShrOtlDeleteAliasTable(h, "Default"), VTX_STS_ALIAS_TABLE_RESERVED);
    ASSERT_EQ(adShrOtlDeleteAliasTable(h, "B"), 0);
    ASSERT_EQ(p->usNumAliasTables, 3);
    EXPECT_STREQ(p->pAliasArray[2], "C");
    EXPECT_EQ(alias(jan, "C"), "jan-c");
    EXPECT_EQ(find("feb-c", "C"), feb);
    EXPECT_EQ(find("jan-b", nullptr), nullptr);
    EXPECT_STREQ(p->aDTSMbrs[0]->pAliasName[2], "HTD-C");
    VTX_ULONG_T n = 0;
    VTX_ALIASNAME_T *langs = nullptr;
    ASSERT_EQ(adShrOtlGetAliasTableLanguages(h, "C", &n, &langs), 0);
    ASSERT_EQ(n, 1u);
    EXPECT_STREQ(langs[0], "de-AT");
    adShrOtlFree(t.ctx(), langs);
    ASSERT_EQ(adShrOtlClearAliasTableLanguages(h, "C"), 0);
    ASSERT_EQ(adShrOtlGetAliasTableLanguages(h, "C", &n, &langs), 0);
    EXPECT_EQ(n, 0u);
    expectCountsMatch();
}

TEST_F(AliasTest, CopyRenameAndClear) {
    ASSERT_EQ(adShrOtlSetMemberAlias(h, jan, "Default", "January", 0, nullptr), 0);
    ASSERT_EQ(adShrOtlSetMemberAlias(h, feb, "Default", "February", 0, nullptr), 0);
    ASSERT_EQ(adShrOtlCopyAliasTable(h, "Default", "Long", 0), 0) << "a missing destination is made";
    EXPECT_EQ(alias(feb, "Long"), "February");
    EXPECT_EQ(adShrOtlCopyAliasTable(h, "Long", "long", 0), VTX_STS_SAME_ALIAS_TABLE);
    ASSERT_EQ(adShrOtlSetMemberAlias(h, mar, "Long", "March", 0, nullptr), 0);
    ASSERT_EQ(adShrOtlDeleteMemberAlias(h, feb, "Default"), 0);
    ASSERT_EQ(adShrOtlCopyAliasTable(h, "Default", "Long", 1), 0);
    EXPECT_EQ(alias(mar, "Long"), "March") << "a merge keeps what the source lacks";
    EXPECT_EQ(alias(feb, "Long"), "February");
    ASSERT_EQ(adShrOtlCopyAliasTable(h, "Default", "Long", 0), 0);
    EXPECT_EQ(alias(mar, "Long"), "") << "without a merge the destination starts empty";
    EXPECT_EQ(find("January", "Long"), jan);
    expectCountsMatch();

    EXPECT_EQ(adShrOtlRenameAliasTable(h, "Long", "default", 0), VTX_STS_ALIAS_TABLE_EXISTS);
    EXPECT_EQ(adShrOtlRenameAliasTable(h, "Long", "Member ID", 0), VTX_STS_ALIAS_TABLE_RESERVED);
    ASSERT_EQ(adShrOtlRenameAliasTable(h, "Long", "English", 0), 0);
    EXPECT_EQ(alias(jan, "English"), "January");
    ASSERT_EQ(adShrOtlClearAliasTable(h, "English"), 0);
    EXPECT_EQ(find("January", "English"), nullptr);
    EXPECT_EQ(find("January", "Default"), jan);
    expectCountsMatch();
}

TEST_F(AliasTest, FailedCallsLeaveTablesAndAliasesAsTheyWere) {
    ASSERT_EQ(adShrOtlSetMemberAlias(h, jan, "Default", "January", 0, nullptr), 0);
    struct Step { const char *what; std::function<VTX_STS_T()> call; };
    std::vector<Step> steps = {
        {"create", [&] { return adShrOtlCreateAliasTable(h, "German", 0); }},
        {"set", [&] { return adShrOtlSetMemberAlias(h, jan, "Default", "Janvier", 0, nullptr); }},
        {"copy", [&] { return adShrOtlCopyAliasTable(h, "Default", "French", 0); }},
    };
    for (auto &s : steps) {
        for (long n = 1; n < 40; ++n) {
            VTX_USHORT_T tables = p->usNumAliasTables;
            std::string before = alias(jan, "Default");
            t.failAt(n);
            VTX_STS_T sts = s.call();
            t.noFail();
            if (sts == 0) break;
            EXPECT_EQ(p->usNumAliasTables, tables) << s.what << " " << n;
            EXPECT_EQ(alias(jan, "Default"), before) << s.what << " " << n;
            EXPECT_EQ(find(before.c_str(), "Default"), jan) << s.what << " " << n;
        }
    }
    expectCountsMatch();
}

TEST_F(AliasTest, CountsStayWithTheirTablesThroughARandomMix) {
    std::mt19937 rng(2024);
    std::vector<VTX_POTLMBR_T> members{jan, feb, mar};
    for (int i = 0; i < 30; ++i) members.push_back(add(year, ("M" + std::to_string(i)).c_str()));
    std::vector<std::string> tables{"Default"};
    int made = 0;
    for (int step = 0; step < 400; ++step) {
        switch (rng() % 6) {
        case 0:
            if (tables.size() < 8) {
                std::string n = "T" + std::to_string(made++);
                ASSERT_EQ(adShrOtlCreateAliasTable(h, n.c_str(), 0), 0);
                tables.push_back(n);
            }
            break;
        case 1:
            if (tables.size() > 1) {
                size_t k = 1 + rng() % (tables.size() - 1);
                ASSERT_EQ(adShrOtlDeleteAliasTable(h, tables[k].c_str()), 0);
                tables.erase(tables.begin() + (long)k);
            }
            break;
        case 2:
            ASSERT_EQ(adShrOtlClearAliasTable(h, tables[rng() % tables.size()].c_str()), 0);
            break;
        case 3:
            if (members.size() > 5) {
                size_t k = rng() % members.size();
                ASSERT_EQ(adShrOtlDeleteMember(h, members[k], 0, nullptr), 0);
                members.erase(members.begin() + (long)k);
            }
            break;
        default: {
            VTX_POTLMBR_T m = members[rng() % members.size()];
            const std::string &tb = tables[rng() % tables.size()];
            std::string a = "a" + std::to_string(rng() % 50);
            VTX_STS_T sts = adShrOtlSetMemberAlias(h, m, tb.c_str(), a.c_str(), 0, nullptr);
            ASSERT_TRUE(sts == 0 || sts == VTX_STS_ALIAS_NOT_UNIQUE) << sts;
        }
        }
    }
    expectCountsMatch();
}

TEST_F(AliasTest, AQueryRecordAnswersOnlyWhatItsServerSent) {
    ASSERT_EQ(adShrOtlSetMemberAlias(h, jan, "Default", "January", 0, nullptr), 0);
    jan->ucFlags |= OTL_FLAG_QUERYMASK;
    VTX_STR_T a = nullptr;
    EXPECT_EQ(adShrOtlGetMemberAlias(h, jan, "Default", &a), VTX_STS_FIELD_NOT_FETCHED);
    EXPECT_EQ(a, nullptr);
    OTL_LARGE(jan)->ulBitmask[0] = 0x80000;
    EXPECT_EQ(adShrOtlGetMemberAlias(h, jan, "Default", &a), VTX_STS_FIELD_NOT_FETCHED) << "both words must allow it";
    OTL_LARGE(jan)->ulBitmask[1] = 0x400;
    ASSERT_EQ(adShrOtlGetMemberAlias(h, jan, "Default", &a), 0);
    EXPECT_STREQ(a, "January");
    adShrOtlFree(t.ctx(), a);
    jan->ucFlags &= ~OTL_FLAG_QUERYMASK;
}

// In an outline of duplicate names the "Unique Name" table answers the
// name that tells a member apart once the tree has changed since a save.
TEST_F(AliasTest, UniqueNameTableAnswersWorkedOutNamesAfterAChange) {
    adShrOtlCloseOutline(h);
    make(0, VTX_NAMES_DUP);
    VTX_POTLMBR_T q1 = add(year, "Q1");
    VTX_POTLMBR_T q2 = add(year, "Q2");
    VTX_POTLMBR_T jan1 = add(q1, "January");
    add(q2, "January");
    ASSERT_TRUE(p->ucStateFlag & OTL_STATE_SHAPE);
    EXPECT_EQ(alias(jan1, "Unique Name"), "[Q1].[January]");
    EXPECT_EQ(alias(q1, "Unique Name"), "") << "a name that does not repeat needs none";
    t.ctx()->bUseNonUniqueMbrIdKey = 1;
    EXPECT_NE(alias(jan1, "Unique Name").find("[Year]"), std::string::npos) << "the member-id form names the dimension";
    t.ctx()->bUseNonUniqueMbrIdKey = 0;
}

// The table of alternate member identifiers exists, follows its table's
// renames and goes with its table.
TEST_F(AliasTest, AlternateIdentifierTableFollowsItsTable) {
    VTX_ALIASNAME_T name;
    ASSERT_EQ(adShrOtlGetAltMemberIdAliasTable(h, name), 0);
    EXPECT_STREQ(name, "");
    EXPECT_EQ(adShrOtlSetAltMemberIdAliasTable(h, "Codes"), VTX_STS_ALIAS_TABLE_NOT_FOUND);
    ASSERT_EQ(adShrOtlCreateAliasTable(h, "Codes", 0), 0);
    ASSERT_EQ(adShrOtlCreateAliasTable(h, "Other", 0), 0);
    ASSERT_EQ(adShrOtlSetAltMemberIdAliasTable(h, "codes"), 0);
    ASSERT_EQ(adShrOtlGetAltMemberIdAliasTable(h, name), 0);
    EXPECT_STREQ(name, "Codes");  // the table's own spelling
    ASSERT_EQ(adShrOtlRenameAliasTable(h, "Codes", "Member codes", 0), 0);
    ASSERT_EQ(adShrOtlGetAltMemberIdAliasTable(h, name), 0);
    EXPECT_STREQ(name, "Member codes");
    ASSERT_EQ(adShrOtlDeleteAliasTable(h, "Other"), 0);
    ASSERT_EQ(adShrOtlGetAltMemberIdAliasTable(h, name), 0);
    EXPECT_STREQ(name, "Member codes");
    ASSERT_EQ(adShrOtlDeleteAliasTable(h, "Member codes"), 0);
    ASSERT_EQ(adShrOtlGetAltMemberIdAliasTable(h, name), 0);
    EXPECT_STREQ(name, "");
    EXPECT_EQ(p->altMbrIdAliasExist, 0);
}
