// Text and locale service of libvtxhost.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "vtxhostsvc.h"
#include "vtxstatus.h"

namespace {

// Latin-1 bytes of a few letters, for the native-encoding cases.
const char kLatin1Apfel[] = "\xE4pfel";        // äpfel
const char kLatin1ApfelUp[] = "\xC4PFEL";      // ÄPFEL
const char kLatin1Strasse[] = "stra\xDF" "e";  // straße

class HostLocale : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(adGlobGetUTF8Locale(&utf8_), 0);
        ASSERT_EQ(adGlobGetLocaleAndStatus("de_DE.ISO-8859-1", &latin1_), 0);
        ASSERT_NE(latin1_, nullptr);
    }
    void TearDown() override { adGlobFreeLocale(latin1_); }

    std::string upper(void *loc, const std::string &s, size_t cap = 256) {
        std::vector<char> buf(cap, 'z');
        sts_ = adGlobStrNToUpper(loc, buf.data(), s.c_str(), cap);
        return std::string(buf.data());
    }
    std::string lower(void *loc, const std::string &s, size_t cap = 256) {
        std::vector<char> buf(cap, 'z');
        sts_ = adGlobStrNToLower(loc, buf.data(), s.c_str(), cap);
        return std::string(buf.data());
    }
    void *utf8_ = nullptr;
    void *latin1_ = nullptr;
    VTX_STS_T sts_ = -2;
};

// ---- handles ------------------------------------------------------------

TEST_F(HostLocale, Utf8HandleIsSharedAndFreeingItIsHarmless) {
    void *again = nullptr;
    ASSERT_EQ(adGlobGetUTF8Locale(&again), 0);
    EXPECT_EQ(again, utf8_);
    adGlobFreeLocale(utf8_);
    adGlobFreeLocale(nullptr);
    EXPECT_TRUE(adGlobIsUTF8Locale(utf8_));
    EXPECT_EQ(upper(utf8_, "ok"), "OK");
    EXPECT_TRUE(adGlobIsUTF8Locale(nullptr));
    EXPECT_FALSE(adGlobIsUTF8Locale(latin1_));
}

