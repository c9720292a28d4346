/*
 * vtxotlalias.h -- alias tables and member aliases.
 *
 * An alias table is a column over all members: each member may have one
 * alias in each table.  A new outline has the table "Default"; an outline
 * that allows duplicate member names also has "Unique Name" and "Member ID"
 * in front of it, which are the outline's own (not shown by
 * adShrOtlGetOutlineInfo, never deleted, written only by the library).
 * Tables are named by their text names in every call.
 *
 * A refused call leaves tables, aliases and the member index as they were.
 */
#ifndef VTXOTLALIAS_H
#define VTXOTLALIAS_H

#include "vtxtypes.h"
#include "vtxrecords.h"
#include "vtxotlquery.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Uniqueness policy of a table (ucOption), in outlines with duplicate names:
 * 0 unique among the member's siblings, 1 unique in the table, 2 unique
 * across member names and all tables, 3 none (aggregate storage only). */
#define VTX_ALIAS_UNIQUE_SIBLINGS 0
#define VTX_ALIAS_UNIQUE_TABLE    1
#define VTX_ALIAS_UNIQUE_ALL      2
#define VTX_ALIAS_NOT_UNIQUE      3

VTX_API VTX_STS_T adShrOtlCreateAliasTable(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable, VTX_UCHAR_T ucOption);
VTX_API VTX_STS_T adShrOtlDeleteAliasTable(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable);
/* Removes every alias of the table; the table stays. */
VTX_API VTX_STS_T adShrOtlClearAliasTable(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable);
/* bForce lets the reserved names "Unique Name" and "Member ID" be used. */
VTX_API VTX_STS_T adShrOtlRenameAliasTable(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable,
                                           VTX_CSTR_T pszNewAliasTable, VTX_BOOL_T bForce);
/* Copies every alias of pszSource into pszDest (created when missing);
 * without fMerge the destination is cleared first. */
VTX_API VTX_STS_T adShrOtlCopyAliasTable(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszSource, VTX_CSTR_T pszDest,
                                         VTX_BOOL_T fMerge);
/* The language code of a table, stored as given. */
VTX_API VTX_STS_T adShrOtlSetAliasTableLanguage(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable,
                                                VTX_CSTR_T pszLanguageCode);
/* The codes of a table as one block of *pulCount names (0 or 1 today),
 * freed with adShrOtlFree; none gives a null block. */
VTX_API VTX_STS_T adShrOtlGetAliasTableLanguages(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable,
                                                 VTX_ULONG_T *pulCount, VTX_ALIASNAME_T **ppLangArray);
VTX_API VTX_STS_T adShrOtlClearAliasTableLanguages(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable);
/* The alias table whose aliases serve as alternate member identifiers.  The
 * table must exist (1060322); it follows a rename of its table and is
 * dropped with it.  The getter writes an empty name when none is set. */
VTX_API VTX_STS_T adShrOtlSetAltMemberIdAliasTable(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable);
VTX_API VTX_STS_T adShrOtlGetAltMemberIdAliasTable(VTX_HOUTLINE_T hOutline, VTX_ALIASNAME_T pszAliasTable);

/* Sets the member's alias in a table, under the table's uniqueness rule. */
VTX_API VTX_STS_T adShrOtlSetMemberAlias(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszAliasTable,
                                         VTX_CSTR_T pszAlias, VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError);
/* A new copy of the member's alias in the table, freed with adShrOtlFree;
 * null when the member has none there. */
VTX_API VTX_STS_T adShrOtlGetMemberAlias(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszAliasTable,
                                         VTX_STR_T *ppszAlias);
VTX_API VTX_STS_T adShrOtlDeleteMemberAlias(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszAliasTable);
VTX_API VTX_STS_T adShrOtlDeleteMemberAliasByIndex(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                   VTX_USHORT_T usAliasArray);
/* The member whose alias in the table is pszAlias; 1060200 when none. */
VTX_API VTX_STS_T adShrOtlFindAlias(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAlias, VTX_CSTR_T pszAliasTable,
                                    VTX_HMEMBER_T *phMember);
/* The same over every table, in table order. */
VTX_API VTX_STS_T adShrOtlFindAliasAll(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAlias, VTX_HMEMBER_T *phMember);

/* Sets an alias in a table of policy VTX_ALIAS_NOT_UNIQUE (usAliasArray is
 * the table's index): no uniqueness test at all.  Aggregate storage
 * outlines only (1060360); a table of another policy is refused with
 * 1060205.  adShrOtlSetMemberAlias hands such tables over to this call. */
VTX_API VTX_STS_T adShrOtlSetNonUniqueMemberAlias(VTX_HOUTLINE_T pOutline, VTX_HMEMBER_T pItem,
                                                  VTX_USHORT_T usAliasArray, VTX_CSTR_T pszAlias);

/* ---- alias combinations ---------------------------------------------------
 * Besides its one alias per table, a member may carry aliases that stand
 * for it together with other members: "Q1 Sales" for Sales with Q1.  The
 * combination lists those other members, separated by commas, each a name,
 * an alias or a path ("[FY2024].[Q1]"); a name holding a comma is written
 * in brackets.  Each must name exactly one member, not the member itself
 * (1060020).  The alias obeys the table's rules as a member's alias does
 * (1060023 and the policy refusals); one alias may stand for several
 * combinations of the same member.  A find by the alias answers the
 * member.  Combinations go with their member and with their table, and
 * adShrOtlClearAliasTable clears them too. */
VTX_API VTX_STS_T adShrOtlAddAliasCombination(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                              VTX_CSTR_T pszAliasTable, VTX_CSTR_T pszAlias,
                                              VTX_CSTR_T pszCombination);
/* Removes every combination of the member with that alias in the table;
 * 1060200 when there is none. */
VTX_API VTX_STS_T adShrOtlDeleteAliasCombination(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                 VTX_CSTR_T pszAliasTable, VTX_CSTR_T pszAlias);
/* Walks the combinations the alias stands for, in the order they were
 * added.  *ppszCombination goes in null for the first, or as the block the
 * previous call answered, which this call releases; it comes out as a new
 * block with the next combination, null after the last:
 *     VTX_STR_T c = NULL;
 *     while (adShrOtlGetNextAliasCombination(h, m, "Default", "Q1 Sales", &c) == 0 && c) use(c);
 * On failure *ppszCombination stays as it went in, still the caller's. */
VTX_API VTX_STS_T adShrOtlGetNextAliasCombination(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                  VTX_CSTR_T pszAliasTable, VTX_CSTR_T pszAlias,
                                                  VTX_STR_T *ppszCombination);

/* ---- the names that tell repeated member names apart ----------------------
 * Outlines of duplicate names only: both write the member's entry in the
 * table "Unique Name" (1060322 where there is none) and its index entry.
 * An entry that already holds the text (by the outline's case rule) is
 * left alone. */

/* The unique name of adShrOtlGetMemberUniqueName, or the identifier key
 * when the context asks for those (bUseNonUniqueMbrIdKey). */
VTX_API VTX_STS_T adShrOtlSetMemberUniqueAlias(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember);
/* The shortest key of adShrOtlConstructMemberKey, with its refusals:
 * outside a verify or a save 1060623, a key over its limit or a climb of
 * more than VTX_MAX_KEY_NAMES names 1060409, the dimension itself 1060202.
 * A refused call changes nothing. */
VTX_API VTX_STS_T adShrOtlSetMemberKey(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim,
                                       const vtx_genlevelnames_t *pGenLevelName, VTX_HMEMBER_T hMember);

#ifdef __cplusplus
}
#endif
#endif
