// Spare (hidden) children: where they go, that they are never seen, and the
// spare children a host later turns into members.
#include <string>

#include "editsupport.h"

using namespace edittest;

namespace {

class HiddenTest : public EditTest {
protected:
    static unsigned spares(VTX_POTLMBR_T p) {
        unsigned n = 0;
        for (VTX_POTLMBR_T c = p->pChild; c; c = c->pSibling) n += OTL_IS_HIDDEN(c);
        return n;
    }
};

TEST_F(HiddenTest, SpareChildrenStandLastAndTakeIdentifiers) {
    VTX_POTLMBR_T d = dim("D");
    VTX_POTLMBR_T a = add(d, "a");
    VTX_POTLMBR_T a1 = add(a, "a1");
    VTX_POTLMBR_T spare = nullptr;
    EXPECT_EQ(otlAddHiddenMember(o, a, nullptr, &spare), -1);
    EXPECT_EQ(otlAddHiddenMember(o, a1, a1, &spare), -1);   // a childless parent
    const VTX_ULONG_T next = o->nextMbrIds[0];
    ASSERT_EQ(otlAddHiddenChildren(o, a, 2), 0);
    EXPECT_EQ(spares(a), 2u);
    EXPECT_EQ(a->MbrInfo.pLastSibling, a1);
    EXPECT_EQ(a->MbrInfo.ulChildCount, 1u);
    EXPECT_EQ(a->ulSiblingCount, 3u);
    EXPECT_EQ(o->nextMbrIds[0], next + 2);
    VTX_POTLMBR_T s = a1->pSibling;
    EXPECT_EQ(OTL_LARGE(s)->MbrInfo.usStorage, 1);
    EXPECT_EQ(s->ulDimno, a->ulDimno);
    // Asking again for as many adds none.
    std::string before = dump(o);
    ASSERT_EQ(otlAddHiddenChildren(o, a, 2), 0);
    EXPECT_EQ(dump(o), before);
    // A new visible child goes in front of them.
    VTX_POTLMBR_T a2 = add(a, "a2");
    EXPECT_EQ(a1->pSibling, a2);
    EXPECT_EQ(a->MbrInfo.pLastSibling, a2);
    o->bEditingProhibited = 1;
    EXPECT_EQ(otlAddHiddenMember(o, a, a2, &spare), VTX_STS_EDIT_PROHIBITED);
    o->bEditingProhibited = 0;
}

TEST_F(HiddenTest, PreallocatedChildrenOfSparseDimensions) {
    Spec sparse;
    sparse.storage = 1;
    VTX_POTLMBR_T dense = dim("Dense");
    VTX_POTLMBR_T dl = add(dense, "dl");
    add(dl, "leaf");
    VTX_POTLMBR_T sp = dim("Sparse", sparse);
    VTX_POTLMBR_T p = add(sp, "p");
    add(p, "c1");
    add(p, "c2");
    VTX_POTLMBR_T q = add(sp, "q");
    VTX_POTLMBR_T q1 = add(q, "q1");
    add(q1, "q11");
    o->usPreAllocatedChildren = 3;
    ASSERT_EQ(adShrOtlAddHiddenMembers(h), 0);
    EXPECT_EQ(spares(p), 1u);     // two visible, one spare
    EXPECT_EQ(spares(q1), 2u);
    EXPECT_EQ(spares(q), 0u);     // its child has children
    EXPECT_EQ(spares(sp), 0u);
    EXPECT_EQ(spares(dl), 0u);    // dense dimensions take none
    EXPECT_EQ(o->ucStateFlag & OTL_STATE_EDITED, OTL_STATE_EDITED);
}

TEST_F(HiddenTest, CountsByDimensionAndParent) {
    Spec sparse;
    sparse.storage = 1;
    VTX_POTLMBR_T sp = dim("Sparse", sparse);
    VTX_POTLMBR_T p = add(sp, "p");
    add(p, "c1");
    VTX_POTLMBR_T q = add(sp, "q");
    add(q, "c2");
    EXPECT_EQ(adShrOtlSetHiddenMemberCounts(h, p, 0, 2), VTX_STS_NOT_A_DIMENSION);
    ASSERT_EQ(adShrOtlSetHiddenMemberCounts(h, sp, 0, 2), 0);
    ASSERT_EQ(adShrOtlAddHiddenMembers(h), 0);
    EXPECT_EQ(spares(p), 2u);
    EXPECT_EQ(spares(q), 2u);
    open();
    sp = dim("Sparse", sparse);
    p = add(sp, "p");
    add(p, "c1");
    q = add(sp, "q");
    add(q, "c2");
    ASSERT_EQ(adShrOtlSetHiddenMemberCounts(h, sp, (VTX_ULONG_T)q->mbrId, 1), 0);
    ASSERT_EQ(adShrOtlAddHiddenMembers(h), 0);
    EXPECT_EQ(spares(p), 0u);
    EXPECT_EQ(spares(q), 1u);
}

TEST_F(HiddenTest, FailedBatchTakesEverySpareBack) {
    Spec sparse;
    sparse.storage = 1;
    VTX_POTLMBR_T sp = dim("Sparse", sparse);
    for (int i = 0; i < 5; ++i) {
        VTX_POTLMBR_T p = add(sp, ("p" + std::to_string(i)).c_str());
        add(p, ("c" + std::to_string(i)).c_str());
    }
    o->usPreAllocatedChildren = 4;
    const std::string before = dump(o);
    const long live = liveBlocks(t, o);
    for (long n = 1;; ++n) {
        t.failAt(n);
        VTX_STS_T sts = adShrOtlAddHiddenMembers(h);
        t.noFail();
        if (!sts) break;
        EXPECT_EQ(sts, VTX_STS_NO_MEMORY);
        EXPECT_EQ(dump(o), before) << "failure at allocation " << n;
        EXPECT_EQ(liveBlocks(t, o), live) << "failure at allocation " << n;
        ASSERT_LT(n, 500);
    }
    EXPECT_EQ(spares(sp->pChild), 3u);
}

TEST_F(HiddenTest, SpareChildBecomesAMember) {
    VTX_POTLMBR_T d = dim("D");
    VTX_POTLMBR_T p = add(d, "p");
    add(p, "c1");
    ASSERT_EQ(otlAddHiddenChildren(o, p, 2), 0);
    VTX_HMEMBER_T m = nullptr;
    ASSERT_EQ(findFirstHiddenChildMember(h, "p", &m, 0), 0);
    VTX_POTLMBR_T first = p->pChild->pSibling;
    EXPECT_EQ(m, first);
    EXPECT_EQ(findFirstHiddenChildMember(h, "c1", &m, 0), VTX_STS_NOT_FOUND);
    EXPECT_EQ(findFirstHiddenChildMember(h, "p", &m, 1), VTX_STS_DUP_REQUIRED);
    EXPECT_REFUSED(VTX_STS_NAME_EXISTS, adShrOtlMotfAddAlias(h, "p", 0, "c1", &m));
    EXPECT_REFUSED(VTX_STS_INVALID_NAME, adShrOtlMotfAddAlias(h, "p", 0, "", &m));
    ASSERT_EQ(adShrOtlMotfAddAlias(h, "p", 0, "c2", &m), 0);
    EXPECT_EQ(m, first);
    EXPECT_FALSE(OTL_IS_HIDDEN(first));
    EXPECT_EQ(p->MbrInfo.pLastSibling, first);
    EXPECT_EQ(p->MbrInfo.ulChildCount, 2u);
    // Identifiers of spare children.
    const VTX_INT32_T used = p->pChild->mbrId;
    EXPECT_REFUSED(VTX_STS_MEMBER_ID_IN_USE, adShrOtlMotfSetMbrId(h, "p", 0, (VTX_ULONG_T)used, &m));
    EXPECT_REFUSED(VTX_STS_ZERO_ID, adShrOtlMotfSetMbrId(h, "p", 0, 0, &m));
    ASSERT_EQ(adShrOtlMotfSetMbrId(h, "p", 0, 500, &m), 0);
    EXPECT_EQ(static_cast<VTX_POTLMBR_T>(m)->mbrId, 500);
    EXPECT_EQ(o->nextMbrIds[0], 501u);
}

} // namespace
