/*
 * stringBufferCWrapper.h -- the flat interface of the append-only text store.
 *
 * Stored texts never move and live until the buffer is freed.  Blocks come
 * from the context's allocator.
 */
#ifndef VTX_EH_STRINGBUFFERCWRAPPER_H
#define VTX_EH_STRINGBUFFERCWRAPPER_H

#include <stddef.h>
#include "vtxtypes.h"
#include "vtxnetctx.h"
#include "otlmem.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Opaque handle. */
typedef void *VTX_PSTRING_BUFFER_T;

VTX_NODISCARD VTX_API VTX_STS_T stringBufferInit(VTX_PSTRING_BUFFER_T *ppBuffer, vTX_PNETCTX_T pNetCtx);
VTX_API VTX_STS_T stringBufferFree(VTX_PSTRING_BUFFER_T pBuffer);
/* Stores strLen bytes of str and a NUL (strLen below 262144); answers the
 * stored copy, or null when a block is refused or an argument is null. */
VTX_API VTX_STR_T stringBufferAppend(VTX_PSTRING_BUFFER_T pBuffer, const char *str, size_t strLen);

#ifdef __cplusplus
}
#endif
#endif
