/* A host written in C: creates an outline, reads its info, checks the
 * refusals a C host sees, and closes it.  Exits non-zero on any fault. */
#include "vtxotl.h"

#include <stdio.h>
#include <string.h>

static int failures = 0;

#define CHECK(cond)                                                        \
    do {                                                                   \
        if (!(cond)) {                                                     \
            fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond); \
            ++failures;                                                    \
        }                                                                  \
    } while (0)

int main(void) {
    vtx_netctx_t ctx;
    vtx_outlineinfo_t info;
    vtx_outlineinfo_t *pInfo = NULL;
    VTX_HOUTLINE_T hOutline = NULL;
    char lastError[VTX_ERRBUF_LEN];
    VTX_HMEMBER_T hFound = NULL;
    VTX_USHORT_T usHints = 1;

    memset(&ctx, 0, sizeof ctx);
    CHECK(vtxHostInitContext(&ctx) == 0);
    ctx.lClientVersion = 0x00B20000;
    ctx.lClientDllVersion = 0x00B20000;
    ctx.estimatedHashSize = 1000;
    lastError[0] = 0;
    ctx.MsgCallback = adShrOtlErrorCallback;
    ctx.pMsgUserCtx = lastError;

    memset(&info, 0, sizeof info);
    info.usOutlineType = 4;  /* not a type */
    CHECK(adShrOtlNewOutline(&ctx, &info, &hOutline, 0) == VTX_STS_BAD_OUTLINE_TYPE);
    CHECK(hOutline == NULL);
    CHECK(strstr(lastError, " - ") != NULL);

    info.usOutlineType = VTX_OTL_REGULAR;
    info.fCaseSensitive = 1;
    CHECK(adShrOtlNewOutline(&ctx, &info, &hOutline, 0) == 0);
    CHECK(hOutline != NULL);
    CHECK(adShrOtlGetOutlineInfo(hOutline, &pInfo) == 0);
    CHECK(pInfo != NULL);
    if (pInfo) {
        CHECK(pInfo->fCaseSensitive == 1);
        CHECK(pInfo->usNumAliasTables == 1);
        CHECK(strcmp(pInfo->pAliasTables[0], "Default") == 0);
        CHECK(adShrOtlFree(&ctx, pInfo) == 0);
    }
    CHECK(adShrOtlSetOutlineNameType(hOutline, 7) == VTX_STS_BAD_NAME_TYPE);
    CHECK(adShrOtlGetMemberFromDimIdMbrId(hOutline, 0, 1, &hFound) == VTX_STS_ZERO_ID);
    CHECK(hFound == NULL);
    CHECK(adShrOtlGetNumQueryHints(hOutline, &usHints) == 0 && usHints == 0);
    CHECK(adShrOtlCloseOutline(hOutline) == 0);
    CHECK(adShrOtlGetLibraryVersion() != 0);

    if (failures) {
        fprintf(stderr, "%d checks failed\n", failures);
        return 1;
    }
    printf("c host: all checks passed\n");
    return 0;
}
