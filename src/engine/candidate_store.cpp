#include "engine/candidate_store.h"

#include "engine/stored_columns.h"
#include "workspace/sqlite_db.h"

#include <sqlite3.h>

#include <QHash>

#include <cstring>

namespace candidate_store {
namespace {

using Kind = schema::CandidateKind;
using stored_columns::BoundColumn;
using stored_columns::forEachChunk;
using stored_columns::Source;
using stored_columns::sourceOf;
using stored_columns::Stmt;

constexpr uint64_t kImageChunkBytes = uint64_t{32} << 20;
// Rows bound to one INSERT statement (each row has at most 19 parameters).
constexpr int kRowsPerInsert = 64;

// The columns save() binds: every schema column whose value is not the create default.
QList<BoundColumn> boundColumns(const CandidateTable& t) {
    QList<BoundColumn> out;
    for (const ColumnDef& c : schema::candidate(t.kind()).columns) {
        BoundColumn b{c.name, Source::Unknown};
        b.source = sourceOf(c.name, &b.numberColumn);
        const bool skip =
            (b.source == Source::ParamValue && !t.hasParamValues()) ||
            (b.source == Source::SuperCount && !t.hasSuperCount()) ||
            (b.source == Source::FailCount && !t.hasFailCount()) ||
            (b.source == Source::MatchIssue && !t.hasMatchIssue()) ||
            (b.source == Source::NumberText && t.numberTextMode() == CandidateTable::NumberTextMode::Null) ||
            (b.source == Source::BackNumberText && !t.backNumberTextFilled()) || b.source == Source::Unknown;
        if (!skip) out.append(b);
    }
    return out;
}

QString triggerName(const QString& table, const char* what) {
    return QStringLiteral("sq_image_%1_%2").arg(table, QLatin1String(what));
}

bool ensureImageTable(SqliteDb& db) {
    return db.exec(
        QStringLiteral("CREATE TABLE IF NOT EXISTS [%1]([tbl] TEXT,[part] TEXT,[seq] INTEGER,[data] BLOB)")
            .arg(kImageTable));
}

bool createTriggers(SqliteDb& db, const QString& table) {
    const QString drop = QStringLiteral("DELETE FROM [%1] WHERE [tbl]='%2';").arg(kImageTable, table);
    for (const char* ev : {"INSERT", "UPDATE", "DELETE"}) {
        const QString sql = QStringLiteral("CREATE TRIGGER [%1] AFTER %2 ON [%3] BEGIN %4 END")
                                .arg(triggerName(table, ev), QLatin1String(ev), table, drop);
        if (!db.exec(sql)) return false;
    }
    return true;
}

// One part of the column image, written in chunks of at most kImageChunkBytes.
bool writePart(SqliteDb& db, const QString& table, const QString& part, const void* data, uint64_t bytes) {
    Stmt st(
        db,
        QStringLiteral("INSERT INTO [%1]([tbl],[part],[seq],[data]) VALUES(?1,?2,?3,?4)").arg(kImageTable));
    if (!st.ok()) return false;
    const QByteArray tbl = table.toUtf8(), prt = part.toUtf8();
    const auto* p = static_cast<const char*>(data);
    int seq = 0;
    uint64_t done = 0;
    do {
        const uint64_t n = std::min(kImageChunkBytes, bytes - done);
        sqlite3_bind_text(st.get(), 1, tbl.constData(), static_cast<int>(tbl.size()), SQLITE_STATIC);
        sqlite3_bind_text(st.get(), 2, prt.constData(), static_cast<int>(prt.size()), SQLITE_STATIC);
        sqlite3_bind_int(st.get(), 3, seq++);
        // Bound without a copy: the column outlives the statement.
        sqlite3_bind_blob64(st.get(), 4, n ? p + done : "", n, SQLITE_STATIC);
        const int rc = sqlite3_step(st.get());
        sqlite3_reset(st.get());
        if (rc != SQLITE_DONE) return false;
        done += n;
    } while (done < bytes);
    return true;
}

template <typename T>
bool writeVector(SqliteDb& db, const QString& table, const QString& part, std::span<const T> v) {
    return writePart(db, table, part, v.data(), v.size() * sizeof(T));
}

QByteArray imageMeta(const CandidateTable& t) {
    QStringList m{QString::number(t.rowCount()),
                  QString::number(static_cast<int>(t.kind())),
                  QString::number(static_cast<int>(t.numberTextMode())),
                  QString::number(t.backNumberTextFilled()),
                  QString::number(t.hasParamValues()),
                  QString::number(t.hasSuperCount()),
                  QString::number(t.hasFailCount()),
                  QString::number(t.hasMatchIssue()),
                  QString::number(t.hasExplicitIdx())};
    return m.join(QLatin1Char(' ')).toLatin1();
}

bool writeImage(SqliteDb& db, const CandidateTable& t) {
    const QString name = t.tableName();
    if (!ensureImageTable(db)) return false;
    if (!db.exec(QStringLiteral("DELETE FROM [%1] WHERE [tbl]=?1").arg(kImageTable), {name})) return false;
    const QByteArray meta = imageMeta(t);
    if (!writePart(db, name, QStringLiteral("meta"), meta.constData(), static_cast<uint64_t>(meta.size())))
        return false;
    // The stored blob starts with the null and the empty text, as the first versions wrote it.
    const QByteArray reasons = QByteArray(2, '\0') + t.reasons().image();
    if (!writePart(db, name, QStringLiteral("reasons"), reasons.constData(),
                   static_cast<uint64_t>(reasons.size())))
        return false;
    for (int k = 1; k <= t.numberCount(); ++k)
        if (!writeVector(db, name, QStringLiteral("fig%1").arg(k), t.numberColumn(k))) return false;
    const std::pair<const char*, const BitVector*> flags[] = {{"unslt", &t.filteredOut()},
                                                              {"preunslt", &t.previousFilteredOut()},
                                                              {"tmpunslt", &t.scratchFilteredOut()},
                                                              {"gpslt", &t.groupMark()}};
    for (const auto& [part, bits] : flags)
        if (!writeVector(db, name, QLatin1String(part), bits->words())) return false;
    if (!writeVector(db, name, QStringLiteral("fliter"), t.rowReasons())) return false;
    auto& m = const_cast<CandidateTable&>(t);  // the accessors below allocate only when has*() is true
    if (t.hasParamValues() && !writeVector<int16_t>(db, name, QStringLiteral("canshu"), m.paramValues()))
        return false;
    if (t.hasSuperCount() && !writeVector<int16_t>(db, name, QStringLiteral("sknum"), m.superCount()))
        return false;
    if (t.hasFailCount() && !writeVector<int16_t>(db, name, QStringLiteral("errnum"), m.failCount()))
        return false;
    if (t.hasMatchIssue() && !writeVector<int32_t>(db, name, QStringLiteral("jsqihao"), m.matchIssue()))
        return false;
    if (t.hasExplicitIdx() && !writeVector<int32_t>(db, name, QStringLiteral("idx"), m.explicitIdx()))
        return false;
    return true;
}

class RowWriter {
public:
    RowWriter(const CandidateTable& t, QList<BoundColumn> cols) : m_t(t), m_cols(std::move(cols)) {
        m_reasonBytes.reserve(t.reasons().size());
        for (size_t id = 0; id < t.reasons().size(); ++id)
            m_reasonBytes.push_back(t.reasons().text(static_cast<ReasonTable::Id>(id)).toUtf8());
    }

