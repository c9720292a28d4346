// Member numbers, counts, implied sharing and the order of children,
// checked against an independent recount of the tree.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "otl.h"
#include "testctx.h"

using vtxtest::TestCtx;

namespace {

class OutlineTest : public ::testing::Test {
protected:
    TestCtx t;
    VTX_HOUTLINE_T h = nullptr;
    VTX_POTL_T p = nullptr;

    void SetUp() override {
        vtx_outlineinfo_t info{};
        ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h, 0), 0);
        p = static_cast<VTX_POTL_T>(h);
    }
    void TearDown() override {
        adShrOtlCloseOutline(h);
        EXPECT_EQ(t.stats().live, 0);
    }

    static vtx_mbrinfo_t info(const char *name, VTX_USHORT_T share = 0, VTX_USHORT_T cons = 0) {
        vtx_mbrinfo_t i{};
        std::strncpy(i.szMember, name, sizeof i.szMember - 1);
        i.usShare = share;
        i.usConsolidation = cons;
        return i;
    }
    VTX_POTLMBR_T dim(const char *name, VTX_USHORT_T storage = 0) {
        vtx_mbrinfo_t i = info(name);
        i.usStorage = storage;
        VTX_HMEMBER_T last = nullptr, m = nullptr;
        for (VTX_POTLMBR_T d = p->pHeadItem->pChild; d; d = d->pSibling) last = d;
        EXPECT_EQ(adShrOtlAddDimension(h, &i, last, nullptr, &m, nullptr), 0) << name;
        return static_cast<VTX_POTLMBR_T>(m);
    }
    // Adds as the last child of parent.
    VTX_POTLMBR_T add(VTX_POTLMBR_T parent, const char *name, VTX_USHORT_T share = 0, VTX_USHORT_T cons = 0) {
        vtx_mbrinfo_t i = info(name, share, cons);
        VTX_HMEMBER_T m = nullptr;
        VTX_HMEMBER_T prev = parent->MbrInfo.pLastSibling;
        EXPECT_EQ(adShrOtlAddMember(h, &i, prev ? nullptr : parent, prev, &m, 0, nullptr), 0) << name;
        return static_cast<VTX_POTLMBR_T>(m);
    }
    std::vector<std::string> childNames(VTX_POTLMBR_T parent) {
        std::vector<std::string> v;
        for (VTX_POTLMBR_T c = parent->pChild; c; c = c->pSibling) v.push_back(c->MbrInfo.szMember);
        return v;
    }

    // The recount: what the numbers must be, worked out here from the tree
    // by the rules, independently of the library's walk.
    struct Expect {
        std::map<VTX_POTLMBR_T, VTX_ULONG_T> memno, actual;
        VTX_ULONG_T members = 0, real = 0, unique = 0;
    };
    static void recount(VTX_POTLMBR_T m, VTX_ULONG_T &n, VTX_ULONG_T &a, Expect &e, bool labelTakesChild) {
        for (VTX_POTLMBR_T c = m->pChild; c; c = c->pSibling) recount(c, n, a, e, labelTakesChild);
        e.memno[m] = n++;
        VTX_USHORT_T s = otlGetShare(m);
        ++e.members;
        if (s != VTX_SHARE_SHARED) ++e.unique;
        if (s == VTX_SHARE_LABEL) {
            e.actual[m] = !labelTakesChild ? 0 : (m->pChild ? e.actual[m->pChild] : a);
        } else if (s != VTX_SHARE_SHARED && s != VTX_SHARE_SHARED2) {
            e.actual[m] = a++;
            ++e.real;
        }
    }
    void expectNumbersMatchRecount(bool labelTakesChild = true) {
        Expect e;
        VTX_UCHAR_T d = 0;
        for (VTX_POTLMBR_T dm = p->pHeadItem->pChild; dm; dm = dm->pSibling) {
            ++d;
            VTX_ULONG_T n = 1, a = 1;
            recount(dm, n, a, e, labelTakesChild);
            ASSERT_EQ(dm->ulDimno, d);
            if (labelTakesChild) {
                ASSERT_LE(d, p->DimTableSize);
                EXPECT_EQ(p->DimTable[d - 1], OTL_LARGE(dm));
                EXPECT_EQ(p->Counts.pDimensionMaps[d - 1].ulTotalMembers, dm->ulMemno);
                EXPECT_EQ(p->Counts.pDimensionMaps[d - 1].ulMembers, a - 1);
            }
        }
        for (auto &[m, n] : e.memno) {
            EXPECT_EQ(m->ulMemno, n) << m->MbrInfo.szMember;
            if (e.actual.count(m)) {
                EXPECT_EQ(m->ulActualMemno, e.actual[m]) << m->MbrInfo.szMember;
            }
        }
        if (labelTakesChild) {
            EXPECT_EQ(p->Counts.ulMembers, e.members);
            EXPECT_EQ(p->Counts.ulRealMembers, e.real);
            EXPECT_EQ(p->Counts.ulUniqueMemberNames, e.unique);
        }
        EXPECT_EQ(p->pHeadItem->ulMemno, 0xFFFFFFFFu);
        EXPECT_EQ(p->pHeadItem->ulDimno, 255);
    }
};

} // namespace

