// StringBuffer.h -- append-only text store in blocks of 262144 bytes.
//
// A stored string never moves and never straddles two blocks; the rest of a
// block that cannot take the next string is left unused.  Blocks come from
// the outline's context, like every other piece of outline text.
#ifndef VTX_EH_STRINGBUFFER_H
#define VTX_EH_STRINGBUFFER_H

#include <cstddef>
#include <vector>

#include "blockalloc.h"
#include "vtxnetctx.h"

class VTX_API StringBuffer {
public:
    static constexpr size_t BLOCK_BYTES = 262144;

    explicit StringBuffer(vTX_PNETCTX_T pNetCtx);
    ~StringBuffer() { deallocate(); }
    StringBuffer(const StringBuffer &) = delete;
    StringBuffer &operator=(const StringBuffer &) = delete;

    // Stores strLen bytes and a NUL; answers the copy, or null when a new
    // block is refused.  strLen must be below BLOCK_BYTES.
    char *append(const char *str, size_t strLen);
    // The string stored at a global offset, as counted by offset().
    char *getStringStarting(unsigned long globalOffset) const;
    void deallocate();

    unsigned long getOffset() const { return offset; }
    size_t blockCount() const { return memoryBlockVector.size(); }
    void swap(StringBuffer &other) noexcept;

private:
    bool writeNewBlock();
    static bool arraySizeToMasks(size_t blockSize, size_t elementSize, unsigned short *pOffset1,
                                 size_t *pOffset2);

    char *memBlock;
    size_t firstFreeIndex;
    unsigned long offset;
    unsigned short offset1;
    size_t offset2;
    char *firstBlock;
    vTX_PNETCTX_T pNetCtx;
    std::vector<char *, vtxeh::HookAllocator<char *>> memoryBlockVector;
};

#endif
