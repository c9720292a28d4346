// Members made through the exported calls, as a host makes them.
#pragma once
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "otl.h"

namespace vtxtest {

// A dimension when parent is null, else a new last child of parent.
inline VTX_POTLMBR_T addMember(VTX_HOUTLINE_T h, VTX_POTLMBR_T parent, const std::string &name,
                               VTX_USHORT_T share = 0) {
    vtx_mbrinfo_t i{};
    std::strcpy(i.szMember, name.c_str());
    i.usShare = share;
    VTX_HMEMBER_T m = nullptr;
    if (!parent) {
        EXPECT_EQ(adShrOtlAddDimension(h, &i, nullptr, nullptr, &m, nullptr), 0) << name;
    } else {
        VTX_HMEMBER_T prev = parent->MbrInfo.pLastSibling;
        EXPECT_EQ(adShrOtlAddMember(h, &i, prev ? nullptr : parent, prev, &m, 0, nullptr), 0) << name;
    }
    return static_cast<VTX_POTLMBR_T>(m);
}

} // namespace vtxtest
