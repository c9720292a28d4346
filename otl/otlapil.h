/*
 * otlapil.h -- the internal records of an outline.
 *
 * An outline is a forest of dimension trees under one hidden root.  The
 * outline record owns every member record (through two pools), every alias,
 * hash table, list and locale that hangs from it; otlFreeOutlineData
 * releases all of it.
 *
 * Invariants of the tree (checked by verification, kept by every edit):
 *   1. pHeadItem is a large record of generation 0 with ulDimno 255; its
 *      children are the dimensions, at generation 1.
 *   2. For every record: pChild is the first child, pSibling/pPrevSibling
 *      link the children of one parent both ways, and every child's pParent
 *      is that parent (null for the root's children is never the case: the
 *      dimensions' parent is pHeadItem).
 *   3. ulSiblingCount of a record counts its own children, hidden ones
 *      included; MbrInfo.pLastSibling names its last child that is not
 *      hidden (ucFlags2 0x04).
 *   4. A record never changes size (ucFlags 0x10 tells a small one) and
 *      never moves: a member handle stays valid until the member is deleted.
 *   5. A record with ucFlags 0x08 came from a pool and is never freed on its
 *      own; the pool returns all its slots at close.
 *   6. usShare of a record is read through otlGetShare, never from the
 *      small-record bits alone.
 *   7. Every dimension record sits in DimTable at ulDimno - 1.
 */
#ifndef OTLAPIL_H
#define OTLAPIL_H

#include "vtxtypes.h"
#include "vtxnetctx.h"
#include "vtxrecords.h"
#include "vtxstatus.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- limits -------------------------------------------------------------- */
#define OTL_MAX_DIMS          255      /* dimensions in one outline */
#define OTL_DIM_SLOTS         256      /* entries of per-dimension arrays */
#define OTL_MAX_DIM_ID        254      /* nextDimId above this refuses a new dimension */
#define OTL_ROOT_DIMNO        255      /* ulDimno of the root */
#define OTL_MAX_ALIAS_TABLES  58       /* alias table slots */
#define OTL_DUP_COUNT_SLOTS   59       /* member names + one per alias table */
#define OTL_DTS_SLOTS         8        /* dynamic time series entries */
#define OTL_BLOOM_BYTES       513      /* dimension name filter, 4104 bits */
#define OTL_ROOT_NAME         "Database (undefined)"
#define OTL_ROOT_NAME_BLOCK   1025     /* bytes given to the root's name */
#define OTL_POOL_MIN_RECORDS  100      /* records in the first and in each grown pool block */
#define OTL_POOL_MAX_FACTOR   1024     /* pool growth factor stops doubling here */

/* ---- ucStateFlag --------------------------------------------------------- */
#define OTL_STATE_READING     0x01  /* being read */
#define OTL_STATE_VERIFYING   0x02  /* being verified */
#define OTL_STATE_WRITING     0x04  /* being written */
#define OTL_STATE_SHAPE       0x08  /* tree or a name changed since hash and numbers were built */
#define OTL_STATE_CHANGED     0x10  /* changed since the last save */
#define OTL_STATE_EDITED      0x18

/* ---- ucFlags ------------------------------------------------------------- */
#define OTL_FLAG_MARKED       0x01  /* marked for adShrOtlDeleteMarked */
#define OTL_FLAG_DIMCHANGED   0x02  /* dimension touched by move, sort, association */
#define OTL_FLAG_QUERYMASK    0x04  /* query-form record with a field mask */
#define OTL_FLAG_POOLED       0x08  /* record lives in a pool block */
#define OTL_FLAG_SMALL        0x10  /* small record */
#define OTL_FLAG_FORMULA      0x20  /* has a formula */
#define OTL_FLAG_COMMENTEX    0x40  /* has an extended comment */
#define OTL_FLAG_DUP          0x80  /* dimension: duplicates allowed; member: duplicate name */

/* ---- ucFlags2 ------------------------------------------------------------ */
#define OTL_FLAG2_TYPEMASK    0x03  /* member type 0 numeric, 1 text, 2 date */
#define OTL_FLAG2_HIDDEN      0x04  /* hidden member */
#define OTL_FLAG2_FLOW        0x08  /* flow member */
#define OTL_FLAG2_GAINEDCHILD 0x10  /* parent gained a child */
#define OTL_FLAG2_EXPENSE     0x20  /* copy of fExpense (paged version above 81) */

