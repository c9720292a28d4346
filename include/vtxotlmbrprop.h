/*
 * vtxotlmbrprop.h -- member texts (formulas, extended comments, format
 * strings) and the aggregate storage settings of members and dimensions:
 * solve orders, aggregate level usage, hierarchy types, the compression
 * dimension, renegade members and query hints.
 *
 * Rules of these calls (on top of those in vtxtypes.h):
 *   - Every call is refused on a query handle (1060068); the setters also
 *     while the outline must be saved and reopened first (1060291).  A
 *     hidden member named anywhere is refused with -1 and no message.
 *   - A text handed out is a new block, null when there is no text, freed
 *     with adShrOtlFree on the same context.  Setting a null or empty text
 *     removes it.
 *   - A setter that fails leaves the member and the outline as they were.
 *     One that succeeds clears the verified state and marks the outline
 *     changed since its last save.
 *   - The root is no member: naming it is refused with 1060107.
 */
#ifndef VTXOTLMBRPROP_H
#define VTXOTLMBRPROP_H

#include "vtxtypes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- formulas, extended comments, format strings --------------------------- */

/* The member's formula; null when it has none. */
VTX_API VTX_STS_T adShrOtlGetMemberFormula(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_STR_T *ppszFormula);
/* Sets (or, with a null or empty text, removes) the formula.  Refused on a
 * shared member (1060058), a member of an attribute dimension (1060024)
 * and of the attribute calculations dimension (1060107). */
VTX_API VTX_STS_T adShrOtlSetMemberFormula(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszFormula);
/* Removes the formula; a member without one is left as it is. */
VTX_API VTX_STS_T adShrOtlDeleteMemberFormula(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember);
/* The text of the formula last used successfully by the server, as the
 * outline stores it; null when there is none.  The outline keeps it apart
 * from the formula: setting or removing the formula leaves it. */
VTX_API VTX_STS_T adShrOtlGetMemberLastFormula(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                               VTX_STR_T *ppszFormula);
/* The member's extended comment; null when it has none. */
VTX_API VTX_STS_T adShrOtlGetMemberCommentEx(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                             VTX_STR_T *ppszCommentEx);
/* Sets or removes the extended comment of a member or dimension. */
VTX_API VTX_STS_T adShrOtlSetMemberCommentEx(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                             VTX_CSTR_T pszCommentEx);
/* The member's format string; null when it has none. */
VTX_API VTX_STS_T adShrOtlGetMemberFormatString(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                VTX_STR_T *ppszFormat);
/* Sets or removes the format string.  Format strings belong to typed
 * members: an outline without them refuses a text with 1060269, a paged
 * outline older than version 77 with 1060270; a member of an attribute
 * dimension 1060267, a shared member 1060305.  Removing is never refused
 * for these reasons. */
VTX_API VTX_STS_T adShrOtlSetMemberFormatString(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                VTX_CSTR_T pszFormat);

/* ---- solve orders and aggregation ------------------------------------------ */

/* The solve order of a member, 0 to 127; a negative one is refused with
 * 1060187. */
VTX_API VTX_STS_T adShrOtlSetMemberSolveOrder(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CHAR_T cOrder);
/* The solve order of a dimension (1060057 for a member that is none). */
VTX_API VTX_STS_T adShrOtlSetDimensionSolveOrder(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_CHAR_T cOrder);

/* Aggregate level usage of a stored hierarchy: which of its levels may
 * hold kept aggregates. */
#define VTX_AGGLEVEL_DEFAULT          0  /* not set: the server chooses */
#define VTX_AGGLEVEL_ALL              1  /* any level */
#define VTX_AGGLEVEL_NONE             2  /* none: the hierarchy is always aggregated on demand */
#define VTX_AGGLEVEL_BOTTOM           3  /* its bottom level only */
#define VTX_AGGLEVEL_NO_INTERMEDIATE  4  /* its bottom and top, never a level in between */

/* Sets the usage of the hierarchy headed by hMember: a dimension of stored
 * hierarchy type, or a stored hierarchy (generation 2) of a dimension with
 * several hierarchies.  A value outside the list, or any other member,
 * is refused with 1060243; an aggregate storage outline older than paged
 * version 75 with 1060309. */
VTX_API VTX_STS_T adShrOtlSetAggLevelUsage(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_SHORT_T sWeight);
VTX_API VTX_STS_T adShrOtlGetAggLevelUsage(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_SHORT_T *psWeight);

/* ---- hierarchies -------------------------------------------------------------- */

