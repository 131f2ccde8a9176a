#include "app/cli/six_commands.h"

#include "app/cli/cli_context.h"
#include "app/cli/cli_tables.h"
#include "app/cli/args_prompter.h"
#include "app/cli/window_boxes.h"
#include "filter/param/param_kernels.h"
#include "filter/six/six_actions.h"
#include "filter/six/six_history.h"
#include "filter/six/six_integrated.h"
#include "filter/six/six_params.h"
#include "filter/six/six_settings.h"
#include "workspace/session.h"

#include <QDateTime>

namespace {

QString sixNames() {
    QStringList names;
    for (const SixParamInfo& p : six_params::all())
        names << QStringLiteral("%1 (%2)").arg(QLatin1String(p.english), QString(p.caption).remove(QStringLiteral("：")));
    return names.join(QStringLiteral(", "));
}

six_params::Context sixContext(Session& s) {
    const ParamContext pc = ParamContext::fromSession(s);
    six_params::Context c;
    c.frontSize = pc.maxQian;
    c.lastDrawFront = pc.lastDrawFront;
    return c;
}

// The names an integrated run or a setting names: --params, and the first value of each
// --range and --list.
QStringList namedParams(const Args& args) {
    QStringList names = args.text(QStringLiteral("params")).split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& o : {QStringLiteral("range"), QStringLiteral("list")})
        for (const QStringList& v : args.occurrences(o)) names << v.value(0);
    return names;
}

six_settings::Bounds defaultBounds() {
    six_settings::Bounds b;
    for (const SixParamInfo& p : six_params::all()) {
        b.lo[static_cast<size_t>(p.id)] = QString::number(p.lo);
        b.hi[static_cast<size_t>(p.id)] = QString::number(p.hi);
    }
    return b;
}

// --range NAME LO HI over the boxes' defaults.
six_settings::Bounds readBounds(const Args& args) {
    six_settings::Bounds b = defaultBounds();
    for (const QStringList& r : args.occurrences(QStringLiteral("range"))) {
        const auto i = static_cast<size_t>(*six_params::byEnglish(r[0]));
        b.lo[i] = r[1];
        b.hi[i] = r[2];
    }
    return b;
}

// zuhef in the six-number window's logic, as GAganfMb opens it; runs `change` on it and prints
// the live count once the record is written.
template <typename F>
int onSixTable(CliContext& ctx, Session& s, F&& change) {
    FilterWorkspace workspace(FilterSource::StoredSixExpansion, s.paths().filterDb());
    workspace.setZoneLimits({s.frontSize(), s.backSize()});
    QString error;
    if (!cli_tables::openStoredTable(s, workspace, schema::CandidateKind::SixNumbers, &error))
        return ctx.fail(error.isEmpty() ? QStringLiteral("no zuhef: run `expand --six` first") : error);
    {
        const FilterWorkspace::Edit edit = workspace.edit();
        change(edit.table());
    }
    const candidate_store::SaveResult saved = workspace.waitForWrite();
    if (saved.outcome != candidate_store::Outcome::Done) return ctx.fail(saved.error);
    ctx.out << workspace.table().liveCount() << '\n';
    return Command::kDone;
}

}  // namespace

namespace six_cli {

QString namesProblem(const Args& args, bool onSix) {
    // filter param names its parameter first, filter integrated in --params, --range and --list.
    const QStringList names = args.positionals().isEmpty() ? namedParams(args) : args.positionals().mid(0, 1);
    for (const QString& n : names) {
        const bool six = six_params::byEnglish(n).has_value();
        if (onSix && !six)
            return QStringLiteral("on zuhef the parameters are the six-number window's: %1").arg(sixNames());
        if (!onSix && six && !command_args::param(n))
            return QStringLiteral("%1 is a parameter of the six-number window: add --table zuhef").arg(n);
    }
    for (const char* o : {"list", "interval", "tolerance", "positions", "odd", "even", "scope"})
        if (onSix && args.has(QString::fromLatin1(o)))
            return QStringLiteral("--%1 has no counterpart in the six-number window").arg(QLatin1String(o));
    return {};
}

int runParam(CliContext& ctx, Session& s, const Args& args) {
    const SixParam id = *six_params::byEnglish(args.positional(0));
    const QStringList range = args.values(QStringLiteral("range"));
    const six_params::Context c = sixContext(s);
    const bool keep = args.has(QStringLiteral("keep"));
    return onSixTable(ctx, s, [&](CandidateTable& t) { six_params::run(t, id, range.value(0), range.value(1), keep, c); });
}

int runIntegrated(CliContext& ctx, Session& s, const Args& args) {
    const six_settings::Bounds b = readBounds(args);
    std::vector<six_integrated::Range> ticked;
    for (const QString& n : args.text(QStringLiteral("params")).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const SixParam id = *six_params::byEnglish(n);
        ticked.push_back({id, b.lo[static_cast<size_t>(id)], b.hi[static_cast<size_t>(id)]});
    }
    const six_integrated::Choice choice{args.has(QStringLiteral("keep")), !args.has(QStringLiteral("or"))};
    const six_params::Context c = sixContext(s);
    return onSixTable(ctx, s, [&](CandidateTable& t) { six_integrated::run(t, ticked, choice, c); });
}

}  // namespace six_cli

