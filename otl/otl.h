/*
 * otl.h -- internal declarations of the outline library.
 *
 * Functions named otl... and opg... are internal but exported (VTX_API):
 * hosts that embed the library link some of them directly.  They do not run
 * the call frame of the exported adShrOtl... calls; they report through the
 * caller's context when a failure is theirs to report.
 *
 * Every status-returning internal call is VTX_NODISCARD; a deliberate ignore
 * is written as (void) with a comment saying why.
 */
#ifndef OTL_H
#define OTL_H

#include "vtxotl.h"
#include "otlapil.h"
#include "otlmem.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- reporting (otlutil) --------------------------------------------------- */

/* The usual rule: through adNetLocalMessage when the context sends messages,
 * the code itself otherwise.  Level 4. */
VTX_API VTX_STS_T otlReport(vTX_PNETCTX_T pNetCtx, VTX_STS_T code, const void *arg1,
                            VTX_USHORT_T type1, const void *arg2, VTX_USHORT_T type2);
/* The member-edit rule: also sends when the outline's ucCallerType is 2. */
VTX_API VTX_STS_T otlReportEdit(VTX_POTL_T pOutline, VTX_STS_T code, const void *arg1,
                                VTX_USHORT_T type1, const void *arg2, VTX_USHORT_T type2);
/* A name clash in an edit: quiet during a dimension build, else the edit rule. */
VTX_API VTX_STS_T otlReportClash(VTX_POTL_T pOutline, VTX_STS_T code, const void *arg1,
                                 VTX_USHORT_T type1, const void *arg2, VTX_USHORT_T type2);
/* Out of memory, naming the function that failed. */
VTX_API VTX_STS_T otlNoMemory(vTX_PNETCTX_T pNetCtx, const char *pszFunction);

/* ---- records (otlstore) ---------------------------------------------------- */

/* Creates the pool of small or large records; capacity in records is the
 * larger of 100 and ulInitialSize * 7.5 / 100 * record size. */
VTX_NODISCARD VTX_API VTX_STS_T otlInitMemList(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                               VTX_ULONG_T ulInitialSize, VTX_BOOL_T bLarge);
/* A zeroed record from the pool (ucFlags 0x08); 1 when there is no pool. */
VTX_NODISCARD VTX_API VTX_STS_T otlNewItem2(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                            VTX_POTLMBR_T *ppItem, VTX_BOOL_T bLarge);
/* A zeroed record of its own allocation. */
VTX_NODISCARD VTX_API VTX_STS_T otlNewItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                           VTX_POTLMBR_T *ppItem, VTX_BOOL_T bLarge);
/* A record from the pool when there is one, else of its own. */
VTX_NODISCARD VTX_API VTX_STS_T otlNewItemAny(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                              VTX_POTLMBR_T *ppItem, VTX_BOOL_T bLarge);
/* Releases both pools and every record in them. */
VTX_API void otlFreeMemList(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline);
/* Frees what a large record owns; with bTemporary the strings of a
 * temporary view point into the caller's vtx_mbrinfo_t and stay. */
VTX_API void otlFreeLargeItemStrings(vTX_PNETCTX_T pNetCtx, VTX_POTLMBRLARGE_T pItem,
                                     VTX_BOOL_T bTemporary);
/* Frees what a record owns (name, aliases, strings, attribute links) and the
 * record itself unless it is pooled. */
VTX_API void otlFreeItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem);
VTX_API void otlFreeItemWithDim(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem);
/* Frees pItem and its whole subtree (children first).  The record must be
 * unlinked already, or be the root. */
VTX_API void otlFreeItemList(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem);
/* Allocates the alias slots of a record for the outline's tables. */
VTX_NODISCARD VTX_API VTX_STS_T otlAllocItemAliasArray(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                       VTX_POTLMBR_T pItem);

/* Copies between the exported member record and the internal info block.
 * Fields newer than the client's lClientVersion are left alone.  The
 * internal strings are new copies unless bTemporary, in which case they
 * point into pMbrInfo.  The record is always the full form: a record of a
 * client before 5.0 is widened at the boundary first (otlMbrInfoFromOld). */
