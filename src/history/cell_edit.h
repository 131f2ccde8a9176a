#pragma once

// Editing a cell of the history grid MSFlexGrid1 through the edit box Text1 laid over it.
// The grid has Drawnum + 1 rows (row 0 the header, row r the draw with Idx r) and 9 columns:
// "序数", "期号", five front numbers, two back numbers.

#include "history/history_result.h"

#include <QString>
#include <QStringList>

class Prompter;
class Session;

namespace cell_edit {
inline constexpr int kColumns = 9;
inline constexpr int kIndexColumn = 0;
inline constexpr int kIssueColumn = 1;
inline constexpr int kFirstFrontColumn = 2;
inline constexpr int kFirstBackColumn = 7;
inline constexpr int kLastColumn = kColumns - 1;
// "序数", "期号", "前1位" .. "前5位", "后1位", "后2位".
const QStringList& headers();
// The Figarr slot a grid column shows: 0 the issue, 1..5 front, 6..7 back.
inline int slotOf(int column) { return column - 1; }
}  // namespace cell_edit

class CellEdit {
public:
    // The keys Text1 answers: Esc hides it, Enter and Tab commit, the arrows commit and move.
    enum class Key { Enter, Tab, Up, Down, Escape };

    CellEdit(Session& session, Prompter& prompter) : m_session(session), m_prompter(prompter) {}

    // The grid's key handler opens Text1 only for these characters.
    static bool acceptsKey(QChar c);
    // The issue and number cells of the draw rows; not the header, not the row numbers.
    bool isEditable(int row, int column) const;

    struct Commit {
        HistoryActionResult result;
        int nextRow = 0;  // the cell the grid moves to
        int nextColumn = 0;
    };

    // Commits Text1's text into the cell. A number must lie in its zone and strictly between
    // its neighbours, otherwise the message is shown and nothing changes. The new number is
    // written to fig/fighou and figquan (the issue to fig only), the frequencies of its zone
    // move one count from the old number to the new, and the row's parameters are recomputed
    // (Paracount). Escape changes nothing.
    Commit commit(int row, int column, const QString& text, Key key);

private:
    Commit next(int row, int column, Key key) const;

    Session& m_session;
    Prompter& m_prompter;
};
