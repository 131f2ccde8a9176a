#pragma once

// Reading a candidate table from what other versions and other code leave in filnum.db: the
// relational rows, and the column image of the previous version (table sq_candidate_cache, used
// while its triggers say the rows are unchanged). Both are read once and converted.

#include "engine/candidate_table.h"
#include "engine/engine_progress.h"

#include <QString>

#include <memory>

class SqliteDb;

namespace row_loader {

inline const QString kLegacyImageTable = QStringLiteral("sq_candidate_cache");

struct Loaded {
    std::unique_ptr<CandidateTable> table;  // null when cancelled or failed
    QString error;
};

// The rows of the relational table in rowid order.
Loaded loadRows(SqliteDb& db, schema::CandidateKind kind, EngineProgress* progress = nullptr);

// The previous version's image, when its triggers still guard it; null otherwise.
bool legacyImageIsCurrent(SqliteDb& db, const QString& table);
std::unique_ptr<CandidateTable> loadLegacyImage(SqliteDb& db, schema::CandidateKind kind);
// Drops the previous version's triggers and image of one table (the image table too once empty).
bool dropLegacy(SqliteDb& db, const QString& table);

}  // namespace row_loader
