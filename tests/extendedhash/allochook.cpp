#include "allochook.h"

#include <cstdlib>
#include <map>

namespace ehtest {
namespace {
HookStats g;
// Sizes of live allocations, to count bytes given back.
std::map<void *, size_t> &sizes() {
    static std::map<void *, size_t> m;
    return m;
}

void *countingAlloc(size_t size, int kind) {
    ++g.calls;
    if (g.failAt > 0 && (g.calls == g.failAt || (g.failAfter && g.calls > g.failAt))) return nullptr;
    void *p = vtxBlockAllocDefault(size, kind);
    if (!p) return nullptr;
    (kind == VTX_BLOCKALLOC_BLOCK ? g.liveBlocks : g.liveObjects) += 1;
    g.liveBytes += static_cast<long long>(size);
    sizes()[p] = size;
    return p;
}

void countingFree(void *p, int kind) {
    (kind == VTX_BLOCKALLOC_BLOCK ? g.liveBlocks : g.liveObjects) -= 1;
    auto it = sizes().find(p);
    if (it != sizes().end()) {
        g.liveBytes -= static_cast<long long>(it->second);
        sizes().erase(it);
    }
    vtxBlockFreeDefault(p, kind);
}
} // namespace

CountingHook::CountingHook() {
    g = HookStats{};
    sizes().clear();
    (void)vtxBlockAllocSetHook(countingAlloc, countingFree);
}
CountingHook::~CountingHook() { (void)vtxBlockAllocSetHook(nullptr, nullptr); }
HookStats &CountingHook::stats() { return g; }
void CountingHook::failAt(long n, bool andAfter) {
    g.failAt = g.calls + n;
    g.failAfter = andAfter;
}
void CountingHook::noFail() { g.failAt = -1; }
long CountingHook::live() const { return g.liveBlocks + g.liveObjects; }

} // namespace ehtest
