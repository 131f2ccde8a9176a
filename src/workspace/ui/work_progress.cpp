#include "workspace/ui/work_progress.h"

#include <QApplication>
#include <QProgressDialog>

#include <climits>

namespace {
constexpr int kSteps = 1000;
const char* const kWorkProgressProperty = "workProgress";
}  // namespace

WorkProgress::WorkProgress(QString label, QWidget* parent, bool cancellable)
    : m_label(std::move(label)), m_parent(parent), m_cancellable(cancellable) {}

WorkProgress::~WorkProgress() = default;

void WorkProgress::report(uint64_t done, uint64_t total) {
    if (!m_dialog) {
        m_dialog = std::make_unique<QProgressDialog>(m_label, m_cancellable ? QStringLiteral("取消") : QString(), 0,
                                                     kSteps, m_parent);
        m_dialog->setObjectName(QStringLiteral("workProgress"));
        m_dialog->setProperty(kWorkProgressProperty, true);
        m_dialog->setWindowModality(Qt::WindowModal);
        // QProgressDialog would show itself from a timer, also while a nested prompt runs;
        // this class decides when it shows.
        m_dialog->setMinimumDuration(INT_MAX);
        m_dialog->setAutoReset(false);
        m_dialog->setAutoClose(false);
        if (!m_cancellable) m_dialog->setCancelButton(nullptr);
        m_sinceFirstReport.start();
    }
    const uint64_t value = total == 0 ? kSteps : done * kSteps / total;
    m_dialog->setValue(static_cast<int>(qMin<uint64_t>(value, kSteps)));
    showWhenDue();
    QApplication::processEvents();
}

bool WorkProgress::cancelled() const { return m_dialog && m_dialog->wasCanceled(); }

void WorkProgress::showWhenDue() {
    if (m_dialog->isVisible() || m_sinceFirstReport.elapsed() < kShowAfterMs) return;
    // Never over a prompt that is open at this moment (a nested event loop reporting progress).
    QWidget* modal = QApplication::activeModalWidget();
    if (modal && modal != m_dialog.get() && !modal->property(kWorkProgressProperty).toBool() &&
        modal != m_parent && (!m_parent || modal != m_parent->window()))
        return;
    m_dialog->show();
}

void WorkProgress::stepAsideForPrompt() {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible() && w->property(kWorkProgressProperty).toBool()) w->hide();
}
