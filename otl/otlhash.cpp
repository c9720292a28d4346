// The member index: every string of an outline in one extended hash, the
// count of repeated texts in a second one, and the finds, sibling tests and
// dimension tests that editing and the exported finds are built on.
//
// An entry of the main hash is (text, item index); the item names the
// member by (dimension id, mbrId) and the alias table of the text, and
// ppMemNum2pItemMap leads back to the record.  Lookups fold and probe once,
// then walk the chain of owners of that text and filter by item.  A lookup
// hands its position on to the insert that follows it, so that a name is
// probed once per add.
#include "otl.h"
#include "otlhash.h"
#include "vtxotlfind.h"

#include "hashCWrapper.h"
#include "mbrId2pItemMapWrapper.h"
#include "otlHashItemsFactoryWrapper.h"

#include <cassert>
#include <cstdint>
#include <cstring>
#include <new>
#include <vector>

namespace {

// ---- small helpers --------------------------------------------------------------

inline bool isLarge(VTX_POTLMBR_T p) { return p && !OTL_IS_SMALL(p); }
inline VTX_POTLMBRLARGE_T L(VTX_POTLMBR_T p) { return OTL_LARGE(p); }
inline bool isAttrMember(VTX_POTLMBR_T p) { return isLarge(p) && L(p)->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE; }
inline bool isShared(VTX_POTLMBR_T p) { return otlMbrIsSharedShare(p); }
inline vTX_PNETCTX_T ctxOf(vTX_PNETCTX_T pNetCtx, VTX_POTL_T o) { return pNetCtx ? pNetCtx : o->pNetCtx; }

// An iterator in the caller's frame, placed on one chain.
struct ChainIt {
    VTX_EXTENDED_HASH_IT_BUF_T buf;
    void *it() { return &buf; }
};

inline bool sameText(vTX_PNETCTX_T ctx, const char *a, const char *b, bool caseSensitive) {
    return (caseSensitive ? otlStrcmp(ctx, a, b) : otlStricmp(ctx, a, b)) == 0;
}

// The dimension id under which a record's entries are filed.
inline VTX_ULONG_T dimIdOf(VTX_POTL_T o, VTX_POTLMBR_T p) {
    return (p->ulDimno >= 1 && o->dimIds) ? o->dimIds[p->ulDimno - 1] : 0;
}

inline VTX_POTLHASHITEM_T_EXT itemAt(VTX_POTL_T o, VTX_ULONG_T idx) {
    return otlHashItemsFactoryGetOtlHashItem(o->pOtlHashItemsFactory, idx);
}

// The owner kept in an entry's hash node is its record, with the lowest bit
// set for the text of an alias table (records are aligned, the bit is free):
// a find tells a member-name entry without reading its item or its record.
inline void *ownerTag(VTX_POTLMBR_T pItem, VTX_USHORT_T usAliasTable) {
    return reinterpret_cast<void *>(reinterpret_cast<uintptr_t>(pItem) | (usAliasTable ? 1u : 0u));
}
inline VTX_POTLMBR_T ownerRecord(void *owner) {
    return reinterpret_cast<VTX_POTLMBR_T>(reinterpret_cast<uintptr_t>(owner) & ~uintptr_t(1));
}
inline bool ownerIsAlias(void *owner) { return (reinterpret_cast<uintptr_t>(owner) & 1u) != 0; }

// The record an entry belongs to: the one that entered it (kept in the hash
// node, so a find reads the record without a further lookup), or, for an
// entry made without one, the record the item's identifiers map to.
inline VTX_POTLMBR_T ownerOf(VTX_POTL_T o, void *it, VTX_POTLHASHITEM_T_EXT item) {
    if (void *owner = extendedHashItGetOwner(it)) return ownerRecord(owner);
    return memNum2pItemMapGetPItem(o, static_cast<VTX_ULONG_T>(item->mbrId), item->dimId);
}

// Share state and kind of a record, without the test for a small record
// where the outline holds none (only a paged outline opened for update
// does): a find then reads one line of the record.
inline VTX_USHORT_T shareOf(VTX_POTL_T o, VTX_POTLMBR_T m) {
    return o->incrementalOPGfile ? otlGetShare(m) : L(m)->MbrInfo.usShare;
}
inline bool attrMemberOf(VTX_POTL_T o, VTX_POTLMBR_T m) {
    return o->incrementalOPGfile ? isAttrMember(m) : L(m)->MbrInfo.usCategory == VTX_CAT_ATTRIBUTE;
}

// Looks the key up: num is NODE_INDEX_NA when it is absent.
inline VTX_STS_T lookup(VTX_PEXTENDED_HASH_T h, const char *key, HASH_NUM_T &num, HASH_POS_T &pos) {
    num = NODE_INDEX_DEL;
    pos = NODE_INDEX_DEL;
    return extendedHashGetPos(h, key, &num, &pos);
}

// Places the iterator on the chain found by lookup; false for an absent key.
inline bool place(VTX_PEXTENDED_HASH_T h, ChainIt &it, HASH_NUM_T num, HASH_POS_T pos) {
    return num != NODE_INDEX_NA && num != NODE_INDEX_DEL && extendedHashInitIterator(h, it.it(), num, pos) == 0;
}

// Looks the key up and places the iterator, in one probe: num is
// NODE_INDEX_NA when the key is absent, and the iterator then untouched.
inline VTX_STS_T lookupOn(VTX_PEXTENDED_HASH_T h, const char *key, HASH_NUM_T &num, HASH_POS_T &pos, ChainIt &it) {
    num = NODE_INDEX_DEL;
    pos = NODE_INDEX_DEL;
    VTX_STS_T sts = extendedHashGetPosAndIterator(h, key, &num, &pos, it.it());
    if (sts) num = NODE_INDEX_NA;
    return sts;
}

// Looks the key up and places the iterator; false for an absent key or a
// failed lookup (both read as "no owner").
bool placeOn(VTX_PEXTENDED_HASH_T h, const char *key, ChainIt &it) {
    if (!h || !key) return false;
    HASH_NUM_T num;
    HASH_POS_T pos;
    return lookupOn(h, key, num, pos, it) == 0 && num != NODE_INDEX_NA;
}

// Whether a member-name match with these option bits takes a member.
inline bool optionTakes(VTX_USHORT_T usOption, VTX_USHORT_T share) {
    if (!OTL_IS_SHARE(share)) return (usOption & OTL_OPT_UNSHARED) != 0;
    if (share == VTX_SHARE_SHARED) return (usOption & OTL_OPT_SHARED3) != 0;
    return (usOption & OTL_OPT_SHARED9) != 0;
}

// The short name of a typed attribute member is a key of its own.
bool hasHashedShortName(VTX_POTL_T o, VTX_POTLMBR_T info) {
    if (!o->AttrSpecs.usUseNameOf || !isAttrMember(info) || info->MbrInfo.usGen == 1) return false;
    const VTX_USHORT_T type = L(info)->MbrInfo.Attribute.usDataType;
    return type != VTX_ATTR_NONE && type != VTX_ATTR_STRING && L(info)->Map.AttrMbr.pszShortName;
}

// Walks a chain to the entry of item index idx and takes it out.
void removeEntry(VTX_POTL_T o, const char *key, VTX_ULONG_T idx) {
    ChainIt it;
    if (!placeOn(o->pExtendedHashTable, key, it)) return;
    for (; !extendedHashItEnd(it.it()); (void)extendedHashItIncrement(it.it())) {
        if (extendedHashItGetHashItemIndex(it.it()) == idx) {
            (void)extendedHashItSetDeleted(it.it());  // the iterator was placed by a lookup: it may delete
            return;
        }
    }
}

// The number of strings the index is sized for: the context's estimate, or
// 5,000,000 without one; a paged outline that knows it holds more names
// than estimated is sized for them.
VTX_ULONG_T expectedStrings(vTX_PNETCTX_T ctx, VTX_POTL_T o) {
    const VTX_ULONG_T estimate = ctx ? ctx->estimatedHashSize : 0;
    if (o->usOutlineType == VTX_OTL_AGGSTORE && o->cOPGVersion >= 80 && o->totalMemberNamespaceSize > estimate)
        return o->totalMemberNamespaceSize + 100000;
    return estimate ? estimate : OTL_HASH_DEFAULT_STRINGS;
}

// The hash and the factory of the count of repeated texts.  A failure
// leaves what was made for otlHashFree.
VTX_STS_T makeDupNameStore(vTX_PNETCTX_T ctx, VTX_POTL_T o) {
    VTX_STS_T sts = 0;
    if (!o->pExtendedHashTableDupName)
        sts = extendedHashInitWithSize(&o->pExtendedHashTableDupName, ctx, o->pLocale, expectedStrings(ctx, o) / 25, 0);
    if (!sts && !o->otlDupNameFactory) {
        sts = otlHashItemsDupFactoryInit(ctx, &o->otlDupNameFactory);
        o->otlDupNameFactoryNextFreeIndex = 0;
    }
    return sts;
}

// ---- duplicate-name records ----------------------------------------------------

// The record the iterator rests on after a match, or null.
inline VTX_POTLDUPNAME_T dupAt(VTX_POTL_T o, void *it) {
    VTX_ULONG_T idx = extendedHashItGetHashItemIndex(it);
    if (idx == NODE_INDEX_NA) return nullptr;
    return otlHashItemsDupFactoryGetOtlDupName(o->otlDupNameFactory, idx);
}

VTX_POTLDUPNAME_T matchDup(vTX_PNETCTX_T ctx, VTX_POTL_T o, void *it, const char *psz, bool fMember, bool fAlias,
                           VTX_USHORT_T usAliasTable, bool fAny) {
    VTX_SHORT_T cmp = 1;
    otlMatchHashDupNameString(ctx, o, it, psz, o->fCaseSensitive, fMember, fAlias, usAliasTable, fAny, &cmp);
    return cmp == 0 ? dupAt(o, it) : nullptr;
}

// ---- the chain filter ------------------------------------------------------------

// The chain filter of otlMatchHashString.  Inlined into the finds, which
// call it with most arguments constant: a plain find by name then tests
// only what applies to it.
[[gnu::always_inline]] inline VTX_POTLMBR_T matchHashString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, void *it,
                                                            VTX_CSTR_T pszString, VTX_CSTR_T pszParent,
                                                            VTX_BOOL_T fCaseSensitive, VTX_BOOL_T fMember,
                                                            VTX_BOOL_T fAlias, VTX_USHORT_T usOption,
                                                            VTX_USHORT_T usAliasTable, VTX_POTLMBR_T pRequiredDim,
                                                            VTX_SHORT_T *psCmp) {
    VTX_SHORT_T scratch;
    if (!psCmp) psCmp = &scratch;
    *psCmp = 1;
    if (!pOutline || !it) return nullptr;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    const bool anyAlias = fAlias && usAliasTable == 0;
    for (;; (void)extendedHashItIncrement(it)) {
        VTX_STR_T str;
        VTX_ULONG_T idx;
        void *owner;
        if (!extendedHashItGetEntry(it, &str, &idx, &owner)) break;
        *psCmp = 0;
        if (idx == NODE_INDEX_NA || !str) continue;
        if (fCaseSensitive && pszString && otlStrcmp(ctx, pszString, str) != 0) continue;
        VTX_POTLMBR_T m = owner ? ownerRecord(owner) : ownerOf(pOutline, it, itemAt(pOutline, idx));
        if (!m) continue;
        // The owner tells a member-name entry; only an alias entry (or one
        // made without an owner) needs its item for the table.
        const VTX_USHORT_T t = owner && !ownerIsAlias(owner) ? 0 : itemAt(pOutline, idx)->usAliasTable;
        const bool asName = fMember && t == 0;
        if (pszParent) {
            if (!asName && (!fAlias || (anyAlias ? t == 0 : t != usAliasTable))) continue;
            VTX_POTLMBR_T parent = m->pParent;
            if (!parent || parent->MbrInfo.usGen == 0 || !parent->MbrInfo.szMember ||
                !sameText(ctx, parent->MbrInfo.szMember, pszParent, fCaseSensitive))
                continue;
        } else if (attrMemberOf(pOutline, m)) {
            if (!asName) {
                if (anyAlias ? t == 0 : (!fAlias || t == 0 || t != usAliasTable)) continue;
            } else {
                // A typed attribute answers a member-name query by its long
                // name only; its hashed short name is for
                // otlFindAttributeMember.
                const VTX_USHORT_T type = L(m)->MbrInfo.Attribute.usDataType;
                if (type != VTX_ATTR_NONE && type != VTX_ATTR_STRING &&
                    !(pszString && m->MbrInfo.szMember && sameText(ctx, pszString, m->MbrInfo.szMember, fCaseSensitive)))
                    continue;
            }
        } else if (!asName) {
            // With any table asked for, a member-name entry answers too: a
            // name or an alias is found in one walk.
            if (!anyAlias && (!fAlias || t != usAliasTable)) continue;
        } else if (!optionTakes(usOption, shareOf(pOutline, m))) {
            continue;
        }
        if (pRequiredDim && otlGetDim(m) != pRequiredDim) continue;
        return m;
    }
    *psCmp = 1;
    return nullptr;
}

// ---- paths ---------------------------------------------------------------------

VTX_STS_T findSimpleName(vTX_PNETCTX_T ctx, VTX_POTL_T o, const char *name, bool fFirst,
                         VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem);
VTX_STS_T findCombined(vTX_PNETCTX_T ctx, VTX_POTL_T o, const char *psz, bool fMember, bool fAlias, bool fFirst,
                       VTX_USHORT_T usAliasTable, VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem,
                       otl::NameScratch &scratch);

bool isPathFormatError(VTX_STS_T sts) {
    return sts == VTX_STS_PATH_UNCLOSED || sts == VTX_STS_PATH_NO_OPEN || sts == VTX_STS_PATH_TRAILING ||
           sts == VTX_STS_TEXT_TOO_LONG;
}

// An unknown text that reads as a path names a member by its ancestors; one
// that only looks like it is simply unknown.
[[gnu::noinline]] VTX_STS_T findUnknownAsPath(vTX_PNETCTX_T ctx, VTX_POTL_T o, const char *psz, bool fMember,
                                              bool fAlias, bool fFirst, VTX_USHORT_T usAliasTable,
                                              VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem, bool literal) {
    if (o->bNonUniqueName || literal || !otl::otlLooksLikePath(psz)) return 0;
    otl::NameScratch scratch(ctx);
    VTX_STS_T sts = findCombined(ctx, o, psz, fMember, fAlias, fFirst, usAliasTable, pRequiredDim, ppItem, scratch);
    return isPathFormatError(sts) ? 0 : sts;
}

