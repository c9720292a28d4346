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

#ifdef __cplusplus
}
#endif
#endif
