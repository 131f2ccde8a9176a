#pragma once

// What a plot of the fitted line shows for one draw: the six samples placed on a square plot
// of kPlotUnits, the fitted line between the first and the last x, and the texts around it.
// Pure geometry, so that the drawing can be checked without pixels.

#include "history/draw_params.h"

#include <QLineF>
#include <QPointF>
#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace line_fit_plot {

// A plot is kPlotUnits wide and high; y runs upward from the plot's bottom edge.
inline constexpr double kPlotUnits = 2000;
// Each sample is drawn as a cross reaching this far from its centre in each direction.
inline constexpr double kCrossReach = 50;
// The origin and the five front numbers.
inline constexpr int kSamples = 6;
// The plots shown on opening: the newest draw and the seven before it.
inline constexpr int kRecentPlots = 8;

struct Geometry {
    draw_params::LineFit fit;
    std::array<QPointF, kSamples> samples;  // (x, y) as fitted: (0, 0) and (i, i-th number)
    std::array<QPointF, kSamples> points;   // the samples in plot units
    QLineF line;                            // the fitted line in plot units, first x to last x
};

// Places a value of [low, high] on the plot: its share of the range, scaled to the plot and
// divided by the sample count, so that the samples sit toward the plot's lower left corner.
// A range without width places every value at 0.
double place(double value, double low, double high);

Geometry geometryOf(const draw_params::FrontNumbers& numbers);

// The texts of one plot.
struct Labels {
    QString heading;  // 第<running number>期
    QString a;        // A=<value>
    QString b;        // B=<value>
    QString r;        // R=<value>, nothing after "R=" when the straightness is undefined
};
Labels labelsOf(int runningNumber, const draw_params::LineFit& fit);
// A fitted value as shown: up to kShownDigits significant digits (three values fit under a
// plot), never "-0".
inline constexpr int kShownDigits = 6;
QString formatValue(double value);

// The running numbers of the plots shown on opening, newest first; none with fewer than
// kRecentPlots draws.
std::vector<int> recentDraws(int drawCount);

// The draw named by four typed digits, thousands first (an untyped digit counts as 0); empty
// when it lies above the newest draw. 0 names the row before the first draw.
std::optional<int> typedDraw(const std::array<int, 4>& digits, int drawCount);

}  // namespace line_fit_plot
