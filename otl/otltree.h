/*
 * otltree.h -- member editing, tree splicing, navigation and per-member
 * verification: the internal declarations.
 *
 * Included from otl.h.  Plain C: every function has C linkage and VTX_API,
 * because hosts that embed the library link some of them directly.
 *
 * Splicing keeps generations, levels, sibling counts and pLastSibling of
 * every record it touches correct at once; member numbers (ulMemno and
 * friends) are rebuilt by the numbering pass, not here.
 *
 * Name lookups (otlHash..., otlIsName...) answer from the member index
 * (otlhash.h).  Every edit keeps the index in step with the tree: the texts
 * a record stands under go in when it is linked and out before they are
 * freed, and an edit that fails leaves the index as it found it.
 */
#ifndef OTLTREE_H
#define OTLTREE_H

#include "otlapil.h"
#include "otlhash.h"
#include "otlmem.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Numbers this area adds to the family (VTX_STS_TOO_DEEP,
 * VTX_STS_BAD_PLACEMENT, VTX_STS_NOT_AVAILABLE) live in vtxstatus.h. */

/* Deepest generation a member may have. */
#define OTL_MAX_GEN             127

/* usVerifyType values of the edits and of otlVerifyItem. */
#define OTL_VERIFY_ALL          0   /* every check */
#define OTL_VERIFY_DATA         1   /* item data and names */
#define OTL_VERIFY_STRUCT       2   /* structural checks */
#define OTL_VERIFY_QUIET        3   /* as 0 without the dynamic-parent check; the quiet internal edit */
#define OTL_VERIFY_NAMES        4   /* names only */
/* ORed into usVerifyType by an edit: the member is checked alone, so rules
 * that need its children or siblings (label-only or dynamic leaf, only
 * child, childless dimension) are left to whole-outline verification. */
#define OTL_VERIFY_MEMBER_ONLY  0x8000

/* Move types of otlMoveItem. */
#define OTL_MOVE_SIBLING        1
#define OTL_MOVE_CHILD          2

typedef VTX_USHORT_T NAMETYPE_T;    /* 1: member name or alias, else short object name */

/* Comparison of two names by the outline's case rule. */
static inline int otlCompareNames(VTX_POTL_T pOutline, const char *a, const char *b) {
    return pOutline->fCaseSensitive ? otlStrcmp(pOutline->pNetCtx, a, b)
                                    : otlStricmp(pOutline->pNetCtx, a, b);
}

/* ---- splicing, generations and levels (otltree) --------------------------- */

/* Sets usGen of pItem, of its following siblings and of their subtrees;
 * repairs pLastSibling of their parent. */
VTX_API void otlResetGens(VTX_POTLMBR_T pItem, VTX_USHORT_T usGen);
/* One more than the highest level among the children, 0 for a leaf. */
VTX_API VTX_USHORT_T otlGetMemberLevel(VTX_POTLMBR_T pItem);
VTX_API VTX_USHORT_T otlGetMemberLevelAfterChildRemoved(VTX_POTLMBR_T pItem);
/* Raises the levels above pItem as far as they must rise. */
VTX_API void otlSetParentLevels(VTX_POTLMBR_T pItem);
/* pChild (unlinked, possibly with a subtree) becomes the first child. */
VTX_API void otlAddChildItem(VTX_POTLMBR_T pParent, VTX_POTLMBR_T pChild, VTX_BOOL_T fSetLevels);
/* pChild goes behind pChildPtr; the following siblings are walked again. */
VTX_API void otlAddSiblingItem(VTX_POTLMBR_T pChildPtr, VTX_POTLMBR_T pChild, VTX_BOOL_T fSetLevels);
/* pChild goes behind pChildPtr without walking the following siblings. */
VTX_API void otlAddSiblingItemEx(VTX_POTL_T pOutline, VTX_POTLMBR_T pChildPtr, VTX_POTLMBR_T pChild,
                                 VTX_BOOL_T fSetLevels);
/* Unlinks pMbr (and its subtree) from its parent and siblings. */
VTX_NODISCARD VTX_API VTX_STS_T otlUnattachItem(vTX_PNETCTX_T pNetCtx, VTX_POTLMBR_T pMbr,
                                                VTX_BOOL_T fSetLevels);
/* Unattach pSource, then hang it under (OTL_MOVE_CHILD) or behind
 * (OTL_MOVE_SIBLING) pDest.  A shared member landing at generation 1 becomes
 * stored. */
VTX_NODISCARD VTX_API VTX_STS_T otlMoveItem(vTX_PNETCTX_T pNetCtx, VTX_POTLMBR_T pDest,
                                            VTX_POTLMBR_T pSource, VTX_USHORT_T usMoveType);
