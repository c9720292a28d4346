// Alias tables of an outline: the table names and their per-table state.
#include "otl.h"
#include "otlHashItemsFactoryWrapper.h"

#include <cstring>
#include <vector>

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

// ---- tables and member aliases ------------------------------------------------------
//
// A member's alias in table t is AliasArray[t].pszDefName, and its entry in
// the member index carries the table number t + 1 (0 is member names).
// aliasCounts[t] counts the aliases of table t.


namespace {

constexpr VTX_USHORT_T kMaxTablesUnique = 56;   // two slots stay free for turning to duplicate names
constexpr size_t kTableNameMax = VTX_ALIASNAME_LEN - 1;

VTX_USHORT_T tableLimit(VTX_POTL_T o) { return o->bNonUniqueName ? OTL_MAX_ALIAS_TABLES : kMaxTablesUnique; }

bool isReservedName(const char *name) {
    return std::strcmp(name, kUniqueNameTable) == 0 || std::strcmp(name, kMemberIdTable) == 0;
}

// Every record of the outline, root included, pre-order.
template <class F>
void forEachRecord(VTX_POTL_T o, F &&f) {
    VTX_POTLMBR_T root = o->pHeadItem;
    if (!root) return;
    for (VTX_POTLMBR_T p = root; p; p = otlNavtrdn(p, root)) f(p);
}

const char *aliasOf(VTX_POTLMBR_T m, unsigned t) { return m->AliasArray ? m->AliasArray[t].pszDefName : nullptr; }

// Drops one alias of a member: index entry, text, count.
void dropAlias(VTX_POTL_T o, VTX_POTLMBR_T m, unsigned t) {
    char *a = m->AliasArray[t].pszDefName;
    if (!a) return;
    // An entry that is not there needs no removal; nothing else can fail.
    (void)otlHashDeleteString(o->pNetCtx, o, m, a, (VTX_USHORT_T)(t + 1));
    (void)otlFreeMem(o->pNetCtx, a);
    m->AliasArray[t].pszDefName = nullptr;
    if (o->aliasCounts[t]) --o->aliasCounts[t];
}

void clearTable(VTX_POTL_T o, unsigned t) {
    forEachRecord(o, [&](VTX_POTLMBR_T m) {
        if (m->AliasArray) dropAlias(o, m, t);
    });
    o->aliasCounts[t] = 0;
}

// Grows every record's alias slots to n tables; the new slots are empty.
// Records grown before a failure keep their larger block, which is
// harmless: slots are read only up to usNumAliasTables.
VTX_STS_T growAliasArrays(VTX_POTL_T o, unsigned n) {
    VTX_STS_T sts = 0;
    auto grow = [&](VTX_POTLMBR_T m) {
        if (sts) return;
        void *p = nullptr;
        sts = m->AliasArray ? otlReallocEx(o->pNetCtx, m->AliasArray, sizeof(VTX_OTLALIASARRAYREC_T) * n, &p)
                            : otlAlloc(o->pNetCtx, sizeof(VTX_OTLALIASARRAYREC_T) * n, &p);
        if (sts) return;
        m->AliasArray = static_cast<VTX_POTLALIASARRAYREC_T>(p);
        m->AliasArray[n - 1].pszDefName = nullptr;
    };
    // Records that left the tree were freed and hold no slots.
    forEachRecord(o, grow);
    return sts;
}

} // namespace

