#include "analysis/ui/chart_zoom_window.h"

#include "analysis/ui/chart_plot.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

ChartZoomWindow::ChartZoomWindow(Options options, Prompter& prompter, QWidget* parent)
    : ChartWindow(options.given, options.caption, prompter, parent), m_options(std::move(options)) {
    auto* central = new QWidget(this);
    auto* layout = new QVBoxLayout(central);
    m_plot = new ChartPlot(central);
    m_plot->setObjectName(QStringLiteral("Picture1"));
    m_plot->setToolTip(kPlotTip);
    layout->addWidget(m_plot, 1);
    if (!m_options.buttonName.isEmpty()) {
        auto* row = new QHBoxLayout;
        for (qsizetype i = 0; i < m_options.buttonCaptions.size(); ++i) {
            auto* b = new QPushButton(m_options.buttonCaptions[i], central);
            b->setObjectName(QStringLiteral("%1(%2)").arg(m_options.buttonName).arg(i));
            connect(b, &QPushButton::clicked, this, [this, i] { showState(static_cast<int>(i)); });
            row->addWidget(b);
        }
        layout->addLayout(row);
    }
    setCentralWidget(central);
    connect(m_plot, &ChartPlot::clicked, this, [this] {
        showState(m_state);
        m_plot->replay();
    });
    showState(0);
    resize(860, 600);
}

void ChartZoomWindow::showState(int state) {
    m_state = state;
    m_plot->setChart(m_options.chart(state));
}