/* Whether pDest with that move type puts the member at generation 1. */
VTX_API VTX_BOOL_T otlBecomingADimension(VTX_POTLMBR_T pDest, VTX_USHORT_T usMoveType);
/* A new unlinked record of pSource's size in pDestOutline, with pSource's
 * data and copies of everything it owns; tree links, index entries and
 * attribute links are not copied.  pSrcOutline tells the alias tables of
 * pSource. */
VTX_NODISCARD VTX_API VTX_STS_T otlCopyItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pDestOutline,
                                            VTX_POTL_T pSrcOutline, VTX_POTLMBR_T pSource,
                                            VTX_POTLMBR_T *ppCopy);
/* Copies pSource and its subtree; the copy is hung under pDestParent, behind
 * pDestPrev when that is given, else as first child.  Generations and levels
 * are set; below a dimension the copies take its number and new identifiers
 * from it.  Counts, the dimension table (for a copy that lands at generation
 * 1), member numbers and the index are the caller's.  Shared members whose
 * stored member is inside the subtree point at its copy, the others at none.
 * On failure nothing stays in pDestOutline. */
VTX_NODISCARD VTX_API VTX_STS_T otlCopySubTree(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pDestOutline,
                                               VTX_POTL_T pSrcOutline, VTX_POTLMBR_T pSource,
                                               VTX_POTLMBR_T pDestParent, VTX_POTLMBR_T pDestPrev,
                                               VTX_POTLMBR_T *ppCopy);

/* ---- dimension table (otltree) -------------------------------------------- */
VTX_NODISCARD VTX_API VTX_STS_T otlBuildDimTableDimMap(VTX_POTL_T pOutline);
VTX_NODISCARD VTX_API VTX_STS_T otlAddDimInDimTableDimMap(VTX_POTL_T pOutline, VTX_POTLMBR_T pDim);
/* Takes a dimension out of DimTable and the per-dimension arrays, closing
 * the gap, and renumbers ulDimno of every member of the dimensions behind. */
VTX_API void otlRemoveDimFromDimTable(VTX_POTL_T pOutline, VTX_POTLMBR_T pDim);
/* After dimensions changed places: DimTable, ulDimno of every member, and the
 * arrays kept by dimension number follow the order of the root's children. */
VTX_API void otlReorderDimTable(VTX_POTL_T pOutline);

/* ---- member edits, internal (otltree) ------------------------------------- */

/* Applies an exported record to a large record or working copy. */
VTX_NODISCARD VTX_API VTX_STS_T otlSetMemberInfoLarge(VTX_POTL_T pOutline, vTX_PNETCTX_T pNetCtx,
                                                      VTX_POTLMBRLARGE_T pItem,
                                                      const vtx_mbrinfo_t *pInfo, VTX_ULONG_T ulVersion,
                                                      VTX_USHORT_T usVerifyType,
                                                      VTX_BOOL_T bTemporaryItem);
/* The add from the record on, after the caller's own name tests. */
VTX_NODISCARD VTX_API VTX_STS_T otlAddMemberCommon(VTX_POTL_T pOutline, vtx_mbrinfo_t *pMbrInfo,
                                                   VTX_POTLMBR_T pParent, VTX_POTLMBR_T pPrevSibling,
                                                   VTX_POTLMBR_T *ppMember, VTX_USHORT_T usVerifyType,
                                                   VTX_POUTERROR_T pMbrError);
/* The delete of one member and its subtree, after the frame. */
VTX_NODISCARD VTX_API VTX_STS_T otlDeleteMember(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                                VTX_USHORT_T usVerifyType);

/* Hidden members. */
VTX_NODISCARD VTX_API VTX_STS_T otlAddHiddenMember(VTX_POTL_T pOutline, VTX_POTLMBR_T pParent,
                                                   VTX_POTLMBR_T pPrevSibling, VTX_POTLMBR_T *ppItem);
VTX_NODISCARD VTX_API VTX_STS_T otlAddHiddenChildren(VTX_POTL_T pOutline, VTX_POTLMBR_T pParent,
                                                     VTX_ULONG_T ulHiddenCount);
VTX_NODISCARD VTX_API VTX_STS_T otlAddHiddenMembers(VTX_POTL_T pOutline);
VTX_NODISCARD VTX_API VTX_STS_T otlAddHiddenLev0Members(VTX_POTL_T pOutline);
VTX_NODISCARD VTX_API VTX_STS_T findFirstHiddenChildMember(VTX_HOUTLINE_T hOutline, VTX_CSTR_T nameexp,
                                                           VTX_HMEMBER_T *phMember, VTX_BOOL_T fIsMbrID);

