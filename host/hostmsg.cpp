// Message service of the host: catalogue lookup, argument substitution and
// delivery to the caller's callback.
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <string>

#include "hostint.h"
#include "vtxstatus.h"

namespace vtxhost {

const CatalogueEntry *findMessage(int32_t number) {
    const CatalogueEntry *end = kCatalogue + kCatalogueSize;
    const CatalogueEntry *it = std::lower_bound(
        kCatalogue, end, number, [](const CatalogueEntry &e, int32_t n) { return e.number < n; });
    return (it != end && it->number == number) ? it : nullptr;
}

} // namespace vtxhost

namespace {

using vtxhost::kMaxMessageBytes;

struct MessageArg {
    const void *value;
    VTX_USHORT_T type;
};

// Appends without passing the bound; a cut never splits a UTF-8 sequence.
class BoundedText {
public:
    explicit BoundedText(size_t limit) : limit_(limit) {}
    void append(const char *s, size_t n) {
        if (full_) return;
        size_t room = limit_ - text_.size();
        if (n > room) {
            n = room;
            // Step back over continuation bytes to a character start.
            while (n > 0 && (static_cast<unsigned char>(s[n]) & 0xC0) == 0x80) --n;
            full_ = true;
        }
        text_.append(s, n);
    }
    void append(const std::string &s) { append(s.data(), s.size()); }
    void append(char c) { append(&c, 1); }
    const std::string &str() const { return text_; }

private:
    std::string text_;
    size_t limit_;
    bool full_ = false;
};

// Renders one argument for a conversion.  The argument's own type decides
// how it is read; the conversion only chooses the notation of a number.  A
// missing argument, a null pointer or an unknown type renders as nothing.
std::string renderArg(const MessageArg *arg, char conv, int precision) {
    if (!arg || !arg->value) return {};
    switch (arg->type) {
    case VTX_MSGARG_STR: {
        const char *s = static_cast<const char *>(arg->value);
        size_t n = std::strlen(s);
        if (conv == 's' && precision >= 0 && static_cast<size_t>(precision) < n) {
            n = static_cast<size_t>(precision);
            while (n > 0 && (static_cast<unsigned char>(s[n]) & 0xC0) == 0x80) --n;
        }
        return std::string(s, n);
    }
    case VTX_MSGARG_PU16:
    case VTX_MSGARG_PU32: {
        uint32_t u = 0;
        int32_t i = 0;
        if (arg->type == VTX_MSGARG_PU16) {
            uint16_t v;
            std::memcpy(&v, arg->value, sizeof v);
            u = v;
            i = static_cast<int16_t>(v);
        } else {
            std::memcpy(&u, arg->value, sizeof u);
            i = static_cast<int32_t>(u);
        }
        char buf[24];
        switch (conv) {
        case 'd':
        case 'i':
            std::snprintf(buf, sizeof buf, "%" PRId32, i);
            break;
        case 'x':
            std::snprintf(buf, sizeof buf, "%" PRIx32, u);
            break;
        case 'X':
            std::snprintf(buf, sizeof buf, "%" PRIX32, u);
            break;
        case 'o':
            std::snprintf(buf, sizeof buf, "%" PRIo32, u);
            break;
        default:
            std::snprintf(buf, sizeof buf, "%" PRIu32, u);
            break;
        }
        return buf;
    }
    default:
        return {};
    }
}

// Applies the arguments to a printf-like catalogue text.  Conversions are
// taken in order, one argument each; the text is never handed to printf,
// so a text and arguments that disagree give a wrong word, not a crash.
std::string applyArgs(const char *format, const MessageArg *args, size_t nArgs) {
    BoundedText out(kMaxMessageBytes);
    size_t next = 0;
    const char *p = format;
    while (*p) {
        const char *pct = std::strchr(p, '%');
        if (!pct) {
            out.append(p, std::strlen(p));
            break;
        }
        out.append(p, static_cast<size_t>(pct - p));
        const char *q = pct + 1;
        if (*q == '%') {
            out.append('%');
            p = q + 1;
            continue;
        }
        while (*q && std::strchr("-+ #0'", *q)) ++q;
        while ((*q >= '0' && *q <= '9') || *q == '*') ++q;
        int precision = -1;
        if (*q == '.') {
            ++q;
            precision = 0;
            while (*q >= '0' && *q <= '9') {
                if (precision < 100000) precision = precision * 10 + (*q - '0');
                ++q;
            }
            if (*q == '*') ++q;
        }
        while (*q && std::strchr("hlLqjzt", *q)) ++q;
        char conv = *q;
        if (!conv || !std::strchr("diouxXeEfFgGaAcspn", conv)) {
            // Not a conversion: keep the text as it stands.
            out.append(pct, static_cast<size_t>(q - pct));
            p = q;
            continue;
        }
        if (conv != 'n') {
            const MessageArg *arg = next < nArgs ? &args[next] : nullptr;
            ++next;
            out.append(renderArg(arg, conv, precision));
        }
        p = q + 1;
    }
    return out.str();
}

const char *levelWord(VTX_USHORT_T level) {
    if (level >= VTX_MSG_ERROR) return "Error";
    if (level == VTX_MSG_WARNING) return "Warning";
    return "Info";
}

} // namespace

extern "C" {

VTX_API VTX_STS_T adNetLocalMessage(vtx_netctx_t *pNetCtx, VTX_STS_T code, VTX_USHORT_T level,
                                    const void *arg1, VTX_USHORT_T type1, const void *arg2,
                                    VTX_USHORT_T type2) {
    const bool isError = level >= VTX_MSG_ERROR;
    if (!pNetCtx) return isError ? code : VTX_STS_OK;

    const MessageArg args[2] = {{arg1, type1}, {arg2, type2}};
    std::string text;
    if (const vtxhost::CatalogueEntry *e = vtxhost::findMessage(code)) {
        text = applyArgs(e->text, args, 2);
    } else {
        // No text for this number: name it, and keep whatever was given.
        BoundedText out(kMaxMessageBytes);
        char head[32];
        std::snprintf(head, sizeof head, "Message %" PRId32, code);
        out.append(head, std::strlen(head));
        std::string a1 = renderArg(&args[0], 's', -1), a2 = renderArg(&args[1], 's', -1);
        if (!a1.empty() || !a2.empty()) {
            out.append(": " + a1);
            if (!a2.empty()) out.append((a1.empty() ? "" : ", ") + a2);
        }
        text = out.str();
    }

    char logStr[64];
    std::snprintf(logStr, sizeof logStr, "vtxotl/%s %" PRId32, levelWord(level), code);

    VTX_STS_T verdict = VTX_STS_OK;
    if (pNetCtx->MsgCallback) {
        void *user = pNetCtx->pMsgUserCtx ? pNetCtx->pMsgUserCtx : pNetCtx;
        verdict = pNetCtx->MsgCallback(user, code, level, logStr, text.c_str());
    }
    // An error stays an error whatever the callback answers: a refused call
    // must never read as a success.
    return isError ? code : verdict;
}

VTX_API const char *adNetMessageText(VTX_STS_T code) {
    const vtxhost::CatalogueEntry *e = vtxhost::findMessage(code);
    return e ? e->text : nullptr;
}

VTX_API VTX_USHORT_T adNetMessageLevel(VTX_STS_T code) {
    const vtxhost::CatalogueEntry *e = vtxhost::findMessage(code);
    return e ? e->level : 0;
}

} // extern "C"
