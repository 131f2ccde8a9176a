#include "app/cli/analysis_commands.h"

#include "analysis/chart_lines.h"
#include "analysis/draw_tallies.h"
#include "analysis/number_relations.h"
#include "analysis/param_distribution.h"
#include "analysis/param_lists.h"
#include "analysis/position_moments.h"
#include "analysis/statistics_grids.h"
#include "analysis/trend_charts.h"
#include "analysis/trend_grid.h"
#include "app/cli/cli_context.h"
#include "history/draw_params.h"
#include "workspace/session.h"

#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

namespace {

const QString kLast = QStringLiteral("last");
const QString kScope = QStringLiteral("scope");
const QString kColumn = QStringLiteral("column");
const QString kColumnRequired = QStringLiteral("--column is required");
const QStringList kScopes{QStringLiteral("front"), QStringLiteral("back"), QStringLiteral("both")};

QString shortest(double v) { return QString::number(v, 'g', QLocale::FloatingPointShortest); }
QString twoDigits(int n) { return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0')); }

// The first draw row printed: all of them, or the last `--last` ones.
int firstRow(const Args& args, int rows) {
    return args.has(kLast) ? std::max(1, rows - args.integer(kLast) + 1) : 1;
}

QString lastProblem(const Args& args) {
    if (args.has(kLast) && args.integer(kLast) < 1) return QStringLiteral("--last: %1 is not a count of draws").arg(args.text(kLast));
    return {};
}

HistoryView scopeOf(const Args& args) { return kAllViews[static_cast<size_t>(args.choice(kScope))]; }

void printGrid(CliContext& ctx, const TextGrid& g) {
    for (const QStringList& row : g.rows) ctx.out << row.join(QLatin1Char('\t')) << '\n';
}


}  // namespace

AnalysisTrendCommand::AnalysisTrendCommand()
    : SessionCommand(QStringLiteral("analysis trend"), QStringLiteral("[--zone front|back] [--last N]"),
                     QStringLiteral("Prints the trend grid of a zone: per draw its issue, then per number the "
                                    "drawn number or the omission figure; then the rows of omissions, "
                                    "appearances and the board's marks.")) {
    setAccess(Access::Reads);
    option(QStringLiteral("zone"), QStringLiteral("ZONE"), QStringLiteral("front (the default) or back."),
           ValueKind::oneOf({QStringLiteral("front"), QStringLiteral("back")}));
    option(kLast, QStringLiteral("N"),
           QStringLiteral("Only the last N draw rows; the summary rows count every draw, as in the window."),
           ValueKind::integer());
}

QString AnalysisTrendCommand::check(const Args& args) const { return lastProblem(args); }

int AnalysisTrendCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    TrendGrid grid(s, args.choice(QStringLiteral("zone")) == 0 ? Zone::Front : Zone::Back);
    grid.load();
    ctx.out << TrendGrid::kIssueHead;
    for (int n = 1; n <= grid.size(); ++n) ctx.out << '\t' << twoDigits(n);
    ctx.out << '\n';
    for (int r = firstRow(args, grid.drawCount()); r <= grid.drawCount(); ++r) {
        ctx.out << grid.issue(r);
        for (int n = 1; n <= grid.size(); ++n) {
            const TrendCell& c = grid.cell(r, n);
            ctx.out << '\t';
            if (c.shown) ctx.out << (c.omission ? QString::number(c.figure) : twoDigits(c.figure));
        }
        ctx.out << '\n';
    }
    ctx.out << TrendGrid::kOmissionHead;
    for (int n = 1; n <= grid.size(); ++n) {
        const auto omission = grid.currentOmission(n);
        ctx.out << '\t' << (omission ? QString::number(*omission) : QString());
    }
    ctx.out << '\n' << TrendGrid::kAppearanceHead;
    for (int n = 1; n <= grid.size(); ++n) ctx.out << '\t' << grid.appearances(n);
    ctx.out << '\n' << TrendGrid::kMarksHead;
    for (int n = 1; n <= grid.size(); ++n) ctx.out << '\t' << grid.mark(n);
    ctx.out << '\n';
    return kDone;
}

