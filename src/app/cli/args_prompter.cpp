#include "app/cli/args_prompter.h"

#include "app/cli/cli_context.h"

void ArgsPrompter::inform(const QString&, const QString& text, Icon) { m_messages << text; }

bool ArgsPrompter::okCancel(const QString&, const QString& text, Icon) {
    m_messages << text;
    return false;
}

bool ArgsPrompter::yesNo(const QString&, const QString& text, Icon) {
    m_messages << text;
    return false;
}

std::optional<QString> ArgsPrompter::askTextOrCancel(const QString&, const QString&,
                                                     const QString& proposal) {
    if (m_answers.isEmpty()) return proposal;
    return m_answers.takeFirst();
}

int ArgsPrompter::fail(CliContext& ctx, const QString& fallback) const {
    for (const QString& m : m_messages) ctx.err << m << '\n';
    return ctx.fail(m_messages.isEmpty() ? fallback : QStringLiteral("the action ended"));
}
