#include "app/cli/template_commands.h"

#include <QDir>

#include "app/cli/args_prompter.h"
#include "app/cli/cli_context.h"
#include "app/cli/super_forms.h"
#include "app/cli/super_window.h"
#include "app/cli/window_boxes.h"
#include "filter/templates/filter_snapshot.h"
#include "filter/templates/template_store.h"

namespace {

// --scope and --table: the window the templates are used in.
std::vector<OptionDeclaration> windowOptions() {
    return {window_boxes::scopeOption(), cli_tables::windowTableOption()};
}

const QString kWindowSynopsis = QStringLiteral("[--scope ZONE] [--table T]");

int printCount(CliContext& ctx, SuperWindow& w) {
    ctx.out << TemplateStore(w.session->filterDb()).count() << '\n';
    return Command::kDone;
}

QString withWindow(const QString& synopsis) {
    return (synopsis.isEmpty() ? QString() : synopsis + QLatin1Char(' ')) + kWindowSynopsis +
           QStringLiteral(" [--dismiss]");
}

std::vector<OptionDeclaration> integratedOptions() {
    std::vector<OptionDeclaration> declared = window_boxes::runOptions();
    for (OptionDeclaration& o : window_boxes::senseOptions()) declared.push_back(std::move(o));
    declared.push_back(OptionDeclaration::valued(
        QStringLiteral("code"), QStringLiteral("C"),
        QStringLiteral("The step code (intCmdnb) the window holds; 0 in a fresh window."),
        ValueKind::integer()));
    return declared;
}

}  // namespace

MobanListCommand::MobanListCommand()
    : Command(QStringLiteral("moban list"), kWindowSynopsis,
              QStringLiteral("Prints the steps of the filter template with the text each shows.")) {
    setAccess(Access::Reads);
    options(windowOptions());
}

int MobanListCommand::execute(CliContext& ctx, const Args& args) const {
    SuperWindow w;
    if (!w.open(ctx, args, false)) return kRefused;
    ctx.out << "Idx\tintCmdnb\tintQianHou\tsknum\tskzu";
    for (int i = 0; i < 10; ++i) ctx.out << "\tsk" << i;
    ctx.out << "\tLabel3\n";
    for (const QVariantMap& row : TemplateStore(w.session->filterDb()).rows()) {
        const auto col = [&](const QString& n) { return filter_snapshot::column(row, n).toString(); };
        SuperInputs shown;
        const int code = col(QStringLiteral("intCmdnb")).toInt();
        if (code != 0 && code != 1 && code != 2) filter_snapshot::applySuper(row, code, shown);
        bool known = false;
        const QString label = w.recorder->stepText(row, shown, w.tab, known);
        ctx.out << col(QStringLiteral("Idx")) << '\t' << col(QStringLiteral("intCmdnb")) << '\t'
                << col(QStringLiteral("intQianHou")) << '\t' << col(QStringLiteral("sknum")) << '\t'
                << col(QStringLiteral("skzu"));
        for (int i = 0; i < 10; ++i) ctx.out << '\t' << col(QStringLiteral("sk%1").arg(i));
        ctx.out << '\t' << (known ? label : QString()) << '\n';
    }
    return kDone;
}

MobanAddCommand::MobanAddCommand(const QString& form, const QString& synopsis, const QString& description,
                                 std::vector<PositionalDeclaration> ownPositionals,
                                 std::vector<OptionDeclaration> ownOptions)
    : Command(QStringLiteral("moban add ") + form, withWindow(synopsis),
              description + QStringLiteral(" Prints the count of steps.")) {
    positionals(std::move(ownPositionals));
    options(std::move(ownOptions));
    options(windowOptions());
    flag(QStringLiteral("dismiss"),
         QStringLiteral("Closes the popup without a new step: the last step takes the input."));
}

int MobanAddCommand::execute(CliContext& ctx, const Args& args) const {
    SuperWindow w;
    if (!w.open(ctx, args, false)) return kRefused;
    const bool dismiss = args.has(QStringLiteral("dismiss"));
    const std::optional<RecordSource> source = prepare(ctx, args, w);
    if (!source) return kRefused;
    const TemplateRecorder::RecordOutcome r = w.recorder->popupClosed(!dismiss, *source, w.state, w.in);
    printCount(ctx, w);
    if (r.added || dismiss) return kDone;
    const Session* s = ctx.session();
    return ctx.fail(QStringLiteral("the step could not be recorded in %1")
                        .arg(s ? QDir::toNativeSeparators(s->paths().filterDb()) : QString()));
}

MobanAddSuperCommand::MobanAddSuperCommand(const SuperForm& form)
    : MobanAddCommand(form.name, form.synopsis,
                      QStringLiteral("Records `filter %1` as a step of the filter template.").arg(form.name),
                      form.positionals, form.options),
      m_form(form) {}

