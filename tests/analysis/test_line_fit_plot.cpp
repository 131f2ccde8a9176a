#include "analysis/line_fit_plot.h"

#include <gtest/gtest.h>

using namespace line_fit_plot;

namespace {

constexpr double kOneSixth = kPlotUnits / kSamples;

}  // namespace

TEST(LineFitPlot, EvenNumbersLieOnALineThroughTheOrigin) {
    const Geometry g = geometryOf({2, 4, 6, 8, 10});
    const Labels l = labelsOf(8, g.fit);
    EXPECT_EQ(l.heading, QStringLiteral("第8期"));
    EXPECT_EQ(l.a, QStringLiteral("A=0"));
    EXPECT_EQ(l.b, QStringLiteral("B=2"));
    EXPECT_EQ(l.r, QStringLiteral("R=1"));
    // x spans 0..5 and y 0..10: every sample lies on the plot's diagonal, the line with them,
    // all within the lower left sixth of the plot.
    for (int i = 0; i < kSamples; ++i) {
        EXPECT_DOUBLE_EQ(g.points[i].x(), i / 5.0 * kOneSixth);
        EXPECT_NEAR(g.points[i].y(), g.points[i].x(), 1e-9);
    }
    EXPECT_NEAR(g.line.p1().y(), 0, 1e-9);
    EXPECT_NEAR(g.line.p2().x(), kOneSixth, 1e-9);
    EXPECT_NEAR(g.line.p2().y(), kOneSixth, 1e-9);
}

TEST(LineFitPlot, AStraightRunIsPulledOffItsLineByTheOrigin) {
    const Geometry g = geometryOf({7, 8, 9, 10, 11});
    ASSERT_TRUE(g.fit.R.has_value());
    EXPECT_LT(*g.fit.R, 1.0);
    // A = 300/105, B = 195/105; y spans 0 (the origin) to 11.
    EXPECT_EQ(labelsOf(1, g.fit).a, QStringLiteral("A=2.85714"));
    EXPECT_EQ(labelsOf(1, g.fit).b, QStringLiteral("B=1.85714"));
    EXPECT_NEAR(g.line.p1().y(), 300.0 / 105 / 11 * kOneSixth, 1e-9);
    EXPECT_NEAR(g.line.p2().y(), (300.0 + 5 * 195.0) / 105 / 11 * kOneSixth, 1e-9);
    EXPECT_DOUBLE_EQ(g.points[5].y(), kOneSixth);  // the highest sample tops the range
    EXPECT_DOUBLE_EQ(g.points[1].y(), 7.0 / 11 * kOneSixth);
}

TEST(LineFitPlot, TheRowBeforeTheFirstDrawHasNoStraightness) {
    const Geometry g = geometryOf({0, 0, 0, 0, 0});
    const Labels l = labelsOf(0, g.fit);
    EXPECT_EQ(l.heading, QStringLiteral("第0期"));
    EXPECT_EQ(l.a, QStringLiteral("A=0"));
    EXPECT_EQ(l.b, QStringLiteral("B=0"));
    EXPECT_EQ(l.r, QStringLiteral("R="));
    // y has no range: everything sits on the bottom edge.
    for (const QPointF& p : g.points) EXPECT_EQ(p.y(), 0);
    EXPECT_EQ(g.line.p1().y(), 0);
    EXPECT_EQ(g.line.p2().y(), 0);
}

TEST(LineFitPlot, EightRecentDrawsOrNone) {
    EXPECT_TRUE(recentDraws(7).empty());
    EXPECT_EQ(recentDraws(8), (std::vector<int>{8, 7, 6, 5, 4, 3, 2, 1}));
    EXPECT_EQ(recentDraws(2000).front(), 2000);
    EXPECT_EQ(recentDraws(2000).back(), 1993);
}

TEST(LineFitPlot, TypedDigitsNameADrawUpToTheNewest) {
    EXPECT_EQ(typedDraw({1, 2, 3, 4}, 1234), 1234);
    EXPECT_EQ(typedDraw({1, 2, 3, 5}, 1234), std::nullopt);
    EXPECT_EQ(typedDraw({0, 0, 0, 0}, 5), 0);
    EXPECT_EQ(typedDraw({0, 0, 0, 0}, 0), 0);
    EXPECT_EQ(typedDraw({0, 0, 1, 0}, 9), std::nullopt);
}
