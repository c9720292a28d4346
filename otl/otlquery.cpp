// Member reads beyond one record: generations, several records at once, the
// unique names and keys of members whose names repeat, and query handles.
#include "otl.h"
#include "otlhash.h"
#include "vtxotlquery.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr const char *kUniqueNameTable = "Unique Name";

inline VTX_POTLMBR_T M(VTX_HMEMBER_T h) { return static_cast<VTX_POTLMBR_T>(h); }

// "]" doubled, as every bracketed name of a key is written.
std::string esc(const char *name) {
    std::string s;
    if (!name) return s;
    for (const char *p = name; *p; ++p) {
        if (*p == ']') s += ']';
        s += *p;
    }
    return s;
}

std::string bracket(const char *name) {
    std::string s(1, '[');
    s += esc(name);
    s += ']';
    return s;
}

const char *nameOf(VTX_POTLMBR_T p) { return p && p->MbrInfo.szMember ? p->MbrInfo.szMember : ""; }

bool isRoot(VTX_POTL_T o, VTX_POTLMBR_T p) { return !p || p == o->pHeadItem || p->MbrInfo.usGen == 0; }

// Copies a finished key into the caller's buffer of VTX_MBRKEY_LEN bytes;
// a key that does not fit leaves the buffer empty and names its dimension.
VTX_STS_T putKey(const otl::CallFrame &f, const std::string &key, VTX_POTLMBR_T dim, VTX_STR_T out) {
    if (key.size() + 1 > VTX_MBRKEY_LEN) {
        static const VTX_ULONG_T limit = VTX_MBRKEY_LEN;
        out[0] = 0;
        return f.fail(VTX_STS_KEY_TOO_LONG, nameOf(dim), VTX_MSGARG_STR, &limit, VTX_MSGARG_PU32);
    }
    std::memcpy(out, key.c_str(), key.size() + 1);
    return 0;
}

VTX_STS_T tooManyNames(const otl::CallFrame &f, VTX_POTLMBR_T dim) {
    static const VTX_ULONG_T limit = VTX_MBRKEY_LEN;
    return f.fail(VTX_STS_KEY_TOO_LONG, nameOf(dim), VTX_MSGARG_STR, &limit, VTX_MSGARG_PU32);
}

// The unique name of an edit-handle member into *pKey; *pNone when the
// member has none (the root).
VTX_STS_T buildUniqueName(const otl::CallFrame &f, VTX_POTLMBR_T item, std::string *pKey, bool *pNone) {
    VTX_POTL_T o = f.outline();
    *pNone = false;
    pKey->clear();
    if (isRoot(o, item)) {
        *pNone = true;
        return 0;
    }
    if (item->MbrInfo.usGen == 1) {
        *pKey = nameOf(item);
        return 0;
    }
    // The member, then its ancestors up to the first whose name does not
    // repeat anywhere: that one anchors the name.
    std::vector<VTX_POTLMBR_T> chain{item};
    for (VTX_POTLMBR_T a = item->pParent; !isRoot(o, a); a = a->pParent) {
        if (chain.size() == VTX_MAX_KEY_NAMES) return tooManyNames(f, otlGetDim(item));
        chain.push_back(a);
        if (!otlIsNameDuplicated(f.ctx(), o, nameOf(a), 0, nullptr)) break;
    }
    std::string key;
    for (size_t i = chain.size(); i-- > 0;) {
        key += bracket(nameOf(chain[i]));
        if (i) key += '.';
    }
    *pKey = std::move(key);
    return 0;
}

VTX_STS_T handOut(const otl::CallFrame &f, const std::string &s, VTX_STR_T *pp, const char *call) {
    if (VTX_STS_T sts = otlStrdup(f.ctx(), s.c_str(), pp)) return f.fail(sts, call, VTX_MSGARG_STR);
    return 0;
}

// The generation (fGen) or level name of number n, from the caller's list
// or, without one, from the dimension's own names.
const char *genLevelName(VTX_POTLMBR_T dim, const vtx_genlevelnames_t *names, bool fGen, unsigned n) {
    if (names) {
        for (VTX_ULONG_T i = 0; i < names->ulCount && names->pNames; ++i) {
            const vtx_genlevelname_t &g = names->pNames[i];
            if (!g.fGen == !fGen && g.usGenOrLevel == n && g.pszName && *g.pszName) return g.pszName;
        }
        return nullptr;
    }
    if (!dim || OTL_IS_SMALL(dim)) return nullptr;
    for (VTX_PNAMELIST_T l = OTL_LARGE(dim)->pNameList; l; l = l->pNext)
        if (!l->fGen == !fGen && l->usGenOrLevel == n && l->pszName && *l->pszName) return l->pszName;
    return nullptr;
}