// The lookup of an outline of duplicate names: parent and name make one
// path.  The buffers serve the whole chain of lookups below.
[[gnu::noinline]] VTX_STS_T findAsPath(vTX_PNETCTX_T ctx, VTX_POTL_T o, const char *psz, const char *pszParent,
                                       bool fMember, bool fAlias, bool fFirst, VTX_USHORT_T usAliasTable,
                                       VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem, bool literal) {
    otl::NameScratch built(ctx), parsed(ctx);
    VTX_STS_T sts = otl::otlBuildPath(pszParent, false, psz, literal, built);
    if (sts == VTX_STS_PATH_NOT_COMBINED) {
        // The name is a path of its own: found alone, then checked against
        // the parent.
        sts = findCombined(ctx, o, psz, fMember, fAlias, fFirst, usAliasTable, pRequiredDim, ppItem, parsed);
        if (!sts && *ppItem && pszParent && *pszParent) {
            VTX_POTLMBR_T parent = nullptr;
            VTX_STS_T psts = findCombined(ctx, o, pszParent, fMember, fAlias, fFirst, usAliasTable, nullptr, &parent,
                                          parsed);
            if (psts || !parent || (*ppItem)->pParent != parent) *ppItem = nullptr;
        }
        return sts;
    }
    if (sts) return sts;
    return findCombined(ctx, o, built.data(), fMember, fAlias, fFirst, usAliasTable, pRequiredDim, ppItem, parsed);
}

// The lookup behind otlHashFindItemByNameEx, without its reporting.
// literal: the text is a name even where it would read as a path.  Inlined,
// so that a find by plain name keeps only the tests that apply to it.
[[gnu::always_inline]] inline VTX_STS_T findByName(vTX_PNETCTX_T ctx, VTX_POTL_T o, const char *psz,
                                                   const char *pszParent, bool fMember, bool fAlias, bool fFirst,
                                                   VTX_USHORT_T usOption, VTX_USHORT_T usAliasTable,
                                                   VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem,
                                                   HASH_NUM_T &num, HASH_POS_T &pos, bool literal) {
    *ppItem = nullptr;
    num = NODE_INDEX_DEL;
    pos = NODE_INDEX_DEL;
    if (!psz || !o->pExtendedHashTable) return 0;
    const bool direct = !o->bNonUniqueName || (fAlias && usAliasTable == 2);
    if (!direct)
        return findAsPath(ctx, o, psz, pszParent, fMember, fAlias, fFirst, usAliasTable, pRequiredDim, ppItem,
                          literal);
    ChainIt it;
    VTX_STS_T sts = lookupOn(o->pExtendedHashTable, psz, num, pos, it);
    if (sts) return sts;
    if (num == NODE_INDEX_NA)
        return findUnknownAsPath(ctx, o, psz, fMember, fAlias, fFirst, usAliasTable, pRequiredDim, ppItem, literal);
    VTX_SHORT_T cmp = 1;
    *ppItem = matchHashString(ctx, o, it.it(), psz, pszParent, o->fCaseSensitive, fMember, fAlias, usOption,
                              usAliasTable, pRequiredDim, &cmp);
    return 0;
}

// A plain name among member names: the one unshared member bearing it, in
// pRequiredDim when given.
VTX_STS_T findSimpleName(vTX_PNETCTX_T ctx, VTX_POTL_T o, const char *name, bool fFirst,
                         VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem) {
    *ppItem = nullptr;
    if (!pRequiredDim && otlIsNameDuplicated(ctx, o, name, 0, nullptr)) return VTX_STS_NOT_FOUND;
    ChainIt it;
    if (!placeOn(o->pExtendedHashTable, name, it)) return 0;
    VTX_POTLMBR_T first = nullptr;
    for (;;) {
        VTX_POTLMBR_T m = nullptr;
        (void)otlHashFindItemByMbrName(ctx, o, name, pRequiredDim, OTL_OPT_UNSHARED, &m, it.it());
        if (!m) break;
        if (!first) {
            first = m;
            if (fFirst) break;
        } else if (m != first) {
            return VTX_STS_NOT_FOUND;
        }
        (void)extendedHashItIncrement(it.it());
    }
    *ppItem = first;
    return 0;
}

// The child of pParent with an alias of that table equal to the text.
VTX_POTLMBR_T childByAlias(vTX_PNETCTX_T ctx, VTX_POTL_T o, VTX_POTLMBR_T pParent, const char *text,
                           VTX_USHORT_T usAliasTable) {
    ChainIt it;
    if (!placeOn(o->pExtendedHashTable, text, it)) return nullptr;
    for (;;) {
        VTX_POTLMBR_T m = nullptr;
        (void)otlHashFindItemByAlias(ctx, o, text, nullptr, usAliasTable, it.it(), &m);
        if (!m) return nullptr;
        if (m->pParent == pParent) return m;
        (void)extendedHashItIncrement(it.it());
    }
}

VTX_STS_T findCombined(vTX_PNETCTX_T ctx, VTX_POTL_T o, const char *psz, bool fMember, bool fAlias, bool fFirst,
                       VTX_USHORT_T usAliasTable, VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem,
                       otl::NameScratch &scratch) {
    *ppItem = nullptr;
    if (!psz || !*psz || !o->pExtendedHashTable) return 0;
    otl::PathSegments segs;
    VTX_STS_T sts = otl::otlParsePath(psz, VTX_MAX_PATH_DEPTH, scratch, segs);
    if (sts) return sts;
    const VTX_USHORT_T n = segs.count;
    if (fMember) {
        if (n < 2) return findSimpleName(ctx, o, n ? segs.seg[0] : psz, fFirst, pRequiredDim, ppItem);
        ChainIt it;
        if (!placeOn(o->pExtendedHashTable, segs.seg[0], it)) return 0;
        VTX_POTLMBR_T result = nullptr;
        unsigned matches = 0;
        for (;; (void)extendedHashItIncrement(it.it())) {
            VTX_POTLMBR_T m = nullptr;
            (void)otlHashFindItemByMbrName(ctx, o, segs.seg[0], nullptr, OTL_OPT_UNSHARED, &m, it.it());
            if (!m) break;
            if (segs.atCount) {
                // "[dimension]@[name]": a name anywhere in that dimension.
                if (n != 2 || m->MbrInfo.usGen != 1) continue;
                VTX_POTLMBR_T first = nullptr;
                if (!otlIsNameExistInDimension(ctx, o, m, segs.seg[1], 0, &first)) return 0;
                VTX_POTLMBR_T second = first;
                if (otlIsNameExistInDimension(ctx, o, m, segs.seg[1], 0, &second)) return VTX_STS_NOT_FOUND;
                *ppItem = first;
                return 0;
            }
            VTX_POTLMBR_T cur = m;
            for (VTX_USHORT_T i = 1; cur && i < n; ++i) {
                VTX_POTLMBR_T child = nullptr;
                if (!otlHashIsNameDupAmongSiblings(ctx, o, cur, segs.seg[i], 0, &child, nullptr, nullptr)) child = nullptr;
                cur = child;
            }
            if (!cur || (pRequiredDim && otlGetDim(cur) != pRequiredDim)) continue;
            if (cur != result) {
                result = cur;
                ++matches;
            }
        }
        if (matches > 1) return VTX_STS_NOT_FOUND;
        *ppItem = result;
        return 0;
    }
    if (fAlias && usAliasTable) {
        if (n < 2) {
            const char *text = n ? segs.seg[0] : psz;
            if (otlIsNameDuplicated(ctx, o, text, usAliasTable, nullptr)) return VTX_STS_NOT_FOUND;
            ChainIt it;
            if (!placeOn(o->pExtendedHashTable, text, it)) return 0;
            return otlHashFindItemByAlias(ctx, o, text, pRequiredDim, usAliasTable, it.it(), ppItem);
        }
        ChainIt it;
        if (!placeOn(o->pExtendedHashTable, segs.seg[0], it)) return 0;
        VTX_POTLMBR_T result = nullptr;
        unsigned matches = 0;
        for (;; (void)extendedHashItIncrement(it.it())) {
            VTX_POTLMBR_T m = nullptr;
            (void)otlHashFindItemByAlias(ctx, o, segs.seg[0], nullptr, usAliasTable, it.it(), &m);
            if (!m) break;
            VTX_POTLMBR_T cur = m;
            for (VTX_USHORT_T i = 1; cur && i < n; ++i) cur = childByAlias(ctx, o, cur, segs.seg[i], usAliasTable);
            if (!cur || (pRequiredDim && otlGetDim(cur) != pRequiredDim)) continue;
            if (cur != result) {
                result = cur;
                ++matches;
            }
        }
        if (matches > 1) return VTX_STS_NOT_FOUND;
        *ppItem = result;
        return 0;
    }
    return 0;
}

// The stored member of a shared one, by the pointer it keeps or the index.
VTX_POTLMBR_T originalOf(vTX_PNETCTX_T ctx, VTX_POTL_T o, VTX_POTLMBR_T p) {
    if (!isShared(p)) return p;
    VTX_POTLMBR_T orig = nullptr;
    (void)otlHashFindOriginalItem(ctx, o, otlGetDim(p), p, &orig);  // none found: no original to compare
    return orig;
}

// Takes pItem's entry for a text of a table out of the main hash and, when
// it was a counted duplicate, out of the count.  fShared tells whether the
// text was counted as a shared member's.  1: not there.  *pDimId (optional)
// receives the dimension id the entry was filed under.
//
// A member may hold two entries of one chain for a while (a rename that
// only changes case enters the new text before the old leaves): the entry
// whose key is the very text given is taken first.
VTX_STS_T deleteEntry(vTX_PNETCTX_T ctx, VTX_POTL_T o, VTX_POTLMBR_T pItem, const char *psz,
                      VTX_USHORT_T usAliasTable, VTX_ULONG_T *pDimId, bool fShared) {
    if (!o->pExtendedHashTable) return 1;
    HASH_NUM_T num;
    HASH_POS_T pos;
    VTX_STS_T sts = lookup(o->pExtendedHashTable, psz, num, pos);
    if (sts) return sts;
    ChainIt it, match;
    if (!place(o->pExtendedHashTable, it, num, pos)) return 1;
    bool found = false;
    for (; !extendedHashItEnd(it.it()); (void)extendedHashItIncrement(it.it())) {
        const VTX_ULONG_T idx = extendedHashItGetHashItemIndex(it.it());
        const char *str = extendedHashItGetStr(it.it());
        if (idx == NODE_INDEX_NA || !str) continue;
        VTX_POTLHASHITEM_T_EXT item = itemAt(o, idx);
        if (item->usAliasTable != usAliasTable || ownerOf(o, it.it(), item) != pItem) continue;
        if (o->fCaseSensitive && otlStrcmp(ctx, str, psz) != 0) continue;
        if (!found || str == psz) {
            match = it;
            found = true;
        }
        if (str == psz) break;
    }
    if (!found) return 1;
    const VTX_ULONG_T idx = extendedHashItGetHashItemIndex(match.it());
    if (pDimId) *pDimId = itemAt(o, idx)->dimId;
    (void)extendedHashItSetDeleted(match.it());  // placed by a lookup: it may delete
    // The newest item goes back to the factory, so that an add undone
    // leaves the factory as it found it.
    if (idx + 1 == o->otlHashItemsFactoryNextFreeIndex) o->otlHashItemsFactoryNextFreeIndex = idx;
    if (!fShared && otlIsNameDuplicated(ctx, o, psz, usAliasTable, nullptr))
        return otlHashDupNameDeleteString(ctx, o, psz, usAliasTable);
    return 0;
}

// Whether a member other than pItem, not shared, bears the text as its name.
bool otherUnsharedBearer(vTX_PNETCTX_T ctx, VTX_POTL_T o, VTX_POTLMBR_T pItem, const char *name) {
    ChainIt it;
    if (!placeOn(o->pExtendedHashTable, name, it)) return false;
    for (;; (void)extendedHashItIncrement(it.it())) {
        VTX_SHORT_T cmp = 1;
        VTX_POTLMBR_T m = otlMatchHashString(ctx, o, it.it(), name, nullptr, o->fCaseSensitive, 1, 0,
                                             OTL_OPT_UNSHARED, 0, nullptr, &cmp);
        if (!m) return false;
        if (m != pItem) return true;
    }
}

// Clears the duplicate mark of every remaining bearer of a member name that
// is no longer a duplicate.
void clearMarksIfUnique(vTX_PNETCTX_T ctx, VTX_POTL_T o, const char *name) {
    if (otlIsNameDuplicated(ctx, o, name, 0, nullptr)) return;
    ChainIt it;
    if (!placeOn(o->pExtendedHashTable, name, it)) return;
    for (;; (void)extendedHashItIncrement(it.it())) {
        VTX_POTLMBR_T m = nullptr;
        (void)otlHashFindItemByMbrName(ctx, o, name, nullptr, OTL_OPT_ALL, &m, it.it());
        if (!m) break;
        otlMbrClearDuplicateItem(m);
    }
}

VTX_STS_T deleteItemTree(vTX_PNETCTX_T ctx, VTX_POTL_T o, VTX_POTLMBR_T pItem, bool resetDup) {
    for (VTX_POTLMBR_T p = pItem; p; p = p->pSibling) {
        if (!OTL_IS_HIDDEN(p)) {
            VTX_STS_T sts = resetDup ? otlHashDeleteItemResetDup(ctx, o, p) : otlHashDeleteItem(ctx, o, p);
            if (sts && sts != 1) return sts;
        }
        if (p->pChild) {
            VTX_STS_T sts = deleteItemTree(ctx, o, p->pChild, resetDup);
            if (sts) return sts;
        }
    }
    return 0;
}

// The shared member after pAfter (null: the first) on pItem's chain that
// stands for pItem, in any dimension; chains keep the order of adding.
VTX_POTLMBR_T nextSharedOnChain(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_POTLMBR_T pAfter) {
    if (!pOutline || !pItem || !pItem->MbrInfo.szMember) return nullptr;
    ChainIt it;
    if (!placeOn(pOutline->pExtendedHashTable, pItem->MbrInfo.szMember, it)) return nullptr;
    if (pAfter) {
        // Step past pAfter's own entry.
        for (;; (void)extendedHashItIncrement(it.it())) {
            if (extendedHashItEnd(it.it())) return nullptr;
            const VTX_ULONG_T idx = extendedHashItGetHashItemIndex(it.it());
            if (idx == NODE_INDEX_NA) continue;
            VTX_POTLHASHITEM_T_EXT item = itemAt(pOutline, idx);
            if (item->usAliasTable == 0 && ownerOf(pOutline, it.it(), item) == pAfter) break;
        }
        (void)extendedHashItIncrement(it.it());
    }
    return otlMatchHashStringShared(pOutline, pOutline->pNetCtx, it.it(), pItem, pItem->MbrInfo.szMember,
                                    pOutline->fCaseSensitive);
}

} // namespace

