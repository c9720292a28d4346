// The extended hash through its flat interface: growth over many table
// generations, chains of equal keys, deletion, iterators, case folding, copy.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "allochook.h"
#include "extendedhash.h"
#include "hashCWrapper.h"
#include "testctx.h"

namespace {

// A hash with keys the test owns (the hash keeps only pointers).
class HashFixture {
public:
    // shared: another fixture's context, for hashes that must share one.
    explicit HashFixture(VTX_ULONG_T sizeHint = 10, VTX_BOOL_T caseSensitive = 1,
                         vtx_netctx_t *shared = nullptr)
        : c(shared ? shared : ctx.ctx()) {
        EXPECT_EQ(extendedHashInitWithSize(&h, c, c->pLocale, sizeHint, caseSensitive), 0);
    }
    ~HashFixture() { extendedHashFree(h); }
    ExtendedHash *eh() { return reinterpret_cast<ExtendedHash *>(h); }

    // Keeps a copy of the text alive and inserts it.
    VTX_STS_T add(const std::string &key, VTX_ULONG_T item) {
        keys.push_back(std::make_unique<std::string>(key));
        HASH_NUM_T num = NODE_INDEX_DEL;
        HASH_POS_T pos = NODE_INDEX_DEL;
        return extendedHashInsert(h, item, keys.back()->c_str(), &num, &pos);
    }
    bool find(const std::string &key, HASH_NUM_T *pNum = nullptr, HASH_POS_T *pPos = nullptr) {
        HASH_NUM_T num = NODE_INDEX_DEL;
        HASH_POS_T pos = NODE_INDEX_DEL;
        EXPECT_EQ(extendedHashGetPos(h, key.c_str(), &num, &pos), 0);
        if (pNum) *pNum = num;
        if (pPos) *pPos = pos;
        return num != NODE_INDEX_NA;
    }
    // The items on the key's chain, in chain order (empty when absent).
    std::vector<VTX_ULONG_T> chain(const std::string &key, std::vector<std::string> *strs = nullptr) {
        std::vector<VTX_ULONG_T> items;
        HASH_NUM_T num;
        HASH_POS_T pos;
        if (!find(key, &num, &pos)) return items;
        VTX_EXTENDED_HASH_IT_BUF_T buf;
        auto it = reinterpret_cast<VTX_PEXTENDED_HASH_IT_T>(&buf);
        EXPECT_EQ(extendedHashInitIterator(h, it, num, pos), 0);
        for (; !extendedHashItEnd(it); extendedHashItIncrement(it)) {
            items.push_back(extendedHashItGetHashItemIndex(it));
            if (strs) strs->push_back(extendedHashItGetStr(it));
        }
        return items;
    }
    // Deletes the entries of key's chain whose item is in `which`.
    int erase(const std::string &key, std::set<VTX_ULONG_T> which) {
        HASH_NUM_T num;
        HASH_POS_T pos;
        if (!find(key, &num, &pos)) return 0;
        VTX_EXTENDED_HASH_IT_BUF_T buf;
        auto it = reinterpret_cast<VTX_PEXTENDED_HASH_IT_T>(&buf);
        EXPECT_EQ(extendedHashInitIterator(h, it, num, pos), 0);
        int n = 0;
        while (!extendedHashItEnd(it)) {
            if (which.count(extendedHashItGetHashItemIndex(it))) {
                EXPECT_EQ(extendedHashItSetDeleted(it), 0);
                ++n;
            } else {
                extendedHashItIncrement(it);
            }
        }
        return n;
    }
    // Every (item, text) the all-members walk yields, in walk order.
    std::vector<std::pair<VTX_ULONG_T, std::string>> walkAll() {
        std::vector<std::pair<VTX_ULONG_T, std::string>> out;
        VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T it = nullptr;
        EXPECT_EQ(extendedHashGetAllMembersIterator(h, &it), 0);
        for (; !extendedHashAllMembersItEnd(it); extendedHashAllMembersItIncrement(it))
            out.emplace_back(extendedHashAllMembersItGetHashItemIndex(it), extendedHashAllMembersItGetStr(it));
        return out;
    }

    vtxtest::TestCtx ctx;
    vtx_netctx_t *c;
    VTX_PEXTENDED_HASH_T h = nullptr;
    std::vector<std::unique_ptr<std::string>> keys;
};

std::string nameOf(int i) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "Mbr_%07d_x%d", i, i % 13);
    return buf;
}

