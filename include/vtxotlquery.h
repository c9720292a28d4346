/*
 * vtxotlquery.h -- member reads beyond one record: generations, several
 * records at once, the names and keys that tell duplicate members apart,
 * and query handles.
 *
 * Member keys.  In an outline of duplicate names a member is told apart by
 * a bracketed path (see vtxotlfind.h for the form; a "]" inside a name is
 * written twice):
 *   unique name   "[Year].[Y7].[Jan]": the member and its ancestors up to
 *                 the first one whose name does not repeat.
 *   identifier    "[Year].[17].[Jan]": dimension, member id, name.
 *   key           the shortest unique form, built while the outline is
 *                 verified or saved: "[D].[N]", "[D]@[N]", "[P].[N]",
 *                 "[D].[P].[N]", "[D]@[gen]|[N]", or an anchor followed by
 *                 ".[name]" steps.
 * The separators "].[", "]@[", "]|[" are read by other programs: they do
 * not change.
 *
 * Query handles.  A query handle holds the members a query brought back,
 * as flat records the host adds one by one: only the fields the query
 * fetched, listed in a field mask, with the names of the related members
 * in place of tree links.  Its records are never walked as a tree: every
 * navigation, find and edit on a query handle is refused with 1060068, and
 * adShrOtlGetMemberField serves query handles only.  adShrOtlCloseOutline
 * ends a query handle and frees every record and string it holds.
 */
#ifndef VTXOTLQUERY_H
#define VTXOTLQUERY_H

#include "vtxtypes.h"
#include "vtxnetctx.h"
#include "vtxrecords.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The output buffer of the member keys, terminator included. */
#define VTX_MBRKEY_LEN 16500
/* The most names a unique name or a key climbs through. */
#define VTX_MAX_KEY_NAMES 127

/* ---- generations and several records ---------------------------------------- */

/* The member's generation (1 for a dimension). */
VTX_API VTX_STS_T adShrOtlGetMemberGen(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_USHORT_T *pusGen);
/* adShrOtlGetMemberInfo for each of memberCount handles: pInfoArr[i] and
 * pStsArr[i] receive the record (null on failure) and the status of entry
 * i.  The call itself fails only when an argument is missing; the records
 * are freed one by one with adShrOtlFreeMbrInfo(ctx, 1, p). */
VTX_API VTX_STS_T adShrOtlGetMemberInfoArray(VTX_HOUTLINE_T hOutline, VTX_ULONG_T memberCount,
                                             const VTX_HMEMBER_T *hMemberArr, vtx_mbrinfo_t **pInfoArr,
                                             VTX_STS_T *pStsArr);

/* ---- unique names and keys ------------------------------------------------ */

/* A new block holding the member's unique name, freed with adShrOtlFree.
 * A dimension's is its own name; the root has none (a null block).  More
 * than VTX_MAX_KEY_NAMES names is refused with 1060409. */
VTX_API VTX_STS_T adShrOtlConstructMemberUniqueName(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                    VTX_STR_T *ppszFullName);
/* The stored "Unique Name" alias when the member has one and the tree and
 * names are as they were saved, else the unique name built as above.  A new block, freed with adShrOtlFree. */
VTX_API VTX_STS_T adShrOtlGetMemberUniqueName(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                              VTX_STR_T *ppszUniqueName);
/* "[dimension].[mbrId].[member]" into szFullName, a buffer of
 * VTX_MBRKEY_LEN bytes (a dimension is its own dimension); the root has
 * none and gives an empty text. */
VTX_API VTX_STS_T adShrOtlConstructMemberIDKey(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                               VTX_STR_T szFullName);

/* A generation (fGen) or level name of a dimension. */
typedef struct vtx_genlevelname {
    VTX_BOOL_T   fGen;
    VTX_USHORT_T usGenOrLevel;
    VTX_CSTR_T   pszName;
} vtx_genlevelname_t;
typedef struct vtx_genlevelnames {
    VTX_ULONG_T               ulCount;
    const vtx_genlevelname_t *pNames;
} vtx_genlevelnames_t;

/* The shortest unique key of a member whose name repeats, into szFullName
 * (VTX_MBRKEY_LEN bytes), from the duplicate-name marks that verification
 * leaves on members.  hDim is the member's dimension (another: 1060057); pGenLevelName the
 * generation and level names to use (null: the dimension's own).  Served
 * only while the outline is verified or saved (1060623) and only for a
 * member marked as a duplicate (1060624).  The dimension itself answers
 * its name and 1060202.  A key over VTX_MBRKEY_LEN bytes, or a climb of
 * more than VTX_MAX_KEY_NAMES names, is refused with 1060409.  On any
 * refusal szFullName holds an empty text. */