extern "C" {

VTX_STS_T otlGetAliasIndexFromName(VTX_POTL_T pOutline, VTX_CSTR_T name, VTX_USHORT_T *pIndex) {
    if (pIndex) *pIndex = 0;
    if (!pOutline || !name || !pIndex) return VTX_STS_NULL_ARG;
    for (VTX_USHORT_T i = 0; i < pOutline->usNumAliasTables; ++i) {
        // Table names compare without regard to case.
        if (pOutline->pAliasArray[i] && adGlobStrEqualsIgnoreCase(nullptr, pOutline->pAliasArray[i], name)) {
            *pIndex = i;
            return 0;
        }
    }
    return VTX_STS_ALIAS_TABLE_NOT_FOUND;
}

VTX_STS_T adShrOtlCreateAliasTable(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable, VTX_UCHAR_T ucOption) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kQueryOk | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_POTL_T o = f.outline();
    if (ucOption == VTX_ALIAS_NOT_UNIQUE && o->usOutlineType != VTX_OTL_AGGSTORE) return f.fail(VTX_STS_ALIAS_POLICY_AGG);
    if (ucOption > VTX_ALIAS_NOT_UNIQUE) return f.fail(VTX_STS_DUP_RULE_CONFLICT);
    if (o->fOpenQuery) return f.fail(VTX_STS_WRONG_MODE);
    if (!pszAliasTable) return f.fail(VTX_STS_NULL_ARG, "adShrOtlCreateAliasTable", VTX_MSGARG_STR);
    // The message service never turns a refusal into a success, so these
    // refusals hold whatever a message callback answers.
    VTX_USHORT_T idx = 0;
    if (otlGetAliasIndexFromName(o, pszAliasTable, &idx) == 0)
        return f.fail(VTX_STS_ALIAS_TABLE_EXISTS, pszAliasTable, VTX_MSGARG_STR);
    if (o->usNumAliasTables >= tableLimit(o)) return f.fail(VTX_STS_TOO_MANY_ALIAS_TABLES);
    const size_t len = std::strlen(pszAliasTable);
    if (len == 0 || len > kTableNameMax || isReservedName(pszAliasTable))
        return f.fail(VTX_STS_BAD_ALIAS_TABLE_NAME, pszAliasTable, VTX_MSGARG_STR);
    return otl::otlGuard(f.ctx(), "adShrOtlCreateAliasTable", [&]() -> VTX_STS_T {
        char *name = nullptr;
        if (VTX_STS_T sts = otlStrdup(f.ctx(), pszAliasTable, &name)) return f.fail(sts, "adShrOtlCreateAliasTable", VTX_MSGARG_STR);
        const unsigned n = o->usNumAliasTables + 1u;
        if (VTX_STS_T sts = growAliasArrays(o, n)) {
            (void)otlFreeMem(f.ctx(), name);  // the growth failure is the status
            return f.fail(sts, "adShrOtlCreateAliasTable", VTX_MSGARG_STR);
        }
        o->pAliasArray[n - 1] = name;
        o->ucUniqueAliasTable[n - 1] = ucOption;
        o->aliasCounts[n - 1] = 0;
        o->usNumAliasTables = (VTX_USHORT_T)n;
        o->fVerified = 0;
        o->ucStateFlag |= OTL_STATE_CHANGED;
        return 0;
    });
}

namespace {

// Looks a table up for a call: 1060322 when it does not exist.
VTX_STS_T tableFor(const otl::CallFrame &f, VTX_CSTR_T name, VTX_USHORT_T *pIdx) {
    if (!name) return f.fail(VTX_STS_NULL_ARG, "alias table", VTX_MSGARG_STR);
    VTX_STS_T sts = otlGetAliasIndexFromName(f.outline(), name, pIdx);
    return sts ? f.fail(sts, name, VTX_MSGARG_STR) : 0;
}

// The reserved tables of an outline with duplicate names are the outline's.
bool reservedIndex(VTX_POTL_T o, VTX_USHORT_T t) { return t == 0 || (o->bNonUniqueName && t == 1); }

void marked(VTX_POTL_T o) {
    o->fVerified = 0;
    o->ucStateFlag |= OTL_STATE_CHANGED;
}

} // namespace

