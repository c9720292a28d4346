#include "stringBufferCWrapper.h"

#include "StringBuffer.h"
#include "blockalloc.h"
#include "vtxstatus.h"

namespace {
StringBuffer *B(VTX_PSTRING_BUFFER_T p) { return reinterpret_cast<StringBuffer *>(p); }
} // namespace

extern "C" {

VTX_API VTX_STS_T stringBufferInit(VTX_PSTRING_BUFFER_T *ppBuffer, vTX_PNETCTX_T pNetCtx) {
    if (!ppBuffer) return VTX_STS_NULL_ARG;
    *ppBuffer = nullptr;
    StringBuffer *b = vtxeh::newObject<StringBuffer>(pNetCtx);
    if (!b) return vtxehNoMemory(pNetCtx, "stringBufferInit");
    *ppBuffer = reinterpret_cast<VTX_PSTRING_BUFFER_T>(b);
    return VTX_STS_OK;
}

VTX_API VTX_STS_T stringBufferFree(VTX_PSTRING_BUFFER_T pBuffer) {
    vtxeh::deleteObject(B(pBuffer));
    return VTX_STS_OK;
}

VTX_API VTX_STR_T stringBufferAppend(VTX_PSTRING_BUFFER_T pBuffer, const char *str, size_t strLen) {
    if (!pBuffer || !str || strLen >= StringBuffer::BLOCK_BYTES) return nullptr;
    return B(pBuffer)->append(str, strLen);
}

} // extern "C"
