// Name lookups of an outline and the duplicate-name tests the edits make.
//
// Every answer here is the true one, found by walking the tree: a member is
// known by its name (table 0) and by its alias in each alias table (table n
// is AliasArray[n-1]); hidden members have no names.  The member index keeps
// the same answers in a hash, and takes these functions over; the calls that
// keep an index in step (add, delete) have nothing to store while the tree
// itself is the index.
#include "otl.h"

#include <cstring>

// Every definition here is weak: the member index defines the same calls
// over its hash and so replaces these walks.
#define OTL_WALK __attribute__((weak))

extern "C" {
OTL_WALK VTX_BOOL_T bBloomFilterActive = 0;
}

namespace {

inline VTX_POTLMBRLARGE_T L(VTX_POTLMBR_T p) { return OTL_LARGE(p); }
inline bool isLarge(VTX_POTLMBR_T p) { return p && !OTL_IS_SMALL(p); }
inline bool isAttrMember(VTX_POTLMBR_T p) { return isLarge(p) && L(p)->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE; }

bool same(VTX_POTL_T o, const char *a, const char *b) { return a && b && otlCompareNames(o, a, b) == 0; }

// The text of a member under a table: 0 its name, n its alias in table n.
const char *keyOf(VTX_POTL_T o, VTX_POTLMBR_T p, VTX_USHORT_T t) {
    if (t == 0) return p->MbrInfo.szMember;
    if (!p->AliasArray || t > o->usNumAliasTables) return nullptr;
    return p->AliasArray[t - 1].pszDefName;
}

// Visits the visible members of the outline (or of one dimension) in
// pre-order until f answers true.
template <class F>
VTX_POTLMBR_T findMember(VTX_POTL_T o, VTX_POTLMBR_T pDim, F &&f) {
    VTX_POTLMBR_T top = pDim ? pDim : o->pHeadItem;
    if (!top) return nullptr;
    for (VTX_POTLMBR_T p = pDim ? pDim : otlNavtrdn(top, top); p; p = otlNavtrdn(p, top)) {
        if (OTL_IS_HIDDEN(p) || p->MbrInfo.usGen == 0) continue;
        if (f(p)) return p;
    }
    return nullptr;
}

bool acceptShare(VTX_POTLMBR_T m, VTX_USHORT_T usOption) {
    const VTX_USHORT_T s = otlGetShare(m);
    if (!OTL_IS_SHARE(s)) return (usOption & OTL_OPT_UNSHARED) != 0;
    if (s == VTX_SHARE_SHARED) return (usOption & OTL_OPT_SHARED3) != 0;
    return (usOption & OTL_OPT_SHARED9) != 0;
}

struct Query {
    const char *text;
    const char *parent;
    bool fMember;
    bool fAlias;
    VTX_USHORT_T usOption;
    VTX_USHORT_T table;
    VTX_POTLMBR_T requiredDim;
};

// Whether member m answers the query through its key of table t: the rules
// by which an index entry is accepted.
bool accepts(VTX_POTL_T o, const Query &q, VTX_POTLMBR_T m, VTX_USHORT_T t) {
    const char *key = keyOf(o, m, t);
    if (!key || !same(o, key, q.text)) return false;
    const bool anyAlias = q.fAlias && q.table == 0;
    const bool asName = q.fMember && t == 0;
    bool ok;
    if (q.parent) {
        if (!asName) {
            if (!q.fAlias) return false;
            if (!(anyAlias ? t != 0 : t == q.table)) return false;
        }
        VTX_POTLMBR_T par = m->pParent;
        ok = par && par->MbrInfo.usGen != 0 && same(o, par->MbrInfo.szMember, q.parent);
    } else if (isAttrMember(m)) {
        if (!asName) {
            if (anyAlias) ok = t != 0;
            else if (!q.fAlias) ok = false;
            else ok = t != 0 && t == q.table;
        } else {
            ok = true;
        }
    } else if (!asName) {
        if (anyAlias && t != 0) ok = true;
        else if (!q.fAlias && !anyAlias) ok = false;
        else ok = t == q.table;
    } else {
        ok = acceptShare(m, q.usOption);
    }
    if (ok && q.requiredDim) ok = otlGetDim(m) == q.requiredDim;
    return ok;
}

bool acceptsAnyKey(VTX_POTL_T o, const Query &q, VTX_POTLMBR_T m) {
    if (accepts(o, q, m, 0)) return true;
    for (VTX_USHORT_T t = 1; t <= o->usNumAliasTables; ++t)
        if (accepts(o, q, m, t)) return true;
    return false;
}

// ---- member paths: [a].[b].[c] and [dim]@[name] ---------------------------------------

constexpr unsigned kMaxSegments = VTX_MAX_PATH_DEPTH;

struct Path {
    char seg[kMaxSegments][VTX_MBRNAME_LEN];
    unsigned n;
    unsigned at;
};

// Cuts a text into its bracketed segments.  A text that is no path is one
// segment, with doubled closing brackets read as one.
VTX_STS_T parsePath(const char *s, Path &p) {
    p.n = p.at = 0;
    size_t len = std::strlen(s);
    size_t run = 0;
    while (run < len && s[len - 1 - run] == ']') ++run;
    if (s[0] != '[' || (run && run % 2 == 0)) {
        size_t o = 0;
        for (size_t i = 0; i < len && o + 1 < VTX_MBRNAME_LEN; ++i) {
            p.seg[0][o++] = s[i];
            if (s[i] == ']' && s[i + 1] == ']') ++i;
        }
        p.seg[0][o] = 0;
        p.n = 1;
        return 0;
    }
    size_t i = 0;
    while (i < len && p.n < kMaxSegments) {
        if (s[i] != '[') return VTX_STS_PATH_NO_OPEN;
        ++i;
        size_t o = 0;
        for (;;) {
            if (i >= len) return VTX_STS_PATH_UNCLOSED;
            if (s[i] == ']') {
                if (s[i + 1] == ']') {
                    if (o + 1 < VTX_MBRNAME_LEN) p.seg[p.n][o++] = ']';
                    i += 2;
                    continue;
                }
                break;
            }
            if (o + 1 < VTX_MBRNAME_LEN) p.seg[p.n][o++] = s[i];
            ++i;
        }
        p.seg[p.n][o] = 0;
        ++p.n;
        ++i;   // past "]"
        if (i >= len) break;
        if (s[i] == '.') {
            ++i;
        } else if (s[i] == '@') {
            ++p.at;
            ++i;
        } else {
            return VTX_STS_PATH_TRAILING;
        }
    }
    return 0;
}

// The unshared members named text (in a dimension when given): the first,
// and how many there are.
VTX_POTLMBR_T ownersOf(VTX_POTL_T o, const char *text, VTX_POTLMBR_T pDim, unsigned *pCount) {
    VTX_POTLMBR_T first = nullptr;
    unsigned n = 0;
    findMember(o, pDim, [&](VTX_POTLMBR_T m) {
        if (!otlMbrIsSharedShare(m) && same(o, m->MbrInfo.szMember, text)) {
            if (!first) first = m;
            ++n;
        }
        return false;
    });
    if (pCount) *pCount = n;
    return first;
}

VTX_POTLMBR_T childNamed(VTX_POTL_T o, VTX_POTLMBR_T parent, const char *text, VTX_USHORT_T table) {
    for (VTX_POTLMBR_T c = parent->pChild; c; c = c->pSibling)
        if (!OTL_IS_HIDDEN(c) && same(o, keyOf(o, c, table), text)) return c;
    return nullptr;
}

// A lookup by path, or by a plain name that must name one member.
VTX_STS_T findByCombinedName(VTX_POTL_T o, const char *text, bool fMember, bool fAlias, bool fReturnFirst,
                             VTX_USHORT_T table, VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem) {
    *ppItem = nullptr;
    if (!text || !*text) return 0;
    vTX_PNETCTX_T ctx = o->pNetCtx;
    // 127 segments of a full name each: too large for the stack.
    Path *pPath = nullptr;
    if (VTX_STS_T sts = otlAlloc(ctx, sizeof(Path), &pPath)) return sts;
    struct Release {
        vTX_PNETCTX_T ctx;
        Path *p;
        ~Release() { (void)otlFreeMem(ctx, p); }  // scratch block of the lookup
    } release{ctx, pPath};
    Path &path = *pPath;
    if (VTX_STS_T sts = parsePath(text, path)) return sts;
    if (fMember && path.n < 2) {
        const char *name = path.seg[0];
        VTX_ULONG_T dup = 0;
        if (!pRequiredDim && otlIsNameDuplicated(ctx, o, name, 0, &dup)) return VTX_STS_NOT_FOUND;
        unsigned n = 0;
        VTX_POTLMBR_T first = ownersOf(o, name, pRequiredDim, &n);
        if (n > 1 && !fReturnFirst) return VTX_STS_NOT_FOUND;
        *ppItem = first;
        return 0;
    }
    if (fMember) {
        VTX_POTLMBR_T result = nullptr;
        unsigned matches = 0;
        VTX_STS_T sts = 0;
        findMember(o, nullptr, [&](VTX_POTLMBR_T m) {
            if (otlMbrIsSharedShare(m) || !same(o, m->MbrInfo.szMember, path.seg[0])) return false;
            if (path.at) {
                if (path.n != 2 || m->MbrInfo.usGen != 1) return false;
                VTX_POTLMBR_T a = nullptr;
                if (!otlIsNameExistInDimension(ctx, o, m, path.seg[1], 0, &a) || !a) return false;
                VTX_POTLMBR_T b = a;
                if (otlIsNameExistInDimension(ctx, o, m, path.seg[1], 0, &b) && b) {
                    sts = VTX_STS_NOT_FOUND;
                    return true;
                }
                result = a;
                ++matches;
                return false;
            }
            VTX_POTLMBR_T cur = m;
            for (unsigned i = 1; i < path.n && cur; ++i) cur = childNamed(o, cur, path.seg[i], 0);
            if (cur) {
                result = cur;
                ++matches;
            }
            return false;
        });
        if (sts) return sts;
        if (matches > 1) return VTX_STS_NOT_FOUND;
        if (result && pRequiredDim && otlGetDim(result) != pRequiredDim) result = nullptr;
        *ppItem = result;
        return 0;
    }
    if (fAlias && table) {
        if (path.n == 1) {
            VTX_ULONG_T dup = 0;
            if (otlIsNameDuplicated(ctx, o, path.seg[0], table, &dup)) return VTX_STS_NOT_FOUND;
            *ppItem = findMember(o, pRequiredDim, [&](VTX_POTLMBR_T m) { return same(o, keyOf(o, m, table), path.seg[0]); });
            return 0;
        }
        VTX_POTLMBR_T result = nullptr;
        unsigned matches = 0;
        findMember(o, nullptr, [&](VTX_POTLMBR_T m) {
            if (!same(o, keyOf(o, m, table), path.seg[0])) return false;
            VTX_POTLMBR_T cur = m;
            for (unsigned i = 1; i < path.n && cur; ++i) cur = childNamed(o, cur, path.seg[i], table);
            if (cur) {
                result = cur;
                ++matches;
            }
            return false;
        });
        if (matches > 1) return VTX_STS_NOT_FOUND;
        *ppItem = result;
        return 0;
    }
    return 0;
}

} // namespace

