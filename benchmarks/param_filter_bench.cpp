// The parameter filters on all of 35/12 (21,425,712 tickets): every parameter as a single
// filter (keep, range) and the integrated filter with every box ticked, each timed, beside the
// same work done by the window's statements in SQLite (the statements of the tests' reference)
// on the first N tickets, scaled up to the whole table, with the ratio.
//
//   param_filter_bench [--sql-rows N | --no-sql] [--scope 1|3] [--singles | --integrated] [--repeat N] [--only BUTTON]
//
// --repeat runs each case N times and prints the medians; the peak memory of the
// process follows each case (the table itself, about 20 bytes a ticket, included).
#include "bench_tables.h"
#include "bench_timing.h"
#include "filter/candidate_actions.h"
#include "filter/param/param_filter.h"
#include "generation/expansion.h"
#include "param_reference.h"
#include "workspace/sqlite_db.h"

#include <QCoreApplication>

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <random>
#include <thread>

namespace {

using bench::seconds;

using bench::cpuSeconds;

struct Timing {
    double wall = 0;
    double cpu = 0;
};

Timing timed(const std::function<void()>& fn) {
    const double c0 = cpuSeconds();
    const double w = seconds(fn);
    return {w, cpuSeconds() - c0};
}

// Ranges of the kind the history presets give: most tickets pass, some fail.
void presetRanges(ParamWindowState& s) {
    const auto set = [&](ParamId id, const char* lo, const char* hi) {
        s.box(id)[0] = QString::fromLatin1(lo);
        s.box(id)[1] = QString::fromLatin1(hi);
    };
    set(ParamId::NumberSum, "60", "120");
    set(ParamId::SumLastDigit, "1", "8");
    set(ParamId::ConsecutiveCount, "0", "1");
    set(ParamId::EvenCount, "1", "4");
    set(ParamId::BigCount, "1", "4");
    set(ParamId::BigLastDigitCount, "1", "4");
    set(ParamId::Range1To10, "0", "3");
    set(ParamId::Range11To20, "0", "3");
    set(ParamId::Range21Up, "0", "3");
    set(ParamId::Position1, "1", "12");
    set(ParamId::Position2, "4", "20");
    set(ParamId::Position3, "8", "27");
    set(ParamId::Position4, "15", "32");
    set(ParamId::Position5, "24", "35");
    set(ParamId::LargestGap, "5", "20");
    set(ParamId::LastMinusFirst, "15", "33");
    set(ParamId::RepeatsOfPrevious, "0", "2");
    set(ParamId::AcComplexity, "4", "6");
    set(ParamId::OddSum, "10", "80");
    set(ParamId::EvenSum, "10", "80");
    set(ParamId::LastDigitSum, "10", "32");
    set(ParamId::OmissionSum, "10", "60");
    set(ParamId::OmissionSpread, "3", "20");
    set(ParamId::SmallSum, "5", "50");
    set(ParamId::BigSum, "20", "110");
    set(ParamId::SameLastDigitCount, "0", "1");
    set(ParamId::CustomRange, "1", "3");
}

ParamContext benchContext() {
    ParamContext c;
    for (int n : {3, 12, 18, 25, 33}) c.lastDrawFront[static_cast<size_t>(n)] = true;
    std::mt19937 rng(5);
    std::uniform_int_distribution<int> om(0, 25);
    for (int n = 1; n < kNumberSlots; ++n) {
        c.omissionFront[static_cast<size_t>(n)] = static_cast<int16_t>(om(rng));
        c.omissionBack[static_cast<size_t>(n)] = static_cast<int16_t>(om(rng));
    }
    return c;
}

using bench::head;

}  // namespace

