#pragma once

#include "workspace/prompter.h"

#include <QDialog>

class QLineEdit;

// The password box: hands the typed text to the check it was given; a mismatch keeps the box
// open with the field selected until the player cancels.
class LoginDialog : public QDialog {
    Q_OBJECT
public:
    LoginDialog(Prompter::PasswordCheck check, Prompter& prompter, QWidget* parent = nullptr);
    // Against a known password, compared exactly.
    LoginDialog(const QString& expectedPassword, Prompter& prompter, QWidget* parent = nullptr);
    bool loginSucceeded() const { return m_loginSucceeded; }

private:
    void onOk();
    void onCancel();

    Prompter::PasswordCheck m_check;
    Prompter& m_prompter;
    QLineEdit* m_passwordField;
    bool m_loginSucceeded = false;
};
