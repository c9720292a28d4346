// Creating and closing an empty outline, against calloc/free of the very
// blocks the creation allocates (through the context and through the
// container layer's block hook), recorded in the same run.
#include <cstdlib>
#include <vector>

#include "benchsupport.h"
#include "blockalloc.h"

namespace {

std::vector<size_t> *g_record = nullptr;

VTX_STS_T recordingAlloc(size_t size, void **pp) {
    if (g_record) g_record->push_back(size);
    *pp = std::calloc(1, size ? size : 1);
    return *pp ? 0 : VTX_STS_NO_MEMORY;
}
void *recordingBlockAlloc(size_t size, int kind) {
    if (g_record) g_record->push_back(size);
    return vtxBlockAllocDefault(size, kind);
}
vtx_netctx_t makeCtx() { return vtxbench::makeContext(recordingAlloc); }

// The sizes one creation asks for.
const std::vector<size_t> &creationSizes() {
    static std::vector<size_t> sizes = [] {
        std::vector<size_t> s;
        vtx_netctx_t c = makeCtx();
        vtx_outlineinfo_t info{};
        VTX_HOUTLINE_T h = nullptr;
        g_record = &s;
        (void)vtxBlockAllocSetHook(recordingBlockAlloc, vtxBlockFreeDefault);  // taking the hook cannot fail
        (void)adShrOtlNewOutline(&c, &info, &h, 0);  // measured below; a failure shows as an empty list
        (void)vtxBlockAllocSetHook(vtxBlockAllocDefault, vtxBlockFreeDefault);
        g_record = nullptr;
        adShrOtlCloseOutline(h);
        return s;
    }();
    return sizes;
}

void BM_NewCloseOutline(benchmark::State &state) {
    vtx_netctx_t c = makeCtx();
    vtx_outlineinfo_t info{};
    for (auto _ : state) {
        VTX_HOUTLINE_T h = nullptr;
        if (adShrOtlNewOutline(&c, &info, &h, 0) != 0) state.SkipWithError("creation failed");
        benchmark::DoNotOptimize(h);
        adShrOtlCloseOutline(h);
    }
    size_t bytes = 0;
    for (size_t s : creationSizes()) bytes += s;
    state.counters["blocks"] = (double)creationSizes().size();
    state.counters["bytes"] = (double)bytes;
}

void BM_Baseline_CallocFreeSameBlocks(benchmark::State &state) {
    const auto &sizes = creationSizes();
    std::vector<void *> blocks(sizes.size());
    for (auto _ : state) {
        for (size_t i = 0; i < sizes.size(); ++i) blocks[i] = std::calloc(1, sizes[i]);
        benchmark::DoNotOptimize(blocks.data());
        for (void *b : blocks) std::free(b);
    }
}

BENCHMARK(BM_NewCloseOutline);
BENCHMARK(BM_Baseline_CallocFreeSameBlocks);

} // namespace

int main(int argc, char **argv) {
    return vtxbench::runWithRatios(argc, argv,
                                   {{"new+close / calloc+free of the same blocks", "BM_NewCloseOutline",
                                     "BM_Baseline_CallocFreeSameBlocks"}});
}