QString MobanAddSuperCommand::check(const Args& args) const { return m_form.check(args); }

std::optional<RecordSource> MobanAddSuperCommand::prepare(CliContext& ctx, const Args& args,
                                                          SuperWindow& w) const {
    const auto call = m_form.call(ctx, args);
    if (!call) return std::nullopt;
    ArgsPrompter prompter(call->answers);
    if (call->direct) {
        w.in = *call->direct;
        w.workspace->setStepCode(static_cast<int16_t>(super_filter::stepCode(call->button)));
    } else if (!w.super->click(call->button, FilterWorkspace::Mouse::Right, w.in, w.tab, prompter)
                    .popupRecordMenu) {
        prompter.fail(ctx, QStringLiteral("the action ended"));
        return std::nullopt;
    }
    return RecordSource::super(call->button);
}

MobanAddRelationCommand::MobanAddRelationCommand() : MobanAddSuperCommand(super_forms::relation()) {}
MobanAddHistoryCommand::MobanAddHistoryCommand() : MobanAddSuperCommand(super_forms::history()) {}
MobanAddInclusionCommand::MobanAddInclusionCommand() : MobanAddSuperCommand(super_forms::inclusion()) {}
MobanAddSameAsTemplateCommand::MobanAddSameAsTemplateCommand()
    : MobanAddSuperCommand(super_forms::sameAsTemplate()) {}

MobanAddInvertCommand::MobanAddInvertCommand(const QString& form, const QString& description, int code)
    : MobanAddCommand(form, {}, description, {}, {}), m_code(code) {}

std::optional<RecordSource> MobanAddInvertCommand::prepare(CliContext&, const Args&, SuperWindow& w) const {
    w.workspace->setStepCode(static_cast<int16_t>(m_code));
    return RecordSource::invert();
}

MobanAddInvertAllCommand::MobanAddInvertAllCommand()
    : MobanAddInvertCommand(QStringLiteral("invert-all"),
                            QStringLiteral("Records a step that inverts every ticket."), 2) {}

MobanAddInvertLastCommand::MobanAddInvertLastCommand()
    : MobanAddInvertCommand(QStringLiteral("invert-last"),
                            QStringLiteral("Records a step that inverts what the step before did."), 1) {}

MobanAddIntegratedCommand::MobanAddIntegratedCommand()
    : MobanAddCommand(
          QStringLiteral("integrated"),
          QStringLiteral(
              "[--params NAMES] [--range NAME LO HI]... [--list NAME \"V V\"]... [--interval LO HI] "
              "[--or] [--exclude] [--tolerance N] [--code C]"),
          QStringLiteral("Records the boxes of the integrated filter (多选参数整合过滤) as a step."), {},
          integratedOptions()) {}

QString MobanAddIntegratedCommand::check(const Args& args) const {
    return window_boxes::checkSense(args, false);
}

std::optional<RecordSource> MobanAddIntegratedCommand::prepare(CliContext&, const Args& args,
                                                               SuperWindow& w) const {
    // Option29 records the code the window holds: 0 in a fresh window, or --code.
    if (args.has(QStringLiteral("code")))
        w.workspace->setStepCode(static_cast<int16_t>(args.integer(QStringLiteral("code"))));
    window_boxes::readRun(args, w.state, window_boxes::Tick::OwnBox);
    window_boxes::readSense(args, w.state);
    return RecordSource::integrated();
}

MobanReplayCommand::MobanReplayCommand()
    : Command(QStringLiteral("moban replay"), kWindowSynopsis,
              QStringLiteral("Runs every step of the filter template on the table; prints the live count.")) {
    options(windowOptions());
}

int MobanReplayCommand::execute(CliContext& ctx, const Args& args) const {
    SuperWindow w;
    if (!w.open(ctx, args, true)) return kRefused;
    w.recorder->replay(w.state, w.in, w.tab);
    return w.finish(ctx);
}

MobanEditCommand::MobanEditCommand(const QString& name, const QString& description, Edit edit)
    : Command(name, kWindowSynopsis, description), m_edit(edit) {
    options(windowOptions());
}

int MobanEditCommand::execute(CliContext& ctx, const Args& args) const {
    SuperWindow w;
    if (!w.open(ctx, args, false)) return kRefused;
    (w.recorder.get()->*m_edit)();
    return printCount(ctx, w);
}

MobanDeleteLastCommand::MobanDeleteLastCommand()
    : MobanEditCommand(
          QStringLiteral("moban delete-last"),
          QStringLiteral("Deletes the last step of the filter template; prints the count of steps."),
          &TemplateRecorder::deleteLast) {}

MobanClearCommand::MobanClearCommand()
    : MobanEditCommand(
          QStringLiteral("moban clear"),
          QStringLiteral("Deletes every step of the filter template; prints the count of steps."),
          &TemplateRecorder::clear) {}
