#include "analysis/ui/analysis_views.h"
#include "analysis/ui/statistics_window.h"

namespace analysis_views {

QList<AnalysisView> statisticsViews() {
    const auto opens = [](StatisticsWindow::Kind kind) {
        return [kind](const AnalysisContext& c) -> QWidget* { return new StatisticsWindow(kind, c); };
    };
    return {{QStringLiteral("mnuXg"), opens(StatisticsWindow::Kind::Correlation)},
            {QStringLiteral("mnuFljp(0)"), opens(StatisticsWindow::Kind::Following)},
            {QStringLiteral("mnuFljp(1)"), opens(StatisticsWindow::Kind::Skipping)},
            {QStringLiteral("mnuGl"), opens(StatisticsWindow::Kind::Moments)}};
}

}  // namespace analysis_views