TEST(ExtendedHash, GrowsOverManyGenerationsAndFindsEverything) {
    HashFixture f(10);
    const int n = 200000;
    for (int i = 0; i < n; ++i) ASSERT_EQ(f.add(nameOf(i), static_cast<VTX_ULONG_T>(i)), 0);
    ExtendedHash *eh = f.eh();
    EXPECT_EQ(extendedHashGetNumOfElements(f.h), static_cast<VTX_ULONG_T>(n));
    // Each generation targets twice the previous one: 10 << (g + 1).
    ASSERT_GE(eh->tableCount(), 12u);
    for (size_t g = 1; g < eh->tableCount(); ++g)
        EXPECT_EQ(eh->tableSize(g), ExtendedHash::primeAbove(10u << (g + 1))) << g;
    // No table was ever filled past half (plus the one that triggered growth).
    for (int i = 0; i < n; i += 7) {
        HASH_NUM_T num;
        HASH_POS_T pos;
        ASSERT_TRUE(f.find(nameOf(i), &num, &pos)) << i;
        ASSERT_LT(num, eh->tableCount());
        std::vector<VTX_ULONG_T> items = f.chain(nameOf(i));
        ASSERT_EQ(items, std::vector<VTX_ULONG_T>{static_cast<VTX_ULONG_T>(i)});
    }
    for (int i = n; i < n + 2000; ++i) ASSERT_FALSE(f.find(nameOf(i))) << i;
    // Node storage grew in steps of 100000 and never moved a node.
    EXPECT_EQ(eh->nodeCapacity(), 210000u);
}

TEST(ExtendedHash, SizeZeroIsRaisedSoGenerationsStayFew) {
    HashFixture f(0);
    // As for 30000 strings: the first table fills one block of slots.
    EXPECT_EQ(f.eh()->tableSize(0), 60013u);
    EXPECT_EQ(f.eh()->blocksHeld(), 2u);  // the node array; no slot block touched yet
    for (int i = 0; i < 100000; ++i) ASSERT_EQ(f.add(nameOf(i), i), 0);
    EXPECT_EQ(f.eh()->tableCount(), 3u);
}

TEST(ExtendedHash, OldGenerationKeepsItsKeys) {
    HashFixture f(10);
    ASSERT_EQ(f.add("Sales", 1), 0);
    for (int i = 0; i < 400; ++i) ASSERT_EQ(f.add(nameOf(i), 100 + i), 0);
    ASSERT_GE(f.eh()->tableCount(), 4u);
    HASH_NUM_T num;
    HASH_POS_T pos;
    ASSERT_TRUE(f.find("Sales", &num, &pos));
    EXPECT_EQ(num, 0u);
    // A second owner of the name joins the chain in generation 0.
    ASSERT_EQ(f.add("Sales", 2), 0);
    HASH_NUM_T num2;
    HASH_POS_T pos2;
    ASSERT_TRUE(f.find("Sales", &num2, &pos2));
    EXPECT_EQ(num2, 0u);
    EXPECT_EQ(pos2, pos);
    EXPECT_EQ(f.chain("Sales"), (std::vector<VTX_ULONG_T>{1, 2}));
}

TEST(ExtendedHash, EqualKeysChainInInsertionOrderAndCountAsInsertions) {
    HashFixture f(10);
    // Each owner is a distinct text with the same spelling.
    for (VTX_ULONG_T i = 0; i < 30; ++i) ASSERT_EQ(f.add("Qtr1", i), 0);
    std::vector<VTX_ULONG_T> want;
    for (VTX_ULONG_T i = 0; i < 30; ++i) want.push_back(i);
    EXPECT_EQ(f.chain("Qtr1"), want);
    EXPECT_EQ(f.eh()->tableCount(), 1u);
    // 30 insertions counted: the next new key adds a generation although
    // only one slot is in use.
    ASSERT_EQ(f.add("Qtr2", 99), 0);
    EXPECT_EQ(f.eh()->tableCount(), 2u);
    EXPECT_EQ(f.chain("Qtr2"), std::vector<VTX_ULONG_T>{99});
}

TEST(ExtendedHash, InsertWithThePositionOfAnEarlierLookup) {
    HashFixture f(10);
    std::string k = "Actual";
    HASH_NUM_T num = NODE_INDEX_DEL;
    HASH_POS_T pos = NODE_INDEX_DEL;
    ASSERT_EQ(extendedHashGetPos(f.h, k.c_str(), &num, &pos), 0);
    ASSERT_EQ(num, NODE_INDEX_NA);
    ASSERT_EQ(extendedHashInsert(f.h, 7, k.c_str(), &num, &pos), 0);
    // A second key handed its own lookup's position, and a chained one.
    std::string k2 = "Budget";
    num = pos = NODE_INDEX_DEL;
    ASSERT_EQ(extendedHashGetPos(f.h, k2.c_str(), &num, &pos), 0);
    ASSERT_EQ(extendedHashInsert(f.h, 8, k2.c_str(), &num, &pos), 0);
    std::string k3 = "Actual";
    num = pos = NODE_INDEX_DEL;
    ASSERT_EQ(extendedHashGetPos(f.h, k3.c_str(), &num, &pos), 0);
    ASSERT_EQ(num, 0u);
    ASSERT_EQ(extendedHashInsert(f.h, 9, k3.c_str(), &num, &pos), 0);
    EXPECT_EQ(f.chain("Actual"), (std::vector<VTX_ULONG_T>{7, 9}));
    EXPECT_EQ(f.chain("Budget"), std::vector<VTX_ULONG_T>{8});
}

