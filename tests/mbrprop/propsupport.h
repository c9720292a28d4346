// Fixture of the member setting tests: the edit tests' outline and dump,
// and a second dump of everything the setters here may touch.
#pragma once

#include <functional>
#include <string>

#include "editsupport.h"

namespace proptest {

// Texts, flags and settings of every record, and the outline's renegade
// members, hint table and state marks.
std::string props(VTX_POTL_T o);

class PropTest : public edittest::EditTest {
protected:
    void openAgg(VTX_ULONG_T opgVersion = 0) {
        vtx_outlineinfo_t info{};
        info.usOutlineType = VTX_OTL_AGGSTORE;
        open(info);
        if (opgVersion) o->cOPGVersion = opgVersion;
    }
    // Fails allocation 1, 2, ... of op until it succeeds; each failure must
    // answer 1060358 and leave no trace.  Returns the allocations made.
    long walk(const std::function<VTX_STS_T()> &op);
    std::string text(VTX_STS_T (*get)(VTX_HOUTLINE_T, VTX_HMEMBER_T, VTX_STR_T *), VTX_POTLMBR_T m,
                     VTX_STS_T *pSts = nullptr);
};

} // namespace proptest

// A call that must be refused with want and leave everything as it was.
#define EXPECT_UNCHANGED(want, expr)                                        \
    do {                                                                    \
        const std::string before_ = edittest::dump(o) + proptest::props(o); \
        const long live_ = edittest::liveBlocks(t, o);                      \
        EXPECT_EQ((VTX_STS_T)(expr), (VTX_STS_T)(want)) << #expr;           \
        EXPECT_EQ(edittest::dump(o) + proptest::props(o), before_) << #expr " left a trace"; \
        EXPECT_EQ(edittest::liveBlocks(t, o), live_) << #expr " leaked";    \
    } while (0)
