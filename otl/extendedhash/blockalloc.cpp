// The allocation hook of the container layer and its out-of-memory report.
#include "blockalloc.h"

#include <sys/mman.h>

#include <cstdlib>
#include <cstring>

#include "FastHugeArray.h"

#include "vtxhostsvc.h"
#include "vtxstatus.h"

namespace {
VTX_BLOCKALLOC_FN_T g_alloc = vtxBlockAllocDefault;
VTX_BLOCKFREE_FN_T g_free = vtxBlockFreeDefault;
} // namespace

extern "C" {

VTX_API void *vtxBlockAllocDefault(size_t size, int kind) {
    if (kind == VTX_BLOCKALLOC_BLOCK) return std::malloc(size);
    void *p = nullptr;
    if (adMalloc(nullptr, size, &p) != 0) return nullptr;
    return p;
}

VTX_API void vtxBlockFreeDefault(void *p, int kind) {
    if (!p) return;
    if (kind == VTX_BLOCKALLOC_BLOCK)
        std::free(p);
    else
        adFree(nullptr, p);
}

VTX_API VTX_STS_T vtxBlockAllocSetHook(VTX_BLOCKALLOC_FN_T pfnAlloc, VTX_BLOCKFREE_FN_T pfnFree) {
    if (!pfnAlloc && !pfnFree) {
        g_alloc = vtxBlockAllocDefault;
        g_free = vtxBlockFreeDefault;
        return VTX_STS_OK;
    }
    if (!pfnAlloc || !pfnFree) return VTX_STS_NULL_ARG;
    g_alloc = pfnAlloc;
    g_free = pfnFree;
    return VTX_STS_OK;
}

VTX_API void *vtxBlockAlloc(size_t size, int kind) { return g_alloc(size, kind); }

VTX_API void vtxBlockFree(void *p, int kind) {
    if (p) g_free(p, kind);
}

VTX_STS_T vtxehNoMemory(vTX_PNETCTX_T pNetCtx, const char *functionName) {
    if (pNetCtx && pNetCtx->bSendMsgNet)
        return adNetLocalMessage(pNetCtx, VTX_STS_NO_MEMORY, VTX_MSG_ERROR, functionName,
                                 VTX_MSGARG_STR, nullptr, VTX_MSGARG_NONE);
    return VTX_STS_NO_MEMORY;
}

} // extern "C"

// ---- the shared all-ones block of lazily filled arrays --------------------

namespace vtxeh {

namespace {
// Mapped once and made read-only, so that a write that skipped
// materialize() faults at once instead of corrupting every table.
const void *makeAllOnesBlock() {
    void *p = mmap(nullptr, BLOCK_BYTES, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) return nullptr;
    std::memset(p, 0xFF, BLOCK_BYTES);
    if (mprotect(p, BLOCK_BYTES, PROT_READ) != 0) {
        munmap(p, BLOCK_BYTES);
        return nullptr;
    }
    return p;
}
} // namespace

VTX_API const void *allOnesBlock() {
    static const void *block = makeAllOnesBlock();
    return block;
}

} // namespace vtxeh
