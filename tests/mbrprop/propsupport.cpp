#include "propsupport.h"

#include <sstream>

namespace proptest {

namespace {
const char *orNone(const char *s) { return s ? s : "<null>"; }
const char *nameOf(VTX_POTLMBR_T p) { return p ? orNone(p->MbrInfo.szMember) : "-"; }
} // namespace

std::string props(VTX_POTL_T o) {
    std::ostringstream s;
    s << "state " << (int)o->ucStateFlag << " verified " << (int)o->fVerified << " hints " << o->nmHints << "/"
      << o->nmAllocHints << "x" << o->queryHintSize << ":";
    auto *slots = static_cast<VTX_POTLMBR_T *>(o->queryHintArray);
    for (size_t i = 0; slots && i < (size_t)o->nmAllocHints * o->queryHintSize; ++i) s << " " << nameOf(slots[i]);
    s << "\nrenegade:";
    for (unsigned d = 0; d < OTL_DIM_SLOTS; ++d)
        if (o->renMbrs[d]) s << " " << d << "=" << nameOf(o->renMbrs[d]);
    s << "\n";
    for (VTX_POTLMBR_T p = o->pHeadItem; p; p = otlNavtrdn(p, o->pHeadItem)) {
        s << nameOf(p) << " so" << (int)p->ucSolveOrder << "/" << (int)p->ucDimSolveOrder << " agg"
          << (int)p->ucAggLevelUsage << " f" << (int)p->ucFlags << " i" << p->MbrInfo.ucInfoFlags;
        if (!OTL_IS_SMALL(p)) {
            VTX_POTLMBRLARGE_T l = OTL_LARGE(p);
            s << " calc:" << orNone(l->pszCalc) << " last:" << orNone(l->pszLastCalc) << " cx:"
              << orNone(l->pszCommentEx) << " fmt:" << orNone(l->pszFormatString) << " ht"
              << (int)l->MbrInfo.ucHierarchyType << " sh" << (int)l->MbrInfo.usShare << " st"
              << (int)l->MbrInfo.usStorage;
        }
        s << "\n";
    }
    return s.str();
}

long PropTest::walk(const std::function<VTX_STS_T()> &op) {
    const std::string before = edittest::dump(o) + props(o);
    const long live = edittest::liveBlocks(t, o);
    for (long n = 1; n < 100; ++n) {
        t.failAt(n);
        const long calls = t.stats().calls;
        const VTX_STS_T sts = op();
        const long made = t.stats().calls - calls;
        t.noFail();
        if (sts == 0) return made;
        EXPECT_EQ(sts, VTX_STS_NO_MEMORY) << "at allocation " << n;
        EXPECT_EQ(edittest::dump(o) + props(o), before) << "failure at allocation " << n << " left a trace";
        EXPECT_EQ(edittest::liveBlocks(t, o), live) << "failure at allocation " << n << " leaked";
        if (::testing::Test::HasFailure()) return -1;
    }
    ADD_FAILURE() << "the call never succeeded";
    return -1;
}

std::string PropTest::text(VTX_STS_T (*get)(VTX_HOUTLINE_T, VTX_HMEMBER_T, VTX_STR_T *), VTX_POTLMBR_T m,
                           VTX_STS_T *pSts) {
    VTX_STR_T p = reinterpret_cast<VTX_STR_T>(1);  // must be cleared by the call
    const VTX_STS_T sts = get(h, m, &p);
    if (pSts) *pSts = sts;
    else EXPECT_EQ(sts, 0);
    if (!p) return "<null>";
    if (p == reinterpret_cast<VTX_STR_T>(1)) return "<not cleared>";
    std::string s = p;
    EXPECT_EQ(adShrOtlFree(t.ctx(), p), 0);
    return s;
}

} // namespace proptest
