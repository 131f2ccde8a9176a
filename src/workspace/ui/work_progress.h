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
//
// Window-modal, the dialog makes Qt discard every click on its parent window. A parent that
// queues its own clicks while it works asks for ParentStaysLive: the dialog is modeless, the
// parent window (its popups included) keeps taking input, and the input to every other window
// is held back as modality would (an open prompt still gets its own).
class WorkProgress {
public:
    static constexpr int kShowAfterMs = 300;
    enum class Blocking { ParentWindow, ParentStaysLive };

    WorkProgress(QString label, QWidget* parent, bool cancellable = true,
                 Blocking blocking = Blocking::ParentWindow);
    ~WorkProgress();
    WorkProgress(const WorkProgress&) = delete;
    WorkProgress& operator=(const WorkProgress&) = delete;

    // Reports `done` of `total` units and keeps the window responsive.
    void report(uint64_t done, uint64_t total);
    bool cancelled() const;

    // Hides every visible work progress dialog of the program, before a prompt is shown.
    static void stepAsideForPrompt();
    // Adds to the dialogs of `parent` a line that tells how many clicks wait for the work.
    static void noteWaiting(QWidget* parent, int waiting);

private:
    void showWhenDue();

    QString m_label;
    QPointer<QWidget> m_parent;
    bool m_cancellable;
    Blocking m_blocking;
    std::unique_ptr<QObject> m_inputGate;
    QElapsedTimer m_sinceFirstReport;
    std::unique_ptr<QProgressDialog> m_dialog;
};
