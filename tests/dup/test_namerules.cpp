// Name legality beyond the outline in hand: the rules for a caller with only
// the outline's kind, member identifiers, the long-name mark, text that is
// not UTF-8, and the old limit for a host that gives no client version.
#include <string>

#include "editsupport.h"

using edittest::EditTest;

namespace {

class NameRules : public EditTest {};

TEST_F(NameRules, RulesWithoutAnOutline) {
    vtx_netctx_t *c = t.ctx();
    std::string n80(80, 'a'), n81(81, 'a'), n1024(1024, 'b'), n1025(1025, 'b');
    auto motf = [&](VTX_USHORT_T type, VTX_USHORT_T names, const std::string &n, NAMETYPE_T kind = 1) {
        return otlMotfIsNameLegal(type, names, n.c_str(), c, kind) != 0;
    };
    // Block storage: 1024 characters for a new client.
    EXPECT_TRUE(motf(VTX_OTL_REGULAR, VTX_NAMES_UNIQUE, n1024));
    EXPECT_FALSE(motf(VTX_OTL_REGULAR, VTX_NAMES_UNIQUE, n1025));
    // Aggregate storage keeps 80: the paged version is not known here.
    EXPECT_TRUE(motf(VTX_OTL_AGGSTORE, VTX_NAMES_UNIQUE, n80));
    EXPECT_FALSE(motf(VTX_OTL_AGGSTORE, VTX_NAMES_UNIQUE, n81));
    // Other object names keep 80 everywhere.
    EXPECT_FALSE(motf(VTX_OTL_REGULAR, VTX_NAMES_UNIQUE, n81, 0));
    // No mark is set anywhere: there is no outline to set it on.
    EXPECT_TRUE(motf(VTX_OTL_REGULAR, VTX_NAMES_UNIQUE, n81));
    EXPECT_EQ(o->bLongNames, 0);
    // Character rules, waived by the relaxed name rule but for reserved words.
    for (const char *bad : {"(x", " x", "x ", "a\"b", "@x"}) {
        EXPECT_FALSE(motf(VTX_OTL_REGULAR, VTX_NAMES_DUP, bad)) << bad;
        EXPECT_TRUE(motf(VTX_OTL_REGULAR, VTX_NAMES_RELAXED, bad)) << bad;
    }
    for (const char *reserved : {"#missing", "$$$Universe$$$", "$Null$"})
        EXPECT_FALSE(motf(VTX_OTL_REGULAR, VTX_NAMES_RELAXED, reserved)) << reserved;
    EXPECT_FALSE(otlMotfIsNameLegal(VTX_OTL_REGULAR, VTX_NAMES_UNIQUE, nullptr, c, 1));
    // An old client is held to 80.
    c->lClientDllVersion = 725536;
    EXPECT_FALSE(motf(VTX_OTL_REGULAR, VTX_NAMES_UNIQUE, n81));
    c->lClientDllVersion = 0;
    EXPECT_FALSE(motf(VTX_OTL_REGULAR, VTX_NAMES_UNIQUE, n81));
    EXPECT_TRUE(motf(VTX_OTL_REGULAR, VTX_NAMES_UNIQUE, n80));
}

TEST_F(NameRules, MemberIdentifiers) {
    std::string longest(16500, 'x'), tooLong(16501, 'x');
    EXPECT_TRUE(otlIsMemberIDLegal(longest.c_str(), t.ctx()));
    EXPECT_FALSE(otlIsMemberIDLegal(tooLong.c_str(), t.ctx()));
    EXPECT_FALSE(otlIsMemberIDLegal(nullptr, t.ctx()));
    // Identifiers are keys, not names: blanks and brackets are fine.
    EXPECT_TRUE(otlIsMemberIDLegal(" (id) ", t.ctx()));
    EXPECT_TRUE(otlIsMemberIDLegal("a\"b", t.ctx()));
    EXPECT_FALSE(otlIsMemberIDLegal("#MISSING", t.ctx()));
    EXPECT_FALSE(otlIsMemberIDLegal("$null$", t.ctx()));
}

TEST_F(NameRules, LongNameMark) {
    otlEnableLongNames(o, VTX_OTL_REGULAR, 80, 1);
    EXPECT_EQ(o->bLongNames, 0);
    otlEnableLongNames(o, VTX_OTL_REGULAR, 81, 0);  // not a member name
    EXPECT_EQ(o->bLongNames, 0);
    otlEnableLongNames(o, VTX_OTL_AGGSTORE, 200, 1);  // aggregate storage has no short form
    EXPECT_EQ(o->bLongNames, 0);
    otlEnableLongNames(o, VTX_OTL_REGULAR, 81, 1);
    EXPECT_EQ(o->bLongNames, 1);
    // An add of an 81-character member marks the outline as well.
    o->bLongNames = 0;
    VTX_POTLMBR_T d = dim("Market");
    EXPECT_EQ(o->bLongNames, 0);
    add(d, std::string(81, 'm').c_str());
    EXPECT_EQ(o->bLongNames, 1);
}

TEST_F(NameRules, TextThatIsNotUtf8) {
    VTX_POTLMBR_T d = dim("Market");
    const char *broken = "Z\xfc" "rich";       // Latin-1, not UTF-8
    const char *cut = "abc\xe2\x82";           // a character cut short
    const char *good = "Z\xc3\xbcrich";
    o->bIsUTF8 = 1;
    EXPECT_FALSE(otlIsNameLegal(h, broken, t.ctx(), 1));
    EXPECT_FALSE(otlIsNameLegal(h, cut, t.ctx(), 1));
    EXPECT_TRUE(otlIsNameLegal(h, good, t.ctx(), 1));
    EXPECT_REFUSED(VTX_STS_INVALID_NAME, tryAdd(d, broken));
    EXPECT_EQ(tryAdd(d, good), 0);
    EXPECT_REFUSED(VTX_STS_INVALID_NAME, adShrOtlRenameMember(h, find(good), cut, 0, nullptr));
    // 80 two-byte characters are 160 bytes and still within the old limit.
    std::string wide;
    for (int i = 0; i < 80; ++i) wide += "\xc3\xa9";
    t.ctx()->lClientDllVersion = 0;
    EXPECT_TRUE(otlIsNameLegal(h, wide.c_str(), t.ctx(), 1));
    EXPECT_FALSE(otlIsNameLegal(h, (wide + "\xc3\xa9").c_str(), t.ctx(), 1));
}

TEST_F(NameRules, HostWithoutClientVersionGetsTheOldLimit) {
    VTX_POTLMBR_T d = dim("Market");
    t.ctx()->lClientDllVersion = 0;
    EXPECT_REFUSED(VTX_STS_INVALID_NAME, tryAdd(d, std::string(81, 'q').c_str()));
    EXPECT_EQ(tryAdd(d, std::string(80, 'q').c_str()), 0);
    EXPECT_EQ(o->bLongNames, 0);
}

} // namespace
