// A long random walk of adds, renames, moves and deletes over an outline of
// duplicate names.  After every step the duplicate counts, the duplicate
// marks and the uniqueness rules are checked against a recount of the tree
// from scratch; every so often a verification's state is rebuilt and checked
// the same way.
#include <cctype>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "editsupport.h"

using edittest::EditTest;

namespace {

std::string fold(const char *s) {
    std::string f(s ? s : "");
    for (char &c : f) c = (char)std::tolower(static_cast<unsigned char>(c));
    return f;
}

class DupWalk : public EditTest {
protected:
    std::vector<VTX_POTLMBR_T> dims;

    // Every record below the root, in pre-order.
    std::vector<VTX_POTLMBR_T> members() {
        std::vector<VTX_POTLMBR_T> out;
        for (VTX_POTLMBR_T p = otlNavtrdn(o->pHeadItem, o->pHeadItem); p; p = otlNavtrdn(p, o->pHeadItem))
            out.push_back(p);
        return out;
    }
    bool isDim(VTX_POTLMBR_T p) { return p->MbrInfo.usGen == 1; }
    bool below(VTX_POTLMBR_T p, VTX_POTLMBR_T top) {
        for (; p; p = p->pParent)
            if (p == top) return true;
        return false;
    }
    bool dimName(const std::string &f) {
        for (VTX_POTLMBR_T d : dims)
            if (fold(d->MbrInfo.szMember) == f) return true;
        return false;
    }
    bool childNamed(VTX_POTLMBR_T parent, const std::string &f, VTX_POTLMBR_T except = nullptr) {
        for (VTX_POTLMBR_T c = parent->pChild; c; c = c->pSibling)
            if (c != except && fold(c->MbrInfo.szMember) == f) return true;
        return false;
    }

    // The recount and every check against it.  Returns the bearers per name.
    std::map<std::string, std::vector<VTX_POTLMBR_T>> check(const std::vector<std::string> &pool, int step) {
        std::map<std::string, std::vector<VTX_POTLMBR_T>> bearers;
        for (VTX_POTLMBR_T p : members()) {
            if (!otlMbrIsSharedShare(p)) bearers[fold(p->MbrInfo.szMember)].push_back(p);
            // Siblings differ, shared members included.
            else EXPECT_FALSE(childNamed(p->pParent, fold(p->MbrInfo.szMember), p)) << "step " << step;
        }
        for (const std::string &n : pool) bearers[fold(n.c_str())];  // names with no bearer are checked too
        for (auto &[name, list] : bearers) {
            VTX_ULONG_T count = 99;
            const bool dup = otlIsNameDuplicated(t.ctx(), o, name.c_str(), 0, &count);
            EXPECT_EQ(dup, list.size() >= 2) << "step " << step << ": " << name;
            EXPECT_EQ(count, list.size() >= 2 ? list.size() - 1 : 0) << "step " << step << ": " << name;
            for (VTX_POTLMBR_T p : list) {
                if (isDim(p)) {
                    EXPECT_EQ(list.size(), 1u) << "step " << step << ": a dimension's name is borne twice";
                    continue;
                }
                EXPECT_FALSE(childNamed(p->pParent, name, p)) << "step " << step << ": siblings named " << name;
                // A mark of a repeated name never outlives the repeat.
                if (list.size() < 2) {
                    EXPECT_FALSE(p->ucFlags & OTL_FLAG_DUP) << "step " << step << ": " << name;
                    EXPECT_FALSE(p->ucNameUnique & OTL_NU_DUP) << "step " << step << ": " << name;
                }
            }
        }
        return bearers;
    }

