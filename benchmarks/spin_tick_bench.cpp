// One tick of the spin simulator, both zones: the logic alone, and on the main window offscreen
// with its rows, percentages and bars repainted. The timers tick every 10 ms, so a tick of both
// zones must take well under that.
//
//   spin_tick_bench [--ticks N]
//
// Prints the median and the worst tick for small picks (6 + 3) and for large ones (16 of 35 with
// a 15-number spin, 8 + 8 back), the layout requests per window tick, and the load of the machine.
#include "app/ui/main_window.h"
#include "bench_timing.h"
#include "bench_workspace.h"
#include "picking/spin_simulator.h"
#include "picking/ui/spin_controller.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>

#include <cstdio>
#include <cstring>
#include <vector>

namespace {

struct Picks {
    const char* name;
    std::vector<int> front, back;
    int frontCount, backCount;
};

const Picks kPicks[] = {
    {"6 + 3 picks, 5 + 2 spun", {3, 8, 14, 19, 25, 31}, {2, 6, 11}, 5, 2},
    {"16 + 9 picks, 15 + 8 spun", {1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23, 25, 27, 29, 31}, {1, 2, 3, 4, 5, 6, 7, 8, 9}, 15, 8},
};

void pick(NumberBoard& board, const Picks& p) {
    for (int n : p.front) board.leftClick(Zone::Front, n);
    for (int n : p.back) board.leftClick(Zone::Back, n);
    board.state().front.spinCount = static_cast<int16_t>(p.frontCount);
    board.state().back.spinCount = static_cast<int16_t>(p.backCount);
}

void report(const char* what, const char* picks, std::vector<double> us) {
    const double worst = *std::max_element(us.begin(), us.end());
    std::printf("%-8s %-28s median %8.2f us   worst %8.2f us   (%zu ticks)\n", what, picks, bench::median(us), worst,
                us.size());
}

void logicTicks(const Picks& p, int ticks) {
    BoardState state;
    NumberBoard board(state, 35, 12);
    pick(board, p);
    SpinSimulator spin(board);
    SeededSpinRandom random(5);
    spin.start();
    std::vector<double> us;
    for (int t = 0; t < ticks; ++t) {
        QElapsedTimer timer;
        timer.start();
        spin.tickBack(random);
        spin.tickFront(random);
        us.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e3);
    }
    report("logic", p.name, us);
}

// Counts the layout requests anywhere in the program.
class LayoutCounter : public QObject {
public:
    long requests = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::LayoutRequest) ++requests;
        return QObject::eventFilter(watched, event);
    }
};

void windowTicks(const Picks& p, int ticks) {
    bench::BenchWorkspace ws;
    if (!ws.ok()) return;
    ws.importHistory(ws.bundledHistory());
    MainWindow w(*ws.session, *ws.list, ws.prompter);
    w.resize(1366, 740);
    w.show();
    pick(w.board(), p);
    w.renderBoard();
    SpinController& spin = w.spin();
    spin.setRandom(std::make_unique<SeededSpinRandom>(5));
    // The ticks are called here, one by one; the timers must not add their own.
    spin.frontTimer()->setInterval(1 << 30);
    spin.backTimer()->setInterval(1 << 30);
    spin.start();
    for (int i = 0; i < 50; ++i) QCoreApplication::processEvents();
    LayoutCounter layouts;
    qApp->installEventFilter(&layouts);
    std::vector<double> us, paintUs;
    for (int t = 0; t < ticks; ++t) {
        QElapsedTimer timer;
        timer.start();
        spin.tickBack();
        spin.tickFront();
        const qint64 ticked = timer.nsecsElapsed();
        QCoreApplication::processEvents();  // the repaint of what the ticks changed
        us.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e3);
        paintUs.push_back(static_cast<double>(timer.nsecsElapsed() - ticked) / 1e3);
    }
    qApp->removeEventFilter(&layouts);
    report("window", p.name, us);
    report("  paint", p.name, paintUs);
    std::printf("         layout requests per tick: %.2f\n", static_cast<double>(layouts.requests) / ticks);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    int ticks = 2000;
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], "--ticks") == 0) ticks = std::atoi(argv[i + 1]);
    for (const Picks& p : kPicks) logicTicks(p, ticks * 10);
    for (const Picks& p : kPicks) windowTicks(p, ticks);
    std::printf("load average %.2f\n", bench::loadAverage());
    return 0;
}
