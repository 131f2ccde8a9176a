#pragma once

// The derived lines of the trend charts: the weighted K line of any series, and the sample and
// ideal means of a drawn position. Values come from the draw history as plain series, oldest
// draw first; nothing here knows a widget.

#include "workspace/shared_state.h"

#include <cstdint>
#include <span>
#include <vector>

namespace chart_lines {

// The series of a position over draws 1..R: positions 1..5 are the front numbers, 6 and 7 the
// back numbers.
std::vector<double> positionSeries(const DrawHistory& history, int position);

// The weighted K line, one value per element of `series`. The first ten points weigh the draws
// so far 1, 2, .. i from the oldest (denominator 1 + .. + i); later points weigh the last ten
// draws 10, 9, .. 1 from the newest (denominator 55). The running sum and the result are 16-bit
// integers: each addition and the division round to the nearest whole unit, a half to even, so
// the line moves in whole units.
std::vector<int16_t> kLine(std::span<const double> series);

// The mean of a position over all draws; 0 with no draws.
double sampleMean(const DrawHistory& history, int position);
// The centre of the position's band of its zone: front F/10 + (p-1)F/5, back B/4 + (p-6)B/2.
double idealMean(int position, int frontSize, int backSize);

}  // namespace chart_lines
