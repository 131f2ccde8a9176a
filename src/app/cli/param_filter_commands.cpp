#include "app/cli/param_filter_commands.h"

#include "app/cli/cli_context.h"
#include "app/cli/cli_tables.h"
#include "app/cli/six_commands.h"
#include "filter/candidate_actions.h"
#include "app/cli/window_boxes.h"
#include "filter/param/param_window.h"

namespace {

// The filter window reopened on the stored table, with its parameter side.
struct OpenWindow : cli_tables::OpenTable {
    std::unique_ptr<ParamWindow> window;

    bool open(CliContext& ctx, const Args& args) {
        if (!OpenTable::open(ctx, args)) return false;
        window = std::make_unique<ParamWindow>(*workspace, ParamContext::fromSession(*session),
                                               session->paths().folder());
        return true;
    }
};

}  // namespace

FilterParamCommand::FilterParamCommand()
    : Command(
          QStringLiteral("filter param"),
          QStringLiteral(
              "NAME (--keep|--exclude) (--range LO HI | --list \"V V V\") [--interval LO HI] [--scope ZONE] "
              "[--positions LIST] [--odd LIST] [--even LIST] [--table T]"),
          QStringLiteral(
              "Runs one parameter filter, as its button in the filter window; prints the live count.")) {
    positional(QStringLiteral("NAME"),
               QStringLiteral("The parameter: a draw column (Znum, Onum, fig1, ...) or Zdqj; on zuhef one of "
                              "the six-number window's (see `six param`)."),
               ValueKind::paramOrSix());
    options(window_boxes::senseOptions());
    option(QStringLiteral("range"), QStringLiteral("LO HI"),
           QStringLiteral("The range of values, also as LO,HI."), {ValueKind::number(), ValueKind::number()});
    option(QStringLiteral("list"), QStringLiteral("VALUES"),
           QStringLiteral("The values, as \"2 3\" (list mode)."), ValueKind::values());
    options({window_boxes::intervalOption()});
    options(window_boxes::commonOptions());
    options({cli_tables::windowOrSixTableOption()});
}

QString FilterParamCommand::check(const Args& args) const {
    if (!args.has(QStringLiteral("range")) && !args.has(QStringLiteral("list")))
        return QStringLiteral("give --range LO HI or --list \"V V V\"");
    if (QString p = six_cli::namesProblem(args, cli_tables::onSixTable(args)); !p.isEmpty()) return p;
    if (args.has(QStringLiteral("interval")) &&
        command_args::param(args.positional(0)) != ParamId::CustomRange)
        return QStringLiteral("--interval belongs to Zdqj (自定区间)");
    return window_boxes::checkSense(args, true);
}

int FilterParamCommand::execute(CliContext& ctx, const Args& args) const {
    if (cli_tables::onSixTable(args)) {
        Session* s = ctx.session();
        return s ? six_cli::runParam(ctx, *s, args) : kRefused;
    }
    const ParamId id = *command_args::param(args.positional(0));
    ParamWindowState s = ParamWindowState::defaults();
    if (!window_boxes::readCommon(ctx, args, s)) return kRefused;
    auto& box = s.box(id);
    if (args.has(QStringLiteral("range"))) {
        box[0] = args.values(QStringLiteral("range"))[0];
        box[1] = args.values(QStringLiteral("range"))[1];
    }
    if (args.has(QStringLiteral("list"))) {
        (id == ParamId::CustomRange ? s.txtZdqj : box[3]) = args.text(QStringLiteral("list"));
        s.listMode = true;
    }
    window_boxes::readInterval(args, s);
    OpenWindow w;
    if (!w.open(ctx, args)) return kRefused;
    w.window->clickParameter(id, s, ctx.prompter);
    return w.finish(ctx);
}

FilterIntegratedCommand::FilterIntegratedCommand()
    : Command(
          QStringLiteral("filter integrated"),
          QStringLiteral(
              "--params NAMES (--keep|--exclude) [--and|--or] [--tolerance N] [--range NAME LO HI]... "
              "[--list NAME \"V V\"]... [--interval LO HI] [--scope ZONE] [--positions LIST] [--odd LIST] "
              "[--even LIST] [--table T]"),
          QStringLiteral(
              "Runs the ticked parameters at one stroke (多选参数整合过滤); prints the live count.")) {
    options(window_boxes::runOptions(true));
    options(window_boxes::senseOptions());
    options(window_boxes::commonOptions());
    options({cli_tables::windowOrSixTableOption()});
}

