#pragma once

// The history filter (Option26/27/28up) as a kernel over a candidate table: canshu = a row's
// best match with the last N draws, JSqihao = the newest draw that reached it, SKnum = the match
// with the oldest of them; the row dies where canshu reaches the threshold.

#include "engine/candidate_table.h"
#include "engine/engine_progress.h"
#include "filter/param/param_catalogue.h"
#include "workspace/shared_state.h"

#include <QString>

#include <cstdint>

namespace history_kernel {

struct HistoryRun {
    ZoneScope scope = ZoneScope::Front;
    // 0: the button is disabled in this scope (Option27 in the back tab) and its worker runs
    // no statement on the table.
    int threshold = 3;
    QString caption;  // the button's caption as the tab shows it
    QString nText;    // sknum as typed or stored: the N of the reason
    // Passes of the loop For i = 0 To N - 1; pass i reads history row drawnum - i, and a pass
    // whose row lies before the history runs only its first statement (SKnum = 0).
    int64_t passes = 0;
};

uint64_t history(CandidateTable& t, const HistoryRun& run, DrawHistoryView draws,
                 EngineProgress* progress = nullptr);

// The reason of a history kill.
QString historyReason(const HistoryRun& run, int32_t issue, int matches);

}  // namespace history_kernel
