// Alias tables of an outline: the table names and their per-table state.
#include "otl.h"
#include "otlHashItemsFactoryWrapper.h"

#include <cstring>
#include <string>
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

// Drops every combination of a member in table t: index entries and records.
void dropCombos(VTX_POTL_T o, VTX_POTLMBR_T m, unsigned t) {
    if (OTL_IS_SMALL(m) || !OTL_LARGE(m)->pAliasRec) return;
    VTX_POTLALIASREC_T &head = OTL_LARGE(m)->pAliasRec[t];
    for (VTX_POTLALIASREC_T a = head; a;) {
        VTX_POTLALIASREC_T next = a->pNext;
        if (a->pszAlias) (void)otlHashDeleteString(o->pNetCtx, o, m, a->pszAlias, (VTX_USHORT_T)(t + 1));  // absent is fine
        otlFreeAliasCombo(o->pNetCtx, a);
        a = next;
    }
    head = nullptr;
}

// Empties a table: every alias and every combination in it.
void otlFreeAllItemAliases(VTX_POTL_T o, unsigned t) {
    forEachRecord(o, [&](VTX_POTLMBR_T m) {
        if (m->AliasArray) dropAlias(o, m, t);
        dropCombos(o, m, t);
    });
    o->aliasCounts[t] = 0;
}

