// Member paths: cutting a text into names, building a path from a parent
// and a child, and the default names of generations and levels.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "otl.h"
#include "otlhash.h"
#include "vtxotlfind.h"

namespace {

struct Parsed {
    VTX_STS_T sts = 0;
    std::vector<std::string> segs;
    VTX_USHORT_T at = 0;
    bool arrayHandedOut = false;
};

Parsed parse(const char *text, VTX_USHORT_T max = VTX_MAX_PATH_DEPTH) {
    Parsed p;
    VTX_MBRNAME_T *arr = nullptr;
    VTX_USHORT_T count = max;
    p.sts = adShrParseMemberPathExpressionEx(nullptr, text, &arr, &count, &p.at);
    p.arrayHandedOut = arr != nullptr;
    for (VTX_USHORT_T i = 0; i < count; ++i) p.segs.emplace_back(arr[i]);
    if (arr) VtxSdMemFree(nullptr, arr);
    return p;
}

std::string construct(const char *parent, const char *child, VTX_STS_T *pSts = nullptr) {
    std::vector<char> buf(VTX_PATH_BLOCK_LEN, 'x');
    VTX_STS_T sts = adShrConstrucMemberPathExpression(nullptr, parent, child, buf.data());
    if (pSts) *pSts = sts;
    return buf.data();
}

using Segs = std::vector<std::string>;

TEST(MemberPathParse, PlainNamesAreOneSegmentAsTheyStand) {
    for (const char *name : {"Jan", "a.b", "a@b", "[a", "[a]]b", "x]", "]]", "[", "a[b]c", "[a]]"}) {
        Parsed p = parse(name);
        EXPECT_EQ(p.sts, 0) << name;
        EXPECT_EQ(p.segs, Segs{name}) << name;
        EXPECT_EQ(p.at, 0) << name;
    }
}

TEST(MemberPathParse, BracketedSegments) {
    EXPECT_EQ(parse("[a]]b]").segs, Segs{"a]b"});
    EXPECT_EQ(parse("[a].[b]").segs, (Segs{"a", "b"}));
    Parsed at = parse("[a]@[b]");
    EXPECT_EQ(at.segs, (Segs{"a", "b"}));
    EXPECT_EQ(at.at, 1);
    EXPECT_EQ(parse("[Year].[Qtr 1].[Jan]").segs, (Segs{"Year", "Qtr 1", "Jan"}));
    // Brackets, dots and "@" inside a bracketed name are text.
    EXPECT_EQ(parse("[a.b].[[c@d]]]").segs, (Segs{"a.b", "[c@d]"}));
    EXPECT_EQ(parse("[]]]").segs, Segs{"]"});
    EXPECT_EQ(parse("[]").segs, Segs{""});
}

TEST(MemberPathParse, MalformedPathsFailWithNoSegments) {
    struct Case {
        const char *text;
        VTX_STS_T sts;
    } cases[] = {
        {"[a].b", VTX_STS_PATH_NO_OPEN},
        {"[a].", VTX_STS_PATH_NO_OPEN},
        {"[a]@", VTX_STS_PATH_NO_OPEN},
        {"[a].[b", VTX_STS_PATH_UNCLOSED},
        {"[a].[b]]", VTX_STS_PATH_UNCLOSED},
        {"[a]x", VTX_STS_PATH_TRAILING},
        {"[a].[b]c", VTX_STS_PATH_TRAILING},
        {"[a][b]", VTX_STS_PATH_TRAILING},
    };
    for (const Case &c : cases) {
        Parsed p = parse(c.text);
        EXPECT_EQ(p.sts, c.sts) << c.text;
        EXPECT_TRUE(p.segs.empty()) << c.text;
        EXPECT_FALSE(p.arrayHandedOut) << c.text;
    }
}

TEST(MemberPathParse, NullAndOutputArguments) {
    Parsed p = parse(nullptr);
    EXPECT_EQ(p.sts, 0);
    EXPECT_TRUE(p.segs.empty());
    EXPECT_FALSE(p.arrayHandedOut);
    VTX_USHORT_T count = 5, at = 9;
    EXPECT_EQ(adShrParseMemberPathExpressionEx(nullptr, "[a]", nullptr, &count, &at), VTX_STS_NULL_ARG);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(at, 0);
    // The short form counts the same segments.
    VTX_MBRNAME_T *arr = nullptr;
    count = VTX_MAX_PATH_DEPTH;
    ASSERT_EQ(adShrParseMemberPathExpression(nullptr, "[a]@[b]", &arr, &count), 0);
    EXPECT_EQ(count, 2);
    EXPECT_STREQ(arr[1], "b");
    VtxSdMemFree(nullptr, arr);
}

TEST(MemberPathParse, SegmentLimits) {
    std::string path;
    for (int i = 0; i < VTX_MAX_PATH_DEPTH; ++i) path += (i ? ".[m" : "[m") + std::to_string(i) + "]";
    Parsed full = parse(path.c_str());
    ASSERT_EQ(full.sts, 0);
    ASSERT_EQ(full.segs.size(), size_t(VTX_MAX_PATH_DEPTH));
    EXPECT_EQ(full.segs.back(), "m126");
    // One more than can be held, or more than were asked for, is refused
    // rather than cut short: a shortened path names another member.
    EXPECT_EQ(parse((path + ".[m127]").c_str()).sts, VTX_STS_PATH_TRAILING);
    EXPECT_EQ(parse("[a].[b].[c]", 2).sts, VTX_STS_PATH_TRAILING);
    EXPECT_EQ(parse("[a].[b]", 2).segs.size(), 2u);
    // Asking for none asks for the most.
    EXPECT_EQ(parse("[a].[b].[c]", 0).segs.size(), 3u);

    // A segment holds 4100 bytes of name, after "]]" is read as one.
    std::string longest(VTX_PATH_SEGMENT_MAX, 'n');
    EXPECT_EQ(parse(longest.c_str()).sts, 0);
    EXPECT_EQ(parse(("[" + longest + "]").c_str()).segs, Segs{longest});
    std::string escaped = "[" + std::string(VTX_PATH_SEGMENT_MAX - 1, 'n') + "]]]";
    EXPECT_EQ(parse(escaped.c_str()).segs, Segs{std::string(VTX_PATH_SEGMENT_MAX - 1, 'n') + "]"});
    EXPECT_EQ(parse((longest + "n").c_str()).sts, VTX_STS_TEXT_TOO_LONG);
    EXPECT_EQ(parse(("[a].[" + longest + "n]").c_str()).sts, VTX_STS_TEXT_TOO_LONG);
}

TEST(MemberPathBuild, ParentAndChild) {
    EXPECT_EQ(construct("parent", "child"), "[parent].[child]");
    EXPECT_EQ(construct(nullptr, "child"), "[child]");
    EXPECT_EQ(construct("", "child"), "[child]");
    EXPECT_EQ(construct("parent", nullptr), "[parent]");
    EXPECT_EQ(construct(nullptr, nullptr), "");
    EXPECT_EQ(construct("a]b", "c]"), "[a]]b].[c]]]");
    // Paths are taken as they stand.
    EXPECT_EQ(construct("[Year].[Qtr1]", "Jan"), "[Year].[Qtr1].[Jan]");
    EXPECT_EQ(construct("[Year]@[Qtr1]", "[Jan]"), "[Year]@[Qtr1].[Jan]");
    EXPECT_EQ(construct(nullptr, "[Jan]"), "[Jan]");
    // A malformed path is only a name.
    EXPECT_EQ(construct(nullptr, "[a].b"), "[[a]].b]");
}

TEST(MemberPathBuild, RefusesWhatCannotBeBuilt) {
    VTX_STS_T sts = 0;
    EXPECT_EQ(construct("Qtr1", "[Qtr1].[Jan]", &sts), "");
    EXPECT_EQ(sts, VTX_STS_PATH_NOT_COMBINED);
    EXPECT_EQ(construct(nullptr, "[Qtr1].[Jan]", &sts), "");
    EXPECT_EQ(sts, VTX_STS_PATH_NOT_COMBINED);
    std::string tooLong(VTX_PATH_SEGMENT_MAX + 1, 'n');
    EXPECT_EQ(construct(tooLong.c_str(), "a", &sts), "");
    EXPECT_EQ(sts, VTX_STS_TEXT_TOO_LONG);
    EXPECT_EQ(construct("a", tooLong.c_str(), &sts), "");
    EXPECT_EQ(sts, VTX_STS_TEXT_TOO_LONG);
    EXPECT_EQ(adShrConstrucMemberPathExpression(nullptr, "a", "b", nullptr), VTX_STS_NULL_ARG);
}

// Any name goes through a path and comes back unchanged, alone or under a
// parent: names made of the characters that matter to paths.
TEST(MemberPathBuild, ParseUndoesConstructOnEveryName) {
    const std::vector<std::string> pieces = {"[", "]", ".", "@", "a", "b", " ", "\xC3\xA9", "]]", "[a]"};
    std::mt19937 rng(20240611);
    std::uniform_int_distribution<size_t> pick(0, pieces.size() - 1), len(1, 8);
    auto randomName = [&] {
        std::string s;
        for (size_t n = len(rng); n; --n) s += pieces[pick(rng)];
        return s;
    };
    int names = 0;
    for (int i = 0; i < 3000; ++i) {
        std::string parent = randomName(), child = randomName();
        VTX_BOOL_T isPath = 0;
        VTX_USHORT_T n = 0;
        ASSERT_EQ(adShrIsMemberPathExpression(nullptr, child.c_str(), &isPath, &n), 0);
        VTX_BOOL_T parentIsPath = 0;
        ASSERT_EQ(adShrIsMemberPathExpression(nullptr, parent.c_str(), &parentIsPath, &n), 0);
        if (isPath || parentIsPath) {
            // A well-formed path is taken as a path, not as a name.
            Parsed direct = parse(child.c_str());
            if (isPath && n == 1) {
                EXPECT_EQ(parse(construct(nullptr, child.c_str()).c_str()).segs, direct.segs);
            }
            continue;
        }
        ++names;
        EXPECT_EQ(parse(construct(nullptr, child.c_str()).c_str()).segs, Segs{child}) << child;
        EXPECT_EQ(parse(construct(parent.c_str(), child.c_str()).c_str()).segs, (Segs{parent, child}))
            << parent << " / " << child;
    }
    EXPECT_GT(names, 1000);  // the generator must reach names, not only paths
}

TEST(MemberPathBuild, IsMemberPathExpression) {
    struct Case {
        const char *text;
        bool path;
        VTX_USHORT_T count;
    } cases[] = {{"Jan", false, 0},      {"[Jan]", true, 1},    {"[a].[b]", true, 2}, {"[a]@[b]", true, 2},
                 {"[a].b", false, 0},    {"[a", false, 0},      {"[a]]b", false, 0},  {"", false, 0}};
    for (const Case &c : cases) {
        VTX_BOOL_T isPath = 9;
        VTX_USHORT_T n = 9;
        EXPECT_EQ(adShrIsMemberPathExpression(nullptr, c.text, &isPath, &n), 0);
        EXPECT_EQ(isPath != 0, c.path) << c.text;
        EXPECT_EQ(n, c.count) << c.text;
    }
}

TEST(MemberPathBuild, EscapeRightDelimiter) {
    char buf[8];
    EXPECT_EQ(otlEscapeRightDelimiter("a]b]", buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "a]]b]]");
    EXPECT_EQ(otlEscapeRightDelimiter("a]b]c", buf, sizeof buf), 0);  // 7 bytes and the end
    EXPECT_EQ(otlEscapeRightDelimiter("a]b]cd", buf, sizeof buf), VTX_STS_TEXT_TOO_LONG);
    EXPECT_STREQ(buf, "");
}

TEST(DefaultNames, GenerationAndLevelNames) {
    _vtx_otlmbrlarge_t dim{};
    char name[] = "Year";
    dim.MbrInfo.szMember = name;
    VTX_POTLMBR_T d = reinterpret_cast<VTX_POTLMBR_T>(&dim);
    EXPECT_TRUE(otlIsDefaultName(nullptr, d, "Gen2,Year", 1));
    EXPECT_TRUE(otlIsDefaultName(nullptr, d, "gEN12,yEAR", 1));
    EXPECT_TRUE(otlIsDefaultName(nullptr, d, "Lev0,Year", 0));
    EXPECT_FALSE(otlIsDefaultName(nullptr, d, "Gen,Year", 1));
    EXPECT_FALSE(otlIsDefaultName(nullptr, d, "Lev1,Year", 1));
    EXPECT_FALSE(otlIsDefaultName(nullptr, d, "Gen1,Year", 0));
    EXPECT_FALSE(otlIsDefaultName(nullptr, d, "Gen2;Year", 1));
    EXPECT_FALSE(otlIsDefaultName(nullptr, d, "Gen2,Years", 1));
    EXPECT_FALSE(otlIsDefaultName(nullptr, d, "Gen2x,Year", 1));
    EXPECT_FALSE(otlIsDefaultName(nullptr, d, "Ge", 1));
}

} // namespace
