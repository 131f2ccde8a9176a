#pragma once

// The per-draw parameters of fig (five front numbers), fighou (two back numbers) and
// figquan (all seven as one working row). One arithmetic serves both writers: the append
// path (imports, manual entry) and the recompute path (Paracount, ParaHou, ParaQuan after a
// cell edit). Where the two writers differ, the difference is a named option below.

#include "workspace/game_rules.h"
#include "workspace/shared_state.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace draw_params {

// Which writer computes the row.
enum class Path {
    Append,     // Writefig/Writefighou/Writefigquan, InputHou/InputQuan
    Recompute,  // Paracount/ParaHou/ParaQuan
};

using Omission = std::array<int16_t, kNumberSlots>;

// The numbers of one view of a draw, in stored order.
using FrontNumbers = std::array<int, 5>;
using BackNumbers = std::array<int, 2>;
// The working row s1..s7 of figquan, index 0 unused.
using WorkingRow = std::array<int, 8>;

FrontNumbers frontOf(const DrawNumbers& d);
BackNumbers backOf(const DrawNumbers& d);

// The core over any count of numbers: sums, counts, runs, gaps, complexity, decades, the
// omission sum and spread, and the pairs equal to a number of the previous row.
struct CoreOptions {
    double middle = 0;  // numbers above it are big (Mornum, DZnum), the others small
    // ParaHou: a number equal to the middle counts as big.
    bool middleCountsBig = false;
    // fighou: intYljz is |Yl[y1] - Yl[y2]|; elsewhere the largest minus the smallest with
    // the largest starting from 0 and the smallest from 100.
    bool spreadIsAbsDifference = false;
};
DrawParams core(std::span<const int> v, std::span<const int> prev, const Omission& omission,
                std::span<const int> spreadNumbers, const CoreOptions& options);

// The complexity: distinct differences among the numbers minus (count - 1).
int16_t complexity(std::span<const int> v);
// The longest unbroken run of adjacent differences equal to 1.
int16_t longestRun(std::span<const int> v);

// The least-squares line through six points: the origin, counted as a sample on purpose so
// that every line is pulled toward it, and (i, xi) for i = 1..5. A is the intercept, B the
// slope and R the straightness (correlation of x and y, 1 for points on one rising line).
// R is empty when y does not vary (all five numbers 0: the row before the first draw).
struct LineFit {
    double A = 0;
    double B = 0;
    std::optional<double> R;
};
LineFit lineFit(const FrontNumbers& x);

// R and a of lineFit as the 32-bit floats they are stored as in fig. Empty when R is.
struct Fit {
    float R = 0;
    float a = 0;
};
std::optional<Fit> fittedLine(const FrontNumbers& x);

// fig. `oldLxnum` is the row's stored Lxnum: the recompute path does not reset it, so a
// longer old run survives an edit. Empty when the fitted line has no solution.
std::optional<DrawParams> front(const FrontNumbers& x, const FrontNumbers& prev, const Omission& omission,
                                int frontSize, const game_rules::PositionCentres& positionCentres, Path path,
                                int16_t oldLongestRun = 0);

// fighou. The recompute path takes the row's new front sum and the front zone's size: its
// Znum is front Znum + y2, its Sumgwnum front Znum mod 10, and its middle Bitnum/2.
struct BackRecompute {
    int16_t frontSum = 0;
    int frontSize = game_rules::kDefaultFront;
};
DrawParams back(const BackNumbers& y, const BackNumbers& prev, const Omission& omission, int backSize,
                const game_rules::PositionCentres& positionCentres, Path path,
                const BackRecompute& recompute = {});

// The interleave of the seven numbers into the working row: not a true merge. `working` is not
// cleared first: the bulk import carries it from row to row, the recompute path starts at 0.
void fillWorkingRow(const FrontNumbers& x, const BackNumbers& y, WorkingRow& working);

// figquan over the working row. The append path sums YlarrQuan over the slots and leaves
// Cnum, Lnum and Lxnum 0; the recompute path sums Ylarr (the front array), counts Cnum
// between the working rows of this row and the previous one, and fills Lnum and Lxnum.
// `spreadOmission` is YlarrQuan in both paths (intYljz is written by the append path only).
DrawParams both(const FrontNumbers& x, const BackNumbers& y, const WorkingRow& working,
                const WorkingRow& prevWorking, const Omission& slotOmission, const Omission& spreadOmission,
                int frontSize, Path path);

// Qnum2 and Qnum3 as each writer stores them: the append path puts 21.. into Qnum2 and
// leaves Qnum3 at 0; the recompute path stores both as counted.
void storeDecades(DrawParams& p, const std::array<int16_t, 4>& counted, Path path);

}  // namespace draw_params
