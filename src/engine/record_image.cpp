#include "engine/record_image.h"

#include "engine/record_chunks.h"
#include "engine/stored_columns.h"
#include "workspace/sqlite_db.h"

#include <sqlite3.h>

#include <QHash>

#include <vector>

namespace record_image {

namespace {

using Kind = schema::CandidateKind;
using stored_columns::Stmt;
using Col = CandidateTable::Column;

constexpr uint32_t kOptionalColumns = Col::ParamValueColumn | Col::SuperCountColumn | Col::FailCountColumn |
                                      Col::MatchIssueColumn | Col::IdxColumn;
const QString kReasonPart = QStringLiteral("reasons");

// One stored column: its bytes in memory and the bytes of one piece.
struct Part {
    QString name;
    uint32_t column;
    char* data;
    uint64_t bytes;
    uint64_t chunkBytes;

    uint64_t chunks() const { return (bytes + chunkBytes - 1) / chunkBytes; }
    uint64_t sliceBytes(uint64_t seq) const { return std::min(chunkBytes, bytes - seq * chunkBytes); }
};

template <typename T>
Part partOf(const QString& name, uint32_t column, std::span<const T> v) {
    return {name, column, reinterpret_cast<char*>(const_cast<T*>(v.data())), v.size() * sizeof(T),
            record_chunks::kRowsPerChunk * sizeof(T)};
}

Part bitsOf(const char* name, uint32_t column, const BitVector& bits) {
    const auto words = bits.words();
    return {QLatin1String(name), column, reinterpret_cast<char*>(const_cast<BitVector::Word*>(words.data())),
            words.size() * sizeof(BitVector::Word), record_chunks::kRowsPerChunk / 8};
}

// The stored columns of a table, the optional ones when allocated.
std::vector<Part> partsOf(const CandidateTable& t) {
    std::vector<Part> parts;
    for (int k = 1; k <= t.numberCount(); ++k)
        parts.push_back(partOf(QStringLiteral("fig%1").arg(k), Col::Numbers, t.numberColumn(k)));
    parts.push_back(bitsOf("unslt", Col::FilteredOutColumn, t.filteredOut()));
    parts.push_back(bitsOf("preunslt", Col::PreviousFilteredOutColumn, t.previousFilteredOut()));
    parts.push_back(bitsOf("tmpunslt", Col::ScratchFilteredOutColumn, t.scratchFilteredOut()));
    parts.push_back(bitsOf("gpslt", Col::GroupMarkColumn, t.groupMark()));
    parts.push_back(partOf(QStringLiteral("fliter"), Col::ReasonColumn, t.rowReasons()));
    if (t.hasParamValues())
        parts.push_back(partOf(QStringLiteral("canshu"), Col::ParamValueColumn, t.paramValues()));
    if (t.hasSuperCount())
        parts.push_back(partOf(QStringLiteral("sknum"), Col::SuperCountColumn, t.superCount()));
    if (t.hasFailCount())
        parts.push_back(partOf(QStringLiteral("errnum"), Col::FailCountColumn, t.failCount()));
    if (t.hasMatchIssue())
        parts.push_back(partOf(QStringLiteral("jsqihao"), Col::MatchIssueColumn, t.matchIssue()));
    if (t.hasExplicitIdx()) parts.push_back(partOf(QStringLiteral("idx"), Col::IdxColumn, t.explicitIdx()));
    return parts;
}

uint32_t layoutOf(const CandidateTable& t) {
    uint32_t layout = 0;
    for (const Part& p : partsOf(t)) layout |= p.column & kOptionalColumns;
    return layout;
}

const char* optionalPartName(uint32_t column) {
    switch (column) {
        case Col::ParamValueColumn:
            return "canshu";
        case Col::SuperCountColumn:
            return "sknum";
        case Col::FailCountColumn:
            return "errnum";
        case Col::MatchIssueColumn:
            return "jsqihao";
        default:
            return "idx";
    }
}

void bindText(sqlite3_stmt* st, int i, const QByteArray& b) {
    sqlite3_bind_text(st, i, b.constData(), static_cast<int>(b.size()), SQLITE_TRANSIENT);
}

// Puts one compressed piece in place of the stored one.
class ChunkWriter {
public:
    ChunkWriter(SqliteDb& db, const QString& table)
        : m_st(db, QStringLiteral("INSERT OR REPLACE INTO [%1]([tbl],[part],[seq],[raw],[hash],[data]) "
                                  "VALUES(?1,?2,?3,?4,?5,?6)")
                       .arg(kChunkTable)),
          m_table(table.toUtf8()) {}

