#include "blockhook.h"

#include "blockalloc.h"

namespace idxtest {
namespace {
long g_calls = 0;
long g_failAt = -1;
bool g_failAfter = false;
long g_live = 0;

void *hookAlloc(size_t size, int kind) {
    ++g_calls;
    if (g_failAt > 0 && (g_calls == g_failAt || (g_failAfter && g_calls > g_failAt))) return nullptr;
    void *p = vtxBlockAllocDefault(size, kind);
    if (p) ++g_live;
    return p;
}
void hookFree(void *p, int kind) {
    if (p) --g_live;
    vtxBlockFreeDefault(p, kind);
}
} // namespace

BlockHook::BlockHook() {
    g_calls = 0;
    g_failAt = -1;
    g_failAfter = false;
    g_live = 0;
    (void)vtxBlockAllocSetHook(hookAlloc, hookFree);
}
BlockHook::~BlockHook() { (void)vtxBlockAllocSetHook(nullptr, nullptr); }
void BlockHook::failAt(long n, bool andAfter) {
    g_failAt = g_calls + n;
    g_failAfter = andAfter;
}
void BlockHook::noFail() { g_failAt = -1; }
long BlockHook::calls() const { return g_calls; }
long BlockHook::live() const { return g_live; }

} // namespace idxtest
