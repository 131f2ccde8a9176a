#pragma once

#include "app/cli/cli_tables.h"
#include "filter/super/super_filter.h"
#include "filter/templates/template_recorder.h"

// The filter window as its super filters and templates see it: the workspace (opened on the
// stored table when asked), the super filters and the template recorder. The zone tab and
// intQianHou follow --scope.
struct SuperWindow : cli_tables::OpenTable {
    std::unique_ptr<SuperFilter> super;
    std::unique_ptr<TemplateRecorder> recorder;
    ZoneScope tab = ZoneScope::Front;
    SuperInputs in;
    ParamWindowState state = ParamWindowState::defaults();

    bool open(CliContext& ctx, const Args& args, bool withTable);
};
