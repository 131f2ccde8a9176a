#pragma once

// What the trend chart windows plot: the series of each chart, the window of draws it shows,
// its scale and its derived lines, and the slices of the probability pie. The windows only
// draw what these functions give; nothing here knows a widget.

#include "history/history_views.h"
#include "workspace/shared_state.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

namespace trend_charts {


// A colour as red, green and blue; the windows turn it into their own colour type.
struct Rgb {
    int red = 0;
    int green = 0;
    int blue = 0;
    bool operator==(const Rgb&) const = default;
};

// The columns the set's table holds; a chart leaves out a column its set lacks.
const QStringList& columnsOf(HistoryView set);
// A column over draws 1..R, oldest first; nullopt when the set lacks the column.
std::optional<std::vector<double>> columnSeries(const DrawHistory& history, HistoryView set, const QString& column);

// A span of draws given as indices into a series of draws 1..R (0 = draw 1), end exclusive.
struct DrawSpan {
    size_t first = 0;
    size_t end = 0;
    size_t size() const { return end - first; }
};
// The latest `width` draws at most: the newest at the right, fewer draws start at the left edge.
DrawSpan latestDraws(size_t drawCount, size_t width = 40);
// The draws from R-100 to R (101 points), or all of them when there are fewer.
DrawSpan lastHundred(size_t drawCount);
// The values of `series` within `span`.
std::vector<double> slice(const std::vector<double>& series, DrawSpan span);

// One line of a chart: its values from the first shown draw on, its colour and a label.
struct Line {
    std::vector<double> values;
    Rgb colour;
    QString label;  // drawn at the right end when not empty
    int width = 1;
};
// A horizontal line across the chart at `value`.
struct Level {
    double value = 0;
    Rgb colour;
};
// A chart ready to draw: the vertical scale, the grid, the lines and the derived levels.
struct Chart {
    double min = 0;
    double max = 1;
    int columns = 40;  // grid divisions along the draws
    int rows = 40;     // grid divisions of the scale
    int points = 40;   // draw positions across the width
    QList<Line> lines;
    QList<Level> levels;
    QStringList headings;        // one per line for two-line plots, else titles
    QList<Rgb> headingColours;
    bool markLastPoint = false;  // the thick dot on the newest value
    QString topLabel;            // at the top of the scale ("+20")
    QString bottomLabel;         // at the bottom ("-20")
    // With coordinates: the scale's values beside every fifth grid row and the draw numbers
    // under every fifth point, the first point being draw `firstDraw`.
    bool coordinates = false;
    int firstDraw = 1;
    // With coordinates: these texts under every fifth point instead of draw numbers (issues).
    QStringList pointLabels;
};

// ---- The 40-draw windows -------------------------------------------------------------

inline constexpr int kDrawWindow = 40;
inline constexpr int kPositions = 7;

// The colours of positions 1..7 in the all-positions view.
const std::array<Rgb, kPositions>& positionColours();

// The position chart: state 0 shows all seven positions without derived lines; state p
// (1..7) one position with its sample mean (red), ideal mean (yellow) and K line (green).
QString positionTitle(int state);
QString positionButtonCaption(int state);
Chart positionChart(const DrawHistory& history, int state, int frontSize, int backSize);
// The level lines of position p (the means the window shows): sample then ideal.
std::array<double, 2> positionMeans(const DrawHistory& history, int position, int frontSize, int backSize);

// The centre-offset chart of position p (1..7): the number minus its position's centre, the
// front positions from the front set and the back ones from the back set, with its K line.
QString offsetButtonCaption(int position);
std::vector<double> offsetSeries(const DrawHistory& history, int position);
Chart offsetChart(const DrawHistory& history, int position);

// The sum chart of the scope with its K line and coordinates; scale 0 to (F-3)*7.
double sumScaleTop(int frontSize);
Chart sumChart(const DrawHistory& history, HistoryView set, int frontSize);

// ---- The hundred-draw windows ----------------------------------------------------------

// A line of a small plot: a column, or the sum of several columns; `fixedSet` reads one set
// whatever the scope (nullopt: the scope's set).
struct SeriesSource {
    QStringList columns;
    std::optional<HistoryView> fixedSet;
};
struct PlotPlan {
    QString given;  // objectName of the plot
    QStringList headings;
    QStringList wholeScopeHeadings;  // replaces `headings` in the whole scope when not empty
    QList<SeriesSource> sources;
    double min = 0;
    double max = 1;
    double gridStep = 1;  // scale units per grid row
};
struct WindowPlan {
    QString given;
    QString caption;
    QList<PlotPlan> plots;
    QList<HistoryView> blankIn;  // scopes in which the window draws no line at all
};

enum class HundredWindow { Standard, Advanced, Gaps, Ranges, Sums };  // frmTec, frmTec2..5
WindowPlan hundredWindowPlan(HundredWindow which, int frontSize);
// One plot of the window for the scope over the last hundred draws; a source the scope's set
// lacks gives no line.
Chart hundredPlot(const DrawHistory& history, const WindowPlan& window, const PlotPlan& plot, HistoryView scope);

// ---- The parameter strips ---------------------------------------------------------------

// The latest 240 draws of a column as six strips of 40, oldest first, each with the issues
// under every fifth point. The scale runs from 0 to the column's greatest value after the first
// draw of the span (that draw itself is not looked at). Fewer draws start at draw 1 and leave the
// last strips short or empty; a column the scope's set lacks gives empty strips.
inline constexpr int kStrips = 6;
std::vector<Chart> parameterStrips(const DrawHistory& history, HistoryView set, const QString& column);

// ---- The pie -----------------------------------------------------------------------------

struct Slice {
    QString label;
    double value = 0;
};
// One slice per number 1..F with its count of appearances.
QList<Slice> numberSlices(const NumberStats& stats, int frontSize);
// Four slices: the counts of 1-10, 11-20, 21-30 and 31-36 summed.
QList<Slice> rangeSlices(const NumberStats& stats, int frontSize);

}  // namespace trend_charts
