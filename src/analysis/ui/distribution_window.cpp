#include "analysis/ui/distribution_window.h"

#include "workspace/session.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QValueAxis>

DistributionWindow::DistributionWindow(const AnalysisContext& context, const QString& column)
    : QMainWindow(context.parent),
      m_groups(param_distribution::count(context.session.historyDb(), context.view(), column)) {
    setObjectName(QStringLiteral("frm3Dtj"));
    setWindowTitle(QStringLiteral("参数分布统计分析条形图"));
    auto* chart = new QChart;
    chart->setTitle(column);
    chart->legend()->setVisible(m_groups.size() > 1);
    m_series = new QBarSeries(chart);
    QStringList values;
    int most = 0;
    for (const DistributionGroup& g : m_groups) {
        auto* set = new QBarSet(g.column, m_series);
        for (const auto& [value, draws] : g.counts) {
            *set << draws;
            most = std::max(most, draws);
        }
        m_series->append(set);
        // The groups share their values (the decades run 0 to 5 each).
        if (values.isEmpty())
            for (const auto& entry : g.counts) values << QString::number(entry.first);
    }
    chart->addSeries(m_series);
    auto* categories = new QBarCategoryAxis(chart);
    categories->append(values);
    chart->addAxis(categories, Qt::AlignBottom);
    m_series->attachAxis(categories);
    auto* counts = new QValueAxis(chart);
    counts->setRange(0, std::max(most, 1));
    counts->setLabelFormat(QStringLiteral("%d"));
    chart->addAxis(counts, Qt::AlignLeft);
    m_series->attachAxis(counts);
    auto* view = new QChartView(chart, this);
    view->setObjectName(QStringLiteral("MSChart1"));
    view->setRenderHint(QPainter::Antialiasing);
    setCentralWidget(view);
    resize(900, 560);
}
