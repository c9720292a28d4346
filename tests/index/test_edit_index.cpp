// The index as the edits keep it: every name findable after adds, renames,
// moves and deletes, and an edit refused at any point leaves the index as it
// found it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "handtree.h"
#include "vtxotlfind.h"
#include "hashCWrapper.h"
#include "mbrId2pItemMapWrapper.h"
#include "otlHashItemsFactoryWrapper.h"

namespace {

// An outline made and changed through the exported edits only.
class Edited {
public:
    explicit Edited(bool dup = false) {
        t.ctx()->estimatedHashSize = 200;
        vtx_outlineinfo_t info{};
        info.usOtlNameType = dup ? VTX_NAMES_DUP : VTX_NAMES_UNIQUE;
        EXPECT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h, 0), 0);
        o = static_cast<VTX_POTL_T>(h);
    }
    ~Edited() { adShrOtlCloseOutline(h); }

    VTX_STS_T tryAdd(VTX_POTLMBR_T parent, VTX_POTLMBR_T prev, const char *name, VTX_POTLMBR_T *pOut = nullptr,
                     VTX_USHORT_T share = VTX_SHARE_STORE) {
        vtx_mbrinfo_t info{};
        std::snprintf(info.szMember, sizeof info.szMember, "%s", name);
        info.usShare = share;
        VTX_HMEMBER_T m = nullptr;
        VTX_STS_T sts = parent || prev ? adShrOtlAddMember(h, &info, parent, prev, &m, 0, nullptr)
                                       : adShrOtlAddDimension(h, &info, nullptr, nullptr, &m, nullptr);
        if (pOut) *pOut = static_cast<VTX_POTLMBR_T>(m);
        return sts;
    }
    VTX_POTLMBR_T add(VTX_POTLMBR_T parent, const char *name, VTX_USHORT_T share = VTX_SHARE_STORE) {
        VTX_POTLMBR_T m = nullptr;
        EXPECT_EQ(tryAdd(parent, parent ? parent->MbrInfo.pLastSibling : nullptr, name, &m, share), 0) << name;
        return m;
    }
    VTX_POTLMBR_T find(const char *name) {
        VTX_HMEMBER_T m = nullptr;
        (void)adShrOtlFindMember(h, name, &m);
        return static_cast<VTX_POTLMBR_T>(m);
    }
    // Every (text, member) entry of the index, sorted.
    std::vector<std::pair<std::string, VTX_POTLMBR_T>> entries();
    VTX_ULONG_T dupCount(const char *name) {
        VTX_ULONG_T n = 0;
        (void)otlIsNameDuplicated(t.ctx(), o, name, 0, &n);
        return n;
    }

    vtxtest::TestCtx t;
    VTX_HOUTLINE_T h = nullptr;
    VTX_POTL_T o = nullptr;
};

std::vector<std::pair<std::string, VTX_POTLMBR_T>> Edited::entries() {
    // The same walk as the hand-built outlines use.
    return idxtest::indexEntries(o, t.ctx());
}

// Every entry names a member that is in the tree under that text.
void expectEntriesMatchTheTree(Edited &e) {
    size_t named = 0;
    for (VTX_POTLMBR_T p = otlNavtrdn(e.o->pHeadItem, e.o->pHeadItem); p; p = otlNavtrdn(p, e.o->pHeadItem))
        if (!OTL_IS_HIDDEN(p)) ++named;
    auto entries = e.entries();
    EXPECT_EQ(entries.size(), named);
    for (auto &[text, m] : entries) {
        ASSERT_NE(m, nullptr) << text;
        EXPECT_EQ(std::string(m->MbrInfo.szMember) + "#0", text);
    }
}

TEST(IndexByEdits, DimensionsAddedInFrontKeepEveryoneFindable) {
    Edited e;
    VTX_POTLMBR_T a = e.add(nullptr, "A");
    VTX_POTLMBR_T a1 = e.add(a, "A1");
    VTX_POTLMBR_T b = e.add(nullptr, "B");
    VTX_POTLMBR_T b1 = e.add(b, "B1");
    // New dimensions in front of and between the others take places whose
    // numbers other dimensions held.
    VTX_POTLMBR_T c = nullptr, d = nullptr;
    ASSERT_EQ(e.tryAdd(nullptr, nullptr, "C", &c), 0);
    {
        vtx_mbrinfo_t info{};
        std::strcpy(info.szMember, "D");
        VTX_HMEMBER_T m = nullptr;
        ASSERT_EQ(adShrOtlAddDimension(e.h, &info, c, nullptr, &m, nullptr), 0);
        d = static_cast<VTX_POTLMBR_T>(m);
    }
    ASSERT_EQ(e.o->pHeadItem->pChild, c);
    VTX_POTLMBR_T c1 = e.add(c, "C1");
    for (auto [name, m] : std::vector<std::pair<const char *, VTX_POTLMBR_T>>{
             {"A", a}, {"A1", a1}, {"B", b}, {"B1", b1}, {"C", c}, {"C1", c1}, {"D", d}})
        EXPECT_EQ(e.find(name), m) << name;
    expectEntriesMatchTheTree(e);
    // And when one goes, the others stay.
    ASSERT_EQ(adShrOtlDeleteDimension(e.h, c, nullptr, nullptr), 0);
    EXPECT_EQ(e.find("C"), nullptr);
    EXPECT_EQ(e.find("C1"), nullptr);
    EXPECT_EQ(e.find("A1"), a1);
    EXPECT_EQ(e.find("D"), d);
    expectEntriesMatchTheTree(e);
}

