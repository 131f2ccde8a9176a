#include "app/cli/six_commands.h"

#include "app/cli/cli_context.h"
#include "app/cli/cli_tables.h"
#include "app/cli/window_boxes.h"
#include "filter/param/param_kernels.h"
#include "filter/six/six_actions.h"
#include "filter/six/six_history.h"
#include "filter/six/six_params.h"
#include "workspace/session.h"

namespace {

QString sixNames() {
    QStringList names;
    for (const SixParamInfo& p : six_params::all())
        names << QStringLiteral("%1 (%2)").arg(QLatin1String(p.english), QString(p.caption).remove(QStringLiteral("：")));
    return names.join(QStringLiteral(", "));
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
    const SixParam id = *six_params::byEnglish(args.positional(0));
    const QStringList range = args.values(QStringLiteral("range"));
    const ParamContext pc = ParamContext::fromSession(s);
    six_params::Context c;
    c.frontSize = pc.maxQian;
    c.lastDrawFront = pc.lastDrawFront;
    const bool keep = args.has(QStringLiteral("keep"));
    return onSixTable(ctx, s, [&](CandidateTable& t) { six_params::run(t, id, range.value(0), range.value(1), keep, c); });
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
