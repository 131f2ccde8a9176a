#include "tools/ui/fortune_strip.h"

#include "tools/fortune.h"

#include <QLabel>
#include <QPainter>
#include <QPainterPath>

namespace {
constexpr int kLastDay = fortune::kDays - 1;
constexpr int kDayGrid = 2;
constexpr int kValueGrid = 4;
constexpr int kMonth = 30;
}  // namespace

FortuneStrip::FortuneStrip(const QString& objectName, double top, QColor colour, QWidget* parent)
    : QWidget(parent), m_top(top), m_colour(colour) {
    setObjectName(objectName);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void FortuneStrip::setValues(std::vector<double> values) {
    m_values = std::move(values);
    update();
}

void FortuneStrip::clear() {
    m_values.clear();
    update();
}

QPointF FortuneStrip::at(int day, double value) const {
    const QRectF r = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    return {r.left() + r.width() * day / kLastDay, r.top() + r.height() * value / m_top};
}

void FortuneStrip::paintGrid(QPainter& p) const {
    // The grid is drawn white but faint: at a few pixels apart, full white lines would hide
    // the curve.
    QColor white(255, 255, 255, 45);
    p.setPen(QPen(white, 0));
    for (int d = 0; d <= kLastDay; d += kDayGrid) p.drawLine(at(d, 0), at(d, m_top));
    for (int v = 0; v <= m_top; v += kValueGrid) p.drawLine(at(0, v), at(kLastDay, v));
    p.setPen(QPen(QColor(255, 0, 255), 0));
    for (int d = 0; d <= kLastDay; d += kMonth) p.drawLine(at(d, 0), at(d, m_top));
}

void FortuneStrip::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), Qt::black);
    paintGrid(p);
    if (m_values.size() < 2) return;
    p.setRenderHint(QPainter::Antialiasing);
    QPainterPath path(at(0, m_values[0]));
    for (size_t i = 1; i < m_values.size(); ++i) path.lineTo(at(static_cast<int>(i), m_values[i]));
    p.setPen(QPen(m_colour, 1.5));
    p.drawPath(path);
}

FortuneDayAxis::FortuneDayAxis(const QWidget* strip, QWidget* parent) : QWidget(parent), m_strip(strip) {
    setMinimumHeight(22);
    for (int i = 0; i < kLabels; ++i) {
        auto* dateLabel = new QLabel(this);
        dateLabel->setObjectName(QStringLiteral("Label1(%1)").arg(i));
        m_labels << dateLabel;
    }
}

void FortuneDayAxis::setFirstDay(QDate day) {
    for (int i = 0; i < kLabels; ++i)
        m_labels[i]->setText(day.isValid() ? day.addDays(qint64{kDaysApart} * i).toString(QStringLiteral("yy-MM-dd"))
                                           : QString());
    place();
}

void FortuneDayAxis::resizeEvent(QResizeEvent*) { place(); }

void FortuneDayAxis::place() {
    for (int i = 0; i < kLabels; ++i) {
        QLabel* l = m_labels[i];
        l->adjustSize();
        const int left = m_strip->mapTo(window(), QPoint(0, 0)).x() - mapTo(window(), QPoint(0, 0)).x();
        const int x = left + (m_strip->width() - 1) * i / (kLabels - 1) - l->width() / 2;
        l->move(std::clamp(x, 0, std::max(0, width() - l->width())), 2);
    }
}