double medianOf(std::vector<double> v) {
    std::nth_element(v.begin(), v.begin() + static_cast<ptrdiff_t>(v.size() / 2), v.end());
    return v[v.size() / 2];
}

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    uint64_t sqlRows = 200000;
    int scope = 1;
    int repeat = 1;
    QString only;  // one button of the singles
    if (args.contains(QStringLiteral("--no-sql"))) sqlRows = 0;
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QLatin1String("--sql-rows")) sqlRows = args[i + 1].toULongLong();
        if (args[i] == QLatin1String("--scope")) scope = args[i + 1].toInt();
        if (args[i] == QLatin1String("--repeat")) repeat = std::max(1, args[i + 1].toInt());
        if (args[i] == QLatin1String("--only")) only = args[i + 1];
    }

    ExpansionInput in;
    for (int n = 1; n <= 35; ++n) in.front.push_back(static_cast<int16_t>(n));
    for (int n = 1; n <= 12; ++n) in.back.push_back(static_cast<int16_t>(n));
    ExpansionResult r = expand(in);
    CandidateTable& t = *r.table;
    const double rows = static_cast<double>(t.rowCount());
    const double scale = sqlRows ? rows / static_cast<double>(sqlRows) : 0;
    std::printf("35/12: %llu tickets; SQL on the first %llu, scaled x%.1f; scope %d\n",
                static_cast<unsigned long long>(t.rowCount()), static_cast<unsigned long long>(sqlRows), scale, scope);

    const ParamContext ctx = benchContext();
    ParamWindowState s = ParamWindowState::defaults();
    s.scope = static_cast<ZoneScope>(scope);
    presetRanges(s);
    s.parityTicks[4] = true;  // 第1位: odd numbers only

    CandidateTable small = head(t, sqlRows);
    SqliteDb db;
    db.open(QStringLiteral(":memory:"), true);

    const unsigned threads = std::max(1u, std::thread::hardware_concurrency());
    std::printf("engine: wall time, and CPU time of all %u threads (/%u = the wall time of an idle machine)\n",
                threads, threads);
    std::printf("%-18s %9s %9s %10s %12s %9s\n", "parameter", "wall ms", "cpu ms", "killed", "SQL ms", "ratio");
    double worst = 0, worstCpu = 0;
    const bool singles = !args.contains(QStringLiteral("--integrated"));
    // As the window runs it: with a progress that could cancel it.
    const bool withProgress = args.contains(QStringLiteral("--with-progress"));
    for (const ParamInfo& p : param_catalogue::all()) {
        if (!singles) break;
        if (!only.isEmpty() && only != QLatin1String(p.button)) continue;
        param_filter::SingleResult res;
        std::vector<double> walls, cpus;
        for (int run = 0; run < repeat; ++run) {
            candidate_actions::resetAll(t);
            const Timing one = timed([&] { res = param_filter::runSingle(t, p.id, s, ctx); });
            walls.push_back(one.wall);
            cpus.push_back(one.cpu);
        }
        const Timing tm{medianOf(walls), medianOf(cpus)};
        const double te = tm.wall;
        worstCpu = std::max(worstCpu, tm.cpu);
        double ts = 0;
        if (sqlRows) {
            candidate_actions::resetAll(small);
            param_reference::load(db, small);
            ts = seconds([&] { param_reference::runSingle(db, p.id, s, ctx); }) * scale;
        }
        worst = std::max(worst, te);
        std::printf("%-9s %-8s %9.1f %9.1f %10llu %12.0f %9.0f\n", p.button, param_catalogue::info(p.id).drawColumn,
                    te * 1000, tm.cpu * 1000, static_cast<unsigned long long>(res.killed), ts * 1000, ts / te);
        std::fflush(stdout);
    }
    std::printf("slowest single filter: %.1f ms wall, %.1f ms cpu (target 50 ms)\n", worst * 1000, worstCpu * 1000);

    if (args.contains(QStringLiteral("--singles"))) return 0;
    for (bool& b : s.integratedBox) b = true;
    for (const auto& [keep, logicAnd, name] :
         std::vector<std::tuple<bool, bool, const char*>>{{true, true, "keep+and"}, {false, true, "exclude+and"}}) {
        s.keep = keep;
        s.logicAnd = logicAnd;
        s.useTolerance = true;
        s.txtRc0 = QStringLiteral("2");
        param_filter::IntegratedResult res;
        std::vector<double> walls, cpus;
        for (int run = 0; run < repeat; ++run) {
            candidate_actions::resetAll(t);
            struct Quiet : EngineProgress {
                void progress(uint64_t, uint64_t) override {}
            } quiet;
            const Timing one = timed([&] {
                res = param_filter::runIntegrated(t, s, ctx, withProgress ? &quiet : nullptr);
            });
            walls.push_back(one.wall);
            cpus.push_back(one.cpu);
        }
        const Timing tm{medianOf(walls), medianOf(cpus)};
        const double te = tm.wall;
        double ts = 0;
        if (sqlRows) {
            candidate_actions::resetAll(small);
            param_reference::load(db, small);
            ts = seconds([&] { param_reference::runIntegrated(db, s, ctx); }) * scale;
        }
        std::printf(
            "integrated, all 27 boxes, %s: %d statements, %.1f ms wall, %.1f ms cpu, %llu live, %zu reasons; "
            "SQL %.0f ms; ratio %.0f; median of %d; peak %.0f MiB\n",
            name, res.steps, te * 1000, tm.cpu * 1000, static_cast<unsigned long long>(t.liveCount()),
            t.reasons().size(), ts * 1000, ts / te, repeat, bench::peakMiB());
        std::fflush(stdout);
        // What reading the reasons costs now that a row's text may be made when it is read.
        constexpr uint64_t kRead = 100000;
        size_t chars = 0;
        const double tr = seconds([&] {
            for (uint64_t r = 0; r < std::min(kRead, t.rowCount()); ++r) chars += static_cast<size_t>(t.reasonText(r).size());
        });
        std::printf("  reason texts of the first %llu rows: %.1f ms (%.2f us a row, %zu characters)\n",
                    static_cast<unsigned long long>(kRead), tr * 1000, tr * 1e6 / kRead, chars);
        std::fflush(stdout);
    }
    return 0;
}
