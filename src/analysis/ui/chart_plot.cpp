#include "analysis/ui/chart_plot.h"

#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

#include <algorithm>

namespace {

using trend_charts::Chart;

constexpr int kMargin = 6;
constexpr int kLabelRoom = 54;   // right of the grid, for the line labels
constexpr int kScaleRoom = 30;   // left of the grid, for the scale's end labels
constexpr int kReplayStepMs = 15;
const QColor kBackground(236, 236, 236);
const QColor kGridGrey(168, 168, 168);

QColor toColour(const trend_charts::Rgb& c) { return QColor(c.red, c.green, c.blue); }

bool hasLabels(const Chart& c) {
    return std::any_of(c.lines.begin(), c.lines.end(), [](const auto& l) { return !l.label.isEmpty(); });
}

// The value's height and the slot's place inside the grid rectangle.
struct Mapping {
    QRectF grid;
    const Chart& chart;
    double y(double v) const {
        const double span = chart.max - chart.min;
        const double t = span > 0 ? (chart.max - v) / span : 0;
        return grid.top() + t * grid.height();
    }
    double x(size_t slot) const {
        const int gaps = std::max(1, chart.points - 1);
        return grid.left() + static_cast<double>(slot) * grid.width() / gaps;
    }
};

void drawGrid(QPainter& p, const Mapping& m) {
    const QRectF g = m.grid;
    const int cols = std::max(1, m.chart.columns);
    const int rows = std::max(1, m.chart.rows);
    // The white lines sit one pixel beside the grey ones, which gives the grid its groove.
    for (const QColor& colour : {QColor(Qt::white), kGridGrey}) {
        const double shift = colour == kGridGrey ? 0 : 1;
        p.setPen(QPen(colour, 0));
        for (int i = 0; i <= cols; ++i) {
            const double x = g.left() + i * g.width() / cols + shift;
            p.drawLine(QPointF(x, g.top()), QPointF(x, g.bottom()));
        }
        for (int i = 0; i <= rows; ++i) {
            const double y = g.top() + i * g.height() / rows + shift;
            p.drawLine(QPointF(g.left(), y), QPointF(g.right(), y));
        }
    }
}

void drawHeadings(QPainter& p, const Mapping& m) {
    const QFontMetrics fm = p.fontMetrics();
    double x = m.grid.left() + 4;
    for (qsizetype i = 0; i < m.chart.headings.size(); ++i) {
        p.setPen(toColour(m.chart.headingColours.value(i)));
        const QString& text = m.chart.headings[i];
        p.drawText(QPointF(x, m.grid.top() - fm.descent() - 2), text);
        x += fm.horizontalAdvance(text) + 12;
    }
}

// The labels at the right end of the lines, each at its line's last height, moved apart
// where they would overlap.
void drawLineLabels(QPainter& p, const Mapping& m, size_t shownPoints) {
    struct Placed {
        double y;
        const trend_charts::Line* line;
    };
    std::vector<Placed> labels;
    for (const auto& line : m.chart.lines) {
        const size_t n = std::min(line.values.size(), shownPoints);
        if (!line.label.isEmpty() && n > 0) labels.push_back({m.y(line.values[n - 1]), &line});
    }
    std::sort(labels.begin(), labels.end(), [](const Placed& a, const Placed& b) { return a.y < b.y; });
    const double step = p.fontMetrics().height();
    for (size_t i = 1; i < labels.size(); ++i) labels[i].y = std::max(labels[i].y, labels[i - 1].y + step);
    // Labels pushed below the grid move back up together.
    const double overflow = labels.empty() ? 0 : labels.back().y - m.grid.bottom();
    for (auto& l : labels) {
        const double y = overflow > 0 ? l.y - overflow : l.y;
        p.setPen(toColour(l.line->colour));
        p.drawText(QPointF(m.grid.right() + 4, y + p.fontMetrics().ascent() / 2.0), l.line->label);
    }
}

// The scale's values at the left of every fifth row, the draw numbers under every fifth point.
void drawCoordinates(QPainter& p, const Mapping& m) {
    constexpr int kEvery = 5;
    const Chart& c = m.chart;
    const QFontMetrics fm = p.fontMetrics();
    p.setPen(Qt::black);
    for (int row = 0; row <= c.rows; row += kEvery) {
        const double v = c.max - row * (c.max - c.min) / std::max(1, c.rows);
        const QString text = QString::number(v, 'f', 0);
        p.drawText(QPointF(m.grid.left() - fm.horizontalAdvance(text) - 4, m.y(v) + fm.ascent() / 2.0), text);
    }
    for (int point = 0; point < c.points; point += kEvery) {
        if (!c.pointLabels.isEmpty() && point >= c.pointLabels.size()) break;
        const QString text = c.pointLabels.isEmpty() ? QString::number(c.firstDraw + point) : c.pointLabels[point];
        p.drawText(QPointF(m.x(static_cast<size_t>(point)) - fm.horizontalAdvance(text) / 2.0,
                           m.grid.bottom() + fm.ascent() + 2),
                   text);
    }
}

void drawScaleLabels(QPainter& p, const Mapping& m) {
    p.setPen(Qt::black);
    const QFontMetrics fm = p.fontMetrics();
    if (!m.chart.topLabel.isEmpty())
        p.drawText(QPointF(kMargin, m.grid.top() + fm.ascent()), m.chart.topLabel);
    if (!m.chart.bottomLabel.isEmpty())
        p.drawText(QPointF(kMargin, m.grid.bottom()), m.chart.bottomLabel);
}

}  // namespace

