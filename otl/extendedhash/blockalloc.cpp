// The allocation hook of the container layer and its out-of-memory report.
#include "blockalloc.h"

#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <unordered_map>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
// Blocks not handed out are marked unaddressable, so that the sanitizer
// sees a use after free or a run past a block into a free one.
#define VTX_ASAN_POISON(p, n) ASAN_POISON_MEMORY_REGION((p), (n))
#define VTX_ASAN_UNPOISON(p, n) ASAN_UNPOISON_MEMORY_REGION((p), (n))
#else
#define VTX_ASAN_POISON(p, n) ((void)(p), (void)(n))
#define VTX_ASAN_UNPOISON(p, n) ((void)(p), (void)(n))
#endif

#include "FastHugeArray.h"

#include "vtxhostsvc.h"
#include "vtxstatus.h"

namespace {
VTX_BLOCKALLOC_FN_T g_alloc = vtxBlockAllocDefault;
VTX_BLOCKFREE_FN_T g_free = vtxBlockFreeDefault;

// ---- blocks in huge pages ---------------------------------------------------
//
// The block arrays of a large outline's index run to hundreds of megabytes
// that every lookup touches at random.  In pages of 4 KiB nearly each touch
// also misses the address translation cache, and the page walk that follows
// costs about as much as the access itself.  So the 262144-byte blocks are
// carved eight at a time out of chunks of 2 MiB, aligned to 2 MiB, that the
// kernel is asked to back by huge pages where it can.  A chunk goes back to
// the system as soon as its last block is freed.  Other sizes come from
// malloc.
//
// Invariants:
//  1. Every chunk in g_chunks is mapped, 2 MiB long and aligned to 2 MiB;
//     freeMask has a bit set for each of its blocks that is not handed out.
//  2. A chunk is in g_partial (at its partialAt) exactly when freeMask is
//     neither 0 nor all ones; a chunk with all its blocks free is unmapped.
//  3. g_mappedBytes is 2 MiB times the number of chunks.
constexpr size_t kChunkBytes = size_t(2) << 20;
constexpr unsigned kBlocksPerChunk = kChunkBytes / vtxeh::BLOCK_BYTES;
constexpr uint8_t kAllFree = static_cast<uint8_t>((1u << kBlocksPerChunk) - 1);
static_assert(kBlocksPerChunk == 8, "a chunk holds eight blocks");

struct Chunk {
    uint8_t freeMask = kAllFree;   // blocks not handed out
    size_t partialAt = SIZE_MAX;   // place in g_partial, when it is there
};

std::mutex g_chunkLock;  // outlines of different threads share the chunks
std::unordered_map<uintptr_t, Chunk> g_chunks;  // by chunk address
std::vector<uintptr_t> g_partial;               // chunks with free and used blocks
size_t g_mappedBytes = 0;

// A new chunk, aligned by mapping twice its size and giving back the rest.
char *mapChunk() {
    void *p = mmap(nullptr, 2 * kChunkBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) return nullptr;
    const uintptr_t start = reinterpret_cast<uintptr_t>(p);
    const uintptr_t aligned = (start + kChunkBytes - 1) & ~(kChunkBytes - 1);
    if (aligned > start) munmap(p, aligned - start);
    const uintptr_t end = start + 2 * kChunkBytes;
    if (end > aligned + kChunkBytes) munmap(reinterpret_cast<void *>(aligned + kChunkBytes), end - aligned - kChunkBytes);
    // Advice only: without huge pages the chunk works all the same.
    (void)madvise(reinterpret_cast<void *>(aligned), kChunkBytes, MADV_HUGEPAGE);
    VTX_ASAN_POISON(reinterpret_cast<void *>(aligned), kChunkBytes);
    return reinterpret_cast<char *>(aligned);
}

void dropPartial(Chunk &c) {
    const uintptr_t moved = g_partial.back();
    g_partial[c.partialAt] = moved;
    g_chunks[moved].partialAt = c.partialAt;
    g_partial.pop_back();
    c.partialAt = SIZE_MAX;
}

void *takeChunkBlock() noexcept {
    try {
        std::lock_guard<std::mutex> lock(g_chunkLock);
        uintptr_t base;
        if (!g_partial.empty()) {
            base = g_partial.back();
        } else {
            char *fresh = mapChunk();
            if (!fresh) return nullptr;
            base = reinterpret_cast<uintptr_t>(fresh);
            try {
                // Room for every chunk, so that a chunk that fills up and
                // later frees a block can always go back on the list.
                g_partial.reserve(g_chunks.size() + 1);
                g_chunks.emplace(base, Chunk{});
            } catch (...) {
                munmap(fresh, kChunkBytes);
                throw;
            }
            g_chunks[base].partialAt = g_partial.size();
            g_partial.push_back(base);
            g_mappedBytes += kChunkBytes;
        }
        Chunk &c = g_chunks[base];
        const unsigned b = static_cast<unsigned>(__builtin_ctz(c.freeMask));
        c.freeMask = static_cast<uint8_t>(c.freeMask & ~(1u << b));
        if (c.freeMask == 0) dropPartial(c);
        void *block = reinterpret_cast<void *>(base + b * vtxeh::BLOCK_BYTES);
        VTX_ASAN_UNPOISON(block, vtxeh::BLOCK_BYTES);
        return block;
    } catch (...) {
        return nullptr;
    }
}

// Gives a block back; false when p is not a chunk's block.
bool giveChunkBlock(void *p) noexcept {
    const uintptr_t addr = reinterpret_cast<uintptr_t>(p);
    const uintptr_t base = addr & ~(kChunkBytes - 1);
    std::lock_guard<std::mutex> lock(g_chunkLock);
    auto it = g_chunks.find(base);
    if (it == g_chunks.end()) return false;
    Chunk &c = it->second;
    const unsigned b = static_cast<unsigned>((addr - base) / vtxeh::BLOCK_BYTES);
    VTX_EH_ASSERT(addr == base + b * vtxeh::BLOCK_BYTES && !(c.freeMask & (1u << b)));
    VTX_ASAN_POISON(p, vtxeh::BLOCK_BYTES);
    const bool wasFull = c.freeMask == 0;
    c.freeMask = static_cast<uint8_t>(c.freeMask | (1u << b));
    if (c.freeMask == kAllFree) {
        if (!wasFull) dropPartial(c);
        munmap(reinterpret_cast<void *>(base), kChunkBytes);
        g_chunks.erase(it);
        g_mappedBytes -= kChunkBytes;
    } else if (wasFull) {
        // Room for every chunk was reserved when this one was made.
        c.partialAt = g_partial.size();
        g_partial.push_back(base);
    }
    return true;
}
} // namespace

extern "C" {

VTX_API void *vtxBlockAllocDefault(size_t size, int kind) {
    if (kind == VTX_BLOCKALLOC_BLOCK) return size == vtxeh::BLOCK_BYTES ? takeChunkBlock() : std::malloc(size);
    void *p = nullptr;
    if (adMalloc(nullptr, size, &p) != 0) return nullptr;
    return p;
}

VTX_API void vtxBlockFreeDefault(void *p, int kind) {
    if (!p) return;
    if (kind == VTX_BLOCKALLOC_BLOCK) {
        if (!giveChunkBlock(p)) std::free(p);
    } else {
        adFree(nullptr, p);
    }
}

VTX_API size_t vtxBlockAllocMappedBytes(void) {
    std::lock_guard<std::mutex> lock(g_chunkLock);
    return g_mappedBytes;
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