// "[D]@[gen]|" or "[D]@[level]|" when a name of the member's generation or
// level is usable (its bit in the member's marks clear), else empty.
std::string genLevelAnchor(VTX_POTLMBR_T m, VTX_POTLMBR_T dim, const vtx_genlevelnames_t *names) {
    const VTX_UCHAR_T flags = m->ucNameUnique;
    if (!(flags & OTL_NU_AT_GEN))
        if (const char *g = genLevelName(dim, names, true, m->MbrInfo.usGen))
            return bracket(nameOf(dim)) + "@" + bracket(g) + "|";
    if (!(flags & OTL_NU_AT_LEVEL))
        if (const char *l = genLevelName(dim, names, false, m->MbrInfo.usLevel))
            return bracket(nameOf(dim)) + "@" + bracket(l) + "|";
    return std::string();
}

// ---- query handles ------------------------------------------------------------

// The records of a query handle: a flat array in the outline's TempMbrArray.
struct QueryStore {
    VTX_POTLMBR_T *items;
    VTX_ULONG_T count;
    VTX_ULONG_T cap;
};

QueryStore *storeOf(VTX_POTL_T o) { return static_cast<QueryStore *>(o->TempMbrArray); }

// Frees one query-form record: the names in its link slots, then what any
// record owns (otlFreeItem also takes szOriginalMbr on a query handle).
void freeQueryRecord(vTX_PNETCTX_T ctx, VTX_POTL_T o, VTX_POTLMBR_T p) {
    for (VTX_POTLMBR_T *slot : {&p->pSibling, &p->pPrevSibling, &p->pParent, &p->pChild}) {
        (void)otlFreeMem(ctx, *slot);  // a release failure has no one to go to
        *slot = nullptr;
    }
    otlFreeItem(ctx, o, p);
}

VTX_STS_T dupOpt(vTX_PNETCTX_T ctx, VTX_CSTR_T s, char **pp) {
    *pp = nullptr;
    return s ? otlStrdup(ctx, s, pp) : 0;
}

VTX_STS_T dupText(vTX_PNETCTX_T ctx, const char *s, char **pp) {
    // The exported record holds empty texts where the record holds none.
    *pp = nullptr;
    return (s && *s) ? otlStrdup(ctx, s, pp) : 0;
}

