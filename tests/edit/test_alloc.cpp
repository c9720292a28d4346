// Every allocation of the edits fails once in turn: each failure must leave
// the outline exactly as it was and nothing allocated.
#include <functional>
#include <string>

#include "editsupport.h"
#include "sample.h"

using namespace edittest;

namespace {

class AllocTest : public EditTest {
protected:
    VTX_POTLMBR_T year = nullptr, q1 = nullptr, jan = nullptr, q2 = nullptr, market = nullptr, east = nullptr;
    void build(bool dup = false) {
        if (dup) openDup();
        Spec time;
        time.category = VTX_CAT_TIME;
        year = dim("Year", time);
        q1 = add(year, "Q1");
        jan = add(q1, "Jan");
        add(q1, "Feb");
        q2 = add(year, "Q2");
        add(q2, "Apr");
        VTX_POTLMBR_T best = add(year, "Best", label());
        add(best, "Jan", shared());
        add(best, "Apr", shared());
        Spec sparse;
        sparse.storage = 1;
        market = dim("Market", sparse);
        east = add(market, "East");
        add(east, "Boston");
    }
    // Fails allocation 1, 2, ... of op until it succeeds.  Returns the number
    // of allocations the edit made.
    long walk(const std::function<VTX_STS_T()> &op) {
        const std::string before = dump(o);
        const long live = liveBlocks(t, o);
        for (long n = 1; n < 1000; ++n) {
            t.failAt(n);
            const long calls = t.stats().calls;
            VTX_STS_T sts = op();
            const long made = t.stats().calls - calls;
            t.noFail();
            if (sts == 0) {
                EXPECT_EQ(invariants(o), "");
                return made;
            }
            EXPECT_EQ(sts, VTX_STS_NO_MEMORY) << "at allocation " << n;
            EXPECT_EQ(dump(o), before) << "failure at allocation " << n << " left a trace";
            EXPECT_EQ(liveBlocks(t, o), live) << "failure at allocation " << n << " leaked";
            if (::testing::Test::HasFailure()) return -1;
        }
        ADD_FAILURE() << "the edit never succeeded";
        return -1;
    }
};

TEST_F(AllocTest, AddMember) {
    build();
    vtx_mbrinfo_t i = makeInfo("Mar");
    std::snprintf(i.szComment, sizeof i.szComment, "%s", "third month");
    VTX_HMEMBER_T m = nullptr;
    long made = walk([&] { return adShrOtlAddMember(h, &i, q1, VTX_HPREV_LAST64, &m, 0, nullptr); });
    EXPECT_GT(made, 1);
    EXPECT_STREQ(OTL_LARGE(static_cast<VTX_POTLMBR_T>(m))->MbrInfo.szComment, "third month");
}

TEST_F(AllocTest, AddSharedMember) {
    build();
    vtx_mbrinfo_t i = makeInfo("Boston");
    i.usShare = VTX_SHARE_SHARED;
    VTX_HMEMBER_T m = nullptr;
    EXPECT_GT(walk([&] { return adShrOtlAddMember(h, &i, market, VTX_HPREV_LAST64, &m, 0, nullptr); }), 0);
}

TEST_F(AllocTest, AddDimension) {
    build();
    vtx_mbrinfo_t i = makeInfo("Scenario");
    VTX_HMEMBER_T m = nullptr;
    // In front: the table moves the others up.
    EXPECT_GT(walk([&] { return adShrOtlAddDimension(h, &i, nullptr, nullptr, &m, nullptr); }), 1);
    EXPECT_EQ(static_cast<VTX_POTLMBR_T>(m)->ulDimno, 1);
}

TEST_F(AllocTest, AddWithIdentifier) {
    build(true);
    vtx_mbrinfo_t i = makeInfo("Mar");
    VTX_HMEMBER_T m = nullptr;
    EXPECT_GT(walk([&] { return adShrOtlAddMemberAndID(h, &i, "M-3", q1, VTX_HPREV_LAST64, &m, 0, nullptr); }), 1);
}

TEST_F(AllocTest, Rename) {
    build();
    // The member and both of its shared members take the new name.
    EXPECT_GT(walk([&] { return adShrOtlRenameMember(h, jan, "January", 0, nullptr); }), 2);
}

TEST_F(AllocTest, RenameInADuplicateOutline) {
    build(true);
    EXPECT_GT(walk([&] { return adShrOtlRenameMember(h, jan, "January", 0, nullptr); }), 1);
}

TEST_F(AllocTest, Move) {
    build();
    walk([&] { return adShrOtlMoveMember(h, jan, q2, nullptr, nullptr); });
    walk([&] { return adShrOtlMoveMember(h, market, nullptr, nullptr, nullptr); });
    EXPECT_EQ(market->ulDimno, 1);
}

TEST_F(AllocTest, Delete) {
    build();
    // A stored member with shared members elsewhere.
    EXPECT_GT(walk([&] { return adShrOtlDeleteMember(h, q1, 0, nullptr); }), 0);
    walk([&] { return adShrOtlDeleteMember(h, market, 0, nullptr); });
    EXPECT_EQ(o->DimTableSize, 1u);
}

TEST_F(AllocTest, SetMemberInfo) {
    build();
    vtx_mbrinfo_t *i = nullptr;
    ASSERT_EQ(adShrOtlGetMemberInfo(h, east, &i), 0);
    std::snprintf(i->szMember, sizeof i->szMember, "%s", "Eastern");
    std::snprintf(i->szComment, sizeof i->szComment, "%s", "new comment");
    i->usShare = VTX_SHARE_NEVER;
    EXPECT_GT(walk([&] { return adShrOtlSetMemberInfo(h, east, i, 0, nullptr); }), 2);
    EXPECT_STREQ(east->MbrInfo.szMember, "Eastern");
    EXPECT_EQ(adShrOtlFreeMbrInfo(t.ctx(), 1, i), 0);
}

TEST_F(AllocTest, SampleOutlineBuildsOrLeavesNothing) {
    adShrOtlCloseOutline(h);
    h = nullptr;
    // Failing one allocation somewhere in the build: the builder hands back
    // no outline and nothing stays allocated.
    VTX_HOUTLINE_T full = nullptr;
    const long calls = t.stats().calls;
    ASSERT_EQ(otlctlBuildSample(t.ctx(), &full), 0);
    const long made = t.stats().calls - calls;
    adShrOtlCloseOutline(full);
    for (long n : {1L, 2L, made / 7, made / 2, made - 1}) {
        VTX_HOUTLINE_T s = nullptr;
        t.failAt(n);
        VTX_STS_T sts = otlctlBuildSample(t.ctx(), &s);
        t.noFail();
        EXPECT_EQ(sts, VTX_STS_NO_MEMORY) << n;
        EXPECT_EQ(s, nullptr);
        EXPECT_EQ(t.stats().live, 0) << n;
    }
}

} // namespace
