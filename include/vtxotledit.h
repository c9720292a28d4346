/*
 * vtxotledit.h -- member edits, navigation, member reads and the verify
 * status translation.
 *
 * Rules of these calls (on top of those in vtxtypes.h):
 *   - Output handles and the vtx_outerror_t record are cleared on entry.  A
 *     hidden member named anywhere is refused with -1 and no message.
 *   - An edit that fails leaves the outline exactly as it was: tree, counts,
 *     flags and name index.  Some refusals hand back the member that caused
 *     them through *phMember (the existing member of a name clash).
 *   - A successful edit clears the outline's verified state.
 *   - pMbrInfo is read, never kept; the outline copies what it needs.
 *   - hPrevSibling names the member the new or moved member goes behind; its
 *     parent is the parent.  With a null hPrevSibling the member becomes the
 *     first child of hParent, or the first dimension when hParent is null or
 *     the root.  VTX_HPREV_LAST32/64 stand for "behind the last child".
 *   - Navigation answers null at the end of a walk and never shows hidden
 *     members.  A vtx_mbrinfo_t handed out by adShrOtlGetMemberInfo belongs
 *     to the caller: free it with adShrOtlFreeMbrInfo(ctx, 1, p).
 */
#ifndef VTXOTLEDIT_H
#define VTXOTLEDIT_H

#include "vtxtypes.h"
#include "vtxrecords.h"

#ifdef __cplusplus
extern "C" {
#endif

/* usVerifyType of the edits: 0 normal; 2 like 0 in a delete; 3 the quiet
 * internal form (shared copies are kept and re-pointed, names of shared
 * members may repeat). */

/* ---- adding ---------------------------------------------------------------- */

VTX_API VTX_STS_T adShrOtlAddDimension(VTX_HOUTLINE_T hOutline, vtx_mbrinfo_t *pMbrInfo,
                                       VTX_HMEMBER_T hPrevSibling, VTX_CSTR_T pszDataMbr,
                                       VTX_HMEMBER_T *phMember, vtx_outerror_t *pMbrError);
VTX_API VTX_STS_T adShrOtlAddMember(VTX_HOUTLINE_T hOutline, vtx_mbrinfo_t *pMbrInfo, VTX_HMEMBER_T hParent,
                                    VTX_HMEMBER_T hPrevSibling, VTX_HMEMBER_T *phMember,
                                    VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError);
/* fReportDupSibsForUnique: in an outline of unique names, a clash with a
 * sibling is reported as 1060203 rather than 1060051. */
VTX_API VTX_STS_T adShrOtlAddMemberDupSibsCheck(VTX_HOUTLINE_T hOutline, vtx_mbrinfo_t *pMbrInfo,
                                                VTX_HMEMBER_T hParent, VTX_HMEMBER_T hPrevSibling,
                                                VTX_HMEMBER_T *phMember, VTX_BOOL_T fReportDupSibsForUnique,
                                                VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError);
/* The add of a dimension build in an outline of unique names: on a clash the
 * member found, its parent and its dimension come back. */
VTX_API VTX_STS_T adShrOtlAddMemberEx2(VTX_HOUTLINE_T hOutline, vtx_mbrinfo_t *pMbrInfo, VTX_HMEMBER_T hParent,
                                       VTX_HMEMBER_T hPrevSibling, VTX_HMEMBER_T *phMember,
                                       VTX_HMEMBER_T *phParent, VTX_HMEMBER_T *phDim,
                                       VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError);
/* As adShrOtlAddMemberEx2, but a name that stands elsewhere in the same
 * dimension is added as a shared member (*pbAddedShared set). */
VTX_API VTX_STS_T adShrOtlAddStoredAndSharedMember(VTX_HOUTLINE_T hOutline, VTX_BOOL_T bMoveIfNoParent,
                                                   VTX_BOOL_T bAllowDuplicateShare, vtx_mbrinfo_t *pMbrInfo,
                                                   VTX_HMEMBER_T hParent, VTX_HMEMBER_T hPrevSibling,
                                                   VTX_HMEMBER_T *phMember, VTX_HMEMBER_T *phParent,
                                                   VTX_HMEMBER_T *phDim, VTX_USHORT_T usVerifyType,
                                                   VTX_BOOL_T *pbAddedShared, vtx_outerror_t *pMbrError);
/* Add with an identifier for the "Member ID" alias table (outlines of
 * duplicate names only). */
VTX_API VTX_STS_T adShrOtlAddMemberAndID(VTX_HOUTLINE_T hOutline, vtx_mbrinfo_t *pMbrInfo, VTX_CSTR_T pszMbrID,
                                         VTX_HMEMBER_T hParent, VTX_HMEMBER_T hPrevSibling,
                                         VTX_HMEMBER_T *phMember, VTX_USHORT_T usVerifyType,
                                         vtx_outerror_t *pMbrError);

/* ---- deleting -------------------------------------------------------------- */

/* Deletes a member and its subtree; shared members of the subtree's stored
 * members go with it unless usVerifyType is 3. */
VTX_API VTX_STS_T adShrOtlDeleteMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_USHORT_T usVerifyType,
                                       vtx_outerror_t *pMbrError);