TEST_F(OutlineTest, NumbersFollowPostOrderAfterAddsMovesDeletesAndSorts) {
    VTX_POTLMBR_T year = dim("Year");
    VTX_POTLMBR_T q1 = add(year, "Qtr1");
    for (const char *m : {"Jan", "Feb", "Mar"}) add(q1, m);
    VTX_POTLMBR_T q2 = add(year, "Qtr2");
    for (const char *m : {"Apr", "May", "Jun"}) add(q2, m);
    VTX_POTLMBR_T measures = dim("Measures", 1);
    VTX_POTLMBR_T profit = add(measures, "Profit", VTX_SHARE_LABEL);
    add(profit, "Sales");
    add(profit, "COGS", 0, VTX_CONS_SUB);
    VTX_POTLMBR_T empty = dim("Empty");

    ASSERT_EQ(otlUpdateMemno(p, p->pHeadItem), 0);
    expectNumbersMatchRecount();
    EXPECT_EQ(empty->ulMemno, 1u) << "an empty dimension is member 1 of itself";
    EXPECT_EQ(empty->ulActualMemno, 1u);
    EXPECT_EQ(profit->ulActualMemno, profit->pChild->ulActualMemno) << "label-only takes its first child's number";

    // Counts never grow with repeated renumbering.
    ASSERT_EQ(otlUpdateMemno(p, p->pHeadItem), 0);
    expectNumbersMatchRecount();

    // mbrId survives renumbering and moves.
    VTX_INT32_T janId = q1->pChild->mbrId;
    VTX_POTLMBR_T jan = q1->pChild;
    ASSERT_EQ(adShrOtlMoveMember(h, jan, q2, nullptr, nullptr), 0);
    ASSERT_EQ(otlUpdateMemno(p, p->pHeadItem), 0);
    expectNumbersMatchRecount();
    EXPECT_EQ(jan->mbrId, janId);

    ASSERT_EQ(adShrOtlDeleteMember(h, q1, 0, nullptr), 0);
    ASSERT_EQ(otlUpdateMemno(p, p->pHeadItem), 0);
    expectNumbersMatchRecount();

    ASSERT_EQ(adShrOtlSortChildren(h, q2, VTX_SORT_DESCENDING, nullptr, nullptr), 0);
    EXPECT_EQ(childNames(q2), (std::vector<std::string>{"May", "Jun", "Jan", "Apr"}));
    ASSERT_EQ(otlUpdateMemno(p, p->pHeadItem), 0);
    expectNumbersMatchRecount();

    // The verification form gives label-only members no number and leaves
    // the counts alone.
    VTX_ULONG_T members = p->Counts.ulMembers;
    ASSERT_EQ(otlSetMemno(p, p->pHeadItem), 0);
    EXPECT_EQ(profit->ulActualMemno, 0u);
    EXPECT_EQ(p->Counts.ulMembers, members);
    expectNumbersMatchRecount(false);
}

