// System service of the host: memory, files and clock, and the defaults of
// a caller context.
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

#include "hostint.h"
#include "vtxstatus.h"

namespace {

// Sizes beyond this are refused before the C library sees them: no block
// can be that large, and asking would only make tools complain.
constexpr size_t kMaxBlock = static_cast<size_t>(PTRDIFF_MAX);

// A zero-byte request still yields a distinct block, so a success always
// comes with a pointer the caller can free.
inline size_t atLeastOne(size_t size) { return size ? size : 1; }

// Blocks this large are long-lived stores (the pools of member records run
// to tens of megabytes each) that are read at random; the kernel is asked to
// back the whole huge pages inside them by huge pages, which spares nearly
// every access a page walk.  Advice only: it changes no byte.
constexpr size_t kHugePage = size_t(2) << 20;
constexpr size_t kAdviseFrom = 2 * kHugePage;

void adviseHugePages(void *p, size_t size) {
    const uintptr_t start = reinterpret_cast<uintptr_t>(p);
    const uintptr_t first = (start + kHugePage - 1) & ~(kHugePage - 1);
    const uintptr_t last = (start + size) & ~(kHugePage - 1);
    if (last > first) (void)madvise(reinterpret_cast<void *>(first), last - first, MADV_HUGEPAGE);
}

VTX_STS_T zeroedBlock(size_t size, void **ppData) {
    if (!ppData) return VTX_STS_NULL_ARG;
    *ppData = nullptr;
    if (size > kMaxBlock) return VTX_STS_NO_MEMORY;
    void *p = std::calloc(1, atLeastOne(size));
    if (!p) return VTX_STS_NO_MEMORY;
    if (size >= kAdviseFrom) adviseHugePages(p, size);
    *ppData = p;
    return VTX_STS_OK;
}

VTX_STS_T resizeBlock(void *pOld, size_t size, void **ppNew) {
    if (!ppNew) return VTX_STS_NULL_ARG;
    *ppNew = nullptr;
    if (!pOld) return zeroedBlock(size, ppNew);
    if (size > kMaxBlock) return VTX_STS_NO_MEMORY;
    // realloc leaves the old block alone when it fails, which is the
    // promise made to the caller.
    void *p = std::realloc(pOld, atLeastOne(size));
    if (!p) return VTX_STS_NO_MEMORY;
    *ppNew = p;
    return VTX_STS_OK;
}

// The host's own reporter, used when a context names none: errors go to
// the standard error stream, lesser levels are dropped.
VTX_STS_T defaultMessageCallback(void *, VTX_STS_T msgNum, VTX_USHORT_T level, VTX_CSTR_T logStr,
                                 VTX_CSTR_T msgStr) {
    if (level < VTX_MSG_ERROR) return VTX_STS_OK;
    std::fprintf(stderr, "%s\n%s\n", logStr ? logStr : "", msgStr ? msgStr : "");
    std::fflush(stderr);
    return msgNum;
}

} // namespace

