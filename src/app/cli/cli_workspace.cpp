// workspace list|create|delete|rename, rules show|set
#include "app/cli/cli.h"

#include "workspace/game_rules.h"
#include "workspace/workspace_list.h"

namespace {

int workspaceCommand(CliContext& ctx, const QStringList& args) {
    WorkspaceList list(ctx.settings, ctx.root);
    list.load();
    const QString sub = args.value(0);
    if (sub == QLatin1String("list")) {
        ctx.out << "index\tName\tpassword\tcurrent\n";
        const int current = list.ftopt();
        for (int row = 0; row < list.count(); ++row)
            ctx.out << row + 1 << '\t' << list.name(row) << '\t' << (list.password(row).isEmpty() ? "no" : "yes")
                    << '\t' << (row + 1 == current ? "*" : "") << '\n';
        return 0;
    }
    if (sub == QLatin1String("create")) {
        if (args.size() < 2) return ctx.fail(QStringLiteral("usage: workspace create NAME [--password P]"));
        const QString name = args[1];
        if (name.isEmpty()) return ctx.fail(QStringLiteral("the name is empty"));
        if (list.nameTaken(name)) return ctx.fail(QStringLiteral("此用户名已经被注册，请换用其他的名字"));
        const int row = list.create(name, cliargs::option(args, QStringLiteral("--password")));
        if (row < 0) return ctx.fail(QStringLiteral("the list holds %1 workspaces already").arg(WorkspaceList::kMaxWorkspaces));
        // A workspace created here is the one later commands use by default.
        ctx.settings.write(keys::Ftopt, row + 1);
        ctx.out << row + 1 << '\n';
        return 0;
    }
    if (sub == QLatin1String("delete")) {
        const int row = static_cast<int>(list.names().indexOf(args.value(1)));
        if (row < 0) return ctx.fail(QStringLiteral("请选择一个用户名然后再删除。"));
        bool hasPassword = false;
        const QString pw = cliargs::option(args, QStringLiteral("--password"), &hasPassword);
        if (!list.password(row).isEmpty() && pw != list.password(row))
            return ctx.fail(QStringLiteral("密码有误，没有权限删除该用户"));
        list.removeAt(row);
        return 0;
    }
    if (sub == QLatin1String("rename")) {
        if (args.size() < 3) return ctx.fail(QStringLiteral("usage: workspace rename NAME NEWNAME [--password P]"));
        const int row = static_cast<int>(list.names().indexOf(args[1]));
        if (row < 0) return ctx.fail(QStringLiteral("no workspace named %1").arg(args[1]));
        if (args[2].isEmpty()) return ctx.fail(QStringLiteral("the name is empty"));
        if (list.nameTaken(args[2], row + 1)) return ctx.fail(QStringLiteral("此用户名已经被注册，请换用其他的名字"));
        list.renameAt(row + 1, args[2], cliargs::option(args, QStringLiteral("--password")));
        return 0;
    }
    return ctx.fail(QStringLiteral("usage: workspace list|create|delete|rename"));
}

int rulesCommand(CliContext& ctx, const QStringList& args) {
    const QString name = ctx.workspaceName();
    if (name.isEmpty()) return ctx.fail(QStringLiteral("no workspace: create one with `workspace create NAME`"));
    const QString sub = args.value(0);
    if (sub == QLatin1String("show")) {
        ctx.out << "Bitnum\tBitnumHou\n"
                << ctx.settings.readInt(keys::Bitnum, name) << '\t' << ctx.settings.readInt(keys::BitnumHou, name)
                << '\n';
        return 0;
    }
    if (sub == QLatin1String("set")) {
        bool hasFront = false, hasBack = false, ok1 = true, ok2 = true;
        const int front = cliargs::option(args, QStringLiteral("--front"), &hasFront).toInt(&ok1);
        const int back = cliargs::option(args, QStringLiteral("--back"), &hasBack).toInt(&ok2);
        if (!hasFront && !hasBack) return ctx.fail(QStringLiteral("usage: rules set [--front 28..36] [--back 12..24]"));
        if (hasFront && (!ok1 || !rules::validFront(front)))
            return ctx.fail(QStringLiteral("the front zone has 28 to 36 numbers"));
        if (hasBack && (!ok2 || !rules::validBack(back)))
            return ctx.fail(QStringLiteral("the back zone has 12 to 24 numbers"));
        if (hasFront) ctx.settings.write(keys::Bitnum, front, name);
        if (hasBack) ctx.settings.write(keys::BitnumHou, back, name);
        return 0;
    }
    return ctx.fail(QStringLiteral("usage: rules show|set"));
}

const CliGroupRegistrar workspaceGroup({QStringLiteral("workspace"),
                                        QStringLiteral("  workspace list\n"
                                                       "  workspace create NAME [--password P]\n"
                                                       "  workspace delete NAME [--password P]\n"
                                                       "  workspace rename NAME NEWNAME [--password P]\n"),
                                        workspaceCommand});
const CliGroupRegistrar rulesGroup({QStringLiteral("rules"),
                                    QStringLiteral("  rules show\n"
                                                   "  rules set [--front 28..36] [--back 12..24]\n"),
                                    rulesCommand});

}  // namespace