VTX_STS_T adShrOtlDeleteAliasTable(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_POTL_T o = f.outline();
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    if (reservedIndex(o, t)) return f.fail(VTX_STS_ALIAS_TABLE_RESERVED, pszAliasTable, VTX_MSGARG_STR);
    // Nothing below can fail: the column goes from every member and the index.
    clearTable(o, t);
    // Entries of the tables behind move down one number in the index.
    if (o->pOtlHashItemsFactory)
        (void)otlHashReduceAliasTableNumber(static_cast<VTX_POTLHASHITEMS_FACTORY>(o->pOtlHashItemsFactory),
                                            o->otlHashItemsFactoryNextFreeIndex, (VTX_UCHAR_T)(t + 1));  // in-place renumbering
    const unsigned n = o->usNumAliasTables;
    forEachRecord(o, [&](VTX_POTLMBR_T m) {
        if (m->AliasArray) {
            std::memmove(&m->AliasArray[t], &m->AliasArray[t + 1], sizeof(VTX_OTLALIASARRAYREC_T) * (n - 1 - t));
            m->AliasArray[n - 1].pszDefName = nullptr;
        }
        if (!OTL_IS_SMALL(m) && OTL_LARGE(m)->pAliasRec) {
            VTX_POTLALIASREC_T *r = OTL_LARGE(m)->pAliasRec;
            // The combinations of the table go with it.
            for (VTX_POTLALIASREC_T a = r[t]; a;) {
                VTX_POTLALIASREC_T next = a->pNext;
                (void)otlHashDeleteString(o->pNetCtx, o, m, a->pszAlias, (VTX_USHORT_T)(t + 1));  // drop the entry
                (void)otlFreeMem(o->pNetCtx, a->pszAlias);
                (void)otlFreeMem(o->pNetCtx, a->pszCombination);
                (void)otlFreeMem(o->pNetCtx, a);
                a = next;
            }
            std::memmove(&r[t], &r[t + 1], sizeof(VTX_POTLALIASREC_T) * (OTL_MAX_ALIAS_TABLES - 1 - t));
            r[OTL_MAX_ALIAS_TABLES - 1] = nullptr;
        }
    });
    for (VTX_PDTSMBRITEM_T d : o->aDTSMbrs) {
        if (!d) continue;
        std::memmove(&d->pAliasName[t], &d->pAliasName[t + 1], sizeof(VTX_ALIASNAME_T) * (OTL_MAX_ALIAS_TABLES - 1 - t));
        std::memset(d->pAliasName[OTL_MAX_ALIAS_TABLES - 1], 0, sizeof(VTX_ALIASNAME_T));
    }
    (void)otlFreeMem(o->pNetCtx, o->pAliasArray[t]);  // the table's own texts
    (void)otlFreeMem(o->pNetCtx, o->pAliasTableLanguages[t]);
    for (unsigned i = t; i + 1 < OTL_MAX_ALIAS_TABLES; ++i) {
        o->pAliasArray[i] = o->pAliasArray[i + 1];
        o->pAliasTableLanguages[i] = o->pAliasTableLanguages[i + 1];
        o->ucUniqueAliasTable[i] = o->ucUniqueAliasTable[i + 1];
        // The counts follow their tables, so every count stays with its table.
        o->aliasCounts[i] = o->aliasCounts[i + 1];
    }
    o->pAliasArray[OTL_MAX_ALIAS_TABLES - 1] = nullptr;
    o->pAliasTableLanguages[OTL_MAX_ALIAS_TABLES - 1] = nullptr;
    o->ucUniqueAliasTable[OTL_MAX_ALIAS_TABLES - 1] = 0;
    o->aliasCounts[OTL_MAX_ALIAS_TABLES - 1] = 0;
    o->usNumAliasTables = (VTX_USHORT_T)(n - 1);
    marked(o);
    return 0;
}

VTX_STS_T adShrOtlClearAliasTable(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    clearTable(f.outline(), t);
    marked(f.outline());
    return 0;
}

VTX_STS_T adShrOtlRenameAliasTable(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable, VTX_CSTR_T pszNewAliasTable,
                                   VTX_BOOL_T bForce) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_POTL_T o = f.outline();
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    if (!pszNewAliasTable) return f.fail(VTX_STS_NULL_ARG, "adShrOtlRenameAliasTable", VTX_MSGARG_STR);
    const size_t len = std::strlen(pszNewAliasTable);
    if (len == 0 || len > kTableNameMax) return f.fail(VTX_STS_BAD_ALIAS_TABLE_NAME, pszNewAliasTable, VTX_MSGARG_STR);
    // Only the outline's own table dance uses the reserved names or renames
    // the reserved tables.
    if (!bForce && (isReservedName(pszNewAliasTable) || (o->bNonUniqueName && reservedIndex(o, t))))
        return f.fail(VTX_STS_ALIAS_TABLE_RESERVED, pszNewAliasTable, VTX_MSGARG_STR);
    VTX_USHORT_T other = 0;
    if (otlGetAliasIndexFromName(o, pszNewAliasTable, &other) == 0 && other != t)
        return f.fail(VTX_STS_ALIAS_TABLE_EXISTS, pszNewAliasTable, VTX_MSGARG_STR);
    char *name = nullptr;
    if (VTX_STS_T sts = otlStrdup(f.ctx(), pszNewAliasTable, &name)) return f.fail(sts, "adShrOtlRenameAliasTable", VTX_MSGARG_STR);
    (void)otlFreeMem(f.ctx(), o->pAliasArray[t]);  // replaced
    o->pAliasArray[t] = name;
    marked(o);
    return 0;
}

