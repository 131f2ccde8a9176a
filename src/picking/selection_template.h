#pragma once

// The selection template: an ordered list of picking steps kept in the table Xhmb (Idx, cmd,
// nmb) of the workspace's filter database, run in one go to fill the board. Steps 0..7 are the
// frequency and omission picks of the two zones over the whole history, step 8 adds a saved
// selection (without resetting the board).

#include "picking/frequency_picks.h"
#include "picking/saved_selections.h"
#include "workspace/sqlite_db.h"

#include <QList>
#include <QString>

#include <functional>

struct TemplateStep {
    int idx = 0;
    int cmd = 0;
    int nmb = 0;
};

namespace selection_template {

inline constexpr int kStepKinds = 9;
inline constexpr int kSavedSelectionStep = 8;

// The text of a step kind in the step list, and the proposal of its input box (empty for the
// saved selection, which is chosen from the list window). Unknown codes have no text.
QString stepText(int cmd);
QString stepProposal(int cmd);
// What a step asks for: the input box of the matching command.
frequency_picks::Prompt stepPrompt(int cmd);

// The table's availability when the template window opens.
enum class Opened { Ready, Restored, Failed };
// Opens Xhmb in `db`. When the table is missing (an older file), the file at `dbPath` is
// replaced by the program's template and reopened; Failed when even that has no table.
Opened open(SqliteDb& db, const QString& dbPath, const QString& templatePath);
// What the player reads when the table cannot be opened; the program then ends.
inline const QString kFailedTitle = QStringLiteral("数据库错误");
inline const QString kFailedText = QStringLiteral("数据库读写错误,程序即将退出!");

}  // namespace selection_template

class SelectionTemplate {
public:
    explicit SelectionTemplate(SqliteDb& db) : m_db(db) {}

    // The steps in table order.
    QList<TemplateStep> steps();
    // Appends a step with Idx = the last row's Idx + 1.
    bool add(int cmd, int nmb);
    // Deletes the steps with that Idx.
    bool remove(int idx);

    // The data the steps run on.
    struct Sources {
        const StatsViews& stats;
        SavedSelections& saved;
    };
    // Runs the steps in table order, each adding to the board.
    void run(NumberBoard& board, const Sources& sources);
    static void runStep(NumberBoard& board, const TemplateStep& step, const Sources& sources);

private:
    SqliteDb& m_db;
};
