// filter param, filter integrated, candidates toggle, candidates export, template add: the
// parameter side of the filter window, each call as the window reopened on the stored table
// would run it, the table written back before the call ends.
#include "app/cli/cli.h"
#include "app/cli/cli_tables.h"

#include "filter/candidate_store.h"
#include "filter/filter_workspace.h"
#include "filter/param_window.h"

#include <optional>

namespace {

using Kind = schema::CandidateKind;

using cli_tables::paramByName;

// The filter window reopened on the stored table, with its parameter side.
struct OpenWindow : cli_tables::OpenTable {
    std::unique_ptr<ParamWindow> window;

    bool open(CliContext& ctx, const QStringList& args) {
        if (!OpenTable::open(ctx, args)) return false;
        window = std::make_unique<ParamWindow>(*workspace, ParamContext::fromSession(*session), session->paths().folder());
        return true;
    }
};

bool readCommon(CliContext& ctx, const QStringList& args, ParamWindowState& s) {
    bool found = false;
    const QString scope = cliargs::option(args, QStringLiteral("--scope"), &found);
    if (found) {
        if (scope == QLatin1String("front")) s.scope = ZoneScope::Front;
        else if (scope == QLatin1String("back")) s.scope = ZoneScope::Back;
        else if (scope == QLatin1String("both")) s.scope = ZoneScope::Both;
        else return ctx.fail(QStringLiteral("--scope: front, back or both")), false;
    }
    const QString positions = cliargs::option(args, QStringLiteral("--positions"), &found);
    if (found) {
        bool ok = false;
        const QList<int> ticked = cliargs::numbers(positions, &ok);
        if (!ok) return ctx.fail(QStringLiteral("--positions: numbers 1..7 separated by commas")), false;
        s.chkBt.fill(false);
        for (int p : ticked) {
            if (p < 1 || p > 7) return ctx.fail(QStringLiteral("--positions: numbers 1..7")), false;
            s.chkBt[static_cast<size_t>(p - 1)] = true;
        }
    }
    for (const auto& [option, second] : {std::pair{QStringLiteral("--odd"), 0}, std::pair{QStringLiteral("--even"), 1}}) {
        const QString list = cliargs::option(args, option, &found);
        if (!found) continue;
        bool ok = false;
        for (int p : cliargs::numbers(list, &ok)) {
            if (!ok || p < 1 || p > 5) return ctx.fail(option + QStringLiteral(": positions 1..5")), false;
            s.check2[static_cast<size_t>(2 + 2 * p + second)] = true;
        }
        if (!ok) return ctx.fail(option + QStringLiteral(": positions 1..5")), false;
    }
    const bool keep = cliargs::flag(args, QStringLiteral("--keep"));
    const bool exclude = cliargs::flag(args, QStringLiteral("--exclude"));
    if (keep == exclude) return ctx.fail(QStringLiteral("give one of --keep and --exclude")), false;
    s.keep = keep;
    return true;
}

// The boxes of one parameter from --range LO HI or --list "V V" (after `from`), and for
// 自定区间 its interval from --interval LO HI.
bool readBoxes(CliContext& ctx, const QStringList& args, ParamId id, ParamWindowState& s, qsizetype from, bool single) {
    auto& box = s.box(id);
    const qsizetype r = args.indexOf(QStringLiteral("--range"), from);
    const qsizetype l = args.indexOf(QStringLiteral("--list"), from);
    if (r >= 0 && r + 2 < args.size()) {
        box[0] = args[r + 1];
        box[1] = args[r + 2];
    } else if (r >= 0) {
        return ctx.fail(QStringLiteral("--range LO HI")), false;
    }
    if (l >= 0 && l + 1 < args.size()) {
        if (id == ParamId::Option66) s.txtZdqj = args[l + 1];
        else box[3] = args[l + 1];
        s.listMode = true;
    } else if (l >= 0) {
        return ctx.fail(QStringLiteral("--list \"V V V\"")), false;
    }
    if (single && r < 0 && l < 0) return ctx.fail(QStringLiteral("give --range LO HI or --list \"V V V\"")), false;
    const qsizetype z = args.indexOf(QStringLiteral("--interval"), from);
    if (id == ParamId::Option66 && z >= 0 && z + 2 < args.size()) {
        box[3] = args[z + 1];
        box[2] = args[z + 2];
    }
    return true;
}

int paramCommand(CliContext& ctx, const QStringList& args) {
    const auto id = paramByName(args.value(0));
    if (!id) return ctx.fail(QStringLiteral("unknown parameter %1: a draw column such as Znum, Onum, fig1, or Zdqj").arg(args.value(0)));
    ParamWindowState s = ParamWindowState::defaults();
    if (!readCommon(ctx, args, s) || !readBoxes(ctx, args, *id, s, 1, true)) return 1;
    OpenWindow w;
    if (!w.open(ctx, args)) return 1;
    w.window->clickParameter(*id, s, ctx.prompter);
    return w.finish(ctx);
}

int integratedCommand(CliContext& ctx, const QStringList& args) {
    bool found = false;
    const QString names = cliargs::option(args, QStringLiteral("--params"), &found);
    if (!found) return ctx.fail(QStringLiteral("--params NAME,NAME,..."));
    ParamWindowState s = ParamWindowState::defaults();
    if (!readCommon(ctx, args, s)) return 1;
    s.logicAnd = !cliargs::flag(args, QStringLiteral("--or"));
    const QString tolerance = cliargs::option(args, QStringLiteral("--tolerance"), &found);
    if (found) {
        s.check3 = true;
        s.txtRc0 = tolerance;
    }
    for (const QString& name : names.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const auto id = paramByName(name);
        if (!id) return ctx.fail(QStringLiteral("unknown parameter %1").arg(name));
        s.check1[static_cast<size_t>(param_catalogue::runBox(*id))] = true;
    }
    // Each parameter's boxes: --range NAME LO HI, --list NAME "V V V", as many as given. A
    // list puts the whole run in list mode, as Option36 does for the window.
    for (qsizetype i = 0; i < args.size(); ++i) {
        const bool range = args[i] == QLatin1String("--range"), list = args[i] == QLatin1String("--list");
        if (!range && !list) continue;
        const auto id = paramByName(args.value(i + 1));
        if (!id || i + (range ? 3 : 2) >= args.size())
            return ctx.fail(QStringLiteral("--range NAME LO HI or --list NAME \"V V V\""));
        if (range) {
            s.box(*id)[0] = args[i + 2];
            s.box(*id)[1] = args[i + 3];
        } else {
            if (*id == ParamId::Option66) s.txtZdqj = args[i + 2];
            else s.box(*id)[3] = args[i + 2];
            s.listMode = true;
        }
    }
    OpenWindow w;
    if (!w.open(ctx, args)) return 1;
    w.window->clickIntegrated(s, ctx.prompter);
    return w.finish(ctx);
}

int toggleCommand(CliContext& ctx, const QStringList& args) {
    bool ok = false;
    const int idx = args.value(0).toInt(&ok);
    if (!ok) return ctx.fail(QStringLiteral("usage: candidates toggle IDX [--table T]"));
    OpenWindow w;
    if (!w.open(ctx, args)) return 1;
    // The all-rows view shows every ticket, so any idx can be double-clicked there.
    ResultGridModel model;
    w.window->showAllRows();
    model.bind(&w.workspace->table(), w.window->view());
    int row = -1;
    for (uint64_t r = 0; r < w.workspace->table().rowCount() && row < 0; ++r)
        if (w.workspace->table().idxAt(r) == idx) row = model.viewRowOf(r);
    if (row < 0) return ctx.fail(QStringLiteral("no ticket with idx %1").arg(idx));
    w.window->doubleClick(model, row);
    return w.finish(ctx);
}

int exportCommand(CliContext& ctx, const QStringList& args) {
    const QString file = args.value(0);
    if (file.isEmpty() || file.startsWith(QLatin1String("--")))
        return ctx.fail(QStringLiteral("usage: candidates export FILE [--params NAME,...] [--table T]"));
    ParamWindowState s = ParamWindowState::defaults();
    bool found = false;
    const QString names = cliargs::option(args, QStringLiteral("--params"), &found);
    if (found) {
        for (const QString& name : names.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
            const auto id = paramByName(name);
            if (!id) return ctx.fail(QStringLiteral("unknown parameter %1").arg(name));
            s.check1[static_cast<size_t>(param_catalogue::runBox(*id))] = true;
        }
    } else {
        s.check1.fill(true);
    }
    OpenWindow w;
    if (!w.open(ctx, args)) return 1;
    const param_export::Result r =
        param_export::exportLive(w.workspace->tableForChange(), s, w.window->context(), file, ctx.prompter);
    w.workspace->changed();
    w.workspace->waitForWrite();
    if (!r.written) return 1;
    ctx.out << r.rows << '\n';
    return 0;
}

int templateAddCommand(CliContext& ctx, const QStringList& args) {
    OpenWindow w;
    if (!w.open(ctx, args)) return 1;
    if (!w.window->clickAddTemplate(w.session->fildb(), ctx.prompter)) {
        w.workspace->waitForWrite();
        return ctx.fail(QStringLiteral("the template zuheMoban does not exist: open it once (调用组号模板功能)"));
    }
    w.workspace->waitForWrite();
    ctx.out << w.session->fildb().scalar(QStringLiteral("SELECT count(*) FROM [zuheMoban]")).toLongLong() << '\n';
    return 0;
}

const CliSubcommandRegistrar paramSub({QStringLiteral("filter"), QStringLiteral("param"),
                                       QStringLiteral("  filter param NAME (--keep|--exclude) (--range LO HI | --list \"V V V\") "
                                                      "[--scope front|back|both] [--positions 1,2,...] [--odd P] [--even P] "
                                                      "[--interval LO HI] [--table T]\n"),
                                       paramCommand});
const CliSubcommandRegistrar integratedSub(
    {QStringLiteral("filter"), QStringLiteral("integrated"),
     QStringLiteral("  filter integrated --params NAME,NAME,... [--and|--or] (--keep|--exclude) [--tolerance N] "
                    "[--range NAME LO HI]... [--list NAME \"V V\"]... [--scope S] [--positions P] [--table T]\n"),
     integratedCommand});
const CliSubcommandRegistrar toggleSub({QStringLiteral("candidates"), QStringLiteral("toggle"),
                                        QStringLiteral("  candidates toggle IDX [--table T]\n"), toggleCommand});
const CliSubcommandRegistrar exportSub({QStringLiteral("candidates"), QStringLiteral("export"),
                                        QStringLiteral("  candidates export FILE [--params NAME,...] [--table T]\n"),
                                        exportCommand});
const CliSubcommandRegistrar templateSub({QStringLiteral("template"), QStringLiteral("add"),
                                          QStringLiteral("  template add [--table T]\n"), templateAddCommand});

}  // namespace