/* ---- ucInfoFlags --------------------------------------------------------- */
#define OTL_INFO_CONSOL       0x0007  /* consolidation */
#define OTL_INFO_ATTRIBUTED   0x0008  /* attributes associated */
#define OTL_INFO_RELDESC      0x0010  /* relational descendants */
#define OTL_INFO_HAENABLED    0x0020  /* hybrid analysis enabled */
#define OTL_INFO_SH_LABEL     0x0040  /* small: usShare 2 */
#define OTL_INFO_SH_NEVER     0x0080  /* small: usShare 1 */
#define OTL_INFO_SH_SHARED    0x0100  /* small: usShare 3 */
#define OTL_INFO_DYNHIER      0x0200  /* generation-2 member of a dynamic hierarchy */
#define OTL_INFO_INDEPMBR     0x0400  /* time-varying independent member */
#define OTL_INFO_INDEPDIMMBR  0x0800  /* member of an independent dimension */
#define OTL_INFO_SOLVEORDER   0x1000  /* has a solve order (old paged versions) */
#define OTL_INFO_SH_SHARED2   0x2000  /* small: usShare 9 */
#define OTL_INFO_UDA          0x8000  /* has user attributes */
#define OTL_INFO_SHAREBITS    (OTL_INFO_SH_LABEL | OTL_INFO_SH_NEVER | OTL_INFO_SH_SHARED | OTL_INFO_SH_SHARED2)

/* ---- ucNameUnique -------------------------------------------------------- */
#define OTL_NU_IN_DIM         0x01  /* name repeats inside the dimension */
#define OTL_NU_AT_GEN         0x02  /* repeats at the same generation */
#define OTL_NU_AT_LEVEL       0x04  /* repeats at the same level */
#define OTL_NU_DUP            0x08  /* the name is a duplicate */

/* ---- ucDimFlags ---------------------------------------------------------- */
#define OTL_DIMF_SCAASSOC     0x01  /* associated as a varying attribute */
#define OTL_DIMF_INDEP        0x02  /* independent dimension of varying attributes */
#define OTL_DIMF_BUILDID      0x04  /* build id in use */

/* ---- ucTempBitmask ------------------------------------------------------- */
#define OTL_TEMP_VIEW         0x01  /* a temporary large view of a small record */
#define OTL_TEMP_HASUDA       0x02  /* user attributes in the store */

/* ---- ucHierarchyType ----------------------------------------------------- */
#define OTL_HIER_DISABLED     3
#define OTL_HIER_ENABLED      4
#define OTL_HIER_BELOWGEN2    5
#define OTL_HIER_STORED       6
#define OTL_HIER_DYNAMIC      7

/* ---- records hanging from members and the outline ------------------------ */

typedef struct _vtx_otlmbr_t _vtx_otlmbr_t, VTX_OTLMBR_T, *VTX_POTLMBR_T;
typedef struct _vtx_otlmbrlarge_t _vtx_otlmbrlarge_t, VTX_OTLMBRLARGE_T, *VTX_POTLMBRLARGE_T;

/* One alias of a member in one table. */
typedef struct _vtx_otlaliasarrayrec_t {
    VTX_STR_T pszDefName;   /* the member's alias in that table, owned; null for none */
} _vtx_otlaliasarrayrec_t, VTX_OTLALIASARRAYREC_T, *VTX_POTLALIASARRAYREC_T;

/* An alias standing for a combination of members. */
typedef struct _vtx_otlaliasrec_t {
    VTX_STR_T pszAlias;                  /* owned */
    VTX_STR_T pszCombination;            /* the other members it stands for, owned */
    struct _vtx_otlaliasrec_t *pNext;
} _vtx_otlaliasrec_t, VTX_OTLALIASREC_T, *VTX_POTLALIASREC_T;

