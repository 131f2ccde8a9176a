#pragma once

// The trend grid of one zone, computed from the workspace's history: for every draw its drawn
// numbers and the omission figures read from the zone's omission table, then the three summary
// rows (current omissions, appearance counts, the board's marks). The window's model presents
// what this class holds; nothing here knows a widget.

#include "picking/number_board.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

class Session;

// The runs of a number over the draws of the grid, as players read them off a chart: the mean
// length of its omission runs (the gaps before, between and after its hits, an empty gap
// counting as 0), its longest omission run and its longest run of consecutive hits.
struct NumberRuns {
    double meanOmission = 0;
    int longestOmission = 0;
    int longestStreak = 0;
};

// One cell of a draw row.
struct TrendCell {
    int16_t figure = 0;  // the text of the cell, when shown
    bool shown = false;
    bool drawn = false;     // the number came in this draw: green background
    bool omission = false;  // the figure is an omission count: grey text
};

class TrendGrid {
public:
    // Heads of column 0.
    static inline const QString kIssueHead = QStringLiteral("历史期号");
    static inline const QString kOmissionHead = QStringLiteral("遗漏期数");
    static inline const QString kAppearanceHead = QStringLiteral("出现次(双击检索期数)");
    static inline const QString kMarksHead = QStringLiteral("拖'√'胆'◎'");
    static inline const QString kPickMark = QStringLiteral("√");
    static inline const QString kBankerMark = QStringLiteral("◎");
    // Heads of the rows of run statistics, shown on request under the summary rows.
    static inline const QString kMeanOmissionHead = QStringLiteral("平均遗漏");
    static inline const QString kLongestOmissionHead = QStringLiteral("最大遗漏");
    static inline const QString kLongestStreakHead = QStringLiteral("最大连出");

    TrendGrid(Session& session, Zone zone);

    // Fills the grid from the history and the omission table, counts every draw, and stores the
    // omissions of the table's last row as the zone's current omissions.
    void load();

    Zone zone() const { return m_zone; }
    int size() const { return m_size; }            // columns 1..size
    int drawCount() const { return m_drawCount; }  // R: draw rows 1..R
    int32_t issue(int row) const { return m_draws[static_cast<size_t>(row)][0]; }
    const TrendCell& cell(int row, int number) const;
    // The omission row: empty when the omission table has no row to read.
    std::optional<int16_t> currentOmission(int number) const;
    int appearances(int number) const;
    const NumberRuns& runs(int number) const { return m_runs[static_cast<size_t>(number)]; }
    // The mark of a number on the board: banker, pick or none.
    QString mark(int number) const;
    // Whether the value label of a number shows a pick (red) or a banker (green).
    bool picked(int number) const;
    bool banker(int number) const;
    double probability(int number) const;

    // Counts the appearances in the draws after index `after` (0: all draws).
    void countAppearances(int after);
    // Rewrites the omission row from the omission table's row of `issue`, and the zone's current
    // omissions with it; false, changing nothing, when the table has no such row.
    bool showOmissionsOf(int32_t issue);

private:
    QString omissionTable() const;
    QString omissionColumns() const;
    void setCurrentOmissions(const std::vector<int16_t>& row);
    void countRuns();
    TrendCell& at(int row, int number) { return m_cells[static_cast<size_t>(row * (m_size + 1) + number)]; }

    Session& m_session;
    Zone m_zone;
    int m_size = 0;
    int m_drawCount = 0;
    // What the grid shows is kept as filled: the window does not follow later changes of the history.
    std::vector<DrawNumbers> m_draws;               // by draw row, 1..R
    std::vector<TrendCell> m_cells;                 // rows 0..R by columns 0..size
    std::vector<std::optional<int16_t>> m_current;  // by number
    std::vector<int> m_appearances;                 // by number
    std::vector<NumberRuns> m_runs;                 // by number, over all draw rows
};