VTX_STS_T adShrOtlCopyAliasTable(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszSource, VTX_CSTR_T pszDest, VTX_BOOL_T fMerge) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_POTL_T o = f.outline();
    VTX_USHORT_T src = 0, dst = 0;
    if (VTX_STS_T sts = tableFor(f, pszSource, &src)) return sts;
    if (!pszDest) return f.fail(VTX_STS_NULL_ARG, "adShrOtlCopyAliasTable", VTX_MSGARG_STR);
    return otl::otlGuard(f.ctx(), "adShrOtlCopyAliasTable", [&]() -> VTX_STS_T {
        bool created = false;
        if (otlGetAliasIndexFromName(o, pszDest, &dst) != 0) {
            if (VTX_STS_T sts = adShrOtlCreateAliasTable(o, pszDest, 0)) return sts;
            (void)otlGetAliasIndexFromName(o, pszDest, &dst);  // just created
            created = true;
        }
        if (src == dst) return f.fail(VTX_STS_SAME_ALIAS_TABLE);
        // Every text is copied before anything changes; a failure then
        // leaves the tables as they were (a table made here goes again).
        struct Copy { VTX_POTLMBR_T m; char *text; };
        std::vector<Copy> copies;
        VTX_STS_T sts = 0;
        forEachRecord(o, [&](VTX_POTLMBR_T m) {
            const char *a = aliasOf(m, src);
            if (sts || !a) return;
            char *c = nullptr;
            if ((sts = otlStrdup(f.ctx(), a, &c))) return;
            copies.push_back({m, c});
        });
        if (sts) {
            for (auto &c : copies) (void)otlFreeMem(f.ctx(), c.text);  // undoing the copies
            if (created) (void)adShrOtlDeleteAliasTable(o, pszDest);
            return f.fail(sts, "adShrOtlCopyAliasTable", VTX_MSGARG_STR);
        }
        if (!fMerge) clearTable(o, dst);
        for (auto &c : copies) {
            dropAlias(o, c.m, dst);
            c.m->AliasArray[dst].pszDefName = c.text;
            ++o->aliasCounts[dst];
            // The index has room for texts it already held under another
            // table; an entry that cannot be added leaves the alias findable
            // only through its member.
            (void)otlHashAddString(f.ctx(), o, c.m, c.text, (VTX_USHORT_T)(dst + 1), OTL_HASH_NONE, OTL_HASH_NONE);
        }
        for (VTX_PDTSMBRITEM_T d : o->aDTSMbrs)
            if (d && d->bIsEnabled) std::memcpy(d->pAliasName[dst], d->pAliasName[src], sizeof(VTX_ALIASNAME_T));
        marked(o);
        return 0;
    });
}

VTX_STS_T adShrOtlSetAliasTableLanguage(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable, VTX_CSTR_T pszLanguageCode) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    char *code = nullptr;
    if (VTX_STS_T sts = otlStrdup(f.ctx(), pszLanguageCode, &code))
        return f.fail(sts, "adShrOtlSetAliasTableLanguage", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    (void)otlFreeMem(f.ctx(), o->pAliasTableLanguages[t]);  // replaced
    o->pAliasTableLanguages[t] = code;
    o->ucStateFlag |= OTL_STATE_CHANGED;
    return 0;
}

