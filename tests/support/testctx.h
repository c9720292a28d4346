// Test support: a caller context with a counting allocator that can be told
// to fail its Nth allocation, and that knows how many blocks are still live.
#pragma once
#include <cstddef>
#include <string>
#include <vector>
#include "vtxotl.h"

namespace vtxtest {

struct AllocStats {
    long calls = 0;       // allocations attempted through the context
    long failAt = -1;     // the 1-based call that fails; -1 never
    long live = 0;        // blocks handed out and not yet freed
    bool failOnce = true; // after failAt, allocations succeed again
};

// A context whose AllocFunc/FreeFunc/ReallocFunc count into stats().
// Messages are silenced unless withMessages is set.
class TestCtx {
public:
    explicit TestCtx(bool withMessages = false);
    vtx_netctx_t *ctx() { return &ctx_; }
    AllocStats &stats();
    void failAt(long n, bool once = true);   // fail the nth allocation from now
    void noFail();
    // The messages sent through adNetLocalMessage since construction.
    std::vector<std::pair<VTX_STS_T, std::string>> &messages();
private:
    vtx_netctx_t ctx_{};
};

} // namespace vtxtest
