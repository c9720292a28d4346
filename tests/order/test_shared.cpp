// Shared members: walking the copies of a stored member, finding the stored
// member of a copy, and repairing a dimension whose copy stands first.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "otl.h"
#include "membersupport.h"
#include "testctx.h"

using vtxtest::TestCtx;

namespace {

class SharedTest : public ::testing::Test {
protected:
    TestCtx t;
    VTX_HOUTLINE_T h = nullptr;
    VTX_POTL_T p = nullptr;
    VTX_POTLMBR_T dim = nullptr, groupA = nullptr, groupB = nullptr, groupC = nullptr;
    VTX_POTLMBR_T stored = nullptr, copyA = nullptr, copyC = nullptr;

    void SetUp() override {
        vtx_outlineinfo_t info{};
        ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h, 0), 0);
        p = static_cast<VTX_POTL_T>(h);
        dim = add(nullptr, "Product");
        groupA = add(dim, "GroupA");
        add(groupA, "Tea");
        groupB = add(dim, "GroupB");
        stored = add(groupB, "Cola");
        add(stored, "Cola Light");
        add(stored, "Cola Zero");
        groupC = add(dim, "GroupC");
        add(groupC, "Water");
        copyC = add(groupC, "Cola", VTX_SHARE_SHARED);
        // A copy that stands before its stored member in the dimension.
        copyA = add(groupA, "Cola", VTX_SHARE_SHARED);
    }
    void TearDown() override {
        adShrOtlCloseOutline(h);
        EXPECT_EQ(t.stats().live, 0);
    }
    VTX_POTLMBR_T add(VTX_POTLMBR_T parent, const char *name, VTX_USHORT_T share = 0) {
        return vtxtest::addMember(h, parent, name, share);
    }
    std::vector<std::string> children(VTX_POTLMBR_T m) {
        std::vector<std::string> v;
        for (VTX_POTLMBR_T c = m->pChild; c; c = c->pSibling) v.push_back(c->MbrInfo.szMember);
        return v;
    }
};

} // namespace

TEST_F(SharedTest, CopiesAreWalkedInOneOrderFromEitherSide) {
    VTX_ULONG_T n = 0;
    VTX_HMEMBER_T *arr = nullptr;
    ASSERT_EQ(adShrOtlGetSharedMembers(h, stored, &n, &arr), 0);
    ASSERT_EQ(n, 2u);
    std::vector<VTX_HMEMBER_T> copies(arr, arr + n);
    EXPECT_TRUE((copies == std::vector<VTX_HMEMBER_T>{copyA, copyC}) ||
                (copies == std::vector<VTX_HMEMBER_T>{copyC, copyA}));
    adShrOtlFree(t.ctx(), arr);
    // The same list from a copy.
    ASSERT_EQ(adShrOtlGetSharedMembers(h, copyC, &n, &arr), 0);
    EXPECT_EQ(n, 2u);
    adShrOtlFree(t.ctx(), arr);

    // Stepping from the stored member through its copies gives the same
    // list, in the same order, and then none.
    VTX_HMEMBER_T next = nullptr;
    ASSERT_EQ(adShrOtlGetNextSharedMember(h, stored, &next), 0);
    EXPECT_EQ(next, copies[0]);
    ASSERT_EQ(adShrOtlGetNextSharedMember(h, next, &next), 0);
    EXPECT_EQ(next, copies[1]);
    ASSERT_EQ(adShrOtlGetNextSharedMember(h, next, &next), 0);
    EXPECT_EQ(next, nullptr);

    VTX_HMEMBER_T orig = nullptr;
    ASSERT_EQ(adShrOtlFindOriginalMember(h, copyA, &orig), 0);
    EXPECT_EQ(orig, stored);
    ASSERT_EQ(adShrOtlFindOriginalMember(h, stored, &orig), 0);
    EXPECT_EQ(orig, stored) << "a stored member is its own original";

    // A member without copies answers none.
    VTX_POTLMBR_T tea = groupA->pChild;
    ASSERT_EQ(adShrOtlGetSharedMembers(h, tea, &n, &arr), 0);
    EXPECT_EQ(n, 0u);
    EXPECT_EQ(arr, nullptr);
}

