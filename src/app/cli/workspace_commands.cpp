#include "app/cli/workspace_commands.h"

#include <QDir>

#include "app/cli/cli_context.h"
#include "workspace/game_rules.h"
#include "workspace/workspace_list.h"

namespace {

const QString kNameTaken = QStringLiteral("此用户名已经被注册，请换用其他的名字");
const QString kPasswordHelp = QStringLiteral("The workspace's password.");

WorkspaceList loadedList(CliContext& ctx) {
    WorkspaceList list(ctx.settings, ctx.root);
    list.load();
    return list;
}

// The refusal for a folder that cannot be made names the folder.
QString withFolder(const CliContext& ctx, const QString& error, const QString& name) {
    const QString folder = ctx.root.childFolder(name);
    if (error != WorkspaceList::kNoFolder || folder.isEmpty()) return error;
    return error + QStringLiteral("：") + QDir::toNativeSeparators(folder);
}

}  // namespace

WorkspaceListCommand::WorkspaceListCommand()
    : Command(QStringLiteral("workspace list"), {},
              QStringLiteral("Lists the workspaces; * marks the one later commands use by default.")) {
    setAccess(Access::Reads);
}

int WorkspaceListCommand::execute(CliContext& ctx, const Args&) const {
    const WorkspaceList list = loadedList(ctx);
    ctx.out << "index\tName\tpassword\tcurrent\n";
    const int current = list.lastWorkspace();
    for (int row = 0; row < list.count(); ++row)
        ctx.out << row + 1 << '\t' << list.name(row) << '\t' << (list.hasPassword(row) ? "yes" : "no")
                << '\t' << (row + 1 == current ? "*" : "") << '\n';
    return kDone;
}

WorkspaceCreateCommand::WorkspaceCreateCommand()
    : Command(
          QStringLiteral("workspace create"), QStringLiteral("NAME [--password P]"),
          QStringLiteral("Creates a workspace and makes it the one later commands use; prints its index.")) {
    setAccess(Access::ChangesList);
    positional(QStringLiteral("NAME"), QStringLiteral("The new workspace's name."));
    option(QStringLiteral("password"), QStringLiteral("P"), kPasswordHelp);
}

int WorkspaceCreateCommand::execute(CliContext& ctx, const Args& args) const {
    WorkspaceList list = loadedList(ctx);
    const QString name = args.positional(0);
    if (name.isEmpty()) return ctx.fail(QStringLiteral("the name is empty"));
    if (list.nameTaken(name)) return ctx.fail(kNameTaken);
    QString error;
    // A workspace created here is the one later commands use by default.
    const int row = list.create(name, args.text(QStringLiteral("password")), &error, true);
    if (row < 0) return ctx.fail(withFolder(ctx, error, name));
    ctx.out << row + 1 << '\n';
    return kDone;
}

WorkspaceDeleteCommand::WorkspaceDeleteCommand()
    : Command(QStringLiteral("workspace delete"), QStringLiteral("NAME [--password P]"),
              QStringLiteral("Deletes a workspace from the list; its folder stays.")) {
    setAccess(Access::ChangesList);
    positional(QStringLiteral("NAME"), QStringLiteral("The workspace to delete."));
    option(QStringLiteral("password"), QStringLiteral("P"), QStringLiteral("Its password, when it has one."));
}

int WorkspaceDeleteCommand::execute(CliContext& ctx, const Args& args) const {
    WorkspaceList list = loadedList(ctx);
    const int row = static_cast<int>(list.names().indexOf(args.positional(0)));
    if (row < 0) return ctx.fail(QStringLiteral("请选择一个用户名然后再删除。"));
    if (!list.checkPassword(row, args.text(QStringLiteral("password"))))
        return ctx.fail(QStringLiteral("密码有误，没有权限删除该用户"));
    QString error;
    return list.removeAt(row, &error) ? kDone : ctx.fail(error);
}