/* Shared copies, used by delete and move. */
VTX_NODISCARD VTX_API VTX_STS_T otlGetNextSharedMember(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                                       VTX_POTLMBR_T pAfter, VTX_POTLMBR_T *ppShared);
VTX_NODISCARD VTX_API VTX_STS_T otlDeleteSharedMembers(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                                       VTX_USHORT_T usVerifyType);
VTX_NODISCARD VTX_API VTX_STS_T otlDeleteSharedMemberTree(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                                          VTX_USHORT_T usVerifyType);
VTX_NODISCARD VTX_API VTX_STS_T otlResetSharedMembers(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem);
VTX_NODISCARD VTX_API VTX_STS_T otlResetSharedMemberTree(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem);
VTX_API VTX_BOOL_T otlSharedInDifferentTree(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                            VTX_POTLMBR_T pHead);
/* Whether some member of an accounts dimension carries a time balance. */
VTX_API VTX_BOOL_T otlFindTimeBalanceMember(VTX_POTL_T pOutline);

/* Dimension counts kept on add and delete (the attribute parts join later:
 * with no attribute dimension they have nothing to do). */
VTX_NODISCARD VTX_API VTX_STS_T otlUpdateAttrInfoForAdd(VTX_POTL_T pOutline, VTX_POTLMBR_T pMbr);
VTX_API void otlRollbackAttrInfoUpdatedForAdd(VTX_POTL_T pOutline, VTX_POTLMBR_T pMbr);
VTX_NODISCARD VTX_API VTX_STS_T otlUpdateAttrInfoForDelete(VTX_POTL_T pOutline, VTX_POTLMBR_T pMbr);

/* ---- navigation helpers (otlgenrl) ---------------------------------------- */
/* Next visible member after pThisMbr in a pre-order walk below pTop; pTop
 * itself at the end. */
VTX_API VTX_POTLMBR_T otlGetNextMbr(VTX_POTLMBR_T pTop, VTX_POTLMBR_T pThisMbr);
/* Brings ucInfoFlags 0x0008 (attributes associated) up to date. */
VTX_API VTX_BOOL_T otlMbrSetfAttributed(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem);

/* ---- per-member verification and name rules (otlverfy) -------------------- */
VTX_API VTX_BOOL_T otlIsNameLegal(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszName, vTX_PNETCTX_T pNetCtx,
                                  NAMETYPE_T nameType);
/* The rules of otlIsNameLegal for a caller with no outline at hand: the
 * outline's type and name rule only.  An aggregate-storage outline keeps the
 * old length limit here, as its paged version is unknown.  Sets no flag. */
VTX_API VTX_BOOL_T otlMotfIsNameLegal(VTX_USHORT_T usOutlineType, VTX_USHORT_T usOtlNameType, VTX_CSTR_T pszName,
                                      vTX_PNETCTX_T pNetCtx, NAMETYPE_T nameType);
/* A member identifier (the key alias of an outline of duplicate names):
 * present, shorter than 16501 bytes and not a reserved word. */
VTX_API VTX_BOOL_T otlIsMemberIDLegal(VTX_CSTR_T pszName, vTX_PNETCTX_T pNetCtx);
/* A member name or alias of usLength characters in a block-storage outline
 * longer than the old limit marks the outline as needing long names. */
VTX_API void otlEnableLongNames(VTX_POTL_T pOutline, VTX_USHORT_T usOutlineType, VTX_USHORT_T usLength,
                                NAMETYPE_T nameType);
/* Returns a word of verification bits of pItem; bits for shared lookups go
 * to *pulVerify4. */
VTX_API VTX_ULONG_T otlVerifyItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pDim,
                                  VTX_POTLMBR_T pItem, VTX_ULONG_T *pulVerify4, VTX_USHORT_T usVerifyType);
VTX_API VTX_ULONG_T otlVerify2Item(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItemDim,
                                   VTX_POTLMBR_T pItem, VTX_USHORT_T usVerifyType);
/* 1 when a generation or level name equals the member's name or an alias. */
VTX_API VTX_STS_T otlVerifyGenLevNames(VTX_POTLMBR_T pItem, VTX_POTL_T pOutline);
/* The first message number of the words, as adShrOtlSetVerifyStatus. */
VTX_API VTX_STS_T otlSetVerifyStatus(VTX_ULONG_T ulVerify, VTX_ULONG_T ulVerify2, VTX_ULONG_T ulVerify3,
                                     VTX_ULONG_T ulVerify4, VTX_ULONG_T ulVerify5, VTX_ULONG_T ulVerify6);
/* Runs the per-member checks of an edit (step 17 of the add) and merges the
 * words.  0: no error bits.  Otherwise *pErr holds the words and the answer
 * is the status of the first error bit, or the merged word. */
VTX_API VTX_STS_T otlVerifyEditedItem(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_USHORT_T usVerifyType,
                                      VTX_POUTERROR_T pErr);

