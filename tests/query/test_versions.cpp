// The client-version gates of the member record read by
// adShrOtlGetMemberInfo: a field newer than the client is never written, and
// a client before 5.0 reads and writes the 186-byte short record.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>

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

// A short record the way an old client hands it in: a block of exactly its
// size, so that any read past its end is caught by the address checker.
struct OldRecord {
    std::unique_ptr<vtx_mbrinfo_old_t, decltype(&std::free)> p{
        static_cast<vtx_mbrinfo_old_t *>(std::calloc(1, sizeof(vtx_mbrinfo_old_t))), &std::free};
    explicit OldRecord(const char *name) { std::strcpy(p->szMember, name); }
    vtx_mbrinfo_t *asRecord() { return reinterpret_cast<vtx_mbrinfo_t *>(p.get()); }
};

class OldClient : public ::testing::Test {
protected:
    void SetUp() override {
        vtx_outlineinfo_t oi{};
        ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &oi, &h, 0), 0);
        t.ctx()->lClientVersion = 0x40000;
    }
    void TearDown() override {
        adShrOtlCloseOutline(h);
        EXPECT_EQ(t.stats().live, 0);
    }
    TestCtx t;
    VTX_HOUTLINE_T h = nullptr;
};

TEST_F(OldClient, AddsAndReadsTheShortRecord) {
    OldRecord dim("Measures"), mbr("Profit");
    VTX_HMEMBER_T d = nullptr, m = nullptr;
    ASSERT_EQ(adShrOtlAddDimension(h, dim.asRecord(), nullptr, nullptr, &d, nullptr), 0);
    mbr.p->usConsolidation = VTX_CONS_SUB;
    mbr.p->fTwoPass = 1;
    mbr.p->usShare = VTX_SHARE_NEVER;
    ASSERT_EQ(adShrOtlAddMember(h, mbr.asRecord(), d, nullptr, &m, 0, nullptr), 0);
    // The caller's record is left as it was handed in.
    EXPECT_STREQ(mbr.p->szMember, "Profit");
    EXPECT_EQ(mbr.p->usConsolidation, VTX_CONS_SUB);

    vtx_mbrinfo_t *out = nullptr;
    ASSERT_EQ(adShrOtlGetMemberInfo(h, m, &out), 0);
    ASSERT_NE(out, nullptr);
    // Only the short record is handed out: copy exactly its size.
    vtx_mbrinfo_old_t old;
    std::memcpy(&old, out, sizeof old);
    EXPECT_EQ(adShrOtlFreeMbrInfo(t.ctx(), 1, out), 0);
    EXPECT_STREQ(old.szMember, "Profit");
    EXPECT_EQ(old.usConsolidation, VTX_CONS_SUB);
    EXPECT_EQ(old.usShare, VTX_SHARE_NEVER);
    EXPECT_EQ(old.fTwoPass, 1);
    EXPECT_EQ(old.usGen, 2);
    EXPECT_EQ(static_cast<VTX_POTLMBR_T>(m)->pParent, static_cast<VTX_POTLMBR_T>(d));
}

TEST_F(OldClient, SettingTheShortRecordKeepsTheComment) {
    t.ctx()->lClientVersion = 0x00B20000;
    vtx_mbrinfo_t full{};
    std::strcpy(full.szMember, "Year");
    VTX_HMEMBER_T d = nullptr, m = nullptr;
    ASSERT_EQ(adShrOtlAddDimension(h, &full, nullptr, nullptr, &d, nullptr), 0);
    std::strcpy(full.szMember, "Jan");
    std::strcpy(full.szComment, "first month");
    ASSERT_EQ(adShrOtlAddMember(h, &full, d, nullptr, &m, 0, nullptr), 0);

    t.ctx()->lClientVersion = 0x40000;
    OldRecord set("January");
    set.p->usConsolidation = VTX_CONS_IGNORE;
    ASSERT_EQ(adShrOtlSetMemberInfo(h, m, set.asRecord(), 0, nullptr), 0);
    auto *mm = static_cast<VTX_POTLMBR_T>(m);
    EXPECT_STREQ(mm->MbrInfo.szMember, "January");
    EXPECT_EQ(mm->MbrInfo.ucInfoFlags & OTL_INFO_CONSOL, VTX_CONS_IGNORE);
    EXPECT_STREQ(OTL_LARGE(mm)->MbrInfo.szComment, "first month");
    VTX_HMEMBER_T found = nullptr;
    EXPECT_EQ(adShrOtlFindMember(h, "January", &found), 0);
    EXPECT_EQ(found, m);
}

