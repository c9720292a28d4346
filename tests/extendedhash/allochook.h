// A replacement for the container layer's allocation hook that counts what
// is live and can refuse the Nth allocation, so that out-of-memory paths of
// blocks and objects can be walked one allocation at a time.
#pragma once
#include "blockalloc.h"

namespace ehtest {

struct HookStats {
    long calls = 0;     // allocations asked for since install
    long failAt = -1;   // 1-based call to refuse; -1 none
    bool failAfter = false;  // refuse every call from failAt on
    long liveBlocks = 0;
    long liveObjects = 0;
    long long liveBytes = 0;
};

// Installs the counting hook for the life of the object.
class CountingHook {
public:
    CountingHook();
    ~CountingHook();
    HookStats &stats();
    void failAt(long n, bool andAfter = false);  // refuse the nth allocation from now
    void noFail();
    long live() const;
};

} // namespace ehtest
