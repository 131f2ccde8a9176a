#pragma once

#include <QWidget>

// A probability bar: a blue box whose width is given in the bar's own units; the full width of
// the widget holds `fullScale` units, and a width below 0 or above the full scale is clipped.
class ProbabilityBar : public QWidget {
    Q_OBJECT
public:
    explicit ProbabilityBar(double fullScale, QWidget* parent = nullptr);
    void setBarWidth(double units);
    double barWidth() const { return m_units; }
    double fullScale() const { return m_fullScale; }
    QSize sizeHint() const override { return {100, 8}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double m_fullScale;
    double m_units = 0;
};
