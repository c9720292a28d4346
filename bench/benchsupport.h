// What the benchmarks share: a caller context on plain malloc, and a
// reporter that prints the ratio of each measured run to its baseline, run
// in the same process, so that a noisy machine still gives comparable
// figures.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <malloc.h>

#include "blockalloc.h"
#include "vtxotl.h"

namespace vtxbench {

inline VTX_STS_T plainAlloc(size_t size, void **pp) {
    *pp = std::calloc(1, size ? size : 1);
    return *pp ? 0 : VTX_STS_NO_MEMORY;
}
inline VTX_STS_T plainFree(void *p) {
    std::free(p);
    return 0;
}

// A context with plain allocators, messages off, a recent client.
inline vtx_netctx_t makeContext(VTX_ALLOCFUNC_T alloc = plainAlloc) {
    vtx_netctx_t c{};
    (void)vtxHostInitContext(&c);  // a zeroed context always initialises
    c.AllocFunc = alloc;
    c.FreeFunc = plainFree;
    c.bSendMsgNet = 0;
    c.lClientVersion = c.lServerVersion = 0x00B20000;
    c.lClientDllVersion = 0x00B20000;
    c.estimatedHashSize = 1000;
    return c;
}

// Heap in use: malloc's blocks, those it mapped by themselves, and the
// chunks the container layer maps for its data blocks.
inline long long heapInUse() {
    struct mallinfo2 mi = mallinfo2();
    return static_cast<long long>(mi.uordblks) + static_cast<long long>(mi.hblkhd) +
           static_cast<long long>(vtxBlockAllocMappedBytes());
}

// Prints "ratio WHAT: ours / baseline" for each pair of benchmark names
// that both ran.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    struct Pair {
        std::string what, ours, baseline;
    };
    explicit RatioReporter(std::vector<Pair> pairs) : pairs_(std::move(pairs)) {}
    void ReportRuns(const std::vector<Run> &runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const auto &r : runs) times_[r.benchmark_name()] = r.GetAdjustedRealTime();
    }
    void Finalize() override {
        ConsoleReporter::Finalize();
        for (const auto &p : pairs_)
            if (times_.count(p.ours) && times_.count(p.baseline) && times_[p.baseline] > 0)
                std::printf("ratio %s: %.2f\n", p.what.c_str(), times_[p.ours] / times_[p.baseline]);
    }

private:
    std::vector<Pair> pairs_;
    std::map<std::string, double> times_;
};

// Takes "--sizes=a,b,c" out of the arguments (the rest are Google
// Benchmark's); sizes keeps its defaults when the flag is absent.
template <class T>
std::vector<char *> takeSizes(int argc, char **argv, std::vector<T> &sizes) {
    std::vector<char *> args;
    for (int i = 0; i < argc; ++i) {
        if (std::strncmp(argv[i], "--sizes=", 8) == 0) {
            sizes.clear();
            for (const char *p = argv[i] + 8; *p;) {
                char *end = nullptr;
                sizes.push_back(static_cast<T>(std::strtoull(p, &end, 10)));
                if (end == p) break;
                p = *end == ',' ? end + 1 : end;
            }
        } else {
            args.push_back(argv[i]);
        }
    }
    return args;
}

inline int runWithRatios(int argc, char **argv, std::vector<RatioReporter::Pair> pairs) {
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter(std::move(pairs));
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}

} // namespace vtxbench
