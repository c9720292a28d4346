// Internal declarations shared by the sources of libvtxhost.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vtxhostsvc.h"

namespace vtxhost {

// One row of the message catalogue.  The table is generated at build time
// from host/messages.cat, sorted by number, so lookups are binary searches.
struct CatalogueEntry {
    int32_t number;
    uint16_t level;
    const char *text;
};

extern const CatalogueEntry kCatalogue[];
extern const size_t kCatalogueSize;

// The catalogue row of a number, or null.
const CatalogueEntry *findMessage(int32_t number);

// Longest message text handed to a callback, NUL excluded.  It matches the
// error buffer of the library's error callback, so a copy never truncates.
constexpr size_t kMaxMessageBytes = VTX_ERRBUF_LEN - 1;

} // namespace vtxhost