    // Binds row r to the parameters after `offset`.
    void bindRow(sqlite3_stmt* st, uint64_t r, int offset) {
        int i = offset;
        for (const BoundColumn& c : m_cols) {
            ++i;
            switch (c.source) {
                case Source::Idx:
                    sqlite3_bind_int(st, i, m_t.idxAt(r));
                    break;
                case Source::Number:
                    sqlite3_bind_int(st, i, m_t.numberColumn(c.numberColumn)[r]);
                    break;
                case Source::ParamValue:
                    sqlite3_bind_int(st, i, m_t.paramValueAt(r));
                    break;
                case Source::SuperCount:
                    sqlite3_bind_int(st, i, m_t.superCountAt(r));
                    break;
                case Source::FailCount:
                    sqlite3_bind_int(st, i, m_t.failCountAt(r));
                    break;
                case Source::MatchIssue:
                    sqlite3_bind_int(st, i, m_t.matchIssueAt(r));
                    break;
                case Source::FilteredOut:
                    sqlite3_bind_int(st, i, m_t.filteredOut().test(r));
                    break;
                case Source::PreviousFilteredOut:
                    sqlite3_bind_int(st, i, m_t.previousFilteredOut().test(r));
                    break;
                case Source::ScratchFilteredOut:
                    sqlite3_bind_int(st, i, m_t.scratchFilteredOut().test(r));
                    break;
                case Source::GroupMark:
                    sqlite3_bind_int(st, i, m_t.groupMark().test(r));
                    break;
                case Source::Reason: {
                    const ReasonTable::Id id = m_t.rowReasons()[r];
                    if (id == ReasonTable::kNull) {
                        sqlite3_bind_null(st, i);
                    } else {
                        const QByteArray& b = m_reasonBytes[id];
                        sqlite3_bind_text(st, i, b.constData(), static_cast<int>(b.size()), SQLITE_STATIC);
                    }
                    break;
                }
                case Source::NumberText:
                    bindText(st, i, m_t.numberText(r));
                    break;
                case Source::BackNumberText:
                    bindText(st, i, m_t.backNumberText(r));
                    break;
                case Source::Unknown:
                    break;
            }
        }
    }

private:
    static void bindText(sqlite3_stmt* st, int i, const QString& s) {
        const QByteArray b = s.toUtf8();
        sqlite3_bind_text(st, i, b.constData(), static_cast<int>(b.size()), SQLITE_TRANSIENT);
    }