VTX_STS_T adShrOtlGetAliasTableLanguages(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable, VTX_ULONG_T *pulCount,
                                         VTX_ALIASNAME_T **ppLangArray) {
    if (pulCount) *pulCount = 0;
    if (ppLangArray) *ppLangArray = nullptr;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pulCount || !ppLangArray) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetAliasTableLanguages", VTX_MSGARG_STR);
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    const char *code = f.outline()->pAliasTableLanguages[t];
    if (!code) return 0;
    VTX_ALIASNAME_T *arr = nullptr;
    if (VTX_STS_T sts = otlAlloc(f.ctx(), sizeof(VTX_ALIASNAME_T), &arr))
        return f.fail(sts, "adShrOtlGetAliasTableLanguages", VTX_MSGARG_STR);
    std::strncpy(arr[0], code, VTX_ALIASNAME_LEN - 1);
    *pulCount = 1;
    *ppLangArray = arr;
    return 0;
}

VTX_STS_T adShrOtlClearAliasTableLanguages(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    VTX_POTL_T o = f.outline();
    (void)otlFreeMem(f.ctx(), o->pAliasTableLanguages[t]);  // cleared
    o->pAliasTableLanguages[t] = nullptr;
    o->ucStateFlag |= OTL_STATE_CHANGED;
    return 0;
}

namespace {

// Another member than m that the lookup hit, or null.
VTX_POTLMBR_T otherHit(VTX_POTL_T o, VTX_POTLMBR_T m, VTX_CSTR_T text, bool byName, VTX_USHORT_T table,
                       VTX_STS_T *pSts) {
    VTX_POTLMBR_T hit = nullptr;
    *pSts = otlHashFindItemByName(o->pNetCtx, o, text, nullptr, byName ? 1 : 0, byName ? 0 : 1, 1, table, nullptr, &hit,
                                  nullptr, nullptr);
    if (*pSts == VTX_STS_NOT_FOUND) *pSts = 0;  // several owners: some are others
    return hit == m ? nullptr : hit;
}

// The uniqueness rules of an alias in table t; 0 when it may stand.
VTX_STS_T checkAlias(VTX_POTL_T o, VTX_POTLMBR_T m, VTX_USHORT_T t, VTX_CSTR_T alias, VTX_USHORT_T usVerifyType) {
    VTX_STS_T sts = 0;
    const VTX_USHORT_T num = (VTX_USHORT_T)(t + 1);
    if (!o->bNonUniqueName) {
        // An alias may be the member's own name; otherwise it must be
        // nobody else's name or alias in the table.
        if (m->MbrInfo.szMember && (o->fCaseSensitive ? otlStrcmp(o->pNetCtx, alias, m->MbrInfo.szMember)
                                                      : otlStricmp(o->pNetCtx, alias, m->MbrInfo.szMember)) == 0)
            return 0;
        if (usVerifyType == OTL_VERIFY_QUIET) return 0;
        for (bool byName : {true, false}) {
            VTX_POTLMBR_T hit = otherHit(o, m, alias, byName, byName ? 0 : num, &sts);
            if (sts) return sts;
            // A shared copy of the member carries the member's own name.
            if (hit && !(hit->MbrInfo.szMember && m->MbrInfo.szMember &&
                         std::strcmp(hit->MbrInfo.szMember, m->MbrInfo.szMember) == 0))
                return VTX_STS_ALIAS_NOT_UNIQUE;
        }
        return 0;
    }
    if (t == 0) return VTX_STS_UNIQUE_NAME_TABLE;
    switch (o->ucUniqueAliasTable[t]) {
    case VTX_ALIAS_UNIQUE_TABLE:
        if (otherHit(o, m, alias, false, num, &sts)) return VTX_STS_ALIAS_USED_BY_MEMBER;
        return sts;
    case VTX_ALIAS_UNIQUE_ALL:
        if (otherHit(o, m, alias, true, 0, &sts)) return VTX_STS_ALIAS_IS_MEMBER_NAME;
        if (sts) return sts;
        for (VTX_USHORT_T other = 0; other < o->usNumAliasTables; ++other) {
            if (otherHit(o, m, alias, false, (VTX_USHORT_T)(other + 1), &sts)) return VTX_STS_ALIAS_IN_OTHER_TABLE;
            if (sts) return sts;
        }
        return 0;
    case VTX_ALIAS_NOT_UNIQUE:
        return 0;
    default: {
        VTX_POTLMBR_T sib = nullptr;
        if (m->pParent && otlHashIsNameDupAmongSiblings(o->pNetCtx, o, m->pParent, alias, num, &sib, nullptr, nullptr) &&
            sib && sib != m)
            return VTX_STS_DUP_RULE_CONFLICT;
        return 0;
    }
    }
}

} // namespace

