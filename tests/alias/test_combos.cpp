// Alias combinations and aliases of tables without uniqueness: what they
// refuse, how finds see them, and that they go with their member and table.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "otl.h"
#include "membersupport.h"
#include "testctx.h"

using vtxtest::TestCtx;

namespace {

class ComboTest : public ::testing::Test {
protected:
    TestCtx t{true};
    VTX_HOUTLINE_T h = nullptr;
    VTX_POTL_T p = nullptr;
    VTX_POTLMBR_T year, q1, jan, feb, measures, sales, cost;

    void make(VTX_USHORT_T type) {
        vtx_outlineinfo_t info{};
        info.usOutlineType = type;
        ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h, 0), 0);
        p = static_cast<VTX_POTL_T>(h);
        year = add(nullptr, "Year");
        q1 = add(year, "Q1");
        jan = add(q1, "Jan");
        feb = add(q1, "Feb, late");
        measures = add(nullptr, "Measures");
        sales = add(measures, "Sales");
        cost = add(measures, "Cost");
    }
    void SetUp() override { make(0); }
    void TearDown() override {
        adShrOtlCloseOutline(h);
        EXPECT_EQ(t.stats().live, 0);
    }
    VTX_POTLMBR_T add(VTX_POTLMBR_T parent, const std::string &name) { return vtxtest::addMember(h, parent, name); }
    VTX_HMEMBER_T find(const char *a, const char *table) {
        VTX_HMEMBER_T m = nullptr;
        VTX_STS_T sts = table ? adShrOtlFindAlias(h, a, table, &m) : adShrOtlFindAliasAll(h, a, &m);
        if (sts) {
            EXPECT_EQ(sts, VTX_STS_NOT_FOUND);
        }
        return m;
    }
    // Every combination the alias stands for, in order.
    std::vector<std::string> combos(VTX_POTLMBR_T m, const char *table, const char *a) {
        std::vector<std::string> out;
        VTX_STR_T c = nullptr;
        while (adShrOtlGetNextAliasCombination(h, m, table, a, &c) == 0 && c) out.emplace_back(c);
        return out;
    }
};

using Strings = std::vector<std::string>;

} // namespace

TEST_F(ComboTest, ACombinationIsFoundAsItsMemberAndWalkedInOrder) {
    ASSERT_EQ(adShrOtlAddAliasCombination(h, sales, "Default", "Q1 Sales", "Q1"), 0);
    ASSERT_EQ(adShrOtlAddAliasCombination(h, sales, "Default", "q1 sales", "[Year].[Q1].[Jan], [Feb, late]"), 0)
        << "paths, and a comma inside brackets";
    EXPECT_EQ(find("Q1 Sales", "Default"), sales);
    EXPECT_EQ(find("Q1 SALES", nullptr), sales);
    VTX_HMEMBER_T m = nullptr;
    EXPECT_EQ(adShrOtlFindMember(h, "Q1 Sales", &m), 0);
    EXPECT_EQ(m, sales);
    EXPECT_EQ(combos(sales, "Default", "Q1 Sales"), (Strings{"Q1", "[Year].[Q1].[Jan], [Feb, late]"}));
    EXPECT_EQ(combos(cost, "Default", "Q1 Sales"), Strings{});
    EXPECT_EQ(otlCountExtraAliases(sales, 0), 2);
    // The combination alias takes its place in the table like any alias.
    EXPECT_EQ(adShrOtlSetMemberAlias(h, cost, "Default", "Q1 Sales", 0, nullptr), VTX_STS_ALIAS_NOT_UNIQUE);
    EXPECT_EQ(adShrOtlSetMemberAlias(h, sales, "Default", "Q1 Sales", 0, nullptr), 0) << "its own member may";
    // A cursor that no longer names a combination ends the walk with a refusal.
    VTX_STR_T c = nullptr;
    ASSERT_EQ(otlStrdup(t.ctx(), "gone", &c), 0);
    EXPECT_EQ(adShrOtlGetNextAliasCombination(h, sales, "Default", "Q1 Sales", &c), VTX_STS_NOT_FOUND);
    EXPECT_STREQ(c, "gone") << "the caller's block stays the caller's";
    adShrOtlFree(t.ctx(), c);
}

