// otlctl find: a member of the sample outline by name, alias or qualified
// name, printed with the path that names it.
#pragma once

#include <cstdio>
#include <string>

#include "vtxotl.h"

namespace CLI {
class App;
}

// The qualified name of a member: its dimension and every ancestor down to
// it, each bracketed, "]" written twice ("[Year].[FY2024].[Q1 FY2024]").
VTX_STS_T otlctlMemberPath(VTX_HOUTLINE_T hOutline, VTX_HMEMBER_T hMember, std::string &path);

// Looks pszName up and prints the member found: name, dimension, generation,
// level, share state and path.  Answers the status of the lookup (1060200
// when the name names no member or more than one).
VTX_STS_T otlctlFindAndPrint(VTX_HOUTLINE_T hOutline, vtx_netctx_t *pNetCtx, const char *pszName, std::FILE *out);

// Adds the subcommand "find".
void registerFindCommands(CLI::App &app);
