#pragma once

// The recompute path: Paracount, with ParaHou and ParaQuan, brings one stored row of fig,
// fighou and figquan up to date after an edit of its numbers. It reads the numbers back from
// the tables, computes with the omissions as they stand now, and updates only the columns
// this path writes (intYljz is never recomputed). The caller holds the transaction.

#include "history/history_writer.h"

#include <QStringList>

class SqliteDb;

namespace recompute {

// The columns each recompute writes, in the order of its statements.
const QStringList& frontColumns();  // Paracount
const QStringList& backColumns();   // ParaHou
const QStringList& bothColumns();   // ParaQuan

// Recomputes row `pc` of the three tables in the database and in state.history. A table
// without that row (fighou and figquan after an append import) is passed over. False when a
// statement fails or the front numbers admit no fitted line.
bool updateRow(SqliteDb& db, HistoryState& state, int idx, const ZoneShape& shape);

}  // namespace recompute