TEST(IndexByEdits, RenamesMovesAndDeletes) {
    Edited e;
    VTX_POTLMBR_T year = e.add(nullptr, "Year");
    VTX_POTLMBR_T q1 = e.add(year, "Q1");
    VTX_POTLMBR_T q2 = e.add(year, "Q2");
    VTX_POTLMBR_T jan = e.add(q1, "Jan");
    ASSERT_EQ(adShrOtlRenameMember(e.h, jan, "January", 0, nullptr), 0);
    EXPECT_EQ(e.find("Jan"), nullptr);
    EXPECT_EQ(e.find("January"), jan);
    // Only the case changes: one entry, the new spelling.
    ASSERT_EQ(adShrOtlRenameMember(e.h, jan, "JANUARY", 0, nullptr), 0);
    EXPECT_EQ(e.find("january"), jan);
    EXPECT_STREQ(jan->MbrInfo.szMember, "JANUARY");
    ASSERT_EQ(adShrOtlMoveMember(e.h, jan, q2, nullptr, nullptr), 0);
    EXPECT_EQ(e.find("[Q2].[JANUARY]"), jan);
    expectEntriesMatchTheTree(e);
    ASSERT_EQ(adShrOtlDeleteMember(e.h, q2, 0, nullptr), 0);
    EXPECT_EQ(e.find("JANUARY"), nullptr);
    EXPECT_EQ(e.find("Q2"), nullptr);
    EXPECT_EQ(e.find("Q1"), q1);
    expectEntriesMatchTheTree(e);
    // The names are free again.
    EXPECT_NE(e.add(q1, "Q2"), nullptr);
}

TEST(IndexByEdits, RefusedEditsLeaveTheIndexAsItWas) {
    Edited e(true);
    VTX_POTLMBR_T year = e.add(nullptr, "Year");
    VTX_POTLMBR_T q1 = e.add(year, "Q1");
    VTX_POTLMBR_T q2 = e.add(year, "Q2");
    VTX_POTLMBR_T jan1 = e.add(q1, "Jan");
    VTX_POTLMBR_T jan2 = e.add(q2, "Jan");
    (void)jan2;
    const auto before = e.entries();
    const VTX_ULONG_T janCount = e.dupCount("Jan");
    ASSERT_EQ(janCount, 1u);
    // The transaction list is not served: every edit that keeps
    // transactions is refused after it touched the index.
    e.o->fKeepTrans = 1;
    VTX_POTLMBR_T m = nullptr;
    EXPECT_NE(e.tryAdd(q1, jan1, "Feb", &m), 0);
    EXPECT_NE(e.tryAdd(q1, jan1, "Jan", &m), 0);        // a sibling clash, refused before
    EXPECT_NE(e.tryAdd(nullptr, nullptr, "Market", &m), 0);
    EXPECT_NE(adShrOtlRenameMember(e.h, jan1, "January", 0, nullptr), 0);
    EXPECT_NE(adShrOtlRenameMember(e.h, jan1, "JAN", 0, nullptr), 0);
    EXPECT_NE(adShrOtlRenameMember(e.h, q2, "Q1x", 0, nullptr), 0);
    e.o->fKeepTrans = 0;
    EXPECT_EQ(e.entries(), before);
    EXPECT_EQ(e.dupCount("Jan"), janCount);
    EXPECT_EQ(e.find("[Q1].[Jan]"), jan1);
    EXPECT_EQ(e.find("Feb"), nullptr);
    EXPECT_EQ(e.find("Market"), nullptr);
    EXPECT_EQ(e.find("Q2"), q2);
    // The names refused are free for a new attempt.
    EXPECT_NE(e.add(q1, "Feb"), nullptr);
    EXPECT_NE(e.add(nullptr, "Market"), nullptr);
    expectEntriesMatchTheTree(e);
}