/* A place of a shared member in its stored member's record. */
typedef struct _vtx_rparent_t {
    VTX_POTLMBR_T parent;
    VTX_POTLMBR_T child;
} _vtx_rparent_t, VTX_RPARENT_T, *VTX_PRPARENT_T;
#define OTL_RPARENT_GROW 5

/* Attribute handles of a base member, one per associated attribute dimension. */
typedef struct _BaseMbr {
    VTX_USHORT_T usArraySize;
    VTX_HATTR_T *hAttrArray;
} OTLMBR_BASEATTR_MAP;

/* An attribute dimension associated with a base dimension. */
typedef struct _otl_udimnoptr {
    VTX_ULONG_T   DimNo;
    VTX_UCHAR_T   countOfIndepDims;
    VTX_UCHAR_T   ucDiscreteIndepCount;
    VTX_USHORT_T  usReserved;
    VTX_POTLMBR_T pDimPtr;
    VTX_POTLMBR_T *pIndepDims;
} OTL_UDIMNOPTR, *OTL_PUDIMNOPTR;

typedef union _otlmbr_attr_map {
    struct _AttrMbr {                 /* a member of an attribute dimension */
        VTX_HATTR_T hAttr;            /* its slot in MbrArray */
        VTX_STR_T   pszShortName;     /* value text before a long name was built, owned */
    } AttrMbr;
    struct _BaseDim {                 /* a base dimension */
        VTX_UCHAR_T    usAttrDims;    /* associated attribute dimensions */
        VTX_UCHAR_T    ucAssocSCADimCount;
        OTL_PUDIMNOPTR pAttrs;
        VTX_USHORT_T  *pAttrMapLevels;
    } BaseDim;
    struct _AttrDim {                 /* an attribute dimension */
        VTX_USHORT_T  usMapLevel;
        VTX_BOOL_T    isLevelSet;
        VTX_POTLMBR_T pBaseDim;
        VTX_HATTR_T   hAttr;
    } AttrDim;
} OTLMBR_ATTR_MAP;

/* Attribute member to base member bitmap of an attribute dimension. */
typedef struct _OTL_ATTRTOBASE_BITMAP {
    VTX_ULONG_T  ulNum;      /* 32-bit words */
    VTX_ULONG_T *pulBitMap;
} OTL_ATTRTOBASE_BITMAP, *OTL_PATTRTOBASE_BITMAP;

/* One generation or level name of a dimension. */
typedef struct _vtx_namelist_t {
    VTX_STR_T    pszName;       /* owned */
    VTX_BOOL_T   fGen;          /* generation name (else level name) */
    VTX_USHORT_T usGenOrLevel;
    VTX_BOOL_T   fUniqueName;   /* members of that generation must be unique */
    struct _vtx_namelist_t *pNext;
} _vtx_namelist_t, VTX_NAMELIST_T, *VTX_PNAMELIST_T;

/* A user-defined attribute of a member. */
typedef struct _vtx_userattr_t {
    VTX_STR_T pszUserAttr;      /* owned */
    struct _vtx_userattr_t *pNext;
} _vtx_userattr_t, VTX_USERATTR_T, *VTX_PUSERATTR_T;

/* One dynamic time series entry. */
typedef struct _vtx_vtd_t {
    VTX_BOOL_T      bIsEnabled;
    VTX_USHORT_T    usGen;                          /* bound generation, 65535 unbound */
    VTX_ALIASNAME_T pAliasName[OTL_MAX_ALIAS_TABLES];
} _vtx_vtd_t, VTX_DTSMBRITEM_T, *VTX_PDTSMBRITEM_T;
#define OTL_DTS_UNBOUND 65535

/* The attribute handle table: blocks of 1028 slots, the last word of each
 * block links the next one. */
#define OTL_MBRARRAY_SLOTS 1028
typedef struct _vtx_mbrarray_t {
    VTX_ULONG_T ulCount;     /* slots ever handed out */
    void      **pFirst;      /* first block */
    void      **pLast;       /* block being filled */
} VTX_MBRARRAY_T;

