#pragma once

#include "analysis/trend_charts.h"
#include "analysis/ui/chart_window.h"

#include <QHash>

#include <functional>

class ChartPlot;

// The small plots of the last hundred draws, laid out two to a row, as a window's table
// gives them for the analysis scope. What a click on a plot does is the caller's.
class ChartPanelWindow : public ChartWindow {
    Q_OBJECT
public:
    struct Options {
        trend_charts::WindowPlan plan;
        HistoryView scope = HistoryView::Both;
        QHash<QString, QString> tips;  // by plot name
        // Called with the window, the plot's given name and the button pressed.
        std::function<void(ChartPanelWindow* window, const QString& plot, Qt::MouseButton button)> clicked;
    };

    ChartPanelWindow(const DrawHistory& history, Options options, Prompter& prompter, QWidget* parent = nullptr);

    ChartPlot* plot(const QString& given) const;

private:
    Options m_options;
};
