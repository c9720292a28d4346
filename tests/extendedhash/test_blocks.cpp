// Block containers: FastHugeArray, StringBuffer and the flat stores built on
// them (member pointer arrays, member-number maps, item factories).
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "FastHugeArray.h"
#include "StringBuffer.h"
#include "allochook.h"
#include "extendedhash.h"
#include "mbrId2pItemMapWrapper.h"
#include "otlapil.h"
#include "otlHashItemsFactoryWrapper.h"
#include "otlMbrFastHugeArrayCWrapper.h"
#include "stringBufferCWrapper.h"
#include "testctx.h"

namespace {

using ehtest::CountingHook;

// Data blocks come eight at a time from 2 MiB chunks, aligned so that the
// kernel can back them by huge pages; a chunk is given back with its last
// block, and other sizes come from malloc.
TEST(BlockAllocator, BlocksShareAlignedChunksThatGoBackWhenEmpty) {
    const size_t mappedBefore = vtxBlockAllocMappedBytes();
    constexpr size_t kChunk = size_t(2) << 20;
    std::vector<char *> blocks;
    for (int i = 0; i < 20; ++i) {
        auto *b = static_cast<char *>(vtxBlockAllocDefault(vtxeh::BLOCK_BYTES, VTX_BLOCKALLOC_BLOCK));
        ASSERT_NE(b, nullptr);
        ASSERT_EQ((reinterpret_cast<uintptr_t>(b) & (kChunk - 1)) % vtxeh::BLOCK_BYTES, 0u);
        std::memset(b, i, vtxeh::BLOCK_BYTES);  // all of it is ours
        blocks.push_back(b);
    }
    // Twenty blocks fill two chunks and part of a third, a fourth at most
    // when an earlier test left a chunk partly used.
    const size_t grown = vtxBlockAllocMappedBytes() - mappedBefore;
    EXPECT_GE(grown, 2 * kChunk);
    EXPECT_LE(grown, 4 * kChunk);
    for (int i = 0; i < 20; ++i) EXPECT_EQ(blocks[size_t(i)][vtxeh::BLOCK_BYTES - 1], static_cast<char>(i));
    // A block given back is handed out again before any new chunk is made.
    const size_t full = vtxBlockAllocMappedBytes();
    vtxBlockFreeDefault(blocks[3], VTX_BLOCKALLOC_BLOCK);
    blocks[3] = static_cast<char *>(vtxBlockAllocDefault(vtxeh::BLOCK_BYTES, VTX_BLOCKALLOC_BLOCK));
    ASSERT_NE(blocks[3], nullptr);
    EXPECT_EQ(vtxBlockAllocMappedBytes(), full);
    // Other sizes are not carved from chunks.
    void *odd = vtxBlockAllocDefault(vtxeh::BLOCK_BYTES / 2, VTX_BLOCKALLOC_BLOCK);
    ASSERT_NE(odd, nullptr);
    EXPECT_EQ(vtxBlockAllocMappedBytes(), full);
    vtxBlockFreeDefault(odd, VTX_BLOCKALLOC_BLOCK);
    for (char *b : blocks) vtxBlockFreeDefault(b, VTX_BLOCKALLOC_BLOCK);
    EXPECT_EQ(vtxBlockAllocMappedBytes(), mappedBefore);
}

TEST(FastHugeArray, FirstBlockEndsAtMask) {
    CountingHook hook;
    FastHugeArray<unsigned int> a;
    ASSERT_TRUE(a.allocate(3 * 65536, 0));
    const size_t mask = FastHugeArray<unsigned int>::MASK;
    EXPECT_EQ(&a[mask], a.blockAddress(0) + mask);
    EXPECT_EQ(&a[mask + 1], a.blockAddress(mask + 1));
    EXPECT_NE(a.blockAddress(0), a.blockAddress(mask + 1));
    for (unsigned long i = 0; i < a.getSize(); i += 4099) a[i] = static_cast<unsigned int>(i * 7);
    for (unsigned long i = 0; i < a.getSize(); i += 4099) ASSERT_EQ(a[i], i * 7);
    EXPECT_EQ(hook.stats().liveBlocks, 3);
}

TEST(FastHugeArray, GrowthAddsBlocksAndMovesNothing) {
    CountingHook hook;
    FastHugeArray<VTX_OTL_HASH_NODE_T> nodes;
    ASSERT_TRUE(nodes.allocate(10000, 0));
    EXPECT_EQ(nodes.blockCount(), 2u);
    std::vector<VTX_OTL_HASH_NODE_T *> where;
    for (unsigned long i = 0; i < 10000; ++i) {
        nodes[i].hashItemIndex = static_cast<VTX_ULONG_T>(i);
        where.push_back(&nodes[i]);
    }
    ASSERT_TRUE(nodes.reallocate(110000, 0));
    EXPECT_EQ(nodes.blockCount(), 14u);
    EXPECT_EQ(nodes.getSize(), 110000u);
    for (unsigned long i = 0; i < 10000; ++i) {
        ASSERT_EQ(&nodes[i], where[i]);
        ASSERT_EQ(nodes[i].hashItemIndex, i);
    }
    // New elements come zeroed.
    EXPECT_EQ(nodes[109999].hashItemIndex, 0u);
    EXPECT_EQ(nodes[109999].str, nullptr);
    nodes.deallocate();
    EXPECT_EQ(hook.live(), 0);
}

TEST(FastHugeArray, AllocateAtPresentSizeRefillsInPlace) {
    FastHugeArray<unsigned char> a;
    ASSERT_TRUE(a.allocate(300000, 0));
    const unsigned char *b0 = a.blockAddress(0), *b1 = a.blockAddress(299999);
    a[5] = 9;
    a[299999] = 9;
    ASSERT_TRUE(a.allocate(300000, 0xAB));
    EXPECT_EQ(a.blockAddress(0), b0);
    EXPECT_EQ(a.blockAddress(299999), b1);
    EXPECT_EQ(a[5], 0xAB);
    EXPECT_EQ(a[299999], 0xAB);
    // A different size starts over.
    ASSERT_TRUE(a.allocate(10, 1));
    EXPECT_EQ(a.getSize(), 10u);
    EXPECT_EQ(a.blockCount(), 1u);
    EXPECT_EQ(a[9], 1);
}

TEST(FastHugeArrayDeathTest, ShrinkingTheBlockCountIsFatal) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(
        {
            FastHugeArray<unsigned int> a;
            (void)a.allocate(200000, 0);
            (void)a.reallocate(10, 0);
        },
        "newNumOfBlocks >= numOfBlocks");
}