    bool put(const QString& part, uint64_t seq, const void* data, uint64_t bytes, int64_t hash) {
        const QByteArray packed = record_chunks::compress(data, bytes);
        if (!m_st.ok() || packed.isEmpty()) return false;
        sqlite3_stmt* st = m_st.get();
        bindText(st, 1, m_table);
        bindText(st, 2, part.toUtf8());
        sqlite3_bind_int64(st, 3, static_cast<sqlite3_int64>(seq));
        sqlite3_bind_int64(st, 4, static_cast<sqlite3_int64>(bytes));
        sqlite3_bind_int64(st, 5, hash);
        sqlite3_bind_blob64(st, 6, packed.constData(), static_cast<sqlite3_uint64>(packed.size()),
                            SQLITE_STATIC);
        const int rc = sqlite3_step(st);
        sqlite3_reset(st);
        return rc == SQLITE_DONE;
    }

private:
    Stmt m_st;
    QByteArray m_table;
};

using StoredHashes = QHash<QString, QHash<uint64_t, int64_t>>;

StoredHashes storedHashes(SqliteDb& db, const QString& table) {
    StoredHashes out;
    for (const QVariantList& r : db.rows(
             QStringLiteral("SELECT [part],[seq],[hash] FROM [%1] WHERE [tbl]=?1").arg(kChunkTable), {table}))
        out[r.value(0).toString()].insert(r.value(1).toULongLong(), r.value(2).toLongLong());
    return out;
}

// Writes the pieces of `part` whose bytes differ from the stored ones.
Status writePart(ChunkWriter& w, const Part& part, const QHash<uint64_t, int64_t>& stored,
                 EngineProgress* progress) {
    for (uint64_t seq = 0; seq < part.chunks(); ++seq) {
        if (progress && progress->cancelled()) return Status::Cancelled;
        const char* p = part.data + seq * part.chunkBytes;
        const uint64_t n = part.sliceBytes(seq);
        const int64_t h = record_chunks::hash(p, n);
        const auto it = stored.constFind(seq);
        if (it != stored.constEnd() && it.value() == h) continue;
        if (!w.put(part.name, seq, p, n, h)) return Status::Failed;
    }
    return Status::Done;
}

bool removePart(SqliteDb& db, const QString& table, const QString& part) {
    return db.exec(QStringLiteral("DELETE FROM [%1] WHERE [tbl]=?1 AND [part]=?2").arg(kChunkTable),
                   {table, part});
}

// The reason entries added since the last write, or all of them when the stored ones are not
// this table's.
bool writeReasons(SqliteDb& db, ChunkWriter& w, const CandidateTable& t, const QString& table, bool same,
                  uint64_t storedCount) {
    const uint64_t size = t.reasons().size();
    uint64_t from = storedCount;
    if (!same || storedCount < 2 || storedCount > size) {
        if (!removePart(db, table, kReasonPart)) return false;
        from = 2;
    }
    if (size <= from) return true;
    const QByteArray piece = t.reasons().image(static_cast<ReasonTable::Id>(from));
    return w.put(kReasonPart, from, piece.constData(), static_cast<uint64_t>(piece.size()),
                 record_chunks::hash(piece.constData(), static_cast<size_t>(piece.size())));
}

bool writeInfo(SqliteDb& db, const CandidateTable& t, const std::optional<Info>& old,
               bool relationalCurrent) {
    const int64_t version = (old ? old->imageVersion : 0) + 1;
    const int64_t relational = relationalCurrent ? version : (old ? old->relationalVersion : 0);
    return db.exec(
        QStringLiteral("INSERT OR REPLACE INTO [%1]([tbl],[kind],[rows],[layout],[textmode],[backtext],"
                       "[reasons],[token],[image_version],[relational_version],[sql_changed]) "
                       "VALUES(?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,0)")
            .arg(kInfoTable),
        {t.tableName(), static_cast<int>(t.kind()), static_cast<qulonglong>(t.rowCount()), layoutOf(t),
         static_cast<int>(t.numberTextMode()), t.backNumberTextFilled() ? 1 : 0,
         static_cast<qulonglong>(t.reasons().size()), static_cast<qlonglong>(t.recordToken()),
         static_cast<qlonglong>(version), static_cast<qlonglong>(relational)});
}

}  // namespace

bool ensureTables(SqliteDb& db) {
    return db.exec(QStringLiteral("CREATE TABLE IF NOT EXISTS [%1]([tbl] TEXT PRIMARY KEY,[kind] INTEGER,"
                                  "[rows] INTEGER,[layout] INTEGER,[textmode] INTEGER,[backtext] INTEGER,"
                                  "[reasons] INTEGER,[token] INTEGER,[image_version] INTEGER,"
                                  "[relational_version] INTEGER,[sql_changed] INTEGER)")
                       .arg(kInfoTable)) &&
           db.exec(QStringLiteral("CREATE TABLE IF NOT EXISTS [%1]([tbl] TEXT NOT NULL,[part] TEXT NOT NULL,"
                                  "[seq] INTEGER NOT NULL,[raw] INTEGER NOT NULL,[hash] INTEGER NOT NULL,"
                                  "[data] BLOB NOT NULL,PRIMARY KEY([tbl],[part],[seq]))")
                       .arg(kChunkTable));
}

std::optional<Info> readInfo(SqliteDb& db, const QString& table) {
    if (!db.tableExists(kInfoTable)) return std::nullopt;
    const QList<QVariantList> rows =
        db.rows(QStringLiteral("SELECT [kind],[rows],[layout],[textmode],[backtext],[reasons],[token],"
                               "[image_version],[relational_version],[sql_changed] FROM [%1] WHERE [tbl]=?1")
                    .arg(kInfoTable),
                {table});
    if (rows.isEmpty()) return std::nullopt;
    const QVariantList& r = rows.first();
    Info i;
    i.kind = static_cast<Kind>(r.value(0).toInt());
    i.rows = r.value(1).toULongLong();
    i.layout = r.value(2).toUInt();
    i.textMode = r.value(3).toInt();
    i.backText = r.value(4).toInt() != 0;
    i.reasons = r.value(5).toULongLong();
    i.token = r.value(6).toLongLong();
    i.imageVersion = r.value(7).toLongLong();
    i.relationalVersion = r.value(8).toLongLong();
    i.sqlChanged = r.value(9).toInt() != 0;
    return i;
}

Status write(SqliteDb& db, const CandidateTable& t, EngineProgress* progress, bool relationalCurrent) {
    const QString table = t.tableName();
    if (!ensureTables(db)) return Status::Failed;
    const std::optional<Info> old = readInfo(db, table);
    const bool same = old && old->token == static_cast<int64_t>(t.recordToken()) && old->kind == t.kind() &&
                      old->rows == t.rowCount();
    if (!same && !remove(db, table)) return Status::Failed;
    const StoredHashes stored = same ? storedHashes(db, table) : StoredHashes{};
    const uint32_t columns = same ? t.dirtyColumns() : CandidateTable::AllColumns;
    ChunkWriter w(db, table);
    for (const Part& part : partsOf(t)) {
        if (!(columns & part.column)) continue;
        const Status s = writePart(w, part, stored.value(part.name), progress);
        if (s != Status::Done) return s;
    }
    const uint32_t layout = layoutOf(t);
    for (uint32_t c = Col::ParamValueColumn; c <= Col::IdxColumn; c <<= 1)
        if (same && (old->layout & c) && !(layout & c) &&
            !removePart(db, table, QLatin1String(optionalPartName(c))))
            return Status::Failed;
    if (!writeReasons(db, w, t, table, same, old ? old->reasons : 0)) return Status::Failed;
    if (progress && progress->cancelled()) return Status::Cancelled;
    return writeInfo(db, t, old, relationalCurrent) ? Status::Done : Status::Failed;
}

bool remove(SqliteDb& db, const QString& table) {
    if (!ensureTables(db)) return false;
    return db.exec(QStringLiteral("DELETE FROM [%1] WHERE [tbl]=?1").arg(kChunkTable), {table}) &&
           db.exec(QStringLiteral("DELETE FROM [%1] WHERE [tbl]=?1").arg(kInfoTable), {table});
}

}  // namespace record_image
