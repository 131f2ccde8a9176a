#pragma once

#include "picking/frequency_picks.h"

#include <functional>

class NumberBoard;
class PickingDialogs;
class Prompter;
class Session;

// The commands of the menu 选号管理 on the main window's board: the eight frequency and
// omission picks, saving and recalling selections, and the selection template. After a command
// that may have changed the board, `changed` runs (the windows draw the board again and keep it).
class PickingCommands {
public:
    PickingCommands(Session& session, NumberBoard& board, Prompter& prompter, PickingDialogs& dialogs,
                    std::function<void()> changed);

    Session& session() { return m_session; }
    NumberBoard& board() { return m_board; }
    Prompter& prompter() { return m_prompter; }
    PickingDialogs& dialogs() { return m_dialogs; }

    // mnuHihg, mnuLow (and the back zone's): the count, the scope, the picks.
    void pickByFrequency(Zone zone, frequency_picks::Rank rank);
    // mnuYHigh, mnuYLow (and the back zone's): the bound, the picks.
    void pickByOmission(Zone zone, frequency_picks::OmissionBound bound);
    // mnuSave: the name, then the four rows.
    void savePicks();
    // mnuCall and mnuCallAdd: both replace the board with the chosen selection.
    void recallPicks();
    // mnusltmoban.
    void openTemplates();
    // Tells the windows the board changed.
    void boardChanged();

private:
    Session& m_session;
    NumberBoard& m_board;
    Prompter& m_prompter;
    PickingDialogs& m_dialogs;
    std::function<void()> m_changed;
};
