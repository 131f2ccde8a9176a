#include "app/filter_opening.h"

#include "engine/memory_budget.h"
#include "filter/filter_workspace.h"
#include "generation/wheels/wheel_expansion.h"
#include "generation/wheels/wheel_store.h"
#include "workspace/prompter.h"

bool openExpansionWindow(FilterWorkspace& window, const BoardState& board, ExpansionKind kind,
                         Prompter& prompter, EngineProgress* progress) {
    ExpansionResult r = expand(ExpansionInput::fromBoard(board, kind), progress);
    if (r.refused) {
        prompter.inform(memory_budget::kTitle, r.message, Prompter::Icon::Warning);
        return false;
    }
    if (!r.table) return false;
    const uint64_t count = r.captionCount;
    window.openMade(std::move(r.table), count);
    return true;
}

void openWheelWindow(FilterWorkspace& window, const BoardState& board, wheels::Family family, const QString& table,
                     const QString& programFolder) {
    std::optional<wheel_store::Rows> rows =
        wheel_store::readTable(wheel_store::databasePath(programFolder, family), table);
    const WheelExpansionInput in = WheelExpansionInput::fromBoard(board, rows ? std::move(*rows) : wheel_store::Rows{},
                                                                  family == wheels::Family::Banker);
    std::unique_ptr<CandidateTable> made = expandWheel(in);
    const uint64_t count = made->rowCount();
    window.openMade(std::move(made), count);
}
