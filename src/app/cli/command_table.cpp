#include "app/cli/command_table.h"

#include "app/cli/analysis_commands.h"
#include "app/cli/backtest_commands.h"
#include "app/cli/candidate_commands.h"
#include "app/cli/history_commands.h"
#include "app/cli/param_filter_commands.h"
#include "app/cli/pick_commands.h"
#include "app/cli/prize_commands.h"
#include "app/cli/selection_commands.h"
#include "app/cli/setting_commands.h"
#include "app/cli/spin_command.h"
#include "app/cli/super_filter_commands.h"
#include "app/cli/template_commands.h"
#include "app/cli/text_commands.h"
#include "app/cli/six_commands.h"
#include "app/cli/tool_commands.h"
#include "app/cli/wheel_commands.h"
#include "app/cli/workspace_commands.h"

namespace command_table {

namespace {

template <typename... C>
std::vector<std::unique_ptr<Command>> make() {
    std::vector<std::unique_ptr<Command>> commands;
    (commands.push_back(std::make_unique<C>()), ...);
    return commands;
}

QStringList nameWords(const Command& c) { return c.name().split(QLatin1Char(' ')); }

bool beginsWith(const QStringList& words, const QStringList& prefix) {
    return words.size() >= prefix.size() && words.mid(0, prefix.size()) == prefix;
}

QString listing(const std::vector<const Command*>& commands) {
    QString text;
    for (const Command* c : commands) {
        text += QStringLiteral("  ") + c->name();
        if (!c->synopsis().isEmpty()) text += QLatin1Char(' ') + c->synopsis();
        text += QStringLiteral("\n      ") + c->description() + QLatin1Char('\n');
    }
    return text;
}

}  // namespace

const std::vector<std::unique_ptr<Command>>& all() {
    static const auto commands =
        make<WorkspaceListCommand, WorkspaceCreateCommand, WorkspaceDeleteCommand, WorkspaceRenameCommand,
             RulesShowCommand, RulesSetCommand, HistoryImportCommand, HistoryAddCommand, HistoryEditCommand,
             HistoryDeleteLastCommand, HistoryClearCommand, HistoryShowCommand, HistoryDownloadCommand,
             HistoryDownloadDbCommand, StatsShowCommand, ExpandCommand, SpinCommand, CandidatesCountCommand,
             CandidatesShowCommand, CandidatesToggleCommand, CandidatesExportCommand, FilterParamCommand,
             FilterIntegratedCommand, FilterRelationCommand, FilterHistoryCommand, FilterInclusionCommand,
             FilterSameAsTemplateCommand, FilterResetAllCommand, FilterResetLastCommand,
             FilterInvertAllCommand, FilterInvertLastCommand, TemplateAddCommand, TemplateClearCommand,
             TemplateCountCommand, ReadTextCommand, SixParamCommand, SixHistoryCommand, SixResetAllCommand,
             SixResetLastCommand, SixInvertAllCommand, SixInvertLastCommand, SixSaveSettingCommand, SixLoadSettingCommand, MobanListCommand,
             MobanAddRelationCommand, MobanAddHistoryCommand, MobanAddInclusionCommand,
             MobanAddSameAsTemplateCommand, MobanAddInvertAllCommand, MobanAddInvertLastCommand,
             MobanAddIntegratedCommand, MobanReplayCommand, MobanDeleteLastCommand, MobanClearCommand,
             SettingSaveCommand, SettingLoadCommand, SettingListCommand, SettingDeleteCommand,
             SettingRenameCommand, RangeCommand, PrizeRulesShowCommand, PrizeRulesSetCommand,
             PrizeCheckCommand, PrizeListCommand, ReportWriteCommand, ReportListCommand, ReportShowCommand,
             FortuneCommand, PrintTicketsCommand, AnalysisTrendCommand, AnalysisFitCommand,
             AnalysisKLineCommand, AnalysisMeansCommand, AnalysisCorrelationCommand, AnalysisTransitionsCommand,
             AnalysisMomentsCommand, AnalysisDistributionCommand, AnalysisTableCommand, WheelListCommand,
             WheelShowCommand, WheelCheckCommand, WheelExpandCommand, PickFrequencyCommand, PickOmissionCommand,
             PickShowCommand, PickClearCommand, SelectionSaveCommand, SelectionListCommand, SelectionCallCommand,
             SelectionAddCommand, SelectionDeleteCommand, SelectionRenameCommand, SelectionTemplateListCommand,
             SelectionTemplateAddCommand, SelectionTemplateDeleteCommand, SelectionTemplateRunCommand, BacktestCommand, PassRateCommand>();
    return commands;
}

const Command* find(const QStringList& words, int* taken) {
    const Command* best = nullptr;
    for (const auto& c : all()) {
        const QStringList name = nameWords(*c);
        if (beginsWith(words, name) && (!best || name.size() > *taken)) {
            best = c.get();
            *taken = static_cast<int>(name.size());
        }
    }
    return best;
}

std::vector<const Command*> under(const QStringList& words) {
    std::vector<const Command*> out;
    for (const auto& c : all())
        if (beginsWith(nameWords(*c), words)) out.push_back(c.get());
    return out;
}

QString overview() {
    return QStringLiteral(
               "usage: shuangqu-cli [--home DIR] [--workspace NAME] COMMAND ...\n"
               "       shuangqu-cli COMMAND --help     the arguments and options of a command\n"
               "       shuangqu-cli --version\n\n"
               "--home DIR is the data root (default: $SHUANGQU_HOME, else the per-user data folder);\n"
               "--workspace NAME the workspace (default: the one entered last). Counts print as one\n"
               "line, tables as TSV with a header. Exit status: 0 done, 1 refused, 2 a usage error.\n\n"
               "commands:\n") +
           listing(under({})) +
           QStringLiteral("  help [COMMAND]\n      Shows this list, or a command's help.\n");
}

QString groupHelp(const QStringList& words) {
    return QStringLiteral("usage: shuangqu-cli %1 SUBCOMMAND ...\n\nsubcommands:\n")
               .arg(words.join(QLatin1Char(' '))) +
           listing(under(words));
}

}  // namespace command_table
