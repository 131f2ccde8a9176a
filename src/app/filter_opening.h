#pragma once

#include "generation/expansion.h"

class FilterWorkspace;
class Prompter;

// The load step of GAgan / Gdanagan: expands the board into a fresh zuhe and opens the window's
// logic on it. A refusal is shown through `prompter` and leaves the stored table as it was.
bool openExpansionWindow(FilterWorkspace& window, const BoardState& board, ExpansionKind kind,
                         Prompter& prompter, EngineProgress* progress = nullptr);
