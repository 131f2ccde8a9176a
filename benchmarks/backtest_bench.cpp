// The back-test of a ten-step filter template over the last 100 draws of the bundled history on
// all of 35/12 (21,425,712 tickets): wall time of the whole run and of each draw.
//
//   backtest_bench [--draws N] [--threads T] [--history-last] [--rates-only]

#include "app/backtest_space.h"
#include "bench_timing.h"
#include "bench_workspace.h"
#include "filter/backtest/backtest_runner.h"
#include "filter/backtest/pass_rate.h"
#include "filter/templates/filter_snapshot.h"
#include "filter/templates/template_store.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <cstring>

namespace {

using Clock = std::chrono::steady_clock;

struct Range {
    ParamId id;
    int lo, hi;
};

// An integrated step over the given ranges in one zone, with an allowed count of misses.
void addIntegrated(TemplateStore& store, int scope, std::initializer_list<Range> ranges, int tolerance = -1) {
    ParamWindowState s = ParamWindowState::defaults();
    for (const Range& r : ranges) {
        s.integratedBox[static_cast<size_t>(param_catalogue::runBox(r.id))] = true;
        s.box(r.id)[0] = QString::number(r.lo);
        s.box(r.id)[1] = QString::number(r.hi);
    }
    if (tolerance >= 0) {
        s.useTolerance = true;
        s.txtRc0 = QString::number(tolerance);
    }
    store.addStep(0, scope, filter_snapshot::snapshotValues(s));
}

void addSuper(TemplateStore& store, int code, const QString& count, std::initializer_list<int16_t> numbers,
              int16_t group = 0) {
    SuperInputs in;
    in.superCount = count;
    in.groupSize = group;
    // The inclusion filters read sk(1..), the relation filters sk(0..).
    size_t i = code == 13 || code == 14 ? 1 : 0;
    for (int16_t n : numbers) in.superNumbers[i++] = n;
    store.addStep(code, 1, filter_snapshot::superValues(code, in));
}

// Ten steps: five integrated runs (one of them over the omissions and the last draw), a relation
// and an inclusion filter, two history filters and a run in the back zone. `historyLast` puts
// the three steps that read the history at the end, where the steps before them run once.
void writeTenSteps(TemplateStore& store, bool historyLast) {
    store.clear();
    const auto historySteps = [&] {
        addSuper(store, 4, QStringLiteral("5000"), {});  // 历史同5号滤 over every draw
        addSuper(store, 5, QStringLiteral("100"), {});   // 历史同4号滤 over the last 100
    };
    const auto omissionStep = [&] {
        addIntegrated(store, 1, {{ParamId::OmissionSum, 5, 100}, {ParamId::OmissionSpread, 2, 40}});
    };
    addIntegrated(store, 1, {{ParamId::NumberSum, 60, 125}, {ParamId::EvenCount, 1, 4}, {ParamId::BigCount, 1, 4}});
    if (!historyLast) historySteps();
    addIntegrated(store, 1, {{ParamId::ConsecutiveCount, 0, 2}, {ParamId::LargestGap, 4, 20}});
    addIntegrated(store, 1, {{ParamId::AcComplexity, 4, 10}, {ParamId::SameLastDigitCount, 0, 2}});
    addSuper(store, 10, QStringLiteral("2"), {1, 2});  // 相克: 01 with 02
    if (!historyLast) omissionStep();
    addIntegrated(store, 2, {{ParamId::NumberSum, 4, 22}});
    addSuper(store, 13, QStringLiteral("4"), {3, 13, 23, 33}, 3);  // three of these four die
    addIntegrated(store, 1,
                  {{ParamId::OddSum, 10, 100}, {ParamId::EvenSum, 10, 100}, {ParamId::LastDigitSum, 8, 35}}, 1);
    if (historyLast) {
        historySteps();
        omissionStep();
    }
}

class Timer : public backtest::Listener {
public:
    std::vector<double> perDraw;
    Clock::time_point last = Clock::now();
    void drawDone(const backtest::DrawRow& row, int done, int total) override {
        const Clock::time_point now = Clock::now();
        perDraw.push_back(std::chrono::duration<double>(now - last).count());
        last = now;
        std::fprintf(stderr, "\r%d/%d  issue %d kept %llu    ", done, total, row.issue,
                     static_cast<unsigned long long>(row.kept));
    }
};

// The pass rates a filter window shows beside its boxes: every parameter's, and the integrated
// filter's with every box ticked, over the span.
void passRates(const DrawHistory& h, int span) {
    ParamWindowState s = ParamWindowState::defaults();
    s.integratedBox.fill(true);
    s.useTolerance = true;
    s.txtRc0 = QStringLiteral("3");
    std::vector<double> each;
    int passed = 0;
    for (const ParamInfo& p : param_catalogue::all())
        each.push_back(bench::seconds([&] {
            if (const auto r = pass_rate::ofParam(h, s, p.id, span)) passed += r->passed;
        }));
    pass_rate::Rate all;
    const double integrated = bench::seconds([&] { all = pass_rate::ofIntegrated(h, s, span, 35, 12); });
    std::printf("pass rates over %d draws: one parameter median %.3f ms, max %.3f ms; the integrated filter "
                "with all 27 boxes %.2f ms (%d of %d kept)\n",
                span, bench::median(each) * 1e3, *std::ranges::max_element(each) * 1e3, integrated * 1e3,
                all.passed, all.draws);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    int draws = backtest::kDefaultSpan;
    unsigned threads = 0;
    bool historyLast = false;
    bool ratesOnly = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--rates-only") == 0) ratesOnly = true;
        const bool valued = i + 1 < argc;
        if (std::strcmp(argv[i], "--history-last") == 0) historyLast = true;
        if (valued && std::strcmp(argv[i], "--draws") == 0) draws = std::atoi(argv[++i]);
        if (valued && std::strcmp(argv[i], "--threads") == 0) threads = static_cast<unsigned>(std::atoi(argv[++i]));
    }
    bench::BenchWorkspace w;
    if (!w.ok()) return 1;
    w.importHistory(w.bundledHistory());
    Session& s = *w.session;
    TemplateStore store(s.filterDb());
    writeTenSteps(store, historyLast);