/* Hierarchy types (the ucHierarchyType of vtx_mbrinfo_t). */
#define VTX_HIER_DISABLED   3  /* generation 2 of a dimension without several hierarchies */
#define VTX_HIER_ENABLED    4  /* a dimension with several hierarchies */
#define VTX_HIER_BELOWGEN2  5  /* any member below generation 2 */
#define VTX_HIER_STORED     6
#define VTX_HIER_DYNAMIC    7

/* A dimension takes VTX_HIER_ENABLED (it becomes label only), STORED or
 * DYNAMIC; a generation-2 member of an enabled dimension STORED or DYNAMIC.
 * Another type is refused with 1060069, another member, or an attribute
 * dimension, with 1060107. */
VTX_API VTX_STS_T adShrOtlSetHierarchyType(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                           VTX_UCHAR_T ucHierarchyType);
/* The type as adShrOtlGetMemberInfo reports it. */
VTX_API VTX_STS_T adShrOtlGetHierarchyType(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                           VTX_UCHAR_T *pucHierarchyType);
/* Whether a dimension has several hierarchies (type VTX_HIER_ENABLED).
 * Turning it off makes the dimension a stored hierarchy; its data storage
 * is left as it is. */
VTX_API VTX_STS_T adShrOtlSetAltHierarchyEnabled(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_BOOL_T fEnabled);
VTX_API VTX_STS_T adShrOtlGetAltHierarchyEnabled(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim,
                                                 VTX_BOOL_T *pfEnabled);

/* ---- compression dimension and renegade members ----------------------------- */

/* The compression dimension of an aggregate storage outline is its one
 * dense dimension: setting it makes every other standard dimension sparse.
 * Refused outside aggregate storage (1060107), below paged version 75
 * (1060309; there it is the accounts dimension), for an attribute
 * dimension (1060107) and for a base of attribute dimensions (1060254). */
VTX_API VTX_STS_T adShrOtlSetASOCompressionDimension(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim);
/* Null outside aggregate storage and when there is none. */
VTX_API VTX_STS_T adShrOtlGetASOCompressionDimension(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T *phDim);

/* The renegade member of a dimension (null hMember: none) receives data
 * loaded for members the dimension does not have.  Aggregate storage from
 * paged version 81 (1060309; outside aggregate storage 1060107).  It must
 * stand in the dimension (1060369), at level 0 (1060363), unshared
 * (1060365) and without a formula (1060366).  Deleting it clears the
 * setting. */
VTX_API VTX_STS_T adShrOtlSetRenegadeMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_HMEMBER_T hMember);
/* Null outside aggregate storage. */
VTX_API VTX_STS_T adShrOtlGetRenegadeMember(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_HMEMBER_T *phMember);

/* ---- query hints -------------------------------------------------------------- *
 * A query hint is a row of members, at most one per slot; all rows have
 * the width of the widest hint (adShrOtlGetQueryHintSize), and a slot
 * beyond a hint's own members holds null.  Hints are numbered from 1.
 * Changing them needs aggregate storage from paged version 75 (1060309;
 * outside aggregate storage 1060107).  A hint must name at least one
 * member (1060261).  Deleting a member clears it from every hint. */
VTX_API VTX_STS_T adShrOtlAddQueryHint(VTX_HOUTLINE_T hOutline, VTX_USHORT_T numMembers,
                                       const VTX_HMEMBER_T *pMemberArray);
/* Replaces hint hintNum, from 1 to the number of rows the outline holds
 * (1060069 otherwise). */
VTX_API VTX_STS_T adShrOtlSetQueryHint(VTX_HOUTLINE_T hOutline, VTX_USHORT_T hintNum, VTX_USHORT_T numMembers,
                                       const VTX_HMEMBER_T *pMemberArray);
/* Copies hint hintNum (1 to adShrOtlGetNumQueryHints, 1060069 otherwise)
 * into pMemberArray, an array of numMembers slots that must hold the hint
 * size (1060602 otherwise); the slots are cleared first. */
VTX_API VTX_STS_T adShrOtlGetQueryHint(VTX_HOUTLINE_T hOutline, VTX_USHORT_T hintNum, VTX_USHORT_T numMembers,
                                       VTX_HMEMBER_T *pMemberArray);
/* Removes hint hintNum; the hints behind it move up one number. */
VTX_API VTX_STS_T adShrOtlDeleteQueryHint(VTX_HOUTLINE_T hOutline, VTX_USHORT_T hintNum);
VTX_API VTX_STS_T adShrOtlGetNumQueryHints(VTX_HOUTLINE_T hOutline, VTX_USHORT_T *pusNumHints);
VTX_API VTX_STS_T adShrOtlGetQueryHintSize(VTX_HOUTLINE_T hOutline, VTX_USHORT_T *pusHintSize);

#ifdef __cplusplus
}
#endif
#endif
