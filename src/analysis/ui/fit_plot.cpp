#include "analysis/ui/fit_plot.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace {

const QColor kLineColour(0, 0, 255);
const QColor kSampleColour(255, 0, 0);
const QString kPlotHeading = QStringLiteral("     Y----X图像");

}  // namespace

// The square plot. Plot units map onto the widget's square with y upward; a margin keeps the
// axes' arrows and names inside.
class FitPlot::Canvas : public QWidget {
public:
    explicit Canvas(FitPlot* plot) : QWidget(plot), m_plot(plot) {
        setMinimumSize(150, 120);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        setAutoFillBackground(true);
        QPalette p = palette();
        p.setColor(QPalette::Window, Qt::white);
        setPalette(p);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        const auto& g = m_plot->geometry();
        if (!g) return;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QFontMetrics fm(font());
        const int margin = fm.height();
        const QRectF area = QRectF(rect()).adjusted(margin, margin + fm.height(), -margin, -margin);
        const double scale = std::min(area.width(), area.height()) / line_fit_plot::kPlotUnits;
        const QPointF origin = area.bottomLeft();
        const auto toWidget = [&](const QPointF& u) {
            return QPointF(origin.x() + u.x() * scale, origin.y() - u.y() * scale);
        };

        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(QRectF(0, 0, width(), margin + fm.height()), Qt::AlignLeft | Qt::AlignVCenter,
                         kPlotHeading);
        drawAxes(painter, origin, area);

        painter.setPen(QPen(kLineColour, 1.5));
        painter.save();
        painter.setClipRect(rect());
        painter.drawLine(toWidget(g->line.p1()), toWidget(g->line.p2()));
        painter.restore();

        painter.setPen(QPen(kSampleColour, 1.5));
        const double reach = line_fit_plot::kCrossReach;
        for (const QPointF& p : g->points) {
            painter.drawLine(toWidget(p - QPointF(reach, 0)), toWidget(p + QPointF(reach, 0)));
            painter.drawLine(toWidget(p - QPointF(0, reach)), toWidget(p + QPointF(0, reach)));
        }
    }

private:
    // Two axes with an arrow each: six lines, and their names.
    void drawAxes(QPainter& painter, const QPointF& origin, const QRectF& area) {
        const QPointF xEnd(area.right(), origin.y());
        const QPointF yEnd(origin.x(), area.top());
        constexpr double arrow = 5;
        painter.drawLine(origin, xEnd);
        painter.drawLine(xEnd, xEnd + QPointF(-arrow, -arrow));
        painter.drawLine(xEnd, xEnd + QPointF(-arrow, arrow));
        painter.drawLine(origin, yEnd);
        painter.drawLine(yEnd, yEnd + QPointF(-arrow, arrow));
        painter.drawLine(yEnd, yEnd + QPointF(arrow, arrow));
        const QFontMetrics fm(font());
        painter.drawText(xEnd + QPointF(-fm.horizontalAdvance(QLatin1Char('X')), fm.height()), QStringLiteral("X"));
        painter.drawText(yEnd + QPointF(arrow + 2, fm.ascent() / 2.0), QStringLiteral("Y"));
    }

    FitPlot* m_plot;
};

FitPlot::FitPlot(QWidget* parent) : QWidget(parent) {
    m_heading = new QLabel(this);
    m_heading->setObjectName(QStringLiteral("heading"));
    m_canvas = new Canvas(this);
    m_canvas->setObjectName(QStringLiteral("canvas"));
    m_a = new QLabel(this);
    m_a->setObjectName(QStringLiteral("labelA"));
    m_b = new QLabel(this);
    m_b->setObjectName(QStringLiteral("labelB"));
    m_r = new QLabel(this);
    m_r->setObjectName(QStringLiteral("labelR"));

    auto* values = new QHBoxLayout;
    for (QLabel* l : {m_a, m_b, m_r}) values->addWidget(l, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    layout->addWidget(m_heading);
    layout->addWidget(m_canvas, 1);
    layout->addLayout(values);
}

void FitPlot::showDraw(int runningNumber, const draw_params::FrontNumbers& numbers) {
    m_geometry = line_fit_plot::geometryOf(numbers);
    const line_fit_plot::Labels labels = line_fit_plot::labelsOf(runningNumber, m_geometry->fit);
    m_heading->setText(labels.heading);
    m_a->setText(labels.a);
    m_b->setText(labels.b);
    m_r->setText(labels.r);
    m_canvas->update();
}
