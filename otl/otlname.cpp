// Dynamic time series entries of an outline: eight period-to-date members
// that live in the outline rather than in the tree.
#include "otl.h"

extern "C" {

VTX_STS_T otlCreateDTSMbrs(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline) {
    if (!pOutline) return VTX_STS_NULL_ARG;
    for (unsigned i = 0; i < OTL_DTS_SLOTS; ++i) {
        if (pOutline->aDTSMbrs[i]) continue;
        VTX_STS_T sts = otlAlloc(pNetCtx, sizeof(VTX_DTSMBRITEM_T), &pOutline->aDTSMbrs[i]);
        if (sts) {
            otlFreeDTSMbrs(pNetCtx, pOutline);
            return sts;
        }
        pOutline->aDTSMbrs[i]->usGen = OTL_DTS_UNBOUND;
    }
    pOutline->usDTSEnabledMbrCount = 0;
    return 0;
}

void otlFreeDTSMbrs(vTX_PNETCTX_T pNetCtx, VTX_POTL_T pOutline) {
    if (!pOutline) return;
    for (unsigned i = 0; i < OTL_DTS_SLOTS; ++i) {
        (void)otlFreeMem(pNetCtx, pOutline->aDTSMbrs[i]);  // close path: nothing to report to
        pOutline->aDTSMbrs[i] = nullptr;
    }
    pOutline->usDTSEnabledMbrCount = 0;
}

} // extern "C"

// ---- member paths ---------------------------------------------------------------
//
// A path is a run of bracketed names joined by "." (descent) or "@" (a
// dimension and a name in it).  Inside brackets a "]" is written twice.
// Whether a text is a path is decided by its first bracket alone: a text
// that opens with "[" and whose first bracket closes is a path, and must
// then be well formed; anything else is a plain name standing for itself.
// That way every name survives a trip through a path: the bracketed form of
// a name always closes its bracket at its own end.
//
// The scan is by bytes: "[", "]", "." and "@" are single bytes that never
// occur inside a multi-byte character of UTF-8.

#include "otlhash.h"
#include "vtxotlfind.h"

#include <cctype>
#include <cstring>

