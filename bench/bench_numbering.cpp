// Renumbering and sorting at scale.
//
//  - otlSetMemno from the root of outlines of 1M and 10M members, against a
//    plain recursive post-order walk that writes one counter per record of
//    the same tree (the least any numbering can do);
//  - adShrOtlSortChildren of 1M children of one parent, against std::sort
//    of the same names under the same comparison, and under plain strcmp.
//
// Each pair runs in the same process on the same data; the ratios are
// printed at the end.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "benchsupport.h"
#include "otl.h"

namespace {

vtx_netctx_t &benchCtx() {
    static vtx_netctx_t c = vtxbench::makeContext();
    return c;
}

// An outline of `dims` dimensions, each 1,000 parents of 1,000 children,
// linked record by record (no edit checks: only the shape matters here).
struct BigOutline {
    VTX_POTL_T p = nullptr;
    explicit BigOutline(unsigned dims) {
        vtx_outlineinfo_t info{};
        VTX_HOUTLINE_T h = nullptr;
        if (adShrOtlNewOutline(&benchCtx(), &info, &h, 0) != 0) std::abort();
        p = static_cast<VTX_POTL_T>(h);
        (void)otlInitMemList(&benchCtx(), p, 100000000, 1);  // pool exists already; this call is a no-op
        char name[32];
        VTX_POTLMBR_T prevDim = nullptr;
        for (unsigned d = 0; d < dims; ++d) {
            std::snprintf(name, sizeof name, "Dim%u", d);
            VTX_POTLMBR_T dim = link(p->pHeadItem, prevDim, name, 1);
            prevDim = dim;
            VTX_POTLMBR_T prevParent = nullptr;
            for (unsigned i = 0; i < 1000; ++i) {
                std::snprintf(name, sizeof name, "P%u_%u", d, i);
                VTX_POTLMBR_T par = link(dim, prevParent, name, 2);
                prevParent = par;
                VTX_POTLMBR_T prev = nullptr;
                for (unsigned j = 0; j < 1000; ++j) {
                    std::snprintf(name, sizeof name, "M%u_%u_%u", d, i, j);
                    prev = link(par, prev, name, 3);
                }
            }
        }
    }
    ~BigOutline() { adShrOtlCloseOutline(p); }

    VTX_POTLMBR_T link(VTX_POTLMBR_T parent, VTX_POTLMBR_T prev, const char *name, VTX_UCHAR_T gen) {
        VTX_POTLMBR_T m = nullptr;
        if (otlNewItem2(&benchCtx(), p, &m, 1) != 0) std::abort();
        if (otlStrdup(&benchCtx(), name, &m->MbrInfo.szMember) != 0) std::abort();
        m->pParent = parent;
        m->MbrInfo.usGen = gen;
        if (prev) {
            prev->pSibling = m;
            m->pPrevSibling = prev;
        } else {
            parent->pChild = m;
        }
        parent->ulSiblingCount++;
        parent->MbrInfo.pLastSibling = m;
        return m;
    }
};

BigOutline &outlineOf(unsigned dims) {
    static std::map<unsigned, BigOutline *> cache;
    auto &slot = cache[dims];
    if (!slot) slot = new BigOutline(dims);  // kept for the whole run
    return *slot;
}

// The baseline: the least a numbering can do.
void plainPostOrder(VTX_POTLMBR_T p, VTX_ULONG_T &n) {
    for (VTX_POTLMBR_T c = p->pChild; c; c = c->pSibling) plainPostOrder(c, n);
    p->ulMemno = n++;
}

void BM_SetMemno(benchmark::State &state) {
    BigOutline &o = outlineOf((unsigned)state.range(0));
    for (auto _ : state) {
        if (otlSetMemno(o.p, o.p->pHeadItem) != 0) state.SkipWithError("numbering failed");
    }
    state.counters["members"] = (double)state.range(0) * 1001001.0;
}

void BM_Baseline_PlainPostOrder(benchmark::State &state) {
    BigOutline &o = outlineOf((unsigned)state.range(0));
    for (auto _ : state) {
        for (VTX_POTLMBR_T d = o.p->pHeadItem->pChild; d; d = d->pSibling) {
            VTX_ULONG_T n = 1;
            plainPostOrder(d, n);
            benchmark::DoNotOptimize(n);
        }
    }
}

BENCHMARK(BM_SetMemno)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Baseline_PlainPostOrder)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond)->Iterations(3);

// ---- sorting ----