TEST_F(OutlineTest, DimensionIdentifiersFollowTheirDimensionsThroughAReorder) {
    VTX_POTLMBR_T a = dim("A");
    VTX_POTLMBR_T b = dim("B");
    VTX_POTLMBR_T c = dim("C");
    add(b, "b1");
    ASSERT_EQ(otlUpdateMemno(p, p->pHeadItem), 0);
    std::map<VTX_POTLMBR_T, VTX_ULONG_T> ids, next;
    for (VTX_POTLMBR_T d : {a, b, c}) {
        ids[d] = p->dimIds[d->ulDimno - 1];
        next[d] = p->nextMbrIds[d->ulDimno - 1];
    }
    EXPECT_NE(ids[a], ids[b]);
    // Sorting the dimensions reorders them: C, B, A.
    ASSERT_EQ(adShrOtlSortChildren(h, nullptr, VTX_SORT_DESCENDING, nullptr, nullptr), 0);
    EXPECT_EQ(childNames(p->pHeadItem), (std::vector<std::string>{"C", "B", "A"}));
    ASSERT_EQ(otlUpdateMemno(p, p->pHeadItem), 0);
    expectNumbersMatchRecount();
    for (VTX_POTLMBR_T d : {a, b, c}) {
        EXPECT_EQ(p->dimIds[d->ulDimno - 1], ids[d]) << d->MbrInfo.szMember;
        EXPECT_EQ(p->nextMbrIds[d->ulDimno - 1], next[d]) << d->MbrInfo.szMember;
    }
    EXPECT_EQ(c->ulDimno, 1);
    EXPECT_TRUE(c->ucFlags & OTL_FLAG_DIMCHANGED);
}

TEST_F(OutlineTest, ImpliedSharingFollowsTheOutlineSetting) {
    VTX_POTLMBR_T d = dim("Product");
    VTX_POTLMBR_T single = add(d, "Single");
    VTX_POTLMBR_T only = add(single, "Only");
    VTX_POTLMBR_T pair = add(d, "Pair");
    add(pair, "Ignored", 0, VTX_CONS_IGNORE);
    VTX_POTLMBR_T mult = add(pair, "Mult", 0, VTX_CONS_MUL);
    VTX_POTLMBR_T never = add(d, "Never", VTX_SHARE_NEVER);
    add(never, "Child");
    VTX_POTLMBR_T sub = add(d, "Sub");
    add(sub, "Minus", 0, VTX_CONS_SUB);

    // A new outline (setting 4) has no implied shares.
    ASSERT_EQ(otlUpdateMemno(p, p->pHeadItem), 0);
    EXPECT_FALSE(isImpliedShare(p, single));
    EXPECT_NE(single->ulActualMemno, only->ulActualMemno);
    VTX_ULONG_T realWithout = p->Counts.ulRealMembers;

    ASSERT_EQ(adShrOtlSetImpliedShareSetting(h, 3, 4), 0);
    ASSERT_EQ(otlUpdateMemno(p, p->pHeadItem), 0);
    VTX_ULONG_T memno = 0;
    VTX_POTLMBR_T target = nullptr;
    EXPECT_TRUE(isImpliedShareEx(p, single, &memno, &target));
    EXPECT_EQ(target, only);
    EXPECT_EQ(single->ulActualMemno, only->ulActualMemno);
    EXPECT_TRUE(isImpliedShareEx(p, pair, &memno, &target)) << "ignored children do not count";
    EXPECT_EQ(target, mult);
    EXPECT_EQ(pair->ulActualMemno, mult->ulActualMemno);
    EXPECT_FALSE(isImpliedShare(p, never)) << "never-share parents never share";
    EXPECT_FALSE(isImpliedShare(p, sub)) << "a lone subtracting child is no target";
    EXPECT_EQ(p->Counts.ulRealMembers, realWithout - 2);

    // A formula keeps the parent's own data.
    single->ucFlags |= OTL_FLAG_FORMULA;
    EXPECT_FALSE(isImpliedShare(p, single));
    single->ucFlags &= ~OTL_FLAG_FORMULA;
    p->bXolap = 1;
    EXPECT_FALSE(isImpliedShare(p, single));
}

