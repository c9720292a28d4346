// The flat functions of the extended hash.  Each is a thin call into the
// class; out of memory, which the class layer may raise as an exception, ends
// here as status 1060358.
#include "hashCWrapper.h"

#include <new>

#include "blockalloc.h"
#include "extendedhash.h"
#include "vtxstatus.h"

static_assert(sizeof(ExtendedHashIterator) <= sizeof(VTX_EXTENDED_HASH_IT_BUF_T),
              "the caller's iterator storage must hold an iterator");
static_assert(alignof(ExtendedHashIterator) <= alignof(VTX_EXTENDED_HASH_IT_BUF_T),
              "the caller's iterator storage must be aligned for an iterator");
static_assert(std::is_trivially_copyable_v<ExtendedHashIterator> &&
                  std::is_trivially_destructible_v<ExtendedHashIterator>,
              "an iterator lives in plain caller storage");

namespace {
ExtendedHash *H(VTX_PEXTENDED_HASH_T p) { return reinterpret_cast<ExtendedHash *>(p); }
ExtendedHashIterator *It(VTX_PEXTENDED_HASH_IT_T p) { return reinterpret_cast<ExtendedHashIterator *>(p); }
ExtendedHashAllMembersIterator *AllIt(VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T p) {
    return reinterpret_cast<ExtendedHashAllMembersIterator *>(p);
}
VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T Handle(ExtendedHashAllMembersIterator *p) {
    return reinterpret_cast<VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T>(p);
}
} // namespace

