#include "analysis/ui/analysis_views.h"

namespace analysis_views {

QList<AnalysisView> chartViews() { return {}; }

}  // namespace analysis_views
