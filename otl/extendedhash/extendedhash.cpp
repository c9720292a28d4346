#include "extendedhash.h"

#include <cstring>
#include <new>

#include "blockalloc.h"
#include "crc.h"
#include "vtxhostsvc.h"
#include "vtxstatus.h"

namespace {

// Table sizes.  The order is kept as it has always been, 2750000051 before
// 2500000001 included: sizes are picked as "the first entry above", so the
// order decides which table a hash gets, and table sizes decide slots.
const unsigned long long g_primeList[] = {
    53ull,         61ull,         71ull,         83ull,         97ull,         101ull,
    193ull,        211ull,        307ull,        389ull,        401ull,        503ull,
    601ull,        701ull,        769ull,        809ull,        907ull,        1009ull,
    1543ull,       2003ull,       3001ull,       3079ull,       4001ull,       5003ull,
    6007ull,       6151ull,       7001ull,       8009ull,       9001ull,       10007ull,
    12289ull,      20011ull,      24593ull,      30011ull,      40009ull,      49157ull,
    50021ull,      60013ull,      70001ull,      80021ull,      90001ull,      98317ull,
    100049ull,     120011ull,     140009ull,     160001ull,     180001ull,     196613ull,
    200003ull,     220009ull,     250007ull,     275003ull,     300007ull,     330017ull,
    360007ull,     393241ull,     400009ull,     450001ull,     500009ull,     600011ull,
    700001ull,     786433ull,     800011ull,     900001ull,     1000003ull,    1200007ull,
    1400017ull,    1572869ull,    1800017ull,    2000003ull,    2300003ull,    2600011ull,
    3000017ull,    3145739ull,    3300001ull,    3600001ull,    4000037ull,    4500007ull,
    5000011ull,    6000011ull,    6291469ull,    7000003ull,    8000009ull,    9000011ull,
    10000019ull,   12582917ull,   15000017ull,   17500013ull,   20000003ull,   22500011ull,
    25165843ull,   27000011ull,   30000001ull,   35000011ull,   40000003ull,   45000017ull,
    50000017ull,   50331653ull,   60000011ull,   70000027ull,   80000023ull,   90000049ull,
    100000007ull,  100663319ull,  120000007ull,  140000041ull,  160000003ull,  180000017ull,
    200000033ull,  201326611ull,  225000011ull,  250000013ull,  275000051ull,  300000007ull,
    335000009ull,  370000003ull,  400000009ull,  402653189ull,  450000007ull,  500000003ull,
    600000001ull,  700000001ull,  800000011ull,  805306457ull,  900000011ull,  1000000007ull,
    1200000041ull, 1610612741ull, 1800000011ull, 2000000011ull, 2250000017ull, 2750000051ull,
    2500000001ull, 3000000019ull, 3221225473ull, 3750000043ull, 4000000007ull, 4294967291ull,
};
constexpr size_t PRIME_COUNT = sizeof(g_primeList) / sizeof(g_primeList[0]);
static_assert(PRIME_COUNT == 138, "the table size list has 138 entries");

// A hash asked for no strings at all would add a table of 53 slots at every
// growth; it is sized as for this many instead.  A table is held in whole
// blocks of 65536 slots, so a first table this small costs no more memory
// than the smallest one, and a large hash needs fewer generations to search.
constexpr VTX_ULONG_T MIN_STRINGS = 30000;
constexpr unsigned long INITIAL_NODES = 10000;
constexpr unsigned long NODE_GROWTH = 100000;
// Keys whose fold fits here are folded on the stack.
constexpr size_t FOLD_STACK_BYTES = 4100;

void *takeTemp(vTX_PNETCTX_T ctx, size_t size, VTX_STS_T *pSts) {
    void *p = nullptr;
    if (ctx) {
        *pSts = otlAlloc(ctx, size, &p);
        return *pSts ? nullptr : p;
    }
    p = vtxBlockAlloc(size, VTX_BLOCKALLOC_BLOCK);
    *pSts = p ? VTX_STS_OK : VTX_STS_NO_MEMORY;
    return p;
}

void giveBackTemp(vTX_PNETCTX_T ctx, void *p) {
    if (!p) return;
    if (ctx)
        (void)otlFreeMem(ctx, p);
    else
        vtxBlockFree(p, VTX_BLOCKALLOC_BLOCK);
}

} // namespace

// One key on its way through the tables.
struct ExtendedHash::Probe {
    const char *key;         // as the caller gave it
    const char *keyForHash;  // folded when case-insensitive, else key
    size_t keySize;          // bytes of keyForHash
    unsigned int crc;
    VTX_ULONG_T h2;
    bool haveH2;
    VTX_ULONG_T head = NODE_INDEX_NA;  // on a hit: the chain's head node
    uint8_t tag = 0;                   // tagOf(crc)
    // The key is ASCII and folds letter by letter (see asciiFoldsPlainly):
    // keyForHash is the key itself, read upper-cased, and crc is known.
    bool asciiUpper = false;
};

// ---- hash values ------------------------------------------------------------

unsigned int ExtendedHash::crcOf(const char *text, size_t len) {
    return CRC::CRC32::instance().crc(text, len);
}

