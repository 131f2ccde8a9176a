#pragma once

// The column image of a candidate table in filnum.db: the record itself. Table sq_record holds
// one row per candidate table (its shape, the count of reason entries stored, the versions of
// the image and of the relational table derived from it); sq_record_chunk holds the columns in
// compressed pieces of record_chunks::kRowsPerChunk rows and the reason entries in pieces keyed
// by their first id. A write replaces only the pieces that changed.

#include "engine/candidate_table.h"
#include "engine/engine_progress.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

class SqliteDb;

namespace record_image {

inline const QString kInfoTable = QStringLiteral("sq_record");
inline const QString kChunkTable = QStringLiteral("sq_record_chunk");

// What sq_record says of one candidate table.
struct Info {
    schema::CandidateKind kind = schema::CandidateKind::Combinations;
    uint64_t rows = 0;
    uint32_t layout = 0;  // the optional columns stored (CandidateTable::Column bits)
    int textMode = 0;
    bool backText = false;
    uint64_t reasons = 2;  // reason entries stored, the null and the empty text included
    int64_t token = 0;
    int64_t imageVersion = 0;
    int64_t relationalVersion = 0;  // the image version the relational table was derived from
    bool sqlChanged = false;        // the relational table was changed by SQL after it was derived
};

// The largest numbers of the zones that a stored ticket may hold; 0 stands for an empty cell.
struct ZoneLimits {
    int front = 36;
    int back = 24;
};

std::optional<Info> readInfo(SqliteDb& db, const QString& table);
bool ensureTables(SqliteDb& db);

enum class Status { Done, Cancelled, Failed };

// Writes what differs between `table` and its stored image, inside the caller's transaction.
// With `relationalCurrent` the relational table is recorded as derived from this image (a
// conversion of a table read from its rows). Clears nothing: the caller marks the table clean
// after its commit.
Status write(SqliteDb& db, const CandidateTable& table, EngineProgress* progress, bool relationalCurrent);

struct ReadResult {
    std::unique_ptr<CandidateTable> table;
    QString problem;  // what is damaged, when the table is null and nothing was cancelled
};

// Reads and checks the image that `info` describes.
ReadResult read(SqliteDb& db, schema::CandidateKind kind, const Info& info, ZoneLimits limits,
                EngineProgress* progress = nullptr);

// The checks every loader makes of a table it read: numbers in their zones, reason ids known,
// no flag bit past the last row. Empty when all is well.
QString checkTable(const CandidateTable& table, ZoneLimits limits);

// Removes the image of one table.
bool remove(SqliteDb& db, const QString& table);

}  // namespace record_image
