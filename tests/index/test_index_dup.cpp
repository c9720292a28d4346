// The member index on outlines of duplicate names: owners of one name, the
// count of repeated texts, paths, and the sibling, dimension and shared
// member walks built on them.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "handtree.h"

using idxtest::Found;
using idxtest::HandOutline;

namespace {

// Year (Y0..Y29, each with a child Jan), Scenario (Jan, Plan)
struct ManyJans : HandOutline {
    static constexpr int kYears = 30;
    VTX_POTLMBR_T year, scenario, scenJan, plan;
    std::vector<VTX_POTLMBR_T> years, jans;
    ManyJans() : HandOutline(VTX_NAMES_DUP, false, 1000) {
        year = dim("Year");
        for (int i = 0; i < kYears; ++i) {
            years.push_back(add(year, ("Y" + std::to_string(i)).c_str()));
            jans.push_back(add(years.back(), "Jan"));
        }
        scenario = dim("Scenario");
        scenJan = add(scenario, "Jan");
        plan = add(scenario, "Plan");
        relevel();
    }
};

TEST(IndexDup, ManyOwnersOfOneName) {
    ManyJans t;
    VTX_ULONG_T count = 0;
    EXPECT_TRUE(otlIsNameDuplicated(t.ctx(), t.o, "Jan", 0, &count));
    EXPECT_EQ(count, VTX_ULONG_T(ManyJans::kYears));  // owners beyond the first
    EXPECT_FALSE(otlIsNameDuplicated(t.ctx(), t.o, "Plan", 0, &count));
    EXPECT_EQ(count, 0u);
    EXPECT_FALSE(otlIsNameDuplicated(t.ctx(), t.o, "Jan", 3, nullptr));  // not as an alias

    Found f = t.byName("Jan");
    EXPECT_EQ(f.sts, VTX_STS_NOT_FOUND);
    EXPECT_EQ(f.m, nullptr);
    EXPECT_EQ(t.byName("jan").sts, VTX_STS_NOT_FOUND);
    EXPECT_EQ(t.byName("Jan", OTL_OPT_UNSHARED, t.scenario).m, t.scenJan);
    EXPECT_EQ(t.byName("Jan", OTL_OPT_UNSHARED, t.year).sts, VTX_STS_NOT_FOUND);
    VTX_POTLMBR_T first = nullptr;
    ASSERT_EQ(otlHashFindItemByNameEx(t.ctx(), t.o, "Jan", nullptr, 1, 0, 1, OTL_OPT_UNSHARED, 0, t.year, &first,
                                      nullptr, nullptr),
              0);
    EXPECT_EQ(first, t.jans[0]);
    // A path or a parent narrows it to one.
    EXPECT_EQ(t.byName("[Y7].[Jan]").m, t.jans[7]);
    EXPECT_EQ(t.byName("[Year].[Y29].[Jan]").m, t.jans[29]);
    EXPECT_EQ(t.byName("Jan", OTL_OPT_UNSHARED, nullptr, "Y12").m, t.jans[12]);
    EXPECT_EQ(t.byName("[Y12].[Jan]", OTL_OPT_UNSHARED, nullptr, "Y12").m, t.jans[12]);
    EXPECT_EQ(t.byName("[Year].[Y12].[Jan]", OTL_OPT_UNSHARED, nullptr, "Y11").m, nullptr);
    EXPECT_EQ(t.byName("[Scenario].[Jan]").m, t.scenJan);
    EXPECT_EQ(t.byName("[Scenario]@[Jan]").m, t.scenJan);
    EXPECT_EQ(t.byName("[Year]@[Jan]").sts, VTX_STS_NOT_FOUND);
    EXPECT_EQ(t.byName("[Year]@[Y3]").m, t.years[3]);
    EXPECT_EQ(t.byName("[Y3]@[Jan]").m, nullptr);  // "@" wants a dimension
    EXPECT_EQ(t.byName("[Y3].[Feb]").m, nullptr);
    EXPECT_EQ(t.byName("Plan").m, t.plan);
    // A malformed path is a name, and no member bears it.
    Found odd = t.byName("[Y3].Jan");
    EXPECT_EQ(odd.sts, 0);
    EXPECT_EQ(odd.m, nullptr);
}

TEST(IndexDup, SiblingAndDimensionTests) {
    ManyJans t;
    VTX_POTLMBR_T sib = nullptr;
    // Y7 has one child, fewer than Jan has owners: its children are scanned.
    EXPECT_TRUE(otlHashIsNameDupAmongSiblings(t.ctx(), t.o, t.years[7], "JAN", 0, &sib, nullptr, nullptr));
    EXPECT_EQ(sib, t.jans[7]);
    EXPECT_FALSE(otlHashIsNameDupAmongSiblings(t.ctx(), t.o, t.years[7], "Plan", 0, &sib, nullptr, nullptr));
    EXPECT_EQ(sib, nullptr);
    // Year has more children than Y5 has owners: the chain is walked, and the
    // position comes back for an insert.
    HASH_NUM_T num = OTL_HASH_NONE;
    HASH_POS_T pos = OTL_HASH_NONE;
    EXPECT_TRUE(otlHashIsNameDupAmongSiblings(t.ctx(), t.o, t.year, "Y5", 0, &sib, &num, &pos));
    EXPECT_EQ(sib, t.years[5]);
    EXPECT_NE(num, OTL_HASH_NONE);
    EXPECT_FALSE(otlHashIsNameDupAmongSiblings(t.ctx(), t.o, t.scenario, "Y5", 0, &sib, nullptr, nullptr));
    EXPECT_FALSE(otlHashIsNameDupAmongSiblings(t.ctx(), t.o, nullptr, "Y5", 0, &sib, nullptr, nullptr));
    EXPECT_TRUE(otlHashIsNameDupAmongSiblings2(t.ctx(), t.o, t.plan, "Jan", 0));
    EXPECT_FALSE(otlHashIsNameDupAmongSiblings2(t.ctx(), t.o, t.scenJan, "Jan", 0));

    VTX_POTLMBR_T m = nullptr;
    EXPECT_TRUE(otlIsNameExistInDimension(t.ctx(), t.o, t.scenario, "Jan", 0, &m));
    EXPECT_EQ(m, t.scenJan);
    m = t.scenJan;  // passed over
    EXPECT_FALSE(otlIsNameExistInDimension(t.ctx(), t.o, t.scenario, "Jan", 0, &m));
    EXPECT_EQ(m, nullptr);
    m = t.jans[0];
    EXPECT_TRUE(otlIsNameExistInDimension(t.ctx(), t.o, t.year, "Jan", 0, &m));
    EXPECT_EQ(m, t.jans[1]);
    m = nullptr;
    EXPECT_FALSE(otlIsNameExistInDimension(t.ctx(), t.o, t.year, "Plan", 0, &m));

    // Generation 3 of Year holds the Jans; Plan would stand at generation 2.
    m = nullptr;
    EXPECT_TRUE(otlIsNameExistInDimensionAtGenLevel(t.ctx(), t.o, t.year, t.years[3], "Jan", 0, 1, &m));
    EXPECT_EQ(m->MbrInfo.usGen, 3);
    m = nullptr;
    EXPECT_FALSE(otlIsNameExistInDimensionAtGenLevel(t.ctx(), t.o, t.year, t.year, "Jan", 0, 1, &m));
    // By level: a child of a level-1 member stands at level 0, where the Jans are.
    m = nullptr;
    EXPECT_TRUE(otlIsNameExistInDimensionAtGenLevel(t.ctx(), t.o, t.year, t.years[3], "Jan", 0, 0, &m));
    m = nullptr;
    EXPECT_FALSE(otlIsNameExistInDimensionAtGenLevel(t.ctx(), t.o, t.year, t.year, "Jan", 0, 0, &m));
}

TEST(IndexDup, DeletesMakeADuplicateUniqueAgain) {
    HandOutline h(VTX_NAMES_DUP, false, 1000);
    VTX_POTLMBR_T d = h.dim("D");
    VTX_POTLMBR_T a = h.add(d, "A"), b = h.add(d, "B"), c = h.add(d, "C");
    VTX_POTLMBR_T xa = h.add(a, "X"), xb = h.add(b, "X"), xc = h.add(c, "X");
    for (VTX_POTLMBR_T x : {xa, xb, xc}) {
        x->ucFlags |= OTL_FLAG_DUP;
        x->ucNameUnique = OTL_NU_DUP | OTL_NU_IN_DIM;
    }
    VTX_ULONG_T count = 0;
    ASSERT_TRUE(otlIsNameDuplicated(h.ctx(), h.o, "X", 0, &count));
    EXPECT_EQ(count, 2u);
    // The first owner goes; the record keeps counting.
    ASSERT_EQ(h.remove(xa, true), 0);
    ASSERT_TRUE(otlIsNameDuplicated(h.ctx(), h.o, "X", 0, &count));
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(h.byName("X").sts, VTX_STS_NOT_FOUND);
    EXPECT_NE(xb->ucNameUnique, 0);
    // One left: a plain name again, and no longer marked.
    ASSERT_EQ(h.remove(xc, true), 0);
    EXPECT_FALSE(otlIsNameDuplicated(h.ctx(), h.o, "X", 0, &count));
    Found f = h.byName("X");
    EXPECT_EQ(f.sts, 0);
    EXPECT_EQ(f.m, xb);
    EXPECT_EQ(xb->ucNameUnique, 0);
    EXPECT_EQ(xb->ucFlags & OTL_FLAG_DUP, 0);
    // On a dimension the bit allows duplicates; clearing marks keeps it.
    d->ucFlags |= OTL_FLAG_DUP;
    otlMbrClearDuplicateItem(d);
    EXPECT_EQ(d->ucFlags & OTL_FLAG_DUP, OTL_FLAG_DUP);
    // And a duplicate again when the name comes back.
    VTX_POTLMBR_T xa2 = h.add(a, "x");
    EXPECT_TRUE(otlIsNameDuplicated(h.ctx(), h.o, "X", 0, &count));
    EXPECT_EQ(count, 1u);
    ASSERT_EQ(h.remove(xa2), 0);
    EXPECT_FALSE(otlIsNameDuplicated(h.ctx(), h.o, "X", 0, nullptr));
}

TEST(IndexDup, RepeatedTextOutlivesTheOwnerItWasCountedFrom) {
    HandOutline h(VTX_NAMES_DUP, false, 1000);
    VTX_POTLMBR_T d = h.dim("D");
    VTX_POTLMBR_T a = h.add(d, "A"), b = h.add(d, "B"), c = h.add(d, "C");
    VTX_POTLMBR_T first = h.add(a, "Zed");
    VTX_POTLMBR_T second = h.add(b, "Zed");  // the repeat that made the count
    VTX_POTLMBR_T third = h.add(c, "zed");
    VTX_ULONG_T count = 0;
    ASSERT_TRUE(otlIsNameDuplicated(h.ctx(), h.o, "Zed", 0, &count));
    EXPECT_EQ(count, 2u);
    // The owner whose add made the count goes, and its text with it: the
    // count must stay reachable.
    ASSERT_EQ(h.remove(second), 0);
    ASSERT_TRUE(otlIsNameDuplicated(h.ctx(), h.o, "ZED", 0, &count));
    EXPECT_EQ(count, 1u);
    VTX_POTLMBR_T fourth = h.add(b, "Zed");
    ASSERT_TRUE(otlIsNameDuplicated(h.ctx(), h.o, "Zed", 0, &count));
    EXPECT_EQ(count, 2u);
    ASSERT_EQ(h.remove(first), 0);
    ASSERT_EQ(h.remove(third), 0);
    EXPECT_FALSE(otlIsNameDuplicated(h.ctx(), h.o, "Zed", 0, nullptr));
    EXPECT_EQ(h.byName("Zed").m, fourth);
}

TEST(IndexDup, NameAndAliasAreCountedApart) {
    HandOutline h(VTX_NAMES_DUP, false, 1000);
    VTX_POTLMBR_T d = h.dim("D");
    ASSERT_EQ(otlHashDeleteItem(h.ctx(), h.o, d), 0);
    h.setAlias(d, 3, "Dim");
    ASSERT_EQ(otlHashAddItem(h.ctx(), h.o, d, d, OTL_HASH_NONE, OTL_HASH_NONE), 0);
    VTX_POTLMBR_T a = h.add(d, "A");
    VTX_POTLMBR_T b = h.add(d, "Sales");
    VTX_POTLMBR_T c = h.add(d, "C", VTX_SHARE_STORE, false);
    h.setAlias(c, 3, "Sales");
    ASSERT_EQ(otlHashAddItem(h.ctx(), h.o, c, c, OTL_HASH_NONE, OTL_HASH_NONE), 0);
    // A name and an alias of one text do not make a duplicate.
    EXPECT_FALSE(otlIsNameDuplicated(h.ctx(), h.o, "Sales", 0, nullptr));
    EXPECT_FALSE(otlIsNameDuplicated(h.ctx(), h.o, "Sales", 3, nullptr));
    VTX_POTLMBR_T e = h.add(a, "E", VTX_SHARE_STORE, false);
    h.setAlias(e, 3, "Sales");
    ASSERT_EQ(otlHashAddItem(h.ctx(), h.o, e, e, OTL_HASH_NONE, OTL_HASH_NONE), 0);
    VTX_ULONG_T count = 0;
    EXPECT_TRUE(otlIsNameDuplicated(h.ctx(), h.o, "Sales", 3, &count));
    EXPECT_EQ(count, 1u);
    EXPECT_FALSE(otlIsNameDuplicated(h.ctx(), h.o, "Sales", 0, nullptr));
    (void)h.add(a, "Sales");
    EXPECT_TRUE(otlIsNameDuplicated(h.ctx(), h.o, "Sales", 0, &count));
    EXPECT_EQ(count, 1u);
    // Alias lookups in the table are ambiguous; by path they are not.
    EXPECT_EQ(h.byAlias("Sales", 3).sts, VTX_STS_NOT_FOUND);
    EXPECT_EQ(h.byName("[D].[Sales]").m, b);
    ASSERT_EQ(otlHashDeleteItem(h.ctx(), h.o, e), 0);
    EXPECT_FALSE(otlIsNameDuplicated(h.ctx(), h.o, "Sales", 3, nullptr));
    EXPECT_EQ(h.byAlias("Sales", 3).m, c);
    // A path of aliases names each level by its alias.
    EXPECT_EQ(h.byAlias("[Dim].[Sales]", 3).m, c);
    EXPECT_EQ(h.byAlias("[D].[Sales]", 3).m, nullptr);
}

TEST(IndexDup, MemberIdTableIsLookedUpDirectly) {
    HandOutline h(VTX_NAMES_DUP, false, 1000);
    VTX_POTLMBR_T d = h.dim("D");
    VTX_POTLMBR_T a = h.add(d, "A", VTX_SHARE_STORE, false);
    h.setAlias(a, 2, "[id].[7]");
    ASSERT_EQ(otlHashAddItem(h.ctx(), h.o, a, a, OTL_HASH_NONE, OTL_HASH_NONE), 0);
    // An identifier is a text, never a path.
    EXPECT_EQ(h.byAlias("[id].[7]", 2).m, a);
    EXPECT_EQ(h.byAlias("[ID].[7]", 2).m, a);
}

TEST(IndexDup, MemberNamedLikeAPathIsFoundByItsEscapedName) {
    HandOutline h(VTX_NAMES_DUP, false, 1000);
    VTX_POTLMBR_T d = h.dim("D");
    VTX_POTLMBR_T p = h.add(d, "P");
    VTX_POTLMBR_T odd = h.add(p, "[x]");
    VTX_POTLMBR_T x = h.add(d, "x");
    // As a path "[x]" is the member x; the member "[x]" is "[[x]]]".
    EXPECT_EQ(h.byName("[x]").m, x);
    EXPECT_EQ(h.byName("[[x]]]").m, odd);
    EXPECT_EQ(h.byName("[P].[[x]]]").m, odd);
    EXPECT_EQ(h.byName("[x]]]", OTL_OPT_UNSHARED, nullptr, "P").m, nullptr);
    // Names with brackets that are not paths are found as they are.
    VTX_POTLMBR_T open = h.add(p, "[y");
    EXPECT_EQ(h.byName("[y").m, open);
    EXPECT_EQ(h.byName("[y", OTL_OPT_UNSHARED, nullptr, "P").m, open);
    VTX_POTLMBR_T broken = h.add(p, "[a].b");
    EXPECT_EQ(h.byName("[a].b").m, broken);
    EXPECT_EQ(h.byName("[P].[[a]].b]").m, broken);
}

TEST(IndexDup, SharedMembersAndTheirStoredMember) {
    HandOutline h(VTX_NAMES_DUP, false, 1000);
    VTX_POTLMBR_T d = h.dim("D");
    VTX_POTLMBR_T a = h.add(d, "A"), b = h.add(d, "B"), c = h.add(d, "C");
    VTX_POTLMBR_T e = h.dim("E");
    VTX_POTLMBR_T stored = h.add(a, "S");
    VTX_POTLMBR_T otherStored = h.add(e, "S");
    VTX_POTLMBR_T copy1 = h.add(b, "S", VTX_SHARE_SHARED);
    VTX_POTLMBR_T copyElsewhere = h.add(e, "S", VTX_SHARE_SHARED);
    VTX_POTLMBR_T copy2 = h.add(c, "S", VTX_SHARE_SHARED);
    // Shared members never count as duplicates.
    VTX_ULONG_T count = 0;
    ASSERT_TRUE(otlIsNameDuplicated(h.ctx(), h.o, "S", 0, &count));
    EXPECT_EQ(count, 1u);

    VTX_POTLMBR_T orig = nullptr;
    ASSERT_EQ(otlHashFindOriginalItem(h.ctx(), h.o, d, copy1, &orig), 0);
    EXPECT_EQ(orig, stored);
    ASSERT_EQ(otlHashFindOriginalItem(h.ctx(), h.o, e, copyElsewhere, &orig), 0);
    EXPECT_EQ(orig, otherStored);
    copy2->OriginalMbr.hOriginalMbr = otherStored;  // a kept pointer wins
    ASSERT_EQ(otlHashFindOriginalItem(h.ctx(), h.o, d, copy2, &orig), 0);
    EXPECT_EQ(orig, otherStored);
    copy2->OriginalMbr.hOriginalMbr = nullptr;

    auto next = [&](VTX_POTLMBR_T of, VTX_POTLMBR_T after) {
        VTX_POTLMBR_T s = reinterpret_cast<VTX_POTLMBR_T>(1);
        EXPECT_EQ(otlGetNextSharedMember(h.o, of, after, &s), 0);
        return s;
    };
    // The copies of each stored member in the order they were added, the
    // other stored member's copy passed over.
    EXPECT_EQ(next(stored, nullptr), copy1);
    EXPECT_EQ(next(stored, copy1), copy2);
    EXPECT_EQ(next(stored, copy2), nullptr);
    EXPECT_EQ(next(otherStored, nullptr), copyElsewhere);
    EXPECT_EQ(next(otherStored, copyElsewhere), nullptr);
    EXPECT_EQ(next(copy1, nullptr), nullptr);  // a copy has no copies

    VTX_POTLMBR_T sib = nullptr, original = nullptr;
    EXPECT_TRUE(otlHashIsNameDupAmongSiblingsGetOriginal(h.ctx(), h.o, b, "S", 0, &sib, &original));
    EXPECT_EQ(sib, copy1);
    EXPECT_EQ(original, stored);
    EXPECT_FALSE(otlHashIsNameDupAmongSiblingsGetOriginal(h.ctx(), h.o, d, "S", 0, &sib, &original));
    EXPECT_EQ(sib, nullptr);
    EXPECT_EQ(original, stored);
    // A shared member is found by option only.
    EXPECT_EQ(h.byName("[B].[S]").m, copy1);
    EXPECT_EQ(h.byName("S", OTL_OPT_UNSHARED, e).m, otherStored);
}

} // namespace
