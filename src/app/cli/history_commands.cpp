#include "app/cli/history_commands.h"

#include "app/cli/cli_context.h"
#include "history/cell_edit.h"
#include "history/draw_entry.h"
#include "history/history_actions.h"
#include "history/history_download.h"
#include "history/history_import.h"
#include "history/history_texts.h"
#include "history/history_views.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

namespace {

using Outcome = HistoryActionResult::Outcome;

const QString kHostHelp = QStringLiteral("The service host to download from.");

// A refusal; a write that failed also names the file and what the database said.
int refused(CliContext& ctx, Session& s) {
    if (ctx.prompter.messages().contains(history_texts::kWriteFailedText))
        ctx.err << QDir::toNativeSeparators(s.historyDb().path()) << ": " << s.historyDb().lastError()
                << Qt::endl;
    return Command::kRefused;
}

// A finished action: the count of draws on success, the messages (printed by main) and a
// refusal otherwise.
int finish(CliContext& ctx, const HistoryActionResult& r, Session& s, const QString& whenNothing) {
    if (r.done()) {
        ctx.out << s.drawCount() << '\n';
        return Command::kDone;
    }
    if (ctx.prompter.messages().isEmpty()) ctx.err << whenNothing << Qt::endl;
    return refused(ctx, s);
}

QStringList viewTables() {
    QStringList names;
    for (HistoryView v : kAllViews) names << viewInfo(v).drawTable;
    return names;
}

// A grid column by the name of its table column (fig0..fig7) or by its header.
int gridColumn(const QString& name) {
    const QString l = name.toLower();
    if (l.startsWith(QLatin1String("fig"))) {
        bool ok = false;
        const int slot = l.mid(3).toInt(&ok);
        if (ok && slot >= 0 && slot <= 7) return slot + 1;
    }
    const int header = static_cast<int>(cell_edit::headers().indexOf(name));
    return header >= cell_edit::kIssueColumn ? header : -1;
}

QString cellText(const QVariant& v) {
    switch (v.typeId()) {
        case QMetaType::UnknownType:
            return {};
        case QMetaType::Double:
            return QString::number(v.toDouble(), 'g', QLocale::FloatingPointShortest);
        default:
            return v.toString();
    }
}

}  // namespace

HistoryImportCommand::HistoryImportCommand()
    : SessionCommand(
          QStringLiteral("history import"), QStringLiteral("FILE [--append]"),
          QStringLiteral("Imports a history text file in place of the history, or after it; prints the "
                         "count of draws.")) {
    positional(QStringLiteral("FILE"), QStringLiteral("The .txt file, one draw a line."));
    flag(QStringLiteral("append"), QStringLiteral("Adds the draws after the newest one instead."));
}

int HistoryImportCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const QString file = QFileInfo(args.positional(0)).absoluteFilePath();
    const auto mode =
        args.has(QStringLiteral("append")) ? HistoryImport::Mode::Append : HistoryImport::Mode::Whole;
    HistoryImport import(s, ctx.prompter);
    ctx.prompter.answer(true).answer(file);
    HistoryActionResult r = import.run(mode);
    // The old copy of the file was moved aside: start again, as the player would.
    if (r.outcome == Outcome::StartAgain) {
        ctx.prompter.answer(true).answer(file);
        r = import.run(mode);
    }
    const int rc = finish(ctx, r, s, QStringLiteral("nothing imported: the file must be a .txt file"));
    if (rc != kDone) ctx.err << QStringLiteral("未导入，历史号码未作改动：") << file << Qt::endl;
    return rc;
}

HistoryAddCommand::HistoryAddCommand()
    : SessionCommand(
          QStringLiteral("history add"), QStringLiteral("N1 N2 N3 N4 N5 N6 N7"),
          QStringLiteral("Adds the newest draw, as typed into the entry row; prints the count of draws.")) {
    for (int i = 1; i <= DrawEntry::kBoxes; ++i)
        positional(QStringLiteral("N%1").arg(i),
                   i <= 5 ? QStringLiteral("Front number; _ for an empty position.")
                          : QStringLiteral("Back number; _ for an empty position."));
}

int HistoryAddCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    DrawEntry::Boxes boxes;
    for (int i = 0; i < DrawEntry::kBoxes; ++i) {
        // A number typed as one digit is given its leading 0; "_" stands for an empty position.
        QString t = args.positional(i);
        if (t.size() == 1 && t[0].isDigit()) t.prepend(QLatin1Char('0'));
        boxes[static_cast<size_t>(i)] = t;
    }
    return finish(ctx, DrawEntry(s, ctx.prompter).submit(boxes), s, QStringLiteral("nothing stored"));
}

HistoryEditCommand::HistoryEditCommand()
    : SessionCommand(QStringLiteral("history edit"), QStringLiteral("IDX COLUMN VALUE"),
                     QStringLiteral("Changes one cell of the history grid; the draw's parameters follow.")) {
    positional(QStringLiteral("IDX"), QStringLiteral("The draw's Idx."), ValueKind::integer());
    positional(QStringLiteral("COLUMN"), QStringLiteral("fig0 for the issue, fig1..fig7 for the numbers."));
    positional(QStringLiteral("VALUE"), QStringLiteral("The new text of the cell."));
}

int HistoryEditCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const int row = args.positionalInteger(0);
    const int column = gridColumn(args.positional(1));
    CellEdit edit(s, ctx.prompter);
    if (column < 0 || !edit.isEditable(row, column))
        return ctx.fail(QStringLiteral("no such cell: %1 %2").arg(args.positional(0), args.positional(1)));
    const CellEdit::Commit c = edit.commit(row, column, args.positional(2), CellEdit::Key::Enter);
    return c.result.done() ? kDone : refused(ctx, s);
}

HistoryDeleteLastCommand::HistoryDeleteLastCommand()
    : SessionCommand(QStringLiteral("history delete-last"), {},
                     QStringLiteral("Deletes the newest draw; prints the count of draws.")) {}

int HistoryDeleteLastCommand::run(CliContext& ctx, Session& s, const Args&) const {
    if (s.drawCount() == 0) return ctx.fail(QStringLiteral("the history holds no draw"));
    return finish(ctx, history_actions::deleteLast(s, ctx.prompter), s, QStringLiteral("nothing deleted"));
}

HistoryClearCommand::HistoryClearCommand()
    : SessionCommand(QStringLiteral("history clear"), {},
                     QStringLiteral("Clears the list of draws; prints the count of draws.")) {}

int HistoryClearCommand::run(CliContext& ctx, Session& s, const Args&) const {
    return finish(ctx, history_actions::clearList(s, ctx.prompter), s, QStringLiteral("nothing cleared"));
}

HistoryShowCommand::HistoryShowCommand()
    : SessionCommand(QStringLiteral("history show"), QStringLiteral("[--table fig|fighou|figquan]"),
                     QStringLiteral("Prints a draw table with every parameter column, oldest draw first.")) {
    setAccess(Access::Reads);
    option(QStringLiteral("table"), QStringLiteral("T"),
           QStringLiteral("fig (front zone, the default), fighou (back zone) or figquan (both)."),
           ValueKind::oneOf(viewTables()));
}

int HistoryShowCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const HistoryView view = kAllViews[static_cast<size_t>(args.choice(QStringLiteral("table")))];
    const QString name = viewInfo(view).drawTable;
    ctx.out << s.historyDb().columns(name).join(QLatin1Char('\t')) << '\n';
    SqliteStatement st(s.historyDb(), QStringLiteral("SELECT * FROM [%1] ORDER BY [Idx]").arg(name));
    if (!st.ok()) return ctx.fail(s.historyDb().lastError());
    while (st.next()) {
        QStringList cells;
        for (int c = 0; c < st.columnCount(); ++c) cells << cellText(st.value(c));
        ctx.out << cells.join(QLatin1Char('\t')) << '\n';
    }
    return kDone;
}

HistoryDownloadCommand::HistoryDownloadCommand()
    : SessionCommand(
          QStringLiteral("history download"), QStringLiteral("NAME [--host URL]"),
          QStringLiteral("Downloads the history text file of a game; prints where it was saved.")) {
    positional(QStringLiteral("NAME"), QStringLiteral("The game's name in the file name."));
    option(QStringLiteral("host"), QStringLiteral("URL"), kHostHelp);
}

int HistoryDownloadCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    HistoryDownload download(s, ctx.prompter);
    download.setHost(args.text(QStringLiteral("host")));
    const QString name = args.positional(0);
    const HistoryActionResult r = download.downloadText([&name] { return name; });
    if (!r.done()) return kRefused;
    ctx.out << r.path << '\n';
    return kDone;
}

HistoryDownloadDbCommand::HistoryDownloadDbCommand()
    : SessionCommand(QStringLiteral("history download-db"), QStringLiteral("[--host URL]"),
                     QStringLiteral("Downloads the history database; prints the count of draws.")) {
    option(QStringLiteral("host"), QStringLiteral("URL"), kHostHelp);
}

int HistoryDownloadDbCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    HistoryDownload download(s, ctx.prompter);
    download.setHost(args.text(QStringLiteral("host")));
    return finish(ctx, download.downloadDatabase(), s, QStringLiteral("nothing downloaded"));
}

StatsShowCommand::StatsShowCommand()
    : SessionCommand(QStringLiteral("stats show"), QStringLiteral("[--view front|back|both]"),
                     QStringLiteral("Prints each number's omission, frequency and share of the draws.")) {
    setAccess(Access::Reads);
    option(QStringLiteral("view"), QStringLiteral("ZONE"),
           QStringLiteral("front (the default), back or both."),
           ValueKind::oneOf({QStringLiteral("front"), QStringLiteral("back"), QStringLiteral("both")}));
}

int StatsShowCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const HistoryView view = kAllViews[static_cast<size_t>(args.choice(QStringLiteral("view")))];
    const NumberStats& st = statsOf(s.stats(), view);
    const int last = view == HistoryView::Back ? s.backSize() : s.frontSize();
    ctx.out << "Number\tYlqs\tGlnum\tgailv\n";
    for (int n = 1; n <= last; ++n)
        ctx.out << n << '\t' << st.omission[n] << '\t' << st.frequency[n] << '\t'
                << QString::number(st.percent[n], 'g', QLocale::FloatingPointShortest) << '\n';
    return kDone;
}