TEST(FastHugeArray, RefusedGrowthKeepsEverything) {
    CountingHook hook;
    FastHugeArray<unsigned int> a;
    ASSERT_TRUE(a.allocate(65536 * 2, 0));
    a[0] = 11;
    a[65536 * 2 - 1] = 22;
    const unsigned int *first = &a[0];
    long before = hook.live();
    // Refuse the third new block of five.
    hook.failAt(3);
    EXPECT_FALSE(a.reallocate(65536 * 7, 0));
    hook.noFail();
    EXPECT_EQ(a.getSize(), 65536u * 2);
    EXPECT_EQ(a.blockCount(), 2u);
    EXPECT_EQ(&a[0], first);
    EXPECT_EQ(a[65536 * 2 - 1], 22u);
    EXPECT_EQ(hook.live(), before);
    // And the array still grows afterwards.
    ASSERT_TRUE(a.reallocate(65536 * 7, 0));
    EXPECT_EQ(a[0], 11u);
}

TEST(FastHugeArray, RefusedAllocateLeavesItEmpty) {
    CountingHook hook;
    FastHugeArray<unsigned int> a;
    hook.failAt(2);
    EXPECT_FALSE(a.allocate(65536 * 4, 0));
    hook.noFail();
    EXPECT_EQ(a.getSize(), 0u);
    EXPECT_EQ(a.blockCount(), 0u);
    EXPECT_EQ(hook.stats().liveBlocks, 0);
}