VTX_NODISCARD VTX_API VTX_STS_T otlCopyToInternalFromExternalMbrInfo(
    vTX_PNETCTX_T pNetCtx, const vtx_mbrinfo_t *pMbrInfo, VTX_PINTMBRINFOLARGE_T pInfo,
    VTX_BOOL_T bTemporary);
/* Frees the strings otlCopyToInternalFromExternalMbrInfo copied into an
 * info block that never reached a record, and zeroes their pointers. */
VTX_API void otlFreeInternalMbrInfoStrings(vTX_PNETCTX_T pNetCtx, VTX_PINTMBRINFOLARGE_T pInfo);
/* Fills pMbrInfo (zeroed first) from a record, honouring the client version. */
VTX_NODISCARD VTX_API VTX_STS_T otlCopyLargeToMbrInfo(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                                      vtx_mbrinfo_t *pMbrInfo, VTX_ULONG_T ulVersion);
/* The same for a small record, through a large view of it from the paged
 * store; and either size of record. */
VTX_NODISCARD VTX_API VTX_STS_T otlCopySmallToMbrInfo(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                                      vtx_mbrinfo_t *pMbrInfo, VTX_ULONG_T ulVersion);
VTX_NODISCARD VTX_API VTX_STS_T otlCopyToMbrInfo(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, vtx_mbrinfo_t *pMbrInfo,
                                                 VTX_ULONG_T ulVersion);
/* Puts a snapshot taken by otlCopyLargeToMbrInfo back into a large record. */
VTX_NODISCARD VTX_API VTX_STS_T otlCopyLargeFromMbrInfo(VTX_POTL_T pOutline, VTX_POTLMBRLARGE_T pItem,
                                                        const vtx_mbrinfo_t *pMbrInfo,
                                                        VTX_ULONG_T ulVersion);
/* The record of clients before 5.0 to the full form (zeroed first) and
 * back; the way back fails with 1060600, writing nothing, when a name does
 * not fit its old block. */
VTX_API void otlMbrInfoFromOld(const vtx_mbrinfo_old_t *pOld, vtx_mbrinfo_t *pMbrInfo);
VTX_NODISCARD VTX_API VTX_STS_T otlMbrInfoToOld(const vtx_mbrinfo_t *pMbrInfo, vtx_mbrinfo_old_t *pOld);
/* Frees the owned pointer fields of an exported record (the text attribute
 * value) and zeroes the pointer and the type. */
VTX_API void otlFreeMbrInfoPointerFields(vTX_PNETCTX_T pNetCtx, vtx_mbrinfo_t *pMbrInfo);

/* Whether a query-form record holds the fields of id (IsMbrValid): a
 * negative id names bits of the second mask word in its low 31 bits. */
VTX_API VTX_BOOL_T otlIsMbrValid(VTX_LONG_T id, const VTX_ULONG_T mask[2]);

/* The dimension record of a member: null for null and the root, itself at
 * generation 1. */
VTX_API VTX_POTLMBR_T otlGetDim(VTX_POTLMBR_T pItem);
/* Post-order start: follows pChild to the bottom. */
VTX_API VTX_POTLMBR_T otlLowLeftInternal(VTX_POTLMBR_T pItem);
/* Next record of a pre-order walk below top, null at the end. */
VTX_API VTX_POTLMBR_T otlNavtrdn(VTX_POTLMBR_T mptr, VTX_POTLMBR_T top);

/* ---- outline lifecycle (otlmain) ------------------------------------------- */

VTX_NODISCARD VTX_API VTX_STS_T otlCreateOutlineData(vTX_PNETCTX_T pNetCtx, VTX_POTL_T *ppOutline,
                                                     VTX_BOOL_T bOPG, VTX_USHORT_T usOtlNameType);
VTX_API VTX_STS_T otlFreeOutlineData(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline);
/* The newest paged format version for an outline of this kind. */
VTX_API VTX_ULONG_T otlGetLatestOPGVersion(VTX_POTL_T pOutline);

/* ---- numbering, counting, sorting and implied sharing (otlsort) ------------ */

/* True for usShare 2, 3 and 9: members that take no number of their own. */
VTX_API VTX_BOOL_T otlMbrIsShared(VTX_POTLMBR_T pMbr);
/* Whether pItem implicitly shares the data of one child; the target and its
 * actual number come back in *ppItem and *memno. */
