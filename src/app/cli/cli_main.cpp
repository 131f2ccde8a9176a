#include "app/cli/cli_main.h"

#include "app/cli/cli_context.h"
#include "app/cli/command_table.h"

#include <QCommandLineParser>

namespace {

const QString kGlobalUsage =
    QStringLiteral("usage: shuangqu-cli [--home DIR] [--workspace NAME] COMMAND ...\n");

// The options before the command; everything from the first word on is the command's.
struct GlobalOptions {
    QCommandLineOption home{QStringLiteral("home"), QStringLiteral("The data root."), QStringLiteral("DIR")};
    QCommandLineOption workspace{QStringLiteral("workspace"), QStringLiteral("The workspace."),
                                 QStringLiteral("NAME")};
    QCommandLineOption help{QStringList{QStringLiteral("h"), QStringLiteral("help")},
                            QStringLiteral("This help.")};
    QCommandLineOption version{QStringLiteral("version"), QStringLiteral("The version.")};
    QCommandLineParser parser;

    GlobalOptions() {
        parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
        parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
        parser.addOptions({home, workspace, help, version});
    }
};

bool asksHelp(const QStringList& words) {
    return words.contains(QLatin1String("--help")) || words.contains(QLatin1String("-h"));
}

// Words that name no command: the subcommands of the group they begin, or an unknown command.
int noCommand(const QStringList& words, QTextStream& out, QTextStream& err) {
    QStringList group;
    for (const QString& w : words) {
        if (command_table::under(group + QStringList{w}).empty()) break;
        group << w;
    }
    if (group.isEmpty()) {
        err << "shuangqu-cli: unknown command \"" << words.value(0) << "\"; see `shuangqu-cli help`\n";
        return Command::kUsage;
    }
    if (asksHelp(words)) {
        out << command_table::groupHelp(group);
        return Command::kDone;
    }
    const QString what = words.size() > group.size()
                             ? QStringLiteral("unknown subcommand \"%1\"").arg(words[group.size()])
                             : QStringLiteral("missing subcommand");
    err << group.join(QLatin1Char(' ')) << ": " << what << '\n' << command_table::groupHelp(group);
    return Command::kUsage;
}

// `help`, `help COMMAND...`.
int help(const QStringList& words, QTextStream& out, QTextStream& err) {
    if (words.isEmpty()) {
        out << command_table::overview();
        return Command::kDone;
    }
    int taken = 0;
    if (const Command* c = command_table::find(words, &taken); c && taken == words.size()) {
        out << c->help();
        return Command::kDone;
    }
    return noCommand(words + QStringList{QStringLiteral("--help")}, out, err);
}

int runCommand(const Command& command, const Args& args, const GlobalOptions& global, QTextStream& err) {
    DataRoot root = DataRoot::fromEnvironment(global.parser.value(global.home));
    if (!root.ensureFirstStart()) {
        err << "cannot write the data folder " << root.root() << Qt::endl;
        return Command::kRefused;
    }
    CliContext ctx(root, global.parser.value(global.workspace));
    if (!ctx.settingsReadable()) return Command::kRefused;
    if (command.access() == Command::Access::ChangesWorkspace && !ctx.lockWorkspace())
        return Command::kRefused;
    const int rc = command.execute(ctx, args);
    ctx.reportMessages();
    ctx.out.flush();
    ctx.err.flush();
    return rc;
}

}  // namespace

int cli_main::run(const QStringList& arguments, QTextStream& out, QTextStream& err) {
    GlobalOptions global;
    if (!global.parser.parse(arguments)) {
        err << "shuangqu-cli: " << global.parser.errorText() << '\n' << kGlobalUsage;
        return Command::kUsage;
    }
    if (global.parser.isSet(global.version)) {
        out << "shuangqu-cli " << SHUANGQU_VERSION << '\n';
        return Command::kDone;
    }
    const QStringList words = global.parser.positionalArguments();
    if (global.parser.isSet(global.help) || words.isEmpty()) return help({}, out, err);
    if (words.first() == QLatin1String("help")) return help(words.mid(1), out, err);

    int taken = 0;
    const Command* command = command_table::find(words, &taken);
    if (!command) return noCommand(words, out, err);
    const Command::Parsed parsed = command->parse(words.mid(taken));
    if (parsed.helpAsked) {
        out << command->help();
        return Command::kDone;
    }
    if (!parsed.args) {
        err << command->usageError(parsed.error);
        return Command::kUsage;
    }
    for (const QString& note : parsed.notes) err << note << '\n';
    err.flush();
    return runCommand(*command, *parsed.args, global, err);
}