// Fills a fresh large record from the host's description.
VTX_STS_T fillQueryRecord(vTX_PNETCTX_T ctx, VTX_POTL_T o, const vtx_querymbr_t *q, VTX_POTLMBRLARGE_T r) {
    VTX_STS_T sts = 0;
    r->ucFlags |= OTL_FLAG_QUERYMASK;
    r->ulBitmask[0] = q->ulBitmask[0];
    r->ulBitmask[1] = q->ulBitmask[1];
    r->ulMemno = q->ulMemno;
    r->ulDimno = q->ucDimno;
    r->ulStatus = q->ulStatus;
    r->fCurrConvDB = q->fCurrConvDB;
    r->ucNameUnique = q->ucNameUnique;
    r->MbrInfo.ucHierarchyType = OTL_HIER_STORED;
    if (const vtx_mbrinfo_t *i = q->pInfo) {
        r->MbrInfo.usLevel = (VTX_UCHAR_T)i->usLevel;
        r->MbrInfo.usGen = (VTX_UCHAR_T)i->usGen;
        r->MbrInfo.usTimeBalance = i->usTimeBalance;
        r->MbrInfo.usSkip = i->usSkip;
        r->MbrInfo.ulChildCount = i->ulChildCount;
        r->MbrInfo.ucInfoFlags = (VTX_USHORT_T)((i->usConsolidation & OTL_INFO_CONSOL) |
                                                (i->fAttributed ? OTL_INFO_ATTRIBUTED : 0));
        r->MbrInfo.usConversion = i->usConversion;
        r->MbrInfo.fTwoPass = i->fTwoPass;
        r->MbrInfo.fExpense = i->fExpense;
        r->MbrInfo.usCategory = (VTX_UCHAR_T)i->usCategory;
        r->MbrInfo.usStorageCategory = (VTX_UCHAR_T)i->usStorageCategory;
        r->MbrInfo.usStorage = (VTX_UCHAR_T)i->usStorage;
        r->MbrInfo.usShare = (VTX_UCHAR_T)i->usShare;
        r->MbrInfo.ucHierarchyType = i->ucHierarchyType;
        r->ucSolveOrder = i->ucSolveOrder;
        r->ucDimSolveOrder = i->ucDimSolveOrder;
        r->ucFlags2 = (VTX_UCHAR_T)(i->ucMemberType & OTL_FLAG2_TYPEMASK);
        if (!sts) sts = dupText(ctx, i->szMember, &r->MbrInfo.szMember);
        if (!sts) sts = dupText(ctx, i->szCurMember, &r->MbrInfo.szCurMember);
        if (!sts) sts = dupText(ctx, i->szComment, &r->MbrInfo.szComment);
        if (!sts) sts = dupText(ctx, i->szDimName, &r->MbrInfo.szDimName);
        if (!sts) {
            r->MbrInfo.Attribute.usDataType = i->Attribute.usDataType;
            if (i->Attribute.usDataType == VTX_ATTR_STRING) {
                r->MbrInfo.Attribute.value.raw = 0;
                sts = dupOpt(ctx, i->Attribute.value.pszValue, &r->MbrInfo.Attribute.value.pszValue);
            } else {
                r->MbrInfo.Attribute.value = i->Attribute.value;
            }
        }
    }
    char *s = nullptr;
    struct Link { VTX_CSTR_T text; VTX_POTLMBR_T *slot; };
    for (Link l : {Link{q->pszSibling, &r->pSibling}, Link{q->pszPrevSibling, &r->pPrevSibling},
                   Link{q->pszParent, &r->pParent}, Link{q->pszChild, &r->pChild}}) {
        if (sts) break;
        sts = dupOpt(ctx, l.text, &s);
        // The link slots of a query-form record hold names, not records.
        *l.slot = reinterpret_cast<VTX_POTLMBR_T>(s);
    }
    if (!sts) sts = dupOpt(ctx, q->pszOriginalMbr, &r->OriginalMbr.szOriginalMbr);
    if (!sts) sts = dupOpt(ctx, q->pszCalc, &r->pszCalc);
    if (!sts) sts = dupOpt(ctx, q->pszLastCalc, &r->pszLastCalc);
    if (!sts) sts = dupOpt(ctx, q->pszCommentEx, &r->pszCommentEx);
    if (!sts) sts = dupOpt(ctx, q->pszFormatString, &r->pszFormatString);
    if (!sts && q->pszUserAttr) {
        sts = otlAlloc(ctx, sizeof(VTX_USERATTR_T), &r->pUserAttrList);
        if (!sts) sts = otlStrdup(ctx, q->pszUserAttr, &r->pUserAttrList->pszUserAttr);
    }
    if (!sts && (q->pszAlias0 || q->pszDefaultAlias)) {
        sts = otlAllocItemAliasArray(ctx, o, (VTX_POTLMBR_T)r);
        // In an outline of duplicate names the default table stands third,
        // behind the two reserved ones; elsewhere it is table 0 itself.
        const unsigned def = o->bNonUniqueName ? 2u : 0u;
        if (!sts && q->pszDefaultAlias && def < o->usNumAliasTables)
            sts = otlStrdup(ctx, q->pszDefaultAlias, &r->AliasArray[def].pszDefName);
        if (!sts && q->pszAlias0 && !r->AliasArray[0].pszDefName)
            sts = otlStrdup(ctx, q->pszAlias0, &r->AliasArray[0].pszDefName);
    }
    return sts;
}

// One field as a new block of the given size.
template <class T>
VTX_STS_T answer(vTX_PNETCTX_T ctx, T value, void **pp) {
    T *p = nullptr;
    if (VTX_STS_T sts = otlAlloc(ctx, sizeof(T), &p)) return sts;
    *p = value;
    *pp = p;
    return 0;
}

VTX_STS_T answerText(vTX_PNETCTX_T ctx, const char *s, void **pp) {
    if (!s) return 0;
    char *c = nullptr;
    if (VTX_STS_T sts = otlStrdup(ctx, s, &c)) return sts;
    *pp = c;
    return 0;
}

