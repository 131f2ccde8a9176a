#pragma once

// The pieces both directions of the record share: how a stored column of a candidate table maps
// onto the in-memory table, a raw SQLite statement and a chunked loop that reports progress.

#include "engine/engine_progress.h"
#include "workspace/sqlite_db.h"

#include <sqlite3.h>

#include <QList>
#include <QString>

#include <algorithm>
#include <cstdint>

namespace stored_columns {

// What a stored column is made from.
enum class Source {
    Idx,
    Number,
    ParamValue,
    NumberText,
    BackNumberText,
    SuperCount,
    MatchIssue,
    Reason,
    FilteredOut,
    PreviousFilteredOut,
    ScratchFilteredOut,
    GroupMark,
    FailCount,
    Unknown
};

// The source of a stored column by its name; fig1..fig7 also give the number column.
inline Source sourceOf(const QString& column, int* numberColumn) {
    const QString c = column.toLower();
    if (c == QLatin1String("idx")) return Source::Idx;
    if (c.startsWith(QLatin1String("fig")) && c.size() == 4) {
        *numberColumn = c.right(1).toInt();
        return Source::Number;
    }
    if (c == QLatin1String("canshu")) return Source::ParamValue;
    if (c == QLatin1String("numstring")) return Source::NumberText;
    if (c == QLatin1String("numstringhou")) return Source::BackNumberText;
    if (c == QLatin1String("sknum")) return Source::SuperCount;
    if (c == QLatin1String("jsqihao")) return Source::MatchIssue;
    if (c == QLatin1String("fliter")) return Source::Reason;
    if (c == QLatin1String("unslt")) return Source::FilteredOut;
    if (c == QLatin1String("preunslt")) return Source::PreviousFilteredOut;
    if (c == QLatin1String("tmpunslt")) return Source::ScratchFilteredOut;
    if (c == QLatin1String("gpslt")) return Source::GroupMark;
    if (c == QLatin1String("errnum")) return Source::FailCount;
    return Source::Unknown;
}

struct BoundColumn {
    QString name;
    Source source;
    int numberColumn = 0;
};

// A prepared statement of the raw API, for blobs and the row loops.
class Stmt {
public:
    Stmt(SqliteDb& db, const QString& sql) : m_db(db.handle()) {
        if (sqlite3_prepare_v2(m_db, sql.toUtf8().constData(), -1, &m_st, nullptr) != SQLITE_OK)
            m_st = nullptr;
    }
    ~Stmt() { sqlite3_finalize(m_st); }
    Stmt(const Stmt&) = delete;
    Stmt& operator=(const Stmt&) = delete;
    bool ok() const { return m_st != nullptr; }
    sqlite3_stmt* get() const { return m_st; }
    QString error() const { return QString::fromUtf8(sqlite3_errmsg(m_db)); }

private:
    sqlite3* m_db;
    sqlite3_stmt* m_st = nullptr;
};

// Runs fn(begin, end) over chunks of rows, polling `progress`; false when cancelled or when fn
// returned false.
template <typename Fn>
bool forEachChunk(uint64_t rows, EngineProgress* progress, Fn&& fn) {
    constexpr uint64_t kRowsPerChunk = uint64_t{1} << 16;
    for (uint64_t begin = 0; begin < rows; begin += kRowsPerChunk) {
        if (progress && progress->cancelled()) return false;
        const uint64_t end = std::min(rows, begin + kRowsPerChunk);
        if (!fn(begin, end)) return false;
        if (progress) progress->progress(end, rows);
    }
    return true;
}

}  // namespace stored_columns
