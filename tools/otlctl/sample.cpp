// otlctl sample / otlctl stats: the built-in sample outline, made the way
// any host makes an outline, through the exported calls.
#include "sample.h"

#include <CLI/CLI.hpp>

#include <cctype>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

// ---- building ---------------------------------------------------------------------

struct MemberSpec {
    VTX_USHORT_T consolidation = VTX_CONS_ADD;
    VTX_USHORT_T share = VTX_SHARE_STORE;
    VTX_USHORT_T timeBalance = 0;
    VTX_BOOL_T expense = 0;
    VTX_BOOL_T twoPass = 0;
    VTX_USHORT_T category = VTX_CAT_NONE;
    VTX_USHORT_T storage = 0;
};

MemberSpec consol(VTX_USHORT_T c) {
    MemberSpec s;
    s.consolidation = c;
    return s;
}
MemberSpec share(VTX_USHORT_T sh, VTX_USHORT_T c = VTX_CONS_ADD) {
    MemberSpec s;
    s.share = sh;
    s.consolidation = c;
    return s;
}

// Adds members one after another; the first failure sticks and stops the
// rest.
class Builder {
public:
    Builder(vtx_netctx_t *ctx, VTX_HOUTLINE_T h) : ctx_(ctx), h_(h), info_(new vtx_mbrinfo_t) {}
    VTX_STS_T status() const { return sts_; }

    VTX_HMEMBER_T dimension(const char *name, const MemberSpec &s) {
        if (sts_) return nullptr;
        fill(name, s);
        VTX_HMEMBER_T m = nullptr;
        // Behind the last dimension.
        sts_ = adShrOtlAddDimension(h_, info_.get(), VTX_HPREV_LAST64, nullptr, &m, nullptr);
        return sts_ ? nullptr : m;
    }
    // A new last child of parent.
    VTX_HMEMBER_T child(VTX_HMEMBER_T parent, const char *name, const MemberSpec &s = MemberSpec{}) {
        if (sts_) return nullptr;
        fill(name, s);
        VTX_HMEMBER_T m = nullptr;
        sts_ = adShrOtlAddMember(h_, info_.get(), parent, VTX_HPREV_LAST64, &m, 0, nullptr);
        return sts_ ? nullptr : m;
    }

    // The member's alias in a table.
    void alias(VTX_HMEMBER_T m, const char *table, const std::string &text) {
        if (sts_ || !m) return;
        sts_ = adShrOtlSetMemberAlias(h_, m, table, text.c_str(), 0, nullptr);
    }
    void table(const char *name) {
        if (!sts_) sts_ = adShrOtlCreateAliasTable(h_, name, 0);
    }

private:
    void fill(const char *name, const MemberSpec &s) {
        std::memset(info_.get(), 0, sizeof *info_);
        std::snprintf(info_->szMember, sizeof info_->szMember, "%s", name);
        info_->usConsolidation = s.consolidation;
        info_->usShare = s.share;
        info_->usTimeBalance = s.timeBalance;
        info_->fExpense = s.expense;
        info_->fTwoPass = s.twoPass;
        info_->usCategory = s.category;
        info_->usStorage = s.storage;
    }
    vtx_netctx_t *ctx_;
    VTX_HOUTLINE_T h_;
    std::unique_ptr<vtx_mbrinfo_t> info_;
    VTX_STS_T sts_ = 0;
};

