/*
 * vtxotllife.h -- outline lifecycle, outline settings, memory release,
 * message callbacks and the bounded appender.
 *
 * Handles.  adShrOtlNewOutline hands out an edit handle; the host ends it
 * with adShrOtlCloseOutline, which always succeeds and frees everything the
 * outline owns.  A failed adShrOtlNewOutline leaves *phOutline null and
 * nothing allocated.
 *
 * Blocks.  What a call hands out (vtx_outlineinfo_t, vtx_mbrinfo_t arrays,
 * texts) belongs to the caller and is freed with adShrOtlFree or the
 * adShrOtlFree... call of its type, through the same context.
 */
#ifndef VTXOTLLIFE_H
#define VTXOTLLIFE_H

#include "vtxtypes.h"
#include "vtxnetctx.h"
#include "vtxrecords.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- library version ------------------------------------------------------- */

/* Packed version of the library: major << 16 | minor << 8 | patch. */
VTX_API VTX_ULONG_T adShrOtlGetLibraryVersion(void);
/* The same as text, "major.minor.patch"; static storage. */
VTX_API const char *adShrOtlGetLibraryVersionString(void);

/* ---- lifecycle -------------------------------------------------------------- */

/* Creates an empty edit outline from pNewInfo (usOutlineType, fCaseSensitive,
 * fAutoConfigure, fEnableMemberType, usOtlNameType or fNonUniqueName).
 * Type above 3 fails with 1060002. */
VTX_API VTX_STS_T adShrOtlNewOutline(vtx_netctx_t *pNetCtx, const vtx_outlineinfo_t *pNewInfo,
                                     VTX_HOUTLINE_T *phOutline, VTX_BOOL_T bHasInputNativeLocale);
/* Frees the outline and all it owns.  Always 0; a null handle is accepted. */
VTX_API VTX_STS_T adShrOtlCloseOutline(VTX_HOUTLINE_T hOutline);

/* ---- outline settings -------------------------------------------------------- */

/* A new vtx_outlineinfo_t describing the outline; free with adShrOtlFree. */
VTX_API VTX_STS_T adShrOtlGetOutlineInfo(VTX_HOUTLINE_T hOutline, vtx_outlineinfo_t **ppInfo);
/* Changes the outline's kind (type, case, duplicates, member types, ...).
 * A refused change leaves the outline as it was. */
VTX_API VTX_STS_T adShrOtlSetOutlineInfo(VTX_HOUTLINE_T hOutline, const vtx_outlineinfo_t *pInfo,
                                         VTX_BOOL_T bExtended, vtx_outerror_t *pMbrError);
VTX_API VTX_STS_T adShrOtlSetOutlineNameType(VTX_HOUTLINE_T hOutline, VTX_USHORT_T usOtlNameType);
VTX_API VTX_STS_T adShrOtlGetOutlineNameType(VTX_HOUTLINE_T hOutline, VTX_USHORT_T *pusOtlNameType);
VTX_API VTX_STS_T adShrOtlSetOutlineVersion(VTX_HOUTLINE_T hOutline, VTX_ULONG_T ulVersion);
VTX_API VTX_STS_T adShrOtlGetOutlineVersion(VTX_HOUTLINE_T hOutline, VTX_ULONG_T *pulVersion);
VTX_API VTX_STS_T adShrOtlGetOutlineIsUtf8(VTX_HOUTLINE_T hOutline, VTX_BOOL_T *pbIsUtf8);
VTX_API VTX_STS_T adShrOtlSetTargetType(VTX_HOUTLINE_T hOutline, VTX_USHORT_T usTargetType);
VTX_API VTX_STS_T adShrOtlSetTargetLocale(VTX_HOUTLINE_T hOutline, void *pTargetLocale);
VTX_API VTX_STS_T adShrOtlSetTargetServerVersion(VTX_HOUTLINE_T hOutline, VTX_LONG_T lVersion);
VTX_API VTX_STS_T adShrOtlSetForceWrite(VTX_HOUTLINE_T hOutline, VTX_BOOL_T fForceWrite);
VTX_API VTX_STS_T adShrOtlSetArrangeDimensions(VTX_HOUTLINE_T hOutline, VTX_BOOL_T fArrange);
VTX_API VTX_STS_T adShrOtlSetImpliedShareSetting(VTX_HOUTLINE_T hOutline, VTX_UCHAR_T usImpSetting,
                                                 VTX_UCHAR_T cfgImpliedShareSetting);