TEST_F(SharedTest, CorrectionMakesTheEarliestCopyTheStoredMember) {
    ASSERT_EQ(adShrOtlCorrectSharedMembers(h, dim), 0);
    EXPECT_EQ(otlGetShare(copyA), VTX_SHARE_STORE);
    EXPECT_EQ(children(copyA), (std::vector<std::string>{"Cola Light", "Cola Zero"})) << "children follow in order";
    EXPECT_EQ(otlGetShare(stored), VTX_SHARE_SHARED);
    EXPECT_EQ(stored->pChild, nullptr);
    EXPECT_EQ(otlGetShare(copyC), VTX_SHARE_SHARED);
    VTX_HMEMBER_T orig = nullptr;
    ASSERT_EQ(adShrOtlFindOriginalMember(h, copyC, &orig), 0);
    EXPECT_EQ(orig, copyA);
    ASSERT_EQ(adShrOtlFindOriginalMember(h, stored, &orig), 0);
    EXPECT_EQ(orig, copyA);
    // The dimension is now in order: every copy after its stored member.
    ASSERT_EQ(otlUpdateMemno(p, p->pHeadItem), 0);
    EXPECT_LT(copyA->ulMemno, stored->ulMemno);
    EXPECT_EQ(stored->ulActualMemno, copyA->ulActualMemno);
    // A second run finds nothing to do.
    VTX_ULONG_T before = copyA->ulMemno;
    ASSERT_EQ(adShrOtlCorrectSharedMembers(h, dim), 0);
    EXPECT_EQ(otlGetShare(copyA), VTX_SHARE_STORE);
    ASSERT_EQ(otlUpdateMemno(p, p->pHeadItem), 0);
    EXPECT_EQ(copyA->ulMemno, before);
}

TEST_F(SharedTest, PointingByHandIsForOutlinesWithDuplicateNames) {
    EXPECT_EQ(adShrOtlSetOriginalMember(h, copyC, "Cola", 0, 0), VTX_STS_DUP_RULE_CONFLICT);
    VTX_HMEMBER_T orig = reinterpret_cast<VTX_HMEMBER_T>(0x1);
    ASSERT_EQ(adShrOtlGetOriginalMember(h, copyC, &orig), 0);
    EXPECT_EQ(orig, nullptr) << "a unique outline names the stored member by name only";
    ASSERT_EQ(adShrOtlResetOriginalMember(h, copyC, stored), 0);
    EXPECT_EQ(otlGetShare(copyC), VTX_SHARE_SHARED2);
    ASSERT_EQ(adShrOtlGetOriginalMember(h, copyC, &orig), 0);
    EXPECT_EQ(orig, stored);
    EXPECT_TRUE(p->ucStateFlag & OTL_STATE_SHAPE);
}

// A quiet rename takes the stored member away from its copies' name: one
// copy takes its place under that name, and the other finds it.
TEST_F(SharedTest, QuietRenameLeavesTheCopiesAStoredMember) {
    ASSERT_EQ(adShrOtlRenameMember(h, stored, "Cola Classic", 3, nullptr), 0);
    EXPECT_EQ(otlGetShare(stored), VTX_SHARE_STORE);
    const bool aFirst = otlGetShare(copyA) == VTX_SHARE_STORE;
    const bool cFirst = otlGetShare(copyC) == VTX_SHARE_STORE;
    ASSERT_NE(aFirst, cFirst) << "exactly one copy is promoted";
    VTX_POTLMBR_T promoted = aFirst ? copyA : copyC;
    VTX_POTLMBR_T other = aFirst ? copyC : copyA;
    VTX_HMEMBER_T orig = nullptr;
    ASSERT_EQ(adShrOtlFindOriginalMember(h, other, &orig), 0);
    EXPECT_EQ(orig, promoted);
    ASSERT_EQ(otlUpdateMemno(p, p->pHeadItem), 0);
    EXPECT_EQ(p->Counts.ulRealMembers, otlGetNonSharedItemCount(p->pHeadItem));
}
