/*
 * vtxotlorder.h -- order, numbering and shared members: sorting children,
 * counting dimensions and generations, finding the stored member of a
 * shared member and the shared members of a stored one.
 *
 * A shared member (usShare 3 or 9) stands for a stored member of the same
 * name elsewhere in its dimension and holds no data of its own.
 */
#ifndef VTXOTLORDER_H
#define VTXOTLORDER_H

#include "vtxtypes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Sort orders of adShrOtlSortChildren */
#define VTX_SORT_ASCENDING  0
#define VTX_SORT_DESCENDING 1
#define VTX_SORT_CALLER     2   /* pfnCompare decides */

/* A caller's comparison: <0, 0, >0 as the first member sorts before, with,
 * or after the second. */
typedef int (*VTX_PFNMBRCOMPARE_T)(VTX_HMEMBER_T hMbr1, VTX_HMEMBER_T hMbr2, void *pUserData);

/* Sorts the children of hParent (null: the dimensions).  Hidden children
 * stay at the end.  Type above 2 fails with 1060003, type 2 without a
 * function with 1060004, both before anything moves.  Answers 1 when the
 * comparison is so inconsistent that the sort gave up: the children are
 * then all still there, partly sorted. */
VTX_API VTX_STS_T adShrOtlSortChildren(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hParent, VTX_USHORT_T usType,
                                       VTX_PFNMBRCOMPARE_T pfnCompare, void *pUserData);
/* The number of dimensions. */
VTX_API VTX_STS_T adShrOtlCountDims(VTX_HOUTLINE_T hOutline, VTX_USHORT_T *pusDimCount);
/* The deepest generation of the dimension hDim. */
VTX_API VTX_STS_T adShrOtlCountGens(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_USHORT_T *pusGens);

/* ---- shared members ------------------------------------------------------- */

/* All shared members of a stored member (of hMember's stored member when
 * hMember is shared), in the order adShrOtlGetNextSharedMember steps
 * through them, as a new array freed with
 * adShrOtlFree; no shared member gives a count of 0 and a null array. */
VTX_API VTX_STS_T adShrOtlGetSharedMembers(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_ULONG_T *pulCount,
                                           VTX_HMEMBER_T **pphSharedMembers);
/* From a stored member its first shared member; from a shared member the
 * next shared member of the same stored member; null at the end. */
VTX_API VTX_STS_T adShrOtlGetNextSharedMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                              VTX_HMEMBER_T *phSharedMember);
/* The stored member of a shared member (a stored member answers itself);
 * 1060026 when a shared member has none. */
VTX_API VTX_STS_T adShrOtlFindOriginalMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hSharedMember,
                                             VTX_HMEMBER_T *phMember);
/* The stored member a shared member points at, null when it names it only
 * by name. */
VTX_API VTX_STS_T adShrOtlGetOriginalMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                            VTX_HMEMBER_T *phOriginal);
/* Outlines with duplicate names: makes hMember a shared member (usShare 9)
 * of the stored member named szOriginalMbr (a member identifier with
 * fIsMbrId).  Elsewhere 1060205. */
VTX_API VTX_STS_T adShrOtlSetOriginalMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                            VTX_CSTR_T szOriginalMbr, VTX_BOOL_T fIsMbrId,
                                            VTX_USHORT_T usVerifyType);
/* Points the shared member hSharedMbr at hOriginalMbr (usShare 9). */
VTX_API VTX_STS_T adShrOtlResetOriginalMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hSharedMbr,
                                              VTX_HMEMBER_T hOriginalMbr);
/* Repairs a dimension in which a shared member comes before its stored
 * member: the earliest of them becomes the stored member, takes the
 * children, and the others point at it. */
VTX_API VTX_STS_T adShrOtlCorrectSharedMembers(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDimTop);

#ifdef __cplusplus
}
#endif
#endif