namespace {

// The second hash of a text; with UPPER, of its ASCII upper-case form.
template <bool UPPER>
VTX_ULONG_T secondHashOf(const char *text, size_t len) {
    auto step = [](uint64_t h, char c) {
        if (UPPER) c = CRC::CRC32::upperAscii(c);
        // Bytes count as signed here, unlike in the CRC.
        return (h >> 27) ^ (h << 5) ^ static_cast<uint64_t>(static_cast<int64_t>(static_cast<signed char>(c)));
    };
    uint64_t h = len;
    size_t i = 0;
    for (; i + 4 <= len; i += 4)
        h = step(step(step(step(h, text[i]), text[i + 1]), text[i + 2]), text[i + 3]);
    for (; i < len; ++i) h = step(h, text[i]);
    return static_cast<VTX_ULONG_T>(h);
}

} // namespace

VTX_ULONG_T ExtendedHash::secondHash(const char *text, size_t len) { return secondHashOf<false>(text, len); }

VTX_ULONG_T ExtendedHash::secondHashUpperAscii(const char *text, size_t len) {
    return secondHashOf<true>(text, len);
}

const unsigned long long *ExtendedHash::primeList(size_t *count) {
    if (count) *count = PRIME_COUNT;
    return g_primeList;
}

VTX_ULONG_T ExtendedHash::primeAbove(VTX_ULONG_T target) {
    for (size_t i = 0; i < PRIME_COUNT; ++i)
        if (g_primeList[i] > target) return static_cast<VTX_ULONG_T>(g_primeList[i]);
    return static_cast<VTX_ULONG_T>(g_primeList[PRIME_COUNT - 1]);
}

// ---- life -----------------------------------------------------------------

ExtendedHash::ExtendedHash(vTX_PNETCTX_T ctx, void *locale, VTX_ULONG_T numberOfStrings,
                           VTX_BOOL_T caseSensitive)
    : tables(),
      tableAux(),
      hashNodesContainer(),
      stringBuffer(ctx),
      elemntsInLastHash(0),
      numOfElements(0),
      lastIndexInContainer(0),
      originalNumOfElements(numberOfStrings ? numberOfStrings : MIN_STRINGS),
      pNetCtx(ctx),
      pLocale(locale),
      allMembersIt(ctx),
      fCaseSensitive(caseSensitive ? 1 : 0),
      pfnCompareFunc(caseSensitive ? otlStrcmp : otlStricmp),
      crcTable(&CRC::CRC32::instance()) {
    asciiPlainFold = !fCaseSensitive && asciiFoldsPlainly();
    VTX_ULONG_T doubled = originalNumOfElements * 2u;  // 32-bit on purpose
    if (!addTable(primeAbove(doubled)) || !hashNodesContainer.allocate(INITIAL_NODES, 0)) {
        clear();
        throw std::bad_alloc();
    }
}

ExtendedHash::~ExtendedHash() { clear(); }

void ExtendedHash::clear() {
    for (FastHugeArray<unsigned int> *t : tables) vtxeh::deleteObject(t);
    for (TableAux &aux : tableAux) {
        vtxeh::deleteObject(aux.filter);
        vtxeh::deleteObject(aux.tags);
    }
    tables.clear();
    tableAux.clear();
    hashNodesContainer.deallocate();
    elemntsInLastHash = 0;
    numOfElements = 0;
    lastIndexInContainer = 0;
    allMembersIt.finish();
}

bool ExtendedHash::asciiFoldsPlainly() const {
    // Every ASCII character in one text: the locale folds ASCII plainly
    // when each comes back as itself, letters a-z as A-Z.  An ASCII text
    // has no context that could change that (the contextual rules of case
    // mapping all involve characters beyond ASCII), so such a locale's fold
    // of any ASCII key is known without asking it.
    char in[128], out[2 * sizeof in + 1];
    for (int c = 1; c < 128; ++c) in[c - 1] = static_cast<char>(c);
    in[127] = '\0';
    if (adGlobStrNToUpper(pLocale, out, in, sizeof out) != VTX_STS_OK) return false;
    for (int c = 1; c < 128; ++c) {
        if (out[c - 1] != CRC::CRC32::upperAscii(static_cast<char>(c))) return false;
    }
    return out[127] == '\0';
}

bool ExtendedHash::fillFirstFilter() {
    // Every live node stands in the first table while it is the only one;
    // a follower shares its head's CRC, so marking it again changes nothing.
    FastHugeArray<uint64_t> &filter = *tableAux[0].filter;
    for (uint32_t w = 0; w < tableAux[0].words; ++w)
        if (!filter.materialize(w)) return false;
    for (VTX_ULONG_T i = 0; i < lastIndexInContainer; ++i) {
        const VTX_OTL_HASH_NODE_T &node = hashNodesContainer[i];
        if (!node.str) continue;
        const FilterKey key = filterKeyOf(node.ulKeyCrc);
        filter[filterWord(key, 0)] &= ~key.bits;
    }
    return true;
}