VTX_STS_T adShrOtlSetMemberAlias(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszAliasTable,
                                 VTX_CSTR_T pszAlias, VTX_USHORT_T usVerifyType, vtx_outerror_t *pMbrError) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit | otl::kNoProhibit, pMbrError);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    VTX_POTL_T o = f.outline();
    auto *m = static_cast<VTX_POTLMBR_T>(hMember);
    if (!m) return f.fail(VTX_STS_NULL_ARG, "adShrOtlSetMemberAlias", VTX_MSGARG_STR);
    if (!pszAlias || !*pszAlias) return f.fail(VTX_STS_ILLEGAL_ALIAS);
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    if (std::strlen(pszAlias) >= VTX_MBRNAME_LEN || !otlIsNameLegal(o, pszAlias, f.ctx(), 1))
        return f.fail(VTX_STS_ILLEGAL_ALIAS, pszAlias, VTX_MSGARG_STR);
    if (o->ucUniqueAliasTable[t] == VTX_ALIAS_NOT_UNIQUE && o->usOutlineType != VTX_OTL_AGGSTORE)
        return f.fail(VTX_STS_ALIAS_POLICY_AGG);
    if (VTX_STS_T sts = checkAlias(o, m, t, pszAlias, usVerifyType)) return f.fail(sts, pszAlias, VTX_MSGARG_STR);
    if (!m->AliasArray) {
        if (VTX_STS_T sts = otlAllocItemAliasArray(f.ctx(), o, m)) return f.fail(sts, "adShrOtlSetMemberAlias", VTX_MSGARG_STR);
    }
    return otl::otlGuard(f.ctx(), "adShrOtlSetMemberAlias", [&]() -> VTX_STS_T {
        const VTX_USHORT_T num = (VTX_USHORT_T)(t + 1);
        char *text = nullptr;
        if (VTX_STS_T sts = otlStrdup(f.ctx(), pszAlias, &text)) return f.fail(sts, "adShrOtlSetMemberAlias", VTX_MSGARG_STR);
        char *old = m->AliasArray[t].pszDefName;
        if (old) (void)otlHashDeleteString(f.ctx(), o, m, old, num);  // the old text leaves the index; put back on failure
        m->AliasArray[t].pszDefName = text;
        VTX_STS_T sts = otlHashAddString(f.ctx(), o, m, text, num, OTL_HASH_NONE, OTL_HASH_NONE);
        VTX_ULONG_T v4 = 0, v = 0;
        if (!sts) {
            VTX_POTLMBR_T dim = otlGetDim(m);
            v = otlVerifyItem(f.ctx(), o, dim, m, &v4, (VTX_USHORT_T)(OTL_VERIFY_NAMES | OTL_VERIFY_MEMBER_ONLY));
            if (v || v4) {
                sts = otlSetVerifyStatus(v, 0, 0, v4, 0, 0);
                if (pMbrError) {
                    pMbrError->hMember = m;
                    pMbrError->ulErrors = v;
                    pMbrError->ulErrors4 = v4;
                }
                if (!sts) sts = (VTX_STS_T)v;
                (void)otlHashDeleteString(f.ctx(), o, m, text, num);  // undoing the add
            }
        }
        if (sts) {
            m->AliasArray[t].pszDefName = old;
            if (old) (void)otlHashAddString(f.ctx(), o, m, old, num, OTL_HASH_NONE, OTL_HASH_NONE);  // it held this entry a moment ago
            (void)otlFreeMem(f.ctx(), text);
            return f.fail(sts);
        }
        if (old) (void)otlFreeMem(f.ctx(), old);  // replaced
        else ++o->aliasCounts[t];
        o->fVerified = 0;
        o->ucStateFlag |= OTL_STATE_CHANGED;
        return 0;
    });
}