QString FilterIntegratedCommand::check(const Args& args) const {
    if (!args.has(QStringLiteral("params"))) return QStringLiteral("missing --params NAMES");
    if (args.has(QStringLiteral("and")) && args.has(QStringLiteral("or")))
        return QStringLiteral("give --and or --or, not both");
    if (QString p = six_cli::namesProblem(args, cli_tables::onSixTable(args)); !p.isEmpty()) return p;
    return window_boxes::checkSense(args, true);
}

int FilterIntegratedCommand::execute(CliContext& ctx, const Args& args) const {
    if (cli_tables::onSixTable(args)) {
        Session* s = ctx.session();
        return s ? six_cli::runIntegrated(ctx, *s, args) : kRefused;
    }
    ParamWindowState s = ParamWindowState::defaults();
    if (!window_boxes::readCommon(ctx, args, s)) return kRefused;
    window_boxes::readRun(args, s, window_boxes::Tick::RunBox);
    OpenWindow w;
    if (!w.open(ctx, args)) return kRefused;
    w.window->clickIntegrated(s, ctx.prompter);
    return w.finish(ctx);
}

CandidatesToggleCommand::CandidatesToggleCommand()
    : Command(QStringLiteral("candidates toggle"), QStringLiteral("IDX [--table T]"),
              QStringLiteral(
                  "Kills a live ticket or revives a dead one, as a double click on its row; prints the "
                  "live count.")) {
    positional(QStringLiteral("IDX"), QStringLiteral("The ticket's idx."), ValueKind::integer());
    options({cli_tables::windowOrSixTableOption()});
}

int CandidatesToggleCommand::execute(CliContext& ctx, const Args& args) const {
    const int idx = args.positionalInteger(0);
    if (cli_tables::onSixTable(args)) {
        cli_tables::OpenTable t;
        if (!t.open(ctx, args)) return kRefused;
        std::optional<bool> dead;
        {
            const FilterWorkspace::Edit edit = t.workspace->edit();
            dead = candidate_actions::toggleByHand(edit.table(), idx);
        }
        if (!dead) return ctx.fail(QStringLiteral("no ticket with idx %1").arg(idx));
        return t.finish(ctx);
    }
    OpenWindow w;
    if (!w.open(ctx, args)) return kRefused;
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

CandidatesExportCommand::CandidatesExportCommand()
    : Command(QStringLiteral("candidates export"), QStringLiteral("FILE [--params NAMES] [--table T]"),
              QStringLiteral(
                  "Writes the live tickets with their parameters to a spreadsheet (多参数导出); prints the "
                  "count of rows.")) {
    positional(QStringLiteral("FILE"), QStringLiteral("The .xlsx file to write."));
    option(QStringLiteral("params"), QStringLiteral("NAMES"),
           QStringLiteral("The parameters to export; all when absent."), ValueKind::params());
    options({cli_tables::windowTableOption()});
}

int CandidatesExportCommand::execute(CliContext& ctx, const Args& args) const {
    ParamWindowState s = ParamWindowState::defaults();
    if (args.has(QStringLiteral("params")))
        window_boxes::readRun(args, s, window_boxes::Tick::RunBox);
    else
        s.integratedBox.fill(true);
    OpenWindow w;
    if (!w.open(ctx, args)) return kRefused;
    param_export::Result r;
    {
        const FilterWorkspace::Edit edit = w.workspace->edit();
        r = param_export::exportLive(edit.table(), s, w.window->context(), args.positional(0), ctx.prompter);
    }
    const candidate_store::SaveResult saved = w.workspace->waitForWrite();
    if (saved.outcome != candidate_store::Outcome::Done) return ctx.fail(saved.error);
    if (!r.written) return kRefused;
    ctx.out << r.rows << '\n';
    return kDone;
}

TemplateAddCommand::TemplateAddCommand()
    : Command(QStringLiteral("template add"), QStringLiteral("[--table T]"),
              QStringLiteral(
                  "Adds the live tickets to the combination template zuheMoban; prints its count of rows.")) {
    options({cli_tables::windowTableOption()});
}

int TemplateAddCommand::execute(CliContext& ctx, const Args& args) const {
    OpenWindow w;
    if (!w.open(ctx, args)) return kRefused;
    const bool added = w.window->clickAddTemplate(w.session->filterDb(), ctx.prompter);
    const candidate_store::SaveResult saved = w.workspace->waitForWrite();
    if (saved.outcome != candidate_store::Outcome::Done) return ctx.fail(saved.error);
    if (!added)
        return ctx.fail(
            QStringLiteral("the template zuheMoban does not exist: make it with `template clear` or by opening "
                           "调用组号模板功能"));
    ctx.out << w.session->filterDb().scalar(QStringLiteral("SELECT count(*) FROM [zuheMoban]")).toLongLong()
            << '\n';
    return kDone;
}