extern "C" {

VTX_API VTX_STS_T VtxSdMemAllocUsingPolicy(void *, VTX_ULONG_T, size_t size, void **ppData,
                                           VTX_ULONG_T, const char *, int) {
    return zeroedBlock(size, ppData);
}

VTX_API VTX_STS_T VtxSdMemFree(void *, void *pData) {
    std::free(pData);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T VtxSdMemRealloc(void *, void *pOld, size_t size, void **ppNew) {
    return resizeBlock(pOld, size, ppNew);
}

VTX_API void VtxSdMemClear(void *pData, size_t size) {
    if (pData && size) std::memset(pData, 0, size);
}

VTX_API VTX_STS_T adMalloc(void *, size_t size, void **ppData) {
    if (!ppData) return VTX_STS_NULL_ARG;
    *ppData = nullptr;
    if (size > kMaxBlock) return VTX_STS_NO_MEMORY;
    void *p = std::malloc(atLeastOne(size));
    if (!p) return VTX_STS_NO_MEMORY;
    *ppData = p;
    return VTX_STS_OK;
}

VTX_API void adFree(void *, void *pData) { std::free(pData); }

VTX_API VTX_STS_T vtxHostAlloc(size_t size, void **ppData) { return zeroedBlock(size, ppData); }

VTX_API VTX_STS_T vtxHostFree(void *pData) {
    std::free(pData);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T vtxHostRealloc(void *pOld, size_t size, void **ppNew) {
    return resizeBlock(pOld, size, ppNew);
}

VTX_API VTX_STS_T vtxHostSdFree(void *, void *pData) {
    std::free(pData);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T vtxHostSdRealloc(void *, void *pOld, size_t size, void **ppNew) {
    return resizeBlock(pOld, size, ppNew);
}

VTX_API VTX_STS_T vtxHostInitContext(vtx_netctx_t *pNetCtx) {
    if (!pNetCtx) return VTX_STS_NULL_ARG;
    // The switches are reset because a context filled here owns no system
    // service context: the plain allocators must be the ones used.
    pNetCtx->bUseASDAlloc = 0;
    pNetCtx->bUseASDFree = 0;
    pNetCtx->bUseASDRealloc = 0;
    if (!pNetCtx->AllocFunc) pNetCtx->AllocFunc = vtxHostAlloc;
    if (!pNetCtx->FreeFunc) pNetCtx->FreeFunc = vtxHostFree;
    if (!pNetCtx->SdFreeFunc) pNetCtx->SdFreeFunc = vtxHostSdFree;
    if (!pNetCtx->ReallocFunc) pNetCtx->ReallocFunc = vtxHostRealloc;
    if (!pNetCtx->SdReallocFunc) pNetCtx->SdReallocFunc = vtxHostSdRealloc;
    if (!pNetCtx->pLocale) {
        VTX_STS_T sts = adGlobGetUTF8Locale(&pNetCtx->pLocale);
        if (sts) return sts;
    }
    if (!pNetCtx->MsgCallback) pNetCtx->MsgCallback = defaultMessageCallback;
    pNetCtx->bSendMsgNet = 1;
    if (!pNetCtx->usCallerType) pNetCtx->usCallerType = VTX_CALLER_API;
    if (!pNetCtx->usApiType) pNetCtx->usApiType = VTX_ENC_UTF8;
    return VTX_STS_OK;
}

VTX_API VTX_STS_T VtxSdFileRemove(void *, const char *pszPath) {
    if (!pszPath || !*pszPath) return VTX_STS_NULL_ARG;
    if (std::remove(pszPath) == 0) return VTX_STS_OK;
    return errno == ENOENT ? VTX_STS_FILE_NOT_FOUND : VTX_STS_FILE_OPEN_FAILED;
}

// Makes a unique file in pszDir (else $TEMP, else /tmp) whose name starts
// with pszPrefix, and gives back its path.  The empty file is left in place:
// it reserves the name, so no other process can take it before the caller
// writes there.
VTX_API VTX_STS_T VtxSdFileTempNameGet(void *, const char *pszDir, const char *pszPrefix,
                                       char *pszOut, size_t outSize) {
    if (!pszOut || !outSize) return VTX_STS_NULL_ARG;
    pszOut[0] = '\0';
    std::string dir;
    if (pszDir && *pszDir) {
        dir = pszDir;
    } else if (const char *env = std::getenv("TEMP"); env && *env) {
        dir = env;
    } else {
        dir = "/tmp";
    }
    if (dir.size() > 1 && dir.back() == '/') dir.pop_back();
    std::string path = dir;
    if (path != "/") path += '/';
    path += (pszPrefix && *pszPrefix) ? pszPrefix : "vtx";
    if (path.find('\0') != std::string::npos) return VTX_STS_TEMP_NAME_FAILED;
    path += "XXXXXX";
    if (path.size() + 1 > outSize) return VTX_STS_TEXT_TOO_LONG;
    std::string buf = path;
    int fd = mkstemp(buf.data());
    if (fd < 0) return VTX_STS_TEMP_NAME_FAILED;
    close(fd);
    std::memcpy(pszOut, buf.c_str(), buf.size() + 1);
    return VTX_STS_OK;
}

VTX_API double VtxSdClock(void) {
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
}

VTX_API VTX_ULONG64_T VtxSdGetUtcTimestamp(void) {
    timespec ts{};
    clock_gettime(CLOCK_REALTIME, &ts);
    return ts.tv_sec < 0 ? 0 : static_cast<VTX_ULONG64_T>(ts.tv_sec);
}

} // extern "C"
