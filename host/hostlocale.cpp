// Text and locale service of the host, on ICU.
//
// A locale handle names a language, a country and a character set.  Text
// in a handle's character set is converted through ICU; case mapping and
// collation follow the handle's language.  A null handle is UTF-8 with
// root rules.
//
// Case-insensitive comparison is defined on the upper-case forms: two texts
// compare equal ignoring case exactly when adGlobStrNToUpper gives them the
// same bytes, and they order as those bytes do.  The member hash index keys
// names by their upper-case form, so the two must never disagree.
#include <array>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <new>
#include <string>
#include <vector>

#include <unicode/ucasemap.h>
#include <unicode/ucnv.h>
#include <unicode/ucol.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include "hostint.h"
#include "vtxstatus.h"

namespace {

constexpr uint32_t kLocaleMagic = 0x564C4F43u;  // "VLOC"

struct VtxLocale {
    uint32_t magic = kLocaleMagic;
    bool shared = false;         // the process-wide UTF-8 handle: never freed
    std::string name;            // "lang_COUNTRY.charset"
    std::string icuId;           // language and country for ICU, "" for root
    std::string charset;         // converter name as the caller spelled it
    bool utf8 = true;
    bool singleByte = false;     // one byte is one character
    bool asciiCompatible = true; // bytes below 0x80 are ASCII characters on their own
    bool asciiPlainCase = true;  // ASCII letters case-map one to one, without context

    std::once_flag caseOnce;
    UCaseMap *caseMap = nullptr;
    std::once_flag collOnce;
    UCollator *collTertiary = nullptr;
    UCollator *collSecondary = nullptr;

    VtxLocale() = default;
    VtxLocale(const VtxLocale &) = delete;
    VtxLocale &operator=(const VtxLocale &) = delete;
    ~VtxLocale() {
        magic = 0;
        if (caseMap) ucasemap_close(caseMap);
        if (collTertiary) ucol_close(collTertiary);
        if (collSecondary) ucol_close(collSecondary);
    }
};

VtxLocale *sharedUtf8Locale() {
    // Built once and kept for the life of the process: handles to it sit in
    // contexts and outlines that may outlive any static destructor order.
    static VtxLocale *loc = [] {
        auto *l = new VtxLocale;
        l->shared = true;
        l->name = "en_US.UTF-8";
        l->icuId = "en_US";
        l->charset = "UTF-8";
        return l;
    }();
    return loc;
}

VtxLocale *toLocale(void *p) {
    auto *l = static_cast<VtxLocale *>(p);
    return (l && l->magic == kLocaleMagic) ? l : sharedUtf8Locale();
}

// Languages whose case rules touch ASCII letters or depend on neighbours
// of ASCII letters: Turkish and Azeri dotted i, Lithuanian dot above, Greek
// accent removal.  Their texts always take the full ICU path.
bool languageHasSpecialCasing(const std::string &lang) {
    return lang == "tr" || lang == "az" || lang == "lt" || lang == "el";
}

UCaseMap *caseMapOf(VtxLocale *l) {
    std::call_once(l->caseOnce, [l] {
        UErrorCode st = U_ZERO_ERROR;
        UCaseMap *m = ucasemap_open(l->icuId.c_str(), 0, &st);
        if (U_SUCCESS(st)) l->caseMap = m;
        else if (m) ucasemap_close(m);
    });
    return l->caseMap;
}

UCollator *collatorOf(VtxLocale *l, bool ignoreCase) {
    std::call_once(l->collOnce, [l] {
        UErrorCode st = U_ZERO_ERROR;
        UCollator *c3 = ucol_open(l->icuId.c_str(), &st);
        if (U_FAILURE(st)) {
            if (c3) ucol_close(c3);
            return;
        }
        ucol_setStrength(c3, UCOL_TERTIARY);
        st = U_ZERO_ERROR;
        UCollator *c2 = ucol_open(l->icuId.c_str(), &st);
        if (U_FAILURE(st)) {
            if (c2) ucol_close(c2);
            ucol_close(c3);
            return;
        }
        ucol_setStrength(c2, UCOL_SECONDARY);
        l->collTertiary = c3;
        l->collSecondary = c2;
    });
    return ignoreCase ? l->collSecondary : l->collTertiary;
}

// ---- byte-level helpers -------------------------------------------------

constexpr std::array<unsigned char, 128> makeAsciiTable(bool upper) {
    std::array<unsigned char, 128> t{};
    for (int c = 0; c < 128; ++c) {
        int m = c;
        if (upper && c >= 'a' && c <= 'z') m = c - 'a' + 'A';
        if (!upper && c >= 'A' && c <= 'Z') m = c - 'A' + 'a';
        t[static_cast<size_t>(c)] = static_cast<unsigned char>(m);
    }
    return t;
}
constexpr auto kAsciiUpper = makeAsciiTable(true);
constexpr auto kAsciiLower = makeAsciiTable(false);

bool fastAsciiCase(const VtxLocale *l) { return l->asciiCompatible && l->asciiPlainCase; }

int sign(int v) { return (v > 0) - (v < 0); }

int compareBytes(const char *a, size_t na, const char *b, size_t nb) {
    size_t n = na < nb ? na : nb;
    int c = n ? std::memcmp(a, b, n) : 0;
    if (c) return sign(c);
    return na < nb ? -1 : (na > nb ? 1 : 0);
}

// Strict UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool validUtf8(const char *s, size_t n) {
    const auto *p = reinterpret_cast<const unsigned char *>(s);
    size_t i = 0;
    while (i < n) {
        unsigned c = p[i];
        if (c < 0x80) {
            ++i;
            continue;
        }
        size_t len;
        unsigned lo = 0x80, hi = 0xBF;
        if (c >= 0xC2 && c <= 0xDF) {
            len = 2;
        } else if (c >= 0xE0 && c <= 0xEF) {
            len = 3;
            if (c == 0xE0) lo = 0xA0;
            if (c == 0xED) hi = 0x9F;
        } else if (c >= 0xF0 && c <= 0xF4) {
            len = 4;
            if (c == 0xF0) lo = 0x90;
            if (c == 0xF4) hi = 0x8F;
        } else {
            return false;
        }
        if (n - i < len) return false;
        if (p[i + 1] < lo || p[i + 1] > hi) return false;
        for (size_t k = 2; k < len; ++k)
            if ((p[i + k] & 0xC0) != 0x80) return false;
        i += len;
    }
    return true;
}

