// An add to the index that fails, wherever it fails, leaves the index as it
// was: the same entries, the same counts of repeated texts, the same free
// item slots, and every name found as before.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "blockhook.h"
#include "handtree.h"

using idxtest::BlockHook;
using idxtest::HandOutline;

namespace {

struct IndexState {
    std::vector<std::pair<std::string, VTX_POTLMBR_T>> entries;
    VTX_ULONG_T nextItem = 0, nextDup = 0, janCount = 0, salesCount = 0;
    bool operator==(const IndexState &) const = default;
};

IndexState stateOf(HandOutline &h) {
    IndexState s;
    s.entries = h.snapshot();
    s.nextItem = h.o->otlHashItemsFactoryNextFreeIndex;
    s.nextDup = h.o->otlDupNameFactoryNextFreeIndex;
    (void)otlIsNameDuplicated(h.ctx(), h.o, "Jan", 0, &s.janCount);
    (void)otlIsNameDuplicated(h.ctx(), h.o, "Sales", 3, &s.salesCount);
    return s;
}

// An outline whose stores are a few items short of growing, and a member
// whose name and one alias repeat texts already there.
struct NearGrowth : HandOutline {
    VTX_POTLMBR_T d, p, sales, candidate;
    std::vector<VTX_POTLMBR_T> fill;
    NearGrowth() : HandOutline(VTX_NAMES_DUP, false, 50) {
        d = dim("D");
        p = add(d, "P");
        add(p, "Jan");
        sales = add(d, "S", VTX_SHARE_STORE, false);
        setAlias(sales, 3, "Sales");
        (void)otlHashAddItem(ctx(), o, sales, sales, OTL_HASH_NONE, OTL_HASH_NONE);
        // The item factory and the node array both grow at 10000.
        for (int i = 0; o->otlHashItemsFactoryNextFreeIndex < 9998; ++i)
            fill.push_back(add(d, ("M" + std::to_string(i)).c_str()));
        candidate = add(d, "Jan", VTX_SHARE_STORE, false);
        setAlias(candidate, 1, "Unique-Jan");
        setAlias(candidate, 2, "id-jan");
        setAlias(candidate, 3, "Sales");
    }
    void expectFindsAsBefore() {
        EXPECT_EQ(byName("[P].[Jan]").m, p->pChild);
        EXPECT_EQ(byName("M0").m, fill.front());
        EXPECT_EQ(byName(("M" + std::to_string(fill.size() - 1)).c_str()).m, fill.back());
        EXPECT_EQ(byAlias("Sales", 3).m, sales);
        EXPECT_EQ(byAlias("id-jan", 2).m, nullptr);
        EXPECT_EQ(byName("Jan").m, p->pChild);
    }
};

TEST(IndexFailure, RefusedContainerMemoryLeavesTheIndexAsItWas) {
    BlockHook hook;  // before the outline: every block of the index passes it
    NearGrowth t;
    int failures = 0;
    VTX_STS_T sts = 1;
    for (long n = 1; n < 500 && sts; ++n) {
        const IndexState before = stateOf(t);
        hook.failAt(n);
        sts = otlHashAddItem(t.ctx(), t.o, t.candidate, t.candidate, OTL_HASH_NONE, OTL_HASH_NONE);
        hook.noFail();
        if (!sts) break;
        ++failures;
        ASSERT_EQ(sts, VTX_STS_NO_MEMORY) << "request " << n;
        const IndexState after = stateOf(t);
        ASSERT_EQ(after.entries, before.entries) << "request " << n;
        ASSERT_EQ(after.nextItem, before.nextItem) << "request " << n;
        ASSERT_EQ(after.nextDup, before.nextDup) << "request " << n;
        ASSERT_EQ(after.janCount, before.janCount) << "request " << n;
        ASSERT_EQ(after.salesCount, before.salesCount) << "request " << n;
        t.expectFindsAsBefore();
    }
    ASSERT_EQ(sts, 0);
    // Growth needed memory several times over: the walk saw them refused.
    EXPECT_GE(failures, 3);
    VTX_ULONG_T count = 0;
    EXPECT_TRUE(otlIsNameDuplicated(t.ctx(), t.o, "Sales", 3, &count));
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(t.byAlias("id-jan", 2).m, t.candidate);
}

TEST(IndexFailure, RefusedContextMemoryLeavesTheIndexAsItWas) {
    NearGrowth t;
    int failures = 0;
    VTX_STS_T sts = 1;
    for (long n = 1; n < 50 && sts; ++n) {
        const IndexState before = stateOf(t);
        t.context().failAt(n);
        sts = otlHashAddItem(t.ctx(), t.o, t.candidate, t.candidate, OTL_HASH_NONE, OTL_HASH_NONE);
        t.context().noFail();
        if (!sts) break;
        ++failures;
        ASSERT_TRUE(stateOf(t) == before) << "request " << n;
        t.expectFindsAsBefore();
    }
    ASSERT_EQ(sts, 0);
    EXPECT_GE(failures, 2);  // the own copies of both repeated texts
    const long live = t.context().stats().live;
    ASSERT_EQ(otlHashDeleteItem(t.ctx(), t.o, t.candidate), 0);
    // Both repeats counted by the candidate are gone, and with them the
    // copies the counts kept.
    EXPECT_EQ(t.context().stats().live, live - 2);
    EXPECT_FALSE(otlIsNameDuplicated(t.ctx(), t.o, "Sales", 3, nullptr));
}

} // namespace
