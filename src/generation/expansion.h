#pragma once

// Expansion of the picks into a candidate table: GAgan and Gdanagan into zuhe, GAganf and
// Gdanaganf into zuhef, with the row order and idx of their nested counters, the banker
// insertion with its quirks, and the multi-ticket path of GAgan.

#include "filter/candidate_table.h"
#include "filter/engine_progress.h"
#include "workspace/shared_state.h"

#include <QString>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

class Prompter;
class FilterWorkspace;

enum class ExpansionKind { GAgan, Gdanagan, GAganf, Gdanaganf };

// What the load step of a window reads from the board.
struct ExpansionInput {
    ExpansionKind kind = ExpansionKind::GAgan;
    // The lists by position: front[0] is list position 1. SpinCount entries are read.
    std::vector<int16_t> front;
    std::vector<int16_t> back;
    std::vector<int16_t> frontBankers;  // DanList in marking order
    std::vector<int16_t> backBankers;   // DanListHou
    bool multi = false;                 // MultiMode (GAgan only)
    std::vector<std::array<int16_t, 7>> multiRows;

    static ExpansionInput fromBoard(const BoardState& board, ExpansionKind kind);
};

// Rows the expansion will write (before it starts, for the memory check).
uint64_t expansionRows(const ExpansionInput& in);

// The expected total of step 3 (t kept as 32-bit, then times the back limits / 2 as a
// double); half of it goes to the range statistics of the filter window.
double expectedTotal(const BoardState& board, ExpansionKind kind);

struct ExpansionResult {
    std::unique_ptr<CandidateTable> table;  // null when refused or cancelled
    uint64_t captionCount = 0;              // RowCount, or MultiCount in multi mode
    bool refused = false;                   // too large for this machine
    QString message;                        // why it was refused
};

// Runs the expansion. `availableBytes` 0 checks the machine's free memory.
ExpansionResult expand(const ExpansionInput& in, EngineProgress* progress = nullptr, uint64_t availableBytes = 0);

// The load step of GAgan / Gdanagan: expands the board into a fresh zuhe and opens the window's
// logic on it. A refusal is shown through `prompter` and leaves the stored table as it was.
bool openExpansionWindow(FilterWorkspace& window, const BoardState& board, ExpansionKind kind, Prompter& prompter,
                         EngineProgress* progress = nullptr);
