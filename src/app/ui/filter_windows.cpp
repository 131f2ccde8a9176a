#include "app/ui/filter_windows.h"

#include "app/filter_opening.h"
#include "filter/filter_workspace.h"
#include "filter/ui/dialog_progress.h"
#include "filter/ui/filter_window.h"
#include "tools/ticket_print.h"
#include "tools/ui/ticket_preview.h"
#include "workspace/prompter.h"
#include "workspace/session.h"

#include <QApplication>
#include <QDateTime>

FilterWindow* openFilterWindow(FilterSource instance, Session& session, Prompter& prompter, QWidget* parent,
                               const WheelChoice* wheel) {
    auto workspace = std::make_unique<FilterWorkspace>(instance, session.paths().filterDb());
    workspace->setZoneLimits({session.frontSize(), session.backSize()});
    const OpeningMode opening = filterSourceTraits(instance).opening;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    bool opened = false;
    if (opening == OpeningMode::ExpandPicks || opening == OpeningMode::ExpandBankers) {
        DialogProgress progress(QStringLiteral("正在生成组合..."), parent);
        const ExpansionKind kind =
            opening == OpeningMode::ExpandPicks ? ExpansionKind::Picks : ExpansionKind::Bankers;
        opened = openExpansionWindow(*workspace, session.board(), kind, prompter, &progress);
    } else if (opening == OpeningMode::FillFromWheel && wheel) {
        openWheelWindow(*workspace, session.board(), wheel->family, wheel->table, session.root().root());
        opened = true;
    } else if (opening == OpeningMode::Keep) {
        DialogProgress progress(QStringLiteral("正在读取组合..."), parent);
        QString error;
        opened = workspace->openStored(session.filterDb(), &progress, &error);
        if (!opened && !error.isEmpty())
            prompter.inform(QStringLiteral("读取组合"), error, Prompter::Icon::Warning);
    }
    QApplication::restoreOverrideCursor();
    if (!opened) return nullptr;
    auto* window = new FilterWindow(instance, std::move(workspace), session, prompter, parent);
    QObject::connect(window, &FilterWindow::printRequested, window, [window, &session, &prompter] {
        const ticket_print::Document d = ticket_print::build(
            ticket_print::liveTickets(window->workspace().table()), session.ticketsPerLine(),
            static_cast<qint64>(session.history().lastIssue()) + 1, QDateTime::currentDateTime());
        openTicketPreview(d, session.paths().folder(), prompter, window);
    });
    window->show();
    return window;
}