const char *aliasAt(VTX_POTL_T o, VTX_POTLMBR_T p, unsigned t) {
    return (p->AliasArray && t < o->usNumAliasTables) ? p->AliasArray[t].pszDefName : nullptr;
}

} // namespace

extern "C" {

void otlFreeQueryMembers(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline) {
    if (!pOutline || !pOutline->fOpenQuery) return;
    QueryStore *s = storeOf(pOutline);
    if (!s) return;
    for (VTX_ULONG_T i = 0; i < s->count; ++i) freeQueryRecord(pNetCtx, pOutline, s->items[i]);
    (void)otlFreeMem(pNetCtx, s->items);  // close path: nothing to report to
    (void)otlFreeMem(pNetCtx, s);
    pOutline->TempMbrArray = nullptr;
}

VTX_STS_T adShrOtlGetMemberGen(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_USHORT_T *pusGen) {
    if (pusGen) *pusGen = 0;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (!hMember || !pusGen) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetMemberGen", VTX_MSGARG_STR);
    *pusGen = M(hMember)->MbrInfo.usGen;
    return 0;
}

VTX_STS_T adShrOtlGetMemberInfoArray(VTX_HOUTLINE_T hOutline, VTX_ULONG_T memberCount,
                                     const VTX_HMEMBER_T *hMemberArr, vtx_mbrinfo_t **pInfoArr,
                                     VTX_STS_T *pStsArr) {
    if (pInfoArr)
        for (VTX_ULONG_T i = 0; i < memberCount; ++i) pInfoArr[i] = nullptr;
    if (pStsArr)
        for (VTX_ULONG_T i = 0; i < memberCount; ++i) pStsArr[i] = 0;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (memberCount && (!hMemberArr || !pInfoArr || !pStsArr))
        return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetMemberInfoArray", VTX_MSGARG_STR);
    return otl::otlGuard(f.ctx(), "adShrOtlGetMemberInfoArray", [&]() -> VTX_STS_T {
        // Each entry keeps its own verdict; one refused member does not
        // hide the others.
        for (VTX_ULONG_T i = 0; i < memberCount; ++i)
            pStsArr[i] = adShrOtlGetMemberInfo(hOutline, hMemberArr[i], &pInfoArr[i]);
        return 0;
    });
}

VTX_STS_T adShrOtlConstructMemberUniqueName(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                            VTX_STR_T *ppszFullName) {
    if (ppszFullName) *ppszFullName = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (!hMember || !ppszFullName)
        return f.fail(VTX_STS_NULL_ARG, "adShrOtlConstructMemberUniqueName", VTX_MSGARG_STR);
    return otl::otlGuard(f.ctx(), "adShrOtlConstructMemberUniqueName", [&]() -> VTX_STS_T {
        std::string key;
        bool none = false;
        if (VTX_STS_T sts = buildUniqueName(f, M(hMember), &key, &none)) return sts;
        if (none) return 0;
        return handOut(f, key, ppszFullName, "adShrOtlConstructMemberUniqueName");
    });
}

VTX_STS_T adShrOtlGetMemberUniqueName(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_STR_T *ppszUniqueName) {
    if (ppszUniqueName) *ppszUniqueName = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (!hMember || !ppszUniqueName)
        return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetMemberUniqueName", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    VTX_POTLMBR_T item = M(hMember);
    return otl::otlGuard(f.ctx(), "adShrOtlGetMemberUniqueName", [&]() -> VTX_STS_T {
        // A name stored by the last save wins over one built now, unless
        // the tree or a name changed since: then it may name another member.
        VTX_USHORT_T t = 0;
        if (o->bNonUniqueName && !(o->ucStateFlag & OTL_STATE_SHAPE) &&
            otlGetAliasIndexFromName(o, kUniqueNameTable, &t) == 0)
            if (const char *stored = aliasAt(o, item, t))
                return handOut(f, stored, ppszUniqueName, "adShrOtlGetMemberUniqueName");
        std::string key;
        bool none = false;
        if (VTX_STS_T sts = buildUniqueName(f, item, &key, &none)) return sts;
        if (none) return 0;
        return handOut(f, key, ppszUniqueName, "adShrOtlGetMemberUniqueName");
    });
}

VTX_STS_T adShrOtlConstructMemberIDKey(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_STR_T szFullName) {
    if (szFullName) szFullName[0] = 0;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (!hMember || !szFullName) return f.fail(VTX_STS_NULL_ARG, "adShrOtlConstructMemberIDKey", VTX_MSGARG_STR);
    VTX_POTLMBR_T item = M(hMember);
    if (isRoot(f.outline(), item)) return 0;
    return otl::otlGuard(f.ctx(), "adShrOtlConstructMemberIDKey", [&]() -> VTX_STS_T {
        VTX_POTLMBR_T dim = otlGetDim(item);
        char id[16];
        std::snprintf(id, sizeof id, "%d", (int)item->mbrId);
        std::string key = bracket(nameOf(dim)) + ".[" + id + "]." + bracket(nameOf(item));
        return putKey(f, key, dim, szFullName);
    });
}

VTX_STS_T adShrOtlConstructMemberKey(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim,
                                     const vtx_genlevelnames_t *pGenLevelName, VTX_HMEMBER_T hMember,
                                     VTX_STR_T szFullName) {
    if (szFullName) szFullName[0] = 0;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter({hDim, hMember})) return sts;
    if (!hDim || !hMember || !szFullName)
        return f.fail(VTX_STS_NULL_ARG, "adShrOtlConstructMemberKey", VTX_MSGARG_STR);
    VTX_POTL_T o = f.outline();
    // The marks the key is chosen by are fresh only while a verify or a
    // save runs.
    if (!(o->ucStateFlag & (OTL_STATE_VERIFYING | OTL_STATE_WRITING))) return f.fail(VTX_STS_KEY_OUTSIDE_VERIFY);
    VTX_POTLMBR_T item = M(hMember);
    VTX_POTLMBR_T dim = M(hDim);
    if (isRoot(o, item) || otlGetDim(item) != dim) return f.fail(VTX_STS_NOT_A_DIMENSION);
    return otl::otlGuard(f.ctx(), "adShrOtlConstructMemberKey", [&]() -> VTX_STS_T {
        const std::string N = bracket(nameOf(item));
        // A dimension's name is unique by rule: the caller learns that from
        // the status rather than from a key.
        if (item == dim) {
            if (VTX_STS_T sts = putKey(f, esc(nameOf(item)), dim, szFullName)) return sts;
            return VTX_STS_DIM_NOT_UNIQUE;
        }
        const VTX_UCHAR_T flags = item->ucNameUnique;
        if (!(flags & OTL_NU_DUP)) return f.fail(VTX_STS_KEY_NOT_DUPLICATE, nameOf(item), VTX_MSGARG_STR);
        const std::string D = bracket(nameOf(dim));
        const unsigned gen = item->MbrInfo.usGen;
        VTX_POTLMBR_T parent = item->pParent;
        if (gen == 2) return putKey(f, D + "." + N, dim, szFullName);
        if (!(flags & OTL_NU_IN_DIM)) return putKey(f, D + "@" + N, dim, szFullName);
        if (parent->ucNameUnique == 0) return putKey(f, bracket(nameOf(parent)) + "." + N, dim, szFullName);
        if (gen == 3) return putKey(f, D + "." + bracket(nameOf(parent)) + "." + N, dim, szFullName);
        std::string named = genLevelAnchor(item, dim, pGenLevelName);
        if (!named.empty()) return putKey(f, named + N, dim, szFullName);
        // Climb to the first ancestor that can anchor the key: the
        // dimension, one whose name does not repeat in the dimension, or
        // one with a usable generation or level name.
        std::vector<VTX_POTLMBR_T> below{item};
        VTX_POTLMBR_T a = parent;
        std::string anchorNamed;
        for (;;) {
            if (a == dim || !(a->ucNameUnique & OTL_NU_IN_DIM)) break;
            anchorNamed = genLevelAnchor(a, dim, pGenLevelName);
            if (!anchorNamed.empty()) break;
            if (below.size() == VTX_MAX_KEY_NAMES) return tooManyNames(f, dim);
            below.push_back(a);
            a = a->pParent;
        }
        std::string key;
        if (a == dim || a->ucNameUnique == 0) key = bracket(nameOf(a));
        else if (a->MbrInfo.usGen == 2) key = D + "." + bracket(nameOf(a));
        else if (!(a->ucNameUnique & OTL_NU_IN_DIM)) key = D + "@" + bracket(nameOf(a));
        else key = anchorNamed + bracket(nameOf(a));
        for (size_t i = below.size(); i-- > 0;) {
            key += '.';
            key += bracket(nameOf(below[i]));
            if (key.size() >= VTX_MBRKEY_LEN) break;  // refused by putKey below
        }
        return putKey(f, key, dim, szFullName);
    });
}