VTX_API VTX_STS_T adShrOtlConstructMemberKey(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim,
                                             const vtx_genlevelnames_t *pGenLevelName, VTX_HMEMBER_T hMember,
                                             VTX_STR_T szFullName);

/* ---- name tests -------------------------------------------------------------- */

/* Whether a member name repeats in the outline. */
VTX_API VTX_STS_T adShrOtlIsMemberNameDuplicate(VTX_HOUTLINE_T hOutline, VTX_CSTR_T szMember,
                                                VTX_BOOL_T *pbNonUnique);
/* What the last verification found in a dimension (hMember must be one,
 * else 1060057): whether names repeat in it at all, at a generation (bGen)
 * or level below 127, and how many of its members bear a repeated name.
 * Before any verification, and in an outline of unique names, names count
 * as unique and the count is 0. */
VTX_API VTX_STS_T adShrOtlIsMemberNameUniqueWithinDim(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                      VTX_BOOL_T *pbNameUnique);
VTX_API VTX_STS_T adShrOtlIsMemberNameUniqueWithinDimAtGenLevel(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                                VTX_BOOL_T bGen, VTX_USHORT_T usGenLevel,
                                                                VTX_BOOL_T *pbNameUnique);
VTX_API VTX_STS_T adShrOtlGetCountOfDupMemberNameInDim(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                       VTX_ULONG_T *pulDupCount);
/* Whether a dimension demands unique member names.  Allowing repeats needs
 * an outline of duplicate names (1060215); demanding unique names is
 * refused with 1060345, naming the first repeated name, while names repeat
 * in the dimension. */
VTX_API VTX_STS_T adShrOtlGetDimensionNameUniqueness(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim,
                                                     VTX_BOOL_T *pbUnique);
VTX_API VTX_STS_T adShrOtlSetDimensionNameUniqueness(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim,
                                                     VTX_BOOL_T bUnique);
/* The member's type: 0 numeric, 1 text, 2 date. */
VTX_API VTX_STS_T adShrOtlGetMemberType(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_USHORT_T *pusType);

/* ---- query handles -------------------------------------------------------------- */

/* Field IDs of a query-form record and of adShrOtlGetMemberField.  An ID
 * with the high bit set is a bit of the second mask word. */
#define VTX_FLD_MEMBER          0x1u         /* string */
#define VTX_FLD_LEVEL           0x2u         /* 16-bit */
#define VTX_FLD_GEN             0x4u         /* 16-bit */
#define VTX_FLD_CONSOLIDATION   0x8u         /* 16-bit */
#define VTX_FLD_TWOPASS         0x10u        /* byte */
#define VTX_FLD_EXPENSE         0x20u        /* byte */
#define VTX_FLD_CONVERSION      0x40u        /* 16-bit */
#define VTX_FLD_CURMEMBER       0x80u        /* string */
#define VTX_FLD_TIMEBALANCE     0x100u       /* 16-bit */
#define VTX_FLD_SKIP            0x200u       /* 16-bit */
#define VTX_FLD_SHARE           0x400u       /* 16-bit */
#define VTX_FLD_STORAGE         0x800u       /* 16-bit */
#define VTX_FLD_CATEGORY        0x1000u      /* 16-bit */
#define VTX_FLD_STORAGECATEGORY 0x2000u      /* 16-bit */
#define VTX_FLD_COMMENT         0x4000u      /* string */
#define VTX_FLD_CHILDCOUNT      0x8000u      /* 32-bit */
#define VTX_FLD_MEMNO           0x10000u     /* 32-bit */
#define VTX_FLD_DIMNAME         0x20000u     /* string */
#define VTX_FLD_DIMNO           0x40000u     /* 32-bit */
#define VTX_FLD_DEFAULTALIAS    0x80000u     /* string: the default table's alias */
#define VTX_FLD_SIBLING         0x100000u    /* string: name of the next sibling */
#define VTX_FLD_PREVSIBLING     0x200000u    /* string */
#define VTX_FLD_PARENT          0x400000u    /* string */
#define VTX_FLD_CHILD           0x800000u    /* string: name of the first child */
#define VTX_FLD_UDA             0x1000000u   /* string: first user attribute */
#define VTX_FLD_FORMULA         0x2000000u   /* string */
#define VTX_FLD_LASTFORMULA     0x4000000u   /* string */
#define VTX_FLD_COMMENTEX       0x8000000u   /* string */
#define VTX_FLD_DEFAULTALIAS2   0x10000000u  /* string: as VTX_FLD_DEFAULTALIAS */
#define VTX_FLD_ONE             0x20000000u  /* 32-bit: always 1 */
#define VTX_FLD_CURRCONVDB      0x40000000u  /* byte */
#define VTX_FLD_STATUS          0x80000001u  /* 32-bit */
#define VTX_FLD_ATTRIBUTED      0x80000002u  /* byte */
#define VTX_FLD_ATTRIBUTE       0x80000020u  /* VTX_ATTRIBUTEVALUE_T */
#define VTX_FLD_FORMATSTRING    0x80000080u  /* string */
#define VTX_FLD_ALIAS0          0x80000400u  /* string: alias in table 0 */

