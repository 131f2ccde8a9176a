#include "analysis/ui/param_strips_window.h"

#include "analysis/trend_charts.h"
#include "analysis/ui/chart_plot.h"
#include "workspace/session.h"

#include <QVBoxLayout>

ParamStripsWindow::ParamStripsWindow(const AnalysisContext& context, const QString& column)
    : ChartWindow(QStringLiteral("frm3Dtec"), QStringLiteral("参数走势"), context.prompter, context.parent) {
    auto* central = new QWidget(this);
    auto* strips = new QVBoxLayout(central);
    strips->setSpacing(2);
    const std::vector<trend_charts::Chart> charts =
        trend_charts::parameterStrips(context.session.history(), context.view(), column);
    for (size_t k = 0; k < charts.size(); ++k) {
        auto* plot = new ChartPlot(central);
        plot->setObjectName(QStringLiteral("Picture1(%1)").arg(k));
        plot->setChart(charts[k]);
        strips->addWidget(plot);
    }
    setCentralWidget(central);
    resize(960, 700);
}

ChartPlot* ParamStripsWindow::strip(int k) const { return findChild<ChartPlot*>(QStringLiteral("Picture1(%1)").arg(k)); }
