/*
 * otlhash.h -- the member index and member paths: internal declarations.
 *
 * Every by-name lookup of an outline goes through the member index.  All
 * strings of an outline -- member names, alias texts, attribute short
 * names -- are keys of one extended hash (pExtendedHashTable), whatever
 * their kind.  The payload of an entry is an item of the item factory
 * naming the member by (dimension id, mbrId) and the alias table the text
 * belongs to (0 for a member name); ppMemNum2pItemMap turns the pair back
 * into the record.  A text that is one member's name and another's alias
 * is one key with a chain of two entries, so every lookup walks a chain and
 * filters by item.
 *
 * Both hashes fold case, whatever the outline's fCaseSensitive; a
 * case-sensitive outline filters the exact spelling while it walks a chain.
 *
 * The hash keeps the caller's text pointer: a member's strings are keys for
 * as long as they are in the index, so a name or alias is taken out of the
 * index before its text is freed or replaced, and put back after.
 *
 * Lookups answer "not found" with a null member and status 0, and keep
 * 1060200 for a name that stands for more than one member.
 *
 * In an outline of duplicate names a second hash (pExtendedHashTableDupName)
 * counts the texts that have more than one owner: the first owner of a text
 * is not counted, and shared members never are.
 */
#ifndef OTLHASH_H
#define OTLHASH_H

#include "otlapil.h"
#include "otlmem.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef VTX_ULONG_T HASH_NUM_T;
typedef VTX_ULONG_T HASH_POS_T;
/* "No lookup made yet": a lookup and the insert after it share the probe
 * when the caller passes on what the lookup found. */
#define OTL_HASH_NONE ((HASH_NUM_T)-2)

/* usOption bits of a member-name match. */
#define OTL_OPT_UNSHARED  1
#define OTL_OPT_SHARED3   2
#define OTL_OPT_SHARED9   4
#define OTL_OPT_ALL       7

/* Strings the index is sized for when the context gives no estimate. */
#define OTL_HASH_DEFAULT_STRINGS 5000000u
/* The name of the whole outline, answered by the root. */
#define OTL_UNIVERSE_MEMBER "Vantrix Universe Member"

/* ---- lifecycle ------------------------------------------------------------ */

/* Creates both hashes, the item and duplicate-name factories and the
 * member-number map.  A failure returns at once; what was made stays for
 * otlHashFree. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashInit(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline);
/* Frees all of it and nulls the fields. */
VTX_API VTX_STS_T otlHashFree(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline);
/* Live entries of the main hash (deleted ones are not counted). */
VTX_API VTX_ULONG_T otlHashCountEntries(VTX_POTL_T pOutline);

/* ---- adding ----------------------------------------------------------------- */

/* Adds every string of a member: its name, an attribute member's short name,
 * its aliases.  pItemWithInfo is a large record with the member's data (the
 * record itself or its working copy); pItemToHash is the record that is
 * registered.  hashNum and hashPos are those of a lookup of the name just
 * before, or OTL_HASH_NONE.  All or nothing: a failure takes out what it
 * had put in. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashAddItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                               VTX_POTLMBR_T pItemToHash, VTX_POTLMBR_T pItemWithInfo,
                                               HASH_NUM_T hashNum, HASH_POS_T hashPos);
/* pRoot and all records below it, in pre-order; hidden members and the
 * root of the outline have no entries.  Stops at the first failure. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashAddItemTree(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                   VTX_POTLMBR_T pRoot);
/* One string of pItem in table usAliasTable (0: a member name).  The text
 * is not copied.  In an outline of duplicate names a text that another
 * member bears already is counted as a duplicate, unless pItem is shared.
 * A failure leaves the index as it was. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashAddString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                 VTX_POTLMBR_T pItem, VTX_CSTR_T pszString,
                                                 VTX_USHORT_T usAliasTable, HASH_NUM_T hashNum,
                                                 HASH_POS_T hashPos);
/* otlHashAddString and otlHashDeleteString for a text counted as that of a
 * shared member (fShared) or not, whatever the record says at the moment:
 * for an edit that changes a member's share state and its name together. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashAddStringAs(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                   VTX_POTLMBR_T pItem, VTX_CSTR_T pszString,
                                                   VTX_USHORT_T usAliasTable, HASH_NUM_T hashNum,
                                                   HASH_POS_T hashPos, VTX_BOOL_T fShared);
VTX_NODISCARD VTX_API VTX_STS_T otlHashDeleteStringAs(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                      VTX_POTLMBR_T pItem, VTX_CSTR_T pszString,
                                                      VTX_USHORT_T usAliasTable, VTX_BOOL_T fShared);
/* A member whose name is pszName becomes shared (fNowShared) or stops being
 * shared: its name leaves or joins the count of duplicates.  Leaving never
 * fails; joining may need memory. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashDupNameShareChanged(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                           VTX_POTLMBR_T pItem, VTX_CSTR_T pszName,
                                                           VTX_BOOL_T fNowShared);
/* Whether the text is taken in table usAliasTable (0: as a member name;
 * a member shared with share state 3 does not take its name).  hashNum and
 * hashPos, when given, go in as OTL_HASH_NONE or a previous lookup and come
 * out as the position, ready for an insert. */