bool ExtendedHash::addTable(VTX_ULONG_T prime) {
    // A lone table's filter is never asked (see setItemInPos): it is made
    // now that a second table comes.
    if (tables.size() == 1 && !fillFirstFilter()) return false;
    // About eight filter bits for each key a half-full table holds.
    const uint32_t words = prime / 16 + 1;
    FastHugeArray<unsigned int> *t = vtxeh::newObject<FastHugeArray<unsigned int>>();
    FastHugeArray<uint64_t> *f = vtxeh::newObject<FastHugeArray<uint64_t>>();
    FastHugeArray<uint8_t> *g = vtxeh::newObject<FastHugeArray<uint8_t>>();
    bool ok = t && f && g;
    try {
        if (ok) {
            tables.reserve(tables.size() + 1);
            tableAux.reserve(tableAux.size() + 1);
        }
    } catch (const std::bad_alloc &) {
        ok = false;
    }
    ok = ok && t->allocateLazyAllOnes(prime) && f->allocateLazyAllOnes(words) &&
         g->allocateLazyAllOnes(prime);
    if (!ok) {
        vtxeh::deleteObject(t);
        vtxeh::deleteObject(f);
        vtxeh::deleteObject(g);
        return false;
    }
    tables.push_back(t);
    const uint32_t salt = static_cast<uint32_t>(tables.size()) * 0x9E3779B9u;
    tableAux.push_back(TableAux{modMultiplier(prime), f, modMultiplier(words), words, salt, g});
    elemntsInLastHash = 0;
    return true;
}

VTX_STS_T ExtendedHash::createNewHash(VTX_ULONG_T prime) {
    if (!addTable(prime)) return vtxehNoMemory(pNetCtx, "createNewHash");
    return VTX_STS_OK;
}

// ---- folding and comparing ------------------------------------------------

VTX_STS_T ExtendedHash::foldInto(const char *text, size_t len, char *stackBuf, size_t stackSize,
                                 char **ppOut, size_t *pOutLen) const {
    // Upper-casing may lengthen a multibyte text; twice the length is the
    // locale service's promise, and a text that still does not fit is tried
    // once more with room for the longest single-character expansions.
    *ppOut = nullptr;
    *pOutLen = len;
    size_t capacity = 2 * len + 1;
    for (int attempt = 0; attempt < 2; ++attempt) {
        VTX_STS_T sts = VTX_STS_OK;
        char *buf = capacity <= stackSize ? stackBuf : static_cast<char *>(takeTemp(pNetCtx, capacity, &sts));
        if (!buf) return sts;
        sts = adGlobStrNToUpper(pLocale, buf, text, capacity);
        if (sts == VTX_STS_OK) {
            *ppOut = buf;
            *pOutLen = std::strlen(buf);
            return VTX_STS_OK;
        }
        if (buf != stackBuf) giveBackTemp(pNetCtx, buf);
        if (sts != VTX_STS_TEXT_TOO_LONG) break;
        capacity = 4 * len + 1;
    }
    // A text the locale cannot read has no case: it compares by its bytes
    // (so the comparison says), and is hashed by them.
    return VTX_STS_OK;
}

void ExtendedHash::releaseFold(char *buf, char *stackBuf) const {
    if (buf && buf != stackBuf) giveBackTemp(pNetCtx, buf);
}

inline bool ExtendedHash::keysEqual(Probe &probe, const VTX_OTL_HASH_NODE_T &node) const {
    // Keys of one chain share their CRC; nearly every other key is turned
    // away here without reading its text.
    if (node.ulKeyCrc != probe.crc || !node.str) return false;
    // The same bytes are the same key under either rule; only a
    // case-insensitive hash has more to ask when they differ.
    if (std::strcmp(probe.key, node.str) == 0) return true;
    return !fCaseSensitive && foldedEqual(probe, node);
}

bool ExtendedHash::foldedEqual(Probe &probe, const VTX_OTL_HASH_NODE_T &node) const {
    // Equal ignoring case exactly when the upper-case forms are equal, and
    // the probe's form is at hand already.
    char stackBuf[FOLD_STACK_BYTES];
    char *folded = nullptr;
    size_t foldedLen = 0;
    if (foldInto(node.str, std::strlen(node.str), stackBuf, sizeof stackBuf, &folded, &foldedLen) !=
            VTX_STS_OK ||
        !folded)
        return pfnCompareFunc(pNetCtx, probe.key, node.str) == 0;
    bool equal = foldedLen == probe.keySize;
    if (equal && probe.asciiUpper) {
        for (size_t i = 0; equal && i < foldedLen; ++i) equal = folded[i] == CRC::CRC32::upperAscii(probe.key[i]);
    } else if (equal) {
        equal = std::memcmp(folded, probe.keyForHash, foldedLen) == 0;
    }
    releaseFold(folded, stackBuf);
    return equal;
}

// ---- probing ----------------------------------------------------------------

ExtendedHash::Found ExtendedHash::findQuadratic(Probe &probe, HASH_NUM_T hashNum, uint32_t pos,
                                                uint32_t value, HASH_POS_T &hashPos) const {
    // The first slot (pos, holding value) did not decide: it holds another
    // key, or an emptied chain.
    const FastHugeArray<unsigned int> &table = *tables[hashNum];
    const FastHugeArray<uint8_t> &tags = *tableAux[hashNum].tags;
    const uint32_t tableSize = static_cast<uint32_t>(table.getSize());
    const uint64_t mod = tableAux[hashNum].slotMod;
    uint32_t firstFree = NODE_INDEX_NA;
    bool haveFree = false;
    if (value == NODE_INDEX_DEL) {
        firstFree = pos;
        haveFree = true;
    }
    if (!probe.haveH2) {
        probe.h2 = probe.asciiUpper ? secondHashUpperAscii(probe.key, probe.keySize)
                                    : secondHash(probe.keyForHash, probe.keySize);
        probe.haveH2 = true;
    }
    pos = pos + probe.h2;
    if (pos >= tableSize) pos = reduce(pos, mod, tableSize);
    // The distance from the second probe grows by 1, 3, 5, ...  The load
    // rule keeps a table at most half full (plus one), so an empty slot ends
    // the walk; the bound only keeps a table that broke that rule from
    // spinning for ever.
    const uint64_t limit = 2ull * tableSize + 2;
    for (uint64_t k = 2; (value = table[pos]) != NODE_INDEX_NA; k += 2) {
        if (value == NODE_INDEX_DEL) {
            if (!haveFree) {
                firstFree = pos;
                haveFree = true;
            }
        } else if (tags[pos] == probe.tag && keysEqual(probe, hashNodesContainer[value])) {
            hashPos = pos;
            probe.head = value;
            return Found::Yes;
        }
        if (k > limit) {
            hashPos = haveFree ? firstFree : NODE_INDEX_NA;
            return haveFree ? Found::Free : Found::NoRoom;
        }
        pos = pos + static_cast<uint32_t>(k - 1);
        if (pos >= tableSize) pos = reduce(pos, mod, tableSize);
    }
    hashPos = haveFree ? firstFree : pos;
    return Found::Free;
}

