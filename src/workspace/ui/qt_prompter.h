#pragma once

#include "workspace/prompter.h"

class QWidget;

// The Prompter of the windows: message boxes, input boxes, the password box and file dialogs.
class QtPrompter : public Prompter {
public:
    explicit QtPrompter(QWidget* parent = nullptr) : m_parent(parent) {}
    void setParent(QWidget* parent) { m_parent = parent; }

    void inform(const QString& title, const QString& text, Icon icon = Icon::Information) override;
    bool okCancel(const QString& title, const QString& text, Icon icon = Icon::Question) override;
    bool yesNo(const QString& title, const QString& text, Icon icon = Icon::Question) override;
    std::optional<QString> askTextOrCancel(const QString& title, const QString& prompt,
                                           const QString& proposal = {}) override;
    bool login(const PasswordCheck& check) override;
    QString openFile(const QString& title, const QString& dir, const QString& filter) override;
    QString saveFile(const QString& title, const QString& dir, const QString& filter) override;

private:
    QWidget* m_parent;
};
