// extendedhash.h -- the hash under every name lookup of an outline.
//
// A key maps to a chain of nodes, one per inserted item, in insertion order.
// Each slot of a table holds the head of one chain, so all owners of a name
// are found by walking one chain.  The hash never rehashes: when the newest
// table passes half full a further, larger table is added beside it, older
// tables stay as they are, and a lookup searches them all.  A key stands in
// one table only, so the order of that search never changes its answer; it
// is chosen for speed, and a small presence filter per table lets it pass
// over most tables without touching their slots.  Beside each slot a byte
// of its key's CRC lets a probe pass another key's slot without reading its
// node.  Tables and nodes live in block arrays: nothing moves, and a node
// index is valid for the life of the hash.
//
// Slot numbers follow from the CRC of the (folded) key and a second hash by
// fixed rules; they are persisted indirectly, so none of that arithmetic may
// change.  A case-insensitive hash folds with the locale service, the same
// fold its comparison uses; only where the locale upper-cases ASCII letter
// by letter (asked once) does it fold an ASCII key itself, on the way into
// the CRC, which gives the very same bytes.  The class is reached from
// plain code only through hashCWrapper.h.
#ifndef VTX_EH_EXTENDEDHASH_H
#define VTX_EH_EXTENDEDHASH_H

#include <cstdint>
#include <vector>

#include "FastHugeArray.h"
#include "StringBuffer.h"
#include "crc.h"
#include "hashCWrapper.h"
#include "otlmem.h"

// One node per inserted item.  32 bytes, as a block array needs a power of
// two.  The node carries the key's CRC, so that a probe rejects almost every
// other key without touching its text, and the address of the object that
// owns the entry, so that a caller reaches it without a further lookup.
typedef struct _vtx_hashNode_t {
    VTX_ULONG_T hashItemIndex;  // the caller's item; NODE_INDEX_NA once deleted
    VTX_ULONG_T nextIndexNode;  // next node of the chain, NODE_INDEX_NA at its end
    VTX_ULONG_T lastIndexNode;  // on a head with followers: the chain's tail
    VTX_ULONG_T ulKeyCrc;       // CRC of the key as hashed (folded when case-insensitive)
    void *pOwner;               // the caller's object for the entry, or null; never read here
    VTX_STR_T str;              // the key as given, not folded; null once deleted
} VTX_OTL_HASH_NODE_T, *VTX_POTL_HASH_NODE_T;
static_assert(sizeof(VTX_OTL_HASH_NODE_T) == 32, "a hash node is 32 bytes");

class ExtendedHash;
class ExtendedHashAllMembersIterator;

// Internal calls of the class layer: kept out of the dynamic symbol table so
// that they are bound directly.
#define VTX_EH_LOCAL __attribute__((visibility("hidden")))

// Walks one chain.  Plain data, so that it can live in the caller's storage.
class VTX_API ExtendedHashIterator {
public:
    void init(ExtendedHash *hash, HASH_NUM_T num, HASH_POS_T pos);
    // The same, for a chain whose head node a lookup has just found.
    void initAt(ExtendedHash *hash, HASH_NUM_T num, HASH_POS_T pos, VTX_ULONG_T head);
    void init(ExtendedHashAllMembersIterator *allIt);
    ExtendedHashIterator &operator++();
    bool end() const { return otlHashNode == nullptr; }
    VTX_STR_T getStr() const { return otlHashNode ? otlHashNode->str : nullptr; }
    VTX_ULONG_T getHashItemIndex() const {
        return otlHashNode ? otlHashNode->hashItemIndex : NODE_INDEX_NA;
    }
    void *getOwner() const { return otlHashNode ? otlHashNode->pOwner : nullptr; }
    // Unlinks the current node and moves to the next; false when there is
    // nothing this iterator may delete.
    bool setDeleted();
    void copy(const ExtendedHashIterator &other) { *this = other; }

