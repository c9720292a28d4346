// otlctl's sample of duplicate names: it builds, its names repeat where
// the rules allow, and every qualified name it prints finds its own member
// and no other.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "sample.h"
#include "testctx.h"

namespace {

TEST(DupSample, QualifiedNamesFindTheirMembers) {
    vtxtest::TestCtx t;
    VTX_HOUTLINE_T h = nullptr;
    ASSERT_EQ(otlctlBuildDuplicatesSample(t.ctx(), &h), 0);
    VTX_BOOL_T dup = 0;
    ASSERT_EQ(adShrGetNonUniqueNameFlag(h, &dup), 0);
    EXPECT_TRUE(dup);
    std::vector<std::pair<std::string, std::string>> names;
    ASSERT_EQ(otlctlQualifiedRepeatedNames(h, t.ctx(), names), 0);
    // Jan..Dec under 2 years, Q1..Q4 under 2 years, 2 Bostons, 2 Portlands,
    // 3 Springfields, 2 Totals, Regular and Diet under two families.
    EXPECT_EQ(names.size(), 24u + 8u + 2u + 2u + 3u + 2u + 4u);
    std::set<std::string> seen;
    for (const auto &n : names) {
        EXPECT_TRUE(seen.insert(n.second).second) << n.second << " printed twice";
        // The plain name is ambiguous; the qualified one is not.
        VTX_HMEMBER_T plain = nullptr, byPath = nullptr;
        EXPECT_NE(adShrOtlFindMember(h, n.first.c_str(), &plain), 0) << n.first;
        ASSERT_EQ(adShrOtlFindMember(h, n.second.c_str(), &byPath), 0) << n.second;
        vtx_mbrinfo_t *info = nullptr;
        ASSERT_EQ(adShrOtlGetMemberInfo(h, byPath, &info), 0);
        EXPECT_EQ(n.first, info->szMember);
        adShrOtlFreeMbrInfo(t.ctx(), 1, info);
    }
    // The shortest qualification that tells the bearers apart.
    EXPECT_TRUE(seen.count("[East].[Boston]"));
    EXPECT_TRUE(seen.count("[Central].[Boston]"));
    EXPECT_TRUE(seen.count("[FY2025].[Q3]"));
    EXPECT_TRUE(seen.count("[FY2024].[Q1].[Jan]"));
    EXPECT_TRUE(seen.count("[Product].[Total]"));
    EXPECT_TRUE(seen.count("[Root Beer].[Diet]"));
    adShrOtlCloseOutline(h);
    EXPECT_EQ(t.stats().live, 0);
}

} // namespace
