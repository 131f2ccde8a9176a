#include "analysis/ui/analysis_views.h"

namespace analysis_views {

QList<AnalysisView> fitAnd3dViews() { return {}; }

}  // namespace analysis_views