extern "C" {

// ---- lifecycle -----------------------------------------------------------------------

VTX_STS_T otlHashInit(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    VTX_STS_T sts = extendedHashInitWithSize(&pOutline->pExtendedHashTable, ctx, pOutline->pLocale,
                                             expectedStrings(ctx, pOutline), 0);
    // The count of repeated texts is made with the first repeat when names
    // must be unique: an outline of unique names never needs it, and it
    // costs some 3 MB.
    if (!sts && pOutline->bNonUniqueName) sts = makeDupNameStore(ctx, pOutline);
    if (!sts) sts = otlHashItemsFactoryInit(ctx, &pOutline->pOtlHashItemsFactory);
    if (!sts)
        sts = memNum2pItemMapInit(ctx, reinterpret_cast<VTX_PMEMNUM_2_PITEM_MAP_T **>(&pOutline->ppMemNum2pItemMap));
    pOutline->otlHashItemsFactoryNextFreeIndex = 0;
    return sts;
}

VTX_STS_T otlHashFree(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline) {
    if (!pOutline) return 0;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    // Duplicate records own their texts.
    if (pOutline->otlDupNameFactory) {
        for (VTX_ULONG_T i = 0; i < pOutline->otlDupNameFactoryNextFreeIndex; ++i) {
            VTX_POTLDUPNAME_T rec = otlHashItemsDupFactoryGetOtlDupName(pOutline->otlDupNameFactory, i);
            if (rec->bNew && rec->pszString) (void)otlFreeMem(ctx, rec->pszString);  // closing: no one to tell
            rec->pszString = nullptr;
            rec->bNew = 0;
        }
    }
    VTX_STS_T sts = extendedHashFree(pOutline->pExtendedHashTable);
    if (sts) return sts;
    pOutline->pExtendedHashTable = nullptr;
    sts = extendedHashFree(pOutline->pExtendedHashTableDupName);
    if (sts) return sts;
    pOutline->pExtendedHashTableDupName = nullptr;
    (void)otlHashItemsFactoryFree(pOutline->pOtlHashItemsFactory);  // answers 0 by contract
    pOutline->pOtlHashItemsFactory = nullptr;
    (void)otlHashItemsDupFactoryFree(pOutline->otlDupNameFactory);
    pOutline->otlDupNameFactory = nullptr;
    (void)memNum2pItemMapFree(ctx, reinterpret_cast<VTX_PMEMNUM_2_PITEM_MAP_T *>(pOutline->ppMemNum2pItemMap));
    pOutline->ppMemNum2pItemMap = nullptr;
    pOutline->otlHashItemsFactoryNextFreeIndex = 0;
    pOutline->otlDupNameFactoryNextFreeIndex = 0;
    return 0;
}

VTX_ULONG_T otlHashCountEntries(VTX_POTL_T pOutline) {
    if (!pOutline || !pOutline->pExtendedHashTable) return 0;
    VTX_PEXTENDED_HASH_ALLMEMBERS_IT_T all = nullptr;
    if (extendedHashAllocateAllMembersIterator(pOutline->pExtendedHashTable, pOutline->pNetCtx, &all)) return 0;
    VTX_ULONG_T n = 0;
    for (; !extendedHashAllMembersItEnd(all); (void)extendedHashAllMembersItIncrement(all))
        if (extendedHashAllMembersItGetStr(all) && extendedHashAllMembersItGetHashItemIndex(all) != NODE_INDEX_NA) ++n;
    (void)extendedHashFreeAllMembersIterator(all);
    return n;
}

// ---- adding --------------------------------------------------------------------------

VTX_STS_T otlHashAddStringAs(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_CSTR_T pszString,
                             VTX_USHORT_T usAliasTable, HASH_NUM_T hashNum, HASH_POS_T hashPos, VTX_BOOL_T fShared) {
    if (!pOutline || !pItem || !pszString || !pOutline->pExtendedHashTable) return VTX_STS_NULL_ARG;
    if (pItem->ulDimno == 0 || !pOutline->dimIds) return VTX_STS_NO_DIMENSION;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    const VTX_ULONG_T idx = pOutline->otlHashItemsFactoryNextFreeIndex;
    // Only an outline of duplicate names asks whether the text is taken:
    // elsewhere the caller has refused a taken name already.
    const bool taken = pOutline->bNonUniqueName &&
                       otlHashIsStringExist(ctx, pOutline, pszString, usAliasTable, &hashNum, &hashPos);
    const VTX_ULONG_T dimId = dimIdOf(pOutline, pItem);
    assert(dimId < 65536 && "pOutline->dimIds[pItem->ulDimno-1] < 65536");
    VTX_STS_T sts = memNum2pItemMapAddItem(ctx, pOutline, pItem);
    if (!sts)
        sts = otlHashItemsFactoryAddItem(ctx, pOutline->pOtlHashItemsFactory,
                                         &pOutline->otlHashItemsFactoryNextFreeIndex, pItem->mbrId,
                                         static_cast<VTX_USHORT_T>(dimId), usAliasTable);
    if (!sts)
        sts = extendedHashInsertOwned(pOutline->pExtendedHashTable, idx, pszString, ownerTag(pItem, usAliasTable),
                                      &hashNum, &hashPos);
    // Shared members never count as duplicates.
    if (!sts && taken && !fShared) {
        sts = otlHashDupNameAddString(ctx, pOutline, pszString, usAliasTable);
        if (sts) removeEntry(pOutline, pszString, idx);
    }
    // A refused add hands its item back, so that the factory is as it was.
    if (sts) pOutline->otlHashItemsFactoryNextFreeIndex = idx;
    return sts;
}

VTX_STS_T otlHashAddString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_CSTR_T pszString,
                           VTX_USHORT_T usAliasTable, HASH_NUM_T hashNum, HASH_POS_T hashPos) {
    if (!pItem) return VTX_STS_NULL_ARG;
    return otlHashAddStringAs(pNetCtx, pOutline, pItem, pszString, usAliasTable, hashNum, hashPos, isShared(pItem));
}

VTX_STS_T otlHashDupNameShareChanged(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                     VTX_CSTR_T pszName, VTX_BOOL_T fNowShared) {
    if (!pOutline || !pItem || !pszName) return VTX_STS_NULL_ARG;
    if (!pOutline->bNonUniqueName) return 0;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    // The count holds the unshared bearers beyond the first: the member is
    // in it exactly when another unshared member bears the name.
    if (!otherUnsharedBearer(ctx, pOutline, pItem, pszName)) return 0;
    return fNowShared ? otlHashDupNameDeleteString(ctx, pOutline, pszName, 0)
                      : otlHashDupNameAddString(ctx, pOutline, pszName, 0);
}

VTX_STS_T otlHashAddItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItemToHash,
                         VTX_POTLMBR_T pItemWithInfo, HASH_NUM_T hashNum, HASH_POS_T hashPos) {
    if (!pOutline || !pItemToHash) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    VTX_POTLMBR_T info = pItemWithInfo ? pItemWithInfo : pItemToHash;
    // The keys are the registered record's own texts: a working copy may
    // point into the caller's buffers.
    const char *name = pItemToHash->MbrInfo.szMember ? pItemToHash->MbrInfo.szMember : info->MbrInfo.szMember;
    if (!name) return VTX_STS_NULL_ARG;
    VTX_STS_T sts = otlHashAddString(ctx, pOutline, pItemToHash, name, 0, hashNum, hashPos);
    if (sts) return sts;
    const char *shortName = nullptr;
    if (hasHashedShortName(pOutline, info)) {
        shortName = L(info)->Map.AttrMbr.pszShortName;
        sts = otlHashAddString(ctx, pOutline, pItemToHash, shortName, 0, OTL_HASH_NONE, OTL_HASH_NONE);
        if (sts) shortName = nullptr;
    }
    // Every alias of every table: the plain one and those of the alias
    // combinations, so that a rebuilt or copied member is found by each.
    struct Entry {
        const char *text;
        VTX_USHORT_T table;
    };
    std::vector<Entry> added;
    auto addAlias = [&](const char *text, VTX_USHORT_T t) {
        if (!text) return;
        // Room in the list first, so that every entry made can be taken out.
        try {
            added.reserve(added.size() + 1);
        } catch (const std::bad_alloc &) {
            sts = VTX_STS_NO_MEMORY;
            return;
        }
        sts = otlHashAddString(ctx, pOutline, pItemToHash, text, t, OTL_HASH_NONE, OTL_HASH_NONE);
        if (!sts) added.push_back({text, t});
    };
    VTX_POTLALIASARRAYREC_T aliases = pItemToHash->AliasArray ? pItemToHash->AliasArray : info->AliasArray;
    VTX_POTLALIASREC_T *recs = isLarge(info) ? L(info)->pAliasRec : nullptr;
    for (VTX_USHORT_T t = 1; !sts && t <= pOutline->usNumAliasTables; ++t) {
        if (aliases) addAlias(aliases[t - 1].pszDefName, t);
        if (recs && t <= OTL_MAX_ALIAS_TABLES)
            for (VTX_POTLALIASREC_T a = recs[t - 1]; !sts && a; a = a->pNext) addAlias(a->pszAlias, t);
    }
    if (!sts) return 0;
    // All or nothing: what went in comes out again.
    for (auto e = added.rbegin(); e != added.rend(); ++e)
        (void)deleteEntry(ctx, pOutline, pItemToHash, e->text, e->table, nullptr, isShared(pItemToHash));  // just put in
    if (shortName) (void)deleteEntry(ctx, pOutline, pItemToHash, shortName, 0, nullptr, isShared(pItemToHash));
    (void)deleteEntry(ctx, pOutline, pItemToHash, name, 0, nullptr, isShared(pItemToHash));  // each was just put in
    return sts;
}

VTX_STS_T otlHashAddItemTree(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pRoot) {
    if (!pOutline || !pRoot) return VTX_STS_NULL_ARG;
    // A paged outline open for update never holds all its members.
    assert(!pOutline->incrementalOPGfile && "!pOutline->incrementalOPGfile");
    for (VTX_POTLMBR_T p = pRoot; p; p = otlNavtrdn(p, pRoot)) {
        if (p->MbrInfo.usGen == 0 || OTL_IS_HIDDEN(p)) continue;
        VTX_STS_T sts = otlHashAddItem(pNetCtx, pOutline, p, p, OTL_HASH_NONE, OTL_HASH_NONE);
        if (sts) return sts;
    }
    return 0;
}

VTX_BOOL_T otlHashIsStringExist(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                VTX_USHORT_T usAliasTable, HASH_NUM_T *hashNum, HASH_POS_T *hashPos) {
    HASH_NUM_T localNum = OTL_HASH_NONE;
    HASH_POS_T localPos = OTL_HASH_NONE;
    if (!hashNum || !hashPos) {
        hashNum = &localNum;
        hashPos = &localPos;
    }
    if (!pOutline || !pszString || !pOutline->pExtendedHashTable) return 0;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    if (*hashNum == NODE_INDEX_DEL) {
        if (extendedHashGetPos(pOutline->pExtendedHashTable, pszString, hashNum, hashPos)) {
            *hashNum = NODE_INDEX_DEL;  // a failed lookup is no position to insert at
            return 0;
        }
    }
    ChainIt it;
    if (!place(pOutline->pExtendedHashTable, it, *hashNum, *hashPos)) return 0;
    const bool cs = pOutline->fCaseSensitive;
    for (; !extendedHashItEnd(it.it()); (void)extendedHashItIncrement(it.it())) {
        const VTX_ULONG_T idx = extendedHashItGetHashItemIndex(it.it());
        const char *str = extendedHashItGetStr(it.it());
        if (idx == NODE_INDEX_NA || !str) continue;
        if (cs && otlStrcmp(ctx, str, pszString) != 0) continue;
        VTX_POTLHASHITEM_T_EXT item = itemAt(pOutline, idx);
        VTX_POTLMBR_T m = ownerOf(pOutline, it.it(), item);
        if (!m) continue;
        const VTX_USHORT_T t = item->usAliasTable;
        if (isAttrMember(m)) {
            // An attribute member's long name counts whatever the table; its
            // hashed short name does not.
            if (m->MbrInfo.szMember && sameText(ctx, pszString, m->MbrInfo.szMember, cs)) return 1;
            if (usAliasTable == 0 ? t != 0 : t == usAliasTable) return 1;
        } else if (usAliasTable == 0) {
            if (t == 0 && otlGetShare(m) != VTX_SHARE_SHARED) return 1;
        } else if (t == usAliasTable) {
            return 1;
        }
    }
    return 0;
}

// ---- deleting ------------------------------------------------------------------------

VTX_STS_T otlHashDeleteString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_CSTR_T pszString,
                              VTX_USHORT_T usAliasTable) {
    if (!pOutline || !pItem || !pszString) return VTX_STS_NULL_ARG;
    return deleteEntry(ctxOf(pNetCtx, pOutline), pOutline, pItem, pszString, usAliasTable, nullptr, isShared(pItem));
}

VTX_STS_T otlHashDeleteStringAs(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_CSTR_T pszString,
                                VTX_USHORT_T usAliasTable, VTX_BOOL_T fShared) {
    if (!pOutline || !pItem || !pszString) return VTX_STS_NULL_ARG;
    return deleteEntry(ctxOf(pNetCtx, pOutline), pOutline, pItem, pszString, usAliasTable, nullptr, fShared != 0);
}

VTX_STS_T otlHashDeleteShortName(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                 VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable) {
    if (!pOutline || !pItem || !pszString) return VTX_STS_NULL_ARG;
    VTX_STS_T sts = deleteEntry(ctxOf(pNetCtx, pOutline), pOutline, pItem, pszString, usAliasTable, nullptr,
                                isShared(pItem));
    return sts == 1 ? 0 : sts;
}

VTX_STS_T otlHashDeleteItemAliases(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                   VTX_USHORT_T usAliasTable) {
    if (!pOutline || !pItem) return VTX_STS_NULL_ARG;
    if (usAliasTable < 1) return 0;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    // "Not there" is no failure here: a table may never have been entered.
    if (usAliasTable <= pOutline->usNumAliasTables && pItem->AliasArray &&
        pItem->AliasArray[usAliasTable - 1].pszDefName) {
        VTX_STS_T sts = deleteEntry(ctx, pOutline, pItem, pItem->AliasArray[usAliasTable - 1].pszDefName,
                                    usAliasTable, nullptr, isShared(pItem));
        if (sts && sts != 1) return sts;
    }
    if (isLarge(pItem) && L(pItem)->pAliasRec && usAliasTable <= OTL_MAX_ALIAS_TABLES) {
        for (VTX_POTLALIASREC_T a = L(pItem)->pAliasRec[usAliasTable - 1]; a; a = a->pNext) {
            if (!a->pszAlias) continue;
            VTX_STS_T sts = deleteEntry(ctx, pOutline, pItem, a->pszAlias, usAliasTable, nullptr, isShared(pItem));
            if (sts && sts != 1) return sts;
        }
    }
    return 0;
}