VTX_STS_T adShrOtlGetMemberAlias(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszAliasTable,
                                 VTX_STR_T *ppszAlias) {
    if (ppszAlias) *ppszAlias = nullptr;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    auto *m = static_cast<VTX_POTLMBR_T>(hMember);
    if (!m || !ppszAlias) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetMemberAlias", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    // A query-form record answers only when its server sent the aliases.
    if ((m->ucFlags & OTL_FLAG_QUERYMASK) && !OTL_IS_SMALL(m) &&
        (!otlIsMbrValid(0x80000, OTL_LARGE(m)->ulBitmask) || !otlIsMbrValid((VTX_LONG_T)0x80000400u, OTL_LARGE(m)->ulBitmask)))
        return f.fail(VTX_STS_FIELD_NOT_FETCHED, "MemberAliasName, UniqueName", VTX_MSGARG_STR);
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    const char *a = aliasOf(m, t);
    // The "Unique Name" table of an outline with duplicates: once the tree
    // or a name changed since the save, stored values may name another
    // member, so the name is worked out; a stored member whose name does
    // not repeat has none.  A shared member without a stored value is
    // worked out as well.
    bool compute = false;
    if (o->bNonUniqueName && t == 0 && !o->fOpenQuery) {
        const bool shared = otlMbrIsSharedShare(m);
        if (o->ucStateFlag & OTL_STATE_SHAPE) {
            VTX_ULONG_T count = 0;
            if (!shared && !otlIsNameDuplicated(f.ctx(), o, m->MbrInfo.szMember, 0, &count)) return 0;
            compute = true;
        } else if (!a && shared) {
            compute = true;
        }
    }
    if (compute) {
        if (f.ctx() && f.ctx()->bUseNonUniqueMbrIdKey) {
            VTX_STR_T key = nullptr;
            if (VTX_STS_T sts = otlAlloc(f.ctx(), VTX_MBRKEY_LEN, &key)) return f.fail(sts, "adShrOtlGetMemberAlias", VTX_MSGARG_STR);
            VTX_STS_T sts = adShrOtlConstructMemberIDKey(o, m, key);
            if (sts) {
                (void)otlFreeMem(f.ctx(), key);  // the key failed; its status is the answer
                return sts;
            }
            *ppszAlias = key;
            return 0;
        }
        return adShrOtlConstructMemberUniqueName(o, m, ppszAlias);
    }
    if (!a) return 0;
    if (VTX_STS_T sts = otlStrdup(f.ctx(), a, ppszAlias)) return f.fail(sts, "adShrOtlGetMemberAlias", VTX_MSGARG_STR);
    return 0;
}

VTX_STS_T adShrOtlDeleteMemberAliasByIndex(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_USHORT_T usAliasArray) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    VTX_POTL_T o = f.outline();
    auto *m = static_cast<VTX_POTLMBR_T>(hMember);
    if (!m) return f.fail(VTX_STS_NULL_ARG, "adShrOtlDeleteMemberAliasByIndex", VTX_MSGARG_STR);
    if (usAliasArray >= o->usNumAliasTables) return f.fail(VTX_STS_ALIAS_TABLE_NOT_FOUND);
    if (!aliasOf(m, usAliasArray)) return 0;
    dropAlias(o, m, usAliasArray);
    marked(o);
    return 0;
}

VTX_STS_T adShrOtlDeleteMemberAlias(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszAliasTable) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    return adShrOtlDeleteMemberAliasByIndex(hOutline, hMember, t);
}

VTX_STS_T adShrOtlFindAlias(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAlias, VTX_CSTR_T pszAliasTable,
                            VTX_HMEMBER_T *phMember) {
    if (phMember) *phMember = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pszAlias || !phMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlFindAlias", VTX_MSGARG_STR);
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    VTX_POTLMBR_T hit = nullptr;
    VTX_STS_T sts = otlHashFindItemByName(f.ctx(), f.outline(), pszAlias, nullptr, 0, 1, 1, (VTX_USHORT_T)(t + 1),
                                          nullptr, &hit, nullptr, nullptr);
    if (sts) return f.fail(sts, pszAlias, VTX_MSGARG_STR);
    if (!hit) return f.fail(VTX_STS_NOT_FOUND, pszAlias, VTX_MSGARG_STR);
    *phMember = hit;
    return 0;
}

