#include "analysis/param_distribution.h"

#include "workspace/sqlite_db.h"

#include <map>

namespace param_distribution {
namespace {

// Draws per value of a column that exists; `from`..`to` fixes the values shown, or the least
// and greatest stored value when `from` > `to`.
DistributionGroup countValues(SqliteDb& db, const QString& table, const QString& column, qint64 from, qint64 to) {
    DistributionGroup g{column, {}};
    std::map<qint64, int> counted;
    SqliteStatement st(db, QStringLiteral("SELECT [%1], COUNT(*) FROM [%2] WHERE [%1] IS NOT NULL "
                                          "GROUP BY [%1]").arg(column, table));
    while (st.ok() && st.next()) counted[static_cast<qint64>(st.real(0))] += st.integer(1);
    if (from > to) {
        if (counted.empty()) return g;
        from = counted.begin()->first;
        to = counted.rbegin()->first;
    }
    for (qint64 v = from; v <= to; ++v) {
        const auto it = counted.find(v);
        g.counts.emplace_back(v, it == counted.end() ? 0 : it->second);
    }
    return g;
}

}  // namespace

QString storedColumn(SqliteDb& db, HistoryView scope, const QString& column) {
    for (const QString& c : db.columns(viewInfo(scope).drawTable))
        if (c.compare(column, Qt::CaseInsensitive) == 0) return c;
    return {};
}

std::vector<DistributionGroup> count(SqliteDb& db, HistoryView scope, const QString& column) {
    const QString table = viewInfo(scope).drawTable;
    const SqliteReadTransaction read(db);
    if (column.compare(QLatin1String("Qnum"), Qt::CaseInsensitive) == 0) {
        std::vector<DistributionGroup> groups;
        for (int i = 0; i < 3; ++i) {
            const QString stored = storedColumn(db, scope, QStringLiteral("Qnum%1").arg(i));
            if (!stored.isEmpty()) groups.push_back(countValues(db, table, stored, 0, 5));
        }
        return groups;
    }
    const QString stored = storedColumn(db, scope, column);
    if (stored.isEmpty()) return {};
    DistributionGroup g = countValues(db, table, stored, 1, 0);
    if (g.counts.empty()) return {};
    return {g};
}

}  // namespace param_distribution
