#include "app/cli/cli.h"

#include "workspace/workspace_list.h"

#include <QRegularExpression>

#include <cstdio>

CliContext::CliContext(DataRoot r, QString workspace)
    : root(std::move(r)), settings(root.settingsDir()), out(stdout), err(stderr), m_workspace(std::move(workspace)) {}

QString CliContext::workspaceName() {
    if (!m_workspace.isEmpty()) return m_workspace;
    WorkspaceList list(settings, root);
    list.load();
    const int k = list.ftopt();
    return k >= 1 ? list.name(k - 1) : QString();
}

Session* CliContext::session() {
    if (m_session) return m_session.get();
    WorkspaceList list(settings, root);
    list.load();
    const QString name = workspaceName();
    const int row = static_cast<int>(list.names().indexOf(name));
    if (name.isEmpty() || row < 0) {
        fail(name.isEmpty() ? QStringLiteral("no workspace: create one with `workspace create NAME`")
                            : QStringLiteral("no workspace named %1").arg(name));
        return nullptr;
    }
    EnteredWorkspace w;
    w.index = row + 1;
    w.name = name;
    w.bitnum = settings.readInt(keys::Bitnum, name);
    w.bitnumHou = settings.readInt(keys::BitnumHou, name);
    auto s = std::make_unique<Session>(root, settings);
    QString error;
    if (!s->open(w, &error)) {
        fail(error);
        return nullptr;
    }
    m_session = std::move(s);
    return m_session.get();
}

void CliContext::reportMessages() {
    for (const QString& m : prompter.messages()) err << m << Qt::endl;
    prompter.clear();
}

int CliContext::fail(const QString& message) {
    err << message << Qt::endl;
    return 1;
}

static std::vector<CliGroup>& registry() {
    static std::vector<CliGroup> groups;
    return groups;
}

const std::vector<CliGroup>& cliGroups() { return registry(); }

CliGroupRegistrar::CliGroupRegistrar(CliGroup group) { registry().push_back(std::move(group)); }

static std::vector<CliSubcommand>& subRegistry() {
    static std::vector<CliSubcommand> subs;
    return subs;
}

const std::vector<CliSubcommand>& cliSubcommands() { return subRegistry(); }

CliSubcommandRegistrar::CliSubcommandRegistrar(CliSubcommand sub) { subRegistry().push_back(std::move(sub)); }

namespace cliargs {

QString option(const QStringList& args, const QString& name, bool* found) {
    const qsizetype i = args.indexOf(name);
    if (found) *found = i >= 0;
    return i >= 0 && i + 1 < args.size() ? args[i + 1] : QString();
}

bool flag(const QStringList& args, const QString& name) { return args.contains(name); }

QList<int> numbers(const QString& list, bool* ok) {
    QList<int> out;
    *ok = true;
    for (const QString& part : list.split(QRegularExpression(QStringLiteral("[,\\s]+")), Qt::SkipEmptyParts)) {
        bool good = false;
        const int v = part.toInt(&good);
        if (!good) {
            *ok = false;
            return {};
        }
        out << v;
    }
    return out;
}

}  // namespace cliargs
