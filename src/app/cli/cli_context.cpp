#include "app/cli/cli_context.h"

#include "workspace/workspace_list.h"

#include <cstdio>

CliContext::CliContext(DataRoot r, QString workspace)
    : root(std::move(r)),
      settings(root.settingsDir()),
      out(stdout),
      err(stderr),
      m_workspace(std::move(workspace)) {}

QString CliContext::workspaceName() {
    if (!m_workspace.isEmpty()) return m_workspace;
    WorkspaceList list(settings, root);
    list.load();
    const int k = list.lastWorkspace();
    return k >= 1 ? list.name(k - 1) : QString();
}

bool CliContext::lockWorkspace() {
    if (m_lock) return true;
    WorkspaceList list(settings, root);
    list.load();
    const QString name = workspaceName();
    if (name.isEmpty() || !list.names().contains(name)) return true;
    QString error;
    m_lock = WorkspaceLock::forWorkspace(root, name, &error);
    if (!m_lock) fail(error);
    return m_lock != nullptr;
}

Session* CliContext::session() {
    if (m_session) return m_session.get();
    WorkspaceList list(settings, root);
    list.load();
    const QString name = workspaceName();
    const int row = static_cast<int>(list.names().indexOf(name));
    if (name.isEmpty() || row < 0) {
        fail(name.isEmpty() ? kNoWorkspace : QStringLiteral("no workspace named %1").arg(name));
        return nullptr;
    }
    EnteredWorkspace w;
    w.index = row + 1;
    w.name = name;
    w.frontSize = settings.readInt(setting_keys::FrontSize, name);
    w.backSize = settings.readInt(setting_keys::BackSize, name);
    auto s = std::make_unique<Session>(root, settings);
    QString error;
    if (!s->open(w, &error) || !error.isEmpty()) {
        fail(error);
        return nullptr;
    }
    m_session = std::move(s);
    return m_session.get();
}

bool CliContext::settingsReadable() {
    const QString problem = settings.filesProblem(workspaceName());
    if (!problem.isEmpty()) fail(problem);
    return problem.isEmpty();
}

void CliContext::reportMessages() {
    for (const QString& m : prompter.messages()) err << m << Qt::endl;
    prompter.clear();
}

int CliContext::fail(const QString& message) {
    err << message << Qt::endl;
    return 1;
}
