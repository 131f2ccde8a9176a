#include "app/cli/super_filter_commands.h"

#include "app/cli/args_prompter.h"
#include "app/cli/cli_context.h"
#include "app/cli/super_forms.h"
#include "app/cli/super_window.h"
#include "app/cli/window_boxes.h"

namespace {

// Numbers of a direct inclusion call are checked as the prompts check them.
bool checkDirect(CliContext& ctx, const SuperInputs& in, int maxQian) {
    for (int i = 1; i <= super_filter::passes(in.superCount); ++i) {
        const int n = in.superNumbers[static_cast<size_t>(i)];
        if (n < 1 || n > maxQian) return ctx.fail(QStringLiteral("请输入1~%1之间的数字").arg(maxQian)), false;
    }
    return true;
}

QString filterSynopsis(const SuperForm& form) {
    return (form.synopsis.isEmpty() ? QString() : form.synopsis + QLatin1Char(' ')) +
           QStringLiteral("[--scope ZONE] [--table T]");
}

}  // namespace

SuperFilterCommand::SuperFilterCommand(const SuperForm& form)
    : Command(QStringLiteral("filter ") + form.name, filterSynopsis(form),
              form.description + QStringLiteral(" Prints the live count.")),
      m_form(form) {
    positionals(form.positionals);
    options(form.options);
    options({window_boxes::scopeOption(), cli_tables::windowOrSixTableOption()});
}

QString SuperFilterCommand::check(const Args& args) const {
    // The six-number window has the relation and group filters; its history filters are `six history`.
    const bool sixHasIt = &m_form == &super_forms::relation() || &m_form == &super_forms::inclusion();
    if (cli_tables::onSixTable(args) && !sixHasIt)
        return QStringLiteral("the six-number window has no %1 filter (see `six history`)").arg(m_form.name);
    return m_form.check(args);
}

int SuperFilterCommand::execute(CliContext& ctx, const Args& args) const {
    const auto call = m_form.call(ctx, args);
    if (!call) return kRefused;
    SuperWindow w;
    if (!w.open(ctx, args, true)) return kRefused;
    if (call->direct) {
        if (!checkDirect(ctx, *call->direct, w.session->frontSize())) return kRefused;
        w.in = *call->direct;
        w.super->runWorker(call->button, w.in, w.tab);
        return w.finish(ctx);
    }
    ArgsPrompter prompter(call->answers);
    if (!super_filter::enabled(call->button, w.tab, w.workspace->traits()))
        return ctx.fail(
            QStringLiteral("%1 is disabled in this tab").arg(super_filter::caption(call->button, w.tab)));
    const SuperFilter::Outcome o =
        w.super->click(call->button, FilterWorkspace::Mouse::Left, w.in, w.tab, prompter);
    if (!o.ran) return prompter.fail(ctx, QStringLiteral("the action ended"));
    return w.finish(ctx);
}

FilterRelationCommand::FilterRelationCommand() : SuperFilterCommand(super_forms::relation()) {}
FilterHistoryCommand::FilterHistoryCommand() : SuperFilterCommand(super_forms::history()) {}
FilterInclusionCommand::FilterInclusionCommand() : SuperFilterCommand(super_forms::inclusion()) {}
FilterSameAsTemplateCommand::FilterSameAsTemplateCommand()
    : SuperFilterCommand(super_forms::sameAsTemplate()) {}
