#include "otlHashItemsFactoryWrapper.h"

#include <algorithm>

#include "FastHugeArray.h"
#include "blockalloc.h"
#include "vtxstatus.h"

static_assert(sizeof(VTX_OTLHASHITEM_T_EXT) == 8, "a hash item is 8 bytes");
static_assert(sizeof(VTX_OTLDUPNAME_T) == 256, "a duplicate-name record is 256 bytes");

namespace {

using ItemArray = FastHugeArray<VTX_OTLHASHITEM_T_EXT>;
using DupArray = FastHugeArray<VTX_OTLDUPNAME_T>;

constexpr unsigned long INITIAL_RECORDS = 10000;
constexpr unsigned long RECORD_GROWTH = 100000;

ItemArray *Items(VTX_POTLHASHITEMS_FACTORY p) { return reinterpret_cast<ItemArray *>(p); }
DupArray *Dups(VTX_DUPNAME_FACTORY p) { return reinterpret_cast<DupArray *>(p); }

template <class Array>
Array *createFactory() {
    Array *a = vtxeh::newObject<Array>();
    if (a && !a->allocate(INITIAL_RECORDS, 0)) {
        vtxeh::deleteObject(a);
        return nullptr;
    }
    return a;
}

// Makes room for the record at `index`; false when a block is refused, in
// which case the store keeps all it had.
template <class Array>
bool roomFor(Array &a, VTX_ULONG_T index) {
    if (index < a.getSize()) return true;
    unsigned long want = std::max<unsigned long>(a.getSize() + RECORD_GROWTH, index + 1ul);
    return a.reallocate(want, 0);
}

// Moves the table number of every item of a table after startFrom by delta.
VTX_STS_T shiftTables(VTX_POTLHASHITEMS_FACTORY pFactory, VTX_ULONG_T nextFreeIndex, VTX_UCHAR_T startFrom,
                      int delta) {
    if (nextFreeIndex == 0) return VTX_STS_OK;
    if (!pFactory) return VTX_STS_NULL_ARG;
    ItemArray &a = *Items(pFactory);
    for (VTX_ULONG_T i = 0; i < nextFreeIndex; ++i) {
        VTX_OTLHASHITEM_T_EXT &item = a[i];
        if (item.usAliasTable > startFrom) item.usAliasTable = static_cast<VTX_UCHAR_T>(item.usAliasTable + delta);
    }
    return VTX_STS_OK;
}

} // namespace

extern "C" {

VTX_API VTX_STS_T otlHashItemsFactoryInit(vTX_PNETCTX_T pNetCtx, VTX_POTLHASHITEMS_FACTORY *ppFactory) {
    if (!ppFactory) return VTX_STS_NULL_ARG;
    *ppFactory = nullptr;
    ItemArray *a = createFactory<ItemArray>();
    if (!a) return vtxehNoMemory(pNetCtx, "otlHashItemsFactoryInit");
    *ppFactory = reinterpret_cast<VTX_POTLHASHITEMS_FACTORY>(a);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T otlHashItemsFactoryFree(VTX_POTLHASHITEMS_FACTORY pFactory) {
    vtxeh::deleteObject(Items(pFactory));
    return VTX_STS_OK;
}

VTX_API VTX_STS_T otlHashItemsFactoryAddItem(vTX_PNETCTX_T pNetCtx, VTX_POTLHASHITEMS_FACTORY pFactory,
                                             VTX_ULONG_T *nextFreeIndex, VTX_INT32_T mbrId,
                                             VTX_USHORT_T dimId, VTX_USHORT_T usAliasTable) {
    if (!pFactory || !nextFreeIndex) return VTX_STS_NULL_ARG;
    ItemArray &a = *Items(pFactory);
    if (!roomFor(a, *nextFreeIndex)) return vtxehNoMemory(pNetCtx, "otlHashItemsFactoryAddItem");
    VTX_OTLHASHITEM_T_EXT &item = a[*nextFreeIndex];
    item.mbrId = mbrId;
    item.dimId = dimId;
    item.usAliasTable = static_cast<VTX_UCHAR_T>(usAliasTable);
    item.padding = 0;
    ++*nextFreeIndex;
    return VTX_STS_OK;
}

VTX_API VTX_POTLHASHITEM_T_EXT otlHashItemsFactoryGetOtlHashItem(VTX_POTLHASHITEMS_FACTORY pFactory,
                                                                 VTX_ULONG_T itemIndex) {
    return &(*Items(pFactory))[itemIndex];
}

VTX_API VTX_STS_T otlHashReduceAliasTableNumber(VTX_POTLHASHITEMS_FACTORY pFactory,
                                                VTX_ULONG_T nextFreeIndex, VTX_UCHAR_T startFrom) {
    return shiftTables(pFactory, nextFreeIndex, startFrom, -1);
}

VTX_API VTX_STS_T otlHashRaiseAliasTableNumber(VTX_POTLHASHITEMS_FACTORY pFactory, VTX_ULONG_T nextFreeIndex,
                                               VTX_UCHAR_T startFrom, VTX_UCHAR_T by) {
    return shiftTables(pFactory, nextFreeIndex, startFrom, by);
}

VTX_API VTX_STS_T otlHashItemsDupFactoryInit(vTX_PNETCTX_T pNetCtx, VTX_DUPNAME_FACTORY *ppFactory) {
    if (!ppFactory) return VTX_STS_NULL_ARG;
    *ppFactory = nullptr;
    DupArray *a = createFactory<DupArray>();
    if (!a) return vtxehNoMemory(pNetCtx, "otlHashItemsDupFactoryInit");
    *ppFactory = reinterpret_cast<VTX_DUPNAME_FACTORY>(a);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T otlHashItemsDupFactoryFree(VTX_DUPNAME_FACTORY pFactory) {
    vtxeh::deleteObject(Dups(pFactory));
    return VTX_STS_OK;
}

VTX_API VTX_STS_T otlHashItemsDupFactoryAddItem(vTX_PNETCTX_T pNetCtx, VTX_DUPNAME_FACTORY pFactory,
                                                VTX_ULONG_T *nextFreeIndex, VTX_STR_T pszString,
                                                VTX_USHORT_T usAliasTable) {
    if (!pFactory || !nextFreeIndex) return VTX_STS_NULL_ARG;
    VTX_EH_ASSERT(usAliasTable < VTX_DUPNAME_TABLES);
    DupArray &a = *Dups(pFactory);
    if (!roomFor(a, *nextFreeIndex)) return vtxehNoMemory(pNetCtx, "otlHashItemsDupFactoryAddItem");
    VTX_OTLDUPNAME_T &rec = a[*nextFreeIndex];
    if (!rec.bNew) rec.pszString = pszString;
    ++rec.usCount[usAliasTable];
    ++rec.usTotalCount;
    ++*nextFreeIndex;
    return VTX_STS_OK;
}

VTX_API VTX_POTLDUPNAME_T otlHashItemsDupFactoryGetOtlDupName(VTX_DUPNAME_FACTORY pFactory,
                                                              VTX_ULONG_T itemIndex) {
    return &(*Dups(pFactory))[itemIndex];
}

} // extern "C"
