/*
 * otlmem.h -- allocation and text helpers every source of the library uses.
 *
 * All memory of an outline goes through its caller context (vtx_netctx_t):
 * VtxSdMemAllocUsingPolicy when bUseASDAlloc is set, AllocFunc otherwise.
 * A nonzero answer of the allocator is the status of the failed call; a
 * missing allocator reads as out of memory (1060358).  Blocks are always
 * zero-filled.
 */
#ifndef OTLMEM_H
#define OTLMEM_H

#include "vtxtypes.h"
#include "vtxnetctx.h"
#include "vtxstatus.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Status-returning internal calls are never ignored silently. */
#if defined(__cplusplus)
#define VTX_NODISCARD [[nodiscard]]
#elif defined(__GNUC__)
#define VTX_NODISCARD __attribute__((warn_unused_result))
#else
#define VTX_NODISCARD
#endif

VTX_NODISCARD VTX_API VTX_STS_T otlAllocEx(vTX_PNETCTX_T pNetCtx, size_t size, void **ppData,
                                           const char *sourceName, int sourceLine);
VTX_NODISCARD VTX_API VTX_STS_T otlReallocEx(vTX_PNETCTX_T pNetCtx, void *pOld, size_t size,
                                             void **ppNew);
/* Releases a block of otlAlloc; null is accepted.  Answers the allocator's status. */
VTX_API VTX_STS_T otlFreeMem(vTX_PNETCTX_T pNetCtx, void *pData);
/* Copies a text through the context; a null or empty source gives a null copy. */
VTX_NODISCARD VTX_API VTX_STS_T otlStrdup(vTX_PNETCTX_T pNetCtx, const char *pString, char **ppData);

#define otlAlloc(ctx, size, pp) otlAllocEx((ctx), (size), (void **)(pp), __FILE__, __LINE__)

/* Comparison of two texts of an outline: binary, case-insensitive (full
 * folding in the caller's locale), and case-insensitive collation. */
typedef int (*OTL_PSTRCMPFUNC_T)(vTX_PNETCTX_T pNetCtx, const char *a, const char *b);
VTX_API int otlStrcmp(vTX_PNETCTX_T pNetCtx, const char *a, const char *b);
VTX_API int otlStricmp(vTX_PNETCTX_T pNetCtx, const char *a, const char *b);
VTX_API int otlStricoll(vTX_PNETCTX_T pNetCtx, const char *a, const char *b);

#ifdef __cplusplus
}
#endif
#endif
