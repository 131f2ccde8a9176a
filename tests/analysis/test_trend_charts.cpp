#include "analysis/chart_lines.h"
#include "analysis/trend_charts.h"
#include "support/qt_printers.h"

#include <gtest/gtest.h>

using namespace trend_charts;

namespace {

// R draws; draw i has front numbers i..i+4 (mod 35), back 1 and 2, and parameters that name
// their draw and table so that a test sees which set and row a line read.
DrawHistory historyOf(int draws) {
    DrawHistory h;
    for (int i = 1; i <= draws; ++i) {
        DrawNumbers d{2000 + i};
        for (int p = 1; p <= 5; ++p) d[static_cast<size_t>(p)] = (i + p - 2) % 31 + 1;
        d[6] = 1;
        d[7] = 2;
        h.numbers.push_back(d);
        DrawParams front, back, both;
        front.sum = static_cast<int16_t>(i);
        back.sum = static_cast<int16_t>(1000 + i);
        both.sum = static_cast<int16_t>(2000 + i);
        front.largestGap = 7;
        both.largestGap = 99;  // the whole table's column is not one a chart reads
        front.numberSpan = 11;
        both.numberSpan = 12;
        front.decadeCounts = {1, 2, 1, 1};
        both.decadeCounts = {3, 3, 3, 3};
        front.centreOffsets = {-1.5, 0, 0.5, 1, 2};
        back.centreOffsets = {-2, 3};
        h.front.push_back(front);
        h.back.push_back(back);
        h.both.push_back(both);
    }
    return h;
}

const PlotPlan& plotNamed(const WindowPlan& w, const char* given) {
    for (const PlotPlan& p : w.plots)
        if (p.given == QLatin1String(given)) return p;
    throw std::runtime_error(given);
}

}  // namespace

TEST(TrendCharts, DrawWindowsKeepTheNewestAtTheRight) {
    EXPECT_EQ(latestDraws(0).size(), 0u);
    EXPECT_EQ(latestDraws(12).first, 0u);  // fewer than 40 start at the left edge
    EXPECT_EQ(latestDraws(12).end, 12u);
    EXPECT_EQ(latestDraws(45).first, 5u);
    EXPECT_EQ(latestDraws(45).size(), 40u);
    // Draws R-100 .. R: 101 points once there are more than 100.
    EXPECT_EQ(lastHundred(100).first, 0u);
    EXPECT_EQ(lastHundred(101).first, 0u);
    EXPECT_EQ(lastHundred(150).first, 49u);  // draw 50 = R - 100
    EXPECT_EQ(lastHundred(150).size(), 101u);
    const std::vector<double> v{1, 2, 3, 4};
    EXPECT_EQ(slice(v, {1, 3}), (std::vector<double>{2, 3}));
    EXPECT_TRUE(slice(v, {0, 0}).empty());
}

TEST(TrendCharts, ColumnsTheSetLacksGiveNoSeries) {
    const DrawHistory h = historyOf(3);
    EXPECT_EQ(columnSeries(h, HistoryView::Back, QStringLiteral("Znum")), (std::vector<double>{1001, 1002, 1003}));
    EXPECT_FALSE(columnSeries(h, HistoryView::Back, QStringLiteral("Mxzounum")));
    EXPECT_FALSE(columnSeries(h, HistoryView::Both, QStringLiteral("R")));
    EXPECT_TRUE(columnSeries(h, HistoryView::Front, QStringLiteral("a")));
}

