// The member index at work, through the exported calls, against two
// baselines holding the same tree:
//   (a) nodes with std::vector children lists and a
//       std::unordered_map<std::string, node *> from name to node;
//   (b) SQLite in memory: a table (id, parent, name) with an index on name,
//       the rows inserted in one transaction, every statement prepared once.
//
// The outline: dimensions of 1,000 parents with 1,000 children each (one per
// million members) and one flat dimension of 100,000 members, built through
// adShrOtlAddMember.  Then, in this order and on all three: finding 1M
// random existing names and 1M absent ones (adShrOtlFindMember), 100K
// qualified names "[parent].[child]", renaming 100K members and deleting
// 100K others.  Memory per member is the growth of the resident set and of
// the heap in use over the build.
//
// The outline of the library is case-insensitive (every name folded before
// it is hashed); both baselines compare bytes.  Phases are timed by the
// processor time of the thread.  The three contenders are built one after
// the other and then held side by side: the finds, which change nothing,
// run in chunks of 10,000 that take turns between the contenders, so that
// the noise of a shared machine falls on all three alike; a find phase
// counts the median chunk times the number of chunks.  Renames and deletes
// run once per contender.  The ratios to the baselines are printed after
// Google Benchmark's table.  --sizes=1,10 picks the outlines by millions of
// members.
#include <benchmark/benchmark.h>

#include "benchsupport.h"
#include <malloc.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "extendedhash.h"
#include "otlHashItemsFactoryWrapper.h"
#include "otl.h"
#include "vtxotl.h"