VTX_API VTX_BOOL_T isImpliedShareEx(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_ULONG_T *memno,
                                    VTX_POTLMBR_T *ppItem);
VTX_API VTX_BOOL_T isImpliedShare(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem);
/* 2 if a child adds or subtracts, 1 if one multiplies, divides or takes a
 * percentage, 0 otherwise. */
VTX_API VTX_USHORT_T numConsolidatingChildren(VTX_POTLMBR_T pItem);

/* Rebuild member numbers, dimension numbers and counts below pHead (the
 * root).  otlUpdateMemno is the edit form, otlSetMemno the form of
 * verification and reading (label-only members take no number and counts
 * stay), otlUpdateMemnoOPG the aggregate storage form. */
VTX_NODISCARD VTX_API VTX_STS_T otlUpdateMemno(VTX_POTL_T pOutline, VTX_POTLMBR_T pHead);
VTX_NODISCARD VTX_API VTX_STS_T otlSetMemno(VTX_POTL_T pOutline, VTX_POTLMBR_T pHead);
VTX_NODISCARD VTX_API VTX_STS_T otlUpdateMemnoOPG(VTX_POTL_T pOutline, VTX_POTLMBR_T pHead);
/* Renumbers ulMemno of one dimension only. */
VTX_API void otlUpdateMemnorsFromDim(VTX_POTL_T pOutline, VTX_POTLMBR_T pDim);
/* Gives every shared member the numbers of its stored member; usOption 1
 * and 2 also point OriginalMbr at it in an outline with duplicate names. */
VTX_NODISCARD VTX_API VTX_STS_T otlSetShareMbrMemno(VTX_POTL_T pOutline, VTX_POTLMBR_T pHead,
                                                    VTX_USHORT_T usOption);
/* Hangs a whole sibling chain (pChild and the records after it) in front
 * of pParent's children, as the reader rebuilds a tree: each record takes
 * the parent and its levels are carried up, generations are set from the
 * parent down.  ulSiblingCount rises by one only: the reader sets the counts
 * itself. */
VTX_API void otlAddChildBlock(VTX_POTLMBR_T pParent, VTX_POTLMBR_T pChild);
/* Recomputes every level bottom-up. */
VTX_API void otlUpdateMemberLevels(VTX_POTL_T pOutline);
VTX_API VTX_USHORT_T otlGetMaxGen(VTX_POTLMBR_T pDim);
VTX_API VTX_ULONG_T otlGetItemCount(VTX_POTLMBR_T pTop);
VTX_API VTX_ULONG_T otlGetNonSharedItemCount(VTX_POTLMBR_T pTop);

/* After stored members have gone (deleted, or renamed away by a quiet
 * rename), their shared copies must not be left without one: among the
 * copies of each former stored member (origins[i] is the one copies[i]
 * stood for), the first in the array becomes stored and the others point at
 * it.  Cannot fail. */
VTX_API void otlPromoteSharedCopies(VTX_POTL_T pOutline, VTX_POTLMBR_T *copies, VTX_POTLMBR_T *origins,
                                    VTX_ULONG_T count);

/* Sorting children. */
typedef int (*OTL_PCOMPAREFUNC_T)(VTX_HMEMBER_T hMbr1, VTX_HMEMBER_T hMbr2, void *pUserData);
VTX_API int otlCompareFunc(VTX_HMEMBER_T hMbr1, VTX_HMEMBER_T hMbr2, void *pUserData);
/* Sorts lIndex entries; 1 when the range stack overflows (the array is then
 * a permutation of what it was, partly sorted). */
VTX_NODISCARD VTX_API VTX_STS_T otlQuickSort(VTX_HMEMBER_T *pDataArray, VTX_LONG_T lIndex,
                                             OTL_PCOMPAREFUNC_T pfnCompareFunc, void *pUserData);

/* ---- alias tables, first part (otlalias) ----------------------------------- */
VTX_NODISCARD VTX_API VTX_STS_T otlCreateAliasArray(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline);
VTX_API void otlFreeAliasArray(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline);
/* Puts the tables "Unique Name" and "Member ID" in front of the outline's
 * tables, empty; every table keeps its name, aliases, language, policy and
 * count.  A failure changes nothing. */