TEST(FastHugeArray, LazyArrayReadsAllOnesAndMaterialisesOnlyTouchedBlocks) {
    CountingHook hook;
    FastHugeArray<unsigned int> t;
    ASSERT_TRUE(t.allocateLazyAllOnes(17500013));
    EXPECT_EQ(t.blockCount(), 268u);
    EXPECT_EQ(t.materializedBlockCount(), 0u);
    EXPECT_EQ(hook.stats().liveBlocks, 0);
    EXPECT_EQ(t[0], NODE_INDEX_NA);
    EXPECT_EQ(t[17500012], NODE_INDEX_NA);
    EXPECT_FALSE(t.isMaterialized(9000000));
    ASSERT_TRUE(t.materialize(9000000));
    t[9000000] = 5;
    EXPECT_EQ(t.materializedBlockCount(), 1u);
    EXPECT_EQ(t[9000001], NODE_INDEX_NA);  // the rest of the block keeps the pattern
    EXPECT_EQ(t[8000000], NODE_INDEX_NA);
    // A refused block leaves the element readable as before.
    hook.failAt(1);
    EXPECT_FALSE(t.materialize(100));
    hook.noFail();
    EXPECT_EQ(t[100], NODE_INDEX_NA);
    // A copy shares untouched blocks and duplicates the touched one.
    FastHugeArray<unsigned int> c;
    ASSERT_TRUE(c.copy(t));
    EXPECT_EQ(c.materializedBlockCount(), 1u);
    EXPECT_EQ(c[9000000], 5u);
    ASSERT_TRUE(c.materialize(9000000));
    c[9000000] = 6;
    EXPECT_EQ(t[9000000], 5u);
    t.deallocate();
    c.deallocate();
    EXPECT_EQ(hook.live(), 0);
}

TEST(StringBuffer, StringsFillBlocksWithoutStraddling) {
    vtxtest::TestCtx ctx;
    {
        StringBuffer sb(ctx.ctx());
        std::string a(1000, 'a');
        char *first = sb.append(a.c_str(), a.size());
        ASSERT_NE(first, nullptr);
        EXPECT_EQ(sb.getOffset(), 1001u);
        // Exactly the space left, NUL included, still fits.
        std::string fill(StringBuffer::BLOCK_BYTES - 1001 - 1, 'f');
        char *second = sb.append(fill.c_str(), fill.size());
        ASSERT_NE(second, nullptr);
        EXPECT_EQ(second, first + 1001);
        EXPECT_EQ(sb.blockCount(), 1u);
        EXPECT_EQ(sb.getOffset(), StringBuffer::BLOCK_BYTES);
        // One byte more opens a new block.
        char *third = sb.append("x", 1);
        EXPECT_EQ(sb.blockCount(), 2u);
        EXPECT_EQ(std::string(third), "x");
        EXPECT_EQ(sb.getStringStarting(StringBuffer::BLOCK_BYTES), third);
        EXPECT_EQ(sb.getStringStarting(1001), second);
        // A string that does not fit the rest of a block leaves that rest
        // unused, and the global offset counts it.
        std::string big(StringBuffer::BLOCK_BYTES - 2, 'b');
        char *fourth = sb.append(big.c_str(), big.size());
        EXPECT_EQ(sb.blockCount(), 3u);
        EXPECT_EQ(sb.getStringStarting(2 * StringBuffer::BLOCK_BYTES), fourth);
        EXPECT_EQ(std::string(first), a);  // nothing moved
        EXPECT_EQ(ctx.stats().live, 3);
    }
    EXPECT_EQ(ctx.stats().live, 0);
}

TEST(StringBuffer, RefusedBlockFailsTheAppendOnly) {
    vtxtest::TestCtx ctx;
    VTX_PSTRING_BUFFER_T sb = nullptr;
    ASSERT_EQ(stringBufferInit(&sb, ctx.ctx()), 0);
    ctx.failAt(1);
    EXPECT_EQ(stringBufferAppend(sb, "abc", 3), nullptr);
    char *s = stringBufferAppend(sb, "abc", 3);
    ASSERT_NE(s, nullptr);
    EXPECT_STREQ(s, "abc");
    std::string near(StringBuffer::BLOCK_BYTES - 4, 'n');
    ctx.failAt(1);
    EXPECT_EQ(stringBufferAppend(sb, near.c_str(), near.size()), nullptr);
    EXPECT_STREQ(stringBufferAppend(sb, "def", 3), "def");  // the first block still serves
    EXPECT_EQ(s + 4, stringBufferAppend(sb, "g", 1) - 4);
    EXPECT_EQ(stringBufferAppend(nullptr, "a", 1), nullptr);
    EXPECT_EQ(stringBufferFree(sb), 0);
    EXPECT_EQ(stringBufferFree(nullptr), 0);
    EXPECT_EQ(ctx.stats().live, 0);
}

