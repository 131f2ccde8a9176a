#include "analysis/trend_charts.h"

#include "analysis/chart_lines.h"
#include "workspace/draw_params_columns.h"

#include <algorithm>

namespace trend_charts {
namespace {

constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kBlue{0, 0, 255};
constexpr Rgb kRed{255, 0, 0};
constexpr Rgb kYellow{255, 255, 0};
constexpr Rgb kGreen{0, 160, 0};

constexpr int kHundred = 100;

const QStringList kPositionNames{QStringLiteral("第一位"), QStringLiteral("第二位"), QStringLiteral("第三位"),
                                 QStringLiteral("第四位"), QStringLiteral("第五位"), QStringLiteral("后1位"),
                                 QStringLiteral("后2位")};

std::vector<double> toDoubles(const std::vector<int16_t>& v) { return {v.begin(), v.end()}; }

// A chart of one series over the latest 40 draws with its K line computed over all draws.
Chart seriesWithKLine(const std::vector<double>& series, double min, double max) {
    Chart c;
    c.min = min;
    c.max = max;
    const DrawSpan span = latestDraws(series.size());
    c.lines << Line{slice(series, span), kBlack, {}, 1};
    c.lines << Line{slice(toDoubles(chart_lines::kLine(series)), span), kGreen, {}, 1};
    return c;
}

}  // namespace

const QStringList& columnsOf(HistoryView set) {
    switch (set) {
    case HistoryView::Front: return draw_params_columns::frontColumns();
    case HistoryView::Back: return draw_params_columns::backColumns();
    case HistoryView::Both: break;
    }
    return draw_params_columns::bothColumns();
}

std::optional<std::vector<double>> columnSeries(const DrawHistory& history, HistoryView set, const QString& column) {
    if (!columnsOf(set).contains(column, Qt::CaseInsensitive)) return std::nullopt;
    const std::vector<DrawParams>& rows = paramsOf(history, set);
    std::vector<double> out;
    out.reserve(rows.size());
    // Row 0 is the zero row before the first draw.
    for (size_t i = 1; i < rows.size(); ++i) out.push_back(draw_params_columns::value(rows[i], column).value_or(0));
    return out;
}

DrawSpan latestDraws(size_t drawCount, size_t width) {
    return {drawCount > width ? drawCount - width : 0, drawCount};
}

DrawSpan lastHundred(size_t drawCount) {
    // Draws R-100 .. R inclusive; draw i is index i-1.
    return {drawCount > kHundred ? drawCount - kHundred - 1 : 0, drawCount};
}

std::vector<double> slice(const std::vector<double>& series, DrawSpan span) {
    const size_t end = std::min(span.end, series.size());
    if (span.first >= end) return {};
    return {series.begin() + static_cast<std::ptrdiff_t>(span.first), series.begin() + static_cast<std::ptrdiff_t>(end)};
}

const std::array<Rgb, kPositions>& positionColours() {
    static const std::array<Rgb, kPositions> colours{
        {kBlack, kBlue, {0, 255, 255}, {0, 255, 0}, kYellow, {255, 0, 255}, kRed}};
    return colours;
}

QString positionTitle(int state) {
    if (state <= 0) return QStringLiteral("历史号码各位走势观察放大图");
    return QStringLiteral("历史号码%1走势观察放大图(黄线为理想均值,红线为样本均值,绿线为加权平均K线走势)")
        .arg(kPositionNames.value(state - 1));
}

QString positionButtonCaption(int state) {
    return state <= 0 ? QStringLiteral("全部") : kPositionNames.value(state - 1);
}

std::array<double, 2> positionMeans(const DrawHistory& history, int position, int frontSize, int backSize) {
    return {chart_lines::sampleMean(history, position), chart_lines::idealMean(position, frontSize, backSize)};
}

Chart positionChart(const DrawHistory& history, int state, int frontSize, int backSize) {
    constexpr double kTop = 36;
    const DrawSpan span = latestDraws(static_cast<size_t>(history.drawCount()));
    Chart c;
    if (state <= 0) {
        c.max = kTop;
        for (int p = 1; p <= kPositions; ++p) {
            const Rgb colour = positionColours()[static_cast<size_t>(p - 1)];
            c.lines << Line{slice(chart_lines::positionSeries(history, p), span), colour, kPositionNames[p - 1], 1};
        }
    } else {
        c = seriesWithKLine(chart_lines::positionSeries(history, state), 0, kTop);
        const auto [sample, ideal] = positionMeans(history, state, frontSize, backSize);
        c.levels << Level{sample, kRed} << Level{ideal, kYellow};
    }
    c.headings << positionTitle(state);
    c.headingColours << kBlack;
    return c;
}

QString offsetButtonCaption(int position) {
    static const QStringList keys{QStringLiteral("O"), QStringLiteral("T"), QStringLiteral("H"), QStringLiteral("F"),
                                  QStringLiteral("V"), QStringLiteral("S"), QStringLiteral("E")};
    static const QStringList ordinals{QStringLiteral("一"), QStringLiteral("二"), QStringLiteral("三"),
                                      QStringLiteral("四"), QStringLiteral("五"), QStringLiteral("六"),
                                      QStringLiteral("七")};
    return QStringLiteral("第%1位标准差(&%2)").arg(ordinals.value(position - 1), keys.value(position - 1));
}

std::vector<double> offsetSeries(const DrawHistory& history, int position) {
    // The back numbers' offsets are the first two offset columns of the back set.
    const bool front = position <= 5;
    const QString column = QStringLiteral("Lcz%1").arg(front ? position : position - 5);
    return columnSeries(history, front ? HistoryView::Front : HistoryView::Back, column).value_or(std::vector<double>{});
}

Chart offsetChart(const DrawHistory& history, int position) {
    constexpr double kReach = 20;
    Chart c = seriesWithKLine(offsetSeries(history, position), -kReach, kReach);
    c.topLabel = QStringLiteral("+20");
    c.bottomLabel = QStringLiteral("-20");
    c.headings << offsetButtonCaption(position).section(QLatin1Char('('), 0, 0);
    c.headingColours << kBlack;
    return c;
}

double sumScaleTop(int frontSize) { return (frontSize - 3) * 7.0; }

Chart sumChart(const DrawHistory& history, HistoryView set, int frontSize) {
    const auto sums = columnSeries(history, set, QStringLiteral("Znum")).value_or(std::vector<double>{});
    Chart c = seriesWithKLine(sums, 0, sumScaleTop(frontSize));
    c.coordinates = true;
    c.firstDraw = static_cast<int>(latestDraws(sums.size()).first) + 1;
    return c;
}

WindowPlan hundredWindowPlan(HundredWindow which, int frontSize) {
    const auto one = [](const char* column) { return SeriesSource{{QString::fromLatin1(column)}, {}}; };
    const double f = frontSize;
    WindowPlan w;
    switch (which) {
    case HundredWindow::Standard:
        w = {QStringLiteral("frmTec"), QStringLiteral("参数参考分析"),
             {{QStringLiteral("Picture1"), {QStringLiteral("最近百次历史号总和"), QStringLiteral("刻度单位为5")}, {},
               {one("Znum")}, 0, sumScaleTop(frontSize), 5},
              {QStringLiteral("Picture4"), {QStringLiteral("连顺号个数")}, {}, {one("Lnum")}, 0, 4, 1},
              {QStringLiteral("Picture6"), {QStringLiteral("最大顺阶次")}, {}, {one("Lxnum")}, 0, 4, 1},
              {QStringLiteral("Picture5"), {QStringLiteral("与上期重号个数")}, {}, {one("Cnum")}, 0, 5, 1},
              {QStringLiteral("Picture2"), {QStringLiteral("个位同号个数")}, {}, {one("Modenum")}, 0, 4, 1}},
             {}};
        break;
    case HundredWindow::Advanced:
        w = {QStringLiteral("frmTec2"), QStringLiteral("高阶连号最大阶次及拟合直线参数走势"),
             {{QStringLiteral("Picture4"), {QStringLiteral("最近百次开奖号码复杂度走势图:")}, {}, {one("Fcodp")}, 0, 15, 1},
              {QStringLiteral("Picture3"),
               {QStringLiteral("最近百次开奖号码拟合直线纵轴截距走势曲线图(Y轴为-10~10区间):")},
               {},
               {one("a")},
               -10,
               10,
               1},
              {QStringLiteral("Picture2"),
               {QStringLiteral("最近百次开奖号码拟合直线直线度走势曲线图(Y轴为0~1区间):")},
               {},
               {one("R")},
               0,
               1,
               0.1}},
             {}};
        break;
    case HundredWindow::Gaps:
        // The largest gap is read from the front set in the scopes that draw it.
        w = {QStringLiteral("frmTec3"), QStringLiteral("轴距走势"),
             {{QStringLiteral("Picture1"), {QStringLiteral("最大差值走势")}, {},
               {SeriesSource{{QStringLiteral("Mxzounum")}, HistoryView::Front}}, 0, f, 1},
              {QStringLiteral("Picture2"), {QStringLiteral("首尾差值走势")}, {QStringLiteral("前后去同号个数走势")},
               {one("Apzounum")}, 0, f, 1}},
             {HistoryView::Back}};
        break;
    case HundredWindow::Ranges: {
        // The range counts are the decade counts of the drawn front numbers; 21 and above
        // joins the last two decades.
        const auto front = [](QStringList columns) { return SeriesSource{columns, HistoryView::Front}; };
        w = {QStringLiteral("frmTec4"), QStringLiteral("区间分布"),
             {{QStringLiteral("Picture1"), {QStringLiteral("01--10")}, {}, {front({QStringLiteral("Qnum0")})}, 0, 5, 1},
              {QStringLiteral("Picture2"), {QStringLiteral("10--20")}, {}, {front({QStringLiteral("Qnum1")})}, 0, 5, 1},
              {QStringLiteral("Picture3"), {QStringLiteral("20以上")}, {},
               {front({QStringLiteral("Qnum2"), QStringLiteral("Qnum3")})}, 0, 5, 1},
              {QStringLiteral("Picture4"), {QStringLiteral("奇数个数"), QStringLiteral("偶数个数")}, {},
               {one("Jnum"), one("Onum")}, 0, 5, 1},
              {QStringLiteral("Picture5"), {QStringLiteral("大数个数"), QStringLiteral("小数个数")}, {},
               {one("Bignum"), one("Smlnum")}, 0, 5, 1},
              {QStringLiteral("Picture6"), {QStringLiteral("个位大数个数"), QStringLiteral("个位小数个数")}, {},
               {one("Mornum"), one("Ltlnum")}, 0, 5, 1}},
             {}};
        break;
    }
    case HundredWindow::Sums:
        w = {QStringLiteral("frmTec5"), QStringLiteral("和数分类参数"),
             {{QStringLiteral("Picture1"), {QStringLiteral("遗漏之和")}, {}, {one("Zynum")}, 0, 80, 5},
              {QStringLiteral("Picture2"), {QStringLiteral("奇数之和")}, {}, {one("Zjnum")}, 0, 150, 10},
              {QStringLiteral("Picture3"), {QStringLiteral("偶数之和")}, {}, {one("Zonum")}, 0, 150, 10},
              {QStringLiteral("Picture4"), {QStringLiteral("个位数之和")}, {}, {one("Zgnum")}, 0, 50, 5}},
             {}};
        break;
    }
    return w;
}

namespace {

// The sum of the source's columns over all draws; nullopt when the set lacks one.
std::optional<std::vector<double>> sourceSeries(const DrawHistory& history, const SeriesSource& source,
                                                HistoryView scope) {
    const HistoryView set = source.fixedSet.value_or(scope);
    std::vector<double> sum;
    for (const QString& column : source.columns) {
        const auto s = columnSeries(history, set, column);
        if (!s) return std::nullopt;
        if (sum.empty()) sum.assign(s->size(), 0);
        for (size_t i = 0; i < s->size(); ++i) sum[i] += (*s)[i];
    }
    return sum;
}

}  // namespace

Chart hundredPlot(const DrawHistory& history, const WindowPlan& window, const PlotPlan& plot, HistoryView scope) {
    static const std::array<Rgb, 2> kLineColours{kBlue, kRed};
    Chart c;
    c.min = plot.min;
    c.max = plot.max;
    c.columns = 10;
    c.rows = std::max(1, static_cast<int>((plot.max - plot.min) / plot.gridStep + 0.5));
    c.points = kHundred + 1;
    c.markLastPoint = true;
    c.headings = scope == HistoryView::Both && !plot.wholeScopeHeadings.isEmpty() ? plot.wholeScopeHeadings : plot.headings;
    // A heading per line takes its line's colour; the titles of a one-line plot stay black.
    const bool headingPerLine = plot.sources.size() > 1;
    for (qsizetype i = 0; i < c.headings.size(); ++i)
        c.headingColours << (headingPerLine ? kLineColours[static_cast<size_t>(i) % 2] : kBlack);
    if (window.blankIn.contains(scope)) return c;
    const DrawSpan span = lastHundred(static_cast<size_t>(history.drawCount()));
    for (qsizetype i = 0; i < plot.sources.size(); ++i) {
        const SeriesSource& source = plot.sources[i];
        const auto series = sourceSeries(history, source, scope);
        if (!series) continue;
        c.lines << Line{slice(*series, span), kLineColours[static_cast<size_t>(i) % 2], {}, 1};
    }
    return c;
}

QList<Slice> numberSlices(const NumberStats& stats, int frontSize) {
    QList<Slice> out;
    for (int n = 1; n <= std::min(frontSize, kNumberSlots - 1); ++n)
        out << Slice{QString::number(n), static_cast<double>(stats.frequency[static_cast<size_t>(n)])};
    return out;
}

QList<Slice> rangeSlices(const NumberStats& stats, int frontSize) {
    QList<Slice> out;
    const int last = std::min(frontSize, kNumberSlots - 1);
    for (int from : {1, 11, 21, 31}) {
        const int to = from == 31 ? 36 : from + 9;
        double sum = 0;
        for (int n = from; n <= std::min(to, last); ++n) sum += stats.frequency[static_cast<size_t>(n)];
        out << Slice{QStringLiteral("%1-%2").arg(from).arg(to), sum};
    }
    return out;
}

std::vector<Chart> parameterStrips(const DrawHistory& history, HistoryView set, const QString& column) {
    const int r = history.drawCount();
    const int first = std::max(1, r - kStrips * kDrawWindow + 1);
    const std::optional<std::vector<double>> series = columnSeries(history, set, column);
    double top = 0;
    if (series)
        for (int i = first + 1; i <= r; ++i) top = std::max(top, (*series)[static_cast<size_t>(i - 1)]);
    std::vector<Chart> strips(kStrips);
    for (int k = 0; k < kStrips; ++k) {
        Chart& c = strips[static_cast<size_t>(k)];
        c.min = 0;
        c.max = top > 0 ? top : 1;
        c.rows = 10;
        c.coordinates = true;
        const int from = first + k * kDrawWindow;
        const int to = std::min(r, from + kDrawWindow - 1);
        Line line{{}, kBlue, {}, 1};
        for (int i = from; i <= to; ++i) {
            c.pointLabels << QString::number(history.numbers[static_cast<size_t>(i)][0]);
            if (series) line.values.push_back((*series)[static_cast<size_t>(i - 1)]);
        }
        if (!line.values.empty()) c.lines << line;
    }
    return strips;
}

}  // namespace trend_charts
