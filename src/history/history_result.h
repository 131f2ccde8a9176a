#pragma once

// What a history action hands back to the window that called it.

#include <QString>

// What the window does with its history grid MSFlexGrid1 afterwards.
enum class GridAction {
    None,       // leave the grid as it is
    AppendRow,  // one row more at the end: the draw just entered
    Rebuild,    // rebuild the grid from the Session, with Label12 and the last row in view
    Clear,      // the grid keeps only its header row
};

struct HistoryActionResult {
    enum class Outcome {
        Done,
        Cancelled,   // the player said no or closed a dialog; nothing changed
        Refused,     // bad input: the message was shown, nothing changed
        Failed,      // the action failed: the message was shown, nothing changed
        StartAgain,  // the old copy of the history file was moved aside: the player starts again
    };
    Outcome outcome = Outcome::Cancelled;
    GridAction grid = GridAction::None;
    int rowsAdded = 0;
    QString path;  // a file the action wrote or that the window opens

    bool done() const { return outcome == Outcome::Done; }
};
