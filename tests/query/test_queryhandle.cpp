// Query handles: records a host adds, the fields they answer under their
// mask, the calls they refuse, and what they free.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "otl.h"
#include "testctx.h"
#include "vtxotlquery.h"

using vtxtest::TestCtx;

namespace {

constexpr VTX_ULONG_T kAll0 = 0x7fffffffu;
constexpr VTX_ULONG_T kAll1 = 0x4a3u;  // status, attributed, attribute, format string, alias 0

struct Filled {
    vtx_mbrinfo_t info{};
    vtx_querymbr_t q{};
    std::string longText;
    Filled() {
        std::strcpy(info.szMember, "Jan");
        info.usLevel = 2;
        info.usGen = 3;
        info.usConsolidation = VTX_CONS_SUB;
        info.fTwoPass = 1;
        info.fExpense = 1;
        info.usConversion = 2;
        std::strcpy(info.szCurMember, "USD");
        info.usTimeBalance = 3;
        info.usSkip = 1;
        info.usShare = VTX_SHARE_SHARED;
        info.usStorage = 1;
        info.usCategory = VTX_CAT_TIME;
        info.usStorageCategory = 1;
        std::strcpy(info.szComment, "first month");
        info.ulChildCount = 4;
        std::strcpy(info.szDimName, "Year");
        info.fAttributed = 1;
        longText.assign(5000, 'v');
        info.Attribute.usDataType = VTX_ATTR_STRING;
        info.Attribute.value.pszValue = longText.data();
        q.ulBitmask[0] = kAll0;
        q.ulBitmask[1] = kAll1;
        q.pInfo = &info;
        q.ulMemno = 41;
        q.ucDimno = 2;
        q.ulStatus = 0x55;
        q.fCurrConvDB = 1;
        q.ucNameUnique = OTL_NU_DUP;
        q.pszSibling = "Feb";
        q.pszPrevSibling = nullptr;
        q.pszParent = "Qtr1";
        q.pszChild = "Week1";
        q.pszOriginalMbr = "Jan";
        q.pszDefaultAlias = "January";
        q.pszAlias0 = "[Year].[Qtr1].[Jan]";
        q.pszUserAttr = "Winter";
        q.pszCalc = "Feb + 1;";
        q.pszLastCalc = "Feb;";
        q.pszCommentEx = "a longer comment";
        q.pszFormatString = "#,##0";
    }
};

class QueryTest : public ::testing::Test {
protected:
    TestCtx t{true};
    VTX_HOUTLINE_T h = nullptr;
    void SetUp() override { ASSERT_EQ(adShrOtlNewQueryOutline(t.ctx(), 1, &h), 0); }
    void TearDown() override {
        EXPECT_EQ(adShrOtlCloseOutline(h), 0);
        EXPECT_EQ(t.stats().live, 0);
    }
    VTX_HMEMBER_T addOne(const vtx_querymbr_t &q) {
        VTX_HMEMBER_T m = nullptr;
        EXPECT_EQ(adShrOtlAddQueryMember(h, &q, &m), 0);
        return m;
    }
    std::string text(VTX_HMEMBER_T m, VTX_ULONG_T id) {
        void *d = nullptr;
        EXPECT_EQ(adShrOtlGetMemberField(h, m, id, &d), 0) << std::hex << id;
        std::string s = d ? static_cast<char *>(d) : "<null>";
        adShrOtlFree(t.ctx(), d);
        return s;
    }
    template <class T>
    T num(VTX_HMEMBER_T m, VTX_ULONG_T id) {
        void *d = nullptr;
        EXPECT_EQ(adShrOtlGetMemberField(h, m, id, &d), 0) << std::hex << id;
        T v{};
        if (d) std::memcpy(&v, d, sizeof v);
        adShrOtlFree(t.ctx(), d);
        return v;
    }
};

TEST_F(QueryTest, EveryFieldIdAnswersItsField) {
    Filled f;
    VTX_HMEMBER_T m = addOne(f.q);
    EXPECT_EQ(text(m, VTX_FLD_MEMBER), "Jan");
    EXPECT_EQ(num<VTX_USHORT_T>(m, VTX_FLD_LEVEL), 2);
    EXPECT_EQ(num<VTX_USHORT_T>(m, VTX_FLD_GEN), 3);
    EXPECT_EQ(num<VTX_USHORT_T>(m, VTX_FLD_CONSOLIDATION), VTX_CONS_SUB);
    EXPECT_EQ(num<VTX_BOOL_T>(m, VTX_FLD_TWOPASS), 1);
    EXPECT_EQ(num<VTX_BOOL_T>(m, VTX_FLD_EXPENSE), 1);
    EXPECT_EQ(num<VTX_USHORT_T>(m, VTX_FLD_CONVERSION), 2);
    EXPECT_EQ(text(m, VTX_FLD_CURMEMBER), "USD");
    EXPECT_EQ(num<VTX_USHORT_T>(m, VTX_FLD_TIMEBALANCE), 3);
    EXPECT_EQ(num<VTX_USHORT_T>(m, VTX_FLD_SKIP), 1);
    EXPECT_EQ(num<VTX_USHORT_T>(m, VTX_FLD_SHARE), VTX_SHARE_SHARED);
    EXPECT_EQ(num<VTX_USHORT_T>(m, VTX_FLD_STORAGE), 1);
    EXPECT_EQ(num<VTX_USHORT_T>(m, VTX_FLD_CATEGORY), VTX_CAT_TIME);
    EXPECT_EQ(num<VTX_USHORT_T>(m, VTX_FLD_STORAGECATEGORY), 1);
    EXPECT_EQ(text(m, VTX_FLD_COMMENT), "first month");
    EXPECT_EQ(num<VTX_ULONG_T>(m, VTX_FLD_CHILDCOUNT), 4u);
    EXPECT_EQ(num<VTX_ULONG_T>(m, VTX_FLD_MEMNO), 41u);
    EXPECT_EQ(text(m, VTX_FLD_DIMNAME), "Year");
    EXPECT_EQ(num<VTX_ULONG_T>(m, VTX_FLD_DIMNO), 2u);
    // Duplicate names: the default table stands behind the two reserved ones.
    EXPECT_EQ(text(m, VTX_FLD_DEFAULTALIAS), "January");
    EXPECT_EQ(text(m, VTX_FLD_DEFAULTALIAS2), "January");
    EXPECT_EQ(text(m, VTX_FLD_ALIAS0), "[Year].[Qtr1].[Jan]");
    EXPECT_EQ(text(m, VTX_FLD_SIBLING), "Feb");
    EXPECT_EQ(text(m, VTX_FLD_PREVSIBLING), "<null>");
    EXPECT_EQ(text(m, VTX_FLD_PARENT), "Qtr1");
    EXPECT_EQ(text(m, VTX_FLD_CHILD), "Week1");
    EXPECT_EQ(text(m, VTX_FLD_UDA), "Winter");
    EXPECT_EQ(text(m, VTX_FLD_FORMULA), "Feb + 1;");
    EXPECT_EQ(text(m, VTX_FLD_LASTFORMULA), "Feb;");
    EXPECT_EQ(text(m, VTX_FLD_COMMENTEX), "a longer comment");
    EXPECT_EQ(num<VTX_ULONG_T>(m, VTX_FLD_ONE), 1u);
    EXPECT_EQ(num<VTX_BOOL_T>(m, VTX_FLD_CURRCONVDB), 1);
    EXPECT_EQ(num<VTX_ULONG_T>(m, VTX_FLD_STATUS), 0x55u);
    EXPECT_EQ(num<VTX_BOOL_T>(m, VTX_FLD_ATTRIBUTED), 1);
    EXPECT_EQ(text(m, VTX_FLD_FORMATSTRING), "#,##0");
    void *d = nullptr;
    ASSERT_EQ(adShrOtlGetMemberField(h, m, VTX_FLD_ATTRIBUTE, &d), 0);
    auto *v = static_cast<VTX_ATTRIBUTEVALUE_T *>(d);
    ASSERT_EQ(v->usDataType, VTX_ATTR_STRING);
    EXPECT_EQ(std::strlen(v->value.pszValue), size_t(VTX_FLD_ATTRTEXT_MAX));
    adShrOtlFreeAttribute(t.ctx(), v);
    adShrOtlFree(t.ctx(), d);
}

TEST_F(QueryTest, TheMaskDecidesWhatIsServed) {
    Filled f;
    f.q.ulBitmask[0] = VTX_FLD_MEMBER | VTX_FLD_GEN;
    f.q.ulBitmask[1] = VTX_FLD_STATUS & 0x7fffffffu;
    VTX_HMEMBER_T m = addOne(f.q);
    EXPECT_EQ(text(m, VTX_FLD_MEMBER), "Jan");
    EXPECT_EQ(num<VTX_ULONG_T>(m, VTX_FLD_STATUS), 0x55u);
    void *d = nullptr;
    for (VTX_ULONG_T id : {VTX_FLD_LEVEL, VTX_FLD_PARENT, VTX_FLD_FORMATSTRING, VTX_FLD_ALIAS0, VTX_FLD_ONE}) {
        EXPECT_EQ(adShrOtlGetMemberField(h, m, id, &d), VTX_STS_BAD_FIELD_ID) << std::hex << id;
        EXPECT_EQ(d, nullptr);
    }
    // Unknown identifiers, even when every bit they name was fetched.
    for (VTX_ULONG_T id : {0x0u, 0x5u, 0x80000004u, 0x80000800u})
        EXPECT_EQ(adShrOtlGetMemberField(h, m, id, &d), VTX_STS_BAD_FIELD_ID) << std::hex << id;
    EXPECT_EQ(adShrOtlGetMemberField(h, m, VTX_FLD_MEMBER, nullptr), VTX_STS_NULL_ARG);
    // The whole record needs all of the first sixteen fields.
    vtx_mbrinfo_t *info = nullptr;
    EXPECT_EQ(adShrOtlGetMemberInfo(h, m, &info), VTX_STS_INFO_NOT_FETCHED);
    EXPECT_EQ(info, nullptr);
}

TEST_F(QueryTest, TheWholeRecordReadsFromTheRecordAsItStands) {
    Filled f;
    VTX_HMEMBER_T m = addOne(f.q);
    f.q.ulBitmask[0] = 0xfff;
    VTX_HMEMBER_T partial = addOne(f.q);
    VTX_HMEMBER_T hs[2] = {m, partial};
    vtx_mbrinfo_t *infos[2] = {};
    VTX_STS_T sts[2] = {};
    ASSERT_EQ(adShrOtlGetMemberInfoArray(h, 2, hs, infos, sts), 0);
    EXPECT_EQ(sts[0], 0);
    EXPECT_EQ(sts[1], VTX_STS_INFO_NOT_FETCHED);
    ASSERT_NE(infos[0], nullptr);
    EXPECT_EQ(infos[1], nullptr);
    EXPECT_STREQ(infos[0]->szMember, "Jan");
    EXPECT_STREQ(infos[0]->szDimName, "Year");
    EXPECT_EQ(infos[0]->fNonUniqueName, 1);
    EXPECT_EQ(infos[0]->usGen, 3);
    adShrOtlFreeMbrInfo(t.ctx(), 1, infos[0]);
}

TEST_F(QueryTest, RecordsStayFlatAndInOrder) {
    Filled f;
    VTX_HMEMBER_T added[40];
    for (int i = 0; i < 40; ++i) {
        std::string n = "M" + std::to_string(i);
        std::strcpy(f.info.szMember, n.c_str());
        added[i] = addOne(f.q);
    }
    VTX_ULONG_T count = 0;
    ASSERT_EQ(adShrOtlGetQueryMemberCount(h, &count), 0);
    EXPECT_EQ(count, 40u);
    for (VTX_ULONG_T i = 0; i < count; ++i) {
        VTX_HMEMBER_T m = nullptr;
        ASSERT_EQ(adShrOtlGetQueryMember(h, i, &m), 0);
        EXPECT_EQ(m, added[i]);
        EXPECT_EQ(text(m, VTX_FLD_MEMBER), "M" + std::to_string(i));
    }
    VTX_HMEMBER_T m = nullptr;
    EXPECT_EQ(adShrOtlGetQueryMember(h, 40, &m), VTX_STS_NOT_FOUND);
    EXPECT_EQ(m, nullptr);
}

TEST_F(QueryTest, TreeWalksFindsAndEditsAreRefused) {
    Filled f;
    VTX_HMEMBER_T m = addOne(f.q), out = nullptr;
    EXPECT_EQ(adShrOtlGetFirstMember(h, &out), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlGetChild(h, m, &out), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlGetParent(h, m, &out), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlGetNextSibling(h, m, &out), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlGetNextMember(h, nullptr, m, &out), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlFindMemberEx(h, "Jan", VTX_FIND_ALL, &out), VTX_STS_WRONG_MODE);
    EXPECT_EQ(out, nullptr);
    VTX_USHORT_T gen = 9;
    EXPECT_EQ(adShrOtlGetMemberGen(h, m, &gen), VTX_STS_WRONG_MODE);
    EXPECT_EQ(gen, 0);
    VTX_STR_T s = nullptr;
    EXPECT_EQ(adShrOtlConstructMemberUniqueName(h, m, &s), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlGetMemberUniqueName(h, m, &s), VTX_STS_WRONG_MODE);
    EXPECT_EQ(s, nullptr);
    char key[VTX_MBRKEY_LEN];
    EXPECT_EQ(adShrOtlConstructMemberIDKey(h, m, key), VTX_STS_WRONG_MODE);
    static_cast<VTX_POTL_T>(h)->ucStateFlag |= OTL_STATE_VERIFYING;
    EXPECT_EQ(adShrOtlConstructMemberKey(h, m, nullptr, m, key), VTX_STS_WRONG_MODE);
    vtx_mbrinfo_t i{};
    std::strcpy(i.szMember, "New");
    EXPECT_EQ(adShrOtlAddDimension(h, &i, nullptr, nullptr, &out, nullptr), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlRenameMember(h, m, "Other", 0, nullptr), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlDeleteMember(h, m, 0, nullptr), VTX_STS_WRONG_MODE);
    EXPECT_EQ(text(m, VTX_FLD_MEMBER), "Jan");
}

TEST(QueryHandles, EditHandlesRefuseTheQueryCalls) {
    TestCtx t;
    vtx_outlineinfo_t info{};
    VTX_HOUTLINE_T h = nullptr;
    ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h, 0), 0);
    vtx_mbrinfo_t i{};
    std::strcpy(i.szMember, "Year");
    VTX_HMEMBER_T d = nullptr;
    ASSERT_EQ(adShrOtlAddDimension(h, &i, nullptr, nullptr, &d, nullptr), 0);
    void *data = nullptr;
    EXPECT_EQ(adShrOtlGetMemberField(h, d, VTX_FLD_MEMBER, &data), VTX_STS_WRONG_MODE);
    EXPECT_EQ(data, nullptr);
    Filled f;
    VTX_HMEMBER_T m = nullptr;
    EXPECT_EQ(adShrOtlAddQueryMember(h, &f.q, &m), VTX_STS_WRONG_MODE);
    VTX_ULONG_T count = 0;
    EXPECT_EQ(adShrOtlGetQueryMemberCount(h, &count), VTX_STS_WRONG_MODE);
    adShrOtlCloseOutline(h);
    EXPECT_EQ(t.stats().live, 0);
}

