#include "StringBuffer.h"

#include <cmath>
#include <cstring>
#include <utility>

#include "FastHugeArray.h"
#include "otlmem.h"

StringBuffer::StringBuffer(vTX_PNETCTX_T ctx)
    : memBlock(nullptr), firstFreeIndex(0), offset(0), offset1(0), offset2(0),
      firstBlock(nullptr), pNetCtx(ctx) {
    bool ok = arraySizeToMasks(BLOCK_BYTES, 1, &offset1, &offset2);
    if (!ok) {
        std::fprintf(stderr, "assertion failed: arraySizeToMasks(262144,1,&offset1,&offset2)\n");
        std::abort();
    }
}

bool StringBuffer::arraySizeToMasks(size_t blockSize, size_t elementSize, unsigned short *pOffset1,
                                    size_t *pOffset2) {
    int elementBitSize = static_cast<int>(std::ceil(std::log2(double(elementSize))));
    int memoryBlockBitSize = static_cast<int>(std::floor(std::log2(double(blockSize))));
    VTX_EH_ASSERT(blockSize > elementSize && memoryBlockBitSize > elementBitSize);
    VTX_EH_ASSERT((size_t)(1 << elementBitSize) == elementSize);
    VTX_EH_ASSERT((size_t)(1 << memoryBlockBitSize) == blockSize);
    *pOffset1 = static_cast<unsigned short>(memoryBlockBitSize - elementBitSize);
    *pOffset2 = (size_t(1) << *pOffset1) - 1;
    return true;
}

namespace {
// A hash without a context (tests, tools) still gets its text blocks, from
// the class-level allocator.
void *takeBlock(vTX_PNETCTX_T ctx) {
    if (!ctx) return vtxBlockAlloc(StringBuffer::BLOCK_BYTES, VTX_BLOCKALLOC_BLOCK);
    void *p = nullptr;
    if (otlAlloc(ctx, StringBuffer::BLOCK_BYTES, &p) != 0) return nullptr;
    return p;
}
void giveBackBlock(vTX_PNETCTX_T ctx, void *p) {
    if (!ctx)
        vtxBlockFree(p, VTX_BLOCKALLOC_BLOCK);
    else
        (void)otlFreeMem(ctx, p);
}
} // namespace

bool StringBuffer::writeNewBlock() {
    try {
        memoryBlockVector.reserve(memoryBlockVector.size() + 1);
    } catch (const std::bad_alloc &) {
        return false;
    }
    char *block = static_cast<char *>(takeBlock(pNetCtx));
    if (!block) return false;
    memoryBlockVector.push_back(block);
    memBlock = block;
    firstBlock = memoryBlockVector.front();
    return true;
}

char *StringBuffer::append(const char *str, size_t strLen) {
    if (offset == 0 && memoryBlockVector.empty()) {
        if (!writeNewBlock()) return nullptr;
    }
    if (firstFreeIndex + strLen + 1 > BLOCK_BYTES) {
        // Open the next block first: a refusal leaves the buffer as it was.
        size_t rest = BLOCK_BYTES - firstFreeIndex;
        if (!writeNewBlock()) return nullptr;
        offset += rest;
        firstFreeIndex = 0;
    }
    char *dst = memBlock + firstFreeIndex;
    std::memcpy(dst, str, strLen);
    dst[strLen] = '\0';
    firstFreeIndex += strLen + 1;
    offset += strLen + 1;
    return dst;
}

char *StringBuffer::getStringStarting(unsigned long globalOffset) const {
    size_t block = globalOffset >> offset1;
    if (block >= memoryBlockVector.size()) return nullptr;
    return memoryBlockVector[block] + (globalOffset & offset2);
}

void StringBuffer::deallocate() {
    for (char *block : memoryBlockVector) giveBackBlock(pNetCtx, block);
    std::vector<char *, vtxeh::HookAllocator<char *>>().swap(memoryBlockVector);
    memBlock = nullptr;
    firstBlock = nullptr;
    firstFreeIndex = 0;
    offset = 0;
}

void StringBuffer::swap(StringBuffer &other) noexcept {
    std::swap(memBlock, other.memBlock);
    std::swap(firstFreeIndex, other.firstFreeIndex);
    std::swap(offset, other.offset);
    std::swap(firstBlock, other.firstBlock);
    std::swap(pNetCtx, other.pNetCtx);
    memoryBlockVector.swap(other.memoryBlockVector);
}