// Makes the probe's key ready to hash and computes its CRC.  A
// case-insensitive key is folded; upper-casing may lengthen a text, to twice
// its bytes as the locale service promises, so a key whose fold may need
// more than the stack buffer is folded in a buffer of its own, which *ppHeap
// hands back for releaseFold.
[[gnu::always_inline]] inline VTX_STS_T ExtendedHash::hashKey(Probe &probe, char *stackBuf, char **ppHeap) const {
    probe.keySize = std::strlen(probe.key);
    if (!fCaseSensitive) {
        if (asciiPlainFold && crcTable->crcUpperAscii(probe.key, probe.keySize, &probe.crc)) {
            probe.asciiUpper = true;
            return VTX_STS_OK;
        }
        if (2 * probe.keySize + 1 <= FOLD_STACK_BYTES &&
            adGlobStrNToUpper(pLocale, stackBuf, probe.key, 2 * probe.keySize + 1) == VTX_STS_OK) {
            probe.keyForHash = stackBuf;
            probe.keySize = std::strlen(stackBuf);
        } else if (VTX_STS_T sts = foldLongKey(probe, stackBuf, ppHeap)) {
            return sts;
        }
    }
    probe.crc = crcTable->crc(probe.keyForHash, probe.keySize);
    return VTX_STS_OK;
}

VTX_STS_T ExtendedHash::foldLongKey(Probe &probe, char *stackBuf, char **ppHeap) const {
    char *folded = nullptr;
    VTX_STS_T sts = foldInto(probe.key, probe.keySize, stackBuf, FOLD_STACK_BYTES, &folded, &probe.keySize);
    if (sts != VTX_STS_OK) return sts;
    // A text the locale cannot fold is hashed by its bytes.
    if (folded) probe.keyForHash = folded;
    if (folded != stackBuf) *ppHeap = folded;
    return VTX_STS_OK;
}

[[gnu::always_inline]] inline VTX_STS_T ExtendedHash::lookup(const char *key, HASH_NUM_T &hashNum,
                                                             HASH_POS_T &hashPos, unsigned int *pCrc,
                                                             VTX_ULONG_T *pHead) const {
    hashNum = NODE_INDEX_NA;
    Probe probe{key, key, 0, 0, 0, false};
    char stackBuf[FOLD_STACK_BYTES];
    char *heapBuf = nullptr;
    VTX_STS_T sts = hashKey(probe, stackBuf, &heapBuf);
    if (sts != VTX_STS_OK) return sts;
    search(probe, hashNum, hashPos);
    if (heapBuf) releaseFold(heapBuf, stackBuf);
    if (pCrc) *pCrc = probe.crc;
    if (pHead) *pHead = probe.head;
    return VTX_STS_OK;
}

inline ExtendedHash::Found ExtendedHash::probeTable(Probe &probe, HASH_NUM_T g, uint32_t pos,
                                                    HASH_POS_T &hashPos) const {
    const uint32_t value = (*tables[g])[pos];
    if (value == NODE_INDEX_NA) {
        hashPos = pos;
        return Found::Free;
    }
    if (value != NODE_INDEX_DEL && (*tableAux[g].tags)[pos] == probe.tag &&
        keysEqual(probe, hashNodesContainer[value])) {
        hashPos = pos;
        probe.head = value;
        return Found::Yes;
    }
    return findQuadratic(probe, g, pos, value, hashPos);
}

inline uint32_t ExtendedHash::firstSlot(const Probe &probe, HASH_NUM_T g) const {
    return reduce(probe.crc, tableAux[g].slotMod, static_cast<uint32_t>(tables[g]->getSize()));
}

inline ExtendedHash::FilterKey ExtendedHash::filterKeyOf(unsigned int crc) {
    const uint64_t x = static_cast<uint64_t>(crc) * 0x9E3779B97F4A7C15ull;
    return FilterKey{(uint64_t(1) << (x & 63)) | (uint64_t(1) << ((x >> 6) & 63)), static_cast<uint32_t>(x >> 32)};
}

inline uint32_t ExtendedHash::filterWord(const FilterKey &key, HASH_NUM_T g) const {
    const TableAux &aux = tableAux[g];
    return reduce(key.word ^ aux.salt, aux.wordMod, aux.words);
}