VTX_STS_T adShrOtlFindAliasAll(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAlias, VTX_HMEMBER_T *phMember) {
    if (phMember) *phMember = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pszAlias || !phMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlFindAliasAll", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    for (VTX_USHORT_T t = 0; t < o->usNumAliasTables; ++t) {
        VTX_POTLMBR_T hit = nullptr;
        VTX_STS_T sts = otlHashFindItemByName(f.ctx(), o, pszAlias, nullptr, 0, 1, 1, (VTX_USHORT_T)(t + 1), nullptr,
                                              &hit, nullptr, nullptr);
        if (sts && sts != VTX_STS_NOT_FOUND) return f.fail(sts, pszAlias, VTX_MSGARG_STR);
        if (hit) {
            *phMember = hit;
            return 0;
        }
    }
    return f.fail(VTX_STS_NOT_FOUND, pszAlias, VTX_MSGARG_STR);
}

VTX_STS_T otlInsertReservedAliasTables(VTX_POTL_T o) {
    if (!o) return VTX_STS_NULL_ARG;
    const unsigned n = o->usNumAliasTables;
    if (n + 2 > OTL_MAX_ALIAS_TABLES) return VTX_STS_TOO_MANY_ALIAS_TABLES;
    vTX_PNETCTX_T ctx = o->pNetCtx;
    char *unique = nullptr, *memberId = nullptr;
    VTX_STS_T sts = otlStrdup(ctx, kUniqueNameTable, &unique);
    if (!sts) sts = otlStrdup(ctx, kMemberIdTable, &memberId);
    // Every record gets room for two more tables first; records grown
    // before a failure keep a larger block, which is harmless.
    if (!sts) sts = growAliasArrays(o, n + 2);
    if (sts) {
        (void)otlFreeMem(ctx, unique);  // undoing the preparation
        (void)otlFreeMem(ctx, memberId);
        return sts;
    }
    // Nothing below can fail: every table moves two places up with all it
    // holds, and the two reserved tables take the front, empty.
    forEachRecord(o, [&](VTX_POTLMBR_T m) {
        if (m->AliasArray) {
            std::memmove(&m->AliasArray[2], &m->AliasArray[0], sizeof(VTX_OTLALIASARRAYREC_T) * n);
            m->AliasArray[0].pszDefName = nullptr;
            m->AliasArray[1].pszDefName = nullptr;
        }
        if (!OTL_IS_SMALL(m) && OTL_LARGE(m)->pAliasRec) {
            VTX_POTLALIASREC_T *r = OTL_LARGE(m)->pAliasRec;
            std::memmove(&r[2], &r[0], sizeof(VTX_POTLALIASREC_T) * (OTL_MAX_ALIAS_TABLES - 2));
            r[0] = r[1] = nullptr;
        }
    });
    for (VTX_PDTSMBRITEM_T d : o->aDTSMbrs) {
        if (!d) continue;
        std::memmove(&d->pAliasName[2], &d->pAliasName[0], sizeof(VTX_ALIASNAME_T) * (OTL_MAX_ALIAS_TABLES - 2));
        std::memset(d->pAliasName[0], 0, sizeof(VTX_ALIASNAME_T) * 2);
    }
    for (unsigned i = OTL_MAX_ALIAS_TABLES - 1; i >= 2; --i) {
        o->pAliasArray[i] = o->pAliasArray[i - 2];
        o->pAliasTableLanguages[i] = o->pAliasTableLanguages[i - 2];
        o->ucUniqueAliasTable[i] = o->ucUniqueAliasTable[i - 2];
        o->aliasCounts[i] = o->aliasCounts[i - 2];
    }
    if (o->pOtlHashItemsFactory)
        (void)otlHashRaiseAliasTableNumber(static_cast<VTX_POTLHASHITEMS_FACTORY>(o->pOtlHashItemsFactory),
                                           o->otlHashItemsFactoryNextFreeIndex, 0, 2);  // in-place renumbering
    o->pAliasArray[0] = unique;
    o->pAliasArray[1] = memberId;
    o->pAliasTableLanguages[0] = o->pAliasTableLanguages[1] = nullptr;
    o->ucUniqueAliasTable[0] = 0;  // unique among siblings
    o->ucUniqueAliasTable[1] = 2;  // unique across names and tables
    o->aliasCounts[0] = o->aliasCounts[1] = 0;
    o->usNumAliasTables = (VTX_USHORT_T)(n + 2);
    return 0;
}

} // extern "C"