    void checkVerification(const std::map<std::string, std::vector<VTX_POTLMBR_T>> &bearers, int step) {
        ASSERT_EQ(otlVerifySetDupMbrArry(o), 0);
        ASSERT_EQ(otlVerifySetNonUniqueName(o, nullptr, nullptr), 0);
        VTX_PDUPMBRARRY_T arr = o->pDupMbrArry;
        ASSERT_NE(arr, nullptr);
        std::vector<VTX_ULONG_T> want(dims.size(), 0);
        for (const auto &[name, list] : bearers) {
            std::map<VTX_POTLMBR_T, int> perDim;
            for (VTX_POTLMBR_T p : list) ++perDim[otlGetDim(p)];
            for (VTX_POTLMBR_T p : list) {
                if (isDim(p)) continue;  // on a dimension the bit is its rule, not a mark
                const bool repeated = list.size() >= 2;
                EXPECT_EQ((p->ucNameUnique & OTL_NU_DUP) != 0, repeated) << "step " << step << ": " << name;
                EXPECT_EQ((p->ucNameUnique & OTL_NU_IN_DIM) != 0, perDim[otlGetDim(p)] >= 2)
                    << "step " << step << ": " << name;
                EXPECT_EQ((p->ucFlags & OTL_FLAG_DUP) != 0, repeated) << "step " << step << ": " << name;
                if (repeated)
                    for (size_t d = 0; d < dims.size(); ++d)
                        if (otlGetDim(p) == dims[d]) ++want[d];
            }
        }
        for (size_t d = 0; d < dims.size(); ++d) EXPECT_EQ(arr[d].ulDupCount, want[d]) << "step " << step;
    }
};

TEST_F(DupWalk, RandomEditsKeepCountsExact) {
    openDup();
    dims = {dim("Market"), dim("Product")};
    const std::vector<std::string> pool = {"Boston", "boston", "Salem", "Portland", "Total",
                                           "Lowell", "Jan",    "Q1",    "MARKET",   "product"};
    std::mt19937 rng(20261123);
    auto pick = [&](size_t n) { return (size_t)(rng() % n); };
    int applied = 0, refused = 0, sharedTried = 0, sharedAdded = 0;
    for (int step = 0; step < 3000; ++step) {
        std::vector<VTX_POTLMBR_T> all = members();
        std::vector<VTX_POTLMBR_T> inner, stored;
        for (VTX_POTLMBR_T p : all) {
            if (isDim(p)) continue;
            inner.push_back(p);
            if (!otlMbrIsSharedShare(p)) stored.push_back(p);
        }
        const std::string name = pool[pick(pool.size())];
        const std::string f = fold(name.c_str());
        unsigned op = inner.size() < 12 ? 0 : (unsigned)pick(inner.size() > 120 ? 3 : 4) + (inner.size() > 120);
        if (op == 0 && stored.size() >= 12 && pick(6) == 0) op = 4;
        VTX_STS_T sts = 0;
        if (op == 0) {  // add
            VTX_POTLMBR_T parent = all[pick(all.size())];
            if (parent->MbrInfo.usGen >= 6) continue;
            VTX_STS_T want = dimName(f) ? VTX_STS_DUP_WITH_DIM : childNamed(parent, f) ? VTX_STS_SIBLING_NOT_UNIQUE : 0;
            sts = tryAdd(parent, name.c_str());
            EXPECT_EQ(sts, want) << "step " << step << ": add " << name;
        } else if (op == 1) {  // rename
            VTX_POTLMBR_T m = stored[pick(stored.size())];
            VTX_STS_T want = 0;
            if (std::string(m->MbrInfo.szMember) != name) {
                if (childNamed(m->pParent, f, m)) want = VTX_STS_SIBLING_NOT_UNIQUE;
                else if (dimName(f)) want = VTX_STS_DUP_WITH_DIM;
            }
            sts = adShrOtlRenameMember(h, m, name.c_str(), 0, nullptr);
            EXPECT_EQ(sts, want) << "step " << step << ": rename " << m->MbrInfo.szMember << " to " << name;
        } else if (op == 2) {  // move within its dimension
            VTX_POTLMBR_T m = stored[pick(stored.size())];
            VTX_POTLMBR_T to = all[pick(all.size())];
            if (otlGetDim(to) != otlGetDim(m) || below(to, m) || to == m->pParent) continue;
            VTX_STS_T want = childNamed(to, fold(m->MbrInfo.szMember)) ? VTX_STS_SIBLING_NOT_UNIQUE : 0;
            sts = adShrOtlMoveMember(h, m, to, nullptr, nullptr);
            EXPECT_EQ(sts, want) << "step " << step << ": move " << m->MbrInfo.szMember;
        } else if (op == 3) {  // delete; shared members of the subtree go too
            VTX_POTLMBR_T m = inner[pick(inner.size())];
            sts = adShrOtlDeleteMember(h, m, 0, nullptr);
            EXPECT_EQ(sts, 0) << "step " << step << ": delete";
        } else {  // a shared member of a stored one, somewhere in its dimension
            VTX_POTLMBR_T m = stored[pick(stored.size())];
            VTX_POTLMBR_T to = all[pick(all.size())];
            if (otlGetDim(to) != otlGetDim(m) || to->MbrInfo.usGen >= 6) continue;
            sts = tryAdd(to, m->MbrInfo.szMember, shared());
            // Whatever the verdict, a shared member never counts as a bearer.
            ++sharedTried;
            if (!sts) ++sharedAdded;
        }
        (sts ? refused : applied)++;
        auto bearers = check(pool, step);
        if (step % 100 == 99) {
            checkVerification(bearers, step);
            ASSERT_EQ(edittest::invariants(o), "") << "step " << step;
        }
        if (HasFailure()) break;
    }
    // The walk did both kinds of thing.
    EXPECT_GT(applied, 1000);
    EXPECT_GT(refused, 50);
    EXPECT_GT(sharedAdded, 10) << sharedTried << " shared adds tried";
}

} // namespace
