#pragma once

// A wheel's rows become the tickets of zuheRote: each row's positions turned into the player's
// numbers, each with every pair of the first back picks, the back pair varying fastest.

#include "engine/candidate_table.h"
#include "workspace/shared_state.h"

#include <cstdint>
#include <memory>
#include <vector>

struct WheelExpansionInput {
    std::vector<std::vector<int>> rows;  // the wheel's rows, positions from 1, in table order
    // The numbers by position (list[0] is position 1): PickList, or for a banker wheel the
    // bankers in marking order followed by PickList.
    std::vector<int16_t> list;
    // Banker wheels: the numbers of a row are sorted after mapping. Other wheels keep the
    // row's order (ascending already, since the rows and PickList are).
    bool sortMapped = false;
    std::vector<int16_t> back;  // PickListHou[1..PickCountHou]
    int backCount = 0;          // SpinCountHou: pairs of back[0 .. backCount - 1]

    // The board's lists as a wheel menu left them; a banker wheel maps the bankers first.
    static WheelExpansionInput fromBoard(const BoardState& board, std::vector<std::vector<int>> rows,
                                         bool bankerWheel);
};

// Rows: wheel rows times back pairs. A position beyond the list gives the number 0.
uint64_t wheelExpansionRows(const WheelExpansionInput& in);
std::unique_ptr<CandidateTable> expandWheel(const WheelExpansionInput& in);
