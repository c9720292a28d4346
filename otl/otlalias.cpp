// Alias tables of an outline: the table names and their per-table state.
#include "otl.h"

#include <cstring>

namespace {

constexpr const char *kDefaultTable = "Default";
constexpr const char *kUniqueNameTable = "Unique Name";
constexpr const char *kMemberIdTable = "Member ID";

// Uniqueness policies of a table in an outline with duplicate names.
constexpr VTX_UCHAR_T kPolicySiblings = 0;  // unique among the member's siblings
constexpr VTX_UCHAR_T kPolicyAll = 2;       // unique across names and all tables

} // namespace

extern "C" {

VTX_STS_T otlCreateAliasArray(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    VTX_STR_T *names = nullptr, *langs = nullptr;
    VTX_STS_T sts = otlAlloc(pNetCtx, sizeof(VTX_STR_T) * OTL_MAX_ALIAS_TABLES, &names);
    if (!sts) sts = otlAlloc(pNetCtx, sizeof(VTX_STR_T) * OTL_MAX_ALIAS_TABLES, &langs);
    // An outline with duplicate names spends its first two tables on the
    // names that make a member unique.
    const bool dup = pOutline->usOtlNameType == VTX_NAMES_DUP;
    const char *tables[3] = {kDefaultTable, nullptr, nullptr};
    unsigned count = 1;
    if (dup) {
        tables[0] = kUniqueNameTable;
        tables[1] = kMemberIdTable;
        tables[2] = kDefaultTable;
        count = 3;
    }
    for (unsigned i = 0; !sts && i < count; ++i) sts = otlStrdup(pNetCtx, tables[i], &names[i]);
    if (sts) {
        if (names)
            for (unsigned i = 0; i < count; ++i) (void)otlFreeMem(pNetCtx, names[i]);  // undoing a failed create
        (void)otlFreeMem(pNetCtx, names);
        (void)otlFreeMem(pNetCtx, langs);
        return sts;
    }
    pOutline->pAliasArray = names;
    pOutline->pAliasTableLanguages = langs;
    pOutline->usNumAliasTables = (VTX_USHORT_T)count;
    std::memset(pOutline->ucUniqueAliasTable, 0, sizeof pOutline->ucUniqueAliasTable);
    std::memset(pOutline->aliasCounts, 0, sizeof pOutline->aliasCounts);
    if (dup) {
        pOutline->ucUniqueAliasTable[0] = kPolicySiblings;
        pOutline->ucUniqueAliasTable[1] = kPolicyAll;
    }
    return 0;
}

void otlFreeAliasArray(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline) {
    if (!pOutline) return;
    for (VTX_STR_T **ppArr : {&pOutline->pAliasArray, &pOutline->pAliasTableLanguages}) {
        if (!*ppArr) continue;
        for (unsigned i = 0; i < OTL_MAX_ALIAS_TABLES; ++i) (void)otlFreeMem(pNetCtx, (*ppArr)[i]);  // close path
        (void)otlFreeMem(pNetCtx, *ppArr);
        *ppArr = nullptr;
    }
    pOutline->usNumAliasTables = 0;
}

} // extern "C"