    const CandidateTable& m_t;
    QList<BoundColumn> m_cols;
    std::vector<QByteArray> m_reasonBytes;
};

}  // namespace

bool tableExists(SqliteDb& db, Kind kind) { return db.tableExists(schema::candidateTableName(kind)); }

// A larger page cache for the duration of a save: the rollback journal must be synced each time
// the cache spills pages over those freed by the previous write, so fewer, larger spills cost
// fewer syncs. The connection's own setting returns afterwards.
class WriteCache {
public:
    explicit WriteCache(SqliteDb& db)
        : m_db(db), m_previous(db.scalar(QStringLiteral("PRAGMA cache_size")).toLongLong()) {
        m_db.exec(QStringLiteral("PRAGMA cache_size=%1").arg(-kWriteCacheKiB));
    }
    ~WriteCache() { m_db.exec(QStringLiteral("PRAGMA cache_size=%1").arg(m_previous)); }
    WriteCache(const WriteCache&) = delete;
    WriteCache& operator=(const WriteCache&) = delete;

private:
    static constexpr qint64 kWriteCacheKiB = 64 * 1024;
    SqliteDb& m_db;
    qint64 m_previous;
};

SaveResult save(SqliteDb& db, const CandidateTable& table, EngineProgress* progress) {
    const QString name = table.tableName();
    const WriteCache cache(db);
    const QString fresh = name + QStringLiteral("__new");
    SqliteTransaction tx(db);
    if (!tx.active()) return {Outcome::Failed, db.lastError()};

    TableDef def = schema::candidate(table.kind());
    def.name = fresh;
    db.exec(QStringLiteral("DROP TABLE IF EXISTS [%1]").arg(fresh));
    if (!db.exec(def.createStatement())) return {Outcome::Failed, db.lastError()};

    const QList<BoundColumn> cols = boundColumns(table);
    // Rows go in by multi-row statements: one step per kRowsPerInsert rows.
    const auto insertFor = [&](int rowsPerStatement) {
        QStringList names, tuples;
        for (const BoundColumn& c : cols) names << QStringLiteral("[%1]").arg(c.name);
        const QString marks = QStringLiteral("(") +
                              QStringList(cols.size(), QStringLiteral("?")).join(QLatin1Char(',')) +
                              QStringLiteral(")");
        for (int i = 0; i < rowsPerStatement; ++i) tuples << marks;
        return QStringLiteral("INSERT INTO [%1](%2) VALUES%3")
            .arg(fresh, names.join(QLatin1Char(',')), tuples.join(QLatin1Char(',')));
    };
    Stmt many(db, insertFor(kRowsPerInsert));
    Stmt single(db, insertFor(1));
    if (!many.ok() || !single.ok()) return {Outcome::Failed, many.ok() ? single.error() : many.error()};
    RowWriter writer(table, cols);
    const auto columns = static_cast<int>(cols.size());
    QString error;
    const auto step = [&](Stmt& st) {
        const int rc = sqlite3_step(st.get());
        sqlite3_reset(st.get());
        if (rc == SQLITE_DONE) return true;
        error = st.error();
        return false;
    };
    const bool complete = forEachChunk(table.rowCount(), progress, [&](uint64_t begin, uint64_t end) {
        uint64_t r = begin;
        for (; r + kRowsPerInsert <= end; r += kRowsPerInsert) {
            for (int i = 0; i < kRowsPerInsert; ++i)
                writer.bindRow(many.get(), r + static_cast<uint64_t>(i), i * columns);
            if (!step(many)) return false;
        }
        for (; r < end; ++r) {
            writer.bindRow(single.get(), r, 0);
            if (!step(single)) return false;
        }
        return true;
    });
    if (!error.isEmpty()) return {Outcome::Failed, error};
    if (!complete) return {Outcome::Cancelled, {}};

    // The connection's message, which the image's own statements leave too.
    if (!db.exec(QStringLiteral("DROP TABLE IF EXISTS [%1]").arg(name)) ||
        !db.exec(QStringLiteral("ALTER TABLE [%1] RENAME TO [%2]").arg(fresh, name)) ||
        !writeImage(db, table) || !createTriggers(db, name))
        return {Outcome::Failed, QString::fromUtf8(sqlite3_errmsg(db.handle()))};
    if (progress && progress->cancelled()) return {Outcome::Cancelled, {}};
    if (!tx.commit()) return {Outcome::Failed, db.lastError()};
    return {Outcome::Done, {}};
}

namespace {

bool imageIsCurrent(SqliteDb& db, const QString& name) {
    if (!db.tableExists(kImageTable)) return false;
    for (const char* ev : {"INSERT", "UPDATE", "DELETE"}) {
        if (db.scalar(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type='trigger' AND name=?1"),
                      {triggerName(name, ev)})
                .toInt() != 1)
            return false;
    }
    return true;
}

// Reads one part of the image into `dest` of exactly `bytes` bytes; false when it is missing
// or of another size.
bool readPart(SqliteDb& db, const QString& table, const QString& part, void* dest, uint64_t bytes) {
    Stmt st(db, QStringLiteral("SELECT [data] FROM [%1] WHERE [tbl]=?1 AND [part]=?2 ORDER BY [seq]")
                    .arg(kImageTable));
    if (!st.ok()) return false;
    const QByteArray tbl = table.toUtf8(), prt = part.toUtf8();
    sqlite3_bind_text(st.get(), 1, tbl.constData(), static_cast<int>(tbl.size()), SQLITE_STATIC);
    sqlite3_bind_text(st.get(), 2, prt.constData(), static_cast<int>(prt.size()), SQLITE_STATIC);
    uint64_t done = 0;
    bool found = false;
    while (sqlite3_step(st.get()) == SQLITE_ROW) {
        found = true;
        const auto n = static_cast<uint64_t>(sqlite3_column_bytes(st.get(), 0));
        if (done + n > bytes) return false;
        if (n) std::memcpy(static_cast<char*>(dest) + done, sqlite3_column_blob(st.get(), 0), n);
        done += n;
    }
    return found && done == bytes;
}

QByteArray readWholePart(SqliteDb& db, const QString& table, const QString& part) {
    QByteArray out;
    for (const QVariantList& r : db.rows(
             QStringLiteral("SELECT length([data]) FROM [%1] WHERE [tbl]=?1 AND [part]=?2").arg(kImageTable),
             {table, part}))
        out.resize(out.size() + r.value(0).toLongLong());
    if (out.isEmpty() || !readPart(db, table, part, out.data(), static_cast<uint64_t>(out.size()))) return {};
    return out;
}

template <typename T>
bool readVector(SqliteDb& db, const QString& table, const QString& part, std::span<T> v) {
    return readPart(db, table, part, v.data(), v.size() * sizeof(T));
}

std::unique_ptr<CandidateTable> loadImage(SqliteDb& db, Kind kind) {
    const QString name = schema::candidateTableName(kind);
    const QStringList meta =
        QString::fromLatin1(readWholePart(db, name, QStringLiteral("meta"))).split(QLatin1Char(' '));
    if (meta.size() != 9 || meta[1].toInt() != static_cast<int>(kind)) return nullptr;
    const uint64_t rows = meta[0].toULongLong();
    // A cheap check that the rows are the ones the image was written with.
    // save() numbers the rows 1..rows; any later insert or delete drops the image.
    if (db.scalar(QStringLiteral("SELECT ifnull(max(rowid),0) FROM [%1]").arg(name)).toULongLong() != rows)
        return nullptr;
    auto t = std::make_unique<CandidateTable>(kind, rows);
    const QByteArray reasons = readWholePart(db, name, QStringLiteral("reasons"));
    if (!reasons.startsWith(QByteArray(2, '\0')) || !t->reasons().appendImage(reasons.mid(2))) return nullptr;
    for (int k = 1; k <= t->numberCount(); ++k)
        if (!readVector(db, name, QStringLiteral("fig%1").arg(k), t->numberColumn(k))) return nullptr;
    const std::pair<const char*, BitVector*> flags[] = {{"unslt", &t->filteredOut()},
                                                        {"preunslt", &t->previousFilteredOut()},
                                                        {"tmpunslt", &t->scratchFilteredOut()},
                                                        {"gpslt", &t->groupMark()}};
    for (const auto& [part, bits] : flags)
        if (!readVector(db, name, QLatin1String(part), bits->words())) return nullptr;
    if (!readVector(db, name, QStringLiteral("fliter"), t->rowReasons())) return nullptr;
    for (ReasonTable::Id id : t->rowReasons())
        if (id >= t->reasons().size()) return nullptr;
    t->setNumberTextMode(static_cast<CandidateTable::NumberTextMode>(meta[2].toInt()));
    t->setBackNumberTextFilled(meta[3].toInt() != 0);
    if (meta[4].toInt() && !readVector(db, name, QStringLiteral("canshu"), t->paramValues())) return nullptr;
    if (meta[5].toInt() && !readVector(db, name, QStringLiteral("sknum"), t->superCount())) return nullptr;
    if (meta[6].toInt() && !readVector(db, name, QStringLiteral("errnum"), t->failCount())) return nullptr;
    if (meta[7].toInt() && !readVector(db, name, QStringLiteral("jsqihao"), t->matchIssue())) return nullptr;
    if (meta[8].toInt() && !readVector(db, name, QStringLiteral("idx"), t->explicitIdx())) return nullptr;
    return t;
}

// Reads the cells of one row after another into a table, interning the reason texts as they
// come (runs of equal reasons, the common case, cost one comparison).
class RowReader {
public:
    RowReader(CandidateTable& table, sqlite3_stmt* statement) : m_t(table), m_s(statement) {}

