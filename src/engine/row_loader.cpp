#include "engine/row_loader.h"

#include "engine/stored_columns.h"
#include "workspace/sqlite_db.h"

#include <sqlite3.h>

#include <QHash>

#include <cstring>

namespace row_loader {

namespace {

using Kind = schema::CandidateKind;
using stored_columns::BoundColumn;
using stored_columns::forEachChunk;
using stored_columns::Source;
using stored_columns::sourceOf;
using stored_columns::Stmt;

constexpr const char* kLegacyEvents[] = {"INSERT", "UPDATE", "DELETE"};

QString legacyTriggerName(const QString& table, const char* what) {
    return QStringLiteral("sq_image_%1_%2").arg(table, QLatin1String(what));
}

// Reads one part of the image into `dest` of exactly `bytes` bytes; false when it is missing
// or of another size.
bool readPart(SqliteDb& db, const QString& table, const QString& part, void* dest, uint64_t bytes) {
    Stmt st(db, QStringLiteral("SELECT [data] FROM [%1] WHERE [tbl]=?1 AND [part]=?2 ORDER BY [seq]")
                    .arg(kLegacyImageTable));
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
    for (const QVariantList& r :
         db.rows(QStringLiteral("SELECT length([data]) FROM [%1] WHERE [tbl]=?1 AND [part]=?2")
                     .arg(kLegacyImageTable),
                 {table, part}))
        out.resize(out.size() + r.value(0).toLongLong());
    if (out.isEmpty() || !readPart(db, table, part, out.data(), static_cast<uint64_t>(out.size()))) return {};
    return out;
}

template <typename T>
bool readVector(SqliteDb& db, const QString& table, const QString& part, std::span<T> v) {
    return readPart(db, table, part, v.data(), v.size() * sizeof(T));
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
        // An empty text may come as a null pointer: compare only bytes that exist.
        if (n != m_lastReason.size() ||
            (n > 0 && std::memcmp(p, m_lastReason.constData(), static_cast<size_t>(n)) != 0)) {
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

}  // namespace

bool legacyImageIsCurrent(SqliteDb& db, const QString& name) {
    if (!db.tableExists(kLegacyImageTable)) return false;
    for (const char* ev : kLegacyEvents) {
        if (db.scalar(QStringLiteral("SELECT count(*) FROM sqlite_master WHERE type='trigger' AND name=?1"),
                      {legacyTriggerName(name, ev)})
                .toInt() != 1)
            return false;
    }
    return true;
}

std::unique_ptr<CandidateTable> loadLegacyImage(SqliteDb& db, Kind kind) {
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

bool dropLegacy(SqliteDb& db, const QString& table) {
    for (const char* ev : kLegacyEvents)
        if (!db.exec(QStringLiteral("DROP TRIGGER IF EXISTS [%1]").arg(legacyTriggerName(table, ev))))
            return false;
    if (!db.tableExists(kLegacyImageTable)) return true;
    if (!db.exec(QStringLiteral("DELETE FROM [%1] WHERE [tbl]=?1").arg(kLegacyImageTable), {table}))
        return false;
    if (db.scalar(QStringLiteral("SELECT count(*) FROM [%1]").arg(kLegacyImageTable)).toLongLong() > 0)
        return true;
    return db.exec(QStringLiteral("DROP TABLE [%1]").arg(kLegacyImageTable));
}

Loaded loadRows(SqliteDb& db, Kind kind, EngineProgress* progress) {
    const QString name = schema::candidateTableName(kind);
    const QList<BoundColumn> cols = boundColumns(db, name);
    QStringList names;
    for (const BoundColumn& c : cols) names << QStringLiteral("[%1]").arg(c.name);
    Loaded result;
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

}  // namespace row_loader
