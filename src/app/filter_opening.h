#pragma once

#include "generation/expansion.h"
#include "generation/wheels/wheel_catalogue.h"

class FilterWorkspace;
class Prompter;

// The load step of GAgan / Gdanagan: expands the board into a fresh zuhe and opens the window's
// logic on it. A refusal is shown through `prompter` and leaves the stored table as it was.
bool openExpansionWindow(FilterWorkspace& window, const BoardState& board, ExpansionKind kind,
                         Prompter& prompter, EngineProgress* progress = nullptr);

// The load step of GAganRote: the wheel table `table` of `family` from the program folder's
// wheel database, its positions turned into the board's numbers (a banker wheel maps the
// bankers first) with every pair of the back picks, into a fresh zuheRote. A missing table
// gives no rows, and the window opens on an empty table.
void openWheelWindow(FilterWorkspace& window, const BoardState& board, wheels::Family family, const QString& table,
                     const QString& programFolder);
