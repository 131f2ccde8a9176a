#include "analysis/ui/chart_panel_window.h"

#include "analysis/ui/chart_plot.h"

#include <QGridLayout>

ChartPanelWindow::ChartPanelWindow(const DrawHistory& history, Options options, Prompter& prompter,
                                   QWidget* parent)
    : ChartWindow(options.plan.given, options.plan.caption, prompter, parent), m_options(std::move(options)) {
    auto* central = new QWidget(this);
    auto* grid = new QGridLayout(central);
    const auto& plots = m_options.plan.plots;
    for (qsizetype i = 0; i < plots.size(); ++i) {
        const auto& plan = plots[i];
        auto* plot = new ChartPlot(central);
        plot->setObjectName(plan.given);
        plot->setToolTip(m_options.tips.value(plan.given));
        plot->setChart(trend_charts::hundredPlot(history, m_options.plan, plan, m_options.scope));
        connect(plot, &ChartPlot::clicked, this, [this, given = plan.given](Qt::MouseButton button) {
            if (m_options.clicked) m_options.clicked(this, given, button);
        });
        // With an odd count the first plot, the window's main one, takes a whole row.
        const bool wide = plots.size() % 2 == 1 && i == 0;
        const int cell = static_cast<int>(plots.size() % 2 == 1 ? i + 1 : i);
        grid->addWidget(plot, cell / 2, wide ? 0 : cell % 2, 1, wide ? 2 : 1);
    }
    setCentralWidget(central);
    const int rows = static_cast<int>((plots.size() + 1) / 2);  // the odd one's row counted
    resize(960, std::min(700, 40 + rows * 210));
}

ChartPlot* ChartPanelWindow::plot(const QString& given) const { return findChild<ChartPlot*>(given); }
