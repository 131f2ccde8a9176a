// The three history analysis windows on the whole bundled history, offscreen: each open is timed
// from the constructor's call to the end of the first paint of every grid of the window (shown,
// scrolled to the newest draws), and closed again.
//
//   trend_window_bench [--rounds N]
//
// Prints the median and the worst of N opens per window, and the load of the machine.
#include "analysis/ui/trend_window.h"
#include "bench_timing.h"
#include "bench_workspace.h"
#include "paint_counter.h"
#include "picking/number_board.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTableView>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <thread>
#include <vector>

namespace {

using bench::loadAverage;
using bench::median;
using bench::PaintCounter;

// Opens one window and waits until each of its grids has painted; milliseconds, or -1.
double openOnce(TrendMember member, Session& session, NumberBoard& board, Prompter& prompter,
                bool* atNewest) {
    QElapsedTimer t;
    t.start();
    auto* w = new TrendWindow(member, session, board, prompter);
    QList<PaintCounter*> counters;
    for (Zone z : {Zone::Front, Zone::Back}) {
        if (QTableView* v = w->gridView(z)) {
            counters << new PaintCounter;
            v->viewport()->installEventFilter(counters.last());
        }
    }
    w->resize(1340, 700);
    w->show();
    const auto painted = [&counters] {
        return std::all_of(counters.begin(), counters.end(),
                           [](const PaintCounter* c) { return c->paints > 0; });
    };
    while (!painted() && t.elapsed() < 60000) QCoreApplication::processEvents(QEventLoop::AllEvents);
    const double ms = painted() ? static_cast<double>(t.nsecsElapsed()) / 1e6 : -1;
    *atNewest = true;
    for (Zone z : {Zone::Front, Zone::Back})
        if (QTableView* v = w->gridView(z))
            *atNewest = *atNewest && v->verticalScrollBar()->value() == v->verticalScrollBar()->maximum();
    delete w;
    qDeleteAll(counters);
    return ms;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    int rounds = 7;
    for (int i = 1; i + 1 < args.size(); ++i)
        if (args[i] == QLatin1String("--rounds")) rounds = std::max(1, args[i + 1].toInt());

    bench::BenchWorkspace home;
    if (!home.ok()) return 1;
    Session& session = *home.session;
    ScriptedPrompter& prompter = home.prompter;
    home.importHistory(home.bundledHistory());
    NumberBoard board(session.board(), static_cast<int16_t>(session.frontSize()),
                      static_cast<int16_t>(session.backSize()));

    std::printf("%d draws, %d rounds, load average %.2f at the start, %u threads\n", session.drawCount(),
                rounds, loadAverage(), std::thread::hardware_concurrency());
    std::printf("%-11s %9s %9s %s\n", "window", "median ms", "worst ms", "newest in view");
    const std::pair<TrendMember, const char*> members[] = {{TrendMember::BothZones, "frmpic"},
                                                           {TrendMember::FrontZone, "frmpicQian"},
                                                           {TrendMember::BackZone, "frmpicHou"}};
    const double cpu0 = bench::cpuSeconds();
    for (const auto& [member, name] : members) {
        std::vector<double> times;
        bool allAtNewest = true;
        for (int round = 0; round < rounds; ++round) {
            bool atNewest = false;
            times.push_back(openOnce(member, session, board, prompter, &atNewest));
            allAtNewest = allAtNewest && atNewest;
        }
        std::printf("%-11s %9.1f %9.1f %s\n", name, median(times),
                    *std::max_element(times.begin(), times.end()), allAtNewest ? "yes" : "NO");
    }
    std::printf("CPU %.2f s; load average %.2f at the end; peak %.0f MiB\n", bench::cpuSeconds() - cpu0,
                loadAverage(), bench::peakMiB());
    return 0;
}
