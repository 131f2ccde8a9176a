#include "analysis/line_fit_plot.h"

#include <algorithm>

namespace line_fit_plot {

double place(double value, double low, double high) {
    if (high <= low) return 0;
    return (value - low) / (high - low) * kPlotUnits / kSamples;
}

Geometry geometryOf(const draw_params::FrontNumbers& numbers) {
    Geometry g;
    g.fit = draw_params::lineFit(numbers);
    g.samples[0] = QPointF(0, 0);
    for (int i = 1; i < kSamples; ++i) g.samples[i] = QPointF(i, numbers[i - 1]);

    // x runs from the first sample to the last; y over the lowest and highest sample.
    const double xLow = g.samples.front().x();
    const double xHigh = g.samples.back().x();
    const auto [yLowIt, yHighIt] = std::minmax_element(
        g.samples.begin(), g.samples.end(), [](const QPointF& p, const QPointF& q) { return p.y() < q.y(); });
    const double yLow = yLowIt->y();
    const double yHigh = yHighIt->y();
    const auto toPlot = [&](double x, double y) { return QPointF(place(x, xLow, xHigh), place(y, yLow, yHigh)); };

    for (int i = 0; i < kSamples; ++i) g.points[i] = toPlot(g.samples[i].x(), g.samples[i].y());
    g.line = QLineF(toPlot(xLow, g.fit.A + g.fit.B * xLow), toPlot(xHigh, g.fit.A + g.fit.B * xHigh));
    return g;
}

QString formatValue(double value) {
    // Rounding may leave a negative zero (A of a line through the origin).
    const QString text = QString::number(value, 'g', kShownDigits);
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

Labels labelsOf(int runningNumber, const draw_params::LineFit& fit) {
    return Labels{QStringLiteral("第") + QString::number(runningNumber) + QStringLiteral("期"),
                  QStringLiteral("A=") + formatValue(fit.A), QStringLiteral("B=") + formatValue(fit.B),
                  QStringLiteral("R=") + (fit.R ? formatValue(*fit.R) : QString())};
}

std::vector<int> recentDraws(int drawCount) {
    std::vector<int> draws;
    if (drawCount < kRecentPlots) return draws;
    for (int k = 0; k < kRecentPlots; ++k) draws.push_back(drawCount - k);
    return draws;
}

std::optional<int> typedDraw(const std::array<int, 4>& digits, int drawCount) {
    const int number = digits[0] * 1000 + digits[1] * 100 + digits[2] * 10 + digits[3];
    if (number > drawCount) return std::nullopt;
    return number;
}

}  // namespace line_fit_plot