constexpr size_t kMaxIcuText = 0x0FFFFFFF;  // keeps every ICU length inside int32_t

// ---- conversion through ICU --------------------------------------------

struct Converter {
    UConverter *c = nullptr;
    Converter(const std::string &name, bool strict) {
        UErrorCode st = U_ZERO_ERROR;
        c = ucnv_open(name.c_str(), &st);
        if (U_FAILURE(st)) {
            if (c) ucnv_close(c);
            c = nullptr;
            return;
        }
        if (strict) {
            ucnv_setToUCallBack(c, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &st);
            ucnv_setFromUCallBack(c, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &st);
            if (U_FAILURE(st)) {
                ucnv_close(c);
                c = nullptr;
            }
        }
    }
    ~Converter() {
        if (c) ucnv_close(c);
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;
};

// Text of the locale's encoding to UTF-16.  Strict: ill-formed input fails;
// otherwise it is replaced by substitution characters.
bool toUtf16(const VtxLocale *l, const char *s, size_t n, std::u16string &out, bool strict) {
    out.clear();
    if (n > kMaxIcuText) return false;
    UErrorCode st = U_ZERO_ERROR;
    int32_t len = 0;
    if (l->utf8) {
        out.resize(n + 1);
        if (strict) {
            u_strFromUTF8(out.data(), static_cast<int32_t>(out.size()), &len, s,
                          static_cast<int32_t>(n), &st);
        } else {
            u_strFromUTF8WithSub(out.data(), static_cast<int32_t>(out.size()), &len, s,
                                 static_cast<int32_t>(n), 0xFFFD, nullptr, &st);
        }
    } else {
        Converter conv(l->charset, strict);
        if (!conv.c) return false;
        out.resize(2 * n + 2);
        len = ucnv_toUChars(conv.c, out.data(), static_cast<int32_t>(out.size()), s,
                            static_cast<int32_t>(n), &st);
    }
    if (U_FAILURE(st)) return false;
    out.resize(static_cast<size_t>(len));
    return true;
}

// UTF-16 to the locale's encoding; fails on a character it cannot hold.
bool fromUtf16(const VtxLocale *l, const char16_t *u, size_t n, std::string &out) {
    out.clear();
    if (n > kMaxIcuText) return false;
    UErrorCode st = U_ZERO_ERROR;
    int32_t len = 0;
    if (l->utf8) {
        out.resize(3 * n + 1);
        u_strToUTF8(out.data(), static_cast<int32_t>(out.size()), &len, u,
                    static_cast<int32_t>(n), &st);
    } else {
        Converter conv(l->charset, true);
        if (!conv.c) return false;
        size_t cap = n * static_cast<size_t>(ucnv_getMaxCharSize(conv.c)) + 16;
        out.resize(cap);
        len = ucnv_fromUChars(conv.c, out.data(), static_cast<int32_t>(cap), u,
                              static_cast<int32_t>(n), &st);
    }
    if (U_FAILURE(st)) return false;
    out.resize(static_cast<size_t>(len));
    return true;
}

// ---- case mapping ---------------------------------------------------------

int32_t mapUtf16(const VtxLocale *l, bool upper, char16_t *dst, int32_t cap, const char16_t *src,
                 int32_t n, UErrorCode *st) {
    return upper ? u_strToUpper(dst, cap, src, n, l->icuId.c_str(), st)
                 : u_strToLower(dst, cap, src, n, l->icuId.c_str(), st);
}

bool mapUtf16String(const VtxLocale *l, bool upper, const std::u16string &src,
                    std::u16string &out) {
    out.assign(src.size() * 3 + 4, u'\0');
    UErrorCode st = U_ZERO_ERROR;
    int32_t len = mapUtf16(l, upper, out.data(), static_cast<int32_t>(out.size()), src.data(),
                           static_cast<int32_t>(src.size()), &st);
    if (st == U_BUFFER_OVERFLOW_ERROR) {
        out.assign(static_cast<size_t>(len) + 1, u'\0');
        st = U_ZERO_ERROR;
        len = mapUtf16(l, upper, out.data(), static_cast<int32_t>(out.size()), src.data(),
                       static_cast<int32_t>(src.size()), &st);
    }
    if (U_FAILURE(st)) return false;
    out.resize(static_cast<size_t>(len));
    return true;
}

// Case mapping of text in a native character set.  The whole text is
// mapped through UTF-16; where a mapped character has no form in the
// character set (upper-case y with diaeresis in Latin-1), that character
// keeps its original form.
VTX_STS_T mapNative(const VtxLocale *l, bool upper, const char *s, size_t n, std::string &out) {
    std::u16string u, mapped;
    if (!toUtf16(l, s, n, u, true)) return VTX_STS_BAD_TEXT;
    if (!mapUtf16String(l, upper, u, mapped)) return VTX_STS_BAD_TEXT;
    if (fromUtf16(l, mapped.data(), mapped.size(), out)) return VTX_STS_OK;

    std::u16string assembled, piece, pieceMapped;
    std::string scratch;
    size_t i = 0;
    while (i < u.size()) {
        size_t start = i;
        UChar32 cp;
        U16_NEXT(u.data(), i, u.size(), cp);
        (void)cp;
        piece.assign(u, start, i - start);
        if (mapUtf16String(l, upper, piece, pieceMapped) &&
            fromUtf16(l, pieceMapped.data(), pieceMapped.size(), scratch)) {
            assembled += pieceMapped;
        } else {
            assembled += piece;
        }
    }
    return fromUtf16(l, assembled.data(), assembled.size(), out) ? VTX_STS_OK : VTX_STS_BAD_TEXT;
}

// Maps UTF-8 straight into a caller's buffer (NUL written when it fits);
// TEXT_TOO_LONG when the buffer is short.  buf must not overlap s.
VTX_STS_T mapUtf8Into(VtxLocale *l, bool upper, const char *s, size_t n, char *buf, size_t cap,
                      size_t *outLen) {
    if (n > kMaxIcuText) return VTX_STS_TEXT_TOO_LONG;
    if (cap > kMaxIcuText) cap = kMaxIcuText;
    UCaseMap *cm = caseMapOf(l);
    if (!cm) return VTX_STS_BAD_LOCALE;
    UErrorCode st = U_ZERO_ERROR;
    int32_t len = upper ? ucasemap_utf8ToUpper(cm, buf, static_cast<int32_t>(cap), s,
                                               static_cast<int32_t>(n), &st)
                        : ucasemap_utf8ToLower(cm, buf, static_cast<int32_t>(cap), s,
                                               static_cast<int32_t>(n), &st);
    if (st == U_BUFFER_OVERFLOW_ERROR || st == U_STRING_NOT_TERMINATED_WARNING)
        return VTX_STS_TEXT_TOO_LONG;
    if (U_FAILURE(st)) return VTX_STS_BAD_TEXT;
    *outLen = static_cast<size_t>(len);
    return VTX_STS_OK;
}

VTX_STS_T mapUtf8(VtxLocale *l, bool upper, const char *s, size_t n, std::string &out) {
    if (n > kMaxIcuText) return VTX_STS_TEXT_TOO_LONG;
    UCaseMap *cm = caseMapOf(l);
    if (!cm) return VTX_STS_BAD_LOCALE;
    auto run = [&](size_t cap, UErrorCode *st) {
        out.resize(cap);
        return upper ? ucasemap_utf8ToUpper(cm, out.data(), static_cast<int32_t>(cap), s,
                                            static_cast<int32_t>(n), st)
                     : ucasemap_utf8ToLower(cm, out.data(), static_cast<int32_t>(cap), s,
                                            static_cast<int32_t>(n), st);
    };
    UErrorCode st = U_ZERO_ERROR;
    int32_t len = run(n * 3 / 2 + 16, &st);
    if (st == U_BUFFER_OVERFLOW_ERROR) {
        st = U_ZERO_ERROR;
        len = run(static_cast<size_t>(len) + 1, &st);
    }
    if (U_FAILURE(st)) return VTX_STS_BAD_TEXT;
    out.resize(static_cast<size_t>(len));
    return VTX_STS_OK;
}

VTX_STS_T mapCase(VtxLocale *l, bool upper, const char *s, size_t n, std::string &out) {
    if (fastAsciiCase(l)) {
        size_t i = 0;
        while (i < n && !(static_cast<unsigned char>(s[i]) & 0x80)) ++i;
        if (i == n) {
            const auto &table = upper ? kAsciiUpper : kAsciiLower;
            out.resize(n);
            for (size_t k = 0; k < n; ++k)
                out[k] = static_cast<char>(table[static_cast<unsigned char>(s[k])]);
            return VTX_STS_OK;
        }
    }
    return l->utf8 ? mapUtf8(l, upper, s, n, out) : mapNative(l, upper, s, n, out);
}

// Folding of a text that is not pure ASCII, or not in a plain locale.
VTX_STS_T foldFull(VtxLocale *l, bool upper, char *dst, const char *src, size_t capacity) {
    size_t n = std::strlen(src);
    auto d = reinterpret_cast<uintptr_t>(dst), sp = reinterpret_cast<uintptr_t>(src);
    bool overlap = d < sp + n + 1 && sp < d + capacity;
    if (l->utf8 && !overlap) {
        // The common case writes straight into the destination.
        size_t len = 0;
        VTX_STS_T sts = mapUtf8Into(l, upper, src, n, dst, capacity, &len);
        if (sts) dst[0] = '\0';
        return sts;
    }
    std::string out;
    VTX_STS_T sts = mapCase(l, upper, src, n, out);
    if (!sts && out.size() + 1 > capacity) sts = VTX_STS_TEXT_TOO_LONG;
    if (sts) {
        dst[0] = '\0';
        return sts;
    }
    std::memcpy(dst, out.c_str(), out.size() + 1);
    return VTX_STS_OK;
}

// The fold used by the NToUpper / NToLower pair: a pure-ASCII text is
// mapped byte by byte, without a copy (dst may be src); anything else
// through ICU.
VTX_STS_T foldInto(void *pLocale, bool upper, char *dst, const char *src, size_t capacity) {
    if (!dst || !capacity) return VTX_STS_NULL_ARG;
    if (!src) {
        dst[0] = '\0';
        return VTX_STS_NULL_ARG;
    }
    VtxLocale *l = toLocale(pLocale);
    if (!fastAsciiCase(l)) return foldFull(l, upper, dst, src, capacity);
    const auto &table = upper ? kAsciiUpper : kAsciiLower;
    const size_t n = std::strlen(src);
    if (n < capacity) {
        // Names are folded for every lookup of the member index: eight bytes
        // at a time while they are ASCII.  A letter of the other case is one
        // whose byte lies in [first, last], and it differs by 0x20.
        constexpr uint64_t kOnes = 0x0101010101010101ull, kHigh = 0x8080808080808080ull;
        const uint64_t first = upper ? 'a' : 'A', last = upper ? 'z' : 'Z';
        size_t i = 0;
        for (; i + 8 <= n; i += 8) {
            uint64_t x;
            std::memcpy(&x, src + i, 8);
            // Not ASCII: ICU decides.  The ASCII prefix already written maps
            // to itself, so an in-place fold stays right.
            if (x & kHigh) return foldFull(l, upper, dst, src, capacity);
            // Bytes below 0x80 plus these offsets set their own top bit
            // exactly when they are at least `first` (above `last`), and
            // never carry into the next byte.
            const uint64_t atLeastFirst = x + (0x80 - first) * kOnes;
            const uint64_t aboveLast = x + (0x80 - last - 1) * kOnes;
            x ^= ((atLeastFirst & ~aboveLast) & kHigh) >> 2;
            std::memcpy(dst + i, &x, 8);
        }
        for (; i < n; ++i) {
            const unsigned char c = static_cast<unsigned char>(src[i]);
            if (c & 0x80) return foldFull(l, upper, dst, src, capacity);
            dst[i] = static_cast<char>(table[c]);
        }
        dst[n] = '\0';
        return VTX_STS_OK;
    }
    size_t i = 0;
    for (;; ++i) {
        unsigned char c = static_cast<unsigned char>(src[i]);
        if (c == 0) {
            if (i < capacity) {
                dst[i] = '\0';
                return VTX_STS_OK;
            }
            break;
        }
        // Not ASCII: ICU decides, and lengths may change.  The ASCII prefix
        // already written maps to itself, so an in-place fold stays right.
        if (c & 0x80) return foldFull(l, upper, dst, src, capacity);
        if (i + 1 >= capacity) break;
        dst[i] = static_cast<char>(table[c]);
    }
    // Out of room.  The rest decides: more ASCII cannot fit, but other
    // characters may map to fewer bytes.
    for (; src[i]; ++i)
        if (static_cast<unsigned char>(src[i]) & 0x80) return foldFull(l, upper, dst, src, capacity);
    dst[0] = '\0';
    return VTX_STS_TEXT_TOO_LONG;
}

int compareIgnoreCase(void *pLocale, const char *a, const char *b) {
    if (!a || !b) return a == b ? 0 : (a ? 1 : -1);
    VtxLocale *l = toLocale(pLocale);
    size_t i = 0;
    if (fastAsciiCase(l)) {
        for (;; ++i) {
            unsigned char ca = static_cast<unsigned char>(a[i]);
            unsigned char cb = static_cast<unsigned char>(b[i]);
            if ((ca | cb) & 0x80) break;
            unsigned char ua = kAsciiUpper[ca], ub = kAsciiUpper[cb];
            if (ua != ub) return ua < ub ? -1 : 1;
            if (ca == 0) return 0;
        }
        // The ASCII prefix maps without context, so only the rest matters.
        a += i;
        b += i;
    }
    size_t na = std::strlen(a), nb = std::strlen(b);
    if (l->utf8) {
        // Names are short: map both into the stack when they fit.
        char bufA[512], bufB[512];
        size_t la = 0, lb = 0;
        VTX_STS_T sa = mapUtf8Into(l, true, a, na, bufA, sizeof bufA, &la);
        VTX_STS_T sb = mapUtf8Into(l, true, b, nb, bufB, sizeof bufB, &lb);
        if (!sa && !sb) return compareBytes(bufA, la, bufB, lb);
    }
    std::string ua, ub;
    if (mapCase(l, true, a, na, ua) || mapCase(l, true, b, nb, ub)) {
        // A text the locale cannot read: fall back to its bytes, so that
        // the order stays total.
        return compareBytes(a, na, b, nb);
    }
    return compareBytes(ua.data(), ua.size(), ub.data(), ub.size());
}

int collate(void *pLocale, const char *a, const char *b, bool ignoreCase) {
    if (!a || !b) return a == b ? 0 : (a ? 1 : -1);
    VtxLocale *l = toLocale(pLocale);
    UCollator *coll = collatorOf(l, ignoreCase);
    if (coll) {
        UErrorCode st = U_ZERO_ERROR;
        UCollationResult r;
        if (l->utf8) {
            r = ucol_strcollUTF8(coll, a, -1, b, -1, &st);
        } else {
            std::u16string ua, ub;
            if (!toUtf16(l, a, std::strlen(a), ua, false) ||
                !toUtf16(l, b, std::strlen(b), ub, false)) {
                st = U_INVALID_CHAR_FOUND;
                r = UCOL_EQUAL;
            } else {
                r = ucol_strcoll(coll, ua.data(), static_cast<int32_t>(ua.size()), ub.data(),
                                 static_cast<int32_t>(ub.size()));
            }
        }
        if (U_SUCCESS(st)) return r == UCOL_LESS ? -1 : (r == UCOL_GREATER ? 1 : 0);
    }
    return ignoreCase ? compareIgnoreCase(pLocale, a, b) : sign(std::strcmp(a, b));
}

// ---- locale names ---------------------------------------------------------

bool allOf(const std::string &s, bool (*pred)(char)) {
    for (char c : s)
        if (!pred(c)) return false;
    return true;
}
bool isAlpha(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isCharsetChar(char c) {
    return isAlpha(c) || isDigit(c) || c == '-' || c == '_' || c == ':' || c == '.';
}
std::string lowerAscii(std::string s) {
    for (char &c : s) c = static_cast<char>(kAsciiLower[static_cast<unsigned char>(c)]);
    return s;
}
std::string upperAscii(std::string s) {
    for (char &c : s) c = static_cast<char>(kAsciiUpper[static_cast<unsigned char>(c)]);
    return s;
}

// Parses "language[_COUNTRY][.charset][@modifier]" into a new handle.
VTX_STS_T parseLocale(const char *psz, VtxLocale **ppOut) {
    std::string text(psz);
    if (text.empty() || text.size() >= VTX_LOCALESTR_LEN) return VTX_STS_BAD_LOCALE;
    if (size_t at = text.find('@'); at != std::string::npos) text.erase(at);
    std::string base = text, charset = "UTF-8";
    if (size_t dot = text.find('.'); dot != std::string::npos) {
        base = text.substr(0, dot);
        charset = text.substr(dot + 1);
        if (charset.empty() || !allOf(charset, isCharsetChar)) return VTX_STS_BAD_LOCALE;
    }

    std::string lang, country;
    if (base == "C" || base == "POSIX") {
        lang = base;
    } else {
        size_t us = base.find('_');
        lang = base.substr(0, us);
        if (us != std::string::npos) country = base.substr(us + 1);
        if (lang.size() < 2 || lang.size() > 8 || !allOf(lang, isAlpha)) return VTX_STS_BAD_LOCALE;
        if (us != std::string::npos &&
            !((country.size() == 2 && allOf(country, isAlpha)) ||
              (country.size() == 3 && allOf(country, isDigit))))
            return VTX_STS_BAD_LOCALE;
        lang = lowerAscii(lang);
        country = upperAscii(country);
    }

    Converter conv(charset, false);
    if (!conv.c) return VTX_STS_BAD_LOCALE;
    // Texts are NUL-terminated byte strings: encodings whose characters
    // contain zero bytes (UTF-16, UTF-32) cannot be carried.
    if (ucnv_getMinCharSize(conv.c) != 1) return VTX_STS_BAD_LOCALE;
    UErrorCode st = U_ZERO_ERROR;
    const char *canonical = ucnv_getName(conv.c, &st);
    if (U_FAILURE(st) || !canonical) return VTX_STS_BAD_LOCALE;

    auto *l = new (std::nothrow) VtxLocale;
    if (!l) return VTX_STS_NO_MEMORY;
    l->charset = charset;
    l->utf8 = std::strcmp(canonical, "UTF-8") == 0;
    l->singleByte = ucnv_getMaxCharSize(conv.c) == 1;
    if (lang == "C" || lang == "POSIX") {
        l->icuId = "";
        l->name = lang + "." + charset;
    } else {
        l->icuId = country.empty() ? lang : lang + "_" + country;
        l->name = l->icuId + "." + charset;
    }
    l->asciiPlainCase = !languageHasSpecialCasing(lang);

    // ASCII bytes stand for themselves only in stateless encodings that map
    // the whole ASCII range to the same bytes; anything else takes ICU.
    UConverterType type = ucnv_getType(conv.c);
    bool stateless = type == UCNV_UTF8 || type == UCNV_SBCS || type == UCNV_MBCS ||
                     type == UCNV_LATIN_1 || type == UCNV_US_ASCII;
    bool sameBytes = stateless;
    if (sameBytes && !l->utf8) {
        char ascii[128];
        for (int c = 1; c < 128; ++c) ascii[c - 1] = static_cast<char>(c);
        std::u16string u;
        sameBytes = toUtf16(l, ascii, 127, u, true) && u.size() == 127;
        for (size_t k = 0; sameBytes && k < 127; ++k)
            sameBytes = u[k] == static_cast<char16_t>(k + 1);
    }
    l->asciiCompatible = sameBytes;
    *ppOut = l;
    return VTX_STS_OK;
}

} // namespace

extern "C" {

VTX_API VTX_STS_T adGlobGetUTF8Locale(void **ppLocale) {
    if (!ppLocale) return VTX_STS_NULL_ARG;
    *ppLocale = sharedUtf8Locale();
    return VTX_STS_OK;
}

VTX_API VTX_STS_T adGlobGetLocaleAndStatus(const char *pszLocaleString, void **ppLocale) {
    if (!ppLocale) return VTX_STS_NULL_ARG;
    *ppLocale = nullptr;
    if (!pszLocaleString) return VTX_STS_NULL_ARG;
    VtxLocale *l = nullptr;
    VTX_STS_T sts = parseLocale(pszLocaleString, &l);
    if (sts) return sts;
    *ppLocale = l;
    return VTX_STS_OK;
}

VTX_API void adGlobFreeLocale(void *pLocale) {
    auto *l = static_cast<VtxLocale *>(pLocale);
    if (!l || l->magic != kLocaleMagic || l->shared) return;
    delete l;
}

VTX_API VTX_STS_T adGlobGetLocaleString(void *pLocale, char *buf, size_t bufSize) {
    if (!buf || !bufSize) return VTX_STS_NULL_ARG;
    const VtxLocale *l = toLocale(pLocale);
    if (l->name.size() + 1 > bufSize) {
        buf[0] = '\0';
        return VTX_STS_TEXT_TOO_LONG;
    }
    std::memcpy(buf, l->name.c_str(), l->name.size() + 1);
    return VTX_STS_OK;
}

VTX_API VTX_BOOL_T adGlobIsUTF8Locale(void *pLocale) { return toLocale(pLocale)->utf8 ? 1 : 0; }

VTX_API size_t adGlobStrNumChars(void *pLocale, const char *psz) {
    if (!psz) return 0;
    const VtxLocale *l = toLocale(pLocale);
    size_t n = std::strlen(psz);
    if (l->utf8) {
        size_t chars = 0;
        for (size_t i = 0; i < n; ++i)
            if ((static_cast<unsigned char>(psz[i]) & 0xC0) != 0x80) ++chars;
        return chars;
    }
    if (l->singleByte) return n;
    std::u16string u;
    if (!toUtf16(l, psz, n, u, false)) return n;
    return static_cast<size_t>(u_countChar32(u.data(), static_cast<int32_t>(u.size())));
}

VTX_API VTX_BOOL_T adGlobStrIsValid(void *pLocale, const char *psz) {
    if (!psz) return 0;
    const VtxLocale *l = toLocale(pLocale);
    size_t n = std::strlen(psz);
    if (l->utf8) return validUtf8(psz, n) ? 1 : 0;
    std::u16string u;
    return toUtf16(l, psz, n, u, true) ? 1 : 0;
}

VTX_API VTX_STS_T adGlobStrNToUpper(void *pLocale, char *dst, const char *src, size_t capacity) {
    return foldInto(pLocale, true, dst, src, capacity);
}

VTX_API VTX_STS_T adGlobStrNToLower(void *pLocale, char *dst, const char *src, size_t capacity) {
    return foldInto(pLocale, false, dst, src, capacity);
}

VTX_API int adGlobStrMapToUpper(void *pLocale, char *dst, size_t dstSize, const char *src,
                                int srcLen, VTX_ULONG_T) {
    if (!dst || !dstSize) return -1;
    if (!src) {
        dst[0] = '\0';
        return -1;
    }
    size_t n = srcLen < 0 ? std::strlen(src) : strnlen(src, static_cast<size_t>(srcLen));
    std::string out;
    if (mapCase(toLocale(pLocale), true, src, n, out) || out.size() + 1 > dstSize ||
        out.size() > static_cast<size_t>(INT32_MAX)) {
        dst[0] = '\0';
        return -1;
    }
    std::memcpy(dst, out.data(), out.size());
    dst[out.size()] = '\0';
    return static_cast<int>(out.size());
}

VTX_API int adGlobStrCompare(void *, const char *a, const char *b) {
    if (!a || !b) return a == b ? 0 : (a ? 1 : -1);
    return sign(std::strcmp(a, b));
}

VTX_API int adGlobStrCompareIgnoreCase(void *pLocale, const char *a, const char *b) {
    return compareIgnoreCase(pLocale, a, b);
}

VTX_API VTX_BOOL_T adGlobStrEqualsIgnoreCase(void *pLocale, const char *a, const char *b) {
    return compareIgnoreCase(pLocale, a, b) == 0 ? 1 : 0;
}

VTX_API int adGlobStrCollate(void *pLocale, const char *a, const char *b) {
    return collate(pLocale, a, b, false);
}

VTX_API int adGlobStrCollateIgnoreCase(void *pLocale, const char *a, const char *b) {
    return collate(pLocale, a, b, true);
}

VTX_API VTX_STS_T adEncodeConversion(void *pFromLocale, void *pToLocale, const char *src,
                                     char *dst, size_t dstSize) {
    if (!dst || !dstSize) return VTX_STS_NULL_ARG;
    dst[0] = '\0';
    if (!src) return VTX_STS_NULL_ARG;
    const VtxLocale *from = toLocale(pFromLocale);
    const VtxLocale *to = toLocale(pToLocale);
    size_t n = std::strlen(src);
    std::string out;
    std::u16string u;
    if (!toUtf16(from, src, n, u, true)) return VTX_STS_BAD_TEXT;
    if (from->utf8 && to->utf8) {
        out.assign(src, n);
    } else if (!fromUtf16(to, u.data(), u.size(), out)) {
        return VTX_STS_BAD_TEXT;
    }
    if (out.size() + 1 > dstSize) return VTX_STS_TEXT_TOO_LONG;
    std::memcpy(dst, out.data(), out.size());
    dst[out.size()] = '\0';
    return VTX_STS_OK;
}

} // extern "C"