WorkspaceRenameCommand::WorkspaceRenameCommand()
    : Command(
          QStringLiteral("workspace rename"), QStringLiteral("NAME NEWNAME [--password P]"),
          QStringLiteral("Gives a workspace a fresh set of files under a new name; the old files stay.")) {
    setAccess(Access::ChangesList);
    positional(QStringLiteral("NAME"), QStringLiteral("The workspace to rename."));
    positional(QStringLiteral("NEWNAME"), QStringLiteral("Its new name."));
    option(QStringLiteral("password"), QStringLiteral("P"),
           QStringLiteral("The password under the new name."));
}

int WorkspaceRenameCommand::execute(CliContext& ctx, const Args& args) const {
    WorkspaceList list = loadedList(ctx);
    const QString name = args.positional(0), newName = args.positional(1);
    const int row = static_cast<int>(list.names().indexOf(name));
    if (row < 0) return ctx.fail(QStringLiteral("no workspace named %1").arg(name));
    if (newName.isEmpty()) return ctx.fail(QStringLiteral("the name is empty"));
    if (list.nameTaken(newName, row + 1)) return ctx.fail(kNameTaken);
    QString error;
    return list.renameAt(row + 1, newName, args.text(QStringLiteral("password")), &error)
               ? kDone
               : ctx.fail(withFolder(ctx, error, newName));
}

RulesShowCommand::RulesShowCommand()
    : Command(QStringLiteral("rules show"), {},
              QStringLiteral("Prints the sizes of the front and back zones of the workspace.")) {
    setAccess(Access::Reads);
}

int RulesShowCommand::execute(CliContext& ctx, const Args&) const {
    const QString name = ctx.workspaceName();
    if (name.isEmpty()) return ctx.fail(CliContext::kNoWorkspace);
    ctx.out << "Bitnum\tBitnumHou\n"
            << ctx.settings.readInt(setting_keys::FrontSize, name) << '\t'
            << ctx.settings.readInt(setting_keys::BackSize, name) << '\n';
    return kDone;
}

RulesSetCommand::RulesSetCommand()
    : Command(QStringLiteral("rules set"), QStringLiteral("[--front 28..36] [--back 12..24]"),
              QStringLiteral("Sets the sizes of the zones of the workspace.")) {
    option(QStringLiteral("front"), QStringLiteral("N"),
           QStringLiteral("Numbers of the front zone, 28 to 36."), ValueKind::integer());
    option(QStringLiteral("back"), QStringLiteral("N"), QStringLiteral("Numbers of the back zone, 12 to 24."),
           ValueKind::integer());
}

QString RulesSetCommand::check(const Args& args) const {
    if (!args.has(QStringLiteral("front")) && !args.has(QStringLiteral("back")))
        return QStringLiteral("give --front or --back");
    return {};
}

int RulesSetCommand::execute(CliContext& ctx, const Args& args) const {
    const QString name = ctx.workspaceName();
    if (name.isEmpty()) return ctx.fail(CliContext::kNoWorkspace);
    const bool hasFront = args.has(QStringLiteral("front")), hasBack = args.has(QStringLiteral("back"));
    const int front = args.integer(QStringLiteral("front")), back = args.integer(QStringLiteral("back"));
    if (hasFront && !game_rules::validFront(front))
        return ctx.fail(QStringLiteral("the front zone has 28 to 36 numbers"));
    if (hasBack && !game_rules::validBack(back))
        return ctx.fail(QStringLiteral("the back zone has 12 to 24 numbers"));
    QList<Settings::KeyValue> values;
    if (hasFront) values.append({&setting_keys::FrontSize, QString::number(front)});
    if (hasBack) values.append({&setting_keys::BackSize, QString::number(back)});
    if (!ctx.settings.writeAll(values, name))
        return ctx.fail(Settings::saveFailedText(ctx.settings.fileFor(setting_keys::FrontSize, name)));
    return kDone;
}
