// otlctl find NAME: looks a name up in the sample outline the way a host
// does, through adShrOtlFindMember, and prints where the member stands.
#include "find.h"

#include <CLI/CLI.hpp>

#include <vector>

#include "sample.h"

VTX_STS_T otlctlMemberPath(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, std::string &path) {
    path.clear();
    std::vector<std::string> names;
    VTX_MBRNAME_T name;
    for (VTX_HMEMBER_T m = hMember; m;) {
        if (VTX_STS_T sts = adShrOtlGetMemberName(hOutline, m, name)) return sts;
        names.emplace_back(name);
        if (VTX_STS_T sts = adShrOtlGetParent(hOutline, m, &m)) return sts;
    }
    for (auto it = names.rbegin(); it != names.rend(); ++it) {
        if (!path.empty()) path += '.';
        path += '[';
        for (char c : *it) {
            if (c == ']') path += ']';
            path += c;
        }
        path += ']';
    }
    return 0;
}

namespace {

const char *shareText(VTX_USHORT_T s) {
    switch (s) {
    case VTX_SHARE_STORE: return "stored";
    case VTX_SHARE_NEVER: return "never shared";
    case VTX_SHARE_LABEL: return "label only";
    case VTX_SHARE_SHARED:
    case VTX_SHARE_SHARED2: return "shared";
    case VTX_SHARE_DYNCALCSTORE: return "dynamic calc and store";
    case VTX_SHARE_DYNCALC: return "dynamic calc";
    default: return "unknown";
    }
}

} // namespace

VTX_STS_T otlctlFindAndPrint(VTX_HOUTLINE_T hOutline, vtx_netctx_t *pNetCtx, const char *pszName, std::FILE *out) {
    VTX_HMEMBER_T m = nullptr;
    VTX_STS_T sts = adShrOtlFindMember(hOutline, pszName, &m);
    if (sts) return sts;
    std::string path;
    if (VTX_STS_T psts = otlctlMemberPath(hOutline, m, path)) return psts;
    vtx_mbrinfo_t *info = nullptr;
    if (VTX_STS_T ists = adShrOtlGetMemberInfo(hOutline, m, &info)) return ists;
    std::fprintf(out, "member:     %s\n", info->szMember);
    std::fprintf(out, "dimension:  %s\n", info->szDimName);
    std::fprintf(out, "generation: %u\n", (unsigned)info->usGen);
    std::fprintf(out, "level:      %u\n", (unsigned)info->usLevel);
    std::fprintf(out, "storage:    %s\n", shareText(info->usShare));
    std::fprintf(out, "path:       %s\n", path.c_str());
    (void)adShrOtlFreeMbrInfo(pNetCtx, 1, info);  // the report is printed; a release failure changes nothing
    return 0;
}

void registerFindCommands(CLI::App &app) {
    auto *cmd = app.add_subcommand("find", "Find a member of the sample outline by name, alias or qualified name "
                                           "(\"[Year].[FY2024]\") and print its path");
    static std::string name;
    cmd->add_option("NAME", name, "Member name, alias or bracketed path")->required();
    cmd->callback([]() {
        vtx_netctx_t ctx{};
        (void)vtxHostInitContext(&ctx);  // cannot fail on a zeroed context
        ctx.lClientVersion = 0x00B20000;
        ctx.lServerVersion = 0x00B20000;
        ctx.lClientDllVersion = 0x00B20000;
        ctx.estimatedHashSize = 10000;
        ctx.bSendMsgNet = 0;   // a name not found is told below, once
        VTX_HOUTLINE_T h = nullptr;
        VTX_STS_T sts = otlctlBuildSample(&ctx, &h);
        if (sts) {
            std::fprintf(stderr, "otlctl: building the sample outline failed with status %d\n", sts);
            throw CLI::RuntimeError(1);
        }
        sts = otlctlFindAndPrint(h, &ctx, name.c_str(), stdout);
        (void)adShrOtlCloseOutline(h);  // always 0
        if (sts == VTX_STS_NOT_FOUND) {
            std::fprintf(stderr, "otlctl: \"%s\" names no member of the sample outline, or more than one\n",
                         name.c_str());
            throw CLI::RuntimeError(1);
        }
        if (sts) {
            std::fprintf(stderr, "otlctl: the lookup failed with status %d\n", sts);
            throw CLI::RuntimeError(1);
        }
    });
}
