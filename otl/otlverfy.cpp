// Per-member verification: the rules one member must meet, the rules a name
// must meet, and the translation of verification words into message
// numbers.  Whole-outline verification builds on these.
#include "otl.h"

#include <cstring>

namespace {

inline VTX_POTLMBRLARGE_T L(VTX_POTLMBR_T p) { return OTL_LARGE(p); }
inline bool isLarge(VTX_POTLMBR_T p) { return p && !OTL_IS_SMALL(p); }
inline VTX_UCHAR_T categoryOf(VTX_POTLMBR_T p) { return isLarge(p) ? L(p)->MbrInfo.usCategory : 0; }
inline bool isAttrCategory(VTX_UCHAR_T c) { return c == VTX_CAT_ATTRIBUTE || c == VTX_CAT_ATTRCALC; }
inline bool isDynamic(VTX_USHORT_T s) { return s == VTX_SHARE_DYNCALCSTORE || s == VTX_SHARE_DYNCALC; }
inline bool hasFormula(VTX_POTLMBR_T p) { return (p->ucFlags & OTL_FLAG_FORMULA) != 0; }
inline bool hasUserAttributes(VTX_POTLMBR_T p) {
    return (p->MbrInfo.ucInfoFlags & OTL_INFO_UDA) || (isLarge(p) && L(p)->pUserAttrList);
}

// Words that only warn: they are listed but never refuse anything.
constexpr VTX_ULONG_T kVerifyWarnings = 0x08000000u | 0x10000000u | 0x20000000u;
constexpr VTX_ULONG_T kVerifyErrors = 0xC7FFFFFFu;

// Versions of the client below which names keep the old length limit.
constexpr VTX_ULONG_T kLongNameDll = 725536;
constexpr VTX_ULONG64_T kLongNameDllProtocol = 0xB123FFFFFFFFFull;

const char *const kReservedNames[] = {"$$$UNIVERSE$$$", "#Missing", "$NULL$"};

bool isReservedName(vTX_PNETCTX_T ctx, const char *name) {
    for (const char *r : kReservedNames)
        if (otlStricmp(ctx, name, r) == 0) return true;
    return false;
}

// Whether the last character of a UTF-8 text is a space of any kind the
// name rules know: the ASCII blanks, the no-break space and the ideographic
// space.
bool endsWithSpace(const char *s) {
    size_t n = std::strlen(s);
    if (!n) return false;
    const unsigned char *u = reinterpret_cast<const unsigned char *>(s);
    unsigned char c = u[n - 1];
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f') return true;
    if (n >= 2 && u[n - 2] == 0xC2 && c == 0xA0) return true;
    if (n >= 3 && u[n - 3] == 0xE3 && u[n - 2] == 0x80 && c == 0x80) return true;
    return false;
}

// The identifier of a member in an outline of duplicate names.
bool isMemberIdLegal(vTX_PNETCTX_T ctx, const char *id) {
    return id && std::strlen(id) < 16501 && !isReservedName(ctx, id);
}

// What decides the rules a text is measured by: the outline's kind and name
// rule, and the paged version of an aggregate-storage outline when there is
// an outline to ask.
struct NameRule {
    VTX_USHORT_T usOutlineType = VTX_OTL_REGULAR;
    VTX_USHORT_T usOtlNameType = VTX_NAMES_UNIQUE;
    VTX_ULONG_T cOPGVersion = 0;
    bool knowsPagedVersion = true;
    void *utf8Locale = nullptr;   // set for a UTF-8 outline: the text must be valid UTF-8
};

// The longest name in characters.  Clients from before long names keep the
// old limit whatever the outline could hold; a host that leaves the client
// version at 0 is such a client.
size_t nameLimit(vTX_PNETCTX_T ctx, NAMETYPE_T nameType, const NameRule &rule) {
    if (nameType != 1 || !ctx) return VTX_OLD_NAME_CHARS;
    const VTX_ULONG64_T dll = ((VTX_ULONG64_T)ctx->lClientDllVersion << 32) | ctx->clientDllProtocolVersion;
    if (ctx->lClientDllVersion <= kLongNameDll || dll <= kLongNameDllProtocol) return VTX_OLD_NAME_CHARS;
    if (rule.usOutlineType != VTX_OTL_AGGSTORE) return VTX_MAX_NAME_CHARS;
    // Aggregate storage holds long names from paged version 82 on.
    if (!rule.knowsPagedVersion || rule.cOPGVersion <= 81) return VTX_OLD_NAME_CHARS;
    return VTX_MAX_NAME_CHARS;
}

bool nameMeetsRule(const char *name, vTX_PNETCTX_T ctx, NAMETYPE_T nameType, const NameRule &rule, size_t *pChars) {
    if (!name) return false;
    // Bytes that are not UTF-8 in a UTF-8 outline could never be written
    // back or compared; such a text is no name.
    if (rule.utf8Locale && !adGlobStrIsValid(rule.utf8Locale, name)) return false;
    // A server may relax the quote and first-character rules.
    const bool relaxed = ctx && ctx->Type == 1 && ctx->bRelaxedNames;
    void *locale = rule.utf8Locale ? rule.utf8Locale : (ctx ? ctx->pLocale : nullptr);
    const size_t chars = adGlobStrNumChars(locale, name);
    if (pChars) *pChars = chars;
    if (chars == 0 || chars > nameLimit(ctx, nameType, rule)) return false;
    if (rule.usOtlNameType != VTX_NAMES_RELAXED) {
        if (!relaxed && std::strchr(name, '"')) return false;
        const unsigned char first = static_cast<unsigned char>(name[0]);
        if (first < 0x80 && (first == ' ' || first == '\t' || first == '\n' || first == '\r' || first == '\v' ||
                             first == '\f'))
            return false;
        if (!relaxed && std::strchr("@=_+-{}().|\\',<", first)) return false;
        if (endsWithSpace(name)) return false;
    }
    return !isReservedName(ctx, name);
}

void *utf8LocaleOf(VTX_POTL_T o) {
    if (o->pUTF8Locale) return o->pUTF8Locale;
    void *l = nullptr;
    (void)adGlobGetUTF8Locale(&l);  // the shared locale; cannot fail with an argument
    return l;
}

const char *formatStringOf(VTX_POTLMBR_T p) { return isLarge(p) ? L(p)->pszFormatString : nullptr; }

// Bit-to-number tables, in the order the bits are tested.
struct BitCode {
    VTX_ULONG_T bit;
    VTX_STS_T code;
};
const BitCode kVerify1[] = {
    {0x1, 1060015},       {0x2, 1060016},        {0x4, 1060017},        {0x8, 1060018},       {0x10, 1060019},
    {0x20, 1060020},      {0x40, 1060021},       {0x80, 1060022},       {0x100, 1060023},     {0x200, 1060024},
    {0x400, 1060025},     {0x800, 1060026},      {0x2000, 1060028},     {0x8000, 1060030},    {0x10000, 1060031},
    {0x20000, 1060032},   {0x40000, 1060033},    {0x80000, 1060021},    {0x100000, 1060034},  {0x200000, 1060220},
    {0x400000, 1060058},  {0x800000, 1060064},   {0x1000000, 1060066},  {0x2000000, 1060070}, {0x4000000, 1060072},
    {0x10000000, 1060189}, {0x8000000, 1060074},
};
const BitCode kVerify2[] = {
    {0x40000, 1060159}, {0x1, 1060085},       {0x2, 1060082},      {0x4, 1060101},      {0x8, 1060102},
    {0x10, 1060103},    {0x20, 1060104},      {0x40, 1060081},     {0x80, 1060105},     {0x100, 1060109},
    {0x200, 1060110},   {0x800, 1060112},     {0x1000, 1060113},   {0x2000, 1060083},   {0x4000, 1060311},
    {0x8000, 1060108},  {0x10000, 1060141},   {0x20000, 1060142},  {0x400000, 1060165}, {0x1000000, 1060169},
    {0x800000, 1060166},
};
const BitCode kVerify3[] = {
    {0x400, 1060143},     {0x4, 1060145},       {0x20, 1060146},      {0x80, 1060147},     {0x1000, 1060192},
    {0x8, 1060179},       {0x10000000, 1060181}, {0x80000, 1060185},  {0x40, 1060149},     {0x10, 1060150},
    {0x2, 1060263},       {0x100, 1060151},     {0x200, 1060152},     {0x8000, 1060172},   {0x10000, 1060153},
    {0x20000, 1060154},   {0x2000000, 1060173}, {0x4000000, 1060312}, {0x8000000, 1060313}, {0x100000, 1060174},
    {0x200000, 1060175},  {0x2000, 1060243},    {0x1000000, 1060180}, {0x400000, 1060176}, {0x1, 1060144},
};
const BitCode kVerify4[] = {
    {0x4, 1060209},     {0x8, 1060211},      {0x10, 1060210},     {0x20, 1060238},     {0x80, 1060231},
    {0x40, 1060232},    {0x100, 1060233},    {0x200, 1060234},    {0x400, 1060235},    {0x800, 1060236},
    {0x1000, 1060239},  {0x10000, 1060315},  {0x4000, 1060267},   {0x2000, 1060314},   {0x100000, 1060275},
    {0x40000, 1060276}, {0x80000, 1060277},  {0x20000, 1060259},  {0x10000000, 1060307},
};
const BitCode kVerify5[] = {
    {0x1, 1060369}, {0x20, 1060363}, {0x400, 1060365}, {0x8000, 1060366},
};

} // namespace

