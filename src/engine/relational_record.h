#pragma once

// The relational table of a candidate table (the schema's columns, one row per ticket), derived
// from the column image for whatever reads it with SQL. Triggers on it note in sq_record when
// other code changes its rows, which makes the rows the record again.

#include "engine/candidate_table.h"
#include "engine/engine_progress.h"

#include <QString>

class SqliteDb;

namespace relational_record {

enum class Status { Done, Cancelled, Failed };

// Replaces the relational table by the rows of `table` inside the caller's transaction: the rows
// go into a fresh table that takes the old one's place, with the triggers.
Status write(SqliteDb& db, const CandidateTable& table, EngineProgress* progress, QString* error);

// Whether the table carries the triggers write() gives it (none: other code made it anew).
bool hasTriggers(SqliteDb& db, const QString& table);
bool createTriggers(SqliteDb& db, const QString& table);

}  // namespace relational_record