    passRates(s.history(), draws);
    if (ratesOnly) return 0;

    std::unique_ptr<CandidateTable> table;
    const double made = bench::seconds([&] { table = backtest_space::fullSet(35, 12); });
    if (!table) return 1;
    std::printf("full set: %llu tickets made in %.2f s\n", static_cast<unsigned long long>(table->rowCount()), made);
    backtest::Runner runner({s.filterDb(), s.history(), 35, 12}, std::move(table));
    Timer timer;
    backtest::Options options;
    options.span = draws;
    options.threads = threads;
    backtest::Result r;
    const double cpu0 = bench::cpuSeconds();
    const double wall = bench::seconds([&] { r = runner.run(backtest::Strategy::filterTemplate(), options, &timer); });
    const double cpu = bench::cpuSeconds() - cpu0;
    std::fprintf(stderr, "\n");
    const auto [lo, hi] = std::ranges::minmax(timer.perDraw);
    std::printf("ten-step template%s, %d draws: %.2f s wall (%.2f s CPU), per draw median %.3f s, min %.3f s, "
                "max %.3f s\n",
                historyLast ? " (history steps last)" : "", r.summary.draws, wall, cpu, bench::median(timer.perDraw), lo, hi);
    std::printf("load average %.2f\n", bench::loadAverage());
    std::printf("survived %d of %d; kept median %llu, min %llu, max %llu; net %lld; peak %.0f MiB\n",
                r.summary.survived, r.summary.draws, static_cast<unsigned long long>(r.summary.medianKept),
                static_cast<unsigned long long>(r.summary.minKept),
                static_cast<unsigned long long>(r.summary.maxKept), static_cast<long long>(r.summary.net),
                bench::peakMiB());
    return 0;
}
