#include "workspace/scripted_prompter.h"

std::optional<QVariant> ScriptedPrompter::take() {
    if (m_answers.isEmpty()) return std::nullopt;
    return m_answers.takeFirst();
}

void ScriptedPrompter::inform(const QString& title, const QString& text, Icon icon) {
    m_asked.append({QStringLiteral("inform"), title, text, icon});
}

bool ScriptedPrompter::okCancel(const QString& title, const QString& text, Icon icon) {
    m_asked.append({QStringLiteral("okCancel"), title, text, icon});
    auto a = take();
    return a ? a->toBool() : true;
}

bool ScriptedPrompter::yesNo(const QString& title, const QString& text, Icon icon) {
    m_asked.append({QStringLiteral("yesNo"), title, text, icon});
    auto a = take();
    return a ? a->toBool() : true;
}

std::optional<QString> ScriptedPrompter::askTextOrCancel(const QString& title, const QString& prompt,
                                                         const QString& proposal) {
    m_asked.append({QStringLiteral("askText"), title, prompt, Icon::Question});
    auto a = take();
    if (!a) return proposal;
    if (!a->isValid()) return std::nullopt;
    return a->toString();
}

bool ScriptedPrompter::login(const PasswordCheck& check) {
    // Each queued text is one attempt; a cancel (invalid) or an empty queue gives up.
    while (true) {
        m_asked.append({QStringLiteral("login"), QStringLiteral("登录"), QStringLiteral("请输入该用户口令密码："),
                        Icon::Question});
        auto a = take();
        if (!a || !a->isValid()) return false;
        if (a->typeId() == QMetaType::Bool) return a->toBool();
        if (check(a->toString())) return true;
        inform(QStringLiteral("登录"), QStringLiteral("无效的密码，请重试!"), Icon::Warning);
    }
}

QString ScriptedPrompter::openFile(const QString& title, const QString& dir, const QString&) {
    m_asked.append({QStringLiteral("openFile"), title, dir, Icon::Question});
    auto a = take();
    return a && a->isValid() ? a->toString() : QString();
}

QString ScriptedPrompter::saveFile(const QString& title, const QString& dir, const QString&) {
    m_asked.append({QStringLiteral("saveFile"), title, dir, Icon::Question});
    auto a = take();
    return a && a->isValid() ? a->toString() : QString();
}

QStringList ScriptedPrompter::messages() const {
    QStringList out;
    for (const Asked& a : m_asked)
        if (a.kind == QLatin1String("inform")) out << a.text;
    return out;
}
