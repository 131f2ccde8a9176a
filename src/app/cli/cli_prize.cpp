// prize rules show|set, prize check, prize list; report write|list|show
#include "app/cli/cli.h"

#include "prize/prize_report.h"
#include "prize/prize_rules.h"
#include "prize/prize_session.h"
#include "prize/report_book.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <optional>

namespace {

using Kind = schema::CandidateKind;

// --table T, zuhe when absent; nullopt after printing an error.
std::optional<Kind> tableOption(CliContext& ctx, const QStringList& args) {
    bool found = false;
    const QString name = cliargs::option(args, QStringLiteral("--table"), &found);
    if (!found) return Kind::Zuhe;
    for (Kind k : {Kind::Zuhe, Kind::ZuheRote, Kind::ZuheMoban, Kind::ZuheRead, Kind::Zuhef})
        if (schema::candidateTableName(k).compare(name, Qt::CaseInsensitive) == 0) return k;
    ctx.fail(QStringLiteral("--table: zuhe, zuheRote, zuheRead, zuheMoban or zuhef"));
    return std::nullopt;
}

std::unique_ptr<PrizeView> openView(CliContext& ctx, Session& s, Kind kind) {
    prize_session::Opened o = prize_session::open(s, kind);
    for (const QString& p : o.ruleProblems) ctx.err << "prize rule value is no number: " << p << '\n';
    return std::move(o.view);
}

int rulesShow(CliContext& ctx, Session& s) {
    const PrizeRules rules = prize_session::settingsOf(s).read().rules;
    ctx.out << "slot\tfront\tback\tMoney\tPrizerank\n";
    for (int n = 1; n <= prize::kSlots; ++n) {
        const PrizeSlot& slot = rules.slot(n);
        ctx.out << n << '\t' << slot.front << '\t' << slot.back << '\t' << slot.money << '\t' << slot.rank
                << '\n';
    }
    return 0;
}

int rulesSet(CliContext& ctx, Session& s, const QStringList& args) {
    const QString usage =
        QStringLiteral("usage: prize rules set SLOT [--front 0..5] [--back 0..2] [--money M] [--rank TEXT]");
    bool ok = false;
    const int n = args.value(2).toInt(&ok);
    if (!ok || n < 1 || n > prize::kSlots) return ctx.fail(usage);
    const auto number = [&](const char* name, int lo, int hi, std::optional<int>* out) {
        bool found = false;
        const QString text = cliargs::option(args, QString::fromLatin1(name), &found);
        if (!found) return true;
        bool good = false;
        const qlonglong v = text.toLongLong(&good);
        if (!good || v < lo || v > hi) return false;
        *out = static_cast<int>(v);
        return true;
    };
    std::optional<int> front, back, money;
    if (!number("--front", 0, prize::kFrontMax, &front) || !number("--back", 0, prize::kBackMax, &back) ||
        !number("--money", INT32_MIN, INT32_MAX, &money))
        return ctx.fail(usage);
    bool hasRank = false;
    const QString rank = cliargs::option(args, QStringLiteral("--rank"), &hasRank);
    if (hasRank && rank.isEmpty()) return ctx.fail(QStringLiteral("a level's name is not empty"));
    if (!front && !back && !money && !hasRank) return ctx.fail(usage);
    PrizeSettings settings = prize_session::settingsOf(s);
    if (front) settings.writeFront(n, *front);
    if (back) settings.writeBack(n, *back);
    if (money) settings.writeMoney(n, *money);
    if (hasRank) settings.writeRank(n, rank);
    return 0;
}

int check(CliContext& ctx, const PrizeView& v) {
    if (v.sixNumbers()) {
        ctx.out << "kept\t" << v.kept().size() << "\nrequired\t" << v.required() << '\n';
        return 0;
    }
    ctx.out << "level\tkept\tfiltered\n";
    for (int row = 1; row < PrizeView::kSummaryThrownHead && !v.summaryCell(row, 0).isEmpty(); ++row)
        ctx.out << v.summaryCell(row, 0) << '\t' << v.summaryCell(row, 1) << '\t'
                << v.summaryCell(PrizeView::kSummaryThrownHead + row, 1) << '\n';
    ctx.out << "required\t" << v.required() << "\nincome\t" << v.income() << "\nresult\t" << v.result()
            << '\n';
    return 0;
}

QString cell(const PrizeView& v, const PrizeListColumn& c, uint64_t row) {
    const CandidateTable& t = *v.table();
    switch (c.what) {
        case PrizeColumn::Idx:
            return QString::number(t.idxAt(row));
        case PrizeColumn::Fig:
            return QString::number(t.fig(c.fig)[row]);
        case PrizeColumn::Jiben:
            return QString::number(v.check().jiben(row));
        case PrizeColumn::Tebie:
            return QString::number(v.check().tebie(row));
        case PrizeColumn::Jiang:
            return v.check().jiang(row).value_or(QString());
        case PrizeColumn::Jing: {
            const std::optional<int32_t> m = v.check().jing(row);
            return m ? QString::number(*m) : QString();
        }
        case PrizeColumn::Fliter:
            return t.reasonText(row);
    }
    return {};
}

// The schema's names of the list columns.
QString columnName(const PrizeListColumn& c) {
    switch (c.what) {
        case PrizeColumn::Idx:
            return QStringLiteral("idx");
        case PrizeColumn::Fig:
            return QStringLiteral("fig%1").arg(c.fig);
        case PrizeColumn::Jiben:
            return QStringLiteral("jiben");
        case PrizeColumn::Tebie:
            return QStringLiteral("tebie");
        case PrizeColumn::Jiang:
            return QStringLiteral("jiang");
        case PrizeColumn::Jing:
            return QStringLiteral("jing");
        case PrizeColumn::Fliter:
            return QStringLiteral("fliter");
    }
    return {};
}

int list(CliContext& ctx, PrizeView& v, const QStringList& args) {
    const bool filtered = cliargs::flag(args, QStringLiteral("--filtered"));
    if (filtered && v.sixNumbers()) return ctx.fail(QStringLiteral("zuhef's check lists the kept rows only"));
    if (cliargs::flag(args, QStringLiteral("--sorted"))) v.sortByHits();
    const QList<PrizeListColumn> cols = filtered ? v.thrownColumns() : v.keptColumns();
    const TicketList& rows = filtered ? v.thrown() : v.kept();
    QStringList head;
    for (const PrizeListColumn& c : cols) head << columnName(c);
    ctx.out << head.join(QLatin1Char('\t')) << '\n';
    for (uint64_t k = 0; k < rows.size(); ++k) {
        QStringList line;
        for (const PrizeListColumn& c : cols) line << cell(v, c, rows.row(k));
        ctx.out << line.join(QLatin1Char('\t')) << '\n';
    }
    return 0;
}

int prizeCommand(CliContext& ctx, const QStringList& args) {
    const QString sub = args.value(0);
    if (sub != QLatin1String("rules") && sub != QLatin1String("check") && sub != QLatin1String("list"))
        return ctx.fail(QStringLiteral("usage: prize rules show|set, prize check, prize list"));
    Session* s = ctx.session();
    if (!s) return 1;
    if (sub == QLatin1String("rules")) {
        if (args.value(1) == QLatin1String("show")) return rulesShow(ctx, *s);
        if (args.value(1) == QLatin1String("set")) return rulesSet(ctx, *s, args);
        return ctx.fail(QStringLiteral("usage: prize rules show|set"));
    }
    const std::optional<Kind> kind = tableOption(ctx, args);
    if (!kind) return 1;
    std::unique_ptr<PrizeView> v = openView(ctx, *s, *kind);
    return sub == QLatin1String("check") ? check(ctx, *v) : list(ctx, *v, args);
}

int reportCommand(CliContext& ctx, const QStringList& args) {
    const QString sub = args.value(0);
    if (sub != QLatin1String("write") && sub != QLatin1String("list") && sub != QLatin1String("show"))
        return ctx.fail(QStringLiteral("usage: report write [--table T], report list, report show FILE"));
    Session* s = ctx.session();
    if (!s) return 1;
    const QString folder = prize_session::workspaceFolder(*s);
    if (sub == QLatin1String("write")) {
        const std::optional<Kind> kind = tableOption(ctx, args);
        if (!kind) return 1;
        if (*kind == Kind::Zuhef) return ctx.fail(QStringLiteral("zuhef's check writes no report"));
        std::unique_ptr<PrizeView> v = openView(ctx, *s, *kind);
        const prize_report::WriteResult r = prize_report::write(folder, *v, QDateTime::currentDateTime());
        if (!r.ok) return ctx.fail(r.error);
        ctx.out << r.path << '\n';
        return 0;
    }
    if (sub == QLatin1String("list")) {
        ReportBook book(folder, s->settings(), s->curuser());
        book.load();
        ctx.out << "file\titem\n";
        for (const ReportBook::Item& item : book.items())
            ctx.out << QFileInfo(item.path).fileName() << '\t' << item.text << '\n';
        return 0;
    }
    const QString name = args.value(1);
    if (name.isEmpty()) return ctx.fail(QStringLiteral("usage: report show FILE"));
    // A bare name is looked up in duijiang/, a path is taken as it is.
    const QString path = name.contains(QLatin1Char('/'))
                             ? name
                             : QDir(QDir(folder).filePath(prize_report::kFolder)).filePath(name);
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return ctx.fail(QStringLiteral("cannot read %1").arg(path));
    ctx.out << QString::fromUtf8(f.readAll());
    return 0;
}

const CliGroupRegistrar prizeGroup(
    {QStringLiteral("prize"),
     QStringLiteral("  prize rules show\n"
                    "  prize rules set SLOT [--front F] [--back B] [--money M] [--rank TEXT]\n"
                    "  prize check [--table T]\n"
                    "  prize list [--table T] [--kept|--filtered] [--sorted]\n"),
     prizeCommand});
const CliGroupRegistrar reportGroup({QStringLiteral("report"),
                                     QStringLiteral("  report write [--table T]\n"
                                                    "  report list\n"
                                                    "  report show FILE\n"),
                                     reportCommand});

}  // namespace