extern "C" {

// ---- finding members ------------------------------------------------------------------

OTL_WALK VTX_STS_T otlHashFindItemByNameEx(vTX_PNETCTX_T pNetCtx, VTX_POTL_T o, VTX_CSTR_T pszString, VTX_CSTR_T pszParent,
                                  VTX_BOOL_T fMember, VTX_BOOL_T fAlias, VTX_BOOL_T fReturnFirstInCaseOfDuplicates,
                                  VTX_USHORT_T usOption, VTX_USHORT_T usAliasTable, VTX_POTLMBR_T pRequiredDim,
                                  VTX_POTLMBR_T *ppItem, HASH_NUM_T *hashNum_, HASH_POS_T *hashPos_) {
    if (ppItem) *ppItem = nullptr;
    if (hashNum_) *hashNum_ = OTL_HASH_NONE;
    if (hashPos_) *hashPos_ = OTL_HASH_NONE;
    if (!o || !ppItem) return VTX_STS_NULL_ARG;
    if (!pszString) return 0;
    vTX_PNETCTX_T ctx = pNetCtx ? pNetCtx : o->pNetCtx;
    const bool direct = !o->bNonUniqueName || (fAlias && usAliasTable == 2);
    VTX_STS_T sts = 0;
    if (direct) {
        Query q{pszString, pszParent, fMember != 0, fAlias != 0, usOption, usAliasTable, pRequiredDim};
        *ppItem = findMember(o, nullptr, [&](VTX_POTLMBR_T m) { return acceptsAnyKey(o, q, m); });
        // An unknown name in brackets can only be a path.
        if (!*ppItem && !o->bNonUniqueName && pszString[0] == '[')
            sts = findByCombinedName(o, pszString, fMember, fAlias, fReturnFirstInCaseOfDuplicates, usAliasTable,
                                     pRequiredDim, ppItem);
    } else if (pszParent) {
        // A child under a parent: the path [parent].[child].
        VTX_POTLMBR_T result = nullptr;
        unsigned matches = 0;
        findMember(o, pRequiredDim, [&](VTX_POTLMBR_T m) {
            const bool nameOk = fMember && same(o, m->MbrInfo.szMember, pszString) && acceptShare(m, usOption);
            const bool aliasOk = fAlias && usAliasTable && same(o, keyOf(o, m, usAliasTable), pszString);
            if ((nameOk || aliasOk) && m->pParent && m->pParent->MbrInfo.usGen &&
                same(o, m->pParent->MbrInfo.szMember, pszParent)) {
                result = m;
                ++matches;
            }
            return false;
        });
        if (matches > 1 && !fReturnFirstInCaseOfDuplicates) sts = VTX_STS_NOT_FOUND;
        else *ppItem = result;
    } else {
        sts = findByCombinedName(o, pszString, fMember, fAlias, fReturnFirstInCaseOfDuplicates, usAliasTable,
                                 pRequiredDim, ppItem);
    }
    if (sts) {
        *ppItem = nullptr;
        if (sts == VTX_STS_NOT_FOUND) return otlReport(ctx, sts, pszString, VTX_MSGARG_STR, nullptr, 0);
        return otlReport(ctx, VTX_STS_LOOKUP_FAILED, "otlHashFindItemByNameEx", VTX_MSGARG_STR, nullptr, 0);
    }
    return 0;
}

OTL_WALK VTX_STS_T otlHashFindItemByName(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                VTX_CSTR_T pszParent, VTX_BOOL_T fMember, VTX_BOOL_T fAlias,
                                VTX_BOOL_T fReturnFirstInCaseOfDuplicates, VTX_USHORT_T usAliasTable,
                                VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem, HASH_NUM_T *hashNum_,
                                HASH_POS_T *hashPos_) {
    return otlHashFindItemByNameEx(pNetCtx, pOutline, pszString, pszParent, fMember, fAlias,
                                   fReturnFirstInCaseOfDuplicates, OTL_OPT_UNSHARED, usAliasTable, pRequiredDim, ppItem,
                                   hashNum_, hashPos_);
}

OTL_WALK VTX_STS_T otlHashFindOriginalItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T o, VTX_POTLMBR_T pDim, VTX_POTLMBR_T pSharedMbr,
                                  VTX_POTLMBR_T *ppOriginalMbr) {
    if (ppOriginalMbr) *ppOriginalMbr = nullptr;
    if (!o || !pSharedMbr || !ppOriginalMbr) return VTX_STS_NULL_ARG;
    const char *name = pSharedMbr->MbrInfo.szMember;
    if ((o->ucStateFlag & OTL_STATE_READING) && otlGetShare(pSharedMbr) == VTX_SHARE_SHARED2) {
        name = pSharedMbr->OriginalMbr.szOriginalMbr;
    } else if (pSharedMbr->OriginalMbr.hOriginalMbr) {
        *ppOriginalMbr = pSharedMbr->OriginalMbr.hOriginalMbr;
        return 0;
    }
    VTX_STS_T sts = otlHashFindItemByNameEx(pNetCtx, o, name, nullptr, 1, 0, 1, OTL_OPT_UNSHARED, 0, pDim,
                                            ppOriginalMbr, nullptr, nullptr);
    if (!sts && !*ppOriginalMbr && o->ucCallerType == 2)
        sts = otlHashFindItemByNameEx(pNetCtx, o, name, nullptr, 0, 1, 1, OTL_OPT_UNSHARED, 2, pDim, ppOriginalMbr,
                                      nullptr, nullptr);
    return sts;
}