inline bool ExtendedHash::mayHold(unsigned int crc, HASH_NUM_T g) const {
    const FilterKey key = filterKeyOf(crc);
    return ((*tableAux[g].filter)[filterWord(key, g)] & key.bits) == 0;
}

[[gnu::always_inline]] inline void ExtendedHash::search(Probe &probe, HASH_NUM_T &hashNum,
                                                        HASH_POS_T &hashPos) const {
    probe.tag = tagOf(probe.crc);
    const size_t n = tables.size();
    if (n == 1) {
        // One table: its answer is the answer, found or where to insert.
        HASH_POS_T pos;
        const uint32_t first = firstSlot(probe, 0);
        if (probeTable(probe, 0, first, pos) == Found::Yes) hashNum = 0;
        hashPos = pos;
        return;
    }
    // With no table at all there is no slot to offer either.
    hashPos = NODE_INDEX_NA;
    if (n != 0) searchTables(probe, hashNum, hashPos);
}

void ExtendedHash::searchTables(Probe &probe, HASH_NUM_T &hashNum, HASH_POS_T &hashPos) const {
    const HASH_NUM_T n = static_cast<HASH_NUM_T>(tables.size());
    HASH_POS_T pos;
    // A key stands in one table only, so the order of the search does not
    // change its answer.  The table holding the most keys goes first: the
    // newest one once it has passed the half of the one before it (which
    // holds about as many as all older tables together), else the one
    // before.  Then newest to oldest.
    const HASH_NUM_T best = 2ull * elemntsInLastHash < tables[n - 2]->getSize() ? n - 2 : n - 1;
    auto order = [n, best](HASH_NUM_T i) -> HASH_NUM_T {
        return i == 0 ? best : (n - i <= best ? n - 1 - i : n - i);
    };
    bool newestProbed = false;
    constexpr HASH_NUM_T AHEAD = 64;
    if (n <= AHEAD) {
        // Everything the search may need is known now: ask for it at once,
        // so that the cache misses of a dozen tables overlap instead of
        // queueing: the slots and tags of the three tables that hold the
        // most keys (some four in five of them; the newest is also wanted
        // for the insert's slot) and every table's filter word.
        uint32_t first[AHEAD];
        const uint64_t *word[AHEAD];
        const FilterKey key = filterKeyOf(probe.crc);
        const HASH_NUM_T third = n >= 3 ? order(2) : best;
        for (HASH_NUM_T g : {best, n - 1, third}) {
            first[g] = firstSlot(probe, g);
            __builtin_prefetch(&(*tables[g])[first[g]]);
            __builtin_prefetch(&(*tableAux[g].tags)[first[g]]);
        }
        for (HASH_NUM_T g = 0; g < n; ++g) {
            word[g] = &(*tableAux[g].filter)[filterWord(key, g)];
            __builtin_prefetch(word[g]);
        }
        for (HASH_NUM_T i = 0; i < n; ++i) {
            const HASH_NUM_T g = order(i);
            if (*word[g] & key.bits) continue;
            if (g != best && g != n - 1 && g != third) first[g] = firstSlot(probe, g);
            if (probeTable(probe, g, first[g], pos) == Found::Yes) {
                hashNum = g;
                hashPos = pos;
                return;
            }
            if (g == n - 1) {
                hashPos = pos;
                newestProbed = true;
            }
        }
    } else {
        for (HASH_NUM_T i = 0; i < n; ++i) {
            const HASH_NUM_T g = order(i);
            if (!mayHold(probe.crc, g)) continue;
            if (probeTable(probe, g, firstSlot(probe, g), pos) == Found::Yes) {
                hashNum = g;
                hashPos = pos;
                return;
            }
            if (g == n - 1) {
                hashPos = pos;
                newestProbed = true;
            }
        }
    }
    // Absent.  What the newest table answers is where an insert will put
    // the key.
    if (!newestProbed) {
        (void)probeTable(probe, n - 1, firstSlot(probe, n - 1), pos);
        hashPos = pos;
    }
}

VTX_STS_T ExtendedHash::keyCrcOf(const char *key, unsigned int *pCrc) const {
    Probe probe{key, key, 0, 0, 0, false};
    char stackBuf[FOLD_STACK_BYTES];
    char *heapBuf = nullptr;
    VTX_STS_T sts = hashKey(probe, stackBuf, &heapBuf);
    if (sts != VTX_STS_OK) return sts;
    if (heapBuf) releaseFold(heapBuf, stackBuf);
    *pCrc = probe.crc;
    return VTX_STS_OK;
}

VTX_STS_T ExtendedHash::getPos(const char *key, HASH_NUM_T &hashNum, HASH_POS_T &hashPos) const {
    return lookup(key, hashNum, hashPos, nullptr, nullptr);
}

VTX_STS_T ExtendedHash::getPos(const char *key, HASH_NUM_T &hashNum, HASH_POS_T &hashPos,
                               ExtendedHashIterator &it) {
    VTX_ULONG_T head = NODE_INDEX_NA;
    VTX_STS_T sts = lookup(key, hashNum, hashPos, nullptr, &head);
    if (sts == VTX_STS_OK && hashNum != NODE_INDEX_NA) it.initAt(this, hashNum, hashPos, head);
    return sts;
}

// ---- inserting --------------------------------------------------------------

