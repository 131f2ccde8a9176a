#include "app/cli/prize_commands.h"

#include "app/cli/cli_context.h"
#include "app/cli/cli_tables.h"
#include "prize/prize_report.h"
#include "prize/prize_rules.h"
#include "prize/prize_session.h"
#include "prize/report_book.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

using cli_tables::Kind;

std::unique_ptr<PrizeView> openView(CliContext& ctx, Session& s, Kind kind) {
    prize_session::Opened o = prize_session::open(s, kind);
    for (const QString& p : o.ruleProblems) ctx.err << "prize rule value is no number: " << p << '\n';
    if (!o.loadError.isEmpty()) {
        ctx.fail(o.loadError);
        return nullptr;
    }
    return std::move(o.view);
}

int printCheck(CliContext& ctx, const PrizeView& v) {
    if (v.sixNumbers()) {
        ctx.out << "kept\t" << v.kept().size() << "\nrequired\t" << v.required() << '\n';
        return Command::kDone;
    }
    ctx.out << "level\tkept\tfiltered\n";
    for (int row = 1; row < PrizeView::kSummaryThrownHead && !v.summaryCell(row, 0).isEmpty(); ++row)
        ctx.out << v.summaryCell(row, 0) << '\t' << v.summaryCell(row, 1) << '\t'
                << v.summaryCell(PrizeView::kSummaryThrownHead + row, 1) << '\n';
    ctx.out << "required\t" << v.required() << "\nincome\t" << v.income() << "\nresult\t" << v.result()
            << '\n';
    return Command::kDone;
}

QString cell(const PrizeView& v, const PrizeListColumn& c, uint64_t row) {
    const CandidateTable& t = *v.table();
    switch (c.what) {
        case PrizeColumn::Idx:
            return QString::number(t.idxAt(row));
        case PrizeColumn::Number:
            return QString::number(t.numberColumn(c.numberColumn)[row]);
        case PrizeColumn::FrontHits:
            return QString::number(v.check().frontHits(row));
        case PrizeColumn::BackHits:
            return QString::number(v.check().backHits(row));
        case PrizeColumn::PrizeLevel:
            return v.check().prizeLevel(row).value_or(QString());
        case PrizeColumn::PrizeAmount: {
            const std::optional<int32_t> m = v.check().prizeAmount(row);
            return m ? QString::number(*m) : QString();
        }
        case PrizeColumn::Reason:
            return t.reasonText(row);
    }
    return {};
}

// The schema's names of the list columns.
QString columnName(const PrizeListColumn& c) {
    switch (c.what) {
        case PrizeColumn::Idx:
            return QStringLiteral("idx");
        case PrizeColumn::Number:
            return QStringLiteral("fig%1").arg(c.numberColumn);
        case PrizeColumn::FrontHits:
            return QStringLiteral("jiben");
        case PrizeColumn::BackHits:
            return QStringLiteral("tebie");
        case PrizeColumn::PrizeLevel:
            return QStringLiteral("jiang");
        case PrizeColumn::PrizeAmount:
            return QStringLiteral("jing");
        case PrizeColumn::Reason:
            return QStringLiteral("fliter");
    }
    return {};
}

}  // namespace

PrizeRulesShowCommand::PrizeRulesShowCommand()
    : SessionCommand(QStringLiteral("prize rules show"), {},
                     QStringLiteral("Prints the prize table: hits of each level, its money and its name.")) {
    setAccess(Access::Reads);
}

int PrizeRulesShowCommand::run(CliContext& ctx, Session& s, const Args&) const {
    const PrizeRules rules = prize_session::settingsOf(s).read().rules;
    ctx.out << "slot\tfront\tback\tMoney\tPrizerank\n";
    for (int n = 1; n <= prize_rules::kSlots; ++n) {
        const PrizeSlot& slot = rules.slot(n);
        ctx.out << n << '\t' << slot.front << '\t' << slot.back << '\t' << slot.money << '\t' << slot.rank
                << '\n';
    }
    return kDone;
}

PrizeRulesSetCommand::PrizeRulesSetCommand()
    : SessionCommand(QStringLiteral("prize rules set"),
                     QStringLiteral("SLOT [--front 0..5] [--back 0..2] [--money M] [--rank TEXT]"),
                     QStringLiteral("Changes one level of the prize table.")) {
    positional(QStringLiteral("SLOT"), QStringLiteral("The level's slot, 1 to %1.").arg(prize_rules::kSlots),
               ValueKind::integer());
    option(QStringLiteral("front"), QStringLiteral("N"), QStringLiteral("Front hits of the level."),
           ValueKind::integer());
    option(QStringLiteral("back"), QStringLiteral("N"), QStringLiteral("Back hits of the level."),
           ValueKind::integer());
    option(QStringLiteral("money"), QStringLiteral("M"), QStringLiteral("Its money in yuan."),
           ValueKind::integer());
    option(QStringLiteral("rank"), QStringLiteral("TEXT"), QStringLiteral("Its name, as 1等奖."));
}

QString PrizeRulesSetCommand::check(const Args& args) const {
    for (const char* o : {"front", "back", "money", "rank"})
        if (args.has(QString::fromLatin1(o))) return {};
    return QStringLiteral("give --front, --back, --money or --rank");
}

int PrizeRulesSetCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const int n = args.positionalInteger(0);
    if (n < 1 || n > prize_rules::kSlots)
        return ctx.fail(QStringLiteral("SLOT: 1 to %1").arg(prize_rules::kSlots));
    const auto within = [&](const QString& option, int hi) {
        const int v = args.integer(option);
        return !args.has(option) || (v >= 0 && v <= hi);
    };
    if (!within(QStringLiteral("front"), prize_rules::kFrontMax) ||
        !within(QStringLiteral("back"), prize_rules::kBackMax))
        return ctx.fail(QStringLiteral("--front: 0 to %1, --back: 0 to %2")
                            .arg(prize_rules::kFrontMax)
                            .arg(prize_rules::kBackMax));
    const bool hasRank = args.has(QStringLiteral("rank"));
    if (hasRank && args.text(QStringLiteral("rank")).isEmpty())
        return ctx.fail(QStringLiteral("a level's name is not empty"));
    PrizeSettings settings = prize_session::settingsOf(s);
    PrizeSettings::SlotChange change;
    const auto given = [&](const char* o) -> std::optional<int> {
        const QString option = QString::fromLatin1(o);
        return args.has(option) ? std::optional<int>(args.integer(option)) : std::nullopt;
    };
    change.front = given("front");
    change.back = given("back");
    change.money = given("money");
    if (hasRank) change.rank = args.text(QStringLiteral("rank"));
    return settings.writeSlot(n, change) ? kDone : ctx.fail(settings.saveFailedText());
}

PrizeCheckCommand::PrizeCheckCommand()
    : SessionCommand(
          QStringLiteral("prize check"), QStringLiteral("[--table T]"),
          QStringLiteral("Checks the tickets against the newest draw; prints the hits of each level, kept "
                         "and filtered out, and the money.")) {
    setAccess(Access::Reads);
    options({cli_tables::storedTableOption()});
}

int PrizeCheckCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const std::unique_ptr<PrizeView> v = openView(ctx, s, cli_tables::storedTable(args));
    return v ? printCheck(ctx, *v) : kRefused;
}

PrizeListCommand::PrizeListCommand()
    : SessionCommand(QStringLiteral("prize list"),
                     QStringLiteral("[--table T] [--kept|--filtered] [--sorted]"),
                     QStringLiteral("Prints the checked tickets with their hits, level and money.")) {
    setAccess(Access::Reads);
    options({cli_tables::storedTableOption()});
    flag(QStringLiteral("kept"), QStringLiteral("The live tickets (the default)."));
    flag(QStringLiteral("filtered"), QStringLiteral("The tickets filtered out, with their reason."));
    flag(QStringLiteral("sorted"), QStringLiteral("Most hits first."));
}

QString PrizeListCommand::check(const Args& args) const {
    if (args.has(QStringLiteral("kept")) && args.has(QStringLiteral("filtered")))
        return QStringLiteral("give --kept or --filtered, not both");
    return {};
}

int PrizeListCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    std::unique_ptr<PrizeView> v = openView(ctx, s, cli_tables::storedTable(args));
    if (!v) return kRefused;
    const bool filtered = args.has(QStringLiteral("filtered"));
    if (filtered && v->sixNumbers())
        return ctx.fail(QStringLiteral("zuhef's check lists the kept rows only"));
    if (args.has(QStringLiteral("sorted"))) v->sortByHits();
    const QList<PrizeListColumn> cols = filtered ? v->thrownColumns() : v->keptColumns();
    const TicketList& rows = filtered ? v->thrown() : v->kept();
    QStringList head;
    for (const PrizeListColumn& c : cols) head << columnName(c);
    ctx.out << head.join(QLatin1Char('\t')) << '\n';
    for (uint64_t k = 0; k < rows.size(); ++k) {
        QStringList line;
        for (const PrizeListColumn& c : cols) line << cell(*v, c, rows.row(k));
        ctx.out << line.join(QLatin1Char('\t')) << '\n';
    }
    return kDone;
}

ReportWriteCommand::ReportWriteCommand()
    : SessionCommand(QStringLiteral("report write"), QStringLiteral("[--table T]"),
                     QStringLiteral("Adds the prize check to the report (兑奖); prints the file written.")) {
    options({cli_tables::storedTableOption()});
}

int ReportWriteCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const Kind kind = cli_tables::storedTable(args);
    if (kind == Kind::SixNumbers) return ctx.fail(QStringLiteral("zuhef's check writes no report"));
    std::unique_ptr<PrizeView> v = openView(ctx, s, kind);
    if (!v) return kRefused;
    const prize_report::WriteResult r =
        prize_report::write(prize_session::workspaceFolder(s), *v, QDateTime::currentDateTime());
    if (!r.ok) return ctx.fail(r.error);
    ctx.out << r.path << '\n';
    return kDone;
}

ReportListCommand::ReportListCommand()
    : SessionCommand(QStringLiteral("report list"), {},
                     QStringLiteral("Prints the report files with their items.")) {
    setAccess(Access::Reads);
}

int ReportListCommand::run(CliContext& ctx, Session& s, const Args&) const {
    ReportBook book(prize_session::workspaceFolder(s), s.settings(), s.workspaceName());
    book.load();
    ctx.out << "file\titem\n";
    for (const ReportBook::Item& item : book.items())
        ctx.out << QFileInfo(item.path).fileName() << '\t' << item.text << '\n';
    return kDone;
}

ReportShowCommand::ReportShowCommand()
    : SessionCommand(QStringLiteral("report show"), QStringLiteral("FILE"),
                     QStringLiteral("Prints a report file.")) {
    setAccess(Access::Reads);
    positional(QStringLiteral("FILE"), QStringLiteral("A file name of `report list`, or a path."));
}

int ReportShowCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const QString name = args.positional(0);
    // A bare name is looked up in duijiang/, a path is taken as it is.
    const QString path =
        name.contains(QLatin1Char('/'))
            ? name
            : QDir(QDir(prize_session::workspaceFolder(s)).filePath(prize_report::kFolder)).filePath(name);
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return ctx.fail(QStringLiteral("cannot read %1").arg(path));
    ctx.out << QString::fromUtf8(f.readAll());
    return kDone;
}