    ExtendedHash *extendedHash;
    HASH_NUM_T hashNum;  // NODE_INDEX_NA: placed from an all-members walk
    HASH_POS_T hashPos;
    VTX_POTL_HASH_NODE_T otlHashNode;
    VTX_POTL_HASH_NODE_T prevOtlHashNode;
    VTX_POTL_HASH_NODE_T firstOtlHashNode;
    VTX_ULONG_T otlHashNodeIndex;
    VTX_ULONG_T prevOtlHashNodeIndex;
};

// Walks every live node once, each chain in one run, so that all owners of a
// key come out together.  Nodes added after init() may or may not be seen.
class VTX_API ExtendedHashAllMembersIterator {
public:
    ExtendedHashAllMembersIterator() = default;
    explicit ExtendedHashAllMembersIterator(vTX_PNETCTX_T ctx) : pNetCtx(ctx) {}
    // 0, or 1060358 (bare) when the visited flags are refused; the iterator
    // is then at its end.
    [[nodiscard]] VTX_STS_T init(ExtendedHash *hash);
    ExtendedHashAllMembersIterator &operator++();
    bool end() const { return otlHashNode == nullptr; }
    VTX_STR_T getStr() const { return otlHashNode ? otlHashNode->str : nullptr; }
    VTX_ULONG_T getHashItemIndex() const {
        return otlHashNode ? otlHashNode->hashItemIndex : NODE_INDEX_NA;
    }
    void finish() {
        otlHashNode = nullptr;
        hashNodesContainerIndex = NODE_INDEX_NA;
    }

    ExtendedHash *extendedHash = nullptr;
    vTX_PNETCTX_T pNetCtx = nullptr;
    VTX_ULONG_T hashNodesContainerIndex = NODE_INDEX_NA;
    VTX_POTL_HASH_NODE_T otlHashNode = nullptr;
    FastHugeArray<unsigned char> memberWasVisited;
};

class VTX_API ExtendedHash {
public:
    // Throws std::bad_alloc, having released what it built, when the first
    // table or the node array is refused.
    ExtendedHash(vTX_PNETCTX_T pNetCtx, void *pLocale, VTX_ULONG_T numberOfStrings,
                 VTX_BOOL_T fCaseSensitive);
    ~ExtendedHash();
    ExtendedHash(const ExtendedHash &) = delete;
    ExtendedHash &operator=(const ExtendedHash &) = delete;

    // pOwner is kept in the node for the caller; the hash never reads it.
    [[nodiscard]] VTX_STS_T insert(VTX_ULONG_T hashItemIndex, const char *key, HASH_NUM_T &hNum,
                                   HASH_POS_T &hPos, void *pOwner = nullptr);
    [[nodiscard]] VTX_STS_T getPos(const char *key, HASH_NUM_T &hashNum, HASH_POS_T &hashPos) const;
    // The same, and on a hit `it` placed on the key's chain (untouched
    // otherwise): the lookup and the walk share one probe.
    [[nodiscard]] VTX_STS_T getPos(const char *key, HASH_NUM_T &hashNum, HASH_POS_T &hashPos,
                                   ExtendedHashIterator &it);
    VTX_ULONG_T size() const { return numOfElements; }
    vTX_PNETCTX_T context() const { return pNetCtx; }
    // The embedded walk, restarted; *pSts tells whether it could start.
    ExtendedHashAllMembersIterator *getAllMembersIterator(VTX_STS_T *pSts);
    // Becomes an independent duplicate of `other`; unchanged on failure.
    [[nodiscard]] VTX_STS_T copy(const ExtendedHash &other);

    // The table size the rules pick for a target: the first entry of the
    // prime list above it, in list order.
    static VTX_ULONG_T primeAbove(VTX_ULONG_T target);
    static const unsigned long long *primeList(size_t *count);