namespace otl {

namespace {

// From just past an opening "[": the closing "]", or null if the bracket
// never closes.  *pLen receives the length of the name with "]]" read as one.
const char *scanBracketed(const char *p, size_t *pLen) noexcept {
    size_t n = 0;
    for (;;) {
        if (!*p) return nullptr;
        if (*p == ']') {
            if (p[1] != ']') break;
            p += 2;
        } else {
            ++p;
        }
        ++n;
    }
    if (pLen) *pLen = n;
    return p;
}

// Counts the segments of a well-formed path without writing them; 0 for a
// text that is not one.
VTX_USHORT_T countPathSegments(const char *s) noexcept {
    if (!otlLooksLikePath(s)) return 0;
    VTX_USHORT_T n = 0;
    const char *p = s;
    for (;;) {
        if (n == VTX_MAX_PATH_DEPTH || *p != '[') return 0;
        size_t len = 0;
        p = scanBracketed(p + 1, &len);
        if (!p || len > VTX_PATH_SEGMENT_MAX) return 0;
        ++n;
        ++p;
        if (!*p) return n;
        if (*p != '.' && *p != '@') return 0;
        ++p;
    }
}

// Appends "[" escaped-name "]" at w; the caller has made room for
// 2 * strlen(name) + 2 bytes.
char *writeBracketed(char *w, const char *name) noexcept {
    *w++ = '[';
    for (const char *p = name; *p; ++p) {
        if (*p == ']') *w++ = ']';
        *w++ = *p;
    }
    *w++ = ']';
    return w;
}

} // namespace

VTX_STS_T NameScratch::reserve(size_t n) noexcept {
    if (n <= cap_) return 0;
    void *p = nullptr;
    VTX_STS_T sts = ctx_ ? otlAlloc(ctx_, n, &p)
                         : VtxSdMemAllocUsingPolicy(nullptr, 0, n, &p, 1, __FILE__, __LINE__);
    if (!sts && !p) sts = VTX_STS_NO_MEMORY;
    if (sts) return sts;
    release();
    p_ = static_cast<char *>(p);
    cap_ = n;
    return 0;
}

void NameScratch::release() noexcept {
    if (p_ == inline_) return;
    // A scratch block holds nothing anyone waits for: a failed release has
    // no one to go to.
    if (ctx_) (void)otlFreeMem(ctx_, p_);
    else (void)VtxSdMemFree(nullptr, p_);
    p_ = inline_;
    cap_ = sizeof inline_;
}

bool otlLooksLikePath(const char *s) noexcept {
    return s && s[0] == '[' && scanBracketed(s + 1, nullptr) != nullptr;
}

VTX_STS_T otlParsePath(const char *expr, VTX_USHORT_T maxSegs, NameScratch &scratch, PathSegments &out) noexcept {
    out.count = 0;
    out.atCount = 0;
    if (!expr) return 0;
    if (maxSegs == 0 || maxSegs > VTX_MAX_PATH_DEPTH) maxSegs = VTX_MAX_PATH_DEPTH;
    const size_t len = std::strlen(expr);
    if (!otlLooksLikePath(expr)) {
        // A plain name is its own one segment, whatever brackets it holds.
        if (len > VTX_PATH_SEGMENT_MAX) return VTX_STS_TEXT_TOO_LONG;
        out.seg[0] = expr;
        out.count = 1;
        return 0;
    }
    // Unescaping only shortens, so the text's own length is room enough.
    if (VTX_STS_T sts = scratch.reserve(len + 1)) return sts;
    char *w = scratch.data();
    const char *p = expr;
    VTX_STS_T sts = 0;
    VTX_USHORT_T n = 0, at = 0;
    for (;;) {
        if (n == maxSegs) {
            sts = VTX_STS_PATH_TRAILING;
            break;
        }
        if (*p != '[') {
            sts = VTX_STS_PATH_NO_OPEN;
            break;
        }
        ++p;
        char *start = w;
        for (;;) {
            if (!*p) break;
            if (*p == ']') {
                if (p[1] != ']') break;
                ++p;
            }
            *w++ = *p++;
        }
        if (!*p) {
            sts = VTX_STS_PATH_UNCLOSED;
            break;
        }
        if (static_cast<size_t>(w - start) > VTX_PATH_SEGMENT_MAX) {
            sts = VTX_STS_TEXT_TOO_LONG;
            break;
        }
        *w++ = '\0';
        out.seg[n++] = start;
        ++p;  // past the closing bracket
        if (!*p) break;
        if (*p == '@') {
            ++at;
        } else if (*p != '.') {
            sts = VTX_STS_PATH_TRAILING;
            break;
        }
        ++p;
    }
    if (sts) return sts;
    out.count = n;
    out.atCount = at;
    return 0;
}

VTX_STS_T otlBuildPath(const char *parent, bool parentLiteral, const char *child, bool childLiteral,
                       NameScratch &out) noexcept {
    const bool hasParent = parent && *parent;
    const bool hasChild = child && *child;
    const size_t lp = hasParent ? std::strlen(parent) : 0;
    const size_t lc = hasChild ? std::strlen(child) : 0;
    // Names are refused before anything is built when no segment could hold
    // them; a path's own segments were measured by its parse.
    const bool parentIsPath = hasParent && !parentLiteral && countPathSegments(parent) > 0;
    VTX_USHORT_T childSegs = (hasChild && !childLiteral) ? countPathSegments(child) : 0;
    if ((hasParent && !parentIsPath && lp > VTX_PATH_SEGMENT_MAX) ||
        (hasChild && childSegs == 0 && lc > VTX_PATH_SEGMENT_MAX))
        return VTX_STS_TEXT_TOO_LONG;
    // A child of several segments names its own ancestors: it cannot be
    // put under anything, and the caller looks the two up apart.
    if (childSegs > 1) return VTX_STS_PATH_NOT_COMBINED;
    if (VTX_STS_T sts = out.reserve(2 * lp + 2 * lc + 8)) return sts;
    char *w = out.data();
    if (hasParent) {
        if (parentIsPath) {
            std::memcpy(w, parent, lp);
            w += lp;
        } else {
            w = writeBracketed(w, parent);
        }
    }
    if (hasChild) {
        if (hasParent) *w++ = '.';
        if (childSegs) {
            std::memcpy(w, child, lc);
            w += lc;
        } else {
            w = writeBracketed(w, child);
        }
    }
    *w = '\0';
    return 0;
}

} // namespace otl

