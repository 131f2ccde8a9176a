#pragma once

// What the commands on candidate tables share: the --table option, and the filter window
// reopened on the stored table.

#include "app/cli/command_args.h"
#include "filter/filter_workspace.h"
#include "workspace/schema.h"

#include <memory>
#include <optional>

class CliContext;
class Session;

namespace cli_tables {

using Kind = schema::CandidateKind;

// --table over every stored candidate table: zuhe (the default), zuheRote, zuheMoban, zuheRead
// and zuhef.
OptionDeclaration storedTableOption();
Kind storedTable(const Args& args);

// --table over the tables a filter window reopens: zuhe (the default), zuheRote, zuheRead and
// zuheMoban.
OptionDeclaration windowTableOption();
// The same and zuhef, for the filters the six-number window has too.
OptionDeclaration windowOrSixTableOption();
FilterSource windowInstance(const Args& args);
// --table names zuhef.
bool onSixTable(const Args& args);

// The stored table of `kind` read whole, with the workspace's zone sizes; null after printing why
// it cannot be read.
std::unique_ptr<CandidateTable> loadStored(CliContext& ctx, Session& s, Kind kind);

// The window that reopens a stored table of this kind; zuhef has none among the seven.
std::optional<FilterSource> reopeningInstance(Kind kind);

// Loads the stored table of `kind` into the window's logic inside one read transaction; false
// when it is missing or cannot be read (`error` says why when it can).
bool openStoredTable(Session& session, FilterWorkspace& workspace, Kind kind, QString* error);

// The filter window's logic reopened on the stored table, as a window opening it would.
struct OpenTable {
    Session* session = nullptr;
    std::unique_ptr<FilterWorkspace> workspace;

    // With `withTable` false only the workspace is made (commands that need no table).
    bool open(CliContext& ctx, const Args& args, bool withTable = true);
    // Waits for the record to be written and prints the live count.
    int finish(CliContext& ctx);
};

}  // namespace cli_tables
