/*
 * hashCWrapper.h -- the flat interface of the extended hash.
 *
 * An extended hash maps a text key to any number of 32-bit item indexes.
 * Items with equal keys hang on one chain, in insertion order.  The hash
 * never rehashes: when its newest table is half full, a larger one is added
 * and lookups search all tables, oldest first.  Nothing in it ever moves.
 *
 * The hash keeps the caller's key pointer and does not copy the text: a key
 * must outlive its entry.
 *
 * Lookup and insert share one probe:
 *
 *     HASH_NUM_T num = NODE_INDEX_DEL;  HASH_POS_T pos = NODE_INDEX_DEL;
 *     sts = extendedHashGetPos(h, key, &num, &pos);
 *     if (num == NODE_INDEX_NA)  ... absent ...
 *     else { VTX_EXTENDED_HASH_IT_BUF_T buf;  VTX_PEXTENDED_HASH_IT_T it = &buf;
 *            extendedHashInitIterator(h, it, num, pos);
 *            for (; !extendedHashItEnd(it); extendedHashItIncrement(it)) ... }
 *     sts = extendedHashInsert(h, itemIndex, key, &num, &pos);   // same num, pos
 *
 * Every function is safe to call from plain code: none throws, failures are
 * statuses (out of memory is 1060358, sent through the message service when
 * the context asks for messages).
 */
#ifndef VTX_EH_HASHCWRAPPER_H
#define VTX_EH_HASHCWRAPPER_H

#include <stddef.h>
#include "vtxtypes.h"
#include "vtxnetctx.h"
#include "otlmem.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef VTX_ULONG_T HASH_NUM_T;  /* a table generation, 0 the oldest */
typedef VTX_ULONG_T HASH_POS_T;  /* a slot within one table */

/* In a slot: never used, ends a probe.  As a hashNum: the key is absent. */
static const VTX_ULONG_T NODE_INDEX_NA = 0xFFFFFFFFu;
/* In a slot: its chain was emptied; probes go on past it and an insert may
 * reuse it.  As a hashNum: no lookup has run yet. */
static const VTX_ULONG_T NODE_INDEX_DEL = 0xFFFFFFFEu;

/* Opaque handles; untyped, like the outline fields that hold them. */
typedef void *VTX_PEXTENDED_HASH_T;
typedef void *VTX_PEXTENDED_HASH_IT_T;
typedef void *VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T;

/* Storage for one chain iterator in the caller's frame; its size is at
 * least extendedhashGetIteratorSize(). */
typedef struct vtx_extended_hash_it_buf {
    VTX_ULONG64_T opaque[8];
} VTX_EXTENDED_HASH_IT_BUF_T;

/* Creates a hash sized for numberOfStrings keys (0: a small default).  With
 * fCaseSensitive 0 keys are folded to upper case in pLocale, which must not
 * change for the life of the hash. */
VTX_NODISCARD VTX_API VTX_STS_T extendedHashInitWithSize(VTX_PEXTENDED_HASH_T *ppHash,
                                                           vTX_PNETCTX_T pNetCtx, void *pLocale,
                                                           VTX_ULONG_T numberOfStrings,
                                                           VTX_BOOL_T fCaseSensitive);
VTX_API VTX_STS_T extendedHashFree(VTX_PEXTENDED_HASH_T pHash);

/* Adds itemIndex under key.  *hNum and *hPos are those of a lookup of the
 * same key just before, or both NODE_INDEX_DEL to look up here. */
VTX_NODISCARD VTX_API VTX_STS_T extendedHashInsert(VTX_PEXTENDED_HASH_T pHash,
                                                     VTX_ULONG_T hashItemIndex, const char *key,
                                                     HASH_NUM_T *hNum, HASH_POS_T *hPos);
/* The same, keeping pOwner in the entry for extendedHashItGetOwner.  The
 * hash never reads it. */
VTX_NODISCARD VTX_API VTX_STS_T extendedHashInsertOwned(VTX_PEXTENDED_HASH_T pHash,
                                                          VTX_ULONG_T hashItemIndex, const char *key,
                                                          void *pOwner, HASH_NUM_T *hNum,
                                                          HASH_POS_T *hPos);
/* *hashNum: the table holding key, or NODE_INDEX_NA when absent; *hashPos
 * its slot, or where an insert will put it.  A null hash answers 0 and
 * leaves both alone. */
VTX_NODISCARD VTX_API VTX_STS_T extendedHashGetPos(VTX_PEXTENDED_HASH_T pHash, const char *key,
                                                     HASH_NUM_T *hashNum, HASH_POS_T *hashPos);
