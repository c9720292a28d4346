// The client-version gates of the member record read by
// adShrOtlGetMemberInfo: a field newer than the client is never written.
#include <gtest/gtest.h>

#include <cstring>

#include "otl.h"
#include "testctx.h"
#include "vtxotlquery.h"

using vtxtest::TestCtx;

namespace {

struct Read {
    VTX_STS_T sts;
    vtx_mbrinfo_t info;
};

Read readAt(TestCtx &t, VTX_HOUTLINE_T h, VTX_HMEMBER_T m, VTX_LONG_T version) {
    t.ctx()->lClientVersion = version;
    vtx_mbrinfo_t *p = nullptr;
    Read r{adShrOtlGetMemberInfo(h, m, &p), {}};
    t.ctx()->lClientVersion = 0x00B20000;
    if (p) {
        std::memcpy(&r.info, p, sizeof r.info);
        r.info.Attribute = VTX_ATTRIBUTEVALUE_T{};  // the owned text goes with p
        adShrOtlFreeMbrInfo(t.ctx(), 1, p);
    }
    return r;
}

TEST(ClientVersions, QueryRecordFieldsAppearAtTheirVersions) {
    TestCtx t;
    VTX_HOUTLINE_T h = nullptr;
    ASSERT_EQ(adShrOtlNewQueryOutline(t.ctx(), 1, &h), 0);
    vtx_mbrinfo_t info{};
    std::strcpy(info.szMember, "Jan");
    std::strcpy(info.szComment, "c");
    std::strcpy(info.szDimName, "Year");
    info.usGen = 3;
    info.fAttributed = 1;
    info.Attribute.usDataType = VTX_ATTR_NUMERIC;
    info.Attribute.value.dblValue = 2.5;
    vtx_querymbr_t q{};
    q.ulBitmask[0] = 0xffff;
    q.pInfo = &info;
    q.ucNameUnique = OTL_NU_DUP;
    VTX_HMEMBER_T m = nullptr;
    ASSERT_EQ(adShrOtlAddQueryMember(h, &q, &m), 0);

    EXPECT_EQ(readAt(t, h, m, 0x4ffff).sts, VTX_STS_OLD_CLIENT);
    Read r5 = readAt(t, h, m, 0x50000);
    ASSERT_EQ(r5.sts, 0);
    EXPECT_STREQ(r5.info.szMember, "Jan");
    EXPECT_STREQ(r5.info.szComment, "c");
    EXPECT_STREQ(r5.info.szDimName, "");
    EXPECT_EQ(r5.info.fNonUniqueName, 0);
    Read r57 = readAt(t, h, m, 0x50700);
    EXPECT_STREQ(r57.info.szDimName, "Year");
    EXPECT_EQ(readAt(t, h, m, 0x8ffff).info.fNonUniqueName, 0);
    EXPECT_EQ(readAt(t, h, m, 0x90000).info.fNonUniqueName, 1);
    adShrOtlCloseOutline(h);
    EXPECT_EQ(t.stats().live, 0);
}

TEST(ClientVersions, EditRecordFlagsAppearAtTheirVersions) {
    TestCtx t;
    vtx_outlineinfo_t oi{};
    VTX_HOUTLINE_T h = nullptr;
    ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &oi, &h, 0), 0);
    vtx_mbrinfo_t i{};
    std::strcpy(i.szMember, "Year");
    VTX_HMEMBER_T d = nullptr, m = nullptr;
    ASSERT_EQ(adShrOtlAddDimension(h, &i, nullptr, nullptr, &d, nullptr), 0);
    std::strcpy(i.szMember, "Jan");
    ASSERT_EQ(adShrOtlAddMember(h, &i, d, nullptr, &m, 0, nullptr), 0);
    auto *mm = static_cast<VTX_POTLMBR_T>(m);
    mm->ucFlags |= OTL_FLAG_FORMULA;
    mm->ucFlags2 |= OTL_FLAG2_FLOW;
    mm->MbrInfo.ucInfoFlags |= OTL_INFO_RELDESC;

    Read old = readAt(t, h, m, 0x50700);
    EXPECT_STREQ(old.info.szDimName, "Year");
    EXPECT_EQ(old.info.fHasRelDesc, 0);
    EXPECT_EQ(old.info.fFormula, 0);
    EXPECT_EQ(old.info.fFlow, 0);
    EXPECT_EQ(readAt(t, h, d, 0x650ff).info.pLastSibling, nullptr);
    EXPECT_EQ(readAt(t, h, d, 0x65100).info.pLastSibling, m);
    EXPECT_EQ(readAt(t, h, m, 0x65000).info.fHasRelDesc, 1);
    EXPECT_EQ(readAt(t, h, m, 0x6ffff).info.fFormula, 0);
    EXPECT_EQ(readAt(t, h, m, 0x70000).info.fFormula, 1);
    EXPECT_EQ(readAt(t, h, m, 0x92fff).info.fFlow, 0);
    EXPECT_EQ(readAt(t, h, m, 0x93000).info.fFlow, 1);
    adShrOtlCloseOutline(h);
    EXPECT_EQ(t.stats().live, 0);
}

} // namespace