// Grows every record's alias slots to n tables; the new slots are empty.
// Records grown before a failure keep their larger block, which is
// harmless: slots are read only up to usNumAliasTables.
VTX_STS_T otlReallocAllMemberAliasArrays(VTX_POTL_T o, unsigned n) {
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

// Closes the gap table t leaves in every record's alias slots and
// combination lists; the table must be emptied first.
void otlDeleteAliasTree(VTX_POTL_T o, unsigned t) {
    const unsigned n = o->usNumAliasTables;
    forEachRecord(o, [&](VTX_POTLMBR_T m) {
        if (m->AliasArray) {
            std::memmove(&m->AliasArray[t], &m->AliasArray[t + 1], sizeof(VTX_OTLALIASARRAYREC_T) * (n - 1 - t));
            m->AliasArray[n - 1].pszDefName = nullptr;
        }
        if (!OTL_IS_SMALL(m) && OTL_LARGE(m)->pAliasRec) {
            VTX_POTLALIASREC_T *r = OTL_LARGE(m)->pAliasRec;
            std::memmove(&r[t], &r[t + 1], sizeof(VTX_POTLALIASREC_T) * (OTL_MAX_ALIAS_TABLES - 1 - t));
            r[OTL_MAX_ALIAS_TABLES - 1] = nullptr;
        }
    });
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
        if (VTX_STS_T sts = otlReallocAllMemberAliasArrays(o, n)) {
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
    otlFreeAllItemAliases(o, t);
    // Entries of the tables behind move down one number in the index.
    if (o->pOtlHashItemsFactory)
        (void)otlHashReduceAliasTableNumber(static_cast<VTX_POTLHASHITEMS_FACTORY>(o->pOtlHashItemsFactory),
                                            o->otlHashItemsFactoryNextFreeIndex, (VTX_UCHAR_T)(t + 1));  // in-place renumbering
    const unsigned n = o->usNumAliasTables;
    otlDeleteAliasTree(o, t);
    for (VTX_PDTSMBRITEM_T d : o->aDTSMbrs) {
        if (!d) continue;
        std::memmove(&d->pAliasName[t], &d->pAliasName[t + 1], sizeof(VTX_ALIASNAME_T) * (OTL_MAX_ALIAS_TABLES - 1 - t));
        std::memset(d->pAliasName[OTL_MAX_ALIAS_TABLES - 1], 0, sizeof(VTX_ALIASNAME_T));
    }
    // Alternate member identifiers cannot come from a table that is gone.
    if (o->altMemberIdAliasTable && adGlobStrEqualsIgnoreCase(nullptr, o->altMemberIdAliasTable, o->pAliasArray[t])) {
        (void)otlFreeMem(o->pNetCtx, o->altMemberIdAliasTable);  // the outline's copy of the name
        o->altMemberIdAliasTable = nullptr;
        o->altMbrIdAliasExist = 0;
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
    otlFreeAllItemAliases(f.outline(), t);
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
    // The alternate identifier table follows its table's new name.
    const bool alt = o->altMemberIdAliasTable &&
                     adGlobStrEqualsIgnoreCase(nullptr, o->altMemberIdAliasTable, o->pAliasArray[t]);
    char *name = nullptr, *altName = nullptr;
    VTX_STS_T sts = otlStrdup(f.ctx(), pszNewAliasTable, &name);
    if (!sts && alt) sts = otlStrdup(f.ctx(), pszNewAliasTable, &altName);
    if (sts) {
        (void)otlFreeMem(f.ctx(), name);  // never used
        return f.fail(sts, "adShrOtlRenameAliasTable", VTX_MSGARG_STR);
    }
    (void)otlFreeMem(f.ctx(), o->pAliasArray[t]);  // replaced
    o->pAliasArray[t] = name;
    if (alt) {
        (void)otlFreeMem(f.ctx(), o->altMemberIdAliasTable);  // replaced
        o->altMemberIdAliasTable = altName;
    }
    marked(o);
    return 0;
}

VTX_STS_T otlSetAltMemberIdAliasTable(VTX_POTL_T pOutline, VTX_CSTR_T pszAliasTable) {
    if (!pOutline || !pszAliasTable) return VTX_STS_NULL_ARG;
    char *name = nullptr;
    if (VTX_STS_T sts = otlStrdup(pOutline->pNetCtx, pszAliasTable, &name)) return sts;
    (void)otlFreeMem(pOutline->pNetCtx, pOutline->altMemberIdAliasTable);  // replaced
    pOutline->altMemberIdAliasTable = name;
    pOutline->altMbrIdAliasExist = 1;
    return 0;
}

VTX_STS_T adShrOtlSetAltMemberIdAliasTable(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszAliasTable) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    VTX_POTL_T o = f.outline();
    // The outline keeps the table's own spelling.
    if (VTX_STS_T sts = otlSetAltMemberIdAliasTable(o, o->pAliasArray[t]))
        return f.fail(sts, "adShrOtlSetAltMemberIdAliasTable", VTX_MSGARG_STR);
    o->ucStateFlag |= OTL_STATE_CHANGED;
    return 0;
}

VTX_STS_T adShrOtlGetAltMemberIdAliasTable(VTX_HOUTLINE_T hOutline, VTX_ALIASNAME_T pszAliasTable) {
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!pszAliasTable) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetAltMemberIdAliasTable", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    pszAliasTable[0] = '\0';
    if (o->altMbrIdAliasExist && o->altMemberIdAliasTable) {
        std::strncpy(pszAliasTable, o->altMemberIdAliasTable, VTX_ALIASNAME_LEN - 1);
        pszAliasTable[VTX_ALIASNAME_LEN - 1] = '\0';
    }
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
        if (!fMerge) otlFreeAllItemAliases(o, dst);
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

} // extern "C"

namespace {

// Whether a text may be an alias at all: not too long, and legal as a name.
bool aliasTextLegal(VTX_POTL_T o, vTX_PNETCTX_T ctx, VTX_CSTR_T alias) {
    return std::strlen(alias) < VTX_MBRNAME_LEN && otlIsNameLegal(o, alias, ctx, 1);
}

// Writes a member's alias in table t once its rules have passed: the text
// replaces the old one in the record and the index, the member is checked,
// and a finding takes the new text back out.
VTX_STS_T writeAlias(const otl::CallFrame &f, VTX_POTLMBR_T m, VTX_USHORT_T t, VTX_CSTR_T alias,
                     vtx_outerror_t *pMbrError, const char *call) {
    VTX_POTL_T o = f.outline();
    if (!m->AliasArray) {
        if (VTX_STS_T sts = otlAllocItemAliasArray(f.ctx(), o, m)) return f.fail(sts, call, VTX_MSGARG_STR);
    }
    return otl::otlGuard(f.ctx(), call, [&]() -> VTX_STS_T {
        const VTX_USHORT_T num = (VTX_USHORT_T)(t + 1);
        // The new text enters the index before the old one leaves: the
        // steps that need memory come first, and a failure there changes
        // nothing.
        char *text = nullptr;
        VTX_STS_T sts = otlStrdup(f.ctx(), alias, &text);
        if (!sts) sts = otlHashAddString(f.ctx(), o, m, text, num, OTL_HASH_NONE, OTL_HASH_NONE);
        if (sts) {
            (void)otlFreeMem(f.ctx(), text);  // never entered
            return f.fail(sts, call, VTX_MSGARG_STR);
        }
        char *old = m->AliasArray[t].pszDefName;
        m->AliasArray[t].pszDefName = text;
        VTX_ULONG_T v4 = 0;
        const VTX_ULONG_T v = otlVerifyItem(f.ctx(), o, otlGetDim(m), m, &v4,
                                            (VTX_USHORT_T)(OTL_VERIFY_NAMES | OTL_VERIFY_MEMBER_ONLY));
        // Removing an entry needs no memory: the undo and the swap cannot fail.
        if (v || v4) {
            if (pMbrError) {
                pMbrError->hMember = m;
                pMbrError->ulErrors = v;
                pMbrError->ulErrors4 = v4;
            }
            m->AliasArray[t].pszDefName = old;
            (void)otlHashDeleteString(f.ctx(), o, m, text, num);
            (void)otlFreeMem(f.ctx(), text);
            sts = otlSetVerifyStatus(v, 0, 0, v4, 0, 0);
            return f.fail(sts ? sts : (VTX_STS_T)v);
        }
        if (old) {
            (void)otlHashDeleteString(f.ctx(), o, m, old, num);
            (void)otlFreeMem(f.ctx(), old);  // replaced
        } else {
            ++o->aliasCounts[t];
        }
        marked(o);
        return 0;
    });
}

} // namespace

extern "C" {

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
    // A table without uniqueness has a call of its own, which reports for itself.
    if (o->ucUniqueAliasTable[t] == VTX_ALIAS_NOT_UNIQUE) return adShrOtlSetNonUniqueMemberAlias(o, m, t, pszAlias);
    if (!aliasTextLegal(o, f.ctx(), pszAlias)) return f.fail(VTX_STS_ILLEGAL_ALIAS, pszAlias, VTX_MSGARG_STR);
    if (VTX_STS_T sts = checkAlias(o, m, t, pszAlias, usVerifyType)) return f.fail(sts, pszAlias, VTX_MSGARG_STR);
    return writeAlias(f, m, t, pszAlias, pMbrError, "adShrOtlSetMemberAlias");
}

VTX_STS_T adShrOtlSetNonUniqueMemberAlias(VTX_HOUTLINE_T pOutline, VTX_HMEMBER_T pItem, VTX_USHORT_T usAliasArray,
                                          VTX_CSTR_T pszAlias) {
    otl::CallFrame f(pOutline, otl::kEdit | otl::kMemberEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter({pItem})) return sts;
    VTX_POTL_T o = f.outline();
    auto *m = static_cast<VTX_POTLMBR_T>(pItem);
    if (!m) return f.fail(VTX_STS_NULL_ARG, "adShrOtlSetNonUniqueMemberAlias", VTX_MSGARG_STR);
    if (o->usOutlineType != VTX_OTL_AGGSTORE) return f.fail(VTX_STS_ALIAS_POLICY_AGG);
    if (usAliasArray >= o->usNumAliasTables) return f.fail(VTX_STS_ALIAS_TABLE_NOT_FOUND);
    // Only a table made without uniqueness may skip every test.
    if (o->ucUniqueAliasTable[usAliasArray] != VTX_ALIAS_NOT_UNIQUE)
        return f.fail(VTX_STS_DUP_RULE_CONFLICT, o->pAliasArray[usAliasArray], VTX_MSGARG_STR);
    if (!pszAlias || !*pszAlias) return f.fail(VTX_STS_ILLEGAL_ALIAS);
    if (!aliasTextLegal(o, f.ctx(), pszAlias)) return f.fail(VTX_STS_ILLEGAL_ALIAS, pszAlias, VTX_MSGARG_STR);
    return writeAlias(f, m, usAliasArray, pszAlias, nullptr, "adShrOtlSetNonUniqueMemberAlias");
}

} // extern "C"