VTX_STS_T ExtendedHash::prepareInsert(HASH_NUM_T hNum, HASH_POS_T hPos, unsigned int keyCrc) {
    // Every allocation an insert needs is made before anything changes, so a
    // refusal leaves the hash exactly as it was.
    if (lastIndexInContainer >= NODE_INDEX_DEL - 1) return vtxehNoMemory(pNetCtx, "setItemInPos");
    if (lastIndexInContainer == hashNodesContainer.getSize()) {
        size_t have = hashNodesContainer.getSize();
        bool ok = have == 0 ? hashNodesContainer.allocate(NODE_GROWTH, 0)
                            : hashNodesContainer.reallocate(have + NODE_GROWTH, 0);
        if (!ok) return vtxehNoMemory(pNetCtx, "setItemInPos");
    }
    if (!tables[hNum]->materialize(hPos) || !tableAux[hNum].tags->materialize(hPos))
        return vtxehNoMemory(pNetCtx, "setItemInPos");
    // A new head also marks its key in the table's filter (a lone table's
    // filter is made when a second table comes).
    if (tables.size() > 1 && (*tables[hNum])[hPos] >= NODE_INDEX_DEL &&
        !tableAux[hNum].filter->materialize(filterWord(filterKeyOf(keyCrc), hNum)))
        return vtxehNoMemory(pNetCtx, "setItemInPos");
    return VTX_STS_OK;
}

void ExtendedHash::setItemInPos(VTX_ULONG_T hashItemIndex, const char *key, HASH_NUM_T hNum,
                                HASH_POS_T hPos, unsigned int keyCrc, void *pOwner) {
    FastHugeArray<unsigned int> &table = *tables[hNum];
    const VTX_ULONG_T slotValue = table[hPos];
    const VTX_ULONG_T newIndex = lastIndexInContainer;
    if (slotValue < NODE_INDEX_DEL) {
        // Append to the chain: the head knows its tail.
        VTX_OTL_HASH_NODE_T &head = hashNodesContainer[slotValue];
        VTX_OTL_HASH_NODE_T &tail =
            head.nextIndexNode == NODE_INDEX_NA ? head : hashNodesContainer[head.lastIndexNode];
        tail.nextIndexNode = newIndex;
        head.lastIndexNode = newIndex;
        keyCrc = head.ulKeyCrc;
    } else {
        table[hPos] = newIndex;
        (*tableAux[hNum].tags)[hPos] = tagOf(keyCrc);
        // Only a search over several tables asks the filters, and a lone
        // table's filter is made from the nodes when a second one comes: an
        // insert into it saves the filter's cache miss.
        if (tables.size() > 1) {
            const FilterKey key = filterKeyOf(keyCrc);
            (*tableAux[hNum].filter)[filterWord(key, hNum)] &= ~key.bits;
        }
    }
    VTX_OTL_HASH_NODE_T *hashNode = getHashNodeFromHashNodesContainer(newIndex);
    VTX_EH_ASSERT(hashNode != nullptr);
    ++lastIndexInContainer;
    hashNode->str = const_cast<VTX_STR_T>(key);
    hashNode->nextIndexNode = NODE_INDEX_NA;
    hashNode->hashItemIndex = hashItemIndex;
    hashNode->ulKeyCrc = keyCrc;
    hashNode->pOwner = pOwner;
    ++elemntsInLastHash;
    ++numOfElements;
}

VTX_STS_T ExtendedHash::insert(VTX_ULONG_T hashItemIndex, const char *key, HASH_NUM_T &hNum,
                               HASH_POS_T &hPos, void *pOwner) {
    unsigned int keyCrc = 0;
    bool haveCrc = false;
    if (hNum == NODE_INDEX_DEL) {
        VTX_STS_T sts = lookup(key, hNum, hPos, &keyCrc, nullptr);
        if (sts != VTX_STS_OK) return sts;
        haveCrc = true;
    }
    if (hNum != NODE_INDEX_NA) {
        // The key is there: chain onto it (a slot emptied since the lookup
        // takes the key as a new head, which needs its CRC).
        VTX_EH_ASSERT(hNum < tables.size() && hPos < tables[hNum]->getSize());
        if (!haveCrc && (*tables[hNum])[hPos] >= NODE_INDEX_DEL) {
            VTX_STS_T sts = keyCrcOf(key, &keyCrc);
            if (sts != VTX_STS_OK) return sts;
        }
        VTX_STS_T sts = prepareInsert(hNum, hPos, keyCrc);
        if (sts != VTX_STS_OK) return sts;
        setItemInPos(hashItemIndex, key, hNum, hPos, keyCrc, pOwner);
        return VTX_STS_OK;
    }

    if (!haveCrc) {
        // The caller looked the key up itself; its CRC is needed again for
        // the new head node, but not the probe.
        VTX_STS_T sts = keyCrcOf(key, &keyCrc);
        if (sts != VTX_STS_OK) return sts;
    }
    const size_t n = tables.size();
    const bool haveSlot = hPos != NODE_INDEX_NA;
    if (n != 0 && haveSlot) {
        hNum = static_cast<HASH_NUM_T>(n - 1);
        VTX_EH_ASSERT(hPos < tables[hNum]->getSize());
        if (static_cast<VTX_ULONG_T>(2u * elemntsInLastHash) <=
            static_cast<VTX_ULONG_T>(tables[hNum]->getSize())) {
            VTX_STS_T sts = prepareInsert(hNum, hPos, keyCrc);
            if (sts != VTX_STS_OK) return sts;
            setItemInPos(hashItemIndex, key, hNum, hPos, keyCrc, pOwner);
            return VTX_STS_OK;
        }
        // The newest table is over half full.  The key still goes where the
        // probe found room; the next table waits for the next new key.
        VTX_STS_T sts = prepareInsert(hNum, hPos, keyCrc);
        if (sts != VTX_STS_OK) return sts;
    }
    VTX_ULONG_T target = originalNumOfElements << ((n + 1) % 32);
    VTX_STS_T sts = createNewHash(primeAbove(target));
    if (sts != VTX_STS_OK) return sts;
    if (n == 0 || !haveSlot) {
        // No table, or no room on the key's path in the newest one: the new,
        // empty table takes it.
        HASH_NUM_T num;
        sts = lookup(key, num, hPos, nullptr, nullptr);
        if (sts != VTX_STS_OK) return sts;
        hNum = static_cast<HASH_NUM_T>(tables.size() - 1);
        sts = prepareInsert(hNum, hPos, keyCrc);
        if (sts != VTX_STS_OK) return sts;
    }
    setItemInPos(hashItemIndex, key, hNum, hPos, keyCrc, pOwner);
    return VTX_STS_OK;
}