TEST_F(ComboTest, RefusalsChangeNothing) {
    ASSERT_EQ(adShrOtlSetMemberAlias(h, cost, "Default", "Expense", 0, nullptr), 0);
    ASSERT_EQ(adShrOtlAddAliasCombination(h, sales, "Default", "Q1 Sales", "Q1"), 0);
    struct Case { const char *alias, *combination, *table; VTX_STS_T want; };
    const Case cases[] = {
        {"", "Q1", "Default", VTX_STS_ILLEGAL_ALIAS},
        {"X", "", "Default", VTX_STS_ILLEGAL_COMBO_MEMBERS},
        {"X", "Nowhere", "Default", VTX_STS_ILLEGAL_COMBO_MEMBERS},
        {"X", "Q1,", "Default", VTX_STS_ILLEGAL_COMBO_MEMBERS},
        {"X", "Jan, Sales", "Default", VTX_STS_ILLEGAL_COMBO_MEMBERS},  // not the member itself
        {"X", "Q1", "Nope", VTX_STS_ALIAS_TABLE_NOT_FOUND},
        {"Jan", "Q1", "Default", VTX_STS_ALIAS_NOT_UNIQUE},      // another member's name
        {"expense", "Q1", "Default", VTX_STS_ALIAS_NOT_UNIQUE},  // another member's alias
        {"Q1 Sales", "q1", "Default", VTX_STS_ALIAS_NOT_UNIQUE}, // the same pair again
    };
    for (const Case &k : cases) {
        EXPECT_EQ(adShrOtlAddAliasCombination(h, sales, k.table, k.alias, k.combination), k.want) << k.alias << "/" << k.combination;
        EXPECT_EQ(otlCountExtraAliases(sales, 0), 1) << k.alias;
    }
    EXPECT_EQ(find("X", nullptr), nullptr);
    // Attribute values carry no combinations.
    OTL_LARGE(measures)->MbrInfo.usCategory = VTX_CAT_ATTRIBUTE;
    EXPECT_EQ(adShrOtlAddAliasCombination(h, cost, "Default", "Y", "Q1"), VTX_STS_ILLEGAL_COMBO_ALIAS);
    OTL_LARGE(measures)->MbrInfo.usCategory = 0;
    EXPECT_EQ(OTL_LARGE(cost)->pAliasRec, nullptr) << "no list heads for a refused first entry";
    EXPECT_EQ(adShrOtlDeleteAliasCombination(h, sales, "Default", "Nope"), VTX_STS_NOT_FOUND);
}

