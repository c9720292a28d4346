// Outline creation and release, outline settings, reporting and callbacks.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "otl.h"
#include "testctx.h"

using vtxtest::TestCtx;

namespace {

vtx_outlineinfo_t infoOf(VTX_USHORT_T type, VTX_USHORT_T nameType = 0) {
    vtx_outlineinfo_t i{};
    i.usOutlineType = type;
    i.usOtlNameType = nameType;
    return i;
}

struct Outline {
    TestCtx &t;
    VTX_HOUTLINE_T h = nullptr;
    Outline(TestCtx &tc, VTX_USHORT_T type = 0, VTX_USHORT_T nameType = 0) : t(tc) {
        auto i = infoOf(type, nameType);
        EXPECT_EQ(adShrOtlNewOutline(t.ctx(), &i, &h, 0), 0);
    }
    ~Outline() { adShrOtlCloseOutline(h); }
    VTX_POTL_T p() const { return static_cast<VTX_POTL_T>(h); }
};

} // namespace

TEST(NewOutline, CreatesRootPoolsAndTablesForEachKind) {
    TestCtx t;
    {
        Outline o(t, VTX_OTL_REGULAR);
        VTX_POTL_T p = o.p();
        ASSERT_NE(p, nullptr);
        ASSERT_NE(p->pHeadItem, nullptr);
        EXPECT_STREQ(p->pHeadItem->MbrInfo.szMember, "Database (undefined)");
        EXPECT_EQ(p->pHeadItem->MbrInfo.usGen, 0);
        EXPECT_EQ(p->pHeadItem->ulDimno, 255);
        EXPECT_FALSE(OTL_IS_SMALL(p->pHeadItem));
        EXPECT_FALSE(p->pHeadItem->ucFlags & OTL_FLAG_POOLED) << "the root is made on its own";
        EXPECT_NE(p->gHeadItemLarge, nullptr);
        EXPECT_NE(p->gHeadItemSmall, nullptr);
        EXPECT_EQ(p->usNumAliasTables, 1);
        EXPECT_STREQ(p->pAliasArray[0], "Default");
        EXPECT_EQ(p->ucImpliedShareSetting, 4);
        EXPECT_EQ(p->cOPGVersion, 0u);
        EXPECT_TRUE(p->bIsNewOutline);
        EXPECT_FALSE(p->fKeepTrans);
        for (unsigned i = 0; i < OTL_DIM_SLOTS; ++i) {
            ASSERT_EQ(p->nextMbrIds[i], 1u);
            ASSERT_EQ(p->nextPersistMbrIds[i], 1u);
            ASSERT_EQ(p->dimIds[i], 0u);
        }
        for (auto *d : p->aDTSMbrs) {
            ASSERT_NE(d, nullptr);
            EXPECT_EQ(d->usGen, OTL_DTS_UNBOUND);
        }
    }
    {
        Outline o(t, VTX_OTL_AGGSTORE);
        EXPECT_EQ(o.p()->cOPGVersion, otlGetLatestOPGVersion(o.p()))
            << "a new aggregate storage outline takes the newest paged format";
    }
    {
        Outline o(t, VTX_OTL_REGULAR, VTX_NAMES_DUP);
        VTX_POTL_T p = o.p();
        EXPECT_TRUE(p->bNonUniqueName);
        ASSERT_EQ(p->usNumAliasTables, 3);
        EXPECT_STREQ(p->pAliasArray[0], "Unique Name");
        EXPECT_STREQ(p->pAliasArray[1], "Member ID");
        EXPECT_STREQ(p->pAliasArray[2], "Default");
        EXPECT_EQ(p->ucUniqueAliasTable[1], 2);
        vtx_outlineinfo_t *info = nullptr;
        ASSERT_EQ(adShrOtlGetOutlineInfo(o.h, &info), 0);
        EXPECT_EQ(info->usNumAliasTables, 1) << "the two reserved tables are not shown";
        EXPECT_STREQ(info->pAliasTables[0], "Default");
        EXPECT_TRUE(info->fNonUniqueName);
        adShrOtlFree(t.ctx(), info);
    }
    EXPECT_EQ(t.stats().live, 0);
}