VTX_STS_T otlHashDeleteItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem) {
    if (!pOutline || !pItem) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    VTX_ULONG_T dimId = NODE_INDEX_NA;
    VTX_STS_T nameSts = 1;
    if (pItem->MbrInfo.szMember) {
        nameSts = deleteEntry(ctx, pOutline, pItem, pItem->MbrInfo.szMember, 0, &dimId, isShared(pItem));
        if (nameSts && nameSts != 1) return nameSts;
    }
    if (hasHashedShortName(pOutline, pItem)) {
        VTX_STS_T sts = otlHashDeleteShortName(ctx, pOutline, pItem, L(pItem)->Map.AttrMbr.pszShortName, 0);
        if (sts) return sts;
    }
    // Every table: aliases of a table that was never entered answer "not
    // there", and no entry may outlive the text it points to.
    for (VTX_USHORT_T t = 1; t <= pOutline->usNumAliasTables; ++t) {
        VTX_STS_T sts = otlHashDeleteItemAliases(ctx, pOutline, pItem, t);
        if (sts) return sts;
    }
    // The map slot is the member's only while it names this record.
    if (dimId == NODE_INDEX_NA) dimId = dimIdOf(pOutline, pItem);
    if (pItem->mbrId >= 0 &&
        memNum2pItemMapGetPItem(pOutline, static_cast<VTX_ULONG_T>(pItem->mbrId), dimId) == pItem)
        (void)memNum2pItemMapResetItem(ctx, pOutline, dimId, static_cast<VTX_ULONG_T>(pItem->mbrId));  // answers 0
    if (pOutline->cbDeleteMember && pItem->ulHdl32) pOutline->cbDeleteMember(pOutline, pItem, pItem->ulHdl32);
    return nameSts;
}

VTX_STS_T otlHashDeleteItemResetDup(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem) {
    if (!pOutline || !pItem) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    const char *name = pItem->MbrInfo.szMember;
    const bool wasDup = name && pOutline->bNonUniqueName && !isShared(pItem) &&
                        otlIsNameDuplicated(ctx, pOutline, name, 0, nullptr);
    VTX_STS_T sts = otlHashDeleteItem(ctx, pOutline, pItem);
    if (wasDup && (!sts || sts == 1)) clearMarksIfUnique(ctx, pOutline, name);
    return sts;
}

VTX_STS_T otlHashDeleteItemTree(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    return deleteItemTree(ctxOf(pNetCtx, pOutline), pOutline, pItem, false);
}

VTX_STS_T otlHashDeleteItemTreeResetDup(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    return deleteItemTree(ctxOf(pNetCtx, pOutline), pOutline, pItem, true);
}

// ---- chain filters -------------------------------------------------------------------

VTX_POTLMBR_T otlMatchHashString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, void *it, VTX_CSTR_T pszString,
                                 VTX_CSTR_T pszParent, VTX_BOOL_T fCaseSensitive, VTX_BOOL_T fMember,
                                 VTX_BOOL_T fAlias, VTX_USHORT_T usOption, VTX_USHORT_T usAliasTable,
                                 VTX_POTLMBR_T pRequiredDim, VTX_SHORT_T *psCmp) {
    return matchHashString(pNetCtx, pOutline, it, pszString, pszParent, fCaseSensitive, fMember, fAlias, usOption,
                           usAliasTable, pRequiredDim, psCmp);
}

VTX_POTLMBR_T otlMatchHashStringAttribute(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, void *it, VTX_CSTR_T pszString,
                                          VTX_BOOL_T fCaseSensitive, VTX_SHORT_T *psCmp) {
    VTX_SHORT_T scratch;
    if (!psCmp) psCmp = &scratch;
    *psCmp = 1;
    if (!pOutline || !it) return nullptr;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    for (; !extendedHashItEnd(it); (void)extendedHashItIncrement(it)) {
        *psCmp = 0;
        const VTX_ULONG_T idx = extendedHashItGetHashItemIndex(it);
        const char *str = extendedHashItGetStr(it);
        if (idx == NODE_INDEX_NA || !str) continue;
        VTX_POTLHASHITEM_T_EXT item = itemAt(pOutline, idx);
        if (item->usAliasTable != 0) continue;
        VTX_POTLMBR_T m = ownerOf(pOutline, it, item);
        if (!isAttrMember(m)) continue;
        if (fCaseSensitive && pszString && otlStrcmp(ctx, pszString, str) != 0) continue;
        return m;
    }
    *psCmp = 1;
    return nullptr;
}

VTX_POTLMBR_T otlMatchHashStringShared(VTX_POTL_T pOutline, vTX_PNETCTX_T pNetCtx, void *it, VTX_POTLMBR_T pItem,
                                       VTX_CSTR_T pszString, VTX_BOOL_T fCaseSensitive) {
    if (!pOutline || !it) return nullptr;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    VTX_POTLMBR_T orig = nullptr;
    if (pOutline->bNonUniqueName && pItem) orig = originalOf(ctx, pOutline, pItem);
    for (; !extendedHashItEnd(it); (void)extendedHashItIncrement(it)) {
        const VTX_ULONG_T idx = extendedHashItGetHashItemIndex(it);
        const char *str = extendedHashItGetStr(it);
        if (idx == NODE_INDEX_NA || !str) continue;
        if (pszString && !sameText(ctx, pszString, str, fCaseSensitive)) continue;
        VTX_POTLHASHITEM_T_EXT item = itemAt(pOutline, idx);
        if (item->usAliasTable != 0) continue;
        VTX_POTLMBR_T m = ownerOf(pOutline, it, item);
        if (!m || !isShared(m)) continue;
        if (pOutline->bNonUniqueName && originalOf(ctx, pOutline, m) != orig) continue;
        return m;
    }
    return nullptr;
}

VTX_STS_T otlGetNextSharedMember(VTX_POTL_T pOutline, VTX_POTLMBR_T pItem, VTX_POTLMBR_T pAfter,
                                 VTX_POTLMBR_T *ppShared) {
    if (ppShared) *ppShared = nullptr;
    if (!pOutline || !pItem || !ppShared) return VTX_STS_NULL_ARG;
    // A shared member stands for a stored one, never for another share.
    if (isShared(pItem)) return 0;
    const VTX_POTLMBR_T dim = otlGetDim(pItem);
    for (VTX_POTLMBR_T s = nextSharedOnChain(pOutline, pItem, pAfter); s;
         s = nextSharedOnChain(pOutline, pItem, s)) {
        if (otlGetDim(s) == dim) {
            *ppShared = s;
            return 0;
        }
    }
    return 0;
}

// ---- finding -------------------------------------------------------------------------

VTX_STS_T otlHashFindItemByNameEx(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                  VTX_CSTR_T pszParent, VTX_BOOL_T fMember, VTX_BOOL_T fAlias,
                                  VTX_BOOL_T fReturnFirstInCaseOfDuplicates, VTX_USHORT_T usOption,
                                  VTX_USHORT_T usAliasTable, VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem,
                                  HASH_NUM_T *hashNum_, HASH_POS_T *hashPos_) {
    VTX_POTLMBR_T found = nullptr;
    if (ppItem) *ppItem = nullptr;
    if (!pOutline || !ppItem) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    HASH_NUM_T num;
    HASH_POS_T pos;
    VTX_STS_T sts = findByName(ctx, pOutline, pszString, pszParent, fMember, fAlias, fReturnFirstInCaseOfDuplicates,
                               usOption, usAliasTable, pRequiredDim, &found, num, pos, false);
    *ppItem = found;
    if (sts == VTX_STS_NOT_FOUND) {
        sts = otlReport(ctx, VTX_STS_NOT_FOUND, pszString, VTX_MSGARG_STR, nullptr, 0);
    } else if (sts == VTX_STS_NO_MEMORY) {
        sts = otlNoMemory(ctx, "otlHashFindItemByNameEx");
    } else if (sts) {
        sts = otlReport(ctx, VTX_STS_LOOKUP_FAILED, "otlHashFindItemByNameEx", VTX_MSGARG_STR, nullptr, 0);
    }
    if (hashNum_) *hashNum_ = num;
    if (hashPos_) *hashPos_ = pos;
    return sts;
}

VTX_STS_T otlHashFindItemByName(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString, VTX_CSTR_T pszParent,
                                VTX_BOOL_T fMember, VTX_BOOL_T fAlias, VTX_BOOL_T fReturnFirstInCaseOfDuplicates,
                                VTX_USHORT_T usAliasTable, VTX_POTLMBR_T pRequiredDim, VTX_POTLMBR_T *ppItem,
                                HASH_NUM_T *hashNum_, HASH_POS_T *hashPos_) {
    return otlHashFindItemByNameEx(pNetCtx, pOutline, pszString, pszParent, fMember, fAlias,
                                   fReturnFirstInCaseOfDuplicates, OTL_OPT_UNSHARED, usAliasTable, pRequiredDim, ppItem,
                                   hashNum_, hashPos_);
}

VTX_STS_T otlHashFindItemByCombinedName(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                        VTX_BOOL_T fMember, VTX_BOOL_T fAlias, VTX_BOOL_T fReturnFirstInCaseOfDuplicates,
                                        VTX_USHORT_T, VTX_USHORT_T usAliasTable, VTX_POTLMBR_T pRequiredDim,
                                        VTX_POTLMBR_T *ppItem) {
    if (ppItem) *ppItem = nullptr;
    if (!pOutline || !ppItem) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    otl::NameScratch scratch(ctx);
    return findCombined(ctx, pOutline, pszString, fMember, fAlias, fReturnFirstInCaseOfDuplicates, usAliasTable,
                        pRequiredDim, ppItem, scratch);
}

VTX_STS_T otlHashFindItemByMbrName(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                   VTX_POTLMBR_T pRequiredDim, VTX_USHORT_T usOption, VTX_POTLMBR_T *ppItem, void *it) {
    if (!ppItem) return VTX_STS_NULL_ARG;
    VTX_SHORT_T cmp = 1;
    *ppItem = otlMatchHashString(pNetCtx, pOutline, it, pszString, nullptr, pOutline ? pOutline->fCaseSensitive : 0, 1,
                                 0, usOption, 0, pRequiredDim, &cmp);
    return 0;
}

VTX_STS_T otlHashFindItemByAlias(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                 VTX_POTLMBR_T pRequiredDim, VTX_USHORT_T usAliasTable, void *it, VTX_POTLMBR_T *ppItem) {
    if (!ppItem) return VTX_STS_NULL_ARG;
    VTX_SHORT_T cmp = 1;
    *ppItem = otlMatchHashString(pNetCtx, pOutline, it, pszString, nullptr, pOutline ? pOutline->fCaseSensitive : 0, 0,
                                 1, OTL_OPT_ALL, usAliasTable, pRequiredDim, &cmp);
    return 0;
}

VTX_STS_T otlHashFindItemByAliasUnique(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                       VTX_POTLMBR_T pRequiredDim, VTX_USHORT_T usAliasTable, VTX_POTLMBR_T *ppItem) {
    if (ppItem) *ppItem = nullptr;
    if (!pOutline || !ppItem) return VTX_STS_NULL_ARG;
    assert(!pOutline->bNonUniqueName && "!pOutline->bNonUniqueName");
    if (!pszString || !*pszString) return 0;
    ChainIt it;
    if (!placeOn(pOutline->pExtendedHashTable, pszString, it)) return 0;
    for (;; (void)extendedHashItIncrement(it.it())) {
        VTX_POTLMBR_T m = nullptr;
        (void)otlHashFindItemByAlias(pNetCtx, pOutline, pszString, pRequiredDim, usAliasTable, it.it(), &m);
        if (!m) return 0;
        if (!isShared(m)) {
            *ppItem = m;
            return 0;
        }
    }
}

VTX_STS_T otlHashFindOriginalItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pDim,
                                  VTX_POTLMBR_T pSharedMbr, VTX_POTLMBR_T *ppOriginalMbr) {
    if (ppOriginalMbr) *ppOriginalMbr = nullptr;
    if (!pOutline || !pSharedMbr || !ppOriginalMbr) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    const char *name = pSharedMbr->MbrInfo.szMember;
    if ((pOutline->ucStateFlag & OTL_STATE_READING) && otlGetShare(pSharedMbr) == VTX_SHARE_SHARED2) {
        // While an outline is read the stored member is known by name only.
        if (pSharedMbr->OriginalMbr.szOriginalMbr) name = pSharedMbr->OriginalMbr.szOriginalMbr;
    } else if (pSharedMbr->OriginalMbr.hOriginalMbr) {
        *ppOriginalMbr = pSharedMbr->OriginalMbr.hOriginalMbr;
        return 0;
    }
    if (!name) return 0;
    HASH_NUM_T num;
    HASH_POS_T pos;
    VTX_STS_T sts = findByName(ctx, pOutline, name, nullptr, 1, 0, 1, OTL_OPT_UNSHARED, 0, pDim, ppOriginalMbr, num,
                               pos, true);
    if (!sts && !*ppOriginalMbr && pOutline->ucCallerType == 2)
        sts = findByName(ctx, pOutline, name, nullptr, 0, 1, 1, OTL_OPT_UNSHARED, 2, pDim, ppOriginalMbr, num, pos,
                         true);
    return sts;
}

VTX_STS_T otlFindAttributeMember(VTX_POTL_T pOutline, VTX_CSTR_T pszMember, VTX_POTLMBR_T *ppAttributeMember,
                                 void *it) {
    if (ppAttributeMember) *ppAttributeMember = nullptr;
    if (!pOutline || !ppAttributeMember) return VTX_STS_NULL_ARG;
    if (!it || extendedHashItEnd(it)) return 0;
    vTX_PNETCTX_T ctx = pOutline->pNetCtx;
    const char *text = pszMember;
    otl::NameScratch scratch(ctx);
    otl::PathSegments segs;
    if (pOutline->bNonUniqueName && pszMember) {
        VTX_STS_T sts = otl::otlParsePath(pszMember, VTX_MAX_PATH_DEPTH, scratch, segs);
        if (sts) return sts;
        if (segs.count) text = segs.seg[segs.count - 1];
    }
    VTX_SHORT_T cmp = 1;
    *ppAttributeMember = otlMatchHashStringAttribute(ctx, pOutline, it, text, pOutline->fCaseSensitive, &cmp);
    return 0;
}

// ---- duplicate names -----------------------------------------------------------------

