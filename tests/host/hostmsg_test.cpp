// Message service of libvtxhost: the catalogue, argument substitution and
// the verdict rules.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "vtxhostsvc.h"
#include "vtxstatus.h"

namespace {

struct Received {
    void *user = nullptr;
    VTX_STS_T num = 0;
    VTX_USHORT_T level = 0;
    std::string log, msg;
    int calls = 0;
};
Received g_rx;
VTX_STS_T g_answer = 0;

VTX_STS_T recorder(void *user, VTX_STS_T num, VTX_USHORT_T level, VTX_CSTR_T log, VTX_CSTR_T msg) {
    g_rx.user = user;
    g_rx.num = num;
    g_rx.level = level;
    g_rx.log = log ? log : "<null>";
    g_rx.msg = msg ? msg : "<null>";
    ++g_rx.calls;
    return g_answer;
}

class HostMessages : public testing::Test {
protected:
    void SetUp() override {
        std::memset(&ctx_, 0, sizeof ctx_);
        ctx_.MsgCallback = recorder;
        g_rx = Received{};
        g_answer = 0;
    }
    std::string send(VTX_STS_T code, const void *a1, VTX_USHORT_T t1, const void *a2 = nullptr,
                     VTX_USHORT_T t2 = VTX_MSGARG_NONE) {
        adNetLocalMessage(&ctx_, code, VTX_MSG_ERROR, a1, t1, a2, t2);
        return g_rx.msg;
    }
    vtx_netctx_t ctx_;
};

// ---- substitution -------------------------------------------------------

TEST_F(HostMessages, ArgumentsFillTheCatalogueText) {
    EXPECT_EQ(send(1060010, "Sales", VTX_MSGARG_STR), "Invalid member name (Sales)");
    EXPECT_EQ(g_rx.num, 1060010);
    EXPECT_EQ(g_rx.level, VTX_MSG_ERROR);

    EXPECT_EQ(send(1060345, "Product", VTX_MSGARG_STR, "Cola", VTX_MSGARG_STR),
              "Dimension [Product] is set to only allow unique members. "
              "A member named [Cola] already exists");

    uint16_t gen = 3;
    EXPECT_EQ(send(1060347, &gen, VTX_MSGARG_PU16, "Market", VTX_MSGARG_STR),
              "Only unique members at named generation [3] are allowed in dimension [Market].  "
              "The member name already exists.");

    uint32_t arg = 4;
    EXPECT_EQ(send(1060001, &arg, VTX_MSGARG_PU32, "adShrOtlGetMemberField", VTX_MSGARG_STR),
              "Argument 4 of adShrOtlGetMemberField must not be null");
    EXPECT_EQ(send(1060358, "setItemInPos", VTX_MSGARG_STR), "Out of memory in setItemInPos");
}

TEST_F(HostMessages, MismatchedArgumentsNeverBreakTheText) {
    // Missing arguments render as nothing.
    EXPECT_EQ(send(1060345, "Product", VTX_MSGARG_STR),
              "Dimension [Product] is set to only allow unique members. "
              "A member named [] already exists");
    EXPECT_EQ(send(1060010, nullptr, VTX_MSGARG_NONE), "Invalid member name ()");
    // A null pointer with a type, or an unknown type, is nothing as well.
    EXPECT_EQ(send(1060010, nullptr, VTX_MSGARG_STR), "Invalid member name ()");
    EXPECT_EQ(send(1060010, "x", 77), "Invalid member name ()");
    // A number where the text wants a string, and the other way round.
    uint32_t big = 4000000000u;
    EXPECT_EQ(send(1060010, &big, VTX_MSGARG_PU32), "Invalid member name (4000000000)");
    EXPECT_EQ(send(1060347, "five", VTX_MSGARG_STR, "D", VTX_MSGARG_STR),
              "Only unique members at named generation [five] are allowed in dimension [D].  "
              "The member name already exists.");
    // Extra arguments are ignored.
    EXPECT_EQ(send(1060010, "a", VTX_MSGARG_STR, "b", VTX_MSGARG_STR), "Invalid member name (a)");
    // Conversion characters inside an argument are plain text.
    EXPECT_EQ(send(1060010, "%s%n%d", VTX_MSGARG_STR), "Invalid member name (%s%n%d)");
}

TEST_F(HostMessages, SignedConversionsReadTheWidthOfTheArgument) {
    // 1060358 is "%s": a 16-bit number is printed unsigned there.
    uint16_t minus1 = 0xFFFF;
    EXPECT_EQ(send(1060358, &minus1, VTX_MSGARG_PU16), "Out of memory in 65535");
    // An unaligned number is read safely.
    alignas(4) unsigned char raw[8] = {0};
    uint32_t v = 123456;
    std::memcpy(raw + 1, &v, sizeof v);
    EXPECT_EQ(send(1060358, raw + 1, VTX_MSGARG_PU32), "Out of memory in 123456");
}

TEST_F(HostMessages, LongArgumentsAreBoundedAtACharacterBoundary) {
    // "é" is two bytes: a cut in the middle would leave a broken sequence.
    std::string name;
    for (int i = 0; i < 5000; ++i) name += "\xC3\xA9";
    std::string msg = send(1060010, name.c_str(), VTX_MSGARG_STR);
    EXPECT_LE(msg.size(), size_t{VTX_ERRBUF_LEN - 1});
    EXPECT_GT(msg.size(), size_t{VTX_ERRBUF_LEN - 8});
    EXPECT_EQ(msg.rfind("Invalid member name (", 0), 0u);
    void *utf8 = nullptr;
    adGlobGetUTF8Locale(&utf8);
    EXPECT_TRUE(adGlobStrIsValid(utf8, msg.c_str()));
}

// ---- verdicts and delivery -------------------------------------------------

TEST_F(HostMessages, ErrorsAlwaysAnswerTheirNumber) {
    g_answer = 0;  // the callback "accepts"
    EXPECT_EQ(adNetLocalMessage(&ctx_, 1060068, VTX_MSG_ERROR, nullptr, 0, nullptr, 0), 1060068);
    EXPECT_EQ(g_rx.calls, 1);
    g_answer = 99;
    EXPECT_EQ(adNetLocalMessage(&ctx_, 1060068, VTX_MSG_ERROR, nullptr, 0, nullptr, 0), 1060068);
    ctx_.MsgCallback = nullptr;
    EXPECT_EQ(adNetLocalMessage(&ctx_, 1060068, VTX_MSG_ERROR, nullptr, 0, nullptr, 0), 1060068);
    EXPECT_EQ(adNetLocalMessage(nullptr, 1060068, VTX_MSG_ERROR, nullptr, 0, nullptr, 0), 1060068);
}

TEST_F(HostMessages, LesserLevelsAnswerTheCallbacksVerdict) {
    g_answer = 0;
    EXPECT_EQ(adNetLocalMessage(&ctx_, 1060098, VTX_MSG_WARNING, "x", VTX_MSGARG_STR, nullptr, 0),
              0);
    EXPECT_EQ(g_rx.level, VTX_MSG_WARNING);
    g_answer = 1060098;
    EXPECT_EQ(adNetLocalMessage(&ctx_, 1060098, VTX_MSG_WARNING, "x", VTX_MSGARG_STR, nullptr, 0),
              1060098);
    g_answer = 7;
    EXPECT_EQ(adNetLocalMessage(&ctx_, 1060362, VTX_MSG_INFO, nullptr, 0, nullptr, 0), 7);
    ctx_.MsgCallback = nullptr;
    EXPECT_EQ(adNetLocalMessage(&ctx_, 1060098, VTX_MSG_WARNING, nullptr, 0, nullptr, 0), 0);
    EXPECT_EQ(adNetLocalMessage(nullptr, 1060098, VTX_MSG_WARNING, nullptr, 0, nullptr, 0), 0);
}

TEST_F(HostMessages, CallbackGetsTheUserContextOrTheContextItself) {
    adNetLocalMessage(&ctx_, 1060010, VTX_MSG_ERROR, "a", VTX_MSGARG_STR, nullptr, 0);
    EXPECT_EQ(g_rx.user, &ctx_);
    int mine = 0;
    ctx_.pMsgUserCtx = &mine;
    adNetLocalMessage(&ctx_, 1060010, VTX_MSG_ERROR, "a", VTX_MSGARG_STR, nullptr, 0);
    EXPECT_EQ(g_rx.user, &mine);
}

TEST_F(HostMessages, LogStringNamesLevelAndNumber) {
    adNetLocalMessage(&ctx_, 1060010, VTX_MSG_ERROR, "a", VTX_MSGARG_STR, nullptr, 0);
    EXPECT_EQ(g_rx.log, "vtxotl/Error 1060010");
    adNetLocalMessage(&ctx_, 1060538, VTX_MSG_WARNING, "a", VTX_MSGARG_STR, nullptr, 0);
    EXPECT_EQ(g_rx.log, "vtxotl/Warning 1060538");
    adNetLocalMessage(&ctx_, 1060362, VTX_MSG_INFO, nullptr, 0, nullptr, 0);
    EXPECT_EQ(g_rx.log, "vtxotl/Info 1060362");
}

TEST_F(HostMessages, UnknownNumbersGetAGenericText) {
    EXPECT_EQ(adNetLocalMessage(&ctx_, 1069999, VTX_MSG_ERROR, nullptr, 0, nullptr, 0), 1069999);
    EXPECT_EQ(g_rx.msg, "Message 1069999");
    EXPECT_EQ(g_rx.log, "vtxotl/Error 1069999");
    adNetLocalMessage(&ctx_, 1069999, VTX_MSG_ERROR, "ctx", VTX_MSGARG_STR, nullptr, 0);
    EXPECT_EQ(g_rx.msg, "Message 1069999: ctx");
    EXPECT_EQ(adNetMessageText(1069999), nullptr);
    EXPECT_EQ(adNetMessageLevel(1069999), 0);
    EXPECT_EQ(adNetMessageText(0), nullptr);
    EXPECT_EQ(adNetMessageText(-1), nullptr);
}

// ---- the catalogue ----------------------------------------------------------

TEST(HostCatalogue, FixedTextsAreVerbatim) {
    const std::pair<VTX_STS_T, const char *> fixed[] = {
        {1060010, "Invalid member name (%s)"},
        {1060068, "The outline was opened in the wrong mode to make this call"},
        {1060107, "Illegal operation for the member"},
        {1060202, "Dimension name must be unique"},
        {1060203, "Member name must be unique among its siblings"},
        {1060217, "The member name [%s] is duplicate with a dimension name"},
        {1060291, "The outline must be saved and re-opened before it can be edited"},
        {1060345, "Dimension [%s] is set to only allow unique members. A member named [%s] "
                  "already exists"},
        {1060347, "Only unique members at named generation [%hu] are allowed in dimension [%s].  "
                  "The member name already exists."},
        {1060600, "A member name does not fit the member record of a client older than 5.0"},
        {1060358, "Out of memory in %s"},
    };
    for (const auto &[num, text] : fixed) {
        ASSERT_NE(adNetMessageText(num), nullptr) << num;
        EXPECT_STREQ(adNetMessageText(num), text) << num;
        EXPECT_EQ(adNetMessageLevel(num), VTX_MSG_ERROR) << num;
    }
}

TEST(HostCatalogue, LevelsAreRecorded) {
    EXPECT_EQ(adNetMessageLevel(1060538), VTX_MSG_WARNING);
    EXPECT_EQ(adNetMessageLevel(1060362), VTX_MSG_INFO);
}

// Every number named in vtxstatus.h must have a text: a status without one
// would reach the user as a bare number.
TEST(HostCatalogue, CoversEveryStatusNumberOfTheHeader) {
    std::ifstream in(VTX_STATUS_HEADER);
    ASSERT_TRUE(in.good()) << VTX_STATUS_HEADER;
    std::regex def(R"(^\s*#\s*define\s+(VTX_STS_\w+)\s+\(?\s*(-?\d+)\s*\)?)");
    std::string line;
    int positives = 0;
    std::vector<std::string> missing;
    while (std::getline(in, line)) {
        std::smatch m;
        if (!std::regex_search(line, m, def)) continue;
        long value = std::stol(m[2]);
        if (value <= 0) continue;
        ++positives;
        const char *text = adNetMessageText(static_cast<VTX_STS_T>(value));
        if (!text || !*text || adNetMessageLevel(static_cast<VTX_STS_T>(value)) == 0)
            missing.push_back(std::string(m[1]) + " " + m[2].str());
    }
    EXPECT_GT(positives, 300) << "the header parse found too few numbers";
    EXPECT_TRUE(missing.empty()) << "no catalogue text for: " << testing::PrintToString(missing);
}

// Catalogue texts use only conversions the service knows how to fill.
TEST(HostCatalogue, TextsUseOnlyKnownConversions) {
    std::ifstream in(VTX_STATUS_HEADER);
    std::regex def(R"(^\s*#\s*define\s+VTX_STS_\w+\s+(\d+))");
    std::regex conv(R"(%(?:%|-?\d*(?:\.\d+)?(?:hh|h|l|ll|z)?[sdiuxX]))");
    std::regex anyPct("%");
    std::string line;
    while (std::getline(in, line)) {
        std::smatch m;
        if (!std::regex_search(line, m, def)) continue;
        const char *text = adNetMessageText(static_cast<VTX_STS_T>(std::stol(m[1])));
        if (!text) continue;
        std::string t = text;
        auto n = [&](const std::regex &r) {
            return std::distance(std::sregex_iterator(t.begin(), t.end(), r), std::sregex_iterator());
        };
        EXPECT_EQ(n(conv), n(anyPct)) << m[1] << ": " << t;
        EXPECT_LE(n(conv), 2) << m[1] << ": at most two arguments are passed";
    }
}

} // namespace
