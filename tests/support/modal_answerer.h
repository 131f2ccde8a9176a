#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QProgressDialog>
#include <QTimer>

#include <deque>
#include <functional>

// Answers the real dialogs of a window test as a player would. Each expected prompt must
// become the active modal widget; it is then left open for longer than any progress dialog
// waits before it shows, and only answered if it is still the active modal widget, holds the
// expected text and no progress dialog is visible. Whatever breaks that goes to failures().
class ModalAnswerer : public QObject {
public:
    static constexpr int kHoldMs = 900;
    // A prompt that has not come to the front by then is taken as hidden behind another dialog.
    static constexpr int kGiveUpMs = 20000;

    using Answer = std::function<void(QWidget*)>;

    ModalAnswerer() {
        m_poll.setInterval(40);
        connect(&m_poll, &QTimer::timeout, this, &ModalAnswerer::poll);
        m_poll.start();
        m_sinceAnswer.start();
    }

    // The next prompt must show `text` (in its text, label or title); `answer` closes it.
    ModalAnswerer& expect(const QString& text, Answer answer) {
        m_steps.push_back({text, std::move(answer)});
        return *this;
    }

    bool allAnswered() const { return m_steps.empty(); }
    const QStringList& failures() const { return m_failures; }
    const QStringList& seen() const { return m_seen; }

    // Answers for the usual prompts.
    static Answer press(QMessageBox::StandardButton which) {
        return [which](QWidget* w) {
            if (auto* box = qobject_cast<QMessageBox*>(w)) box->button(which)->click();
        };
    }
    static Answer type(const QString& text) {
        return [text](QWidget* w) {
            if (auto* input = qobject_cast<QInputDialog*>(w)) {
                input->setTextValue(text);
                input->accept();
            }
        };
    }
    static Answer chooseFile(const QString& path) {
        return [path](QWidget* w) {
            if (auto* files = qobject_cast<QFileDialog*>(w)) {
                // Typed into the name field, as a player pastes a path.
                if (auto* name = files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))) name->setText(path);
                static_cast<QDialog*>(files)->accept();  // QFileDialog checks the choice first
            }
        };
    }

    static QString textOf(QWidget* w) {
        QString text = w->windowTitle();
        if (auto* box = qobject_cast<QMessageBox*>(w)) text += QLatin1Char('\n') + box->text();
        if (auto* input = qobject_cast<QInputDialog*>(w)) text += QLatin1Char('\n') + input->labelText();
        return text;
    }

    static bool progressVisible() {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (w->isVisible() && qobject_cast<QProgressDialog*>(w)) return true;
        return false;
    }

private:
    struct Step {
        QString text;
        Answer answer;
    };

    void poll() {
        if (!m_steps.empty() && m_sinceAnswer.elapsed() > kGiveUpMs) giveUp();
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal || qobject_cast<QProgressDialog*>(modal) || modal == m_answered) return;
        if (modal != m_current) {
            m_current = modal;
            m_since.start();
            return;
        }
        if (m_since.elapsed() < kHoldMs) return;
        const QString text = textOf(modal);
        m_seen << text;
        if (progressVisible()) m_failures << QStringLiteral("a progress dialog is visible over: ") + text;
        if (m_steps.empty()) {
            m_failures << QStringLiteral("unexpected prompt: ") + text;
            modal->close();
            m_answered = modal;
            return;
        }
        Step step = std::move(m_steps.front());
        m_steps.pop_front();
        if (!text.contains(step.text))
            m_failures << QStringLiteral("expected \"%1\", the prompt says: %2").arg(step.text, text);
        m_answered = modal;
        m_sinceAnswer.start();
        step.answer(modal);
    }

    // Records the prompts that never came to the front and closes every dialog, so that the
    // test fails instead of waiting forever behind a dialog that locks the window.
    void giveUp() {
        for (const Step& step : m_steps) m_failures << QStringLiteral("never at the front: ") + step.text;
        m_steps.clear();
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* dialog = qobject_cast<QDialog*>(w); dialog && dialog->isVisible()) dialog->reject();
    }

    QTimer m_poll;
    std::deque<Step> m_steps;
    QPointer<QWidget> m_current;
    QPointer<QWidget> m_answered;
    QElapsedTimer m_since;
    QElapsedTimer m_sinceAnswer;
    QStringList m_failures;
    QStringList m_seen;
};