void otlMatchHashDupNameString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, void *it, VTX_CSTR_T pszString,
                               VTX_BOOL_T fCaseSensitive, VTX_BOOL_T fMember, VTX_BOOL_T fAlias,
                               VTX_USHORT_T usAliasTable, VTX_BOOL_T fAny, VTX_SHORT_T *psCmp) {
    VTX_SHORT_T scratch;
    if (!psCmp) psCmp = &scratch;
    *psCmp = 1;
    if (!pOutline || !it || !pszString) return;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    for (; !extendedHashItEnd(it); (void)extendedHashItIncrement(it)) {
        *psCmp = 0;
        const VTX_ULONG_T idx = extendedHashItGetHashItemIndex(it);
        const char *str = extendedHashItGetStr(it);
        if (idx == NODE_INDEX_NA || !str) continue;
        if (!sameText(ctx, pszString, str, fCaseSensitive)) continue;
        VTX_POTLDUPNAME_T rec = otlHashItemsDupFactoryGetOtlDupName(pOutline->otlDupNameFactory, idx);
        if (fAny) return;
        if (fMember && rec->usCount[0]) return;
        if (fAlias && usAliasTable == 0 && (rec->usTotalCount > rec->usCount[0] || rec->usCount[0])) return;
        if (fAlias && usAliasTable && usAliasTable < VTX_DUPNAME_TABLES && rec->usCount[usAliasTable]) return;
    }
    *psCmp = 1;
}

VTX_STS_T otlHashDupNameAddString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                  VTX_USHORT_T usAliasTable) {
    if (!pOutline || !pszString) return VTX_STS_NULL_ARG;
    if (!pOutline->bNonUniqueName) return 0;
    if (usAliasTable >= VTX_DUPNAME_TABLES) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    if (!pOutline->pExtendedHashTableDupName || !pOutline->otlDupNameFactory) {
        if (VTX_STS_T sts = makeDupNameStore(ctx, pOutline)) return sts;
    }
    HASH_NUM_T num;
    HASH_POS_T pos;
    VTX_STS_T sts = lookup(pOutline->pExtendedHashTableDupName, pszString, num, pos);
    if (sts) return sts;
    ChainIt it;
    if (place(pOutline->pExtendedHashTableDupName, it, num, pos)) {
        if (VTX_POTLDUPNAME_T rec = matchDup(ctx, pOutline, it.it(), pszString, 1, 1, usAliasTable, 1)) {
            rec->usCount[usAliasTable]++;
            rec->usTotalCount++;
            return 0;
        }
    }
    // A new record keeps a text of its own from the start: the key of its
    // entry must stay readable for as long as the entry lives, whichever
    // member goes first.
    char *copy = nullptr;
    sts = otlStrdup(ctx, pszString, &copy);
    if (!sts && !copy) sts = VTX_STS_NO_MEMORY;
    if (sts) return sts;
    const VTX_ULONG_T idx = pOutline->otlDupNameFactoryNextFreeIndex;
    sts = otlHashItemsDupFactoryAddItem(ctx, pOutline->otlDupNameFactory, &pOutline->otlDupNameFactoryNextFreeIndex,
                                        copy, usAliasTable);
    if (!sts) {
        VTX_POTLDUPNAME_T rec = otlHashItemsDupFactoryGetOtlDupName(pOutline->otlDupNameFactory, idx);
        rec->bNew = 1;
        sts = extendedHashInsert(pOutline->pExtendedHashTableDupName, idx, copy, &num, &pos);
        if (sts) {
            std::memset(rec, 0, sizeof *rec);
            pOutline->otlDupNameFactoryNextFreeIndex = idx;
        }
    }
    if (sts) (void)otlFreeMem(ctx, copy);  // the record was not made: its text goes
    return sts;
}

VTX_STS_T otlHashDupNameDeleteString(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                                     VTX_USHORT_T usAliasTable) {
    if (!pOutline || !pszString) return VTX_STS_NULL_ARG;
    if (!pOutline->pExtendedHashTableDupName || usAliasTable >= VTX_DUPNAME_TABLES) return 0;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    HASH_NUM_T num;
    HASH_POS_T pos;
    VTX_STS_T sts = lookup(pOutline->pExtendedHashTableDupName, pszString, num, pos);
    if (sts) return sts;
    ChainIt it;
    if (!place(pOutline->pExtendedHashTableDupName, it, num, pos)) return 0;
    VTX_POTLDUPNAME_T rec = matchDup(ctx, pOutline, it.it(), pszString, usAliasTable == 0, usAliasTable != 0,
                                     usAliasTable, 0);
    if (!rec) return 0;
    if (rec->usCount[usAliasTable]) rec->usCount[usAliasTable]--;
    if (rec->usTotalCount) rec->usTotalCount--;
    if (rec->usTotalCount == 0) {
        const VTX_ULONG_T idx = extendedHashItGetHashItemIndex(it.it());
        // The entry goes before the text its key points to.
        (void)extendedHashItSetDeleted(it.it());  // placed by a lookup: it may delete
        if (rec->bNew) (void)otlFreeMem(ctx, rec->pszString);  // the record is gone: nothing waits on the release
        rec->pszString = nullptr;
        rec->bNew = 0;
        // The newest record goes back to the factory, cleared for its next use.
        if (idx + 1 == pOutline->otlDupNameFactoryNextFreeIndex) {
            std::memset(rec, 0, sizeof *rec);
            pOutline->otlDupNameFactoryNextFreeIndex = idx;
        }
    }
    return 0;
}

VTX_BOOL_T otlIsNameDuplicated(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszString,
                               VTX_USHORT_T usAliasTable, VTX_ULONG_T *pulCount) {
    if (pulCount) *pulCount = 0;
    // Repeated texts are counted only where duplicates are allowed.
    if (!pOutline || !pszString || !pOutline->bNonUniqueName || !pOutline->pExtendedHashTableDupName ||
        usAliasTable >= VTX_DUPNAME_TABLES)
        return 0;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    ChainIt it;
    if (!placeOn(pOutline->pExtendedHashTableDupName, pszString, it)) return 0;
    VTX_POTLDUPNAME_T rec = matchDup(ctx, pOutline, it.it(), pszString, usAliasTable == 0, usAliasTable != 0,
                                     usAliasTable, 0);
    if (!rec) return 0;
    if (pulCount) *pulCount = rec->usCount[usAliasTable];
    return 1;
}

VTX_LONG_T otlGetHashDupNameIndex(vTX_PNETCTX_T pNetCtx, VTX_CSTR_T pszString, VTX_POTLDUPNAME_T pHashDupNameArray,
                                  VTX_LONG_T lHigh) {
    if (!pszString || !pHashDupNameArray || lHigh < 0) return 0;
    VTX_LONG_T lo = 0, hi = lHigh, mid = 0;
    int cmp = 0;
    while (lo <= hi) {
        mid = lo + (hi - lo) / 2;
        const char *e = pHashDupNameArray[mid].pszString;
        // A record without text sorts after every text.
        cmp = e ? otlStricmp(pNetCtx, pszString, e) : -1;
        if (cmp == 0) return mid;
        if (cmp < 0) hi = mid - 1;
        else lo = mid + 1;
    }
    return cmp > 0 ? mid + 1 : mid;
}

void otlHashClearDupMarksIfUnique(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_CSTR_T pszName) {
    if (!pOutline || !pszName || !pOutline->bNonUniqueName) return;
    clearMarksIfUnique(ctxOf(pNetCtx, pOutline), pOutline, pszName);
}

void otlMbrClearDuplicateItem(VTX_POTLMBR_T pItem) {
    if (!pItem) return;
    // On a dimension the bit says that duplicates are allowed in it.
    if (pItem->MbrInfo.usGen > 1) pItem->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_DUP;
    pItem->ucNameUnique = 0;
}

// ---- sibling and dimension tests ---------------------------------------------------

VTX_BOOL_T otlHashIsNameDupAmongSiblings(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pParent,
                                         VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable, VTX_POTLMBR_T *ppMbr,
                                         HASH_NUM_T *hashNum, HASH_POS_T *hashPos) {
    if (ppMbr) *ppMbr = nullptr;
    if (!pOutline || !pParent || !pszString || !pOutline->pExtendedHashTable) return 0;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    VTX_ULONG_T count = 0;
    if (otlIsNameDuplicated(ctx, pOutline, pszString, usAliasTable, &count) && pParent->ulSiblingCount <= count) {
        // More bearers than children: the children are the shorter walk.
        for (VTX_POTLMBR_T c = pParent->pChild; c; c = c->pSibling) {
            if (OTL_IS_HIDDEN(c) || !c->MbrInfo.szMember) continue;
            if (otlCompareNames(pOutline, c->MbrInfo.szMember, pszString) == 0) {
                if (ppMbr) *ppMbr = c;
                return 1;
            }
        }
        return 0;
    }
    HASH_NUM_T localNum = OTL_HASH_NONE;
    HASH_POS_T localPos = OTL_HASH_NONE;
    if (!hashNum || !hashPos) {
        hashNum = &localNum;
        hashPos = &localPos;
    }
    if (*hashNum == NODE_INDEX_DEL &&
        extendedHashGetPos(pOutline->pExtendedHashTable, pszString, hashNum, hashPos) != 0) {
        *hashNum = NODE_INDEX_DEL;
        return 0;
    }
    ChainIt it;
    if (!place(pOutline->pExtendedHashTable, it, *hashNum, *hashPos)) return 0;
    for (;; (void)extendedHashItIncrement(it.it())) {
        VTX_SHORT_T cmp = 1;
        VTX_POTLMBR_T m = otlMatchHashString(ctx, pOutline, it.it(), pszString, nullptr, pOutline->fCaseSensitive,
                                             usAliasTable == 0, usAliasTable != 0, OTL_OPT_ALL, usAliasTable, nullptr,
                                             &cmp);
        if (!m) return 0;
        if (m->pParent == pParent) {
            if (ppMbr) *ppMbr = m;
            return 1;
        }
    }
}

VTX_BOOL_T otlHashIsNameDupAmongSiblings2(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItemIn,
                                          VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable) {
    if (!pOutline || !pItemIn || !pszString) return 0;
    VTX_POTLMBR_T parent = pItemIn->pParent;
    if (!parent) return 0;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    ChainIt it;
    if (!placeOn(pOutline->pExtendedHashTable, pszString, it)) return 0;
    for (;; (void)extendedHashItIncrement(it.it())) {
        VTX_SHORT_T cmp = 1;
        VTX_POTLMBR_T m = otlMatchHashString(ctx, pOutline, it.it(), pszString, nullptr, pOutline->fCaseSensitive, 0, 1,
                                             OTL_OPT_ALL, usAliasTable, nullptr, &cmp);
        if (!m) return 0;
        if (m != pItemIn && m->pParent == parent) return 1;
    }
}

VTX_BOOL_T otlHashIsNameDupAmongSiblingsGetOriginal(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pParent,
                                                    VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable,
                                                    VTX_POTLMBR_T *ppMbr, VTX_POTLMBR_T *ppOriginal) {
    if (ppMbr) *ppMbr = nullptr;
    if (ppOriginal) *ppOriginal = nullptr;
    if (!pOutline || !pszString) return 0;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    ChainIt it;
    if (!placeOn(pOutline->pExtendedHashTable, pszString, it)) return 0;
    VTX_POTLMBR_T sibling = nullptr, original = nullptr;
    for (; !(sibling && original); (void)extendedHashItIncrement(it.it())) {
        VTX_SHORT_T cmp = 1;
        VTX_POTLMBR_T m = otlMatchHashString(ctx, pOutline, it.it(), pszString, nullptr, pOutline->fCaseSensitive,
                                             usAliasTable == 0, usAliasTable != 0, OTL_OPT_ALL, usAliasTable, nullptr,
                                             &cmp);
        if (!m) break;
        if (!sibling && pParent && m->pParent == pParent) sibling = m;
        if (!original && !isShared(m)) original = m;
    }
    if (ppMbr) *ppMbr = sibling;
    if (ppOriginal) *ppOriginal = original;
    return sibling ? 1 : 0;
}

VTX_BOOL_T otlIsNameExistInDimension(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pDim,
                                     VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable, VTX_POTLMBR_T *pMember) {
    VTX_POTLMBR_T skip = pMember ? *pMember : nullptr;
    if (pMember) *pMember = nullptr;
    if (!pOutline || !pszString) return 0;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    ChainIt it;
    if (!placeOn(pOutline->pExtendedHashTable, pszString, it)) return 0;
    for (;; (void)extendedHashItIncrement(it.it())) {
        VTX_SHORT_T cmp = 1;
        VTX_POTLMBR_T m = otlMatchHashString(ctx, pOutline, it.it(), pszString, nullptr, pOutline->fCaseSensitive,
                                             usAliasTable == 0, usAliasTable != 0, OTL_OPT_UNSHARED, usAliasTable, pDim,
                                             &cmp);
        if (!m) return 0;
        if (m != skip) {
            if (pMember) *pMember = m;
            return 1;
        }
    }
}

VTX_BOOL_T otlIsNameExistInDimensionAtGenLevel(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pDim,
                                               VTX_POTLMBR_T pParent, VTX_CSTR_T pszString, VTX_USHORT_T usAliasTable,
                                               VTX_BOOL_T fGen, VTX_POTLMBR_T *pMember) {
    VTX_POTLMBR_T skip = pMember ? *pMember : nullptr;
    if (pMember) *pMember = nullptr;
    if (!pOutline || !pszString || !pParent) return 0;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    const VTX_USHORT_T target = fGen ? (VTX_USHORT_T)(pParent->MbrInfo.usGen + 1)
                                     : (VTX_USHORT_T)(pParent->MbrInfo.usLevel ? pParent->MbrInfo.usLevel - 1 : 0);
    ChainIt it;
    if (!placeOn(pOutline->pExtendedHashTable, pszString, it)) return 0;
    for (;; (void)extendedHashItIncrement(it.it())) {
        VTX_SHORT_T cmp = 1;
        VTX_POTLMBR_T m = otlMatchHashString(ctx, pOutline, it.it(), pszString, nullptr, pOutline->fCaseSensitive, 0, 1,
                                             OTL_OPT_UNSHARED, usAliasTable, pDim, &cmp);
        if (!m) return 0;
        if (m == skip) continue;
        // The parent is measured as it will be once it has the new child.
        VTX_USHORT_T at = fGen ? m->MbrInfo.usGen : m->MbrInfo.usLevel;
        if (!fGen && m == pParent) at = (VTX_USHORT_T)(at + 1);
        if (at == target) {
            if (pMember) *pMember = m;
            return 1;
        }
    }
}

VTX_BOOL_T adShrOtlIsGenLevUniqueNameSet(VTX_HOUTLINE_T, VTX_POTLMBR_T pDim, VTX_BOOL_T fGen, VTX_USHORT_T usGenLevel) {
    if (!isLarge(pDim)) return 0;
    for (VTX_PNAMELIST_T n = L(pDim)->pNameList; n; n = n->pNext)
        if ((n->fGen != 0) == (fGen != 0) && n->usGenOrLevel == usGenLevel && n->fUniqueName) return 1;
    return 0;
}

// ---- uniqueness state of a verification ------------------------------------------
//
// pDupMbrArry holds, per dimension in dimension order, a byte of rules and
// findings per generation and level number, and the members of that
// dimension whose name repeats anywhere.  It is one block: the records,
// then the member lists they point into, so that the outline frees it as a
// whole.

} // extern "C"

