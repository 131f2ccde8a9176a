#pragma once

#include "analysis/ui/analysis_views.h"
#include "analysis/ui/chart_window.h"

class ChartPlot;

// A per-draw column over the latest 240 draws in six strips of 40, the issues under every
// fifth point.
class ParamStripsWindow : public ChartWindow {
    Q_OBJECT
public:
    ParamStripsWindow(const AnalysisContext& context, const QString& column);

    ChartPlot* strip(int k) const;
};
