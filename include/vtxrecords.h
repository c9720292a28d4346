/*
 * vtxrecords.h -- the records that cross the library boundary.
 *
 * Ownership: a record the library fills for the caller (adShrOtlGetMemberInfo,
 * adShrOtlGetOutlineInfo, ...) belongs to the caller.  A text attribute value
 * (Attribute.usDataType VTX_ATTR_STRING) is an owned string released by
 * adShrOtlFreeMbrInfo; every other field is held inline.
 */
#ifndef VTXRECORDS_H
#define VTXRECORDS_H

#include "vtxtypes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Attribute value types */
#define VTX_ATTR_NONE      0
#define VTX_ATTR_NUMERIC   8
#define VTX_ATTR_BOOLEAN   9
#define VTX_ATTR_STRING   10
#define VTX_ATTR_DATE     11
#define VTX_ATTR_DIMTYPE 255   /* take the type of the member's dimension */

typedef struct vtx_attributevalue {
    VTX_USHORT_T usDataType;        /* VTX_ATTR_... */
    union {
        double      dblValue;       /* numeric */
        VTX_BOOL_T  bValue;         /* Boolean */
        VTX_STR_T   pszValue;       /* text, owned */
        VTX_LONG_T  lDateValue;     /* seconds since 1970-01-01, low word */
        VTX_ULONG64_T raw;
    } value;
} VTX_ATTRIBUTEVALUE_T, *VTX_PATTRIBUTEVALUE_T;

typedef struct vtx_attrspecs {
    VTX_USHORT_T usGenNameBy;
    VTX_USHORT_T usUseNameOf;
    char         cDelimiter;
    VTX_USHORT_T usDateFormat;
    VTX_USHORT_T usBucketingType;
    VTX_STR_T    pszDefaultTrueString;
    VTX_STR_T    pszDefaultFalseString;
    VTX_STR_T    pszDefaultAttrCalcDimName;
    VTX_STR_T    pszDefaultSumMbrName;
    VTX_STR_T    pszDefaultCountMbrName;
    VTX_STR_T    pszDefaultAverageMbrName;
    VTX_STR_T    pszDefaultMinMbrName;
    VTX_STR_T    pszDefaultMaxMbrName;
} VTX_ATTRSPECS_T, *VTX_PATTRSPECS_T;

/* The exported form of a member, used in both directions.  Fields newer than
 * the caller's lClientVersion are neither read nor written. */
typedef struct vtx_mbrinfo {
    VTX_USHORT_T usLevel;
    VTX_USHORT_T usGen;
    VTX_USHORT_T usConsolidation;   /* 0 + 1 - 2 * 3 / 4 % 5 ~ 6 ^ */
    VTX_BOOL_T   fTwoPass;
    VTX_BOOL_T   fExpense;
    VTX_USHORT_T usConversion;      /* 0 none, 1 category, 2 no conversion */
    VTX_USHORT_T usTimeBalance;     /* 0 none, 1 first, 2 last, 3 average */
    VTX_USHORT_T usSkip;            /* 0 none, 1 missing, 2 zeroes, 3 both */
    VTX_USHORT_T usShare;           /* VTX_SHARE_... */
    VTX_USHORT_T usStorage;         /* 0 dense, 1 sparse (3 in aggregate storage) */
    VTX_USHORT_T usCategory;        /* VTX_CAT_... */
    VTX_USHORT_T usStorageCategory;
    VTX_ULONG_T  ulChildCount;
    VTX_BOOL_T   fAttributed;
    VTX_ATTRIBUTEVALUE_T Attribute;
    VTX_BOOL_T   fHasRelDesc;
    VTX_BOOL_T   fHasHAEnabled;
    VTX_HMEMBER_T pLastSibling;     /* last visible child */
    VTX_ULONG_T  ulSiblingCount;    /* own children, hidden ones included */
    VTX_BOOL_T   fFormula;
    VTX_BOOL_T   fUda;
    VTX_BOOL_T   fAlias;
    VTX_BOOL_T   fIndependentDim;
    VTX_UCHAR_T  ucHierarchyType;
    VTX_UCHAR_T  ucDimSolveOrder;
    VTX_UCHAR_T  ucSolveOrder;
    VTX_BOOL_T   fNonUniqueName;
    VTX_BOOL_T   fFlow;
    VTX_UCHAR_T  ucMemberType;      /* 0 numeric, 1 text, 2 date */
    VTX_MBRNAME_T    szMember;
    VTX_MBRNAME_T    szCurMember;
    VTX_MBRCOMMENT_T szComment;
    VTX_MBRNAME_T    szDimName;
} vtx_mbrinfo_t, VTX_MBRINFO_T, *VTX_PMBRINFO_T;