    void read(const BoundColumn& c, int i, uint64_t r) {
        switch (c.source) {
            case Source::Idx:
                readIdx(sqlite3_column_int(m_s, i), r);
                break;
            case Source::Number:
                if (c.numberColumn <= m_t.numberCount())
                    m_t.numberColumn(c.numberColumn)[r] =
                        static_cast<uint8_t>(std::clamp(sqlite3_column_int(m_s, i), 0, 255));
                break;
            case Source::ParamValue:
                readNonZero(m_t.paramValues(), i, r);
                break;
            case Source::SuperCount:
                readNonZero(m_t.superCount(), i, r);
                break;
            case Source::FailCount:
                readNonZero(m_t.failCount(), i, r);
                break;
            case Source::MatchIssue:
                readNonZero(m_t.matchIssue(), i, r);
                break;
            case Source::FilteredOut:
                m_t.filteredOut().set(r, flag(i));
                break;
            case Source::PreviousFilteredOut:
                m_t.previousFilteredOut().set(r, flag(i));
                break;
            case Source::ScratchFilteredOut:
                m_t.scratchFilteredOut().set(r, flag(i));
                break;
            case Source::GroupMark:
                m_t.groupMark().set(r, flag(i));
                break;
            case Source::Reason:
                m_t.rowReasons()[r] = reasonId(i);
                break;
            case Source::NumberText:
                if (r == 0 && sqlite3_column_type(m_s, i) != SQLITE_NULL)
                    m_t.setNumberTextMode(numberTextMode(i));
                break;
            case Source::BackNumberText:
                if (r == 0 && sqlite3_column_type(m_s, i) != SQLITE_NULL) m_t.setBackNumberTextFilled(true);
                break;
            case Source::Unknown:
                break;
        }
    }

private:
    bool flag(int i) const { return sqlite3_column_int(m_s, i) != 0; }