VTX_API VTX_STS_T adShrOtlDeleteDimension(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszDataMbr,
                                          vtx_outerror_t *pMbrError);
/* Marks (fMark 1) or unmarks a member found by name / by handle. */
VTX_API VTX_STS_T adShrOtlMarkMbr(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszMember, VTX_BOOL_T fMark);
VTX_API VTX_STS_T adShrOtlMarkMbrByHandle(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_BOOL_T fMark);
/* Marks every member below the named dimension. */
VTX_API VTX_STS_T adShrOtlMarkDim(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszDim);
/* Deletes every marked member of the named dimension, children first. */
VTX_API VTX_STS_T adShrOtlDeleteMarked(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszDim);

/* ---- moving and renaming --------------------------------------------------- */

VTX_API VTX_STS_T adShrOtlMoveMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T hNewParent,
                                     VTX_HMEMBER_T hNewPrevSibling, vtx_outerror_t *pMbrError);
VTX_API VTX_STS_T adShrOtlMoveMemberDupSibsCheck(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                 VTX_HMEMBER_T hNewParent, VTX_HMEMBER_T hNewPrevSibling,
                                                 VTX_BOOL_T fReportDupSibsForUnique, vtx_outerror_t *pMbrError);
VTX_API VTX_STS_T adShrOtlRenameMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszNewMember,
                                       VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError);
VTX_API VTX_STS_T adShrOtlRenameMemberDupSibsCheck(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                   VTX_CSTR_T pszNewMember, VTX_BOOL_T fReportDupSibsForUnique,
                                                   VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError);
/* Renames for the host's own name-fix pass: without the dimension-wide
 * uniqueness tests; the second also without the sibling test. */
VTX_API VTX_STS_T adShrOtlMotfRenameMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                           VTX_CSTR_T pszNewMember, vtx_outerror_t *pMbrError);
VTX_API VTX_STS_T adShrOtlMotfRenameMemberDupSibsNoCheck(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                         VTX_CSTR_T pszNewMember, vtx_outerror_t *pMbrError);

/* ---- member settings ------------------------------------------------------- */

/* Applies pInfo to the member (a different szMember renames it). */
VTX_API VTX_STS_T adShrOtlSetMemberInfo(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, vtx_mbrinfo_t *pInfo,
                                        VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError);
/* Data storage (usShare) of a member, of its children or descendants, or of
 * the members of one generation or level below it.  applyTo: 0 level,
 * 1 generation, 2 children, 3 children then the member, 4 descendants,
 * 5 descendants then the member; above 5 nothing. */
VTX_API VTX_STS_T adShrOtlSetDataStorage(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_USHORT_T usVerifyType,
                                         vtx_outerror_t *pMbrError, VTX_USHORT_T applyTo,
                                         VTX_USHORT_T genLevelNum, VTX_USHORT_T usShare);
VTX_API VTX_STS_T adShrOtlSetDataStorageForMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                  VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError,
                                                  VTX_USHORT_T usShare);
VTX_API VTX_STS_T adShrOtlSetDataStorageApplyToChildrenOrDescendants(VTX_HOUTLINE_T hOutline,
                                                                     VTX_HMEMBER_T hMember,
                                                                     VTX_USHORT_T usVerifyType,
                                                                     vtx_outerror_t *pMbrError,
                                                                     VTX_USHORT_T usShare,
                                                                     VTX_BOOL_T bDescendants);
VTX_API VTX_STS_T adShrOtlSetDataStorageApplyToGenLevel(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                        VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError,
                                                        VTX_USHORT_T genLevelNum, VTX_USHORT_T usShare,
                                                        VTX_BOOL_T bLevel);
