/*
 * vtxtypes.h -- scalar types, handles and sizes shared by every vtxotl header.
 *
 * Rules of the whole C interface (they hold for every exported call):
 *   - Every exported call returns VTX_STS_T: 0 is success, a positive number
 *     is a message number (see vtxstatus.h), -1 is a silent refusal (a hidden
 *     member named in an edit, or a property value load in progress).
 *   - A call that fails leaves no new state behind: what it allocated is
 *     freed, output handles are null and output counters zero.
 *   - Output parameters are cleared on entry, before anything can fail.
 *   - A block the library hands out belongs to the caller and is released
 *     with adShrOtlFree (or the matching adShrOtlFree... call) on the same
 *     context that produced it.
 *   - A null outline handle is refused with VTX_STS_NULL_ARG, never
 *     dereferenced.
 *   - One handle is used by one thread at a time; the library takes no locks.
 */
#ifndef VTXTYPES_H
#define VTXTYPES_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef uint8_t  VTX_BOOL_T;
typedef uint8_t  VTX_UCHAR_T;
typedef int8_t   VTX_CHAR_T;
typedef uint16_t VTX_USHORT_T;
typedef int16_t  VTX_SHORT_T;
typedef uint32_t VTX_ULONG_T;
typedef int32_t  VTX_LONG_T;
typedef int32_t  VTX_INT32_T;   /* signed, although some fields hold ids that are never negative */
typedef uint64_t VTX_ULONG64_T;
typedef int32_t  VTX_STS_T;     /* 0 success, >0 message number, -1 silent refusal */
typedef char    *VTX_STR_T;
typedef const char *VTX_CSTR_T;
typedef void    *VTX_PVOID_T;

typedef void *VTX_HOUTLINE_T;   /* an outline record; opaque to the host */
typedef void *VTX_HMEMBER_T;    /* a member record; opaque to the host, stable until deleted */
typedef void *VTX_HATTR_T;      /* an attribute slot; stable across moves */
typedef void *VTX_HCTX_T;       /* the host's own context handle, kept for it */

#define VTX_TRUE  1
#define VTX_FALSE 0

/* Buffer sizes of the exported records, terminators included. */
#define VTX_MBRNAME_LEN      4101  /* member name buffer */
#define VTX_ALIASNAME_LEN     125  /* alias table name buffer */
#define VTX_MBRCOMMENT_LEN   1029  /* member comment buffer */
#define VTX_LOCALESTR_LEN     132  /* text name of a locale */
#define VTX_MAX_NAME_CHARS   1024  /* longest member name for a recent client */
#define VTX_OLD_NAME_CHARS     80  /* longest member name for an old client */
#define VTX_MAX_DIMS          255  /* dimensions in one outline */
#define VTX_DIM_SLOTS         256  /* entries of the per-dimension arrays */
#define VTX_MAX_ALIAS_TABLES   58  /* alias tables kept in the outline */
#define VTX_EXP_ALIAS_TABLES   56  /* alias tables shown in vtx_outlineinfo_t */
#define VTX_MAX_PATH_DEPTH    127  /* names in one member path */
#define VTX_DTS_SLOTS           8  /* dynamic time series entries */
#define VTX_ERRBUF_LEN       4400  /* buffer of adShrOtlErrorCallback */

typedef char VTX_MBRNAME_T[VTX_MBRNAME_LEN];
typedef char VTX_ALIASNAME_T[VTX_ALIASNAME_LEN];
typedef char VTX_MBRCOMMENT_T[VTX_MBRCOMMENT_LEN];

/* Sentinels for hPrevSibling: "after the parent's last visible child". */
#define VTX_HPREV_LAST32 ((VTX_HMEMBER_T)(uintptr_t)0xFFFFFFFFu)
#define VTX_HPREV_LAST64 ((VTX_HMEMBER_T)(uintptr_t)UINT64_MAX)

/* Export marker for everything a host links. */
#if defined(__GNUC__)
#define VTX_API __attribute__((visibility("default")))
#else
#define VTX_API
#endif

#ifdef __cplusplus
}
#endif
#endif