TEST_F(HostLocale, LocaleStringsRoundTrip) {
    char buf[VTX_LOCALESTR_LEN];
    ASSERT_EQ(adGlobGetLocaleString(latin1_, buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "de_DE.ISO-8859-1");
    void *again = nullptr;
    ASSERT_EQ(adGlobGetLocaleAndStatus(buf, &again), 0);
    char buf2[VTX_LOCALESTR_LEN];
    ASSERT_EQ(adGlobGetLocaleString(again, buf2, sizeof buf2), 0);
    EXPECT_STREQ(buf, buf2);
    adGlobFreeLocale(again);

    ASSERT_EQ(adGlobGetLocaleString(utf8_, buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "en_US.UTF-8");
    ASSERT_EQ(adGlobGetLocaleString(nullptr, buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "en_US.UTF-8");

    char tiny[4] = "xyz";
    EXPECT_EQ(adGlobGetLocaleString(latin1_, tiny, sizeof tiny), VTX_STS_TEXT_TOO_LONG);
    EXPECT_STREQ(tiny, "");
}

TEST_F(HostLocale, NamesAreNormalisedAndCharsetDefaultsToUtf8) {
    void *loc = nullptr;
    ASSERT_EQ(adGlobGetLocaleAndStatus("fr_ca", &loc), 0);
    char buf[VTX_LOCALESTR_LEN];
    adGlobGetLocaleString(loc, buf, sizeof buf);
    EXPECT_STREQ(buf, "fr_CA.UTF-8");
    EXPECT_TRUE(adGlobIsUTF8Locale(loc));
    adGlobFreeLocale(loc);

    ASSERT_EQ(adGlobGetLocaleAndStatus("ja_JP.Shift_JIS@euro", &loc), 0);
    adGlobGetLocaleString(loc, buf, sizeof buf);
    EXPECT_STREQ(buf, "ja_JP.Shift_JIS");
    EXPECT_FALSE(adGlobIsUTF8Locale(loc));
    adGlobFreeLocale(loc);

    ASSERT_EQ(adGlobGetLocaleAndStatus("C.UTF-8", &loc), 0);
    EXPECT_TRUE(adGlobIsUTF8Locale(loc));
    adGlobFreeLocale(loc);
}

TEST_F(HostLocale, BadLocaleNamesAreRefused) {
    const char *bad[] = {"", "de_DE.NO-SUCH-CHARSET", "de_DE.", "d_DE.UTF-8", "de_DEU.UTF-8",
                         "de-DE.UTF-8", "de_DE.UTF-16", "12_DE.UTF-8", "de_DE.UTF 8"};
    for (const char *name : bad) {
        void *loc = reinterpret_cast<void *>(uintptr_t{1});
        EXPECT_EQ(adGlobGetLocaleAndStatus(name, &loc), VTX_STS_BAD_LOCALE) << name;
        EXPECT_EQ(loc, nullptr) << name;
    }
    void *loc = nullptr;
    EXPECT_EQ(adGlobGetLocaleAndStatus(nullptr, &loc), VTX_STS_NULL_ARG);
    EXPECT_EQ(adGlobGetLocaleAndStatus("de_DE", nullptr), VTX_STS_NULL_ARG);
    std::string longName(VTX_LOCALESTR_LEN, 'a');
    EXPECT_EQ(adGlobGetLocaleAndStatus(longName.c_str(), &loc), VTX_STS_BAD_LOCALE);
    ASSERT_NE(adNetMessageText(VTX_STS_BAD_LOCALE), nullptr);
}

// ---- characters and validity ----------------------------------------------

TEST_F(HostLocale, CharacterCountsFollowTheEncoding) {
    EXPECT_EQ(adGlobStrNumChars(utf8_, "\xC3\xA4pfel"), 5u);  // äpfel, 6 bytes
    EXPECT_EQ(adGlobStrNumChars(nullptr, "\xE2\x82\xAC\xF0\x9F\x98\x80"), 2u);  // € and an emoji
    EXPECT_EQ(adGlobStrNumChars(utf8_, ""), 0u);
    EXPECT_EQ(adGlobStrNumChars(utf8_, nullptr), 0u);
    EXPECT_EQ(adGlobStrNumChars(latin1_, kLatin1Apfel), 5u);
    EXPECT_EQ(adGlobStrNumChars(latin1_, "\xC3\xA4"), 2u);  // two Latin-1 characters

    void *sjis = nullptr;
    ASSERT_EQ(adGlobGetLocaleAndStatus("ja_JP.Shift_JIS", &sjis), 0);
    // "日本a": two double-byte characters and one single byte.
    EXPECT_EQ(adGlobStrNumChars(sjis, "\x93\xFA\x96\x7B" "a"), 3u);
    adGlobFreeLocale(sjis);
}

TEST_F(HostLocale, InvalidUtf8IsDetected) {
    EXPECT_TRUE(adGlobStrIsValid(utf8_, "plain"));
    EXPECT_TRUE(adGlobStrIsValid(utf8_, "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"));
    EXPECT_TRUE(adGlobStrIsValid(utf8_, "\xF4\x8F\xBF\xBF"));  // U+10FFFF
    const char *bad[] = {
        "\x80",              // stray continuation byte
        "a\xC3",             // cut short
        "\xC0\x80",          // overlong NUL
        "\xE0\x80\xAF",      // overlong slash
        "\xED\xA0\x80",      // a surrogate
        "\xF4\x90\x80\x80",  // above U+10FFFF
        "\xFF",              // never valid
        "\xE2\x82" "A",      // broken sequence
    };
    for (const char *s : bad) EXPECT_FALSE(adGlobStrIsValid(utf8_, s)) << testing::PrintToString(s);
    EXPECT_FALSE(adGlobStrIsValid(utf8_, nullptr));
    // Every byte is a Latin-1 character.
    EXPECT_TRUE(adGlobStrIsValid(latin1_, "\x80\xFF\xC0"));

    void *sjis = nullptr;
    ASSERT_EQ(adGlobGetLocaleAndStatus("ja_JP.Shift_JIS", &sjis), 0);
    EXPECT_TRUE(adGlobStrIsValid(sjis, "\x93\xFA\x96\x7B"));
    EXPECT_FALSE(adGlobStrIsValid(sjis, "\x93"));  // lead byte without its trail
    adGlobFreeLocale(sjis);
}

// ---- case mapping -----------------------------------------------------------

TEST_F(HostLocale, FullCaseMappingOfMultiByteText) {
    EXPECT_EQ(upper(utf8_, "\xC3\xA4pfel"), "\xC3\x84PFEL");  // äpfel -> ÄPFEL
    EXPECT_EQ(sts_, 0);
    EXPECT_EQ(upper(utf8_, "stra\xC3\x9F" "e"), "STRASSE");   // ß lengthens
    EXPECT_EQ(lower(utf8_, "\xC3\x84PFEL"), "\xC3\xA4pfel");
    EXPECT_EQ(upper(nullptr, "\xCE\xB1\xCE\xB2\xCE\xB3"), "\xCE\x91\xCE\x92\xCE\x93");  // αβγ
    EXPECT_EQ(upper(utf8_, ""), "");
    EXPECT_EQ(sts_, 0);
}

TEST_F(HostLocale, AsciiFoldsByteWiseAndInPlace) {
    EXPECT_EQ(upper(utf8_, "Hello, World_09!"), "HELLO, WORLD_09!");
    EXPECT_EQ(lower(utf8_, "Hello, World_09!"), "hello, world_09!");
    char buf[] = "in place";
    ASSERT_EQ(adGlobStrNToUpper(utf8_, buf, buf, sizeof buf), 0);
    EXPECT_STREQ(buf, "IN PLACE");
    char mixed[32] = "ab\xC3\xA4";  // ASCII, then a non-ASCII letter, in place
    ASSERT_EQ(adGlobStrNToUpper(utf8_, mixed, mixed, sizeof mixed), 0);
    EXPECT_STREQ(mixed, "AB\xC3\x84");
}

// ASCII is folded eight bytes at a time: every character, at every place
// of a word and of the tail, must come out as the plain mapping says, and a
// non-ASCII byte anywhere must hand the text to the full mapping.
TEST_F(HostLocale, AsciiWordsFoldLikeSingleCharacters) {
    auto plain = [](std::string s, bool up) {
        for (char &c : s) {
            if (up && c >= 'a' && c <= 'z') c = static_cast<char>(c - 0x20);
            if (!up && c >= 'A' && c <= 'Z') c = static_cast<char>(c + 0x20);
        }
        return s;
    };
    for (int first = 1; first < 128; first += 1) {
        for (size_t len : {1u, 7u, 8u, 9u, 15u, 16u, 17u, 23u}) {
            std::string s;
            for (size_t i = 0; i < len; ++i) s += static_cast<char>(1 + (first + 13 * i) % 127);
            ASSERT_EQ(upper(utf8_, s), plain(s, true)) << first << "/" << len;
            ASSERT_EQ(lower(utf8_, s), plain(s, false)) << first << "/" << len;
        }
    }
    // A two-byte letter at each place of the first word, of the second and
    // of the tail: the ASCII around it is folded as well.
    for (size_t at = 0; at < 20; ++at) {
        std::string s = "abcdefghijklmnopqrst";
        s.replace(at, 1, "\xC3\xA4");  // ä
        std::string expected = plain(s, true);
        expected.replace(at, 2, "\xC3\x84");  // Ä
        ASSERT_EQ(upper(utf8_, s), expected) << at;
    }
}

TEST_F(HostLocale, FoldingRefusesWhatDoesNotFit) {
    // "abc" needs 4 bytes with its NUL.
    EXPECT_EQ(upper(utf8_, "abc", 4), "ABC");
    EXPECT_EQ(sts_, 0);
    EXPECT_EQ(upper(utf8_, "abc", 3), "");
    EXPECT_EQ(sts_, VTX_STS_TEXT_TOO_LONG);
    // U+0149 (2 bytes) upper-cases to U+02BC N (3 bytes): the input fits,
    // the result does not.
    std::string napostrophe = "x\xC5\x89";  // 3 bytes, 4 with NUL
    EXPECT_EQ(upper(utf8_, napostrophe, 4), "");
    EXPECT_EQ(sts_, VTX_STS_TEXT_TOO_LONG);
    EXPECT_EQ(upper(utf8_, napostrophe, 5), "X\xCA\xBCN");
    EXPECT_EQ(sts_, 0);
    // In Latin-1 the one byte of ß becomes two.
    EXPECT_EQ(upper(latin1_, kLatin1Strasse, 7), "");
    EXPECT_EQ(sts_, VTX_STS_TEXT_TOO_LONG);
    EXPECT_EQ(upper(latin1_, kLatin1Strasse, 8), "STRASSE");
    // U+0390 becomes three code points, 6 bytes: 3*len+1 is the bound that
    // always holds, 2*len+1 is not enough here.
    std::string iota = "\xCE\x90";
    EXPECT_EQ(upper(utf8_, iota, 2 * iota.size() + 1), "");
    EXPECT_EQ(sts_, VTX_STS_TEXT_TOO_LONG);
    EXPECT_EQ(upper(utf8_, iota, 3 * iota.size() + 1), "\xCE\x99\xCC\x88\xCC\x81");
    EXPECT_EQ(sts_, 0);
    // Dotless i is two bytes and its upper case one: a text too long as
    // ASCII-sized input may still fit after mapping.
    std::string dotless = "\xC4\xB1\xC4\xB1\xC4\xB1";  // ııı
    EXPECT_EQ(upper(utf8_, dotless, 4), "III");
    EXPECT_EQ(sts_, 0);
    EXPECT_EQ(adGlobStrNToUpper(utf8_, nullptr, "x", 4), VTX_STS_NULL_ARG);
}

TEST_F(HostLocale, LanguageRulesApplyEvenToAscii) {
    void *tr = nullptr;
    ASSERT_EQ(adGlobGetLocaleAndStatus("tr_TR.UTF-8", &tr), 0);
    EXPECT_EQ(upper(tr, "istanbul"), "\xC4\xB0STANBUL");  // İSTANBUL
    EXPECT_EQ(lower(tr, "I"), "\xC4\xB1");                 // ı
    EXPECT_NE(adGlobStrCompareIgnoreCase(tr, "i", "I"), 0);
    EXPECT_EQ(adGlobStrCompareIgnoreCase(tr, "i", "\xC4\xB0"), 0);
    adGlobFreeLocale(tr);
    EXPECT_EQ(adGlobStrCompareIgnoreCase(utf8_, "i", "I"), 0);
}

TEST_F(HostLocale, NativeEncodingsMapThroughUnicode) {
    EXPECT_EQ(upper(latin1_, kLatin1Apfel), kLatin1ApfelUp);
    EXPECT_EQ(lower(latin1_, kLatin1ApfelUp), kLatin1Apfel);
    EXPECT_EQ(upper(latin1_, kLatin1Strasse), "STRASSE");
    // ÿ has an upper case that Latin-1 cannot hold: it stays as it is,
    // and its neighbours are still mapped.
    EXPECT_EQ(upper(latin1_, "a\xFF" "b"), "A\xFF" "B");
    EXPECT_EQ(sts_, 0);
}

TEST_F(HostLocale, MapToUpperTakesALengthAndAnswersOne) {
    char buf[32];
    EXPECT_EQ(adGlobStrMapToUpper(utf8_, buf, sizeof buf, "\xC3\xA4pfel", -1, 0), 6);
    EXPECT_STREQ(buf, "\xC3\x84PFEL");
    EXPECT_EQ(adGlobStrMapToUpper(utf8_, buf, sizeof buf, "abcdef", 3, 0), 3);
    EXPECT_STREQ(buf, "ABC");
    EXPECT_EQ(adGlobStrMapToUpper(utf8_, buf, sizeof buf, "ab\0cd", 5, 0), 2);
    EXPECT_EQ(adGlobStrMapToUpper(utf8_, buf, sizeof buf, "stra\xC3\x9F" "e", -1, 0), 7);
    EXPECT_STREQ(buf, "STRASSE");
    EXPECT_EQ(adGlobStrMapToUpper(utf8_, buf, 7, "stra\xC3\x9F" "e", -1, 0), -1);
    EXPECT_STREQ(buf, "");
    EXPECT_EQ(adGlobStrMapToUpper(latin1_, buf, sizeof buf, kLatin1Apfel, -1, 0), 5);
    EXPECT_STREQ(buf, kLatin1ApfelUp);
}

// ---- comparison -----------------------------------------------------------------

TEST_F(HostLocale, BinaryCompareIsByteOrder) {
    EXPECT_LT(adGlobStrCompare(utf8_, "B", "a"), 0);
    EXPECT_GT(adGlobStrCompare(utf8_, "\xC3\xA4", "z"), 0);  // unsigned bytes
    EXPECT_EQ(adGlobStrCompare(utf8_, "same", "same"), 0);
    EXPECT_LT(adGlobStrCompare(utf8_, "ab", "abc"), 0);
    EXPECT_LT(adGlobStrCompare(utf8_, nullptr, ""), 0);
    EXPECT_EQ(adGlobStrCompare(utf8_, nullptr, nullptr), 0);
}

TEST_F(HostLocale, CaseInsensitiveCompareFoldsFully) {
    EXPECT_EQ(adGlobStrCompareIgnoreCase(utf8_, "\xC3\x84PFEL", "\xC3\xA4pfel"), 0);
    EXPECT_TRUE(adGlobStrEqualsIgnoreCase(utf8_, "STRASSE", "stra\xC3\x9F" "e"));
    EXPECT_TRUE(adGlobStrEqualsIgnoreCase(utf8_, "Sales", "sALES"));
    EXPECT_FALSE(adGlobStrEqualsIgnoreCase(utf8_, "Sales", "Sale"));
    EXPECT_LT(adGlobStrCompareIgnoreCase(utf8_, "apple", "BANANA"), 0);
    EXPECT_GT(adGlobStrCompareIgnoreCase(utf8_, "BANANA", "apple"), 0);
    EXPECT_TRUE(adGlobStrEqualsIgnoreCase(latin1_, kLatin1Apfel, kLatin1ApfelUp));
    EXPECT_TRUE(adGlobStrEqualsIgnoreCase(latin1_, kLatin1Strasse, "STRASSE"));
    EXPECT_LT(adGlobStrCompareIgnoreCase(utf8_, nullptr, "a"), 0);
}

// The member index hashes the upper-case form: equality ignoring case must
// be exactly equality of those forms, and the order must be theirs too.
TEST_F(HostLocale, IgnoreCaseCompareAgreesWithUpperForms) {
    std::vector<std::string> words = {
        "", "a", "A", "_", "`", "Z", "abc", "ABC", "ab\xC3\xA4", "AB\xC3\x84", "stra\xC3\x9F" "e",
        "STRASSE", "strasse", "Stra\xC3\x9F" "E", "\xC3\x9F", "SS", "s", "\xE2\x84\xAA",  // Kelvin
        "k", "K", "\xC4\xB1", "I", "i", "\xC5\xBF", "S", "\xCE\xA3", "\xCF\x82", "\xCF\x83",
        "\xC7\x85", "\xC7\x84", "\xC7\x86", "a\xCC\x88", "\xC3\xA4", "x\xF0\x9F\x98\x80",
        "X\xF0\x9F\x98\x80", "\xEF\xAC\x80", "FF"};
    // Long texts take another path than short ones; they must agree too.
    std::string longLower, longUpper;
    for (int i = 0; i < 300; ++i) longLower += "\xC3\xA4", longUpper += "\xC3\x84";
    words.insert(words.end(), {longLower, longUpper, longLower + "a", longUpper + "B"});
    for (void *loc : {utf8_, static_cast<void *>(nullptr)}) {
        for (const std::string &a : words) {
            std::string ua = upper(loc, a, 2048);
            ASSERT_EQ(sts_, 0) << a;
            for (const std::string &b : words) {
                std::string ub = upper(loc, b, 2048);
                int c = adGlobStrCompareIgnoreCase(loc, a.c_str(), b.c_str());
                int expected = ua < ub ? -1 : (ua > ub ? 1 : 0);
                EXPECT_EQ(c, expected) << testing::PrintToString(a) << " vs "
                                       << testing::PrintToString(b);
                EXPECT_EQ(adGlobStrEqualsIgnoreCase(loc, a.c_str(), b.c_str()), ua == ub);
            }
        }
    }
}

TEST_F(HostLocale, CollationFollowsTheLanguage) {
    // Binary order puts every capital first; collation does not.
    EXPECT_LT(adGlobStrCollate(utf8_, "apple", "Banana"), 0);
    EXPECT_GT(adGlobStrCompare(utf8_, "apple", "Banana"), 0);
    // ä sorts with a, not after z.
    EXPECT_LT(adGlobStrCollate(utf8_, "\xC3\xA4pfel", "birne"), 0);
    EXPECT_GT(adGlobStrCompare(utf8_, "\xC3\xA4pfel", "birne"), 0);
    EXPECT_LT(adGlobStrCollate(latin1_, kLatin1Apfel, "birne"), 0);
    // Case counts at tertiary strength only.
    EXPECT_NE(adGlobStrCollate(utf8_, "\xC3\x84PFEL", "\xC3\xA4pfel"), 0);
    EXPECT_EQ(adGlobStrCollateIgnoreCase(utf8_, "\xC3\x84PFEL", "\xC3\xA4pfel"), 0);
    EXPECT_EQ(adGlobStrCollateIgnoreCase(latin1_, kLatin1ApfelUp, kLatin1Apfel), 0);
    // Accents still count when case does not.
    EXPECT_NE(adGlobStrCollateIgnoreCase(utf8_, "\xC3\xA4pfel", "apfel"), 0);
    EXPECT_EQ(adGlobStrCollate(utf8_, "same", "same"), 0);

    void *sv = nullptr;
    ASSERT_EQ(adGlobGetLocaleAndStatus("sv_SE.UTF-8", &sv), 0);
    // Swedish puts ä after z; the root order puts it with a.
    EXPECT_GT(adGlobStrCollate(sv, "\xC3\xA4", "z"), 0);
    EXPECT_LT(adGlobStrCollate(utf8_, "\xC3\xA4", "z"), 0);
    adGlobFreeLocale(sv);

    // Sorting with it gives the dictionary order.
    std::vector<std::string> v = {"Birne", "\xC3\xA4pfel", "Apfel", "banane"};
    std::sort(v.begin(), v.end(), [&](const std::string &a, const std::string &b) {
        return adGlobStrCollate(utf8_, a.c_str(), b.c_str()) < 0;
    });
    EXPECT_EQ(v, (std::vector<std::string>{"Apfel", "\xC3\xA4pfel", "banane", "Birne"}));
}

// ---- conversion ---------------------------------------------------------------------

TEST_F(HostLocale, ConversionRoundTripsBetweenUtf8AndLatin1) {
    const char utf8Text[] = "Gr\xC3\xBC\xC3\x9F" "e \xC3\xA4pfel";  // Grüße äpfel
    char native[64], back[64];
    ASSERT_EQ(adEncodeConversion(utf8_, latin1_, utf8Text, native, sizeof native), 0);
    EXPECT_STREQ(native, "Gr\xFC\xDF" "e \xE4pfel");
    ASSERT_EQ(adEncodeConversion(latin1_, nullptr, native, back, sizeof back), 0);
    EXPECT_STREQ(back, utf8Text);
    // Null means UTF-8 on either side.
    ASSERT_EQ(adEncodeConversion(nullptr, latin1_, utf8Text, native, sizeof native), 0);
    EXPECT_STREQ(native, "Gr\xFC\xDF" "e \xE4pfel");
    ASSERT_EQ(adEncodeConversion(nullptr, nullptr, utf8Text, back, sizeof back), 0);
    EXPECT_STREQ(back, utf8Text);
}

TEST_F(HostLocale, ConversionRefusesWhatDoesNotFitOrCannotBeHeld) {
    char out[16];
    // "äb" is 3 bytes in UTF-8 and 2 in Latin-1.
    EXPECT_EQ(adEncodeConversion(utf8_, latin1_, "\xC3\xA4" "b", out, 3), 0);
    EXPECT_STREQ(out, "\xE4" "b");
    EXPECT_EQ(adEncodeConversion(utf8_, latin1_, "\xC3\xA4" "b", out, 2), VTX_STS_TEXT_TOO_LONG);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(adEncodeConversion(latin1_, utf8_, "\xE4" "b", out, 3), VTX_STS_TEXT_TOO_LONG);
    EXPECT_EQ(adEncodeConversion(latin1_, utf8_, "\xE4" "b", out, 4), 0);
    EXPECT_STREQ(out, "\xC3\xA4" "b");
    // The euro sign has no Latin-1 form: refused rather than replaced.
    EXPECT_EQ(adEncodeConversion(utf8_, latin1_, "\xE2\x82\xAC", out, sizeof out),
              VTX_STS_BAD_TEXT);
    EXPECT_STREQ(out, "");
    // A source that is not valid in its own encoding.
    EXPECT_EQ(adEncodeConversion(utf8_, latin1_, "\xC3", out, sizeof out), VTX_STS_BAD_TEXT);
    EXPECT_EQ(adEncodeConversion(utf8_, utf8_, "\xC0\x80", out, sizeof out), VTX_STS_BAD_TEXT);
    EXPECT_EQ(adEncodeConversion(utf8_, latin1_, nullptr, out, sizeof out), VTX_STS_NULL_ARG);
    EXPECT_EQ(adEncodeConversion(utf8_, latin1_, "x", nullptr, 0), VTX_STS_NULL_ARG);
}

TEST_F(HostLocale, ShiftJisRoundTrip) {
    void *sjis = nullptr;
    ASSERT_EQ(adGlobGetLocaleAndStatus("ja_JP.Shift_JIS", &sjis), 0);
    const char utf8Text[] = "\xE6\x97\xA5\xE6\x9C\xAC-1";  // 日本-1
    char native[32], back[32];
    ASSERT_EQ(adEncodeConversion(nullptr, sjis, utf8Text, native, sizeof native), 0);
    EXPECT_STREQ(native, "\x93\xFA\x96\x7B-1");
    ASSERT_EQ(adEncodeConversion(sjis, nullptr, native, back, sizeof back), 0);
    EXPECT_STREQ(back, utf8Text);
    // A trail byte in the ASCII range must not be folded as a letter:
    // 0x96 0x7B is one character whose second byte reads as '{'.
    char up[32];
    ASSERT_EQ(adGlobStrNToUpper(sjis, up, "a\x83\x61", sizeof up), 0);  // a, katakana
    EXPECT_STREQ(up, "A\x83\x61");
    adGlobFreeLocale(sjis);
}

} // namespace