// ---- query handles --------------------------------------------------------------

VTX_STS_T adShrOtlNewQueryOutline(vtx_netctx_t *pNetCtx, VTX_BOOL_T fNonUniqueName, VTX_HOUTLINE_T *phOutline) {
    if (phOutline) *phOutline = nullptr;
    if (!pNetCtx || !phOutline)
        return otlReport(pNetCtx, VTX_STS_NULL_ARG, "adShrOtlNewQueryOutline", VTX_MSGARG_STR, nullptr, 0);
    return otl::otlGuard(pNetCtx, "adShrOtlNewQueryOutline", [&]() -> VTX_STS_T {
        VTX_POTL_T p = nullptr;
        // A query handle keeps no tree and no name index: it is created
        // as the paged form is, without the hash.
        VTX_STS_T sts = otlCreateOutlineData(pNetCtx, &p, 1, fNonUniqueName ? VTX_NAMES_DUP : VTX_NAMES_UNIQUE);
        QueryStore *store = nullptr;
        if (!sts) sts = otlAlloc(pNetCtx, sizeof *store, &store);
        if (sts) {
            (void)otlFreeOutlineData(pNetCtx, p);  // the creation failure is the status to return
            return otlReport(pNetCtx, sts, "adShrOtlNewQueryOutline", VTX_MSGARG_STR, nullptr, 0);
        }
        p->fOpenQuery = 1;
        p->TempMbrArray = store;
        *phOutline = p;
        return 0;
    });
}

