// Shared fixture of the edit tests: an outline on the counting context,
// builders for members, a full dump of the outline's state and a check of
// the invariants every edit must keep.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "otl.h"
#include "testctx.h"

namespace edittest {

struct Spec {
    VTX_USHORT_T share = VTX_SHARE_STORE;
    VTX_USHORT_T cons = VTX_CONS_ADD;
    VTX_USHORT_T category = VTX_CAT_NONE;
    VTX_USHORT_T storage = 0;
    VTX_USHORT_T timeBalance = 0;
    VTX_BOOL_T twoPass = 0;
    VTX_BOOL_T expense = 0;
};

vtx_mbrinfo_t makeInfo(const char *name, const Spec &s = Spec{});

// Every piece of state an edit may touch, as text: the outline's counts,
// dimension table and identifier arrays, and every record with its links,
// numbers, flags and settings.  Two dumps are equal exactly when an edit
// left no trace.
std::string dump(VTX_POTL_T o);
// Empty when the tree, the dimension table and the counts agree; else what
// is wrong.
std::string invariants(VTX_POTL_T o);
// Blocks still allocated, leaving out the pool blocks the outline holds:
// records never go back to a pool until close, so a failed edit may have
// grown one, which is no leak.
long liveBlocks(vtxtest::TestCtx &t, VTX_POTL_T o);

class EditTest : public ::testing::Test {
protected:
    vtxtest::TestCtx t;
    VTX_HOUTLINE_T h = nullptr;
    VTX_POTL_T o = nullptr;

    void SetUp() override { open(); }
    void TearDown() override {
        if (h) {
            EXPECT_EQ(invariants(o), "");
            adShrOtlCloseOutline(h);
        }
        EXPECT_EQ(t.stats().live, 0) << "blocks leaked";
    }
    void open(const vtx_outlineinfo_t &info = vtx_outlineinfo_t{}) {
        if (h) adShrOtlCloseOutline(h);
        h = nullptr;
        ASSERT_EQ(adShrOtlNewOutline(t.ctx(), &info, &h, 0), 0);
        o = static_cast<VTX_POTL_T>(h);
    }
    void openDup() {
        vtx_outlineinfo_t info{};
        info.usOtlNameType = VTX_NAMES_DUP;
        open(info);
    }
    // A dimension behind the last one.
    VTX_POTLMBR_T dim(const char *name, const Spec &s = Spec{});
    // A member behind the last child of parent.
    VTX_POTLMBR_T add(VTX_POTLMBR_T parent, const char *name, const Spec &s = Spec{});
    VTX_STS_T tryAdd(VTX_POTLMBR_T parent, const char *name, const Spec &s = Spec{}, VTX_POTLMBR_T *pOut = nullptr);
    VTX_POTLMBR_T find(const char *name);
    static Spec shared() {
        Spec s;
        s.share = VTX_SHARE_SHARED;
        return s;
    }
    static Spec label() {
        Spec s;
        s.share = VTX_SHARE_LABEL;
        return s;
    }
};

// Runs an edit that must be refused with want; the outline must be exactly
// as before, down to the last flag.
#define EXPECT_REFUSED(want, expr)                                     \
    do {                                                               \
        std::string before_ = edittest::dump(o);                       \
        long live_ = edittest::liveBlocks(t, o);                       \
        EXPECT_EQ((VTX_STS_T)(expr), (VTX_STS_T)(want)) << #expr;      \
        EXPECT_EQ(edittest::dump(o), before_) << #expr " left a trace"; \
        EXPECT_EQ(edittest::liveBlocks(t, o), live_) << #expr " leaked"; \
    } while (0)

} // namespace edittest
