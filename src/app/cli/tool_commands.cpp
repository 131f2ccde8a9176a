#include "app/cli/tool_commands.h"

#include "app/cli/cli_context.h"
#include "app/cli/cli_tables.h"
#include "tools/pages/ticket_pages.h"
#include "tools/ticket_print.h"
#include "workspace/session.h"

#include <QDateTime>
#include <QGuiApplication>
#include "tools/fortune.h"

namespace {

const QString kBirth = QStringLiteral("birth");
const QString kDate = QStringLiteral("date");
const QString kType = QStringLiteral("type");
const QString kCurves = QStringLiteral("curves");

QString dateProblem(const Args& args, const QString& option) {
    if (!args.has(option) || fortune::parseDate(args.text(option)).isValid()) return {};
    return QStringLiteral("--%1: %2 is not a date (YYYY-MM-DD)").arg(option, args.text(option));
}

void printCurves(CliContext& ctx, const QDate& day, const fortune::Curves& c) {
    ctx.out << "day\tdate\tc23\tc28\tc33\ttotal\n";
    for (size_t i = 0; i < static_cast<size_t>(fortune::kDays); ++i)
        ctx.out << i << '\t' << day.addDays(static_cast<qint64>(i)).toString(Qt::ISODate) << '\t' << c.c23[i]
                << '\t' << c.c28[i] << '\t' << c.c33[i] << '\t' << c.total[i] << '\n';
}

}  // namespace

FortuneCommand::FortuneCommand()
    : Command(QStringLiteral("fortune"), QStringLiteral("--birth YYYY-MM-DD [--date YYYY-MM-DD] [--type 1..4] [--curves]"),
              QStringLiteral("Prints the day's fortune for buying tickets, its popularity value and its word; "
                             "--curves prints the curves of the 361 days from the date instead.")) {
    setAccess(Access::Reads);
    option(kBirth, QStringLiteral("YYYY-MM-DD"), QStringLiteral("The player's birthday."));
    option(kDate, QStringLiteral("YYYY-MM-DD"), QStringLiteral("The day to read (default: today)."));
    option(kType, QStringLiteral("1..4"),
           QStringLiteral("The personality: 1 冲动型, 2 理智型, 3 情绪型, 4 普通型 (default 4)."),
           ValueKind::oneOf({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4")}));
    flag(kCurves, QStringLiteral("Print the curves of the days 0..360 as a table."));
}

QString FortuneCommand::check(const Args& args) const {
    if (!args.has(kBirth)) return QStringLiteral("--birth is required");
    const QString birth = dateProblem(args, kBirth);
    return birth.isEmpty() ? dateProblem(args, kDate) : birth;
}

int FortuneCommand::execute(CliContext& ctx, const Args& args) const {
    const QDate birth = fortune::parseDate(args.text(kBirth));
    const QDate day = args.has(kDate) ? fortune::parseDate(args.text(kDate)) : QDate::currentDate();
    const auto type = fortune::personalityFromNumber(args.choice(kType, 3) + 1);
    const std::optional<fortune::Reading> r = fortune::read(birth, day, type.value_or(fortune::kDefaultPersonality));
    if (!r) return ctx.fail(QStringLiteral("输入时间必须比您的生日大,请重新输入"));
    if (args.has(kCurves)) {
        printCurves(ctx, day, r->curves);
        return kDone;
    }
    ctx.out << "fortune\t" << QString::number(r->fortune, 'f', 3) << "\npopularity\t" << r->popularity
            << "\nword\t" << r->word << '\n';
    return kDone;
}

PrintTicketsCommand::PrintTicketsCommand()
    : SessionCommand(QStringLiteral("print tickets"),
                     QStringLiteral("[--table T] [--per-line N] (--pdf FILE | --text FILE)"),
                     QStringLiteral("Writes the kept tickets of a table as the printed list: the draw they are "
                                    "for, the tickets N to the line (default: the workspace's setting), the time.")) {
    setAccess(Access::Reads);
    options({cli_tables::storedTableOption()});
    option(QStringLiteral("per-line"), QStringLiteral("N"), QStringLiteral("Tickets to a line, from 1."),
           ValueKind::integer());
    option(QStringLiteral("pdf"), QStringLiteral("FILE"), QStringLiteral("The PDF to write: the list on A4 pages."));
    option(QStringLiteral("text"), QStringLiteral("FILE"),
           QStringLiteral("The text file to write, as Print.txt is written (the time last)."));
}

QString PrintTicketsCommand::check(const Args& args) const {
    if (args.text(QStringLiteral("text")).isEmpty() == args.text(QStringLiteral("pdf")).isEmpty())
        return QStringLiteral("give --pdf FILE or --text FILE");
    if (args.has(QStringLiteral("per-line")) && args.integer(QStringLiteral("per-line")) < 1)
        return QStringLiteral("--per-line: a number from 1");
    return {};
}

int PrintTicketsCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const bool pdf = args.has(QStringLiteral("pdf"));
    const QString file = args.text(pdf ? QStringLiteral("pdf") : QStringLiteral("text"));
    const int perLine = args.integer(QStringLiteral("per-line"), s.ticketsPerLine());
    // Pages are laid out with fonts, which only a Qt Gui application has (the program makes one
    // when --pdf is given).
    if (pdf && !qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return ctx.fail(QStringLiteral("--pdf: no fonts to lay out pages with"));
    const auto table = cli_tables::loadStored(ctx, s, cli_tables::storedTable(args));
    if (!table) return kRefused;
    const ticket_print::Document d = ticket_print::build(
        ticket_print::liveTickets(*table), perLine, static_cast<qint64>(s.history().lastIssue()) + 1,
        QDateTime::currentDateTime());
    QString error;
    if (!(pdf ? ticket_pages::writePdf(d, file, &error) : ticket_print::writeTextFile(file, d, &error)))
        return ctx.fail(QStringLiteral("%1: %2").arg(file, error));
    ctx.out << table->liveCount() << '\n';
    return kDone;
}