/* Per-dimension duplicate-name state kept by verification. */
typedef struct _vtx_dupmbrarry_t {
    VTX_UCHAR_T  pDimNonUnique[256];
    VTX_UCHAR_T  ucArrySize;
    VTX_ULONG_T  ulDupCount;
    void        *pDupMbrs;   /* VTX_POTLMBR_FAST_HUGE_ARRAY_T */
} _vtx_dupmbrarry_t, VTX_DUPMBRARRY_T, *VTX_PDUPMBRARRY_T;

/* Header of the object file an outline came from. */
typedef struct vTX_HEADER {
    char           zServer[VTX_MBRNAME_LEN];
    char           zApplication[VTX_ALIASNAME_LEN];
    char           zDatabase[VTX_ALIASNAME_LEN];
    char           zUser[VTX_MBRCOMMENT_LEN];
    VTX_ULONG64_T  tTime;
} vTX_HEADER_T;

/* ---- counts ---------------------------------------------------------------- */

typedef struct _OTL_DIM_MAP {
    VTX_ULONG_T ulMembers;       /* stored members of the dimension */
    VTX_ULONG_T ulTotalMembers;  /* ulMemno of the dimension record */
    VTX_ULONG_T uiDimType;       /* 0 attr calc, 1 standard, 3 attribute-associated base, 4 attribute */
    VTX_LONG_T  ulfpAbsolute;    /* file position of the dimension */
} OTL_DIM_MAP, *OTL_PDIM_MAP;

typedef struct _OTL_COUNTS {
    VTX_ULONG_T ulDimensions;
    VTX_ULONG_T ulStandardDims;       /* neither attribute nor attribute calculation */
    VTX_ULONG_T ulMembers;            /* all records below the root */
    VTX_ULONG_T ulRealMembers;        /* stored members */
    VTX_ULONG_T ulUniqueMemberNames;  /* members that are not usShare 3 */
    VTX_ULONG_T ulComments;
    VTX_ULONG_T ulCommentsEx;
    VTX_ULONG_T ulMaxMemberBlock;
    VTX_ULONG_T ulMaxCommentBlock;
    VTX_ULONG_T ulAliasContexts;
    VTX_ULONG_T *pulAliasMembers;     /* per alias table */
    VTX_ULONG_T *pulAliases;          /* per alias table */
    OTL_PDIM_MAP pDimensionMaps;      /* one per dimension */
} OTL_COUNTS, *OTL_PCOUNTS;

/* ---- member records -------------------------------------------------------- */

/* Info block of a small record. */
typedef struct vtx_intmbrinfo {
    VTX_STR_T     szMember;       /* member name, owned */
    VTX_POTLMBR_T pLastSibling;   /* last child that is not hidden */
    VTX_ULONG_T   ulChildCount;   /* children as the caller sees them */
    VTX_UCHAR_T   usLevel;
    VTX_UCHAR_T   usGen;
    VTX_USHORT_T  usTimeBalance;
    VTX_USHORT_T  usSkip;
    VTX_USHORT_T  ucInfoFlags;    /* OTL_INFO_... */
} VTX_INTMBRINFO_T, *VTX_PINTMBRINFO_T;

/* Info block of a large record: the small block, then its own fields. */
typedef struct vtx_intmbrinfolarge {
    VTX_STR_T     szMember;
    VTX_POTLMBR_T pLastSibling;
    VTX_ULONG_T   ulChildCount;
    VTX_UCHAR_T   usLevel;
    VTX_UCHAR_T   usGen;
    VTX_USHORT_T  usTimeBalance;
    VTX_USHORT_T  usSkip;
    VTX_USHORT_T  ucInfoFlags;
    VTX_ATTRIBUTEVALUE_T Attribute;
    VTX_STR_T     szCurMember;    /* currency member or category, owned */
    VTX_USHORT_T  usConversion;
    VTX_BOOL_T    fTwoPass;
    VTX_BOOL_T    fExpense;
    VTX_STR_T     szComment;      /* owned */
    VTX_STR_T     szDimName;      /* query-form records only, owned */
    VTX_UCHAR_T   usCategory;
    VTX_UCHAR_T   usStorageCategory;
    VTX_UCHAR_T   usStorage;
    VTX_UCHAR_T   usShare;
    VTX_UCHAR_T   ucHierarchyType;
} VTX_INTMBRINFOLARGE_T, *VTX_PINTMBRINFOLARGE_T;