const char *const kMonths[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
// The German names of the months, for the alias table "German".
const char *const kMonatsnamen[12] = {"Januar", "Februar", "März",     "April",   "Mai",      "Juni",
                                      "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
constexpr const char *kGerman = "German";

void buildYear(Builder &b) {
    MemberSpec dim;
    dim.category = VTX_CAT_TIME;
    dim.share = VTX_SHARE_LABEL;
    VTX_HMEMBER_T year = b.dimension("Year", dim);
    for (int y = 2023; y <= 2024; ++y) {
        std::string fy = "FY" + std::to_string(y);
        VTX_HMEMBER_T yr = b.child(year, fy.c_str());
        for (int q = 0; q < 4; ++q) {
            std::string qn = "Q" + std::to_string(q + 1) + " " + fy;
            VTX_HMEMBER_T qtr = b.child(yr, qn.c_str());
            for (int m = 0; m < 3; ++m) {
                VTX_HMEMBER_T month = b.child(qtr, (std::string(kMonths[q * 3 + m]) + " " + fy).c_str());
                b.alias(month, kGerman, std::string(kMonatsnamen[q * 3 + m]) + " GJ" + std::to_string(y));
            }
        }
    }
}

void buildMeasures(Builder &b) {
    MemberSpec dim;
    dim.category = VTX_CAT_ACCOUNTS;
    dim.share = VTX_SHARE_LABEL;
    VTX_HMEMBER_T measures = b.dimension("Measures", dim);
    VTX_HMEMBER_T profit = b.child(measures, "Profit");
    VTX_HMEMBER_T margin = b.child(profit, "Margin");
    b.child(margin, "Sales");
    b.child(margin, "COGS", consol(VTX_CONS_SUB));
    MemberSpec exp = consol(VTX_CONS_SUB);
    exp.expense = 1;
    VTX_HMEMBER_T expenses = b.child(profit, "Total Expenses", exp);
    MemberSpec item;
    item.expense = 1;
    b.child(expenses, "Marketing", item);
    b.child(expenses, "Payroll", item);
    b.child(expenses, "Misc", item);
    // Balances: the first and last period of a quarter, not their sum.
    VTX_HMEMBER_T inventory = b.child(measures, "Inventory", share(VTX_SHARE_LABEL, VTX_CONS_IGNORE));
    MemberSpec opening;
    opening.timeBalance = 1;
    b.child(inventory, "Opening Inventory", opening);
    b.child(inventory, "Additions");
    MemberSpec ending;
    ending.timeBalance = 2;
    b.child(inventory, "Ending Inventory", ending);
    // Ratios are worked out after the aggregation, from formulas to come.
    VTX_HMEMBER_T ratios = b.child(measures, "Ratios", share(VTX_SHARE_LABEL, VTX_CONS_IGNORE));
    MemberSpec ratio = share(VTX_SHARE_DYNCALC, VTX_CONS_IGNORE);
    ratio.twoPass = 1;
    b.child(ratios, "Margin %", ratio);
    b.child(ratios, "Profit %", ratio);
    b.child(ratios, "Profit per Ounce", ratio);
}

void buildProduct(Builder &b) {
    MemberSpec dim;
    dim.storage = 1;
    VTX_HMEMBER_T product = b.dimension("Product", dim);
    std::vector<std::string> diet;
    for (int f = 1; f <= 12; ++f) {
        std::string family = std::to_string(f * 100);
        VTX_HMEMBER_T fam = b.child(product, family.c_str());
        for (int s = 1; s <= 20; ++s) {
            std::string sku = family + "-" + std::to_string(s * 10);
            b.child(fam, sku.c_str());
            if (s % 10 == 0) diet.push_back(sku);
        }
    }
    // An alternate hierarchy of shared members, counted once.
    VTX_HMEMBER_T dietTop = b.child(product, "Diet", share(VTX_SHARE_LABEL, VTX_CONS_IGNORE));
    for (const std::string &sku : diet) b.child(dietTop, sku.c_str(), share(VTX_SHARE_SHARED));
}

struct Region {
    const char *name;
    const char *german;          // its alias in the table "German"
    const char *states[12][2];   // name, abbreviation
};

const Region kRegions[4] = {
    {"East", "Osten",
     {{"New York", "NY"}, {"Massachusetts", "MA"}, {"Florida", "FL"}, {"Connecticut", "CT"}, {"New Hampshire", "NH"},
      {"Maine", "ME"}, {"Vermont", "VT"}, {"Rhode Island", "RI"}, {"New Jersey", "NJ"}, {"Pennsylvania", "PA"},
      {"Delaware", "DE"}, {"Maryland", "MD"}}},
    {"West", "Westen",
     {{"California", "CA"}, {"Oregon", "OR"}, {"Washington", "WA"}, {"Utah", "UT"}, {"Nevada", "NV"},
      {"Arizona", "AZ"}, {"Idaho", "ID"}, {"Montana", "MT"}, {"Wyoming", "WY"}, {"Colorado", "CO"},
      {"Alaska", "AK"}, {"Hawaii", "HI"}}},
    {"South", "Süden",
     {{"Texas", "TX"}, {"Oklahoma", "OK"}, {"Louisiana", "LA"}, {"New Mexico", "NM"}, {"Arkansas", "AR"},
      {"Mississippi", "MS"}, {"Alabama", "AL"}, {"Georgia", "GA"}, {"Tennessee", "TN"}, {"Kentucky", "KY"},
      {"Virginia", "VA"}, {"Carolina", "NC"}}},
    {"Central", "Mitte",
     {{"Illinois", "IL"}, {"Ohio", "OH"}, {"Wisconsin", "WI"}, {"Missouri", "MO"}, {"Iowa", "IA"},
      {"Colorado Springs", "CS"}, {"Michigan", "MI"}, {"Minnesota", "MN"}, {"Indiana", "IN"}, {"Kansas", "KS"},
      {"Nebraska", "NE"}, {"Dakota", "SD"}}},
};

void buildMarket(Builder &b) {
    MemberSpec dim;
    dim.storage = 1;
    VTX_HMEMBER_T market = b.dimension("Market", dim);
    std::vector<std::string> major;
    for (const Region &r : kRegions) {
        VTX_HMEMBER_T region = b.child(market, r.name);
        b.alias(region, kGerman, r.german);
        for (int s = 0; s < 12; ++s) {
            VTX_HMEMBER_T state = b.child(region, r.states[s][0]);
            for (int c = 1; c <= 5; ++c) b.child(state, (std::string(r.states[s][1]) + "-" + std::to_string(c)).c_str());
            if (s < 2) major.push_back(r.states[s][0]);
        }
    }
    VTX_HMEMBER_T majorTop = b.child(market, "Major Markets", share(VTX_SHARE_LABEL, VTX_CONS_IGNORE));
    for (const std::string &st : major) b.child(majorTop, st.c_str(), share(VTX_SHARE_SHARED));
}

void buildScenario(Builder &b) {
    MemberSpec dim = share(VTX_SHARE_LABEL);
    VTX_HMEMBER_T scenario = b.dimension("Scenario", dim);
    b.child(scenario, "Actual");
    b.child(scenario, "Budget", consol(VTX_CONS_IGNORE));
    b.child(scenario, "Variance", share(VTX_SHARE_DYNCALC, VTX_CONS_IGNORE));
    b.child(scenario, "Variance %", share(VTX_SHARE_DYNCALC, VTX_CONS_IGNORE));
}

// ---- printing and counting ------------------------------------------------------------

const char kConsolidation[] = "+-*/%~^";

const char *shareText(VTX_USHORT_T s) {
    switch (s) {
    case VTX_SHARE_NEVER: return "never share";
    case VTX_SHARE_LABEL: return "label only";
    case VTX_SHARE_SHARED:
    case VTX_SHARE_SHARED2: return "shared";
    case VTX_SHARE_DYNCALCSTORE: return "dynamic calc and store";
    case VTX_SHARE_DYNCALC: return "dynamic calc";
    default: return nullptr;
    }
}

const char *categoryText(VTX_USHORT_T c) {
    switch (c) {
    case VTX_CAT_ACCOUNTS: return "accounts";
    case VTX_CAT_TIME: return "time";
    case VTX_CAT_COUNTRY: return "country";
    case VTX_CAT_CURRENCY: return "currency";
    case VTX_CAT_CURRPART: return "currency partition";
    case VTX_CAT_ATTRIBUTE: return "attribute";
    case VTX_CAT_ATTRCALC: return "attribute calculations";
    default: return nullptr;
    }
}

const char *const kTimeBalance[4] = {nullptr, "first", "last", "average"};

// Visits hMember and its subtree in pre-order: f(member, info).
template <class F>
VTX_STS_T walk(VTX_HOUTLINE_T h, vtx_netctx_t *ctx, VTX_HMEMBER_T hMember, F &f) {
    vtx_mbrinfo_t *info = nullptr;
    VTX_STS_T sts = adShrOtlGetMemberInfo(h, hMember, &info);
    if (sts) return sts;
    f(hMember, *info);
    (void)adShrOtlFreeMbrInfo(ctx, 1, info);  // a read copy; nothing depends on its release
    VTX_HMEMBER_T c = nullptr;
    sts = adShrOtlGetChild(h, hMember, &c);
    while (!sts && c) {
        sts = walk(h, ctx, c, f);
        if (!sts) sts = adShrOtlGetNextSibling(h, c, &c);
    }
    return sts;
}

} // namespace

VTX_STS_T otlctlBuildSample(vtx_netctx_t *pNetCtx, VTX_HOUTLINE_T *phOutline) {
    if (phOutline) *phOutline = nullptr;
    if (!pNetCtx || !phOutline) return VTX_STS_NULL_ARG;
    vtx_outlineinfo_t newInfo{};
    newInfo.usOutlineType = VTX_OTL_REGULAR;
    VTX_HOUTLINE_T h = nullptr;
    VTX_STS_T sts = adShrOtlNewOutline(pNetCtx, &newInfo, &h, 0);
    if (sts) return sts;
    Builder b(pNetCtx, h);
    b.table(kGerman);
    buildYear(b);
    buildMeasures(b);
    buildProduct(b);
    buildMarket(b);
    buildScenario(b);
    if (b.status()) {
        (void)adShrOtlCloseOutline(h);  // always 0
        return b.status();
    }
    *phOutline = h;
    return 0;
}

namespace {

// The sample of duplicate names: months under each quarter of two years,
// quarters under each year, cities under more than one region, and "Total"
// in two dimensions.
void buildDupYear(Builder &b) {
    MemberSpec dim;
    dim.category = VTX_CAT_TIME;
    dim.share = VTX_SHARE_LABEL;
    VTX_HMEMBER_T year = b.dimension("Year", dim);
    for (int y = 2024; y <= 2025; ++y) {
        VTX_HMEMBER_T fy = b.child(year, ("FY" + std::to_string(y)).c_str());
        for (int q = 0; q < 4; ++q) {
            VTX_HMEMBER_T qtr = b.child(fy, ("Q" + std::to_string(q + 1)).c_str());
            for (int m = 0; m < 3; ++m) b.child(qtr, kMonths[q * 3 + m]);
        }
    }
}

void buildDupMeasures(Builder &b) {
    MemberSpec dim;
    dim.category = VTX_CAT_ACCOUNTS;
    dim.share = VTX_SHARE_LABEL;
    VTX_HMEMBER_T measures = b.dimension("Measures", dim);
    VTX_HMEMBER_T total = b.child(measures, "Total");
    b.child(total, "Sales");
    b.child(total, "COGS", consol(VTX_CONS_SUB));
}

void buildDupMarket(Builder &b) {
    MemberSpec dim;
    dim.storage = 1;
    VTX_HMEMBER_T market = b.dimension("Market", dim);
    const char *const east[] = {"Boston", "Portland", "Springfield", "Albany"};
    const char *const west[] = {"Portland", "Salem", "Springfield"};
    const char *const central[] = {"Springfield", "Boston", "Columbus"};
    VTX_HMEMBER_T r = b.child(market, "East");
    for (const char *c : east) b.child(r, c);
    r = b.child(market, "West");
    for (const char *c : west) b.child(r, c);
    r = b.child(market, "Central");
    for (const char *c : central) b.child(r, c);
}

void buildDupProduct(Builder &b) {
    MemberSpec dim;
    dim.storage = 1;
    VTX_HMEMBER_T product = b.dimension("Product", dim);
    VTX_HMEMBER_T total = b.child(product, "Total");
    for (const char *family : {"Colas", "Root Beer"}) {
        VTX_HMEMBER_T f = b.child(total, family);
        for (const char *size : {"Regular", "Diet"}) b.child(f, size);
    }
}

// One member as the repeated-name listing sees it.
struct Bearer {
    VTX_HMEMBER_T h;
    std::string name;
    std::vector<std::string> ancestors;  // from the dimension down to the parent
    bool shared;
};

std::string folded(const std::string &s) {
    std::string f(s);
    for (char &c : f) c = (char)std::tolower(static_cast<unsigned char>(c));
    return f;
}

// Whether b would answer to a's last k ancestors too (names compared
// without regard to case); a bearer with fewer ancestors cannot.
bool sameTail(const Bearer &a, const Bearer &b, size_t k) {
    if (a.ancestors.size() < k || b.ancestors.size() < k) return false;
    for (size_t i = 1; i <= k; ++i)
        if (folded(a.ancestors[a.ancestors.size() - i]) != folded(b.ancestors[b.ancestors.size() - i])) return false;
    return true;
}

} // namespace

VTX_STS_T otlctlBuildDuplicatesSample(vtx_netctx_t *pNetCtx, VTX_HOUTLINE_T *phOutline) {
    if (phOutline) *phOutline = nullptr;
    if (!pNetCtx || !phOutline) return VTX_STS_NULL_ARG;
    vtx_outlineinfo_t newInfo{};
    newInfo.usOutlineType = VTX_OTL_REGULAR;
    newInfo.usOtlNameType = VTX_NAMES_DUP;
    VTX_HOUTLINE_T h = nullptr;
    VTX_STS_T sts = adShrOtlNewOutline(pNetCtx, &newInfo, &h, 0);
    if (sts) return sts;
    Builder b(pNetCtx, h);
    buildDupYear(b);
    buildDupMeasures(b);
    buildDupMarket(b);
    buildDupProduct(b);
    if (b.status()) {
        (void)adShrOtlCloseOutline(h);  // always 0
        return b.status();
    }
    *phOutline = h;
    return 0;
}

VTX_STS_T otlctlQualifiedRepeatedNames(VTX_HOUTLINE_T hOutline, vtx_netctx_t *pNetCtx,
                                       std::vector<std::pair<std::string, std::string>> &names) {
    names.clear();
    std::vector<Bearer> all;
    std::vector<std::string> path;
    VTX_HMEMBER_T dim = nullptr;
    VTX_STS_T sts = adShrOtlGetFirstMember(hOutline, &dim);
    auto collect = [&](VTX_HMEMBER_T h, const vtx_mbrinfo_t &m) {
        path.resize(m.usGen - 1);
        all.push_back({h, m.szMember, path, m.usShare == VTX_SHARE_SHARED || m.usShare == VTX_SHARE_SHARED2});
        path.push_back(m.szMember);
    };
    while (!sts && dim) {
        sts = walk(hOutline, pNetCtx, dim, collect);
        if (!sts) sts = adShrOtlGetNextSibling(hOutline, dim, &dim);
    }
    if (sts) return sts;
    // Only members that hold a name of their own count as its bearers.
    std::map<std::string, std::vector<size_t>> byName;
    for (size_t i = 0; i < all.size(); ++i)
        if (!all[i].shared) byName[folded(all[i].name)].push_back(i);
    for (size_t i = 0; i < all.size(); ++i) {
        const Bearer &me = all[i];
        if (me.shared) continue;
        const std::vector<size_t> &same = byName[folded(me.name)];
        if (same.size() < 2) continue;
        // The fewest ancestors that tell this bearer from the others.
        size_t k = 1;
        for (; k < me.ancestors.size(); ++k) {
            bool clash = false;
            for (size_t j : same)
                if (j != i && sameTail(me, all[j], k)) clash = true;
            if (!clash) break;
        }
        char expr[VTX_PATH_BLOCK_LEN];
        std::string prefix;
        for (size_t a = me.ancestors.size() - k; a < me.ancestors.size() && !sts; ++a) {
            sts = adShrConstrucMemberPathExpression(nullptr, prefix.empty() ? nullptr : prefix.c_str(),
                                                    me.ancestors[a].c_str(), expr);
            if (!sts) prefix = expr;
        }
        if (!sts) sts = adShrConstrucMemberPathExpression(nullptr, prefix.c_str(), me.name.c_str(), expr);
        if (sts) return sts;
        names.emplace_back(me.name, expr);
    }
    return 0;
}

VTX_STS_T otlctlPrintTree(VTX_HOUTLINE_T hOutline, vtx_netctx_t *pNetCtx, std::FILE *out, const char *aliasTable) {
    VTX_HMEMBER_T dim = nullptr;
    VTX_STS_T sts = adShrOtlGetFirstMember(hOutline, &dim);
    if (!sts && aliasTable) {
        // An unknown table is refused before anything is printed.
        VTX_STR_T a = nullptr;
        if (dim) sts = adShrOtlGetMemberAlias(hOutline, dim, aliasTable, &a);
        (void)adShrOtlFree(pNetCtx, a);  // a probe
    }
    auto print = [&](VTX_HMEMBER_T h, const vtx_mbrinfo_t &m) {
        std::string marks = "gen " + std::to_string(m.usGen) + ", level " + std::to_string(m.usLevel);
        if (m.usGen == 1) {
            marks += m.usStorage == 1 ? ", sparse" : ", dense";
            if (const char *c = categoryText(m.usCategory)) marks += std::string(", ") + c;
        }
        if (const char *s = shareText(m.usShare)) marks += std::string(", ") + s;
        if (m.usTimeBalance < 4 && kTimeBalance[m.usTimeBalance])
            marks += std::string(", time balance ") + kTimeBalance[m.usTimeBalance];
        if (m.fExpense) marks += ", expense";
        if (m.fTwoPass) marks += ", two-pass";
        const char cons = m.usConsolidation < 7 ? kConsolidation[m.usConsolidation] : '?';
        std::string alias;
        if (aliasTable) {
            VTX_STR_T a = nullptr;
            if (adShrOtlGetMemberAlias(hOutline, h, aliasTable, &a) == 0 && a) alias = std::string(" (") + a + ")";
            (void)adShrOtlFree(pNetCtx, a);  // a read copy
        }
        std::fprintf(out, "%*s%c %s%s  [%s]\n", (int)(2 * (m.usGen - 1)), "", cons, m.szMember, alias.c_str(),
                     marks.c_str());
    };
    while (!sts && dim) {
        sts = walk(hOutline, pNetCtx, dim, print);
        if (!sts) sts = adShrOtlGetNextSibling(hOutline, dim, &dim);
    }
    return sts;
}

VTX_STS_T otlctlCountDims(VTX_HOUTLINE_T hOutline, vtx_netctx_t *pNetCtx, OtlctlDimCounts *pCounts, unsigned maxDims,
                          unsigned *pCount) {
    if (pCount) *pCount = 0;
    VTX_HMEMBER_T dim = nullptr;
    VTX_STS_T sts = adShrOtlGetFirstMember(hOutline, &dim);
    unsigned n = 0;
    while (!sts && dim) {
        OtlctlDimCounts c{};
        auto count = [&](VTX_HMEMBER_T, const vtx_mbrinfo_t &m) {
            if (m.usGen == 1) std::snprintf(c.name, sizeof c.name, "%s", m.szMember);
            ++c.members;
            if (m.usShare == VTX_SHARE_SHARED || m.usShare == VTX_SHARE_SHARED2) ++c.shared;
            else if (m.usShare == VTX_SHARE_LABEL) ++c.labelOnly;
            else ++c.stored;
            if (m.usShare == VTX_SHARE_DYNCALC || m.usShare == VTX_SHARE_DYNCALCSTORE) ++c.dynamic;
            if (m.ulChildCount == 0) ++c.leaves;
            if (m.usGen > c.deepestGen) c.deepestGen = m.usGen;
        };
        sts = walk(hOutline, pNetCtx, dim, count);
        if (!sts && pCounts && n < maxDims) pCounts[n] = c;
        ++n;
        if (!sts) sts = adShrOtlGetNextSibling(hOutline, dim, &dim);
    }
    if (pCount) *pCount = n;
    return sts;
}

namespace {

vtx_netctx_t sampleContext() {
    vtx_netctx_t ctx{};
    (void)vtxHostInitContext(&ctx);  // cannot fail on a zeroed context
    ctx.MsgCallback = APIError;
    ctx.lClientVersion = 0x00B20000;
    ctx.lServerVersion = 0x00B20000;
    ctx.lClientDllVersion = 0x00B20000;
    ctx.estimatedHashSize = 10000;
    return ctx;
}

// Runs body on a fresh sample outline; a failure ends the command with 1.
template <class B, class F>
void withSample(B &&build, F &&body) {
    vtx_netctx_t ctx = sampleContext();
    VTX_HOUTLINE_T h = nullptr;
    VTX_STS_T sts = build(&ctx, &h);
    if (sts) {
        std::fprintf(stderr, "otlctl: building the sample outline failed with status %d\n", sts);
        throw CLI::RuntimeError(1);
    }
    sts = body(h, &ctx);
    (void)adShrOtlCloseOutline(h);  // always 0
    if (sts) {
        std::fprintf(stderr, "otlctl: reading the sample outline failed with status %d\n", sts);
        throw CLI::RuntimeError(1);
    }
}

template <class F>
void withSample(F &&body) {
    withSample(otlctlBuildSample, body);
}

} // namespace

void registerSampleCommands(CLI::App &app) {
    auto *cmdSample = app.add_subcommand("sample", "Build the built-in sample outline and print it as a tree");
    static bool numbers = false;
    static std::string aliasTable;
    cmdSample->add_option("--alias", aliasTable, "Show each member's alias in this alias table (e.g. German)");
    static bool duplicates = false;
    cmdSample->add_flag("--duplicates", duplicates,
                        "Build a sample outline that allows duplicate member names instead, print it, and list "
                        "each repeated name with the qualified name that tells its bearer apart");
    cmdSample->add_flag("--numbers", numbers,
                        "Renumber the outline and print every member's generation, level, member number, actual "
                        "member number and dimension number; shared members name their stored member");
    cmdSample->callback([]() {
        if (duplicates) {
            withSample(otlctlBuildDuplicatesSample, [](VTX_HOUTLINE_T h, vtx_netctx_t *ctx) -> VTX_STS_T {
                VTX_STS_T sts = otlctlPrintTree(h, ctx, stdout);
                std::vector<std::pair<std::string, std::string>> names;
                if (!sts) sts = otlctlQualifiedRepeatedNames(h, ctx, names);
                if (sts) return sts;
                std::printf("\nrepeated names:\n");
                for (const auto &n : names) std::printf("  %-14s %s\n", n.first.c_str(), n.second.c_str());
                return 0;
            });
            return;
        }
        withSample([](VTX_HOUTLINE_T h, vtx_netctx_t *ctx) {
            return numbers ? otlctlPrintNumbers(h, stdout)
                           : otlctlPrintTree(h, ctx, stdout, aliasTable.empty() ? nullptr : aliasTable.c_str());
        });
    });
    auto *cmdStats = app.add_subcommand("stats", "Count the members of each dimension of the sample outline");
    cmdStats->callback([]() {
        withSample([](VTX_HOUTLINE_T h, vtx_netctx_t *ctx) -> VTX_STS_T {
            std::vector<OtlctlDimCounts> counts(VTX_MAX_DIMS);
            unsigned n = 0;
            VTX_STS_T sts = otlctlCountDims(h, ctx, counts.data(), (unsigned)counts.size(), &n);
            if (sts) return sts;
            std::printf("%-20s %8s %8s %8s %8s %8s %8s %6s\n", "dimension", "members", "stored", "shared", "label",
                        "dynamic", "leaves", "depth");
            unsigned long total = 0;
            for (unsigned i = 0; i < n && i < counts.size(); ++i) {
                const OtlctlDimCounts &c = counts[i];
                std::printf("%-20s %8lu %8lu %8lu %8lu %8lu %8lu %6u\n", c.name, c.members, c.stored, c.shared,
                            c.labelOnly, c.dynamic, c.leaves, c.deepestGen);
                total += c.members;
            }
            std::printf("%-20s %8lu\n", "total", total);
            return 0;
        });
    });
}
