// The chart windows on the whole bundled history, offscreen: each open is timed from the call
// that builds the window, as its menu entry makes it, to the end of the first paint of every
// chart in it, and closed again.
//
//   chart_window_bench [--rounds N] [--shots DIR]
//
// Prints the median and the worst of N opens per window and scope, and the load of the machine.
// With --shots, saves a picture of each window (and of the position chart's third position)
// into DIR.
#include "analysis/ui/analysis_views.h"
#include "bench_timing.h"
#include "bench_workspace.h"
#include "paint_counter.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QPushButton>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <thread>
#include <vector>

namespace {

using bench::PaintCounter;

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    const size_t n = v.size();
    return n == 0 ? 0 : n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

double loadAverage() {
    QFile f(QStringLiteral("/proc/loadavg"));
    if (!f.open(QIODevice::ReadOnly)) return -1;
    return f.readAll().split(' ').value(0).toDouble();
}

// The widgets that draw a chart: the line plots and the pie's chart view.
QList<QWidget*> chartsOf(QWidget* w) {
    QList<QWidget*> out;
    for (QWidget* child : w->findChildren<QWidget*>()) {
        const QByteArray type = child->metaObject()->className();
        if (type == "ChartPlot") out << child;
        if (auto* view = qobject_cast<QAbstractScrollArea*>(child); view && type == "QChartView") out << view->viewport();
    }
    return out;
}

// Opens one window and waits until each of its charts has painted; milliseconds, or -1.
double openOnce(const AnalysisView& view, const AnalysisContext& ctx) {
    QElapsedTimer t;
    t.start();
    QWidget* w = view.open(ctx);
    QList<PaintCounter*> counters;
    for (QWidget* chart : chartsOf(w)) {
        counters << new PaintCounter;
        chart->installEventFilter(counters.last());
    }
    w->show();
    const auto painted = [&counters] {
        return !counters.isEmpty() &&
               std::all_of(counters.begin(), counters.end(), [](const PaintCounter* c) { return c->paints > 0; });
    };
    while (!painted() && t.elapsed() < 10000) QCoreApplication::processEvents(QEventLoop::AllEvents);
    const double ms = painted() ? static_cast<double>(t.nsecsElapsed()) / 1e6 : -1;
    delete w;
    qDeleteAll(counters);
    return ms;
}

// Saves the window as it is shown, and again after a click on its third position's button.
void saveShots(const AnalysisView& view, const AnalysisContext& ctx, const QString& folder, const char* scope) {
    QWidget* w = view.open(ctx);
    w->show();
    QCoreApplication::processEvents();
    const QString stem = QDir(folder).filePath(QStringLiteral("%1-%2").arg(QLatin1String(scope), w->objectName()));
    w->grab().save(stem + QStringLiteral(".png"));
    for (const char* button : {"Command1(3)", "cmdbzc(5)"}) {
        if (auto* b = w->findChild<QPushButton*>(QString::fromLatin1(button))) {
            b->click();
            w->grab().save(stem + QStringLiteral("-%1.png").arg(QString::fromLatin1(button).remove(QLatin1Char('('))
                                                                     .remove(QLatin1Char(')'))));
        }
    }
    delete w;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    int rounds = 7;
    QString shots;
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QLatin1String("--rounds")) rounds = std::max(1, args[i + 1].toInt());
        if (args[i] == QLatin1String("--shots")) shots = args[i + 1];
    }

    bench::BenchWorkspace home;
    if (!home.ok()) return 1;
    Session& session = *home.session;
    ScriptedPrompter& prompter = home.prompter;
    home.importHistory(home.bundledHistory());

    std::printf("%d draws, %d rounds, load average %.2f at the start, %u threads\n", session.drawCount(),
                rounds, loadAverage(), std::thread::hardware_concurrency());
    std::printf("%-12s %-6s %9s %9s\n", "entry", "scope", "median ms", "worst ms");
    const std::pair<TrendMember, const char*> scopes[] = {{TrendMember::BothZones, "both"},
                                                          {TrendMember::FrontZone, "front"}};
    const double cpu0 = bench::cpuSeconds();
    for (const AnalysisView& view : analysis_views::chartViews()) {
        for (const auto& [scope, scopeName] : scopes) {
            const AnalysisContext ctx{session, prompter, scope, nullptr};
            std::vector<double> times;
            for (int round = 0; round < rounds; ++round) times.push_back(openOnce(view, ctx));
            std::printf("%-12s %-6s %9.1f %9.1f\n", qPrintable(view.given), scopeName, median(times),
                        *std::max_element(times.begin(), times.end()));
            if (!shots.isEmpty()) saveShots(view, ctx, shots, scopeName);
        }
    }
    std::printf("CPU %.2f s; load average %.2f at the end; peak %.0f MiB\n", bench::cpuSeconds() - cpu0,
                loadAverage(), bench::peakMiB());
    return 0;
}