/* The member record of clients older than 5.0 (lClientVersion below
 * 0x50000), 186 bytes: the leading fields of vtx_mbrinfo_t, in the same
 * order, then the member name and the currency member name in blocks of the
 * old length (names of such clients are at most 80 characters).  For those
 * clients every vtx_mbrinfo_t pointer of the interface, in and out, points
 * to this form, and adShrOtlGetMemberInfo hands out a block of this size.
 * A name that does not fit its block is refused with 1060600. */
#define VTX_OLD_MBRNAME_LEN 82
typedef struct vtx_mbrinfo_old {
    VTX_USHORT_T usLevel;
    VTX_USHORT_T usGen;
    VTX_USHORT_T usConsolidation;
    VTX_BOOL_T   fTwoPass;
    VTX_BOOL_T   fExpense;
    VTX_USHORT_T usConversion;
    VTX_USHORT_T usTimeBalance;
    VTX_USHORT_T usSkip;
    VTX_USHORT_T usShare;
    VTX_USHORT_T usStorage;
    VTX_USHORT_T usCategory;
    VTX_USHORT_T usStorageCategory;
    char         szMember[VTX_OLD_MBRNAME_LEN];
    char         szCurMember[VTX_OLD_MBRNAME_LEN];
} vtx_mbrinfo_old_t, VTX_MBRINFO_OLD_T;
#ifdef __cplusplus
static_assert(sizeof(vtx_mbrinfo_old_t) == 186, "the record of clients before 5.0 is 186 bytes");
#else
_Static_assert(sizeof(vtx_mbrinfo_old_t) == 186, "the record of clients before 5.0 is 186 bytes");
#endif

/* consolidation */
#define VTX_CONS_ADD 0
#define VTX_CONS_SUB 1
#define VTX_CONS_MUL 2
#define VTX_CONS_DIV 3
#define VTX_CONS_PCT 4
#define VTX_CONS_IGNORE 5
#define VTX_CONS_NEVER 6
/* usShare */
#define VTX_SHARE_STORE        0
#define VTX_SHARE_NEVER        1
#define VTX_SHARE_LABEL        2
#define VTX_SHARE_SHARED       3
#define VTX_SHARE_DYNCALCSTORE 4
#define VTX_SHARE_DYNCALC      5
#define VTX_SHARE_SHARED2      9
/* usCategory */
#define VTX_CAT_NONE      0
#define VTX_CAT_ACCOUNTS  1
#define VTX_CAT_TIME      2
#define VTX_CAT_COUNTRY   3
#define VTX_CAT_CURRENCY  4
#define VTX_CAT_CURRPART  5
#define VTX_CAT_ATTRIBUTE 6
#define VTX_CAT_ATTRCALC  7
#define VTX_CAT_VIEW      8
#define VTX_CAT_CELLPROP  9
#define VTX_CAT_SANDBOX  10
/* usOutlineType */
#define VTX_OTL_REGULAR   0
#define VTX_OTL_CURRENCY  1
#define VTX_OTL_AGGSTORE  3
#define VTX_OTL_OLDAGG    5   /* only on the way in: aggregate storage of the old paged version */
/* usOtlNameType */
#define VTX_NAMES_UNIQUE   0
#define VTX_NAMES_DUP      1
#define VTX_NAMES_RELAXED  2

/* The exported form of the outline. */
typedef struct vtx_outlineinfo {
    VTX_BOOL_T      fCaseSensitive;
    VTX_USHORT_T    usOutlineType;        /* VTX_OTL_... */
    VTX_BOOL_T      fAutoConfigure;
    VTX_USHORT_T    usNumAliasTables;     /* without "Unique Name" and "Member ID" */
    VTX_ALIASNAME_T pAliasTables[VTX_EXP_ALIAS_TABLES];
    VTX_BOOL_T      fEnableVaryingAttrs;
    VTX_BOOL_T      fNonUniqueName;
    VTX_UCHAR_T     ucImpliedShareSetting;
    VTX_BOOL_T      fEnableMemberType;
    VTX_USHORT_T    usOtlNameType;        /* VTX_NAMES_... */
    VTX_USHORT_T    usPreAllocatedChildren;
} vtx_outlineinfo_t, VTX_OUTLINEINFO_T, *VTX_POUTLINEINFO_T;

/* Verification findings of one member.  Every edit that takes one zeroes it
 * on entry, whatever happens next. */
typedef struct vtx_outerror {
    VTX_HMEMBER_T hMember;
    VTX_ULONG_T   ulErrors;
    VTX_ULONG_T   ulErrors2;
    VTX_ULONG_T   ulErrors3;
    VTX_ULONG_T   ulErrors4;
    VTX_ULONG_T   ulErrors5;
    VTX_ULONG_T   ulErrors6;
} vtx_outerror_t, VTX_OUTERROR_T, *VTX_POUTERROR_T;

#ifdef __cplusplus
}
#endif
#endif
