/*
 * vtxnetctx.h -- the caller context.
 *
 * The host owns the context: it fills it before the first call, keeps it
 * alive for as long as any outline made with it is open, and never changes
 * the allocators or the locale of a context while an outline uses it (the
 * hash index folds names in that locale).  The library only reads it, except
 * where a field below says otherwise.
 *
 * Allocation.  With bUseASDAlloc 1 every block comes from
 * VtxSdMemAllocUsingPolicy(pSdCtx, ...); otherwise from AllocFunc.  Blocks
 * are released through SdFreeFunc(pSdCtx, p) when bUseASDFree is 1, otherwise
 * through FreeFunc(p); growth likewise through SdReallocFunc or ReallocFunc
 * chosen by bUseASDRealloc.  A nonzero answer from an allocator stops the call
 * and becomes its status.  A zeroed context is usable after
 * vtxHostInitContext (libvtxhost) has filled the allocators and callbacks.
 */
#ifndef VTXNETCTX_H
#define VTXNETCTX_H

#include "vtxtypes.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef VTX_STS_T (*VTX_ALLOCFUNC_T)(size_t size, void **ppData);
typedef VTX_STS_T (*VTX_FREEFUNC_T)(void *pData);
typedef VTX_STS_T (*VTX_SDFREEFUNC_T)(void *pSdCtx, void *pData);
typedef VTX_STS_T (*VTX_REALLOCFUNC_T)(void *pOld, size_t size, void **ppNew);
typedef VTX_STS_T (*VTX_SDREALLOCFUNC_T)(void *pSdCtx, void *pOld, size_t size, void **ppNew);

/* A message callback: pUserCtx is vtx_netctx_t.pMsgUserCtx, or the context
 * itself when that is null.  LogStr names where the message comes from,
 * MsgStr is the formatted text.  The answer is the callback's verdict; the
 * message service never lets a level-4 message read as success. */
typedef VTX_STS_T (*VTX_MSGCALLBACK_T)(void *pUserCtx, VTX_STS_T MsgNum, VTX_USHORT_T Level,
                                       VTX_CSTR_T LogStr, VTX_CSTR_T MsgStr);

/* usCallerType values */
#define VTX_CALLER_API    1  /* encoding in usApiType */
#define VTX_CALLER_AGENT  2  /* server agent */
#define VTX_CALLER_APP    3  /* encoding in usAppType */
/* usApiType / usAppType values */
#define VTX_ENC_NATIVE    2
#define VTX_ENC_UTF8      3

typedef struct vtx_netctx {
    /* allocators */
    VTX_BOOL_T          bUseASDAlloc;    /* 1: VtxSdMemAllocUsingPolicy, 0: AllocFunc */
    VTX_BOOL_T          bUseASDFree;     /* 1: SdFreeFunc(pSdCtx, p), 0: FreeFunc(p) */
    VTX_BOOL_T          bUseASDRealloc;  /* 1: SdReallocFunc, 0: ReallocFunc */
    VTX_ALLOCFUNC_T     AllocFunc;
    VTX_FREEFUNC_T      FreeFunc;
    VTX_SDFREEFUNC_T    SdFreeFunc;
    VTX_REALLOCFUNC_T   ReallocFunc;
    VTX_SDREALLOCFUNC_T SdReallocFunc;
    void               *pSdCtx;          /* system service context of the allocator */

    /* locales (handles of the text and locale service) */
    void *pLocale;         /* the caller's locale: folding and collation of names */
    void *pServerLocale;   /* the server's native locale */
    void *pSystemLocale;
    void *pAgentLocale;
    void *pApiLocale;

    /* messages */
    VTX_BOOL_T        bSendMsgNet;  /* 1: failures also go through adNetLocalMessage */
    VTX_MSGCALLBACK_T MsgCallback;  /* called by adNetLocalMessage; null: silent */
    void             *pMsgUserCtx;  /* first argument of MsgCallback; null: the context */

    /* versions and caller kind */
    VTX_LONG_T    lClientVersion;     /* packed: 0x50700 is 5.7.0 */
    VTX_LONG_T    lServerVersion;
    VTX_USHORT_T  usCallerType;       /* VTX_CALLER_... */
    VTX_USHORT_T  usApiType;          /* VTX_ENC_... for an API caller */
    VTX_USHORT_T  usAppType;          /* VTX_ENC_... for an application */
    VTX_USHORT_T  Type;               /* 1: a server context; enables bRelaxedNames */
    void         *Context;            /* the server's own context block */
    VTX_ULONG_T   lClientDllVersion;  /* 0 gives the 80-character name limit */
    VTX_ULONG_T   clientDllProtocolVersion;
    VTX_BOOL_T    bReplayLogTransEnabled;

    /* settings later parts of the library read from the context */
    VTX_ULONG_T   estimatedHashSize;       /* strings the member index is sized for; 0: 5,000,000 */
    VTX_ULONG_T   maxErrorMbrVerifyReport; /* entries of a verification error list; 0: 500 */
    VTX_BOOL_T    bUseNonUniqueMbrIdKey;   /* keys of duplicate-name outlines use member ids */
    VTX_BOOL_T    bRelaxedNames;           /* with Type 1: the server allows relaxed quote and
                                              first-character rules in names */
} vtx_netctx_t, *vTX_PNETCTX_T;

typedef vtx_netctx_t VTX_NETCTX_T;

#ifdef __cplusplus
}
#endif
#endif