/* ---- calls into parts that arrive later ----------------------------------
 * Each has its final name and signature and does today exactly what is true
 * while its part is missing: with no attribute dimension, no transaction
 * list, no paged store and no operation report there is nothing to record,
 * and work that would need them is refused with VTX_STS_NOT_AVAILABLE.  The
 * definitions are weak: the part that owns a call replaces it by defining it.
 */
VTX_NODISCARD VTX_API VTX_STS_T otlSetAttrValueAttrNames(VTX_POTL_T pOutline, vtx_mbrinfo_t *pMbrInfo,
                                                         VTX_POTLMBR_T pParent, VTX_USHORT_T usVerifyType);
VTX_NODISCARD VTX_API VTX_STS_T otlAttrSetShortName(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem);
VTX_NODISCARD VTX_API VTX_STS_T otlCreateAttrAggDim(VTX_POTL_T pOutline);
VTX_NODISCARD VTX_API VTX_STS_T otlDeleteAttrAggDim(VTX_POTL_T pOutline);
VTX_NODISCARD VTX_API VTX_STS_T otlUpdateAttrInfoForMove(VTX_POTL_T pOutline, VTX_POTLMBR_T pMbr);
VTX_NODISCARD VTX_API VTX_STS_T otlUpdateAttrInfoForSet(VTX_POTL_T pOutline, VTX_POTLMBR_T pMbr,
                                                        const vtx_mbrinfo_t *pOldInfo);
VTX_NODISCARD VTX_API VTX_STS_T otlCheckIndepAssocs(VTX_POTL_T pOutline, VTX_POTLMBR_T pDim);

VTX_NODISCARD VTX_API VTX_STS_T otlCreateAddTransaction(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                        VTX_POTLMBR_T pItem, VTX_POTLMBR_T pParent,
                                                        VTX_POTLMBR_T pPrevSibling);
VTX_NODISCARD VTX_API VTX_STS_T otlCreateDeleteTransaction(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                           VTX_POTLMBR_T pItem);
VTX_NODISCARD VTX_API VTX_STS_T otlCreateMoveTransaction(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                         VTX_POTLMBR_T pItem, VTX_POTLMBR_T pOldParent,
                                                         VTX_POTLMBR_T pOldPrevSibling,
                                                         VTX_POTLMBR_T pNewParent,
                                                         VTX_POTLMBR_T pNewPrevSibling);
VTX_NODISCARD VTX_API VTX_STS_T otlCreateRenameTransaction(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                           VTX_POTLMBR_T pItem, VTX_CSTR_T pszOldName);
VTX_NODISCARD VTX_API VTX_STS_T otlTransSetAddDimension(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                        VTX_CSTR_T pszDimension);
VTX_NODISCARD VTX_API VTX_STS_T otlTransSetDeleteDimension(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                           VTX_CSTR_T pszDimension);
VTX_NODISCARD VTX_API VTX_STS_T adTransAddPropChgToList(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                        VTX_USHORT_T ItemGen, VTX_CSTR_T pItemName);

VTX_NODISCARD VTX_API VTX_STS_T opgWriteIncrementalMember(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem);
VTX_NODISCARD VTX_API VTX_STS_T opgDeleteIncrementalMember(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem);
VTX_NODISCARD VTX_API VTX_STS_T opgInsertIncrementalMember(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem);
VTX_NODISCARD VTX_API VTX_STS_T opgOpenDim(VTX_POTL_T pOutline, VTX_ULONG_T dimId);
VTX_NODISCARD VTX_API VTX_STS_T opgWriteMember(VTX_POTL_T pOutline, void *dbp, VTX_POTLMBR_T pMember,
                                               VTX_BOOL_T bNewMember);
VTX_NODISCARD VTX_API VTX_STS_T opg_ToItemLarge(VTX_POTL_T pOutline, VTX_POTLMBRLARGE_T pItemLarge,
                                                VTX_POTLMBR_T pItemSmall);

VTX_NODISCARD VTX_API VTX_STS_T adShrOtlDeleteMbrTreeSmartListRefs(VTX_HOUTLINE_T hOutline,
                                                                   VTX_HMEMBER_T hMember);
VTX_API void clearQueryHintItems(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem);
VTX_API VTX_STS_T otlVerifyASOItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pDim,
                                   VTX_POTLMBR_T pItem, VTX_ULONG_T *pulVerify4, VTX_ULONG_T *pulVerify5,
                                   VTX_USHORT_T usVerifyType);
VTX_API void jsonAddMemberOperation(void *p, const char *memberIdentifier, const char *operationName,
                                    const char *operationStatus, const char *operationError,
                                    int operationErrorNo, const char *operationResult);

#ifdef __cplusplus
}
#endif
#endif