TEST(MbrFastHugeArray, GrowsToTheIndexAndResetsToNull) {
    CountingHook hook;
    vtxtest::TestCtx ctx;
    VTX_POTLMBR_FAST_HUGE_ARRAY_T a = nullptr;
    ASSERT_EQ(otlMbrFastHugeArrayInit(ctx.ctx(), &a), 0);
    _vtx_otlmbr_t m1{}, m2{};
    EXPECT_EQ(otlMbrFastHugeArrayGetItemAt(a, 0), nullptr);
    ASSERT_EQ(otlMbrFastHugeArraySetItemAt(ctx.ctx(), a, 5, &m1), 0);
    EXPECT_EQ(otlMbrFastHugeArrayGetSize(a), 6u);
    ASSERT_EQ(otlMbrFastHugeArraySetItemAt(ctx.ctx(), a, 40000, &m2), 0);
    EXPECT_EQ(otlMbrFastHugeArrayGetSize(a), 40001u);
    EXPECT_EQ(otlMbrFastHugeArrayGetItemAt(a, 5), &m1);
    EXPECT_EQ(otlMbrFastHugeArrayGetItemAt(a, 39999), nullptr);
    EXPECT_EQ(otlMbrFastHugeArrayGetItemAt(a, 40000), &m2);
    EXPECT_EQ(otlMbrFastHugeArrayGetItemAt(a, 40001), nullptr);
    // A refused growth keeps what is there.
    hook.failAt(1);
    EXPECT_EQ(otlMbrFastHugeArraySetItemAt(ctx.ctx(), a, 100000, &m1), VTX_STS_NO_MEMORY);
    hook.noFail();
    EXPECT_EQ(otlMbrFastHugeArrayGetSize(a), 40001u);
    EXPECT_EQ(otlMbrFastHugeArrayGetItemAt(a, 40000), &m2);
    ASSERT_EQ(otlMbrFastHugeArrayReset(a), 0);
    EXPECT_EQ(otlMbrFastHugeArrayGetSize(a), 40001u);
    EXPECT_EQ(otlMbrFastHugeArrayGetItemAt(a, 5), nullptr);
    EXPECT_EQ(otlMbrFastHugeArrayGetItemAt(a, 40000), nullptr);
    EXPECT_EQ(otlMbrFastHugeArrayFree(a), 0);
    EXPECT_EQ(otlMbrFastHugeArrayFree(nullptr), 0);
    EXPECT_EQ(hook.live(), 0);
}

TEST(MemNumMap, EntriesByDimensionAndMemberNumber) {
    CountingHook hook;
    vtxtest::TestCtx ctx;
    VTX_PMEMNUM_2_PITEM_MAP_T *map = nullptr;
    ASSERT_EQ(memNum2pItemMapInit(ctx.ctx(), &map), 0);
    int a = 0, b = 0;
    EXPECT_EQ(memNum2pItemMapGetAt(map, 1, 3), nullptr);  // no array yet
    ASSERT_EQ(memNum2pItemMapSetAt(ctx.ctx(), map, 3, 7, &a), 0);
    ASSERT_EQ(memNum2pItemMapSetAt(ctx.ctx(), map, 255, 70000, &b), 0);
    EXPECT_EQ(memNum2pItemMapGetAt(map, 7, 3), &a);
    EXPECT_EQ(memNum2pItemMapGetAt(map, 7, 4), nullptr);
    EXPECT_EQ(memNum2pItemMapGetAt(map, 70000, 255), &b);
    EXPECT_EQ(memNum2pItemMapGetAt(map, 8, 3), nullptr);
    EXPECT_EQ(memNum2pItemMapSetAt(ctx.ctx(), map, 256, 1, &a), VTX_STS_NO_DIM_ID);
    // Resetting beyond the array changes nothing; within it, clears.
    EXPECT_EQ(memNum2pItemMapResetAt(map, 3, 1000), 0);
    EXPECT_EQ(memNum2pItemMapGetAt(map, 7, 3), &a);
    EXPECT_EQ(memNum2pItemMapResetAt(map, 3, 7), 0);
    EXPECT_EQ(memNum2pItemMapGetAt(map, 7, 3), nullptr);
    EXPECT_EQ(memNum2pItemMapGetAt(nullptr, 7, 3), nullptr);
    EXPECT_EQ(memNum2pItemMapFree(ctx.ctx(), map), 0);
    EXPECT_EQ(memNum2pItemMapFree(ctx.ctx(), nullptr), 0);
    EXPECT_EQ(hook.live(), 0);
    EXPECT_EQ(ctx.stats().live, 0);
}