    // Inspection, for tests and the benchmark report.
    size_t tableCount() const { return tables.size(); }
    size_t tableSize(size_t gen) const { return tables[gen]->getSize(); }
    VTX_ULONG_T slot(HASH_NUM_T gen, HASH_POS_T pos) const { return (*tables[gen])[pos]; }
    VTX_ULONG_T nodeCount() const { return lastIndexInContainer; }
    size_t nodeCapacity() const { return hashNodesContainer.getSize(); }
    VTX_ULONG_T elementsInNewestTable() const { return elemntsInLastHash; }
    size_t blocksHeld() const;  // table, filter and node blocks with memory of their own

    // The two hash values of a text, exactly as the probe uses them.
    static unsigned int crcOf(const char *text, size_t len);
    static VTX_ULONG_T secondHash(const char *text, size_t len);
    // secondHash of the ASCII upper-case form of an ASCII text.
    static VTX_ULONG_T secondHashUpperAscii(const char *text, size_t len);
    // The remainder as the probe computes it (without dividing).
    static uint32_t remainder(uint32_t value, uint32_t divisor) {
        return reduce(value, modMultiplier(divisor), divisor);
    }

private:
    friend class ExtendedHashIterator;
    friend class ExtendedHashAllMembersIterator;

    struct Probe;
    enum class Found { Yes, Free, NoRoom };

    static uint64_t modMultiplier(uint32_t divisor) { return UINT64_MAX / divisor + 1; }
    // Eight bits of a CRC, mixed so that they do not follow the slot number.
    static uint8_t tagOf(unsigned int crc) { return static_cast<uint8_t>((crc * 0x9E3779B1u) >> 24); }
    // value % divisor, for every 32-bit value and divisor above 1.
    static uint32_t reduce(uint32_t value, uint64_t multiplier, uint32_t divisor) {
        uint64_t low = multiplier * value;
        return static_cast<uint32_t>((static_cast<unsigned __int128>(low) * divisor) >> 64);
    }

    VTX_EH_LOCAL bool addTable(VTX_ULONG_T prime);
    // Whether the locale upper-cases every ASCII text letter by letter, a-z
    // to A-Z and nothing else; asked once, at construction.
    VTX_EH_LOCAL bool asciiFoldsPlainly() const;
    // Makes the first table's filter from the nodes; false when its blocks
    // are refused (the filter is still unused then).
    VTX_EH_LOCAL bool fillFirstFilter();
    // The CRC of a key as the probe computes it, without probing.
    [[nodiscard]] VTX_EH_LOCAL VTX_STS_T keyCrcOf(const char *key, unsigned int *pCrc) const;
    [[nodiscard]] VTX_EH_LOCAL VTX_STS_T createNewHash(VTX_ULONG_T prime);
    // The probe of one table from its second slot on; pos and value are the
    // first slot and what it holds.
    VTX_EH_LOCAL Found findQuadratic(Probe &probe, HASH_NUM_T hashNum, uint32_t pos,
                                     uint32_t value, HASH_POS_T &hashPos) const;
    VTX_EH_LOCAL void search(Probe &probe, HASH_NUM_T &hashNum, HASH_POS_T &hashPos) const;
    // search() over two or more tables.
    VTX_EH_LOCAL void searchTables(Probe &probe, HASH_NUM_T &hashNum, HASH_POS_T &hashPos) const;
    VTX_EH_LOCAL Found probeTable(Probe &probe, HASH_NUM_T g, uint32_t pos, HASH_POS_T &hashPos) const;
    VTX_EH_LOCAL uint32_t firstSlot(const Probe &probe, HASH_NUM_T g) const;
    // A key's place in the presence filters: the two bits it clears, the
    // same in every table, and what picks its word in each.
    struct FilterKey {
        uint64_t bits;
        uint32_t word;
    };
    static FilterKey filterKeyOf(unsigned int crc);
    // The key's word in table g's filter.
    VTX_EH_LOCAL uint32_t filterWord(const FilterKey &key, HASH_NUM_T g) const;
    VTX_EH_LOCAL bool mayHold(unsigned int crc, HASH_NUM_T g) const;
    // The key made ready to hash, with its CRC (see hashKey in the source);
    // foldLongKey folds keys whose fold does not fit on the stack.
    [[nodiscard]] VTX_EH_LOCAL VTX_STS_T hashKey(Probe &probe, char *stackBuf, char **ppHeap) const;
    [[nodiscard]] VTX_EH_LOCAL VTX_STS_T foldLongKey(Probe &probe, char *stackBuf, char **ppHeap) const;
    VTX_EH_LOCAL bool keysEqual(Probe &probe, const VTX_OTL_HASH_NODE_T &node) const;
    VTX_EH_LOCAL bool foldedEqual(Probe &probe, const VTX_OTL_HASH_NODE_T &node) const;
    VTX_EH_LOCAL void clear();
    [[nodiscard]] VTX_EH_LOCAL VTX_STS_T prepareInsert(HASH_NUM_T hNum, HASH_POS_T hPos,
                                                       unsigned int keyCrc);
    VTX_EH_LOCAL void setItemInPos(VTX_ULONG_T hashItemIndex, const char *key, HASH_NUM_T hNum,
                                   HASH_POS_T hPos, unsigned int keyCrc, void *pOwner);
    // pCrc: the key's CRC; pHead: on a hit, the chain's head node.
    [[nodiscard]] VTX_EH_LOCAL VTX_STS_T lookup(const char *key, HASH_NUM_T &hashNum,
                                                HASH_POS_T &hashPos, unsigned int *pCrc,
                                                VTX_ULONG_T *pHead) const;
    // The upper-case form of a text, or *ppOut null when the locale cannot
    // fold it; fails only when a buffer for a long text is refused.
    [[nodiscard]] VTX_EH_LOCAL VTX_STS_T foldInto(const char *text, size_t len, char *stackBuf,
                                                  size_t stackSize, char **ppOut,
                                                  size_t *pOutLen) const;
    VTX_EH_LOCAL void releaseFold(char *buf, char *stackBuf) const;
    VTX_EH_LOCAL VTX_STR_T getStrInIndex(VTX_ULONG_T nodeIndex);
    VTX_EH_LOCAL VTX_POTL_HASH_NODE_T getHashNodeFromHashNodesContainer(VTX_ULONG_T nodeIndex);

