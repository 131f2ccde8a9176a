#include "workspace/ui/qt_prompter.h"

#include "workspace/ui/login_dialog.h"
#include "workspace/ui/work_progress.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>

namespace {
// While a prompt is open it is the only dialog: a running work's progress dialog steps aside,
// and a busy pointer set around the work gives way to the normal one.
class PromptScope {
public:
    PromptScope() : m_busyPointer(QApplication::overrideCursor() != nullptr) {
        WorkProgress::stepAsideForPrompt();
        if (m_busyPointer) QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    ~PromptScope() {
        if (m_busyPointer) QApplication::restoreOverrideCursor();
    }
    PromptScope(const PromptScope&) = delete;
    PromptScope& operator=(const PromptScope&) = delete;

private:
    bool m_busyPointer;
};

QMessageBox::Icon toQt(Prompter::Icon icon) {
    switch (icon) {
        case Prompter::Icon::Information: return QMessageBox::Information;
        case Prompter::Icon::Warning: return QMessageBox::Warning;
        case Prompter::Icon::Critical: return QMessageBox::Critical;
        case Prompter::Icon::Question: return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButton ask(QWidget* parent, const QString& title, const QString& text, Prompter::Icon icon,
                                QMessageBox::StandardButtons buttons, QMessageBox::StandardButton def) {
    PromptScope scope;
    QMessageBox box(toQt(icon), title, text, buttons, parent);
    box.setDefaultButton(def);
    const std::pair<QMessageBox::StandardButton, const char*> texts[] = {
        {QMessageBox::Ok, "确定"}, {QMessageBox::Cancel, "取消"}, {QMessageBox::Yes, "是"}, {QMessageBox::No, "否"}};
    for (const auto& [which, text] : texts)
        if (QAbstractButton* b = box.button(which)) b->setText(QString::fromUtf8(text));
    return static_cast<QMessageBox::StandardButton>(box.exec());
}
}  // namespace

void QtPrompter::inform(const QString& title, const QString& text, Icon icon) {
    ask(m_parent, title, text, icon, QMessageBox::Ok, QMessageBox::Ok);
}

bool QtPrompter::okCancel(const QString& title, const QString& text, Icon icon) {
    return ask(m_parent, title, text, icon, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok) ==
           QMessageBox::Ok;
}

bool QtPrompter::yesNo(const QString& title, const QString& text, Icon icon) {
    return ask(m_parent, title, text, icon, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes) == QMessageBox::Yes;
}

std::optional<QString> QtPrompter::askTextOrCancel(const QString& title, const QString& prompt,
                                                   const QString& proposal) {
    PromptScope scope;
    QInputDialog dlg(m_parent);
    dlg.setWindowTitle(title);
    dlg.setLabelText(prompt);
    dlg.setTextValue(proposal);
    dlg.setOkButtonText(QStringLiteral("确定"));
    dlg.setCancelButtonText(QStringLiteral("取消"));
    if (dlg.exec() != QDialog::Accepted) return std::nullopt;
    return dlg.textValue();
}

bool QtPrompter::login(const PasswordCheck& check) {
    PromptScope scope;
    LoginDialog dlg(check, *this, m_parent);
    dlg.exec();
    return dlg.loginSucceeded();
}

QString QtPrompter::openFile(const QString& title, const QString& dir, const QString& filter) {
    PromptScope scope;
    return QFileDialog::getOpenFileName(m_parent, title, dir, filter);
}

QString QtPrompter::saveFile(const QString& title, const QString& dir, const QString& filter) {
    PromptScope scope;
    return QFileDialog::getSaveFileName(m_parent, title, dir, filter);
}
