#pragma once

// The four buttons under the six-number window's grid. They differ from the filter window's:
// 过滤复位 puts every row back as the last filter found it, and 上次反选 leaves preunslt alone.

#include "engine/candidate_table.h"

namespace six_actions {

void resetAll(CandidateTable& t);    // Command1: unslt = false
void resetLast(CandidateTable& t);   // cmdRetn: unslt = preunslt
void invertAll(CandidateTable& t);   // Command2: preunslt = unslt, then unslt = not unslt
void invertLast(CandidateTable& t);  // Command3: tmpunslt = preunslt, then the rows live before the
                                     // last filter change state

}  // namespace six_actions
