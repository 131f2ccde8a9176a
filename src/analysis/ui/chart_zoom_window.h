#pragma once

#include "analysis/trend_charts.h"
#include "analysis/ui/chart_window.h"

#include <QStringList>

#include <functional>

class ChartPlot;

// One chart over the latest 40 draws, with an optional row of buttons that pick what it
// shows (the position, or the position's offset). The state picked stays from one click to
// the next; a click on the chart computes it again and draws it point by point.
class ChartZoomWindow : public ChartWindow {
    Q_OBJECT
public:
    struct Options {
        QString given;
        QString caption;
        QString buttonName;          // buttons are named buttonName(0), (1), ...; none when empty
        QStringList buttonCaptions;  // button i picks state i
        std::function<trend_charts::Chart(int state)> chart;
    };

    ChartZoomWindow(Options options, Prompter& prompter, QWidget* parent = nullptr);

    int state() const { return m_state; }
    ChartPlot* plot() const { return m_plot; }

    static inline const QString kPlotTip = QStringLiteral("单击鼠标绘制动态走势线");

private:
    void showState(int state);

    Options m_options;
    ChartPlot* m_plot;
    int m_state = 0;
};
