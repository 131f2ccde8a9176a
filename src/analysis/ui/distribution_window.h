#pragma once

#include "analysis/param_distribution.h"
#include "analysis/ui/analysis_views.h"

#include <QMainWindow>

class QBarSeries;

// How many draws have each value of a per-draw column, as a bar chart: one bar per value, three
// groups for the decade counts.
class DistributionWindow : public QMainWindow {
    Q_OBJECT
public:
    DistributionWindow(const AnalysisContext& context, const QString& column);

    const std::vector<DistributionGroup>& groups() const { return m_groups; }
    QBarSeries* series() const { return m_series; }

private:
    std::vector<DistributionGroup> m_groups;
    QBarSeries* m_series = nullptr;
};
