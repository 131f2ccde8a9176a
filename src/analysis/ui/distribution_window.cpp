#include "analysis/ui/distribution_window.h"

#include "analysis/param_lists.h"
#include "workspace/session.h"

#include <QBarSeries>
#include <QBarSet>
#include <QCategoryAxis>
#include <QChart>
#include <QChartView>
#include <QValueAxis>

namespace {
constexpr qsizetype kMostLabels = 16;

// The column's head in the parameter lists beside its name: "各位数字和 (Znum)".
QString titleOf(const QString& column) {
    for (HistoryView v : kAllViews)
        for (const ListColumn& c : param_lists::columns(v))
            if (c.column.compare(column, Qt::CaseInsensitive) == 0) return QStringLiteral("%1 (%2)").arg(c.head, column);
    return column;
}
}  // namespace

DistributionWindow::DistributionWindow(const AnalysisContext& context, const QString& column)
    : QMainWindow(context.parent),
      m_groups(param_distribution::count(context.session.historyDb(), context.view(), column)) {
    setObjectName(QStringLiteral("frm3Dtj"));
    setWindowTitle(QStringLiteral("参数分布统计分析条形图"));
    auto* chart = new QChart;
    chart->setTitle(titleOf(column));
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
    // The bars stand at 0, 1, .. on a value axis labelled with their values: a column of a
    // hundred values labels every fifth or so instead of squeezing every label into "...".
    auto* categories = new QCategoryAxis(chart);
    categories->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
    categories->setRange(-0.5, values.size() - 0.5);
    qsizetype step = 1;
    for (qsizetype nice : {2, 5, 10, 20, 50})
        if (values.size() > step * kMostLabels) step = nice;
    for (qsizetype i = 0; i < values.size(); i += step) categories->append(values[i], static_cast<qreal>(i));
    categories->setGridLineVisible(false);
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
