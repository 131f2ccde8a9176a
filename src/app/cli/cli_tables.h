#pragma once

// What the filter commands share: the table named by --table, the filter window reopened on
// it, and the parameters by name.

#include "app/cli/cli.h"
#include "filter/filter_workspace.h"
#include "filter/param_catalogue.h"

#include <memory>
#include <optional>

namespace cli_tables {

// The window that reopens the table named by --table (zuhe when absent).
std::optional<FilterInstance> instanceFor(CliContext& ctx, const QStringList& args);

// The filter window's logic reopened on the stored table, as a window opening it would.
struct OpenTable {
    Session* session = nullptr;
    std::unique_ptr<FilterWorkspace> workspace;

    // With `withTable` false only the workspace is made (commands that need no table).
    bool open(CliContext& ctx, const QStringList& args, bool withTable = true);
    // Waits for the record to be written and prints the live count.
    int finish(CliContext& ctx);
};

// A parameter by its draw column ("Znum") or its button ("Option23").
std::optional<ParamId> paramByName(const QString& name);

}  // namespace cli_tables
