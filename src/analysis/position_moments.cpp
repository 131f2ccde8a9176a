#include "analysis/position_moments.h"

#include "analysis/chart_lines.h"

#include <cmath>

namespace position_moments {
namespace {

// Σ (N - centre)^power over the draws of a position.
double powerSum(const DrawHistory& h, int position, double centre, int power) {
    double sum = 0;
    for (int i = 1; i <= h.drawCount(); ++i)
        sum += std::pow(h.numbers[static_cast<size_t>(i)][position] - centre, power);
    return sum;
}

std::optional<double> divided(double sum, int by) {
    if (by == 0) return std::nullopt;
    // With no draws R - 1 is -1 and the sum 0: a plain 0, not -0.
    const double v = sum / by;
    return v == 0 ? 0.0 : v;
}

}  // namespace

const std::array<QString, kRows>& heads() {
    static const std::array<QString, kRows> h{
        QStringLiteral("理想均值"),   QStringLiteral("样本均值"),       QStringLiteral("样本方差"),
        QStringLiteral("样本标准差"), QStringLiteral("二阶中心矩"),     QStringLiteral("三阶中心矩"),
        QStringLiteral("理想方差"),   QStringLiteral("理想二阶中心矩"), QStringLiteral("理想三阶中心矩")};
    return h;
}

Table compute(const DrawHistory& history, int frontSize, int backSize) {
    Table t;
    const int r = history.drawCount();
    for (int p = 1; p <= kPositions; ++p) {
        const auto cell = [&t, p](int row) -> std::optional<double>& { return t[static_cast<size_t>(row - 1)][static_cast<size_t>(p - 1)]; };
        const double ideal = chart_lines::idealMean(p, frontSize, backSize);
        cell(1) = ideal;
        // The sample rows need a mean; with no draws there is none.
        if (r > 0) {
            const double mean = chart_lines::sampleMean(history, p);
            cell(2) = mean;
            cell(3) = divided(powerSum(history, p, mean, 2), r - 1);
            if (cell(3)) cell(4) = std::sqrt(*cell(3));
            cell(5) = divided(powerSum(history, p, mean, 2), r);
            cell(6) = divided(powerSum(history, p, mean, 3), r);
        }
        cell(7) = divided(powerSum(history, p, ideal, 2), r - 1);
        cell(8) = divided(powerSum(history, p, ideal, 2), r);
        cell(9) = divided(powerSum(history, p, ideal, 3), r);
    }
    return t;
}

}  // namespace position_moments
