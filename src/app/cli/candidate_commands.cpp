#include "app/cli/candidate_commands.h"

#include <QDir>

#include "app/cli/board_marks.h"
#include "app/cli/cli_context.h"
#include "app/cli/cli_tables.h"
#include "app/filter_opening.h"
#include "engine/candidate_store.h"
#include "filter/candidate_actions.h"
#include "filter/six/six_actions.h"
#include "picking/number_board.h"
#include "workspace/sqlite_db.h"

namespace {

using cli_tables::Kind;

constexpr int kPageRows = FilterWorkspace::kFirstViewRows;

// The entry of the menu 组号方式 that an expansion chooses.
struct ListEntry {
    ListCommand command;
    bool enabled;
    QString text;
};

ListEntry listEntry(const NumberBoard& board, bool six, bool bankers) {
    if (six)
        return bankers
                   ? ListEntry{ListCommand::SixFrontBankerExpansion, board.modeMenu.sixFrontBankerExpansion,
                               QStringLiteral("mnuDt8lst 前区胆拖6复式排列")}
                   : ListEntry{ListCommand::SixFrontMultiExpansion, board.modeMenu.sixFrontMultiExpansion,
                               QStringLiteral("mnu8Lst 前区复选6复式排列")};
    return bankers ? ListEntry{ListCommand::BankerExpansion, board.modeMenu.bankerExpansion,
                               QStringLiteral("mnuDtlst 胆拖组合排列")}
                   : ListEntry{ListCommand::MultiExpansion, board.modeMenu.multiExpansion,
                               QStringLiteral("mnuLst 复选组合排列")};
}

// A record that could not be written: the message names the file.
int saveFailed(CliContext& ctx, const Session& s, const QString& error) {
    const QString file = QDir::toNativeSeparators(s.paths().filterDb());
    return ctx.fail(error.contains(file) ? error : file + QStringLiteral(": ") + error);
}

int saveTable(CliContext& ctx, Session& s, CandidateTable& table, uint64_t count) {
    // The record only: the relational table follows when something reads it with SQL.
    const candidate_store::SaveResult saved = candidate_store::saveImage(s.filterDb(), table);
    if (saved.outcome != candidate_store::Outcome::Done) return saveFailed(ctx, s, saved.error);
    ctx.out << count << '\n';
    return Command::kDone;
}

}  // namespace

ExpandCommand::ExpandCommand()
    : SessionCommand(
          QStringLiteral("expand"),
          QStringLiteral("--front LIST --back LIST [--front-bankers LIST] [--back-bankers LIST] [--six]"),
          QStringLiteral("Expands the picked numbers into the candidate table, as 组号方式 does; prints the "
                         "count of tickets.")) {
    const ValueKind list = ValueKind::numbers();
    option(QStringLiteral("front"), QStringLiteral("LIST"),
           QStringLiteral("Picked front numbers, as 1,5,12."), list);
    option(QStringLiteral("back"), QStringLiteral("LIST"), QStringLiteral("Picked back numbers."), list);
    option(QStringLiteral("front-bankers"), QStringLiteral("LIST"),
           QStringLiteral("Front numbers in every ticket."), list);
    option(QStringLiteral("back-bankers"), QStringLiteral("LIST"),
           QStringLiteral("Back numbers in every ticket."), list);
    flag(QStringLiteral("six"), QStringLiteral("Six-number front rows into zuhef instead."));
}

int ExpandCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const QList<int> frontBankers = args.numbers(QStringLiteral("front-bankers"));
    const QList<int> backBankers = args.numbers(QStringLiteral("back-bankers"));
    const bool six = args.has(QStringLiteral("six"));

    BoardState& state = s.board();
    NumberBoard board(state, static_cast<int16_t>(s.frontSize()), static_cast<int16_t>(s.backSize()));
    if (!markOnBoard(board, Zone::Front, args.numbers(QStringLiteral("front")), false) ||
        !markOnBoard(board, Zone::Back, args.numbers(QStringLiteral("back")), false) ||
        !markOnBoard(board, Zone::Front, frontBankers, true) || !markOnBoard(board, Zone::Back, backBankers, true))
        return ctx.fail(QStringLiteral("a number lies outside the zone (front 1..%1, back 1..%2)")
                            .arg(s.frontSize())
                            .arg(s.backSize()));

    // The menu 组号方式 opens and the entry is chosen, if it is enabled.
    board.openModeMenu();
    const bool bankers = !frontBankers.isEmpty() || !backBankers.isEmpty();
    const ListEntry entry = listEntry(board, six, bankers);
    if (!entry.enabled) return ctx.fail(QStringLiteral("%1 is disabled for these picks").arg(entry.text));
    board.prepareList(entry.command);

    if (six) {
        ExpansionResult r = expand(
            ExpansionInput::fromBoard(state, bankers ? ExpansionKind::SixBankers : ExpansionKind::SixPicks));
        if (r.refused) return ctx.fail(r.message);
        return saveTable(ctx, s, *r.table, r.captionCount);
    }
    FilterWorkspace window(bankers ? FilterSource::BankerExpansion : FilterSource::Expansion,
                           s.paths().filterDb());
    if (!openExpansionWindow(window, state, bankers ? ExpansionKind::Bankers : ExpansionKind::Picks,
                             ctx.prompter))
        return kRefused;
    const candidate_store::SaveResult saved = window.waitForWrite();
    if (saved.outcome != candidate_store::Outcome::Done) return saveFailed(ctx, s, saved.error);
    ctx.out << window.shownCount() << '\n';
    return kDone;
}