// ---- nodes ------------------------------------------------------------------

VTX_POTL_HASH_NODE_T ExtendedHash::getHashNodeFromHashNodesContainer(VTX_ULONG_T nodeIndex) {
    if (nodeIndex == NODE_INDEX_NA || nodeIndex == NODE_INDEX_DEL ||
        nodeIndex >= hashNodesContainer.getSize())
        return nullptr;
    return &hashNodesContainer[nodeIndex];
}

VTX_STR_T ExtendedHash::getStrInIndex(VTX_ULONG_T nodeIndex) {
    VTX_POTL_HASH_NODE_T node = getHashNodeFromHashNodesContainer(nodeIndex);
    return node ? node->str : nullptr;
}

size_t ExtendedHash::blocksHeld() const {
    size_t n = hashNodesContainer.blockCount();
    for (const FastHugeArray<unsigned int> *t : tables) n += t->materializedBlockCount();
    for (const TableAux &aux : tableAux)
        n += aux.filter->materializedBlockCount() + aux.tags->materializedBlockCount();
    return n;
}

ExtendedHashAllMembersIterator *ExtendedHash::getAllMembersIterator(VTX_STS_T *pSts) {
    VTX_STS_T sts = allMembersIt.init(this);
    if (pSts) *pSts = sts;
    return &allMembersIt;
}

// ---- copy ---------------------------------------------------------------------

VTX_STS_T ExtendedHash::copy(const ExtendedHash &other) {
    if (&other == this) return VTX_STS_OK;
    // Everything is built aside first; only a complete duplicate replaces
    // what this hash holds.
    TableVector newTables;
    AuxVector newAux;
    FastHugeArray<VTX_OTL_HASH_NODE_T> newNodes;
    StringBuffer newStrings(other.pNetCtx);
    bool ok = true;
    try {
        newTables.reserve(other.tables.size());
        newAux.reserve(other.tableAux.size());
    } catch (const std::bad_alloc &) {
        ok = false;
    }
    for (size_t g = 0; ok && g < other.tables.size(); ++g) {
        FastHugeArray<unsigned int> *t = vtxeh::newObject<FastHugeArray<unsigned int>>();
        if (!t) {
            ok = false;
            break;
        }
        if (!t->copy(*other.tables[g])) {
            vtxeh::deleteObject(t);
            ok = false;
            break;
        }
        newTables.push_back(t);
        TableAux aux = other.tableAux[g];
        aux.filter = vtxeh::newObject<FastHugeArray<uint64_t>>();
        aux.tags = vtxeh::newObject<FastHugeArray<uint8_t>>();
        if (!aux.filter || !aux.filter->copy(*other.tableAux[g].filter) || !aux.tags ||
            !aux.tags->copy(*other.tableAux[g].tags)) {
            vtxeh::deleteObject(aux.filter);
            vtxeh::deleteObject(aux.tags);
            ok = false;
            break;
        }
        newAux.push_back(aux);
    }
    ok = ok && newNodes.copy(other.hashNodesContainer);
    for (VTX_ULONG_T i = 0; ok && i < other.lastIndexInContainer; ++i) {
        VTX_OTL_HASH_NODE_T &node = newNodes[i];
        if (!node.str) continue;
        char *text = newStrings.append(node.str, std::strlen(node.str));
        if (!text) ok = false;
        node.str = text;
    }
    if (!ok) {
        for (FastHugeArray<unsigned int> *t : newTables) vtxeh::deleteObject(t);
        for (TableAux &aux : newAux) {
            vtxeh::deleteObject(aux.filter);
            vtxeh::deleteObject(aux.tags);
        }
        return vtxehNoMemory(pNetCtx, "ExtendedHash::copy");
    }
    clear();
    tables.swap(newTables);
    tableAux.swap(newAux);
    hashNodesContainer.swap(newNodes);
    stringBuffer.swap(newStrings);
    elemntsInLastHash = other.elemntsInLastHash;
    numOfElements = other.numOfElements;
    lastIndexInContainer = other.lastIndexInContainer;
    originalNumOfElements = other.originalNumOfElements;
    pNetCtx = other.pNetCtx;
    allMembersIt.pNetCtx = other.pNetCtx;
    pLocale = other.pLocale;
    crcTable = other.crcTable;
    fCaseSensitive = other.fCaseSensitive;
    asciiPlainFold = other.asciiPlainFold;
    pfnCompareFunc = other.pfnCompareFunc;
    return VTX_STS_OK;
}

