#include "app/filter_opening.h"

#include "engine/memory_budget.h"
#include "filter/filter_workspace.h"
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
