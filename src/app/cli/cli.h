#pragma once

#include "workspace/data_root.h"
#include "workspace/scripted_prompter.h"
#include "workspace/session.h"
#include "workspace/settings.h"

#include <QStringList>
#include <QTextStream>

#include <functional>
#include <memory>

// What every command of shuangqu-cli gets: the data root, the settings, the chosen workspace,
// and the output streams. Results go to `out` (counts as one line, tables as TSV with a
// header), errors to `err` with a non-zero exit.
class CliContext {
public:
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

    int fail(const QString& message);

private:
    QString m_workspace;
    std::unique_ptr<Session> m_session;
};

// A group of subcommands ("workspace", "history", ...). Each file of src/app/cli registers
// its groups with a static CliGroupRegistrar.
struct CliGroup {
    QString name;
    QString usage;  // one line per subcommand, for `help`
    std::function<int(CliContext&, const QStringList& args)> run;
};

const std::vector<CliGroup>& cliGroups();

struct CliGroupRegistrar {
    explicit CliGroupRegistrar(CliGroup group);
};

// A subcommand that one file adds to a group registered by another ("filter param" beside the
// group "filter"): the dispatcher runs it, with the arguments after its name, when the group's
// first argument names it.
struct CliSubcommand {
    QString group;
    QString name;
    QString usage;  // one line per form, for `help`
    std::function<int(CliContext&, const QStringList& args)> run;
};

const std::vector<CliSubcommand>& cliSubcommands();

struct CliSubcommandRegistrar {
    explicit CliSubcommandRegistrar(CliSubcommand sub);
};

// Small argument helpers shared by the commands.
namespace cliargs {
// The value after `--name`, or empty; `found` tells whether the option was there.
QString option(const QStringList& args, const QString& name, bool* found = nullptr);
bool flag(const QStringList& args, const QString& name);
// Numbers from "1,2,3" or "1 2 3".
QList<int> numbers(const QString& list, bool* ok);
}  // namespace cliargs
