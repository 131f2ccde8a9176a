#include "app/ui/filter_windows.h"

#include "app/filter_opening.h"
#include "app/ui/backtest_window.h"
#include "filter/filter_workspace.h"
#include "filter/ui/dialog_progress.h"
#include "filter/ui/filter_window.h"
#include "filter/ui/six_filter_window.h"
#include "tools/ticket_print.h"
#include "tools/ui/ticket_preview.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QApplication>
#include <QDateTime>

namespace {

// The load step of an instance: its table made by an expansion or a wheel, or read from filnum.db.
std::unique_ptr<FilterWorkspace> loadWorkspace(FilterSource instance, Session& session, Prompter& prompter,
                                               QWidget* parent, const WheelChoice* wheel) {
    auto workspace = std::make_unique<FilterWorkspace>(instance, session.paths().filterDb());
    workspace->setZoneLimits({session.frontSize(), session.backSize()});
    const OpeningMode opening = filterSourceTraits(instance).opening;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    bool opened = false;
    if (opening == OpeningMode::Keep) {
        DialogProgress progress(QStringLiteral("正在读取组合..."), parent);
        QString error;
        opened = workspace->openStored(session.filterDb(), &progress, &error);
        if (!opened && !error.isEmpty())
            prompter.inform(QStringLiteral("读取组合"), error, Prompter::Icon::Warning);
    } else if (opening == OpeningMode::FillFromWheel) {
        if (wheel) openWheelWindow(*workspace, session.board(), wheel->family, wheel->table, session.root().root());
        opened = wheel != nullptr;
    } else {
        DialogProgress progress(QStringLiteral("正在生成组合..."), parent);
        const ExpansionKind kind = opening == OpeningMode::ExpandPicks      ? ExpansionKind::Picks
                                   : opening == OpeningMode::ExpandBankers  ? ExpansionKind::Bankers
                                   : opening == OpeningMode::ExpandSixPicks ? ExpansionKind::SixPicks
                                                                            : ExpansionKind::SixBankers;
        opened = openExpansionWindow(*workspace, session.board(), kind, prompter, &progress);
    }
    QApplication::restoreOverrideCursor();
    return opened ? std::move(workspace) : nullptr;
}

// CmdPrint of either window: the live tickets as the printed list, for the next draw.
template <typename Window>
void connectPrinting(Window* window, Session& session, Prompter& prompter) {
    QObject::connect(window, &Window::printRequested, window, [window, &session, &prompter] {
        const ticket_print::Document d = ticket_print::build(
            ticket_print::liveTickets(window->workspace().table()), session.ticketsPerLine(),
            static_cast<qint64>(session.history().lastIssue()) + 1, QDateTime::currentDateTime());
        openTicketPreview(d, session.paths().folder(), prompter, window);
    });
}

}  // namespace

FilterWindow* openFilterWindow(FilterSource instance, Session& session, Prompter& prompter, QWidget* parent,
                               const WheelChoice* wheel) {
    std::unique_ptr<FilterWorkspace> workspace = loadWorkspace(instance, session, prompter, parent, wheel);
    if (!workspace) return nullptr;
    auto* window = new FilterWindow(instance, std::move(workspace), session, prompter, parent);
    connectPrinting(window, session, prompter);
    QObject::connect(window, &FilterWindow::backtestRequested, window,
                     [window, &session, &prompter] { (new BacktestWindow(session, prompter, window))->show(); });
    window->show();
    return window;
}

SixFilterWindow* openSixFilterWindow(FilterSource instance, Session& session, Prompter& prompter, QWidget* parent) {
    std::unique_ptr<FilterWorkspace> workspace = loadWorkspace(instance, session, prompter, parent, nullptr);
    if (!workspace) return nullptr;
    auto* window = new SixFilterWindow(instance, std::move(workspace), session, prompter, parent);
    connectPrinting(window, session, prompter);
    window->show();
    return window;
}
