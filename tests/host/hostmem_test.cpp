// System service of libvtxhost: allocators, context defaults, files, clock.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <set>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "vtxhostsvc.h"
#include "vtxstatus.h"

// The failure cases ask for impossible sizes on purpose; under the address
// sanitizer such a request must come back null instead of stopping the run.
extern "C" __attribute__((visibility("default"), used)) const char *__asan_default_options() {
    return "allocator_may_return_null=1";
}

namespace {

void *const kPoison = reinterpret_cast<void *>(uintptr_t{0x1234});
constexpr size_t kImpossible = SIZE_MAX - 64;

bool allZero(const void *p, size_t n) {
    const auto *b = static_cast<const unsigned char *>(p);
    for (size_t i = 0; i < n; ++i)
        if (b[i]) return false;
    return true;
}

// ---- allocators ---------------------------------------------------------

TEST(HostMemory, AllocatorsHandOutZeroedBlocks) {
    // Dirty the heap first, so a block that is not cleared shows it.
    for (int round = 0; round < 4; ++round) {
        void *dirty = std::malloc(8192);
        std::memset(dirty, 0xA5, 8192);
        std::free(dirty);

        void *p = nullptr;
        ASSERT_EQ(VtxSdMemAllocUsingPolicy(nullptr, 0, 8192, &p, 1, __FILE__, __LINE__), 0);
        ASSERT_NE(p, nullptr);
        EXPECT_TRUE(allZero(p, 8192));
        EXPECT_EQ(VtxSdMemFree(nullptr, p), 0);

        void *q = nullptr;
        ASSERT_EQ(vtxHostAlloc(8192, &q), 0);
        EXPECT_TRUE(allZero(q, 8192));
        EXPECT_EQ(vtxHostFree(q), 0);
    }
}

TEST(HostMemory, FailedAllocationsReportNoMemoryAndClearTheOutput) {
    void *p = kPoison;
    EXPECT_EQ(VtxSdMemAllocUsingPolicy(nullptr, 0, kImpossible, &p, 1, "x", 1), VTX_STS_NO_MEMORY);
    EXPECT_EQ(p, nullptr);
    p = kPoison;
    EXPECT_EQ(vtxHostAlloc(kImpossible, &p), VTX_STS_NO_MEMORY);
    EXPECT_EQ(p, nullptr);
    p = kPoison;
    EXPECT_EQ(adMalloc(nullptr, kImpossible, &p), VTX_STS_NO_MEMORY);
    EXPECT_EQ(p, nullptr);
    // Large but representable sizes reach the C library, which refuses too.
    p = kPoison;
    EXPECT_EQ(vtxHostAlloc(size_t{1} << 62, &p), VTX_STS_NO_MEMORY);
    EXPECT_EQ(p, nullptr);
}

TEST(HostMemory, EdgeArguments) {
    // A zero-byte request still yields a block the caller can free.
    void *p = nullptr;
    ASSERT_EQ(vtxHostAlloc(0, &p), 0);
    EXPECT_NE(p, nullptr);
    vtxHostFree(p);
    EXPECT_EQ(VtxSdMemAllocUsingPolicy(nullptr, 0, 16, nullptr, 1, "x", 1), VTX_STS_NULL_ARG);
    EXPECT_EQ(adMalloc(nullptr, 16, nullptr), VTX_STS_NULL_ARG);
    EXPECT_EQ(vtxHostRealloc(nullptr, 16, nullptr), VTX_STS_NULL_ARG);
    EXPECT_EQ(VtxSdMemFree(nullptr, nullptr), 0);
    adFree(nullptr, nullptr);
}

TEST(HostMemory, ReallocKeepsContentsAndFailureKeepsTheOldBlock) {
    void *p = nullptr;
    ASSERT_EQ(vtxHostAlloc(64, &p), 0);
    std::memset(p, 'k', 64);

    void *grown = kPoison;
    ASSERT_EQ(vtxHostRealloc(p, 4096, &grown), 0);
    ASSERT_NE(grown, nullptr);
    for (int i = 0; i < 64; ++i) ASSERT_EQ(static_cast<char *>(grown)[i], 'k');

    void *failed = kPoison;
    EXPECT_EQ(VtxSdMemRealloc(nullptr, grown, kImpossible, &failed), VTX_STS_NO_MEMORY);
    EXPECT_EQ(failed, nullptr);
    // The old block is still ours and intact.
    for (int i = 0; i < 64; ++i) ASSERT_EQ(static_cast<char *>(grown)[i], 'k');

    void *shrunk = nullptr;
    ASSERT_EQ(vtxHostSdRealloc(nullptr, grown, 8, &shrunk), 0);
    EXPECT_EQ(std::memcmp(shrunk, "kkkkkkkk", 8), 0);
    vtxHostFree(shrunk);

    void *fresh = nullptr;
    ASSERT_EQ(vtxHostRealloc(nullptr, 256, &fresh), 0);
    EXPECT_TRUE(allZero(fresh, 256));
    vtxHostFree(fresh);
}

// ---- context defaults -----------------------------------------------------

VTX_STS_T customAlloc(size_t, void **pp) {
    *pp = nullptr;
    return 42;
}
VTX_STS_T customCallback(void *, VTX_STS_T, VTX_USHORT_T, VTX_CSTR_T, VTX_CSTR_T) { return 0; }

TEST(HostContext, ZeroedContextGetsTheHostDefaults) {
    vtx_netctx_t ctx;
    std::memset(&ctx, 0, sizeof ctx);
    ASSERT_EQ(vtxHostInitContext(&ctx), 0);
    EXPECT_EQ(ctx.bUseASDAlloc, 0);
    EXPECT_EQ(ctx.bUseASDFree, 0);
    EXPECT_EQ(ctx.bUseASDRealloc, 0);
    EXPECT_EQ(ctx.AllocFunc, &vtxHostAlloc);
    EXPECT_EQ(ctx.FreeFunc, &vtxHostFree);
    EXPECT_EQ(ctx.SdFreeFunc, &vtxHostSdFree);
    EXPECT_EQ(ctx.ReallocFunc, &vtxHostRealloc);
    EXPECT_EQ(ctx.SdReallocFunc, &vtxHostSdRealloc);
    void *utf8 = nullptr;
    ASSERT_EQ(adGlobGetUTF8Locale(&utf8), 0);
    EXPECT_EQ(ctx.pLocale, utf8);
    EXPECT_NE(ctx.MsgCallback, nullptr);
    EXPECT_EQ(ctx.bSendMsgNet, 1);
    EXPECT_EQ(ctx.usCallerType, VTX_CALLER_API);
    EXPECT_EQ(ctx.usApiType, VTX_ENC_UTF8);

    // The defaults work together: allocate and free through the context.
    void *p = nullptr;
    ASSERT_EQ(ctx.AllocFunc(32, &p), 0);
    EXPECT_TRUE(allZero(p, 32));
    EXPECT_EQ(ctx.FreeFunc(p), 0);
}

TEST(HostContext, SetFieldsAreKeptButAllocatorSwitchesReset) {
    vtx_netctx_t ctx;
    std::memset(&ctx, 0, sizeof ctx);
    void *de = nullptr;
    ASSERT_EQ(adGlobGetLocaleAndStatus("de_DE.ISO-8859-1", &de), 0);
    ctx.bUseASDAlloc = 1;
    ctx.bUseASDFree = 1;
    ctx.bUseASDRealloc = 1;
    ctx.AllocFunc = customAlloc;
    ctx.MsgCallback = customCallback;
    ctx.pLocale = de;
    ctx.usCallerType = VTX_CALLER_APP;
    ctx.usApiType = VTX_ENC_NATIVE;
    ASSERT_EQ(vtxHostInitContext(&ctx), 0);
    EXPECT_EQ(ctx.bUseASDAlloc, 0);
    EXPECT_EQ(ctx.bUseASDFree, 0);
    EXPECT_EQ(ctx.bUseASDRealloc, 0);
    EXPECT_EQ(ctx.AllocFunc, &customAlloc);
    EXPECT_EQ(ctx.FreeFunc, &vtxHostFree);
    EXPECT_EQ(ctx.MsgCallback, &customCallback);
    EXPECT_EQ(ctx.pLocale, de);
    EXPECT_EQ(ctx.usCallerType, VTX_CALLER_APP);
    EXPECT_EQ(ctx.usApiType, VTX_ENC_NATIVE);
    adGlobFreeLocale(de);
    EXPECT_EQ(vtxHostInitContext(nullptr), VTX_STS_NULL_ARG);
}

TEST(HostContext, DefaultCallbackPrintsErrorsOnly) {
    vtx_netctx_t ctx;
    std::memset(&ctx, 0, sizeof ctx);
    ASSERT_EQ(vtxHostInitContext(&ctx), 0);

    testing::internal::CaptureStderr();
    ctx.MsgCallback(&ctx, 1060010, VTX_MSG_ERROR, "vtxotl/Error 1060010", "Invalid member name (x)");
    ctx.MsgCallback(&ctx, 1060098, VTX_MSG_WARNING, "vtxotl/Warning 1060098", "quiet");
    std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err, "vtxotl/Error 1060010\nInvalid member name (x)\n");

