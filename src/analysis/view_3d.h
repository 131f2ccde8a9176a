#pragma once

// The history as a chart of seven series (the positions: five front, two back numbers) over
// the draws, the twelve chart types the 3D view offers, and how each type arranges the data.

#include "workspace/shared_state.h"

#include <QString>
#include <QStringList>

#include <array>
#include <vector>

namespace view_3d {

// The seven numbers of a draw.
inline constexpr int kPositions = 7;
// The newest draws shown on opening: a graph of every draw (some two thousand rows of seven)
// renders slowly, so the view starts with these and can be widened to the whole history.
inline constexpr int kDefaultDrawsShown = 100;

// Which way the chart runs.
enum class Orientation {
    OverTime,      // 时变: the draws run along the axis, one series per position
    OverPosition,  // 位变: the positions run along the axis, one series per draw
};

// The graph that shows a type.
enum class Graph {
    Bars,     // a bar per value
    Surface,  // a surface through the values
};

struct ChartType {
    QString caption;
    Graph graph;
    Orientation orientation;
    // Surface: filled as an area; otherwise only its grid lines are drawn, as lines.
    bool filled = false;
    // Bars: no gap between neighbouring bars, so that their tops form steps.
    bool touching = false;
    // Seen straight from the front without perspective: the 2D types.
    bool flat = false;
};

// The twelve types in the order of their options Option1(0..11).
inline constexpr int kChartTypes = 12;
const std::array<ChartType, kChartTypes>& chartTypes();

// The values of a chart: one row per series, one column per step along the axis.
struct Table {
    QStringList rowLabels;
    QStringList columnLabels;
    std::vector<std::vector<int>> values;  // values[row][column]

    int rows() const { return static_cast<int>(values.size()); }
    int columns() const { return values.empty() ? 0 : static_cast<int>(values.front().size()); }
};

// The draws first..last (running numbers from 1) arranged for an orientation. Series and steps
// are labelled by the position ("1".."7") or by the draw's issue.
Table arrange(const DrawHistory& history, int first, int last, Orientation orientation);

// At most this many labels are drawn along an axis: each label is a texture of the graph, and
// a label per draw makes a graph of a hundred draws slow to open and its labels unreadable.
inline constexpr int kMostAxisLabels = 12;
// The labels with all but every k-th blanked, k the smallest step that keeps at most `most`;
// the newest (last) label is always kept.
QStringList thinnedLabels(const QStringList& labels, int most = kMostAxisLabels);

// The first draw shown when `shown` of the newest draws are shown (at least one, at most all).
int firstShown(int drawCount, int shown);

}  // namespace view_3d
