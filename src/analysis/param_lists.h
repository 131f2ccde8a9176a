#pragma once

// The per-draw parameter lists of the three scopes: a chosen set of columns of the scope's draw
// table, each with its head, read in stored order or sorted by one column's stored value (with
// the issue as second key).

#include "history/history_views.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <optional>
#include <vector>

class SqliteDb;

struct ListColumn {
    QString column;
    QString head;
};

namespace param_lists {

// The columns of a scope's list, in order.
const std::vector<ListColumn>& columns(HistoryView scope);

// The rows of the list, one per draw; sorted by the column of index `sortColumn` (0 the issue)
// when given. Empty when the table cannot be read.
QList<QVariantList> rows(SqliteDb& db, HistoryView scope, std::optional<int> sortColumn = std::nullopt);

}  // namespace param_lists