TEST(TrendCharts, PositionStatesAllSevenOrOneWithItsDerivedLines) {
    const DrawHistory h = historyOf(50);
    const Chart all = positionChart(h, 0, 35, 12);
    ASSERT_EQ(all.lines.size(), 7);
    EXPECT_TRUE(all.levels.isEmpty());
    EXPECT_EQ(all.lines[1].colour, (Rgb{0, 0, 255}));
    EXPECT_EQ(all.lines[6].colour, (Rgb{255, 0, 0}));
    EXPECT_EQ(all.lines[5].label, QStringLiteral("后1位"));
    EXPECT_EQ(all.lines[0].values.size(), 40u);
    EXPECT_EQ(all.lines[0].values.back(), h.numbers[50][1]);  // newest at the right
    EXPECT_EQ(all.headings, QStringList{QStringLiteral("历史号码各位走势观察放大图")});

    const Chart third = positionChart(h, 3, 35, 12);
    ASSERT_EQ(third.lines.size(), 2);  // the series and its K line
    ASSERT_EQ(third.levels.size(), 2);
    EXPECT_EQ(third.levels[0].colour, (Rgb{255, 0, 0}));
    EXPECT_DOUBLE_EQ(third.levels[0].value, chart_lines::sampleMean(h, 3));
    EXPECT_DOUBLE_EQ(third.levels[1].value, 17.5);
    EXPECT_EQ(third.headings.front(),
              QStringLiteral("历史号码第三位走势观察放大图(黄线为理想均值,红线为样本均值,绿线为加权平均K线走势)"));
    EXPECT_EQ(positionTitle(7).mid(4, 3), QStringLiteral("后2位"));
    // The K line is computed over all 50 draws and then windowed.
    const auto k = chart_lines::kLine(chart_lines::positionSeries(h, 3));
    EXPECT_EQ(third.lines[1].values.front(), k[10]);
    EXPECT_EQ(third.lines[1].values.back(), k[49]);
}

TEST(TrendCharts, ConstantSevensAndTheNarrowZoneMeans) {
    DrawHistory h;
    for (int i = 0; i < 30; ++i) h.numbers.push_back({i, 7, 7, 7, 7, 7, 7, 7});
    const Chart c = positionChart(h, 2, 35, 12);
    for (double k : c.lines[1].values) EXPECT_EQ(k, 7);
    EXPECT_DOUBLE_EQ(c.levels[0].value, 7);

    const double f28[] = {2.8, 8.4, 14, 19.6, 25.2};
    for (int p = 1; p <= 5; ++p) {
        EXPECT_NEAR(positionMeans(h, p, 28, 12)[1], f28[p - 1], 1e-12) << p;
        EXPECT_NEAR(positionChart(h, p, 28, 12).levels[1].value, f28[p - 1], 1e-12) << p;
    }
}

TEST(TrendCharts, OffsetsReadTheFrontThenTheBackSet) {
    const DrawHistory h = historyOf(5);
    EXPECT_EQ(offsetSeries(h, 1), std::vector<double>(5, -1.5));
    EXPECT_EQ(offsetSeries(h, 5), std::vector<double>(5, 2));
    EXPECT_EQ(offsetSeries(h, 7), std::vector<double>(5, 3));
    const Chart c = offsetChart(h, 6);
    EXPECT_EQ(c.min, -20);
    EXPECT_EQ(c.max, 20);
    EXPECT_EQ(c.topLabel, QStringLiteral("+20"));
    EXPECT_EQ(c.bottomLabel, QStringLiteral("-20"));
    EXPECT_EQ(c.lines[0].values, std::vector<double>(5, -2));
    EXPECT_EQ(offsetButtonCaption(1), QStringLiteral("第一位标准差(&O)"));
    EXPECT_EQ(offsetButtonCaption(7), QStringLiteral("第七位标准差(&E)"));
}

TEST(TrendCharts, SumChartReadsTheScopeOnItsScale) {
    const DrawHistory h = historyOf(3);
    EXPECT_EQ(sumChart(h, HistoryView::Both, 35).lines[0].values, (std::vector<double>{2001, 2002, 2003}));
    EXPECT_EQ(sumChart(h, HistoryView::Front, 35).max, 224);
    EXPECT_EQ(sumChart(h, HistoryView::Front, 28).max, 175);
    EXPECT_TRUE(sumChart(DrawHistory{}, HistoryView::Front, 35).lines[0].values.empty());
}

