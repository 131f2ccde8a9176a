// history import|add|edit|delete-last|clear|show|download|download-db, stats show
#include "app/cli/cli.h"

#include "history/cell_edit.h"
#include "history/draw_entry.h"
#include "history/history_actions.h"
#include "history/history_download.h"
#include "history/history_import.h"
#include "history/history_views.h"

#include <QFileInfo>
#include <QLocale>

namespace {

using Outcome = HistoryActionResult::Outcome;

// A finished action: the count of draws on success, the messages (printed by main) and a
// non-zero exit otherwise.
int finish(CliContext& ctx, const HistoryActionResult& r, Session& s, const QString& whenNothing) {
    if (r.done()) {
        ctx.out << s.drawnum() << '\n';
        return 0;
    }
    if (ctx.prompter.messages().isEmpty()) ctx.err << whenNothing << Qt::endl;
    return 1;
}

int importCommand(CliContext& ctx, Session& s, const QStringList& args) {
    if (args.size() < 2) return ctx.fail(QStringLiteral("usage: history import FILE [--append]"));
    const QString file = QFileInfo(args[1]).absoluteFilePath();
    const auto mode = cliargs::flag(args, QStringLiteral("--append")) ? HistoryImport::Mode::Append
                                                                      : HistoryImport::Mode::Whole;
    HistoryImport import(s, ctx.prompter);
    ctx.prompter.answer(true).answer(file);
    HistoryActionResult r = import.run(mode);
    // The old copy of the file was moved aside: start again, as the player would.
    if (r.outcome == Outcome::StartAgain) {
        ctx.prompter.answer(true).answer(file);
        r = import.run(mode);
    }
    return finish(ctx, r, s, QStringLiteral("nothing imported: the file must be a .txt file"));
}

int addCommand(CliContext& ctx, Session& s, const QStringList& args) {
    if (args.size() != 1 + DrawEntry::kBoxes)
        return ctx.fail(QStringLiteral("usage: history add N1 N2 N3 N4 N5 N6 N7"));
    DrawEntry::Boxes boxes;
    for (int i = 0; i < DrawEntry::kBoxes; ++i) {
        // A number typed as one digit is given its leading 0; "_" stands for an empty position.
        QString t = args[i + 1];
        if (t.size() == 1 && t[0].isDigit()) t.prepend(QLatin1Char('0'));
        boxes[i] = t;
    }
    return finish(ctx, DrawEntry(s, ctx.prompter).submit(boxes), s, QStringLiteral("nothing stored"));
}

// A grid column by the name of its table column (fig0..fig7) or by its header.
int gridColumn(const QString& name) {
    const QString l = name.toLower();
    if (l.startsWith(QLatin1String("fig"))) {
        bool ok = false;
        const int slot = l.mid(3).toInt(&ok);
        if (ok && slot >= 0 && slot <= 7) return slot + 1;
    }
    const int header = static_cast<int>(history_grid::headers().indexOf(name));
    return header >= history_grid::kIssueColumn ? header : -1;
}

int editCommand(CliContext& ctx, Session& s, const QStringList& args) {
    if (args.size() != 4)
        return ctx.fail(QStringLiteral("usage: history edit IDX COLUMN VALUE (COLUMN fig0..fig7)"));
    bool ok = false;
    const int row = args[1].toInt(&ok);
    const int column = gridColumn(args[2]);
    CellEdit edit(s, ctx.prompter);
    if (!ok || column < 0 || !edit.isEditable(row, column))
        return ctx.fail(QStringLiteral("no such cell: %1 %2").arg(args[1], args[2]));
    const CellEdit::Commit c = edit.commit(row, column, args[3], CellEdit::Key::Enter);
    return c.result.done() ? 0 : 1;
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

int showCommand(CliContext& ctx, Session& s, const QStringList& args) {
    bool given = false;
    const QString table = cliargs::option(args, QStringLiteral("--table"), &given);
    HistoryView view = HistoryView::Front;
    if (given) {
        bool known = false;
        for (HistoryView v : kAllViews) {
            if (viewInfo(v).drawTable.compare(table, Qt::CaseInsensitive) == 0) {
                view = v;
                known = true;
            }
        }
        if (!known) return ctx.fail(QStringLiteral("usage: history show [--table fig|fighou|figquan]"));
    }
    const QString name = viewInfo(view).drawTable;
    ctx.out << s.lsdb().columns(name).join(QLatin1Char('\t')) << '\n';
    SqliteStatement st(s.lsdb(), QStringLiteral("SELECT * FROM [%1] ORDER BY [Idx]").arg(name));
    if (!st.ok()) return ctx.fail(s.lsdb().lastError());
    while (st.next()) {
        QStringList cells;
        for (int c = 0; c < st.columnCount(); ++c) cells << cellText(st.value(c));
        ctx.out << cells.join(QLatin1Char('\t')) << '\n';
    }
    return 0;
}

int downloadCommand(CliContext& ctx, Session& s, const QStringList& args, bool database) {
    HistoryDownload download(s, ctx.prompter);
    download.setHost(cliargs::option(args, QStringLiteral("--host")));
    if (database) return finish(ctx, download.downloadDatabase(), s, QStringLiteral("nothing downloaded"));
    if (args.size() < 2 || args[1].startsWith(QLatin1String("--")))
        return ctx.fail(QStringLiteral("usage: history download NAME [--host URL]"));
    const QString name = args[1];
    const HistoryActionResult r = download.downloadText([&name] { return name; });
    if (!r.done()) return 1;
    ctx.out << r.path << '\n';
    return 0;
}

int historyCommand(CliContext& ctx, const QStringList& args) {
    const QString sub = args.value(0);
    Session* s = ctx.session();
    if (!s) return 1;
    if (sub == QLatin1String("import")) return importCommand(ctx, *s, args);
    if (sub == QLatin1String("add")) return addCommand(ctx, *s, args);
    if (sub == QLatin1String("edit")) return editCommand(ctx, *s, args);
    if (sub == QLatin1String("delete-last")) {
        if (s->drawnum() == 0) return ctx.fail(QStringLiteral("the history holds no draw"));
        return finish(ctx, history_actions::deleteLast(*s, ctx.prompter), *s,
                      QStringLiteral("nothing deleted"));
    }
    if (sub == QLatin1String("clear"))
        return finish(ctx, history_actions::clearList(*s, ctx.prompter), *s,
                      QStringLiteral("nothing cleared"));
    if (sub == QLatin1String("show")) return showCommand(ctx, *s, args);
    if (sub == QLatin1String("download")) return downloadCommand(ctx, *s, args, false);
    if (sub == QLatin1String("download-db")) return downloadCommand(ctx, *s, args, true);
    return ctx.fail(
        QStringLiteral("usage: history import|add|edit|delete-last|clear|show|download|download-db"));
}

int statsCommand(CliContext& ctx, const QStringList& args) {
    if (args.value(0) != QLatin1String("show"))
        return ctx.fail(QStringLiteral("usage: stats show [--view front|back|both]"));
    Session* s = ctx.session();
    if (!s) return 1;
    bool given = false;
    const QString name = cliargs::option(args, QStringLiteral("--view"), &given);
    HistoryView view = HistoryView::Front;
    if (name == QLatin1String("back"))
        view = HistoryView::Back;
    else if (name == QLatin1String("both"))
        view = HistoryView::Both;
    else if (given && name != QLatin1String("front"))
        return ctx.fail(QStringLiteral("usage: stats show [--view front|back|both]"));
    const NumberStats& st = statsOf(s->stats(), view);
    const int last = view == HistoryView::Back ? s->bitnumHou() : s->bitnum();
    ctx.out << "Number\tYlqs\tGlnum\tgailv\n";
    for (int n = 1; n <= last; ++n)
        ctx.out << n << '\t' << st.omission[n] << '\t' << st.frequency[n] << '\t'
                << QString::number(st.percent[n], 'g', QLocale::FloatingPointShortest) << '\n';
    return 0;
}

const CliGroupRegistrar historyGroup(
    {QStringLiteral("history"),
     QStringLiteral(
         "  history import FILE [--append]\n"
         "  history add N1 N2 N3 N4 N5 N6 N7\n"
         "  history edit IDX COLUMN VALUE      (COLUMN fig0 for the issue, fig1..fig7 the numbers)\n"
         "  history delete-last\n"
         "  history clear\n"
         "  history show [--table fig|fighou|figquan]\n"
         "  history download NAME [--host URL]\n"
         "  history download-db [--host URL]\n"),
     historyCommand});
const CliGroupRegistrar statsGroup({QStringLiteral("stats"),
                                    QStringLiteral("  stats show [--view front|back|both]\n"), statsCommand});

}  // namespace