TEST_F(OutlineTest, SortRefusalsComeBeforeAnythingMoves) {
    VTX_POTLMBR_T d = dim("D");
    for (const char *m : {"b", "C", "a"}) add(d, m);
    auto before = childNames(d);
    EXPECT_EQ(adShrOtlSortChildren(h, d, 3, nullptr, nullptr), VTX_STS_BAD_SORT_TYPE);
    EXPECT_EQ(adShrOtlSortChildren(h, d, VTX_SORT_CALLER, nullptr, nullptr), VTX_STS_NO_COMPARE_FUNC);
    EXPECT_EQ(childNames(d), before);
    p->fOpenQuery = 1;
    EXPECT_EQ(adShrOtlSortChildren(h, d, 0, nullptr, nullptr), VTX_STS_WRONG_MODE);
    p->fOpenQuery = 0;
    ASSERT_EQ(adShrOtlSortChildren(h, d, VTX_SORT_ASCENDING, nullptr, nullptr), 0);
    EXPECT_EQ(childNames(d), (std::vector<std::string>{"a", "b", "C"})) << "collation ignores case";
    EXPECT_EQ(d->MbrInfo.pLastSibling->MbrInfo.szMember, std::string("C"));
    EXPECT_EQ(d->ulSiblingCount, 3u);
    auto byLength = [](VTX_HMEMBER_T x, VTX_HMEMBER_T y, void *) {
        return (int)std::strlen(static_cast<VTX_POTLMBR_T>(x)->MbrInfo.szMember) -
               (int)std::strlen(static_cast<VTX_POTLMBR_T>(y)->MbrInfo.szMember);
    };
    add(d, "zzz");
    ASSERT_EQ(adShrOtlSortChildren(h, d, VTX_SORT_CALLER, byLength, nullptr), 0);
    EXPECT_EQ(childNames(d).back(), "zzz");
}

TEST_F(OutlineTest, HiddenChildrenStayLast) {
    VTX_POTLMBR_T d = dim("D");
    VTX_POTLMBR_T b = add(d, "b");
    add(d, "a");
    VTX_POTLMBR_T hidden = nullptr;
    ASSERT_EQ(otlAddHiddenMember(p, d, d->MbrInfo.pLastSibling, &hidden), 0);
    ASSERT_EQ(adShrOtlSortChildren(h, d, VTX_SORT_ASCENDING, nullptr, nullptr), 0);
    ASSERT_EQ(d->ulSiblingCount, 3u);
    EXPECT_EQ(d->pChild->pSibling, b);
    EXPECT_EQ(b->pSibling, hidden);
    EXPECT_EQ(d->MbrInfo.pLastSibling, b) << "the last visible child, not the hidden one";
}

// The order among equal keys is what the partition leaves; files written
// later depend on it, so it is pinned here.
TEST(QuickSort, EqualKeysKeepThePartitionOrder) {
    struct Item { char key; int id; };
    Item items[] = {{'B', 1}, {'A', 1}, {'B', 2}, {'A', 2}, {'B', 3}};
    VTX_HMEMBER_T arr[5];
    for (int i = 0; i < 5; ++i) arr[i] = &items[i];
    auto byKey = [](VTX_HMEMBER_T x, VTX_HMEMBER_T y, void *) {
        return (int)static_cast<Item *>(x)->key - (int)static_cast<Item *>(y)->key;
    };
    ASSERT_EQ(otlQuickSort(arr, 5, byKey, nullptr), 0);
    std::string order;
    for (auto *a : arr) order += std::string(1, static_cast<Item *>(a)->key) + std::to_string(static_cast<Item *>(a)->id) + " ";
    EXPECT_EQ(order, "A2 A1 B3 B1 B2 ");
}

TEST(QuickSort, InconsistentComparisonStaysInsideTheArray) {
    std::vector<int> values(5000);
    std::vector<VTX_HMEMBER_T> arr(values.size());
    for (size_t i = 0; i < values.size(); ++i) {
        values[i] = (int)i;
        arr[i] = &values[i];
    }
    unsigned state = 12345;
    auto coin = [](VTX_HMEMBER_T, VTX_HMEMBER_T, void *ud) {
        unsigned &s = *static_cast<unsigned *>(ud);
        s = s * 1103515245u + 12345u;
        return (int)((s >> 16) % 3) - 1;
    };
    VTX_STS_T sts = otlQuickSort(arr.data(), (VTX_LONG_T)arr.size(), coin, &state);
    EXPECT_TRUE(sts == 0 || sts == 1);
    std::vector<int> seen;
    for (auto *a : arr) seen.push_back(*static_cast<int *>(a));
    std::sort(seen.begin(), seen.end());
    for (size_t i = 0; i < seen.size(); ++i) ASSERT_EQ(seen[i], (int)i) << "a permutation of what went in";
}

