// Out of memory through the flat functions: every allocation of a run is
// refused in turn, once from the block/object hook and once from the
// context's allocator.  Each refusal must come back as status 1060358 (never
// an exception), leave the index complete and usable, and leak nothing.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "allochook.h"
#include "extendedhash.h"
#include "hashCWrapper.h"
#include "testctx.h"

namespace {

// Enough keys to grow the node array once and add a dozen generations.
constexpr int KEYS = 10100;

std::vector<std::string> makeKeys() {
    std::vector<std::string> keys;
    for (int i = 0; i < KEYS; ++i) {
        char buf[32];
        std::snprintf(buf, sizeof buf, "Prod-%05d", i);
        keys.push_back(buf);
    }
    // One key long enough that its fold buffer comes from the context.
    std::string longKey;
    for (int i = 0; i < 1100; ++i) longKey += "ü";
    keys.push_back(longKey);
    return keys;
}

bool holds(VTX_PEXTENDED_HASH_T h, const std::string &key, VTX_ULONG_T item) {
    HASH_NUM_T num = NODE_INDEX_DEL;
    HASH_POS_T pos = NODE_INDEX_DEL;
    if (extendedHashGetPos(h, key.c_str(), &num, &pos) != 0 || num == NODE_INDEX_NA) return false;
    VTX_EXTENDED_HASH_IT_BUF_T buf;
    auto it = reinterpret_cast<VTX_PEXTENDED_HASH_IT_T>(&buf);
    if (extendedHashInitIterator(h, it, num, pos) != 0) return false;
    return extendedHashItGetHashItemIndex(it) == item;
}

struct Outcome {
    int failures = 0;  // refusals that came back as statuses
};

// One run of every allocating call.  `refuse` arms the failing allocation;
// after a refusal the run checks the index and goes on without refusals.
template <class Arm, class Disarm>
void runAll(vtxtest::TestCtx &ctx, const std::vector<std::string> &keys, Arm arm, Disarm disarm,
            Outcome &out) {
    auto failed = [&](VTX_STS_T sts) {
        if (sts == 0) return false;
        EXPECT_EQ(sts, VTX_STS_NO_MEMORY);
        ++out.failures;
        disarm();
        return true;
    };
    arm();
    VTX_PEXTENDED_HASH_T h = nullptr;
    VTX_STS_T sts = extendedHashInitWithSize(&h, ctx.ctx(), ctx.ctx()->pLocale, 10, 0);
    if (failed(sts)) {
        EXPECT_EQ(h, nullptr);
        ASSERT_EQ(extendedHashInitWithSize(&h, ctx.ctx(), ctx.ctx()->pLocale, 10, 0), 0);
    }
    for (size_t i = 0; i < keys.size(); ++i) {
        HASH_NUM_T num = NODE_INDEX_DEL;
        HASH_POS_T pos = NODE_INDEX_DEL;
        sts = extendedHashInsert(h, static_cast<VTX_ULONG_T>(i), keys[i].c_str(), &num, &pos);
        if (failed(sts)) {
            // Nothing was lost and nothing half-added.
            EXPECT_EQ(extendedHashGetNumOfElements(h), static_cast<VTX_ULONG_T>(i));
            for (size_t j = 0; j < i; ++j) ASSERT_TRUE(holds(h, keys[j], static_cast<VTX_ULONG_T>(j))) << j;
            EXPECT_FALSE(holds(h, keys[i], static_cast<VTX_ULONG_T>(i)));
            num = pos = NODE_INDEX_DEL;
            ASSERT_EQ(extendedHashInsert(h, static_cast<VTX_ULONG_T>(i), keys[i].c_str(), &num, &pos), 0);
        }
    }
    // Chains through a second owner of a name.
    HASH_NUM_T num = NODE_INDEX_DEL;
    HASH_POS_T pos = NODE_INDEX_DEL;
    sts = extendedHashInsert(h, 999999, keys[5].c_str(), &num, &pos);
    if (failed(sts)) {
        num = pos = NODE_INDEX_DEL;
        ASSERT_EQ(extendedHashInsert(h, 999999, keys[5].c_str(), &num, &pos), 0);
    }

    VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T all = nullptr;
    sts = extendedHashAllocateAllMembersIterator(h, ctx.ctx(), &all);
    if (failed(sts)) {
        EXPECT_EQ(all, nullptr);
        ASSERT_EQ(extendedHashAllocateAllMembersIterator(h, ctx.ctx(), &all), 0);
    }
    size_t walked = 0;
    for (; !extendedHashAllMembersItEnd(all); extendedHashAllMembersItIncrement(all)) ++walked;
    EXPECT_EQ(walked, keys.size() + 1);
    EXPECT_EQ(extendedHashFreeAllMembersIterator(all), 0);

    VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T own = nullptr;
    sts = extendedHashGetAllMembersIterator(h, &own);
    if (failed(sts)) {
        EXPECT_EQ(own, nullptr);
        ASSERT_EQ(extendedHashGetAllMembersIterator(h, &own), 0);
    }
    EXPECT_FALSE(extendedHashAllMembersItEnd(own));

    VTX_PEXTENDED_HASH_T dup = nullptr;
    sts = extendedHashInitWithSize(&dup, ctx.ctx(), ctx.ctx()->pLocale, 10, 1);
    if (failed(sts)) {
        ASSERT_EQ(extendedHashInitWithSize(&dup, ctx.ctx(), ctx.ctx()->pLocale, 10, 1), 0);
    }
    const char *mine = "OnlyInTheCopy";
    num = pos = NODE_INDEX_DEL;
    sts = extendedHashInsert(dup, 1, mine, &num, &pos);
    if (failed(sts)) {
        num = pos = NODE_INDEX_DEL;
        ASSERT_EQ(extendedHashInsert(dup, 1, mine, &num, &pos), 0);
    }
    sts = extendedHashCopy(h, dup);
    if (failed(sts)) {
        // A refused copy leaves the destination as it was.
        EXPECT_TRUE(holds(dup, mine, 1));
        EXPECT_EQ(extendedHashGetNumOfElements(dup), 1u);
        ASSERT_EQ(extendedHashCopy(h, dup), 0);
    }
    // The checks below allocate too (fold buffers), but are not under test.
    disarm();
    EXPECT_FALSE(holds(dup, mine, 1));
    EXPECT_TRUE(holds(dup, keys[KEYS - 1], KEYS - 1));
    EXPECT_TRUE(holds(dup, keys.back(), static_cast<VTX_ULONG_T>(keys.size() - 1)));

    EXPECT_EQ(extendedHashFree(dup), 0);
    EXPECT_EQ(extendedHashFree(h), 0);
}

TEST(OutOfMemory, EveryHookAllocationRefusedInTurn) {
    const std::vector<std::string> keys = makeKeys();
    long total = 0;
    {
        ehtest::CountingHook hook;
        vtxtest::TestCtx ctx;
        Outcome clean;
        runAll(ctx, keys, [] {}, [&] { total = total ? total : hook.stats().calls; }, clean);
        EXPECT_EQ(clean.failures, 0);
        EXPECT_EQ(hook.live(), 0);
    }
    ASSERT_GT(total, 50);
    for (long n = 1; n <= total; ++n) {
        ehtest::CountingHook hook;
        vtxtest::TestCtx ctx;
        Outcome out;
        runAll(ctx, keys, [&] { hook.failAt(n); }, [&] { hook.noFail(); }, out);
        ASSERT_EQ(out.failures, 1) << "allocation " << n << " of " << total;
        ASSERT_EQ(hook.live(), 0) << "allocation " << n;
        ASSERT_EQ(ctx.stats().live, 0) << "allocation " << n;
        if (HasFatalFailure()) return;
    }
}

TEST(OutOfMemory, EveryContextAllocationRefusedInTurn) {
    const std::vector<std::string> keys = makeKeys();
    long total = 0;
    {
        vtxtest::TestCtx ctx;
        Outcome clean;
        runAll(ctx, keys, [] {}, [&] { total = total ? total : ctx.stats().calls; }, clean);
        EXPECT_EQ(clean.failures, 0);
        EXPECT_EQ(ctx.stats().live, 0);
    }
    // The long key's fold buffer and the copy's text block.
    ASSERT_GE(total, 2);
    for (long n = 1; n <= total; ++n) {
        ehtest::CountingHook hook;
        vtxtest::TestCtx ctx;
        Outcome out;
        runAll(ctx, keys, [&] { ctx.failAt(n); }, [&] { ctx.noFail(); }, out);
        // A refused fold buffer during an insert's lookup is a failed
        // insert; one during a plain lookup counts as not found, which the
        // run would notice as a missing key.
        ASSERT_EQ(out.failures, 1) << "context allocation " << n << " of " << total;
        ASSERT_EQ(hook.live(), 0);
        ASSERT_EQ(ctx.stats().live, 0);
    }
}

TEST(OutOfMemory, RefusalsAreReportedUnderTheFunctionsName) {
    ehtest::CountingHook hook;
    vtxtest::TestCtx ctx(true);
    hook.failAt(1);
    VTX_PEXTENDED_HASH_T h = nullptr;
    EXPECT_EQ(extendedHashInitWithSize(&h, ctx.ctx(), nullptr, 10, 1), VTX_STS_NO_MEMORY);
    hook.noFail();
    ASSERT_FALSE(ctx.messages().empty());
    EXPECT_EQ(ctx.messages().back().first, VTX_STS_NO_MEMORY);
    EXPECT_NE(ctx.messages().back().second.find("extendedHashInitWithSize"), std::string::npos);

    ASSERT_EQ(extendedHashInitWithSize(&h, ctx.ctx(), nullptr, 10, 1), 0);
    std::vector<std::string> keys;
    for (int i = 0; i < 27; ++i) keys.push_back(std::string("K").append(std::to_string(i)));
    for (int i = 0; i < 27; ++i) {
        HASH_NUM_T num = NODE_INDEX_DEL;
        HASH_POS_T pos = NODE_INDEX_DEL;
        ASSERT_EQ(extendedHashInsert(h, i, keys[i].c_str(), &num, &pos), 0);
    }
    // The next new key needs a table generation, and gets none.
    hook.failAt(1, true);
    HASH_NUM_T num = NODE_INDEX_DEL;
    HASH_POS_T pos = NODE_INDEX_DEL;
    EXPECT_EQ(extendedHashInsert(h, 27, "K27", &num, &pos), VTX_STS_NO_MEMORY);
    hook.noFail();
    EXPECT_NE(ctx.messages().back().second.find("createNewHash"), std::string::npos);
    EXPECT_EQ(reinterpret_cast<ExtendedHash *>(h)->tableCount(), 1u);
    // Without a context, or with messages off, the status is bare.
    ctx.ctx()->bSendMsgNet = 0;
    size_t before = ctx.messages().size();
    hook.failAt(1, true);
    num = pos = NODE_INDEX_DEL;
    EXPECT_EQ(extendedHashInsert(h, 27, "K27", &num, &pos), VTX_STS_NO_MEMORY);
    hook.noFail();
    EXPECT_EQ(ctx.messages().size(), before);
    EXPECT_EQ(extendedHashFree(h), 0);
    EXPECT_EQ(hook.live(), 0);
}

} // namespace
