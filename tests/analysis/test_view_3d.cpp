#include "analysis/view_3d.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace view_3d;

namespace {

// Draw d (running number from 1) holds d, d+1, .. d+6, so that a cell tells where it came from.
DrawHistory historyOf(int draws) {
    DrawHistory h;
    for (int d = 1; d <= draws; ++d) {
        DrawNumbers n{2025000 + d};
        for (int p = 1; p <= kPositions; ++p) n[p] = d + p - 1;
        h.numbers.push_back(n);
    }
    return h;
}

}  // namespace

TEST(View3d, TwelveTypesPairedOverTimeAndOverPosition) {
    const auto& types = chartTypes();
    EXPECT_EQ(types[0].caption, QStringLiteral("3D条形(时变)"));
    EXPECT_EQ(types[11].caption, QStringLiteral("2D折线(位变)"));
    for (int i = 0; i < kChartTypes; i += 2) {
        SCOPED_TRACE(i);
        EXPECT_EQ(types[i].orientation, Orientation::OverTime);
        EXPECT_EQ(types[i + 1].orientation, Orientation::OverPosition);
        // The two of a pair differ only in their orientation.
        EXPECT_EQ(types[i].graph, types[i + 1].graph);
        EXPECT_EQ(types[i].filled, types[i + 1].filled);
        EXPECT_EQ(types[i].touching, types[i + 1].touching);
        EXPECT_EQ(types[i].flat, types[i + 1].flat);
        EXPECT_EQ(types[i].flat, i >= 8);  // the 2D types
    }
    // Bars, lines, areas, steps.
    EXPECT_EQ(types[0].graph, Graph::Bars);
    EXPECT_FALSE(types[0].touching);
    EXPECT_EQ(types[2].graph, Graph::Surface);
    EXPECT_FALSE(types[2].filled);
    EXPECT_TRUE(types[4].filled);
    EXPECT_EQ(types[6].graph, Graph::Bars);
    EXPECT_TRUE(types[6].touching);
    EXPECT_EQ(types[8].graph, Graph::Bars);
    EXPECT_EQ(types[10].graph, Graph::Surface);
}

TEST(View3d, ArrangedWithTheDrawsAlongTheAxisOrAcrossIt) {
    const DrawHistory h = historyOf(5);
    const Table overTime = arrange(h, 2, 4, Orientation::OverTime);
    ASSERT_EQ(overTime.rows(), kPositions);
    ASSERT_EQ(overTime.columns(), 3);
    EXPECT_EQ(overTime.columnLabels, (QStringList{"2025002", "2025003", "2025004"}));
    EXPECT_EQ(overTime.rowLabels.front(), QStringLiteral("1"));
    EXPECT_EQ(overTime.values[0][0], 2);  // draw 2, position 1
    EXPECT_EQ(overTime.values[6][2], 10);  // draw 4, position 7

    const Table overPosition = arrange(h, 2, 4, Orientation::OverPosition);
    ASSERT_EQ(overPosition.rows(), 3);
    ASSERT_EQ(overPosition.columns(), kPositions);
    EXPECT_EQ(overPosition.rowLabels, overTime.columnLabels);
    EXPECT_EQ(overPosition.columnLabels, overTime.rowLabels);
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < kPositions; ++c) EXPECT_EQ(overPosition.values[r][c], overTime.values[c][r]);
}

TEST(View3d, TheNewestDrawsShownAndTheRangeKeptInsideTheHistory) {
    EXPECT_EQ(firstShown(2000, kDefaultDrawsShown), 2000 - kDefaultDrawsShown + 1);
    EXPECT_EQ(firstShown(30, kDefaultDrawsShown), 1);
    EXPECT_EQ(firstShown(30, 0), 30);
    const DrawHistory h = historyOf(3);
    EXPECT_EQ(arrange(h, 0, 9, Orientation::OverPosition).rows(), 3);  // the zero row is no draw
    const Table empty = arrange(DrawHistory{}, 1, 0, Orientation::OverTime);
    EXPECT_EQ(empty.rows(), kPositions);
    EXPECT_EQ(empty.columns(), 0);
}

TEST(View3d, AxisLabelsThinnedToAFewKeepingTheNewest) {
    QStringList labels;
    for (int i = 1; i <= 45; ++i) labels << QString::number(i);
    EXPECT_EQ(thinnedLabels(labels.mid(0, 20), 20), labels.mid(0, 20));
    const QStringList thinned = thinnedLabels(labels, 20);  // every third of 45
    ASSERT_EQ(thinned.size(), 45);
    EXPECT_EQ(thinned.back(), QStringLiteral("45"));
    EXPECT_EQ(thinned[41], QStringLiteral("42"));
    EXPECT_TRUE(thinned[42].isEmpty() && thinned[43].isEmpty());
    EXPECT_TRUE(thinned.front().isEmpty());  // 44 back from the newest
    EXPECT_EQ(thinned[2], QStringLiteral("3"));
    EXPECT_EQ(std::count_if(thinned.begin(), thinned.end(), [](const QString& s) { return !s.isEmpty(); }), 15);
}