/* extendedHashGetPos, and on a hit the iterator placed on the key's chain as
 * extendedHashInitIterator would place it, without probing again.  The
 * iterator is untouched when the key is absent or the lookup fails. */
VTX_NODISCARD VTX_API VTX_STS_T extendedHashGetPosAndIterator(VTX_PEXTENDED_HASH_T pHash, const char *key,
                                                                HASH_NUM_T *hashNum, HASH_POS_T *hashPos,
                                                                VTX_PEXTENDED_HASH_IT_T it);
/* Makes pDest an independent duplicate of pSource, texts included; owners
 * are copied as they stand, so a caller whose owners belong to the source
 * sets them again. */
VTX_NODISCARD VTX_API VTX_STS_T extendedHashCopy(VTX_PEXTENDED_HASH_T pSource,
                                                   VTX_PEXTENDED_HASH_T pDest);
/* Items inserted since creation; deleting does not lower it. */
VTX_API VTX_ULONG_T extendedHashGetNumOfElements(VTX_PEXTENDED_HASH_T pHash);

/* ---- chain iterator (lives in the caller's storage, 8-byte aligned) ---- */
VTX_API size_t extendedhashGetIteratorSize(void);
/* Places the iterator on the chain at (hashNum, hashPos).  Answers 1, not
 * touching the iterator, when hashNum is NODE_INDEX_NA or NODE_INDEX_DEL. */
VTX_API VTX_STS_T extendedHashInitIterator(VTX_PEXTENDED_HASH_T pHash, VTX_PEXTENDED_HASH_IT_T it,
                                           HASH_NUM_T hashNum, HASH_POS_T hashPos);
/* Places the iterator on the all-members iterator's current node; it may be
 * stepped along the rest of that chain but not used to delete. */
VTX_API VTX_STS_T extendedHashInitItFromAllMemberIt(VTX_PEXTENDED_HASH_IT_T it,
                                                    VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T allIt);
VTX_API VTX_BOOL_T extendedHashItEnd(VTX_PEXTENDED_HASH_IT_T it);
VTX_API VTX_STS_T extendedHashItIncrement(VTX_PEXTENDED_HASH_IT_T it);
/* Removes the current entry and moves to the next one of the chain.
 * Answers 1 on an iterator that cannot delete (ended, or placed from an
 * all-members iterator). */
VTX_API VTX_STS_T extendedHashItSetDeleted(VTX_PEXTENDED_HASH_IT_T it);
VTX_API VTX_STR_T extendedHashItGetStr(VTX_PEXTENDED_HASH_IT_T it);
VTX_API VTX_ULONG_T extendedHashItGetHashItemIndex(VTX_PEXTENDED_HASH_IT_T it);
/* The owner given to extendedHashInsertOwned; null for a plain insert or at
 * the end of the chain. */
VTX_API void *extendedHashItGetOwner(VTX_PEXTENDED_HASH_IT_T it);
/* The current entry at once: 0 at the end of the chain (the outputs then
 * untouched), else 1 with its key, item index and owner, each output
 * optional.  A chain filter reads every entry it passes this way. */
VTX_API VTX_BOOL_T extendedHashItGetEntry(VTX_PEXTENDED_HASH_IT_T it, VTX_STR_T *pStr, VTX_ULONG_T *pIndex,
                                          void **ppOwner);

/* ---- all-members iterator: every live entry once, chains together ---- */
/* The hash's own iterator, restarted.  A hash has one such walk at a time.
 * On a refused allocation *ppIt is null and the status is 1060358. */
VTX_NODISCARD VTX_API VTX_STS_T extendedHashGetAllMembersIterator(
    VTX_PEXTENDED_HASH_T pHash, VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T *ppIt);
/* A separate iterator of its own, freed by extendedHashFreeAllMembersIterator. */
VTX_NODISCARD VTX_API VTX_STS_T extendedHashAllocateAllMembersIterator(
    VTX_PEXTENDED_HASH_T pHash, vTX_PNETCTX_T pNetCtx, VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T *ppIt);
VTX_API VTX_STS_T extendedHashFreeAllMembersIterator(VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T it);
VTX_API VTX_BOOL_T extendedHashAllMembersItEnd(VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T it);
VTX_API VTX_STS_T extendedHashAllMembersItIncrement(VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T it);
VTX_API VTX_STR_T extendedHashAllMembersItGetStr(VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T it);
VTX_API VTX_ULONG_T extendedHashAllMembersItGetHashItemIndex(VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T it);

#ifdef __cplusplus
}
#endif
#endif
