// expand, candidates count|show, filter reset-all|reset-last|invert-all|invert-last
#include "app/cli/cli.h"

#include "filter/candidate_actions.h"
#include "filter/candidate_store.h"
#include "filter/filter_workspace.h"
#include "generation/expansion.h"
#include "picking/number_board.h"

#include <optional>

namespace {

using Kind = schema::CandidateKind;

constexpr int kPageRows = FilterWorkspace::kFirstViewRows;

std::optional<Kind> tableKind(const QString& name) {
    for (Kind k : {Kind::Zuhe, Kind::ZuheRote, Kind::ZuheMoban, Kind::ZuheRead, Kind::Zuhef})
        if (schema::candidateTableName(k).compare(name, Qt::CaseInsensitive) == 0) return k;
    return std::nullopt;
}

// The window that reopens a stored table of this kind; zuhef has none among the seven.
std::optional<FilterInstance> reopeningInstance(Kind kind) {
    switch (kind) {
        case Kind::Zuhe: return FilterInstance::GAganMb;
        case Kind::ZuheRote: return FilterInstance::GAganRoteMb;
        case Kind::ZuheRead: return FilterInstance::GAganRead;
        case Kind::ZuheMoban: return FilterInstance::GAganZhMb;
        case Kind::Zuhef: return std::nullopt;
    }
    return std::nullopt;
}

bool parseList(CliContext& ctx, const QStringList& args, const QString& option, QList<int>* out) {
    bool found = false;
    const QString text = cliargs::option(args, option, &found);
    if (!found) return true;
    bool ok = false;
    *out = cliargs::numbers(text, &ok);
    if (!ok) ctx.fail(QStringLiteral("%1: numbers separated by commas").arg(option));
    return ok;
}

int expandCommand(CliContext& ctx, const QStringList& args) {
    Session* s = ctx.session();
    if (!s) return 1;
    QList<int> front, back, frontBankers, backBankers;
    if (!parseList(ctx, args, QStringLiteral("--front"), &front) || !parseList(ctx, args, QStringLiteral("--back"), &back) ||
        !parseList(ctx, args, QStringLiteral("--front-bankers"), &frontBankers) ||
        !parseList(ctx, args, QStringLiteral("--back-bankers"), &backBankers))
        return 1;
    const bool six = cliargs::flag(args, QStringLiteral("--six"));

    BoardState& state = s->board();
    NumberBoard board(state, static_cast<int16_t>(s->bitnum()), static_cast<int16_t>(s->bitnumHou()));
    const auto mark = [&](Zone z, const QList<int>& nums, bool banker) {
        const int size = board.zone(z).size();
        for (int n : nums) {
            if (n < 1 || n > size) return false;
            if (!banker) {
                board.leftClick(z, n);
                continue;
            }
            board.rightClick(z, n);
            board.mnuDan(z);
        }
        return true;
    };
    if (!mark(Zone::Front, front, false) || !mark(Zone::Back, back, false) || !mark(Zone::Front, frontBankers, true) ||
        !mark(Zone::Back, backBankers, true))
        return ctx.fail(QStringLiteral("a number lies outside the zone (front 1..%1, back 1..%2)")
                            .arg(s->bitnum())
                            .arg(s->bitnumHou()));

    // The menu 组号方式 opens and the entry is chosen, if it is enabled.
    board.openModeMenu();
    const bool bankers = !frontBankers.isEmpty() || !backBankers.isEmpty();
    ListCommand command;
    bool enabled;
    QString entry;
    if (six) {
        command = bankers ? ListCommand::MnuDt8lst : ListCommand::Mnu8Lst;
        enabled = bankers ? board.modeMenu.mnuDt8lst : board.modeMenu.mnu8Lst;
        entry = bankers ? QStringLiteral("mnuDt8lst 前区胆拖6复式排列") : QStringLiteral("mnu8Lst 前区复选6复式排列");
    } else {
        command = bankers ? ListCommand::MnuDtlst : ListCommand::MnuLst;
        enabled = bankers ? board.modeMenu.mnuDtlst : board.modeMenu.mnuLst;
        entry = bankers ? QStringLiteral("mnuDtlst 胆拖组合排列") : QStringLiteral("mnuLst 复选组合排列");
    }
    if (!enabled) return ctx.fail(QStringLiteral("%1 is disabled for these picks").arg(entry));
    board.prepareList(command);

    if (six) {
        ExpansionResult r = expand(ExpansionInput::fromBoard(state, bankers ? ExpansionKind::Gdanaganf : ExpansionKind::GAganf));
        if (r.refused) return ctx.fail(r.message);
        const candidate_store::SaveResult saved = candidate_store::save(s->fildb(), *r.table);
        if (saved.outcome != candidate_store::Outcome::Done) return ctx.fail(saved.error);
        ctx.out << r.captionCount << '\n';
        return 0;
    }
    FilterWorkspace window(bankers ? FilterInstance::Gdanagan : FilterInstance::GAgan, s->paths().filnumDb());
    if (!openExpansionWindow(window, state, bankers ? ExpansionKind::Gdanagan : ExpansionKind::GAgan, ctx.prompter))
        return 1;
    const candidate_store::SaveResult saved = window.waitForWrite();
    if (saved.outcome != candidate_store::Outcome::Done) return ctx.fail(saved.error);
    ctx.out << window.shownCount() << '\n';
    return 0;
}

std::unique_ptr<CandidateTable> loadTable(CliContext& ctx, Session& s, Kind kind) {
    candidate_store::LoadResult r = candidate_store::load(s.fildb(), kind);
    if (!r.table) ctx.fail(r.error.isEmpty() ? QStringLiteral("cannot read %1").arg(schema::candidateTableName(kind)) : r.error);
    return std::move(r.table);
}

std::optional<Kind> tableOption(CliContext& ctx, const QStringList& args) {
    bool found = false;
    const QString name = cliargs::option(args, QStringLiteral("--table"), &found);
    if (!found) return Kind::Zuhe;
    const auto kind = tableKind(name);
    if (!kind) ctx.fail(QStringLiteral("--table: one of zuhe, zuheRote, zuheMoban, zuheRead, zuhef"));
    return kind;
}

int candidatesCommand(CliContext& ctx, const QStringList& args) {
    const QString sub = args.value(0);
    if (sub != QLatin1String("count") && sub != QLatin1String("show"))
        return ctx.fail(QStringLiteral("usage: candidates count|show [--table T]"));
    const auto kind = tableOption(ctx, args);
    if (!kind) return 1;
    Session* s = ctx.session();
    if (!s) return 1;
    const auto table = loadTable(ctx, *s, *kind);
    if (!table) return 1;
    if (sub == QLatin1String("count")) {
        ctx.out << table->liveCount() << '\n';
        return 0;
    }
    const bool all = cliargs::flag(args, QStringLiteral("--all"));
    bool hasPage = false, ok = true;
    const int page = cliargs::option(args, QStringLiteral("--page"), &hasPage).toInt(&ok);
    if (hasPage && (!ok || page < 1)) return ctx.fail(QStringLiteral("--page: a page number from 1"));
    const uint64_t skip = hasPage ? static_cast<uint64_t>(page - 1) * kPageRows : 0;

    QString reasonColumn = QStringLiteral("fliter");
    for (const ColumnDef& c : schema::candidate(*kind).columns)
        if (c.name.compare(QLatin1String("fliter"), Qt::CaseInsensitive) == 0) reasonColumn = c.name;
    ctx.out << "idx";
    for (int k = 1; k <= table->figCount(); ++k) ctx.out << "\tfig" << k;
    ctx.out << "\tcanshu\tunslt\t" << reasonColumn << '\n';
    uint64_t seen = 0;
    int printed = 0;
    for (uint64_t r = 0; r < table->rowCount() && printed < kPageRows; ++r) {
        if (!all && table->unslt().test(r)) continue;
        if (seen++ < skip) continue;
        ctx.out << table->idxAt(r);
        for (int k = 1; k <= table->figCount(); ++k) ctx.out << '\t' << table->fig(k)[r];
        ctx.out << '\t' << table->canshuAt(r) << '\t' << (table->unslt().test(r) ? 1 : 0) << '\t' << table->reasonText(r)
                << '\n';
        ++printed;
    }
    return 0;
}

int filterCommand(CliContext& ctx, const QStringList& args) {
    const QString sub = args.value(0);
    using Action = void (*)(CandidateTable&);
    Action action = nullptr;
    FilterWorkspace::Button button{};
    if (sub == QLatin1String("reset-all")) action = candidate_actions::resetAll, button = FilterWorkspace::Button::Command1;
    else if (sub == QLatin1String("reset-last")) action = candidate_actions::resetLast, button = FilterWorkspace::Button::CmdRetn;
    else if (sub == QLatin1String("invert-all")) action = candidate_actions::invertAll, button = FilterWorkspace::Button::Command2;
    else if (sub == QLatin1String("invert-last")) action = candidate_actions::invertLast, button = FilterWorkspace::Button::Command3;
    else return ctx.fail(QStringLiteral("usage: filter reset-all|reset-last|invert-all|invert-last [--table T]"));
    const auto kind = tableOption(ctx, args);
    if (!kind) return 1;
    Session* s = ctx.session();
    if (!s) return 1;

    if (const auto instance = reopeningInstance(*kind)) {
        // As the window reopened on the stored table would do it.
        FilterWorkspace window(*instance, s->paths().filnumDb());
        QString error;
        if (!window.openStored(s->fildb(), nullptr, &error) || !candidate_store::tableExists(s->fildb(), *kind))
            return ctx.fail(error.isEmpty() ? QStringLiteral("cannot read the table") : error);
        window.release(button, FilterWorkspace::Mouse::Left);
        const candidate_store::SaveResult saved = window.waitForWrite();
        if (saved.outcome != candidate_store::Outcome::Done) return ctx.fail(saved.error);
        ctx.out << window.shownCount() << '\n';
        return 0;
    }
    const auto table = loadTable(ctx, *s, *kind);
    if (!table) return 1;
    action(*table);
    const candidate_store::SaveResult saved = candidate_store::save(s->fildb(), *table);
    if (saved.outcome != candidate_store::Outcome::Done) return ctx.fail(saved.error);
    ctx.out << table->liveCount() << '\n';
    return 0;
}

const CliGroupRegistrar expandGroup({QStringLiteral("expand"),
                                     QStringLiteral("  expand --front LIST --back LIST [--front-bankers LIST] "
                                                    "[--back-bankers LIST] [--six]\n"),
                                     expandCommand});
const CliGroupRegistrar candidatesGroup({QStringLiteral("candidates"),
                                         QStringLiteral("  candidates count [--table T]\n"
                                                        "  candidates show [--table T] [--live|--all] [--page N]\n"),
                                         candidatesCommand});
const CliGroupRegistrar filterGroup({QStringLiteral("filter"),
                                     QStringLiteral("  filter reset-all|reset-last|invert-all|invert-last [--table T]\n"),
                                     filterCommand});

}  // namespace