// Each entry answers the owner it was entered with, wherever growth put it;
// a node reused after a delete does not keep the old owner.
TEST(ExtendedHash, OwnersTravelWithTheirEntries) {
    HashFixture f(10);
    std::vector<int> owners(2000);
    for (int i = 0; i < 2000; ++i) {
        f.keys.push_back(std::make_unique<std::string>(nameOf(i % 1500)));
        HASH_NUM_T num = NODE_INDEX_DEL;
        HASH_POS_T pos = NODE_INDEX_DEL;
        // Every tenth entry is made without an owner.
        if (i % 10 == 9)
            ASSERT_EQ(extendedHashInsert(f.h, VTX_ULONG_T(i), f.keys.back()->c_str(), &num, &pos), 0);
        else
            ASSERT_EQ(extendedHashInsertOwned(f.h, VTX_ULONG_T(i), f.keys.back()->c_str(), &owners[size_t(i)],
                                              &num, &pos),
                      0);
    }
    ASSERT_GT(f.eh()->tableCount(), 3u);
    auto ownersOf = [&](const std::string &key) {
        std::vector<std::pair<VTX_ULONG_T, void *>> out;
        HASH_NUM_T num;
        HASH_POS_T pos;
        if (!f.find(key, &num, &pos)) return out;
        VTX_EXTENDED_HASH_IT_BUF_T buf;
        auto it = reinterpret_cast<VTX_PEXTENDED_HASH_IT_T>(&buf);
        EXPECT_EQ(extendedHashInitIterator(f.h, it, num, pos), 0);
        for (; !extendedHashItEnd(it); extendedHashItIncrement(it))
            out.emplace_back(extendedHashItGetHashItemIndex(it), extendedHashItGetOwner(it));
        return out;
    };
    for (int k = 0; k < 1500; ++k) {
        auto got = ownersOf(nameOf(k));
        ASSERT_EQ(got.size(), k < 500 ? 2u : 1u) << k;
        for (auto [item, owner] : got)
            EXPECT_EQ(owner, item % 10 == 9 ? nullptr : static_cast<void *>(&owners[item])) << item;
    }
    // Delete one owner of a repeated key; the other keeps its own.
    EXPECT_EQ(f.erase(nameOf(7), {7}), 1);
    auto left = ownersOf(nameOf(7));
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(left[0].second, static_cast<void *>(&owners[1507]));
    // Emptied, then entered again without an owner.
    EXPECT_EQ(f.erase(nameOf(600), {600}), 1);
    ASSERT_EQ(f.add(nameOf(600), 4242), 0);
    auto again = ownersOf(nameOf(600));
    ASSERT_EQ(again.size(), 1u);
    EXPECT_EQ(again[0].second, nullptr);
    EXPECT_EQ(extendedHashItGetOwner(nullptr), nullptr);
}

// The lookup that also places the iterator answers as a lookup followed by
// extendedHashInitIterator, over many generations and after deletes, and
// leaves the iterator alone for an absent key.
TEST(ExtendedHash, LookupWithIteratorMatchesLookupThenIterator) {
    HashFixture f(10, 0);
    for (int i = 0; i < 5000; ++i) ASSERT_EQ(f.add(nameOf(i % 4000), VTX_ULONG_T(i)), 0);
    ASSERT_GT(f.eh()->tableCount(), 3u);
    ASSERT_EQ(f.erase(nameOf(7), {7}), 1);
    ASSERT_EQ(f.erase(nameOf(8), {8, 4008}), 2);
    for (int i = 0; i < 4100; i += 3) {
        std::string key = nameOf(i);
        for (char &ch : key) ch = static_cast<char>(std::toupper(static_cast<unsigned char>(ch)));
        VTX_EXTENDED_HASH_IT_BUF_T buf;
        std::memset(&buf, 0xA5, sizeof buf);
        HASH_NUM_T num = NODE_INDEX_DEL;
        HASH_POS_T pos = NODE_INDEX_DEL;
        ASSERT_EQ(extendedHashGetPosAndIterator(f.h, key.c_str(), &num, &pos, &buf), 0);
        const std::vector<VTX_ULONG_T> expected = f.chain(key);
        std::vector<VTX_ULONG_T> got;
        if (num == NODE_INDEX_NA) {
            VTX_EXTENDED_HASH_IT_BUF_T untouched;
            std::memset(&untouched, 0xA5, sizeof untouched);
            ASSERT_EQ(std::memcmp(&buf, &untouched, sizeof buf), 0) << key;
        } else {
            VTX_STR_T str = nullptr;
            VTX_ULONG_T idx = 0;
            void *owner = &num;
            for (; extendedHashItGetEntry(&buf, &str, &idx, &owner); extendedHashItIncrement(&buf)) {
                ASSERT_EQ(idx, extendedHashItGetHashItemIndex(&buf));
                ASSERT_STREQ(str, extendedHashItGetStr(&buf));
                ASSERT_EQ(owner, nullptr);
                got.push_back(idx);
            }
            // At the end the outputs are left as they were.
            char kept[] = "kept";
            str = kept;
            EXPECT_FALSE(extendedHashItGetEntry(&buf, &str, &idx, &owner));
            EXPECT_EQ(str, kept);
        }
        ASSERT_EQ(got, expected) << key;
    }
}