/* A text attribute value read through VTX_FLD_ATTRIBUTE is cut to this
 * many bytes. */
#define VTX_FLD_ATTRTEXT_MAX 4100

/* One member as a query brought it back.  ulBitmask lists the fields the
 * query fetched (field IDs above, word 0 for the plain IDs, word 1 for the
 * low 31 bits of the high-bit IDs).  Every field given is kept, but
 * adShrOtlGetMemberField serves only those in the mask, and
 * adShrOtlGetMemberInfo only a record whose mask holds all of 0xffff.
 * Every text is copied; null texts stay null. */
typedef struct vtx_querymbr {
    VTX_ULONG_T  ulBitmask[2];
    const vtx_mbrinfo_t *pInfo;     /* szMember, levels, flags, comment, attribute, ... */
    VTX_ULONG_T  ulMemno;
    VTX_UCHAR_T  ucDimno;
    VTX_ULONG_T  ulStatus;
    VTX_BOOL_T   fCurrConvDB;
    VTX_UCHAR_T  ucNameUnique;      /* the server's duplicate-name marks; 0x08 a duplicate */
    VTX_CSTR_T   pszSibling;        /* names of the related members */
    VTX_CSTR_T   pszPrevSibling;
    VTX_CSTR_T   pszParent;
    VTX_CSTR_T   pszChild;
    VTX_CSTR_T   pszOriginalMbr;    /* a shared member: its stored member's name */
    VTX_CSTR_T   pszDefaultAlias;   /* alias in the default table */
    VTX_CSTR_T   pszAlias0;         /* alias in table 0 */
    VTX_CSTR_T   pszUserAttr;       /* first user attribute */
    VTX_CSTR_T   pszCalc;
    VTX_CSTR_T   pszLastCalc;
    VTX_CSTR_T   pszCommentEx;
    VTX_CSTR_T   pszFormatString;
} vtx_querymbr_t;

/* A new, empty query handle.  fNonUniqueName: the queried outline allows
 * duplicate names (its default table is then table 2). */
VTX_API VTX_STS_T adShrOtlNewQueryOutline(vtx_netctx_t *pNetCtx, VTX_BOOL_T fNonUniqueName,
                                          VTX_HOUTLINE_T *phOutline);
/* Adds one record; *phMember is its handle, valid until the handle is
 * closed.  An edit handle is refused with 1060068.  A failure adds
 * nothing. */
VTX_API VTX_STS_T adShrOtlAddQueryMember(VTX_HOUTLINE_T hOutline, const vtx_querymbr_t *pQueryMbr,
                                         VTX_HMEMBER_T *phMember);
/* The records of a query handle in the order they were added. */
VTX_API VTX_STS_T adShrOtlGetQueryMemberCount(VTX_HOUTLINE_T hOutline, VTX_ULONG_T *pulCount);
VTX_API VTX_STS_T adShrOtlGetQueryMember(VTX_HOUTLINE_T hOutline, VTX_ULONG_T ulIndex, VTX_HMEMBER_T *phMember);
/* One field of a query-form record into a new block freed with
 * adShrOtlFree (for VTX_FLD_ATTRIBUTE, a text value is freed with it:
 * release the block with adShrOtlFreeAttribute first).  A null text
 * answers a null block.  An edit handle: 1060068; an unknown ID, or one the
 * record's mask lacks: 1060332. */
VTX_API VTX_STS_T adShrOtlGetMemberField(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_ULONG_T ulFieldID,
                                         void **ppData);

#ifdef __cplusplus
}
#endif
#endif