VTX_API VTX_BOOL_T otlHashIsStringExist(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                        VTX_USHORT_T usAliasTable, HASH_NUM_T *hashNum, HASH_POS_T *hashPos);

/* ---- deleting --------------------------------------------------------------- */

/* Takes one string of pItem out: 1 when the text or pItem's entry for it is
 * not in the index. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashDeleteString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                    VTX_POTLMBR_T pItem, VTX_CSTR_T pszString,
                                                    VTX_USHORT_T usAliasTable);
/* Every string of pItem, and its place in the member-number map; then the
 * host's cbDeleteMember.  1 when the member had no name entry (a hidden
 * member); its other strings are taken out all the same. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashDeleteItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                  VTX_POTLMBR_T pItem);
/* pItem, its subtree, and the siblings after it with their subtrees. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashDeleteItemTree(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                      VTX_POTLMBR_T pItem);
/* As the two above; a name that stops being a duplicate because of the
 * delete has the duplicate mark of its last bearer cleared. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashDeleteItemResetDup(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                          VTX_POTLMBR_T pItem);
VTX_NODISCARD VTX_API VTX_STS_T otlHashDeleteItemTreeResetDup(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                              VTX_POTLMBR_T pItem);
/* pItem's alias in one table, and (large records) its alias combinations in
 * that table. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashDeleteItemAliases(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                         VTX_POTLMBR_T pItem, VTX_USHORT_T usAliasTable);
/* The short name of an attribute member; absent is success. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashDeleteShortName(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                       VTX_POTLMBR_T pItem, VTX_CSTR_T pszString,
                                                       VTX_USHORT_T usAliasTable);

/* ---- finding ---------------------------------------------------------------- */

/* The member a text names.  fMember: as a member name; fAlias: as an alias
 * of table usAliasTable, or of any table (member names included) when
 * usAliasTable is 0.  pszParent: only a member with a parent of that name.
 * pRequiredDim: only a member of that dimension.  usOption: OTL_OPT_...
 * bits for matches on member names.  In an outline of duplicate names the
 * text (with its parent) is read as a path.  Absent: null and 0; more than
 * one member: null and 1060200 (sent as a message with the name); any other
 * failure is sent as 1060318.  hashNum_/hashPos_ receive the position of the
 * text for a following insert. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashFindItemByNameEx(
    vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString, VTX_CSTR_T pszParent,
    VTX_BOOL_T fMember, VTX_BOOL_T fAlias, VTX_BOOL_T fReturnFirstInCaseOfDuplicates,
    VTX_USHORT_T usOption, VTX_USHORT_T usAliasTable, VTX_POTLMBR_T pRequiredDim,
    VTX_POTLMBR_T *ppItem, HASH_NUM_T *hashNum_, HASH_POS_T *hashPos_);
/* otlHashFindItemByNameEx with usOption OTL_OPT_UNSHARED. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashFindItemByName(
    vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString, VTX_CSTR_T pszParent,
    VTX_BOOL_T fMember, VTX_BOOL_T fAlias, VTX_BOOL_T fReturnFirstInCaseOfDuplicates,
    VTX_USHORT_T usAliasTable, VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem,
    HASH_NUM_T *hashNum_, HASH_POS_T *hashPos_);
/* A text read as a path (a plain name is a path of one segment).  A plain
 * name borne by several unshared members answers 1060200 unless
 * pRequiredDim narrows it to one, or fReturnFirstInCaseOfDuplicates takes
 * the first. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashFindItemByCombinedName(
    vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString, VTX_BOOL_T fMember, VTX_BOOL_T fAlias,
    VTX_BOOL_T fReturnFirstInCaseOfDuplicates, VTX_USHORT_T usOption, VTX_USHORT_T usAliasTable,
    VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem);
/* One step along a chain iterator already placed on pszString's chain: the
 * next member that bears it as a member name (it rests on that entry), or
 * null at the end. */