constexpr unsigned kSortChildren = 1000000;

std::vector<std::string> &sortNames() {
    static std::vector<std::string> names = [] {
        std::mt19937 rng(42);
        std::vector<std::string> v;
        v.reserve(kSortChildren);
        char buf[32];
        for (unsigned i = 0; i < kSortChildren; ++i) {
            std::snprintf(buf, sizeof buf, "Item%08x%u", (unsigned)rng(), i);
            v.emplace_back(buf);
        }
        return v;
    }();
    return names;
}

int byteCompare(VTX_HMEMBER_T a, VTX_HMEMBER_T b, void *) {
    return std::strcmp(static_cast<VTX_POTLMBR_T>(a)->MbrInfo.szMember, static_cast<VTX_POTLMBR_T>(b)->MbrInfo.szMember);
}

// One parent with 1M children in random order; each iteration shuffles them
// back (outside the timing) and sorts.
struct SortFixture {
    BigOutline o{0};
    VTX_POTLMBR_T parent;
    std::vector<VTX_POTLMBR_T> kids;
    SortFixture() {
        parent = o.link(o.p->pHeadItem, nullptr, "Flat", 1);
        VTX_POTLMBR_T prev = nullptr;
        for (const auto &n : sortNames()) {
            prev = o.link(parent, prev, n.c_str(), 2);
            kids.push_back(prev);
        }
    }
    void shuffle() {
        std::mt19937 rng(7);
        std::shuffle(kids.begin(), kids.end(), rng);
        VTX_POTLMBR_T prev = nullptr;
        for (VTX_POTLMBR_T k : kids) {
            k->pPrevSibling = prev;
            k->pSibling = nullptr;
            if (prev) prev->pSibling = k; else parent->pChild = k;
            prev = k;
        }
        parent->MbrInfo.pLastSibling = prev;
    }
};

SortFixture &sortFixture() {
    static SortFixture *f = new SortFixture;  // kept for the whole run
    return *f;
}

// Shuffles the children back (outside the timing) and sorts them.
void sortChildren(benchmark::State &state, VTX_USHORT_T type, VTX_PFNMBRCOMPARE_T cmp) {
    SortFixture &f = sortFixture();
    for (auto _ : state) {
        state.PauseTiming();
        f.shuffle();
        state.ResumeTiming();
        if (adShrOtlSortChildren(f.o.p, f.parent, type, cmp, nullptr) != 0) state.SkipWithError("sort failed");
    }
}

// std::sort of the same names under a comparison.
template <class Less>
void stdSort(benchmark::State &state, Less less) {
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<const char *> v;
        v.reserve(kSortChildren);
        for (const auto &n : sortNames()) v.push_back(n.c_str());
        state.ResumeTiming();
        std::sort(v.begin(), v.end(), less);
        benchmark::DoNotOptimize(v.data());
    }
}

void BM_SortChildren_Collation(benchmark::State &state) { sortChildren(state, VTX_SORT_ASCENDING, nullptr); }
void BM_SortChildren_Bytes(benchmark::State &state) { sortChildren(state, VTX_SORT_CALLER, byteCompare); }
void BM_Baseline_StdSort_Collation(benchmark::State &state) {
    vtx_netctx_t *ctx = &benchCtx();
    stdSort(state, [ctx](const char *a, const char *b) { return otlStricoll(ctx, a, b) < 0; });
}
void BM_Baseline_StdSort_Bytes(benchmark::State &state) {
    stdSort(state, [](const char *a, const char *b) { return std::strcmp(a, b) < 0; });
}

BENCHMARK(BM_SortChildren_Collation)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_Baseline_StdSort_Collation)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(BM_SortChildren_Bytes)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_Baseline_StdSort_Bytes)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char **argv) {
    return vtxbench::runWithRatios(
        argc, argv,
        {{"renumber 1M  / plain walk", "BM_SetMemno/1/iterations:3", "BM_Baseline_PlainPostOrder/1/iterations:3"},
         {"renumber 10M / plain walk", "BM_SetMemno/10/iterations:3", "BM_Baseline_PlainPostOrder/10/iterations:3"},
         {"sort 1M children, collation / std::sort, collation", "BM_SortChildren_Collation/iterations:2",
          "BM_Baseline_StdSort_Collation/iterations:2"},
         {"sort 1M children, bytes / std::sort, bytes", "BM_SortChildren_Bytes/iterations:3",
          "BM_Baseline_StdSort_Bytes/iterations:3"}});
}