CandidatesCountCommand::CandidatesCountCommand()
    : SessionCommand(QStringLiteral("candidates count"), QStringLiteral("[--table T]"),
                     QStringLiteral("Prints the count of live tickets.")) {
    setAccess(Access::Reads);
    options({cli_tables::storedTableOption()});
}

int CandidatesCountCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const auto table = cli_tables::loadStored(ctx, s, cli_tables::storedTable(args));
    if (!table) return kRefused;
    ctx.out << table->liveCount() << '\n';
    return kDone;
}

CandidatesShowCommand::CandidatesShowCommand()
    : SessionCommand(QStringLiteral("candidates show"),
                     QStringLiteral("[--table T] [--live|--all] [--page N]"),
                     QStringLiteral("Prints a page of tickets with canshu, the flag and the reason.")) {
    setAccess(Access::Reads);
    options({cli_tables::storedTableOption()});
    flag(QStringLiteral("live"), QStringLiteral("Live tickets only (the default)."));
    flag(QStringLiteral("all"), QStringLiteral("Every ticket, filtered out or not."));
    option(QStringLiteral("page"), QStringLiteral("N"),
           QStringLiteral("The page of %1 rows, from 1 (the default).").arg(kPageRows), ValueKind::integer());
}

QString CandidatesShowCommand::check(const Args& args) const {
    if (args.has(QStringLiteral("live")) && args.has(QStringLiteral("all")))
        return QStringLiteral("give --live or --all, not both");
    return {};
}

int CandidatesShowCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const Kind kind = cli_tables::storedTable(args);
    const auto table = cli_tables::loadStored(ctx, s, kind);
    if (!table) return kRefused;
    const bool all = args.has(QStringLiteral("all"));
    const int page = args.integer(QStringLiteral("page"), 1);
    if (page < 1) return ctx.fail(QStringLiteral("--page: a page number from 1"));
    const uint64_t skip = static_cast<uint64_t>(page - 1) * kPageRows;

    QString reasonColumn = QStringLiteral("fliter");
    for (const ColumnDef& c : schema::candidate(kind).columns)
        if (c.name.compare(QLatin1String("fliter"), Qt::CaseInsensitive) == 0) reasonColumn = c.name;
    ctx.out << "idx";
    for (int k = 1; k <= table->numberCount(); ++k) ctx.out << "\tfig" << k;
    ctx.out << "\tcanshu\tunslt\t" << reasonColumn << '\n';
    uint64_t seen = 0;
    int printed = 0;
    for (uint64_t r = 0; r < table->rowCount() && printed < kPageRows; ++r) {
        if (!all && table->filteredOut().test(r)) continue;
        if (seen++ < skip) continue;
        ctx.out << table->idxAt(r);
        for (int k = 1; k <= table->numberCount(); ++k) ctx.out << '\t' << table->numberColumn(k)[r];
        ctx.out << '\t' << table->paramValueAt(r) << '\t' << (table->filteredOut().test(r) ? 1 : 0) << '\t'
                << table->reasonText(r) << '\n';
        ++printed;
    }
    return kDone;
}

CandidateActionCommand::CandidateActionCommand(const QString& name, const QString& description, Action action,
                                               FilterWorkspace::Button button, Action sixAction)
    : SessionCommand(name, QStringLiteral("[--table T]"), description),
      m_action(action),
      m_sixAction(sixAction),
      m_button(button) {
    options({cli_tables::storedTableOption()});
}

int CandidateActionCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const Kind kind = cli_tables::storedTable(args);
    if (const auto instance = cli_tables::reopeningInstance(kind)) {
        // As the window reopened on the stored table would do it.
        FilterWorkspace window(*instance, s.paths().filterDb());
        QString error;
        if (!cli_tables::openStoredTable(s, window, kind, &error))
            return ctx.fail(error.isEmpty() ? QStringLiteral("cannot read the table") : error);
        window.release(m_button, FilterWorkspace::Mouse::Left);
        const candidate_store::SaveResult saved = window.waitForWrite();
        if (saved.outcome != candidate_store::Outcome::Done) return saveFailed(ctx, s, saved.error);
        ctx.out << window.shownCount() << '\n';
        return kDone;
    }
    const auto table = cli_tables::loadStored(ctx, s, kind);
    if (!table) return kRefused;
    (kind == Kind::SixNumbers ? m_sixAction : m_action)(*table);
    return saveTable(ctx, s, *table, table->liveCount());
}

FilterResetAllCommand::FilterResetAllCommand()
    : CandidateActionCommand(QStringLiteral("filter reset-all"),
                             QStringLiteral("Brings every ticket back to life."), candidate_actions::resetAll,
                             FilterWorkspace::Button::ResetAll, six_actions::resetAll) {}

FilterResetLastCommand::FilterResetLastCommand()
    : CandidateActionCommand(QStringLiteral("filter reset-last"), QStringLiteral("Undoes the last filter."),
                             candidate_actions::resetLast, FilterWorkspace::Button::ResetLast, six_actions::resetLast) {}

FilterInvertAllCommand::FilterInvertAllCommand()
    : CandidateActionCommand(QStringLiteral("filter invert-all"),
                             QStringLiteral("Inverts every ticket: the live die and the dead live."),
                             candidate_actions::invertAll, FilterWorkspace::Button::InvertAll, six_actions::invertAll) {}

FilterInvertLastCommand::FilterInvertLastCommand()
    : CandidateActionCommand(QStringLiteral("filter invert-last"),
                             QStringLiteral("Inverts what the last filter did."),
                             candidate_actions::invertLast, FilterWorkspace::Button::InvertLast, six_actions::invertLast) {}