    // Through the message service, with the catalogue text filled in.
    testing::internal::CaptureStderr();
    const char *name = "@bad";
    EXPECT_EQ(adNetLocalMessage(&ctx, 1060010, VTX_MSG_ERROR, name, VTX_MSGARG_STR, nullptr, 0),
              1060010);
    err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(err, "vtxotl/Error 1060010\nInvalid member name (@bad)\n");
}

// ---- files and clock ------------------------------------------------------

class HostFiles : public testing::Test {
protected:
    void SetUp() override {
        char tmpl[] = "/tmp/vtxhosttestXXXXXX";
        ASSERT_NE(mkdtemp(tmpl), nullptr);
        dir_ = tmpl;
    }
    void TearDown() override {
        for (const std::string &f : made_) unlink(f.c_str());
        rmdir(dir_.c_str());
    }
    std::string dir_;
    std::set<std::string> made_;
};

TEST_F(HostFiles, TempNamesAreUniqueAndInTheDirectory) {
    char name[512];
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(VtxSdFileTempNameGet(nullptr, dir_.c_str(), "otl", name, sizeof name), 0);
        std::string s = name;
        EXPECT_EQ(s.rfind(dir_ + "/otl", 0), 0u) << s;
        EXPECT_TRUE(made_.insert(s).second) << "name given twice: " << s;
        struct stat st;
        EXPECT_EQ(stat(name, &st), 0) << "the name is reserved by an empty file";
    }
}

