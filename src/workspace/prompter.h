#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// Every message box, input box, question and file dialog goes through this seam. Windows
// use the Qt implementation; tests and the CLI use ScriptedPrompter.
class Prompter {
public:
    enum class Icon { Information, Warning, Critical, Question };

    virtual ~Prompter() = default;

    // A message with one OK button.
    virtual void inform(const QString& title, const QString& text, Icon icon = Icon::Information) = 0;
    // A message with OK and Cancel; true for OK.
    virtual bool okCancel(const QString& title, const QString& text, Icon icon = Icon::Question) = 0;
    // A message with Yes and No; true for Yes.
    virtual bool yesNo(const QString& title, const QString& text, Icon icon = Icon::Question) = 0;
    // An input box. Cancel returns an empty string, as the classic input box does; callers
    // that must tell cancel from an empty answer use askTextOrCancel.
    QString askText(const QString& title, const QString& prompt, const QString& proposal = {}) {
        return askTextOrCancel(title, prompt, proposal).value_or(QString());
    }
    virtual std::optional<QString> askTextOrCancel(const QString& title, const QString& prompt,
                                                   const QString& proposal = {}) = 0;
    // Tells whether a typed password opens what the box guards.
    using PasswordCheck = std::function<bool(const QString& typed)>;
    // The password box (frmLogin): hands each typed text to `check` and returns true once it
    // accepts one; the box stays open on a mismatch until cancelled. A prompter without a box
    // refuses.
    virtual bool login(const PasswordCheck& check) {
        Q_UNUSED(check);
        return false;
    }
    // File dialogs; an empty string when cancelled.
    virtual QString openFile(const QString& title, const QString& dir, const QString& filter) = 0;
    virtual QString saveFile(const QString& title, const QString& dir, const QString& filter) = 0;
};