AnalysisFitCommand::AnalysisFitCommand()
    : SessionCommand(QStringLiteral("analysis fit"), QStringLiteral("RUNNING_NUMBER"),
                     QStringLiteral("Prints the line fitted through a draw's five front numbers and the origin: "
                                    "its intercept A, slope B and straightness R.")) {
    setAccess(Access::Reads);
    positional(QStringLiteral("RUNNING_NUMBER"),
               QStringLiteral("The draw's running number, 1 for the first draw (0: the row before it)."),
               ValueKind::integer());
}

int AnalysisFitCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const int row = args.positionalInteger(0);
    if (row < 0 || row > s.drawCount())
        return ctx.fail(QStringLiteral("no draw %1: the history has %2 draws").arg(row).arg(s.drawCount()));
    const draw_params::LineFit fit =
        draw_params::lineFit(draw_params::frontOf(s.history().numbers[static_cast<size_t>(row)]));
    ctx.out << "A\tB\tR\n"
            << shortest(fit.A) << '\t' << shortest(fit.B) << '\t' << (fit.R ? shortest(*fit.R) : QString()) << '\n';
    return kDone;
}

AnalysisKLineCommand::AnalysisKLineCommand()
    : SessionCommand(QStringLiteral("analysis kline"),
                     QStringLiteral("--column NAME [--scope front|back|both] [--last N]"),
                     QStringLiteral("Prints a per-draw series and its weighted K line: a parameter column of the "
                                    "scope's table, or fig1..fig7 for the numbers by position.")) {
    setAccess(Access::Reads);
    option(kColumn, QStringLiteral("NAME"), QStringLiteral("A column such as Znum or Lcz1, or fig1..fig7."));
    option(kScope, QStringLiteral("SCOPE"), QStringLiteral("front (the default: fig), back (fighou) or both (figquan)."),
           ValueKind::oneOf(kScopes));
    option(kLast, QStringLiteral("N"), QStringLiteral("Only the last N draws; the K line is computed over all."),
           ValueKind::integer());
}

QString AnalysisKLineCommand::check(const Args& args) const {
    if (!args.has(kColumn)) return kColumnRequired;
    return lastProblem(args);
}

int AnalysisKLineCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const QString column = args.text(kColumn);
    const HistoryView scope = scopeOf(args);
    const DrawHistory& h = s.history();
    std::vector<double> series;
    static const QRegularExpression position(QStringLiteral("^fig([1-7])$"), QRegularExpression::CaseInsensitiveOption);
    if (const auto m = position.match(column); m.hasMatch()) {
        series = chart_lines::positionSeries(h, m.captured(1).toInt());
    } else if (auto values = trend_charts::columnSeries(h, scope, column)) {
        series = std::move(*values);
    } else {
        return ctx.fail(QStringLiteral("no column %1 in %2").arg(column, viewInfo(scope).drawTable));
    }
    const std::vector<int16_t> k = chart_lines::kLine(series);
    ctx.out << "Idx\tQihao\t" << column << "\tK\n";
    for (int i = firstRow(args, h.drawCount()); i <= h.drawCount(); ++i)
        ctx.out << i << '\t' << h.numbers[static_cast<size_t>(i)][0] << '\t'
                << shortest(series[static_cast<size_t>(i - 1)]) << '\t' << k[static_cast<size_t>(i - 1)] << '\n';
    return kDone;
}

AnalysisMeansCommand::AnalysisMeansCommand()
    : SessionCommand(QStringLiteral("analysis means"), {},
                     QStringLiteral("Prints the ideal mean of each position (the centre of its band of the zone) "
                                    "and its sample mean over every draw.")) {
    setAccess(Access::Reads);
}