VTX_API VTX_STS_T adShrOtlGetImpliedShareSetting(VTX_HOUTLINE_T hOutline, VTX_UCHAR_T *pusImpSetting);
VTX_API VTX_STS_T adShrOtlSetSMDateFormatStringValue(VTX_HOUTLINE_T hOutline, VTX_CHAR_T cValue);
VTX_API VTX_STS_T adShrOtlGetSMDateFormatStringValue(VTX_HOUTLINE_T hOutline, VTX_CHAR_T *pcValue);
VTX_API VTX_STS_T adShrOtlSetMyAnalyticsOutline(VTX_HOUTLINE_T hOutline, VTX_BOOL_T bEnabled);
VTX_API VTX_STS_T adShrOtlGetMyAnalyticsOutline(VTX_HOUTLINE_T hOutline, VTX_BOOL_T *pbEnabled);
VTX_API VTX_STS_T adShrOtlSetIsInIncBuild(VTX_HOUTLINE_T hOutline, VTX_BOOL_T bInIncBuild);
VTX_API VTX_STS_T adShrOtlGetIsInIncBuild(VTX_HOUTLINE_T hOutline, VTX_BOOL_T *pbInIncBuild);
VTX_API VTX_STS_T adShrOtlSetTrackInternalTransactions(VTX_HOUTLINE_T hOutline, VTX_BOOL_T bTrack);
VTX_API VTX_STS_T adShrGetNonUniqueNameFlag(VTX_HOUTLINE_T hOutline, VTX_BOOL_T *pbNonUnique);
/* The paged file name of an incremental paged outline, else an empty text;
 * into a caller buffer of bufSize bytes. */
VTX_API VTX_STS_T adShrOtlGetPagedFilename(VTX_HOUTLINE_T hOutline, char *pszBuf, size_t bufSize);
/* Paged format version as callers number it (71, 72, 900, ...). */
VTX_API VTX_STS_T adShrOtlGetOPGVersion(VTX_HOUTLINE_T hOutline, VTX_ULONG_T *pulVersion);

/* Host fields a C host cannot reach in the opaque outline. */
VTX_API VTX_STS_T adShrOtlSetBuildingDim(VTX_HOUTLINE_T hOutline, VTX_BOOL_T fBuildingDim);
VTX_API VTX_STS_T adShrOtlSetCallerType(VTX_HOUTLINE_T hOutline, VTX_UCHAR_T ucCallerType);

/* ---- memory release -------------------------------------------------------- */

VTX_API VTX_STS_T adShrOtlFree(vtx_netctx_t *pNetCtx, void *pData);
/* Frees the text attribute value of each of ulCount records, then the array. */
VTX_API VTX_STS_T adShrOtlFreeMbrInfo(vtx_netctx_t *pNetCtx, VTX_ULONG_T ulCount, vtx_mbrinfo_t *pMbrInfo);
/* Frees the text of a text value and zeroes the value; the record stays. */
VTX_API VTX_STS_T adShrOtlFreeAttribute(vtx_netctx_t *pNetCtx, VTX_ATTRIBUTEVALUE_T *pAttribute);
/* Frees the eight texts of an attribute specification; the record stays. */
VTX_API VTX_STS_T adShrOtlFreeAttrSpecsMembers(vtx_netctx_t *pNetCtx, VTX_ATTRSPECS_T *pAttrSpecs);
/* Frees the texts and the record itself. */
VTX_API VTX_STS_T adShrOtlFreeAttrSpecs(vtx_netctx_t *pNetCtx, VTX_ATTRSPECS_T *pAttrSpecs);

/* ---- message callbacks ----------------------------------------------------- */

/* Default callback: prints level-4 messages as "%s\n%s\n" to standard error
 * and answers 0; above level 4 answers MsgNum; below 4 prints nothing. */
VTX_API VTX_STS_T APIError(void *pCtx, VTX_STS_T MsgNum, VTX_USHORT_T Level, VTX_CSTR_T LogStr,
                           VTX_CSTR_T MsgStr);
VTX_API VTX_STS_T VtxError(void *pCtx, VTX_STS_T MsgNum, VTX_USHORT_T Level, VTX_CSTR_T LogStr,
                           VTX_CSTR_T MsgStr);
/* Keeps the last error as text in myCtx, a buffer of VTX_ERRBUF_LEN bytes:
 * the part of LogStr after its last "/", " - ", then MsgStr. */
VTX_API VTX_STS_T adShrOtlErrorCallback(void *myCtx, VTX_STS_T MsgNum, VTX_USHORT_T Level,
                                        VTX_CSTR_T LogStr, VTX_CSTR_T MsgStr);

/* ---- bounded appender ------------------------------------------------------ */

typedef struct VtxStaticBufferToAppend {
    void       *pLocale;
    char       *buf;        /* the caller's buffer */
    char       *tail;       /* its terminating NUL */
    size_t      bufsize;    /* bytes of buf, NUL included */
    VTX_BOOL_T  bTriggered; /* an append did not fit; later appends do nothing */
} VtxStaticBufferToAppend;

VTX_API void adShrOtlGlobStrCatInit(VtxStaticBufferToAppend *x, void *pLocale, char *buf, size_t bufsize);
/* Appends src when it fits whole (answers 1); otherwise sets bTriggered,
 * leaves the buffer as it was and answers 0. */
VTX_API int adShrOtlGlobStrCatTail(VtxStaticBufferToAppend *x, const char *src);

#ifdef __cplusplus
}
#endif
#endif