VTX_STS_T adShrOtlAddQueryMember(VTX_HOUTLINE_T hOutline, const vtx_querymbr_t *pQueryMbr, VTX_HMEMBER_T *phMember) {
    if (phMember) *phMember = nullptr;
    otl::CallFrame f(hOutline, otl::kEdit | otl::kQueryOk | otl::kNoProhibit);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_POTL_T o = f.outline();
    if (!o->fOpenQuery || !storeOf(o)) return f.fail(VTX_STS_WRONG_MODE);
    if (!pQueryMbr || !phMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlAddQueryMember", VTX_MSGARG_STR);
    vTX_PNETCTX_T ctx = f.ctx();
    return otl::otlGuard(ctx, "adShrOtlAddQueryMember", [&]() -> VTX_STS_T {
        QueryStore *s = storeOf(o);
        // A client before 5.0 sends the short member record: it is read
        // through a full-form copy, so that nothing reads past its end.
        vtx_querymbr_t q = *pQueryMbr;
        vtx_mbrinfo_t *wide = nullptr;
        VTX_STS_T sts = 0;
        if (q.pInfo && ctx && ctx->lClientVersion < 0x50000) {
            sts = otlAlloc(ctx, sizeof *wide, &wide);
            if (sts) return f.fail(sts, "adShrOtlAddQueryMember", VTX_MSGARG_STR);
            otlMbrInfoFromOld(reinterpret_cast<const vtx_mbrinfo_old_t *>(q.pInfo), wide);
            q.pInfo = wide;
        }
        VTX_POTLMBR_T rec = nullptr;
        sts = otlNewItem(ctx, o, &rec, 1);
        if (!sts) sts = fillQueryRecord(ctx, o, &q, OTL_LARGE(rec));
        (void)otlFreeMem(ctx, wide);  // the copy served its purpose
        // The array grows last, so that a failure leaves the handle as it was.
        if (!sts && s->count == s->cap) {
            const VTX_ULONG_T cap = s->cap ? s->cap * 2 : 16;
            VTX_POTLMBR_T *grown = nullptr;
            sts = otlAlloc(ctx, sizeof(VTX_POTLMBR_T) * cap, &grown);
            if (!sts) {
                if (s->count) std::memcpy(grown, s->items, sizeof(VTX_POTLMBR_T) * s->count);
                (void)otlFreeMem(ctx, s->items);  // the old block is copied already
                s->items = grown;
                s->cap = cap;
            }
        }
        if (sts) {
            if (rec) freeQueryRecord(ctx, o, rec);
            return f.fail(sts, "adShrOtlAddQueryMember", VTX_MSGARG_STR);
        }
        s->items[s->count++] = rec;
        *phMember = rec;
        return 0;
    });
}

VTX_STS_T adShrOtlGetQueryMemberCount(VTX_HOUTLINE_T hOutline, VTX_ULONG_T *pulCount) {
    if (pulCount) *pulCount = 0;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_POTL_T o = f.outline();
    if (!o->fOpenQuery || !storeOf(o)) return f.fail(VTX_STS_WRONG_MODE);
    if (!pulCount) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetQueryMemberCount", VTX_MSGARG_STR);
    *pulCount = storeOf(o)->count;
    return 0;
}

VTX_STS_T adShrOtlGetQueryMember(VTX_HOUTLINE_T hOutline, VTX_ULONG_T ulIndex, VTX_HMEMBER_T *phMember) {
    if (phMember) *phMember = nullptr;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter()) return sts;
    VTX_POTL_T o = f.outline();
    if (!o->fOpenQuery || !storeOf(o)) return f.fail(VTX_STS_WRONG_MODE);
    if (!phMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetQueryMember", VTX_MSGARG_STR);
    QueryStore *s = storeOf(o);
    if (ulIndex >= s->count) return f.fail(VTX_STS_NOT_FOUND, "", VTX_MSGARG_STR);
    *phMember = s->items[ulIndex];
    return 0;
}

VTX_STS_T adShrOtlGetMemberField(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_ULONG_T ulFieldID,
                                 void **ppData) {
    if (ppData) *ppData = nullptr;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    VTX_POTL_T o = f.outline();
    // The fields are those of a query-form record; an edit handle has
    // adShrOtlGetMemberInfo.
    if (!o->fOpenQuery) return f.fail(VTX_STS_WRONG_MODE);
    if (!ppData) {
        static const VTX_ULONG_T argNo = 4;
        return f.fail(VTX_STS_NULL_ARG, &argNo, VTX_MSGARG_PU32, "adShrOtlGetMemberField", VTX_MSGARG_STR);
    }
    if (!hMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetMemberField", VTX_MSGARG_STR);
    VTX_POTLMBR_T item = M(hMember);
    vTX_PNETCTX_T ctx = f.ctx();
    return otl::otlGuard(ctx, "adShrOtlGetMemberField", [&]() -> VTX_STS_T {
        const VTX_POTLMBRLARGE_T l = OTL_IS_SMALL(item) ? nullptr : OTL_LARGE(item);
        if (!l) return f.fail(VTX_STS_BAD_FIELD_ID);
        if ((item->ucFlags & OTL_FLAG_QUERYMASK) && !otlIsMbrValid((VTX_LONG_T)ulFieldID, l->ulBitmask))
            return f.fail(VTX_STS_BAD_FIELD_ID);
        const auto &mi = l->MbrInfo;
        const char *linkName = nullptr;
        VTX_STS_T sts = 0;
        switch (ulFieldID) {
        case VTX_FLD_MEMBER: sts = answerText(ctx, mi.szMember, ppData); break;
        case VTX_FLD_LEVEL: sts = answer<VTX_USHORT_T>(ctx, mi.usLevel, ppData); break;
        case VTX_FLD_GEN: sts = answer<VTX_USHORT_T>(ctx, mi.usGen, ppData); break;
        case VTX_FLD_CONSOLIDATION:
            sts = answer<VTX_USHORT_T>(ctx, (VTX_USHORT_T)(mi.ucInfoFlags & OTL_INFO_CONSOL), ppData);
            break;
        case VTX_FLD_TWOPASS: sts = answer<VTX_BOOL_T>(ctx, mi.fTwoPass, ppData); break;
        case VTX_FLD_EXPENSE: sts = answer<VTX_BOOL_T>(ctx, mi.fExpense, ppData); break;
        case VTX_FLD_CONVERSION: sts = answer<VTX_USHORT_T>(ctx, mi.usConversion, ppData); break;
        case VTX_FLD_CURMEMBER: sts = answerText(ctx, mi.szCurMember, ppData); break;
        case VTX_FLD_TIMEBALANCE: sts = answer<VTX_USHORT_T>(ctx, mi.usTimeBalance, ppData); break;
        case VTX_FLD_SKIP: sts = answer<VTX_USHORT_T>(ctx, mi.usSkip, ppData); break;
        case VTX_FLD_SHARE: sts = answer<VTX_USHORT_T>(ctx, mi.usShare, ppData); break;
        case VTX_FLD_STORAGE: sts = answer<VTX_USHORT_T>(ctx, mi.usStorage, ppData); break;
        case VTX_FLD_CATEGORY: sts = answer<VTX_USHORT_T>(ctx, mi.usCategory, ppData); break;
        case VTX_FLD_STORAGECATEGORY: sts = answer<VTX_USHORT_T>(ctx, mi.usStorageCategory, ppData); break;
        case VTX_FLD_COMMENT: sts = answerText(ctx, mi.szComment, ppData); break;
        case VTX_FLD_CHILDCOUNT: sts = answer<VTX_ULONG_T>(ctx, mi.ulChildCount, ppData); break;
        case VTX_FLD_MEMNO: sts = answer<VTX_ULONG_T>(ctx, l->ulMemno, ppData); break;
        case VTX_FLD_DIMNAME: sts = answerText(ctx, mi.szDimName, ppData); break;
        case VTX_FLD_DIMNO: sts = answer<VTX_ULONG_T>(ctx, l->ulDimno, ppData); break;
        case VTX_FLD_DEFAULTALIAS:
        case VTX_FLD_DEFAULTALIAS2:
            sts = answerText(ctx, aliasAt(o, item, o->bNonUniqueName ? 2u : 0u), ppData);
            break;
        case VTX_FLD_SIBLING: linkName = reinterpret_cast<const char *>(l->pSibling); goto link;
        case VTX_FLD_PREVSIBLING: linkName = reinterpret_cast<const char *>(l->pPrevSibling); goto link;
        case VTX_FLD_PARENT: linkName = reinterpret_cast<const char *>(l->pParent); goto link;
        case VTX_FLD_CHILD:
            linkName = reinterpret_cast<const char *>(l->pChild);
        link:
            sts = answerText(ctx, linkName, ppData);
            break;
        case VTX_FLD_UDA: sts = answerText(ctx, l->pUserAttrList ? l->pUserAttrList->pszUserAttr : nullptr, ppData); break;
        case VTX_FLD_FORMULA: sts = answerText(ctx, l->pszCalc, ppData); break;
        case VTX_FLD_LASTFORMULA: sts = answerText(ctx, l->pszLastCalc, ppData); break;
        case VTX_FLD_COMMENTEX: sts = answerText(ctx, l->pszCommentEx, ppData); break;
        case VTX_FLD_ONE: sts = answer<VTX_ULONG_T>(ctx, 1, ppData); break;
        case VTX_FLD_CURRCONVDB: sts = answer<VTX_BOOL_T>(ctx, l->fCurrConvDB, ppData); break;
        case VTX_FLD_STATUS: sts = answer<VTX_ULONG_T>(ctx, l->ulStatus, ppData); break;
        case VTX_FLD_ATTRIBUTED:
            sts = answer<VTX_BOOL_T>(ctx, (mi.ucInfoFlags & OTL_INFO_ATTRIBUTED) ? 1 : 0, ppData);
            break;
        case VTX_FLD_ATTRIBUTE: {
            VTX_ATTRIBUTEVALUE_T v{};
            char *text = nullptr;
            if (mi.ucInfoFlags & OTL_INFO_ATTRIBUTED) {
                v = mi.Attribute;
                if (v.usDataType == VTX_ATTR_STRING) {
                    v.value.raw = 0;
                    if (const char *t = mi.Attribute.value.pszValue) {
                        const size_t n = strnlen(t, VTX_FLD_ATTRTEXT_MAX);
                        sts = otlAlloc(ctx, n + 1, &text);
                        if (sts) break;
                        std::memcpy(text, t, n);
                        text[n] = 0;
                        v.value.pszValue = text;
                    }
                }
            }
            sts = answer<VTX_ATTRIBUTEVALUE_T>(ctx, v, ppData);
            if (sts) (void)otlFreeMem(ctx, text);  // never handed out
            break;
        }
        case VTX_FLD_FORMATSTRING: sts = answerText(ctx, l->pszFormatString, ppData); break;
        case VTX_FLD_ALIAS0: sts = answerText(ctx, aliasAt(o, item, 0), ppData); break;
        default: return f.fail(VTX_STS_BAD_FIELD_ID);
        }
        if (sts) return f.fail(sts, "adShrOtlGetMemberField", VTX_MSGARG_STR);
        return 0;
    });
}

} // extern "C"