TEST_F(ComboTest, CombinationsGoWithTheirMemberAndTheirTable) {
    for (const char *tb : {"A", "B", "C"}) ASSERT_EQ(adShrOtlCreateAliasTable(h, tb, 0), 0);
    ASSERT_EQ(adShrOtlAddAliasCombination(h, sales, "B", "b-sales", "Q1"), 0);
    ASSERT_EQ(adShrOtlAddAliasCombination(h, sales, "C", "c-sales", "Jan"), 0);
    ASSERT_EQ(adShrOtlAddAliasCombination(h, cost, "C", "c-cost", "Jan"), 0);
    // Deleting a table takes its combinations; the tables behind keep theirs.
    ASSERT_EQ(adShrOtlDeleteAliasTable(h, "B"), 0);
    EXPECT_EQ(find("b-sales", nullptr), nullptr);
    EXPECT_EQ(find("c-sales", "C"), sales);
    EXPECT_EQ(combos(sales, "C", "c-sales"), Strings{"Jan"});
    // Deleting by alias takes every combination of that alias.
    ASSERT_EQ(adShrOtlAddAliasCombination(h, sales, "C", "c-sales", "Q1"), 0);
    ASSERT_EQ(adShrOtlDeleteAliasCombination(h, sales, "C", "C-SALES"), 0);
    EXPECT_EQ(find("c-sales", nullptr), nullptr);
    EXPECT_EQ(otlCountExtraAliases(sales, 2), 0);
    // Clearing a table clears its combinations.
    ASSERT_EQ(adShrOtlAddAliasCombination(h, sales, "C", "c-sales", "Q1"), 0);
    ASSERT_EQ(adShrOtlClearAliasTable(h, "C"), 0);
    EXPECT_EQ(find("c-sales", nullptr), nullptr);
    EXPECT_EQ(find("c-cost", nullptr), nullptr);
    // A deleted member takes its combinations out of the index.
    ASSERT_EQ(adShrOtlAddAliasCombination(h, cost, "A", "a-cost", "Q1"), 0);
    ASSERT_EQ(adShrOtlDeleteMember(h, cost, 0, nullptr), 0);
    EXPECT_EQ(find("a-cost", nullptr), nullptr);
    VTX_POTLMBR_T other = add(measures, "Other");
    EXPECT_EQ(adShrOtlSetMemberAlias(h, other, "A", "a-cost", 0, nullptr), 0) << "the alias is free again";
}

// Verification finds a combination whose member has gone by that name.
TEST_F(ComboTest, VerificationFindsStaleCombinations) {
    ASSERT_EQ(adShrOtlAddAliasCombination(h, sales, "Default", "Jan Sales", "Jan"), 0);
    auto findings = [&]() {
        VTX_ULONG_T v4 = 0;
        return otlVerifyItem(t.ctx(), p, measures, sales, &v4, 0) & 0x20;
    };
    EXPECT_EQ(findings(), 0u);
    ASSERT_EQ(adShrOtlRenameMember(h, jan, "January", 0, nullptr), 0);
    EXPECT_EQ(findings(), 0x20u);
    ASSERT_EQ(adShrOtlRenameMember(h, jan, "Jan", 0, nullptr), 0);
    EXPECT_EQ(findings(), 0u);
}

TEST_F(ComboTest, AFailedAllocationLeavesNoCombination) {
    ASSERT_EQ(adShrOtlAddAliasCombination(h, cost, "Default", "first", "Q1"), 0);
    for (VTX_POTLMBR_T m : {sales, cost}) {
        const VTX_USHORT_T before = otlCountExtraAliases(m, 0);
        const bool hadHeads = OTL_LARGE(m)->pAliasRec != nullptr;
        for (long n = 1;; ++n) {
            ASSERT_LT(n, 40);
            const long live = t.stats().live;
            t.failAt(n);
            VTX_STS_T sts = adShrOtlAddAliasCombination(h, m, "Default", "Q1 Sales", "Q1");
            t.noFail();
            if (sts == 0) break;
            EXPECT_EQ(t.stats().live, live) << n;
            EXPECT_EQ(otlCountExtraAliases(m, 0), before) << n;
            EXPECT_EQ(OTL_LARGE(m)->pAliasRec != nullptr, hadHeads) << n;
            EXPECT_EQ(find("Q1 Sales", nullptr), nullptr) << n;
        }
        EXPECT_EQ(find("Q1 Sales", "Default"), m);
        ASSERT_EQ(adShrOtlDeleteAliasCombination(h, m, "Default", "Q1 Sales"), 0);
    }
    // The walk: a failed copy keeps the cursor.
    VTX_STR_T c = nullptr;
    t.failAt(1);
    EXPECT_EQ(adShrOtlGetNextAliasCombination(h, cost, "Default", "first", &c), VTX_STS_NO_MEMORY);
    t.noFail();
    EXPECT_EQ(c, nullptr);
}

