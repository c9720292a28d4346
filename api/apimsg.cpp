// The default message callbacks a host may install in its context.
#include "otl.h"

#include <cstdio>
#include <cstring>

namespace {

// True when the caller of this context reads and writes UTF-8 text.
bool callerIsUtf8(const vtx_netctx_t *c) {
    return c && ((c->usCallerType == VTX_CALLER_API && c->usApiType == VTX_ENC_UTF8) ||
                 (c->usCallerType == VTX_CALLER_APP && c->usAppType == VTX_ENC_UTF8));
}

} // namespace

extern "C" {

VTX_STS_T APIError(void *pCtx, VTX_STS_T MsgNum, VTX_USHORT_T Level, VTX_CSTR_T LogStr, VTX_CSTR_T MsgStr) {
    if (Level > VTX_MSG_ERROR) return MsgNum;
    if (Level < VTX_MSG_ERROR) return 0;
    const char *log = LogStr ? LogStr : "";
    const char *msg = MsgStr ? MsgStr : "";
    auto *c = static_cast<vtx_netctx_t *>(pCtx);
    char logBuf[1024], msgBuf[1024];
    if (callerIsUtf8(c)) {
        // The terminal speaks the server's native code page.
        if (adEncodeConversion(nullptr, c->pServerLocale, log, logBuf, sizeof logBuf) == 0) log = logBuf;
        if (adEncodeConversion(nullptr, c->pServerLocale, msg, msgBuf, sizeof msgBuf) == 0) msg = msgBuf;
    }
    std::fprintf(stderr, "%s\n%s\n", log, msg);
    return 0;
}

VTX_STS_T VtxError(void *pCtx, VTX_STS_T MsgNum, VTX_USHORT_T Level, VTX_CSTR_T LogStr, VTX_CSTR_T MsgStr) {
    return APIError(pCtx, MsgNum, Level, LogStr, MsgStr);
}

VTX_STS_T adShrOtlErrorCallback(void *myCtx, VTX_STS_T, VTX_USHORT_T Level, VTX_CSTR_T LogStr, VTX_CSTR_T MsgStr) {
    if (!myCtx || Level < VTX_MSG_ERROR) return 0;
    char *buf = static_cast<char *>(myCtx);
    const char *log = LogStr ? LogStr : "";
    if (const char *slash = std::strrchr(log, '/')) log = slash + 1;
    std::snprintf(buf, VTX_ERRBUF_LEN, "%s - %s", log, MsgStr ? MsgStr : "");
    return 0;
}

} // extern "C"
