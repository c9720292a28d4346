/*
 * otlHashItemsFactoryWrapper.h -- the payload stores of the name index.
 *
 * Two factories hand out fixed-size records by index: the item factory (what
 * one entry of the main name hash stands for) and the duplicate-name factory
 * (how often a spelling is counted).  Records are never freed singly and
 * never move; the next free index belongs to the caller (the outline keeps
 * it), and each call is handed a pointer to it.
 */
#ifndef VTX_EH_OTLHASHITEMSFACTORYWRAPPER_H
#define VTX_EH_OTLHASHITEMSFACTORYWRAPPER_H

#include "vtxtypes.h"
#include "vtxnetctx.h"
#include "otlmem.h"

#ifdef __cplusplus
extern "C" {
#endif

/* One entry of the main hash.  It names its member by number, not by
 * pointer, so that a member record may be paged out and fetched again. */
typedef struct _vtx_otlhashitem_t_ext {
    VTX_INT32_T  mbrId;         /* the member's number within its dimension */
    VTX_USHORT_T dimId;         /* the dimension's stable id */
    VTX_UCHAR_T  usAliasTable;  /* 0: a member name (or attribute long name); n: alias table n */
    VTX_UCHAR_T  padding;       /* keeps the size a power of two */
} VTX_OTLHASHITEM_T_EXT, *VTX_POTLHASHITEM_T_EXT;

#define VTX_DUPNAME_TABLES 59   /* element 0: member names, n: alias table n */

/* One spelling counted by the duplicate-name hash. */
typedef struct _vtx_otl_dupname_t {
    VTX_ULONG_T usTotalCount;                   /* over all tables */
    VTX_ULONG_T usCount[VTX_DUPNAME_TABLES];    /* per table */
    VTX_BOOL_T  bNew;                           /* pszString is owned by the record */
    VTX_STR_T   pszString;                      /* the text */
} VTX_OTLDUPNAME_T, *VTX_POTLDUPNAME_T;

/* Opaque handles; untyped, like the outline fields that hold them. */
typedef void *VTX_POTLHASHITEMS_FACTORY;
typedef void *VTX_DUPNAME_FACTORY;

/* Creates the item factory with room for 10000 zeroed items. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashItemsFactoryInit(vTX_PNETCTX_T pNetCtx,
                                                        VTX_POTLHASHITEMS_FACTORY *ppFactory);
VTX_API VTX_STS_T otlHashItemsFactoryFree(VTX_POTLHASHITEMS_FACTORY pFactory);
/* Stores an item at *nextFreeIndex, growing by 100000 first when full, and
 * advances *nextFreeIndex.  A refused growth keeps every item. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashItemsFactoryAddItem(vTX_PNETCTX_T pNetCtx,
                                                           VTX_POTLHASHITEMS_FACTORY pFactory,
                                                           VTX_ULONG_T *nextFreeIndex,
                                                           VTX_INT32_T mbrId, VTX_USHORT_T dimId,
                                                           VTX_USHORT_T usAliasTable);
/* The item's address; the index must be below the next free index. */
VTX_API VTX_POTLHASHITEM_T_EXT otlHashItemsFactoryGetOtlHashItem(VTX_POTLHASHITEMS_FACTORY pFactory,
                                                                 VTX_ULONG_T itemIndex);
/* After alias table startFrom+1 was removed: every item below nextFreeIndex
 * of a later table moves down by one. */
VTX_API VTX_STS_T otlHashReduceAliasTableNumber(VTX_POTLHASHITEMS_FACTORY pFactory,
                                                VTX_ULONG_T nextFreeIndex, VTX_UCHAR_T startFrom);

/* After tables were inserted in front of table startFrom+1: every item below
 * nextFreeIndex of a later table moves up by `by`. */
VTX_API VTX_STS_T otlHashRaiseAliasTableNumber(VTX_POTLHASHITEMS_FACTORY pFactory, VTX_ULONG_T nextFreeIndex,
                                               VTX_UCHAR_T startFrom, VTX_UCHAR_T by);

/* Creates the duplicate-name factory with room for 10000 zeroed records. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashItemsDupFactoryInit(vTX_PNETCTX_T pNetCtx,
                                                           VTX_DUPNAME_FACTORY *ppFactory);
VTX_API VTX_STS_T otlHashItemsDupFactoryFree(VTX_DUPNAME_FACTORY pFactory);
/* Counts pszString in table usAliasTable (below VTX_DUPNAME_TABLES) in the
 * record at *nextFreeIndex, growing first when full, and advances
 * *nextFreeIndex. */
VTX_NODISCARD VTX_API VTX_STS_T otlHashItemsDupFactoryAddItem(vTX_PNETCTX_T pNetCtx,
                                                              VTX_DUPNAME_FACTORY pFactory,
                                                              VTX_ULONG_T *nextFreeIndex,
                                                              VTX_STR_T pszString,
                                                              VTX_USHORT_T usAliasTable);
VTX_API VTX_POTLDUPNAME_T otlHashItemsDupFactoryGetOtlDupName(VTX_DUPNAME_FACTORY pFactory,
                                                              VTX_ULONG_T itemIndex);

#ifdef __cplusplus
}
#endif
#endif
