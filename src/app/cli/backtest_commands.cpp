#include "app/cli/backtest_commands.h"

#include "app/backtest_space.h"

#include "app/cli/cli_context.h"
#include "app/cli/window_boxes.h"
#include "filter/backtest/backtest_runner.h"
#include "filter/backtest/pass_rate.h"
#include "filter/templates/saved_setting_store.h"
#include "prize/prize_session.h"
#include "workspace/sqlite_db.h"

namespace {

const QString kTemplate = QStringLiteral("template");
const QString kSetting = QStringLiteral("setting");
const QString kLast = QStringLiteral("last");
const QString kRange = QStringLiteral("range");
const QString kList = QStringLiteral("list");
const QString kColumn = QStringLiteral("column");

OptionDeclaration lastOption() {
    return OptionDeclaration::valued(kLast, QStringLiteral("N"),
                                     QStringLiteral("The span: the last N draws (default 100; 0 every draw)."),
                                     ValueKind::integer());
}

OptionDeclaration settingOption(const QString& what) {
    return OptionDeclaration::valued(kSetting, QStringLiteral("NAME"),
                                     QStringLiteral("A saved setting (Canshu), run as the integrated filter %1.")
                                         .arg(what));
}

int lastOf(const Args& args) { return args.integer(kLast, backtest::kDefaultSpan); }

QString checkLast(const Args& args) {
    return args.integer(kLast, 0) < 0 ? QStringLiteral("--last: 0 or more") : QString();
}

class ProgressNotes : public backtest::Listener {
public:
    explicit ProgressNotes(QTextStream& out) : m_out(out) {}
    void drawDone(const backtest::DrawRow& r, int, int) override {
        m_out << r.issue << '\t' << (r.survived ? 1 : 0) << '\t'
              << (r.killingStep > 0 ? QString::number(r.killingStep) : QStringLiteral("none")) << '\t' << r.kept
              << '\t' << r.cost << '\t' << r.winnings << '\n';
        m_out.flush();
    }

private:
    QTextStream& m_out;
};

void printSummary(QTextStream& out, const backtest::Summary& s) {
    out << "\ndraws\tsurvived\tsurvival\tmedian kept\tmin kept\tmax kept\tcost\twinnings\tnet\n"
        << s.draws << '\t' << s.survived << '\t' << QString::number(s.survivalRate, 'f', 4) << '\t'
        << s.medianKept << '\t' << s.minKept << '\t' << s.maxKept << '\t' << s.totalCost << '\t'
        << s.totalWinnings << '\t' << s.net << '\n';
}

}  // namespace

BacktestCommand::BacktestCommand()
    : SessionCommand(
          QStringLiteral("backtest"),
          QStringLiteral("(--template | --setting NAME) [--last N] [--space full|picks] [--threads T] "
                         "[--scope ZONE]"),
          QStringLiteral("Runs the filter template or a saved setting on each of the last N draws with only the "
                         "draws before it; prints a row per draw (issue, survived, killing step, kept, cost, "
                         "winnings) and the summary.")) {
    flag(kTemplate, QStringLiteral("Replays the filter template (moban), every step in order."));
    options({settingOption(QStringLiteral("with its boxes")), lastOption()});
    option(QStringLiteral("space"), QStringLiteral("SPACE"),
           QStringLiteral("The tickets: full, every ticket of the zone sizes (the default), or picks, the "
                          "stored expansion zuhe."),
           ValueKind::oneOf({QStringLiteral("full"), QStringLiteral("picks")}));
    option(QStringLiteral("threads"), QStringLiteral("T"),
           QStringLiteral("Threads of the filters (default: one per core)."), ValueKind::integer());
    options({window_boxes::scopeOption()});
}

QString BacktestCommand::check(const Args& args) const {
    if (args.has(kTemplate) == args.has(kSetting)) return QStringLiteral("give --template or --setting NAME");
    if (args.integer(QStringLiteral("threads"), 1) < 1) return QStringLiteral("--threads: 1 or more");
    return checkLast(args);
}

int BacktestCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const bool picks = args.choice(QStringLiteral("space")) == 1;
    QString error;
    std::unique_ptr<CandidateTable> table = picks
                                                ? backtest_space::picks(s.filterDb(), s.frontSize(), s.backSize(), &error)
                                                : backtest_space::fullSet(s.frontSize(), s.backSize(), &error);
    if (!table) return ctx.fail(error);
    const backtest::Strategy strategy =
        args.has(kSetting) ? backtest::Strategy::setting(args.text(kSetting), window_boxes::scope(args))
                           : backtest::Strategy::filterTemplate();
    backtest::Runner runner({s.filterDb(), s.history(), s.frontSize(), s.backSize(),
                             prize_session::settingsOf(s).read().rules},
                            std::move(table));
    ctx.out << "issue\tsurvived\tkilling step\tkept\tcost\twinnings\n";
    ProgressNotes notes(ctx.out);
    backtest::Options options;
    options.span = lastOf(args);
    options.threads = static_cast<unsigned>(args.integer(QStringLiteral("threads"), 0));
    const backtest::Result r = runner.run(strategy, options, &notes);
    if (!r.error.isEmpty()) return ctx.fail(r.error);
    printSummary(ctx.out, r.summary);
    return kDone;
}

PassRateCommand::PassRateCommand()
    : SessionCommand(QStringLiteral("passrate"),
                     QStringLiteral("(--column NAME (--range LO HI | --list \"V V\") | --setting NAME) [--last N] "
                                    "[--scope ZONE]"),
                     QStringLiteral("Prints the share of the last N draws whose value of a column lies in the "
                                    "range or list, or that a saved setting's integrated filter would have "
                                    "kept: draws, passed and the share.")) {
    setAccess(Access::Reads);
    option(kColumn, QStringLiteral("NAME"),
           QStringLiteral("A column of the zone's draw table (Znum, Onum, fig1, ...)."));
    option(kRange, QStringLiteral("LO HI"), QStringLiteral("The range, limits included."),
           {ValueKind::number(), ValueKind::number()});
    option(kList, QStringLiteral("VALUES"), QStringLiteral("The values, as \"2 3\"."), ValueKind::values());
    options({settingOption(QStringLiteral("with its ticked boxes and tolerance")), lastOption(),
             window_boxes::scopeOption()});
}

QString PassRateCommand::check(const Args& args) const {
    if (args.has(kColumn) == args.has(kSetting)) return QStringLiteral("give --column NAME or --setting NAME");
    if (args.has(kColumn) && args.has(kRange) == args.has(kList))
        return QStringLiteral("give --range LO HI or --list \"V V\"");
    if (args.has(kSetting) && (args.has(kRange) || args.has(kList)))
        return QStringLiteral("--setting takes the ranges of its boxes");
    return checkLast(args);
}

int PassRateCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const ZoneScope scope = window_boxes::scope(args);
    pass_rate::Rate rate;
    if (args.has(kSetting)) {
        ParamWindowState state = ParamWindowState::defaults();
        const SqliteReadTransaction read(s.filterDb());
        if (!saved_setting_store::load(s.filterDb(), args.text(kSetting), state))
            return ctx.fail(QStringLiteral("no saved setting named %1").arg(args.text(kSetting)));
        state.scope = scope;
        rate = pass_rate::ofIntegrated(s.history(), state, lastOf(args), s.frontSize(), s.backSize());
    } else {
        pass_rate::Accepted accepted;
        if (args.has(kRange)) {
            const QStringList r = args.values(kRange);
            accepted = pass_rate::Accepted::range(r[0].toDouble(), r[1].toDouble());
        } else {
            std::vector<double> values;
            for (const QString& v : args.text(kList).split(QLatin1Char(' '), Qt::SkipEmptyParts))
                values.push_back(v.toDouble());
            accepted = pass_rate::Accepted::list(std::move(values));
        }
        const auto r = pass_rate::ofColumn(s.history(), scope, args.text(kColumn), lastOf(args), accepted);
        if (!r) return ctx.fail(QStringLiteral("no column %1 in the draws of that zone").arg(args.text(kColumn)));
        rate = *r;
    }
    ctx.out << "draws\tpassed\tshare\n"
            << rate.draws << '\t' << rate.passed << '\t' << QString::number(rate.share(), 'f', 4) << '\n';
    return kDone;
}