OTL_WALK VTX_STS_T otlGetNextSharedMember(VTX_POTL_T o, VTX_POTLMBR_T pItem, VTX_POTLMBR_T pAfter, VTX_POTLMBR_T *ppShared) {
    if (ppShared) *ppShared = nullptr;
    if (!o || !pItem || !ppShared) return VTX_STS_NULL_ARG;
    VTX_POTLMBR_T dim = otlGetDim(pItem);
    if (!dim || !pItem->MbrInfo.szMember || otlMbrIsSharedShare(pItem)) return 0;
    VTX_POTLMBR_T start = pAfter ? otlNavtrdn(pAfter, dim) : otlNavtrdn(dim, dim);
    for (VTX_POTLMBR_T p = start; p; p = otlNavtrdn(p, dim)) {
        if (OTL_IS_HIDDEN(p) || !otlMbrIsSharedShare(p) || !same(o, p->MbrInfo.szMember, pItem->MbrInfo.szMember))
            continue;
        VTX_POTLMBR_T orig = p->OriginalMbr.hOriginalMbr;
        if (!orig) {
            if (!o->bNonUniqueName) orig = pItem;   // one stored member per name
            else (void)otlHashFindOriginalItem(o->pNetCtx, o, dim, p, &orig);  // none: not ours
        }
        if (orig == pItem) {
            *ppShared = p;
            return 0;
        }
    }
    return 0;
}