    template <typename T>
    void readNonZero(std::span<T> column, int i, uint64_t r) const {
        if (const int v = sqlite3_column_int(m_s, i)) column[r] = static_cast<T>(v);
    }

    // An idx column that numbers the rows 1, 2, 3, ... is left implicit; the first row that
    // breaks the sequence allocates the column and fills in the rows before it.
    void readIdx(int idx, uint64_t r) {
        if (!m_explicitIdx && idx != static_cast<int>(r + 1)) {
            m_explicitIdx = true;
            auto v = m_t.explicitIdx();
            for (uint64_t q = 0; q < r; ++q) v[q] = static_cast<int32_t>(q + 1);
        }
        if (m_explicitIdx) m_t.explicitIdx()[r] = idx;
    }

    ReasonTable::Id reasonId(int i) {
        if (sqlite3_column_type(m_s, i) == SQLITE_NULL) return ReasonTable::kNull;
        const auto* p = static_cast<const char*>(sqlite3_column_blob(m_s, i));
        const int n = sqlite3_column_bytes(m_s, i);
        if (n != m_lastReason.size() ||
            std::memcmp(p, m_lastReason.constData(), static_cast<size_t>(n)) != 0) {
            m_lastReason = QByteArray(p, n);
            const auto it = m_reasonIds.constFind(m_lastReason);
            m_lastId = it != m_reasonIds.constEnd() ? it.value()
                                                    : m_t.reasons().intern(QString::fromUtf8(m_lastReason));
            m_reasonIds.insert(m_lastReason, m_lastId);
        }
        return m_lastId;
    }

