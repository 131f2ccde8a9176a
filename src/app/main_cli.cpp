// shuangqu-cli: the engine without windows.
//   shuangqu-cli [--home DIR] [--workspace NAME] COMMAND ...
#include "app/cli/cli.h"

#include <QCoreApplication>

#include <algorithm>

static int printHelp(CliContext& ctx) {
    ctx.out << "usage: shuangqu-cli [--home DIR] [--workspace NAME] COMMAND ...\n\ncommands:\n";
    // Groups and the subcommands added to them, by group name.
    std::vector<std::pair<QString, QString>> usages;
    for (const CliGroup& g : cliGroups()) usages.emplace_back(g.name, g.usage);
    for (const CliSubcommand& s : cliSubcommands()) usages.emplace_back(s.group, s.usage);
    std::stable_sort(usages.begin(), usages.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (const auto& u : usages) ctx.out << u.second;
    ctx.out << "  help\n";
    ctx.out.flush();
    return 0;
}

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    QString home, workspace;
    while (!args.isEmpty() && args.first().startsWith(QLatin1String("--"))) {
        const QString opt = args.takeFirst();
        if (args.isEmpty()) break;
        if (opt == QLatin1String("--home")) home = args.takeFirst();
        else if (opt == QLatin1String("--workspace")) workspace = args.takeFirst();
        else {
            QTextStream(stderr) << "unknown option " << opt << Qt::endl;
            return 2;
        }
    }
    DataRoot root = DataRoot::fromEnvironment(home);
    if (!root.ensureFirstStart()) {
        QTextStream(stderr) << "cannot write the data folder " << root.root() << Qt::endl;
        return 1;
    }
    CliContext ctx(root, workspace);
    if (args.isEmpty() || args.first() == QLatin1String("help")) return printHelp(ctx);
    const QString group = args.takeFirst();
    for (const CliSubcommand& sub : cliSubcommands()) {
        if (sub.group != group || sub.name != args.value(0)) continue;
        const int rc = sub.run(ctx, args.mid(1));
        ctx.reportMessages();
        ctx.out.flush();
        ctx.err.flush();
        return rc;
    }
    for (const CliGroup& g : cliGroups()) {
        if (g.name != group) continue;
        const int rc = g.run(ctx, args);
        ctx.reportMessages();
        ctx.out.flush();
        ctx.err.flush();
        return rc;
    }
    ctx.err << "unknown command " << group << "; see `shuangqu-cli help`" << Qt::endl;
    return 2;
}