// ---- chain iterator -----------------------------------------------------------

void ExtendedHashIterator::init(ExtendedHash *hash, HASH_NUM_T num, HASH_POS_T pos) {
    initAt(hash, num, pos, hash->slot(num, pos));
}

inline void ExtendedHashIterator::initAt(ExtendedHash *hash, HASH_NUM_T num, HASH_POS_T pos, VTX_ULONG_T head) {
    extendedHash = hash;
    hashNum = num;
    hashPos = pos;
    otlHashNode = hash->getHashNodeFromHashNodesContainer(head);
    firstOtlHashNode = otlHashNode;
    otlHashNodeIndex = otlHashNode ? head : NODE_INDEX_NA;
    prevOtlHashNode = nullptr;
    prevOtlHashNodeIndex = NODE_INDEX_NA;
}

void ExtendedHashIterator::init(ExtendedHashAllMembersIterator *allIt) {
    extendedHash = allIt->extendedHash;
    hashNum = NODE_INDEX_NA;
    hashPos = NODE_INDEX_NA;
    otlHashNode = allIt->otlHashNode;
    firstOtlHashNode = otlHashNode;
    otlHashNodeIndex = NODE_INDEX_NA;
    prevOtlHashNode = nullptr;
    prevOtlHashNodeIndex = NODE_INDEX_NA;
}

ExtendedHashIterator &ExtendedHashIterator::operator++() {
    prevOtlHashNode = otlHashNode;
    prevOtlHashNodeIndex = otlHashNodeIndex;
    if (otlHashNode) {
        otlHashNodeIndex = otlHashNode->nextIndexNode;
        otlHashNode = extendedHash->getHashNodeFromHashNodesContainer(otlHashNodeIndex);
        if (!otlHashNode) otlHashNodeIndex = NODE_INDEX_NA;
    }
    return *this;
}

bool ExtendedHashIterator::setDeleted() {
    if (!otlHashNode || hashNum == NODE_INDEX_NA) return false;
    const VTX_ULONG_T deletedIndex = otlHashNodeIndex;
    const VTX_ULONG_T next = otlHashNode->nextIndexNode;
    const bool wasHead = prevOtlHashNode == nullptr;
    if (wasHead) {
        FastHugeArray<unsigned int> &table = *extendedHash->tables[hashNum];
        VTX_EH_ASSERT(table.isMaterialized(hashPos));
        table[hashPos] = next == NODE_INDEX_NA ? NODE_INDEX_DEL : next;
    } else {
        prevOtlHashNode->nextIndexNode = next;
    }
    otlHashNode->hashItemIndex = NODE_INDEX_NA;
    otlHashNode->nextIndexNode = NODE_INDEX_NA;
    otlHashNode->str = nullptr;
    otlHashNode->pOwner = nullptr;
    otlHashNode = extendedHash->getHashNodeFromHashNodesContainer(next);
    if (firstOtlHashNode->lastIndexNode == deletedIndex)
        firstOtlHashNode->lastIndexNode = prevOtlHashNodeIndex;
    if (otlHashNode && wasHead) {
        otlHashNode->lastIndexNode = firstOtlHashNode->lastIndexNode;
        firstOtlHashNode = otlHashNode;
    }
    // The iterator now stands on the next node, under that node's index, so
    // that a further step or delete sees a true predecessor.
    otlHashNodeIndex = otlHashNode ? next : NODE_INDEX_NA;
    return true;
}

// ---- all-members iterator -------------------------------------------------------

VTX_STS_T ExtendedHashAllMembersIterator::init(ExtendedHash *hash) {
    extendedHash = hash;
    finish();
    if (!memberWasVisited.allocate(hash->lastIndexInContainer, 0)) return VTX_STS_NO_MEMORY;
    if (hash->numOfElements == 0 || hash->lastIndexInContainer == 0) return VTX_STS_OK;
    otlHashNode = hash->getHashNodeFromHashNodesContainer(0);
    hashNodesContainerIndex = 1;
    if (otlHashNode && !otlHashNode->str) ++*this;
    return VTX_STS_OK;
}

ExtendedHashAllMembersIterator &ExtendedHashAllMembersIterator::operator++() {
    if (!otlHashNode) return *this;
    // The scan covers the nodes that existed when the walk began.
    const VTX_ULONG_T last = static_cast<VTX_ULONG_T>(memberWasVisited.getSize());
    const VTX_ULONG_T next = otlHashNode->nextIndexNode;
    if (next != NODE_INDEX_NA) {
        if (next < last) memberWasVisited[next] = 1;
        otlHashNode = extendedHash->getHashNodeFromHashNodesContainer(next);
        return *this;
    }
    for (;;) {
        while (hashNodesContainerIndex < last && memberWasVisited[hashNodesContainerIndex])
            ++hashNodesContainerIndex;
        if (hashNodesContainerIndex >= last) {
            finish();
            return *this;
        }
        memberWasVisited[hashNodesContainerIndex] = 1;
        VTX_POTL_HASH_NODE_T node =
            extendedHash->getHashNodeFromHashNodesContainer(hashNodesContainerIndex);
        ++hashNodesContainerIndex;
        if (node && node->str) {
            otlHashNode = node;
            return *this;
        }
    }
}
