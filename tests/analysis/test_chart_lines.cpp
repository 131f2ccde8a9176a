#include "analysis/chart_lines.h"
#include "analysis/trend_charts.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace chart_lines;

namespace {

DrawHistory historyOf(const std::vector<DrawNumbers>& draws) {
    DrawHistory h;
    for (const DrawNumbers& d : draws) h.numbers.push_back(d);
    return h;
}

}  // namespace

TEST(KLine, RisingWeightsForTheFirstTenThenTenDownToOne) {
    std::vector<double> v(11);
    std::iota(v.begin(), v.end(), 1.0);  // 1, 2, .. 11
    v[10] = 100;
    const std::vector<int16_t> k = kLine(v);
    ASSERT_EQ(k.size(), 11u);
    EXPECT_EQ(k[0], 1);
    EXPECT_EQ(k[1], 2);  // (1 + 4) / 3 = 1.67
    // Ten draws: (1 + 4 + 9 + .. + 100) / 55 = 385 / 55 = 7.
    EXPECT_EQ(k[9], 7);
    // The eleventh: 10 x 100 + 9 x 10 + 8 x 9 + .. + 1 x 2 = 1000 + 330, over 55: 24.18.
    EXPECT_EQ(k[10], 24);
}

TEST(KLine, WholeUnitsRoundHalfToEvenAtEveryStep) {
    // A constant series stays on its value.
    const std::vector<double> sevens(25, 7.0);
    for (int16_t x : kLine(sevens)) EXPECT_EQ(x, 7);
    // (1 x 1 + 2 x 2) / 3 = 1.67 -> 2; (1 x 0.5) / 1: the sum 0.5 rounds to 0.
    EXPECT_EQ(kLine(std::vector<double>{0.5}).front(), 0);
    EXPECT_EQ(kLine(std::vector<double>{1.5}).front(), 2);
    // -3.5 once: the sum -3.5 rounds to -4.
    EXPECT_EQ(kLine(std::vector<double>{-3.5}).front(), -4);
    // 2.5 and 2.5: 2.5 -> 2, then 2 + 5 = 7, 7 / 3 = 2.33 -> 2.
    const std::vector<int16_t> halves = kLine(std::vector<double>{2.5, 2.5});
    EXPECT_EQ(halves[0], 2);
    EXPECT_EQ(halves[1], 2);
    EXPECT_TRUE(kLine(std::vector<double>{}).empty());
}

TEST(Means, IdealBandsAndTheSampleOverEveryDraw) {
    EXPECT_DOUBLE_EQ(idealMean(1, 35, 12), 3.5);
    EXPECT_DOUBLE_EQ(idealMean(5, 35, 12), 31.5);
    EXPECT_DOUBLE_EQ(idealMean(6, 35, 12), 3);
    EXPECT_DOUBLE_EQ(idealMean(7, 35, 12), 9);
    const double f28[] = {2.8, 8.4, 14, 19.6, 25.2};
    for (int p = 1; p <= 5; ++p) EXPECT_NEAR(idealMean(p, 28, 12), f28[p - 1], 1e-12) << p;

    EXPECT_EQ(sampleMean(DrawHistory{}, 1), 0);
    const DrawHistory h = historyOf({{7001, 1, 2, 3, 4, 5, 1, 2}, {7002, 3, 12, 13, 24, 35, 4, 12}});
    EXPECT_DOUBLE_EQ(sampleMean(h, 1), 2);
    EXPECT_DOUBLE_EQ(sampleMean(h, 5), 20);
    EXPECT_DOUBLE_EQ(sampleMean(h, 7), 7);
    EXPECT_EQ(positionSeries(h, 2), (std::vector<double>{2, 12}));
}

// The parameter strips: 45 draws fill the first strip and five points of the second; the scale
// leaves the first draw out, however high it is.
TEST(ParameterStrips, FewDrawsStartAtTheFirstAndTheScaleSkipsIt) {
    DrawHistory h;
    for (int i = 1; i <= 45; ++i) {
        h.numbers.push_back({2025000 + i, 1, 2, 3, 4, 5, 1, 2});
        DrawParams p;
        p.omissionSum = static_cast<int16_t>(i == 1 ? 500 : i);
        h.front.push_back(p);
    }
    const auto strips = trend_charts::parameterStrips(h, HistoryView::Front, QStringLiteral("zynum"));
    ASSERT_EQ(strips.size(), 6u);
    ASSERT_EQ(strips[0].lines.size(), 1);
    EXPECT_EQ(strips[0].lines[0].values.size(), 40u);
    EXPECT_EQ(strips[0].lines[0].values.front(), 500);
    EXPECT_EQ(strips[0].pointLabels.front(), QStringLiteral("2025001"));
    EXPECT_EQ(strips[1].lines[0].values.size(), 5u);
    EXPECT_EQ(strips[1].pointLabels.last(), QStringLiteral("2025045"));
    EXPECT_TRUE(strips[2].lines.isEmpty());
    EXPECT_EQ(strips[0].max, 45);
    // A column the back set lacks draws nothing.
    const auto lacking = trend_charts::parameterStrips(h, HistoryView::Back, QStringLiteral("DZnum"));
    EXPECT_TRUE(lacking[0].lines.isEmpty());
    EXPECT_EQ(lacking[0].pointLabels.size(), 40);
}
