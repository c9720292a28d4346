// The "Unique Name" entries of members whose names repeat: written by a
// host (unique names) or by verification and saving (shortest keys), and
// refused by status, never by stopping, outside a verify or a save.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "otl.h"
#include "otlhash.h"
#include "membersupport.h"
#include "testctx.h"

using vtxtest::TestCtx;

namespace {

// Year > Y1 > Jan, Year > Y2 > Jan
class UniqueKeyTest : public ::testing::Test {
protected:
    TestCtx t{true};
    VTX_HOUTLINE_T h = nullptr;
    VTX_POTL_T p = nullptr;
    VTX_POTLMBR_T year, y1, y2, jan1, jan2;

    void SetUp() override {
        vtx_outlineinfo_t info{};
        info.usOtlNameType = VTX_NAMES_DUP;
        ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h, 0), 0);
        p = static_cast<VTX_POTL_T>(h);
        year = add(nullptr, "Year");
        y1 = add(year, "Y1");
        jan1 = add(y1, "Jan");
        y2 = add(year, "Y2");
        jan2 = add(y2, "Jan");
    }
    void TearDown() override {
        adShrOtlCloseOutline(h);
        EXPECT_EQ(t.stats().live, 0);
    }
    VTX_POTLMBR_T add(VTX_POTLMBR_T parent, const std::string &name) { return vtxtest::addMember(h, parent, name); }
    // What the member's "Unique Name" entry holds, as stored.
    std::string stored(VTX_POTLMBR_T m) {
        const char *a = m->AliasArray ? m->AliasArray[0].pszDefName : nullptr;
        return a ? a : "<none>";
    }
    // Whether the index holds the text in "Unique Name" (a find would read
    // a bracketed text as a path).
    bool indexed(const std::string &key) {
        return otlHashIsStringExist(t.ctx(), p, key.c_str(), 1, nullptr, nullptr) != 0;
    }
    void verifying(bool on) {
        if (on) p->ucStateFlag |= OTL_STATE_VERIFYING;
        else p->ucStateFlag &= (VTX_UCHAR_T)~OTL_STATE_VERIFYING;
    }
    // Runs call with the nth allocation failing, for every n until it
    // passes; each failure must leave the entries, the index and the
    // context's blocks as they were.
    void eachFailure(const std::function<VTX_STS_T()> &call, VTX_POTLMBR_T m) {
        for (long n = 1;; ++n) {
            ASSERT_LT(n, 40);
            const std::string before = stored(m);
            const VTX_ULONG_T count = p->aliasCounts[0];
            const long live = t.stats().live;
            t.failAt(n);
            VTX_STS_T sts = call();
            t.noFail();
            if (sts == 0) return;
            EXPECT_EQ(sts, VTX_STS_NO_MEMORY) << n;
            EXPECT_EQ(stored(m), before) << n;
            EXPECT_EQ(p->aliasCounts[0], count) << n;
            EXPECT_EQ(t.stats().live, live) << n;
            if (before != "<none>") {
                EXPECT_TRUE(indexed(before)) << n;
            }
        }
    }
};

} // namespace

TEST_F(UniqueKeyTest, AUniqueNameIsStoredOnceAndFollowsTheTree) {
    ASSERT_EQ(adShrOtlSetMemberUniqueAlias(h, jan1), 0);
    EXPECT_EQ(stored(jan1), "[Y1].[Jan]");
    EXPECT_TRUE(indexed("[y1].[jan]"));
    const char *kept = jan1->AliasArray[0].pszDefName;
    ASSERT_EQ(adShrOtlSetMemberUniqueAlias(h, jan1), 0);
    EXPECT_EQ(jan1->AliasArray[0].pszDefName, kept) << "an equal entry is left alone";
    EXPECT_EQ(p->aliasCounts[0], 1u);
    // After a rename the entry is replaced, in the record and the index.
    ASSERT_EQ(adShrOtlRenameMember(h, y1, "Y9", 0, nullptr), 0);
    ASSERT_EQ(adShrOtlSetMemberUniqueAlias(h, jan1), 0);
    EXPECT_EQ(stored(jan1), "[Y9].[Jan]");
    EXPECT_FALSE(indexed("[Y1].[Jan]"));
    EXPECT_TRUE(indexed("[Y9].[Jan]"));
    EXPECT_EQ(p->aliasCounts[0], 1u);
    // The identifier form when the context asks for it.
    t.ctx()->bUseNonUniqueMbrIdKey = 1;
    ASSERT_EQ(adShrOtlSetMemberUniqueAlias(h, jan2), 0);
    t.ctx()->bUseNonUniqueMbrIdKey = 0;
    EXPECT_EQ(stored(jan2), "[Year].[" + std::to_string(jan2->mbrId) + "].[Jan]");
    EXPECT_EQ(p->aliasCounts[0], 2u);
    // The reserved table stays closed to the general setter.
    EXPECT_EQ(adShrOtlSetMemberAlias(h, jan2, "Unique Name", "x", 0, nullptr), VTX_STS_UNIQUE_NAME_TABLE);
}

