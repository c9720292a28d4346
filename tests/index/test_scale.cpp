// A million members through the exported edits: the index stays exact at
// the size it was built for, across its table generations, with every name
// found where it stands.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <vector>

#include "otl.h"
#include "testctx.h"
#include "vtxotlfind.h"

namespace {

TEST(IndexScale, MillionMembersBuiltFoundRenamedAndDeleted) {
    vtxtest::TestCtx t;
    // Sized for a tenth of what comes: the index grows by generations.
    t.ctx()->estimatedHashSize = 100000;
    vtx_outlineinfo_t oi{};
    VTX_HOUTLINE_T h = nullptr;
    ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &oi, &h, 0), 0);
    constexpr int kParents = 1000, kChildren = 1000;
    vtx_mbrinfo_t info{};
    std::strcpy(info.szMember, "Product");
    VTX_HMEMBER_T dim = nullptr;
    ASSERT_EQ(adShrOtlAddMember(h, &info, nullptr, nullptr, &dim, 0, nullptr), 0);
    std::vector<VTX_HMEMBER_T> leaves;
    leaves.reserve(size_t(kParents) * kChildren);
    VTX_HMEMBER_T prevParent = nullptr;
    for (int p = 0; p < kParents; ++p) {
        std::snprintf(info.szMember, sizeof info.szMember, "Family %d", p);
        VTX_HMEMBER_T parent = nullptr;
        ASSERT_EQ(adShrOtlAddMember(h, &info, dim, prevParent, &parent, 0, nullptr), 0);
        prevParent = parent;
        VTX_HMEMBER_T prev = nullptr;
        for (int c = 0; c < kChildren; ++c) {
            std::snprintf(info.szMember, sizeof info.szMember, "Item %d-%d", p, c);
            VTX_HMEMBER_T m = nullptr;
            ASSERT_EQ(adShrOtlAddMember(h, &info, parent, prev, &m, 0, nullptr), 0) << info.szMember;
            leaves.push_back(m);
            prev = m;
        }
    }
    auto *o = static_cast<VTX_POTL_T>(h);
    EXPECT_EQ(otlHashCountEntries(o), VTX_ULONG_T(1 + kParents + kParents * kChildren));

    std::mt19937 rng(7);
    char name[64];
    for (int i = 0; i < 20000; ++i) {
        const int p = int(rng() % kParents), c = int(rng() % kChildren);
        std::snprintf(name, sizeof name, "ITEM %d-%d", p, c);
        VTX_HMEMBER_T m = nullptr;
        ASSERT_EQ(adShrOtlFindMember(h, name, &m), 0) << name;
        ASSERT_EQ(m, leaves[size_t(p) * kChildren + size_t(c)]) << name;
        std::snprintf(name, sizeof name, "[Family %d].[Item %d-%d]", p, p, c);
        ASSERT_EQ(adShrOtlFindMember(h, name, &m), 0) << name;
        ASSERT_EQ(m, leaves[size_t(p) * kChildren + size_t(c)]) << name;
        std::snprintf(name, sizeof name, "Item %d-%d!", p, c);
        EXPECT_EQ(adShrOtlFindMember(h, name, &m), VTX_STS_NOT_FOUND) << name;
    }
    // Renames and deletes spread over the whole outline.
    for (int i = 0; i < 2000; ++i) {
        VTX_HMEMBER_T m = leaves[size_t(i) * 499 % leaves.size()];
        std::snprintf(name, sizeof name, "Renamed %d", i);
        ASSERT_EQ(adShrOtlRenameMember(h, m, name, 0, nullptr), 0) << name;
    }
    for (int i = 0; i < 2000; ++i) {
        const size_t k = size_t(i) * 499 % leaves.size() + 1;
        ASSERT_EQ(adShrOtlDeleteMember(h, leaves[k], 0, nullptr), 0);
        leaves[k] = nullptr;
    }
    EXPECT_EQ(otlHashCountEntries(o), VTX_ULONG_T(1 + kParents + kParents * kChildren - 2000));
    for (int i = 0; i < 2000; i += 7) {
        std::snprintf(name, sizeof name, "renamed %d", i);
        VTX_HMEMBER_T m = nullptr;
        ASSERT_EQ(adShrOtlFindMember(h, name, &m), 0) << name;
        EXPECT_EQ(m, leaves[size_t(i) * 499 % leaves.size()]);
        const size_t k = size_t(i) * 499 % leaves.size() + 1;
        std::snprintf(name, sizeof name, "Item %zu-%zu", k / kChildren, k % kChildren);
        EXPECT_EQ(adShrOtlFindMember(h, name, &m), VTX_STS_NOT_FOUND) << name;
    }
    (void)adShrOtlCloseOutline(h);
    EXPECT_EQ(t.stats().live, 0);
}

} // namespace