namespace {

// The name a member's entry in "Unique Name" holds, as a new block (null
// for the root): the identifier key when the context asks for those, else
// the unique name.  The key calls report their own refusals.
VTX_STS_T uniqueKeyOf(const otl::CallFrame &f, VTX_POTLMBR_T m, VTX_STR_T *ppKey, const char *call) {
    *ppKey = nullptr;
    if (!(f.ctx() && f.ctx()->bUseNonUniqueMbrIdKey)) return adShrOtlConstructMemberUniqueName(f.outline(), m, ppKey);
    VTX_STR_T key = nullptr;
    if (VTX_STS_T sts = otlAlloc(f.ctx(), VTX_MBRKEY_LEN, &key)) return f.fail(sts, call, VTX_MSGARG_STR);
    if (VTX_STS_T sts = adShrOtlConstructMemberIDKey(f.outline(), m, key)) {
        (void)otlFreeMem(f.ctx(), key);  // the key failed; its status is the answer
        return sts;
    }
    *ppKey = key;
    return 0;
}

} // namespace

extern "C" {

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
    if (compute) return uniqueKeyOf(f, m, ppszAlias, "adShrOtlGetMemberAlias");
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
    if (!sts) sts = otlReallocAllMemberAliasArrays(o, n + 2);
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

// ---- alias combinations -------------------------------------------------------------
//
// pAliasRec[t] of a large record lists the aliases that stand for the member
// together with other members; each alias is in the member index under
// table number t + 1, like the member's own alias of that table.

extern "C" {

VTX_STS_T otlNewAliasRec(vTX_PNETCTX_T pNetCtx, VTX_POTLALIASREC_T *ppRec) {
    if (!ppRec) return VTX_STS_NULL_ARG;
    *ppRec = nullptr;
    return otlAlloc(pNetCtx, sizeof(VTX_OTLALIASREC_T), ppRec);
}

void otlFreeAliasCombo(vTX_PNETCTX_T pNetCtx, VTX_POTLALIASREC_T pRec) {
    if (!pRec) return;
    (void)otlFreeMem(pNetCtx, pRec->pszAlias);  // releases have no one to report to
    (void)otlFreeMem(pNetCtx, pRec->pszCombination);
    (void)otlFreeMem(pNetCtx, pRec);
}

VTX_STS_T otlAddAliasCombo(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_USHORT_T usTable,
                           VTX_CSTR_T pszAlias, VTX_CSTR_T pszCombination, VTX_POTLALIASREC_T *ppRec) {
    if (ppRec) *ppRec = nullptr;
    if (!pOutline || !pItem || OTL_IS_SMALL(pItem) || usTable >= OTL_MAX_ALIAS_TABLES || !pszAlias || !*pszAlias ||
        !pszCombination || !*pszCombination)
        return 1;
    VTX_POTLMBRLARGE_T l = OTL_LARGE(pItem);
    VTX_POTLALIASREC_T *heads = l->pAliasRec;
    VTX_POTLALIASREC_T rec = nullptr;
    VTX_STS_T sts = 0;
    if (!heads) sts = otlAlloc(pNetCtx, sizeof(VTX_POTLALIASREC_T) * OTL_MAX_ALIAS_TABLES, &heads);
    if (!sts) sts = otlNewAliasRec(pNetCtx, &rec);
    if (!sts) sts = otlStrdup(pNetCtx, pszAlias, &rec->pszAlias);
    if (!sts) sts = otlStrdup(pNetCtx, pszCombination, &rec->pszCombination);
    if (!sts) sts = otlHashAddString(pNetCtx, pOutline, pItem, rec->pszAlias, (VTX_USHORT_T)(usTable + 1),
                                     OTL_HASH_NONE, OTL_HASH_NONE);
    if (sts) {
        otlFreeAliasCombo(pNetCtx, rec);
        if (heads != l->pAliasRec) (void)otlFreeMem(pNetCtx, heads);  // made for this entry only
        return sts;
    }
    l->pAliasRec = heads;
    VTX_POTLALIASREC_T *tail = &heads[usTable];
    while (*tail) tail = &(*tail)->pNext;
    *tail = rec;
    if (ppRec) *ppRec = rec;
    return 0;
}

VTX_POTLALIASREC_T otlFindAliasCombo(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_USHORT_T usTable,
                                     VTX_CSTR_T pszAlias, VTX_CSTR_T pszCombination) {
    if (!pOutline || !pItem || OTL_IS_SMALL(pItem) || !OTL_LARGE(pItem)->pAliasRec || !pszAlias ||
        usTable >= OTL_MAX_ALIAS_TABLES)
        return nullptr;
    for (VTX_POTLALIASREC_T a = OTL_LARGE(pItem)->pAliasRec[usTable]; a; a = a->pNext) {
        if (!a->pszAlias || otlCompareNames(pOutline, a->pszAlias, pszAlias) != 0) continue;
        if (pszCombination &&
            (!a->pszCombination || otlCompareNames(pOutline, a->pszCombination, pszCombination) != 0))
            continue;
        return a;
    }
    return nullptr;
}

VTX_STS_T otlDeleteAliasComboByPtr(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                   VTX_USHORT_T usTable, VTX_POTLALIASREC_T pRec) {
    if (!pOutline || !pItem || !pRec || OTL_IS_SMALL(pItem) || !OTL_LARGE(pItem)->pAliasRec ||
        usTable >= OTL_MAX_ALIAS_TABLES)
        return 1;
    for (VTX_POTLALIASREC_T *link = &OTL_LARGE(pItem)->pAliasRec[usTable]; *link; link = &(*link)->pNext) {
        if (*link != pRec) continue;
        *link = pRec->pNext;
        // The index entry goes before the text its key points to.
        if (pRec->pszAlias)
            (void)otlHashDeleteString(pNetCtx, pOutline, pItem, pRec->pszAlias, (VTX_USHORT_T)(usTable + 1));  // absent is fine
        otlFreeAliasCombo(pNetCtx, pRec);
        return 0;
    }
    return 1;
}

VTX_USHORT_T otlCountExtraAliases(VTX_POTLMBR_T pItem, VTX_USHORT_T usTable) {
    if (!pItem || OTL_IS_SMALL(pItem) || !OTL_LARGE(pItem)->pAliasRec || usTable >= OTL_MAX_ALIAS_TABLES) return 0;
    VTX_USHORT_T n = 0;
    for (VTX_POTLALIASREC_T a = OTL_LARGE(pItem)->pAliasRec[usTable]; a; a = a->pNext) ++n;
    return n;
}

} // extern "C"

namespace {

// The member specifications of a combination: split at commas that stand
// outside brackets ("]]" inside brackets is a bracket of the name), blanks
// around each trimmed.
std::vector<std::string> splitCombination(const char *s) {
    std::vector<std::string> parts(1);
    bool inside = false;
    for (const char *p = s; *p; ++p) {
        if (inside && *p == ']') {
            if (p[1] == ']') {
                parts.back() += "]]";
                ++p;
                continue;
            }
            inside = false;
        } else if (!inside && *p == '[') {
            inside = true;
        } else if (!inside && *p == ',') {
            parts.emplace_back();
            continue;
        }
        parts.back() += *p;
    }
    for (std::string &part : parts) {
        const size_t b = part.find_first_not_of(' ');
        const size_t e = part.find_last_not_of(' ');
        part = b == std::string::npos ? std::string() : part.substr(b, e - b + 1);
    }
    return parts;
}

} // namespace

extern "C" {

VTX_STS_T otlCheckAliasCombination(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_CSTR_T pszCombination) {
    if (!pOutline || !pszCombination || !*pszCombination) return VTX_STS_ILLEGAL_COMBO_MEMBERS;
    return otl::otlGuard(pOutline->pNetCtx, "otlCheckAliasCombination", [&]() -> VTX_STS_T {
        for (const std::string &part : splitCombination(pszCombination)) {
            if (part.empty()) return VTX_STS_ILLEGAL_COMBO_MEMBERS;
            VTX_POTLMBR_T hit = nullptr;
            // A name borne by several members answers none: the combination
            // must say which one it means.
            VTX_STS_T sts = otlHashFindItemByCombinedName(pOutline->pNetCtx, pOutline, part.c_str(), 1, 1, 0,
                                                          OTL_OPT_UNSHARED, 0, nullptr, &hit);
            if (sts == VTX_STS_NO_MEMORY) return sts;
            if (sts || !hit || hit == pItem) return VTX_STS_ILLEGAL_COMBO_MEMBERS;
        }
        return 0;
    });
}

VTX_STS_T adShrOtlAddAliasCombination(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszAliasTable,
                                      VTX_CSTR_T pszAlias, VTX_CSTR_T pszCombination) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    VTX_POTL_T o = f.outline();
    auto *m = static_cast<VTX_POTLMBR_T>(hMember);
    if (!m) return f.fail(VTX_STS_NULL_ARG, "adShrOtlAddAliasCombination", VTX_MSGARG_STR);
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    if (!pszAlias || !*pszAlias) return f.fail(VTX_STS_ILLEGAL_ALIAS);
    // Only full records carry combinations.
    if (OTL_IS_SMALL(m)) return f.fail(VTX_STS_WRONG_MODE);
    VTX_POTLMBR_T dim = otlGetDim(m);
    // Attribute values stand for themselves only; the root is no member.
    if (!dim || (!OTL_IS_SMALL(dim) && OTL_LARGE(dim)->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE) || !aliasTextLegal(o, f.ctx(), pszAlias))
        return f.fail(VTX_STS_ILLEGAL_COMBO_ALIAS, pszAlias, VTX_MSGARG_STR);
    if (VTX_STS_T sts = otlCheckAliasCombination(o, m, pszCombination)) {
        if (sts == VTX_STS_NO_MEMORY) return sts;  // reported where it ran out
        return f.fail(sts, pszCombination ? pszCombination : "", VTX_MSGARG_STR);
    }
    if (otlFindAliasCombo(o, m, t, pszAlias, pszCombination))
        return f.fail(VTX_STS_ALIAS_NOT_UNIQUE, pszAlias, VTX_MSGARG_STR);
    if (VTX_STS_T sts = checkAlias(o, m, t, pszAlias, OTL_VERIFY_ALL)) return f.fail(sts, pszAlias, VTX_MSGARG_STR);
    return otl::otlGuard(f.ctx(), "adShrOtlAddAliasCombination", [&]() -> VTX_STS_T {
        VTX_POTLALIASREC_T rec = nullptr;
        if (VTX_STS_T sts = otlAddAliasCombo(f.ctx(), o, m, t, pszAlias, pszCombination, &rec))
            return f.fail(sts, "adShrOtlAddAliasCombination", VTX_MSGARG_STR);
        VTX_ULONG_T v4 = 0;
        const VTX_ULONG_T v = otlVerifyItem(f.ctx(), o, dim, m, &v4, (VTX_USHORT_T)(OTL_VERIFY_ALL | OTL_VERIFY_MEMBER_ONLY));
        if (v || v4) {
            (void)otlDeleteAliasComboByPtr(f.ctx(), o, m, t, rec);  // just appended: it is there
            VTX_STS_T sts = otlSetVerifyStatus(v, 0, 0, v4, 0, 0);
            return f.fail(sts ? sts : (VTX_STS_T)v);
        }
        marked(o);
        return 0;
    });
}

VTX_STS_T adShrOtlDeleteAliasCombination(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszAliasTable,
                                         VTX_CSTR_T pszAlias) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kMemberEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    VTX_POTL_T o = f.outline();
    auto *m = static_cast<VTX_POTLMBR_T>(hMember);
    if (!m) return f.fail(VTX_STS_NULL_ARG, "adShrOtlDeleteAliasCombination", VTX_MSGARG_STR);
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    if (!pszAlias || !*pszAlias) return f.fail(VTX_STS_ILLEGAL_ALIAS);
    bool any = false;
    while (VTX_POTLALIASREC_T rec = otlFindAliasCombo(o, m, t, pszAlias, nullptr)) {
        (void)otlDeleteAliasComboByPtr(f.ctx(), o, m, t, rec);  // found in that list just now
        any = true;
    }
    if (!any) return f.fail(VTX_STS_NOT_FOUND, pszAlias, VTX_MSGARG_STR);
    marked(o);
    return 0;
}

