#include "workspace/ui/work_progress.h"

#include <QApplication>
#include <QEvent>
#include <QProgressDialog>

#include <climits>

namespace {
constexpr int kSteps = 1000;
const char* const kWorkProgressProperty = "workProgress";
const char* const kLabelProperty = "workLabel";

bool isUserInput(QEvent::Type type) {
    switch (type) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::ContextMenu:
        case QEvent::TouchBegin:
            return true;
        default:
            return false;
    }
}

// Holds back the input to every window but the live one, the progress dialog, and an open
// prompt or popup, for as long as it exists.
class InputGate : public QObject {
public:
    InputGate(QWidget* live, QWidget* dialog) : m_live(live), m_dialog(dialog) {
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (!isUserInput(event->type()) || !watched->isWidgetType()) return false;
        return !admits(static_cast<QWidget*>(watched));
    }

private:
    bool admits(const QWidget* w) const {
        const QWidget* modal = QApplication::activeModalWidget();
        const QWidget* popup = QApplication::activePopupWidget();
        // Up the parents across windows: a popup of a combo box in the live window belongs to it.
        for (; w; w = w->parentWidget())
            if (w == m_live || w == m_dialog || w == modal || w == popup) return true;
        return false;
    }

    QPointer<QWidget> m_live;
    QPointer<QWidget> m_dialog;
};
}  // namespace

WorkProgress::WorkProgress(QString label, QWidget* parent, bool cancellable, Blocking blocking)
    : m_label(std::move(label)), m_parent(parent), m_cancellable(cancellable), m_blocking(blocking) {}

WorkProgress::~WorkProgress() = default;

void WorkProgress::report(uint64_t done, uint64_t total) {
    if (!m_dialog) {
        m_dialog = std::make_unique<QProgressDialog>(m_label, m_cancellable ? QStringLiteral("取消") : QString(), 0,
                                                     kSteps, m_parent);
        m_dialog->setObjectName(QStringLiteral("workProgress"));
        m_dialog->setProperty(kWorkProgressProperty, true);
        m_dialog->setProperty(kLabelProperty, m_label);
        const bool live = m_blocking == Blocking::ParentStaysLive && m_parent;
        m_dialog->setWindowModality(live ? Qt::NonModal : Qt::WindowModal);
        if (live) m_inputGate = std::make_unique<InputGate>(m_parent->window(), m_dialog.get());
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

void WorkProgress::noteWaiting(QWidget* parent, int waiting) {
    for (QProgressDialog* d : parent->findChildren<QProgressDialog*>(Qt::FindDirectChildrenOnly)) {
        if (!d->property(kWorkProgressProperty).toBool()) continue;
        const QString label = d->property(kLabelProperty).toString();
        d->setLabelText(waiting > 0 ? label + QStringLiteral("\n另有 %1 个操作等待，随后执行").arg(waiting)
                                    : label);
    }
}

void WorkProgress::stepAsideForPrompt() {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->isVisible() && w->property(kWorkProgressProperty).toBool()) w->hide();
}
