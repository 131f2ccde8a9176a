#pragma once

#include "workspace/data_root.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/settings.h"
#include "workspace/workspace_lock.h"

#include <QStringList>
#include <QTextStream>

#include <memory>

// What every command of shuangqu-cli gets: the data root, the settings, the chosen workspace,
// and the output streams. Results go to `out` (counts as one line, tables as TSV with a
// header), errors to `err` with a non-zero exit.
class CliContext {
public:
    static inline const QString kNoWorkspace =
        QStringLiteral("no workspace: create one with `workspace create NAME`");

    CliContext(DataRoot root, QString workspace);

    DataRoot root;
    Settings settings;
    QTextStream out;
    QTextStream err;
    // Answers prompts as a player pressing Enter would; commands queue what arguments say.
    ScriptedPrompter prompter;

    // The workspace named by --workspace, else the one entered last (Ftopt).
    QString workspaceName();
    // Takes the lock of the chosen workspace before anything of it is read, and keeps it until
    // the context ends; false after printing the refusal. A name that is no workspace takes no
    // lock: the command reports it.
    bool lockWorkspace();
    // Opens the workspace as the main window does; null after printing an error, also when its
    // history cannot be read (never an empty history in its place).
    Session* session();
    // Whether the settings files this call may read (the workspace list, the chosen workspace's
    // files) can be read as settings; false after naming the first that cannot. A damaged
    // file would read as defaults and be overwritten by the next save.
    bool settingsReadable();
    // Prints the messages the prompter was shown to standard error.
    void reportMessages();

    // Prints the system's refusal and returns the exit code of a refusal.
    int fail(const QString& message);

private:
    QString m_workspace;
    std::unique_ptr<WorkspaceLock> m_lock;
    std::unique_ptr<Session> m_session;
};