TEST_F(UniqueKeyTest, AKeyIsWrittenOnlyInsideAVerifyOrASave) {
    ASSERT_EQ(otlVerifySetDupMbrArry(p), 0);
    EXPECT_EQ(adShrOtlSetMemberKey(h, year, nullptr, jan1), VTX_STS_KEY_OUTSIDE_VERIFY);
    EXPECT_EQ(stored(jan1), "<none>");
    verifying(true);
    ASSERT_EQ(adShrOtlSetMemberKey(h, year, nullptr, jan1), 0);
    EXPECT_EQ(stored(jan1), "[Y1].[Jan]");
    EXPECT_TRUE(indexed("[Y1].[Jan]"));
    // Refusals by status, with the entry untouched.
    EXPECT_EQ(adShrOtlSetMemberKey(h, year, nullptr, year), VTX_STS_DIM_NOT_UNIQUE);
    EXPECT_EQ(stored(year), "<none>");
    EXPECT_EQ(adShrOtlSetMemberKey(h, year, nullptr, y1), VTX_STS_KEY_NOT_DUPLICATE);
    EXPECT_EQ(stored(y1), "<none>");
    VTX_POTLMBR_T other = add(nullptr, "Other");
    EXPECT_EQ(adShrOtlSetMemberKey(h, other, nullptr, jan2), VTX_STS_NOT_A_DIMENSION);
    verifying(false);
    p->ucStateFlag |= OTL_STATE_WRITING;
    ASSERT_EQ(adShrOtlSetMemberKey(h, year, nullptr, jan2), 0);
    EXPECT_EQ(stored(jan2), "[Y2].[Jan]");
    EXPECT_EQ(p->aliasCounts[0], 2u);
}

TEST_F(UniqueKeyTest, VerificationKeysEveryRepeatAndListsKeysTooLong) {
    // Two chains of the same long names in one dimension: the keys of
    // their deepest members climb to X1 and X2 and pass the limit.
    VTX_POTLMBR_T deep = add(nullptr, "Deep"), a = add(deep, "X1"), b = add(deep, "X2");
    for (int g = 0; g < 18; ++g) {
        const std::string name(1000, (char)('a' + g));
        a = add(a, name);
        b = add(b, name);
    }
    ASSERT_EQ(otlVerifySetDupMbrArry(p), 0);
    // Outside a verify only the marks are set.
    ASSERT_EQ(otlVerifySetNonUniqueName(p, nullptr, nullptr), 0);
    EXPECT_TRUE(jan1->ucFlags & OTL_FLAG_DUP);
    EXPECT_EQ(stored(jan1), "<none>");
    verifying(true);
    VTX_POUTERROR_T list = nullptr;
    VTX_ULONG_T count = 0;
    ASSERT_EQ(otlVerifySetNonUniqueName(p, &list, &count), 0);
    EXPECT_EQ(stored(jan1), "[Y1].[Jan]");
    EXPECT_EQ(stored(jan2), "[Y2].[Jan]");
    EXPECT_EQ(stored(a), "<none>");
    bool listed = false;
    for (VTX_ULONG_T i = 0; i < count; ++i) {
        EXPECT_TRUE(list[i].ulErrors4 & 0x2);
        listed |= list[i].hMember == a;
    }
    EXPECT_TRUE(listed) << "the member whose key is too long is a finding";
    (void)otlFreeMem(t.ctx(), list);
    EXPECT_EQ(adShrOtlSetMemberKey(h, deep, nullptr, a), VTX_STS_KEY_TOO_LONG);
    EXPECT_EQ(stored(a), "<none>");
}

TEST_F(UniqueKeyTest, AFailedAllocationLeavesTheEntryAsItWas) {
    ASSERT_EQ(otlVerifySetDupMbrArry(p), 0);
    verifying(true);
    eachFailure([&] { return adShrOtlSetMemberKey(h, year, nullptr, jan1); }, jan1);
    EXPECT_EQ(stored(jan1), "[Y1].[Jan]");
    verifying(false);
    // Replacing an entry that is there.
    t.ctx()->bUseNonUniqueMbrIdKey = 1;
    eachFailure([&] { return adShrOtlSetMemberUniqueAlias(h, jan1); }, jan1);
    t.ctx()->bUseNonUniqueMbrIdKey = 0;
    EXPECT_EQ(stored(jan1), "[Year].[" + std::to_string(jan1->mbrId) + "].[Jan]");
    eachFailure([&] { return adShrOtlSetMemberUniqueAlias(h, jan2); }, jan2);
    EXPECT_EQ(stored(jan2), "[Y2].[Jan]");
}

TEST(UniqueKeyRefusals, OutlinesOfUniqueNamesAndQueryHandlesHaveNoKeys) {
    TestCtx t;
    vtx_outlineinfo_t info{};
    VTX_HOUTLINE_T h = nullptr;
    ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h, 0), 0);
    VTX_POTLMBR_T d = vtxtest::addMember(h, nullptr, "D");
    EXPECT_EQ(adShrOtlSetMemberUniqueAlias(h, d), VTX_STS_ALIAS_TABLE_NOT_FOUND);
    EXPECT_EQ(adShrOtlSetMemberKey(h, d, nullptr, d), VTX_STS_ALIAS_TABLE_NOT_FOUND);
    adShrOtlCloseOutline(h);
    // Nor does a query handle, which holds no tree to key.
    ASSERT_EQ(adShrOtlNewQueryOutline(t.ctx(), 1, &h), 0);
    EXPECT_EQ(adShrOtlSetMemberKey(h, nullptr, nullptr, nullptr), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlSetMemberUniqueAlias(h, nullptr), VTX_STS_WRONG_MODE);
    adShrOtlCloseOutline(h);
    EXPECT_EQ(t.stats().live, 0);
}
