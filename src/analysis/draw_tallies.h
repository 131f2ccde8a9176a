#pragma once

// The tally tables of the history: one row per draw, columns that each stand for a value of a
// per-draw count (how many odd numbers, how many repeats of the previous draw, how many numbers
// in a band of the zone ...), the cell of the draw's value marked and holding it, and foot rows
// that total the columns. One builder for all kinds; a kind says what is counted.

#include "analysis/text_grid.h"
#include "history/history_views.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

enum class TallyKind {
    Intervals,          // per band of five numbers, how many of the draw's numbers fall in it
    Tails,              // per last digit, how many of the draw's numbers end in it
    Odd,                // how many odd numbers
    Even,               // how many even numbers
    Big,                // how many above the middle of the zone
    Small,              // how many at or below the middle
    Edges,              // how many lie next to (differ by 1 from) a number of the previous draw
    Repeats,            // how many the previous draw held too
    Runs,               // how many runs of consecutive numbers
    ParityRuns,         // how many runs of consecutive odd or consecutive even numbers (3 5, 12 14)
    Omissions,          // per band of omission 0, 1, 2, 3, 4 and more: the draw's numbers in it
    RecentAppearances,  // per band of appearances in the ten draws before: the draw's numbers in it
};

struct TallyTable {
    QString caption;
    QStringList heads;             // one per column
    std::vector<int> groupStarts;  // columns where a group starts, the first column included
    QStringList groupHeads;        // one per group
    std::vector<int32_t> issues;  // per draw row
    // Per draw row and column: the value shown in a marked cell, nothing elsewhere.
    std::vector<std::vector<std::optional<int>>> cells;
    struct Foot {
        QString head;
        std::vector<int> values;  // per column
    };
    std::vector<Foot> foot;
};

namespace draw_tallies {

// The kinds with their window's given name and the command line's name.
struct KindInfo {
    TallyKind kind;
    const char* window;
    const char* name;
};
const std::vector<KindInfo>& kinds();

TallyTable build(const DrawHistory& history, HistoryView scope, int zoneSize, TallyKind kind);

// The table as text: a row of group heads when there are several groups, the row of column
// heads ("期号" first), a row per draw, the foot rows.
TextGrid asText(const TallyTable& t);
inline int headRows(const TallyTable& t) { return t.groupStarts.size() > 1 ? 2 : 1; }

}  // namespace draw_tallies
