#pragma once

// Expansion of the picks into a candidate table: GAgan and Gdanagan into zuhe, GAganf and
// Gdanaganf into zuhef, with the row order and idx of their nested counters, the banker
// insertion with its quirks, and the multi-ticket path of GAgan.

#include "engine/candidate_table.h"
#include "engine/engine_progress.h"
#include "workspace/shared_state.h"

#include <QString>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

class Prompter;

enum class ExpansionKind { Picks, Bankers, SixPicks, SixBankers };

// What the load step of a window reads from the board.
struct ExpansionInput {
    ExpansionKind kind = ExpansionKind::Picks;
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
