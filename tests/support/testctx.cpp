#include "testctx.h"
#include <cstdlib>
#include <cstring>

namespace vtxtest {
namespace {
// One set of counters per process: the allocator functions of the context
// carry no user pointer.  Tests run one at a time within a process.
AllocStats g_stats;
std::vector<std::pair<VTX_STS_T, std::string>> g_messages;

bool shouldFail() {
    ++g_stats.calls;
    if (g_stats.failAt > 0 && g_stats.calls == g_stats.failAt) {
        if (!g_stats.failOnce) g_stats.failAt = g_stats.calls + 1;
        return true;
    }
    return false;
}

VTX_STS_T testAlloc(size_t size, void **pp) {
    *pp = nullptr;
    if (shouldFail()) return VTX_STS_NO_MEMORY;
    *pp = std::calloc(1, size ? size : 1);
    if (!*pp) return VTX_STS_NO_MEMORY;
    ++g_stats.live;
    return 0;
}
VTX_STS_T testFree(void *p) {
    if (p) { --g_stats.live; std::free(p); }
    return 0;
}
VTX_STS_T testRealloc(void *old, size_t size, void **pp) {
    *pp = nullptr;
    if (shouldFail()) return VTX_STS_NO_MEMORY;
    void *n = std::realloc(old, size ? size : 1);
    if (!n) return VTX_STS_NO_MEMORY;
    if (!old) ++g_stats.live;
    *pp = n;
    return 0;
}
VTX_STS_T recordMessage(void *, VTX_STS_T num, VTX_USHORT_T, VTX_CSTR_T, VTX_CSTR_T msg) {
    g_messages.emplace_back(num, msg ? msg : "");
    return 0;
}
} // namespace

TestCtx::TestCtx(bool withMessages) {
    g_stats = AllocStats{};
    g_messages.clear();
    std::memset(&ctx_, 0, sizeof ctx_);
    (void)vtxHostInitContext(&ctx_);  // locale and defaults; allocators replaced below
    ctx_.bUseASDAlloc = 0;
    ctx_.bUseASDFree = 0;
    ctx_.bUseASDRealloc = 0;
    ctx_.AllocFunc = testAlloc;
    ctx_.FreeFunc = testFree;
    ctx_.ReallocFunc = testRealloc;
    ctx_.bSendMsgNet = withMessages ? 1 : 0;
    ctx_.MsgCallback = recordMessage;
    ctx_.lClientVersion = 0x00B20000;
    ctx_.lServerVersion = 0x00B20000;
    ctx_.lClientDllVersion = 0x00B20000;
    ctx_.estimatedHashSize = 1000;
}
AllocStats &TestCtx::stats() { return g_stats; }
void TestCtx::failAt(long n, bool once) {
    g_stats.failAt = g_stats.calls + n;
    g_stats.failOnce = once;
}
void TestCtx::noFail() { g_stats.failAt = -1; }
std::vector<std::pair<VTX_STS_T, std::string>> &TestCtx::messages() { return g_messages; }

} // namespace vtxtest