TEST(NewOutline, RefusesBadArgumentsWithNullHandle) {
    TestCtx t;
    VTX_HOUTLINE_T h = reinterpret_cast<VTX_HOUTLINE_T>(0x1);
    auto i = infoOf(4);
    EXPECT_EQ(adShrOtlNewOutline(t.ctx(), &i, &h, 0), VTX_STS_BAD_OUTLINE_TYPE);
    EXPECT_EQ(h, nullptr);
    i = infoOf(0, 3);
    EXPECT_EQ(adShrOtlNewOutline(t.ctx(), &i, &h, 0), VTX_STS_BAD_NAME_TYPE);
    EXPECT_EQ(h, nullptr);
    EXPECT_EQ(adShrOtlNewOutline(t.ctx(), nullptr, &h, 0), VTX_STS_NULL_ARG);
    EXPECT_EQ(t.stats().live, 0);
    // fNonUniqueName alone asks for duplicate names.
    i = infoOf(0);
    i.fNonUniqueName = 1;
    ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &i, &h, 1), 0);
    EXPECT_EQ(static_cast<VTX_POTL_T>(h)->usOtlNameType, VTX_NAMES_DUP);
    EXPECT_EQ(static_cast<VTX_POTL_T>(h)->iInputLocaleType, 1);
    EXPECT_EQ(adShrOtlCloseOutline(h), 0);
    EXPECT_EQ(adShrOtlCloseOutline(nullptr), 0);
    EXPECT_EQ(t.stats().live, 0);
}

// Fail every allocation of a creation in turn: each failure must leave a
// null handle and nothing allocated; the first run that succeeds ends it.
TEST(NewOutline, FailingEachAllocationLeaksNothing) {
    for (VTX_USHORT_T nameType : {0, 1}) {
        TestCtx t;
        bool succeeded = false;
        for (long n = 1; n < 200 && !succeeded; ++n) {
            t.failAt(n);
            VTX_HOUTLINE_T h = nullptr;
            auto i = infoOf(VTX_OTL_AGGSTORE, nameType);
            VTX_STS_T sts = adShrOtlNewOutline(t.ctx(), &i, &h, 0);
            t.noFail();
            if (sts == 0) {
                succeeded = true;
                ASSERT_NE(h, nullptr);
                vtx_outlineinfo_t *info = nullptr;
                EXPECT_EQ(adShrOtlGetOutlineInfo(h, &info), 0);
                adShrOtlFree(t.ctx(), info);
                adShrOtlCloseOutline(h);
            } else {
                EXPECT_EQ(sts, VTX_STS_NO_MEMORY) << "allocation " << n;
                EXPECT_EQ(h, nullptr);
            }
            ASSERT_EQ(t.stats().live, 0) << "allocation " << n << " left blocks behind";
        }
        EXPECT_TRUE(succeeded);
    }
}

TEST(OutlineInfo, GetterFailsCleanlyAndClampsAliasCount) {
    TestCtx t;
    Outline o(t, 0, VTX_NAMES_DUP);
    // An outline with duplicates that holds fewer than the two reserved
    // tables must not show a wrapped-around count.
    VTX_USHORT_T saved = o.p()->usNumAliasTables;
    o.p()->usNumAliasTables = 1;
    vtx_outlineinfo_t *info = nullptr;
    ASSERT_EQ(adShrOtlGetOutlineInfo(o.h, &info), 0);
    EXPECT_EQ(info->usNumAliasTables, 0);
    adShrOtlFree(t.ctx(), info);
    o.p()->usNumAliasTables = saved;

    t.failAt(1);
    info = reinterpret_cast<vtx_outlineinfo_t *>(0x1);
    EXPECT_EQ(adShrOtlGetOutlineInfo(o.h, &info), VTX_STS_NO_MEMORY);
    EXPECT_EQ(info, nullptr);
    EXPECT_EQ(adShrOtlGetOutlineInfo(nullptr, &info), VTX_STS_NULL_ARG);
}

