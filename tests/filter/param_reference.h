#pragma once

// The filter window's statements themselves, in SQLite's dialect, over a copy of a candidate
// table: the reference the engine's kernels are checked against. Jet's true is -1, so a
// comparison is wrapped as J(x) = (-(x)) and the statements keep their negations; `mod` is %,
// IIf is iif, InStr is instr, & is || with a null read as "", NOT on a flag is the bitwise ~.
// The four row loops are written out as loops over the rows, as the window runs them.

#include "engine/candidate_table.h"
#include "filter/param/param_filter.h"
#include "workspace/sqlite_db.h"

#include <QString>
#include <QStringList>

#include <array>
#include <vector>

namespace param_reference {

// Copies the table into SQLite table [zuhe] (flags -1/0, null reasons as NULL).
void load(SqliteDb& db, const CandidateTable& t);

// One button clicked, as its handler runs the statements.
void runSingle(SqliteDb& db, ParamId id, const ParamWindowState& s, const ParamContext& ctx);
// Option29, left button.
void runIntegrated(SqliteDb& db, const ParamWindowState& s, const ParamContext& ctx);

struct Row {
    int idx = 0;
    int paramValues = 0;
    bool filteredOut = false, previousFilteredOut = false;
    int failCount = 0;
    bool fliterNull = true;
    QString rowReasons;
};
std::vector<Row> rows(SqliteDb& db);

}  // namespace param_reference