TEST(ExtendedHash, NullArgumentsAndUnlookedPositions) {
    HashFixture f(10);
    HASH_NUM_T num = 123;
    HASH_POS_T pos = 456;
    EXPECT_EQ(extendedHashGetPos(nullptr, "x", &num, &pos), 0);
    EXPECT_EQ(num, 123u);
    EXPECT_EQ(pos, 456u);
    EXPECT_EQ(extendedHashGetNumOfElements(nullptr), 0u);
    EXPECT_EQ(extendedHashFree(nullptr), 0);
    EXPECT_EQ(extendedHashInsert(nullptr, 1, "x", &num, &pos), VTX_STS_NULL_ARG);
    VTX_EXTENDED_HASH_IT_BUF_T buf;
    std::memset(&buf, 0x5A, sizeof buf);
    auto it = reinterpret_cast<VTX_PEXTENDED_HASH_IT_T>(&buf);
    EXPECT_EQ(extendedHashInitIterator(f.h, it, NODE_INDEX_NA, 3), 1);
    EXPECT_EQ(extendedHashInitIterator(f.h, it, NODE_INDEX_DEL, 3), 1);
    EXPECT_EQ(buf.opaque[0], 0x5A5A5A5A5A5A5A5Aull);  // untouched
    EXPECT_TRUE(extendedHashItEnd(nullptr));
    EXPECT_LE(extendedhashGetIteratorSize(), sizeof(VTX_EXTENDED_HASH_IT_BUF_T));
    EXPECT_EQ(extendedHashItGetStr(nullptr), nullptr);
    EXPECT_EQ(extendedHashItGetHashItemIndex(nullptr), NODE_INDEX_NA);
}

// ---- deletion --------------------------------------------------------------

// Two keys of a 53-slot table whose first probe hits the same slot.
std::pair<std::string, std::string> collidingPair() {
    std::map<unsigned, std::string> seen;
    for (int i = 0;; ++i) {
        std::string k = std::string("Key").append(std::to_string(i));
        unsigned slot = ExtendedHash::crcOf(k.data(), k.size()) % 53;
        auto [where, fresh] = seen.emplace(slot, k);
        if (!fresh) return {where->second, k};
    }
}

TEST(ExtendedHashDelete, EmptiedSlotIsPassedByProbesAndReusedByInserts) {
    HashFixture f(10);
    auto [a, b] = collidingPair();
    ASSERT_EQ(f.add(a, 1), 0);
    ASSERT_EQ(f.add(b, 2), 0);
    HASH_NUM_T num;
    HASH_POS_T posA, posB;
    ASSERT_TRUE(f.find(a, &num, &posA));
    ASSERT_TRUE(f.find(b, &num, &posB));
    ASSERT_NE(posA, posB);
    ASSERT_EQ(f.erase(a, {1}), 1);
    EXPECT_EQ(f.eh()->slot(0, posA), NODE_INDEX_DEL);
    EXPECT_EQ(extendedHashGetNumOfElements(f.h), 2u);  // deleting does not count down
    // b lies behind the emptied slot and is still found.
    EXPECT_TRUE(f.find(b));
    EXPECT_FALSE(f.find(a));
    // A new key whose probe meets the emptied slot takes it: a again, here.
    HASH_POS_T freePos;
    ASSERT_FALSE(f.find(a, &num, &freePos));
    EXPECT_EQ(freePos, posA);
    VTX_ULONG_T nodesBefore = f.eh()->nodeCount();
    ASSERT_EQ(f.add(a, 3), 0);
    EXPECT_EQ(f.eh()->nodeCount(), nodesBefore + 1);  // nodes are never reused
    HASH_POS_T again;
    ASSERT_TRUE(f.find(a, &num, &again));
    EXPECT_EQ(again, posA);
    EXPECT_EQ(f.chain(a), std::vector<VTX_ULONG_T>{3});
}

