#pragma once

#include "workspace/prompter.h"

#include <QStringList>

class CliContext;

// Answers the input boxes from the arguments; every message box is answered with Cancel, so a
// wrong argument ends the action instead of asking again. An input box beyond the answers
// takes its proposal, as Enter would.
class ArgsPrompter : public Prompter {
public:
    explicit ArgsPrompter(QStringList answers) : m_answers(std::move(answers)) {}

    void inform(const QString& title, const QString& text, Icon icon) override;
    bool okCancel(const QString& title, const QString& text, Icon icon) override;
    bool yesNo(const QString& title, const QString& text, Icon icon) override;
    std::optional<QString> askTextOrCancel(const QString& title, const QString& prompt,
                                           const QString& proposal) override;
    bool login(const PasswordCheck&) override { return false; }
    QString openFile(const QString&, const QString&, const QString&) override { return {}; }
    QString saveFile(const QString&, const QString&, const QString&) override { return {}; }

    // Prints the messages shown and refuses: with `fallback` when there were none.
    int fail(CliContext& ctx, const QString& fallback) const;

private:
    QStringList m_answers;
    QStringList m_messages;
};