TEST(QueryHandles, UniqueOutlinesKeepTheDefaultTableFirst) {
    TestCtx t;
    VTX_HOUTLINE_T h = nullptr;
    ASSERT_EQ(adShrOtlNewQueryOutline(t.ctx(), 0, &h), 0);
    Filled f;
    f.q.pszAlias0 = nullptr;
    VTX_HMEMBER_T m = nullptr;
    ASSERT_EQ(adShrOtlAddQueryMember(h, &f.q, &m), 0);
    for (VTX_ULONG_T id : {VTX_FLD_DEFAULTALIAS, VTX_FLD_ALIAS0}) {
        void *d = nullptr;
        ASSERT_EQ(adShrOtlGetMemberField(h, m, id, &d), 0);
        ASSERT_NE(d, nullptr);
        EXPECT_STREQ(static_cast<char *>(d), "January");
        adShrOtlFree(t.ctx(), d);
    }
    adShrOtlCloseOutline(h);
    EXPECT_EQ(t.stats().live, 0);
}

TEST(QueryHandles, AFailedAddAddsNothingAndLeaksNothing) {
    TestCtx t;
    VTX_HOUTLINE_T h = nullptr;
    ASSERT_EQ(adShrOtlNewQueryOutline(t.ctx(), 1, &h), 0);
    Filled f;
    VTX_HMEMBER_T m = nullptr;
    int failures = 0;
    for (long n = 1; n < 60; ++n) {
        const long before = t.stats().live;
        VTX_ULONG_T countBefore = 0, countAfter = 0;
        ASSERT_EQ(adShrOtlGetQueryMemberCount(h, &countBefore), 0);
        t.failAt(n);
        VTX_STS_T sts = adShrOtlAddQueryMember(h, &f.q, &m);
        t.noFail();
        ASSERT_EQ(adShrOtlGetQueryMemberCount(h, &countAfter), 0);
        if (sts) {
            ++failures;
            EXPECT_EQ(sts, VTX_STS_NO_MEMORY);
            EXPECT_EQ(m, nullptr);
            EXPECT_EQ(countAfter, countBefore);
            EXPECT_EQ(t.stats().live, before) << "allocation " << n;
        } else {
            EXPECT_EQ(countAfter, countBefore + 1);
        }
    }
    EXPECT_GT(failures, 15);
    adShrOtlCloseOutline(h);
    EXPECT_EQ(t.stats().live, 0);
}

} // namespace