TEST(ExtendedHashDelete, EmptiedSlotOfAnOlderTableIsNotReused) {
    HashFixture f(10);
    auto [a, b] = collidingPair();
    ASSERT_EQ(f.add(a, 1), 0);
    HASH_NUM_T num;
    HASH_POS_T posA;
    ASSERT_TRUE(f.find(a, &num, &posA));
    for (int i = 0; i < 60; ++i) ASSERT_EQ(f.add(nameOf(i), 100 + i), 0);
    ASSERT_GE(f.eh()->tableCount(), 2u);
    ASSERT_EQ(f.erase(a, {1}), 1);
    EXPECT_EQ(f.eh()->slot(0, posA), NODE_INDEX_DEL);
    // b's probe in table 0 meets the emptied slot, but inserts go to the
    // newest table.
    ASSERT_EQ(f.add(b, 2), 0);
    HASH_POS_T posB;
    ASSERT_TRUE(f.find(b, &num, &posB));
    EXPECT_NE(num, 0u);
    EXPECT_EQ(f.eh()->slot(0, posA), NODE_INDEX_DEL);
}

TEST(ExtendedHashDelete, ChainsStayWholeWhateverIsDeleted) {
    HashFixture f(10);
    // Head of three: the next node becomes head and keeps the tail pointer,
    // so an append still lands at the end.
    for (VTX_ULONG_T i = 1; i <= 3; ++i) ASSERT_EQ(f.add("East", i), 0);
    ASSERT_EQ(f.erase("East", {1}), 1);
    EXPECT_EQ(f.chain("East"), (std::vector<VTX_ULONG_T>{2, 3}));
    ASSERT_EQ(f.add("East", 4), 0);
    EXPECT_EQ(f.chain("East"), (std::vector<VTX_ULONG_T>{2, 3, 4}));
    // Tail: the head's tail pointer moves back.
    ASSERT_EQ(f.erase("East", {4}), 1);
    ASSERT_EQ(f.add("East", 5), 0);
    EXPECT_EQ(f.chain("East"), (std::vector<VTX_ULONG_T>{2, 3, 5}));
    // Middle.
    ASSERT_EQ(f.erase("East", {3}), 1);
    ASSERT_EQ(f.add("East", 6), 0);
    EXPECT_EQ(f.chain("East"), (std::vector<VTX_ULONG_T>{2, 5, 6}));
    // Two in a row at the end, with one iterator.
    for (VTX_ULONG_T i = 7; i <= 8; ++i) ASSERT_EQ(f.add("East", i), 0);
    ASSERT_EQ(f.erase("East", {7, 8}), 2);
    ASSERT_EQ(f.add("East", 9), 0);
    EXPECT_EQ(f.chain("East"), (std::vector<VTX_ULONG_T>{2, 5, 6, 9}));
    // Everything but the last, then everything.
    ASSERT_EQ(f.erase("East", {2, 5, 6}), 3);
    ASSERT_EQ(f.add("East", 10), 0);
    EXPECT_EQ(f.chain("East"), (std::vector<VTX_ULONG_T>{9, 10}));
    ASSERT_EQ(f.erase("East", {9, 10}), 2);
    EXPECT_FALSE(f.find("East"));
    ASSERT_EQ(f.add("East", 11), 0);
    EXPECT_EQ(f.chain("East"), std::vector<VTX_ULONG_T>{11});
}

TEST(ExtendedHashDelete, DeletedEntriesVanishFromTheWholeWalk) {
    HashFixture f(10);
    for (int i = 0; i < 50; ++i) ASSERT_EQ(f.add(nameOf(i), i), 0);
    for (int i = 0; i < 50; i += 2) ASSERT_EQ(f.erase(nameOf(i), {static_cast<VTX_ULONG_T>(i)}), 1);
    auto all = f.walkAll();
    ASSERT_EQ(all.size(), 25u);
    for (auto &[item, text] : all) {
        EXPECT_EQ(item % 2, 1u);
        EXPECT_EQ(text, nameOf(static_cast<int>(item)));
    }
    for (int i = 1; i < 50; i += 2) ASSERT_EQ(f.erase(nameOf(i), {static_cast<VTX_ULONG_T>(i)}), 1);
    EXPECT_TRUE(f.walkAll().empty());
    EXPECT_EQ(extendedHashGetNumOfElements(f.h), 50u);
}

TEST(ExtendedHashDelete, IteratorFromTheWholeWalkCannotDelete) {
    HashFixture f(10);
    ASSERT_EQ(f.add("West", 1), 0);
    ASSERT_EQ(f.add("West", 2), 0);
    VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T all = nullptr;
    ASSERT_EQ(extendedHashGetAllMembersIterator(f.h, &all), 0);
    VTX_EXTENDED_HASH_IT_BUF_T buf;
    auto it = reinterpret_cast<VTX_PEXTENDED_HASH_IT_T>(&buf);
    ASSERT_EQ(extendedHashInitItFromAllMemberIt(it, all), 0);
    EXPECT_EQ(extendedHashItGetHashItemIndex(it), 1u);
    EXPECT_EQ(extendedHashItSetDeleted(it), 1);
    extendedHashItIncrement(it);
    EXPECT_EQ(extendedHashItGetHashItemIndex(it), 2u);
    extendedHashItIncrement(it);
    EXPECT_TRUE(extendedHashItEnd(it));
    EXPECT_EQ(f.chain("West"), (std::vector<VTX_ULONG_T>{1, 2}));
}

