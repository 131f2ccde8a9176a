#include "workspace/ui/probability_bar.h"

#include <QPainter>

ProbabilityBar::ProbabilityBar(double fullScale, QWidget* parent) : QWidget(parent), m_fullScale(fullScale) {
    setFixedHeight(8);
    setMinimumWidth(60);
}

void ProbabilityBar::setBarWidth(double units) {
    m_units = units;
    update();
}

void ProbabilityBar::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), Qt::white);
    p.setPen(QColor(160, 160, 160));
    p.drawRect(rect().adjusted(0, 0, -1, -1));
    const double w = qBound(0.0, m_units, m_fullScale) / m_fullScale * width();
    p.fillRect(QRectF(0, 0, w, height()), Qt::blue);
}