/* Puts the hierarchies (visible children) of a dimension in the order of
 * phHierarchies, which must name each of them exactly once; hidden children
 * stay last. */
VTX_API VTX_STS_T adShrOtlReorderHierarchies(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_ULONG_T ulCount,
                                             const VTX_HMEMBER_T *phHierarchies, vtx_outerror_t *pMbrError);

/* ---- spare (hidden) children ------------------------------------------------ */

/* Asks for ulCount spare children under each level-1 member of the dimension
 * (or under the member of id ulParentMbrId when that is not 0); they are
 * made by adShrOtlAddHiddenMembers. */
VTX_API VTX_STS_T adShrOtlSetHiddenMemberCounts(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim,
                                                VTX_ULONG_T ulParentMbrId, VTX_ULONG_T ulCount);
/* Adds the spare children asked for by usPreAllocatedChildren and by
 * adShrOtlSetHiddenMemberCounts. */
VTX_API VTX_STS_T adShrOtlAddHiddenMembers(VTX_HOUTLINE_T hOutline);
/* Turns the first spare child of the member named by pszParent (a name, a
 * path, or with fIsMbrID an identifier) into a real member named pszMember;
 * the new member comes back in *phMember. */
VTX_API VTX_STS_T adShrOtlMotfAddAlias(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszParent, VTX_BOOL_T fIsMbrID,
                                       VTX_CSTR_T pszMember, VTX_HMEMBER_T *phMember);
/* Sets the member identifier of the first spare child of pszParent. */
VTX_API VTX_STS_T adShrOtlMotfSetMbrId(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszParent, VTX_BOOL_T fIsMbrID,
                                       VTX_ULONG_T ulMbrId, VTX_HMEMBER_T *phMember);

/* ---- navigation and member reads -------------------------------------------- */

VTX_API VTX_STS_T adShrOtlGetFirstMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T *phMember);
/* A null hMember means the root in GetChild and GetLastChild. */
VTX_API VTX_STS_T adShrOtlGetChild(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phChild);
VTX_API VTX_STS_T adShrOtlGetLastChild(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phChild);
/* The last child added by build pass ulBuildId or an earlier one; a null
 * member means the root.  Null when every child came later. */
VTX_API VTX_STS_T adShrOtlGetLastChildByBuildId(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                VTX_ULONG_T ulBuildId, VTX_HMEMBER_T *phMember);
/* Null for a dimension. */
VTX_API VTX_STS_T adShrOtlGetParent(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phParent);
VTX_API VTX_STS_T adShrOtlGetNextSibling(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                         VTX_HMEMBER_T *phSibling);
VTX_API VTX_STS_T adShrOtlGetPrevSibling(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                         VTX_HMEMBER_T *phSibling);
/* The member after hMember in a pre-order walk below hTop (null: the whole
 * outline); hTop itself (null for the whole outline) at the end. */
VTX_API VTX_STS_T adShrOtlGetNextMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hTop, VTX_HMEMBER_T hMember,
                                        VTX_HMEMBER_T *phNext);
/* The member's name into szName. */
VTX_API VTX_STS_T adShrOtlGetMemberName(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_MBRNAME_T szName);
/* A new record describing the member; the caller frees it with
 * adShrOtlFreeMbrInfo(ctx, 1, *ppInfo). */
VTX_API VTX_STS_T adShrOtlGetMemberInfo(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, vtx_mbrinfo_t **ppInfo);

/* ---- verification words --------------------------------------------------- */

/* Translates verification words into message numbers.  Without errorCodes
 * the answer is the number of the first bit set; with it, up to
 * sizeErrorCodes numbers are stored and *count says how many.  0 when
 * ulVerify, ulVerify3 and ulVerify5 are all 0. */
VTX_API VTX_STS_T adShrOtlSetVerifyStatus(VTX_ULONG_T ulVerify, VTX_ULONG_T ulVerify2, VTX_ULONG_T ulVerify3,
                                          VTX_ULONG_T ulVerify4, VTX_ULONG_T ulVerify5, VTX_ULONG_T ulVerify6,
                                          VTX_LONG_T sizeErrorCodes, VTX_STS_T *errorCodes, VTX_LONG_T *count);

#ifdef __cplusplus
}
#endif
#endif
