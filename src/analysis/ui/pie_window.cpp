#include "analysis/ui/pie_window.h"

#include <QChart>
#include <QChartView>
#include <QPieSeries>
#include <QPieSlice>

#include <algorithm>

PieWindow::PieWindow(const QList<trend_charts::Slice>& slices, Prompter& prompter, QWidget* parent)
    : ChartWindow(QStringLiteral("firCir"), kCaption, prompter, parent), m_series(new QPieSeries) {
    for (const auto& s : slices) {
        QPieSlice* slice = m_series->append(s.label, s.value);
        slice->setLabelVisible(s.value > 0);
    }
    // The share of each slice beside its name, once all are in; hues around the circle so that
    // neighbours differ.
    const qsizetype count = m_series->count();
    for (qsizetype i = 0; i < count; ++i) {
        QPieSlice* slice = m_series->slices().at(i);
        slice->setLabel(QStringLiteral("%1 (%2%)").arg(slice->label()).arg(slice->percentage() * 100, 0, 'f', 1));
        slice->setBrush(QColor::fromHsv(static_cast<int>(i * 360 / std::max<qsizetype>(count, 1)), 150, 230));
    }
    auto* chart = new QChart;
    chart->addSeries(m_series);
    // Every slice carries its label; a legend of one entry a number would not fit.
    constexpr int kLegendLimit = 12;
    chart->legend()->setVisible(count <= kLegendLimit);
    chart->legend()->setAlignment(Qt::AlignRight);
    auto* view = new QChartView(chart, this);
    view->setObjectName(QStringLiteral("Chart1"));
    view->setRenderHint(QPainter::Antialiasing);
    setCentralWidget(view);
    resize(820, 620);
}
