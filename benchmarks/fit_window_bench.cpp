// The fitted-line window and the 3D view on the whole bundled history: each open is timed from
// the constructor's call to the end of the first paint (the plots of frmNh; the graph's first
// frame of frm3D), and closed again. frm3D needs OpenGL: run under a display (Xvfb) to time it,
// offscreen it is skipped.
//
//   fit_window_bench [--rounds N] [--history FILE] [--shots DIR]
//
// Prints the median and the worst of N opens per window. With --shots, saves a picture of each
// window (frm3D in each of its types) into DIR, to look at what was timed.
#include "analysis/ui/fit_plot.h"
#include "analysis/ui/fit_window.h"
#include "analysis/ui/view_3d_window.h"
#include "bench_timing.h"
#include "bench_workspace.h"

#include <QtDataVisualization/Q3DBars>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

// Counts the events of one type that the objects it watches receive.
class EventCounter : public QObject {
public:
    explicit EventCounter(QEvent::Type type) : m_type(type) {}
    int seen = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == m_type) ++seen;
        return QObject::eventFilter(watched, event);
    }

private:
    QEvent::Type m_type;
};

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    const size_t n = v.size();
    return n == 0 ? 0 : n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

// Runs the event loop until `done` or a minute has passed; milliseconds since `t` started, or -1.
double waitFor(const QElapsedTimer& t, const std::function<bool()>& done) {
    while (!done() && t.elapsed() < 60000) QCoreApplication::processEvents(QEventLoop::AllEvents);
    // One more pass: the event that was seen has then been handled.
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    return done() ? static_cast<double>(t.nsecsElapsed()) / 1e6 : -1;
}

double openFitWindow(const DrawHistory& history) {
    QElapsedTimer t;
    t.start();
    auto* w = new FitWindow(history);
    EventCounter paints(QEvent::Paint);
    QList<QWidget*> canvases;
    for (int k = 0; k < 8; ++k) canvases << w->plot(k)->findChild<QWidget*>(QStringLiteral("canvas"));
    for (QWidget* c : canvases) c->installEventFilter(&paints);
    w->show();
    const double ms = waitFor(t, [&] { return paints.seen >= canvases.size(); });
    delete w;
    return ms;
}

// Opens frm3D, optionally widens it to every draw, and waits for the graph's next frame.
double open3dWindow(const DrawHistory& history, bool allDraws) {
    QElapsedTimer t;
    t.start();
    auto* w = new View3dWindow(history);
    EventCounter frames(QEvent::UpdateRequest);
    w->bars()->installEventFilter(&frames);
    w->resize(1000, 640);
    w->show();
    double ms = waitFor(t, [&] { return frames.seen > 0; });
    if (allDraws && ms >= 0) {
        t.restart();
        const int before = frames.seen;
        w->findChild<QPushButton*>(QStringLiteral("showAll"))->click();
        ms = waitFor(t, [&] { return frames.seen > before; });
    }
    delete w;
    return ms;
}

// A kept frm3D closed and opened again: from show() to the graph's next frame.
struct Kept3dWindow {
    explicit Kept3dWindow(const DrawHistory& history) : window(history) {
        window.bars()->installEventFilter(&frames);
        window.bars()->installEventFilter(&exposes);
        window.resize(1000, 640);
        window.show();
        QElapsedTimer t;
        t.start();
        waitFor(t, [&] { return frames.seen > 0; });
    }
    double reopen() {
        window.close();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
        QElapsedTimer t;
        t.start();
        const int before = frames.seen + exposes.seen;
        window.show();
        // A graph shown again draws its frame on the expose itself.
        return waitFor(t, [&] { return frames.seen + exposes.seen > before; });
    }
    View3dWindow window;
    EventCounter frames{QEvent::UpdateRequest};
    EventCounter exposes{QEvent::Expose};
};

// Pictures of frmNh, and of frm3D in each type when it can draw: from the screen, which holds
// the graph's frame (a widget grab does not).
void saveShots(const DrawHistory& history, const QString& dir) {
    QDir().mkpath(dir);
    FitWindow fit(history);
    fit.show();
    QTest::qWait(200);
    fit.grab().save(QDir(dir).filePath(QStringLiteral("frmNh.png")));
    if (!View3dWindow::openGlAvailable()) return;
    View3dWindow view(history);
    view.resize(1000, 640);
    view.show();
    for (int type = 0; type < view_3d::kChartTypes; ++type) {
        view.findChild<QRadioButton*>(QStringLiteral("Option1(%1)").arg(type))->click();
        QTest::qWait(700);
        view.screen()
            ->grabWindow(view.winId())
            .save(QDir(dir).filePath(QStringLiteral("frm3D-%1.png").arg(type)));
    }
}

void report(const char* name, int rounds, const std::function<double()>& open) {
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) times.push_back(open());
    std::printf("%-24s %9.1f %9.1f\n", name, median(times), *std::max_element(times.begin(), times.end()));
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    int rounds = 7;
    QString historyFile;
    QString shots;
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QLatin1String("--rounds")) rounds = std::max(1, args[i + 1].toInt());
        if (args[i] == QLatin1String("--history")) historyFile = args[i + 1];
        if (args[i] == QLatin1String("--shots")) shots = args[i + 1];
    }

    bench::BenchWorkspace home;
    if (!home.ok()) return 1;
    Session& session = *home.session;
    ScriptedPrompter& prompter = home.prompter;
    // The import leaves a copy beside the file it reads: a given file is read from a copy in the
    // temporary data root, so that its folder stays as it was.
    const QString bundled = home.bundledHistory();
    if (!historyFile.isEmpty()) {
        QFile::remove(bundled);
        if (!QFile::copy(historyFile, bundled)) {
            std::fprintf(stderr, "cannot read %s\n", qPrintable(historyFile));
            return 1;
        }
    }
    historyFile = bundled;
    home.importHistory(historyFile);
    if (session.drawCount() == 0) {
        std::fprintf(stderr, "no draws imported from %s: %s\n", qPrintable(historyFile),
                     qPrintable(prompter.messages().join(QLatin1Char('\n'))));
        return 1;
    }

    std::printf("%d draws, %d rounds, platform %s\n", session.drawCount(), rounds,
                qPrintable(QGuiApplication::platformName()));
    std::printf("%-24s %9s %9s\n", "window", "median ms", "worst ms");
    const double cpu0 = bench::cpuSeconds();
    const DrawHistory& history = session.history();
    report("frmNh", rounds, [&] { return openFitWindow(history); });
    if (View3dWindow::openGlAvailable()) {
        report("frm3D (newest 100)", rounds, [&] { return open3dWindow(history, false); });
        report("frm3D widened to all", rounds, [&] { return open3dWindow(history, true); });
        Kept3dWindow kept(history);
        report("frm3D opened again", rounds, [&] { return kept.reopen(); });
    } else {
        std::printf("frm3D skipped: no OpenGL context on this platform\n");
    }
    if (!shots.isEmpty()) saveShots(history, shots);
    std::printf("CPU %.2f s; peak %.0f MiB\n", bench::cpuSeconds() - cpu0, bench::peakMiB());
    return 0;
}
