// Every view the trend windows' menus open, on the whole bundled history, offscreen: each open is
// timed from the menu entry's call to the end of a full paint of the shown window, then closed.
//
//   analysis_views_bench [--rounds N] [--only ENTRY]
//
// Prints, per trend window and menu entry, the median and the worst of N opens.
#include "analysis/ui/analysis_views.h"
#include "analysis/ui/trend_window.h"
#include "bench_timing.h"
#include "bench_workspace.h"
#include "picking/number_board.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <thread>
#include <vector>

namespace {

// Opens the view as its menu entry would and paints it whole; milliseconds.
double openOnce(const AnalysisView& view, const AnalysisContext& context) {
    QElapsedTimer t;
    t.start();
    QWidget* w = view.open(context);
    w->setWindowFlag(Qt::Window);
    w->show();
    QCoreApplication::processEvents();
    w->repaint();
    const double ms = static_cast<double>(t.nsecsElapsed()) / 1e6;
    delete w;
    return ms;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    int rounds = 5;
    QString only;
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QLatin1String("--rounds")) rounds = std::max(1, args[i + 1].toInt());
        if (args[i] == QLatin1String("--only")) only = args[i + 1];
    }

    bench::BenchWorkspace home;
    if (!home.ok()) return 1;
    Session& session = *home.session;
    ScriptedPrompter& prompter = home.prompter;
    home.importHistory(home.bundledHistory());
    NumberBoard board(session.board(), static_cast<int16_t>(session.frontSize()),
                      static_cast<int16_t>(session.backSize()));

    QList<AnalysisView> views = analysis_views::chartViews();
    views += analysis_views::fitAnd3dViews();
    views += analysis_views::statisticsViews();
    std::printf("%d draws, %d rounds, load average %.2f at the start, %u threads\n", session.drawCount(), rounds,
                bench::loadAverage(), std::thread::hardware_concurrency());
    std::printf("%-11s %-16s %-16s %9s %9s\n", "from", "entry", "window", "median ms", "worst ms");
    const std::pair<TrendMember, const char*> members[] = {{TrendMember::BothZones, "frmpic"},
                                                           {TrendMember::FrontZone, "frmpicQian"},
                                                           {TrendMember::BackZone, "frmpicHou"}};
    const double cpu0 = bench::cpuSeconds();
    double worstMedian = 0;
    for (const auto& [member, name] : members) {
        TrendWindow from(member, session, board, prompter);
        const AnalysisContext context{session, prompter, member, &from};
        for (const AnalysisView& view : views) {
            if (!from.findChild<QAction*>(view.given) || (!only.isEmpty() && view.given != only)) continue;
            std::vector<double> times;
            QString window;
            for (int round = 0; round < rounds; ++round) times.push_back(openOnce(view, context));
            {
                std::unique_ptr<QWidget> probe(view.open(context));
                window = probe->objectName();
            }
            const double m = bench::median(times);
            worstMedian = std::max(worstMedian, m);
            std::printf("%-11s %-16s %-16s %9.1f %9.1f\n", name, qPrintable(view.given), qPrintable(window), m,
                        *std::max_element(times.begin(), times.end()));
        }
    }
    std::printf("slowest median %.1f ms; CPU %.2f s; load average %.2f at the end; peak %.0f MiB\n", worstMedian,
                bench::cpuSeconds() - cpu0, bench::loadAverage(), bench::peakMiB());
    return 0;
}
