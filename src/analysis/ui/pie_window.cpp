#include "analysis/ui/pie_window.h"

#include <QChart>
#include <QChartView>
#include <QPieSeries>
#include <QPieSlice>

PieWindow::PieWindow(const QList<trend_charts::Slice>& slices, Prompter& prompter, QWidget* parent)
    : ChartWindow(QStringLiteral("firCir"), kCaption, prompter, parent), m_series(new QPieSeries) {
    for (const auto& s : slices) {
        QPieSlice* slice = m_series->append(s.label, s.value);
        slice->setLabelVisible(s.value > 0);
    }
    // The share of each slice beside its name, once all are in.
    for (QPieSlice* slice : m_series->slices())
        slice->setLabel(QStringLiteral("%1 (%2%)").arg(slice->label()).arg(slice->percentage() * 100, 0, 'f', 1));
    auto* chart = new QChart;
    chart->addSeries(m_series);
    chart->legend()->setAlignment(Qt::AlignRight);
    auto* view = new QChartView(chart, this);
    view->setObjectName(QStringLiteral("Chart1"));
    view->setRenderHint(QPainter::Antialiasing);
    setCentralWidget(view);
    resize(820, 620);
}
