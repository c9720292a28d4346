// FastHugeArray.h -- an array in blocks of 262144 bytes whose elements never move.
//
// The name index of an outline runs to tens of millions of entries.  No store
// of it may depend on one huge allocation or copy its contents when it grows:
// a grown array only gains blocks, and the address of an element stays valid
// for the life of the array.  Element access is two loads at most: indexes of
// the first block are served without touching the block vector.
//
// An array may be created "lazily filled": all its blocks then start out as
// one shared, read-only block holding the fill pattern, and a block gets
// memory of its own only when it is first written (materialize()).  The hash
// tables use this, so that a new table generation of tens of megabytes costs
// nothing until its slots are used.  Every write into a lazily filled array
// must be preceded by materialize() for that index.
#ifndef VTX_EH_FASTHUGEARRAY_H
#define VTX_EH_FASTHUGEARRAY_H

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include "blockalloc.h"

// An invariant of the container layer does not hold: the store is corrupt or
// a caller broke the contract.  Always on, also in release builds.
#define VTX_EH_ASSERT(cond)                                                             \
    do {                                                                                \
        if (!(cond)) {                                                                  \
            std::fprintf(stderr, "%s:%d: assertion failed: %s\n", __FILE__, __LINE__, #cond); \
            std::abort();                                                               \
        }                                                                               \
    } while (0)

namespace vtxeh {

constexpr size_t BLOCK_BYTES = 262144;

// A read-only block of BLOCK_BYTES bytes, all 0xFF, shared by every lazily
// filled array of the process; null when the system cannot provide one (the
// arrays then fill eagerly).
VTX_API const void *allOnesBlock();

constexpr unsigned short log2Exact(size_t v) {
    unsigned short r = 0;
    while (v > 1) {
        v >>= 1;
        ++r;
    }
    return r;
}

} // namespace vtxeh

template <class T>
class FastHugeArray {
    static_assert(std::is_trivially_copyable_v<T>, "blocks are filled and copied bytewise");
    static_assert((sizeof(T) & (sizeof(T) - 1)) == 0, "element size must be a power of two");
    static_assert(sizeof(T) < vtxeh::BLOCK_BYTES, "element must be smaller than a block");

public:
    // Shift from an element index to its block, and mask to its place there.
    static constexpr unsigned short SHIFT =
        vtxeh::log2Exact(vtxeh::BLOCK_BYTES) - vtxeh::log2Exact(sizeof(T));
    static constexpr size_t MASK = (size_t(1) << SHIFT) - 1;
    static constexpr size_t PER_BLOCK = MASK + 1;

    FastHugeArray() {
        bool ok = arraySizeToMasks(vtxeh::BLOCK_BYTES, sizeof(T), &offset1, &offset2);
        VTX_EH_ASSERT(ok && offset1 == SHIFT && offset2 == MASK);
    }
    ~FastHugeArray() { deallocate(); }
    FastHugeArray(const FastHugeArray &) = delete;
    FastHugeArray &operator=(const FastHugeArray &) = delete;

    // Sizes the array to `newSize` elements, every byte set to `setNewBlocks`.
    // With the present size the blocks are kept and refilled.  On failure the
    // array is left empty.
    bool allocate(unsigned long newSize, int setNewBlocks) {
        if (newSize == size) {
            fillAll(setNewBlocks);
            return true;
        }
        if (!memoryBlockVector.empty()) deallocate();
        if (newSize == 0) return true;
        size_t blocks = blocksForElements(newSize);
        try {
            memoryBlockVector.reserve(blocks);
        } catch (const std::bad_alloc &) {
            return false;
        }
        size = newSize;
        for (size_t b = 0; b < blocks; ++b) {
            if (!createNewMemoryPoolBlock(b, setNewBlocks)) {
                size = memoryBlockVector.size() * PER_BLOCK;
                deallocate();
                return false;
            }
        }
        return true;
    }

    // Sizes the array to `newSize` elements that all read as 0xFF bytes
    // without any block being written (see the head of this file).  Falls
    // back to an eager fill when no shared block exists.
    bool allocateLazyAllOnes(unsigned long newSize) {
        const void *shared = vtxeh::allOnesBlock();
        if (!shared) return allocate(newSize, 0xFF);
        if (!memoryBlockVector.empty()) deallocate();
        if (newSize == 0) return true;
        size_t blocks = blocksForElements(newSize);
        try {
            memoryBlockVector.assign(blocks, static_cast<T *>(const_cast<void *>(shared)));
        } catch (const std::bad_alloc &) {
            return false;
        }
        pristine = static_cast<const T *>(shared);
        size = newSize;
        firstBlock = memoryBlockVector[0];
        return true;
    }

    // Grows to `newSize` elements; earlier blocks stay where they are.  The
    // block count never shrinks.  On failure the array keeps its blocks,
    // contents and size, and answers false.
    bool reallocate(unsigned long newSize, int setNewBlocks) {
        if (newSize == 0) {
            deallocate();
            return true;
        }
        if (memoryBlockVector.empty()) return allocate(newSize, setNewBlocks);
        size_t numOfBlocks = memoryBlockVector.size();
        size_t newNumOfBlocks = blocksForElements(newSize);
        VTX_EH_ASSERT(newNumOfBlocks >= numOfBlocks);
        try {
            memoryBlockVector.reserve(newNumOfBlocks);
        } catch (const std::bad_alloc &) {
            return false;
        }
        for (size_t b = numOfBlocks; b < newNumOfBlocks; ++b) {
            if (!createNewMemoryPoolBlock(b, setNewBlocks)) {
                while (memoryBlockVector.size() > numOfBlocks) {
                    releaseBlock(memoryBlockVector.back());
                    memoryBlockVector.pop_back();
                }
                return false;
            }
        }
        size = newSize;
        firstBlock = memoryBlockVector[0];
        return true;
    }

    void deallocate() {
        for (T *block : memoryBlockVector) releaseBlock(block);
        std::vector<T *, vtxeh::HookAllocator<T *>>().swap(memoryBlockVector);
        size = 0;
        firstBlock = nullptr;
        pristine = nullptr;
    }

    // No bounds check: the index must be below getSize().
    T &operator[](unsigned long index) {
        if (index <= MASK) return firstBlock[index];
        return memoryBlockVector[index >> SHIFT][index & MASK];
    }
    const T &operator[](unsigned long index) const {
        if (index <= MASK) return firstBlock[index];
        return memoryBlockVector[index >> SHIFT][index & MASK];
    }

    size_t getSize() const { return size; }

    // Makes this a duplicate of `other`, block by block.  On failure this
    // array is unchanged.
    bool copy(const FastHugeArray &other) {
        if (&other == this) return true;
        std::vector<T *, vtxeh::HookAllocator<T *>> blocks;
        try {
            blocks.reserve(other.memoryBlockVector.size());
        } catch (const std::bad_alloc &) {
            return false;
        }
        for (T *src : other.memoryBlockVector) {
            if (other.isPristine(src)) {
                blocks.push_back(src);
                continue;
            }
            T *dst = static_cast<T *>(vtxBlockAlloc(vtxeh::BLOCK_BYTES, VTX_BLOCKALLOC_BLOCK));
            if (!dst) {
                for (T *b : blocks) {
                    if (!other.isPristine(b)) vtxBlockFree(b, VTX_BLOCKALLOC_BLOCK);
                }
                return false;
            }
            std::memcpy(static_cast<void *>(dst), static_cast<const void *>(src), vtxeh::BLOCK_BYTES);
            blocks.push_back(dst);
        }
        deallocate();
        memoryBlockVector.swap(blocks);
        size = other.size;
        pristine = other.pristine;
        firstBlock = memoryBlockVector.empty() ? nullptr : memoryBlockVector[0];
        return true;
    }

    void swap(FastHugeArray &other) noexcept {
        std::swap(size, other.size);
        memoryBlockVector.swap(other.memoryBlockVector);
        std::swap(firstBlock, other.firstBlock);
        std::swap(pristine, other.pristine);
    }

    // Sets every byte of every block to `fill`; the size stays.  Blocks still
    // shared in a lazily filled array keep their pattern.
    void reset(int fill) { fillAll(fill); }

    // Lazily filled arrays: whether the block under `index` has memory of its
    // own yet, and giving it some (false when the memory is refused; the
    // element then still reads as before).
    bool isMaterialized(unsigned long index) const {
        return !isPristine(memoryBlockVector[index >> SHIFT]);
    }
    bool materialize(unsigned long index) {
        size_t b = index >> SHIFT;
        T *block = memoryBlockVector[b];
        if (!isPristine(block)) return true;
        T *own = static_cast<T *>(vtxBlockAlloc(vtxeh::BLOCK_BYTES, VTX_BLOCKALLOC_BLOCK));
        if (!own) return false;
        std::memcpy(static_cast<void *>(own), static_cast<const void *>(block), vtxeh::BLOCK_BYTES);
        memoryBlockVector[b] = own;
        if (b == 0) firstBlock = own;
        return true;
    }

    size_t blockCount() const { return memoryBlockVector.size(); }
    size_t materializedBlockCount() const {
        size_t n = 0;
        for (T *b : memoryBlockVector) n += isPristine(b) ? 0 : 1;
        return n;
    }
    // Address of the block holding `index`; lets tests see that nothing moved.
    const T *blockAddress(unsigned long index) const { return memoryBlockVector[index >> SHIFT]; }

private:
    bool isPristine(const T *block) const { return pristine && block == pristine; }

    void releaseBlock(T *block) {
        if (!isPristine(block)) vtxBlockFree(block, VTX_BLOCKALLOC_BLOCK);
    }

    void fillAll(int fill) {
        for (T *block : memoryBlockVector) {
            if (isPristine(block)) {
                VTX_EH_ASSERT((fill & 0xFF) == 0xFF);
                continue;
            }
            std::memset(static_cast<void *>(block), fill, vtxeh::BLOCK_BYTES);
        }
    }

    // Appends block number `blockNo`; the vector has room for it already.
    bool createNewMemoryPoolBlock(unsigned long blockNo, int setNewBlocks) {
        T *block = static_cast<T *>(vtxBlockAlloc(vtxeh::BLOCK_BYTES, VTX_BLOCKALLOC_BLOCK));
        if (!block) return false;
        std::memset(static_cast<void *>(block), setNewBlocks, vtxeh::BLOCK_BYTES);
        memoryBlockVector.push_back(block);
        if (blockNo == 0) firstBlock = block;
        return true;
    }

    static size_t blocksForElements(unsigned long n) {
        return (size_t(n) * sizeof(T) + vtxeh::BLOCK_BYTES - 1) / vtxeh::BLOCK_BYTES;
    }

    static bool arraySizeToMasks(unsigned long blockSize, unsigned long elementSize,
                                 unsigned short *pOffset1, size_t *pOffset2) {
        int elementBitSize = static_cast<int>(std::ceil(std::log2(double(elementSize))));
        int memoryBlockBitSize = static_cast<int>(std::floor(std::log2(double(blockSize))));
        VTX_EH_ASSERT(blockSize > elementSize && memoryBlockBitSize > elementBitSize);
        VTX_EH_ASSERT((size_t)(1 << elementBitSize) == elementSize);
        VTX_EH_ASSERT((size_t)(1 << memoryBlockBitSize) == blockSize);
        *pOffset1 = static_cast<unsigned short>(memoryBlockBitSize - elementBitSize);
        *pOffset2 = (size_t(1) << *pOffset1) - 1;
        return true;
    }

    size_t size = 0;
    unsigned short offset1 = 0;
    size_t offset2 = 0;
    std::vector<T *, vtxeh::HookAllocator<T *>> memoryBlockVector;
    T *firstBlock = nullptr;
    const T *pristine = nullptr;  // the shared block of a lazily filled array
};

#endif