int AnalysisMeansCommand::run(CliContext& ctx, Session& s, const Args&) const {
    // Twelve digits: 28 / 10 + 28 / 5 is 8.4 to the player, not 8.399999999999999.
    const auto mean = [](double v) { return QString::number(v, 'g', 12); };
    ctx.out << "Position\tIdeal\tSample\n";
    for (int p = 1; p <= 7; ++p)
        ctx.out << p << '\t' << mean(chart_lines::idealMean(p, s.frontSize(), s.backSize())) << '\t'
                << mean(chart_lines::sampleMean(s.history(), p)) << '\n';
    return kDone;
}

AnalysisCorrelationCommand::AnalysisCorrelationCommand()
    : SessionCommand(QStringLiteral("analysis correlation"), QStringLiteral("[--with N] [--scope front|back|both]"),
                     QStringLiteral("Prints how often two numbers came in one draw (below the diagonal: row "
                                    "with column); with --with, over the draws holding N, the pairs of the "
                                    "other numbers.")) {
    setAccess(Access::Reads);
    option(QStringLiteral("with"), QStringLiteral("N"), QStringLiteral("Count the draws that hold N."),
           ValueKind::integer());
    option(kScope, QStringLiteral("SCOPE"), QStringLiteral("front (the default), back or both."),
           ValueKind::oneOf(kScopes));
}

int AnalysisCorrelationCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const HistoryView scope = scopeOf(args);
    const int size = number_relations::gridSize(scope, s.frontSize(), s.backSize());
    NumberMatrix m;
    if (args.has(QStringLiteral("with"))) {
        const int x = args.integer(QStringLiteral("with"));
        if (x < 1 || x > size) return ctx.fail(QStringLiteral("请输入1~%1之间的数字").arg(size));
        m = number_relations::pairsWith(s.history(), scope, x);
    } else {
        m = number_relations::pairs(s.history(), scope);
    }
    printGrid(ctx, statistics_grids::correlation(m, size));
    return kDone;
}

AnalysisTransitionsCommand::AnalysisTransitionsCommand()
    : SessionCommand(QStringLiteral("analysis transitions"), QStringLiteral("--gap 1|2 [--scope front|back|both]"),
                     QStringLiteral("Prints how often each number (column) came GAP draws after each number "
                                    "(row), then the rows of the numbers whose followers come next and their "
                                    "total.")) {
    setAccess(Access::Reads);
    option(QStringLiteral("gap"), QStringLiteral("GAP"), QStringLiteral("1: the following draw; 2: one draw skipped."),
           ValueKind::oneOf({QStringLiteral("1"), QStringLiteral("2")}));
    option(kScope, QStringLiteral("SCOPE"), QStringLiteral("front (the default), back or both."),
           ValueKind::oneOf(kScopes));
}

int AnalysisTransitionsCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const HistoryView scope = scopeOf(args);
    const int size = number_relations::gridSize(scope, s.frontSize(), s.backSize());
    const int gap = args.choice(QStringLiteral("gap")) + 1;
    const NumberMatrix m = number_relations::transitions(s.history(), scope, gap);
    printGrid(ctx, statistics_grids::transitions(m, number_relations::followRows(s.history(), scope, gap, m, size),
                                                 size, gap));
    return kDone;
}

AnalysisMomentsCommand::AnalysisMomentsCommand()
    : SessionCommand(QStringLiteral("analysis moments"), {},
                     QStringLiteral("Prints the means, variances and central moments of the front positions "
                                    "about their sample and their ideal means; a row that divides by zero is "
                                    "empty.")) {
    setAccess(Access::Reads);
}

int AnalysisMomentsCommand::run(CliContext& ctx, Session& s, const Args&) const {
    printGrid(ctx, statistics_grids::moments(position_moments::compute(s.history(), s.frontSize(), s.backSize())));
    return kDone;
}