TEST_F(OldClient, NameTooLongForTheShortRecordIsRefused) {
    t.ctx()->lClientVersion = 0x00B20000;
    vtx_mbrinfo_t full{};
    std::strcpy(full.szMember, "Markets");
    VTX_HMEMBER_T d = nullptr, m = nullptr;
    ASSERT_EQ(adShrOtlAddDimension(h, &full, nullptr, nullptr, &d, nullptr), 0);
    // 60 characters, 120 bytes: legal for an old client, too long for its block.
    std::string wide;
    for (int i = 0; i < 60; ++i) wide += "\xc3\xa4";
    std::strcpy(full.szMember, wide.c_str());
    ASSERT_EQ(adShrOtlAddMember(h, &full, d, nullptr, &m, 0, nullptr), 0);

    t.ctx()->lClientVersion = 0x40000;
    vtx_mbrinfo_t *out = reinterpret_cast<vtx_mbrinfo_t *>(1);
    EXPECT_EQ(adShrOtlGetMemberInfo(h, m, &out), VTX_STS_OLD_CLIENT);
    EXPECT_EQ(out, nullptr);
    // The dimension's name fits.
    ASSERT_EQ(adShrOtlGetMemberInfo(h, d, &out), 0);
    EXPECT_STREQ(reinterpret_cast<vtx_mbrinfo_old_t *>(out)->szMember, "Markets");
    EXPECT_EQ(adShrOtlFreeMbrInfo(t.ctx(), 1, out), 0);
}

TEST_F(OldClient, RefusedAllocationsLeaveNothingBehind) {
    OldRecord dim("Scenario"), mbr("Actual");
    VTX_HMEMBER_T d = nullptr;
    ASSERT_EQ(adShrOtlAddDimension(h, dim.asRecord(), nullptr, nullptr, &d, nullptr), 0);
    const long base = t.stats().live;
    bool added = false;
    for (long n = 1; !added && n < 200; ++n) {
        t.failAt(n);
        VTX_HMEMBER_T m = nullptr;
        VTX_STS_T sts = adShrOtlAddMember(h, mbr.asRecord(), d, nullptr, &m, 0, nullptr);
        t.noFail();
        if (sts) {
            EXPECT_EQ(t.stats().live, base) << n;
            VTX_HMEMBER_T found = nullptr;
            EXPECT_EQ(adShrOtlFindMember(h, "Actual", &found), VTX_STS_NOT_FOUND) << n;
            continue;
        }
        added = true;
        for (long k = 1; k < 50; ++k) {
            const long live = t.stats().live;
            t.failAt(k);
            vtx_mbrinfo_t *out = nullptr;
            VTX_STS_T rs = adShrOtlGetMemberInfo(h, m, &out);
            t.noFail();
            if (rs) {
                EXPECT_EQ(out, nullptr);
                EXPECT_EQ(t.stats().live, live) << k;
                continue;
            }
            EXPECT_STREQ(reinterpret_cast<vtx_mbrinfo_old_t *>(out)->szMember, "Actual");
            EXPECT_EQ(adShrOtlFreeMbrInfo(t.ctx(), 1, out), 0);
            break;
        }
    }
    EXPECT_TRUE(added);
}

} // namespace

namespace {

// A query record of an old client is read in its short form too.
TEST(OldClientQuery, QueryRecordIsReadInTheShortForm) {
    TestCtx t;
    VTX_HOUTLINE_T h = nullptr;
    ASSERT_EQ(adShrOtlNewQueryOutline(t.ctx(), 0, &h), 0);
    t.ctx()->lClientVersion = 0x40000;
    OldRecord r("Qtr1");
    r.p->usGen = 2;
    vtx_querymbr_t q{};
    q.ulBitmask[0] = 0xffff;
    q.pInfo = r.asRecord();
    VTX_HMEMBER_T m = nullptr;
    ASSERT_EQ(adShrOtlAddQueryMember(h, &q, &m), 0);
    void *name = nullptr;
    ASSERT_EQ(adShrOtlGetMemberField(h, m, 0x1, &name), 0);
    EXPECT_STREQ(static_cast<const char *>(name), "Qtr1");
    adShrOtlFree(t.ctx(), name);
    void *gen = nullptr;
    ASSERT_EQ(adShrOtlGetMemberField(h, m, 0x4, &gen), 0);
    EXPECT_EQ(*static_cast<VTX_USHORT_T *>(gen), 2);
    adShrOtlFree(t.ctx(), gen);
    adShrOtlCloseOutline(h);
    EXPECT_EQ(t.stats().live, 0);
}

} // namespace