VTX_API VTX_STS_T otlHashFindItemByMbrName(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                           VTX_POTLMBR_T pRequiredDim, VTX_USHORT_T usOption,
                                           VTX_POTLMBR_T *ppItem, void *it);
/* The same for an alias of table usAliasTable (0: any table). */
VTX_API VTX_STS_T otlHashFindItemByAlias(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                         VTX_POTLMBR_T pRequiredDim, VTX_USHORT_T usAliasTable, void *it,
                                         VTX_POTLMBR_T *ppItem);
/* The first unshared member with that alias; outlines of unique names. */
VTX_API VTX_STS_T otlHashFindItemByAliasUnique(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                               VTX_POTLMBR_T pRequiredDim, VTX_USHORT_T usAliasTable,
                                               VTX_POTLMBR_T *ppItem);
/* The stored member behind the shared member pSharedMbr, in pDim. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashFindOriginalItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                        VTX_POTLMBR_T pDim, VTX_POTLMBR_T pSharedMbr,
                                                        VTX_POTLMBR_T *ppOriginalMbr);
/* The attribute member whose member-name entry the iterator's chain holds
 * (a typed attribute is found by its short name here). */
VTX_API VTX_STS_T otlFindAttributeMember(VTX_POTL_T pOutline, VTX_CSTR_T pszMember,
                                         VTX_POTLMBR_T *ppAttributeMember, void *it);

/* ---- chain filters ------------------------------------------------------------
 * Each walks from the iterator's current entry; psCmp is 0 at an accepted
 * entry, where the iterator rests, and 1 when the chain ended without one. */
VTX_API VTX_POTLMBR_T otlMatchHashString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, void *it,
                                         VTX_CSTR_T pszString, VTX_CSTR_T pszParent, VTX_BOOL_T fCaseSensitive,
                                         VTX_BOOL_T fMember, VTX_BOOL_T fAlias, VTX_USHORT_T usOption,
                                         VTX_USHORT_T usAliasTable, VTX_POTLMBR_T pRequiredDim,
                                         VTX_SHORT_T *psCmp);
VTX_API VTX_POTLMBR_T otlMatchHashStringAttribute(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, void *it,
                                                  VTX_CSTR_T pszString, VTX_BOOL_T fCaseSensitive,
                                                  VTX_SHORT_T *psCmp);
/* The next shared member of the same name as pItem (in an outline of
 * duplicate names: one that shares pItem's stored member). */
VTX_API VTX_POTLMBR_T otlMatchHashStringShared(VTX_POTL_T pOutline, vTX_PNETCTX_T pNetCtx, void *it,
                                               VTX_POTLMBR_T pItem, VTX_CSTR_T pszString,
                                               VTX_BOOL_T fCaseSensitive);
/* The shared member after pAfter (null: the first) of pItem's dimension that
 * stands for pItem; null when there is none. */
VTX_NODISCARD VTX_API VTX_STS_T otlGetNextSharedMember(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                                       VTX_POTLMBR_T pAfter, VTX_POTLMBR_T *ppShared);

/* ---- duplicate names -------------------------------------------------------- */

VTX_NODISCARD VTX_API VTX_STS_T otlHashDupNameAddString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                        VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable);
VTX_NODISCARD VTX_API VTX_STS_T otlHashDupNameDeleteString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                           VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable);
/* Whether more than one unshared member bears the text in that table;
 * *pulCount (optional) receives the owners beyond the first. */
VTX_API VTX_BOOL_T otlIsNameDuplicated(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                       VTX_USHORT_T usAliasTable, VTX_ULONG_T *pulCount);
VTX_API void otlMatchHashDupNameString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, void *it,
                                       VTX_CSTR_T pszString, VTX_BOOL_T fCaseSensitive, VTX_BOOL_T fMember,
                                       VTX_BOOL_T fAlias, VTX_USHORT_T usAliasTable, VTX_BOOL_T fAny,
                                       VTX_SHORT_T *psCmp);
/* A binary search by case-insensitive comparison over records 0..lHigh of
 * an array sorted by text, in which records without text come last: the
 * index of the record of pszString, or where it would go. */
VTX_API VTX_LONG_T otlGetHashDupNameIndex(vTX_PNETCTX_T pNetCtx, VTX_CSTR_T pszString,
                                          struct _vtx_otl_dupname_t *pHashDupNameArray, VTX_LONG_T lHigh);
/* After a bearer of pszName left it (rename, share change): when the name
 * no longer repeats, its last bearer loses the duplicate mark. */
VTX_API void otlHashClearDupMarksIfUnique(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszName);
/* Clears the duplicate mark of a member (ucFlags 0x80 below generation 1,
 * ucNameUnique). */