// ---- names among siblings and in a dimension ----------------------------------------------

OTL_WALK VTX_BOOL_T otlHashIsNameDupAmongSiblings(vTX_PNETCTX_T, VTX_POTL_T o, VTX_POTLMBR_T pParent, VTX_CSTR_T pszString,
                                         VTX_USHORT_T usAliasTable, VTX_POTLMBR_T *ppMbr, HASH_NUM_T *hashNum,
                                         HASH_POS_T *hashPos) {
    if (ppMbr) *ppMbr = nullptr;
    if (hashNum) *hashNum = OTL_HASH_NONE;
    if (hashPos) *hashPos = OTL_HASH_NONE;
    if (!o || !pParent || !pszString) return 0;
    VTX_POTLMBR_T c = childNamed(o, pParent, pszString, usAliasTable);
    if (ppMbr) *ppMbr = c;
    return c != nullptr;
}

OTL_WALK VTX_BOOL_T otlHashIsNameDupAmongSiblingsGetOriginal(vTX_PNETCTX_T, VTX_POTL_T o, VTX_POTLMBR_T pParent,
                                                    VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable,
                                                    VTX_POTLMBR_T *ppMbr, VTX_POTLMBR_T *ppOriginal) {
    if (ppMbr) *ppMbr = nullptr;
    if (ppOriginal) *ppOriginal = nullptr;
    if (!o || !pszString) return 0;
    VTX_POTLMBR_T sib = pParent ? childNamed(o, pParent, pszString, usAliasTable) : nullptr;
    VTX_POTLMBR_T orig = nullptr;
    if (sib && !otlMbrIsSharedShare(sib)) {
        orig = sib;
    } else {
        orig = findMember(o, nullptr, [&](VTX_POTLMBR_T m) {
            return !otlMbrIsSharedShare(m) && same(o, keyOf(o, m, usAliasTable), pszString);
        });
    }
    if (ppMbr) *ppMbr = sib;
    if (ppOriginal) *ppOriginal = orig;
    return sib != nullptr;
}