ChartPlot::ChartPlot(QWidget* parent) : QWidget(parent), m_replayTimer(new QTimer(this)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(240, 120);
    m_replayTimer->setInterval(kReplayStepMs);
    connect(m_replayTimer, &QTimer::timeout, this, &ChartPlot::advance);
}

void ChartPlot::setChart(trend_charts::Chart chart) {
    m_chart = std::move(chart);
    m_replayTimer->stop();
    m_shownPoints = SIZE_MAX;
    update();
}

void ChartPlot::replay() {
    m_shownPoints = 1;
    m_replayTimer->start();
    update();
}

bool ChartPlot::replaying() const { return m_replayTimer->isActive(); }

void ChartPlot::advance() {
    size_t longest = 0;
    for (const auto& line : m_chart.lines) longest = std::max(longest, line.values.size());
    if (++m_shownPoints >= longest) {
        m_shownPoints = SIZE_MAX;
        m_replayTimer->stop();
    }
    update();
}

void ChartPlot::mousePressEvent(QMouseEvent* event) { emit clicked(event->button()); }

void ChartPlot::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), kBackground);
    const bool scaleLabels = !m_chart.topLabel.isEmpty() || !m_chart.bottomLabel.isEmpty();
    // The headings stand in a strip above the grid.
    const int headingRoom = m_chart.headings.isEmpty() ? 0 : fontMetrics().height() + 2;
    const bool leftRoom = scaleLabels || m_chart.coordinates;
    const int bottomRoom = m_chart.coordinates ? fontMetrics().height() + 2 : 0;
    // The last draw number needs half the room of a line label.
    const int rightRoom = hasLabels(m_chart) ? kLabelRoom : m_chart.coordinates ? kLabelRoom / 2 : 0;
    QRectF grid = QRectF(rect()).adjusted(kMargin + (leftRoom ? kScaleRoom : 0), kMargin + headingRoom,
                                          -kMargin - rightRoom, -kMargin - bottomRoom);
    const Mapping m{grid, m_chart};
    drawGrid(p, m);
    p.setRenderHint(QPainter::Antialiasing);
    for (const auto& level : m_chart.levels) {
        p.setPen(QPen(toColour(level.colour), 2));
        p.drawLine(QPointF(grid.left(), m.y(level.value)), QPointF(grid.right(), m.y(level.value)));
    }
    // Values beyond the scale leave the grid rather than flatten on its edge.
    p.setClipRect(grid.adjusted(-4, -4, 4, 4));
    for (const auto& line : m_chart.lines) {
        const size_t n = std::min(line.values.size(), m_shownPoints);
        if (n == 0) continue;
        QPolygonF points;
        for (size_t i = 0; i < n; ++i) points << QPointF(m.x(i), m.y(line.values[i]));
        p.setPen(QPen(toColour(line.colour), line.width));
        p.drawPolyline(points);
        if (m_chart.markLastPoint && n == line.values.size()) {
            p.setBrush(toColour(line.colour));
            p.drawEllipse(points.last(), 3.5, 3.5);
            p.setBrush(Qt::NoBrush);
        }
    }
    p.setClipping(false);
    drawLineLabels(p, m, m_shownPoints);
    drawScaleLabels(p, m);
    if (m_chart.coordinates) drawCoordinates(p, m);
    drawHeadings(p, m);
}