// ---- iterators ---------------------------------------------------------------

TEST(ExtendedHashIterators, WholeWalkYieldsEachEntryOnceWithChainsTogether) {
    HashFixture f(10);
    // Interleave owners of a few names with single names.
    std::map<std::string, std::vector<VTX_ULONG_T>> expected;
    VTX_ULONG_T item = 0;
    for (int round = 0; round < 5; ++round) {
        for (const char *dup : {"Jan", "Feb", "Mar"}) {
            ASSERT_EQ(f.add(dup, item), 0);
            expected[dup].push_back(item++);
        }
        for (int i = 0; i < 40; ++i) {
            ASSERT_EQ(f.add(nameOf(round * 40 + i), item), 0);
            expected[nameOf(round * 40 + i)].push_back(item++);
        }
    }
    auto all = f.walkAll();
    ASSERT_EQ(all.size(), item);
    std::map<std::string, std::vector<VTX_ULONG_T>> seen;
    std::string previous;
    std::set<std::string> finished;
    for (auto &[it, text] : all) {
        if (text != previous) {
            EXPECT_EQ(finished.count(text), 0u) << text << " came out in two runs";
            finished.insert(previous);
            previous = text;
        }
        seen[text].push_back(it);
    }
    EXPECT_EQ(seen, expected);
}

TEST(ExtendedHashIterators, SeparateWholeWalksRunSideBySide) {
    HashFixture f(10);
    for (int i = 0; i < 20; ++i) ASSERT_EQ(f.add(nameOf(i), i), 0);
    VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T a = nullptr, b = nullptr;
    ASSERT_EQ(extendedHashAllocateAllMembersIterator(f.h, f.c, &a), 0);
    ASSERT_EQ(extendedHashAllocateAllMembersIterator(f.h, f.c, &b), 0);
    int n = 0;
    for (; !extendedHashAllMembersItEnd(a); extendedHashAllMembersItIncrement(a), ++n) {
        ASSERT_FALSE(extendedHashAllMembersItEnd(b));
        EXPECT_EQ(extendedHashAllMembersItGetHashItemIndex(a), extendedHashAllMembersItGetHashItemIndex(b));
        extendedHashAllMembersItIncrement(b);
    }
    EXPECT_EQ(n, 20);
    EXPECT_TRUE(extendedHashAllMembersItEnd(b));
    EXPECT_EQ(extendedHashAllMembersItGetStr(a), nullptr);
    EXPECT_EQ(extendedHashAllMembersItGetHashItemIndex(a), NODE_INDEX_NA);
    EXPECT_EQ(extendedHashFreeAllMembersIterator(a), 0);
    EXPECT_EQ(extendedHashFreeAllMembersIterator(b), 0);
    EXPECT_EQ(extendedHashFreeAllMembersIterator(nullptr), 0);
    // An empty hash ends at once.
    HashFixture empty(10);
    EXPECT_TRUE(empty.walkAll().empty());
}

TEST(ExtendedHashIterators, ChainIteratorSurvivesGrowth) {
    HashFixture f(10);
    ASSERT_EQ(f.add("Total", 1), 0);
    ASSERT_EQ(f.add("Total", 2), 0);
    HASH_NUM_T num;
    HASH_POS_T pos;
    ASSERT_TRUE(f.find("Total", &num, &pos));
    VTX_EXTENDED_HASH_IT_BUF_T buf;
    auto it = reinterpret_cast<VTX_PEXTENDED_HASH_IT_T>(&buf);
    ASSERT_EQ(extendedHashInitIterator(f.h, it, num, pos), 0);
    const char *firstText = extendedHashItGetStr(it);
    size_t tablesBefore = f.eh()->tableCount();
    // Many generations and node blocks later...
    for (int i = 0; i < 50000; ++i) ASSERT_EQ(f.add(nameOf(i), 100 + i), 0);
    ASSERT_GT(f.eh()->tableCount(), tablesBefore + 5);
    ASSERT_EQ(f.add("Total", 3), 0);
    EXPECT_EQ(extendedHashItGetStr(it), firstText);
    EXPECT_EQ(extendedHashItGetHashItemIndex(it), 1u);
    extendedHashItIncrement(it);
    EXPECT_EQ(extendedHashItGetHashItemIndex(it), 2u);
    extendedHashItIncrement(it);
    EXPECT_EQ(extendedHashItGetHashItemIndex(it), 3u);  // appended meanwhile
    extendedHashItIncrement(it);
    EXPECT_TRUE(extendedHashItEnd(it));
    EXPECT_EQ(extendedHashItGetStr(it), nullptr);
}