namespace {

// Texts joined by appending (operator+ of std::string draws false alarms
// from GCC 12's overlap checks at -O3).
template <class... T>
std::string cat(const T &...parts) {
    std::string out;
    (out.append(parts), ...);
    return out;
}

// Phases are timed by the processor time of the thread: the machines are
// shared, and a phase that waits for the processor has not worked longer.
struct Clock {
    using time_point = double;
    static double now() {
        timespec ts{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
        return double(ts.tv_sec) + double(ts.tv_nsec) * 1e-9;
    }
};

double since(double t0) { return Clock::now() - t0; }

long residentBytes() {
    long pages = 0, resident = 0;
    if (std::FILE *f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(f);
    }
    return resident * sysconf(_SC_PAGESIZE);
}

struct Usage {
    long rss, heap;
    static Usage now() {
        malloc_trim(0);
        return {residentBytes(), static_cast<long>(vtxbench::heapInUse())};
    }
};

// ---- the tree, as names ----------------------------------------------------------

struct Shape {
    int hierDims;                  // dimensions of 1,000 x 1,000
    static constexpr int kParents = 1000, kChildren = 1000, kFlat = 100000;
    size_t members() const {
        return size_t(hierDims) * (1 + kParents + size_t(kParents) * kChildren) + 1 + kFlat;
    }
};

// Every record of the outline in the order it is added: dimensions first,
// then each dimension's parents with their children.  parent[i] is the index
// of the record's parent, -1 for a dimension.
struct Tree {
    std::vector<std::string> name;
    std::vector<int64_t> parent;
    std::vector<size_t> children;  // indexes of the leaves, for the samples
    explicit Tree(const Shape &s) {
        name.reserve(s.members());
        parent.reserve(s.members());
        children.reserve(s.members());
        for (int d = 0; d < s.hierDims; ++d) {
            const int64_t dim = static_cast<int64_t>(name.size());
            name.push_back(cat("Dim", std::to_string(d)));
            parent.push_back(-1);
            for (int p = 0; p < Shape::kParents; ++p) {
                const int64_t par = static_cast<int64_t>(name.size());
                name.push_back(cat("P", std::to_string(d), "_", std::to_string(p)));
                parent.push_back(dim);
                for (int c = 0; c < Shape::kChildren; ++c) {
                    children.push_back(name.size());
                    name.push_back(cat("M", std::to_string(d), "_", std::to_string(p), "_", std::to_string(c)));
                    parent.push_back(par);
                }
            }
        }
        const int64_t flat = static_cast<int64_t>(name.size());
        name.push_back("Flat");
        parent.push_back(-1);
        for (int i = 0; i < Shape::kFlat; ++i) {
            children.push_back(name.size());
            name.push_back(cat("F_", std::to_string(i)));
            parent.push_back(flat);
        }
    }
};

// The samples every contender works on, drawn once.
struct Samples {
    std::vector<size_t> present;   // 1M records to find
    std::vector<std::string> absent;
    std::vector<size_t> pathOf;    // 100K leaves to find by "[parent].[child]"
    std::vector<std::string> paths;
    std::vector<size_t> renamed;   // 100K leaves, and their new names
    std::vector<std::string> newNames;
    std::vector<size_t> deleted;   // 100K other leaves
    Samples(const Tree &t, uint32_t seed) {
        std::mt19937_64 rng(seed);
        std::uniform_int_distribution<size_t> any(0, t.name.size() - 1);
        for (int i = 0; i < 1000000; ++i) present.push_back(any(rng));
        for (int i = 0; i < 1000000; ++i) absent.push_back(cat(t.name[any(rng)], "~"));
        std::vector<size_t> leaves = t.children;
        std::shuffle(leaves.begin(), leaves.end(), rng);
        for (int i = 0; i < 100000; ++i) {
            const size_t c = leaves[i];
            pathOf.push_back(c);
            paths.push_back(cat("[", t.name[size_t(t.parent[c])], "].[", t.name[c], "]"));
        }
        for (int i = 0; i < 100000; ++i) {
            renamed.push_back(leaves[100000 + i]);
            newNames.push_back(cat("Renamed_", std::to_string(i)));
        }
        for (int i = 0; i < 100000; ++i) deleted.push_back(leaves[200000 + i]);
    }
};

// ---- what a contender reports -----------------------------------------------------

enum Phase { kBuild, kFind, kMiss, kPath, kRename, kDelete, kPhases };
const char *const kPhaseName[kPhases] = {"build", "find 1M present", "find 1M absent", "find 100K paths",
                                         "rename 100K", "delete 100K"};
enum Who { kOurs, kMap, kSql, kWho };
const char *const kWhoName[kWho] = {"outline", "vector+unordered_map", "SQLite"};

struct Result {
    double seconds[kPhases] = {};
    double rssPerMember = 0, heapPerMember = 0;
    size_t wrong = 0;   // answers that were not the expected ones
};

std::map<int, Result[kWho]> g_results;   // by size in millions
vtx_netctx_t g_ctx;

// ---- the contenders --------------------------------------------------------------

// "[parent].[child]" as (parent, child), for the baselines.
std::pair<std::string, std::string> splitPath(const std::string &p) {
    const size_t mid = p.find("].[");
    return {p.substr(1, mid - 1), p.substr(mid + 3, p.size() - mid - 4)};
}

// One contender: the build, each find phase over a range of its samples
// (answering how many answers were wrong), the edits.
class Contender {
public:
    virtual ~Contender() = default;
    virtual void build() = 0;
    virtual size_t findPresent(size_t from, size_t to) = 0;
    virtual size_t findAbsent(size_t from, size_t to) = 0;
    virtual size_t findPaths(size_t from, size_t to) = 0;
    virtual size_t renameAll() = 0;
    virtual size_t deleteAll() = 0;
    // After the edits: the renamed are found by their new names.
    virtual size_t checkEdits() { return 0; }
};

class OutlineContender : public Contender {
public:
    OutlineContender(const Tree &t, const Samples &s) : t_(t), s_(s), handle_(t.name.size()) {}
    ~OutlineContender() override {
        if (h_) (void)adShrOtlCloseOutline(h_);
    }
    void build() override {
        vtx_netctx_t &ctx = ctx_;
        ctx = g_ctx;
        ctx.estimatedHashSize = static_cast<VTX_ULONG_T>(t_.name.size());
        vtx_outlineinfo_t oi{};
        if (adShrOtlNewOutline(&ctx, &oi, &h_, 0)) std::abort();
        std::vector<VTX_HMEMBER_T> lastChild(t_.name.size());
        vtx_mbrinfo_t info{};
        VTX_HMEMBER_T lastDim = nullptr;
        for (size_t i = 0; i < t_.name.size(); ++i) {
            std::memcpy(info.szMember, t_.name[i].c_str(), t_.name[i].size() + 1);
            const int64_t p = t_.parent[i];
            VTX_STS_T sts;
            if (p < 0) {
                sts = adShrOtlAddMember(h_, &info, nullptr, lastDim, &handle_[i], 0, nullptr);
                lastDim = handle_[i];
            } else {
                sts = adShrOtlAddMember(h_, &info, handle_[size_t(p)], lastChild[size_t(p)], &handle_[i], 0, nullptr);
                lastChild[size_t(p)] = handle_[i];
            }
            if (sts) {
                std::fprintf(stderr, "add of %s failed with %d\n", t_.name[i].c_str(), sts);
                std::abort();
            }
        }
    }
    size_t findPresent(size_t from, size_t to) override {
        size_t wrong = 0;
        for (size_t k = from; k < to; ++k) {
            const size_t i = s_.present[k];
            VTX_HMEMBER_T m = nullptr;
            if (adShrOtlFindMember(h_, t_.name[i].c_str(), &m) || m != handle_[i]) ++wrong;
        }
        return wrong;
    }
    size_t findAbsent(size_t from, size_t to) override {
        size_t wrong = 0;
        for (size_t k = from; k < to; ++k) {
            VTX_HMEMBER_T m = nullptr;
            if (adShrOtlFindMember(h_, s_.absent[k].c_str(), &m) != VTX_STS_NOT_FOUND) ++wrong;
        }
        return wrong;
    }
    size_t findPaths(size_t from, size_t to) override {
        size_t wrong = 0;
        for (size_t k = from; k < to; ++k) {
            VTX_HMEMBER_T m = nullptr;
            if (adShrOtlFindMember(h_, s_.paths[k].c_str(), &m) || m != handle_[s_.pathOf[k]]) ++wrong;
        }
        return wrong;
    }
    size_t renameAll() override {
        size_t wrong = 0;
        for (size_t k = 0; k < s_.renamed.size(); ++k)
            if (adShrOtlRenameMember(h_, handle_[s_.renamed[k]], s_.newNames[k].c_str(), 0, nullptr)) ++wrong;
        return wrong;
    }
    size_t deleteAll() override {
        size_t wrong = 0;
        for (size_t i : s_.deleted)
            if (adShrOtlDeleteMember(h_, handle_[i], 0, nullptr)) ++wrong;
        return wrong;
    }
    size_t checkEdits() override {
        size_t wrong = 0;
        for (size_t k = 0; k < s_.renamed.size(); k += 997) {
            VTX_HMEMBER_T m = nullptr;
            if (adShrOtlFindMember(h_, s_.newNames[k].c_str(), &m) || m != handle_[s_.renamed[k]]) ++wrong;
        }
        return wrong;
    }

private:
    const Tree &t_;
    const Samples &s_;
    vtx_netctx_t ctx_{};
    VTX_HOUTLINE_T h_ = nullptr;
    std::vector<VTX_HMEMBER_T> handle_;
};

// ---- baseline (a): vectors of children and a hash map of names --------------------

struct Node {
    std::string name;
    Node *parent = nullptr;
    std::vector<Node *> children;
};

class MapContender : public Contender {
public:
    MapContender(const Tree &t, const Samples &s) : t_(t), s_(s), nodes_(t.name.size()) {}
    void build() override {
        for (size_t i = 0; i < t_.name.size(); ++i) {
            nodes_[i] = std::make_unique<Node>();
            Node *n = nodes_[i].get();
            n->name = t_.name[i];
            // A name stands once, as in an outline of unique names.
            if (!index_.emplace(n->name, n).second) std::abort();
            if (t_.parent[i] < 0) {
                dims_.push_back(n);
            } else {
                n->parent = nodes_[size_t(t_.parent[i])].get();
                n->parent->children.push_back(n);
            }
        }
    }
    size_t findPresent(size_t from, size_t to) override {
        size_t wrong = 0;
        for (size_t k = from; k < to; ++k) {
            const size_t i = s_.present[k];
            auto it = index_.find(t_.name[i]);
            if (it == index_.end() || it->second != nodes_[i].get()) ++wrong;
        }
        return wrong;
    }
    size_t findAbsent(size_t from, size_t to) override {
        size_t wrong = 0;
        for (size_t k = from; k < to; ++k)
            if (index_.find(s_.absent[k]) != index_.end()) ++wrong;
        return wrong;
    }
    size_t findPaths(size_t from, size_t to) override {
        size_t wrong = 0;
        for (size_t k = from; k < to; ++k) {
            // "[parent].[child]": the child by name, its parent's name checked.
            const auto [parent, child] = splitPath(s_.paths[k]);
            auto it = index_.find(child);
            if (it == index_.end() || !it->second->parent || it->second->parent->name != parent ||
                it->second != nodes_[s_.pathOf[k]].get())
                ++wrong;
        }
        return wrong;
    }
    size_t renameAll() override {
        size_t wrong = 0;
        for (size_t k = 0; k < s_.renamed.size(); ++k) {
            Node *n = nodes_[s_.renamed[k]].get();
            if (index_.count(s_.newNames[k])) {
                ++wrong;
                continue;
            }
            index_.erase(n->name);
            n->name = s_.newNames[k];
            index_.emplace(n->name, n);
        }
        return wrong;
    }
    size_t deleteAll() override {
        for (size_t i : s_.deleted) {
            Node *n = nodes_[i].get();
            index_.erase(n->name);
            auto &sib = n->parent->children;
            sib.erase(std::find(sib.begin(), sib.end(), n));
            nodes_[i].reset();
        }
        return 0;
    }

private:
    const Tree &t_;
    const Samples &s_;
    std::vector<std::unique_ptr<Node>> nodes_;
    std::unordered_map<std::string, Node *> index_;
    std::vector<Node *> dims_;
};

// ---- baseline (b): SQLite in memory -------------------------------------------------

void check(int rc, sqlite3 *db, const char *what) {
    if (rc != SQLITE_OK && rc != SQLITE_DONE && rc != SQLITE_ROW) {
        std::fprintf(stderr, "sqlite %s: %s\n", what, sqlite3_errmsg(db));
        std::abort();
    }
}

class SqlContender : public Contender {
public:
    SqlContender(const Tree &t, const Samples &s) : t_(t), s_(s) {}
    ~SqlContender() override {
        for (sqlite3_stmt *st : {ins_, byName_, byPath_, rename_, del_}) sqlite3_finalize(st);
        sqlite3_close(db_);
    }
    void build() override {
        check(sqlite3_open(":memory:", &db_), db_, "open");
        check(sqlite3_exec(db_, "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;", nullptr, nullptr, nullptr), db_,
              "pragma");
        check(sqlite3_exec(db_, "CREATE TABLE m(id INTEGER PRIMARY KEY, parent INTEGER, name TEXT NOT NULL);"
                                "CREATE UNIQUE INDEX m_name ON m(name);",
                           nullptr, nullptr, nullptr),
              db_, "create");
        ins_ = prepare("INSERT INTO m(id, parent, name) VALUES(?, ?, ?)");
        byName_ = prepare("SELECT id FROM m WHERE name = ?");
        byPath_ = prepare("SELECT c.id FROM m c JOIN m p ON c.parent = p.id WHERE c.name = ? AND p.name = ?");
        rename_ = prepare("UPDATE m SET name = ? WHERE id = ?");
        del_ = prepare("DELETE FROM m WHERE id = ?");
        check(sqlite3_exec(db_, "BEGIN", nullptr, nullptr, nullptr), db_, "begin");
        for (size_t i = 0; i < t_.name.size(); ++i) {
            sqlite3_bind_int64(ins_, 1, int64_t(i) + 1);
            if (t_.parent[i] < 0) sqlite3_bind_null(ins_, 2);
            else sqlite3_bind_int64(ins_, 2, t_.parent[i] + 1);
            sqlite3_bind_text(ins_, 3, t_.name[i].c_str(), int(t_.name[i].size()), SQLITE_STATIC);
            check(sqlite3_step(ins_), db_, "insert");
            sqlite3_reset(ins_);
        }
        check(sqlite3_exec(db_, "COMMIT", nullptr, nullptr, nullptr), db_, "commit");
    }
    size_t findPresent(size_t from, size_t to) override {
        size_t wrong = 0;
        for (size_t k = from; k < to; ++k) {
            const size_t i = s_.present[k];
            sqlite3_bind_text(byName_, 1, t_.name[i].c_str(), int(t_.name[i].size()), SQLITE_STATIC);
            if (idOf(byName_) != int64_t(i) + 1) ++wrong;
        }
        return wrong;
    }
    size_t findAbsent(size_t from, size_t to) override {
        size_t wrong = 0;
        for (size_t k = from; k < to; ++k) {
            const std::string &n = s_.absent[k];
            sqlite3_bind_text(byName_, 1, n.c_str(), int(n.size()), SQLITE_STATIC);
            if (idOf(byName_) != 0) ++wrong;
        }
        return wrong;
    }
    size_t findPaths(size_t from, size_t to) override {
        size_t wrong = 0;
        for (size_t k = from; k < to; ++k) {
            const auto [parent, child] = splitPath(s_.paths[k]);
            sqlite3_bind_text(byPath_, 1, child.c_str(), int(child.size()), SQLITE_TRANSIENT);
            sqlite3_bind_text(byPath_, 2, parent.c_str(), int(parent.size()), SQLITE_TRANSIENT);
            if (idOf(byPath_) != int64_t(s_.pathOf[k]) + 1) ++wrong;
        }
        return wrong;
    }
    size_t renameAll() override {
        size_t wrong = 0;
        check(sqlite3_exec(db_, "BEGIN", nullptr, nullptr, nullptr), db_, "begin");
        for (size_t k = 0; k < s_.renamed.size(); ++k) {
            sqlite3_bind_text(rename_, 1, s_.newNames[k].c_str(), int(s_.newNames[k].size()), SQLITE_STATIC);
            sqlite3_bind_int64(rename_, 2, int64_t(s_.renamed[k]) + 1);
            if (sqlite3_step(rename_) != SQLITE_DONE) ++wrong;
            sqlite3_reset(rename_);
        }
        check(sqlite3_exec(db_, "COMMIT", nullptr, nullptr, nullptr), db_, "commit");
        return wrong;
    }
    size_t deleteAll() override {
        size_t wrong = 0;
        check(sqlite3_exec(db_, "BEGIN", nullptr, nullptr, nullptr), db_, "begin");
        for (size_t i : s_.deleted) {
            sqlite3_bind_int64(del_, 1, int64_t(i) + 1);
            if (sqlite3_step(del_) != SQLITE_DONE) ++wrong;
            sqlite3_reset(del_);
        }
        check(sqlite3_exec(db_, "COMMIT", nullptr, nullptr, nullptr), db_, "commit");
        return wrong;
    }

private:
    sqlite3_stmt *prepare(const char *sql) {
        sqlite3_stmt *st = nullptr;
        check(sqlite3_prepare_v2(db_, sql, -1, &st, nullptr), db_, sql);
        return st;
    }
    static int64_t idOf(sqlite3_stmt *st) {
        int64_t id = 0;
        if (sqlite3_step(st) == SQLITE_ROW) id = sqlite3_column_int64(st, 0);
        sqlite3_reset(st);
        return id;
    }

