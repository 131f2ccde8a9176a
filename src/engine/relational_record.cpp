#include "engine/relational_record.h"

#include "engine/record_image.h"
#include "engine/stored_columns.h"
#include "workspace/sqlite_db.h"

#include <sqlite3.h>

namespace relational_record {

namespace {

using stored_columns::BoundColumn;
using stored_columns::forEachChunk;
using stored_columns::Source;
using stored_columns::sourceOf;
using stored_columns::Stmt;

// Rows bound to one INSERT statement (each row has at most 19 parameters).
constexpr int kRowsPerInsert = 64;
constexpr const char* kEvents[] = {"INSERT", "UPDATE", "DELETE"};

QString triggerName(const QString& table, const char* event) {
    return QStringLiteral("sq_record_%1_%2").arg(table, QLatin1String(event));
}

// The columns write() binds: every schema column whose value is not the create default.
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

class RowWriter {
public:
    RowWriter(const CandidateTable& t, QList<BoundColumn> cols) : m_t(t), m_cols(std::move(cols)) {
        m_reasonBytes.reserve(t.reasons().size());
        // A text that depends on the row is made row by row.
        for (size_t id = 0; id < t.reasons().size(); ++id) {
            const auto i = static_cast<ReasonTable::Id>(id);
            m_reasonBytes.push_back(t.reasons().dependsOnRow(i) ? QByteArray() : t.reasons().text(i).toUtf8());
        }
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
                    } else if (m_t.reasons().dependsOnRow(id)) {
                        bindText(st, i, m_t.reasonText(r));
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

QString insertStatement(const QString& table, const QList<BoundColumn>& cols, int rowsPerStatement) {
    QStringList names, tuples;
    for (const BoundColumn& c : cols) names << QStringLiteral("[%1]").arg(c.name);
    const QString marks = QStringLiteral("(") +
                          QStringList(cols.size(), QStringLiteral("?")).join(QLatin1Char(',')) +
                          QStringLiteral(")");
    for (int i = 0; i < rowsPerStatement; ++i) tuples << marks;
    return QStringLiteral("INSERT INTO [%1](%2) VALUES%3")
        .arg(table, names.join(QLatin1Char(',')), tuples.join(QLatin1Char(',')));
}

// Inserts every row of `t` into `fresh`.
Status insertRows(SqliteDb& db, const CandidateTable& t, const QString& fresh, EngineProgress* progress,
                  QString* error) {
    const QList<BoundColumn> cols = boundColumns(t);
    Stmt many(db, insertStatement(fresh, cols, kRowsPerInsert));
    Stmt single(db, insertStatement(fresh, cols, 1));
    if (!many.ok() || !single.ok()) {
        *error = many.ok() ? single.error() : many.error();
        return Status::Failed;
    }
    RowWriter writer(t, cols);
    const auto columns = static_cast<int>(cols.size());
    const auto step = [&](Stmt& st) {
        const int rc = sqlite3_step(st.get());
        sqlite3_reset(st.get());
        if (rc == SQLITE_DONE) return true;
        *error = st.error();
        return false;
    };
    const bool complete = forEachChunk(t.rowCount(), progress, [&](uint64_t begin, uint64_t end) {
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
    if (!error->isEmpty()) return Status::Failed;
    return complete ? Status::Done : Status::Cancelled;
}

}  // namespace

bool hasTriggers(SqliteDb& db, const QString& table) {
    for (const char* ev : kEvents)
        if (db.scalar(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type='trigger' AND name=?1"),
                      {triggerName(table, ev)})
                .toInt() != 1)
            return false;
    return true;
}

bool createTriggers(SqliteDb& db, const QString& table) {
    // The table names are the program's own; the statement is fixed text.
    const QString mark =
        QStringLiteral("UPDATE [%1] SET [sql_changed]=1 WHERE [tbl]='%2' AND [sql_changed]=0;")
            .arg(record_image::kInfoTable, table);
    for (const char* ev : kEvents) {
        const QString sql = QStringLiteral("CREATE TRIGGER IF NOT EXISTS [%1] AFTER %2 ON [%3] BEGIN %4 END")
                                .arg(triggerName(table, ev), QLatin1String(ev), table, mark);
        if (!db.exec(sql)) return false;
    }
    return true;
}

Status write(SqliteDb& db, const CandidateTable& table, EngineProgress* progress, QString* error) {
    const QString name = table.tableName();
    const WriteCache cache(db);
    const QString fresh = name + QStringLiteral("__new");
    TableDef def = schema::candidate(table.kind());
    def.name = fresh;
    if (!db.exec(QStringLiteral("DROP TABLE IF EXISTS [%1]").arg(fresh)) || !db.exec(def.createStatement())) {
        *error = db.lastError();
        return Status::Failed;
    }
    const Status s = insertRows(db, table, fresh, progress, error);
    if (s != Status::Done) return s;
    if (!db.exec(QStringLiteral("DROP TABLE IF EXISTS [%1]").arg(name)) ||
        !db.exec(QStringLiteral("ALTER TABLE [%1] RENAME TO [%2]").arg(fresh, name)) ||
        !createTriggers(db, name)) {
        *error = db.lastError();
        return Status::Failed;
    }
    return Status::Done;
}

}  // namespace relational_record