TEST(OutlineInfo, SetRefusalsLeaveTheOutlineAsItWas) {
    TestCtx t;
    auto expectUnchanged = [](VTX_POTL_T before, VTX_POTL_T p) {
        EXPECT_EQ(before->usOutlineType, p->usOutlineType);
        EXPECT_EQ(before->cOPGVersion, p->cOPGVersion);
        EXPECT_EQ(before->bNonUniqueName, p->bNonUniqueName);
        EXPECT_EQ(before->bMemberTypeEnabled, p->bMemberTypeEnabled);
        EXPECT_EQ(before->ucStateFlag, p->ucStateFlag);
        EXPECT_EQ(before->usNumAliasTables, p->usNumAliasTables);
    };
    {
        Outline o(t);
        VTX_OTL_T before = *o.p();
        auto i = infoOf(4);
        EXPECT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), VTX_STS_BAD_OUTLINE_TYPE);
        EXPECT_EQ(adShrOtlSetOutlineNameType(o.h, VTX_NAMES_DUP), VTX_STS_DUP_CONVERT_UNAVAILABLE)
            << "duplicate names come through the outline info only";
        expectUnchanged(&before, o.p());

        // 5 is aggregate storage in the old paged format.
        i = infoOf(VTX_OTL_OLDAGG);
        ASSERT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), 0);
        EXPECT_EQ(o.p()->usOutlineType, VTX_OTL_AGGSTORE);
        EXPECT_EQ(o.p()->cOPGVersion, 71u);
        EXPECT_EQ(o.p()->ucStateFlag & OTL_STATE_EDITED, OTL_STATE_EDITED);
        VTX_ULONG_T seen = 0;
        EXPECT_EQ(adShrOtlGetOPGVersion(o.h, &seen), 0);
        EXPECT_EQ(seen, 71u);
        // Typed members in an old aggregate storage format.
        i = infoOf(VTX_OTL_REGULAR);
        ASSERT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), 0);
        i = infoOf(VTX_OTL_AGGSTORE);
        i.fEnableMemberType = 1;
        before = *o.p();
        EXPECT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), VTX_STS_MBRTYPE_OLD_AGG);
        expectUnchanged(&before, o.p());
    }
    {
        Outline o(t, VTX_OTL_CURRENCY);
        auto i = infoOf(VTX_OTL_AGGSTORE);
        EXPECT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), VTX_STS_CURRENCY_TO_AGG);
        // Varying attributes never go with a currency outline.
        o.p()->cOPGVersion = 92;
        i = infoOf(VTX_OTL_CURRENCY);
        i.fEnableVaryingAttrs = 1;
        EXPECT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), VTX_STS_VARYING_OLD);
        EXPECT_FALSE(o.p()->fEnableSlowlyChgAttrs);
    }
    {
        Outline o(t);
        auto i = infoOf(0);
        i.fEnableMemberType = 1;
        ASSERT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), 0);
        EXPECT_TRUE(o.p()->bMemberTypeEnabled);
        i.fEnableMemberType = 0;
        EXPECT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), VTX_STS_MBRTYPE_OFF_REFUSED);
        EXPECT_TRUE(o.p()->bMemberTypeEnabled);
        o.p()->fOpenQuery = 1;
        i.fEnableMemberType = 1;
        EXPECT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), VTX_STS_WRONG_MODE);
        o.p()->fOpenQuery = 0;
    }
    {
        Outline o(t, 0, VTX_NAMES_DUP);
        auto i = infoOf(0);
        EXPECT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), VTX_STS_DUP_OFF_REFUSED);
        // Asking again for what it has touches only the marks.
        i.fNonUniqueName = 1;
        o.p()->fVerified = 1;
        o.p()->ucStateFlag = 0;
        ASSERT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), 0);
        EXPECT_EQ(o.p()->usNumAliasTables, 3);
        EXPECT_FALSE(o.p()->fVerified);
        EXPECT_EQ(o.p()->ucStateFlag, OTL_STATE_EDITED);
    }
    EXPECT_EQ(t.stats().live, 0);
}

