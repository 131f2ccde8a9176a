// The filter window on all of 35/12 (21,425,712 tickets), driven offscreen as a player drives
// it: each action is timed from the button's click to the grid's painted viewport and the
// caption, with the bundled history imported so that the boxes hold the history's ranges.
//
//   filter_window_bench [--rounds N] [--only NAME] [--without-record]
//
// --without-record hands the window a record it cannot open, so that no write of the record runs
// beside the clicks and none is stopped by them: the click path alone.
// Every parameter button of the front tab runs on the whole table (a reset all before each,
// timed as well); then the integrated filter with every box in the front and the both-zones
// tab, reset last, invert all, invert last, the all-rows view and pages.
// Prints the median and the worst of N rounds per action, and the load of the machine.
#include "bench_timing.h"
#include "bench_workspace.h"
#include "filter/filter_workspace.h"
#include "filter/result_grid_model.h"
#include "filter/ui/filter_window.h"
#include "generation/expansion.h"
#include "paint_counter.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTabBar>
#include <QTableView>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

namespace {

using bench::loadAverage;
using bench::median;
using bench::PaintCounter;

class Driver {
public:
    Driver(FilterWindow& window, QTableView& grid) : m_window(window), m_grid(grid) {
        m_grid.viewport()->installEventFilter(&m_paints);
    }

    // Clicks the button and processes events until the grid's viewport has painted; returns
    // the milliseconds from the click to the end of that paint.
    double click(QAbstractButton* button) {
        const int before = m_paints.paints;
        QElapsedTimer t;
        t.start();
        button->click();
        // Whatever the action did, the viewport paints once more: a grid that did not change
        // paints its unchanged rows, as a window that is shown again would.
        m_grid.viewport()->update();
        while (m_paints.paints == before) {
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            if (t.elapsed() > 60000) {
                std::fprintf(stderr, "no paint after %s\n", qPrintable(button->objectName()));
                break;
            }
        }
        const double ms = static_cast<double>(t.nsecsElapsed()) / 1e6;
        if (m_window.windowTitle() != m_window.workspace().caption())
            std::fprintf(stderr, "caption behind after %s\n", qPrintable(button->objectName()));
        return ms;
    }

    void note(const QString& action, double ms) { m_times[action].push_back(ms); }
    const std::map<QString, std::vector<double>>& times() const { return m_times; }

private:
    FilterWindow& m_window;
    QTableView& m_grid;
    PaintCounter m_paints;
    std::map<QString, std::vector<double>> m_times;
};

// Prints one line per action, and the target it is held to.
void report(const Driver& d) {
    std::printf("%-14s %7s %9s %9s %7s\n", "action", "clicks", "median ms", "worst ms", "target");
    for (const auto& [action, times] : d.times()) {
        const bool parameter = action.startsWith(QLatin1String("Option"));
        const bool integrated = action.startsWith(QLatin1String("Option29"));
        const int target = integrated ? (action.endsWith(QStringLiteral("全区")) ? 500 : 150)
                           : parameter ? 60
                           : action.startsWith(QLatin1String("page")) ? 30
                                                                      : 40;
        std::printf("%-14s %7zu %9.1f %9.1f %7d\n", qPrintable(action), times.size(), median(times),
                    *std::max_element(times.begin(), times.end()), target);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    int rounds = 5;
    QString only;
    const bool withoutRecord = args.contains(QStringLiteral("--without-record"));
    for (int i = 1; i + 1 < args.size(); ++i) {
        if (args[i] == QLatin1String("--rounds")) rounds = std::max(1, args[i + 1].toInt());
        if (args[i] == QLatin1String("--only")) only = args[i + 1];
    }

    bench::BenchWorkspace home;
    if (!home.ok()) return 1;
    Session& session = *home.session;
    ScriptedPrompter& prompter = home.prompter;
    home.importHistory(home.bundledHistory());

    ExpansionInput in;
    for (int n = 1; n <= 35; ++n) in.front.push_back(static_cast<int16_t>(n));
    for (int n = 1; n <= 12; ++n) in.back.push_back(static_cast<int16_t>(n));
    ExpansionResult expanded = expand(in);
    if (!expanded.table) {
        std::fprintf(stderr, "expansion refused: %s\n", qPrintable(expanded.message));
        return 1;
    }
    // A folder is no database: each write of the record fails at once.
    const QString record = withoutRecord ? home.dir.path() : session.paths().filterDb();
    auto workspace = std::make_unique<FilterWorkspace>(FilterSource::Expansion, record);
    workspace->openMade(std::move(expanded.table), expanded.captionCount);
    FilterWindow window(FilterSource::Expansion, std::move(workspace), session, prompter);
    window.resize(1366, 740);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window)) return 1;
    auto* grid = window.findChild<QTableView*>(QStringLiteral("MSFlexGrid1"));
    const auto button = [&window](const QString& name) { return window.findChild<QAbstractButton*>(name); };

    std::printf("35/12: %llu tickets, %d rounds, %s, load average %.2f at the start, %u threads\n",
                static_cast<unsigned long long>(window.workspace().table().rowCount()), rounds,
                withoutRecord ? "without the record" : "with the record", loadAverage(),
                std::thread::hardware_concurrency());
    Driver d(window, *grid);
    const auto wanted = [&only](const QString& action) { return only.isEmpty() || action == only; };
    const double cpu0 = bench::cpuSeconds();
    for (int round = 0; round < rounds; ++round) {
        for (const ParamInfo& p : param_catalogue::all()) {
            QAbstractButton* b = button(QString::fromLatin1(p.button));
            if (!b->isEnabled() || !wanted(b->objectName())) continue;
            d.note(QStringLiteral("Command1"), d.click(button(QStringLiteral("Command1"))));
            d.note(b->objectName(), d.click(b));
        }
        // The last parameter's rows come back, then the inversions and the views.
        for (const char* name : {"cmdRetn", "Command2", "Command3", "Command1", "optZzuhe(1)"}) {
            const QString action = QString::fromLatin1(name);
            if (wanted(action)) d.note(action, d.click(button(action)));
        }
        // The integrated filter with every box ticked, in the front tab and in the both-zones tab
        // (where nearly every row fails), each after a reset all.
        if (wanted(QStringLiteral("Option29"))) {
            for (QCheckBox* box : window.findChildren<QCheckBox*>())
                if (box->objectName().startsWith(QLatin1String("Check1(")) && !box->isChecked()) box->click();
            auto* tabs = window.findChild<QTabBar*>(QStringLiteral("TabStrip1"));
            for (int tab : {0, 2}) {
                tabs->setCurrentIndex(tab);
                d.note(QStringLiteral("Command1"), d.click(button(QStringLiteral("Command1"))));
                d.note(QStringLiteral("Option29 %1").arg(tabs->tabText(tab)), d.click(button(QStringLiteral("Option29"))));
            }
            tabs->setCurrentIndex(0);
        }
        auto* pageBox = window.findChild<QLineEdit*>(QStringLiteral("Text1"));
        for (int page : {0, 1, 1070, 2142}) {
            const QString action = QStringLiteral("page %1").arg(page);
            if (!wanted(action)) continue;
            pageBox->setText(QString::number(page));
            d.note(action, d.click(button(QStringLiteral("Command111"))));
        }
    }
    report(d);
    std::printf("CPU %.1f s; load average %.2f at the end; peak %.0f MiB\n", bench::cpuSeconds() - cpu0,
                loadAverage(), bench::peakMiB());
    window.close();
    return 0;
}
