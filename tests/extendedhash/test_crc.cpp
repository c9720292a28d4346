// The numbers under the hash: CRC values, the second hash, table sizes and
// the slots the probe picks.  Slot numbers end up in stored bucket numbers,
// so the expected values here were worked out independently of this code
// (the reflected CRC-32 register without final inversion, and the probe
// rules simulated by hand) and must never change.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "crc.h"
#include "extendedhash.h"
#include "hashCWrapper.h"
#include "testctx.h"

namespace {

unsigned int crcOf(const std::string &s) { return ExtendedHash::crcOf(s.data(), s.size()); }
VTX_ULONG_T h2Of(const std::string &s) { return ExtendedHash::secondHash(s.data(), s.size()); }

TEST(Crc, KnownValues) {
    EXPECT_EQ(crcOf("your string"), 0x857B4779u);
    EXPECT_EQ(crcOf(""), 0xFFFFFFFFu);
    // The complement of the usual check value 0xCBF43926.
    EXPECT_EQ(crcOf("123456789"), 0x340BC6D9u);
    EXPECT_EQ(crcOf("Product"), 0xE308C2CEu);
    // Bytes count as unsigned.
    EXPECT_EQ(crcOf("\xff"), 0x00FFFFFFu);
    EXPECT_EQ(crcOf("\xC3\x84PFEL"), 0xD0596C3Fu);
}

TEST(Crc, TableAndSelfTest) {
    const CRC::CRC32 &c = CRC::CRC32::instance();
    EXPECT_EQ(&c, &CRC::CRC32::instance());
    EXPECT_EQ(c.entry(0), 0u);
    EXPECT_EQ(c.entry(1), 0x77073096u);
    EXPECT_EQ(c.entry(255), 0x2D02EF8Du);
    // Stepping byte by byte gives the value of the whole text.
    unsigned int v = CRC::CRC32::START;
    for (char ch : std::string("your string")) v = c.crc(static_cast<unsigned char>(ch), v);
    EXPECT_EQ(v, 0x857B4779u);
    testing::internal::CaptureStdout();
    EXPECT_TRUE(c.check());
    std::string out = testing::internal::GetCapturedStdout();
    EXPECT_NE(out.find("[0] 128/256\n"), std::string::npos);
    EXPECT_NE(out.find("[31] 128/256\n"), std::string::npos);
    testing::internal::CaptureStdout();
    c.print();
    out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(out.rfind("unsigned int crc_table[256] = {", 0), 0u);
    EXPECT_NE(out.find("0x77073096"), std::string::npos);
    EXPECT_NE(out.find("0x2d02ef8d\n};"), std::string::npos);
}

TEST(Crc, WholeTextsAgreeWithByteSteps) {
    // Texts are taken eight and four bytes at a time; every length and
    // alignment must give what single steps give.
    const CRC::CRC32 &c = CRC::CRC32::instance();
    std::string text;
    for (int i = 0; i < 80; ++i) text += static_cast<char>((i * 37 + 11) & 0xFF);
    for (size_t start = 0; start < 8; ++start) {
        for (size_t len = 0; start + len <= text.size(); ++len) {
            unsigned int v = CRC::CRC32::START;
            for (size_t i = 0; i < len; ++i) v = c.crc(static_cast<unsigned char>(text[start + i]), v);
            ASSERT_EQ(c.crc(text.data() + start, len), v) << start << "/" << len;
        }
    }
}

// The upper-case value is computed from the text as it stands; it must be
// the value of the upper-cased text, for every length, place and letter, and
// must refuse (changing nothing) at any byte that is not ASCII.
TEST(Crc, UpperAsciiValueIsTheValueOfTheUpperCaseText) {
    const CRC::CRC32 &c = CRC::CRC32::instance();
    auto upper = [](std::string s) {
        for (char &ch : s)
            if (ch >= 'a' && ch <= 'z') ch = static_cast<char>(ch - 0x20);
        return s;
    };
    std::string text;
    for (int i = 0; i < 300; ++i) text += static_cast<char>(1 + (i * 37 + 11) % 127);
    for (size_t start = 0; start < 8; ++start) {
        for (size_t len = 0; len <= 40; ++len) {
            const std::string s = text.substr(start * 29, len);
            unsigned int v = 0;
            ASSERT_TRUE(c.crcUpperAscii(s.data(), s.size(), &v)) << start << "/" << len;
            ASSERT_EQ(v, c.crc(upper(s).data(), s.size())) << start << "/" << len;
            ASSERT_EQ(ExtendedHash::secondHashUpperAscii(s.data(), s.size()), h2Of(upper(s)));
            for (size_t at = 0; at < len; ++at) {
                std::string t = s;
                t[at] = static_cast<char>(0x80 | t[at]);
                unsigned int untouched = 0x12345678u;
                ASSERT_FALSE(c.crcUpperAscii(t.data(), t.size(), &untouched)) << len << "@" << at;
                ASSERT_EQ(untouched, 0x12345678u);
            }
        }
    }
}

TEST(SecondHash, KnownValues) {
    EXPECT_EQ(h2Of(""), 0u);
    EXPECT_EQ(h2Of("ab"), 0x442u);
    EXPECT_EQ(h2Of("your string"), 0xE118BDBFu);
    EXPECT_EQ(h2Of("Product"), 0xE2C3D818u);
    EXPECT_EQ(h2Of("Jan-Feb-Mar-Apr-May-Jun-Jul"), 0x173C9AF5u);
    // Bytes count as signed: 0xFF is -1 and sets every high bit.
    EXPECT_EQ(h2Of("\xff"), 0xFFFFFFDFu);
    EXPECT_EQ(h2Of("\xC3\x84PFEL"), 0x01996CF2u);
}

TEST(TableSizes, RemainderWithoutDivisionIsExact) {
    size_t n = 0;
    const unsigned long long *list = ExtendedHash::primeList(&n);
    const uint32_t values[] = {0u, 1u, 52u, 53u, 54u, 65535u, 65536u, 0x7FFFFFFFu, 0x80000000u,
                               0xFFFFFFFEu, 0xFFFFFFFFu, 0x857B4779u};
    uint32_t x = 12345;
    for (size_t i = 0; i < n; ++i) {
        const uint32_t d = static_cast<uint32_t>(list[i]);
        for (uint32_t v : values) ASSERT_EQ(ExtendedHash::remainder(v, d), v % d) << v << " % " << d;
        for (int k = 0; k < 2000; ++k) {
            x = x * 1664525u + 1013904223u;
            ASSERT_EQ(ExtendedHash::remainder(x, d), x % d) << x << " % " << d;
            ASSERT_EQ(ExtendedHash::remainder(x % (2 * d), d), (x % (2 * d)) % d);
        }
    }
}

TEST(TableSizes, FirstPrimeOfTheListAbove) {
    size_t n = 0;
    const unsigned long long *list = ExtendedHash::primeList(&n);
    ASSERT_EQ(n, 138u);
    EXPECT_EQ(list[0], 53u);
    EXPECT_EQ(list[137], 4294967291u);
    EXPECT_EQ(ExtendedHash::primeAbove(0), 53u);
    EXPECT_EQ(ExtendedHash::primeAbove(20), 53u);
    EXPECT_EQ(ExtendedHash::primeAbove(53), 61u);
    EXPECT_EQ(ExtendedHash::primeAbove(2000), 2003u);
    EXPECT_EQ(ExtendedHash::primeAbove(10000000), 10000019u);
    // The list keeps 2750000051 before 2500000001, and "first above" takes
    // list order: 2.4e9 and 2.6e9 both get 2750000051.
    EXPECT_EQ(ExtendedHash::primeAbove(2400000000u), 2750000051u);
    EXPECT_EQ(ExtendedHash::primeAbove(2600000000u), 2750000051u);
    EXPECT_EQ(ExtendedHash::primeAbove(2750000051u), 3000000019u);
    EXPECT_EQ(ExtendedHash::primeAbove(4294967295u), 4294967291u);
}

// 28 keys into a hash sized for 10 strings (one table of 53 slots), each
// with the slot the probe rules give it.  Several keys need two to four
// probes.  The 28th key passes the half-full mark and still goes to the
// first table.
const unsigned int kMemberSlots[28] = {40, 7,  14, 48, 51, 19, 11, 21, 26, 17, 39, 8,  15, 24,
                                       5,  16, 44, 18, 38, 6,  32, 3,  43, 41, 33, 22, 23, 27};
// The same keys in upper case: what a case-insensitive table hashes for the
// lower-case spellings.
const unsigned int kUpperSlots[28] = {11, 0, 28, 39, 16, 7,  13, 46, 41, 49, 19, 6, 40, 31,
                                      20, 50, 45, 4, 32, 1,  5,  33, 25, 2,  27, 3, 26, 14};

std::string memberKey(const char *fmt, int i) {
    char buf[32];
    std::snprintf(buf, sizeof buf, fmt, i);
    return buf;
}

void expectSlots(VTX_BOOL_T caseSensitive, const char *fmt, const unsigned int *slots) {
    vtxtest::TestCtx ctx;
    VTX_PEXTENDED_HASH_T h = nullptr;
    ASSERT_EQ(extendedHashInitWithSize(&h, ctx.ctx(), ctx.ctx()->pLocale, 10, caseSensitive), 0);
    auto *eh = reinterpret_cast<ExtendedHash *>(h);
    ASSERT_EQ(eh->tableSize(0), 53u);
    std::vector<std::string> keys;
    for (int i = 0; i < 29; ++i) keys.push_back(memberKey(fmt, i));
    for (int i = 0; i < 28; ++i) {
        HASH_NUM_T num = NODE_INDEX_DEL;
        HASH_POS_T pos = NODE_INDEX_DEL;
        ASSERT_EQ(extendedHashGetPos(h, keys[i].c_str(), &num, &pos), 0);
        ASSERT_EQ(num, NODE_INDEX_NA) << keys[i];
        ASSERT_EQ(pos, slots[i]) << keys[i];
        ASSERT_EQ(extendedHashInsert(h, static_cast<VTX_ULONG_T>(i), keys[i].c_str(), &num, &pos), 0);
        // The 28th finds 27 items counted: 54 > 53 adds a table of the first
        // prime above 10 << 2, which is 53 again; the key stays in table 0.
        EXPECT_EQ(eh->tableCount(), i < 27 ? 1u : 2u) << i;
        EXPECT_EQ(num, 0u);
        EXPECT_EQ(pos, slots[i]);
    }
    EXPECT_EQ(eh->tableSize(1), 53u);
    EXPECT_EQ(eh->elementsInNewestTable(), 1u);
    for (int i = 0; i < 28; ++i) {
        HASH_NUM_T num = NODE_INDEX_DEL;
        HASH_POS_T pos = NODE_INDEX_DEL;
        ASSERT_EQ(extendedHashGetPos(h, keys[i].c_str(), &num, &pos), 0);
        EXPECT_EQ(num, 0u);
        EXPECT_EQ(pos, slots[i]);
        EXPECT_EQ(eh->slot(0, pos), static_cast<VTX_ULONG_T>(i));  // node i heads that slot
    }
    extendedHashFree(h);
}

TEST(ProbeSlots, CaseSensitiveKeysLandWhereTheRulesSay) { expectSlots(1, "Member%02d", kMemberSlots); }

TEST(ProbeSlots, FoldedKeysHashTheirUpperCaseForm) { expectSlots(0, "member%02d", kUpperSlots); }

TEST(ProbeSlots, NextNewKeyGoesToTheNewTable) {
    vtxtest::TestCtx ctx;
    VTX_PEXTENDED_HASH_T h = nullptr;
    ASSERT_EQ(extendedHashInitWithSize(&h, ctx.ctx(), nullptr, 10, 1), 0);
    auto *eh = reinterpret_cast<ExtendedHash *>(h);
    std::vector<std::string> keys;
    for (int i = 0; i < 29; ++i) keys.push_back(memberKey("Member%02d", i));
    for (int i = 0; i < 29; ++i) {
        HASH_NUM_T num = NODE_INDEX_DEL;
        HASH_POS_T pos = NODE_INDEX_DEL;
        ASSERT_EQ(extendedHashInsert(h, static_cast<VTX_ULONG_T>(i), keys[i].c_str(), &num, &pos), 0);
    }
    HASH_NUM_T num = NODE_INDEX_DEL;
    HASH_POS_T pos = NODE_INDEX_DEL;
    ASSERT_EQ(extendedHashGetPos(h, "Member28", &num, &pos), 0);
    EXPECT_EQ(num, 1u);
    EXPECT_EQ(pos, ExtendedHash::crcOf("Member28", 8) % 53);
    EXPECT_EQ(pos, 1u);
    EXPECT_EQ(eh->elementsInNewestTable(), 2u);
    extendedHashFree(h);
}

TEST(ProbeSlots, EmptyKeyIsAKeyLikeAnyOther) {
    vtxtest::TestCtx ctx;
    VTX_PEXTENDED_HASH_T h = nullptr;
    ASSERT_EQ(extendedHashInitWithSize(&h, ctx.ctx(), nullptr, 10, 1), 0);
    HASH_NUM_T num = NODE_INDEX_DEL;
    HASH_POS_T pos = NODE_INDEX_DEL;
    ASSERT_EQ(extendedHashGetPos(h, "", &num, &pos), 0);
    EXPECT_EQ(pos, 0xFFFFFFFFu % 53);
    ASSERT_EQ(extendedHashInsert(h, 9, "", &num, &pos), 0);
    num = pos = NODE_INDEX_DEL;
    ASSERT_EQ(extendedHashGetPos(h, "", &num, &pos), 0);
    EXPECT_EQ(num, 0u);
    VTX_EXTENDED_HASH_IT_BUF_T buf;
    auto it = reinterpret_cast<VTX_PEXTENDED_HASH_IT_T>(&buf);
    ASSERT_EQ(extendedHashInitIterator(h, it, num, pos), 0);
    EXPECT_EQ(extendedHashItGetHashItemIndex(it), 9u);
    extendedHashFree(h);
}

} // namespace