// The outline's own orders sort gathered keys; they must leave exactly the
// order the comparison function leaves, equal keys included.
TEST_F(OutlineTest, OwnOrderMatchesTheComparisonFunctionOnEqualKeys) {
    // A case-sensitive outline holds names equal but for case; the
    // collation of the outline's own orders ignores case and finds them equal.
    vtx_outlineinfo_t oi{};
    oi.fCaseSensitive = 1;
    ASSERT_EQ(adShrOtlSetOutlineInfo(h, &oi, 0, nullptr), 0);
    VTX_POTLMBR_T d = dim("D");
    const char *names[] = {"beta", "Alpha", "BETA", "alpha", "Gamma", "ALPHA", "gamma", "Beta", "delta"};
    for (const char *n : names) {
        vtx_mbrinfo_t i = info(n);
        VTX_HMEMBER_T m = nullptr;
        VTX_HMEMBER_T prev = d->MbrInfo.pLastSibling;
        ASSERT_EQ(adShrOtlAddMember(h, &i, prev ? nullptr : d, prev, &m, 0, nullptr), 0) << n;
    }
    for (VTX_USHORT_T type : {VTX_SORT_ASCENDING, VTX_SORT_DESCENDING}) {
        std::vector<VTX_HMEMBER_T> expect;
        for (VTX_POTLMBR_T c = d->pChild; c; c = c->pSibling) expect.push_back(c);
        p->usSortType = type;
        ASSERT_EQ(otlQuickSort(expect.data(), (VTX_LONG_T)expect.size(), otlCompareFunc, p), 0);
        ASSERT_EQ(adShrOtlSortChildren(h, d, type, nullptr, nullptr), 0);
        std::vector<VTX_HMEMBER_T> got;
        for (VTX_POTLMBR_T c = d->pChild; c; c = c->pSibling) got.push_back(c);
        EXPECT_EQ(got, expect) << "order " << type;
    }
}

// The reader hangs whole chains of records under a parent at once.
TEST_F(OutlineTest, ChildBlockHangsAChainInFront) {
    VTX_POTLMBR_T d = dim("D");
    VTX_POTLMBR_T old = add(d, "Old");
    // A chain of two records, the second with a child of its own.
    VTX_POTLMBR_T a = nullptr, b = nullptr, leaf = nullptr;
    ASSERT_EQ(otlNewItem2(t.ctx(), p, &a, 1), 0);
    ASSERT_EQ(otlNewItem2(t.ctx(), p, &b, 1), 0);
    ASSERT_EQ(otlNewItem2(t.ctx(), p, &leaf, 1), 0);
    ASSERT_EQ(otlStrdup(t.ctx(), "A", &a->MbrInfo.szMember), 0);
    ASSERT_EQ(otlStrdup(t.ctx(), "B", &b->MbrInfo.szMember), 0);
    ASSERT_EQ(otlStrdup(t.ctx(), "Leaf", &leaf->MbrInfo.szMember), 0);
    a->pSibling = b;
    b->pPrevSibling = a;
    b->pChild = leaf;
    leaf->pParent = b;
    b->MbrInfo.usLevel = 1;
    otlAddChildBlock(d, a);
    EXPECT_EQ(childNames(d), (std::vector<std::string>{"A", "B", "Old"}));
    EXPECT_EQ(a->pParent, d);
    EXPECT_EQ(b->pParent, d);
    EXPECT_EQ(old->pPrevSibling, b);
    EXPECT_EQ(leaf->MbrInfo.usGen, 3);
    EXPECT_EQ(b->MbrInfo.usGen, 2);
    EXPECT_EQ(d->MbrInfo.usLevel, 2) << "levels carried up from the deepest record of the chain";
    EXPECT_EQ(d->MbrInfo.pLastSibling, old);
    EXPECT_EQ(d->ulSiblingCount, 2u) << "the reader fixes the counts itself";
    d->ulSiblingCount = 3;
}