/* The head both record sizes share, up to and including ulHdl32.  Written
 * once as a macro so the two layouts can never drift apart. */
#define OTL_MEMBER_HEAD                                                        \
    VTX_POTLALIASARRAYREC_T AliasArray;  /* one entry per alias table */       \
    VTX_ULONG_T   ulMemno;        /* number in the dimension, post-order */    \
    VTX_ULONG_T   ulActualMemno;  /* number among stored members */            \
    VTX_INT32_T   mbrId;          /* id in the dimension, never reused */      \
    VTX_INT32_T   persistMbrId;   /* id that survives restructuring */         \
    VTX_POTLMBR_T pSibling;       /* next sibling */                           \
    VTX_POTLMBR_T pPrevSibling;   /* previous sibling */                       \
    VTX_POTLMBR_T pParent;                                                     \
    VTX_POTLMBR_T pChild;         /* first child */                            \
    OTLMBR_BASEATTR_MAP BaseMap;  /* attribute handles of a base member */     \
    VTX_ULONG_T   ulSiblingCount; /* own children, hidden included */          \
    VTX_PRPARENT_T refParentAry;  /* places of shared copies */                \
    VTX_USHORT_T  refParentCnt;                                                \
    VTX_BOOL_T    isShared;       /* refParentAry owned by this record */      \
    VTX_UCHAR_T   ucNameUnique;   /* OTL_NU_... */                             \
    VTX_UCHAR_T   ulDimno;        /* 1-based, 255 on the root */               \
    VTX_UCHAR_T   ucFlags;        /* OTL_FLAG_... */                           \
    VTX_UCHAR_T   ucSolveOrder;   /* 0..127 */                                 \
    VTX_UCHAR_T   ucDimSolveOrder;                                             \
    union {                                                                    \
        VTX_STR_T     szOriginalMbr;  /* query form: name of the stored member */ \
        VTX_POTLMBR_T hOriginalMbr;   /* the stored member a share stands for */  \
    } OriginalMbr;                                                             \
    VTX_UCHAR_T   ucAggLevelUsage;                                             \
    VTX_UCHAR_T   ucFlags2;       /* OTL_FLAG2_... */                          \
    VTX_UCHAR_T   ucBuildId;      /* build pass number */                      \
    VTX_UCHAR_T   filler;                                                      \
    VTX_ULONG_T   ulHdl32         /* 32-bit handle for old clients */

struct _vtx_otlmbr_t {
    OTL_MEMBER_HEAD;
    VTX_INTMBRINFO_T MbrInfo;
};

struct _vtx_otlmbrlarge_t {
    OTL_MEMBER_HEAD;
    VTX_INTMBRINFOLARGE_T MbrInfo;
    VTX_STR_T     pszCalc;              /* formula text, owned */
    VTX_STR_T     pszLastCalc;          /* last formula used successfully, owned */
    VTX_BOOL_T    fUsedNameList;
    VTX_UCHAR_T   ucTempBitmask;        /* OTL_TEMP_... */
    VTX_UCHAR_T   NumOfAttrDim;         /* entries of the three arrays below */
    VTX_UCHAR_T   ucDimFlags;           /* OTL_DIMF_... */
    VTX_ULONG_T   ulMemnov;             /* number among members with a cell */
    VTX_STR_T    *ppszArrAttrDim;       /* query form */
    VTX_STR_T    *ppszArrAttrMem;       /* query form */
    VTX_ATTRIBUTEVALUE_T *pArrAttribute;
    VTX_ULONG_T   ulBitmask[2];         /* field mask of a query-form record */
    VTX_STR_T     pszCommentEx;         /* extended comment, owned */
    VTX_ULONG_T   ulStatus;             /* duplicate-name scan state */
    VTX_BOOL_T    fCurrConvDB;
    VTX_UCHAR_T   linkedAttrAttachLevel;
    VTX_UCHAR_T   usAttrCode;           /* 0, 1 attribute member, 2 has attributes, 4 attr calc */
    VTX_BOOL_T    fFlexibleDimension;
    VTX_PNAMELIST_T pNameList;          /* generation and level names */
    VTX_LONG_T    fp;                   /* file position */
    OTL_PATTRTOBASE_BITMAP pAttrToBaseMap;
    OTLMBR_ATTR_MAP Map;
    VTX_PUSERATTR_T pUserAttrList;
    VTX_POTLALIASREC_T *pAliasRec;      /* alias combinations per table */
    VTX_STR_T     pszFormatString;      /* owned */
    VTX_UCHAR_T   ucType;               /* member type */
};