// Every allocation of an edit refused in turn: each refusal leaves the
// index as it was, and the edit succeeds once memory suffices.
TEST(IndexByEdits, RefusedMemoryAtAnyPointLeavesTheIndexAsItWas) {
    Edited e(true);
    VTX_POTLMBR_T year = e.add(nullptr, "Year");
    VTX_POTLMBR_T q1 = e.add(year, "Q1");
    VTX_POTLMBR_T q2 = e.add(year, "Q2");
    VTX_POTLMBR_T jan = e.add(q1, "Jan");
    VTX_POTLMBR_T feb = e.add(q2, "Feb");
    struct Step {
        const char *what;
        std::function<VTX_STS_T()> edit;
    };
    VTX_POTLMBR_T added = nullptr, scenario = nullptr;
    std::vector<Step> steps = {
        {"add a repeat", [&] { return e.tryAdd(q2, feb, "Jan", &added); }},
        {"rename to a repeat", [&] { return adShrOtlRenameMember(e.h, feb, "Q1", 0, nullptr); }},
        {"rename a repeat away", [&] { return adShrOtlRenameMember(e.h, jan, "March", 0, nullptr); }},
        {"add a dimension", [&] { return e.tryAdd(nullptr, nullptr, "Scenario", &scenario); }},
    };
    for (Step &s : steps) {
        VTX_STS_T sts = 1;
        int refusals = 0;
        for (long n = 1; n < 200 && sts; ++n) {
            const auto before = e.entries();
            const VTX_ULONG_T count = e.dupCount("Jan");
            e.t.failAt(n);
            sts = s.edit();
            e.t.noFail();
            if (!sts) break;
            ++refusals;
            ASSERT_EQ(e.entries(), before) << s.what << ", allocation " << n;
            ASSERT_EQ(e.dupCount("Jan"), count) << s.what << ", allocation " << n;
        }
        EXPECT_EQ(sts, 0) << s.what;
        EXPECT_GT(refusals, 0) << s.what;
        expectEntriesMatchTheTree(e);
    }
    EXPECT_EQ(e.find("March"), jan);
    EXPECT_EQ(e.find("[Q2].[Q1]"), feb);
    EXPECT_EQ(e.dupCount("Q1"), 1u);
    EXPECT_EQ(e.find("Scenario"), scenario);
    EXPECT_EQ(e.find("[Q2].[Jan]"), added);
}

TEST(IndexByEdits, ANameThatStopsRepeatingLosesItsMark) {
    Edited e(true);
    VTX_POTLMBR_T year = e.add(nullptr, "Year");
    VTX_POTLMBR_T q1 = e.add(year, "Q1");
    VTX_POTLMBR_T q2 = e.add(year, "Q2");
    VTX_POTLMBR_T jan1 = e.add(q1, "Jan");
    VTX_POTLMBR_T jan2 = e.add(q2, "Jan");
    for (VTX_POTLMBR_T m : {jan1, jan2}) {
        m->ucFlags |= OTL_FLAG_DUP;
        m->ucNameUnique = OTL_NU_DUP | OTL_NU_IN_DIM;
    }
    ASSERT_EQ(adShrOtlRenameMember(e.h, jan2, "January", 0, nullptr), 0);
    EXPECT_EQ(e.dupCount("Jan"), 0u);
    EXPECT_EQ(jan1->ucNameUnique, 0);
    EXPECT_EQ(jan1->ucFlags & OTL_FLAG_DUP, 0);
    EXPECT_EQ(e.find("Jan"), jan1);
    // And the same when a bearer goes.
    VTX_POTLMBR_T feb1 = e.add(q1, "Feb"), feb2 = e.add(q2, "Feb");
    feb1->ucNameUnique = OTL_NU_DUP;
    ASSERT_EQ(adShrOtlDeleteMember(e.h, feb2, 0, nullptr), 0);
    EXPECT_EQ(feb1->ucNameUnique, 0);
}

TEST(IndexByEdits, ShareChangesMoveANameInAndOutOfTheCount) {
    Edited e(true);
    VTX_POTLMBR_T year = e.add(nullptr, "Year");
    VTX_POTLMBR_T q1 = e.add(year, "Q1");
    VTX_POTLMBR_T q2 = e.add(year, "Q2");
    VTX_POTLMBR_T jan = e.add(q1, "Jan");
    VTX_POTLMBR_T copy = e.add(q2, "Jan", VTX_SHARE_SHARED);
    EXPECT_EQ(e.dupCount("Jan"), 0u);
    EXPECT_EQ(e.find("Jan"), jan);
    vtx_mbrinfo_t *info = nullptr;
    ASSERT_EQ(adShrOtlGetMemberInfo(e.h, copy, &info), 0);
    info->usShare = VTX_SHARE_STORE;
    ASSERT_EQ(adShrOtlSetMemberInfo(e.h, copy, info, 0, nullptr), 0);
    // Two stored members of one name: a repeat.
    EXPECT_EQ(e.dupCount("Jan"), 1u);
    EXPECT_EQ(e.find("Jan"), nullptr);
    // Back to shared, renamed at the same time.
    info->usShare = VTX_SHARE_SHARED;
    std::strcpy(info->szMember, "Jan");
    ASSERT_EQ(adShrOtlSetMemberInfo(e.h, copy, info, 0, nullptr), 0);
    EXPECT_EQ(e.dupCount("Jan"), 0u);
    EXPECT_EQ(e.find("Jan"), jan);
    (void)adShrOtlFreeMbrInfo(e.t.ctx(), 1, info);
    expectEntriesMatchTheTree(e);
}

} // namespace