OTL_WALK VTX_BOOL_T otlIsNameDuplicated(vTX_PNETCTX_T, VTX_POTL_T o, VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable,
                               VTX_ULONG_T *pulCount) {
    if (pulCount) *pulCount = 0;
    // Only an outline of duplicate names counts repeated names.
    if (!o || !pszString || !o->bNonUniqueName) return 0;
    VTX_ULONG_T n = 0;
    findMember(o, nullptr, [&](VTX_POTLMBR_T m) {
        if (!otlMbrIsSharedShare(m) && same(o, keyOf(o, m, usAliasTable), pszString)) ++n;
        return false;
    });
    if (n < 2) return 0;
    if (pulCount) *pulCount = n - 1;
    return 1;
}

OTL_WALK VTX_BOOL_T otlHashIsStringExist(vTX_PNETCTX_T, VTX_POTL_T o, VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable,
                                HASH_NUM_T *hashNum, HASH_POS_T *hashPos) {
    if (hashNum) *hashNum = OTL_HASH_NONE;
    if (hashPos) *hashPos = OTL_HASH_NONE;
    if (!o || !pszString) return 0;
    return findMember(o, nullptr, [&](VTX_POTLMBR_T m) {
               if (isAttrMember(m) && same(o, m->MbrInfo.szMember, pszString)) return true;
               if (usAliasTable == 0) {
                   if (isAttrMember(m)) {
                       for (VTX_USHORT_T t = 1; t <= o->usNumAliasTables; ++t)
                           if (same(o, keyOf(o, m, t), pszString)) return true;
                       return false;
                   }
                   return otlGetShare(m) != VTX_SHARE_SHARED && same(o, m->MbrInfo.szMember, pszString);
               }
               return same(o, keyOf(o, m, usAliasTable), pszString);
           }) != nullptr;
}