extern "C" {

// ---- names ---------------------------------------------------------------------

VTX_BOOL_T otlIsNameLegal(VTX_HOUTLINE_T hOutline, VTX_CSTR_T pszName, vTX_PNETCTX_T pNetCtx, NAMETYPE_T nameType) {
    VTX_POTL_T o = static_cast<VTX_POTL_T>(hOutline);
    vTX_PNETCTX_T ctx = pNetCtx ? pNetCtx : (o ? o->pNetCtx : nullptr);
    NameRule rule;
    if (o) {
        rule.usOutlineType = o->usOutlineType;
        rule.usOtlNameType = o->usOtlNameType;
        rule.cOPGVersion = o->cOPGVersion;
        rule.utf8Locale = o->bIsUTF8 ? utf8LocaleOf(o) : nullptr;
    }
    size_t chars = 0;
    if (!nameMeetsRule(pszName, ctx, nameType, rule, &chars)) return 0;
    // A long name in a block-storage outline needs the long form of the file.
    if (o) otlEnableLongNames(o, o->usOutlineType, (VTX_USHORT_T)(chars > 0xffff ? 0xffff : chars), nameType);
    return 1;
}

VTX_BOOL_T otlMotfIsNameLegal(VTX_USHORT_T usOutlineType, VTX_USHORT_T usOtlNameType, VTX_CSTR_T pszName,
                              vTX_PNETCTX_T pNetCtx, NAMETYPE_T nameType) {
    NameRule rule;
    rule.usOutlineType = usOutlineType;
    rule.usOtlNameType = usOtlNameType;
    rule.knowsPagedVersion = false;
    return nameMeetsRule(pszName, pNetCtx, nameType, rule, nullptr) ? 1 : 0;
}

VTX_BOOL_T otlIsMemberIDLegal(VTX_CSTR_T pszName, vTX_PNETCTX_T pNetCtx) {
    return isMemberIdLegal(pNetCtx, pszName) ? 1 : 0;
}

void otlEnableLongNames(VTX_POTL_T pOutline, VTX_USHORT_T usOutlineType, VTX_USHORT_T usLength, NAMETYPE_T nameType) {
    if (pOutline && nameType == 1 && usOutlineType != VTX_OTL_AGGSTORE && usLength > VTX_OLD_NAME_CHARS)
        pOutline->bLongNames = 1;
}

VTX_STS_T otlVerifyGenLevNames(VTX_POTLMBR_T pItem, VTX_POTL_T pOutline) {
    if (!pItem || !pOutline || !pOutline->pHeadItem || !pItem->MbrInfo.szMember) return 0;
    for (VTX_POTLMBR_T d = pOutline->pHeadItem->pChild; d; d = d->pSibling) {
        if (!isLarge(d)) continue;
        for (VTX_PNAMELIST_T n = L(d)->pNameList; n; n = n->pNext) {
            if (!n->pszName) continue;
            if (otlCompareNames(pOutline, n->pszName, pItem->MbrInfo.szMember) == 0) return 1;
            if (pItem->AliasArray)
                for (unsigned t = 0; t < pOutline->usNumAliasTables; ++t) {
                    const char *a = pItem->AliasArray[t].pszDefName;
                    if (a && otlCompareNames(pOutline, n->pszName, a) == 0) return 1;
                }
            if (isLarge(pItem) && L(pItem)->pAliasRec)
                for (unsigned t = 0; t < OTL_MAX_ALIAS_TABLES; ++t)
                    for (VTX_POTLALIASREC_T a = L(pItem)->pAliasRec[t]; a; a = a->pNext)
                        if (a->pszAlias && otlCompareNames(pOutline, n->pszName, a->pszAlias) == 0) return 1;
        }
    }
    return 0;
}

// ---- the rules of one member ---------------------------------------------------------

VTX_ULONG_T otlVerifyItem(vTX_PNETCTX_T pNetCtx, VTX_POTL_T o, VTX_POTLMBR_T pDim, VTX_POTLMBR_T pItem,
                          VTX_ULONG_T *pulVerify4, VTX_USHORT_T usVerifyType) {
    if (!o || !pItem || pItem->MbrInfo.usGen == 0) return 0;
    vTX_PNETCTX_T ctx = pNetCtx ? pNetCtx : o->pNetCtx;
    const VTX_USHORT_T type = usVerifyType & 0xff;
    const bool memberOnly = (usVerifyType & OTL_VERIFY_MEMBER_ONLY) != 0;
    const bool dataChecks = type == 0 || type == 1 || type == OTL_VERIFY_QUIET;
    const bool structChecks = type == 0 || type == 2 || type == OTL_VERIFY_QUIET;
    const bool agg = o->usOutlineType == VTX_OTL_AGGSTORE;
    const bool isDim = pItem->MbrInfo.usGen == 1;
    const bool large = isLarge(pItem);
    VTX_POTLMBRLARGE_T l = large ? L(pItem) : nullptr;
    VTX_POTLMBR_T dim = pDim ? pDim : otlGetDim(pItem);
    const VTX_UCHAR_T dimCat = categoryOf(dim);
    const VTX_UCHAR_T cat = categoryOf(pItem);
    const VTX_USHORT_T share = otlGetShare(pItem);
    const bool shared = OTL_IS_SHARE(share);
    VTX_ULONG_T v = 0;
    VTX_ULONG_T v4 = 0;

    // 1: the name.
    if (dataChecks || type == OTL_VERIFY_NAMES)
        if (!otlIsNameLegal(o, pItem->MbrInfo.szMember, ctx, 1)) v |= 0x1;
    if (type == OTL_VERIFY_NAMES) return v;

    // 2: storage of a dimension.
    if (dataChecks && isDim && l) {
        if (l->MbrInfo.usStorage != 0 && l->MbrInfo.usStorage != 1 && l->MbrInfo.usStorage != 3) v |= 0x40000;
        if (l->usAttrCode == 2) {
            pItem->MbrInfo.ucInfoFlags |= OTL_INFO_ATTRIBUTED;
            if (!agg && l->MbrInfo.usStorage != 1) v |= 0x40000;
        }
    }
    // 3: categories.
    if (l) {
        if (!isAttrCategory(cat)) {
            if (cat > 11) v |= 0x80000;
            else if ((o->usOutlineType != VTX_OTL_CURRENCY && cat == VTX_CAT_CURRENCY) ||
                     (o->usOutlineType == VTX_OTL_CURRENCY && cat == VTX_CAT_CURRPART))
                v |= 0x80000;
        }
        if (l->MbrInfo.usStorageCategory >= 16) v |= 0x100000;
    }
    // 4: attribute members.
    if (l && cat == VTX_CAT_ATTRIBUTE) {
        const VTX_UCHAR_T sc = l->MbrInfo.usStorageCategory;
        if (!agg) {
            if (isDim && l->MbrInfo.usStorage != 1) v |= 0x40000;
            if (isDim && sc != 12 && sc != 15) v |= 0x100000;
            if (share != VTX_SHARE_DYNCALC) v |= 0x20000;
        } else {
            if (isDim && sc != 12 && sc != 15) v |= 0x100000;
            if (share == VTX_SHARE_SHARED) v |= 0x20000;
        }
        if (hasFormula(pItem)) v |= 0x200;
    }
    // 5: the share setting itself.
    if (l) {
        if (share > VTX_SHARE_DYNCALC && share != VTX_SHARE_SHARED2) v |= 0x20000;
        if (isDim && shared) v |= 0x20000;
    }
    // 6, 7: currency conversion, time balance, skip.
    if (!agg && dimCat == VTX_CAT_ACCOUNTS && l && l->MbrInfo.usConversion >= 3) v |= 0x4;
    if (pItem->MbrInfo.usTimeBalance >= 4) v |= 0x8000;
    else if (pItem->MbrInfo.usSkip >= 4) v |= 0x10000;
    // 8: the currency member.
    if (structChecks && !agg && l) {
        const bool needsCur = (dimCat == VTX_CAT_ACCOUNTS && l->MbrInfo.usConversion == 1) || dimCat == VTX_CAT_COUNTRY;
        if (needsCur && !otlIsNameLegal(o, l->MbrInfo.szCurMember, ctx, 1)) v |= 0x4;
    }
    // 9: one dimension of each tagged category.
    if (isDim && l && cat != 0 && !isAttrCategory(cat) && o->pHeadItem)
        for (VTX_POTLMBR_T d = o->pHeadItem->pChild; d; d = d->pSibling)
            if (d != pItem && categoryOf(d) == cat) v |= 0x40;
    // 10: a label-only member stands for its children.
    if (!o->fBuildingDim && !memberOnly && share == VTX_SHARE_LABEL && !pItem->pChild && dimCat != VTX_CAT_ATTRCALC)
        v |= 0x2000;
    // 11: associated attributes need a member that holds data.
    if (pItem->MbrInfo.ucInfoFlags & OTL_INFO_ATTRIBUTED) {
        if (share == VTX_SHARE_LABEL && !isDim) v |= 0x40;
        if (!memberOnly && isImpliedShare(o, pItem) && pItem->pChild && otlMbrIsSharedShare(pItem->pChild)) v |= 0x40;
    }
    // 12: time balance needs a time dimension.
    if (dimCat == VTX_CAT_ACCOUNTS && pItem->MbrInfo.usTimeBalance >= 1 && pItem->MbrInfo.usTimeBalance <= 3) {
        bool time = false;
        for (VTX_POTLMBR_T d = o->pHeadItem ? o->pHeadItem->pChild : nullptr; d && !time; d = d->pSibling)
            time = categoryOf(d) == VTX_CAT_TIME;
        if (!time) v |= 0x80;
    }
    // 13: alias texts.  In an outline of duplicate names the second table
    // holds the member identifier.
    if (dataChecks && pItem->AliasArray) {
        unsigned first = 0;
        if (o->bNonUniqueName && o->usNumAliasTables > 1) {
            const char *id = pItem->AliasArray[1].pszDefName;
            if (id && !isMemberIdLegal(ctx, id)) v |= 0x8;
            first = 2;
        }
        for (unsigned t = first; t < o->usNumAliasTables; ++t) {
            const char *a = pItem->AliasArray[t].pszDefName;
            if (a && !otlIsNameLegal(o, a, ctx, 1)) {
                v |= 0x8;
                break;
            }
        }
    }
    // 14: alias combinations.
    if (l && l->pAliasRec) {
        for (unsigned t = 0; t < OTL_MAX_ALIAS_TABLES; ++t)
            for (VTX_POTLALIASREC_T a = l->pAliasRec[t]; a; a = a->pNext) {
                if (dimCat == VTX_CAT_ATTRIBUTE || !a->pszAlias || !otlIsNameLegal(o, a->pszAlias, ctx, 1)) v |= 0x10;
                // Every part must still name one member: a delete or a
                // rename since the combination was made can leave it stale.
                // Out of memory proves nothing about the combination.
                if (!a->pszCombination || !*a->pszCombination) {
                    v |= 0x20;
                } else {
                    const VTX_STS_T sts = otlCheckAliasCombination(o, pItem, a->pszCombination);
                    if (sts && sts != VTX_STS_NO_MEMORY) v |= 0x20;
                }
            }
    }
    // 15: what shared and label-only members may not carry.
    if (dataChecks) {
        if (!agg && shared && hasUserAttributes(pItem)) v |= 0x800000;
        if ((share == VTX_SHARE_LABEL || shared) && hasFormula(pItem)) v |= 0x400000;
    }
    // 16: a shared member and its stored member.
    if (structChecks && shared) {
        if (pItem->pChild) v |= 0x400;
        VTX_POTLMBR_T orig = nullptr;
        VTX_STS_T sts;
        if (o->bNonUniqueName) {
            sts = otlHashFindOriginalItem(ctx, o, dim, pItem, &orig);
        } else {
            sts = otlHashFindItemByName(ctx, o, pItem->MbrInfo.szMember, nullptr, 1, 0, 1, 0, dim, &orig, nullptr,
                                        nullptr);
        }
        if (sts == VTX_STS_NOT_FOUND) {
            v4 |= 0x1;
        } else if (sts || !orig || !orig->MbrInfo.szMember ||
                   otlCompareNames(o, orig->MbrInfo.szMember, pItem->MbrInfo.szMember) != 0) {
            v |= 0x800;
        } else {
            if ((ctx && ctx->usCallerType == VTX_CALLER_API) || agg)
                if (pItem->ulMemno && pItem->ulMemno < orig->ulMemno) v |= 0x10000000;
            if ((pItem->MbrInfo.ucInfoFlags & OTL_INFO_CONSOL) != VTX_CONS_IGNORE) {
                for (VTX_POTLMBR_T p = pItem->pParent; p && p->MbrInfo.usGen > 0; p = p->pParent) {
                    if (p == orig) {
                        v |= 0x200000;
                        v &= ~0x10000000u;
                        break;
                    }
                    if ((p->MbrInfo.ucInfoFlags & OTL_INFO_CONSOL) == VTX_CONS_IGNORE) break;
                }
            }
        }
    }
    // 17: generation and level names.
    if (dataChecks && otlVerifyGenLevNames(pItem, o)) v |= 0x1000000;
    // 18: dynamic members and dimensions need something to work from; these
    // rules look at children and siblings and so belong to the whole outline.
    if (structChecks && !agg && !o->fBuildingDim && !memberOnly) {
        if (isDynamic(share)) {
            if (!hasFormula(pItem) && !pItem->pChild && !isAttrCategory(dimCat)) v |= 0x2000000;
            if (pItem->MbrInfo.usGen >= 2 && !pItem->pSibling && !pItem->pPrevSibling && pItem->pParent &&
                !isDynamic(otlGetShare(pItem->pParent)))
                v |= 0x4000000;
        }
        if (isDim && !isAttrCategory(cat) && !pItem->pChild) v |= 0x8000000;
    }
    // 19: typed members.
    if (o->bMemberTypeEnabled && structChecks) {
        const VTX_UCHAR_T mtype = pItem->ucFlags2 & OTL_FLAG2_TYPEMASK;
        if (!shared) {
            if (!memberOnly && pItem->pChild && (share == VTX_SHARE_LABEL || isImpliedShare(o, pItem))) {
                const char *a = formatStringOf(pItem), *b = formatStringOf(pItem->pChild);
                if ((a || b) && (!a || !b || otlStricmp(ctx, a, b) != 0)) v4 |= 0x10000000;
            }
            // A text member needs its text list; none exist in an outline
            // without text lists.
            if (mtype == 1 && !o->pSmartListTable) v4 |= 0x2000;
        }
        if (mtype && (isAttrCategory(dimCat) || (agg && pItem->pChild))) v4 |= 0x4000;
        if (mtype == 1 || mtype == 2) {
            if (!o->typedDimno) {
                if (!memberOnly && dim) o->typedDimno = dim->ulDimno;
            } else if (dim && dim->ulDimno != o->typedDimno) {
                v4 |= 0x10000;
            }
        }
        const bool formatted = formatStringOf(pItem) && (agg ? isDynamic(share) : hasFormula(pItem));
        if (formatted) {
            if (!o->formatStringDimno) {
                if (!memberOnly && dim) o->formatStringDimno = dim->ulDimno;
            } else if (dim && dim->ulDimno != o->formatStringDimno) {
                v4 |= 0x10000;
            }
        }
    }
    if (pulVerify4) *pulVerify4 |= v4;
    return v;
}

// The rules of a member of an attribute or attribute-calculations dimension
// that is not an attribute member itself: it must hang from the dimension or
// from an attribute member (0x20), may carry no user attributes (0x80) and
// no calculation settings (0x800).  Members of the standard dimensions are
// not subject to them: a label-only parent, time balance, two-pass and
// expense members are what accounts and other dimensions are made of.  The
// last rule, the dynamic-parent check, holds everywhere outside aggregate
// storage: a two-pass dynamic member under a dynamic parent needs a
// two-pass parent (0x10000).
VTX_ULONG_T otlVerify2Item(vTX_PNETCTX_T, VTX_POTL_T o, VTX_POTLMBR_T pItemDim, VTX_POTLMBR_T pItem,
                           VTX_USHORT_T usVerifyType) {
    if (!o || !pItem || pItem->MbrInfo.usGen < 2) return 0;
    const VTX_USHORT_T type = usVerifyType & 0xff;
    const bool agg = o->usOutlineType == VTX_OTL_AGGSTORE;
    const VTX_UCHAR_T cat = categoryOf(pItem);
    VTX_POTLMBR_T dim = pItemDim ? pItemDim : otlGetDim(pItem);
    VTX_POTLMBR_T parent = pItem->pParent;
    VTX_ULONG_T w = 0;
    if (cat != VTX_CAT_ATTRIBUTE && isAttrCategory(categoryOf(dim))) {
        const VTX_ULONG_T u = hasUserAttributes(pItem) ? 0x80 : 0;
        const bool ordinaryParent = parent && parent->MbrInfo.usGen > 0 && !isAttrCategory(categoryOf(parent));
        w = ordinaryParent ? (0x20 | u) : u;
        const bool tb = pItem->MbrInfo.usTimeBalance || pItem->MbrInfo.usSkip;
        if (!agg) {
            const bool calc = isLarge(pItem) && (L(pItem)->MbrInfo.usConversion || L(pItem)->MbrInfo.fTwoPass ||
                                                 L(pItem)->MbrInfo.fExpense);
            if (calc || tb) w |= 0x800;
        } else if (tb) {
            w = (w & ~(0x20u | u)) | 0x800;
        }
    }
    if (type != OTL_VERIFY_QUIET && !agg && isLarge(pItem) && cat != VTX_CAT_ATTRIBUTE && L(pItem)->MbrInfo.fTwoPass &&
        (pItem->MbrInfo.ucInfoFlags & OTL_INFO_CONSOL) != VTX_CONS_IGNORE && isDynamic(otlGetShare(pItem)) && parent &&
        parent->MbrInfo.usGen > 0 && isDynamic(otlGetShare(parent)) && isLarge(parent) && !L(parent)->MbrInfo.fTwoPass)
        w |= 0x10000;
    return w;
}

// ---- words to numbers ------------------------------------------------------------

VTX_STS_T adShrOtlSetVerifyStatus(VTX_ULONG_T ulVerify, VTX_ULONG_T ulVerify2, VTX_ULONG_T ulVerify3,
                                  VTX_ULONG_T ulVerify4, VTX_ULONG_T ulVerify5, VTX_ULONG_T, VTX_LONG_T sizeErrorCodes,
                                  VTX_STS_T *errorCodes, VTX_LONG_T *count) {
    if (count) *count = 0;
    if (errorCodes)
        for (VTX_LONG_T i = 0; i < sizeErrorCodes; ++i) errorCodes[i] = 0;
    if (!ulVerify && !ulVerify3 && !ulVerify5) return 0;
    VTX_STS_T first = 0;
    VTX_LONG_T n = 0;
    auto take = [&](VTX_STS_T code) {
        if (!first) first = code;
        if (errorCodes && n < sizeErrorCodes) errorCodes[n++] = code;
    };
    for (const BitCode &b : kVerify1)
        if (ulVerify & b.bit) take(b.code);
    for (const BitCode &b : kVerify2)
        if (ulVerify2 & b.bit) take(b.code);
    for (const BitCode &b : kVerify3)
        if (ulVerify3 & b.bit) take(b.code);
    for (const BitCode &b : kVerify4)
        if (ulVerify4 & b.bit) take(b.code);
    for (const BitCode &b : kVerify5)
        if (ulVerify5 & b.bit) take(b.code);
    if (ulVerify & 0x80000000u) take(1060344);
    if ((ulVerify & 0x40000000u) && !ulVerify3) take(1060106);
    if (count) *count = n;
    return errorCodes ? (n ? errorCodes[0] : 0) : first;
}

VTX_STS_T otlSetVerifyStatus(VTX_ULONG_T ulVerify, VTX_ULONG_T ulVerify2, VTX_ULONG_T ulVerify3, VTX_ULONG_T ulVerify4,
                             VTX_ULONG_T ulVerify5, VTX_ULONG_T ulVerify6) {
    return adShrOtlSetVerifyStatus(ulVerify, ulVerify2, ulVerify3, ulVerify4, ulVerify5, ulVerify6, 0, nullptr,
                                   nullptr);
}

VTX_STS_T otlVerifyEditedItem(VTX_POTL_T o, VTX_POTLMBR_T pItem, VTX_USHORT_T usVerifyType, VTX_POUTERROR_T pErr) {
    if (pErr) std::memset(pErr, 0, sizeof *pErr);
    if (!o || !pItem) return VTX_STS_NULL_ARG;
    vTX_PNETCTX_T ctx = o->pNetCtx;
    const VTX_USHORT_T type = (VTX_USHORT_T)((usVerifyType & 0xff) | OTL_VERIFY_MEMBER_ONLY);
    VTX_POTLMBR_T dim = otlGetDim(pItem);
    VTX_ULONG_T v4 = 0, v5 = 0, v3 = 0;
    VTX_ULONG_T v = otlVerifyItem(ctx, o, dim, pItem, &v4, type);
    VTX_ULONG_T v2 = otlVerify2Item(ctx, o, dim, pItem, type);
    if (o->usOutlineType == VTX_OTL_AGGSTORE) v3 = (VTX_ULONG_T)otlVerifyASOItem(ctx, o, dim, pItem, &v4, &v5, type);
    if (v2) v |= 0x80000000u;
    if ((v3 & 0x1ff8ffffu) || (v4 & 0x0fffffffu) || (v5 & 0x1fffffffu)) v |= 0x40000000u;
    // Warnings never refuse an edit.
    if (!(v & kVerifyErrors)) return 0;
    if (pErr) {
        pErr->hMember = pItem;
        pErr->ulErrors = v;
        pErr->ulErrors2 = v2;
        pErr->ulErrors3 = v3;
        pErr->ulErrors4 = v4;
        pErr->ulErrors5 = v5;
    }
    VTX_STS_T sts = otlSetVerifyStatus(v & ~kVerifyWarnings, v2, v3, v4, v5, 0);
    return sts ? sts : (VTX_STS_T)v;
}

} // extern "C"