TEST(OutlineInfo, AggregateStorageRaisesPagedVersionForManyTablesAndCipher) {
    TestCtx t;
    Outline o(t);
    o.p()->cOPGVersion = 80;
    o.p()->usNumAliasTables = 33;  // only the count matters to the version rule
    auto i = infoOf(VTX_OTL_AGGSTORE);
    ASSERT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), 0);
    EXPECT_EQ(o.p()->cOPGVersion, 85u);
    o.p()->usNumAliasTables = 1;
    o.p()->isEncrypted = 1;
    ASSERT_EQ(adShrOtlSetOutlineInfo(o.h, &i, 0, nullptr), 0);
    EXPECT_EQ(o.p()->cOPGVersion, 90u);
}

TEST(Setters, NameTypeMovesOnlyFromUnique) {
    TestCtx t;
    {
        Outline o(t);
        EXPECT_EQ(adShrOtlSetOutlineNameType(o.h, 3), VTX_STS_BAD_NAME_TYPE);
        EXPECT_EQ(adShrOtlSetOutlineNameType(o.h, 0), 0);
        o.p()->ucImpliedShareSetting = 3;
        ASSERT_EQ(adShrOtlSetOutlineNameType(o.h, VTX_NAMES_RELAXED), 0);
        EXPECT_EQ(o.p()->ucImpliedShareSetting, 4) << "relaxed names force implied sharing 4";
        EXPECT_TRUE(o.p()->ucStateFlag & OTL_STATE_CHANGED);
        EXPECT_EQ(adShrOtlSetOutlineNameType(o.h, 0), VTX_STS_NAMETYPE_2_TO_0);
        EXPECT_EQ(adShrOtlSetOutlineNameType(o.h, 1), VTX_STS_NAMETYPE_2_TO_1);
        VTX_USHORT_T nt = 9;
        EXPECT_EQ(adShrOtlGetOutlineNameType(o.h, &nt), 0);
        EXPECT_EQ(nt, VTX_NAMES_RELAXED);
    }
    {
        Outline o(t, 0, VTX_NAMES_DUP);
        EXPECT_EQ(adShrOtlSetOutlineNameType(o.h, 2), VTX_STS_NAMETYPE_1_TO_2);
        EXPECT_EQ(adShrOtlSetOutlineNameType(o.h, 0), VTX_STS_NAMETYPE_1_TO_0);
    }
    {
        Outline o(t, VTX_OTL_AGGSTORE);
        o.p()->cOPGVersion = 81;
        EXPECT_EQ(adShrOtlSetOutlineNameType(o.h, 2), VTX_STS_RELAXED_OLD_AGG);
        o.p()->cOPGVersion = 82;
        EXPECT_EQ(adShrOtlSetOutlineNameType(o.h, 2), 0);
    }
}

