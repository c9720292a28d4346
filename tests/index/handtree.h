// Outlines built by hand for the index tests: records from the outline's
// pools, linked by the test itself and entered into the index directly, so
// that the index is tested apart from the editing calls.
#pragma once
#include <string>
#include <vector>

#include "otl.h"
#include "otlhash.h"
#include "testctx.h"

namespace idxtest {

struct Found {
    VTX_STS_T sts = 0;
    VTX_POTLMBR_T m = nullptr;
};

class HandOutline {
public:
    // estimate: the context's estimatedHashSize.  aliasTables: alias slots
    // of every record (the outline's own count when 0).
    explicit HandOutline(VTX_USHORT_T nameType = VTX_NAMES_UNIQUE, bool caseSensitive = false,
                         VTX_ULONG_T estimate = 1000, VTX_USHORT_T aliasTables = 0);
    ~HandOutline();
    HandOutline(const HandOutline &) = delete;
    HandOutline &operator=(const HandOutline &) = delete;

    VTX_POTL_T o = nullptr;
    vTX_PNETCTX_T ctx() { return tc.ctx(); }
    vtxtest::TestCtx &context() { return tc; }

    // A dimension behind the others, entered into the index.
    VTX_POTLMBR_T dim(const char *name);
    // The last child of parent, entered into the index unless told not to.
    VTX_POTLMBR_T add(VTX_POTLMBR_T parent, const char *name, VTX_USHORT_T share = VTX_SHARE_STORE,
                      bool index = true, bool large = true);
    // Stores an alias text in a record (the index is not told).
    void setAlias(VTX_POTLMBR_T m, VTX_USHORT_T table, const char *text);
    // Takes a member (a leaf) out of the index and the tree and frees it.
    VTX_STS_T remove(VTX_POTLMBR_T m, bool resetDup = false);
    // Recomputes usLevel below the root.
    void relevel();

    // Lookups through otlHashFindItemByNameEx.
    Found byName(const char *name, VTX_USHORT_T usOption = OTL_OPT_UNSHARED, VTX_POTLMBR_T pDim = nullptr,
                 const char *parent = nullptr);
    Found byAlias(const char *text, VTX_USHORT_T table);
    Found byNameOrAlias(const char *text);

    // Every (text, member) pair the index holds now, in a stable order.
    std::vector<std::pair<std::string, VTX_POTLMBR_T>> snapshot();

private:
    vtxtest::TestCtx tc;
    VTX_HOUTLINE_T h_ = nullptr;
    VTX_ULONG_T dims_ = 0;
};

// Every (text#table, member) pair the index of o holds, sorted.
std::vector<std::pair<std::string, VTX_POTLMBR_T>> indexEntries(VTX_POTL_T o, vTX_PNETCTX_T ctx);

} // namespace idxtest