    const Tree &t_;
    const Samples &s_;
    sqlite3 *db_ = nullptr;
    sqlite3_stmt *ins_ = nullptr, *byName_ = nullptr, *byPath_ = nullptr, *rename_ = nullptr, *del_ = nullptr;
};

// A find phase: chunks of kChunk finds that take turns between the
// contenders; each contender's time is its median chunk time times the
// number of chunks.
constexpr size_t kChunk = 10000;

template <class Run>
void interleaved(Contender *const (&who)[kWho], size_t total, Result (&res)[kWho], Phase phase, Run run) {
    std::vector<double> times[kWho];
    for (size_t from = 0; from < total; from += kChunk) {
        const size_t to = std::min(total, from + kChunk);
        for (int w = 0; w < kWho; ++w) {
            const double t0 = Clock::now();
            res[w].wrong += run(who[w], from, to);
            times[w].push_back(since(t0) * double(kChunk) / double(to - from));
        }
    }
    for (int w = 0; w < kWho; ++w) {
        std::vector<double> &t = times[w];
        std::nth_element(t.begin(), t.begin() + long(t.size() / 2), t.end());
        res[w].seconds[phase] = t[t.size() / 2] * double(total) / double(kChunk);
    }
}

// ---- one outline size ----------------------------------------------------------------

void runGroup(benchmark::State &state, int millions) {
    for (auto _ : state) {
        Shape shape{millions};
        Tree tree(shape);
        Samples samples(tree, 20240611u + unsigned(millions));
        Result (&res)[kWho] = g_results[millions];
        OutlineContender outline(tree, samples);
        MapContender map(tree, samples);
        SqlContender sql(tree, samples);
        Contender *const who[kWho] = {&outline, &map, &sql};
        for (int w = 0; w < kWho; ++w) {
            const Usage before = Usage::now();
            const double t0 = Clock::now();
            who[w]->build();
            res[w].seconds[kBuild] = since(t0);
            const Usage built = Usage::now();
            res[w].rssPerMember = double(built.rss - before.rss) / double(tree.name.size());
            res[w].heapPerMember = double(built.heap - before.heap) / double(tree.name.size());
        }
        interleaved(who, samples.present.size(), res, kFind,
                    [](Contender *c, size_t a, size_t b) { return c->findPresent(a, b); });
        interleaved(who, samples.absent.size(), res, kMiss,
                    [](Contender *c, size_t a, size_t b) { return c->findAbsent(a, b); });
        interleaved(who, samples.paths.size(), res, kPath,
                    [](Contender *c, size_t a, size_t b) { return c->findPaths(a, b); });
        for (int w = 0; w < kWho; ++w) {
            double t0 = Clock::now();
            res[w].wrong += who[w]->renameAll();
            res[w].seconds[kRename] = since(t0);
            t0 = Clock::now();
            res[w].wrong += who[w]->deleteAll();
            res[w].seconds[kDelete] = since(t0);
            res[w].wrong += who[w]->checkEdits();
        }
        double total = 0;
        for (double sec : res[kOurs].seconds) total += sec;
        state.SetIterationTime(total);
        state.counters["members"] = double(tree.name.size());
        state.counters["build_s"] = res[kOurs].seconds[kBuild];
        state.counters["rss_B_per_member"] = res[kOurs].rssPerMember;
        state.counters["wrong"] = double(res[kOurs].wrong + res[kMap].wrong + res[kSql].wrong);
    }
}

// What an outline with nothing in it holds, for an estimate of 0 (the
// default of 5,000,000 strings) and of 1,000.
void printEmptyOutlineCost() {
    std::printf("\nEmpty outline (new, nothing added):\n");
    for (VTX_ULONG_T estimate : {0u, 1000u}) {
        vtx_netctx_t ctx = g_ctx;
        ctx.estimatedHashSize = estimate;
        const Usage before = Usage::now();
        VTX_HOUTLINE_T h = nullptr;
        vtx_outlineinfo_t oi{};
        if (adShrOtlNewOutline(&ctx, &oi, &h, 0)) std::abort();
        const Usage after = Usage::now();
        auto *o = static_cast<VTX_POTL_T>(h);
        auto *main = static_cast<ExtendedHash *>(o->pExtendedHashTable);
        std::printf("  estimatedHashSize %-7lu heap %8.1f KiB  resident %8.1f KiB  first table %zu slots, "
                    "%zu blocks of its own; count of repeats %s\n",
                    (unsigned long)estimate, double(after.heap - before.heap) / 1024.0,
                    double(after.rss - before.rss) / 1024.0, main->tableSize(0), main->blocksHeld(),
                    o->pExtendedHashTableDupName ? "made" : "not made (unique names)");
        (void)adShrOtlCloseOutline(h);
    }
}

void printRatios() {
    for (auto &[millions, res] : g_results) {
        std::printf("\nOutline of %zu members (%d dimensions of 1,000 x 1,000 and one flat)\n",
                    Shape{millions}.members(), millions);
        std::printf("  %-18s %14s %22s %14s %12s %12s\n", "phase", "outline s", "vector+unordered_map s", "SQLite s",
                    "vs map", "SQLite/ours");
        for (int p = 0; p < kPhases; ++p)
            std::printf("  %-18s %14.3f %22.3f %14.3f %11.2fx %11.2fx\n", kPhaseName[p], res[kOurs].seconds[p],
                        res[kMap].seconds[p], res[kSql].seconds[p], res[kOurs].seconds[p] / res[kMap].seconds[p],
                        res[kSql].seconds[p] / res[kOurs].seconds[p]);
        for (int w = 0; w < kWho; ++w)
            std::printf("  %-22s resident %7.1f B/member, heap %7.1f B/member, wrong answers %zu\n", kWhoName[w],
                        res[w].rssPerMember, res[w].heapPerMember, res[w].wrong);
    }
    // The parts of a member of the outline, by size of their own.
    std::printf("\nPer member of the outline: record %zu B (large), hash node 32 B, hash item %zu B, "
                "member-number map %zu B, name and alias slots from the context's allocator\n",
                sizeof(_vtx_otlmbrlarge_t), sizeof(VTX_OTLHASHITEM_T_EXT), sizeof(void *));
}

} // namespace

int main(int argc, char **argv) {
    std::vector<int> sizes = {1, 10};
    std::vector<char *> args = vtxbench::takeSizes(argc, argv, sizes);
    int n = static_cast<int>(args.size());
    benchmark::Initialize(&n, args.data());
    std::memset(&g_ctx, 0, sizeof g_ctx);
    (void)vtxHostInitContext(&g_ctx);
    g_ctx.bSendMsgNet = 0;
    g_ctx.lClientVersion = 0x00B20000;
    g_ctx.lServerVersion = 0x00B20000;
    g_ctx.lClientDllVersion = 0x00B20000;
    for (int m : sizes) {
        benchmark::RegisterBenchmark(cat("index/", std::to_string(m), "M").c_str(),
                                     [=](benchmark::State &st) { runGroup(st, m); })
            ->Iterations(1)
            ->UseManualTime()
            ->Unit(benchmark::kSecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    printEmptyOutlineCost();
    printRatios();
    return 0;
}