VTX_NODISCARD VTX_API VTX_STS_T otlInsertReservedAliasTables(VTX_POTL_T pOutline);
/* The index of a table named (without regard to case); 1060322 when none. */
VTX_NODISCARD VTX_API VTX_STS_T otlGetAliasIndexFromName(VTX_POTL_T pOutline, VTX_CSTR_T name, VTX_USHORT_T *pIndex);
/* Keeps a copy of the name of the alternate member identifier table and
 * marks it set; the outline is unchanged when the copy is refused. */
VTX_NODISCARD VTX_API VTX_STS_T otlSetAltMemberIdAliasTable(VTX_POTL_T pOutline, VTX_CSTR_T pszAliasTable);

/* Alias combinations of a large record: pAliasRec holds one list per table
 * slot (OTL_MAX_ALIAS_TABLES heads), made on the first entry.  Every
 * combination alias is in the member index under its table number + 1. */
/* A zeroed record. */
VTX_NODISCARD VTX_API VTX_STS_T otlNewAliasRec(vTX_PNETCTX_T pNetCtx, VTX_POTLALIASREC_T *ppRec);
/* Frees a record and its texts; it must be out of its list and the index. */
VTX_API void otlFreeAliasCombo(vTX_PNETCTX_T pNetCtx, VTX_POTLALIASREC_T pRec);
/* Appends a copy of (pszAlias, pszCombination) to pItem's list of table
 * usTable and enters the alias in the index; no rule is tested.  1 for a
 * missing or small record, a table out of range or an empty text.  A
 * failure leaves the record and the index as they were. */
VTX_NODISCARD VTX_API VTX_STS_T otlAddAliasCombo(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                                 VTX_USHORT_T usTable, VTX_CSTR_T pszAlias,
                                                 VTX_CSTR_T pszCombination, VTX_POTLALIASREC_T *ppRec);
/* The entry of the table with that alias and (when given) combination, by
 * the outline's case rule; null when none. */
VTX_API VTX_POTLALIASREC_T otlFindAliasCombo(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_USHORT_T usTable,
                                             VTX_CSTR_T pszAlias, VTX_CSTR_T pszCombination);
/* Unlinks pRec from the table's list, takes its alias out of the index and
 * frees it; 1 when pRec is not in that list.  Allocates nothing. */
VTX_NODISCARD VTX_API VTX_STS_T otlDeleteAliasComboByPtr(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline,
                                                         VTX_POTLMBR_T pItem, VTX_USHORT_T usTable,
                                                         VTX_POTLALIASREC_T pRec);
/* The combinations of pItem in table usTable. */
VTX_API VTX_USHORT_T otlCountExtraAliases(VTX_POTLMBR_T pItem, VTX_USHORT_T usTable);
/* 0 when every member specification of a combination names exactly one
 * member other than pItem; 1060020 otherwise. */
VTX_NODISCARD VTX_API VTX_STS_T otlCheckAliasCombination(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                                         VTX_CSTR_T pszCombination);

/* ---- query handles (otlquery) --------------------------------------------- */
/* Frees the flat record array of a query handle and every string its
 * records hold; nothing on an edit handle. */
VTX_API void otlFreeQueryMembers(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline);

/* ---- member settings (otlgenrl) -------------------------------------------- */
/* Whether sAggLevelUsage (VTX_AGGLEVEL_...) may stand on pItemHierarchy:
 * a set value only on the top of a stored hierarchy (a dimension of type
 * 6, or a generation-2 member of a type-4 dimension that is not dynamic);
 * 0, the unset value, on any member with bNotSetOK and never without. */
VTX_API VTX_BOOL_T otlValidAggLevelUsage(VTX_POTLMBR_T pItemHierarchy, VTX_SHORT_T sAggLevelUsage,
                                         VTX_BOOL_T bNotSetOK);

/* ---- dynamic time series entries, first part (otlname) --------------------- */
VTX_NODISCARD VTX_API VTX_STS_T otlCreateDTSMbrs(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline);
VTX_API void otlFreeDTSMbrs(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline);

#ifdef __cplusplus
}
#endif

/* editing, splicing, navigation and per-member verification */
#include "otltree.h"

#ifdef __cplusplus
#include "otlframe.h"
#endif

#endif
