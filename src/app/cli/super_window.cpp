#include "app/cli/super_window.h"

#include "app/cli/window_boxes.h"
#include "workspace/session.h"

bool SuperWindow::open(CliContext& ctx, const Args& args, bool withTable) {
    if (!OpenTable::open(ctx, args, withTable)) return false;
    tab = window_boxes::scope(args);
    workspace->zoneScope = static_cast<int16_t>(tab);
    state.scope = tab;
    super = std::make_unique<SuperFilter>(*workspace, session->history(), session->frontSize(),
                                          session->filterDb());
    recorder = std::make_unique<TemplateRecorder>(*workspace, *super, session->filterDb(),
                                                  ParamContext::fromSession(*session));
    return true;
}