VTX_API void otlMbrClearDuplicateItem(VTX_POTLMBR_T pItem);

/* ---- sibling and dimension tests -------------------------------------------- */

/* A child of pParent that bears the text (any share state). */
VTX_API VTX_BOOL_T otlHashIsNameDupAmongSiblings(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                 VTX_POTLMBR_T pParent, VTX_CSTR_T pszString,
                                                 VTX_USHORT_T usAliasTable, VTX_POTLMBR_T *ppMbr,
                                                 HASH_NUM_T *hashNum, HASH_POS_T *hashPos);
/* Whether a sibling of pItemIn other than itself bears the text. */
VTX_API VTX_BOOL_T otlHashIsNameDupAmongSiblings2(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                  VTX_POTLMBR_T pItemIn, VTX_CSTR_T pszString,
                                                  VTX_USHORT_T usAliasTable);
/* A child of pParent bearing the text (*ppMbr, the result) and the unshared
 * member bearing it (*ppOriginal). */
VTX_API VTX_BOOL_T otlHashIsNameDupAmongSiblingsGetOriginal(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                            VTX_POTLMBR_T pParent, VTX_CSTR_T pszString,
                                                            VTX_USHORT_T usAliasTable, VTX_POTLMBR_T *ppMbr,
                                                            VTX_POTLMBR_T *ppOriginal);
/* An unshared member of pDim (any dimension when null) bearing the text,
 * other than *pMember, which goes in as the member to pass over and comes
 * out as the one found (null when none). */
VTX_API VTX_BOOL_T otlIsNameExistInDimension(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pDim,
                                             VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable,
                                             VTX_POTLMBR_T *pMember);
/* The same among the members of the generation below pParent (fGen) or of
 * the level below it. */
VTX_API VTX_BOOL_T otlIsNameExistInDimensionAtGenLevel(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                       VTX_POTLMBR_T pDim, VTX_POTLMBR_T pParent,
                                                       VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable,
                                                       VTX_BOOL_T fGen, VTX_POTLMBR_T *pMember);
/* Whether a generation (fGen) or level of the dimension demands unique names. */
VTX_API VTX_BOOL_T adShrOtlIsGenLevUniqueNameSet(VTX_HOUTLINE_T hOutline, VTX_POTLMBR_T pDim, VTX_BOOL_T fGen,
                                                VTX_USHORT_T usGenLevel);

/* ---- uniqueness state of a verification ------------------------------------
 * Verification of an outline of duplicate names keeps, per dimension, the
 * generations and levels that demand unique names, where names repeat, and
 * the members whose names repeat (pDupMbrArry).  The member flags it sets:
 * ucNameUnique OTL_NU_..., and ucFlags 0x80 on a member whose name repeats. */

/* True when pItemIn may keep its name: with bCheckDim its dimension must
 * allow duplicates (*pfDim set otherwise); with bCheckGen or bCheckLev no
 * other unshared member of the dimension may bear it at the same generation
 * (*pfGen set) or level, where that generation or level demands unique
 * names. */
VTX_API VTX_BOOL_T otlHashIsItemDupNameLegal(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItemIn,
                                             VTX_BOOL_T bCheckDim, VTX_BOOL_T *pfDim, VTX_BOOL_T bCheckGen,
                                             VTX_BOOL_T bCheckLev, VTX_BOOL_T *pfGen);
/* The verdict for a member listed by the last verification, from its
 * ucNameUnique and its dimension's state; a shared member is always legal.
 * Without a verification's state the index answers. */
VTX_API VTX_BOOL_T otlIsItemDupNameLegal(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                         VTX_UCHAR_T ucNameUnique, VTX_BOOL_T *pfDim, VTX_BOOL_T *pfGen);
/* Rebuilds pDupMbrArry and every member's ucNameUnique from the duplicate
 * counts.  Allocation failure leaves no state (and the marks cleared). */
VTX_NODISCARD VTX_API VTX_STS_T otlVerifySetDupMbrArry(VTX_POTL_T pOutline);
/* Marks each listed member (below generation 1) with ucFlags 0x80 and,
 * inside a verify or a save, writes its member key into the "Unique Name"
 * table (adShrOtlSetMemberKey); a key too long for its buffer becomes a
 * finding with ulErrors4 0x2 in the list, other failures end the call. */
VTX_NODISCARD VTX_API VTX_STS_T otlVerifySetNonUniqueName(VTX_POTL_T pOutline, VTX_POUTERROR_T *ppMbrErrors,
                                                          VTX_ULONG_T *pulCount);
