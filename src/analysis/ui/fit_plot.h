#pragma once

#include "analysis/line_fit_plot.h"

#include <QWidget>

#include <optional>

class QLabel;

// One plot of the fitted-line window: the heading with the draw's running number, the square
// plot with its axes, samples and fitted line, and the A, B and R labels under it. Empty until
// a draw is shown.
class FitPlot : public QWidget {
    Q_OBJECT
public:
    explicit FitPlot(QWidget* parent = nullptr);

    void showDraw(int runningNumber, const draw_params::FrontNumbers& numbers);
    const std::optional<line_fit_plot::Geometry>& geometry() const { return m_geometry; }

private:
    class Canvas;
    QLabel* m_heading;
    Canvas* m_canvas;
    QLabel* m_a;
    QLabel* m_b;
    QLabel* m_r;
    std::optional<line_fit_plot::Geometry> m_geometry;
};
