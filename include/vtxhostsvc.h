/*
 * vtxhostsvc.h -- the host services the library imports.
 *
 * libvtxotl reaches the host only through the functions declared here.
 * libvtxhost.so is our own implementation of them; a server that brings its
 * own services links its library in place of libvtxhost.so and leaves
 * libvtxotl.so untouched.
 *
 * Locale handles (void *pLocale) are opaque to the library.  A null locale
 * means UTF-8 text with root collation.  Every text operation is multi-byte
 * aware: lengths are in bytes unless a name says "chars".
 *
 * Status: 0 success, otherwise a message number.  Functions returning an int
 * comparison answer <0, 0, >0 as strcmp does.
 */
#ifndef VTXHOSTSVC_H
#define VTXHOSTSVC_H

#include "vtxtypes.h"
#include "vtxnetctx.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- system service: memory ------------------------------------------- */

/* Allocates size zero-filled bytes under a policy; *ppData is null on failure.
 * sourceName/sourceLine name the caller, for leak reports. */
VTX_API VTX_STS_T VtxSdMemAllocUsingPolicy(void *pSdCtx, VTX_ULONG_T ulPolicy, size_t size,
                                           void **ppData, VTX_ULONG_T ulFlags,
                                           const char *sourceName, int sourceLine);
/* Releases a block of VtxSdMemAllocUsingPolicy; a null block is accepted. */
VTX_API VTX_STS_T VtxSdMemFree(void *pSdCtx, void *pData);
/* Grows or shrinks a block; on failure the old block is untouched. */
VTX_API VTX_STS_T VtxSdMemRealloc(void *pSdCtx, void *pOld, size_t size, void **ppNew);
VTX_API void      VtxSdMemClear(void *pData, size_t size);

/* Class-level allocation of the container layer (null context allowed).
 * The block is not cleared; adFree accepts null. */
VTX_API VTX_STS_T adMalloc(void *pCtx, size_t size, void **ppData);
VTX_API void      adFree(void *pCtx, void *pData);

/* Plain allocators in the shape of the context's AllocFunc/FreeFunc/ReallocFunc,
 * and the context form (pSdCtx first). */
VTX_API VTX_STS_T vtxHostAlloc(size_t size, void **ppData);
VTX_API VTX_STS_T vtxHostFree(void *pData);
VTX_API VTX_STS_T vtxHostRealloc(void *pOld, size_t size, void **ppNew);
VTX_API VTX_STS_T vtxHostSdFree(void *pSdCtx, void *pData);
VTX_API VTX_STS_T vtxHostSdRealloc(void *pSdCtx, void *pOld, size_t size, void **ppNew);

/* Fills a context with the host's defaults: plain allocators, the UTF-8
 * locale, the default message callback, messages on, an API caller of UTF-8
 * text.  Fields already nonzero are kept, except the allocator switches. */
VTX_API VTX_STS_T vtxHostInitContext(vtx_netctx_t *pNetCtx);

/* ---- system service: files and clock ---------------------------------- */
VTX_API VTX_STS_T VtxSdFileRemove(void *pSdCtx, const char *pszPath);
VTX_API VTX_STS_T VtxSdFileTempNameGet(void *pSdCtx, const char *pszDir, const char *pszPrefix,
                                       char *pszOut, size_t outSize);
VTX_API double    VtxSdClock(void);             /* seconds, monotonic */
VTX_API VTX_ULONG64_T VtxSdGetUtcTimestamp(void); /* seconds since 1970 */

/* ---- message service --------------------------------------------------- */

/* Argument type codes */
#define VTX_MSGARG_NONE  0
#define VTX_MSGARG_PU16  4   /* pointer to a 16-bit number */
#define VTX_MSGARG_PU32  5   /* pointer to a 32-bit number */
#define VTX_MSGARG_STR  10   /* string */
/* Levels */
#define VTX_MSG_INFO     2
#define VTX_MSG_WARNING  3
#define VTX_MSG_ERROR    4

