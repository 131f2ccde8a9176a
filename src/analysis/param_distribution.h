#pragma once

// How many draws have each value of a per-draw column, read from the scope's draw table
// (fig, fighou or figquan). The decade counts (Qnum) are three groups, Qnum0 to Qnum2, of the
// values 0 to 5 each, whether or not a value occurred; any other column runs over every whole
// value from its least to its greatest.

#include "history/history_views.h"

#include <QString>

#include <vector>

class SqliteDb;

struct DistributionGroup {
    QString column;
    std::vector<std::pair<qint64, int>> counts;  // value, draws with that value, in rising values
};

namespace param_distribution {

// The column's name in the scope's table, as stored; empty when the table lacks it.
QString storedColumn(SqliteDb& db, HistoryView scope, const QString& column);

// Empty when the table lacks the column or holds no draw: the chart then shows nothing.
std::vector<DistributionGroup> count(SqliteDb& db, HistoryView scope, const QString& column);

}  // namespace param_distribution
