#include "app/cli/setting_commands.h"

#include "app/cli/args_prompter.h"
#include "app/cli/cli_context.h"
#include "app/cli/window_boxes.h"
#include "filter/param/range_query.h"
#include "filter/templates/saved_setting_store.h"

#include <QDateTime>

namespace {

const QString kNameHelp = QStringLiteral("The setting's name.");

void printSnapshot(CliContext& ctx, const ParamWindowState& s) {
    ctx.out << "param\tlow\thigh\tcount\tlist\tchecked\n";
    for (const ParamInfo& p : param_catalogue::all()) {
        const auto& b = s.box(p.id);
        const QString list = p.id == ParamId::CustomRange ? s.txtZdqj : b[3];
        ctx.out << p.button << '\t' << b[0] << '\t' << b[1] << '\t' << b[2] << '\t' << list << '\t'
                << (s.integratedBox[static_cast<size_t>(p.integratedBox)] ? 1 : 0) << '\n';
    }
    ctx.out << "opt36\t" << (s.listMode ? 1 : 0) << "\nljh\t" << (s.logicAnd ? 1 : 0) << "\nbaoliu\t"
            << (s.keep ? 1 : 0) << "\nRCcount\t" << s.txtRc0 << "\nRCperct\t" << s.txtRc1 << '\n';
}

// The saved settings of the workspace, and the one named by the first argument; null after
// printing a refusal.
std::unique_ptr<saved_setting_store::Finder> findNamed(CliContext& ctx, Session& s, const QString& name) {
    auto finder = std::make_unique<saved_setting_store::Finder>(s.filterDb());
    if (!finder->ready()) return ctx.fail(QStringLiteral("no table Canshu in filnum.db")), nullptr;
    if (!name.isEmpty() && !finder->names().contains(name))
        return ctx.fail(QStringLiteral("no setting named %1").arg(name)), nullptr;
    return finder;
}

QStringList rangeColumns() {
    QStringList names;
    for (const range_query::ComboRow& r : range_query::rows()) names << QString::fromLatin1(r.column);
    return names;
}

}  // namespace

SettingSaveCommand::SettingSaveCommand()
    : SessionCommand(QStringLiteral("setting save"),
                     QStringLiteral("NAME [--params NAMES] [--range NAME LO HI]... [--list NAME \"V V\"]... "
                                    "[--interval LO HI] [--or] [--exclude] [--tolerance N]"),
                     QStringLiteral("Saves the filter window's boxes under a name (参数保存).")) {
    positional(QStringLiteral("NAME"), kNameHelp);
    options(window_boxes::runOptions());
    options(window_boxes::senseOptions());
}

QString SettingSaveCommand::check(const Args& args) const { return window_boxes::checkSense(args, false); }

int SettingSaveCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    ParamWindowState state = ParamWindowState::defaults();
    window_boxes::readRun(args, state, window_boxes::Tick::OwnBox);
    window_boxes::readSense(args, state);
    ArgsPrompter prompter({args.positional(0)});
    if (!saved_setting_store::save(s.filterDb(), state, prompter, QDateTime::currentDateTime()))
        return ctx.fail(QStringLiteral("the setting could not be saved"));
    return kDone;
}

SettingLoadCommand::SettingLoadCommand()
    : SessionCommand(QStringLiteral("setting load"), QStringLiteral("NAME"),
                     QStringLiteral("Prints the boxes of a saved setting.")) {
    positional(QStringLiteral("NAME"), kNameHelp);
}

int SettingLoadCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const QString name = args.positional(0);
    if (!findNamed(ctx, s, name)) return kRefused;
    ParamWindowState state = ParamWindowState::defaults();
    if (!saved_setting_store::load(s.filterDb(), name, state))
        return ctx.fail(QStringLiteral("no setting named %1").arg(name));
    printSnapshot(ctx, state);
    return kDone;
}

SettingListCommand::SettingListCommand()
    : SessionCommand(QStringLiteral("setting list"), {},
                     QStringLiteral("Prints the names of the saved settings.")) {
    setAccess(Access::Reads);
}

int SettingListCommand::run(CliContext& ctx, Session& s, const Args&) const {
    const auto finder = findNamed(ctx, s, {});
    if (!finder) return kRefused;
    ctx.out << "Name\n";
    for (const QString& n : finder->names()) ctx.out << n << '\n';
    return kDone;
}