namespace {

constexpr VTX_UCHAR_T kDnuRepeats = 0x01;     // index 0 and 1: a name repeats in the dimension
constexpr VTX_UCHAR_T kDnuAtGen = 0x02;       // two unshared members of this generation share a name
constexpr VTX_UCHAR_T kDnuAtLevel = 0x04;     // the same for a level
constexpr VTX_UCHAR_T kDnuDimUnique = 0x20;   // index 0: the dimension allows no duplicates
constexpr VTX_UCHAR_T kDnuGenUnique = 0x40;   // this generation demands unique names
constexpr VTX_UCHAR_T kDnuLevelUnique = 0x80; // this level demands unique names

unsigned countDims(VTX_POTL_T o) {
    unsigned n = 0;
    if (o->pHeadItem)
        for (VTX_POTLMBR_T d = o->pHeadItem->pChild; d; d = d->pSibling) ++n;
    return n;
}

// The position of a dimension record among the dimensions, or -1.
int dimIndex(VTX_POTL_T o, VTX_POTLMBR_T dim) {
    int i = 0;
    if (dim && o->pHeadItem)
        for (VTX_POTLMBR_T d = o->pHeadItem->pChild; d; d = d->pSibling, ++i)
            if (d == dim) return i;
    return -1;
}

VTX_POTLMBR_T *dupMembers(VTX_PDUPMBRARRY_T rec) { return static_cast<VTX_POTLMBR_T *>(rec->pDupMbrs); }

// Every member below pTop, hidden ones included.
template <class F>
void forEachBelow(VTX_POTLMBR_T pTop, F &&f) {
    for (VTX_POTLMBR_T c = pTop->pChild; c; c = c->pSibling) {
        f(c);
        forEachBelow(c, f);
    }
}

// Each member that bears the text as its name and holds data of its own
// (stored, or shared in the second form), in chain order.
template <class F>
void forEachNameOwner(vTX_PNETCTX_T ctx, VTX_POTL_T o, const char *name, F &&f) {
    ChainIt it;
    if (!placeOn(o->pExtendedHashTable, name, it)) return;
    for (;; (void)extendedHashItIncrement(it.it())) {
        VTX_SHORT_T cmp = 1;
        VTX_POTLMBR_T m = otlMatchHashString(ctx, o, it.it(), name, nullptr, o->fCaseSensitive, 1, 0,
                                             OTL_OPT_UNSHARED | OTL_OPT_SHARED9, 0, nullptr, &cmp);
        if (!m) return;
        f(m);
    }
}

// Each live record of the duplicate hash that counts member names.
template <class F>
void forEachRepeatedName(VTX_POTL_T o, F &&f) {
    if (!o->otlDupNameFactory) return;
    for (VTX_ULONG_T i = 0; i < o->otlDupNameFactoryNextFreeIndex; ++i) {
        VTX_POTLDUPNAME_T rec = otlHashItemsDupFactoryGetOtlDupName(o->otlDupNameFactory, i);
        if (rec && rec->pszString && rec->usTotalCount && rec->usCount[0]) f(rec->pszString);
    }
}

// Adds ulErrors4 bits for pItem to a list of findings, merged with an entry
// the member has already.  The list grows 50 entries at a time.
VTX_STS_T addFinding(vTX_PNETCTX_T ctx, VTX_POTLMBR_T pItem, VTX_ULONG_T bits4, VTX_POUTERROR_T *ppList,
                     VTX_ULONG_T *pCount) {
    if (!ppList || !pCount) return 0;
    for (VTX_ULONG_T i = 0; i < *pCount; ++i)
        if ((*ppList)[i].hMember == pItem) {
            (*ppList)[i].ulErrors4 |= bits4;
            return 0;
        }
    if (*pCount % 50 == 0) {
        void *grown = nullptr;
        VTX_STS_T sts = otlReallocEx(ctx, *ppList, (*pCount + 50) * sizeof(VTX_OUTERROR_T), &grown);
        if (sts || !grown) return sts ? sts : VTX_STS_NO_MEMORY;
        *ppList = static_cast<VTX_POUTERROR_T>(grown);
    }
    VTX_OUTERROR_T &e = (*ppList)[(*pCount)++];
    std::memset(&e, 0, sizeof e);
    e.hMember = pItem;
    e.ulErrors = 0x40000000u;  // a finding of the fourth word
    e.ulErrors4 = bits4;
    return 0;
}

} // namespace

extern "C" {

VTX_BOOL_T otlHashIsItemDupNameLegal(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItemIn,
                                     VTX_BOOL_T bCheckDim, VTX_BOOL_T *pfDim, VTX_BOOL_T bCheckGen,
                                     VTX_BOOL_T bCheckLev, VTX_BOOL_T *pfGen) {
    if (pfDim) *pfDim = 0;
    if (pfGen) *pfGen = 0;
    if (!pOutline || !pItemIn || !pItemIn->MbrInfo.szMember) return 0;
    vTX_PNETCTX_T ctx = ctxOf(pNetCtx, pOutline);
    VTX_POTLMBR_T dim = otlGetDim(pItemIn);
    if (bCheckDim && dim && !(dim->ucFlags & OTL_FLAG_DUP)) {
        if (pfDim) *pfDim = 1;
        return 0;
    }
    // Only a generation or level that demands unique names is checked.
    if (bCheckGen && !adShrOtlIsGenLevUniqueNameSet(pOutline, dim, 1, pItemIn->MbrInfo.usGen)) bCheckGen = 0;
    if (bCheckLev && !adShrOtlIsGenLevUniqueNameSet(pOutline, dim, 0, pItemIn->MbrInfo.usLevel)) bCheckLev = 0;
    if (!bCheckGen && !bCheckLev) return 1;
    ChainIt it;
    if (!placeOn(pOutline->pExtendedHashTable, pItemIn->MbrInfo.szMember, it)) return 0;
    for (;; (void)extendedHashItIncrement(it.it())) {
        VTX_SHORT_T cmp = 1;
        VTX_POTLMBR_T m = otlMatchHashString(ctx, pOutline, it.it(), pItemIn->MbrInfo.szMember, nullptr,
                                             pOutline->fCaseSensitive, 1, 0, OTL_OPT_UNSHARED, 0, dim, &cmp);
        if (!m) return 1;
        if (m == pItemIn) continue;
        if (bCheckGen && m->MbrInfo.usGen == pItemIn->MbrInfo.usGen) {
            if (pfGen) *pfGen = 1;
            return 0;
        }
        if (bCheckLev && m->MbrInfo.usLevel == pItemIn->MbrInfo.usLevel) return 0;
    }
}

VTX_BOOL_T otlIsItemDupNameLegal(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline, VTX_POTLMBR_T pItem,
                                 VTX_UCHAR_T ucNameUnique, VTX_BOOL_T *pfDim, VTX_BOOL_T *pfGen) {
    if (pfDim) *pfDim = 0;
    if (pfGen) *pfGen = 0;
    if (!pOutline || !pItem) return 0;
    VTX_POTLMBR_T dim = otlGetDim(pItem);
    const int d = dimIndex(pOutline, dim);
    if (d < 0) return 0;
    if (!(dim->ucFlags & OTL_FLAG_DUP)) {
        if (pfDim) *pfDim = 1;
        return 0;
    }
    if (otlMbrIsSharedShare(pItem)) return 1;
    VTX_PDUPMBRARRY_T arr = pOutline->pDupMbrArry;
    if (!arr || d >= arr[0].ucArrySize) {
        // No verification has run: ask the index.
        return otlHashIsItemDupNameLegal(pNetCtx, pOutline, pItem, 0, pfDim, 1, 1, pfGen);
    }
    const VTX_UCHAR_T *bytes = arr[d].pDimNonUnique;
    const VTX_UCHAR_T g = bytes[pItem->MbrInfo.usGen & 0xff];
    const VTX_UCHAR_T l = bytes[pItem->MbrInfo.usLevel & 0xff];
    if (!(g & kDnuGenUnique) && !(l & kDnuLevelUnique)) return 1;
    const bool checkGen = (g & kDnuGenUnique) && (g & kDnuAtGen) && (ucNameUnique & OTL_NU_AT_GEN);
    if ((l & kDnuLevelUnique) && (l & kDnuAtLevel) && (ucNameUnique & OTL_NU_AT_LEVEL))
        return otlHashIsItemDupNameLegal(pNetCtx, pOutline, pItem, 0, pfDim, checkGen, 1, pfGen);
    if (checkGen) return otlHashIsItemDupNameLegal(pNetCtx, pOutline, pItem, 0, pfDim, 1, 0, pfGen);
    return 1;
}

VTX_STS_T otlVerifySetDupMbrArry(VTX_POTL_T pOutline) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = pOutline->pNetCtx;
    // The block is sized by what it lists, so each verification makes it anew.
    (void)otlFreeMem(ctx, pOutline->pDupMbrArry);  // a block of ours: nothing to report
    pOutline->pDupMbrArry = nullptr;
    const unsigned nDims = countDims(pOutline);
    if (nDims == 0) return 0;
    // The findings of the last verification go.
    for (VTX_POTLMBR_T d = pOutline->pHeadItem->pChild; d; d = d->pSibling)
        forEachBelow(d, [](VTX_POTLMBR_T m) {
            m->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_DUP;
            m->ucNameUnique = 0;
        });
    // First the size: the bearers of repeated names in each dimension.
    VTX_ULONG_T perDim[OTL_MAX_DIMS + 1] = {};
    VTX_ULONG_T total = 0;
    forEachRepeatedName(pOutline, [&](const char *name) {
        forEachNameOwner(ctx, pOutline, name, [&](VTX_POTLMBR_T m) {
            const int d = dimIndex(pOutline, otlGetDim(m));
            if (d < 0) return;
            ++perDim[d];
            ++total;
        });
    });
    const size_t head = nDims * sizeof(VTX_DUPMBRARRY_T);
    void *block = nullptr;
    VTX_STS_T sts = otlAlloc(ctx, head + total * sizeof(VTX_POTLMBR_T), &block);
    if (sts || !block) return sts ? sts : VTX_STS_NO_MEMORY;
    std::memset(block, 0, head + total * sizeof(VTX_POTLMBR_T));
    VTX_PDUPMBRARRY_T arr = static_cast<VTX_PDUPMBRARRY_T>(block);
    VTX_POTLMBR_T *lists = reinterpret_cast<VTX_POTLMBR_T *>(static_cast<char *>(block) + head);
    arr[0].ucArrySize = (VTX_UCHAR_T)nDims;
    unsigned i = 0;
    VTX_ULONG_T offset = 0;
    for (VTX_POTLMBR_T dim = pOutline->pHeadItem->pChild; dim; dim = dim->pSibling, ++i) {
        arr[i].pDupMbrs = lists + offset;
        offset += perDim[i];
        VTX_UCHAR_T *bytes = arr[i].pDimNonUnique;
        if (!(dim->ucFlags & OTL_FLAG_DUP)) bytes[0] |= kDnuDimUnique;
        const unsigned depth = dim->MbrInfo.usLevel;
        for (unsigned g = 2; g <= depth + 1 && g < 256; ++g)
            if (adShrOtlIsGenLevUniqueNameSet(pOutline, dim, 1, (VTX_USHORT_T)g)) bytes[g] |= kDnuGenUnique;
        for (unsigned l = 0; l <= depth && l < 256; ++l)
            if (adShrOtlIsGenLevUniqueNameSet(pOutline, dim, 0, (VTX_USHORT_T)l)) bytes[l] |= kDnuLevelUnique;
    }
    pOutline->pDupMbrArry = arr;
    // Then the lists and the findings, one repeated name at a time.
    forEachRepeatedName(pOutline, [&](const char *name) {
        VTX_ULONG_T before[OTL_MAX_DIMS + 1];
        for (unsigned d = 0; d < nDims; ++d) before[d] = arr[d].ulDupCount;
        forEachNameOwner(ctx, pOutline, name, [&](VTX_POTLMBR_T m) {
            const int d = dimIndex(pOutline, otlGetDim(m));
            if (d < 0 || arr[d].ulDupCount >= perDim[d]) return;
            m->ucNameUnique |= OTL_NU_DUP;
            dupMembers(&arr[d])[arr[d].ulDupCount++] = m;
        });
        for (unsigned d = 0; d < nDims; ++d) {
            VTX_POTLMBR_T *owners = dupMembers(&arr[d]) + before[d];
            const VTX_ULONG_T n = arr[d].ulDupCount - before[d];
            if (n < 2) continue;
            VTX_UCHAR_T *bytes = arr[d].pDimNonUnique;
            bytes[0] |= kDnuRepeats;
            bytes[1] |= kDnuRepeats;
            for (VTX_ULONG_T j = 0; j < n; ++j) owners[j]->ucNameUnique |= OTL_NU_IN_DIM;
            for (VTX_ULONG_T j = 0; j < n; ++j)
                for (VTX_ULONG_T k = j + 1; k < n; ++k) {
                    VTX_POTLMBR_T a = owners[j], b = owners[k];
                    const bool stored = !otlMbrIsSharedShare(a) && !otlMbrIsSharedShare(b);
                    if (a->MbrInfo.usGen == b->MbrInfo.usGen) {
                        a->ucNameUnique |= OTL_NU_AT_GEN;
                        b->ucNameUnique |= OTL_NU_AT_GEN;
                        if (stored) bytes[a->MbrInfo.usGen & 0xff] |= kDnuAtGen;
                    }
                    if (a->MbrInfo.usLevel == b->MbrInfo.usLevel) {
                        a->ucNameUnique |= OTL_NU_AT_LEVEL;
                        b->ucNameUnique |= OTL_NU_AT_LEVEL;
                        if (stored) bytes[a->MbrInfo.usLevel & 0xff] |= kDnuAtLevel;
                    }
                }
        }
    });
    return 0;
}

VTX_STS_T otlVerifySetNonUniqueName(VTX_POTL_T pOutline, VTX_POUTERROR_T *ppMbrErrors, VTX_ULONG_T *pulCount) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    VTX_PDUPMBRARRY_T arr = pOutline->pDupMbrArry;
    if (!arr) return 0;
    // The keys are chosen by the marks just set, which hold only while a
    // verify or a save runs; outside one the members are only marked.
    const bool keys = (pOutline->ucStateFlag & (OTL_STATE_VERIFYING | OTL_STATE_WRITING)) != 0;
    for (unsigned d = 0; d < arr[0].ucArrySize; ++d)
        for (VTX_ULONG_T j = 0; j < arr[d].ulDupCount; ++j) {
            VTX_POTLMBR_T m = dupMembers(&arr[d])[j];
            VTX_POTLMBR_T dim = otlGetDim(m);
            if (!dim) return otlReport(pOutline->pNetCtx, VTX_STS_NO_DIM_FOUND, "otlVerifySetNonUniqueName",
                                       VTX_MSGARG_STR, nullptr, 0);
            // A dimension record keeps the bit for its own rule, and its
            // name is its key.
            if (m->MbrInfo.usGen <= 1) continue;
            m->ucFlags |= OTL_FLAG_DUP;
            if (!keys) continue;
            // No list: the dimension's own generation and level names serve.
            const VTX_STS_T sts = adShrOtlSetMemberKey(pOutline, dim, nullptr, m);
            // A key too long is the member's fault, listed like the other
            // findings of a verification (0x2 of the fourth word); the
            // other members still get theirs.
            if (sts == VTX_STS_KEY_TOO_LONG) {
                if (VTX_STS_T lsts = addFinding(pOutline->pNetCtx, m, 0x2, ppMbrErrors, pulCount)) return lsts;
                continue;
            }
            if (sts) return sts;
        }
    return 0;
}