OTL_WALK VTX_BOOL_T otlIsNameExistInDimension(vTX_PNETCTX_T, VTX_POTL_T o, VTX_POTLMBR_T pDim, VTX_CSTR_T pszString,
                                     VTX_USHORT_T usAliasTable, VTX_POTLMBR_T *pMember) {
    VTX_POTLMBR_T skip = pMember ? *pMember : nullptr;
    if (pMember) *pMember = nullptr;
    if (!o || !pszString) return 0;
    VTX_POTLMBR_T found = findMember(o, pDim, [&](VTX_POTLMBR_T m) {
        if (m == skip || !same(o, keyOf(o, m, usAliasTable), pszString)) return false;
        return usAliasTable != 0 || !otlMbrIsSharedShare(m);
    });
    if (pMember) *pMember = found;
    return found != nullptr;
}

OTL_WALK VTX_BOOL_T otlIsNameExistInDimensionAtGenLevel(vTX_PNETCTX_T, VTX_POTL_T o, VTX_POTLMBR_T pDim, VTX_POTLMBR_T pParent,
                                               VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable, VTX_BOOL_T fGen,
                                               VTX_POTLMBR_T *pMember) {
    VTX_POTLMBR_T skip = pMember ? *pMember : nullptr;
    if (pMember) *pMember = nullptr;
    if (!o || !pParent || !pszString) return 0;
    const VTX_ULONG_T target = fGen ? (VTX_ULONG_T)pParent->MbrInfo.usGen + 1
                                    : (pParent->MbrInfo.usLevel ? (VTX_ULONG_T)pParent->MbrInfo.usLevel - 1 : 0);
    VTX_POTLMBR_T found = findMember(o, pDim, [&](VTX_POTLMBR_T m) {
        if (m == skip) return false;
        // Any name or alias of the member names it here.
        bool named = false;
        if (usAliasTable == 0) {
            for (VTX_USHORT_T t = 0; t <= o->usNumAliasTables && !named; ++t) named = same(o, keyOf(o, m, t), pszString);
        } else {
            named = same(o, keyOf(o, m, usAliasTable), pszString);
        }
        if (!named) return false;
        VTX_ULONG_T at = fGen ? m->MbrInfo.usGen : (m == pParent ? (VTX_ULONG_T)m->MbrInfo.usLevel + 1 : m->MbrInfo.usLevel);
        return at == target;
    });
    if (pMember) *pMember = found;
    return found != nullptr;
}