TEST_F(ComboTest, TablesWithoutUniquenessTakeAnyAliasInAggregateOutlines) {
    EXPECT_EQ(adShrOtlSetNonUniqueMemberAlias(h, jan, 0, "Anything"), VTX_STS_ALIAS_POLICY_AGG);
    adShrOtlCloseOutline(h);
    make(VTX_OTL_AGGSTORE);
    ASSERT_EQ(adShrOtlCreateAliasTable(h, "Loose", VTX_ALIAS_NOT_UNIQUE), 0);
    EXPECT_EQ(adShrOtlSetNonUniqueMemberAlias(h, jan, 0, "Anything"), VTX_STS_DUP_RULE_CONFLICT)
        << "the default table keeps its rules";
    EXPECT_EQ(adShrOtlSetNonUniqueMemberAlias(h, jan, 9, "Anything"), VTX_STS_ALIAS_TABLE_NOT_FOUND);
    // The general setter hands the table over: the same text twice, and a
    // member's name, are accepted.
    ASSERT_EQ(adShrOtlSetMemberAlias(h, jan, "Loose", "Month", 0, nullptr), 0);
    ASSERT_EQ(adShrOtlSetMemberAlias(h, feb, "Loose", "Month", 0, nullptr), 0);
    ASSERT_EQ(adShrOtlSetNonUniqueMemberAlias(h, sales, 1, "Cost"), 0);
    EXPECT_EQ(p->aliasCounts[1], 3u);
    EXPECT_EQ(adShrOtlSetNonUniqueMemberAlias(h, sales, 1, ""), VTX_STS_ILLEGAL_ALIAS);
    // A failed allocation keeps the old alias, in the record and the index.
    for (long n = 1;; ++n) {
        ASSERT_LT(n, 20);
        t.failAt(n);
        VTX_STS_T sts = adShrOtlSetNonUniqueMemberAlias(h, sales, 1, "Revenue");
        t.noFail();
        if (sts == 0) break;
        EXPECT_STREQ(sales->AliasArray[1].pszDefName, "Cost") << n;
        EXPECT_EQ(find("Revenue", "Loose"), nullptr) << n;
    }
    EXPECT_EQ(find("Revenue", "Loose"), sales);
    EXPECT_EQ(p->aliasCounts[1], 3u);
}

// Entering a member into the index again (as a rebuild or a copy does)
// takes its combination aliases with it, or, on a refused allocation,
// nothing at all.
TEST_F(ComboTest, ReenteringAMemberTakesItsCombinations) {
    ASSERT_EQ(adShrOtlAddAliasCombination(h, sales, "Default", "Q1 Sales", "Q1"), 0);
    ASSERT_EQ(adShrOtlSetMemberAlias(h, sales, "Default", "Revenue", 0, nullptr), 0);
    auto findable = [&](const char *text) {
        VTX_HMEMBER_T m = nullptr;
        return adShrOtlFindMember(h, text, &m) == 0 && m == sales;
    };
    ASSERT_EQ(otlHashDeleteItem(t.ctx(), p, sales), 0);
    ASSERT_FALSE(findable("Q1 Sales"));
    ASSERT_FALSE(findable("Sales"));
    for (long n = 1; n < 100; ++n) {
        t.failAt(n);
        VTX_STS_T sts = otlHashAddItem(t.ctx(), p, sales, nullptr, OTL_HASH_NONE, OTL_HASH_NONE);
        t.noFail();
        if (sts) {
            EXPECT_FALSE(findable("Sales")) << n;
            EXPECT_FALSE(findable("Revenue")) << n;
            EXPECT_FALSE(findable("Q1 Sales")) << n;
            continue;
        }
        EXPECT_TRUE(findable("Sales"));
        EXPECT_TRUE(findable("Revenue"));
        EXPECT_TRUE(findable("Q1 Sales"));
        break;
    }
    EXPECT_TRUE(findable("Q1 Sales"));
}
