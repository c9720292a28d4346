// The sample outline of otlctl: built by exported calls only, and a fair
// test of them: every member adds clean and the counts agree with a walk.
#include <cstdio>
#include <cstring>
#include <string>

#include "editsupport.h"
#include "sample.h"

using namespace edittest;

namespace {

TEST(Sample, BuildsAndCounts) {
    vtxtest::TestCtx t;
    VTX_HOUTLINE_T h = nullptr;
    ASSERT_EQ(otlctlBuildSample(t.ctx(), &h), 0);
    VTX_POTL_T o = static_cast<VTX_POTL_T>(h);
    EXPECT_EQ(invariants(o), "");
    OtlctlDimCounts counts[8];
    unsigned n = 0;
    ASSERT_EQ(otlctlCountDims(h, t.ctx(), counts, 8, &n), 0);
    ASSERT_EQ(n, 5u);
    EXPECT_STREQ(counts[0].name, "Year");
    EXPECT_EQ(counts[0].members, 35u);   // 2 years x (4 quarters x 3 months + 4) + 1
    EXPECT_EQ(counts[0].deepestGen, 4u);
    EXPECT_STREQ(counts[2].name, "Product");
    EXPECT_GE(counts[2].members, 200u);
    EXPECT_GT(counts[2].shared, 0u);
    EXPECT_GE(counts[3].members, 200u);
    EXPECT_GT(counts[3].shared, 0u);
    unsigned long total = 0, stored = 0;
    for (unsigned i = 0; i < n; ++i) {
        total += counts[i].members;
        stored += counts[i].stored;
    }
    EXPECT_EQ(total, o->Counts.ulMembers);
    EXPECT_EQ(stored, o->Counts.ulRealMembers);
    // Accounts with time balance, label-only parents and two-pass dynamic
    // members that will carry formulas.
    bool tb = false, twoPass = false;
    for (VTX_POTLMBR_T p = o->pHeadItem; p; p = otlNavtrdn(p, o->pHeadItem)) {
        tb = tb || p->MbrInfo.usTimeBalance;
        twoPass = twoPass || (!OTL_IS_SMALL(p) && OTL_LARGE(p)->MbrInfo.fTwoPass);
    }
    EXPECT_TRUE(tb);
    EXPECT_TRUE(twoPass);
    // The printed tree shows every member once, with its marks.
    char *text = nullptr;
    size_t len = 0;
    std::FILE *f = open_memstream(&text, &len);
    ASSERT_EQ(otlctlPrintTree(h, t.ctx(), f), 0);
    std::fclose(f);
    std::string out(text, len);
    std::free(text);
    size_t lines = 0;
    for (char c : out) lines += c == '\n';
    EXPECT_EQ(lines, total);
    EXPECT_NE(out.find("+ Year  [gen 1, level 3, dense, time, label only]"), std::string::npos);
    EXPECT_NE(out.find("    + New York  [gen 3, level 0, shared]"), std::string::npos);
    EXPECT_NE(out.find("time balance last"), std::string::npos);
    adShrOtlCloseOutline(h);
    EXPECT_EQ(t.stats().live, 0);
}

} // namespace