OTL_WALK VTX_BOOL_T adShrOtlIsGenLevUniqueNameSet(VTX_HOUTLINE_T, VTX_POTLMBR_T pDim, VTX_BOOL_T fGen,
                                         VTX_USHORT_T usGenLevel) {
    if (!pDim || OTL_IS_SMALL(pDim)) return 0;
    for (VTX_PNAMELIST_T n = L(pDim)->pNameList; n; n = n->pNext)
        if ((n->fGen != 0) == (fGen != 0) && n->usGenOrLevel == usGenLevel && n->fUniqueName) return 1;
    return 0;
}

// ---- keeping the index in step --------------------------------------------------------------

OTL_WALK VTX_STS_T otlHashAddItem(vTX_PNETCTX_T, VTX_POTL_T pOutline, VTX_POTLMBR_T pItemToHash, VTX_POTLMBR_T,
                         HASH_NUM_T, HASH_POS_T) {
    return pOutline && pItemToHash ? 0 : VTX_STS_NULL_ARG;
}

OTL_WALK VTX_STS_T otlHashAddString(vTX_PNETCTX_T, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_CSTR_T, VTX_USHORT_T,
                           HASH_NUM_T, HASH_POS_T) {
    return pOutline && pItem ? 0 : VTX_STS_NULL_ARG;
}

OTL_WALK VTX_STS_T otlHashDeleteString(vTX_PNETCTX_T, VTX_POTL_T o, VTX_POTLMBR_T pItem, VTX_CSTR_T pszString,
                              VTX_USHORT_T usAliasTable) {
    if (!o || !pItem || !pszString) return VTX_STS_NULL_ARG;
    // 1: the member holds no such text in that table.
    const char *key = keyOf(o, pItem, usAliasTable);
    return key && std::strcmp(key, pszString) == 0 ? 0 : 1;
}

OTL_WALK VTX_STS_T otlHashDeleteItem(vTX_PNETCTX_T, VTX_POTL_T o, VTX_POTLMBR_T pItem) {
    if (!o || !pItem) return VTX_STS_NULL_ARG;
    // The host hears of every member that leaves the index.
    if (o->cbDeleteMember && pItem->ulHdl32) o->cbDeleteMember(o, pItem, pItem->ulHdl32);
    return 0;
}

OTL_WALK VTX_STS_T otlHashDeleteItemTree(vTX_PNETCTX_T pNetCtx, VTX_POTL_T o, VTX_POTLMBR_T pItem) {
    for (VTX_POTLMBR_T p = pItem; p; p = p->pSibling) {
        if (VTX_STS_T sts = otlHashDeleteItem(pNetCtx, o, p)) return sts;
        if (p->pChild)
            if (VTX_STS_T sts = otlHashDeleteItemTree(pNetCtx, o, p->pChild)) return sts;
    }
    return 0;
}