/* ---- pools ----------------------------------------------------------------- */

typedef struct _otl_MemAllocs {
    void        *pBuf;          /* zeroed records */
    VTX_ULONG_T  uFreeCount;    /* records not yet handed out */
    VTX_ULONG_T  uPosFreeItem;  /* index of the next record to hand out */
    VTX_ULONG_T  uCapacity;     /* records in pBuf */
    struct _otl_MemAllocs *pNext;
} OTL_MEMALLOC, *OTL_PMEMALLOC;

/* ---- the outline record ---------------------------------------------------- */

typedef struct _vtx_otl_t _vtx_otl_t, VTX_OTL_T, *VTX_POTL_T;

typedef VTX_STS_T (*VTX_PFNEXPORTPV_T)(void *pCtx, VTX_POTL_T pOutline, void *pData);
typedef void (*VTX_PFNDELETEMBR_T)(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_ULONG_T ulHdl32);

struct _vtx_otl_t {
    VTX_HCTX_T    hCtx;                 /* caller context handle, kept for the caller */
    vTX_PNETCTX_T pNetCtx;              /* allocators, locale, messages, versions */
    VTX_POTLMBR_T pHeadItem;            /* the root, large, generation 0 */
    void         *pExtendedHashTable;   /* member and alias index */
    void         *pExtendedHashTableDupName;
    void         *pOtlHashItemsFactory;
    void         *otlDupNameFactory;
    VTX_ULONG_T   otlHashItemsFactoryNextFreeIndex;
    VTX_ULONG_T   otlDupNameFactoryNextFreeIndex;
    void        **ppMemNum2pItemMap;    /* per dimension: member number to record */
    void         *pHashTable;           /* legacy hash */
    void         *pHashDupNameTable;    /* legacy duplicate-name hash */
    void         *pSmartListTable;
    VTX_BOOL_T    fCaseSensitive;
    int           hFile;                /* open outline file while reading or writing */
    VTX_STR_T     pszDatabasename;
    VTX_STR_T     altMemberIdAliasTable;
    VTX_BOOL_T    altMbrIdAliasExist;
    VTX_USHORT_T  usOutlineType;        /* VTX_OTL_... */
    VTX_USHORT_T  usCalcFlag;
    VTX_BOOL_T    fAutoConfigure;
    VTX_BOOL_T    fWarnNonOptimal;
    void         *pMatchArray;
    VTX_USHORT_T  usMatchArrayCount;
    vTX_HEADER_T  FileHeader;
    VTX_BOOL_T    fOpenQuery;           /* a query handle */
    VTX_USHORT_T  usNumAliasTables;
    VTX_STR_T    *pAliasArray;          /* 58 table names */
    VTX_STR_T    *pAliasTableLanguages; /* 58 language codes */
    VTX_UCHAR_T   ucUniqueAliasTable[OTL_MAX_ALIAS_TABLES];
    VTX_BOOL_T    fKeepTrans;
    void         *pTransList;
    void         *pTransListEnd;
    VTX_USHORT_T  usSortType;
    VTX_BOOL_T    fVerified;
    VTX_USHORT_T  usDTSEnabledMbrCount;
    VTX_PDTSMBRITEM_T aDTSMbrs[OTL_DTS_SLOTS];
    void         *pLocale;
    OTL_PMEMALLOC gHeadItemSmall;
    OTL_PMEMALLOC gHeadItemLarge;
    VTX_ULONG_T   gGrowFactor;
    OTL_COUNTS    Counts;
    VTX_ATTRSPECS_T AttrSpecs;
    VTX_MBRARRAY_T MbrArray;
    VTX_ULONG_T   DimTableSize;
    VTX_POTLMBRLARGE_T *DimTable;       /* dimension records by ulDimno - 1 */
    void         *TempMbrArray;
    VTX_BOOL_T    fChanged;
    VTX_BOOL_T    bConvertToUTF8;
    VTX_BOOL_T    bConvertToNative;
    VTX_BOOL_T    bIsUTF8;
    VTX_INT32_T   iLocaleType;          /* 1 native, 2 UTF-8 */
    VTX_INT32_T   iInputLocaleType;
    VTX_USHORT_T  usTargetType;         /* 0 unset, 2 native, 3 UTF-8 */
    void         *pInputLocale;
    void         *pUTF8Locale;
    void         *pTargetLocale;
    VTX_BOOL_T    bIsNewOutline;
    char          pInputLocaleString[VTX_LOCALESTR_LEN];
    VTX_BOOL_T    fArrangeDims;
    VTX_BOOL_T    bPromptMode;
    VTX_LONG_T    lTargetServerVersion;
    VTX_BOOL_T    incrementalOPGfile;
    void         *bkdbH;
    void         *bkdb2H;
    VTX_ULONG_T  *dimIds;               /* 256: stable dimension id by ulDimno - 1 */
    VTX_ULONG_T  *nextMbrIds;           /* 256: next mbrId, from 1 */
    VTX_ULONG64_T nextMbrIdPerOutline;
    VTX_ULONG_T   aliasCounts[OTL_MAX_ALIAS_TABLES];
    VTX_ULONG_T   otlHashTableSize;
    VTX_ULONG_T   otlSmartListTableSize;
    VTX_ULONG_T   otlSmartListCount;
    VTX_ULONG_T   otlHashDupNameTableSize;
    VTX_ULONG_T   totalMemberNamespaceSize;
    VTX_ULONG_T   totalAliasNamespaceSize;
    VTX_USHORT_T  usSwapped;
    VTX_BOOL_T    fHasRelDesc;
    VTX_BOOL_T    fEnableSlowlyChgAttrs;
    VTX_BOOL_T    fHasSlowlyChgAttrs;
    VTX_BOOL_T    fHasIndepMbrError;
    VTX_USHORT_T  countOfBaseDimWithSCA;
    VTX_USHORT_T  countOfSCARecs;
    VTX_ULONG_T   cOPGVersion;          /* paged format version, 0 until chosen */
    VTX_BOOL_T    bNonUniqueName;       /* duplicate names allowed */
    VTX_UCHAR_T   ucStateFlag;          /* OTL_STATE_... */
    VTX_BOOL_T    bMyOlapEnabled;
    VTX_BOOL_T    fBuildingDim;         /* dimension build: name clashes stay quiet */
    VTX_PDUPMBRARRY_T pDupMbrArry;
    void         *queryHintArray;
    VTX_USHORT_T  nmHints;
    VTX_USHORT_T  nmAllocHints;
    VTX_USHORT_T  queryHintSize;
    VTX_USHORT_T  usHandleLen;          /* host field */
    VTX_UCHAR_T   ucCallerType;         /* 2: every refusal sends a message; 4: internal read */
    VTX_UCHAR_T   editMode;             /* host field */
    void         *serverOtlHandle;      /* host's objects */
    void         *svrCallerCtx;
    void         *serverObjDef;         /* non-null: a local save verifies */
    VTX_PFNEXPORTPV_T cbExportPropertyValues;
    VTX_ULONG_T   fileTimeSeconds;
    VTX_BOOL_T    fForceWrite;
    void         *pOPGEnv;
    VTX_UCHAR_T   typedDimno;
    VTX_UCHAR_T   formatStringDimno;
    VTX_BOOL_T    bMemberTypeEnabled;
    VTX_UCHAR_T   ucImpliedShareSetting;  /* 4 at creation */
    VTX_BOOL_T    bForceMbrID;
    VTX_CHAR_T    cSMDateFormatValue;
    VTX_BOOL_T    bEditingProhibited;   /* save and reopen first */
    VTX_BOOL_T    bXolap;
    VTX_BOOL_T    bBpm;
    void        **ppChgItemList;
    VTX_ULONG_T   countOfItems;
    VTX_BOOL_T    fTrackInternalTrans;
    VTX_BOOL_T    fKeepTransReplay;
    VTX_BOOL_T    bTempFile;            /* pszDatabasename is removed at close */
    VTX_POTLMBR_T *renMbrs;             /* 256: renegade member by dimension id */
    VTX_ULONG_T  *hiddenMbrParentIds;   /* 256 */
    VTX_ULONG_T  *hiddenMbrCounts;      /* 256 */
    VTX_PFNDELETEMBR_T cbDeleteMember;
    void         *pOtlEditEntry;
    VTX_ULONG_T   otlVersion;
    VTX_USHORT_T  usOtlNameType;        /* VTX_NAMES_... */
    VTX_BOOL_T    bLongNames;
    VTX_BOOL_T    bHiddenLevel0;
    VTX_USHORT_T  usPreAllocatedChildren;
    VTX_USHORT_T *usPropDefCountByDim;
    void        **PropDefMapByDim;
    VTX_BOOL_T    bIdsRead;
    VTX_UCHAR_T   ucPVLoadEnabled;      /* 1 refuses dimension add and delete */
    void         *pPVLog;
    VTX_UCHAR_T   dimBloomFilter[OTL_BLOOM_BYTES];
    VTX_BOOL_T    isEncrypted;
    VTX_BOOL_T    isIncrementalDimBuild;
    VTX_ULONG_T  *nextPersistMbrIds;    /* 256: next persistMbrId, from 1 */
    VTX_ULONG_T   nextDimId;            /* last dimension id given out */
    void         *jsonHandler;          /* operation report */
};

