#pragma once

#include "engine/candidate_table.h"
#include "engine/engine_progress.h"
#include "engine/record_image.h"

#include <QString>

#include <memory>

class SqliteDb;

// The record of a candidate table in filnum.db.
//
// The record is the column image (record_image): the numbers written once, then after each
// action only the columns that changed, compressed, in one transaction, so that an interrupted
// write leaves the previous state or the new one. The relational table with the schema's
// columns is derived from it (relational_record) for whatever reads the table with SQL: call
// ensureRelational() before such a read. A relational table that other code made or changed is
// the record again: the next load reads its rows and converts them, as it does with a file of
// the previous version (rows and the image table sq_candidate_cache).
namespace candidate_store {

enum class Outcome { Done, Cancelled, Failed };

struct SaveResult {
    Outcome outcome = Outcome::Failed;
    QString error;
};

using ZoneLimits = record_image::ZoneLimits;

// Writes the columns of `table` that changed since its last write (all of them the first time),
// in one transaction; marks them clean once committed.
SaveResult saveImage(SqliteDb& db, const CandidateTable& table, EngineProgress* progress = nullptr);

// Brings the relational table up to date with the image, in one transaction. `current`, when
// given, is a table in memory whose image may be the stored one: it is used instead of reading
// the image back when it is.
SaveResult ensureRelational(SqliteDb& db, schema::CandidateKind kind, EngineProgress* progress = nullptr,
                            const CandidateTable* current = nullptr);

// The image and then the relational table.
SaveResult save(SqliteDb& db, const CandidateTable& table, EngineProgress* progress = nullptr);

// Which path load() took (for the benchmark and the tests).
enum class LoadPath { None, ColumnImage, Rows, LegacyImage };

struct LoadResult {
    std::unique_ptr<CandidateTable> table;  // null when the table is missing, damaged or cancelled
    LoadPath path = LoadPath::None;
    QString error;  // names the file when the stored table is damaged
};

// Loads the stored table. `allowImage` false reads the relational rows as they stand, converting
// nothing. Every path checks what it read against `limits` and the table's own shape.
LoadResult load(SqliteDb& db, schema::CandidateKind kind, EngineProgress* progress = nullptr,
                bool allowImage = true, ZoneLimits limits = {});

bool tableExists(SqliteDb& db, schema::CandidateKind kind);

inline const QString kImageTable = record_image::kChunkTable;

}  // namespace candidate_store