OTL_WALK VTX_STS_T otlHashDeleteItemResetDup(vTX_PNETCTX_T pNetCtx, VTX_POTL_T o, VTX_POTLMBR_T pItem) {
    // Repeated names are counted from the tree, so a member gone is a
    // repetition gone.
    return otlHashDeleteItem(pNetCtx, o, pItem);
}

OTL_WALK VTX_STS_T otlHashDeleteItemTreeResetDup(vTX_PNETCTX_T pNetCtx, VTX_POTL_T o, VTX_POTLMBR_T pItem) {
    return otlHashDeleteItemTree(pNetCtx, o, pItem);
}

OTL_WALK void otlMbrClearDuplicateItem(VTX_POTLMBR_T pItem) {
    if (!pItem) return;
    pItem->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_DUP;
    pItem->ucNameUnique = 0;
}

// ---- dimension name filter --------------------------------------------------------------------

OTL_WALK VTX_ULONG_T otlIsNameDupAmongDimensionsBloomFilterHashIdFunction(VTX_POTL_T o, VTX_CSTR_T name) {
    if (!name) name = "";
    char buf[VTX_MBRNAME_LEN];
    const char *text = name;
    if (o && !o->fCaseSensitive) {
        void *loc = o->pNetCtx ? o->pNetCtx->pLocale : nullptr;
        if (adGlobStrMapToUpper(loc, buf, sizeof buf, name, -1, 0x80000025) >= 0) text = buf;
    }
    VTX_ULONG64_T h = 5381;
    for (const char *c = text; *c; ++c) h = h * 33 + (VTX_ULONG64_T)(int64_t)(signed char)*c;
    return (VTX_ULONG_T)(h % 4099);
}

OTL_WALK VTX_BOOL_T otlIsNameDupAmongDimensionsBloomFilter(VTX_POTL_T o, VTX_CSTR_T name) {
    if (!o) return 0;
    VTX_ULONG_T b = otlIsNameDupAmongDimensionsBloomFilterHashIdFunction(o, name);
    return (o->dimBloomFilter[b / 8] >> (b % 8)) & 1;
}

OTL_WALK void otlIsNameDupAmongDimensionsBloomFilterLoadDimNames(VTX_POTL_T o) {
    if (!o) return;
    std::memset(o->dimBloomFilter, 0, sizeof o->dimBloomFilter);
    for (VTX_POTLMBR_T d = o->pHeadItem ? o->pHeadItem->pChild : nullptr; d; d = d->pSibling) {
        VTX_ULONG_T b = otlIsNameDupAmongDimensionsBloomFilterHashIdFunction(o, d->MbrInfo.szMember);
        o->dimBloomFilter[b / 8] |= (VTX_UCHAR_T)(1u << (b % 8));
    }
    bBloomFilterActive = 1;
}

OTL_WALK void otlIsNameDupAmongDimensionsBloomFilterClear(VTX_POTL_T) { bBloomFilterActive = 0; }

OTL_WALK VTX_BOOL_T otlIsNameDupAmongDimensions(VTX_POTL_T o, VTX_CSTR_T pszString, VTX_USHORT_T, VTX_POTLMBR_T *ppMbr) {
    if (!o || !pszString) return 0;
    if (bBloomFilterActive && !otlIsNameDupAmongDimensionsBloomFilter(o, pszString)) return 0;
    if (ppMbr) *ppMbr = nullptr;
    for (VTX_POTLMBR_T d = o->pHeadItem ? o->pHeadItem->pChild : nullptr; d; d = d->pSibling)
        if (same(o, d->MbrInfo.szMember, pszString)) {
            if (ppMbr) *ppMbr = d;
            return 1;
        }
    return 0;
}

} // extern "C"
