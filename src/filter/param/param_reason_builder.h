#pragma once

#include "engine/candidate_table.h"
#include "filter/param/param_filter.h"

#include <vector>

// The tally of the integrated filter. Each step adds 1 to Errnum of the rows it catches and
// appends its reason to their Fliter. The steps run block by block over the rows, so that a
// row's reason is made once from its old reason, the steps that caught it and their values:
// rows with the same three share one entry of the reason table, joined from the pieces of the
// steps' texts, so that no text is made per row.
namespace param_reason_builder {

// Runs the steps in order on every row; Errnum must be 0 on entry.
void tally(CandidateTable& table, const std::vector<FilterStep>& steps);

}  // namespace param_reason_builder
