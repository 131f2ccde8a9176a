#pragma once

#include "engine/candidate_table.h"
#include "engine/engine_progress.h"
#include "engine/row_formula.h"
#include "filter/param/param_filter.h"

#include <memory>

#include <vector>

// The tally of the integrated filter. Each step adds 1 to Errnum of the rows it catches and
// appends its reason to their Fliter. The steps run block by block over the rows, so that a
// row's reason is made once from its old reason, the steps that caught it and their values:
// rows with the same three share one entry of the reason table, joined from the pieces of the
// steps' texts, so that no text is made per row.
namespace param_reason_builder {

// Runs the steps in order on every row: Errnum of every row, the reasons of the caught ones,
// canshu as the last computation leaves it. Between blocks `progress` hears how far the run got
// and may cancel it: then the table is left as it was (the reason table may keep entries that no
// row uses) and the result is false. Where every value of the steps is a function of the row's
// numbers and `formula` makes the texts of these steps, a caught row's reason is its old reason
// joined to the formula: no text, and no entry, is made per row.
bool tally(CandidateTable& table, const std::vector<FilterStep>& steps, EngineProgress* progress = nullptr,
           const std::shared_ptr<const RowFormula>& formula = nullptr);

}  // namespace param_reason_builder