TEST(MemNumMap, OutlineMapKeysMembersByDimensionId) {
    CountingHook hook;
    vtxtest::TestCtx ctx;
    _vtx_otl_t outline{};
    VTX_ULONG_T dimIds[256] = {};
    dimIds[1] = 5;  // dimension number 2 has the stable id 5
    outline.dimIds = dimIds;
    EXPECT_EQ(memNum2pItemMapGetPItem(&outline, 7, 5), nullptr);  // no map yet
    ASSERT_EQ(memNum2pItemMapInit(ctx.ctx(), &outline.ppMemNum2pItemMap), 0);
    _vtx_otlmbr_t member{};
    member.ulDimno = 2;
    member.mbrId = 7;
    ASSERT_EQ(memNum2pItemMapAddItem(ctx.ctx(), &outline, &member), 0);
    EXPECT_EQ(memNum2pItemMapGetPItem(&outline, 7, 5), &member);
    EXPECT_EQ(memNum2pItemMapGetPItem(&outline, 7, 2), nullptr);
    EXPECT_EQ(memNum2pItemMapResetItem(ctx.ctx(), &outline, 5, 9999), 0);
    EXPECT_EQ(memNum2pItemMapGetPItem(&outline, 7, 5), &member);
    EXPECT_EQ(memNum2pItemMapResetItem(ctx.ctx(), &outline, 5, 7), 0);
    EXPECT_EQ(memNum2pItemMapGetPItem(&outline, 7, 5), nullptr);
    // A refused array leaves the map as it was.
    member.mbrId = 100000;
    hook.failAt(1, true);
    EXPECT_EQ(memNum2pItemMapAddItem(ctx.ctx(), &outline, &member), VTX_STS_NO_MEMORY);
    hook.noFail();
    EXPECT_EQ(memNum2pItemMapGetPItem(&outline, 8, 5), nullptr);
    EXPECT_EQ(memNum2pItemMapFree(ctx.ctx(), outline.ppMemNum2pItemMap), 0);
    EXPECT_EQ(hook.live(), 0);
    EXPECT_EQ(ctx.stats().live, 0);
}

