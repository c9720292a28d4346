// Watches the memory of the container layer under the index: counts what is
// live and can refuse the Nth request, so that a test can make any growth of
// a hash, factory or map fail.
#pragma once

namespace idxtest {

class BlockHook {
public:
    BlockHook();   // installs the hook; one at a time
    ~BlockHook();  // puts the default back
    void failAt(long n, bool andAfter = false);  // refuse the nth request from now
    void noFail();
    long calls() const;  // requests since install
    long live() const;   // blocks and objects not given back
};

} // namespace idxtest