TEST(ExtendedHashIterators, WholeWalkSurvivesInsertsMadeDuringIt) {
    HashFixture f(10);
    for (int i = 0; i < 100; ++i) ASSERT_EQ(f.add(nameOf(i), i), 0);
    VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T it = nullptr;
    ASSERT_EQ(extendedHashGetAllMembersIterator(f.h, &it), 0);
    std::set<VTX_ULONG_T> seen;
    int added = 0;
    for (; !extendedHashAllMembersItEnd(it); extendedHashAllMembersItIncrement(it)) {
        ASSERT_TRUE(seen.insert(extendedHashAllMembersItGetHashItemIndex(it)).second);
        if (added < 20000) {
            for (int k = 0; k < 200; ++k, ++added) ASSERT_EQ(f.add(nameOf(1000 + added), 1000 + added), 0);
        }
    }
    // Every entry that existed at the start came out exactly once.
    for (VTX_ULONG_T i = 0; i < 100; ++i) EXPECT_EQ(seen.count(i), 1u) << i;
}

// ---- case folding --------------------------------------------------------------

TEST(ExtendedHashCase, FoldedTableSharesChainsAndKeepsSpellings) {
    HashFixture f(10, 0);
    ASSERT_EQ(f.add("äpfel", 1), 0);
    ASSERT_EQ(f.add("ÄPFEL", 2), 0);
    ASSERT_EQ(f.add("Äpfel", 3), 0);
    std::vector<std::string> spellings;
    EXPECT_EQ(f.chain("äPfEl", &spellings), (std::vector<VTX_ULONG_T>{1, 2, 3}));
    EXPECT_EQ(spellings, (std::vector<std::string>{"äpfel", "ÄPFEL", "Äpfel"}));
    // Sharp s folds to SS, so all three spellings are one key.
    ASSERT_EQ(f.add("Straße", 4), 0);
    EXPECT_EQ(f.chain("STRASSE"), std::vector<VTX_ULONG_T>{4});
    EXPECT_EQ(f.chain("strasse"), std::vector<VTX_ULONG_T>{4});
    ASSERT_EQ(f.add("STRASSE", 5), 0);
    EXPECT_EQ(f.chain("straße"), (std::vector<VTX_ULONG_T>{4, 5}));
    // Final and medial sigma are one letter in upper case.
    ASSERT_EQ(f.add("ΟΔΟΣ", 6), 0);
    EXPECT_EQ(f.chain("οδος"), std::vector<VTX_ULONG_T>{6});
    EXPECT_EQ(f.chain("οδοσ"), std::vector<VTX_ULONG_T>{6});
    EXPECT_FALSE(f.find("οδοι"));
    EXPECT_FALSE(f.find("apfel"));
}

// ASCII keys are folded without asking the locale only where the locale
// folds ASCII letter by letter.  In Turkish, i upper-cases to İ and only the
// dotless ı to I: "kilim" must be found as "KİLİM" and not as "KILIM".
TEST(ExtendedHashCase, LocaleThatFoldsAsciiItsOwnWayIsAskedForEveryKey) {
    vtxtest::TestCtx ctx;
    void *tr = nullptr;
    ASSERT_EQ(adGlobGetLocaleAndStatus("tr_TR.UTF-8", &tr), 0);
    VTX_PEXTENDED_HASH_T h = nullptr;
    ASSERT_EQ(extendedHashInitWithSize(&h, ctx.ctx(), tr, 10, 0), 0);
    const std::string kilim = "kilim", kayik = "kay\xC4\xB1k";  // kayık
    HASH_NUM_T num = NODE_INDEX_DEL;
    HASH_POS_T pos = NODE_INDEX_DEL;
    ASSERT_EQ(extendedHashInsert(h, 1, kilim.c_str(), &num, &pos), 0);
    num = pos = NODE_INDEX_DEL;
    ASSERT_EQ(extendedHashInsert(h, 2, kayik.c_str(), &num, &pos), 0);
    auto found = [&](const char *key) {
        HASH_NUM_T n = NODE_INDEX_DEL;
        HASH_POS_T p = NODE_INDEX_DEL;
        EXPECT_EQ(extendedHashGetPos(h, key, &n, &p), 0);
        return n != NODE_INDEX_NA;
    };
    EXPECT_TRUE(found("K\xC4\xB0L\xC4\xB0M"));  // KİLİM
    EXPECT_FALSE(found("KILIM"));
    EXPECT_TRUE(found("KAYIK"));
    EXPECT_FALSE(found("kayik"));
    extendedHashFree(h);
    adGlobFreeLocale(tr);
}

