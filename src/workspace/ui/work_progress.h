#pragma once

#include <QElapsedTimer>
#include <QPointer>
#include <QString>

#include <cstdint>
#include <memory>

class QProgressDialog;
class QWidget;

// The progress dialog of long work. An action asks all its questions first and only then
// works, so the dialog is made at the first report of progress, not before: a dialog made
// earlier would pop up over the action's own questions. It shows itself once the work has
// run for kShowAfterMs, and a prompt that the work still has to show (an error, say) hides it
// first (QtPrompter does that), so it never covers or locks another dialog.
class WorkProgress {
public:
    static constexpr int kShowAfterMs = 300;

    WorkProgress(QString label, QWidget* parent, bool cancellable = true);
    ~WorkProgress();
    WorkProgress(const WorkProgress&) = delete;
    WorkProgress& operator=(const WorkProgress&) = delete;

    // Reports `done` of `total` units and keeps the window responsive.
    void report(uint64_t done, uint64_t total);
    bool cancelled() const;

    // Hides every visible work progress dialog of the program, before a prompt is shown.
    static void stepAsideForPrompt();

private:
    void showWhenDue();

    QString m_label;
    QPointer<QWidget> m_parent;
    bool m_cancellable;
    QElapsedTimer m_sinceFirstReport;
    std::unique_ptr<QProgressDialog> m_dialog;
};