AnalysisDistributionCommand::AnalysisDistributionCommand()
    : SessionCommand(QStringLiteral("analysis distribution"), QStringLiteral("--column NAME [--scope front|back|both]"),
                     QStringLiteral("Prints how many draws have each value of a column of the scope's table "
                                    "(Qnum: the three decade counts, values 0 to 5).")) {
    setAccess(Access::Reads);
    option(kColumn, QStringLiteral("NAME"), QStringLiteral("A column such as Znum or fig1, or Qnum."));
    option(kScope, QStringLiteral("SCOPE"), QStringLiteral("front (the default: fig), back (fighou) or both (figquan)."),
           ValueKind::oneOf(kScopes));
}

QString AnalysisDistributionCommand::check(const Args& args) const {
    return args.has(kColumn) ? QString() : kColumnRequired;
}

int AnalysisDistributionCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const HistoryView scope = scopeOf(args);
    const QString column = args.text(kColumn);
    const bool decades = column.compare(QLatin1String("Qnum"), Qt::CaseInsensitive) == 0;
    if (!decades && param_distribution::storedColumn(s.historyDb(), scope, column).isEmpty())
        return ctx.fail(QStringLiteral("no column %1 in %2").arg(column, viewInfo(scope).drawTable));
    ctx.out << "Column\tValue\tDraws\n";
    for (const DistributionGroup& g : param_distribution::count(s.historyDb(), scope, column))
        for (const auto& [value, draws] : g.counts) ctx.out << g.column << '\t' << value << '\t' << draws << '\n';
    return kDone;
}

AnalysisTableCommand::AnalysisTableCommand()
    : SessionCommand(QStringLiteral("analysis table"), QStringLiteral("NAME [--sort COLUMN] [--scope front|back|both]"),
                     QStringLiteral("Prints a table of the history: NAME list (the parameter list, sorted by a "
                                    "column's stored value with --sort) or a tally table with its foot rows.")) {
    setAccess(Access::Reads);
    QStringList names{QStringLiteral("list")};
    for (const draw_tallies::KindInfo& k : draw_tallies::kinds()) names << QString::fromLatin1(k.name);
    positional(QStringLiteral("NAME"), names.join(QStringLiteral(", ")), ValueKind::oneOf(names));
    option(QStringLiteral("sort"), QStringLiteral("COLUMN"), QStringLiteral("A column of the list, such as Znum."));
    option(kScope, QStringLiteral("SCOPE"), QStringLiteral("front (the default: fig), back (fighou) or both (figquan)."),
           ValueKind::oneOf(kScopes));
}

int AnalysisTableCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const HistoryView scope = scopeOf(args);
    if (args.positional(0) != QLatin1String("list")) {
        const auto& kinds = draw_tallies::kinds();
        const auto k = std::find_if(kinds.begin(), kinds.end(),
                                    [&args](const draw_tallies::KindInfo& i) { return args.positional(0) == QLatin1String(i.name); });
        const int size = number_relations::gridSize(scope, s.frontSize(), s.backSize());
        printGrid(ctx, draw_tallies::asText(draw_tallies::build(s.history(), scope, size, k->kind)));
        return kDone;
    }
    const std::vector<ListColumn>& columns = param_lists::columns(scope);
    std::optional<int> sort;
    if (args.has(QStringLiteral("sort"))) {
        const QString name = args.text(QStringLiteral("sort"));
        const auto it = std::find_if(columns.begin(), columns.end(), [&name](const ListColumn& c) {
            return c.column.compare(name, Qt::CaseInsensitive) == 0;
        });
        if (it == columns.end())
            return ctx.fail(QStringLiteral("no column %1 in the list of %2").arg(name, viewInfo(scope).drawTable));
        sort = static_cast<int>(it - columns.begin());
    }
    QStringList heads;
    for (const ListColumn& c : columns) heads << c.head;
    ctx.out << heads.join(QLatin1Char('\t')) << '\n';
    for (const QVariantList& row : param_lists::rows(s.historyDb(), scope, sort)) {
        QStringList cells;
        for (const QVariant& v : row) cells << v.toString();
        ctx.out << cells.join(QLatin1Char('\t')) << '\n';
    }
    return kDone;
}