TEST(Setters, ImpliedShareSettingAndPlainSetters) {
    TestCtx t;
    Outline o(t, VTX_OTL_AGGSTORE);
    o.p()->cOPGVersion = 76;
    EXPECT_EQ(adShrOtlSetImpliedShareSetting(o.h, 3, 4), VTX_STS_IMPLIED_SHARE_OLD);
    o.p()->cOPGVersion = 77;
    o.p()->ucStateFlag = 0;
    EXPECT_EQ(adShrOtlSetImpliedShareSetting(o.h, 4, 3), 0);
    EXPECT_EQ(o.p()->ucStateFlag, 0) << "no change, no mark";
    EXPECT_EQ(adShrOtlSetImpliedShareSetting(o.h, 7, 3), 0);
    VTX_UCHAR_T v = 0;
    EXPECT_EQ(adShrOtlGetImpliedShareSetting(o.h, &v), 0);
    EXPECT_EQ(v, 3) << "an unknown value takes the configured one";
    EXPECT_EQ(o.p()->ucStateFlag, OTL_STATE_CHANGED);

    o.p()->ucStateFlag = 0;
    EXPECT_EQ(adShrOtlSetForceWrite(o.h, 1), 0);
    EXPECT_TRUE(o.p()->fForceWrite);
    EXPECT_EQ(o.p()->ucStateFlag, 0);
    EXPECT_EQ(adShrOtlSetMyAnalyticsOutline(o.h, 1), 0);
    EXPECT_EQ(o.p()->ucStateFlag, OTL_STATE_CHANGED);
    VTX_BOOL_T b = 0;
    EXPECT_EQ(adShrOtlGetMyAnalyticsOutline(o.h, &b), 0);
    EXPECT_EQ(b, 1);
    EXPECT_EQ(adShrOtlSetOutlineVersion(o.h, 42), 0);
    VTX_ULONG_T ver = 0;
    EXPECT_EQ(adShrOtlGetOutlineVersion(o.h, &ver), 0);
    EXPECT_EQ(ver, 42u);
    // The force-write and analytics setters need an edit handle; the
    // version setter serves any.
    o.p()->fOpenQuery = 1;
    EXPECT_EQ(adShrOtlSetForceWrite(o.h, 0), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlSetMyAnalyticsOutline(o.h, 0), VTX_STS_WRONG_MODE);
    EXPECT_EQ(adShrOtlSetOutlineVersion(o.h, 43), 0);
    EXPECT_EQ(adShrOtlGetOutlineIsUtf8(o.h, &b), 0);
    o.p()->fOpenQuery = 0;
    char buf[8] = "x";
    EXPECT_EQ(adShrOtlGetPagedFilename(o.h, buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "") << "not an incremental paged outline";
    o.p()->cOPGVersion = 83;
    EXPECT_EQ(adShrOtlGetOPGVersion(o.h, &ver), VTX_STS_BAD_OPG_VERSION);
    EXPECT_EQ(ver, 0u);
}

TEST(CallFrame, HiddenQueryAndProhibitedRefusals) {
    TestCtx t;
    Outline o(t);
    _vtx_otlmbrlarge_t hidden{};
    hidden.ucFlags2 = OTL_FLAG2_HIDDEN;
    vtx_outerror_t err;
    std::memset(&err, 0xAB, sizeof err);
    {
        otl::CallFrame f(o.h, otl::kEdit, &err);
        EXPECT_EQ(err.hMember, nullptr) << "the error record is zeroed on entry";
        EXPECT_EQ(err.ulErrors6, 0u);
        EXPECT_EQ(f.enter({nullptr, reinterpret_cast<VTX_HMEMBER_T>(&hidden)}), VTX_STS_SILENT);
    }
    o.p()->bEditingProhibited = 1;
    EXPECT_EQ(otl::CallFrame(o.h, otl::kEdit).enter(), VTX_STS_EDIT_PROHIBITED);
    EXPECT_EQ(otl::CallFrame(o.h, otl::kRead).enter(), 0);
    o.p()->bEditingProhibited = 0;
    o.p()->fOpenQuery = 1;
    EXPECT_EQ(otl::CallFrame(o.h, otl::kRead).enter(), VTX_STS_WRONG_MODE);
    EXPECT_EQ(otl::CallFrame(o.h, otl::kRead | otl::kQueryOk).enter(), 0);
    o.p()->fOpenQuery = 0;
    EXPECT_EQ(otl::CallFrame(nullptr, otl::kRead).enter(), VTX_STS_NULL_ARG);
    otl::CallFrame f(o.h, otl::kEdit);
    o.p()->fVerified = 1;
    f.edited();
    EXPECT_FALSE(o.p()->fVerified);
    EXPECT_EQ(o.p()->ucStateFlag & OTL_STATE_EDITED, OTL_STATE_EDITED);
}

TEST(Reporting, FailuresStayFailuresWhateverTheCallbackAnswers) {
    TestCtx t(/*withMessages=*/true);
    Outline o(t);
    t.messages().clear();
    EXPECT_EQ(adShrOtlSetOutlineNameType(o.h, 3), VTX_STS_BAD_NAME_TYPE)
        << "the recording callback answers 0, the refusal must still read as one";
    ASSERT_EQ(t.messages().size(), 1u);
    EXPECT_EQ(t.messages()[0].first, VTX_STS_BAD_NAME_TYPE);
    EXPECT_FALSE(t.messages()[0].second.empty());

    // The member-edit rule also sends for a server agent caller.
    t.ctx()->bSendMsgNet = 0;
    t.messages().clear();
    EXPECT_EQ(otlReport(t.ctx(), VTX_STS_INVALID_NAME, "x", VTX_MSGARG_STR, nullptr, 0), VTX_STS_INVALID_NAME);
    EXPECT_TRUE(t.messages().empty());
    o.p()->ucCallerType = 2;
    EXPECT_EQ(otlReportEdit(o.p(), VTX_STS_INVALID_NAME, "Jan", VTX_MSGARG_STR, nullptr, 0), VTX_STS_INVALID_NAME);
    ASSERT_EQ(t.messages().size(), 1u);
    EXPECT_NE(t.messages()[0].second.find("Jan"), std::string::npos);
    // A dimension build keeps name clashes quiet.
    o.p()->fBuildingDim = 1;
    EXPECT_EQ(otlReportClash(o.p(), VTX_STS_SIBLING_NOT_UNIQUE, nullptr, 0, nullptr, 0), VTX_STS_SIBLING_NOT_UNIQUE);
    EXPECT_EQ(t.messages().size(), 1u);
}

TEST(Callbacks, ErrorCallbackKeepsTailOfLogAndMessage) {
    char buf[VTX_ERRBUF_LEN];
    std::strcpy(buf, "untouched");
    EXPECT_EQ(adShrOtlErrorCallback(buf, 1060010, 3, "a/b", "warn"), 0);
    EXPECT_STREQ(buf, "untouched") << "below level 4 nothing is kept";
    EXPECT_EQ(adShrOtlErrorCallback(nullptr, 1060010, 4, "a/b", "x"), 0);
    EXPECT_EQ(adShrOtlErrorCallback(buf, 1060010, 4, "vtxotl/src/Error 1060010", "Invalid member name (Jan)"), 0);
    EXPECT_STREQ(buf, "Error 1060010 - Invalid member name (Jan)");
    EXPECT_EQ(adShrOtlErrorCallback(buf, 1, 4, "no slash", "m"), 0);
    EXPECT_STREQ(buf, "no slash - m");
    std::string longMsg(5000, 'x');
    EXPECT_EQ(adShrOtlErrorCallback(buf, 1, 4, "l/", longMsg.c_str()), 0);
    EXPECT_EQ(std::strlen(buf), VTX_ERRBUF_LEN - 1u) << "cut at the buffer";
    EXPECT_EQ(std::string(buf, 3), " - ");

    EXPECT_EQ(APIError(nullptr, 77, 5, "l", "m"), 77);
    EXPECT_EQ(APIError(nullptr, 77, 3, "l", "m"), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(VtxError(nullptr, 77, 4, "log line", "message line"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "log line\nmessage line\n");
}

TEST(Appender, AppendsWholePiecesUntilOneDoesNotFit) {
    char buf[8];
    VtxStaticBufferToAppend x;
    adShrOtlGlobStrCatInit(&x, nullptr, buf, sizeof buf);
    EXPECT_EQ(adShrOtlGlobStrCatTail(&x, "abc"), 1);
    EXPECT_EQ(adShrOtlGlobStrCatTail(&x, "defg"), 1) << "7 bytes and the terminator fill 8 exactly";
    EXPECT_STREQ(buf, "abcdefg");
    EXPECT_FALSE(x.bTriggered);
    adShrOtlGlobStrCatInit(&x, nullptr, buf, sizeof buf);
    EXPECT_EQ(adShrOtlGlobStrCatTail(&x, "abcd"), 1);
    EXPECT_EQ(adShrOtlGlobStrCatTail(&x, "efgh"), 0);
    EXPECT_TRUE(x.bTriggered);
    EXPECT_STREQ(buf, "abcd") << "a piece that does not fit leaves the buffer as it was";
    EXPECT_EQ(adShrOtlGlobStrCatTail(&x, "e"), 0) << "once triggered, even a fitting piece is refused";
    EXPECT_STREQ(buf, "abcd");
}

TEST(MemoryRelease, FreeCallsReleaseOwnedTexts) {
    TestCtx t;
    EXPECT_EQ(adShrOtlFree(t.ctx(), nullptr), 0);
    vtx_mbrinfo_t *arr = nullptr;
    ASSERT_EQ(otlAlloc(t.ctx(), 3 * sizeof(vtx_mbrinfo_t), &arr), 0);
    for (int i : {0, 2}) {
        arr[i].Attribute.usDataType = VTX_ATTR_STRING;
        ASSERT_EQ(otlStrdup(t.ctx(), "red", &arr[i].Attribute.value.pszValue), 0);
    }
    arr[1].Attribute.usDataType = VTX_ATTR_NUMERIC;
    arr[1].Attribute.value.dblValue = 2.5;
    EXPECT_EQ(adShrOtlFreeMbrInfo(t.ctx(), 3, arr), 0);
    EXPECT_EQ(t.stats().live, 0);

    VTX_ATTRIBUTEVALUE_T v{};
    v.usDataType = VTX_ATTR_STRING;
    ASSERT_EQ(otlStrdup(t.ctx(), "x", &v.value.pszValue), 0);
    EXPECT_EQ(adShrOtlFreeAttribute(t.ctx(), &v), 0);
    EXPECT_EQ(v.usDataType, 0);
    EXPECT_EQ(v.value.pszValue, nullptr);

    VTX_ATTRSPECS_T *specs = nullptr;
    ASSERT_EQ(otlAlloc(t.ctx(), sizeof *specs, &specs), 0);
    ASSERT_EQ(otlStrdup(t.ctx(), "True", &specs->pszDefaultTrueString), 0);
    ASSERT_EQ(otlStrdup(t.ctx(), "Max", &specs->pszDefaultMaxMbrName), 0);
    EXPECT_EQ(adShrOtlFreeAttrSpecs(t.ctx(), specs), 0);
    EXPECT_EQ(t.stats().live, 0);
}

// Turning an outline to duplicate names puts "Unique Name" and "Member ID" in
// front of its tables; every table keeps its name, aliases and count, and
// the outline must be saved before the next edit.
TEST(OutlineInfo, TurningToDuplicateNamesMakesRoomForTheReservedTables) {
    TestCtx t;
    auto build = [&](VTX_HOUTLINE_T *ph, VTX_HMEMBER_T *pJan) {
        auto i = infoOf(0);
        ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &i, ph, 0), 0);
        vtx_mbrinfo_t m{};
        std::strcpy(m.szMember, "Year");
        VTX_HMEMBER_T year = nullptr;
        ASSERT_EQ(adShrOtlAddDimension(*ph, &m, nullptr, nullptr, &year, nullptr), 0);
        std::strcpy(m.szMember, "Jan");
        ASSERT_EQ(adShrOtlAddMember(*ph, &m, year, nullptr, pJan, 0, nullptr), 0);
        ASSERT_EQ(adShrOtlCreateAliasTable(*ph, "German", 0), 0);
        ASSERT_EQ(adShrOtlSetMemberAlias(*ph, *pJan, "Default", "January", 0, nullptr), 0);
        ASSERT_EQ(adShrOtlSetMemberAlias(*ph, *pJan, "German", "Januar", 0, nullptr), 0);
        ASSERT_EQ(adShrOtlSetAliasTableLanguage(*ph, "German", "de"), 0);
    };
    auto dup = infoOf(0);
    dup.fNonUniqueName = 1;
    // Every allocation of the change failed in turn leaves the outline as it was.
    bool converted = false;
    for (long n = 1; n < 60 && !converted; ++n) {
        VTX_HOUTLINE_T h = nullptr;
        VTX_HMEMBER_T jan = nullptr;
        build(&h, &jan);
        VTX_POTL_T p = static_cast<VTX_POTL_T>(h);
        t.failAt(n);
        VTX_STS_T sts = adShrOtlSetOutlineInfo(h, &dup, 0, nullptr);
        t.noFail();
        if (sts) {
            EXPECT_EQ(sts, VTX_STS_NO_MEMORY);
            EXPECT_FALSE(p->bNonUniqueName);
            ASSERT_EQ(p->usNumAliasTables, 2);
            EXPECT_STREQ(p->pAliasArray[1], "German");
            VTX_HMEMBER_T found = nullptr;
            EXPECT_EQ(adShrOtlFindAlias(h, "Januar", "German", &found), 0);
            EXPECT_EQ(found, jan);
            adShrOtlCloseOutline(h);
            ASSERT_EQ(t.stats().live, 0);
            continue;
        }
        converted = true;
        ASSERT_EQ(p->usNumAliasTables, 4);
        EXPECT_STREQ(p->pAliasArray[0], "Unique Name");
        EXPECT_STREQ(p->pAliasArray[1], "Member ID");
        EXPECT_STREQ(p->pAliasArray[2], "Default");
        EXPECT_STREQ(p->pAliasArray[3], "German");
        EXPECT_STREQ(p->pAliasTableLanguages[3], "de");
        EXPECT_EQ(p->ucUniqueAliasTable[1], 2);
        EXPECT_EQ(p->aliasCounts[0], 0u);
        EXPECT_EQ(p->aliasCounts[3], 1u);
        auto *m = static_cast<VTX_POTLMBR_T>(jan);
        EXPECT_STREQ(m->AliasArray[2].pszDefName, "January");
        EXPECT_STREQ(m->AliasArray[3].pszDefName, "Januar");
        EXPECT_TRUE(p->bNonUniqueName);
        EXPECT_EQ(p->usOtlNameType, VTX_NAMES_DUP);
        EXPECT_TRUE(p->pHeadItem->pChild->ucFlags & OTL_FLAG_DUP);
        VTX_HMEMBER_T found = nullptr;
        EXPECT_EQ(adShrOtlFindAlias(h, "Januar", "German", &found), 0);
        EXPECT_EQ(found, jan);
        vtx_outlineinfo_t *info = nullptr;
        ASSERT_EQ(adShrOtlGetOutlineInfo(h, &info), 0);
        EXPECT_EQ(info->usNumAliasTables, 2);
        EXPECT_STREQ(info->pAliasTables[0], "Default");
        adShrOtlFree(t.ctx(), info);
        vtx_mbrinfo_t mi{};
        std::strcpy(mi.szMember, "Feb");
        VTX_HMEMBER_T feb = nullptr;
        EXPECT_EQ(adShrOtlAddMember(h, &mi, nullptr, jan, &feb, 0, nullptr), VTX_STS_EDIT_PROHIBITED);
        adShrOtlCloseOutline(h);
        EXPECT_EQ(t.stats().live, 0);
    }
    EXPECT_TRUE(converted);
}