VTX_ULONG_T otlVerifyNameUniqueness(VTX_POTL_T pOutline, VTX_POUTERROR_T *ppMbrErrors, VTX_ULONG_T *pulCount) {
    if (!pOutline || !pOutline->pDupMbrArry) return 0;
    VTX_PDUPMBRARRY_T arr = pOutline->pDupMbrArry;
    VTX_ULONG_T illegal = 0;
    for (unsigned d = 0; d < arr[0].ucArrySize; ++d)
        for (VTX_ULONG_T j = 0; j < arr[d].ulDupCount; ++j) {
            VTX_POTLMBR_T m = dupMembers(&arr[d])[j];
            VTX_BOOL_T fDim = 0, fGen = 0;
            if (otlIsItemDupNameLegal(pOutline->pNetCtx, pOutline, m, m->ucNameUnique, &fDim, &fGen)) continue;
            ++illegal;
            // 0x4: the dimension wants unique names; 0x8: a generation; 0x10: a level.
            const VTX_ULONG_T bits = fDim ? 0x4 : (fGen ? 0x8 : 0x10);
            (void)addFinding(pOutline->pNetCtx, m, bits, ppMbrErrors, pulCount);  // the count stands even when the list cannot grow
        }
    return illegal;
}

// ---- dimension name filter ------------------------------------------------------

VTX_BOOL_T bBloomFilterActive = 0;

} // extern "C"

namespace {

// The filter's bits end at 4098, in the first three bits of its last byte;
// the top bit of that byte tells that this outline's filter is loaded, so
// two outlines open at once never read each other's state.
constexpr unsigned kBloomActiveByte = OTL_BLOOM_BYTES - 1;
constexpr VTX_UCHAR_T kBloomActiveBit = 0x80;
static_assert(4099 <= kBloomActiveByte * 8 + 7, "the active bit must lie past the filter's bits");

inline bool bloomActive(VTX_POTL_T o) { return (o->dimBloomFilter[kBloomActiveByte] & kBloomActiveBit) != 0; }

inline void bloomSet(VTX_POTL_T o, const char *name) {
    const VTX_ULONG_T bit = otlIsNameDupAmongDimensionsBloomFilterHashIdFunction(o, name);
    o->dimBloomFilter[bit / 8] |= static_cast<VTX_UCHAR_T>(1u << (bit % 8));
}

} // namespace

extern "C" {

VTX_ULONG_T otlIsNameDupAmongDimensionsBloomFilterHashIdFunction(VTX_POTL_T pOutline, VTX_CSTR_T name) {
    char folded[VTX_MBRNAME_LEN];
    const char *text = name ? name : "";
    if (pOutline && !pOutline->fCaseSensitive && *text) {
        int n = adGlobStrMapToUpper(pOutline->pLocale, folded, sizeof folded, text, -1, 0x80000025);
        if (n >= 0) text = folded;
    }
    VTX_ULONG64_T h = 5381;
    for (const char *p = text; *p; ++p)
        h = h * 33 + static_cast<VTX_ULONG64_T>(static_cast<int64_t>(static_cast<signed char>(*p)));
    return static_cast<VTX_ULONG_T>(h % 4099);
}

VTX_BOOL_T otlIsNameDupAmongDimensionsBloomFilter(VTX_POTL_T pOutline, VTX_CSTR_T name) {
    if (!pOutline) return 0;
    const VTX_ULONG_T bit = otlIsNameDupAmongDimensionsBloomFilterHashIdFunction(pOutline, name);
    return (pOutline->dimBloomFilter[bit / 8] >> (bit % 8)) & 1;
}

void otlIsNameDupAmongDimensionsBloomFilterLoadDimNames(VTX_POTL_T pOutline) {
    if (!pOutline) return;
    std::memset(pOutline->dimBloomFilter, 0, sizeof pOutline->dimBloomFilter);
    if (pOutline->pHeadItem)
        for (VTX_POTLMBR_T d = pOutline->pHeadItem->pChild; d; d = d->pSibling) bloomSet(pOutline, d->MbrInfo.szMember);
    pOutline->dimBloomFilter[kBloomActiveByte] |= kBloomActiveBit;
    bBloomFilterActive = 1;
}

void otlIsNameDupAmongDimensionsBloomFilterClear(VTX_POTL_T pOutline) {
    if (pOutline) pOutline->dimBloomFilter[kBloomActiveByte] &= (VTX_UCHAR_T)~kBloomActiveBit;
    bBloomFilterActive = 0;
}

VTX_BOOL_T otlIsNameDupAmongDimensionsBloomFilterActive(VTX_POTL_T pOutline) {
    return pOutline && bloomActive(pOutline) ? 1 : 0;
}

void otlIsNameDupAmongDimensionsBloomFilterAddName(VTX_POTL_T pOutline, VTX_CSTR_T name) {
    // A dimension name that goes is left in: the filter may only answer
    // "maybe" too often, never "no" wrongly.
    if (pOutline && name && bloomActive(pOutline)) bloomSet(pOutline, name);
}


VTX_BOOL_T otlIsNameDupAmongDimensions(VTX_POTL_T pOutline, VTX_CSTR_T pszString, VTX_USHORT_T, VTX_POTLMBR_T *ppMbr) {
    if (!pOutline || !pszString) return 0;
    if (bloomActive(pOutline) && !otlIsNameDupAmongDimensionsBloomFilter(pOutline, pszString)) return 0;
    if (ppMbr) *ppMbr = nullptr;
    if (!pOutline->pHeadItem) return 0;
    for (VTX_POTLMBR_T d = pOutline->pHeadItem->pChild; d; d = d->pSibling) {
        if (!d->MbrInfo.szMember || otlCompareNames(pOutline, d->MbrInfo.szMember, pszString) != 0) continue;
        if (ppMbr) *ppMbr = d;
        return 1;
    }
    return 0;
}

// ---- the exported finds -------------------------------------------------------------
//
// Each runs in the frame of an exported call, uses the lookups above
// without their own reporting, and reports once: a name that names no
// member, or more than one, is 1060200 with the name.

namespace {

// The dimension record of an outline by its name.
VTX_POTLMBR_T dimensionNamed(VTX_POTL_T o, const char *name) {
    if (!o->pHeadItem || !name) return nullptr;
    for (VTX_POTLMBR_T d = o->pHeadItem->pChild; d; d = d->pSibling)
        if (!OTL_IS_HIDDEN(d) && d->MbrInfo.szMember && otlCompareNames(o, d->MbrInfo.szMember, name) == 0) return d;
    return nullptr;
}

// The end of every find: a member, or 1060200 naming the text.
VTX_STS_T findAnswer(const otl::CallFrame &f, VTX_STS_T sts, VTX_POTLMBR_T m, const char *text, const char *call,
                     VTX_HMEMBER_T *phMember) {
    if (!sts && m) {
        *phMember = m;
        return 0;
    }
    if (!sts || sts == VTX_STS_NOT_FOUND) return f.fail(VTX_STS_NOT_FOUND, text, VTX_MSGARG_STR);
    if (sts == VTX_STS_NO_MEMORY) return f.fail(VTX_STS_NO_MEMORY, call, VTX_MSGARG_STR);
    return f.fail(VTX_STS_LOOKUP_FAILED, call, VTX_MSGARG_STR);
}

// A member by name or alias, as the plain finds look for it.
[[gnu::always_inline]] inline VTX_STS_T findNameOrAlias(VTX_POTL_T o, const char *text, VTX_USHORT_T usOption,
                                                        VTX_POTLMBR_T *ppItem) {
    vTX_PNETCTX_T ctx = o->pNetCtx;
    HASH_NUM_T num;
    HASH_POS_T pos;
    VTX_STS_T sts = findByName(ctx, o, text, nullptr, 1, 1, 0, usOption, 0, nullptr, ppItem, num, pos, false);
    // With duplicate names a text is looked for among member names first;
    // an alias answers when no name does.
    if (!sts && !*ppItem && o->bNonUniqueName) {
        ChainIt it;
        if (!otl::otlLooksLikePath(text) && placeOn(o->pExtendedHashTable, text, it)) {
            VTX_POTLMBR_T first = nullptr;
            for (;; (void)extendedHashItIncrement(it.it())) {
                VTX_SHORT_T cmp = 1;
                VTX_POTLMBR_T m = otlMatchHashString(ctx, o, it.it(), text, nullptr, o->fCaseSensitive, 0, 1,
                                                     usOption, 0, nullptr, &cmp);
                if (!m) break;
                if (first && m != first) return VTX_STS_NOT_FOUND;
                first = m;
            }
            *ppItem = first;
        }
    }
    return sts;
}

// The frame every exported find shares: the answer cleared, the call frame
// entered with the members the call names, the arguments required, then
// body(f) under the guard, answering through *phMember.
extern "C++" template <class Body>
VTX_STS_T exportedFind(VTX_HOUTLINE_T hOutline, unsigned kind, std::initializer_list<VTX_HMEMBER_T> members,
                       bool argsGiven, VTX_HMEMBER_T *phMember, const char *call, Body body) {
    if (phMember) *phMember = nullptr;
    otl::CallFrame f(hOutline, kind);
    if (VTX_STS_T sts = f.enter(members)) return sts;
    if (!argsGiven || !phMember) return f.fail(VTX_STS_NULL_ARG, call, VTX_MSGARG_STR);
    return otl::otlGuard(f.ctx(), call, [&]() -> VTX_STS_T { return body(f); });
}

// A lookup by name in the member index (findByName), answered by findAnswer.
VTX_STS_T answerByName(const otl::CallFrame &f, const char *text, const char *call, VTX_HMEMBER_T *phMember,
                       bool fMember, bool fAlias, bool fFirst, VTX_USHORT_T usOption, VTX_USHORT_T usAliasTable,
                       VTX_POTLMBR_T pDim, bool literal) {
    VTX_POTLMBR_T m = nullptr;
    HASH_NUM_T num;
    HASH_POS_T pos;
    VTX_STS_T sts = findByName(f.ctx(), f.outline(), text, nullptr, fMember, fAlias, fFirst, usOption, usAliasTable,
                               pDim, &m, num, pos, literal);
    return findAnswer(f, sts, m, text, call, phMember);
}

} // namespace

VTX_STS_T adShrOtlFindMember(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszMember, VTX_HMEMBER_T *phMember) {
    const char *call = "adShrOtlFindMember";
    return exportedFind(hOutline, otl::kRead | otl::kQueryOk, {}, pszMember, phMember, call,
                        [&](const otl::CallFrame &f) -> VTX_STS_T {
        VTX_POTL_T o = f.outline();
        VTX_POTLMBR_T m = nullptr;
        VTX_STS_T sts = findNameOrAlias(o, pszMember, OTL_OPT_UNSHARED, &m);
        // The whole outline has a name of its own that no member takes.
        if (!sts && !m && o->pHeadItem && otlStricmp(f.ctx(), pszMember, OTL_UNIVERSE_MEMBER) == 0)
            m = o->pHeadItem;
        return findAnswer(f, sts, m, pszMember, call, phMember);
    });
}

VTX_STS_T adShrOtlFindMemberEx(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszMember, VTX_USHORT_T usOption,
                               VTX_HMEMBER_T *phMember) {
    const char *call = "adShrOtlFindMemberEx";
    return exportedFind(hOutline, otl::kRead, {}, pszMember, phMember, call, [&](const otl::CallFrame &f) {
        VTX_POTLMBR_T m = nullptr;
        VTX_STS_T sts = findNameOrAlias(f.outline(), pszMember, usOption, &m);
        return findAnswer(f, sts, m, pszMember, call, phMember);
    });
}

VTX_STS_T adShrOtlFindMemberById(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszMemberId, VTX_USHORT_T usOption,
                                 VTX_HMEMBER_T *phMember) {
    const char *call = "adShrOtlFindMemberById";
    return exportedFind(hOutline, otl::kRead, {}, pszMemberId, phMember, call,
                        [&](const otl::CallFrame &f) -> VTX_STS_T {
        VTX_POTL_T o = f.outline();
        // Identifiers are the texts of the "Member ID" table, which only an
        // outline of duplicate names has.
        if (!o->bNonUniqueName || o->usNumAliasTables < 2) return f.fail(VTX_STS_DUP_REQUIRED, call, VTX_MSGARG_STR);
        return answerByName(f, pszMemberId, call, phMember, 0, 1, 0, usOption, 2, nullptr, true);
    });
}

VTX_STS_T adShrOtlFindMemberByPath(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszMember, VTX_USHORT_T,
                                   VTX_HMEMBER_T *phMember) {
    const char *call = "adShrOtlFindMemberByPath";
    return exportedFind(hOutline, otl::kRead, {}, pszMember, phMember, call,
                        [&](const otl::CallFrame &f) -> VTX_STS_T {
        VTX_POTLMBR_T m = nullptr;
        otl::NameScratch scratch(f.ctx());
        VTX_STS_T sts = findCombined(f.ctx(), f.outline(), pszMember, 1, 0, 0, 0, nullptr, &m, scratch);
        // A malformed path says so, rather than naming no member.
        if (sts && sts != VTX_STS_NOT_FOUND && sts != VTX_STS_NO_MEMORY) return f.fail(sts, pszMember, VTX_MSGARG_STR);
        return findAnswer(f, sts, m, pszMember, call, phMember);
    });
}

VTX_STS_T adShrOtlFindMemberInDim(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_CSTR_T szMember,
                                  VTX_BOOL_T fReturnFirstInCaseOfDuplicates, VTX_HMEMBER_T *phMember) {
    const char *call = "adShrOtlFindMemberInDim";
    return exportedFind(hOutline, otl::kRead, {hDim}, hDim && szMember, phMember, call,
                        [&](const otl::CallFrame &f) -> VTX_STS_T {
        VTX_POTLMBR_T dim = static_cast<VTX_POTLMBR_T>(hDim);
        if (dim->MbrInfo.usGen != 1) return f.fail(VTX_STS_NOT_A_DIMENSION);
        return answerByName(f, szMember, call, phMember, 1, 0, fReturnFirstInCaseOfDuplicates, OTL_OPT_UNSHARED, 0,
                            dim, false);
    });
}

VTX_STS_T adShrOtlFindMemberInDimension(VTX_HOUTLINE_T hOutline, VTX_CSTR_T szDim, VTX_CSTR_T szMember,
                                        VTX_HMEMBER_T *phMember) {
    const char *call = "adShrOtlFindMemberInDimension";
    return exportedFind(hOutline, otl::kRead, {}, szDim && szMember, phMember, call,
                        [&](const otl::CallFrame &f) -> VTX_STS_T {
        VTX_POTLMBR_T dim = dimensionNamed(f.outline(), szDim);
        if (!dim) return f.fail(VTX_STS_NOT_FOUND, szDim, VTX_MSGARG_STR);
        return answerByName(f, szMember, call, phMember, 1, 0, 0, OTL_OPT_UNSHARED, 0, dim, false);
    });
}

VTX_STS_T adShrOtlFindDim(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_HMEMBER_T *phDim) {
    const char *call = "adShrOtlFindDim";
    return exportedFind(hOutline, otl::kRead, {hMember}, hMember, phDim, call,
                        [&](const otl::CallFrame &f) -> VTX_STS_T {
        VTX_POTLMBR_T dim = otlGetDim(static_cast<VTX_POTLMBR_T>(hMember));
        // The root stands above every dimension.
        if (!dim) return f.fail(VTX_STS_NO_DIM_FOUND, call, VTX_MSGARG_STR);
        *phDim = dim;
        return 0;
    });
}

} // extern "C"

