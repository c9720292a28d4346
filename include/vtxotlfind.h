/*
 * vtxotlfind.h -- finding members by name, alias, identifier and path, and
 * the bracketed member paths that tell duplicate names apart.
 *
 * Member paths.  In an outline that allows duplicate names a member is
 * named by a path: bracketed names joined by "." from an ancestor down
 * ("[Year].[Qtr1].[Jan]"), or a dimension and a name joined by "@"
 * ("[Year]@[Jan]").  A "]" inside a bracketed name is written twice
 * ("[a]]b]" names "a]b").  A text is a path when it opens with "[" and
 * that first bracket closes somewhere in it; anything else ("Jan", "[a",
 * "[a]]b") is a plain name and stands for itself, brackets and all.
 *
 * A member whose own name reads as a path ("[x]") is named by its escaped
 * path ("[[x]]]"), which is also the form adShrConstrucMemberPathExpression
 * and the unique names of members produce.
 *
 * Finds.  The exported finds answer 1060200 and a null handle both when a
 * name names no member and when it names more than one (a duplicate name
 * that no path narrows down).  Names are compared by the outline's case
 * rule.
 */
#ifndef VTXOTLFIND_H
#define VTXOTLFIND_H

#include "vtxtypes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A path of VTX_MAX_PATH_DEPTH segments of VTX_MBRNAME_LEN bytes each: the
 * block the parser hands out at most, and the size of the buffer
 * adShrConstrucMemberPathExpression writes into. */
#define VTX_PATH_BLOCK_LEN (VTX_MAX_PATH_DEPTH * VTX_MBRNAME_LEN)
/* The longest name one segment holds, in bytes. */
#define VTX_PATH_SEGMENT_MAX (VTX_MBRNAME_LEN - 1)

/* ---- member paths --------------------------------------------------------- */

/* Cuts pExpression into its names.  *pusCount goes in as the most segments
 * wanted (0, or more than VTX_MAX_PATH_DEPTH, ask for VTX_MAX_PATH_DEPTH)
 * and comes out as the number found;
 * *pusAtCount counts the "@" joins.  Segment i is the text at
 * (*pstrArray)[i]; the array is allocated here and released by the caller
 * with VtxSdMemFree(NULL, array) after a success.  A null expression gives
 * no segment and no array.  A plain name is one segment, copied as it stands.
 *   1060382  a bracket that never closes ("[a].[b")
 *   1060383  a segment that does not open with "[" ("[a].b")
 *   1060384  text after a closing bracket ("[a]x"), or more segments than
 *            were asked for
 *   1060602  a name longer than VTX_PATH_SEGMENT_MAX bytes
 * On failure the count is 0 and no array is handed out. */
VTX_API VTX_STS_T adShrParseMemberPathExpressionEx(void *pLocale, VTX_CSTR_T pExpression,
                                                   VTX_MBRNAME_T **pstrArray, VTX_USHORT_T *pusCount,
                                                   VTX_USHORT_T *pusAtCount);
/* The same without the "@" count. */
VTX_API VTX_STS_T adShrParseMemberPathExpression(void *pLocale, VTX_CSTR_T pExpression,
                                                 VTX_MBRNAME_T **pstrArray, VTX_USHORT_T *pusCount);
/* Whether pExpression is a well-formed path, and of how many segments
 * (0 when it is not). */
VTX_API VTX_STS_T adShrIsMemberPathExpression(void *pLocale, VTX_CSTR_T pExpression, VTX_BOOL_T *pIsPath,
                                              VTX_USHORT_T *pusCount);
/* Writes the path of pChild under pParent into pExpression, a buffer of
 * VTX_PATH_BLOCK_LEN bytes.  A parent or child that is already a path is
 * taken as it stands; any other text is a name, escaped and bracketed.
 * Either may be null or empty.  A child path of more than one segment
 * names its own ancestors and is refused, with or without a parent:
 * 1060385.  A name longer than VTX_PATH_SEGMENT_MAX bytes, or a result
 * that does not fit, is refused with 1060602.  Parsing the result gives
 * back the parent's segments and the child's. */
VTX_API VTX_STS_T adShrConstrucMemberPathExpression(void *pLocale, VTX_CSTR_T pParent, VTX_CSTR_T pChild,
                                                    VTX_STR_T pExpression);

