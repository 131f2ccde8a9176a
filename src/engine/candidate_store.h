#pragma once

#include "engine/candidate_table.h"
#include "engine/engine_progress.h"

#include <QString>

#include <memory>

class SqliteDb;

// The relational record of a candidate table in filnum.db, with the schema's columns.
//
// save() replaces the stored table in one transaction: the rows go into a fresh table that
// takes the old one's place at commit, so an interrupted or cancelled write leaves the
// previous table whole. Beside the rows it stores a column image of the table (table
// sq_candidate_cache) that load() reads instead of the rows while it is current. Triggers on
// the table drop that image as soon as anything else inserts, updates or deletes a row, and a
// table made anew by other code has no triggers, so the image is only used while the rows are
// exactly what save() wrote; otherwise load() reads the rows.
namespace candidate_store {

enum class Outcome { Done, Cancelled, Failed };

struct SaveResult {
    Outcome outcome = Outcome::Failed;
    QString error;
};

SaveResult save(SqliteDb& db, const CandidateTable& table, EngineProgress* progress = nullptr);

// Which path load() took (for the benchmark and the tests).
enum class LoadPath { None, ColumnImage, Rows };

struct LoadResult {
    std::unique_ptr<CandidateTable> table;  // null when the table is missing or loading failed
    LoadPath path = LoadPath::None;
    QString error;
};

// Loads the stored table; `allowImage` false forces the row path.
LoadResult load(SqliteDb& db, schema::CandidateKind kind, EngineProgress* progress = nullptr,
                bool allowImage = true);

bool tableExists(SqliteDb& db, schema::CandidateKind kind);

inline const QString kImageTable = QStringLiteral("sq_candidate_cache");

}  // namespace candidate_store