TEST_F(HostFiles, TempNameFallsBackToTheTempVariable) {
    const char *old = std::getenv("TEMP");
    std::string saved = old ? old : "";
    setenv("TEMP", dir_.c_str(), 1);
    char name[512];
    VTX_STS_T sts = VtxSdFileTempNameGet(nullptr, nullptr, nullptr, name, sizeof name);
    if (old) setenv("TEMP", saved.c_str(), 1);
    else unsetenv("TEMP");
    ASSERT_EQ(sts, 0);
    made_.insert(name);
    EXPECT_EQ(std::string(name).rfind(dir_ + "/", 0), 0u) << name;
}

TEST_F(HostFiles, TempNameRefusesAShortBuffer) {
    char name[8];
    std::memset(name, 'z', sizeof name);
    EXPECT_EQ(VtxSdFileTempNameGet(nullptr, dir_.c_str(), "otl", name, sizeof name),
              VTX_STS_TEXT_TOO_LONG);
    EXPECT_EQ(name[0], '\0');
    EXPECT_EQ(VtxSdFileTempNameGet(nullptr, "/no/such/directory/here", "otl", nullptr, 0),
              VTX_STS_NULL_ARG);
    char big[512];
    EXPECT_EQ(VtxSdFileTempNameGet(nullptr, "/no/such/directory/here", "otl", big, sizeof big),
              VTX_STS_TEMP_NAME_FAILED);
}

TEST_F(HostFiles, RemoveDeletesAndReportsMissingFiles) {
    char name[512];
    ASSERT_EQ(VtxSdFileTempNameGet(nullptr, dir_.c_str(), "rm", name, sizeof name), 0);
    EXPECT_EQ(VtxSdFileRemove(nullptr, name), 0);
    EXPECT_NE(access(name, F_OK), 0);
    EXPECT_EQ(VtxSdFileRemove(nullptr, name), VTX_STS_FILE_NOT_FOUND);
    EXPECT_EQ(VtxSdFileRemove(nullptr, nullptr), VTX_STS_NULL_ARG);
}

TEST(HostClock, MonotonicClockAdvancesAndUtcIsNow) {
    double a = VtxSdClock();
    timespec pause{0, 20 * 1000 * 1000};
    nanosleep(&pause, nullptr);
    double b = VtxSdClock();
    EXPECT_GE(b - a, 0.015);
    EXPECT_LT(b - a, 5.0);

    VTX_ULONG64_T utc = VtxSdGetUtcTimestamp();
    auto now = static_cast<VTX_ULONG64_T>(std::time(nullptr));
    EXPECT_LE(utc > now ? utc - now : now - utc, 2u);
}

} // namespace
