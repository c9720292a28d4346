// otlctl's built-in sample outline: built through the exported calls only,
// printed as an indented tree, counted per dimension.
#pragma once

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "vtxotl.h"

namespace CLI {
class App;
}

// Builds the sample outline in a new outline handle, with a second alias
// table "German" (months and regions): a time dimension of years, quarters
// and months; accounts with label-only parents, time balance,
// expense and two-pass dynamic members that will carry formulas; products and
// markets of a few hundred members each with shared members; a scenario
// dimension.  On failure nothing is left open and the status is returned.
VTX_STS_T otlctlBuildSample(vtx_netctx_t *pNetCtx, VTX_HOUTLINE_T *phOutline);

// Builds the sample outline of duplicate names: months and quarters that
// repeat under two years, cities under more than one region, "Total" in two
// dimensions.
VTX_STS_T otlctlBuildDuplicatesSample(vtx_netctx_t *pNetCtx, VTX_HOUTLINE_T *phOutline);

// For every member whose name another member bears too (shared members left
// out), in outline order: its name and the shortest path of its ancestors
// and itself that no other bearer of the name answers to, such as
// "[FY2025].[Q1].[Jan]".
VTX_STS_T otlctlQualifiedRepeatedNames(VTX_HOUTLINE_T hOutline, vtx_netctx_t *pNetCtx,
                                       std::vector<std::pair<std::string, std::string>> &names);

// Prints the outline as an indented tree: consolidation, name, generation,
// level, storage of dimensions and the share marks; with aliasTable, each
// member's alias in that table after its name.
VTX_STS_T otlctlPrintTree(VTX_HOUTLINE_T hOutline, vtx_netctx_t *pNetCtx, std::FILE *out,
                          const char *aliasTable = nullptr);

// Renumbers the outline (the numbering a verification runs) and prints each
// member with generation, level, member number, actual member number and
// dimension number; a shared member names its stored member.
VTX_STS_T otlctlPrintNumbers(VTX_HOUTLINE_T hOutline, std::FILE *out);

// Members of every dimension, counted by walking the tree.
struct OtlctlDimCounts {
    char name[VTX_MBRNAME_LEN];
    unsigned long members;   // records below and including the dimension
    unsigned long stored;    // holding data of their own
    unsigned long shared;
    unsigned long labelOnly;
    unsigned long dynamic;
    unsigned long leaves;
    unsigned deepestGen;
};
// Fills up to maxDims entries; *pCount receives the number of dimensions.
VTX_STS_T otlctlCountDims(VTX_HOUTLINE_T hOutline, vtx_netctx_t *pNetCtx, OtlctlDimCounts *pCounts,
                          unsigned maxDims, unsigned *pCount);

// Adds the subcommands "sample" and "stats".
void registerSampleCommands(CLI::App &app);