VTX_STS_T adShrOtlGetNextAliasCombination(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_CSTR_T pszAliasTable,
                                          VTX_CSTR_T pszAlias, VTX_STR_T *ppszCombination) {
    // *ppszCombination is the cursor: it is read, not cleared.
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    VTX_POTL_T o = f.outline();
    auto *m = static_cast<VTX_POTLMBR_T>(hMember);
    if (!m || !ppszCombination) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetNextAliasCombination", VTX_MSGARG_STR);
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = tableFor(f, pszAliasTable, &t)) return sts;
    if (!pszAlias || !*pszAlias) return f.fail(VTX_STS_ILLEGAL_ALIAS);
    VTX_STR_T prev = *ppszCombination;
    VTX_POTLALIASREC_T next = nullptr;
    if (!OTL_IS_SMALL(m) && OTL_LARGE(m)->pAliasRec) {
        bool passed = prev == nullptr;
        for (VTX_POTLALIASREC_T a = OTL_LARGE(m)->pAliasRec[t]; a && !next; a = a->pNext) {
            if (!a->pszAlias || otlCompareNames(o, a->pszAlias, pszAlias) != 0 || !a->pszCombination) continue;
            if (passed) next = a;
            else passed = otlCompareNames(o, a->pszCombination, prev) == 0;
        }
        // The combination last answered is gone: the walk cannot go on.
        if (!passed) return f.fail(VTX_STS_NOT_FOUND, prev, VTX_MSGARG_STR);
    } else if (prev) {
        return f.fail(VTX_STS_NOT_FOUND, prev, VTX_MSGARG_STR);
    }
    VTX_STR_T copy = nullptr;
    if (next) {
        if (VTX_STS_T sts = otlStrdup(f.ctx(), next->pszCombination, &copy))
            return f.fail(sts, "adShrOtlGetNextAliasCombination", VTX_MSGARG_STR);
    }
    (void)otlFreeMem(f.ctx(), prev);  // the previous answer, handed back
    *ppszCombination = copy;
    return 0;
}

} // extern "C"

