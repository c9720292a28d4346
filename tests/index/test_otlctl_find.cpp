// otlctl find on the sample outline: names and paths resolve to the member
// they name, and every member's printed path leads back to it.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "find.h"
#include "sample.h"
#include "testctx.h"

namespace {

struct Sample {
    vtxtest::TestCtx t;
    VTX_HOUTLINE_T h = nullptr;
    Sample() { EXPECT_EQ(otlctlBuildSample(t.ctx(), &h), 0); }
    ~Sample() { adShrOtlCloseOutline(h); }
};

std::string printed(Sample &s, const char *name, VTX_STS_T *pSts) {
    std::FILE *f = std::tmpfile();
    *pSts = otlctlFindAndPrint(s.h, s.t.ctx(), name, f);
    std::string out;
    std::rewind(f);
    for (int c; (c = std::fgetc(f)) != EOF;) out += static_cast<char>(c);
    std::fclose(f);
    return out;
}

TEST(OtlctlFind, PrintsTheMemberAndItsPath) {
    Sample s;
    VTX_STS_T sts = 1;
    std::string out = printed(s, "jan fy2024", &sts);
    ASSERT_EQ(sts, 0);
    EXPECT_NE(out.find("member:     Jan FY2024\n"), std::string::npos) << out;
    EXPECT_NE(out.find("path:       [Year].[FY2024].[Q1 FY2024].[Jan FY2024]\n"), std::string::npos) << out;
    out = printed(s, "[FY2024].[Q1 FY2024]", &sts);
    ASSERT_EQ(sts, 0);
    EXPECT_NE(out.find("path:       [Year].[FY2024].[Q1 FY2024]\n"), std::string::npos) << out;
    out = printed(s, "No such member", &sts);
    EXPECT_EQ(sts, VTX_STS_NOT_FOUND);
    EXPECT_EQ(out, "");
}

TEST(OtlctlFind, EveryMembersPathLeadsBackToIt) {
    Sample s;
    unsigned checked = 0;
    VTX_HMEMBER_T first = nullptr;
    ASSERT_EQ(adShrOtlGetFirstMember(s.h, &first), 0);
    // Pre-order over the whole outline through the exported walk.
    std::vector<VTX_HMEMBER_T> stack;
    for (VTX_HMEMBER_T d = first; d;) {
        stack.push_back(d);
        ASSERT_EQ(adShrOtlGetNextSibling(s.h, d, &d), 0);
    }
    while (!stack.empty()) {
        VTX_HMEMBER_T m = stack.back();
        stack.pop_back();
        std::string path;
        ASSERT_EQ(otlctlMemberPath(s.h, m, path), 0);
        VTX_HMEMBER_T found = nullptr;
        ASSERT_EQ(adShrOtlFindMemberByPath(s.h, path.c_str(), VTX_FIND_ALL, &found), 0) << path;
        EXPECT_EQ(found, m) << path;
        ++checked;
        VTX_HMEMBER_T c = nullptr;
        ASSERT_EQ(adShrOtlGetChild(s.h, m, &c), 0);
        while (c) {
            stack.push_back(c);
            ASSERT_EQ(adShrOtlGetNextSibling(s.h, c, &c), 0);
        }
    }
    EXPECT_GT(checked, 500u);
}

} // namespace