SettingDeleteCommand::SettingDeleteCommand()
    : SessionCommand(QStringLiteral("setting delete"), QStringLiteral("NAME"),
                     QStringLiteral("Deletes every saved setting of that name.")) {
    positional(QStringLiteral("NAME"), kNameHelp);
}

int SettingDeleteCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const auto finder = findNamed(ctx, s, args.positional(0));
    if (!finder) return kRefused;
    return finder->remove(args.positional(0)) ? kDone : ctx.fail(s.filterDb().lastError());
}

SettingRenameCommand::SettingRenameCommand()
    : SessionCommand(QStringLiteral("setting rename"), QStringLiteral("NAME NEWNAME"),
                     QStringLiteral("Renames every saved setting of that name.")) {
    positional(QStringLiteral("NAME"), kNameHelp);
    positional(QStringLiteral("NEWNAME"), QStringLiteral("The new name."));
}

int SettingRenameCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const auto finder = findNamed(ctx, s, args.positional(0));
    if (!finder) return kRefused;
    ArgsPrompter prompter({args.positional(1)});
    return finder->rename(args.positional(0), prompter, QDateTime::currentDateTime())
               ? kDone
               : ctx.fail(s.filterDb().lastError());
}

RangeCommand::RangeCommand()
    : SessionCommand(
          QStringLiteral("range"),
          QStringLiteral("--column COL [--span N] (--minmax | --average SHARE | --top COUNT) "
                         "[--table fig|fighou|figquan]"),
          QStringLiteral(
              "Asks the history for a parameter's range, as the window's range boxes are preset; prints LO "
              "and HI, or the values for --top.")) {
    option(QStringLiteral("column"), QStringLiteral("COL"),
           QStringLiteral("The parameter's draw column (Znum, Onum, fig1, ...)."),
           ValueKind::oneOf(rangeColumns()));
    option(QStringLiteral("span"), QStringLiteral("N"),
           QStringLiteral("The newest N draws; 0 or absent for all."), ValueKind::integer());
    flag(QStringLiteral("minmax"), QStringLiteral("The smallest and the largest value."));
    option(QStringLiteral("average"), QStringLiteral("SHARE"),
           QStringLiteral("The average, widened by SHARE on both sides."), ValueKind::number());
    option(QStringLiteral("top"), QStringLiteral("COUNT"), QStringLiteral("The COUNT most frequent values."),
           ValueKind::integer());
    option(QStringLiteral("table"), QStringLiteral("T"),
           QStringLiteral("fig (front zone, the default), fighou (back zone) or figquan (both)."),
           ValueKind::oneOf({QStringLiteral("fig"), QStringLiteral("fighou"), QStringLiteral("figquan")}));
}

QString RangeCommand::check(const Args& args) const {
    if (!args.has(QStringLiteral("column"))) return QStringLiteral("missing --column COL");
    const int modes = int{args.has(QStringLiteral("minmax"))} + int{args.has(QStringLiteral("average"))} +
                      int{args.has(QStringLiteral("top"))};
    return modes == 1 ? QString() : QStringLiteral("give one of --minmax, --average SHARE, --top COUNT");
}

int RangeCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const range_query::ComboRow row =
        range_query::rows()[static_cast<size_t>(args.choice(QStringLiteral("column")))];
    const int span = args.integer(QStringLiteral("span"));
    if (span < 0) return ctx.fail(QStringLiteral("--span: a number of draws, 0 for all"));
    const auto scope = static_cast<ZoneScope>(args.choice(QStringLiteral("table")) + 1);
    const bool top = args.has(QStringLiteral("top")), average = args.has(QStringLiteral("average"));
    ParamWindowState state = ParamWindowState::defaults();
    state.box(row.param)[2] = args.text(QStringLiteral("top"));
    const range_query::Mode mode = top       ? range_query::Mode::Top
                                   : average ? range_query::Mode::Average
                                             : range_query::Mode::Plain;
    if (range_query::onSpanChosen(state, row.combo, span, mode, args.text(QStringLiteral("average")),
                                  s.history(), scope)
            .empty())
        return ctx.fail(QStringLiteral("no value: the table %1 has no column %2 or no draw")
                            .arg(range_query::tableFor(scope), args.text(QStringLiteral("column"))));
    const auto& box = state.box(row.param);
    if (top)
        ctx.out << box[3].trimmed() << '\n';
    else
        ctx.out << box[0] << '\t' << box[1] << '\n';
    return kDone;
}