// ---- finds by parent, attribute finds, finds by identifiers --------------------------
//
// Built on the lookups above.  otlHashFindItemByName reports a name that
// names more than one member itself, so its failures are handed on as
// they come; a name that names none is reported here, once.

namespace {

// The dimension named szDim, or the refusal: 1060200 for no such
// dimension.
VTX_STS_T namedDimension(const otl::CallFrame &f, const char *szDim, VTX_POTLMBR_T *ppDim) {
    *ppDim = dimensionNamed(f.outline(), szDim);
    return *ppDim ? 0 : f.fail(VTX_STS_NOT_FOUND, szDim, VTX_MSGARG_STR);
}

// pszMember under a parent named pszParent, by name or alias, in pDim when
// given.  With a parent a shared member is found as well: the parent tells
// which of a name's places is meant.
VTX_STS_T findUnderParent(const otl::CallFrame &f, const char *pszMember, const char *pszParent, VTX_POTLMBR_T pDim,
                          VTX_HMEMBER_T *phMember) {
    VTX_POTLMBR_T m = nullptr;
    VTX_STS_T sts = otlHashFindItemByName(f.ctx(), f.outline(), pszMember, pszParent, 1, 1, 0, 0, pDim, &m, nullptr,
                                          nullptr);
    if (sts) return sts;
    if (!m) return f.fail(VTX_STS_NOT_FOUND, pszMember, VTX_MSGARG_STR);
    *phMember = m;
    return 0;
}

// An attribute member of the attribute dimension szDim by its name (a typed
// attribute also by its short name), under a parent named pszParent when
// one is given.
VTX_STS_T findAttribute(const otl::CallFrame &f, const char *szDim, const char *pszMember, const char *pszParent,
                        VTX_HMEMBER_T *phMember) {
    VTX_POTL_T o = f.outline();
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = namedDimension(f, szDim, &dim)) return sts;
    if (!isAttrMember(dim)) return f.fail(VTX_STS_NOT_ATTR_DIM, szDim, VTX_MSGARG_STR);
    ChainIt it;
    if (placeOn(o->pExtendedHashTable, pszMember, it)) {
        for (;; (void)extendedHashItIncrement(it.it())) {
            VTX_POTLMBR_T m = nullptr;
            if (VTX_STS_T sts = otlFindAttributeMember(o, pszMember, &m, it.it()))
                return f.fail(sts, pszMember, VTX_MSGARG_STR);
            if (!m) break;
            if (otlGetDim(m) != dim) continue;
            VTX_POTLMBR_T parent = m->pParent;
            if (pszParent && (!parent || !parent->MbrInfo.szMember ||
                              otlCompareNames(o, parent->MbrInfo.szMember, pszParent) != 0))
                continue;
            *phMember = m;
            return 0;
        }
    }
    return f.fail(VTX_STS_NOT_FOUND, pszMember, VTX_MSGARG_STR);
}

} // namespace

extern "C" {

VTX_STS_T adShrOtlFindMemberParentCombo(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszMember, VTX_CSTR_T pszParent,
                                        VTX_HMEMBER_T *phMember) {
    return exportedFind(hOutline, otl::kRead, {}, pszMember && pszParent, phMember, "adShrOtlFindMemberParentCombo",
                        [&](const otl::CallFrame &f) {
        return findUnderParent(f, pszMember, pszParent, nullptr, phMember);
    });
}

VTX_STS_T adShrOtlFindMemberParentComboInDimension(VTX_HOUTLINE_T hOutline, VTX_CSTR_T szDim, VTX_CSTR_T pszMember,
                                                   VTX_CSTR_T pszParent, VTX_HMEMBER_T *phMember) {
    return exportedFind(hOutline, otl::kRead, {}, szDim && pszMember && pszParent, phMember,
                        "adShrOtlFindMemberParentComboInDimension", [&](const otl::CallFrame &f) -> VTX_STS_T {
        VTX_POTLMBR_T dim = nullptr;
        if (VTX_STS_T sts = namedDimension(f, szDim, &dim)) return sts;
        return findUnderParent(f, pszMember, pszParent, dim, phMember);
    });
}

VTX_STS_T adShrOtlFindAttrMemberInDimension(VTX_HOUTLINE_T hOutline, VTX_CSTR_T szDim, VTX_CSTR_T pszMember,
                                            VTX_HMEMBER_T *phMember) {
    return exportedFind(hOutline, otl::kRead, {}, szDim && pszMember, phMember, "adShrOtlFindAttrMemberInDimension",
                        [&](const otl::CallFrame &f) {
        return findAttribute(f, szDim, pszMember, nullptr, phMember);
    });
}

VTX_STS_T adShrOtlFindAttrMemberParentComboInDimension(VTX_HOUTLINE_T hOutline, VTX_CSTR_T szDim,
                                                       VTX_CSTR_T pszMember, VTX_CSTR_T pszParent,
                                                       VTX_HMEMBER_T *phMember) {
    return exportedFind(hOutline, otl::kRead, {}, szDim && pszMember && pszParent, phMember,
                        "adShrOtlFindAttrMemberParentComboInDimension", [&](const otl::CallFrame &f) {
        return findAttribute(f, szDim, pszMember, pszParent, phMember);
    });
}

VTX_STS_T adShrOtlGetMemberFromDimIdMbrId(VTX_HOUTLINE_T hOutline, VTX_ULONG_T dimId, VTX_ULONG_T mbrId,
                                          VTX_HMEMBER_T *phMember) {
    if (phMember) *phMember = nullptr;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!phMember) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetMemberFromDimIdMbrId", VTX_MSGARG_STR);
    // Identifiers are given out from 1: zero names nothing.
    if (dimId == 0 || mbrId == 0) return f.fail(VTX_STS_ZERO_ID);
    VTX_POTLMBR_T m = memNum2pItemMapGetPItem(f.outline(), mbrId, dimId);
    // A spare child is no member the caller can name.
    if (m && !OTL_IS_HIDDEN(m)) *phMember = m;
    return 0;
}

} // extern "C"

// ---- name tests of the member interface --------------------------------------------

namespace {

// The dimension record a name test asks about: 1060057 for another member.
VTX_STS_T dimensionFor(const otl::CallFrame &f, VTX_HMEMBER_T hMember, VTX_POTLMBR_T *ppDim, const char *call) {
    auto m = static_cast<VTX_POTLMBR_T>(hMember);
    if (!m) return f.fail(VTX_STS_NULL_ARG, call, VTX_MSGARG_STR);
    if (m->MbrInfo.usGen != 1 || m->pParent != f.outline()->pHeadItem) return f.fail(VTX_STS_NOT_A_DIMENSION);
    *ppDim = m;
    return 0;
}

// The dimension's entry of the last verification's state, or null.
const VTX_DUPMBRARRY_T *dupStateOf(VTX_POTL_T o, VTX_POTLMBR_T dim) {
    const int d = dimIndex(o, dim);
    if (!o->pDupMbrArry || d < 0 || d >= o->pDupMbrArry[0].ucArrySize) return nullptr;
    return &o->pDupMbrArry[d];
}

} // namespace

extern "C" {

VTX_STS_T adShrOtlIsMemberNameDuplicate(VTX_HOUTLINE_T hOutline, VTX_CSTR_T szMember, VTX_BOOL_T *pbNonUnique) {
    if (pbNonUnique) *pbNonUnique = 0;
    otl::CallFrame f(hOutline, otl::kRead);
    if (VTX_STS_T sts = f.enter()) return sts;
    if (!szMember || !pbNonUnique) return f.fail(VTX_STS_NULL_ARG, "adShrOtlIsMemberNameDuplicate", VTX_MSGARG_STR);
    *pbNonUnique = otlIsNameDuplicated(f.ctx(), f.outline(), szMember, 0, nullptr) ? 1 : 0;
    return 0;
}

VTX_STS_T adShrOtlIsMemberNameUniqueWithinDim(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                              VTX_BOOL_T *pbNameUnique) {
    if (pbNameUnique) *pbNameUnique = 1;
    otl::CallFrame f(hOutline, otl::kRead);
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (!pbNameUnique) return f.fail(VTX_STS_NULL_ARG, "adShrOtlIsMemberNameUniqueWithinDim", VTX_MSGARG_STR);
    if (VTX_STS_T sts = dimensionFor(f, hMember, &dim, "adShrOtlIsMemberNameUniqueWithinDim")) return sts;
    const VTX_DUPMBRARRY_T *st = f.outline()->bNonUniqueName ? dupStateOf(f.outline(), dim) : nullptr;
    *pbNameUnique = !(st && (st->pDimNonUnique[0] & kDnuRepeats));
    return 0;
}

VTX_STS_T adShrOtlIsMemberNameUniqueWithinDimAtGenLevel(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                                        VTX_BOOL_T bGen, VTX_USHORT_T usGenLevel,
                                                        VTX_BOOL_T *pbNameUnique) {
    if (pbNameUnique) *pbNameUnique = 1;
    otl::CallFrame f(hOutline, otl::kRead);
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (!pbNameUnique)
        return f.fail(VTX_STS_NULL_ARG, "adShrOtlIsMemberNameUniqueWithinDimAtGenLevel", VTX_MSGARG_STR);
    if (VTX_STS_T sts = dimensionFor(f, hMember, &dim, "adShrOtlIsMemberNameUniqueWithinDimAtGenLevel")) return sts;
    const VTX_DUPMBRARRY_T *st = f.outline()->bNonUniqueName ? dupStateOf(f.outline(), dim) : nullptr;
    // No generation or level lies that deep.
    if (!st || usGenLevel >= 127) return 0;
    *pbNameUnique = !(st->pDimNonUnique[usGenLevel] & (bGen ? kDnuAtGen : kDnuAtLevel));
    return 0;
}

VTX_STS_T adShrOtlGetCountOfDupMemberNameInDim(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember,
                                               VTX_ULONG_T *pulDupCount) {
    if (pulDupCount) *pulDupCount = 0;
    otl::CallFrame f(hOutline, otl::kRead);
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (!pulDupCount) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetCountOfDupMemberNameInDim", VTX_MSGARG_STR);
    if (VTX_STS_T sts = dimensionFor(f, hMember, &dim, "adShrOtlGetCountOfDupMemberNameInDim")) return sts;
    if (const VTX_DUPMBRARRY_T *st = dupStateOf(f.outline(), dim)) *pulDupCount = st->ulDupCount;
    return 0;
}

VTX_STS_T adShrOtlGetDimensionNameUniqueness(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_BOOL_T *pbUnique) {
    if (pbUnique) *pbUnique = 1;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = f.enter({hDim})) return sts;
    if (!pbUnique) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetDimensionNameUniqueness", VTX_MSGARG_STR);
    if (VTX_STS_T sts = dimensionFor(f, hDim, &dim, "adShrOtlGetDimensionNameUniqueness")) return sts;
    *pbUnique = (dim->ucFlags & OTL_FLAG_DUP) ? 0 : 1;
    return 0;
}

VTX_STS_T adShrOtlSetDimensionNameUniqueness(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hDim, VTX_BOOL_T bUnique) {
    otl::CallFrame f(hOutline, otl::kEdit);
    VTX_POTLMBR_T dim = nullptr;
    if (VTX_STS_T sts = f.enter({hDim})) return sts;
    if (VTX_STS_T sts = dimensionFor(f, hDim, &dim, "adShrOtlSetDimensionNameUniqueness")) return sts;
    VTX_POTL_T o = f.outline();
    const bool unique = bUnique != 0;
    if (unique == !(dim->ucFlags & OTL_FLAG_DUP)) return 0;
    // Only an outline of duplicate names has dimensions that allow them.
    if (!unique && !o->bNonUniqueName)
        return f.fail(VTX_STS_DUP_REQUIRED, "adShrOtlSetDimensionNameUniqueness", VTX_MSGARG_STR);
    if (unique) {
        // A dimension whose names repeat already cannot promise otherwise.
        vTX_PNETCTX_T ctx = f.ctx();
        for (VTX_POTLMBR_T m = dim->pChild ? otlNavtrdn(dim, dim) : nullptr; m; m = otlNavtrdn(m, dim)) {
            if (OTL_IS_HIDDEN(m) || otlMbrIsSharedShare(m) || !m->MbrInfo.szMember) continue;
            VTX_POTLMBR_T other = m;
            if (otlIsNameExistInDimension(ctx, o, dim, m->MbrInfo.szMember, 0, &other))
                return f.fail(VTX_STS_UNIQUE_IN_DIM, dim->MbrInfo.szMember, VTX_MSGARG_STR, m->MbrInfo.szMember,
                              VTX_MSGARG_STR);
        }
        dim->ucFlags &= (VTX_UCHAR_T)~OTL_FLAG_DUP;
    } else {
        dim->ucFlags |= OTL_FLAG_DUP;
    }
    f.edited(OTL_STATE_CHANGED);
    return 0;
}

VTX_STS_T adShrOtlGetMemberType(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, VTX_USHORT_T *pusType) {
    if (pusType) *pusType = 0;
    otl::CallFrame f(hOutline, otl::kRead | otl::kQueryOk);
    if (VTX_STS_T sts = f.enter({hMember})) return sts;
    if (!hMember || !pusType) return f.fail(VTX_STS_NULL_ARG, "adShrOtlGetMemberType", VTX_MSGARG_STR);
    *pusType = static_cast<VTX_POTLMBR_T>(hMember)->ucFlags2 & OTL_FLAG2_TYPEMASK;
    return 0;
}

} // extern "C"
