/* A host built against an installed vtxotl. */
#include <vtxotl.h>
#include <stdio.h>
#include <string.h>

int main(void) {
    vtx_netctx_t ctx;
    vtx_outlineinfo_t info;
    VTX_HOUTLINE_T h = NULL;
    memset(&ctx, 0, sizeof ctx);
    memset(&info, 0, sizeof info);
    if (vtxHostInitContext(&ctx) != 0) return 1;
    ctx.lClientVersion = 0x00B20000;
    if (adShrOtlNewOutline(&ctx, &info, &h, 0) != 0 || h == NULL) return 2;
    adShrOtlCloseOutline(h);
    printf("consumer: vtxotl %s\n", adShrOtlGetLibraryVersionString());
    return 0;
}