/* ---- record access --------------------------------------------------------- */

#define OTL_IS_SMALL(p)   (((p)->ucFlags & OTL_FLAG_SMALL) != 0)
#define OTL_LARGE(p)      ((VTX_POTLMBRLARGE_T)(p))
#define OTL_IS_HIDDEN(p)  (((p)->ucFlags2 & OTL_FLAG2_HIDDEN) != 0)
#define OTL_IS_SHARE(s)   ((s) == VTX_SHARE_SHARED || (s) == VTX_SHARE_SHARED2)

/* The one rule for reading usShare of either record size. */
static inline VTX_USHORT_T otlGetShare(const _vtx_otlmbr_t *p) {
    if (!OTL_IS_SMALL(p)) return ((const _vtx_otlmbrlarge_t *)p)->MbrInfo.usShare;
    VTX_USHORT_T f = p->MbrInfo.ucInfoFlags;
    if (f & OTL_INFO_SH_LABEL) return VTX_SHARE_LABEL;
    if (f & OTL_INFO_SH_SHARED) return VTX_SHARE_SHARED;
    if (f & OTL_INFO_SH_SHARED2) return VTX_SHARE_SHARED2;
    if (f & OTL_INFO_SH_NEVER) return VTX_SHARE_NEVER;
    return VTX_SHARE_STORE;
}

