#include "workspace/ui/login_dialog.h"

#include "workspace/prompter.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

LoginDialog::LoginDialog(const QString& expectedPassword, Prompter& prompter, QWidget* parent)
    : LoginDialog([expectedPassword](const QString& typed) { return typed == expectedPassword; }, prompter,
                  parent) {}

LoginDialog::LoginDialog(Prompter::PasswordCheck check, Prompter& prompter, QWidget* parent)
    : QDialog(parent), m_check(std::move(check)), m_prompter(prompter) {
    setObjectName(QStringLiteral("frmLogin"));
    setWindowTitle(QStringLiteral("登录"));
    auto* prompt = new QLabel(QStringLiteral("请输入该用户口令密码："), this);
    auto* label = new QLabel(QStringLiteral("密码(&P):"), this);
    m_passwordField = new QLineEdit(this);
    m_passwordField->setObjectName(QStringLiteral("txtPassword"));
    m_passwordField->setEchoMode(QLineEdit::Password);
    label->setBuddy(m_passwordField);
    auto* ok = new QPushButton(QStringLiteral("确定"), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    auto* cancel = new QPushButton(QStringLiteral("取消"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));

    auto* grid = new QGridLayout(this);
    grid->addWidget(prompt, 0, 0, 1, 3);
    grid->addWidget(label, 1, 0);
    grid->addWidget(m_passwordField, 1, 1, 1, 2);
    grid->addWidget(ok, 2, 1);
    grid->addWidget(cancel, 2, 2);
    connect(ok, &QPushButton::clicked, this, &LoginDialog::onOk);
    connect(cancel, &QPushButton::clicked, this, &LoginDialog::onCancel);
}

void LoginDialog::onOk() {
    if (m_check(m_passwordField->text())) {
        m_loginSucceeded = true;
        accept();
        return;
    }
    m_prompter.inform(QStringLiteral("登录"), QStringLiteral("无效的密码，请重试!"), Prompter::Icon::Warning);
    m_passwordField->setFocus();
    m_passwordField->selectAll();
}

void LoginDialog::onCancel() {
    m_loginSucceeded = false;
    reject();
}
