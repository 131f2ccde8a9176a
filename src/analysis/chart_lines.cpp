#include "analysis/chart_lines.h"

#include "workspace/game_rules.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace chart_lines {
namespace {

// A value stored into a 16-bit integer: rounded to nearest, a half to even, and held within
// the type's range.
int16_t toWhole(double v) {
    constexpr double lo = std::numeric_limits<int16_t>::min();
    constexpr double hi = std::numeric_limits<int16_t>::max();
    return static_cast<int16_t>(std::clamp(std::nearbyint(v), lo, hi));
}

constexpr int kWindow = 10;

}  // namespace

std::vector<double> positionSeries(const DrawHistory& history, int position) {
    std::vector<double> out;
    out.reserve(static_cast<size_t>(history.drawCount()));
    for (int i = 1; i <= history.drawCount(); ++i) out.push_back(history.numbers[static_cast<size_t>(i)][position]);
    return out;
}

std::vector<int16_t> kLine(std::span<const double> series) {
    std::vector<int16_t> k(series.size());
    for (size_t i = 0; i < series.size(); ++i) {
        const size_t count = std::min<size_t>(i + 1, kWindow);
        const size_t first = i + 1 - count;
        // Weight 1 for the oldest draw of the span, `count` for the newest.
        int16_t sum = 0;
        for (size_t j = first; j <= i; ++j) sum = toWhole(sum + static_cast<double>(j - first + 1) * series[j]);
        const double weights = static_cast<double>(count * (count + 1) / 2);
        k[i] = toWhole(sum / weights);
    }
    return k;
}

double sampleMean(const DrawHistory& history, int position) {
    const int r = history.drawCount();
    if (r == 0) return 0;
    double sum = 0;
    for (int i = 1; i <= r; ++i) sum += history.numbers[static_cast<size_t>(i)][position];
    return sum / r;
}

double idealMean(int position, int frontSize, int backSize) {
    return game_rules::positionCentres(frontSize, backSize)[static_cast<size_t>(position)];
}

}  // namespace chart_lines
