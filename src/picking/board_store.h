#pragma once

// The number board kept in the workspace's settings (section Board) between sessions and
// between command-line calls: the picks and bankers of both zones in list order. Loading
// replays them through the board's own commands, so every board rule applies to them.

#include "picking/number_board.h"
#include "workspace/settings.h"

namespace board_store {

// Writes the four lists at once; false when the settings could not be saved.
bool save(Settings& settings, const QString& workspace, const BoardState& board);
// Empties both zones (重选 on a zone that holds numbers) and replays the stored lists: picks as the
// player's left clicks (a click by program would count the tickets of the last zone replayed as
// if both zones held its numbers), bankers by ActiveNum and toggleBanker. Numbers outside a zone's size are left out.
void load(Settings& settings, const QString& workspace, NumberBoard& board);

}  // namespace board_store