extern "C" {

VTX_STS_T otlEscapeRightDelimiter(VTX_CSTR_T src, VTX_STR_T dst, size_t dstSize) {
    if (!dst || !dstSize) return VTX_STS_NULL_ARG;
    dst[0] = '\0';
    if (!src) return 0;
    size_t n = 0;
    for (const char *p = src; *p; ++p) n += (*p == ']') ? 2 : 1;
    if (n + 1 > dstSize) return VTX_STS_TEXT_TOO_LONG;
    char *w = dst;
    for (const char *p = src; *p; ++p) {
        if (*p == ']') *w++ = ']';
        *w++ = *p;
    }
    *w = '\0';
    return 0;
}

VTX_STS_T adShrParseMemberPathExpressionEx(void *, VTX_CSTR_T pExpression, VTX_MBRNAME_T **pstrArray,
                                           VTX_USHORT_T *pusCount, VTX_USHORT_T *pusAtCount) {
    if (pstrArray) *pstrArray = nullptr;
    if (pusAtCount) *pusAtCount = 0;
    if (!pusCount) return VTX_STS_NULL_ARG;
    const VTX_USHORT_T maxSegs = *pusCount;
    *pusCount = 0;
    if (!pExpression) return 0;
    if (!pstrArray) return VTX_STS_NULL_ARG;
    // The context of the caller is unknown here: the parse works in its own
    // scratch, which stays on the stack for any text of ordinary length.
    otl::NameScratch scratch(nullptr);
    otl::PathSegments segs;
    VTX_STS_T sts = otl::otlParsePath(pExpression, maxSegs, scratch, segs);
    if (sts) return sts;
    void *block = nullptr;
    sts = VtxSdMemAllocUsingPolicy(nullptr, 0, sizeof(VTX_MBRNAME_T) * segs.count, &block, 1, __FILE__, __LINE__);
    if (sts || !block) return VTX_STS_NO_MEMORY;
    VTX_MBRNAME_T *arr = static_cast<VTX_MBRNAME_T *>(block);
    for (VTX_USHORT_T i = 0; i < segs.count; ++i) {
        // Each segment was measured against the segment size by the parse.
        std::strcpy(arr[i], segs.seg[i]);
    }
    *pstrArray = arr;
    *pusCount = segs.count;
    if (pusAtCount) *pusAtCount = segs.atCount;
    return 0;
}

VTX_STS_T adShrParseMemberPathExpression(void *pLocale, VTX_CSTR_T pExpression, VTX_MBRNAME_T **pstrArray,
                                         VTX_USHORT_T *pusCount) {
    VTX_USHORT_T at = 0;
    return adShrParseMemberPathExpressionEx(pLocale, pExpression, pstrArray, pusCount, &at);
}

VTX_STS_T adShrIsMemberPathExpression(void *, VTX_CSTR_T pExpression, VTX_BOOL_T *pIsPath, VTX_USHORT_T *pusCount) {
    if (pIsPath) *pIsPath = 0;
    if (pusCount) *pusCount = 0;
    if (!pIsPath) return VTX_STS_NULL_ARG;
    VTX_USHORT_T n = otl::countPathSegments(pExpression);
    *pIsPath = n ? 1 : 0;
    if (pusCount) *pusCount = n;
    return 0;
}

VTX_STS_T adShrConstrucMemberPathExpression(void *, VTX_CSTR_T pParent, VTX_CSTR_T pChild, VTX_STR_T pExpression) {
    if (!pExpression) return VTX_STS_NULL_ARG;
    pExpression[0] = '\0';
    otl::NameScratch out(nullptr);
    VTX_STS_T sts = otl::otlBuildPath(pParent, false, pChild, false, out);
    if (sts) return sts;
    const size_t n = std::strlen(out.data());
    if (n + 1 > VTX_PATH_BLOCK_LEN) return VTX_STS_TEXT_TOO_LONG;
    std::memcpy(pExpression, out.data(), n + 1);
    return 0;
}

VTX_BOOL_T otlIsDefaultName(VTX_POTL_T pOutline, VTX_POTLMBR_T pDim, VTX_CSTR_T pszName, VTX_BOOL_T fGen) {
    if (!pDim || !pszName || !pDim->MbrInfo.szMember) return 0;
    const char *prefix = fGen ? "gen" : "lev";
    for (int i = 0; i < 3; ++i)
        if (std::tolower(static_cast<unsigned char>(pszName[i])) != prefix[i]) return 0;
    const char *p = pszName + 3;
    if (!std::isdigit(static_cast<unsigned char>(*p))) return 0;
    while (std::isdigit(static_cast<unsigned char>(*p))) ++p;
    if (*p != ',') return 0;
    ++p;
    vTX_PNETCTX_T ctx = pOutline ? pOutline->pNetCtx : nullptr;
    return otlStricmp(ctx, p, pDim->MbrInfo.szMember) == 0 ? 1 : 0;
}

} // extern "C"
