#include "analysis/ui/analysis_views.h"

#include "analysis/ui/fit_window.h"
#include "analysis/ui/view_3d_window.h"
#include "workspace/session.h"

namespace analysis_views {

QList<AnalysisView> fitAnd3dViews() {
    return {
        {QStringLiteral("mnuNihe"),
         [](const AnalysisContext& c) -> QWidget* { return new FitWindow(c.session.history(), c.parent); }},
        {QStringLiteral("mnu3D"),
         [](const AnalysisContext& c) -> QWidget* { return new View3dWindow(c.session.history(), c.parent); },
         /*kept=*/true},
    };
}

}  // namespace analysis_views