extern "C" {

VTX_API VTX_STS_T extendedHashInitWithSize(VTX_PEXTENDED_HASH_T *ppHash, vTX_PNETCTX_T pNetCtx,
                                           void *pLocale, VTX_ULONG_T numberOfStrings,
                                           VTX_BOOL_T fCaseSensitive) {
    if (!ppHash) return VTX_STS_NULL_ARG;
    *ppHash = nullptr;
    ExtendedHash *hash =
        vtxeh::newObject<ExtendedHash>(pNetCtx, pLocale, numberOfStrings, fCaseSensitive);
    if (!hash) return vtxehNoMemory(pNetCtx, "extendedHashInitWithSize");
    *ppHash = reinterpret_cast<VTX_PEXTENDED_HASH_T>(hash);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T extendedHashFree(VTX_PEXTENDED_HASH_T pHash) {
    vtxeh::deleteObject(H(pHash));
    return VTX_STS_OK;
}

VTX_API VTX_STS_T extendedHashInsert(VTX_PEXTENDED_HASH_T pHash, VTX_ULONG_T hashItemIndex,
                                     const char *key, HASH_NUM_T *hNum, HASH_POS_T *hPos) {
    return extendedHashInsertOwned(pHash, hashItemIndex, key, nullptr, hNum, hPos);
}

VTX_API VTX_STS_T extendedHashInsertOwned(VTX_PEXTENDED_HASH_T pHash, VTX_ULONG_T hashItemIndex,
                                          const char *key, void *pOwner, HASH_NUM_T *hNum,
                                          HASH_POS_T *hPos) {
    if (!pHash || !key || !hNum || !hPos) return VTX_STS_NULL_ARG;
    try {
        return H(pHash)->insert(hashItemIndex, key, *hNum, *hPos, pOwner);
    } catch (...) {
        // Only growth can raise, and only for want of memory.
        return vtxehNoMemory(H(pHash)->context(), "extendedHashInsert");
    }
}

VTX_API VTX_STS_T extendedHashGetPos(VTX_PEXTENDED_HASH_T pHash, const char *key,
                                     HASH_NUM_T *hashNum, HASH_POS_T *hashPos) {
    if (!pHash) return VTX_STS_OK;
    if (!key || !hashNum || !hashPos) return VTX_STS_NULL_ARG;
    return H(pHash)->getPos(key, *hashNum, *hashPos);
}

VTX_API VTX_STS_T extendedHashGetPosAndIterator(VTX_PEXTENDED_HASH_T pHash, const char *key,
                                                HASH_NUM_T *hashNum, HASH_POS_T *hashPos,
                                                VTX_PEXTENDED_HASH_IT_T it) {
    if (!pHash) return VTX_STS_OK;
    if (!key || !hashNum || !hashPos || !it) return VTX_STS_NULL_ARG;
    return H(pHash)->getPos(key, *hashNum, *hashPos, *new (it) ExtendedHashIterator);
}

VTX_API VTX_STS_T extendedHashCopy(VTX_PEXTENDED_HASH_T pSource, VTX_PEXTENDED_HASH_T pDest) {
    if (!pSource || !pDest) return VTX_STS_NULL_ARG;
    try {
        return H(pDest)->copy(*H(pSource));
    } catch (...) {
        return vtxehNoMemory(H(pDest)->context(), "extendedHashCopy");
    }
}

VTX_API VTX_ULONG_T extendedHashGetNumOfElements(VTX_PEXTENDED_HASH_T pHash) {
    return pHash ? H(pHash)->size() : 0;
}

VTX_API size_t extendedhashGetIteratorSize(void) { return sizeof(ExtendedHashIterator); }

VTX_API VTX_STS_T extendedHashInitIterator(VTX_PEXTENDED_HASH_T pHash, VTX_PEXTENDED_HASH_IT_T it,
                                           HASH_NUM_T hashNum, HASH_POS_T hashPos) {
    if (hashNum == NODE_INDEX_NA || hashNum == NODE_INDEX_DEL) return 1;
    if (!pHash || !it) return VTX_STS_NULL_ARG;
    ExtendedHash *hash = H(pHash);
    VTX_EH_ASSERT(hashNum < hash->tableCount() && hashPos < hash->tableSize(hashNum));
    (new (it) ExtendedHashIterator)->init(hash, hashNum, hashPos);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T extendedHashInitItFromAllMemberIt(VTX_PEXTENDED_HASH_IT_T it,
                                                    VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T allIt) {
    if (!it || !allIt) return VTX_STS_NULL_ARG;
    (new (it) ExtendedHashIterator)->init(AllIt(allIt));
    return VTX_STS_OK;
}

VTX_API VTX_BOOL_T extendedHashItEnd(VTX_PEXTENDED_HASH_IT_T it) {
    return !it || It(it)->end() ? VTX_TRUE : VTX_FALSE;
}

VTX_API VTX_STS_T extendedHashItIncrement(VTX_PEXTENDED_HASH_IT_T it) {
    if (!it) return VTX_STS_NULL_ARG;
    ++*It(it);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T extendedHashItSetDeleted(VTX_PEXTENDED_HASH_IT_T it) {
    if (!it) return VTX_STS_NULL_ARG;
    return It(it)->setDeleted() ? VTX_STS_OK : 1;
}

VTX_API VTX_STR_T extendedHashItGetStr(VTX_PEXTENDED_HASH_IT_T it) {
    return it ? It(it)->getStr() : nullptr;
}

VTX_API VTX_ULONG_T extendedHashItGetHashItemIndex(VTX_PEXTENDED_HASH_IT_T it) {
    return it ? It(it)->getHashItemIndex() : NODE_INDEX_NA;
}

VTX_API void *extendedHashItGetOwner(VTX_PEXTENDED_HASH_IT_T it) {
    return it ? It(it)->getOwner() : nullptr;
}

VTX_API VTX_BOOL_T extendedHashItGetEntry(VTX_PEXTENDED_HASH_IT_T it, VTX_STR_T *pStr, VTX_ULONG_T *pIndex,
                                          void **ppOwner) {
    const VTX_OTL_HASH_NODE_T *node = it ? It(it)->otlHashNode : nullptr;
    if (!node) return VTX_FALSE;
    if (pStr) *pStr = node->str;
    if (pIndex) *pIndex = node->hashItemIndex;
    if (ppOwner) *ppOwner = node->pOwner;
    return VTX_TRUE;
}

VTX_API VTX_STS_T extendedHashGetAllMembersIterator(VTX_PEXTENDED_HASH_T pHash,
                                                    VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T *ppIt) {
    if (!ppIt) return VTX_STS_NULL_ARG;
    *ppIt = nullptr;
    if (!pHash) return VTX_STS_NULL_ARG;
    VTX_STS_T sts = VTX_STS_OK;
    ExtendedHashAllMembersIterator *allIt = H(pHash)->getAllMembersIterator(&sts);
    if (sts != VTX_STS_OK) return vtxehNoMemory(allIt->pNetCtx, "extendedHashGetAllMembersIterator");
    *ppIt = Handle(allIt);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T extendedHashAllocateAllMembersIterator(VTX_PEXTENDED_HASH_T pHash,
                                                         vTX_PNETCTX_T pNetCtx,
                                                         VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T *ppIt) {
    if (!ppIt) return VTX_STS_NULL_ARG;
    *ppIt = nullptr;
    if (!pHash) return VTX_STS_NULL_ARG;
    ExtendedHashAllMembersIterator *allIt = vtxeh::newObject<ExtendedHashAllMembersIterator>(pNetCtx);
    if (!allIt) return vtxehNoMemory(pNetCtx, "extendedHashAllocateAllMembersIterator");
    if (allIt->init(H(pHash)) != VTX_STS_OK) {
        vtxeh::deleteObject(allIt);
        return vtxehNoMemory(pNetCtx, "extendedHashAllocateAllMembersIterator");
    }
    *ppIt = Handle(allIt);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T extendedHashFreeAllMembersIterator(VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T it) {
    vtxeh::deleteObject(AllIt(it));
    return VTX_STS_OK;
}

VTX_API VTX_BOOL_T extendedHashAllMembersItEnd(VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T it) {
    return !it || AllIt(it)->end() ? VTX_TRUE : VTX_FALSE;
}

VTX_API VTX_STS_T extendedHashAllMembersItIncrement(VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T it) {
    if (!it) return VTX_STS_NULL_ARG;
    ++*AllIt(it);
    return VTX_STS_OK;
}

VTX_API VTX_STR_T extendedHashAllMembersItGetStr(VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T it) {
    return it ? AllIt(it)->getStr() : nullptr;
}

VTX_API VTX_ULONG_T extendedHashAllMembersItGetHashItemIndex(VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T it) {
    return it ? AllIt(it)->getHashItemIndex() : NODE_INDEX_NA;
}

} // extern "C"