/* Formats the catalogue text of code with up to two arguments and hands it
 * to the context's callback.  Answers the callback's verdict, except at
 * level 4, where it always answers code: a refused call never reads as a
 * success. */
VTX_API VTX_STS_T adNetLocalMessage(vtx_netctx_t *pNetCtx, VTX_STS_T code, VTX_USHORT_T level,
                                    const void *arg1, VTX_USHORT_T type1,
                                    const void *arg2, VTX_USHORT_T type2);
/* The catalogue text of a number (printf form, arguments not applied), or
 * null when the catalogue has none. */
VTX_API const char *adNetMessageText(VTX_STS_T code);
/* Level recorded in the catalogue for a number, 0 when unknown. */
VTX_API VTX_USHORT_T adNetMessageLevel(VTX_STS_T code);

/* ---- text and locale service ------------------------------------------- */

/* The UTF-8 locale handle; shared, releasing it is harmless. */
VTX_API VTX_STS_T adGlobGetUTF8Locale(void **ppLocale);
/* A locale from its text name ("en_US.UTF-8", "de_DE.ISO-8859-1", ...);
 * released by adGlobFreeLocale. */
VTX_API VTX_STS_T adGlobGetLocaleAndStatus(const char *pszLocaleString, void **ppLocale);
VTX_API void      adGlobFreeLocale(void *pLocale);
/* The text name of a locale into buf (VTX_LOCALESTR_LEN bytes is enough). */
VTX_API VTX_STS_T adGlobGetLocaleString(void *pLocale, char *buf, size_t bufSize);
VTX_API VTX_BOOL_T adGlobIsUTF8Locale(void *pLocale);

/* Characters (not bytes) in a NUL-terminated text. */
VTX_API size_t    adGlobStrNumChars(void *pLocale, const char *psz);
/* 1 when the text is well formed in the locale's encoding. */
VTX_API VTX_BOOL_T adGlobStrIsValid(void *pLocale, const char *psz);
/* Case-fold src to upper / lower case into dst of capacity bytes, NUL
 * included; dst may be src itself.  Folding may lengthen a text: a
 * destination of 2*len+1 bytes is enough for all but two Greek letters
 * (U+0390, U+03B0), which triple in UTF-8; 3*len+1 is always enough.  A text
 * that does not fit is refused (nonzero status) and dst holds an empty
 * string. */
VTX_API VTX_STS_T adGlobStrNToUpper(void *pLocale, char *dst, const char *src, size_t capacity);
VTX_API VTX_STS_T adGlobStrNToLower(void *pLocale, char *dst, const char *src, size_t capacity);
/* Upper-case srcLen bytes of src (-1: to its NUL) into dst of dstSize bytes;
 * answers the length written, or -1 when it does not fit.  ulFlags is kept
 * for the host's mapping options. */
VTX_API int       adGlobStrMapToUpper(void *pLocale, char *dst, size_t dstSize, const char *src,
                                      int srcLen, VTX_ULONG_T ulFlags);
/* Binary comparison and case-insensitive comparison (full case folding). */
VTX_API int       adGlobStrCompare(void *pLocale, const char *a, const char *b);
VTX_API int       adGlobStrCompareIgnoreCase(void *pLocale, const char *a, const char *b);
VTX_API VTX_BOOL_T adGlobStrEqualsIgnoreCase(void *pLocale, const char *a, const char *b);
/* Collation of the locale; the second form ignores case. */
VTX_API int       adGlobStrCollate(void *pLocale, const char *a, const char *b);
VTX_API int       adGlobStrCollateIgnoreCase(void *pLocale, const char *a, const char *b);
/* Converts text between the encodings of two locales (null: UTF-8) into dst
 * of dstSize bytes; refuses a text that does not fit. */
VTX_API VTX_STS_T adEncodeConversion(void *pFromLocale, void *pToLocale, const char *src,
                                     char *dst, size_t dstSize);

#ifdef __cplusplus
}
#endif
#endif
