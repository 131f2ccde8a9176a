#pragma once

// The writers that append draws to the three views: Writefig, Writefighou, Writefigquan
// (whole and append import), InputHou and InputQuan with the front write of a manual entry.
// They work on a copy of the Session's arrays; the caller commits that copy to the Session
// only after the database transaction has committed, so a failure leaves both as they were.

#include "history/history_views.h"
#include "history/progress.h"
#include "workspace/game_rules.h"

class Session;
class SqliteDb;

// The history and statistics that a change works on.
struct HistoryState {
    DrawHistory history;
    StatsViews stats;

    static HistoryState of(Session& s);
    void commitTo(Session& s) &&;
};

struct ZoneShape {
    int frontSize = game_rules::kDefaultFront;
    int backSize = game_rules::kDefaultBack;
    game_rules::PositionCentres positionCentres =
        game_rules::positionCentres(game_rules::kDefaultFront, game_rules::kDefaultBack);

    static ZoneShape of(const Session& s);
};

// The denominator of the percentages after the rows, per path.
enum class Denominator {
    Batch,      // the imports: the numbers of this batch only
    DrawCount,  // manual entry, front: Drawnum x numbers per draw
    Running,    // manual entry, back and both: the view's own counter goes on
};

enum class WriteStatus {
    Ok,
    Cancelled,        // the progress callback asked to stop
    ZeroDenominator,  // no numbers counted: the percentages divide by 0
    NoFittedLine,     // five front numbers 0: the fitted line has no solution
    DatabaseError,
};

// Progress over several writers: rows already done before this writer, and rows in all.
struct ProgressSpan {
    const HistoryProgress* progress = nullptr;
    int before = 0;
    int total = 0;
};

// Appends rows from..to of state.history.figarr to one view: computes each row's parameters
// with the omissions as they stand (append path), adds the draw row (fig0 falls back to Idx
// when the issue is 0), counts the numbers, moves the omissions, adds the omission row, and
// finally rewrites the frequency table with the chosen denominator. The figquan working row
// starts at 0 and is carried from row to row.
WriteStatus appendRows(SqliteDb& db, HistoryView view, HistoryState& state, int from, int to,
                       const ZoneShape& shape, Denominator denominator, ProgressSpan progress = {});

// The whole import's writers: empties the draw and omission tables of the three views, then
// runs appendRows over every row of state.history for fig, fighou and figquan in that order.
// `state` holds fresh statistics and the parsed draws.
WriteStatus replaceAllViews(SqliteDb& db, HistoryState& state, const ZoneShape& shape,
                            const HistoryProgress* progress = nullptr);

const QString& writeStatusText(WriteStatus s);