    // The first row's text tells how the scratch text column was filled.
    CandidateTable::NumberTextMode numberTextMode(int i) const {
        const int bytes = sqlite3_column_bytes(m_s, i);
        const auto* text = sqlite3_column_text(m_s, i);
        using M = CandidateTable::NumberTextMode;
        return bytes > 0 && text[0] == '(' ? M::Marked
               : bytes <= 5                ? M::Back
               : bytes > 14                ? M::Whole
                                           : M::Front;
    }

    CandidateTable& m_t;
    sqlite3_stmt* m_s;
    QHash<QByteArray, ReasonTable::Id> m_reasonIds;
    QByteArray m_lastReason;
    ReasonTable::Id m_lastId = ReasonTable::kEmpty;
    bool m_explicitIdx = false;
};

// The columns of the stored table that the engine keeps, in the stored order.
QList<BoundColumn> boundColumns(SqliteDb& db, const QString& name) {
    QList<BoundColumn> cols;
    for (const QString& c : db.columns(name)) {
        BoundColumn b{c, Source::Unknown};
        b.source = sourceOf(c, &b.numberColumn);
        if (b.source == Source::Unknown ||
            (b.source == Source::Number &&
             (b.numberColumn < 1 || b.numberColumn > CandidateTable::kMaxNumbers)))
            continue;
        cols.append(b);
    }
    return cols;
}

LoadResult loadRows(SqliteDb& db, Kind kind, EngineProgress* progress) {
    const QString name = schema::candidateTableName(kind);
    const QList<BoundColumn> cols = boundColumns(db, name);
    QStringList names;
    for (const BoundColumn& c : cols) names << QStringLiteral("[%1]").arg(c.name);
    LoadResult result;
    result.path = LoadPath::Rows;
    const uint64_t rows = db.scalar(QStringLiteral("SELECT count(*) FROM [%1]").arg(name)).toULongLong();
    auto t = std::make_unique<CandidateTable>(kind, rows);
    Stmt st(db, QStringLiteral("SELECT %1 FROM [%2] ORDER BY rowid").arg(names.join(QLatin1Char(',')), name));
    if (!st.ok()) {
        result.error = st.error();
        return result;
    }
    RowReader reader(*t, st.get());
    bool failed = false;
    const bool complete = forEachChunk(rows, progress, [&](uint64_t begin, uint64_t end) {
        for (uint64_t r = begin; r < end; ++r) {
            if (sqlite3_step(st.get()) != SQLITE_ROW) {
                failed = true;
                return false;
            }
            for (int i = 0; i < cols.size(); ++i) reader.read(cols[i], i, r);
        }
        return true;
    });
    if (failed) {
        result.error = QStringLiteral("the table %1 changed while it was read").arg(name);
        return result;
    }
    if (!complete) return result;
    result.table = std::move(t);
    return result;
}

}  // namespace

LoadResult load(SqliteDb& db, Kind kind, EngineProgress* progress, bool allowImage) {
    const QString name = schema::candidateTableName(kind);
    if (!db.tableExists(name)) return {nullptr, LoadPath::None, QStringLiteral("no table %1").arg(name)};
    if (allowImage && imageIsCurrent(db, name)) {
        if (auto t = loadImage(db, kind)) {
            if (progress) progress->progress(t->rowCount(), t->rowCount());
            return {std::move(t), LoadPath::ColumnImage, {}};
        }
    }
    return loadRows(db, kind, progress);
}

}  // namespace candidate_store