// ---- the names that tell repeated member names apart ------------------------------
//
// In an outline of duplicate names the table "Unique Name" holds, for the
// members whose names repeat, the name that tells each apart.  Verification
// and saving write the shortest keys there; hosts may write unique names.
// The entry is derived data: writing it does not mark the outline changed,
// and aliasCounts counts the members that hold one, as for every table.

namespace {

VTX_STS_T uniqueTableFor(const otl::CallFrame &f, VTX_USHORT_T *pT) {
    *pT = 0;
    if (f.outline()->bNonUniqueName && otlGetAliasIndexFromName(f.outline(), kUniqueNameTable, pT) == 0) return 0;
    return f.fail(VTX_STS_ALIAS_TABLE_NOT_FOUND, kUniqueNameTable, VTX_MSGARG_STR);
}

// Puts key into the member's entry of table t and into the index.  The new
// entry goes in before the old one comes out, so that a failure (the only
// step that can fail is the one that needs memory) leaves both as they were.
VTX_STS_T storeKey(const otl::CallFrame &f, VTX_POTLMBR_T m, VTX_USHORT_T t, VTX_CSTR_T key, const char *call) {
    VTX_POTL_T o = f.outline();
    vTX_PNETCTX_T ctx = f.ctx();
    if (!key || !*key) return 0;  // the root: nothing to tell apart
    char *old = m->AliasArray ? m->AliasArray[t].pszDefName : nullptr;
    if (old && otlCompareNames(o, old, key) == 0) return 0;
    const bool madeSlots = !m->AliasArray;
    if (madeSlots) {
        if (VTX_STS_T sts = otlAllocItemAliasArray(ctx, o, m)) return f.fail(sts, call, VTX_MSGARG_STR);
    }
    const VTX_USHORT_T num = (VTX_USHORT_T)(t + 1);
    char *text = nullptr;
    VTX_STS_T sts = otlStrdup(ctx, key, &text);
    if (!sts) sts = otlHashAddString(ctx, o, m, text, num, OTL_HASH_NONE, OTL_HASH_NONE);
    if (sts) {
        (void)otlFreeMem(ctx, text);  // never entered
        if (madeSlots) {
            (void)otlFreeMem(ctx, m->AliasArray);  // made by this call only
            m->AliasArray = nullptr;
        }
        return f.fail(sts, call, VTX_MSGARG_STR);
    }
    if (old) {
        (void)otlHashDeleteString(ctx, o, m, old, num);  // its entry is there; removal needs no memory
        (void)otlFreeMem(ctx, old);                       // replaced
    } else {
        ++o->aliasCounts[t];
    }
    m->AliasArray[t].pszDefName = text;
    return 0;
}

} // namespace

