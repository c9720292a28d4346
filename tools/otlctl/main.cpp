// otlctl: the administrator's command-line tool for outlines.
//
// Every command works through the library's exported calls only, as any
// host would.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

#include "vtxotl.h"

#if __has_include("sample.h")
#include "sample.h"
#define OTLCTL_HAVE_SAMPLE 1
#endif
#if __has_include("find.h")
#include "find.h"
#define OTLCTL_HAVE_FIND 1
#endif

namespace {

// A context for the tool: the host's defaults, with the tool's own versions
// so that names of up to 1024 characters are allowed.
vtx_netctx_t makeContext() {
    vtx_netctx_t ctx{};
    (void)vtxHostInitContext(&ctx);  // fills allocators, locale and callback; cannot fail on a zeroed context
    ctx.MsgCallback = APIError;
    ctx.lClientVersion = 0x00B20000;
    ctx.lServerVersion = 0x00B20000;
    ctx.lClientDllVersion = 0x00B20000;
    ctx.estimatedHashSize = 10000;
    return ctx;
}

const char *typeName(VTX_USHORT_T t) {
    switch (t) {
    case VTX_OTL_REGULAR: return "regular";
    case VTX_OTL_CURRENCY: return "currency";
    case VTX_OTL_AGGSTORE: return "aggregate storage";
    default: return "unknown";
    }
}

const char *nameTypeName(VTX_USHORT_T t) {
    switch (t) {
    case VTX_NAMES_UNIQUE: return "unique";
    case VTX_NAMES_DUP: return "duplicates allowed";
    case VTX_NAMES_RELAXED: return "relaxed";
    default: return "unknown";
    }
}

int printOutlineInfo(VTX_HOUTLINE_T hOutline, vtx_netctx_t *ctx) {
    vtx_outlineinfo_t *info = nullptr;
    VTX_STS_T sts = adShrOtlGetOutlineInfo(hOutline, &info);
    if (sts) {
        std::fprintf(stderr, "otlctl: reading the outline info failed with status %d\n", sts);
        return 1;
    }
    VTX_ULONG_T opg = 0;
    bool hasOpg = adShrOtlGetOPGVersion(hOutline, &opg) == 0 && info->usOutlineType == VTX_OTL_AGGSTORE;
    std::printf("outline type:          %s\n", typeName(info->usOutlineType));
    std::printf("member names:          %s\n", nameTypeName(info->usOtlNameType));
    std::printf("case sensitive:        %s\n", info->fCaseSensitive ? "yes" : "no");
    std::printf("auto configure:        %s\n", info->fAutoConfigure ? "yes" : "no");
    std::printf("typed members:         %s\n", info->fEnableMemberType ? "yes" : "no");
    std::printf("varying attributes:    %s\n", info->fEnableVaryingAttrs ? "yes" : "no");
    std::printf("implied share setting: %u\n", (unsigned)info->ucImpliedShareSetting);
    if (hasOpg) std::printf("paged format version:  %lu\n", (unsigned long)opg);
    std::printf("alias tables:          %u\n", (unsigned)info->usNumAliasTables);
    for (unsigned i = 0; i < info->usNumAliasTables; ++i) std::printf("  %s\n", info->pAliasTables[i]);
    (void)adShrOtlFree(ctx, info);  // a release failure changes nothing for the report printed
    return 0;
}

} // namespace

int main(int argc, char **argv) {
    CLI::App app{"otlctl: create, inspect and edit outlines of a multidimensional database"};
    app.require_subcommand(1);
    app.set_version_flag("--version", std::string("otlctl ") + adShrOtlGetLibraryVersionString());

    // otlctl new
    std::string type = "regular";
    std::string names = "unique";
    bool caseSensitive = false;
    bool autoConfigure = false;
    bool memberTypes = false;
    auto *cmdNew = app.add_subcommand("new", "Create an empty outline and print its outline info");
    const std::map<std::string, VTX_USHORT_T> types{
        {"regular", VTX_OTL_REGULAR}, {"currency", VTX_OTL_CURRENCY}, {"aggregate", VTX_OTL_AGGSTORE}};
    const std::map<std::string, VTX_USHORT_T> nameTypes{
        {"unique", VTX_NAMES_UNIQUE}, {"duplicate", VTX_NAMES_DUP}, {"relaxed", VTX_NAMES_RELAXED}};
    cmdNew->add_option("--type", type, "Outline type")->check(CLI::IsMember({"regular", "currency", "aggregate"}));
    cmdNew->add_option("--names", names, "Member name rule")->check(CLI::IsMember({"unique", "duplicate", "relaxed"}));
    cmdNew->add_flag("--case-sensitive", caseSensitive, "Member names compare case-sensitively");
    cmdNew->add_flag("--auto-configure", autoConfigure, "Work out dense and sparse at save");
    cmdNew->add_flag("--member-types", memberTypes, "Enable typed members");
    cmdNew->callback([&]() {
        vtx_netctx_t ctx = makeContext();
        vtx_outlineinfo_t info{};
        info.usOutlineType = types.at(type);
        info.usOtlNameType = nameTypes.at(names);
        info.fCaseSensitive = caseSensitive;
        info.fAutoConfigure = autoConfigure;
        info.fEnableMemberType = memberTypes;
        VTX_HOUTLINE_T h = nullptr;
        VTX_STS_T sts = adShrOtlNewOutline(&ctx, &info, &h, 0);
        if (sts) {
            std::fprintf(stderr, "otlctl: creating the outline failed with status %d\n", sts);
            throw CLI::RuntimeError(1);
        }
        int rc = printOutlineInfo(h, &ctx);
        (void)adShrOtlCloseOutline(h);  // always 0
        if (rc) throw CLI::RuntimeError(rc);
    });

#ifdef OTLCTL_HAVE_SAMPLE
    registerSampleCommands(app);
#endif
#ifdef OTLCTL_HAVE_FIND
    registerFindCommands(app);
#endif

    CLI11_PARSE(app, argc, argv);
    return 0;
}
