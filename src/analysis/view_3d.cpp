#include "analysis/view_3d.h"

#include <algorithm>

namespace view_3d {

const std::array<ChartType, kChartTypes>& chartTypes() {
    using enum Graph;
    using enum Orientation;
    static const std::array<ChartType, kChartTypes> types{{
        {QStringLiteral("3D条形(时变)"), Bars, OverTime},
        {QStringLiteral("3D条形(位变)"), Bars, OverPosition},
        {QStringLiteral("3D折线(时变)"), Surface, OverTime},
        {QStringLiteral("3D折线(位变)"), Surface, OverPosition},
        {QStringLiteral("3D面积(时变)"), Surface, OverTime, true},
        {QStringLiteral("3D面积(位变)"), Surface, OverPosition, true},
        {QStringLiteral("3D梯形(时变)"), Bars, OverTime, false, true},
        {QStringLiteral("3D梯形(位变)"), Bars, OverPosition, false, true},
        {QStringLiteral("2D条形(时变)"), Bars, OverTime, false, false, true},
        {QStringLiteral("2D条形(位变)"), Bars, OverPosition, false, false, true},
        {QStringLiteral("2D折线(时变)"), Surface, OverTime, false, false, true},
        {QStringLiteral("2D折线(位变)"), Surface, OverPosition, false, false, true},
    }};
    return types;
}

Table arrange(const DrawHistory& history, int first, int last, Orientation orientation) {
    Table t;
    first = std::max(first, 1);
    last = std::min(last, history.drawCount());
    QStringList positions;
    for (int p = 1; p <= kPositions; ++p) positions << QString::number(p);
    QStringList issues;
    for (int d = first; d <= last; ++d) issues << QString::number(history.numbers[d][0]);

    const bool overTime = orientation == Orientation::OverTime;
    t.rowLabels = overTime ? positions : issues;
    t.columnLabels = overTime ? issues : positions;
    t.values.assign(t.rowLabels.size(), std::vector<int>(t.columnLabels.size()));
    for (int d = first; d <= last; ++d) {
        for (int p = 1; p <= kPositions; ++p) {
            const int value = history.numbers[d][p];
            if (overTime)
                t.values[p - 1][d - first] = value;
            else
                t.values[d - first][p - 1] = value;
        }
    }
    return t;
}

QStringList thinnedLabels(const QStringList& labels, int most) {
    const int n = static_cast<int>(labels.size());
    if (n <= most) return labels;
    const int step = (n + most - 1) / most;
    QStringList thinned;
    thinned.reserve(n);
    // Counted back from the newest, so that it keeps its label.
    for (int i = 0; i < n; ++i) thinned << ((n - 1 - i) % step == 0 ? labels[i] : QString());
    return thinned;
}

int firstShown(int drawCount, int shown) { return std::max(1, drawCount - std::max(shown, 1) + 1); }

}  // namespace view_3d
