#include "prize/ui/prize_windows.h"

#include "prize/prize_session.h"
#include "prize/ui/prize_check_window.h"
#include "prize/ui/prize_rules_dialog.h"
#include "prize/ui/profit_loss_report_window.h"
#include "workspace/prompter.h"
#include "workspace/session.h"
#include "workspace/ui/work_progress.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QThread>

#include <atomic>
#include <thread>

namespace {

// Progress of the loading thread, read by the window thread.
class AtomicProgress : public EngineProgress {
public:
    void progress(uint64_t done, uint64_t total) override {
        m_done = done;
        m_total = total;
    }
    bool cancelled() const override { return m_cancel; }
    std::atomic<uint64_t> m_done{0}, m_total{0};
    std::atomic<bool> m_cancel{false};
};

// Runs the opening of the check off the window thread while a progress dialog keeps the window
// responsive. Null when the player cancelled.
std::unique_ptr<PrizeView> openWithProgress(Session& session, Prompter& prompter, schema::CandidateKind kind,
                                            QWidget* parent) {
    constexpr int kPollMs = 30;
    AtomicProgress progress;
    prize_session::Opened opened;
    std::atomic<bool> done{false};
    QApplication::setOverrideCursor(Qt::WaitCursor);
    std::thread worker([&] {
        opened = prize_session::open(session, kind, &progress);
        done = true;
    });
    WorkProgress dialog(QStringLiteral("正在对奖..."), parent);
    while (!done) {
        QApplication::processEvents(QEventLoop::AllEvents, kPollMs);
        QThread::msleep(kPollMs / 3);
        const uint64_t total = progress.m_total;
        if (total > 0) dialog.report(progress.m_done, total);
        if (dialog.cancelled()) progress.m_cancel = true;
    }
    worker.join();
    QApplication::restoreOverrideCursor();
    if (progress.m_cancel) return nullptr;
    if (!opened.loadError.isEmpty()) {
        prompter.inform(QStringLiteral("对奖"), opened.loadError, Prompter::Icon::Warning);
        return nullptr;
    }
    if (!opened.ruleProblems.isEmpty())
        prompter.inform(
            QStringLiteral("中奖规则"),
            QStringLiteral("中奖规则设置有误,以下各项按默认值对奖:\n") + opened.ruleProblems.join('\n'),
            Prompter::Icon::Warning);
    return std::move(opened.view);
}

}  // namespace

void openPrizeRules(Session& session, Prompter& prompter, QWidget* parent) {
    auto* dialog = new PrizeRulesDialog(prize_session::settingsOf(session), prompter, parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    if (!dialog->form().readProblems().isEmpty())
        prompter.inform(QStringLiteral("中奖规则"),
                        QStringLiteral("中奖规则设置有误,以下各项按默认值显示:\n") +
                            dialog->form().readProblems().join('\n'),
                        Prompter::Icon::Warning);
    dialog->show();
}

void openPrizeCheck(Session& session, Prompter& prompter, schema::CandidateKind kind, QWidget* parent,
                    const std::function<void()>& closedToMain) {
    std::unique_ptr<PrizeView> view = openWithProgress(session, prompter, kind, parent);
    if (!view) {
        if (closedToMain) closedToMain();
        return;
    }
    PrizeCheckWindow window(std::move(view), prize_session::workspaceFolder(session), prompter, parent);
    if (closedToMain) QObject::connect(&window, &PrizeCheckWindow::closedToMain, closedToMain);
    window.exec();
}

bool prizeCheckEnabled(Session& session, schema::CandidateKind kind) {
    return prize_session::tableExists(session, kind);
}

void openReports(Session& session, Prompter& prompter, QWidget* parent) {
    ProfitLossReportWindow window(
        ReportBook(prize_session::workspaceFolder(session), session.settings(), session.workspaceName()),
        prompter, parent);
    window.exec();
}
