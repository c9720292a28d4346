// otlctl sample --numbers: the member numbers of an outline.
//
// Member numbers are not part of the exported member record; the tool reads
// them from the records through the library's internal interface, as an
// embedding server does.
#include "otl.h"
#include "sample.h"

VTX_STS_T otlctlPrintNumbers(VTX_HOUTLINE_T hOutline, std::FILE *out) {
    auto *p = static_cast<VTX_POTL_T>(hOutline);
    if (!p || !p->pHeadItem) return VTX_STS_NULL_ARG;
    VTX_STS_T sts = otlUpdateMemno(p, p->pHeadItem);
    if (!sts) sts = otlSetShareMbrMemno(p, p->pHeadItem, 0);
    if (sts) return sts;
    std::fprintf(out, "%-40s %4s %5s %7s %7s %5s  %s\n", "member", "gen", "level", "memno", "actual", "dim",
                 "stored member");
    VTX_POTLMBR_T root = p->pHeadItem;
    for (VTX_POTLMBR_T m = otlNavtrdn(root, root); m; m = otlNavtrdn(m, root)) {
        if (OTL_IS_HIDDEN(m)) continue;
        const char *stored = "";
        if (otlMbrIsSharedShare(m)) {
            VTX_POTLMBR_T orig = nullptr;
            // A shared member whose stored member cannot be found shows none.
            (void)otlHashFindOriginalItem(p->pNetCtx, p, otlGetDim(m), m, &orig);
            stored = orig ? orig->MbrInfo.szMember : "(none)";
        }
        std::fprintf(out, "%*s%-*s %4u %5u %7lu %7lu %5u  %s\n", 2 * (m->MbrInfo.usGen - 1), "",
                     40 - 2 * (m->MbrInfo.usGen - 1), m->MbrInfo.szMember, m->MbrInfo.usGen, m->MbrInfo.usLevel,
                     (unsigned long)m->ulMemno, (unsigned long)m->ulActualMemno, m->ulDimno, stored);
    }
    return 0;
}