    using TableVector =
        std::vector<FastHugeArray<unsigned int> *, vtxeh::HookAllocator<FastHugeArray<unsigned int> *>>;
    // What goes with each table besides its slots.
    struct TableAux {
        uint64_t slotMod;   // reduce() multiplier for the table size
        // Presence filter: a key that stands in the table has cleared two
        // bits of one word here (bits start set).  A word with either bit
        // still set proves the key absent, so a search skips the table
        // without touching its slots.  Deleting leaves bits as they are.
        FastHugeArray<uint64_t> *filter;
        uint64_t wordMod;   // reduce() multiplier for the word count
        uint32_t words;
        uint32_t salt;      // decorrelates the filters of the tables
        // One byte per slot: the tag (tagOf) of the key whose chain the slot
        // holds, meaningless in a free slot.  A probe that meets another
        // key's slot nearly always tells so here, beside the slot, without
        // reading that key's node.
        FastHugeArray<uint8_t> *tags;
    };
    using AuxVector = std::vector<TableAux, vtxeh::HookAllocator<TableAux>>;

    TableVector tables;
    AuxVector tableAux;
    FastHugeArray<VTX_OTL_HASH_NODE_T> hashNodesContainer;
    StringBuffer stringBuffer;
    VTX_ULONG_T elemntsInLastHash;
    VTX_ULONG_T numOfElements;
    VTX_ULONG_T lastIndexInContainer;
    VTX_ULONG_T originalNumOfElements;
    vTX_PNETCTX_T pNetCtx;
    void *pLocale;
    ExtendedHashAllMembersIterator allMembersIt;
    VTX_BOOL_T fCaseSensitive;
    bool asciiPlainFold = false;  // asciiFoldsPlainly(): ASCII keys are folded here
    OTL_PSTRCMPFUNC_T pfnCompareFunc;
    const CRC::CRC32 *crcTable;  // the process-wide table, looked up once
};

#endif
