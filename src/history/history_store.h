#pragma once

// The statements of the history database: rows of the draw and omission tables, the walk
// over a frequency table, the update of one recomputed row. Callers hold the transaction.

#include "history/history_views.h"
#include "workspace/sqlite_db.h"

#include <QStringList>

#include <memory>

// The value a 32-bit float column receives: the shortest decimal form of the float, so that
// the stored number reads back as that float and prints as short as it is.
double storedSingle(float f);

// Appends draw rows and omission rows of one view through prepared statements.
class ViewRowWriter {
public:
    ViewRowWriter(SqliteDb& db, HistoryView view);
    ~ViewRowWriter();
    bool ok() const;
    QString error() const;

    // Idx, fig0, the view's numbers and every parameter column of its table.
    bool insertDraw(int idx, qint64 issue, const DrawNumbers& draw, const DrawParams& p);
    // qihao and ylqs1..ylqs<range>.
    bool insertOmission(qint64 issue, const NumberStats& stats);

private:
    struct Statements;
    SqliteDb& m_db;
    HistoryView m_view;
    std::unique_ptr<Statements> m_st;
};

namespace history_store {

// Deletes every row of a table.
bool clearTable(SqliteDb& db, const QString& table);
// Deletes the last row (by insertion order) of a table; true when there was none as well.
bool deleteLastRow(SqliteDb& db, const QString& table);

// Walks the frequency table of a view from its first row: row k becomes number k with its
// percentage and count, for k = 1..rows.
bool writeFrequency(SqliteDb& db, HistoryView view, const NumberStats& stats, int rows);

// UPDATE of the named parameter columns of row `idx`.
bool updateParams(SqliteDb& db, HistoryView view, int idx, const DrawParams& p, const QStringList& columns);

// The numbers of row `idx` of a view's draw table (fig1.. in order), or empty when the table
// has no such row.
std::optional<std::vector<int>> readNumbers(SqliteDb& db, HistoryView view, int idx);

}  // namespace history_store