/* ---- finds ------------------------------------------------------------------ */

/* Search options of the finds that take usOption: which members a match on
 * a member name may answer.  Matches on aliases are not filtered. */
#define VTX_FIND_UNSHARED  1   /* members that are not shared */
#define VTX_FIND_SHARED    2   /* shared members (share state 3) */
#define VTX_FIND_SHARED2   4   /* shared members of share state 9 */
#define VTX_FIND_ALL       7

/* A member by name or by alias in any table; a path in an outline of
 * duplicate names.  The name "Vantrix Universe Member" (any case) that no
 * member bears answers the root. */
VTX_API VTX_STS_T adShrOtlFindMember(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszMember, VTX_HMEMBER_T *phMember);
/* The same with search options; edit handles only (1060068). */
VTX_API VTX_STS_T adShrOtlFindMemberEx(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszMember, VTX_USHORT_T usOption,
                                       VTX_HMEMBER_T *phMember);
/* A member by its identifier, the text of the "Member ID" alias table of an
 * outline of duplicate names. */
VTX_API VTX_STS_T adShrOtlFindMemberById(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszMemberId, VTX_USHORT_T usOption,
                                         VTX_HMEMBER_T *phMember);
/* A member by path ("[Year].[Qtr1]", "[Year]@[Jan]") or by plain name,
 * whatever the outline's name rule. */
VTX_API VTX_STS_T adShrOtlFindMemberByPath(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszMember, VTX_USHORT_T usOption,
                                           VTX_HMEMBER_T *phMember);
/* A member of the dimension hDim by name.  With
 * fReturnFirstInCaseOfDuplicates a name repeated in the dimension answers
 * its first bearer instead of 1060200. */
VTX_API VTX_STS_T adShrOtlFindMemberInDim(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_CSTR_T szMember,
                                          VTX_BOOL_T fReturnFirstInCaseOfDuplicates, VTX_HMEMBER_T *phMember);
/* The same, the dimension given by name. */
VTX_API VTX_STS_T adShrOtlFindMemberInDimension(VTX_HOUTLINE_T hOutline, VTX_CSTR_T szDim, VTX_CSTR_T szMember,
                                                VTX_HMEMBER_T *phMember);
/* The dimension of a member (itself for a dimension). */
VTX_API VTX_STS_T adShrOtlFindDim(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phDim);

/* A member by name or alias whose parent is named pszParent (compared by
 * the outline's case rule).  The parent tells the places of a name apart:
 * a shared member is found under its own parent. */
VTX_API VTX_STS_T adShrOtlFindMemberParentCombo(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszMember, VTX_CSTR_T pszParent,
                                                VTX_HMEMBER_T *phMember);
/* The same inside the dimension named szDim (1060200 naming szDim when
 * there is none). */
VTX_API VTX_STS_T adShrOtlFindMemberParentComboInDimension(VTX_HOUTLINE_T hOutline, VTX_CSTR_T szDim,
                                                           VTX_CSTR_T pszMember, VTX_CSTR_T pszParent,
                                                           VTX_HMEMBER_T *phMember);
/* A member of the attribute dimension szDim by its name (a typed attribute
 * member also by the value text it was named from).  A dimension that is
 * not an attribute dimension is refused with 1060183. */
VTX_API VTX_STS_T adShrOtlFindAttrMemberInDimension(VTX_HOUTLINE_T hOutline, VTX_CSTR_T szDim, VTX_CSTR_T pszMember,
                                                    VTX_HMEMBER_T *phMember);
/* The same, under a parent named pszParent. */
VTX_API VTX_STS_T adShrOtlFindAttrMemberParentComboInDimension(VTX_HOUTLINE_T hOutline, VTX_CSTR_T szDim,
                                                               VTX_CSTR_T pszMember, VTX_CSTR_T pszParent,
                                                               VTX_HMEMBER_T *phMember);
/* The member of dimension identifier dimId with identifier mbrId; null
 * (and 0) when there is none.  Identifiers start at 1: zero is refused with
 * 1060371. */
VTX_API VTX_STS_T adShrOtlGetMemberFromDimIdMbrId(VTX_HOUTLINE_T hOutline, VTX_ULONG_T dimId, VTX_ULONG_T mbrId,
                                                  VTX_HMEMBER_T *phMember);

#ifdef __cplusplus
}
#endif
#endif