SixParamCommand::SixParamCommand()
    : SessionCommand(QStringLiteral("six param"), QStringLiteral("NAME (--keep|--exclude) --range LO HI"),
                     QStringLiteral("Runs a parameter of the six-number window on zuhef; prints the live count.")) {
    positional(QStringLiteral("NAME"), QStringLiteral("The parameter: ") + sixNames() + QLatin1Char('.'));
    options(window_boxes::senseOptions());
    option(QStringLiteral("range"), QStringLiteral("LO HI"), QStringLiteral("The boxes lo and hi, also as LO,HI."),
           {ValueKind::number(), ValueKind::number()});
}

QString SixParamCommand::check(const Args& args) const {
    if (!six_params::byEnglish(args.positional(0)))
        return QStringLiteral("no six-number parameter \"%1\"; the names: %2").arg(args.positional(0), sixNames());
    if (!args.has(QStringLiteral("range"))) return QStringLiteral("give --range LO HI");
    return window_boxes::checkSense(args, true);
}

int SixParamCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    return six_cli::runParam(ctx, s, args);
}

SixHistoryCommand::SixHistoryCommand()
    : SessionCommand(QStringLiteral("six history"), QStringLiteral("MATCHES [--draws N]"),
                     QStringLiteral("Removes the zuhef rows that hold MATCHES (3, 4 or 5) numbers of a draw, as "
                                    "历史同3/4/5号滤 do; prints the live count.")) {
    positional(QStringLiteral("MATCHES"), QStringLiteral("3, 4 or 5."), ValueKind::integer());
    option(QStringLiteral("draws"), QStringLiteral("N"),
           QStringLiteral("The latest N draws (default: every draw)."));
}

QString SixHistoryCommand::check(const Args& args) const {
    const int m = args.positional(0).toInt();
    if (m < 3 || m > 5) return QStringLiteral("MATCHES is 3, 4 or 5");
    return {};
}

int SixHistoryCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const six_history::DrawCount count = six_history::parseDrawCount(args.text(QStringLiteral("draws")));
    if (!count.error.isEmpty()) return ctx.fail(QStringLiteral("--draws: ") + count.error);
    const int matches = args.positional(0).toInt();
    return onSixTable(ctx, s, [&](CandidateTable& t) { six_history::run(t, matches, count.draws, s.history()); });
}

SixActionCommand::SixActionCommand(const QString& word, const QString& caption, Action action)
    : SessionCommand(QStringLiteral("six ") + word, QString(),
                     QStringLiteral("The six-number window's %1 on zuhef; prints the live count.").arg(caption)),
      m_action(action) {}

int SixActionCommand::run(CliContext& ctx, Session& s, const Args&) const { return onSixTable(ctx, s, m_action); }

SixResetAllCommand::SixResetAllCommand()
    : SixActionCommand(QStringLiteral("reset-all"), QStringLiteral("全部复位"), six_actions::resetAll) {}
SixResetLastCommand::SixResetLastCommand()
    : SixActionCommand(QStringLiteral("reset-last"), QStringLiteral("过滤复位"), six_actions::resetLast) {}
SixInvertAllCommand::SixInvertAllCommand()
    : SixActionCommand(QStringLiteral("invert-all"), QStringLiteral("全部反选"), six_actions::invertAll) {}
SixInvertLastCommand::SixInvertLastCommand()
    : SixActionCommand(QStringLiteral("invert-last"), QStringLiteral("上次反选"), six_actions::invertLast) {}

SixSaveSettingCommand::SixSaveSettingCommand()
    : SessionCommand(QStringLiteral("six save-setting"), QStringLiteral("NAME [--range NAME LO HI]..."),
                     QStringLiteral("Saves the six-number window's boxes under a name (保存过滤设置); the boxes "
                                    "not given keep their defaults.")) {
    positional(QStringLiteral("NAME"), QStringLiteral("The setting's name."));
    option(QStringLiteral("range"), QStringLiteral("NAME LO HI"),
           QStringLiteral("A parameter's boxes; repeat for each parameter."),
           {ValueKind::text(), ValueKind::number(), ValueKind::number()});
}

QString SixSaveSettingCommand::check(const Args& args) const {
    for (const QStringList& r : args.occurrences(QStringLiteral("range")))
        if (!six_params::byEnglish(r[0]))
            return QStringLiteral("no six-number parameter \"%1\"; the names: %2").arg(r[0], sixNames());
    return {};
}

int SixSaveSettingCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    ArgsPrompter prompter({args.positional(0)});
    if (!six_settings::save(s.filterDb(), readBounds(args), prompter, QDateTime::currentDateTime()))
        return ctx.fail(QStringLiteral("the setting could not be saved"));
    return kDone;
}

SixLoadSettingCommand::SixLoadSettingCommand()
    : SessionCommand(QStringLiteral("six load-setting"), QStringLiteral("NAME"),
                     QStringLiteral("Prints the six-number window's boxes as a saved setting sets them "
                                    "(调用过滤设置): name, lo and hi, tab-separated.")) {
    positional(QStringLiteral("NAME"), QStringLiteral("The setting's name."));
}

int SixLoadSettingCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    six_settings::Bounds b = defaultBounds();
    if (!six_settings::load(s.filterDb(), args.positional(0), b))
        return ctx.fail(QStringLiteral("no setting named %1").arg(args.positional(0)));
    for (const SixParamInfo& p : six_params::all())
        ctx.out << p.english << '\t' << b.lo[static_cast<size_t>(p.id)] << '\t' << b.hi[static_cast<size_t>(p.id)] << '\n';
    return kDone;
}