/* Writes usShare; on a small record one bit is set and the others cleared. */
static inline void otlSetShare(_vtx_otlmbr_t *p, VTX_USHORT_T usShare) {
    if (!OTL_IS_SMALL(p)) { ((_vtx_otlmbrlarge_t *)p)->MbrInfo.usShare = (VTX_UCHAR_T)usShare; return; }
    p->MbrInfo.ucInfoFlags &= (VTX_USHORT_T)~OTL_INFO_SHAREBITS;
    switch (usShare) {
    case VTX_SHARE_LABEL:   p->MbrInfo.ucInfoFlags |= OTL_INFO_SH_LABEL; break;
    case VTX_SHARE_SHARED:  p->MbrInfo.ucInfoFlags |= OTL_INFO_SH_SHARED; break;
    case VTX_SHARE_SHARED2: p->MbrInfo.ucInfoFlags |= OTL_INFO_SH_SHARED2; break;
    case VTX_SHARE_NEVER:   p->MbrInfo.ucInfoFlags |= OTL_INFO_SH_NEVER; break;
    default: break;
    }
}

static inline VTX_BOOL_T otlMbrIsSharedShare(const _vtx_otlmbr_t *p) {
    return OTL_IS_SHARE(otlGetShare(p));
}

#ifdef __cplusplus
}
#endif
#endif
