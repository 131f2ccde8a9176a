#pragma once

#include <QDialog>

class Prompter;
class QLineEdit;

// The password box: compares the typed text with the expected password exactly; a mismatch
// keeps the box open with the field selected until the player cancels.
class FrmLogin : public QDialog {
    Q_OBJECT
public:
    FrmLogin(QString expectedPassword, Prompter& prompter, QWidget* parent = nullptr);
    bool loginSucceeded() const { return m_loginSucceeded; }

private:
    void onOk();
    void onCancel();

    QString m_strpass;
    Prompter& m_prompter;
    QLineEdit* m_txtPassword;
    bool m_loginSucceeded = false;
};