extern "C" {

VTX_STS_T adShrOtlSetMemberUniqueAlias(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    auto *m = static_cast<VTX_POTLMBR_T>(hMember);
    if (!m) return f.fail(VTX_STS_NULL_ARG, "adShrOtlSetMemberUniqueAlias", VTX_MSGARG_STR);
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = uniqueTableFor(f, &t)) return sts;
    return otl::otlGuard(f.ctx(), "adShrOtlSetMemberUniqueAlias", [&]() -> VTX_STS_T {
        VTX_STR_T key = nullptr;
        VTX_STS_T sts = uniqueKeyOf(f, m, &key, "adShrOtlSetMemberUniqueAlias");
        if (!sts) sts = storeKey(f, m, t, key, "adShrOtlSetMemberUniqueAlias");
        (void)otlFreeMem(f.ctx(), key);  // copied by storeKey
        return sts;
    });
}

VTX_STS_T adShrOtlSetMemberKey(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, const vtx_genlevelnames_t *pGenLevelName,
                               VTX_HMEMBER_T hMember) {
    otl::CallFrame f(hOutline, otl::kEdit | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter({hDim, hMember})) return sts;
    auto *m = static_cast<VTX_POTLMBR_T>(hMember);
    if (!hDim || !m) return f.fail(VTX_STS_NULL_ARG, "adShrOtlSetMemberKey", VTX_MSGARG_STR);
    VTX_USHORT_T t = 0;
    if (VTX_STS_T sts = uniqueTableFor(f, &t)) return sts;
    return otl::otlGuard(f.ctx(), "adShrOtlSetMemberKey", [&]() -> VTX_STS_T {
        // The key call fills a buffer of the full key length and refuses,
        // by status, a key outside a verify or a save and a key too long.
        VTX_STR_T key = nullptr;
        if (VTX_STS_T sts = otlAlloc(f.ctx(), VTX_MBRKEY_LEN, &key))
            return f.fail(sts, "adShrOtlSetMemberKey", VTX_MSGARG_STR);
        VTX_STS_T sts = adShrOtlConstructMemberKey(hOutline, hDim, pGenLevelName, hMember, key);
        if (!sts) sts = storeKey(f, m, t, key, "adShrOtlSetMemberKey");
        (void)otlFreeMem(f.ctx(), key);  // copied by storeKey
        return sts;
    });
}

} // extern "C"
