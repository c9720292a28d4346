// Per-member verification: the name rules, the words of one member, and the
// translation of words into message numbers.
#include <cstring>
#include <string>
#include <vector>

#include "editsupport.h"

using namespace edittest;

namespace {

class VerifyTest : public EditTest {};

TEST_F(VerifyTest, NameRules) {
    auto legal = [&](const char *n) { return otlIsNameLegal(h, n, t.ctx(), 1) != 0; };
    EXPECT_FALSE(otlIsNameLegal(h, nullptr, t.ctx(), 1));
    EXPECT_TRUE(legal("Inner blank"));
    EXPECT_TRUE(legal("a(b"));
    for (const char *bad : {"", " x", "x ", "x\t", "@x", "=x", "_x", "+x", "-x", "{x", "}x", "(x", ")x", ".x", "|x",
                            "\\x", "'x", ",x", "<x", "a\"b", "#MISSING", "$$$universe$$$", "$null$", "x\xc2\xa0"})
        EXPECT_FALSE(legal(bad)) << bad;
    std::string n80(80, 'a'), n81(81, 'a'), n1024(1024, 'a'), n1025(1025, 'a');
    EXPECT_TRUE(legal(n80.c_str()));
    EXPECT_EQ(o->bLongNames, 0);
    EXPECT_TRUE(legal(n81.c_str()));
    EXPECT_EQ(o->bLongNames, 1);
    EXPECT_TRUE(legal(n1024.c_str()));
    EXPECT_FALSE(legal(n1025.c_str()));
    // Characters, not bytes: 80 two-byte characters pass the old limit.
    std::string wide;
    for (int i = 0; i < 80; ++i) wide += "\xc3\xa9";
    t.ctx()->lClientDllVersion = 725536;
    EXPECT_TRUE(legal(wide.c_str()));
    EXPECT_FALSE(legal(n81.c_str()));
    t.ctx()->lClientDllVersion = 0x00B20000;
    // Short object names keep the old limit.
    EXPECT_FALSE(otlIsNameLegal(h, n81.c_str(), t.ctx(), 0));
    // Aggregate storage: 80 until the paged version 82.
    o->usOutlineType = VTX_OTL_AGGSTORE;
    o->cOPGVersion = 81;
    o->bLongNames = 0;
    EXPECT_FALSE(legal(n81.c_str()));
    o->cOPGVersion = 82;
    EXPECT_TRUE(legal(n81.c_str()));
    EXPECT_EQ(o->bLongNames, 0);
    o->usOutlineType = VTX_OTL_REGULAR;
    // A server may relax the quote and first-character rules.
    t.ctx()->Type = 1;
    t.ctx()->bRelaxedNames = 1;
    EXPECT_TRUE(legal("(x"));
    EXPECT_TRUE(legal("a\"b"));
    EXPECT_FALSE(legal(" x"));
    EXPECT_FALSE(legal("#Missing"));
    t.ctx()->Type = 0;
    // Relaxed names skip the character rules, never the reserved words.
    o->usOtlNameType = VTX_NAMES_RELAXED;
    EXPECT_TRUE(legal(" x"));
    EXPECT_FALSE(legal("$NULL$"));
}

TEST_F(VerifyTest, StatusTableInItsOrder) {
    struct Row { int word; VTX_ULONG_T bit; VTX_STS_T code; };
    const std::vector<Row> rows = {
        {1, 0x1, 1060015}, {1, 0x2, 1060016}, {1, 0x4, 1060017}, {1, 0x8, 1060018}, {1, 0x10, 1060019},
        {1, 0x20, 1060020}, {1, 0x40, 1060021}, {1, 0x80, 1060022}, {1, 0x100, 1060023}, {1, 0x200, 1060024},
        {1, 0x400, 1060025}, {1, 0x800, 1060026}, {1, 0x2000, 1060028}, {1, 0x8000, 1060030},
        {1, 0x10000, 1060031}, {1, 0x20000, 1060032}, {1, 0x40000, 1060033}, {1, 0x80000, 1060021},
        {1, 0x100000, 1060034}, {1, 0x200000, 1060220}, {1, 0x400000, 1060058}, {1, 0x800000, 1060064},
        {1, 0x1000000, 1060066}, {1, 0x2000000, 1060070}, {1, 0x4000000, 1060072}, {1, 0x10000000, 1060189},
        {1, 0x8000000, 1060074},
        {2, 0x40000, 1060159}, {2, 0x1, 1060085}, {2, 0x2, 1060082}, {2, 0x4, 1060101}, {2, 0x8, 1060102},
        {2, 0x10, 1060103}, {2, 0x20, 1060104}, {2, 0x40, 1060081}, {2, 0x80, 1060105}, {2, 0x100, 1060109},
        {2, 0x200, 1060110}, {2, 0x800, 1060112}, {2, 0x1000, 1060113}, {2, 0x2000, 1060083},
        {2, 0x4000, 1060311}, {2, 0x8000, 1060108}, {2, 0x10000, 1060141}, {2, 0x20000, 1060142},
        {2, 0x400000, 1060165}, {2, 0x1000000, 1060169}, {2, 0x800000, 1060166},
        {3, 0x400, 1060143}, {3, 0x4, 1060145}, {3, 0x20, 1060146}, {3, 0x80, 1060147}, {3, 0x1000, 1060192},
        {3, 0x8, 1060179}, {3, 0x10000000, 1060181}, {3, 0x80000, 1060185}, {3, 0x40, 1060149},
        {3, 0x10, 1060150}, {3, 0x2, 1060263}, {3, 0x100, 1060151}, {3, 0x200, 1060152}, {3, 0x8000, 1060172},
        {3, 0x10000, 1060153}, {3, 0x20000, 1060154}, {3, 0x2000000, 1060173}, {3, 0x4000000, 1060312},
        {3, 0x8000000, 1060313}, {3, 0x100000, 1060174}, {3, 0x200000, 1060175}, {3, 0x2000, 1060243},
        {3, 0x1000000, 1060180}, {3, 0x400000, 1060176}, {3, 0x1, 1060144},
        {4, 0x4, 1060209}, {4, 0x8, 1060211}, {4, 0x10, 1060210}, {4, 0x20, 1060238}, {4, 0x80, 1060231},
        {4, 0x40, 1060232}, {4, 0x100, 1060233}, {4, 0x200, 1060234}, {4, 0x400, 1060235}, {4, 0x800, 1060236},
        {4, 0x1000, 1060239}, {4, 0x10000, 1060315}, {4, 0x4000, 1060267}, {4, 0x2000, 1060314},
        {4, 0x100000, 1060275}, {4, 0x40000, 1060276}, {4, 0x80000, 1060277}, {4, 0x20000, 1060259},
        {4, 0x10000000, 1060307},
        {5, 0x1, 1060369}, {5, 0x20, 1060363}, {5, 0x400, 1060365}, {5, 0x8000, 1060366},
    };
    VTX_ULONG_T all[6] = {};
    for (const Row &r : rows) {
        VTX_ULONG_T w[6] = {};
        w[r.word] = r.bit;
        // Words 2 and 4 alone count only beside a first, third or fifth word.
        if (r.word == 2 || r.word == 4) w[1] = 0x80000000u;
        EXPECT_EQ(adShrOtlSetVerifyStatus(w[1], w[2], w[3], w[4], w[5], 0, 0, nullptr, nullptr), r.code)
            << "word " << r.word << " bit " << std::hex << r.bit;
        all[r.word] |= r.bit;
    }
    // With every bit at once the numbers come out in the order of the table.
    std::vector<VTX_STS_T> codes(rows.size() + 2);
    VTX_LONG_T count = 0;
    all[1] |= 0x80000000u | 0x40000000u;
    EXPECT_EQ(adShrOtlSetVerifyStatus(all[1], all[2], 0, all[4], all[5], 0, (VTX_LONG_T)codes.size(), codes.data(),
                                      &count),
              1060015);
    std::vector<VTX_STS_T> expected;
    for (const Row &r : rows)
        if (r.word != 3) expected.push_back(r.code);
    expected.push_back(1060344);
    expected.push_back(1060106);   // the third word is empty
    ASSERT_EQ((size_t)count, expected.size());
    for (size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(codes[i], expected[i]) << i;
    // A short array keeps the first numbers only.
    VTX_STS_T two[2] = {7, 7};
    EXPECT_EQ(adShrOtlSetVerifyStatus(0x3, 0, 0, 0, 0, 0, 2, two, &count), 1060015);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(two[1], 1060016);
    // Nothing in the first, third and fifth words: no status at all.
    EXPECT_EQ(adShrOtlSetVerifyStatus(0, 0xffffffffu, 0, 0xffffffffu, 0, 0, 0, nullptr, nullptr), 0);
    EXPECT_EQ(otlSetVerifyStatus(0x40000000u, 0, 0, 0x1, 0, 0), 1060106);
    EXPECT_EQ(otlSetVerifyStatus(0x40000000u, 0, 0x1, 0, 0, 0), 1060144);
}

TEST_F(VerifyTest, MemberRules) {
    Spec acct, time;
    acct.category = VTX_CAT_ACCOUNTS;
    time.category = VTX_CAT_TIME;
    VTX_POTLMBR_T m = dim("Measures", acct);
    VTX_POTLMBR_T a = add(m, "a");
    vtx_netctx_t *ctx = t.ctx();
    VTX_ULONG_T v4 = 0;
    EXPECT_EQ(otlVerifyItem(ctx, o, m, a, &v4, 0), 0u);
    EXPECT_EQ(otlVerifyItem(ctx, o, nullptr, o->pHeadItem, &v4, 0), 0u);
    // Time balance without a time dimension; a bad conversion in accounts.
    a->MbrInfo.usTimeBalance = 3;
    EXPECT_EQ(otlVerifyItem(ctx, o, m, a, &v4, 0), 0x80u);
    dim("Year", time);
    EXPECT_EQ(otlVerifyItem(ctx, o, m, a, &v4, 0), 0u);
    a->MbrInfo.usTimeBalance = 0;
    OTL_LARGE(a)->MbrInfo.usConversion = 3;
    EXPECT_EQ(otlVerifyItem(ctx, o, m, a, &v4, 0), 0x4u);
    OTL_LARGE(a)->MbrInfo.usConversion = 1;   // a conversion needs a currency category
    EXPECT_EQ(otlVerifyItem(ctx, o, m, a, &v4, 0), 0x4u);
    EXPECT_EQ(otlVerifyItem(ctx, o, m, a, &v4, 1), 0u);   // the data checks alone skip it
    OTL_LARGE(a)->MbrInfo.usConversion = 0;
    // Label-only leaf: a rule of the whole outline, not of a member alone.
    otlSetShare(a, VTX_SHARE_LABEL);
    EXPECT_EQ(otlVerifyItem(ctx, o, m, a, &v4, 0), 0x2000u);
    EXPECT_EQ(otlVerifyItem(ctx, o, m, a, &v4, OTL_VERIFY_MEMBER_ONLY), 0u);
    a->ucFlags |= OTL_FLAG_FORMULA;
    EXPECT_EQ(otlVerifyItem(ctx, o, m, a, &v4, OTL_VERIFY_MEMBER_ONLY), 0x400000u);
    a->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_FORMULA;
    // Dynamic members need a formula or children; an only dynamic child of
    // a stored parent is flagged.
    otlSetShare(a, VTX_SHARE_DYNCALC);
    EXPECT_EQ(otlVerifyItem(ctx, o, m, a, &v4, 0), 0x2000000u | 0x4000000u);   // and an only child
    a->ucFlags |= OTL_FLAG_FORMULA;
    VTX_POTLMBR_T b = add(a, "b", []{ Spec s; s.share = VTX_SHARE_DYNCALC; s.cons = VTX_CONS_IGNORE; return s; }());
    (void)b;
    a->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_FORMULA;
    otlSetShare(a, VTX_SHARE_STORE);
    b->ucFlags |= OTL_FLAG_FORMULA;
    EXPECT_EQ(otlVerifyItem(ctx, o, m, b, &v4, 0), 0x4000000u);
    b->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_FORMULA;
    // A childless dimension is a warning; a shared dimension an error.
    VTX_POTLMBR_T empty = dim("Empty");
    EXPECT_EQ(otlVerifyItem(ctx, o, empty, empty, &v4, 0), 0x8000000u);
    OTL_LARGE(empty)->MbrInfo.usShare = VTX_SHARE_SHARED;
    EXPECT_EQ(otlVerifyItem(ctx, o, empty, empty, &v4, OTL_VERIFY_MEMBER_ONLY), 0x20000u | 0x800u);
    OTL_LARGE(empty)->MbrInfo.usShare = VTX_SHARE_STORE;
}

TEST_F(VerifyTest, SharedMembersAndTheirStoredMember) {
    VTX_POTLMBR_T d = dim("D");
    VTX_POTLMBR_T x = add(d, "x");
    VTX_POTLMBR_T p = add(d, "p");
    VTX_POTLMBR_T s = add(p, "x", shared());
    vtx_netctx_t *ctx = t.ctx();
    VTX_ULONG_T v4 = 0;
    EXPECT_EQ(otlVerifyItem(ctx, o, d, s, &v4, 0), 0u);
    // Placed before its stored member, seen by an API caller: a warning.
    s->ulMemno = 1;
    x->ulMemno = 5;
    EXPECT_EQ(otlVerifyItem(ctx, o, d, s, &v4, 0), 0x10000000u);
    s->ulMemno = x->ulMemno = 0;
    // Below its stored member.
    VTX_POTLMBR_T below = add(x, "below");
    ASSERT_EQ(otlMoveItem(ctx, below, s, OTL_MOVE_CHILD), 0);
    EXPECT_EQ(otlVerifyItem(ctx, o, d, s, &v4, 0), 0x200000u);
    s->MbrInfo.ucInfoFlags |= VTX_CONS_IGNORE;   // a member outside the consolidation stops the walk
    EXPECT_EQ(otlVerifyItem(ctx, o, d, s, &v4, 0), 0u);
    s->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~OTL_INFO_CONSOL;
    ASSERT_EQ(otlMoveItem(ctx, p, s, OTL_MOVE_CHILD), 0);
    // With a formula, user attributes or children.
    s->ucFlags |= OTL_FLAG_FORMULA;
    s->MbrInfo.ucInfoFlags |= OTL_INFO_UDA;
    EXPECT_EQ(otlVerifyItem(ctx, o, d, s, &v4, 0), 0x400000u | 0x800000u);
    s->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_FORMULA;
    s->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~OTL_INFO_UDA;
    // Without a stored member of its name.
    std::memcpy(x->MbrInfo.szMember, "y", 2);
    EXPECT_EQ(otlVerifyItem(ctx, o, d, s, &v4, 0), 0x800u);
    EXPECT_EQ(otlVerifyItem(ctx, o, d, s, &v4, 1), 0u);   // the data checks alone skip it
    std::memcpy(x->MbrInfo.szMember, "x", 2);
    // The counts of the fixture: the moves above went past the edit calls.
    p->MbrInfo.ulChildCount = 1;
    below->MbrInfo.ulChildCount = 0;
}

TEST_F(VerifyTest, AttributeDimensionRulesAndTheDynamicParentCheck) {
    vtx_netctx_t *ctx = t.ctx();
    Spec calc;
    calc.category = VTX_CAT_ATTRCALC;
    VTX_POTLMBR_T ac = dim("Calc", calc);
    VTX_POTLMBR_T top = add(ac, "Top");
    VTX_POTLMBR_T leaf = add(ac, "Leaf");
    EXPECT_EQ(otlVerify2Item(ctx, o, ac, leaf, 0), 0u);
    ASSERT_EQ(otlMoveItem(ctx, top, leaf, OTL_MOVE_CHILD), 0);
    EXPECT_EQ(otlVerify2Item(ctx, o, ac, leaf, 0), 0x20u);
    leaf->MbrInfo.ucInfoFlags |= OTL_INFO_UDA;
    EXPECT_EQ(otlVerify2Item(ctx, o, ac, leaf, 0), 0xA0u);
    OTL_LARGE(leaf)->MbrInfo.fExpense = 1;
    EXPECT_EQ(otlVerify2Item(ctx, o, ac, leaf, 0), 0x8A0u);
    // Aggregate storage: time balance alone, without the parent rules.
    o->usOutlineType = VTX_OTL_AGGSTORE;
    EXPECT_EQ(otlVerify2Item(ctx, o, ac, leaf, 0), 0xA0u);
    leaf->MbrInfo.usTimeBalance = 1;
    EXPECT_EQ(otlVerify2Item(ctx, o, ac, leaf, 0), 0x800u);
    o->usOutlineType = VTX_OTL_REGULAR;
    // Standard dimensions are not held to these.
    VTX_POTLMBR_T std = dim("Std");
    VTX_POTLMBR_T p = add(std, "p");
    Spec dyn;
    dyn.share = VTX_SHARE_DYNCALC;
    dyn.twoPass = 1;
    VTX_POTLMBR_T c = add(p, "c", dyn);
    c->MbrInfo.ucInfoFlags |= OTL_INFO_UDA;
    EXPECT_EQ(otlVerify2Item(ctx, o, std, c, 0), 0u);
    // The dynamic-parent check: a two-pass dynamic member under a dynamic
    // parent that is not two-pass; the quiet form leaves it out.
    OTL_LARGE(p)->MbrInfo.usShare = VTX_SHARE_DYNCALC;
    EXPECT_EQ(otlVerify2Item(ctx, o, std, c, 0), 0x10000u);
    EXPECT_EQ(otlVerify2Item(ctx, o, std, c, OTL_VERIFY_QUIET), 0u);
    OTL_LARGE(p)->MbrInfo.fTwoPass = 1;
    EXPECT_EQ(otlVerify2Item(ctx, o, std, c, 0), 0u);
    EXPECT_EQ(otlVerify2Item(ctx, o, std, p, 0), 0u);
    // The child counts the fixture checks: the move above went past the edits.
    ac->MbrInfo.ulChildCount = 1;
    top->MbrInfo.ulChildCount = 1;
}

TEST_F(VerifyTest, GenerationAndLevelNamesClashWithMembers) {
    VTX_POTLMBR_T d = dim("D");
    VTX_POTLMBR_T x = add(d, "Quarter");
    VTX_NAMELIST_T season{};
    char seasonName[] = "Season";
    season.pszName = seasonName;
    season.usGenOrLevel = 1;
    VTX_NAMELIST_T quarter{};
    char quarterName[] = "quarter";
    quarter.pszName = quarterName;
    quarter.fGen = 1;
    quarter.usGenOrLevel = 2;
    quarter.pNext = &season;
    OTL_LARGE(d)->pNameList = &quarter;
    EXPECT_EQ(otlVerifyGenLevNames(x, o), 1);
    EXPECT_EQ(otlVerifyItem(t.ctx(), o, d, x, nullptr, 0) & 0x1000000u, 0x1000000u);
    EXPECT_REFUSED(VTX_STS_GENLEV_NAME_CLASH, tryAdd(d, "SEASON"));
    OTL_LARGE(d)->pNameList = nullptr;
    EXPECT_EQ(otlVerifyGenLevNames(x, o), 0);
}

} // namespace