TEST(ItemFactory, GrowsByStepsAndKeepsItemsInPlace) {
    CountingHook hook;
    vtxtest::TestCtx ctx;
    VTX_POTLHASHITEMS_FACTORY f = nullptr;
    ASSERT_EQ(otlHashItemsFactoryInit(ctx.ctx(), &f), 0);
    VTX_ULONG_T next = 0;
    VTX_POTLHASHITEM_T_EXT firstItem = nullptr;
    for (VTX_INT32_T i = 0; i < 120000; ++i) {
        ASSERT_EQ(otlHashItemsFactoryAddItem(ctx.ctx(), f, &next, i, static_cast<VTX_USHORT_T>(i % 7),
                                             static_cast<VTX_USHORT_T>(i % 4)),
                  0);
        if (i == 0) firstItem = otlHashItemsFactoryGetOtlHashItem(f, 0);
    }
    EXPECT_EQ(next, 120000u);
    EXPECT_EQ(otlHashItemsFactoryGetOtlHashItem(f, 0), firstItem);
    VTX_POTLHASHITEM_T_EXT it = otlHashItemsFactoryGetOtlHashItem(f, 110001);
    EXPECT_EQ(it->mbrId, 110001);
    EXPECT_EQ(it->dimId, 110001 % 7);
    EXPECT_EQ(it->usAliasTable, 110001 % 4);
    // Alias table 2 removed: tables 3 move down to 2, 0..2 stay (startFrom 2
    // keeps table 2, which the caller has already emptied).
    ASSERT_EQ(otlHashReduceAliasTableNumber(f, next, 2), 0);
    EXPECT_EQ(otlHashItemsFactoryGetOtlHashItem(f, 3)->usAliasTable, 2);
    EXPECT_EQ(otlHashItemsFactoryGetOtlHashItem(f, 2)->usAliasTable, 2);
    EXPECT_EQ(otlHashItemsFactoryGetOtlHashItem(f, 1)->usAliasTable, 1);
    // Only items below the next free index are touched.
    ASSERT_EQ(otlHashReduceAliasTableNumber(f, 4, 0), 0);
    EXPECT_EQ(otlHashItemsFactoryGetOtlHashItem(f, 3)->usAliasTable, 1);
    EXPECT_EQ(otlHashItemsFactoryGetOtlHashItem(f, 7)->usAliasTable, 2);
    EXPECT_EQ(otlHashReduceAliasTableNumber(nullptr, 0, 0), 0);
    // A refused step keeps the items and the index.
    while (next < 210000) {
        ASSERT_EQ(otlHashItemsFactoryAddItem(ctx.ctx(), f, &next, 1, 1, 0), 0);
    }
    hook.failAt(1);
    EXPECT_EQ(otlHashItemsFactoryAddItem(ctx.ctx(), f, &next, 1, 1, 0), VTX_STS_NO_MEMORY);
    hook.noFail();
    EXPECT_EQ(next, 210000u);
    EXPECT_EQ(otlHashItemsFactoryGetOtlHashItem(f, 110001)->mbrId, 110001);
    EXPECT_EQ(otlHashItemsFactoryAddItem(ctx.ctx(), f, &next, 1, 1, 0), 0);
    EXPECT_EQ(otlHashItemsFactoryFree(f), 0);
    EXPECT_EQ(otlHashItemsFactoryFree(nullptr), 0);
    EXPECT_EQ(hook.live(), 0);
}

TEST(ItemFactory, DuplicateNameRecordsCountPerTable) {
    CountingHook hook;
    vtxtest::TestCtx ctx;
    VTX_DUPNAME_FACTORY f = nullptr;
    ASSERT_EQ(otlHashItemsDupFactoryInit(ctx.ctx(), &f), 0);
    VTX_ULONG_T next = 0;
    char name[] = "Sales";
    ASSERT_EQ(otlHashItemsDupFactoryAddItem(ctx.ctx(), f, &next, name, 3), 0);
    EXPECT_EQ(next, 1u);
    VTX_POTLDUPNAME_T r = otlHashItemsDupFactoryGetOtlDupName(f, 0);
    EXPECT_EQ(r->pszString, name);
    EXPECT_EQ(r->usTotalCount, 1u);
    EXPECT_EQ(r->usCount[3], 1u);
    EXPECT_EQ(r->usCount[0], 0u);
    // An owned text is never replaced by a later caller's pointer.
    VTX_POTLDUPNAME_T r1 = otlHashItemsDupFactoryGetOtlDupName(f, 1);
    char owned[] = "Owned";
    char other[] = "Other";
    r1->bNew = 1;
    r1->pszString = owned;
    ASSERT_EQ(otlHashItemsDupFactoryAddItem(ctx.ctx(), f, &next, other, 58), 0);
    EXPECT_EQ(r1->pszString, owned);
    EXPECT_EQ(r1->usCount[58], 1u);
    for (int i = 0; i < 20000; ++i) ASSERT_EQ(otlHashItemsDupFactoryAddItem(ctx.ctx(), f, &next, name, 0), 0);
    EXPECT_EQ(otlHashItemsDupFactoryGetOtlDupName(f, 0), r);  // nothing moved
    EXPECT_EQ(otlHashItemsDupFactoryGetOtlDupName(f, 15000)->usCount[0], 1u);
    EXPECT_EQ(otlHashItemsDupFactoryFree(f), 0);
    EXPECT_EQ(hook.live(), 0);
}

} // namespace
