#include "app/cli/selection_commands.h"

#include "app/cli/cli_context.h"
#include "picking/saved_selections.h"
#include "picking/selection_template.h"

#include <QDateTime>

namespace {

QString quoteRefusal(const QString& name) {
    return QStringLiteral("a name with a double quote cannot be changed: %1").arg(name);
}

bool hasName(SavedSelections& saved, const QString& name) {
    for (const SavedSelectionRow& r : saved.list())
        if (r.name == name) return true;
    return false;
}

// The template table, restored from the program's copy when the file is older; false after
// printing the message when it cannot be opened.
bool openTemplate(CliContext& ctx, Session& s) {
    if (selection_template::open(s.filterDb(), s.paths().filterDb(), s.root().filterTemplate()) !=
        selection_template::Opened::Failed)
        return true;
    ctx.fail(selection_template::kFailedText);
    return false;
}

}  // namespace

SelectionSaveCommand::SelectionSaveCommand()
    : BoardCommand(QStringLiteral("selection save"), QStringLiteral("NAME"),
                   QStringLiteral("Saves the board's picks and bankers under a name (保存该次选号号码).")) {
    positional(QStringLiteral("NAME"), QStringLiteral("The selection's name; not empty."));
}

int SelectionSaveCommand::onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args& args) const {
    const QString name = args.positional(0);
    if (name.isEmpty()) return ctx.fail(QStringLiteral("the name is empty"));
    if (!SavedSelections(s.savedPicksDb()).save(name, board.state()))
        return ctx.fail(QStringLiteral("the selection could not be saved: %1").arg(s.savedPicksDb().lastError()));
    return kDone;
}

SelectionListCommand::SelectionListCommand()
    : SessionCommand(QStringLiteral("selection list"), {},
                     QStringLiteral("Prints the saved selections: the row to call, Idx, name, count and the front "
                                    "picks.")) {
    setAccess(Access::Reads);
}

int SelectionListCommand::run(CliContext& ctx, Session& s, const Args&) const {
    ctx.out << "row\tIdx\tName\tBit\tnumbers\n";
    int row = 0;
    for (const SavedSelectionRow& r : SavedSelections(s.savedPicksDb()).list()) {
        QStringList numbers;
        for (int n : r.numbers) numbers << QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
        ctx.out << ++row << '\t' << r.idx << '\t' << r.name << '\t' << r.count << '\t' << numbers.join(QLatin1Char(' '))
                << '\n';
    }
    return kDone;
}

SelectionLoadCommand::SelectionLoadCommand(const QString& name)
    : BoardCommand(name, QStringLiteral("IDX"),
                   QStringLiteral("Replaces the board with the selection stored under IDX (the row of `selection "
                                  "list` is the IDX used, as the list window does) and prints the board.")) {
    positional(QStringLiteral("IDX"), QStringLiteral("The selection's Idx, from 1."), ValueKind::integer());
}

int SelectionLoadCommand::onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args& args) const {
    const int idx = args.positionalInteger(0);
    if (idx < 1) return ctx.fail(QStringLiteral("IDX must be 1 or more"));
    SavedSelections(s.savedPicksDb()).load(board, idx, true);
    pick_output::printBoard(ctx, board.state());
    return kDone;
}

SelectionDeleteCommand::SelectionDeleteCommand()
    : SessionCommand(QStringLiteral("selection delete"), QStringLiteral("NAME"),
                     QStringLiteral("Deletes the front picks saved under NAME; the other lists stay.")) {
    positional(QStringLiteral("NAME"), QStringLiteral("The selection's name."));
}

int SelectionDeleteCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const QString name = args.positional(0);
    SavedSelections saved(s.savedPicksDb());
    if (name.contains(QLatin1Char('"'))) return ctx.fail(quoteRefusal(name));
    if (!hasName(saved, name)) return ctx.fail(QStringLiteral("no selection named %1").arg(name));
    if (!saved.remove(name)) return ctx.fail(s.savedPicksDb().lastError());
    return kDone;
}

SelectionRenameCommand::SelectionRenameCommand()
    : SessionCommand(QStringLiteral("selection rename"), QStringLiteral("NAME NEW"),
                     QStringLiteral("Renames a saved selection.")) {
    positional(QStringLiteral("NAME"), QStringLiteral("The selection's name."));
    positional(QStringLiteral("NEW"), QStringLiteral("The new name."));
}

int SelectionRenameCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const QString name = args.positional(0), renamed = args.positional(1);
    SavedSelections saved(s.savedPicksDb());
    for (const QString& n : {name, renamed})
        if (n.contains(QLatin1Char('"'))) return ctx.fail(quoteRefusal(n));
    if (!hasName(saved, name)) return ctx.fail(QStringLiteral("no selection named %1").arg(name));
    if (!saved.rename(name, renamed)) return ctx.fail(s.savedPicksDb().lastError());
    return kDone;
}

SelectionTemplateListCommand::SelectionTemplateListCommand()
    : SessionCommand(QStringLiteral("selection-template list"), {},
                     QStringLiteral("Prints the steps of the selection template.")) {
    setAccess(Access::Reads);
}

int SelectionTemplateListCommand::run(CliContext& ctx, Session& s, const Args&) const {
    if (!s.filterDb().tableExists(QStringLiteral("Xhmb")))
        return ctx.fail(QStringLiteral("no table Xhmb: `selection-template add` restores it"));
    ctx.out << "Idx\tcmd\tnmb\tstep\n";
    for (const TemplateStep& step : SelectionTemplate(s.filterDb()).steps())
        ctx.out << step.idx << '\t' << step.cmd << '\t' << step.nmb << '\t' << selection_template::stepText(step.cmd)
                << '\n';
    return kDone;
}

SelectionTemplateAddCommand::SelectionTemplateAddCommand()
    : SessionCommand(QStringLiteral("selection-template add"), QStringLiteral("STEP VALUE"),
                     QStringLiteral("Appends a step: 0..3 front high/low frequency, omission at least/at most; 4..7 "
                                    "the same on the back zone; 8 a saved selection (VALUE its row). Prints the "
                                    "step's Idx.")) {
    positional(QStringLiteral("STEP"), QStringLiteral("The step kind, 0..8."), ValueKind::integer());
    positional(QStringLiteral("VALUE"), QStringLiteral("The count, the omission or the selection's row."),
               ValueKind::integer());
}

int SelectionTemplateAddCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    const int cmd = args.positionalInteger(0), value = args.positionalInteger(1);
    if (cmd < 0 || cmd >= selection_template::kStepKinds) return ctx.fail(QStringLiteral("STEP must lie in 0..8"));
    if (value < -32768 || value > 32767) return ctx.fail(QStringLiteral("VALUE must lie in -32768..32767"));
    if (!openTemplate(ctx, s)) return kRefused;
    SelectionTemplate steps(s.filterDb());
    if (!steps.add(cmd, value)) return ctx.fail(s.filterDb().lastError());
    ctx.out << steps.steps().last().idx << '\n';
    return kDone;
}

SelectionTemplateDeleteCommand::SelectionTemplateDeleteCommand()
    : SessionCommand(QStringLiteral("selection-template delete"), QStringLiteral("IDX"),
                     QStringLiteral("Deletes the steps with that Idx.")) {
    positional(QStringLiteral("IDX"), QStringLiteral("The step's Idx."), ValueKind::integer());
}

int SelectionTemplateDeleteCommand::run(CliContext& ctx, Session& s, const Args& args) const {
    if (!openTemplate(ctx, s)) return kRefused;
    SelectionTemplate steps(s.filterDb());
    const int idx = args.positionalInteger(0);
    bool found = false;
    for (const TemplateStep& step : steps.steps()) found = found || step.idx == idx;
    if (!found) return ctx.fail(QStringLiteral("no step with Idx %1").arg(idx));
    if (!steps.remove(idx)) return ctx.fail(s.filterDb().lastError());
    return kDone;
}

SelectionTemplateRunCommand::SelectionTemplateRunCommand()
    : BoardCommand(QStringLiteral("selection-template run"), {},
                   QStringLiteral("Runs the template's steps on the board, each adding to it, and prints the board.")) {}

int SelectionTemplateRunCommand::onBoard(CliContext& ctx, Session& s, NumberBoard& board, const Args&) const {
    if (!openTemplate(ctx, s)) return kRefused;
    SavedSelections saved(s.savedPicksDb());
    SelectionTemplate(s.filterDb()).run(board, {s.stats(), saved});
    pick_output::printBoard(ctx, board.state());
    return kDone;
}