/* The number of listed members whose name breaks a uniqueness rule; each is
 * added to the list (ulErrors4 0x4: its dimension, 0x8: a generation, 0x10:
 * a level), merged with an entry it has.  The list is the caller's to free. */
VTX_API VTX_ULONG_T otlVerifyNameUniqueness(VTX_POTL_T pOutline, VTX_POUTERROR_T *ppMbrErrors,
                                            VTX_ULONG_T *pulCount);

/* ---- dimension name filter ---------------------------------------------------
 * A 4099-bit filter of dimension names that spares a bulk load comparing
 * every new name with every dimension.  Each outline has its own filter and
 * its own "loaded" state, set by LoadDimNames and cleared by Clear; while
 * loaded, adding or renaming a dimension enters its new name.
 * bBloomFilterActive only mirrors the last load or clear, for hosts that
 * read it; no decision of the library rests on it. */
VTX_API extern VTX_BOOL_T bBloomFilterActive;
VTX_API VTX_BOOL_T otlIsNameDupAmongDimensionsBloomFilterActive(VTX_POTL_T pOutline);
VTX_API void otlIsNameDupAmongDimensionsBloomFilterAddName(VTX_POTL_T pOutline, VTX_CSTR_T name);
VTX_API VTX_ULONG_T otlIsNameDupAmongDimensionsBloomFilterHashIdFunction(VTX_POTL_T pOutline, VTX_CSTR_T name);
VTX_API VTX_BOOL_T otlIsNameDupAmongDimensionsBloomFilter(VTX_POTL_T pOutline, VTX_CSTR_T name);
VTX_API void otlIsNameDupAmongDimensionsBloomFilterLoadDimNames(VTX_POTL_T pOutline);
VTX_API void otlIsNameDupAmongDimensionsBloomFilterClear(VTX_POTL_T pOutline);
VTX_API VTX_BOOL_T otlIsNameDupAmongDimensions(VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                               VTX_USHORT_T usAliasTable, VTX_POTLMBR_T *ppMbr);

/* ---- names (otlname) ---------------------------------------------------------- */

/* Whether pszName is the default name of a generation (fGen) or level of
 * pDim: "Gen" or "Lev" in any case, digits, a comma, the dimension's name. */
VTX_API VTX_BOOL_T otlIsDefaultName(VTX_POTL_T pOutline, VTX_POTLMBR_T pDim, VTX_CSTR_T pszName, VTX_BOOL_T fGen);
/* Writes src with every "]" doubled into dst of dstSize bytes; 1060602 when
 * it does not fit (dst then holds an empty text). */
VTX_API VTX_STS_T otlEscapeRightDelimiter(VTX_CSTR_T src, VTX_STR_T dst, size_t dstSize);

#ifdef __cplusplus
}

namespace otl {

/* A text buffer of the context that keeps short texts on the stack: one per
 * call chain of a path lookup, grown (never shrunk) as needed. */
class VTX_API NameScratch {
public:
    explicit NameScratch(vTX_PNETCTX_T ctx) noexcept : ctx_(ctx), p_(inline_), cap_(sizeof inline_) {}
    ~NameScratch() { release(); }
    NameScratch(const NameScratch &) = delete;
    NameScratch &operator=(const NameScratch &) = delete;
    /* Room for n bytes; the content is not kept.  Without a context the
     * system service's allocator serves. */
    [[nodiscard]] VTX_STS_T reserve(size_t n) noexcept;
    char *data() noexcept { return p_; }
    size_t capacity() const noexcept { return cap_; }

private:
    void release() noexcept;
    vTX_PNETCTX_T ctx_;
    char *p_;
    size_t cap_;
    char inline_[1024];
};

/* A parsed path: NUL-terminated segments, in the scratch the parse was
 * given or (a plain name) the text itself. */
struct PathSegments {
    VTX_USHORT_T count = 0;
    VTX_USHORT_T atCount = 0;
    const char *seg[VTX_MAX_PATH_DEPTH];
};

/* Whether the text opens a path: "[" and a closing bracket for it. */
VTX_API bool otlLooksLikePath(const char *s) noexcept;
/* Parses into scratch; at most maxSegs segments (1060384 for more). */
[[nodiscard]] VTX_API VTX_STS_T otlParsePath(const char *expr, VTX_USHORT_T maxSegs, NameScratch &scratch,
                                     PathSegments &out) noexcept;
/* Writes the path of child under parent into out.  A literal text is always
 * a name; otherwise a well-formed path is taken as it stands. */
[[nodiscard]] VTX_API VTX_STS_T otlBuildPath(const char *parent, bool parentLiteral, const char *child,
                                     bool childLiteral, NameScratch &out) noexcept;

} // namespace otl
#endif

#endif
