#pragma once

#include "analysis/trend_charts.h"
#include "analysis/ui/chart_window.h"

class QPieSeries;

// The probability pie: one slice per entry, labelled with its name and share.
class PieWindow : public ChartWindow {
    Q_OBJECT
public:
    static inline const QString kCaption = QStringLiteral("历史号码概率饼形图");

    PieWindow(const QList<trend_charts::Slice>& slices, Prompter& prompter, QWidget* parent = nullptr);

    QPieSeries* series() const { return m_series; }

private:
    QPieSeries* m_series;
};
