/*
 * blockalloc.h -- where the container layer gets its memory.
 *
 * The block containers take two kinds of memory: the 262144-byte blocks of
 * a FastHugeArray (plain heap) and the small objects around them (the
 * container objects themselves and the growable vectors of block pointers,
 * which come from the class-level allocator adMalloc).  Both pass through one
 * replaceable hook, so that a host or a test can watch or refuse every one of
 * them.  Memory that belongs to an outline's context (the StringBuffer blocks,
 * the fold buffers of long keys) does not go through here but through the
 * context's own allocator.
 *
 * The hook is process-wide: install it while no container is in use.
 */
#ifndef VTX_EH_BLOCKALLOC_H
#define VTX_EH_BLOCKALLOC_H

#include <stddef.h>
#include "vtxtypes.h"
#include "vtxnetctx.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What an allocation is for. */
#define VTX_BLOCKALLOC_BLOCK  0  /* a data block of a FastHugeArray (default: malloc) */
#define VTX_BLOCKALLOC_OBJECT 1  /* a container object or vector store (default: adMalloc) */

/* An allocation hook answers null when it refuses; it never throws. */
typedef void *(*VTX_BLOCKALLOC_FN_T)(size_t size, int kind);
typedef void (*VTX_BLOCKFREE_FN_T)(void *p, int kind);

/* Installs a hook pair; (null, null) puts the defaults back.  Setting only
 * one of the two is refused with VTX_STS_NULL_ARG: blocks must always be
 * returned to the allocator that gave them. */
VTX_API VTX_STS_T vtxBlockAllocSetHook(VTX_BLOCKALLOC_FN_T pfnAlloc, VTX_BLOCKFREE_FN_T pfnFree);

/* The defaults, for a hook that only counts or fails and then delegates.
 * Data blocks of exactly 262144 bytes come eight at a time from chunks of
 * 2 MiB that the kernel is asked to back by huge pages; a chunk is returned
 * to the system with its last block.  Other sizes come from malloc. */
VTX_API void *vtxBlockAllocDefault(size_t size, int kind);
VTX_API void vtxBlockFreeDefault(void *p, int kind);
/* The bytes the default allocator holds in such chunks (memory malloc's
 * own statistics do not see). */
VTX_API size_t vtxBlockAllocMappedBytes(void);

/* The calls every container makes (exported for the header-only arrays). */
VTX_API void *vtxBlockAlloc(size_t size, int kind);
VTX_API void vtxBlockFree(void *p, int kind);

/* Out of memory in a function of the container layer: the bare 1060358, or
 * the answer of the message service when the context sends messages. */
VTX_STS_T vtxehNoMemory(vTX_PNETCTX_T pNetCtx, const char *functionName);

#ifdef __cplusplus
}

#include <new>

namespace vtxeh {

// Allocator for the standard containers of this layer.  Its refusal arrives
// as std::bad_alloc, which the class layer catches; nothing above the flat
// wrappers ever sees it.
template <class T>
struct HookAllocator {
    using value_type = T;
    HookAllocator() noexcept = default;
    template <class U>
    HookAllocator(const HookAllocator<U> &) noexcept {}
    T *allocate(size_t n) {
        if (n > static_cast<size_t>(-1) / sizeof(T)) throw std::bad_alloc();
        void *p = vtxBlockAlloc(n * sizeof(T), VTX_BLOCKALLOC_OBJECT);
        if (!p) throw std::bad_alloc();
        return static_cast<T *>(p);
    }
    void deallocate(T *p, size_t) noexcept { vtxBlockFree(p, VTX_BLOCKALLOC_OBJECT); }
    template <class U>
    bool operator==(const HookAllocator<U> &) const noexcept { return true; }
};

// Creates an object of the class layer in class-level memory, zeroed before
// construction; null when the memory is refused or the constructor throws.
template <class T, class... Args>
T *newObject(Args &&...args) noexcept {
    void *p = vtxBlockAlloc(sizeof(T), VTX_BLOCKALLOC_OBJECT);
    if (!p) return nullptr;
    __builtin_memset(p, 0, sizeof(T));
    try {
        return new (p) T(static_cast<Args &&>(args)...);
    } catch (...) {
        vtxBlockFree(p, VTX_BLOCKALLOC_OBJECT);
        return nullptr;
    }
}

template <class T>
void deleteObject(T *p) noexcept {
    if (!p) return;
    p->~T();
    vtxBlockFree(p, VTX_BLOCKALLOC_OBJECT);
}

} // namespace vtxeh
#endif

#endif