TEST(ExtendedHashCase, SensitiveTableKeepsSpellingsApart) {
    HashFixture f(10, 1);
    ASSERT_EQ(f.add("äpfel", 1), 0);
    ASSERT_EQ(f.add("ÄPFEL", 2), 0);
    ASSERT_EQ(f.add("Straße", 3), 0);
    EXPECT_EQ(f.chain("äpfel"), std::vector<VTX_ULONG_T>{1});
    EXPECT_EQ(f.chain("ÄPFEL"), std::vector<VTX_ULONG_T>{2});
    EXPECT_FALSE(f.find("Äpfel"));
    EXPECT_FALSE(f.find("STRASSE"));
}

TEST(ExtendedHashCase, FoldedTableUnderGrowthAndDeletion) {
    HashFixture f(10, 0);
    const int n = 3000;
    for (int i = 0; i < n; ++i) ASSERT_EQ(f.add(std::string("größe_").append(std::to_string(i)), i), 0);
    for (int i = 0; i < n; ++i) {
        ASSERT_EQ(f.chain(std::string("GRÖSSE_").append(std::to_string(i))), std::vector<VTX_ULONG_T>{static_cast<VTX_ULONG_T>(i)});
    }
    ASSERT_EQ(f.erase("GrÖßE_17", {17}), 1);
    EXPECT_FALSE(f.find("größe_17"));
    EXPECT_TRUE(f.find("größe_18"));
}

TEST(ExtendedHashCase, TextTheLocaleCannotReadIsKeyedByItsBytes) {
    HashFixture f(10, 0);
    ASSERT_EQ(f.add("\xff\xfe" "abc", 1), 0);
    ASSERT_EQ(f.add("abc", 2), 0);
    EXPECT_EQ(f.chain("\xff\xfe" "abc"), std::vector<VTX_ULONG_T>{1});
    EXPECT_EQ(f.chain("ABC"), std::vector<VTX_ULONG_T>{2});
    EXPECT_FALSE(f.find("\xff\xfd" "abc"));
}

TEST(ExtendedHashCase, LongKeysFoldOutsideTheStack) {
    HashFixture f(10, 0);
    std::string lower, upper;
    for (int i = 0; i < 1500; ++i) {
        lower += "ä";
        upper += "Ä";
    }
    lower += "x";
    upper += "X";
    ASSERT_EQ(f.add(lower, 1), 0);
    EXPECT_EQ(f.chain(upper), std::vector<VTX_ULONG_T>{1});
    EXPECT_EQ(f.ctx.stats().live, 0);  // fold buffers given back
    // The fold buffer of a long key comes from the context; refused, the
    // lookup fails with the allocator's status and finds nothing.
    f.ctx.failAt(1);
    HASH_NUM_T num = NODE_INDEX_DEL;
    HASH_POS_T pos = NODE_INDEX_DEL;
    EXPECT_EQ(extendedHashGetPos(f.h, upper.c_str(), &num, &pos), VTX_STS_NO_MEMORY);
    EXPECT_EQ(num, NODE_INDEX_NA);
    f.ctx.noFail();
    EXPECT_TRUE(f.find(upper));
}

// ---- copy ------------------------------------------------------------------------

TEST(ExtendedHashCopy, DuplicateOwnsItsTexts) {
    // The copy takes over the source's context, so that one must outlive it.
    HashFixture dst(1000, 1);
    auto src = std::make_unique<HashFixture>(10, 0, dst.c);
    for (int i = 0; i < 5000; ++i) ASSERT_EQ(src->add(nameOf(i), i), 0);
    ASSERT_EQ(src->add(nameOf(3), 77), 0);
    ASSERT_EQ(dst.add("Gone", 1), 0);
    ASSERT_EQ(extendedHashCopy(src->h, dst.h), 0);
    EXPECT_EQ(extendedHashGetNumOfElements(dst.h), 5001u);
    EXPECT_EQ(dst.eh()->tableCount(), src->eh()->tableCount());
    // Overwrite and free the source's texts: the copy does not depend on them.
    for (auto &k : src->keys) std::fill(k->begin(), k->end(), '#');
    src.reset();
    EXPECT_FALSE(dst.find("Gone"));
    for (int i = 0; i < 5000; i += 11) {
        std::vector<std::string> texts;
        std::vector<VTX_ULONG_T> items = dst.chain(nameOf(i), &texts);
        ASSERT_FALSE(items.empty()) << i;
        EXPECT_EQ(items[0], static_cast<VTX_ULONG_T>(i));
        EXPECT_EQ(texts[0], nameOf(i));
    }
    EXPECT_EQ(dst.chain(nameOf(3)), (std::vector<VTX_ULONG_T>{3, 77}));
    // Case folding came along with the tables.
    std::string lower = nameOf(5);
    for (char &c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    EXPECT_TRUE(dst.find(lower));
    // And the copy grows on its own.
    for (int i = 5000; i < 6000; ++i) ASSERT_EQ(dst.add(nameOf(i), i), 0);
    EXPECT_TRUE(dst.find(nameOf(5999)));
    EXPECT_EQ(extendedHashCopy(dst.h, dst.h), 0);
}

} // namespace
