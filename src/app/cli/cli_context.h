#pragma once

#include "workspace/data_root.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/settings.h"

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
    // Opens the workspace as the main window does; null after printing an error.
    Session* session();
    // Prints the messages the prompter was shown to standard error.
    void reportMessages();

    // Prints the system's refusal and returns the exit code of a refusal.
    int fail(const QString& message);

private:
    QString m_workspace;
    std::unique_ptr<Session> m_session;
};
