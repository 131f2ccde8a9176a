#pragma once

#include "analysis/trend_charts.h"

#include <QWidget>

class QTimer;

// One line chart: a grid on a scaled surface (white lines first, then grey ones), the derived
// levels, the lines, their labels at the right end and the headings at the top. A replay
// draws the lines again point by point from the left.
class ChartPlot : public QWidget {
    Q_OBJECT
public:
    explicit ChartPlot(QWidget* parent = nullptr);

    void setChart(trend_charts::Chart chart);
    const trend_charts::Chart& chart() const { return m_chart; }
    // Draws the lines again from the first point on, a few points at a time.
    void replay();
    bool replaying() const;

signals:
    void clicked(Qt::MouseButton button);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void advance();

    trend_charts::Chart m_chart;
    size_t m_shownPoints = SIZE_MAX;  // points of each line drawn so far
    QTimer* m_replayTimer;
};
