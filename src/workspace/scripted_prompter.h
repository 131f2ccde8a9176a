#pragma once

#include "workspace/prompter.h"

#include <QList>
#include <QVariant>

// Answers prompts from a queue in order and records everything it was asked. Used by the
// tests and by the command line, where answers come from arguments. When the queue is empty
// it answers as a player pressing Enter would: OK, Yes, the proposed text.
class ScriptedPrompter : public Prompter {
public:
    struct Asked {
        QString kind;  // "inform", "okCancel", "yesNo", "askText", "login", "openFile", "saveFile"
        QString title;
        QString text;
        Icon icon = Icon::Information;
    };

    // Queue answers: bool for okCancel/yesNo/login, QString for texts and files, and
    // QVariant() (invalid) to cancel an input box.
    ScriptedPrompter& answer(const QVariant& value) {
        m_answers.append(value);
        return *this;
    }
    ScriptedPrompter& cancel() { return answer(QVariant()); }

    void inform(const QString& title, const QString& text, Icon icon = Icon::Information) override;
    bool okCancel(const QString& title, const QString& text, Icon icon = Icon::Question) override;
    bool yesNo(const QString& title, const QString& text, Icon icon = Icon::Question) override;
    std::optional<QString> askTextOrCancel(const QString& title, const QString& prompt,
                                           const QString& proposal = {}) override;
    bool login(const PasswordCheck& check) override;
    QString openFile(const QString& title, const QString& dir, const QString& filter) override;
    QString saveFile(const QString& title, const QString& dir, const QString& filter) override;

    const QList<Asked>& asked() const { return m_asked; }
    // The texts of all messages shown with inform, in order.
    QStringList messages() const;
    int pending() const { return static_cast<int>(m_answers.size()); }
    void clear() { m_asked.clear(); }

private:
    std::optional<QVariant> take();
    QList<QVariant> m_answers;
    QList<Asked> m_asked;
};