TEST(TrendCharts, HundredPlotsFollowTheScope) {
    const DrawHistory h = historyOf(130);
    // The whole ticket has no fitted line: its advanced window draws the complexity only.
    const WindowPlan advanced = hundredWindowPlan(HundredWindow::Advanced, 35);
    EXPECT_EQ(hundredPlot(h, advanced, plotNamed(advanced, "Picture4"), HistoryView::Both).lines.size(), 1);
    EXPECT_TRUE(hundredPlot(h, advanced, plotNamed(advanced, "Picture3"), HistoryView::Both).lines.isEmpty());
    EXPECT_TRUE(hundredPlot(h, advanced, plotNamed(advanced, "Picture2"), HistoryView::Both).lines.isEmpty());
    EXPECT_EQ(hundredPlot(h, advanced, plotNamed(advanced, "Picture2"), HistoryView::Front).lines.size(), 1);

    // The gaps: nothing in the back scope; the largest gap from the front set in the others;
    // the second plot's heading by scope.
    const WindowPlan gaps = hundredWindowPlan(HundredWindow::Gaps, 35);
    for (const PlotPlan& p : gaps.plots) EXPECT_TRUE(hundredPlot(h, gaps, p, HistoryView::Back).lines.isEmpty());
    const Chart largest = hundredPlot(h, gaps, plotNamed(gaps, "Picture1"), HistoryView::Both);
    EXPECT_EQ(largest.lines[0].values, std::vector<double>(101, 7));
    EXPECT_EQ(largest.max, 35);
    const PlotPlan& span = plotNamed(gaps, "Picture2");
    EXPECT_EQ(hundredPlot(h, gaps, span, HistoryView::Front).headings, QStringList{QStringLiteral("首尾差值走势")});
    const Chart wholeSpan = hundredPlot(h, gaps, span, HistoryView::Both);
    EXPECT_EQ(wholeSpan.headings, QStringList{QStringLiteral("前后去同号个数走势")});
    EXPECT_EQ(wholeSpan.lines[0].values.back(), 12);

    // Ranges: front decades, the last two joined; two-line plots carry one heading per line.
    const WindowPlan ranges = hundredWindowPlan(HundredWindow::Ranges, 35);
    EXPECT_EQ(hundredPlot(h, ranges, plotNamed(ranges, "Picture1"), HistoryView::Both).lines[0].values.back(), 1);
    EXPECT_EQ(hundredPlot(h, ranges, plotNamed(ranges, "Picture2"), HistoryView::Both).lines[0].values.back(), 2);
    EXPECT_EQ(hundredPlot(h, ranges, plotNamed(ranges, "Picture3"), HistoryView::Both).lines[0].values.back(), 2);
    const Chart odd = hundredPlot(h, ranges, plotNamed(ranges, "Picture4"), HistoryView::Back);
    EXPECT_EQ(odd.lines.size(), 2);
    EXPECT_EQ(odd.headings, (QStringList{QStringLiteral("奇数个数"), QStringLiteral("偶数个数")}));
    EXPECT_EQ(odd.headingColours[1], odd.lines[1].colour);

    // The sums of the standard window: the last point is R, drawn with its dot.
    const WindowPlan standard = hundredWindowPlan(HundredWindow::Standard, 35);
    const Chart sums = hundredPlot(h, standard, plotNamed(standard, "Picture1"), HistoryView::Front);
    EXPECT_EQ(sums.lines[0].values.front(), 30);
    EXPECT_EQ(sums.lines[0].values.back(), 130);
    EXPECT_TRUE(sums.markLastPoint);
    EXPECT_EQ(sums.headings.size(), 2);
    EXPECT_EQ(sums.headingColours[1], (Rgb{0, 0, 0}));  // a title, not a line
    EXPECT_TRUE(hundredPlot(h, standard, plotNamed(standard, "Picture6"), HistoryView::Back).lines.isEmpty());

    // No draws: the grid and the headings only.
    for (const PlotPlan& p : standard.plots) {
        const Chart empty = hundredPlot(DrawHistory{}, standard, p, HistoryView::Front);
        EXPECT_FALSE(empty.headings.isEmpty());
        for (const Line& l : empty.lines) EXPECT_TRUE(l.values.empty());
    }
}

TEST(TrendCharts, PieSlicesPerNumberAndPerRange) {
    NumberStats stats;
    for (int n = 1; n <= 36; ++n) stats.frequency[static_cast<size_t>(n)] = static_cast<int16_t>(n);
    const QList<Slice> numbers = numberSlices(stats, 35);
    ASSERT_EQ(numbers.size(), 35);
    EXPECT_EQ(numbers[34].label, QStringLiteral("35"));
    EXPECT_EQ(numbers[34].value, 35);
    const QList<Slice> ranges = rangeSlices(stats, 35);
    ASSERT_EQ(ranges.size(), 4);
    EXPECT_EQ(ranges[0].value, 55);
    EXPECT_EQ(ranges[1].value, 155);
    EXPECT_EQ(ranges[3].value, 31 + 32 + 33 + 34 + 35);  // the zone ends at 35
    EXPECT_EQ(ranges[3].label, QStringLiteral("31-36"));
}
